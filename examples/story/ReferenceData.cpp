#include "Story.h"

#include "support/Calls.h"
#include "support/Print.h"

#include <functional>
#include <iostream>

namespace example {
namespace {

// A kind of reference data: the document with the records, the call that adds them, and how many the store holds.
struct Kind
{
    std::string file;
    std::string addName;
    Sender add;
    std::function<uint32_t()> count;
};

template<class Flat>
std::function<uint32_t()> counter(const std::string &name, uint32_t (*function)(Flat **, uint32_t *))
{
    return [=] { return getAll(name, function).size(); };
}

const std::vector<Kind> &kinds()
{
    static const std::vector<Kind> all{
        {"locales.json", "addLocales", addLocales, counter("getLocales", getLocales)},
        {"domains.json", "addDomains", addDomains, counter("getDomains", getDomains)},
        {"organizations.json", "addOrganizations", addOrganizations, counter("getOrganizations", getOrganizations)},
        {"users.json", "addUsers", addUsers, counter("getUsers", getUsers)},
        {"contractors.json", "addContractors", addContractors, counter("getContractors", getContractors)},
        {"contracts.json", "addContracts", addContracts, counter("getContracts", getContracts)},
        {"devices.json", "addDevices", addDevices, counter("getDevices", getDevices)},
        {"sites.json", "addSites", addSites, counter("getSites", getSites)},
    };
    return all;
}

std::string serverAddress()
{
    const Owned<uint16_t> address = getOne("getServerIp", getServerIp);
    return shown(address.get());
}

} // namespace

void loadReferenceData(const std::filesystem::path &data)
{
    printHeading("Reference data: the client sends documents, the library stores rows");
    std::vector<Row> rows;
    for (const Kind &kind : kinds()) {
        const Utf16 json = readDocument(data / kind.file);
        const uint32_t result = kind.add(json.data(), unitsOf(json));
        expect(kind.addName, result);
        rows.push_back({kind.file, kind.addName, describeResult(result), std::to_string(kind.count())});
    }
    printTable({"document", "call", "answer", "in the store"}, rows);
    std::cout << "Sites contain devices: getDevices returns " << getAll("getDevices", getDevices).size()
              << " by now.\n";
}

void rememberServer()
{
    printHeading("Server address: setServerIp, getServerIp");
    std::cout << "before: " << serverAddress() << '\n';
    const Utf16 address = toUtf16("monitoring.example.net:7443");
    expect("setServerIp", setServerIp(address.data(), unitsOf(address)));
    std::cout << "after: " << serverAddress() << '\n';
}

void printCounts()
{
    std::vector<Row> rows;
    for (const Kind &kind : kinds())
        rows.push_back({kind.file.substr(0, kind.file.find('.')), std::to_string(kind.count())});
    rows.push_back({"events", std::to_string(countEvents())});
    rows.push_back({"server address", serverAddress()});
    printTable({"what", "in the store"}, rows);
}

} // namespace example
