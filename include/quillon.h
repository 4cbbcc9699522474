/**
 * @file quillon.h
 * @brief Quillon, the computation library of a total station: every record
 *        and every function of the device library.
 *
 * One header for C and C++ callers; it compiles as C90, C99, C++98 and every
 * later standard. Every function takes plain numbers and pointers to
 * caller-owned records, writes its results into those records and returns a
 * status code (ResultCode). Nothing is allocated that outlives a call, and
 * nothing is read or written but the caller's records.
 *
 * @par State
 * The library keeps no state that any result depends on. LIB_RESA2D writes two
 * module-level doubles as scratch that nothing reads (they are part of the
 * library's contract), so it is not reentrant; every other function is.
 *
 * @par Null pointers
 * No pointer is tested for null, except the three that LIB_SO_DistAngle()
 * names (the measurement and the measured angle may be null, a null result
 * record is refused). Anywhere else a null pointer where a record is
 * expected is undefined behaviour.
 *
 * @par Units and conventions
 * - Lengths in metres (doubles).
 * - Angles in arc-seconds (doubles): full circle 1296000, half 648000,
 *   quarter 324000. Azimuths run clockwise from the X axis (north) toward the
 *   Y axis (east). Angles are not normalised on input; a function that needs
 *   an angle in a range folds it itself and says how.
 * - Conversions between arc-seconds and radians use pi taken as 3.1415926
 *   (QUILLON_RHO_SEC, QUILLON_RAD_PER_SEC), never the exact value, so a
 *   direction computed with atan2 differs slightly from whole quarter
 *   circles: due east is 324000.0055268, not 324000.
 * - A computed value v is in range when
 *   -99999999.9999 <= v <= 99999999.9999 (QUILLON_RANGE_LIMIT); a
 *   not-a-number counts as out of range, except where a function says that
 *   it passes.
 * - Counts, modes and flags are unsigned 8-bit values, except where a
 *   function names another type (the 32-bit counts of LIB_CalCircle(),
 *   LIB_STAMultCycleCal() and LIB_TRSMultCycleCal()).
 * - Some results are deliberately truncated to whole arc-seconds or rounded
 *   through single precision; each function says where.
 *
 * @par Status codes
 * Every function returns a ResultCode (enum QuillonStatus): 0 success; 1
 * input outside its domain; 2 a computed value out of range (or a scale
 * factor outside its band); 3 two points coincide where a direction is
 * needed; 4 a road table count outside its limits; 5 a computed point does
 * not lie in the direction of the sighting; 6 two lines are parallel. Each
 * function lists the values it returns, their conditions in the order it
 * tests them, and what is written on each. An output that a status value
 * does not name is left as the caller had it.
 *
 * @par Records
 * Records are laid out in declaration order with natural alignment; arrays
 * of records are contiguous. Their sizes and field offsets are pinned by
 * static assertions at the end of this header.
 *
 * @par Functions by family
 * Core (src/core): the primitives every other family calls
 * - LIB_GetFaceStatus(): face I or face II of a zenith angle
 * - LIB_Sum(): values added onto a running total
 * - LIB_Cal2PointDist(): plan or spatial distance between two points
 * - LIB_CalAZ(): azimuth from one point to another
 * - LIB_CalDistAngle(): distances, height difference, azimuth and zenith
 *   angle between two points
 * - LIB_MeasCoor(): coordinates of a point measured from the station
 * - LIB_CalCoor(): polar point from a point, an azimuth and a distance
 * - LIB_CalDist(): horizontal distance, height difference and azimuth of a
 *   join
 * - LIB_DistConvert(): slope distance reduced for curvature, refraction and
 *   scale
 * - LIB_CalLB(): along-line and across-line components against a base line
 * - LIB_CalScale(): combined height and grid scale factor
 *
 * Field programs (src/field): stakeout, remote height, offsets, area,
 * intersections
 * - LIB_SO_DistAngle(): stakeout by design distance and angle
 * - LIB_SO_Coor(): stakeout by design coordinates
 * - LIB_SO_Height(): stakeout of a design height
 * - LIB_SO_Divide(): stakeout of a point dividing a line into equal parts
 * - LIB_Hight(): remote height of a point that carries no prism
 * - LIB_OS_Angle(): offset by angle: the centre of an object beside the prism
 * - LIB_OS_Dist1(): offset right, forward and up from a reference point
 * - LIB_OS_Dist2(): offset along the line through two points
 * - LIB_OS_SDist(): offset along the line of sight, before or behind the prism
 * - LIB_OS_Ha(): offset by horizontal angle: where a sight meets a wall line
 * - LIB_OS_Round(): centre of a round object from its two edges
 * - LIB_Area(): area and perimeter of a polygon
 * - LIB_MissLine(): missing line between two points measured from one station
 * - LIB_CalFrontMeet(): forward intersection by directions or by distances
 * - LIB_CalLineCrossPT(): crossing point of two lines
 * - LIB_CalLineHeight(): heights on the vertical plane of a line, from angles
 * - LIB_CalCircle(): circle through three points, with a list of its points
 *
 * Station set-up (src/setup): resection, reference lines, planes, arcs
 * - LIB_RESA2D(): resection by directions: distances to the known points
 * - LIB_RESDist(): free station fitted to distances and directions
 * - LIB_RESSetAngle(): orientation of the circle from one known sighting
 * - LIB_BaseLine(): length, grade and azimuth of a base line
 * - LIB_Project(): projection of a point on a line
 * - LIB_LSO_Point(): point set out from along and across values on a line
 * - LIB_LSO_Line(): position of a measured point against a reference line
 * - LIB_VPlane(): point where a sight meets a vertical plane
 * - LIB_SPlane(): point where a sight meets a slope plane
 * - LIB_ArcCalc(): point where a sight meets an arc
 *
 * Road alignment (src/road): plan, profile and cross-section
 * - LIB_CalWay_H_Line_On(): point on a straight
 * - LIB_CalWay_H_Circle_On(): point on a circular arc
 * - LIB_CalWay_H_Curve_On(): point on a transition curve
 * - LIB_CalWay_H_Circle_AZ(): forward azimuth on a circular arc
 * - LIB_CalWay_H_Curve_AZ(): forward azimuth on a transition curve
 * - LIB_CalWay_H_Curve_End(): far end of an exit transition curve
 * - LIB_CalWay_H_Cross_TurnAngle(): turn angle at an intersection point
 * - LIB_CalWay_H_Cross_Length(): tangent, arc and curve lengths at an
 *   intersection point
 * - LIB_CalWay_H_Cross_MainPoint(): element table from intersection points
 * - LIB_CalWay_H_Cross_MainPoint_Full(): the same, or two plain straights
 *   when the first intersection point has no radius
 * - LIB_CalWay_H_Ele_MainPoint(): element table from a list of elements
 * - LIB_CalWay_H_On(): point and forward azimuth at a chainage
 * - LIB_CalWay_Pile(): chainages to stake out: main points and piles
 * - LIB_CalWay_V_Ele_MainPoint(): profile table from a list of elements
 * - LIB_CalWay_V_Line_On(): elevation on a grade line
 * - LIB_CalWay_V_Curve_On(): elevation on a parabolic vertical curve
 * - LIB_CalWay_V_Circle_On(): elevation on a circular vertical curve
 * - LIB_CalWay_V_On(): design elevation at a chainage
 * - LIB_CalWay_V_Cross_MainPoint(): profile table from grade intersections
 * - LIB_CalWay_Width(): carriageway widths at a chainage
 * - LIB_CalWay_SideSlope(): cross slopes at a chainage
 * - LIB_CalWay_H_Side(): edge point in plan, square to the centre line
 * - LIB_CalWay_V_Side(): edge elevation from width and cross slope
 *
 * Traverse (src/traverse): closure, adjustment and multi-round observation
 * - LIB_TRSCalCoorErr(): closure and distribution on a table of legs, in steps
 * - LIB_TRSAdjust(): plan misclosure of computed points and their correction
 * - LIB_STAMultCycleCal(): rounds of face I / face II pointings at a station
 * - LIB_TRSMultCycleCal(): traverse computed and adjusted from its stations
 */
#ifndef QUILLON_H
#define QUILLON_H

#include <stddef.h>
#include <stdint.h>

/* ---- version ------------------------------------------------------------- */

/** Major version: changes with any change of a device result, a record
 *  layout or the export table. */
#define QUILLON_VERSION_MAJOR 1
/** Minor version: changes with additions that leave every device result and
 *  export as it was. */
#define QUILLON_VERSION_MINOR 0
/** Patch version: changes with fixes that change no interface and no device
 *  result. */
#define QUILLON_VERSION_PATCH 0
/** The version as text, "MAJOR.MINOR.PATCH"; released as the tag
 *  "v" followed by this text. */
#define QUILLON_VERSION_STRING "1.0.0"

/* ---- export macro -------------------------------------------------------- */

/** @def QUILLON_API
 *  Marks a function or object exported by the shared library. Define
 *  QUILLON_STATIC before including this header when linking the static
 *  library; QUILLON_BUILDING is defined only while the library itself is
 *  built. */
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

/* ==== status codes, constants and shared records ========================== */

/** @defgroup shared Status codes, constants and shared records
 *  What every family uses: the status type, the pi-3.1415926 angle
 *  constants, the range limit and the records of points, stations and
 *  measurements.
 *  @{ */

/** Status returned by every LIB_ function; one of the QuillonStatus values. */
typedef int ResultCode;

/** The values of ResultCode. */
enum QuillonStatus {
    QUILLON_OK = 0,         /**< 0: success */
    QUILLON_DOMAIN = 1,     /**< 1: input outside its domain (a count, mode or field out of
                                 bounds, a degenerate configuration) */
    QUILLON_RANGE = 2,      /**< 2: a computed value beyond the range limit, or a scale factor
                                 outside its band */
    QUILLON_COINCIDENT = 3, /**< 3: two points coincide where a direction is needed */
    QUILLON_TABLE = 4,      /**< 4: a road table count outside its limits */
    QUILLON_BEHIND = 5,     /**< 5: a computed point does not lie in the direction of the
                                 sighting */
    QUILLON_PARALLEL = 6    /**< 6: two lines are parallel */
};

/** Arc-seconds per radian, 648000 / 3.1415926. */
#define QUILLON_RHO_SEC 206264.8097655947
/** Radians per arc-second, 3.1415926 / 648000. */
#define QUILLON_RAD_PER_SEC 4.848136728395062e-6
/** Largest magnitude of a computed coordinate, distance or difference, m. */
#define QUILLON_RANGE_LIMIT 99999999.9999
/** Earth radius for curvature, refraction and height scale, m. */
#define QUILLON_EARTH_RADIUS 6370000.0

/** A point. */
typedef struct SurveyPoint {
    double X; /**< northing, m */
    double Y; /**< easting, m */
    double H; /**< elevation, m */
} SurveyPoint;

/** The instrument station (read only). The three bytes follow the five
 *  doubles directly; the record is padded to 48 bytes. Where signA differs
 *  from signB a horizontal reading is turned by a half circle; each function
 *  says in which sense. */
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

/** Distances of one measurement, written by LIB_DistConvert(). */
typedef struct DistanceRecord {
    double SlopeDistance;      /**< slope distance, m */
    double HorizontalDistance; /**< horizontal distance, m */
    double VerticalDifference; /**< instrument axis to target, m */
    double HeightDifference;   /**< mark to mark, m */
} DistanceRecord;

/** Distances and angles between two points (LIB_CalDistAngle()). The first
 *  three fields are never touched by LIB_CalDistAngle(); the offset functions
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

/** Join of two points (LIB_CalDist()). Fields 1 and 4 are never touched. */
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

/** A point projected on the line A-B (LIB_Project(), LIB_LSO_Line()). */
typedef struct ProjectionRecord {
    double FootX;  /**< foot of the perpendicular, northing, m */
    double FootY;  /**< foot of the perpendicular, easting, m */
    double FootH;  /**< line height at the foot, m */
    double Across; /**< signed perpendicular distance, + right of A->B, m */
    double Along;  /**< distance from A to the foot, negative behind A, m */
    double LineDH; /**< point H minus the line height at the foot, m */
} ProjectionRecord;

/** @} */

/* ==== core: geometry primitives and distance reduction (src/core) ========= */

/** @defgroup core Core: geometry primitives and distance reduction
 *  Face status, sums, distances, azimuths, polar points, the reduction of a
 *  slope measurement, line components and the combined scale: the
 *  primitives that every other family calls.
 *  @{ */

/**
 * @brief Face of a zenith angle: face I from 0 to 648000 inclusive, face II
 *        above, with no upper bound (1296000 and more are still face II).
 *
 * @param[in]  zenith zenith angle, arc-seconds
 * @param[out] face   1 (face I) or 255 (face II)
 * @retval QUILLON_OK     face written
 * @retval QUILLON_DOMAIN zenith below 0 or not a number; face unchanged
 */
QUILLON_API ResultCode LIB_GetFaceStatus(double zenith, unsigned char* face);

