// Reduction of face I / face II direction sets observed in several rounds
// from one station to one or two targets, with the field tolerance tests.
#include "traverse.hpp"

using namespace quillon;

namespace {

// Observation programmes (ObsMode); 2 and 3 (two targets, both faces) are
// alike.
enum ObservationMode : std::int32_t { ONE_TARGET = 0, FACE_I_ONLY = 1, LAST_MODE = 3 };

// Tolerance flags (ErrorFlag), in the order the tests run.
enum ToleranceFlag : std::int32_t {
    FLAG_INDEX_DIFF = 1,
    FLAG_ZENITH_RANGE = 2,
    FLAG_FACE_ANGLE_DIFF = 3,
    FLAG_2C_DIFF = 4,
    FLAG_DIRECTION_RANGE = 5,
    FLAG_NO_ROUNDS = 6
};

// Face I and face II pointings of one target in one round.
struct Pointings {
    const TargetReading& face1;
    const TargetReading& face2;
};

// Mean of the two faces' directions; the face II reading is turned back by
// a half circle, and a full circle is added when that turns it negative.
double face_mean_direction(const Pointings& p)
{
    const double t = p.face2.Hz - HALF_CIRCLE;
    if (t < 0.0) {
        return ((p.face1.Hz + t) + FULL_CIRCLE) * 0.5;
    }
    return (p.face1.Hz + t) * 0.5;
}

double face_mean_zenith(const Pointings& p)
{
    return ((FULL_CIRCLE - p.face2.V) + p.face1.V) * 0.5;
}

double face_mean_slope(const Pointings& p) { return (p.face2.SlopeDist + p.face1.SlopeDist) * 0.5; }

double index_error(const Pointings& p) { return ((p.face1.V + p.face2.V) - FULL_CIRCLE) * 0.5; }

// Twice the collimation error, not normalised.
double double_collimation(const Pointings& p)
{
    if (p.face2.Hz < HALF_CIRCLE) {
        return p.face1.Hz - (p.face2.Hz + HALF_CIRCLE);
    }
    return p.face1.Hz - (p.face2.Hz - HALF_CIRCLE);
}

// The face mean as the direction spread sees it: without the full circle
// that the summed mean adds below 648000.
double unwrapped_mean_direction(const Pointings& p)
{
    return ((p.face2.Hz - HALF_CIRCLE) + p.face1.Hz) * 0.5;
}

double angle_between(double first, double second)
{
    return add_turn_if_negative<ArcSeconds>(first - second);
}

// Running maximum minus running minimum of a per-round value; the first
// round sets both.
class Spread {
  public:
    double after(double value, bool first_round)
    {
        if (first_round) {
            highest_ = value;
            lowest_ = value;
        }
        if (value > highest_) {
            highest_ = value;
        }
        if (value < lowest_) {
            lowest_ = value;
        }
        return highest_ - lowest_;
    }

