// Heights on the vertical plane of a line, and the circle through three points.
#include "bits.hpp"
#include "quillon.h"

#include <cmath>
#include <limits>
#include <vector>

namespace {

const double NaN = std::numeric_limits<double>::quiet_NaN();

double azimuth(const SurveyPoint& from, const SurveyPoint& to)
{
    double az = 0.0;
    EXPECT_EQ(LIB_CalAZ(&from, &to, &az), 0);
    return az;
}

// Elevation angle in arc-seconds as a zenith reading.
double zenith_for(double rise, double distance)
{
    return 324000.0 - std::atan2(rise, distance) * (648000.0 / 3.1415926);
}

} // namespace

TEST(LineHeight, TargetOnTheWallFromEitherSide)
{
    // A wall running north from A; the target 10 m above the horizon at 70 m
    // along it, the second sighting 1.5 m below the horizon on the same
    // vertical. The circle is not oriented: readings are azimuth + 12345".
    // The quarter circles of the computation are 1.5707963 rad, not pi/2:
    // results agree to some micrometres.
    const SurveyPoint target{70.0, 0.0, 0.0};
    for (double side : {-40.0, 40.0}) {
        const SurveyPoint pts[3] = {{0.0, 0.0, 3.0}, {100.0, 0.0, 4.0}, {50.0, side, 0.0}};
        const double distance = std::hypot(20.0, 40.0);
        AngleObservation obs[4] = {};
        obs[0].Horizontal = azimuth(pts[2], pts[0]) + 12345.0;
        obs[2].Horizontal = azimuth(pts[2], target) + 12345.0;
        obs[2].Zenith = zenith_for(10.0, distance);
        obs[3].Zenith = zenith_for(-1.5, distance);
        LineHeightResult out = qtest::sentinel_filled<LineHeightResult>();
        ASSERT_EQ(LIB_CalLineHeight(pts, obs, &out, 1), 0) << side;
        EXPECT_NEAR(out.HorizontalDistance, distance, 1e-5);
        EXPECT_NEAR(out.Along, 70.0, 1e-5);
        EXPECT_NEAR(out.Height, 10.0, 1e-5);
        EXPECT_NEAR(out.HeightBetween, 11.5, 1e-5);

        out = qtest::sentinel_filled<LineHeightResult>();
        ASSERT_EQ(LIB_CalLineHeight(pts, obs, &out, 0), 0);
        EXPECT_TRUE(qtest::untouched(out.HeightBetween));
        EXPECT_NEAR(out.Height, 10.0, 1e-5);
    }
}

TEST(LineHeight, AngleTestOnWholeSeconds)
{
    // The station on the line beyond B: the horizontal readings give the
    // angle x to the perpendicular exactly, x = obs[2] - 324000.
    const SurveyPoint pts[3] = {{0.0, 0.0, 0.0}, {100.0, 0.0, 0.0}, {200.0, 0.0, 0.0}};
    struct Case {
        double x, zenith;
        int status;
    };
    const Case cases[] = {
        {324000.0, 300000.0, 1},  {324000.9, 300000.0, 1},  {323999.9, 300000.0, 0},
        {972000.0, 300000.0, 1},  {1620000.0, 300000.0, 1}, {-324000.0, 300000.0, 0},
        {-972000.0, 300000.0, 0}, {0.0, 300000.0, 1},       {3e9, 300000.0, 0},
        {100000.0, 0.0, 1},       {100000.0, -648000.0, 1}, {100000.0, 648000.0, 0},
        {100000.0, 1296000.0, 0}, {100000.0, NaN, 0},
    };
    for (const Case& c : cases) {
        AngleObservation obs[3] = {};
        obs[2].Horizontal = c.x + 324000.0;
        obs[2].Zenith = c.zenith;
        LineHeightResult out = qtest::sentinel_filled<LineHeightResult>();
        EXPECT_EQ(LIB_CalLineHeight(pts, obs, &out, 0), c.status) << c.x << " " << c.zenith;
        EXPECT_EQ(qtest::untouched(out), c.status != 0);
    }
}

TEST(LineHeight, NadirSightingPassesAndVerticalSecondSightingKeepsTheFirst)
{
    const SurveyPoint pts[3] = {{0.0, 0.0, 0.0}, {100.0, 0.0, 0.0}, {50.0, -40.0, 0.0}};
    const SurveyPoint target{70.0, 0.0, 0.0};
    AngleObservation obs[4] = {};
    obs[0].Horizontal = azimuth(pts[2], pts[0]);
    obs[2].Horizontal = azimuth(pts[2], target);
    obs[2].Zenith = 648000.0;
    obs[3].Zenith = 0.0;
    LineHeightResult out = qtest::sentinel_filled<LineHeightResult>();
    EXPECT_EQ(LIB_CalLineHeight(pts, obs, &out, 1), 1);
    EXPECT_LT(out.Height, -3.7e7 * 44.0);
    EXPECT_NEAR(out.Along, 70.0, 1e-5);
    EXPECT_TRUE(qtest::untouched(out.HeightBetween));
}

