// Multi-round observation at a station: face means, means over the rounds,
// the field tolerance tests and the reduced target points.
#include "bits.hpp"
#include "quillon.h"

#include <cmath>
#include <cstring>
#include <limits>
#include <vector>

namespace {

const double NaN = std::numeric_limits<double>::quiet_NaN();

StationRecord station()
{
    StationRecord s{};
    s.X = 1000.0;
    s.Y = 2000.0;
    s.H = 50.0;
    s.InstrumentHeight = 1.5;
    s.TargetHeight = 1.2;
    s.signA = 1;
    s.signB = 1;
    s.refractionMode = 1;
    return s;
}

const StationRecord STATION = station();

TargetReading reading(double hz, double v, double slope)
{
    TargetReading r;
    r.Hz = hz;
    r.V = v;
    r.SlopeDist = slope;
    for (double& spare : r.Spare) {
        spare = NaN; // never read
    }
    return r;
}

// Two targets, both faces, free of errors: face means 100000 / 300000 / 50 m
// to target 1 and 20000 / 320000 / 80 m to target 2.
RoundObservation clean_round()
{
    RoundObservation r;
    r.Face1Target1 = reading(100000.0, 300000.0, 50.0);
    r.Face1Target2 = reading(20000.0, 320000.0, 80.0);
    r.Face2Target1 = reading(748000.0, 996000.0, 50.0);
    r.Face2Target2 = reading(668000.0, 976000.0, 80.0);
    return r;
}

StaMultiResult record(std::int32_t mode, double tolerance = 1000.0)
{
    StaMultiResult r = qtest::sentinel_filled<StaMultiResult>();
    r.TolIndexDiff = tolerance;
    r.TolZenithRange = tolerance;
    r.TolFaceAngleDiff = tolerance;
    r.Tol2CDiff = tolerance;
    r.TolDirectionRange = tolerance;
    r.SkipChecks = 0;
    r.ObsMode = mode;
    r.Station = &STATION;
    r.Scale = 1.0;
    return r;
}

// Every output of the second target and of the two-target fields.
bool target2_untouched(const StaMultiResult& r)
{
    return qtest::untouched(r.MeanHz2) && qtest::untouched(r.MeanV2) &&
           qtest::untouched(r.MeanSlope2) && qtest::untouched(r.HorizDist2) &&
           qtest::untouched(r.VertDiff2) && qtest::untouched(r.Point2) &&
           qtest::untouched(r.HeightDiff2) && qtest::untouched(r.Angle12) &&
           qtest::untouched(r.MeanHz2Copy);
}

bool outputs_untouched(const StaMultiResult& r)
{
    return target2_untouched(r) && qtest::untouched(r.MeanHz1) && qtest::untouched(r.MeanV1) &&
           qtest::untouched(r.MeanSlope1) && qtest::untouched(r.HorizDist1) &&
           qtest::untouched(r.VertDiff1) && qtest::untouched(r.Point1) &&
           qtest::untouched(r.HeightDiff1) && qtest::untouched(r.MeanHz1Copy) &&
           qtest::untouched(r.StationPoint);
}

} // namespace

TEST(StationRounds, NoRoundsAndUnknownModes)
{
    const RoundObservation round = clean_round();
    StaMultiResult r = record(2);
    EXPECT_EQ(LIB_STAMultCycleCal(&round, 0, &r), 1);
    EXPECT_EQ(r.ErrorFlag, 6);
    EXPECT_TRUE(outputs_untouched(r));

    const std::int32_t modes[] = {4, -1, 1000};
    for (std::int32_t mode : modes) {
        StaMultiResult m = record(mode);
        EXPECT_EQ(LIB_STAMultCycleCal(&round, 1, &m), 0);
        EXPECT_EQ(m.ErrorFlag, 0);
        EXPECT_TRUE(outputs_untouched(m));
        EXPECT_TRUE(qtest::untouched(m.Reserved));
    }
}

