// Vertical tables from elements and from grade intersections; elevations.
#include "road_support.hpp"

#include <algorithm>
#include <cstring>

namespace {

using qtest::Call;
using qtest::NaN;
using qtest::rows;
const double S = qtest::sentinel_double();

// A designer's element (of a list only the first one's start is read), or a
// grade intersection whose inner curve gives its Radius (given 0) or Length.
VElement element(unsigned char type, unsigned char given, double value, double grade_out = S,
                 double chainage = S, double elevation = S, double grade_in = S)
{
    return VElement{
        type,  chainage, elevation, S, S, given == 1 ? S : value, given == 1 ? value : S,
        given, grade_in, grade_out};
}

VElement vertex(unsigned char type, double K, double H, unsigned char given = 0, double value = S)
{
    return VElement{type, S, S, K, H, given == 1 ? S : value, given == 1 ? value : S, given, S, S};
}

} // namespace

TEST(VerticalTable, GradeLineParabolicCrestAndLookup)
{
    // 100 m at 2 % from 50 m ends at 52 m; a crest from 2 % to -1 % of radius
    // 2000 is 60 m long and lies 30^2 / 4000 = 0.225 below its vertex there.
    const Call build("LIB_CalWay_V_Ele_MainPoint", "grade line");
    const VElement line[] = {element(1, 1, 100.0, 0.5, 0.0, 50.0, 0.02)};
    VElement table[2];
    ASSERT_STATUS(build, LIB_CalWay_V_Ele_MainPoint(line, 2, table), 0);
    EXPECT_BITS(build, table[1].Chainage, 100.0);
    EXPECT_BITS(build, table[1].Elevation, 52.0);
    EXPECT_BITS(build, table[1].GradeIn, 0.02);
    // The element functions refuse the negative elevations the builder
    // takes; a NaN fails neither comparison; mode 1 skips.
    const struct {
        double K;
        unsigned char mode;
        int status;
        double elevation;
    } lines[] = {{-2550, 1, 0, S}, {-2500, 0, 0, 0.0}, {-2550, 0, 2, -1.0}, {NaN, 0, 0, NaN}};
    for (const auto& [call, c] : rows("LIB_CalWay_V_Line_On", lines)) {
        double h = S;
        EXPECT_STATUS(call, LIB_CalWay_V_Line_On(&table[0], c.K, &h, c.mode), c.status);
        EXPECT_BITS(call, h, c.elevation);
    }
    double h = S;
    const struct {
        unsigned char count;
        double K, elevation; // NaN: nothing written
    } cases[] = {{2, -0.002, 0.0},   {2, -0.0005, 50.0}, {2, 50.0, 51.0}, {2, 100.0005, 52.0},
                 {2, 100.002, 52.0}, {1, 0.0, NaN},      {1, -0.01, 0.0}, {0, -1e9, NaN}};
    for (const auto& [call, c] : rows("LIB_CalWay_V_On", cases)) {
        h = S;
        EXPECT_STATUS(call, LIB_CalWay_V_On(table, c.count, c.K, &h), c.count == 0 ? 4 : 0);
        if (std::isnan(c.elevation)) {
            EXPECT_UNTOUCHED(call, h);
        } else {
            EXPECT_WITHIN(call, h, c.elevation, 1e-12);
        }
    }
    // On a 4 mm grade line, exactly a millimetre from a record is neither on
    // it, nor off that end, nor inside the line: nothing is written.
    const VElement stub[] = {element(1, 1, 0.004, 0.5, 0.0, 50.0, 0.02)};
    VElement short_table[2];
    ASSERT_STATUS(Call("LIB_CalWay_V_Ele_MainPoint", "4 mm grade line"),
                  LIB_CalWay_V_Ele_MainPoint(stub, 2, short_table), 0);
    const double millimetre_off[] = {-0.001, 0.001, 0.003, 0.005};
    for (const auto& [call, K] : rows("LIB_CalWay_V_On", millimetre_off)) {
        h = S;
        EXPECT_STATUS(call, LIB_CalWay_V_On(short_table, 2, K, &h), 0);
        EXPECT_UNTOUCHED(call, h);
    }
    const VElement crests[] = {element(2, 0, 2000.0, -0.01, 0.0, 50.0, 0.02),
                               element(2, 1, 60.0, -0.01, 0.0, 50.0, 0.02)};
    for (const auto& [row, crest] : rows(crests)) {
        const Call built = row.of("LIB_CalWay_V_Ele_MainPoint").at("crest");
        ASSERT_STATUS(built, LIB_CalWay_V_Ele_MainPoint(&crest, 2, table), 0);
        EXPECT_BITS(built, table[0].Length, 60.0);
        EXPECT_BITS(built, table[0].Radius, 2000.0);
        EXPECT_BITS(built, table[0].VertexChainage, 30.0);
        EXPECT_BITS(built, table[0].VertexElevation, 50.6);
        const Call looked_up = row.of("LIB_CalWay_V_On").at("vertex of the crest");
        EXPECT_STATUS(looked_up, LIB_CalWay_V_On(table, 2, 30.0, &h), 0);
        EXPECT_BITS(looked_up, h, 50.375);
    }
    // On equal grades nothing is written and the held value must lie from 0
    // to the limit (a NaN does not).
    table[0].GradeOut = table[0].GradeIn;
    const double held_values[] = {7.0, -7.0, NaN};
    for (const auto& [call, held] : rows("LIB_CalWay_V_Curve_On", held_values)) {
        h = held;
        EXPECT_STATUS(call, LIB_CalWay_V_Curve_On(&table[0], 4.0, &h), held >= 0.0 ? 0 : 2);
        EXPECT_BITS(call, h, held);
    }
}

