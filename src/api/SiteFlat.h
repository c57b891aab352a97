#pragma once

#include "api/ContractFlat.h"
#include "api/DeviceFlat.h"
#include "api/LocationFlat.h"
#include "brimlet/FlatRecords.h"
#include "records/Site.h"

namespace brimlet {

// clang-format off
template<>
struct FlatForm<Site>
{
    using Flat = FlatSite;
    static constexpr auto fields = std::make_tuple(
        flatField(&Flat::id, &Site::id),
        flatField(&Flat::name, &Site::name),
        flatField(&Flat::comment, &Site::comment),
        flatField(&Flat::extra, &Site::extra),
        flatField(&Flat::isCrossing, &Site::isCrossing),
        flatNested(&Flat::domain, &Site::domain),
        flatField(&Flat::address, &Site::address),
        flatNested(&Flat::contract, &Site::contract),
        flatField(&Flat::contractStatus, &Site::contractStatus),
        flatField(&Flat::type, &Site::type),
        flatField(&Flat::category, &Site::category),
        flatField(&Flat::armMode, &Site::armMode),
        flatField(&Flat::isDelegated, &Site::isDelegated),
        flatList(&Flat::devices, &Flat::deviceCount, &Site::devices),
        flatField(&Flat::domainId, &Site::domainId),
        flatNested(&Flat::location, &Site::location),
        flatField(&Flat::contractId, &Site::contractId),
        flatField(&Flat::isSitePlanExists, &Site::isSitePlanExists));
};
// clang-format on

} // namespace brimlet
