// Width and cross-slope lookups, edge points in plan and edge elevations.
#include "bits.hpp"
#include "records.hpp"

#include <cmath>

using qtest::LIMIT;
using qtest::NaN;

TEST(Sections, LookupAlongTheChainage)
{
    // The left lane widens from 3.5 to 5.5 between chainages 0 and 100 (and
    // in a longer table the right one from 3.5 to 5.5 up to 200).
    const SectionRecord widths[] = {{0.0, 3.5, 3.5}, {100.0, 5.5, 3.5}, {200.0, 5.5, 5.5}};
    const struct {
        unsigned char count;
        double K;
        unsigned char mode;
        double left; // NaN: Left and Right not written
        double right;
    } cases[] = {{2, 50.0, 0, 4.5, 3.5},  {2, -10.0, 0, 3.5, 3.5}, {2, 150.0, 0, 5.5, 3.5},
                 {2, 100.0, 0, 5.5, 3.5}, {2, 0.0, 0, 3.5, 3.5},   {2, 50.0, 1, NaN, NaN},
                 {2, 120.0, 1, 5.5, 3.5}, {3, 100.0, 0, 5.5, 3.5}, {3, 150.0, 0, 5.5, 4.5},
                 {3, 100.0, 1, NaN, NaN}};
    for (const auto& c : cases) {
        SectionRecord out = qtest::sentinel_filled<SectionRecord>();
        EXPECT_EQ(LIB_CalWay_Width(widths, c.count, c.K, &out, c.mode), 0);
        EXPECT_BITS(out.Chainage, c.K);
        EXPECT_TRUE(std::isnan(c.left) ? qtest::untouched(out.Left) && qtest::untouched(out.Right)
                                       : out.Left == c.left && out.Right == c.right)
            << &c - cases;
    }
}

TEST(Sections, RefusedTablesLeaveTheOutputUntouched)
{
    const struct {
        decltype(&LIB_CalWay_Width) lookup;
        unsigned char count;
        SectionRecord bad; // placed at index 1
        int status;
    } cases[] = {{LIB_CalWay_Width, 81, {10.0, 0.5, 0.5}, 4},
                 {LIB_CalWay_SideSlope, 0, {10.0, 0.5, 0.5}, 1},
                 {LIB_CalWay_Width, 80, {1e8, 0.5, 0.5}, 1},
                 {LIB_CalWay_Width, 80, {10.0, 0.5, -0.001}, 1},
                 {LIB_CalWay_Width, 80, {10.0, 1e8, 0.5}, 1},
                 {LIB_CalWay_Width, 80, {10.0, NaN, 0.5}, 1},
                 {LIB_CalWay_SideSlope, 80, {10.0, 0.5, 1.0000001}, 1}};
    for (const auto& c : cases) {
        SectionRecord table[81];
        for (int i = 0; i < 81; ++i) {
            table[i] = {10.0 * i, 0.5, 0.5};
        }
        table[1] = c.bad;
        SectionRecord out = qtest::sentinel_filled<SectionRecord>();
        EXPECT_EQ(c.lookup(table, c.count, 15.0, &out, 0), c.status) << &c - cases;
        EXPECT_TRUE(qtest::untouched(out)) << &c - cases;
    }
    // A slope of exactly 1 and a width of exactly the limit are accepted.
    const SectionRecord steepest[] = {{0.0, 1.0, -1.0}}, widest[] = {{0.0, LIMIT, 0.0}};
    SectionRecord out{};
    EXPECT_EQ(LIB_CalWay_SideSlope(steepest, 1, 5.0, &out, 0), 0);
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
    // Offsets from a hand reduction of the perpendicular (28000" is 7°46'40").
    const SectionRecord widths{0.0, 5.0, 3.0};
    const struct {
        double azimuth;
        unsigned char side;
        double perpendicular;
        double dx;
        double dy;
        int status;
    } cases[] = {{0.0, 0, 972000.0, 0.0, -5.0, 0},
                 {1000000.0, 1, 28000.0, 2.97240121, 0.40599389, 0},
                 {300000.0, 0, 1272000.0, 4.96619173, -0.58046509, 0},
                 {324000.0, 0, 0.0, 5.0, 0.0, 0},        // folds only below 0
                 {972000.0, 1, 1296000.0, 3.0, 0.0, 0},  // and only above a full circle
                 {3564000.0, 1, 2592000.0, 3.0, 0.0, 0}, // two full circles pass
                 {3888000.0, 1, 2916000.0, 0.0, 3.0, 2},
                 {-1000000.0, 0, -28000.0, 4.95400202, -0.67665649, 2}};
    for (const auto& c : cases) {
        const TangentPoint centre{1000.0, 2000.0, c.azimuth};
        TangentPoint edge = qtest::sentinel_filled<TangentPoint>();
        EXPECT_EQ(LIB_CalWay_H_Side(&centre, &widths, &edge, c.side), c.status) << c.azimuth;
        EXPECT_BITS(edge.Azimuth, c.perpendicular);
        EXPECT_NEAR(edge.X - 1000.0, c.dx, 1e-6) << c.azimuth;
        EXPECT_NEAR(edge.Y - 2000.0, c.dy, 1e-6) << c.azimuth;
    }
    // Heading east, the left edge 5 m north reaches the limit exactly or
    // passes it (written all the same).
    TangentPoint edge{};
    const TangentPoint at_limit{LIMIT - 5.0, 0.0, 324000.0}, beyond{LIMIT - 4.0, 0.0, 324000.0};
    EXPECT_EQ(LIB_CalWay_H_Side(&at_limit, &widths, &edge, 0), 0);
    EXPECT_EQ(LIB_CalWay_H_Side(&beyond, &widths, &edge, 0), 2);
    EXPECT_BITS(edge.X, LIMIT + 1.0);
    // Another side code writes nothing; the caller's record is judged.
    edge = qtest::sentinel_filled<TangentPoint>();
    EXPECT_EQ(LIB_CalWay_H_Side(&at_limit, &widths, &edge, 2), 2);
    EXPECT_TRUE(qtest::untouched(edge));
    edge = {1.0, 2.0, 2592000.0};
    EXPECT_EQ(LIB_CalWay_H_Side(&at_limit, &widths, &edge, 2), 0);
}

