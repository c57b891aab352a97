#pragma once

#include <QString>
#include <optional>
#include <vector>

namespace brimlet {

// A user programmed into a device, no operator of the service. The device travels beside it.
struct DeviceUser
{
    quint32 id = 0;
    std::optional<QString> name;
    std::optional<QString> comment;
    std::optional<QString> phone;
    std::vector<quint32> sections; // their numbers
};

// Which device user reaches which section, as the store holds it.
struct DeviceUserSectionLink
{
    quint32 deviceId = 0;
    quint32 deviceUserId = 0;
    quint32 sectionId = 0;
};

} // namespace brimlet
