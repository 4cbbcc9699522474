// Remote height: a point without a prism over a measured one, and the height
// difference of two sighted points.
#include "bits.hpp"
#include "quillon.h"

#include <cmath>
#include <limits>

namespace {

const double PI = 3.141592653589793;
const double INF = std::numeric_limits<double>::infinity();

StationRecord station_on_face(signed char face)
{
    StationRecord s{};
    s.InstrumentHeight = 1.6;
    s.TargetHeight = 1.5;
    s.signA = face;
    s.signB = face;
    return s;
}

const double DEG = 3600.0;

} // namespace

TEST(RemoteHeight, PointAboveThePrism)
{
    // Prism 1 m below the axis at 20 m; the cable sighted 30 degrees above
    // the horizon: 20 tan 30 + 1 + 1.5.
    const DistanceRecord m{20.0, 20.0, -1.0, 0.0};
    const double expected = 20.0 * std::tan(30.0 * PI / 180.0) + 1.0 + 1.5;
    struct Case {
        signed char face;
        double zenith;
    };
    const Case cases[] = {{1, 60.0 * DEG}, {-1, 300.0 * DEG}};
    for (const Case& c : cases) {
        const StationRecord s = station_on_face(c.face);
        double out = qtest::sentinel_double();
        EXPECT_EQ(LIB_Hight(&s, &m, 123.0, c.zenith, &out, 0), 0);
        EXPECT_NEAR(out, expected, 1e-5) << int(c.face);
    }
}

TEST(RemoteHeight, LevelSightAndPlumbSightInModeZero)
{
    const StationRecord s = station_on_face(1);
    const DistanceRecord m{100.0, 100.0, 0.0, 0.0};
    double out = 0.0;
    // pi taken as 3.1415926 leaves a tiny cotangent on a level sight.
    EXPECT_EQ(LIB_Hight(&s, &m, 0.0, 324000.0, &out, 0), 0);
    EXPECT_NEAR(out - 1.5, 2.68e-6, 1e-8);
    EXPECT_GT(out - 1.5, 0.0);
    // Straight up: the infinite height is delivered without complaint.
    EXPECT_EQ(LIB_Hight(&s, &m, 0.0, 0.0, &out, 0), 0);
    EXPECT_BITS(out, INF);
}

TEST(RemoteHeight, DifferenceOfTwoSightedPoints)
{
    // 10 m away: level sight to the first point, 45 degrees up to the second.
    const DistanceRecord m{10.0, 10.0, 0.0, 0.0};
    struct Case {
        signed char face;
        double first, second;
    };
    const Case cases[] = {{1, 90.0 * DEG, 45.0 * DEG}, {-1, 270.0 * DEG, 315.0 * DEG}};
    for (const Case& c : cases) {
        const StationRecord s = station_on_face(c.face);
        double out = qtest::sentinel_double();
        EXPECT_EQ(LIB_Hight(&s, &m, c.first, c.second, &out, 1), 0);
        EXPECT_NEAR(out, 10.0, 1e-5) << int(c.face);
        EXPECT_EQ(LIB_Hight(&s, &m, c.second, c.second, &out, 1), 0);
        EXPECT_BITS(out, 0.0);
    }
}

TEST(RemoteHeight, RangeInModeOneOnly)
{
    const StationRecord s = station_on_face(1);
    const DistanceRecord m{10.0, 10.0, 0.0, 0.0};
    double out = 0.0;
    // A sight to the zenith: 10 / 0 is infinite and written before the test.
    EXPECT_EQ(LIB_Hight(&s, &m, 45.0 * DEG, 0.0, &out, 1), 2);
    EXPECT_BITS(out, INF);
    EXPECT_EQ(LIB_Hight(&s, &m, 0.0, 45.0 * DEG, &out, 1), 2);
    EXPECT_BITS(out, -INF);
    // Both to the zenith: infinity minus infinity is not a number, which the
    // two comparisons let through.
    EXPECT_EQ(LIB_Hight(&s, &m, 0.0, 0.0, &out, 1), 0);
    EXPECT_TRUE(std::isnan(out));
}

TEST(RemoteHeight, OtherModesLeaveOutAlone)
{
    const StationRecord s = station_on_face(1);
    const DistanceRecord m{10.0, 10.0, 0.0, 0.0};
    for (unsigned char mode : {2, 3, 255}) {
        double out = qtest::sentinel_double();
        EXPECT_EQ(LIB_Hight(&s, &m, 45.0 * DEG, 0.0, &out, mode), 0);
        EXPECT_TRUE(qtest::untouched(out));
    }
}
