// Offset points by angle, by distances and by extension of a line, and the
// sighting of the offset point from the instrument.
#include "bits.hpp"
#include "field/sighting.hpp"
#include "records.hpp"

namespace {

// Target height 2.0: the sight's height differences come out exact.
StationRecord station(double x, double y, double h, signed char b = 1)
{
    return qtest::station(x, y, h, 1, b, 1.5, 2.0);
}

bool point_is(const DistAngleRecord& out, double x, double y, double h)
{
    return qtest::same_double(out.X, x) && qtest::same_double(out.Y, y) &&
           qtest::same_double(out.H, h);
}

} // namespace

TEST(Sighting, HalfCircleTurnKeepsAFullCircle)
{
    const double cases[][2] = {
        {0, 648000}, {648000, 1296000}, {648000.5, 0.5}, {1295999, 647999}, {-10, 647990}};
    for (const auto& c : cases) {
        EXPECT_BITS(quillon::turn_reading_half_circle(c[0]), c[1]);
    }
}

TEST(OffsetDist1, MeasuredOrKnownReference)
{
    const StationRecord s = station(1000, 2000, 100), face2 = station(0, 0, 0, -1);
    const DistanceRecord m = qtest::shot(30.1, 30.0, 2.0), m10 = qtest::shot(10, 10, 0);
    const SurveyPoint north{1020, 2000, 102}; // azimuth exactly 0
    const double reading = 162000.0, south = 648000.0;
    const double zero[] = {0, 0, 0}, moved[] = {-2.0, 3.0, -0.5}, right[] = {1, 2, 0};
    // Zero offsets give the measured point itself.
    SurveyPoint measured{};
    ASSERT_EQ(LIB_MeasCoor(&s, &m, &reading, &measured), 0);
    DistAngleRecord out = qtest::sentinel_filled<DistAngleRecord>();
    EXPECT_EQ(LIB_OS_Dist1(&s, &m, &reading, nullptr, zero, &out, 0), 0);
    EXPECT_TRUE(point_is(out, measured.X, measured.Y, measured.H));
    EXPECT_NEAR(out.Azimuth, 162000.0, 1e-4);
    EXPECT_EQ(LIB_OS_Dist1(&s, nullptr, nullptr, &north, moved, &out, 1), 0);
    EXPECT_TRUE(point_is(out, 1023.0, 1998.0, 101.5));
    // Face II: a reading of 648000 points north, the zenith angle reads face II.
    EXPECT_EQ(LIB_OS_Dist1(&face2, &m10, &south, nullptr, right, &out, 0), 0);
    EXPECT_NEAR(out.X, 12.0, 1e-5);
    EXPECT_NEAR(out.Y, 1.0, 1e-5);
    EXPECT_NEAR(out.Azimuth, 648000.0 + 17149.11, 0.05); // atan(1 / 12) past south
    EXPECT_GT(out.ZenithAngle, 648000.0);
}

TEST(OffsetDist1, FailurePaths)
{
    const StationRecord s = station(1000, 0, 10);
    const DistanceRecord m = qtest::shot(10, 10, 0), far = qtest::shot(2e8, 2e8, 0);
    const double reading = 0.0;
    const SurveyPoint above{1000, 0, 50}, north{1001, 0, 10};
    const double none[] = {0, 0, 0}, too_far[] = {0, 2e8, 0}, back[] = {0, -1, 0};
    DistAngleRecord out = qtest::sentinel_filled<DistAngleRecord>();
    EXPECT_EQ(LIB_OS_Dist1(&s, &m, &reading, &above, none, &out, 1), 1);
    EXPECT_EQ(LIB_OS_Dist1(&s, &m, &reading, &north, none, &out, 2), 1);
    EXPECT_EQ(LIB_OS_Dist1(&s, &far, &reading, &north, none, &out, 0), 2);
    EXPECT_TRUE(qtest::untouched(out));
    // The offset point out of range: written, not sighted.
    EXPECT_EQ(LIB_OS_Dist1(&s, &m, &reading, &north, too_far, &out, 1), 2);
    EXPECT_TRUE(point_is(out, 1001.0 + 2e8, 0, 10));
    EXPECT_TRUE(qtest::untouched(out.HorizontalDistance) && qtest::untouched(out.ZenithAngle));
    // Back onto the instrument's plumb line: written, distances too, no angles.
    EXPECT_EQ(LIB_OS_Dist1(&s, &m, &reading, &north, back, &out, 1), 3);
    EXPECT_TRUE(point_is(out, 1000, 0, 10));
    EXPECT_TRUE(out.HorizontalDistance == 0.0 && out.HeightDifference == 0.5);
    EXPECT_TRUE(qtest::untouched(out.Azimuth) && qtest::untouched(out.ZenithAngle));
}

