// Polar points and joins with the true pi: the point set out from a station
// by azimuth and horizontal distance, and the azimuth and distances from one
// point to another.
#include "polar.hpp"

#include "adjustment.hpp"

#include <limits>

namespace quillon::survey {

PlanPoint polar(const SurveyPoint& from, double azimuth, double distance)
{
    const double radians = folded_circle(azimuth) * QS_RAD_PER_SEC;
    const double x = from.X + distance * std::cos(radians);
    const double y = from.Y + distance * std::sin(radians);
    return PlanPoint{x, y};
}

PlanJoin plan_join(const SurveyPoint& from, double x, double y)
{
    const double dx = x - from.X;
    const double dy = y - from.Y;
    const double distance = std::hypot(dx, dy);
    if (dx == 0.0 && dy == 0.0) {
        return PlanJoin{std::numeric_limits<double>::quiet_NaN(), distance};
    }
    // Adding zero turns the azimuth -0 (due north, dy = -0) into +0.
    const double azimuth = folded_circle(std::atan2(dy, dx) * QS_RHO_SEC) + 0.0;
    return PlanJoin{azimuth, distance};
}

} // namespace quillon::survey

using namespace quillon::survey;

extern "C" qs_status qs_polar_point(const SurveyPoint* from, double azimuth, double distance,
                                    SurveyPoint* out)
{
    if (!polar_station(*from) || !std::isfinite(azimuth) || !polar_length(distance)) {
        return QS_BAD_ARGUMENT;
    }
    const PlanPoint point = polar(*from, azimuth, distance);
    out->X = point.x;
    out->Y = point.y;
    out->H = from->H;
    return QS_OK;
}

extern "C" qs_status qs_join(const SurveyPoint* from, const SurveyPoint* to, qs_join_result* out)
{
    if (!polar_station(*from) || !polar_station(*to)) {
        return QS_BAD_ARGUMENT;
    }
    const PlanJoin join = plan_join(*from, to->X, to->Y);
    if (std::isnan(join.azimuth)) {
        return QS_SINGULAR;
    }
    const double height_difference = to->H - from->H;
    out->azimuth = join.azimuth;
    out->horizontal_distance = join.distance;
    out->height_difference = height_difference;
    out->slope_distance = std::hypot(join.distance, height_difference);
    out->zenith = std::atan2(join.distance, height_difference) * QS_RHO_SEC;
    return QS_OK;
}
