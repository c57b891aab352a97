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
    madeBy = nullptr;
}

void TableCatalog::prepareSubRead(QSqlQuery &query, MakeText makeText, std::initializer_list<QVariant> values) const
{
    if (madeBy != makeText) {
        madeText = (this->*makeText)();
        madeBy = makeText;
    }
    prepare(query, madeText, values);
}

void TableCatalog::prepare(QSqlQuery &query, const QString &text, std::initializer_list<QVariant> values) const
{
    if (!isPreparedInOperation || query.lastQuery() != text)
        isPreparedInOperation = query.prepare(text); // a failure shows, and is logged, when the statement runs
    int place = 0;
    for (const QVariant &value : values)
        query.bindValue(place++, value);
}

} // namespace brimlet