/**
 * @brief Adds values onto a running total.
 *
 * The total is not cleared first: the caller's value is part of the sum, and
 * a count of 0 leaves it as it is.
 *
 * @param[in]     values      count values, added in index order
 * @param[in]     count       number of values, 0 to 255
 * @param[in,out] accumulator the running total
 * @retval QUILLON_OK     sum written, within the range limit
 * @retval QUILLON_DOMAIN count above 10000, which an 8-bit count never
 *                        reaches; nothing written
 * @retval QUILLON_RANGE  sum outside the range limit or not a number; the sum
 *                        is written all the same
 */
QUILLON_API ResultCode LIB_Sum(const double* values, unsigned char count, double* accumulator);

/**
 * @brief Plan or spatial distance between two points.
 *
 * The spatial distance sums its squares as (dH^2 + dY^2) + dX^2. Any other
 * mode computes nothing, and the value the caller left in distance is tested
 * as if it had been computed.
 *
 * @param[in]  a        first point, m
 * @param[in]  b        second point, m
 * @param[out] distance m; written in modes 0 and 1 only
 * @param[in]  mode     0 plan, 1 spatial; any other value writes nothing
 * @retval QUILLON_OK    the value in distance is not above the range limit
 *                       (only the upper bound is tested: a not-a-number
 *                       passes)
 * @retval QUILLON_RANGE the value in distance is above 99999999.9999; it is
 *                       written all the same
 */
QUILLON_API ResultCode LIB_Cal2PointDist(const SurveyPoint* a, const SurveyPoint* b,
                                         double* distance, unsigned char mode);

/**
 * @brief Azimuth from one point to another, in [0, 1296000).
 *
 * atan2 of the plan differences (with the exact pi) times QUILLON_RHO_SEC
 * (built on pi taken as 3.1415926): due east is 324000.0055268, due south
 * 648000.0110537. H is not read.
 *
 * @param[in]  from    start point, m
 * @param[in]  to      end point, m
 * @param[out] azimuth arc-seconds, clockwise from north
 * @retval QUILLON_OK         azimuth written
 * @retval QUILLON_COINCIDENT the points have equal X and equal Y (exact
 *                            comparison); azimuth unchanged
 */
QUILLON_API ResultCode LIB_CalAZ(const SurveyPoint* from, const SurveyPoint* to, double* azimuth);

/**
 * @brief Slope and horizontal distance, height difference, azimuth and zenith
 *        angle from one point to another.
 *
 * The zenith angle is atan2(horizontal distance, height difference) in
 * arc-seconds: 0 at the zenith, 648000 straight down. A face byte of 255
 * gives the face II reading, 1296000 minus it. X, Y and H of out are never
 * touched.
 *
 * @param[in]  from origin, m
 * @param[in]  to   target, m
 * @param[in]  face 255 for a face II zenith angle; any other value gives face I
 * @param[out] out  SlopeDistance, HorizontalDistance, HeightDifference
 *                  (to.H - from.H), Azimuth, ZenithAngle
 * @retval QUILLON_OK         the five fields written
 * @retval QUILLON_COINCIDENT horizontal distance 0 (the target plumb over or
 *                            under the origin); the two distances and the
 *                            height difference written, Azimuth and
 *                            ZenithAngle unchanged
 * @retval QUILLON_RANGE      a distance above the range limit or the height
 *                            difference outside it; the same three written,
 *                            Azimuth and ZenithAngle unchanged
 */
QUILLON_API ResultCode LIB_CalDistAngle(const SurveyPoint* from, const SurveyPoint* to,
                                        unsigned char face, DistAngleRecord* out);

/**
 * @brief Coordinates of a point measured from the station.
 *
 * With d = signA * signB * horizontal distance, X is the station's X plus
 * d cos(azimuth) and Y the station's Y plus d sin(azimuth), so differing
 * signs place the point on the far side of the station;
 * H = ((instrument height + vertical difference) + station H) - target
 * height.
 *
 * @param[in]  station   X, Y, H, instrument height, target height, signA,
 *                       signB
 * @param[in]  distances HorizontalDistance and VerticalDifference read, m
 * @param[in]  azimuth   azimuth of the measurement, arc-seconds (one value)
 * @param[out] out       the measured point, m
 * @retval QUILLON_OK    out written
 * @retval QUILLON_RANGE X, Y or H outside the range limit or not a number;
 *                       out unchanged
 */
QUILLON_API ResultCode LIB_MeasCoor(const StationRecord* station, const DistanceRecord* distances,
                                    const double* azimuth, SurveyPoint* out);

/**
 * @brief Polar point: from a point along an azimuth by a horizontal distance,
 *        with a height difference.
 *
 * X = cos(azimuth) distance + from.X, Y = sin(azimuth) distance + from.Y,
 * H = from.H + height_difference.
 *
 * @param[in]  from              start point, m
 * @param[in]  azimuth           arc-seconds
 * @param[in]  distance          horizontal distance, m
 * @param[in]  height_difference m
 * @param[out] out               the point, m
 * @retval QUILLON_OK    out written; H is never range-tested
 * @retval QUILLON_RANGE X or Y outside the range limit or not a number; out
 *                       unchanged
 */
QUILLON_API ResultCode LIB_CalCoor(const SurveyPoint* from, double azimuth, double distance,
                                   double height_difference, SurveyPoint* out);

/**
 * @brief Horizontal distance, height difference and azimuth of the join
 *        pair[0] -> pair[1].
 *
 * The distance is not range-tested. Spare1 and Spare4 of out are never
 * touched.
 *
 * @param[in]  pair two consecutive points, m
 * @param[out] out  HorizontalDistance (m), HeightDifference (pair[1].H -
 *                  pair[0].H, m), Azimuth (arc-seconds)
 * @retval QUILLON_OK         the three fields written
 * @retval QUILLON_COINCIDENT the points coincide in plan; out unchanged
 */
QUILLON_API ResultCode LIB_CalDist(const SurveyPoint* pair, BearingRecord* out);

/**
 * @brief Reduces a slope distance and zenith angle to horizontal distance,
 *        vertical difference and mark-to-mark height difference.
 *
 * With v = cos(zenith) S and h = |sin(zenith)| S (so a face II angle gives
 * the same positive distance as face I), and Ch = (2 - k) / (2 x 6370000),
 * Cv = (1 - k) / (2 x 6370000) for the station's refractionMode (k = 0.14
 * for 1, 0.20 for 2, no correction otherwise):
 * - horizontal distance = h - (Ch h) v, times scale only when
 *   0.99 < scale < 1.01 (both bounds strict; any other scale is ignored);
 * - vertical difference = (Cv h) h + v (never scaled);
 * - height difference = (instrument height + vertical difference) - target
 *   height.
 *
 * A level sight (324000) gives v of about 2.68e-8 S rather than 0, since pi
 * is taken as 3.1415926. No range test is made.
 *
 * @param[in]  station        refractionMode, instrument and target height
 * @param[in]  scale          scale of the horizontal distance, used only
 *                            inside (0.99, 1.01)
 * @param[in]  slope_distance m
 * @param[in]  zenith         zenith angle, arc-seconds, face I or II
 * @param[out] out            all four fields; SlopeDistance is slope_distance
 *                            as given
 * @retval QUILLON_OK always; all four fields written
 */
QUILLON_API ResultCode LIB_DistConvert(const StationRecord* station, double scale,
                                       double slope_distance, double zenith, DistanceRecord* out);

/**
 * @brief Along-line and across-line components of a point against the line
 *        line[0] (A) -> line[1] (B).
 *
 * With D the plan distance A-p and t the azimuth A->p minus the azimuth A->B
 * (not folded): along = cos(t) D, across = sin(t) D. A point on A gives 0 and
 * 0.
 *
 * @param[in]  line   A and B, m (X, Y read)
 * @param[in]  p      the point, m (X, Y read)
 * @param[out] along  from A toward B, negative behind A, m
 * @param[out] across perpendicular distance, + right of A->B, m
 * @retval QUILLON_OK         both written
 * @retval QUILLON_COINCIDENT A and B coincide in plan; both unchanged
 * @retval QUILLON_RANGE      along or across outside the range limit; both
 *                            written all the same
 */
QUILLON_API ResultCode LIB_CalLB(const SurveyPoint* line, const SurveyPoint* p, double* along,
                                 double* across);

/**
 * @brief Combined scale factor: (6370000 / (height + 6370000)) times the grid
 *        scale factor.
 *
 * @param[in]  height     height of the line over the reference surface, m
 * @param[in]  grid_scale grid scale factor
 * @param[out] combined   combined factor
 * @retval QUILLON_OK    combined written, within [0.99, 1.01] (bounds
 *                       included; a not-a-number passes)
 * @retval QUILLON_RANGE combined above 1.01 or below 0.99; written all the
 *                       same
 */
QUILLON_API ResultCode LIB_CalScale(double height, double grid_scale, double* combined);

/** @} */

/* ==== field programs (src/field) ========================================== */

/** @defgroup field Field programs
 *  Stakeout, remote height, offsets, area and missing line, intersections,
 *  line height and circle: the computations behind the instrument's field
 *  programs.
 *  @{ */

/* ---- stakeout ------------------------------------------------------------ */

/** Stakeout by distance and angle (LIB_SO_DistAngle()). */
typedef struct SODistAngleResult {
    double DistanceDifference; /**< measured minus design distance, m */
    double AngleDifference;    /**< measured minus design angle, arc-seconds, in +/-648000 */
} SODistAngleResult;

/** Stakeout by coordinates (LIB_SO_Coor()). */
typedef struct SOCoorResult {
    double X;                            /**< measured point northing, m */
    double Y;                            /**< measured point easting, m */
    double H;                            /**< measured point elevation, m */
    double HorizontalDistanceDifference; /**< measured minus design horizontal distance, m */
    double HeightDifference;             /**< measured point H minus design H, m */
    double ForwardDifference; /**< measured distance minus the design distance projected on
                                   the line of sight, m (positive: the prism is too far) */
    double LateralDifference; /**< design distance times the sine of the angle difference, m
                                   (positive: the prism lies right of the design direction,
                                   seen from the instrument) */
    double AngleDifference;   /**< measured angle minus design azimuth, arc-seconds, in
                                   +/-648000 (positive: the prism lies clockwise of the design
                                   direction) */
} SOCoorResult;

/** Stakeout of a division point of a line (LIB_SO_Divide()). */
typedef struct SODivideResult {
    double ForwardDifference; /**< measured distance minus the along-sight part of the
                                   design distance, m */
    double LateralDifference; /**< design distance times the sine of the angle difference, m */
    double AngleDifference;   /**< measured minus line direction, arc-seconds, in +/-648000 */
} SODivideResult;

/**
 * @brief Stakeout by design distance and design angle: measured minus design.
 *
 * The one function that tests pointers for null: measured and measured_angle
 * may be null, and a null out is refused.
 *
 * Angle difference: measured angle minus design angle, less a half circle
 * when signA and signB differ (stakeout by coordinates adds it instead),
 * then folded into +/-648000 (a full circle taken off above 648000, or added
 * below -648000). With a null measured_angle only the fold is applied, to
 * the value out->AngleDifference already holds.
 *
 * Distance difference by distance_type: 1 measured slope distance minus
 * design_distance; 2 measured horizontal distance minus design_distance;
 * 3 ((measured vertical difference - design_distance) + instrument height)
 * - target height.
 *
 * @param[in]     station         signA, signB; instrument and target height
 *                                (type 3)
 * @param[in]     measured        reduced measurement, m, or null for no
 *                                distance difference
 * @param[in]     measured_angle  measured horizontal angle, arc-seconds, or
 *                                null
 * @param[in]     design_distance m, of the kind distance_type names
 * @param[in]     design_angle    arc-seconds, 0 or above
 * @param[in,out] out             AngleDifference (arc-seconds; read when
 *                                measured_angle is null) and
 *                                DistanceDifference (m)
 * @param[in]     distance_type   1 slope distance, 2 horizontal distance,
 *                                3 height difference
 * @retval QUILLON_OK     AngleDifference written; DistanceDifference written
 *                        when measured is not null and distance_type is 1 to
 *                        3, unchanged otherwise
 * @retval QUILLON_DOMAIN design_distance 0 or below with a distance_type other
 *                        than 3, then design_angle below 0 or a null out;
 *                        nothing written
 */
QUILLON_API ResultCode LIB_SO_DistAngle(const StationRecord* station,
                                        const DistanceRecord* measured,
                                        const double* measured_angle, double design_distance,
                                        double design_angle, SODistAngleResult* out,
                                        unsigned char distance_type);

