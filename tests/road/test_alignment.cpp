// Alignment by elements: the complete element table, the point at a
// chainage, and the pile list.
#include "road_support.hpp"

#include <cstring>
#include <limits>
#include <vector>

using namespace roadtest;

namespace {

const double NaN = std::numeric_limits<double>::quiet_NaN();
const double LIMIT = 99999999.9999;

struct Table {
    HElement records[81];
    Table() { qtest::fill_sentinel(records); }
};

// Line 100, entry curve 60, arc 80 (R 200), exit curve 60, line 100, turning
// right, from (5000, 3000) heading 100000" at chainage 1000.
std::vector<HElement> design(unsigned char turn = 1)
{
    return {element(1, 5000.0, 3000.0, 100000.0, 100.0, 0.0, 0, 0, 1000.0),
            element(3, 0, 0, 0, 60.0, 200.0, turn, 0), element(2, 0, 0, 0, 80.0, 200.0, turn, 0),
            element(3, 0, 0, 0, 60.0, 200.0, turn, 1), element(1, 0, 0, 0, 100.0, 0.0, 0, 0)};
}

int build(const std::vector<HElement>& elements, Table& table)
{
    return LIB_CalWay_H_Ele_MainPoint(
        elements.data(), static_cast<unsigned char>(elements.size() + 1), table.records);
}

// Heading (radians) at distance u into element e, from its stored start.
double heading(const HElement& e, double u)
{
    const double a = e.Azimuth / RHO;
    const double side = e.Turn == 1 ? 1.0 : -1.0;
    if (e.Type == 1) {
        return a;
    }
    if (e.Type == 2) {
        return a + side * u / e.Radius;
    }
    if (e.Spiral == 0) {
        return a + side * u * u / (2.0 * e.Radius * e.Length);
    }
    return a + side * (u / e.Radius - u * u / (2.0 * e.Radius * e.Length));
}

} // namespace

TEST(EleMainPoint, OneElement)
{
    const std::vector<HElement> one = {element(1, 10.0, 20.0, 324000.0, 50.0, 0.0, 0, 0, 5.0)};
    Table t;
    ASSERT_EQ(build(one, t), 0);
    EXPECT_EQ(std::memcmp(&t.records[0], &one[0], sizeof(HElement)), 0);
    const HElement& end = t.records[1];
    EXPECT_EQ(end.Type, 0);
    EXPECT_NEAR(end.X, 10.0, 1e-5);
    EXPECT_NEAR(end.Y, 70.0, 1e-9);
    EXPECT_BITS(end.Azimuth, 324000.0);
    EXPECT_BITS(end.Chainage, 55.0);
    EXPECT_TRUE(qtest::untouched(end.Length));
    EXPECT_TRUE(qtest::untouched(end.Radius));
    EXPECT_TRUE(qtest::untouched(t.records[2]));
}

TEST(EleMainPoint, RejectedListsWriteNothing)
{
    struct Case {
        const char* what;
        int index; // element to spoil
        HElement spoiled;
        int status;
    };
    const std::vector<HElement> good = design();
    auto with = [&](int index, void (*spoil)(HElement&)) {
        HElement e = good[index];
        spoil(e);
        return e;
    };
    const Case cases[] = {
        {"start northing", 0, with(0, [](HElement& e) { e.X = NaN; }), 1},
        {"start easting", 0, with(0, [](HElement& e) { e.Y = -1e9; }), 1},
        {"negative azimuth", 0, with(0, [](HElement& e) { e.Azimuth = -0.001; }), 1},
        {"azimuth past two circles", 0, with(0, [](HElement& e) { e.Azimuth = 2592000.001; }), 1},
        {"start chainage", 0, with(0, [](HElement& e) { e.Chainage = 1e9; }), 1},
        {"end record inside", 2, with(2, [](HElement& e) { e.Type = 0; }), 1},
        {"unknown kind", 4, with(4, [](HElement& e) { e.Type = 4; }), 1},
        {"zero length", 1, with(1, [](HElement& e) { e.Length = 0.0; }), 1},
        {"length not a number", 4, with(4, [](HElement& e) { e.Length = NaN; }), 1},
        {"zero radius", 2, with(2, [](HElement& e) { e.Radius = 0.0; }), 1},
        {"radius beyond the range", 3, with(3, [](HElement& e) { e.Radius = 1e9; }), 1},
        {"turn code", 2, with(2, [](HElement& e) { e.Turn = 2; }), 1},
        {"spiral code", 3, with(3, [](HElement& e) { e.Spiral = 2; }), 1},
        // Radius and turn of a line are not read; the start fields of later
        // elements are computed, not checked.
        {"line radius", 4,
         with(4,
              [](HElement& e) {
                  e.Radius = NaN;
                  e.Turn = 9;
              }),
         0},
        {"later start", 2,
         with(2,
              [](HElement& e) {
                  e.X = NaN;
                  e.Azimuth = -5.0;
              }),
         0},
        {"azimuth of two circles", 0, with(0, [](HElement& e) { e.Azimuth = 2592000.0; }), 0},
    };
    for (const Case& c : cases) {
        std::vector<HElement> list = good;
        list[c.index] = c.spoiled;
        Table t;
        EXPECT_EQ(build(list, t), c.status) << c.what;
        if (c.status != 0) {
            EXPECT_TRUE(qtest::untouched(t.records)) << c.what;
        }
    }
    for (unsigned char n : {0, 1, 82, 255}) {
        Table t;
        EXPECT_EQ(LIB_CalWay_H_Ele_MainPoint(good.data(), n, t.records), 4) << int(n);
        EXPECT_TRUE(qtest::untouched(t.records));
    }
}

