/*
 * device_sample.c - a sample of device calls with the bytes of every
 * argument, for the Python tests to repeat the same calls through the
 * package and compare every byte.
 *
 * One line per call:
 *   NAME STATUS ARG ARG ...
 * where each ARG is, in the order of the function's parameters,
 *   v:HEX          a value passed by value (its bytes)
 *   p:HEX>HEX      the array a pointer points to: its bytes before the call,
 *                  then after it (outputs are filled with 0xA5 first, so an
 *                  output left alone is compared too)
 * Inputs come from the generators of the platform vectors: ordinary values
 * with the awkward ones (zeros, the range limit, infinities, NaN) mixed in.
 *
 *   python_device_sample [CASES]
 */
#include "qv.h"

#include <math.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#define MAX_ARGS 8
#define MAX_BYTES 8192

typedef struct Argument {
    int pointer;
    const unsigned char* at;
    size_t size;
    unsigned char before[MAX_BYTES];
} Argument;

static struct {
    const char* name;
    int count;
    Argument args[MAX_ARGS];
} call;

static void begin(const char* name)
{
    call.name = name;
    call.count = 0;
}

static void add(int pointer, const void* at, size_t size)
{
    Argument* a = &call.args[call.count++];
    if (call.count > MAX_ARGS || size > MAX_BYTES) {
        fprintf(stderr, "%s: argument %d too large for the sample\n", call.name, call.count);
        exit(2);
    }
    a->pointer = pointer;
    a->at = at;
    a->size = size;
    memcpy(a->before, at, size);
}

#define VALUE(v) add(0, &(v), sizeof(v))
#define ARRAY(p, n) add(1, (p), (n) * sizeof *(p))

static void hex(const unsigned char* bytes, size_t n)
{
    size_t i;
    for (i = 0; i < n; ++i) {
        printf("%02x", bytes[i]);
    }
}

static void finish(int status)
{
    int i;
    printf("%s %d", call.name, status);
    for (i = 0; i < call.count; ++i) {
        const Argument* a = &call.args[i];
        printf(a->pointer ? " p:" : " v:");
        hex(a->before, a->size);
        if (a->pointer) {
            printf(">");
            hex(a->at, a->size);
        }
    }
    printf("\n");
}

#define FILL(x) memset(&(x), 0xA5, sizeof(x))

/* A sighting: the measured distances of a shot from a station. */
static DistanceRecord measured(qv_gen* g)
{
    DistanceRecord d;
    d.SlopeDistance = qv_length(g);
    d.HorizontalDistance = qv_chance(g, 8) ? qv_length(g) : d.SlopeDistance * 0.99;
    d.VerticalDifference = qv_uniform(g, -20.0, 20.0);
    d.HeightDifference = qv_uniform(g, -20.0, 20.0);
    return d;
}

static const unsigned char MODES[] = {0, 1, 2, 255};

/* ---- core ------------------------------------------------------------------ */

static void face(qv_gen* g)
{
    double zenith = qv_angle(g);
    unsigned char out;
    FILL(out);
    begin("LIB_GetFaceStatus");
    VALUE(zenith);
    ARRAY(&out, 1);
    finish(LIB_GetFaceStatus(zenith, &out));
}

static void sum(qv_gen* g)
{
    double values[20];
    double total = qv_chance(g, 3) ? 0.0 : qv_coordinate(g);
    unsigned char count = (unsigned char)qv_below(g, 21);
    unsigned i;
    for (i = 0; i < 20; ++i) {
        values[i] = qv_coordinate(g);
    }
    begin("LIB_Sum");
    ARRAY(values, 20);
    VALUE(count);
    ARRAY(&total, 1);
    finish(LIB_Sum(values, count, &total));
}

static void point_distance(qv_gen* g)
{
    SurveyPoint a = qv_point(g);
    SurveyPoint b = qv_point_near(g, &a);
    double distance;
    unsigned char mode = qv_byte(g, MODES, 4);
    FILL(distance);
    begin("LIB_Cal2PointDist");
    ARRAY(&a, 1);
    ARRAY(&b, 1);
    ARRAY(&distance, 1);
    VALUE(mode);
    finish(LIB_Cal2PointDist(&a, &b, &distance, mode));
}

