#pragma once

#include <QString>
#include <optional>
#include <vector>

namespace brimlet {

// A user programmed into a device, not an operator of the service. The id of the device is passed separately.
struct DeviceUser
{
    quint32 id = 0;
    std::optional<QString> name;
    std::optional<QString> comment;
    std::optional<QString> phone;
    std::vector<quint32> sections; // their numbers
};

// A row of the store: a section that a device user may reach.
struct DeviceUserSectionLink
{
    quint32 deviceId = 0;
    quint32 deviceUserId = 0;
    quint32 sectionId = 0;
};

} // namespace brimlet
