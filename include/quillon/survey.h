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
 * and LIB_CalWay_H_Cross_MainPoint build it, or as qs_alignment_build builds
 * it exactly), of any length: record_count counts the end record, from 2 up
 * to QS_MAX_ELEMENTS + 1. Its transition curves are evaluated as exact
 * clothoids, not by the device's series.
 *
 * Each element is evaluated from its own record alone: the record's X, Y
 * and Azimuth are its start and the forward azimuth there, for every kind,
 * an exit transition curve (Spiral 1) included - it starts where it leaves
 * the arc, with curvature 1/Radius, and reaches curvature 0 at its far end.
 * The record after it is not read for its geometry.
 *
 * The chainage decides the element: a chainage K lies on element i when
 * record i's Chainage <= K < record i+1's Chainage (the last element also
 * holds the end chainage), at arc length K - Chainage from the element's
 * start. At a joint where the stored start of an element is not the exact
 * end of the one before - a table built by the device carries the error of
 * its pi and its transition series there (micrometres on ordinary spirals,
 * centimetres to metres on long ones), a table from a design file carries
 * the designer's rounding -
 * the centre line jumps by that gap; qs_alignment_joints measures every gap.
 *
 * A table is valid when: every element record has Type 1, 2 or 3 and the
 * last record Type 0; X, Y, Azimuth and Chainage of every record are finite,
 * coordinates and chainages within QS_MAX_COORDINATE; every element has a
 * finite Length > 0 (at most QS_MAX_COORDINATE); arcs and transition curves
 * have a finite Radius > 0, Turn 0 or 1 and turn by at most QS_MAX_TURN
 * (Length / Radius); transition curves have Spiral 0 or 1; chainages
 * increase, and each chainage step differs from its element's Length by at
 * most QS_CHAINAGE_TOLERANCE. Radius, Turn and Spiral of a line are not
 * read. An invalid table gives QS_BAD_ARGUMENT. */

/** Most elements an alignment may hold. */
#define QS_MAX_ELEMENTS 1000000

/** Largest difference between an element's Length and its chainage step
 *  (the next record's Chainage minus its own) in a valid table, m. Within
 *  it, an element is evaluated up to its chainage step: a little short of
 *  its length, or a little beyond it along its own curvature law. */
#define QS_CHAINAGE_TOLERANCE 0.001

/** A point described by its chainage and offset from an alignment. */
typedef struct qs_station_offset {
    double chainage; /**< chainage of the foot on the centre line, m */
    double offset;   /**< signed distance from the centre line, m, + right */
    double x;        /**< northing of the point, m */
    double y;        /**< easting of the point, m */
    double azimuth;  /**< forward azimuth of the centre line at the foot,
                          arc-seconds in [0, 1296000) */
    double centre_x; /**< northing of the foot on the centre line, m */
    double centre_y; /**< easting of the foot on the centre line, m */
    size_t element;  /**< index of the table record whose element holds the foot */
} qs_station_offset;

/** The end of one element against the record that follows it. */
typedef struct qs_joint {
    double x;           /**< northing of the element's exact end, m */
    double y;           /**< easting of the element's exact end, m */
    double azimuth;     /**< forward azimuth at the exact end, arc-seconds in [0, 1296000) */
    double gap;         /**< distance from the exact end to the next record's X, Y, m */
    double azimuth_gap; /**< next record's Azimuth minus the exact end azimuth,
                             arc-seconds in [-648000, 648000) */
} qs_joint;

/** Complete element table, exact, from the designer's element list: the
 *  rigorous counterpart of LIB_CalWay_H_Ele_MainPoint, of any length.
 *  Records 0 to record_count - 2 of elements are read: the first one's X, Y,
 *  Azimuth and Chainage are the alignment's start, every one's Type,
 *  Length, Radius, Turn and Spiral its element. table receives a copy of
 *  each element with its exact start point, forward azimuth (folded into
 *  [0, 1296000)) and chainage, the first one as given, and, in record
 *  record_count - 1, the end record (Type 0, the exact end point, azimuth
 *  and chainage, every other field 0). Each start is the exact end of the
 *  element before, so the table is continuous in position and azimuth at
 *  every joint; unlike the device's builder, a line after a line starts
 *  with the first line's azimuth. table may be the same array as elements.
 *  @param elements     the element list, record_count - 1 records
 *  @param record_count records of the complete table, 2 to QS_MAX_ELEMENTS + 1
 *  @param table        room for record_count records
 *  @retval QS_OK           table written
 *  @retval QS_BAD_ARGUMENT record_count out of bounds; an element that a
 *          valid table would refuse (see above); the first record's X, Y,
 *          Azimuth or Chainage not finite; a start coordinate or chainage
 *          plus the sum of the lengths beyond QS_MAX_COORDINATE; an element
 *          too short to advance the chainage in double precision (table
 *          unchanged) */
