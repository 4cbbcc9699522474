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
/** Stakeout by distance and angle (LIB_SO_DistAngle). */
typedef struct SODistAngleResult {
    double DistanceDifference; /**< measured minus design distance, m */
    double AngleDifference;    /**< measured minus design angle, arc-seconds, in +/-648000 */
} SODistAngleResult;

/** Stakeout by coordinates (LIB_SO_Coor). */
typedef struct SOCoorResult {
    double X;                            /**< measured point northing, m */
    double Y;                            /**< measured point easting, m */
    double H;                            /**< measured point elevation, m */
    double HorizontalDistanceDifference; /**< measured minus design horizontal distance, m */
    double HeightDifference;             /**< measured point H minus design H, m */
    double ForwardDifference; /**< measured distance minus the design distance projected on
                                   the line of sight, m (positive: the prism is too far) */
    double LateralDifference; /**< design distance times the sine of the angle difference, m */
    double AngleDifference;   /**< measured angle minus design azimuth, arc-seconds */
} SOCoorResult;

/** Stakeout of a division point of a line (LIB_SO_Divide). */
typedef struct SODivideResult {
    double ForwardDifference; /**< measured distance minus the along-sight part of the
                                   design distance, m */
    double LateralDifference; /**< design distance times the sine of the angle difference, m */
    double AngleDifference;   /**< measured minus line direction, arc-seconds, in +/-648000 */
} SODivideResult;

/** Area and perimeter of a polygon (LIB_Area). */
typedef struct AreaResult {
    double Area;      /**< area, square metres */
    double Hectares;  /**< the same area times 0.0001, hectares */
    double Perimeter; /**< length of the closed boundary, m */
} AreaResult;

/** Missing line between two measured points (LIB_MissLine). */
typedef struct MissLineResult {
    double SlopeDistance;      /**< spatial distance between the points, m */
    double HorizontalDistance; /**< m */
    double HeightDifference;   /**< second point minus first point, m */
    double Grade;              /**< height difference over horizontal distance, per cent */
    double Azimuth;            /**< from the first point to the second, arc-seconds */
} MissLineResult;

/** Stakeout by design distance and design angle.
 *  station: signA, signB (a half circle is subtracted from the angle
 *  difference when they differ), instrument and target height (type 3).
 *  measured: reduced measurement, or NULL for no distance difference.
 *  measured_angle: horizontal angle, arc-seconds, or NULL: then the angle
 *  difference already in out is only folded into +/-648000.
 *  design_distance: m, of the kind given by distance_type (1 slope distance,
 *  2 horizontal distance, 3 height difference); design_angle: arc-seconds.
 *  A distance_type other than 1..3 leaves DistanceDifference unchanged.
 *  Returns 0; 1 when design_distance <= 0 with a type other than 3, when
 *  design_angle < 0 or when out is NULL (out unchanged on 1). */
QUILLON_API ResultCode LIB_SO_DistAngle(const StationRecord* station,
                                        const DistanceRecord* measured,
                                        const double* measured_angle, double design_distance,
                                        double design_angle, SODistAngleResult* out,
                                        unsigned char distance_type);

/** Stakeout by design coordinates: the measured point (through
 *  LIB_MeasCoor) and its differences from the design point. The angle
 *  difference (measured angle minus the azimuth station -> design, arc-
 *  seconds) gains a half circle when signA and signB differ and is folded
 *  into +/-648000. A design point plumb over the station is staked with
 *  azimuth 0. A measured point beyond the range limit is reported as
 *  X = Y = H = 0. No range test is made.
 *  Returns 0; 1 when the design point equals the station in X, Y and H
 *  (out unchanged). */
QUILLON_API ResultCode LIB_SO_Coor(const StationRecord* station, const DistanceRecord* measured,
                                   const double* measured_angle, const SurveyPoint* design,
                                   SOCoorResult* out);

/** Stakeout of a height: *out = design_height - (r + target height), m,
 *  where r is the rise of the sighting over the elevation angle (horizontal
 *  distance times its tangent) minus the measured vertical difference.
 *  measured: horizontal distance and vertical difference; angles:
 *  horizontal angle (not used) and zenith angle, arc-seconds, face I or II.
 *  Returns 0; 2 when *out is out of range (written even on 2). */
QUILLON_API ResultCode LIB_SO_Height(const StationRecord* station, const DistanceRecord* measured,
                                     const double* angles, double design_height, double* out);

/** Stakeout of point i of a line divided into n equal parts.
 *  lengths: line length and measured horizontal distance, m; directions:
 *  line direction and measured direction, arc-seconds; counts: n (1..99)
 *  and i (1..198, points beyond the line's end up to twice its length).
 *  Returns 0; 1 when n or i is out of its range (out unchanged). */
QUILLON_API ResultCode LIB_SO_Divide(const double* lengths, const double* directions,
                                     const unsigned char* counts, SODivideResult* out);

/** Remote height.
 *  Mode 0: height of the sighted point over the prism's ground point, m,
 *  from the horizontal distance and vertical difference of measured, the
 *  target height and the second zenith angle (signB gives the face; the
 *  first zenith angle is not used). No range test.
 *  Mode 1: height difference between the points sighted with the second and
 *  the first zenith angle at the measured horizontal distance, m; with
 *  signB = -1 both angles are face II readings.
 *  Zenith angles in arc-seconds. Any other mode leaves *out unchanged.
 *  Returns 0; 2 in mode 1 when *out > 99999999.9999 or < -99999999.9999
 *  (written even on 2). */
QUILLON_API ResultCode LIB_Hight(const StationRecord* station, const DistanceRecord* measured,
                                 double first_zenith, double second_zenith, double* out,
                                 unsigned char mode);

/** Offset by angle: the horizontal distance of the reference point with the
 *  horizontal angle and zenith angle (angles, arc-seconds) of a second
 *  sighting to the point's centre.
 *  Mode 0: the horizontal distance is that of measured. Mode 1: it is the
 *  plan distance station -> known; known->H is raised by the station's
 *  target height and written back (each call raises it again).
 *  out: point X, Y, H; slope distance; horizontal distance; vertical
 *  difference; horizontal angle; zenith angle (the angles as given).
 *  Returns 0; 2 when the point is out of range (out unchanged; known->H
 *  already raised in mode 1). */
QUILLON_API ResultCode LIB_OS_Angle(const StationRecord* station, const DistanceRecord* measured,
                                    const double* angles, SurveyPoint* known, DistAngleRecord* out,
                                    unsigned char mode);

/** Offset by distances: the reference point moved by offsets (right of the
 *  line of sight, forward along it, height; m), then sighted from the
 *  instrument (distances, height difference, azimuth and zenith angle to the
 *  point raised by the target height).
 *  Mode 0: reference point measured (measured, measured_angle, arc-seconds;
 *  known not used). Mode 1: reference point known (measured and
 *  measured_angle not used). Other modes return 1.
 *  Returns 0; 1 for mode 1 with known plumb over the station, or another
 *  mode (out unchanged); 2 when the measured reference point or the offset
 *  point is out of range (out unchanged when the reference point is; the
 *  offset point X, Y, H written when it is); 3 when the point cannot be
 *  sighted: it lies plumb over or under the instrument, or a distance or the
 *  height difference of the sight is beyond the range limit (point,
 *  distances and height difference written). */
QUILLON_API ResultCode LIB_OS_Dist1(const StationRecord* station, const DistanceRecord* measured,
                                    const double* measured_angle, const SurveyPoint* known,
                                    const double* offsets, DistAngleRecord* out,
                                    unsigned char mode);

