// Forward intersection by angles and by distances, crossing of two lines.
#include "bits.hpp"
#include "quillon.h"

#include <cmath>

namespace {

FrontMeetInput known_pair(SurveyPoint a, SurveyPoint b)
{
    FrontMeetInput in{};
    in.A.Point = a;
    in.B.Point = b;
    return in;
}

double azimuth(const SurveyPoint& from, const SurveyPoint& to)
{
    double az = 0.0;
    EXPECT_EQ(LIB_CalAZ(&from, &to, &az), 0);
    return az;
}

} // namespace

TEST(FrontMeet, RaysAndDistancesTowardATargetMeetThere)
{
    const SurveyPoint A{1000.0, 2000.0, 50.0};
    const SurveyPoint B{1100.0, 2300.0, 60.0};
    // Left and right of A->B. By distances the right one comes back mirrored
    // in A-B, on the left.
    const SurveyPoint targets[2][2] = {{{1300.0, 2050.0, 0.0}, {1300.0, 2050.0, 0.0}},
                                       {{900.0, 2450.0, 0.0}, {1350.0, 2300.0, 0.0}}};
    for (const auto& t : targets) {
        const SurveyPoint& T = t[0];
        FrontMeetInput in = known_pair(A, B);
        in.A.Direction = azimuth(A, T);
        in.B.Direction = azimuth(B, T);
        in.A.Distance = std::hypot(T.X - A.X, T.Y - A.Y);
        in.B.Distance = std::hypot(T.X - B.X, T.Y - B.Y);
        SurveyPoint by_angles = qtest::sentinel_filled<SurveyPoint>();
        SurveyPoint by_distances = qtest::sentinel_filled<SurveyPoint>();
        ASSERT_EQ(LIB_CalFrontMeet(&in, &by_angles, 0), 0);
        ASSERT_EQ(LIB_CalFrontMeet(&in, &by_distances, 1), 0);
        // The half circle added at B is 3.1415926 rad, not pi: about 0.1 mm
        // at these distances.
        EXPECT_NEAR(by_angles.X, T.X, 1e-4);
        EXPECT_NEAR(by_angles.Y, T.Y, 1e-4);
        EXPECT_NEAR(by_distances.X, t[1].X, 1e-7);
        EXPECT_NEAR(by_distances.Y, t[1].Y, 1e-7);
        EXPECT_BITS(by_angles.H, 0.0);
        EXPECT_BITS(by_distances.H, 0.0);
    }
}

TEST(FrontMeet, DistanceModeTakesTheLeftSolution)
{
    struct Case {
        double bx, dA, dB;
        int status;
        double x, y;
    };
    const Case cases[] = {
        {6.0, 5.0, 5.0, 0, 3.0, -4.0}, // west of a line running north
        {10.0, 4.0, 6.0, 0, 4.0, 0.0}, // circles touching on the line
        {10.0, 4.0, 5.9, 1, 0.0, 0.0}, // circles apart
        {0.0, 4.0, 4.0, 1, 0.0, 0.0},  // known points coincide
    };
    for (const Case& c : cases) {
        FrontMeetInput in = known_pair({0.0, 0.0, 7.0}, {c.bx, 0.0, 7.0});
        in.A.Distance = c.dA;
        in.B.Distance = c.dB;
        SurveyPoint out = qtest::sentinel_filled<SurveyPoint>();
        ASSERT_EQ(LIB_CalFrontMeet(&in, &out, 1), c.status) << c.bx << " " << c.dB;
        if (c.status != 0) {
            EXPECT_TRUE(qtest::untouched(out));
            continue;
        }
        EXPECT_BITS(out.X, c.x);
        EXPECT_BITS(out.Y, c.y);
        EXPECT_BITS(out.H, 0.0);
    }
}

TEST(FrontMeet, AngleModeRefusals)
{
    // B due north of A: the azimuth A->B is exactly 0.
    struct Case {
        double dirA, dirB;
        int status;
    };
    const Case cases[] = {
        {-324000.0, -100000.0, 1},    // a1 a right angle
        {972000.0, -100000.0, 1},     // a1 = -972000
        {-324000.0001, -100000.0, 0}, // a hair off the right angle
        {-100000.0, -324000.0, 1},    // a2 a right angle
        {-100000.0, -1620000.0, 1},   // a2 = -972000
        {0.0, -100000.0, 1},          // tangent at A is 0
        {-100000.0, -648000.0, 1},    // tangent at B is 0
        {-36000.0, -684000.0, 1},     // cotangents cancel
    };
    for (const Case& c : cases) {
        FrontMeetInput in = known_pair({0.0, 0.0, 0.0}, {100.0, 0.0, 0.0});
        in.A.Direction = c.dirA;
        in.B.Direction = c.dirB;
        SurveyPoint out = qtest::sentinel_filled<SurveyPoint>();
        EXPECT_EQ(LIB_CalFrontMeet(&in, &out, 0), c.status) << c.dirA << " " << c.dirB;
        EXPECT_EQ(qtest::untouched(out), c.status != 0);
    }
}

TEST(FrontMeet, RangeTestAppliesToWhatOutHolds)
{
    FrontMeetInput in = known_pair({99999999.0, 0.0, 0.0}, {100000005.0, 0.0, 0.0});
    in.A.Distance = 5.0;
    in.B.Distance = 5.0;
    SurveyPoint out = qtest::sentinel_filled<SurveyPoint>();
    EXPECT_EQ(LIB_CalFrontMeet(&in, &out, 1), 2);
    EXPECT_BITS(out.X, 100000002.0);
    EXPECT_BITS(out.Y, -4.0);

    // Another mode computes nothing and tests the caller's values.
    SurveyPoint held{1.0, 2.0, 3.0};
    EXPECT_EQ(LIB_CalFrontMeet(&in, &held, 2), 0);
    EXPECT_BITS(held.X, 1.0);
    held.Y = 1e9;
    EXPECT_EQ(LIB_CalFrontMeet(&in, &held, 2), 2);
}

TEST(LineCross, CrossingAndCarriedHeight)
{
    struct Case {
        SurveyPoint p3, p4;
        int status;
        SurveyPoint expected;
    };
    const Case cases[] = {
        {{5.0, -5.0, 99.0}, {5.0, 5.0, 99.0}, 0, {5.0, 0.0, 15.0}},
        {{20.0, -5.0, 99.0}, {20.0, 5.0, 99.0}, 0, {20.0, 0.0, 30.0}}, // beyond P2: t = -2
        {{-5.0, 3.0, 0.0}, {-5.0, 4.0, 0.0}, 0, {-5.0, 0.0, 5.0}},     // behind P1
        {{0.0, 5.0, 0.0}, {10.0, 5.0, 0.0}, 6, {}},                    // parallel
        {{3.0, 3.0, 0.0}, {3.0, 3.0, 1.0}, 6, {}},                     // P3 = P4 in plan
    };
    for (const Case& c : cases) {
        const LineCrossInput in{{0.0, 0.0, 10.0}, {10.0, 0.0, 20.0}, c.p3, c.p4};
        SurveyPoint out = qtest::sentinel_filled<SurveyPoint>();
        ASSERT_EQ(LIB_CalLineCrossPT(&in, &out), c.status) << c.p3.X;
        if (c.status != 0) {
            EXPECT_TRUE(qtest::untouched(out));
            continue;
        }
        EXPECT_BITS(out.X, c.expected.X);
        EXPECT_BITS(out.Y, c.expected.Y);
        EXPECT_BITS(out.H, c.expected.H);
    }
}
