/* Inputs of the reference vectors, road family: horizontal elements,
 * intersection point polygons, element tables and piles, the profile and the
 * cross section.
 *
 * Inputs are realistic alignments most of the time (element tables built
 * from a few intersection points or elements, evaluated at chainages along
 * them), mixed with the values where a test flips: counts at their limits,
 * chainages within and just beyond the 0.001 tolerance, coordinates next to
 * the range limit, not-a-number.
 */
#include "qv_table.h"

#include <math.h>
#include <string.h>

#define LIMIT QUILLON_RANGE_LIMIT

static const unsigned char turn_bytes[] = {0, 1};
static const unsigned char spiral_bytes[] = {0, 1};
static const unsigned char side_bytes[] = {0, 1, 0, 1, 2, 255};

/* ---- helpers ------------------------------------------------------------- */

/* An azimuth in arc-seconds: mostly anywhere on the circle, now and then a
 * quarter-circle value, a neighbour of it, or something awkward. */
static double any_azimuth(qv_gen* g)
{
    return qv_chance(g, 6) ? qv_angle(g) : qv_uniform(g, 0.0, 1296000.0);
}

/* A coordinate of a site, now and then right next to the range limit. */
static double site_coordinate(qv_gen* g)
{
    const unsigned kind = qv_below(g, 40);
    if (kind == 0) {
        return qv_special(g);
    }
    if (kind == 1) {
        return LIMIT - qv_uniform(g, 0.0, 300.0);
    }
    if (kind == 2) {
        return -LIMIT + qv_uniform(g, 0.0, 300.0);
    }
    if (kind < 6) {
        return qv_coordinate(g);
    }
    return qv_uniform(g, -200000.0, 200000.0);
}

static double step_x(double x, double azimuth, double distance)
{
    return x + distance * cos(azimuth * QUILLON_RAD_PER_SEC);
}

static double step_y(double y, double azimuth, double distance)
{
    return y + distance * sin(azimuth * QUILLON_RAD_PER_SEC);
}

static HElement h_element(qv_gen* g, unsigned char type)
{
    HElement e;
    memset(&e, 0, sizeof e);
    e.Type = type;
    e.X = site_coordinate(g);
    e.Y = site_coordinate(g);
    e.Azimuth = any_azimuth(g);
    if (qv_chance(g, 10)) {
        /* next to the ends of the accepted azimuth range [0, 2592000) */
        e.Azimuth =
            qv_chance(g, 2) ? qv_uniform(g, 0.0, 3000.0) : 2592000.0 - qv_uniform(g, 0.0, 3000.0);
    }
    e.Length = qv_chance(g, 12) ? qv_length(g) : qv_uniform(g, 5.0, 600.0);
    e.Radius = qv_chance(g, 12) ? qv_length(g) : qv_uniform(g, 60.0, 3000.0);
    if (type == 3 && e.Radius < e.Length && qv_chance(g, 2)) {
        e.Radius = e.Length * qv_uniform(g, 1.0, 8.0);
    }
    e.Turn = qv_byte(g, turn_bytes, 2);
    e.Spiral = qv_byte(g, spiral_bytes, 2);
    e.Chainage = qv_uniform(g, 0.0, 30000.0);
    return e;
}

/* A distance along an element: inside it, at either end, or anything. */
static double along(qv_gen* g, double length)
{
    const unsigned kind = qv_below(g, 20);
    if (kind == 0) {
        return 0.0;
    }
    if (kind == 1) {
        return length;
    }
    if (kind < 4) {
        return qv_length(g);
    }
    return qv_uniform(g, 0.0, 1.0) * length;
}

/* The fields of an element of a designer's list (its position, azimuth and
 * chainage come from the table). */
static void set_element(HElement* e, unsigned char type, double length, double radius,
                        unsigned char turn, unsigned char spiral)
{
    e->Type = type;
    e->Length = length;
    e->Radius = radius;
    e->Turn = turn;
    e->Spiral = spiral;
}

/* A designer's element list: the first record carries the start point,
 * azimuth and chainage; then lines, entry curves, arcs and exit curves as
 * an alignment runs. Returns the number of elements written. */
static unsigned element_list(qv_gen* g, HElement* list, unsigned count)
{
    unsigned i = 0;
    memset(list, 0, sizeof(HElement) * count);
    while (i < count) {
        const unsigned char turn = (unsigned char)qv_below(g, 2);
        const double radius = qv_uniform(g, 150.0, 2500.0);
        const double spiral = qv_chance(g, 3) ? 0.0 : qv_uniform(g, 30.0, 150.0);
        set_element(&list[i++], 1, qv_uniform(g, 20.0, 900.0), 0.0, 0, 0);
        if (spiral > 0.0 && i < count) {
            set_element(&list[i++], 3, spiral, radius, turn, 0);
        }
        if (i < count) {
            set_element(&list[i++], 2, qv_uniform(g, 10.0, 0.8 * radius), radius, turn, 0);
        }
        if (spiral > 0.0 && i < count) {
            set_element(&list[i++], 3, spiral, radius, turn, 1);
        }
    }
    if (count > 0) {
        list[0].X = qv_uniform(g, -200000.0, 200000.0);
        list[0].Y = qv_uniform(g, -200000.0, 200000.0);
        list[0].Azimuth = any_azimuth(g);
        list[0].Chainage = qv_chance(g, 4) ? 0.0 : qv_uniform(g, 0.0, 20000.0);
        if (qv_chance(g, 4)) {
            list[0].Type = (unsigned char)(1 + qv_below(g, 3));
        }
    }
    return count;
}

