// The geometry every family builds on, as values: distances, azimuths, polar
// points, the components of a point against a line and its projection on it,
// and the reduction of a slope measurement.
// The exported primitives are written with these; the families call these
// rather than the exported functions, so that no status is dropped unseen.
// Never exported.
#ifndef QUILLON_CORE_GEOMETRY_HPP
#define QUILLON_CORE_GEOMETRY_HPP

#include "angles.hpp"
#include "numbers.hpp"

#include <cmath>

namespace quillon {

// Two points on one plumb line: no direction between them.
inline bool coincide_in_plan(const SurveyPoint& a, const SurveyPoint& b)
{
    return a.X == b.X && a.Y == b.Y;
}

inline double plan_distance(const SurveyPoint& a, const SurveyPoint& b)
{
    return std::sqrt(square(a.Y - b.Y) + square(a.X - b.X));
}

inline double spatial_distance(const SurveyPoint& a, const SurveyPoint& b)
{
    return std::sqrt((square(a.H - b.H) + square(a.Y - b.Y)) + square(a.X - b.X));
}

// Azimuth from one point to another apart in plan, arc-seconds in
// [0, 1296000).
inline double azimuth_between(const SurveyPoint& from, const SurveyPoint& to)
{
    const double dX = to.X - from.X;
    const double dY = to.Y - from.Y;
    return add_turn_if_negative<ArcSeconds>(rad_to_sec(std::atan2(dY, dX)));
}

// The azimuth, or the given value when the points coincide in plan.
inline double azimuth_or(const SurveyPoint& from, const SurveyPoint& to, double coincident)
{
    return coincide_in_plan(from, to) ? coincident : azimuth_between(from, to);
}

// A point against the line A -> B in plan: the distance along the line from A
// to the foot of the perpendicular, and across it, positive to the right.
struct LineComponents {
    double along;
    double across;
};

// A and B apart in plan. A point on A has no direction; its distance of 0
// makes both components 0.
inline LineComponents line_components(const SurveyPoint& A, const SurveyPoint& B,
                                      const SurveyPoint& P)
{
    const double azAB = azimuth_between(A, B);
    const double azAP = azimuth_or(A, P, 0.0);
    const double D = plan_distance(A, P);
    // Only the sine and cosine of the angle are used, so it needs no fold.
    const double t = sec_to_rad(azAP - azAB);
    return {std::cos(t) * D, std::sin(t) * D};
}

// The foot of the perpendicular from P on A -> B with its height on the line's
// grade, the across and along distances and P's height over the line. A and B
// apart in plan; nothing is range-tested. Evaluated in place: a record this
// size returned through memory is copied on in wider moves than it was
// written with, which wait for its stores.
inline ProjectionRecord projection_on_line(const SurveyPoint& A, const SurveyPoint& B,
                                           const SurveyPoint& P)
{
    const LineComponents components = line_components(A, B, P);
    const double along = components.along;
    const double f = 1.0 / plan_distance(A, B);
    const double foot_x = ((B.X - A.X) * f) * along + A.X;
    const double foot_y = ((B.Y - A.Y) * f) * along + A.Y;
    const double foot_h = ((B.H - A.H) * f) * along + A.H;
    return {foot_x, foot_y, foot_h, components.across, along, P.H - foot_h};
}

// The point a measurement from the station reaches: horizontal distance
// turned through the faces, along the azimuth (arc-seconds), the height from
// mark, instrument height, vertical difference and target height. Not
// range-tested.
inline SurveyPoint measured_point(const StationRecord& station, const DistanceRecord& distances,
                                  double azimuth)
{
    const double a = sec_to_rad(azimuth);
    const int f = face_factor(station);
    const double d = f * distances.HorizontalDistance;
    const double X = d * std::cos(a) + station.X;
    const double Y = d * std::sin(a) + station.Y;
    const double H = ((station.InstrumentHeight + distances.VerticalDifference) + station.H) -
                     station.TargetHeight;
    return {X, Y, H};
}

// The point at an azimuth (arc-seconds), distance and height difference from
// another. Not range-tested.
inline SurveyPoint polar_point(const SurveyPoint& from, double azimuth, double distance,
                               double height_difference)
{
    const double a = sec_to_rad(azimuth);
    const double X = std::cos(a) * distance + from.X;
    const double Y = std::sin(a) * distance + from.Y;
    const double H = from.H + height_difference;
    return {X, Y, H};
}

// Distances, height difference, azimuth and zenith angle from one point to
// another as LIB_CalDistAngle gives them. Where it refuses (the points on one
// plumb line, a value beyond the range limit) the azimuth and zenith angle
// are 0; the distances and the height difference are always there.
DistAngleRecord sight_between(const SurveyPoint& from, const SurveyPoint& to, unsigned char face);

// Slope distance and zenith angle reduced with curvature and refraction and
// the scale factor, as LIB_DistConvert writes them.
DistanceRecord reduced_distances(const StationRecord& station, double scale, double slope_distance,
                                 double zenith);

} // namespace quillon

#endif
