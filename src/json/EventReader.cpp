#include "json/FieldReaders.h"
#include "json/ObjectReaders.h"

namespace brimlet {

bool fillEvent(Event &event, const QJsonObject &object, const EventsTable &keys)
{
    return readFields(event, object, keys, EventFields::tableOrder);
}

} // namespace brimlet
