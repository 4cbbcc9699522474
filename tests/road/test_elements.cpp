// Straights, arcs and clothoid transition curves evaluated one element at a
// time.
#include "road_support.hpp"

#include <cstdio>
#include <limits>

using namespace roadtest;

namespace {

const double NaN = std::numeric_limits<double>::quiet_NaN();
const double LIMIT = 99999999.9999;
const double ABOVE_LIMIT = std::nextafter(LIMIT, 1e300);

} // namespace

TEST(LineOn, PointsAlongTheStraight)
{
    struct Case {
        double azimuth, l, x, y;
    };
    // North, east, south, west; east and west carry the pi of the conversion.
    const Case cases[] = {
        {0.0, 10.0, 110.0, 200.0},     {324000.0, 10.0, 100.0, 210.0},
        {648000.0, 10.0, 90.0, 200.0}, {972000.0, -10.0, 100.0, 210.0},
        {0.0, 0.0, 100.0, 200.0},
    };
    for (const Case& c : cases) {
        const HElement line = element(1, 100.0, 200.0, c.azimuth, 50.0, 0.0, 0, 0);
        PlanePoint p{};
        ASSERT_EQ(LIB_CalWay_H_Line_On(&line, c.l, &p), 0);
        // East and west are off by the 2.7e-8 rad of pi taken as 3.1415926.
        EXPECT_NEAR(p.X, c.x, 1e-6) << c.azimuth;
        EXPECT_NEAR(p.Y, c.y, 1e-6) << c.azimuth;
    }
}

TEST(LineOn, RangeIsInclusiveAndFailureLeavesTheOutput)
{
    struct Case {
        double x0, y0, azimuth, l;
        int status;
    };
    const Case cases[] = {
        {LIMIT, 0.0, 0.0, 0.0, 0}, {-LIMIT, -LIMIT, 0.0, 0.0, 0}, {ABOVE_LIMIT, 0.0, 0.0, 0.0, 2},
        {LIMIT, 0.0, 0.0, 1.0, 2}, {0.0, 0.0, 0.0, NaN, 2},       {0.0, -LIMIT, 972000.0, 1.0, 2},
    };
    for (const Case& c : cases) {
        const HElement line = element(1, c.x0, c.y0, c.azimuth, 50.0, 0.0, 0, 0);
        PlanePoint p = qtest::sentinel_filled<PlanePoint>();
        EXPECT_EQ(LIB_CalWay_H_Line_On(&line, c.l, &p), c.status) << c.x0 << " " << c.l;
        if (c.status != 0) {
            EXPECT_TRUE(qtest::untouched(p));
        }
    }
}

TEST(CircleOn, QuarterCircleRightAndLeft)
{
    // R = 100 from the origin heading north: a quarter circle ends 100 m
    // ahead and 100 m to the side.
    const double quarter = 50.0 * PI;
    HElement arc = element(2, 0.0, 0.0, 0.0, quarter, 100.0, 1, 0);
    PlanePoint p{};
    ASSERT_EQ(LIB_CalWay_H_Circle_On(&arc, quarter, &p), 0);
    EXPECT_NEAR(p.X, 100.0, 1e-11);
    EXPECT_NEAR(p.Y, 100.0, 1e-11);
    arc.Turn = 0;
    ASSERT_EQ(LIB_CalWay_H_Circle_On(&arc, quarter, &p), 0);
    EXPECT_NEAR(p.X, 100.0, 1e-11);
    EXPECT_NEAR(p.Y, -100.0, 1e-11);
    // Half way round the circle the point is a diameter away.
    arc.Turn = 1;
    ASSERT_EQ(LIB_CalWay_H_Circle_On(&arc, 2.0 * quarter, &p), 0);
    EXPECT_NEAR(p.X, 0.0, 1e-11);
    EXPECT_NEAR(p.Y, 200.0, 1e-11);
}

TEST(ElementFunctions, ZeroDistanceGivesTheReferencePoint)
{
    for (unsigned char turn = 0; turn < 2; ++turn) {
        for (unsigned char spiral = 0; spiral < 3; ++spiral) {
            const HElement e = element(3, 1234.5, -678.9, 456789.0, 80.0, 250.0, turn, spiral);
            PlanePoint p{};
            ASSERT_EQ(LIB_CalWay_H_Line_On(&e, 0.0, &p), 0);
            EXPECT_BITS(p.X, 1234.5);
            EXPECT_BITS(p.Y, -678.9);
            ASSERT_EQ(LIB_CalWay_H_Circle_On(&e, 0.0, &p), 0);
            EXPECT_BITS(p.X, 1234.5);
            EXPECT_BITS(p.Y, -678.9);
            ASSERT_EQ(LIB_CalWay_H_Curve_On(&e, 0.0, &p), 0);
            EXPECT_BITS(p.X, 1234.5);
            EXPECT_BITS(p.Y, -678.9);
        }
    }
}

