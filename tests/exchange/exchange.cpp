// Writes a store from the example's documents, or prints a whole store: what the functions return, and then every value
// of the file as stored.
// usage: exchange write DIRECTORY DATA
//        exchange show DIRECTORY
#include "Shown.h"

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>

namespace {

using namespace brimlet::test;
namespace fs = std::filesystem;

void require(bool holds, const std::string &what)
{
    if (!holds)
        throw std::runtime_error(what);
}

// ---- Writing ----

std::string read(const fs::path &file)
{
    std::ifstream stream(file, std::ios::binary);
    require(stream.is_open(), "cannot read " + file.string());
    return std::string(std::istreambuf_iterator<char>(stream), {});
}

void writeReferenceData(const fs::path &data)
{
    using Add = uint32_t (*)(const uint16_t *, uint32_t);
    const std::pair<const char *, Add> kinds[] = {
        {"locales.json", addLocales},
        {"domains.json", addDomains},
        {"organizations.json", addOrganizations},
        {"users.json", addUsers},
        {"contractors.json", addContractors},
        {"contracts.json", addContracts},
        {"devices.json", addDevices},
        {"sites.json", addSites},
        {"add_device.json", addDevice},
    };
    for (const auto &[name, add] : kinds)
        require(send(add, read(data / name)) == BRIMLET_DONE, name);
}

void writeEvents(const fs::path &data)
{
    std::vector<fs::path> files(fs::directory_iterator(data / "events"), {});
    std::sort(files.begin(), files.end());
    for (const fs::path &file : files) {
        const uint32_t code = listAdded(read(file)).code;
        require(code == BRIMLET_DONE || code == BRIMLET_NOT_FOUND, file.string());
    }
}

// Beyond the documents of the example: every plane of Unicode, and numbers at their limits.
void writeRareValues()
{
    require(send(setServerIp, "дом.example ☎ 😀") == BRIMLET_DONE, "the address");
    require(send(addUsers, R"({"D":{"items":[{"id":4294967295,"name":"","login":"Ærøskøbing 東京 😀\u0001",)"
                           R"("phone":9007199254740991}]}})")
                == BRIMLET_DONE,
            "a user");
    require(send(addSites, R"({"D":{"items":[{"id":4000000000,"name":"a","location":)"
                           R"({"lat":-89.99999999999999,"lon":1e-300}}]}})")
                == BRIMLET_DONE,
            "a site");
}

void write(const fs::path &data)
{
    const Library library;
    require(getLaunchCacheResult() == BRIMLET_LAUNCH_CREATED, "the file is not new");
    writeReferenceData(data);
    writeEvents(data);
    writeRareValues();
}

// ---- Showing ----

template<class Flat, class... Arguments>
void showList(const char *name, uint32_t (*function)(Flat **, uint32_t *, Arguments...), Arguments... arguments)
{
    const List<Flat> records = list(function, arguments...);
    require(records.code == BRIMLET_DONE, name);
    std::cout << "== " << name << ", " << records.size() << " records\n";
    for (const auto &[id, record] : showAll(records))
        for (const auto &[field, text] : record)
            std::cout << id << ' ' << field << ": " << text << '\n';
}

void showRecords()
{
    const Library library;
    require(getLaunchCacheResult() == BRIMLET_LAUNCH_OPENED, "the file does not open");
    showList("Locales", getLocales);
    showList("Domains", getDomains);
    showList("Organizations", getOrganizations);
    showList("Users", getUsers);
    showList("Contractors", getContractors);
    showList("Contracts", getContracts);
    showList("Devices", getDevices);
    showList("Sites", getSites);
    showList("Events", getEvents, uint32_t{0}, UINT32_MAX);
    uint16_t *address = nullptr;
    require(getServerIp(&address) == BRIMLET_DONE, "the address");
    std::cout << "== Address: " << utf8(Owned<uint16_t>(address).get()).value() << '\n';
}

void showFile()
{
    const File file;
    for (const Row &table : file.rows("SELECT name, sql FROM sqlite_master WHERE type = 'table' ORDER BY rowid")) {
        std::cout << "== " << table[1].value() << '\n';
        std::string values;
        for (const Row &column : file.rows("SELECT name FROM pragma_table_info('" + *table[0] + "')"))
            values += (values.empty() ? "quote(" : "||','||quote(") + *column[0] + ")";
        for (const Row &row : file.rows("SELECT " + values + " FROM " + *table[0] + " ORDER BY rowid"))
            std::cout << row[0].value() << '\n';
    }
}

} // namespace

int main(int argc, char **argv)
{
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    try {
        if (arguments.size() == 3 && arguments[0] == "write") {
            const fs::path data = fs::absolute(arguments[2]);
            fs::current_path(arguments[1]);
            write(data);
            return EXIT_SUCCESS;
        }
        if (arguments.size() == 2 && arguments[0] == "show") {
            fs::current_path(arguments[1]);
            showRecords();
            showFile();
            return EXIT_SUCCESS;
        }
        std::cerr << "usage: exchange write DIRECTORY DATA\n       exchange show DIRECTORY\n";
    } catch (const std::exception &failure) {
        std::cerr << "exchange: " << failure.what() << '\n';
    }
    return EXIT_FAILURE;
}
