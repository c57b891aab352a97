#include "Workload.h"

#include "Child.h"
#include "Store.h"

#include <algorithm>
#include <stdexcept>

namespace brimlet::test {

namespace {

// ---- Documents ----

std::string str(int number)
{
    return std::to_string(number);
}

std::string one(const std::string &members)
{
    return R"({"D":{)" + members + "}}";
}

// {"D":{"items":[...]}} of the records first to first + count - 1.
std::string batch(int first, int count, const std::function<std::string(int)> &record)
{
    std::string items;
    for (int id = first; id < first + count; ++id)
        items += (items.empty() ? "{" : ",{") + record(id) + "}";
    return R"({"D":{"items":[)" + items + "]}}";
}

std::string locale(int id)
{
    return R"("id":)" + str(id) + R"(,"iso":"l)" + str(id) + R"(","description":"locale )" + str(id) + '"';
}

std::string domain(int id)
{
    return R"("id":)" + str(id) + R"(,"name":"domain )" + str(id) + R"(","org_id":)" + str(id % 20 + 1)
         + R"(,"locale_id":)" + str(id % 5 + 1);
}

std::string user(int id)
{
    return R"("id":)" + str(id) + R"(,"name":"user )" + str(id) + R"(","login":"login)" + str(id)
         + R"(","contacts":"street, town, country","active":1,"domain":)" + str(id % 10 + 1) + R"(,"phone":700000)"
         + str(id);
}

std::string organization(int id)
{
    return R"("org_id":)" + str(id) + R"(,"off_name":"organization )" + str(id) + R"(","locale_id":)" + str(id % 5 + 1)
         + R"(,"contact":{"id":)" + str(id) + R"(,"name":"person )" + str(id) + R"("})";
}

std::string contractor(int id)
{
    return R"("id":)" + str(id) + R"(,"off_name":"contractor )" + str(id) + R"(","org_id":)" + str(id);
}

std::string contract(int id)
{
    return R"("id":)" + str(id) + R"(,"number":"n)" + str(id) + R"(","contractor_id":)" + str(id) + R"(,"operator_id":)"
         + str(id);
}

std::string zone(int device, int section, int number)
{
    return R"({"id":)" + str(section * 10 + number) + R"(,"name":"zone )" + str(device) + R"("})";
}

std::string section(int device, int number)
{
    std::string zones;
    for (int id = 1; id <= 4; ++id)
        zones += (id > 1 ? "," : "") + zone(device, number, id);
    return R"({"id":)" + str(number) + R"(,"name":"section )" + str(device) + R"(","zones":[)" + zones + "]}";
}

std::string device(int id)
{
    return R"("id":)" + str(id) + R"(,"account":)" + str(4000 + id) + R"(,"domain":)" + str(id % 10 + 1)
         + R"(,"sections":[)" + section(id, 1) + "," + section(id, 2) + "," + section(id, 3)
         + R"(],"users":[{"user_index":1,"name":"holder","sections":[1,2]},{"user_index":2,"sections":[3]}])";
}

std::string site(int id)
{
    return R"("id":)" + str(id) + R"(,"name":"site )" + str(id) + R"(","address_text":"street )" + str(id)
         + R"(","domain":)" + str(id % 10 + 1) + R"(,"contract_id":)" + str(id)
         + R"(,"location":{"lat":55.5,"lon":37.25})";
}

std::string siteWithDevice(int id)
{
    return site(id) + R"(,"devices":[{)" + device(id) + "}]";
}

std::string event(int id)
{
    return R"("id":)" + str(id) + R"(,"time":)" + str(1000 + id) + R"(,"device":)" + str(id % 8 + 1)
         + R"(,"section":1,"zone":11,"data":"what happened","affect":)" + str(id % 2);
}

// ---- Calls ----

uint32_t addedEvents(const std::string &json)
{
    return listAdded(json).code;
}

template<class Function>
Step adding(const char *name, Function function, const std::string &json)
{
    return {name, [=] { return send(function, json); }};
}

template<class Flat>
Step updating(const char *name, uint32_t (*function)(Flat **, const uint16_t *, uint32_t), const std::string &json)
{
    return {name, [=] { return update(function, json).code; }};
}

template<class Function, class... Keys>
Step reading(const char *name, Function function, Keys... keys)
{
    return {name, [=] { return get(function, keys...).code; }};
}

template<class Function, class... Keys>
Step listing(const char *name, Function function, Keys... keys)
{
    return {name, [=] { return list(function, keys...).code; }};
}

template<class Function, class... Parents>
Step finding(const char *name, Function function, const char *key, Parents... parents)
{
    return {name, [=] { return listBy(function, key, "1", parents...).code; }};
}