static void azimuth(qv_gen* g)
{
    SurveyPoint a = qv_point(g);
    SurveyPoint b = qv_point_near(g, &a);
    double out;
    FILL(out);
    begin("LIB_CalAZ");
    ARRAY(&a, 1);
    ARRAY(&b, 1);
    ARRAY(&out, 1);
    finish(LIB_CalAZ(&a, &b, &out));
}

static void distance_angle(qv_gen* g)
{
    SurveyPoint a = qv_point(g);
    SurveyPoint b = qv_point_near(g, &a);
    unsigned char face_byte = qv_chance(g, 2) ? 1 : 255;
    DistAngleRecord out;
    FILL(out);
    begin("LIB_CalDistAngle");
    ARRAY(&a, 1);
    ARRAY(&b, 1);
    VALUE(face_byte);
    ARRAY(&out, 1);
    finish(LIB_CalDistAngle(&a, &b, face_byte, &out));
}

static void measured_point(qv_gen* g)
{
    StationRecord station = qv_site_station(g);
    DistanceRecord d = measured(g);
    double angle = qv_angle(g);
    SurveyPoint out;
    FILL(out);
    begin("LIB_MeasCoor");
    ARRAY(&station, 1);
    ARRAY(&d, 1);
    ARRAY(&angle, 1);
    ARRAY(&out, 1);
    finish(LIB_MeasCoor(&station, &d, &angle, &out));
}

static void polar(qv_gen* g)
{
    SurveyPoint from = qv_point(g);
    double angle = qv_angle(g);
    double distance = qv_length(g);
    double dh = qv_uniform(g, -50.0, 50.0);
    SurveyPoint out;
    FILL(out);
    begin("LIB_CalCoor");
    ARRAY(&from, 1);
    VALUE(angle);
    VALUE(distance);
    VALUE(dh);
    ARRAY(&out, 1);
    finish(LIB_CalCoor(&from, angle, distance, dh, &out));
}

static void join(qv_gen* g)
{
    SurveyPoint pair[2];
    BearingRecord out;
    pair[0] = qv_point(g);
    pair[1] = qv_point_near(g, &pair[0]);
    FILL(out);
    begin("LIB_CalDist");
    ARRAY(pair, 2);
    ARRAY(&out, 1);
    finish(LIB_CalDist(pair, &out));
}

static void reduction(qv_gen* g)
{
    StationRecord station = qv_site_station(g);
    double scale = qv_chance(g, 4) ? 1.0 : qv_uniform(g, 0.9995, 1.0005);
    double slope = qv_length(g);
    double zenith = qv_angle(g);
    DistanceRecord out;
    FILL(out);
    begin("LIB_DistConvert");
    ARRAY(&station, 1);
    VALUE(scale);
    VALUE(slope);
    VALUE(zenith);
    ARRAY(&out, 1);
    finish(LIB_DistConvert(&station, scale, slope, zenith, &out));
}

static void line_components(qv_gen* g)
{
    SurveyPoint line[2];
    SurveyPoint p;
    double along;
    double across;
    line[0] = qv_point(g);
    line[1] = qv_point_near(g, &line[0]);
    p = qv_point_around(g, &line[0], 0.0, 500.0);
    FILL(along);
    FILL(across);
    begin("LIB_CalLB");
    ARRAY(line, 2);
    ARRAY(&p, 1);
    ARRAY(&along, 1);
    ARRAY(&across, 1);
    finish(LIB_CalLB(line, &p, &along, &across));
}

static void scale(qv_gen* g)
{
    double height = qv_chance(g, 6) ? qv_special(g) : qv_uniform(g, -500.0, 5000.0);
    double grid = qv_chance(g, 6) ? qv_special(g) : qv_uniform(g, 0.999, 1.001);
    double out;
    FILL(out);
    begin("LIB_CalScale");
    VALUE(height);
    VALUE(grid);
    ARRAY(&out, 1);
    finish(LIB_CalScale(height, grid, &out));
}

/* ---- field ----------------------------------------------------------------- */

