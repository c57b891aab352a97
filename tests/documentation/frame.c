/* Runs a fragment of a page, which takes the place of the line that names it, with the library launched and a few
   records in the store. */
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

/* Helpers that the fragments of pages call. */
static void show(const uint16_t *text)
{
    for (; *text; ++text)
        putchar(*text < 128 ? *text : '?');
    putchar('\n');
}

static void fill(uint32_t (*add)(const uint16_t *, uint32_t), const char *json)
{
    uint16_t text[200];
    uint32_t length = 0;
    for (; json[length]; ++length)
        text[length] = (uint16_t)json[length];
    if (add(text, length) != BRIMLET_DONE)
        exit(1);
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
    fill(addLocales, "{\"D\":{\"items\":[{\"id\":1,\"iso\":\"en-GB\"}]}}");
    fill(addDomains, "{\"D\":{\"items\":[{\"id\":3,\"name\":\"Harbour\",\"locale_id\":1}]}}");
    fill(addUsers, "{\"D\":{\"items\":[{\"id\":7,\"name\":\"Anna\"},{\"id\":8,\"login\":\"ben\"}]}}");
    fill(addSites, "{\"D\":{\"items\":[{\"id\":310,\"name\":\"Mill\",\"address_text\":\"Quay 4\"}]}}");
    fragment();
    exitCache();
    pthread_join(library, NULL);
    (void)show;
    return 0;
}
