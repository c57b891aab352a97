#include "api/Families.h"
#include "api/SiteFlat.h"

using namespace brimlet;

uint32_t addSites(const uint16_t *json, uint32_t length)
{
    return addRecords(json, length, documents::addSites, &Controller::addSites);
}

uint32_t updateSite(FlatSite **site, const uint16_t *json, uint32_t length)
{
    return updateRecord(site, json, length, documents::updateSite, &Controller::updateSite);
}

uint32_t deleteSite(const uint16_t *json, uint32_t length)
{
    return deleteRecord(json, length, documents::deleteSite, &Controller::deleteSite);
}

uint32_t getSite(FlatSite **site, uint32_t id)
{
    return getRecord(site, &Controller::getSite, id);
}

uint32_t getSites(FlatSite **sites, uint32_t *count)
{
    return getRecords(sites, count, &Controller::getSites);
}

uint32_t getSitesWithParams(FlatSite **sites, uint32_t *count, const uint16_t *key, uint32_t keyLength,
                            const uint16_t *value, uint32_t valueLength)
{
    return getRecordsByField(sites, count, &Controller::getSitesWithParams, key, keyLength, value, valueLength);
}

uint32_t getSiteNameAndAddress(uint16_t **name, uint16_t **address, uint32_t id)
{
    if (*name || *address)
        return BRIMLET_REFUSED;
    std::optional<QString> nameText;
    std::optional<QString> addressText;
    if (const BrimletResult failed = instance()->getSiteNameAndAddress(nameText, addressText, id))
        return failed;
    *name = copyText(nameText);
    *address = copyText(addressText);
    return BRIMLET_DONE;
}

uint32_t freeSite(FlatSite *site)
{
    return freeRecord<Site>(site);
}

uint32_t freeSitesArray(FlatSite *sites, uint32_t count)
{
    return freeRecords<Site>(sites, count);
}
