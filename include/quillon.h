/*
 * quillon.h - the computation library of a total station.
 *
 * One header for C and C++ callers. Every function takes plain numbers and
 * pointers to caller-owned records, writes its results into those records and
 * returns a status code (ResultCode). The library keeps no state between
 * calls, allocates nothing that outlives a call and never tests a pointer for
 * null: passing a null pointer where a record is expected is undefined.
 *
 * Units and conventions
 *   - Lengths in metres (doubles).
 *   - Angles in arc-seconds (doubles): full circle 1296000, half 648000,
 *     quarter 324000. Azimuths run clockwise from the X axis (north) toward
 *     the Y axis (east). Angles are not normalised on input.
 *   - Conversions between arc-seconds and radians use pi taken as 3.1415926
 *     (QUILLON_RHO_SEC, QUILLON_RAD_PER_SEC), never the exact value, so a
 *     direction computed with atan2 differs slightly from whole quarter
 *     circles: due east is 324000.0055268, not 324000.
 *   - A computed value v is in range when -99999999.9999 <= v <= 99999999.9999
 *     (QUILLON_RANGE_LIMIT); a not-a-number is out of range.
 *   - Counts, modes and flags are unsigned 8-bit values.
 *
 * Status codes (ResultCode)
 *   0 success; 1 input outside its domain; 2 a computed value out of range
 *   (or a scale factor outside its band); 3 two points coincide where a
 *   direction is needed; 4 a road table count outside its limits; 5 a computed
 *   point does not lie in the direction of the sighting; 6 two lines are
 *   parallel. Each function lists its own codes and which outputs are written
 *   before a failure.
 *
 * Records are laid out in declaration order with natural alignment; their
 * sizes and offsets are pinned by static assertions at the end of this header.
 */
#ifndef QUILLON_H
#define QUILLON_H

#include <stddef.h>
#include <stdint.h>

/* ---- export macro ------------------------------------------------------ */
#if defined(QUILLON_STATIC)
#define QUILLON_API
#elif defined(_WIN32) || defined(__CYGWIN__)
#if defined(QUILLON_BUILDING)
#define QUILLON_API __declspec(dllexport)
#else
#define QUILLON_API __declspec(dllimport)
#endif
#elif defined(__GNUC__)
#define QUILLON_API __attribute__((visibility("default")))
#else
#define QUILLON_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* ---- status codes and constants ---------------------------------------- */

/** Status returned by every LIB_ function. */
typedef int ResultCode;

enum QuillonStatus {
    QUILLON_OK = 0,         /**< success */
    QUILLON_DOMAIN = 1,     /**< input outside its domain */
    QUILLON_RANGE = 2,      /**< computed value beyond the range limit */
    QUILLON_COINCIDENT = 3, /**< two points coincide where a direction is needed */
    QUILLON_TABLE = 4,      /**< road table count outside its limits */
    QUILLON_BEHIND = 5,     /**< point not in the direction of the sighting */
    QUILLON_PARALLEL = 6    /**< two lines are parallel */
};

/** Arc-seconds per radian, 648000 / 3.1415926. */
#define QUILLON_RHO_SEC 206264.8097655947
/** Radians per arc-second, 3.1415926 / 648000. */
#define QUILLON_RAD_PER_SEC 4.848136728395062e-6
/** Largest magnitude of a computed coordinate, distance or difference. */
#define QUILLON_RANGE_LIMIT 99999999.9999
/** Earth radius for curvature, refraction and height scale, metres. */
#define QUILLON_EARTH_RADIUS 6370000.0

/* ---- shared records ----------------------------------------------------- */

/** A point. */
typedef struct SurveyPoint {
    double X; /**< northing, m */
    double Y; /**< easting, m */
    double H; /**< elevation, m */
} SurveyPoint;

/** The instrument station (read only). The three bytes follow the five
 *  doubles directly; the record is padded to 48 bytes. */
