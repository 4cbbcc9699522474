// Multi-round observation at a station: means, tolerance tests, reduced target points.
#include "check.hpp"
#include "records.hpp"

#include <tuple>
#include <vector>

using qtest::Call;
using qtest::rows;

namespace {

using Rounds = std::vector<RoundObservation>;
using SMR = StaMultiResult;

const StationRecord STATION = qtest::station(1000.0, 2000.0, 50.0, 1, 1, 1.5, 1.2, 1);

// Two targets, both faces, free of errors: face means 100000 / 300000 / 50 m
// to target 1 and 20000 / 320000 / 80 m to target 2.
const RoundObservation CLEAN = {{100000.0, 300000.0, 50.0, {}},
                                {20000.0, 320000.0, 80.0, {}},
                                {748000.0, 996000.0, 50.0, {}},
                                {668000.0, 976000.0, 80.0, {}}};

// One reading of one round set to a value: round, pointing, reading, value.
using Edit = std::tuple<int, TargetReading RoundObservation::*, double TargetReading::*, double>;
const auto F1T1 = &RoundObservation::Face1Target1, F1T2 = &RoundObservation::Face1Target2;
const auto F2T1 = &RoundObservation::Face2Target1, F2T2 = &RoundObservation::Face2Target2;
const auto HZ = &TargetReading::Hz, V = &TargetReading::V;

Rounds edited(int count, const std::vector<Edit>& edits)
{
    Rounds rounds(count, CLEAN);
    for (const auto& [round, pointing, reading, value] : edits) {
        (rounds[round].*pointing).*reading = value;
    }
    return rounds;
}

SMR record(std::int32_t mode, double tolerance = 1000.0, std::int32_t skip = 0)
{
    SMR r = qtest::sentinel_filled<SMR>();
    r.TolIndexDiff = r.TolZenithRange = r.TolFaceAngleDiff = tolerance;
    r.Tol2CDiff = r.TolDirectionRange = tolerance;
    r.SkipChecks = skip;
    r.ObsMode = mode;
    r.Station = &STATION;
    r.Scale = 1.0005;
    return r;
}

// Rounds edited from clean ones and the flag raised: a named tolerance passes at `limit`
// and fails at the next double below; without one, every tolerance is `limit`.
struct FlagCase {
    std::int32_t mode, rounds;
    std::vector<Edit> edits;
    double SMR::*tolerance;
    double limit;
    std::int32_t flag, skip;
};
// clang-format off
const FlagCase FLAG_CASES[] = {
    {2, 1, {{0, F2T1, V, 996002.0}}, &SMR::TolIndexDiff, 1.0, 1, 0},
    {2, 2, {{1, F1T1, V, 300003.0}, {1, F2T1, V, 995997.0}}, &SMR::TolZenithRange, 3.0, 2, 0},
    {3, 2, {{1, F1T2, V, 319998.5}, {1, F2T2, V, 976001.5}}, &SMR::TolZenithRange, 1.5, 2, 0},
    {2, 1, {{0, F2T2, HZ, 667996.0}}, &SMR::TolFaceAngleDiff, 4.0, 3, 0},
    // 2C not normalised: face II below a half circle gives 5 - (647995 + 648000).
    {2, 1, {{0, F1T1, HZ, 5.0}, {0, F2T1, HZ, 647995.0}}, &SMR::Tol2CDiff, 1295990.0, 4, 0},
    // Face means 647995 and 648005, but unwrapped means 647995 and 5.
    {2, 2, {{0, F1T1, HZ, 647995.0}, {0, F2T1, HZ, 1295995.0}, {1, F1T1, HZ, 648005.0},
            {1, F2T1, HZ, 5.0}}, &SMR::TolDirectionRange, 647990.0, 5, 0},
    {0, 2, {{1, F1T1, V, 300002.0}}, &SMR::TolZenithRange, 2.0, 2, 0}, // raw face I readings
    {0, 3, {{1, F1T1, HZ, 100002.0}, {2, F1T1, HZ, 99999.5}}, &SMR::TolDirectionRange, 2.5, 5, 0},
    {1, 2, {{1, F1T2, V, 320002.0}}, &SMR::TolZenithRange, 2.0, 2, 0},
    {1, 2, {{1, F1T2, HZ, 19993.0}}, &SMR::TolDirectionRange, 7.0, 5, 0},
    // The first failure is kept, in test and round order; skipped tests never fail. A NaN
    // fails every comparison: it never widens a spread, and in round 1 leaves it undefined.
    {2, 1, {{0, F2T1, V, 996020.0}, {0, F2T2, HZ, 667980.0}}, nullptr, 5.0, 1, 0},
    {2, 2, {{0, F2T2, HZ, 667980.0}, {1, F2T1, V, 996040.0}}, nullptr, 15.0, 3, 0},
    {3, 2, {{0, F2T1, V, 996020.0}}, nullptr, 0.0, 0, -1},
    {0, 3, {{1, F1T1, V, qtest::NaN}}, nullptr, 1.0, 0, 0},
    {0, 3, {{1, F1T1, V, qtest::NaN}, {2, F1T1, V, 300002.0}}, nullptr, 1.0, 2, 0},
    {0, 3, {{0, F1T1, V, qtest::NaN}, {2, F1T1, V, 300002.0}}, nullptr, 1.0, 0, 0},
    // No rounds, and modes outside 0 to 3: only the flag is written.
    {2, 0, {}, nullptr, 1.0, 6, 0}, {4, 1, {}, nullptr, 1.0, 0, 0}, {-1, 1, {}, nullptr, 1.0, 0, 0},
};
// clang-format on

} // namespace

