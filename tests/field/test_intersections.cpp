// Forward intersection by angles and by distances, crossing of two lines.
#include "bits.hpp"
#include "records.hpp"

#include <cmath>

using qtest::same_double;

TEST(FrontMeet, TargetFoundAgainStatusesAndWhatIsWritten)
{
    // Rays and distances from two known points toward a target left of A->B
    // (the side the distance mode takes) meet there; by angles within 0.1 mm.
    const SurveyPoint T{1300.0, 2050.0, 0.0};
    FrontMeetInput in{{{1000.0, 2000.0, 50.0}, 0.0, std::hypot(300.0, 50.0)},
                      {{1100.0, 2300.0, 60.0}, 0.0, std::hypot(200.0, 250.0)}};
    ASSERT_EQ(LIB_CalAZ(&in.A.Point, &T, &in.A.Direction), 0);
    ASSERT_EQ(LIB_CalAZ(&in.B.Point, &T, &in.B.Direction), 0);
    for (unsigned char mode : {0, 1}) {
        SurveyPoint out = qtest::sentinel_filled<SurveyPoint>();
        ASSERT_EQ(LIB_CalFrontMeet(&in, &out, mode), 0);
        EXPECT_TRUE(std::hypot(out.X - T.X, out.Y - T.Y) < 1e-4 && same_double(out.H, 0.0));
    }
    // A at (ax, 0), B at (bx, 0) due north. ax, bx, directions, distances
    // (none: by angles), status, x, y (NaN: not pinned). Distances: the left
    // solution, circles touching, apart, coincident points, out of range but
    // written. Angles: a1 a right angle, a hair off it, -972000; a2 a right
    // angle, -972000; a tangent of 0 at A, at B; cotangents that cancel.
    const double N = qtest::NaN;
    const double cases[][9] = {{0, 6, 0, 0, 5, 5, 0, 3, -4},
                               {0, 10, 0, 0, 4, 6, 0, 4, 0},
                               {0, 10, 0, 0, 4, 5.9, 1, N, N},
                               {0, 0, 0, 0, 4, 4, 1, N, N},
                               {99999999, 100000005, 0, 0, 5, 5, 2, 100000002, -4},
                               {0, 100, -324000, -1e5, 0, 0, 1, N},
                               {0, 100, -324000.0001, -1e5, 0, 0, 0, N},
                               {0, 100, 972000, -1e5, 0, 0, 1, N},
                               {0, 100, -1e5, -324000, 0, 0, 1, N},
                               {0, 100, -1e5, -1620000, 0, 0, 1, N},
                               {0, 100, 0, -1e5, 0, 0, 1, N},
                               {0, 100, -1e5, -648000, 0, 0, 1, N},
                               {0, 100, -36000, -684000, 0, 0, 1, N}};
    for (const auto& c : cases) {
        const FrontMeetInput in2{{{c[0], 0, 7}, c[2], c[4]}, {{c[1], 0, 7}, c[3], c[5]}};
        SurveyPoint out = qtest::sentinel_filled<SurveyPoint>();
        ASSERT_EQ(LIB_CalFrontMeet(&in2, &out, c[4] != 0 ? 1 : 0), c[6]) << c[2];
        EXPECT_EQ(qtest::untouched(out), c[6] == 1);
        EXPECT_TRUE(std::isnan(c[7]) || (out.X == c[7] && out.Y == c[8] && same_double(out.H, 0)));
    }
    // Another mode computes nothing and tests the caller's values inclusively.
    SurveyPoint held{1.0, qtest::LIMIT, 3.0};
    EXPECT_EQ(LIB_CalFrontMeet(&in, &held, 2), 0);
    EXPECT_BITS(held.X, 1.0);
    held.Y = qtest::ABOVE_LIMIT;
    EXPECT_EQ(LIB_CalFrontMeet(&in, &held, 2), 2);
}

TEST(LineCross, CrossingAndCarriedHeight)
{
    // The first line runs north from (0, 0, 10) to (10, 0, 20). The second
    // (x3, y3, x4, y4, status, x, h) crosses it beyond P2 (t = -2, height
    // extrapolated), behind P1 (t = 0.5), runs parallel, or is a point in plan.
    const double cases[][7] = {
        {20, -5, 20, 5, 0, 20, 30}, {-5, 3, -5, 4, 0, -5, 5}, {0, 5, 10, 5, 6}, {3, 3, 3, 3, 6}};
    for (const auto& c : cases) {
        const LineCrossInput in{{0, 0, 10}, {10, 0, 20}, {c[0], c[1], 99}, {c[2], c[3], 1}};
        SurveyPoint out = qtest::sentinel_filled<SurveyPoint>();
        ASSERT_EQ(LIB_CalLineCrossPT(&in, &out), c[4]);
        EXPECT_EQ(qtest::untouched(out), c[4] != 0);
        EXPECT_TRUE(c[4] != 0 || (out.X == c[5] && same_double(out.Y, 0.0) && out.H == c[6]));
    }
}
