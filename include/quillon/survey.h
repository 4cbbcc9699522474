/**
 * @file quillon/survey.h
 * @brief The survey layer: rigorous survey computations beside the device
 *        library.
 *
 * The device library (quillon.h) reproduces the instrument's arithmetic to the
 * bit, with its truncations and short series. This library answers the same
 * field questions rigorously: a free station by least squares, exact
 * transition curves, chainage and offset of a measured point on an alignment
 * of any length, and traverse adjustment from raw observations. It reads the
 * device's own records (HElement and VElement tables, SurveyPoint) so that the
 * same design drives both, and never changes what the device library does.
 *
 * @par Units and conventions
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

/** @def QS_API
 *  Marks a function exported by the shared library quillon_survey. Callers
 *  of the static library define QUILLON_SURVEY_STATIC (CMake's
 *  Quillon::survey_static does); QUILLON_SURVEY_BUILDING is defined only
 *  while the library itself is built. */
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

/** A short English text for a status, for messages.
 *  @param[in] status a qs_status; any other int a caller passes is accepted
 *  @return "success", "too few observations", ... ; "unknown status" for a
 *          value outside the enumeration. The text is static and never
 *          freed. */
QS_API const char* qs_status_message(qs_status status);

/* ==== free station ======================================================== */

/* The instrument stands on an unknown mark and sights known points. Every
 * sighting gives a horizontal direction (a circle reading) and, where the
 * crew measured them, a slope distance and a zenith angle.
 *
 * Plan: X, Y of the station and the orientation of the circle (the azimuth of
 * its zero) are fitted by least squares to all directions and horizontal
 * distances, by Gauss-Newton iterations from a closed-form start: a
 * similarity fit of the sightings with distances when two or more have one,
 * otherwise an algebraic resection from all directions. The observation
 * equations are
 *     direction:  reading + orientation = azimuth(station -> point)
 *     distance:   horizontal distance   = |point - station| in plan
 * A slope distance is reduced to the horizontal with its zenith angle,
 * D = S sin z; without a zenith angle it is taken as horizontal already (as
 * an instrument that reduces distances delivers it).
 * The iteration has converged when every correction is at most 1e-6 of the
 * a priori standard deviation of its unknown.
 *
 * Weights: 1 / sigma^2 with the a priori standard deviations: a direction
 * sigma_direction; a horizontal distance sqrt((sin z s_S)^2 + (S cos z
 * s_z)^2) with s_S = sigma_distance_mm / 1000 + sigma_distance_ppm 1e-6 S
 * (just s_S without a zenith angle).
 *
 * Height: every sighting with a zenith angle gives a height of the station
 * mark, H_i = H_point + target_height - dH - instrument_height, with
 *     dH = S cos z   sigma(dH)^2 = (cos z s_S)^2 + (D s_z)^2    (distance measured)
 *     dH = D cot z   sigma(dH) = D s_z / sin^2 z                (no distance)
 * plus, with curvature on, (1 - k) D^2 / (2 R): earth curvature less
 * refraction, k the refraction coefficient, R the earth radius. D is
 * S sin z where the distance was measured, otherwise the horizontal distance
 * from the fitted station (taken as exact). The station height is the
 * weighted mean of the H_i.
 *
 * Standard deviations of the results are the a priori ones scaled by the a
 * posteriori sigma of unit weight; with no redundancy (0 degrees of freedom,
 * or a single height) they are the a priori ones.
 *
 * Blunders (Baarda's data snooping): for every observation the redundancy
 * number r = 1 - p a Q a' (its share of the redundancy; they sum to the
 * degrees of freedom) and the standardized residual w = v / (sigma sqrt(r)),
 * sigma the a priori standard deviation. An observation with r below 1e-6 is
 * not checked by the others: its w is 0 and it is never named. The
 * observation with the largest |w| is reported, flagged when |w| exceeds
 * the threshold (3.29: two-sided, 0.1 per cent, normal distribution).
 *
 * Geometry: the fit is refused (QS_SINGULAR) when the station is not
 * determined or barely so: with directions alone, on the circle through
 * three points or in one line with all of them, or near such places. The
 * measure is the inflation F = trace(Qxy) trace(Nxy) / 4 of the normal
 * equations (Nxy the plan block of the normal matrix, Qxy that of its
 * inverse): 1 for an ideal, evenly surrounded station, F grows as the
 * square of the loss of precision. The fit is refused when F exceeds
 * QS_MAX_INFLATION at any iteration, that is when the position is more
 * than 1000 times less precise than the same sightings give from an even
 * spread; also when a known point lies within 1 mm of the station in plan. */

