#include "Store.h"

#include <QString>
#include <QtGlobal>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sqlite3.h>

struct sqlite3_api_routines;

using namespace brimlet::test;

namespace {

using Lines = std::vector<std::string>;

class Conventions : public StoreTest
{
};

// The store without a table: every statement fails.
class UnusableConventions : public StoreTest
{
protected:
    UnusableConventions()
    {
        library.reset();
        std::ofstream("CacheDb", std::ios::trunc).close();
        library = std::make_unique<Library>();
        lines.clear();
    }

    DebugLines lines;
};

// Nothing is launched: whatever asks the store faults.
class WithoutLaunch : public ::testing::Test
{
protected:
    Directory directory;
    DebugLines lines;
};

// ---- Blocks as the library makes them ----

uint16_t *text(const std::string &utf8)
{
    const std::u16string units = utf16(utf8);
    auto *made = zeroed<uint16_t>(units.size() + 1);
    std::memcpy(made, units.data(), units.size() * sizeof(uint16_t));
    return made;
}

const uint16_t *units(const std::u16string &text)
{
    return reinterpret_cast<const uint16_t *>(text.data());
}

uint32_t length(const std::u16string &text)
{
    return static_cast<uint32_t>(text.size());
}

// ---- The families ----

// An argument that must not be used: an invalid pointer, a number other than 0.
template<class Argument>
Argument unusable()
{
    if constexpr (std::is_pointer_v<Argument>)
        return reinterpret_cast<Argument>(uintptr_t{16});
    else
        return Argument{4};
}

// A target that is not null is refused before anything else is checked, and does not change.
template<class Out, class... Arguments>
void expectGuard(const char *name, uint32_t (*function)(Out **, Arguments...))
{
    Out held{};
    Out *out = &held;
    EXPECT_EQ(function(&out, unusable<Arguments>()...), 10u) << name;
    EXPECT_EQ(out, &held) << name;
}

void expectGuards()
{
    expectGuard("addEvent", addEvent);
    expectGuard("getContract", getContract);
    expectGuard("getContractor", getContractor);
    expectGuard("getDevice", getDevice);
    expectGuard("getDomain", getDomain);
    expectGuard("getLocale", getLocale);
    expectGuard("getOrganization", getOrganization);
    expectGuard("getSite", getSite);
    expectGuard("getUser", getUser);
    expectGuard("getSection", getSection);
    expectGuard("getZone", getZone);
    expectGuard("getContractors", getContractors);
    expectGuard("getContracts", getContracts);
    expectGuard("getDevices", getDevices);
    expectGuard("getDomains", getDomains);
    expectGuard("getLocales", getLocales);
    expectGuard("getOrganizations", getOrganizations);
    expectGuard("getSites", getSites);
    expectGuard("getUsers", getUsers);
    expectGuard("getAffectEvents", getAffectEvents);
    expectGuard("getEvents", getEvents);
    expectGuard("getSections", getSections);
    expectGuard("getZones", getZones);
    expectGuard("getZonesForSection", getZonesForSection);
    expectGuard("getContractorsWithParams", getContractorsWithParams);
    expectGuard("getContractsWithParams", getContractsWithParams);
    expectGuard("getDevicesWithParams", getDevicesWithParams);
    expectGuard("getDomainsWithParams", getDomainsWithParams);
    expectGuard("getLocalesWithParams", getLocalesWithParams);
    expectGuard("getOrganizationsWithParams", getOrganizationsWithParams);
    expectGuard("getSitesWithParams", getSitesWithParams);
    expectGuard("getUsersWithParams", getUsersWithParams);
    expectGuard("getSectionsWithParams", getSectionsWithParams);
    expectGuard("getZonesWithParams", getZonesWithParams);
    expectGuard("getZonesForSectionWithParams", getZonesForSectionWithParams);
    expectGuard("updateContract", updateContract);
    expectGuard("updateContractor", updateContractor);
    expectGuard("updateDeviceFw", updateDeviceFw);
    expectGuard("updateDomain", updateDomain);
    expectGuard("updateOrganization", updateOrganization);
    expectGuard("updateSection", updateSection);
    expectGuard("updateSite", updateSite);
    expectGuard("updateUser", updateUser);
    expectGuard("updateZone", updateZone);
    expectGuard("getServerIp", getServerIp);
}

// A function that reads a document, with its own target, which must stay null.
struct Reader
{
    const char *name;
    std::function<uint32_t(const uint16_t *, uint32_t)> call;
};

template<class Flat>
Reader reader(const char *name, uint32_t (*function)(Flat **, const uint16_t *, uint32_t))
{
    return {name, [=](const uint16_t *json, uint32_t count) {
                Flat *out = nullptr;
                const uint32_t code = function(&out, json, count);
                EXPECT_EQ(out, nullptr) << name;
                return code;
            }};
}

std::vector<Reader> batchReaders()
{
    return {
        {"addContractors", addContractors},
        {"addContracts", addContracts},
        {"addDevices", addDevices},
        {"addDomains", addDomains},
        {"addLocales", addLocales},
        {"addOrganizations", addOrganizations},
        {"addSites", addSites},
        {"addUsers", addUsers},
        {"addEvents",
         [](const uint16_t *json, uint32_t count) {
             FlatEvent *events = nullptr;
             uint32_t eventCount = 77;
             const uint32_t code = addEvents(&events, &eventCount, json, count);
             EXPECT_EQ(events, nullptr);
             EXPECT_EQ(eventCount, 77u);
             return code;
         }},
    };
}

std::vector<Reader> recordReaders()
{
    return {
        {"addDevice", addDevice},
        reader("addEvent", addEvent),
        reader("updateContract", updateContract),
        reader("updateContractor", updateContractor),
        reader("updateDeviceFw", updateDeviceFw),
        reader("updateDomain", updateDomain),
        reader("updateOrganization", updateOrganization),
        reader("updateSection", updateSection),
        reader("updateSite", updateSite),
        reader("updateUser", updateUser),
        reader("updateZone", updateZone),
        {"deleteContract", deleteContract},
        {"deleteContractor", deleteContractor},
        {"deleteDevice", deleteDevice},
        {"deleteDomain", deleteDomain},
        {"deleteOrganization", deleteOrganization},
        {"deleteSection", deleteSection},
        {"deleteSite", deleteSite},
        {"deleteUser", deleteUser},
        {"deleteZone", deleteZone},
        reader("removeAffectFlag", removeAffectFlag),
    };
}

std::vector<Reader> readers()
{
    std::vector<Reader> all = batchReaders();
    for (Reader &one : recordReaders())
        all.push_back(std::move(one));
    return all;
}

void expectEach(const std::vector<Reader> &readers, const std::string &json, uint32_t code)
{
    for (const Reader &one : readers)
        EXPECT_EQ(send(one.call, json), code) << one.name << " " << json;
}

void expectRefusals()
{
    for (const Reader &one : readers()) {
        EXPECT_EQ(one.call(nullptr, 0), 10u) << one.name;
        EXPECT_EQ(one.call(nullptr, 5), 10u) << one.name;
    }
    for (const std::string json : {"", "no document", "{", "[1,2]", "7", "\"D\"", "null", R"({"D":{}}x)"})
        expectEach(readers(), json, 10);
    for (const std::string json : {"{}", R"({"d":{}})", R"({"D":[]})", R"({"D":null})", R"({"items":[{"id":1}]})",
                                   R"({"D":{}})", R"({"D":{"other":1}})"})
        expectEach(readers(), json, 5);
    expectEach(batchReaders(), R"({"D":{"items":[]}})", 10);
    for (const std::string json : {R"({"D":{"items":{}}})", R"({"D":{"items":[5]}})", R"({"D":{"items":[{}]}})"})
        expectEach(batchReaders(), json, 5);
}

template<class Flat>
void expectFree(uint32_t (*one)(Flat *), uint32_t (*array)(Flat *, uint32_t))
{
    Flat held{};
    held.id = 7;
    EXPECT_EQ(one(nullptr), 10u);
    EXPECT_EQ(array(nullptr, 0), 10u);
    EXPECT_EQ(array(nullptr, 3), 10u);
    EXPECT_EQ(array(&held, 0), 10u);
    EXPECT_EQ(held.id, 7u);
    EXPECT_EQ(one(zeroed<Flat>()), 0u);
    EXPECT_EQ(array(zeroed<Flat>(3), 3), 0u);
}

void expectFrees()
{
    expectFree(freeContract, freeContractsArray);
    expectFree(freeContractor, freeContractorsArray);
    expectFree(freeDevice, freeDevicesArray);
    expectFree(freeDomain, freeDomainsArray);
    expectFree(freeEvent, freeEventsArray);
    expectFree(freeLocale, freeLocalesArray);
    expectFree(freeOrganization, freeOrganizationsArray);
    expectFree(freeSection, freeSectionsArray);
    expectFree(freeSite, freeSitesArray);
    expectFree(freeUser, freeUsersArray);
    expectFree(freeZone, freeZonesArray);
}

// An array that is not returned: the code, and both targets unchanged.
template<class Flat, class... Keys>
void expectNoList(const char *name, uint32_t code, uint32_t (*function)(Flat **, uint32_t *, Keys...), Keys... keys)
{
    Flat *out = nullptr;
    uint32_t count = 77;
    EXPECT_EQ(function(&out, &count, keys...), code) << name;
    EXPECT_EQ(out, nullptr) << name;
    EXPECT_EQ(count, 77u) << name;
}

template<class Flat, class... Keys, class... Parents>
void expectNoneBy(const char *name, uint32_t code, const std::string &key,
                  uint32_t (*function)(Flat **, uint32_t *, const uint16_t *, uint32_t, const uint16_t *, uint32_t,
                                       Keys...),
                  Parents... parents)
{
    Flat *out = nullptr;
    uint32_t count = 77;
    EXPECT_EQ(find(function, &out, &count, key, "1", parents...), code) << name << " by " << key;
    EXPECT_EQ(out, nullptr) << name;
    EXPECT_EQ(count, 77u) << name;
}

void expectNoLists(uint32_t code)
{
    expectNoList("getContractors", code, getContractors);
    expectNoList("getContracts", code, getContracts);
    expectNoList("getDevices", code, getDevices);
    expectNoList("getDomains", code, getDomains);
    expectNoList("getLocales", code, getLocales);
    expectNoList("getOrganizations", code, getOrganizations);
    expectNoList("getSites", code, getSites);
    expectNoList("getUsers", code, getUsers);
    expectNoList("getAffectEvents", code, getAffectEvents);
    expectNoList("getEvents", code, getEvents, 0u, UINT32_MAX);
    expectNoList("getSections", code, getSections, 1u);
    expectNoList("getZones", code, getZones, 1u);
    expectNoList("getZonesForSection", code, getZonesForSection, 1u, 1u);
}

// With "id" under its own name where an organization is asked for.
void expectNoneBy(uint32_t code, const std::string &key)
{
    expectNoneBy("getContractorsWithParams", code, key, getContractorsWithParams);
    expectNoneBy("getContractsWithParams", code, key, getContractsWithParams);
    expectNoneBy("getDevicesWithParams", code, key, getDevicesWithParams);
    expectNoneBy("getDomainsWithParams", code, key, getDomainsWithParams);
    expectNoneBy("getLocalesWithParams", code, key, getLocalesWithParams);
    expectNoneBy("getOrganizationsWithParams", code, key == "id" ? "org_id" : key, getOrganizationsWithParams);
    expectNoneBy("getSitesWithParams", code, key, getSitesWithParams);
    expectNoneBy("getUsersWithParams", code, key, getUsersWithParams);
    expectNoneBy("getSectionsWithParams", code, key, getSectionsWithParams, 1);
    expectNoneBy("getZonesWithParams", code, key, getZonesWithParams, 1);
    expectNoneBy("getZonesForSectionWithParams", code, key, getZonesForSectionWithParams, 1, 1);
}

// ---- Documents that fill the store ----

struct Call
{
    const char *name;
    std::function<uint32_t()> call;
};

std::vector<Call> writes()
{
    return {
        {"addLocales", [] { return send(addLocales, R"({"D":{"items":[{"id":1,"iso":"a"}]}})"); }},
        {"addDomains", [] { return send(addDomains, R"({"D":{"items":[{"id":1,"locale_id":1}]}})"); }},
        {"addUsers", [] { return send(addUsers, R"({"D":{"items":[{"id":1,"domain":1}]}})"); }},
        {"addOrganizations",
         [] { return send(addOrganizations, R"({"D":{"items":[{"org_id":1,"contact":{"id":1}}]}})"); }},
        {"addContractors", [] { return send(addContractors, R"({"D":{"items":[{"id":1}]}})"); }},
        {"addContracts",
         [] { return send(addContracts, R"({"D":{"items":[{"id":1,"contractor_id":1,"operator_id":1}]}})"); }},
        {"addDevice",
         [] {
             return send(addDevice, R"({"D":{"id":1,"sections":[{"id":1,"zones":[{"id":1}]}],)"
                                    R"("users":[{"user_index":1,"sections":[1]}]}})");
         }},
        {"addDevices", [] { return send(addDevices, R"({"D":{"items":[{"id":2}]}})"); }},
        {"addSites",
         [] {
             return send(addSites, R"({"D":{"items":[{"id":1,"contract_id":1,"location":{"lat":1},)"
                                   R"("devices":[{"id":3}]}]}})");
         }},
        {"addEvent", [] { return update(addEvent, R"({"D":{"id":1,"device":1,"time":5,"affect":1}})").code; }},
        {"addEvents", [] { return listAdded(R"({"D":{"items":[{"id":2,"device":1,"affect":1}]}})").code; }},
        {"updateContract", [] { return update(updateContract, R"({"D":{"id":1}})").code; }},
        {"updateContractor", [] { return update(updateContractor, R"({"D":{"id":1}})").code; }},
        {"updateDeviceFw", [] { return update(updateDeviceFw, R"({"D":{"id":1}})").code; }},
        {"updateDomain", [] { return update(updateDomain, R"({"D":{"id":1}})").code; }},
        {"updateOrganization",
         [] { return update(updateOrganization, R"({"D":{"org_id":1,"contact":{"id":1}}})").code; }},
        {"updateSection", [] { return update(updateSection, R"({"D":{"device":1,"id":1}})").code; }},
        {"updateSite", [] { return update(updateSite, R"({"D":{"id":1,"location":{"lat":2}}})").code; }},
        {"updateUser", [] { return update(updateUser, R"({"D":{"id":1}})").code; }},
        {"updateZone", [] { return update(updateZone, R"({"D":{"device":1,"section":1,"id":1}})").code; }},
        {"removeAffectFlag", [] { return update(removeAffectFlag, R"({"D":{"id":2}})").code; }},
        {"setServerIp", [] { return send(setServerIp, "10.0.0.1"); }},
    };
}

std::vector<Call> removals()
{
    return {
        {"deleteZone", [] { return send(deleteZone, R"({"D":{"device":1,"section":1,"zone":1}})"); }},
        {"deleteSection", [] { return send(deleteSection, R"({"D":{"device":1,"section":1}})"); }},
        {"deleteDevice", [] { return send(deleteDevice, R"({"D":{"id":1}})"); }},
        {"deleteSite", [] { return send(deleteSite, R"({"D":{"site_id":1}})"); }},
        {"deleteContract", [] { return send(deleteContract, R"({"D":{"id":1}})"); }},
        {"deleteContractor", [] { return send(deleteContractor, R"({"D":{"id":1}})"); }},
        {"deleteOrganization", [] { return send(deleteOrganization, R"({"D":{"org_id":1}})"); }},
        {"deleteUser", [] { return send(deleteUser, R"({"D":{"op_id":1}})"); }},
        {"deleteDomain", [] { return send(deleteDomain, R"({"D":{"domain_id":1}})"); }},
        {"clearEventsBeforeDateExceptAffects", [] { return clearEventsBeforeDateExceptAffects(9); }},
        {"clearAllExceptEvents", [] { return clearAllExceptEvents(); }},
        {"clearAll", [] { return clearAll(); }},
    };
}

void fill()
{
    for (const Call &write : writes())
        ASSERT_EQ(write.call(), 0u) << write.name;
}

std::vector<Call> lists()
{
    return {
        {"getContractors", [] { return list(getContractors).code; }},
        {"getContracts", [] { return list(getContracts).code; }},
        {"getDevices", [] { return list(getDevices).code; }},
        {"getDomains", [] { return list(getDomains).code; }},
        {"getLocales", [] { return list(getLocales).code; }},
        {"getOrganizations", [] { return list(getOrganizations).code; }},
        {"getSites", [] { return list(getSites).code; }},
        {"getUsers", [] { return list(getUsers).code; }},
        {"getAffectEvents", [] { return list(getAffectEvents).code; }},
        {"getEvents", [] { return list(getEvents, 0, 9).code; }},
        {"getSections", [] { return list(getSections, 1).code; }},
        {"getZones", [] { return list(getZones, 1).code; }},
        {"getZonesForSection", [] { return list(getZonesForSection, 1, 1).code; }},
        {"getContractorsWithParams", [] { return listBy(getContractorsWithParams, "id", "1").code; }},
        {"getContractsWithParams", [] { return listBy(getContractsWithParams, "id", "1").code; }},
        {"getDevicesWithParams", [] { return listBy(getDevicesWithParams, "id", "1").code; }},
        {"getDomainsWithParams", [] { return listBy(getDomainsWithParams, "id", "1").code; }},
        {"getLocalesWithParams", [] { return listBy(getLocalesWithParams, "id", "1").code; }},
        {"getOrganizationsWithParams", [] { return listBy(getOrganizationsWithParams, "org_id", "1").code; }},
        {"getSitesWithParams", [] { return listBy(getSitesWithParams, "id", "1").code; }},
        {"getUsersWithParams", [] { return listBy(getUsersWithParams, "id", "1").code; }},
        {"getSectionsWithParams", [] { return listBy(getSectionsWithParams, "id", "1", 1).code; }},
        {"getZonesWithParams", [] { return listBy(getZonesWithParams, "id", "1", 1).code; }},
        {"getZonesForSectionWithParams", [] { return listBy(getZonesForSectionWithParams, "id", "1", 1, 1).code; }},
    };
}

std::vector<Call> singles(uint32_t id)
{
    return {
        {"getContract", [=] { return get(getContract, id).code; }},
        {"getContractor", [=] { return get(getContractor, id).code; }},
        {"getDevice", [=] { return get(getDevice, id).code; }},
        {"getDomain", [=] { return get(getDomain, id).code; }},
        {"getLocale", [=] { return get(getLocale, id).code; }},
        {"getOrganization", [=] { return get(getOrganization, id).code; }},
        {"getSite", [=] { return get(getSite, id).code; }},
        {"getUser", [=] { return get(getUser, id).code; }},
        {"getSection", [=] { return get(getSection, id, 1).code; }},
        {"getZone", [=] { return get(getZone, id, 1, 1).code; }},
        {"getSiteNameAndAddress",
         [=] {
             uint16_t *name = nullptr;
             uint16_t *address = nullptr;
             const uint32_t code = getSiteNameAndAddress(&name, &address, id);
             const Owned<uint16_t> ownedName(name);
             const Owned<uint16_t> ownedAddress(address);
             return code;
         }},
    };
}

// ---- The library's own connection ----

sqlite3 *connection = nullptr;

int remember(sqlite3 *opened, char **, const sqlite3_api_routines *)
{
    connection = opened;
    return SQLITE_OK;
}

// Launches and returns the library's connection; null if Qt was built with its own SQLite.
sqlite3 *connectionOf(std::unique_ptr<Library> &library)
{
    using Entry = void (*)();
    library.reset();
    connection = nullptr;
    sqlite3_auto_extension(reinterpret_cast<Entry>(remember));
    library = std::make_unique<Library>();
    sqlite3_cancel_auto_extension(reinterpret_cast<Entry>(remember));
    return connection;
}

// ---- Debug lines with all that Qt knows of them ----

struct Message
{
    QtMsgType type;
    std::string text;
    bool hasFile;
    int line;
    bool hasFunction;
    std::string category;
};
std::vector<Message> messages;

void keep(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    messages.push_back({type, text.toStdString(), context.file != nullptr, context.line, context.function != nullptr,
                        context.category ? context.category : ""});
}

class MessageLook
{
public:
    MessageLook() : before(qInstallMessageHandler(keep)) { messages.clear(); }
    ~MessageLook() { qInstallMessageHandler(before); }
    MessageLook(const MessageLook &) = delete;
    MessageLook &operator=(const MessageLook &) = delete;

private:
    QtMessageHandler before;
};

// ---- Targets ----

TEST_F(WithoutLaunch, ATargetThatIsNotNullIsRefused)
{
    expectGuards();
    EXPECT_TRUE(lines.all().empty());
}

TEST_F(WithoutLaunch, BothTargetsOfTheSiteTextsAreChecked)
{
    uint16_t held = 0;
    uint16_t *null = nullptr;
    uint16_t *target = &held;
    EXPECT_EQ(getSiteNameAndAddress(&target, &null, 1), 10u);
    EXPECT_EQ(getSiteNameAndAddress(&null, &target, 1), 10u);
    EXPECT_EQ(null, nullptr);
    EXPECT_EQ(target, &held);
}

TEST_F(Conventions, ATargetThatIsNotNullIsRefusedWhileLaunched)
{
    expectGuards();
}

TEST_F(Conventions, ATargetThatIsNotNullIsRefusedAfterTheExit)
{
    library.reset();
    expectGuards();
}

TEST_F(UnusableConventions, ATargetThatIsNotNullIsRefusedBeforeTheStoreIsAsked)
{
    expectGuards();
    EXPECT_TRUE(lines.all().empty());
}

TEST_F(Conventions, ARefusedTargetLeavesTheStoreAlone)
{
    FlatUser held{};
    FlatUser *user = &held;
    EXPECT_EQ(send(updateUser, &user, R"({"D":{"id":7,"name":"a"}})"), 10u);
    FlatEvent heldEvent{};
    FlatEvent *event = &heldEvent;
    EXPECT_EQ(send(addEvent, &event, R"({"D":{"id":7}})"), 10u);
    EXPECT_EQ(file.number("SELECT count(*) FROM Users"), 0);
    EXPECT_EQ(file.number("SELECT count(*) FROM Events"), 0);
}

TEST_F(Conventions, AddEventsOverwritesItsTarget)
{
    ASSERT_EQ(send(addDevices, R"({"D":{"items":[{"id":1}]}})"), 0u);
    FlatEvent held{};
    FlatEvent *events = &held;
    uint32_t count = 77;
    ASSERT_EQ(send(addEvents, &events, &count, R"({"D":{"items":[{"id":7,"device":1}]}})"), 0u);
    EXPECT_NE(events, &held);
    EXPECT_EQ(count, 1u);
    EXPECT_EQ(events[0].id, 7u);
    EXPECT_EQ(freeEventsArray(events, count), 0u);
}

TEST_F(Conventions, AddEventsLeavesItsTargetsOnFailure)
{
    FlatEvent held{};
    FlatEvent *events = &held;
    uint32_t count = 77;
    EXPECT_EQ(send(addEvents, &events, &count, "no document"), 10u);
    EXPECT_EQ(send(addEvents, &events, &count, "{}"), 5u);
    EXPECT_EQ(send(addEvents, &events, &count, R"({"D":{"items":[{"id":7,"device":1}]}})"), 8u);
    refuse("INSERT", "Events");
    EXPECT_EQ(send(addEvents, &events, &count, R"({"D":{"items":[{"id":8}]}})"), 9u);
    EXPECT_EQ(events, &held);
    EXPECT_EQ(count, 77u);
}

TEST_F(Conventions, RemoveAffectFlagReleasesTheBlockOfItsTargetAlone)
{
    ASSERT_EQ(update(addEvent, R"({"D":{"id":7,"affect":1}})").code, 0u);
    auto *event = zeroed<FlatEvent>();
    event->id = 99;
    event->data = text("kept");
    const Owned<uint16_t> data(event->data);
    ASSERT_EQ(send(removeAffectFlag, &event, R"({"D":{"id":7}})"), 0u);
    const Owned<FlatEvent> stored(event);
    EXPECT_EQ(stored->id, 7u);
    EXPECT_EQ(value(stored->affect), 0);
    EXPECT_EQ(utf8(data.get()), "kept");
}

TEST_F(Conventions, RemoveAffectFlagLeavesItsTargetOnFailure)
{
    FlatEvent held{};
    FlatEvent *event = &held;
    EXPECT_EQ(send(removeAffectFlag, &event, "no document"), 10u);
    EXPECT_EQ(send(removeAffectFlag, &event, R"({"D":{}})"), 5u);
    EXPECT_EQ(send(removeAffectFlag, &event, R"({"D":{"id":7}})"), 8u);
    foreign("DROP TABLE Events");
    EXPECT_EQ(send(removeAffectFlag, &event, R"({"D":{"id":7}})"), 7u);
    EXPECT_EQ(event, &held);
}

// ---- Documents ----

TEST_F(WithoutLaunch, ReadersRefuseADocument)
{
    expectRefusals();
    EXPECT_TRUE(lines.all().empty());
}

TEST_F(UnusableConventions, ReadersRefuseADocumentBeforeTheStoreIsAsked)
{
    expectRefusals();
    EXPECT_TRUE(lines.all().empty());
}

TEST_F(Conventions, ReadersRefuseADocumentAfterTheExit)
{
    library.reset();
    expectRefusals();
}

TEST_F(Conventions, ATextEndsAtItsCount)
{
    const std::u16string document = utf16(R"({"D":{"items":[{"id":7}]}})");
    const std::u16string longer = document + u"and more";
    EXPECT_EQ(addUsers(units(longer), length(document)), 0u);
    EXPECT_EQ(addUsers(units(longer), length(longer)), 10u);
    EXPECT_EQ(addUsers(units(document), length(document) - 1), 10u);
    EXPECT_EQ(file.number("SELECT count(*) FROM Users"), 1);
}

TEST_F(Conventions, ATerminatorThatIsCountedIsPartOfTheText)
{
    const std::u16string document = utf16(R"({"D":{"items":[{"id":7}]}})");
    EXPECT_EQ(addUsers(units(document), length(document) + 1), 10u);
}

TEST_F(Conventions, TheCountIsOfUnitsAndNotOfCharacters)
{
    const std::u16string document = utf16("{\"D\":{\"items\":[{\"id\":7,\"name\":\"\xF0\x9F\x98\x80\xC3\xA9\"}]}}");
    ASSERT_EQ(addUsers(units(document), length(document)), 0u);
    EXPECT_EQ(file.value("SELECT UsersName FROM Users"), "\xF0\x9F\x98\x80\xC3\xA9");
    const Answer<FlatUser> user = get(getUser, 7);
    ASSERT_EQ(user.code, 0u);
    EXPECT_EQ(std::u16string(reinterpret_cast<const char16_t *>(user->name), 4),
              std::u16string(u"\U0001F600\u00E9\0", 4));
}

TEST_F(Conventions, AKeyAndAValueEndAtTheirCounts)
{
    ASSERT_EQ(send(addUsers, R"({"D":{"items":[{"id":7,"name":"abc"}]}})"), 0u);
    const std::u16string key = u"named";
    const std::u16string value = u"abcd";
    List<FlatUser> users;
    users.code = getUsersWithParams(users.out(), users.count(), units(key), 4, units(value), 3);
    EXPECT_EQ(users.code, 0u);
    EXPECT_EQ(users.size(), 1u);
}

TEST_F(Conventions, ANulTerminatorEndsNoText)
{
    const std::u16string address(u"a\0b", 3);
    ASSERT_EQ(setServerIp(units(address), length(address)), 0u);
    uint16_t *stored = nullptr;
    ASSERT_EQ(getServerIp(&stored), 0u);
    const Owned<uint16_t> owned(stored);
    ASSERT_NE(stored, nullptr);
    EXPECT_EQ(std::u16string(reinterpret_cast<const char16_t *>(stored), 4), std::u16string(u"a\0b\0", 4));
}

TEST_F(Conventions, ANulInsideATextIsReturned)
{
    ASSERT_EQ(send(addUsers, R"({"D":{"items":[{"id":7,"name":"a\u0000b"}]}})"), 0u);
    const Answer<FlatUser> user = get(getUser, 7);
    ASSERT_EQ(user.code, 0u);
    EXPECT_EQ(std::u16string(reinterpret_cast<const char16_t *>(user->name), 4), std::u16string(u"a\0b\0", 4));
}

TEST_F(Conventions, ANullKeyIsAnUnknownKey)
{
    FlatUser *users = nullptr;
    uint32_t count = 77;
    EXPECT_EQ(getUsersWithParams(&users, &count, nullptr, 0, nullptr, 0), 10u);
    EXPECT_EQ(getUsersWithParams(&users, &count, nullptr, 2, nullptr, 2), 10u);
    EXPECT_EQ(count, 77u);
}

TEST_F(Conventions, ANullValueEqualsNothing)
{
    ASSERT_EQ(send(addUsers, R"({"D":{"items":[{"id":7},{"id":8,"name":"a"}]}})"), 0u);
    const std::u16string key = u"name";
    FlatUser *users = nullptr;
    uint32_t count = 77;
    EXPECT_EQ(getUsersWithParams(&users, &count, units(key), 4, nullptr, 0), 8u);
    EXPECT_EQ(users, nullptr);
    EXPECT_EQ(count, 77u);
}

// ---- Absent and empty ----

TEST_F(Conventions, AnAbsentTextIsNullAndAnEmptyOneABlock)
{
    ASSERT_EQ(send(addUsers, R"({"D":{"items":[{"id":1},{"id":2,"name":""}]}})"), 0u);
    EXPECT_EQ(file.rows("SELECT UsersId, typeof(UsersName) FROM Users ORDER BY UsersId"),
              (std::vector<Row>{{"1", "null"}, {"2", "text"}}));
    const Answer<FlatUser> absent = get(getUser, 1);
    const Answer<FlatUser> empty = get(getUser, 2);
    ASSERT_EQ(absent.code, 0u);
    ASSERT_EQ(empty.code, 0u);
    EXPECT_EQ(absent->name, nullptr);
    ASSERT_NE(empty->name, nullptr);
    EXPECT_EQ(empty->name[0], 0);
}

TEST_F(Conventions, AbsentAndEmptyStayApartInALIst)
{
    ASSERT_EQ(send(addUsers, R"({"D":{"items":[{"id":1},{"id":2,"name":""}]}})"), 0u);
    const List<FlatUser> users = list(getUsers);
    ASSERT_EQ(users.size(), 2u);
    EXPECT_EQ(users.withId(1)->name, nullptr);
    EXPECT_EQ(utf8(users.withId(2)->name), "");
}

TEST_F(Conventions, AnAbsentNumberIsNullAndAZeroABlock)
{
    ASSERT_EQ(send(addUsers, R"({"D":{"items":[{"id":0},{"id":2,"active":0,"roles":0,"phone":0}]}})"), 0u);
    const Answer<FlatUser> absent = get(getUser, 0);
    const Answer<FlatUser> zero = get(getUser, 2);
    ASSERT_EQ(absent.code, 0u);
    ASSERT_EQ(zero.code, 0u);
    EXPECT_EQ(absent->id, 0u);
    EXPECT_EQ(absent->isActive, nullptr);
    EXPECT_EQ(absent->roles, nullptr);
    EXPECT_EQ(absent->phone, nullptr);
    EXPECT_EQ(value(zero->isActive), 0);
    EXPECT_EQ(value(zero->roles), 0u);
    EXPECT_EQ(value(zero->phone), 0u);
}

TEST_F(Conventions, AnEmptyInnerListIsNullWithCount0)
{
    ASSERT_EQ(send(addDevice, R"({"D":{"id":1,"users":[{"user_index":1}],"sections":[{"id":1}]}})"), 0u);
    ASSERT_EQ(send(addDevice, R"({"D":{"id":2}})"), 0u);
    const Answer<FlatDevice> bare = get(getDevice, 2);
    ASSERT_EQ(bare.code, 0u);
    EXPECT_EQ(bare->sections, nullptr);
    EXPECT_EQ(bare->sectionsCount, 0u);
    EXPECT_EQ(bare->users, nullptr);
    EXPECT_EQ(bare->usersCount, 0u);
    const Answer<FlatDevice> device = get(getDevice, 1);
    ASSERT_EQ(device->sectionsCount, 1u);
    EXPECT_EQ(device->sections[0].zones, nullptr);
    EXPECT_EQ(device->sections[0].zonesCount, 0u);
    ASSERT_EQ(device->usersCount, 1u);
    EXPECT_EQ(device->users[0].sections, nullptr);
    EXPECT_EQ(device->users[0].sectionsCount, 0u);
}

TEST_F(Conventions, AListIsOneBlockOfConsecutiveRecords)
{
    ASSERT_EQ(send(addUsers, R"({"D":{"items":[{"id":1,"name":"a"},{"id":2,"name":"b"},{"id":3,"name":"c"}]}})"), 0u);
    const List<FlatUser> users = list(getUsers);
    ASSERT_EQ(users.size(), 3u);
    EXPECT_EQ(utf8(users.withId(1)->name), "a");
    EXPECT_EQ(utf8(users.withId(2)->name), "b");
    EXPECT_EQ(utf8(users.withId(3)->name), "c");
}

TEST_F(Conventions, ARecordIsNoLongerTheStores)
{
    ASSERT_EQ(send(addUsers, R"({"D":{"items":[{"id":7,"name":"a"}]}})"), 0u);
    const Answer<FlatUser> user = get(getUser, 7);
    const Answer<FlatUser> again = get(getUser, 7);
    ASSERT_EQ(send(addUsers, R"({"D":{"items":[{"id":7,"name":"b"}]}})"), 0u);
    EXPECT_NE(user->name, again->name);
    user->name[0] = u'x';
    EXPECT_EQ(utf8(again->name), "a");
    EXPECT_EQ(utf8(get(getUser, 7)->name), "b");
}

TEST_F(Conventions, AnUpdateReturnsTheRowAsStored)
{
    ASSERT_EQ(send(addUsers, R"({"D":{"items":[{"id":7,"name":"a","login":"l"}]}})"), 0u);
    const Answer<FlatUser> user = update(updateUser, R"({"D":{"id":7,"name":"b"}})");
    ASSERT_EQ(user.code, 0u);
    EXPECT_EQ(utf8(user->name), "b");
    EXPECT_EQ(utf8(user->login), "l");
}

// ---- Nothing there ----

TEST_F(Conventions, AnEmptyTableIsNoList)
{
    expectNoLists(8);
}

TEST_F(Conventions, NoMatchIsNoList)
{
    expectNoneBy(8, "id");
}

TEST_F(Conventions, AnUnknownIdIsNoRecord)
{
    for (const Call &single : singles(7))
        EXPECT_EQ(single.call(), 8u) << single.name;
}

TEST_F(Conventions, ARemovalOfAnUnknownIdFindsNothing)
{
    EXPECT_EQ(send(deleteContract, R"({"D":{"id":7}})"), 8u);
    EXPECT_EQ(send(deleteContractor, R"({"D":{"id":7}})"), 8u);
    EXPECT_EQ(send(deleteDevice, R"({"D":{"id":7}})"), 8u);
    EXPECT_EQ(send(deleteDomain, R"({"D":{"domain_id":7}})"), 8u);
    EXPECT_EQ(send(deleteOrganization, R"({"D":{"org_id":7}})"), 8u);
    EXPECT_EQ(send(deleteSection, R"({"D":{"device":7,"section":7}})"), 8u);
    EXPECT_EQ(send(deleteSite, R"({"D":{"site_id":7}})"), 8u);
    EXPECT_EQ(send(deleteUser, R"({"D":{"op_id":7}})"), 8u);
    EXPECT_EQ(send(deleteZone, R"({"D":{"device":7,"section":7,"zone":7}})"), 8u);
}

TEST_F(Conventions, NothingFoundLogsNothing)
{
    const DebugLines lines;
    expectNoLists(8);
    expectNoneBy(8, "id");
    EXPECT_EQ(get(getUser, 7).code, 8u);
    EXPECT_EQ(send(deleteUser, R"({"D":{"op_id":7}})"), 8u);
    EXPECT_TRUE(lines.all().empty());
}

TEST_F(Conventions, ARemovalOrClearingOfNothingElseIsDone)
{
    EXPECT_EQ(clearAll(), 0u);
    EXPECT_EQ(clearAllExceptEvents(), 0u);
    EXPECT_EQ(clearEventsBeforeDateExceptAffects(9), 0u);
}

TEST_F(UnusableConventions, AFailedListLeavesItsTargets)
{
    expectNoLists(7);
    expectNoneBy(7, "id");
}

TEST_F(UnusableConventions, AFailedSingleReadLeavesItsTarget)
{
    FlatUser *user = nullptr;
    EXPECT_EQ(getUser(&user, 7), 7u);
    EXPECT_EQ(user, nullptr);
    uint16_t *address = nullptr;
    EXPECT_EQ(getServerIp(&address), 7u);
    EXPECT_EQ(address, nullptr);
}

TEST_F(UnusableConventions, AnUnknownKeyIsRefusedBeforeTheStoreIsAsked)
{
    for (const std::string key : {"", "Id", "ID", " id", "unknown", "UsersId"})
        expectNoneBy(10, key);
    EXPECT_TRUE(lines.all().empty());
}

TEST_F(Conventions, ARefusedCallLeavesTheCountAlone)
{
    FlatUser held{};
    FlatUser *users = &held;
    uint32_t count = 77;
    EXPECT_EQ(getUsers(&users, &count), 10u);
    EXPECT_EQ(count, 77u);
    expectNoneBy(10, "unknown");
}

// ---- Values are bound ----

TEST_F(Conventions, AValueIsATextWhateverTheColumn)
{
    ASSERT_EQ(send(addUsers, R"({"D":{"items":[{"id":5,"name":"5","active":1,"phone":5}]}})"), 0u);
    EXPECT_EQ(listBy(getUsersWithParams, "id", "5").size(), 1u);
    EXPECT_EQ(listBy(getUsersWithParams, "id", "05").size(), 1u);
    EXPECT_EQ(listBy(getUsersWithParams, "id", "5.0").size(), 1u);
    EXPECT_EQ(listBy(getUsersWithParams, "active", "1").size(), 1u);
    EXPECT_EQ(listBy(getUsersWithParams, "phone", "5").size(), 1u);
    EXPECT_EQ(listBy(getUsersWithParams, "name", "5").size(), 1u);
}

TEST_F(Conventions, AValueIsComparedWhole)
{
    ASSERT_EQ(send(addUsers, R"({"D":{"items":[{"id":5,"name":"5","login":"Abc"}]}})"), 0u);
    EXPECT_EQ(listBy(getUsersWithParams, "name", "05").code, 8u);
    EXPECT_EQ(listBy(getUsersWithParams, "id", "5x").code, 8u);
    EXPECT_EQ(listBy(getUsersWithParams, "id", "").code, 8u);
    EXPECT_EQ(listBy(getUsersWithParams, "login", "abc").code, 8u);
    EXPECT_EQ(listBy(getUsersWithParams, "login", "Ab").code, 8u);
    EXPECT_EQ(listBy(getUsersWithParams, "login", "A%").code, 8u);
    EXPECT_EQ(listBy(getUsersWithParams, "login", "A__").code, 8u);
    EXPECT_EQ(listBy(getUsersWithParams, "login", "Abc").size(), 1u);
}

TEST_F(Conventions, AValueIsNoPartOfTheStatement)
{
    ASSERT_EQ(send(addUsers, R"({"D":{"items":[{"id":1,"name":"x' OR '1'='1"},{"id":2,"name":"%1 ? :1"}]}})"), 0u);
    const List<FlatUser> quoted = listBy(getUsersWithParams, "name", "x' OR '1'='1");
    ASSERT_EQ(quoted.size(), 1u);
    EXPECT_EQ(quoted[0].id, 1u);
    const List<FlatUser> places = listBy(getUsersWithParams, "name", "%1 ? :1");
    ASSERT_EQ(places.size(), 1u);
    EXPECT_EQ(utf8(places[0].name), "%1 ? :1");
    EXPECT_EQ(listBy(getUsersWithParams, "name", "' OR ''='").code, 8u);
}

TEST_F(Conventions, AValueIsNoPartOfAMergeEither)
{
    const Answer<FlatUser> user = update(updateUser, R"({"D":{"id":1,"name":"'); DROP TABLE Users; -- %1 :2 ?"}})");
    ASSERT_EQ(user.code, 0u);
    EXPECT_EQ(utf8(user->name), "'); DROP TABLE Users; -- %1 :2 ?");
    EXPECT_EQ(file.number("SELECT count(*) FROM Users"), 1);
}

// ---- Releasing ----

TEST_F(WithoutLaunch, NothingToFreeIsRefused)
{
    expectFrees();
}

TEST_F(Conventions, NothingToFreeIsRefusedWhileLaunched)
{
    expectFrees();
}

TEST_F(WithoutLaunch, ARecordIsFreedWithAllItHolds)
{
    auto *site = zeroed<FlatSite>();
    site->name = text("a");
    site->isCrossing = block<uint8_t>(1);
    site->contractId = block<int32_t>(-1);
    site->location = zeroed<FlatLocation>();
    site->location->latitude = block(1.5);
    site->domain = zeroed<FlatDomain>();
    site->domain->locale = zeroed<FlatLocale>();
    site->domain->locale->iso = text("b");
    site->contract = zeroed<FlatContract>();
    site->contract->contractor = zeroed<FlatContractor>();
    site->contract->contractor->inn = text("c");
    site->contract->user = zeroed<FlatUser>();
    site->contract->user->phone = block<uint64_t>(1);
    site->contract->user->domain = zeroed<FlatDomain>();
    site->contract->user->domain->name = text("d");
    site->devices = zeroed<FlatDevice>(2);
    site->deviceCount = 2;
    site->devices[1].users = zeroed<FlatDeviceUser>();
    site->devices[1].usersCount = 1;
    site->devices[1].users[0].name = text("e");
    site->devices[1].users[0].sections = zeroed<uint32_t>(3);
    site->devices[1].users[0].sectionsCount = 3;
    site->devices[1].sections = zeroed<FlatSection>();
    site->devices[1].sectionsCount = 1;
    site->devices[1].sections[0].zones = zeroed<FlatZone>();
    site->devices[1].sections[0].zonesCount = 1;
    site->devices[1].sections[0].zones[0].arm = block<uint32_t>(1);
    EXPECT_EQ(freeSite(site), 0u);
}

TEST_F(WithoutLaunch, AnArrayIsFreedWithAllItHolds)
{
    auto *organizations = zeroed<FlatOrganization>(2);
    organizations[0].inn = text("a");
    organizations[1].contact = zeroed<FlatPerson>();
    organizations[1].contact->phone = text("b");
    organizations[1].locale = zeroed<FlatLocale>();
    organizations[1].locale->description = text("c");
    EXPECT_EQ(freeOrganizationsArray(organizations, 2), 0u);
}

TEST_F(WithoutLaunch, ACountWithoutZonesStopsTheReleaseOfASection)
{
    auto *section = zeroed<FlatSection>();
    section->id = 7;
    section->name = text("a");
    section->scheduleId = block<uint32_t>(1);
    section->zonesCount = 3;
    section->tracert = block<uint32_t>(2);
    section->uidType = block<uint32_t>(3);
    EXPECT_EQ(freeSection(section), 10u);
    EXPECT_EQ(section->id, 7u);
    EXPECT_EQ(section->name, nullptr);
    EXPECT_EQ(section->scheduleId, nullptr);
    EXPECT_EQ(section->zonesCount, 3u);
    EXPECT_EQ(value(section->tracert), 2u);
    EXPECT_EQ(value(section->uidType), 3u);
    section->zonesCount = 0;
    EXPECT_EQ(freeSection(section), 0u);
}

TEST_F(WithoutLaunch, ZonesWithoutACountStopTheReleaseOfASection)
{
    auto *section = zeroed<FlatSection>();
    section->zones = zeroed<FlatZone>();
    section->zones[0].name = text("a");
    section->arm = block<uint32_t>(2);
    EXPECT_EQ(freeSection(section), 10u);
    ASSERT_NE(section->zones, nullptr);
    EXPECT_EQ(utf8(section->zones[0].name), "a");
    EXPECT_EQ(value(section->arm), 2u);
    section->zonesCount = 1;
    EXPECT_EQ(freeSection(section), 0u);
}

TEST_F(WithoutLaunch, SectionsAndCountThatDisagreeStopTheReleaseOfADevice)
{
    auto *device = zeroed<FlatDevice>();
    device->account = block<uint32_t>(1);
    device->sectionsCount = 1;
    device->users = zeroed<FlatDeviceUser>();
    device->usersCount = 1;
    device->clusterId = block<uint32_t>(2);
    EXPECT_EQ(freeDevice(device), 10u);
    EXPECT_EQ(device->account, nullptr);
    EXPECT_NE(device->users, nullptr);
    EXPECT_EQ(device->usersCount, 1u);
    EXPECT_EQ(value(device->clusterId), 2u);
    device->sections = zeroed<FlatSection>();
    device->sectionsCount = 0;
    EXPECT_EQ(freeDevice(device), 10u);
    EXPECT_NE(device->sections, nullptr);
    device->sectionsCount = 1;
    EXPECT_EQ(freeDevice(device), 0u);
}

TEST_F(WithoutLaunch, UsersAndCountThatDisagreeStopTheReleaseOfADevice)
{
    auto *device = zeroed<FlatDevice>();
    device->sections = zeroed<FlatSection>();
    device->sectionsCount = 1;
    device->usersCount = 1;
    device->isParted = block<uint8_t>(1);
    EXPECT_EQ(freeDevice(device), 10u);
    EXPECT_EQ(device->sections, nullptr);
    EXPECT_EQ(device->sectionsCount, 0u);
    EXPECT_EQ(value(device->isParted), 1);
    device->users = zeroed<FlatDeviceUser>();
    device->usersCount = 0;
    EXPECT_EQ(freeDevice(device), 10u);
    EXPECT_NE(device->users, nullptr);
    device->usersCount = 1;
    EXPECT_EQ(freeDevice(device), 0u);
}

TEST_F(WithoutLaunch, ADisagreementInsideStopsTheReleaseOfADevice)
{
    auto *device = zeroed<FlatDevice>();
    device->sections = zeroed<FlatSection>(2);
    device->sectionsCount = 2;
    device->sections[0].name = text("a");
    device->sections[1].zonesCount = 1;
    device->domainId = block<uint32_t>(1);
    EXPECT_EQ(freeDevice(device), 10u);
    ASSERT_NE(device->sections, nullptr);
    EXPECT_EQ(device->sectionsCount, 2u);
    EXPECT_EQ(device->sections[0].name, nullptr);
    EXPECT_EQ(value(device->domainId), 1u);
    device->sections[1].zonesCount = 0;
    EXPECT_EQ(freeDevice(device), 0u);
}

TEST_F(WithoutLaunch, DevicesAndCountThatDisagreeStopTheReleaseOfASite)
{
    auto *site = zeroed<FlatSite>();
    site->name = text("a");
    site->isDelegated = block<uint8_t>(1);
    site->deviceCount = 1;
    site->domainId = block<uint32_t>(2);
    site->location = zeroed<FlatLocation>();
    EXPECT_EQ(freeSite(site), 10u);
    EXPECT_EQ(site->name, nullptr);
    EXPECT_EQ(site->isDelegated, nullptr);
    EXPECT_EQ(value(site->domainId), 2u);
    EXPECT_NE(site->location, nullptr);
    site->devices = zeroed<FlatDevice>();
    site->deviceCount = 0;
    EXPECT_EQ(freeSite(site), 10u);
    EXPECT_NE(site->devices, nullptr);
    site->deviceCount = 1;
    EXPECT_EQ(freeSite(site), 0u);
}

TEST_F(WithoutLaunch, ADisagreementStopsTheReleaseOfAnArray)
{
    auto *sections = zeroed<FlatSection>(3);
    sections[0].name = text("a");
    sections[1].name = text("b");
    sections[1].zonesCount = 1;
    sections[2].name = text("c");
    EXPECT_EQ(freeSectionsArray(sections, 3), 10u);
    EXPECT_EQ(sections[0].name, nullptr);
    EXPECT_EQ(sections[1].name, nullptr);
    EXPECT_EQ(utf8(sections[2].name), "c");
    sections[1].zonesCount = 0;
    EXPECT_EQ(freeSectionsArray(sections, 3), 0u);
}

TEST_F(WithoutLaunch, ADisagreementStopsTheReleaseOfDevicesAndSites)
{
    auto *devices = zeroed<FlatDevice>(2);
    devices[0].usersCount = 1;
    devices[1].account = block<uint32_t>(1);
    EXPECT_EQ(freeDevicesArray(devices, 2), 10u);
    EXPECT_EQ(value(devices[1].account), 1u);
    devices[0].usersCount = 0;
    auto *sites = zeroed<FlatSite>(2);
    sites[0].devices = devices;
    sites[1].name = text("a");
    EXPECT_EQ(freeSitesArray(sites, 2), 10u);
    EXPECT_EQ(sites[0].devices, devices);
    EXPECT_EQ(utf8(sites[1].name), "a");
    sites[0].deviceCount = 2;
    EXPECT_EQ(freeSitesArray(sites, 2), 0u);
}

TEST_F(Conventions, ARecordOfTheStoreIsCheckedLikeAnyOther)
{
    ASSERT_EQ(send(addDevice, R"({"D":{"id":1,"sections":[{"id":1,"zones":[{"id":1}]}]}})"), 0u);
    FlatDevice *device = nullptr;
    ASSERT_EQ(getDevice(&device, 1), 0u);
    device->sectionsCount = 0;
    EXPECT_EQ(freeDevice(device), 10u);
    EXPECT_EQ(device->id, 1u);
    device->sectionsCount = 1;
    EXPECT_EQ(freeDevice(device), 0u);
}

// ---- Failures and their lines ----

TEST_F(Conventions, AFailedStatementWritesFourLines)
{
    foreign("DROP TABLE Users");
    const DebugLines lines;
    EXPECT_EQ(list(getUsers).code, 7u);
    EXPECT_TRUE(isFailure(lines.all(), "get users error"));
}

TEST_F(Conventions, AFailedBatchWritesFourLines)
{
    refuse("INSERT", "Locales");
    const DebugLines lines;
    EXPECT_EQ(send(addLocales, R"({"D":{"items":[{"id":1},{"id":2}]}})"), 9u);
    EXPECT_TRUE(isBatchFailure(lines.all(), "add locales error"));
    EXPECT_NE(lines.all()[1].find("refused"), std::string::npos);
}

TEST_F(Conventions, AFailedAddOfUsersWritesThreeLines)
{
    refuse("INSERT", "Users");
    const DebugLines lines;
    EXPECT_EQ(send(addUsers, R"({"D":{"items":[{"id":1}]}})"), 9u);
    EXPECT_EQ(lines.allWithErrorsAt({1}), (Lines{"execute batch error", "*", "add users error"}));
    EXPECT_NE(lines.all()[1].find("refused"), std::string::npos);
}

TEST_F(Conventions, AFailedMergeOfAUserWritesFourLines)
{
    refuse("INSERT", "Users");
    const DebugLines lines;
    EXPECT_EQ(update(updateUser, R"({"D":{"id":1}})").code, 9u);
    EXPECT_TRUE(isFailure(lines.all(), "add user error"));
}

TEST_F(Conventions, ALineIsADebugMessageOfItsOwnWithoutContext)
{
    foreign("DROP TABLE Users");
    const MessageLook look;
    EXPECT_EQ(list(getUsers).code, 7u);
    ASSERT_EQ(messages.size(), 4u);
    EXPECT_EQ(messages[0].text, "execute error");
    EXPECT_EQ(messages[2].text, "get users error");
    for (const Message &message : messages) {
        EXPECT_EQ(message.type, QtDebugMsg);
        EXPECT_FALSE(message.hasFile);
        EXPECT_EQ(message.line, 0);
        EXPECT_FALSE(message.hasFunction);
        EXPECT_TRUE(message.category.empty() || message.category == "default") << message.category; // Qt's own words
    }
}

TEST_F(Conventions, ASuccessWritesNoLine)
{
    const DebugLines lines;
    fill();
    for (const Call &read : lists())
        EXPECT_EQ(read.call(), 0u) << read.name;
    for (const Call &read : singles(1))
        EXPECT_EQ(read.call(), 0u) << read.name;
    for (const Call &removal : removals())
        EXPECT_EQ(removal.call(), 0u) << removal.name;
    EXPECT_EQ(lines.all(), Lines());
}

TEST_F(Conventions, AFailureWithinABatchStoresNothingOfIt)
{
    foreign("CREATE TRIGGER RefuseSecond BEFORE INSERT ON Locales WHEN NEW.LocalesId = 2"
            " BEGIN SELECT RAISE(ABORT, 'refused'); END");
    EXPECT_EQ(send(addLocales, R"({"D":{"items":[{"id":1},{"id":2},{"id":3}]}})"), 9u);
    EXPECT_EQ(file.number("SELECT count(*) FROM Locales"), 0);
}

TEST_F(Conventions, AFailedBatchUndoesTheBatchesBefore)
{
    refuse("INSERT", "Zones");
    const DebugLines lines;
    EXPECT_EQ(send(addDevices, R"({"D":{"items":[{"id":1,"sections":[{"id":1,"zones":[{"id":1}]}]}]}})"), 9u);
    EXPECT_TRUE(isBatchFailure(lines.all(), "add zones error"));
    EXPECT_EQ(file.number("SELECT count(*) FROM Devices"), 0);
    EXPECT_EQ(file.number("SELECT count(*) FROM Sections"), 0);
}

TEST_F(Conventions, AFailedStepUndoesTheStepsBefore)
{
    fill();
    refuse("DELETE", "Zones");
    const DebugLines lines;
    EXPECT_EQ(send(deleteDevice, R"({"D":{"id":1}})"), 9u);
    EXPECT_TRUE(isFailure(lines.all(), "delete zones for device error"));
    EXPECT_EQ(file.number("SELECT count(*) FROM Devices WHERE DevicesId = 1"), 1);
    EXPECT_EQ(file.number("SELECT count(*) FROM Sections"), 1);
}

TEST_F(Conventions, AFailedReadBackUndoesTheWriteInTheWordsOfTheRead)
{
    ASSERT_EQ(send(addUsers, R"({"D":{"items":[{"id":7,"name":"a"}]}})"), 0u);
    foreign("DROP TABLE Domains");
    const DebugLines lines;
    EXPECT_EQ(update(updateUser, R"({"D":{"id":7,"name":"b"}})").code, 9u);
    EXPECT_TRUE(isFailure(lines.all(), "get user error"));
    EXPECT_EQ(file.value("SELECT UsersName FROM Users"), "a");
}

TEST_F(Conventions, AFailedIndexOfEventsUndoesThemAndCountsAsSuccess)
{
    foreign("CREATE TABLE EventsTimeIndex (Text)");
    const DebugLines lines;
    EXPECT_EQ(update(addEvent, R"({"D":{"id":7}})").code, 8u);
    EXPECT_TRUE(isFailure(lines.all(), "Create Events Time Index error"));
    EXPECT_EQ(file.number("SELECT count(*) FROM Events"), 0);
}

TEST_F(Conventions, AMissingParentUndoesNothing)
{
    EXPECT_EQ(update(updateSection, R"({"D":{"device":1,"id":1}})").code, 11u);
    EXPECT_EQ(update(updateZone, R"({"D":{"device":1,"section":2,"id":1}})").code, 11u);
    EXPECT_EQ(file.number("SELECT count(*) FROM Sections"), 1);
    EXPECT_EQ(file.number("SELECT count(*) FROM Zones"), 1);
}

TEST_F(Conventions, AFailedParentCheckUndoesNothing)
{
    foreign("DROP TABLE Devices");
    const DebugLines lines;
    EXPECT_EQ(update(updateSection, R"({"D":{"device":1,"id":1}})").code, 7u);
    EXPECT_TRUE(isFailure(lines.all(), "is device exists error"));
    EXPECT_EQ(file.number("SELECT count(*) FROM Sections"), 1);
}

TEST_F(Conventions, TheStoreWorksAfterAFailure)
{
    refuse("INSERT", "Users");
    EXPECT_EQ(send(addUsers, R"({"D":{"items":[{"id":1}]}})"), 9u);
    EXPECT_EQ(send(addLocales, R"({"D":{"items":[{"id":1}]}})"), 0u);
    foreign("DROP TRIGGER RefuseINSERTUsers");
    EXPECT_EQ(send(addUsers, R"({"D":{"items":[{"id":1}]}})"), 0u);
    EXPECT_EQ(list(getUsers).size(), 1u);
}

// ---- No transaction stays open ----

// Fails where the library still holds a lock.
void writeFromOutside(const File &file, const char *after)
{
    EXPECT_NO_THROW(file.execute("UPDATE Version SET VersionNumber = '0.1'")) << after;
}

TEST_F(Conventions, NoListLeavesALock)
{
    fill();
    for (const Call &read : lists()) {
        EXPECT_EQ(read.call(), 0u) << read.name;
        writeFromOutside(file, read.name);
    }
}

TEST_F(Conventions, NothingFoundLeavesNoLock)
{
    for (const Call &read : lists()) {
        EXPECT_EQ(read.call(), 8u) << read.name;
        writeFromOutside(file, read.name);
    }
    for (const Call &read : singles(7)) {
        EXPECT_EQ(read.call(), 8u) << read.name;
        writeFromOutside(file, read.name);
    }
}

TEST_F(Conventions, NoAddLeavesALock)
{
    for (const Call &write : writes()) {
        if (std::string(write.name).compare(0, 3, "add") != 0)
            continue;
        EXPECT_EQ(write.call(), 0u) << write.name;
        list(getZones, UINT32_MAX); // an add that reads back by id leaves its row in the query
        writeFromOutside(file, write.name);
    }
}

TEST_F(Conventions, NoRemovalLeavesALock)
{
    fill();
    for (const Call &removal : removals()) {
        EXPECT_EQ(removal.call(), 0u) << removal.name;
        writeFromOutside(file, removal.name);
    }
}

TEST_F(UnusableConventions, NoFailureLeavesALock)
{
    file.execute("CREATE TABLE Version (VersionNumber)");
    for (const std::vector<Call> &calls : {lists(), singles(1), writes(), removals()})
        for (const Call &failure : calls) {
            EXPECT_NE(failure.call(), 0u) << failure.name;
            writeFromOutside(file, failure.name);
        }
}

TEST_F(Conventions, NoCallLeavesATransactionOpen)
{
    sqlite3 *opened = connectionOf(library);
    if (!opened)
        GTEST_SKIP() << "Qt contains its own SQLite";
    EXPECT_NE(sqlite3_get_autocommit(opened), 0) << "launch";
    for (const std::vector<Call> &calls : {writes(), lists(), singles(1), singles(7), removals()})
        for (const Call &call : calls) {
            call.call();
            EXPECT_NE(sqlite3_get_autocommit(opened), 0) << call.name;
        }
}

} // namespace
