/* "Where am I?" on a road: the crew measures points with the total station
 * and reads, for each, the chainage and offset from the centre line, the
 * direction of the road there, the design height and whether to cut or
 * fill. The road: a straight, a right-hand curve with spirals, a straight;
 * its profile a rise, a crest and a fall. */
#include "common.h"
#include "quillon.h"
#include "quillon/survey.h"

#include <math.h>
#include <stdio.h>
#include <string.h>

#define RECORDS 6
#define PROFILE_RECORDS 4

/* Chainage as painted on a peg: 0+123.456. */
static const char* chainage_text(double chainage, char* text)
{
    const long km = (long)(chainage / 1000.0);
    snprintf(text, 32, "%ld+%07.3f", km, chainage - km * 1000.0);
    return text;
}

static int build_road(HElement* road, VElement* profile)
{
    static const struct {
        unsigned char type;
        double length, radius;
        unsigned char turn, spiral;
    } design[RECORDS - 1] = {
        {1, 100.0, 0.0, 0, 0},  {3, 60.0, 200.0, 1, 0}, {2, 80.0, 200.0, 1, 0},
        {3, 60.0, 200.0, 1, 1}, {1, 120.0, 0.0, 0, 0},
    };
    memset(road, 0, RECORDS * sizeof *road);
    for (int i = 0; i < RECORDS - 1; ++i) {
        road[i].Type = design[i].type;
        road[i].Length = design[i].length;
        road[i].Radius = design[i].radius;
        road[i].Turn = design[i].turn;
        road[i].Spiral = design[i].spiral;
    }
    road[0].X = 5000.0;
    road[0].Y = 2000.0;
    road[0].Azimuth = angle(60, 0, 0.0);
    road[0].Chainage = 0.0;
    const qs_status built = qs_alignment_build(road, RECORDS, road);

    /* Profile: +2.5 % for 150 m, a 100 m crest to -1.5 %, then -1.5 %. */
    VElement grades[PROFILE_RECORDS];
    memset(grades, 0, sizeof grades);
    const double lengths[3] = {150.0, 100.0, 170.0};
    const double grades_out[3] = {0.025, -0.015, -0.015};
    for (int i = 0; i < 3; ++i) {
        grades[i].Type = i == 1 ? 2 : 1;
        grades[i].Given = 1;
        grades[i].Length = lengths[i];
        grades[i].GradeOut = grades_out[i];
    }
    grades[0].Elevation = 312.400;
    grades[0].GradeIn = 0.025;
    const int profile_status = LIB_CalWay_V_Ele_MainPoint(grades, PROFILE_RECORDS, profile);
    if (built != QS_OK || profile_status != 0) {
        printf("road not built: %s / %s\n", qs_status_message(built), status_text(profile_status));
        return 1;
    }
    return 0;
}

static void print_road(const HElement* road)
{
    static const char* kinds[] = {"end", "straight", "arc", "spiral"};
    char ch[32], az[32];
    printf("Road centre line (exact main points)\n");
    printf("  %-8s  %9s  %11s  %11s  %14s\n", "element", "chainage", "X", "Y", "azimuth");
    for (int i = 0; i < RECORDS; ++i) {
        printf("  %-8s  %9s  %11.3f  %11.3f  %14s\n", kinds[road[i].Type],
               chainage_text(road[i].Chainage, ch), road[i].X, road[i].Y, dms(road[i].Azimuth, az));
    }
    printf("\n");
}

int main(void)
{
    HElement road[RECORDS];
    VElement profile[PROFILE_RECORDS];
    if (build_road(road, profile) != 0) {
        return 1;
    }
    print_road(road);

    /* Points as measured: X, Y, H. */
    static const struct {
        const char* name;
        SurveyPoint at;
    } measured[] = {
        {"P1", {5025.631, 2037.394, 313.650}}, {"P2", {5061.698, 2116.241, 315.613}},
        {"P3", {5094.864, 2182.440, 316.923}}, {"P4", {5089.389, 2240.447, 316.215}},
        {"P5", {5055.023, 2369.100, 315.975}}, {"P6", {5057.410, 2412.695, 314.100}},
        {"P7", {4989.134, 1983.179, 312.400}},
    };
    char ch[32], az[32];
    printf("Where am I?\n");
    printf("  %-4s %10s %10s %8s | %9s %9s %14s %9s %12s\n", "pt", "X", "Y", "H", "chainage",
           "offset", "road azimuth", "design H", "cut/fill");
    for (size_t i = 0; i < sizeof measured / sizeof measured[0]; ++i) {
        const SurveyPoint* p = &measured[i].at;
        qs_design_check check;
        const qs_status status = qs_road_check(road, RECORDS, profile, PROFILE_RECORDS, p, &check);
        printf("  %-4s %10.3f %10.3f %8.3f | ", measured[i].name, p->X, p->Y, p->H);
        if (status != QS_OK) {
            printf("%s\n", status == QS_OUTSIDE_ALIGNMENT ? "beyond the ends of the road"
                                                          : qs_status_message(status));
            continue;
        }
        /* Left or right of the centre line, cut or fill, as read to the mm. */
        const double offset = check.position.offset;
        const double cut_fill = check.cut_fill;
        const char* side = offset <= -0.0005 ? "L" : (offset >= 0.0005 ? "R" : " ");
        printf("%9s %s %7.3f %14s %9.3f %-4s %6.3f\n", chainage_text(check.position.chainage, ch),
               side, fabs(offset), dms(check.position.azimuth, az), check.design_height,
               cut_fill <= -0.0005 ? "fill" : (cut_fill >= 0.0005 ? "cut" : ""), fabs(cut_fill));
    }
    return 0;
}
