// The work that is measured, said once for all implementations.
#pragma once

#include "Stage.h"

namespace bench {

struct Workload
{
    std::string name;
    uint32_t size; // of what it is measured against, in a scaling run
    Filling filling;
    std::function<void(Store &)> before; // ahead of each run, not measured
    std::function<void(Store &)> run;    // with the release of what it gives
    // Whether a run gives the same in both.
    std::function<bool(Store &, Store &)> agree;
};

// Those of the table of ratios.
std::vector<Workload> comparedWorkloads();

// Those of the scaling run, each at several sizes up to these.
struct Limits
{
    uint32_t events = 1000000;
    uint32_t devices = 10000;
};
std::vector<Workload> scaledWorkloads(const Limits &limits);

} // namespace bench
