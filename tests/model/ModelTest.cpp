// Random sequences of calls over all families, each result compared with a model without SQL.
#include "Model.h"

#include <QByteArray>
#include <QtGlobal>
#include <filesystem>
#include <functional>
#include <sstream>

namespace {

using namespace brimlet::test;

// ---- What the entities' documents hold ----

const Members localeMembers = {{"iso", "iso", Kind::Text}, {"description", "description", Kind::Text}};
const Members domainMembers = {
    {"name", "name", Kind::Text}, {"org_id", "orgId", Kind::Number}, {"locale_id", "localeId", Kind::Reference}};
const Members userMembers = {
    {"name", "name", Kind::Text},       {"login", "login", Kind::Text},          {"contacts", "contacts", Kind::Text},
    {"active", "isActive", Kind::Flag}, {"domain", "domainId", Kind::Reference}, {"org", "orgId", Kind::Number},
    {"roles", "roles", Kind::Number},   {"phone", "phone", Kind::Phone}};
const Members organizationMembers = {{"inn", "inn", Kind::Text},
                                     {"off_name", "officialName", Kind::Text},
                                     {"short_name", "shortName", Kind::Text},
                                     {"kpp", "kpp", Kind::Text},
                                     {"ogrn", "ogrn", Kind::Text},
                                     {"address_text", "address", Kind::Text},
                                     {"locale_id", "localeId", Kind::Reference}};
const Members personMembers = {{"name", "name", Kind::Text},
                               {"phone", "phone", Kind::Text},
                               {"email", "email", Kind::Text},
                               {"postal", "postal", Kind::Text}};
const Members contractorMembers = {{"inn", "inn", Kind::Text},     {"org_id", "orgId", Kind::Number},
                                   {"type", "type", Kind::Number}, {"off_name", "officialName", Kind::Text},
                                   {"name", "name", Kind::Text},   {"extra", "extra", Kind::Text}};
const Members contractMembers = {{"number", "number", Kind::Text}, {"contractor_id", "contractorId", Kind::Reference},
                                 {"c_name", "name", Kind::Text},   {"status", "status", Kind::Number},
                                 {"date", "date", Kind::Number},   {"description", "description", Kind::Text},
                                 {"extra", "extra", Kind::Text},   {"operator_id", "userId", Kind::Reference}};
const Members zoneMembers = {{"name", "name", Kind::Text},
                             {"detector", "detector", Kind::Number},
                             {"physic", "physic", Kind::Number},
                             {"form", "form", Kind::Number},
                             {"flags", "flags", Kind::Number},
                             {"delay", "delay", Kind::Number},
                             {"schedule_id", "scheduleId", Kind::Number},
                             {"tracert", "tracert", Kind::Number},
                             {"uid_type", "uidType", Kind::Number},
                             {"arm", "arm", Kind::Number}};
const Members &sectionMembers = zoneMembers; // the same members, beside the zones
const Members deviceUserMembers = {
    {"name", "name", Kind::Text}, {"comment", "comment", Kind::Text}, {"phone", "phone", Kind::Text}};
const Members deviceMembers = {{"account", "account", Kind::Number},
                               {"domain", "domainId", Kind::Reference},
                               {"config_version", "configVersion", Kind::Number},
                               {"parted", "isParted", Kind::Flag},
                               {"cluster_id", "clusterId", Kind::Number}};
const Members siteMembers = {{"name", "name", Kind::Text},
                             {"comment", "comment", Kind::Text},
                             {"extra", "extra", Kind::Text},
                             {"is_crossing", "isCrossing", Kind::Flag},
                             {"domain", "domainId", Kind::Reference},
                             {"address_text", "address", Kind::Text},
                             {"contract_id", "contractId", Kind::WholeReference},
                             {"contract_status", "contractStatus", Kind::Whole},
                             {"type", "type", Kind::Number},
                             {"category", "category", Kind::Number},
                             {"arm_mode", "armMode", Kind::Number},
                             {"delegated", "isDelegated", Kind::Flag},
                             {"site_plan", "isSitePlanExists", Kind::Flag}};
const Members eventMembers = {{"time", "time", Kind::Reference},
                              {"device", "deviceId", Kind::WholeReference},
                              {"section", "sectionId", Kind::Reference},
                              {"zone", "zoneId", Kind::Reference},
                              {"active", "active", Kind::Byte},
                              {"class", "eventClass", Kind::Byte},
                              {"detector", "detector", Kind::Byte},
                              {"reason", "reason", Kind::Byte},
                              {"localtime", "localTime", Kind::Number},
                              {"channel", "channel", Kind::Whole},
                              {"data", "data", Kind::Text},
                              {"review_id", "reviewId", Kind::Number},
                              {"review_state", "reviewState", Kind::Byte},
                              {"operator_id", "userId", Kind::Reference},
                              {"is_closed", "isClosed", Kind::Flag},
                              {"affect", "affect", Kind::Flag},
                              {"jdata", "jData", Kind::Text}};

// Overwrites the fields that are there.
void merge(Shown &row, const Shown &fields)
{
    for (const auto &[name, value] : fields)
        row[name] = value;
}

// Documents that every add refuses, with their codes; %1 is a valid object, %2 for the key of its id.
struct BadDocument
{
    const char *json;
    uint32_t code;
};
const BadDocument badBatches[] = {{"", 10},
                                  {"not json", 10},
                                  {"[%1]", 10},
                                  {R"({"D":{"items":[]}})", 10},
                                  {R"({"items":[%1]})", 5},
                                  {R"({"D":[%1]})", 5},
                                  {R"({"D":{"items":{}}})", 5},
                                  {R"({"D":{"items":[%1,5]}})", 5},
                                  {R"({"D":{"items":[%1,{},%1]}})", 5},
                                  {R"({"D":{"items":[%1,{"%2":"1"}]}})", 5},
                                  {R"({"D":{"items":[%1,{"%2":null}]}})", 5}};
const BadDocument badRecords[] = {{"", 10},
                                  {"[]", 10},
                                  {R"({"d":%1})", 5},
                                  {R"({"D":5})", 5},
                                  {R"({"D":{"%2":"1","device":1,"section":1}})", 5},
                                  {R"({"D":{"%2":true,"device":1,"section":1}})", 5}};

std::string replaced(std::string text, const std::string &place, const std::string &by)
{
    for (size_t at = text.find(place); at != std::string::npos; at = text.find(place, at + by.size()))
        text.replace(at, place.size(), by);
    return text;
}

std::string bad(const BadDocument &document, const std::string &object, const std::string &idKey)
{
    return replaced(replaced(document.json, "%1", object), "%2", idKey);
}

// ---- The sequences ----

// Their many small writes are made where they cost no disk, if the system has such a place.
[[maybe_unused]] const bool isInMemory =
    !qEnvironmentVariableIsSet("TMPDIR") && std::filesystem::exists("/dev/shm") && qputenv("TMPDIR", "/dev/shm");

class Sequences : public StoreTest, public ::testing::WithParamInterface<uint32_t>
{
protected:
    void run(uint32_t seed, int steps);

private:
    // An entity of one table, with the functions and the part of the model that belong to it.
    template<class Flat>
    struct Entity
    {
        const char *name;
        const char *idKey;
        const char *deleteKey;
        const Members &members;
        Rows Model::*rows;
        Shown (Model::*show)(Id) const;
        uint32_t (*add)(const uint16_t *, uint32_t);
        uint32_t (*update)(Flat **, const uint16_t *, uint32_t);
        uint32_t (*remove)(const uint16_t *, uint32_t);
        uint32_t (*get)(Flat **, uint32_t);
        uint32_t (*getAll)(Flat **, uint32_t *);
        uint32_t (*getBy)(Flat **, uint32_t *, const uint16_t *, uint32_t, const uint16_t *, uint32_t);
    };