/* How many records a table built by the case gets: mostly 2 up to
 * 1 + usual; for kind 0 a count at the limits or beyond them, for kind 1 a
 * long table of long_from records up to the capacity. The kind, drawn after
 * the usual count, picks the case's other irregularities. */
static unsigned table_records(qv_gen* g, unsigned usual, unsigned long_from, unsigned* kind)
{
    static const unsigned char limits[] = {0, 1, 2, 81, 82, 255};
    unsigned n = 2 + qv_below(g, usual);
    *kind = qv_below(g, 20);
    if (*kind == 0) {
        n = limits[qv_below(g, 6)];
    } else if (*kind == 1) {
        n = long_from + qv_below(g, ROAD_TABLE_CAPACITY + 1 - long_from);
    }
    return n;
}

/* ---- LIB_CalWay_H_Line_On, _Circle_On, _Curve_On, _Circle_AZ, _Curve_AZ -- */

/* An element of one type and a distance along it. */
static void element_and_distance(qv_gen* g, HElement* element, double* l, unsigned char type)
{
    *element = h_element(g, type);
    *l = along(g, element->Length);
}

#define ELEMENT_GENERATOR(function, type)                                                          \
    void function##_generate(qv_gen* g, function##_in* in)                                         \
    {                                                                                              \
        element_and_distance(g, &in->element, &in->l, type);                                       \
    }
ELEMENT_GENERATOR(LIB_CalWay_H_Line_On, 1)
ELEMENT_GENERATOR(LIB_CalWay_H_Circle_On, 2)
ELEMENT_GENERATOR(LIB_CalWay_H_Curve_On, 3)
ELEMENT_GENERATOR(LIB_CalWay_H_Circle_AZ, 2)
ELEMENT_GENERATOR(LIB_CalWay_H_Curve_AZ, 3)

/* ---- LIB_CalWay_H_Curve_End ----------------------------------------------- */

void LIB_CalWay_H_Curve_End_generate(qv_gen* g, LIB_CalWay_H_Curve_End_in* in)
{
    in->element = h_element(g, 3);
    in->element.Spiral = 1;
}

/* ---- LIB_CalWay_H_Cross_TurnAngle ----------------------------------------- */

void LIB_CalWay_H_Cross_TurnAngle_generate(qv_gen* g, LIB_CalWay_H_Cross_TurnAngle_in* in)
{
    const double azimuth = any_azimuth(g);
    double turn = qv_uniform(g, -640000.0, 640000.0);
    const unsigned kind = qv_below(g, 12);
    in->points[0] = qv_point(g);
    if (kind == 0) {
        static const double edges[] = {648000.0, -648000.0, 0.0, 647999.9, -647999.9};
        turn = edges[qv_below(g, 5)];
    }
    in->points[1] = in->points[0];
    in->points[1].X = step_x(in->points[0].X, azimuth, qv_uniform(g, 100.0, 3000.0));
    in->points[1].Y = step_y(in->points[0].Y, azimuth, qv_uniform(g, 100.0, 3000.0));
    in->points[2] = in->points[1];
    in->points[2].X = step_x(in->points[1].X, azimuth + turn, qv_uniform(g, 100.0, 3000.0));
    in->points[2].Y = step_y(in->points[1].Y, azimuth + turn, qv_uniform(g, 100.0, 3000.0));
    if (kind == 1) {
        in->points[1] = qv_point_near(g, &in->points[0]);
    } else if (kind == 2) {
        in->points[2] = qv_point_near(g, &in->points[1]);
    }
}

/* ---- LIB_CalWay_H_Cross_Length -------------------------------------------- */

/* Transition curves that leave an arc between them for the turn. */
static void spirals(qv_gen* g, CrossPoint* p, double turn)
{
    const double room = fabs(turn) * QUILLON_RAD_PER_SEC * p->Radius;
    p->EntryLength = qv_chance(g, 3) ? 0.0 : qv_uniform(g, 0.1, 0.45) * room;
    p->ExitLength = qv_chance(g, 3) ? p->EntryLength : qv_uniform(g, 0.0, 0.45) * room;
}

