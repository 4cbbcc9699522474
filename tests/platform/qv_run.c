/* Running one case of an exported function: its input block generated, its
 * arguments bound to the blocks, the call, the output block completed; and
 * the layouts that say which bytes of a block are which fields. */
#include "qv.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

/* The byte an output holds until the function writes it. */
#define UNWRITTEN 0xA5

const qv_function* qv_find(const char* name)
{
    size_t i;
    for (i = 0; i < qv_function_count; ++i) {
        if (strcmp(qv_functions[i].name, name) == 0) {
            return &qv_functions[i];
        }
    }
    return NULL;
}

/* The largest of a size over the table. */
static size_t largest(size_t (*size_of)(const qv_function* fn))
{
    size_t most = 1;
    size_t i;
    for (i = 0; i < qv_function_count; ++i) {
        most = size_of(&qv_functions[i]) > most ? size_of(&qv_functions[i]) : most;
    }
    return most;
}

static size_t block_size(const qv_function* fn)
{
    return fn->in_size > fn->out_size ? fn->in_size : fn->out_size;
}

static size_t scratch_size(const qv_function* fn) { return fn->scratch_size; }

size_t qv_largest_block(void) { return largest(block_size); }

size_t qv_largest_scratch(void) { return largest(scratch_size); }

static uint64_t name_hash(const char* name)
{
    uint64_t h = UINT64_C(0xcbf29ce484222325);
    while (*name != '\0') {
        h ^= (unsigned char)*name++;
        h *= UINT64_C(0x100000001b3);
    }
    return h;
}

void qv_generate(const qv_function* fn, int index, unsigned char* in)
{
    qv_gen g;
    g.state = name_hash(fn->name) ^ ((uint64_t)(unsigned)index * UINT64_C(0xD1B54A32D192ED03));
    g.case_index = index;
    memset(in, 0, fn->in_size);
    fn->generate(&g, in);
}

void qv_bind(const qv_function* fn, const unsigned char* in, unsigned char* out,
             unsigned char* scratch, void** args)
{
    size_t i;
    memset(out, UNWRITTEN, fn->out_size);
    for (i = 0; i < fn->arg_count; ++i) {
        const qv_arg* a = &fn->args[i];
        const size_t bytes = a->size * a->capacity;
        unsigned char* at;
        if (a->role == QV_OUT || a->role == QV_INOUT) {
            at = a->local_at != QV_NOWHERE ? scratch + a->local_at : out + a->out_at;
            if (a->in_at != QV_NOWHERE) {
                memcpy(at, in + a->in_at, bytes);
            } else {
                memset(at, UNWRITTEN, bytes);
            }
        } else {
            at = (unsigned char*)in + a->in_at;
        }
        args[i] = at;
        if (a->flag_at != QV_NOWHERE && in[a->flag_at] == 0) {
            args[i] = NULL;
        }
    }
    if (fn->prepare != NULL) {
        fn->prepare(in, args);
    }
}

void qv_extents(const qv_function* fn, void* const* args, size_t* elements)
{
    size_t i;
    fn->extents(args, elements);
    for (i = 0; i < fn->arg_count; ++i) {
        if (args[i] == NULL) {
            elements[i] = 0;
        }
    }
}

/* A table of records of doubles, written field by field: field k of record
 * i goes to column k, row i. */
static void write_columns(const qv_arg* a, const unsigned char* records, unsigned char* out)
{
    size_t i;
    size_t k;
    for (k = 0; k < a->columns; ++k) {
        for (i = 0; i < a->capacity; ++i) {
            memcpy(out + (k * a->capacity + i) * sizeof(double),
                   records + i * a->size + k * sizeof(double), sizeof(double));
        }
    }
}

int qv_call(const qv_function* fn, qv_fn address, const unsigned char* in, void* const* args,
            unsigned char* out)
{
    const int status = fn->invoke(address, args);
    size_t i;
    for (i = 0; i < fn->arg_count; ++i) {
        if (fn->args[i].columns > 0) {
            write_columns(&fn->args[i], args[i], out + fn->args[i].out_at);
        }
    }
    if (fn->pack != NULL) {
        fn->pack(in, args, out);
    }
    return status;
}

