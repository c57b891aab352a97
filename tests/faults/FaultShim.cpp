#include "FaultShim.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <dlfcn.h>
#include <unistd.h>

#define EXPORTED extern "C" __attribute__((visibility("default")))

namespace {

std::atomic<FaultKind> armedKind{FAULT_NONE};
std::atomic<unsigned> armedCalls{0};
std::atomic<unsigned> armedNth{0};
std::atomic<unsigned> counted{0};
std::atomic<unsigned> failed{0};

// The next function of that name: the C library's, or a sanitizer's before it.
template<class Function>
Function next(const char *name)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

bool isStoreName(const char *path)
{
    const char *slash = std::strrchr(path, '/');
    return std::strncmp(slash ? slash + 1 : path, "CacheDb", 7) == 0;
}

bool isStoreFile(int descriptor, unsigned call)
{
    char link[32] = "/proc/self/fd/";
    char digits[12];
    int length = 0;
    for (int rest = descriptor; rest > 0 || length == 0; rest /= 10)
        digits[length++] = static_cast<char>('0' + rest % 10);
    for (char *end = link + std::strlen(link); length > 0;)
        *end++ = digits[--length];
    char path[4096];
    const ssize_t size = readlink(link, path, sizeof path - 1);
    if (size <= 0)
        return false;
    path[size] = '\0';
    if (isStoreName(path))
        return true;
    char directory[4096];
    return call == FAULT_SYNC && getcwd(directory, sizeof directory) && std::strcmp(path, directory) == 0;
}

bool isArmedFor(unsigned call)
{
    return (armedCalls & call) != 0;
}

enum class Step { GoOn, Fail, Tear };

// Counts a call on a store's file and says how it goes. Does not return if the process is to die.
Step meet(unsigned call, int error)
{
    const unsigned number = ++counted;
    const FaultKind kind = armedKind;
    const bool isHit = number == armedNth;
    if (isHit && kind == FAULT_KILL_TORN && call == FAULT_WRITE)
        return Step::Tear;
    if (isHit && (kind == FAULT_KILL || kind == FAULT_KILL_TORN))
        raise(SIGKILL);
    if ((isHit && kind == FAULT_ONCE) || (number >= armedNth && kind == FAULT_FOR_EVER)) {
        ++failed;
        errno = error;
        return Step::Fail;
    }
    return Step::GoOn;
}

Step meetAt(int descriptor, unsigned call, int error)
{
    return isArmedFor(call) && isStoreFile(descriptor, call) ? meet(call, error) : Step::GoOn;
}

using WriteAt = ssize_t (*)(int, const void *, size_t, off64_t);
using ReadAt = ssize_t (*)(int, void *, size_t, off64_t);
using Sync = int (*)(int);
using Truncate = int (*)(int, off64_t);

ssize_t writeAt(WriteAt real, int descriptor, const void *bytes, size_t size, off64_t offset)
{
    const Step step = meetAt(descriptor, FAULT_WRITE, ENOSPC);
    if (step == Step::Fail)
        return -1;
    if (step == Step::Tear) {
        real(descriptor, bytes, size / 2, offset);
        raise(SIGKILL);
    }
    return real(descriptor, bytes, size, offset);
}

ssize_t readAt(ReadAt real, int descriptor, void *bytes, size_t size, off64_t offset)
{
    return meetAt(descriptor, FAULT_READ, EIO) == Step::Fail ? -1 : real(descriptor, bytes, size, offset);
}

int sync(Sync real, int descriptor)
{
    return meetAt(descriptor, FAULT_SYNC, EIO) == Step::Fail ? -1 : real(descriptor);
}

int truncate(Truncate real, int descriptor, off64_t size)
{
    return meetAt(descriptor, FAULT_TRUNCATE, EIO) == Step::Fail ? -1 : real(descriptor, size);
}

} // namespace

EXPORTED void armFault(FaultKind kind, unsigned calls, unsigned nth)
{
    armedCalls = 0;
    counted = 0;
    failed = 0;
    armedKind = kind;
    armedNth = nth;
    armedCalls = calls;
}

EXPORTED void disarmFault(void)
{
    armedCalls = 0;
}

EXPORTED unsigned countedCalls(void)
{
    return counted;
}

EXPORTED unsigned failedCalls(void)
{
    return failed;
}

// ---- The calls that SQLite makes on its files, here in place of the C library's ----

EXPORTED ssize_t pwrite(int descriptor, const void *bytes, size_t size, off_t offset)
{
    static const auto real = next<WriteAt>("pwrite");
    return writeAt(real, descriptor, bytes, size, offset);
}

EXPORTED ssize_t pwrite64(int descriptor, const void *bytes, size_t size, off64_t offset)
{
    static const auto real = next<WriteAt>("pwrite64");
    return writeAt(real, descriptor, bytes, size, offset);
}

EXPORTED ssize_t pread(int descriptor, void *bytes, size_t size, off_t offset)
{
    static const auto real = next<ReadAt>("pread");
    return readAt(real, descriptor, bytes, size, offset);
}

EXPORTED ssize_t pread64(int descriptor, void *bytes, size_t size, off64_t offset)
{
    static const auto real = next<ReadAt>("pread64");
    return readAt(real, descriptor, bytes, size, offset);
}

EXPORTED int fsync(int descriptor)
{
    static const auto real = next<Sync>("fsync");
    return sync(real, descriptor);
}

EXPORTED int fdatasync(int descriptor)
{
    static const auto real = next<Sync>("fdatasync");
    return sync(real, descriptor);
}

EXPORTED int ftruncate(int descriptor, off_t size) noexcept
{
    static const auto real = next<Truncate>("ftruncate");
    return truncate(real, descriptor, size);
}

EXPORTED int ftruncate64(int descriptor, off64_t size) noexcept
{
    static const auto real = next<Truncate>("ftruncate64");
    return truncate(real, descriptor, size);
}

EXPORTED int unlink(const char *path) noexcept
{
    static const auto real = next<int (*)(const char *)>("unlink");
    if (isArmedFor(FAULT_UNLINK) && isStoreName(path) && meet(FAULT_UNLINK, EIO) == Step::Fail)
        return -1;
    return real(path);
}
