// Multi-round observation at a station: face means, means over the rounds,
// the field tolerance tests and the reduced target points.
#include "bits.hpp"
#include "records.hpp"

#include <cmath>
#include <cstddef>
#include <cstring>
#include <vector>

namespace {

using Rounds = std::vector<RoundObservation>;
using SMR = StaMultiResult;

const StationRecord STATION = qtest::station(1000.0, 2000.0, 50.0, 1, 1, 1.5, 1.2, 1);
const TargetReading UNREAD = {qtest::NaN, qtest::NaN, qtest::NaN, {}};

// Two targets, both faces, free of errors: face means 100000 / 300000 / 50 m
// to target 1 and 20000 / 320000 / 80 m to target 2.
RoundObservation clean_round()
{
    return {{100000.0, 300000.0, 50.0, {}},
            {20000.0, 320000.0, 80.0, {}},
            {748000.0, 996000.0, 50.0, {}},
            {668000.0, 976000.0, 80.0, {}}};
}

// One reading of one round set to a value.
struct Edit {
    int round;
    TargetReading RoundObservation::*pointing;
    double TargetReading::*field;
    double value;
};
const auto F1T1 = &RoundObservation::Face1Target1, F1T2 = &RoundObservation::Face1Target2;
const auto F2T1 = &RoundObservation::Face2Target1, F2T2 = &RoundObservation::Face2Target2;
const auto HZ = &TargetReading::Hz, V = &TargetReading::V;

Rounds edited(int count, const std::vector<Edit>& edits)
{
    Rounds rounds(count, clean_round());
    for (const Edit& e : edits) {
        (rounds[e.round].*e.pointing).*e.field = e.value;
    }
    return rounds;
}

SMR record(std::int32_t mode, double tolerance = 1000.0)
{
    SMR r = qtest::sentinel_filled<SMR>();
    r.TolIndexDiff = r.TolZenithRange = r.TolFaceAngleDiff = tolerance;
    r.Tol2CDiff = r.TolDirectionRange = tolerance;
    r.SkipChecks = 0;
    r.ObsMode = mode;
    r.Station = &STATION;
    r.Scale = 1.0;
    return r;
}

// True when every byte of the record from offset `from` up to `to` keeps
// the sentinel.
bool untouched_bytes(const SMR& r, std::size_t from, std::size_t to)
{
    const unsigned char* bytes = reinterpret_cast<const unsigned char*>(&r);
    for (std::size_t i = from; i < to; ++i) {
        if (bytes[i] != qtest::SENTINEL_BYTE) {
            return false;
        }
    }
    return true;
}

} // namespace

TEST(StationRounds, NoRoundsAndUnknownModesWriteOnlyTheFlag)
{
    const RoundObservation round = clean_round();
    const int cases[][4] = {{0, 2, 1, 6}, {1, 4, 0, 0}, {1, -1, 0, 0}}; // n, mode, status, flag
    for (const auto& c : cases) {
        SMR r = record(c[1]);
        EXPECT_EQ(LIB_STAMultCycleCal(&round, static_cast<std::uint32_t>(c[0]), &r), c[2]);
        EXPECT_EQ(r.ErrorFlag, c[3]);
        EXPECT_TRUE(untouched_bytes(r, 0, offsetof(SMR, ErrorFlag)));
    }
}

TEST(StationRounds, FaceMeanWrapsOncePastTheFullCircle)
{
    const double cases[][3] = {
        {648100.0, 100.0, 648100.0}, {100.0, 648100.0, 100.0}, {1295990.0, 647980.0, 1295985.0}};
    for (const auto& c : cases) {
        RoundObservation round = {
            {c[0], 300000.0, 50.0, {}}, UNREAD, {c[1], 996000.0, 50.0, {}}, UNREAD}; // one target
        SMR r = record(0);
        ASSERT_EQ(LIB_STAMultCycleCal(&round, 1, &r), 0);
        EXPECT_BITS(r.MeanHz1, c[2]) << c[0];
        EXPECT_BITS(r.MeanHz1Copy, c[2]);
        EXPECT_BITS(r.MeanV1, 300000.0);
        EXPECT_BITS(r.MeanSlope1, 50.0);
        // Neither the target-2 fields, nor Angle12, nor the copy of MeanHz2.
        EXPECT_TRUE(untouched_bytes(r, offsetof(SMR, MeanHz2), offsetof(SMR, MeanHz1Copy)));
    }
}

