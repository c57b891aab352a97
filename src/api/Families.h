// The exported functions by family: the order of their steps, written once. An entity brings its reader, its step of
// the Controller and its flat record.
#pragma once

#include "api/Flatten.h"
#include "api/Instance.h"
#include "brimlet/brimlet.h"
#include "json/Documents.h"

#include <limits>

namespace brimlet {

using controller::Controller;

inline QString toString(const uint16_t *text, uint32_t length)
{
    return QString::fromUtf16(text, static_cast<int>(length));
}

// A document as it lies in the client's memory, for the time of a call. What QString::fromUtf16 would not take over
// unit by unit goes through it: no text, a byte order mark, a count beyond a QString's.
inline QString documentText(const uint16_t *text, uint32_t length)
{
    const bool isPlain = text && length > 0 && length <= std::numeric_limits<int>::max()
                      && *text != QChar::ByteOrderMark && *text != QChar::ByteOrderSwapped;
    if (!isPlain)
        return toString(text, length);
    return QString::fromRawData(reinterpret_cast<const QChar *>(text), static_cast<int>(length));
}

// Puts a record out in a block of its own, in place of the block that the target holds.
template<class Record>
uint32_t putOut(FlatOf<Record> **out, const std::optional<Record> &record)
{
    if (!record)
        return BRIMLET_NO_RECORD;
    freeShared(*out);
    *out = allocateZeroed<FlatOf<Record>>();
    fillFlat(**out, *record);
    return BRIMLET_DONE;
}

template<class Record>
uint32_t putOut(FlatOf<Record> **out, uint32_t *count, std::vector<Record> &&records)
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
uint32_t addRecords(const uint16_t *text, uint32_t length, ObjectReader<Record, Keys> fill,
                    BrimletResult (Controller::*add)(const std::vector<Record> &))
{
    std::vector<Record> records;
    if (const BrimletResult refused = readBatch(documentText(text, length), records, fill))
        return refused;
    return (instance()->*add)(records);
}

// Reads one record and gives what the step leaves in its place, for keys that stand beside it.
template<class Record, class Keys, class... Parents>
uint32_t updateRecord(FlatOf<Record> **out, const QString &text, ObjectReader<Record, Keys> fill,
                      BrimletResult (Controller::*update)(std::optional<Record> &, Parents...), Parents... parents)
{
    std::optional<Record> record;
    if (const BrimletResult refused = readOneRecord(text, record, fill))
        return refused;
    if (const BrimletResult failed = (instance()->*update)(record, parents...))
        return failed;
    return putOut(out, record);
}

template<class Record, class Keys>
uint32_t updateRecord(FlatOf<Record> **out, const uint16_t *text, uint32_t length, ObjectReader<Record, Keys> fill,
                      BrimletResult (Controller::*update)(std::optional<Record> &))
{
    if (*out)
        return BRIMLET_REFUSED;
    return updateRecord(out, documentText(text, length), fill, update);
}

inline uint32_t deleteRecord(const uint16_t *text, uint32_t length, const QString &key,
                             BrimletResult (Controller::*remove)(quint32))
{
    quint32 id = 0;
    if (const BrimletResult refused = readBareId(documentText(text, length), key, id))
        return refused;
    return (instance()->*remove)(id);
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
    return putOut(out, record);
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
    return putOut(out, count, std::move(records));
}

// The texts are looked at behind the guard.
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
