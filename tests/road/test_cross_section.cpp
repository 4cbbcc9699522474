// Width and cross-slope lookups, edge points in plan and edge elevations.
#include "road_support.hpp"

using namespace roadtest;
using qtest::Call;
using qtest::rows;

TEST(Sections, LookupAlongTheChainage)
{
    // The left lane widens from 3.5 to 5.5 between chainages 0 and 100 (and
    // in a longer table the right one up to 200). The chainage is always
    // written; mode 1 writes the widths only beyond the table's end.
    const SectionRecord widths[] = {{0.0, 3.5, 3.5}, {100.0, 5.5, 3.5}, {200.0, 5.5, 5.5}};
    const double none = qtest::sentinel_double();
    const struct {
        unsigned char count;
        double K;
        unsigned char mode;
        double left, right; // none: untouched
    } cases[] = {{2, 50, 0, 4.5, 3.5},   {2, -10, 0, 3.5, 3.5}, {2, 150, 0, 5.5, 3.5},
                 {2, 100, 0, 5.5, 3.5},  {2, 0, 0, 3.5, 3.5},   {2, 50, 1, none, none},
                 {2, 120, 1, 5.5, 3.5},  {3, 100, 0, 5.5, 3.5}, {3, 150, 0, 5.5, 4.5},
                 {3, 100, 1, none, none}};
    for (const auto& [call, c] : rows("LIB_CalWay_Width", cases)) {
        SectionRecord out = qtest::sentinel_filled<SectionRecord>();
        EXPECT_STATUS(call, LIB_CalWay_Width(widths, c.count, c.K, &out, c.mode), 0);
        EXPECT_BITS(call, out, (SectionRecord{c.K, c.left, c.right}));
    }
    // Rounding carries a value interpolated next to the upper record past the
    // bound: written and refused; the right width fails after the left holds.
    const SectionRecord slopes[] = {{-650776.3604450608, -0.6325825514424726, 0.0},
                                    {-23695.640808762517, 1.0, 0.0}},
                        wide[] = {{-3.621585537589487, 0.0, 0.0},
                                  {-0.15276274539970114, LIMIT, LIMIT}};
    const Call slope("LIB_CalWay_SideSlope", "rounded past a slope of 1");
    SectionRecord out = qtest::sentinel_filled<SectionRecord>();
    EXPECT_STATUS(slope, LIB_CalWay_SideSlope(slopes, 2, -23695.64080876253, &out, 0), 2);
    EXPECT_BITS(slope, out, (SectionRecord{-23695.64080876253, 1.0000000000000002, none}));
    const Call width("LIB_CalWay_Width", "rounded past the limit");
    EXPECT_STATUS(width, LIB_CalWay_Width(wide, 2, -0.15276274539970122, &out, 0), 2);
    EXPECT_BITS(width, out, (SectionRecord{-0.15276274539970122, LIMIT, 99999999.99990001}));
}

TEST(Sections, RefusedTablesLeaveTheOutputUntouched)
{
    // The two lookups, with the names their checks report.
    const struct Lookup {
        const char* name;
        decltype(&LIB_CalWay_Width) call;
    } width = {"LIB_CalWay_Width", LIB_CalWay_Width},
      slope = {"LIB_CalWay_SideSlope", LIB_CalWay_SideSlope};
    const struct {
        Lookup lookup;
        unsigned char count;
        SectionRecord bad; // placed at index 1
        int status;
    } cases[] = {{width, 81, {10.0, 0.5, 0.5}, 4},      {slope, 0, {10.0, 0.5, 0.5}, 1},
                 {width, 80, {1e8, 0.5, 0.5}, 1},       {width, 80, {10.0, 0.5, -0.001}, 1},
                 {width, 80, {10.0, NaN, 0.5}, 1},      {width, 80, {10.0, 1e8, 0.5}, 1},
                 {slope, 80, {10.0, 0.5, 1.0000001}, 1}};
    for (const auto& [row, c] : rows(cases)) {
        const Call call = row.of(c.lookup.name);
        SectionRecord table[81], out = qtest::sentinel_filled<SectionRecord>();
        for (int i = 0; i < 81; ++i) {
            table[i] = i == 1 ? c.bad : SectionRecord{10.0 * i, 0.5, 0.5};
        }
        EXPECT_STATUS(call, c.lookup.call(table, c.count, 15.0, &out, 0), c.status);
        EXPECT_UNTOUCHED(call, out);
    }
    // A width of exactly the limit and a slope of exactly 1 are accepted.
    const SectionRecord widest[] = {{0.0, LIMIT, 0.0}}, steepest[] = {{0.0, 1.0, -1.0}};
    SectionRecord out{};
    EXPECT_STATUS(Call(width.name, "width of the limit"), width.call(widest, 1, 5.0, &out, 0), 0);
    EXPECT_STATUS(Call(slope.name, "slope of 1"), slope.call(steepest, 1, 5.0, &out, 0), 0);
}

