// Straights, arcs and clothoid transition curves evaluated one at a time.
#include "road_support.hpp"

#include <cstdio>

using namespace roadtest;

TEST(ElementOn, ReferencePointRangeAndNeutralCodes)
{
    // type, turn, start X, l, radius, status, X; l = 0 gives the reference
    // point, an arc of unknown turn the origin.
    // clang-format off
    const Row<7> cases[] = {
        {1, 0, 100, 10, 0, 0, 110},        {1, 0, LIMIT, 0, 0, 0, LIMIT},
        {2, 1, 1234.5, 0, 250, 0, 1234.5}, {3, 1, 1234.5, 0, 250, 0, 1234.5},
        {1, 0, LIMIT, 1, 0, 2, 0},         {1, 0, 0, NaN, 0, 2, 0},
        {2, 1, 0, 10, 0, 2, 0},            {3, 1, 0, 10, 0, 2, 0}, // zero radius
        {2, 2, 100, 30, 100, 0, 0}};
    // clang-format on
    for (const auto& c : cases) {
        const HElement e = element(c[0], c[2], 0.0, 0.0, 50.0, c[4], c[1], 0);
        PlanePoint p = qtest::sentinel_filled<PlanePoint>();
        ASSERT_EQ(c[0] == 1   ? LIB_CalWay_H_Line_On(&e, c[3], &p)
                  : c[0] == 2 ? LIB_CalWay_H_Circle_On(&e, c[3], &p)
                              : LIB_CalWay_H_Curve_On(&e, c[3], &p),
                  c[5])
            << c[0] << " " << c[2] << " " << c[3];
        EXPECT_TRUE(c[5] != 0 ? qtest::untouched(p)
                              : qtest::same_double(p.X, c[6]) && qtest::same_double(p.Y, 0.0));
    }
    // A transition curve of unknown turn is set out straight along its
    // azimuth at the chord's length.
    const PlanePoint run = integrate([](double u) { return u * u / 20000.0; }, 100.0);
    const HElement odd = element(3, 10.0, 20.0, 0.0, 100.0, 100.0, 2, 0);
    PlanePoint p{};
    ASSERT_EQ(LIB_CalWay_H_Curve_On(&odd, 100.0, &p), 0);
    EXPECT_TRUE(std::fabs(p.X - 10.0 - std::hypot(run.X, run.Y)) < 2e-4 && p.Y == 20.0);
}

TEST(ElementAzimuth, FoldsAndTheTwoCircleLimit)
{
    // type, azimuth, l, radius, turn, spiral, status, azimuth out. An exit
    // curve's azimuth is turned forward; to the right a negative one is
    // folded up, to the left never. Unknown turn or spiral gives 0. Two full
    // circles (2592000" survives the trip through radians exactly) is refused.
    const double g = RHO; // one radian
    // clang-format off
    const Row<8> cases[] = {
        {3, 456789, 0, 100, 0, 0, 0, 456789},      {3, 456789, 0, 100, 0, 1, 0, 1104789},
        {2, 1295000, 100, 100, 1, 0, 0, g - 1000}, {3, 1295000, 100, 100, 1, 0, 0, g - 1000},
        {2, 0, 1, 1000, 0, 0, 0, 1296000 - g / 1000}, {2, 0, 20, 1, 1, 0, 2, 0},
        {2, 0, 10, 1, 0, 0, 2, 0},                 {2, 0, 10, 0, 1, 0, 2, 0},
        {3, -1000000, 0, 100, 1, 1, 0, 944000},    {3, -1000000, 0, 100, 0, 1, 2, 0},
        {3, 1000000, 0, 100, 0, 1, 0, 352000},     {2, 456789, 10, 100, 2, 0, 0, 0},
        {3, 456789, 10, 100, 1, 2, 0, 0},          {2, 2592000, 0, 100, 0, 0, 2, 0}};
    // clang-format on
    for (const auto& c : cases) {
        const HElement e = element(c[0], 0.0, 0.0, c[1], 50.0, c[3], c[4], c[5]);
        double az = qtest::sentinel_double();
        ASSERT_EQ(c[0] == 2 ? LIB_CalWay_H_Circle_AZ(&e, c[2], &az)
                            : LIB_CalWay_H_Curve_AZ(&e, c[2], &az),
                  c[6])
            << c[0] << " " << c[1] << " " << c[2];
        EXPECT_TRUE(c[6] != 0 ? qtest::untouched(az) : std::fabs(az - c[7]) < 1e-6) << c[1];
    }
}

// The series truncated after three terms against the clothoid integrated
// numerically: the error grows with the tangent's turn L / 2R. (Exit curves
// evaluated backward are checked along a whole alignment.)
TEST(Clothoid, SeriesAgainstIntegratedCurve)
{
    const Row<3> cases[] = {{60.0, 300.0, 1e-8}, {200.0, 100.0, 2.5e-2}}; // L, R, tolerance
    for (const auto& c : cases) {
        const double L = c[0], R = c[1];
        const PlanePoint run = integrate([=](double u) { return u * u / (2 * R * L); }, L);
        const HElement entry = element(3, 0.0, 0.0, 0.0, L, R, 1, 0);
        PlanePoint p{};
        double az = 0.0;
        ASSERT_EQ(LIB_CalWay_H_Curve_On(&entry, L, &p) + LIB_CalWay_H_Curve_AZ(&entry, L, &az), 0);
        const double error = gap(p.X, p.Y, run.X, run.Y);
        std::printf("clothoid L %.0f R %.0f: series error %.3g m\n", L, R, error);
        EXPECT_LT(error, c[2]);
        EXPECT_NEAR(az, L / (2 * R) * RHO, 1e-6); // the tangent turns by L / 2R
    }
    // An 80 m exit curve leaving an R = 250 arc heading 300000" (Spiral unread).
    const double a0 = 300000.0 / RHO, R = 250.0, L = 80.0;
    for (unsigned char turn = 0; turn < 2; ++turn) {
        const double side = turn == 1 ? 1.0 : -1.0;
        const HElement exit = element(3, 1000.0, 2000.0, 300000.0, L, R, turn, 2);
        TangentPoint end{};
        ASSERT_EQ(LIB_CalWay_H_Curve_End(&exit, &end), 0);
        const PlanePoint run =
            integrate([=](double u) { return a0 + side * (u / R - u * u / (2 * R * L)); }, L);
        EXPECT_LT(gap(end.X, end.Y, 1000.0 + run.X, 2000.0 + run.Y), 1e-5);
        EXPECT_NEAR(end.Azimuth, 300000.0 + side * L / (2 * R) * RHO, 1e-7);
    }
    // Unknown turn: three zeros. Beyond the range: nothing written.
    const HElement odd = element(3, 5.0, 6.0, 0.0, 60.0, 200.0, 2, 1),
                   south = element(3, -LIMIT + 1.0, 0.0, 648000.0, 60.0, 200.0, 0, 1);
    TangentPoint t = qtest::sentinel_filled<TangentPoint>(), u = t;
    EXPECT_EQ(LIB_CalWay_H_Curve_End(&odd, &t) * 10 + LIB_CalWay_H_Curve_End(&south, &u), 2);
    EXPECT_TRUE(t.X == 0.0 && t.Y == 0.0 && t.Azimuth == 0.0 && qtest::untouched(u));
}