static void stakeout(qv_gen* g)
{
    StationRecord station = qv_site_station(g);
    DistanceRecord d = measured(g);
    double angle = qv_angle(g);
    SurveyPoint station_point = qv_station_point(&station);
    SurveyPoint design = qv_point_around(g, &station_point, 0.0, 300.0);
    SOCoorResult out;
    FILL(out);
    begin("LIB_SO_Coor");
    ARRAY(&station, 1);
    ARRAY(&d, 1);
    ARRAY(&angle, 1);
    ARRAY(&design, 1);
    ARRAY(&out, 1);
    finish(LIB_SO_Coor(&station, &d, &angle, &design, &out));
}

static void area(qv_gen* g)
{
    SurveyPoint points[12];
    SurveyPoint centre = qv_point(g);
    unsigned char count = (unsigned char)qv_below(g, 13);
    AreaResult out;
    unsigned i;
    for (i = 0; i < 12; ++i) {
        points[i] = qv_point_around(g, &centre, 1.0, 400.0);
    }
    FILL(out);
    begin("LIB_Area");
    VALUE(count);
    ARRAY(points, 12);
    ARRAY(&out, 1);
    finish(LIB_Area(count, points, &out));
}

static void missing_line(qv_gen* g)
{
    StationRecord station = qv_site_station(g);
    DistanceRecord d[2];
    double angles[2];
    double first = qv_uniform(g, 0.0, 2.0);
    double second = qv_uniform(g, 0.0, 2.0);
    MissLineResult out;
    d[0] = measured(g);
    d[1] = measured(g);
    angles[0] = qv_angle(g);
    angles[1] = qv_angle(g);
    FILL(out);
    if (qv_chance(g, 2)) {
        out.Azimuth = qv_angle(g);
    }
    begin("LIB_MissLine");
    ARRAY(&station, 1);
    ARRAY(d, 2);
    ARRAY(angles, 2);
    VALUE(first);
    VALUE(second);
    ARRAY(&out, 1);
    finish(LIB_MissLine(&station, d, angles, first, second, &out));
}

static void intersection(qv_gen* g)
{
    FrontMeetInput input;
    SurveyPoint out;
    unsigned char mode = qv_byte(g, MODES, 4);
    input.A.Point = qv_point(g);
    input.B.Point = qv_point_around(g, &input.A.Point, 0.0, 800.0);
    input.A.Direction = qv_angle(g);
    input.B.Direction = qv_angle(g);
    input.A.Distance = qv_length(g);
    input.B.Distance = qv_length(g);
    FILL(out);
    begin("LIB_CalFrontMeet");
    ARRAY(&input, 1);
    ARRAY(&out, 1);
    VALUE(mode);
    finish(LIB_CalFrontMeet(&input, &out, mode));
}

static void circle(qv_gen* g)
{
    SurveyPoint pts[3];
    SurveyPoint centre_point = qv_point(g);
    double radius;
    double centre[2];
    CirclePointPair list[9];
    int32_t count = (int32_t)qv_below(g, 9);
    unsigned char mode = qv_byte(g, MODES, 4);
    pts[0] = qv_point_around(g, &centre_point, 5.0, 200.0);
    pts[1] = qv_point_around(g, &centre_point, 5.0, 200.0);
    pts[2] = qv_chance(g, 8) ? pts[1] : qv_point_around(g, &centre_point, 5.0, 200.0);
    FILL(radius);
    FILL(centre);
    FILL(list);
    begin("LIB_CalCircle");
    ARRAY(pts, 3);
    ARRAY(&radius, 1);
    ARRAY(centre, 2);
    ARRAY(list, 9);
    VALUE(count);
    VALUE(mode);
    finish(LIB_CalCircle(pts, &radius, centre, list, count, mode));
}

/* ---- setup ------------------------------------------------------------------ */

