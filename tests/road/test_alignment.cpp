// Alignment by elements: the element table, the point at a chainage, piles.
#include "road_support.hpp"

#include <utility>
#include <vector>

using namespace roadtest;
using qtest::Call;
using qtest::rows;

namespace {

struct Table {
    HElement records[81];
    int status;
    explicit Table(const std::vector<HElement>& list, unsigned char extra = 1)
    {
        qtest::fill_sentinel(records);
        status = LIB_CalWay_H_Ele_MainPoint(
            list.data(), static_cast<unsigned char>(list.size() + extra), records);
    }
};

// Line 100, entry curve 60, arc 80 (R 200), exit curve 60, line 100, from
// (5000, 3000) heading 100000" at chainage 1000.
std::vector<HElement> design(unsigned char turn)
{
    return {element(1, 5000.0, 3000.0, 100000.0, 100.0, 0.0, 0, 0, 1000.0),
            element(3, 0, 0, 0, 60.0, 200.0, turn, 0), element(2, 0, 0, 0, 80.0, 200.0, turn, 0),
            element(3, 0, 0, 0, 60.0, 200.0, turn, 1), element(1, 0, 0, 0, 100.0, 0.0, 0, 0)};
}

// Heading (radians) at distance u into element e, from its stored start.
double heading(const HElement& e, double u)
{
    const double side = e.Turn == 1 ? 1.0 : -1.0;
    const double turned = e.Type == 1     ? 0.0
                          : e.Type == 2   ? u / e.Radius
                          : e.Spiral == 0 ? u * u / (2 * e.Radius * e.Length)
                                          : u / e.Radius - u * u / (2 * e.Radius * e.Length);
    return e.Azimuth / RHO + side * turned;
}

} // namespace

TEST(EleMainPoint, LineAfterLineRejectedAndOverflowingLists)
{
    // A second line starts at the first one's end in its own direction; a 1
    // left by the caller in the end slot keeps the caller's azimuth there.
    const std::vector<HElement> lines = {element(1, 0.0, 0.0, 0.0, 100.0, 0, 0, 0, 5.0),
                                         element(1, 7.0, 7.0, 324000.0, 50.0, 0, 0, 0)};
    for (unsigned char slot : {0, 1}) {
        const Call call("LIB_CalWay_H_Ele_MainPoint",
                        "two lines, end slot " + std::to_string(slot));
        Table t(lines, 0);
        t.records[2].Type = slot;
        t.records[2].Azimuth = 42.0;
        ASSERT_STATUS(call, LIB_CalWay_H_Ele_MainPoint(lines.data(), 3, t.records), 0);
        const HElement& r = t.records[1];
        EXPECT_BITS(call, r.X, 100.0);
        EXPECT_BITS(call, r.Y, 0.0);
        EXPECT_BITS(call, r.Azimuth, 324000.0);
        EXPECT_BITS(call, r.Chainage, 105.0);
        EXPECT_BITS(call, t.records[2].Type, 0);
        EXPECT_BITS(call, t.records[2].Azimuth, slot == 1 ? 42.0 : 324000.0);
        EXPECT_UNTOUCHED(call, t.records[2].Length);
    }
    // Element spoiled, how, status. Two circles of azimuth pass; a line's
    // radius is not read, nor a later element's start.
    const struct {
        int index;
        void (*spoil)(HElement&);
        int status;
        // clang-format off
    } cases[] = {
        {0, [](HElement& e) { e.X = NaN; }, 1}, {0, [](HElement& e) { e.Azimuth = -0.001; }, 1},
        {0, [](HElement& e) { e.Azimuth = 2592000.001; }, 1},
        {0, [](HElement& e) { e.Azimuth = 2592000.0; }, 0},
        {0, [](HElement& e) { e.Chainage = 1e9; }, 1}, {2, [](HElement& e) { e.Type = 0; }, 1},
        {1, [](HElement& e) { e.Length = 0.0; }, 1}, {2, [](HElement& e) { e.Radius = 1e9; }, 1},
        {2, [](HElement& e) { e.Turn = 2; }, 1}, {3, [](HElement& e) { e.Spiral = 2; }, 1},
        {4, [](HElement& e) { e.Radius = NaN; }, 0}, {2, [](HElement& e) { e.X = NaN; }, 0}};
    // clang-format on
    for (const auto& [call, c] : rows("LIB_CalWay_H_Ele_MainPoint", cases)) {
        std::vector<HElement> list = design(1);
        c.spoil(list[c.index]);
        const Table t(list);
        EXPECT_STATUS(call, t.status, c.status);
        if (c.status != 0) {
            EXPECT_UNTOUCHED(call, t.records);
        }
    }
    for (unsigned char n : {0, 1, 82}) {
        const Call call("LIB_CalWay_H_Ele_MainPoint", "count " + std::to_string(n));
        Table t({});
        EXPECT_STATUS(call, LIB_CalWay_H_Ele_MainPoint(design(1).data(), n, t.records), 4);
        EXPECT_UNTOUCHED(call, t.records);
    }
    // The second end passes the chainage limit: written, the end record's
    // Type not yet set. An arc's end azimuth is written before its end
    // point fails.
    const Call past("LIB_CalWay_H_Ele_MainPoint", "second end past the chainage limit");
    const Table over({element(1, 0.0, 0.0, 0.0, 3.0, 0, 0, 0, LIMIT - 5.0),
                      element(1, 0.0, 0.0, 0.0, 3.0, 0, 0, 0)});
    EXPECT_STATUS(past, over.status, 2);
    EXPECT_BITS(past, over.records[2].X, 6.0);
    EXPECT_UNTOUCHED(past, over.records[2].Type);
    const Call arc_end("LIB_CalWay_H_Ele_MainPoint", "arc ending out of range");
    const Table far({element(2, LIMIT - 1.0, 0.0, 0.0, 50.0, 100.0, 1, 0, 0.0)});
    EXPECT_STATUS(arc_end, far.status, 2);
    EXPECT_WITHIN(arc_end, far.records[1].Azimuth, 0.5 * RHO, 1e-9);
    EXPECT_UNTOUCHED(arc_end, far.records[1].X);
}

