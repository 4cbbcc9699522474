// Alignment by intersection points: turn angles, curve lengths and the
// element table of a polygon.
#include "road_support.hpp"

#include <cstdio>
#include <cstring>
#include <limits>
#include <vector>

using namespace roadtest;

namespace {

const double NaN = std::numeric_limits<double>::quiet_NaN();
const double LIMIT = 99999999.9999;
// Directions as LIB_CalAZ gives them: atan2 has the true pi, the conversion
// 3.1415926.
const double EAST = 324000.00552684424;
const double SOUTH = 648000.0110536885;

CrossPoint ip(double x, double y, double radius = 0.0, double entry = 0.0, double exit = 0.0,
              double chainage = 0.0)
{
    CrossPoint p = qtest::sentinel_filled<CrossPoint>();
    p.X = x;
    p.Y = y;
    p.EntryLength = entry;
    p.ExitLength = exit;
    p.Radius = radius;
    p.Chainage = chainage;
    return p;
}

struct Table {
    HElement records[81];
    uint32_t count;
    Table()
    {
        qtest::fill_sentinel(records);
        qtest::fill_sentinel(count);
    }
};

using Builder = ResultCode (*)(CrossPoint*, unsigned char, HElement*, uint32_t*);
const Builder BUILDERS[] = {LIB_CalWay_H_Cross_MainPoint, LIB_CalWay_H_Cross_MainPoint_Full};

int build(Builder builder, std::vector<CrossPoint>& polygon, Table& table)
{
    return builder(polygon.data(), static_cast<unsigned char>(polygon.size()), table.records,
                   &table.count);
}

} // namespace

TEST(CrossTurnAngle, TurnsAndFailures)
{
    struct Case {
        const char* what;
        SurveyPoint points[3];
        int status;
        double expected;
    };
    const Case cases[] = {
        // A quarter turn is a quarter circle plus the 0.0055" of the two pis.
        {"quarter right", {{0, 0, 0}, {100, 0, 0}, {100, 100, 0}}, 0, EAST},
        {"quarter left", {{0, 0, 0}, {100, 0, 0}, {100, -100, 0}}, 0, -EAST},
        {"straight on", {{0, 0, 0}, {100, 0, 0}, {200, 0, 0}}, 0, 0.0},
        {"east then south", {{0, -100, 0}, {0, 0, 0}, {-100, 0, 0}}, 0, SOUTH - EAST},
        {"south then east", {{100, 0, 0}, {0, 0, 0}, {0, 100, 0}}, 0, EAST - SOUTH},
        // A reversal folds to just inside the half circle.
        {"reversal", {{0, 0, 0}, {100, 0, 0}, {50, 0, 0}}, 0, SOUTH - 1296000.0},
        {"exactly a half circle", {{0, 0, 0}, {100, 0, 0}, {99, 5.35897931698574e-08, 0}}, 2, 0},
        {"not a number", {{0, 0, 0}, {100, NaN, 0}, {200, 0, 0}}, 2, 0},
        {"previous equals this", {{100, 0, 1}, {100, 0, 2}, {200, 0, 0}}, 3, 0},
        {"this equals next", {{0, 0, 0}, {100, 0, 0}, {100, 0, 5}}, 3, 0},
    };
    for (const Case& c : cases) {
        double turn = qtest::sentinel_double();
        EXPECT_EQ(LIB_CalWay_H_Cross_TurnAngle(c.points, &turn), c.status) << c.what;
        if (c.status == 0) {
            EXPECT_NEAR(turn, c.expected, 1e-9) << c.what;
        } else {
            EXPECT_TRUE(qtest::untouched(turn)) << c.what;
        }
    }
}

