#pragma once

#include "records/DeviceUser.h"
#include "records/Domain.h"
#include "records/Section.h"

namespace brimlet {

struct Device
{
    quint32 id = 0;
    std::optional<quint32> account;
    std::optional<Domain> domain; // output only
    std::optional<quint32> configVersion;
    std::vector<Section> sections;
    std::vector<DeviceUser> users;
    std::optional<bool> isParted;
    std::optional<quint32> clusterId;
    std::optional<quint32> domainId;
};

} // namespace brimlet