TEST(OffsetDist2, PointsOnTheLineAndFailures)
{
    const StationRecord s = station(-10, -10, 0), west = station(-9e7, 0, 0);
    const SurveyPoint line[] = {{0, 0, 0}, {3, 4, 0}}, plumb[] = {{5, 6, 1}, {5, 6, 4}};
    const SurveyPoint same[] = {{1, 2, 3}, {1, 2, 3}}, through[] = {{-10, -8, 0}, {-10, -9, 0}};
    const SurveyPoint east[] = {{8e7, 0, 0}, {9e7, 0, 0}}; // a sight 180000 km long
    struct Case {
        const StationRecord* s;
        const SurveyPoint* line;
        double extension;
        int status;
        double x, y, h, horizontal;
    };
    const Case cases[] = {{&s, line, 0.0, 0, 3, 4, 0, 19.1049731745428},
                          {&s, line, 5.0, 0, 6, 8, 0, 24.08318915758459},
                          {&s, plumb, 2.0, 0, 5, 6, 6, 21.93171219946131}, // only H moves
                          {&s, through, 1.0, 3, -10, -10, 0, 0},
                          {&west, east, 0.0, 3, 9e7, 0, 0, 1.8e8}};
    for (const Case& c : cases) {
        DistAngleRecord out = qtest::sentinel_filled<DistAngleRecord>();
        EXPECT_EQ(LIB_OS_Dist2(c.s, c.line, c.extension, &out), c.status);
        EXPECT_TRUE(point_is(out, c.x, c.y, c.h));
        EXPECT_BITS(out.HorizontalDistance, c.horizontal);
        EXPECT_EQ(qtest::untouched(out.Azimuth), c.status != 0);
    }
    DistAngleRecord out = qtest::sentinel_filled<DistAngleRecord>();
    EXPECT_EQ(LIB_OS_Dist2(&s, same, 1.0, &out), 1);
    EXPECT_EQ(LIB_OS_Dist2(&s, line, 2e8, &out), 2);
    EXPECT_TRUE(qtest::untouched(out));
}

TEST(OffsetAngle, MeasuredOrKnownDistanceWithTheCentreAngles)
{
    // The centre of a tree 25 m due east, 45 degrees up.
    const StationRecord s = station(100, 200, 10);
    const DistanceRecord m = qtest::shot(0.0, 25.0, 0.0);
    const double angles[] = {324000.0, 162000.0};
    DistAngleRecord out = qtest::sentinel_filled<DistAngleRecord>();
    EXPECT_EQ(LIB_OS_Angle(&s, &m, angles, nullptr, &out, 0), 0);
    EXPECT_NEAR(out.Y, 225.0, 1e-9);
    EXPECT_NEAR(out.H, 34.5, 1e-5); // 10 + 1.5 + 25 - 2
    EXPECT_NEAR(out.SlopeDistance, 35.3553391, 1e-5);
    EXPECT_TRUE(out.HorizontalDistance == 25 && out.Azimuth == 324000 && out.ZenithAngle == 162000);
    // Mode 1: the plan distance to the known point, whose H is raised each call.
    SurveyPoint known{115.0, 220.0, 5.0};
    EXPECT_EQ(LIB_OS_Angle(&s, nullptr, angles, &known, &out, 1), 0);
    EXPECT_BITS(out.HorizontalDistance, 25.0);
    EXPECT_EQ(LIB_OS_Angle(&s, nullptr, angles, &known, &out, 1), 0);
    EXPECT_TRUE(known.X == 115.0 && known.H == 9.0);
    // Out of range (a sight to the zenith: infinite slope distance), after
    // the raise in mode 1.
    const DistanceRecord far = qtest::shot(0.0, 2e8, 0.0);
    const double up[] = {0.0, 0.0};
    out = qtest::sentinel_filled<DistAngleRecord>();
    EXPECT_EQ(LIB_OS_Angle(&s, &m, up, &known, &out, 0), 2);
    EXPECT_EQ(LIB_OS_Angle(&s, &far, angles, &known, &out, 0), 2);
    EXPECT_EQ(LIB_OS_Angle(&s, &m, up, &known, &out, 1), 2);
    EXPECT_TRUE(qtest::untouched(out));
    EXPECT_BITS(known.H, 11.0);
}
