// Traverse closure in steps on a table of legs, and the small adjustment of
// computed traverse points.
#include "bits.hpp"
#include "records.hpp"

#include <cstring>
#include <vector>

namespace {

using Legs = std::vector<TraverseLeg>;

// The stored increments keep the sentinel: the closure never reads them.
TraverseLeg leg(double length, double height_diff, double fore, double back)
{
    TraverseLeg l = qtest::sentinel_filled<TraverseLeg>();
    l.HorizDist = length;
    l.HeightDiff = height_diff;
    l.ForeDirection = fore;
    l.BackDirection = back;
    return l;
}

// Closing azimuth ClosingRef -> End due north, 0 (the other way it would be
// a half circle).
const TraverseKnownPoints NORTH = {{0.0, 0.0, 10.0}, {0.0, 0.0, 0.0}, {1.0, 0.0, 0.0}};
// ClosingRef and End apart in height only: no closing direction.
const TraverseKnownPoints NO_DIRECTION = {{0.0, 0.0, 0.0}, {5.0, 5.0, 1.0}, {5.0, 5.0, 2.0}};

} // namespace

TEST(TraverseClosure, RefusedAndIgnoredCallsWriteNothing)
{
    struct Case {
        unsigned char n, step, mode;
        const TraverseKnownPoints* known;
        int status;
    };
    const Case cases[] = {
        {0, 0, 0, &NORTH, 1},   {0, 7, 9, &NORTH, 1},        // no legs, tested first
        {2, 0, 2, &NORTH, 0},   {2, 4, 0, &NORTH, 0},        // unknown mode, unknown step
        {2, 255, 1, &NORTH, 0}, {2, 1, 0, &NO_DIRECTION, 1}, // no closing azimuth
    };
    for (const Case& c : cases) {
        Legs legs = {leg(100.0, 1.0, 0.0, 10.0), leg(50.0, 2.0, 20.0, 30.0)};
        const Legs before = legs;
        TraverseClosure result = qtest::sentinel_filled<TraverseClosure>();
        EXPECT_EQ(LIB_TRSCalCoorErr(legs.data(), c.n, c.known, c.step, c.mode, &result), c.status);
        EXPECT_TRUE(qtest::untouched(result));
        EXPECT_EQ(std::memcmp(legs.data(), before.data(), sizeof(TraverseLeg) * 2), 0);
    }
    // The closed loop needs no known azimuth.
    Legs legs = {leg(100.0, 1.0, 0.0, 10.0)};
    TraverseClosure result;
    EXPECT_EQ(LIB_TRSCalCoorErr(legs.data(), 1, &NO_DIRECTION, 1, 1, &result), 0);
}

TEST(TraverseClosure, PlanAndHeightClosureInSinglePrecision)
{
    // 100.1 m due north against 100 m; a last leg of no length carries the
    // end azimuth.
    Legs legs = {leg(60.0, 0.5, 0.0, 0.0), leg(40.1, 0.0, 0.0, 0.0), leg(0.0, 0.0, 123456.5, 0.0)};
    const TraverseKnownPoints known = {{0.0, 0.0, 0.0}, {0.0, 0.0, 0.0}, {100.0, 0.0, 0.25}};
    TraverseClosure result = qtest::sentinel_filled<TraverseClosure>();
    ASSERT_EQ(LIB_TRSCalCoorErr(legs.data(), 3, &known, 0, 0, &result), 0);
    EXPECT_BITS(result.Fx, 0.09999999999999432);
    EXPECT_BITS(result.Fy, 0.0);
    EXPECT_BITS(result.Fh, 0.25);
    EXPECT_BITS(result.SumDist, 100.1);
    EXPECT_BITS(result.SumHeightDiff, 0.5);
    EXPECT_BITS(result.Misclosure, static_cast<double>(0.1f));
    EXPECT_BITS(result.Relative, 0.0009990009712055326); // nearest float to 0.1f / 100.1
    EXPECT_BITS(result.ComputedEndAzimuth, 123456.5);
    EXPECT_TRUE(qtest::untouched(result.KnownEndAzimuth));
    EXPECT_TRUE(qtest::untouched(result.AngularMisclosure));
    EXPECT_TRUE(qtest::untouched(legs[0].DeltaX));
}

TEST(TraverseClosure, LoopAngularMisclosureIsAddedToEveryDirection)
{
    // A square, angles fore minus back; the last, -971999, is turned to
    // 324001: one second over 1296000.
    Legs legs = {leg(1.0, 0.0, 324000.0, 0.0), leg(1.0, 0.0, 648000.0, 324000.0),
                 leg(1.0, 0.0, 972000.0, 648000.0), leg(1.0, 0.0, 1.0, 972000.0)};
    TraverseClosure result = qtest::sentinel_filled<TraverseClosure>();
    ASSERT_EQ(LIB_TRSCalCoorErr(legs.data(), 4, &NORTH, 1, 1, &result), 0);
    EXPECT_BITS(result.AngularMisclosure, 1.0);
    EXPECT_BITS(result.KnownEndAzimuth, 0.0);
    EXPECT_BITS(result.ComputedEndAzimuth, 0.0);
    EXPECT_TRUE(qtest::untouched(result.Fx));
    const double corrected[] = {324000.25, 648000.25, 972000.25, 1.25};
    for (int i = 0; i < 4; ++i) {
        EXPECT_BITS(legs[i].ForeDirection, corrected[i]);
    }
    // One leg against (1 - 2) half circles.
    Legs single = {leg(1.0, 0.0, 1000.0, 500.0)};
    ASSERT_EQ(LIB_TRSCalCoorErr(single.data(), 1, &NORTH, 1, 1, &result), 0);
    EXPECT_BITS(result.AngularMisclosure, 648500.0);
    EXPECT_BITS(single[0].ForeDirection, 649500.0);
}

