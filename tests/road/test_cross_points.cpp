// Alignment by intersection points: turn angles, curve lengths, element tables.
#include "road_support.hpp"

#include <cstdio>
#include <string>
#include <vector>

using namespace roadtest;
using qtest::Call;
using qtest::EAST;
using qtest::rows;

namespace {

CrossPoint ip(double x, double y, double radius = 0.0, double entry = 0.0, double exit = 0.0,
              double chainage = 0.0)
{
    return CrossPoint{x, y, qtest::sentinel_double(), entry, exit, radius, chainage};
}

// n points zigzagging 400 m across 1 km steps, curves of R 200.
std::vector<CrossPoint> zigzag(int n, double transition)
{
    std::vector<CrossPoint> points;
    for (int j = 0; j < n; ++j) {
        points.push_back(ip(j * 1000.0, (j % 2) * 400.0, 200.0, transition, transition));
    }
    return points;
}

// zigzag(n, 50) with its first `missing` transition curves left out (exit,
// then entry, point by point): each moves the later records up by one.
std::vector<CrossPoint> missing_curves(int n, int missing)
{
    std::vector<CrossPoint> points = zigzag(n, 50.0);
    for (int j = 0; j < missing; ++j) {
        CrossPoint& point = points[1 + j / 2];
        (j % 2 == 0 ? point.ExitLength : point.EntryLength) = 0.0;
    }
    return points;
}

// The two table builders, with the names their checks report.
struct Builder {
    const char* name;
    ResultCode (*build)(CrossPoint*, unsigned char, HElement*, uint32_t*);
};
const Builder MAIN = {"LIB_CalWay_H_Cross_MainPoint", LIB_CalWay_H_Cross_MainPoint};
const Builder FULL = {"LIB_CalWay_H_Cross_MainPoint_Full", LIB_CalWay_H_Cross_MainPoint_Full};
const Builder BUILDERS[] = {MAIN, FULL};

struct Table {
    HElement records[81];
    uint32_t count;
    int status;
    Table(const Builder& builder, std::vector<CrossPoint>& polygon)
    {
        qtest::fill_sentinel(records);
        qtest::fill_sentinel(count);
        status = builder.build(polygon.data(), static_cast<unsigned char>(polygon.size()), records,
                               &count);
    }
    std::string types() const
    {
        std::string digits;
        for (uint32_t j = 0; j < count && j < 81; ++j) {
            digits += char('0' + records[j].Type);
        }
        return digits;
    }
};

} // namespace

TEST(CrossTurnAngle, TurnsAndFailures)
{
    // A quarter turn carries the 0.0055" between the two pis; a reversal is
    // folded; exactly 648000" is refused.
    const struct {
        SurveyPoint points[3];
        int status;
        double expected;
    } cases[] = {
        {{{0, 0, 0}, {100, 0, 0}, {100, 100, 0}}, 0, EAST},
        {{{0, 0, 0}, {100, 0, 0}, {100, -100, 0}}, 0, qtest::WEST - 1296000.0},
        {{{0, 0, 0}, {100, 0, 0}, {50, 0, 0}}, 0, qtest::SOUTH - 1296000.0},
        {{{0, 0, 0}, {100, 0, 0}, {99, 5.35897931698574e-08, 0}}, 2, 0},
        {{{0, 0, 0}, {100, NaN, 0}, {200, 0, 0}}, 2, 0},
        {{{100, 0, 1}, {100, 0, 2}, {200, 0, 0}}, 3, 0},
        {{{0, 0, 0}, {100, 0, 0}, {100, 0, 5}}, 3, 0},
    };
    for (const auto& [call, c] : rows("LIB_CalWay_H_Cross_TurnAngle", cases)) {
        double turn = qtest::sentinel_double();
        ASSERT_STATUS(call, LIB_CalWay_H_Cross_TurnAngle(c.points, &turn), c.status);
        if (c.status != 0) {
            EXPECT_UNTOUCHED(call, turn);
        } else {
            EXPECT_BITS(call, turn, c.expected);
        }
    }
}

