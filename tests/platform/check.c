/* Checking a reference written by the native build on this platform: every
 * case run again through the loaded module, its status and output block
 * compared with the reference.
 *
 * Exact, in every case: the status, every byte, integer, padding byte and
 * whole value (w). A double or float may differ where this platform's
 * mathematical library rounds differently, so its difference is measured in
 * units in the last place (ulp), and what counts depends on the case:
 *
 * - In the survey range (every double and float the function reads from
 *   its input is finite and within SURVEY_RANGE: coordinates within 1e7 m,
 *   angles within 1e7 arc-seconds, about 7.7 full circles), a function's
 *   differing cases and their largest difference must stay within what this
 *   platform is allowed (--allow FILE, measured and checked in per
 *   platform); a function the file does not name must agree to the bit. So
 *   a change that moves a function's results by one ulp fails even where a
 *   platform may differ by a few ulp in a few cases. A number on one side
 *   and not-a-number or an infinity on the other fails.
 * - Outside it (huge angles, coordinates beyond the range limit, infinities
 *   and not-a-numbers in the input), differences are reported by function
 *   and magnitude, not failed.
 */
#include "client.h"

#include <inttypes.h>
#include <math.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

/* The largest magnitude of an input in the survey range. */
#define SURVEY_RANGE 1e7

/* ---- reading the reference ------------------------------------------------- */

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

/* ---- numbers ----------------------------------------------------------------- */

/* A double or float field: its value, and a key that orders the values so
 * that neighbouring representable values have neighbouring keys (-0 and +0
 * are neighbours too). */
typedef struct floating {
    double value;
    int64_t key;
} floating;

static floating read_floating(const unsigned char* at, char type)
{
    floating f;
    uint64_t magnitude;
    int negative;
    if (type == 'f') {
        uint32_t bits;
        float x;
        memcpy(&bits, at, sizeof bits);
        memcpy(&x, at, sizeof x);
        f.value = x;
        negative = (bits >> 31) != 0;
        magnitude = bits & ~(UINT32_C(1) << 31);
    } else {
        uint64_t bits;
        memcpy(&bits, at, sizeof bits);
        memcpy(&f.value, at, sizeof f.value);
        negative = (bits >> 63) != 0;
        magnitude = bits & ~(UINT64_C(1) << 63);
    }
    f.key = negative ? -1 - (int64_t)magnitude : (int64_t)magnitude;
    return f;
}

/* Representable steps between two values of one type. */
static uint64_t ulps_apart(floating a, floating b)
{
    return a.key > b.key ? (uint64_t)a.key - (uint64_t)b.key : (uint64_t)b.key - (uint64_t)a.key;
}

/* ---- what this platform is allowed -------------------------------------------- */

typedef struct allowance {
    char name[64];
    long cases;
    uint64_t ulps;
} allowance;

typedef struct allowances {
    allowance* entries;
    size_t count;
} allowances;

/* Reads lines "FUNCTION CASES ULPS" ('#' starts a comment); 0 on a bad file. */
static int read_allowances(const char* path, allowances* a)
{
    FILE* f = fopen(path, "rb");
    char* line = NULL;
    size_t capacity = 0;
    int number = 0;
    int good = 1;
    memset(a, 0, sizeof *a);
    if (f == NULL) {
        printf("FAIL cannot read the allowed differences %s\n", path);
        return 0;
    }
    a->entries = calloc(qv_function_count, sizeof *a->entries);
    while (good && read_line(f, &line, &capacity)) {
        char name[64];
        long cases;
        unsigned long long ulps;
        char* comment = strchr(line, '#');
        ++number;
        if (comment != NULL) {
            *comment = '\0';
        }
        if (strspn(line, " \t\r") == strlen(line)) {
            continue;
        }
        if (sscanf(line, "%63s %ld %llu", name, &cases, &ulps) != 3 || qv_find(name) == NULL ||
            a->count == qv_function_count) {
            printf("FAIL %s:%d: expected \"FUNCTION CASES ULPS\" for a function of the table\n",
                   path, number);
            good = 0;
            break;
        }
        snprintf(a->entries[a->count].name, sizeof a->entries[a->count].name, "%s", name);
        a->entries[a->count].cases = cases;
        a->entries[a->count].ulps = ulps;
        ++a->count;
    }
    free(line);
    fclose(f);
    return good;
}

