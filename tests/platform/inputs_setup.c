/* Inputs of the reference vectors, setup family: resection, orientation, base line,
 * projection and reference line, vertical and slope planes, arcs.
 *
 * Most cases come from a plausible set-up (known points around the station,
 * readings that point at them, a plane or an arc a few metres to a few
 * hundred metres away); the rest push the tests that flip a result: counts at
 * their limits, coincident and collinear points, sights behind the
 * instrument, the range limit, infinities and not-a-numbers. */
#include "qv_table.h"

#include <math.h>
#include <string.h>

#define MAX_KNOWN QV_ELEMENTS(LIB_RESA2D_in, known)

static const unsigned char mode_bytes[] = {0, 0, 1, 1, 2, 255};

/* ---- shared pieces of a set-up ---------------------------------------------- */

/* The sight from the instrument centre (station plus instrument height) to a
 * point: its azimuth and zenith angle on face I, or the face II reading of
 * both when face_two is set. */
static AngleObservation sight_to(const StationRecord* s, const SurveyPoint* p, int face_two)
{
    const double dx = p->X - s->X;
    const double dy = p->Y - s->Y;
    const double dz = p->H - (s->H + s->InstrumentHeight);
    AngleObservation o;
    o.Horizontal = qv_azimuth(s->X, s->Y, p->X, p->Y);
    o.Zenith = atan2(sqrt(dx * dx + dy * dy), dz) * QUILLON_RHO_SEC;
    o.Value = 0.0;
    if (face_two) {
        o.Horizontal = qv_on_circle(o.Horizontal + 648000.0);
        o.Zenith = 1296000.0 - o.Zenith;
    }
    return o;
}

/* A pair of points in plan: mostly a line of a few metres to a few hundred,
 * now and then coincident, plumb or far apart (qv_point_near). */
static void line_points(qv_gen* g, SurveyPoint* a, SurveyPoint* b)
{
    *a = qv_point(g);
    *b = qv_chance(g, 3) ? qv_point_near(g, a) : qv_point_around(g, a, 1.0, 500.0);
}

/* ---- LIB_RESA2D ------------------------------------------------------------- */

/* Known points round a station and the directions read to them with the
 * circle set at an arbitrary orientation; every slot of the arrays is filled. */
static void sightings(qv_gen* g, const SurveyPoint* station, AngleObservation* obs,
                      SurveyPoint* known, double orientation, double spread)
{
    const double first = qv_uniform(g, 0.0, 1296000.0);
    unsigned i;
    for (i = 0; i < MAX_KNOWN; ++i) {
        const double az = qv_on_circle(first + qv_uniform(g, 0.0, spread));
        const double bearing = az / QUILLON_RHO_SEC;
        const double distance = qv_uniform(g, 30.0, 2000.0);
        known[i].X = station->X + cos(bearing) * distance;
        known[i].Y = station->Y + sin(bearing) * distance;
        known[i].H = station->H + qv_uniform(g, -30.0, 30.0);
        obs[i].Horizontal =
            qv_on_circle(qv_azimuth(station->X, station->Y, known[i].X, known[i].Y) - orientation +
                         qv_uniform(g, -3.0, 3.0));
        obs[i].Zenith = qv_uniform(g, 300000.0, 348000.0);
        obs[i].Value = qv_uniform(g, 0.0, 3.0);
    }
}

