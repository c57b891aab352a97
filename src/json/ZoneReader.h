#pragma once

#include "catalog/ZonesTable.h"
#include "json/DocumentForm.h"

namespace brimlet {

template<>
struct DocumentForm<Zone>
{
    using Keys = ZonesTable;
    static constexpr auto &members = ZoneFields::tableOrder;
    static constexpr auto &searches = ZoneFields::tableOrder;
};

inline bool fillZone(Zone &zone, const QJsonObject &object, const ZonesTable &keys = {})
{
    return readMembers(zone, object, keys);
}

} // namespace brimlet
