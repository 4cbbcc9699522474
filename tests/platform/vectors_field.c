/* Reference vectors of the field family: stakeout, remote height, offsets,
 * area, missing line, intersections, line height, circle and round objects.
 *
 * Most cases are built from a plausible set-up (a station, targets a few
 * metres to a few kilometres away, readings that point at them) so that the
 * arithmetic runs through; the rest push the tests that flip a result: zero
 * and negative distances, coincident points, fold boundaries, counts at their
 * limits, the range limit, infinities and not-a-numbers. */
#include "qv.h"

#include <math.h>
#include <string.h>

static const unsigned char sign_modes[] = {0, 1, 1, 2, 255};
static const unsigned char two_modes[] = {0, 0, 1, 1, 2, 255};
static const unsigned char dist1_modes[] = {0, 0, 0, 1, 1, 1, 2, 255};

/* ---- shared pieces of a set-up ---------------------------------------------- */

/* A zenith angle: mostly a face I or face II sight a little off level, now
 * and then the zenith, level, nadir or any angle. */
static double zenith_angle(qv_gen* g)
{
    static const double marks[] = {0.0, 324000.0, 648000.0, 972000.0, 1296000.0};
    const unsigned kind = qv_below(g, 10);
    if (kind < 6) {
        return qv_uniform(g, 250000.0, 400000.0);
    }
    if (kind < 8) {
        return qv_uniform(g, 896000.0, 1046000.0);
    }
    if (kind < 9) {
        return marks[qv_below(g, 5)];
    }
    return qv_angle(g);
}

/* A reduced measurement: slope distance a little longer than the horizontal
 * one, vertical and height differences of a few tens of metres; now and then
 * tiny, huge, negative or non-finite values. */
static DistanceRecord measurement(qv_gen* g)
{
    DistanceRecord d;
    const int wild = qv_chance(g, 4);
    d.HorizontalDistance = wild ? qv_length(g) : qv_uniform(g, 0.5, 2000.0);
    d.SlopeDistance = d.HorizontalDistance * qv_uniform(g, 1.0, 1.05);
    d.VerticalDifference = qv_uniform(g, -60.0, 60.0);
    d.HeightDifference = qv_uniform(g, -60.0, 60.0);
    if (wild && qv_chance(g, 4)) {
        d.SlopeDistance = qv_special(g);
    }
    if (wild && qv_chance(g, 3)) {
        d.VerticalDifference = qv_special(g);
    }
    return d;
}

/* A horizontal reading toward a point, as the instrument shows it on the
 * station's face (half a circle off when signA and signB differ). */
static double reading_toward(const StationRecord* s, const SurveyPoint* target)
{
    const SurveyPoint from = qv_station_point(s);
    const double az = qv_azimuth(from.X, from.Y, target->X, target->Y);
    return s->signA == s->signB ? az : qv_on_circle(az + 648000.0);
}

/* ---- LIB_SO_DistAngle ------------------------------------------------------- */

struct sodistangle_in {
    StationRecord station;
    DistanceRecord measured;
    double measured_angle;
    double design_distance;
    double design_angle;
    SODistAngleResult before; /* what out holds before the call */
    unsigned char distance_type;
    unsigned char with_measured;
    unsigned char with_angle;
    unsigned char with_out;
    unsigned char pad[4];
};
struct sodistangle_out {
    SODistAngleResult record;
};

static void sodistangle_generate(qv_gen* g, void* in_)
{
    static const unsigned char types[] = {0, 1, 2, 3, 1, 2, 3, 4, 255};
    static const double folds[] = {648000.0,  648000.0000000001, -648000.0, -648000.0000000001,
                                   1296000.0, -1944000.0,        2000000.0, NAN};
    struct sodistangle_in* in = in_;
    in->station = qv_site_station(g);
    in->measured = measurement(g);
    in->measured_angle = qv_angle(g);
    in->design_distance = qv_length(g);
    if (qv_chance(g, 8)) {
        static const double edges[] = {0.0, -0.0, -1.0, 0x1p-1074};
        in->design_distance = edges[qv_below(g, 4)];
    }
    in->design_angle = qv_angle(g);
    if (qv_chance(g, 10)) {
        static const double edges[] = {0.0, -0.0, -0x1p-1074, -1.0};
        in->design_angle = edges[qv_below(g, 4)];
    }
    in->before.DistanceDifference = qv_length(g);
    in->before.AngleDifference = qv_chance(g, 2) ? folds[qv_below(g, 8)] : qv_angle(g);
    in->distance_type = qv_byte(g, types, 9);
    in->with_measured = !qv_chance(g, 8);
    in->with_angle = !qv_chance(g, 5);
    in->with_out = !qv_chance(g, 32);
}

static int sodistangle_call(const void* in_, void* out_)
{
    const struct sodistangle_in* in = in_;
    struct sodistangle_out* out = out_;
    out->record = in->before;
    return QV_FN(LIB_SO_DistAngle)(&in->station, in->with_measured ? &in->measured : NULL,
                                   in->with_angle ? &in->measured_angle : NULL, in->design_distance,
                                   in->design_angle, in->with_out ? &out->record : NULL,
                                   in->distance_type);
}

