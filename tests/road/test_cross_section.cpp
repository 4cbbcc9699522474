// Width and cross-slope lookups, edge points in plan and edge elevations.
#include "bits.hpp"
#include "quillon.h"

#include <cmath>
#include <limits>

namespace {

const double NaN = std::numeric_limits<double>::quiet_NaN();
const double LIMIT = 99999999.9999;

using Lookup = ResultCode (*)(const SectionRecord*, unsigned char, double, SectionRecord*,
                              unsigned char);

} // namespace

TEST(Sections, WidthInterpolation)
{
    const SectionRecord widths[] = {{0.0, 3.5, 3.5}, {100.0, 5.5, 3.5}};
    struct Case {
        double K;
        double left;
        double right;
    };
    const Case cases[] = {
        {50.0, 4.5, 3.5}, {-10.0, 3.5, 3.5}, {150.0, 5.5, 3.5}, {100.0, 5.5, 3.5}, {0.0, 3.5, 3.5},
    };
    for (const Case& c : cases) {
        SectionRecord out = qtest::sentinel_filled<SectionRecord>();
        EXPECT_EQ(LIB_CalWay_Width(widths, 2, c.K, &out, 0), 0) << c.K;
        EXPECT_BITS(out.Chainage, c.K);
        EXPECT_BITS(out.Left, c.left);
        EXPECT_BITS(out.Right, c.right);
    }
}

TEST(Sections, SlopeInterpolation)
{
    const SectionRecord slopes[] = {{0.0, -0.02, -0.02}, {40.0, -0.02, 0.04}, {80.0, 1.0, -1.0}};
    SectionRecord out{};
    EXPECT_EQ(LIB_CalWay_SideSlope(slopes, 3, 10.0, &out, 0), 0);
    EXPECT_NEAR(out.Left, -0.02, 1e-15);
    EXPECT_NEAR(out.Right, -0.005, 1e-15);
    EXPECT_EQ(LIB_CalWay_SideSlope(slopes, 3, 60.0, &out, 0), 0);
    EXPECT_NEAR(out.Left, 0.49, 1e-15);
    EXPECT_NEAR(out.Right, -0.48, 1e-15);
}

TEST(Sections, NonZeroModeOnlyAnswersTheEnds)
{
    const SectionRecord widths[] = {{0.0, 3.5, 3.5}, {100.0, 5.5, 3.5}};
    SectionRecord out = qtest::sentinel_filled<SectionRecord>();
    EXPECT_EQ(LIB_CalWay_Width(widths, 2, 50.0, &out, 1), 0);
    EXPECT_BITS(out.Chainage, 50.0);
    EXPECT_TRUE(qtest::untouched(out.Left));
    EXPECT_TRUE(qtest::untouched(out.Right));
    EXPECT_EQ(LIB_CalWay_Width(widths, 2, 120.0, &out, 1), 0);
    EXPECT_BITS(out.Left, 5.5);
}

