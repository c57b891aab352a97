// The leak checker, where this build has one.
#pragma once

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define BRIMLET_FUZZ_LEAK_CHECK
#endif
#elif defined(__SANITIZE_ADDRESS__)
#define BRIMLET_FUZZ_LEAK_CHECK
#endif

#ifdef BRIMLET_FUZZ_LEAK_CHECK
#include <sanitizer/lsan_interface.h>
#endif

namespace brimlet::fuzz {

// The leak checker ignores allocations during the lifetime of one of these.
#ifdef BRIMLET_FUZZ_LEAK_CHECK
using Unseen = __lsan::ScopedDisabler;
#else
struct Unseen
{
    Unseen() {}
};
#endif

} // namespace brimlet::fuzz
