// Vertical tables from elements and from grade intersections, elevations on
// one element and along a whole profile.
#include "bits.hpp"
#include "quillon.h"

#include <cmath>
#include <cstring>
#include <limits>

namespace {

const double NaN = std::numeric_limits<double>::quiet_NaN();
const double LIMIT = 99999999.9999;

VElement element(unsigned char type, unsigned char given, double radius, double length,
                 double grade_out)
{
    VElement e = qtest::sentinel_filled<VElement>();
    e.Type = type;
    e.Given = given;
    e.Radius = radius;
    e.Length = length;
    e.GradeOut = grade_out;
    return e;
}

VElement start(VElement e, double chainage, double elevation, double grade_in)
{
    e.Chainage = chainage;
    e.Elevation = elevation;
    e.GradeIn = grade_in;
    return e;
}

VElement vertex(unsigned char type, double chainage, double elevation, unsigned char given = 0,
                double value = 0.0)
{
    VElement p = qtest::sentinel_filled<VElement>();
    p.Type = type;
    p.VertexChainage = chainage;
    p.VertexElevation = elevation;
    p.Given = given;
    if (given == 1) {
        p.Length = value;
    } else {
        p.Radius = value;
    }
    return p;
}

// Elevation on element e of a table by its own type.
double on_element(const VElement& e, double K)
{
    double h = qtest::sentinel_double();
    if (e.Type == 1) {
        LIB_CalWay_V_Line_On(&e, K, &h, 0);
    } else if (e.Type == 2) {
        LIB_CalWay_V_Curve_On(&e, K, &h);
    } else {
        LIB_CalWay_V_Circle_On(&e, K, &h);
    }
    return h;
}

} // namespace

TEST(VerticalElements, GradeLineEndsWhereItsGradeTakesIt)
{
    const VElement list[] = {start(element(1, 1, 0.0, 100.0, 0.5), 0.0, 50.0, 0.02)};
    VElement table[2];
    qtest::fill_sentinel(table);
    ASSERT_EQ(LIB_CalWay_V_Ele_MainPoint(list, 2, table), 0);
    EXPECT_EQ(table[1].Type, 0);
    EXPECT_BITS(table[1].Chainage, 100.0);
    EXPECT_BITS(table[1].Elevation, 52.0);
    EXPECT_BITS(table[1].GradeIn, 0.02);
    EXPECT_TRUE(qtest::untouched(table[1].Radius));
}

TEST(VerticalElements, ParabolicCrestFromRadiusOrLength)
{
    // 0.02 to -0.01 with radius 2000: 60 long, the curve 0.225 below its vertex.
    const VElement by_radius[] = {start(element(2, 0, 2000.0, 0.0, -0.01), 0.0, 50.0, 0.02)};
    const VElement by_length[] = {start(element(2, 1, 0.0, 60.0, -0.01), 0.0, 50.0, 0.02)};
    for (const VElement* list : {by_radius, by_length}) {
        VElement table[2];
        ASSERT_EQ(LIB_CalWay_V_Ele_MainPoint(list, 2, table), 0);
        EXPECT_BITS(table[0].Length, 60.0);
        EXPECT_BITS(table[0].Radius, 2000.0);
        EXPECT_BITS(table[0].VertexChainage, 30.0);
        EXPECT_BITS(table[0].VertexElevation, 50.6);
        EXPECT_BITS(table[1].Chainage, 60.0);
        EXPECT_NEAR(table[1].Elevation, 50.3, 1e-12);
        double h = 0.0;
        EXPECT_EQ(LIB_CalWay_V_Curve_On(&table[0], 30.0, &h), 0);
        EXPECT_BITS(h, 50.375);
        EXPECT_EQ(LIB_CalWay_V_On(table, 2, 30.0, &h), 0);
        EXPECT_BITS(h, 50.375);
    }
}

