#include "catalog/Statements.h"
#include "catalog/TableCatalog.h"

namespace brimlet {

void TableCatalog::prepareOrganizationsTable(QSqlQuery &query) const
{
    prepare(query, createTableText(organizations, OrganizationFields::tableOrder));
}

void TableCatalog::prepareOrganizationsInsert(QSqlQuery &query, const std::vector<Organization> &records) const
{
    prepare(query, insertText(organizations.table, columnsOf(organizations, OrganizationFields::tableOrder), ", "));
    bindBatch(query, records, OrganizationFields::tableOrder);
}

void TableCatalog::prepareOrganizationUpsert(QSqlQuery &query, const Organization &organization) const
{
    prepareUpsert(query, organizations.table,
                  presentColumns(organizations, organization, OrganizationFields::recordOrder));
}

// SELECT OrganizationsId,OrganizationsInn,OrganizationsOfficialName,OrganizationsShortName,OrganizationsKpp,
//     OrganizationsOgrn,OrganizationsAddress,LocalesId,LocalesIso,LocalesDescription,PersonsId,PersonsName,
//     PersonsPhone,PersonsEmail,PersonsPostal
// FROM Organizations
// LEFT JOIN Locales ON OrganizationsLocaleId = LocalesId
// LEFT JOIN Persons ON OrganizationsContactId = PersonsId
QString TableCatalog::organizationsSelect() const
{
    return selectText(columnsOf(organizations, OrganizationFields::selectOrder)
                          + columnsOf(locales, LocaleFields::tableOrder) + columnsOf(persons, PersonFields::tableOrder),
                      organizations.table)
         + leftJoin(locales.table, organizations.localeId.column, locales.id.column)
         + leftJoin(persons.table, organizations.contactId.column, persons.id.column);
}

void TableCatalog::prepareOrganizationsSelect(QSqlQuery &query) const
{
    prepare(query, organizationsSelect());
}

void TableCatalog::prepareOrganizationSelectById(QSqlQuery &query, quint32 id) const
{
    prepare(query, organizationsSelect() + where(organizations.id.column), {id});
}

void TableCatalog::prepareOrganizationsSelectByField(QSqlQuery &query, const QString &column,
                                                     const QString &value) const
{
    prepare(query, organizationsSelect() + where(column), {value});
}

OrganizationColumns::OrganizationColumns(const TableCatalog &tables, ResultColumns &columns)
    : RowPart(tables.organizations, columns)
    , locale(tables, columns)
    , contact(tables, columns)
{
}

void TableCatalog::readOrganizationRow(Organization &organization, const QSqlQuery &query,
                                       const OrganizationColumns &columns)
{
    columns.read(organization, query);
    readJoined(organization.locale, query, columns.locale, readLocaleRow);
    readJoined(organization.contact, query, columns.contact, readPersonRow);
}

} // namespace brimlet