typedef struct StationRecord {
    double X;                     /**< northing of the station mark, m */
    double Y;                     /**< easting of the station mark, m */
    double H;                     /**< elevation of the station mark, m */
    double InstrumentHeight;      /**< height of the instrument axis over the mark, m */
    double TargetHeight;          /**< height of the target over its mark, m */
    signed char signA;            /**< +1 or -1 (-1 stored as 255) */
    signed char signB;            /**< +1 or -1; also the face byte: -1 = face II */
    unsigned char refractionMode; /**< 1: k = 0.14, 2: k = 0.20, other: no correction */
} StationRecord;

/** Distances of one measurement, written by LIB_DistConvert. */
typedef struct DistanceRecord {
    double SlopeDistance;      /**< slope distance, m */
    double HorizontalDistance; /**< horizontal distance, m */
    double VerticalDifference; /**< instrument axis to target, m */
    double HeightDifference;   /**< mark to mark, m */
} DistanceRecord;

/** Distances and angles between two points (LIB_CalDistAngle). The first
 *  three fields are never touched by LIB_CalDistAngle; the offset functions
 *  keep the offset point there. */
typedef struct DistAngleRecord {
    double X;                  /**< point northing, m (offset functions) */
    double Y;                  /**< point easting, m (offset functions) */
    double H;                  /**< point elevation, m (offset functions) */
    double SlopeDistance;      /**< m */
    double HorizontalDistance; /**< m */
    double HeightDifference;   /**< target H minus origin H, m */
    double Azimuth;            /**< arc-seconds */
    double ZenithAngle;        /**< arc-seconds, 0 at the zenith */
} DistAngleRecord;

/** Join of two points (LIB_CalDist). Fields 1 and 4 are never touched. */
typedef struct BearingRecord {
    double Spare1;             /**< left as the caller had it */
    double HorizontalDistance; /**< m */
    double HeightDifference;   /**< second point H minus first point H, m */
    double Spare4;             /**< left as the caller had it */
    double Azimuth;            /**< arc-seconds */
} BearingRecord;

/** One sighting: circle reading, zenith angle and a third value. */
typedef struct AngleObservation {
    double Horizontal; /**< horizontal direction (circle reading), arc-seconds */
    double Zenith;     /**< zenith angle, arc-seconds */
    double Value;      /**< third value; its meaning is set by each function */
} AngleObservation;

/** A point projected on the line A-B (LIB_Project, LIB_LSO_Line). */
typedef struct ProjectionRecord {
    double FootX;  /**< foot of the perpendicular, northing, m */
    double FootY;  /**< foot of the perpendicular, easting, m */
    double FootH;  /**< line height at the foot, m */
    double Across; /**< signed perpendicular distance, + right of A->B, m */
    double Along;  /**< distance from A to the foot, negative behind A, m */
    double LineDH; /**< point H minus the line height at the foot, m */
} ProjectionRecord;

/* ==== core geometry ======================================================= */

/** Face of a zenith angle V (arc-seconds): 1 (face I) for 0 <= V <= 648000,
 *  255 (face II) for V > 648000, with no upper bound.
 *  Returns 0, or 1 when V < 0 or not a number (face unchanged). */
QUILLON_API ResultCode LIB_GetFaceStatus(double zenith, unsigned char* face);

/** Adds values[0..count-1] onto *accumulator, which is not cleared first.
 *  Returns 0; 2 when the sum is out of range (the sum is written even on 2);
 *  1 for count > 10000, which an 8-bit count never reaches. */
QUILLON_API ResultCode LIB_Sum(const double* values, unsigned char count, double* accumulator);

/** Plan (mode 0) or spatial (mode 1) distance a-b, m, written to *distance;
 *  any other mode writes nothing. Returns 2 when the value then in
 *  *distance is greater than the range limit (written even on 2), else 0. */
