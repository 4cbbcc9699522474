// Tests and roundings of plain numbers: the range test, closed intervals,
// whole-second truncation and remainder, the saturating conversion to a 32-bit
// integer and single precision. Never exported.
#ifndef QUILLON_CORE_NUMBERS_HPP
#define QUILLON_CORE_NUMBERS_HPP

#include "constants.hpp"

#include <cmath>
#include <cstdint>
#include <limits>

namespace quillon {

// A value inside the closed range [low, high]; not-a-number is outside.
inline bool within(double value, double low, double high) { return low <= value && value <= high; }

// A computed value passes when -99999999.9999 <= v <= 99999999.9999; a
// not-a-number fails both comparisons and so is out of range.
inline bool in_range(double v) { return within(v, -RANGE_LIMIT, RANGE_LIMIT); }

// All three coordinates of a point in range.
inline bool in_range(const SurveyPoint& p)
{
    return in_range(p.X) && in_range(p.Y) && in_range(p.H);
}

// Northing and easting of a point in range; the height is not tested.
inline bool in_range_in_plan(const SurveyPoint& p) { return in_range(p.X) && in_range(p.Y); }

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

// Rounding through single precision, widened back to double. IEEE single
// precision rounds to nearest and gives an infinity beyond its range.
static_assert(std::numeric_limits<float>::is_iec559, "IEEE single precision");
inline double through_float(double value) { return static_cast<double>(static_cast<float>(value)); }

// The square of a value, as the product of the value with itself.
inline double square(double value) { return value * value; }

} // namespace quillon

#endif
