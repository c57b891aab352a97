// What the library answers, in words, and what becomes of an answer that the client did not expect.
#pragma once

#include "brimlet.h"

#include <stdexcept>
#include <string>

namespace example {

// "0, done" and the like.
std::string describeResult(uint32_t result);
std::string describeLaunchResult(uint32_t launchResult);

// A call answered something else than it should have.
class UnexpectedResult : public std::runtime_error
{
public:
    UnexpectedResult(const std::string &call, const std::string &answer);
};

// Throws UnexpectedResult unless the call answered what is expected of it.
void expect(const std::string &call, uint32_t result, uint32_t expected = BRIMLET_DONE);

// The same for what getLaunchCacheResult answers.
void expectLaunch(uint32_t expected);

} // namespace example