TEST(VerticalTable, ElementsMeetAtTheirJoints)
{
    VElement list[] = {element(1, 1, 120.0, 0.0, 1000.0, 250.0, 0.03), element(2, 0, 3000.0, -0.02),
                       element(1, 0, 1.0, -0.02), element(3, 1, 90.0, 0.015),
                       element(1, 1, 50.0, 0.015)};
    list[2].Length = 80.0; // a grade line with a dummy radius runs its own length
    VElement table[6];
    const Call build("LIB_CalWay_V_Ele_MainPoint", "five elements");
    ASSERT_STATUS(build, LIB_CalWay_V_Ele_MainPoint(list, 6, table), 0);
    EXPECT_BITS(build, table[3].Chainage - table[2].Chainage, 80.0);
    // Either side of every joint the profile leaves the joint on its grade.
    for (int i = 1; i < 5; ++i) {
        for (double step : {-0.0011, 0.0011}) {
            const Call call("LIB_CalWay_V_On", "joint " + std::to_string(i) +
                                                   (step < 0 ? " less 1.1 mm" : " plus 1.1 mm"));
            double h = NaN;
            EXPECT_STATUS(call, LIB_CalWay_V_On(table, 6, table[i].Chainage + step, &h), 0);
            EXPECT_WITHIN(call, h, table[i].Elevation + step * table[i].GradeIn, 1e-8);
        }
    }
    // The circle answers nothing at or before its start and beyond its end.
    const double outside[] = {table[3].Chainage, table[3].Chainage - 1.0, table[4].Chainage + 1.0};
    for (const auto& [call, K] : rows("LIB_CalWay_V_Circle_On", outside)) {
        double h = 7.0;
        EXPECT_STATUS(call, LIB_CalWay_V_Circle_On(&table[3], K, &h), 0);
        EXPECT_BITS(call, h, 7.0);
    }
}

