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
inline constexpr auto clusterId = mapped(&Device::clusterId, &DevicesTable::clusterId);

inline constexpr auto tableOrder = // also that of documents
    inOrder(id, account, domainId, configVersion, isParted, clusterId);
inline constexpr auto selectOrder = inOrder(id, account, configVersion, isParted, clusterId, domainId);
inline constexpr auto searchOrder = // kept on purpose: the cluster cannot be searched for
    inOrder(id, account, domainId, configVersion, isParted);

} // namespace DeviceFields

// The columns of a result that hold a device with its domain. Separate queries read its sections and
// users.
struct DeviceColumns : RowPart<DeviceFields::selectOrder>
{
    DeviceColumns(const TableCatalog &tables, ResultColumns &columns);

    DomainColumns domain;
};

} // namespace brimlet