/** Most sightings qs_free_station takes. */
#define QS_MAX_SIGHTINGS 10000
/** Most iterations a caller may allow qs_free_station. */
#define QS_MAX_ITERATIONS 100
/** Largest inflation F of the normal equations accepted (see above). */
#define QS_MAX_INFLATION 1.0e6
/** Mean earth radius, m, for the curvature correction of heights. */
#define QS_EARTH_RADIUS 6371000.0
/** Critical value of |w|: two-sided test at 0.1 per cent. */
#define QS_BLUNDER_THRESHOLD 3.29
/** Largest magnitude of a coordinate, height or length taken, m. Bounds on
 *  inputs keep every intermediate value finite. */
#define QS_MAX_LENGTH 1.0e9

/** One sighting from the free station to a known point. Every field must be
 *  finite and in its range, read or not; lengths within +-QS_MAX_LENGTH. */
typedef struct qs_sighting {
    double x;              /**< northing of the known point, m */
    double y;              /**< easting of the known point, m */
    double h;              /**< elevation of the known point, m */
    double direction;      /**< horizontal circle reading, arc-seconds (any finite value) */
    double slope_distance; /**< slope distance, m, > 0 when has_distance */
    double zenith;         /**< zenith angle, arc-seconds, 1 to 647999 when has_zenith (not
                                within 1" of the plumb line) */
    double target_height;  /**< height of the target over the known point, m */
    int has_distance;      /**< 1: slope_distance was measured; 0: not */
    int has_zenith;        /**< 1: zenith was measured; 0: not */
} qs_sighting;

/** How the free station is computed. Every field must be in its range,
 *  read or not. */
typedef struct qs_free_station_options {
    double instrument_height;  /**< height of the instrument axis over the mark, m, within
                                    +-QS_MAX_LENGTH */
    double sigma_direction;    /**< a priori standard deviation of a direction, arc-seconds,
                                    0.001 to 3600 */
    double sigma_zenith;       /**< a priori standard deviation of a zenith angle,
                                    arc-seconds, 0.001 to 3600 */
    double sigma_distance_mm;  /**< constant part of a distance's standard deviation, mm,
                                    0.01 to 1000 */
    double sigma_distance_ppm; /**< part proportional to the distance, mm per km, 0 to 1000 */
    double refraction;         /**< refraction coefficient k, -1 to 1 (0.13 is usual); read
                                    with curvature on */
    double earth_radius;       /**< earth radius, m, 1e3 to QS_MAX_LENGTH (QS_EARTH_RADIUS);
                                    read with curvature on */
    double blunder_threshold;  /**< critical value of |w|, finite and > 0
                                    (QS_BLUNDER_THRESHOLD) */
    int curvature;             /**< 1: correct heights for curvature and refraction; 0: not */
    int max_iterations;        /**< most Gauss-Newton iterations, 1 to QS_MAX_ITERATIONS
                                    (20 is ample) */
} qs_free_station_options;

/** Kinds of observation, as named by the blunder search. */
enum qs_observation_kind {
    QS_NO_OBSERVATION = 0, /**< nothing named: no observation is checked by the others */
    QS_DIRECTION = 1,      /**< a horizontal direction */
    QS_DISTANCE = 2,       /**< a horizontal distance */
    QS_HEIGHT = 3          /**< a trigonometric height (zenith angle) */
};

