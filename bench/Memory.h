// How much memory this process holds at most.
#pragma once

#include <cstdint>

namespace bench {

// Gives back what the allocator keeps and forgets the peak so far. From then on peakGrowth counts.
void startPeak();
// By how many KiB the resident memory grew at its peak.
int64_t peakGrowth();

} // namespace bench