TEST(StationRounds, FaceMeanWrapsOncePastTheFullCircle)
{
    struct Case {
        double face1;
        double face2;
        double mean;
    };
    const Case cases[] = {
        {648100.0, 100.0, 648100.0},
        {100.0, 648100.0, 100.0},
        {1295990.0, 647980.0, 1295985.0},
        {0.0, 648000.0, 0.0},
    };
    for (const Case& c : cases) {
        RoundObservation round = clean_round();
        round.Face1Target1.Hz = c.face1;
        round.Face2Target1.Hz = c.face2;
        round.Face1Target2 = reading(NaN, NaN, NaN); // one target: never read
        round.Face2Target2 = reading(NaN, NaN, NaN);
        StaMultiResult r = record(0);
        r.SkipChecks = 1;
        ASSERT_EQ(LIB_STAMultCycleCal(&round, 1, &r), 0);
        EXPECT_BITS(r.MeanHz1, c.mean) << c.face1;
        EXPECT_BITS(r.MeanHz1Copy, c.mean);
        EXPECT_BITS(r.MeanV1, 300000.0);
        EXPECT_BITS(r.MeanSlope1, 50.0);
        EXPECT_TRUE(target2_untouched(r));
    }
}

TEST(StationRounds, TwoTargetsMeansAngleAndPoints)
{
    std::vector<RoundObservation> rounds = {clean_round(), clean_round()};
    rounds[1].Face1Target1.Hz += 6.0;
    rounds[1].Face2Target1.Hz += 6.0;
    rounds[1].Face1Target2.SlopeDist = 80.5;
    rounds[1].Face2Target2.SlopeDist = 80.25;
    StaMultiResult r = record(2);
    r.Scale = 1.0005;
    ASSERT_EQ(LIB_STAMultCycleCal(rounds.data(), 2, &r), 0);
    EXPECT_EQ(r.ErrorFlag, 0);
    EXPECT_BITS(r.MeanHz1, 100003.0);
    EXPECT_BITS(r.MeanHz2, 20000.0);
    EXPECT_BITS(r.MeanV2, 320000.0);
    EXPECT_BITS(r.MeanSlope2, 80.1875);
    EXPECT_BITS(r.Angle12, 80003.0);
    EXPECT_BITS(r.MeanHz2Copy, 20000.0);
    EXPECT_BITS(r.MeanHz1Copy, 100003.0);
    EXPECT_BITS(r.StationPoint.X, 1000.0);
    EXPECT_BITS(r.StationPoint.H, 50.0);
    EXPECT_TRUE(qtest::untouched(r.Reserved));
    EXPECT_TRUE(qtest::untouched(r.Reserved2));

    // Reduced with the station's refraction and the record's scale; the point
    // sits at station H plus the vertical difference (no instrument or target
    // height), with the mean direction taken as azimuth.
    DistanceRecord d;
    LIB_DistConvert(&STATION, 1.0005, 80.1875, 320000.0, &d);
    EXPECT_BITS(r.HorizDist2, d.HorizontalDistance);
    EXPECT_BITS(r.VertDiff2, d.VerticalDifference);
    EXPECT_BITS(r.HeightDiff2, d.HeightDifference);
    const SurveyPoint origin = {1000.0, 2000.0, 50.0};
    SurveyPoint p;
    LIB_CalCoor(&origin, 20000.0, d.HorizontalDistance, d.VerticalDifference, &p);
    EXPECT_BITS(r.Point2.X, p.X);
    EXPECT_BITS(r.Point2.Y, p.Y);
    EXPECT_BITS(r.Point2.H, 50.0 + d.VerticalDifference);
    EXPECT_NE(r.Point2.H, 50.0 + d.HeightDifference);
}

TEST(StationRounds, AngleBetweenTargetsTurnsWhenNegative)
{
    RoundObservation round = clean_round();
    round.Face1Target1.Hz = 10.0;
    round.Face2Target1 = reading(NaN, NaN, NaN); // face I only: never read
    round.Face2Target2 = reading(NaN, NaN, NaN);
    StaMultiResult r = record(1);
    ASSERT_EQ(LIB_STAMultCycleCal(&round, 1, &r), 0);
    EXPECT_BITS(r.MeanHz1, 10.0);
    EXPECT_BITS(r.Angle12, 1276010.0);
    EXPECT_BITS(r.MeanV1, 300000.0);
    EXPECT_BITS(r.MeanSlope2, 80.0);
}

