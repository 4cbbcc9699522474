// Vertical tables from elements and from grade intersections, elevations on
// one element and along a whole profile.
#include "bits.hpp"
#include "records.hpp"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace {

using qtest::NaN;
const double S = qtest::sentinel_double();

// A designer's element; of a list only the first one's start is read.
VElement element(unsigned char type, unsigned char given, double value, double grade_out = S,
                 double chainage = S, double elevation = S, double grade_in = S)
{
    VElement e = qtest::sentinel_filled<VElement>();
    e.Type = type;
    e.Given = given;
    (given == 1 ? e.Length : e.Radius) = value;
    e.GradeOut = grade_out;
    e.Chainage = chainage;
    e.Elevation = elevation;
    e.GradeIn = grade_in;
    return e;
}

// A grade intersection; an inner curve gives its Radius (given 0) or Length (1).
VElement vertex(unsigned char type, double chainage, double elevation, unsigned char given = 0,
                double value = S)
{
    VElement p = element(type, given, value);
    p.VertexChainage = chainage;
    p.VertexElevation = elevation;
    return p;
}

} // namespace

TEST(VerticalTable, GradeLineParabolicCrestAndLookup)
{
    // 100 m at 2 % from 50 m ends at 52 m; a crest from 2 % to -1 % of radius
    // 2000 is 60 m long and lies 30^2 / 4000 = 0.225 below its vertex there.
    const VElement line[] = {element(1, 1, 100.0, 0.5, 0.0, 50.0, 0.02)};
    VElement table[2];
    ASSERT_EQ(LIB_CalWay_V_Ele_MainPoint(line, 2, table), 0);
    EXPECT_BITS(table[1].Chainage, 100.0);
    EXPECT_BITS(table[1].Elevation, 52.0);
    EXPECT_BITS(table[1].GradeIn, 0.02);
    // The element functions refuse the negative elevations the builder takes.
    double h = S;
    EXPECT_EQ(LIB_CalWay_V_Line_On(&table[0], -2550.0, &h, 1), 0); // skipped
    EXPECT_TRUE(qtest::untouched(h));
    EXPECT_EQ(LIB_CalWay_V_Line_On(&table[0], -2500.0, &h, 0), 0);
    EXPECT_BITS(h, 0.0);
    EXPECT_EQ(LIB_CalWay_V_Line_On(&table[0], -2550.0, &h, 0), 2);
    EXPECT_BITS(h, -1.0);
    EXPECT_EQ(LIB_CalWay_V_Line_On(&table[0], NaN, &h, 0), 0); // NaN fails neither comparison
    const struct {
        unsigned char count;
        double K;
        double elevation; // NaN: nothing written
    } cases[] = {{2, -0.002, 0.0},   {2, -0.0005, 50.0}, {2, 50.0, 51.0}, {2, 100.0005, 52.0},
                 {2, 100.002, 52.0}, {1, 0.0, NaN},      {1, -0.01, 0.0}, {0, -1e9, NaN}};
    for (const auto& c : cases) {
        h = S;
        EXPECT_EQ(LIB_CalWay_V_On(table, c.count, c.K, &h), c.count == 0 ? 4 : 0) << c.K;
        EXPECT_TRUE(std::isnan(c.elevation) ? qtest::untouched(h)
                                            : std::fabs(h - c.elevation) < 1e-12)
            << c.K;
    }
    const VElement by_radius[] = {element(2, 0, 2000.0, -0.01, 0.0, 50.0, 0.02)};
    const VElement by_length[] = {element(2, 1, 60.0, -0.01, 0.0, 50.0, 0.02)};
    for (const VElement* list : {by_radius, by_length}) {
        ASSERT_EQ(LIB_CalWay_V_Ele_MainPoint(list, 2, table), 0);
        EXPECT_BITS(table[0].Length, 60.0);
        EXPECT_BITS(table[0].Radius, 2000.0);
        EXPECT_BITS(table[0].VertexChainage, 30.0);
        EXPECT_BITS(table[0].VertexElevation, 50.6);
        EXPECT_EQ(LIB_CalWay_V_On(table, 2, 30.0, &h), 0);
        EXPECT_BITS(h, 50.375);
    }
    // On equal grades nothing is written and the held value must lie from 0
    // to the limit (a NaN does not).
    table[0].GradeOut = table[0].GradeIn;
    for (double held : {7.0, -7.0, NaN}) {
        h = held;
        EXPECT_EQ(LIB_CalWay_V_Curve_On(&table[0], 4.0, &h), held >= 0.0 ? 0 : 2);
        EXPECT_BITS(h, held);
    }
}