/** The fitted station. */
typedef struct qs_free_station_result {
    double x;                 /**< northing of the station mark, m */
    double y;                 /**< easting of the station mark, m */
    double h;                 /**< elevation of the station mark, m; NaN when no zenith
                                   angle was measured */
    double orientation;       /**< azimuth of the circle's zero (azimuth = reading +
                                   orientation), arc-seconds in [0, 1296000) */
    double sigma_x;           /**< standard deviation of x, m */
    double sigma_y;           /**< standard deviation of y, m */
    double sigma_h;           /**< standard deviation of h, m; NaN with h */
    double sigma_orientation; /**< standard deviation of the orientation, arc-seconds */
    double sigma0;            /**< a posteriori sigma of unit weight of the plan fit,
                                   sqrt(v'Pv / dof); 1 when dof is 0 */
    double sigma0_height;     /**< the same for the heights; 1 with one height or none */
    double blunder_w;         /**< largest |w| of any observation; 0 when none is checked */
    int blunder_kind;         /**< kind of that observation, a qs_observation_kind */
    int blunder_flagged;      /**< 1 when blunder_w exceeds the threshold, else 0 */
    size_t dof;               /**< degrees of freedom of the plan fit: directions plus
                                   distances minus 3 */
    size_t height_count;      /**< number of trigonometric heights (sightings with a
                                   zenith angle) */
    size_t blunder_index;     /**< index of the sighting of that observation (0 when none) */
    size_t iterations;        /**< Gauss-Newton iterations run */
} qs_free_station_result;

/** What the fit makes of one sighting. Residuals are adjusted minus observed.
 *  An observation that was not made has residual, redundancy and w all 0. */
typedef struct qs_sighting_result {
    double azimuth;              /**< azimuth station -> point, arc-seconds in [0, 1296000) */
    double horizontal_distance;  /**< station -> point in plan, m */
    double direction_residual;   /**< arc-seconds */
    double direction_redundancy; /**< redundancy number, 0 to 1 */
    double direction_w;          /**< standardized residual */
    double distance_residual;    /**< m */
    double distance_redundancy;  /**< redundancy number, 0 to 1 */
    double distance_w;           /**< standardized residual */
    double height;               /**< station height from this sighting alone, m */
    double height_residual;      /**< station height minus this sighting's height, m */
    double height_redundancy;    /**< redundancy number, 0 to 1 */
    double height_w;             /**< standardized residual */
} qs_sighting_result;

/** Free station by least squares from count sightings.
 *  The station is determined by two sightings with distances or by three
 *  sightings.
 *  @param[in] sightings  count sightings, in any order
 *  @param[in] count      number of sightings, 1 to QS_MAX_SIGHTINGS
 *  @param[in] options    instrument height, a priori standard deviations, heights
 *  @param[out] result     the station, its precision and the blunder search
 *  @param[out] residuals  count records, one per sighting in the same order
 *  @retval QS_OK             result and residuals written
 *  @retval QS_BAD_ARGUMENT   count 0 or above QS_MAX_SIGHTINGS; a non-finite
 *                            field; a flag other than 0 or 1; any field out of
 *                            its range (a slope distance not above 0, a
 *                            negative standard deviation, ...); max_iterations
 *                            outside 1 to QS_MAX_ITERATIONS
 *  @retval QS_TOO_FEW        fewer than three sightings and fewer than two
 *                            distances
 *  @retval QS_SINGULAR       the geometry does not determine the station (see
 *                            above)
 *  @retval QS_NO_CONVERGENCE max_iterations did not reach the criterion
 *  Nothing is written unless QS_OK is returned. */
QS_API qs_status qs_free_station(const qs_sighting* sightings, size_t count,
                                 const qs_free_station_options* options,
                                 qs_free_station_result* result, qs_sighting_result* residuals);

