#pragma once

#include "api/ZoneFlat.h"
#include "brimlet/FlatRecords.h"
#include "records/Section.h"

namespace brimlet {

// clang-format off
template<>
struct FlatForm<Section>
{
    using Flat = FlatSection;
    static constexpr auto fields = std::make_tuple(
        flatField(&Flat::id, &Section::id),
        flatField(&Flat::name, &Section::name),
        flatField(&Flat::scheduleId, &Section::scheduleId),
        flatList(&Flat::zones, &Flat::zonesCount, &Section::zones),
        flatField(&Flat::tracert, &Section::tracert),
        flatField(&Flat::flags, &Section::flags),
        flatField(&Flat::detector, &Section::detector),
        flatField(&Flat::arm, &Section::arm),
        flatField(&Flat::physic, &Section::physic),
        flatField(&Flat::form, &Section::form),
        flatField(&Flat::delay, &Section::delay),
        flatField(&Flat::uidType, &Section::uidType));
};
// clang-format on

} // namespace brimlet
