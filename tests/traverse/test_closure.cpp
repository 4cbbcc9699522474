// Traverse closure in steps on a table of legs; adjustment of computed points.
#include "check.hpp"
#include "records.hpp"

#include <string>
#include <vector>

using qtest::Call;
using qtest::rows;

namespace {

using Legs = std::vector<TraverseLeg>;

// Increments and spares keep the sentinel: the closure never reads them.
const double S = qtest::sentinel_double();
TraverseLeg leg(double length, double fore, double back = 0.0, double height_diff = 0.0)
{
    return {length, height_diff, S, S, S, fore, back, S, S};
}

// ClosingRef -> End due north (azimuth 0); NO_DIRECTION's differ in height only.
const TraverseKnownPoints NORTH = {{0.0, 0.0, 10.0}, {0.0, 0.0, 0.0}, {1.0, 0.0, 0.0}};
const TraverseKnownPoints NO_DIRECTION = {{0.0, 0.0, 0.0}, {5.0, 5.0, 1.0}, {5.0, 5.0, 2.0}};

} // namespace

TEST(TraverseClosure, RefusedAndIgnoredCallsWriteNothing)
{
    // No legs first; unknown mode or step ignored; no closing azimuth.
    const struct {
        unsigned char n, step, mode;
        int status;
    } cases[] = {{0, 7, 9, 1}, {2, 0, 2, 0}, {2, 4, 0, 0}, {2, 1, 0, 1}};
    for (const auto& [call, c] : rows("LIB_TRSCalCoorErr", cases)) {
        Legs legs = {leg(100.0, 0.0, 10.0, 1.0), leg(50.0, 20.0, 30.0, 2.0)};
        const Legs before = legs;
        TraverseClosure result = qtest::sentinel_filled<TraverseClosure>();
        EXPECT_STATUS(call,
                      LIB_TRSCalCoorErr(legs.data(), c.n, &NO_DIRECTION, c.step, c.mode, &result),
                      c.status);
        EXPECT_UNTOUCHED(call, result);
        EXPECT_BITS(call.at("leg 0"), legs[0], before[0]);
        EXPECT_BITS(call.at("leg 1"), legs[1], before[1]);
    }
}

TEST(TraverseClosure, PlanAndHeightClosureInSinglePrecision)
{
    // 100.1 m due north against 100 m; the last leg, of no length, gives the end azimuth.
    Legs legs = {leg(60.0, 0.0, 0.0, 0.5), leg(40.1, 0.0), leg(0.0, 123456.5)};
    const TraverseKnownPoints known = {{0.0, 0.0, 0.0}, {0.0, 0.0, 0.0}, {100.0, 0.0, 0.25}};
    const Call call("LIB_TRSCalCoorErr", "step 0, 100.1 m against 100 m");
    TraverseClosure result = qtest::sentinel_filled<TraverseClosure>();
    ASSERT_STATUS(call, LIB_TRSCalCoorErr(legs.data(), 3, &known, 0, 0, &result), 0);
    EXPECT_BITS(call, result.Fx, 0.09999999999999432);
    EXPECT_BITS(call, result.Fh, 0.25);
    EXPECT_BITS(call, result.Misclosure, static_cast<double>(0.1f));
    EXPECT_BITS(call, result.Relative, 0.0009990009712055326); // nearest float to 0.1f / 100.1
    EXPECT_BITS(call, result.ComputedEndAzimuth, 123456.5);
    EXPECT_UNTOUCHED(call, result.AngularMisclosure);
    EXPECT_UNTOUCHED(call, legs[0].DeltaX);
}

TEST(TraverseClosure, LoopAngularMisclosureIsAddedToEveryDirection)
{
    // A square, angles fore minus back; the last, -971999, is turned to
    // 324001: one second over 1296000. The loop needs no closing azimuth.
    Legs legs = {leg(1.0, 324000.0), leg(1.0, 648000.0, 324000.0), leg(1.0, 972000.0, 648000.0),
                 leg(1.0, 1.0, 972000.0)};
    const Call square("LIB_TRSCalCoorErr", "step 1, a square loop");
    TraverseClosure result = qtest::sentinel_filled<TraverseClosure>();
    ASSERT_STATUS(square, LIB_TRSCalCoorErr(legs.data(), 4, &NO_DIRECTION, 1, 1, &result), 0);
    EXPECT_BITS(square, result.AngularMisclosure, 1.0);
    EXPECT_BITS(square, result.KnownEndAzimuth, 0.0);
    EXPECT_UNTOUCHED(square, result.Fx);
    for (int i = 0; i < 4; ++i) {
        EXPECT_BITS(square.at("leg " + std::to_string(i)), legs[i].ForeDirection,
                    (i < 3 ? 324000.0 * (i + 1) : 1.0) + 0.25);
    }
    const Call one_leg("LIB_TRSCalCoorErr", "step 1, a loop of one leg");
    Legs single = {leg(1.0, 1000.0, 500.0)}; // one leg, against (1 - 2) half circles
    ASSERT_STATUS(one_leg, LIB_TRSCalCoorErr(single.data(), 1, &NORTH, 1, 1, &result), 0);
    EXPECT_BITS(one_leg, single[0].ForeDirection, 649500.0);
}

