/* A measurement as an instrument program makes it: reduce a slope
 * measurement, compute the measured point from the station, then join two
 * points. */
#include "common.h"
#include "quillon.h"

#include <stdio.h>
#include <string.h>

int main(void)
{
    char a[32], b[32];
    StationRecord station = station_over(5000.000, 2000.000, 312.450, 1.563, 1.300, 1);

    /* Shot: slope distance 412.387 m, zenith 87°12'30", direction 63°25'10". */
    const double slope = 412.387;
    const double zenith = angle(87, 12, 30.0);
    const double direction = angle(63, 25, 10.0);

    unsigned char face = 0;
    LIB_GetFaceStatus(zenith, &face);
    printf("Shot: slope %.3f m, zenith %s (%.1f\"), direction %s, face %s\n", slope, dms(zenith, a),
           zenith, dms(direction, b), face == 1 ? "I" : "II");

    DistanceRecord reduced;
    LIB_DistConvert(&station, 1.0, slope, zenith, &reduced);
    printf("Reduced: horizontal %.4f m, vertical %+.4f m, height difference %+.4f m\n",
           reduced.HorizontalDistance, reduced.VerticalDifference, reduced.HeightDifference);

    SurveyPoint p1;
    int status = LIB_MeasCoor(&station, &reduced, &direction, &p1);
    printf("Point 1: X %.4f  Y %.4f  H %.4f  [%s]\n", p1.X, p1.Y, p1.H, status_text(status));

    SurveyPoint pair[2];
    pair[0] = p1;
    pair[1].X = 5250.000;
    pair[1].Y = 2100.000;
    pair[1].H = 318.000;
    BearingRecord join;
    status = LIB_CalDist(pair, &join);
    printf("Join 1 -> 2: azimuth %s (%.4f\"), horizontal %.4f m, height difference %+.4f m [%s]\n",
           dms(join.Azimuth, a), join.Azimuth, join.HorizontalDistance, join.HeightDifference,
           status_text(status));

    double factor = 0.0;
    status = LIB_CalScale(station.H, 0.9996, &factor);
    printf("Combined scale at %.1f m with grid factor 0.9996: %.8f [%s]\n", station.H, factor,
           status_text(status));
    return 0;
}