/* ==== traverse ============================================================ */

/* A traverse runs from a known station A through new stations to a known
 * end, with a horizontal distance (and optionally a height difference) on
 * every leg and an angle at every station. Stations are numbered 0 (A) to
 * leg_count (the end); leg i runs from station i to station i + 1.
 *
 * Angles are measured as the instrument measures them: clockwise from the
 * back station to the forward station, raw (any value, folded here), so the
 * forward azimuth of leg i is the azimuth of leg i - 1 plus 648000 plus the
 * angle at station i. At A the back station is the backsight B, at the end
 * of a link traverse the forward station is the foresight F:
 *   QS_TRAVERSE_LINK        A with backsight B to a known end E with
 *                           foresight F. Angles at stations 0 to n (n + 1);
 *                           the azimuth E -> F carried through them is
 *                           compared with the known one.
 *   QS_TRAVERSE_LOOP        A with backsight B round a polygon back to A.
 *                           Angle at station 0 from B to station 1 (the
 *                           orientation, not corrected); angles at stations 1
 *                           to n-1, and at station n (A again) from station
 *                           n - 1 to station 1. These n polygon angles sum to
 *                           (n - 2) 648000 (interior) or (n + 2) 648000
 *                           (exterior); at least 3 legs.
 *   QS_TRAVERSE_KNOWN_ENDS  A with backsight B to a known end E with no
 *                           closing orientation: angles at stations 0 to
 *                           n - 1; no angular check, linear misclosure only.
 * The angular misclosure (observed minus expected, folded into
 * [-648000, 648000)) is spread evenly over the angles that close: each gets
 * -misclosure / (n + 1) (link) or -misclosure / n (loop polygon angles).
 * The linear misclosure (computed end minus known end) is spread over the
 * legs by
 *   QS_COMPASS_RULE  (Bowditch) in proportion to the leg length;
 *   QS_TRANSIT_RULE  in proportion to |dX| for X and |dY| for Y (by length
 *                    instead when the increments in that axis are all 0).
 * Heights: the height misclosure (sum of the height differences minus the
 * known difference end - start) is spread in proportion to the leg length
 * (QS_HEIGHTS_BY_LENGTH, levelling weights) or its square
 * (QS_HEIGHTS_BY_LENGTH_SQUARED, trigonometric heights). */

/** Most legs qs_traverse_adjust takes. */
#define QS_MAX_TRAVERSE_LEGS 100000

/** Forms of traverse. */
enum qs_traverse_kind {
    QS_TRAVERSE_LINK = 0,      /**< known station and orientation at both ends */
    QS_TRAVERSE_LOOP = 1,      /**< closed loop back to the start */
    QS_TRAVERSE_KNOWN_ENDS = 2 /**< known stations at both ends, orientation at the start only */
};

/** Rules for the linear misclosure. */
enum qs_traverse_rule {
    QS_COMPASS_RULE = 0, /**< by leg length (Bowditch) */
    QS_TRANSIT_RULE = 1  /**< by the absolute coordinate increments */
};

/** Rules for the height misclosure. */
enum qs_height_rule {
    QS_HEIGHTS_NONE = 0,             /**< no height differences: heights not carried */
    QS_HEIGHTS_BY_LENGTH = 1,        /**< in proportion to the leg length */
    QS_HEIGHTS_BY_LENGTH_SQUARED = 2 /**< in proportion to its square */
};

/** The known points of a traverse. Every field must be within
 *  +-QS_MAX_LENGTH, read or not. */
typedef struct qs_traverse_ends {
    SurveyPoint start;           /**< known first station A, m */
    SurveyPoint start_backsight; /**< known point sighted back from A, m (H not read) */
    SurveyPoint end;             /**< known last station E, m (not read for a loop) */
    SurveyPoint end_foresight;   /**< known point sighted forward from E, m (link only;
                                      H not read) */
} qs_traverse_ends;

