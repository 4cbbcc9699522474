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
/* @@setup@@ */

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

/** One vertical element of a profile. A complete vertical table of n records
 *  holds n-1 elements followed by an end record of Type 0 carrying the
 *  profile's end chainage, end elevation and end grade; record i+1's
 *  Chainage, Elevation and GradeIn are the end of element i. Grades are
 *  ratios (0.02 is a rise of 2 per cent), positive uphill toward increasing
 *  chainage. */
typedef struct VElement {
    unsigned char Type;     /**< 1 grade line, 2 parabolic curve, 3 circular curve, 0 end record */
    double Chainage;        /**< chainage at the element's start, m */
    double Elevation;       /**< elevation at the element's start, m */
    double VertexChainage;  /**< curves: chainage of the grade intersection, m */
    double VertexElevation; /**< curves: elevation of the grade intersection, m */
    double Radius;          /**< curves: radius of the vertical curve, m */
    double Length;          /**< horizontal length of the element along the chainage, m */
    unsigned char Given;    /**< 0: Radius given (Length computed), 1: Length given */
    double GradeIn;         /**< grade at the element's start; a grade line's grade */
    double GradeOut;        /**< grade at the element's end (curves) */
} VElement;

/** Builds the complete vertical table of count records from count-1
 *  designer's elements. Of the elements only the first one's Chainage,
 *  Elevation and GradeIn are read; each element needs Type 1 to 3, GradeOut
 *  in [-1, 1], Given 0 with 0 < Radius <= 99999999.9999 or Given 1 with
 *  0 < Length <= 99999999.9999 (grade lines too). The elements are copied
 *  into table[0..count-2], their computed fields filled in (a curve's Radius
 *  or Length, vertex chainage and elevation), and each element's end is
 *  written into the next record; table[count-1] becomes the end record
 *  (only its Type, Chainage, Elevation and GradeIn are written).
 *  Returns 0; 4 when count < 2 or count > 81 (table unchanged); 1 when the
 *  first element's Elevation, Chainage or GradeIn (in [-1, 1]) or any
 *  element's Type, GradeOut, Given, Length or Radius is invalid (table
 *  unchanged); 2 when a computed Radius or Length leaves [0, 99999999.9999],
 *  a vertex or an end chainage or elevation is out of range or an end grade
 *  leaves [-1, 1] (the records computed so far stay written; the end
 *  record's Type is not set). Negative elevations are accepted here. */
QUILLON_API ResultCode LIB_CalWay_V_Ele_MainPoint(const VElement* elements, unsigned char count,
                                                  VElement* table);

/** Elevation (m) at chainage K (m) on a grade line of a complete table.
 *  A non-zero skip returns 0 at once and writes nothing.
 *  Returns 0; 2 when the elevation is below 0 or above 99999999.9999
 *  (written even on 2). */
QUILLON_API ResultCode LIB_CalWay_V_Line_On(const VElement* element, double chainage,
                                            double* elevation, unsigned char skip);

/** Elevation (m) at chainage K (m) on a parabolic vertical curve of a
 *  complete table (its Radius, Length and vertex filled in). With equal
 *  grades nothing is written.
 *  Returns 0; 2 when the value then in *elevation is not within
 *  [0, 99999999.9999] (a computed elevation is written even on 2). */
QUILLON_API ResultCode LIB_CalWay_V_Curve_On(const VElement* element, double chainage,
                                             double* elevation);

/** Elevation (m) at chainage K (m) on a circular vertical curve of a
 *  complete table. Nothing is written for K at or before the curve's start
 *  or beyond its end.
 *  Returns 0; 2 when the value then in *elevation is not within
 *  [0, 99999999.9999] (a computed elevation is written even on 2). */
QUILLON_API ResultCode LIB_CalWay_V_Circle_On(const VElement* element, double chainage,
                                              double* elevation);

/** Design elevation (m) at chainage K (m) on a complete vertical table of
 *  count records. More than 0.001 before the start writes 0; more than
 *  0.001 beyond the end writes the end elevation; within 0.001 of a record's
 *  chainage writes that record's elevation; otherwise the element holding K
 *  is evaluated. A table of one record writes nothing.
 *  Returns 0 or the element's status 2 (see the element functions);
 *  4 for count 0 (nothing written). */
QUILLON_API ResultCode LIB_CalWay_V_On(const VElement* table, unsigned char count, double chainage,
                                       double* elevation);

/** Builds a complete vertical table from count grade intersections (2 to
 *  80). Each point gives its VertexChainage and VertexElevation; at an inner
 *  point Type says what lies there (0 a plain change of grade - the grade
 *  line before it then ends at the point's own Chainage field -, 2 a
 *  parabolic, 3 a circular curve) and Given whether Radius (0) or Length (1)
 *  was given. For each curve the computed Radius or Length and the curve's
 *  start Chainage and Elevation are written back into points[], even when
 *  the function fails later. The table receives grade lines (Type, Chainage,
 *  Elevation, Length, GradeIn written), curve records (copies of the point
 *  with GradeIn and GradeOut) and the end record (Type 0, Chainage,
 *  Elevation, GradeIn); *table_count receives the number of records.
 *  A circular curve ends at VertexElevation + sin(grade out) * T, the sine
 *  taken of the grade itself.
 *  Returns 0; 4 when count < 2 or count > 80 (nothing written), or when the
 *  table would exceed 81 records (*table_count then holds the records
 *  written and the last of them has Type 0); 1 when a vertex is out of
 *  range, a Type is 1 or above 3, or an inner curve's Given is above 1 or
 *  its given value is not within (0, 99999999.9999] (nothing written);
 *  2 when a grade leaves [-1, 1], a computed Radius, Length, grade line
 *  length or curve start or end is out of range (what was written so far
 *  stays; *table_count unchanged). Negative elevations are accepted. */