static CrossPoint cross_point(qv_gen* g)
{
    CrossPoint p;
    memset(&p, 0, sizeof p);
    p.X = qv_uniform(g, -200000.0, 200000.0);
    p.Y = qv_uniform(g, -200000.0, 200000.0);
    p.TurnAngle = qv_uniform(g, 18000.0, 400000.0) * (qv_chance(g, 2) ? 1.0 : -1.0);
    p.Radius = qv_uniform(g, 100.0, 2500.0);
    spirals(g, &p, p.TurnAngle);
    p.Chainage = qv_uniform(g, 0.0, 20000.0);
    return p;
}

void LIB_CalWay_H_Cross_Length_generate(qv_gen* g, LIB_CalWay_H_Cross_Length_in* in)
{
    in->point = cross_point(g);
    switch (qv_below(g, 24)) {
    case 0: in->point.TurnAngle = qv_angle(g); break;
    case 1: in->point.Radius = qv_length(g); break;
    case 2: in->point.EntryLength = qv_length(g); break;
    case 3: in->point.ExitLength = qv_special(g); break;
    case 4:
        /* transition curves longer than the turn allows: no arc left */
        in->point.TurnAngle = qv_uniform(g, 1000.0, 20000.0);
        in->point.EntryLength = 0.5 * in->point.Radius;
        in->point.ExitLength = 0.5 * in->point.Radius;
        break;
    case 5: in->point.TurnAngle = qv_chance(g, 2) ? 0.0 : 647999.0; break;
    default: break;
    }
}

/* ---- LIB_CalWay_H_Cross_MainPoint, _Full ----------------------------------- */

static void polygon_generate(qv_gen* g, LIB_CalWay_H_Cross_MainPoint_in* in, int full)
{
    const unsigned kind = qv_below(g, 24);
    unsigned m = 2 + qv_below(g, 8);
    double azimuth = any_azimuth(g);
    double x = qv_uniform(g, -200000.0, 200000.0);
    double y = qv_uniform(g, -200000.0, 200000.0);
    unsigned i;
    if (kind == 0) {
        static const unsigned char counts[] = {0, 1, 2, 3, 80, 81, 255};
        m = counts[qv_below(g, 7)];
    } else if (kind < 3) {
        m = 20 + qv_below(g, 61); /* long enough to fill the table */
    }
    for (i = 0; i < POLYGON_CAPACITY; ++i) {
        CrossPoint p = cross_point(g);
        const double leg = qv_uniform(g, 1200.0, 3500.0);
        p.X = x;
        p.Y = y;
        p.Radius = qv_uniform(g, 100.0, 900.0);
        p.Chainage = qv_uniform(g, 0.0, 20000.0);
        if (i + 1 < POLYGON_CAPACITY) {
            const double turn = qv_uniform(g, 18000.0, 250000.0) * (qv_chance(g, 2) ? 1.0 : -1.0);
            azimuth += turn;
            spirals(g, &p, turn);
            x = step_x(x, azimuth, leg);
            y = step_y(y, azimuth, leg);
        }
        p.TurnAngle = qv_chance(g, 2) ? 0.0 : qv_special(g); /* computed, not read */
        in->polygon[i] = p;
    }
    in->m = (unsigned char)m;
    switch (kind) {
    case 3:
        /* the first inner point's chainage: next to the range limit */
        in->polygon[1].Chainage = LIMIT - qv_uniform(g, 0.0, 2000.0);
        break;
    case 4:
        /* an invalid point */
        switch (qv_below(g, 5)) {
        case 0: in->polygon[qv_below(g, 4)].X = qv_special(g); break;
        case 1: in->polygon[1 + qv_below(g, 3)].Radius = qv_chance(g, 2) ? 0.0 : -5.0; break;
        case 2: in->polygon[1 + qv_below(g, 3)].EntryLength = qv_special(g); break;
        case 3: in->polygon[1].Chainage = qv_special(g); break;
        default: in->polygon[2].ExitLength = -0.5; break;
        }
        break;
    case 5:
        /* two points in one place */
        in->polygon[2].X = in->polygon[1].X;
        in->polygon[2].Y = in->polygon[1].Y;
        break;
    case 6:
        /* intersection points too close for their curves */
        in->polygon[2].X = in->polygon[1].X + qv_uniform(g, -300.0, 300.0);
        in->polygon[2].Y = in->polygon[1].Y + qv_uniform(g, -300.0, 300.0);
        break;
    case 7:
        /* consecutive curves without a straight between them, no transitions */
        for (i = 1; i < POLYGON_CAPACITY; ++i) {
            in->polygon[i].EntryLength = 0.0;
            in->polygon[i].ExitLength = 0.0;
        }
        break;
    default: break;
    }
    if (full && qv_chance(g, 5)) {
        in->polygon[1].Radius = 0.0;
    }
}

void LIB_CalWay_H_Cross_MainPoint_generate(qv_gen* g, LIB_CalWay_H_Cross_MainPoint_in* in)
{
    polygon_generate(g, in, 0);
}

