#include "json/FieldReaders.h"
#include "json/ObjectReaders.h"

namespace brimlet {

namespace {

// A coordinate of any type: what is no number reads as 0.
void readCoordinate(std::optional<double> &coordinate, const QJsonObject &object, const QString &key)
{
    if (object.contains(key))
        coordinate = object.value(key).toDouble(0.0);
}

// What is no object, or an empty one, means no location and is no failure.
void readLocation(Site &site, const QJsonObject &object, const LocationsTable &keys)
{
    if (object.isEmpty())
        return;
    Location &location = site.location.emplace();
    location.id = site.id;
    readCoordinate(location.latitude, object, keys.latitude.key);
    readCoordinate(location.longitude, object, keys.longitude.key);
}

} // namespace

bool fillSite(Site &site, const QJsonObject &object, const SiteKeys &keys)
{
    if (!readFields(site, object, keys, SiteFields::tableOrder))
        return false;
    readLocation(site, object.value(keys.location.key).toObject(), keys.locationKeys);
    return readObjects(site.devices, object.value(keys.devices.key).toArray(), fillDevice, keys.device);
}

} // namespace brimlet
