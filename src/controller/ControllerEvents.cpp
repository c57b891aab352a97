#include "controller/Controller.h"
#include "controller/Outcome.h"

namespace brimlet::controller {

BrimletResult Controller::addEvent(std::optional<Event> &event)
{
    return writtenAndFound(database->addEvent(event), event);
}

BrimletResult Controller::addEvents(std::vector<Event> &events)
{
    return writtenAndFound(database->addEvents(events), events);
}

BrimletResult Controller::getEvents(std::vector<Event> &events, quint32 from, quint32 to)
{
    return found(database->getEvents(events, from, to), events);
}

BrimletResult Controller::getAffectEvents(std::vector<Event> &events)
{
    return found(database->getAffectEvents(events), events);
}

BrimletResult Controller::removeAffectFlag(std::optional<Event> &event, quint32 id)
{
    bool exists = false;
    if (const BrimletResult target = there(database->isEventExists(exists, id), exists, BRIMLET_NOT_FOUND))
        return target;
    return written(database->removeAffectFlag(event, id) && event.has_value());
}

BrimletResult Controller::clearEventsBeforeDateExceptAffects(quint32 date)
{
    return written(database->clearEventsBeforeDate(date));
}

} // namespace brimlet::controller
