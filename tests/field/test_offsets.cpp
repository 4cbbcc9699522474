// Offset points by angle, by distances and by extension of a line, and the
// sighting of the offset point from the instrument.
#include "bits.hpp"
#include "field/sighting.hpp"
#include "quillon.h"

#include <cmath>

namespace {

const double NORTH_EAST = 162000.0; // 45 degrees

StationRecord station_at(double x, double y, double h, signed char a, signed char b)
{
    StationRecord s{};
    s.X = x;
    s.Y = y;
    s.H = h;
    s.InstrumentHeight = 1.5;
    s.TargetHeight = 2.0;
    s.signA = a;
    s.signB = b;
    return s;
}

// True when the sighting fields (distances, angles) hold the sentinel.
bool sight_untouched(const DistAngleRecord& out)
{
    return qtest::untouched(out.SlopeDistance) && qtest::untouched(out.HorizontalDistance) &&
           qtest::untouched(out.HeightDifference) && qtest::untouched(out.Azimuth) &&
           qtest::untouched(out.ZenithAngle);
}

} // namespace

TEST(Sighting, HalfCircleTurn)
{
    struct Case {
        double reading, turned;
    };
    // Only a sum strictly above a full circle is reduced: 648000 gives 1296000.
    const Case cases[] = {{0.0, 648000.0},
                          {648000.0, 1296000.0},
                          {648000.5, 0.5},
                          {1295999.0, 647999.0},
                          {-10.0, 647990.0}};
    for (const Case& c : cases) {
        EXPECT_BITS(quillon::turn_reading_half_circle(c.reading), c.turned);
    }
}

TEST(Sighting, FaceTwoTurnsAzimuthAndZenith)
{
    // Point 10 m due north, level with the instrument once the target height
    // is added: 1.5 + 100 = 2.0 + 99.5.
    const SurveyPoint point{110.0, 50.0, 99.5};
    const StationRecord face1 = station_at(100, 50, 100, 1, 1);
    const StationRecord face2 = station_at(100, 50, 100, 1, -1);
    DistAngleRecord out1 = qtest::sentinel_filled<DistAngleRecord>();
    DistAngleRecord out2 = qtest::sentinel_filled<DistAngleRecord>();
    EXPECT_EQ(quillon::sight_offset_point(face1, point, &out1), 0);
    EXPECT_EQ(quillon::sight_offset_point(face2, point, &out2), 0);
    EXPECT_TRUE(qtest::untouched(out1.X) && qtest::untouched(out1.Y) && qtest::untouched(out1.H));
    EXPECT_BITS(out1.HorizontalDistance, 10.0);
    EXPECT_BITS(out1.SlopeDistance, 10.0);
    EXPECT_BITS(out1.HeightDifference, 0.0);
    EXPECT_BITS(out1.Azimuth, 0.0);
    EXPECT_BITS(out2.Azimuth, 648000.0);
    EXPECT_BITS(out1.ZenithAngle + out2.ZenithAngle, 1296000.0);
}

TEST(OffsetDist1, ZeroOffsetsReturnTheMeasuredPoint)
{
    const StationRecord s = station_at(1000, 2000, 100, 1, 1);
    const DistanceRecord m{30.1, 30.0, 2.0, 0.0};
    const double reading = NORTH_EAST;
    const double offsets[] = {0.0, 0.0, 0.0};
    SurveyPoint measured{};
    ASSERT_EQ(LIB_MeasCoor(&s, &m, &reading, &measured), 0);
    DistAngleRecord out = qtest::sentinel_filled<DistAngleRecord>();
    EXPECT_EQ(LIB_OS_Dist1(&s, &m, &reading, nullptr, offsets, &out, 0), 0);
    EXPECT_BITS(out.X, measured.X);
    EXPECT_BITS(out.Y, measured.Y);
    EXPECT_BITS(out.H, measured.H);
    EXPECT_NEAR(out.HorizontalDistance, 30.0, 1e-9);
    EXPECT_NEAR(out.HeightDifference, 2.0, 1e-9);
    EXPECT_NEAR(out.Azimuth, NORTH_EAST, 1e-4);
}

TEST(OffsetDist1, OffsetsAlongAndAcrossTheSight)
{
    // Known point due north of the station: azimuth exactly 0.
    const StationRecord s = station_at(0, 0, 10, 1, 1);
    const SurveyPoint known{20.0, 0.0, 12.0};
    struct Case {
        double right, forward, height;
        SurveyPoint expected;
    };
    const Case cases[] = {
        {1.0, 0.0, 0.0, {20.0, 1.0, 12.0}},
        {-2.0, 3.0, -0.5, {23.0, -2.0, 11.5}},
    };
    for (const Case& c : cases) {
        const double offsets[] = {c.right, c.forward, c.height};
        DistAngleRecord out = qtest::sentinel_filled<DistAngleRecord>();
        EXPECT_EQ(LIB_OS_Dist1(&s, nullptr, nullptr, &known, offsets, &out, 1), 0);
        EXPECT_BITS(out.X, c.expected.X);
        EXPECT_BITS(out.Y, c.expected.Y);
        EXPECT_BITS(out.H, c.expected.H);
    }
}