QS_API qs_status qs_alignment_build(const HElement* elements, size_t record_count, HElement* table);

/** The point at a chainage and signed offset from the alignment, with the
 *  centre line's foot and forward azimuth there.
 *  @param table        a complete element table
 *  @param record_count its records, end record included
 *  @param chainage     m, from the first record's Chainage to the end record's
 *  @param offset       m, + right of the centre line looking toward
 *                      increasing chainage
 *  @param out          chainage and offset as given, the point, the foot,
 *                      the azimuth and the element holding the chainage
 *  @retval QS_OK                out written
 *  @retval QS_OUTSIDE_ALIGNMENT the chainage lies before the first record's
 *          Chainage or after the end record's (out unchanged)
 *  @retval QS_BAD_ARGUMENT      record_count out of bounds, an invalid
 *          table, a chainage or offset not finite or beyond
 *          QS_MAX_COORDINATE (out unchanged) */
QS_API qs_status qs_alignment_point(const HElement* table, size_t record_count, double chainage,
                                    double offset, qs_station_offset* out);

/** Chainage and signed offset of a measured point: the nearest foot of a
 *  perpendicular from the point on any element, that is, the nearest point
 *  of the centre line where the distance to the point has a local minimum.
 *  - The two elements either side of the record point nearest the point
 *    are searched first; then every element that cannot hold a nearer
 *    foot, or along which the point lies wholly ahead or behind, is
 *    skipped, so that a long table costs a few operations per element.
 *  - Each element is walked in stretches turning by at most 1/8 rad; where
 *    the point passes abeam, the foot is found in closed form on a line or
 *    an arc, by Newton's method on the arc length on a transition curve
 *    (kept inside a bracket that halves when a step would leave it). Every
 *    foot whose offset is smaller than 7/8 of the smallest radius of its
 *    element is found; a point farther inside, toward or beyond the centres
 *    of curvature, may be given another foot.
 *  - A point at the centre of an arc is as far from every point of it: it
 *    is given the arc's start, or an end of the arc where rounding makes
 *    that the nearer.
 *  - Feet on two elements (near a joint, on the inside of a bend): the
 *    nearer wins; at equal distances the earlier element.
 *  - Outside an angle point (a joint where the azimuth breaks, or the gap
 *    of a joint) a point may lie beyond the end of one element and before
 *    the start of the next, with no perpendicular foot on either: its foot
 *    is the joint itself (the next record's X, Y), its chainage the joint's,
 *    its offset the distance to the joint signed by the side of the bend,
 *    its azimuth and element those of the next record. qs_alignment_point
 *    at that chainage and offset then gives a point on the next element's
 *    normal, not the measured one.
 *  - A point less than a micrometre before the start or beyond the end
 *    takes its foot there; one farther, with no foot elsewhere, is outside.
 *  The bracketed iteration always converges: this function does not
 *  return QS_NO_CONVERGENCE.
 *  @param table        a complete element table
 *  @param record_count its records, end record included
 *  @param x            northing of the measured point, m
 *  @param y            easting of the measured point, m
 *  @param out          chainage, offset, the point as given, the foot, the
 *                      azimuth there and its element
 *  @retval QS_OK                out written
 *  @retval QS_OUTSIDE_ALIGNMENT no element has a foot for the point: it
 *          lies beyond both ends (out unchanged)
 *  @retval QS_BAD_ARGUMENT      record_count out of bounds, an invalid
 *          table, x or y not finite or beyond QS_MAX_COORDINATE (out
 *          unchanged) */
QS_API qs_status qs_alignment_locate(const HElement* table, size_t record_count, double x, double y,
                                     qs_station_offset* out);

/** The gap at every joint: for each element i, its exact end (at the next
 *  record's chainage) against record i + 1's X, Y and Azimuth - zero on a
 *  table from qs_alignment_build, the series error on one built by the
 *  device, the rounding of the design on one read from a file.
 *  @param table        a complete element table
 *  @param record_count its records, end record included
 *  @param joints       room for record_count - 1 joints; joint i belongs to
 *                      element i
 *  @retval QS_OK           joints written
 *  @retval QS_BAD_ARGUMENT record_count out of bounds or an invalid table
 *          (joints unchanged) */
QS_API qs_status qs_alignment_joints(const HElement* table, size_t record_count, qs_joint* joints);

