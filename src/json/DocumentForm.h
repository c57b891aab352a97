// Reads one JSON object into one record. The DocumentForm of a record lists the members of its objects: the fields of
// its table, then the nested objects and arrays. On failure a reader returns false and the caller discards the record.
#pragma once

#include "json/FieldReaders.h"

#include <QJsonArray>
#include <QJsonObject>
#include <tuple>
#include <vector>

namespace brimlet {

// Specialised for each record of a document: `Keys`, the descriptors that hold its keys; `members`, in reading order;
// and, if clients can search for the record, `searches`, the fields of its table in the order of the key map.
template<class Record>
struct DocumentForm;

// The keys are constructed once a document.
template<class Record, class Keys>
using ObjectReader = bool (*)(Record &, const QJsonObject &, const Keys &);

// Reads the objects of an array, up to the first element that is no object or that its reader refuses.
template<class Record, class Keys>
bool readObjects(std::vector<Record> &records, const QJsonArray &array, ObjectReader<Record, Keys> fill,
                 const Keys &keys)
{
    records.reserve(static_cast<size_t>(array.size()));
    for (const QJsonValue element : array) {
        if (!element.isObject())
            return false;
        records.emplace_back();
        if (!fill(records.back(), element.toObject(), keys)) {
            records.pop_back();
            return false;
        }
    }
    return true;
}

// ---- Nested members ----

// A value of another type than the member's counts as empty, an empty object as absent.

inline const QString &nestedKey(const FieldDesc &desc)
{
    return desc.key;
}
inline const QString &nestedKey(const IdFieldDesc &desc)
{
    return desc.fieldKeys.third;
}

template<class Record, class Part, class Table, class Desc, class Keys, class PartKeys>
struct NestedObject
{
    Desc Table::*desc;
    std::optional<Part> Record::*member;
    ObjectReader<Part, PartKeys> fill;
    PartKeys Keys::*partKeys;

    bool read(Record &record, const QJsonObject &object, const Keys &keys) const
    {
        const QJsonObject part = object.value(nestedKey(keys.*desc)).toObject();
        return part.isEmpty() || fill((record.*member).emplace(), part, keys.*partKeys);
    }
};

template<class Record, class Part, class Table, class Keys, class PartKeys>
struct NestedArray
{
    FieldDesc Table::*desc;
    std::vector<Part> Record::*member;
    ObjectReader<Part, PartKeys> fill;
    PartKeys Keys::*partKeys;

    bool read(Record &record, const QJsonObject &object, const Keys &keys) const
    {
        return readObjects(record.*member, object.value(nestedKey(keys.*desc)).toArray(), fill, keys.*partKeys);
    }
};

// Its elements must be numbers.
template<class Record, class Table>
struct NestedNumbers
{
    FieldDesc Table::*desc;
    std::vector<quint32> Record::*member;

    bool read(Record &record, const QJsonObject &object, const Table &keys) const
    {
        for (const QJsonValue element : object.value(nestedKey(keys.*desc)).toArray()) {
            if (!element.isDouble())
                return false;
            (record.*member).push_back(truncateToUInt32(element.toDouble(0.0)));
        }
        return true;
    }
};

template<class Record, class Part, class Table, class Desc, class Keys, class PartKeys>
constexpr NestedObject<Record, Part, Table, Desc, Keys, PartKeys>
objectUnder(Desc Table::*desc, std::optional<Part> Record::*member,
            bool (*fill)(Part &, const QJsonObject &, const PartKeys &), PartKeys Keys::*partKeys)
{
    return {desc, member, fill, partKeys};
}

template<class Record, class Part, class Table, class Keys, class PartKeys>
constexpr NestedArray<Record, Part, Table, Keys, PartKeys>
arrayUnder(FieldDesc Table::*desc, std::vector<Part> Record::*member,
           bool (*fill)(Part &, const QJsonObject &, const PartKeys &), PartKeys Keys::*partKeys)
{
    return {desc, member, fill, partKeys};
}

template<class Record, class Table>
constexpr NestedNumbers<Record, Table> numbersUnder(FieldDesc Table::*desc, std::vector<quint32> Record::*member)
{
    return {desc, member};
}

// ---- Members in order ----

template<class Record, class Keys, class Member>
bool readMember(Record &record, const QJsonObject &object, const Keys &keys, const Member &nested)
{
    return nested.read(record, object, keys);
}

template<class Record, class Keys, class Value, class Table, class Desc>
bool readMember(Record &record, const QJsonObject &object, const Keys &keys,
                const Field<Record, Value, Table, Desc> &field)
{
    return readField(record.*field.member, object, keys.*field.desc);
}

// Reads the members in order, up to the first that fails.
template<class Record, class Keys, class Members = std::decay_t<decltype(DocumentForm<Record>::members)>>
bool readMembers(Record &record, const QJsonObject &object, const Keys &keys,
                 const Members &members = DocumentForm<Record>::members)
{
    return allFields(members, [&](const auto &member) { return readMember(record, object, keys, member); });
}

} // namespace brimlet
