// Profiles: grade lines and parabolas agree with the device's own tables and
// are continuous at every joint, circular curves are circles (checked by the
// geometry of the grade intersection), and the design check of a measured
// point; bad input.
#include "check.hpp"
#include "records.hpp"
#include "survey_road_support.hpp"

namespace {

using namespace roadtest;
using qtest::INF;
using qtest::NaN;

VElement vertical(unsigned char type, double chainage, double elevation, double length,
                  double grade_in, double grade_out = 0.0, double radius = 0.0)
{
    VElement v{};
    v.Type = type;
    v.Chainage = chainage;
    v.Elevation = elevation;
    v.Length = length;
    v.Given = 1;
    v.GradeIn = grade_in;
    v.GradeOut = grade_out;
    v.Radius = radius;
    return v;
}

qs_profile_point height_at(const std::vector<VElement>& table, double chainage)
{
    qs_profile_point point{};
    EXPECT_EQ(qs_profile_height(table.data(), table.size(), chainage, &point), QS_OK) << chainage;
    return point;
}

// A device table: grade, crest, grade, sag, grade.
std::vector<VElement> device_profile()
{
    const VElement elements[] = {
        vertical(1, 1000.0, 312.4, 180.0, 0.035), vertical(2, 0, 0, 120.0, 0, -0.02),
        vertical(1, 0, 0, 200.0, 0, -0.02),       vertical(2, 0, 0, 90.0, 0, 0.015),
        vertical(1, 0, 0, 160.0, 0, 0.015),
    };
    std::vector<VElement> table(6);
    EXPECT_EQ(LIB_CalWay_V_Ele_MainPoint(elements, 6, table.data()), 0);
    return table;
}

TEST(SurveyProfile, GradesAndParabolasMatchTheDeviceAndAreContinuous)
{
    const std::vector<VElement> table = device_profile();
    for (double chainage = 1000.0; chainage <= 1750.0; chainage += 2.5) {
        double device = 0.0;
        ASSERT_EQ(LIB_CalWay_V_On(table.data(), 6, chainage, &device), 0);
        EXPECT_NEAR(height_at(table, chainage).height, device, 1e-9) << chainage;
    }
    for (std::size_t i = 1; i + 1 < table.size(); ++i) {
        const qs_profile_point before = height_at(table, table[i].Chainage - 1e-7);
        const qs_profile_point at = height_at(table, table[i].Chainage);
        EXPECT_NEAR(before.height, at.height, 1e-8) << "joint " << i;
        EXPECT_NEAR(before.grade, at.grade, 1e-9) << "joint " << i;
        EXPECT_BITS(qtest::Call("qs_profile_height", static_cast<std::ptrdiff_t>(i)), at.height,
                    table[i].Elevation);
        EXPECT_BITS(qtest::Call("qs_profile_height", static_cast<std::ptrdiff_t>(i)), at.grade,
                    table[i].GradeIn);
    }
}

// A circular curve of radius R between grades g1 and g2 touches them a
// tangent length T = R tan(|a2 - a1| / 2) from their intersection, measured
// along each grade (a = atan g); on a symmetric sag its lowest point lies
// R (1 / cos a - 1) above the intersection.
TEST(SurveyProfile, CircularCurvesAreCircles)
{
    struct Case {
        double grade_in, grade_out, radius;
    };
    const Case cases[] = {{-0.04, 0.04, 3000.0}, {0.05, -0.01, 4500.0}, {-0.02, 0.06, 2000.0}};
    for (const Case& c : cases) {
        const double a1 = std::atan(c.grade_in), a2 = std::atan(c.grade_out);
        const double tangent = c.radius * std::tan(0.5 * std::fabs(a2 - a1));
        const double vertex_chainage = 500.0, vertex_height = 100.0;
        const double start = vertex_chainage - tangent * std::cos(a1);
        const double end = vertex_chainage + tangent * std::cos(a2);
        const double start_height = vertex_height - tangent * std::sin(a1);
        const double end_height = vertex_height + tangent * std::sin(a2);
        std::vector<VElement> table = {
            vertical(1, 0.0, start_height - c.grade_in * start, start, c.grade_in),
            vertical(3, start, start_height, end - start, c.grade_in, c.grade_out, c.radius),
            vertical(1, end, end_height, 100.0, c.grade_out),
            vertical(0, end + 100.0, end_height + 100.0 * c.grade_out, 0.0, 0.0),
        };
        const qs_profile_point arrival = height_at(table, end - 1e-9);
        EXPECT_NEAR(arrival.height, end_height, 1e-9);
        EXPECT_NEAR(arrival.grade, c.grade_out, 1e-9);
        const qs_profile_point departure = height_at(table, start);
        EXPECT_BITS(qtest::Call("qs_profile_height", "departure"), departure.height, start_height);
        EXPECT_BITS(qtest::Call("qs_profile_height", "departure"), departure.grade, c.grade_in);
        if (c.grade_in == -c.grade_out) {
            const qs_profile_point lowest = height_at(table, vertex_chainage);
            EXPECT_NEAR(lowest.height, vertex_height + c.radius * (1.0 / std::cos(a2) - 1.0), 1e-9);
            EXPECT_NEAR(lowest.grade, 0.0, 1e-12);
        }
        // Past its extent a curve as long as its arc carries on along the
        // outgoing grade (as on the device's tables).
        const double arc = c.radius * std::fabs(a2 - a1);
        table[1].Length = arc;
        table[2].Chainage = start + arc;
        table[3].Chainage = start + arc + 100.0;
        const double last = start + arc - 1e-9;
        EXPECT_NEAR(height_at(table, last).height - height_at(table, end).height,
                    c.grade_out * (last - end), 1e-9);
    }
}

TEST(SurveyProfile, OutsideAndBadProfilesAreRefused)
{
    const std::vector<VElement> good = device_profile();
    qs_profile_point out = qtest::sentinel_filled<qs_profile_point>();
    EXPECT_EQ(qs_profile_height(good.data(), 6, 1000.0 - 1e-9, &out), QS_OUTSIDE_ALIGNMENT);
    EXPECT_EQ(qs_profile_height(good.data(), 6, 1750.0 + 1e-9, &out), QS_OUTSIDE_ALIGNMENT);
    const struct {
        const char* what;
        std::size_t record;
        void (*spoil)(VElement&);
    } spoils[] = {
        {"unknown kind", 1, [](VElement& v) { v.Type = 4; }},
        {"end record inside", 2, [](VElement& v) { v.Type = 0; }},
        {"no end record", 5, [](VElement& v) { v.Type = 1; }},
        {"elevation NaN", 2, [](VElement& v) { v.Elevation = NaN; }},
        {"end chainage infinite", 5, [](VElement& v) { v.Chainage = INF; }},
        {"grade beyond 1", 0, [](VElement& v) { v.GradeIn = 1.5; }},
        {"outgoing grade NaN", 1, [](VElement& v) { v.GradeOut = NaN; }},
        {"length 0", 2, [](VElement& v) { v.Length = 0.0; }},
        {"chainage step 2 mm long", 3, [](VElement& v) { v.Chainage -= 0.002; }},
        {"circle without radius", 3,
         [](VElement& v) {
             v.Type = 3;
             v.Radius = 0.0;
         }},
    };
    for (const auto& s : spoils) {
        std::vector<VElement> table = good;
        s.spoil(table[s.record]);
        EXPECT_EQ(qs_profile_height(table.data(), 6, 1100.0, &out), QS_BAD_ARGUMENT) << s.what;
    }
    for (double bad : {NaN, INF, -1.5e9}) {
        EXPECT_EQ(qs_profile_height(good.data(), 6, bad, &out), QS_BAD_ARGUMENT);
    }
    for (std::size_t count : {std::size_t{0}, std::size_t{1}, std::size_t{QS_MAX_ELEMENTS + 2}}) {
        EXPECT_EQ(qs_profile_height(good.data(), count, 1100.0, &out), QS_BAD_ARGUMENT);
    }
    EXPECT_TRUE(qtest::untouched(out));
    // A grade line's outgoing grade and a parabola's radius are not read.
    std::vector<VElement> table = good;
    table[0].GradeOut = NaN;
    table[1].Radius = NaN;
    EXPECT_EQ(qs_profile_height(table.data(), 6, 1100.0, &out), QS_OK);
}

TEST(SurveyProfile, RoadCheckGivesPositionDesignHeightAndCutOrFill)
{
    const std::vector<HElement>& road = sample_table();
    const std::vector<VElement> profile = device_profile();
    const std::size_t n = road.size();
    for (double chainage : {1000.0, 1234.5, 1500.0, 1749.0}) {
        qs_station_offset at{};
        ASSERT_EQ(qs_alignment_point(road.data(), n, chainage, -3.5, &at), QS_OK);
        const double design = height_at(profile, chainage).height;
        const SurveyPoint measured{at.x, at.y, design + 0.25};
        qs_design_check check{};
        ASSERT_EQ(qs_road_check(road.data(), n, profile.data(), 6, &measured, &check), QS_OK);
        EXPECT_NEAR(check.position.chainage, chainage, 1e-9);
        EXPECT_NEAR(check.position.offset, -3.5, 1e-9);
        EXPECT_NEAR(check.design_height, design, 1e-9);
        EXPECT_NEAR(check.cut_fill, 0.25, 1e-9); // above the design: cut
    }
    qs_design_check out = qtest::sentinel_filled<qs_design_check>();
    qs_station_offset beyond{};
    ASSERT_EQ(qs_alignment_point(road.data(), n, 1800.0, 1.0, &beyond), QS_OK);
    const SurveyPoint past_profile{beyond.x, beyond.y, 300.0};
    EXPECT_EQ(qs_road_check(road.data(), n, profile.data(), 6, &past_profile, &out),
              QS_OUTSIDE_ALIGNMENT);
    const SurveyPoint far_behind{ROAD_X - 500.0, ROAD_Y - 500.0, 300.0};
    EXPECT_EQ(qs_road_check(road.data(), n, profile.data(), 6, &far_behind, &out),
              QS_OUTSIDE_ALIGNMENT);
    // Both tables are checked before anything is located.
    std::vector<VElement> broken = profile;
    broken[2].Type = 9;
    EXPECT_EQ(qs_road_check(road.data(), n, broken.data(), 6, &far_behind, &out), QS_BAD_ARGUMENT);
    EXPECT_EQ(qs_road_check(road.data(), 1, profile.data(), 6, &far_behind, &out), QS_BAD_ARGUMENT);
    const SurveyPoint no_height{ROAD_X, ROAD_Y, NaN};
    EXPECT_EQ(qs_road_check(road.data(), n, profile.data(), 6, &no_height, &out), QS_BAD_ARGUMENT);
    EXPECT_TRUE(qtest::untouched(out));
}

} // namespace