/* ---- LIB_SO_Coor ------------------------------------------------------------ */

struct socoor_in {
    StationRecord station;
    DistanceRecord measured;
    double measured_angle;
    SurveyPoint design;
};
struct socoor_out {
    SOCoorResult record;
};

static void socoor_generate(qv_gen* g, void* in_)
{
    struct socoor_in* in = in_;
    const SurveyPoint* design = &in->design;
    SurveyPoint at;
    in->station = qv_site_station(g);
    at = qv_station_point(&in->station);
    in->design = qv_chance(g, 2) ? qv_point_around(g, &at, 0.5, 500.0) : qv_point_near(g, &at);
    in->measured = measurement(g);
    if (qv_chance(g, 2)) {
        /* the prism close to the design point */
        in->measured.HorizontalDistance = sqrt((design->X - at.X) * (design->X - at.X) +
                                               (design->Y - at.Y) * (design->Y - at.Y)) +
                                          qv_uniform(g, -0.5, 0.5);
        in->measured_angle = reading_toward(&in->station, design) + qv_uniform(g, -300.0, 300.0);
    } else {
        in->measured_angle = qv_angle(g);
    }
}

static int socoor_call(const void* in_, void* out_)
{
    const struct socoor_in* in = in_;
    struct socoor_out* out = out_;
    return QV_FN(LIB_SO_Coor)(&in->station, &in->measured, &in->measured_angle, &in->design,
                              &out->record);
}

/* ---- LIB_SO_Height ---------------------------------------------------------- */

struct soheight_in {
    StationRecord station;
    DistanceRecord measured;
    double angles[2];
    double design_height;
};
struct soheight_out {
    double height;
};

static void soheight_generate(qv_gen* g, void* in_)
{
    struct soheight_in* in = in_;
    in->station = qv_site_station(g);
    in->measured = measurement(g);
    in->angles[0] = qv_angle(g);
    in->angles[1] = zenith_angle(g);
    in->design_height = qv_chance(g, 10) ? qv_special(g) : qv_uniform(g, -100.0, 3000.0);
}

static int soheight_call(const void* in_, void* out_)
{
    const struct soheight_in* in = in_;
    struct soheight_out* out = out_;
    return QV_FN(LIB_SO_Height)(&in->station, &in->measured, in->angles, in->design_height,
                                &out->height);
}

/* ---- LIB_SO_Divide ---------------------------------------------------------- */

struct sodivide_in {
    double lengths[2];
    double directions[2];
    unsigned char counts[2];
    unsigned char pad[6];
};
struct sodivide_out {
    SODivideResult record;
};

static void sodivide_generate(qv_gen* g, void* in_)
{
    static const unsigned char divisions[] = {0, 1, 2, 4, 98, 99, 100, 255};
    static const unsigned char indices[] = {0, 1, 8, 197, 198, 199, 255};
    struct sodivide_in* in = in_;
    const unsigned char n =
        qv_chance(g, 4) ? qv_byte(g, divisions, 8) : (unsigned char)(1 + qv_below(g, 99));
    const unsigned char i =
        qv_chance(g, 4) ? qv_byte(g, indices, 7) : (unsigned char)(1 + qv_below(g, 2u * n + 1u));
    in->lengths[0] = qv_length(g);
    in->lengths[1] = qv_chance(g, 2) ? in->lengths[0] * qv_uniform(g, 0.0, 2.0) : qv_length(g);
    in->directions[0] = qv_angle(g);
    in->directions[1] =
        qv_chance(g, 2) ? in->directions[0] + qv_uniform(g, -600.0, 600.0) : qv_angle(g);
    in->counts[0] = n;
    in->counts[1] = i;
}

static int sodivide_call(const void* in_, void* out_)
{
    const struct sodivide_in* in = in_;
    struct sodivide_out* out = out_;
    return QV_FN(LIB_SO_Divide)(in->lengths, in->directions, in->counts, &out->record);
}

/* ---- LIB_Hight -------------------------------------------------------------- */

struct hight_in {
    StationRecord station;
    DistanceRecord measured;
    double first_zenith;
    double second_zenith;
    unsigned char mode;
    unsigned char pad[7];
};
struct hight_out {
    double height;
};

static void hight_generate(qv_gen* g, void* in_)
{
    static const unsigned char modes[] = {0, 0, 1, 1, 2, 255};
    struct hight_in* in = in_;
    in->station = qv_site_station(g);
    in->measured = measurement(g);
    in->first_zenith = zenith_angle(g);
    in->second_zenith =
        qv_chance(g, 2) ? in->first_zenith - qv_uniform(g, 0.0, 20000.0) : zenith_angle(g);
    if (qv_chance(g, 16)) {
        in->second_zenith = in->first_zenith;
    }
    in->mode = qv_byte(g, modes, 6);
}