void LIB_RESA2D_generate(qv_gen* g, LIB_RESA2D_in* in)
{
    static const unsigned char counts[] = {0, 2, 3, 3, 4, 5, 6, 7, 20, 21, 255};
    const SurveyPoint station = qv_point(g);
    /* all round, or within a sector (a gap of more than a half circle) */
    const double spread = qv_chance(g, 2) ? 1296000.0 : qv_uniform(g, 50000.0, 640000.0);
    unsigned i;
    sightings(g, &station, in->obs, in->known, qv_uniform(g, 0.0, 1296000.0), spread);
    in->n = qv_chance(g, 2) ? qv_byte(g, counts, 11) : (unsigned char)(3 + qv_below(g, 18));
    switch (qv_below(g, 12)) {
    case 0:
        for (i = 0; i < MAX_KNOWN; ++i) {
            in->obs[i].Horizontal = floor(in->obs[i].Horizontal); /* whole seconds */
        }
        break;
    case 1: in->obs[1].Horizontal = in->obs[0].Horizontal; break;
    case 2: in->known[2] = in->known[1]; break;
    case 3: in->obs[qv_below(g, 3)].Horizontal = qv_special(g); break;
    case 4: in->known[qv_below(g, 3)].X = qv_special(g); break;
    case 5:
        /* three points on one line */
        in->known[2].X = in->known[0].X + (in->known[1].X - in->known[0].X) * 2.0;
        in->known[2].Y = in->known[0].Y + (in->known[1].Y - in->known[0].Y) * 2.0;
        break;
    default: break;
    }
}

/* ---- LIB_RESDist ------------------------------------------------------------ */

void LIB_RESDist_generate(qv_gen* g, LIB_RESDist_in* in)
{
    static const unsigned char counts[] = {0, 1, 2, 3, 20, 21, 255};
    const SurveyPoint station = qv_point(g);
    /* beyond a quarter circle the orientation comes out folded */
    const double orientation = qv_uniform(g, -648000.0, 648000.0);
    const double spread = qv_chance(g, 2) ? 1296000.0 : qv_uniform(g, 50000.0, 640000.0);
    unsigned i;
    in->instrument_height = qv_uniform(g, 1.2, 1.8);
    sightings(g, &station, in->obs, in->known, orientation, spread);
    for (i = 0; i < MAX_KNOWN; ++i) {
        const double dx = in->known[i].X - station.X;
        const double dy = in->known[i].Y - station.Y;
        in->target_heights[i] = qv_uniform(g, 0.0, 3.0);
        in->dists[i].HorizontalDistance = sqrt(dx * dx + dy * dy) + qv_uniform(g, -0.005, 0.005);
        in->dists[i].SlopeDistance = in->dists[i].HorizontalDistance * 1.001;
        in->dists[i].VerticalDifference =
            ((in->target_heights[i] + in->known[i].H) - station.H - in->instrument_height) +
            qv_uniform(g, -0.01, 0.01);
        in->dists[i].HeightDifference = in->known[i].H - station.H;
    }
    in->mode = qv_byte(g, mode_bytes, 6);
    in->n = qv_chance(g, 3) ? qv_byte(g, counts, 7) : (unsigned char)(2 + qv_below(g, 19));
    if (in->mode != 0 && in->mode != 1) {
        /* the height alone takes any count: keep it within the arrays */
        in->n = (unsigned char)(in->n % (MAX_KNOWN + 1));
    }
    switch (qv_below(g, 14)) {
    case 0:
        /* every sighting gives the same height */
        for (i = 0; i < MAX_KNOWN; ++i) {
            in->dists[i].VerticalDifference = 0.0;
            in->target_heights[i] = 1.5;
            in->known[i].H = 101.5;
        }
        in->instrument_height = 1.5;
        break;
    case 1: in->known[1] = in->known[0]; break;
    case 2: in->dists[qv_below(g, 3)].HorizontalDistance = qv_special(g); break;
    case 3: in->obs[qv_below(g, 3)].Zenith = qv_special(g); break;
    case 4: in->instrument_height = qv_special(g); break;
    case 5:
        for (i = 0; i < MAX_KNOWN; ++i) {
            in->dists[i].HorizontalDistance = 0.0;
        }
        break;
    default: break;
    }
}

/* ---- LIB_RESSetAngle -------------------------------------------------------- */

