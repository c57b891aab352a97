// The interface of a store, as far as the workloads need it. It has three implementations: the library, and two
// baselines that do the same work in other ways.
#pragma once

#include "FlatRecords.h"

#include <filesystem>
#include <memory>
#include <string>
#include <utility>

namespace bench {

using Text = std::u16string;

// Flat records that a store returned, and how to release them. The release is part of the measured work.
template<class Flat>
class Records
{
public:
    using Release = void (*)(Flat *items, uint32_t count);

    Records(Flat *given, uint32_t howMany, Release way) : items(given), count(howMany), release(way) {}
    Records(Records &&other) noexcept
        : items(std::exchange(other.items, nullptr))
        , count(other.count)
        , release(other.release)
    {
    }
    Records &operator=(Records &&) = delete;
    ~Records()
    {
        if (items)
            release(items, count);
    }

    const Flat *begin() const { return items; }
    const Flat *end() const { return items + count; }
    uint32_t size() const { return count; }

private:
    Flat *items;
    uint32_t count;
    Release release;
};

// Every function throws if the store refuses the call or finds nothing: no workload does that.
class Implementation
{
public:
    virtual ~Implementation() = default;
    virtual const char *name() const = 0;

    // Makes the file in the directory usable, as a launch does: creates it with all tables, or opens it and checks its
    // version and schema.
    virtual void open(const std::filesystem::path &directory) = 0;
    virtual void close() = 0;

    virtual Records<FlatEvent> addEvents(const Text &json) = 0;
    virtual Records<FlatEvent> addEvent(const Text &json) = 0;
    virtual Records<FlatEvent> getEvents(uint32_t from, uint32_t to) = 0;
    virtual void clearEventsBeforeDateExceptAffects(uint32_t date) = 0;

    virtual void addDevices(const Text &json) = 0;
    virtual Records<FlatDevice> getDevices() = 0;
    virtual Records<FlatDevice> getDevice(uint32_t id) = 0;

    virtual void addUsers(const Text &json) = 0;
    virtual Records<FlatUser> updateUser(const Text &json) = 0;
    virtual Records<FlatUser> getUsers() = 0;
    virtual Records<FlatUser> getUser(uint32_t id) = 0;
    virtual Records<FlatUser> getUsersByLogin(const Text &login) = 0;

    virtual Records<FlatSite> getSites() = 0;
    virtual Records<FlatSite> getSite(uint32_t id) = 0;

    virtual void clearAllExceptEvents() = 0;
};

// The name of the file, for all three.
inline constexpr const char *fileName = "CacheDb";

std::unique_ptr<Implementation> makeBrimlet();
std::unique_ptr<Implementation> makeQtByHand();
std::unique_ptr<Implementation> makeFloor();

} // namespace bench