TEST(CrossLength, QuarterTurnsAndFailures)
{
    // Tangent (R + p) tan(a/2) + q, p = L^2/24R, q = L/2 - L^3/240R^2, the
    // entry tangent taking the exit curve's p; arc (a - L1/2R - L2/2R) R.
    // Every length is written, refused or not.
    const struct {
        double turn, entry, exit, radius;
        int status;
        double entry_tangent, exit_tangent, arc;
    } cases[] = {{-324000, 0, 0, 100, 0, 100, 100, 157.07963},
                 {324000, 40, 40, 100, 0, 120.64, 120.64, 117.07963},
                 {324000, 60, 20, 100, 0, 130.07667, 111.49667, 117.07963},
                 {324000, 200, 200, 100, 2, 0, 0, 0},
                 {0, 0, 0, 100, 2, 0, 0, 0},
                 {900000, 0, 0, 100, 2, 0, 0, 0},
                 {640000, 0, 0, 99999999, 2, 0, 0, 0}};
    for (const auto& [call, c] : rows("LIB_CalWay_H_Cross_Length", cases)) {
        CrossPoint point = ip(0.0, 0.0, c.radius, c.entry, c.exit);
        point.TurnAngle = c.turn;
        CrossLengths out = qtest::sentinel_filled<CrossLengths>();
        ASSERT_STATUS(call, LIB_CalWay_H_Cross_Length(&point, &out), c.status);
        EXPECT_WRITTEN(call, out);
        if (c.status == 0) {
            EXPECT_WITHIN(call, out.EntryTangent, c.entry_tangent, 1e-5);
            EXPECT_WITHIN(call, out.ExitTangent, c.exit_tangent, 1e-5);
            EXPECT_WITHIN(call, out.ArcLength, c.arc, 1e-9);
            EXPECT_WITHIN(call, out.CurveLength, c.arc + c.entry + c.exit, 1e-9);
        }
    }
}

TEST(CrossMainPoint, CurvesStraightsAndTransitions)
{
    for (const Builder& builder : BUILDERS) {
        const Call call(builder.name, "one arc");
        std::vector<CrossPoint> polygon = {ip(0, 0), ip(100, 0, 50.0, 0, 0, 1000.0), ip(100, 100)};
        const Table t(builder, polygon);
        ASSERT_STATUS(call, t.status, 0);
        EXPECT_EQ(t.types(), "1210") << call;
        const HElement* r = t.records;
        EXPECT_BITS(call, polygon[1].TurnAngle, EAST);
        EXPECT_BITS(call, r[0].Chainage, 900.0); // the first inner point's 1000 less 100
        EXPECT_WITHIN(call, r[1].Length, 25.0 * 3.14159265358979, 1e-9); // atan2's pi
        EXPECT_UNTOUCHED(call, r[1].Spiral); // the arc leaves it as it was
        EXPECT_BITS(call, r[3].Azimuth, EAST);
        EXPECT_BITS(call, r[3].Chainage, r[2].Chainage + r[2].Length);
        EXPECT_BELOW(call, continuity(call, r, t.count), 1e-5);
    }
    // A first inner point without radius: two straights from P0's chainage.
    const Call straights(FULL.name, "no radius at the first inner point");
    std::vector<CrossPoint> polygon = {ip(0, 0, 0, 0, 0, 250.0), ip(30, 40, 0.0, 0, 0, 1e6),
                                       ip(30, 100), ip(500, 500, 50.0)};
    const Table t(FULL, polygon);
    EXPECT_EQ(t.types(), "110") << straights;
    EXPECT_BITS(straights, t.records[1].Chainage, 300.0);
    EXPECT_BITS(straights, t.records[1].Azimuth, EAST);
    EXPECT_BITS(straights, t.records[2].Chainage, 360.0);
    EXPECT_UNTOUCHED(straights, t.records[3]);
    EXPECT_UNTOUCHED(straights, polygon[1].TurnAngle);
    // Transition curves: the curve's end is placed from the intersection
    // point by the tangent, whose shift and offset are truncated series, so
    // the evaluated exit curve ends a little away from it.
    const Call transitions(MAIN.name, "transitions 30/60 on R 100");
    polygon = {ip(1000, 1000), ip(1400, 1100, 100.0, 30.0, 60.0, 500.0),
               ip(1600, 1500, 100.0, 60.0, 30.0), ip(2100, 1450)};
    const Table s(MAIN, polygon);
    EXPECT_EQ(s.types(), "1323132310") << transitions;
    EXPECT_BITS(transitions, s.records[1].Spiral, 0);
    EXPECT_BITS(transitions, s.records[3].Spiral, 1);
    EXPECT_BITS(transitions, s.records[2].Turn, 1); // right, then left
    EXPECT_BITS(transitions, s.records[6].Turn, 0);
    const double worst = continuity(transitions, s.records, s.count);
    std::printf("transitions 30/60 on R 100: largest gap %.3g m\n", worst);
    EXPECT_BELOW(transitions, worst, 6e-3);
}

