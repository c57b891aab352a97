#include "api/Families.h"
#include "api/ZoneFlat.h"

using namespace brimlet;

uint32_t updateZone(FlatZone **zone, const uint16_t *json, uint32_t length)
{
    return updateRecord(zone, json, length, documents::updateZone, &Controller::updateZone);
}

uint32_t deleteZone(const uint16_t *json, uint32_t length)
{
    std::array<quint32, 3> ids{};
    if (const BrimletResult refused = documents::deleteZone.read(documentText(json, length), ids))
        return refused;
    const auto [deviceId, sectionId, zoneId] = ids;
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