static int hight_call(const void* in_, void* out_)
{
    const struct hight_in* in = in_;
    struct hight_out* out = out_;
    return QV_FN(LIB_Hight)(&in->station, &in->measured, in->first_zenith, in->second_zenith,
                            &out->height, in->mode);
}

/* ---- LIB_OS_Angle ----------------------------------------------------------- */

struct osangle_in {
    StationRecord station;
    DistanceRecord measured;
    double angles[2];
    SurveyPoint known; /* the caller's record; mode 1 raises its H */
    unsigned char mode;
    unsigned char pad[7];
};
struct osangle_out {
    DistAngleRecord record;
    SurveyPoint known;
};

static void osangle_generate(qv_gen* g, void* in_)
{
    struct osangle_in* in = in_;
    SurveyPoint at;
    in->station = qv_site_station(g);
    at = qv_station_point(&in->station);
    in->measured = measurement(g);
    in->known = qv_chance(g, 2) ? qv_point_around(g, &at, 1.0, 800.0) : qv_point_near(g, &at);
    in->angles[0] = qv_chance(g, 2) ? reading_toward(&in->station, &in->known) : qv_angle(g);
    in->angles[1] = zenith_angle(g);
    in->mode = qv_byte(g, two_modes, 6);
}

static int osangle_call(const void* in_, void* out_)
{
    const struct osangle_in* in = in_;
    struct osangle_out* out = out_;
    out->known = in->known;
    return QV_FN(LIB_OS_Angle)(&in->station, &in->measured, in->angles, &out->known, &out->record,
                               in->mode);
}

/* ---- LIB_OS_Dist1 ----------------------------------------------------------- */

struct osdist1_in {
    StationRecord station;
    DistanceRecord measured;
    double measured_angle;
    SurveyPoint known;
    double offsets[3];
    unsigned char mode;
    unsigned char pad[7];
};
struct osdist1_out {
    DistAngleRecord record;
};

static void osdist1_generate(qv_gen* g, void* in_)
{
    struct osdist1_in* in = in_;
    SurveyPoint at;
    unsigned k;
    in->station = qv_site_station(g);
    at = qv_station_point(&in->station);
    in->measured = measurement(g);
    in->measured_angle = qv_angle(g);
    in->known = qv_chance(g, 2) ? qv_point_around(g, &at, 1.0, 800.0) : qv_point_near(g, &at);
    for (k = 0; k < 3; ++k) {
        in->offsets[k] = qv_uniform(g, -5.0, 5.0);
    }
    if (qv_chance(g, 8)) {
        in->offsets[0] = 0.0;
        in->offsets[1] = 0.0;
        in->offsets[2] = 0.0;
    } else if (qv_chance(g, 16)) {
        in->offsets[qv_below(g, 3)] = qv_special(g);
    }
    in->mode = qv_byte(g, dist1_modes, 8);
    if (qv_chance(g, 10)) {
        /* no horizontal distance and no plan offset: the point is the station */
        in->mode = 0;
        in->measured.HorizontalDistance = 0.0;
        in->offsets[0] = 0.0;
        in->offsets[1] = 0.0;
    }
}

static int osdist1_call(const void* in_, void* out_)
{
    const struct osdist1_in* in = in_;
    struct osdist1_out* out = out_;
    return QV_FN(LIB_OS_Dist1)(&in->station, &in->measured, &in->measured_angle, &in->known,
                               in->offsets, &out->record, in->mode);
}

/* ---- LIB_OS_Dist2 ----------------------------------------------------------- */

struct osdist2_in {
    StationRecord station;
    SurveyPoint line[2];
    double extension;
};
struct osdist2_out {
    DistAngleRecord record;
};

static void osdist2_generate(qv_gen* g, void* in_)
{
    struct osdist2_in* in = in_;
    SurveyPoint at;
    in->station = qv_site_station(g);
    at = qv_station_point(&in->station);
    in->line[0] = qv_chance(g, 2) ? qv_point_around(g, &at, 1.0, 500.0) : qv_point_near(g, &at);
    in->line[1] = qv_chance(g, 2) ? qv_point_around(g, &in->line[0], 0.5, 50.0)
                                  : qv_point_near(g, &in->line[0]);
    in->extension = qv_uniform(g, -30.0, 30.0);
    if (qv_chance(g, 8)) {
        in->extension = qv_chance(g, 2) ? 0.0 : qv_special(g);
    }
    if (qv_chance(g, 12)) {
        /* a plumb line over the station mark */
        in->line[0].X = at.X;
        in->line[0].Y = at.Y;
        in->line[1] = in->line[0];
        in->line[1].H = in->line[0].H + qv_uniform(g, 0.5, 5.0);
    }
}

static int osdist2_call(const void* in_, void* out_)
{
    const struct osdist2_in* in = in_;
    struct osdist2_out* out = out_;
    return QV_FN(LIB_OS_Dist2)(&in->station, in->line, in->extension, &out->record);
}

/* ---- LIB_Area --------------------------------------------------------------- */