Step addressing(const std::string &address)
{
    return {"setServerIp", [=] { return send(setServerIp, address); }};
}

std::vector<Step> batchAdds(int first)
{
    return {adding("addLocales", addLocales, batch(first, 20, locale)),
            adding("addDomains", addDomains, batch(first, 20, domain)),
            adding("addUsers", addUsers, batch(first, 60, user)),
            adding("addOrganizations", addOrganizations, batch(first, 20, organization)),
            adding("addContractors", addContractors, batch(first, 20, contractor)),
            adding("addContracts", addContracts, batch(first, 20, contract))};
}

std::vector<Step> deviceAdds(int first)
{
    return {adding("addDevice", addDevice, one(device(first))),
            adding("addDevices", addDevices, batch(first + 1, 6, device))};
}

std::vector<Step> siteAdds(int first)
{
    return {adding("addSites", addSites, batch(first, 4, siteWithDevice))};
}

std::vector<Step> updates(int id)
{
    const std::string key = R"("id":)" + str(id % 8 + 1);
    const std::string name = R"(,"name":"renamed )" + str(id) + '"';
    return {updating("updateUser", updateUser, one(key + name)),
            updating("updateDomain", updateDomain, one(key + name)),
            updating("updateOrganization", updateOrganization, one(organization(id + 200))),
            updating("updateContractor", updateContractor, one(key + name)),
            updating("updateContract", updateContract, one(key + R"(,"c_name":"renamed )" + str(id) + '"')),
            updating("updateDeviceFw", updateDeviceFw, one(key + R"(,"config_version":)" + str(id + 1))),
            updating("updateSection", updateSection, one(R"("device":1,"id":2)" + name)),
            updating("updateZone", updateZone, one(R"("device":1,"section":2,"id":21)" + name)),
            updating("updateSite", updateSite, one(key + name + R"(,"location":{"lat":)" + str(id) + R"(,"lon":1})"))};
}

std::vector<Step> removalsOf(int id)
{
    const auto key = [id](const std::string &name) { return one('"' + name + R"(":)" + str(id)); };
    const std::string inDevice = R"("device":)" + str(id) + R"(,"section":1)";
    return {adding("deleteUser", deleteUser, key("op_id")),
            adding("deleteDomain", deleteDomain, key("domain_id")),
            adding("deleteOrganization", deleteOrganization, key("org_id")),
            adding("deleteContractor", deleteContractor, key("id")),
            adding("deleteContract", deleteContract, key("id")),
            adding("deleteZone", deleteZone, one(inDevice + R"(,"zone":11)")),
            adding("deleteSection", deleteSection, one(inDevice)),
            adding("deleteDevice", deleteDevice, key("id")),
            adding("deleteSite", deleteSite, key("site_id"))};
}

std::vector<Step> eventAdds(int first)
{
    return {updating("addEvent", addEvent, one(event(first))),
            {"addEvents", [=] { return addedEvents(batch(first + 1, 30, event)); }}};
}

std::vector<Step> flagRemovals(int id)
{
    return {updating("removeAffectFlag", removeAffectFlag, one(R"("id":)" + str(id)))};
}

std::vector<Step> clears(int first)
{
    std::vector<Step> steps = {{"clearAllExceptEvents", [] { return clearAllExceptEvents(); }},
                               adding("addUsers", addUsers, batch(first, 40, user)),
                               adding("addDevices", addDevices, batch(1, 8, device)),
                               {"addEvents", [=] { return addedEvents(batch(first + 1, 30, event)); }},
                               {"clearAll", [] { return clearAll(); }},
                               adding("addUsers", addUsers, batch(first, 40, user))};
    return steps;
}

std::vector<Step> retention(int turn)
{
    const auto date = static_cast<uint32_t>(1002 + 8 * turn);
    return {{"clearEventsBeforeDateExceptAffects", [=] { return clearEventsBeforeDateExceptAffects(date); }}};
}

std::vector<Step> addresses(int turn)
{
    return {addressing("10.0.0." + str(turn))};
}

std::vector<Step> repeated(int turns, const std::function<std::vector<Step>(int)> &steps, int first, int stride)
{
    std::vector<Step> all;
    for (int turn = 0; turn < turns; ++turn)
        for (Step &step : steps(first + turn * stride))
            all.push_back(std::move(step));
    return all;
}

} // namespace

void PrintTo(const Step &step, std::ostream *out)
{
    *out << step.name;
}

void PrintTo(const Family &family, std::ostream *out)
{
    *out << family.name;
}