QUILLON_API ResultCode LIB_CalWay_V_Cross_MainPoint(VElement* points, unsigned char count,
                                                    VElement* table, unsigned char* table_count);

/** Values of a cross-section table at one chainage: widths (m) or cross
 *  slopes (rise over horizontal distance, positive upward going outward,
 *  -0.02 a fall of 2 per cent) to the left and right of the centre line,
 *  looking forward along increasing chainage. */
typedef struct SectionRecord {
    double Chainage; /**< chainage at which the values hold, m */
    double Left;     /**< value for the left side */
    double Right;    /**< value for the right side */
} SectionRecord;

/** Carriageway widths at chainage K (m) from a width table of count records
 *  ascending by chainage, each width in [0, 99999999.9999]. Writes K to
 *  out->Chainage first; at or before the first record, or at or beyond the
 *  last, copies that record's widths; in between, mode 0 interpolates
 *  linearly and any other mode leaves Left and Right unwritten.
 *  Returns 0; 4 when count > 80 (out unchanged); 1 when count is 0 or a
 *  record's Chainage, Left or Right is out of bounds (out unchanged); 2 when
 *  an interpolated width leaves [0, 99999999.9999] (Chainage and the failing
 *  value written, and Left when Right fails). */
QUILLON_API ResultCode LIB_CalWay_Width(const SectionRecord* table, unsigned char count,
                                        double chainage, SectionRecord* out, unsigned char mode);

/** Cross slopes at chainage K (m) from a slope table of count records,
 *  each slope in [-1, 1]; the lookup of LIB_CalWay_Width with these bounds.
 *  Returns 0; 4 when count > 80; 1 when count is 0 or a record is out of
 *  bounds (out unchanged on 4 and 1); 2 when an interpolated slope leaves
 *  [-1, 1] (Chainage and the failing value written, and Left when Right
 *  fails). */
QUILLON_API ResultCode LIB_CalWay_SideSlope(const SectionRecord* table, unsigned char count,
                                            double chainage, SectionRecord* out,
                                            unsigned char mode);

/** Edge point in plan at right angles to the centre line: side 0 the left
 *  edge at widths->Left, side 1 the right edge at widths->Right. out
 *  receives the edge point and the azimuth (arc-seconds) of the
 *  perpendicular from the centre toward the edge. Any other side writes
 *  nothing and checks what out already holds.
 *  Returns 0; 2 when the azimuth is outside [0, 2592000] or X or Y is out
 *  of range (out written as computed even on 2). */
QUILLON_API ResultCode LIB_CalWay_H_Side(const TangentPoint* centre, const SectionRecord* widths,
                                         TangentPoint* out, unsigned char side);

/** Edge elevation (m): width times cross slope of the side (0 left, 1
 *  right) plus the centre elevation, when the widths' Chainage lies within
 *  [range_start - 0.001, range_end + 0.001]; outside writes 0 and returns 0.
 *  Any other side writes nothing and checks what *elevation already holds.
 *  Returns 0; 2 when the elevation is above 99999999.9999 or below
 *  -99999999.9999 (written even on 2). */
QUILLON_API ResultCode LIB_CalWay_V_Side(const SectionRecord* widths, const SectionRecord* slopes,
                                         double centre_elevation, double range_start,
                                         double range_end, double* elevation, unsigned char side);

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
/* @@layout-setup@@ */
/* @@layout-road-h@@ */
QUILLON_SIZE(VElement, 80);
QUILLON_LAYOUT(VElement, Type, 0);
QUILLON_LAYOUT(VElement, Chainage, 8);
QUILLON_LAYOUT(VElement, Elevation, 16);
QUILLON_LAYOUT(VElement, VertexChainage, 24);
QUILLON_LAYOUT(VElement, VertexElevation, 32);
QUILLON_LAYOUT(VElement, Radius, 40);
QUILLON_LAYOUT(VElement, Length, 48);
QUILLON_LAYOUT(VElement, Given, 56);
QUILLON_LAYOUT(VElement, GradeIn, 64);
QUILLON_LAYOUT(VElement, GradeOut, 72);

QUILLON_SIZE(SectionRecord, 24);
QUILLON_LAYOUT(SectionRecord, Chainage, 0);
QUILLON_LAYOUT(SectionRecord, Left, 8);
QUILLON_LAYOUT(SectionRecord, Right, 16);
/* @@layout-traverse@@ */

#endif /* QUILLON_H */
