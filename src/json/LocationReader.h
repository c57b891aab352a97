#pragma once

#include "catalog/SitesTable.h"
#include "json/DocumentForm.h"

namespace brimlet {

template<>
struct DocumentForm<Location>
{
    using Keys = LocationsTable;
    static constexpr auto members = inOrder(LocationFields::latitude, LocationFields::longitude);
};

inline bool fillLocation(Location &location, const QJsonObject &object, const LocationsTable &keys = {})
{
    return readMembers(location, object, keys);
}

} // namespace brimlet