bool fill()
{
    const std::vector<std::vector<Step>> parts = {
        {adding("addLocales", addLocales, batch(1, 5, locale)), adding("addDomains", addDomains, batch(1, 10, domain)),
         adding("addUsers", addUsers, batch(1, 60, user)),
         adding("addOrganizations", addOrganizations, batch(1, 20, organization)),
         adding("addContractors", addContractors, batch(1, 20, contractor)),
         adding("addContracts", addContracts, batch(1, 20, contract)),
         adding("addDevices", addDevices, batch(1, 8, device)), adding("addSites", addSites, batch(1, 10, site))},
        {{"addEvents", [] { return addedEvents(batch(1, 80, event)); }}, addressing("10.0.0.1")}};
    return std::all_of(parts.begin(), parts.end(), [](const std::vector<Step> &steps) {
        return std::all_of(steps.begin(), steps.end(), [](const Step &step) { return step.call() == 0; });
    });
}

void makeFilledFile()
{
    Child child([](Channel &channel) {
        const DebugLines lines;
        Library library;
        channel.tell(fill());
        library.exit();
    });
    if (child.hear() != 1 || !child.wait().isClean())
        throw std::runtime_error("the file could not be filled");
}

std::vector<Family> families()
{
    return {{"BatchAdds", repeated(3, batchAdds, 1000, 100)},  {"Devices", repeated(5, deviceAdds, 1000, 10)},
            {"Sites", repeated(8, siteAdds, 1000, 10)},        {"Updates", repeated(2, updates, 1, 1)},
            {"Removals", repeated(2, removalsOf, 1, 1)},       {"Events", repeated(5, eventAdds, 1000, 100)},
            {"AffectFlags", repeated(12, flagRemovals, 1, 2)}, {"Clears", repeated(3, clears, 1000, 100)},
            {"Retention", repeated(9, retention, 0, 1)},       {"ServerAddress", repeated(15, addresses, 2, 1)}};
}

std::vector<Step> writes()
{
    std::vector<Step> all;
    for (const Family &family : families())
        for (const Step &step : family.steps)
            if (std::none_of(all.begin(), all.end(), [&](const Step &known) { return known.name == step.name; }))
                all.push_back(step);
    return all;
}

std::vector<Step> reads()
{
    return {
        reading("getContract", getContract, 1),
        reading("getContractor", getContractor, 1),
        reading("getDevice", getDevice, 1),
        reading("getDomain", getDomain, 1),
        reading("getLocale", getLocale, 1),
        reading("getOrganization", getOrganization, 1),
        reading("getSite", getSite, 1),
        reading("getUser", getUser, 1),
        reading("getSection", getSection, 1, 1),
        reading("getZone", getZone, 11, 1, 1),
        listing("getContracts", getContracts),
        listing("getContractors", getContractors),
        listing("getDevices", getDevices),
        listing("getDomains", getDomains),
        listing("getLocales", getLocales),
        listing("getOrganizations", getOrganizations),
        listing("getSites", getSites),
        listing("getUsers", getUsers),
        listing("getEvents", getEvents, 0, 9999),
        listing("getAffectEvents", getAffectEvents),
        listing("getSections", getSections, 1),
        listing("getZones", getZones, 1),
        listing("getZonesForSection", getZonesForSection, 1, 1),
        finding("getContractsWithParams", getContractsWithParams, "id"),
        finding("getContractorsWithParams", getContractorsWithParams, "id"),
        finding("getDevicesWithParams", getDevicesWithParams, "id"),
        finding("getDomainsWithParams", getDomainsWithParams, "id"),
        finding("getLocalesWithParams", getLocalesWithParams, "id"),
        finding("getOrganizationsWithParams", getOrganizationsWithParams, "org_id"),
        finding("getSitesWithParams", getSitesWithParams, "id"),
        finding("getUsersWithParams", getUsersWithParams, "id"),
        finding("getSectionsWithParams", getSectionsWithParams, "id", 1),
        {"getZonesWithParams", [] { return listBy(getZonesWithParams, "id", "11", 1).code; }},
        {"getZonesForSectionWithParams", [] { return listBy(getZonesForSectionWithParams, "id", "11", 1, 1).code; }},
        {"getServerIp",
         [] {
             uint16_t *address = nullptr;
             const uint32_t code = getServerIp(&address);
             const Owned<uint16_t> owner(address);
             return code;
         }},
        {"getSiteNameAndAddress",
         [] {
             uint16_t *name = nullptr;
             uint16_t *address = nullptr;
             const uint32_t code = getSiteNameAndAddress(&name, &address, 1);
             const Owned<uint16_t> owners[] = {Owned<uint16_t>(name), Owned<uint16_t>(address)};
             return code;
         }},
    };
}

std::vector<Step> deletions()
{
    std::vector<Step> steps = removalsOf(1);
    for (Step &step : flagRemovals(1))
        steps.push_back(std::move(step));
    return steps;
}

} // namespace brimlet::test
