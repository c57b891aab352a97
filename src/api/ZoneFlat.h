#pragma once

#include "api/Flatten.h"
#include "brimlet/FlatRecords.h"
#include "records/Zone.h"

namespace brimlet {

// clang-format off
template<>
struct FlatForm<Zone>
{
    using Flat = FlatZone;
    static constexpr auto fields = std::make_tuple(
        flatField(&Flat::id, &Zone::id),
        flatField(&Flat::name, &Zone::name),
        flatField(&Flat::detector, &Zone::detector),
        flatField(&Flat::physic, &Zone::physic),
        flatField(&Flat::form, &Zone::form),
        flatField(&Flat::flags, &Zone::flags),
        flatField(&Flat::delay, &Zone::delay),
        flatField(&Flat::scheduleId, &Zone::scheduleId),
        flatField(&Flat::tracert, &Zone::tracert),
        flatField(&Flat::uidType, &Zone::uidType),
        flatField(&Flat::arm, &Zone::arm));
};
// clang-format on

} // namespace brimlet