TEST(Sections, EdgePointsAtRightAngles)
{
    // Offsets from a hand reduction (28000" is 7°46'40"). The perpendicular
    // folds only below 0 and above a full circle; two full circles pass.
    const SectionRecord widths{0.0, 5.0, 3.0};
    const struct {
        double azimuth;
        unsigned char side;
        double perpendicular;
        PlanePoint offset; // from the centre point
        int status;
    } cases[] = {{0, 0, 972000, {0, -5}, 0},
                 {1000000, 1, 28000, {2.97240121, 0.40599389}, 0},
                 {300000, 0, 1272000, {4.96619173, -0.58046509}, 0},
                 {324000, 0, 0, {5, 0}, 0},
                 {972000, 1, 1296000, {3, 0}, 0},
                 {3564000, 1, 2592000, {3, 0}, 0},
                 {3888000, 1, 2916000, {0, 3}, 2},
                 {-1000000, 0, -28000, {4.95400202, -0.67665649}, 2}};
    for (const auto& [call, c] : rows("LIB_CalWay_H_Side", cases)) {
        const TangentPoint centre{1000.0, 2000.0, c.azimuth};
        TangentPoint edge = qtest::sentinel_filled<TangentPoint>();
        EXPECT_STATUS(call, LIB_CalWay_H_Side(&centre, &widths, &edge, c.side), c.status);
        EXPECT_BITS(call, edge.Azimuth, c.perpendicular);
        EXPECT_BELOW(call, gap(edge.X - 1000.0, edge.Y - 2000.0, c.offset.X, c.offset.Y), 1e-6);
    }
    // Heading east, the left edge 5 m north reaches the limit exactly or
    // passes it (written all the same). Another side code writes nothing;
    // the caller's record is judged.
    TangentPoint edge{};
    const TangentPoint at_limit{LIMIT - 5.0, 0.0, 324000.0}, beyond{LIMIT - 4.0, 0.0, 324000.0};
    EXPECT_STATUS(Call("LIB_CalWay_H_Side", "edge at the limit"),
                  LIB_CalWay_H_Side(&at_limit, &widths, &edge, 0), 0);
    const Call past("LIB_CalWay_H_Side", "edge past the limit");
    EXPECT_STATUS(past, LIB_CalWay_H_Side(&beyond, &widths, &edge, 0), 2);
    EXPECT_BITS(past, edge.X, LIMIT + 1.0);
    const Call other("LIB_CalWay_H_Side", "side 2");
    edge = qtest::sentinel_filled<TangentPoint>();
    EXPECT_STATUS(other, LIB_CalWay_H_Side(&at_limit, &widths, &edge, 2), 2);
    EXPECT_UNTOUCHED(other, edge);
    edge = {1.0, 2.0, 2592000.0};
    EXPECT_STATUS(other.at("caller's record in range"),
                  LIB_CalWay_H_Side(&at_limit, &widths, &edge, 2), 0);
    EXPECT_BITS(other, edge, (TangentPoint{1.0, 2.0, 2592000.0}));
}

TEST(Sections, EdgeElevation)
{
    // Width 5 at a slope of -2 % below a centre at 100 m: 99.9. The range
    // 100 to 200 is widened by a millimetre at both ends, outside it 0; the
    // slopes' chainage is not read.
    const SectionRecord slopes{123.0, -0.02, 0.03};
    const struct {
        double K;
        unsigned char side;
        double elevation;
    } cases[] = {{150.0, 0, 99.9},  {150.0, 1, 100.12},    {99.9991, 0, 99.9},
                 {99.9989, 0, 0.0}, {200.0009, 1, 100.12}, {200.0011, 5, 0.0}};
    for (const auto& [call, c] : rows("LIB_CalWay_V_Side", cases)) {
        const SectionRecord widths{c.K, 5.0, 4.0};
        double h = 5.0;
        EXPECT_STATUS(call, LIB_CalWay_V_Side(&widths, &slopes, 100.0, 100.0, 200.0, &h, c.side),
                      0);
        EXPECT_WITHIN(call, h, c.elevation, 1e-12);
    }
    // Another side writes nothing and the held value is judged (a NaN passes);
    // negative edges are fine, beyond the limit is refused but kept.
    const SectionRecord widths{150.0, 5.0, 4.0};
    const struct {
        const char* name;
        double centre, held;
        unsigned char side;
        int status;
        double elevation;
    } edges[] = {{"side 5, held value out of range", 100.0, 3e8, 5, 2, 3e8},
                 {"side 5, held value not a number", 100.0, NaN, 5, 0, NaN},
                 // (-LIMIT + 0.2) - 0.1 lands one unit in the last place from -LIMIT + 0.1.
                 {"left edge within the limit", -LIMIT + 0.2, 0.0, 0, 0, -99999999.899899989},
                 {"left edge past the limit", -LIMIT, 0.0, 0, 2, -LIMIT - 0.1}};
    for (const auto& c : edges) {
        const Call call("LIB_CalWay_V_Side", c.name);
        double h = c.held;
        EXPECT_STATUS(call, LIB_CalWay_V_Side(&widths, &slopes, c.centre, 100.0, 200.0, &h, c.side),
                      c.status);
        EXPECT_BITS(call, h, c.elevation);
    }
}