TEST(StationRounds, FaceMeansAreTakenAbsoluteRawReadingsAreNot)
{
    RoundObservation round = clean_round();
    round.Face1Target1 = reading(-1400000.0, 100.0, 10.0);
    round.Face2Target1 = reading(700000.0, 1296300.0, 10.0);
    StaMultiResult both = record(0);
    both.SkipChecks = 1;
    ASSERT_EQ(LIB_STAMultCycleCal(&round, 1, &both), 0);
    EXPECT_BITS(both.MeanHz1, 674000.0);
    EXPECT_BITS(both.MeanV1, 100.0);

    StaMultiResult face1 = record(1);
    face1.SkipChecks = 1;
    ASSERT_EQ(LIB_STAMultCycleCal(&round, 1, &face1), 0);
    EXPECT_BITS(face1.MeanHz1, -1400000.0);
    EXPECT_BITS(face1.Angle12, -1400000.0 - 20000.0 + 1296000.0);
}

TEST(StationRounds, PointOutOfRangeIsWrittenAsZeros)
{
    RoundObservation round = clean_round();
    round.Face1Target1.SlopeDist = 4e8;
    round.Face2Target1.SlopeDist = 4e8;
    StaMultiResult r = record(0);
    ASSERT_EQ(LIB_STAMultCycleCal(&round, 1, &r), 0);
    EXPECT_BITS(r.Point1.X, 0.0);
    EXPECT_BITS(r.Point1.Y, 0.0);
    EXPECT_BITS(r.Point1.H, 0.0);
    EXPECT_GT(std::fabs(r.HorizDist1), 99999999.9999);
}

// Each test passes with its quantity at the tolerance and fails just above.
TEST(StationRounds, ToleranceAtAndJustAboveItsLimit)
{
    using Mutation = void (*)(std::vector<RoundObservation>&);
    struct Case {
        const char* name;
        std::int32_t mode;
        int rounds;
        Mutation mutate;
        double StaMultiResult::*tolerance;
        double quantity;
        std::int32_t flag;
    };
    const Case cases[] = {
        {"index error", 2, 1, [](std::vector<RoundObservation>& r) { r[0].Face2Target1.V += 2.0; },
         &StaMultiResult::TolIndexDiff, 1.0, 1},
        {"zenith spread of face means", 2, 2,
         [](std::vector<RoundObservation>& r) {
             r[1].Face1Target1.V += 3.0;
             r[1].Face2Target1.V -= 3.0;
         },
         &StaMultiResult::TolZenithRange, 3.0, 2},
        {"zenith spread, target 2", 3, 2,
         [](std::vector<RoundObservation>& r) {
             r[1].Face1Target2.V -= 1.5;
             r[1].Face2Target2.V += 1.5;
         },
         &StaMultiResult::TolZenithRange, 1.5, 2},
        {"face angle", 2, 1, [](std::vector<RoundObservation>& r) { r[0].Face2Target2.Hz -= 4.0; },
         &StaMultiResult::TolFaceAngleDiff, 4.0, 3},
        {"2C", 2, 1, [](std::vector<RoundObservation>& r) { r[0].Face2Target2.Hz -= 4.0; },
         &StaMultiResult::Tol2CDiff, 4.0, 4},
        {"direction spread", 2, 2,
         [](std::vector<RoundObservation>& r) {
             r[1].Face1Target1.Hz += 6.0;
             r[1].Face2Target1.Hz += 6.0;
         },
         &StaMultiResult::TolDirectionRange, 6.0, 5},
        {"raw face I zenith, one target", 0, 2,
         [](std::vector<RoundObservation>& r) { r[1].Face1Target1.V += 2.0; },
         &StaMultiResult::TolZenithRange, 2.0, 2},
        {"raw face I direction, one target", 0, 3,
         [](std::vector<RoundObservation>& r) {
             r[1].Face1Target1.Hz += 2.0;
             r[2].Face1Target1.Hz -= 0.5;
         },
         &StaMultiResult::TolDirectionRange, 2.5, 5},
        {"zenith, face I, target 2", 1, 2,
         [](std::vector<RoundObservation>& r) { r[1].Face1Target2.V += 2.0; },
         &StaMultiResult::TolZenithRange, 2.0, 2},
        {"direction, face I, target 2", 1, 2,
         [](std::vector<RoundObservation>& r) { r[1].Face1Target2.Hz -= 7.0; },
         &StaMultiResult::TolDirectionRange, 7.0, 5},
    };
    for (const Case& c : cases) {
        std::vector<RoundObservation> rounds(c.rounds, clean_round());
        c.mutate(rounds);
        const double limits[] = {c.quantity, std::nextafter(c.quantity, 0.0)};
        for (double limit : limits) {
            const bool fails = limit < c.quantity;
            StaMultiResult r = record(c.mode);
            r.*c.tolerance = limit;
            EXPECT_EQ(LIB_STAMultCycleCal(rounds.data(), c.rounds, &r), fails ? 1 : 0) << c.name;
            EXPECT_EQ(r.ErrorFlag, fails ? c.flag : 0) << c.name;
            EXPECT_FALSE(qtest::untouched(r.MeanHz1)) << c.name; // written either way
            EXPECT_FALSE(qtest::untouched(r.StationPoint)) << c.name;
        }
    }
}