TEST(VerticalTable, RefusedListWritesNothing)
{
    // A count out of bounds reads no element; with 3 the second element's
    // Given of 7 is refused.
    const VElement good = element(1, 1, 100.0, 0.0, 0.0, 50.0, 0.02);
    const struct {
        unsigned char count;
        void (*change)(VElement& first);
        int status;
        // clang-format off
    } cases[] = {
        {1, [](VElement&) {}, 4}, {82, [](VElement&) {}, 4}, {3, [](VElement&) {}, 1},
        {2, [](VElement& e) { e.Elevation = NaN; }, 1}, {2, [](VElement& e) { e.Type = 4; }, 1},
        {2, [](VElement& e) { e.GradeIn = 1.0000001; }, 1},
        {2, [](VElement& e) { e.Given = 2; }, 1},
        {2, [](VElement& e) { e.GradeOut = -1.5; }, 1}, {2, [](VElement& e) { e.Length = 0; }, 1},
        {2, [](VElement& e) { e.Given = 0, e.Radius = 1e8; }, 1}};
    // clang-format on
    for (const auto& [call, c] : rows("LIB_CalWay_V_Ele_MainPoint", cases)) {
        VElement list[] = {good, good, good}, table[3];
        c.change(list[0]);
        list[1].Given = 7;
        qtest::fill_sentinel(table);
        EXPECT_STATUS(call, LIB_CalWay_V_Ele_MainPoint(list, c.count, table), c.status);
        EXPECT_UNTOUCHED(call, table);
    }
    // 80 elements make the longest table. Negative elevations pass here;
    // equal grades on a parabola of given length divide by zero: the line
    // before it stays computed, the end record untouched.
    VElement list[81], table[81];
    std::fill(list, list + 80, good);
    EXPECT_STATUS(Call("LIB_CalWay_V_Ele_MainPoint", "80 elements"),
                  LIB_CalWay_V_Ele_MainPoint(list, 81, table), 0);
    const Call flat("LIB_CalWay_V_Ele_MainPoint", "parabola between equal grades");
    list[0] = element(1, 1, 100.0, 0.0, 0.0, -48.0, 0.02), list[1] = element(2, 1, 60.0, 0.02);
    qtest::fill_sentinel(table);
    EXPECT_STATUS(flat, LIB_CalWay_V_Ele_MainPoint(list, 3, table), 2);
    EXPECT_BITS(flat, table[1].Elevation, -46.0);
    EXPECT_BITS(flat, table[1].Radius, qtest::INF);
    EXPECT_UNTOUCHED(flat, table[2]);
}

TEST(GradeIntersections, AgreesWithTheSameProfileByElements)
{
    VElement points[] = {vertex(0, 0.0, 100.0), vertex(2, 200.0, 104.0, 0, 2000.0),
                         vertex(2, 400.0, 101.0, 1, 40.0), vertex(0, 600.0, 103.0)};
    VElement cross[81], ele[6];
    unsigned char count = 0;
    const Call by_points("LIB_CalWay_V_Cross_MainPoint", "two curves");
    ASSERT_STATUS(by_points, LIB_CalWay_V_Cross_MainPoint(points, 4, cross, &count), 0);
    ASSERT_BITS(by_points, count, 6);
    EXPECT_WITHIN(by_points, points[1].Chainage, 165.0, 1e-12); // written back
    const VElement list[] = {element(1, 1, 165.0, 0.02, 0.0, 100.0, 0.02),
                             element(2, 0, 2000.0, -0.015), element(1, 1, 145.0, -0.015),
                             element(2, 1, 40.0, 0.01), element(1, 1, 180.0, 0.01)};
    ASSERT_STATUS(Call("LIB_CalWay_V_Ele_MainPoint", "the same profile"),
                  LIB_CalWay_V_Ele_MainPoint(list, 6, ele), 0);
    for (double K = -5.0; K <= 605.0; K += 2.5) {
        const Call call("LIB_CalWay_V_On", "K " + std::to_string(K));
        double a = NaN, b = NaN;
        EXPECT_STATUS(call.at("points"), LIB_CalWay_V_On(cross, count, K, &a), 0);
        EXPECT_STATUS(call.at("elements"), LIB_CalWay_V_On(ele, 6, K, &b), 0);
        EXPECT_WITHIN(call, a, b, 1e-9);
    }
    // A circle from 2 % to -3 % ends on the sine of the grade itself:
    // 101.250131, where the grade's angle would give 101.250356.
    VElement circle[] = {vertex(0, 0.0, 100.0), vertex(3, 100.0, 102.0, 0, 1000.0),
                         vertex(0, 200.0, 99.0)};
    const Call round("LIB_CalWay_V_Cross_MainPoint", "circular curve");
    ASSERT_STATUS(round, LIB_CalWay_V_Cross_MainPoint(circle, 3, cross, &count), 0);
    ASSERT_BITS(round, count, 4);
    EXPECT_BITS(round, cross[1].GradeOut, -0.03);
    EXPECT_WITHIN(round, cross[1].Chainage, 75.00062459, 1e-8);
    EXPECT_WITHIN(round, cross[2].Chainage, 124.98896342, 1e-8);
    EXPECT_WITHIN(round, cross[2].Elevation, 101.25013123, 1e-8);
    // A plain change of grade: the line before it ends at its Chainage
    // field, the next one starts at its vertex.
    VElement plain[] = {vertex(0, 0.0, 10.0), vertex(0, 100.0, 11.0), vertex(0, 200.0, 10.0)};
    plain[1].Chainage = 90.0;
    const Call change("LIB_CalWay_V_Cross_MainPoint", "plain change of grade");
    ASSERT_STATUS(change, LIB_CalWay_V_Cross_MainPoint(plain, 3, cross, &count), 0);
    ASSERT_BITS(change, count, 3);
    EXPECT_BITS(change, cross[0].Length, 90.0);
    EXPECT_BITS(change, cross[1].Chainage, 100.0);
    EXPECT_BITS(change, cross[2].GradeIn, -0.01);
}

