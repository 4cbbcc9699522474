/* Reference vectors of the road family: horizontal elements, intersection
 * point polygons, element tables and piles, the profile and the cross
 * section.
 *
 * Inputs are realistic alignments most of the time (element tables built
 * from a few intersection points or elements, evaluated at chainages along
 * them), mixed with the values where a test flips: counts at their limits,
 * chainages within and just beyond the 0.001 tolerance, coordinates next to
 * the range limit, not-a-number.
 *
 * Element tables have room for 81 records. The client describes an output
 * block in at most 512 fields, so tables are copied into the output block
 * column by column without their padding bytes (which carry no data): every
 * column a function computes is listed field by field, since a platform's
 * mathematical library may round it differently in the last place; the
 * columns that are copies of the input or exact byte values are folded into
 * one hash per block (compared exactly).
 */
#include "qv.h"

#include <math.h>
#include <string.h>

#define LIMIT QUILLON_RANGE_LIMIT
#define H_CAPACITY 81
#define V_CAPACITY 81
#define POLYGON_CAPACITY 80

static const unsigned char turn_bytes[] = {0, 1};
static const unsigned char spiral_bytes[] = {0, 1};
static const unsigned char side_bytes[] = {0, 1, 0, 1, 2, 255};

/* ---- helpers ------------------------------------------------------------- */

/* FNV-1a over a byte range, continued from h. */
static uint32_t hash_bytes(const void* p, size_t n, uint32_t h)
{
    const unsigned char* b = p;
    size_t i;
    for (i = 0; i < n; ++i) {
        h ^= b[i];
        h *= 16777619u;
    }
    return h;
}

#define HASH_START 2166136261u

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

/* Bytes of a table record still holding the fill pattern of the call. */
static int untouched(const void* field, size_t n)
{
    const unsigned char* b = field;
    size_t i;
    for (i = 0; i < n; ++i) {
        if (b[i] != 0xA5) {
            return 0;
        }
    }
    return 1;
}

/* Element tables, copied column by column. */
struct htable {
    double X[H_CAPACITY];
    double Y[H_CAPACITY];
    double Azimuth[H_CAPACITY];
    double Chainage[H_CAPACITY];
    double Length[H_CAPACITY];
    int32_t rest;    /* hash of Type, Turn, Spiral and Radius (copies of the input) */
    int32_t touched; /* records with a field written */
};
#define HTABLE "X:d81 Y:d81 Azimuth:d81 Chainage:d81 Length:d81 rest:i touched:i"

