// Traverse closure in steps on a table of legs, and the small adjustment of
// computed traverse points.
#include "bits.hpp"
#include "quillon.h"

#include <cmath>
#include <cstring>
#include <vector>

namespace {

TraverseLeg leg(double length, double height_diff, double fore, double back)
{
    TraverseLeg l = qtest::sentinel_filled<TraverseLeg>();
    l.HorizDist = length;
    l.HeightDiff = height_diff;
    l.DeltaX = 0.0;
    l.DeltaY = 0.0;
    l.DeltaH = 0.0;
    l.ForeDirection = fore;
    l.BackDirection = back;
    return l;
}

TraverseKnownPoints known_points(SurveyPoint start, SurveyPoint closing_ref, SurveyPoint end)
{
    TraverseKnownPoints k;
    k.Start = start;
    k.ClosingRef = closing_ref;
    k.End = end;
    return k;
}

bool same_bytes(const std::vector<TraverseLeg>& a, const std::vector<TraverseLeg>& b)
{
    return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof a[0]) == 0;
}

const TraverseKnownPoints NORTH_CLOSING =
    known_points({0.0, 0.0, 10.0}, {0.0, 0.0, 0.0}, {1.0, 0.0, 0.0}); // closing azimuth 0

} // namespace

TEST(TraverseClosure, RefusedAndIgnoredCalls)
{
    struct Case {
        unsigned char n;
        unsigned char step;
        unsigned char mode;
        int status;
    };
    const Case cases[] = {
        {0, 0, 0, 1}, {0, 1, 1, 1},   {0, 7, 9, 1}, // no legs
        {2, 0, 2, 0}, {2, 1, 255, 0},               // unknown mode
        {2, 4, 0, 0}, {2, 255, 1, 0},               // unknown step
    };
    for (const Case& c : cases) {
        std::vector<TraverseLeg> legs = {leg(100.0, 1.0, 0.0, 10.0), leg(50.0, 2.0, 20.0, 30.0)};
        const std::vector<TraverseLeg> before = legs;
        TraverseClosure result = qtest::sentinel_filled<TraverseClosure>();
        EXPECT_EQ(LIB_TRSCalCoorErr(legs.data(), c.n, &NORTH_CLOSING, c.step, c.mode, &result),
                  c.status);
        EXPECT_TRUE(qtest::untouched(result));
        EXPECT_TRUE(same_bytes(legs, before));
    }
}

TEST(TraverseClosure, CoincidentClosingPointsRefuseTheAngularStep)
{
    std::vector<TraverseLeg> legs = {leg(100.0, 1.0, 0.0, 10.0), leg(50.0, 2.0, 20.0, 30.0)};
    const std::vector<TraverseLeg> before = legs;
    // Same plan position, different heights: still no direction.
    const TraverseKnownPoints known =
        known_points({0.0, 0.0, 0.0}, {5.0, 5.0, 1.0}, {5.0, 5.0, 2.0});
    TraverseClosure result = qtest::sentinel_filled<TraverseClosure>();
    EXPECT_EQ(LIB_TRSCalCoorErr(legs.data(), 2, &known, 1, 0, &result), 1);
    EXPECT_TRUE(qtest::untouched(result));
    EXPECT_TRUE(same_bytes(legs, before));
    // The closed loop needs no known azimuth.
    EXPECT_EQ(LIB_TRSCalCoorErr(legs.data(), 2, &known, 1, 1, &result), 0);
}

