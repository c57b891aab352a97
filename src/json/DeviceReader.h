#pragma once

#include "catalog/DevicesTable.h"
#include "json/DeviceUserReader.h"
#include "json/SectionReader.h"

namespace brimlet {

struct DeviceKeys : DevicesTable
{
    SectionKeys section;
    DeviceUsersTable user;
};

template<>
struct DocumentForm<Device>
{
    using Keys = DeviceKeys;
    static constexpr auto members = std::tuple_cat(
        DeviceFields::tableOrder,
        inOrder(arrayUnder(&DevicesTable::sections, &Device::sections, fillSection, &DeviceKeys::section),
                arrayUnder(&DevicesTable::users, &Device::users, fillDeviceUser, &DeviceKeys::user)));
    static constexpr auto &searches = DeviceFields::tableOrder;
};

inline bool fillDevice(Device &device, const QJsonObject &object, const DeviceKeys &keys = {})
{
    return readMembers(device, object, keys);
}

} // namespace brimlet
