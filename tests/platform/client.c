/*
 * quillon_client - loads the module the way the instrument's programs do and
 * checks it against reference vectors.
 *
 *   quillon_client [--module PATH] [--require-all]
 *                  [--write FILE | --check FILE [--allow FILE] [--measure FILE] [--show N]]
 *
 * Always: load the module (LoadLibrary / dlopen), look up every exported
 * name, check the placeholders (fnTalvor returns 42, nTalvor reads 0, the
 * CTalvor constructor and assignment), and finally unload it and make sure
 * it is gone.
 *
 * --write FILE    run every case of every function of the table and write
 *                 the reference: one line per case with the function, the
 *                 case number, the status code and the input and output
 *                 blocks in hex.
 * --check FILE    run the cases of a reference on this platform and compare
 *                 (check.c): status and exact fields always; doubles and
 *                 floats in the survey range within what --allow FILE gives
 *                 this platform (nothing without it), outside it reported;
 *                 the first N differences of each function in detail
 *                 (--show N, 5).
 * --measure FILE  write the differences found in the survey range, in the
 *                 format of --allow.
 * --require-all   fail when an exported function has no line in the table.
 *
 * Exit status 0 when every check passed.
 */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#ifdef _WIN32
#include <windows.h>
#else
#include <dlfcn.h>
#endif

#include "client.h"
#include "quillon_exports.h"

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

void client_failed(void) { ++failures; }

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

/* ---- cases --------------------------------------------------------------- */

/* The fields of a function's output block; stops the program when the
 * layout does not describe the block. */
qv_field* output_fields(const qv_function* fn, size_t* count)
{
    char error[200];
    qv_field* fields = qv_parse_layout(fn->out_layout, fn->out_size, count, error, sizeof error);
    if (fields == NULL) {
        fprintf(stderr, "FAIL %s: output layout: %s\n", fn->name, error);
        exit(1);
    }
    return fields;
}

/* Runs one case: the arguments bound to the blocks, the call through the
 * looked-up function. A case that would let the function reach beyond the
 * buffers the harness provides is a fault of its generator. */
int run_case(const qv_function* fn, int index, const unsigned char* in, unsigned char* out,
             unsigned char* scratch, size_t* extents)
{
    void* args[QV_MAX_ARGS];
    size_t elements[QV_MAX_ARGS];
    size_t i;
    qv_bind(fn, in, out, scratch, args);
    qv_extents(fn, args, elements);
    for (i = 0; i < fn->arg_count; ++i) {
        if (elements[i] > fn->args[i].capacity) {
            printf("FAIL %s case %d: %s needs %u elements, the harness provides %u\n", fn->name,
                   index, fn->args[i].name, (unsigned)elements[i], (unsigned)fn->args[i].capacity);
            exit(1);
        }
    }
    if (extents != NULL) {
        memcpy(extents, elements, sizeof elements);
    }
    return qv_call(fn, qv_symbol(fn->name), in, args, out);
}

/* ---- coverage -------------------------------------------------------------- */

static int report_coverage(int require_all)
{
    size_t i;
    int missing = 0;
    for (i = 0; i < export_count; ++i) {
        const char* name = qv_export_names[i];
        if (strncmp(name, "LIB_", 4) == 0 && qv_find(name) == NULL) {
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

static void write_hex(FILE* f, const unsigned char* bytes, size_t n)
{
    static const char digits[] = "0123456789abcdef";
    size_t i;
    for (i = 0; i < n; ++i) {
        fputc(digits[bytes[i] >> 4], f);
        fputc(digits[bytes[i] & 15], f);
    }
}

/* ---- writing the reference ------------------------------------------------- */

static int write_reference(const char* path)
{
    FILE* f = fopen(path, "wb");
    const size_t block = qv_largest_block();
    unsigned char* in = malloc(block);
    unsigned char* out = malloc(block);
    unsigned char* scratch = malloc(qv_largest_scratch());
    size_t i;
    long total = 0;
    if (f == NULL) {
        printf("FAIL cannot write %s\n", path);
        free(in);
        free(out);
        free(scratch);
        return 0;
    }
    fprintf(f, "# quillon reference vectors: function case status input output\n");
    for (i = 0; i < qv_function_count; ++i) {
        const qv_function* fn = &qv_functions[i];
        size_t count;
        int c;
        free(output_fields(fn, &count));
        for (c = 0; c < fn->cases; ++c) {
            int status;
            qv_generate(fn, c, in);
            status = run_case(fn, c, in, out, scratch, NULL);
            fprintf(f, "%s %d %d ", fn->name, c, status);
            write_hex(f, in, fn->in_size);
            fputc(' ', f);
            write_hex(f, out, fn->out_size);
            fputc('\n', f);
            ++total;
        }
    }
    free(in);
    free(out);
    free(scratch);
    if (fclose(f) != 0) {
        printf("FAIL cannot write %s\n", path);
        return 0;
    }
    printf("wrote %ld cases to %s\n", total, path);
    return 1;
}

/* ---- main -------------------------------------------------------------------- */

int main(int argc, char** argv)
{
    const char* path = DEFAULT_MODULE;
    const char* write_path = NULL;
    const char* check_path = NULL;
    check_options options;
    int require_all = 0;
    int i;

    memset(&options, 0, sizeof options);
    options.show = 5;

    for (i = 1; i < argc; ++i) {
        if (strcmp(argv[i], "--module") == 0 && i + 1 < argc) {
            path = argv[++i];
        } else if (strcmp(argv[i], "--write") == 0 && i + 1 < argc) {
            write_path = argv[++i];
        } else if (strcmp(argv[i], "--check") == 0 && i + 1 < argc) {
            check_path = argv[++i];
        } else if (strcmp(argv[i], "--allow") == 0 && i + 1 < argc) {
            options.allow_path = argv[++i];
        } else if (strcmp(argv[i], "--measure") == 0 && i + 1 < argc) {
            options.measure_path = argv[++i];
        } else if (strcmp(argv[i], "--show") == 0 && i + 1 < argc) {
            options.show = atoi(argv[++i]);
        } else if (strcmp(argv[i], "--require-all") == 0) {
            require_all = 1;
        } else {
            fprintf(stderr,
                    "usage: %s [--module PATH] [--write FILE | --check FILE [--allow FILE] "
                    "[--measure FILE] [--show N]] [--require-all]\n",
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

    if (check_frame()) {
        report_coverage(require_all);
        if (write_path != NULL && !write_reference(write_path)) {
            ++failures;
        }
        if (check_path != NULL && !check_reference(check_path, &options)) {
            ++failures;
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