struct area_in {
    SurveyPoint points[255];
    unsigned char count;
    unsigned char pad[7];
};
struct area_out {
    AreaResult record;
};

static void area_generate(qv_gen* g, void* in_)
{
    struct area_in* in = in_;
    const unsigned kind = qv_below(g, 10);
    SurveyPoint centre = qv_point(g);
    double radius = qv_uniform(g, 1.0, 500.0);
    double bearing = qv_uniform(g, 0.0, 6.283185307179586);
    unsigned i;
    in->count = (unsigned char)(qv_chance(g, 4) ? qv_below(g, 256) : qv_below(g, 12));
    if (qv_chance(g, 16)) {
        in->count = 255;
    }
    if (kind < 2) {
        /* large parcels: the area crosses the range limit */
        radius = qv_uniform(g, 4000.0, 12000.0);
    }
    for (i = 0; i < in->count; ++i) {
        if (kind < 8) {
            /* a walk round the boundary of a parcel */
            bearing += qv_uniform(g, 0.0, 12.566370614359172 / (double)in->count);
            in->points[i].X = centre.X + cos(bearing) * radius * qv_uniform(g, 0.7, 1.0);
            in->points[i].Y = centre.Y + sin(bearing) * radius * qv_uniform(g, 0.7, 1.0);
            in->points[i].H = centre.H;
        } else {
            in->points[i] = qv_point(g);
        }
    }
    if (in->count >= 3 && qv_chance(g, 12)) {
        /* a repeated corner */
        in->points[1] = in->points[0];
    }
}

static int area_call(const void* in_, void* out_)
{
    const struct area_in* in = in_;
    struct area_out* out = out_;
    return QV_FN(LIB_Area)(in->count, in->points, &out->record);
}

/* ---- LIB_MissLine ----------------------------------------------------------- */

struct missline_in {
    StationRecord station;
    DistanceRecord measured[2];
    double angles[6];
    double first_target_height;
    double second_target_height;
    MissLineResult before; /* its azimuth is read when the directions agree */
};
struct missline_out {
    MissLineResult record;
};

static void missline_generate(qv_gen* g, void* in_)
{
    struct missline_in* in = in_;
    unsigned k;
    in->station = qv_site_station(g);
    in->measured[0] = measurement(g);
    in->measured[1] = measurement(g);
    for (k = 0; k < 6; ++k) {
        in->angles[k] = qv_uniform(g, 0.0, 1296000.0); /* the unread ones too */
    }
    in->angles[0] = qv_angle(g);
    switch (qv_below(g, 8)) {
    case 0: in->angles[3] = in->angles[0]; break;
    case 1: in->angles[3] = in->angles[0] + (qv_chance(g, 2) ? 648000.0 : -648000.0); break;
    case 2:
    case 3: in->angles[3] = in->angles[0] + qv_uniform(g, -900000.0, 900000.0); break;
    default: in->angles[3] = qv_angle(g); break;
    }
    if (qv_chance(g, 10)) {
        /* the same point twice */
        in->angles[3] = in->angles[0];
        in->measured[1] = in->measured[0];
    }
    in->first_target_height = qv_uniform(g, 0.0, 3.0);
    in->second_target_height = qv_chance(g, 4) ? in->first_target_height : qv_uniform(g, 0.0, 3.0);
    in->before.SlopeDistance = qv_length(g);
    in->before.HorizontalDistance = qv_length(g);
    in->before.HeightDifference = qv_length(g);
    in->before.Grade = qv_length(g);
    in->before.Azimuth = qv_angle(g);
}

static int missline_call(const void* in_, void* out_)
{
    const struct missline_in* in = in_;
    struct missline_out* out = out_;
    out->record = in->before;
    return QV_FN(LIB_MissLine)(&in->station, in->measured, in->angles, in->first_target_height,
                               in->second_target_height, &out->record);
}

/* ---- LIB_CalFrontMeet ------------------------------------------------------- */

struct frontmeet_in {
    FrontMeetInput input;
    SurveyPoint before; /* tested for range when no mode computes */
    unsigned char mode;
    unsigned char pad[7];
};
struct frontmeet_out {
    SurveyPoint point;
};

static double plan_distance(const SurveyPoint* a, const SurveyPoint* b)
{
    return sqrt((b->X - a->X) * (b->X - a->X) + (b->Y - a->Y) * (b->Y - a->Y));
}