    const Entity<FlatLocale> locales{"locale",        "id",           nullptr,    localeMembers,
                                     &Model::locales, &Model::locale, addLocales, nullptr,
                                     nullptr,         getLocale,      getLocales, getLocalesWithParams};
    const Entity<FlatDomain> domains{"domain",        "id",           "domain_id", domainMembers,
                                     &Model::domains, &Model::domain, addDomains,  updateDomain,
                                     deleteDomain,    getDomain,      getDomains,  getDomainsWithParams};
    const Entity<FlatUser> users{"user",   "id",       "op_id",    userMembers, &Model::users, &Model::user,
                                 addUsers, updateUser, deleteUser, getUser,     getUsers,      getUsersWithParams};
    const Entity<FlatOrganization> organizations{"organization",
                                                 "org_id",
                                                 "org_id",
                                                 organizationMembers,
                                                 &Model::organizations,
                                                 &Model::organization,
                                                 addOrganizations,
                                                 updateOrganization,
                                                 deleteOrganization,
                                                 getOrganization,
                                                 getOrganizations,
                                                 getOrganizationsWithParams};
    const Entity<FlatContractor> contractors{"contractor",
                                             "id",
                                             "id",
                                             contractorMembers,
                                             &Model::contractors,
                                             &Model::contractor,
                                             addContractors,
                                             updateContractor,
                                             deleteContractor,
                                             getContractor,
                                             getContractors,
                                             getContractorsWithParams};
    const Entity<FlatContract> contracts{
        "contract",   "id",           "id",           contractMembers, &Model::contracts, &Model::contract,
        addContracts, updateContract, deleteContract, getContract,     getContracts,      getContractsWithParams};
    const Entity<FlatSite> sites{"site",   "id",       "site_id",  siteMembers, &Model::sites, &Model::site,
                                 addSites, updateSite, deleteSite, getSite,     getSites,      getSitesWithParams};
    const Entity<FlatDevice> devices{"device",        "id",           "id",       deviceMembers,
                                     &Model::devices, &Model::device, addDevices, updateDeviceFw,
                                     deleteDevice,    getDevice,      getDevices, getDevicesWithParams};