TEST(TraverseClosure, StraightTraverseClosesExactly)
{
    // Three legs due north from (1000, 2000, 50) to (1175.25, 2000, 53.5).
    std::vector<TraverseLeg> legs = {leg(100.0, 1.25, 0.0, 0.0), leg(50.25, 2.0, 0.0, 0.0),
                                     leg(25.0, 0.25, 0.0, 0.0)};
    const TraverseKnownPoints known =
        known_points({1000.0, 2000.0, 50.0}, {0.0, 0.0, 0.0}, {1175.25, 2000.0, 53.5});
    for (unsigned char mode = 0; mode < 2; ++mode) {
        TraverseClosure result = qtest::sentinel_filled<TraverseClosure>();
        ASSERT_EQ(LIB_TRSCalCoorErr(legs.data(), 3, &known, 0, mode, &result), 0);
        EXPECT_BITS(result.Fx, 0.0);
        EXPECT_BITS(result.Fy, 0.0);
        EXPECT_BITS(result.Fh, 0.0);
        EXPECT_BITS(result.SumDist, 175.25);
        EXPECT_BITS(result.SumHeightDiff, 3.5);
        EXPECT_BITS(result.Misclosure, 0.0);
        EXPECT_BITS(result.Relative, 0.0);
        EXPECT_BITS(result.ComputedEndAzimuth, 0.0);
        EXPECT_TRUE(qtest::untouched(result.KnownEndAzimuth));
        EXPECT_TRUE(qtest::untouched(result.AngularMisclosure));
    }
}

TEST(TraverseClosure, ClosureRecomputesIncrementsAndRoundsThroughSinglePrecision)
{
    // The stored increments are ignored; the end is 0.1 m short of the legs.
    std::vector<TraverseLeg> legs = {leg(60.0, 0.0, 0.0, 0.0), leg(40.1, 0.0, 0.0, 0.0)};
    legs[0].DeltaX = 1e6;
    legs[1].ForeDirection = 1296000.0; // a full circle: north again, within 1e-13 m
    const TraverseKnownPoints known =
        known_points({0.0, 0.0, 0.0}, {0.0, 0.0, 0.0}, {100.0, 0.0, 0.0});
    TraverseClosure result = qtest::sentinel_filled<TraverseClosure>();
    ASSERT_EQ(LIB_TRSCalCoorErr(legs.data(), 2, &known, 0, 0, &result), 0);
    EXPECT_NEAR(result.Fx, 0.1, 1e-12);
    EXPECT_NEAR(result.Fy, 0.0, 1e-5); // 6.2831852 is short of a full turn
    EXPECT_BITS(result.Misclosure, static_cast<double>(0.1f));
    EXPECT_BITS(result.Relative, static_cast<double>(static_cast<float>(result.Relative)));
    EXPECT_NEAR(result.Relative, 0.1 / 100.1, 1e-9);
    EXPECT_BITS(result.ComputedEndAzimuth, 1296000.0);
}

TEST(TraverseClosure, LoopAngularMisclosureIsAddedToEveryDirection)
{
    // Triangle; angles fore minus back: 200000, 200000 and (after a turn)
    // 248000.25, summing to 648000.25.
    std::vector<TraverseLeg> legs = {leg(1.0, 0.0, 300000.0, 100000.0),
                                     leg(1.0, 0.0, 500000.0, 300000.0),
                                     leg(1.0, 0.0, 100000.25, 1148000.0)};
    TraverseClosure result = qtest::sentinel_filled<TraverseClosure>();
    ASSERT_EQ(LIB_TRSCalCoorErr(legs.data(), 3, &NORTH_CLOSING, 1, 1, &result), 0);
    EXPECT_BITS(result.AngularMisclosure, 0.25);
    EXPECT_BITS(result.KnownEndAzimuth, 0.0);
    EXPECT_BITS(result.ComputedEndAzimuth, 0.0);
    EXPECT_TRUE(qtest::untouched(result.Fx));
    EXPECT_BITS(legs[0].ForeDirection, 300000.0 + 0.25 / 3.0);
    EXPECT_BITS(legs[1].ForeDirection, 500000.0 + 0.25 / 3.0);
    EXPECT_BITS(legs[2].ForeDirection, 100000.25 + 0.25 / 3.0);
    EXPECT_BITS(legs[2].BackDirection, 1148000.0);
}