TEST(Sections, RefusedTablesLeaveTheOutputUntouched)
{
    SectionRecord table[81];
    for (int i = 0; i < 81; ++i) {
        table[i] = {10.0 * i, 0.5, 0.5};
    }
    struct Case {
        const char* what;
        Lookup lookup;
        unsigned char count;
        SectionRecord bad; // placed at index 1
        int status;
    };
    const Case cases[] = {
        {"81 widths", LIB_CalWay_Width, 81, {10.0, 0.5, 0.5}, 4},
        {"81 slopes", LIB_CalWay_SideSlope, 81, {10.0, 0.5, 0.5}, 4},
        {"no widths", LIB_CalWay_Width, 0, {10.0, 0.5, 0.5}, 1},
        {"no slopes", LIB_CalWay_SideSlope, 0, {10.0, 0.5, 0.5}, 1},
        {"chainage", LIB_CalWay_Width, 80, {1e8, 0.5, 0.5}, 1},
        {"negative width", LIB_CalWay_Width, 80, {10.0, 0.5, -0.001}, 1},
        {"wide", LIB_CalWay_Width, 80, {10.0, 1e8, 0.5}, 1},
        {"NaN width", LIB_CalWay_Width, 80, {10.0, NaN, 0.5}, 1},
        {"steep", LIB_CalWay_SideSlope, 80, {10.0, 0.5, 1.0000001}, 1},
        {"steep left", LIB_CalWay_SideSlope, 80, {10.0, -1.0000001, 0.5}, 1},
    };
    for (const Case& c : cases) {
        SectionRecord local[81];
        for (int i = 0; i < 81; ++i) {
            local[i] = table[i];
        }
        local[1] = c.bad;
        SectionRecord out = qtest::sentinel_filled<SectionRecord>();
        EXPECT_EQ(c.lookup(local, c.count, 15.0, &out, 0), c.status) << c.what;
        EXPECT_TRUE(qtest::untouched(out)) << c.what;
    }
    // A slope of exactly 1 and a width of exactly the limit are accepted.
    const SectionRecord limits[] = {{0.0, 1.0, -1.0}};
    SectionRecord out{};
    EXPECT_EQ(LIB_CalWay_SideSlope(limits, 1, 5.0, &out, 0), 0);
    const SectionRecord widest[] = {{0.0, LIMIT, 0.0}};
    EXPECT_EQ(LIB_CalWay_Width(widest, 1, 5.0, &out, 0), 0);
}

TEST(Sections, InterpolatedValueJustOutsideItsBounds)
{
    // Rounding carries a value interpolated next to the upper record past the
    // bound: the value is written and refused.
    const SectionRecord slopes[] = {{-650776.3604450608, -0.6325825514424726, 0.0},
                                    {-23695.640808762517, 1.0, 0.0}};
    SectionRecord out = qtest::sentinel_filled<SectionRecord>();
    EXPECT_EQ(LIB_CalWay_SideSlope(slopes, 2, -23695.64080876253, &out, 0), 2);
    EXPECT_BITS(out.Chainage, -23695.64080876253);
    EXPECT_BITS(out.Left, 1.0000000000000002);
    EXPECT_TRUE(qtest::untouched(out.Right));

    // Here the left width holds and the right one fails.
    const SectionRecord widths[] = {{-3.621585537589487, 0.0, 0.0},
                                    {-0.15276274539970114, LIMIT, LIMIT}};
    out = qtest::sentinel_filled<SectionRecord>();
    EXPECT_EQ(LIB_CalWay_Width(widths, 2, -0.15276274539970122, &out, 0), 2);
    EXPECT_BITS(out.Left, LIMIT);
    EXPECT_BITS(out.Right, 99999999.99990001);
}

TEST(Sections, EdgePointsAtRightAngles)
{
    const SectionRecord widths{0.0, 5.0, 3.0};
    struct Case {
        double azimuth;
        unsigned char side;
        double perpendicular;
        double dx;
        double dy;
        int status;
    };
    // Offsets to the edge from a hand reduction of the perpendicular
    // direction (28000" is 7°46'40").
    const Case cases[] = {
        {0.0, 0, 972000.0, 0.0, -5.0, 0},
        {0.0, 1, 324000.0, 0.0, 3.0, 0},
        {1000000.0, 1, 28000.0, 2.97240121, 0.40599389, 0},
        {300000.0, 0, 1272000.0, 4.96619173, -0.58046509, 0},
        {3564000.0, 1, 2592000.0, 3.0, 0.0, 0}, // two full circles still pass
        {3888000.0, 1, 2916000.0, 0.0, 3.0, 2},
        {-1000000.0, 0, -28000.0, 4.95400202, -0.67665649, 2},
    };
    for (const Case& c : cases) {
        const TangentPoint centre{1000.0, 2000.0, c.azimuth};
        TangentPoint edge = qtest::sentinel_filled<TangentPoint>();
        EXPECT_EQ(LIB_CalWay_H_Side(&centre, &widths, &edge, c.side), c.status) << c.azimuth;
        EXPECT_BITS(edge.Azimuth, c.perpendicular);
        EXPECT_NEAR(edge.X - 1000.0, c.dx, 1e-6) << c.azimuth;
        EXPECT_NEAR(edge.Y - 2000.0, c.dy, 1e-6) << c.azimuth;
    }
}

