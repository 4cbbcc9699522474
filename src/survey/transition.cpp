// Curves whose curvature runs linearly with length: the point and tangent at
// any arc length, by quadrature of the tangent direction.
//
// Along such a curve the tangent turns by theta(t) = t (k0 + r t / 2) after
// arc length t (k0 the curvature at the start, r its rate of change), and the
// point is the integral of the unit tangent:
//     along  = integral of cos theta(t) dt,   across = integral of sin theta(t) dt
// in the frame of the start tangent (across to the right). Lines and arcs have
// these integrals in closed form. Otherwise the length is cut into equal
// panels on each of which the tangent turns by at most half a radian (the
// larger curvature magnitude times the panel length), and each panel is
// integrated by the ten-point Gauss-Legendre rule.
//
// Why that is exact: on a panel of half-length m, in the panel's own variable
// u in [-1, 1], the integrand is exp(i (c + p u + q u^2)) with |p| <= m kmax
// and |q| <= m kmax / 2, where kmax is the larger curvature magnitude and
// 2 m kmax <= 1/2: so |p| <= 1/4 and |q| <= 1/8. Over that whole range the
// ten-point rule errs, against 40-digit quadrature, by less than 1e-21 times
// the panel length: far below the rounding of the sums, which stays under
// 1e-13 m for a 1000 m curve. The comparison with an independent 30-digit
// reference over lengths to 1000 m and turns to pi is in the tests.
#include "road_geometry.hpp"

#include <algorithm>

using namespace quillon::survey;

namespace {

// Ten-point Gauss-Legendre rule on [-1, 1]: the positive nodes and their
// weights (the rule is symmetric).
constexpr int NODE_PAIRS = 5;
constexpr double NODES[NODE_PAIRS] = {0.148874338981631210885, 0.433395394129247190799,
                                      0.679409568299024406234, 0.865063366688984510732,
                                      0.973906528517171720078};
constexpr double WEIGHTS[NODE_PAIRS] = {0.295524224714752870174, 0.269266719309996355091,
                                        0.219086362515982043996, 0.149451349150580593146,
                                        0.0666713443086881375936};

// Most a panel may turn, radians.
constexpr double PANEL_TURN = 0.5;

struct Displacement {
    double along;
    double across;
};

// Tangent turn after arc length t.
double turn_at(double curvature, double curvature_rate, double t)
{
    return t * (curvature + 0.5 * curvature_rate * t);
}

Displacement arc_displacement(double curvature, double length)
{
    if (curvature == 0.0) {
        return Displacement{length, 0.0};
    }
    const double half_turn = 0.5 * curvature * length;
    const double half_sine = std::sin(half_turn);
    // 1 - cos(2a) written as 2 sin^2(a), exact for small turns.
    return Displacement{std::sin(curvature * length) / curvature,
                        2.0 * half_sine * half_sine / curvature};
}

Displacement quadrature_displacement(double curvature, double curvature_rate, double length)
{
    const double panels =
        std::fmax(1.0, std::ceil(turn_bound(curvature, curvature_rate, length) / PANEL_TURN));
    const double panel_length = length / panels;
    const double half_panel = 0.5 * panel_length;
    Displacement sum{0.0, 0.0};
    for (double panel = 0.0; panel < panels; panel = panel + 1.0) {
        const double middle = (panel + 0.5) * panel_length;
        double along = 0.0;
        double across = 0.0;
        for (int j = 0; j < NODE_PAIRS; ++j) {
            const double before =
                turn_at(curvature, curvature_rate, middle - NODES[j] * half_panel);
            const double after = turn_at(curvature, curvature_rate, middle + NODES[j] * half_panel);
            along = along + WEIGHTS[j] * (std::cos(before) + std::cos(after));
            across = across + WEIGHTS[j] * (std::sin(before) + std::sin(after));
        }
        sum.along = sum.along + along * half_panel;
        sum.across = sum.across + across * half_panel;
    }
    return sum;
}

} // namespace

namespace quillon {
namespace survey {

Frame advance(const Frame& start, double curvature_rate, double length)
{
    const Displacement local =
        curvature_rate == 0.0 ? arc_displacement(start.curvature, length)
                              : quadrature_displacement(start.curvature, curvature_rate, length);
    const Direction tangent = direction_of(start);
    Frame end;
    end.x = start.x + local.along * tangent.cos_azimuth - local.across * tangent.sin_azimuth;
    end.y = start.y + local.along * tangent.sin_azimuth + local.across * tangent.cos_azimuth;
    end.azimuth = start.azimuth + turn_at(start.curvature, curvature_rate, length) * QS_RHO_SEC;
    end.curvature = start.curvature + curvature_rate * length;
    return end;
}

} // namespace survey
} // namespace quillon

extern "C" qs_status qs_transition_point(const qs_transition* curve, double s, qs_pose* out)
{
    if (!within_range(curve->x) || !within_range(curve->y) || !std::isfinite(curve->azimuth) ||
        !std::isfinite(curve->curvature_start) || !std::isfinite(curve->curvature_end) ||
        !within_range(curve->length) || !(curve->length > 0.0)) {
        return QS_BAD_ARGUMENT;
    }
    if (!(s >= 0.0 && s <= curve->length)) {
        return QS_BAD_ARGUMENT;
    }
    const double largest_curvature =
        std::fmax(std::fabs(curve->curvature_start), std::fabs(curve->curvature_end));
    if (!(largest_curvature * curve->length <= QS_MAX_TURN)) {
        return QS_BAD_ARGUMENT;
    }
    // The quadrature cuts the curve into panels by the turn bound of its
    // rate of change of curvature: on a curve too short for its change of
    // curvature that rate is beyond the largest double, and the bound with it.
    const double curvature_rate = (curve->curvature_end - curve->curvature_start) / curve->length;
    if (!(turn_bound(curve->curvature_start, curvature_rate, curve->length) <= QS_MAX_TURN)) {
        return QS_BAD_ARGUMENT;
    }
    const Frame start{curve->x, curve->y, fold_azimuth(curve->azimuth), curve->curvature_start};
    const Frame point = advance(start, curvature_rate, s);
    out->x = point.x;
    out->y = point.y;
    out->azimuth = fold_azimuth(point.azimuth);
    return QS_OK;
}
