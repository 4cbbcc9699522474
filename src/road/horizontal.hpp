// The horizontal alignment's own vocabulary: element kinds, turning
// directions, transition kinds, the azimuth an element function may deliver
// and the chord of a clothoid. Never exported.
#ifndef QUILLON_ROAD_HORIZONTAL_HPP
#define QUILLON_ROAD_HORIZONTAL_HPP

#include "../core/core.hpp"

namespace quillon {
namespace road {

// Element kinds (HElement::Type).
constexpr unsigned char END_RECORD = 0;
constexpr unsigned char LINE = 1;
constexpr unsigned char ARC = 2;
constexpr unsigned char TRANSITION = 3;

// Turning directions (HElement::Turn) and transition kinds (HElement::Spiral).
constexpr unsigned char TURN_LEFT = 0;
constexpr unsigned char TURN_RIGHT = 1;
constexpr unsigned char ENTRY = 0;
constexpr unsigned char EXIT = 1;

// An azimuth in arc-seconds is delivered when 0 <= s < ROAD_AZIMUTH_LIMIT; a
// not-a-number fails.
inline bool azimuth_accepted(double seconds)
{
    return seconds >= 0.0 && seconds < ROAD_AZIMUTH_LIMIT;
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
