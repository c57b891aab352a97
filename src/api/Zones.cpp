#include "api/EquipmentFlat.h"
#include "api/Families.h"

using namespace brimlet;

namespace {

// The keys that stand beside a zone.
BrimletResult readParents(quint32 &deviceId, quint32 &sectionId, const QString &text)
{
    const ZonesTable keys;
    if (const BrimletResult refused = readBareId(text, keys.deviceId.fieldKeys.second, deviceId))
        return refused;
    return readBareId(text, keys.sectionId.fieldKeys.second, sectionId);
}

} // namespace

uint32_t updateZone(FlatZone **zone, const uint16_t *json, uint32_t length)
{
    if (*zone)
        return BRIMLET_REFUSED;
    const QString text = documentText(json, length);
    quint32 deviceId = 0;
    quint32 sectionId = 0;
    if (const BrimletResult refused = readParents(deviceId, sectionId, text))
        return refused;
    return updateRecord(zone, text, fillZone, &Controller::updateZone, deviceId, sectionId);
}

uint32_t deleteZone(const uint16_t *json, uint32_t length)
{
    const QString text = documentText(json, length);
    quint32 deviceId = 0;
    quint32 sectionId = 0;
    if (const BrimletResult refused = readParents(deviceId, sectionId, text))
        return refused;
    quint32 zoneId = 0;
    if (const BrimletResult refused = readBareId(text, ZonesTable().zoneId.fieldKeys.second, zoneId))
        return refused;
    return instance()->deleteZone(zoneId, deviceId, sectionId);
}

uint32_t getZone(FlatZone **zone, uint32_t zoneId, uint32_t deviceId, uint32_t sectionId)
{
    return getRecord(zone, &Controller::getZone, zoneId, deviceId, sectionId);
}

uint32_t getZones(FlatZone **zones, uint32_t *count, uint32_t deviceId)
{
    return getRecords(zones, count, &Controller::getZones, deviceId);
}

uint32_t getZonesForSection(FlatZone **zones, uint32_t *count, uint32_t deviceId, uint32_t sectionId)
{
    return getRecords(zones, count, &Controller::getZonesForSection, deviceId, sectionId);
}

uint32_t getZonesWithParams(FlatZone **zones, uint32_t *count, const uint16_t *key, uint32_t keyLength,
                            const uint16_t *value, uint32_t valueLength, uint32_t deviceId)
{
    return getRecordsByField(zones, count, &Controller::getZonesWithParams, key, keyLength, value, valueLength,
                             deviceId);
}

uint32_t getZonesForSectionWithParams(FlatZone **zones, uint32_t *count, const uint16_t *key, uint32_t keyLength,
                                      const uint16_t *value, uint32_t valueLength, uint32_t deviceId,
                                      uint32_t sectionId)
{
    return getRecordsByField(zones, count, &Controller::getZonesForSectionWithParams, key, keyLength, value,
                             valueLength, deviceId, sectionId);
}

uint32_t freeZone(FlatZone *zone)
{
    return freeRecord<Zone>(zone);
}

uint32_t freeZonesArray(FlatZone *zones, uint32_t count)
{
    return freeRecords<Zone>(zones, count);
}
