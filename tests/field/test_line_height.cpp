// Heights on the vertical plane of a line, and the circle through three points.
#include "check.hpp"
#include "records.hpp"

#include <cmath>
#include <vector>

using qtest::Call;
using qtest::rows;

TEST(LineHeight, TargetOnTheWallAndAngleTests)
{
    // A wall running north, seen from (50, 40): the target 10 m up at 70 m
    // along it, a second sighting 1.5 m below; the circle reads azimuth + 12345".
    const Call wall_call("LIB_CalLineHeight", "target on a wall");
    const double rho = 648000.0 / 3.1415926, distance = std::hypot(20.0, 40.0);
    const SurveyPoint wall[3] = {{0, 0, 3}, {100, 0, 4}, {50, 40, 0}}, target{70, 0, 0};
    double to_a = 0.0, to_target = 0.0;
    ASSERT_STATUS(wall_call, LIB_CalAZ(&wall[2], &wall[0], &to_a), 0);
    ASSERT_STATUS(wall_call, LIB_CalAZ(&wall[2], &target, &to_target), 0);
    const AngleObservation sights[4] = {
        {to_a + 12345, 0, 0},
        {},
        {to_target + 12345, 324000.0 - std::atan2(10.0, distance) * rho, 0},
        {0, 324000.0 - std::atan2(-1.5, distance) * rho, 0}};
    LineHeightResult r{};
    ASSERT_STATUS(wall_call, LIB_CalLineHeight(wall, sights, &r, 1), 0);
    // Together within 4e-5 m.
    EXPECT_WITHIN(wall_call, r.HorizontalDistance, distance, 1e-5);
    EXPECT_WITHIN(wall_call, r.Along, 70.0, 1e-5);
    EXPECT_WITHIN(wall_call, r.Height, 10.0, 1e-5);
    EXPECT_WITHIN(wall_call, r.HeightBetween, 11.5, 1e-5);
    // The station on the line beyond B: the sighting reads 324000 more than
    // the angle from the line. Negative angles are never refused.
    const SurveyPoint pts[3] = {{0.0, 0.0, 0.0}, {100.0, 0.0, 0.0}, {200.0, 0.0, 0.0}};
    const struct {
        double angle, zenith, second_zenith;
        unsigned char mode;
        int status;
    } cases[] = {{324000, 3e5, 0, 0, 1},  {324000.9, 3e5, 0, 0, 1},   {323999.9, 3e5, 0, 0, 0},
                 {972000, 3e5, 0, 0, 1},  {1620000, 3e5, 0, 0, 1},    {-324000, 3e5, 0, 0, 0},
                 {0, 3e5, 0, 0, 1},       {3e9, 3e5, 0, 0, 0},        {1e5, 0, 0, 0, 1},
                 {1e5, 648000, 0, 0, 0},  {1e5, qtest::NaN, 0, 0, 0}, {1e5, 3e5, 0, 1, 1},
                 {1e5, 3e5, 648000, 1, 0}};
    for (const auto& [call, c] : rows("LIB_CalLineHeight", cases)) {
        const AngleObservation obs[4] = {
            {}, {}, {c.angle + 324000.0, c.zenith, 0.0}, {0, c.second_zenith, 0}};
        const bool refused = c.status != 0;
        LineHeightResult out = qtest::sentinel_filled<LineHeightResult>();
        EXPECT_STATUS(call, LIB_CalLineHeight(pts, obs, &out, c.mode), c.status);
        EXPECT_WRITTEN_IF(call, out.Along, !refused || c.mode == 1);
        EXPECT_WRITTEN_IF(call, out.HeightBetween, !refused && c.mode == 1);
    }
}

