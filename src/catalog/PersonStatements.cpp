#include "catalog/Statements.h"
#include "catalog/TableCatalog.h"

namespace brimlet {

void TableCatalog::preparePersonsTable(QSqlQuery &query) const
{
    prepare(query, createTableText(persons, PersonFields::tableOrder));
}

void TableCatalog::preparePersonsInsert(QSqlQuery &query, const std::vector<Organization> &records) const
{
    prepare(query, insertText(persons.table, columnsOf(persons, PersonFields::tableOrder)));
    auto batch = batchWithParents<0>(PersonFields::tableOrder);
    for (const Organization &organization : records)
        if (organization.contact)
            batch.add(*organization.contact);
    batch.bind(query);
}

void TableCatalog::preparePersonReplace(QSqlQuery &query, const Person &person) const
{
    preparePartialReplace(query, persons.table, presentColumns(persons, person, PersonFields::tableOrder));
}

void TableCatalog::preparePersonSelectById(QSqlQuery &query, quint32 id) const
{
    prepare(query, selectAllText(persons.table) + where(persons.id.column), {id});
}

void TableCatalog::preparePersonDeleteForOrganization(QSqlQuery &query, quint32 organizationId) const
{
    prepare(query,
            QStringLiteral("DELETE FROM %1 WHERE %2 = (SELECT %3 FROM %4 WHERE %5 = ?)")
                .arg(persons.table, persons.id.column, organizations.contactId.column, organizations.table,
                     organizations.id.column),
            {organizationId});
}

PersonColumns::PersonColumns(const TableCatalog &tables, ResultColumns &columns) : RowPart(tables.persons, columns) {}

void TableCatalog::readPersonRow(Person &person, const QSqlQuery &query, const PersonColumns &columns)
{
    columns.read(person, query);
}

} // namespace brimlet
