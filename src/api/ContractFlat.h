#pragma once

#include "api/ContractorFlat.h"
#include "api/UserFlat.h"
#include "brimlet/FlatRecords.h"
#include "records/Contract.h"

namespace brimlet {

// clang-format off
template<>
struct FlatForm<Contract>
{
    using Flat = FlatContract;
    static constexpr auto fields = std::make_tuple(
        flatField(&Flat::id, &Contract::id),
        flatField(&Flat::number, &Contract::number),
        flatNested(&Flat::contractor, &Contract::contractor),
        flatField(&Flat::name, &Contract::name),
        flatField(&Flat::status, &Contract::status),
        flatField(&Flat::date, &Contract::date),
        flatField(&Flat::description, &Contract::description),
        flatField(&Flat::extra, &Contract::extra),
        flatNested(&Flat::user, &Contract::user));
};
// clang-format on

} // namespace brimlet