TEST(VerticalElements, CircularCrestLiesCloseToTheParabola)
{
    const VElement list[] = {start(element(3, 0, 2000.0, 0.0, -0.01), 0.0, 50.0, 0.02)};
    VElement table[2];
    ASSERT_EQ(LIB_CalWay_V_Ele_MainPoint(list, 2, table), 0);
    EXPECT_NEAR(table[0].Length, 60.0, 0.01);
    EXPECT_NEAR(table[0].VertexElevation, 50.6, 0.001);
    double h = 0.0;
    EXPECT_EQ(LIB_CalWay_V_Circle_On(&table[0], table[0].VertexChainage, &h), 0);
    EXPECT_NEAR(table[0].VertexElevation - h, 0.225, 0.001);
    // At or before the start, and beyond the end, nothing is written.
    for (double K : {0.0, -1.0, 61.0}) {
        h = 7.0;
        EXPECT_EQ(LIB_CalWay_V_Circle_On(&table[0], K, &h), 0);
        EXPECT_BITS(h, 7.0);
    }
}

TEST(VerticalElements, ElevationsContinuousAtJoints)
{
    const VElement list[] = {
        start(element(1, 1, 0.0, 120.0, 0.0), 1000.0, 250.0, 0.03),
        element(2, 0, 3000.0, 0.0, -0.02),
        element(1, 0, 1.0, 80.0, -0.02), // a line with a dummy radius runs 80
        element(3, 1, 0.0, 90.0, 0.015),
        element(1, 1, 0.0, 50.0, 0.015),
    };
    VElement table[6];
    ASSERT_EQ(LIB_CalWay_V_Ele_MainPoint(list, 6, table), 0);
    EXPECT_BITS(table[3].Chainage - table[2].Chainage, 80.0);
    EXPECT_EQ(table[5].Type, 0);
    EXPECT_BITS(table[5].GradeIn, 0.015);
    for (int i = 0; i < 5; ++i) {
        const double c0 = table[i].Chainage;
        const double c1 = table[i + 1].Chainage;
        // The circle is open at its start; step off it by a micrometre.
        const double near_start = table[i].Type == 3 ? c0 + 1e-6 : c0;
        EXPECT_NEAR(on_element(table[i], near_start), table[i].Elevation, 1e-7) << i;
        EXPECT_NEAR(on_element(table[i], c1), table[i + 1].Elevation, 1e-9) << i;
        double before = 0.0, after = 0.0;
        EXPECT_EQ(LIB_CalWay_V_On(table, 6, c1 - 0.0011, &before), 0);
        EXPECT_EQ(LIB_CalWay_V_On(table, 6, c1 + 0.0011, &after), 0);
        EXPECT_NEAR(before, after, 0.0022 * 0.03 + 1e-9) << i;
    }
}

TEST(VerticalElements, BuilderFailures)
{
    const VElement good = start(element(1, 1, 0.0, 100.0, 0.0), 0.0, 50.0, 0.02);
    struct Case {
        const char* what;
        VElement first;
        unsigned char count;
        int status;
    };
    auto with = [&](auto change) {
        VElement e = good;
        change(e);
        return e;
    };
    const Case cases[] = {
        {"one record", good, 1, 4},
        {"82 records", good, 82, 4},
        {"elevation", with([](VElement& e) { e.Elevation = NaN; }), 2, 1},
        {"chainage", with([](VElement& e) { e.Chainage = -100000000.0; }), 2, 1},
        {"grade in", with([](VElement& e) { e.GradeIn = 1.0000001; }), 2, 1},
        {"type 0", with([](VElement& e) { e.Type = 0; }), 2, 1},
        {"type 4", with([](VElement& e) { e.Type = 4; }), 2, 1},
        {"grade out", with([](VElement& e) { e.GradeOut = -1.5; }), 2, 1},
        {"given 2", with([](VElement& e) { e.Given = 2; }), 2, 1},
        {"zero length", with([](VElement& e) { e.Length = 0.0; }), 2, 1},
        {"zero radius", start(element(1, 0, 0.0, 100.0, 0.0), 0.0, 50.0, 0.02), 2, 1},
        {"radius over", start(element(1, 0, 1e8, 100.0, 0.0), 0.0, 50.0, 0.02), 2, 1},
        {"later element", good, 3, 1},
    };
    for (const Case& c : cases) {
        VElement list[81];
        for (VElement& e : list) {
            e = good;
        }
        list[0] = c.first;
        list[1].Given = 7; // read only when there is a second element
        VElement table[82];
        qtest::fill_sentinel(table);
        EXPECT_EQ(LIB_CalWay_V_Ele_MainPoint(list, c.count, table), c.status) << c.what;
        EXPECT_TRUE(qtest::untouched(table)) << c.what;
    }
    // Negative elevations are accepted by the builder.
    const VElement low[] = {start(good, 0.0, -20.0, 0.02)};
    VElement table[2];
    EXPECT_EQ(LIB_CalWay_V_Ele_MainPoint(low, 2, table), 0);
}

