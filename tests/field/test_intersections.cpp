// Forward intersection by angles and by distances, crossing of two lines.
#include "bits.hpp"
#include "records.hpp"

using qtest::same_double;

TEST(FrontMeet, TargetFoundAgainStatusesAndWhatIsWritten)
{
    // Rays and distances toward a target left of A->B meet there.
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
    // A at (ax, 0), B at (bx, 0) due north. ax, bx, directions, distances (none:
    // by angles), status, x, y (NaN: not pinned). Distances: the left solution,
    // touching, apart, coincident, out of range but written. Angles: a1 = -+324000
    // and a hair off, -972000, a2 likewise; tangents of 0; cotangents cancelling.
    const double N = qtest::NaN, far = 99999999, hair = -324000.0001;
    const double cases[][9] = {{0, 6, 0, 0, 5, 5, 0, 3, -4},
                               {0, 10, 0, 0, 4, 6, 0, 4, 0},
                               {0, 10, 0, 0, 4, 5.9, 1, N, N},
                               {0, 0, 0, 0, 4, 4, 1, N, N},
                               {far, 100000005, 0, 0, 5, 5, 2, 100000002, -4},
                               {0, 100, -324000, -1e5, 0, 0, 1, N, N},
                               {0, 100, hair, -1e5, 0, 0, 0, N, N},
                               {0, 100, 972000, -1e5, 0, 0, 1, N, N},
                               {0, 100, -1e5, -324000, 0, 0, 1, N, N},
                               {0, 100, -1e5, -1620000, 0, 0, 1, N, N},
                               {0, 100, 0, -1e5, 0, 0, 1, N, N},
                               {0, 100, -1e5, -648000, 0, 0, 1, N, N},
                               {0, 100, -36000, -684000, 0, 0, 1, N, N}};
    for (const auto& c : cases) {
        const FrontMeetInput in2{{{c[0], 0, 7}, c[2], c[4]}, {{c[1], 0, 7}, c[3], c[5]}};
        SurveyPoint out = qtest::sentinel_filled<SurveyPoint>();
        ASSERT_EQ(LIB_CalFrontMeet(&in2, &out, c[4] != 0 ? 1 : 0), c[6]) << c[2];
        EXPECT_EQ(qtest::untouched(out), c[6] == 1);
        EXPECT_TRUE(std::isnan(c[7]) || (out.X == c[7] && out.Y == c[8] && same_double(out.H, 0)));
    }
    // Another mode only tests the caller's values, inclusively.
    SurveyPoint held{1.0, qtest::LIMIT, 3.0};
    EXPECT_EQ(LIB_CalFrontMeet(&in, &held, 2), 0);
    EXPECT_BITS(held.X, 1.0);
    held.Y = qtest::ABOVE_LIMIT;
    EXPECT_EQ(LIB_CalFrontMeet(&in, &held, 2), 2);
}

TEST(LineCross, CrossingAndCarriedHeight)
{
    // Crossing the line north from (0, 0, 10) to (10, 0, 20): x3, y3, x4, y4,
    // status, x, h. Beyond P2 (t = -2), behind P1, parallel, a point in plan.
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
