// Straights, arcs and clothoid transition curves evaluated one element at a
// time.
#include "road_support.hpp"

#include <cstdio>

using namespace roadtest;
using qtest::LIMIT;

TEST(ElementOn, ReferencePointRangeAndNeutralCodes)
{
    struct Case {
        unsigned char type, turn;
        double x0, l, radius;
        int status;
        double x;
    };
    const Case cases[] = {
        {1, 0, 100.0, 10.0, 0.0, 0, 110.0},    {1, 0, LIMIT, 0.0, 0.0, 0, LIMIT},
        {2, 1, 1234.5, 0.0, 250.0, 0, 1234.5}, // l = 0: the reference point
        {3, 1, 1234.5, 0.0, 250.0, 0, 1234.5}, {1, 0, LIMIT, 1.0, 0.0, 2, 0},
        {1, 0, 0.0, qtest::NaN, 0.0, 2, 0},    {2, 2, 100.0, 30.0, 100.0, 0, 0.0}, // the origin
        {2, 1, 0.0, 10.0, 0.0, 2, 0},          {3, 1, 0.0, 10.0, 0.0, 2, 0},       // zero radius
    };
    for (const Case& c : cases) {
        const HElement e = element(c.type, c.x0, 0.0, 0.0, 50.0, c.radius, c.turn, 0);
        PlanePoint p = qtest::sentinel_filled<PlanePoint>();
        const int status = c.type == 1   ? LIB_CalWay_H_Line_On(&e, c.l, &p)
                           : c.type == 2 ? LIB_CalWay_H_Circle_On(&e, c.l, &p)
                                         : LIB_CalWay_H_Curve_On(&e, c.l, &p);
        ASSERT_EQ(status, c.status) << int(c.type) << " " << c.x0 << " " << c.l;
        if (c.status == 0) {
            EXPECT_BITS(p.X, c.x);
            EXPECT_BITS(p.Y, 0.0);
        } else {
            EXPECT_TRUE(qtest::untouched(p));
        }
    }
    // A transition curve of unknown turn is set out straight along its
    // azimuth at the chord's length.
    const PlanePoint run = integrate([](double u) { return u * u / 20000.0; }, 100.0);
    const HElement odd = element(3, 10.0, 20.0, 0.0, 100.0, 100.0, 2, 0);
    PlanePoint p{};
    ASSERT_EQ(LIB_CalWay_H_Curve_On(&odd, 100.0, &p), 0);
    EXPECT_NEAR(p.X, 10.0 + std::hypot(run.X, run.Y), 2e-4);
    EXPECT_BITS(p.Y, 20.0);
}

TEST(ElementAzimuth, FoldsAndTheTwoCircleLimit)
{
    struct Case {
        unsigned char type;
        double azimuth, l, radius;
        unsigned char turn, spiral;
        int status;
        double expected;
    };
    const double g = RHO; // one radian
    const Case cases[] = {
        {3, 456789.0, 0.0, 100.0, 0, 0, 0, 456789.0},
        {3, 456789.0, 0.0, 100.0, 0, 1, 0, 1104789.0}, // backward turned forward
        {2, 1295000.0, 100.0, 100.0, 1, 0, 0, g - 1000.0},
        {2, 0.0, 1.0, 1000.0, 0, 0, 0, 1296000.0 - g / 1000.0},
        {2, 0.0, 20.0, 1.0, 1, 0, 2, 0}, // beyond two circles
        {2, 0.0, 10.0, 1.0, 0, 0, 2, 0}, // folded once, still negative
        {2, 0.0, 10.0, 0.0, 1, 0, 2, 0}, // zero radius
        {3, 1295000.0, 100.0, 100.0, 1, 0, 0, g - 1000.0},
        {3, -1000000.0, 0.0, 100.0, 1, 1, 0, 944000.0}, // exit right: folded up
        {3, -1000000.0, 0.0, 100.0, 0, 1, 2, 0},        // exit left: never
        {3, 1000000.0, 0.0, 100.0, 0, 1, 0, 352000.0},
        {2, 456789.0, 10.0, 100.0, 2, 0, 0, 0.0}, // unknown turn
        {3, 456789.0, 10.0, 100.0, 1, 2, 0, 0.0}, // unknown spiral
    };
    for (const Case& c : cases) {
        const HElement e = element(c.type, 0.0, 0.0, c.azimuth, 50.0, c.radius, c.turn, c.spiral);
        double az = qtest::sentinel_double();
        const int status = c.type == 2 ? LIB_CalWay_H_Circle_AZ(&e, c.l, &az)
                                       : LIB_CalWay_H_Curve_AZ(&e, c.l, &az);
        ASSERT_EQ(status, c.status) << int(c.type) << " " << c.azimuth << " " << c.l;
        if (c.status == 0) {
            EXPECT_NEAR(az, c.expected, 1e-6) << c.azimuth;
        } else {
            EXPECT_TRUE(qtest::untouched(az));
        }
    }
}

// The series truncated after three terms against the clothoid integrated
// numerically: the error grows with the tangent's turn L / 2R.
TEST(Clothoid, SeriesAgainstIntegratedCurve)
{
    const double cases[][3] = {{60.0, 300.0, 1e-8}, {200.0, 100.0, 2.5e-2}}; // L, R, tolerance
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
}

TEST(CurveEnd, FarEndFoundAgainBackward)
{
    // An 80 m exit curve leaving an R = 250 arc heading 300000".
    const double a0 = 300000.0 / RHO, R = 250.0, L = 80.0;
    for (unsigned char turn = 0; turn < 2; ++turn) {
        const double side = turn == 1 ? 1.0 : -1.0;
        const HElement exit = element(3, 1000.0, 2000.0, 300000.0, L, R, turn, 2); // Spiral unread
        TangentPoint end{};
        ASSERT_EQ(LIB_CalWay_H_Curve_End(&exit, &end), 0);
        const PlanePoint run =
            integrate([=](double u) { return a0 + side * (u / R - u * u / (2 * R * L)); }, L);
        EXPECT_LT(gap(end.X, end.Y, 1000.0 + run.X, 2000.0 + run.Y), 1e-5);
        EXPECT_NEAR(end.Azimuth, 300000.0 + side * L / (2 * R) * RHO, 1e-7);
        // Evaluated backward from the far end the curve leads to its start.
        const HElement back = element(3, end.X, end.Y, end.Azimuth + 648000.0, L, R, turn, 1);
        PlanePoint start{};
        double az = 0.0;
        ASSERT_EQ(LIB_CalWay_H_Curve_On(&back, L, &start) + LIB_CalWay_H_Curve_AZ(&back, L, &az),
                  0);
        EXPECT_LT(gap(start.X, start.Y, 1000.0, 2000.0), 1e-9);
        EXPECT_NEAR(az, 300000.0, 1e-7);
    }
    // Unknown turn: three zeros. Beyond the range: nothing written.
    TangentPoint t = qtest::sentinel_filled<TangentPoint>();
    const HElement odd = element(3, 5.0, 6.0, 0.0, 60.0, 200.0, 2, 1);
    ASSERT_EQ(LIB_CalWay_H_Curve_End(&odd, &t), 0);
    EXPECT_TRUE(t.X == 0.0 && t.Y == 0.0 && t.Azimuth == 0.0);
    const HElement south = element(3, -LIMIT + 1.0, 0.0, 648000.0, 60.0, 200.0, 0, 1);
    qtest::fill_sentinel(t);
    EXPECT_EQ(LIB_CalWay_H_Curve_End(&south, &t), 2);
    EXPECT_TRUE(qtest::untouched(t));
}