TEST(VerticalElements, BuilderRangeFailureKeepsWhatWasComputed)
{
    // Equal grades on a parabola of given length divide by zero.
    const VElement list[] = {
        start(element(1, 1, 0.0, 100.0, 0.0), 0.0, 50.0, 0.02),
        element(2, 1, 0.0, 60.0, 0.02),
    };
    VElement table[3];
    qtest::fill_sentinel(table);
    EXPECT_EQ(LIB_CalWay_V_Ele_MainPoint(list, 3, table), 2);
    EXPECT_BITS(table[1].Chainage, 100.0);
    EXPECT_BITS(table[1].Elevation, 52.0);
    EXPECT_TRUE(std::isinf(table[1].Radius));
    EXPECT_TRUE(qtest::untouched(table[2]));

    // A grade line whose end leaves the range.
    const VElement far[] = {start(element(1, 1, 0.0, LIMIT, 0.0), 1.0, 50.0, 0.0)};
    qtest::fill_sentinel(table);
    EXPECT_EQ(LIB_CalWay_V_Ele_MainPoint(far, 2, table), 2);
    EXPECT_BITS(table[1].Chainage, LIMIT + 1.0);
    EXPECT_EQ(table[1].Type, qtest::SENTINEL_BYTE);
}

TEST(VerticalElements, ElementFunctionsRefuseNegativeElevations)
{
    const VElement line = start(element(1, 1, 0.0, 100.0, 0.0), 0.0, 1.0, -0.02);
    double h = qtest::sentinel_double();
    EXPECT_EQ(LIB_CalWay_V_Line_On(&line, 100.0, &h, 1), 0);
    EXPECT_TRUE(qtest::untouched(h));
    EXPECT_EQ(LIB_CalWay_V_Line_On(&line, 50.0, &h, 0), 0);
    EXPECT_BITS(h, 0.0);
    EXPECT_EQ(LIB_CalWay_V_Line_On(&line, 100.0, &h, 0), 2);
    EXPECT_BITS(h, -1.0);

    // A sag on equal grades writes nothing: the caller's value is judged.
    VElement flat = start(element(2, 0, 1000.0, 20.0, 0.01), 0.0, 5.0, 0.01);
    flat.VertexChainage = 10.0;
    flat.VertexElevation = 5.1;
    h = 7.0;
    EXPECT_EQ(LIB_CalWay_V_Curve_On(&flat, 4.0, &h), 0);
    EXPECT_BITS(h, 7.0);
    h = -7.0;
    EXPECT_EQ(LIB_CalWay_V_Curve_On(&flat, 4.0, &h), 2);
    EXPECT_BITS(h, -7.0);
}

TEST(VerticalElements, ElevationAlongTable)
{
    const VElement list[] = {start(element(1, 1, 0.0, 100.0, 0.0), 200.0, 50.0, 0.02)};
    VElement table[2];
    ASSERT_EQ(LIB_CalWay_V_Ele_MainPoint(list, 2, table), 0);
    struct Case {
        double K;
        double elevation;
    };
    const Case cases[] = {
        {199.998, 0.0},   {199.9995, 50.0}, {250.0, 51.0},
        {300.0005, 52.0}, {300.002, 52.0},  {1e9, 52.0},
    };
    for (const Case& c : cases) {
        double h = qtest::sentinel_double();
        EXPECT_EQ(LIB_CalWay_V_On(table, 2, c.K, &h), 0) << c.K;
        EXPECT_NEAR(h, c.elevation, 1e-12) << c.K;
    }
    // One record: only the ends are answered; none: nothing read or written.
    double h = qtest::sentinel_double();
    EXPECT_EQ(LIB_CalWay_V_On(table, 1, 200.0, &h), 0);
    EXPECT_TRUE(qtest::untouched(h));
    EXPECT_EQ(LIB_CalWay_V_On(table, 0, -1e9, &h), 0);
    EXPECT_TRUE(qtest::untouched(h));
}

