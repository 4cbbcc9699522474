// Geometry shared by the road functions of the survey layer: curves whose
// curvature runs linearly with length, the elements of an alignment table
// read from their records, and the checks a table must pass. Never exported.
#ifndef QUILLON_SURVEY_ROAD_GEOMETRY_HPP
#define QUILLON_SURVEY_ROAD_GEOMETRY_HPP

#include "quillon/survey.h"

#include <cmath>
#include <cstddef>

namespace quillon {
namespace survey {

constexpr double FULL_CIRCLE = 1296000.0; // arc-seconds
constexpr double HALF_CIRCLE = 648000.0;  // arc-seconds

// Record kinds of the device's tables (HElement::Type, VElement::Type).
constexpr unsigned char END_RECORD = 0;
constexpr unsigned char LINE = 1;
constexpr unsigned char ARC = 2;
constexpr unsigned char TRANSITION = 3;
constexpr unsigned char GRADE_LINE = 1;
constexpr unsigned char PARABOLA = 2;
constexpr unsigned char VERTICAL_CIRCLE = 3;

// HElement::Turn and HElement::Spiral.
constexpr unsigned char TURN_LEFT = 0;
constexpr unsigned char TURN_RIGHT = 1;
constexpr unsigned char ENTRY = 0;
constexpr unsigned char EXIT = 1;

inline bool within_range(double value)
{
    return std::isfinite(value) && std::fabs(value) <= QS_MAX_COORDINATE;
}

// An azimuth in arc-seconds folded into [0, 1296000).
inline double fold_azimuth(double seconds)
{
    double folded = std::fmod(seconds, FULL_CIRCLE);
    if (folded < 0.0) {
        folded = folded + FULL_CIRCLE;
    }
    // A tiny negative remainder plus a full circle rounds to the full circle.
    if (folded >= FULL_CIRCLE) {
        folded = 0.0;
    }
    // Adding zero turns a remainder of -0 into +0.
    return folded + 0.0;
}

// An angle difference in arc-seconds folded into [-648000, 648000).
inline double fold_difference(double seconds)
{
    return fold_azimuth(seconds + HALF_CIRCLE) - HALF_CIRCLE;
}

// Where a curve is and where it heads: a point, the forward azimuth
// (arc-seconds, not folded) and the signed curvature there (1/m, + right).
struct Frame {
    double x;
    double y;
    double azimuth;
    double curvature;
};

// Unit tangent and right-hand normal of a frame.
struct Direction {
    double cos_azimuth;
    double sin_azimuth;
};

inline Direction direction_of(const Frame& frame)
{
    const double radians = frame.azimuth * QS_RAD_PER_SEC;
    return Direction{std::cos(radians), std::sin(radians)};
}

// The frame a given arc length further along a curve whose curvature
// changes by curvature_rate (1/m^2) per metre. The length may be up to
// QS_MAX_COORDINATE and the turn bound (larger curvature magnitude times the
// length) up to QS_MAX_TURN; callers check both.
Frame advance(const Frame& start, double curvature_rate, double length);

// Larger curvature magnitude on a stretch times its length: a bound of the
// turn of the tangent over it.
inline double turn_bound(double curvature, double curvature_rate, double length)
{
    const double end_curvature = curvature + curvature_rate * length;
    return std::fmax(std::fabs(curvature), std::fabs(end_curvature)) * length;
}

// An element of a horizontal table, as its own record describes it.
struct Element {
    Frame start;
    double curvature_rate; // 1/m^2
    double chainage;       // at the start, m
    double span;           // chainage step to the next record, m
};

// The element of a record evaluated up to a chainage step, and the element
// of a valid table with its step to the next record.
Element element_from(const HElement& record, double span);
Element element_of(const HElement* table, std::size_t index);

// The element record that a valid table may hold (kind, length, radius,
// turn, spiral); its start fields are not checked here.
bool element_kind_valid(const HElement& record);

bool alignment_valid(const HElement* table, std::size_t record_count);

bool profile_valid(const VElement* table, std::size_t record_count);

// Chainage and offset of a point on a valid table (qs_alignment_locate
// without its checks); false, out unchanged, when no element has a foot.
bool locate_on(const HElement* table, std::size_t record_count, double x, double y,
               qs_station_offset& out);

// Index of the element holding a chainage that lies within the table:
// the last record before the end whose Chainage is at or before it.
template <typename Record>
std::size_t element_holding(const Record* table, std::size_t record_count, double chainage)
{
    std::size_t low = 0;
    std::size_t high = record_count - 2;
    while (low < high) {
        const std::size_t middle = low + (high - low + 1) / 2;
        if (table[middle].Chainage <= chainage) {
            low = middle;
        } else {
            high = middle - 1;
        }
    }
    return low;
}

} // namespace survey
} // namespace quillon

#endif
