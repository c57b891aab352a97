// The measured work, described once for all implementations.
#pragma once

#include "Stage.h"

namespace bench {

struct Workload
{
    std::string name;
    uint32_t size; // the size of the store in a scaling run
    Filling filling;
    std::function<void(Store &)> before; // before each run, not measured
    std::function<void(Store &)> run;    // includes the release of the result
    // Whether a run has the same result in both.
    std::function<bool(Store &, Store &)> agree;
};

// The workloads of the table of ratios.
std::vector<Workload> comparedWorkloads();

// The workloads of the scaling run, each at several sizes up to these.
struct Limits
{
    uint32_t events = 1000000;
    uint32_t devices = 10000;
};
std::vector<Workload> scaledWorkloads(const Limits &limits);

} // namespace bench
