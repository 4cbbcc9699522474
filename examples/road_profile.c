/* A road setting-out sheet: the profile built from grade intersections, the
 * design elevation every 20 m along a straight centre line, and the left and
 * right edges of the carriageway from a width table and a cross-slope table. */
#include "common.h"
#include "quillon.h"

#include <stdio.h>
#include <string.h>

/* Chainage printed the way it is painted on a peg: 0+240.000. */
static const char* station_text(double chainage, char* text)
{
    const long km = (long)(chainage / 1000.0);
    snprintf(text, 32, "%ld+%07.3f", km, chainage - km * 1000.0);
    return text;
}

static VElement grade_point(unsigned char type, double chainage, double elevation, double radius)
{
    VElement p;
    memset(&p, 0, sizeof p);
    p.Type = type;
    p.VertexChainage = chainage;
    p.VertexElevation = elevation;
    p.Given = 0; /* radius given, length computed */
    p.Radius = radius;
    return p;
}

int main(void)
{
    char a[32];
    static const char* kinds[] = {"end", "grade", "parabola", "circle"};

    /* Centre line: a straight from A to B, chainage 0 at A. */
    const SurveyPoint A = {5000.000, 2000.000, 0.0};
    const SurveyPoint B = {5300.000, 2400.000, 0.0};
    double azimuth = 0.0;
    double length = 0.0;
    LIB_CalAZ(&A, &B, &azimuth);
    LIB_Cal2PointDist(&A, &B, &length, 0);
    printf("Centre line A -> B: azimuth %s, length %.3f m\n\n", dms(azimuth, a), length);

    /* Grade intersections: a crest rounded by a parabola, a sag by a circle. */
    VElement points[4];
    points[0] = grade_point(0, 0.0, 312.400, 0.0);
    points[1] = grade_point(2, 180.0, 318.700, 2000.0);
    points[2] = grade_point(3, 360.0, 313.300, 2000.0);
    points[3] = grade_point(0, 500.0, 315.400, 0.0);
    VElement profile[81];
    unsigned char records = 0;
    int status = LIB_CalWay_V_Cross_MainPoint(points, 4, profile, &records);
    printf("Profile from grade intersections [%s]\n", status_text(status));
    if (status != 0) {
        return 1;
    }
    printf("  %-9s  %-9s  %9s  %8s  %9s  %8s\n", "element", "start", "elevation", "grade %",
           "length", "radius");
    for (int i = 0; i < records; ++i) {
        const VElement* e = &profile[i];
        printf("  %-9s  %-9s  %9.3f  %+8.3f", kinds[e->Type], station_text(e->Chainage, a),
               e->Elevation, e->GradeIn * 100.0);
        if (e->Type == 1) {
            printf("  %9.3f", e->Length);
        } else if (e->Type >= 2) {
            printf("  %9.3f  %8.1f", e->Length, e->Radius);
        }
        printf("\n");
    }

    /* Carriageway: the left lane widens from 3.5 m to 5 m between 200 and
     * 300; the cross fall of -2 % turns to a one-sided slope by 350. */
    const SectionRecord widths[] = {
        {0.0, 3.5, 3.5}, {200.0, 3.5, 3.5}, {300.0, 5.0, 3.5}, {500.0, 5.0, 3.5}};
    const SectionRecord slopes[] = {
        {0.0, -0.02, -0.02}, {250.0, -0.02, -0.02}, {350.0, 0.025, -0.025}, {500.0, 0.025, -0.025}};

    printf("\n%-9s  %10s %10s %8s | %10s %10s %8s | %10s %10s %8s\n", "Station", "Centre X", "Y",
           "H", "Left X", "Y", "H", "Right X", "Y", "H");
    for (double K = 0.0; K <= 500.0; K += 20.0) {
        SurveyPoint on_line;
        LIB_CalCoor(&A, azimuth, K, 0.0, &on_line);
        const TangentPoint centre = {on_line.X, on_line.Y, azimuth};

        double H = 0.0;
        status = LIB_CalWay_V_On(profile, records, K, &H);
        SectionRecord width, slope;
        if (status == 0) {
            status = LIB_CalWay_Width(widths, 4, K, &width, 0);
        }
        if (status == 0) {
            status = LIB_CalWay_SideSlope(slopes, 4, K, &slope, 0);
        }
        TangentPoint left, right;
        double left_H = 0.0, right_H = 0.0;
        if (status == 0) {
            status = LIB_CalWay_H_Side(&centre, &width, &left, 0);
        }
        if (status == 0) {
            status = LIB_CalWay_H_Side(&centre, &width, &right, 1);
        }
        if (status == 0) {
            status = LIB_CalWay_V_Side(&width, &slope, H, 0.0, 500.0, &left_H, 0);
        }
        if (status == 0) {
            status = LIB_CalWay_V_Side(&width, &slope, H, 0.0, 500.0, &right_H, 1);
        }
        if (status != 0) {
            printf("%-9s  %s\n", station_text(K, a), status_text(status));
            continue;
        }
        printf("%-9s  %10.3f %10.3f %8.3f | %10.3f %10.3f %8.3f | %10.3f %10.3f %8.3f\n",
               station_text(K, a), centre.X, centre.Y, H, left.X, left.Y, left_H, right.X, right.Y,
               right_H);
    }
    return 0;
}
