/* Inputs of the reference vectors, traverse family: closure and adjustment of a
 * traverse, multi-round observation at a station, and the multi-round
 * traverse.
 *
 * The traverses are realistic: legs of a few hundred metres with small
 * angular and distance errors, rounds of face I / face II pointings with an
 * index error, a collimation error and arc-second noise. Counts at their
 * limits, tolerances met exactly and degenerate known points are mixed in. */
#include "qv_table.h"

#include <math.h>
#include <string.h>

#define FULL_CIRCLE 1296000.0
#define HALF_CIRCLE 648000.0

/* ---- helpers ------------------------------------------------------------- */

static double azimuth_of(double dx, double dy)
{
    return qv_on_circle(atan2(dy, dx) / QUILLON_RAD_PER_SEC);
}

/* A small error: Gaussian-like, from the sum of three uniforms. */
static double noise(qv_gen* g, double size)
{
    return (qv_uniform(g, -1.0, 1.0) + qv_uniform(g, -1.0, 1.0) + qv_uniform(g, -1.0, 1.0)) * size;
}

static double site(qv_gen* g)
{
    return qv_chance(g, 20) ? qv_coordinate(g) : qv_uniform(g, -200000.0, 200000.0);
}

/* Station positions of a traverse of `count` stations from (x0, y0): a
 * random walk of legs, or a loop that comes back to its start. */
static void walk(qv_gen* g, unsigned count, int loop, double x0, double y0, double* x, double* y,
                 double* h)
{
    const double radius = qv_uniform(g, 300.0, 1500.0);
    const double centre_angle = qv_uniform(g, 0.0, 6.283185307179586);
    const double cx = x0 - radius * cos(centre_angle);
    const double cy = y0 - radius * sin(centre_angle);
    double azimuth = qv_uniform(g, 0.0, FULL_CIRCLE);
    unsigned i;
    x[0] = x0;
    y[0] = y0;
    h[0] = qv_uniform(g, 0.0, 2500.0);
    for (i = 1; i < count; ++i) {
        if (loop) {
            const double t = centre_angle + 6.283185307179586 * (double)i / (double)(count - 1) +
                             (i + 1 < count ? noise(g, 0.05) : 0.0);
            x[i] = i + 1 < count ? cx + radius * cos(t) : x0;
            y[i] = i + 1 < count ? cy + radius * sin(t) : y0;
        } else {
            const double leg = qv_uniform(g, 80.0, 900.0);
            azimuth = qv_on_circle(azimuth + qv_uniform(g, -300000.0, 300000.0));
            x[i] = x[i - 1] + leg * cos(azimuth * QUILLON_RAD_PER_SEC);
            y[i] = y[i - 1] + leg * sin(azimuth * QUILLON_RAD_PER_SEC);
        }
        h[i] = h[i - 1] + qv_uniform(g, -25.0, 25.0);
    }
    if (loop) {
        h[count - 1] = h[0];
    }
}

/* ---- LIB_TRSAdjust -------------------------------------------------------- */

#define ADJUST_POINTS QV_ELEMENTS(LIB_TRSAdjust_in, pts)

