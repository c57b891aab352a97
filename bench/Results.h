// What was measured, and how it is handed to the report.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <map>
#include <string>
#include <vector>

namespace bench {

// An implementation at a workload: seconds of each repetition, and KiB.
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
    std::map<std::string, Measured> byName; // of the implementation
};

// As JSON, with what it was measured on.
void write(std::ostream &out, const std::vector<Result> &results);

} // namespace bench
