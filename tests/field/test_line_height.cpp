// Heights on the vertical plane of a line, and the circle through three points.
#include "bits.hpp"
#include "records.hpp"

#include <cmath>
#include <vector>

TEST(LineHeight, TargetOnTheWallFromEitherSide)
{
    // A wall running north from A; the target 10 m above the horizon at 70 m
    // along it, the second sighting 1.5 m below on the same vertical. The
    // circle reads azimuth + 12345". The quarter circles are 1.5707963 rad,
    // not pi/2: results agree to micrometres.
    const double rho = 648000.0 / 3.1415926, distance = std::hypot(20.0, 40.0);
    const SurveyPoint target{70.0, 0.0, 0.0};
    for (double side : {-40.0, 40.0}) {
        const SurveyPoint pts[3] = {{0.0, 0.0, 3.0}, {100.0, 0.0, 4.0}, {50.0, side, 0.0}};
        AngleObservation obs[4] = {};
        LIB_CalAZ(&pts[2], &pts[0], &obs[0].Horizontal);
        LIB_CalAZ(&pts[2], &target, &obs[2].Horizontal);
        obs[0].Horizontal += 12345.0;
        obs[2].Horizontal += 12345.0;
        obs[2].Zenith = 324000.0 - std::atan2(10.0, distance) * rho;
        obs[3].Zenith = 324000.0 - std::atan2(-1.5, distance) * rho;
        LineHeightResult out{};
        ASSERT_EQ(LIB_CalLineHeight(pts, obs, &out, 1), 0) << side;
        EXPECT_NEAR(out.HorizontalDistance, distance, 1e-5);
        EXPECT_NEAR(out.Along, 70.0, 1e-5);
        EXPECT_NEAR(out.Height, 10.0, 1e-5);
        EXPECT_NEAR(out.HeightBetween, 11.5, 1e-5);
    }
}

TEST(LineHeight, AngleTestsOnWholeSecondsAndWhatIsWritten)
{
    // The station on the line beyond B: the angle to the perpendicular is
    // exactly x = obs[2] - 324000. Negative angles are never refused.
    const SurveyPoint pts[3] = {{0.0, 0.0, 0.0}, {100.0, 0.0, 0.0}, {200.0, 0.0, 0.0}};
    const struct {
        double x, zenith, zenith2;
        unsigned char mode;
        int status;
    } cases[] = {
        {324000, 3e5, 0, 0, 1},   {324000.9, 3e5, 0, 0, 1},   {323999.9, 3e5, 0, 0, 0},
        {972000, 3e5, 0, 0, 1},   {1620000, 3e5, 0, 0, 1},    {-324000, 3e5, 0, 0, 0},
        {0, 3e5, 0, 0, 1},        {3e9, 3e5, 0, 0, 0},        {1e5, 0, 0, 0, 1},
        {1e5, 648000, 0, 0, 0},   {1e5, qtest::NaN, 0, 0, 0}, {1e5, 3e5, 0, 1, 1},
        {1e5, 3e5, 648000, 1, 0}, // second sighting vertical, then nadir
    };
    for (const auto& c : cases) {
        AngleObservation obs[4] = {};
        obs[2] = {c.x + 324000.0, c.zenith, 0.0};
        obs[3].Zenith = c.zenith2;
        LineHeightResult out = qtest::sentinel_filled<LineHeightResult>();
        EXPECT_EQ(LIB_CalLineHeight(pts, obs, &out, c.mode), c.status) << c.x << " " << c.zenith;
        EXPECT_EQ(qtest::untouched(out.Along), c.status != 0 && c.mode == 0);
        EXPECT_EQ(qtest::untouched(out.HeightBetween), c.status != 0 || c.mode == 0);
    }
}

