// The results of the library in words, and what the client does with an unexpected result.
#pragma once

#include "brimlet.h"

#include <stdexcept>
#include <string>

namespace example {

// "0, done" and the like.
std::string describeResult(uint32_t result);
std::string describeLaunchResult(uint32_t launchResult);

// A call returned an unexpected result.
class UnexpectedResult : public std::runtime_error
{
public:
    UnexpectedResult(const std::string &call, const std::string &answer);
};

// Throws UnexpectedResult unless the call returned the expected result.
void expect(const std::string &call, uint32_t result, uint32_t expected = BRIMLET_DONE);

// The same for getLaunchCacheResult.
void expectLaunch(uint32_t expected);

} // namespace example