/** Observations at one station of a traverse. Every field must be finite,
 *  the lengths within +-QS_MAX_LENGTH, read or not. */
typedef struct qs_traverse_station {
    double angle;             /**< clockwise angle from the back station to the forward
                                   station, arc-seconds */
    double distance;          /**< horizontal length of the leg to the next station, m,
                                   > 0 (not read at the last station) */
    double height_difference; /**< H of the next station minus H of this one, m (read
                                   with a height rule; not at the last station) */
} qs_traverse_station;

/** Closure of a traverse. */
typedef struct qs_traverse_result {
    double angular_misclosure;  /**< observed minus expected, arc-seconds (0 for known ends) */
    double angle_correction;    /**< added to every closing angle, arc-seconds */
    double computed_closing;    /**< link: azimuth E -> F carried from the raw angles; loop:
                                     sum of the raw polygon angles; arc-seconds (0 for
                                     known ends) */
    double expected_closing;    /**< link: known azimuth E -> F; loop: (n -/+ 2) 648000;
                                     arc-seconds (0 for known ends) */
    double misclosure_x;        /**< computed end X minus known end X, m */
    double misclosure_y;        /**< computed end Y minus known end Y, m */
    double misclosure;          /**< linear misclosure, m */
    double relative_misclosure; /**< misclosure / total length */
    double precision_ratio;     /**< N of the precision 1 : N, total length / misclosure;
                                     +infinity when the traverse closes exactly */
    double height_misclosure;   /**< sum of height differences minus known end H - start H,
                                     m (0 with QS_HEIGHTS_NONE) */
    double total_length;        /**< sum of the leg lengths, m */
} qs_traverse_result;

/** Closes and adjusts a traverse.
 *  @param[in] kind        a qs_traverse_kind
 *  @param[in] ends        the known points
 *  @param[in] stations    leg_count + 1 records, station 0 (A) to station leg_count
 *  @param[in] leg_count   number of legs, 1 to QS_MAX_TRAVERSE_LEGS (3 or more
 *                     for a loop)
 *  @param[in] rule        a qs_traverse_rule
 *  @param[in] height_rule a qs_height_rule
 *  @param[out] result      the misclosures
 *  @param[out] adjusted    leg_count + 1 points: the adjusted stations, station 0
 *                     being A itself. H is adjusted with a height rule;
 *                     with QS_HEIGHTS_NONE the H of A and of the known end
 *                     are copied and those between are NaN
 *  @retval QS_OK            result and adjusted written
 *  @retval QS_BAD_ARGUMENT  kind, rule or height_rule unknown; leg_count 0
 *                           or above QS_MAX_TRAVERSE_LEGS; a non-finite field
 *                           or a length out of range; a leg distance not
 *                           above 0
 *  @retval QS_TOO_FEW       a loop of fewer than 3 legs
 *  @retval QS_SINGULAR      A and its backsight coincide in plan, or (link)
 *                           E and its foresight do
 *  Nothing is written unless QS_OK is returned. */
QS_API qs_status qs_traverse_adjust(int kind, const qs_traverse_ends* ends,
                                    const qs_traverse_station* stations, size_t leg_count, int rule,
                                    int height_rule, qs_traverse_result* result,
                                    SurveyPoint* adjusted);

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
 *  @param[in] curve the curve; its azimuth may be any finite number of
 *         arc-seconds (it is folded into [0, 1296000))
 *  @param[in] s     arc length from the start, m, 0 <= s <= curve->length
 *  @param[out] out   the point and the forward azimuth there
 *  @retval QS_OK           out written
 *  @retval QS_BAD_ARGUMENT a non-finite field or s; a length not greater
 *          than 0; s outside [0, length]; a coordinate or length beyond
 *          QS_MAX_COORDINATE; a turn bound (the larger curvature magnitude
 *          times the length) beyond QS_MAX_TURN; a change of curvature too
 *          steep for a double (its rate per metre, the difference of the
 *          curvatures over the length, beyond the largest double: a length
 *          near the smallest doubles) (out unchanged) */