TEST(Circle, CentreRadiusAndDegeneratePoints)
{
    const double R = std::sqrt(50.0);
    struct Case {
        SurveyPoint p[3];
        int status;
        double radius, x, y;
    };
    const Case cases[] = {
        {{{0.0, 0.0, 1.0}, {0.0, 10.0, 2.0}, {10.0, 0.0, 3.0}}, 0, R, 5.0, 5.0},
        {{{0.0, 0.0, 1.0}, {10.0, 0.0, 2.0}, {0.0, 10.0, 3.0}}, 0, R, 5.0, 5.0}, // Y1 = Y2
        {{{0.0, 0.0, 0.0}, {1.0, 1.0, 0.0}, {3.0, 3.0, 0.0}}, 1, 0, 0, 0},       // slope 1
        {{{2.0, 0.0, 0.0}, {2.0, 5.0, 0.0}, {2.0, 9.0, 0.0}}, 1, 0, 0, 0},       // equal X
        {{{0.0, 4.0, 0.0}, {3.0, 4.0, 0.0}, {7.0, 4.0, 0.0}}, 1, 0, 0, 0},       // equal Y
        // Two coincident points are not refused: the centre is not a number.
        {{{0.0, 0.0, 0.0}, {0.0, 0.0, 0.0}, {10.0, 5.0, 0.0}}, 0, NaN, NaN, NaN},
    };
    for (const Case& c : cases) {
        double radius = qtest::sentinel_double();
        double centre[2];
        qtest::fill_sentinel(centre);
        ASSERT_EQ(LIB_CalCircle(c.p, &radius, centre, nullptr, 4, 0), c.status);
        if (c.status != 0) {
            EXPECT_TRUE(qtest::untouched(radius) && qtest::untouched(centre));
            continue;
        }
        EXPECT_BITS(radius, c.radius);
        EXPECT_BITS(centre[0], c.x);
        EXPECT_BITS(centre[1], c.y);
    }
}

TEST(Circle, PointListAcrossTheFixedBand)
{
    const SurveyPoint pts[3] = {{0.0, 0.0, 0.0}, {0.0, 10.0, 0.0}, {10.0, 0.0, 0.0}};
    double radius = 0.0;
    double centre[2] = {};
    CirclePointPair list[6];
    qtest::fill_sentinel(list);
    ASSERT_EQ(LIB_CalCircle(pts, &radius, centre, list, 4, 1), 0);
    const double eastings[4] = {-6369995.0, -3184995.0, 5.0, 3185005.0};
    for (int i = 0; i < 4; ++i) {
        EXPECT_BITS(list[i].FirstY, eastings[i]);
        EXPECT_BITS(list[i].SecondY, eastings[i]);
        EXPECT_TRUE(qtest::untouched(list[i].FirstSpare));
        EXPECT_TRUE(qtest::untouched(list[i].SecondSpare));
        EXPECT_EQ(std::isnan(list[i].FirstX), i != 2);
    }
    EXPECT_NEAR(list[2].FirstX, 5.0 + std::sqrt(50.0), 1e-12);
    EXPECT_NEAR(list[2].SecondX, 5.0 - std::sqrt(50.0), 1e-12);
    EXPECT_TRUE(qtest::untouched(list[4]));

    // A count of 0 steps past the end at once: one pair.
    qtest::fill_sentinel(list);
    ASSERT_EQ(LIB_CalCircle(pts, &radius, centre, list, 0, 1), 0);
    EXPECT_BITS(list[0].FirstY, -6369995.0);
    EXPECT_TRUE(qtest::untouched(list[1]));
}

TEST(Circle, EndlessListsAreRefused)
{
    // A negative count steps away from the end; far out east a fine step is
    // lost in rounding. Neither lists a pair; the circle itself stands.
    const double Y0 = 1e15;
    const SurveyPoint near[3] = {{0.0, 0.0, 0.0}, {0.0, 10.0, 0.0}, {10.0, 0.0, 0.0}};
    const SurveyPoint far[3] = {{0.0, Y0, 0.0}, {0.0, Y0 + 16.0, 0.0}, {10.0, Y0, 0.0}};
    const struct {
        const SurveyPoint* pts;
        int32_t count;
    } cases[] = {{near, -1}, {near, INT32_MIN}, {far, INT32_MAX}};
    for (const auto& c : cases) {
        double radius = qtest::sentinel_double();
        double centre[2];
        qtest::fill_sentinel(centre);
        CirclePointPair list[2];
        qtest::fill_sentinel(list);
        EXPECT_EQ(LIB_CalCircle(c.pts, &radius, centre, list, c.count, 1), 1) << c.count;
        EXPECT_FALSE(qtest::untouched(radius) || qtest::untouched(centre));
        EXPECT_TRUE(qtest::untouched(list));
    }
}

TEST(Circle, ListThatWouldOverrunItsRoomIsRefused)
{
    // Nearly on one line: the centre lies 4e16 m out, where doubles are 8 m
    // apart and a step of 1274 m is rounded short. 10000 steps would list
    // 10016 pairs; the caller made room for 10001.
    const SurveyPoint pts[3] = {{0.0, 0.0, 0.0}, {1e8, 1e8, 0.0}, {-1e8, -1e8 + 0.5, 0.0}};
    double radius = qtest::sentinel_double();
    double centre[2];
    qtest::fill_sentinel(centre);
    std::vector<CirclePointPair> list(10020, qtest::sentinel_filled<CirclePointPair>());
    EXPECT_EQ(LIB_CalCircle(pts, &radius, centre, list.data(), 10000, 1), 1);
    EXPECT_GT(centre[1], 3.6e16); // written: about 4e16
    for (const CirclePointPair& pair : list) {
        ASSERT_TRUE(qtest::untouched(pair));
    }
    // 1000 steps of 12740 m reach the end with the 1001st pair: listed.
    EXPECT_EQ(LIB_CalCircle(pts, &radius, centre, list.data(), 1000, 1), 0);
    EXPECT_FALSE(qtest::untouched(list[1000]));
    EXPECT_TRUE(qtest::untouched(list[1001]));
}