QUILLON_API ResultCode LIB_Cal2PointDist(const SurveyPoint* a, const SurveyPoint* b,
                                         double* distance, unsigned char mode);

/** Azimuth from one point to another, arc-seconds in [0, 1296000).
 *  Returns 0; 3 when the points coincide in plan (azimuth unchanged). */
QUILLON_API ResultCode LIB_CalAZ(const SurveyPoint* from, const SurveyPoint* to, double* azimuth);

/** Slope and horizontal distance, height difference, azimuth and zenith
 *  angle from one point to another; face >= 255 gives the face II zenith
 *  angle (1296000 minus it). Fields X, Y, H of out are never touched.
 *  Returns 0; 3 when the horizontal distance is 0, 2 when a distance or the
 *  height difference is out of range (distances and height difference
 *  written even on 3 and 2; azimuth and zenith angle unchanged). */
QUILLON_API ResultCode LIB_CalDistAngle(const SurveyPoint* from, const SurveyPoint* to,
                                        unsigned char face, DistAngleRecord* out);

/** Measured point from the station, the horizontal distance and vertical
 *  difference of a measurement and an azimuth (arc-seconds); the distance
 *  is turned by signA * signB. Returns 0; 2 when X, Y or H is out of range
 *  (out unchanged). */
QUILLON_API ResultCode LIB_MeasCoor(const StationRecord* station, const DistanceRecord* distances,
                                    const double* azimuth, SurveyPoint* out);

/** Polar point from a point, an azimuth (arc-seconds), a horizontal distance
 *  and a height difference (m). Returns 0; 2 when X or Y is out of range
 *  (out unchanged). H is never range-tested. */
QUILLON_API ResultCode LIB_CalCoor(const SurveyPoint* from, double azimuth, double distance,
                                   double height_difference, SurveyPoint* out);

/** Horizontal distance, height difference and azimuth of pair[0] -> pair[1].
 *  Returns 0; 3 when the points coincide in plan (out unchanged). */
QUILLON_API ResultCode LIB_CalDist(const SurveyPoint* pair, BearingRecord* out);

/* ==== distance reduction and scale ======================================== */

/** Reduces a slope distance S (m) and zenith angle (arc-seconds) to the
 *  horizontal distance, vertical difference and mark-to-mark height
 *  difference, with the curvature and refraction correction of the
 *  station's refractionMode. scale multiplies the horizontal distance only
 *  when 0.99 < scale < 1.01 (strict); otherwise it is ignored.
 *  Writes all four fields of out. Always returns 0. */
QUILLON_API ResultCode LIB_DistConvert(const StationRecord* station, double scale,
                                       double slope_distance, double zenith, DistanceRecord* out);

/** Along-line and across-line components (m) of p relative to the line
 *  line[0] -> line[1]; across is positive to the right.
 *  Returns 0; 3 when the line points coincide in plan (outputs unchanged);
 *  2 when a component is out of range (both written even on 2). */
QUILLON_API ResultCode LIB_CalLB(const SurveyPoint* line, const SurveyPoint* p, double* along,
                                 double* across);

/** Combined factor (6370000 / (height + 6370000)) * grid scale factor.
 *  Returns 0; 2 when it lies outside [0.99, 1.01] (written even on 2). */
QUILLON_API ResultCode LIB_CalScale(double height, double grid_scale, double* combined);

/* ==== stakeout, remote height, offsets, area, missing line ================ */
/* @@field-a@@ */

/* ==== intersections, slope and angle offsets, line height, round ======== */
/* @@field-b@@ */

/* ==== resection, reference lines, planes, arcs ============================ */
/* ---- resection ---------------------------------------------------------- */

