// A traverse whose stations were each observed in several rounds: angular
// closure and its distribution, azimuths carried along the legs, coordinate
// increments, closure on the known end, distribution of the misclosures and
// the coordinates of every station.
#include "traverse.hpp"

#include <cstdlib>

using namespace quillon;

namespace {

// Traverse forms.
constexpr std::int32_t LOOP = 0;           // back to A, orientation on B re-observed
constexpr std::int32_t POLYGON = 1;        // closed polygon, closing on B
constexpr std::int32_t CONNECTING = 2;     // A to E, oriented at both ends
constexpr std::int32_t START_ORIENTED = 3; // A to E, oriented at the start only
constexpr std::int32_t OPEN = 4;           // no closure

constexpr std::int32_t BY_LENGTH = 0;
constexpr std::int32_t BY_INCREMENT = 1;

constexpr std::int32_t HEIGHT_SHARED = 0;
constexpr std::int32_t HEIGHT_ZEROED = 1;

// Bits of the written result doubles.
constexpr std::int32_t MASK_ANGLE_CLOSED = 1023;
constexpr std::int32_t MASK_START_ORIENTED = 999;
constexpr std::int32_t MASK_OPEN = 3;

bool closes_angles(std::int32_t type)
{
    return type == LOOP || type == POLYGON || type == CONNECTING;
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

// Exchange sort by observed angle, largest first. Only the angle and the
// index move; the corrected angles stay addressed by station, so the order
// never reaches a result.
void rank_by_observed_angle(StationAngle* work, std::uint32_t n)
{
    for (std::uint32_t i = 0; i + 1 < n; ++i) {
        for (std::uint32_t j = i + 1; j < n; ++j) {
            if (work[j].observed > work[i].observed) {
                const double angle = work[i].observed;
                const std::int32_t index = work[i].index;
                work[i].observed = work[j].observed;
                work[i].index = work[j].index;
                work[j].observed = angle;
                work[j].index = index;
            }
        }
    }
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
    rank_by_observed_angle(work, n);
    for (std::uint32_t i = 0; i < n; ++i) {
        double corrected = stations[i].Angle12 + (-share);
        if (static_cast<std::int64_t>(i) < extra_seconds) {
            corrected = corrected + 1.0;
        }
        work[i].corrected = corrected;
    }
}

struct LegSums {
    double dx = 0.0;
    double dy = 0.0;
    double dh = 0.0;
    double dist = 0.0;
    double abs_dx = 0.0;
    double abs_dy = 0.0;
};

ResultCode adjust_traverse(TraverseStation* stations, std::uint32_t n,
                           const TraverseControl& control, TraverseResult* result,
                           StationAngle* work)
{
    const std::int32_t type = control.TraverseType;
    if (type < LOOP || type > OPEN) {
        return OK;
    }

    // Known points; a loop closes on its start, a polygon on B. A failing
    // azimuth (coincident points) leaves its value as it stands.
    const SurveyPoint& start = control.A;
    SurveyPoint end = control.E;
    SurveyPoint end_orientation = control.G;
    if (type == LOOP) {
        end = control.A;
        end_orientation = control.B;
    } else if (type == POLYGON) {
        end = control.B;
        end_orientation = control.A;
    }
    const double start_azimuth = azimuth_or(control.B, control.A, 0.0);
    double closing_azimuth = 0.0;
    if (type == LOOP || type == CONNECTING) {
        closing_azimuth = azimuth_or(end, end_orientation, 0.0);
    }

    // Angular closure.
    double angular_misclosure = 0.0;
    if (type == LOOP || type == CONNECTING) {
        const double angle_sum = fill_observed_angles(stations, n, work);
        const double carried =
            whole_seconds(start_azimuth + angle_sum - static_cast<double>(n) * HALF_CIRCLE) +
            FULL_CIRCLE;
        const double computed_azimuth = circle_remainder(carried);
        angular_misclosure = computed_azimuth - closing_azimuth;
    } else if (type == POLYGON) {
        const double angle_sum = fill_observed_angles(stations, n, work);
        // The polygon's half circles are counted in unsigned 32-bit arithmetic.
        const std::uint32_t polygon_sum = (n - 2u) * 648000u;
        angular_misclosure = angle_sum - static_cast<double>(polygon_sum);
    }
    if (closes_angles(type)) {
        correct_angles(stations, n, angular_misclosure, work);
    } else {
        for (std::uint32_t i = 0; i < n; ++i) {
            work[i].corrected = stations[i].Angle12;
        }
    }

    // Azimuths carried along the traverse, the last station included. The
    // value can run past a full circle; only a negative one is turned.
    double azimuth = start_azimuth;
    for (std::uint32_t i = 0; i < n; ++i) {
        azimuth = add_turn_if_negative<ArcSeconds>((azimuth - HALF_CIRCLE) + work[i].corrected);
        stations[i].Azimuth = azimuth;
    }

    // Increments of the n - 1 legs.
    const std::uint32_t legs = n - 1;
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

    double fx = 0.0;
    double fy = 0.0;
    double fh = 0.0;
    double fs = 0.0;
    double relative = 0.0;
    if (type != OPEN) {
        fx = sums.dx - (end.X - start.X);
        fy = sums.dy - (end.Y - start.Y);
        fh = sums.dh - (end.H - start.H);
        // Without length there is nothing to weigh the misclosures by.
        if (sums.dist == 0.0) {
            return DOMAIN;
        }
        fs = std::sqrt(fy * fy + fx * fx);
        relative = (1.0 / sums.dist) * fs;

        const std::int32_t plan_rule = control.DistributionRule;
        const std::int32_t height_rule = control.HeightRule;
        if (plan_rule == BY_LENGTH || plan_rule == BY_INCREMENT) {
            for (std::uint32_t i = 0; i < legs; ++i) {
                TraverseStation& leg = stations[i];
                double vx = 0.0;
                double vy = 0.0;
                if (plan_rule == BY_LENGTH) {
                    vx = -((leg.HorizDist1 * fx) * (1.0 / sums.dist));
                    vy = -((leg.HorizDist1 * fy) * (1.0 / sums.dist));
                } else {
                    // The signed increment weighs, the sum of absolute
                    // increments divides.
                    vx = -((leg.DeltaX * fx) * (1.0 / sums.abs_dx));
                    vy = -((leg.DeltaY * fy) * (1.0 / sums.abs_dy));
                }
                leg.CorrX = vx;
                leg.CorrY = vy;
                leg.AdjDeltaX = leg.DeltaX + vx;
                leg.AdjDeltaY = leg.DeltaY + vy;
                if (height_rule == HEIGHT_SHARED) {
                    // Shared over the stations, not the legs: one share of
                    // the misclosure stays undistributed.
                    const double vh = -fh / static_cast<double>(n);
                    leg.CorrH = vh;
                    leg.AdjDeltaH = leg.DeltaH + vh;
                } else if (height_rule == HEIGHT_ZEROED) {
                    leg.CorrH = 0.0;
                    leg.AdjDeltaH = 0.0;
                }
            }
        }
    } else {
        for (std::uint32_t i = 0; i < legs; ++i) {
            TraverseStation& leg = stations[i];
            leg.AdjDeltaX = leg.DeltaX;
            leg.AdjDeltaY = leg.DeltaY;
            leg.AdjDeltaH = leg.DeltaH;
        }
    }

    // Coordinates from the first station's own record, not from A.
    SurveyPoint position = stations[0].StationPoint;
    for (std::uint32_t i = 0; i < legs; ++i) {
        TraverseStation& leg = stations[i];
        position.X = position.X + leg.AdjDeltaX;
        position.Y = position.Y + leg.AdjDeltaY;
        position.H = position.H + leg.AdjDeltaH;
        leg.LegEnd = position;
    }

    result->SumDist = sums.dist;
    result->StationCount = static_cast<double>(n);
    if (type == OPEN) {
        result->ValidMask = MASK_OPEN;
        return OK;
    }
    result->LinearMisclosure = fs;
    result->Fx = fx;
    result->Fy = fy;
    result->HeightMisclosure2 = fh;
    result->HeightRatio = fh / sums.dist;
    result->Relative = relative;
    if (type == START_ORIENTED) {
        result->ValidMask = MASK_START_ORIENTED;
        return OK;
    }
    result->HeightMisclosure = fh;
    result->AngularMisclosure = angular_misclosure;
    result->ValidMask = MASK_ANGLE_CLOSED;
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
