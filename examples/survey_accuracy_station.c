/* How far the device's free station and traverse closure differ from the
 * rigorous ones, on the same observations. Every case is made up from known
 * coordinates, so both answers are also compared with the truth.
 *
 *   Free station: LIB_RESA2D (distances from directions) then LIB_RESDist
 *   (similarity fit), against qs_free_station. The device cuts an angle of
 *   every triangle pair to whole seconds, delivers the orientation in whole
 *   seconds, and keeps its own index for the first five points only.
 *
 *   Traverse: LIB_TRSCalCoorErr (angular closure in whole seconds, its
 *   correction added to the azimuths with the sign the caller must mind) and
 *   LIB_TRSAdjust (linear closure only), against qs_traverse_adjust. */
#include "common.h"
#include "quillon.h"
#include "quillon/survey.h"

#include <math.h>
#include <stdio.h>
#include <string.h>

#define MOST 8
#define LEGS 6

static const double PI = 3.14159265358979323846;

static double folded(double seconds)
{
    seconds = fmod(seconds, 1296000.0);
    return seconds < 0.0 ? seconds + 1296000.0 : seconds;
}

/* Difference of two angles in arc-seconds, folded into a half circle. */
static double turned(double a, double b) { return remainder(a - b, 1296000.0); }

static double plan_mm(double x0, double y0, double x1, double y1)
{
    return 1000.0 * hypot(x0 - x1, y0 - y1);
}

/* ---- free station -------------------------------------------------------- */

typedef struct Case {
    const char* name;
    int count;
    double near;       /* m */
    double far;        /* m */
    int with_distance; /* 1: slope distances and zenith angles with small errors */
} Case;

/* The station, its orientation and the known points of a case: points
 * spread round the station at distances near..far. */
static const SurveyPoint STATION = {5432.109, 2345.678, 412.345};
static const double ORIENTATION = 281234.5; /* azimuth of the circle's zero, " */

static void place(const Case* c, SurveyPoint* points)
{
    int i;
    for (i = 0; i < c->count; ++i) {
        const double azimuth = 2.0 * PI * (i + 0.31 * (i % 3)) / c->count;
        const double distance = c->near + (c->far - c->near) * ((i * 5) % c->count) / c->count;
        points[i].X = STATION.X + distance * cos(azimuth);
        points[i].Y = STATION.Y + distance * sin(azimuth);
        points[i].H = STATION.H + 8.0 * sin(3.0 * azimuth);
    }
}

/* Small errors: directions and zeniths in seconds, distances in m. */
static const double ERR_HZ[MOST] = {0.8, -1.1, 0.4, 1.2, -0.6, -0.9, 0.3, 0.7};
static const double ERR_V[MOST] = {-1.2, 0.9, 1.4, -0.5, 0.6, -1.0, 0.8, -0.3};
static const double ERR_S[MOST] = {0.0015, -0.0021, 0.0008, 0.0012, -0.0009, 0.0017, -0.001, 0.0};

