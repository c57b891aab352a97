// A script of calls that is the same in every run: it fills a store, and then writes in every way that there is.
#pragma once

#include <cstdint>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

namespace brimlet::test {

// One call of one exported function, by its name, and the code that it returns.
struct Step
{
    std::string name;
    std::function<uint32_t()> call;
};

// Steps of one sort, to be run in their order on a store that `fill` has filled.
struct Family
{
    std::string name;
    std::vector<Step> steps;
};
void PrintTo(const Step &step, std::ostream *out);
void PrintTo(const Family &family, std::ostream *out);

// Fills every table of a launched library. False if some call did not return 0.
bool fill();
// Launches in a child, fills, exits; leaves the bytes of a filled file in the working directory's "CacheDb".
void makeFilledFile();

// Every family; without a fault, each of its steps returns 0 and changes the store.
std::vector<Family> families();
// One step of every exported function that writes.
std::vector<Step> writes();
// Every exported function that reads, with arguments that find something in a filled store.
std::vector<Step> reads();
// Every exported function that removes what it has read before, with arguments that find something.
std::vector<Step> deletions();

} // namespace brimlet::test