/**
 * @brief Stakeout by design coordinates: the measured point and its
 *        differences from the design point.
 *
 * D is the plan distance station -> design and the design azimuth that of
 * LIB_CalAZ() (0 when the design point is plumb over or under the station).
 * The angle difference is the measured angle minus the design azimuth, plus
 * a half circle when signA and signB differ (stakeout by distance and angle
 * subtracts it instead), folded into +/-648000. With t that difference:
 * ForwardDifference = measured horizontal distance - cos(t) D,
 * LateralDifference = sin(t) D, HorizontalDistanceDifference = measured
 * horizontal distance - D, HeightDifference = measured H - design H. The
 * measured point comes from LIB_MeasCoor(); one beyond the range limit is
 * reported as X = Y = H = 0. No range test is made.
 *
 * @param[in]  station        X, Y, H, instrument and target height, signA,
 *                            signB
 * @param[in]  measured       reduced measurement; HorizontalDistance and
 *                            VerticalDifference read, m
 * @param[in]  measured_angle measured horizontal angle, arc-seconds
 * @param[in]  design         design point, m
 * @param[out] out            all eight fields
 * @retval QUILLON_OK     all eight fields written
 * @retval QUILLON_DOMAIN the design point equals the station in X, Y and H
 *                        (exact comparison); out unchanged
 */
QUILLON_API ResultCode LIB_SO_Coor(const StationRecord* station, const DistanceRecord* measured,
                                   const double* measured_angle, const SurveyPoint* design,
                                   SOCoorResult* out);

/**
 * @brief Stakeout of a design height.
 *
 * out = design_height - (r + target height), where r is the rise of the
 * sighting over its elevation angle (the horizontal distance times the
 * tangent of 324000 - V for V up to 648000, of V - 972000 above) minus the
 * measured vertical difference.
 *
 * @param[in]  station       target height read
 * @param[in]  measured      HorizontalDistance and VerticalDifference read, m
 * @param[in]  angles        horizontal angle (not read) and zenith angle V,
 *                           arc-seconds, face I or II
 * @param[in]  design_height m
 * @param[out] out           m
 * @retval QUILLON_OK    out written
 * @retval QUILLON_RANGE out outside the range limit or not a number; written
 *                       all the same
 */
QUILLON_API ResultCode LIB_SO_Height(const StationRecord* station, const DistanceRecord* measured,
                                     const double* angles, double design_height, double* out);

/**
 * @brief Stakeout of point i of a line divided into n equal parts; points
 *        beyond the line's end can be set out up to twice its length.
 *
 * dA = measured direction - line direction, folded into +/-648000;
 * d = (i L) / n. LateralDifference = sin(dA) d, ForwardDifference = measured
 * distance - cos(dA) d, AngleDifference = dA.
 *
 * @param[in]  lengths    line length L and measured horizontal distance, m
 * @param[in]  directions line direction and measured direction, arc-seconds
 * @param[in]  counts     n (1 to 99) and i (1 to 198)
 * @param[out] out        all three fields
 * @retval QUILLON_OK     all three fields written
 * @retval QUILLON_DOMAIN n outside 1..99, then i outside 1..198; out unchanged
 */
QUILLON_API ResultCode LIB_SO_Divide(const double* lengths, const double* directions,
                                     const unsigned char* counts, SODivideResult* out);

/* ---- remote height ------------------------------------------------------- */

/**
 * @brief Remote height: the height of a point that carries no prism (a cable,
 *        a roof edge), or the height difference of two sighted points.
 *
 * Mode 0: out = ((signB / tan(second_zenith)) HD - VD) + target height, the
 * height of the point sighted with the second zenith angle over the prism's
 * ground point; signB gives the face, and the first zenith angle is not
 * read. Mode 1: out = HD / tan(second_zenith) - HD / tan(first_zenith), the
 * height of the second sighted point over the first at the measured
 * horizontal distance; with signB = -1 both angles are face II readings and
 * 1296000 minus each is used. A zenith angle of 0 or 648000 gives an
 * infinite or huge value.
 *
 * @param[in]  station       signB; target height (mode 0)
 * @param[in]  measured      HorizontalDistance (HD); VerticalDifference (VD,
 *                           mode 0), m
 * @param[in]  first_zenith  zenith angle to the first point, arc-seconds
 *                           (mode 1)
 * @param[in]  second_zenith zenith angle to the (second) point, arc-seconds
 * @param[out] out           m
 * @param[in]  mode          0 height over the ground point, 1 height
 *                           difference
 * @retval QUILLON_OK    out written in modes 0 and 1 (mode 0 makes no range
 *                       test); any other mode writes nothing
 * @retval QUILLON_RANGE mode 1 only: out above 99999999.9999 or below
 *                       -99999999.9999 (a not-a-number passes); written all
 *                       the same
 */
QUILLON_API ResultCode LIB_Hight(const StationRecord* station, const DistanceRecord* measured,
                                 double first_zenith, double second_zenith, double* out,
                                 unsigned char mode);

/* ---- offsets ------------------------------------------------------------- */

/**
 * @brief Offset by angle: the centre of an object beside the prism, from the
 *        prism's horizontal distance and a second sighting to the centre.
 *
 * The horizontal distance is the measured one, or in mode 1 the plan
 * distance from the station to known. With z the zenith angle: slope
 * distance = |horizontal distance / sin z|, vertical difference = cos(z)
 * times the slope distance; the point is that of LIB_MeasCoor() along the
 * horizontal angle. Mode 1 raises known->H by the station's target height in
 * the caller's record on every call, a failing one included: two calls raise
 * it twice.
 *
 * @param[in]     station  X, Y, H, heights, signA, signB
 * @param[in]     measured HorizontalDistance read (modes other than 1), m
 * @param[in]     angles   horizontal angle and zenith angle of the sighting
 *                         to the centre, arc-seconds
 * @param[in,out] known    mode 1: the point whose plan distance is taken;
 *                         its H is raised, m
 * @param[out]    out      X, Y, H of the centre, SlopeDistance,
 *                         HorizontalDistance, HeightDifference (holding the
 *                         vertical difference), and Azimuth and ZenithAngle
 *                         (the angles as given)
 * @param[in]     mode     1 known point; any other value the measurement
 * @retval QUILLON_OK    all eight fields written
 * @retval QUILLON_RANGE X, Y or H of the centre outside the range limit or not
 *                       a number (a zenith angle of 0 among the causes); out
 *                       unchanged, known->H already raised in mode 1
 */
QUILLON_API ResultCode LIB_OS_Angle(const StationRecord* station, const DistanceRecord* measured,
                                    const double* angles, SurveyPoint* known, DistAngleRecord* out,
                                    unsigned char mode);

/**
 * @brief Offset by distances: a reference point moved right, forward and up
 *        relative to the line of sight, then sighted from the instrument.
 *
 * Mode 0: the reference point is LIB_MeasCoor() of the measurement, and the
 * direction a is measured_angle, turned by a half circle when signA and
 * signB differ (a full circle taken off only above 1296000). Mode 1: the
 * reference point is known, and a its azimuth from the station. The point:
 * X = (forward cos a + reference X) - right sin a, Y = (right cos a +
 * forward sin a) + reference Y, H = height offset + reference H.
 *
 * The point is then sighted, as LIB_OS_Dist2() and LIB_OS_Ha() sight theirs:
 * LIB_CalDistAngle() from the instrument (station X, Y and H plus instrument
 * height) to the point raised by the target height, with signB as the face
 * byte; when signA and signB differ the azimuth is turned by a half circle,
 * a full circle taken off only above 1296000 (so 648000 comes out as
 * 1296000).
 *
 * @param[in]  station        X, Y, H, heights, signA, signB
 * @param[in]  measured       reduced measurement (mode 0), m
 * @param[in]  measured_angle horizontal angle (mode 0), arc-seconds
 * @param[in]  known          reference point (mode 1), m
 * @param[in]  offsets        right (+ right looking along a), forward and
 *                            height offset, m
 * @param[out] out            X, Y, H of the point, and SlopeDistance,
 *                            HorizontalDistance, HeightDifference, Azimuth
 *                            and ZenithAngle of the sight
 * @param[in]  mode           0 measured reference point, 1 known reference
 *                            point
 * @retval QUILLON_OK         all eight fields written
 * @retval QUILLON_DOMAIN     mode 1 with known plumb over or under the
 *                            station, or a mode other than 0 and 1; out
 *                            unchanged
 * @retval QUILLON_RANGE      the measured reference point (mode 0) outside
 *                            the range limit, out unchanged; or the offset
 *                            point outside it, X, Y and H written
 * @retval QUILLON_COINCIDENT the sight fails: the point lies plumb over or
 *                            under the instrument, or a distance or the
 *                            height difference of the sight lies beyond the
 *                            range limit; X, Y, H, SlopeDistance,
 *                            HorizontalDistance and HeightDifference written
 */
QUILLON_API ResultCode LIB_OS_Dist1(const StationRecord* station, const DistanceRecord* measured,
                                    const double* measured_angle, const SurveyPoint* known,
                                    const double* offsets, DistAngleRecord* out,
                                    unsigned char mode);

/**
 * @brief Offset by extension: the point on the spatial line line[0] (A) ->
 *        line[1] (B) at a given distance beyond B, sighted from the
 *        instrument as by LIB_OS_Dist1().
 *
 * Each coordinate is ((B - A) / L) extension + B, with L the spatial
 * distance A-B.
 *
 * @param[in]  station   X, Y, H, heights, signA, signB
 * @param[in]  line      A and B, m
 * @param[in]  extension m beyond B; negative goes back toward A and beyond
 * @param[out] out       as for LIB_OS_Dist1()
 * @retval QUILLON_OK         all eight fields written
 * @retval QUILLON_DOMAIN     A and B equal in X, Y and H; out unchanged
 * @retval QUILLON_RANGE      the point outside the range limit; out unchanged
 * @retval QUILLON_COINCIDENT the sight fails, as for LIB_OS_Dist1(); X, Y, H,
 *                            SlopeDistance, HorizontalDistance and
 *                            HeightDifference written
 */
QUILLON_API ResultCode LIB_OS_Dist2(const StationRecord* station, const SurveyPoint* line,
                                    double extension, DistAngleRecord* out);

/**
 * @brief Offset along the line of sight: the slope distance lengthened by
 *        offset (negative shortens it), for a point in front of or behind
 *        the prism.
 *
 * The working sight is the measurement (measured's three distances and
 * angles[0..1]) in any mode but 1. In mode 1 it is LIB_CalDistAngle() from
 * the instrument (station H raised by the instrument height) to known, whose
 * H is first raised by the target height in the caller's record, on every
 * call; its azimuth is turned by a half circle when signA and signB differ.
 *
 * The side is decided by measured->SlopeDistance in every mode, mode 1
 * included. When it is below -offset the point lies beyond the instrument:
 * the horizontal angle is turned by a half circle, the zenith angle V
 * mirrored (648000 - V when signB is 1, 1296000 - (V - 648000) otherwise),
 * the slope distance becomes |SD + offset| and the horizontal distance and
 * vertical difference follow from it. Otherwise the slope distance becomes
 * SD + offset and offset |sin V| and offset cos V are added to the
 * horizontal distance and the vertical difference. The point is
 * LIB_MeasCoor() of the result.
 *
 * @param[in]     station  X, Y, H, heights, signA, signB
 * @param[in]     measured SlopeDistance read in every mode; HorizontalDistance
 *                         and VerticalDifference in modes other than 1, m
 * @param[in]     angles   horizontal angle and zenith angle (modes other than
 *                         1), arc-seconds
 * @param[in,out] known    mode 1: the sighted point; its H is raised, m
 * @param[in]     offset   along the sight, positive away from the instrument,
 *                         m
 * @param[out]    out      eight doubles: X, Y, H, slope distance, horizontal
 *                         distance, vertical difference (m), horizontal
 *                         angle, zenith angle (arc-seconds)
 * @param[in]     mode     1 known point; any other value the measurement
 * @retval QUILLON_OK    all eight values written
 * @retval QUILLON_RANGE the point outside the range limit or not a number;
 *                       out unchanged, known->H already raised in mode 1
 */
QUILLON_API ResultCode LIB_OS_SDist(const StationRecord* station, const DistanceRecord* measured,
                                    const double* angles, SurveyPoint* known, double offset,
                                    double* out, unsigned char mode);

/**
 * @brief Offset by horizontal angle: where the sight at a horizontal angle
 *        from the station meets the line through line[0] (P1) and line[1]
 *        (P2), a wall or a kerb.
 *
 * The crossing's height is interpolated on P1-P2, and the crossing is
 * sighted from the instrument as by LIB_OS_Dist1(). With signA != signB the
 * horizontal angle is a face II reading: the crossing's azimuth must lie
 * within 1 arc-second of it less a half circle. The tests run in this order:
 * line through the station (3), constant northing or parallel sight (2),
 * crossing on the station (3), crossing behind the instrument (5), crossing
 * out of range (2), failing sight (3).
 *
 * @param[in]  station          X, Y, H, heights, signA, signB
 * @param[in]  line             P1 and P2, m
 * @param[in]  horizontal_angle arc-seconds
 * @param[out] out              as for LIB_OS_Dist1()
 * @retval QUILLON_OK         all eight fields written
 * @retval QUILLON_COINCIDENT the line runs through the station (a line point
 *                            on the station in plan, or the azimuths to P1 and
 *                            P2 equal or exactly 648000 apart), or the
 *                            crossing falls on the station: out unchanged;
 *                            or the sight to the crossing fails (a distance
 *                            or the height difference beyond the range
 *                            limit): X, Y, H, SlopeDistance,
 *                            HorizontalDistance and HeightDifference written
 * @retval QUILLON_RANGE      the line runs at constant northing
 *                            (P1.X == P2.X), the sight is parallel to it, or
 *                            the crossing's X, Y or H lies outside the range
 *                            limit; out unchanged
 * @retval QUILLON_BEHIND     the sight meets the line behind the instrument
 *                            (the crossing's azimuth more than 1 arc-second
 *                            off the reading); out unchanged
 */