    // ---- Comparing ----

    template<class Flat>
    void expectRecord(const Answer<Flat> &answer, uint32_t code, const Shown &record)
    {
        EXPECT_EQ(answer.code, code);
        EXPECT_EQ(answer.record ? show(*answer.record) : Shown(), code == 0 ? record : Shown());
    }

    template<class Flat>
    void expectList(const List<Flat> &list, const std::map<Id, Shown> &records)
    {
        EXPECT_EQ(list.code, records.empty() ? 8u : 0u);
        EXPECT_EQ(list.size(), records.size());
        EXPECT_EQ(showAll(list), records);
    }

    template<class Flat>
    std::map<Id, Shown> shown(const Entity<Flat> &entity)
    {
        std::map<Id, Shown> records;
        for (const auto &row : model.*entity.rows)
            records[row.first] = (model.*entity.show)(row.first);
        return records;
    }

    std::map<Id, Shown> shownEvents(const std::function<bool(const Shown &)> &isListed)
    {
        std::map<Id, Shown> records;
        for (const auto &[id, row] : model.events)
            if (model.hasDeviceOf(row) && isListed(row))
                records[id] = model.event(id);
        return records;
    }

    std::map<Id, Shown> shownSections(Id device)
    {
        std::map<Id, Shown> records;
        for (const auto &entry : model.sections)
            if (entry.first.first == device)
                records[entry.first.second] = model.section(device, entry.first.second);
        return records;
    }

    std::map<Id, Shown> shownZones(Id device, const std::function<bool(const Shown &)> &isListed)
    {
        std::map<Id, Shown> records;
        for (const auto &[key, row] : model.zones)
            if (key.first == device && isListed(row))
                records[key.second] = model.zone(device, key.second);
        return records;
    }

    // ---- Documents with what is nested in them, and their traces in the model ----

    Document makeOrganization(Shown *person)
    {
        Document organization = makeDocument(dice, "org_id", organizationMembers);
        if (dice.isLucky(60)) {
            const Document contact = makeDocument(dice, "id", personMembers);
            organization.append("contact", contact.object());
            organization.row["contactId"] = contact.row.at("id");
            *person = contact.row;
        } else if (dice.isLucky(30)) {
            organization.append("contact", dice.isLucky(50) ? "{}" : "7"); // means none
        }
        return organization;
    }

    Document makeSite(Shown *location)
    {
        Document site = makeDocument(dice, "id", siteMembers);
        if (dice.isLucky(50)) {
            Shown &made = *location;
            made["id"] = site.row.at("id");
            std::string object = R"("of":"the site")";
            if (dice.isLucky(70)) {
                object += R"(,"lat":-12.25)";
                made["latitude"] = "-12.250000";
            }
            if (dice.isLucky(70)) {
                object += R"(,"lon":"no number")";
                made["longitude"] = "0.000000";
            }
            site.append("location", "{" + object + "}");
        } else if (dice.isLucky(30)) {
            site.append("location", "5"); // means none
        }
        return site;
    }

