// The input is the store's file: launch, every read, one write, exit.
#include "Fuzzer.h"
#include "Input.h"
#include "Library.h"
#include "Walk.h"

#include <algorithm>
#include <cstdio>
#include <initializer_list>

using namespace brimlet::fuzz;

namespace {

const char *const fileName = "CacheDb";
const char *const journalName = "CacheDb-journal";

struct Text
{
    const char16_t *units;
    uint32_t length;
    const uint16_t *data() const { return reinterpret_cast<const uint16_t *>(units); }
};

template<size_t Size>
constexpr Text text(const char16_t (&literal)[Size])
{
    return {literal, static_cast<uint32_t>(Size - 1)};
}

constexpr Text idKey = text(u"id");
constexpr Text organizationIdKey = text(u"org_id");
constexpr Text one = text(u"1");
constexpr Text event = text(u"{\"D\":{\"id\":1,\"time\":1,\"device\":1,\"affect\":1}}");

void answers(uint32_t code, std::initializer_list<uint32_t> allowed)
{
    require(std::find(allowed.begin(), allowed.end(), code) != allowed.end(), "the answer is one of the family's");
}

template<class Flat, class... Numbers>
void get(uint32_t (*function)(Flat **, Numbers...), Numbers... numbers)
{
    answers(got(function, numbers...), {0, 7, 8});
}

template<class Flat, class... Numbers>
void list(uint32_t (*function)(Flat **, uint32_t *, Numbers...), Numbers... numbers)
{
    answers(listed(function, numbers...), {0, 7, 8});
}

template<class Flat, class... Numbers>
void find(uint32_t (*function)(Flat **, uint32_t *, const uint16_t *, uint32_t, const uint16_t *, uint32_t, Numbers...),
          const Text &key, Numbers... numbers)
{
    answers(listed(function, key.data(), key.length, one.data(), one.length, numbers...), {0, 7, 8});
}

// The records of the seeds have the id 1.
void readEach()
{
    get(getLocale, 1u);
    get(getDomain, 1u);
    get(getUser, 1u);
    get(getOrganization, 1u);
    get(getContractor, 1u);
    get(getContract, 1u);
    get(getDevice, 1u);
    get(getSection, 1u, 1u);
    get(getZone, 1u, 1u, 1u);
    get(getSite, 1u);
}

void readAll()
{
    list(getLocales);
    list(getDomains);
    list(getUsers);
    list(getOrganizations);
    list(getContractors);
    list(getContracts);
    list(getDevices);
    list(getSections, 1u);
    list(getZones, 1u);
    list(getZonesForSection, 1u, 1u);
    list(getSites);
    list(getEvents, 0u, UINT32_MAX);
    list(getAffectEvents);
}

void search()
{
    find(getLocalesWithParams, idKey);
    find(getDomainsWithParams, idKey);
    find(getUsersWithParams, idKey);
    find(getOrganizationsWithParams, organizationIdKey);
    find(getContractorsWithParams, idKey);
    find(getContractsWithParams, idKey);
    find(getDevicesWithParams, idKey);
    find(getSectionsWithParams, idKey, 1u);
    find(getZonesWithParams, idKey, 1u);
    find(getZonesForSectionWithParams, idKey, 1u, 1u);
    find(getSitesWithParams, idKey);
}

void readTexts()
{
    uint16_t *address = nullptr;
    answers(getServerIp(&address), {0, 7});
    walkAndFree(address);
    uint16_t *siteName = nullptr;
    uint16_t *siteAddress = nullptr;
    answers(getSiteNameAndAddress(&siteName, &siteAddress, 1), {0, 7, 8});
    walkAndFree(siteName);
    walkAndFree(siteAddress);
}

void write()
{
    answers(got(addEvent, event.data(), event.length), {0, 8, 9});
}

// The input was replaced, and all such files are alike: one read and one write are enough.
void isEmpty()
{
    answers(listed(getUsers), {7});
    answers(got(addEvent, event.data(), event.length), {9});
}

void put(const uint8_t *data, size_t size)
{
    std::remove(journalName);
    std::FILE *file = std::fopen(fileName, "wb");
    require(file != nullptr, "the file can be made");
    require(std::fwrite(data, 1, size, file) == size, "the file takes all bytes");
    require(std::fclose(file) == 0, "the file is whole");
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    quietly();
    withoutLocks();
    static const Directory directory;
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    put(data, size);
    const Library library;
    const uint32_t result = getLaunchCacheResult();
    answers(result, {0, 101, 102, 103});
    if (result != BRIMLET_LAUNCH_OPENED) {
        isEmpty();
        return 0;
    }
    readEach();
    readAll();
    search();
    readTexts();
    write();
    return 0;
}