QUILLON_API ResultCode LIB_OS_Ha(const StationRecord* station, const SurveyPoint* line,
                                 double horizontal_angle, DistAngleRecord* out);

/**
 * @brief Centre of a round object (a column, a tree, a tank) from its two
 *        edges sighted and a distance measured to its face.
 *
 * The right-hand edge is the one reached turning clockwise by less than a
 * half circle from the other. From half the angle the object subtends and
 * the angle between the measured sighting and the edges' bisector, the sine
 * rule gives the horizontal distance D to the centre, taking the measured
 * horizontal distance plus radius along the measured sighting. The centre
 * lies along the bisector at D; its H is measured vertical difference +
 * instrument height + station H - target height. A measured sighting
 * exactly on the bisector, or coincident edges, gives a centre that is not
 * finite and status 2: sight the face off the bisector.
 *
 * @param[in]  station         X, Y, H, heights, signA, signB
 * @param[in]  measured        HorizontalDistance and VerticalDifference read,
 *                             m
 * @param[in]  obs             obs[0] and obs[1] the edges (either order),
 *                             obs[2] the measured sighting; only Horizontal
 *                             read, arc-seconds
 * @param[in]  radius          the object's radius, m
 * @param[out] out             X, Y, H of the centre and the sight to it as by
 *                             LIB_OS_Dist1(); when signA and signB differ,
 *                             Azimuth is the bisector's reading turned by a
 *                             half circle, not the azimuth from the
 *                             coordinates
 * @param[out] computed_radius the radius the edge sightings imply,
 *                             sin(half angle) D, m
 * @retval QUILLON_OK         out and computed_radius written
 * @retval QUILLON_RANGE      the centre outside the range limit or not finite;
 *                            nothing written
 * @retval QUILLON_COINCIDENT the sight to the centre fails: the centre plumb
 *                            over or under the instrument, or a distance or
 *                            the height difference beyond the range limit;
 *                            out holds SlopeDistance, HorizontalDistance and
 *                            HeightDifference, computed_radius unchanged
 */
QUILLON_API ResultCode LIB_OS_Round(const StationRecord* station, const DistanceRecord* measured,
                                    const AngleObservation* obs, double radius,
                                    DistAngleRecord* out, double* computed_radius);

/* ---- area and missing line ----------------------------------------------- */

/** Area and perimeter of a polygon (LIB_Area()). */
typedef struct AreaResult {
    double Area;      /**< area, square metres */
    double Hectares;  /**< the same area times 0.0001, hectares */
    double Perimeter; /**< length of the closed boundary, m */
} AreaResult;

/** Missing line between two measured points (LIB_MissLine()). */
typedef struct MissLineResult {
    double SlopeDistance;      /**< spatial distance between the points, m */
    double HorizontalDistance; /**< m */
    double HeightDifference;   /**< second point minus first point, m */
    double Grade;              /**< height difference over horizontal distance, per cent */
    double Azimuth;            /**< from the first point to the second, arc-seconds */
} MissLineResult;

/**
 * @brief Area (shoelace) and perimeter of the closed polygon
 *        points[0..count-1].
 *
 * Either orientation gives the same area; a self-crossing polygon gives its
 * net shoelace area.
 *
 * @param[in]  count  number of corners, 3 to 255
 * @param[in]  points corners in order, m (X, Y read)
 * @param[out] out    Area (square metres), Hectares, Perimeter (m)
 * @retval QUILLON_OK     all three fields written
 * @retval QUILLON_DOMAIN count below 3; out unchanged
 * @retval QUILLON_RANGE  area above 99999999.9999 (only the upper bound is
 *                        tested: a not-a-number passes); out unchanged
 */
QUILLON_API ResultCode LIB_Area(unsigned char count, const SurveyPoint* points, AreaResult* out);

/**
 * @brief Missing line between two points measured from one station:
 *        distances, height difference, grade and azimuth from the first to
 *        the second.
 *
 * The horizontal distance comes from the law of cosines with the angle
 * between the two horizontal angles (taken the short way round); the height
 * difference is (VD2 - VD1) - (second - first target height). The azimuth is
 * built from the first horizontal angle and the angle at the first point,
 * which is cut to whole arc-seconds, so it is whole seconds plus the
 * fraction of the first horizontal angle. When both horizontal angles are
 * equal no azimuth is computed: the value already in out->Azimuth goes
 * through the folds that follow. A full circle is taken off once above
 * 1296000; when signA and signB differ a half circle is taken off (a full
 * circle added if that turns it negative). With equal signs the azimuth
 * can stay negative when the second angle lies a half circle or more below
 * the first. No range test is made.
 *
 * @param[in]     station              signA, signB
 * @param[in]     measured             two reduced measurements;
 *                                     HorizontalDistance and
 *                                     VerticalDifference read, m
 * @param[in]     angles               horizontal angle of the first point at
 *                                     angles[0], of the second at angles[3]
 *                                     (two entries of three doubles),
 *                                     arc-seconds
 * @param[in]     first_target_height  m
 * @param[in]     second_target_height m
 * @param[in,out] out                  all five fields; Azimuth is read when
 *                                     the two horizontal angles are equal
 * @retval QUILLON_OK         all five fields written
 * @retval QUILLON_COINCIDENT the points coincide in plan (horizontal distance
 *                            0); out unchanged
 */
QUILLON_API ResultCode LIB_MissLine(const StationRecord* station, const DistanceRecord* measured,
                                    const double* angles, double first_target_height,
                                    double second_target_height, MissLineResult* out);

/* ---- intersections ------------------------------------------------------- */

/** A known point of an intersection with what was observed at it. */
typedef struct FrontMeetKnown {
    SurveyPoint Point; /**< the known point; its H is not used */
    double Direction;  /**< direction observed at the point toward the new point,
                            arc-seconds (angle mode) */
    double Distance;   /**< horizontal distance measured from the point to the
                            new point, m (distance mode) */
} FrontMeetKnown;

/** The two known points A and B of LIB_CalFrontMeet(). */
typedef struct FrontMeetInput {
    FrontMeetKnown A; /**< first known point */
    FrontMeetKnown B; /**< second known point */
} FrontMeetInput;

/** Two lines of LIB_CalLineCrossPT(), each through two points. */
typedef struct LineCrossInput {
    SurveyPoint P1; /**< first line, first point (the height is carried from here) */
    SurveyPoint P2; /**< first line, second point */
    SurveyPoint P3; /**< second line, first point (H not used) */
    SurveyPoint P4; /**< second line, second point (H not used) */
} LineCrossInput;

/**
 * @brief Forward intersection in plan from the known points A and B, by the
 *        directions observed there or by the distances measured from them.
 *
 * Mode 0 (by angles): a1 = azimuth(A->B) - direction at A and
 * a2 = (direction at B + 648000) - azimuth(A->B) are the triangle's angles
 * at A and at B (the directions are the azimuths toward the new point when
 * the circles are oriented); neither is folded, and the cotangent formula
 * gives the point. Mode 1 (by distances): always the solution to the left of
 * the line A->B; the other one is never returned.
 *
 * @param[in]     input A and B with their directions (mode 0) or distances
 *                      (mode 1)
 * @param[in,out] out   X, Y and H = 0, m; read (for the range test) when the
 *                      mode is neither 0 nor 1
 * @param[in]     mode  0 by angles, 1 by distances; any other value computes
 *                      nothing
 * @retval QUILLON_OK     X and Y within the range limit (written in modes 0
 *                        and 1)
 * @retval QUILLON_DOMAIN A and B coincide in plan; in mode 0 a1 or a2 exactly
 *                        +/-324000 or +/-972000, then a zero tangent of a1 or
 *                        a2 or a zero sum of their cotangents; in mode 1 the
 *                        two circles do not meet. out unchanged
 * @retval QUILLON_RANGE  X or Y then in out outside the range limit (for
 *                        another mode, the caller's values); written all the
 *                        same
 */
QUILLON_API ResultCode LIB_CalFrontMeet(const FrontMeetInput* input, SurveyPoint* out,
                                        unsigned char mode);

/**
 * @brief Crossing point of the line P1-P2 with the line P3-P4, in plan; the
 *        height is interpolated (or extrapolated) along P1-P2.
 *
 * No range test is made.
 *
 * @param[in]  input the four points, m
 * @param[out] out   the crossing, m
 * @retval QUILLON_OK       out written
 * @retval QUILLON_PARALLEL the lines are parallel or degenerate (a zero
 *                          determinant, P3 = P4 among them); out unchanged
 */
QUILLON_API ResultCode LIB_CalLineCrossPT(const LineCrossInput* input, SurveyPoint* out);

/* ---- line height and circle ---------------------------------------------- */

/** Heights on the vertical plane through a line (LIB_CalLineHeight()). */
typedef struct LineHeightResult {
    double Height;             /**< target above the instrument's horizon, m */
    double HorizontalDistance; /**< station to the target's vertical, m */
    double Along;              /**< from A along the line to the target's vertical, m */
    double HeightBetween;      /**< Height minus the height of the second sighting,
                                    m (mode 1 only) */
} LineHeightResult;

/** One pair of points of the circle's list (LIB_CalCircle(), mode 1): the two
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

/**
 * @brief Where a sighting meets the vertical plane through the line A-B, and
 *        how high the sighted points lie, from angle readings alone.
 *
 * The horizontal distance comes from intersecting the sighting's direction
 * with the line, not from a measured distance. An angle counts as vertical
 * or parallel when its whole arc-seconds (as a 32-bit integer), reduced by a
 * full circle with their sign, are exactly 324000 or 972000; a negative
 * angle never is (a zenith angle of 648000 passes). Where that conversion is
 * undefined in C, it is defined here: an angle of 2^31 seconds or more, or of
 * -2^31 or less, converts to the nearest 32-bit limit and a not-a-number to
 * 0, so such an angle is never vertical or parallel. No range test is made.
 *
 * @param[in]  pts  A, B (the line) and S (the station), m
 * @param[in]  obs  [0] the sighting to A, [2] the sighting to the target on
 *                  the plane, [3] (mode 1) a second sighting to the same
 *                  vertical; Horizontal and Zenith read, arc-seconds ([1] and
 *                  every Value are not read)
 * @param[out] out  Height, HorizontalDistance and Along; HeightBetween in
 *                  mode 1
 * @param[in]  mode 1 adds HeightBetween; any other value writes the first
 *                  three fields only
 * @retval QUILLON_OK     the fields of the mode written
 * @retval QUILLON_DOMAIN the sighting runs parallel to the line, lies exactly
 *                        along the perpendicular from S, or is vertical: out
 *                        unchanged; or (mode 1) the second sighting is
 *                        vertical: Height, HorizontalDistance and Along
 *                        written
 */
QUILLON_API ResultCode LIB_CalLineHeight(const SurveyPoint* pts, const AngleObservation* obs,
                                         LineHeightResult* out, unsigned char mode);

/**
 * @brief Circle through three points in plan, and on request a list of pairs
 *        of its points along the easting.
 *
 * Only X and Y of pts[0..2] are read. Mode 1 lists pairs at eastings from
 * centre Y - 6370000 in count equal steps up to centre Y + 6370000: the band
 * is fixed, whatever the radius, and only pairs within the radius of the
 * centre's easting hold finite northings. A count of 0 lists one pair; a
 * centre too far out for the band to be stepped (or not finite) lists none.
 * Coincident points that the tests below do not refuse give non-finite
 * values, which are written as they come.
 *
 * @param[in]  pts    three points on the circle, m
 * @param[out] radius m
 * @param[out] centre X and Y of the centre (two doubles), m
 * @param[out] list   mode 1: room for count + 1 pairs
 * @param[in]  count  mode 1: number of steps over the band
 * @param[in]  mode   1 adds the list; any other value writes radius and
 *                    centre only
 * @retval QUILLON_OK     radius and centre written, and in mode 1 the list
 * @retval QUILLON_DOMAIN the points lie on one line (equal slopes from
 *                        pts[0], exactly), or all three have the same X, or
 *                        all three the same Y: nothing written; or (mode 1)
 *                        count is negative, or the steps, rounded far from
 *                        the origin, would not reach the end of the band
 *                        within count + 1 pairs: radius and centre written,
 *                        no pair listed
 */
