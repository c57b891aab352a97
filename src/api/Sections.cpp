#include "api/Families.h"
#include "api/SectionFlat.h"

using namespace brimlet;

uint32_t updateSection(FlatSection **section, const uint16_t *json, uint32_t length)
{
    return updateRecord(section, json, length, documents::updateSection, &Controller::updateSection);
}

uint32_t deleteSection(const uint16_t *json, uint32_t length)
{
    std::array<quint32, 2> ids{};
    if (const BrimletResult refused = documents::deleteSection.read(documentText(json, length), ids))
        return refused;
    const auto [deviceId, sectionId] = ids;
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
