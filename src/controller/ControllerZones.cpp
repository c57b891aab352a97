#include "controller/Controller.h"
#include "controller/Outcome.h"
#include "json/KeyMaps.h"

namespace brimlet::controller {

BrimletResult Controller::updateZone(std::optional<Zone> &zone, quint32 deviceId, quint32 sectionId)
{
    if (const BrimletResult update = writtenAndFound(database->updateZone(zone, deviceId, sectionId), zone))
        return update;

    // The zone is committed, and stays whatever comes of this.
    bool exists = false;
    if (const BrimletResult section =
            there(database->isSectionExists(exists, deviceId, sectionId), exists, BRIMLET_NO_PARENT))
        return section;
    return there(database->isDeviceExists(exists, deviceId), exists, BRIMLET_NO_PARENT);
}

BrimletResult Controller::deleteZone(quint32 zoneId, quint32 deviceId, quint32 sectionId)
{
    std::optional<Zone> zone;
    if (const BrimletResult target = found(database->getZone(zone, zoneId, deviceId, sectionId), zone))
        return target;
    return written(database->deleteZone(deviceId, sectionId, zoneId));
}

BrimletResult Controller::getZone(std::optional<Zone> &zone, quint32 zoneId, quint32 deviceId, quint32 sectionId)
{
    return found(database->getZone(zone, zoneId, deviceId, sectionId), zone);
}

BrimletResult Controller::getZones(std::vector<Zone> &zones, quint32 deviceId)
{
    return found(database->getZones(zones, deviceId), zones);
}

BrimletResult Controller::getZonesForSection(std::vector<Zone> &zones, quint32 deviceId, quint32 sectionId)
{
    return found(database->getZonesForSection(zones, deviceId, sectionId), zones);
}

BrimletResult Controller::getZonesWithParams(std::vector<Zone> &zones, const QString &key, const QString &value,
                                             quint32 deviceId)
{
    QString column;
    if (!zoneColumnForKey(column, key))
        return BRIMLET_REFUSED;
    return found(database->getZonesByField(zones, column, value, deviceId), zones);
}

BrimletResult Controller::getZonesForSectionWithParams(std::vector<Zone> &zones, const QString &key,
                                                       const QString &value, quint32 deviceId, quint32 sectionId)
{
    QString column;
    if (!zoneColumnForKey(column, key))
        return BRIMLET_REFUSED;
    return found(database->getZonesForSectionByField(zones, column, value, deviceId, sectionId), zones);
}

} // namespace brimlet::controller
