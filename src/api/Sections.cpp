#include "api/EquipmentFlat.h"
#include "api/Families.h"

using namespace brimlet;

uint32_t updateSection(FlatSection **section, const uint16_t *json, uint32_t length)
{
    if (*section)
        return BRIMLET_REFUSED;
    const QString text = documentText(json, length);
    quint32 deviceId = 0;
    if (const BrimletResult refused = readBareId(text, SectionsTable().deviceId.fieldKeys.second, deviceId))
        return refused;
    return updateRecord(section, text, fillSection, &Controller::updateSection, deviceId);
}

uint32_t deleteSection(const uint16_t *json, uint32_t length)
{
    const QString text = documentText(json, length);
    const SectionsTable keys;
    quint32 deviceId = 0;
    if (const BrimletResult refused = readBareId(text, keys.deviceId.fieldKeys.second, deviceId))
        return refused;
    quint32 sectionId = 0;
    if (const BrimletResult refused = readBareId(text, keys.sectionId.fieldKeys.second, sectionId))
        return refused;
    return instance()->deleteSection(sectionId, deviceId);
}

uint32_t getSection(FlatSection **section, uint32_t sectionId, uint32_t deviceId)
{
    return getRecord(section, &Controller::getSection, sectionId, deviceId);
}

uint32_t getSections(FlatSection **sections, uint32_t *count, uint32_t deviceId)
{
    return getRecords(sections, count, &Controller::getSections, deviceId);
}

uint32_t getSectionsWithParams(FlatSection **sections, uint32_t *count, const uint16_t *key, uint32_t keyLength,
                               const uint16_t *value, uint32_t valueLength, uint32_t deviceId)
{
    return getRecordsByField(sections, count, &Controller::getSectionsWithParams, key, keyLength, value, valueLength,
                             deviceId);
}

uint32_t freeSection(FlatSection *section)
{
    return freeRecord<Section>(section);
}

uint32_t freeSectionsArray(FlatSection *sections, uint32_t count)
{
    return freeRecords<Section>(sections, count);
}