void LIB_CalWay_H_Cross_MainPoint_Full_generate(qv_gen* g, LIB_CalWay_H_Cross_MainPoint_Full_in* in)
{
    polygon_generate(g, in, 1);
}

/* ---- LIB_CalWay_H_Ele_MainPoint -------------------------------------------- */

void LIB_CalWay_H_Ele_MainPoint_generate(qv_gen* g, LIB_CalWay_H_Ele_MainPoint_in* in)
{
    static const unsigned char last_types[] = {0xA5, 0xA5, 0xA5, 1, 0, 2};
    unsigned kind;
    const unsigned n = table_records(g, 14, 40, &kind);
    element_list(g, in->elements, ROAD_TABLE_CAPACITY);
    in->n = (unsigned char)n;
    in->last_type = qv_byte(g, last_types, 6);
    switch (kind) {
    case 2: in->elements[qv_below(g, 4)].Type = (unsigned char)(qv_chance(g, 2) ? 0 : 4); break;
    case 3: in->elements[0].Chainage = LIMIT - qv_uniform(g, 0.0, 3000.0); break;
    case 4: in->elements[0].X = LIMIT - qv_uniform(g, 0.0, 3000.0); break;
    case 5: in->elements[qv_below(g, 4)].Length = qv_special(g); break;
    case 6: in->elements[qv_below(g, 4)].Radius = qv_special(g); break;
    case 7: in->elements[qv_below(g, 4)].Turn = (unsigned char)qv_below(g, 256); break;
    case 8: in->elements[0].X = qv_special(g); break;
    default: break;
    }
}

/* ---- LIB_CalWay_H_On -------------------------------------------------------- */

/* A chainage on a table: anywhere along it, before or beyond it, or on a
 * record's chainage give or take the 0.001 tolerance. */
static double chainage_on(qv_gen* g, double start, double end, const double* marks, unsigned n)
{
    static const double offsets[] = {0.0, 0.0009, -0.0009, 0.001, -0.001, 0.0011, -0.0011};
    const unsigned kind = qv_below(g, 16);
    if (kind < 5 && n > 0) {
        return marks[qv_below(g, n)] + offsets[qv_below(g, 7)];
    }
    if (kind == 5) {
        return qv_special(g);
    }
    return qv_uniform(g, start - 50.0, end + 50.0);
}

/* How many records a table to look up in gets: mostly 2 up to 1 + usual,
 * now and then 60 or more. */
static unsigned lookup_records(qv_gen* g, unsigned usual)
{
    const unsigned n = 2 + qv_below(g, usual);
    return qv_chance(g, 10) ? 60 + qv_below(g, 22) : n;
}

/* The chainages of the first n records of a table (records of `size` bytes
 * with the chainage at offset `at`). */
static void chainages(const void* table, size_t size, size_t at, unsigned n, double* marks)
{
    const unsigned char* bytes = table;
    unsigned i;
    for (i = 0; i < n; ++i) {
        memcpy(&marks[i], bytes + i * size + at, sizeof(double));
    }
}

void LIB_CalWay_H_On_generate(qv_gen* g, LIB_CalWay_H_On_in* in)
{
    HElement list[ROAD_TABLE_CAPACITY];
    double marks[ROAD_TABLE_CAPACITY];
    const unsigned n = lookup_records(g, 16);
    element_list(g, list, ROAD_TABLE_CAPACITY);
    list[0].Type = 1;
    memset(in->table, 0, sizeof in->table);
    QV_FN(LIB_CalWay_H_Ele_MainPoint)(list, (unsigned char)n, in->table);
    chainages(in->table, sizeof(HElement), offsetof(HElement, Chainage), n, marks);
    in->n = (unsigned char)n;
    if (qv_chance(g, 16)) {
        in->n = (unsigned char)(qv_chance(g, 2) ? 0 : 1 + qv_below(g, n));
    }
    in->chainage = chainage_on(g, in->table[0].Chainage, in->table[n - 1].Chainage, marks, n);
}

/* ---- LIB_CalWay_Pile --------------------------------------------------------- */

