#pragma once

#include "api/Flatten.h"
#include "brimlet/FlatRecords.h"
#include "records/DeviceUser.h"

namespace brimlet {

// clang-format off
template<>
struct FlatForm<DeviceUser>
{
    using Flat = FlatDeviceUser;
    static constexpr auto fields = std::make_tuple(
        flatField(&Flat::id, &DeviceUser::id),
        flatField(&Flat::name, &DeviceUser::name),
        flatField(&Flat::comment, &DeviceUser::comment),
        flatField(&Flat::phone, &DeviceUser::phone),
        flatNumbers(&Flat::sections, &Flat::sectionsCount, &DeviceUser::sections));
};
// clang-format on

} // namespace brimlet