static void resection(qv_gen* g)
{
    AngleObservation obs[3];
    SurveyPoint known[3];
    SurveyPoint station = qv_point(g);
    double distances[3];
    unsigned char n = (unsigned char)(qv_chance(g, 6) ? qv_below(g, 5) : 3);
    unsigned i;
    for (i = 0; i < 3; ++i) {
        known[i] = qv_point_around(g, &station, 20.0, 900.0);
        obs[i].Horizontal = qv_on_circle(qv_azimuth(station.X, station.Y, known[i].X, known[i].Y) +
                                         qv_uniform(g, -2.0, 2.0));
        obs[i].Zenith = qv_uniform(g, 300000.0, 348000.0);
        obs[i].Value = 0.0;
    }
    FILL(distances);
    begin("LIB_RESA2D");
    ARRAY(obs, 3);
    ARRAY(known, 3);
    VALUE(n);
    ARRAY(distances, 3);
    finish(LIB_RESA2D(obs, known, n, distances));
}

static void projection(qv_gen* g)
{
    SurveyPoint pts[3];
    ProjectionRecord out;
    pts[0] = qv_point(g);
    pts[1] = qv_point_near(g, &pts[0]);
    pts[2] = qv_point_around(g, &pts[0], 0.0, 300.0);
    FILL(out);
    begin("LIB_Project");
    ARRAY(pts, 3);
    ARRAY(&out, 1);
    finish(LIB_Project(pts, &out));
}

static void line_point(qv_gen* g)
{
    SurveyPoint pts[2];
    LinePosition position;
    SurveyPoint out;
    pts[0] = qv_point(g);
    pts[1] = qv_point_near(g, &pts[0]);
    position.Along = qv_uniform(g, -200.0, 200.0);
    position.Across = qv_chance(g, 8) ? qv_special(g) : qv_uniform(g, -50.0, 50.0);
    FILL(out);
    begin("LIB_LSO_Point");
    ARRAY(pts, 2);
    ARRAY(&position, 1);
    ARRAY(&out, 1);
    finish(LIB_LSO_Point(pts, &position, &out));
}

static void vertical_plane(qv_gen* g)
{
    StationRecord station = qv_site_station(g);
    SurveyPoint station_point = qv_station_point(&station);
    AngleObservation sight;
    SurveyPoint plane[2];
    PlaneHitRecord out;
    plane[0] = qv_point_around(g, &station_point, 10.0, 200.0);
    plane[1] = qv_point_around(g, &station_point, 10.0, 200.0);
    sight.Horizontal = qv_angle(g);
    sight.Zenith = qv_uniform(g, 250000.0, 400000.0);
    sight.Value = qv_length(g);
    FILL(out);
    begin("LIB_VPlane");
    ARRAY(&station, 1);
    ARRAY(&sight, 1);
    ARRAY(plane, 2);
    ARRAY(&out, 1);
    finish(LIB_VPlane(&station, &sight, plane, &out));
}

/* ---- road ------------------------------------------------------------------- */

/* A designer's list: lines, arcs and transition curves, the first record
 * carrying the start. */
static void element_list(qv_gen* g, HElement* list, unsigned n)
{
    unsigned i;
    memset(list, 0, n * sizeof *list);
    for (i = 0; i < n; ++i) {
        list[i].Type = (unsigned char)(1 + qv_below(g, 3));
        list[i].Length = qv_uniform(g, 10.0, 200.0);
        list[i].Radius = qv_uniform(g, 150.0, 900.0);
        list[i].Turn = (unsigned char)qv_below(g, 2);
        list[i].Spiral = (unsigned char)qv_below(g, 2);
    }
    list[0].X = qv_uniform(g, -1e5, 1e5);
    list[0].Y = qv_uniform(g, -1e5, 1e5);
    list[0].Azimuth = qv_uniform(g, 0.0, 1296000.0);
    list[0].Chainage = qv_uniform(g, 0.0, 5000.0);
}

static void element_table(qv_gen* g)
{
    HElement list[12];
    HElement table[12];
    unsigned char n = (unsigned char)(2 + qv_below(g, 11));
    element_list(g, list, 12);
    if (qv_chance(g, 6)) {
        list[qv_below(g, 4)].Length = qv_special(g);
    }
    FILL(table);
    begin("LIB_CalWay_H_Ele_MainPoint");
    ARRAY(list, 12);
    VALUE(n);
    ARRAY(table, 12);
    finish(LIB_CalWay_H_Ele_MainPoint(list, n, table));
}

