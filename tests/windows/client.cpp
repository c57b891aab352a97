// A client for Windows, from launch to exit. It knows the header's types and the names of the functions, and nothing
// else of the library: no Qt, no import library, no DLL of the compiler.
// usage: windows_client LIBRARY DATA VERSION     the DLL, the example's documents, and the version in the DLL
#include "brimlet.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <objbase.h>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>
#include <windows.h>

namespace {

namespace fs = std::filesystem;

void require(bool holds, const std::string &what)
{
    if (!holds)
        throw std::runtime_error(what);
}

// ---- The library ----

HMODULE library = nullptr;

void load(const fs::path &name)
{
    // Searches its DLLs in its own folder, not in the program's. This requires a full path.
    library = name.has_parent_path() ? LoadLibraryExW(name.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH)
                                     : LoadLibraryW(name.c_str());
    require(library != nullptr, "LoadLibrary " + name.string() + ", error " + std::to_string(GetLastError()));
}

template<class Function>
Function *find(const char *name)
{
    const FARPROC found = GetProcAddress(library, name);
    require(found != nullptr, std::string("GetProcAddress ") + name);
    return reinterpret_cast<Function *>(reinterpret_cast<void *>(found));
}

// CALL(getUser)(&user, 7) calls the library's function of that name.
#define CALL(name) find<decltype(name)>(#name)

void expect(const char *name, uint32_t result, uint32_t expected = BRIMLET_DONE)
{
    require(result == expected,
            std::string(name) + " answers " + std::to_string(result) + ", not " + std::to_string(expected));
}

std::string versionOf(HMODULE module)
{
    std::wstring path(MAX_PATH, L'\0');
    path.resize(GetModuleFileNameW(module, path.data(), MAX_PATH));
    std::vector<char> block(GetFileVersionInfoSizeW(path.c_str(), nullptr));
    void *found = nullptr;
    UINT size = 0;
    require(!block.empty() && GetFileVersionInfoW(path.c_str(), 0, static_cast<DWORD>(block.size()), block.data())
                && VerQueryValueW(block.data(), L"\\", &found, &size),
            "the version resource");
    const auto *fixed = static_cast<const VS_FIXEDFILEINFO *>(found);
    return std::to_string(HIWORD(fixed->dwFileVersionMS)) + "." + std::to_string(LOWORD(fixed->dwFileVersionMS)) + "."
         + std::to_string(HIWORD(fixed->dwFileVersionLS));
}

// ---- Texts ----

// Of Windows' own kind: UTF-16.
std::wstring wide(const std::string &utf8)
{
    const int size = static_cast<int>(utf8.size());
    std::wstring text(static_cast<size_t>(MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, nullptr, 0)), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, text.data(), static_cast<int>(text.size()));
    return text;
}

const uint16_t *units(const std::wstring &text)
{
    return reinterpret_cast<const uint16_t *>(text.data());
}

uint32_t count(const std::wstring &text)
{
    return static_cast<uint32_t>(text.size());
}

bool holds(const uint16_t *text, const std::wstring &expected)
{
    return text && reinterpret_cast<const wchar_t *>(text) == expected;
}

std::wstring document(const fs::path &file)
{
    std::ifstream stream(file, std::ios::binary);
    require(stream.is_open(), "cannot read " + file.string());
    return wide(std::string(std::istreambuf_iterator<char>(stream), {}));
}

// ---- The story ----

fs::path data;

class Session
{
public:
    Session() : thread(CALL(launchCache))
    {
        while (CALL(getState)() != BRIMLET_STATE_RUNNING)
            Sleep(1);
    }
    ~Session()
    {
        CALL(exitCache)();
        thread.join();
    }
    Session(const Session &) = delete;
    Session &operator=(const Session &) = delete;

private:
    std::thread thread;
};

void addReferenceData()
{
    using Add = uint32_t(const uint16_t *, uint32_t);
    const std::pair<const char *, Add *> kinds[] = {
        {"locales.json", CALL(addLocales)},
        {"domains.json", CALL(addDomains)},
        {"organizations.json", CALL(addOrganizations)},
        {"users.json", CALL(addUsers)},
        {"contractors.json", CALL(addContractors)},
        {"contracts.json", CALL(addContracts)},
        {"devices.json", CALL(addDevices)},
        {"sites.json", CALL(addSites)},
        {"add_device.json", CALL(addDevice)},
    };
    for (const auto &[name, add] : kinds) {
        const std::wstring json = document(data / name);
        expect(name, add(units(json), count(json)));
    }
}

// An array is returned with its count and released with it.
template<class Flat, class... Arguments>
uint32_t countAll(const char *name, uint32_t (*get)(Flat **, uint32_t *, Arguments...),
                  uint32_t (*freeAll)(Flat *, uint32_t), Arguments... arguments)
{
    Flat *records = nullptr;
    uint32_t length = 0;
    expect(name, get(&records, &length, arguments...));
    expect("the array's free function", freeAll(records, length));
    return length;
}