QUILLON_SIZE(qs_station_offset, 64);
QUILLON_LAYOUT(qs_station_offset, chainage, 0);
QUILLON_LAYOUT(qs_station_offset, offset, 8);
QUILLON_LAYOUT(qs_station_offset, x, 16);
QUILLON_LAYOUT(qs_station_offset, y, 24);
QUILLON_LAYOUT(qs_station_offset, azimuth, 32);
QUILLON_LAYOUT(qs_station_offset, centre_x, 40);
QUILLON_LAYOUT(qs_station_offset, centre_y, 48);
QUILLON_LAYOUT(qs_station_offset, element, 56);
QUILLON_SIZE(qs_joint, 40);
QUILLON_LAYOUT(qs_joint, x, 0);
QUILLON_LAYOUT(qs_joint, y, 8);
QUILLON_LAYOUT(qs_joint, azimuth, 16);
QUILLON_LAYOUT(qs_joint, gap, 24);
QUILLON_LAYOUT(qs_joint, azimuth_gap, 32);

/* ==== profiles ============================================================ */

/* A profile is the device's complete vertical element table (VElement
 * records closed by an end record of Type 0, as LIB_CalWay_V_Ele_MainPoint
 * and LIB_CalWay_V_Cross_MainPoint build it), of any length: record_count
 * counts the end record, from 2 up to QS_MAX_ELEMENTS + 1.
 *
 * Each element is evaluated exactly from its own record: its start
 * (Chainage, Elevation), GradeIn and, for curves, GradeOut.
 * - Grade line (Type 1): the grade GradeIn.
 * - Parabolic curve (Type 2): the grade runs linearly from GradeIn to
 *   GradeOut over Length.
 * - Circular curve (Type 3): the circle of radius Radius tangent to GradeIn
 *   at the start, bending toward GradeOut (a sag when GradeOut is the
 *   greater); once its grade reaches GradeOut, after a horizontal distance
 *   Radius |sin(atan GradeOut) - sin(atan GradeIn)|, the grade line GradeOut
 *   carries on to the element's end. The device's builders make such a
 *   curve as long in chainage as the arc is long, a little more than its
 *   horizontal extent, and place the next record by approximate formulas:
 *   on their tables the profile has a small step at the joint after it.
 * The chainage decides the element as on an alignment (see above).
 *
 * A profile is valid when: every element record has Type 1, 2 or 3 and the
 * last record Type 0; Chainage and Elevation of every record are finite and
 * within QS_MAX_COORDINATE; every element has a finite Length > 0 (at most
 * QS_MAX_COORDINATE) and GradeIn in [-1, 1]; curves have GradeOut in
 * [-1, 1]; circular curves a finite Radius > 0; chainages increase, and each
 * chainage step differs from its element's Length by at most
 * QS_CHAINAGE_TOLERANCE. Other fields (the vertex, Given, a grade line's
 * GradeOut, a parabola's Radius, the end record's GradeIn) are not read. */

/** Design height on a profile at a chainage. */
typedef struct qs_profile_point {
    double height; /**< design elevation, m */
    double grade;  /**< grade there, a ratio (0.02 rises 2 per cent), + uphill */
} qs_profile_point;

/** Design height and grade at a chainage.
 *  @param table        a complete vertical element table
 *  @param record_count its records, end record included
 *  @param chainage     m
 *  @param out          the design height and grade there
 *  @retval QS_OK                out written
 *  @retval QS_OUTSIDE_ALIGNMENT the chainage lies before the first record's
 *          Chainage or after the end record's: no design height there (out
 *          unchanged)
 *  @retval QS_BAD_ARGUMENT      record_count out of bounds, an invalid
 *          profile, a chainage not finite or beyond QS_MAX_COORDINATE (out
 *          unchanged) */
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
 *  measured point, from the alignment (qs_alignment_locate) and its profile
 *  (qs_profile_height at the located chainage).
 *  @param table         a complete horizontal element table
 *  @param record_count  its records, end record included
 *  @param profile       a complete vertical element table
 *  @param profile_count its records, end record included
 *  @param measured      the measured point: X, Y, H in m
 *  @param out           where the point lies, the design height and cut/fill
 *  @retval QS_OK                out written
 *  @retval QS_OUTSIDE_ALIGNMENT the point lies beyond both ends of the
 *          alignment, or the profile does not reach its chainage (out
 *          unchanged)
 *  @retval QS_BAD_ARGUMENT      either table or count invalid (both are
 *          checked first), a measured coordinate not finite or beyond
 *          QS_MAX_COORDINATE (out unchanged) */
QS_API qs_status qs_road_check(const HElement* table, size_t record_count, const VElement* profile,
                               size_t profile_count, const SurveyPoint* measured,
                               qs_design_check* out);

QUILLON_SIZE(qs_profile_point, 16);
QUILLON_LAYOUT(qs_profile_point, height, 0);
QUILLON_LAYOUT(qs_profile_point, grade, 8);
QUILLON_SIZE(qs_design_check, 80);
QUILLON_LAYOUT(qs_design_check, position, 0);
QUILLON_LAYOUT(qs_design_check, design_height, 64);
QUILLON_LAYOUT(qs_design_check, cut_fill, 72);

#ifdef __cplusplus
}
#endif

#endif /* QUILLON_SURVEY_H */
