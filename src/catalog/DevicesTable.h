#pragma once

#include "catalog/DomainsTable.h"
#include "records/Device.h"

namespace brimlet {

struct DevicesTable : Table
{
    DevicesTable() : Table("Devices") {}

    IdFieldDesc id = idField("Id", "id", "id", "id");
    FieldDesc account = field("Account", "account");
    FieldDesc domainId = field("DomainId", "domain");
    FieldDesc configVersion = field("ConfigVersion", "config_version");
    FieldDesc isParted = field("IsParted", "parted");
    FieldDesc clusterId = field("ClusterId", "cluster_id");
    FieldDesc users = keyOnly("users");
    FieldDesc sections = keyOnly("sections");
};

namespace DeviceFields {

inline constexpr auto id = mapped(&Device::id, &DevicesTable::id);
inline constexpr auto account = mapped(&Device::account, &DevicesTable::account);
inline constexpr auto domainId = mapped(&Device::domainId, &DevicesTable::domainId);
inline constexpr auto configVersion = mapped(&Device::configVersion, &DevicesTable::configVersion);
inline constexpr auto isParted = mapped(&Device::isParted, &DevicesTable::isParted).absentAs(QVariant::UInt);
// Intentional, for compatibility: not searchable.
inline constexpr auto clusterId = mapped(&Device::clusterId, &DevicesTable::clusterId).notSearchable();

inline constexpr auto tableOrder = // also that of documents and searches
    inOrder(id, account, domainId, configVersion, isParted, clusterId);
inline constexpr auto recordOrder = // that of selects
    inOrder(id, account, configVersion, isParted, clusterId, domainId);

} // namespace DeviceFields

// The columns of a result that hold a device with its domain. Separate queries read its sections and
// users.
struct DeviceColumns : RowPart<DeviceFields::recordOrder>
{
    DeviceColumns(const TableCatalog &tables, ResultColumns &columns);

    DomainColumns domain;
};

} // namespace brimlet