/** Offset by extension: the point on the spatial line line[0] -> line[1]
 *  at extension metres beyond line[1] (negative: back toward line[0]),
 *  then sighted from the instrument as by LIB_OS_Dist1.
 *  Returns 0; 1 when the line points are identical (out unchanged); 2 when
 *  the point is out of range (out unchanged); 3 when it cannot be sighted,
 *  as by LIB_OS_Dist1 (point, distances and height difference written). */
QUILLON_API ResultCode LIB_OS_Dist2(const StationRecord* station, const SurveyPoint* line,
                                    double extension, DistAngleRecord* out);

/** Area (shoelace, either orientation) and perimeter of the closed polygon
 *  points[0..count-1]. Returns 0; 1 when count < 3; 2 when the area is
 *  greater than 99999999.9999 (out unchanged on 1 and 2). */
QUILLON_API ResultCode LIB_Area(unsigned char count, const SurveyPoint* points, AreaResult* out);

/** Missing line between two points measured from one station.
 *  measured: two reduced measurements (horizontal distance and vertical
 *  difference used); angles: horizontal angle of the first point at
 *  angles[0] and of the second at angles[3], arc-seconds; target heights of
 *  the two shots, m. The azimuth is whole seconds plus the fraction of the
 *  first angle; when both angles are equal it is not computed and the
 *  value already in out->Azimuth is folded instead. Face II (signA !=
 *  signB) turns it by a half circle. No range test.
 *  Returns 0; 3 when the points coincide in plan (out unchanged). */
QUILLON_API ResultCode LIB_MissLine(const StationRecord* station, const DistanceRecord* measured,
                                    const double* angles, double first_target_height,
                                    double second_target_height, MissLineResult* out);

/* ==== intersections, slope and angle offsets, line height, round ======== */
/* ---- intersections ------------------------------------------------------ */

/** A known point of an intersection with what was observed at it. */
typedef struct FrontMeetKnown {
    SurveyPoint Point; /**< the known point; its H is not used */
    double Direction;  /**< direction observed at the point toward the new point,
                            arc-seconds (angle mode) */
    double Distance;   /**< horizontal distance measured from the point to the
                            new point, m (distance mode) */
} FrontMeetKnown;

/** The two known points A and B of LIB_CalFrontMeet. */
typedef struct FrontMeetInput {
    FrontMeetKnown A; /**< first known point */
    FrontMeetKnown B; /**< second known point */
} FrontMeetInput;

/** Two lines of LIB_CalLineCrossPT, each through two points. */
typedef struct LineCrossInput {
    SurveyPoint P1; /**< first line, first point (the height is carried from here) */
    SurveyPoint P2; /**< first line, second point */
    SurveyPoint P3; /**< second line, first point (H not used) */
    SurveyPoint P4; /**< second line, second point (H not used) */
} LineCrossInput;

/** Forward intersection in plan from the known points A and B.
 *  mode 0 (by angles): reads the directions observed at A and at B, each
 *  reckoned so that a1 = azimuth(A->B) - direction at A and
 *  a2 = (direction at B + 648000) - azimuth(A->B) are the angles of the
 *  triangle at A and at B (the directions at A and B are the azimuths toward
 *  the new point when the circles are oriented).
 *  mode 1 (by distances): reads the distances from A and from B (m) and
 *  always returns the solution to the left of the line A->B.
 *  out receives X, Y and H = 0 (m); any other mode computes nothing.
 *  Returns 0;
 *  1 when A and B coincide in plan, when a1 or a2 is exactly +/-324000 or
 *    +/-972000, when a tangent of a1 or a2 or the sum of their cotangents
 *    is 0 (mode 0), or when the two circles do not meet (mode 1); out
 *    unchanged on 1;
 *  2 when X or Y then in out is out of range (written even on 2; for another
 *    mode the caller's values are tested). */
QUILLON_API ResultCode LIB_CalFrontMeet(const FrontMeetInput* input, SurveyPoint* out,
                                        unsigned char mode);

/** Crossing point of the line P1-P2 with the line P3-P4, in plan; the height
 *  is interpolated (or extrapolated) along P1-P2. No range test.
 *  Returns 0; 6 when the lines are parallel or degenerate (out unchanged). */
QUILLON_API ResultCode LIB_CalLineCrossPT(const LineCrossInput* input, SurveyPoint* out);

/* ---- offsets by slope distance and by horizontal angle ----------------- */

/** Offset along the line of sight: the slope distance is lengthened by
 *  offset (m; negative shortens it, and beyond the instrument the point lies
 *  on the opposite side, with the direction turned and the zenith angle
 *  mirrored).
 *  mode 1: the sight is taken to *known, whose H is raised by the target
 *  height in the caller's record (on every call, even one that fails);
 *  any other mode: measured (slope distance, horizontal distance, vertical
 *  difference) and angles[0..1] (horizontal angle, zenith angle, arc-seconds)
 *  are used. Which side the point lies is decided by the measured slope
 *  distance in every mode.
 *  out receives eight doubles: X, Y, H (m), slope distance, horizontal
 *  distance, vertical difference (m), horizontal angle, zenith angle
 *  (arc-seconds).
 *  Returns 0; 2 when the point is out of range (out unchanged). */
QUILLON_API ResultCode LIB_OS_SDist(const StationRecord* station, const DistanceRecord* measured,
                                    const double* angles, SurveyPoint* known, double offset,
                                    double* out, unsigned char mode);

/** Where the sight at a horizontal angle (arc-seconds) from the station meets
 *  the line through line[0] and line[1] (a wall, a kerb); the height is
 *  interpolated on that line. out receives the point (X, Y, H) and the
 *  distances and angles from the instrument to it (sighted with the target
 *  height, signB as the face, the azimuth turned when the faces differ).
 *  Returns 0;
 *  3 when the line runs through the station or the crossing falls on it
 *    (out unchanged), or when the sight to the crossing fails: no
 *    horizontal distance, or a distance or height difference beyond the
 *    range (X, Y, H, slope and horizontal distance and height difference
 *    written even on 3);
 *  5 when the sight meets the line behind the instrument (out unchanged);
 *  2 when the point is out of range, the line runs at constant northing
 *    (line[0].X == line[1].X) or the sight is parallel to the line (out
 *    unchanged). */
QUILLON_API ResultCode LIB_OS_Ha(const StationRecord* station, const SurveyPoint* line,
                                 double horizontal_angle, DistAngleRecord* out);

/* ---- line height and circle --------------------------------------------- */

/** Heights on the vertical plane through a line (LIB_CalLineHeight). */
typedef struct LineHeightResult {
    double Height;             /**< target above the instrument's horizon, m */
    double HorizontalDistance; /**< station to the target's vertical, m */
    double Along;              /**< from A along the line to the target's vertical, m */
    double HeightBetween;      /**< Height minus the height of the second sighting,
                                    m (mode 1 only) */
} LineHeightResult;

/** One pair of points of the circle's list (LIB_CalCircle, mode 1): the two
 *  points of the circle at one easting Y. Where the easting lies farther
 *  than the radius from the centre the northings are not a number. */
typedef struct CirclePointPair {
    double FirstX;      /**< centre X plus the half chord, m */
    double FirstY;      /**< easting of the pair, m */
    double FirstSpare;  /**< left as the caller had it */
    double SecondX;     /**< centre X minus the half chord, m */
    double SecondY;     /**< easting of the pair again, m */
    double SecondSpare; /**< left as the caller had it */
} CirclePointPair;