TEST(StationRounds, MeansAngleAndReducedPoints)
{
    Rounds rounds = {clean_round(), clean_round()};
    rounds[1].Face1Target1.Hz += 6.0;
    rounds[1].Face2Target1.Hz += 6.0;
    rounds[1].Face1Target2.SlopeDist = 80.5;
    rounds[1].Face2Target2.SlopeDist = 80.25;
    SMR r = record(2);
    r.Scale = 1.0005;
    ASSERT_EQ(LIB_STAMultCycleCal(rounds.data(), 2, &r), 0);
    EXPECT_BITS(r.MeanHz1, 100003.0);
    EXPECT_BITS(r.MeanV2, 320000.0);
    EXPECT_BITS(r.MeanSlope2, 80.1875);
    EXPECT_BITS(r.Angle12, 80003.0);
    EXPECT_BITS(r.MeanHz1Copy, 100003.0);
    EXPECT_TRUE(untouched_bytes(r, offsetof(SMR, Reserved), offsetof(SMR, StationPoint)));
    // Reduced with the station's refraction and the record's scale; the point
    // lies along the mean direction, at the station's H plus the vertical
    // difference (no instrument or target height).
    DistanceRecord d;
    LIB_DistConvert(&STATION, 1.0005, 80.1875, 320000.0, &d);
    EXPECT_BITS(r.HorizDist2, d.HorizontalDistance);
    EXPECT_BITS(r.VertDiff2, d.VerticalDifference);
    EXPECT_BITS(r.HeightDiff2, d.HeightDifference);
    const SurveyPoint sight[2] = {{1000.0, 2000.0, 50.0}, r.Point2};
    BearingRecord bearing;
    ASSERT_EQ(LIB_CalDist(sight, &bearing), 0);
    EXPECT_NEAR(bearing.Azimuth, 20000.0, 1e-6);
    EXPECT_NEAR(bearing.HorizontalDistance, d.HorizontalDistance, 1e-9);
    EXPECT_BITS(r.Point2.H, 50.0 + d.VerticalDifference);
}

TEST(StationRounds, AbsoluteFaceMeansRawFaceIMeansAndPointsOutOfRange)
{
    // Face means (-1400000 + 52000) / 2 and (0 - 948000) / 2, taken absolute;
    // a slope distance of 4e8 m places the point out of range: zeros.
    RoundObservation round = {{-1400000.0, -948000.0, 4e8, {}},
                              {20000.0, 320000.0, 80.0, {}},
                              {700000.0, 1296000.0, 4e8, {}},
                              UNREAD};
    SMR both = record(0);
    both.SkipChecks = 1;
    ASSERT_EQ(LIB_STAMultCycleCal(&round, 1, &both), 0);
    EXPECT_BITS(both.MeanHz1, 674000.0);
    EXPECT_BITS(both.MeanV1, 474000.0);
    EXPECT_GT(std::fabs(both.HorizDist1), qtest::LIMIT);
    EXPECT_BITS(both.Point1.X, 0.0);
    EXPECT_BITS(both.Point1.Y, 0.0);
    EXPECT_BITS(both.Point1.H, 0.0);
    // Raw face I readings are not made absolute; the angle is turned once.
    round.Face2Target1 = UNREAD;
    SMR face1 = record(1);
    face1.SkipChecks = 1;
    ASSERT_EQ(LIB_STAMultCycleCal(&round, 1, &face1), 0);
    EXPECT_BITS(face1.MeanHz1, -1400000.0);
    EXPECT_BITS(face1.Angle12, -124000.0);
}

