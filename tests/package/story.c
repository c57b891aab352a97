/* A small client in C: launch, add, read, write, remove, free, exit. It uses only the installed
   header. */
#define _POSIX_C_SOURCE 200809L
#include <brimlet.h>

#include <pthread.h>
#include <stdio.h>
#include <stdlib.h>
#include <time.h>

#define LENGTH(text) (sizeof(text) / sizeof *(text) - 1) /* without the zero at its end */

static const uint16_t document[] = u"{\"D\":{\"items\":[{\"id\":7,\"name\":\"Anna\"},{\"id\":8}]}}";
static const uint16_t update[] = u"{\"D\":{\"id\":8,\"name\":\"Ben\"}}";
static const uint16_t removal[] = u"{\"D\":{\"op_id\":8}}";
static const uint16_t anna[] = u"Anna";
static const uint16_t ben[] = u"Ben";

static void expect(int holds, const char *what)
{
    if (!holds) {
        fprintf(stderr, "failed: %s\n", what);
        exit(EXIT_FAILURE);
    }
}

static int areEqual(const uint16_t *one, const uint16_t *other)
{
    while (*one != 0 && *one == *other) {
        ++one;
        ++other;
    }
    return *one == *other;
}

static void *launch(void *unused)
{
    launchCache();
    return unused;
}

int main(void)
{
    const struct timespec pause = {0, 1000000};
    pthread_t thread;
    FlatUser *user = NULL;
    FlatUser *updated = NULL;
    FlatUser *removed = NULL;
    FlatUser *users = NULL;
    uint32_t count = 0;

    expect(pthread_create(&thread, NULL, launch, NULL) == 0, "the launch thread starts");
    while (getState() != BRIMLET_STATE_RUNNING)
        nanosleep(&pause, NULL);
    expect(getLaunchCacheResult() == BRIMLET_LAUNCH_CREATED, "the file is created");

    expect(addUsers(document, LENGTH(document)) == BRIMLET_DONE, "users are added");
    expect(getUser(&user, 7) == BRIMLET_DONE && user->name && areEqual(user->name, anna), "a user is read");
    expect(updateUser(&updated, update, LENGTH(update)) == BRIMLET_DONE && areEqual(updated->name, ben),
           "a user is written");
    expect(getUsers(&users, &count) == BRIMLET_DONE && count == 2, "all users are read");

    expect(deleteUser(removal, LENGTH(removal)) == BRIMLET_DONE, "a user is removed");
    expect(getUser(&removed, 8) == BRIMLET_NOT_FOUND && !removed, "a user that was removed is not found");

    exitCache();
    expect(pthread_join(thread, NULL) == 0, "the launch thread ends");
    expect(freeUser(user) == BRIMLET_DONE, "a user is freed after the exit");
    expect(freeUser(updated) == BRIMLET_DONE, "another is freed");
    expect(freeUsersArray(users, count) == BRIMLET_DONE, "all users are freed after the exit");
    puts("the client in C has succeeded");
    return EXIT_SUCCESS;
}