TEST(VerticalTable, ElementsMeetAtTheirJoints)
{
    VElement list[] = {element(1, 1, 120.0, 0.0, 1000.0, 250.0, 0.03), element(2, 0, 3000.0, -0.02),
                       element(1, 0, 1.0, -0.02), element(3, 1, 90.0, 0.015),
                       element(1, 1, 50.0, 0.015)};
    list[2].Length = 80.0; // a grade line with a dummy radius runs its own length
    VElement table[6];
    ASSERT_EQ(LIB_CalWay_V_Ele_MainPoint(list, 6, table), 0);
    EXPECT_BITS(table[3].Chainage - table[2].Chainage, 80.0);
    // Either side of every joint the profile leaves the joint on its grade.
    for (int i = 1; i < 5; ++i) {
        for (double step : {-0.0011, 0.0011}) {
            double h = NaN;
            EXPECT_EQ(LIB_CalWay_V_On(table, 6, table[i].Chainage + step, &h), 0);
            EXPECT_NEAR(h, table[i].Elevation + step * table[i].GradeIn, 1e-8) << i << " " << step;
        }
    }
    // The circle answers nothing at or before its start and beyond its end.
    for (double K : {table[3].Chainage, table[3].Chainage - 1.0, table[4].Chainage + 1.0}) {
        double h = 7.0;
        EXPECT_EQ(LIB_CalWay_V_Circle_On(&table[3], K, &h), 0);
        EXPECT_BITS(h, 7.0);
    }
}

TEST(VerticalTable, RefusedListWritesNothing)
{
    const VElement good = element(1, 1, 100.0, 0.0, 0.0, 50.0, 0.02);
    const struct {
        unsigned char count;
        void (*change)(VElement& first);
        int status;
    } cases[] = {{1, [](VElement&) {}, 4},
                 {82, [](VElement&) {}, 4},
                 {2, [](VElement& e) { e.Elevation = qtest::NaN; }, 1},
                 {2, [](VElement& e) { e.GradeIn = 1.0000001; }, 1},
                 {2, [](VElement& e) { e.Type = 4; }, 1},
                 {2, [](VElement& e) { e.GradeOut = -1.5; }, 1},
                 {2, [](VElement& e) { e.Given = 2; }, 1},
                 {2, [](VElement& e) { e.Length = 0.0; }, 1},
                 {2, [](VElement& e) { e.Given = 0, e.Radius = 1e8; }, 1},
                 {3, [](VElement&) {}, 1}}; // the second element's Given is 7
    for (const auto& c : cases) {
        VElement list[] = {good, good, good}; // a count out of bounds reads none
        c.change(list[0]);
        list[1].Given = 7;
        VElement table[3];
        qtest::fill_sentinel(table);
        EXPECT_EQ(LIB_CalWay_V_Ele_MainPoint(list, c.count, table), c.status) << &c - cases;
        EXPECT_TRUE(qtest::untouched(table)) << &c - cases;
    }
    // The longest list: 80 elements make a table of 81 records.
    VElement longest[80], table81[81];
    std::fill(longest, longest + 80, good);
    EXPECT_EQ(LIB_CalWay_V_Ele_MainPoint(longest, 81, table81), 0);
    // Negative elevations pass here; equal grades on a parabola of given
    // length divide by zero: the line before it stays computed, the end
    // record untouched.
    const VElement list[] = {element(1, 1, 100.0, 0.0, 0.0, -48.0, 0.02),
                             element(2, 1, 60.0, 0.02)};
    VElement table[3];
    qtest::fill_sentinel(table);
    EXPECT_EQ(LIB_CalWay_V_Ele_MainPoint(list, 3, table), 2);
    EXPECT_BITS(table[1].Elevation, -46.0);
    EXPECT_TRUE(std::isinf(table[1].Radius));
    EXPECT_TRUE(qtest::untouched(table[2]));
}

TEST(GradeIntersections, AgreesWithTheSameProfileByElements)
{
    VElement points[] = {vertex(0, 0.0, 100.0), vertex(2, 200.0, 104.0, 0, 2000.0),
                         vertex(2, 400.0, 101.0, 1, 40.0), vertex(0, 600.0, 103.0)};
    VElement cross[81];
    unsigned char count = 0;
    ASSERT_EQ(LIB_CalWay_V_Cross_MainPoint(points, 4, cross, &count), 0);
    ASSERT_EQ(count, 6);
    EXPECT_NEAR(points[1].Chainage, 165.0, 1e-12); // written back
    const VElement list[] = {element(1, 1, 165.0, 0.02, 0.0, 100.0, 0.02),
                             element(2, 0, 2000.0, -0.015), element(1, 1, 145.0, -0.015),
                             element(2, 1, 40.0, 0.01), element(1, 1, 180.0, 0.01)};
    VElement ele[6];
    ASSERT_EQ(LIB_CalWay_V_Ele_MainPoint(list, 6, ele), 0);
    for (double K = -5.0; K <= 605.0; K += 2.5) {
        double a = NaN, b = NaN;
        EXPECT_EQ(LIB_CalWay_V_On(cross, count, K, &a), 0) << K;
        EXPECT_EQ(LIB_CalWay_V_On(ele, 6, K, &b), 0) << K;
        EXPECT_NEAR(a, b, 1e-9) << K;
    }
}