// Every 5 m along the road, the point and azimuth against the element
// integrated from its stored start: the exit curve, evaluated backward from
// its far end, must meet the forward run. Within 0.001 of a main point, and
// at or beyond the end, the record itself is given.
TEST(HOn, AgreesWithTheIntegratedAlignment)
{
    for (unsigned char turn = 0; turn < 2; ++turn) {
        const std::string side = turn == 1 ? "right" : "left";
        const Call built("LIB_CalWay_H_Ele_MainPoint", "curves to the " + side);
        const Table t(design(turn));
        EXPECT_BELOW(built, continuity(built, t.records, 6), 1e-9);
        EXPECT_BITS(built, t.records[5].Chainage, 1400.0);
        for (double K = 1002.5; K < 1400.0; K += 5.0) {
            const Call call("LIB_CalWay_H_On",
                            "curves to the " + side + ", K " + std::to_string(K));
            unsigned int i = 0;
            while (K >= t.records[i + 1].Chainage) {
                ++i;
            }
            const HElement& e = t.records[i];
            const double u = K - e.Chainage;
            const PlanePoint run = integrate([&e](double s) { return heading(e, s); }, u, 200);
            TangentPoint p{};
            ASSERT_STATUS(call, LIB_CalWay_H_On(t.records, 6, K, &p), 0);
            EXPECT_BELOW(call, gap(p.X, p.Y, e.X + run.X, e.Y + run.Y), 2e-5);
            const double d = std::fabs(std::fmod(p.Azimuth - heading(e, u) * RHO, 1296000.0));
            EXPECT_BELOW(call, std::fmin(d, 1296000.0 - d), 0.02);
        }
        const struct {
            int record;
            double offset;
        } probes[] = {{1, 0.0009}, {3, 0.0009}, {5, -0.0005}, {5, 1e6}};
        for (const auto& [row, c] : rows(probes)) {
            const Call call = row.of("LIB_CalWay_H_On").at("curves to the " + side);
            const HElement& main_point = t.records[c.record];
            TangentPoint p{};
            ASSERT_STATUS(call, LIB_CalWay_H_On(t.records, 6, main_point.Chainage + c.offset, &p),
                          0);
            EXPECT_BITS(call, p, (TangentPoint{main_point.X, main_point.Y, main_point.Azimuth}));
        }
    }
    // Before the start nothing is written, nor from an empty table.
    const Table t(design(1));
    TangentPoint q = qtest::sentinel_filled<TangentPoint>();
    const Call before("LIB_CalWay_H_On", "before the start"), empty("LIB_CalWay_H_On", "empty");
    EXPECT_STATUS(before, LIB_CalWay_H_On(t.records, 6, 999.998, &q), 0);
    EXPECT_UNTOUCHED(before, q);
    EXPECT_STATUS(empty, LIB_CalWay_H_On(t.records, 0, 1100.0, &q), 4);
    EXPECT_UNTOUCHED(empty, q);
    // An arc whose azimuth fails: the position is already written.
    const Call spin_call("LIB_CalWay_H_On", "arc turning past two circles");
    const HElement spin[2] = {element(2, 100.0, 0.0, 0.0, 20.0, 1.0, 0, 0, 0.0),
                              element(0, 0.0, 0.0, 0.0, 0.0, 0.0, 0, 0, 20.0)};
    EXPECT_STATUS(spin_call, LIB_CalWay_H_On(spin, 2, 10.0, &q), 2);
    EXPECT_WITHIN(spin_call, gap(q.X, q.Y, 100.0, -1.0), 1.0, 1e-12); // on the circle
    EXPECT_UNTOUCHED(spin_call, q.Azimuth);
    // Exactly a millimetre from both ends of a 2 mm line is on neither main
    // point: the line itself is evaluated.
    const Call stub_call("LIB_CalWay_H_On", "middle of a 2 mm line");
    const HElement stub[2] = {element(1, 0.0, 0.0, 0.0, 0.002, 0.0, 0, 0, 0.0),
                              element(0, 0.002, 0.0, 0.0, 0.0, 0.0, 0, 0, 0.002)};
    EXPECT_STATUS(stub_call, LIB_CalWay_H_On(stub, 2, 0.001, &q), 0);
    EXPECT_BITS(stub_call, q, (TangentPoint{0.001, 0.0, 0.0}));
}

