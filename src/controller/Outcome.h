// From what the store answered to a result code, in the one place that knows the rule. What an operation fills comes
// by reference and is looked at after the operation has run, so both can stand in one call.
#pragma once

#include "brimlet/ResultCodes.h"

#include <optional>
#include <vector>

namespace brimlet::controller {

template<class Record>
bool isEmpty(const std::optional<Record> &record)
{
    return !record;
}

template<class Record>
bool isEmpty(const std::vector<Record> &records)
{
    return records.empty();
}

inline BrimletResult written(bool hasRun)
{
    return hasRun ? BRIMLET_DONE : BRIMLET_WRITE_FAILED;
}

inline BrimletResult read(bool hasRun)
{
    return hasRun ? BRIMLET_DONE : BRIMLET_READ_FAILED;
}

// A read into an optional record or a list.
template<class Found>
BrimletResult found(bool hasRun, const Found &records)
{
    if (!hasRun)
        return BRIMLET_READ_FAILED;
    return isEmpty(records) ? BRIMLET_NOT_FOUND : BRIMLET_DONE;
}

// A write that reads back what it wrote.
template<class Found>
BrimletResult writtenAndFound(bool hasRun, const Found &records)
{
    if (!hasRun)
        return BRIMLET_WRITE_FAILED;
    return isEmpty(records) ? BRIMLET_NOT_FOUND : BRIMLET_DONE;
}

// A look for a row that has to be there.
inline BrimletResult there(bool hasRun, const bool &exists, BrimletResult otherwise)
{
    if (!hasRun)
        return BRIMLET_READ_FAILED;
    return exists ? BRIMLET_DONE : otherwise;
}

} // namespace brimlet::controller
