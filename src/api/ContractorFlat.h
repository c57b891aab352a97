#pragma once

#include "api/Flatten.h"
#include "brimlet/FlatRecords.h"
#include "records/Contractor.h"

namespace brimlet {

// clang-format off
template<>
struct FlatForm<Contractor>
{
    using Flat = FlatContractor;
    static constexpr auto fields = std::make_tuple(
        flatField(&Flat::id, &Contractor::id),
        flatField(&Flat::inn, &Contractor::inn),
        flatField(&Flat::orgId, &Contractor::orgId),
        flatField(&Flat::type, &Contractor::type),
        flatField(&Flat::officialName, &Contractor::officialName),
        flatField(&Flat::name, &Contractor::name),
        flatField(&Flat::extra, &Contractor::extra));
};
// clang-format on

} // namespace brimlet