TEST(OffsetDist1, FailurePaths)
{
    const StationRecord s = station_at(1000, 0, 10, 1, 1);
    const DistanceRecord m{10.0, 10.0, 0.0, 0.0};
    const DistanceRecord far{2e8, 2e8, 0.0, 0.0};
    const double reading = 0.0;
    const SurveyPoint above{1000, 0, 50};
    const SurveyPoint north{1001, 0, 10};
    const double none[] = {0.0, 0.0, 0.0};
    const double too_far[] = {0.0, 2e8, 0.0};
    const double back_to_station[] = {0.0, -1.0, 0.0};

    DistAngleRecord out = qtest::sentinel_filled<DistAngleRecord>();
    EXPECT_EQ(LIB_OS_Dist1(&s, &m, &reading, &above, none, &out, 1), 1);
    EXPECT_TRUE(qtest::untouched(out));
    EXPECT_EQ(LIB_OS_Dist1(&s, &m, &reading, &north, none, &out, 2), 1);
    EXPECT_TRUE(qtest::untouched(out));
    // The measured point itself is beyond the range limit.
    EXPECT_EQ(LIB_OS_Dist1(&s, &far, &reading, &north, none, &out, 0), 2);
    EXPECT_TRUE(qtest::untouched(out));

    // The offset point out of range: written, not sighted.
    EXPECT_EQ(LIB_OS_Dist1(&s, &m, &reading, &north, too_far, &out, 1), 2);
    EXPECT_BITS(out.X, 1001.0 + 2e8);
    EXPECT_BITS(out.Y, 0.0);
    EXPECT_TRUE(sight_untouched(out));

    // Moved back onto the instrument's plumb line: no direction to it.
    out = qtest::sentinel_filled<DistAngleRecord>();
    EXPECT_EQ(LIB_OS_Dist1(&s, &m, &reading, &north, back_to_station, &out, 1), 3);
    EXPECT_BITS(out.X, 1000.0);
    EXPECT_BITS(out.Y, 0.0);
    EXPECT_BITS(out.H, 10.0);
    EXPECT_BITS(out.HorizontalDistance, 0.0);
    EXPECT_BITS(out.HeightDifference, 0.5);
    EXPECT_TRUE(qtest::untouched(out.Azimuth) && qtest::untouched(out.ZenithAngle));
}

TEST(OffsetDist1, FaceTwoReadingIsTurned)
{
    // A face II reading of 648000 points north: the offsets follow it.
    const StationRecord s = station_at(0, 0, 0, 1, -1);
    const DistanceRecord m{10.0, 10.0, 0.0, 0.0};
    const double reading = 648000.0;
    const double offsets[] = {1.0, 2.0, 0.0};
    DistAngleRecord out = qtest::sentinel_filled<DistAngleRecord>();
    EXPECT_EQ(LIB_OS_Dist1(&s, &m, &reading, nullptr, offsets, &out, 0), 0);
    EXPECT_NEAR(out.X, 12.0, 1e-5);
    EXPECT_NEAR(out.Y, 1.0, 1e-5);
    // The point sits within a micrometre of (12, 1): a few hundredths of a
    // second in the reported direction.
    EXPECT_NEAR(out.Azimuth, 648000.0 + std::atan2(1.0, 12.0) * 206264.8097655947, 0.05);
}

TEST(OffsetDist2, PointOnTheExtendedLine)
{
    const StationRecord s = station_at(-10, -10, 0, 1, 1);
    struct Case {
        SurveyPoint a, b;
        double extension;
        SurveyPoint expected;
    };
    const Case cases[] = {
        {{0, 0, 0}, {3, 4, 0}, 5.0, {6, 8, 0}},
        {{0, 0, 0}, {3, 4, 0}, -5.0, {0, 0, 0}},
        {{0, 0, 0}, {3, 4, 0}, 0.0, {3, 4, 0}},
        {{5, 6, 1}, {5, 6, 4}, 2.0, {5, 6, 6}}, // a plumb line: only H moves
    };
    for (const Case& c : cases) {
        const SurveyPoint line[] = {c.a, c.b};
        DistAngleRecord out = qtest::sentinel_filled<DistAngleRecord>();
        EXPECT_EQ(LIB_OS_Dist2(&s, line, c.extension, &out), 0);
        EXPECT_NEAR(out.X, c.expected.X, 1e-12);
        EXPECT_NEAR(out.Y, c.expected.Y, 1e-12);
        EXPECT_NEAR(out.H, c.expected.H, 1e-12);
        if (c.extension == 0.0) {
            EXPECT_BITS(out.X, c.b.X);
            EXPECT_BITS(out.Y, c.b.Y);
            EXPECT_BITS(out.H, c.b.H);
        }
        EXPECT_FALSE(sight_untouched(out));
    }
}

