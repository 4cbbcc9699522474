// Heights on the vertical plane of a line from angle readings alone, and the
// circle through three points with its list of points.
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

// True when stepping from start by step reaches end within room pairs. Far
// from the origin a step smaller than the spacing of doubles is lost in the
// addition and the walk stands still, or is rounded short and takes more
// steps than the caller made room for; a negative step walks away from the
// end.
bool list_fits(double start, double end, double step, std::int64_t room)
{
    double y = start;
    for (std::int64_t listed = 1; listed <= room; ++listed) {
        const double next = y + step;
        if (next >= end) {
            return true;
        }
        if (next == y) {
            return false;
        }
        y = next;
    }
    return false;
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

ResultCode LIB_CalCircle(const SurveyPoint* pts, double* radius, double* centre,
                         CirclePointPair* list, std::int32_t count, unsigned char mode)
{
    const double X1 = pts[0].X;
    const double Y1 = pts[0].Y;
    const double X2 = pts[1].X;
    const double Y2 = pts[1].Y;
    const double X3 = pts[2].X;
    const double Y3 = pts[2].Y;

    // Three points on one line, compared by their slopes from P1, exactly.
    if (X1 != X2 && X1 != X3) {
        if ((Y1 - Y2) / (X1 - X2) == (Y1 - Y3) / (X1 - X3)) {
            return DOMAIN;
        }
    }
    if (X1 == X2 && X1 == X3) {
        return DOMAIN;
    }
    if (Y1 == Y2 && Y1 == Y3) {
        return DOMAIN;
    }

    const double numerator =
        (square(X2) - square(X3)) * (Y2 - Y1) - (Y3 - Y2) * (square(X1) - square(X2)) -
        (Y3 - Y2) * (square(Y1) - square(Y2)) + (square(Y2) - square(Y3)) * (Y2 - Y1);
    const double denominator = 2.0 * ((Y3 - Y2) * (X2 - X1) - (X3 - X2) * (Y2 - Y1));
    const double Xc = numerator / denominator;
    double Yc = 0.0;
    if (Y2 - Y1 != 0.0) {
        Yc = (-(square(X1) - square(X2)) - 2.0 * Xc * (X2 - X1) - (square(Y1) - square(Y2))) /
             (2.0 * (Y2 - Y1));
    } else {
        if (Y3 - Y2 == 0.0) {
            return DOMAIN;
        }
        Yc = (-(square(X2) - square(X3)) - (square(Y2) - square(Y3)) - 2.0 * Xc * (X3 - X2)) /
             (2.0 * (Y3 - Y2));
    }
    const double R = std::sqrt(square(Xc - X1) + square(Yc - Y1));

    *radius = R;
    centre[0] = Xc;
    centre[1] = Yc;
    if (mode != 1) {
        return OK;
    }
    // The listed band is +/- the earth radius about the centre's easting,
    // whatever the circle's radius.
    const double start = Yc - EARTH_RADIUS;
    const double end = Yc + EARTH_RADIUS;
    const double step = (end - start) / static_cast<double>(count);
    if (!(start < end)) {
        return OK;
    }
    // A list that would never end (a negative count, or a step lost in
    // rounding far from the origin) or would overrun the caller's count + 1
    // pairs is refused before any pair is written; the radius and centre stand.
    const std::int64_t room = static_cast<std::int64_t>(count) + 1;
    if (!list_fits(start, end, step, room)) {
        return DOMAIN;
    }
    // Beyond the radius the square root is not a number; such pairs are
    // listed as they come.
    CirclePointPair* pair = list;
    double y = start;
    do {
        const double dy = y - Yc;
        const double w = std::sqrt(square(R) - square(dy));
        pair->FirstX = Xc + w;
        pair->FirstY = y;
        pair->SecondX = Xc - w;
        pair->SecondY = y;
        ++pair;
        y = y + step;
    } while (!(y >= end));
    return OK;
}
