/* Checking a reference written by the native build on this platform: every
 * case run again through the loaded module and its status and output block
 * compared. */
#include "client.h"

#include <inttypes.h>
#include <math.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

static int hex_digit(char c)
{
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    if (c >= 'a' && c <= 'f') {
        return c - 'a' + 10;
    }
    return -1;
}

static int read_hex(const char* text, unsigned char* bytes, size_t n)
{
    size_t i;
    for (i = 0; i < n; ++i) {
        const int hi = hex_digit(text[2 * i]);
        const int lo = hi < 0 ? -1 : hex_digit(text[2 * i + 1]);
        if (lo < 0) {
            return 0;
        }
        bytes[i] = (unsigned char)(hi * 16 + lo);
    }
    return text[2 * n] == '\0' || text[2 * n] == ' ' || text[2 * n] == '\r';
}

/* ---- checking against the reference --------------------------------------- */

/* A double or float field: its value, and a key that orders the values so
 * that neighbouring representable values have neighbouring keys. */
typedef struct floating {
    double value;
    int64_t key;
} floating;

static floating read_floating(const unsigned char* at, char type)
{
    floating f;
    if (type == 'f') {
        const uint32_t sign = UINT32_C(1) << 31;
        uint32_t bits;
        float x;
        memcpy(&bits, at, sizeof bits);
        memcpy(&x, at, sizeof x);
        f.value = x;
        f.key = (bits & sign) ? -(int64_t)(bits & ~sign) : (int64_t)bits;
    } else {
        const uint64_t sign = UINT64_C(1) << 63;
        uint64_t bits;
        memcpy(&bits, at, sizeof bits);
        memcpy(&f.value, at, sizeof f.value);
        f.key = (bits & sign) ? -(int64_t)(bits & ~sign) : (int64_t)bits;
    }
    return f;
}

/* Representable steps between two finite values of one type. */
static uint64_t ulps_apart(floating a, floating b)
{
    return a.key > b.key ? (uint64_t)a.key - (uint64_t)b.key : (uint64_t)b.key - (uint64_t)a.key;
}

/* A case whose doubles differ by at most this many ulp differs in the last
 * place; beyond it the difference is listed apart (typically a result near
 * zero from a cancellation, or the sine of an enormous angle). */
#define LAST_PLACE_ULPS 4

typedef struct function_tally {
    const qv_function* fn;
    long cases;
    long last_place_cases;
    long beyond_cases;
    uint64_t largest_ulps;
    double largest_difference;
    int largest_case;
    char largest_field[48];
    int shown;
} function_tally;

typedef struct check_state {
    function_tally* tallies;
    size_t tally_count;
    long cases;
    long identical;
    long last_place;
    long beyond;
    long hard;
    uint64_t max_ulps; /* 0: differences of doubles are listed, not failed */
    int show;          /* detail lines per function */
    unsigned char* scratch;
} check_state;

static function_tally* tally_of(check_state* st, const qv_function* fn)
{
    size_t i;
    for (i = 0; i < st->tally_count; ++i) {
        if (st->tallies[i].fn == fn) {
            return &st->tallies[i];
        }
    }
    st->tallies[st->tally_count].fn = fn;
    return &st->tallies[st->tally_count++];
}

/* Compares one field; returns 0 same, 1 a last-place difference, 2 a failure. */
static int compare_field(const qv_field* fd, const unsigned char* expected,
                         const unsigned char* actual, uint64_t* ulps, double* difference,
                         char* text, size_t text_size)
{
    if (memcmp(expected + fd->offset, actual + fd->offset, fd->size) == 0) {
        return 0;
    }
    if (fd->type == 'd' || fd->type == 'f') {
        const floating x = read_floating(expected + fd->offset, fd->type);
        const floating y = read_floating(actual + fd->offset, fd->type);
        if (isnan(x.value) && isnan(y.value)) {
            return 0; /* the sign and payload of a not-a-number are the hardware's */
        }
        snprintf(text, text_size, "reference %.17g, here %.17g", x.value, y.value);
        if (isnan(x.value) || isnan(y.value) || isinf(x.value) || isinf(y.value)) {
            return 2;
        }
        *ulps = ulps_apart(x, y);
        *difference = fabs(x.value - y.value);
        return 1;
    }
    if (fd->type == 'w') {
        double x;
        double y;
        memcpy(&x, expected + fd->offset, 8);
        memcpy(&y, actual + fd->offset, 8);
        if (isnan(x) && isnan(y)) {
            return 0;
        }
        snprintf(text, text_size, "whole value: reference %.17g, here %.17g", x, y);
        return 2;
    }
    snprintf(text, text_size, "exact field differs");
    return 2;
}

