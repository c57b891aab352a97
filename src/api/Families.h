// The steps of each family of exported functions. An entity supplies its reader, its method of the Controller and its
// flat record.
#pragma once

#include "api/DocumentFunctions.h"
#include "api/Flatten.h"
#include "api/Instance.h"
#include "brimlet/brimlet.h"

#include <limits>

namespace brimlet {

using controller::Controller;

inline QString toString(const uint16_t *text, uint32_t length)
{
    return QString::fromUtf16(text, static_cast<int>(length));
}

// A document in the client's memory, without a copy, for the duration of a call. QString::fromUtf16 handles what it
// would not copy unit by unit: an empty text, a byte order mark, a count beyond that of a QString.
inline QString documentText(const uint16_t *text, uint32_t length)
{
    const bool isPlain = text && length > 0 && length <= std::numeric_limits<int>::max()
                      && *text != QChar::ByteOrderMark && *text != QChar::ByteOrderSwapped;
    if (!isPlain)
        return toString(text, length);
    return QString::fromRawData(reinterpret_cast<const QChar *>(text), static_cast<int>(length));
}

// Allocates the flat record. Frees the block that the target holds, which is null unless the function allows otherwise.
template<class Record>
uint32_t exportRecord(FlatOf<Record> **out, const std::optional<Record> &record)
{
    if (!record)
        return BRIMLET_NO_RECORD;
    freeShared(*out);
    *out = allocateZeroed<FlatOf<Record>>();
    fillFlat(**out, *record);
    return BRIMLET_DONE;
}

template<class Record>
uint32_t exportRecords(FlatOf<Record> **out, uint32_t *count, std::vector<Record> &&records)
{
    const size_t size = records.size();
    *out = flatArray(std::move(records));
    if (!*out)
        return BRIMLET_NO_BLOCK;
    *count = static_cast<uint32_t>(size);
    return BRIMLET_DONE;
}

// ---- Documents in ----

template<class Record, class Keys>
uint32_t addRecords(const uint16_t *text, uint32_t length, const BatchDocument<Record, Keys> &document,
                    BrimletResult (Controller::*add)(const std::vector<Record> &))
{
    std::vector<Record> records;
    if (const BrimletResult refused = document.read(documentText(text, length), records))
        return refused;
    return (instance()->*add)(records);
}

// Reads one record and exports the record that the Controller leaves in its place.
template<class Record, class Keys, class... Parents>
uint32_t updateRecord(FlatOf<Record> **out, const uint16_t *text, uint32_t length,
                      const RecordDocument<Record, Keys, sizeof...(Parents)> &document,
                      BrimletResult (Controller::*update)(std::optional<Record> &, Parents...))
{
    if (*out)
        return BRIMLET_REFUSED;
    std::optional<Record> record;
    std::array<quint32, sizeof...(Parents)> parents{};
    if (const BrimletResult refused = document.read(documentText(text, length), record, parents))
        return refused;
    const auto step = [&](auto... ids) { return (instance()->*update)(record, ids...); };
    if (const BrimletResult failed = std::apply(step, parents))
        return failed;
    return exportRecord(out, record);
}

template<class Keys>
uint32_t deleteRecord(const uint16_t *text, uint32_t length, const IdDocument<Keys, 1> &document,
                      BrimletResult (Controller::*remove)(quint32))
{
    std::array<quint32, 1> ids{};
    if (const BrimletResult refused = document.read(documentText(text, length), ids))
        return refused;
    return (instance()->*remove)(ids.front());
}

// ---- Records out ----

template<class Record, class... Ids>
uint32_t getRecord(FlatOf<Record> **out, BrimletResult (Controller::*get)(std::optional<Record> &, Ids...), Ids... ids)
{
    if (*out)
        return BRIMLET_REFUSED;
    std::optional<Record> record;
    if (const BrimletResult failed = (instance()->*get)(record, ids...))
        return failed;
    return exportRecord(out, record);
}

template<class Record, class... Arguments, class... Values>
uint32_t getRecords(FlatOf<Record> **out, uint32_t *count,
                    BrimletResult (Controller::*get)(std::vector<Record> &, Arguments...), const Values &...values)
{
    if (*out)
        return BRIMLET_REFUSED;
    std::vector<Record> records;
    if (const BrimletResult failed = (instance()->*get)(records, values...))
        return failed;
    return exportRecords(out, count, std::move(records));
}

// Checks the target before it reads the texts.
template<class Record, class... Parents>
uint32_t getRecordsByField(FlatOf<Record> **out, uint32_t *count,
                           BrimletResult (Controller::*get)(std::vector<Record> &, const QString &, const QString &,
                                                            Parents...),
                           const uint16_t *key, uint32_t keyLength, const uint16_t *value, uint32_t valueLength,
                           Parents... parents)
{
    if (*out)
        return BRIMLET_REFUSED;
    return getRecords(out, count, get, toString(key, keyLength), toString(value, valueLength), parents...);
}

// ---- Release ----

template<class Record>
uint32_t freeRecord(FlatOf<Record> *flat)
{
    if (!flat)
        return BRIMLET_REFUSED;
    if (const BrimletResult refused = releaseFlat<Record>(*flat))
        return refused;
    freeShared(flat);
    return BRIMLET_DONE;
}

template<class Record>
uint32_t freeRecords(FlatOf<Record> *flats, uint32_t count)
{
    if (!flats || count == 0)
        return BRIMLET_REFUSED;
    return releaseArray<Record>(flats, count);
}

} // namespace brimlet
