// What has to hold in a fuzzer, in every kind of build: an input for which it does not is a finding.
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
