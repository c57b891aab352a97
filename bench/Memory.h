// The peak memory of this process.
#pragma once

#include <cstdint>

namespace bench {

// Returns unused memory to the system and resets the peak from which peakGrowth counts.
void startPeak();
// The growth of the resident memory at its peak, in KiB.
int64_t peakGrowth();

} // namespace bench