void LIB_CalWay_Pile_generate(qv_gen* g, LIB_CalWay_Pile_in* in)
{
    static const double intervals[] = {0.0, 10.0, 20.0, 25.0, 50.0, 100.0};
    static const unsigned char modes[] = {0, 1};
    double c = qv_chance(g, 4) ? 0.0 : qv_uniform(g, 0.0, 20000.0);
    unsigned m = 2 + qv_below(g, 10);
    unsigned i;
    if (qv_chance(g, 12)) {
        static const unsigned char counts[] = {0, 1, 80, 81, 82, 255};
        m = counts[qv_below(g, 6)];
    }
    for (i = 0; i < ROAD_TABLE_CAPACITY; ++i) {
        in->chainages[i] = c;
        switch (qv_below(g, 12)) {
        case 0: c += qv_uniform(g, 0.0, 0.002); break;   /* near-duplicates */
        case 1: c = floor(c / 20.0 + 1.0) * 20.0; break; /* on a pile */
        default: c += qv_uniform(g, 5.0, 150.0); break;
        }
    }
    in->interval = intervals[qv_below(g, 6)];
    if (qv_chance(g, 3)) {
        in->interval = qv_uniform(g, 0.5, 200.0);
    }
    if (qv_chance(g, 10)) {
        static const double edges[] = {-0.0, -1.0, LIMIT, 0.0005, NAN};
        in->interval = edges[qv_below(g, 5)];
        if (qv_chance(g, 3)) {
            in->interval = nextafter(LIMIT, INFINITY);
        }
    }
    if (qv_chance(g, 16)) {
        in->chainages[qv_below(g, 3)] = qv_special(g);
    }
    in->m = (unsigned char)m;
    in->mode = qv_byte(g, modes, 2);
}

/* ---- the profile: element helpers -------------------------------------------- */

static double grade(qv_gen* g) { return qv_uniform(g, -0.07, 0.07); }

/* A parabolic or circular vertical curve as a complete table holds it. */
static VElement v_curve(qv_gen* g, unsigned char type)
{
    VElement e;
    double d;
    double h;
    memset(&e, 0, sizeof e);
    e.Type = type;
    e.Chainage = qv_uniform(g, 0.0, 20000.0);
    e.Elevation = qv_uniform(g, 5.0, 3000.0);
    e.GradeIn = grade(g);
    e.GradeOut = qv_chance(g, 12) ? e.GradeIn : grade(g);
    e.Radius = qv_uniform(g, 1500.0, 30000.0);
    if (type == 2) {
        d = fabs(e.GradeIn - e.GradeOut);
        e.Length = d * e.Radius;
        h = e.Length * 0.5;
        e.VertexChainage = e.Chainage + h;
        e.VertexElevation = e.Elevation + h * e.GradeIn;
    } else {
        const double a1 = atan(e.GradeIn);
        const double a2 = atan(e.GradeOut);
        d = fabs(a1 - a2);
        e.Length = d * e.Radius;
        h = tan(d * 0.5) * e.Radius;
        e.VertexChainage = e.Chainage + h;
        e.VertexElevation = e.Elevation + sin(a1) * h;
    }
    e.Given = (unsigned char)qv_below(g, 2);
    if (qv_chance(g, 10)) {
        /* a curve running down to the datum */
        e.Elevation = qv_uniform(g, 0.0, 2.0);
        e.VertexElevation = e.Elevation - 1.0;
    }
    return e;
}

static double chainage_along(qv_gen* g, double start, double length)
{
    const unsigned kind = qv_below(g, 16);
    if (kind == 0) {
        return start;
    }
    if (kind == 1) {
        return start + length;
    }
    if (kind == 2) {
        return qv_special(g);
    }
    if (kind == 3) {
        return start + length + qv_uniform(g, 0.0, 20.0);
    }
    if (kind == 4) {
        return start - qv_uniform(g, 0.0, 20.0);
    }
    return start + qv_uniform(g, 0.0, 1.0) * length;
}

/* An elevation already in the output before the call. */
static double elevation_before(qv_gen* g)
{
    const unsigned kind = qv_below(g, 6);
    if (kind == 0) {
        return qv_special(g);
    }
    if (kind == 1) {
        double v;
        memset(&v, 0xA5, sizeof v);
        return v;
    }
    return qv_uniform(g, 0.0, 3000.0);
}

/* ---- LIB_CalWay_V_Line_On, _V_Curve_On, _V_Circle_On ----------------------- */

void LIB_CalWay_V_Line_On_generate(qv_gen* g, LIB_CalWay_V_Line_On_in* in)
{
    static const unsigned char skips[] = {0, 0, 0, 0, 1, 255};
    memset(&in->element, 0, sizeof in->element);
    in->element.Type = 1;
    in->element.Chainage = qv_uniform(g, 0.0, 20000.0);
    in->element.Elevation = qv_uniform(g, 0.0, 3000.0);
    in->element.GradeIn = grade(g);
    in->element.Length = qv_uniform(g, 20.0, 900.0);
    in->element.Given = 1;
    switch (qv_below(g, 10)) {
    case 0:
        /* falling through the datum */
        in->element.Elevation = qv_uniform(g, 0.0, 3.0);
        in->element.GradeIn = -0.05;
        break;
    case 1: in->element.Elevation = LIMIT - qv_uniform(g, 0.0, 5.0); break;
    case 2: in->element.GradeIn = qv_special(g); break;
    default: break;
    }
    in->chainage = chainage_along(g, in->element.Chainage, in->element.Length);
    in->skip = qv_byte(g, skips, 6);
}