static void compare_station(const Case* c)
{
    SurveyPoint known[MOST];
    AngleObservation obs[MOST];
    DistanceRecord dists[MOST];
    double targets[MOST], by_angles[MOST];
    qs_sighting sightings[MOST];
    qs_sighting_result residuals[MOST];
    qs_free_station_options options;
    qs_free_station_result rigorous;
    ResectionResult device;
    const double ih = 1.6, th = 1.5;
    int i;

    place(c, known);
    memset(&device, 0, sizeof device);
    for (i = 0; i < c->count; ++i) {
        const double dx = known[i].X - STATION.X, dy = known[i].Y - STATION.Y;
        const double d = hypot(dx, dy);
        const double rise = known[i].H + th - STATION.H - ih;
        const double error = c->with_distance ? 1.0 : 0.0;
        qs_sighting* s = &sightings[i];
        s->x = known[i].X;
        s->y = known[i].Y;
        s->h = known[i].H;
        s->direction = folded(atan2(dy, dx) * QS_RHO_SEC - ORIENTATION + error * ERR_HZ[i]);
        s->zenith = atan2(d, rise) * QS_RHO_SEC + error * ERR_V[i];
        s->slope_distance = hypot(d, rise) + error * ERR_S[i];
        s->target_height = th;
        s->has_distance = c->with_distance;
        s->has_zenith = 1;
        obs[i].Horizontal = s->direction;
        obs[i].Zenith = s->zenith;
        obs[i].Value = 0.0;
        targets[i] = th;
        by_angles[i] = -1.0; /* marks a distance the device did not write */
    }

    /* The device: distances from the directions (or measured), then the fit. */
    if (c->with_distance) {
        StationRecord instrument = station_over(0.0, 0.0, 0.0, ih, th, 0);
        for (i = 0; i < c->count; ++i) {
            LIB_DistConvert(&instrument, 1.0, sightings[i].slope_distance, obs[i].Zenith,
                            &dists[i]);
        }
    } else {
        LIB_RESA2D(obs, known, (unsigned char)c->count, by_angles);
        for (i = 0; i < c->count; ++i) {
            memset(&dists[i], 0, sizeof dists[i]);
            dists[i].HorizontalDistance = by_angles[i] < 0.0 ? 0.0 : by_angles[i];
        }
    }
    LIB_RESDist(ih, dists, obs, known, targets, (unsigned char)c->count, &device, 0);

    /* The survey layer. */
    options.instrument_height = ih;
    options.sigma_direction = 1.0;
    options.sigma_zenith = 1.5;
    options.sigma_distance_mm = 2.0;
    options.sigma_distance_ppm = 2.0;
    options.refraction = 0.13;
    options.earth_radius = QS_EARTH_RADIUS;
    options.blunder_threshold = QS_BLUNDER_THRESHOLD;
    options.curvature = 0;
    options.max_iterations = 20;
    if (qs_free_station(sightings, (size_t)c->count, &options, &rigorous, residuals) != QS_OK) {
        printf("  %-34s the survey layer refused the geometry\n", c->name);
        return;
    }

    printf("  %-34s %9.1f %8.1f  %9.3f %8.3f  %9.1f\n", c->name,
           plan_mm(device.X, device.Y, STATION.X, STATION.Y),
           turned(device.Orientation, ORIENTATION),
           plan_mm(rigorous.x, rigorous.y, STATION.X, STATION.Y),
           turned(rigorous.orientation, ORIENTATION),
           plan_mm(device.X, device.Y, rigorous.x, rigorous.y));
    if (!c->with_distance) {
        printf("      distances from LIB_RESA2D minus true (mm):");
        for (i = 0; i < c->count; ++i) {
            const double truth = hypot(known[i].X - STATION.X, known[i].Y - STATION.Y);
            if (by_angles[i] < 0.0) {
                printf("  [%d] not written, 0 passed on", i);
            } else {
                printf("  [%d] %+.1f", i, 1000.0 * (by_angles[i] - truth));
            }
        }
        printf("\n");
    }
}

/* ---- traverse ------------------------------------------------------------- */

/* A link traverse A -> P1 .. P5 -> E, backsight B at A, foresight F at E. */
static const SurveyPoint TRUE_POINTS[LEGS + 1] = {
    {5000.000, 2000.000, 312.450}, {5180.412, 2105.223, 315.870}, {5301.995, 2302.640, 318.204},
    {5288.330, 2541.118, 316.920}, {5410.781, 2730.456, 321.066}, {5590.060, 2801.907, 322.871},
    {5702.655, 2985.300, 320.118}};
static const SurveyPoint BACKSIGHT = {4700.000, 1850.000, 0.0};
static const SurveyPoint FORESIGHT = {5950.000, 3210.000, 0.0};
/* Observation errors: angles ("), distances (m). */
static const double ANGLE_ERROR[LEGS + 1] = {1.4, -0.7, 2.2, 0.9, -1.6, 1.8, 0.6};
static const double DIST_ERROR[LEGS] = {0.004, -0.003, 0.006, 0.002, -0.002, 0.005};

static double true_azimuth(const SurveyPoint* from, const SurveyPoint* to)
{
    return folded(atan2(to->Y - from->Y, to->X - from->X) * QS_RHO_SEC);
}

/* Coordinates from the device's legs after its steps, summed from A. */
static void accumulate(const TraverseLeg* legs, SurveyPoint* out)
{
    int i;
    out[0] = TRUE_POINTS[0];
    for (i = 0; i < LEGS; ++i) {
        out[i + 1].X = out[i].X + legs[i].DeltaX;
        out[i + 1].Y = out[i].Y + legs[i].DeltaY;
        out[i + 1].H = 0.0;
    }
}

/* The device's connecting traverse as a caller drives it: azimuths carried
 * from the raw angles, step 1 (angular closure; its correction is added to
 * every azimuth, times sign), increments, step 0, step 2. A seventh leg of
 * length 0 toward the foresight carries the closing azimuth, and ClosingRef
 * lies behind E on the line F-E, so that the device's known closing azimuth
 * ClosingRef -> End is the azimuth E -> F. */
