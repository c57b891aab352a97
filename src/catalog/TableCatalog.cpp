#include "catalog/TableCatalog.h"

#include "catalog/Statements.h"

namespace brimlet {

void TableCatalog::prepareDelete(QSqlQuery &query, const QString &table, const QString &idColumn, quint32 id) const
{
    prepare(query, deleteText(table) + where(idColumn), {id});
}

void TableCatalog::prepareClear(QSqlQuery &query, const QString &table) const
{
    prepare(query, deleteText(table));
}

void TableCatalog::startOperation()
{
    isPreparedInOperation = false;
    cachedMaker = nullptr;
}

void TableCatalog::prepareChildQuery(QSqlQuery &query, MakeText makeText, std::initializer_list<QVariant> values) const
{
    if (cachedMaker != makeText) {
        cachedText = (this->*makeText)();
        cachedMaker = makeText;
    }
    prepare(query, cachedText, values);
}

void TableCatalog::prepare(QSqlQuery &query, const QString &text, std::initializer_list<QVariant> values) const
{
    if (!isPreparedInOperation || query.lastQuery() != text)
        isPreparedInOperation = query.prepare(text); // a failure is reported and logged when the statement runs
    int index = 0;
    for (const QVariant &value : values)
        query.bindValue(index++, value);
}

} // namespace brimlet
