// Offset points by angle, by distances and by extension of a line.
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

TEST(OffsetDistances, ReferencePointsLinesAndFailures)
{
    // A half-circle turn of a reading folds strictly.
    EXPECT_BITS(quillon::turn_reading_half_circle(648000), 1296000);
    EXPECT_BITS(quillon::turn_reading_half_circle(648000.5), 0.5);
    EXPECT_BITS(quillon::turn_reading_half_circle(-10), 647990);
    const StationRecord s = station(1000, 2000, 100), face2 = station(0, 0, 0, -1);
    const DistanceRecord m = qtest::shot(30.1, 30.0, 2.0), m10 = qtest::shot(10, 10, 0);
    const SurveyPoint north{1020, 2000, 102}, above{1000, 2000, 150}; // azimuth exactly 0
    const double reading = 162000.0, south = 648000.0, far[] = {0, 2e8, 0}, back[] = {0, -20, 0};
    const double zero[] = {0, 0, 0}, moved[] = {-2.0, 3.0, -0.5}, right[] = {1, 2, 0};
    SurveyPoint measured{}; // zero offsets give the measured point itself
    ASSERT_EQ(LIB_MeasCoor(&s, &m, &reading, &measured), 0);
    DistAngleRecord out = qtest::sentinel_filled<DistAngleRecord>();
    EXPECT_EQ(LIB_OS_Dist1(&s, &m, &reading, &above, zero, &out, 1), 1);
    EXPECT_EQ(LIB_OS_Dist1(&s, &m, &reading, &north, zero, &out, 2), 1);
    const DistanceRecord beyond = qtest::shot(2e8, 2e8, 0);
    EXPECT_EQ(LIB_OS_Dist1(&s, &beyond, &reading, &north, zero, &out, 0), 2);
    EXPECT_TRUE(qtest::untouched(out));
    // Out of range: written, not sighted. Onto the plumb line: no angles.
    EXPECT_EQ(LIB_OS_Dist1(&s, &m, &reading, &north, far, &out, 1), 2);
    EXPECT_TRUE(point_is(out, 1020.0 + 2e8, 2000, 102) && qtest::untouched(out.HorizontalDistance));
    EXPECT_EQ(LIB_OS_Dist1(&s, &m, &reading, &north, back, &out, 1), 3);
    EXPECT_TRUE(point_is(out, 1000, 2000, 102) && out.HorizontalDistance == 0.0);
    EXPECT_TRUE(qtest::untouched(out.Azimuth) && qtest::untouched(out.ZenithAngle));
    EXPECT_EQ(LIB_OS_Dist1(&s, &m, &reading, nullptr, zero, &out, 0), 0);
    EXPECT_TRUE(point_is(out, measured.X, measured.Y, measured.H));
    EXPECT_NEAR(out.Azimuth, 162000.0, 1e-4);
    EXPECT_EQ(LIB_OS_Dist1(&s, nullptr, nullptr, &north, moved, &out, 1), 0);
    EXPECT_TRUE(point_is(out, 1023.0, 1998.0, 101.5));
    // Face II: a reading of 648000 points north; atan(1 / 12) past south.
    EXPECT_EQ(LIB_OS_Dist1(&face2, &m10, &south, nullptr, right, &out, 0), 0);
    EXPECT_TRUE(std::hypot(out.X - 12.0, out.Y - 1.0) < 1e-5 && out.ZenithAngle > 648000.0);
    EXPECT_NEAR(out.Azimuth, 648000.0 + 17149.11, 0.05);
    // Station, line, extension, status, x, y, h: along a line, past its end,
    // a plumb line, back onto the station, a sight of 1.8e8 m, a line of one
    // point, out of range.
    const StationRecord stations[] = {station(-10, -10, 0), station(-9e7, 0, 0)};
    const SurveyPoint lines[][2] = {{{0, 0, 0}, {3, 4, 0}},
                                    {{5, 6, 1}, {5, 6, 4}},
                                    {{-10, -8, 0}, {-10, -9, 0}},
                                    {{8e7, 0, 0}, {9e7, 0, 0}},
                                    {{1, 2, 3}, {1, 2, 3}}};
    const double cases[][7] = {{0, 0, 0, 0, 3, 4, 0},   {0, 0, 5, 0, 6, 8, 0},
                               {0, 1, 2, 0, 5, 6, 6},   {0, 2, 1, 3, -10, -10, 0},
                               {1, 3, 0, 3, 9e7, 0, 0}, {0, 4, 1, 1},
                               {0, 0, 2e8, 2}};
    for (const auto& c : cases) {
        out = qtest::sentinel_filled<DistAngleRecord>();
        const int status = static_cast<int>(c[3]);
        EXPECT_EQ(LIB_OS_Dist2(&stations[int(c[0])], lines[int(c[1])], c[2], &out), status);
        EXPECT_EQ(qtest::untouched(out.Azimuth), status != 0);
        EXPECT_TRUE(c[1] + c[2] != 0 || out.HorizontalDistance == 19.1049731745428);
        EXPECT_TRUE((status == 1 || status == 2) ? qtest::untouched(out)
                                                 : point_is(out, c[4], c[5], c[6]));
    }
}

TEST(OffsetAngle, MeasuredOrKnownDistanceWithTheCentreAngles)
{
    // The centre of a tree 25 m due east, 45 degrees up: H = 10 + 1.5 + 25 - 2.
    const StationRecord s = station(100, 200, 10);
    const DistanceRecord m = qtest::shot(0.0, 25.0, 0.0);
    const double angles[] = {324000.0, 162000.0}, up[] = {0.0, 0.0};
    DistAngleRecord out = qtest::sentinel_filled<DistAngleRecord>();
    EXPECT_EQ(LIB_OS_Angle(&s, &m, angles, nullptr, &out, 0), 0);
    EXPECT_TRUE(std::fabs(out.Y - 225.0) < 1e-9 && std::fabs(out.H - 34.5) < 1e-5);
    EXPECT_TRUE(out.HorizontalDistance == 25 && out.Azimuth == 324000 &&
                out.ZenithAngle == 162000 && std::fabs(out.SlopeDistance - 35.3553391) < 1e-5);
    // Mode 1: the plan distance to the known point, whose H is raised on
    // every call, even out of range (a sight to the zenith).
    SurveyPoint known{115.0, 220.0, 5.0};
    EXPECT_EQ(LIB_OS_Angle(&s, nullptr, angles, &known, &out, 1), 0);
    EXPECT_BITS(out.HorizontalDistance, 25.0);
    out = qtest::sentinel_filled<DistAngleRecord>();
    EXPECT_EQ(LIB_OS_Angle(&s, &m, up, &known, &out, 0), 2);
    EXPECT_EQ(LIB_OS_Angle(&s, &m, up, &known, &out, 1), 2);
    EXPECT_TRUE(qtest::untouched(out) && known.X == 115.0 && known.H == 9.0);
}
