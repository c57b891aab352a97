// Helpers for calls of the exported functions.
#pragma once

#include "Implementation.h"

#include "brimlet.h"

#include <stdexcept>

namespace bench {

inline const uint16_t *units(const Text &text)
{
    return reinterpret_cast<const uint16_t *>(text.data());
}

inline uint32_t length(const Text &text)
{
    return static_cast<uint32_t>(text.size());
}

inline void expectDone(uint32_t result)
{
    if (result != BRIMLET_DONE)
        throw std::runtime_error("the library returned " + std::to_string(result));
}

} // namespace bench
