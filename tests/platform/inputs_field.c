/* Inputs of the reference vectors, field family: stakeout, remote height, offsets,
 * area, missing line, intersections, line height, circle and round objects.
 *
 * Most cases are built from a plausible set-up (a station, targets a few
 * metres to a few kilometres away, readings that point at them) so that the
 * arithmetic runs through; the rest push the tests that flip a result: zero
 * and negative distances, coincident points, fold boundaries, counts at their
 * limits, the range limit, infinities and not-a-numbers. */
#include "qv_table.h"

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
    if (kind < 8) {
        return kind < 6 ? qv_uniform(g, 250000.0, 400000.0) : qv_uniform(g, 896000.0, 1046000.0);
    }
    return kind < 9 ? marks[qv_below(g, 5)] : qv_angle(g);
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

/* A set-up with a known point a few metres to a few hundred away (or near
 * the station) and the horizontal and zenith angles sighted at it, the
 * horizontal one now and then any angle. */
static void sighting_known(qv_gen* g, StationRecord* station, DistanceRecord* measured,
                           SurveyPoint* known, double* angles)
{
    SurveyPoint at;
    *station = qv_site_station(g);
    at = qv_station_point(station);
    *measured = measurement(g);
    *known = qv_chance(g, 2) ? qv_point_around(g, &at, 1.0, 800.0) : qv_point_near(g, &at);
    angles[0] = qv_chance(g, 2) ? reading_toward(station, known) : qv_angle(g);
    angles[1] = zenith_angle(g);
}

/* ---- LIB_SO_DistAngle ------------------------------------------------------- */

void LIB_SO_DistAngle_generate(qv_gen* g, LIB_SO_DistAngle_in* in)
{
    static const unsigned char types[] = {0, 1, 2, 3, 1, 2, 3, 4, 255};
    static const double folds[] = {648000.0,  648000.0000000001, -648000.0, -648000.0000000001,
                                   1296000.0, -1944000.0,        2000000.0, NAN};
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
    in->record.DistanceDifference = qv_length(g);
    in->record.AngleDifference = qv_chance(g, 2) ? folds[qv_below(g, 8)] : qv_angle(g);
    in->distance_type = qv_byte(g, types, 9);
    in->with_measured = !qv_chance(g, 8);
    in->with_measured_angle = !qv_chance(g, 5);
    in->with_record = !qv_chance(g, 32);
}

/* ---- LIB_SO_Coor ------------------------------------------------------------ */