// Each test passes with its quantity at the tolerance and fails just above;
// every output is written either way.
TEST(StationRounds, ToleranceAtAndJustAboveItsLimit)
{
    struct Case {
        const char* name;
        std::int32_t mode;
        int rounds;
        std::vector<Edit> edits;
        double SMR::*tolerance;
        double quantity;
        std::int32_t flag;
    };
    // clang-format off
    const Case cases[] = {
        {"index error", 2, 1, {{0, F2T1, V, 996002.0}}, &SMR::TolIndexDiff, 1.0, 1},
        {"zenith spread of face means", 2, 2, {{1, F1T1, V, 300003.0}, {1, F2T1, V, 995997.0}},
         &SMR::TolZenithRange, 3.0, 2},
        {"zenith spread, target 2", 3, 2, {{1, F1T2, V, 319998.5}, {1, F2T2, V, 976001.5}},
         &SMR::TolZenithRange, 1.5, 2},
        {"face angle", 2, 1, {{0, F2T2, HZ, 667996.0}}, &SMR::TolFaceAngleDiff, 4.0, 3},
        // Face II below a half circle: 5 - (647995 + 648000), not 10".
        {"2C not normalised", 2, 1, {{0, F1T1, HZ, 5.0}, {0, F2T1, HZ, 647995.0}},
         &SMR::Tol2CDiff, 1295990.0, 4},
        // Face means 647995 and 648005, but unwrapped means 647995 and 5.
        {"direction spread of unwrapped means", 2, 2, {{0, F1T1, HZ, 647995.0},
         {0, F2T1, HZ, 1295995.0}, {1, F1T1, HZ, 648005.0}, {1, F2T1, HZ, 5.0}},
         &SMR::TolDirectionRange, 647990.0, 5},
        {"raw face I zenith, one target", 0, 2, {{1, F1T1, V, 300002.0}},
         &SMR::TolZenithRange, 2.0, 2},
        {"raw face I direction over three rounds", 0, 3,
         {{1, F1T1, HZ, 100002.0}, {2, F1T1, HZ, 99999.5}}, &SMR::TolDirectionRange, 2.5, 5},
        {"face I zenith, target 2", 1, 2, {{1, F1T2, V, 320002.0}}, &SMR::TolZenithRange, 2.0, 2},
        {"face I direction, target 2", 1, 2, {{1, F1T2, HZ, 19993.0}},
         &SMR::TolDirectionRange, 7.0, 5},
    };
    // clang-format on
    for (const Case& c : cases) {
        const Rounds rounds = edited(c.rounds, c.edits);
        for (double limit : {c.quantity, std::nextafter(c.quantity, 0.0)}) {
            const bool fails = limit < c.quantity;
            SMR r = record(c.mode);
            r.*c.tolerance = limit;
            EXPECT_EQ(LIB_STAMultCycleCal(rounds.data(), c.rounds, &r), fails ? 1 : 0) << c.name;
            EXPECT_EQ(r.ErrorFlag, fails ? c.flag : 0) << c.name;
            EXPECT_FALSE(qtest::untouched(r.MeanHz1)) << c.name;
            EXPECT_FALSE(qtest::untouched(r.StationPoint)) << c.name;
        }
    }
}

// Only the first failure is kept, in the order the tests run and the rounds
// come; skipped tests never fail. A not-a-number reading fails every
// comparison, so it never widens a spread, and in the first round it leaves
// the extremes undefined for good.
TEST(StationRounds, WhichFailureIsRecorded)
{
    const double N = qtest::NaN;
    struct Case {
        const char* name;
        std::int32_t mode;
        int rounds;
        double tolerance;
        std::int32_t skip;
        std::vector<Edit> edits;
        std::int32_t flag;
    };
    // clang-format off
    const Case cases[] = {
        {"index error before face angle", 2, 1, 5.0, 0,
         {{0, F2T1, V, 996020.0}, {0, F2T2, HZ, 667980.0}}, 1},
        {"face angle in round 1, index error in round 2", 2, 2, 15.0, 0,
         {{0, F2T2, HZ, 667980.0}, {1, F2T1, V, 996020.0}, {1, F1T1, V, 299980.0}}, 3},
        {"skipped", 2, 2, 0.0, 1, {{0, F2T1, V, 996020.0}, {1, F1T1, HZ, 0.0}}, 0},
        {"skipped, any non-zero", 2, 2, 0.0, -1, {{0, F2T1, V, 996020.0}}, 0},
        {"not-a-number between", 0, 3, 1.0, 0, {{1, F1T1, V, N}}, 0},
        {"not-a-number, then a spread", 0, 3, 1.0, 0, {{1, F1T1, V, N}, {2, F1T1, V, 300002.0}}, 2},
        {"not-a-number first", 0, 3, 1.0, 0, {{0, F1T1, V, N}, {2, F1T1, V, 300002.0}}, 0},
    };
    // clang-format on
    for (const Case& c : cases) {
        const Rounds rounds = edited(c.rounds, c.edits);
        SMR r = record(c.mode, c.tolerance);
        r.SkipChecks = c.skip;
        EXPECT_EQ(LIB_STAMultCycleCal(rounds.data(), c.rounds, &r), c.flag == 0 ? 0 : 1) << c.name;
        EXPECT_EQ(r.ErrorFlag, c.flag) << c.name;
    }
}

TEST(StationRounds, ModeThreeIsModeTwo)
{
    const Rounds rounds = edited(3, {{1, F1T2, HZ, 20003.0},
                                     {2, F2T1, V, 995996.0},
                                     {2, F2T2, &TargetReading::SlopeDist, 80.123}});
    SMR two = record(2, 2.0);
    SMR three = record(3, 2.0);
    EXPECT_EQ(LIB_STAMultCycleCal(rounds.data(), 3, &two), 1);
    EXPECT_EQ(LIB_STAMultCycleCal(rounds.data(), 3, &three), 1);
    three.ObsMode = 2;
    EXPECT_EQ(std::memcmp(&two, &three, sizeof two), 0);
}