TEST(EleMainPoint, AgreesWithTheIntersectionPointBuilder)
{
    // The same road from its intersection points: the element table built
    // from the elements alone must reach the same main points, to the
    // accuracy of the tangent series used to place the curve ends.
    CrossPoint polygon[4];
    qtest::fill_sentinel(polygon);
    const double xy[4][2] = {{1000, 1000}, {1400, 1100}, {1600, 1500}, {2100, 1450}};
    for (int j = 0; j < 4; ++j) {
        polygon[j].X = xy[j][0];
        polygon[j].Y = xy[j][1];
        polygon[j].EntryLength = 40.0;
        polygon[j].ExitLength = 40.0;
        polygon[j].Radius = 300.0;
        polygon[j].Chainage = 500.0;
    }
    HElement from_polygon[81];
    uint32_t count = 0;
    ASSERT_EQ(LIB_CalWay_H_Cross_MainPoint(polygon, 4, from_polygon, &count), 0);
    ASSERT_EQ(count, 10u);

    Table t;
    std::vector<HElement> list(from_polygon, from_polygon + 9);
    for (std::size_t j = 1; j < list.size(); ++j) {
        list[j].X = list[j].Y = list[j].Azimuth = list[j].Chainage = NaN;
        list[j].Spiral = list[j].Type == 2 ? 0 : list[j].Spiral;
    }
    ASSERT_EQ(build(list, t), 0);
    for (unsigned int j = 0; j < count; ++j) {
        EXPECT_EQ(t.records[j].Type, from_polygon[j].Type) << j;
        EXPECT_LT(distance(t.records[j].X, t.records[j].Y, from_polygon[j].X, from_polygon[j].Y),
                  1e-4)
            << j;
        EXPECT_LT(azimuth_gap(t.records[j].Azimuth, from_polygon[j].Azimuth), 1e-3) << j;
        EXPECT_NEAR(t.records[j].Chainage, from_polygon[j].Chainage, 1e-9) << j;
    }
}

TEST(EleMainPoint, LineAfterLineKeepsItsOwnAzimuth)
{
    const std::vector<HElement> lines = {element(1, 0.0, 0.0, 0.0, 100.0, 0, 0, 0, 0.0),
                                         element(1, 7.0, 7.0, 324000.0, 50.0, 0, 0, 0)};
    Table t;
    ASSERT_EQ(build(lines, t), 0);
    // The second line starts where the first ends, in its own direction.
    EXPECT_BITS(t.records[1].X, 100.0);
    EXPECT_BITS(t.records[1].Y, 0.0);
    EXPECT_BITS(t.records[1].Azimuth, 324000.0);
    EXPECT_BITS(t.records[2].Azimuth, 324000.0);
    EXPECT_NEAR(t.records[2].Y, 50.0, 1e-9);

    // The end slot is read before it becomes the end record: a 1 left there
    // by the caller keeps the caller's azimuth.
    Table u;
    u.records[2].Type = 1;
    u.records[2].Azimuth = 42.0;
    ASSERT_EQ(build(lines, u), 0);
    EXPECT_EQ(u.records[2].Type, 0);
    EXPECT_BITS(u.records[2].Azimuth, 42.0);
    EXPECT_BITS(u.records[2].X, t.records[2].X);
}

