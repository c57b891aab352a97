#pragma once

#include "catalog/DeviceUsersTable.h"
#include "json/DocumentForm.h"

namespace brimlet {

template<>
struct DocumentForm<DeviceUser>
{
    using Keys = DeviceUsersTable;
    static constexpr auto members = std::tuple_cat(
        DeviceUserFields::tableOrder, inOrder(numbersUnder(&DeviceUsersTable::sections, &DeviceUser::sections)));
};

inline bool fillDeviceUser(DeviceUser &user, const QJsonObject &object, const DeviceUsersTable &keys = {})
{
    return readMembers(user, object, keys);
}

} // namespace brimlet
