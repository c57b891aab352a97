#include "controller/StorePatterns.h"

namespace brimlet::controller {

bool SQLiteDatabase::addSites(const std::vector<Site> &sites)
{
    begin();
    return writeSites(sites) && commit();
}

bool SQLiteDatabase::updateSite(std::optional<Site> &site)
{
    begin();
    tables.prepareSiteUpsert(query, required(site)); // ignores the devices of the document
    if (!run("update site error"))
        return false;
    if (site->location) {
        tables.prepareLocationReplace(query, *site->location); // replaces the whole row, unlike the site
        if (!run("add or update location error"))
            return false;
    }
    return readBack(site, &SQLiteDatabase::getSiteById) && commit();
}

bool SQLiteDatabase::deleteSite(quint32 id)
{
    begin();
    tables.prepareDelete(query, tables.locations.table, tables.locations.id.column, id);
    if (!run("delete location error"))
        return false;
    tables.prepareSiteDelete(query, id);
    return run("delete site error") && commit();
}

bool SQLiteDatabase::isSiteExists(bool &exists, quint32 id)
{
    begin();
    tables.prepareSiteExists(query, id);
    return readExists(exists, "is site exists error") && commit();
}

bool SQLiteDatabase::getSiteFields(std::optional<QString> &name, std::optional<QString> &address, quint32 id)
{
    begin();
    tables.prepareSiteFieldsSelect(query, id);
    std::optional<SiteLabel> label;
    if (!readOne(label, TableCatalog::readSiteLabelRow, "get site fields error"))
        return false;
    if (label) {
        name = std::move(label->name);
        address = std::move(label->address);
    }
    return commit();
}

bool SQLiteDatabase::getSite(std::optional<Site> &site, quint32 id)
{
    begin();
    return getSiteById(site, id) && commit();
}

bool SQLiteDatabase::getSitesByField(std::vector<Site> &sites, const QString &column, const QString &value)
{
    begin();
    tables.prepareSitesSelectByField(query, column, value);
    return readList(sites, TableCatalog::readSiteRow, "get sites by field error") && readDomainsOf(sites) && commit();
}

bool SQLiteDatabase::getSites(std::vector<Site> &sites)
{
    begin();
    tables.prepareSitesSelect(query);
    return readList(sites, TableCatalog::readSiteRow, "get sites error") && readDomainsOf(sites) && commit();
}

bool SQLiteDatabase::getSiteById(std::optional<Site> &site, quint32 id)
{
    tables.prepareSiteSelectById(query, id);
    return readOne(site, TableCatalog::readSiteRow, "get site by id error") && (!site || readDomainOf(*site));
}

bool SQLiteDatabase::readDomainsOf(std::vector<Site> &sites)
{
    for (Site &site : sites)
        if (!readDomainOf(site))
            return false;
    return true;
}

// A separate query reads a site's own domain. The id 0 means none.
bool SQLiteDatabase::readDomainOf(Site &site)
{
    return site.domainId.value_or(0) == 0 || readDomainById(site.domain, *site.domainId);
}

bool SQLiteDatabase::writeSites(const std::vector<Site> &sites)
{
    tables.prepareSitesInsert(query, sites);
    if (!runBatch("add sites error"))
        return false;
    for (const Site &site : sites)
        if (!writeDevices(site.devices))
            return false;
    tables.prepareLocationsInsert(query, sites);
    return runBatch("add locations error");
}

} // namespace brimlet::controller