/** Where a sighting meets the vertical plane through the line A-B, from
 *  angle readings alone. pts: A, B, S (the station). obs: [0] the sighting
 *  to A, [2] the sighting to the target on the plane, [3] (mode 1) a second
 *  sighting to the same vertical; horizontal direction and zenith angle in
 *  arc-seconds ([1] and every third value are not read).
 *  Writes Height, HorizontalDistance and Along; mode 1 adds HeightBetween.
 *  Returns 0; 1 when the sighting runs parallel to the line, lies exactly
 *  along the perpendicular from S, or is vertical (out unchanged), or when
 *  the second sighting of mode 1 is vertical (Height, HorizontalDistance and
 *  Along written even on 1). An angle is taken as vertical or parallel when
 *  its whole arc-seconds, reduced by a full circle with their sign, are
 *  exactly 324000 or 972000; negative angles never are. No range test. */
QUILLON_API ResultCode LIB_CalLineHeight(const SurveyPoint* pts, const AngleObservation* obs,
                                         LineHeightResult* out, unsigned char mode);

/** Circle through three points in plan (only X and Y of pts[0..2] are read):
 *  radius (m) and centre[0..1] (X, Y, m).
 *  mode 1 also lists pairs of circle points at eastings from centre Y -
 *  6370000 on in count equal steps up to centre Y + 6370000 (the band is
 *  fixed, whatever the radius); list needs room for count + 1 pairs. A
 *  count of 0 lists one pair; a centre too far out for the band to be
 *  stepped lists none. Coincident points not refused below give
 *  non-finite values, which are written as they come.
 *  Returns 0;
 *  1 when the points lie on one line, share X or share Y (nothing written),
 *    or (mode 1) when count is negative or the steps, rounded far from the
 *    origin, would not reach the end of the band within count + 1 pairs
 *    (radius and centre written even on 1, no pair listed). */
QUILLON_API ResultCode LIB_CalCircle(const SurveyPoint* pts, double* radius, double* centre,
                                     CirclePointPair* list, int32_t count, unsigned char mode);

/* ---- offset to a round object ------------------------------------------- */

/** Centre of a round object (a column, a tree, a tank) from its two edges
 *  sighted (obs[0] and obs[1], in either order), a distance measured on a
 *  third sighting (obs[2]); only the horizontal directions are read
 *  (arc-seconds). The sine rule takes the measured horizontal distance plus
 *  radius (m) as the distance along the third sighting to the face; the
 *  height comes from the measured vertical difference.
 *  out receives the centre (X, Y, H) and the distances and angles from the
 *  instrument to it; when the faces differ its azimuth is the edges'
 *  bisector turned by a half circle. *computed_radius receives the radius
 *  implied by the edge sightings (m).
 *  Returns 0;
 *  2 when the centre is out of range or not finite (edges coincident, the
 *    third sighting on the bisector or outside the edges); nothing written;
 *  3 when the sight to the centre fails: the centre plumb under the
 *    instrument, or a distance or height difference beyond the range (out
 *    holds the slope and horizontal distance and height difference,
 *    computed_radius unchanged). */
