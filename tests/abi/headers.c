/* Includes the public header as a client does, in strict C, and calls what needs no launch. */
#include "brimlet.h"

#include <stdio.h>
#include <stdlib.h>

static int failures = 0;

static void check(int holds, const char *what)
{
    if (!holds) {
        fprintf(stderr, "failed: %s\n", what);
        ++failures;
    }
}

int main(void)
{
    FlatUser held = {0};
    FlatUser *user = &held;
    uint16_t unit = 0;
    uint16_t *address = &unit;

    check(getState() == BRIMLET_STATE_NONE, "nothing is launched");
    check(getLaunchCacheResult() == BRIMLET_LAUNCH_NONE, "no launch has a result");
    exitCache();

    check(getUser(&user, 7) == BRIMLET_REFUSED, "a target that is not null is refused");
    check(getServerIp(&address) == BRIMLET_REFUSED, "a target that is not null is refused");
    check(addUsers(NULL, 0) == BRIMLET_REFUSED, "no text is no document");
    check(freeUser(NULL) == BRIMLET_REFUSED, "nothing is not freed");

    return failures ? EXIT_FAILURE : EXIT_SUCCESS;
}
