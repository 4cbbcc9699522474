/*
 * quillon/survey.h - rigorous survey computations beside the device library.
 *
 * The device library (quillon.h) reproduces the instrument's arithmetic to the
 * bit, with its truncations and short series. This library answers the same
 * field questions rigorously: a free station by least squares, exact
 * transition curves, chainage and offset of a measured point on an alignment
 * of any length, and traverse adjustment from raw observations. It reads the
 * device's own records (HElement and VElement tables, SurveyPoint) so that the
 * same design drives both, and never changes what the device library does.
 *
 * Units and conventions
 *   - Lengths in metres.
 *   - Angles in arc-seconds, like the device library, but converted with the
 *     true pi (QS_RHO_SEC = 648000 / pi): due east is exactly 324000 here,
 *     where the device library gives 324000.0055268.
 *   - Azimuths run clockwise from the X axis (north) toward the Y axis (east)
 *     and are returned in [0, 1296000).
 *   - Curvature is signed: positive where the azimuth increases along the
 *     curve (turning right, clockwise), negative turning left.
 *   - Offsets are signed: positive to the right of the centre line, looking
 *     toward increasing chainage, as the device's cross-section functions use.
 *
 * Every function checks its inputs before it computes: a count out of bounds,
 * a non-finite number or a negative standard deviation gives QS_BAD_ARGUMENT.
 * No function writes any output unless it returns QS_OK: on every other
 * status the caller's records are left exactly as they were. No pointer is
 * tested for null. Every function is reentrant, keeps no state and takes no
 * memory from the heap.
 */
#ifndef QUILLON_SURVEY_H
#define QUILLON_SURVEY_H

#include <stddef.h>

#include <quillon.h>

/* ---- export macro ------------------------------------------------------ */
#if defined(QUILLON_SURVEY_STATIC)
#define QS_API
#elif defined(_WIN32) || defined(__CYGWIN__)
#if defined(QUILLON_SURVEY_BUILDING)
#define QS_API __declspec(dllexport)
#else
#define QS_API __declspec(dllimport)
#endif
#elif defined(__GNUC__)
#define QS_API __attribute__((visibility("default")))
#else
#define QS_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* ---- status codes and constants ---------------------------------------- */

/** Status returned by every qs_ function. */
typedef enum qs_status {
    QS_OK = 0,                /**< success: every output written */
    QS_TOO_FEW = 1,           /**< too few observations to determine the unknowns */
    QS_SINGULAR = 2,          /**< the geometry does not determine the unknowns */
    QS_NO_CONVERGENCE = 3,    /**< an iteration did not converge */
    QS_OUTSIDE_ALIGNMENT = 4, /**< the point lies beyond both ends of the alignment */
    QS_BAD_ARGUMENT = 5       /**< a count out of bounds, a non-finite input, a negative
                                   standard deviation or an unknown mode */
} qs_status;

/** Arc-seconds per radian, 648000 / pi with the true pi. */
#define QS_RHO_SEC 206264.80624709636
/** Radians per arc-second, pi / 648000. */
#define QS_RAD_PER_SEC 4.84813681109536e-6

/** A short English text for a status ("success", "too few observations",
 *  ...); a value outside the enumeration gives "unknown status". The text is
 *  static and never freed. */
QS_API const char* qs_status_message(qs_status status);

/* ==== free station ======================================================== */

/* ==== traverse ============================================================ */

/* ==== transition curves =================================================== */

/* A transition curve here is any curve whose curvature runs linearly with
 * its length. Its points come from the exact integral of the tangent
 * direction (Gauss-Legendre quadrature, ten points on every stretch that
 * turns by at most half a radian), not from a truncated series: the result
 * is exact to 1e-9 m for lengths up to 1000 m and total turns up to pi, and
 * the same method serves longer and sharper curves. */

/** Largest turn a curve or an alignment element may make, in radians (some
 *  1600 full circles): it bounds the work of one evaluation. */
#define QS_MAX_TURN 10000.0

/** Largest magnitude of a coordinate, chainage, length or offset that the
 *  road functions accept, m. */
#define QS_MAX_COORDINATE 1.0e9

/** A curve whose curvature runs linearly from curvature_start to
 *  curvature_end over its length: a clothoid (one of the two 0), a partial
 *  transition between two radii (both non-zero, same sign), a circular arc
 *  (both equal) or a straight (both 0). Curvatures of opposite signs give a
 *  curve that changes its turning sense on the way. */
typedef struct qs_transition {
    double x;               /**< northing of the start point, m */
    double y;               /**< easting of the start point, m */
    double azimuth;         /**< forward azimuth at the start, arc-seconds */
    double curvature_start; /**< signed curvature at the start, 1/m (+ right) */
    double curvature_end;   /**< signed curvature at the end, 1/m (+ right) */
    double length;          /**< length along the curve, m, > 0 */
} qs_transition;

/** A point on a curve with the forward azimuth there. */
typedef struct qs_pose {
    double x;       /**< northing, m */
    double y;       /**< easting, m */
    double azimuth; /**< forward azimuth, arc-seconds in [0, 1296000) */
} qs_pose;