TEST(GradeIntersections, AgreesWithTheSameProfileByElements)
{
    VElement points[] = {
        vertex(0, 0.0, 100.0),
        vertex(2, 200.0, 104.0, 0, 2000.0),
        vertex(2, 400.0, 101.0, 1, 40.0),
        vertex(0, 600.0, 103.0),
    };
    VElement cross[81];
    unsigned char count = 0;
    ASSERT_EQ(LIB_CalWay_V_Cross_MainPoint(points, 4, cross, &count), 0);
    ASSERT_EQ(count, 6);
    // The curves' start and computed length or radius are written back.
    EXPECT_NEAR(points[1].Length, 70.0, 1e-12);
    EXPECT_NEAR(points[1].Chainage, 165.0, 1e-12);
    EXPECT_NEAR(points[1].Elevation, 103.3, 1e-12);
    EXPECT_NEAR(points[2].Radius, 40.0 / 0.025, 1e-9);
    EXPECT_NEAR(points[2].Chainage, 380.0, 1e-12);

    const VElement list[] = {
        start(element(1, 1, 0.0, 165.0, 0.02), 0.0, 100.0, 0.02),
        element(2, 0, 2000.0, 0.0, -0.015),
        element(1, 1, 0.0, 145.0, -0.015),
        element(2, 1, 0.0, 40.0, 0.01),
        element(1, 1, 0.0, 180.0, 0.01),
    };
    VElement ele[6];
    ASSERT_EQ(LIB_CalWay_V_Ele_MainPoint(list, 6, ele), 0);
    const unsigned char types[] = {1, 2, 1, 2, 1, 0};
    for (int i = 0; i < 6; ++i) {
        EXPECT_EQ(cross[i].Type, types[i]) << i;
        EXPECT_NEAR(cross[i].Chainage, ele[i].Chainage, 1e-9) << i;
        EXPECT_NEAR(cross[i].Elevation, ele[i].Elevation, 1e-9) << i;
    }
    for (double K = -5.0; K <= 605.0; K += 2.5) {
        double a = NaN, b = NaN;
        EXPECT_EQ(LIB_CalWay_V_On(cross, count, K, &a), 0) << K;
        EXPECT_EQ(LIB_CalWay_V_On(ele, 6, K, &b), 0) << K;
        EXPECT_NEAR(a, b, 1e-9) << K;
    }
}

TEST(GradeIntersections, CircleEndsOnTheSineOfTheGrade)
{
    VElement points[] = {vertex(0, 0.0, 100.0), vertex(3, 100.0, 102.0, 0, 1000.0),
                         vertex(0, 200.0, 99.0)};
    VElement table[81];
    unsigned char count = 0;
    ASSERT_EQ(LIB_CalWay_V_Cross_MainPoint(points, 3, table, &count), 0);
    ASSERT_EQ(count, 4);
    const double w = std::atan(0.02) + std::atan(0.03);
    const double T = std::tan(w / 2.0) * 1000.0;
    EXPECT_NEAR(points[1].Length, w * 1000.0, 1e-9);
    EXPECT_NEAR(table[1].Chainage, 100.0 - T, 1e-9);
    EXPECT_NEAR(table[2].Elevation, 102.0 + std::sin(-0.03) * T, 1e-9);
    EXPECT_GT(std::fabs(table[2].Elevation - (102.0 + std::sin(std::atan(-0.03)) * T)), 1e-4);
    EXPECT_BITS(table[1].GradeIn, 0.02);
    EXPECT_BITS(table[1].GradeOut, -0.03);
}

TEST(GradeIntersections, PlainChangeOfGradeEndsAtItsChainageField)
{
    VElement points[] = {vertex(0, 0.0, 10.0), vertex(0, 100.0, 11.0), vertex(0, 200.0, 10.0)};
    points[1].Chainage = 90.0;
    VElement table[81];
    unsigned char count = 0;
    ASSERT_EQ(LIB_CalWay_V_Cross_MainPoint(points, 3, table, &count), 0);
    ASSERT_EQ(count, 3);
    EXPECT_BITS(table[0].Length, 90.0);
    EXPECT_BITS(table[1].Chainage, 100.0);
    EXPECT_BITS(table[1].Length, 100.0);
    EXPECT_BITS(table[2].Chainage, 200.0);
    EXPECT_BITS(table[2].GradeIn, -0.01);
}

