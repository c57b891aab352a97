// Runs a workload in the three implementations and measures it.
#pragma once

#include "Results.h"
#include "Workloads.h"

namespace bench {

struct Effort
{
    int repetitions = 9;
    double seconds = 0.25;   // the least that a repetition takes, by the clock
    bool isPeakTaken = true; // in another process
};

// Checks first that all three give the same, and throws if they do not. The repetitions of the three are interleaved in
// an order drawn by chance.
Result measure(const Workload &workload, const std::filesystem::path &directory, const Effort &effort);

// In a process of its own: the growth of its memory while the workload runs once in one implementation.
int64_t peakOf(const Workload &workload, const std::string &implementation, const std::filesystem::path &directory);

// The arguments that ask a process for peakOf: see main.cpp.
inline constexpr const char *peakOption = "--peak-of";

} // namespace bench
