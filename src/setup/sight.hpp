// A sighting without a distance, as the construction-layout functions (arc,
// planes) use it: its unit vector, the point a distance along it from the
// instrument, and the distance from the instrument to a point. Never
// exported.
#ifndef QUILLON_SETUP_SIGHT_HPP
#define QUILLON_SETUP_SIGHT_HPP

#include "../core/core.hpp"

namespace quillon {

// Unit vector of the line of sight: X north, Y east, H up. On face II the
// sine of the zenith angle is negative and turns the plan direction back
// onto the point.
struct SightVector {
    double x;
    double y;
    double z;
};

inline SightVector sight_vector(const AngleObservation& sight)
{
    const double hz = sec_to_rad(sight.Horizontal);
    const double v = sec_to_rad(sight.Zenith);
    return {std::sin(v) * std::cos(hz), std::sin(v) * std::sin(hz), std::cos(v)};
}

// The point t along the sight from the instrument (the mark plus the
// instrument height).
inline SurveyPoint point_along_sight(const StationRecord& station, const SightVector& s, double t)
{
    return {t * s.x + station.X, t * s.y + station.Y,
            (t * s.z + station.InstrumentHeight) + station.H};
}

// Distance from the instrument's centre to the point.
inline double sight_distance(const StationRecord& station, const SurveyPoint& point)
{
    return std::sqrt(square((point.H - station.H) - station.InstrumentHeight) +
                     square(point.Y - station.Y) + square(point.X - station.X));
}

} // namespace quillon

#endif