TEST(CrossMainPoint, StatusesAndTableCapacity)
{
    struct Case {
        std::vector<CrossPoint> polygon;
        int main_status, full_status;
        uint32_t count; // records written on 0 or 4
    };
    const CrossPoint a = ip(0, 0), c = ip(100, 100);
    std::vector<CrossPoint> one_entry = zigzag(41, 0.0);
    one_entry[1].EntryLength = 50.0;
    // Quarter turns sharing the 100 m between their points leave no straight.
    // Four records a point: the straight to the 21st fills the last slot and
    // becomes the end mark; with one, two or three curves fewer the entry
    // curve, the arc or the exit curve fills it, and the next element (a
    // straight to a 22nd point, or the final one) is refused. Two a point
    // (three at one): 41 points fill all 81 slots, 42 do not fit.
    // clang-format off
    const Case cases[] = {
        {{}, 1, 1, 0}, {{a}, 3, 1, 0}, {{a, ip(30, 40)}, 0, 0, 2}, {{a, ip(0, 0, 50), c}, 3, 3, 0},
        {{a, ip(100, 0, 50.0), ip(100, 100, 50.0), ip(200, 100)}, 0, 0, 5},
        {{ip(NaN, 0), ip(100, 0, 50), c}, 1, 1, 0}, {{a, ip(100, 0, 50), ip(100, 1e9)}, 1, 1, 0},
        {{a, ip(100, 0, 0.0), ip(100, 100), ip(0, 100, 50), c}, 1, 0, 3},
        {{a, ip(100, 0, 1e9), c}, 1, 2, 0}, {{a, ip(100, 0, 50, -1.0), c}, 1, 1, 0},
        {{a, ip(100, 0, 50, 0, 0, 1e9), c}, 1, 1, 0}, {{a, ip(100, 0, 0, 0, 0, NaN)}, 1, 1, 0},
        {std::vector<CrossPoint>(81, a), 4, 4, 0}, {zigzag(23, 50.0), 4, 4, 81},
        {missing_curves(23, 1), 4, 4, 81}, {missing_curves(23, 2), 4, 4, 81},
        {missing_curves(24, 3), 4, 4, 81}, {missing_curves(23, 3), 4, 4, 81},
        {zigzag(41, 0.0), 0, 0, 80}, {one_entry, 0, 0, 81}, {zigzag(42, 0.0), 4, 4, 81}};
    // clang-format on
    for (const auto& [row, k] : rows(cases)) {
        for (const Builder& builder : BUILDERS) {
            const Call call = row.of(builder.name);
            std::vector<CrossPoint> polygon = k.polygon;
            const Table t(builder, polygon);
            const int status = &builder == &BUILDERS[0] ? k.main_status : k.full_status;
            ASSERT_STATUS(call, t.status, status);
            if (status == 0 || (status == 4 && k.count != 0)) {
                EXPECT_BITS(call, t.count, k.count);
                EXPECT_BITS(call, t.records[k.count - 1].Type, 0);
            } else {
                EXPECT_UNTOUCHED(call, t.records);
                EXPECT_UNTOUCHED(call, t.count);
            }
        }
    }
    // A failure at the second curve keeps what was built before it.
    std::vector<CrossPoint> polygon = {ip(0, 0), ip(500, 0, 100.0),
                                       ip(500, 500, 100.0, 180.0, 180.0), ip(1000, 500)};
    const Call second(MAIN.name, "second curve too long");
    const Table t(MAIN, polygon);
    EXPECT_STATUS(second, t.status, 2);
    EXPECT_BITS(second, t.records[1].Type, 2);
    EXPECT_UNTOUCHED(second, t.records[2]);
    EXPECT_UNTOUCHED(second, t.count);
    EXPECT_WITHIN(second, polygon[2].TurnAngle, -EAST, 1e-6);
}