void countRecords()
{
    require(countAll("getLocales", CALL(getLocales), CALL(freeLocalesArray)) == 12, "12 locales");
    require(countAll("getDomains", CALL(getDomains), CALL(freeDomainsArray)) == 15, "15 domains");
    require(countAll("getOrganizations", CALL(getOrganizations), CALL(freeOrganizationsArray)) == 30,
            "30 organizations");
    require(countAll("getUsers", CALL(getUsers), CALL(freeUsersArray)) == 300, "300 users");
    require(countAll("getContractors", CALL(getContractors), CALL(freeContractorsArray)) == 40, "40 contractors");
    require(countAll("getContracts", CALL(getContracts), CALL(freeContractsArray)) == 80, "80 contracts");
    require(countAll("getDevices", CALL(getDevices), CALL(freeDevicesArray)) == 47,
            "47 devices, some of them by way of their sites");
    require(countAll("getSites", CALL(getSites), CALL(freeSitesArray)) == 40, "40 sites");
}

void keepPlainTexts()
{
    const std::wstring address = L"\u0434\u043e\u043c.example \U0001f600";
    expect("setServerIp", CALL(setServerIp)(units(address), count(address)));
    uint16_t *text = nullptr;
    expect("getServerIp", CALL(getServerIp)(&text));
    require(holds(text, address), "the address");
    CoTaskMemFree(text);

    uint16_t *name = nullptr;
    uint16_t *siteAddress = nullptr;
    expect("getSiteNameAndAddress", CALL(getSiteNameAndAddress)(&name, &siteAddress, 301));
    require(holds(name, L"Chandlery, Halvermoor"), "the site's name");
    require(holds(siteAddress, L"12 Tanner\u2019s Row, Halvermoor"), "the site's address");
    CoTaskMemFree(name);
    CoTaskMemFree(siteAddress);
}

// The library may free what this side has allocated, and the other way round: the allocator is the same.
void exchangeBlocks()
{
    auto *user = static_cast<FlatUser *>(CoTaskMemAlloc(sizeof(FlatUser)));
    require(user != nullptr, "CoTaskMemAlloc");
    *user = FlatUser{};
    user->phone = static_cast<uint64_t *>(CoTaskMemAlloc(sizeof(uint64_t)));
    expect("freeUser", CALL(freeUser)(user));

    FlatLocale *locale = nullptr;
    expect("getLocale", CALL(getLocale)(&locale, 7));
    require(holds(locale->iso, L"ru-RU"), "the locale");
    CoTaskMemFree(locale->iso);
    CoTaskMemFree(locale->description);
    CoTaskMemFree(locale);
}

void lookUp()
{
    const std::wstring key = L"login";
    const std::wstring value = L"a.ohara";
    FlatUser *users = nullptr;
    uint32_t length = 0;
    expect("getUsersWithParams",
           CALL(getUsersWithParams)(&users, &length, units(key), count(key), units(value), count(value)));
    require(length == 1 && users[0].id == 1002 && holds(users[0].name, L"Alice O\u2019Hara"), "the user");
    require(users[0].phone && *users[0].phone == 441632960153, "a number of more than 32 bits");
    expect("freeUsersArray", CALL(freeUsersArray)(users, length));
}

void keepJournal()
{
    std::vector<fs::path> hours(fs::directory_iterator(data / "events"), {});
    std::sort(hours.begin(), hours.end());
    require(hours.size() == 24, "24 hours");
    for (const fs::path &hour : hours) {
        const std::wstring json = document(hour);
        FlatEvent *events = nullptr;
        uint32_t length = 0;
        expect("addEvents", CALL(addEvents)(&events, &length, units(json), count(json)));
        expect("freeEventsArray", CALL(freeEventsArray)(events, length));
    }
    const std::wstring json = document(data / "event.json");
    FlatEvent *event = nullptr;
    expect("addEvent", CALL(addEvent)(&event, units(json), count(json)));
    require(event->id == 501501 && holds(event->data, L"second sensor agrees"), "the event");
    expect("freeEvent", CALL(freeEvent)(event));
    require(countAll("getEvents", CALL(getEvents), CALL(freeEventsArray), uint32_t{0}, UINT32_MAX) == 1501,
            "1501 events");
}

void updateAndRemove()
{
    const std::wstring update = document(data / "update_site.json");
    FlatSite *site = nullptr;
    expect("updateSite", CALL(updateSite)(&site, units(update), count(update)));
    require(site->id == 310 && site->location != nullptr, "the site");
    expect("freeSite", CALL(freeSite)(site));

    const std::wstring removal = document(data / "delete_device.json");
    expect("deleteDevice", CALL(deleteDevice)(units(removal), count(removal)));
    FlatDevice *device = nullptr;
    expect("getDevice", CALL(getDevice)(&device, 104), BRIMLET_NOT_FOUND);
}

