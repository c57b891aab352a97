#include "controller/Controller.h"
#include "controller/Outcome.h"
#include "json/KeyMaps.h"

namespace brimlet::controller {

BrimletResult Controller::addDevice(std::optional<Device> &device)
{
    return writeResult(database->addDevice(device), device);
}

BrimletResult Controller::addDevices(const std::vector<Device> &devices)
{
    return writeResult(database->addDevices(devices));
}

BrimletResult Controller::updateDeviceFw(std::optional<Device> &device)
{
    return writeResult(database->updateDeviceFw(device), device);
}

BrimletResult Controller::deleteDevice(quint32 id)
{
    std::optional<Device> device;
    if (const BrimletResult target = readResult(database->getDevice(device, id), device))
        return target;
    return writeResult(database->deleteDevice(id));
}

BrimletResult Controller::getDevice(std::optional<Device> &device, quint32 id)
{
    return readResult(database->getDevice(device, id), device);
}

BrimletResult Controller::getDevices(std::vector<Device> &devices)
{
    return readResult(database->getDevices(devices), devices);
}

BrimletResult Controller::getDevicesWithParams(std::vector<Device> &devices, const QString &key, const QString &value)
{
    QString column;
    if (!deviceColumnForKey(column, key))
        return BRIMLET_REFUSED;
    return readResult(database->getDevicesByField(devices, column, value), devices);
}

} // namespace brimlet::controller
