// Checks a condition in a fuzzer, in every kind of build: an input that violates it is a finding.
#pragma once

#include <cstdio>
#include <cstdlib>

namespace brimlet::fuzz {

inline void require(bool holds, const char *what)
{
    if (holds)
        return;
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
}

} // namespace brimlet::fuzz
