// Slope reduction, line components and the combined scale factor.
#include "bits.hpp"
#include "quillon.h"

#include <cmath>
#include <limits>

namespace {

const double NaN = std::numeric_limits<double>::quiet_NaN();
const double LIMIT = 99999999.9999;

StationRecord station_with(unsigned char refraction_mode)
{
    StationRecord s{};
    s.InstrumentHeight = 1.6;
    s.TargetHeight = 1.3;
    s.signA = 1;
    s.signB = 1;
    s.refractionMode = refraction_mode;
    return s;
}

} // namespace

TEST(DistConvert, LevelSightWithoutCorrection)
{
    // cos(324000 * RAD_PER_SEC) is not 0: pi is taken as 3.1415926.
    const StationRecord s = station_with(0);
    DistanceRecord out = qtest::sentinel_filled<DistanceRecord>();
    EXPECT_EQ(LIB_DistConvert(&s, 1.0, 100.0, 324000.0, &out), 0);
    EXPECT_BITS(out.SlopeDistance, 100.0);
    EXPECT_BITS(out.HorizontalDistance, 99.99999999999997);
    EXPECT_BITS(out.VerticalDifference, 2.6794896585028634e-06);
    EXPECT_NEAR(out.VerticalDifference / 100.0, 2.68e-8, 1e-10);
    EXPECT_BITS(out.HeightDifference, (1.6 + out.VerticalDifference) - 1.3);
}

TEST(DistConvert, FaceTwoGivesPositiveHorizontalDistance)
{
    const StationRecord s = station_with(0);
    DistanceRecord face1{};
    DistanceRecord face2{};
    LIB_DistConvert(&s, 1.0, 250.0, 324000.0, &face1);
    LIB_DistConvert(&s, 1.0, 250.0, 972000.0, &face2);
    EXPECT_GT(face2.HorizontalDistance, 0.0);
    EXPECT_NEAR(face2.HorizontalDistance / face1.HorizontalDistance, 1.0, 1e-14);
}

TEST(DistConvert, RefractionModes)
{
    // A 1 km sight at 80 gon zenith: horizontal shortened, vertical raised.
    const double S = 1000.0;
    const double Z = 291600.0;
    DistanceRecord none{};
    const StationRecord s0 = station_with(0);
    LIB_DistConvert(&s0, 1.0, S, Z, &none);
    struct Case {
        unsigned char mode;
        double ch, cv;
    };
    const Case cases[] = {{1, 1.4599686028257456e-07, 6.75039246467818e-08},
                          {2, 1.4128728414442702e-07, 6.279434850863422e-08},
                          {3, 0.0, 0.0},
                          {255, 0.0, 0.0}};
    for (const Case& c : cases) {
        const StationRecord s = station_with(c.mode);
        DistanceRecord out{};
        LIB_DistConvert(&s, 1.0, S, Z, &out);
        const double h = none.HorizontalDistance;
        const double v = none.VerticalDifference;
        EXPECT_BITS(out.HorizontalDistance, h - (c.ch * h) * v);
        EXPECT_BITS(out.VerticalDifference, (c.cv * h) * h + v);
    }
}

TEST(DistConvert, ScaleBandIsStrict)
{
    const StationRecord s = station_with(0);
    DistanceRecord unscaled{};
    LIB_DistConvert(&s, 0.0, 500.0, 300000.0, &unscaled);
    struct Case {
        double scale;
        bool applied;
    };
    const Case cases[] = {{0.99, false},  {1.01, false}, {std::nextafter(0.99, 1.0), true},
                          {1.0099, true}, {1.0, true},   {0.0, false},
                          {NaN, false},   {-1.0, false}};
    for (const Case& c : cases) {
        DistanceRecord out{};
        EXPECT_EQ(LIB_DistConvert(&s, c.scale, 500.0, 300000.0, &out), 0);
        EXPECT_BITS(out.HorizontalDistance,
                    c.applied ? unscaled.HorizontalDistance * c.scale : unscaled.HorizontalDistance)
            << c.scale;
        EXPECT_BITS(out.VerticalDifference, unscaled.VerticalDifference);
    }
}

TEST(LineComponents, PointOnTheStartGivesZeros)
{
    const SurveyPoint line[2] = {{100.0, 100.0, 0.0}, {200.0, 150.0, 0.0}};
    const SurveyPoint p{100.0, 100.0, 7.0};
    double along = 1.0;
    double across = 1.0;
    EXPECT_EQ(LIB_CalLB(line, &p, &along, &across), 0);
    EXPECT_EQ(along, 0.0);
    EXPECT_EQ(across, 0.0);
}

TEST(LineComponents, RightOfTheLineIsPositive)
{
    const SurveyPoint line[2] = {{0.0, 0.0, 0.0}, {10.0, 0.0, 0.0}};
    struct Case {
        SurveyPoint p;
        double along, across;
    };
    const Case cases[] = {{{3.0, 4.0, 0.0}, 3.0, 4.0},
                          {{3.0, -4.0, 0.0}, 3.0, -4.0},
                          {{-6.0, 0.0, 0.0}, -6.0, 0.0},
                          {{20.0, 0.0, 0.0}, 20.0, 0.0}};
    for (const Case& c : cases) {
        double along = 0.0;
        double across = 0.0;
        EXPECT_EQ(LIB_CalLB(line, &c.p, &along, &across), 0);
        EXPECT_NEAR(along, c.along, 1e-6);
        EXPECT_NEAR(across, c.across, 1e-6);
    }
}

TEST(LineComponents, Failures)
{
    const SurveyPoint degenerate[2] = {{5.0, 5.0, 0.0}, {5.0, 5.0, 9.0}};
    const SurveyPoint p{1.0, 1.0, 0.0};
    double along = qtest::sentinel_double();
    double across = qtest::sentinel_double();
    EXPECT_EQ(LIB_CalLB(degenerate, &p, &along, &across), 3);
    EXPECT_TRUE(qtest::untouched(along));
    EXPECT_TRUE(qtest::untouched(across));

    const SurveyPoint line[2] = {{0.0, 0.0, 0.0}, {1.0, 0.0, 0.0}};
    const SurveyPoint far{0.0, 2.0 * LIMIT, 0.0};
    EXPECT_EQ(LIB_CalLB(line, &far, &along, &across), 2);
    EXPECT_FALSE(qtest::untouched(along));
    EXPECT_NEAR(across, 2.0 * LIMIT, 1.0);
}

TEST(Scale, InclusiveBand)
{
    struct Case {
        double height, grid;
        int status;
        double combined;
    };
    const Case cases[] = {
        {0.0, 1.0, 0, 1.0},
        {-70000.0, 1.0, 2, 1.011111111111111},
        {0.0, 1.01, 0, 1.01},
        {0.0, 0.99, 0, 0.99},
        {0.0, std::nextafter(1.01, 2.0), 2, std::nextafter(1.01, 2.0)},
        {0.0, std::nextafter(0.99, 0.0), 2, std::nextafter(0.99, 0.0)},
        {0.0, NaN, 0, NaN}, // neither comparison holds for a not-a-number
    };
    for (const Case& c : cases) {
        double combined = 0.0;
        EXPECT_EQ(LIB_CalScale(c.height, c.grid, &combined), c.status) << c.height << " " << c.grid;
        EXPECT_BITS(combined, c.combined);
    }
}