TEST(StationRounds, ToleranceTestsAndTheFlagKept)
{
    for (const auto& [row, c] : rows("LIB_STAMultCycleCal", FLAG_CASES)) {
        const Rounds rounds = edited(c.rounds, c.edits);
        const double below = std::nextafter(c.limit, 0.0);
        for (double limit : {c.limit, below}) {
            const Call call = row.at(limit == below ? "the next double below" : "at the limit");
            SMR r = record(c.mode, c.tolerance == nullptr ? limit : 1000.0, c.skip);
            if (c.tolerance != nullptr) {
                r.*c.tolerance = limit;
            }
            const SMR given = r;
            const bool fails = c.flag != 0 && (c.tolerance == nullptr || limit == below);
            EXPECT_STATUS(call, LIB_STAMultCycleCal(rounds.data(), c.rounds, &r), fails ? 1 : 0);
            EXPECT_BITS(call, r.ErrorFlag, fails ? c.flag : 0);
            // Every output is written, failed or not, unless the call is refused:
            // then the flag alone is.
            const bool refused = c.rounds == 0 || c.mode < 0 || c.mode > 3;
            if (refused) {
                SMR flag_only = given;
                flag_only.ErrorFlag = r.ErrorFlag;
                EXPECT_BITS(call, r, flag_only);
            } else {
                EXPECT_WRITTEN(call, r.StationPoint);
            }
        }
    }
}

TEST(StationRounds, MeansAndReducedPoints)
{
    const double S = qtest::sentinel_double();
    // Face means wrap once past the full circle, and one target leaves target 2 unwritten.
    const struct {
        std::int32_t mode;
        std::uint32_t rounds;
        double face1_direction, face2_direction; // to target 1 in the first round
        double slope, mean, angle12;
    } cases[] = {
        {0, 1, 648100.0, 100.0, 50.0, 648100.0, S},
        {0, 1, 100.0, 648100.0, 50.0, 100.0, S},
        {0, 1, 1295990.0, 647980.0, 50.0, 1295985.0, S},
        // (-1400000 + 52000) / 2 taken absolute; a point out of range is left as zeros.
        {0, 1, -1400000.0, 700000.0, 4e8, 674000.0, S},
        // Raw face I means stay negative; the angle to target 2 is turned once.
        {1, 1, -1400000.0, 700000.0, 50.0, -1400000.0, -124000.0},
        {2, 2, 100006.0, 748006.0, 50.0, 100003.0, 80003.0}, // over two rounds
    };
    for (const auto& [call, c] : rows("LIB_STAMultCycleCal", cases)) {
        Rounds rounds = edited(static_cast<int>(c.rounds), {{0, F1T1, HZ, c.face1_direction},
                                                            {0, F2T1, HZ, c.face2_direction}});
        rounds[0].Face1Target1.SlopeDist = rounds[0].Face2Target1.SlopeDist = c.slope;
        SMR r = record(c.mode);
        ASSERT_STATUS(call, LIB_STAMultCycleCal(rounds.data(), c.rounds, &r), 0);
        EXPECT_BITS(call, r.MeanHz1, c.mean);
        EXPECT_BITS(call, r.MeanHz1Copy, c.mean);
        EXPECT_BITS(call, r.Angle12, c.angle12);
        const bool two_targets = c.mode != 0;
        EXPECT_WRITTEN_IF(call, r.MeanHz2, two_targets);
        EXPECT_WRITTEN_IF(call, r.MeanV2, two_targets);
        EXPECT_WRITTEN_IF(call, r.MeanSlope2, two_targets);
        EXPECT_WRITTEN_IF(call, r.HorizDist2, two_targets);
        EXPECT_WRITTEN_IF(call, r.VertDiff2, two_targets);
        EXPECT_WRITTEN_IF(call, r.Point2, two_targets);
        EXPECT_WRITTEN_IF(call, r.HeightDiff2, two_targets);
        EXPECT_WRITTEN_IF(call, r.MeanHz2Copy, two_targets);
        EXPECT_UNTOUCHED(call, r.Reserved);
        // Reduced with the station's refraction and the record's scale; the point lies
        // along the mean direction (to the 0.02" pi as 3.1415926 leaves) at the
        // station's H plus the vertical difference, without instrument or target height.
        DistanceRecord d;
        ASSERT_STATUS(call.of("LIB_DistConvert"),
                      LIB_DistConvert(&STATION, 1.0005, c.slope, 300000.0, &d), 0);
        EXPECT_BITS(call, r.HorizDist1, d.HorizontalDistance);
        if (c.slope > 1e8) {
            EXPECT_BITS(call, r.Point1, (SurveyPoint{0.0, 0.0, 0.0}));
            continue;
        }
        const SurveyPoint sight[2] = {{1000.0, 2000.0, 50.0}, r.Point1};
        BearingRecord bearing;
        ASSERT_STATUS(call.of("LIB_CalDist"), LIB_CalDist(sight, &bearing), 0);
        EXPECT_WITHIN(call, bearing.Azimuth, std::fmod(c.mean + 2592000.0, 1296000.0), 0.03);
        EXPECT_WITHIN(call, bearing.HorizontalDistance, d.HorizontalDistance, 1e-9);
        EXPECT_BITS(call, r.Point1.H, 50.0 + d.VerticalDifference);
    }
}