static void chainage_point(qv_gen* g)
{
    HElement list[10];
    HElement table[10];
    unsigned char n = (unsigned char)(2 + qv_below(g, 9));
    double chainage;
    TangentPoint out;
    element_list(g, list, 10);
    list[0].Type = 1;
    memset(table, 0, sizeof table);
    LIB_CalWay_H_Ele_MainPoint(list, n, table);
    chainage = qv_uniform(g, table[0].Chainage - 20.0, table[n - 1].Chainage + 20.0);
    if (qv_chance(g, 5)) {
        chainage = table[qv_below(g, n)].Chainage + (qv_chance(g, 2) ? 0.0009 : -0.0011);
    }
    FILL(out);
    begin("LIB_CalWay_H_On");
    ARRAY(table, 10);
    VALUE(n);
    VALUE(chainage);
    ARRAY(&out, 1);
    finish(LIB_CalWay_H_On(table, n, chainage, &out));
}

static void transition_point(qv_gen* g)
{
    HElement element;
    double l;
    PlanePoint out;
    memset(&element, 0, sizeof element);
    element.Type = 3;
    element.X = qv_coordinate(g);
    element.Y = qv_coordinate(g);
    element.Azimuth = qv_angle(g);
    element.Length = qv_uniform(g, 20.0, 150.0);
    element.Radius = qv_chance(g, 10) ? qv_special(g) : qv_uniform(g, 100.0, 800.0);
    element.Turn = (unsigned char)qv_below(g, 3);
    element.Spiral = (unsigned char)qv_below(g, 2);
    l = qv_uniform(g, 0.0, element.Length);
    FILL(out);
    begin("LIB_CalWay_H_Curve_On");
    ARRAY(&element, 1);
    VALUE(l);
    ARRAY(&out, 1);
    finish(LIB_CalWay_H_Curve_On(&element, l, &out));
}

static void intersection_points(qv_gen* g)
{
    CrossPoint polygon[6];
    HElement table[81];
    uint32_t record_count;
    unsigned char m = (unsigned char)(qv_chance(g, 8) ? qv_below(g, 7) : 2 + qv_below(g, 5));
    double azimuth = qv_uniform(g, 0.0, 6.283);
    unsigned i;
    memset(polygon, 0, sizeof polygon);
    polygon[0].X = qv_uniform(g, -1e5, 1e5);
    polygon[0].Y = qv_uniform(g, -1e5, 1e5);
    for (i = 1; i < 6; ++i) {
        const double leg = qv_uniform(g, 300.0, 900.0);
        azimuth += qv_uniform(g, -0.6, 0.6);
        polygon[i].X = polygon[i - 1].X + leg * cos(azimuth);
        polygon[i].Y = polygon[i - 1].Y + leg * sin(azimuth);
        polygon[i].Radius = qv_uniform(g, 200.0, 600.0);
        polygon[i].EntryLength = qv_chance(g, 3) ? 0.0 : qv_uniform(g, 20.0, 80.0);
        polygon[i].ExitLength = qv_chance(g, 3) ? 0.0 : qv_uniform(g, 20.0, 80.0);
    }
    polygon[1].Chainage = qv_uniform(g, 0.0, 3000.0);
    FILL(table);
    FILL(record_count);
    begin("LIB_CalWay_H_Cross_MainPoint");
    ARRAY(polygon, 6);
    VALUE(m);
    ARRAY(table, 81);
    ARRAY(&record_count, 1);
    finish(LIB_CalWay_H_Cross_MainPoint(polygon, m, table, &record_count));
}

static void piles(qv_gen* g)
{
    double chainages[8];
    double out[81];
    uint32_t count;
    unsigned char m = (unsigned char)qv_below(g, 9);
    double interval = qv_chance(g, 8) ? qv_special(g) : qv_uniform(g, 5.0, 60.0);
    unsigned char mode = qv_byte(g, MODES, 4);
    unsigned i;
    chainages[0] = qv_uniform(g, 0.0, 1000.0);
    for (i = 1; i < 8; ++i) {
        chainages[i] = chainages[i - 1] + qv_uniform(g, 0.0, 60.0);
    }
    FILL(out);
    FILL(count);
    begin("LIB_CalWay_Pile");
    ARRAY(chainages, 8);
    VALUE(m);
    VALUE(interval);
    ARRAY(out, 81);
    ARRAY(&count, 1);
    VALUE(mode);
    finish(LIB_CalWay_Pile(chainages, m, interval, out, &count, mode));
}

