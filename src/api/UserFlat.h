#pragma once

#include "api/DomainFlat.h"
#include "brimlet/FlatRecords.h"
#include "records/User.h"

namespace brimlet {

// clang-format off
template<>
struct FlatForm<User>
{
    using Flat = FlatUser;
    static constexpr auto fields = std::make_tuple(
        flatField(&Flat::id, &User::id),
        flatField(&Flat::name, &User::name),
        flatField(&Flat::login, &User::login),
        flatField(&Flat::contacts, &User::contacts),
        flatField(&Flat::isActive, &User::isActive),
        flatField(&Flat::domainId, &User::domainId),
        flatField(&Flat::roles, &User::roles),
        flatField(&Flat::phone, &User::phone),
        flatNested(&Flat::domain, &User::domain),
        flatField(&Flat::orgId, &User::orgId));
};
// clang-format on

} // namespace brimlet
