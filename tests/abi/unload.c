/* Loads the library by name, launches, exits and unloads it, several times over, as a client with plug-ins would; and
   unloads it once while it is launched. argument: the library */
#define _POSIX_C_SOURCE 200809L
#include <dlfcn.h>
#include <pthread.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <time.h>
#include <unistd.h>

typedef struct Library
{
    void *handle;
    int32_t (*launchCache)(void);
    void (*exitCache)(void);
    uint32_t (*getState)(void);
    uint32_t (*clearAll)(void);
} Library;

static const char *path;

static void expect(int holds, const char *what)
{
    if (!holds) {
        fprintf(stderr, "failed: %s\n", what);
        exit(EXIT_FAILURE);
    }
}

static void *find(void *handle, const char *name)
{
    void *function = dlsym(handle, name);
    expect(function != NULL, name);
    return function;
}

static Library load(void)
{
    Library library;
    library.handle = dlopen(path, RTLD_NOW | RTLD_LOCAL);
    expect(library.handle != NULL, "the library can be loaded");
    /* by way of the object's address: C has no cast from an object's pointer to a function's */
    *(void **)&library.launchCache = find(library.handle, "launchCache");
    *(void **)&library.exitCache = find(library.handle, "exitCache");
    *(void **)&library.getState = find(library.handle, "getState");
    *(void **)&library.clearAll = find(library.handle, "clearAll");
    return library;
}

static void *launch(void *library)
{
    ((Library *)library)->launchCache();
    return NULL;
}

static pthread_t start(Library *library)
{
    const struct timespec pause = {0, 1000000};
    pthread_t thread;
    expect(pthread_create(&thread, NULL, launch, library) == 0, "the launch thread starts");
    while (library->getState() != 2)
        nanosleep(&pause, NULL);
    expect(library->clearAll() == 0, "a call is served");
    return thread;
}

int main(int argc, char **argv)
{
    char directory[] = "/tmp/brimlet-unload-XXXXXX";
    int round;
    Library library;
    pthread_t thread;

    expect(argc == 2, "usage: unload LIBRARY");
    path = argv[1];
    expect(mkdtemp(directory) != NULL && chdir(directory) == 0, "there is a directory to work in");

    for (round = 0; round < 5; ++round) {
        library = load();
        thread = start(&library);
        library.exitCache();
        expect(pthread_join(thread, NULL) == 0, "the launch thread ends");
        expect(dlclose(library.handle) == 0, "the library can be unloaded");
    }

    library = load();
    thread = start(&library);
    expect(dlclose(library.handle) == 0, "the library can be unloaded while it is launched");
    expect(dlopen(path, RTLD_NOW | RTLD_NOLOAD) != NULL, "and stays in memory");
    library.exitCache();
    expect(pthread_join(thread, NULL) == 0, "the launch thread ends");

    expect(unlink("CacheDb") == 0 && chdir("/") == 0 && rmdir(directory) == 0, "the directory can be removed");
    return EXIT_SUCCESS;
}
