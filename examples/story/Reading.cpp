#include "Story.h"

#include "support/Calls.h"
#include "support/Print.h"
#include "support/Views.h"

#include <iostream>

namespace example {
namespace {

constexpr uint32_t contractShown = 2010;

void showNameAndAddress()
{
    printHeading("getSiteNameAndAddress: only two texts of a site");
    uint16_t *nameOut = nullptr;
    uint16_t *addressOut = nullptr;
    expect("getSiteNameAndAddress", getSiteNameAndAddress(&nameOut, &addressOut, siteUpdated));
    const Owned<uint16_t> name(nameOut);
    const Owned<uint16_t> address(addressOut);
    std::cout << shown(name.get()) << ", " << shown(address.get()) << '\n';
}

template<class Flat>
Row findRow(const std::string &name, Finder<Flat> function, const std::string &key, const std::string &value)
{
    return {name, key, value, std::to_string(getAllBy(name, function, key, value).size())};
}

} // namespace

void showRecords()
{
    printHeading("getUsers: each with a domain and its locale");
    printUsers(getAll("getUsers", getUsers), 10);

    printHeading("getOrganizations: each with a contact person");
    printOrganizations(getAll("getOrganizations", getOrganizations), 8);

    printHeading("getContract: with everything it refers to");
    printContract(*getOne("getContract", getContract, contractShown));

    printHeading("getDevice: with everything in it");
    printDevice(*getOne("getDevice", getDevice, deviceRemoved));

    showNameAndAddress();
}

void lookUp()
{
    printHeading("get...WithParams: searching by a field");
    printTable({"call", "key", "value", "found"},
               {
                   findRow("getUsersWithParams", getUsersWithParams, "domain", "10"),
                   findRow("getUsersWithParams", getUsersWithParams, "name", "𠮷田 葵"),
                   findRow("getUsersWithParams", getUsersWithParams, "login", "a.ohara"),
                   findRow("getUsersWithParams", getUsersWithParams, "login", "A.OHara"),
                   findRow("getContractsWithParams", getContractsWithParams, "status", "3"),
                   findRow("getDevicesWithParams", getDevicesWithParams, "account", "4107"),
                   findRow("getSitesWithParams", getSitesWithParams, "is_crossing", "1"),
               });
    std::cout << "The value is always a text, and the field must equal it: no patterns, no case folding.\n";
}

} // namespace example