TEST(EleMainPoint, OverflowKeepsTheRecordsComputedSoFar)
{
    // Chainage: the second end passes the limit; it is written, the end
    // record's Type is not set.
    std::vector<HElement> lines = {element(1, 0.0, 0.0, 0.0, 3.0, 0, 0, 0, LIMIT - 5.0),
                                   element(1, 0.0, 0.0, 0.0, 3.0, 0, 0, 0)};
    Table t;
    EXPECT_EQ(build(lines, t), 2);
    EXPECT_BITS(t.records[1].Chainage, LIMIT - 2.0);
    EXPECT_BITS(t.records[2].X, 6.0);
    EXPECT_BITS(t.records[2].Chainage, LIMIT - 5.0 + 3.0 + 3.0);
    EXPECT_EQ(t.records[2].Type, qtest::SENTINEL_BYTE);

    // A point beyond the range: the arc's end azimuth is written before its
    // end point fails.
    std::vector<HElement> arc = {element(2, LIMIT - 1.0, 0.0, 0.0, 50.0, 100.0, 1, 0, 0.0)};
    Table u;
    EXPECT_EQ(build(arc, u), 2);
    EXPECT_NEAR(u.records[1].Azimuth, 0.5 * RHO, 1e-9);
    EXPECT_TRUE(qtest::untouched(u.records[1].X));
    EXPECT_TRUE(qtest::untouched(u.records[1].Chainage));

    // An arc from two full circles turning more than a full turn.
    std::vector<HElement> spin = {element(2, 0.0, 0.0, 2592000.0, 7.0, 1.0, 1, 0, 0.0)};
    Table v;
    EXPECT_EQ(build(spin, v), 2);
    EXPECT_TRUE(qtest::untouched(v.records[1]));
}

TEST(HOn, MainPointsAreDeliveredAsStored)
{
    Table t;
    ASSERT_EQ(build(design(), t), 0);
    for (unsigned int j = 0; j < 6; ++j) {
        for (double offset : {0.0, 0.0009}) {
            TangentPoint p = qtest::sentinel_filled<TangentPoint>();
            ASSERT_EQ(LIB_CalWay_H_On(t.records, 6, t.records[j].Chainage + offset, &p), 0);
            EXPECT_BITS(p.X, t.records[j].X) << j << " " << offset;
            EXPECT_BITS(p.Y, t.records[j].Y) << j << " " << offset;
            EXPECT_BITS(p.Azimuth, t.records[j].Azimuth) << j << " " << offset;
        }
    }
    // The walk tests each record before its element, so just short of an
    // inner main point the element before it is evaluated.
    for (unsigned int j = 1; j < 5; ++j) {
        TangentPoint p{};
        ASSERT_EQ(LIB_CalWay_H_On(t.records, 6, t.records[j].Chainage - 0.0009, &p), 0);
        const double gap = distance(p.X, p.Y, t.records[j].X, t.records[j].Y);
        EXPECT_GT(gap, 0.0008) << j;
        EXPECT_LT(gap, 0.0010) << j;
    }
    // Before the start nothing is written; at or beyond the end (within
    // the tolerance) the end record stands.
    TangentPoint p = qtest::sentinel_filled<TangentPoint>();
    EXPECT_EQ(LIB_CalWay_H_On(t.records, 6, 999.998, &p), 0);
    EXPECT_TRUE(qtest::untouched(p));
    const HElement& end = t.records[5];
    for (double beyond : {-0.0005, 0.5, 1e6}) {
        TangentPoint q = qtest::sentinel_filled<TangentPoint>();
        EXPECT_EQ(LIB_CalWay_H_On(t.records, 6, end.Chainage + beyond, &q), 0);
        EXPECT_BITS(q.X, end.X);
        EXPECT_BITS(q.Azimuth, end.Azimuth);
    }
}