void LIB_CalWay_V_Curve_On_generate(qv_gen* g, LIB_CalWay_V_Curve_On_in* in)
{
    in->element = v_curve(g, 2);
    in->chainage = chainage_along(g, in->element.Chainage, in->element.Length);
    if (qv_chance(g, 8)) {
        in->chainage = in->element.VertexChainage;
    }
    in->elevation = elevation_before(g);
}

void LIB_CalWay_V_Circle_On_generate(qv_gen* g, LIB_CalWay_V_Circle_On_in* in)
{
    in->element = v_curve(g, 3);
    in->chainage = chainage_along(g, in->element.Chainage, in->element.Length);
    if (qv_chance(g, 8)) {
        in->chainage = in->element.Chainage + in->element.Length * 0.5;
    }
    in->elevation = elevation_before(g);
}

/* ---- vertical tables ---------------------------------------------------------- */

/* A designer's profile: the first element carries the start chainage,
 * elevation and grade; grade lines and curves alternate. */
static void profile_list(qv_gen* g, VElement* list, unsigned count)
{
    double g_in = grade(g);
    unsigned i;
    memset(list, 0, sizeof(VElement) * count);
    for (i = 0; i < count; ++i) {
        VElement* e = &list[i];
        if (i % 2 == 0) {
            e->Type = 1;
            e->Given = 1;
            e->Length = qv_uniform(g, 50.0, 900.0);
            e->GradeOut = g_in;
            if (qv_chance(g, 8)) {
                /* a grade line given by a dummy radius */
                e->Given = 0;
                e->Radius = qv_uniform(g, 1.0, 100.0);
            }
        } else {
            e->Type = (unsigned char)(qv_chance(g, 2) ? 2 : 3);
            e->GradeOut = grade(g);
            e->Given = (unsigned char)qv_below(g, 2);
            if (e->Given == 0) {
                e->Radius = qv_uniform(g, 2000.0, 30000.0);
            } else {
                e->Length = qv_uniform(g, 40.0, 400.0);
            }
            g_in = e->GradeOut;
        }
    }
    if (count > 0) {
        list[0].Chainage = qv_chance(g, 4) ? 0.0 : qv_uniform(g, 0.0, 20000.0);
        list[0].Elevation = qv_uniform(g, 10.0, 3000.0);
        list[0].GradeIn = list[0].GradeOut;
        if (qv_chance(g, 4)) {
            list[0].Type = (unsigned char)(2 + qv_below(g, 2));
            list[0].Radius = qv_uniform(g, 2000.0, 30000.0);
            list[0].Given = 0;
            list[0].GradeOut = grade(g);
        }
    }
}

/* ---- LIB_CalWay_V_Ele_MainPoint ---------------------------------------------- */

void LIB_CalWay_V_Ele_MainPoint_generate(qv_gen* g, LIB_CalWay_V_Ele_MainPoint_in* in)
{
    unsigned kind;
    const unsigned count = table_records(g, 12, 30, &kind);
    profile_list(g, in->elements, ROAD_TABLE_CAPACITY);
    in->count = (unsigned char)count;
    switch (kind) {
    case 2: in->elements[qv_below(g, 4)].Type = (unsigned char)(qv_chance(g, 2) ? 0 : 4); break;
    case 3:
        in->elements[qv_below(g, 4)].GradeOut = qv_chance(g, 2) ? 1.0 : nextafter(1.0, 2.0);
        break;
    case 4: in->elements[0].GradeIn = qv_chance(g, 2) ? -1.0 : qv_special(g); break;
    case 5: in->elements[0].Elevation = qv_chance(g, 2) ? -12.0 : qv_special(g); break;
    case 6: in->elements[0].Chainage = LIMIT - qv_uniform(g, 0.0, 500.0); break;
    case 7: in->elements[qv_below(g, 4)].Given = (unsigned char)qv_below(g, 256); break;
    case 8:
        in->elements[1].Given = 1;
        in->elements[1].Length = qv_chance(g, 2) ? 0.0 : qv_special(g);
        break;
    case 9:
        /* a curve between equal grades */
        in->elements[1].GradeOut = in->elements[0].GradeIn;
        break;
    case 10: in->elements[0].Elevation = LIMIT - qv_uniform(g, 0.0, 3.0); break;
    default: break;
    }
}

/* ---- LIB_CalWay_V_On -------------------------------------------------------------- */

void LIB_CalWay_V_On_generate(qv_gen* g, LIB_CalWay_V_On_in* in)
{
    VElement list[ROAD_TABLE_CAPACITY];
    double marks[ROAD_TABLE_CAPACITY];
    const unsigned count = lookup_records(g, 12);
    profile_list(g, list, ROAD_TABLE_CAPACITY);
    memset(in->table, 0, sizeof in->table);
    QV_FN(LIB_CalWay_V_Ele_MainPoint)(list, (unsigned char)count, in->table);
    chainages(in->table, sizeof(VElement), offsetof(VElement, Chainage), count, marks);
    in->count = (unsigned char)count;
    if (qv_chance(g, 16)) {
        in->count = (unsigned char)(qv_chance(g, 2) ? 0 : 1);
    }
    in->chainage =
        chainage_on(g, in->table[0].Chainage, in->table[count - 1].Chainage, marks, count);
}