QUILLON_API ResultCode LIB_CalCircle(const SurveyPoint* pts, double* radius, double* centre,
                                     CirclePointPair* list, int32_t count, unsigned char mode);

/** @} */

/* ==== station set-up (src/setup) ========================================== */

/** @defgroup setup Station set-up and construction geometry
 *  Resection of a free station, reference lines, vertical and slope planes,
 *  and arcs.
 *  @{ */

/* ---- resection ----------------------------------------------------------- */

/** A free station fitted by LIB_RESDist(). */
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

/**
 * @brief Resection by directions: the horizontal distance from the unknown
 *        station to each of n known points, solved two neighbouring
 *        triangles at a time.
 *
 * The sightings are taken in ascending order of direction; when two
 * neighbours are more than a half circle apart the sequence starts just
 * after that gap. The difference of the two unknown angles of each triangle
 * pair is cut to whole arc-seconds, and a later pair overwrites the distances
 * an earlier one found. Only the first five points carry their own index:
 * with six or more points distances[0] receives the result of the last
 * sighting tagged 0, and distances[5] onward are not written. Collinear
 * points or zero angles give infinities or not-a-numbers with status 0.
 *
 * Not reentrant: writes two module-level doubles as scratch that nothing
 * reads (see State in the file description).
 *
 * @param[in]  obs       n sightings; only Horizontal read, arc-seconds
 * @param[in]  known     n known points; X and Y read, m
 * @param[in]  n         number of points, 3 to 20
 * @param[out] distances n horizontal distances from the station, m, in the
 *                       order of known (see above for six points or more)
 * @retval QUILLON_OK     distances written
 * @retval QUILLON_DOMAIN n outside 3..20; distances unchanged
 */
QUILLON_API ResultCode LIB_RESA2D(const AngleObservation* obs, const SurveyPoint* known,
                                  unsigned char n, double* distances);

/**
 * @brief Free station with distances: plan position and orientation by a
 *        least-squares similarity fit, height by a weighted mean.
 *
 * Mode 0 fits X, Y and Orientation to the horizontal distances and
 * directions to known[i], with mX and mY (the square root of the residuals'
 * sum of squares over n - 1; 0 for n = 2). Orientation uses the
 * one-argument arctangent and is cut to whole arc-seconds: a rotation of
 * more than a quarter circle is delivered turned by a half circle. Every
 * mode computes the height: H is the mean of (targetHeights[i] +
 * known[i].H) - dists[i].VerticalDifference - instrumentHeight weighted by
 * 1 / (distance^2 + cos^2(zenith)), and mH its standard deviation (0 for
 * n < 2 or below 0.0001 m, else rounded through single precision). A mode
 * other than 0 and 1 computes the height only and takes any n (n = 0 gives
 * H not a number). Degenerate geometry gives non-finite values with status
 * 0.
 *
 * @param[in]  instrumentHeight m
 * @param[in]  dists            n reduced measurements; HorizontalDistance
 *                              and VerticalDifference read, m
 * @param[in]  obs              n sightings; Horizontal and Zenith read,
 *                              arc-seconds
 * @param[in]  known            n known points, m
 * @param[in]  targetHeights    n target heights, m
 * @param[in]  n                number of points: 2 to 20 in mode 0, 1 to 20
 *                              in mode 1
 * @param[out] out              mode 0: every field; other modes: H and mH
 *                              only
 * @param[in]  mode             0 position and height, 1 height only
 * @retval QUILLON_OK     the fields of the mode written
 * @retval QUILLON_DOMAIN n outside 2..20 in mode 0 or outside 1..20 in mode
 *                        1; out unchanged
 */
QUILLON_API ResultCode LIB_RESDist(double instrumentHeight, const DistanceRecord* dists,
                                   const AngleObservation* obs, const SurveyPoint* known,
                                   const double* targetHeights, unsigned char n,
                                   ResectionResult* out, unsigned char mode);

/**
 * @brief Orientation from one known sighting.
 *
 * azimuth = the azimuth station -> target; orientation = (orientation +
 * reading) - azimuth, not normalised: starting from 0 it is the circle
 * reading minus the azimuth, the opposite sense to
 * ResectionResult::Orientation. When the points coincide in plan the azimuth
 * keeps the caller's value and that value is used.
 *
 * @param[in]     station     the station, m
 * @param[in]     target      the known point sighted, m
 * @param[in]     reading     circle reading to the target, arc-seconds
 * @param[in,out] orientation arc-seconds; the reading less the azimuth is
 *                            added onto it
 * @param[in,out] azimuth     arc-seconds; read only when the points coincide
 *                            in plan
 * @retval QUILLON_OK always; azimuth (unless the points coincide) and
 *                    orientation written
 */
QUILLON_API ResultCode LIB_RESSetAngle(const SurveyPoint* station, const SurveyPoint* target,
                                       double reading, double* orientation, double* azimuth);

/* ---- base line, projection, reference line ------------------------------- */

/** Measures of the line A-B (LIB_BaseLine()). Fields 1 and 3 are never
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

/**
 * @brief Horizontal distance, grade and azimuth of the line pts[0] (A) ->
 *        pts[1] (B).
 *
 * Only the upper bound of the distance is tested, so a not-a-number
 * passes.
 *
 * @param[in]  pts A and B, m
 * @param[out] out HorizontalDistance, Grade and Azimuth
 * @retval QUILLON_OK         the three fields written
 * @retval QUILLON_COINCIDENT A and B coincide in plan, or their plan distance
 *                            comes out 0; out unchanged
 * @retval QUILLON_RANGE      the distance above 99999999.9999; out unchanged
 */
QUILLON_API ResultCode LIB_BaseLine(const SurveyPoint* pts, BaselineRecord* out);

/**
 * @brief Projection of pts[2] (P) on the line pts[0] (A) -> pts[1] (B).
 *
 * The foot of the perpendicular with its height on the line's grade, the
 * across and along distances and P's height over the line. A point P on A
 * gives Along = Across = 0 and the foot at A. No range test is made.
 *
 * @param[in]  pts A, B and P, m
 * @param[out] out all six fields
 * @retval QUILLON_OK         all six fields written
 * @retval QUILLON_COINCIDENT A and B coincide in plan; out unchanged
 */
QUILLON_API ResultCode LIB_Project(const SurveyPoint* pts, ProjectionRecord* out);

/**
 * @brief Point set out at a position along and across the line pts[0] (A) ->
 *        pts[1] (B).
 *
 * Its direction from A is atan2(Across, Along) cut to whole arc-seconds plus
 * the line's azimuth (a full circle taken off only above 1296000, one added
 * below 0); its height follows the line's grade at Along, whatever Across.
 * No range test is made.
 *
 * @param[in]  pts A and B, m
 * @param[in]  pos Along and Across, m
 * @param[out] out the point, m
 * @retval QUILLON_OK         out written
 * @retval QUILLON_COINCIDENT A and B coincide in plan; out unchanged
 */
QUILLON_API ResultCode LIB_LSO_Point(const SurveyPoint* pts, const LinePosition* pos,
                                     SurveyPoint* out);

/**
 * @brief Position of pts[2] (P) against the line pts[0] (A) -> pts[1] (B),
 *        with a design offset taken off the across distance.
 *
 * No range test is made.
 *
 * @param[in]  pts          A, B and P, m
 * @param[in]  designOffset design offset from the line, + right, m
 * @param[out] out          Across (less designOffset), Along and LineDH only;
 *                          FootX, FootY and FootH are never touched
 * @retval QUILLON_OK         Across, Along and LineDH written
 * @retval QUILLON_COINCIDENT A and B coincide in plan; out unchanged
 */
QUILLON_API ResultCode LIB_LSO_Line(const SurveyPoint* pts, double designOffset,
                                    ProjectionRecord* out);

/* ---- vertical and slope planes ------------------------------------------- */

/** A sighting met by a plane (LIB_VPlane(), LIB_SPlane()). */
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

/**
 * @brief Point where a sight without a distance meets the vertical plane
 *        through planePts[0] (P1) and planePts[1] (P2).
 *
 * The sight leaves the instrument centre along its horizontal direction and
 * zenith angle. With signA != signB the reading is a face II reading: the
 * point's azimuth from the station must lie within 1 arc-second of it less a
 * half circle (the difference is not folded at the end of the circle, so an
 * azimuth just past 0 against a reading just short of 1296000 fails). Reads
 * the station's X, Y, H, instrument height, signA and signB. The tests run in
 * the order listed.
 *
 * @param[in]  station  X, Y, H, instrument height, signA, signB
 * @param[in]  sight    Horizontal and Zenith, arc-seconds (Value not read)
 * @param[in]  planePts P1 and P2, m
 * @param[out] out      all six fields
 * @retval QUILLON_OK         all six fields written
 * @retval QUILLON_COINCIDENT P1 and P2 lie in one line of sight from the
 *                            station (equal azimuths, or exactly 648000 apart;
 *                            a plane point plumb over the station counts as
 *                            azimuth 0); out unchanged
 * @retval QUILLON_DOMAIN     P1 and P2 coincide in plan (reached only when a
 *                            signed zero turns their azimuths apart); out
 *                            unchanged
 * @retval QUILLON_BEHIND     the point's azimuth differs from the face-reduced
 *                            reading by more than 1 arc-second: the plane is
 *                            met behind the instrument, or missed; out
 *                            unchanged
 * @retval QUILLON_RANGE      X, Y or H outside the range limit; out unchanged
 */
QUILLON_API ResultCode LIB_VPlane(const StationRecord* station, const AngleObservation* sight,
                                  const SurveyPoint* planePts, PlaneHitRecord* out);

/**
 * @brief Point where a sight without a distance meets the plane through
 *        planePts[0..2] (P1, P2, P3).
 *
 * The sight and the face test are those of LIB_VPlane(). The tests run in the
 * order listed.
 *
 * @param[in]  station  X, Y, H, instrument height, signA, signB
 * @param[in]  sight    Horizontal and Zenith, arc-seconds (Value not read)
 * @param[in]  planePts P1, P2 and P3, m
 * @param[out] out      all six fields
 * @retval QUILLON_OK         all six fields written
 * @retval QUILLON_COINCIDENT the sight is parallel to the plane, or the three
 *                            points are collinear; out unchanged
 * @retval QUILLON_BEHIND     as for LIB_VPlane(); out unchanged
 * @retval QUILLON_RANGE      X outside the range limit (Y and H are not
 *                            tested); out unchanged
 */
QUILLON_API ResultCode LIB_SPlane(const StationRecord* station, const AngleObservation* sight,
                                  const SurveyPoint* planePts, PlaneHitRecord* out);

/* ---- arc ----------------------------------------------------------------- */

/** The arc and the sighting of LIB_ArcCalc(). */
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

/** The circle and the sighted point on it (LIB_ArcCalc()). */
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

/**
 * @brief A point on an arc by a sight without a distance.
 *
 * The circle runs through P1, P2 and P3 (any mode but 1; it turns clockwise
 * when P1, P2, P3 do), or through P1 and P2 with the signed Radius (mode 1;
 * the centre lies right of the chord P1->P2 for a positive radius, left for
 * a negative one). The sight leaves the instrument centre (station X, Y and
 * H plus instrument height) along the unit vector
 * (sin V cos Hz, sin V sin Hz, cos V) of its direction Hz and zenith angle V.
 * On face II (V beyond 648000) the negative sine turns a reading taken a
 * half circle off back onto the point, so the station's signs are not read.
 * The point is the first crossing of the sight with the circle in plan in
 * front of the instrument; its height is that of the sight there. Only the
 * plan positions of P1, P2, P3 and the station's X, Y, H and instrument
 * height are read. The arc length is the turn about the centre from P1 to
 * the point in the arc's sense (true radians) times the radius. The tests
 * run in the order listed.
 *
 * @param[in]  station X, Y, H and instrument height read
 * @param[in]  arc     the points, the radius (mode 1) and the sight
 * @param[out] out     every field
 * @param[in]  mode    1 chord and radius; any other value three points
 * @retval QUILLON_OK         every field of out written
 * @retval QUILLON_COINCIDENT two of the points that define the circle
 *                            coincide in plan, or the chord's plan length
 *                            comes out 0; out unchanged
 * @retval QUILLON_DOMAIN     the three points are collinear, or the radius is
 *                            0, not a number or shorter than half the chord;
 *                            then the sight has no plan component (zenith
 *                            angle 0; at 648000 the sight keeps the slight
 *                            plan component of pi taken as 3.1415926 and is
 *                            intersected as it stands); out unchanged
 * @retval QUILLON_RANGE      the centre or the radius outside the range
 *                            limit; later, after 5, the point's X, Y or H
 *                            outside it; out unchanged
 * @retval QUILLON_BEHIND     the sight misses the circle or meets it only
 *                            behind the instrument (or at the instrument
 *                            itself); out unchanged
 */
QUILLON_API ResultCode LIB_ArcCalc(const StationRecord* station, const ArcDefinition* arc,
                                   ArcResult* out, unsigned char mode);

/** @} */

/* ==== road alignment (src/road) =========================================== */

