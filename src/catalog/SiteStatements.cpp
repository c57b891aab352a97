#include "catalog/Statements.h"
#include "catalog/TableCatalog.h"

namespace brimlet {

void TableCatalog::prepareSitesTable(QSqlQuery &query) const
{
    prepare(query, createTableText(sites, SiteFields::tableOrder));
}

void TableCatalog::prepareSitesInsert(QSqlQuery &query, const std::vector<Site> &records) const
{
    prepare(query, insertText(sites.table, columnsOf(sites, SiteFields::tableOrder)));
    bindBatch(query, records, SiteFields::tableOrder);
}

void TableCatalog::prepareSiteUpsert(QSqlQuery &query, const Site &site) const
{
    prepareUpsert(query, sites.table, presentColumns(sites, site, SiteFields::recordOrder, {}, lettered));
}

// The domain of these joins is that of the contract's user. The site's own is in none of them.
//
// SELECT SitesId,SitesName,SitesComment,SitesExtra,SitesIsCrossing,SitesAddress,SitesContractStatus,SitesType,
//     SitesCategory,SitesArmMode,SitesIsDelegated,SitesDomainId,SitesContractId,SitesIsSitePlanExists,LocationsId,
//     LocationsLatitude,LocationsLongitude,ContractsId,ContractsNumber,ContractsName,ContractsStatus,ContractsDate,
//     ContractsDescription,ContractsExtra,ContractorsId,ContractorsInn,ContractorsType,ContractorsOfficialName,
//     ContractorsName,ContractorsExtra,ContractorsOrgId,UsersId,UsersName,UsersLogin,UsersContacts,UsersIsActive,
//     UsersDomainId,UsersRoles,UsersPhone,UsersOrgId,DomainsId,DomainsName,DomainsOrgId,LocalesId,LocalesIso,
//     LocalesDescription
// FROM Sites
// LEFT JOIN Locations ON SitesId = LocationsId
// LEFT JOIN Contracts ON SitesContractId = ContractsId
// LEFT JOIN Contractors ON ContractsContractorId = ContractorsId
// LEFT JOIN Users ON ContractsUserId = UsersId
// LEFT JOIN Domains ON UsersDomainId = DomainsId
// LEFT JOIN Locales ON DomainsLocaleId = LocalesId
QString TableCatalog::sitesSelect() const
{
    return selectText(columnsOf(sites, SiteFields::selectOrder) + columnsOf(locations, LocationFields::tableOrder)
                          + contractColumns(),
                      sites.table)
         + leftJoin(locations.table, sites.id.column, locations.id.column)
         + leftJoin(contracts.table, sites.contractId.column, contracts.id.column) + contractJoins();
}

void TableCatalog::prepareSitesSelect(QSqlQuery &query) const
{
    prepare(query, sitesSelect());
}

void TableCatalog::prepareSiteSelectById(QSqlQuery &query, quint32 id) const
{
    prepare(query, sitesSelect() + where(sites.id.column), {id});
}

void TableCatalog::prepareSitesSelectByField(QSqlQuery &query, const QString &column, const QString &value) const
{
    prepare(query, sitesSelect() + where(column), {value});
}

void TableCatalog::prepareSiteExists(QSqlQuery &query, quint32 id) const
{
    prepare(query, selectText({sites.id.column}, sites.table) + where(sites.id.column), {id});
}

void TableCatalog::prepareSiteFieldsSelect(QSqlQuery &query, quint32 id) const
{
    prepare(query, selectText(columnsOf(sites, SiteFields::labelOrder), sites.table) + where(sites.id.column), {id});
}

void TableCatalog::prepareSiteDelete(QSqlQuery &query, quint32 id) const
{
    prepareDelete(query, sites.table, sites.id.column, id);
}

SiteColumns::SiteColumns(const TableCatalog &tables, ResultColumns &columns)
    : RowPart(tables.sites, columns)
    , location(tables, columns)
    , contract(tables, columns)
{
}

void TableCatalog::readSiteRow(Site &site, const QSqlQuery &query, const SiteColumns &columns)
{
    columns.read(site, query);
    readJoined(site.location, query, columns.location, readLocationRow);
    readJoined(site.contract, query, columns.contract, readContractRow);
}

SiteLabelColumns::SiteLabelColumns(const TableCatalog &tables, ResultColumns &columns) : RowPart(tables.sites, columns)
{
}

void TableCatalog::readSiteLabelRow(SiteLabel &label, const QSqlQuery &query, const SiteLabelColumns &columns)
{
    columns.read(label, query);
}

} // namespace brimlet
