// Centre of a round object from its edges and a distance on its face.
#include "check.hpp"
#include "records.hpp"

TEST(RoundObject, SightedColumnIsFoundAgainAndRefusals)
{
    // A column of radius 2 centred 30 m north; edges straddling the zero in
    // either order; the sight 2 degrees right meets the face at D cos(d) -
    // sqrt(r^2 - (D sin(d))^2), split any way with the radius argument.
    const double rho = 648000.0 / 3.1415926, D = 30.0, r = 2.0, d = 7200.0;
    const double half = std::asin(r / D) * rho,
                 face =
                     D * std::cos(d / rho) - std::sqrt(r * r - std::pow(D * std::sin(d / rho), 2));
    const struct {
        double first_edge, radius;
        signed char face; // signB
    } runs[] = {{half, 0.0, 1}, {1296000.0 - half, r, 1}, {half, r, -1}};
    for (const auto& [call, run] : qtest::rows("LIB_OS_Round", runs)) {
        const StationRecord s = qtest::station(1000, 500, 20, 1, run.face, 1.5, 1.25);
        const AngleObservation obs[3] = {
            {run.first_edge, 0, 0}, {1296000.0 - run.first_edge, 0, 0}, {d, 0, 0}};
        const DistanceRecord measured = qtest::shot(0.0, face - run.radius, 3.0);
        DistAngleRecord out{};
        double computed = 0.0;
        ASSERT_STATUS(call, LIB_OS_Round(&s, &measured, obs, run.radius, &out, &computed), 0);
        EXPECT_WITHIN(call, out.X, 1030.0, 1e-5);
        EXPECT_WITHIN(call, out.Y, 500.0, 1e-5);
        EXPECT_WITHIN(call, out.HorizontalDistance, D, 1e-5);
        EXPECT_WITHIN(call, computed, r, 1e-5);
        EXPECT_BITS(call, out.H, 3.0 + 1.5 + 20.0 - 1.25);
        if (run.face < 0) {
            EXPECT_BITS(call, out.Azimuth, 648000.0);
        }
    }
    // On the bisector, coincident edges, outside them, out of range; a
    // centre on the station writes distances.
    const struct {
        double first_edge, sight, distance, radius;
        int status;
    } cases[] = {{100, 200, 50, 0.5, 2},
                 {300, 250, 50, 0.5, 2},
                 {100, 900, 50, 0.5, 2},
                 {100, 250, 3e9, 0.5, 2},
                 {100, 250, 1, -1, 3}};
    const StationRecord st = qtest::station(10.0, 20.0, 30.0);
    for (const auto& [call, c] : qtest::rows("LIB_OS_Round", cases)) {
        const AngleObservation obs[3] = {{c.first_edge, 0, 0}, {300, 0, 0}, {c.sight, 0, 0}};
        const DistanceRecord measured = qtest::shot(0.0, c.distance, 2.0);
        DistAngleRecord out = qtest::sentinel_filled<DistAngleRecord>();
        double computed = qtest::sentinel_double();
        EXPECT_STATUS(call, LIB_OS_Round(&st, &measured, obs, c.radius, &out, &computed), c.status);
        EXPECT_UNTOUCHED(call, computed);
        EXPECT_UNTOUCHED(call, out.X);
        EXPECT_WRITTEN_IF(call, out.HeightDifference, c.status != 2);
    }
}