/** @defgroup road Road alignment
 *  Horizontal elements and the element tables built from intersection
 *  points or from elements, the point at a chainage and the pile list; the
 *  profile; the cross-section's widths, slopes and edges.
 *
 *  The element functions fold radians with 6.2831852 and 3.1415926 (pi taken
 *  as 3.1415926) and accept a computed azimuth from 0 up to, not including,
 *  2592000 arc-seconds: two full circles, since one fold may leave an azimuth
 *  above a full circle. Two chainages closer than 0.001 m are taken as the
 *  same station.
 *  @{ */

/* ---- horizontal elements ------------------------------------------------- */

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
 *  chainage, and record i+1 holds the end of element i. The reference point
 *  X, Y with Azimuth is the element's start and its forward azimuth there,
 *  except for an exit transition curve evaluated by LIB_CalWay_H_Curve_On()
 *  or LIB_CalWay_H_Curve_AZ(), where it is the far end (curvature 0) and the
 *  backward azimuth there. */
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

/**
 * @brief Point on a straight at distance l from its start.
 *
 * @param[in]  element the straight: X, Y and Azimuth read
 * @param[in]  l       distance from the start, m (not checked: negative and
 *                     beyond-the-end values are evaluated alike)
 * @param[out] out     the point, m
 * @retval QUILLON_OK    out written
 * @retval QUILLON_RANGE X or Y outside the range limit; out unchanged
 */
QUILLON_API ResultCode LIB_CalWay_H_Line_On(const HElement* element, double l, PlanePoint* out);

/**
 * @brief Point on a circular arc at arc length l from its start.
 *
 * The chord leaves the start tangent by half the central angle l / Radius.
 *
 * @param[in]  element the arc: X, Y, Azimuth, Radius and Turn read
 * @param[in]  l       arc length from the start, m (not checked)
 * @param[out] out     the point, m
 * @retval QUILLON_OK    out written; a Turn other than 0 or 1 writes (0, 0)
 *                       without a range test
 * @retval QUILLON_RANGE X or Y outside the range limit; out unchanged
 */
QUILLON_API ResultCode LIB_CalWay_H_Circle_On(const HElement* element, double l, PlanePoint* out);

/**
 * @brief Point on a transition curve at curve length l from its curvature-zero
 *        end.
 *
 * The clothoid is evaluated by its series cut after three terms. For an
 * entry curve (Spiral 0) l runs from the start, X, Y and Azimuth being the
 * start and the forward azimuth there; for an exit curve (Spiral 1) l runs
 * backward from the far end, X, Y being that end and Azimuth the backward
 * azimuth there. An unknown Turn or Spiral sets the point out straight along
 * Azimuth at the chord's length.
 *
 * @param[in]  element the curve: X, Y, Azimuth, Length, Radius, Turn and
 *                     Spiral read
 * @param[in]  l       curve length from the curvature-zero end, m (not
 *                     checked)
 * @param[out] out     the point, m
 * @retval QUILLON_OK    out written
 * @retval QUILLON_RANGE X or Y outside the range limit or not a number (a
 *                       zero Radius or Length among the causes); out
 *                       unchanged
 */
QUILLON_API ResultCode LIB_CalWay_H_Curve_On(const HElement* element, double l, PlanePoint* out);

/**
 * @brief Forward azimuth on a circular arc at arc length l from its start.
 *
 * The start azimuth turned by l / Radius, with one fold of 6.2831852 rad
 * (above a full turn turning right, below 0 turning left). An unknown Turn
 * gives 0.
 *
 * @param[in]  element the arc: Azimuth, Radius and Turn read
 * @param[in]  l       arc length from the start, m (not checked)
 * @param[out] azimuth arc-seconds
 * @retval QUILLON_OK    azimuth written
 * @retval QUILLON_RANGE the azimuth not in [0, 2592000) (a turn of more than
 *                       two full circles, or not a number); azimuth unchanged
 */
QUILLON_API ResultCode LIB_CalWay_H_Circle_AZ(const HElement* element, double l, double* azimuth);

/**
 * @brief Forward azimuth on a transition curve at curve length l from its
 *        curvature-zero end, with the conventions of LIB_CalWay_H_Curve_On().
 *
 * The tangent turns by l^2 / (2 Radius Length), exactly. For an exit curve
 * the backward azimuth is turned back by a half turn (3.1415926 rad) into
 * the forward azimuth, then folded once: turning right below 0 or above a
 * full turn, turning left only above a full turn (a negative azimuth then
 * stays negative and is refused). An unknown Turn or Spiral gives 0.
 *
 * @param[in]  element the curve: Azimuth, Length, Radius, Turn and Spiral
 *                     read
 * @param[in]  l       curve length from the curvature-zero end, m (not
 *                     checked)
 * @param[out] azimuth forward azimuth, arc-seconds
 * @retval QUILLON_OK    azimuth written
 * @retval QUILLON_RANGE the azimuth not in [0, 2592000); azimuth unchanged
 */
QUILLON_API ResultCode LIB_CalWay_H_Curve_AZ(const HElement* element, double l, double* azimuth);

/**
 * @brief Far end (curvature 0) of an exit transition curve given by its
 *        start, with the forward azimuth there.
 *
 * The element is read as X, Y the curve's start (where it leaves the arc) and
 * Azimuth the forward azimuth there; Spiral is not read. The end azimuth is
 * not range-tested.
 *
 * @param[in]  element the curve: X, Y, Azimuth, Length, Radius and Turn read
 * @param[out] out     far end (m) and forward azimuth there (arc-seconds)
 * @retval QUILLON_OK    out written; a Turn other than 0 or 1 writes three
 *                       zeros without a range test
 * @retval QUILLON_RANGE X or Y outside the range limit; out unchanged
 */
QUILLON_API ResultCode LIB_CalWay_H_Curve_End(const HElement* element, TangentPoint* out);

/* ---- horizontal alignment from intersection points ----------------------- */

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

/**
 * @brief Turn angle at points[1] between the straights points[0] ->
 *        points[1] and points[1] -> points[2].
 *
 * The difference of the two azimuths, folded once into +/-648000.
 *
 * @param[in]  points     three consecutive points, m (X, Y read)
 * @param[out] turn_angle arc-seconds, + right, - left
 * @retval QUILLON_OK         turn_angle written
 * @retval QUILLON_COINCIDENT two consecutive points coincide in plan (the
 *                            status of LIB_CalAZ()); turn_angle unchanged
 * @retval QUILLON_RANGE      the turn not strictly inside +/-648000 (the road
 *                            doubling back); turn_angle unchanged
 */
QUILLON_API ResultCode LIB_CalWay_H_Cross_TurnAngle(const SurveyPoint* points, double* turn_angle);

/**
 * @brief Tangent lengths, arc length and curve length at one intersection
 *        point.
 *
 * From |TurnAngle|, Radius and the two transition lengths, with the arc's
 * shift by each transition (one term) and the tangent points' offsets along
 * the straights (two terms). A zero turn angle divides by zero and gives 2.
 *
 * @param[in]  point TurnAngle, EntryLength, ExitLength and Radius read
 * @param[out] out   all four lengths, m
 * @retval QUILLON_OK    all four written
 * @retval QUILLON_RANGE EntryTangent, then ExitTangent, outside
 *                       [0, 99999999.9999], or ArcLength, then CurveLength,
 *                       outside (0, 99999999.9999] (the transition curves
 *                       together turning as much as the whole turn angle, or
 *                       more); all four written all the same
 */
QUILLON_API ResultCode LIB_CalWay_H_Cross_Length(const CrossPoint* point, CrossLengths* out);

/**
 * @brief Complete element table from a polygon of m intersection points:
 *        straights, transition curves, arcs and the end record.
 *
 * At each inner point the two straights are joined by an arc with an
 * optional entry and exit transition curve (each emitted when 0.001 m or
 * longer; a straight shorter than 0.001 m is left out). The chainage starts
 * at the first inner point's Chainage less its distance from the start
 * point (at 0 without an inner point). The TurnAngle of every inner point is
 * written back into the polygon. A curve's end is placed from its
 * intersection point along the exit tangent, not by evaluating the exit
 * curve. The table is complete: LIB_CalWay_H_On() reads it as it stands.
 *
 * @param[in,out] polygon      m points, the first the start and the last the
 *                             end; TurnAngle of the inner points written
 * @param[in]     m            number of points, 1 to 80
 * @param[out]    table        room for 81 records
 * @param[out]    record_count number of records written, end record included
 * @retval QUILLON_OK         table and record_count written
 * @retval QUILLON_TABLE      m above 80 (tested first; nothing written); or
 *                            the table would exceed 81 records: record_count
 *                            holds the records so far and the last of them is
 *                            marked with Type 0
 * @retval QUILLON_DOMAIN     m = 0, or a point invalid: X or Y outside the
 *                            range limit, an inner point's EntryLength or
 *                            ExitLength outside [0, 99999999.9999] or Radius
 *                            outside (0, 99999999.9999], or the Chainage of
 *                            polygon[1] outside the range limit; nothing
 *                            written
 * @retval QUILLON_COINCIDENT two consecutive points coincide in plan (a single
 *                            point among them: no direction), passed on from
 *                            LIB_CalAZ() or LIB_CalWay_H_Cross_TurnAngle();
 *                            the elements emitted and the turn angles
 *                            computed so far stay written, record_count is
 *                            not written
 * @retval QUILLON_RANGE      a chainage or a curve's start or end point
 *                            outside the range limit, or passed on from
 *                            LIB_Cal2PointDist(),
 *                            LIB_CalWay_H_Cross_TurnAngle(),
 *                            LIB_CalWay_H_Cross_Length() or an element
 *                            function; written as for QUILLON_COINCIDENT
 */
QUILLON_API ResultCode LIB_CalWay_H_Cross_MainPoint(CrossPoint* polygon, unsigned char m,
                                                    HElement* table, uint32_t* record_count);

/**
 * @brief As LIB_CalWay_H_Cross_MainPoint(), with two plain straights when the
 *        first inner point has no radius.
 *
 * The differences: fewer than 2 points are refused; the Radius of inner
 * points is not validated; and when m >= 3 and the first inner point's Radius
 * is exactly 0 the table is the two straights polygon[0] -> polygon[1] ->
 * polygon[2] from polygon[0].Chainage and an end record at polygon[2]
 * (record_count 3), whatever follows in the polygon.
 *
 * @param[in,out] polygon      as for LIB_CalWay_H_Cross_MainPoint()
 * @param[in]     m            number of points, 2 to 80
 * @param[out]    table        room for 81 records
 * @param[out]    record_count number of records written, end record included
 * @retval QUILLON_OK         table and record_count written
 * @retval QUILLON_TABLE      as for LIB_CalWay_H_Cross_MainPoint()
 * @retval QUILLON_DOMAIN     m below 2, or a point invalid as for
 *                            LIB_CalWay_H_Cross_MainPoint() without the
 *                            radius test; nothing written
 * @retval QUILLON_COINCIDENT as for LIB_CalWay_H_Cross_MainPoint(); for the two
 *                            straights, passed on from LIB_CalAZ() with the
 *                            lines built so far written
 * @retval QUILLON_RANGE      as for LIB_CalWay_H_Cross_MainPoint(); for the two
 *                            straights, a chainage outside the range limit or
 *                            a distance passed on from LIB_Cal2PointDist(),
 *                            with the lines built so far written
 */
QUILLON_API ResultCode LIB_CalWay_H_Cross_MainPoint_Full(CrossPoint* polygon, unsigned char m,
                                                         HElement* table, uint32_t* record_count);

/* ---- horizontal alignment from elements, chainage and piles -------------- */

/**
 * @brief Complete element table of n records from an element list whose first
 *        record carries the start point, start azimuth and start chainage.
 *
 * The n - 1 elements are copied (table may be the elements array itself);
 * every element gets its start point, azimuth and chainage from the end of
 * the one before, and the last record becomes the end record (Type 0). A
 * line followed by a line keeps the second line's own azimuth (the alignment
 * may break there); for the last element this reads the Type byte of the
 * table's last slot as the caller left it. An exit transition curve is
 * recorded by its start, and the following record holds its far end.
 *
 * @param[in]  elements n - 1 elements, copied whole; the start fields (X, Y,
 *                      Azimuth, Chainage) are read of the first one only,
 *                      the later ones' are computed
 * @param[in]  n        records of the complete table, 2 to 81
 * @param[out] table    n records
 * @retval QUILLON_OK     table written
 * @retval QUILLON_TABLE  n outside 2..81; table unchanged
 * @retval QUILLON_DOMAIN the first record's X, Y or Chainage outside the
 *                        range limit or its Azimuth outside [0, 2592000]; or
 *                        an element's Type not 1 to 3, Length outside
 *                        (0, 99999999.9999], or (arcs and transition curves)
 *                        Radius outside (0, 99999999.9999] or Turn not 0 or
 *                        1, or (transition curves) Spiral not 0 or 1; table
 *                        unchanged
 * @retval QUILLON_RANGE  an element function overflows or a chainage leaves
 *                        the range limit; the records computed so far stay
 *                        written, the end record's Type is not yet set
 */
