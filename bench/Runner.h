// Runs a workload in the three implementations and measures it.
#pragma once

#include "Results.h"
#include "Workloads.h"

namespace bench {

struct Effort
{
    int repetitions = 9;
    double seconds = 0.25;   // the minimum elapsed time of a repetition
    bool isPeakTaken = true; // measured in another process
};

// First checks that all three return the same, and throws if they do not. Interleaves the repetitions of the three in
// random order.
Result measure(const Workload &workload, const std::filesystem::path &directory, const Effort &effort);

// Runs the workload once in one implementation, in a separate process, and returns the growth of its memory.
int64_t peakOf(const Workload &workload, const std::string &implementation, const std::filesystem::path &directory);

// The arguments that make a process run peakOf: see main.cpp.
inline constexpr const char *peakOption = "--peak-of";

} // namespace bench
