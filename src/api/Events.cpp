#include "api/EventFlat.h"
#include "api/Families.h"

using namespace brimlet;

uint32_t addEvent(FlatEvent **event, const uint16_t *json, uint32_t length)
{
    return updateRecord(event, json, length, documents::addEvent, &Controller::addEvent);
}

uint32_t addEvents(FlatEvent **events, uint32_t *count, const uint16_t *json, uint32_t length)
{
    // Intentionally no check of the target: the pointer that it holds is overwritten.
    std::vector<Event> records;
    if (const BrimletResult refused = documents::addEvents.read(documentText(json, length), records))
        return refused;
    if (const BrimletResult failed = instance()->addEvents(records))
        return failed;
    return exportRecords(events, count, std::move(records));
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
    // Intentionally no check of the target: a block that it holds is freed on success.
    std::array<quint32, 1> ids{};
    if (const BrimletResult refused = documents::removeAffectFlag.read(documentText(json, length), ids))
        return refused;
    std::optional<Event> record;
    if (const BrimletResult failed = instance()->removeAffectFlag(record, ids.front()))
        return failed;
    return exportRecord(event, record);
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
