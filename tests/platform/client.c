/*
 * quillon_client - loads the module the way the instrument's programs do and
 * checks it against reference vectors.
 *
 *   quillon_client [--module PATH] [--write FILE | --check FILE]
 *                  [--max-ulps N] [--show N] [--require-all]
 *
 * Always: load the module (LoadLibrary / dlopen), look up every exported
 * name, check the placeholders (fnTalvor returns 42, nTalvor reads 0, the
 * CTalvor constructor and assignment), and finally unload it and make sure
 * it is gone.
 *
 * --write FILE   run every case of every family and write the reference:
 *                one line per case with the function, the case number, the
 *                status code and the input and output blocks in hex.
 * --check FILE   run the cases of a reference on this platform: the status
 *                and every exact field must agree, and a double or float
 *                must have the same bits; a difference of a double is
 *                listed with its size in units in the last place (ulp),
 *                the first N of each function in detail (--show N, 5).
 *                With --max-ulps N a difference of more than N ulp fails.
 * --require-all  fail when an exported function has no vectors.
 *
 * Exit status 0 when every check passed.
 */
#include <inttypes.h>
#include <math.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#ifdef _WIN32
#include <windows.h>
#else
#include <dlfcn.h>
#endif

#include "quillon_exports.h"
#include "qv.h"

extern const qv_family* const qv_families[];
extern const size_t qv_family_count;

#define DEFAULT_CASES 256

/* ---- the module ------------------------------------------------------------ */

#ifdef _WIN32
typedef HMODULE module_handle;
#define DEFAULT_MODULE "Quillon.dll"
#else
typedef void* module_handle;
#define DEFAULT_MODULE "libquillon.so.1"
#endif

/* Member functions of the placeholder class: `this` first. 32-bit Windows
 * passes it in a register (thiscall); 32-bit ARM constructors return it. */
#if defined(_WIN32) && defined(__i386__)
#define MEMBER __attribute__((thiscall))
/* C has no classes, but the convention applies all the same. */
#pragma GCC diagnostic ignored "-Wattributes"
#else
#define MEMBER
#endif
#if defined(__arm__)
typedef void*(MEMBER* constructor_fn)(void* self);
#else
typedef void(MEMBER* constructor_fn)(void* self);
#endif
typedef void*(MEMBER* assign_fn)(void* self, const void* other);
typedef int (*int_fn)(void);

static module_handle module;
static qv_fn resolved[sizeof qv_export_names / sizeof qv_export_names[0]];
static const size_t export_count = sizeof qv_export_names / sizeof qv_export_names[0];

static module_handle load_module(const char* path)
{
#ifdef _WIN32
    return LoadLibraryA(path);
#else
    return dlopen(path, RTLD_NOW | RTLD_LOCAL);
#endif
}

static const char* load_error(void)
{
#ifdef _WIN32
    static char text[64];
    snprintf(text, sizeof text, "error %lu", (unsigned long)GetLastError());
    return text;
#else
    const char* text = dlerror();
    return text != NULL ? text : "unknown error";
#endif
}

/* Address of an exported name, as a function pointer (a data export is
 * handed out the same way and read through data_address). */
static qv_fn lookup(const char* name)
{
#ifdef _WIN32
    return (qv_fn)GetProcAddress(module, name);
#else
    void* address = dlsym(module, name);
    qv_fn fn;
    memcpy(&fn, &address, sizeof fn);
    return fn;
#endif
}

static void* data_address(qv_fn fn)
{
    void* address;
    memcpy(&address, &fn, sizeof address);
    return address;
}

static int unload_module(const char* path)
{
#ifdef _WIN32
    if (!FreeLibrary(module)) {
        return 0;
    }
    return GetModuleHandleA(path) == NULL;
#else
    if (dlclose(module) != 0) {
        return 0;
    }
    return dlopen(path, RTLD_NOW | RTLD_NOLOAD) == NULL;
#endif
}