static double device_link(const qs_traverse_station* stations, double sign, SurveyPoint* out)
{
    TraverseLeg legs[LEGS + 1];
    TraverseKnownPoints known;
    TraverseClosure closure;
    double azimuth = 0.0;
    int i;
    memset(legs, 0, sizeof legs);
    memset(&closure, 0, sizeof closure);
    known.Start = TRUE_POINTS[0];
    known.End = TRUE_POINTS[LEGS];
    known.ClosingRef.X = 2.0 * known.End.X - FORESIGHT.X;
    known.ClosingRef.Y = 2.0 * known.End.Y - FORESIGHT.Y;
    known.ClosingRef.H = 0.0;
    LIB_CalAZ(&TRUE_POINTS[0], &BACKSIGHT, &azimuth);
    for (i = 0; i <= LEGS; ++i) {
        const double back = folded(azimuth + (i > 0 ? 648000.0 : 0.0));
        azimuth = folded(back + stations[i].angle);
        legs[i].HorizDist = i < LEGS ? stations[i].distance : 0.0;
        legs[i].ForeDirection = azimuth;
        legs[i].BackDirection = back;
    }
    LIB_TRSCalCoorErr(legs, LEGS + 1, &known, 1, 0, &closure);
    for (i = 0; i <= LEGS; ++i) {
        /* Step 1 added +misclosure / n; a caller who takes the other sign
         * turns it round here. */
        legs[i].ForeDirection += (sign - 1.0) * closure.AngularMisclosure / (LEGS + 1);
        legs[i].DeltaX = legs[i].HorizDist * cos(legs[i].ForeDirection * QUILLON_RAD_PER_SEC);
        legs[i].DeltaY = legs[i].HorizDist * sin(legs[i].ForeDirection * QUILLON_RAD_PER_SEC);
    }
    LIB_TRSCalCoorErr(legs, LEGS + 1, &known, 0, 0, &closure);
    LIB_TRSCalCoorErr(legs, LEGS + 1, &known, 2, 0, &closure);
    accumulate(legs, out);
    return closure.AngularMisclosure;
}

/* LIB_TRSAdjust on the stations carried from the raw angles, weighted by
 * their leg lengths as its header asks: each station takes the share of its
 * own leg, not of the running length, so the end is not brought onto E. */
static void device_adjust(const qs_traverse_station* stations, SurveyPoint* out)
{
    SurveyPoint computed[LEGS], ref[2], adjusted[LEGS];
    double lengths[LEGS];
    double azimuth = 0.0;
    AdjustClosure closure;
    SurveyPoint at = TRUE_POINTS[0];
    int i;
    LIB_CalAZ(&TRUE_POINTS[0], &BACKSIGHT, &azimuth);
    for (i = 0; i < LEGS; ++i) {
        azimuth = folded(azimuth + (i > 0 ? 648000.0 : 0.0) + stations[i].angle);
        at.X += stations[i].distance * cos(azimuth * QUILLON_RAD_PER_SEC);
        at.Y += stations[i].distance * sin(azimuth * QUILLON_RAD_PER_SEC);
        computed[i] = at;
        lengths[i] = stations[i].distance;
    }
    ref[0] = TRUE_POINTS[0];
    ref[1] = TRUE_POINTS[LEGS];
    memset(adjusted, 0, sizeof adjusted);
    LIB_TRSAdjust(lengths, ref, computed, LEGS, adjusted, &closure, 0);
    out[0] = TRUE_POINTS[0];
    for (i = 0; i < LEGS; ++i) {
        out[i + 1] = adjusted[i];
    }
}

