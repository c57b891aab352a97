// Maps the result of a store operation to a result code. The second argument is a reference that the operation in the
// first one fills; it is examined after the operation has run, so both fit in one call.
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

inline BrimletResult writeResult(bool hasRun)
{
    return hasRun ? BRIMLET_DONE : BRIMLET_WRITE_FAILED;
}

inline BrimletResult readResult(bool hasRun)
{
    return hasRun ? BRIMLET_DONE : BRIMLET_READ_FAILED;
}

// For a read into an optional record or a list.
template<class Result>
BrimletResult readResult(bool hasRun, const Result &records)
{
    if (!hasRun)
        return BRIMLET_READ_FAILED;
    return isEmpty(records) ? BRIMLET_NOT_FOUND : BRIMLET_DONE;
}

// For a write that reads the row back.
template<class Result>
BrimletResult writeResult(bool hasRun, const Result &records)
{
    if (!hasRun)
        return BRIMLET_WRITE_FAILED;
    return isEmpty(records) ? BRIMLET_NOT_FOUND : BRIMLET_DONE;
}

// For the check that a row exists: returns `otherwise` if it does not.
inline BrimletResult requireExists(bool hasRun, const bool &exists, BrimletResult otherwise)
{
    if (!hasRun)
        return BRIMLET_READ_FAILED;
    return exists ? BRIMLET_DONE : otherwise;
}

} // namespace brimlet::controller