TEST(Pile, ListsOfPiles)
{
    struct Case {
        std::vector<double> chainages;
        double interval;
        unsigned char mode;
        int status;
        std::vector<double> expected; // then -1.0 for every removed entry
        unsigned int count;
    };
    const std::vector<double> road = {12.3, 100.0};
    std::vector<double> eighty(80, 1.0);
    for (int j = 0; j < 80; ++j) {
        eighty[j] += j * 100.0;
    }
    // Modes other than 0 and 1 count from 0. De-duplication is one pass: of
    // three entries within the tolerance the first and third stay; exactly a
    // millimetre apart is within it. A full list stops at 80 entries as
    // built, unsorted; 80 main points leave no room for the first pile.
    // clang-format off
    const Case cases[] = {
        {road, 20.0, 0, 0, {12.3, 20, 40, 60, 80, 100}, 6},
        {{20.0, 70.0}, 20.0, 0, 0, {20, 40, 60, 70, -1}, 4},
        {road, 20.0, 1, 0, {12.3, 32.3, 52.3, 72.3, 92.3, 100}, 6},
        {road, 20.0, 5, 0, {0, 12.3, 20, 40, 60, 80, 100}, 7},
        {{0, 39.9995, 100}, 20.0, 0, 0, {0, 20, 39.9995, 60, 80, 100, -1, -1}, 6},
        {{0, 40.0004, 40.0008, 100}, 20.0, 0, 0, {0, 20, 40, 40.0008, 60, 80, 100, -1, -1}, 7},
        {{0.001, 0.002, 30}, 20.0, 0, 0, {0.001, 20, 30, -1}, 3},
        {{5, 3, 1}, 0.0, 0, 0, {5, 3, 1}, 3}, {{}, 0.0, 0, 0, {}, 0}, {{}, 20.0, 0, 1, {}, 0},
        {{0, NaN, 100}, 20.0, 0, 1, {}, 0}, {road, -1.0, 0, 1, {}, 0}, {road, 1e9, 0, 1, {}, 0},
        {std::vector<double>(82, 1.0), 0.0, 0, 1, {}, 0}, {eighty, 30.0, 0, 4, {1, 101, 201}, 80},
        {{0.0, 2000.0}, 10.0, 0, 4, {0, 2000, 0, 10, 20}, 80}};
    // clang-format on
    for (const auto& [call, c] : rows("LIB_CalWay_Pile", cases)) {
        double piles[81];
        uint32_t count = qtest::sentinel_filled<uint32_t>();
        qtest::fill_sentinel(piles);
        ASSERT_STATUS(call,
                      LIB_CalWay_Pile(c.chainages.data(),
                                      static_cast<unsigned char>(c.chainages.size()), c.interval,
                                      piles, &count, c.mode),
                      c.status);
        if (c.status == 1) {
            EXPECT_UNTOUCHED(call, piles);
            EXPECT_UNTOUCHED(call, count);
            continue;
        }
        for (std::size_t j = 0; j < c.expected.size(); ++j) {
            EXPECT_WITHIN(call.at("pile " + std::to_string(j)), piles[j], c.expected[j], 1e-9);
        }
        EXPECT_BITS(call, count, c.count);
        EXPECT_UNTOUCHED(call, piles[c.status == 4 ? 80 : c.expected.size()]);
    }
}

TEST(Pile, CountAboveATableIsRefusedBeforeAnyChainageIsRead)
{
    // Found by fuzzing: with m above 81 every one of the m chainages was
    // range-tested before the count. A caller holds at most a table's 81;
    // in a heap block of exactly 81, a sanitized build reports any read
    // beyond them.
    const std::vector<double> table(81, 100.0);
    for (const unsigned m : {82u, 200u, 255u}) {
        const Call call("LIB_CalWay_Pile", "m = " + std::to_string(m));
        double piles[81];
        uint32_t count = qtest::sentinel_filled<uint32_t>();
        qtest::fill_sentinel(piles);
        EXPECT_STATUS(
            call,
            LIB_CalWay_Pile(table.data(), static_cast<unsigned char>(m), 20.0, piles, &count, 0),
            1);
        EXPECT_UNTOUCHED(call, piles);
        EXPECT_UNTOUCHED(call, count);
    }
}
