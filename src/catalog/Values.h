// For each type of a record's field: the declared type of its column, how it is bound and how it is read from a row.
#pragma once

#include <QString>
#include <QVariant>
#include <optional>
#include <type_traits>
#include <utility>

namespace brimlet {

// An integer of a row. SQLite returns it as a qint64, which is cast; any other value of the file goes through Qt's
// conversion.
template<class Number>
Number readWhole(const QVariant &cell, Number (QVariant::*convert)(bool *) const)
{
    if (cell.userType() == QMetaType::LongLong)
        return static_cast<Number>(*static_cast<const qint64 *>(cell.constData()));
    return (cell.*convert)(nullptr);
}

template<class Value, class = void>
constexpr bool isRecord = false;
template<class Value>
constexpr bool isRecord<Value, std::void_t<decltype(Value::id)>> = true;

// The parent's row holds an embedded record as a reference, its id. It is never read from that column: embedded records
// come from a join.
template<class Value>
struct ValueKind
{
    static_assert(isRecord<Value>, "no rule for binding and reading a member of this type");
    static constexpr QVariant::Type type = QVariant::UInt;
    static constexpr const char *column = "UNSIGNED BIG INT";
    static QVariant bound(const Value &value) { return value.id; }
    static constexpr Value (*read)(QVariant &) = nullptr;
};

template<>
struct ValueKind<quint32>
{
    static constexpr QVariant::Type type = QVariant::UInt;
    static constexpr const char *column = "UNSIGNED BIG INT";
    static QVariant bound(quint32 value) { return value; }
    static quint32 read(QVariant &cell) { return readWhole(cell, &QVariant::toUInt); }
};

template<>
struct ValueKind<qint32>
{
    static constexpr QVariant::Type type = QVariant::Int;
    static constexpr const char *column = "UNSIGNED BIG INT";
    static QVariant bound(qint32 value) { return value; }
    static qint32 read(QVariant &cell) { return readWhole(cell, &QVariant::toInt); }
};

template<>
struct ValueKind<quint8>
{
    static constexpr QVariant::Type type = QVariant::Int;
    static constexpr const char *column = "UNSIGNED BIG INT";
    static QVariant bound(quint8 value) { return static_cast<qint32>(value); }
    static quint8 read(QVariant &cell) { return static_cast<quint8>(readWhole(cell, &QVariant::toInt)); }
};

template<>
struct ValueKind<quint64>
{
    static constexpr QVariant::Type type = QVariant::ULongLong;
    static constexpr const char *column = "DOUBLE";
    static QVariant bound(quint64 value) { return value; }
    static quint64 read(QVariant &cell) { return cell.toULongLong(); }
};

template<>
struct ValueKind<bool>
{
    static constexpr QVariant::Type type = QVariant::Bool;
    static constexpr const char *column = "BOOLEAN";
    static QVariant bound(bool value) { return value; }
    static bool read(QVariant &cell) { return cell.toBool(); }
};

template<>
struct ValueKind<double>
{
    static constexpr QVariant::Type type = QVariant::Double;
    static constexpr const char *column = "DOUBLE";
    static QVariant bound(double value) { return value; }
    static double read(QVariant &cell) { return cell.toDouble(); }
};

template<>
struct ValueKind<QString>
{
    static constexpr QVariant::Type type = QVariant::String;
    static constexpr const char *column = "VARCHAR(255)";
    static QVariant bound(const QString &value) { return value; }
    // Moves the text out of the cell, which is a copy that the caller discards.
    static QString read(QVariant &cell)
    {
        if (cell.userType() == QMetaType::QString)
            return std::move(*static_cast<QString *>(cell.data()));
        return cell.toString();
    }
};

// A field is optional; only a record's id is a plain value.
template<class Member>
struct Unwrapped
{
    using Value = Member;
    static constexpr bool isOptional = false;
};

template<class Contained>
struct Unwrapped<std::optional<Contained>>
{
    using Value = Contained;
    static constexpr bool isOptional = true;
};

} // namespace brimlet
