/* How far the device's road arithmetic lies from the exact curves, before a
 * user chooses between them:
 *   1. one transition curve: the device's three-term series
 *      (LIB_CalWay_H_Curve_On) against the exact clothoid
 *      (qs_transition_point), as the spiral's total turn grows;
 *   2. a whole table built by the device (LIB_CalWay_H_Ele_MainPoint): its
 *      points by chainage (LIB_CalWay_H_On) against each element evaluated
 *      exactly (qs_alignment_point), the gaps the device leaves at its
 *      joints (qs_alignment_joints), and its main points against the exact
 *      table of the same design (qs_alignment_build);
 *   3. a profile built by the device: its heights against each vertical
 *      element evaluated exactly (qs_profile_height). */
#include "common.h"
#include "quillon.h"
#include "quillon/survey.h"

#include <math.h>
#include <stdio.h>
#include <string.h>

#define MM 1000.0

static void spiral_series_against_exact(void)
{
    static const double turns[] = {0.05, 0.1, 0.25, 0.5, 0.75, 1.0, 1.25, 1.5, 1.75, 2.0};
    const double radius = 200.0;
    printf("1. Entry spiral to radius %.0f m, from (0, 0) heading north, turning right:\n"
           "   far end by the device's series minus the exact clothoid\n",
           radius);
    printf("   %8s %9s | %12s %12s %12s | %12s\n", "turn rad", "length m", "dX mm", "dY mm",
           "distance mm", "tangent \"");
    for (size_t i = 0; i < sizeof turns / sizeof turns[0]; ++i) {
        const double length = 2.0 * radius * turns[i];
        HElement spiral;
        memset(&spiral, 0, sizeof spiral);
        spiral.Type = 3;
        spiral.Length = length;
        spiral.Radius = radius;
        spiral.Turn = 1;
        PlanePoint device;
        double device_azimuth = 0.0;
        const int status = LIB_CalWay_H_Curve_On(&spiral, length, &device);
        LIB_CalWay_H_Curve_AZ(&spiral, length, &device_azimuth);
        const qs_transition curve = {0.0, 0.0, 0.0, 0.0, 1.0 / radius, length};
        qs_pose exact;
        qs_transition_point(&curve, length, &exact);
        if (status != 0) {
            printf("   %8.2f %9.1f | device: %s\n", turns[i], length, status_text(status));
            continue;
        }
        const double dx = device.X - exact.x;
        const double dy = device.Y - exact.y;
        printf("   %8.2f %9.1f | %12.4f %12.4f %12.4f | %12.4f\n", turns[i], length, dx * MM,
               dy * MM, sqrt(dx * dx + dy * dy) * MM, device_azimuth - exact.azimuth);
    }
    printf("   (the tangent differs only by the device's pi, 3.1415926)\n\n");
}

/* A mountain road: long spirals around tight curves, and a short one. */
#define ELEMENTS 11
static const struct {
    unsigned char type;
    double length, radius;
    unsigned char turn, spiral;
} DESIGN[ELEMENTS] = {
    {1, 150.0, 0.0, 0, 0},   {3, 240.0, 120.0, 1, 0}, {2, 60.0, 120.0, 1, 0},
    {3, 240.0, 120.0, 1, 1}, {1, 80.0, 0.0, 0, 0},    {3, 60.0, 300.0, 0, 0},
    {2, 120.0, 300.0, 0, 0}, {3, 60.0, 300.0, 0, 1},  {1, 100.0, 0.0, 0, 0},
    {3, 300.0, 150.0, 0, 0}, {3, 300.0, 150.0, 0, 1},
};

static void element_list(HElement* list)
{
    memset(list, 0, (ELEMENTS + 1) * sizeof *list);
    for (int i = 0; i < ELEMENTS; ++i) {
        list[i].Type = DESIGN[i].type;
        list[i].Length = DESIGN[i].length;
        list[i].Radius = DESIGN[i].radius;
        list[i].Turn = DESIGN[i].turn;
        list[i].Spiral = DESIGN[i].spiral;
    }
    list[0].X = 5000.0;
    list[0].Y = 2000.0;
    list[0].Azimuth = angle(30, 0, 0.0);
    list[0].Chainage = 0.0;
}

static const char* kind(const HElement* e)
{
    switch (e->Type) {
    case 1: return "straight";
    case 2: return "arc";
    case 3: return e->Spiral == 0 ? "entry spiral" : "exit spiral";
    default: return "end";
    }
}