TEST(Circle, CentreListDegeneratePointsAndListLengths)
{
    // Through (0,0), (0,10), (10,0): centre (5,5), radius sqrt(50); the list
    // spans the centre's easting +/- 6370000, not a number beyond the radius.
    const SurveyPoint sets[3][3] = {{{0, 0, 0}, {0, 10, 0}, {10, 0, 0}},
                                    {{0, 1e15, 0}, {0, 1e15 + 16.0, 0}, {10, 1e15, 0}},
                                    {{0, 0, 0}, {1e8, 1e8, 0}, {-1e8, -1e8 + 0.5, 0}}};
    const Call listed("LIB_CalCircle", "centre (5, 5), four steps");
    double radius = 0.0, centre[2] = {};
    CirclePointPair list[5];
    qtest::fill_sentinel(list);
    ASSERT_STATUS(listed, LIB_CalCircle(sets[0], &radius, centre, list, 4, 1), 0);
    EXPECT_BITS(listed, radius, std::sqrt(50.0));
    EXPECT_BITS(listed, centre[0], 5.0);
    EXPECT_BITS(listed, centre[1], 5.0);
    const double S = qtest::sentinel_double(), N = qtest::NaN;
    const double eastings[4] = {-6369995.0, -3184995.0, 5.0, 3185005.0};
    for (int i = 0; i < 4; ++i) {
        const bool on_circle = i == 2;
        const double first = on_circle ? 5 + std::sqrt(50.0) : N;
        const double second = on_circle ? 5 - std::sqrt(50.0) : N;
        EXPECT_BITS(listed.at("pair " + std::to_string(i)), list[i],
                    (CirclePointPair{first, eastings[i], S, second, eastings[i], S}));
    }
    EXPECT_UNTOUCHED(listed, list[4]);
    // A slope of 1, equal X, equal Y refused; Y1 = Y2 takes the other
    // formula; coincident points pass.
    const struct {
        PlanePoint p1, p2, p3;
        int status;
        double centre_y;
    } degenerate[] = {{{0, 0}, {1, 1}, {3, 3}, 1, 0},
                      {{2, 0}, {2, 5}, {2, 9}, 1, 0},
                      {{0, 4}, {3, 4}, {7, 4}, 1, 0},
                      {{0, 0}, {10, 0}, {0, 10}, 0, 5},
                      {{0, 0}, {0, 0}, {10, 5}, 0, N}};
    for (const auto& [call, c] : rows("LIB_CalCircle", degenerate)) {
        const SurveyPoint p[3] = {{c.p1.X, c.p1.Y, 1}, {c.p2.X, c.p2.Y, 2}, {c.p3.X, c.p3.Y, 3}};
        qtest::fill_sentinel(radius);
        qtest::fill_sentinel(centre);
        ASSERT_STATUS(call, LIB_CalCircle(p, &radius, centre, nullptr, 4, 0), c.status);
        EXPECT_WRITTEN_IF(call, radius, c.status == 0);
        EXPECT_WRITTEN_IF(call, centre, c.status == 0);
        if (c.status == 0) {
            EXPECT_BITS(call, centre[1], c.centre_y);
        }
    }
    // A negative count walks away; far out a step is lost (1e15) or rounded
    // short (at 4e16, 10000 steps of 1274 m would list 10016 pairs in room for
    // 10001; 1000 steps fit). A refused list leaves the circle written.
    const struct {
        int set;
        std::int32_t count;
        int status;
        std::size_t pairs;
    } lengths[] = {{0, 0, 0, 1},         {0, -1, 1, 0},    {0, INT32_MIN, 1, 0},
                   {1, INT32_MAX, 1, 0}, {2, 10000, 1, 0}, {2, 1000, 0, 1001}};
    for (const auto& [call, c] : rows("LIB_CalCircle", lengths)) {
        std::vector<CirclePointPair> pairs(10020, qtest::sentinel_filled<CirclePointPair>());
        qtest::fill_sentinel(radius);
        qtest::fill_sentinel(centre);
        EXPECT_STATUS(call, LIB_CalCircle(sets[c.set], &radius, centre, pairs.data(), c.count, 1),
                      c.status);
        EXPECT_WRITTEN(call, radius);
        EXPECT_WRITTEN(call, centre);
        if (c.pairs > 0) {
            EXPECT_WRITTEN(call, pairs[c.pairs - 1].FirstY);
        }
        EXPECT_UNTOUCHED(call, pairs[c.pairs]);
    }
}
