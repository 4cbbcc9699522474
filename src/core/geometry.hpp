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
LineComponents line_components(const SurveyPoint& A, const SurveyPoint& B, const SurveyPoint& P);

// The foot of the perpendicular from P on A -> B with its height on the line's
// grade, the across and along distances and P's height over the line. A and B
// apart in plan; nothing is range-tested.
ProjectionRecord projection_on_line(const SurveyPoint& A, const SurveyPoint& B,
                                    const SurveyPoint& P);

// The point a measurement from the station reaches: horizontal distance
// turned through the faces, along the azimuth (arc-seconds), the height from
// mark, instrument height, vertical difference and target height. Not
// range-tested.
SurveyPoint measured_point(const StationRecord& station, const DistanceRecord& distances,
                           double azimuth);

// The point at an azimuth (arc-seconds), distance and height difference from
// another. Not range-tested.
SurveyPoint polar_point(const SurveyPoint& from, double azimuth, double distance,
                        double height_difference);

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