TEST(StationRounds, TwoCIsNotNormalised)
{
    // Target 1 a hair east of north: true 2C of 10", but face II below a half
    // circle makes it -1295990; the face angles differ by the same 10".
    RoundObservation round = clean_round();
    round.Face1Target1.Hz = 5.0;
    round.Face2Target1.Hz = 647995.0;
    StaMultiResult r = record(2, 100.0);
    EXPECT_EQ(LIB_STAMultCycleCal(&round, 1, &r), 1);
    EXPECT_EQ(r.ErrorFlag, 4);
}

TEST(StationRounds, DirectionSpreadUsesTheUnwrappedMean)
{
    // Target 1 straddles south: face means 647995 and 648005 agree within
    // 10", the unwrapped means (647995, then 5) do not.
    std::vector<RoundObservation> rounds = {clean_round(), clean_round()};
    rounds[0].Face1Target1.Hz = 647995.0;
    rounds[0].Face2Target1.Hz = 1295995.0;
    rounds[1].Face1Target1.Hz = 648005.0;
    rounds[1].Face2Target1.Hz = 5.0;
    StaMultiResult r = record(2, 100.0);
    EXPECT_EQ(LIB_STAMultCycleCal(rounds.data(), 2, &r), 1);
    EXPECT_EQ(r.ErrorFlag, 5);
    EXPECT_BITS(r.MeanHz1, 648000.0);
}

TEST(StationRounds, FirstFailureIsKept)
{
    // One round failing the index error and the face angle: index error.
    std::vector<RoundObservation> same_round = {clean_round()};
    same_round[0].Face2Target1.V += 20.0;
    same_round[0].Face2Target2.Hz -= 20.0;
    StaMultiResult r = record(2, 5.0);
    EXPECT_EQ(LIB_STAMultCycleCal(same_round.data(), 1, &r), 1);
    EXPECT_EQ(r.ErrorFlag, 1);

    // A face angle failure in round 1 stays even when round 2 fails the
    // index error.
    std::vector<RoundObservation> later = {clean_round(), clean_round()};
    later[0].Face2Target2.Hz -= 20.0;
    later[1].Face2Target1.V += 20.0;
    later[1].Face1Target1.V -= 20.0; // zenith face mean unchanged
    StaMultiResult k = record(2, 15.0);
    EXPECT_EQ(LIB_STAMultCycleCal(later.data(), 2, &k), 1);
    EXPECT_EQ(k.ErrorFlag, 3);
}

TEST(StationRounds, SkippedTestsNeverFail)
{
    std::vector<RoundObservation> rounds = {clean_round(), clean_round()};
    rounds[1].Face1Target1 = reading(500000.0, 100000.0, 3.0);
    const std::int32_t skips[] = {1, -1};
    for (std::int32_t skip : skips) {
        StaMultiResult r = record(2, 0.0);
        r.SkipChecks = skip;
        EXPECT_EQ(LIB_STAMultCycleCal(rounds.data(), 2, &r), 0);
        EXPECT_EQ(r.ErrorFlag, 0);
    }
    StaMultiResult r = record(2, 0.0);
    EXPECT_EQ(LIB_STAMultCycleCal(rounds.data(), 2, &r), 1);
}

TEST(StationRounds, ModeThreeIsModeTwo)
{
    std::vector<RoundObservation> rounds = {clean_round(), clean_round(), clean_round()};
    rounds[1].Face1Target2.Hz += 3.0;
    rounds[2].Face2Target1.V -= 4.0;
    rounds[2].Face2Target2.SlopeDist = 80.123;
    StaMultiResult two = record(2, 2.0);
    StaMultiResult three = record(3, 2.0);
    EXPECT_EQ(LIB_STAMultCycleCal(rounds.data(), 3, &two),
              LIB_STAMultCycleCal(rounds.data(), 3, &three));
    three.ObsMode = 2;
    EXPECT_EQ(std::memcmp(&two, &three, sizeof two), 0);
    EXPECT_NE(two.ErrorFlag, 0);
}