void LIB_TRSAdjust_generate(qv_gen* g, LIB_TRSAdjust_in* in)
{
    static const unsigned char modes[] = {0, 1};
    double x[ADJUST_POINTS + 1];
    double y[ADJUST_POINTS + 1];
    double h[ADJUST_POINTS + 1];
    double ex = 0.0;
    double ey = 0.0;
    unsigned n = 3 + qv_below(g, 14);
    unsigned i;
    if (qv_chance(g, 10)) {
        static const unsigned char counts[] = {0, 1, 2, ADJUST_POINTS};
        n = counts[qv_below(g, 4)];
    }
    in->mode = qv_byte(g, modes, 2);
    /* the computed points run from the first leg's end to the computed end */
    walk(g, ADJUST_POINTS + 1, in->mode == 1 && n > 0, site(g), site(g), x, y, h);
    if (in->mode == 1 && n > 0) {
        walk(g, n + 1, 1, x[0], y[0], x, y, h);
    }
    for (i = 0; i < ADJUST_POINTS; ++i) {
        in->dist[i] =
            sqrt((x[i + 1] - x[i]) * (x[i + 1] - x[i]) + (y[i + 1] - y[i]) * (y[i + 1] - y[i]));
        ex += noise(g, 0.01);
        ey += noise(g, 0.01);
        in->pts[i].X = x[i + 1] + ex;
        in->pts[i].Y = y[i + 1] + ey;
        in->pts[i].H = h[i + 1];
        if (qv_chance(g, 3)) {
            in->adj[i].X = 0.0;
            in->adj[i].Y = 0.0;
            in->adj[i].H = qv_chance(g, 2) ? 0.0 : qv_special(g);
        } else {
            in->adj[i] = qv_chance(g, 2) ? in->pts[i] : qv_point(g);
        }
    }
    in->ref[0].X = x[0];
    in->ref[0].Y = y[0];
    in->ref[0].H = h[0];
    in->ref[1].X = n > 0 ? x[n] : site(g);
    in->ref[1].Y = n > 0 ? y[n] : site(g);
    in->ref[1].H = qv_special(g); /* not read */
    switch (qv_below(g, 16)) {
    case 0:
        /* no length at all: the weights divide by zero */
        for (i = 0; i < ADJUST_POINTS; ++i) {
            in->dist[i] = 0.0;
        }
        break;
    case 1: in->dist[qv_below(g, 4)] = qv_special(g); break;
    case 2:
        /* a traverse that closes exactly */
        if (n > 0) {
            in->ref[0].X = in->pts[n - 1].X;
            in->ref[0].Y = in->pts[n - 1].Y;
            in->ref[1].X = in->pts[n - 1].X;
            in->ref[1].Y = in->pts[n - 1].Y;
        }
        break;
    case 3: in->ref[qv_below(g, 2)] = qv_point(g); break;
    default: break;
    }
    in->n = (unsigned char)n;
}

/* ---- LIB_TRSCalCoorErr ------------------------------------------------------ */

#define LEGS QV_ELEMENTS(LIB_TRSCalCoorErr_in, legs)

void LIB_TRSCalCoorErr_generate(qv_gen* g, LIB_TRSCalCoorErr_in* in)
{
    static const unsigned char steps[] = {0, 1, 2, 3};
    static const unsigned char modes[] = {0, 1};
    double x[LEGS + 1];
    double y[LEGS + 1];
    double h[LEGS + 1];
    unsigned n = 2 + qv_below(g, 12);
    unsigned i;
    if (qv_chance(g, 10)) {
        static const unsigned char counts[] = {0, 1, LEGS};
        n = counts[qv_below(g, 3)];
    }
    in->step = qv_byte(g, steps, 4);
    in->mode = qv_byte(g, modes, 2);
    walk(g, n + 1 > 2 ? n + 1 : 2, in->mode == 1 && n >= 2, site(g), site(g), x, y, h);
    memset(in->legs, 0, sizeof in->legs);
    for (i = 0; i < n; ++i) {
        TraverseLeg* leg = &in->legs[i];
        const double dx = x[i + 1] - x[i];
        const double dy = y[i + 1] - y[i];
        leg->HorizDist = sqrt(dx * dx + dy * dy) + noise(g, 0.003);
        leg->HeightDiff = h[i + 1] - h[i] + noise(g, 0.005);
        leg->ForeDirection = qv_on_circle(azimuth_of(dx, dy) + noise(g, 3.0));
        leg->DeltaX = leg->HorizDist * cos(leg->ForeDirection * QUILLON_RAD_PER_SEC);
        leg->DeltaY = leg->HorizDist * sin(leg->ForeDirection * QUILLON_RAD_PER_SEC);
        leg->DeltaH = leg->HeightDiff;
        leg->Spare1 = qv_special(g);
        leg->Spare2 = (double)i;
    }
    for (i = 0; i < n; ++i) {
        /* the direction back to the previous station (the last one for the
         * first leg of a loop) */
        const double previous =
            i > 0 ? in->legs[i - 1].ForeDirection : in->legs[n - 1].ForeDirection;
        in->legs[i].BackDirection = qv_on_circle(previous + HALF_CIRCLE + noise(g, 3.0));
    }
    in->known.Start.X = x[0];
    in->known.Start.Y = y[0];
    in->known.Start.H = h[0];
    in->known.End.X = n > 0 ? x[n] : x[0];
    in->known.End.Y = n > 0 ? y[n] : y[0];
    in->known.End.H = n > 0 ? h[n] : h[0];
    {
        const double last = n > 0 ? in->legs[n - 1].ForeDirection : 0.0;
        const double back = qv_uniform(g, 200.0, 2000.0);
        in->known.ClosingRef.X = in->known.End.X - back * cos(last * QUILLON_RAD_PER_SEC);
        in->known.ClosingRef.Y = in->known.End.Y - back * sin(last * QUILLON_RAD_PER_SEC);
        in->known.ClosingRef.H = qv_uniform(g, 0.0, 2500.0);
    }
    switch (qv_below(g, 16)) {
    case 0:
        /* closing orientation point on the end point in plan */
        in->known.ClosingRef.X = in->known.End.X;
        in->known.ClosingRef.Y = in->known.End.Y;
        break;
    case 1:
        /* angles with fractions of a second just below a whole one */
        for (i = 0; i < n; ++i) {
            in->legs[i].BackDirection = floor(in->legs[i].BackDirection) + 0.9999999;
        }
        break;
    case 2:
        if (n > 0) {
            in->legs[0].ForeDirection = qv_chance(g, 2) ? 0.0 : qv_uniform(g, 0.0, 5.0);
        }
        break;
    case 3: in->legs[qv_below(g, 2)].HorizDist = qv_special(g); break;
    case 4:
        for (i = 0; i < n; ++i) {
            in->legs[i].HorizDist = 0.0;
        }
        break;
    case 5: in->step = (unsigned char)(qv_chance(g, 2) ? 4 : 255); break;
    default: break;
    }
    /* the closure record as the earlier steps left it */
    memset(&in->result, 0, sizeof in->result);
    if (qv_chance(g, 6)) {
        memset(&in->result, 0xA5, sizeof in->result);
    } else if (in->step >= 1 && n > 0) {
        TraverseLeg legs[LEGS];
        memcpy(legs, in->legs, sizeof legs);
        QV_FN(LIB_TRSCalCoorErr)(legs, (unsigned char)n, &in->known, 0, in->mode, &in->result);
        if (in->step >= 2 && qv_chance(g, 2)) {
            /* steps 2 and 3 on the directions step 1 corrected */
            QV_FN(LIB_TRSCalCoorErr)(legs, (unsigned char)n, &in->known, 1, in->mode, &in->result);
            QV_FN(LIB_TRSCalCoorErr)(legs, (unsigned char)n, &in->known, 0, in->mode, &in->result);
            memcpy(in->legs, legs, sizeof legs);
        }
    }
    in->n = (unsigned char)n;
}