TEST(TraverseClosure, LoopTriangleOfFourTenths)
{
    // Angles 216000, 216000 and 0.4 - 1080000 + 1296000 = 216000.4.
    std::vector<TraverseLeg> legs = {leg(1.0, 0.0, 216000.0, 0.0),
                                     leg(1.0, 0.0, 432000.0, 216000.0),
                                     leg(1.0, 0.0, 0.4, 1080000.0)};
    TraverseClosure result = qtest::sentinel_filled<TraverseClosure>();
    ASSERT_EQ(LIB_TRSCalCoorErr(legs.data(), 3, &NORTH_CLOSING, 1, 1, &result), 0);
    EXPECT_NEAR(result.AngularMisclosure, 0.4, 1e-9);
    EXPECT_NEAR(legs[0].ForeDirection, 216000.0 + 0.4 / 3.0, 1e-9);
    EXPECT_NEAR(legs[2].ForeDirection, 0.4 + 0.4 / 3.0, 1e-9);
}

TEST(TraverseClosure, SingleLegLoopCountsMinusAHalfCircle)
{
    std::vector<TraverseLeg> legs = {leg(1.0, 0.0, 1000.0, 500.0)};
    TraverseClosure result = qtest::sentinel_filled<TraverseClosure>();
    ASSERT_EQ(LIB_TRSCalCoorErr(legs.data(), 1, &NORTH_CLOSING, 1, 1, &result), 0);
    EXPECT_BITS(result.AngularMisclosure, 648500.0);
    EXPECT_BITS(legs[0].ForeDirection, 649500.0);
}

TEST(TraverseClosure, ConnectingAnglesInWholeSeconds)
{
    // Closing azimuth 0 (ClosingRef due south of End).
    struct Case {
        double first_fore;
        double back;
        double fore;
        double computed; // carried end azimuth
    };
    const Case cases[] = {
        {100.0, 10.9, 0.0, 648090.0},          // an angle of 10.9" counts as 10"
        {100.7, 10.0, 0.0, 648090.0},          // the carried azimuth is cut too
        {0.0, 648010.0, 0.0, -10.0},           // a negative azimuth stays negative
        {0.0, 0.0, 1296010.0, 648010.0},       // the remainder keeps the sign: -10
        {0.0, 2592000.0 + 5.0, 0.0, 647995.0}, // reduced by a full circle
        {1296000.0, 648000.0, 0.0, 0.0},       // a whole turn folds to 0
        {-1944000.0, 0.0, 0.0, 0.0},           // and so does a negative one, to +0
        {-648000.5, 0.0, 0.0, 0.0},            // -0.5 cut to 0, not -0
    };
    for (const Case& c : cases) {
        std::vector<TraverseLeg> legs = {leg(1.0, 0.0, c.first_fore, 77.0),
                                         leg(1.0, 0.0, c.fore, c.back)};
        TraverseClosure result = qtest::sentinel_filled<TraverseClosure>();
        ASSERT_EQ(LIB_TRSCalCoorErr(legs.data(), 2, &NORTH_CLOSING, 1, 0, &result), 0);
        EXPECT_BITS(result.KnownEndAzimuth, 0.0);
        EXPECT_BITS(result.ComputedEndAzimuth, c.computed) << c.back;
        EXPECT_BITS(result.AngularMisclosure, c.computed) << c.back;
        EXPECT_BITS(legs[0].ForeDirection, c.first_fore + c.computed / 2.0);
        EXPECT_BITS(legs[1].ForeDirection, c.fore + c.computed / 2.0);
        EXPECT_TRUE(qtest::untouched(result.SumDist));
    }
}