TEST(Sections, EdgePointChecksWhatTheOutputHolds)
{
    const SectionRecord widths{0.0, 5.0, 3.0};
    const TangentPoint centre{1000.0, 2000.0, 0.0};
    // Another side code writes nothing; the caller's record is judged.
    TangentPoint edge = qtest::sentinel_filled<TangentPoint>();
    EXPECT_EQ(LIB_CalWay_H_Side(&centre, &widths, &edge, 2), 2);
    EXPECT_TRUE(qtest::untouched(edge));
    edge = {1.0, 2.0, 2592000.0};
    EXPECT_EQ(LIB_CalWay_H_Side(&centre, &widths, &edge, 2), 0);
    EXPECT_BITS(edge.X, 1.0);

    // Heading east from near the northern limit: a 0.5 m left edge stays in
    // range, a 10 m one is written and refused.
    const TangentPoint centre_north{LIMIT - 1.0, 0.0, 324000.0};
    const SectionRecord narrow{0.0, 0.5, 0.0};
    const SectionRecord wide{0.0, 10.0, 0.0};
    EXPECT_EQ(LIB_CalWay_H_Side(&centre_north, &narrow, &edge, 0), 0);
    EXPECT_EQ(LIB_CalWay_H_Side(&centre_north, &wide, &edge, 0), 2);
    EXPECT_BITS(edge.Azimuth, 0.0);
    EXPECT_NEAR(edge.X, LIMIT + 9.0, 1e-6);
}

TEST(Sections, EdgeElevation)
{
    const SectionRecord slopes{123.0, -0.02, 0.03}; // its chainage is not read
    struct Case {
        double K;
        unsigned char side;
        double elevation;
    };
    // Range 100 to 200, widened by a millimetre at both ends.
    const Case cases[] = {
        {150.0, 0, 99.9},      {150.0, 1, 100.12}, {99.9991, 0, 99.9}, {99.9989, 0, 0.0},
        {200.0009, 1, 100.12}, {200.0011, 1, 0.0}, {100.0, 1, 100.12},
    };
    for (const Case& c : cases) {
        const SectionRecord widths{c.K, 5.0, 4.0};
        double h = qtest::sentinel_double();
        EXPECT_EQ(LIB_CalWay_V_Side(&widths, &slopes, 100.0, 100.0, 200.0, &h, c.side), 0) << c.K;
        EXPECT_NEAR(h, c.elevation, 1e-12) << c.K;
    }
    const SectionRecord widths{150.0, 5.0, 4.0};
    double h = 0.0;
    EXPECT_EQ(LIB_CalWay_V_Side(&widths, &slopes, 100.0, 100.0, 200.0, &h, 0), 0);
    EXPECT_BITS(h, 99.9);
    // Another side writes nothing; outside the range 0 is written whatever the side.
    h = 3e8;
    EXPECT_EQ(LIB_CalWay_V_Side(&widths, &slopes, 100.0, 100.0, 200.0, &h, 5), 2);
    EXPECT_BITS(h, 3e8);
    EXPECT_EQ(LIB_CalWay_V_Side(&widths, &slopes, 100.0, 160.0, 200.0, &h, 5), 0);
    EXPECT_BITS(h, 0.0);
    // Negative edge elevations are fine; beyond the limit is refused but kept.
    EXPECT_EQ(LIB_CalWay_V_Side(&widths, &slopes, -LIMIT + 0.2, 100.0, 200.0, &h, 0), 0);
    EXPECT_EQ(LIB_CalWay_V_Side(&widths, &slopes, -LIMIT, 100.0, 200.0, &h, 0), 2);
    EXPECT_BITS(h, -LIMIT - 0.1);
}
