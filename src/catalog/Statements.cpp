#include "catalog/Statements.h"

namespace brimlet {

namespace {

const QLatin1Char comma(',');

QString assignment(const PresentColumn &column)
{
    return column.name + QLatin1Char('=') + column.placeholder;
}

} // namespace

// ---- Texts ----

QString createTableText(const QString &table, const QStringList &definitions)
{
    return QStringLiteral("CREATE TABLE %1 (%2)").arg(table, definitions.join(comma));
}

QString keyDefinition(const QString &column)
{
    return column + QLatin1Char(' ') + QLatin1String(ValueKind<quint32>::column);
}

QString primaryKeyDefinition(const QStringList &columns)
{
    return QStringLiteral("PRIMARY KEY(%1)").arg(columns.join(comma));
}

QString insertText(const QString &table, const QStringList &columns, const char *separator, const char *verb)
{
    QStringList placeholders;
    for (int i = 0; i < columns.size(); ++i)
        placeholders << QStringLiteral("?");
    return QStringLiteral("%1 INTO %2 (%3)VALUES (%4)")
        .arg(QLatin1String(verb), table, columns.join(comma), placeholders.join(QLatin1String(separator)));
}

QString selectText(const QStringList &columns, const QString &table)
{
    return QStringLiteral("SELECT %1 FROM %2").arg(columns.join(comma), table);
}

QString selectAllText(const QString &table)
{
    return QStringLiteral("SELECT * FROM %1").arg(table);
}

QString leftJoin(const QString &table, const QString &column, const QString &joinedColumn)
{
    return QStringLiteral(" LEFT JOIN %1 ON %2 = %3").arg(table, column, joinedColumn);
}

QString andOn(const QString &column, const QString &joinedColumn)
{
    return QStringLiteral(" AND %1 = %2").arg(column, joinedColumn);
}

QString deleteText(const QString &table)
{
    return QStringLiteral("DELETE FROM %1").arg(table);
}

QString where(const QString &column)
{
    return QStringLiteral(" WHERE %1 = ?").arg(column);
}

QString andWhere(const QString &column)
{
    return QStringLiteral(" AND %1 = ?").arg(column);
}

// ---- Partial upserts ----

QString numbered(int number)
{
    return QLatin1Char(':') + QString::number(number);
}

QString lettered(int number)
{
    return QLatin1Char(':') + QChar('a' + number - 1);
}

void prepareUpsert(QSqlQuery &query, const QString &table, const QVector<PresentColumn> &columns,
                   const QVector<int> &primaryKey)
{
    QStringList names;
    QStringList placeholders;
    QStringList assignments;
    for (const PresentColumn &column : columns) {
        names << column.name;
        placeholders << column.placeholder;
        assignments << assignment(column);
    }
    QStringList conflictNames;
    QStringList conditions;
    for (const int index : primaryKey) {
        conflictNames << names[index];
        conditions << assignments[index];
    }
    query.prepare(QStringLiteral("INSERT INTO %1(%2)VALUES(%3) ON CONFLICT(%4) DO UPDATE SET %5 WHERE %6")
                      .arg(table, names.join(comma), placeholders.join(comma), conflictNames.join(comma),
                           assignments.join(comma), conditions.join(QStringLiteral(" AND "))));
    for (const PresentColumn &column : columns)
        query.bindValue(column.placeholder, column.value);
}

void preparePartialReplace(QSqlQuery &query, const QString &table, const QVector<PresentColumn> &columns)
{
    QStringList names;
    QStringList placeholders;
    for (const PresentColumn &column : columns) {
        names << column.name;
        placeholders << QStringLiteral("?");
    }
    query.prepare(QStringLiteral("INSERT OR REPLACE INTO %1(%2)VALUES(%3)")
                      .arg(table, names.join(comma), placeholders.join(comma)));
    for (const PresentColumn &column : columns)
        query.addBindValue(column.value);
}

} // namespace brimlet