TEST(TraverseClosure, ConnectingMisclosureAgainstAKnownAzimuth)
{
    // Closing azimuth due east carries the pi mismatch: 324000.0055268...
    const TraverseKnownPoints known =
        known_points({0.0, 0.0, 0.0}, {0.0, 0.0, 0.0}, {0.0, 1.0, 0.0});
    // Start north, turn right by 90 degrees: back 648000, fore 324003.
    std::vector<TraverseLeg> legs = {leg(1.0, 0.0, 0.0, 0.0), leg(1.0, 0.0, 324003.0, 648000.0)};
    TraverseClosure result = qtest::sentinel_filled<TraverseClosure>();
    ASSERT_EQ(LIB_TRSCalCoorErr(legs.data(), 2, &known, 1, 0, &result), 0);
    // t = 648000 - 324003 + 1296000 -> 323997; c = 648000 + 0 - 323997.
    EXPECT_BITS(result.ComputedEndAzimuth, 324003.0);
    EXPECT_BITS(result.KnownEndAzimuth, 324000.00552684424);
    EXPECT_BITS(result.AngularMisclosure, 324003.0 - 324000.00552684424);
    EXPECT_GT(legs[0].ForeDirection, 1.4); // the misclosure is added
}

TEST(TraverseClosure, DistributionOfPlanAndHeightMisclosure)
{
    std::vector<TraverseLeg> legs = {leg(128.0, 0.0, 0.0, 0.0), leg(64.0, 0.0, 0.0, 0.0),
                                     leg(64.0, 0.0, 0.0, 0.0)};
    for (TraverseLeg& l : legs) {
        l.DeltaX = 10.0;
        l.DeltaY = 20.0;
        l.DeltaH = 1.0;
    }
    // A record step 0 never filled: steps 2 and 3 use what it holds.
    TraverseClosure closure = qtest::sentinel_filled<TraverseClosure>();
    closure.Fx = 0.5;
    closure.Fy = -0.25;
    closure.Fh = 0.125;
    closure.SumDist = 256.0;
    const TraverseClosure held = closure;
    ASSERT_EQ(LIB_TRSCalCoorErr(legs.data(), 3, &NORTH_CLOSING, 2, 1, &closure), 0);
    ASSERT_EQ(LIB_TRSCalCoorErr(legs.data(), 3, &NORTH_CLOSING, 3, 0, &closure), 0);
    EXPECT_EQ(std::memcmp(&closure, &held, sizeof closure), 0);
    const double dx[] = {9.75, 9.875, 9.875};
    const double dy[] = {20.125, 20.0625, 20.0625};
    const double dh[] = {0.9375, 0.96875, 0.96875};
    for (int i = 0; i < 3; ++i) {
        EXPECT_BITS(legs[i].DeltaX, dx[i]);
        EXPECT_BITS(legs[i].DeltaY, dy[i]);
        EXPECT_BITS(legs[i].DeltaH, dh[i]);
        EXPECT_BITS(legs[i].ForeDirection, 0.0);
    }
}

TEST(TraverseClosure, ZeroLengthIsNotGuarded)
{
    std::vector<TraverseLeg> legs = {leg(0.0, 0.0, 0.0, 0.0)};
    const TraverseKnownPoints known =
        known_points({0.0, 0.0, 0.0}, {0.0, 0.0, 0.0}, {1.0, 0.0, 0.0});
    TraverseClosure result = qtest::sentinel_filled<TraverseClosure>();
    ASSERT_EQ(LIB_TRSCalCoorErr(legs.data(), 1, &known, 0, 0, &result), 0);
    EXPECT_TRUE(std::isinf(result.Relative));
    ASSERT_EQ(LIB_TRSCalCoorErr(legs.data(), 1, &known, 2, 0, &result), 0);
    EXPECT_TRUE(std::isnan(legs[0].DeltaX)); // -inf * 0
}

