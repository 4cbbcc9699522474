// Offsets along the line of sight and by horizontal angle to a wall line.
#include "bits.hpp"
#include "records.hpp"

#include <cmath>

TEST(SlopeDistanceOffset, MeasuredModeAndTheBranchBeyondTheInstrument)
{
    // Measured 10 m slope, 9 m horizontal, 4 m vertical at direction 0. An
    // offset of 0 gives the measured point: (9, 0, ((1.5 + 4) + 0) - 1.25).
    const DistanceRecord measured = qtest::shot(10.0, 9.0, 4.0);
    const struct {
        signed char face;
        double zenith, offset, slope, direction, zenith_out;
    } cases[] = {
        {1, 300000, 0, 10, 0, 300000},         // the measured point itself
        {1, 300000, -10, 0, 0, 300000},        // at the instrument: not beyond
        {1, 300000, -12, 2, 648000, 348000},   // beyond: turned and mirrored
        {-1, 900000, -12, 2, 648000, 1044000}, // the same on face II
    };
    for (const auto& c : cases) {
        const StationRecord st = qtest::station(0.0, 0.0, 0.0, c.face, c.face, 1.5, 1.25);
        const double angles[2] = {0.0, c.zenith};
        double out[8];
        ASSERT_EQ(LIB_OS_SDist(&st, &measured, angles, nullptr, c.offset, out, 0), 0);
        EXPECT_BITS(out[3], c.slope);
        EXPECT_BITS(out[6], c.direction);
        EXPECT_BITS(out[7], c.zenith_out);
        if (c.offset == 0.0) {
            const double point[6] = {9.0, 0.0, 4.25, 10.0, 9.0, 4.0};
            for (int i = 0; i < 6; ++i) {
                EXPECT_BITS(out[i], point[i]) << i;
            }
        }
    }
    const StationRecord st = qtest::station(0.0, 0.0, 0.0);
    const double angles[2] = {0.0, 300000.0};
    double out[8];
    qtest::fill_sentinel(out);
    EXPECT_EQ(LIB_OS_SDist(&st, &measured, angles, nullptr, 2e8, out, 0), 2);
    EXPECT_TRUE(qtest::untouched(out));
}

TEST(SlopeDistanceOffset, KnownPointIsFoundAndRaisedOnEveryCall)
{
    const StationRecord st = qtest::station(0.0, 0.0, 0.0, 1, 1, 1.5, 1.25);
    SurveyPoint known{30.0, 40.0, 10.0};
    const DistanceRecord ahead = qtest::shot(1.0, 0.0, 0.0);
    double out[8];
    ASSERT_EQ(LIB_OS_SDist(&st, &ahead, nullptr, &known, 0.0, out, 1), 0);
    EXPECT_BITS(known.H, 11.25);
    EXPECT_NEAR(out[0], 30.0, 1e-9);
    EXPECT_NEAR(out[1], 40.0, 1e-9);
    EXPECT_NEAR(out[2], 10.0, 1e-9);
    // The measured slope distance alone decides the side: 0 with an offset
    // of -0.5 goes beyond the instrument although the point lies 50 m ahead.
    const DistanceRecord at_instrument = qtest::shot(0.0, 0.0, 0.0);
    ASSERT_EQ(LIB_OS_SDist(&st, &at_instrument, nullptr, &known, -0.5, out, 1), 0);
    EXPECT_BITS(known.H, 12.5);
    EXPECT_GT(out[6], 648000.0);
}

TEST(HorizontalAngleOffset, MeetsTheWallLine)
{
    // (15, -10, 6) lies a quarter of the way along. On face II the circle
    // reads half a circle round and the azimuth is turned back.
    const SurveyPoint wall[2] = {{10.0, -20.0, 5.0}, {30.0, 20.0, 9.0}};
    const SurveyPoint origin{0.0, 0.0, 0.0}, on_wall{15.0, -10.0, 6.0};
    double az = 0.0;
    ASSERT_EQ(LIB_CalAZ(&origin, &on_wall, &az), 0);
    for (signed char face : {1, -1}) {
        const StationRecord st = qtest::station(0.0, 0.0, 100.0, 1, face, 1.5, 1.25);
        DistAngleRecord out{};
        ASSERT_EQ(LIB_OS_Ha(&st, wall, face == 1 ? az : az + 648000.0, &out), 0);
        EXPECT_NEAR(out.X, 15.0, 1e-5);
        EXPECT_NEAR(out.Y, -10.0, 1e-5);
        EXPECT_NEAR(out.H, 6.0, 1e-5);
        EXPECT_NEAR(out.Azimuth, face == 1 ? az : az - 648000.0, 1e-1);
    }
}

TEST(HorizontalAngleOffset, Refusals)
{
    const struct {
        SurveyPoint p1, p2;
        double angle;
        int status;
    } cases[] = {
        {{10, -20, 0}, {30, 20, 0}, 648000, 5},    // crossing behind
        {{10, 10, 0}, {20, 20, 0}, 0, 3},          // line through the station
        {{0, 0, 0}, {20, 20, 0}, 0, 3},            // line ends on the station
        {{10, 0, 0}, {-10, 0, 0}, 100000, 3},      // station between the ends
        {{10, -5, 0}, {10, 5, 0}, 0, 2},           // constant northing
        {{0, 5, 0}, {10, 5, 0}, 0, 2},             // sight parallel to the line
        {{2e8 - 1, -1, 0}, {2e8 + 1, 1, 0}, 0, 2}, // crossing out of range
    };
    const StationRecord st = qtest::station(0.0, 0.0, 0.0);
    for (const auto& c : cases) {
        const SurveyPoint line[2] = {c.p1, c.p2};
        DistAngleRecord out = qtest::sentinel_filled<DistAngleRecord>();
        EXPECT_EQ(LIB_OS_Ha(&st, line, c.angle, &out), c.status) << c.p1.X << " " << c.angle;
        EXPECT_TRUE(qtest::untouched(out));
    }
}
