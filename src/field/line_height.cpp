// Heights on the vertical plane of a line from angle readings alone.
#include "../core/core.hpp"

#include <cstdint>

using namespace quillon;

namespace {

// An angle is refused as a right or three-quarter angle when its whole
// arc-seconds, as a 32-bit integer, leave exactly 324000 or 972000 over a
// full circle. The remainder keeps the sign of the angle, so a negative
// angle is never refused (an elevation of -324000 passes).
bool right_angle(double angle)
{
    const std::int32_t whole = to_int32_truncated(angle);
    const std::int32_t remainder = whole % static_cast<std::int32_t>(FULL_CIRCLE);
    return remainder == QUARTER_CIRCLE || remainder == THREE_QUARTER_CIRCLE;
}

} // namespace

ResultCode LIB_CalLineHeight(const SurveyPoint* pts, const AngleObservation* obs,
                             LineHeightResult* out, unsigned char mode)
{
    const SurveyPoint& A = pts[0];
    const SurveyPoint& B = pts[1];
    const SurveyPoint& S = pts[2];
    // A and B on one plumb line give no line: its measures stay 0.
    const ProjectionRecord projection =
        coincide_in_plan(A, B) ? ProjectionRecord{} : projection_on_line(A, B, S);
    const double azAB = azimuth_or(A, B, 0.0);
    const double azAS = azimuth_or(A, S, 0.0);

    // The angle between the sighting to the target and the perpendicular
    // from the station to the line.
    const double x = (obs[2].Horizontal - obs[0].Horizontal) - (QUARTER_CIRCLE - (azAS - azAB));
    if (right_angle(x)) {
        return DOMAIN;
    }
    const double t = std::tan(sec_to_rad(x));
    const double shift = t * projection.Across;
    // Along the perpendicular itself the distance would be defined, but the
    // division below is by its sine: the sighting is refused.
    const double s = std::sin(sec_to_rad(x));
    if (s == 0.0) {
        return DOMAIN;
    }
    const double horizontal_distance = shift / s;
    const double elevation = QUARTER_CIRCLE - obs[2].Zenith;
    if (right_angle(elevation)) {
        return DOMAIN;
    }
    const double height = std::tan(sec_to_rad(elevation)) * horizontal_distance;
    const double along = projection.Along + shift;
    out->Height = height;
    out->HorizontalDistance = horizontal_distance;
    out->Along = along;
    if (mode != 1) {
        return OK;
    }

    const double second_elevation = QUARTER_CIRCLE - obs[3].Zenith;
    if (right_angle(second_elevation)) {
        return DOMAIN;
    }
    out->HeightBetween = height - std::tan(sec_to_rad(second_elevation)) * horizontal_distance;
    return OK;
}
