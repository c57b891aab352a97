#pragma once

#include "api/LocaleFlat.h"
#include "api/PersonFlat.h"
#include "brimlet/FlatRecords.h"
#include "records/Organization.h"

namespace brimlet {

// clang-format off
template<>
struct FlatForm<Organization>
{
    using Flat = FlatOrganization;
    static constexpr auto fields = std::make_tuple(
        flatField(&Flat::id, &Organization::id),
        flatField(&Flat::inn, &Organization::inn),
        flatField(&Flat::officialName, &Organization::officialName),
        flatField(&Flat::shortName, &Organization::shortName),
        flatField(&Flat::kpp, &Organization::kpp),
        flatField(&Flat::ogrn, &Organization::ogrn),
        flatField(&Flat::address, &Organization::address),
        flatNested(&Flat::contact, &Organization::contact),
        flatNested(&Flat::locale, &Organization::locale));
};
// clang-format on

} // namespace brimlet
