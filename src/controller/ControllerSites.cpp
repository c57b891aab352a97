#include "controller/Controller.h"
#include "controller/Outcome.h"
#include "json/KeyMaps.h"

namespace brimlet::controller {

BrimletResult Controller::addSites(const std::vector<Site> &sites)
{
    return writeResult(database->addSites(sites));
}

BrimletResult Controller::updateSite(std::optional<Site> &site)
{
    return writeResult(database->updateSite(site), site);
}

BrimletResult Controller::deleteSite(quint32 id)
{
    std::optional<Site> site;
    if (const BrimletResult target = readResult(database->getSite(site, id), site))
        return target;
    return writeResult(database->deleteSite(id));
}

BrimletResult Controller::getSite(std::optional<Site> &site, quint32 id)
{
    return readResult(database->getSite(site, id), site);
}

BrimletResult Controller::getSites(std::vector<Site> &sites)
{
    return readResult(database->getSites(sites), sites);
}

BrimletResult Controller::getSitesWithParams(std::vector<Site> &sites, const QString &key, const QString &value)
{
    QString column;
    if (!siteColumnForKey(column, key))
        return BRIMLET_REFUSED;
    return readResult(database->getSitesByField(sites, column, value), sites);
}

BrimletResult Controller::getSiteNameAndAddress(std::optional<QString> &name, std::optional<QString> &address,
                                                quint32 id)
{
    bool exists = false;
    if (const BrimletResult site = requireExists(database->isSiteExists(exists, id), exists, BRIMLET_NOT_FOUND))
        return site;
    return readResult(database->getSiteFields(name, address, id));
}

} // namespace brimlet::controller