TEST(TraverseClosure, ConnectingAnglesInWholeSeconds)
{
    // Closing azimuth 0: the carried azimuth is the misclosure, half added to each leg.
    const struct {
        double first_fore, second_back, second_fore, computed_azimuth;
    } cases[] = {
        {100.0, 10.9, 0.0, 648090.0},    // an angle of 10.9" counts as 10"
        {100.7, 10.0, 0.0, 648090.0},    // the carried azimuth is cut too
        {0.0, 648010.0, 0.0, -10.0},     // a negative azimuth stays negative
        {0.0, 0.0, 1296010.0, 648010.0}, // the angle's remainder keeps its sign: -10
        {-648000.5, 0.0, 0.0, 0.0},      // -0.5 cut to 0, not -0
    };
    for (const auto& [call, c] : rows("LIB_TRSCalCoorErr", cases)) {
        Legs legs = {leg(1.0, c.first_fore, 77.0), leg(1.0, c.second_fore, c.second_back)};
        TraverseClosure result = qtest::sentinel_filled<TraverseClosure>();
        ASSERT_STATUS(call, LIB_TRSCalCoorErr(legs.data(), 2, &NORTH, 1, 0, &result), 0);
        EXPECT_BITS(call, result.ComputedEndAzimuth, c.computed_azimuth);
        EXPECT_BITS(call, result.AngularMisclosure, c.computed_azimuth);
        EXPECT_BITS(call, legs[0].ForeDirection, c.first_fore + c.computed_azimuth / 2.0);
        EXPECT_BITS(call, legs[1].ForeDirection, c.second_fore + c.computed_azimuth / 2.0);
    }
}

TEST(TraverseClosure, DistributionUsesTheRecordAsItStands)
{
    // Legs of 128, 64, 64 m, increments 10, 20, 1; a record step 0 never filled.
    const TraverseLeg l = {64.0, 0.0, 10.0, 20.0, 1.0, 0.0, 0.0, S, S};
    Legs legs = {{128.0, 0.0, 10.0, 20.0, 1.0, 0.0, 0.0, S, S}, l, l};
    TraverseClosure closure = qtest::sentinel_filled<TraverseClosure>();
    closure.Fx = 0.5, closure.Fy = -0.25, closure.Fh = 0.125, closure.SumDist = 256.0;
    const TraverseClosure held = closure;
    const Call plan("LIB_TRSCalCoorErr", "step 2"), height("LIB_TRSCalCoorErr", "step 3");
    ASSERT_STATUS(plan, LIB_TRSCalCoorErr(legs.data(), 3, &NORTH, 2, 1, &closure), 0);
    EXPECT_BITS(plan, closure, held);
    ASSERT_STATUS(height, LIB_TRSCalCoorErr(legs.data(), 3, &NORTH, 3, 0, &closure), 0);
    EXPECT_BITS(height, closure, held);
    for (int i = 0; i < 3; ++i) {
        const std::string which = "leg " + std::to_string(i);
        EXPECT_BITS(plan.at(which), legs[i].DeltaX, i == 0 ? 9.75 : 9.875);
        EXPECT_BITS(plan.at(which), legs[i].DeltaY, i == 0 ? 20.125 : 20.0625);
        EXPECT_BITS(height.at(which), legs[i].DeltaH, i == 0 ? 0.9375 : 0.96875);
    }
}

TEST(TraverseAdjust, EachPointTakesItsOwnShareOntoTheCallersValues)
{
    const double dist[] = {128.0, 64.0, 64.0};
    const SurveyPoint ref[] = {{300.25, 50.0, 0.0}, {300.0, 50.0, 0.0}};
    const SurveyPoint pts[] = {{100.0, 50.0, 1.0}, {200.0, 50.0, 2.0}, {300.5, 50.0, 3.0}};
    // Mode 0 closes on ref[1], mode 1 on ref[0]; Y and H take the caller's values.
    const struct {
        unsigned char mode;
        AdjustClosure closure;
        SurveyPoint adjusted[3];
    } cases[] = {{0,
                  {0.5f, 0.001953125f},
                  {{106.75, 48.0, 9.0}, {206.875, 48.0, 9.0}, {307.375, 48.0, 9.0}}},
                 {1,
                  {0.25f, 0.0009765625f},
                  {{106.875, 48.0, 9.0}, {206.9375, 48.0, 9.0}, {307.4375, 48.0, 9.0}}}};
    for (const auto& [call, c] : rows("LIB_TRSAdjust", cases)) {
        SurveyPoint adj[3] = {{7.0, -2.0, 9.0}, {7.0, -2.0, 9.0}, {7.0, -2.0, 9.0}};
        AdjustClosure closure = qtest::sentinel_filled<AdjustClosure>();
        ASSERT_STATUS(call, LIB_TRSAdjust(dist, ref, pts, 3, adj, &closure, c.mode), 0);
        EXPECT_BITS(call, closure, c.closure);
        EXPECT_BITS(call, adj, c.adjusted);
    }
    // Without a point, or with a mode naming no known point, nothing is written.
    const Call none("LIB_TRSAdjust", "no points"), other("LIB_TRSAdjust", "mode 2");
    SurveyPoint adj = qtest::sentinel_filled<SurveyPoint>();
    AdjustClosure closure = qtest::sentinel_filled<AdjustClosure>();
    EXPECT_STATUS(none, LIB_TRSAdjust(dist, ref, pts, 0, &adj, &closure, 0), 1);
    EXPECT_UNTOUCHED(none, adj);
    EXPECT_UNTOUCHED(none, closure);
    EXPECT_STATUS(other, LIB_TRSAdjust(dist, ref, pts, 1, &adj, &closure, 2), 1);
    EXPECT_UNTOUCHED(other, adj);
    EXPECT_UNTOUCHED(other, closure);
}
