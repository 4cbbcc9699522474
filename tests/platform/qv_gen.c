/* Inputs of the reference vectors: a seeded pseudo-random stream and the
 * kinds of values a field program hands the library, with the awkward ones
 * mixed in. Only whole-number arithmetic and exactly rounded operations are
 * used, so the same seed gives the same inputs on every platform. */
#include "qv.h"

#include <float.h>
#include <math.h>
#include <string.h>

uint64_t qv_next(qv_gen* g)
{
    /* splitmix64 */
    uint64_t z = (g->state += UINT64_C(0x9E3779B97F4A7C15));
    z = (z ^ (z >> 30)) * UINT64_C(0xBF58476D1CE4E5B9);
    z = (z ^ (z >> 27)) * UINT64_C(0x94D049BB133111EB);
    return z ^ (z >> 31);
}

int qv_chance(qv_gen* g, unsigned n) { return qv_below(g, n) == 0; }

unsigned qv_below(qv_gen* g, unsigned n) { return (unsigned)(qv_next(g) % n); }

double qv_uniform(qv_gen* g, double lo, double hi)
{
    const double unit = (double)(qv_next(g) >> 11) * 0x1p-53;
    return lo + (hi - lo) * unit;
}

double qv_special(qv_gen* g)
{
    switch (qv_below(g, 18)) {
    case 0: return 0.0;
    case 1: return -0.0;
    case 2: return 1.0;
    case 3: return -1.0;
    case 4: return QUILLON_RANGE_LIMIT;
    case 5: return -QUILLON_RANGE_LIMIT;
    case 6: return nextafter(QUILLON_RANGE_LIMIT, INFINITY);
    case 7: return nextafter(-QUILLON_RANGE_LIMIT, -INFINITY);
    case 8: return nextafter(QUILLON_RANGE_LIMIT, 0.0);
    case 9: return 1e300;
    case 10: return -1e300;
    case 11: return 1e-300;
    case 12: return 0x1p-1074; /* smallest subnormal */
    case 13: return DBL_MAX;
    case 14: return INFINITY;
    case 15: return -INFINITY;
    case 16: return 2147483648.0; /* one past the largest 32-bit int */
    default: return NAN;
    }
}

double qv_mixture(qv_gen* g, const qv_band* bands, unsigned count)
{
    const unsigned kind = qv_below(g, 100);
    unsigned i;
    for (i = 0; i < count; ++i) {
        if (kind < bands[i].percent) {
            return qv_uniform(g, bands[i].lo, bands[i].hi);
        }
    }
    return qv_special(g);
}

double qv_coordinate(qv_gen* g)
{
    static const qv_band bands[] = {{65, -100000.0, 100000.0}, {80, -1e8, 1e8}, {94, -10.0, 10.0}};
    return qv_mixture(g, bands, 3);
}

double qv_length(qv_gen* g)
{
    static const qv_band bands[] = {
        {70, 0.0, 3000.0}, {80, 0.0, 0.001}, {88, -100.0, 100.0}, {94, 0.0, 1.5e8}};
    return qv_mixture(g, bands, 4);
}

double qv_angle(qv_gen* g)
{
    const unsigned kind = qv_below(g, 100);
    if (kind < 60) {
        return qv_uniform(g, 0.0, 1296000.0);
    }
    if (kind < 78) {
        /* an eighth-circle value, exact or a hair either side of it */
        const double base = 162000.0 * ((double)qv_below(g, 12) - 2.0);
        switch (qv_below(g, 5)) {
        case 0: return base;
        case 1: return nextafter(base, INFINITY);
        case 2: return nextafter(base, -INFINITY);
        case 3: return base + 0.0055268;
        default: return base - 1e-7;
        }
    }
    if (kind < 88) {
        return qv_uniform(g, -2592000.0, 3888000.0);
    }
    if (kind < 94) {
        return floor(qv_uniform(g, 0.0, 1296000.0));
    }
    return qv_special(g);
}

unsigned char qv_byte(qv_gen* g, const unsigned char* values, unsigned count)
{
    if (qv_chance(g, 10)) {
        return (unsigned char)qv_below(g, 256);
    }
    return values[qv_below(g, count)];
}

