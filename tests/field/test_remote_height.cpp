// Remote height over a measured point, and between two sighted points.
#include "check.hpp"
#include "records.hpp"

TEST(RemoteHeight, ModesFacesAndRange)
{
    // Mode 0: 30 degrees up at 20 m; level leaves 2.68e-6 m (pi as
    // 3.1415926). Mode 1: the zenith is written, then refused; INF - INF
    // passes. Another mode writes nothing.
    const struct {
        signed char face; // signA and signB
        unsigned char mode;
        double distance, vertical, base_zenith, top_zenith;
        int status;
        double height, tolerance; // tolerance 0: exact
    } cases[] = {{1, 0, 20, -1, 123, 216000, 0, 14.0470054, 1e-5},
                 {-1, 0, 20, -1, 123, 1080000, 0, 14.0470054, 1e-5},
                 {1, 0, 100, 0, 0, 324000, 0, 1.5000026795, 1e-10},
                 {1, 1, 10, 0, 324000, 162000, 0, 10, 1e-5},
                 {-1, 1, 10, 0, 972000, 1134000, 0, 10, 1e-5},
                 {1, 1, 10, 0, 162000, 0, 2, qtest::INF, 0},
                 {1, 1, 10, 0, 0, 0, 0, qtest::NaN, 0},
                 {1, 2, 10, 0, 0, 0, 0, qtest::sentinel_double(), 0}};
    for (const auto& [call, c] : qtest::rows("LIB_Hight", cases)) {
        const StationRecord s = qtest::station(0, 0, 0, c.face, c.face, 1.6, 1.5);
        const DistanceRecord m = qtest::shot(c.distance, c.distance, c.vertical);
        double out = qtest::sentinel_double();
        EXPECT_STATUS(call, LIB_Hight(&s, &m, c.base_zenith, c.top_zenith, &out, c.mode), c.status);
        if (c.tolerance > 0) {
            EXPECT_WITHIN(call, out, c.height, c.tolerance);
        } else {
            EXPECT_BITS(call, out, c.height);
        }
    }
}