TEST(CrossLength, QuarterTurnWithAndWithoutTransitions)
{
    struct Case {
        double entry, exit;
        double entry_tangent, exit_tangent, arc;
    };
    // R = 100, a quarter turn: tangent (R + p) tan(a/2) + q with the shift
    // p = L^2/24R and q = L/2 - L^3/240R^2; arc (a - L1/2R - L2/2R) R.
    const Case cases[] = {
        {0.0, 0.0, 100.0, 100.0, 157.07963},
        {40.0, 40.0, 120.64, 120.64, 117.07963},
        // The entry tangent takes the exit curve's shift, as the formula has it.
        {60.0, 20.0, 130.07667, 111.49667, 117.07963},
    };
    for (const Case& c : cases) {
        CrossPoint point = ip(0.0, 0.0, 100.0, c.entry, c.exit);
        point.TurnAngle = 324000.0;
        CrossLengths out = qtest::sentinel_filled<CrossLengths>();
        ASSERT_EQ(LIB_CalWay_H_Cross_Length(&point, &out), 0) << c.entry;
        EXPECT_NEAR(out.EntryTangent, c.entry_tangent, 1e-5) << c.entry;
        EXPECT_NEAR(out.ExitTangent, c.exit_tangent, 1e-5) << c.entry;
        EXPECT_NEAR(out.ArcLength, c.arc, 1e-9) << c.entry;
        EXPECT_NEAR(out.CurveLength, c.arc + c.entry + c.exit, 1e-9) << c.entry;
        // The direction of the turn does not matter.
        point.TurnAngle = -324000.0;
        CrossLengths left{};
        ASSERT_EQ(LIB_CalWay_H_Cross_Length(&point, &left), 0);
        EXPECT_BITS(left.EntryTangent, out.EntryTangent);
        EXPECT_BITS(left.ArcLength, out.ArcLength);
    }
}

TEST(CrossLength, EqualTransitionsGiveEqualTangents)
{
    CrossPoint point = ip(0.0, 0.0, 250.0, 70.0, 70.0);
    point.TurnAngle = 123456.0;
    CrossLengths out{};
    ASSERT_EQ(LIB_CalWay_H_Cross_Length(&point, &out), 0);
    EXPECT_NEAR(out.EntryTangent, out.ExitTangent, 1e-10);
    point.ExitLength = 30.0;
    ASSERT_EQ(LIB_CalWay_H_Cross_Length(&point, &out), 0);
    EXPECT_GT(out.EntryTangent, out.ExitTangent);
}

TEST(CrossLength, FailuresStillWriteAllFour)
{
    struct Case {
        const char* what;
        double turn, radius, entry, exit;
    };
    const Case cases[] = {
        {"transitions use up the turn", 324000.0, 100.0, 200.0, 200.0},
        {"transitions just beyond a small turn", 20626.48097655947, 100.0, 10.0001, 10.0001},
        {"no turn", 0.0, 100.0, 0.0, 0.0},
        {"turn beyond a half circle, tangent negative", 900000.0, 100.0, 0.0, 0.0},
        {"tangent beyond the range", 640000.0, 99999999.0, 0.0, 0.0},
        {"radius not a number", 324000.0, NaN, 0.0, 0.0},
    };
    for (const Case& c : cases) {
        CrossPoint point = ip(0.0, 0.0, c.radius, c.entry, c.exit);
        point.TurnAngle = c.turn;
        CrossLengths out = qtest::sentinel_filled<CrossLengths>();
        EXPECT_EQ(LIB_CalWay_H_Cross_Length(&point, &out), 2) << c.what;
        EXPECT_FALSE(qtest::untouched(out.EntryTangent)) << c.what;
        EXPECT_FALSE(qtest::untouched(out.ExitTangent)) << c.what;
        EXPECT_FALSE(qtest::untouched(out.ArcLength)) << c.what;
        EXPECT_FALSE(qtest::untouched(out.CurveLength)) << c.what;
    }
}

TEST(CrossMainPoint, OneCurveWithoutTransitions)
{
    for (Builder builder : BUILDERS) {
        std::vector<CrossPoint> polygon = {ip(0, 0), ip(100, 0, 50.0, 0, 0, 1000.0), ip(100, 100)};
        Table t;
        ASSERT_EQ(build(builder, polygon, t), 0);
        ASSERT_EQ(t.count, 4u);
        const HElement* r = t.records;
        EXPECT_BITS(polygon[1].TurnAngle, EAST);
        EXPECT_TRUE(qtest::untouched(polygon[0].TurnAngle));
        EXPECT_TRUE(qtest::untouched(polygon[2].TurnAngle));

        EXPECT_EQ(r[0].Type, 1);
        EXPECT_BITS(r[0].X, 0.0);
        EXPECT_BITS(r[0].Y, 0.0);
        EXPECT_BITS(r[0].Azimuth, 0.0);
        EXPECT_NEAR(r[0].Length, 50.0, 1e-5);
        // The first inner point fixes the chainage: 1000 - 100.
        EXPECT_BITS(r[0].Chainage, 900.0);

        EXPECT_EQ(r[1].Type, 2);
        EXPECT_NEAR(r[1].X, 50.0, 1e-5);
        EXPECT_NEAR(r[1].Y, 0.0, 1e-9);
        // The turn carries the true pi of atan2, so the arc is a true quarter.
        EXPECT_NEAR(r[1].Length, 25.0 * PI, 1e-9);
        EXPECT_BITS(r[1].Radius, 50.0);
        EXPECT_EQ(r[1].Turn, 1);
        // The arc leaves the Spiral byte as the buffer had it.
        EXPECT_EQ(r[1].Spiral, qtest::SENTINEL_BYTE);

        EXPECT_EQ(r[2].Type, 1);
        EXPECT_NEAR(r[2].X, 100.0, 1e-5);
        EXPECT_NEAR(r[2].Y, 50.0, 1e-5);
        EXPECT_BITS(r[2].Azimuth, EAST);
        EXPECT_NEAR(r[2].Length, 50.0, 1e-5);
        EXPECT_TRUE(qtest::untouched(r[2].Radius));

        EXPECT_EQ(r[3].Type, 0);
        EXPECT_BITS(r[3].X, 100.0);
        EXPECT_BITS(r[3].Y, 100.0);
        EXPECT_BITS(r[3].Azimuth, r[2].Azimuth);
        for (int j = 0; j < 3; ++j) {
            EXPECT_BITS(r[j + 1].Chainage, r[j].Chainage + r[j].Length);
        }
        const Gap gap = continuity(r, t.count);
        EXPECT_LT(gap.position, 1e-5);
        EXPECT_LT(gap.azimuth, 0.02);
    }
}

