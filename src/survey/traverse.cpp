// Traverse closure and adjustment from raw angles and horizontal distances:
// the angular misclosure spread evenly over the closing angles, the linear
// misclosure by the compass or the transit rule, the heights by length or
// by length squared.
#include "adjustment.hpp"
#include "quillon/survey.h"

#include <cmath>
#include <cstddef>
#include <limits>

namespace {

using namespace quillon::survey;

bool length(double value) { return value >= -QS_MAX_LENGTH && value <= QS_MAX_LENGTH; }

bool valid_point(const SurveyPoint& p) { return length(p.X) && length(p.Y) && length(p.H); }

bool valid_input(const qs_traverse_ends& ends, const qs_traverse_station* stations,
                 std::size_t leg_count)
{
    if (!valid_point(ends.start) || !valid_point(ends.start_backsight) || !valid_point(ends.end) ||
        !valid_point(ends.end_foresight)) {
        return false;
    }
    for (std::size_t i = 0; i <= leg_count; ++i) {
        const qs_traverse_station& s = stations[i];
        if (!std::isfinite(s.angle) || !length(s.distance) || !length(s.height_difference)) {
            return false;
        }
        if (i < leg_count && !(s.distance > 0.0)) {
            return false;
        }
    }
    return true;
}

// Azimuth from one point to another in plan, arc-seconds in [0, 1296000);
// false when they coincide.
bool azimuth_between(const SurveyPoint& from, const SurveyPoint& to, double& azimuth)
{
    const double dx = to.X - from.X;
    const double dy = to.Y - from.Y;
    if (dx == 0.0 && dy == 0.0) {
        return false;
    }
    azimuth = folded_circle(std::atan2(dy, dx) * QS_RHO_SEC);
    return true;
}

// Which angles close, and how they are corrected.
struct AngularClosure {
    double misclosure = 0.0;
    double correction = 0.0;
    double computed = 0.0;
    double expected = 0.0;
    std::size_t first = 0; // first corrected station
    std::size_t last = 0;  // last corrected station; none when first > last
};

AngularClosure angular_closure(int kind, double start_azimuth, double end_azimuth,
                               const qs_traverse_station* stations, std::size_t n)
{
    AngularClosure closure;
    const double legs = static_cast<double>(n);
    if (kind == QS_TRAVERSE_LINK) {
        // The azimuth E -> F carried from A -> B through all n + 1 angles.
        double carried = start_azimuth;
        for (std::size_t i = 0; i <= n; ++i) {
            carried = folded_circle(carried + stations[i].angle + (i > 0 ? HALF_CIRCLE : 0.0));
        }
        closure.computed = carried;
        closure.expected = end_azimuth;
        closure.misclosure = folded_half(carried - end_azimuth);
        closure.correction = -closure.misclosure / (legs + 1.0);
        closure.first = 0;
        closure.last = n;
    } else if (kind == QS_TRAVERSE_LOOP) {
        // The polygon angles at stations 1 to n sum to n half circles less or
        // more one full circle.
        double sum = 0.0;
        for (std::size_t i = 1; i <= n; ++i) {
            sum += folded_circle(stations[i].angle);
        }
        closure.computed = sum;
        closure.misclosure = folded_half(sum - legs * HALF_CIRCLE);
        const double turns =
            std::round((sum - closure.misclosure - legs * HALF_CIRCLE) / FULL_CIRCLE);
        closure.expected = legs * HALF_CIRCLE + turns * FULL_CIRCLE;
        closure.correction = -closure.misclosure / legs;
        closure.first = 1;
        closure.last = n;
    } else {
        closure.first = 1;
        closure.last = 0;
    }
    return closure;
}

// Walks the legs with their corrected angles: the azimuth (arc-seconds) and
// the coordinate increments of leg i from those of leg i - 1.
struct Leg {
    double azimuth = 0.0; // arc-seconds
    double dx = 0.0;
    double dy = 0.0;

    void next(double angle, bool first)
    {
        azimuth = folded_circle(azimuth + angle + (first ? 0.0 : HALF_CIRCLE));
    }
    void along(double distance)
    {
        const double radians = azimuth * QS_RAD_PER_SEC;
        dx = distance * std::cos(radians);
        dy = distance * std::sin(radians);
    }
};

double corrected_angle(const qs_traverse_station* stations, std::size_t i,
                       const AngularClosure& closure)
{
    const bool closes = i >= closure.first && i <= closure.last;
    return stations[i].angle + (closes ? closure.correction : 0.0);
}

// Share of a misclosure taken by one leg: weight over the sum of weights, or
// by length when the weights all vanish.
double share(double weight, double weight_sum, double length, double total_length)
{
    return weight_sum > 0.0 ? weight / weight_sum : length / total_length;
}

} // namespace

