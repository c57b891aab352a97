#include "controller/StorePatterns.h"

namespace brimlet::controller {

bool SQLiteDatabase::addOrganizations(const std::vector<Organization> &organizations)
{
    begin();
    tables.prepareOrganizationsInsert(query, organizations);
    if (!runBatch("add organizations error"))
        return false;
    tables.preparePersonsInsert(query, organizations);
    return runBatch("add persons error") && commit();
}

bool SQLiteDatabase::updateOrganization(std::optional<Organization> &organization)
{
    begin();
    tables.prepareOrganizationUpsert(query, required(organization));
    if (!run("add or update organization error"))
        return false;
    if (organization->contact) {
        tables.preparePersonReplace(query, *organization->contact); // replaces the whole row, unlike the organization
        if (!run("add or update person error"))
            return false;
    }
    return readBack(organization, &SQLiteDatabase::readOrganizationById) && commit();
}

bool SQLiteDatabase::deleteOrganization(quint32 id)
{
    begin();
    tables.preparePersonDeleteForOrganization(query, id); // first: its statement uses the organization's row
    if (!run("delete person error"))
        return false;
    tables.prepareDelete(query, tables.organizations.table, tables.organizations.id.column, id);
    return run("delete organization error") && commit();
}

bool SQLiteDatabase::getOrganization(std::optional<Organization> &organization, quint32 id)
{
    begin();
    return readOrganizationById(organization, id) && commit();
}

bool SQLiteDatabase::getOrganizationsByField(std::vector<Organization> &organizations, const QString &column,
                                             const QString &value)
{
    begin();
    tables.prepareOrganizationsSelectByField(query, column, value);
    return readList(organizations, TableCatalog::readOrganizationRow, "get organizations by field error") && commit();
}

bool SQLiteDatabase::getOrganizations(std::vector<Organization> &organizations)
{
    begin();
    tables.prepareOrganizationsSelect(query);
    return readList(organizations, TableCatalog::readOrganizationRow, "get organizations error") && commit();
}

bool SQLiteDatabase::readOrganizationById(std::optional<Organization> &organization, quint32 id)
{
    tables.prepareOrganizationSelectById(query, id);
    return readOne(organization, TableCatalog::readOrganizationRow, "get organization error");
}

} // namespace brimlet::controller