TEST(CrossMainPoint, TransitionCurvesAndContinuity)
{
    struct Case {
        double radius, entry, exit;
        double position_tolerance; // m
    };
    // The curve's end is placed from the intersection point by the tangent,
    // whose shift p and offset q are truncated series: the exit curve, when
    // evaluated, ends a little away from it.
    const Case cases[] = {
        {300.0, 40.0, 40.0, 1e-4},
        {100.0, 30.0, 60.0, 6e-3},
        {200.0, 100.0, 60.0, 3e-2},
    };
    for (const Case& c : cases) {
        std::vector<CrossPoint> polygon = {
            ip(1000, 1000), ip(1400, 1100, c.radius, c.entry, c.exit, 500.0),
            ip(1600, 1500, c.radius, c.exit, c.entry), ip(2100, 1450)};
        Table t;
        ASSERT_EQ(LIB_CalWay_H_Cross_MainPoint(polygon.data(), 4, t.records, &t.count), 0);
        ASSERT_EQ(t.count, 10u);
        const unsigned char types[] = {1, 3, 2, 3, 1, 3, 2, 3, 1, 0};
        const unsigned char spirals[] = {0, 0, 0, 1, 0, 0, 0, 1, 0, 0};
        for (unsigned int j = 0; j < t.count; ++j) {
            EXPECT_EQ(t.records[j].Type, types[j]) << j;
            if (types[j] == 3) {
                EXPECT_EQ(t.records[j].Spiral, spirals[j]) << j;
            }
        }
        EXPECT_EQ(t.records[2].Turn, 1); // right at the first point
        EXPECT_EQ(t.records[6].Turn, 0); // left at the second
        for (unsigned int j = 0; j + 1 < t.count; ++j) {
            EXPECT_BITS(t.records[j + 1].Chainage, t.records[j].Chainage + t.records[j].Length);
        }
        const Gap gap = continuity(t.records, t.count);
        std::printf("R %.0f, transitions %.0f/%.0f: largest gap %.3g m, %.3g\"\n", c.radius,
                    c.entry, c.exit, gap.position, gap.azimuth);
        EXPECT_LT(gap.position, c.position_tolerance);
        EXPECT_LT(gap.azimuth, 0.1);
    }
}

TEST(CrossMainPoint, NoStraightBetweenCurvesThatTouch)
{
    // Two quarter turns of R = 50 whose tangents share the 100 m between
    // the points: the straight left between them is micrometres long.
    std::vector<CrossPoint> polygon = {ip(0, 0), ip(100, 0, 50.0, 0, 0, 0.0), ip(100, 100, 50.0),
                                       ip(200, 100)};
    Table t;
    ASSERT_EQ(build(LIB_CalWay_H_Cross_MainPoint, polygon, t), 0);
    ASSERT_EQ(t.count, 5u);
    const unsigned char types[] = {1, 2, 2, 1, 0};
    for (unsigned int j = 0; j < 5; ++j) {
        EXPECT_EQ(t.records[j].Type, types[j]) << j;
    }
    EXPECT_LT(continuity(t.records, t.count).position, 1e-5);
}

