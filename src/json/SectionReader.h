#pragma once

#include "catalog/SectionsTable.h"
#include "json/ZoneReader.h"

namespace brimlet {

struct SectionKeys : SectionsTable
{
    ZonesTable zone;
};

template<>
struct DocumentForm<Section>
{
    using Keys = SectionKeys;
    static constexpr auto members =
        std::tuple_cat(SectionFields::tableOrder,
                       inOrder(arrayUnder(&SectionsTable::zones, &Section::zones, fillZone, &SectionKeys::zone)));
    static constexpr auto &searches = SectionFields::tableOrder;
};

inline bool fillSection(Section &section, const QJsonObject &object, const SectionKeys &keys = {})
{
    return readMembers(section, object, keys);
}

} // namespace brimlet
