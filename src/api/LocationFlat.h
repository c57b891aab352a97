#pragma once

#include "api/Flatten.h"
#include "brimlet/FlatRecords.h"
#include "records/Location.h"

namespace brimlet {

// clang-format off
template<>
struct FlatForm<Location>
{
    using Flat = FlatLocation;
    static constexpr auto fields = std::make_tuple(
        flatField(&Flat::id, &Location::id),
        flatField(&Flat::latitude, &Location::latitude),
        flatField(&Flat::longitude, &Location::longitude));
};
// clang-format on

} // namespace brimlet
