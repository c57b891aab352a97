#pragma once

#include "catalog/UsersTable.h"
#include "json/DocumentForm.h"

namespace brimlet {

template<>
struct DocumentForm<User>
{
    using Keys = UsersTable;
    static constexpr auto &members = UserFields::recordOrder;
    static constexpr auto &searches = UserFields::tableOrder;
};

inline bool fillUser(User &user, const QJsonObject &object, const UsersTable &keys = {})
{
    return readMembers(user, object, keys);
}

} // namespace brimlet
