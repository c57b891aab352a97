#pragma once

#include "catalog/EventsTable.h"
#include "json/DocumentForm.h"

namespace brimlet {

template<>
struct DocumentForm<Event>
{
    using Keys = EventsTable;
    static constexpr auto &members = EventFields::tableOrder;
};

inline bool fillEvent(Event &event, const QJsonObject &object, const EventsTable &keys = {})
{
    return readMembers(event, object, keys);
}

} // namespace brimlet