void LIB_SO_Coor_generate(qv_gen* g, LIB_SO_Coor_in* in)
{
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

/* ---- LIB_SO_Height ---------------------------------------------------------- */

void LIB_SO_Height_generate(qv_gen* g, LIB_SO_Height_in* in)
{
    in->station = qv_site_station(g);
    in->measured = measurement(g);
    in->angles[0] = qv_angle(g);
    in->angles[1] = zenith_angle(g);
    in->design_height = qv_chance(g, 10) ? qv_special(g) : qv_uniform(g, -100.0, 3000.0);
}

/* ---- LIB_SO_Divide ---------------------------------------------------------- */

void LIB_SO_Divide_generate(qv_gen* g, LIB_SO_Divide_in* in)
{
    static const unsigned char divisions[] = {0, 1, 2, 4, 98, 99, 100, 255};
    static const unsigned char indices[] = {0, 1, 8, 197, 198, 199, 255};
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

/* ---- LIB_Hight -------------------------------------------------------------- */

void LIB_Hight_generate(qv_gen* g, LIB_Hight_in* in)
{
    static const unsigned char modes[] = {0, 0, 1, 1, 2, 255};
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

/* ---- LIB_OS_Angle ----------------------------------------------------------- */

void LIB_OS_Angle_generate(qv_gen* g, LIB_OS_Angle_in* in)
{
    sighting_known(g, &in->station, &in->measured, &in->known, in->angles);
    in->mode = qv_byte(g, two_modes, 6);
}

/* ---- LIB_OS_Dist1 ----------------------------------------------------------- */

void LIB_OS_Dist1_generate(qv_gen* g, LIB_OS_Dist1_in* in)
{
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

/* ---- LIB_OS_Dist2 ----------------------------------------------------------- */

void LIB_OS_Dist2_generate(qv_gen* g, LIB_OS_Dist2_in* in)
{
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

/* ---- LIB_Area --------------------------------------------------------------- */

void LIB_Area_generate(qv_gen* g, LIB_Area_in* in)
{
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

/* ---- LIB_MissLine ----------------------------------------------------------- */

void LIB_MissLine_generate(qv_gen* g, LIB_MissLine_in* in)
{
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
    in->record.SlopeDistance = qv_length(g);
    in->record.HorizontalDistance = qv_length(g);
    in->record.HeightDifference = qv_length(g);
    in->record.Grade = qv_length(g);
    in->record.Azimuth = qv_angle(g);
}

/* ---- LIB_CalFrontMeet ------------------------------------------------------- */

static double plan_distance(const SurveyPoint* a, const SurveyPoint* b)
{
    return sqrt((b->X - a->X) * (b->X - a->X) + (b->Y - a->Y) * (b->Y - a->Y));
}

void LIB_CalFrontMeet_generate(qv_gen* g, LIB_CalFrontMeet_in* in)
{
    static const unsigned char modes[] = {0, 0, 1, 1, 2, 255};
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
    in->point = qv_chance(g, 2) ? qv_point(g) : p;
    in->mode = qv_byte(g, modes, 6);
}

/* ---- LIB_CalLineCrossPT ----------------------------------------------------- */

void LIB_CalLineCrossPT_generate(qv_gen* g, LIB_CalLineCrossPT_in* in)
{
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

/* ---- LIB_OS_SDist ----------------------------------------------------------- */

void LIB_OS_SDist_generate(qv_gen* g, LIB_OS_SDist_in* in)
{
    sighting_known(g, &in->station, &in->measured, &in->known, in->angles);
    in->mode = qv_byte(g, two_modes, 6);
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

/* ---- LIB_OS_Ha -------------------------------------------------------------- */

void LIB_OS_Ha_generate(qv_gen* g, LIB_OS_Ha_in* in)
{
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

/* ---- LIB_CalLineHeight ------------------------------------------------------ */

void LIB_CalLineHeight_generate(qv_gen* g, LIB_CalLineHeight_in* in)
{
    static const double verticals[] = {0.0,       324000.0,  648000.0,          972000.0,
                                       1296000.0, -324000.0, 324000.9999999999, -0.0};
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

/* ---- LIB_CalCircle ---------------------------------------------------------- */

/* Counts stay at most CIRCLE_MAX_COUNT, so count + 1 pairs fit with one to
 * spare (which must stay untouched). */
#define CIRCLE_MAX_COUNT (QV_ELEMENTS(LIB_CalCircle_out, list) - 2)

/* Three points given in plan. */
static void plan_points(SurveyPoint* p, double x0, double y0, double x1, double y1, double x2,
                        double y2)
{
    p[0].X = x0;
    p[0].Y = y0;
    p[1].X = x1;
    p[1].Y = y1;
    p[2].X = x2;
    p[2].Y = y2;
}

void LIB_CalCircle_generate(qv_gen* g, LIB_CalCircle_in* in)
{
    static const int32_t refused[] = {-1, -8, INT32_MIN};
    static const unsigned char modes[] = {0, 1, 1, 1, 2, 255};
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
    case 0: plan_points(in->pts, 0.0, 0.0, 1.0, 1.0, 2.0, 2.0); break; /* on a line of slope 1 */
    case 1: in->pts[1].X = in->pts[2].X = in->pts[0].X; break;         /* one northing */
    case 2: in->pts[1].Y = in->pts[2].Y = in->pts[0].Y; break;         /* one easting */
    case 3: in->pts[1] = in->pts[0]; break;
    case 4: in->pts[1].Y = in->pts[0].Y; break;
    case 5:
        /* right angle at the origin: centre (5, 5), radius sqrt(50) */
        plan_points(in->pts, 0.0, 0.0, 0.0, 10.0, 10.0, 0.0);
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

/* ---- LIB_OS_Round ----------------------------------------------------------- */

/* The horizontal directions of the two edges and the third sighting. */
static void directions(AngleObservation* obs, double first, double second, double third)
{
    obs[0].Horizontal = first;
    obs[1].Horizontal = second;
    obs[2].Horizontal = third;
}

void LIB_OS_Round_generate(qv_gen* g, LIB_OS_Round_in* in)
{
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
        directions(in->obs, 10.0, 1295990.0, qv_chance(g, 2) ? 5.0 : 1295995.0);
        break;
    case 1: directions(in->obs, 100.0, 300.0, 200.0); break; /* on the bisector */
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