/** A free station fitted by LIB_RESDist. */
typedef struct ResectionResult {
    double X;           /**< northing of the station mark, m */
    double Y;           /**< easting of the station mark, m */
    double H;           /**< height of the station mark, m */
    double mX;          /**< standard deviation of the northing fit, m */
    double mY;          /**< standard deviation of the easting fit, m */
    double mH;          /**< standard deviation of the height, m (single precision) */
    double Orientation; /**< azimuth minus circle reading, whole arc-seconds,
                             within -324000..+324000 */
} ResectionResult;

/** Resection by directions: the horizontal distance from the unknown station
 *  to each of n known points (3 <= n <= 20), solved two neighbouring
 *  triangles at a time from the horizontal directions obs[i].Horizontal
 *  (arc-seconds) and the plan coordinates of known[i] (m).
 *  The sightings are taken in ascending order of direction; when two
 *  neighbours are more than a half circle apart the sequence starts just
 *  after that gap. The difference of the two unknown angles of each
 *  triangle pair is cut to whole arc-seconds, and a later pair overwrites
 *  the distances an earlier one found. Only the first five points carry
 *  their own index: with six or more points distances[0] receives the
 *  result of the last sighting tagged 0 and distances[5] onward are not
 *  written. Collinear points or zero angles give infinities or
 *  not-a-numbers with status 0.
 *  Not reentrant: writes two module-level scratch values.
 *  Returns 0; 1 when n is outside 3..20 (distances unchanged). */
QUILLON_API ResultCode LIB_RESA2D(const AngleObservation* obs, const SurveyPoint* known,
                                  unsigned char n, double* distances);

/** Resection with distances. mode 0: the station's X, Y and Orientation by
 *  a least-squares similarity fit of the horizontal distances
 *  dists[i].HorizontalDistance (m) and directions obs[i].Horizontal
 *  (arc-seconds) to known[i], with mX, mY (0 for n = 2); every mode: the
 *  station height H as the weighted mean of
 *  (targetHeights[i] + known[i].H) - dists[i].VerticalDifference -
 *  instrumentHeight, weight 1 / (distance^2 + cos^2(zenith obs[i].Zenith)),
 *  and its standard deviation mH (0 for n < 2 or below 0.0001 m).
 *  Orientation uses the one-argument arctangent: a rotation of more than a
 *  quarter circle is delivered turned by a half circle.
 *  Any mode other than 0 and 1 computes the height only and takes any n.
 *  Returns 0; 1 when n is outside 2..20 in mode 0 or 1..20 in mode 1 (out
 *  unchanged). In mode 1 and other modes X, Y, mX, mY and Orientation are
 *  unchanged. Degenerate geometry gives non-finite values with status 0. */
QUILLON_API ResultCode LIB_RESDist(double instrumentHeight, const DistanceRecord* dists,
                                   const AngleObservation* obs, const SurveyPoint* known,
                                   const double* targetHeights, unsigned char n,
                                   ResectionResult* out, unsigned char mode);

/** Orientation from one known sighting: *azimuth = azimuth station ->
 *  target (arc-seconds); *orientation = (*orientation + reading) - *azimuth,
 *  not normalised. When the points coincide in plan *azimuth keeps the
 *  caller's value and that value is used. Always returns 0. */
QUILLON_API ResultCode LIB_RESSetAngle(const SurveyPoint* station, const SurveyPoint* target,
                                       double reading, double* orientation, double* azimuth);

/* ---- base line, projection, reference line ------------------------------ */

/** Measures of the line A-B (LIB_BaseLine). Fields 1 and 3 are never
 *  touched. */
typedef struct BaselineRecord {
    double Spare1;             /**< left as the caller had it */
    double HorizontalDistance; /**< A to B, m */
    double Spare3;             /**< left as the caller had it */
    double Grade;              /**< (B.H - A.H) / horizontal distance */
    double Azimuth;            /**< A to B, arc-seconds */
} BaselineRecord;

/** A position in the frame of the line A-B. */
typedef struct LinePosition {
    double Along;  /**< distance along the line from A toward B, m */
    double Across; /**< perpendicular distance, + right of A->B, m */
} LinePosition;

