#pragma once

#include "catalog/RowPart.h"
#include "records/DeviceUser.h"

namespace brimlet {

class TableCatalog;

struct DeviceUsersTable : Table
{
    DeviceUsersTable() : Table("DeviceUsers") {}

    IdFieldDesc deviceId = idField("DeviceId", "", "", "");
    IdFieldDesc deviceUserId = idField("DeviceUserId", "user_index", "", "user_index");
    FieldDesc name = field("Name", "name");
    FieldDesc comment = field("Comment", "comment");
    FieldDesc phone = field("Phone", "phone");
    FieldDesc sections = keyOnly("sections");
};

namespace DeviceUserFields {

inline constexpr auto id = mapped(&DeviceUser::id, &DeviceUsersTable::deviceUserId);
inline constexpr auto name = mapped(&DeviceUser::name, &DeviceUsersTable::name);
inline constexpr auto comment = mapped(&DeviceUser::comment, &DeviceUsersTable::comment);
inline constexpr auto phone = mapped(&DeviceUser::phone, &DeviceUsersTable::phone);

// After the device's key; also that of documents and selects.
inline constexpr auto tableOrder = inOrder(id, name, comment, phone);

} // namespace DeviceUserFields

// The columns of a result that hold a device user. A separate query reads the links.
struct DeviceUserColumns : RowPart<DeviceUserFields::tableOrder>
{
    DeviceUserColumns(const TableCatalog &tables, ResultColumns &columns);
};

// The sections that each user of a device may reach. These columns have no JSON keys.
struct DeviceUserSectionLinksTable : Table
{
    DeviceUserSectionLinksTable() : Table("DeviceUserSectionLinks") {}

    QString deviceId = column("DeviceId");
    QString deviceUserId = column("DeviceUserId");
    QString sectionId = column("SectionId");
};

namespace DeviceUserSectionLinkFields {

using Link = DeviceUserSectionLink;

inline constexpr auto deviceId = mapped(&Link::deviceId, &DeviceUserSectionLinksTable::deviceId);
inline constexpr auto deviceUserId = mapped(&Link::deviceUserId, &DeviceUserSectionLinksTable::deviceUserId);
inline constexpr auto sectionId = mapped(&Link::sectionId, &DeviceUserSectionLinksTable::sectionId);

inline constexpr auto tableOrder = inOrder(deviceId, deviceUserId, sectionId); // all three are the primary key

} // namespace DeviceUserSectionLinkFields

// The columns of a result that hold a link.
struct DeviceUserLinkColumns : RowPart<DeviceUserSectionLinkFields::tableOrder>
{
    DeviceUserLinkColumns(const TableCatalog &tables, ResultColumns &columns);
};

} // namespace brimlet
