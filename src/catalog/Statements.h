// The parts of statement text, and the two statements built from a list of fields: the batch insert and the partial
// upsert. Names go into the text, values are bound.
#pragma once

#include "catalog/Field.h"

#include <QSqlQuery>
#include <QVector>
#include <array>
#include <vector>

namespace brimlet {

// ---- Texts ----

// The store's inserts use two separators between the placeholders and two verbs.
QString insertText(const QString &table, const QStringList &columns, const char *separator = ",",
                   const char *verb = "INSERT OR REPLACE");
QString selectText(const QStringList &columns, const QString &table);
QString selectAllText(const QString &table);
QString leftJoin(const QString &table, const QString &column, const QString &joinedColumn);
QString andOn(const QString &column, const QString &joinedColumn); // a further condition of a join
QString deleteText(const QString &table);
QString where(const QString &column);
QString andWhere(const QString &column);

QString createTableText(const QString &table, const QStringList &definitions);
QString keyDefinition(const QString &column);
QString primaryKeyDefinition(const QStringList &columns);

// The columns of a table as CREATE TABLE declares them.
template<class Table, class List>
QStringList definitionsOf(const Table &table, const List &fields)
{
    QStringList definitions;
    forEachField(fields, [&](const auto &field) {
        definitions << field.column(table) + QLatin1Char(' ') + QLatin1String(field.type);
    });
    return definitions;
}

// A table whose primary key is the id, the first field of its list.
template<class Table, class List>
QString createTableText(const Table &table, const List &fields)
{
    QStringList definitions = definitionsOf(table, fields);
    definitions.first() += QLatin1String(" PRIMARY KEY");
    return createTableText(table.table, definitions);
}

// A table with a composite primary key. The columns of the parents, which the record does not hold, come first.
template<class Table, class List>
QString createTableText(const Table &table, const QStringList &parents, const List &fields, const QStringList &key)
{
    QStringList definitions;
    for (const QString &parent : parents)
        definitions << keyDefinition(parent);
    return createTableText(table.table, definitions + definitionsOf(table, fields) << primaryKeyDefinition(key));
}

// ---- Batches ----

// The values of a batch, one list a column: the parents' keys, then the record's fields.
template<class List, size_t parentCount = 0>
class Batch
{
public:
    using Record = typename FirstField<List>::Record;
    using Parents = std::array<quint32, parentCount>;

    explicit Batch(const List &list) : fields(list) {}

    void add(const Record &record, const Parents &parents = {})
    {
        auto column = columns.begin();
        for (const quint32 parent : parents)
            append(*column++, parent);
        forEachField(fields, [&](const auto &field) { append(*column++, field.bound(record)); });
    }

    // Binds the lists in order. The length of the first is that of the batch; a list of texts ends with one null more,
    // which is never bound.
    void bind(QSqlQuery &query)
    {
        auto column = columns.begin() + parentCount;
        forEachField(fields, [&](const auto &field) {
            if (field.isText)
                column->append(QVariant(QVariant::String));
            ++column;
        });
        for (const QVariantList &values : columns)
            query.addBindValue(values);
    }

private:
    // QVariantList::append copies its argument; swapping the value in does not.
    static void append(QVariantList &column, QVariant value)
    {
        column.append(QVariant());
        column.last().swap(value);
    }

    const List &fields;
    std::array<QVariantList, parentCount + std::tuple_size_v<List>> columns;
};

template<size_t parentCount, class List>
Batch<List, parentCount> batchWithParents(const List &fields)
{
    return Batch<List, parentCount>(fields);
}

// A batch of whole records.
template<class List>
void bindBatch(QSqlQuery &query, const std::vector<typename FirstField<List>::Record> &records, const List &fields)
{
    auto batch = batchWithParents<0>(fields);
    for (const auto &record : records)
        batch.add(record);
    batch.bind(query);
}

// ---- Partial upserts ----

// A column of a statement that names only the columns with a present value.
struct PresentColumn
{
    QString name;
    QString placeholder;
    QVariant value;
};

// A key column that is no field of the record.
struct ParentKey
{
    QString column;
    quint32 value;
};

QString numbered(int number); // ":1", ":2" ...
QString lettered(int number); // ":a", ":b" ...

// `primaryKey` holds the indexes of the primary key's columns.
void prepareUpsert(QSqlQuery &query, const QString &table, const QVector<PresentColumn> &columns,
                   const QVector<int> &primaryKey = {0});
void preparePartialReplace(QSqlQuery &query, const QString &table, const QVector<PresentColumn> &columns);

// The fields that are present in a record. A column's number is its position in the whole list, so an absent field
// leaves a gap in the placeholders.
template<class Table, class List>
QVector<PresentColumn> presentColumns(const Table &table, const typename FirstField<List>::Record &record,
                                      const List &fields, const QVector<ParentKey> &parents = {},
                                      QString (*placeholder)(int) = numbered)
{
    QVector<PresentColumn> columns;
    int number = 0;
    for (const ParentKey &parent : parents)
        columns.append({parent.column, placeholder(++number), parent.value});
    forEachField(fields, [&](const auto &field) {
        ++number;
        if (field.isPresent(record))
            columns.append({field.column(table), placeholder(number), field.bound(record)});
    });
    return columns;
}

} // namespace brimlet
