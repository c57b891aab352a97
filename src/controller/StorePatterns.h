// The templates of SQLiteDatabase: the steps that the operations of many entities share.
#pragma once

#include "controller/SQLiteDatabase.h"

#include <stdexcept>

namespace brimlet::controller {

// The record of an operation that requires one. The caller ensures that it is present.
template<class Record>
Record &required(std::optional<Record> &record)
{
    if (!record)
        throw std::logic_error("Bad optional access");
    return *record;
}

template<class Record, class Columns>
bool SQLiteDatabase::readOne(std::optional<Record> &record, RowReader<Record, Columns> readRow, const char *error)
{
    if (!run(error))
        return false;
    record.reset();
    const QSqlRecord result = query.record();
    if (query.next()) {
        ResultColumns columns(result);
        readRow(record.emplace(), query, Columns(tables, columns));
    }
    return true;
}

template<class Record, class Columns>
bool SQLiteDatabase::readList(std::vector<Record> &records, RowReader<Record, Columns> readRow, const char *error)
{
    if (!run(error))
        return false;
    const QSqlRecord result = query.record();
    if (!query.next())
        return true;
    ResultColumns names(result);
    const Columns columns(tables, names);
    do
        readRow(records.emplace_back(), query, columns);
    while (query.next());
    return true;
}

template<class Record, class... Parents>
bool SQLiteDatabase::readBack(std::optional<Record> &record,
                              bool (SQLiteDatabase::*read)(std::optional<Record> &, quint32, Parents...),
                              Parents... parents)
{
    const quint32 id = record->id;
    record.reset();
    return (this->*read)(record, id, parents...);
}

template<class Table>
bool SQLiteDatabase::deleteById(const Table &table, quint32 id, const char *error)
{
    begin();
    tables.prepareDelete(query, table.table, table.id.column, id);
    return run(error) && commit();
}

} // namespace brimlet::controller
