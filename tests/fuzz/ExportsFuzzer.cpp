// The exported functions over a live store. An input is a series of calls; a call is a byte that chooses the function,
// and its arguments, texts and numbers in digits (Input.h). Each input finds the store empty, and whatever a call
// returns is read and released.
#include "Fuzzer.h"
#include "Input.h"
#include "Library.h"
#include "Walk.h"

#include <algorithm>
#include <functional>
#include <initializer_list>
#include <optional>

using namespace brimlet::fuzz;

namespace {

// ---- Arguments ----

class Arguments
{
public:
    explicit Arguments(const Bytes &bytes) : parts(split(bytes, endOfArgument)) {}
    // A missing argument is an empty text or 0.
    Units text(size_t place) const { return Units(at(place)); }
    uint32_t number(size_t place) const { return toNumber(at(place)); }

private:
    Bytes at(size_t place) const { return place < parts.size() ? parts[place] : Bytes(); }

    std::vector<Bytes> parts;
};

using Call = std::function<void(const Arguments &)>;

void answers(uint32_t code, std::initializer_list<uint32_t> allowed)
{
    require(std::find(allowed.begin(), allowed.end(), code) != allowed.end(), "the answer is one of the family's");
}

// ---- Families. The store is intact, so no call may return 7 or 9. ----

Call sent(uint32_t (*function)(const uint16_t *, uint32_t))
{
    return [=](const Arguments &given) {
        const Units json = given.text(0);
        answers(function(json.data(), json.length()), {0, 5, 8, 10});
    };
}

// Also addEvent and removeAffectFlag.
template<class Flat>
Call updated(uint32_t (*function)(Flat **, const uint16_t *, uint32_t))
{
    return [=](const Arguments &given) {
        const Units json = given.text(0);
        answers(got(function, json.data(), json.length()), {0, 5, 8, 10, 11});
    };
}

Call listedAdded(uint32_t (*function)(FlatEvent **, uint32_t *, const uint16_t *, uint32_t))
{
    return [=](const Arguments &given) {
        const Units json = given.text(0);
        answers(listed(function, json.data(), json.length()), {0, 5, 8, 10});
    };
}

template<class Flat, class... Numbers, size_t... Places>
Call gotBy(uint32_t (*function)(Flat **, Numbers...), std::index_sequence<Places...>)
{
    return [=](const Arguments &given) { answers(got(function, Numbers{given.number(Places)}...), {0, 8}); };
}
template<class Flat, class... Numbers>
Call gotBy(uint32_t (*function)(Flat **, Numbers...))
{
    return gotBy(function, std::index_sequence_for<Numbers...>());
}

template<class Flat, class... Numbers, size_t... Places>
Call listedBy(uint32_t (*function)(Flat **, uint32_t *, Numbers...), std::index_sequence<Places...>)
{
    return [=]([[maybe_unused]] const Arguments &given) {
        answers(listed(function, Numbers{given.number(Places)}...), {0, 8});
    };
}
template<class Flat, class... Numbers>
Call listedBy(uint32_t (*function)(Flat **, uint32_t *, Numbers...))
{
    return listedBy(function, std::index_sequence_for<Numbers...>());
}

template<class Flat, class... Numbers, size_t... Places>
Call found(uint32_t (*function)(Flat **, uint32_t *, const uint16_t *, uint32_t, const uint16_t *, uint32_t,
                                Numbers...),
           std::index_sequence<Places...>)
{
    return [=](const Arguments &given) {
        const Units key = given.text(0);
        const Units value = given.text(1);
        answers(listed(function, key.data(), key.length(), value.data(), value.length(),
                       Numbers{given.number(2 + Places)}...),
                {0, 8, 10});
    };
}
template<class Flat, class... Numbers>
Call found(uint32_t (*function)(Flat **, uint32_t *, const uint16_t *, uint32_t, const uint16_t *, uint32_t,
                                Numbers...))
{
    return found(function, std::index_sequence_for<Numbers...>());
}

// ---- Functions without a family ----

void clearOldEvents(const Arguments &given)
{
    answers(clearEventsBeforeDateExceptAffects(given.number(0)), {0});
}

void clearEverything(const Arguments &)
{
    answers(clearAll(), {0});
}

void clearDirectory(const Arguments &)
{
    answers(clearAllExceptEvents(), {0});
}

void rememberAddress(const Arguments &given)
{
    const Units text = given.text(0);
    answers(setServerIp(text.data(), text.length()), {0});
}

void giveAddress(const Arguments &)
{
    uint16_t *address = nullptr;
    answers(getServerIp(&address), {0});
    walkAndFree(address);
}

void giveSiteLabel(const Arguments &given)
{
    uint16_t *name = nullptr;
    uint16_t *address = nullptr;
    answers(getSiteNameAndAddress(&name, &address, given.number(0)), {0, 8});
    walkAndFree(name);
    walkAndFree(address);
}

// The byte of a call chooses by its place in here, which the corpus depends on: new functions go to the end.
const std::vector<Call> &calls()
{
    static const std::vector<Call> all = {
        sent(addLocales),
        sent(addDomains),
        sent(addUsers),
        sent(addOrganizations),
        sent(addContractors),
        sent(addContracts),
        sent(addDevice),
        sent(addDevices),
        sent(addSites),
        updated(addEvent),
        listedAdded(addEvents),
        updated(updateDomain),
        updated(updateUser),
        updated(updateOrganization),
        updated(updateContractor),
        updated(updateContract),
        updated(updateDeviceFw),
        updated(updateSection),
        updated(updateZone),
        updated(updateSite),
        updated(removeAffectFlag),
        sent(deleteDomain),
        sent(deleteUser),
        sent(deleteOrganization),
        sent(deleteContractor),
        sent(deleteContract),
        sent(deleteDevice),
        sent(deleteSection),
        sent(deleteZone),
        sent(deleteSite),
        gotBy(getLocale),
        gotBy(getDomain),
        gotBy(getUser),
        gotBy(getOrganization),
        gotBy(getContractor),
        gotBy(getContract),
        gotBy(getDevice),
        gotBy(getSection),
        gotBy(getZone),
        gotBy(getSite),
        listedBy(getLocales),
        listedBy(getDomains),
        listedBy(getUsers),
        listedBy(getOrganizations),
        listedBy(getContractors),
        listedBy(getContracts),
        listedBy(getDevices),
        listedBy(getSections),
        listedBy(getZones),
        listedBy(getZonesForSection),
        listedBy(getSites),
        listedBy(getEvents),
        listedBy(getAffectEvents),
        found(getLocalesWithParams),
        found(getDomainsWithParams),
        found(getUsersWithParams),
        found(getOrganizationsWithParams),
        found(getContractorsWithParams),
        found(getContractsWithParams),
        found(getDevicesWithParams),
        found(getSectionsWithParams),
        found(getZonesWithParams),
        found(getZonesForSectionWithParams),
        found(getSitesWithParams),
        clearOldEvents,
        clearEverything,
        clearDirectory,
        rememberAddress,
        giveAddress,
        giveSiteLabel,
    };
    return all;
}

constexpr size_t firstWithoutWrite = 30; // getLocale: the calls before it may write rows
constexpr size_t callsInInput = 24;      // a longer series finds nothing that this one does not

struct Launched
{
    Directory directory;
    Library library;
};

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    quietly();
    withoutLocks();
    static const Launched launched;
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static bool hasRows = false;
    if (hasRows)
        clearEverything(Arguments({}));
    hasRows = false;

    const std::vector<Bytes> parts = split({data, size}, endOfCall);
    for (size_t i = 0; i < std::min(parts.size(), callsInInput); ++i) {
        if (parts[i].size == 0)
            continue;
        const size_t choice = parts[i].data[0] % calls().size();
        calls()[choice](Arguments(parts[i].behind(1)));
        hasRows = hasRows || choice < firstWithoutWrite;
    }
    return 0;
}
