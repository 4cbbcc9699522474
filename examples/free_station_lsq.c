/* Free station by least squares: the instrument stands on an unknown mark
 * and sights six known points (direction, zenith angle and slope distance to
 * each). One direction was misread by 25". The fit names it; the crew drops
 * that sighting and computes again. */
#include "common.h"
#include "quillon/survey.h"

#include <math.h>
#include <stdio.h>

#define POINTS 6

static const char* const NAMES[POINTS] = {"K101", "K102", "K103", "K104", "K105", "K106"};

/* Known points: X, Y, H (m) and the height of the prism over each (m). */
static const double KNOWN[POINTS][4] = {
    {5123.412, 2041.876, 315.112, 1.300}, {5058.903, 2147.330, 318.904, 1.300},
    {4921.557, 2118.045, 309.871, 1.300}, {4887.210, 1948.662, 311.208, 1.800},
    {4996.118, 1869.534, 314.660, 1.300}, {5102.770, 1905.221, 316.020, 1.300},
};

/* Face I readings: horizontal circle and zenith angle (degrees, minutes,
 * seconds), slope distance (m). K103's circle reading should be 73°05'23.0". */
static const double READINGS[POINTS][7] = {
    {318, 19, 58.2, 88, 48, 16.3, 115.308}, {13, 56, 11.6, 87, 32, 14.7, 144.204},
    {73, 5, 48.0, 91, 9, 28.5, 140.400},    {149, 16, 1.9, 90, 24, 33.9, 139.800},
    {206, 14, 47.3, 89, 12, 52.4, 142.393}, {253, 19, 11.0, 88, 38, 9.1, 139.193},
};

static const char* const KIND[] = {"none", "direction", "distance", "height"};

/* A residual as printed, without a "-0.0". */
static double shown(double value, double unit)
{
    return fabs(value) < 0.05 * unit ? 0.0 : value / unit;
}

static void print_station(const qs_free_station_result* r)
{
    char text[32];
    printf("  X %11.3f m   +/- %.1f mm\n", r->x, r->sigma_x * 1000.0);
    printf("  Y %11.3f m   +/- %.1f mm\n", r->y, r->sigma_y * 1000.0);
    printf("  H %11.3f m   +/- %.1f mm\n", r->h, r->sigma_h * 1000.0);
    printf("  Orientation %s   +/- %.1f\"\n", dms(r->orientation, text), r->sigma_orientation);
    printf("  Sigma0 %.2f with %u degrees of freedom, %u iterations\n", r->sigma0, (unsigned)r->dof,
           (unsigned)r->iterations);
}

static int fit(const qs_sighting* sightings, const char* const* names, size_t count,
               const qs_free_station_options* options, qs_free_station_result* result)
{
    qs_sighting_result residuals[POINTS];
    size_t i;
    const qs_status status = qs_free_station(sightings, count, options, result, residuals);
    if (status != QS_OK) {
        printf("  no station: %s\n", qs_status_message(status));
        return 0;
    }
    print_station(result);
    printf("\n  Residuals (adjusted minus observed) and standardized residuals w\n");
    printf("  Point   Hz (\")     w    Dist (mm)     w    Height (mm)    w\n");
    for (i = 0; i < count; ++i) {
        const qs_sighting_result* v = &residuals[i];
        printf("  %-6s %+6.1f  %+6.2f    %+6.1f   %+6.2f     %+6.1f   %+6.2f\n", names[i],
               shown(v->direction_residual, 1.0), v->direction_w,
               shown(v->distance_residual, 0.001), v->distance_w, shown(v->height_residual, 0.001),
               v->height_w);
    }
    printf("\n  Largest |w|: %.2f, the %s to %s (threshold %.2f): %s\n", result->blunder_w,
           KIND[result->blunder_kind], names[result->blunder_index], options->blunder_threshold,
           result->blunder_flagged ? "FLAGGED, check it" : "accepted");
    return 1;
}

int main(void)
{
    qs_sighting sightings[POINTS];
    qs_sighting kept[POINTS];
    const char* kept_names[POINTS];
    qs_free_station_options options;
    qs_free_station_result first, second;
    char hz[32], v[32];
    size_t i, count = 0;

    options.instrument_height = 1.550;
    options.sigma_direction = 1.0; /* a 1" instrument */
    options.sigma_zenith = 1.5;
    options.sigma_distance_mm = 2.0; /* 2 mm + 2 ppm */
    options.sigma_distance_ppm = 2.0;
    options.refraction = 0.13;
    options.earth_radius = QS_EARTH_RADIUS;
    options.blunder_threshold = QS_BLUNDER_THRESHOLD;
    options.curvature = 1;
    options.max_iterations = 20;

    printf("Free station by least squares, %d known points\n", POINTS);
    printf("  Point   Hz                V                Slope (m)   Prism (m)\n");
    for (i = 0; i < POINTS; ++i) {
        qs_sighting* s = &sightings[i];
        s->x = KNOWN[i][0];
        s->y = KNOWN[i][1];
        s->h = KNOWN[i][2];
        s->target_height = KNOWN[i][3];
        s->direction = angle((int)READINGS[i][0], (int)READINGS[i][1], READINGS[i][2]);
        s->zenith = angle((int)READINGS[i][3], (int)READINGS[i][4], READINGS[i][5]);
        s->slope_distance = READINGS[i][6];
        s->has_distance = 1;
        s->has_zenith = 1;
        printf("  %-6s  %-16s  %-16s %9.3f   %9.3f\n", NAMES[i], dms(s->direction, hz),
               dms(s->zenith, v), s->slope_distance, s->target_height);
    }

    printf("\nStation from all %d points (1\", 1.5\", 2 mm + 2 ppm; curvature and refraction, "
           "k = 0.13)\n",
           POINTS);
    if (!fit(sightings, NAMES, POINTS, &options, &first)) {
        return 1;
    }
    if (!first.blunder_flagged) {
        return 0;
    }

    /* Drop the flagged sighting and compute again. */
    for (i = 0; i < POINTS; ++i) {
        if (i != first.blunder_index) {
            kept[count] = sightings[i];
            kept_names[count] = NAMES[i];
            ++count;
        }
    }
    printf("\nStation without %s\n", NAMES[first.blunder_index]);
    if (!fit(kept, kept_names, count, &options, &second)) {
        return 1;
    }
    printf("\n  The misread direction had moved the station by %.1f mm in plan and the\n"
           "  orientation by %.1f\".\n",
           1000.0 * hypot(first.x - second.x, first.y - second.y),
           fabs(first.orientation - second.orientation));
    return 0;
}