TEST(CrossMainPoint, TwoPointsGiveOneStraight)
{
    for (Builder builder : BUILDERS) {
        std::vector<CrossPoint> polygon = {ip(0, 0), ip(30, 40, 0.0, 0.0, 0.0, 777.0)};
        Table t;
        ASSERT_EQ(build(builder, polygon, t), 0);
        ASSERT_EQ(t.count, 2u);
        EXPECT_EQ(t.records[0].Type, 1);
        EXPECT_BITS(t.records[0].Length, 50.0);
        EXPECT_BITS(t.records[0].Chainage, 0.0);
        EXPECT_NEAR(t.records[0].Azimuth, 191268.37173765, 1e-7); // 53°07'48.4"
        EXPECT_BITS(t.records[1].Azimuth, t.records[0].Azimuth);
        EXPECT_EQ(t.records[1].Type, 0);
        EXPECT_BITS(t.records[1].Chainage, 50.0);
        EXPECT_TRUE(qtest::untouched(polygon[1].TurnAngle));
    }
}

TEST(CrossMainPoint, RejectedPolygonsWriteNothing)
{
    struct Case {
        const char* what;
        std::vector<CrossPoint> polygon;
        int main_status, full_status;
    };
    const CrossPoint a = ip(0, 0), c = ip(100, 100);
    const Case cases[] = {
        {"no point", {}, 1, 1},
        {"one point", {a}, 3, 1},
        {"start not a number", {ip(NaN, 0), ip(100, 0, 50), c}, 1, 1},
        {"easting beyond the range", {a, ip(100, 0, 50), ip(100, 1e9)}, 1, 1},
        {"zero radius", {a, ip(100, 0, 0.0), ip(100, 100), ip(0, 100, 50), c}, 1, 0},
        {"radius beyond the range", {a, ip(100, 0, 1e9), c}, 1, 2},
        {"negative entry", {a, ip(100, 0, 50, -1.0), c}, 1, 1},
        {"exit not a number", {a, ip(100, 0, 50, 0, NaN), c}, 1, 1},
        {"chainage of the first inner point", {a, ip(100, 0, 50, 0, 0, 1e9), c}, 1, 1},
        {"chainage of the second of two points", {a, ip(100, 0, 0, 0, 0, NaN)}, 1, 1},
        {"start equals the first inner point", {a, ip(0, 0, 50), c}, 3, 3},
        {"inner points coincide", {a, ip(100, 0, 50), ip(100, 0, 50), c}, 3, 3},
        {"transitions too long", {a, ip(100, 0, 50, 90, 90), c}, 2, 2},
    };
    for (const Case& k : cases) {
        for (int which = 0; which < 2; ++which) {
            std::vector<CrossPoint> polygon = k.polygon;
            Table t;
            const int status = build(BUILDERS[which], polygon, t);
            EXPECT_EQ(status, which == 0 ? k.main_status : k.full_status) << k.what;
            if (status == 0) {
                continue;
            }
            EXPECT_TRUE(qtest::untouched(t.records)) << k.what;
            EXPECT_TRUE(qtest::untouched(t.count)) << k.what;
            for (std::size_t j = 0; j < polygon.size(); ++j) {
                // Only a turn computed before the failure is written back.
                if (k.main_status == 2 && j == 1) {
                    EXPECT_BITS(polygon[j].TurnAngle, EAST) << k.what;
                } else if (j != 1 || status != 2) {
                    EXPECT_TRUE(qtest::untouched(polygon[j].TurnAngle)) << k.what << j;
                }
            }
        }
    }
    std::vector<CrossPoint> many(81, ip(0, 0));
    Table t;
    EXPECT_EQ(build(LIB_CalWay_H_Cross_MainPoint, many, t), 4);
    EXPECT_TRUE(qtest::untouched(t.records));
    EXPECT_TRUE(qtest::untouched(t.count));
}

TEST(CrossMainPoint, FailureAtALaterPointKeepsWhatWasBuilt)
{
    // The second curve's transitions turn more than its turn angle.
    std::vector<CrossPoint> polygon = {ip(0, 0), ip(500, 0, 100.0, 0, 0, 0.0),
                                       ip(500, 500, 100.0, 180.0, 180.0), ip(1000, 500)};
    Table t;
    EXPECT_EQ(build(LIB_CalWay_H_Cross_MainPoint, polygon, t), 2);
    EXPECT_TRUE(qtest::untouched(t.count));
    EXPECT_EQ(t.records[0].Type, 1);
    EXPECT_EQ(t.records[1].Type, 2);
    EXPECT_TRUE(qtest::untouched(t.records[2]));
    EXPECT_BITS(polygon[1].TurnAngle, EAST);
    EXPECT_NEAR(polygon[2].TurnAngle, -EAST, 1e-6);
}