static void pack_htable(const HElement* t, struct htable* o)
{
    uint32_t h = HASH_START;
    int32_t touched = 0;
    unsigned i;
    for (i = 0; i < H_CAPACITY; ++i) {
        const HElement* e = &t[i];
        o->X[i] = e->X;
        o->Y[i] = e->Y;
        o->Azimuth[i] = e->Azimuth;
        o->Chainage[i] = e->Chainage;
        o->Length[i] = e->Length;
        h = hash_bytes(&e->Type, 1, h);
        h = hash_bytes(&e->Turn, 1, h);
        h = hash_bytes(&e->Spiral, 1, h);
        h = hash_bytes(&e->Radius, sizeof e->Radius, h);
        if (!(untouched(&e->Type, 1) && untouched(&e->X, sizeof e->X) &&
              untouched(&e->Y, sizeof e->Y) && untouched(&e->Azimuth, sizeof e->Azimuth) &&
              untouched(&e->Length, sizeof e->Length) && untouched(&e->Radius, sizeof e->Radius) &&
              untouched(&e->Turn, 1) && untouched(&e->Spiral, 1) &&
              untouched(&e->Chainage, sizeof e->Chainage))) {
            ++touched;
        }
    }
    o->rest = (int32_t)h;
    o->touched = touched;
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
        HElement e;
        memset(&e, 0, sizeof e);
        e.Type = 1;
        e.Length = qv_uniform(g, 20.0, 900.0);
        list[i++] = e;
        if (spiral > 0.0 && i < count) {
            e.Type = 3;
            e.Length = spiral;
            e.Radius = radius;
            e.Turn = turn;
            e.Spiral = 0;
            list[i++] = e;
        }
        if (i < count) {
            e.Type = 2;
            e.Length = qv_uniform(g, 10.0, 0.8 * radius);
            e.Radius = radius;
            e.Turn = turn;
            e.Spiral = 0;
            list[i++] = e;
        }
        if (spiral > 0.0 && i < count) {
            e.Type = 3;
            e.Length = spiral;
            e.Radius = radius;
            e.Turn = turn;
            e.Spiral = 1;
            list[i++] = e;
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

/* ---- LIB_CalWay_H_Line_On, _H_Circle_On, _H_Curve_On ----------------------- */

struct hpoint_in {
    HElement element;
    double l;
};
struct hpoint_out {
    PlanePoint point;
};

static void line_on_generate(qv_gen* g, void* in_)
{
    struct hpoint_in* in = in_;
    in->element = h_element(g, 1);
    in->l = along(g, in->element.Length);
}

static void circle_on_generate(qv_gen* g, void* in_)
{
    struct hpoint_in* in = in_;
    in->element = h_element(g, 2);
    in->l = along(g, in->element.Length);
}

static void curve_on_generate(qv_gen* g, void* in_)
{
    struct hpoint_in* in = in_;
    in->element = h_element(g, 3);
    in->l = along(g, in->element.Length);
}

#define line_on_in hpoint_in
#define line_on_out hpoint_out
#define circle_on_in hpoint_in
#define circle_on_out hpoint_out
#define curve_on_in hpoint_in
#define curve_on_out hpoint_out

static int line_on_call(const void* in_, void* out_)
{
    const struct hpoint_in* in = in_;
    struct hpoint_out* out = out_;
    return QV_FN(LIB_CalWay_H_Line_On)(&in->element, in->l, &out->point);
}

static int circle_on_call(const void* in_, void* out_)
{
    const struct hpoint_in* in = in_;
    struct hpoint_out* out = out_;
    return QV_FN(LIB_CalWay_H_Circle_On)(&in->element, in->l, &out->point);
}

static int curve_on_call(const void* in_, void* out_)
{
    const struct hpoint_in* in = in_;
    struct hpoint_out* out = out_;
    return QV_FN(LIB_CalWay_H_Curve_On)(&in->element, in->l, &out->point);
}

/* ---- LIB_CalWay_H_Circle_AZ, _H_Curve_AZ --------------------------------- */

struct hazimuth_in {
    HElement element;
    double l;
};
struct hazimuth_out {
    double azimuth;
};
#define circle_az_in hazimuth_in
#define circle_az_out hazimuth_out
#define curve_az_in hazimuth_in
#define curve_az_out hazimuth_out

static void circle_az_generate(qv_gen* g, void* in_)
{
    struct hazimuth_in* in = in_;
    in->element = h_element(g, 2);
    in->l = along(g, in->element.Length);
}

static void curve_az_generate(qv_gen* g, void* in_)
{
    struct hazimuth_in* in = in_;
    in->element = h_element(g, 3);
    in->l = along(g, in->element.Length);
}

static int circle_az_call(const void* in_, void* out_)
{
    const struct hazimuth_in* in = in_;
    struct hazimuth_out* out = out_;
    return QV_FN(LIB_CalWay_H_Circle_AZ)(&in->element, in->l, &out->azimuth);
}

static int curve_az_call(const void* in_, void* out_)
{
    const struct hazimuth_in* in = in_;
    struct hazimuth_out* out = out_;
    return QV_FN(LIB_CalWay_H_Curve_AZ)(&in->element, in->l, &out->azimuth);
}

/* ---- LIB_CalWay_H_Curve_End ----------------------------------------------- */

struct curve_end_in {
    HElement element;
};
struct curve_end_out {
    TangentPoint end;
};

static void curve_end_generate(qv_gen* g, void* in_)
{
    struct curve_end_in* in = in_;
    in->element = h_element(g, 3);
    in->element.Spiral = 1;
}

static int curve_end_call(const void* in_, void* out_)
{
    const struct curve_end_in* in = in_;
    struct curve_end_out* out = out_;
    return QV_FN(LIB_CalWay_H_Curve_End)(&in->element, &out->end);
}

/* ---- LIB_CalWay_H_Cross_TurnAngle ----------------------------------------- */

struct turn_in {
    SurveyPoint points[3];
};
struct turn_out {
    double turn_angle;
};

static void turn_generate(qv_gen* g, void* in_)
{
    struct turn_in* in = in_;
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

static int turn_call(const void* in_, void* out_)
{
    const struct turn_in* in = in_;
    struct turn_out* out = out_;
    return QV_FN(LIB_CalWay_H_Cross_TurnAngle)(in->points, &out->turn_angle);
}

/* ---- LIB_CalWay_H_Cross_Length -------------------------------------------- */

struct cross_length_in {
    CrossPoint point;
};
struct cross_length_out {
    CrossLengths lengths;
};

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

static void cross_length_generate(qv_gen* g, void* in_)
{
    struct cross_length_in* in = in_;
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

static int cross_length_call(const void* in_, void* out_)
{
    const struct cross_length_in* in = in_;
    struct cross_length_out* out = out_;
    return QV_FN(LIB_CalWay_H_Cross_Length)(&in->point, &out->lengths);
}

/* ---- LIB_CalWay_H_Cross_MainPoint, _Full ----------------------------------- */

struct cross_in {
    CrossPoint polygon[POLYGON_CAPACITY];
    unsigned char m;
    unsigned char pad[7];
};
struct cross_out {
    double TurnAngle[POLYGON_CAPACITY]; /* written back into the polygon */
    struct htable table;
    int32_t record_count;
    int32_t polygon_rest; /* hash of the other polygon fields (never written) */
};
#define CROSS_LAYOUT "TurnAngle:d80 " HTABLE " record_count:i polygon_rest:i"
#define cross_full_in cross_in
#define cross_full_out cross_out

static void polygon_generate(qv_gen* g, struct cross_in* in, int full)
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

static void cross_generate(qv_gen* g, void* in_) { polygon_generate(g, in_, 0); }

static void cross_full_generate(qv_gen* g, void* in_) { polygon_generate(g, in_, 1); }

static void pack_cross(const CrossPoint* polygon, const HElement* table, uint32_t count,
                       struct cross_out* out)
{
    uint32_t h = HASH_START;
    unsigned i;
    for (i = 0; i < POLYGON_CAPACITY; ++i) {
        const CrossPoint* p = &polygon[i];
        out->TurnAngle[i] = p->TurnAngle;
        h = hash_bytes(&p->X, sizeof p->X, h);
        h = hash_bytes(&p->Y, sizeof p->Y, h);
        h = hash_bytes(&p->EntryLength, sizeof p->EntryLength, h);
        h = hash_bytes(&p->ExitLength, sizeof p->ExitLength, h);
        h = hash_bytes(&p->Radius, sizeof p->Radius, h);
        h = hash_bytes(&p->Chainage, sizeof p->Chainage, h);
    }
    out->polygon_rest = (int32_t)h;
    pack_htable(table, &out->table);
    out->record_count = (int32_t)count;
}

static int cross_call(const void* in_, void* out_)
{
    const struct cross_in* in = in_;
    CrossPoint polygon[POLYGON_CAPACITY];
    HElement table[H_CAPACITY];
    uint32_t count;
    int status;
    memcpy(polygon, in->polygon, sizeof polygon);
    memset(table, 0xA5, sizeof table);
    memset(&count, 0xA5, sizeof count);
    status = QV_FN(LIB_CalWay_H_Cross_MainPoint)(polygon, in->m, table, &count);
    pack_cross(polygon, table, count, out_);
    return status;
}

static int cross_full_call(const void* in_, void* out_)
{
    const struct cross_in* in = in_;
    CrossPoint polygon[POLYGON_CAPACITY];
    HElement table[H_CAPACITY];
    uint32_t count;
    int status;
    memcpy(polygon, in->polygon, sizeof polygon);
    memset(table, 0xA5, sizeof table);
    memset(&count, 0xA5, sizeof count);
    status = QV_FN(LIB_CalWay_H_Cross_MainPoint_Full)(polygon, in->m, table, &count);
    pack_cross(polygon, table, count, out_);
    return status;
}

/* ---- LIB_CalWay_H_Ele_MainPoint -------------------------------------------- */

struct ele_in {
    HElement elements[H_CAPACITY];
    unsigned char n;
    unsigned char last_type; /* Type byte of the output's last slot before the call */
    unsigned char pad[6];
};
struct ele_out {
    struct htable table;
};

static void ele_generate(qv_gen* g, void* in_)
{
    struct ele_in* in = in_;
    static const unsigned char last_types[] = {0xA5, 0xA5, 0xA5, 1, 0, 2};
    unsigned n = 2 + qv_below(g, 14);
    const unsigned kind = qv_below(g, 20);
    if (kind == 0) {
        static const unsigned char counts[] = {0, 1, 2, 81, 82, 255};
        n = counts[qv_below(g, 6)];
    } else if (kind == 1) {
        n = 40 + qv_below(g, 42);
    }
    element_list(g, in->elements, H_CAPACITY);
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

static int ele_call(const void* in_, void* out_)
{
    const struct ele_in* in = in_;
    struct ele_out* out = out_;
    HElement table[H_CAPACITY];
    int status;
    memset(table, 0xA5, sizeof table);
    if (in->n >= 1 && in->n <= H_CAPACITY) {
        table[in->n - 1].Type = in->last_type;
    }
    status = QV_FN(LIB_CalWay_H_Ele_MainPoint)(in->elements, in->n, table);
    pack_htable(table, &out->table);
    return status;
}

/* ---- LIB_CalWay_H_On -------------------------------------------------------- */

struct h_on_in {
    HElement table[H_CAPACITY];
    double chainage;
    unsigned char n;
    unsigned char pad[7];
};
struct h_on_out {
    TangentPoint point;
};

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

static void h_on_generate(qv_gen* g, void* in_)
{
    struct h_on_in* in = in_;
    HElement list[H_CAPACITY];
    double marks[H_CAPACITY];
    unsigned n = 2 + qv_below(g, 16);
    unsigned i;
    if (qv_chance(g, 10)) {
        n = 60 + qv_below(g, 22);
    }
    element_list(g, list, H_CAPACITY);
    list[0].Type = 1;
    memset(in->table, 0, sizeof in->table);
    QV_FN(LIB_CalWay_H_Ele_MainPoint)(list, (unsigned char)n, in->table);
    for (i = 0; i < n; ++i) {
        marks[i] = in->table[i].Chainage;
    }
    in->n = (unsigned char)n;
    if (qv_chance(g, 16)) {
        in->n = (unsigned char)(qv_chance(g, 2) ? 0 : 1 + qv_below(g, n));
    }
    in->chainage = chainage_on(g, in->table[0].Chainage, in->table[n - 1].Chainage, marks, n);
}

static int h_on_call(const void* in_, void* out_)
{
    const struct h_on_in* in = in_;
    struct h_on_out* out = out_;
    return QV_FN(LIB_CalWay_H_On)(in->table, in->n, in->chainage, &out->point);
}

/* ---- LIB_CalWay_Pile --------------------------------------------------------- */

struct pile_in {
    double chainages[H_CAPACITY];
    double interval;
    unsigned char m;
    unsigned char mode;
    unsigned char pad[6];
};
struct pile_out {
    double piles[H_CAPACITY];
    uint32_t count;
    unsigned char pad[4];
};

static void pile_generate(qv_gen* g, void* in_)
{
    struct pile_in* in = in_;
    static const double intervals[] = {0.0, 10.0, 20.0, 25.0, 50.0, 100.0};
    static const unsigned char modes[] = {0, 1};
    double c = qv_chance(g, 4) ? 0.0 : qv_uniform(g, 0.0, 20000.0);
    unsigned m = 2 + qv_below(g, 10);
    unsigned i;
    if (qv_chance(g, 12)) {
        static const unsigned char counts[] = {0, 1, 80, 81, 82, 255};
        m = counts[qv_below(g, 6)];
    }
    for (i = 0; i < H_CAPACITY; ++i) {
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

static int pile_call(const void* in_, void* out_)
{
    const struct pile_in* in = in_;
    struct pile_out* out = out_;
    return QV_FN(LIB_CalWay_Pile)(in->chainages, in->m, in->interval, out->piles, &out->count,
                                  in->mode);
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

struct v_line_in {
    VElement element;
    double chainage;
    unsigned char skip;
    unsigned char pad[7];
};
struct v_elevation_out {
    double elevation;
};
#define v_line_out v_elevation_out

static void v_line_generate(qv_gen* g, void* in_)
{
    struct v_line_in* in = in_;
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

static int v_line_call(const void* in_, void* out_)
{
    const struct v_line_in* in = in_;
    struct v_elevation_out* out = out_;
    return QV_FN(LIB_CalWay_V_Line_On)(&in->element, in->chainage, &out->elevation, in->skip);
}

struct v_curve_in {
    VElement element;
    double chainage;
    double elevation; /* what the output holds before the call */
};
#define v_curve_out v_elevation_out
#define v_circle_in v_curve_in
#define v_circle_out v_elevation_out

static void v_curve_generate(qv_gen* g, void* in_)
{
    struct v_curve_in* in = in_;
    in->element = v_curve(g, 2);
    in->chainage = chainage_along(g, in->element.Chainage, in->element.Length);
    if (qv_chance(g, 8)) {
        in->chainage = in->element.VertexChainage;
    }
    in->elevation = elevation_before(g);
}

static void v_circle_generate(qv_gen* g, void* in_)
{
    struct v_curve_in* in = in_;
    in->element = v_curve(g, 3);
    in->chainage = chainage_along(g, in->element.Chainage, in->element.Length);
    if (qv_chance(g, 8)) {
        in->chainage = in->element.Chainage + in->element.Length * 0.5;
    }
    in->elevation = elevation_before(g);
}

static int v_curve_call(const void* in_, void* out_)
{
    const struct v_curve_in* in = in_;
    struct v_elevation_out* out = out_;
    out->elevation = in->elevation;
    return QV_FN(LIB_CalWay_V_Curve_On)(&in->element, in->chainage, &out->elevation);
}

static int v_circle_call(const void* in_, void* out_)
{
    const struct v_curve_in* in = in_;
    struct v_elevation_out* out = out_;
    out->elevation = in->elevation;
    return QV_FN(LIB_CalWay_V_Circle_On)(&in->element, in->chainage, &out->elevation);
}

/* ---- vertical tables ---------------------------------------------------------- */

/* Vertical tables, copied column by column. The grades, Type and Given are
 * copies or quotients of the input and go into the hash; so do the vertex
 * columns where they are copies of the input (vertex == NULL). */
struct vcolumns {
    double* chainage;
    double* elevation;
    double* vertex_chainage;
    double* vertex_elevation;
    double* radius;
    double* length;
};

static void pack_vtable(const VElement* t, const struct vcolumns* c, int32_t* rest,
                        int32_t* touched)
{
    uint32_t h = HASH_START;
    int32_t written = 0;
    unsigned i;
    for (i = 0; i < V_CAPACITY; ++i) {
        const VElement* e = &t[i];
        c->chainage[i] = e->Chainage;
        c->elevation[i] = e->Elevation;
        c->radius[i] = e->Radius;
        c->length[i] = e->Length;
        if (c->vertex_chainage != NULL) {
            c->vertex_chainage[i] = e->VertexChainage;
            c->vertex_elevation[i] = e->VertexElevation;
        } else {
            h = hash_bytes(&e->VertexChainage, sizeof(double), h);
            h = hash_bytes(&e->VertexElevation, sizeof(double), h);
        }
        h = hash_bytes(&e->Type, 1, h);
        h = hash_bytes(&e->Given, 1, h);
        h = hash_bytes(&e->GradeIn, sizeof(double), h);
        h = hash_bytes(&e->GradeOut, sizeof(double), h);
        if (!(untouched(&e->Type, 1) && untouched(&e->Chainage, sizeof(double)) &&
              untouched(&e->Elevation, sizeof(double)) &&
              untouched(&e->VertexChainage, sizeof(double)) &&
              untouched(&e->VertexElevation, sizeof(double)) &&
              untouched(&e->Radius, sizeof(double)) && untouched(&e->Length, sizeof(double)) &&
              untouched(&e->Given, 1) && untouched(&e->GradeIn, sizeof(double)) &&
              untouched(&e->GradeOut, sizeof(double)))) {
            ++written;
        }
    }
    *rest = (int32_t)h;
    *touched = written;
}

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

struct v_ele_in {
    VElement elements[V_CAPACITY];
    unsigned char count;
    unsigned char pad[7];
};
struct v_ele_out {
    double Chainage[V_CAPACITY];
    double Elevation[V_CAPACITY];
    double VertexChainage[V_CAPACITY];
    double VertexElevation[V_CAPACITY];
    double Radius[V_CAPACITY];
    double Length[V_CAPACITY];
    int32_t rest; /* hash of Type, Given, GradeIn and GradeOut */
    int32_t touched;
};
#define V_ELE_LAYOUT                                                                               \
    "Chainage:d81 Elevation:d81 VertexChainage:d81 VertexElevation:d81 Radius:d81 Length:d81 "     \
    "rest:i touched:i"

static void v_ele_generate(qv_gen* g, void* in_)
{
    struct v_ele_in* in = in_;
    unsigned count = 2 + qv_below(g, 12);
    const unsigned kind = qv_below(g, 20);
    if (kind == 0) {
        static const unsigned char counts[] = {0, 1, 2, 81, 82, 255};
        count = counts[qv_below(g, 6)];
    } else if (kind == 1) {
        count = 30 + qv_below(g, 52);
    }
    profile_list(g, in->elements, V_CAPACITY);
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

static int v_ele_call(const void* in_, void* out_)
{
    const struct v_ele_in* in = in_;
    struct v_ele_out* out = out_;
    VElement table[V_CAPACITY];
    int status;
    memset(table, 0xA5, sizeof table);
    status = QV_FN(LIB_CalWay_V_Ele_MainPoint)(in->elements, in->count, table);
    {
        const struct vcolumns c = {out->Chainage,        out->Elevation, out->VertexChainage,
                                   out->VertexElevation, out->Radius,    out->Length};
        pack_vtable(table, &c, &out->rest, &out->touched);
    }
    return status;
}

/* ---- LIB_CalWay_V_On -------------------------------------------------------------- */

struct v_on_in {
    VElement table[V_CAPACITY];
    double chainage;
    unsigned char count;
    unsigned char pad[7];
};
#define v_on_out v_elevation_out

static void v_on_generate(qv_gen* g, void* in_)
{
    struct v_on_in* in = in_;
    VElement list[V_CAPACITY];
    double marks[V_CAPACITY];
    unsigned count = 2 + qv_below(g, 12);
    unsigned i;
    if (qv_chance(g, 10)) {
        count = 60 + qv_below(g, 22);
    }
    profile_list(g, list, V_CAPACITY);
    memset(in->table, 0, sizeof in->table);
    QV_FN(LIB_CalWay_V_Ele_MainPoint)(list, (unsigned char)count, in->table);
    for (i = 0; i < count; ++i) {
        marks[i] = in->table[i].Chainage;
    }
    in->count = (unsigned char)count;
    if (qv_chance(g, 16)) {
        in->count = (unsigned char)(qv_chance(g, 2) ? 0 : 1);
    }
    in->chainage =
        chainage_on(g, in->table[0].Chainage, in->table[count - 1].Chainage, marks, count);
}

static int v_on_call(const void* in_, void* out_)
{
    const struct v_on_in* in = in_;
    struct v_elevation_out* out = out_;
    return QV_FN(LIB_CalWay_V_On)(in->table, in->count, in->chainage, &out->elevation);
}

/* ---- LIB_CalWay_V_Cross_MainPoint -------------------------------------------------- */

#define V_POINTS 80
struct v_cross_in {
    VElement points[V_POINTS];
    unsigned char count;
    unsigned char pad[7];
};
#define V_POINTS_LISTED 44
struct v_cross_out {
    /* curve fields written back into the points */
    double PointChainage[V_POINTS_LISTED];
    double PointElevation[V_POINTS_LISTED];
    double PointRadius[V_POINTS_LISTED];
    double PointLength[V_POINTS_LISTED];
    double Chainage[V_CAPACITY];
    double Elevation[V_CAPACITY];
    double Radius[V_CAPACITY];
    double Length[V_CAPACITY];
    int32_t rest; /* hash of Type, Given, grades and vertices (copies and quotients) */
    int32_t touched;
    int32_t points_rest; /* hash of the point fields not listed */
    int32_t table_count;
};
#define V_CROSS_LAYOUT                                                                             \
    "PointChainage:d44 PointElevation:d44 PointRadius:d44 PointLength:d44 Chainage:d81 "           \
    "Elevation:d81 Radius:d81 Length:d81 rest:i touched:i points_rest:i table_count:i"

static void v_cross_generate(qv_gen* g, void* in_)
{
    struct v_cross_in* in = in_;
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
        if (i >= V_POINTS_LISTED) {
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

static int v_cross_call(const void* in_, void* out_)
{
    const struct v_cross_in* in = in_;
    struct v_cross_out* out = out_;
    VElement points[V_POINTS];
    VElement table[V_CAPACITY];
    unsigned char count;
    uint32_t h = HASH_START;
    unsigned i;
    int status;
    memcpy(points, in->points, sizeof points);
    memset(table, 0xA5, sizeof table);
    memset(&count, 0xA5, sizeof count);
    status = QV_FN(LIB_CalWay_V_Cross_MainPoint)(points, in->count, table, &count);
    for (i = 0; i < V_POINTS; ++i) {
        const VElement* p = &points[i];
        if (i < V_POINTS_LISTED) {
            out->PointChainage[i] = p->Chainage;
            out->PointElevation[i] = p->Elevation;
            out->PointRadius[i] = p->Radius;
            out->PointLength[i] = p->Length;
        } else {
            h = hash_bytes(&p->Chainage, sizeof(double), h);
            h = hash_bytes(&p->Elevation, sizeof(double), h);
            h = hash_bytes(&p->Radius, sizeof(double), h);
            h = hash_bytes(&p->Length, sizeof(double), h);
        }
        h = hash_bytes(&p->Type, 1, h);
        h = hash_bytes(&p->Given, 1, h);
        h = hash_bytes(&p->VertexChainage, sizeof(double), h);
        h = hash_bytes(&p->VertexElevation, sizeof(double), h);
        h = hash_bytes(&p->GradeIn, sizeof(double), h);
        h = hash_bytes(&p->GradeOut, sizeof(double), h);
    }
    out->points_rest = (int32_t)h;
    {
        const struct vcolumns c = {out->Chainage, out->Elevation, NULL,
                                   NULL,          out->Radius,    out->Length};
        pack_vtable(table, &c, &out->rest, &out->touched);
    }
    out->table_count = count;
    return status;
}

/* ---- LIB_CalWay_Width, LIB_CalWay_SideSlope ---------------------------------------- */

#define SECTION_CAPACITY 81
struct section_in {
    SectionRecord table[SECTION_CAPACITY];
    double chainage;
    unsigned char count;
    unsigned char mode;
    unsigned char pad[6];
};
struct section_out {
    SectionRecord record;
};
#define width_in section_in
#define width_out section_out
#define slope_in section_in
#define slope_out section_out

static void section_generate(qv_gen* g, struct section_in* in, int slopes)
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

static void width_generate(qv_gen* g, void* in_) { section_generate(g, in_, 0); }

static void slope_generate(qv_gen* g, void* in_) { section_generate(g, in_, 1); }

static int width_call(const void* in_, void* out_)
{
    const struct section_in* in = in_;
    struct section_out* out = out_;
    return QV_FN(LIB_CalWay_Width)(in->table, in->count, in->chainage, &out->record, in->mode);
}

static int slope_call(const void* in_, void* out_)
{
    const struct section_in* in = in_;
    struct section_out* out = out_;
    return QV_FN(LIB_CalWay_SideSlope)(in->table, in->count, in->chainage, &out->record, in->mode);
}

/* ---- LIB_CalWay_H_Side ---------------------------------------------------------------- */

struct h_side_in {
    TangentPoint centre;
    SectionRecord widths;
    TangentPoint before; /* what the output holds before the call */
    unsigned char side;
    unsigned char pad[7];
};
struct h_side_out {
    TangentPoint edge;
};

static void h_side_generate(qv_gen* g, void* in_)
{
    struct h_side_in* in = in_;
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
    in->before.X = qv_chance(g, 3) ? qv_special(g) : qv_uniform(g, -1e5, 1e5);
    in->before.Y = qv_uniform(g, -1e5, 1e5);
    in->before.Azimuth = qv_chance(g, 3) ? qv_angle(g) : qv_uniform(g, 0.0, 1296000.0);
    in->side = qv_byte(g, side_bytes, 6);
}

static int h_side_call(const void* in_, void* out_)
{
    const struct h_side_in* in = in_;
    struct h_side_out* out = out_;
    out->edge = in->before;
    return QV_FN(LIB_CalWay_H_Side)(&in->centre, &in->widths, &out->edge, in->side);
}

/* ---- LIB_CalWay_V_Side ---------------------------------------------------------------- */

struct v_side_in {
    SectionRecord widths;
    SectionRecord slopes;
    double centre_elevation;
    double range_start;
    double range_end;
    double before; /* what the output holds before the call */
    unsigned char side;
    unsigned char pad[7];
};
#define v_side_out v_elevation_out

static void v_side_generate(qv_gen* g, void* in_)
{
    struct v_side_in* in = in_;
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
    in->before = elevation_before(g);
    if (qv_chance(g, 8)) {
        in->before = qv_chance(g, 2) ? nextafter(LIMIT, INFINITY) : -LIMIT;
    }
    in->side = qv_byte(g, side_bytes, 6);
}

static int v_side_call(const void* in_, void* out_)
{
    const struct v_side_in* in = in_;
    struct v_elevation_out* out = out_;
    out->elevation = in->before;
    return QV_FN(LIB_CalWay_V_Side)(&in->widths, &in->slopes, in->centre_elevation, in->range_start,
                                    in->range_end, &out->elevation, in->side);
}

/* ---- the family ------------------------------------------------------------------------ */

static const qv_function functions[] = {
    QV_FUNCTION(LIB_CalWay_H_Line_On, line_on, "X:d Y:d", 0),
    QV_FUNCTION(LIB_CalWay_H_Circle_On, circle_on, "X:d Y:d", 0),
    QV_FUNCTION(LIB_CalWay_H_Curve_On, curve_on, "X:d Y:d", 0),
    QV_FUNCTION(LIB_CalWay_H_Circle_AZ, circle_az, "azimuth:d", 0),
    QV_FUNCTION(LIB_CalWay_H_Curve_AZ, curve_az, "azimuth:d", 0),
    QV_FUNCTION(LIB_CalWay_H_Curve_End, curve_end, "X:d Y:d Azimuth:d", 0),
    QV_FUNCTION(LIB_CalWay_H_Cross_TurnAngle, turn, "turn_angle:d", 0),
    QV_FUNCTION(LIB_CalWay_H_Cross_Length, cross_length,
                "EntryTangent:d ExitTangent:d ArcLength:d CurveLength:d", 0),
    QV_FUNCTION(LIB_CalWay_H_Cross_MainPoint, cross, CROSS_LAYOUT, 128),
    QV_FUNCTION(LIB_CalWay_H_Cross_MainPoint_Full, cross_full, CROSS_LAYOUT, 128),
    QV_FUNCTION(LIB_CalWay_H_Ele_MainPoint, ele, HTABLE, 128),
    QV_FUNCTION(LIB_CalWay_H_On, h_on, "X:d Y:d Azimuth:d", 128),
    QV_FUNCTION(LIB_CalWay_Pile, pile, "piles:d81 count:i pad:x4", 128),
    QV_FUNCTION(LIB_CalWay_V_Line_On, v_line, "elevation:d", 0),
    QV_FUNCTION(LIB_CalWay_V_Curve_On, v_curve, "elevation:d", 0),
    QV_FUNCTION(LIB_CalWay_V_Circle_On, v_circle, "elevation:d", 0),
    QV_FUNCTION(LIB_CalWay_V_Ele_MainPoint, v_ele, V_ELE_LAYOUT, 128),
    QV_FUNCTION(LIB_CalWay_V_Cross_MainPoint, v_cross, V_CROSS_LAYOUT, 128),
    QV_FUNCTION(LIB_CalWay_V_On, v_on, "elevation:d", 128),
    QV_FUNCTION(LIB_CalWay_Width, width, "Chainage:d Left:d Right:d", 0),
    QV_FUNCTION(LIB_CalWay_SideSlope, slope, "Chainage:d Left:d Right:d", 0),
    QV_FUNCTION(LIB_CalWay_H_Side, h_side, "X:d Y:d Azimuth:d", 0),
    QV_FUNCTION(LIB_CalWay_V_Side, v_side, "elevation:d", 0),
};

const qv_family qv_family_road = {"road", functions, QV_COUNT(functions)};
