#pragma once

#include "catalog/SitesTable.h"
#include "json/DeviceReader.h"
#include "json/LocationReader.h"

namespace brimlet {

struct SiteKeys : SitesTable
{
    LocationsTable locationKeys;
    DeviceKeys device;
};

template<>
struct DocumentForm<Site>
{
    using Keys = SiteKeys;
    static constexpr auto members = std::tuple_cat(
        SiteFields::tableOrder,
        inOrder(objectUnder(&SitesTable::location, &Site::location, fillLocation, &SiteKeys::locationKeys),
                arrayUnder(&SitesTable::devices, &Site::devices, fillDevice, &SiteKeys::device)));
    static constexpr auto &searches = SiteFields::tableOrder;
};

inline bool fillSite(Site &site, const QJsonObject &object, const SiteKeys &keys = {})
{
    const bool isRead = readMembers(site, object, keys);
    if (site.location)
        site.location->id = site.id;
    return isRead;
}

} // namespace brimlet
