/* Macros of the program generated from the layout table. */
#include "brimlet.h"

#include <stddef.h>
#include <stdio.h>

static int failures = 0;

static void check(const char *what, size_t expected, size_t is)
{
    if (is != expected) {
        fprintf(stderr, "%s: %lu, not %lu\n", what, (unsigned long)is, (unsigned long)expected);
        ++failures;
    }
}

#define RECORD(record, size, alignment)                                                                                \
    do {                                                                                                               \
        struct Aligned                                                                                                 \
        {                                                                                                              \
            char first;                                                                                                \
            record second;                                                                                             \
        };                                                                                                             \
        check(#record " size", size, sizeof(record));                                                                  \
        check(#record " alignment", alignment, offsetof(struct Aligned, second));                                      \
    } while (0)

#define FIELD(record, field, offset, size)                                                                             \
    do {                                                                                                               \
        check(#record "." #field " offset", offset, offsetof(record, field));                                          \
        check(#record "." #field " size", size, sizeof(((record *)0)->field));                                         \
    } while (0)
