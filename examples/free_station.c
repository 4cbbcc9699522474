/* Free-station set-up: the instrument stands on an unknown point and sights
 * five known points. First the distances to three of them from the
 * directions alone, then the station from all five directions with their
 * distances, then the orientation of the circle from a backsight.
 *
 * Orientation is printed in one sense throughout: azimuth minus circle
 * reading, so that azimuth = reading + orientation, in [0, 360) degrees. */
#include "common.h"
#include "quillon.h"

#include <math.h>
#include <stdio.h>
#include <string.h>

#define POINTS 5

/* An angle brought into [0, 1296000) arc-seconds. */
static double wrap(double seconds)
{
    seconds = fmod(seconds, 1296000.0);
    return seconds < 0.0 ? seconds + 1296000.0 : seconds;
}

int main(void)
{
    char a[32], b[32], c[32];
    const char* names[POINTS] = {"K101", "K102", "K103", "K104", "K105"};
    const SurveyPoint known[POINTS] = {
        {5123.412, 2041.876, 315.112}, {5058.903, 2147.330, 318.904}, {4921.557, 2118.045, 309.871},
        {4887.210, 1948.662, 311.208}, {4996.118, 1869.534, 314.660},
    };
    /* Circle readings and zenith angles on face I; slope distances in m. */
    AngleObservation obs[POINTS];
    const double readings[POINTS][3] = {
        {331, 32, 4.5}, {20, 59, 59.5}, {76, 23, 48.8}, {157, 15, 54.4}, {221, 5, 11.9},
    };
    const double zeniths[POINTS][3] = {
        {88, 56, 22.5}, {87, 45, 38.7}, {91, 8, 38.6}, {90, 41, 23.6}, {89, 8, 23.9},
    };
    const double slope[POINTS] = {130.346, 158.788, 141.761, 123.934, 130.540};
    const double instrument_height = 1.550;
    const double target_heights[POINTS] = {1.300, 1.300, 1.300, 1.300, 1.300};

    int i;
    int status;
    for (i = 0; i < POINTS; ++i) {
        obs[i].Horizontal = angle((int)readings[i][0], (int)readings[i][1], readings[i][2]);
        obs[i].Zenith = angle((int)zeniths[i][0], (int)zeniths[i][1], zeniths[i][2]);
        obs[i].Value = 0.0;
    }

    printf("Free station, %d known points\n", POINTS);
    printf("  Point             Hz              V   Slope (m)\n");
    for (i = 0; i < POINTS; ++i) {
        printf("  %-6s  %14s  %14s  %9.3f\n", names[i], dms(obs[i].Horizontal, a),
               dms(obs[i].Zenith, b), slope[i]);
    }

    /* 1. Directions only: distances to the first three points. */
    double by_angles[3];
    status = LIB_RESA2D(obs, known, 3, by_angles);
    printf("\nFrom directions only (3 points) [%s]\n", status_text(status));
    for (i = 0; i < 3; ++i) {
        printf("  station -> %-6s  %9.3f m\n", names[i], by_angles[i]);
    }

    /* 2. Directions with distances: reduce each measurement, then fit. */
    StationRecord instrument;
    memset(&instrument, 0, sizeof instrument);
    instrument.InstrumentHeight = instrument_height;
    instrument.TargetHeight = target_heights[0];
    instrument.signA = 1;
    instrument.signB = 1;
    instrument.refractionMode = 1; /* curvature and refraction, k = 0.14 */
    DistanceRecord reduced[POINTS];
    for (i = 0; i < POINTS; ++i) {
        LIB_DistConvert(&instrument, 1.0, slope[i], obs[i].Zenith, &reduced[i]);
    }
    ResectionResult station;
    memset(&station, 0, sizeof station);
    status =
        LIB_RESDist(instrument_height, reduced, obs, known, target_heights, POINTS, &station, 0);
    printf("\nFrom directions and distances (%d points) [%s]\n", POINTS, status_text(status));
    printf("  Station  X %10.4f m   mX %6.4f m\n", station.X, station.mX);
    printf("           Y %10.4f m   mY %6.4f m\n", station.Y, station.mY);
    printf("           H %10.4f m   mH %6.4f m\n", station.H, station.mH);
    /* Already azimuth minus reading, in whole seconds, within a quarter circle
     * either way. */
    printf("  Orientation (azimuth minus reading) %s\n", dms(wrap(station.Orientation), a));
    for (i = 0; i < 3; ++i) {
        printf("  station -> %-6s  %9.3f m by angles, %9.3f m measured\n", names[i], by_angles[i],
               reduced[i].HorizontalDistance);
    }

    /* 3. Orientation of the circle from a backsight to K101. LIB_RESSetAngle
     * adds the reading minus the azimuth onto the value it is given; started
     * from 0, its negative is the orientation in the sense used above. */
    const SurveyPoint here = {station.X, station.Y, station.H};
    double reading_minus_azimuth = 0.0;
    double azimuth = 0.0;
    LIB_RESSetAngle(&here, &known[0], obs[0].Horizontal, &reading_minus_azimuth, &azimuth);
    printf("\nBacksight %s: azimuth %s, reading %s\n", names[0], dms(azimuth, a),
           dms(obs[0].Horizontal, b));
    printf("  Orientation (azimuth minus reading) %s\n", dms(wrap(-reading_minus_azimuth), c));
    return 0;
}