QS_API qs_status qs_transition_point(const qs_transition* curve, double s, qs_pose* out);

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
 * (Length / Radius), also as evaluated up to its chainage step (the larger
 * curvature magnitude on that stretch times the step: a transition curve
 * far shorter than the step, or too short for its rate of change of
 * curvature to be a double, turns by more); transition curves have Spiral 0
 * or 1; chainages increase, and each chainage step differs from its
 * element's Length by at most QS_CHAINAGE_TOLERANCE. Radius, Turn and Spiral of a line are not
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
 *  @param[in] elements     the element list, record_count - 1 records
 *  @param[in] record_count records of the complete table, 2 to QS_MAX_ELEMENTS + 1
 *  @param[out] table        room for record_count records
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
 *  @param[in] table        a complete element table
 *  @param[in] record_count its records, end record included
 *  @param[in] chainage     m, from the first record's Chainage to the end record's
 *  @param[in] offset       m, + right of the centre line looking toward
 *                      increasing chainage
 *  @param[out] out          chainage and offset as given, the point, the foot,
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
 *  @param[in] table        a complete element table
 *  @param[in] record_count its records, end record included
 *  @param[in] x            northing of the measured point, m
 *  @param[in] y            easting of the measured point, m
 *  @param[out] out          chainage, offset, the point as given, the foot, the
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
 *  @param[in] table        a complete element table
 *  @param[in] record_count its records, end record included
 *  @param[out] joints       room for record_count - 1 joints; joint i belongs to
 *                      element i
 *  @retval QS_OK           joints written
 *  @retval QS_BAD_ARGUMENT record_count out of bounds or an invalid table
 *          (joints unchanged) */
QS_API qs_status qs_alignment_joints(const HElement* table, size_t record_count, qs_joint* joints);

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
 *  @param[in] table        a complete vertical element table
 *  @param[in] record_count its records, end record included
 *  @param[in] chainage     m
 *  @param[out] out          the design height and grade there
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
 *  @param[in] table         a complete horizontal element table
 *  @param[in] record_count  its records, end record included
 *  @param[in] profile       a complete vertical element table
 *  @param[in] profile_count its records, end record included
 *  @param[in] measured      the measured point: X, Y, H in m
 *  @param[out] out           where the point lies, the design height and cut/fill
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

/* ==== polar points and joins ============================================== */

/* The two elementary computations of a survey, with the true pi: a point set
 * out from a known one by azimuth and horizontal distance, and the azimuth
 * and distances from one point to another. */

/** A join from one point to another. */
typedef struct qs_join_result {
    double azimuth;             /**< from -> to, arc-seconds in [0, 1296000) */
    double horizontal_distance; /**< distance in plan, m */
    double height_difference;   /**< H of the second point minus H of the first, m */
    double slope_distance;      /**< distance in space, m */
    double zenith;              /**< zenith angle from -> to, arc-seconds in [0, 648000]: 0
                                     straight up, 324000 level */
} qs_join_result;

/** The point at a horizontal distance along an azimuth from a known point:
 *  X = from X + distance cos(azimuth), Y = from Y + distance sin(azimuth),
 *  the azimuth folded into [0, 1296000) and converted with the true pi. H
 *  is the known point's, carried over.
 *  @param[in] from     the known point, m; X, Y and H finite and within
 *                  +-QS_MAX_LENGTH
 *  @param[in] azimuth  arc-seconds, any finite value
 *  @param[in] distance horizontal distance, m, finite and within
 *                  +-QS_MAX_LENGTH (a negative one sets out the opposite way)
 *  @param[out] out      the point
 *  @retval QS_OK           out written
 *  @retval QS_BAD_ARGUMENT a non-finite input, a coordinate or the distance
 *          beyond QS_MAX_LENGTH (out unchanged) */
