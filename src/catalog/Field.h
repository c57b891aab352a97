// A field of a record, paired once with the descriptor entry that names its column and its JSON key. Statements,
// document readers and searches iterate over lists of such pairs.
#pragma once

#include "catalog/Table.h"
#include "catalog/Values.h"

#include <QStringList>
#include <tuple>

namespace brimlet {

template<class RecordType, class Member, class TableType, class Desc>
struct Field
{
    using Record = RecordType;
    using Table = TableType;
    using Value = typename Unwrapped<Member>::Value;
    using Read = Value (*)(QVariant &);
    static constexpr bool isOptional = Unwrapped<Member>::isOptional;
    static constexpr bool isText = std::is_same_v<Value, QString>;

    Member Record::*member;
    Desc Table::*desc;
    QVariant::Type absent; // an absent value is bound as a null of this type
    const char *type;      // the column is declared as this
    Read read;
    bool isSearchable = true; // by its key, if its table can be searched at all

    // For the fields that depart from the default of their type.
    constexpr Field absentAs(QVariant::Type other) const { return {member, desc, other, type, read, isSearchable}; }
    constexpr Field declaredAs(const char *other) const { return {member, desc, absent, other, read, isSearchable}; }
    constexpr Field readBy(Read other) const { return {member, desc, absent, type, other, isSearchable}; }
    constexpr Field notSearchable() const { return {member, desc, absent, type, read, false}; }

    const QString &column(const Table &table) const
    {
        if constexpr (std::is_same_v<Desc, QString>) // a column without a JSON key
            return table.*desc;
        else
            return (table.*desc).column;
    }

    bool isPresent(const Record &record) const
    {
        if constexpr (isOptional)
            return (record.*member).has_value();
        else
            return true;
    }

    QVariant bound(const Record &record) const
    {
        if constexpr (isOptional)
            return isPresent(record) ? ValueKind<Value>::bound(*(record.*member)) : QVariant(absent);
        else
            return ValueKind<Value>::bound(record.*member);
    }
};

template<class Record, class Member, class Table, class Desc>
constexpr Field<Record, Member, Table, Desc> mapped(Member Record::*member, Desc Table::*desc)
{
    using Kind = ValueKind<typename Unwrapped<Member>::Value>;
    return {member, desc, Kind::type, Kind::column, Kind::read};
}

// The record's id comes first in every list.
template<class... Fields>
constexpr std::tuple<Fields...> inOrder(const Fields &...fields)
{
    return {fields...};
}

// The fields of a list that a select reads from the table itself: all but embedded records, which come from joins.
template<class... Fields>
constexpr auto withoutEmbedded(const std::tuple<Fields...> &fields)
{
    const auto own = [](const auto &field) {
        if constexpr (isRecord<typename std::decay_t<decltype(field)>::Value>)
            return std::tuple<>();
        else
            return std::make_tuple(field);
    };
    return std::apply([&](const auto &...field) { return std::tuple_cat(own(field)...); }, fields);
}

template<class List>
using FirstField = std::tuple_element_t<0, List>;

template<class List, class Visit>
void forEachField(const List &fields, const Visit &visit)
{
    std::apply([&](const auto &...field) { (visit(field), ...); }, fields);
}

// Whether all visits return true; stops at the first that returns false.
template<class List, class Visit>
bool allFields(const List &fields, const Visit &visit)
{
    return std::apply([&](const auto &...field) { return (visit(field) && ...); }, fields);
}

template<class Table, class List>
QStringList columnsOf(const Table &table, const List &fields)
{
    QStringList columns;
    forEachField(fields, [&](const auto &field) { columns << field.column(table); });
    return columns;
}

} // namespace brimlet
