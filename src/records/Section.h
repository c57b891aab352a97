#pragma once

#include "records/Zone.h"

#include <vector>

namespace brimlet {

// A section. The id of its device is passed separately.
struct Section
{
    quint32 id = 0;
    std::optional<QString> name;
    std::optional<quint32> scheduleId;
    std::vector<Zone> zones;
    std::optional<quint32> tracert;
    std::optional<quint32> flags;
    std::optional<quint32> detector;
    std::optional<quint32> arm;
    std::optional<quint32> physic;
    std::optional<quint32> form;
    std::optional<quint32> delay;
    std::optional<quint32> uidType;
};

} // namespace brimlet