QUILLON_API ResultCode LIB_CalWay_H_Ele_MainPoint(const HElement* elements, unsigned char n,
                                                  HElement* table);

/**
 * @brief Point and forward azimuth at a chainage on a complete element table.
 *
 * A chainage within 0.001 of a record's chainage gives that record's stored
 * values; one inside an element evaluates it (an exit transition curve
 * backward from the next record, its far end); one before the start
 * (beyond the tolerance) writes nothing; one at or beyond the end (within
 * the tolerance) gives the end record. An element of unknown Type writes
 * nothing.
 *
 * @param[in]  table    complete table of n records
 * @param[in]  n        number of records; 0 is refused
 * @param[in]  chainage m
 * @param[out] out      point (m) and forward azimuth (arc-seconds)
 * @retval QUILLON_OK    out written, or unchanged before the start
 * @retval QUILLON_TABLE n = 0; out unchanged
 * @retval QUILLON_RANGE an element function overflows; the position may be
 *                       written, the azimuth is not
 */
QUILLON_API ResultCode LIB_CalWay_H_On(const HElement* table, unsigned char n, double chainage,
                                       TangentPoint* out);

/**
 * @brief Pile list: the main points' chainages and piles at an interval,
 *        sorted.
 *
 * The m chainages are copied; piles are appended every interval from the
 * first whole multiple of the interval at or after the start (mode 0), from
 * the start chainage plus the interval (mode 1) or from 0 (any other mode),
 * stopping before the end chainage. The list is sorted, and entries within
 * 0.001 of their predecessor are removed in one forward pass (of three close
 * entries in a row the first and the third stay); the vacated tail slots
 * hold -1.0. An interval of 0 copies the list as it stands.
 *
 * @param[in]  chainages  the main points' chainages, ascending from the
 *                        start to the end, m
 * @param[in]  m          number of chainages, at most 81; above 81 no
 *                        chainage is read
 * @param[in]  interval   distance between piles, m, from 0 to 99999999.9999
 * @param[out] piles      room for 81 values, m
 * @param[out] pile_count number of entries in piles
 * @param[in]  mode       0 whole multiples, 1 from the start, other from 0
 * @retval QUILLON_OK     piles and pile_count written
 * @retval QUILLON_DOMAIN m above 81 (tested first), a chainage outside the
 *                        range limit, an interval outside [0, 99999999.9999],
 *                        or m = 0 with a positive interval; nothing written
 * @retval QUILLON_TABLE  the list would exceed 80 entries; the list so far
 *                        (unsorted) and its count written
 */
QUILLON_API ResultCode LIB_CalWay_Pile(const double* chainages, unsigned char m, double interval,
                                       double* piles, uint32_t* pile_count, unsigned char mode);

/* ---- profile ------------------------------------------------------------- */

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

/**
 * @brief Complete vertical table of count records from count - 1 designer's
 *        elements.
 *
 * The elements are copied into table[0..count-2] (table may be the elements
 * array itself) and their computed fields filled in (a curve's Radius or
 * Length, its vertex chainage and elevation); each element's end is written
 * into the next record, and table[count-1] becomes the end record (only its
 * Type, Chainage, Elevation and GradeIn are written). A circular curve's
 * vertex lies a tangent length after its start in chainage and its end a
 * whole curve length after the start. Negative elevations are accepted here,
 * although the element functions refuse them.
 *
 * @param[in]  elements count - 1 elements, copied whole; the start fields
 *                      (Chainage, Elevation, GradeIn) are read of the first
 *                      one only, the later ones' are computed
 * @param[in]  count    records of the complete table, 2 to 81
 * @param[out] table    count records
 * @retval QUILLON_OK     table written
 * @retval QUILLON_TABLE  count outside 2..81; table unchanged
 * @retval QUILLON_DOMAIN the first element's Elevation or Chainage outside
 *                        the range limit or its GradeIn outside [-1, 1]; or
 *                        an element's Type not 1 to 3, GradeOut outside
 *                        [-1, 1], Given not 0 or 1, or its given Length
 *                        (Given 1) or Radius (Given 0) outside
 *                        (0, 99999999.9999], grade lines included; table
 *                        unchanged
 * @retval QUILLON_RANGE  a computed Radius or Length outside
 *                        [0, 99999999.9999] (equal grades with a given
 *                        Length among the causes), a vertex or an end
 *                        chainage or elevation outside the range limit, or
 *                        an end grade outside [-1, 1]; the records computed
 *                        so far stay written, the end record's Type is not
 *                        set
 */
QUILLON_API ResultCode LIB_CalWay_V_Ele_MainPoint(const VElement* elements, unsigned char count,
                                                  VElement* table);

/**
 * @brief Elevation at a chainage on a grade line of a complete table.
 *
 * (chainage - Chainage) GradeIn + Elevation.
 *
 * @param[in]  element   the grade line: Chainage, Elevation and GradeIn read
 * @param[in]  chainage  m
 * @param[out] elevation m
 * @param[in]  skip      non-zero returns at once, writing nothing
 * @retval QUILLON_OK    elevation written, or nothing when skip is non-zero
 * @retval QUILLON_RANGE the elevation below 0 or above 99999999.9999 (a
 *                       not-a-number passes); written all the same
 */
QUILLON_API ResultCode LIB_CalWay_V_Line_On(const VElement* element, double chainage,
                                            double* elevation, unsigned char skip);

/**
 * @brief Elevation at a chainage on a parabolic vertical curve of a complete
 *        table.
 *
 * The tangent elevation on the grade before or after the vertex, less
 * (crest) or plus (sag) the parabola's offset. With equal grades nothing is
 * written, and the value the caller left is tested.
 *
 * @param[in]     element   the curve with Radius, Length and vertex filled in
 * @param[in]     chainage  m
 * @param[in,out] elevation m
 * @retval QUILLON_OK    the value in elevation within [0, 99999999.9999]
 * @retval QUILLON_RANGE the value in elevation outside [0, 99999999.9999] or
 *                       not a number; a computed elevation is written all
 *                       the same
 */
QUILLON_API ResultCode LIB_CalWay_V_Curve_On(const VElement* element, double chainage,
                                             double* elevation);

/**
 * @brief Elevation at a chainage on a circular vertical curve of a complete
 *        table.
 *
 * Evaluated from the curve's start up to a split chainage near its middle
 * and from its end back beyond it. Nothing is written for a chainage at or
 * before the curve's start or beyond its end, and the value the caller left
 * is tested.
 *
 * @param[in]     element   the curve with Radius, Length and vertex filled in
 * @param[in]     chainage  m
 * @param[in,out] elevation m
 * @retval QUILLON_OK    the value in elevation within [0, 99999999.9999]
 * @retval QUILLON_RANGE the value in elevation outside [0, 99999999.9999] or
 *                       not a number; a computed elevation is written all
 *                       the same
 */
QUILLON_API ResultCode LIB_CalWay_V_Circle_On(const VElement* element, double chainage,
                                              double* elevation);

/**
 * @brief Design elevation at a chainage on a complete vertical table.
 *
 * More than 0.001 before the start writes 0; more than 0.001 beyond the end
 * writes the end elevation; within 0.001 of a record's chainage writes that
 * record's elevation; otherwise the element holding the chainage is
 * evaluated by LIB_CalWay_V_Line_On(), LIB_CalWay_V_Curve_On() or
 * LIB_CalWay_V_Circle_On() (an element of another Type writes nothing). A
 * table of one record answers only before its start or beyond its end.
 *
 * @param[in]     table     complete table of count records
 * @param[in]     count     number of records; 0 is refused
 * @param[in]     chainage  m
 * @param[in,out] elevation m; read by the element functions as they say
 * @retval QUILLON_OK    elevation written, or as the element function leaves
 *                       it
 * @retval QUILLON_TABLE count 0; elevation unchanged
 * @retval QUILLON_RANGE passed on from the element function; see there
 */
QUILLON_API ResultCode LIB_CalWay_V_On(const VElement* table, unsigned char count, double chainage,
                                       double* elevation);

/**
 * @brief Complete vertical table from count grade intersections.
 *
 * Each point gives its VertexChainage and VertexElevation; at an inner point
 * Type says what lies there (0 a plain change of grade, 2 a parabolic, 3 a
 * circular curve) and Given whether Radius (0) or Length (1) was given. The
 * grade between two points is their elevation difference over the absolute
 * chainage difference. At a plain change of grade the grade line before it
 * ends at the point's own Chainage field, while the walk goes on from its
 * vertex. For each curve the computed Radius or Length and the curve's start
 * Chainage and Elevation are written back into points[], even when the
 * function fails later. A circular curve ends at VertexElevation +
 * sin(grade out) T, the sine taken of the grade itself. The table receives
 * grade lines (Type, Chainage, Elevation, Length and GradeIn written), curve
 * records (copies of the point with GradeIn and GradeOut) and the end record
 * (Type 0, Chainage, Elevation, GradeIn). Negative elevations are accepted.
 *
 * @param[in,out] points      count grade intersections; curve fields written
 *                            back
 * @param[in]     count       number of points, 2 to 80
 * @param[out]    table       room for 81 records
 * @param[out]    table_count number of records written, end record included
 * @retval QUILLON_OK     table and table_count written
 * @retval QUILLON_TABLE  count below 2 or above 80 (nothing written); or the
 *                        table would exceed 81 records: table_count holds the
 *                        records written and the last of them has Type 0
 * @retval QUILLON_DOMAIN a vertex outside the range limit, a Type of 1 or
 *                        above 3, or an inner curve's Given above 1 or its
 *                        given value outside (0, 99999999.9999]; nothing
 *                        written
 * @retval QUILLON_RANGE  a grade outside [-1, 1], or a computed Radius,
 *                        Length, grade line length or curve start or end out
 *                        of range; what was written so far stays,
 *                        table_count unchanged
 */
QUILLON_API ResultCode LIB_CalWay_V_Cross_MainPoint(VElement* points, unsigned char count,
                                                    VElement* table, unsigned char* table_count);

/* ---- cross-section ------------------------------------------------------- */

/** Values of a cross-section table at one chainage: widths (m) or cross
 *  slopes (rise over horizontal distance, positive upward going outward,
 *  -0.02 a fall of 2 per cent) to the left and right of the centre line,
 *  looking forward along increasing chainage. */
typedef struct SectionRecord {
    double Chainage; /**< chainage at which the values hold, m */
    double Left;     /**< value for the left side */
    double Right;    /**< value for the right side */
} SectionRecord;

/**
 * @brief Carriageway widths at a chainage from a width table.
 *
 * The chainage is written to out->Chainage first. At or before the first
 * record, or at or beyond the last, that record's widths are copied; in
 * between, mode 0 interpolates linearly and any other mode leaves Left and
 * Right unwritten.
 *
 * @param[in]  table    count records ascending by chainage, each width in
 *                      [0, 99999999.9999]
 * @param[in]  count    number of records, 1 to 80
 * @param[in]  chainage m
 * @param[out] out      Chainage, Left and Right (m)
 * @param[in]  mode     0 interpolates; any other value does not
 * @retval QUILLON_OK     Chainage written, Left and Right as above
 * @retval QUILLON_TABLE  count above 80; out unchanged
 * @retval QUILLON_DOMAIN count 0, or a record's Chainage outside the range
 *                        limit or Left or Right outside [0, 99999999.9999];
 *                        out unchanged
 * @retval QUILLON_RANGE  an interpolated width outside [0, 99999999.9999];
 *                        Chainage and the failing value written, and Left
 *                        when Right fails
 */
QUILLON_API ResultCode LIB_CalWay_Width(const SectionRecord* table, unsigned char count,
                                        double chainage, SectionRecord* out, unsigned char mode);

/**
 * @brief Cross slopes at a chainage from a slope table: the lookup of
 *        LIB_CalWay_Width() with the bounds [-1, 1].
 *
 * @param[in]  table    count records ascending by chainage, each slope in
 *                      [-1, 1]
 * @param[in]  count    number of records, 1 to 80
 * @param[in]  chainage m
 * @param[out] out      Chainage (m), Left and Right slopes
 * @param[in]  mode     0 interpolates; any other value does not
 * @retval QUILLON_OK     as for LIB_CalWay_Width()
 * @retval QUILLON_TABLE  count above 80; out unchanged
 * @retval QUILLON_DOMAIN count 0, or a record's Chainage outside the range
 *                        limit or Left or Right outside [-1, 1]; out
 *                        unchanged
 * @retval QUILLON_RANGE  an interpolated slope outside [-1, 1]; Chainage and
 *                        the failing value written, and Left when Right fails
 */
QUILLON_API ResultCode LIB_CalWay_SideSlope(const SectionRecord* table, unsigned char count,
                                            double chainage, SectionRecord* out,
                                            unsigned char mode);

