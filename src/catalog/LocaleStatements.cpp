#include "catalog/Statements.h"
#include "catalog/TableCatalog.h"

namespace brimlet {

void TableCatalog::prepareLocalesTable(QSqlQuery &query) const
{
    prepare(query, createTableText(locales, LocaleFields::tableOrder));
}

void TableCatalog::prepareLocalesInsert(QSqlQuery &query, const std::vector<Locale> &records) const
{
    prepare(query, insertText(locales.table, columnsOf(locales, LocaleFields::tableOrder)));
    bindBatch(query, records, LocaleFields::tableOrder);
}

QString TableCatalog::localesSelect() const
{
    return selectText(columnsOf(locales, LocaleFields::tableOrder), locales.table);
}

void TableCatalog::prepareLocalesSelect(QSqlQuery &query) const
{
    prepare(query, localesSelect());
}

void TableCatalog::prepareLocaleSelectById(QSqlQuery &query, quint32 id) const
{
    prepare(query, localesSelect() + where(locales.id.column), {id});
}

void TableCatalog::prepareLocalesSelectByField(QSqlQuery &query, const QString &column, const QString &value) const
{
    prepare(query, localesSelect() + where(column), {value});
}

LocaleColumns::LocaleColumns(const TableCatalog &tables, ResultColumns &columns) : RowPart(tables.locales, columns) {}

void TableCatalog::readLocaleRow(Locale &locale, const QSqlQuery &query, const LocaleColumns &columns)
{
    columns.read(locale, query);
}

} // namespace brimlet