    // Adds the tree of a device to a document, and what it writes to `changes`, in the order of writing.
    Document makeDevice(std::vector<std::function<void()>> &changes)
    {
        Document device = makeDocument(dice, "id", deviceMembers);
        const Id id = device.id();
        changes.push_back([this, id, row = device.row] { model.devices[id] = row; });
        if (dice.isLucky(70)) {
            std::string sections;
            for (uint32_t count = dice.below(3); count > 0; --count) {
                Document section = makeDocument(dice, dice.isLucky(50) ? "id" : "section", sectionMembers);
                changes.push_back([this, id, row = section.row, number = section.id()] {
                    model.sections[{id, number}] = row;
                });
                std::string zones;
                for (uint32_t zoneCount = dice.below(3); zoneCount > 0; --zoneCount) {
                    Document zone = makeDocument(dice, dice.isLucky(50) ? "id" : "zone", zoneMembers);
                    zones += (zones.empty() ? "" : ",") + zone.object();
                    zone.row["sectionId"] = section.row.at("id");
                    changes.push_back([this, id, row = zone.row, number = zone.id()] {
                        model.zones[{id, number}] = row;
                    });
                }
                section.append("zones", "[" + zones + "]");
                sections += (sections.empty() ? "" : ",") + section.object();
            }
            device.append("sections", "[" + sections + "]");
        }
        if (dice.isLucky(70)) {
            std::string deviceUsers;
            for (uint32_t count = dice.below(3); count > 0; --count) {
                Document user = makeDocument(dice, "user_index", deviceUserMembers);
                const Pair key(id, user.id());
                changes.push_back([this, key, row = user.row] { model.deviceUsers[key] = row; });
                std::string numbers;
                for (uint32_t numberCount = dice.below(3); numberCount > 0; --numberCount) {
                    const Id number = dice.id();
                    numbers += (numbers.empty() ? "" : ",") + std::to_string(number);
                    changes.push_back([this, key, number] { model.links[key][number] = true; });
                }
                user.append("sections", numbers.empty() && dice.isLucky(50) ? "5" : "[" + numbers + "]");
                deviceUsers += (deviceUsers.empty() ? "" : ",") + user.object();
            }
            device.append("users", "[" + deviceUsers + "]");
        }
        return device;
    }

    // ---- Steps ----

    // A document goes in; `change` is what a sound one does to the model.
    template<class Flat>
    void add(const Entity<Flat> &entity, const std::function<Document(std::vector<std::function<void()>> &)> &make)
    {
        std::vector<std::function<void()>> changes;
        std::string items;
        for (uint32_t count = 1 + dice.below(3); count > 0; --count)
            items += (items.empty() ? "" : ",") + make(changes).object();
        if (dice.isLucky(8)) {
            const BadDocument &document = dice.oneOf(badBatches);
            EXPECT_EQ(send(entity.add, say(bad(document, items, entity.idKey))), document.code);
            return;
        }
        EXPECT_EQ(send(entity.add, say(batch(items))), 0u);
        for (const auto &change : changes)
            change();
    }

    template<class Flat>
    void addPlain(const Entity<Flat> &entity)
    {
        add(entity, [&](auto &changes) {
            const Document document = makeDocument(dice, entity.idKey, entity.members);
            changes.push_back([&, document] { (model.*entity.rows)[document.id()] = document.row; });
            return document;
        });
    }

    void addOrganization()
    {
        add(organizations, [&](auto &changes) {
            Shown person;
            const Document document = makeOrganization(&person);
            changes.push_back([this, document, person] {
                model.organizations[document.id()] = document.row;
                if (!person.empty())
                    model.persons[static_cast<Id>(idOf(person, "id"))] = person;
            });
            return document;
        });
    }

    void addSite()
    {
        add(sites, [&](auto &changes) {
            Shown location;
            Document document = makeSite(&location);
            changes.push_back([this, document, location] {
                model.sites[document.id()] = document.row;
                if (!location.empty())
                    model.locations[document.id()] = location;
            });
            if (dice.isLucky(40))
                document.append("devices", "[" + makeDevice(changes).object() + "]");
            return document;
        });
    }

    template<class Flat>
    bool refusesUpdate(uint32_t (*function)(Flat **, const uint16_t *, uint32_t), const std::string &idKey)
    {
        if (!dice.isLucky(8))
            return false;
        const BadDocument &document = dice.oneOf(badRecords);
        expectRecord(update(function, say(bad(document, "{}", idKey))), document.code, {});
        return true;
    }

