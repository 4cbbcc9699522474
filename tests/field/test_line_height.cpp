// Heights on the vertical plane of a line, and the circle through three points.
#include "bits.hpp"
#include "records.hpp"

#include <cmath>
#include <vector>

using qtest::untouched;

TEST(LineHeight, TargetOnTheWallAndAngleTests)
{
    // A wall running north, seen from (50, 40): the target 10 m up at 70 m
    // along it, a second sighting 1.5 m below; the circle reads azimuth + 12345".
    const double rho = 648000.0 / 3.1415926, distance = std::hypot(20.0, 40.0);
    const SurveyPoint wall[3] = {{0, 0, 3}, {100, 0, 4}, {50, 40, 0}}, target{70, 0, 0};
    double to_a = 0.0, to_target = 0.0;
    LIB_CalAZ(&wall[2], &wall[0], &to_a);
    LIB_CalAZ(&wall[2], &target, &to_target);
    const AngleObservation sights[4] = {
        {to_a + 12345, 0, 0},
        {},
        {to_target + 12345, 324000.0 - std::atan2(10.0, distance) * rho, 0},
        {0, 324000.0 - std::atan2(-1.5, distance) * rho, 0}};
    LineHeightResult r{};
    ASSERT_EQ(LIB_CalLineHeight(wall, sights, &r, 1), 0);
    EXPECT_NEAR(std::fabs(r.HorizontalDistance - distance) + std::fabs(r.Along - 70) +
                    std::fabs(r.Height - 10) + std::fabs(r.HeightBetween - 11.5),
                0, 4e-5);
    // The station on the line beyond B: x = obs[2] - 324000 exactly. x, zenith,
    // second zenith, mode, status. Negative angles are never refused.
    const SurveyPoint pts[3] = {{0.0, 0.0, 0.0}, {100.0, 0.0, 0.0}, {200.0, 0.0, 0.0}};
    const double cases[][5] = {
        {324000, 3e5, 0, 0, 1},  {324000.9, 3e5, 0, 0, 1},   {323999.9, 3e5, 0, 0, 0},
        {972000, 3e5, 0, 0, 1},  {1620000, 3e5, 0, 0, 1},    {-324000, 3e5, 0, 0, 0},
        {0, 3e5, 0, 0, 1},       {3e9, 3e5, 0, 0, 0},        {1e5, 0, 0, 0, 1},
        {1e5, 648000, 0, 0, 0},  {1e5, qtest::NaN, 0, 0, 0}, {1e5, 3e5, 0, 1, 1},
        {1e5, 3e5, 648000, 1, 0}};
    for (const auto& c : cases) {
        const AngleObservation obs[4] = {{}, {}, {c[0] + 324000.0, c[1], 0.0}, {0, c[2], 0}};
        const bool refused = c[4] != 0, mode1 = c[3] == 1;
        LineHeightResult out = qtest::sentinel_filled<LineHeightResult>();
        EXPECT_EQ(LIB_CalLineHeight(pts, obs, &out, mode1 ? 1 : 0), c[4]) << c[0] << " " << c[1];
        EXPECT_EQ(untouched(out.Along), refused && !mode1);
        EXPECT_EQ(untouched(out.HeightBetween), refused || !mode1);
    }
}

TEST(Circle, CentreListDegeneratePointsAndListLengths)
{
    // Through (0,0), (0,10), (10,0): centre (5,5), radius sqrt(50); the list
    // spans the centre's easting +/- 6370000, not a number beyond the radius.
    const SurveyPoint sets[3][3] = {{{0, 0, 0}, {0, 10, 0}, {10, 0, 0}},
                                    {{0, 1e15, 0}, {0, 1e15 + 16.0, 0}, {10, 1e15, 0}},
                                    {{0, 0, 0}, {1e8, 1e8, 0}, {-1e8, -1e8 + 0.5, 0}}};
    double circle[3] = {}; // radius, centre X, centre Y
    CirclePointPair list[5];
    qtest::fill_sentinel(list);
    ASSERT_EQ(LIB_CalCircle(sets[0], &circle[0], &circle[1], list, 4, 1), 0);
    EXPECT_TRUE(circle[0] == std::sqrt(50.0) && circle[1] == 5 && circle[2] == 5);
    const double eastings[4] = {-6369995.0, -3184995.0, 5.0, 3185005.0};
    for (int i = 0; i < 4; ++i) {
        EXPECT_TRUE(list[i].FirstY == eastings[i] && list[i].SecondY == eastings[i]);
        EXPECT_TRUE(untouched(list[i].FirstSpare) && untouched(list[i].SecondSpare));
        EXPECT_EQ(std::isnan(list[i].FirstX), i != 2);
    }
    EXPECT_TRUE(list[2].FirstX == 5 + std::sqrt(50.0) && list[2].SecondX == 5 - std::sqrt(50.0));
    EXPECT_TRUE(untouched(list[4]));
    // x1, y1, x2, y2, x3, y3, status, centre Y: a slope of 1, equal X, equal Y
    // refused; Y1 = Y2 takes the other formula; coincident points pass.
    const double N = qtest::NaN;
    const double degenerate[][8] = {{0, 0, 1, 1, 3, 3, 1, 0},
                                    {2, 0, 2, 5, 2, 9, 1, 0},
                                    {0, 4, 3, 4, 7, 4, 1, 0},
                                    {0, 0, 10, 0, 0, 10, 0, 5},
                                    {0, 0, 0, 0, 10, 5, 0, N}};
    for (const auto& c : degenerate) {
        const SurveyPoint p[3] = {{c[0], c[1], 1}, {c[2], c[3], 2}, {c[4], c[5], 3}};
        qtest::fill_sentinel(circle);
        ASSERT_EQ(LIB_CalCircle(p, &circle[0], &circle[1], nullptr, 4, 0), c[6]);
        EXPECT_BITS(circle[2], c[6] != 0 ? qtest::sentinel_double() : c[7]);
        EXPECT_EQ(untouched(circle), c[6] != 0);
    }
    // A negative count walks away; far out a step is lost (1e15) or rounded
    // short (at 4e16, 10000 steps of 1274 m would list 10016 pairs in room for
    // 10001; 1000 steps fit). A refused list leaves the circle written.
    const double lengths[][4] = {{0, 0, 0, 1},         {0, -1, 1, 0},    {0, INT32_MIN, 1, 0},
                                 {1, INT32_MAX, 1, 0}, {2, 10000, 1, 0}, {2, 1000, 0, 1001}};
    for (const auto& c : lengths) {
        std::vector<CirclePointPair> list(10020, qtest::sentinel_filled<CirclePointPair>());
        qtest::fill_sentinel(circle);
        const auto count = static_cast<int32_t>(c[1]);
        const auto pairs = static_cast<std::size_t>(c[3]);
        EXPECT_EQ(LIB_CalCircle(sets[int(c[0])], &circle[0], &circle[1], list.data(), count, 1),
                  c[2]);
        EXPECT_FALSE(untouched(circle[0]) || untouched(circle[2]));
        EXPECT_TRUE((pairs == 0 || !untouched(list[pairs - 1])) && untouched(list[pairs]));
    }
}