TEST(OffsetDist2, FailurePaths)
{
    const StationRecord s = station_at(0, 0, 0, 1, 1);
    const SurveyPoint same[] = {{1, 2, 3}, {1, 2, 3}};
    const SurveyPoint line[] = {{1, 0, 0}, {2, 0, 0}};
    const SurveyPoint through_station[] = {{0, 2, 0}, {0, 1, 0}};
    DistAngleRecord out = qtest::sentinel_filled<DistAngleRecord>();
    EXPECT_EQ(LIB_OS_Dist2(&s, same, 1.0, &out), 1);
    EXPECT_TRUE(qtest::untouched(out));
    EXPECT_EQ(LIB_OS_Dist2(&s, line, 2e8, &out), 2);
    EXPECT_TRUE(qtest::untouched(out));
    EXPECT_EQ(LIB_OS_Dist2(&s, through_station, 1.0, &out), 3);
    EXPECT_BITS(out.X, 0.0);
    EXPECT_BITS(out.Y, 0.0);
    EXPECT_BITS(out.HeightDifference, 0.5);
    EXPECT_TRUE(qtest::untouched(out.Azimuth));
}

TEST(OffsetAngle, MeasuredDistanceWithTheCentreAngles)
{
    const StationRecord s = station_at(100, 200, 10, 1, 1);
    const DistanceRecord m{0.0, 25.0, 0.0, 0.0};
    // Centre of a tree 25 m due east (a reading of 90 degrees), 45 degrees
    // up; the prism stood at the tree's front.
    const double angles[] = {324000.0, 162000.0};
    DistAngleRecord out = qtest::sentinel_filled<DistAngleRecord>();
    EXPECT_EQ(LIB_OS_Angle(&s, &m, angles, nullptr, &out, 0), 0);
    EXPECT_NEAR(out.X, 100.0, 1e-5);
    EXPECT_NEAR(out.Y, 225.0, 1e-9);
    EXPECT_NEAR(out.H, 10.0 + 1.5 + 25.0 - 2.0, 1e-5);
    EXPECT_NEAR(out.SlopeDistance, 25.0 * std::sqrt(2.0), 1e-5);
    EXPECT_BITS(out.HorizontalDistance, 25.0);
    EXPECT_NEAR(out.HeightDifference, 25.0, 1e-5);
    EXPECT_BITS(out.Azimuth, 324000.0);
    EXPECT_BITS(out.ZenithAngle, 162000.0);
}

TEST(OffsetAngle, KnownPointIsRaisedOnEveryCall)
{
    const StationRecord s = station_at(0, 0, 0, 1, 1);
    SurveyPoint known{30.0, 40.0, 5.0};
    const double angles[] = {0.0, 324000.0};
    DistAngleRecord out = qtest::sentinel_filled<DistAngleRecord>();
    EXPECT_EQ(LIB_OS_Angle(&s, nullptr, angles, &known, &out, 1), 0);
    EXPECT_BITS(known.H, 7.0);
    EXPECT_BITS(out.HorizontalDistance, 50.0);
    EXPECT_EQ(LIB_OS_Angle(&s, nullptr, angles, &known, &out, 1), 0);
    EXPECT_BITS(known.H, 9.0);
    EXPECT_BITS(known.X, 30.0);
}

TEST(OffsetAngle, PointOutOfRange)
{
    const StationRecord s = station_at(0, 0, 0, 1, 1);
    const DistanceRecord m{0.0, 25.0, 0.0, 0.0};
    const DistanceRecord far{0.0, 2e8, 0.0, 0.0};
    const double zenith_up[] = {0.0, 0.0}; // infinite slope distance
    const double level[] = {0.0, 324000.0};
    SurveyPoint known{0.0, 0.0, 0.0};
    DistAngleRecord out = qtest::sentinel_filled<DistAngleRecord>();
    EXPECT_EQ(LIB_OS_Angle(&s, &m, zenith_up, &known, &out, 0), 2);
    EXPECT_TRUE(qtest::untouched(out));
    EXPECT_EQ(LIB_OS_Angle(&s, &far, level, &known, &out, 0), 2);
    EXPECT_TRUE(qtest::untouched(out));
    // Mode 1 has raised the known point before failing.
    EXPECT_EQ(LIB_OS_Angle(&s, &m, zenith_up, &known, &out, 1), 2);
    EXPECT_TRUE(qtest::untouched(out));
    EXPECT_BITS(known.H, 2.0);
}

TEST(OffsetDist2, SightBeyondTheRangeLimitIsRefused)
{
    // Both ends in range, 180000 km apart: the sight's distances are not.
    const StationRecord s = station_at(-9e7, 0, 0, 1, 1);
    const SurveyPoint line[] = {{8e7, 0, 0}, {9e7, 0, 0}};
    DistAngleRecord out = qtest::sentinel_filled<DistAngleRecord>();
    EXPECT_EQ(LIB_OS_Dist2(&s, line, 0.0, &out), 3);
    EXPECT_BITS(out.X, 9e7);
    EXPECT_BITS(out.HorizontalDistance, 1.8e8);
    EXPECT_BITS(out.SlopeDistance, 1.8e8);
    EXPECT_BITS(out.HeightDifference, 0.5);
    EXPECT_TRUE(qtest::untouched(out.Azimuth) && qtest::untouched(out.ZenithAngle));
}