static void compare_traverse(void)
{
    qs_traverse_station stations[LEGS + 1];
    qs_traverse_ends ends;
    qs_traverse_result result;
    SurveyPoint rigorous[LEGS + 1], as_given[LEGS + 1], sign_turned[LEGS + 1], linear[LEGS + 1];
    const SurveyPoint* p = TRUE_POINTS;
    double device_misclosure;
    int i;

    for (i = 0; i <= LEGS; ++i) {
        const SurveyPoint* back = i == 0 ? &BACKSIGHT : &p[i - 1];
        const SurveyPoint* forward = i == LEGS ? &FORESIGHT : &p[i + 1];
        stations[i].angle =
            folded(true_azimuth(&p[i], forward) - true_azimuth(&p[i], back) + ANGLE_ERROR[i]);
        stations[i].distance =
            i < LEGS ? hypot(p[i + 1].X - p[i].X, p[i + 1].Y - p[i].Y) + DIST_ERROR[i] : 0.0;
        stations[i].height_difference = i < LEGS ? p[i + 1].H - p[i].H : 0.0;
    }
    ends.start = p[0];
    ends.start_backsight = BACKSIGHT;
    ends.end = p[LEGS];
    ends.end_foresight = FORESIGHT;
    if (qs_traverse_adjust(QS_TRAVERSE_LINK, &ends, stations, LEGS, QS_COMPASS_RULE,
                           QS_HEIGHTS_BY_LENGTH, &result, rigorous) != QS_OK) {
        printf("  the survey layer refused the traverse\n");
        return;
    }
    device_misclosure = device_link(stations, 1.0, as_given);
    device_link(stations, -1.0, sign_turned);
    device_adjust(stations, linear);

    printf("  Angular misclosure: survey %+.2f\" (each angle corrected by %+.2f\"); device %+.0f\" "
           "(whole seconds)\n",
           result.angular_misclosure, result.angle_correction, device_misclosure);
    printf("  Linear misclosure: %.1f mm, 1 : %.0f over %.1f m\n", 1000.0 * result.misclosure,
           result.precision_ratio, result.total_length);
    printf("\n  Station  survey-truth  device, its sign  device, sign turned  LIB_TRSAdjust\n");
    printf("           (mm)          - survey (mm)     - survey (mm)        - survey (mm)\n");
    for (i = 1; i <= LEGS; ++i) {
        printf("  %-7d  %8.1f      %12.1f      %14.1f      %12.1f\n", i,
               plan_mm(rigorous[i].X, rigorous[i].Y, p[i].X, p[i].Y),
               plan_mm(as_given[i].X, as_given[i].Y, rigorous[i].X, rigorous[i].Y),
               plan_mm(sign_turned[i].X, sign_turned[i].Y, rigorous[i].X, rigorous[i].Y),
               plan_mm(linear[i].X, linear[i].Y, rigorous[i].X, rigorous[i].Y));
    }
    printf("\n  survey-truth: the rigorous adjustment against the true coordinates (the\n"
           "  observation errors of 1-2\" and 2-6 mm remain). The device's steps 1, 0, 2 as a\n"
           "  caller drives them, step 1's correction as it comes (added) and with its sign\n"
           "  turned: either way one correction for every azimuth, not one per angle.\n"
           "  LIB_TRSAdjust closes in plan only, each station weighted by its own leg as\n"
           "  its header asks, so the end is not brought onto E.\n");
}

int main(void)
{
    static const Case CASES[] = {
        {"5 points, 150-400 m, directions", 5, 150.0, 400.0, 0},
        {"5 points, 1.5-3 km, directions", 5, 1500.0, 3000.0, 0},
        {"4 points, 3-6 km, directions", 4, 3000.0, 6000.0, 0},
        {"3 points, 2-5 km, directions", 3, 2000.0, 5000.0, 0},
        {"6 points, 150-400 m, directions", 6, 150.0, 400.0, 0},
        {"8 points, 150-400 m, directions", 8, 150.0, 400.0, 0},
        {"5 points, 150-400 m, with distances", 5, 150.0, 400.0, 1},
        {"8 points, 1.5-3 km, with distances", 8, 1500.0, 3000.0, 1},
    };
    size_t i;

    printf("Free station: device (LIB_RESA2D + LIB_RESDist) against the survey layer\n");
    printf("(directions exact; \"with distances\": 1\" directions, 1.5\" zeniths, 2 mm "
           "distances)\n\n");
    printf("  %-34s %9s %8s  %9s %8s  %9s\n", "", "device", "", "survey", "", "device -");
    printf("  %-34s %9s %8s  %9s %8s  %9s\n", "Case", "plan (mm)", "orient.", "plan (mm)",
           "orient.", "survey");
    for (i = 0; i < sizeof CASES / sizeof CASES[0]; ++i) {
        compare_station(&CASES[i]);
    }
    printf("\n  plan: distance of the computed station from the true one; orient.: computed\n"
           "  minus true orientation in seconds.\n");

    printf("\nLink traverse of %d legs: device (LIB_TRSCalCoorErr, LIB_TRSAdjust) against the "
           "survey layer (compass rule)\n\n",
           LEGS);
    compare_traverse();
    return 0;
}