    template<class Flat>
    void updatePlain(const Entity<Flat> &entity)
    {
        if (refusesUpdate(entity.update, entity.idKey))
            return;
        const Document document = makeDocument(dice, entity.idKey, entity.members);
        merge((model.*entity.rows)[document.id()], document.row);
        expectRecord(update(entity.update, say(one(document.object()))), 0, (model.*entity.show)(document.id()));
    }

    void updateOneOrganization()
    {
        if (refusesUpdate(updateOrganization, "org_id"))
            return;
        Shown person;
        const Document document = makeOrganization(&person);
        merge(model.organizations[document.id()], document.row);
        if (!person.empty())
            model.persons[static_cast<Id>(idOf(person, "id"))] = person; // whole
        expectRecord(update(updateOrganization, say(one(document.object()))), 0, model.organization(document.id()));
    }

    void updateOneSite()
    {
        if (refusesUpdate(updateSite, "id"))
            return;
        Shown location;
        Document document = makeSite(&location);
        std::vector<std::function<void()>> dropped;
        if (dice.isLucky(20))
            document.append("devices", "[" + makeDevice(dropped).object() + "]");
        merge(model.sites[document.id()], document.row);
        if (!location.empty())
            model.locations[document.id()] = location; // whole
        expectRecord(update(updateSite, say(one(document.object()))), 0, model.site(document.id()));
    }

    void updateFirmware()
    {
        std::vector<std::function<void()>> dropped;
        const Document document = makeDevice(dropped);
        const Id id = document.id();
        const bool isThere = model.devices.count(id) != 0;
        if (isThere) {
            model.devices[id].erase("configVersion");
            if (document.row.count("configVersion"))
                model.devices[id]["configVersion"] = document.row.at("configVersion");
        }
        expectRecord(update(updateDeviceFw, say(one(document.object()))), isThere ? 0 : 8,
                     isThere ? model.device(id) : Shown());
    }

    void addOneDevice()
    {
        std::vector<std::function<void()>> changes;
        const Document document = makeDevice(changes);
        if (dice.isLucky(8)) {
            const BadDocument &refused = dice.oneOf(badRecords);
            EXPECT_EQ(send(addDevice, say(bad(refused, document.object(), "id"))), refused.code);
            return;
        }
        EXPECT_EQ(send(addDevice, say(one(document.object()))), 0u);
        for (const auto &change : changes)
            change();
    }

    void updateOneSection()
    {
        if (refusesUpdate(updateSection, "id"))
            return;
        const Id device = dice.id();
        Document document = makeDocument(dice, "id", sectionMembers);
        merge(model.sections[{device, document.id()}], document.row);
        document.append("device", std::to_string(device));
        if (dice.isLucky(20))
            document.append("zones", R"([{"id":1,"name":"not written"}])");
        expectRecord(update(updateSection, say(one(document.object()))), model.devices.count(device) ? 0 : 11,
                     model.section(device, document.id()));
    }

    void updateOneZone()
    {
        if (refusesUpdate(updateZone, "id"))
            return;
        const Id device = dice.id();
        const Id section = dice.id();
        Document document = makeDocument(dice, "zone", zoneMembers);
        merge(model.zones[{device, document.id()}], document.row);
        model.zones[{device, document.id()}]["sectionId"] = std::to_string(section);
        document.append("device", std::to_string(device));
        document.append("section", std::to_string(section));
        const bool hasParents = model.sections.count({device, section}) && model.devices.count(device);
        expectRecord(update(updateZone, say(one(document.object()))), hasParents ? 0 : 11,
                     model.zone(device, document.id()));
    }

    template<class Flat>
    void removeOne(const Entity<Flat> &entity, const std::function<void(Id)> &also = {})
    {
        if (dice.isLucky(8)) { // an unknown key, and a value that is no number
            EXPECT_EQ(send(entity.remove, say(R"({"D":{"no":1}})")), 5u);
            return;
        }
        const Id id = dice.isLucky(5) ? 0 : dice.id();
        const std::string value = id == 0 ? R"("text")" : std::to_string(id);
        const bool isThere = (model.*entity.rows).count(id) != 0;
        if (isThere && also)
            also(id);
        (model.*entity.rows).erase(id);
        EXPECT_EQ(send(entity.remove, say(R"({"D":{")" + std::string(entity.deleteKey) + "\":" + value + "}}")),
                  isThere ? 0u : 8u);
    }

