/* A road setting-out table: the horizontal alignment of a road given by its
 * intersection points, the element table built from them, and the points to
 * stake out - every 20 m pile and every main point - with their chainage,
 * coordinates and forward azimuth. Each section is one function so that
 * further columns (profile heights, edge points) can be added per row. */
#include "common.h"
#include "quillon.h"

#include <stdio.h>
#include <string.h>

#define MAX_RECORDS 81
#define PILE_INTERVAL 20.0

typedef struct Alignment {
    HElement records[MAX_RECORDS];
    uint32_t count;
} Alignment;

/* Chainage in the field's kilometre form, e.g. 1+234.567. */
static const char* chainage_text(double chainage, char* text)
{
    const char* sign = chainage < 0.0 ? "-" : "";
    const double magnitude = chainage < 0.0 ? -chainage : chainage;
    const long km = (long)(magnitude / 1000.0);
    snprintf(text, 32, "%s%ld+%07.3f", sign, km, magnitude - km * 1000.0);
    return text;
}

static const char* element_name(const HElement* e)
{
    switch (e->Type) {
    case 0: return "end";
    case 1: return "straight";
    case 2: return e->Turn == 1 ? "arc right" : "arc left";
    case 3: return e->Spiral == 0 ? "entry spiral" : "exit spiral";
    default: return "?";
    }
}

/* Five intersection points: start, three curves, end. */
static int build_alignment(Alignment* alignment)
{
    CrossPoint polygon[5];
    memset(polygon, 0, sizeof polygon);
    const double points[5][5] = {
        /* X, Y, radius, entry spiral, exit spiral */
        {5000.000, 2000.000, 0.0, 0.0, 0.0},     {5250.000, 2120.000, 250.0, 50.0, 50.0},
        {5380.000, 2400.000, 200.0, 40.0, 40.0}, {5620.000, 2480.000, 300.0, 0.0, 0.0},
        {5760.000, 2700.000, 0.0, 0.0, 0.0},
    };
    for (int j = 0; j < 5; ++j) {
        polygon[j].X = points[j][0];
        polygon[j].Y = points[j][1];
        polygon[j].Radius = points[j][2];
        polygon[j].EntryLength = points[j][3];
        polygon[j].ExitLength = points[j][4];
    }
    polygon[1].Chainage = 500.000; /* chainage of the first intersection point */

    const int status =
        LIB_CalWay_H_Cross_MainPoint(polygon, 5, alignment->records, &alignment->count);
    printf("Intersection points\n");
    printf("  IP        X            Y       turn angle       radius  spirals\n");
    for (int j = 0; j < 5; ++j) {
        char turn[32] = "";
        if (j > 0 && j < 4) {
            dms(polygon[j].TurnAngle, turn);
        }
        printf("  %2d  %11.3f  %11.3f  %15s  %8.1f  %5.1f/%5.1f\n", j, polygon[j].X, polygon[j].Y,
               turn, polygon[j].Radius, polygon[j].EntryLength, polygon[j].ExitLength);
    }
    printf("Alignment built: %u records [%s]\n\n", (unsigned)alignment->count, status_text(status));
    return status;
}

static void print_element_table(const Alignment* alignment)
{
    char ch[32], az[32];
    printf("Element table\n");
    printf("  No  type          chainage            X            Y        azimuth     length"
           "    radius\n");
    for (uint32_t i = 0; i < alignment->count; ++i) {
        const HElement* e = &alignment->records[i];
        printf("  %2u  %-12s  %10s  %11.3f  %11.3f  %14s", (unsigned)i, element_name(e),
               chainage_text(e->Chainage, ch), e->X, e->Y, dms(e->Azimuth, az));
        if (e->Type == 1) {
            printf("  %9.3f\n", e->Length);
        } else if (e->Type == 2 || e->Type == 3) {
            printf("  %9.3f  %8.1f\n", e->Length, e->Radius);
        } else {
            printf("\n");
        }
    }
    printf("\n");
}

/* Main points (the chainages of the records) plus piles every 20 m. */
static int pile_list(const Alignment* alignment, double* piles, uint32_t* count)
{
    double main_points[MAX_RECORDS];
    for (uint32_t i = 0; i < alignment->count; ++i) {
        main_points[i] = alignment->records[i].Chainage;
    }
    return LIB_CalWay_Pile(main_points, (unsigned char)alignment->count, PILE_INTERVAL, piles,
                           count, 0);
}

static int is_main_point(const Alignment* alignment, double chainage)
{
    for (uint32_t i = 0; i < alignment->count; ++i) {
        const double gap = alignment->records[i].Chainage - chainage;
        if (gap < 0.001 && gap > -0.001) {
            return 1;
        }
    }
    return 0;
}

/* One row of the setting-out table: a point on the centre line. */
typedef struct StakeRow {
    double chainage;
    TangentPoint centre;
    int main_point;
    int status;
} StakeRow;

static void print_row_header(void) { printf("  chainage         X            Y        azimuth\n"); }

static void print_row(const StakeRow* row)
{
    char ch[32], az[32];
    printf("  %10s  %11.3f  %11.3f  %14s%s", chainage_text(row->chainage, ch), row->centre.X,
           row->centre.Y, dms(row->centre.Azimuth, az), row->main_point ? "  main point" : "");
    if (row->status != 0) {
        printf("  [%s]", status_text(row->status));
    }
    printf("\n");
}

static void print_setting_out_table(const Alignment* alignment)
{
    double piles[MAX_RECORDS];
    uint32_t count = 0;
    const int status = pile_list(alignment, piles, &count);
    printf("Setting-out table: %u points, piles every %.0f m [%s]\n", (unsigned)count,
           PILE_INTERVAL, status_text(status));
    if (status != 0) {
        return;
    }
    print_row_header();
    for (uint32_t j = 0; j < count; ++j) {
        StakeRow row;
        memset(&row, 0, sizeof row);
        row.chainage = piles[j];
        row.main_point = is_main_point(alignment, piles[j]);
        row.status = LIB_CalWay_H_On(alignment->records, (unsigned char)alignment->count, piles[j],
                                     &row.centre);
        print_row(&row);
    }
}

int main(void)
{
    Alignment alignment;
    memset(&alignment, 0, sizeof alignment);
    if (build_alignment(&alignment) != 0) {
        return 1;
    }
    print_element_table(&alignment);
    print_setting_out_table(&alignment);
    return 0;
}