  private:
    double highest_ = 0.0;
    double lowest_ = 0.0;
};

// A test fails only above its tolerance: equal passes.
bool exceeds(double quantity, double tolerance) { return std::fabs(quantity) > tolerance; }

// Only the first failure is kept; computation goes on after it.
void record_failure(std::int32_t* flag, bool failed, std::int32_t which)
{
    if (failed && *flag == 0) {
        *flag = which;
    }
}

struct Sums {
    double direction = 0.0;
    double zenith = 0.0;
    double slope = 0.0;
};

void add_face_means(Sums* sums, const Pointings& p)
{
    sums->direction = sums->direction + face_mean_direction(p);
    sums->zenith = sums->zenith + face_mean_zenith(p);
    sums->slope = sums->slope + face_mean_slope(p);
}

void add_face_i(Sums* sums, const TargetReading& reading)
{
    sums->direction = sums->direction + reading.Hz;
    sums->zenith = sums->zenith + reading.V;
    sums->slope = sums->slope + reading.SlopeDist;
}

// Extremes kept across the rounds for the spread tests.
struct Spreads {
    Spread zenith1;
    Spread zenith2;
    Spread direction1;
    Spread direction2;
};

// The spreads over the rounds of one quantity of target 1 and, where there
// is one, target 2: true when either exceeds the tolerance. Both spreads are
// carried on, whatever the first gives.
bool spread_exceeds(Spread* spread1, double value1, Spread* spread2, const double* value2,
                    bool first_round, double tolerance)
{
    const double range1 = spread1->after(value1, first_round);
    bool failed = exceeds(range1, tolerance);
    if (value2 != nullptr) {
        const double range2 = spread2->after(*value2, first_round);
        failed = failed || exceeds(range2, tolerance);
    }
    return failed;
}

// Both faces to two targets: the five tests in their order. Spreads are of
// face means here, not of raw readings.
void test_two_targets_both_faces(const StaMultiResult& tol, const Pointings& t1,
                                 const Pointings& t2, bool first_round, Spreads* spreads,
                                 std::int32_t* flag)
{
    const double index_difference = index_error(t1) - index_error(t2);
    record_failure(flag, exceeds(index_difference, tol.TolIndexDiff), FLAG_INDEX_DIFF);

    const double zenith2 = face_mean_zenith(t2);
    record_failure(flag,
                   spread_exceeds(&spreads->zenith1, face_mean_zenith(t1), &spreads->zenith2,
                                  &zenith2, first_round, tol.TolZenithRange),
                   FLAG_ZENITH_RANGE);

    const double angle_face1 = angle_between(t1.face1.Hz, t2.face1.Hz);
    const double angle_face2 = angle_between(t1.face2.Hz, t2.face2.Hz);
    record_failure(flag, exceeds(angle_face1 - angle_face2, tol.TolFaceAngleDiff),
                   FLAG_FACE_ANGLE_DIFF);

    const double collimation_difference = double_collimation(t1) - double_collimation(t2);
    record_failure(flag, exceeds(collimation_difference, tol.Tol2CDiff), FLAG_2C_DIFF);

    const double direction2 = unwrapped_mean_direction(t2);
    record_failure(flag,
                   spread_exceeds(&spreads->direction1, unwrapped_mean_direction(t1),
                                  &spreads->direction2, &direction2, first_round,
                                  tol.TolDirectionRange),
                   FLAG_DIRECTION_RANGE);
}

// One target, or face I only: spreads of the raw face I readings. Every
// spread is carried on whether or not another one failed.
void test_face_i_spreads(const StaMultiResult& tol, const TargetReading& target1,
                         const TargetReading* target2, bool first_round, Spreads* spreads,
                         std::int32_t* flag)
{
    record_failure(flag,
                   spread_exceeds(&spreads->zenith1, target1.V, &spreads->zenith2,
                                  target2 != nullptr ? &target2->V : nullptr, first_round,
                                  tol.TolZenithRange),
                   FLAG_ZENITH_RANGE);
    record_failure(flag,
                   spread_exceeds(&spreads->direction1, target1.Hz, &spreads->direction2,
                                  target2 != nullptr ? &target2->Hz : nullptr, first_round,
                                  tol.TolDirectionRange),
                   FLAG_DIRECTION_RANGE);
}

struct TargetResult {
    double direction;
    double zenith;
    double slope;
    DistanceRecord distances;
    SurveyPoint point;
};

// Reduces the mean slope distance and places the target from the station,
// the instrument taken as oriented; the point's height is the station's
// plus the vertical difference, without instrument or target height.
TargetResult reduce_target(const StaMultiResult& record, double direction, double zenith,
                           double slope)
{
    TargetResult target = {direction, zenith, slope, {0.0, 0.0, 0.0, 0.0}, {0.0, 0.0, 0.0}};
    target.distances = reduced_distances(*record.Station, record.Scale, slope, zenith);
    const SurveyPoint station = {record.Station->X, record.Station->Y, record.Station->H};
    const SurveyPoint point = polar_point(station, direction, target.distances.HorizontalDistance,
                                          target.distances.VerticalDifference);
    // A point out of range in plan is left as zeros.
    if (in_range_in_plan(point)) {
        target.point = point;
    }
    return target;
}

// Where one target's results go in the station record.
struct TargetFields {
    double StaMultiResult::*direction;
    double StaMultiResult::*zenith;
    double StaMultiResult::*slope;
    double StaMultiResult::*horizontal_distance;
    double StaMultiResult::*vertical_difference;
    SurveyPoint StaMultiResult::*point;
    double StaMultiResult::*height_difference;
};

constexpr TargetFields TARGET1 = {&StaMultiResult::MeanHz1,    &StaMultiResult::MeanV1,
                                  &StaMultiResult::MeanSlope1, &StaMultiResult::HorizDist1,
                                  &StaMultiResult::VertDiff1,  &StaMultiResult::Point1,
                                  &StaMultiResult::HeightDiff1};
constexpr TargetFields TARGET2 = {&StaMultiResult::MeanHz2,    &StaMultiResult::MeanV2,
                                  &StaMultiResult::MeanSlope2, &StaMultiResult::HorizDist2,
                                  &StaMultiResult::VertDiff2,  &StaMultiResult::Point2,
                                  &StaMultiResult::HeightDiff2};

void write_target(StaMultiResult* out, const TargetFields& fields, const TargetResult& t)
{
    out->*fields.direction = t.direction;
    out->*fields.zenith = t.zenith;
    out->*fields.slope = t.slope;
    out->*fields.horizontal_distance = t.distances.HorizontalDistance;
    out->*fields.vertical_difference = t.distances.VerticalDifference;
    out->*fields.point = t.point;
    out->*fields.height_difference = t.distances.HeightDifference;
}

// What the rounds build up: the sums of each target, the spreads and the
// first failed test.
struct Totals {
    Sums sums1;
    Sums sums2;
    Spreads spreads;
    std::int32_t flag = 0;
};

// One round added to the sums, and its tolerance tests run unless they are
// skipped.
void take_round(const RoundObservation& round, std::int32_t mode, const StaMultiResult& tol,
                bool run_tests, bool first_round, Totals* totals)
{
    if (mode == ONE_TARGET) {
        const Pointings t1 = {round.Face1Target1, round.Face2Target1};
        add_face_means(&totals->sums1, t1);
        if (run_tests) {
            test_face_i_spreads(tol, round.Face1Target1, nullptr, first_round, &totals->spreads,
                                &totals->flag);
        }
    } else if (mode == FACE_I_ONLY) {
        add_face_i(&totals->sums1, round.Face1Target1);
        add_face_i(&totals->sums2, round.Face1Target2);
        if (run_tests) {
            test_face_i_spreads(tol, round.Face1Target1, &round.Face1Target2, first_round,
                                &totals->spreads, &totals->flag);
        }
    } else {
        const Pointings t1 = {round.Face1Target1, round.Face2Target1};
        const Pointings t2 = {round.Face1Target2, round.Face2Target2};
        add_face_means(&totals->sums1, t1);
        add_face_means(&totals->sums2, t2);
        if (run_tests) {
            test_two_targets_both_faces(tol, t1, t2, first_round, &totals->spreads, &totals->flag);
        }
    }
}

// Means over the rounds of one target. Face means are taken absolute; the
// raw face I means are not.
struct TargetMeans {
    double direction;
    double zenith;
    double slope;
};

TargetMeans means_of(const Sums& sums, double k, std::int32_t mode)
{
    TargetMeans means = {k * sums.direction, k * sums.zenith, k * sums.slope};
    if (mode != FACE_I_ONLY) {
        means.direction = std::fabs(means.direction);
        means.zenith = std::fabs(means.zenith);
    }
    return means;
}

} // namespace