TEST(Azimuths, AtZeroDistance)
{
    struct Case {
        unsigned char turn, spiral;
        double expected;
    };
    // An entry curve and an arc start on their own azimuth; an exit curve in
    // the end convention holds the backward azimuth and returns the forward.
    const Case cases[] = {
        {0, 0, 456789.0},
        {1, 0, 456789.0},
        {0, 1, 456789.0 + 648000.0},
        {1, 1, 456789.0 + 648000.0},
    };
    for (const Case& c : cases) {
        const HElement e = element(3, 0.0, 0.0, 456789.0, 80.0, 250.0, c.turn, c.spiral);
        double az = 0.0;
        ASSERT_EQ(LIB_CalWay_H_Curve_AZ(&e, 0.0, &az), 0);
        EXPECT_NEAR(az, c.expected, 1e-8);
        if (c.spiral == 0) {
            ASSERT_EQ(LIB_CalWay_H_Circle_AZ(&e, 0.0, &az), 0);
            EXPECT_NEAR(az, c.expected, 1e-8);
        }
    }
}

TEST(Azimuths, FoldsAndTheTwoCircleLimit)
{
    struct Case {
        const char* what;
        bool arc;
        double azimuth, l, radius, length;
        unsigned char turn, spiral;
        int status;
        double expected;
    };
    const double g1 = RHO; // one radian in arc-seconds
    const Case cases[] = {
        {"right arc past north", true, 1295000.0, 100.0, 100.0, 0.0, 1, 0, 0,
         1295000.0 + g1 - 1296000.0},
        {"left arc from north", true, 0.0, 1.0, 1000.0, 0.0, 0, 0, 0, 1296000.0 - g1 / 1000.0},
        {"right arc beyond two circles", true, 0.0, 20.0, 1.0, 0.0, 1, 0, 2, 0.0},
        {"left arc folded once, still negative", true, 0.0, 10.0, 1.0, 0.0, 0, 0, 2, 0.0},
        {"right arc in the second circle", true, 1300000.0, 10.0, 100.0, 0.0, 1, 0, 0,
         1300000.0 + g1 / 10.0 - 1296000.0},
        {"left arc from beyond a circle, no fold", true, 2000000.0, 10.0, 100.0, 0.0, 0, 0, 0,
         2000000.0 - g1 / 10.0},
        {"entry right past north", false, 1295000.0, 100.0, 100.0, 50.0, 1, 0, 0,
         1295000.0 + g1 - 1296000.0},
        {"entry left from north", false, 0.0, 10.0, 100.0, 50.0, 0, 0, 0, 1296000.0 - g1 / 100.0},
        // Exit curves, end convention: the backward azimuth turned back.
        {"exit right, negative sum folded up", false, -1000000.0, 0.0, 100.0, 50.0, 1, 1, 0,
         944000.0},
        {"exit left, negative sum refused", false, -1000000.0, 0.0, 100.0, 50.0, 0, 1, 2, 0.0},
        {"exit left, folded down", false, 1000000.0, 0.0, 100.0, 50.0, 0, 1, 0, 352000.0},
        {"exit right, folded down", false, 1000000.0, 0.0, 100.0, 50.0, 1, 1, 0, 352000.0},
    };
    for (const Case& c : cases) {
        const HElement e =
            element(c.arc ? 2 : 3, 0.0, 0.0, c.azimuth, c.length, c.radius, c.turn, c.spiral);
        double az = qtest::sentinel_double();
        const int status =
            c.arc ? LIB_CalWay_H_Circle_AZ(&e, c.l, &az) : LIB_CalWay_H_Curve_AZ(&e, c.l, &az);
        EXPECT_EQ(status, c.status) << c.what;
        if (c.status == 0) {
            EXPECT_NEAR(az, c.expected, 1e-6) << c.what;
        } else {
            EXPECT_TRUE(qtest::untouched(az)) << c.what;
        }
    }
}