/* ---- LIB_STAMultCycleCal ---------------------------------------------------- */

#define ROUNDS QV_ELEMENTS(LIB_STAMultCycleCal_in, rounds)

static TargetReading reading(double hz, double v, double slope)
{
    TargetReading r;
    unsigned i;
    r.Hz = hz;
    r.V = v;
    r.SlopeDist = slope;
    for (i = 0; i < 6; ++i) {
        r.Spare[i] = (double)i * 0.5;
    }
    return r;
}

void LIB_STAMultCycleCal_generate(qv_gen* g, LIB_STAMultCycleCal_in* in)
{
    static const unsigned char obs_modes[] = {0, 1, 2, 3, 2};
    const unsigned kind = qv_below(g, 16);
    const double index_error = noise(g, 8.0);
    const double collimation = noise(g, 6.0);
    double hz[2];
    double v[2];
    double slope[2];
    StaMultiResult record;
    unsigned n = 1 + qv_below(g, ROUNDS);
    unsigned r;
    unsigned t;
    hz[0] = qv_uniform(g, 0.0, FULL_CIRCLE);
    hz[1] = qv_uniform(g, 0.0, FULL_CIRCLE);
    if (kind == 0) {
        /* face II readings either side of the half circle */
        hz[0] = qv_uniform(g, -20.0, 20.0) + (qv_chance(g, 2) ? 0.0 : HALF_CIRCLE);
        hz[0] = qv_on_circle(hz[0]);
    }
    for (t = 0; t < 2; ++t) {
        v[t] = qv_uniform(g, 290000.0, 358000.0);
        slope[t] = qv_uniform(g, 20.0, 2500.0);
    }
    for (r = 0; r < ROUNDS; ++r) {
        RoundObservation* o = &in->rounds[r];
        TargetReading* face1[2];
        TargetReading* face2[2];
        face1[0] = &o->Face1Target1;
        face1[1] = &o->Face1Target2;
        face2[0] = &o->Face2Target1;
        face2[1] = &o->Face2Target2;
        for (t = 0; t < 2; ++t) {
            *face1[t] = reading(qv_on_circle(hz[t] + collimation + noise(g, 1.5)),
                                v[t] + index_error + noise(g, 1.5), slope[t] + noise(g, 0.001));
            *face2[t] = reading(qv_on_circle(hz[t] + HALF_CIRCLE - collimation + noise(g, 1.5)),
                                FULL_CIRCLE - v[t] + index_error + noise(g, 1.5),
                                slope[t] + noise(g, 0.001));
        }
    }
    in->station = qv_station(g);
    if (!qv_chance(g, 8)) {
        in->station.X = qv_uniform(g, -200000.0, 200000.0);
        in->station.Y = qv_uniform(g, -200000.0, 200000.0);
        in->station.H = qv_uniform(g, 0.0, 2500.0);
    }
    in->scale = qv_chance(g, 3) ? 1.0 : qv_uniform(g, 0.9996, 1.0004);
    if (qv_chance(g, 16)) {
        in->scale = qv_chance(g, 2) ? 0.99 : nextafter(1.01, 2.0);
    }
    /* the record: outputs as the caller's buffer holds them, then inputs */
    memset(&record, 0xA5, sizeof record);
    if (qv_chance(g, 4)) {
        memset(&record, 0, QV_PORTABLE_StaMultiResult);
    }
    record.TolIndexDiff = qv_uniform(g, 5.0, 20.0);
    record.TolZenithRange = qv_uniform(g, 5.0, 20.0);
    record.TolFaceAngleDiff = qv_uniform(g, 5.0, 20.0);
    record.Tol2CDiff = qv_uniform(g, 5.0, 25.0);
    record.TolDirectionRange = qv_uniform(g, 5.0, 20.0);
    record.SkipChecks = qv_chance(g, 6) ? (qv_chance(g, 2) ? 1 : -1) : 0;
    record.ObsMode = obs_modes[qv_below(g, 5)];
    if (qv_chance(g, 16)) {
        record.ObsMode = qv_chance(g, 2) ? -1 : 4;
    }
    switch (kind) {
    case 1: {
        /* the index-error tolerance met exactly, or missed by the last bit */
        const RoundObservation* o = &in->rounds[0];
        const double i1 = ((o->Face1Target1.V + o->Face2Target1.V) - FULL_CIRCLE) * 0.5;
        const double i2 = ((o->Face1Target2.V + o->Face2Target2.V) - FULL_CIRCLE) * 0.5;
        record.TolIndexDiff = fabs(i1 - i2);
        if (qv_chance(g, 2)) {
            record.TolIndexDiff = nextafter(record.TolIndexDiff, 0.0);
        }
        n = 1;
        break;
    }
    case 2:
        /* tight tolerances: several tests fail, the first one counts */
        record.TolIndexDiff = qv_uniform(g, 0.0, 2.0);
        record.TolZenithRange = qv_uniform(g, 0.0, 2.0);
        record.TolFaceAngleDiff = qv_uniform(g, 0.0, 2.0);
        record.Tol2CDiff = qv_uniform(g, 0.0, 2.0);
        record.TolDirectionRange = qv_uniform(g, 0.0, 2.0);
        break;
    case 3: n = 0; break;
    case 4:
        /* a blunder in one round */
        in->rounds[ROUNDS - 1].Face1Target1.Hz += 60.0;
        in->rounds[ROUNDS - 1].Face2Target2.V -= 40.0;
        break;
    case 5: in->rounds[0].Face1Target1.SlopeDist = qv_special(g); break;
    case 6:
        /* a target past the range limit */
        in->station.X = QUILLON_RANGE_LIMIT - qv_uniform(g, 0.0, 100.0);
        break;
    default: break;
    }
    memset(in->before, 0xA5, sizeof in->before);
    memcpy(in->before, &record, QV_PORTABLE_StaMultiResult);
    in->n = n;
}