signed char qv_sign(qv_gen* g)
{
    const unsigned kind = qv_below(g, 20);
    if (kind < 9) {
        return 1;
    }
    if (kind < 18) {
        return -1;
    }
    return (signed char)(unsigned char)qv_below(g, 256);
}

SurveyPoint qv_point(qv_gen* g)
{
    SurveyPoint p;
    p.X = qv_coordinate(g);
    p.Y = qv_coordinate(g);
    p.H = qv_uniform(g, -100.0, 3000.0);
    if (qv_chance(g, 16)) {
        p.H = qv_special(g);
    }
    return p;
}

SurveyPoint qv_point_near(qv_gen* g, const SurveyPoint* other)
{
    SurveyPoint p = *other;
    switch (qv_below(g, 20)) {
    case 0:
    case 1: return p; /* the same point */
    case 2:
    case 3:
        p.H = qv_uniform(g, -100.0, 3000.0); /* the same in plan */
        return p;
    case 4:
        p.X = nextafter(p.X, INFINITY); /* a last-bit step away */
        return p;
    case 5: p.Y = nextafter(p.Y, -INFINITY); return p;
    case 6:
    case 7:
    case 8:
        /* a sight of ordinary length */
        p.X = other->X + qv_uniform(g, -2000.0, 2000.0);
        p.Y = other->Y + qv_uniform(g, -2000.0, 2000.0);
        p.H = other->H + qv_uniform(g, -50.0, 50.0);
        return p;
    case 9:
        /* due north, east, south or west */
        if (qv_chance(g, 2)) {
            p.X = other->X + qv_uniform(g, -500.0, 500.0);
        } else {
            p.Y = other->Y + qv_uniform(g, -500.0, 500.0);
        }
        return p;
    default: return qv_point(g);
    }
}

StationRecord qv_station(qv_gen* g)
{
    static const unsigned char modes[] = {0, 1, 2, 3};
    StationRecord s;
    memset(&s, 0, sizeof s);
    s.X = qv_coordinate(g);
    s.Y = qv_coordinate(g);
    s.H = qv_uniform(g, -100.0, 3000.0);
    s.InstrumentHeight = qv_uniform(g, 0.0, 2.0);
    s.TargetHeight = qv_uniform(g, 0.0, 3.0);
    if (qv_chance(g, 16)) {
        s.H = qv_special(g);
    }
    if (qv_chance(g, 16)) {
        s.TargetHeight = qv_special(g);
    }
    s.signA = qv_sign(g);
    s.signB = qv_sign(g);
    s.refractionMode = qv_byte(g, modes, 4);
    return s;
}

StationRecord qv_site_station(qv_gen* g)
{
    StationRecord s;
    if (qv_chance(g, 4)) {
        return qv_station(g);
    }
    s = qv_station(g);
    s.X = qv_uniform(g, -100000.0, 100000.0);
    s.Y = qv_uniform(g, -100000.0, 100000.0);
    s.H = qv_uniform(g, -100.0, 3000.0);
    s.InstrumentHeight = qv_uniform(g, 1.2, 1.8);
    s.TargetHeight = qv_uniform(g, 0.0, 3.0);
    return s;
}

SurveyPoint qv_station_point(const StationRecord* s)
{
    SurveyPoint p;
    p.X = s->X;
    p.Y = s->Y;
    p.H = s->H;
    return p;
}

double qv_azimuth(double from_x, double from_y, double to_x, double to_y)
{
    double az = atan2(to_y - from_y, to_x - from_x) * QUILLON_RHO_SEC;
    if (az < 0.0) {
        az += 1296000.0;
    }
    return az;
}

double qv_on_circle(double angle)
{
    double a = fmod(angle, 1296000.0);
    return a < 0.0 ? a + 1296000.0 : a;
}

SurveyPoint qv_point_around(qv_gen* g, const SurveyPoint* centre, double lo, double hi)
{
    const double bearing = qv_uniform(g, 0.0, 6.283185307179586);
    const double distance = qv_uniform(g, lo, hi);
    SurveyPoint p;
    p.X = centre->X + cos(bearing) * distance;
    p.Y = centre->Y + sin(bearing) * distance;
    p.H = centre->H + qv_uniform(g, -20.0, 20.0);
    return p;
}
