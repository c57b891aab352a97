/**
 * @file errors.hpp
 * What the codes mean for a client, and the exceptions that carry them. Included by brimlet.hpp.
 */
#ifndef BRIMLET_RUNTIME_ERRORS_HPP
#define BRIMLET_RUNTIME_ERRORS_HPP

#include "../codes.hpp"

#include <cstdint>
#include <stdexcept>
#include <string>

namespace brimlet {

/** Whether the store can be read and written after a launch with this result. */
constexpr bool isUsable(LaunchResult result)
{
    return result == LaunchResult::Opened || result == LaunchResult::Created;
}

/** Whether the launch replaced the file by one without tables. Remove that file before you launch again. */
constexpr bool isReplaced(LaunchResult result)
{
    return result == LaunchResult::ReplacedSchema || result == LaunchResult::ReplacedUnreadable
        || result == LaunchResult::ReplacedVersion;
}

/** Thrown where a call must return Code::Done and returned another code. */
class Error : public std::runtime_error
{
public:
    /** The error for a code. */
    explicit Error(Code code)
        : std::runtime_error(std::to_string(static_cast<uint32_t>(code)) + ", " + std::string(meaning(code)))
        , reason(code)
    {
    }
    /** The code that the call returned. */
    Code code() const noexcept { return reason; }

private:
    Code reason;
};

/** Throws Error for every code but Code::Done: for a write that must succeed. */
inline void require(Code code)
{
    if (code != Code::Done)
        throw Error(code);
}

/** Thrown where a launch takes longer than its timeout. */
class LaunchTimedOut : public std::runtime_error
{
public:
    LaunchTimedOut() : std::runtime_error("the launch is not finished in time") {}
};

/** Thrown where launchCache returns before it has run. */
class LaunchEnded : public std::runtime_error
{
public:
    LaunchEnded() : std::runtime_error("the launch came back without having run") {}
};

/** Thrown where the library is launched already: a process can have one launch at a time. */
class AlreadyLaunched : public std::logic_error
{
public:
    AlreadyLaunched() : std::logic_error("the library is launched already") {}
};

} // namespace brimlet

#endif