static void check_line(check_state* st, const qv_function* fn, const qv_field* fields,
                       size_t nfields, int index, int expected_status, const unsigned char* in,
                       const unsigned char* expected, unsigned char* actual)
{
    function_tally* t = tally_of(st, fn);
    const int status = run_case(fn, index, in, actual, st->scratch);
    int worst = 0;
    uint64_t worst_ulps = 0;
    size_t k;

    ++st->cases;
    ++t->cases;
    if (status != expected_status) {
        printf("FAIL %s case %d: status %d, reference %d\n", fn->name, index, status,
               expected_status);
        worst = 2;
    }
    for (k = 0; k < nfields; ++k) {
        char text[200];
        uint64_t ulps = 0;
        double difference = 0.0;
        const int verdict =
            compare_field(&fields[k], expected, actual, &ulps, &difference, text, sizeof text);
        if (verdict == 1 && st->max_ulps > 0 && ulps > st->max_ulps) {
            printf("FAIL %s case %d %s: %" PRIu64 " ulp, more than %" PRIu64 ": %s\n", fn->name,
                   index, fields[k].name, ulps, st->max_ulps, text);
            worst = 2;
        } else if (verdict == 1) {
            if (t->shown < st->show) {
                printf("  %s case %d %s: %" PRIu64 " ulp, %.3g apart: %s\n", fn->name, index,
                       fields[k].name, ulps, difference, text);
                ++t->shown;
            }
            if (ulps > t->largest_ulps) {
                t->largest_ulps = ulps;
                t->largest_difference = difference;
                t->largest_case = index;
                snprintf(t->largest_field, sizeof t->largest_field, "%s", fields[k].name);
            }
            worst_ulps = ulps > worst_ulps ? ulps : worst_ulps;
            worst = worst > 1 ? worst : 1;
        } else if (verdict == 2) {
            printf("FAIL %s case %d %s: %s\n", fn->name, index, fields[k].name, text);
            worst = 2;
        }
    }
    if (worst == 0) {
        ++st->identical;
    } else if (worst == 1 && worst_ulps <= LAST_PLACE_ULPS) {
        ++st->last_place;
        ++t->last_place_cases;
    } else if (worst == 1) {
        ++st->beyond;
        ++t->beyond_cases;
    } else {
        ++st->hard;
    }
}

/* Reads one line of any length; returns 0 at the end of the file. */
static int read_line(FILE* f, char** buffer, size_t* capacity)
{
    size_t n = 0;
    int c;
    while ((c = fgetc(f)) != EOF && c != '\n') {
        if (n + 2 > *capacity) {
            *capacity = *capacity * 2 + 256;
            *buffer = realloc(*buffer, *capacity);
        }
        (*buffer)[n++] = (char)c;
    }
    if (c == EOF && n == 0) {
        return 0;
    }
    if (*buffer == NULL) {
        *capacity = 256;
        *buffer = malloc(*capacity);
    }
    (*buffer)[n] = '\0';
    return 1;
}

int check_reference(const char* path, const check_options* options)
{
    FILE* f = fopen(path, "rb");
    char* line = NULL;
    size_t capacity = 0;
    size_t block = qv_largest_block();
    unsigned char* in;
    unsigned char* expected;
    unsigned char* actual;
    check_state st;
    size_t i;
    const qv_function* current = NULL;
    qv_field* fields = NULL;
    size_t nfields = 0;

    if (f == NULL) {
        printf("FAIL cannot read the reference %s\n", path);
        free(fields);
        return 0;
    }
    memset(&st, 0, sizeof st);
    st.tallies = calloc(qv_function_count + 1, sizeof(function_tally));
    st.max_ulps = options->max_ulps;
    st.show = options->show;
    st.scratch = malloc(qv_largest_scratch());
    in = malloc(block);
    expected = malloc(block);
    actual = malloc(block);

    while (read_line(f, &line, &capacity)) {
        char name[64];
        int index;
        int status;
        int consumed = 0;
        const char* out_text;
        if (line[0] == '#' || line[0] == '\0' || line[0] == '\r') {
            continue;
        }
        if (sscanf(line, "%63s %d %d %n", name, &index, &status, &consumed) != 3 || consumed == 0) {
            printf("FAIL unreadable reference line: %.60s\n", line);
            ++st.hard;
            continue;
        }
        if (current == NULL || strcmp(current->name, name) != 0) {
            current = qv_find(name);
            if (current == NULL) {
                printf("FAIL %s is in the reference but this build has no vectors for it\n", name);
                ++st.hard;
                continue;
            }
            free(fields);
            fields = output_fields(current, &nfields);
        }
        out_text = line + consumed + 2 * current->in_size + 1;
        if (strlen(line + consumed) < 2 * (current->in_size + current->out_size) + 1 ||
            !read_hex(line + consumed, in, current->in_size) ||
            !read_hex(out_text, expected, current->out_size)) {
            printf("FAIL %s case %d: blocks do not match this build's layout\n", name, index);
            ++st.hard;
            continue;
        }
        check_line(&st, current, fields, nfields, index, status, in, expected, actual);
    }
    fclose(f);

    /* every function with vectors here must have been in the reference */
    for (i = 0; i < qv_function_count; ++i) {
        const qv_function* fn = &qv_functions[i];
        size_t k;
        int seen = 0;
        for (k = 0; k < st.tally_count; ++k) {
            seen |= st.tallies[k].fn == fn && st.tallies[k].cases == fn->cases;
        }
        if (!seen) {
            printf("FAIL %s: the reference does not hold its %d cases\n", fn->name, fn->cases);
            ++st.hard;
        }
    }

    for (i = 0; i < st.tally_count; ++i) {
        const function_tally* t = &st.tallies[i];
        if (t->last_place_cases + t->beyond_cases > 0) {
            printf(
                "differences: %s: %ld of %ld cases, %ld within %d ulp, %ld beyond; largest %" PRIu64
                " ulp (%.3g apart) in case %d %s\n",
                t->fn->name, t->last_place_cases + t->beyond_cases, t->cases, t->last_place_cases,
                LAST_PLACE_ULPS, t->beyond_cases, t->largest_ulps, t->largest_difference,
                t->largest_case, t->largest_field);
        }
    }
    printf("vectors: %ld cases of %u functions: %ld identical, %ld within %d ulp, %ld beyond, "
           "%ld failed\n",
           st.cases, (unsigned)st.tally_count, st.identical, st.last_place, LAST_PLACE_ULPS,
           st.beyond, st.hard);

    free(line);
    free(in);
    free(expected);
    free(actual);
    free(st.tallies);
    free(st.scratch);
    free(fields);
    return st.hard == 0;
}
