#include "catalog/Statements.h"
#include "catalog/TableCatalog.h"

namespace brimlet {

namespace {

// Both tables hold one row, with the key 0, which a new one replaces.
QString createText(const QString &table, const QString &key, const QString &column)
{
    return QStringLiteral("CREATE TABLE %1 (%2 INTEGER PRIMARY KEY,%3 VARCHAR(255))").arg(table, key, column);
}

QString replaceText(const QString &table, const QString &key, const QString &column)
{
    return QStringLiteral("INSERT OR REPLACE INTO %1 (%2,%3)VALUES (0,?)").arg(table, key, column);
}

} // namespace

void TableCatalog::prepareSessionTable(QSqlQuery &query) const
{
    prepare(query, createText(session.table, session.id, session.ip));
}

void TableCatalog::prepareSessionInsert(QSqlQuery &query, const QString &ip) const
{
    prepare(query, replaceText(session.table, session.id, session.ip), {ip});
}

void TableCatalog::prepareSessionSelect(QSqlQuery &query) const
{
    prepare(query, selectAllText(session.table));
}

void TableCatalog::prepareVersionTable(QSqlQuery &query) const
{
    prepare(query, createText(version.table, version.id, version.number));
}

void TableCatalog::prepareVersionInsert(QSqlQuery &query, const QString &number) const
{
    prepare(query, replaceText(version.table, version.id, version.number), {number});
}

void TableCatalog::prepareVersionSelect(QSqlQuery &query) const
{
    prepare(query, selectText({version.number}, version.table) + QStringLiteral(" WHERE %1 = 0").arg(version.id));
}

} // namespace brimlet