/* ---- layouts ------------------------------------------------------------- */

static size_t letter_size(char type)
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

typedef struct layout_reader {
    qv_field* fields;
    size_t count;
    size_t capacity;
    size_t offset;
    char* error;
    size_t error_size;
} layout_reader;

static int add_field(layout_reader* r, const char* name, char type)
{
    if (r->count == r->capacity) {
        qv_field* grown;
        r->capacity = r->capacity * 2 + 64;
        grown = realloc(r->fields, r->capacity * sizeof *grown);
        if (grown == NULL) {
            snprintf(r->error, r->error_size, "out of memory");
            return 0;
        }
        r->fields = grown;
    }
    snprintf(r->fields[r->count].name, sizeof r->fields[r->count].name, "%s", name);
    r->fields[r->count].type = type;
    r->fields[r->count].offset = r->offset;
    r->fields[r->count].size = letter_size(type);
    r->offset += letter_size(type);
    ++r->count;
    return 1;
}

/* The end of the group that starts after the '(' at p. */
static const char* group_end(const char* p)
{
    int depth = 1;
    for (; *p != '\0'; ++p) {
        depth += *p == '(' ? 1 : *p == ')' ? -1 : 0;
        if (depth == 0) {
            return p;
        }
    }
    return NULL;
}

/* Reads the items of [p, end) with names under `prefix`. */
static int read_items(layout_reader* r, const char* p, const char* end, const char* prefix)
{
    while (p < end) {
        char name[64];
        char full[64];
        size_t len = 0;
        const char* body;
        const char* body_end;
        unsigned long count = 1;
        unsigned long k;
        while (p < end && *p == ' ') {
            ++p;
        }
        if (p == end) {
            break;
        }
        while (p < end && *p != ':' && len + 1 < sizeof name) {
            name[len++] = *p++;
        }
        name[len] = '\0';
        if (p + 1 >= end || *p != ':') {
            snprintf(r->error, r->error_size, "bad layout near \"%s\"", name);
            return 0;
        }
        body = ++p;
        if (*p == '(') {
            body_end = group_end(p + 1);
            if (body_end == NULL || body_end >= end) {
                snprintf(r->error, r->error_size, "unclosed group after \"%s\"", name);
                return 0;
            }
            p = body_end + 1;
        } else if (letter_size(*p) == 0) {
            snprintf(r->error, r->error_size, "unknown type of \"%s\"", name);
            return 0;
        } else {
            body_end = ++p;
        }
        if (p < end && *p >= '0' && *p <= '9') {
            count = strtoul(p, (char**)&p, 10);
        }
        for (k = 0; k < count; ++k) {
            const char* dot = prefix[0] != '\0' ? "." : "";
            if (count > 1) {
                snprintf(full, sizeof full, "%.24s%s%.24s[%lu]", prefix, dot, name, k % 100000UL);
            } else {
                snprintf(full, sizeof full, "%.30s%s%.30s", prefix, dot, name);
            }
            if (*body == '(' ? !read_items(r, body + 1, body_end, full)
                             : !add_field(r, full, *body)) {
                return 0;
            }
        }
    }
    return 1;
}

qv_field* qv_parse_layout(const char* layout, size_t block_size, size_t* count, char* error,
                          size_t error_size)
{
    layout_reader r;
    memset(&r, 0, sizeof r);
    r.error = error;
    r.error_size = error_size;
    if (!read_items(&r, layout, layout + strlen(layout), "")) {
        free(r.fields);
        return NULL;
    }
    if (r.offset != block_size) {
        snprintf(error, error_size, "the layout covers %u bytes, the block has %u",
                 (unsigned)r.offset, (unsigned)block_size);
        free(r.fields);
        return NULL;
    }
    *count = r.count;
    return r.fields;
}