static void device_table_against_exact(void)
{
    HElement list[ELEMENTS + 1], device[ELEMENTS + 1], exact[ELEMENTS + 1];
    element_list(list);
    int status = LIB_CalWay_H_Ele_MainPoint(list, ELEMENTS + 1, device);
    const qs_status exact_status = qs_alignment_build(list, ELEMENTS + 1, exact);
    if (status != 0 || exact_status != QS_OK) {
        printf("tables not built: %s / %s\n", status_text(status), qs_status_message(exact_status));
        return;
    }

    printf("2. A table built by the device (spirals turning up to 1 rad, radius 120 m)\n");
    printf("   a) points by chainage: LIB_CalWay_H_On minus each element evaluated exactly\n"
           "      from its own record (qs_alignment_point), every 50 m\n");
    printf("   %9s  %-13s | %10s %10s %10s\n", "chainage", "element", "dX mm", "dY mm", "dist. mm");
    const double end = device[ELEMENTS].Chainage;
    for (double chainage = 0.0; chainage <= end; chainage += 50.0) {
        TangentPoint on;
        qs_station_offset at;
        status = LIB_CalWay_H_On(device, ELEMENTS + 1, chainage, &on);
        const qs_status s = qs_alignment_point(device, ELEMENTS + 1, chainage, 0.0, &at);
        if (status != 0 || s != QS_OK) {
            continue;
        }
        const double dx = on.X - at.x, dy = on.Y - at.y;
        printf("   %9.1f  %-13s | %10.3f %10.3f %10.3f\n", chainage, kind(&device[at.element]),
               dx * MM, dy * MM, sqrt(dx * dx + dy * dy) * MM);
    }

    qs_joint joints[ELEMENTS];
    qs_alignment_joints(device, ELEMENTS + 1, joints);
    printf("\n   b) the device's joints: each element's exact end against the next record\n");
    printf("   %3s  %-13s | %10s %14s\n", "no", "element", "gap mm", "azimuth gap \"");
    for (int i = 0; i < ELEMENTS; ++i) {
        printf("   %3d  %-13s | %10.3f %14.4f\n", i, kind(&device[i]), joints[i].gap * MM,
               joints[i].azimuth_gap);
    }

    printf("\n   c) main points of the device's table minus the exact table of the same design\n");
    printf("   %3s %9s | %10s %10s %10s %12s\n", "no", "chainage", "dX mm", "dY mm", "dist. mm",
           "azimuth \"");
    for (int i = 0; i <= ELEMENTS; ++i) {
        const double dx = device[i].X - exact[i].X, dy = device[i].Y - exact[i].Y;
        double da = device[i].Azimuth - exact[i].Azimuth;
        da = da > 648000.0 ? da - 1296000.0 : (da < -648000.0 ? da + 1296000.0 : da);
        printf("   %3d %9.1f | %10.3f %10.3f %10.3f %12.4f\n", i, exact[i].Chainage, dx * MM,
               dy * MM, sqrt(dx * dx + dy * dy) * MM, da);
    }
}

static VElement grade_point(unsigned char type, double chainage, double elevation)
{
    VElement p;
    memset(&p, 0, sizeof p);
    p.Type = type;
    p.VertexChainage = chainage;
    p.VertexElevation = elevation;
    p.Radius = 2000.0; /* given */
    return p;
}

/* A crest rounded by a parabola and a sag by a circle, built by the device
 * from its grade intersections: heights by LIB_CalWay_V_On against each
 * element evaluated exactly (qs_profile_height), largest difference per
 * element, sampled every metre. */
static void device_profile_against_exact(void)
{
    VElement points[4], table[81];
    unsigned char records = 0;
    points[0] = grade_point(0, 0.0, 312.400);
    points[1] = grade_point(2, 180.0, 318.700);
    points[2] = grade_point(3, 360.0, 313.300);
    points[3] = grade_point(0, 500.0, 315.400);
    if (LIB_CalWay_V_Cross_MainPoint(points, 4, table, &records) != 0) {
        printf("profile not built\n");
        return;
    }
    static const char* kinds[] = {"end", "grade", "parabola", "circle"};
    printf("\n3. A profile built by the device: LIB_CalWay_V_On minus the exact height\n");
    printf("   %-9s %9s %9s | %16s\n", "element", "from", "to", "largest diff. mm");
    for (int i = 0; i + 1 < records; ++i) {
        double largest = 0.0;
        for (double k = table[i].Chainage; k <= table[i + 1].Chainage; k += 1.0) {
            double device = 0.0;
            qs_profile_point exact;
            if (LIB_CalWay_V_On(table, records, k, &device) == 0 &&
                qs_profile_height(table, records, k, &exact) == QS_OK &&
                fabs(device - exact.height) > fabs(largest)) {
                largest = device - exact.height;
            }
        }
        printf("   %-9s %9.3f %9.3f | %16.3f\n", kinds[table[i].Type], table[i].Chainage,
               table[i + 1].Chainage, largest * MM);
    }
}

int main(void)
{
    printf("Device road arithmetic against exact curves\n\n");
    spiral_series_against_exact();
    device_table_against_exact();
    device_profile_against_exact();
    return 0;
}