TEST(CrossMainPoint, FullTakesAZeroFirstRadiusAsTwoStraights)
{
    std::vector<CrossPoint> polygon = {ip(0, 0, 0, 0, 0, 250.0), ip(30, 40, 0.0, 0, 0, 1e6),
                                       ip(30, 100), ip(500, 500, 50.0)};
    polygon[0].Chainage = 250.0;
    Table t;
    ASSERT_EQ(build(LIB_CalWay_H_Cross_MainPoint_Full, polygon, t), 0);
    ASSERT_EQ(t.count, 3u);
    EXPECT_EQ(t.records[0].Type, 1);
    EXPECT_BITS(t.records[0].Chainage, 250.0);
    EXPECT_BITS(t.records[0].Length, 50.0);
    EXPECT_EQ(t.records[1].Type, 1);
    EXPECT_BITS(t.records[1].X, 30.0);
    EXPECT_BITS(t.records[1].Y, 40.0);
    EXPECT_BITS(t.records[1].Azimuth, EAST);
    EXPECT_BITS(t.records[1].Chainage, 300.0);
    EXPECT_BITS(t.records[1].Length, 60.0);
    EXPECT_EQ(t.records[2].Type, 0);
    EXPECT_BITS(t.records[2].X, 30.0);
    EXPECT_BITS(t.records[2].Y, 100.0);
    EXPECT_BITS(t.records[2].Azimuth, t.records[1].Azimuth);
    EXPECT_BITS(t.records[2].Chainage, 360.0);
    EXPECT_TRUE(qtest::untouched(t.records[3]));
    EXPECT_TRUE(qtest::untouched(polygon[1].TurnAngle));
}

TEST(CrossMainPoint, BothBuildersAgreeOnAValidPolygon)
{
    std::vector<CrossPoint> polygon = {ip(1000, 1000), ip(1400, 1100, 300.0, 40, 40, 500.0),
                                       ip(1600, 1500, 200.0, 0, 30), ip(2100, 1450)};
    std::vector<CrossPoint> copy = polygon;
    Table a, b;
    ASSERT_EQ(build(LIB_CalWay_H_Cross_MainPoint, polygon, a), 0);
    ASSERT_EQ(build(LIB_CalWay_H_Cross_MainPoint_Full, copy, b), 0);
    EXPECT_EQ(a.count, b.count);
    EXPECT_EQ(std::memcmp(a.records, b.records, sizeof a.records), 0);
}

TEST(CrossMainPoint, TableCapacity)
{
    // A zigzag: each inner point with both transitions takes four records
    // (straight, entry, arc, exit). The straight to the 21st point fills the
    // last of 81 slots, so its entry curve has no room: the straight becomes
    // the end mark.
    std::vector<CrossPoint> zigzag;
    for (int j = 0; j < 23; ++j) {
        zigzag.push_back(ip(j * 1000.0, (j % 2) * 400.0, 200.0, 50.0, 50.0, 0.0));
    }
    Table t;
    EXPECT_EQ(build(LIB_CalWay_H_Cross_MainPoint, zigzag, t), 4);
    EXPECT_EQ(t.count, 81u);
    EXPECT_EQ(t.records[79].Type, 3);
    EXPECT_EQ(t.records[80].Type, 0);
    EXPECT_TRUE(qtest::untouched(t.records[80].Radius)); // it was a straight
    EXPECT_FALSE(qtest::untouched(zigzag[21].TurnAngle));
    EXPECT_TRUE(qtest::untouched(zigzag[22].TurnAngle));

    // Without transitions two records per point: 40 inner points and the
    // final straight fill the table, leaving no slot for the end record.
    std::vector<CrossPoint> plain;
    for (int j = 0; j < 42; ++j) {
        plain.push_back(ip(j * 1000.0, (j % 2) * 400.0, 200.0, 0.0, 0.0, 0.0));
    }
    Table u;
    EXPECT_EQ(build(LIB_CalWay_H_Cross_MainPoint, plain, u), 4);
    EXPECT_EQ(u.count, 81u);
    EXPECT_EQ(u.records[79].Type, 2);
    EXPECT_EQ(u.records[80].Type, 0);

    // One point fewer fits exactly: 79 elements, the final straight and
    // the end record.
    plain.pop_back();
    Table v;
    EXPECT_EQ(build(LIB_CalWay_H_Cross_MainPoint, plain, v), 0);
    EXPECT_EQ(v.count, 80u);
    EXPECT_EQ(v.records[79].Type, 0);
}
