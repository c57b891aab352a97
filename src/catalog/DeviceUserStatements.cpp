#include "catalog/Statements.h"
#include "catalog/TableCatalog.h"

namespace brimlet {

// ---- Device users ----

void TableCatalog::prepareDeviceUsersTable(QSqlQuery &query) const
{
    prepare(query, createTableText(deviceUsers, {deviceUsers.deviceId.column}, DeviceUserFields::tableOrder,
                                   {deviceUsers.deviceId.column, deviceUsers.deviceUserId.column}));
}

void TableCatalog::prepareDeviceUsersInsert(QSqlQuery &query, const std::vector<Device> &records) const
{
    prepare(query, insertText(deviceUsers.table, QStringList{deviceUsers.deviceId.column}
                                                     + columnsOf(deviceUsers, DeviceUserFields::tableOrder)));
    auto batch = batchWithParents<1>(DeviceUserFields::tableOrder);
    for (const Device &device : records)
        for (const DeviceUser &user : device.users)
            batch.add(user, {device.id});
    batch.bind(query);
}

void TableCatalog::prepareDeviceUsersOfDeviceSelect(QSqlQuery &query, quint32 deviceId) const
{
    prepare(query,
            selectText(columnsOf(deviceUsers, DeviceUserFields::tableOrder), deviceUsers.table)
                + where(deviceUsers.deviceId.column),
            {deviceId});
}

void TableCatalog::prepareDeviceUsersOfDeviceDelete(QSqlQuery &query, quint32 deviceId) const
{
    prepare(query, deleteText(deviceUsers.table) + where(deviceUsers.deviceId.column), {deviceId});
}

DeviceUserColumns::DeviceUserColumns(const TableCatalog &tables, ResultColumns &columns)
    : RowPart(tables.deviceUsers, columns)
{
}

void TableCatalog::readDeviceUserRow(DeviceUser &user, const QSqlQuery &query, const DeviceUserColumns &columns)
{
    columns.read(user, query);
}

// ---- Their links to sections ----

void TableCatalog::prepareDeviceUserSectionLinksTable(QSqlQuery &query) const
{
    prepare(query, createTableText(deviceUserSectionLinks, {}, DeviceUserSectionLinkFields::tableOrder,
                                   columnsOf(deviceUserSectionLinks, DeviceUserSectionLinkFields::tableOrder)));
}

void TableCatalog::prepareDeviceUserSectionLinksInsert(QSqlQuery &query, const std::vector<Device> &records) const
{
    // All columns of a link are its key: a link that exists stays as it is.
    prepare(query, insertText(deviceUserSectionLinks.table,
                              columnsOf(deviceUserSectionLinks, DeviceUserSectionLinkFields::tableOrder), ",",
                              "INSERT OR IGNORE"));
    auto batch = batchWithParents<0>(DeviceUserSectionLinkFields::tableOrder);
    for (const Device &device : records)
        for (const DeviceUser &user : device.users)
            for (const quint32 section : user.sections)
                batch.add({device.id, user.id, section});
    batch.bind(query);
}

QString TableCatalog::deviceUserLinksSelect() const
{
    return selectAllText(deviceUserSectionLinks.table) + where(deviceUserSectionLinks.deviceId)
         + andWhere(deviceUserSectionLinks.deviceUserId);
}

void TableCatalog::prepareDeviceUserLinksSelect(QSqlQuery &query, quint32 deviceId, quint32 deviceUserId) const
{
    prepareChildQuery(query, &TableCatalog::deviceUserLinksSelect, {deviceId, deviceUserId});
}

void TableCatalog::prepareLinksOfDeviceDelete(QSqlQuery &query, quint32 deviceId) const
{
    prepare(query, deleteText(deviceUserSectionLinks.table) + where(deviceUserSectionLinks.deviceId), {deviceId});
}

void TableCatalog::prepareLinksOfSectionDelete(QSqlQuery &query, quint32 deviceId, quint32 sectionId) const
{
    prepare(query,
            deleteText(deviceUserSectionLinks.table) + where(deviceUserSectionLinks.deviceId)
                + andWhere(deviceUserSectionLinks.sectionId),
            {deviceId, sectionId});
}

DeviceUserLinkColumns::DeviceUserLinkColumns(const TableCatalog &tables, ResultColumns &columns)
    : RowPart(tables.deviceUserSectionLinks, columns)
{
}

void TableCatalog::readDeviceUserLinkRow(DeviceUserSectionLink &link, const QSqlQuery &query,
                                         const DeviceUserLinkColumns &columns)
{
    columns.read(link, query);
}

} // namespace brimlet
