#include "catalog/Statements.h"
#include "catalog/TableCatalog.h"

namespace brimlet {

void TableCatalog::prepareDomainsTable(QSqlQuery &query) const
{
    prepare(query, createTableText(domains, DomainFields::tableOrder));
}

void TableCatalog::prepareDomainsInsert(QSqlQuery &query, const std::vector<Domain> &records) const
{
    prepare(query, insertText(domains.table, columnsOf(domains, DomainFields::tableOrder), ", "));
    bindBatch(query, records, DomainFields::tableOrder);
}

void TableCatalog::prepareDomainUpsert(QSqlQuery &query, const Domain &domain) const
{
    prepareUpsert(query, domains.table, presentColumns(domains, domain, DomainFields::tableOrder));
}

// SELECT DomainsId,DomainsName,DomainsOrgId,LocalesId,LocalesIso,LocalesDescription
// FROM Domains
// LEFT JOIN Locales ON DomainsLocaleId = LocalesId
QString TableCatalog::domainsSelect() const
{
    return selectText(domainColumns(), domains.table)
         + leftJoin(locales.table, domains.localeId.column, locales.id.column);
}

QString TableCatalog::domainSelectById() const
{
    return domainsSelect() + where(domains.id.column);
}

void TableCatalog::prepareDomainsSelect(QSqlQuery &query) const
{
    prepare(query, domainsSelect());
}

void TableCatalog::prepareDomainSelectById(QSqlQuery &query, quint32 id) const
{
    prepareChildQuery(query, &TableCatalog::domainSelectById, {id});
}

void TableCatalog::prepareDomainsSelectByField(QSqlQuery &query, const QString &column, const QString &value) const
{
    prepare(query, domainsSelect() + where(column), {value});
}

QStringList TableCatalog::domainColumns() const
{
    return columnsOf(domains, DomainFields::selectOrder) + columnsOf(locales, LocaleFields::tableOrder);
}

QString TableCatalog::domainJoin(const QString &domainIdColumn) const
{
    return leftJoin(domains.table, domainIdColumn, domains.id.column)
         + leftJoin(locales.table, domains.localeId.column, locales.id.column);
}

DomainColumns::DomainColumns(const TableCatalog &tables, ResultColumns &columns)
    : RowPart(tables.domains, columns)
    , locale(tables, columns)
{
}

void TableCatalog::readDomainRow(Domain &domain, const QSqlQuery &query, const DomainColumns &columns)
{
    columns.read(domain, query);
    readJoined(domain.locale, query, columns.locale, readLocaleRow);
}

} // namespace brimlet
