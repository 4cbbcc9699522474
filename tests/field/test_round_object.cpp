// Centre of a round object from its edges and a distance on its face.
#include "bits.hpp"
#include "quillon.h"

#include <cmath>

namespace {

const double SEC_PER_RAD = 648000.0 / 3.1415926;

StationRecord station_at(double x, double y, double h, signed char a, signed char b)
{
    StationRecord s{};
    s.X = x;
    s.Y = y;
    s.H = h;
    s.InstrumentHeight = 1.5;
    s.TargetHeight = 1.25;
    s.signA = a;
    s.signB = b;
    return s;
}

} // namespace

TEST(RoundObject, SightedColumnIsFoundAgain)
{
    // A column of radius 2 whose centre lies 30 m from the station at 40
    // degrees. The third sighting is 2 degrees right of the centre line; it
    // meets the face at d_face = D cos(delta) - sqrt(r^2 - (D sin(delta))^2).
    const double D = 30.0;
    const double r = 2.0;
    const double delta = 2.0 / 180.0 * 3.1415926;
    const double centre_az = 40.0 * 3600.0;
    const double half = std::asin(r / D) * SEC_PER_RAD;
    const double d_face =
        D * std::cos(delta) - std::sqrt(r * r - (D * std::sin(delta)) * (D * std::sin(delta)));
    const StationRecord st = station_at(1000.0, 500.0, 20.0, 1, 1);
    const double cx = 1000.0 + D * std::cos(centre_az / SEC_PER_RAD);
    const double cy = 500.0 + D * std::sin(centre_az / SEC_PER_RAD);

    // The distance along the third sighting is the measured one plus radius.
    // The half circle of the sine rule is 3.1415926 rad, not pi: the centre
    // agrees to some micrometres.
    const double split[][2] = {{d_face, 0.0}, {d_face - r, r}};
    for (const auto& s : split) {
        AngleObservation obs[3] = {};
        obs[0].Horizontal = centre_az - half; // left edge first
        obs[1].Horizontal = centre_az + half;
        obs[2].Horizontal = centre_az + 7200.0;
        const DistanceRecord measured{0.0, s[0], 3.0, 0.0};
        DistAngleRecord out = qtest::sentinel_filled<DistAngleRecord>();
        double computed = 0.0;
        ASSERT_EQ(LIB_OS_Round(&st, &measured, obs, s[1], &out, &computed), 0);
        EXPECT_NEAR(out.X, cx, 1e-5);
        EXPECT_NEAR(out.Y, cy, 1e-5);
        EXPECT_NEAR(out.H, 3.0 + 1.5 + 20.0 - 1.25, 1e-12);
        EXPECT_NEAR(out.HorizontalDistance, D, 1e-5);
        EXPECT_NEAR(computed, r, 1e-5);
    }
}

TEST(RoundObject, EdgesAcrossZeroAndTurnedAzimuth)
{
    // Edges 10" and 1295990": the right edge is 10", the bisector 0. On the
    // other face the azimuth is the bisector turned, exactly 648000.
    const StationRecord st = station_at(0.0, 0.0, 0.0, 1, -1);
    const DistanceRecord measured{0.0, 100.0, 0.0, 0.0};
    const double edges[][2] = {{10.0, 1295990.0}, {1295990.0, 10.0}};
    for (const auto& e : edges) {
        AngleObservation obs[3] = {};
        obs[0].Horizontal = e[0];
        obs[1].Horizontal = e[1];
        obs[2].Horizontal = 5.0;
        DistAngleRecord out = qtest::sentinel_filled<DistAngleRecord>();
        double computed = 0.0;
        ASSERT_EQ(LIB_OS_Round(&st, &measured, obs, 0.0, &out, &computed), 0);
        EXPECT_BITS(out.Azimuth, 648000.0);
        EXPECT_GT(out.X, 100.0);
        EXPECT_NEAR(out.Y, 0.0, 1e-9);
    }
}

TEST(RoundObject, Refusals)
{
    struct Case {
        double edge0, edge1, sight, distance, radius;
        int status;
    };
    const Case cases[] = {
        {100.0, 300.0, 200.0, 50.0, 0.5, 2}, // on the bisector: the divisor is 0
        {300.0, 300.0, 250.0, 50.0, 0.5, 2}, // coincident edges
        {100.0, 300.0, 900.0, 50.0, 0.5, 2}, // outside the edges
        {100.0, 300.0, 250.0, 3e9, 0.5, 2},  // centre out of range
        {100.0, 300.0, 250.0, 1.0, -1.0, 3}, // centre on the station
    };
    const StationRecord st = station_at(10.0, 20.0, 30.0, 1, 1);
    for (const Case& c : cases) {
        AngleObservation obs[3] = {};
        obs[0].Horizontal = c.edge0;
        obs[1].Horizontal = c.edge1;
        obs[2].Horizontal = c.sight;
        const DistanceRecord measured{0.0, c.distance, 2.0, 0.0};
        DistAngleRecord out = qtest::sentinel_filled<DistAngleRecord>();
        double computed = qtest::sentinel_double();
        EXPECT_EQ(LIB_OS_Round(&st, &measured, obs, c.radius, &out, &computed), c.status)
            << c.sight;
        EXPECT_TRUE(qtest::untouched(computed));
        EXPECT_TRUE(qtest::untouched(out.X) && qtest::untouched(out.Y) && qtest::untouched(out.H));
        // A centre plumb under the instrument still gets its height difference.
        EXPECT_EQ(qtest::untouched(out.HeightDifference), c.status == 2);
    }
}
