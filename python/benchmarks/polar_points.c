/*
 * polar_points.c - the C side of the Python batch benchmark: the same
 * polar points, from the same inputs, through qs_polar_points called from
 * C, timed as the best of a few runs.
 *
 *   python_polar_benchmark COUNT REPEATS OUTPUT
 *
 * Prints the best time in seconds; writes the northings then the eastings
 * to OUTPUT (native doubles) for the Python side to compare to the bit.
 */
#include "quillon/survey.h"

#include <stdio.h>
#include <stdlib.h>
#include <time.h>

/* Inputs made of exact operations only, so that Python builds the same. */
static double azimuth_of(size_t i) { return (double)(i * 37u % 1296000u) + 0.25; }
static double distance_of(size_t i) { return 1.0 + (double)(i % 5000u) * 0.125; }

static double now(void)
{
    struct timespec t;
    timespec_get(&t, TIME_UTC);
    return (double)t.tv_sec + (double)t.tv_nsec * 1e-9;
}

int main(int argc, char** argv)
{
    const SurveyPoint station = {5000.0, 2000.0, 100.0};
    size_t count;
    int repeats;
    double* azimuths;
    double* distances;
    double* x;
    double* y;
    double best = 1e300;
    size_t i;
    int r;
    FILE* out;
    if (argc != 4) {
        fprintf(stderr, "usage: %s COUNT REPEATS OUTPUT\n", argv[0]);
        return 2;
    }
    count = (size_t)strtoul(argv[1], NULL, 10);
    repeats = atoi(argv[2]);
    azimuths = malloc(count * sizeof *azimuths);
    distances = malloc(count * sizeof *distances);
    x = malloc(count * sizeof *x);
    y = malloc(count * sizeof *y);
    if (!azimuths || !distances || !x || !y) {
        fprintf(stderr, "out of memory\n");
        return 1;
    }
    for (i = 0; i < count; ++i) {
        azimuths[i] = azimuth_of(i);
        distances[i] = distance_of(i);
    }
    for (r = 0; r < repeats; ++r) {
        const double start = now();
        if (qs_polar_points(&station, azimuths, distances, count, x, y) != QS_OK) {
            fprintf(stderr, "qs_polar_points failed\n");
            return 1;
        }
        const double elapsed = now() - start;
        if (elapsed < best) {
            best = elapsed;
        }
    }
    out = fopen(argv[3], "wb");
    if (!out || fwrite(x, sizeof *x, count, out) != count ||
        fwrite(y, sizeof *y, count, out) != count || fclose(out) != 0) {
        fprintf(stderr, "cannot write %s\n", argv[3]);
        return 1;
    }
    printf("%.9f\n", best);
    free(azimuths);
    free(distances);
    free(x);
    free(y);
    return 0;
}
