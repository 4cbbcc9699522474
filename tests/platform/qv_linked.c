/* qv_symbol for a program linked to the library: the exported functions by
 * name (qv_linked_names.h, generated from the export list). */
#include "qv.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

typedef struct linked_function {
    const char* name;
    qv_fn address;
} linked_function;

#define QV_LINKED(name) {#name, (qv_fn)&name},
static const linked_function linked[] = {
#include "qv_linked_names.h"
};
#undef QV_LINKED

qv_fn qv_symbol(const char* name)
{
    size_t i;
    for (i = 0; i < sizeof linked / sizeof linked[0]; ++i) {
        if (strcmp(linked[i].name, name) == 0) {
            return linked[i].address;
        }
    }
    fprintf(stderr, "qv_symbol: %s is no exported function\n", name);
    abort();
}
