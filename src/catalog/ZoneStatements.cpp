#include "catalog/Statements.h"
#include "catalog/TableCatalog.h"

namespace brimlet {

void TableCatalog::prepareZonesTable(QSqlQuery &query) const
{
    prepare(query, createTableText(zones, {zones.deviceId.column, zones.sectionId.column}, ZoneFields::tableOrder,
                                   {zones.deviceId.column, zones.zoneId.column})); // the section is not part of the key
}

void TableCatalog::prepareZonesInsert(QSqlQuery &query, const std::vector<Device> &records) const
{
    prepare(query, insertText(zones.table, QStringList{zones.deviceId.column, zones.sectionId.column}
                                               + columnsOf(zones, ZoneFields::tableOrder)));
    auto batch = batchWithParents<2>(ZoneFields::tableOrder);
    for (const Device &device : records)
        for (const Section &section : device.sections)
            for (const Zone &zone : section.zones)
                batch.add(zone, {device.id, section.id});
    batch.bind(query);
}

void TableCatalog::prepareZoneUpsert(QSqlQuery &query, const Zone &zone, quint32 deviceId, quint32 sectionId) const
{
    // A zone sent with another section moves to it: the section is not part of the primary key.
    prepareUpsert(query, zones.table,
                  presentColumns(zones, zone, ZoneFields::tableOrder,
                                 {{zones.deviceId.column, deviceId}, {zones.sectionId.column, sectionId}}),
                  {0, 2});
}

QString TableCatalog::zonesSelect() const
{
    return selectText(columnsOf(zones, ZoneFields::tableOrder), zones.table);
}

QString TableCatalog::zonesOfDeviceSelect() const
{
    return zonesSelect() + where(zones.deviceId.column);
}

QString TableCatalog::zonesOfSectionSelect() const
{
    return zonesOfDeviceSelect() + andWhere(zones.sectionId.column);
}

void TableCatalog::prepareZonesOfDeviceSelect(QSqlQuery &query, quint32 deviceId) const
{
    prepare(query, zonesOfDeviceSelect(), {deviceId});
}

void TableCatalog::prepareZonesOfSectionSelect(QSqlQuery &query, quint32 deviceId, quint32 sectionId) const
{
    prepareChildQuery(query, &TableCatalog::zonesOfSectionSelect, {deviceId, sectionId});
}

void TableCatalog::prepareZoneSelectById(QSqlQuery &query, quint32 zoneId, quint32 deviceId, quint32 sectionId) const
{
    prepare(query, zonesOfSectionSelect() + andWhere(zones.zoneId.column), {deviceId, sectionId, zoneId});
}

void TableCatalog::prepareZonesOfDeviceSelectByField(QSqlQuery &query, const QString &column, const QString &value,
                                                     quint32 deviceId) const
{
    prepare(query, zonesOfDeviceSelect() + andWhere(column), {deviceId, value});
}

void TableCatalog::prepareZonesOfSectionSelectByField(QSqlQuery &query, const QString &column, const QString &value,
                                                      quint32 deviceId, quint32 sectionId) const
{
    prepare(query, zonesOfSectionSelect() + andWhere(column), {deviceId, sectionId, value});
}

void TableCatalog::prepareZoneDelete(QSqlQuery &query, quint32 deviceId, quint32 sectionId, quint32 zoneId) const
{
    prepare(query,
            deleteText(zones.table) + where(zones.deviceId.column) + andWhere(zones.sectionId.column)
                + andWhere(zones.zoneId.column),
            {deviceId, sectionId, zoneId});
}

void TableCatalog::prepareZonesOfDeviceDelete(QSqlQuery &query, quint32 deviceId) const
{
    prepare(query, deleteText(zones.table) + where(zones.deviceId.column), {deviceId});
}

void TableCatalog::prepareZonesOfSectionDelete(QSqlQuery &query, quint32 deviceId, quint32 sectionId) const
{
    prepare(query, deleteText(zones.table) + where(zones.deviceId.column) + andWhere(zones.sectionId.column),
            {deviceId, sectionId});
}

ZoneColumns::ZoneColumns(const TableCatalog &tables, ResultColumns &columns) : RowPart(tables.zones, columns) {}

void TableCatalog::readZoneRow(Zone &zone, const QSqlQuery &query, const ZoneColumns &columns)
{
    columns.read(zone, query);
}

} // namespace brimlet