TEST(GradeIntersections, RefusedInputAndFullTable)
{
    // A count out of bounds is refused before any point is read; grades
    // beyond 100 % give 2.
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
        {3, 1, vertex(0, 100.0, 200.0), 2},        {3, 2, vertex(0, 200.0, -300.0), 2},
    };
    for (const auto& [call, c] : rows("LIB_CalWay_V_Cross_MainPoint", cases)) {
        VElement given[] = {vertex(0, 0.0, 10.0), vertex(0, 100.0, 10.0), vertex(0, 200.0, 10.0)};
        given[c.index] = c.point;
        // Field by field into sentinel-filled records, so that the padding
        // the byte comparison covers holds known bytes.
        VElement points[3];
        qtest::fill_sentinel(points);
        for (int i = 0; i < 3; ++i) {
            qtest::each_field(&points[i],
                              [&](const char*, auto field) { points[i].*field = given[i].*field; });
        }
        VElement before[3], table[3];
        std::memcpy(before, points, sizeof points);
        qtest::fill_sentinel(table);
        unsigned char count = qtest::SENTINEL_BYTE;
        EXPECT_STATUS(call, LIB_CalWay_V_Cross_MainPoint(points, c.count, table, &count), c.status);
        EXPECT_BITS(call, points, before);
        EXPECT_EQ(std::memcmp(before, points, sizeof points), 0)
            << call << ": points changed, padding included";
        EXPECT_UNTOUCHED(call, table);
        EXPECT_UNTOUCHED(call, count);
    }
    // Every inner point is a parabola needing a grade line before it: two
    // records each. With 40 of them the final line is the 81st record and
    // the end record finds no place; with more, the 41st curve is computed
    // before it finds none and the walk ends there. 80 plain points fit.
    for (unsigned char n : {42, 43, 80}) {
        const Call call("LIB_CalWay_V_Cross_MainPoint", std::to_string(n) + " points");
        VElement points[80], table[81];
        qtest::fill_sentinel(points);
        for (int i = 0; i < n; ++i) {
            const bool curve = n < 80 && i > 0 && i < n - 1;
            points[i] = vertex(curve ? 2 : 0, 100.0 * i, 10.0 + (i % 2), 0, 1000.0);
        }
        unsigned char count = 0;
        ASSERT_STATUS(call, LIB_CalWay_V_Cross_MainPoint(points, n, table, &count), n < 80 ? 4 : 0);
        if (n == 80) {
            continue;
        }
        EXPECT_BITS(call, count, 81);
        EXPECT_BITS(call, table[80].Type, 0);
        EXPECT_BITS(call, table[79].Type, 2);
        EXPECT_WRITTEN_IF(call, points[41].Chainage, n != 42);
        EXPECT_UNTOUCHED(call, points[42].Chainage);
    }
}