/** Horizontal distance, grade and azimuth of the line pts[0] (A) ->
 *  pts[1] (B). Returns 0; 3 when A and B coincide in plan or their plan
 *  distance is 0; 2 when the distance exceeds the range limit (out
 *  unchanged on every failure). */
QUILLON_API ResultCode LIB_BaseLine(const SurveyPoint* pts, BaselineRecord* out);

/** Projection of pts[2] (P) on the line pts[0] (A) -> pts[1] (B): the foot
 *  of the perpendicular with its height on the line's grade, the across and
 *  along distances and P's height over the line. No range test.
 *  Returns 0; 3 when A and B coincide in plan (out unchanged). */
QUILLON_API ResultCode LIB_Project(const SurveyPoint* pts, ProjectionRecord* out);

/** Point at a position along and across the line pts[0] (A) -> pts[1] (B).
 *  Its direction from A is atan2(Across, Along) cut to whole arc-seconds
 *  plus the line's azimuth; its height follows the line's grade at Along.
 *  No range test. Returns 0; 3 when A and B coincide in plan (out
 *  unchanged). */
QUILLON_API ResultCode LIB_LSO_Point(const SurveyPoint* pts, const LinePosition* pos,
                                     SurveyPoint* out);

/** Position of pts[2] (P) against the line pts[0] (A) -> pts[1] (B) with a
 *  design offset (m, + right) taken off the across distance. Writes Across,
 *  Along and LineDH only; FootX, FootY, FootH are never touched.
 *  Returns 0; 3 when A and B coincide in plan (out unchanged). */
QUILLON_API ResultCode LIB_LSO_Line(const SurveyPoint* pts, double designOffset,
                                    ProjectionRecord* out);

/* ---- vertical and slope planes ------------------------------------------ */

/** A sighting met by a plane (LIB_VPlane, LIB_SPlane). */
typedef struct PlaneHitRecord {
    double X;             /**< northing of the point, m */
    double Y;             /**< easting of the point, m */
    double H;             /**< height of the point, m */
    double SightDistance; /**< from the instrument centre (station H plus
                               instrument height) to the point, m */
    double PlaneAlong;    /**< vertical plane: horizontal distance along
                               P1->P2; slope plane: 3-D distance from P1 to the
                               point's foot on P1-P2, m */
    double PlaneOffset;   /**< vertical plane: point H minus P1.H; slope
                               plane: distance from the line P1-P2 within the
                               plane, negative left of P1->P2, m */
} PlaneHitRecord;

/** Point where the sight (horizontal direction and zenith angle of *sight,
 *  arc-seconds) from the instrument meets the vertical plane through
 *  planePts[0] (P1) and planePts[1] (P2). Reads the station's X, Y, H,
 *  instrument height, signA and signB; with signA != signB the reading is
 *  taken as a face II reading.
 *  Returns 0; 3 when P1 and P2 lie in one line of sight from the station;
 *  1 when P1 and P2 coincide in plan; 5 when the point's azimuth differs
 *  from the face-reduced reading by more than 1 arc-second (met behind the
 *  instrument, or missed; not folded at the end of the circle); 2 when X, Y
 *  or H is out of range. out unchanged on every failure. */
QUILLON_API ResultCode LIB_VPlane(const StationRecord* station, const AngleObservation* sight,
                                  const SurveyPoint* planePts, PlaneHitRecord* out);

/** Point where the sight (as for LIB_VPlane) meets the plane through
 *  planePts[0..2] (P1, P2, P3).
 *  Returns 0; 3 when the sight is parallel to the plane or the three points
 *  are collinear; 5 as for LIB_VPlane; 2 when X is out of range (Y and H
 *  are not tested). out unchanged on every failure. */
QUILLON_API ResultCode LIB_SPlane(const StationRecord* station, const AngleObservation* sight,
                                  const SurveyPoint* planePts, PlaneHitRecord* out);

