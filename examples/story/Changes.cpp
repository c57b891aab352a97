#include "Story.h"

#include "support/Calls.h"
#include "support/Print.h"
#include "support/Views.h"

#include <iostream>

namespace example {
namespace {

namespace fs = std::filesystem;

constexpr uint32_t contractUpdated = 2012;
constexpr uint32_t organizationUpdated = 6;

template<class Flat>
using GetById = uint32_t (*)(Flat **record, uint32_t id);

template<class Flat>
void showUpdate(const std::string &getName, GetById<Flat> get, uint32_t id, const std::string &updateName,
                Exchanger<Flat> update, const fs::path &document)
{
    printHeading(updateName + ": what it changes in " + std::to_string(id));
    const Owned<Flat> before = getOne(getName, get, id);
    const Owned<Flat> after = exchange(updateName, update, readDocument(document));
    printChanges(fieldsOf(*before), fieldsOf(*after));
}

// getEvents returns only the events of known devices.
uint32_t countEventsAround(const std::string &when)
{
    const uint32_t count = countEvents();
    std::cout << "Events in the journal " << when << ": " << count << '\n';
    return count;
}

} // namespace

void updateRecords(const fs::path &data)
{
    showUpdate("getSite", getSite, siteUpdated, "updateSite", updateSite, data / "update_site.json");
    showUpdate("getContract", getContract, contractUpdated, "updateContract", updateContract,
               data / "update_contract.json");
    showUpdate("getOrganization", getOrganization, organizationUpdated, "updateOrganization", updateOrganization,
               data / "update_organization.json");
    std::cout << "A contact person is replaced as a whole, so the postal code is gone.\n";
}

void removeDevice(const fs::path &data)
{
    printHeading("deleteDevice: " + std::to_string(deviceRemoved) + " is deleted with everything in it");
    const uint32_t before = countEventsAround("before");
    send("deleteDevice", deleteDevice, readDocument(data / "delete_device.json"));
    const uint32_t after = countEventsAround("after");
    std::cout << "Its " << before - after << " events are still stored, but not listed until the device is back.\n";
}

} // namespace example
