#include "AllocationShim.h"

#include <cerrno>
#include <cstddef>

#define EXPORTED extern "C" __attribute__((visibility("default")))

// The functions of the C library, under the names that it offers to interposers.
extern "C" void *__libc_malloc(size_t size);
extern "C" void *__libc_calloc(size_t count, size_t size);
extern "C" void *__libc_realloc(void *block, size_t size);

namespace {

// Of the thread that armed it; plain numbers, which need no allocation.
struct Arming
{
    bool isArmed = false;
    bool isForEver = false;
    uint64_t nth = 0;
    uint64_t counted = 0;
    uint64_t refused = 0;
};
__attribute__((tls_model("initial-exec"))) thread_local Arming arming;

bool refuses()
{
    if (!arming.isArmed)
        return false;
    const uint64_t number = ++arming.counted;
    const bool isHit = arming.nth && (number == arming.nth || (arming.isForEver && number > arming.nth));
    if (isHit) {
        ++arming.refused;
        errno = ENOMEM;
    }
    return isHit;
}

} // namespace

EXPORTED void armAllocationFailure(uint64_t nth, int forEver)
{
    arming = {true, forEver != 0, nth, 0, 0};
}

EXPORTED void disarmAllocationFailure(void)
{
    arming.isArmed = false;
}

EXPORTED uint64_t countedBlocks(void)
{
    return arming.counted;
}

EXPORTED uint64_t refusedBlocks(void)
{
    return arming.refused;
}

EXPORTED void *malloc(size_t size)
{
    return refuses() ? nullptr : __libc_malloc(size);
}

EXPORTED void *calloc(size_t count, size_t size)
{
    return refuses() ? nullptr : __libc_calloc(count, size);
}

EXPORTED void *realloc(void *block, size_t size)
{
    return refuses() ? nullptr : __libc_realloc(block, size);
}
