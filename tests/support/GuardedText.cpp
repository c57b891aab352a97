#include "GuardedText.h"

#include <cstring>
#include <stdexcept>

#ifdef _WIN32
#include <windows.h>
#else
#include <sys/mman.h>
#endif

namespace brimlet::test {

namespace {

constexpr size_t page = 1 << 16; // a whole number of pages everywhere

// Two ranges of memory, of which the second is inaccessible.
#ifdef _WIN32

void *allocateGuarded()
{
    void *memory = VirtualAlloc(nullptr, 2 * page, MEM_RESERVE, PAGE_NOACCESS);
    return memory ? VirtualAlloc(memory, page, MEM_COMMIT, PAGE_READWRITE) : nullptr;
}

void freeGuarded(void *memory)
{
    VirtualFree(memory, 0, MEM_RELEASE);
}

#else

void *allocateGuarded()
{
    void *memory = mmap(nullptr, 2 * page, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    return memory != MAP_FAILED && mprotect(memory, page, PROT_READ | PROT_WRITE) == 0 ? memory : nullptr;
}

void freeGuarded(void *memory)
{
    munmap(memory, 2 * page);
}

#endif

} // namespace

GuardedText::GuardedText(const std::u16string &text)
    : memory(allocateGuarded())
    , length(static_cast<uint32_t>(text.size()))
{
    if (!memory)
        throw std::runtime_error("no guarded memory");
    const size_t size = text.size() * sizeof(char16_t);
    start = reinterpret_cast<uint16_t *>(static_cast<char *>(memory) + page - size);
    std::memcpy(start, text.data(), size);
}

GuardedText::~GuardedText()
{
    freeGuarded(memory);
}

} // namespace brimlet::test
