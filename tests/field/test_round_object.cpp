// Centre of a round object from its edges and a distance on its face.
#include "bits.hpp"
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
    const double runs[3][3] = {{half, 0.0, 1}, {1296000.0 - half, r, 1}, {half, r, -1}};
    for (const auto& run : runs) {
        const StationRecord s = qtest::station(1000, 500, 20, 1, run[2] > 0 ? 1 : -1, 1.5, 1.25);
        const AngleObservation obs[3] = {{run[0], 0, 0}, {1296000.0 - run[0], 0, 0}, {d, 0, 0}};
        const DistanceRecord measured = qtest::shot(0.0, face - run[1], 3.0);
        DistAngleRecord out{};
        double computed = 0.0;
        ASSERT_EQ(LIB_OS_Round(&s, &measured, obs, run[1], &out, &computed), 0);
        EXPECT_TRUE(std::fabs(out.X - 1030) < 1e-5 && std::fabs(out.Y - 500) < 1e-5);
        EXPECT_TRUE(std::fabs(out.HorizontalDistance - D) < 1e-5 && std::fabs(computed - r) < 1e-5);
        EXPECT_BITS(out.H, 3.0 + 1.5 + 20.0 - 1.25);
        EXPECT_TRUE(run[2] > 0 || out.Azimuth == 648000.0);
    }
    // First edge, sight, distance, radius, status: on the bisector, coincident
    // edges, outside them, out of range; a centre on the station writes distances.
    const double cases[][5] = {{100, 200, 50, 0.5, 2},
                               {300, 250, 50, 0.5, 2},
                               {100, 900, 50, 0.5, 2},
                               {100, 250, 3e9, 0.5, 2},
                               {100, 250, 1, -1, 3}};
    const StationRecord st = qtest::station(10.0, 20.0, 30.0);
    for (const auto& c : cases) {
        const AngleObservation obs[3] = {{c[0], 0, 0}, {300, 0, 0}, {c[1], 0, 0}};
        const DistanceRecord measured = qtest::shot(0.0, c[2], 2.0);
        DistAngleRecord out = qtest::sentinel_filled<DistAngleRecord>();
        double computed = qtest::sentinel_double();
        EXPECT_EQ(LIB_OS_Round(&st, &measured, obs, c[3], &out, &computed), c[4]);
        EXPECT_TRUE(qtest::untouched(computed) && qtest::untouched(out.X));
        EXPECT_EQ(qtest::untouched(out.HeightDifference), c[4] == 2);
    }
}
