// Alignment by intersection points: turn angles, curve lengths, element tables.
#include "road_support.hpp"

#include <cstdio>
#include <string>
#include <vector>

using namespace roadtest;
using qtest::EAST;

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

using Builder = ResultCode (*)(CrossPoint*, unsigned char, HElement*, uint32_t*);
const Builder BUILDERS[] = {LIB_CalWay_H_Cross_MainPoint, LIB_CalWay_H_Cross_MainPoint_Full};

struct Table {
    HElement records[81];
    uint32_t count;
    int status;
    Table(Builder builder, std::vector<CrossPoint>& polygon)
    {
        qtest::fill_sentinel(records);
        qtest::fill_sentinel(count);
        status =
            builder(polygon.data(), static_cast<unsigned char>(polygon.size()), records, &count);
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
    for (const auto& c : cases) {
        double turn = qtest::sentinel_double();
        ASSERT_EQ(LIB_CalWay_H_Cross_TurnAngle(c.points, &turn), c.status) << &c - cases;
        EXPECT_TRUE(c.status != 0 ? qtest::untouched(turn) : qtest::same_double(turn, c.expected));
    }
}

TEST(CrossLength, QuarterTurnsAndFailures)
{
    // turn, entry, exit, status, entry/exit tangent, arc; R = 100 (arc -1:
    // R = 99999999). Tangent (R + p) tan(a/2) + q, p = L^2/24R, q = L/2 -
    // L^3/240R^2, the entry tangent taking the exit curve's p; arc (a -
    // L1/2R - L2/2R) R.
    // clang-format off
    const Row<7> cases[] = {
        {-324000, 0, 0, 0, 100, 100, 157.07963}, {324000, 40, 40, 0, 120.64, 120.64, 117.07963},
        {324000, 60, 20, 0, 130.07667, 111.49667, 117.07963}, {324000, 200, 200, 2, 0, 0, 0},
        {0, 0, 0, 2, 0, 0, 0}, {900000, 0, 0, 2, 0, 0, 0}, {640000, 0, 0, 2, 0, 0, -1}};
    // clang-format on
    for (const auto& c : cases) {
        CrossPoint point = ip(0.0, 0.0, c[6] < 0 ? 99999999.0 : 100.0, c[1], c[2]);
        point.TurnAngle = c[0];
        CrossLengths out = qtest::sentinel_filled<CrossLengths>();
        ASSERT_EQ(LIB_CalWay_H_Cross_Length(&point, &out), c[3]) << c[0] << " " << c[1];
        EXPECT_TRUE(c[3] != 0 || (std::fabs(out.EntryTangent - c[4]) < 1e-5 &&
                                  std::fabs(out.ExitTangent - c[5]) < 1e-5 &&
                                  std::fabs(out.ArcLength - c[6]) < 1e-9 &&
                                  std::fabs(out.CurveLength - (c[6] + c[1] + c[2])) < 1e-9))
            << c[0] << " " << c[1];
        EXPECT_FALSE(qtest::untouched(out.EntryTangent) || qtest::untouched(out.ExitTangent) ||
                     qtest::untouched(out.ArcLength) || qtest::untouched(out.CurveLength));
    }
}

TEST(CrossMainPoint, CurvesStraightsAndTransitions)
{
    for (Builder builder : BUILDERS) {
        std::vector<CrossPoint> polygon = {ip(0, 0), ip(100, 0, 50.0, 0, 0, 1000.0), ip(100, 100)};
        const Table t(builder, polygon);
        ASSERT_EQ(t.status, 0);
        EXPECT_EQ(t.types(), "1210");
        const HElement* r = t.records;
        EXPECT_BITS(polygon[1].TurnAngle, EAST);
        EXPECT_BITS(r[0].Chainage, 900.0); // the first inner point's 1000 less 100
        EXPECT_NEAR(r[1].Length, 25.0 * 3.14159265358979, 1e-9); // the turn has atan2's pi
        EXPECT_EQ(r[1].Spiral, qtest::SENTINEL_BYTE);            // the arc leaves it as it was
        EXPECT_TRUE(r[3].Azimuth == EAST && r[3].Chainage == r[2].Chainage + r[2].Length);
        EXPECT_LT(continuity(r, t.count), 1e-5);
    }
    // A first inner point without radius: two straights from P0's chainage.
    std::vector<CrossPoint> polygon = {ip(0, 0, 0, 0, 0, 250.0), ip(30, 40, 0.0, 0, 0, 1e6),
                                       ip(30, 100), ip(500, 500, 50.0)};
    const Table t(LIB_CalWay_H_Cross_MainPoint_Full, polygon);
    EXPECT_EQ(t.types(), "110");
    EXPECT_TRUE(t.records[1].Chainage == 300.0 && t.records[1].Azimuth == EAST &&
                t.records[2].Chainage == 360.0);
    EXPECT_TRUE(qtest::untouched(t.records[3]) && qtest::untouched(polygon[1].TurnAngle));
    // Transition curves: the curve's end is placed from the intersection
    // point by the tangent, whose shift and offset are truncated series, so
    // the evaluated exit curve ends a little away from it.
    polygon = {ip(1000, 1000), ip(1400, 1100, 100.0, 30.0, 60.0, 500.0),
               ip(1600, 1500, 100.0, 60.0, 30.0), ip(2100, 1450)};
    const Table s(LIB_CalWay_H_Cross_MainPoint, polygon);
    EXPECT_EQ(s.types(), "1323132310");
    EXPECT_EQ(s.records[1].Spiral * 10 + s.records[3].Spiral, 1);
    EXPECT_EQ(s.records[2].Turn * 10 + s.records[6].Turn, 10); // right, then left
    const double worst = continuity(s.records, s.count);
    std::printf("transitions 30/60 on R 100: largest gap %.3g m\n", worst);
    EXPECT_LT(worst, 6e-3);
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
    for (const Case& k : cases) {
        for (int which = 0; which < 2; ++which) {
            std::vector<CrossPoint> polygon = k.polygon;
            const Table t(BUILDERS[which], polygon);
            const int status = which == 0 ? k.main_status : k.full_status;
            ASSERT_EQ(t.status, status) << k.polygon.size();
            const bool written = status == 0 || (status == 4 && k.count != 0);
            EXPECT_TRUE(written ? t.count == k.count && t.records[k.count - 1].Type == 0
                                : qtest::untouched(t.records) && qtest::untouched(t.count))
                << &k - cases << " " << which;
        }
    }
    // A failure at the second curve keeps what was built before it.
    std::vector<CrossPoint> polygon = {ip(0, 0), ip(500, 0, 100.0),
                                       ip(500, 500, 100.0, 180.0, 180.0), ip(1000, 500)};
    const Table t(LIB_CalWay_H_Cross_MainPoint, polygon);
    EXPECT_EQ(t.status, 2);
    EXPECT_TRUE(t.records[1].Type == 2 && qtest::untouched(t.records[2]) &&
                qtest::untouched(t.count));
    EXPECT_NEAR(polygon[2].TurnAngle, -EAST, 1e-6);
}
