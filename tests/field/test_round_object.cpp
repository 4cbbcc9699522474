// Centre of a round object from its edges and a distance on its face.
#include "bits.hpp"
#include "records.hpp"

#include <cmath>

TEST(RoundObject, SightedColumnIsFoundAgain)
{
    // A column of radius 2, its centre 30 m due north: the edges straddle the
    // zero of the circle, in either order. The third sighting 2 degrees right
    // of the centre line meets the face at D cos(d) - sqrt(r^2 - (D sin(d))^2);
    // the distance along it is the measured one plus the radius argument,
    // however split. On face II the azimuth is the bisector turned, exactly.
    const double rho = 648000.0 / 3.1415926, D = 30.0, r = 2.0, d = 7200.0;
    const double half = std::asin(r / D) * rho;
    const double face =
        D * std::cos(d / rho) - std::sqrt(r * r - std::pow(D * std::sin(d / rho), 2));
    const double runs[3][3] = {{half, 0.0, 1}, {1296000.0 - half, r, 1}, {half, r, -1}};
    for (const auto& run : runs) {
        const signed char sign_b = run[2] > 0 ? 1 : -1;
        const StationRecord st = qtest::station(1000.0, 500.0, 20.0, 1, sign_b, 1.5, 1.25);
        const AngleObservation obs[3] = {{run[0], 0, 0}, {1296000.0 - run[0], 0, 0}, {d, 0, 0}};
        const DistanceRecord measured = qtest::shot(0.0, face - run[1], 3.0);
        DistAngleRecord out{};
        double computed = 0.0;
        ASSERT_EQ(LIB_OS_Round(&st, &measured, obs, run[1], &out, &computed), 0);
        EXPECT_NEAR(out.X, 1030.0, 1e-5);
        EXPECT_NEAR(out.Y, 500.0, 1e-5);
        EXPECT_BITS(out.H, 3.0 + 1.5 + 20.0 - 1.25);
        EXPECT_NEAR(out.HorizontalDistance, D, 1e-5);
        EXPECT_NEAR(computed, r, 1e-5);
        if (sign_b < 0) {
            EXPECT_BITS(out.Azimuth, 648000.0);
        }
    }
}

TEST(RoundObject, Refusals)
{
    const struct {
        double edge0, edge1, sight, distance, radius;
        int status;
    } cases[] = {
        {100, 300, 200, 50, 0.5, 2},  // on the bisector: the divisor is 0
        {300, 300, 250, 50, 0.5, 2},  // coincident edges
        {100, 300, 900, 50, 0.5, 2},  // outside the edges
        {100, 300, 250, 3e9, 0.5, 2}, // centre out of range
        {100, 300, 250, 1, -1, 3},    // centre on the station
    };
    const StationRecord st = qtest::station(10.0, 20.0, 30.0);
    for (const auto& c : cases) {
        const AngleObservation obs[3] = {{c.edge0, 0, 0}, {c.edge1, 0, 0}, {c.sight, 0, 0}};
        const DistanceRecord measured = qtest::shot(0.0, c.distance, 2.0);
        DistAngleRecord out = qtest::sentinel_filled<DistAngleRecord>();
        double computed = qtest::sentinel_double();
        EXPECT_EQ(LIB_OS_Round(&st, &measured, obs, c.radius, &out, &computed), c.status);
        EXPECT_TRUE(qtest::untouched(computed) && qtest::untouched(out.X));
        // The sight to a centre plumb under the instrument still writes its
        // distances and height difference.
        EXPECT_EQ(qtest::untouched(out.HeightDifference), c.status == 2);
    }
}
