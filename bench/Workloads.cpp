#include "Workloads.h"

#include "Documents.h"
#include "Exports.h"
#include "FlatTrees.h"

#include <algorithm>

namespace bench {

namespace {

using documents::Equipment;
using documents::Journal;
using documents::Shape;

constexpr Equipment fullEquipment = {200, {8, 8, 4, 3}};
constexpr Shape smallShape = {4, 4, 2, 2};

// The standing events come after those that the workloads add, and their flag keeps them from being cleared, so that
// the added ones can be taken away again.
constexpr uint32_t addedTime = 1500000000, standingTime = 1600000000;
constexpr Journal standing = {1, standingTime, true, 0};

Journal addedBehind(uint32_t standingCount)
{
    return {standingCount + 1, addedTime, false, 0};
}

// ---- Fillings ----

void addDirectory(uint32_t users)
{
    const Text locales = documents::locales(), domains = documents::domains(), people = documents::users(users);
    expectDone(addLocales(units(locales), length(locales)));
    expectDone(addDomains(units(domains), length(domains)));
    expectDone(addUsers(units(people), length(people)));
}

void addEquipment(const Equipment &equipment)
{
    const Text devices = documents::devices(equipment);
    expectDone(addDevices(units(devices), length(devices)));
}

void addJournal(uint32_t count, const Journal &journal)
{
    constexpr uint32_t most = 20000;
    for (uint32_t done = 0; done < count; done += most) {
        const uint32_t part = std::min(most, count - done);
        const Journal from = {journal.firstId + done, journal.firstTime + done, journal.affect, journal.extraText};
        const Text events = documents::events(part, from, fullEquipment);
        FlatEvent *stored = nullptr;
        uint32_t storedCount = 0;
        expectDone(addEvents(&stored, &storedCount, units(events), length(events)));
        freeEventsArray(stored, storedCount);
    }
}

std::string sized(const char *what, uint32_t size)
{
    return what + std::to_string(size);
}

Filling journalOf(uint32_t count, const Journal &journal = standing)
{
    const std::string kind = journal.affect ? "" : sized("clearable", static_cast<uint32_t>(journal.extraText));
    return {sized("events", count) + kind, [=] {
                addDirectory(documents::operators);
                addEquipment(fullEquipment);
                addJournal(count, journal);
            }};
}

Filling devicesOf(const Equipment &equipment)
{
    return {sized("devices", equipment.devices) + sized("sections", equipment.shape.sections), [=] {
                addDirectory(documents::operators);
                addEquipment(equipment);
            }};
}

Filling usersOf(uint32_t count)
{
    return {sized("users", count), [=] { addDirectory(count); }};
}

Filling sitesOf(uint32_t count)
{
    return {sized("sites", count), [=] {
                addDirectory(documents::operators);
                const Text contractors = documents::contractors(), contracts = documents::contracts();
                expectDone(addContractors(units(contractors), length(contractors)));
                expectDone(addContracts(units(contracts), length(contracts)));
                const Text sites = documents::sites(count);
                expectDone(addSites(units(sites), length(sites)));
            }};
}

const Filling nothing = {"nothing", [] {}};

// ---- Shapes of a workload ----

void doNothing(Store &) {}

// A call that gives records.
template<class Call>
Workload giving(const std::string &name, uint32_t size, const Filling &filling, const Call &call)
{
    return {name,
            size,
            filling,
            doNothing,
            [=](Store &store) { call(store); },
            [=](Store &a, Store &b) { return sameRecords(call(a), call(b)); }};
}

// A call that only writes: what it wrote shows in the files.
Workload writing(const std::string &name, uint32_t size, const Filling &filling,
                 const std::function<void(Store &)> &before, const std::function<void(Store &)> &run)
{
    const auto runBoth = [=](Store &a, Store &b) {
        run(a);
        run(b);
        return true;
    };
    return {name, size, filling, before, run, runBoth};
}

// ---- The workloads ----

Workload addEventsTo(const std::string &name, uint32_t size, uint32_t count, uint32_t standingCount)
{
    const Text json = documents::events(count, addedBehind(standingCount), fullEquipment);
    Workload workload =
        giving(name, size, journalOf(standingCount), [=](Store &store) { return store->addEvents(json); });
    workload.before = [](Store &store) { store->clearEventsBeforeDateExceptAffects(standingTime - 1); };
    return workload;
}

Workload addEventTo(const std::string &name, uint32_t size, uint32_t standingCount)
{
    const Text json = documents::oneEvent(addedBehind(standingCount), fullEquipment);
    Workload workload =
        giving(name, size, journalOf(standingCount), [=](Store &store) { return store->addEvent(json); });
    workload.before = [](Store &store) { store->clearEventsBeforeDateExceptAffects(standingTime - 1); };
    return workload;
}

Workload getEventsOf(const std::string &name, uint32_t size, uint32_t rows, uint32_t standingCount)
{
    const uint32_t from = standingTime + standingCount / 2 - rows / 2;
    return giving(name, size, journalOf(standingCount),
                  [=](Store &store) { return store->getEvents(from, from + rows - 1); });
}

Workload clearEventsOf(const std::string &name, uint32_t size, uint32_t count)
{
    Journal clearable = standing;
    clearable.affect = false;
    return writing(
        name, size, journalOf(count, clearable), [](Store &store) { store.restore(store.original); },
        [=](Store &store) { store->clearEventsBeforeDateExceptAffects(standingTime + count / 2); });
}

Workload addDevicesOf(const std::string &name, uint32_t size, const Equipment &equipment)
{
    const Text json = documents::devices(equipment);
    return writing(
        name, size, nothing, [](Store &store) { store->clearAllExceptEvents(); },
        [=](Store &store) { store->addDevices(json); });
}

Workload getDevicesOf(const std::string &name, uint32_t size, const Equipment &equipment)
{
    return giving(name, size, devicesOf(equipment), [](Store &store) { return store->getDevices(); });
}

Workload getDeviceOf(const std::string &name, uint32_t size, const Equipment &equipment)
{
    return giving(name, size, devicesOf(equipment),
                  [=](Store &store) { return store->getDevice(equipment.devices / 2); });
}

Workload addUsersOf(const std::string &name, uint32_t size, uint32_t count)
{
    const Text json = documents::users(count);
    return writing(
        name, size, nothing, [](Store &store) { store->clearAllExceptEvents(); },
        [=](Store &store) { store->addUsers(json); });
}

Workload getUsersOf(const std::string &name, uint32_t size, uint32_t count)
{
    return giving(name, size, usersOf(count), [](Store &store) { return store->getUsers(); });
}

Workload getUserOf(const std::string &name, uint32_t size, uint32_t count)
{
    return giving(name, size, usersOf(count), [=](Store &store) { return store->getUser(count / 2); });
}

Workload updateUserOf(const std::string &name, uint32_t size, uint32_t count)
{
    const Text before = documents::oneUser(count / 2, "Tower 1, gate");
    const Text json = documents::oneUser(count / 2, "Tower 2, gate"); // SQLite writes nothing where nothing changes
    Workload workload = giving(name, size, usersOf(count), [=](Store &store) { return store->updateUser(json); });
    workload.before = [=](Store &store) { store->updateUser(before); };
    return workload;
}

Workload getUsersByLoginOf(const std::string &name, uint32_t size, uint32_t count)
{
    const std::string login = sized("login", count / 2);
    const Text value(login.begin(), login.end());
    return giving(name, size, usersOf(count), [=](Store &store) { return store->getUsersByLogin(value); });
}

Workload getSitesOf(const std::string &name, uint32_t size, uint32_t count)
{
    return giving(name, size, sitesOf(count), [](Store &store) { return store->getSites(); });
}

Workload getSiteOf(const std::string &name, uint32_t size, uint32_t count)
{
    return giving(name, size, sitesOf(count), [=](Store &store) { return store->getSite(count / 2 + 1); });
}

// 50,000 events of 2,000 characters make a file of about 100 MB.
const Filling bigFile = journalOf(50000, {1, standingTime, false, 2000});

} // namespace

std::vector<Workload> comparedWorkloads()
{
    constexpr uint32_t journal = 10000, users = 10000, sites = 5000;
    return {
        addEventsTo("addEvents of 1,000", 0, 1000, journal),
        addEventsTo("addEvents of 20,000", 0, 20000, journal),
        addEventTo("addEvent", 0, journal),
        getEventsOf("getEvents returning 1,000", 0, 1000, 100000),
        getEventsOf("getEvents returning 100,000", 0, 100000, 100000),
        addDevicesOf("addDevices of 200", 0, fullEquipment),
        getDevicesOf("getDevices of 200", 0, fullEquipment),
        getDeviceOf("getDevice", 0, fullEquipment),
        addUsersOf("addUsers of 10,000", 0, users),
        getUsersOf("getUsers of 10,000", 0, users),
        getUserOf("getUser", 0, users),
        updateUserOf("updateUser", 0, users),
        getUsersByLoginOf("getUsersWithParams, 1 of 10,000", 0, users),
        getSitesOf("getSites of 5,000", 0, sites),
        getSiteOf("getSite", 0, sites),
        clearEventsOf("clearEventsBeforeDateExceptAffects, half of 100,000", 0, 100000),
        writing(
            "launch, fresh directory", 0, nothing, [](Store &store) { store.removeFile(); },
            [](Store &store) { store.open(); }),
        writing(
            "launch, file of 100 MB", 0, bigFile, [](Store &store) { store.close(); },
            [](Store &store) { store.open(); }),
    };
}

std::vector<Workload> scaledWorkloads(const Limits &limits)
{
    std::vector<Workload> workloads;
    for (uint32_t size = 10000; size <= limits.events; size *= 10) {
        workloads.push_back(addEventsTo("addEvents of 1,000", size, 1000, size));
        workloads.push_back(addEventTo("addEvent", size, size));
        workloads.push_back(getEventsOf("getEvents returning 1,000", size, 1000, size));
        workloads.push_back(getEventsOf("getEvents, all", size, size, size));
        workloads.push_back(clearEventsOf("clearEventsBeforeDateExceptAffects, half", size, size));
    }
    for (uint32_t size = 100; size <= limits.devices; size *= 10) {
        const Equipment equipment = {size, smallShape};
        workloads.push_back(addDevicesOf("addDevices, all", size, equipment));
        workloads.push_back(getDevicesOf("getDevices, all", size, equipment));
        workloads.push_back(getDeviceOf("getDevice", size, equipment));
    }
    for (uint32_t size = 1000; size <= 100000; size *= 10) {
        workloads.push_back(addUsersOf("addUsers, all", size, size));
        workloads.push_back(getUsersOf("getUsers, all", size, size));
        workloads.push_back(getUserOf("getUser", size, size));
        workloads.push_back(updateUserOf("updateUser", size, size));
        workloads.push_back(getUsersByLoginOf("getUsersWithParams, 1 of all", size, size));
    }
    for (uint32_t size = 1000; size <= 100000; size *= 10) {
        workloads.push_back(getSitesOf("getSites, all", size, size));
        workloads.push_back(getSiteOf("getSite", size, size));
    }
    return workloads;
}

} // namespace bench
