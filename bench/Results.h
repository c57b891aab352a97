// The measurements, and their output for the report.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <map>
#include <string>
#include <vector>

namespace bench {

// One implementation in one workload: seconds of each repetition, and KiB.
struct Measured
{
    std::vector<double> wall;
    std::vector<double> cpu;
    int64_t peak = 0;
};

struct Result
{
    std::string workload;
    uint32_t size;
    std::map<std::string, Measured> byName; // by implementation
};

// Writes them as JSON, with the conditions of the run.
void write(std::ostream &out, const std::vector<Result> &results);

} // namespace bench
