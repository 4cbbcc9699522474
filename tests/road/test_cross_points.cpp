// Alignment by intersection points: turn angles, curve lengths and the
// element table of a polygon.
#include "road_support.hpp"

#include <cstdio>
#include <vector>

using namespace roadtest;
using qtest::EAST;
using qtest::NaN;

namespace {

// An intersection point whose TurnAngle holds the sentinel until computed.
CrossPoint ip(double x, double y, double radius = 0.0, double entry = 0.0, double exit = 0.0,
              double chainage = 0.0)
{
    return CrossPoint{x, y, qtest::sentinel_double(), entry, exit, radius, chainage};
}

// n points zigzagging 400 m across a 1 km step, each curve of R 200 with
// transition curves of the given length.
std::vector<CrossPoint> zigzag(int n, double transition)
{
    std::vector<CrossPoint> points;
    for (int j = 0; j < n; ++j) {
        points.push_back(ip(j * 1000.0, (j % 2) * 400.0, 200.0, transition, transition));
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
    void expect_types(const std::vector<int>& types) const
    {
        ASSERT_EQ(count, types.size());
        for (std::size_t j = 0; j < types.size(); ++j) {
            EXPECT_EQ(records[j].Type, types[j]) << j;
        }
    }
};

} // namespace

TEST(CrossTurnAngle, TurnsAndFailures)
{
    struct Case {
        SurveyPoint points[3];
        int status;
        double expected;
    };
    const Case cases[] = {
        // A quarter turn carries the 0.0055" between the two pis.
        {{{0, 0, 0}, {100, 0, 0}, {100, 100, 0}}, 0, EAST},
        {{{0, 0, 0}, {100, 0, 0}, {100, -100, 0}}, 0, qtest::WEST - 1296000.0},
        {{{0, 0, 0}, {100, 0, 0}, {50, 0, 0}}, 0, qtest::SOUTH - 1296000.0}, // reversal folded
        {{{0, 0, 0}, {100, 0, 0}, {99, 5.35897931698574e-08, 0}}, 2, 0},     // exactly 648000
        {{{0, 0, 0}, {100, NaN, 0}, {200, 0, 0}}, 2, 0},
        {{{100, 0, 1}, {100, 0, 2}, {200, 0, 0}}, 3, 0},
        {{{0, 0, 0}, {100, 0, 0}, {100, 0, 5}}, 3, 0},
    };
    for (const Case& c : cases) {
        double turn = qtest::sentinel_double();
        ASSERT_EQ(LIB_CalWay_H_Cross_TurnAngle(c.points, &turn), c.status) << c.expected;
        if (c.status == 0) {
            EXPECT_BITS(turn, c.expected);
        } else {
            EXPECT_TRUE(qtest::untouched(turn));
        }
    }
}

TEST(CrossLength, QuarterTurnsAndFailures)
{
    struct Case {
        double turn, radius, entry, exit;
        int status;
        double entry_tangent, exit_tangent, arc;
    };
    // R = 100, a quarter turn: tangent (R + p) tan(a/2) + q with the shift
    // p = L^2/24R and q = L/2 - L^3/240R^2; arc (a - L1/2R - L2/2R) R. The
    // entry tangent takes the exit curve's shift, as the formula has it.
    const Case cases[] = {
        {-324000.0, 100.0, 0.0, 0.0, 0, 100.0, 100.0, 157.07963},
        {324000.0, 100.0, 40.0, 40.0, 0, 120.64, 120.64, 117.07963},
        {324000.0, 100.0, 60.0, 20.0, 0, 130.07667, 111.49667, 117.07963},
        {324000.0, 100.0, 200.0, 200.0, 2, 0, 0, 0},  // transitions use up the turn
        {0.0, 100.0, 0.0, 0.0, 2, 0, 0, 0},           // no turn: division by zero
        {900000.0, 100.0, 0.0, 0.0, 2, 0, 0, 0},      // tangent negative
        {640000.0, 99999999.0, 0.0, 0.0, 2, 0, 0, 0}, // tangent beyond the range
    };
    for (const Case& c : cases) {
        CrossPoint point = ip(0.0, 0.0, c.radius, c.entry, c.exit);
        point.TurnAngle = c.turn;
        CrossLengths out = qtest::sentinel_filled<CrossLengths>();
        ASSERT_EQ(LIB_CalWay_H_Cross_Length(&point, &out), c.status) << c.turn << " " << c.entry;
        if (c.status == 0) {
            EXPECT_NEAR(out.EntryTangent, c.entry_tangent, 1e-5);
            EXPECT_NEAR(out.ExitTangent, c.exit_tangent, 1e-5);
            EXPECT_NEAR(out.ArcLength, c.arc, 1e-9);
            EXPECT_NEAR(out.CurveLength, c.arc + c.entry + c.exit, 1e-9);
        }
        // All four are written even on failure.
        EXPECT_FALSE(qtest::untouched(out.EntryTangent) || qtest::untouched(out.ExitTangent) ||
                     qtest::untouched(out.ArcLength) || qtest::untouched(out.CurveLength));
    }
}

TEST(CrossMainPoint, OneCurveAndTheFullBuildersTwoStraights)
{
    for (Builder builder : BUILDERS) {
        std::vector<CrossPoint> polygon = {ip(0, 0), ip(100, 0, 50.0, 0, 0, 1000.0), ip(100, 100)};
        const Table t(builder, polygon);
        ASSERT_EQ(t.status, 0);
        t.expect_types({1, 2, 1, 0});
        const HElement* r = t.records;
        EXPECT_BITS(polygon[1].TurnAngle, EAST);
        EXPECT_BITS(r[0].Chainage, 900.0); // the first inner point's 1000 less 100
        EXPECT_NEAR(r[1].Length, 25.0 * 3.14159265358979, 1e-9); // the turn has atan2's pi
        EXPECT_EQ(r[1].Spiral, qtest::SENTINEL_BYTE);            // the arc leaves it as it was
        EXPECT_BITS(r[3].Azimuth, EAST);
        EXPECT_BITS(r[3].Chainage, r[2].Chainage + r[2].Length);
        EXPECT_LT(continuity(r, t.count), 1e-5);
    }
    // A first inner point without radius: two straights from P0's chainage.
    std::vector<CrossPoint> polygon = {ip(0, 0, 0, 0, 0, 250.0), ip(30, 40, 0.0, 0, 0, 1e6),
                                       ip(30, 100), ip(500, 500, 50.0)};
    const Table t(LIB_CalWay_H_Cross_MainPoint_Full, polygon);
    t.expect_types({1, 1, 0});
    EXPECT_BITS(t.records[1].Chainage, 300.0);
    EXPECT_BITS(t.records[1].Azimuth, EAST);
    EXPECT_BITS(t.records[2].Chainage, 360.0);
    EXPECT_TRUE(qtest::untouched(t.records[3]));
    EXPECT_TRUE(qtest::untouched(polygon[1].TurnAngle));
}

TEST(CrossMainPoint, TransitionCurvesJoinUp)
{
    // The curve's end is placed from the intersection point by the tangent,
    // whose shift and offset are truncated series: the exit curve, when
    // evaluated, ends a little away from it.
    std::vector<CrossPoint> polygon = {ip(1000, 1000), ip(1400, 1100, 100.0, 30.0, 60.0, 500.0),
                                       ip(1600, 1500, 100.0, 60.0, 30.0), ip(2100, 1450)};
    const Table t(LIB_CalWay_H_Cross_MainPoint, polygon);
    t.expect_types({1, 3, 2, 3, 1, 3, 2, 3, 1, 0});
    EXPECT_EQ(t.records[1].Spiral * 10 + t.records[3].Spiral, 1);
    EXPECT_EQ(t.records[2].Turn * 10 + t.records[6].Turn, 10); // right, then left
    const double worst = continuity(t.records, t.count);
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
    const Case cases[] = {
        {{}, 1, 1, 0},
        {{a}, 3, 1, 0},
        {{a, ip(30, 40)}, 0, 0, 2},
        // Quarter turns whose tangents share the 100 m between the points: no
        // straight between them.
        {{a, ip(100, 0, 50.0), ip(100, 100, 50.0), ip(200, 100)}, 0, 0, 5},
        {{ip(NaN, 0), ip(100, 0, 50), c}, 1, 1, 0},
        {{a, ip(100, 0, 50), ip(100, 1e9)}, 1, 1, 0},
        {{a, ip(100, 0, 0.0), ip(100, 100), ip(0, 100, 50), c}, 1, 0, 3},
        {{a, ip(100, 0, 1e9), c}, 1, 2, 0},
        {{a, ip(100, 0, 50, -1.0), c}, 1, 1, 0},
        {{a, ip(100, 0, 50, 0, 0, 1e9), c}, 1, 1, 0},
        {{a, ip(100, 0, 0, 0, 0, NaN)}, 1, 1, 0}, // chainage of the second of two
        {{a, ip(0, 0, 50), c}, 3, 3, 0},
        {std::vector<CrossPoint>(81, a), 4, 4, 0},
        // Four records a point: the straight to the 21st fills the last slot
        // and becomes the end mark. Two a point (three at one): 41 points
        // fill all 81 slots, 42 do not fit.
        {zigzag(23, 50.0), 4, 4, 81},
        {zigzag(41, 0.0), 0, 0, 80},
        {one_entry, 0, 0, 81},
        {zigzag(42, 0.0), 4, 4, 81},
    };
    for (const Case& k : cases) {
        for (int which = 0; which < 2; ++which) {
            std::vector<CrossPoint> polygon = k.polygon;
            const Table t(BUILDERS[which], polygon);
            const int status = which == 0 ? k.main_status : k.full_status;
            ASSERT_EQ(t.status, status) << k.polygon.size();
            if (status == 0 || (status == 4 && k.count != 0)) {
                ASSERT_EQ(t.count, k.count);
                EXPECT_EQ(t.records[k.count - 1].Type, 0);
            } else {
                EXPECT_TRUE(qtest::untouched(t.records) && qtest::untouched(t.count));
            }
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
