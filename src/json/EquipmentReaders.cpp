#include "json/FieldReaders.h"
#include "json/ObjectReaders.h"

namespace brimlet {

namespace {

// The section numbers of a device user, up to the first that is no number.
bool readSectionNumbers(std::vector<quint32> &sections, const QJsonArray &array)
{
    for (const QJsonValue element : array) {
        if (!element.isDouble())
            return false;
        sections.push_back(truncateToUInt32(element.toDouble(0.0)));
    }
    return true;
}

} // namespace

// Below, an array of another type counts as empty.

bool fillZone(Zone &zone, const QJsonObject &object, const ZonesTable &keys)
{
    return readFields(zone, object, keys, ZoneFields::documentOrder);
}

bool fillSection(Section &section, const QJsonObject &object, const SectionKeys &keys)
{
    return readFields(section, object, keys, SectionFields::documentOrder)
        && readObjects(section.zones, object.value(keys.zones.key).toArray(), fillZone, keys.zone);
}

bool fillDeviceUser(DeviceUser &user, const QJsonObject &object, const DeviceUsersTable &keys)
{
    return readFields(user, object, keys, DeviceUserFields::tableOrder)
        && readSectionNumbers(user.sections, object.value(keys.sections.key).toArray());
}

bool fillDevice(Device &device, const QJsonObject &object, const DeviceKeys &keys)
{
    return readFields(device, object, keys, DeviceFields::tableOrder)
        && readObjects(device.sections, object.value(keys.sections.key).toArray(), fillSection, keys.section)
        && readObjects(device.users, object.value(keys.users.key).toArray(), fillDeviceUser, keys.user);
}

} // namespace brimlet
