#include "controller/Controller.h"
#include "controller/Outcome.h"
#include "json/KeyMaps.h"

namespace brimlet::controller {

BrimletResult Controller::updateZone(std::optional<Zone> &zone, quint32 deviceId, quint32 sectionId)
{
    if (const BrimletResult update = writeResult(database->updateZone(zone, deviceId, sectionId), zone))
        return update;

    // The zone is committed and stays, whatever these checks return.
    bool exists = false;
    if (const BrimletResult section =
            requireExists(database->isSectionExists(exists, deviceId, sectionId), exists, BRIMLET_NO_PARENT))
        return section;
    return requireExists(database->isDeviceExists(exists, deviceId), exists, BRIMLET_NO_PARENT);
}

BrimletResult Controller::deleteZone(quint32 zoneId, quint32 deviceId, quint32 sectionId)
{
    std::optional<Zone> zone;
    if (const BrimletResult target = readResult(database->getZone(zone, zoneId, deviceId, sectionId), zone))
        return target;
    return writeResult(database->deleteZone(deviceId, sectionId, zoneId));
}

BrimletResult Controller::getZone(std::optional<Zone> &zone, quint32 zoneId, quint32 deviceId, quint32 sectionId)
{
    return readResult(database->getZone(zone, zoneId, deviceId, sectionId), zone);
}

BrimletResult Controller::getZones(std::vector<Zone> &zones, quint32 deviceId)
{
    return readResult(database->getZones(zones, deviceId), zones);
}

BrimletResult Controller::getZonesForSection(std::vector<Zone> &zones, quint32 deviceId, quint32 sectionId)
{
    return readResult(database->getZonesForSection(zones, deviceId, sectionId), zones);
}

BrimletResult Controller::getZonesWithParams(std::vector<Zone> &zones, const QString &key, const QString &value,
                                             quint32 deviceId)
{
    QString column;
    if (!zoneColumnForKey(column, key))
        return BRIMLET_REFUSED;
    return readResult(database->getZonesByField(zones, column, value, deviceId), zones);
}

BrimletResult Controller::getZonesForSectionWithParams(std::vector<Zone> &zones, const QString &key,
                                                       const QString &value, quint32 deviceId, quint32 sectionId)
{
    QString column;
    if (!zoneColumnForKey(column, key))
        return BRIMLET_REFUSED;
    return readResult(database->getZonesForSectionByField(zones, column, value, deviceId, sectionId), zones);
}

} // namespace brimlet::controller
