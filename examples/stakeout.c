/* A stakeout session: the station is set up, a design point is called up,
 * the prism is measured, and the instrument person reads out to the prism
 * how far to move. Forward and back, left and right are seen from the
 * instrument looking at the prism; the turn of the instrument is clockwise
 * or counter-clockwise seen from above, as the circle readings grow. */
#include "common.h"
#include "quillon.h"

#include <math.h>
#include <stdio.h>
#include <string.h>

static void print_move(const char* what, double amount, const char* positive, const char* negative)
{
    if (fabs(amount) < 0.0005) {
        printf("  %-9s on line\n", what);
    } else {
        printf("  %-9s move %.3f m %s\n", what, fabs(amount), amount > 0.0 ? positive : negative);
    }
}

int main(void)
{
    char a[32], b[32];
    StationRecord station = station_over(5000.000, 2000.000, 312.450, 1.563, 1.800, 1);

    SurveyPoint design;
    design.X = 5061.250;
    design.Y = 2087.400;
    design.H = 314.200;

    /* The prism as measured: slope distance, zenith angle, direction. */
    const double slope = 106.781;
    const double zenith = angle(88, 46, 15.0);
    const double direction = angle(54, 57, 40.0);

    DistanceRecord measured;
    LIB_DistConvert(&station, 1.0, slope, zenith, &measured);

    SOCoorResult so;
    int status = LIB_SO_Coor(&station, &measured, &direction, &design, &so);
    printf("Design point: X %.3f  Y %.3f  H %.3f\n", design.X, design.Y, design.H);
    printf("Shot: slope %.3f m, zenith %s, direction %s [%s]\n", slope, dms(zenith, a),
           dms(direction, b), status_text(status));
    if (status != 0) {
        return 1;
    }
    printf("Prism is at: X %.3f  Y %.3f  H %.3f\n", so.X, so.Y, so.H);
    /* The angle difference is the measured direction minus the design one:
     * a negative difference leaves the design direction clockwise of the
     * prism, and readings grow clockwise. */
    if (fabs(so.AngleDifference) < 0.05) {
        printf("The instrument points in the design direction\n");
    } else {
        printf("Turn the instrument %s %s to the design direction\n",
               dms(fabs(so.AngleDifference), a),
               so.AngleDifference < 0.0 ? "clockwise" : "counter-clockwise");
    }
    printf("To the prism (left and right as seen from the instrument looking at the prism):\n");
    /* The measured distance is longer than the design one: come back. */
    print_move("forward:", so.ForwardDifference, "back (toward the instrument)",
               "forward (away from the instrument)");
    /* A positive lateral difference puts the prism clockwise of the design
     * direction, to the right seen from the instrument: it moves left. */
    print_move("lateral:", so.LateralDifference, "left", "right");
    if (fabs(so.HeightDifference) < 0.0005) {
        printf("  height:   on grade\n");
    } else {
        printf("  height:   %s %.3f m\n", so.HeightDifference > 0.0 ? "cut" : "fill",
               fabs(so.HeightDifference));
    }
    printf("  distance: %+.3f m against the design\n", so.HorizontalDistanceDifference);

    /* The same check by design distance and angle, as the program does when
     * the point is given by polar values. */
    double design_azimuth = 0.0;
    const SurveyPoint at = {station.X, station.Y, station.H};
    LIB_CalAZ(&at, &design, &design_azimuth);
    double design_distance = 0.0;
    LIB_Cal2PointDist(&at, &design, &design_distance, 0);
    SODistAngleResult polar;
    status = LIB_SO_DistAngle(&station, &measured, &direction, design_distance, design_azimuth,
                              &polar, 2);
    printf("By distance and angle (measured minus design): distance %+.3f m, angle %s [%s]\n",
           polar.DistanceDifference, dms(polar.AngleDifference, a), status_text(status));
    return 0;
}
