// Polar points and joins, shared by the single functions and their batches.
// Never exported.
#ifndef QUILLON_SURVEY_POLAR_HPP
#define QUILLON_SURVEY_POLAR_HPP

#include "quillon/survey.h"

#include <cmath>

namespace quillon::survey {

// A coordinate, height or horizontal distance that the polar functions take.
inline bool polar_length(double value)
{
    return std::isfinite(value) && std::fabs(value) <= QS_MAX_LENGTH;
}

inline bool polar_station(const SurveyPoint& point)
{
    return polar_length(point.X) && polar_length(point.Y) && polar_length(point.H);
}

struct PlanPoint {
    double x;
    double y;
};

// The point at a horizontal distance along an azimuth (arc-seconds, any
// finite value) from a station; inputs checked by the caller.
PlanPoint polar(const SurveyPoint& from, double azimuth, double distance);

// Azimuth (arc-seconds in [0, 1296000)) and distance in plan from a station
// to a point; the azimuth is NaN where the two coincide in plan.
struct PlanJoin {
    double azimuth;
    double distance;
};

PlanJoin plan_join(const SurveyPoint& from, double x, double y);

} // namespace quillon::survey

#endif