void LIB_RESSetAngle_generate(qv_gen* g, LIB_RESSetAngle_in* in)
{
    line_points(g, &in->station, &in->target);
    in->reading = qv_angle(g);
    in->orientation = qv_chance(g, 3) ? 0.0 : qv_angle(g);
    in->azimuth = qv_angle(g);
}

/* ---- LIB_BaseLine ----------------------------------------------------------- */

void LIB_BaseLine_generate(qv_gen* g, LIB_BaseLine_in* in)
{
    line_points(g, &in->pts[0], &in->pts[1]);
    if (qv_chance(g, 10)) {
        /* a line of exactly the range limit, or one last bit longer */
        in->pts[0].X = 0.0;
        in->pts[0].Y = 0.0;
        in->pts[1].X = 0.0;
        in->pts[1].Y = 0.0;
        if (qv_chance(g, 2)) {
            in->pts[1].X =
                qv_chance(g, 2) ? QUILLON_RANGE_LIMIT : nextafter(QUILLON_RANGE_LIMIT, INFINITY);
        } else {
            in->pts[1].Y =
                qv_chance(g, 2) ? -QUILLON_RANGE_LIMIT : nextafter(-QUILLON_RANGE_LIMIT, -INFINITY);
        }
    }
}

/* ---- LIB_Project ------------------------------------------------------------ */

/* A third point beside the line A-B: near A or B, on the line, or anywhere. */
static SurveyPoint third_point(qv_gen* g, const SurveyPoint* a, const SurveyPoint* b)
{
    SurveyPoint p;
    switch (qv_below(g, 8)) {
    case 0: return qv_point_near(g, a);
    case 1: return qv_point_near(g, b);
    case 2:
        /* on the line, before A, between or beyond B */
        p = *a;
        p.X = a->X + (b->X - a->X) * qv_uniform(g, -1.0, 2.0);
        p.Y = a->Y + (b->Y - a->Y) * qv_uniform(g, -1.0, 2.0);
        return p;
    default: return qv_point_around(g, a, 0.5, 400.0);
    }
}

void LIB_Project_generate(qv_gen* g, LIB_Project_in* in)
{
    line_points(g, &in->pts[0], &in->pts[1]);
    in->pts[2] = third_point(g, &in->pts[0], &in->pts[1]);
}

/* ---- LIB_LSO_Point ---------------------------------------------------------- */

void LIB_LSO_Point_generate(qv_gen* g, LIB_LSO_Point_in* in)
{
    line_points(g, &in->pts[0], &in->pts[1]);
    in->pos.Along = qv_uniform(g, -100.0, 300.0);
    in->pos.Across = qv_uniform(g, -50.0, 50.0);
    switch (qv_below(g, 10)) {
    case 0:
        in->pos.Along = 0.0;
        in->pos.Across = 0.0;
        break;
    case 1: in->pos.Across = qv_chance(g, 2) ? 0.0 : -0.0; break;
    case 2: in->pos.Along = qv_chance(g, 2) ? 0.0 : -0.0; break;
    case 3: in->pos.Along = qv_special(g); break;
    case 4: in->pos.Across = qv_special(g); break;
    default: break;
    }
}

/* ---- LIB_LSO_Line ----------------------------------------------------------- */

void LIB_LSO_Line_generate(qv_gen* g, LIB_LSO_Line_in* in)
{
    line_points(g, &in->pts[0], &in->pts[1]);
    in->pts[2] = third_point(g, &in->pts[0], &in->pts[1]);
    in->design_offset = qv_uniform(g, -20.0, 20.0);
    if (qv_chance(g, 8)) {
        in->design_offset = qv_chance(g, 2) ? 0.0 : qv_special(g);
    }
}

/* ---- LIB_VPlane ------------------------------------------------------------- */

