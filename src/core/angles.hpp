// Angles: conversion between arc-seconds and radians, the faces of a station,
// and every fold the library applies, each written once and named by its
// edges (which end of the range is kept, whether one turn is taken or more).
// A function that folds an angle calls one of these; none folds by hand.
// Never exported.
#ifndef QUILLON_CORE_ANGLES_HPP
#define QUILLON_CORE_ANGLES_HPP

#include "constants.hpp"

namespace quillon {

inline double sec_to_rad(double seconds) { return seconds * RAD_PER_SEC_SHORT_PI; }
inline double rad_to_sec(double radians) { return radians * SEC_PER_RAD_SHORT_PI; }

// ---- faces of the station ---------------------------------------------------

// Station sign bytes are read as signed 8-bit values (255 is -1); the product
// turns a measured direction or distance through the face.
inline int face_factor(const StationRecord& station)
{
    return static_cast<int>(station.signB) * static_cast<int>(station.signA);
}

// True when a horizontal reading must be turned by a half circle.
inline bool faces_differ(const StationRecord& station) { return station.signA != station.signB; }

// ---- units of a fold --------------------------------------------------------

// The unit of an angle given to a fold, by its full turn.
struct ArcSeconds {
    static constexpr double full_turn = FULL_CIRCLE;
};
struct RadiansShortPi {
    static constexpr double full_turn = FULL_TURN_RAD_SHORT_PI;
};
struct RadiansTruePi {
    static constexpr double full_turn = FULL_TURN_RAD_TRUE_PI;
};

// ---- folds by one turn --------------------------------------------------------

// Into [0, +inf): one full turn added to a negative angle; 0, and a full turn
// or more, stay as they are.
template <class Unit> inline double add_turn_if_negative(double angle)
{
    return angle < 0.0 ? angle + Unit::full_turn : angle;
}

// Into (-inf, full turn]: one full turn taken off an angle strictly above a
// full turn; the full turn itself, and a negative angle, stay.
template <class Unit> inline double take_turn_if_above(double angle)
{
    return angle > Unit::full_turn ? angle - Unit::full_turn : angle;
}

// Into [0, full turn], both ends kept, by one turn at most: taken off above a
// full turn, added below 0. Only one of the two can apply.
template <class Unit> inline double fold_once_into_closed_turn(double angle)
{
    return add_turn_if_negative<Unit>(take_turn_if_above<Unit>(angle));
}

// ---- folds of arc-seconds about the half circle -------------------------------

// A difference of directions into [-648000, 648000], both ends kept, by one
// turn at most: above 648000 a full circle is taken off, below -648000 one is
// added. Only one of the two tests can fire, so their order does not matter.
inline double fold_half_circle(double angle)
{
    if (angle > HALF_CIRCLE) {
        angle = angle - FULL_CIRCLE;
    }
    if (angle < -HALF_CIRCLE) {
        angle = angle + FULL_CIRCLE;
    }
    return angle;
}

// The angle between two directions taken the short way round: an angle of 0
// to 1296000 strictly above 648000 is replaced by 1296000 minus it, so the
// result lies in [0, 648000]; 648000 itself stays.
inline double short_way_round(double angle)
{
    return angle > HALF_CIRCLE ? FULL_CIRCLE - angle : angle;
}

// A horizontal reading reduced to face I: where the faces of the station
// differ, a half circle back, and a full circle added when that leaves it
// negative. Where they agree, the reading as it is.
inline double face_i_reading(const StationRecord& station, double reading)
{
    if (!faces_differ(station)) {
        return reading;
    }
    return add_turn_if_negative<ArcSeconds>(reading - HALF_CIRCLE);
}

} // namespace quillon

#endif