qv_fn qv_symbol(const char* name)
{
    size_t i;
    for (i = 0; i < export_count; ++i) {
        if (strcmp(qv_export_names[i], name) == 0) {
            return resolved[i];
        }
    }
    fprintf(stderr, "FAIL %s has vectors but is not in the export list\n", name);
    exit(1);
}

/* ---- the frame ----------------------------------------------------------- */

static int failures;

static void fail(const char* what)
{
    printf("FAIL %s\n", what);
    ++failures;
}

static int check_frame(void)
{
    size_t i;
    size_t found = 0;
    unsigned char object = 0xA5;
    unsigned char source = 0x5A;
    int_fn talvor;
    const int* variable;
    constructor_fn construct;
    assign_fn assign;

    for (i = 0; i < export_count; ++i) {
        resolved[i] = lookup(qv_export_names[i]);
        if (resolved[i] == NULL) {
            printf("FAIL exported name %s not found\n", qv_export_names[i]);
            ++failures;
        } else {
            ++found;
        }
    }
    printf("%u of %u exported names found\n", (unsigned)found, (unsigned)export_count);
    if (found != export_count) {
        return 0;
    }

    talvor = (int_fn)qv_symbol("_Z8fnTalvorv");
    if (talvor() != 42 || talvor() != 42) {
        fail("fnTalvor does not return 42");
    }
    variable = (const int*)data_address(qv_symbol("nTalvor"));
    if (*variable != 0) {
        fail("nTalvor does not read 0 after load");
    }
    construct = (constructor_fn)qv_symbol("_ZN7CTalvorC1Ev");
    construct(&object);
    if (object != 0xA5) {
        fail("the CTalvor constructor wrote into its object");
    }
    assign = (assign_fn)qv_symbol("_ZN7CTalvoraSERKS_");
    if (assign(&object, &source) != &object || object != 0x5A) {
        fail("CTalvor assignment does not copy its byte and return the target");
    }
    printf("placeholders: fnTalvor() = 42, nTalvor = 0, CTalvor construct and assign\n");
    return 1;
}

/* ---- layouts ------------------------------------------------------------- */

typedef struct field {
    char name[40];
    char type;
    size_t offset;
    size_t size;
} field;

#define MAX_FIELDS 512

static size_t type_size(char type)
{
    switch (type) {
    case 'd':
    case 'w': return 8;
    case 'f':
    case 'i': return 4;
    case 'u':
    case 'c':
    case 'x': return 1;
    default: return 0;
    }
}

/* Splits a layout into single fields (an array of n becomes name[0] ...). */
static size_t parse_layout(const qv_function* fn, field* fields)
{
    const char* p = fn->out_layout;
    size_t n = 0;
    size_t offset = 0;
    while (*p != '\0') {
        char name[32];
        size_t len = 0;
        char type;
        unsigned long count = 1;
        unsigned long k;
        while (*p == ' ') {
            ++p;
        }
        if (*p == '\0') {
            break;
        }
        while (*p != ':' && *p != '\0' && len + 1 < sizeof name) {
            name[len++] = *p++;
        }
        name[len] = '\0';
        if (*p != ':' || type_size(p[1]) == 0) {
            fprintf(stderr, "FAIL %s: bad layout near \"%s\"\n", fn->name, name);
            exit(1);
        }
        type = p[1];
        p += 2;
        if (*p >= '0' && *p <= '9') {
            count = strtoul(p, (char**)&p, 10);
        }
        for (k = 0; k < count; ++k) {
            if (n == MAX_FIELDS) {
                fprintf(stderr, "FAIL %s: layout has too many fields\n", fn->name);
                exit(1);
            }
            if (count > 1) {
                snprintf(fields[n].name, sizeof fields[n].name, "%.31s[%lu]", name, k % 100000UL);
            } else {
                snprintf(fields[n].name, sizeof fields[n].name, "%s", name);
            }
            fields[n].type = type;
            fields[n].offset = offset;
            fields[n].size = type_size(type);
            offset += fields[n].size;
            ++n;
        }
    }
    if (offset != fn->out_size) {
        fprintf(stderr, "FAIL %s: layout covers %u bytes, the output block has %u\n", fn->name,
                (unsigned)offset, (unsigned)fn->out_size);
        exit(1);
    }
    return n;
}