TEST(ElementFunctions, UnknownTurnOrSpiralGivesNeutralResults)
{
    const HElement e = element(3, 10.0, 20.0, 324000.0, 100.0, 100.0, 2, 0);
    PlanePoint p = qtest::sentinel_filled<PlanePoint>();
    ASSERT_EQ(LIB_CalWay_H_Circle_On(&e, 30.0, &p), 0);
    EXPECT_BITS(p.X, 0.0);
    EXPECT_BITS(p.Y, 0.0);
    double az = qtest::sentinel_double();
    ASSERT_EQ(LIB_CalWay_H_Circle_AZ(&e, 30.0, &az), 0);
    EXPECT_BITS(az, 0.0);
    az = qtest::sentinel_double();
    ASSERT_EQ(LIB_CalWay_H_Curve_AZ(&e, 30.0, &az), 0);
    EXPECT_BITS(az, 0.0);
    TangentPoint t = qtest::sentinel_filled<TangentPoint>();
    ASSERT_EQ(LIB_CalWay_H_Curve_End(&e, &t), 0);
    EXPECT_BITS(t.X, 0.0);
    EXPECT_BITS(t.Y, 0.0);
    EXPECT_BITS(t.Azimuth, 0.0);

    // A transition curve with an unknown turn or kind is set out straight
    // along its azimuth at the chord's length, shorter than the curve.
    const Plane exact = integrate([](double u) { return u * u / 20000.0; }, 100.0);
    const double chord = std::hypot(exact.x, exact.y);
    const unsigned char codes[][2] = {{2, 0}, {2, 1}, {0, 2}, {1, 7}};
    for (const auto& code : codes) {
        HElement neutral = element(3, 10.0, 20.0, 0.0, 100.0, 100.0, code[0], code[1]);
        ASSERT_EQ(LIB_CalWay_H_Curve_On(&neutral, 100.0, &p), 0);
        EXPECT_NEAR(p.X, 10.0 + chord, 5e-4);
        EXPECT_BITS(p.Y, 20.0);
        neutral.Turn = 1;
        az = qtest::sentinel_double();
        if (code[1] > 1) {
            ASSERT_EQ(LIB_CalWay_H_Curve_AZ(&neutral, 100.0, &az), 0);
            EXPECT_BITS(az, 0.0);
        }
    }
}

// The series truncated after three terms against the clothoid integrated
// numerically; the error grows with the turn of the tangent L / (2 R).
TEST(Clothoid, SeriesAgainstIntegratedCurve)
{
    struct Case {
        double length, radius, tolerance;
    };
    const Case cases[] = {
        {60.0, 300.0, 1e-8},    // tangent turns 0.1 rad: 6.4e-9 m
        {100.0, 100.0, 2e-4},   // 0.5 rad: 0.17 mm
        {200.0, 100.0, 2.5e-2}, // 1 rad: 21 mm
        {300.0, 100.0, 0.4},    // 1.5 rad: 0.36 m
    };
    for (const Case& c : cases) {
        const double RL = 2.0 * c.radius * c.length;
        double worst = 0.0;
        for (int step = 1; step <= 4; ++step) {
            const double l = c.length * step / 4.0;
            const Plane exact = integrate([RL](double u) { return u * u / RL; }, l);
            for (unsigned char turn = 0; turn < 2; ++turn) {
                const HElement entry = element(3, 0.0, 0.0, 0.0, c.length, c.radius, turn, 0);
                PlanePoint p{};
                ASSERT_EQ(LIB_CalWay_H_Curve_On(&entry, l, &p), 0);
                const double side = turn == 1 ? exact.y : -exact.y;
                const double error = distance(p.X, p.Y, exact.x, side);
                worst = std::fmax(worst, error);
                EXPECT_LT(error, c.tolerance) << c.length << "/" << c.radius << " at " << l;
                double az = 0.0;
                ASSERT_EQ(LIB_CalWay_H_Curve_AZ(&entry, l, &az), 0);
                const double tangent = (l * l / RL) * RHO;
                EXPECT_NEAR(az, turn == 1 ? tangent : 1296000.0 - tangent, 1e-6);
            }
        }
        std::printf("clothoid L %.0f R %.0f: largest series error %.3g m\n", c.length, c.radius,
                    worst);
    }
}