    void removeSection()
    {
        const Id device = dice.id();
        const Id section = dice.id();
        const bool isThere = model.sections.count({device, section}) != 0;
        if (isThere)
            model.deleteSection(device, section);
        EXPECT_EQ(send(deleteSection, say(R"({"D":{"device":)" + std::to_string(device) + R"(,"section":)"
                                          + std::to_string(section) + "}}")),
                  isThere ? 0u : 8u);
    }

    void removeZone()
    {
        const Id device = dice.id();
        const Id section = dice.id();
        const Id zone = dice.id();
        const auto found = model.zones.find({device, zone});
        const bool isThere = found != model.zones.end() && idOf(found->second, "sectionId") == section;
        if (isThere)
            model.zones.erase(found);
        EXPECT_EQ(send(deleteZone, say(R"({"D":{"device":)" + std::to_string(device) + R"(,"section":)"
                                       + std::to_string(section) + R"(,"zone":)" + std::to_string(zone) + "}}")),
                  isThere ? 0u : 8u);
    }

    void addOneEvent()
    {
        if (refusesUpdate(addEvent, "id"))
            return;
        const Document document = makeDocument(dice, "id", eventMembers);
        model.events[document.id()] = document.row;
        expectRecord(update(addEvent, say(one(document.object()))), 0, model.event(document.id()));
    }

    void addSomeEvents()
    {
        std::string items;
        std::vector<Document> documents;
        for (uint32_t count = 1 + dice.below(4); count > 0; --count) {
            documents.push_back(makeDocument(dice, "id", eventMembers));
            items += (items.empty() ? "" : ",") + documents.back().object();
        }
        if (dice.isLucky(8)) {
            const BadDocument &document = dice.oneOf(badBatches);
            EXPECT_EQ(listAdded(say(bad(document, items, "id"))).code, document.code);
            return;
        }
        for (const Document &document : documents)
            model.events[document.id()] = document.row;
        std::map<Id, Shown> records;
        for (const Document &document : documents)
            if (model.hasDeviceOf(model.events.at(document.id())))
                records[document.id()] = model.event(document.id());
        expectList(listAdded(say(batch(items))), records);
    }

    void clearMark()
    {
        const Id id = dice.id();
        const bool isThere = model.events.count(id) != 0;
        if (isThere)
            model.events[id]["affect"] = "0";
        expectRecord(update(removeAffectFlag, say(one(R"({"id":)" + std::to_string(id) + "}"))), isThere ? 0 : 8,
                     isThere ? model.event(id) : Shown());
    }

    void purge()
    {
        const Id date = dice.id();
        say("purge up to " + std::to_string(date));
        for (auto event = model.events.begin(); event != model.events.end();) {
            const int64_t time = idOf(event->second, "time");
            const bool goes = time >= 0 && time <= date && idOf(event->second, "affect") == 0;
            event = goes ? model.events.erase(event) : std::next(event);
        }
        EXPECT_EQ(clearEventsBeforeDateExceptAffects(date), 0u);
    }

    template<class Flat>
    void read(const Entity<Flat> &entity)
    {
        const Id id = dice.id();
        say("get " + std::string(entity.name) + " " + std::to_string(id));
        const bool isThere = (model.*entity.rows).count(id) != 0;
        expectRecord(get(entity.get, id), isThere ? 0 : 8, isThere ? (model.*entity.show)(id) : Shown());
    }

    // By a member and the value that some row has there, or by an id.
    template<class Flat>
    void search(const Entity<Flat> &entity)
    {
        const Member &member = dice.oneOf(entity.members);
        const std::string key = member.key;
        if (key == "operator_id" || key == "site_plan" || key == "cluster_id") {
            EXPECT_EQ(listBy(entity.getBy, key, "1").code, 10u);
            return;
        }
        std::string value = "1";
        for (const auto &row : model.*entity.rows)
            if (row.second.count(member.field) && dice.isLucky(50))
                value = row.second.at(member.field);
        say("search " + std::string(entity.name) + " by " + key + " = " + value);
        std::map<Id, Shown> records;
        for (const auto &[id, row] : model.*entity.rows)
            if (row.count(member.field) && row.at(member.field) == value)
                records[id] = (model.*entity.show)(id);
        expectList(listBy(entity.getBy, key, value), records);
    }