void makeMistakes()
{
    const std::wstring noDocument = L"no document";
    expect("addUsers", CALL(addUsers)(units(noDocument), count(noDocument)), BRIMLET_REFUSED);
    const std::wstring incomplete = LR"({"D":{"items":[{"name":"nobody"}]}})";
    expect("addUsers", CALL(addUsers)(units(incomplete), count(incomplete)), BRIMLET_INCOMPLETE);
    FlatUser held{};
    FlatUser *target = &held;
    expect("getUser", CALL(getUser)(&target, 1002), BRIMLET_REFUSED);
    expect("freeUser", CALL(freeUser)(nullptr), BRIMLET_REFUSED);
    expect("freeUsersArray", CALL(freeUsersArray)(nullptr, 0), BRIMLET_REFUSED);
}

void firstSession()
{
    FlatUser *user = nullptr;
    {
        const Session session;
        expect("getLaunchCacheResult", CALL(getLaunchCacheResult)(), BRIMLET_LAUNCH_CREATED);
        addReferenceData();
        countRecords();
        keepPlainTexts();
        exchangeBlocks();
        lookUp();
        keepJournal();
        updateAndRemove();
        makeMistakes();
        std::error_code error;
        require(!fs::remove("CacheDb", error), "an open file is not removed");
        expect("getUser", CALL(getUser)(&user, 1001));
    }
    require(holds(user->name, L"Ottilie Lindqvist"), "a record outlives the session");
    expect("freeUser", CALL(freeUser)(user));
}

void secondSession()
{
    const Session session;
    expect("getLaunchCacheResult", CALL(getLaunchCacheResult)(), BRIMLET_LAUNCH_OPENED);
    require(countAll("getUsers", CALL(getUsers), CALL(freeUsersArray)) == 300, "300 users, again");
    expect("clearAll", CALL(clearAll)());
    FlatUser *user = nullptr;
    expect("getUser", CALL(getUser)(&user, 1001), BRIMLET_NOT_FOUND);
}

// A file that is no store is replaced, unless another program holds it open. The way out is to remove it while nothing
// is launched.
void recovery()
{
    std::ofstream("CacheDb", std::ios::trunc) << "no store";
    {
        const std::ifstream held("CacheDb");
        const Session session;
        expect("getLaunchCacheResult", CALL(getLaunchCacheResult)(), BRIMLET_LAUNCH_REPLACED_VERSION);
        require(fs::file_size("CacheDb") == std::string("no store").size(), "a file that is held stays");
    }
    {
        const Session session;
        expect("getLaunchCacheResult", CALL(getLaunchCacheResult)(), BRIMLET_LAUNCH_REPLACED_VERSION);
        FlatUser *user = nullptr;
        expect("getUser", CALL(getUser)(&user, 1001), BRIMLET_READ_FAILED);
    }
    require(fs::remove("CacheDb"), "the file is removed after the exit");
    const Session session;
    expect("getLaunchCacheResult", CALL(getLaunchCacheResult)(), BRIMLET_LAUNCH_CREATED);
}

// Once loaded, the library stays: unloading it is harmless even while it is launched.
void unload(const fs::path &name)
{
    {
        const Session session;
        require(FreeLibrary(library) != 0, "FreeLibrary");
        require(GetModuleHandleW(name.filename().c_str()) == library, "the library stays in the process");
    }
    load(name);
    const Session session;
    expect("getLaunchCacheResult", CALL(getLaunchCacheResult)(), BRIMLET_LAUNCH_OPENED);
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 4) {
        std::fprintf(stderr, "usage: windows_client LIBRARY DATA VERSION\n");
        return EXIT_FAILURE;
    }
    try {
        fs::path name = argv[1];
        if (name.has_parent_path())
            name = fs::absolute(name).make_preferred();
        data = fs::absolute(argv[2]);
        load(name);
        require(versionOf(library) == argv[3], "the version is " + versionOf(library) + ", not " + argv[3]);
        const fs::path directory =
            fs::temp_directory_path() / ("brimlet-client-" + std::to_string(GetCurrentProcessId()));
        const fs::path before = fs::current_path();
        require(fs::create_directory(directory), "there is a directory to work in");
        fs::current_path(directory);
        firstSession();
        secondSession();
        recovery();
        unload(name);
        fs::current_path(before);
        fs::remove_all(directory);
        std::puts("the client has succeeded");
        return EXIT_SUCCESS;
    } catch (const std::exception &failure) {
        std::fprintf(stderr, "failed: %s\n", failure.what());
        return EXIT_FAILURE;
    }
}
