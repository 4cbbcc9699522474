// Width and cross-slope lookups, edge points in plan and edge elevations.
#include "road_support.hpp"

using namespace roadtest;

TEST(Sections, LookupAlongTheChainage)
{
    // The left lane widens from 3.5 to 5.5 between chainages 0 and 100 (and
    // in a longer table the right one up to 200). count, K, mode, left,
    // right (NaN: not written).
    const SectionRecord widths[] = {{0.0, 3.5, 3.5}, {100.0, 5.5, 3.5}, {200.0, 5.5, 5.5}};
    // clang-format off
    const Row<5> cases[] = {{2, 50, 0, 4.5, 3.5}, {2, -10, 0, 3.5, 3.5}, {2, 150, 0, 5.5, 3.5},
        {2, 100, 0, 5.5, 3.5}, {2, 0, 0, 3.5, 3.5}, {2, 50, 1, NaN, NaN}, {2, 120, 1, 5.5, 3.5},
        {3, 100, 0, 5.5, 3.5}, {3, 150, 0, 5.5, 4.5}, {3, 100, 1, NaN, NaN}};
    // clang-format on
    for (const auto& c : cases) {
        SectionRecord out = qtest::sentinel_filled<SectionRecord>();
        EXPECT_TRUE(LIB_CalWay_Width(widths, c[0], c[1], &out, c[2]) == 0 && out.Chainage == c[1] &&
                    (std::isnan(c[3]) ? qtest::untouched(out.Left) && qtest::untouched(out.Right)
                                      : out.Left == c[3] && out.Right == c[4]))
            << &c - cases;
    }
    // Rounding carries a value interpolated next to the upper record past the
    // bound: written and refused; the right width fails after the left holds.
    const SectionRecord slopes[] = {{-650776.3604450608, -0.6325825514424726, 0.0},
                                    {-23695.640808762517, 1.0, 0.0}},
                        wide[] = {{-3.621585537589487, 0.0, 0.0},
                                  {-0.15276274539970114, LIMIT, LIMIT}};
    SectionRecord out = qtest::sentinel_filled<SectionRecord>();
    EXPECT_EQ(LIB_CalWay_SideSlope(slopes, 2, -23695.64080876253, &out, 0), 2);
    EXPECT_BITS(out.Chainage, -23695.64080876253);
    EXPECT_TRUE(out.Left == 1.0000000000000002 && qtest::untouched(out.Right));
    EXPECT_EQ(LIB_CalWay_Width(wide, 2, -0.15276274539970122, &out, 0), 2);
    EXPECT_TRUE(out.Left == LIMIT && out.Right == 99999999.99990001);
}

TEST(Sections, RefusedTablesLeaveTheOutputUntouched)
{
    const auto width = LIB_CalWay_Width, slope = LIB_CalWay_SideSlope;
    const struct {
        decltype(&LIB_CalWay_Width) lookup;
        unsigned char count;
        SectionRecord bad; // placed at index 1
        int status;
        // clang-format off
    } cases[] = {{width, 81, {10.0, 0.5, 0.5}, 4}, {slope, 0, {10.0, 0.5, 0.5}, 1},
                 {width, 80, {1e8, 0.5, 0.5}, 1}, {width, 80, {10.0, 0.5, -0.001}, 1},
                 {width, 80, {10.0, NaN, 0.5}, 1}, {width, 80, {10.0, 1e8, 0.5}, 1},
                 {slope, 80, {10.0, 0.5, 1.0000001}, 1}};
    // clang-format on
    for (const auto& c : cases) {
        SectionRecord table[81], out = qtest::sentinel_filled<SectionRecord>();
        for (int i = 0; i < 81; ++i) {
            table[i] = i == 1 ? c.bad : SectionRecord{10.0 * i, 0.5, 0.5};
        }
        EXPECT_EQ(c.lookup(table, c.count, 15.0, &out, 0), c.status) << &c - cases;
        EXPECT_TRUE(qtest::untouched(out)) << &c - cases;
    }
    // A width of exactly the limit and a slope of exactly 1 are accepted.
    const SectionRecord widest[] = {{0.0, LIMIT, 0.0}}, steepest[] = {{0.0, 1.0, -1.0}};
    SectionRecord out{};
    EXPECT_EQ(width(widest, 1, 5.0, &out, 0) + slope(steepest, 1, 5.0, &out, 0), 0);
}