TEST(GradeIntersections, QuirksOfCircleAndPlainChange)
{
    // A circle from 2 % to -3 % ends on the sine of the grade itself:
    // 101.250131, where the grade's angle would give 101.250356.
    VElement points[] = {vertex(0, 0.0, 100.0), vertex(3, 100.0, 102.0, 0, 1000.0),
                         vertex(0, 200.0, 99.0)};
    VElement table[81];
    unsigned char count = 0;
    ASSERT_EQ(LIB_CalWay_V_Cross_MainPoint(points, 3, table, &count), 0);
    ASSERT_EQ(count, 4);
    EXPECT_NEAR(table[1].Chainage, 75.00062459, 1e-8);
    EXPECT_NEAR(table[2].Chainage, 124.98896342, 1e-8);
    EXPECT_NEAR(table[2].Elevation, 101.25013123, 1e-8);
    EXPECT_BITS(table[1].GradeOut, -0.03);
    // A plain change of grade: the line before it ends at its Chainage
    // field, the next one starts at its vertex.
    VElement plain[] = {vertex(0, 0.0, 10.0), vertex(0, 100.0, 11.0), vertex(0, 200.0, 10.0)};
    plain[1].Chainage = 90.0;
    ASSERT_EQ(LIB_CalWay_V_Cross_MainPoint(plain, 3, table, &count), 0);
    ASSERT_EQ(count, 3);
    EXPECT_BITS(table[0].Length, 90.0);
    EXPECT_BITS(table[1].Chainage, 100.0);
    EXPECT_BITS(table[2].GradeIn, -0.01);
}

TEST(GradeIntersections, RefusedInputWritesNothing)
{
    const struct {
        unsigned char count;
        int index;
        VElement point;
        int status;
    } cases[] = {
        {0, 0, vertex(0, 0.0, 10.0), 4},           {81, 0, vertex(0, 0.0, 10.0), 4},
        {3, 2, vertex(0, 1e8, 10.0), 1},           {3, 1, vertex(1, 100.0, 10.0, 0, 500.0), 1},
        {3, 2, vertex(4, 200.0, 10.0), 1},         {3, 1, vertex(2, 100.0, 10.0, 2, 500.0), 1},
        {3, 1, vertex(2, 100.0, 10.0, 0, 0.0), 1}, {3, 1, vertex(3, 100.0, 10.0, 1, 1e8), 1},
        {3, 1, vertex(0, 100.0, 200.0), 2}, // grades beyond 100 %
        {3, 2, vertex(0, 200.0, -300.0), 2}};
    for (const auto& c : cases) {
        // A count out of bounds is refused before any point is read.
        VElement points[] = {vertex(0, 0.0, 10.0), vertex(0, 100.0, 10.0), vertex(0, 200.0, 10.0)};
        points[c.index] = c.point;
        VElement before[3];
        std::memcpy(before, points, sizeof points);
        VElement table[3];
        qtest::fill_sentinel(table);
        unsigned char count = 0xA5;
        EXPECT_EQ(LIB_CalWay_V_Cross_MainPoint(points, c.count, table, &count), c.status);
        EXPECT_EQ(std::memcmp(before, points, sizeof points), 0) << &c - cases;
        EXPECT_TRUE(qtest::untouched(table) && count == 0xA5) << &c - cases;
    }
    // The longest list: 80 grade intersections.
    VElement longest[80];
    for (int i = 0; i < 80; ++i) {
        longest[i] = vertex(0, 100.0 * i, 10.0);
    }
    VElement table[81];
    unsigned char count = 0;
    EXPECT_EQ(LIB_CalWay_V_Cross_MainPoint(longest, 80, table, &count), 0);
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
        unsigned char count = 0;
        EXPECT_EQ(LIB_CalWay_V_Cross_MainPoint(points, n, table, &count), 4) << int(n);
        EXPECT_EQ(count, 81) << int(n);
        EXPECT_EQ(table[80].Type, 0) << int(n);
        EXPECT_EQ(table[79].Type, 2) << int(n);
        // A 41st curve is computed before it finds no place; the walk ends there.
        EXPECT_EQ(qtest::untouched(points[41].Chainage), n == 42) << int(n);
        EXPECT_TRUE(qtest::untouched(points[42].Chainage)) << int(n);
    }
}