static allowance allowed_for(const allowances* a, const char* name)
{
    allowance none;
    size_t i;
    for (i = 0; i < a->count; ++i) {
        if (strcmp(a->entries[i].name, name) == 0) {
            return a->entries[i];
        }
    }
    memset(&none, 0, sizeof none);
    return none;
}

/* ---- tallies ------------------------------------------------------------------- */

/* Differences of doubles and floats among a function's cases of one kind (in
 * the survey range or outside it). */
typedef struct tally {
    long cases;
    long differing;
    uint64_t largest_ulps;
    double largest_difference;
    int largest_case;
    char largest_field[64];
    int shown;
} tally;

typedef struct function_check {
    const qv_function* fn;
    qv_field* out_fields;
    size_t out_count;
    qv_field* in_fields;
    size_t in_count;
    tally in_range;
    tally outside;
    long cases;
    long failed;
} function_check;

typedef struct check_state {
    const check_options* options;
    function_check* functions; /* one per function of the table, in its order */
    unsigned char* in;
    unsigned char* expected;
    unsigned char* actual;
    unsigned char* scratch;
    long failed;
} check_state;

static void note_difference(tally* t, uint64_t ulps, double difference, int index,
                            const char* field)
{
    if (ulps > t->largest_ulps) {
        t->largest_ulps = ulps;
        t->largest_difference = difference;
        t->largest_case = index;
        snprintf(t->largest_field, sizeof t->largest_field, "%s", field);
    }
}

/* ---- one case -------------------------------------------------------------- */

/* Whether every double and float the function reads from the input block
 * is finite and within SURVEY_RANGE. Array elements beyond the extent the
 * case gives the function, null pointers and fields the function never
 * reads (laid out as padding) do not count. */
static int in_survey_range(const function_check* c, const unsigned char* in, const size_t* extents)
{
    size_t k;
    for (k = 0; k < c->in_count; ++k) {
        const qv_field* f = &c->in_fields[k];
        size_t i;
        int read = 1;
        if (f->type != 'd' && f->type != 'f') {
            continue;
        }
        for (i = 0; i < c->fn->arg_count; ++i) {
            const qv_arg* a = &c->fn->args[i];
            if (a->in_at != QV_NOWHERE && f->offset >= a->in_at &&
                f->offset < a->in_at + a->size * a->capacity) {
                read = (f->offset - a->in_at) / a->size < extents[i];
            }
        }
        if (read) {
            const double x = read_floating(in + f->offset, f->type).value;
            if (!(fabs(x) <= SURVEY_RANGE)) {
                return 0;
            }
        }
    }
    return 1;
}

/* Compares one field of the output block. Returns 0 when it agrees, 1 for a
 * difference of finite numbers (*ulps, *difference) and 2 for a difference
 * that is a failure wherever it happens; `text` says what differs. */
static int compare_field(const qv_field* f, const unsigned char* expected,
                         const unsigned char* actual, uint64_t* ulps, double* difference,
                         char* text, size_t text_size)
{
    if (memcmp(expected + f->offset, actual + f->offset, f->size) == 0) {
        return 0;
    }
    if (f->type == 'd' || f->type == 'f' || f->type == 'w') {
        const floating x = read_floating(expected + f->offset, f->type == 'f' ? 'f' : 'd');
        const floating y = read_floating(actual + f->offset, f->type == 'f' ? 'f' : 'd');
        if (isnan(x.value) && isnan(y.value)) {
            return 0; /* the sign and payload of a not-a-number are the hardware's */
        }
        snprintf(text, text_size, "reference %.17g, here %.17g", x.value, y.value);
        *ulps = ulps_apart(x, y);
        *difference = fabs(x.value - y.value);
        if (f->type == 'w') {
            return 2;
        }
        return isfinite(x.value) && isfinite(y.value) ? 1 : 3;
    }
    snprintf(text, text_size, "exact field differs");
    return 2;
}

