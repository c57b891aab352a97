// From the rows of a result to records. Columns are recognised by name, whatever their order and whatever else the
// result holds; the names are compared once a result, and every row is then read by position.
#pragma once

#include "catalog/Field.h"

#include <QSqlQuery>
#include <QSqlRecord>
#include <array>

namespace brimlet {

// The names of a result's columns. Take the query's record before its first row: on a row it carries the values too.
class ResultColumns
{
public:
    explicit ResultColumns(const QSqlRecord &record) : result(record) {}
    // The place of a column, -1 where the result does not have it. Asking in the order of the select finds each name
    // at once.
    int find(const QString &name);

private:
    const QSqlRecord result;
    int next = 0;
};

// Where the fields of one table stand in a result, and how to read them from a row.
template<const auto &fields>
class RowPart
{
    using First = FirstField<std::decay_t<decltype(fields)>>;

public:
    using Record = typename First::Record;
    using Table = typename First::Table;

    RowPart(const Table &table, ResultColumns &columns)
    {
        auto place = places.begin();
        forEachField(fields, [&](const auto &field) { *place++ = columns.find(field.column(table)); });
    }

    // Whether a join found this table's row: its key, the first field, is not null then.
    bool isThere(const QSqlQuery &query) const { return !query.value(places.front()).isNull(); }

    // Into a record that is as it was made.
    void read(Record &record, const QSqlQuery &query) const
    {
        auto place = places.begin();
        forEachField(fields, [&](const auto &field) { readCell(record, field, query, *place++); });
    }

private:
    template<class Field>
    static void readCell(Record &record, const Field &field, const QSqlQuery &query, int place)
    {
        static_assert(!isRecord<typename Field::Value>, "an embedded record comes from a join, not from a cell");
        if (place < 0)
            return;
        QVariant cell = query.value(place);
        if (!Field::isOptional || !cell.isNull())
            record.*field.member = field.read(cell);
    }

    std::array<int, std::tuple_size_v<std::decay_t<decltype(fields)>>> places;
};

// A value on its own, from a column that no list of fields holds.
template<class Value>
std::optional<Value> readCell(const QSqlQuery &query, int place)
{
    if (place < 0)
        return std::nullopt;
    QVariant cell = query.value(place);
    return cell.isNull() ? std::nullopt : std::optional<Value>(ValueKind<Value>::read(cell));
}

// One row into a record.
template<class Record, class Columns>
using RowReader = void (*)(Record &, const QSqlQuery &, const Columns &);

// The record of a joined table, which stays absent where the join found no row.
template<class Record, class Columns>
void readJoined(std::optional<Record> &record, const QSqlQuery &query, const Columns &columns,
                RowReader<Record, Columns> readRow)
{
    if (columns.isThere(query))
        readRow(record.emplace(), query, columns);
}

} // namespace brimlet
