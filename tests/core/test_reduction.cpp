// Slope reduction, line components and the combined scale factor.
#include "bits.hpp"
#include "quillon.h"
#include "records.hpp"

#include <cmath>

using namespace qtest;

TEST(DistConvert, LevelSightCarriesThePiMismatch)
{
    // cos(324000 * RAD_PER_SEC) is not 0: pi is taken as 3.1415926.
    const StationRecord s = station(0.0, 0.0, 0.0, 1, 1, 1.6, 1.3);
    DistanceRecord out = sentinel_filled<DistanceRecord>();
    EXPECT_EQ(LIB_DistConvert(&s, 1.0, 100.0, 324000.0, &out), 0);
    EXPECT_BITS(out.SlopeDistance, 100.0);
    EXPECT_BITS(out.HorizontalDistance, 99.99999999999997);
    EXPECT_BITS(out.VerticalDifference, 2.6794896585028634e-06);
    EXPECT_NEAR(out.HeightDifference, 0.3 + 2.6794896585e-6, 1e-15);

    // Face II: the sine is taken absolute, so the distance stays positive.
    DistanceRecord face2{};
    LIB_DistConvert(&s, 1.0, 100.0, 972000.0, &face2);
    EXPECT_NEAR(face2.HorizontalDistance / out.HorizontalDistance, 1.0, 1e-14);
}

TEST(DistConvert, RefractionShortensTheDistanceAndRaisesTheTarget)
{
    // A 1 km sight at 81 degrees zenith; mode 0 gives the plain components.
    const double S = 1000.0;
    const double Z = 291600.0;
    DistanceRecord plain{};
    const StationRecord s0 = station(0.0, 0.0, 0.0);
    LIB_DistConvert(&s0, 1.0, S, Z, &plain);
    EXPECT_NEAR(plain.HorizontalDistance, 987.6883, 1e-4);
    EXPECT_NEAR(plain.VerticalDifference, 156.4345, 1e-4);
    const struct {
        unsigned char mode;
        double horizontal_shortening, vertical_rise; // m, from (2-k)/2R and (1-k)/2R
    } cases[] = {{1, 0.0225, 0.0659}, {2, 0.0218, 0.0613}, {3, 0.0, 0.0}, {255, 0.0, 0.0}};
    for (const auto& c : cases) {
        const StationRecord s = station(0.0, 0.0, 0.0, 1, 1, 1.5, 1.2, c.mode);
        DistanceRecord out{};
        LIB_DistConvert(&s, 1.0, S, Z, &out);
        EXPECT_NEAR(plain.HorizontalDistance - out.HorizontalDistance, c.horizontal_shortening,
                    1e-4);
        EXPECT_NEAR(out.VerticalDifference - plain.VerticalDifference, c.vertical_rise, 1e-4);
    }
}

TEST(DistConvert, ScaleBandIsStrict)
{
    const StationRecord s = station(0.0, 0.0, 0.0);
    DistanceRecord unscaled{};
    LIB_DistConvert(&s, 0.0, 500.0, 300000.0, &unscaled);
    const struct {
        double scale;
        bool applied;
    } cases[] = {{0.99, false},  {1.01, false}, {std::nextafter(0.99, 1.0), true},
                 {1.0099, true}, {0.0, false},  {NaN, false}};
    for (const auto& c : cases) {
        DistanceRecord out{};
        EXPECT_EQ(LIB_DistConvert(&s, c.scale, 500.0, 300000.0, &out), 0);
        EXPECT_BITS(out.HorizontalDistance,
                    c.applied ? unscaled.HorizontalDistance * c.scale : unscaled.HorizontalDistance)
            << c.scale;
        EXPECT_BITS(out.VerticalDifference, unscaled.VerticalDifference);
    }
}

TEST(LineComponents, RightOfTheLineIsPositive)
{
    const SurveyPoint line[2] = {{0.0, 0.0, 0.0}, {10.0, 0.0, 0.0}};
    const struct {
        SurveyPoint p;
        double along, across;
    } cases[] = {{{0.0, 0.0, 7.0}, 0.0, 0.0}, // on the start: no direction, no distance
                 {{3.0, 4.0, 0.0}, 3.0, 4.0},
                 {{3.0, -4.0, 0.0}, 3.0, -4.0},
                 {{-6.0, 0.0, 0.0}, -6.0, 0.0}};
    for (const auto& c : cases) {
        double along = NaN;
        double across = NaN;
        EXPECT_EQ(LIB_CalLB(line, &c.p, &along, &across), 0);
        EXPECT_NEAR(along, c.along, 1e-6);
        EXPECT_NEAR(across, c.across, 1e-6);
    }
}

TEST(LineComponents, Failures)
{
    const SurveyPoint degenerate[2] = {{5.0, 5.0, 0.0}, {5.0, 5.0, 9.0}};
    const SurveyPoint p{1.0, 1.0, 0.0};
    double along = sentinel_double();
    double across = sentinel_double();
    EXPECT_EQ(LIB_CalLB(degenerate, &p, &along, &across), 3);
    EXPECT_TRUE(untouched(along) && untouched(across));

    // Out of range: both components are still delivered.
    const SurveyPoint line[2] = {{0.0, 0.0, 0.0}, {1.0, 0.0, 0.0}};
    const SurveyPoint far{0.0, 2.0 * LIMIT, 0.0};
    EXPECT_EQ(LIB_CalLB(line, &far, &along, &across), 2);
    EXPECT_NEAR(along, 0.0, 1.0);
    EXPECT_NEAR(across, 2.0 * LIMIT, 1.0);
}

TEST(Scale, InclusiveBand)
{
    const struct {
        double height, grid;
        int status;
        double combined;
    } cases[] = {
        {0.0, 1.0, 0, 1.0},
        {-70000.0, 1.0, 2, 1.011111111111111},
        {0.0, 1.01, 0, 1.01},
        {0.0, 0.99, 0, 0.99},
        {0.0, std::nextafter(1.01, 2.0), 2, std::nextafter(1.01, 2.0)},
        {0.0, std::nextafter(0.99, 0.0), 2, std::nextafter(0.99, 0.0)},
        {0.0, NaN, 0, NaN}, // neither comparison holds for a not-a-number
    };
    for (const auto& c : cases) {
        double combined = 0.0;
        EXPECT_EQ(LIB_CalScale(c.height, c.grid, &combined), c.status) << c.height << " " << c.grid;
        EXPECT_BITS(combined, c.combined);
    }
}