static void check_case(check_state* st, function_check* c, int index, int expected_status)
{
    const qv_function* fn = c->fn;
    size_t extents[QV_MAX_ARGS];
    const int status = run_case(fn, index, st->in, st->actual, st->scratch, extents);
    const int in_range = in_survey_range(c, st->in, extents);
    tally* t = in_range ? &c->in_range : &c->outside;
    int differs = 0;
    int failed = 0;
    size_t k;

    ++c->cases;
    ++t->cases;
    if (status != expected_status) {
        printf("FAIL %s case %d: status %d, reference %d\n", fn->name, index, status,
               expected_status);
        failed = 1;
    }
    for (k = 0; k < c->out_count; ++k) {
        const qv_field* f = &c->out_fields[k];
        char text[160];
        uint64_t ulps = 0;
        double difference = 0.0;
        const int verdict =
            compare_field(f, st->expected, st->actual, &ulps, &difference, text, sizeof text);
        if (verdict == 0) {
            continue;
        }
        if (verdict == 2 || (verdict == 3 && in_range)) {
            printf("FAIL %s case %d %s: %s\n", fn->name, index, f->name, text);
            failed = 1;
            continue;
        }
        differs = 1;
        note_difference(t, ulps, difference, index, f->name);
        if (t->shown < st->options->show) {
            printf("  %s case %d %s (%s): %" PRIu64 " ulp, %.3g apart: %s\n", fn->name, index,
                   f->name, in_range ? "in the survey range" : "outside it", ulps, difference,
                   text);
            ++t->shown;
        }
    }
    t->differing += differs;
    c->failed += failed;
    st->failed += failed;
}

/* ---- verdicts ------------------------------------------------------------------- */

/* The function's differences in the survey range against what this
 * platform is allowed; 1 when within it. */
static int judge(const function_check* c, const allowance* allowed)
{
    const tally* t = &c->in_range;
    int good = 1;
    if (t->differing > allowed->cases) {
        printf("FAIL %s: %ld of %ld cases in the survey range differ, %ld allowed here\n",
               c->fn->name, t->differing, t->cases, allowed->cases);
        good = 0;
    }
    if (t->largest_ulps > allowed->ulps) {
        printf("FAIL %s: a difference of %" PRIu64 " ulp in the survey range (case %d %s), %" PRIu64
               " allowed here\n",
               c->fn->name, t->largest_ulps, t->largest_case, t->largest_field, allowed->ulps);
        good = 0;
    }
    return good;
}

static void report(const function_check* c, const allowance* allowed)
{
    const tally* t = &c->in_range;
    const tally* o = &c->outside;
    if (t->differing > 0 || allowed->cases > 0) {
        printf("differences: %s in the survey range: %ld of %ld cases, at most %" PRIu64
               " ulp (%.3g apart, case %d %s); allowed %ld cases, %" PRIu64 " ulp\n",
               c->fn->name, t->differing, t->cases, t->largest_ulps, t->largest_difference,
               t->largest_case, t->largest_field, allowed->cases, allowed->ulps);
    }
    if (o->differing > 0) {
        printf("outside the survey range: %s: %ld of %ld cases differ, at most %" PRIu64
               " ulp (%.3g apart, case %d %s); reported, not failed\n",
               c->fn->name, o->differing, o->cases, o->largest_ulps, o->largest_difference,
               o->largest_case, o->largest_field);
    }
}

/* Writes what this platform differs by in the survey range, in the format
 * of --allow. */
static int write_measured(const char* path, const check_state* st)
{
    FILE* f = fopen(path, "wb");
    size_t i;
    if (f == NULL) {
        printf("FAIL cannot write %s\n", path);
        return 0;
    }
    fprintf(f, "# function, cases in the survey range that differ, largest difference (ulp)\n");
    for (i = 0; i < qv_function_count; ++i) {
        const tally* t = &st->functions[i].in_range;
        if (t->differing > 0) {
            fprintf(f, "%-34s %4ld %6" PRIu64 "\n", qv_functions[i].name, t->differing,
                    t->largest_ulps);
        }
    }
    if (fclose(f) != 0) {
        printf("FAIL cannot write %s\n", path);
        return 0;
    }
    printf("wrote the measured differences to %s\n", path);
    return 1;
}

/* ---- the whole reference ------------------------------------------------------------- */