/* ---- LIB_TRSMultCycleCal ------------------------------------------------------ */

#define STATIONS QV_ELEMENTS(LIB_TRSMultCycleCal_in, stations)

void LIB_TRSMultCycleCal_generate(qv_gen* g, LIB_TRSMultCycleCal_in* in)
{
    static const unsigned char types[] = {0, 1, 2, 3, 4, 2};
    static const unsigned char rules[] = {0, 1, 0, 1, 2};
    double x[STATIONS + 1];
    double y[STATIONS + 1];
    double h[STATIONS + 1];
    double azimuth[STATIONS];
    double back_azimuth;
    unsigned n = 3 + qv_below(g, STATIONS - 2);
    int32_t type = qv_byte(g, types, 6);
    unsigned i;
    if (qv_chance(g, 12)) {
        static const unsigned char counts[] = {0, 1, 2};
        n = counts[qv_below(g, 3)];
    }
    if (qv_chance(g, 16)) {
        type = qv_chance(g, 2) ? -1 : 5;
    }
    /* a loop returns to A at its last station; a closed polygon's last
     * station is B, the one before A */
    if (type == 1) {
        walk(g, n > 2 ? n + 1 : 3, 1, site(g), site(g), x, y, h);
    } else {
        walk(g, n > 2 ? n : 2, type == 0, site(g), site(g), x, y, h);
    }
    memset(in, 0, sizeof *in);
    in->control.DistributionRule = qv_byte(g, rules, 5);
    in->control.HeightRule = qv_byte(g, rules, 5);
    in->control.TraverseType = type;
    in->control.Reserved = (int32_t)qv_below(g, 1000);
    in->control.A.X = x[0];
    in->control.A.Y = y[0];
    in->control.A.H = h[0];
    /* B orients A; a closed polygon ends on B, the station before A */
    back_azimuth = qv_uniform(g, 0.0, FULL_CIRCLE);
    if (type == 1 && n > 2) {
        in->control.B.X = x[n - 1];
        in->control.B.Y = y[n - 1];
        in->control.B.H = h[n - 1];
        back_azimuth = azimuth_of(x[0] - x[n - 1], y[0] - y[n - 1]);
    } else {
        const double sight = qv_uniform(g, 300.0, 3000.0);
        in->control.B.X = x[0] - sight * cos(back_azimuth * QUILLON_RAD_PER_SEC);
        in->control.B.Y = y[0] - sight * sin(back_azimuth * QUILLON_RAD_PER_SEC);
        in->control.B.H = h[0] + qv_uniform(g, -20.0, 20.0);
    }
    {
        const unsigned last = n > 2 ? n - 1 : 1;
        const double sight = qv_uniform(g, 300.0, 3000.0);
        const double out_azimuth = qv_uniform(g, 0.0, FULL_CIRCLE);
        in->control.E.X = x[last] + noise(g, 0.02);
        in->control.E.Y = y[last] + noise(g, 0.02);
        in->control.E.H = h[last] + noise(g, 0.02);
        in->control.G.X = x[last] + sight * cos(out_azimuth * QUILLON_RAD_PER_SEC);
        in->control.G.Y = y[last] + sight * sin(out_azimuth * QUILLON_RAD_PER_SEC);
        in->control.G.H = h[last];
        for (i = 0; i + 1 < n; ++i) {
            azimuth[i] = azimuth_of(x[i + 1] - x[i], y[i + 1] - y[i]);
        }
        if (n > 0) {
            /* the last station sights G, or B again round a loop, or A from B */
            azimuth[n - 1] = out_azimuth;
            if (type == 0) {
                azimuth[n - 1] = qv_on_circle(back_azimuth + HALF_CIRCLE);
            } else if (type == 1 && n > 2) {
                azimuth[n - 1] = azimuth_of(x[n] - x[n - 1], y[n] - y[n - 1]);
            }
        }
    }
    for (i = 0; i < n && i < STATIONS; ++i) {
        TraverseStation* s = &in->stations[i];
        const double previous = i == 0 ? back_azimuth : azimuth[i - 1];
        unsigned k;
        /* fields of the station's own reduction, carried through */
        for (k = 0; k < 36; ++k) {
            ((double*)s)[k] = qv_chance(g, 3) ? 0.0 : qv_uniform(g, -1000.0, 1000.0);
        }
        s->Angle12 = qv_on_circle(azimuth[i] - previous + HALF_CIRCLE + noise(g, 2.0));
        if (i + 1 < n) {
            const double dx = x[i + 1] - x[i];
            const double dy = y[i + 1] - y[i];
            s->HorizDist1 = sqrt(dx * dx + dy * dy) + noise(g, 0.003);
            s->VertDiff1 = h[i + 1] - h[i] + noise(g, 0.005);
        }
        s->StationPoint.X = x[i];
        s->StationPoint.Y = y[i];
        s->StationPoint.H = h[i];
    }
    switch (qv_below(g, 12)) {
    case 0:
        for (i = 0; i < STATIONS; ++i) {
            in->stations[i].HorizDist1 = 0.0;
        }
        break;
    case 1: in->stations[0].HorizDist1 = qv_special(g); break;
    case 2: in->stations[qv_below(g, 3)].Angle12 = qv_angle(g); break;
    case 3:
        /* A and B in one place */
        in->control.B = in->control.A;
        break;
    default: break;
    }
    in->n = n;
}
