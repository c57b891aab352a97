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
    FlatUser *user = calloc(1, sizeof *user);
    uint16_t *address = calloc(1, sizeof *address);

    check(getState() == BRIMLET_STATE_NONE, "nothing is launched");
    check(getLaunchCacheResult() == BRIMLET_LAUNCH_NONE, "no launch has a result");
    exitCache();

    check(getUser(&user, 7) == BRIMLET_REFUSED, "a target that is not null is refused");
    check(getServerIp(&address) == BRIMLET_REFUSED, "a target that is not null is refused");
    check(addUsers(NULL, 0) == BRIMLET_REFUSED, "no text is no document");
    check(freeUser(NULL) == BRIMLET_REFUSED, "nothing is not freed");
    check(freeUser(user) == BRIMLET_DONE, "a record of the client's own blocks is freed");

    free(address);
    return failures ? EXIT_FAILURE : EXIT_SUCCESS;
}