QS_API qs_status qs_polar_point(const SurveyPoint* from, double azimuth, double distance,
                                SurveyPoint* out);

/** Azimuth, distances, height difference and zenith angle from one point to
 *  another, with the true pi: due east is 324000 exactly.
 *  @param[in] from the first point, m; X, Y and H finite and within
 *              +-QS_MAX_LENGTH
 *  @param[in] to   the second point, m; likewise
 *  @param[out] out  the join
 *  @retval QS_OK           out written
 *  @retval QS_SINGULAR     the points have equal X and equal Y: no azimuth
 *          (out unchanged)
 *  @retval QS_BAD_ARGUMENT a non-finite coordinate or one beyond
 *          QS_MAX_LENGTH (out unchanged) */
QS_API qs_status qs_join(const SurveyPoint* from, const SurveyPoint* to, qs_join_result* out);

/* ==== batches ============================================================= */

/* Polar points, joins and locate over arrays: one call for a whole set of
 * points, for callers that hold thousands of them (and bindings from other
 * languages, which would otherwise pay for a call per point).
 * - Element i of every output is what the single function gives for element
 *   i of the inputs, to the bit.
 * - Arrays are plain doubles of count elements. An output may be the very
 *   array of an input (computed in place); no other overlap is allowed.
 * - Every input is checked before anything is written: one bad element
 *   refuses the whole batch (QS_BAD_ARGUMENT) and every output is left
 *   unchanged.
 * - Where the single function fails for the geometry of one element (a
 *   point that coincides with the station, a point beyond both ends of the
 *   alignment), the batch writes NaN in its place and carries on.
 * - A count of 0 reads and writes nothing and succeeds. */

/** Most elements one batch takes. */
#define QS_MAX_BATCH 1000000000

/** Polar points from one station: element i of x and y is the point
 *  qs_polar_point gives for azimuths[i] and distances[i].
 *  @param[in] from      the station, m, checked as by qs_polar_point
 *  @param[in] azimuths  count azimuths, arc-seconds, each finite
 *  @param[in] distances count horizontal distances, m, each finite and within
 *                   +-QS_MAX_LENGTH
 *  @param[in] count     number of points, 0 to QS_MAX_BATCH
 *  @param[out] x         room for count northings, m
 *  @param[out] y         room for count eastings, m
 *  @retval QS_OK           x and y written
 *  @retval QS_BAD_ARGUMENT count above QS_MAX_BATCH, a bad station or any
 *          bad azimuth or distance (x and y unchanged) */
QS_API qs_status qs_polar_points(const SurveyPoint* from, const double* azimuths,
                                 const double* distances, size_t count, double* x, double* y);

/** Joins from one station to many points in plan: element i of azimuths and
 *  distances is the azimuth and horizontal distance qs_join gives from the
 *  station to (x[i], y[i]); a point on the station in plan gets the azimuth
 *  NaN and the distance 0.
 *  @param[in] from      the station, m, checked as by qs_join
 *  @param[in] x         count northings, m, each finite and within +-QS_MAX_LENGTH
 *  @param[in] y         count eastings, m, likewise
 *  @param[in] count     number of points, 0 to QS_MAX_BATCH
 *  @param[out] azimuths  room for count azimuths, arc-seconds in [0, 1296000)
 *  @param[out] distances room for count horizontal distances, m
 *  @retval QS_OK           azimuths and distances written
 *  @retval QS_BAD_ARGUMENT count above QS_MAX_BATCH, a bad station or any
 *          bad coordinate (azimuths and distances unchanged) */
QS_API qs_status qs_joins(const SurveyPoint* from, const double* x, const double* y, size_t count,
                          double* azimuths, double* distances);

