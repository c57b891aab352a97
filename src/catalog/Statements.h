// The shapes of statement text, and the two that are made from a list of fields: the batch insert and the partial
// upsert. Names go into the text, values are bound.
#pragma once

#include "catalog/Field.h"

#include <QSqlQuery>
#include <QVector>
#include <array>
#include <vector>

namespace brimlet {

// ---- Texts ----

// The two separators of the places and the two verbs that the store's inserts use.
QString insertText(const QString &table, const QStringList &columns, const char *separator = ",",
                   const char *verb = "INSERT OR REPLACE");
QString selectText(const QStringList &columns, const QString &table);
QString selectAllText(const QString &table);
QString leftJoin(const QString &table, const QString &column, const QString &joinedColumn);
QString andOn(const QString &column, const QString &joinedColumn); // one more condition of a join
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

// A table whose one key is the id that its list of fields begins with.
template<class Table, class List>
QString createTableText(const Table &table, const List &fields)
{
    QStringList definitions = definitionsOf(table, fields);
    definitions.first() += QLatin1String(" PRIMARY KEY");
    return createTableText(table.table, definitions);
}

// A table with a key of several columns. Those of the parents, which the record does not hold, come first.
template<class Table, class List>
QString createTableText(const Table &table, const QStringList &parents, const List &fields, const QStringList &key)
{
    QStringList definitions;
    for (const QString &parent : parents)
        definitions << keyDefinition(parent);
    return createTableText(table.table, definitions + definitionsOf(table, fields) << primaryKeyDefinition(key));
}

// ---- Batches ----

// The values of a batch, a list for each column: those of the parents' keys, then those of the record's fields.
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

    // Binds the lists in their order. The first one gives the batch its length; those of texts are one null longer,
    // and that value is never bound.
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
    // A list of QVariant copies what is appended to it; a value that is there already can be swapped in.
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

// A column of a statement that names only the columns whose value is present.
struct PresentColumn
{
    QString name;
    QString placeholder;
    QVariant value;
};

// A key that the record does not carry itself.
struct ParentKey
{
    QString column;
    quint32 value;
};

QString numbered(int place); // ":1", ":2" ...
QString lettered(int place); // ":a", ":b" ...

// `primaryKey` are the places of the primary key among the columns.
void prepareUpsert(QSqlQuery &query, const QString &table, const QVector<PresentColumn> &columns,
                   const QVector<int> &primaryKey = {0});
void preparePartialReplace(QSqlQuery &query, const QString &table, const QVector<PresentColumn> &columns);

// The fields that a record holds. A column owns its place in the whole list, so an absent one leaves a gap in the
// placeholders.
template<class Table, class List>
QVector<PresentColumn> presentColumns(const Table &table, const typename FirstField<List>::Record &record,
                                      const List &fields, const QVector<ParentKey> &parents = {},
                                      QString (*placeholder)(int) = numbered)
{
    QVector<PresentColumn> columns;
    int place = 0;
    for (const ParentKey &parent : parents)
        columns.append({parent.column, placeholder(++place), parent.value});
    forEachField(fields, [&](const auto &field) {
        ++place;
        if (field.isPresent(record))
            columns.append({field.column(table), placeholder(place), field.bound(record)});
    });
    return columns;
}

} // namespace brimlet
