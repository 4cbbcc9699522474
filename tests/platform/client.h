/* The parts of the platform client (client.c: the module, the frame checks,
 * writing the reference; check.c: checking a reference on this platform). */
#ifndef QUILLON_CLIENT_H
#define QUILLON_CLIENT_H

#include "qv_table.h"

/* Counts a failed check; the client exits non-zero when there is one. */
void client_failed(void);

/* Runs case `index` of a function on the loaded module from its input block
 * and returns the status; the output block receives what it wrote, and
 * `extents` (QV_MAX_ARGS of them, or NULL) the elements of each argument the
 * function was given to read or write. */
int run_case(const qv_function* fn, int index, const unsigned char* in, unsigned char* out,
             unsigned char* scratch, size_t* extents);

/* The fields of a function's output block; stops the program when the
 * layout does not describe the block. The caller frees them. */
qv_field* output_fields(const qv_function* fn, size_t* count);

typedef struct check_options {
    const char* allow_path;   /* differences this platform is allowed, or NULL: none */
    const char* measure_path; /* where to write the differences found, or NULL */
    int show;                 /* detail lines per function and kind of case */
} check_options;

/* Runs every case of the reference at `path` and compares; 1 when it passed. */
int check_reference(const char* path, const check_options* options);

#endif /* QUILLON_CLIENT_H */