// Every 5 m along the road, the point and azimuth at the chainage against
// the element integrated numerically from its stored start. The exit curve
// is evaluated backward from its far end and must meet the forward run.
TEST(HOn, AgreesWithTheIntegratedAlignment)
{
    for (unsigned char turn = 0; turn < 2; ++turn) {
        Table t;
        ASSERT_EQ(build(design(turn), t), 0);
        for (double K = 1002.5; K < 1400.0; K += 5.0) {
            unsigned int i = 0;
            while (K >= t.records[i + 1].Chainage) {
                ++i;
            }
            const HElement& e = t.records[i];
            const double u = K - e.Chainage;
            const Plane run = integrate([&e](double s) { return heading(e, s); }, u, 2000);
            TangentPoint p{};
            ASSERT_EQ(LIB_CalWay_H_On(t.records, 6, K, &p), 0) << K;
            EXPECT_LT(distance(p.X, p.Y, e.X + run.x, e.Y + run.y), 2e-5) << K;
            EXPECT_LT(azimuth_gap(p.Azimuth, heading(e, u) * RHO), 0.02) << K;
        }
    }
}

TEST(HOn, FailuresAndOddTables)
{
    // The arc's point is written before its azimuth turns negative past a
    // full turn.
    HElement spin[2] = {element(2, 0.0, 0.0, 0.0, 20.0, 1.0, 0, 0, 0.0),
                        element(0, 0.0, 0.0, 0.0, 0.0, 0.0, 0, 0, 20.0)};
    TangentPoint p = qtest::sentinel_filled<TangentPoint>();
    EXPECT_EQ(LIB_CalWay_H_On(spin, 2, 10.0, &p), 2);
    EXPECT_NEAR(std::hypot(p.X, p.Y - -1.0), 1.0, 1e-12); // on the unit circle
    EXPECT_TRUE(qtest::untouched(p.Azimuth));

    HElement far[2] = {element(1, LIMIT - 1.0, 0.0, 0.0, 10.0, 0.0, 0, 0, 0.0),
                       element(0, 0.0, 0.0, 0.0, 0.0, 0.0, 0, 0, 10.0)};
    TangentPoint q = qtest::sentinel_filled<TangentPoint>();
    EXPECT_EQ(LIB_CalWay_H_On(far, 2, 5.0, &q), 2);
    EXPECT_TRUE(qtest::untouched(q));

    // An element of unknown kind is passed over.
    HElement odd[2] = {element(7, 0.0, 0.0, 0.0, 10.0, 0.0, 0, 0, 0.0),
                       element(0, 0.0, 0.0, 0.0, 0.0, 0.0, 0, 0, 10.0)};
    TangentPoint r = qtest::sentinel_filled<TangentPoint>();
    EXPECT_EQ(LIB_CalWay_H_On(odd, 2, 5.0, &r), 0);
    EXPECT_TRUE(qtest::untouched(r));

    // One record: only the end clamp applies. No record: nothing to read.
    TangentPoint s = qtest::sentinel_filled<TangentPoint>();
    EXPECT_EQ(LIB_CalWay_H_On(far, 1, -5.0, &s), 0);
    EXPECT_TRUE(qtest::untouched(s));
    EXPECT_EQ(LIB_CalWay_H_On(far, 1, 5.0, &s), 0);
    EXPECT_BITS(s.X, LIMIT - 1.0);
    TangentPoint none = qtest::sentinel_filled<TangentPoint>();
    EXPECT_EQ(LIB_CalWay_H_On(far, 0, 5.0, &none), 4);
    EXPECT_TRUE(qtest::untouched(none));
}

namespace {

struct PileResult {
    int status;
    uint32_t count;
    double piles[81];
};

PileResult piles(const std::vector<double>& chainages, double interval, unsigned char mode)
{
    PileResult r;
    qtest::fill_sentinel(r.piles);
    qtest::fill_sentinel(r.count);
    r.status = LIB_CalWay_Pile(chainages.data(), static_cast<unsigned char>(chainages.size()),
                               interval, r.piles, &r.count, mode);
    return r;
}

} // namespace