static void frontmeet_generate(qv_gen* g, void* in_)
{
    static const unsigned char modes[] = {0, 0, 1, 1, 2, 255};
    struct frontmeet_in* in = in_;
    FrontMeetKnown* a = &in->input.A;
    FrontMeetKnown* b = &in->input.B;
    SurveyPoint p;
    a->Point = qv_point(g);
    b->Point =
        qv_chance(g, 2) ? qv_point_around(g, &a->Point, 10.0, 2000.0) : qv_point_near(g, &a->Point);
    p = qv_point_around(g, &a->Point, 5.0, 2500.0);
    a->Direction = qv_azimuth(a->Point.X, a->Point.Y, p.X, p.Y) + qv_uniform(g, -5.0, 5.0);
    b->Direction = qv_azimuth(b->Point.X, b->Point.Y, p.X, p.Y) + qv_uniform(g, -5.0, 5.0);
    a->Distance = plan_distance(&a->Point, &p) + qv_uniform(g, -0.01, 0.01);
    b->Distance = plan_distance(&b->Point, &p) + qv_uniform(g, -0.01, 0.01);
    switch (qv_below(g, 12)) {
    case 0:
        a->Direction = qv_angle(g);
        b->Direction = qv_angle(g);
        break;
    case 1: {
        /* A->B due north, so a1 = -(direction at A) and a2 = direction at B + 648000 */
        static const double rights[] = {324000.0, -324000.0, 972000.0, -972000.0, 324000.0001};
        a->Point.X = floor(a->Point.X);
        a->Point.Y = floor(a->Point.Y);
        b->Point = a->Point;
        b->Point.X += floor(qv_uniform(g, 1.0, 1000.0));
        if (qv_chance(g, 2)) {
            a->Direction = rights[qv_below(g, 5)];
        } else {
            b->Direction = rights[qv_below(g, 5)] - 648000.0;
        }
        break;
    }
    case 2:
        /* circles that miss each other */
        a->Distance = plan_distance(&a->Point, &b->Point) * 0.3;
        b->Distance = a->Distance;
        break;
    case 3:
        /* circles that touch on the line A-B: 3 + 4 = 7 */
        a->Point.X = floor(a->Point.X);
        a->Point.Y = floor(a->Point.Y);
        b->Point = a->Point;
        b->Point.X += 7.0;
        a->Distance = 3.0;
        b->Distance = 4.0;
        break;
    case 4: a->Distance = qv_length(g); break;
    default: break;
    }
    in->before = qv_chance(g, 2) ? qv_point(g) : p;
    in->mode = qv_byte(g, modes, 6);
}

static int frontmeet_call(const void* in_, void* out_)
{
    const struct frontmeet_in* in = in_;
    struct frontmeet_out* out = out_;
    out->point = in->before;
    return QV_FN(LIB_CalFrontMeet)(&in->input, &out->point, in->mode);
}

/* ---- LIB_CalLineCrossPT ----------------------------------------------------- */

struct linecross_in {
    LineCrossInput input;
};
struct linecross_out {
    SurveyPoint point;
};

static void linecross_generate(qv_gen* g, void* in_)
{
    struct linecross_in* in = in_;
    LineCrossInput* l = &in->input;
    l->P1 = qv_point(g);
    l->P2 = qv_chance(g, 4) ? qv_point_near(g, &l->P1) : qv_point_around(g, &l->P1, 1.0, 300.0);
    l->P3 = qv_point_around(g, &l->P1, 1.0, 500.0);
    l->P4 = qv_chance(g, 4) ? qv_point_near(g, &l->P3) : qv_point_around(g, &l->P3, 1.0, 300.0);
    switch (qv_below(g, 16)) {
    case 0:
        /* exactly parallel: whole metres, the same step on both lines */
        l->P1.X = floor(l->P1.X);
        l->P1.Y = floor(l->P1.Y);
        l->P2.X = l->P1.X + floor(qv_uniform(g, -100.0, 100.0));
        l->P2.Y = l->P1.Y + floor(qv_uniform(g, -100.0, 100.0));
        l->P3.X = l->P1.X + floor(qv_uniform(g, -100.0, 100.0));
        l->P3.Y = l->P1.Y + floor(qv_uniform(g, -100.0, 100.0));
        l->P4.X = l->P3.X + (l->P2.X - l->P1.X);
        l->P4.Y = l->P3.Y + (l->P2.Y - l->P1.Y);
        break;
    case 1: l->P4 = l->P3; break;
    case 2: l->P2 = l->P1; break;
    case 3:
        /* the second line crosses far beyond P2 */
        l->P3.X = l->P2.X + (l->P2.X - l->P1.X) * 3.0 + 1.0;
        l->P3.Y = l->P2.Y + (l->P2.Y - l->P1.Y) * 3.0 - 1.0;
        break;
    default: break;
    }
}

static int linecross_call(const void* in_, void* out_)
{
    const struct linecross_in* in = in_;
    struct linecross_out* out = out_;
    return QV_FN(LIB_CalLineCrossPT)(&in->input, &out->point);
}

/* ---- LIB_OS_SDist ----------------------------------------------------------- */

struct ossdist_in {
    StationRecord station;
    DistanceRecord measured;
    double angles[2];
    SurveyPoint known; /* the caller's record; mode 1 raises its H */
    double offset;
    unsigned char mode;
    unsigned char pad[7];
};
struct ossdist_out {
    double values[8];
    SurveyPoint known;
};

