#include "controller/StorePatterns.h"

namespace brimlet::controller {

bool SQLiteDatabase::updateSection(std::optional<Section> &section, quint32 deviceId)
{
    begin();
    tables.prepareSectionUpsert(query, required(section), deviceId); // ignores the zones of the document
    return run("add or update section error") && readBack(section, &SQLiteDatabase::readSectionById, deviceId)
        && commit();
}

bool SQLiteDatabase::deleteSection(quint32 deviceId, quint32 sectionId)
{
    begin();
    tables.prepareSectionDelete(query, deviceId, sectionId);
    if (!run("delete device section error"))
        return false;
    for (int time = 0; time < 2; ++time) { // intentional, for compatibility: the second run finds no rows
        tables.prepareZonesOfSectionDelete(query, deviceId, sectionId);
        if (!run("delete zones for device section error"))
            return false;
    }
    tables.prepareLinksOfSectionDelete(query, deviceId, sectionId);
    return run("delete deviceUser-section link for device section error") && commit();
}

bool SQLiteDatabase::isSectionExists(bool &exists, quint32 deviceId, quint32 sectionId)
{
    begin();
    tables.prepareSectionExists(query, deviceId, sectionId);
    return readExists(exists, "is section exists error") && commit();
}

bool SQLiteDatabase::getSection(std::optional<Section> &section, quint32 sectionId, quint32 deviceId)
{
    begin();
    return readSectionById(section, sectionId, deviceId) && commit();
}

bool SQLiteDatabase::getSectionsByField(std::vector<Section> &sections, const QString &column, const QString &value,
                                        quint32 deviceId)
{
    begin();
    tables.prepareSectionsSelectByField(query, column, value, deviceId);
    if (!readList(sections, TableCatalog::readSectionRow, "get sections for device by field error"))
        return false;
    readZonesOfSections(sections, deviceId);
    return commit();
}

bool SQLiteDatabase::getSections(std::vector<Section> &sections, quint32 deviceId)
{
    begin();
    return readSectionsOfDevice(sections, deviceId) && commit();
}

bool SQLiteDatabase::readSectionById(std::optional<Section> &section, quint32 sectionId, quint32 deviceId)
{
    tables.prepareSectionSelectById(query, sectionId, deviceId);
    if (!readOne(section, TableCatalog::readSectionRow, "get sections for device by id error"))
        return false;
    if (section)
        readZonesOfSection(section->zones, deviceId, sectionId); // a failure is ignored, see below
    return true;
}

bool SQLiteDatabase::readSectionsOfDevice(std::vector<Section> &sections, quint32 deviceId)
{
    tables.prepareSectionsOfDeviceSelect(query, deviceId);
    if (!readList(sections, TableCatalog::readSectionRow, "get sections for device error"))
        return false;
    readZonesOfSections(sections, deviceId);
    return true;
}

// Intentional, for compatibility: a failed read of zones, which has logged and rolled back, leaves that section without
// zones and does not fail the read of the sections.
void SQLiteDatabase::readZonesOfSections(std::vector<Section> &sections, quint32 deviceId)
{
    for (Section &section : sections)
        readZonesOfSection(section.zones, deviceId, section.id);
}

} // namespace brimlet::controller