static void vertical_points(qv_gen* g)
{
    VElement points[6];
    VElement table[81];
    unsigned char table_count;
    unsigned char count = (unsigned char)(qv_chance(g, 8) ? qv_below(g, 7) : 2 + qv_below(g, 5));
    unsigned i;
    memset(points, 0, sizeof points);
    points[0].VertexChainage = qv_uniform(g, 0.0, 1000.0);
    points[0].VertexElevation = qv_uniform(g, 100.0, 500.0);
    for (i = 0; i < 6; ++i) {
        if (i > 0) {
            points[i].VertexChainage = points[i - 1].VertexChainage + qv_uniform(g, 150.0, 400.0);
            points[i].VertexElevation = points[i - 1].VertexElevation + qv_uniform(g, -12.0, 12.0);
        }
        points[i].Chainage = points[i].VertexChainage;
        points[i].Type = (unsigned char)(qv_chance(g, 4) ? 0 : 2 + qv_below(g, 2));
        points[i].Given = (unsigned char)qv_below(g, 2);
        points[i].Radius = qv_uniform(g, 1000.0, 8000.0);
        points[i].Length = qv_uniform(g, 20.0, 120.0);
    }
    FILL(table);
    FILL(table_count);
    begin("LIB_CalWay_V_Cross_MainPoint");
    ARRAY(points, 6);
    VALUE(count);
    ARRAY(table, 81);
    ARRAY(&table_count, 1);
    finish(LIB_CalWay_V_Cross_MainPoint(points, count, table, &table_count));
}

static void width(qv_gen* g)
{
    SectionRecord table[5];
    SectionRecord out;
    unsigned char count = (unsigned char)qv_below(g, 6);
    double chainage;
    unsigned char mode = qv_byte(g, MODES, 4);
    unsigned i;
    for (i = 0; i < 5; ++i) {
        table[i].Chainage = 100.0 * i + qv_uniform(g, 0.0, 50.0);
        table[i].Left = qv_uniform(g, 2.0, 8.0);
        table[i].Right = qv_chance(g, 10) ? qv_special(g) : qv_uniform(g, 2.0, 8.0);
    }
    chainage = qv_uniform(g, -50.0, 550.0);
    FILL(out);
    begin("LIB_CalWay_Width");
    ARRAY(table, 5);
    VALUE(count);
    VALUE(chainage);
    ARRAY(&out, 1);
    VALUE(mode);
    finish(LIB_CalWay_Width(table, count, chainage, &out, mode));
}

/* ---- traverse ------------------------------------------------------------- */

static void traverse_closure(qv_gen* g)
{
    TraverseLeg legs[6];
    TraverseKnownPoints known;
    TraverseClosure result;
    unsigned char n = (unsigned char)(qv_chance(g, 8) ? 0 : 1 + qv_below(g, 6));
    unsigned char step = (unsigned char)qv_below(g, 5);
    unsigned char mode = qv_byte(g, MODES, 4);
    unsigned i;
    memset(legs, 0, sizeof legs);
    for (i = 0; i < 6; ++i) {
        legs[i].HorizDist = qv_uniform(g, 50.0, 400.0);
        legs[i].HeightDiff = qv_uniform(g, -5.0, 5.0);
        legs[i].DeltaX = qv_uniform(g, -400.0, 400.0);
        legs[i].DeltaY = qv_uniform(g, -400.0, 400.0);
        legs[i].DeltaH = legs[i].HeightDiff;
        legs[i].ForeDirection = qv_angle(g);
        legs[i].BackDirection = qv_angle(g);
    }
    known.Start = qv_point(g);
    known.ClosingRef = qv_point_around(g, &known.Start, 100.0, 2000.0);
    known.End = qv_point_around(g, &known.Start, 100.0, 2000.0);
    FILL(result);
    if (step >= 2) {
        result.Fx = qv_uniform(g, -0.1, 0.1);
        result.Fy = qv_uniform(g, -0.1, 0.1);
        result.Fh = qv_uniform(g, -0.1, 0.1);
        result.SumDist = qv_uniform(g, 100.0, 2000.0);
        result.AngularMisclosure = qv_uniform(g, -30.0, 30.0);
    }
    begin("LIB_TRSCalCoorErr");
    ARRAY(legs, 6);
    VALUE(n);
    ARRAY(&known, 1);
    VALUE(step);
    VALUE(mode);
    ARRAY(&result, 1);
    finish(LIB_TRSCalCoorErr(legs, n, &known, step, mode, &result));
}

