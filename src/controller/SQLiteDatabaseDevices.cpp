#include "controller/StorePatterns.h"

namespace brimlet::controller {

bool SQLiteDatabase::addDevice(std::optional<Device> &device)
{
    begin();
    return writeDevices({required(device)}) && readBack(device, &SQLiteDatabase::readDevice) && commit();
}

bool SQLiteDatabase::addDevices(const std::vector<Device> &devices)
{
    begin();
    return writeDevices(devices) && commit();
}

bool SQLiteDatabase::updateDeviceFw(std::optional<Device> &device)
{
    begin();
    tables.prepareDeviceFwUpdate(query, required(device));
    return run("update device firmware error") && readBack(device, &SQLiteDatabase::readDevice) && commit();
}

bool SQLiteDatabase::deleteDevice(quint32 id)
{
    using Prepare = void (TableCatalog::*)(QSqlQuery &, quint32) const;
    static const struct
    {
        Prepare prepare;
        const char *error;
    } removals[] = {
        {&TableCatalog::prepareDeviceDelete, "delete device error"},
        {&TableCatalog::prepareSectionsOfDeviceDelete, "delete sections for device error"},
        {&TableCatalog::prepareZonesOfDeviceDelete, "delete zones for device error"},
        {&TableCatalog::prepareDeviceUsersOfDeviceDelete, "delete DeviceUsers for device error"},
        {&TableCatalog::prepareLinksOfDeviceDelete, "delete DeviceUserSectionLinks for device error"},
    };
    begin();
    for (const auto &removal : removals) {
        (tables.*removal.prepare)(query, id);
        if (!run(removal.error))
            return false;
    }
    return commit();
}

bool SQLiteDatabase::isDeviceExists(bool &exists, quint32 id)
{
    begin();
    tables.prepareDeviceExists(query, id);
    return readExists(exists, "is device exists error") && commit();
}

bool SQLiteDatabase::getDevice(std::optional<Device> &device, quint32 id)
{
    begin();
    return readDevice(device, id) && commit();
}

bool SQLiteDatabase::getDevicesByField(std::vector<Device> &devices, const QString &column, const QString &value)
{
    begin();
    tables.prepareDevicesSelectByField(query, column, value);
    return readList(devices, TableCatalog::readDeviceRow, "get devices by field error") && readChildrenOf(devices)
        && commit();
}

bool SQLiteDatabase::getDevices(std::vector<Device> &devices)
{
    begin();
    return readAllDevices(devices) && commit();
}

bool SQLiteDatabase::readDevice(std::optional<Device> &device, quint32 id)
{
    tables.prepareDeviceSelectById(query, id);
    return readOne(device, TableCatalog::readDeviceRow, "get device error") && (!device || readChildrenOf(*device));
}

bool SQLiteDatabase::readAllDevices(std::vector<Device> &devices)
{
    tables.prepareDevicesSelect(query);
    return readList(devices, TableCatalog::readDeviceRow, "get devices error") && readChildrenOf(devices);
}

bool SQLiteDatabase::readChildrenOf(std::vector<Device> &devices)
{
    for (Device &device : devices)
        if (!readChildrenOf(device))
            return false;
    return true;
}

bool SQLiteDatabase::readChildrenOf(Device &device)
{
    return readSectionsOfDevice(device.sections, device.id) && readDeviceUsers(device.users, device.id);
}

// One batch a table for all devices. Rows are replaced and none is deleted: rows that the documents omit stay.
bool SQLiteDatabase::writeDevices(const std::vector<Device> &devices)
{
    using Prepare = void (TableCatalog::*)(QSqlQuery &, const std::vector<Device> &) const;
    static const struct
    {
        Prepare prepare;
        const char *error;
    } batches[] = {
        {&TableCatalog::prepareDevicesInsert, "add devices error"},
        {&TableCatalog::prepareSectionsInsert, "add sections error"},
        {&TableCatalog::prepareZonesInsert, "add zones error"},
        {&TableCatalog::prepareDeviceUsersInsert, "add device users error"},
        {&TableCatalog::prepareDeviceUserSectionLinksInsert, "add device users error"}, // intentionally the same
    };
    for (const auto &batch : batches) {
        (tables.*batch.prepare)(query, devices);
        if (!runBatch(batch.error))
            return false;
    }
    return true;
}

} // namespace brimlet::controller