/* ---- arc ------------------------------------------------------------------ */

/** The arc and the sighting of LIB_ArcCalc. */
typedef struct ArcDefinition {
    SurveyPoint P1;         /**< first point on the arc, where its length starts */
    SurveyPoint P2;         /**< second point on the arc */
    SurveyPoint P3;         /**< third point on the arc (mode other than 1; not
                                 read in mode 1) */
    double Radius;          /**< mode 1 only, m: > 0 centre right of P1->P2 (the
                                 arc turns clockwise), < 0 centre left */
    AngleObservation Sight; /**< horizontal direction (azimuth) and zenith angle
                                 of the sight, arc-seconds; Value not read */
} ArcDefinition;

/** The circle and the sighted point on it (LIB_ArcCalc). */
typedef struct ArcResult {
    double CentreX;            /**< northing of the centre, m */
    double CentreY;            /**< easting of the centre, m */
    double Radius;             /**< radius, m (positive) */
    double X;                  /**< northing of the point on the arc, m */
    double Y;                  /**< easting of the point on the arc, m */
    double H;                  /**< height of the sight at the point, m */
    double HorizontalDistance; /**< station to the point, m */
    double SightDistance;      /**< instrument centre to the point, m */
    double ArcLength;          /**< from P1 to the point along the arc in its
                                    sense of travel, 0 up to the full circle, m */
} ArcResult;

/** A point on an arc by a sight without a distance. The circle runs through
 *  arc->P1, P2 and P3 (any mode but 1; it turns clockwise when P1, P2, P3
 *  do), or through P1 and P2 with the signed arc->Radius (mode 1; the centre
 *  lies right of the chord P1->P2 for a positive radius, left for a negative
 *  one). The sight leaves the instrument centre (station X, Y and H plus
 *  instrument height) along the unit vector of its horizontal direction Hz
 *  and zenith angle V: (sin V cos Hz, sin V sin Hz, cos V). On face II
 *  (V beyond 648000) the negative sine turns a reading taken a half circle
 *  off back onto the point, so the station's signs are not read. The point
 *  is the first crossing of the sight with the circle in plan in front of
 *  the instrument; its height is that of the sight there. Only the plan
 *  positions of P1, P2, P3 and the station's X, Y, H and instrument height
 *  are read. The arc length is the turn of the azimuths from the centre,
 *  from P1 to the point in the arc's sense, times the radius.
 *  Returns 0 with every field of out written; otherwise, tested in this
 *  order:
 *  3 when two of the points that define the circle coincide in plan (or
 *     the chord's plan length comes out 0);
 *  1 when the three points are collinear, or the radius is 0, not a number
 *     or shorter than half the chord; then 1 when the sight is plumb;
 *  2 when the centre or the radius is out of range;
 *  5 when the sight misses the circle or meets it only behind the
 *     instrument (or at the instrument itself);
 *  2 when the point's X, Y or H is out of range.
 *  out unchanged on every failure. */
QUILLON_API ResultCode LIB_ArcCalc(const StationRecord* station, const ArcDefinition* arc,
                                   ArcResult* out, unsigned char mode);

/* ==== road: horizontal alignment ========================================== */

/** A point in plan. */
typedef struct PlanePoint {
    double X; /**< northing, m */
    double Y; /**< easting, m */
} PlanePoint;

/** A point in plan with the forward azimuth of the alignment there. */
typedef struct TangentPoint {
    double X;       /**< northing, m */
    double Y;       /**< easting, m */
    double Azimuth; /**< forward azimuth, arc-seconds */
} TangentPoint;

/* @@road-h@@ */

/* ==== road: profile and cross-section ===================================== */
/* @@road-v@@ */

/* ==== traverse and multi-round observation ================================ */
/* @@traverse@@ */

#ifdef __cplusplus
} /* extern "C" */
#endif