static function_check* start_function(check_state* st, const qv_function* fn)
{
    function_check* c = &st->functions[fn - qv_functions];
    if (c->fn == NULL) {
        char error[200];
        c->fn = fn;
        c->out_fields = output_fields(fn, &c->out_count);
        c->in_fields =
            qv_parse_layout(fn->in_layout, fn->in_size, &c->in_count, error, sizeof error);
        if (c->in_fields == NULL) {
            fprintf(stderr, "FAIL %s: input layout: %s\n", fn->name, error);
            exit(1);
        }
    }
    return c;
}

/* Runs the case of one reference line; 0 when the line cannot be read. */
static int check_line(check_state* st, const char* line, function_check** current)
{
    char name[64];
    int index;
    int status;
    int consumed = 0;
    const qv_function* fn;
    if (sscanf(line, "%63s %d %d %n", name, &index, &status, &consumed) != 3 || consumed == 0) {
        printf("FAIL unreadable reference line: %.60s\n", line);
        return 0;
    }
    if (*current == NULL || strcmp((*current)->fn->name, name) != 0) {
        fn = qv_find(name);
        if (fn == NULL) {
            printf("FAIL %s is in the reference but not in this build's table\n", name);
            return 0;
        }
        *current = start_function(st, fn);
    }
    fn = (*current)->fn;
    line += consumed;
    if (strlen(line) < 2 * (fn->in_size + fn->out_size) + 1 ||
        !read_hex(line, st->in, fn->in_size) ||
        !read_hex(line + 2 * fn->in_size + 1, st->expected, fn->out_size)) {
        printf("FAIL %s case %d: blocks do not match this build's layout\n", name, index);
        return 0;
    }
    check_case(st, *current, index, status);
    return 1;
}

int check_reference(const char* path, const check_options* options)
{
    FILE* f = fopen(path, "rb");
    const size_t block = qv_largest_block();
    char* line = NULL;
    size_t capacity = 0;
    function_check* current = NULL;
    allowances allowed;
    check_state st;
    long cases = 0;
    long in_range = 0;
    long differing = 0;
    long outside = 0;
    long outside_differing = 0;
    size_t i;

    if (f == NULL) {
        printf("FAIL cannot read the reference %s\n", path);
        return 0;
    }
    memset(&allowed, 0, sizeof allowed);
    if (options->allow_path != NULL && !read_allowances(options->allow_path, &allowed)) {
        fclose(f);
        free(allowed.entries);
        return 0;
    }
    memset(&st, 0, sizeof st);
    st.options = options;
    st.functions = calloc(qv_function_count, sizeof *st.functions);
    st.in = malloc(block);
    st.expected = malloc(block);
    st.actual = malloc(block);
    st.scratch = malloc(qv_largest_scratch());

    while (read_line(f, &line, &capacity)) {
        if (line[0] != '#' && line[0] != '\0' && line[0] != '\r' &&
            !check_line(&st, line, &current)) {
            ++st.failed;
        }
    }
    fclose(f);

    for (i = 0; i < qv_function_count; ++i) {
        function_check* c = &st.functions[i];
        const allowance a = allowed_for(&allowed, qv_functions[i].name);
        if (c->fn == NULL || c->cases != qv_functions[i].cases) {
            printf("FAIL %s: the reference does not hold its %d cases\n", qv_functions[i].name,
                   qv_functions[i].cases);
            ++st.failed;
            continue;
        }
        report(c, &a);
        st.failed += !judge(c, &a);
        cases += c->cases;
        in_range += c->in_range.cases;
        differing += c->in_range.differing;
        outside += c->outside.cases;
        outside_differing += c->outside.differing;
    }
    printf("vectors: %ld cases of %u functions: %ld in the survey range, %ld of them differ; "
           "%ld outside it, %ld of them differ (reported, not failed); %ld failed check(s)\n",
           cases, (unsigned)qv_function_count, in_range, differing, outside, outside_differing,
           st.failed);
    if (options->measure_path != NULL && !write_measured(options->measure_path, &st)) {
        ++st.failed;
    }

    for (i = 0; i < qv_function_count; ++i) {
        free(st.functions[i].out_fields);
        free(st.functions[i].in_fields);
    }
    free(st.functions);
    free(st.in);
    free(st.expected);
    free(st.actual);
    free(st.scratch);
    free(line);
    free(allowed.entries);
    return st.failed == 0;
}
