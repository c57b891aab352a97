/* Runs a fragment of a page with the library launched on an empty store. The fragment takes the place of the line that
   names it. */
#include <brimlet.h>

#include <pthread.h>
#include <stdio.h>
#include <stdlib.h>
#include <time.h>

static void *runLibrary(void *unused)
{
    (void)unused;
    launchCache();
    return NULL;
}

/* What the fragments of pages call. */
static void show(const uint16_t *text)
{
    for (; *text; ++text)
        putchar(*text < 128 ? *text : '?');
    putchar('\n');
}

static void fragment(void)
{
    FRAGMENT
}

int main(void)
{
    const struct timespec millisecond = {0, 1000000};
    pthread_t library;
    if (pthread_create(&library, NULL, runLibrary, NULL) != 0)
        return 1;
    while (getState() != BRIMLET_STATE_RUNNING)
        nanosleep(&millisecond, NULL);
    fragment();
    exitCache();
    pthread_join(library, NULL);
    (void)show;
    return 0;
}