TEST(GradeIntersections, RefusedInputWritesNothing)
{
    struct Case {
        const char* what;
        unsigned char count;
        int index;
        VElement point;
        int status;
    };
    const Case cases[] = {
        {"no point", 0, 0, vertex(0, 0.0, 10.0), 4},
        {"one point", 1, 0, vertex(0, 0.0, 10.0), 4},
        {"81 points", 81, 0, vertex(0, 0.0, 10.0), 4},
        {"chainage", 3, 2, vertex(0, 1e8, 10.0), 1},
        {"elevation", 3, 0, vertex(0, 0.0, NaN), 1},
        {"type 1", 3, 1, vertex(1, 100.0, 10.0, 0, 500.0), 1},
        {"type 4", 3, 2, vertex(4, 200.0, 10.0), 1},
        {"given 2", 3, 1, vertex(2, 100.0, 10.0, 2, 500.0), 1},
        {"radius 0", 3, 1, vertex(2, 100.0, 10.0, 0, 0.0), 1},
        {"length over", 3, 1, vertex(3, 100.0, 10.0, 1, 1e8), 1},
        {"steep start", 3, 1, vertex(0, 100.0, 200.0), 2},
        {"steep end", 3, 2, vertex(0, 200.0, -300.0), 2},
    };
    for (const Case& c : cases) {
        VElement points[81];
        for (int i = 0; i < 81; ++i) {
            points[i] = vertex(0, 100.0 * i, 10.0);
        }
        points[c.index] = c.point;
        VElement before[81];
        std::memcpy(before, points, sizeof points);
        VElement table[82];
        qtest::fill_sentinel(table);
        unsigned char count = 0xA5;
        EXPECT_EQ(LIB_CalWay_V_Cross_MainPoint(points, c.count, table, &count), c.status) << c.what;
        EXPECT_EQ(std::memcmp(before, points, sizeof points), 0) << c.what;
        EXPECT_TRUE(qtest::untouched(table)) << c.what;
        EXPECT_EQ(count, 0xA5) << c.what;
    }
}

TEST(GradeIntersections, LaterFailuresKeepTheWrittenBackCurve)
{
    // The curve is computed, then the next grade is too steep.
    VElement points[] = {vertex(0, 0.0, 10.0), vertex(2, 100.0, 11.0, 0, 1000.0),
                         vertex(0, 200.0, 10.0), vertex(0, 201.0, 50.0)};
    VElement table[81];
    unsigned char count = 0xA5;
    EXPECT_EQ(LIB_CalWay_V_Cross_MainPoint(points, 4, table, &count), 2);
    EXPECT_NEAR(points[1].Length, 20.0, 1e-12);
    EXPECT_NEAR(points[1].Chainage, 90.0, 1e-12);
    EXPECT_NEAR(points[1].Elevation, 10.9, 1e-12);
    EXPECT_EQ(count, 0xA5);
}

TEST(GradeIntersections, TableOverflowEndsAtTheLastRecord)
{
    // Every inner point is a parabola needing a grade line before it: two
    // records each. With 40 of them the final line is the 81st record and
    // the end record finds no place; with more, the 41st curve finds none.
    for (unsigned char n : {42, 43, 60}) {
        VElement points[80];
        qtest::fill_sentinel(points);
        for (int i = 0; i < n; ++i) {
            points[i] = vertex(i == 0 || i == n - 1 ? 0 : 2, 100.0 * i, 10.0 + (i % 2), 0, 1000.0);
        }
        VElement table[81];
        qtest::fill_sentinel(table);
        unsigned char count = 0;
        EXPECT_EQ(LIB_CalWay_V_Cross_MainPoint(points, n, table, &count), 4) << int(n);
        EXPECT_EQ(count, 81) << int(n);
        EXPECT_EQ(table[80].Type, 0) << int(n);
        EXPECT_EQ(table[79].Type, 2) << int(n);
        EXPECT_BITS(table[79].GradeOut, 0.01) << int(n);
        EXPECT_NEAR(points[40].Length, 20.0, 1e-12) << int(n);
        // A 41st curve is computed before it finds no place; the walk ends there.
        EXPECT_EQ(qtest::untouched(points[41].Chainage), n == 42) << int(n);
        EXPECT_TRUE(qtest::untouched(points[42].Chainage)) << int(n);
    }
}
