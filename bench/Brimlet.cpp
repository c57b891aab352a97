// The library, through its exported functions.
#include "Exports.h"
#include "Implementation.h"

#include <chrono>
#include <thread>

namespace bench {

namespace {

// The two kinds of results, each with the library's function to release it.
template<class Flat, uint32_t (*freeRecord)(Flat *), class Call>
Records<Flat> one(const Call &call)
{
    Flat *record = nullptr;
    expectDone(call(&record));
    return {record, 1, [](Flat *given, uint32_t) { freeRecord(given); }};
}

template<class Flat, uint32_t (*freeArray)(Flat *, uint32_t), class Call>
Records<Flat> many(const Call &call)
{
    Flat *records = nullptr;
    uint32_t count = 0;
    expectDone(call(&records, &count));
    return {records, count, [](Flat *given, uint32_t howMany) { freeArray(given, howMany); }};
}

class Brimlet : public Implementation
{
public:
    ~Brimlet() override { close(); }

    const char *name() const override { return "brimlet"; }

    void open(const std::filesystem::path &directory) override
    {
        std::filesystem::current_path(directory);
        thread = std::thread(launchCache);
        while (getState() != BRIMLET_STATE_RUNNING)
            std::this_thread::sleep_for(std::chrono::microseconds(20));
        if (getLaunchCacheResult() != BRIMLET_LAUNCH_OPENED && getLaunchCacheResult() != BRIMLET_LAUNCH_CREATED)
            throw std::runtime_error("the library could not use its file");
    }

    void close() override
    {
        if (!thread.joinable())
            return;
        exitCache();
        thread.join();
    }

    Records<FlatEvent> addEvents(const Text &json) override
    {
        return many<FlatEvent, freeEventsArray>(
            [&](FlatEvent **events, uint32_t *count) { return ::addEvents(events, count, units(json), length(json)); });
    }

    Records<FlatEvent> addEvent(const Text &json) override
    {
        return one<FlatEvent, freeEvent>(
            [&](FlatEvent **event) { return ::addEvent(event, units(json), length(json)); });
    }

    Records<FlatEvent> getEvents(uint32_t from, uint32_t to) override
    {
        return many<FlatEvent, freeEventsArray>(
            [&](FlatEvent **events, uint32_t *count) { return ::getEvents(events, count, from, to); });
    }

    void clearEventsBeforeDateExceptAffects(uint32_t date) override
    {
        expectDone(::clearEventsBeforeDateExceptAffects(date));
    }

    void addDevices(const Text &json) override { expectDone(::addDevices(units(json), length(json))); }

    Records<FlatDevice> getDevices() override { return many<FlatDevice, freeDevicesArray>(::getDevices); }

    Records<FlatDevice> getDevice(uint32_t id) override
    {
        return one<FlatDevice, freeDevice>([&](FlatDevice **device) { return ::getDevice(device, id); });
    }

    void addUsers(const Text &json) override { expectDone(::addUsers(units(json), length(json))); }

    Records<FlatUser> updateUser(const Text &json) override
    {
        return one<FlatUser, freeUser>([&](FlatUser **user) { return ::updateUser(user, units(json), length(json)); });
    }

    Records<FlatUser> getUsers() override { return many<FlatUser, freeUsersArray>(::getUsers); }

    Records<FlatUser> getUser(uint32_t id) override
    {
        return one<FlatUser, freeUser>([&](FlatUser **user) { return ::getUser(user, id); });
    }

    Records<FlatUser> getUsersByLogin(const Text &login) override
    {
        static const Text key = u"login";
        return many<FlatUser, freeUsersArray>([&](FlatUser **users, uint32_t *count) {
            return getUsersWithParams(users, count, units(key), length(key), units(login), length(login));
        });
    }

    Records<FlatSite> getSites() override { return many<FlatSite, freeSitesArray>(::getSites); }

    Records<FlatSite> getSite(uint32_t id) override
    {
        return one<FlatSite, freeSite>([&](FlatSite **site) { return ::getSite(site, id); });
    }

    void clearAllExceptEvents() override { expectDone(::clearAllExceptEvents()); }

private:
    std::thread thread; // runs the library
};

} // namespace

std::unique_ptr<Implementation> makeBrimlet()
{
    return std::make_unique<Brimlet>();
}

} // namespace bench
