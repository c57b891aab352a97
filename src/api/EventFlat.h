// What the flat record of an event carries.
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
        carries(&Flat::id, &Event::id),
        carries(&Flat::time, &Event::time),
        carries(&Flat::deviceId, &Event::deviceId),
        carries(&Flat::sectionId, &Event::sectionId),
        carries(&Flat::zoneId, &Event::zoneId),
        carries(&Flat::active, &Event::active),
        carries(&Flat::eventClass, &Event::eventClass),
        carries(&Flat::detector, &Event::detector),
        carries(&Flat::reason, &Event::reason),
        carries(&Flat::localTime, &Event::localTime),
        carries(&Flat::channel, &Event::channel),
        carries(&Flat::data, &Event::data),
        carries(&Flat::reviewId, &Event::reviewId),
        carries(&Flat::reviewState, &Event::reviewState),
        carries(&Flat::userId, &Event::userId),
        carries(&Flat::isClosed, &Event::isClosed),
        carries(&Flat::affect, &Event::affect),
        carries(&Flat::jData, &Event::jData),
        carries(&Flat::account, &Event::account),
        carries(&Flat::sectionName, &Event::sectionName),
        carries(&Flat::zoneName, &Event::zoneName),
        carries(&Flat::domainName, &Event::domainName));
};

// clang-format on

} // namespace brimlet