/* ---- placeholders, exported under their C++ names ---------------------- */
#ifdef __cplusplus
/** Placeholder class; holds no data of its own. */
class QUILLON_API CTalvor {
public:
    CTalvor();
    CTalvor& operator=(const CTalvor& other);
};

/** Placeholder function; returns 42. */
QUILLON_API int fnTalvor(void);

/** Placeholder variable; 0 after load, never read or written by the library. */
extern QUILLON_API int nTalvor;
#endif

/* ---- layout checks ------------------------------------------------------ */
#ifdef __cplusplus
#define QUILLON_STATIC_ASSERT(cond, msg) static_assert(cond, msg)
#else
#define QUILLON_STATIC_ASSERT(cond, msg) _Static_assert(cond, msg)
#endif
#define QUILLON_LAYOUT(type, field, offset) \
    QUILLON_STATIC_ASSERT(offsetof(type, field) == (offset), #type "." #field " offset")
#define QUILLON_SIZE(type, size) QUILLON_STATIC_ASSERT(sizeof(type) == (size), #type " size")

QUILLON_SIZE(SurveyPoint, 24);
QUILLON_LAYOUT(SurveyPoint, X, 0);
QUILLON_LAYOUT(SurveyPoint, Y, 8);
QUILLON_LAYOUT(SurveyPoint, H, 16);

QUILLON_SIZE(StationRecord, 48);
QUILLON_LAYOUT(StationRecord, X, 0);
QUILLON_LAYOUT(StationRecord, Y, 8);
QUILLON_LAYOUT(StationRecord, H, 16);
QUILLON_LAYOUT(StationRecord, InstrumentHeight, 24);
QUILLON_LAYOUT(StationRecord, TargetHeight, 32);
QUILLON_LAYOUT(StationRecord, signA, 40);
QUILLON_LAYOUT(StationRecord, signB, 41);
QUILLON_LAYOUT(StationRecord, refractionMode, 42);

QUILLON_SIZE(DistanceRecord, 32);
QUILLON_LAYOUT(DistanceRecord, SlopeDistance, 0);
QUILLON_LAYOUT(DistanceRecord, HorizontalDistance, 8);
QUILLON_LAYOUT(DistanceRecord, VerticalDifference, 16);
QUILLON_LAYOUT(DistanceRecord, HeightDifference, 24);

QUILLON_SIZE(DistAngleRecord, 64);
QUILLON_LAYOUT(DistAngleRecord, X, 0);
QUILLON_LAYOUT(DistAngleRecord, Y, 8);
QUILLON_LAYOUT(DistAngleRecord, H, 16);
QUILLON_LAYOUT(DistAngleRecord, SlopeDistance, 24);
QUILLON_LAYOUT(DistAngleRecord, HorizontalDistance, 32);
QUILLON_LAYOUT(DistAngleRecord, HeightDifference, 40);
QUILLON_LAYOUT(DistAngleRecord, Azimuth, 48);
QUILLON_LAYOUT(DistAngleRecord, ZenithAngle, 56);

QUILLON_SIZE(BearingRecord, 40);
QUILLON_LAYOUT(BearingRecord, Spare1, 0);
QUILLON_LAYOUT(BearingRecord, HorizontalDistance, 8);
QUILLON_LAYOUT(BearingRecord, HeightDifference, 16);
QUILLON_LAYOUT(BearingRecord, Spare4, 24);
QUILLON_LAYOUT(BearingRecord, Azimuth, 32);

QUILLON_SIZE(AngleObservation, 24);
QUILLON_LAYOUT(AngleObservation, Horizontal, 0);
QUILLON_LAYOUT(AngleObservation, Zenith, 8);
QUILLON_LAYOUT(AngleObservation, Value, 16);

QUILLON_SIZE(ProjectionRecord, 48);
QUILLON_LAYOUT(ProjectionRecord, FootX, 0);
QUILLON_LAYOUT(ProjectionRecord, FootY, 8);
QUILLON_LAYOUT(ProjectionRecord, FootH, 16);
QUILLON_LAYOUT(ProjectionRecord, Across, 24);
QUILLON_LAYOUT(ProjectionRecord, Along, 32);
QUILLON_LAYOUT(ProjectionRecord, LineDH, 40);

QUILLON_SIZE(PlanePoint, 16);
QUILLON_LAYOUT(PlanePoint, X, 0);
QUILLON_LAYOUT(PlanePoint, Y, 8);

QUILLON_SIZE(TangentPoint, 24);
QUILLON_LAYOUT(TangentPoint, X, 0);
QUILLON_LAYOUT(TangentPoint, Y, 8);
QUILLON_LAYOUT(TangentPoint, Azimuth, 16);

/* @@layout-field-a@@ */
/* @@layout-field-b@@ */
QUILLON_SIZE(ResectionResult, 56);
QUILLON_LAYOUT(ResectionResult, X, 0);
QUILLON_LAYOUT(ResectionResult, Y, 8);
QUILLON_LAYOUT(ResectionResult, H, 16);
QUILLON_LAYOUT(ResectionResult, mX, 24);
QUILLON_LAYOUT(ResectionResult, mY, 32);
QUILLON_LAYOUT(ResectionResult, mH, 40);
QUILLON_LAYOUT(ResectionResult, Orientation, 48);

QUILLON_SIZE(BaselineRecord, 40);
QUILLON_LAYOUT(BaselineRecord, Spare1, 0);
QUILLON_LAYOUT(BaselineRecord, HorizontalDistance, 8);
QUILLON_LAYOUT(BaselineRecord, Spare3, 16);
QUILLON_LAYOUT(BaselineRecord, Grade, 24);
QUILLON_LAYOUT(BaselineRecord, Azimuth, 32);

QUILLON_SIZE(LinePosition, 16);
QUILLON_LAYOUT(LinePosition, Along, 0);
QUILLON_LAYOUT(LinePosition, Across, 8);

QUILLON_SIZE(PlaneHitRecord, 48);
QUILLON_LAYOUT(PlaneHitRecord, X, 0);
QUILLON_LAYOUT(PlaneHitRecord, Y, 8);
QUILLON_LAYOUT(PlaneHitRecord, H, 16);
QUILLON_LAYOUT(PlaneHitRecord, SightDistance, 24);
QUILLON_LAYOUT(PlaneHitRecord, PlaneAlong, 32);
QUILLON_LAYOUT(PlaneHitRecord, PlaneOffset, 40);

QUILLON_SIZE(ArcDefinition, 104);
QUILLON_LAYOUT(ArcDefinition, P1, 0);
QUILLON_LAYOUT(ArcDefinition, P2, 24);
QUILLON_LAYOUT(ArcDefinition, P3, 48);
QUILLON_LAYOUT(ArcDefinition, Radius, 72);
QUILLON_LAYOUT(ArcDefinition, Sight, 80);

QUILLON_SIZE(ArcResult, 72);
QUILLON_LAYOUT(ArcResult, CentreX, 0);
QUILLON_LAYOUT(ArcResult, CentreY, 8);
QUILLON_LAYOUT(ArcResult, Radius, 16);
QUILLON_LAYOUT(ArcResult, X, 24);
QUILLON_LAYOUT(ArcResult, Y, 32);
QUILLON_LAYOUT(ArcResult, H, 40);
QUILLON_LAYOUT(ArcResult, HorizontalDistance, 48);
QUILLON_LAYOUT(ArcResult, SightDistance, 56);
QUILLON_LAYOUT(ArcResult, ArcLength, 64);
/* @@layout-road-h@@ */
/* @@layout-road-v@@ */
/* @@layout-traverse@@ */

#endif /* QUILLON_H */