TEST(Sections, EdgeElevation)
{
    // Width 5 at a slope of -2 % below a centre at 100 m: 99.9. The range
    // 100 to 200 is widened by a millimetre at both ends; the slopes'
    // chainage is not read.
    const SectionRecord slopes{123.0, -0.02, 0.03};
    const struct {
        double K;
        unsigned char side;
        double elevation;
    } cases[] = {{150.0, 0, 99.9},  {150.0, 1, 100.12},    {99.9991, 0, 99.9},
                 {99.9989, 0, 0.0}, {200.0009, 1, 100.12}, {200.0011, 5, 0.0}};
    for (const auto& c : cases) {
        const SectionRecord widths{c.K, 5.0, 4.0};
        double h = 5.0;
        EXPECT_EQ(LIB_CalWay_V_Side(&widths, &slopes, 100.0, 100.0, 200.0, &h, c.side), 0);
        EXPECT_NEAR(h, c.elevation, 1e-12) << c.K;
    }
    // Another side writes nothing and the held value is judged (a NaN passes);
    // negative edges are fine, beyond the limit is refused but kept.
    const SectionRecord widths{150.0, 5.0, 4.0};
    double h = 3e8;
    EXPECT_EQ(LIB_CalWay_V_Side(&widths, &slopes, 100.0, 100.0, 200.0, &h, 5), 2);
    EXPECT_BITS(h, 3e8);
    h = NaN;
    EXPECT_EQ(LIB_CalWay_V_Side(&widths, &slopes, 100.0, 100.0, 200.0, &h, 5), 0);
    EXPECT_EQ(LIB_CalWay_V_Side(&widths, &slopes, -LIMIT + 0.2, 100.0, 200.0, &h, 0), 0);
    EXPECT_EQ(LIB_CalWay_V_Side(&widths, &slopes, -LIMIT, 100.0, 200.0, &h, 0), 2);
    EXPECT_BITS(h, -LIMIT - 0.1);
}
