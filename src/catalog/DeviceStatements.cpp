#include "catalog/Statements.h"
#include "catalog/TableCatalog.h"

namespace brimlet {

void TableCatalog::prepareDevicesTable(QSqlQuery &query) const
{
    prepare(query, createTableText(devices, DeviceFields::tableOrder));
}

void TableCatalog::prepareDevicesInsert(QSqlQuery &query, const std::vector<Device> &records) const
{
    prepare(query, insertText(devices.table, columnsOf(devices, DeviceFields::tableOrder)));
    bindBatch(query, records, DeviceFields::tableOrder);
}

// SELECT DevicesId,DevicesAccount,DevicesConfigVersion,DevicesIsParted,DevicesClusterId,DevicesDomainId,DomainsId,
//     DomainsName,DomainsOrgId,LocalesId,LocalesIso,LocalesDescription
// FROM Devices
// LEFT JOIN Domains ON DevicesDomainId = DomainsId
// LEFT JOIN Locales ON DomainsLocaleId = LocalesId
QString TableCatalog::devicesSelect() const
{
    return selectText(columnsOf(devices, DeviceFields::recordOrder) + domainColumns(), devices.table)
         + domainJoin(devices.domainId.column);
}

void TableCatalog::prepareDevicesSelect(QSqlQuery &query) const
{
    prepare(query, devicesSelect());
}

void TableCatalog::prepareDeviceSelectById(QSqlQuery &query, quint32 id) const
{
    prepare(query, devicesSelect() + where(devices.id.column), {id});
}

void TableCatalog::prepareDevicesSelectByField(QSqlQuery &query, const QString &column, const QString &value) const
{
    prepare(query, devicesSelect() + where(column), {value});
}

void TableCatalog::prepareDeviceFwUpdate(QSqlQuery &query, const Device &device) const
{
    prepare(query,
            QStringLiteral("UPDATE %1 SET %2 = ? WHERE %3 = ?")
                .arg(devices.table, devices.configVersion.column, devices.id.column),
            {DeviceFields::configVersion.bound(device), device.id});
}

void TableCatalog::prepareDeviceExists(QSqlQuery &query, quint32 id) const
{
    prepare(query, selectText({devices.id.column}, devices.table) + where(devices.id.column), {id});
}

void TableCatalog::prepareDeviceDelete(QSqlQuery &query, quint32 id) const
{
    prepareDelete(query, devices.table, devices.id.column, id);
}

DeviceColumns::DeviceColumns(const TableCatalog &tables, ResultColumns &columns)
    : RowPart(tables.devices, columns)
    , domain(tables, columns)
{
}

void TableCatalog::readDeviceRow(Device &device, const QSqlQuery &query, const DeviceColumns &columns)
{
    columns.read(device, query);
    readJoined(device.domain, query, columns.domain, readDomainRow);
}

} // namespace brimlet