    template<class Flat>
    void readOrSearch(const Entity<Flat> &entity)
    {
        if (dice.isLucky(50))
            read(entity);
        else
            search(entity);
    }

    void readEquipment()
    {
        const Id device = dice.id();
        const Id section = dice.id();
        const Id zone = dice.id();
        say("read equipment " + std::to_string(device) + ", " + std::to_string(section) + ", " + std::to_string(zone));
        const bool hasSection = model.sections.count({device, section}) != 0;
        expectRecord(get(getSection, section, device), hasSection ? 0 : 8,
                     hasSection ? model.section(device, section) : Shown());
        const auto found = model.zones.find({device, zone});
        const bool hasZone = found != model.zones.end() && idOf(found->second, "sectionId") == section;
        expectRecord(get(getZone, zone, device, section), hasZone ? 0 : 8,
                     hasZone ? model.zone(device, zone) : Shown());
        const auto isOne = [](const Shown &row) { return row.count("detector") && row.at("detector") == "1"; };
        const auto isInSection = [&](const Shown &row) { return idOf(row, "sectionId") == section; };
        expectList(list(getSections, device), shownSections(device));
        expectList(list(getZones, device), shownZones(device, [](const Shown &) { return true; }));
        expectList(list(getZonesForSection, device, section), shownZones(device, isInSection));
        expectList(listBy(getZonesWithParams, "detector", "1", device), shownZones(device, isOne));
        expectList(listBy(getZonesForSectionWithParams, "detector", "1", device, section),
                   shownZones(device, [&](const Shown &row) { return isOne(row) && isInSection(row); }));
        std::map<Id, Shown> armed;
        for (const auto &entry : model.sections)
            if (entry.first.first == device && entry.second.count("arm") && entry.second.at("arm") == "1")
                armed[entry.first.second] = model.section(device, entry.first.second);
        expectList(listBy(getSectionsWithParams, "arm", "1", device), armed);
    }

    void readJournal()
    {
        const Id from = dice.id();
        const Id to = dice.id();
        say("events from " + std::to_string(from) + " to " + std::to_string(to));
        expectList(list(getEvents, from, to), shownEvents([&](const Shown &row) {
                       const int64_t time = idOf(row, "time");
                       return time >= 0 && from <= time && time <= to;
                   }));
        expectList(list(getAffectEvents), shownEvents([](const Shown &row) { return idOf(row, "affect") == 1; }));
    }

    void readSiteLabel()
    {
        const Id id = dice.id();
        say("name and address of site " + std::to_string(id));
        uint16_t *name = nullptr;
        uint16_t *address = nullptr;
        EXPECT_EQ(getSiteNameAndAddress(&name, &address, id), model.sites.count(id) ? 0u : 8u);
        const Owned<uint16_t> ownedName(name);
        const Owned<uint16_t> ownedAddress(address);
        const Shown row = model.sites.count(id) ? model.sites.at(id) : Shown();
        EXPECT_EQ(utf8(name), row.count("name") ? std::optional(row.at("name")) : std::nullopt);
        EXPECT_EQ(utf8(address), row.count("address") ? std::optional(row.at("address")) : std::nullopt);
    }

    void rememberServer()
    {
        model.serverAddress = dice.isLucky(20) ? "" : "server " + std::to_string(dice.below(9));
        EXPECT_EQ(send(setServerIp, say(model.serverAddress)), 0u);
    }

    void clearEverything()
    {
        const bool isAll = dice.isLucky(50);
        say(isAll ? "clear all" : "clear all except events");
        EXPECT_EQ(isAll ? clearAll() : clearAllExceptEvents(), 0u);
        model.clearExceptEvents();
        if (isAll)
            model.events.clear();
    }

    void launchAgain()
    {
        say("launch again");
        relaunch();
        EXPECT_EQ(getLaunchCacheResult(), 0u);
    }

    // Everything that the lists show.
    void compareAll()
    {
        expectList(list(getLocales), shown(locales));
        expectList(list(getDomains), shown(domains));
        expectList(list(getUsers), shown(users));
        expectList(list(getOrganizations), shown(organizations));
        expectList(list(getContractors), shown(contractors));
        expectList(list(getContracts), shown(contracts));
        expectList(list(getDevices), shown(devices));
        expectList(list(getSites), shown(sites));
        expectList(list(getEvents, 0, UINT32_MAX),
                   shownEvents([](const Shown &row) { return row.count("time") != 0; }));
        uint16_t *address = nullptr;
        EXPECT_EQ(getServerIp(&address), 0u);
        EXPECT_EQ(utf8(address).value_or(""), model.serverAddress);
        Free()(address);
    }