/** Chainage and offset of many measured points: element i of chainages and
 *  offsets is what qs_alignment_locate gives for (x[i], y[i]); a point
 *  beyond both ends of the alignment gets NaN in both.
 *  @param[in] table        a complete element table, checked once
 *  @param[in] record_count its records, end record included
 *  @param[in] x            count northings, m, each finite and within
 *                      +-QS_MAX_COORDINATE
 *  @param[in] y            count eastings, m, likewise
 *  @param[in] count        number of points, 0 to QS_MAX_BATCH
 *  @param[out] chainages    room for count chainages, m
 *  @param[out] offsets      room for count offsets, m, + right
 *  @retval QS_OK           chainages and offsets written
 *  @retval QS_BAD_ARGUMENT count above QS_MAX_BATCH, record_count out of
 *          bounds, an invalid table or any bad coordinate (chainages and
 *          offsets unchanged) */
QS_API qs_status qs_alignment_locate_many(const HElement* table, size_t record_count,
                                          const double* x, const double* y, size_t count,
                                          double* chainages, double* offsets);

/** @cond QUILLON_LAYOUT_CHECKS */
/* Sizes and field offsets of every record, checked as those of quillon.h
 * are (size_t is 4 or 8 bytes). */
QUILLON_SIZE(qs_sighting, 64);
QUILLON_LAYOUT(qs_sighting, x, 0);
QUILLON_LAYOUT(qs_sighting, direction, 24);
QUILLON_LAYOUT(qs_sighting, target_height, 48);
QUILLON_LAYOUT(qs_sighting, has_distance, 56);
QUILLON_LAYOUT(qs_sighting, has_zenith, 60);
QUILLON_SIZE(qs_free_station_options, 72);
QUILLON_LAYOUT(qs_free_station_options, blunder_threshold, 56);
QUILLON_LAYOUT(qs_free_station_options, curvature, 64);
QUILLON_LAYOUT(qs_free_station_options, max_iterations, 68);
QUILLON_SIZE(qs_free_station_result, 96 + 4 * sizeof(size_t));
QUILLON_LAYOUT(qs_free_station_result, blunder_w, 80);
QUILLON_LAYOUT(qs_free_station_result, blunder_kind, 88);
QUILLON_LAYOUT(qs_free_station_result, blunder_flagged, 92);
QUILLON_LAYOUT(qs_free_station_result, dof, 96);
QUILLON_LAYOUT(qs_free_station_result, iterations, 96 + 3 * sizeof(size_t));
QUILLON_SIZE(qs_sighting_result, 96);
QUILLON_LAYOUT(qs_sighting_result, height_w, 88);
QUILLON_SIZE(qs_traverse_ends, 96);
QUILLON_LAYOUT(qs_traverse_ends, start_backsight, 24);
QUILLON_LAYOUT(qs_traverse_ends, end_foresight, 72);
QUILLON_SIZE(qs_traverse_station, 24);
QUILLON_LAYOUT(qs_traverse_station, height_difference, 16);
QUILLON_SIZE(qs_traverse_result, 88);
QUILLON_LAYOUT(qs_traverse_result, total_length, 80);
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
QUILLON_SIZE(qs_profile_point, 16);
QUILLON_LAYOUT(qs_profile_point, height, 0);
QUILLON_LAYOUT(qs_profile_point, grade, 8);
QUILLON_SIZE(qs_design_check, 80);
QUILLON_LAYOUT(qs_design_check, position, 0);
QUILLON_LAYOUT(qs_design_check, design_height, 64);
QUILLON_LAYOUT(qs_design_check, cut_fill, 72);
QUILLON_SIZE(qs_join_result, 40);
QUILLON_LAYOUT(qs_join_result, azimuth, 0);
QUILLON_LAYOUT(qs_join_result, horizontal_distance, 8);
QUILLON_LAYOUT(qs_join_result, height_difference, 16);
QUILLON_LAYOUT(qs_join_result, slope_distance, 24);
QUILLON_LAYOUT(qs_join_result, zenith, 32);
/** @endcond */

#ifdef __cplusplus
}
#endif

#endif /* QUILLON_SURVEY_H */
