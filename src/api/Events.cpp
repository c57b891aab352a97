#include "api/EventFlat.h"
#include "api/Families.h"

using namespace brimlet;

uint32_t addEvent(FlatEvent **event, const uint16_t *json, uint32_t length)
{
    return updateRecord(event, json, length, fillEvent, &Controller::addEvent);
}

uint32_t addEvents(FlatEvent **events, uint32_t *count, const uint16_t *json, uint32_t length)
{
    // No guard, on purpose: what the target holds is overwritten.
    std::vector<Event> records;
    if (const BrimletResult refused = readBatch(documentText(json, length), records, fillEvent))
        return refused;
    if (const BrimletResult failed = instance()->addEvents(records))
        return failed;
    return putOut(events, count, std::move(records));
}

uint32_t getEvents(FlatEvent **events, uint32_t *count, uint32_t from, uint32_t to)
{
    return getRecords(events, count, &Controller::getEvents, from, to);
}

uint32_t getAffectEvents(FlatEvent **events, uint32_t *count)
{
    return getRecords(events, count, &Controller::getAffectEvents);
}

uint32_t removeAffectFlag(FlatEvent **event, const uint16_t *json, uint32_t length)
{
    // No guard, on purpose: a block that the target holds is released on success.
    quint32 id = 0;
    if (const BrimletResult refused = readBareId(documentText(json, length), EventsTable().id.fieldKeys.third, id))
        return refused;
    std::optional<Event> record;
    if (const BrimletResult failed = instance()->removeAffectFlag(record, id))
        return failed;
    return putOut(event, record);
}

uint32_t clearEventsBeforeDateExceptAffects(uint32_t date)
{
    return instance()->clearEventsBeforeDateExceptAffects(date);
}

uint32_t freeEvent(FlatEvent *event)
{
    return freeRecord<Event>(event);
}

uint32_t freeEventsArray(FlatEvent *events, uint32_t count)
{
    return freeRecords<Event>(events, count);
}