void LIB_VPlane_generate(qv_gen* g, LIB_VPlane_in* in)
{
    SurveyPoint at;
    SurveyPoint target;
    double along = qv_uniform(g, -0.5, 1.5);
    in->station = qv_site_station(g);
    at = qv_station_point(&in->station);
    in->plane[0] = qv_point_around(g, &at, 2.0, 300.0);
    in->plane[1] = qv_point_around(g, &in->plane[0], 1.0, 100.0);
    switch (qv_below(g, 16)) {
    case 0: in->plane[1].X = in->plane[0].X; break; /* a north-south trace */
    case 1: in->plane[1].Y = in->plane[0].Y; break; /* an east-west trace */
    case 2:
        /* a plane through the station: whole metres in one line of sight */
        in->station.X = floor(in->station.X);
        in->station.Y = floor(in->station.Y);
        in->plane[0].X = in->station.X + 12.0;
        in->plane[0].Y = in->station.Y + 5.0;
        in->plane[1].X = in->station.X + (qv_chance(g, 2) ? 24.0 : -24.0);
        in->plane[1].Y = in->station.Y + (in->plane[1].X > in->station.X ? 10.0 : -10.0);
        break;
    case 3: in->plane[1] = qv_point_near(g, &in->plane[0]); break;
    case 4: in->plane[0] = qv_point_near(g, &at); break;
    default: break;
    }
    target.X = in->plane[0].X + (in->plane[1].X - in->plane[0].X) * along;
    target.Y = in->plane[0].Y + (in->plane[1].Y - in->plane[0].Y) * along;
    target.H = in->plane[0].H + qv_uniform(g, -10.0, 30.0);
    in->sight = sight_to(&in->station, &target, in->station.signA != in->station.signB);
    switch (qv_below(g, 12)) {
    case 0: in->sight.Horizontal = qv_on_circle(in->sight.Horizontal + 648000.0); break;
    case 1: in->sight.Horizontal += qv_chance(g, 2) ? 1.5 : 0.5; break;
    case 2: in->sight.Horizontal = qv_angle(g); break;
    case 3: in->sight.Zenith = qv_angle(g); break;
    default: break;
    }
}

/* ---- LIB_SPlane ------------------------------------------------------------- */

void LIB_SPlane_generate(qv_gen* g, LIB_SPlane_in* in)
{
    SurveyPoint at;
    SurveyPoint target;
    const double u = qv_uniform(g, -0.5, 1.5);
    const double v = qv_uniform(g, -0.5, 1.5);
    in->station = qv_site_station(g);
    at = qv_station_point(&in->station);
    in->plane[0] = qv_point_around(g, &at, 2.0, 300.0);
    in->plane[1] = qv_point_around(g, &in->plane[0], 1.0, 100.0);
    in->plane[2] = qv_point_around(g, &in->plane[0], 1.0, 100.0);
    switch (qv_below(g, 14)) {
    case 0:
        /* three points on one line */
        in->plane[2].X = in->plane[0].X + (in->plane[1].X - in->plane[0].X) * 2.0;
        in->plane[2].Y = in->plane[0].Y + (in->plane[1].Y - in->plane[0].Y) * 2.0;
        in->plane[2].H = in->plane[0].H + (in->plane[1].H - in->plane[0].H) * 2.0;
        break;
    case 1:
        /* a level plane */
        in->plane[1].H = in->plane[0].H;
        in->plane[2].H = in->plane[0].H;
        break;
    case 2: in->plane[2] = in->plane[1]; break;
    case 3: in->plane[qv_below(g, 3)].X = qv_special(g); break;
    default: break;
    }
    target.X = in->plane[0].X + (in->plane[1].X - in->plane[0].X) * u +
               (in->plane[2].X - in->plane[0].X) * v;
    target.Y = in->plane[0].Y + (in->plane[1].Y - in->plane[0].Y) * u +
               (in->plane[2].Y - in->plane[0].Y) * v;
    target.H = in->plane[0].H + (in->plane[1].H - in->plane[0].H) * u +
               (in->plane[2].H - in->plane[0].H) * v;
    in->sight = sight_to(&in->station, &target, in->station.signA != in->station.signB);
    switch (qv_below(g, 12)) {
    case 0: in->sight.Horizontal = qv_on_circle(in->sight.Horizontal + 648000.0); break;
    case 1: in->sight.Horizontal += qv_chance(g, 2) ? 1.5 : 0.5; break;
    case 2: in->sight.Horizontal = qv_angle(g); break;
    case 3: in->sight.Zenith = qv_chance(g, 2) ? 324000.0 : qv_angle(g); break;
    default: break;
    }
}