/**
 * @brief Edge point in plan, square to the centre line, at the left or right
 *        width.
 *
 * The perpendicular azimuth is the centre azimuth less a quarter circle
 * (left; a full circle added below 0) or plus one (right; a full circle
 * taken off above 1296000). Any other side writes nothing, and the tests run
 * on what out already holds.
 *
 * @param[in]     centre point and forward azimuth on the centre line
 * @param[in]     widths Left and Right widths, m
 * @param[in,out] out    edge point (m) and the azimuth from the centre toward
 *                       the edge (arc-seconds)
 * @param[in]     side   0 left, 1 right
 * @retval QUILLON_OK    out written (sides 0 and 1)
 * @retval QUILLON_RANGE the azimuth outside [0, 2592000], then X or Y outside
 *                       the range limit; out written as computed all the same
 */
QUILLON_API ResultCode LIB_CalWay_H_Side(const TangentPoint* centre, const SectionRecord* widths,
                                         TangentPoint* out, unsigned char side);

/**
 * @brief Edge elevation from the width and cross slope of one side.
 *
 * Width times slope of the side plus the centre elevation, when the widths'
 * Chainage lies within [range_start - 0.001, range_end + 0.001]; outside
 * that range 0 is written, which is no error. Any other side writes nothing
 * and the test runs on what elevation already holds. The slopes' own
 * Chainage is not read.
 *
 * @param[in]     widths           Chainage, Left and Right widths, m
 * @param[in]     slopes           Left and Right cross slopes
 * @param[in]     centre_elevation m
 * @param[in]     range_start      first chainage of the section, m
 * @param[in]     range_end        last chainage of the section, m
 * @param[in,out] elevation        m
 * @param[in]     side             0 left, 1 right
 * @retval QUILLON_OK    elevation written (or 0 outside the range)
 * @retval QUILLON_RANGE the elevation above 99999999.9999 or below
 *                       -99999999.9999 (a not-a-number passes); written all
 *                       the same
 */
QUILLON_API ResultCode LIB_CalWay_V_Side(const SectionRecord* widths, const SectionRecord* slopes,
                                         double centre_elevation, double range_start,
                                         double range_end, double* elevation, unsigned char side);

/** @} */

/* ==== traverse (src/traverse) ============================================= */

/** @defgroup traverse Traverse and multi-round observation
 *  Closure and adjustment of traverses, and the reduction of multi-round
 *  face I / face II observations at a station and along a traverse.
 *  @{ */

/* ---- traverse closure and adjustment ------------------------------------- */

/** One leg of a traverse, in traverse order. */
typedef struct TraverseLeg {
    double HorizDist;     /**< horizontal length, m; the weight of every distribution */
    double HeightDiff;    /**< observed height difference of the leg, m */
    double DeltaX;        /**< coordinate increment in X, m (read and corrected by step 2;
                               step 0 does not read it) */
    double DeltaY;        /**< coordinate increment in Y, m (read and corrected by step 2) */
    double DeltaH;        /**< height increment, m (read and corrected by step 3) */
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
 *  LIB_TRSCalCoorErr() (steps 2 and 3 read what step 0 wrote). */
typedef struct TraverseClosure {
    double Fx;                 /**< misclosure in X: the X increments recomputed from
                                    HorizDist and ForeDirection, summed, minus
                                    (End.X - Start.X), m */
    double Fy;                 /**< misclosure in Y, likewise, m */
    double Fh;                 /**< height misclosure: sum of HeightDiff - (End.H - Start.H), m */
    double SumDist;            /**< sum of the leg lengths, m */
    double SumHeightDiff;      /**< sum of the leg height differences, m */
    double Misclosure;         /**< linear misclosure sqrt(Fy^2 + Fx^2), m, in single precision */
    double Relative;           /**< Misclosure / SumDist (a fraction), in single precision */
    double KnownEndAzimuth;    /**< known closing azimuth, arc-seconds (0 for a closed loop) */
    double ComputedEndAzimuth; /**< step 0: the last ForeDirection; step 1: the azimuth carried
                                    to the end in whole seconds (connecting traverse, possibly
                                    negative) or 0 (closed loop), arc-seconds */
    double AngularMisclosure;  /**< angular misclosure, arc-seconds */
} TraverseClosure;

/** Misclosure of LIB_TRSAdjust(), in single precision. */
typedef struct AdjustClosure {
    float Misclosure; /**< linear misclosure, m */
    float Relative;   /**< misclosure / total length (a fraction) */
} AdjustClosure;

/**
 * @brief Closure of a traverse on a table of legs, in four steps called in
 *        turn on the same closure record.
 *
 * Step 0, plan and height closure: writes Fx, Fy, Fh, SumDist, SumHeightDiff,
 * Misclosure, Relative and ComputedEndAzimuth (the last ForeDirection).
 * Step 1, angular closure: writes KnownEndAzimuth, ComputedEndAzimuth and
 * AngularMisclosure, and adds (not subtracts) AngularMisclosure / n to every
 * ForeDirection. In mode 0 the angles are back minus fore direction, each
 * and the carried azimuth cut to whole seconds and reduced by a remainder
 * that keeps the sign; in mode 1 they are fore minus back direction with
 * their fractions, a full circle added to a negative one, against
 * (n - 2) x 648000. Step 2 corrects DeltaX and DeltaY in proportion to the
 * leg lengths, step 3 DeltaH likewise, both with the record as it stands (a
 * SumDist of 0 divides by zero).
 *
 * @param[in,out] legs   n legs in traverse order; steps 1 to 3 correct them
 *                       in place
 * @param[in]     n      number of legs, 1 to 255
 * @param[in]     known  known start, closing orientation point and end
 * @param[in]     step   0 closure, 1 angular closure, 2 plan distribution,
 *                       3 height distribution
 * @param[in]     mode   0 connecting traverse from a known start azimuth (the
 *                       first ForeDirection) to the known azimuth
 *                       ClosingRef -> End; 1 closed loop
 * @param[in,out] result closure record: written by steps 0 and 1, read by
 *                       steps 2 and 3
 * @retval QUILLON_OK     the step's fields written; a mode other than 0 or
 *                        1, or a step above 3, writes nothing
 * @retval QUILLON_DOMAIN n = 0, or (step 1, mode 0) ClosingRef and End
 *                        coincide in plan; nothing written
 */
QUILLON_API ResultCode LIB_TRSCalCoorErr(TraverseLeg* legs, unsigned char n,
                                         const TraverseKnownPoints* known, unsigned char step,
                                         unsigned char mode, TraverseClosure* result);

/**
 * @brief Plan misclosure of computed traverse points against a known point,
 *        and the points corrected in proportion to each point's own weight.
 *
 * Each point takes the share of the misclosure given by its own dist entry,
 * not by the length run so far, and the corrected coordinates are added onto
 * what adj holds. A total weight of 0 divides by zero.
 *
 * @param[in]     dist    n weights (leg lengths), m
 * @param[in]     ref     two known points (X, Y read); mode 0 closes on
 *                        ref[1], mode 1 on ref[0]
 * @param[in]     pts     n computed points in traverse order; the last is the
 *                        computed end, m
 * @param[in]     n       number of points, 1 to 255
 * @param[in,out] adj     n points onto whose X and Y the corrected
 *                        coordinates are added (clear them first to receive
 *                        the coordinates themselves); H is not touched
 * @param[out]    closure misclosure (m) and relative misclosure, single
 *                        precision
 * @param[in]     mode    0 or 1, as above
 * @retval QUILLON_OK     closure and adj written
 * @retval QUILLON_DOMAIN n = 0, or mode neither 0 nor 1; nothing written
 */
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
    double Scale;                 /**< in: scale passed to LIB_DistConvert() */
} StaMultiResult;

/**
 * @brief Reduces rounds of face I / face II pointings at a station to one or
 *        two targets.
 *
 * Face means per round, means over the rounds, the field tolerance tests,
 * reduced distances (LIB_DistConvert() with the record's Station and Scale)
 * and the targets' coordinates (LIB_CalCoor() from the station with the mean
 * direction as azimuth, the instrument taken as oriented, and the vertical
 * difference). A tolerance test fails only above its tolerance; the spreads
 * run over the rounds so far. Both-face programmes (modes 0, 2, 3) take the
 * absolute value of the mean direction and zenith angle; face I only (mode
 * 1) does not. With one target (mode 0) the target-2 fields, Angle12 and
 * MeanHz2Copy are not written. A target point out of range is written as
 * zeros.
 *
 * @param[in]     rounds n rounds
 * @param[in]     n      number of rounds
 * @param[in,out] result inputs (tolerances, SkipChecks, ObsMode, Station,
 *                       Scale) and outputs; ErrorFlag is set to 0 first
 * @retval QUILLON_OK     every output of the mode written, ErrorFlag 0; an
 *                        ObsMode outside 0 to 3 writes nothing but ErrorFlag
 *                        0
 * @retval QUILLON_DOMAIN n = 0: ErrorFlag 6, nothing else written; or a
 *                        tolerance test failed: ErrorFlag holds the first
 *                        failure and every output is still written
 */
QUILLON_API ResultCode LIB_STAMultCycleCal(const RoundObservation* rounds, uint32_t n,
                                           StaMultiResult* result);

/* ---- multi-round traverse ------------------------------------------------ */

/** One station of a multi-round traverse: its 36 doubles lie where the
 *  leading 36 doubles of the station's StaMultiResult lie (target 1 forward,
 *  target 2 backward), so that record can be copied in as it stands. Fields
 *  marked neither in nor out are not read by LIB_TRSMultCycleCal(). */
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
    double Azimuth;           /**< out: azimuth of the leg leaving this station, arc-seconds; only a
                                   negative value is turned by a full circle, so it may reach
                                   1296000 or more; the last station, which has no leg, gets the
                                   azimuth of its forward sighting */
    double DeltaX;            /**< out: increment in X, m */
    double DeltaY;            /**< out: increment in Y, m */
    double DeltaH;            /**< out: height increment (VertDiff1), m */
    double CorrX;             /**< out: correction of DeltaX, m */
    double CorrY;             /**< out: correction of DeltaY, m */
    double CorrH;             /**< out: correction of DeltaH, m */
    double AdjDeltaX;         /**< out: adjusted increment in X, m */
    double AdjDeltaY;         /**< out: adjusted increment in Y, m */
    double AdjDeltaH;         /**< out: adjusted height increment, m (0 with HeightRule 1) */
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

/**
 * @brief Computes and adjusts a traverse whose stations were reduced by
 *        LIB_STAMultCycleCal().
 *
 * Angular closure and its distribution (types 0 to 2), leg azimuths from the
 * azimuth B -> A, increments, plan and height closure on the end point
 * (types 0 to 3), distribution of the misclosures, and the coordinates of
 * every station, accumulated from the first station's StationPoint (not
 * from A) by the adjusted increments as they stand: a rule that writes no
 * correction leaves the caller's values there, and the open traverse (type
 * 4) fills them with the plain increments. The work array of one entry per
 * station is the library's one allocation; it is freed before every return.
 *
 * In types 0 to 2 the angular misclosure comes off every station angle in
 * equal shares, misclosure / n; the whole seconds that the shares leave
 * over, |misclosure - share n| truncated to a 32-bit integer, add one second
 * each to the first stations' angles. Where that conversion is undefined in
 * C, it is defined here: a left-over of 2^31 seconds or more converts to
 * 2147483647 and a not-a-number to 0.
 *
 * @param[in,out] stations n stations in traverse order (n - 1 legs)
 * @param[in]     n        number of stations, at least 2
 * @param[in]     control  rules, traverse type and known points
 * @param[out]    result   misclosures, written as ValidMask says
 * @retval QUILLON_OK     the stations' results and result written; a
 *                        traverse type outside 0 to 4 writes nothing
 * @retval QUILLON_DOMAIN n below 2 or the work array cannot be allocated:
 *                        nothing written; or the total leg length is 0 in
 *                        types 0 to 3: Azimuth and the increments written,
 *                        nothing else
 */
QUILLON_API ResultCode LIB_TRSMultCycleCal(TraverseStation* stations, uint32_t n,
                                           const TraverseControl* control, TraverseResult* result);

/** @} */

#ifdef __cplusplus
} /* extern "C" */
#endif

/* ---- placeholders, exported under their C++ names ------------------------ */
#ifdef __cplusplus
/** Placeholder class, exported for the instrument's loader; it holds no data
 *  of its own (one byte of storage). */
class QUILLON_API CTalvor {
  public:
    /** Does nothing. */
    CTalvor();
    /**
     * @brief Copies the one byte of storage.
     * @param[in] other the object copied from
     * @return this object
     */
    CTalvor& operator=(const CTalvor& other);
};

/**
 * @brief Placeholder function.
 * @return 42, on every call
 */
QUILLON_API int fnTalvor(void);

/** Placeholder variable: 0 after load, never read or written by the library. */
extern QUILLON_API int nTalvor;
#endif

/* ---- layout checks ------------------------------------------------------- */
/** @cond QUILLON_LAYOUT_CHECKS */
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
/** @endcond */

#endif /* QUILLON_H */
