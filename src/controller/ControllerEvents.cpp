#include "controller/Controller.h"
#include "controller/Outcome.h"

namespace brimlet::controller {

BrimletResult Controller::addEvent(std::optional<Event> &event)
{
    return writeResult(database->addEvent(event), event);
}

BrimletResult Controller::addEvents(std::vector<Event> &events)
{
    return writeResult(database->addEvents(events), events);
}

BrimletResult Controller::getEvents(std::vector<Event> &events, quint32 from, quint32 to)
{
    return readResult(database->getEvents(events, from, to), events);
}

BrimletResult Controller::getAffectEvents(std::vector<Event> &events)
{
    return readResult(database->getAffectEvents(events), events);
}

BrimletResult Controller::removeAffectFlag(std::optional<Event> &event, quint32 id)
{
    bool exists = false;
    if (const BrimletResult target = requireExists(database->isEventExists(exists, id), exists, BRIMLET_NOT_FOUND))
        return target;
    return writeResult(database->removeAffectFlag(event, id) && event.has_value());
}

BrimletResult Controller::clearEventsBeforeDateExceptAffects(quint32 date)
{
    return writeResult(database->clearEventsBeforeDate(date));
}

} // namespace brimlet::controller
