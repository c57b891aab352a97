#include "Memory.h"

#include <fstream>
#include <malloc.h>
#include <stdexcept>
#include <string>

namespace bench {

namespace {

int64_t start = 0;

int64_t statusLine(const std::string &key)
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.compare(0, key.size(), key) == 0)
            return std::stoll(line.substr(key.size()));
    throw std::runtime_error("the system does not report " + key);
}

} // namespace

void startPeak()
{
    malloc_trim(0);
    std::ofstream("/proc/self/clear_refs") << "5";
    start = statusLine("VmRSS:");
}

int64_t peakGrowth()
{
    return statusLine("VmHWM:") - start;
}

} // namespace bench
