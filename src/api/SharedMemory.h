// The allocator that the library shares with its clients: every block that crosses the boundary is allocated and
// released by it, on either side.
#pragma once

#include <QString>
#include <cstdlib>
#include <cstring>
#include <optional>

#ifdef _WIN32
#include <combaseapi.h>
#endif

namespace brimlet {

inline void *allocateShared(size_t size)
{
#ifdef _WIN32
    return CoTaskMemAlloc(size);
#else
    return std::malloc(size);
#endif
}

// `block` may be null.
inline void freeShared(void *block)
{
#ifdef _WIN32
    CoTaskMemFree(block);
#else
    std::free(block);
#endif
}

// An uninitialised block for `count` elements. Aborts if out of memory: no client could use half a record.
template<class T>
T *allocate(size_t count = 1)
{
    void *block = allocateShared(count * sizeof(T));
    if (!block)
        std::abort();
    return static_cast<T *>(block);
}

// A zeroed block, for records, which have absent fields and padding.
template<class T>
T *allocateZeroed(size_t count = 1)
{
    return static_cast<T *>(std::memset(allocate<T>(count), 0, count * sizeof(T)));
}

// A copy of the text with its NUL terminator, or null if there is no text.
inline uint16_t *copyText(const std::optional<QString> &text)
{
    if (!text)
        return nullptr;
    const size_t units = static_cast<size_t>(text->size()) + 1;
    auto *block = allocate<uint16_t>(units);
    std::memcpy(block, text->utf16(), units * sizeof(uint16_t));
    return block;
}

} // namespace brimlet
