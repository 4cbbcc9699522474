// Forward intersection by angles and by distances, crossing of two lines.
#include "check.hpp"
#include "records.hpp"

using qtest::Call;
using qtest::rows;

TEST(FrontMeet, TargetFoundAgainStatusesAndWhatIsWritten)
{
    // Rays and distances toward a target left of A->B meet there.
    const SurveyPoint T{1300.0, 2050.0, 0.0};
    FrontMeetInput in{{{1000.0, 2000.0, 50.0}, 0.0, std::hypot(300.0, 50.0)},
                      {{1100.0, 2300.0, 60.0}, 0.0, std::hypot(200.0, 250.0)}};
    ASSERT_STATUS(Call("LIB_CalAZ", "A to the target"), LIB_CalAZ(&in.A.Point, &T, &in.A.Direction),
                  0);
    ASSERT_STATUS(Call("LIB_CalAZ", "B to the target"), LIB_CalAZ(&in.B.Point, &T, &in.B.Direction),
                  0);
    for (unsigned char mode : {0, 1}) {
        const Call call("LIB_CalFrontMeet", mode == 0 ? "by angles" : "by distances");
        SurveyPoint out = qtest::sentinel_filled<SurveyPoint>();
        ASSERT_STATUS(call, LIB_CalFrontMeet(&in, &out, mode), 0);
        EXPECT_BELOW(call, std::hypot(out.X - T.X, out.Y - T.Y), 1e-4);
        EXPECT_BITS(call, out.H, 0.0);
    }
    // A at (ax, 0), B at (bx, 0) due north of it, both at H 7. Distances
    // (none: by angles): the left solution, touching, apart, coincident, out
    // of range but written. Angles: a1 = -+324000 and a hair off, -972000, a2
    // likewise; tangents of 0; cotangents cancelling.
    const double N = qtest::NaN, far = 99999999, hair = -324000.0001;
    const struct {
        double ax, bx, direction_a, direction_b, distance_a, distance_b;
        int status;
        double x, y; // NaN: not pinned
    } cases[] = {{0, 6, 0, 0, 5, 5, 0, 3, -4},
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
    for (const auto& [call, c] : rows("LIB_CalFrontMeet", cases)) {
        const FrontMeetInput known{{{c.ax, 0, 7}, c.direction_a, c.distance_a},
                                   {{c.bx, 0, 7}, c.direction_b, c.distance_b}};
        const unsigned char mode = c.distance_a != 0 ? 1 : 0;
        SurveyPoint out = qtest::sentinel_filled<SurveyPoint>();
        ASSERT_STATUS(call, LIB_CalFrontMeet(&known, &out, mode), c.status);
        EXPECT_WRITTEN_IF(call, out, c.status != 1);
        if (!std::isnan(c.x)) {
            EXPECT_BITS(call, out, (SurveyPoint{c.x, c.y, 0.0}));
        }
    }
    // Another mode only tests the caller's values, inclusively.
    const Call other("LIB_CalFrontMeet", "mode 2");
    SurveyPoint held{1.0, qtest::LIMIT, 3.0};
    EXPECT_STATUS(other, LIB_CalFrontMeet(&in, &held, 2), 0);
    EXPECT_BITS(other, held, (SurveyPoint{1.0, qtest::LIMIT, 3.0}));
    held.Y = qtest::ABOVE_LIMIT;
    EXPECT_STATUS(other, LIB_CalFrontMeet(&in, &held, 2), 2);
}

TEST(LineCross, CrossingAndCarriedHeight)
{
    // Crossing the line north from (0, 0, 10) to (10, 0, 20): beyond P2
    // (t = -2), behind P1, parallel, a point in plan.
    const struct {
        PlanePoint p3, p4;
        int status;
        double x, h;
    } cases[] = {{{20, -5}, {20, 5}, 0, 20, 30},
                 {{-5, 3}, {-5, 4}, 0, -5, 5},
                 {{0, 5}, {10, 5}, 6, 0, 0},
                 {{3, 3}, {3, 3}, 6, 0, 0}};
    for (const auto& [call, c] : rows("LIB_CalLineCrossPT", cases)) {
        const LineCrossInput in{{0, 0, 10}, {10, 0, 20}, {c.p3.X, c.p3.Y, 99}, {c.p4.X, c.p4.Y, 1}};
        SurveyPoint out = qtest::sentinel_filled<SurveyPoint>();
        ASSERT_STATUS(call, LIB_CalLineCrossPT(&in, &out), c.status);
        if (c.status != 0) {
            EXPECT_UNTOUCHED(call, out);
        } else {
            EXPECT_BITS(call, out, (SurveyPoint{c.x, 0.0, c.h}));
        }
    }
}
