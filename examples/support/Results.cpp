#include "Results.h"

namespace example {
namespace {

const char *meaningOfResult(uint32_t result)
{
    switch (result) {
    case BRIMLET_DONE:
        return "done";
    case BRIMLET_NO_BLOCK:
        return "no memory for the list";
    case BRIMLET_INCOMPLETE:
        return "a required member is missing or has a wrong type";
    case BRIMLET_READ_FAILED:
        return "the store could not be read";
    case BRIMLET_NOT_FOUND:
        return "nothing in the store fits";
    case BRIMLET_WRITE_FAILED:
        return "the store could not be written";
    case BRIMLET_REFUSED:
        return "an argument is refused";
    case BRIMLET_NO_PARENT:
        return "written, but the device or section is not in the store";
    case BRIMLET_NO_RECORD:
        return "a promised record is not there";
    default:
        return "no known result";
    }
}

const char *meaningOfLaunchResult(uint32_t launchResult)
{
    switch (launchResult) {
    case BRIMLET_LAUNCH_OPENED:
        return "the file was there and is sound";
    case BRIMLET_LAUNCH_FAILED:
        return "the file could not be created or replaced";
    case BRIMLET_LAUNCH_CREATED:
        return "there was no file, it was created";
    case BRIMLET_LAUNCH_REPLACED_SCHEMA:
        return "a table or column was missing, the file was replaced";
    case BRIMLET_LAUNCH_REPLACED_UNREADABLE:
        return "the file would not open, it was replaced";
    case BRIMLET_LAUNCH_REPLACED_VERSION:
        return "the file had another version, it was replaced";
    case BRIMLET_LAUNCH_NONE:
        return "nothing is launched";
    default:
        return "no known launch result";
    }
}

} // namespace

std::string describeResult(uint32_t result)
{
    return std::to_string(result) + ", " + meaningOfResult(result);
}

std::string describeLaunchResult(uint32_t launchResult)
{
    return std::to_string(launchResult) + ", " + meaningOfLaunchResult(launchResult);
}

UnexpectedResult::UnexpectedResult(const std::string &call, const std::string &answer)
    : std::runtime_error(call + " returned " + answer)
{
}

void expect(const std::string &call, uint32_t result, uint32_t expected)
{
    if (result != expected)
        throw UnexpectedResult(call, describeResult(result));
}

void expectLaunch(uint32_t expected)
{
    const uint32_t result = getLaunchCacheResult();
    if (result != expected)
        throw UnexpectedResult("getLaunchCacheResult", describeLaunchResult(result));
}

} // namespace example
