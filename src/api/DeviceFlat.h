#pragma once

#include "api/DeviceUserFlat.h"
#include "api/DomainFlat.h"
#include "api/SectionFlat.h"
#include "brimlet/FlatRecords.h"
#include "records/Device.h"

namespace brimlet {

// clang-format off
template<>
struct FlatForm<Device>
{
    using Flat = FlatDevice;
    static constexpr auto fields = std::make_tuple(
        flatField(&Flat::id, &Device::id),
        flatField(&Flat::account, &Device::account),
        flatNested(&Flat::domain, &Device::domain),
        flatField(&Flat::configVersion, &Device::configVersion),
        flatList(&Flat::sections, &Flat::sectionsCount, &Device::sections),
        flatList(&Flat::users, &Flat::usersCount, &Device::users),
        flatField(&Flat::isParted, &Device::isParted),
        flatField(&Flat::clusterId, &Device::clusterId),
        flatField(&Flat::domainId, &Device::domainId));
};
// clang-format on

} // namespace brimlet
