#include "controller/StorePatterns.h"

namespace brimlet::controller {

bool SQLiteDatabase::updateZone(std::optional<Zone> &zone, quint32 deviceId, quint32 sectionId)
{
    begin();
    tables.prepareZoneUpsert(query, required(zone), deviceId, sectionId);
    return run("add or update zone error") && readBack(zone, &SQLiteDatabase::readZoneById, deviceId, sectionId)
        && commit();
}

bool SQLiteDatabase::deleteZone(quint32 deviceId, quint32 sectionId, quint32 zoneId)
{
    begin();
    tables.prepareZoneDelete(query, deviceId, sectionId, zoneId);
    return run("delete zone error") && commit();
}

bool SQLiteDatabase::getZone(std::optional<Zone> &zone, quint32 zoneId, quint32 deviceId, quint32 sectionId)
{
    begin();
    return readZoneById(zone, zoneId, deviceId, sectionId) && commit();
}

bool SQLiteDatabase::getZonesForSectionByField(std::vector<Zone> &zones, const QString &column, const QString &value,
                                               quint32 deviceId, quint32 sectionId)
{
    begin();
    tables.prepareZonesOfSectionSelectByField(query, column, value, deviceId, sectionId);
    return readList(zones, TableCatalog::readZoneRow, "get zones for device section by field error") && commit();
}

bool SQLiteDatabase::getZonesByField(std::vector<Zone> &zones, const QString &column, const QString &value,
                                     quint32 deviceId)
{
    begin();
    tables.prepareZonesOfDeviceSelectByField(query, column, value, deviceId);
    return readList(zones, TableCatalog::readZoneRow, "get zones for device by field error") && commit();
}

bool SQLiteDatabase::getZonesForSection(std::vector<Zone> &zones, quint32 deviceId, quint32 sectionId)
{
    begin();
    return readZonesOfSection(zones, deviceId, sectionId) && commit();
}

bool SQLiteDatabase::getZones(std::vector<Zone> &zones, quint32 deviceId)
{
    begin();
    tables.prepareZonesOfDeviceSelect(query, deviceId);
    return readList(zones, TableCatalog::readZoneRow, "get zones for device error") && commit();
}

bool SQLiteDatabase::readZoneById(std::optional<Zone> &zone, quint32 zoneId, quint32 deviceId, quint32 sectionId)
{
    tables.prepareZoneSelectById(query, zoneId, deviceId, sectionId);
    return readOne(zone, TableCatalog::readZoneRow, "get zones for device section by id error");
}

bool SQLiteDatabase::readZonesOfSection(std::vector<Zone> &zones, quint32 deviceId, quint32 sectionId)
{
    tables.prepareZonesOfSectionSelect(query, deviceId, sectionId);
    return readList(zones, TableCatalog::readZoneRow, "get zones for device section error");
}

} // namespace brimlet::controller
