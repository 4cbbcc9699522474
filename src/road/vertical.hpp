// The profile's own vocabulary, shared with the cross-section: vertical
// element kinds, which of radius and length the designer gave, and the bounds
// of grades and lengths. Never exported.
#ifndef QUILLON_ROAD_VERTICAL_HPP
#define QUILLON_ROAD_VERTICAL_HPP

#include "../core/core.hpp"

namespace quillon {
namespace road {

// Element record types of a vertical table.
constexpr unsigned char V_END = 0;
constexpr unsigned char V_LINE = 1;
constexpr unsigned char V_PARABOLA = 2;
constexpr unsigned char V_CIRCLE = 3;
// At an inner grade intersection, Type 0 is a plain change of grade.
constexpr unsigned char V_GRADE_CHANGE = 0;

// Which of Radius and Length the designer gave.
constexpr unsigned char GIVEN_RADIUS = 0;
constexpr unsigned char GIVEN_LENGTH = 1;

// A grade (or a cross slope) lies from -1 to 1 inclusive.
inline bool grade_ok(double grade) { return within(grade, -1.0, 1.0); }

// A computed radius or length lies from 0 to the range limit inclusive.
inline bool length_ok(double length) { return within(length, 0.0, RANGE_LIMIT); }

// A given radius or length must be strictly positive and at most the limit.
inline bool given_ok(double value) { return value > 0.0 && value <= RANGE_LIMIT; }

} // namespace road
} // namespace quillon

#endif
