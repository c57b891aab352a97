#pragma once

#include <QString>
#include <optional>

namespace brimlet {

// A zone. The ids of its device and section are passed separately.
struct Zone
{
    quint32 id = 0;
    std::optional<QString> name;
    std::optional<quint32> detector;
    std::optional<quint32> physic;
    std::optional<quint32> form;
    std::optional<quint32> flags;
    std::optional<quint32> delay;
    std::optional<quint32> scheduleId;
    std::optional<quint32> tracert;
    std::optional<quint32> uidType;
    std::optional<quint32> arm;
};

} // namespace brimlet
