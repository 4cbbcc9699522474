// Closure of a traverse on a table of legs, step by step, and the small
// self-contained adjustment of computed traverse points.
#include "traverse.hpp"

using namespace quillon;

namespace {

// The steps of a closure, one per call, in the order a program runs them.
enum ClosureStep : unsigned char {
    STEP_CLOSURE = 0,
    STEP_ANGLES = 1,
    STEP_PLAN = 2,
    STEP_HEIGHT = 3
};

// Plan and height closure: the increments are recomputed from each leg's
// length and forward direction; the stored DeltaX and DeltaY are not used.
void close_traverse(const TraverseLeg* legs, unsigned int n, const TraverseKnownPoints& known,
                    TraverseClosure* result)
{
    double sum_x = 0.0;
    double sum_y = 0.0;
    double sum_dist = 0.0;
    double sum_height = 0.0;
    for (unsigned int i = 0; i < n; ++i) {
        const double a = sec_to_rad(legs[i].ForeDirection);
        sum_x = sum_x + legs[i].HorizDist * std::cos(a);
        sum_y = sum_y + legs[i].HorizDist * std::sin(a);
        sum_dist = sum_dist + legs[i].HorizDist;
        sum_height = sum_height + legs[i].HeightDiff;
    }
    const double fx = sum_x - (known.End.X - known.Start.X);
    const double fy = sum_y - (known.End.Y - known.Start.Y);
    const double fh = sum_height - (known.End.H - known.Start.H);
    // Both the misclosure and its ratio to the length are delivered in
    // single precision.
    const double misclosure = through_float(std::sqrt(square(fy) + square(fx)));
    const double relative = through_float(misclosure / sum_dist);
    result->Fx = fx;
    result->Fy = fy;
    result->Fh = fh;
    result->SumDist = sum_dist;
    result->SumHeightDiff = sum_height;
    result->Misclosure = misclosure;
    result->Relative = relative;
    result->ComputedEndAzimuth = legs[n - 1].ForeDirection;
}

// The angular misclosure is added to the forward directions, not taken off:
// the callers rely on that sign.
void spread_angular_misclosure(TraverseLeg* legs, unsigned int n, double angular_misclosure)
{
    const double correction = angular_misclosure / static_cast<double>(n);
    for (unsigned int i = 0; i < n; ++i) {
        legs[i].ForeDirection = legs[i].ForeDirection + correction;
    }
}

// Connecting traverse: angles back minus fore direction, each and the
// carried azimuth cut to whole seconds and reduced by a remainder that keeps
// the sign of the dividend.
ResultCode close_angles_connecting(TraverseLeg* legs, unsigned int n,
                                   const TraverseKnownPoints& known, TraverseClosure* result)
{
    if (coincide_in_plan(known.ClosingRef, known.End)) {
        return DOMAIN;
    }
    const double known_azimuth = azimuth_between(known.ClosingRef, known.End);
    double angle_sum = 0.0;
    for (unsigned int i = 1; i < n; ++i) {
        const double angle = (legs[i].BackDirection - legs[i].ForeDirection) + FULL_CIRCLE;
        const double t = circle_remainder(whole_seconds(angle));
        angle_sum = angle_sum + t;
    }
    // The half circles are counted in 32-bit integers.
    const int half_circle = static_cast<int>(HALF_CIRCLE);
    const int half_turns = static_cast<int>(n) * half_circle - half_circle;
    const double carried = static_cast<double>(half_turns) + legs[0].ForeDirection - angle_sum;
    // A negative carried azimuth stays negative.
    const double computed_azimuth = circle_remainder(whole_seconds(carried));
    const double angular_misclosure = computed_azimuth - known_azimuth;
    result->KnownEndAzimuth = known_azimuth;
    result->ComputedEndAzimuth = computed_azimuth;
    result->AngularMisclosure = angular_misclosure;
    spread_angular_misclosure(legs, n, angular_misclosure);
    return OK;
}

// Closed loop: angles fore minus back direction, kept with their fractions,
// against the polygon's (n - 2) half circles.
void close_angles_loop(TraverseLeg* legs, unsigned int n, TraverseClosure* result)
{
    double angle_sum = 0.0;
    for (unsigned int i = 0; i < n; ++i) {
        const double a =
            add_turn_if_negative<ArcSeconds>(legs[i].ForeDirection - legs[i].BackDirection);
        angle_sum = angle_sum + a;
    }
    // For a single leg the polygon sum is -648000.
    const int polygon_sum = (static_cast<int>(n) - 2) * static_cast<int>(HALF_CIRCLE);
    const double angular_misclosure = angle_sum - static_cast<double>(polygon_sum);
    result->KnownEndAzimuth = 0.0;
    result->ComputedEndAzimuth = 0.0;
    result->AngularMisclosure = angular_misclosure;
    spread_angular_misclosure(legs, n, angular_misclosure);
}

void spread_plan_misclosure(TraverseLeg* legs, unsigned int n, const TraverseClosure& closure)
{
    for (unsigned int i = 0; i < n; ++i) {
        legs[i].DeltaX = legs[i].DeltaX - (closure.Fx / closure.SumDist) * legs[i].HorizDist;
        legs[i].DeltaY = legs[i].DeltaY - (closure.Fy / closure.SumDist) * legs[i].HorizDist;
    }
}

// Grouped as the leg's share of the length first, then times the
// misclosure, unlike the plan distribution.
void spread_height_misclosure(TraverseLeg* legs, unsigned int n, const TraverseClosure& closure)
{
    for (unsigned int i = 0; i < n; ++i) {
        legs[i].DeltaH = legs[i].DeltaH - (legs[i].HorizDist / closure.SumDist) * closure.Fh;
    }
}

} // namespace