static void ossdist_generate(qv_gen* g, void* in_)
{
    static const unsigned char modes[] = {0, 0, 1, 1, 2, 255};
    struct ossdist_in* in = in_;
    SurveyPoint at;
    in->station = qv_site_station(g);
    at = qv_station_point(&in->station);
    in->measured = measurement(g);
    in->known = qv_chance(g, 2) ? qv_point_around(g, &at, 1.0, 800.0) : qv_point_near(g, &at);
    in->angles[0] = qv_chance(g, 2) ? reading_toward(&in->station, &in->known) : qv_angle(g);
    in->angles[1] = zenith_angle(g);
    in->mode = qv_byte(g, modes, 6);
    switch (qv_below(g, 10)) {
    case 0:
    case 1:
        /* beyond the instrument */
        in->offset = -(in->measured.SlopeDistance + qv_uniform(g, 0.0, 5.0));
        break;
    case 2: in->offset = -in->measured.SlopeDistance; break;
    case 3: in->offset = qv_chance(g, 2) ? 0.0 : qv_special(g); break;
    default: in->offset = qv_uniform(g, -5.0, 5.0); break;
    }
}

static int ossdist_call(const void* in_, void* out_)
{
    const struct ossdist_in* in = in_;
    struct ossdist_out* out = out_;
    out->known = in->known;
    return QV_FN(LIB_OS_SDist)(&in->station, &in->measured, in->angles, &out->known, in->offset,
                               out->values, in->mode);
}

/* ---- LIB_OS_Ha -------------------------------------------------------------- */

struct osha_in {
    StationRecord station;
    SurveyPoint line[2];
    double horizontal_angle;
};
struct osha_out {
    DistAngleRecord record;
};

static void osha_generate(qv_gen* g, void* in_)
{
    struct osha_in* in = in_;
    SurveyPoint at;
    SurveyPoint target;
    double along;
    in->station = qv_site_station(g);
    at = qv_station_point(&in->station);
    in->line[0] = qv_point_around(g, &at, 2.0, 300.0);
    in->line[1] = qv_point_around(g, &in->line[0], 1.0, 100.0);
    along = qv_uniform(g, -0.5, 1.5);
    target.X = in->line[0].X + (in->line[1].X - in->line[0].X) * along;
    target.Y = in->line[0].Y + (in->line[1].Y - in->line[0].Y) * along;
    target.H = in->line[0].H;
    in->horizontal_angle = reading_toward(&in->station, &target);
    switch (qv_below(g, 14)) {
    case 0: in->horizontal_angle = qv_on_circle(in->horizontal_angle + 648000.0); break;
    case 1: in->horizontal_angle = qv_angle(g); break;
    case 2: in->line[1].X = in->line[0].X; break;
    case 3:
        /* a line through the station: whole metres either side of it */
        in->station.X = floor(in->station.X);
        in->station.Y = floor(in->station.Y);
        in->line[0].X = in->station.X + 12.0;
        in->line[0].Y = in->station.Y + 5.0;
        in->line[1].X = in->station.X - 24.0;
        in->line[1].Y = in->station.Y - 10.0;
        break;
    case 4: in->line[1] = qv_point_near(g, &in->line[0]); break;
    case 5: in->line[0] = qv_point_near(g, &at); break;
    case 6:
        /* a sight along the line itself */
        in->horizontal_angle = reading_toward(&in->station, &in->line[0]);
        in->line[1].X = in->station.X + (in->line[0].X - in->station.X) * 2.0;
        in->line[1].Y = in->station.Y + (in->line[0].Y - in->station.Y) * 2.0;
        break;
    default: break;
    }
}

static int osha_call(const void* in_, void* out_)
{
    const struct osha_in* in = in_;
    struct osha_out* out = out_;
    return QV_FN(LIB_OS_Ha)(&in->station, in->line, in->horizontal_angle, &out->record);
}

/* ---- LIB_CalLineHeight ------------------------------------------------------ */

struct lineheight_in {
    SurveyPoint pts[3];
    AngleObservation obs[4];
    unsigned char mode;
    unsigned char pad[7];
};
struct lineheight_out {
    LineHeightResult record;
};

static void lineheight_generate(qv_gen* g, void* in_)
{
    static const double verticals[] = {0.0,       324000.0,  648000.0,          972000.0,
                                       1296000.0, -324000.0, 324000.9999999999, -0.0};
    struct lineheight_in* in = in_;
    SurveyPoint* a = &in->pts[0];
    SurveyPoint* b = &in->pts[1];
    SurveyPoint* s = &in->pts[2];
    SurveyPoint target;
    double orientation = qv_uniform(g, 0.0, 1296000.0);
    double along = qv_uniform(g, -0.5, 1.5);
    unsigned k;
    *a = qv_point(g);
    *b = qv_point_around(g, a, 5.0, 200.0);
    *s = qv_point_around(g, a, 5.0, 300.0);
    for (k = 0; k < 4; ++k) {
        in->obs[k].Horizontal = qv_uniform(g, 0.0, 1296000.0);
        in->obs[k].Zenith = zenith_angle(g);
        in->obs[k].Value = qv_length(g);
    }
    target.X = a->X + (b->X - a->X) * along;
    target.Y = a->Y + (b->Y - a->Y) * along;
    target.H = a->H;
    in->obs[0].Horizontal = qv_on_circle(qv_azimuth(s->X, s->Y, a->X, a->Y) - orientation);
    in->obs[2].Horizontal = qv_on_circle(qv_azimuth(s->X, s->Y, target.X, target.Y) - orientation);
    switch (qv_below(g, 12)) {
    case 0: in->obs[2].Zenith = verticals[qv_below(g, 8)]; break;
    case 1: in->obs[3].Zenith = verticals[qv_below(g, 8)]; break;
    case 2: in->obs[2].Horizontal = qv_angle(g); break;
    case 3:
        /* the sight runs along the line */
        in->obs[2].Horizontal = in->obs[0].Horizontal;
        *s = *b;
        s->X = a->X + (b->X - a->X) * 3.0;
        s->Y = a->Y + (b->Y - a->Y) * 3.0;
        break;
    case 4: *b = qv_point_near(g, a); break;
    case 5: *s = qv_point_near(g, a); break;
    default: break;
    }
    in->mode = qv_byte(g, sign_modes, 5);
}

