// One member of a JSON object into one field of a record. A member that is not there leaves the field absent; one of
// a type that the reader does not accept, null among them, makes it answer false.
#pragma once

#include "catalog/Field.h"
#include "records/Contract.h"

#include <QJsonObject>

namespace brimlet {

// Drops the fraction. A value beyond the signed 64-bit range, infinities and NaN among them, gives the smallest one.
qint64 truncateToInt64(double value);
// The low 32 bits of that.
quint32 truncateToUInt32(double value);

// Required: under the first key, or else under the third.
bool readIdField(quint32 &field, const QJsonObject &object, const FieldKeys &keys);

bool readTextField(std::optional<QString> &field, const QJsonObject &object, const QString &key);
bool readUInt32Field(std::optional<quint32> &field, const QJsonObject &object, const QString &key);
// A number with a fraction or beyond the signed 32-bit range reads as 0.
bool readInt32Field(std::optional<qint32> &field, const QJsonObject &object, const QString &key);
// The low 8 bits of what readInt32Field reads.
bool readUInt8Field(std::optional<quint8> &field, const QJsonObject &object, const QString &key);
// Kept on purpose: true is accepted and reads as false; only a whole number other than 0 gives true.
bool readBoolField(std::optional<bool> &field, const QJsonObject &object, const QString &key);
bool readUInt64Field(std::optional<quint64> &field, const QJsonObject &object, const QString &key);

// A number, which becomes the id of an otherwise empty record.
bool readLocaleRef(std::optional<Locale> &field, const QJsonObject &object, const QString &key);
bool readContractorRef(std::optional<Contractor> &field, const QJsonObject &object, const QString &key);
bool readUserRef(std::optional<User> &field, const QJsonObject &object, const QString &key);

// ---- A list of fields ----

// The reader that a field's type asks for.
inline bool readField(quint32 &field, const QJsonObject &object, const IdFieldDesc &desc)
{
    return readIdField(field, object, desc.fieldKeys);
}
inline bool readField(std::optional<QString> &field, const QJsonObject &object, const FieldDesc &desc)
{
    return readTextField(field, object, desc.key);
}
inline bool readField(std::optional<quint32> &field, const QJsonObject &object, const FieldDesc &desc)
{
    return readUInt32Field(field, object, desc.key);
}
inline bool readField(std::optional<quint32> &field, const QJsonObject &object, const IdFieldDesc &desc)
{
    return readUInt32Field(field, object, desc.fieldKeys.first); // optional, and under no other key
}
inline bool readField(std::optional<qint32> &field, const QJsonObject &object, const FieldDesc &desc)
{
    return readInt32Field(field, object, desc.key);
}
inline bool readField(std::optional<qint32> &field, const QJsonObject &object, const IdFieldDesc &desc)
{
    return readInt32Field(field, object, desc.fieldKeys.first); // optional, and under no other key
}
inline bool readField(std::optional<quint8> &field, const QJsonObject &object, const FieldDesc &desc)
{
    return readUInt8Field(field, object, desc.key);
}
inline bool readField(std::optional<bool> &field, const QJsonObject &object, const FieldDesc &desc)
{
    return readBoolField(field, object, desc.key);
}
inline bool readField(std::optional<quint64> &field, const QJsonObject &object, const FieldDesc &desc)
{
    return readUInt64Field(field, object, desc.key);
}
inline bool readField(std::optional<Locale> &field, const QJsonObject &object, const FieldDesc &desc)
{
    return readLocaleRef(field, object, desc.key);
}
inline bool readField(std::optional<Contractor> &field, const QJsonObject &object, const FieldDesc &desc)
{
    return readContractorRef(field, object, desc.key);
}
inline bool readField(std::optional<User> &field, const QJsonObject &object, const FieldDesc &desc)
{
    return readUserRef(field, object, desc.key);
}

// Reads the fields in their order, up to the first that fails.
template<class Record, class Keys, class List>
bool readFields(Record &record, const QJsonObject &object, const Keys &keys, const List &fields)
{
    return allFields(fields,
                     [&](const auto &field) { return readField(record.*field.member, object, keys.*field.desc); });
}

} // namespace brimlet
