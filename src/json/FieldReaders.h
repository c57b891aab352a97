// Reads one member of a JSON object into one field of a record. A missing member leaves the field absent. A member of a
// type that the reader does not accept, null included, makes it return false.
#pragma once

#include "catalog/Field.h"
#include "records/Contract.h"

#include <QJsonObject>

namespace brimlet {

// Drops the fraction. Returns the smallest 64-bit number for a value out of range, an infinity or NaN.
qint64 truncateToInt64(double value);
// The low 32 bits of that.
quint32 truncateToUInt32(double value);

// Required. Under the first key, or under the third if the first is missing.
bool readIdField(quint32 &field, const QJsonObject &object, const FieldKeys &keys);

bool readTextField(std::optional<QString> &field, const QJsonObject &object, const QString &key);
bool readUInt32Field(std::optional<quint32> &field, const QJsonObject &object, const QString &key);
// A number with a fraction or beyond the signed 32-bit range reads as 0.
bool readInt32Field(std::optional<qint32> &field, const QJsonObject &object, const QString &key);
// The low 8 bits of what readInt32Field reads.
bool readUInt8Field(std::optional<quint8> &field, const QJsonObject &object, const QString &key);
// Intentional, for compatibility: `true` is accepted and reads as false; only a whole number other than 0 is true.
bool readBoolField(std::optional<bool> &field, const QJsonObject &object, const QString &key);
bool readUInt64Field(std::optional<quint64> &field, const QJsonObject &object, const QString &key);

// A value of any type: reads as 0 unless it is a number.
bool readCoordinateField(std::optional<double> &field, const QJsonObject &object, const QString &key);

// A number, which becomes the id of an otherwise empty record.
bool readLocaleRef(std::optional<Locale> &field, const QJsonObject &object, const QString &key);
bool readContractorRef(std::optional<Contractor> &field, const QJsonObject &object, const QString &key);
bool readUserRef(std::optional<User> &field, const QJsonObject &object, const QString &key);

// ---- The reader of each type of field ----

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
inline bool readField(std::optional<double> &field, const QJsonObject &object, const FieldDesc &desc)
{
    return readCoordinateField(field, object, desc.key);
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

} // namespace brimlet