static int lineheight_call(const void* in_, void* out_)
{
    const struct lineheight_in* in = in_;
    struct lineheight_out* out = out_;
    return QV_FN(LIB_CalLineHeight)(in->pts, in->obs, &out->record, in->mode);
}

/* ---- LIB_CalCircle ---------------------------------------------------------- */

/* Counts stay at most CIRCLE_MAX_COUNT, so count + 1 pairs fit with one to
 * spare (which must stay untouched). */
#define CIRCLE_MAX_COUNT 8

struct circle_in {
    SurveyPoint pts[3];
    int32_t count;
    unsigned char mode;
    unsigned char pad[3];
};
struct circle_out {
    double radius;
    double centre[2];
    CirclePointPair list[CIRCLE_MAX_COUNT + 2];
};

static void circle_generate(qv_gen* g, void* in_)
{
    static const int32_t refused[] = {-1, -8, INT32_MIN};
    static const unsigned char modes[] = {0, 1, 1, 1, 2, 255};
    struct circle_in* in = in_;
    SurveyPoint centre = qv_point(g);
    double radius = qv_chance(g, 6) ? qv_uniform(g, 1e6, 7e6) : qv_uniform(g, 0.5, 1000.0);
    unsigned k;
    for (k = 0; k < 3; ++k) {
        const double bearing = qv_uniform(g, 0.0, 6.283185307179586);
        in->pts[k].X = centre.X + cos(bearing) * radius;
        in->pts[k].Y = centre.Y + sin(bearing) * radius;
        in->pts[k].H = qv_uniform(g, -100.0, 3000.0);
    }
    switch (qv_below(g, 20)) {
    case 0:
        /* on one line of slope 1 */
        in->pts[0].X = 0.0;
        in->pts[0].Y = 0.0;
        in->pts[1].X = 1.0;
        in->pts[1].Y = 1.0;
        in->pts[2].X = 2.0;
        in->pts[2].Y = 2.0;
        break;
    case 1:
        in->pts[1].X = in->pts[0].X;
        in->pts[2].X = in->pts[0].X;
        break;
    case 2:
        in->pts[1].Y = in->pts[0].Y;
        in->pts[2].Y = in->pts[0].Y;
        break;
    case 3: in->pts[1] = in->pts[0]; break;
    case 4: in->pts[1].Y = in->pts[0].Y; break;
    case 5:
        /* right angle at the origin: centre (5, 5), radius sqrt(50) */
        in->pts[0].X = 0.0;
        in->pts[0].Y = 0.0;
        in->pts[1].X = 0.0;
        in->pts[1].Y = 10.0;
        in->pts[2].X = 10.0;
        in->pts[2].Y = 0.0;
        break;
    case 6: in->pts[qv_below(g, 3)] = qv_point(g); break;
    default: break;
    }
    in->count = (int32_t)qv_below(g, CIRCLE_MAX_COUNT + 1);
    if (qv_chance(g, 10)) {
        in->count = refused[qv_below(g, 3)];
    }
    in->mode = qv_byte(g, modes, 6);
}

static int circle_call(const void* in_, void* out_)
{
    const struct circle_in* in = in_;
    struct circle_out* out = out_;
    return QV_FN(LIB_CalCircle)(in->pts, &out->radius, out->centre, out->list, in->count, in->mode);
}

/* ---- LIB_OS_Round ----------------------------------------------------------- */

struct osround_in {
    StationRecord station;
    DistanceRecord measured;
    AngleObservation obs[3];
    double radius;
};
struct osround_out {
    DistAngleRecord record;
    double computed_radius;
};