TEST(Sections, EdgePointsAtRightAngles)
{
    // Azimuth, side, perpendicular, dX, dY, status; offsets from a hand
    // reduction (28000" is 7°46'40"). The perpendicular folds only below 0
    // and above a full circle; two full circles pass.
    const SectionRecord widths{0.0, 5.0, 3.0};
    // clang-format off
    const Row<6> cases[] = {
        {0, 0, 972000, 0, -5, 0}, {1000000, 1, 28000, 2.97240121, 0.40599389, 0},
        {300000, 0, 1272000, 4.96619173, -0.58046509, 0}, {324000, 0, 0, 5, 0, 0},
        {972000, 1, 1296000, 3, 0, 0}, {3564000, 1, 2592000, 3, 0, 0},
        {3888000, 1, 2916000, 0, 3, 2}, {-1000000, 0, -28000, 4.95400202, -0.67665649, 2}};
    // clang-format on
    for (const auto& c : cases) {
        const TangentPoint centre{1000.0, 2000.0, c[0]};
        TangentPoint edge = qtest::sentinel_filled<TangentPoint>();
        EXPECT_EQ(LIB_CalWay_H_Side(&centre, &widths, &edge, c[1]), c[5]) << c[0];
        EXPECT_TRUE(edge.Azimuth == c[2] &&
                    gap(edge.X - 1000.0, edge.Y - 2000.0, c[3], c[4]) < 1e-6)
            << c[0];
    }
    // Heading east, the left edge 5 m north reaches the limit exactly or
    // passes it (written all the same). Another side code writes nothing;
    // the caller's record is judged.
    TangentPoint edge{};
    const TangentPoint at_limit{LIMIT - 5.0, 0.0, 324000.0}, beyond{LIMIT - 4.0, 0.0, 324000.0};
    EXPECT_EQ(LIB_CalWay_H_Side(&at_limit, &widths, &edge, 0), 0);
    EXPECT_EQ(LIB_CalWay_H_Side(&beyond, &widths, &edge, 0), 2);
    EXPECT_BITS(edge.X, LIMIT + 1.0);
    edge = qtest::sentinel_filled<TangentPoint>();
    EXPECT_EQ(LIB_CalWay_H_Side(&at_limit, &widths, &edge, 2), 2);
    EXPECT_TRUE(qtest::untouched(edge));
    edge = {1.0, 2.0, 2592000.0};
    EXPECT_EQ(LIB_CalWay_H_Side(&at_limit, &widths, &edge, 2), 0);
}

TEST(Sections, EdgeElevation)
{
    // Width 5 at a slope of -2 % below a centre at 100 m: 99.9. The range
    // 100 to 200 is widened by a millimetre at both ends, outside it 0; the
    // slopes' chainage is not read. K, side, elevation.
    const SectionRecord slopes{123.0, -0.02, 0.03};
    const Row<3> cases[] = {{150.0, 0, 99.9},  {150.0, 1, 100.12},    {99.9991, 0, 99.9},
                            {99.9989, 0, 0.0}, {200.0009, 1, 100.12}, {200.0011, 5, 0.0}};
    for (const auto& c : cases) {
        const SectionRecord widths{c[0], 5.0, 4.0};
        double h = 5.0;
        EXPECT_EQ(LIB_CalWay_V_Side(&widths, &slopes, 100.0, 100.0, 200.0, &h, c[1]), 0);
        EXPECT_NEAR(h, c[2], 1e-12) << c[0];
    }
    // Another side writes nothing and the held value is judged (a NaN passes);
    // negative edges are fine, beyond the limit is refused but kept.
    const SectionRecord widths{150.0, 5.0, 4.0};
    const auto side = [&](double centre, double held, unsigned char code) {
        double h = held;
        const int status = LIB_CalWay_V_Side(&widths, &slopes, centre, 100.0, 200.0, &h, code);
        return std::pair<int, double>{status, h};
    };
    EXPECT_EQ(side(100.0, 3e8, 5), std::make_pair(2, 3e8));
    EXPECT_EQ(side(100.0, NaN, 5).first, 0);
    EXPECT_EQ(side(-LIMIT + 0.2, 0.0, 0).first, 0);
    EXPECT_EQ(side(-LIMIT, 0.0, 0), std::make_pair(2, -LIMIT - 0.1));
}
