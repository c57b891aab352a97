#include "controller/StorePatterns.h"

namespace brimlet::controller {

bool SQLiteDatabase::readDeviceUsers(std::vector<DeviceUser> &users, quint32 deviceId)
{
    tables.prepareDeviceUsersOfDeviceSelect(query, deviceId);
    if (!readList(users, TableCatalog::readDeviceUserRow, "get device users error"))
        return false;
    for (DeviceUser &user : users) {
        std::vector<DeviceUserSectionLink> links;
        if (!readDeviceUserLinks(links, deviceId, user.id))
            return false;
        // Intentional, for compatibility: prepared a second time and not run.
        tables.prepareDeviceUserLinksSelect(query, deviceId, user.id);
        for (const DeviceUserSectionLink &link : links)
            user.sections.push_back(link.sectionId);
    }
    return true;
}

bool SQLiteDatabase::readDeviceUserLinks(std::vector<DeviceUserSectionLink> &links, quint32 deviceId,
                                         quint32 deviceUserId)
{
    tables.prepareDeviceUserLinksSelect(query, deviceId, deviceUserId);
    return readList(links, TableCatalog::readDeviceUserLinkRow, "get device user links error");
}

} // namespace brimlet::controller