ResultCode LIB_STAMultCycleCal(const RoundObservation* rounds, std::uint32_t n,
                               StaMultiResult* result)
{
    result->ErrorFlag = 0;
    if (n == 0) {
        result->ErrorFlag = FLAG_NO_ROUNDS;
        return DOMAIN;
    }
    const std::int32_t mode = result->ObsMode;
    if (mode < ONE_TARGET || mode > LAST_MODE) {
        return OK;
    }
    const bool run_tests = result->SkipChecks == 0;
    Totals totals;
    for (std::uint32_t i = 0; i < n; ++i) {
        take_round(rounds[i], mode, *result, run_tests, i == 0, &totals);
    }

    const double k = 1.0 / static_cast<double>(n);
    const TargetMeans means1 = means_of(totals.sums1, k, mode);
    const TargetMeans means2 = means_of(totals.sums2, k, mode);
    const TargetResult target1 =
        reduce_target(*result, means1.direction, means1.zenith, means1.slope);
    write_target(result, TARGET1, target1);
    if (mode != ONE_TARGET) {
        const double angle12 = angle_between(means1.direction, means2.direction);
        const TargetResult target2 =
            reduce_target(*result, means2.direction, means2.zenith, means2.slope);
        write_target(result, TARGET2, target2);
        result->Angle12 = angle12;
        result->MeanHz2Copy = means2.direction;
    }
    result->MeanHz1Copy = means1.direction;
    result->StationPoint.X = result->Station->X;
    result->StationPoint.Y = result->Station->Y;
    result->StationPoint.H = result->Station->H;
    result->ErrorFlag = totals.flag;
    return totals.flag == 0 ? OK : DOMAIN;
}