ResultCode LIB_TRSCalCoorErr(TraverseLeg* legs, unsigned char n, const TraverseKnownPoints* known,
                             unsigned char step, unsigned char mode, TraverseClosure* result)
{
    if (n == 0) {
        return DOMAIN;
    }
    if ((mode != LEGS_CONNECTING && mode != LEGS_CLOSED_LOOP) || step > STEP_HEIGHT) {
        return OK;
    }
    const unsigned int count = n;
    switch (step) {
    case STEP_CLOSURE: close_traverse(legs, count, *known, result); return OK;
    case STEP_ANGLES:
        if (mode == LEGS_CONNECTING) {
            return close_angles_connecting(legs, count, *known, result);
        }
        close_angles_loop(legs, count, result);
        return OK;
    case STEP_PLAN: spread_plan_misclosure(legs, count, *result); return OK;
    default: spread_height_misclosure(legs, count, *result); return OK;
    }
}

ResultCode LIB_TRSAdjust(const double* dist, const SurveyPoint* ref, const SurveyPoint* pts,
                         unsigned char n, SurveyPoint* adj, AdjustClosure* closure,
                         unsigned char mode)
{
    // Without a point there is no computed end, and only modes 0 and 1 name
    // a known point to close on.
    if (n == 0 || (mode != LEGS_CONNECTING && mode != LEGS_CLOSED_LOOP)) {
        return DOMAIN;
    }
    double total = 0.0;
    for (unsigned int i = 0; i < n; ++i) {
        total = total + dist[i];
    }
    const SurveyPoint& known = (mode == LEGS_CONNECTING) ? ref[1] : ref[0];
    const SurveyPoint& computed_end = pts[n - 1];
    const double fx = -(computed_end.X - known.X);
    const double fy = -(computed_end.Y - known.Y);
    const float misclosure = static_cast<float>(std::sqrt(square(fy) + square(fx)));
    const double k = 1.0 / total;
    closure->Relative = static_cast<float>(static_cast<double>(misclosure) * k);
    closure->Misclosure = misclosure;
    // Each point takes a share of the misclosure in proportion to its own
    // weight, not to the length run so far; the coordinates are added onto
    // what the caller holds in adj.
    for (unsigned int i = 0; i < n; ++i) {
        adj[i].X = ((k * fx) * dist[i] + pts[i].X) + adj[i].X;
        adj[i].Y = ((k * fy) * dist[i] + pts[i].Y) + adj[i].Y;
    }
    return OK;
}