static void osround_generate(qv_gen* g, void* in_)
{
    struct osround_in* in = in_;
    const double distance = qv_uniform(g, 3.0, 300.0);
    const double radius = qv_uniform(g, 0.05, distance / 3.0 < 3.0 ? distance / 3.0 : 3.0);
    const double bisector = qv_uniform(g, 0.0, 1296000.0);
    const double half = asin(radius / distance) * QUILLON_RHO_SEC;
    const int swapped = qv_chance(g, 2);
    unsigned k;
    in->station = qv_site_station(g);
    in->measured = measurement(g);
    in->measured.HorizontalDistance = distance - radius + qv_uniform(g, -0.02, 0.02);
    for (k = 0; k < 3; ++k) {
        in->obs[k].Zenith = zenith_angle(g);
        in->obs[k].Value = qv_length(g);
    }
    in->obs[swapped ? 1 : 0].Horizontal = qv_on_circle(bisector - half);
    in->obs[swapped ? 0 : 1].Horizontal = qv_on_circle(bisector + half);
    in->obs[2].Horizontal = qv_on_circle(bisector + half * qv_uniform(g, -0.9, 0.9));
    in->radius = radius;
    switch (qv_below(g, 20)) {
    case 0:
        /* edges 20 arc-seconds apart across zero */
        in->obs[0].Horizontal = 10.0;
        in->obs[1].Horizontal = 1295990.0;
        in->obs[2].Horizontal = qv_chance(g, 2) ? 5.0 : 1295995.0;
        break;
    case 1:
        /* on the bisector */
        in->obs[0].Horizontal = 100.0;
        in->obs[1].Horizontal = 300.0;
        in->obs[2].Horizontal = 200.0;
        break;
    case 2: in->obs[1].Horizontal = in->obs[0].Horizontal; break;
    case 3: in->obs[2].Horizontal = qv_on_circle(bisector + half * qv_uniform(g, 1.1, 3.0)); break;
    case 4:
        /* the centre on the station mark */
        in->measured.HorizontalDistance = -in->radius;
        break;
    case 5: in->radius = qv_chance(g, 2) ? 0.0 : qv_special(g); break;
    case 6: in->obs[qv_below(g, 3)].Horizontal = qv_angle(g); break;
    default: break;
    }
}

static int osround_call(const void* in_, void* out_)
{
    const struct osround_in* in = in_;
    struct osround_out* out = out_;
    return QV_FN(LIB_OS_Round)(&in->station, &in->measured, in->obs, in->radius, &out->record,
                               &out->computed_radius);
}

/* ---- the family ---------------------------------------------------------------- */

#define SURVEY_POINT "X:d Y:d H:d"
#define DIST_ANGLE                                                                                 \
    SURVEY_POINT " SlopeDistance:d HorizontalDistance:d HeightDifference:d Azimuth:d "             \
                 "ZenithAngle:d"

static const qv_function functions[] = {
    QV_FUNCTION(LIB_SO_DistAngle, sodistangle, "DistanceDifference:d AngleDifference:d", 0),
    QV_FUNCTION(LIB_SO_Coor, socoor,
                SURVEY_POINT " HorizontalDistanceDifference:d HeightDifference:d "
                             "ForwardDifference:d LateralDifference:d AngleDifference:d",
                0),
    QV_FUNCTION(LIB_SO_Height, soheight, "height:d", 0),
    QV_FUNCTION(LIB_SO_Divide, sodivide,
                "ForwardDifference:d LateralDifference:d AngleDifference:d", 0),
    QV_FUNCTION(LIB_Hight, hight, "height:d", 0),
    QV_FUNCTION(LIB_OS_Angle, osangle,
                SURVEY_POINT " SlopeDistance:d HorizontalDistance:d VerticalDifference:d "
                             "HorizontalAngle:d ZenithAngle:d known.X:d known.Y:d known.H:d",
                0),
    QV_FUNCTION(LIB_OS_Dist1, osdist1, DIST_ANGLE, 0),
    QV_FUNCTION(LIB_OS_Dist2, osdist2, DIST_ANGLE, 0),
    QV_FUNCTION(LIB_Area, area, "Area:d Hectares:d Perimeter:d", 96),
    QV_FUNCTION(LIB_MissLine, missline,
                "SlopeDistance:d HorizontalDistance:d HeightDifference:d Grade:d Azimuth:d", 0),
    QV_FUNCTION(LIB_CalFrontMeet, frontmeet, SURVEY_POINT, 0),
    QV_FUNCTION(LIB_CalLineCrossPT, linecross, SURVEY_POINT, 0),
    QV_FUNCTION(LIB_OS_SDist, ossdist,
                SURVEY_POINT " SlopeDistance:d HorizontalDistance:d VerticalDifference:d "
                             "HorizontalAngle:d ZenithAngle:d known.X:d known.Y:d known.H:d",
                0),
    QV_FUNCTION(LIB_OS_Ha, osha, DIST_ANGLE, 0),
    QV_FUNCTION(LIB_CalLineHeight, lineheight,
                "Height:d HorizontalDistance:d Along:d HeightBetween:d", 0),
    QV_FUNCTION(LIB_CalCircle, circle, "radius:d centre:d2 list:d60", 0),
    QV_FUNCTION(LIB_OS_Round, osround, DIST_ANGLE " computed_radius:d", 0),
};

const qv_family qv_family_field = {"field", functions, QV_COUNT(functions)};
