// Remote height over a measured point, and between two sighted points.
#include "bits.hpp"
#include "records.hpp"

TEST(RemoteHeight, ModesFacesAndRange)
{
    // signB, mode, distance, vertical, zeniths, status, height, tolerance (0:
    // exact). Mode 0: 30 degrees up at 20 m; level leaves 2.68e-6 m (pi as
    // 3.1415926). Mode 1: the zenith is written, then refused; INF - INF passes.
    const double cases[][9] = {{1, 0, 20, -1, 123, 216000, 0, 14.0470054, 1e-5},
                               {-1, 0, 20, -1, 123, 1080000, 0, 14.0470054, 1e-5},
                               {1, 0, 100, 0, 0, 324000, 0, 1.5000026795, 1e-10},
                               {1, 1, 10, 0, 324000, 162000, 0, 10, 1e-5},
                               {-1, 1, 10, 0, 972000, 1134000, 0, 10, 1e-5},
                               {1, 1, 10, 0, 162000, 0, 2, qtest::INF, 0},
                               {1, 1, 10, 0, 0, 0, 0, qtest::NaN, 0},
                               {1, 2, 10, 0, 0, 0, 0, qtest::sentinel_double(), 0}};
    for (const auto& c : cases) {
        const auto sign = static_cast<signed char>(c[0]);
        const StationRecord s = qtest::station(0, 0, 0, sign, sign, 1.6, 1.5);
        const DistanceRecord m = qtest::shot(c[2], c[2], c[3]);
        double out = qtest::sentinel_double();
        EXPECT_EQ(LIB_Hight(&s, &m, c[4], c[5], &out, static_cast<unsigned char>(c[1])), c[6]);
        EXPECT_TRUE(c[8] > 0 ? std::fabs(out - c[7]) < c[8] : qtest::same_double(out, c[7]));
    }
}