/* ---- LIB_ArcCalc ------------------------------------------------------------ */

void LIB_ArcCalc_generate(qv_gen* g, LIB_ArcCalc_in* in)
{
    SurveyPoint at;
    SurveyPoint centre;
    SurveyPoint target;
    SurveyPoint* on_arc[3];
    const double radius = qv_chance(g, 8) ? qv_uniform(g, 0.5, 5.0) : qv_uniform(g, 5.0, 500.0);
    const double sense = qv_chance(g, 2) ? 1.0 : -1.0;
    double bearing = qv_uniform(g, 0.0, 6.283185307179586);
    unsigned k;
    in->station = qv_site_station(g);
    at = qv_station_point(&in->station);
    /* the station inside the circle or outside it */
    centre = qv_point_around(g, &at, 0.0, qv_chance(g, 2) ? radius * 0.9 : radius * 3.0);
    on_arc[0] = &in->arc.P1;
    on_arc[1] = &in->arc.P2;
    on_arc[2] = &in->arc.P3;
    for (k = 0; k < 3; ++k) {
        on_arc[k]->X = centre.X + cos(bearing) * radius;
        on_arc[k]->Y = centre.Y + sin(bearing) * radius;
        on_arc[k]->H = centre.H + qv_uniform(g, -2.0, 2.0);
        bearing += sense * qv_uniform(g, 0.1, 2.0);
    }
    /* which side of the chord P1->P2 the centre lies on decides the sign;
     * a wrong sign now and then gives the mirrored circle */
    in->arc.Radius = radius;
    if (((in->arc.P2.X - in->arc.P1.X) * (centre.Y - in->arc.P1.Y) -
         (in->arc.P2.Y - in->arc.P1.Y) * (centre.X - in->arc.P1.X)) < 0.0) {
        in->arc.Radius = -radius;
    }
    if (qv_chance(g, 8)) {
        in->arc.Radius = -in->arc.Radius;
    }
    bearing = qv_uniform(g, 0.0, 6.283185307179586);
    target.X = centre.X + cos(bearing) * radius;
    target.Y = centre.Y + sin(bearing) * radius;
    target.H = at.H + qv_uniform(g, -10.0, 20.0);
    in->arc.Sight = sight_to(&in->station, &target, qv_chance(g, 3));
    in->arc.Sight.Value = qv_length(g);
    switch (qv_below(g, 20)) {
    case 0: in->arc.P2 = in->arc.P1; break;
    case 1: in->arc.P3 = in->arc.P2; break;
    case 2:
        /* three points on one line */
        in->arc.P3.X = in->arc.P1.X + (in->arc.P2.X - in->arc.P1.X) * 2.0;
        in->arc.P3.Y = in->arc.P1.Y + (in->arc.P2.Y - in->arc.P1.Y) * 2.0;
        break;
    case 3: in->arc.Radius = qv_chance(g, 2) ? 0.0 : qv_special(g); break;
    case 4: in->arc.Radius = in->arc.Radius * 0.01; break; /* shorter than half the chord */
    case 5: in->arc.Sight.Zenith = qv_chance(g, 2) ? 0.0 : 648000.0; break;
    case 6: in->arc.Sight.Horizontal = qv_angle(g); break;
    case 7: in->arc.Sight.Zenith = qv_angle(g); break;
    case 8: in->arc.P1.X = qv_special(g); break;
    default: break;
    }
    in->mode = qv_byte(g, mode_bytes, 6);
}