/* ---- running a case -------------------------------------------------------- */

static uint64_t name_hash(const char* name)
{
    uint64_t h = UINT64_C(0xcbf29ce484222325);
    while (*name != '\0') {
        h ^= (unsigned char)*name++;
        h *= UINT64_C(0x100000001b3);
    }
    return h;
}

static int run_case(const qv_function* fn, const unsigned char* in, unsigned char* out)
{
    memset(out, 0xA5, fn->out_size);
    return fn->call(in, out);
}

static void generate_case(const qv_function* fn, int index, unsigned char* in)
{
    qv_gen g;
    g.state = name_hash(fn->name) ^ ((uint64_t)(unsigned)index * UINT64_C(0xD1B54A32D192ED03));
    g.case_index = index;
    memset(in, 0, fn->in_size);
    fn->generate(&g, in);
}

static void write_hex(FILE* f, const unsigned char* bytes, size_t n)
{
    static const char digits[] = "0123456789abcdef";
    size_t i;
    for (i = 0; i < n; ++i) {
        fputc(digits[bytes[i] >> 4], f);
        fputc(digits[bytes[i] & 15], f);
    }
}

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

static const qv_function* find_function(const char* name)
{
    size_t f;
    size_t i;
    for (f = 0; f < qv_family_count; ++f) {
        for (i = 0; i < qv_families[f]->count; ++i) {
            if (strcmp(qv_families[f]->functions[i].name, name) == 0) {
                return &qv_families[f]->functions[i];
            }
        }
    }
    return NULL;
}

static int cases_of(const qv_function* fn) { return fn->cases > 0 ? fn->cases : DEFAULT_CASES; }

static size_t largest_block(void)
{
    size_t largest = 1;
    size_t f;
    size_t i;
    for (f = 0; f < qv_family_count; ++f) {
        for (i = 0; i < qv_families[f]->count; ++i) {
            const qv_function* fn = &qv_families[f]->functions[i];
            largest = fn->in_size > largest ? fn->in_size : largest;
            largest = fn->out_size > largest ? fn->out_size : largest;
        }
    }
    return largest;
}

/* ---- coverage -------------------------------------------------------------- */

/* A function listed by two families would have its cases mixed up. */
static int names_unique(void)
{
    size_t f;
    size_t i;
    int unique = 1;
    for (f = 0; f < qv_family_count; ++f) {
        for (i = 0; i < qv_families[f]->count; ++i) {
            const qv_function* fn = &qv_families[f]->functions[i];
            if (find_function(fn->name) != fn) {
                printf("FAIL %s has vectors in two places (family %s)\n", fn->name,
                       qv_families[f]->name);
                unique = 0;
            }
        }
    }
    return unique;
}

static int report_coverage(int require_all)
{
    size_t i;
    int missing = 0;
    for (i = 0; i < export_count; ++i) {
        const char* name = qv_export_names[i];
        if (strncmp(name, "LIB_", 4) == 0 && find_function(name) == NULL) {
            if (missing == 0) {
                printf("exported functions without vectors:");
            }
            printf(" %s", name);
            ++missing;
        }
    }
    if (missing > 0) {
        printf("\n");
        if (require_all) {
            fail("every exported function needs vectors (--require-all)");
        }
    }
    return missing;
}

/* ---- writing the reference ------------------------------------------------- */

