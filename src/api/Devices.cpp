#include "api/DeviceFlat.h"
#include "api/Families.h"

using namespace brimlet;

uint32_t addDevice(const uint16_t *json, uint32_t length)
{
    std::optional<Device> device;
    if (const BrimletResult refused = documents::addDevice.read(documentText(json, length), device))
        return refused;
    return instance()->addDevice(device); // the stored device is not returned
}

uint32_t addDevices(const uint16_t *json, uint32_t length)
{
    return addRecords(json, length, documents::addDevices, &Controller::addDevices);
}

uint32_t updateDeviceFw(FlatDevice **device, const uint16_t *json, uint32_t length)
{
    return updateRecord(device, json, length, documents::updateDeviceFw, &Controller::updateDeviceFw);
}

uint32_t deleteDevice(const uint16_t *json, uint32_t length)
{
    return deleteRecord(json, length, documents::deleteDevice, &Controller::deleteDevice);
}

uint32_t getDevice(FlatDevice **device, uint32_t id)
{
    return getRecord(device, &Controller::getDevice, id);
}

uint32_t getDevices(FlatDevice **devices, uint32_t *count)
{
    return getRecords(devices, count, &Controller::getDevices);
}

uint32_t getDevicesWithParams(FlatDevice **devices, uint32_t *count, const uint16_t *key, uint32_t keyLength,
                              const uint16_t *value, uint32_t valueLength)
{
    return getRecordsByField(devices, count, &Controller::getDevicesWithParams, key, keyLength, value, valueLength);
}

uint32_t freeDevice(FlatDevice *device)
{
    return freeRecord<Device>(device);
}

uint32_t freeDevicesArray(FlatDevice *devices, uint32_t count)
{
    return freeRecords<Device>(devices, count);
}
