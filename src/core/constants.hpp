// Every number the library gives a name, each defined here once: units of
// angle and the pi they rest on, the range limit, the earth radius, limits and
// tolerances shared by families, the count limits of the interface and its
// codes. A family's own record codes stay with the family. Never exported.
#ifndef QUILLON_CORE_CONSTANTS_HPP
#define QUILLON_CORE_CONSTANTS_HPP

#include "evaluation.hpp"
#include "quillon.h"

namespace quillon {

// ---- angles in arc-seconds --------------------------------------------------

constexpr double FULL_CIRCLE = 1296000.0;
constexpr double HALF_CIRCLE = 648000.0;
constexpr double QUARTER_CIRCLE = 324000.0;
constexpr double THREE_QUARTER_CIRCLE = 972000.0;

// ---- the two values of pi ---------------------------------------------------

// Pi cut after seven decimals. Every conversion between arc-seconds and
// radians, and every fold of an angle in radians on the road, rests on it, so
// that a conversion and a fold agree; a direction from atan2 (true pi) turned
// into arc-seconds is therefore not a whole quarter circle.
constexpr double SHORT_PI = 3.1415926;

constexpr double SEC_PER_RAD_SHORT_PI = QUILLON_RHO_SEC;
constexpr double RAD_PER_SEC_SHORT_PI = QUILLON_RAD_PER_SEC;
static_assert(SEC_PER_RAD_SHORT_PI == HALF_CIRCLE / SHORT_PI, "arc-seconds per radian");
static_assert(RAD_PER_SEC_SHORT_PI == SHORT_PI / HALF_CIRCLE, "radians per arc-second");

// The resection's half-angle tangent works on half an angle and gives back a
// whole one.
constexpr double HALF_RAD_PER_SEC_SHORT_PI = 2.424068364197531e-6;
constexpr double TWICE_SEC_PER_RAD_SHORT_PI = 412529.6195311894;
static_assert(HALF_RAD_PER_SEC_SHORT_PI == RAD_PER_SEC_SHORT_PI / 2.0, "half");
static_assert(TWICE_SEC_PER_RAD_SHORT_PI == SEC_PER_RAD_SHORT_PI * 2.0, "twice");

constexpr double FULL_TURN_RAD_SHORT_PI = 6.2831852;
constexpr double HALF_TURN_RAD_SHORT_PI = SHORT_PI;
constexpr double EIGHTH_TURN_RAD_SHORT_PI = 0.78539815;
static_assert(FULL_TURN_RAD_SHORT_PI == 2.0 * SHORT_PI, "full turn");
static_assert(EIGHTH_TURN_RAD_SHORT_PI == SHORT_PI / 4.0, "eighth of a turn");

// A full turn with the true pi, for turns measured with atan2 and never
// converted to arc-seconds.
constexpr double FULL_TURN_RAD_TRUE_PI = 6.283185307179586;

// ---- lengths and limits -----------------------------------------------------

// A computed value passes when -RANGE_LIMIT <= v <= RANGE_LIMIT.
constexpr double RANGE_LIMIT = QUILLON_RANGE_LIMIT;

// Mean earth radius of the curvature and refraction correction and the
// height scale factor, metres.
constexpr double EARTH_RADIUS = QUILLON_EARTH_RADIUS;

// The road functions accept an azimuth up to two full circles: one fold of a
// full turn in radians may leave it above one.
constexpr double ROAD_AZIMUTH_LIMIT = 2.0 * FULL_CIRCLE;

// The band of a plausible scale factor. The distance reduction applies a
// factor strictly inside it; the combined scale passes on its edges too.
constexpr double SCALE_BAND_LOW = 0.99;
constexpr double SCALE_BAND_HIGH = 1.01;

// A point computed from a sighting lies in the sighted direction when its
// azimuth is within one arc-second of the reading reduced to face I.
constexpr double SIGHT_DIRECTION_TOLERANCE = 1.0;

// Two chainages closer than a millimetre are the same station.
constexpr double CHAINAGE_TOLERANCE = 0.001;

// ---- count limits of the interface ------------------------------------------

// Known points of a resection.
constexpr unsigned int RESECTION_MAX_POINTS = 20;

// The longest list a road function reads or writes: intersection points of a
// plan or a profile, piles, cross-section records.
constexpr unsigned int ROAD_LIST_CAPACITY = 80;

// An element table, plan or profile: as many elements and the end record.
constexpr unsigned int ROAD_TABLE_CAPACITY = ROAD_LIST_CAPACITY + 1;

// ---- codes of the interface -------------------------------------------------

enum FaceStatus : unsigned char { FACE_I = 1, FACE_II = 255 };

// Modes of LIB_Cal2PointDist.
enum DistanceMode : unsigned char { PLAN_DISTANCE = 0, SPATIAL_DISTANCE = 1 };

// Status codes.
constexpr ResultCode OK = QUILLON_OK;
constexpr ResultCode DOMAIN = QUILLON_DOMAIN;
constexpr ResultCode RANGE = QUILLON_RANGE;
constexpr ResultCode COINCIDENT = QUILLON_COINCIDENT;
constexpr ResultCode TABLE = QUILLON_TABLE;
constexpr ResultCode BEHIND = QUILLON_BEHIND;
constexpr ResultCode PARALLEL = QUILLON_PARALLEL;

} // namespace quillon

#endif