static void traverse_adjust(qv_gen* g)
{
    double dist[6];
    SurveyPoint ref[2];
    SurveyPoint pts[6];
    SurveyPoint adj[6];
    AdjustClosure closure;
    unsigned char n = (unsigned char)(qv_chance(g, 8) ? 0 : 1 + qv_below(g, 6));
    unsigned char mode = qv_byte(g, MODES, 4);
    unsigned i;
    ref[0] = qv_point(g);
    ref[1] = qv_point_around(g, &ref[0], 100.0, 2000.0);
    for (i = 0; i < 6; ++i) {
        dist[i] = qv_uniform(g, 50.0, 400.0);
        pts[i] = qv_point_around(g, &ref[0], 10.0, 2000.0);
        adj[i] = qv_point_around(g, &ref[0], 10.0, 2000.0);
    }
    FILL(closure);
    begin("LIB_TRSAdjust");
    ARRAY(dist, 6);
    ARRAY(ref, 2);
    ARRAY(pts, 6);
    VALUE(n);
    ARRAY(adj, 6);
    ARRAY(&closure, 1);
    VALUE(mode);
    finish(LIB_TRSAdjust(dist, ref, pts, n, adj, &closure, mode));
}

/* ---- the sample ------------------------------------------------------------ */

typedef struct Sample {
    const char* name;
    void (*run)(qv_gen* g);
} Sample;

static const Sample SAMPLES[] = {
    {"LIB_GetFaceStatus", face},
    {"LIB_Sum", sum},
    {"LIB_Cal2PointDist", point_distance},
    {"LIB_CalAZ", azimuth},
    {"LIB_CalDistAngle", distance_angle},
    {"LIB_MeasCoor", measured_point},
    {"LIB_CalCoor", polar},
    {"LIB_CalDist", join},
    {"LIB_DistConvert", reduction},
    {"LIB_CalLB", line_components},
    {"LIB_CalScale", scale},
    {"LIB_SO_Coor", stakeout},
    {"LIB_Area", area},
    {"LIB_MissLine", missing_line},
    {"LIB_CalFrontMeet", intersection},
    {"LIB_CalCircle", circle},
    {"LIB_RESA2D", resection},
    {"LIB_Project", projection},
    {"LIB_LSO_Point", line_point},
    {"LIB_VPlane", vertical_plane},
    {"LIB_CalWay_H_Ele_MainPoint", element_table},
    {"LIB_CalWay_H_On", chainage_point},
    {"LIB_CalWay_H_Curve_On", transition_point},
    {"LIB_CalWay_H_Cross_MainPoint", intersection_points},
    {"LIB_CalWay_Pile", piles},
    {"LIB_CalWay_V_Cross_MainPoint", vertical_points},
    {"LIB_CalWay_Width", width},
    {"LIB_TRSCalCoorErr", traverse_closure},
    {"LIB_TRSAdjust", traverse_adjust},
};

int main(int argc, char** argv)
{
    const int cases = argc > 1 ? atoi(argv[1]) : 40;
    size_t s;
    int c;
    for (s = 0; s < sizeof SAMPLES / sizeof SAMPLES[0]; ++s) {
        for (c = 0; c < cases; ++c) {
            qv_gen g;
            const char* p;
            g.state = UINT64_C(0x5eed);
            for (p = SAMPLES[s].name; *p; ++p) {
                g.state = g.state * 131u + (unsigned char)*p;
            }
            g.state += (uint64_t)c * UINT64_C(0x9E3779B97F4A7C15);
            g.case_index = c;
            SAMPLES[s].run(&g);
        }
    }
    return 0;
}
