// Reads a document, an object with the payload under "D". All readers return BRIMLET_DONE, BRIMLET_INCOMPLETE or
// BRIMLET_REFUSED, touch no store and log nothing.
#pragma once

#include "brimlet/ResultCodes.h"
#include "json/DocumentForm.h"

#include <array>

namespace brimlet {

// {"D":{...}}: the object under "D".
BrimletResult openEnvelope(const QString &text, QJsonObject &payload);

// {"D":{"items":[...]}}: the array, which is not empty.
BrimletResult openItems(const QString &text, QJsonArray &items);

// {"D":{"op_id":7}}: the value under the key. A value of another type than number reads as 0.
BrimletResult readBareId(const QString &text, const QString &key, quint32 &id);
BrimletResult readBareId(const QJsonObject &payload, const QString &key, quint32 &id);

// {"D":{"items":[{...},{...}]}}. On failure the list holds the records before the refused one.
template<class Record, class Keys>
BrimletResult readBatch(const QString &text, std::vector<Record> &records, ObjectReader<Record, Keys> fill)
{
    QJsonArray items;
    if (const BrimletResult opened = openItems(text, items))
        return opened;
    return readObjects(records, items, fill, Keys()) ? BRIMLET_DONE : BRIMLET_INCOMPLETE;
}

// {"D":{...}}: "D" itself is the record.
template<class Record, class Keys>
BrimletResult readOneRecord(const QJsonObject &payload, std::optional<Record> &record, ObjectReader<Record, Keys> fill,
                            const Keys &keys)
{
    Record read;
    if (!fill(read, payload, keys))
        return BRIMLET_INCOMPLETE;
    record = std::move(read);
    return BRIMLET_DONE;
}

template<class Record, class Keys>
BrimletResult readOneRecord(const QString &text, std::optional<Record> &record, ObjectReader<Record, Keys> fill)
{
    QJsonObject payload;
    if (const BrimletResult opened = openEnvelope(text, payload))
        return opened;
    return readOneRecord(payload, record, fill, Keys());
}

// ---- The document of a function ----

template<class RecordType, class Keys>
struct BatchDocument
{
    using Record = RecordType;
    ObjectReader<Record, Keys> fill;

    BrimletResult read(const QString &text, std::vector<Record> &records) const
    {
        return readBatch(text, records, fill);
    }
};

// Ids alone, each under its own key.
template<class KeysType, size_t count>
struct IdDocument
{
    using Keys = KeysType;
    using Ids = std::array<quint32, count>;
    std::array<IdFieldDesc Keys::*, count> fields;
    QString FieldKeys::*key = &FieldKeys::second; // which of a field's keys

    // For a function that departs from the rule.
    constexpr IdDocument by(QString FieldKeys::*other) const { return {fields, other}; }

    BrimletResult read(const QString &text, Ids &ids) const
    {
        QJsonObject payload;
        if (const BrimletResult opened = openEnvelope(text, payload))
            return opened;
        return read(payload, ids, Keys());
    }

    BrimletResult read(const QJsonObject &payload, Ids &ids, const Keys &keys) const
    {
        for (size_t i = 0; i < count; ++i)
            if (const BrimletResult missing = readBareId(payload, (keys.*fields[i]).fieldKeys.*key, ids[i]))
                return missing;
        return BRIMLET_DONE;
    }
};

// One record, with the ids of its parents beside its members.
template<class RecordType, class Keys, size_t count>
struct RecordDocument
{
    using Record = RecordType;
    using Ids = typename IdDocument<Keys, count>::Ids;
    ObjectReader<Record, Keys> fill;
    IdDocument<Keys, count> parents;

    BrimletResult read(const QString &text, std::optional<Record> &record) const
    {
        static_assert(count == 0, "pass an array for the ids of the parents");
        Ids none{};
        return read(text, record, none);
    }

    BrimletResult read(const QString &text, std::optional<Record> &record, Ids &ids) const
    {
        QJsonObject payload;
        if (const BrimletResult opened = openEnvelope(text, payload))
            return opened;
        const Keys keys;
        if (const BrimletResult missing = parents.read(payload, ids, keys))
            return missing;
        return readOneRecord(payload, record, fill, keys);
    }
};

template<class Record, class Keys>
constexpr BatchDocument<Record, Keys> batchOf(bool (*fill)(Record &, const QJsonObject &, const Keys &))
{
    return {fill};
}

template<class Keys, class... Others>
constexpr IdDocument<Keys, 1 + sizeof...(Others)> idsUnder(IdFieldDesc Keys::*first, Others... others)
{
    return {{first, others...}};
}

template<class Record, class Keys, class... Parents>
constexpr RecordDocument<Record, Keys, sizeof...(Parents)>
recordOf(bool (*fill)(Record &, const QJsonObject &, const Keys &), Parents... parents)
{
    return {fill, {{parents...}}};
}

} // namespace brimlet
