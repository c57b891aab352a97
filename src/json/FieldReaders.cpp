#include "json/FieldReaders.h"

#include <limits>

namespace brimlet {

namespace {

constexpr double twoTo63 = 9223372036854775808.0;

bool isAnything(const QJsonValue &)
{
    return true;
}

bool isNumber(const QJsonValue &value)
{
    return value.isDouble();
}

bool isNumberOrBool(const QJsonValue &value)
{
    return value.isDouble() || value.isBool();
}

bool isText(const QJsonValue &value)
{
    return value.isString();
}

// The rule of every optional field.
template<class Value, class Convert>
bool readOptional(std::optional<Value> &field, const QJsonObject &object, const QString &key,
                  bool (*isAccepted)(const QJsonValue &), const Convert &convert)
{
    const auto member = object.constFind(key);
    if (member == object.constEnd())
        return true;
    const QJsonValue value = *member;
    if (!isAccepted(value))
        return false;
    field = convert(value);
    return true;
}

quint32 toUInt32(const QJsonValue &value)
{
    return truncateToUInt32(value.toDouble(0.0));
}

qint32 toInt32(const QJsonValue &value)
{
    return value.toInt(0);
}

quint64 toUInt64(const QJsonValue &value)
{
    const double number = value.toDouble(0.0);
    if (number < twoTo63)
        return static_cast<quint64>(truncateToInt64(number));
    const double rest = number - twoTo63;
    if (rest >= twoTo63)
        return static_cast<quint64>(truncateToInt64(rest));
    return static_cast<quint64>(truncateToInt64(rest)) + (quint64(1) << 63);
}

template<class Record>
bool readReference(std::optional<Record> &field, const QJsonObject &object, const QString &key)
{
    return readOptional(field, object, key, isNumber, [](const QJsonValue &value) {
        Record record;
        record.id = toUInt32(value);
        return record;
    });
}

} // namespace

qint64 truncateToInt64(double value)
{
    if (value >= -twoTo63 && value < twoTo63)
        return static_cast<qint64>(value);
    return std::numeric_limits<qint64>::min();
}

quint32 truncateToUInt32(double value)
{
    return static_cast<quint32>(truncateToInt64(value));
}

bool readIdField(quint32 &field, const QJsonObject &object, const FieldKeys &keys)
{
    auto member = object.constFind(keys.first);
    if (member == object.constEnd() && !keys.third.isEmpty())
        member = object.constFind(keys.third);
    if (member == object.constEnd() || !isNumber(*member))
        return false;
    field = toUInt32(*member);
    return true;
}

bool readTextField(std::optional<QString> &field, const QJsonObject &object, const QString &key)
{
    return readOptional(field, object, key, isText, [](const QJsonValue &value) { return value.toString(); });
}

bool readUInt32Field(std::optional<quint32> &field, const QJsonObject &object, const QString &key)
{
    return readOptional(field, object, key, isNumber, toUInt32);
}

bool readInt32Field(std::optional<qint32> &field, const QJsonObject &object, const QString &key)
{
    return readOptional(field, object, key, isNumber, toInt32);
}

bool readUInt8Field(std::optional<quint8> &field, const QJsonObject &object, const QString &key)
{
    return readOptional(field, object, key, isNumber,
                        [](const QJsonValue &value) { return static_cast<quint8>(toInt32(value)); });
}

bool readBoolField(std::optional<bool> &field, const QJsonObject &object, const QString &key)
{
    return readOptional(field, object, key, isNumberOrBool,
                        [](const QJsonValue &value) { return toInt32(value) != 0; });
}

bool readUInt64Field(std::optional<quint64> &field, const QJsonObject &object, const QString &key)
{
    return readOptional(field, object, key, isNumber, toUInt64);
}

bool readCoordinateField(std::optional<double> &field, const QJsonObject &object, const QString &key)
{
    return readOptional(field, object, key, isAnything, [](const QJsonValue &value) { return value.toDouble(0.0); });
}

bool readLocaleRef(std::optional<Locale> &field, const QJsonObject &object, const QString &key)
{
    return readReference(field, object, key);
}

bool readContractorRef(std::optional<Contractor> &field, const QJsonObject &object, const QString &key)
{
    return readReference(field, object, key);
}

bool readUserRef(std::optional<User> &field, const QJsonObject &object, const QString &key)
{
    return readReference(field, object, key);
}

} // namespace brimlet
