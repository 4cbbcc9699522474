// A traverse whose stations were each observed in several rounds: angular
// closure and its distribution, azimuths carried along the legs, coordinate
// increments, closure on the known end, distribution of the misclosures and
// the coordinates of every station.
#include "traverse.hpp"

#include <cstdlib>

using namespace quillon;

namespace {

// Rules of distribution: DistributionRule for the plan, HeightRule for the
// heights.
enum PlanRule : std::int32_t { BY_LENGTH = 0, BY_INCREMENT = 1 };
enum HeightRule : std::int32_t { HEIGHT_SHARED = 0, HEIGHT_ZEROED = 1 };

// ValidMask: the bits of the written result doubles, by traverse form.
enum ResultMask : std::int32_t {
    MASK_OPEN = 3,
    MASK_START_ORIENTED = 999,
    MASK_ANGLE_CLOSED = 1023
};

// The known end of the traverse and the two known azimuths. A loop closes on
// its start, a polygon on B. A failing azimuth (coincident points) leaves 0.
struct KnownEnds {
    SurveyPoint end;
    double start_azimuth;
    double closing_azimuth;
};

KnownEnds known_ends(const TraverseControl& control, std::int32_t type)
{
    SurveyPoint end = control.E;
    SurveyPoint end_orientation = control.G;
    if (type == ROUNDS_LOOP) {
        end = control.A;
        end_orientation = control.B;
    } else if (type == ROUNDS_POLYGON) {
        end = control.B;
        end_orientation = control.A;
    }
    const double start_azimuth = azimuth_or(control.B, control.A, 0.0);
    double closing_azimuth = 0.0;
    if (type == ROUNDS_LOOP || type == ROUNDS_CONNECTING) {
        closing_azimuth = azimuth_or(end, end_orientation, 0.0);
    }
    return {end, start_azimuth, closing_azimuth};
}

// Observed station angles into the work array, summed in station order.
double fill_observed_angles(const TraverseStation* stations, std::uint32_t n, StationAngle* work)
{
    double angle_sum = 0.0;
    for (std::uint32_t i = 0; i < n; ++i) {
        work[i].observed = stations[i].Angle12;
        work[i].index = static_cast<std::int32_t>(i);
        angle_sum = angle_sum + stations[i].Angle12;
    }
    return angle_sum;
}

// The angular misclosure of a loop or a connecting traverse (against the
// closing azimuth) or of a polygon (against its half circles); 0 for the
// forms that do not close their angles.
double angular_misclosure(const TraverseStation* stations, std::uint32_t n, std::int32_t type,
                          const KnownEnds& known, StationAngle* work)
{
    if (type == ROUNDS_LOOP || type == ROUNDS_CONNECTING) {
        const double angle_sum = fill_observed_angles(stations, n, work);
        const double carried =
            whole_seconds(known.start_azimuth + angle_sum - static_cast<double>(n) * HALF_CIRCLE) +
            FULL_CIRCLE;
        const double computed_azimuth = circle_remainder(carried);
        return computed_azimuth - known.closing_azimuth;
    }
    if (type == ROUNDS_POLYGON) {
        const double angle_sum = fill_observed_angles(stations, n, work);
        // The polygon's half circles are counted in unsigned 32-bit arithmetic.
        const std::uint32_t polygon_sum = (n - 2u) * static_cast<std::uint32_t>(HALF_CIRCLE);
        return angle_sum - static_cast<double>(polygon_sum);
    }
    return 0.0;
}

// An equal share of the angular misclosure comes off every angle. The
// whole seconds left over after the shares go, one each, to the first
// stations; with the share from a double division that remainder is 0 but
// for rounding noise.
void correct_angles(const TraverseStation* stations, std::uint32_t n, double angular_misclosure,
                    StationAngle* work)
{
    const double share = angular_misclosure / static_cast<double>(n);
    const double left_over = std::fabs(angular_misclosure - share * static_cast<double>(n));
    const std::int64_t extra_seconds = to_int32_truncated(left_over);
    for (std::uint32_t i = 0; i < n; ++i) {
        double corrected = stations[i].Angle12 + (-share);
        if (static_cast<std::int64_t>(i) < extra_seconds) {
            corrected = corrected + 1.0;
        }
        work[i].corrected = corrected;
    }
}

// Forms 3 and 4 take the observed angles as they are.
void keep_observed_angles(const TraverseStation* stations, std::uint32_t n, StationAngle* work)
{
    for (std::uint32_t i = 0; i < n; ++i) {
        work[i].corrected = stations[i].Angle12;
    }
}

// Azimuths carried along the traverse, the last station included. The
// value can run past a full circle; only a negative one is turned.
void carry_azimuths(TraverseStation* stations, std::uint32_t n, double start_azimuth,
                    const StationAngle* work)
{
    double azimuth = start_azimuth;
    for (std::uint32_t i = 0; i < n; ++i) {
        azimuth = add_turn_if_negative<ArcSeconds>((azimuth - HALF_CIRCLE) + work[i].corrected);
        stations[i].Azimuth = azimuth;
    }
}

// Sums over the legs: of the increments, of the lengths and of the absolute
// increments.
struct LegSums {
    double dx = 0.0, dy = 0.0, dh = 0.0;
    double dist = 0.0;
    double abs_dx = 0.0, abs_dy = 0.0;
};

// Coordinate increments of the n - 1 legs, and their sums.
LegSums form_increments(TraverseStation* stations, std::uint32_t legs)
{
    LegSums sums;
    for (std::uint32_t i = 0; i < legs; ++i) {
        TraverseStation& leg = stations[i];
        const double a = sec_to_rad(leg.Azimuth);
        leg.DeltaX = std::cos(a) * leg.HorizDist1;
        leg.DeltaY = std::sin(a) * leg.HorizDist1;
        leg.DeltaH = leg.VertDiff1;
        sums.dx = sums.dx + leg.DeltaX;
        sums.dy = sums.dy + leg.DeltaY;
        sums.dh = sums.dh + leg.DeltaH;
        sums.dist = sums.dist + leg.HorizDist1;
        sums.abs_dx = sums.abs_dx + std::fabs(leg.DeltaX);
        sums.abs_dy = sums.abs_dy + std::fabs(leg.DeltaY);
    }
    return sums;
}

// Closure on the known end: misclosures in X, Y and H, the linear misclosure
// and its ratio to the length.
struct Misclosure {
    double fx = 0.0, fy = 0.0, fh = 0.0;
    double fs = 0.0;
    double relative = 0.0;
};

// The corrections of every leg by the plan rule and the height rule; any
// other plan rule corrects nothing, heights included.
void distribute_misclosure(TraverseStation* stations, std::uint32_t n,
                           const TraverseControl& control, const LegSums& sums, const Misclosure& m)
{
    const std::int32_t plan_rule = control.DistributionRule;
    const std::int32_t height_rule = control.HeightRule;
    if (plan_rule != BY_LENGTH && plan_rule != BY_INCREMENT) {
        return;
    }
    for (std::uint32_t i = 0; i + 1 < n; ++i) {
        TraverseStation& leg = stations[i];
        double vx = 0.0;
        double vy = 0.0;
        if (plan_rule == BY_LENGTH) {
            vx = -((leg.HorizDist1 * m.fx) * (1.0 / sums.dist));
            vy = -((leg.HorizDist1 * m.fy) * (1.0 / sums.dist));
        } else {
            // The signed increment weighs, the sum of absolute increments
            // divides.
            vx = -((leg.DeltaX * m.fx) * (1.0 / sums.abs_dx));
            vy = -((leg.DeltaY * m.fy) * (1.0 / sums.abs_dy));
        }
        leg.CorrX = vx;
        leg.CorrY = vy;
        leg.AdjDeltaX = leg.DeltaX + vx;
        leg.AdjDeltaY = leg.DeltaY + vy;
        if (height_rule == HEIGHT_SHARED) {
            // Shared over the stations, not the legs: one share of the
            // misclosure stays undistributed.
            const double vh = -m.fh / static_cast<double>(n);
            leg.CorrH = vh;
            leg.AdjDeltaH = leg.DeltaH + vh;
        } else if (height_rule == HEIGHT_ZEROED) {
            leg.CorrH = 0.0;
            leg.AdjDeltaH = 0.0;
        }
    }
}

// An open traverse is not adjusted: its increments are taken as they are.
void keep_increments(TraverseStation* stations, std::uint32_t legs)
{
    for (std::uint32_t i = 0; i < legs; ++i) {
        TraverseStation& leg = stations[i];
        leg.AdjDeltaX = leg.DeltaX;
        leg.AdjDeltaY = leg.DeltaY;
        leg.AdjDeltaH = leg.DeltaH;
    }
}

// Coordinates from the first station's own record, not from A.
void accumulate_coordinates(TraverseStation* stations, std::uint32_t legs)
{
    SurveyPoint position = stations[0].StationPoint;
    for (std::uint32_t i = 0; i < legs; ++i) {
        TraverseStation& leg = stations[i];
        position.X = position.X + leg.AdjDeltaX;
        position.Y = position.Y + leg.AdjDeltaY;
        position.H = position.H + leg.AdjDeltaH;
        leg.LegEnd = position;
    }
}

// The result doubles of the form, and the mask of those written.
void write_result(TraverseResult* result, std::int32_t type, std::uint32_t n, const LegSums& sums,
                  const Misclosure& m, double angular)
{
    result->SumDist = sums.dist;
    result->StationCount = static_cast<double>(n);
    if (type == ROUNDS_OPEN) {
        result->ValidMask = MASK_OPEN;
        return;
    }
    result->LinearMisclosure = m.fs;
    result->Fx = m.fx;
    result->Fy = m.fy;
    result->HeightMisclosure2 = m.fh;
    result->HeightRatio = m.fh / sums.dist;
    result->Relative = m.relative;
    if (type == ROUNDS_START_ORIENTED) {
        result->ValidMask = MASK_START_ORIENTED;
        return;
    }
    result->HeightMisclosure = m.fh;
    result->AngularMisclosure = angular;
    result->ValidMask = MASK_ANGLE_CLOSED;
}

// Angles closed and corrected, azimuths carried, increments formed, closed on
// the known end and distributed, coordinates accumulated, result written.
ResultCode adjust_traverse(TraverseStation* stations, std::uint32_t n,
                           const TraverseControl& control, TraverseResult* result,
                           StationAngle* work)
{
    const std::int32_t type = control.TraverseType;
    if (type < ROUNDS_LOOP || type > ROUNDS_OPEN) {
        return OK;
    }
    const KnownEnds known = known_ends(control, type);
    const double angular = angular_misclosure(stations, n, type, known, work);
    if (type == ROUNDS_LOOP || type == ROUNDS_POLYGON || type == ROUNDS_CONNECTING) {
        correct_angles(stations, n, angular, work);
    } else {
        keep_observed_angles(stations, n, work);
    }
    carry_azimuths(stations, n, known.start_azimuth, work);

    const std::uint32_t legs = n - 1;
    const LegSums sums = form_increments(stations, legs);
    Misclosure m;
    if (type != ROUNDS_OPEN) {
        const SurveyPoint& start = control.A;
        m.fx = sums.dx - (known.end.X - start.X);
        m.fy = sums.dy - (known.end.Y - start.Y);
        m.fh = sums.dh - (known.end.H - start.H);
        // Without length there is nothing to weigh the misclosures by.
        if (sums.dist == 0.0) {
            return DOMAIN;
        }
        m.fs = std::sqrt(m.fy * m.fy + m.fx * m.fx);
        m.relative = (1.0 / sums.dist) * m.fs;
        distribute_misclosure(stations, n, control, sums, m);
    } else {
        keep_increments(stations, legs);
    }
    accumulate_coordinates(stations, legs);
    write_result(result, type, n, sums, m, angular);
    return OK;
}

void* allocate_cleared(std::size_t count, std::size_t size) { return std::calloc(count, size); }

void release(void* block) { std::free(block); }

} // namespace

namespace quillon {

ResultCode multi_round_traverse(TraverseStation* stations, std::uint32_t n,
                                const TraverseControl& control, TraverseResult* result,
                                const WorkAllocator& allocator)
{
    if (n < 2) {
        return DOMAIN;
    }
    void* block = allocator.allocate(n, sizeof(StationAngle));
    if (block == nullptr) {
        return DOMAIN;
    }
    // One release point for every path out of the computation.
    const ResultCode status =
        adjust_traverse(stations, n, control, result, static_cast<StationAngle*>(block));
    allocator.release(block);
    return status;
}

} // namespace quillon

ResultCode LIB_TRSMultCycleCal(TraverseStation* stations, std::uint32_t n,
                               const TraverseControl* control, TraverseResult* result)
{
    const WorkAllocator heap = {allocate_cleared, release};
    return multi_round_traverse(stations, n, *control, result, heap);
}
