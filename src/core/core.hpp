// Internal helpers shared by every family: constants, the range test, angle
// conversions and folds, whole-second truncation. Never exported.
#ifndef QUILLON_CORE_CORE_HPP
#define QUILLON_CORE_CORE_HPP

#include "evaluation.hpp"
#include "quillon.h"

#include <cmath>
#include <cstdint>
#include <limits>

namespace quillon {

// Arc-seconds per radian and radians per arc-second, both built on pi taken as
// 3.1415926. The exact pi is never used to convert angles.
constexpr double RHO_SEC = QUILLON_RHO_SEC;
constexpr double RAD_PER_SEC = QUILLON_RAD_PER_SEC;
static_assert(RHO_SEC == 648000.0 / 3.1415926, "arc-seconds per radian");
static_assert(RAD_PER_SEC == 3.1415926 / 648000.0, "radians per arc-second");

constexpr double RANGE_LIMIT = QUILLON_RANGE_LIMIT;
constexpr double EARTH_RADIUS = QUILLON_EARTH_RADIUS;

constexpr double FULL_CIRCLE = 1296000.0;
constexpr double HALF_CIRCLE = 648000.0;
constexpr double QUARTER_CIRCLE = 324000.0;
constexpr double THREE_QUARTERS = 972000.0;

// Face status bytes.
constexpr unsigned char FACE_I = 1;
constexpr unsigned char FACE_II = 255;

// Status codes.
constexpr ResultCode OK = QUILLON_OK;
constexpr ResultCode DOMAIN = QUILLON_DOMAIN;
constexpr ResultCode RANGE = QUILLON_RANGE;
constexpr ResultCode COINCIDENT = QUILLON_COINCIDENT;
constexpr ResultCode TABLE = QUILLON_TABLE;
constexpr ResultCode BEHIND = QUILLON_BEHIND;
constexpr ResultCode PARALLEL = QUILLON_PARALLEL;

// A computed value passes when -99999999.9999 <= v <= 99999999.9999; a
// not-a-number fails both comparisons and so is out of range.
inline bool in_range(double v) { return -RANGE_LIMIT <= v && v <= RANGE_LIMIT; }

inline double sec_to_rad(double seconds) { return seconds * RAD_PER_SEC; }
inline double rad_to_sec(double radians) { return radians * RHO_SEC; }

// A difference of directions brought into +/- a half circle by one turn at
// most: above 648000 a full circle is taken off, below -648000 one is added.
// Only one of the two tests can fire, so their order does not matter.
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

// Truncation toward zero to a whole number of arc-seconds. std::trunc is
// defined for every double (huge values, infinities and not-a-number pass
// through), unlike a conversion to an integer type.
inline double whole_seconds(double seconds) { return std::trunc(seconds); }

// Remainder of a whole number of seconds by a full circle as an integer
// division truncating toward zero gives it: the sign of the dividend is kept,
// and a whole number of turns leaves 0, never -0 (adding +0 changes no other
// value).
inline double circle_remainder(double whole) { return std::fmod(whole, FULL_CIRCLE) + 0.0; }

// Conversion of a double to a signed 32-bit integer by truncation toward zero,
// defined for every input: values beyond the int32 range saturate and a
// not-a-number gives 0, as the ARM VFP conversion instruction does.
inline std::int32_t to_int32_truncated(double value)
{
    if (std::isnan(value)) {
        return 0;
    }
    if (value >= 2147483647.0) {
        return INT32_MAX;
    }
    if (value <= -2147483648.0) {
        return INT32_MIN;
    }
    return static_cast<std::int32_t>(value);
}

// Station sign bytes are read as signed 8-bit values (255 is -1); the product
// turns a measured direction or distance through the face.
inline int face_factor(const StationRecord& station)
{
    return static_cast<int>(station.signB) * static_cast<int>(station.signA);
}

// True when a horizontal reading must be turned by a half circle.
inline bool faces_differ(const StationRecord& station) { return station.signA != station.signB; }

// Rounding through single precision, widened back to double. IEEE single
// precision rounds to nearest and gives an infinity beyond its range.
static_assert(std::numeric_limits<float>::is_iec559, "IEEE single precision");
inline double through_float(double value) { return static_cast<double>(static_cast<float>(value)); }

// The square of a value, as the product of the value with itself.
inline double square(double value) { return value * value; }

} // namespace quillon

#endif