/* ---- LIB_CalWay_V_Cross_MainPoint -------------------------------------------------- */

#define V_POINTS QV_ELEMENTS(LIB_CalWay_V_Cross_MainPoint_in, points)

void LIB_CalWay_V_Cross_MainPoint_generate(qv_gen* g, LIB_CalWay_V_Cross_MainPoint_in* in)
{
    unsigned count = 2 + qv_below(g, 10);
    const unsigned kind = qv_below(g, 20);
    double chainage = qv_uniform(g, 0.0, 20000.0);
    double elevation = qv_uniform(g, 50.0, 2000.0);
    unsigned i;
    if (kind == 0) {
        static const unsigned char counts[] = {0, 1, 2, 80, 81, 255};
        count = counts[qv_below(g, 6)];
    } else if (kind == 1) {
        count = 30 + qv_below(g, 51);
    }
    for (i = 0; i < V_POINTS; ++i) {
        VElement* p = &in->points[i];
        static const unsigned char types[] = {2, 2, 3, 3, 0};
        memset(p, 0, sizeof *p);
        p->VertexChainage = chainage;
        p->VertexElevation = elevation;
        p->Type = types[qv_below(g, 5)];
        if (i >= PROFILE_POINTS_LISTED) {
            /* plain changes of grade only: nothing is written back beyond
             * the points listed in the output */
            p->Type = 0;
        }
        p->Given = (unsigned char)qv_below(g, 2);
        if (p->Given == 0) {
            p->Radius = qv_uniform(g, 2000.0, 25000.0);
        } else {
            p->Length = qv_uniform(g, 30.0, 250.0);
        }
        p->Chainage = qv_chance(g, 2) ? chainage : qv_uniform(g, chainage - 50.0, chainage);
        p->Elevation = qv_chance(g, 2) ? 0.0 : elevation;
        chainage += qv_uniform(g, 250.0, 1500.0);
        elevation += qv_uniform(g, -0.06, 0.06) * 600.0;
    }
    in->count = (unsigned char)count;
    switch (kind) {
    case 2: in->points[qv_below(g, 3)].VertexChainage = qv_special(g); break;
    case 3: in->points[1 + qv_below(g, 2)].Type = (unsigned char)(qv_chance(g, 2) ? 1 : 4); break;
    case 4: in->points[1].Given = (unsigned char)(2 + qv_below(g, 254)); break;
    case 5:
        in->points[1].Given = 1;
        in->points[1].Length = qv_chance(g, 2) ? 0.0 : qv_special(g);
        break;
    case 6:
        /* a grade steeper than 1 */
        in->points[1].VertexElevation =
            in->points[0].VertexElevation +
            2.0 * (in->points[1].VertexChainage - in->points[0].VertexChainage);
        break;
    case 7:
        /* curves that overlap the next grade intersection */
        in->points[1].Given = 1;
        in->points[1].Length = 4000.0;
        in->points[1].Type = 2;
        break;
    case 8: in->points[1].VertexElevation = -qv_uniform(g, 0.0, 30.0); break;
    default: break;
    }
}

/* ---- LIB_CalWay_Width, LIB_CalWay_SideSlope ---------------------------------------- */

#define SECTION_CAPACITY 81