static int write_reference(const char* path)
{
    FILE* f = fopen(path, "wb");
    unsigned char* in;
    unsigned char* out;
    size_t fam;
    size_t i;
    long total = 0;
    if (f == NULL) {
        printf("FAIL cannot write %s\n", path);
        return 0;
    }
    in = malloc(largest_block());
    out = malloc(largest_block());
    fprintf(f, "# quillon reference vectors: function case status input output\n");
    for (fam = 0; fam < qv_family_count; ++fam) {
        for (i = 0; i < qv_families[fam]->count; ++i) {
            const qv_function* fn = &qv_families[fam]->functions[i];
            field fields[MAX_FIELDS];
            int c;
            parse_layout(fn, fields);
            for (c = 0; c < cases_of(fn); ++c) {
                int status;
                generate_case(fn, c, in);
                status = run_case(fn, in, out);
                fprintf(f, "%s %d %d ", fn->name, c, status);
                write_hex(f, in, fn->in_size);
                fputc(' ', f);
                write_hex(f, out, fn->out_size);
                fputc('\n', f);
                ++total;
            }
        }
    }
    free(in);
    free(out);
    if (fclose(f) != 0) {
        printf("FAIL cannot write %s\n", path);
        return 0;
    }
    printf("wrote %ld cases to %s\n", total, path);
    return 1;
}

/* ---- checking against the reference --------------------------------------- */

/* Distance of two finite values of one type in representable steps. */
static uint64_t ulps_double(uint64_t a, uint64_t b)
{
    const uint64_t sign = UINT64_C(1) << 63;
    const uint64_t oa = (a & sign) ? (uint64_t)0 - (a & ~sign) : a;
    const uint64_t ob = (b & sign) ? (uint64_t)0 - (b & ~sign) : b;
    return (int64_t)(oa - ob) < 0 ? ob - oa : oa - ob;
}

