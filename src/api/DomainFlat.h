#pragma once

#include "api/LocaleFlat.h"
#include "brimlet/FlatRecords.h"
#include "records/Domain.h"

namespace brimlet {

// clang-format off
template<>
struct FlatForm<Domain>
{
    using Flat = FlatDomain;
    static constexpr auto fields = std::make_tuple(
        flatField(&Flat::id, &Domain::id),
        flatField(&Flat::name, &Domain::name),
        flatField(&Flat::orgId, &Domain::orgId),
        flatNested(&Flat::locale, &Domain::locale));
};
// clang-format on

} // namespace brimlet
