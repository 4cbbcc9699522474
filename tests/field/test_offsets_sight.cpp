// Offsets along the line of sight and by horizontal angle to a wall line.
#include "bits.hpp"
#include "quillon.h"

#include <cmath>

namespace {

StationRecord station_at(double x, double y, double h, signed char a, signed char b)
{
    StationRecord s{};
    s.X = x;
    s.Y = y;
    s.H = h;
    s.InstrumentHeight = 1.5;
    s.TargetHeight = 1.25;
    s.signA = a;
    s.signB = b;
    return s;
}

double azimuth(const SurveyPoint& from, const SurveyPoint& to)
{
    double az = 0.0;
    EXPECT_EQ(LIB_CalAZ(&from, &to, &az), 0);
    return az;
}

} // namespace

TEST(SlopeDistanceOffset, ZeroOffsetGivesTheMeasuredPoint)
{
    const StationRecord st = station_at(100.0, 200.0, 50.0, 1, 1);
    DistanceRecord measured{};
    LIB_DistConvert(&st, 1.0, 50.0, 300000.0, &measured);
    const double angles[2] = {100000.0, 300000.0};
    SurveyPoint expected{};
    ASSERT_EQ(LIB_MeasCoor(&st, &measured, &angles[0], &expected), 0);
    double out[8];
    ASSERT_EQ(LIB_OS_SDist(&st, &measured, angles, nullptr, 0.0, out, 0), 0);
    const double want[8] = {expected.X,
                            expected.Y,
                            expected.H,
                            measured.SlopeDistance,
                            measured.HorizontalDistance,
                            measured.VerticalDifference,
                            100000.0,
                            300000.0};
    for (int i = 0; i < 8; ++i) {
        EXPECT_BITS(out[i], want[i]) << i;
    }
}

TEST(SlopeDistanceOffset, BeyondTheInstrumentTurnsAndMirrorsTheSight)
{
    struct Case {
        signed char face;
        double zenith, offset;
        double slope, direction, mirrored;
    };
    const Case cases[] = {
        {1, 300000.0, -12.0, 2.0, 748000.0, 348000.0},
        {-1, 900000.0, -12.0, 2.0, 748000.0, 1044000.0},
        {1, 300000.0, -10.0, 0.0, 100000.0, 300000.0}, // exactly at the instrument: not beyond
    };
    for (const Case& c : cases) {
        const StationRecord st = station_at(0.0, 0.0, 0.0, c.face, c.face);
        const DistanceRecord measured{10.0, 9.0, 4.0, 0.0};
        const double angles[2] = {100000.0, c.zenith};
        double out[8];
        ASSERT_EQ(LIB_OS_SDist(&st, &measured, angles, nullptr, c.offset, out, 0), 0);
        EXPECT_BITS(out[3], c.slope);
        EXPECT_BITS(out[6], c.direction);
        EXPECT_BITS(out[7], c.mirrored);
    }
}

TEST(SlopeDistanceOffset, KnownPointIsFoundAndRaisedOnEveryCall)
{
    const StationRecord st = station_at(0.0, 0.0, 0.0, 1, 1);
    SurveyPoint known{30.0, 40.0, 10.0};
    // The measured slope distance only decides the side.
    const DistanceRecord measured{1.0, 0.0, 0.0, 0.0};
    double out[8];
    ASSERT_EQ(LIB_OS_SDist(&st, &measured, nullptr, &known, 0.0, out, 1), 0);
    EXPECT_BITS(known.H, 11.25);
    EXPECT_NEAR(out[0], 30.0, 1e-9);
    EXPECT_NEAR(out[1], 40.0, 1e-9);
    EXPECT_NEAR(out[2], 10.0, 1e-9);
    EXPECT_NEAR(out[4], 50.0, 1e-9);

    // A measured slope distance of 0 with a negative offset takes the branch
    // beyond the instrument, although the known point lies 50 m ahead.
    const DistanceRecord at_instrument{0.0, 0.0, 0.0, 0.0};
    ASSERT_EQ(LIB_OS_SDist(&st, &at_instrument, nullptr, &known, -0.5, out, 1), 0);
    EXPECT_BITS(known.H, 12.5);
    EXPECT_GT(out[6], 648000.0);
}