static uint64_t ulps_float(uint32_t a, uint32_t b)
{
    const uint32_t sign = UINT32_C(1) << 31;
    const int64_t oa = (a & sign) ? -(int64_t)(a & ~sign) : (int64_t)a;
    const int64_t ob = (b & sign) ? -(int64_t)(b & ~sign) : (int64_t)b;
    return (uint64_t)(oa > ob ? oa - ob : ob - oa);
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
static int compare_field(const field* fd, const unsigned char* expected,
                         const unsigned char* actual, uint64_t* ulps, double* difference,
                         char* text, size_t text_size)
{
    if (memcmp(expected + fd->offset, actual + fd->offset, fd->size) == 0) {
        return 0;
    }
    if (fd->type == 'd') {
        uint64_t a;
        uint64_t b;
        double x;
        double y;
        memcpy(&a, expected + fd->offset, 8);
        memcpy(&b, actual + fd->offset, 8);
        memcpy(&x, &a, 8);
        memcpy(&y, &b, 8);
        if (isnan(x) && isnan(y)) {
            return 0; /* the sign and payload of a not-a-number are the hardware's */
        }
        if (isnan(x) || isnan(y) || isinf(x) || isinf(y)) {
            snprintf(text, text_size, "reference %.17g, here %.17g", x, y);
            return 2;
        }
        *ulps = ulps_double(a, b);
        *difference = fabs(x - y);
        snprintf(text, text_size,
                 "reference %.17g (0x%016" PRIx64 "), here %.17g (0x%016" PRIx64 ")", x, a, y, b);
        return 1;
    }
    if (fd->type == 'f') {
        uint32_t a;
        uint32_t b;
        float x;
        float y;
        memcpy(&a, expected + fd->offset, 4);
        memcpy(&b, actual + fd->offset, 4);
        memcpy(&x, &a, 4);
        memcpy(&y, &b, 4);
        if (isnan(x) && isnan(y)) {
            return 0;
        }
        if (isnan(x) || isnan(y) || isinf(x) || isinf(y)) {
            snprintf(text, text_size, "reference %.9g, here %.9g", (double)x, (double)y);
            return 2;
        }
        *ulps = ulps_float(a, b);
        *difference = fabs((double)x - (double)y);
        snprintf(text, text_size, "reference %.9g, here %.9g", (double)x, (double)y);
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

static void check_line(check_state* st, const qv_function* fn, const field* fields, size_t nfields,
                       int index, int expected_status, const unsigned char* in,
                       const unsigned char* expected, unsigned char* actual)
{
    function_tally* t = tally_of(st, fn);
    const int status = run_case(fn, in, actual);
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

static int check_reference(const char* path, uint64_t max_ulps, int show)
{
    FILE* f = fopen(path, "rb");
    char* line = NULL;
    size_t capacity = 0;
    size_t block = largest_block();
    unsigned char* in;
    unsigned char* expected;
    unsigned char* actual;
    check_state st;
    size_t total_functions = 0;
    size_t fam;
    size_t i;
    const qv_function* current = NULL;
    field* fields = malloc(sizeof(field) * MAX_FIELDS);
    size_t nfields = 0;

    if (f == NULL) {
        printf("FAIL cannot read the reference %s\n", path);
        free(fields);
        return 0;
    }
    for (fam = 0; fam < qv_family_count; ++fam) {
        total_functions += qv_families[fam]->count;
    }
    memset(&st, 0, sizeof st);
    st.tallies = calloc(total_functions + 1, sizeof(function_tally));
    st.max_ulps = max_ulps;
    st.show = show;
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
            current = find_function(name);
            if (current == NULL) {
                printf("FAIL %s is in the reference but this build has no vectors for it\n", name);
                ++st.hard;
                continue;
            }
            nfields = parse_layout(current, fields);
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
    for (fam = 0; fam < qv_family_count; ++fam) {
        for (i = 0; i < qv_families[fam]->count; ++i) {
            const qv_function* fn = &qv_families[fam]->functions[i];
            size_t k;
            int seen = 0;
            for (k = 0; k < st.tally_count; ++k) {
                seen |= st.tallies[k].fn == fn && st.tallies[k].cases == cases_of(fn);
            }
            if (!seen) {
                printf("FAIL %s: the reference does not hold its %d cases\n", fn->name,
                       cases_of(fn));
                ++st.hard;
            }
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

    failures += st.hard > 0;
    free(line);
    free(in);
    free(expected);
    free(actual);
    free(st.tallies);
    free(fields);
    return st.hard == 0;
}

/* ---- main -------------------------------------------------------------------- */

int main(int argc, char** argv)
{
    const char* path = DEFAULT_MODULE;
    const char* write_path = NULL;
    const char* check_path = NULL;
    uint64_t max_ulps = 0;
    int require_all = 0;
    int show = 5;
    int i;

    for (i = 1; i < argc; ++i) {
        if (strcmp(argv[i], "--module") == 0 && i + 1 < argc) {
            path = argv[++i];
        } else if (strcmp(argv[i], "--write") == 0 && i + 1 < argc) {
            write_path = argv[++i];
        } else if (strcmp(argv[i], "--check") == 0 && i + 1 < argc) {
            check_path = argv[++i];
        } else if (strcmp(argv[i], "--max-ulps") == 0 && i + 1 < argc) {
            max_ulps = strtoull(argv[++i], NULL, 10);
        } else if (strcmp(argv[i], "--show") == 0 && i + 1 < argc) {
            show = atoi(argv[++i]);
        } else if (strcmp(argv[i], "--require-all") == 0) {
            require_all = 1;
        } else {
            fprintf(stderr,
                    "usage: %s [--module PATH] [--write FILE | --check FILE] [--max-ulps N] "
                    "[--show N] [--require-all]\n",
                    argv[0]);
            return 2;
        }
    }

    module = load_module(path);
    if (module == NULL) {
        printf("FAIL cannot load %s: %s\n", path, load_error());
        return 1;
    }
    printf("loaded %s\n", path);

    if (!names_unique()) {
        ++failures;
    } else if (check_frame()) {
        report_coverage(require_all);
        if (write_path != NULL && !write_reference(write_path)) {
            ++failures;
        }
        if (check_path != NULL) {
            check_reference(check_path, max_ulps, show);
        }
    }

    if (!unload_module(path)) {
        fail("the module did not unload");
    } else {
        printf("unloaded %s\n", path);
    }
    if (failures > 0) {
        printf("client: %d check(s) FAILED\n", failures);
        return 1;
    }
    printf("client: all checks passed\n");
    return 0;
}