QUILLON_API ResultCode LIB_OS_Round(const StationRecord* station, const DistanceRecord* measured,
                                    const AngleObservation* obs, double radius,
                                    DistAngleRecord* out, double* computed_radius);

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
 *  Returns 0; 3 when P1 and P2 lie in one line of sight from the station (a
 *  plane point plumb over the station counts as azimuth 0); 1 when P1 and
 *  P2 coincide in plan (tested after 3, which coincident points give first
 *  unless a signed zero turns their azimuths apart); 5 when the point's azimuth differs
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
 *  are read. The arc length is the turn about the centre from P1 to the
 *  point in the arc's sense (true radians), times the radius.
 *  Returns 0 with every field of out written; otherwise, tested in this
 *  order:
 *  3 when two of the points that define the circle coincide in plan (or
 *     the chord's plan length comes out 0);
 *  1 when the three points are collinear, or the radius is 0, not a number
 *     or shorter than half the chord; then 1 when the sight has no plan
 *     component (zenith angle 0; at 648000 the sight keeps the slight plan
 *     component of pi taken as 3.1415926 and is intersected as it stands);
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

/** One horizontal element of a road alignment. An element table is a
 *  contiguous array of them; a complete table closes with an end record of
 *  Type 0 that carries the alignment's end point, end azimuth and end
 *  chainage. The reference point X, Y with Azimuth is the element's start
 *  and its forward azimuth there, except for an exit transition curve
 *  evaluated by LIB_CalWay_H_Curve_On / LIB_CalWay_H_Curve_AZ, where it is
 *  the far end (curvature 0) and the backward azimuth there. */
typedef struct HElement {
    unsigned char Type;   /**< 1 straight, 2 circular arc, 3 transition curve, 0 end record */
    double X;             /**< northing of the reference point, m */
    double Y;             /**< easting of the reference point, m */
    double Azimuth;       /**< azimuth at the reference point, arc-seconds */
    double Length;        /**< length along the alignment, m; for a transition curve also
                               the clothoid parameter length (radius Radius after Length) */
    double Radius;        /**< arc radius, or radius at the curved end of a transition, m */
    unsigned char Turn;   /**< 0 turns left (azimuth decreases), 1 turns right */
    unsigned char Spiral; /**< transition curves: 0 entry (curvature grows), 1 exit */
    double Chainage;      /**< chainage at the element's start, m */
} HElement;

/** Point on a straight at distance l (m) from its start (l not checked).
 *  Returns 0; 2 when X or Y is out of range (out unchanged). */
QUILLON_API ResultCode LIB_CalWay_H_Line_On(const HElement* element, double l, PlanePoint* out);

/** Point on a circular arc at arc length l (m) from its start.
 *  Returns 0; 2 when X or Y is out of range (out unchanged). A Turn other
 *  than 0 or 1 writes (0, 0) and returns 0. */
QUILLON_API ResultCode LIB_CalWay_H_Circle_On(const HElement* element, double l, PlanePoint* out);

/** Point on a transition curve at curve length l (m) from its curvature-zero
 *  end: from the start for an entry curve (Spiral 0), backward from the far
 *  end for an exit curve (Spiral 1, X, Y the far end, Azimuth the backward
 *  azimuth there). An unknown Turn or Spiral sets the point out straight
 *  along Azimuth. Returns 0; 2 when X or Y is out of range (out unchanged). */
QUILLON_API ResultCode LIB_CalWay_H_Curve_On(const HElement* element, double l, PlanePoint* out);

/** Forward azimuth (arc-seconds) on a circular arc at arc length l (m).
 *  An unknown Turn gives 0. Returns 0; 2 when the azimuth is not in
 *  [0, 2592000) (two full circles; out unchanged). */
QUILLON_API ResultCode LIB_CalWay_H_Circle_AZ(const HElement* element, double l, double* azimuth);

/** Forward azimuth (arc-seconds) on a transition curve at curve length l (m),
 *  with the same conventions as LIB_CalWay_H_Curve_On. An unknown Turn or
 *  Spiral gives 0. Returns 0; 2 when the azimuth is not in [0, 2592000)
 *  (out unchanged). */
QUILLON_API ResultCode LIB_CalWay_H_Curve_AZ(const HElement* element, double l, double* azimuth);

/** Far end (curvature 0) of an exit transition curve given by its start
 *  (where it leaves the arc) and the forward azimuth there, with the forward
 *  azimuth (arc-seconds) at the far end; Spiral is not read. A Turn other
 *  than 0 or 1 writes three zeros and returns 0. Returns 0; 2 when X or Y is
 *  out of range (out unchanged). The azimuth is not range-tested. */
QUILLON_API ResultCode LIB_CalWay_H_Curve_End(const HElement* element, TangentPoint* out);

/** One intersection point of an alignment polygon. */
typedef struct CrossPoint {
    double X;           /**< northing, m */
    double Y;           /**< easting, m */
    double TurnAngle;   /**< turn angle, arc-seconds, + right, - left (computed) */
    double EntryLength; /**< entry transition curve length, m (0 for none) */
    double ExitLength;  /**< exit transition curve length, m (0 for none) */
    double Radius;      /**< radius of the circular arc, m, > 0 */
    double Chainage;    /**< chainage of the point, m (used of the first inner point) */
} CrossPoint;

/** Lengths of the curve at one intersection point. */
typedef struct CrossLengths {
    double EntryTangent; /**< start of the entry curve back to the intersection point, m */
    double ExitTangent;  /**< intersection point to the end of the exit curve, m */
    double ArcLength;    /**< length of the circular arc, m */
    double CurveLength;  /**< arc plus both transition curves, m */
} CrossLengths;

/** Turn angle (arc-seconds, + right, - left) at points[1] between the
 *  straights points[0] -> points[1] and points[1] -> points[2] (X, Y only).
 *  Returns 0; the status of LIB_CalAZ (3 for coincident points) or 2 when
 *  the turn is not strictly inside +/-648000 (out unchanged on both). */
QUILLON_API ResultCode LIB_CalWay_H_Cross_TurnAngle(const SurveyPoint* points, double* turn_angle);

/** Tangent lengths, arc length and curve length (m) at one intersection
 *  point from its TurnAngle, EntryLength, ExitLength and Radius.
 *  Returns 0; 2 when a tangent is negative, the arc length is not positive,
 *  or a value is out of range (all four written even on 2). */
QUILLON_API ResultCode LIB_CalWay_H_Cross_Length(const CrossPoint* point, CrossLengths* out);

/** Complete element table (lines, transition curves, arcs and the end
 *  record) from a polygon of m intersection points (m at most 80); the table
 *  needs room for 81 records. The chainage runs from the first inner point's
 *  Chainage back along the first straight (from 0 without inner point). The
 *  TurnAngle of every inner point is written back into the polygon.
 *  Returns 0 with *record_count the number of records;
 *  4 for m > 80 (nothing written) or when the table would exceed 81 records
 *  (*record_count written and the last element so far marked with Type 0);
 *  1 for an invalid point or m = 0 (nothing written); 3 for a single point
 *  (no direction; nothing written); 2 for a point or chainage out of range;
 *  or the status of LIB_Cal2PointDist, LIB_CalAZ,
 *  LIB_CalWay_H_Cross_TurnAngle, LIB_CalWay_H_Cross_Length or an element
 *  function. On 2 and passed-on statuses the elements emitted and the turn
 *  angles computed so far stay written; *record_count is not. */
QUILLON_API ResultCode LIB_CalWay_H_Cross_MainPoint(CrossPoint* polygon, unsigned char m,
                                                    HElement* table, uint32_t* record_count);

/** As LIB_CalWay_H_Cross_MainPoint, except: returns 1 for fewer than 2
 *  points; the Radius of inner points is not validated; and when m >= 3 and
 *  the first inner point's Radius is exactly 0 the table is the two
 *  straights polygon[0] -> polygon[1] -> polygon[2] from polygon[0].Chainage
 *  and an end record at polygon[2] (*record_count 3); there the status of
 *  LIB_CalAZ or LIB_Cal2PointDist is passed on and a chainage out of range
 *  gives 2, with the lines built so far left written. */
QUILLON_API ResultCode LIB_CalWay_H_Cross_MainPoint_Full(CrossPoint* polygon, unsigned char m,
                                                         HElement* table, uint32_t* record_count);

/** Complete element table of n records (2 to 81) from an element list whose
 *  first record carries the start point, start azimuth and start chainage:
 *  every element gets its start point, azimuth and chainage, the last
 *  record becomes the end record (Type 0). A line followed by a line keeps
 *  the second line's own azimuth (this also reads the Type byte of the
 *  output's last slot as the caller left it). Returns 0; 4 for n out of
 *  2..81 and 1 for an invalid record (output unchanged on both); 2 when an
 *  element function overflows or a chainage leaves the range (the records
 *  computed so far stay written, the end record's Type is not yet set). */
QUILLON_API ResultCode LIB_CalWay_H_Ele_MainPoint(const HElement* elements, unsigned char n,
                                                  HElement* table);

/** Point and forward azimuth (arc-seconds) at a chainage on a complete
 *  element table of n records. A chainage within 0.001 of a record's
 *  chainage gives that record's stored values; a chainage before the start
 *  leaves out unchanged; one at or beyond the end (within 0.001) gives the
 *  end record. Returns 0; 2 when an element function overflows (the
 *  position may be written); 4 for n = 0 (out unchanged). */
QUILLON_API ResultCode LIB_CalWay_H_On(const HElement* table, unsigned char n, double chainage,
                                       TangentPoint* out);

/** Pile list: the m chainages of the list (ascending, first the start,
 *  last the end; m at most 81) plus piles every interval (m) from the first
 *  whole multiple of the interval (mode 0), from the start chainage
 *  (mode 1) or from 0 (any other mode), sorted, with entries within 0.001
 *  of their predecessor removed in one pass (the vacated tail slots hold
 *  -1.0). The output needs room for 81 values. Interval 0 copies the list. Returns 0; 1 for a
 * chainage out of range, an interval outside [0, 99999999.9999], m > 81, or m = 0 with a positive
 * interval (output unchanged); 4 when the list would exceed 80 entries (the list so far, unsorted,
 * and its count written). */
QUILLON_API ResultCode LIB_CalWay_Pile(const double* chainages, unsigned char m, double interval,
                                       double* piles, uint32_t* pile_count, unsigned char mode);

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
 *  is evaluated. A table of one record answers only before its start or
 *  beyond its end.
 *  Returns 0 or the element's status 2 (see the element functions); 4 for
 *  count 0 (elevation unchanged). */
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
/* ---- traverse closure and adjustment ------------------------------------ */

/** One leg of a traverse, in traverse order. */
typedef struct TraverseLeg {
    double HorizDist;     /**< horizontal length, m; the weight of every distribution */
    double HeightDiff;    /**< observed height difference of the leg, m */
    double DeltaX;        /**< coordinate increment in X, m (corrected by step 2) */
    double DeltaY;        /**< coordinate increment in Y, m (corrected by step 2) */
    double DeltaH;        /**< height increment, m (corrected by step 3) */
    double ForeDirection; /**< forward direction (azimuth) of the leg, arc-seconds; in a
                               connecting traverse the first leg's value is the starting
                               azimuth (corrected by step 1) */
    double BackDirection; /**< direction toward the previous station, arc-seconds */
    double Spare1;        /**< neither read nor written */
    double Spare2;        /**< neither read nor written */
} TraverseLeg;

/** Known points of a traverse (read only). A closed loop passes the same
 *  point as Start and End. */
typedef struct TraverseKnownPoints {
    SurveyPoint Start;      /**< starting known point */
    SurveyPoint ClosingRef; /**< closing orientation point (azimuth ClosingRef -> End) */
    SurveyPoint End;        /**< closing known point */
} TraverseKnownPoints;

/** Closure of a traverse, kept by the caller across the steps of
 *  LIB_TRSCalCoorErr (steps 2 and 3 read what step 0 wrote). */
typedef struct TraverseClosure {
    double Fx;                 /**< misclosure in X: summed increments - (End.X - Start.X), m */
    double Fy;                 /**< misclosure in Y, m */
    double Fh;                 /**< height misclosure: sum of HeightDiff - (End.H - Start.H), m */
    double SumDist;            /**< sum of the leg lengths, m */
    double SumHeightDiff;      /**< sum of the leg height differences, m */
    double Misclosure;         /**< linear misclosure sqrt(Fy^2 + Fx^2), m, in single precision */
    double Relative;           /**< Misclosure / SumDist (a fraction), in single precision */
    double KnownEndAzimuth;    /**< known closing azimuth, arc-seconds (0 for a closed loop) */
    double ComputedEndAzimuth; /**< azimuth carried to the end, arc-seconds (see the steps) */
    double AngularMisclosure;  /**< angular misclosure, arc-seconds */
} TraverseClosure;

/** Misclosure of LIB_TRSAdjust, in single precision. */
typedef struct AdjustClosure {
    float Misclosure; /**< linear misclosure, m */
    float Relative;   /**< misclosure / total length (a fraction) */
} AdjustClosure;

/** Closure of a traverse on a table of legs, in four steps called in turn
 *  on the same closure record.
 *  @param legs   n legs in traverse order; steps 1 to 3 correct them in place
 *  @param n      number of legs, 1 to 255
 *  @param known  known start, closing orientation point and end
 *  @param step   0: plan and height closure (writes Fx, Fy, Fh, SumDist,
 *                SumHeightDiff, Misclosure, Relative, ComputedEndAzimuth =
 *                the last ForeDirection); 1: angular closure, written to
 *                KnownEndAzimuth, ComputedEndAzimuth and AngularMisclosure,
 *                and AngularMisclosure / n added (not subtracted) to every
 *                ForeDirection; 2: DeltaX, DeltaY corrected in proportion to
 *                the leg lengths; 3: DeltaH corrected likewise
 *  @param mode   0: connecting traverse from a known start azimuth (the first
 *                ForeDirection) to the known azimuth ClosingRef -> End, angles
 *                back minus fore direction in whole seconds; 1: closed loop,
 *                angles fore minus back direction against (n - 2) * 648000
 *  @param result closure record: written by steps 0 and 1, read by 2 and 3
 *  @return 0; 1 when n is 0 or, in step 1 of mode 0, when ClosingRef and
 *          End coincide in plan (nothing written on 1). A mode other than 0
 *          or 1, or a step above 3, returns 0 and writes nothing. */
QUILLON_API ResultCode LIB_TRSCalCoorErr(TraverseLeg* legs, unsigned char n,
                                         const TraverseKnownPoints* known, unsigned char step,
                                         unsigned char mode, TraverseClosure* result);

/** Plan misclosure of computed traverse points against a known point, and
 *  the points corrected in proportion to each point's own weight.
 *  @param dist    n weights (leg lengths), m
 *  @param ref     two known points (X, Y read); mode 0 closes on ref[1],
 *                 mode 1 on ref[0]
 *  @param pts     n computed points in traverse order; the last is the
 *                 computed end
 *  @param n       number of points, 1 to 255
 *  @param adj     n points onto whose X and Y the corrected coordinates are
 *                 added (clear them first to receive the coordinates
 *                 themselves); H is not touched
 *  @param closure misclosure (m) and relative misclosure, single precision
 *  @param mode    0 or 1, as above
 *  @return 0 (closure and adj written); 1 when n is 0 or mode is neither 0
 *          nor 1 (nothing written). */
QUILLON_API ResultCode LIB_TRSAdjust(const double* dist, const SurveyPoint* ref,
                                     const SurveyPoint* pts, unsigned char n, SurveyPoint* adj,
                                     AdjustClosure* closure, unsigned char mode);

/* ---- multi-round observation at a station -------------------------------- */

/** One pointing. */
typedef struct TargetReading {
    double Hz;        /**< horizontal circle reading, arc-seconds */
    double V;         /**< zenith reading, arc-seconds */
    double SlopeDist; /**< slope distance, m */
    double Spare[6];  /**< not read */
} TargetReading;

/** One round of pointings from a station to one or two targets. */
typedef struct RoundObservation {
    TargetReading Face1Target1; /**< face I to target 1 */
    TargetReading Face1Target2; /**< face I to target 2 (not read with one target) */
    TargetReading Face2Target1; /**< face II to target 1 (not read in face I only) */
    TargetReading Face2Target2; /**< face II to target 2 (read with two targets, both faces) */
} RoundObservation;

/** Inputs and results of the multi-round reduction at one station. Its
 *  leading 36 doubles are those of a TraverseStation: target 1 is the
 *  forward station, target 2 the backward one. */
typedef struct StaMultiResult {
    double MeanHz1;      /**< out: mean direction to target 1, arc-seconds */
    double MeanV1;       /**< out: mean zenith angle to target 1, arc-seconds */
    double MeanSlope1;   /**< out: mean slope distance to target 1, m */
    double HorizDist1;   /**< out: horizontal distance to target 1, m */
    double VertDiff1;    /**< out: vertical difference to target 1, m */
    SurveyPoint Point1;  /**< out: coordinates of target 1, m (H: station H + VertDiff1) */
    double HeightDiff1;  /**< out: mark-to-mark height difference to target 1, m */
    double MeanHz2;      /**< out: mean direction to target 2, arc-seconds (two targets) */
    double MeanV2;       /**< out: mean zenith angle to target 2, arc-seconds (two targets) */
    double MeanSlope2;   /**< out: mean slope distance to target 2, m (two targets) */
    double HorizDist2;   /**< out: horizontal distance to target 2, m (two targets) */
    double VertDiff2;    /**< out: vertical difference to target 2, m (two targets) */
    SurveyPoint Point2;  /**< out: coordinates of target 2, m (two targets) */
    double HeightDiff2;  /**< out: mark-to-mark height difference to target 2, m (two targets) */
    double Angle12;      /**< out: MeanHz1 - MeanHz2, + 1296000 when negative, arc-seconds
                              (two targets) */
    double MeanHz2Copy;  /**< out: MeanHz2 again, arc-seconds (two targets) */
    double MeanHz1Copy;  /**< out: MeanHz1 again, arc-seconds */
    double Reserved[12]; /**< neither read nor written (the traverse results of a
                              TraverseStation) */
    SurveyPoint StationPoint;     /**< out: X, Y, H of the station record, m */
    int32_t ErrorFlag;            /**< out: 0 passed or skipped; 1 index-error difference, 2 zenith
                                       spread, 3 face I / face II angle difference, 4 2C difference,
                                       5 direction spread (first failure kept); 6 no rounds */
    int32_t Reserved2;            /**< neither read nor written */
    double TolIndexDiff;          /**< in: tolerance of the index-error difference, arc-seconds */
    double TolZenithRange;        /**< in: tolerance of the zenith spread, arc-seconds */
    double TolFaceAngleDiff;      /**< in: tolerance of the face I / face II angle difference,
                                       arc-seconds */
    double Tol2CDiff;             /**< in: tolerance of the 2C difference, arc-seconds */
    double TolDirectionRange;     /**< in: tolerance of the direction spread, arc-seconds */
    int32_t SkipChecks;           /**< in: 0 runs the tolerance tests, other values skip them */
    int32_t Reserved3;            /**< neither read nor written */
    int32_t ObsMode;              /**< in: 0 one target, both faces; 1 two targets, face I only;
                                       2 and 3 two targets, both faces */
    const StationRecord* Station; /**< in: the station (reduction settings and X, Y, H) */
    double Scale;                 /**< in: scale passed to LIB_DistConvert */
} StaMultiResult;

/** Reduces rounds of face I / face II pointings at a station: face means
 *  per round, means over the rounds, the field tolerance tests, reduced
 *  distances (LIB_DistConvert with the record's Station and Scale) and the
 *  targets' coordinates (LIB_CalCoor from the station with the mean
 *  direction as azimuth and the vertical difference).
 *  @param rounds   n rounds
 *  @param n        number of rounds
 *  @param result   inputs (tolerances, SkipChecks, ObsMode, Station, Scale)
 *                  and outputs; ErrorFlag is set to 0 first
 *  @return 0; 1 when a tolerance test failed (ErrorFlag holds the first
 *          failure; every output is still written) or when n is 0
 *          (ErrorFlag 6, nothing else written). An ObsMode outside 0 to 3
 *          returns 0 with ErrorFlag 0 and nothing else written. With one
 *          target (mode 0) the target-2 fields, Angle12 and MeanHz2Copy are
 *          not written. A target point out of range is written as zeros. */
QUILLON_API ResultCode LIB_STAMultCycleCal(const RoundObservation* rounds, uint32_t n,
                                           StaMultiResult* result);

/* ---- multi-round traverse ------------------------------------------------ */

/** One station of a multi-round traverse: its 36 doubles lie where the
 *  leading 36 doubles of the station's StaMultiResult lie (target 1 forward,
 *  target 2 backward), so that record can be copied in as it stands. */
typedef struct TraverseStation {
    double MeanHz1;           /**< mean direction to the forward station, arc-seconds */
    double MeanV1;            /**< mean zenith angle to the forward station, arc-seconds */
    double MeanSlope1;        /**< mean slope distance to the forward station, m */
    double HorizDist1;        /**< in: horizontal distance to the next station (leg length), m */
    double VertDiff1;         /**< in: vertical difference to the next station, m */
    SurveyPoint Point1;       /**< forward station as observed, m */
    double HeightDiff1;       /**< mark-to-mark height difference to the forward station, m */
    double MeanHz2;           /**< mean direction to the backward station, arc-seconds */
    double MeanV2;            /**< mean zenith angle to the backward station, arc-seconds */
    double MeanSlope2;        /**< mean slope distance to the backward station, m */
    double HorizDist2;        /**< horizontal distance to the backward station, m */
    double VertDiff2;         /**< vertical difference to the backward station, m */
    SurveyPoint Point2;       /**< backward station as observed, m */
    double HeightDiff2;       /**< mark-to-mark height difference to the backward station, m */
    double Angle12;           /**< in: station angle, forward minus backward direction,
                                   arc-seconds */
    double MeanHz2Copy;       /**< second copy of MeanHz2, arc-seconds */
    double Azimuth;           /**< out: azimuth of the leg leaving this station, arc-seconds */
    double DeltaX;            /**< out: increment in X, m */
    double DeltaY;            /**< out: increment in Y, m */
    double DeltaH;            /**< out: height increment (VertDiff1), m */
    double CorrX;             /**< out: correction of DeltaX, m */
    double CorrY;             /**< out: correction of DeltaY, m */
    double CorrH;             /**< out: correction of DeltaH, m */
    double AdjDeltaX;         /**< out: adjusted increment in X, m */
    double AdjDeltaY;         /**< out: adjusted increment in Y, m */
    double AdjDeltaH;         /**< out: adjusted height increment, m */
    SurveyPoint LegEnd;       /**< out: coordinates at the end of this station's leg, m */
    SurveyPoint StationPoint; /**< in, first station only: the starting coordinates, m */
} TraverseStation;

/** Settings and known points of a multi-round traverse (read only). */
typedef struct TraverseControl {
    int32_t DistributionRule; /**< 0: plan misclosure by leg length; 1: by increment; other:
                                   no plan or height correction */
    int32_t HeightRule;       /**< 0: -fh / (number of stations) per leg; 1: adjusted height
                                   increments 0; other: none */
    int32_t TraverseType;     /**< 0 loop back to A, re-oriented on B; 1 closed polygon closing
                                   on B; 2 A to E oriented on B and G; 3 A to E oriented on B
                                   only; 4 open */
    int32_t Reserved;         /**< not read */
    SurveyPoint A;            /**< starting station, m */
    SurveyPoint B;            /**< orientation point of A, m */
    SurveyPoint E;            /**< end station, m */
    SurveyPoint G;            /**< orientation point of E, m */
} TraverseControl;

/** Misclosures of a multi-round traverse. Bit i of ValidMask is set when
 *  the (i+1)-th double was written. */
typedef struct TraverseResult {
    double SumDist;           /**< total leg length, m (all types) */
    double StationCount;      /**< number of stations (all types) */
    double LinearMisclosure;  /**< fs = sqrt(fy^2 + fx^2), m (types 0 to 3) */
    double HeightMisclosure;  /**< fh, m (types 0 to 2) */
    double AngularMisclosure; /**< f, arc-seconds (types 0 to 2) */
    double Fx;                /**< misclosure in X, m (types 0 to 3) */
    double Fy;                /**< misclosure in Y, m (types 0 to 3) */
    double HeightMisclosure2; /**< fh again, m (types 0 to 3) */
    double HeightRatio;       /**< fh / SumDist (types 0 to 3) */
    double Relative;          /**< relative misclosure K = fs / SumDist (types 0 to 3) */
    int32_t ValidMask;        /**< 1023 for types 0 to 2, 999 for type 3, 3 for type 4 */
} TraverseResult;

/** Computes and adjusts a traverse whose stations were reduced by
 *  LIB_STAMultCycleCal: angular closure and its distribution (types 0 to
 *  2), leg azimuths from the azimuth B -> A, increments, plan and height
 *  closure on the end point (types 0 to 3), distribution of the
 *  misclosures and the coordinates of every station, accumulated from the
 *  first station's StationPoint (not from A) by the adjusted increments as
 *  they stand: a rule that writes no correction leaves the caller's values
 *  there; the open traverse (type 4) fills them with the plain increments.
 *  @param stations n stations in traverse order (n - 1 legs)
 *  @param n        number of stations, at least 2
 *  @param control  rules, traverse type and known points
 *  @param result   misclosures, written per ValidMask
 *  @return 0; 1 when n < 2 or the work array cannot be allocated (nothing
 *          written), or when the total leg length is 0 in types 0 to 3
 *          (Azimuth and the increments written, nothing else). A traverse
 *          type outside 0 to 4 returns 0 and writes nothing. */
QUILLON_API ResultCode LIB_TRSMultCycleCal(TraverseStation* stations, uint32_t n,
                                           const TraverseControl* control, TraverseResult* result);

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
/* Compile-time checks of every record's size and field offsets. Compilers
 * older than C11 / C++11 get a typedef of an array whose size turns negative
 * when a check fails. */
#if defined(__cplusplus) && __cplusplus >= 201103L
#define QUILLON_STATIC_ASSERT(cond, msg) static_assert(cond, msg)
#elif !defined(__cplusplus) && defined(__STDC_VERSION__) && __STDC_VERSION__ >= 201112L
#define QUILLON_STATIC_ASSERT(cond, msg) _Static_assert(cond, msg)
#else
#define QUILLON_CONCAT_(a, b) a##b
#define QUILLON_CONCAT(a, b) QUILLON_CONCAT_(a, b)
#define QUILLON_STATIC_ASSERT(cond, msg)                                                           \
    typedef char QUILLON_CONCAT(quillon_layout_check_, __LINE__)[(cond) ? 1 : -1]
#endif
#define QUILLON_LAYOUT(type, field, offset)                                                        \
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

QUILLON_SIZE(SODistAngleResult, 16);
QUILLON_LAYOUT(SODistAngleResult, DistanceDifference, 0);
QUILLON_LAYOUT(SODistAngleResult, AngleDifference, 8);

QUILLON_SIZE(SOCoorResult, 64);
QUILLON_LAYOUT(SOCoorResult, X, 0);
QUILLON_LAYOUT(SOCoorResult, Y, 8);
QUILLON_LAYOUT(SOCoorResult, H, 16);
QUILLON_LAYOUT(SOCoorResult, HorizontalDistanceDifference, 24);
QUILLON_LAYOUT(SOCoorResult, HeightDifference, 32);
QUILLON_LAYOUT(SOCoorResult, ForwardDifference, 40);
QUILLON_LAYOUT(SOCoorResult, LateralDifference, 48);
QUILLON_LAYOUT(SOCoorResult, AngleDifference, 56);

QUILLON_SIZE(SODivideResult, 24);
QUILLON_LAYOUT(SODivideResult, ForwardDifference, 0);
QUILLON_LAYOUT(SODivideResult, LateralDifference, 8);
QUILLON_LAYOUT(SODivideResult, AngleDifference, 16);

QUILLON_SIZE(AreaResult, 24);
QUILLON_LAYOUT(AreaResult, Area, 0);
QUILLON_LAYOUT(AreaResult, Hectares, 8);
QUILLON_LAYOUT(AreaResult, Perimeter, 16);

QUILLON_SIZE(MissLineResult, 40);
QUILLON_LAYOUT(MissLineResult, SlopeDistance, 0);
QUILLON_LAYOUT(MissLineResult, HorizontalDistance, 8);
QUILLON_LAYOUT(MissLineResult, HeightDifference, 16);
QUILLON_LAYOUT(MissLineResult, Grade, 24);
QUILLON_LAYOUT(MissLineResult, Azimuth, 32);
QUILLON_SIZE(FrontMeetKnown, 40);
QUILLON_LAYOUT(FrontMeetKnown, Point, 0);
QUILLON_LAYOUT(FrontMeetKnown, Direction, 24);
QUILLON_LAYOUT(FrontMeetKnown, Distance, 32);

QUILLON_SIZE(FrontMeetInput, 80);
QUILLON_LAYOUT(FrontMeetInput, A, 0);
QUILLON_LAYOUT(FrontMeetInput, B, 40);

QUILLON_SIZE(LineCrossInput, 96);
QUILLON_LAYOUT(LineCrossInput, P1, 0);
QUILLON_LAYOUT(LineCrossInput, P2, 24);
QUILLON_LAYOUT(LineCrossInput, P3, 48);
QUILLON_LAYOUT(LineCrossInput, P4, 72);

QUILLON_SIZE(LineHeightResult, 32);
QUILLON_LAYOUT(LineHeightResult, Height, 0);
QUILLON_LAYOUT(LineHeightResult, HorizontalDistance, 8);
QUILLON_LAYOUT(LineHeightResult, Along, 16);
QUILLON_LAYOUT(LineHeightResult, HeightBetween, 24);

QUILLON_SIZE(CirclePointPair, 48);
QUILLON_LAYOUT(CirclePointPair, FirstX, 0);
QUILLON_LAYOUT(CirclePointPair, FirstY, 8);
QUILLON_LAYOUT(CirclePointPair, FirstSpare, 16);
QUILLON_LAYOUT(CirclePointPair, SecondX, 24);
QUILLON_LAYOUT(CirclePointPair, SecondY, 32);
QUILLON_LAYOUT(CirclePointPair, SecondSpare, 40);
QUILLON_SIZE(HElement, 64);
QUILLON_LAYOUT(HElement, Type, 0);
QUILLON_LAYOUT(HElement, X, 8);
QUILLON_LAYOUT(HElement, Y, 16);
QUILLON_LAYOUT(HElement, Azimuth, 24);
QUILLON_LAYOUT(HElement, Length, 32);
QUILLON_LAYOUT(HElement, Radius, 40);
QUILLON_LAYOUT(HElement, Turn, 48);
QUILLON_LAYOUT(HElement, Spiral, 49);
QUILLON_LAYOUT(HElement, Chainage, 56);

QUILLON_SIZE(CrossPoint, 56);
QUILLON_LAYOUT(CrossPoint, X, 0);
QUILLON_LAYOUT(CrossPoint, Y, 8);
QUILLON_LAYOUT(CrossPoint, TurnAngle, 16);
QUILLON_LAYOUT(CrossPoint, EntryLength, 24);
QUILLON_LAYOUT(CrossPoint, ExitLength, 32);
QUILLON_LAYOUT(CrossPoint, Radius, 40);
QUILLON_LAYOUT(CrossPoint, Chainage, 48);

QUILLON_SIZE(CrossLengths, 32);
QUILLON_LAYOUT(CrossLengths, EntryTangent, 0);
QUILLON_LAYOUT(CrossLengths, ExitTangent, 8);
QUILLON_LAYOUT(CrossLengths, ArcLength, 16);
QUILLON_LAYOUT(CrossLengths, CurveLength, 24);
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
QUILLON_SIZE(TraverseLeg, 72);
QUILLON_LAYOUT(TraverseLeg, HorizDist, 0);
QUILLON_LAYOUT(TraverseLeg, HeightDiff, 8);
QUILLON_LAYOUT(TraverseLeg, DeltaX, 16);
QUILLON_LAYOUT(TraverseLeg, DeltaY, 24);
QUILLON_LAYOUT(TraverseLeg, DeltaH, 32);
QUILLON_LAYOUT(TraverseLeg, ForeDirection, 40);
QUILLON_LAYOUT(TraverseLeg, BackDirection, 48);
QUILLON_LAYOUT(TraverseLeg, Spare1, 56);
QUILLON_LAYOUT(TraverseLeg, Spare2, 64);

QUILLON_SIZE(TraverseKnownPoints, 72);
QUILLON_LAYOUT(TraverseKnownPoints, Start, 0);
QUILLON_LAYOUT(TraverseKnownPoints, ClosingRef, 24);
QUILLON_LAYOUT(TraverseKnownPoints, End, 48);

QUILLON_SIZE(TraverseClosure, 80);
QUILLON_LAYOUT(TraverseClosure, Fx, 0);
QUILLON_LAYOUT(TraverseClosure, Fy, 8);
QUILLON_LAYOUT(TraverseClosure, Fh, 16);
QUILLON_LAYOUT(TraverseClosure, SumDist, 24);
QUILLON_LAYOUT(TraverseClosure, SumHeightDiff, 32);
QUILLON_LAYOUT(TraverseClosure, Misclosure, 40);
QUILLON_LAYOUT(TraverseClosure, Relative, 48);
QUILLON_LAYOUT(TraverseClosure, KnownEndAzimuth, 56);
QUILLON_LAYOUT(TraverseClosure, ComputedEndAzimuth, 64);
QUILLON_LAYOUT(TraverseClosure, AngularMisclosure, 72);

QUILLON_SIZE(AdjustClosure, 8);
QUILLON_LAYOUT(AdjustClosure, Misclosure, 0);
QUILLON_LAYOUT(AdjustClosure, Relative, 4);

QUILLON_SIZE(TargetReading, 72);
QUILLON_LAYOUT(TargetReading, Hz, 0);
QUILLON_LAYOUT(TargetReading, V, 8);
QUILLON_LAYOUT(TargetReading, SlopeDist, 16);
QUILLON_LAYOUT(TargetReading, Spare, 24);

QUILLON_SIZE(RoundObservation, 288);
QUILLON_LAYOUT(RoundObservation, Face1Target1, 0);
QUILLON_LAYOUT(RoundObservation, Face1Target2, 72);
QUILLON_LAYOUT(RoundObservation, Face2Target1, 144);
QUILLON_LAYOUT(RoundObservation, Face2Target2, 216);

/* The station pointer follows ObsMode at its own alignment: at 348 on 32-bit
 * targets, at 352 (after 4 bytes of padding) on 64-bit ones. */
#define QUILLON_STA_STATION_AT ((348 + sizeof(void*) - 1) / sizeof(void*) * sizeof(void*))
#define QUILLON_STA_SCALE_AT ((QUILLON_STA_STATION_AT + sizeof(void*) + 7) / 8 * 8)
QUILLON_SIZE(StaMultiResult, QUILLON_STA_SCALE_AT + 8);
QUILLON_LAYOUT(StaMultiResult, MeanHz1, 0);
QUILLON_LAYOUT(StaMultiResult, MeanV1, 8);
QUILLON_LAYOUT(StaMultiResult, MeanSlope1, 16);
QUILLON_LAYOUT(StaMultiResult, HorizDist1, 24);
QUILLON_LAYOUT(StaMultiResult, VertDiff1, 32);
QUILLON_LAYOUT(StaMultiResult, Point1, 40);
QUILLON_LAYOUT(StaMultiResult, HeightDiff1, 64);
QUILLON_LAYOUT(StaMultiResult, MeanHz2, 72);
QUILLON_LAYOUT(StaMultiResult, MeanV2, 80);
QUILLON_LAYOUT(StaMultiResult, MeanSlope2, 88);
QUILLON_LAYOUT(StaMultiResult, HorizDist2, 96);
QUILLON_LAYOUT(StaMultiResult, VertDiff2, 104);
QUILLON_LAYOUT(StaMultiResult, Point2, 112);
QUILLON_LAYOUT(StaMultiResult, HeightDiff2, 136);
QUILLON_LAYOUT(StaMultiResult, Angle12, 144);
QUILLON_LAYOUT(StaMultiResult, MeanHz2Copy, 152);
QUILLON_LAYOUT(StaMultiResult, MeanHz1Copy, 160);
QUILLON_LAYOUT(StaMultiResult, Reserved, 168);
QUILLON_LAYOUT(StaMultiResult, StationPoint, 264);
QUILLON_LAYOUT(StaMultiResult, ErrorFlag, 288);
QUILLON_LAYOUT(StaMultiResult, Reserved2, 292);
QUILLON_LAYOUT(StaMultiResult, TolIndexDiff, 296);
QUILLON_LAYOUT(StaMultiResult, TolZenithRange, 304);
QUILLON_LAYOUT(StaMultiResult, TolFaceAngleDiff, 312);
QUILLON_LAYOUT(StaMultiResult, Tol2CDiff, 320);
QUILLON_LAYOUT(StaMultiResult, TolDirectionRange, 328);
QUILLON_LAYOUT(StaMultiResult, SkipChecks, 336);
QUILLON_LAYOUT(StaMultiResult, Reserved3, 340);
QUILLON_LAYOUT(StaMultiResult, ObsMode, 344);
QUILLON_LAYOUT(StaMultiResult, Station, QUILLON_STA_STATION_AT);
QUILLON_LAYOUT(StaMultiResult, Scale, QUILLON_STA_SCALE_AT);
#undef QUILLON_STA_STATION_AT
#undef QUILLON_STA_SCALE_AT

QUILLON_SIZE(TraverseStation, 288);
QUILLON_LAYOUT(TraverseStation, MeanHz1, 0);
QUILLON_LAYOUT(TraverseStation, MeanV1, 8);
QUILLON_LAYOUT(TraverseStation, MeanSlope1, 16);
QUILLON_LAYOUT(TraverseStation, HorizDist1, 24);
QUILLON_LAYOUT(TraverseStation, VertDiff1, 32);
QUILLON_LAYOUT(TraverseStation, Point1, 40);
QUILLON_LAYOUT(TraverseStation, HeightDiff1, 64);
QUILLON_LAYOUT(TraverseStation, MeanHz2, 72);
QUILLON_LAYOUT(TraverseStation, MeanV2, 80);
QUILLON_LAYOUT(TraverseStation, MeanSlope2, 88);
QUILLON_LAYOUT(TraverseStation, HorizDist2, 96);
QUILLON_LAYOUT(TraverseStation, VertDiff2, 104);
QUILLON_LAYOUT(TraverseStation, Point2, 112);
QUILLON_LAYOUT(TraverseStation, HeightDiff2, 136);
QUILLON_LAYOUT(TraverseStation, Angle12, 144);
QUILLON_LAYOUT(TraverseStation, MeanHz2Copy, 152);
QUILLON_LAYOUT(TraverseStation, Azimuth, 160);
QUILLON_LAYOUT(TraverseStation, DeltaX, 168);
QUILLON_LAYOUT(TraverseStation, DeltaY, 176);
QUILLON_LAYOUT(TraverseStation, DeltaH, 184);
QUILLON_LAYOUT(TraverseStation, CorrX, 192);
QUILLON_LAYOUT(TraverseStation, CorrY, 200);
QUILLON_LAYOUT(TraverseStation, CorrH, 208);
QUILLON_LAYOUT(TraverseStation, AdjDeltaX, 216);
QUILLON_LAYOUT(TraverseStation, AdjDeltaY, 224);
QUILLON_LAYOUT(TraverseStation, AdjDeltaH, 232);
QUILLON_LAYOUT(TraverseStation, LegEnd, 240);
QUILLON_LAYOUT(TraverseStation, StationPoint, 264);

QUILLON_SIZE(TraverseControl, 112);
QUILLON_LAYOUT(TraverseControl, DistributionRule, 0);
QUILLON_LAYOUT(TraverseControl, HeightRule, 4);
QUILLON_LAYOUT(TraverseControl, TraverseType, 8);
QUILLON_LAYOUT(TraverseControl, Reserved, 12);
QUILLON_LAYOUT(TraverseControl, A, 16);
QUILLON_LAYOUT(TraverseControl, B, 40);
QUILLON_LAYOUT(TraverseControl, E, 64);
QUILLON_LAYOUT(TraverseControl, G, 88);

QUILLON_SIZE(TraverseResult, 88);
QUILLON_LAYOUT(TraverseResult, SumDist, 0);
QUILLON_LAYOUT(TraverseResult, StationCount, 8);
QUILLON_LAYOUT(TraverseResult, LinearMisclosure, 16);
QUILLON_LAYOUT(TraverseResult, HeightMisclosure, 24);
QUILLON_LAYOUT(TraverseResult, AngularMisclosure, 32);
QUILLON_LAYOUT(TraverseResult, Fx, 40);
QUILLON_LAYOUT(TraverseResult, Fy, 48);
QUILLON_LAYOUT(TraverseResult, HeightMisclosure2, 56);
QUILLON_LAYOUT(TraverseResult, HeightRatio, 64);
QUILLON_LAYOUT(TraverseResult, Relative, 72);
QUILLON_LAYOUT(TraverseResult, ValidMask, 80);
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

#endif /* QUILLON_H */