TEST(TraverseAdjust, ClosesOnTheReferenceOfTheMode)
{
    const double dist[] = {128.0, 64.0, 64.0};
    const SurveyPoint ref[] = {{300.25, 0.0, 0.0}, {300.0, 0.0, 0.0}};
    const SurveyPoint pts[] = {{100.0, 50.0, 1.0}, {200.0, 50.0, 2.0}, {300.5, 50.0, 3.0}};
    struct Case {
        unsigned char mode;
        double fx;
    };
    const Case cases[] = {{0, -0.5}, {1, -0.25}};
    for (const Case& c : cases) {
        SurveyPoint adj[3] = {};
        AdjustClosure closure = qtest::sentinel_filled<AdjustClosure>();
        ASSERT_EQ(LIB_TRSAdjust(dist, ref, pts, 3, adj, &closure, c.mode), 0);
        // fy = -50, so the misclosure is sqrt(50^2 + fx^2) in single precision.
        EXPECT_EQ(closure.Misclosure, static_cast<float>(std::sqrt(2500.0 + c.fx * c.fx)));
        EXPECT_EQ(closure.Relative,
                  static_cast<float>(static_cast<double>(closure.Misclosure) / 256.0));
        // Each point moves by its own share: fx * (dist / 256).
        EXPECT_BITS(adj[0].X, 100.0 + c.fx * 0.5);
        EXPECT_BITS(adj[1].X, 200.0 + c.fx * 0.25);
        EXPECT_BITS(adj[2].X, 300.5 + c.fx * 0.25);
        EXPECT_BITS(adj[0].Y, 50.0 - 25.0);
        EXPECT_BITS(adj[2].Y, 50.0 - 12.5);
        EXPECT_BITS(adj[0].H, 0.0);
    }
}

TEST(TraverseAdjust, AddsOntoTheCallersPoints)
{
    const double dist[] = {10.0, 10.0};
    const SurveyPoint ref[] = {{0.0, 0.0, 0.0}, {20.1, 0.0, 0.0}};
    const SurveyPoint pts[] = {{10.0, 0.0, 0.0}, {20.0, 0.0, 0.0}};
    SurveyPoint cleared[2] = {};
    SurveyPoint held[2] = {{1.0, -2.0, 7.0}, {1.0, -2.0, 7.0}};
    AdjustClosure closure;
    ASSERT_EQ(LIB_TRSAdjust(dist, ref, pts, 2, cleared, &closure, 0), 0);
    ASSERT_EQ(LIB_TRSAdjust(dist, ref, pts, 2, held, &closure, 0), 0);
    for (int i = 0; i < 2; ++i) {
        EXPECT_BITS(held[i].X, cleared[i].X + 1.0);
        EXPECT_BITS(held[i].Y, cleared[i].Y - 2.0);
        EXPECT_BITS(held[i].H, 7.0);
    }
    EXPECT_NEAR(cleared[1].X, 20.05, 1e-12);
    EXPECT_EQ(closure.Misclosure, 0.1f);
}

TEST(TraverseAdjust, RefusesWhatHasNoReference)
{
    const double dist[] = {10.0};
    const SurveyPoint ref[] = {{0.0, 0.0, 0.0}, {1.0, 0.0, 0.0}};
    const SurveyPoint pts[] = {{1.0, 0.0, 0.0}};
    const unsigned char modes[] = {2, 255};
    for (unsigned char mode : modes) {
        SurveyPoint adj[1];
        qtest::fill_sentinel(adj);
        AdjustClosure closure = qtest::sentinel_filled<AdjustClosure>();
        EXPECT_EQ(LIB_TRSAdjust(dist, ref, pts, 1, adj, &closure, mode), 1);
        EXPECT_TRUE(qtest::untouched(adj));
        EXPECT_TRUE(qtest::untouched(closure));
    }
    SurveyPoint adj[1];
    qtest::fill_sentinel(adj);
    AdjustClosure closure = qtest::sentinel_filled<AdjustClosure>();
    EXPECT_EQ(LIB_TRSAdjust(dist, ref, pts, 0, adj, &closure, 0), 1);
    EXPECT_TRUE(qtest::untouched(closure));
}
