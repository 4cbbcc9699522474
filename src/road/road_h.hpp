// Internal helpers of the horizontal alignment: element kinds, the radian
// folds of the road functions and the clothoid chord. Never exported.
#ifndef QUILLON_ROAD_ROAD_H_HPP
#define QUILLON_ROAD_ROAD_H_HPP

#include "road.hpp"

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

// The road functions fold radians with pi taken as 3.1415926, the same pi
// that RHO_SEC rests on, so that a fold and a conversion agree.
constexpr double FULL_TURN_RAD = 6.2831852;
constexpr double HALF_TURN_RAD = 3.1415926;

// An azimuth leaving an element function is accepted below two full circles,
// not one: one fold of 6.2831852 may leave it above a full circle.
constexpr double AZ_LIMIT = 2592000.0;

// Capacity of an element table and of a pile list.
constexpr unsigned int TABLE_RECORDS = 81;
constexpr unsigned int MAX_POLYGON_POINTS = 80;
constexpr unsigned int MAX_PILES = 80;

// One full turn taken off an angle above a full turn.
inline double fold_above_full_turn(double radians)
{
    if (radians > FULL_TURN_RAD) {
        radians = radians - FULL_TURN_RAD;
    }
    return radians;
}

// One full turn added to a negative angle.
inline double fold_below_zero(double radians)
{
    if (radians < 0.0) {
        radians = radians + FULL_TURN_RAD;
    }
    return radians;
}

// An azimuth in arc-seconds is delivered when 0 <= s < AZ_LIMIT; a
// not-a-number fails.
inline bool azimuth_accepted(double seconds) { return seconds >= 0.0 && seconds < AZ_LIMIT; }

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
    double deflection = std::atan2(y, x);
    if (deflection < 0.0) {
        deflection = deflection + FULL_TURN_RAD;
    }
    result.deflection = deflection;
    return result;
}

} // namespace road
} // namespace quillon

#endif