TEST(Circle, CentreRadiusAndDegeneratePoints)
{
    const double N = qtest::NaN;
    const struct {
        SurveyPoint p[3];
        int status;
        double x, y;
    } cases[] = {
        {{{0, 0, 1}, {0, 10, 2}, {10, 0, 3}}, 0, 5, 5},
        {{{0, 0, 1}, {10, 0, 2}, {0, 10, 3}}, 0, 5, 5}, // Y1 = Y2
        {{{0, 0, 0}, {1, 1, 0}, {3, 3, 0}}, 1, 0, 0},   // slope 1
        {{{2, 0, 0}, {2, 5, 0}, {2, 9, 0}}, 1, 0, 0},   // equal X
        {{{0, 4, 0}, {3, 4, 0}, {7, 4, 0}}, 1, 0, 0},   // equal Y
        {{{0, 0, 0}, {0, 0, 0}, {10, 5, 0}}, 0, N, N},  // coincident points pass
    };
    for (const auto& c : cases) {
        double radius = qtest::sentinel_double();
        double centre[2];
        qtest::fill_sentinel(centre);
        ASSERT_EQ(LIB_CalCircle(c.p, &radius, centre, nullptr, 4, 0), c.status);
        EXPECT_EQ(qtest::untouched(radius) && qtest::untouched(centre), c.status != 0);
        if (c.status == 0) {
            EXPECT_BITS(radius, std::isnan(c.x) ? N : std::sqrt(50.0));
            EXPECT_BITS(centre[0], c.x);
            EXPECT_BITS(centre[1], c.y);
        }
    }
}

TEST(Circle, PointListAcrossTheFixedBand)
{
    const SurveyPoint pts[3] = {{0.0, 0.0, 0.0}, {0.0, 10.0, 0.0}, {10.0, 0.0, 0.0}};
    double radius = 0.0, centre[2] = {};
    CirclePointPair list[5];
    qtest::fill_sentinel(list);
    ASSERT_EQ(LIB_CalCircle(pts, &radius, centre, list, 4, 1), 0);
    const double eastings[4] = {-6369995.0, -3184995.0, 5.0, 3185005.0};
    for (int i = 0; i < 4; ++i) {
        EXPECT_BITS(list[i].FirstY, eastings[i]);
        EXPECT_BITS(list[i].SecondY, eastings[i]);
        EXPECT_TRUE(qtest::untouched(list[i].FirstSpare) && qtest::untouched(list[i].SecondSpare));
        EXPECT_EQ(std::isnan(list[i].FirstX), i != 2); // beyond the radius
    }
    EXPECT_BITS(list[2].FirstX, 5.0 + std::sqrt(50.0));
    EXPECT_BITS(list[2].SecondX, 5.0 - std::sqrt(50.0));
}

TEST(Circle, ListLengthsAndListsRefusedAfterTheCircle)
{
    // A negative count steps away from the end. Far out a step is lost in
    // rounding (1e15) or rounded short: at 4e16 doubles are 8 m apart, and
    // 10000 steps of 1274 m would list 10016 pairs in room for 10001, while
    // 1000 steps of 12740 m fit. A refused list leaves the circle written.
    const SurveyPoint near[3] = {{0, 0, 0}, {0, 10, 0}, {10, 0, 0}};
    const SurveyPoint far[3] = {{0, 1e15, 0}, {0, 1e15 + 16.0, 0}, {10, 1e15, 0}};
    const SurveyPoint flat[3] = {{0, 0, 0}, {1e8, 1e8, 0}, {-1e8, -1e8 + 0.5, 0}};
    const struct {
        const SurveyPoint* pts;
        int32_t count;
        int status;
        std::size_t pairs;
    } cases[] = {{near, 4, 0, 4},         {near, 0, 0, 1},        {near, -1, 1, 0},
                 {near, INT32_MIN, 1, 0}, {far, INT32_MAX, 1, 0}, {flat, 10000, 1, 0},
                 {flat, 1000, 0, 1001}};
    for (const auto& c : cases) {
        std::vector<CirclePointPair> list(10020, qtest::sentinel_filled<CirclePointPair>());
        double circle[3]; // radius, centre X, centre Y
        qtest::fill_sentinel(circle);
        EXPECT_EQ(LIB_CalCircle(c.pts, &circle[0], &circle[1], list.data(), c.count, 1), c.status);
        EXPECT_FALSE(qtest::untouched(circle[0]) || qtest::untouched(circle[2]));
        EXPECT_TRUE(c.pairs == 0 || !qtest::untouched(list[c.pairs - 1])) << c.count;
        EXPECT_TRUE(qtest::untouched(list[c.pairs])) << c.count;
    }
}
