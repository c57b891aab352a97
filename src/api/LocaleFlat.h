#pragma once

#include "api/Flatten.h"
#include "brimlet/FlatRecords.h"
#include "records/Locale.h"

namespace brimlet {

// clang-format off
template<>
struct FlatForm<Locale>
{
    using Flat = FlatLocale;
    static constexpr auto fields = std::make_tuple(
        flatField(&Flat::id, &Locale::id),
        flatField(&Flat::iso, &Locale::iso),
        flatField(&Flat::description, &Locale::description));
};
// clang-format on

} // namespace brimlet