TEST(TraverseClosure, ConnectingAnglesInWholeSeconds)
{
    // Two legs, closing azimuth 0: the carried azimuth is the misclosure, and
    // half of it is added to each forward direction.
    struct Case {
        double first_fore, back, fore, computed;
    };
    const Case cases[] = {
        {100.0, 10.9, 0.0, 648090.0},          // an angle of 10.9" counts as 10"
        {100.7, 10.0, 0.0, 648090.0},          // the carried azimuth is cut too
        {0.0, 648010.0, 0.0, -10.0},           // a negative azimuth stays negative
        {0.0, 0.0, 1296010.0, 648010.0},       // the angle's remainder keeps its sign: -10
        {0.0, 2592000.0 + 5.0, 0.0, 647995.0}, // reduced by a full circle
        {-1944000.0, 0.0, 0.0, 0.0},           // a whole number of turns leaves +0
        {-648000.5, 0.0, 0.0, 0.0},            // -0.5 cut to 0, not -0
    };
    for (const Case& c : cases) {
        Legs legs = {leg(1.0, 0.0, c.first_fore, 77.0), leg(1.0, 0.0, c.fore, c.back)};
        TraverseClosure result = qtest::sentinel_filled<TraverseClosure>();
        ASSERT_EQ(LIB_TRSCalCoorErr(legs.data(), 2, &NORTH, 1, 0, &result), 0);
        EXPECT_BITS(result.KnownEndAzimuth, 0.0);
        EXPECT_BITS(result.ComputedEndAzimuth, c.computed) << c.back;
        EXPECT_BITS(result.AngularMisclosure, c.computed) << c.back;
        EXPECT_BITS(legs[0].ForeDirection, c.first_fore + c.computed / 2.0);
        EXPECT_BITS(legs[1].ForeDirection, c.fore + c.computed / 2.0);
        EXPECT_TRUE(qtest::untouched(result.SumDist));
    }
}

TEST(TraverseClosure, DistributionUsesTheRecordAsItStands)
{
    Legs legs(3, leg(64.0, 0.0, 0.0, 0.0));
    legs[0].HorizDist = 128.0;
    for (TraverseLeg& l : legs) {
        l.DeltaX = 10.0;
        l.DeltaY = 20.0;
        l.DeltaH = 1.0;
    }
    // A record step 0 never filled.
    TraverseClosure closure = qtest::sentinel_filled<TraverseClosure>();
    closure.Fx = 0.5;
    closure.Fy = -0.25;
    closure.Fh = 0.125;
    closure.SumDist = 256.0;
    const TraverseClosure held = closure;
    ASSERT_EQ(LIB_TRSCalCoorErr(legs.data(), 3, &NORTH, 2, 1, &closure), 0);
    ASSERT_EQ(LIB_TRSCalCoorErr(legs.data(), 3, &NORTH, 3, 0, &closure), 0);
    EXPECT_EQ(std::memcmp(&closure, &held, sizeof closure), 0);
    const double expected[3][3] = {
        {9.75, 20.125, 0.9375}, {9.875, 20.0625, 0.96875}, {9.875, 20.0625, 0.96875}};
    for (int i = 0; i < 3; ++i) {
        EXPECT_BITS(legs[i].DeltaX, expected[i][0]);
        EXPECT_BITS(legs[i].DeltaY, expected[i][1]);
        EXPECT_BITS(legs[i].DeltaH, expected[i][2]);
    }
}

TEST(TraverseAdjust, EachPointTakesItsOwnShareOntoTheCallersValues)
{
    const double dist[] = {128.0, 64.0, 64.0};
    const SurveyPoint ref[] = {{300.25, 50.0, 0.0}, {300.0, 50.0, 0.0}};
    const SurveyPoint pts[] = {{100.0, 50.0, 1.0}, {200.0, 50.0, 2.0}, {300.5, 50.0, 3.0}};
    struct Case {
        unsigned char mode;
        float misclosure, relative;
        double x[3];
    };
    const Case cases[] = {
        {0, 0.5f, 0.001953125f, {106.75, 206.875, 307.375}},      // closes on ref[1]
        {1, 0.25f, 0.0009765625f, {106.875, 206.9375, 307.4375}}, // on ref[0]
    };
    for (const Case& c : cases) {
        SurveyPoint adj[3] = {{7.0, -2.0, 9.0}, {7.0, -2.0, 9.0}, {7.0, -2.0, 9.0}};
        AdjustClosure closure = qtest::sentinel_filled<AdjustClosure>();
        ASSERT_EQ(LIB_TRSAdjust(dist, ref, pts, 3, adj, &closure, c.mode), 0);
        EXPECT_EQ(closure.Misclosure, c.misclosure);
        EXPECT_EQ(closure.Relative, c.relative);
        for (int i = 0; i < 3; ++i) {
            EXPECT_BITS(adj[i].X, c.x[i]);
            EXPECT_BITS(adj[i].Y, 48.0);
            EXPECT_BITS(adj[i].H, 9.0);
        }
    }
    // Without a point, or a mode naming a known point, nothing is written.
    const unsigned char refused[][2] = {{1, 2}, {1, 255}, {0, 0}}; // n, mode
    for (const auto& r : refused) {
        SurveyPoint adj[1];
        qtest::fill_sentinel(adj);
        AdjustClosure closure = qtest::sentinel_filled<AdjustClosure>();
        EXPECT_EQ(LIB_TRSAdjust(dist, ref, pts, r[0], adj, &closure, r[1]), 1);
        EXPECT_TRUE(qtest::untouched(adj));
        EXPECT_TRUE(qtest::untouched(closure));
    }
}