extern "C" qs_status qs_traverse_adjust(int kind, const qs_traverse_ends* ends,
                                        const qs_traverse_station* stations, std::size_t leg_count,
                                        int rule, int height_rule, qs_traverse_result* result,
                                        SurveyPoint* adjusted)
{
    const bool known_kind =
        kind == QS_TRAVERSE_LINK || kind == QS_TRAVERSE_LOOP || kind == QS_TRAVERSE_KNOWN_ENDS;
    const bool known_rule = rule == QS_COMPASS_RULE || rule == QS_TRANSIT_RULE;
    const bool known_height_rule = height_rule == QS_HEIGHTS_NONE ||
                                   height_rule == QS_HEIGHTS_BY_LENGTH ||
                                   height_rule == QS_HEIGHTS_BY_LENGTH_SQUARED;
    if (!known_kind || !known_rule || !known_height_rule || leg_count == 0 ||
        leg_count > QS_MAX_TRAVERSE_LEGS || !valid_input(*ends, stations, leg_count)) {
        return QS_BAD_ARGUMENT;
    }
    if (kind == QS_TRAVERSE_LOOP && leg_count < 3) {
        return QS_TOO_FEW;
    }
    const SurveyPoint& start = ends->start;
    const SurveyPoint& end = kind == QS_TRAVERSE_LOOP ? ends->start : ends->end;
    double start_azimuth = 0.0;
    double end_azimuth = 0.0;
    if (!azimuth_between(start, ends->start_backsight, start_azimuth) ||
        (kind == QS_TRAVERSE_LINK && !azimuth_between(end, ends->end_foresight, end_azimuth))) {
        return QS_SINGULAR;
    }

    // 1. Angular closure.
    const AngularClosure closure =
        angular_closure(kind, start_azimuth, end_azimuth, stations, leg_count);

    // 2. Increments from the corrected angles, and their sums.
    double total_length = 0.0, sum_dx = 0.0, sum_dy = 0.0, abs_dx = 0.0, abs_dy = 0.0;
    double sum_dh = 0.0, squared_length = 0.0;
    Leg leg{start_azimuth};
    for (std::size_t i = 0; i < leg_count; ++i) {
        const double length = stations[i].distance;
        leg.next(corrected_angle(stations, i, closure), i == 0);
        leg.along(length);
        total_length += length;
        squared_length += length * length;
        sum_dx += leg.dx;
        sum_dy += leg.dy;
        abs_dx += std::fabs(leg.dx);
        abs_dy += std::fabs(leg.dy);
        sum_dh += stations[i].height_difference;
    }

    // 3. Linear and height misclosures.
    const double fx = (start.X + sum_dx) - end.X;
    const double fy = (start.Y + sum_dy) - end.Y;
    const double misclosure = std::hypot(fx, fy);
    const double fh = height_rule == QS_HEIGHTS_NONE ? 0.0 : (start.H + sum_dh) - end.H;

    // 4. Coordinates with the misclosures spread over the legs.
    adjusted[0] = start;
    leg = Leg{start_azimuth};
    for (std::size_t i = 0; i < leg_count; ++i) {
        const double length = stations[i].distance;
        leg.next(corrected_angle(stations, i, closure), i == 0);
        leg.along(length);
        double share_x = length / total_length;
        double share_y = share_x;
        if (rule == QS_TRANSIT_RULE) {
            share_x = share(std::fabs(leg.dx), abs_dx, length, total_length);
            share_y = share(std::fabs(leg.dy), abs_dy, length, total_length);
        }
        const double share_h = height_rule == QS_HEIGHTS_BY_LENGTH_SQUARED
                                   ? length * length / squared_length
                                   : length / total_length;
        SurveyPoint& next = adjusted[i + 1];
        next.X = adjusted[i].X + leg.dx - fx * share_x;
        next.Y = adjusted[i].Y + leg.dy - fy * share_y;
        next.H = adjusted[i].H + stations[i].height_difference - fh * share_h;
    }
    if (height_rule == QS_HEIGHTS_NONE) {
        for (std::size_t i = 1; i < leg_count; ++i) {
            adjusted[i].H = std::numeric_limits<double>::quiet_NaN();
        }
        adjusted[leg_count].H = end.H;
    }

    result->angular_misclosure = closure.misclosure;
    result->angle_correction = closure.correction;
    result->computed_closing = closure.computed;
    result->expected_closing = closure.expected;
    result->misclosure_x = fx;
    result->misclosure_y = fy;
    result->misclosure = misclosure;
    result->relative_misclosure = misclosure / total_length;
    result->precision_ratio =
        misclosure > 0.0 ? total_length / misclosure : std::numeric_limits<double>::infinity();
    result->height_misclosure = fh;
    result->total_length = total_length;
    return QS_OK;
}