TEST(Pile, ListsOfPiles)
{
    struct Case {
        const char* what;
        std::vector<double> chainages;
        double interval;
        unsigned char mode;
        std::vector<double> expected; // then -1.0 for every removed entry
        int removed;
    };
    const Case cases[] = {
        {"whole multiples", {12.3, 100.0}, 20.0, 0, {12.3, 20, 40, 60, 80, 100}, 0},
        {"from the start", {12.3, 100.0}, 20.0, 1, {12.3, 32.3, 52.3, 72.3, 92.3, 100}, 0},
        {"other mode counts from zero", {12.3, 100.0}, 20.0, 5, {0, 12.3, 20, 40, 60, 80, 100}, 0},
        {"main points between piles",
         {0, 35.5, 61.2, 90},
         20.0,
         1,
         {0, 20, 35.5, 40, 60, 61.2, 80, 90},
         0},
        {"start on a multiple", {20.0, 70.0}, 20.0, 0, {20, 40, 60, 70}, 1},
        {"pile just after a main point",
         {0, 39.9995, 100},
         20.0,
         0,
         {0, 20, 39.9995, 60, 80, 100},
         2},
        {"main point just after a pile", {0, 40.0005, 100}, 20.0, 0, {0, 20, 40, 60, 80, 100}, 2},
        // One pass: of three entries within the tolerance in a row the
        // first and the third stay.
        {"three in a row",
         {0, 40.0004, 40.0008, 100},
         20.0,
         0,
         {0, 20, 40, 40.0008, 60, 80, 100},
         2},
        {"interval 0 copies", {5, 3, 1}, 0.0, 0, {5, 3, 1}, 0},
        {"no room before the end", {0, 15}, 20.0, 1, {0, 15}, 0},
        {"no point, no interval", {}, 0.0, 0, {}, 0},
    };
    for (const Case& c : cases) {
        const PileResult r = piles(c.chainages, c.interval, c.mode);
        ASSERT_EQ(r.status, 0) << c.what;
        ASSERT_EQ(r.count, c.expected.size()) << c.what;
        for (std::size_t j = 0; j < c.expected.size(); ++j) {
            EXPECT_NEAR(r.piles[j], c.expected[j], 1e-9) << c.what << " " << j;
        }
        for (int j = 0; j < c.removed; ++j) {
            EXPECT_BITS(r.piles[c.expected.size() + j], -1.0) << c.what;
        }
        EXPECT_TRUE(qtest::untouched(r.piles[c.expected.size() + c.removed])) << c.what;
    }
}

TEST(Pile, RejectedInputWritesNothing)
{
    struct Case {
        const char* what;
        std::vector<double> chainages;
        double interval;
    };
    const Case cases[] = {
        {"chainage not a number", {0, NaN, 100}, 20.0},
        {"chainage beyond the range", {0, 1e9}, 0.0},
        {"negative interval", {0, 100}, -1.0},
        {"interval not a number", {0, 100}, NaN},
        {"interval beyond the range", {0, 100}, 1e9},
        {"too many chainages", std::vector<double>(82, 1.0), 0.0},
        {"no chainage to start from", {}, 20.0},
    };
    for (const Case& c : cases) {
        const PileResult r = piles(c.chainages, c.interval, 0);
        EXPECT_EQ(r.status, 1) << c.what;
        EXPECT_TRUE(qtest::untouched(r.piles)) << c.what;
        EXPECT_TRUE(qtest::untouched(r.count)) << c.what;
    }
}

TEST(Pile, FullListStopsUnsorted)
{
    // 2 km at 10 m would need 200 piles: the list stops at 80 entries as
    // built, the end chainage still second.
    PileResult r = piles({0.0, 2000.0}, 10.0, 0);
    EXPECT_EQ(r.status, 4);
    EXPECT_EQ(r.count, 80u);
    EXPECT_BITS(r.piles[1], 2000.0);
    EXPECT_BITS(r.piles[2], 0.0);
    EXPECT_NEAR(r.piles[79], 770.0, 1e-9);
    EXPECT_TRUE(qtest::untouched(r.piles[80]));

    // 80 main points leave no room for the first pile.
    std::vector<double> many;
    for (int j = 0; j < 80; ++j) {
        many.push_back(j * 100.0 + 1.0);
    }
    r = piles(many, 30.0, 0);
    EXPECT_EQ(r.status, 4);
    EXPECT_EQ(r.count, 80u);
    EXPECT_TRUE(qtest::untouched(r.piles[80]));
    // 79 take the first pile, then the list is full.
    many.pop_back();
    r = piles(many, 30.0, 0);
    EXPECT_EQ(r.status, 4);
    EXPECT_EQ(r.count, 80u);
    EXPECT_BITS(r.piles[79], 30.0);
}