static void section_generate(qv_gen* g, LIB_CalWay_Width_in* in, int slopes)
{
    static const unsigned char modes[] = {0, 0, 0, 1};
    double marks[SECTION_CAPACITY];
    double c = qv_uniform(g, 0.0, 20000.0);
    unsigned count = 1 + qv_below(g, 8);
    unsigned i;
    if (qv_chance(g, 10)) {
        static const unsigned char counts[] = {0, 1, 80, 81, 255};
        count = counts[qv_below(g, 5)];
    }
    for (i = 0; i < SECTION_CAPACITY; ++i) {
        SectionRecord* r = &in->table[i];
        r->Chainage = c;
        marks[i] = c;
        if (slopes) {
            r->Left = qv_uniform(g, -0.06, 0.06);
            r->Right = qv_chance(g, 3) ? -r->Left : qv_uniform(g, -0.06, 0.06);
        } else {
            r->Left = qv_uniform(g, 2.5, 15.0);
            r->Right = qv_chance(g, 3) ? r->Left : qv_uniform(g, 2.5, 15.0);
        }
        c += qv_chance(g, 16) ? 0.0 : qv_uniform(g, 10.0, 400.0);
    }
    switch (qv_below(g, 12)) {
    case 0:
        /* values on and beyond the bounds */
        if (slopes) {
            static const double edges[] = {1.0, -1.0, 1.0000001, -1.0000001, NAN};
            in->table[qv_below(g, 3)].Left = edges[qv_below(g, 5)];
            in->table[qv_below(g, 3)].Right = edges[qv_below(g, 5)];
        } else {
            static const double edges[] = {0.0, -0.0, LIMIT, -0.001, NAN};
            in->table[qv_below(g, 3)].Left = edges[qv_below(g, 5)];
            in->table[qv_below(g, 3)].Right = edges[qv_below(g, 5)];
        }
        break;
    case 1: in->table[qv_below(g, 3)].Chainage = qv_special(g); break;
    case 2:
        /* neighbours on the upper bound: an interpolation may round past it */
        for (i = 0; i < SECTION_CAPACITY; ++i) {
            const double top = slopes ? 1.0 : LIMIT;
            in->table[i].Left = i % 2 == 0 ? top : nextafter(top, 0.0);
            in->table[i].Right = i % 2 == 0 ? nextafter(top, 0.0) : top;
        }
        break;
    default: break;
    }
    in->count = (unsigned char)count;
    in->mode = qv_byte(g, modes, 4);
    {
        const unsigned listed = count < SECTION_CAPACITY ? count : SECTION_CAPACITY;
        in->chainage = chainage_on(g, marks[0], marks[listed > 0 ? listed - 1 : 0], marks, listed);
    }
}

void LIB_CalWay_Width_generate(qv_gen* g, LIB_CalWay_Width_in* in) { section_generate(g, in, 0); }

void LIB_CalWay_SideSlope_generate(qv_gen* g, LIB_CalWay_SideSlope_in* in)
{
    section_generate(g, in, 1);
}

/* ---- LIB_CalWay_H_Side ---------------------------------------------------------------- */

void LIB_CalWay_H_Side_generate(qv_gen* g, LIB_CalWay_H_Side_in* in)
{
    in->centre.X = site_coordinate(g);
    in->centre.Y = site_coordinate(g);
    in->centre.Azimuth = any_azimuth(g);
    if (qv_chance(g, 8)) {
        static const double edges[] = {0.0, 324000.0, 972000.0, 1296000.0, 2592000.0, -1.0};
        in->centre.Azimuth = edges[qv_below(g, 6)];
    }
    in->widths.Chainage = qv_uniform(g, 0.0, 20000.0);
    in->widths.Left = qv_chance(g, 10) ? qv_length(g) : qv_uniform(g, 0.0, 15.0);
    in->widths.Right = qv_chance(g, 10) ? qv_length(g) : qv_uniform(g, 0.0, 15.0);
    in->edge.X = qv_chance(g, 3) ? qv_special(g) : qv_uniform(g, -1e5, 1e5);
    in->edge.Y = qv_uniform(g, -1e5, 1e5);
    in->edge.Azimuth = qv_chance(g, 3) ? qv_angle(g) : qv_uniform(g, 0.0, 1296000.0);
    in->side = qv_byte(g, side_bytes, 6);
}

/* ---- LIB_CalWay_V_Side ---------------------------------------------------------------- */

void LIB_CalWay_V_Side_generate(qv_gen* g, LIB_CalWay_V_Side_in* in)
{
    static const double offsets[] = {0.0, 0.0009, 0.001, 0.0011, -0.0009, -0.001, -0.0011};
    const double k = qv_uniform(g, 0.0, 20000.0);
    in->widths.Chainage = k;
    in->widths.Left = qv_uniform(g, 2.5, 15.0);
    in->widths.Right = qv_uniform(g, 2.5, 15.0);
    in->slopes.Chainage = qv_chance(g, 2) ? k : qv_special(g);
    in->slopes.Left = qv_uniform(g, -0.06, 0.06);
    in->slopes.Right = qv_uniform(g, -0.06, 0.06);
    in->centre_elevation = qv_uniform(g, 0.0, 3000.0);
    in->range_start = k - qv_uniform(g, 0.0, 500.0);
    in->range_end = k + qv_uniform(g, 0.0, 500.0);
    switch (qv_below(g, 10)) {
    case 0: in->range_start = k - offsets[qv_below(g, 7)]; break;
    case 1: in->range_end = k + offsets[qv_below(g, 7)]; break;
    case 2:
        in->centre_elevation = (qv_chance(g, 2) ? LIMIT : -LIMIT) - qv_uniform(g, -0.2, 0.2);
        break;
    case 3: in->widths.Left = qv_special(g); break;
    case 4: in->slopes.Right = qv_special(g); break;
    case 5: in->range_start = in->range_end + 1.0; break;
    default: break;
    }
    in->elevation = elevation_before(g);
    if (qv_chance(g, 8)) {
        in->elevation = qv_chance(g, 2) ? nextafter(LIMIT, INFINITY) : -LIMIT;
    }
    in->side = qv_byte(g, side_bytes, 6);
}
