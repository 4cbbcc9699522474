/*
 * qv.h - the exported functions described for programs that call them from
 * generated inputs: the platform client (reference vectors), and later a
 * fuzzer or a benchmark.
 *
 * functions.txt describes every argument of every exported function once;
 * generate_table.py turns it into qv_table.h / qv_table.c: per function an
 * input block (the values and what the pointers point at), an output block
 * (what the function may write), their layouts, a call through a function
 * pointer and the description of every argument (qv_arg). qv_run.c binds
 * the arguments to the blocks and calls the function; the generators
 * (vectors_<family>.c, qv_gen.c) fill the input block of one case.
 *
 * Layouts name the fields of a block in order, separated by spaces, each as
 * name:type or name:typeN (N of them, named name[0] ...):
 *   d  double; f  float: the same bits, or a difference in units in the
 *      last place that a platform's mathematical library may make
 *   w  double holding a whole value (whole arc-seconds): exact
 *   i  32-bit integer, u unsigned byte, c signed byte, x padding: exact
 *   (fields)  a record: its fields, named name.field (name[k].field)
 * A layout covers its block to the last byte.
 */
#ifndef QUILLON_QV_H
#define QUILLON_QV_H

#include <stddef.h>
#include <stdint.h>

#include "quillon.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- functions of the library -------------------------------------------- */

/** A function of the library as a loader hands it out. */
typedef void (*qv_fn)(void);

/** The address of an exported name. The program provides it: the client
 *  looks the name up in the module it loaded; a program that links the
 *  library returns the function itself. */
qv_fn qv_symbol(const char* name);

/** The exported function `name`, typed as the header declares it (for
 *  generators that call the library to build their inputs). */
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

/** A band of a mixture: below `percent` (of 100, counted from 0) a value
 *  uniform in [lo, hi). */
typedef struct qv_band {
    unsigned percent;
    double lo;
    double hi;
} qv_band;
/** A value from the first band whose percent the draw is below, or a special
 *  value (qv_special) beyond the last band. */
double qv_mixture(qv_gen* g, const qv_band* bands, unsigned count);

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

/* ---- the table of functions ------------------------------------------------ */

/** What an argument is to the function (see functions.txt). */
typedef enum qv_role {
    QV_VALUE, /**< a number passed by value */
    QV_COUNT, /**< a count passed by value */
    QV_MODE,  /**< a mode, face, side or step byte passed by value */
    QV_IN,    /**< a record or array the function reads */
    QV_OUT,   /**< a record or array the function writes */
    QV_INOUT  /**< a record or array the function reads and writes */
} qv_role;

/** The elements of an array field of a block, e.g.
 *  QV_ELEMENTS(LIB_RESA2D_in, known). */
#define QV_ELEMENTS(block, field) (sizeof(((block*)0)->field) / sizeof(((block*)0)->field[0]))

/** An offset that does not exist. */
#define QV_NOWHERE ((size_t)-1)

/** The most arguments of any function. */
#define QV_MAX_ARGS 8

typedef struct qv_arg {
    const char* name;
    qv_role role;
    const char* type; /**< type of one element as the header names it */
    size_t size;      /**< bytes of one element */
    size_t capacity;  /**< elements the harness provides (1 for one value) */
    size_t in_at;     /**< offset in the input block: the value, or what the
                           function finds there before the call */
    size_t out_at;    /**< offset in the output block */
    size_t flag_at;   /**< offset in the input block of the byte that is 0 when
                           the pointer is passed as null */
    size_t local_at;  /**< offset of the argument's own buffer in the scratch
                           area (outputs that are packed into the output block) */
    size_t columns;   /**< doubles per record of an array that goes into the
                           output block column by column, or 0 */
} qv_arg;

typedef struct qv_function {
    const char* name; /**< exported name */
    int cases;        /**< cases in the reference */
    size_t arg_count;
    const qv_arg* args;
    /** Calls the function at `fn` with the arguments `args` (a pointer to
     *  each value passed by value, the pointer itself otherwise). */
    int (*invoke)(qv_fn fn, void* const* args);
    /** The elements of every array argument that the interface obliges the
     *  caller to provide for these arguments (1 for a single value). */
    void (*extents)(void* const* args, size_t* elements);
    size_t in_size;
    size_t out_size;
    const char* in_layout;
    const char* out_layout;
    /** Fills a zeroed input block with one case. */
    void (*generate)(qv_gen* g, void* in);
    /** Sets up the arguments' own buffers from the input block, or NULL. */
    void (*prepare)(const void* in, void* const* args);
    /** Writes the output block from the arguments' own buffers, or NULL. */
    void (*pack)(const void* in, void* const* args, void* out);
    size_t scratch_size; /**< bytes of the arguments' own buffers */
} qv_function;

/** Every exported function, in the order of the reference (qv_table.c). */
extern const qv_function qv_functions[];
extern const size_t qv_function_count;

/* ---- running a case (qv_run.c) -------------------------------------------- */

/** The function of the table with this name, or NULL. */
const qv_function* qv_find(const char* name);

/** The largest input or output block and the largest scratch area. */
size_t qv_largest_block(void);
size_t qv_largest_scratch(void);

/** Fills the input block of case `index`. */
void qv_generate(const qv_function* fn, int index, unsigned char* in);

/** Points the arguments at the blocks: the output block filled with 0xA5,
 *  what an inout argument holds before the call copied into place, a null
 *  pointer where the case says so, the arguments' own buffers prepared. */
void qv_bind(const qv_function* fn, const unsigned char* in, unsigned char* out,
             unsigned char* scratch, void** args);

/** The elements of every argument the interface obliges the caller to
 *  provide for the bound arguments: 1 for a single value, 0 for a null
 *  pointer. A case whose extent exceeds an argument's capacity would let the
 *  function reach beyond the harness's buffers. */
void qv_extents(const qv_function* fn, void* const* args, size_t* elements);

/** Calls the function at `address` on bound arguments and completes the
 *  output block; returns its status. */
int qv_call(const qv_function* fn, qv_fn address, const unsigned char* in, void* const* args,
            unsigned char* out);

/* ---- layouts ------------------------------------------------------------- */

typedef struct qv_field {
    char name[64];
    char type; /**< a layout letter */
    size_t offset;
    size_t size;
} qv_field;

/** The single fields of a layout, in a buffer the caller frees; NULL with a
 *  message in `error` when the layout is malformed or does not cover
 *  `block_size` bytes. */
qv_field* qv_parse_layout(const char* layout, size_t block_size, size_t* count, char* error,
                          size_t error_size);

#ifdef __cplusplus
}
#endif

#endif /* QUILLON_QV_H */