TEST(CurveEnd, FarEndOfAnExitCurve)
{
    // Exit curve leaving an R = 250 arc, 80 m long, from a start heading
    // 300000": the curvature falls linearly to zero.
    const double a0 = 300000.0 / RHO;
    const double R = 250.0;
    const double L = 80.0;
    for (unsigned char turn = 0; turn < 2; ++turn) {
        const double sign = turn == 1 ? 1.0 : -1.0;
        const HElement exit = element(3, 1000.0, 2000.0, 300000.0, L, R, turn, 1);
        TangentPoint end = qtest::sentinel_filled<TangentPoint>();
        ASSERT_EQ(LIB_CalWay_H_Curve_End(&exit, &end), 0);
        const Plane run =
            integrate([=](double u) { return a0 + sign * (u / R - u * u / (2.0 * R * L)); }, L);
        // The half turn of 3.1415926 rad swings the 80 m chord by 4.3e-6 m.
        EXPECT_LT(distance(end.X, end.Y, 1000.0 + run.x, 2000.0 + run.y), 1e-5);
        EXPECT_NEAR(end.Azimuth, 300000.0 + sign * (L / (2.0 * R)) * RHO, 1e-7);

        // Evaluated backward from that far end, the curve leads to its start
        // with the start's azimuth.
        const HElement backward = element(3, end.X, end.Y, end.Azimuth + 648000.0, L, R, turn, 1);
        PlanePoint start{};
        ASSERT_EQ(LIB_CalWay_H_Curve_On(&backward, L, &start), 0);
        EXPECT_NEAR(start.X, 1000.0, 1e-9);
        EXPECT_NEAR(start.Y, 2000.0, 1e-9);
        double az = 0.0;
        ASSERT_EQ(LIB_CalWay_H_Curve_AZ(&backward, L, &az), 0);
        EXPECT_NEAR(az, 300000.0, 1e-7);
    }
}

TEST(CurveEnd, SpiralIsNotReadAndRangeFailureLeavesTheOutput)
{
    HElement exit = element(3, 0.0, 0.0, 100000.0, 60.0, 200.0, 1, 1);
    TangentPoint a{}, b{};
    ASSERT_EQ(LIB_CalWay_H_Curve_End(&exit, &a), 0);
    exit.Spiral = 0;
    ASSERT_EQ(LIB_CalWay_H_Curve_End(&exit, &b), 0);
    EXPECT_BITS(a.X, b.X);
    EXPECT_BITS(a.Y, b.Y);
    EXPECT_BITS(a.Azimuth, b.Azimuth);

    // Heading south from just inside the lower limit.
    const HElement south = element(3, -LIMIT + 1.0, 0.0, 648000.0, 60.0, 200.0, 0, 1);
    TangentPoint t = qtest::sentinel_filled<TangentPoint>();
    EXPECT_EQ(LIB_CalWay_H_Curve_End(&south, &t), 2);
    EXPECT_TRUE(qtest::untouched(t));
}

TEST(ElementFunctions, ZeroRadiusOrLengthFailsTheRangeTests)
{
    const HElement cases[] = {
        element(3, 0.0, 0.0, 0.0, 50.0, 0.0, 1, 0),
        element(3, 0.0, 0.0, 0.0, 0.0, 0.0, 0, 1),
    };
    for (const HElement& e : cases) {
        PlanePoint p = qtest::sentinel_filled<PlanePoint>();
        EXPECT_EQ(LIB_CalWay_H_Curve_On(&e, 10.0, &p), 2);
        EXPECT_TRUE(qtest::untouched(p));
        double az = qtest::sentinel_double();
        EXPECT_EQ(LIB_CalWay_H_Curve_AZ(&e, 10.0, &az), 2);
        EXPECT_TRUE(qtest::untouched(az));
        TangentPoint t = qtest::sentinel_filled<TangentPoint>();
        EXPECT_EQ(LIB_CalWay_H_Curve_End(&e, &t), 2);
        EXPECT_TRUE(qtest::untouched(t));
    }
    // A zero length divides by zero along the curve, but the far end of a
    // curve of no length is its start.
    const HElement empty = element(3, 5.0, 6.0, 0.0, 0.0, 100.0, 1, 1);
    PlanePoint q = qtest::sentinel_filled<PlanePoint>();
    EXPECT_EQ(LIB_CalWay_H_Curve_On(&empty, 10.0, &q), 2);
    EXPECT_TRUE(qtest::untouched(q));
    TangentPoint t{};
    EXPECT_EQ(LIB_CalWay_H_Curve_End(&empty, &t), 0);
    EXPECT_BITS(t.X, 5.0);
    EXPECT_BITS(t.Y, 6.0);

    const HElement arc = element(2, 0.0, 0.0, 0.0, 50.0, 0.0, 1, 0);
    PlanePoint p = qtest::sentinel_filled<PlanePoint>();
    EXPECT_EQ(LIB_CalWay_H_Circle_On(&arc, 10.0, &p), 2);
    EXPECT_TRUE(qtest::untouched(p));
    double az = qtest::sentinel_double();
    EXPECT_EQ(LIB_CalWay_H_Circle_AZ(&arc, 10.0, &az), 2);
    EXPECT_TRUE(qtest::untouched(az));
}
