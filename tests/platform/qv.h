/*
 * qv.h - reference vectors of the exported functions, shared by the family
 * files (vectors_<family>.c) and the client program.
 *
 * A family file describes each exported function of its family with
 *   - an input block (a struct of the arguments, records by value),
 *   - an output block (a struct of everything the function may write),
 *     described field by field in a layout string,
 *   - a generator that fills the input block for one case, and
 *   - a caller that calls the function through the loaded module.
 * The client fills the output block with 0xA5 before every call, so an output
 * the function leaves alone is compared as well.
 *
 * Layout strings name the fields of the output block in order, each as
 * name:type or name:typeCOUNT, separated by spaces:
 *   d  double, compared bit for bit; a last-bit difference from the math
 *      library is reported in units in the last place
 *   f  float, likewise
 *   w  double holding a truncated whole value (whole arc-seconds): exact
 *   i  32-bit integer: exact
 *   u  unsigned byte (count, mode, flag, face): exact
 *   c  signed byte: exact
 *   x  padding, left as filled: exact
 * The layout must cover the whole block (sizeof), padding included.
 */
#ifndef QUILLON_QV_H
#define QUILLON_QV_H

#include <stddef.h>
#include <stdint.h>

#include "quillon.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- functions of the loaded module --------------------------------------- */

/** A function of the module as the loader hands it out. */
typedef void (*qv_fn)(void);

/** The address of an exported name in the loaded module; stops the program
 *  with a message when the module does not export it. */
qv_fn qv_symbol(const char* name);

/** The exported function `name`, typed as the header declares it. The module
 *  is loaded at run time, so nothing links against it. */
#define QV_FN(name) ((__typeof__(&name))qv_symbol(#name))

/* ---- input generation --------------------------------------------------- */

/** Generator state of one case: a pseudo-random stream seeded from the
 *  function name and the case number, so cases stay put when others change. */
typedef struct qv_gen {
    uint64_t state;
    int case_index;
} qv_gen;

uint64_t qv_next(qv_gen* g);
/** 1 with a chance of one in n. */
int qv_chance(qv_gen* g, unsigned n);
/** A whole number in [0, n). */
unsigned qv_below(qv_gen* g, unsigned n);
/** Uniform in [lo, hi). */
double qv_uniform(qv_gen* g, double lo, double hi);
/** One of the awkward doubles: zeros of both signs, the range limit and its
 *  neighbours, huge, tiny and subnormal values, infinities, not-a-number. */
double qv_special(qv_gen* g);
/** A coordinate in metres, now and then a special value. */
double qv_coordinate(qv_gen* g);
/** A distance or height in metres (mostly positive), now and then special. */
double qv_length(qv_gen* g);
/** An angle in arc-seconds: mostly in [0, 1296000), often a quarter-circle
 *  value or a neighbour of it, now and then negative, beyond a circle or
 *  special. */
double qv_angle(qv_gen* g);
/** A byte from a list of meaningful values, now and then any byte. */
unsigned char qv_byte(qv_gen* g, const unsigned char* values, unsigned count);
/** A face or direction sign byte: +1 or -1 (255), now and then another. */
signed char qv_sign(qv_gen* g);
/** A point near another one: the same point, the same in plan, a tiny step
 *  away, or an independent point. */
SurveyPoint qv_point_near(qv_gen* g, const SurveyPoint* other);
/** An independent point. */
SurveyPoint qv_point(qv_gen* g);
/** An instrument station with random signs and refraction mode. */
StationRecord qv_station(qv_gen* g);
/** A station set up over a mark on a site: mostly a plain one within 100 km
 *  of the origin, now and then any station of qv_station (far, huge or
 *  non-finite values). */
StationRecord qv_site_station(qv_gen* g);
/** The mark of a station as a point. */
SurveyPoint qv_station_point(const StationRecord* s);
/** Azimuth from one plan position to another, arc-seconds in [0, 1296000). */
double qv_azimuth(double from_x, double from_y, double to_x, double to_y);
/** An angle reduced into [0, 1296000). */
double qv_on_circle(double angle);
/** A point at a random bearing, lo to hi metres away in plan, within 20 m
 *  of the centre's height. */
SurveyPoint qv_point_around(qv_gen* g, const SurveyPoint* centre, double lo, double hi);

/* ---- family description ------------------------------------------------- */

typedef struct qv_function {
    const char* name;       /**< exported name */
    size_t in_size;         /**< sizeof the input block */
    size_t out_size;        /**< sizeof the output block */
    const char* out_layout; /**< fields of the output block */
    void (*generate)(qv_gen* g, void* in);
    int (*call)(const void* in, void* out);
    int cases; /**< number of cases; 0 for the default */
} qv_function;

typedef struct qv_family {
    const char* name;
    const qv_function* functions;
    size_t count;
} qv_family;

/** One line of a family table: the exported function, the stem of its
 *  <stem>_in / <stem>_out structs and <stem>_generate / <stem>_call, its
 *  layout and its number of cases. */
#define QV_FUNCTION(name, stem, layout, cases)                                                     \
    {                                                                                              \
#name, sizeof(struct stem##_in), sizeof(struct stem##_out), layout, stem##_generate,       \
            stem##_call, cases                                                                     \
    }

#define QV_COUNT(table) (sizeof(table) / sizeof((table)[0]))

#ifdef __cplusplus
}
#endif

#endif /* QUILLON_QV_H */
