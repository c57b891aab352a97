#pragma once

#include "api/Flatten.h"
#include "brimlet/FlatRecords.h"
#include "records/Event.h"

namespace brimlet {

// clang-format off
template<>
struct FlatForm<Event>
{
    using Flat = FlatEvent;
    static constexpr auto fields = std::make_tuple(
        flatField(&Flat::id, &Event::id),
        flatField(&Flat::time, &Event::time),
        flatField(&Flat::deviceId, &Event::deviceId),
        flatField(&Flat::sectionId, &Event::sectionId),
        flatField(&Flat::zoneId, &Event::zoneId),
        flatField(&Flat::active, &Event::active),
        flatField(&Flat::eventClass, &Event::eventClass),
        flatField(&Flat::detector, &Event::detector),
        flatField(&Flat::reason, &Event::reason),
        flatField(&Flat::localTime, &Event::localTime),
        flatField(&Flat::channel, &Event::channel),
        flatField(&Flat::data, &Event::data),
        flatField(&Flat::reviewId, &Event::reviewId),
        flatField(&Flat::reviewState, &Event::reviewState),
        flatField(&Flat::userId, &Event::userId),
        flatField(&Flat::isClosed, &Event::isClosed),
        flatField(&Flat::affect, &Event::affect),
        flatField(&Flat::jData, &Event::jData),
        flatField(&Flat::account, &Event::account),
        flatField(&Flat::sectionName, &Event::sectionName),
        flatField(&Flat::zoneName, &Event::zoneName),
        flatField(&Flat::domainName, &Event::domainName));
};
// clang-format on

} // namespace brimlet