/** Point and forward azimuth at arc length s from the start of a curve
 *  whose curvature runs linearly with length, exact to 1e-9 m for lengths
 *  up to 1000 m and total turns up to pi.
 *  @param curve the curve; its azimuth may be any finite number of
 *         arc-seconds (it is folded into [0, 1296000))
 *  @param s     arc length from the start, m, 0 <= s <= curve->length
 *  @param out   the point and the forward azimuth there
 *  @retval QS_OK           out written
 *  @retval QS_BAD_ARGUMENT a non-finite field or s; a length not greater
 *          than 0; s outside [0, length]; a coordinate or length beyond
 *          QS_MAX_COORDINATE; a turn bound (the larger curvature magnitude
 *          times the length) beyond QS_MAX_TURN (out unchanged) */
QS_API qs_status qs_transition_point(const qs_transition* curve, double s, qs_pose* out);

QUILLON_SIZE(qs_transition, 48);
QUILLON_LAYOUT(qs_transition, x, 0);
QUILLON_LAYOUT(qs_transition, y, 8);
QUILLON_LAYOUT(qs_transition, azimuth, 16);
QUILLON_LAYOUT(qs_transition, curvature_start, 24);
QUILLON_LAYOUT(qs_transition, curvature_end, 32);
QUILLON_LAYOUT(qs_transition, length, 40);
QUILLON_SIZE(qs_pose, 24);
QUILLON_LAYOUT(qs_pose, x, 0);
QUILLON_LAYOUT(qs_pose, y, 8);
QUILLON_LAYOUT(qs_pose, azimuth, 16);

/* ==== alignments ========================================================== */

/* An alignment is the device's complete horizontal element table (HElement
 * records closed by an end record of Type 0, as LIB_CalWay_H_Ele_MainPoint
 * and LIB_CalWay_H_Cross_MainPoint build it), of any length: record_count
 * counts the end record, from 2 up to QS_MAX_ELEMENTS + 1. Its transition
 * curves are evaluated as exact clothoids, not by the device's series. */

/** Most elements an alignment may hold. */
#define QS_MAX_ELEMENTS 1000000

/** A point described by its chainage and offset from an alignment. */
typedef struct qs_station_offset {
    double chainage; /**< chainage of the foot on the centre line, m */
    double offset;   /**< signed distance from the centre line, m, + right */
    double x;        /**< northing of the point, m */
    double y;        /**< easting of the point, m */
    double azimuth;  /**< forward azimuth of the centre line at the foot, arc-seconds */
    double centre_x; /**< northing of the foot on the centre line, m */
    double centre_y; /**< easting of the foot on the centre line, m */
    size_t element;  /**< index of the table record whose element holds the foot */
} qs_station_offset;

/** The point at a chainage and signed offset (m) from the alignment.
 *  Returns QS_OK; QS_OUTSIDE_ALIGNMENT when the chainage lies before the
 *  first record's chainage or after the end record's; QS_BAD_ARGUMENT for a
 *  record_count out of bounds, a non-finite argument or an invalid record
 *  (out unchanged on every failure). */
QS_API qs_status qs_alignment_point(const HElement* table, size_t record_count, double chainage,
                                    double offset, qs_station_offset* out);

/** Chainage and signed offset of a measured point (x, y in m): the nearest
 *  foot of a perpendicular on any element.
 *  Returns QS_OK; QS_OUTSIDE_ALIGNMENT when no element has a foot for the
 *  point (it lies beyond both ends); QS_NO_CONVERGENCE when the projection on
 *  a transition curve does not converge; QS_BAD_ARGUMENT as for
 *  qs_alignment_point (out unchanged on every failure). */
QS_API qs_status qs_alignment_locate(const HElement* table, size_t record_count, double x, double y,
                                     qs_station_offset* out);

/* ==== profiles ============================================================ */

/* A profile is the device's complete vertical element table (VElement
 * records closed by an end record of Type 0, as LIB_CalWay_V_Ele_MainPoint
 * and LIB_CalWay_V_Cross_MainPoint build it), of any length: record_count
 * counts the end record, from 2 up to QS_MAX_ELEMENTS + 1. */

/** Design height on a profile at a chainage. */
typedef struct qs_profile_point {
    double height; /**< design elevation, m */
    double grade;  /**< grade there, a ratio (0.02 rises 2 per cent), + uphill */
} qs_profile_point;

/** Design height and grade at a chainage (m).
 *  Returns QS_OK; QS_OUTSIDE_ALIGNMENT when the chainage lies before the
 *  profile's start or after its end; QS_BAD_ARGUMENT for a record_count out
 *  of bounds, a non-finite argument or an invalid record (out unchanged on
 *  every failure). */
QS_API qs_status qs_profile_height(const VElement* table, size_t record_count, double chainage,
                                   qs_profile_point* out);

/** A measured point checked against the road design. */
typedef struct qs_design_check {
    qs_station_offset position; /**< where the point lies on the alignment */
    double design_height;       /**< profile elevation at its chainage, m */
    double cut_fill;            /**< measured H minus design height, m: + cut (the point lies
                                     above the design), - fill */
} qs_design_check;

/** "Where am I?": chainage, offset, design height and cut or fill of a
 *  measured point, from the alignment and its profile.
 *  Returns QS_OK; the status of qs_alignment_locate, or of
 *  qs_profile_height when the profile does not reach the point's chainage
 *  (out unchanged on every failure). */
QS_API qs_status qs_road_check(const HElement* table, size_t record_count, const VElement* profile,
                               size_t profile_count, const SurveyPoint* measured,
                               qs_design_check* out);

#ifdef __cplusplus
}
#endif

#endif /* QUILLON_SURVEY_H */
