// The horizontal alignment's own vocabulary: element kinds, turning
// directions, transition kinds, the azimuth an element function may deliver
// and the chord of a clothoid. Never exported.
#ifndef QUILLON_ROAD_HORIZONTAL_HPP
#define QUILLON_ROAD_HORIZONTAL_HPP

#include "../core/core.hpp"

namespace quillon {
namespace road {

// Codes of the element records: kinds (HElement::Type), turning directions
// (HElement::Turn) and transition kinds (HElement::Spiral).
enum ElementType : unsigned char { END_RECORD = 0, LINE = 1, ARC = 2, TRANSITION = 3 };
enum TurnDirection : unsigned char { TURN_LEFT = 0, TURN_RIGHT = 1 };
enum TransitionKind : unsigned char { ENTRY = 0, EXIT = 1 };

// An azimuth in arc-seconds is delivered when 0 <= s < ROAD_AZIMUTH_LIMIT; a
// not-a-number fails.
inline bool azimuth_accepted(double seconds)
{
    return seconds >= 0.0 && seconds < ROAD_AZIMUTH_LIMIT;
}

// The element functions for the azimuth and for the point at a distance
// along an element.
using AzimuthAt = ResultCode (*)(const HElement*, double, double*);
using PointAt = ResultCode (*)(const HElement*, double, PlanePoint*);

// The azimuth at distance l along the element, then the point there; a
// failing status is returned at once, what was written before it stays.
inline ResultCode azimuth_then_point(const HElement& element, double l, AzimuthAt azimuth_at,
                                     PointAt point_at, double* azimuth, PlanePoint* point)
{
    const ResultCode status = azimuth_at(&element, l, azimuth);
    return status != OK ? status : point_at(&element, l, point);
}

// The point at distance l along the element written into out, then the
// azimuth there; a failing status is returned at once.
inline ResultCode point_then_azimuth(const HElement& element, double l, PointAt point_at,
                                     AzimuthAt azimuth_at, TangentPoint* out)
{
    PlanePoint point;
    const ResultCode status = point_at(&element, l, &point);
    if (status != OK) {
        return status;
    }
    out->X = point.X;
    out->Y = point.Y;
    return azimuth_at(&element, l, &out->Azimuth);
}

// The chord from the curvature-zero end of a clothoid to a point on it, in
// the curve's own frame: length and deflection from the tangent there
// (radians, in [0, 6.2831852)).
struct ClothoidChord {
    double chord;
    double deflection;
};

inline ClothoidChord chord_of(double x, double y)
{
    ClothoidChord result;
    result.chord = std::sqrt(square(x) + square(y));
    result.deflection = add_turn_if_negative<RadiansShortPi>(std::atan2(y, x));
    return result;
}

} // namespace road
} // namespace quillon

#endif