    // Remembers a step for the report of a failure.
    const std::string &say(const std::string &step)
    {
        story << step << '\n';
        return lastStep = step;
    }

    struct Step
    {
        uint32_t weight;
        std::function<void()> take;
    };
    const std::vector<Step> steps = {
        {4, [this] { addPlain(locales); }},
        {6, [this] { addPlain(domains); }},
        {6, [this] { addPlain(users); }},
        {6, [this] { addOrganization(); }},
        {4, [this] { addPlain(contractors); }},
        {6, [this] { addPlain(contracts); }},
        {8, [this] { add(devices, [this](auto &changes) { return makeDevice(changes); }); }},
        {8, [this] { addOneDevice(); }},
        {8, [this] { addSite(); }},
        {8, [this] { addSomeEvents(); }},
        {8, [this] { addOneEvent(); }},
        {6, [this] { updatePlain(domains); }},
        {6, [this] { updatePlain(users); }},
        {6, [this] { updateOneOrganization(); }},
        {4, [this] { updatePlain(contractors); }},
        {6, [this] { updatePlain(contracts); }},
        {6, [this] { updateOneSite(); }},
        {6, [this] { updateFirmware(); }},
        {8, [this] { updateOneSection(); }},
        {8, [this] { updateOneZone(); }},
        {2, [this] { removeOne(domains); }},
        {2, [this] { removeOne(users); }},
        {3,
         [this] {
             removeOne(organizations, [this](Id id) {
                 if (const int64_t person = idOf(model.organizations.at(id), "contactId"); person >= 0)
                     model.persons.erase(static_cast<Id>(person));
             });
         }},
        {2, [this] { removeOne(contractors); }},
        {2, [this] { removeOne(contracts); }},
        {3, [this] { removeOne(devices, [this](Id id) { model.deleteDevice(id); }); }},
        {3, [this] { removeOne(sites, [this](Id id) { model.locations.erase(id); }); }},
        {4, [this] { removeSection(); }},
        {4, [this] { removeZone(); }},
        {4, [this] { clearMark(); }},
        {3, [this] { purge(); }},
        {2, [this] { readOrSearch(locales); }},
        {3, [this] { readOrSearch(domains); }},
        {3, [this] { readOrSearch(users); }},
        {3, [this] { readOrSearch(organizations); }},
        {3, [this] { readOrSearch(contractors); }},
        {3, [this] { readOrSearch(contracts); }},
        {3, [this] { readOrSearch(devices); }},
        {3, [this] { readOrSearch(sites); }},
        {5, [this] { readEquipment(); }},
        {5, [this] { readJournal(); }},
        {2, [this] { readSiteLabel(); }},
        {1, [this] { rememberServer(); }},
        {1, [this] { clearEverything(); }},
    };

    Model model;
    Dice dice{0};
    std::ostringstream story;
    std::string lastStep;
};

void Sequences::run(uint32_t seed, int length)
{
    model = Model();
    dice = Dice(seed);
    story.str({});
    ASSERT_EQ(clearAll(), 0u);
    ASSERT_EQ(send(setServerIp, ""), 0u);

    uint32_t weights = 0;
    for (const Step &step : steps)
        weights += step.weight;
    for (int taken = 0; taken < length && !HasFailure(); ++taken) {
        uint32_t chosen = dice.below(weights);
        for (const Step &step : steps) {
            if (chosen < step.weight) {
                step.take();
                break;
            }
            chosen -= step.weight;
        }
    }
    if (!HasFailure() && dice.isLucky(2))
        launchAgain();
    if (!HasFailure())
        compareAll();
    if (HasFailure())
        ADD_FAILURE() << "seed " << seed << ", after these steps:\n" << story.str();
}

TEST_P(Sequences, AgreeWithTheModel)
{
    const uint32_t block = GetParam();
    for (uint32_t seed = block * 1000; seed < block * 1000 + 500 && !HasFailure(); ++seed)
        run(seed, 40);
}

INSTANTIATE_TEST_SUITE_P(Random, Sequences, ::testing::Range(0u, 8u));

} // namespace
