// Slope reduction, line components and the combined scale factor.
#include "check.hpp"
#include "quillon.h"
#include "records.hpp"

#include <cmath>

using namespace qtest;

TEST(DistConvert, LevelSightCarriesThePiMismatch)
{
    // cos(324000 * RAD_PER_SEC) is not 0: pi is taken as 3.1415926.
    const Call face1("LIB_DistConvert", "level on face I");
    const StationRecord s = station(0.0, 0.0, 0.0, 1, 1, 1.6, 1.3);
    DistanceRecord out = sentinel_filled<DistanceRecord>();
    EXPECT_STATUS(face1, LIB_DistConvert(&s, 1.0, 100.0, 324000.0, &out), 0);
    EXPECT_BITS(face1, out.SlopeDistance, 100.0);
    EXPECT_BITS(face1, out.HorizontalDistance, 99.99999999999997);
    EXPECT_BITS(face1, out.VerticalDifference, 2.6794896585028634e-06);
    EXPECT_WITHIN(face1, out.HeightDifference, 0.3 + 2.6794896585e-6, 1e-15);

    // Face II: the sine is taken absolute, so the distance stays positive.
    const Call face2("LIB_DistConvert", "level on face II");
    DistanceRecord back{};
    EXPECT_STATUS(face2, LIB_DistConvert(&s, 1.0, 100.0, 972000.0, &back), 0);
    EXPECT_WITHIN(face2, back.HorizontalDistance / out.HorizontalDistance, 1.0, 1e-14);
}

TEST(DistConvert, RefractionShortensTheDistanceAndRaisesTheTarget)
{
    // A 1 km sight at 81 degrees zenith; mode 0 gives the plain components.
    const double S = 1000.0;
    const double Z = 291600.0;
    const Call no_refraction("LIB_DistConvert", "mode 0");
    DistanceRecord plain{};
    const StationRecord s0 = station(0.0, 0.0, 0.0);
    EXPECT_STATUS(no_refraction, LIB_DistConvert(&s0, 1.0, S, Z, &plain), 0);
    EXPECT_WITHIN(no_refraction, plain.HorizontalDistance, 987.6883, 1e-4);
    EXPECT_WITHIN(no_refraction, plain.VerticalDifference, 156.4345, 1e-4);
    const struct {
        unsigned char mode;
        double horizontal_shortening, vertical_rise; // m, from (2-k)/2R and (1-k)/2R
    } cases[] = {{1, 0.0225, 0.0659}, {2, 0.0218, 0.0613}, {3, 0.0, 0.0}, {255, 0.0, 0.0}};
    for (const auto& [call, c] : rows("LIB_DistConvert", cases)) {
        const StationRecord s = station(0.0, 0.0, 0.0, 1, 1, 1.5, 1.2, c.mode);
        DistanceRecord out{};
        EXPECT_STATUS(call, LIB_DistConvert(&s, 1.0, S, Z, &out), 0);
        EXPECT_WITHIN(call, plain.HorizontalDistance - out.HorizontalDistance,
                      c.horizontal_shortening, 1e-4);
        EXPECT_WITHIN(call, out.VerticalDifference - plain.VerticalDifference, c.vertical_rise,
                      1e-4);
    }
}

TEST(DistConvert, ScaleBandIsStrict)
{
    const StationRecord s = station(0.0, 0.0, 0.0);
    DistanceRecord unscaled{};
    ASSERT_STATUS(Call("LIB_DistConvert", "scale 0"),
                  LIB_DistConvert(&s, 0.0, 500.0, 300000.0, &unscaled), 0);
    const struct {
        double scale;
        bool applied;
    } cases[] = {{0.99, false},  {1.01, false}, {std::nextafter(0.99, 1.0), true},
                 {1.0099, true}, {0.0, false},  {NaN, false}};
    for (const auto& [call, c] : rows("LIB_DistConvert", cases)) {
        DistanceRecord out{};
        EXPECT_STATUS(call, LIB_DistConvert(&s, c.scale, 500.0, 300000.0, &out), 0);
        EXPECT_BITS(call, out.HorizontalDistance,
                    c.applied ? unscaled.HorizontalDistance * c.scale
                              : unscaled.HorizontalDistance);
        EXPECT_BITS(call, out.VerticalDifference, unscaled.VerticalDifference);
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
    for (const auto& [call, c] : rows("LIB_CalLB", cases)) {
        double along = NaN;
        double across = NaN;
        EXPECT_STATUS(call, LIB_CalLB(line, &c.p, &along, &across), 0);
        EXPECT_WITHIN(call, along, c.along, 1e-6);
        EXPECT_WITHIN(call, across, c.across, 1e-6);
    }
}

TEST(LineComponents, Failures)
{
    const Call plumb("LIB_CalLB", "line points plumb");
    const SurveyPoint degenerate[2] = {{5.0, 5.0, 0.0}, {5.0, 5.0, 9.0}};
    const SurveyPoint p{1.0, 1.0, 0.0};
    double along = sentinel_double();
    double across = sentinel_double();
    EXPECT_STATUS(plumb, LIB_CalLB(degenerate, &p, &along, &across), 3);
    EXPECT_UNTOUCHED(plumb, along);
    EXPECT_UNTOUCHED(plumb, across);

    // Out of range: both components are still delivered.
    const Call far_out("LIB_CalLB", "point beyond the limit");
    const SurveyPoint line[2] = {{0.0, 0.0, 0.0}, {1.0, 0.0, 0.0}};
    const SurveyPoint far{0.0, 2.0 * LIMIT, 0.0};
    EXPECT_STATUS(far_out, LIB_CalLB(line, &far, &along, &across), 2);
    EXPECT_WITHIN(far_out, along, 0.0, 1.0);
    EXPECT_WITHIN(far_out, across, 2.0 * LIMIT, 1.0);
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
    for (const auto& [call, c] : rows("LIB_CalScale", cases)) {
        double combined = 0.0;
        EXPECT_STATUS(call, LIB_CalScale(c.height, c.grid, &combined), c.status);
        EXPECT_BITS(call, combined, c.combined);
    }
}
