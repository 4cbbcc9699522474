// Forward intersection by angles and by distances, crossing of two lines.
#include "bits.hpp"
#include "records.hpp"

#include <cmath>

TEST(FrontMeet, RaysAndDistancesTowardATargetMeetThere)
{
    // Left of A->B, the side the distance mode takes; by angles within 0.1 mm.
    const SurveyPoint T{1300.0, 2050.0, 0.0};
    FrontMeetInput in{{{1000.0, 2000.0, 50.0}, 0.0, 0.0}, {{1100.0, 2300.0, 60.0}, 0.0, 0.0}};
    ASSERT_EQ(LIB_CalAZ(&in.A.Point, &T, &in.A.Direction), 0);
    ASSERT_EQ(LIB_CalAZ(&in.B.Point, &T, &in.B.Direction), 0);
    in.A.Distance = std::hypot(300.0, 50.0);
    in.B.Distance = std::hypot(200.0, 250.0);
    for (unsigned char mode : {0, 1}) {
        SurveyPoint out = qtest::sentinel_filled<SurveyPoint>();
        ASSERT_EQ(LIB_CalFrontMeet(&in, &out, mode), 0);
        EXPECT_NEAR(out.X, T.X, 1e-4);
        EXPECT_NEAR(out.Y, T.Y, 1e-4);
        EXPECT_BITS(out.H, 0.0);
    }
}

TEST(FrontMeet, StatusesAndWhatIsWritten)
{
    // A at (ax, 0), B at (bx, 0): B due north, the azimuth A->B exactly 0.
    const double N = qtest::NaN; // not pinned
    struct Case {
        double ax, bx, dirA, dirB, dA, dB;
        unsigned char mode;
        int status;
        double x, y;
    } const cases[] = {
        {0, 6, 0, 0, 5, 5, 1, 0, 3, -4},                        // left of a line running north
        {0, 10, 0, 0, 4, 6, 1, 0, 4, 0},                        // circles touching on the line
        {0, 10, 0, 0, 4, 5.9, 1, 1, N, N},                      // circles apart
        {0, 0, 0, 0, 4, 4, 1, 1, N, N},                         // known points coincide
        {99999999, 100000005, 0, 0, 5, 5, 1, 2, 100000002, -4}, // out of range, written
        {0, 100, -324000, -1e5, 0, 0, 0, 1, N, N},              // a1 a right angle
        {0, 100, -324000.0001, -1e5, 0, 0, 0, 0, N, N},         // a hair off it
        {0, 100, 972000, -1e5, 0, 0, 0, 1, N, N},               // a1 = -972000
        {0, 100, -1e5, -324000, 0, 0, 0, 1, N, N},              // a2 a right angle
        {0, 100, -1e5, -1620000, 0, 0, 0, 1, N, N},             // a2 = -972000
        {0, 100, 0, -1e5, 0, 0, 0, 1, N, N},                    // tangent at A is 0
        {0, 100, -1e5, -648000, 0, 0, 0, 1, N, N},              // tangent at B is 0
        {0, 100, -36000, -684000, 0, 0, 0, 1, N, N},            // cotangents cancel
    };
    for (const Case& c : cases) {
        const FrontMeetInput in{{{c.ax, 0, 7}, c.dirA, c.dA}, {{c.bx, 0, 7}, c.dirB, c.dB}};
        SurveyPoint out = qtest::sentinel_filled<SurveyPoint>();
        ASSERT_EQ(LIB_CalFrontMeet(&in, &out, c.mode), c.status) << c.bx << " " << c.dirA;
        EXPECT_EQ(qtest::untouched(out), c.status == 1);
        if (!std::isnan(c.x)) {
            EXPECT_BITS(out.X, c.x);
            EXPECT_BITS(out.Y, c.y);
            EXPECT_BITS(out.H, 0.0);
        }
    }
    // Another mode computes nothing and tests the caller's values.
    const FrontMeetInput any{{{0, 0, 0}, 0, 0}, {{1, 0, 0}, 0, 0}};
    SurveyPoint held{1.0, qtest::LIMIT, 3.0}; // the limit itself passes
    EXPECT_EQ(LIB_CalFrontMeet(&any, &held, 2), 0);
    EXPECT_BITS(held.X, 1.0);
    held.Y = qtest::ABOVE_LIMIT;
    EXPECT_EQ(LIB_CalFrontMeet(&any, &held, 2), 2);
}

TEST(LineCross, CrossingAndCarriedHeight)
{
    // The first line runs north from (0, 0, 10) to (10, 0, 20).
    const struct {
        SurveyPoint p3, p4;
        int status;
        double x, h;
    } cases[] = {
        {{20, -5, 99}, {20, 5, 99}, 0, 20, 30}, // beyond P2: t = -2, height extrapolated
        {{-5, 3, 0}, {-5, 4, 0}, 0, -5, 5},     // behind P1: t = 0.5
        {{0, 5, 0}, {10, 5, 0}, 6, 0, 0},       // parallel
        {{3, 3, 0}, {3, 3, 1}, 6, 0, 0},        // P3 = P4 in plan
    };
    for (const auto& c : cases) {
        const LineCrossInput in{{0, 0, 10}, {10, 0, 20}, c.p3, c.p4};
        SurveyPoint out = qtest::sentinel_filled<SurveyPoint>();
        ASSERT_EQ(LIB_CalLineCrossPT(&in, &out), c.status) << c.p3.X;
        EXPECT_EQ(qtest::untouched(out), c.status != 0);
        if (c.status == 0) {
            EXPECT_BITS(out.X, c.x);
            EXPECT_BITS(out.Y, 0.0);
            EXPECT_BITS(out.H, c.h);
        }
    }
}
