/* Two field jobs: a new point fixed by forward intersection from two known
 * points (by directions, then checked by distances), and the centre of a
 * column that cannot be occupied, from its two edges and a distance measured
 * on its face. */
#include "common.h"
#include "quillon.h"

#include <stdio.h>
#include <string.h>

int main(void)
{
    char a[32], b[32];

    /* Forward intersection: oriented directions observed at A and B. */
    FrontMeetInput meet;
    memset(&meet, 0, sizeof meet);
    meet.A.Point.X = 5000.000;
    meet.A.Point.Y = 2000.000;
    meet.B.Point.X = 5120.000;
    meet.B.Point.Y = 2310.000;
    meet.A.Direction = angle(30, 57, 49.5);
    meet.B.Direction = angle(336, 30, 5.2);
    SurveyPoint p;
    int status = LIB_CalFrontMeet(&meet, &p, 0);
    printf("Intersection by directions: A %s, B %s\n", dms(meet.A.Direction, a),
           dms(meet.B.Direction, b));
    printf("  New point: X %.4f  Y %.4f [%s]\n", p.X, p.Y, status_text(status));

    /* Same point by the distances taped from A and B. */
    meet.A.Distance = 408.167;
    meet.B.Distance = 250.799;
    SurveyPoint q;
    status = LIB_CalFrontMeet(&meet, &q, 1);
    printf("Intersection by distances: from A %.3f m, from B %.3f m\n", meet.A.Distance,
           meet.B.Distance);
    printf("  New point: X %.4f  Y %.4f [%s]\n", q.X, q.Y, status_text(status));
    printf("  Difference to the direction fix: dX %+.4f m  dY %+.4f m\n", q.X - p.X, q.Y - p.Y);

    /* Round object: a column sighted at both edges, the distance measured
     * on its face a little right of its centre line. */
    StationRecord station = station_over(5000.000, 2000.000, 312.450, 1.563, 1.563, 0);

    AngleObservation edges[3];
    memset(edges, 0, sizeof edges);
    edges[0].Horizontal = angle(52, 6, 40.0);  /* left edge */
    edges[1].Horizontal = angle(55, 53, 20.0); /* right edge */
    edges[2].Horizontal = angle(54, 30, 0.0);  /* measured on the face */
    DistanceRecord measured;
    LIB_DistConvert(&station, 1.0, 29.412, angle(91, 2, 10.0), &measured);
    /* Added to the measured distance: 0, as the distance already reaches the face. */
    const double column_radius = 0.0;

    DistAngleRecord centre;
    double radius_from_edges = 0.0;
    status = LIB_OS_Round(&station, &measured, edges, column_radius, &centre, &radius_from_edges);
    printf("Column: edges %s and ", dms(edges[0].Horizontal, a));
    printf("%s, face at %.3f m\n", dms(edges[1].Horizontal, b), measured.HorizontalDistance);
    printf("  Centre: X %.4f  Y %.4f  H %.4f [%s]\n", centre.X, centre.Y, centre.H,
           status_text(status));
    printf("  From the station: azimuth %s, horizontal %.4f m\n", dms(centre.Azimuth, a),
           centre.HorizontalDistance);
    printf("  Radius from the edges: %.4f m\n", radius_from_edges);
    return 0;
}