TEST(SlopeDistanceOffset, OutOfRangeLeavesOutUntouched)
{
    const StationRecord st = station_at(0.0, 0.0, 0.0, 1, 1);
    const DistanceRecord measured{10.0, 9.0, 4.0, 0.0};
    const double angles[2] = {0.0, 300000.0};
    double out[8];
    qtest::fill_sentinel(out);
    EXPECT_EQ(LIB_OS_SDist(&st, &measured, angles, nullptr, 2e8, out, 0), 2);
    EXPECT_TRUE(qtest::untouched(out));
}

TEST(HorizontalAngleOffset, MeetsTheWallLine)
{
    const SurveyPoint wall[2] = {{10.0, -20.0, 5.0}, {30.0, 20.0, 9.0}};
    const SurveyPoint on_wall{15.0, -10.0, 6.0}; // a quarter of the way from the first end
    for (signed char face : {1, -1}) {
        const StationRecord st = station_at(0.0, 0.0, 100.0, 1, face);
        const double az = azimuth({0.0, 0.0, 0.0}, on_wall);
        // On the other face the circle reads half a circle round.
        const double reading = face == 1 ? az : az + 648000.0;
        DistAngleRecord out = qtest::sentinel_filled<DistAngleRecord>();
        ASSERT_EQ(LIB_OS_Ha(&st, wall, reading, &out), 0);
        // The tangent of a reading turned by 3.1415926 differs by a few
        // micrometres at this distance.
        EXPECT_NEAR(out.X, 15.0, 1e-5);
        EXPECT_NEAR(out.Y, -10.0, 1e-5);
        EXPECT_NEAR(out.H, 6.0, 1e-5);
        EXPECT_NEAR(out.HorizontalDistance, std::sqrt(325.0), 1e-5);
        EXPECT_NEAR(out.HeightDifference, (6.0 + 1.25) - 101.5, 1e-5);
        // The point lies north-west: turned by a half circle, a full circle comes off.
        EXPECT_NEAR(out.Azimuth, face == 1 ? az : az - 648000.0, 1e-1);
    }
}

TEST(HorizontalAngleOffset, Refusals)
{
    struct Case {
        SurveyPoint p1, p2;
        double angle;
        int status;
    };
    const Case cases[] = {
        {{10.0, -20.0, 0.0}, {30.0, 20.0, 0.0}, 648000.0, 5},    // crossing behind
        {{10.0, 10.0, 0.0}, {20.0, 20.0, 0.0}, 0.0, 3},          // line through the station
        {{0.0, 0.0, 0.0}, {20.0, 20.0, 0.0}, 0.0, 3},            // line ends on the station
        {{10.0, 0.0, 0.0}, {-10.0, 0.0, 0.0}, 100000.0, 3},      // station between the ends
        {{10.0, -5.0, 0.0}, {10.0, 5.0, 0.0}, 0.0, 2},           // constant northing
        {{0.0, 5.0, 0.0}, {10.0, 5.0, 0.0}, 0.0, 2},             // sight parallel to the line
        {{2e8 - 1.0, -1.0, 0.0}, {2e8 + 1.0, 1.0, 0.0}, 0.0, 2}, // crossing out of range
    };
    const StationRecord st = station_at(0.0, 0.0, 0.0, 1, 1);
    for (const Case& c : cases) {
        const SurveyPoint line[2] = {c.p1, c.p2};
        DistAngleRecord out = qtest::sentinel_filled<DistAngleRecord>();
        EXPECT_EQ(LIB_OS_Ha(&st, line, c.angle, &out), c.status) << c.p1.X << " " << c.angle;
        EXPECT_TRUE(qtest::untouched(out));
    }
}
