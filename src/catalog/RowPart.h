// Reads the rows of a result into records. Columns are identified by name, in any order and among any others; the names
// are looked up once per result, and each row is then read by index.
#pragma once

#include "catalog/Field.h"

#include <QSqlQuery>
#include <QSqlRecord>
#include <array>

namespace brimlet {

// The column names of a result. Take the query's record before the first row: on a row it copies the values too.
class ResultColumns
{
public:
    explicit ResultColumns(const QSqlRecord &record) : result(record) {}
    // The index of a column, or -1 if the result does not have it. Lookups in the order of the select need one
    // comparison each.
    int find(const QString &name);

private:
    const QSqlRecord result;
    int next = 0;
};

// The column indexes of one table's fields in a result, and how to read the fields from a row.
template<const auto &fields>
class RowPart
{
    using First = FirstField<std::decay_t<decltype(fields)>>;

public:
    using Record = typename First::Record;
    using Table = typename First::Table;

    RowPart(const Table &table, ResultColumns &columns)
    {
        auto index = indexes.begin();
        forEachField(fields, [&](const auto &field) { *index++ = columns.find(field.column(table)); });
    }

    // Whether the join found a row of this table: its key, the first field, is not null.
    bool hasRow(const QSqlQuery &query) const { return !query.value(indexes.front()).isNull(); }

    // `record` must be default-constructed.
    void read(Record &record, const QSqlQuery &query) const
    {
        auto index = indexes.begin();
        forEachField(fields, [&](const auto &field) { readCell(record, field, query, *index++); });
    }

private:
    template<class Field>
    static void readCell(Record &record, const Field &field, const QSqlQuery &query, int index)
    {
        static_assert(!isRecord<typename Field::Value>, "an embedded record comes from a join, not from a cell");
        if (index < 0)
            return;
        QVariant cell = query.value(index);
        if (!Field::isOptional || !cell.isNull())
            record.*field.member = field.read(cell);
    }

    std::array<int, std::tuple_size_v<std::decay_t<decltype(fields)>>> indexes;
};

// A single value, from a column that is in no list of fields.
template<class Value>
std::optional<Value> readCell(const QSqlQuery &query, int index)
{
    if (index < 0)
        return std::nullopt;
    QVariant cell = query.value(index);
    return cell.isNull() ? std::nullopt : std::optional<Value>(ValueKind<Value>::read(cell));
}

// Reads one row into a record.
template<class Record, class Columns>
using RowReader = void (*)(Record &, const QSqlQuery &, const Columns &);

// Reads the record of a joined table, which stays absent if the join found no row.
template<class Record, class Columns>
void readJoined(std::optional<Record> &record, const QSqlQuery &query, const Columns &columns,
                RowReader<Record, Columns> readRow)
{
    if (columns.hasRow(query))
        readRow(record.emplace(), query, columns);
}

} // namespace brimlet
