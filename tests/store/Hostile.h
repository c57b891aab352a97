// What tests of hostile input share: every function that takes a document, a key or an id, and every member of every
// kind of record with the column that it ends in.
#pragma once

#include "Store.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdio>
#include <functional>
#include <map>
#include <sqlite3.h>
#include <stdexcept>
#include <string>
#include <vector>

namespace brimlet::test {

// ---- The functions that take a document ----

using TextFunction = std::function<uint32_t(const uint16_t *, uint32_t)>;

struct Reader
{
    std::string name;
    TextFunction call;
};

template<class Flat>
TextFunction withoutTarget(uint32_t (*function)(Flat **, const uint16_t *, uint32_t))
{
    return [=](const uint16_t *text, uint32_t length) {
        Flat *out = nullptr;
        const uint32_t code = function(&out, text, length);
        const Owned<Flat> owned(out);
        return code;
    };
}

inline uint32_t addEventsWithoutTarget(const uint16_t *text, uint32_t length)
{
    List<FlatEvent> events;
    return addEvents(events.out(), events.count(), text, length);
}

inline std::vector<Reader> readers()
{
    return {
        {"addLocales", addLocales},
        {"addDomains", addDomains},
        {"addUsers", addUsers},
        {"addOrganizations", addOrganizations},
        {"addContractors", addContractors},
        {"addContracts", addContracts},
        {"addDevice", addDevice},
        {"addDevices", addDevices},
        {"addSites", addSites},
        {"addEvent", withoutTarget(addEvent)},
        {"addEvents", addEventsWithoutTarget},
        {"updateDomain", withoutTarget(updateDomain)},
        {"updateUser", withoutTarget(updateUser)},
        {"updateOrganization", withoutTarget(updateOrganization)},
        {"updateContractor", withoutTarget(updateContractor)},
        {"updateContract", withoutTarget(updateContract)},
        {"updateDeviceFw", withoutTarget(updateDeviceFw)},
        {"updateSection", withoutTarget(updateSection)},
        {"updateZone", withoutTarget(updateZone)},
        {"updateSite", withoutTarget(updateSite)},
        {"removeAffectFlag", withoutTarget(removeAffectFlag)},
        {"deleteDomain", deleteDomain},
        {"deleteUser", deleteUser},
        {"deleteOrganization", deleteOrganization},
        {"deleteContractor", deleteContractor},
        {"deleteContract", deleteContract},
        {"deleteDevice", deleteDevice},
        {"deleteSection", deleteSection},
        {"deleteZone", deleteZone},
        {"deleteSite", deleteSite},
    };
}

inline uint32_t call(const TextFunction &function, const std::u16string &text)
{
    return function(reinterpret_cast<const uint16_t *>(text.data()), static_cast<uint32_t>(text.size()));
}

inline void expectAll(const std::string &json, uint32_t code)
{
    const std::u16string text = utf16(json);
    for (const Reader &reader : readers())
        EXPECT_EQ(call(reader.call, text), code) << reader.name << " " << json.substr(0, 80);
}

// ---- The functions that search ----

struct Found
{
    uint32_t code;
    std::vector<uint32_t> ids;
};

// By a key and a value, in the device of a number for sections and zones.
using Search = std::function<Found(const std::string &, const std::string &, uint32_t)>;

template<class Flat>
Found idsOf(const List<Flat> &list)
{
    Found found{list.code, {}};
    if (!list.isNull())
        for (const Flat &record : list)
            found.ids.push_back(record.id);
    return found;
}

template<class Flat>
using SearchFunction = uint32_t (*)(Flat **, uint32_t *, const uint16_t *, uint32_t, const uint16_t *, uint32_t);
template<class Flat>
using PartSearchFunction = uint32_t (*)(Flat **, uint32_t *, const uint16_t *, uint32_t, const uint16_t *, uint32_t,
                                        uint32_t);

template<class Flat>
Search by(SearchFunction<Flat> function)
{
    return
        [=](const std::string &key, const std::string &value, uint32_t) { return idsOf(listBy(function, key, value)); };
}

template<class Flat>
Search inDeviceBy(PartSearchFunction<Flat> function)
{
    return [=](const std::string &key, const std::string &value, uint32_t device) {
        return idsOf(listBy(function, key, value, device));
    };
}

inline Found inFirstSectionBy(const std::string &key, const std::string &value, uint32_t device)
{
    return idsOf(listBy(getZonesForSectionWithParams, key, value, device, 1));
}

inline std::map<std::string, Search> searches()
{
    return {
        {"getLocalesWithParams", by(getLocalesWithParams)},
        {"getDomainsWithParams", by(getDomainsWithParams)},
        {"getUsersWithParams", by(getUsersWithParams)},
        {"getOrganizationsWithParams", by(getOrganizationsWithParams)},
        {"getContractorsWithParams", by(getContractorsWithParams)},
        {"getContractsWithParams", by(getContractsWithParams)},
        {"getDevicesWithParams", by(getDevicesWithParams)},
        {"getSitesWithParams", by(getSitesWithParams)},
        {"getSectionsWithParams", inDeviceBy(getSectionsWithParams)},
        {"getZonesWithParams", inDeviceBy(getZonesWithParams)},
        {"getZonesForSectionWithParams", inFirstSectionBy},
    };
}

// ---- The members of documents ----

enum class Kind { number, whole, byte, flag, number64, coordinate, text, searchedText };

struct Member
{
    std::string key; // empty for an element of an array of numbers
    std::string column;
    Kind kind;
};

// A kind of record as an element of a batch, "#" standing for a number that sets it apart and "@" for its members.
struct Subject
{
    std::string name;
    TextFunction add;
    uint32_t code; // the result of adding it
    std::string item;
    std::string table;
    std::string idColumn; // holds "#"
    std::vector<Member> members;
    Search search;
};

inline std::vector<Member> equipmentMembers(const std::string &table)
{
    return {
        {"name", table + "Name", Kind::searchedText},  {"detector", table + "Detector", Kind::number},
        {"physic", table + "Physic", Kind::number},    {"schedule_id", table + "ScheduleId", Kind::number},
        {"tracert", table + "Tracert", Kind::number},  {"flags", table + "Flags", Kind::number},
        {"delay", table + "Delay", Kind::number},      {"form", table + "Form", Kind::number},
        {"uid_type", table + "UidType", Kind::number}, {"arm", table + "Arm", Kind::number},
    };
}

inline std::vector<Subject> directorySubjects()
{
    return {
        {"locale",
         addLocales,
         0,
         R"({"id":#,@})",
         "Locales",
         "LocalesId",
         {{"iso", "LocalesIso", Kind::searchedText}, {"description", "LocalesDescription", Kind::searchedText}},
         by(getLocalesWithParams)},
        {"domain",
         addDomains,
         0,
         R"({"id":#,@})",
         "Domains",
         "DomainsId",
         {{"name", "DomainsName", Kind::searchedText},
          {"org_id", "DomainsOrgId", Kind::number},
          {"locale_id", "DomainsLocaleId", Kind::number}},
         by(getDomainsWithParams)},
        {"user",
         addUsers,
         0,
         R"({"id":#,@})",
         "Users",
         "UsersId",
         {{"name", "UsersName", Kind::searchedText},
          {"login", "UsersLogin", Kind::searchedText},
          {"contacts", "UsersContacts", Kind::searchedText},
          {"active", "UsersIsActive", Kind::flag},
          {"domain", "UsersDomainId", Kind::number},
          {"org", "UsersOrgId", Kind::number},
          {"roles", "UsersRoles", Kind::number},
          {"phone", "UsersPhone", Kind::number64}},
         by(getUsersWithParams)},
        {"organization",
         addOrganizations,
         0,
         R"({"org_id":#,@})",
         "Organizations",
         "OrganizationsId",
         {{"inn", "OrganizationsInn", Kind::searchedText},
          {"off_name", "OrganizationsOfficialName", Kind::searchedText},
          {"short_name", "OrganizationsShortName", Kind::searchedText},
          {"kpp", "OrganizationsKpp", Kind::searchedText},
          {"ogrn", "OrganizationsOgrn", Kind::searchedText},
          {"address_text", "OrganizationsAddress", Kind::searchedText},
          {"locale_id", "OrganizationsLocaleId", Kind::number}},
         by(getOrganizationsWithParams)},
        {"organizationContact",
         addOrganizations,
         0,
         R"({"org_id":#,"contact":{@}})",
         "Organizations",
         "OrganizationsId",
         {{"id", "OrganizationsContactId", Kind::number}},
         {}},
        {"contact",
         addOrganizations,
         0,
         R"({"org_id":#,"contact":{"id":#,@}})",
         "Persons",
         "PersonsId",
         {{"name", "PersonsName", Kind::text},
          {"phone", "PersonsPhone", Kind::text},
          {"email", "PersonsEmail", Kind::text},
          {"postal", "PersonsPostal", Kind::text}},
         {}},
        {"contractor",
         addContractors,
         0,
         R"({"id":#,@})",
         "Contractors",
         "ContractorsId",
         {{"inn", "ContractorsInn", Kind::searchedText},
          {"off_name", "ContractorsOfficialName", Kind::searchedText},
          {"name", "ContractorsName", Kind::searchedText},
          {"extra", "ContractorsExtra", Kind::searchedText},
          {"org_id", "ContractorsOrgId", Kind::number},
          {"type", "ContractorsType", Kind::number}},
         by(getContractorsWithParams)},
        {"contract",
         addContracts,
         0,
         R"({"id":#,@})",
         "Contracts",
         "ContractsId",
         {{"number", "ContractsNumber", Kind::searchedText},
          {"c_name", "ContractsName", Kind::searchedText},
          {"description", "ContractsDescription", Kind::searchedText},
          {"extra", "ContractsExtra", Kind::searchedText},
          {"status", "ContractsStatus", Kind::number},
          {"date", "ContractsDate", Kind::number},
          {"contractor_id", "ContractsContractorId", Kind::number},
          {"operator_id", "ContractsUserId", Kind::number}},
         by(getContractsWithParams)},
    };
}

inline std::vector<Subject> equipmentSubjects()
{
    return {
        {"device",
         addDevices,
         0,
         R"({"id":#,@})",
         "Devices",
         "DevicesId",
         {{"account", "DevicesAccount", Kind::number},
          {"domain", "DevicesDomainId", Kind::number},
          {"config_version", "DevicesConfigVersion", Kind::number},
          {"cluster_id", "DevicesClusterId", Kind::number},
          {"parted", "DevicesIsParted", Kind::flag}},
         by(getDevicesWithParams)},
        {"section", addDevices, 0, R"({"id":#,"sections":[{"id":1,@}]})", "Sections", "SectionsDeviceId",
         equipmentMembers("Sections"), inDeviceBy(getSectionsWithParams)},
        {"sectionNumber",
         addDevices,
         0,
         R"({"id":#,"sections":[{@}]})",
         "Sections",
         "SectionsDeviceId",
         {{"id", "SectionsSectionId", Kind::number}, {"section", "SectionsSectionId", Kind::number}},
         {}},
        {"zone", addDevices, 0, R"({"id":#,"sections":[{"id":1,"zones":[{"id":1,@}]}]})", "Zones", "ZonesDeviceId",
         equipmentMembers("Zones"), inDeviceBy(getZonesWithParams)},
        {"zoneNumber",
         addDevices,
         0,
         R"({"id":#,"sections":[{"id":1,"zones":[{@}]}]})",
         "Zones",
         "ZonesDeviceId",
         {{"id", "ZonesZoneId", Kind::number}, {"zone", "ZonesZoneId", Kind::number}},
         {}},
        {"deviceUser",
         addDevices,
         0,
         R"({"id":#,"users":[{"user_index":1,@}]})",
         "DeviceUsers",
         "DeviceUsersDeviceId",
         {{"name", "DeviceUsersName", Kind::text},
          {"comment", "DeviceUsersComment", Kind::text},
          {"phone", "DeviceUsersPhone", Kind::text}},
         {}},
        {"deviceUserNumber",
         addDevices,
         0,
         R"({"id":#,"users":[{@}]})",
         "DeviceUsers",
         "DeviceUsersDeviceId",
         {{"user_index", "DeviceUsersDeviceUserId", Kind::number}},
         {}},
        {"link",
         addDevices,
         0,
         R"({"id":#,"users":[{"user_index":1,"sections":[@]}]})",
         "DeviceUserSectionLinks",
         "DeviceUserSectionLinksDeviceId",
         {{"", "DeviceUserSectionLinksSectionId", Kind::number}},
         {}},
    };
}

inline std::vector<Subject> siteAndEventSubjects()
{
    return {
        {"site",
         addSites,
         0,
         R"({"id":#,@})",
         "Sites",
         "SitesId",
         {{"name", "SitesName", Kind::searchedText},
          {"comment", "SitesComment", Kind::searchedText},
          {"extra", "SitesExtra", Kind::searchedText},
          {"address_text", "SitesAddress", Kind::searchedText},
          {"is_crossing", "SitesIsCrossing", Kind::flag},
          {"delegated", "SitesIsDelegated", Kind::flag},
          {"site_plan", "SitesIsSitePlanExists", Kind::flag},
          {"domain", "SitesDomainId", Kind::number},
          {"type", "SitesType", Kind::number},
          {"category", "SitesCategory", Kind::number},
          {"arm_mode", "SitesArmMode", Kind::number},
          {"contract_id", "SitesContractId", Kind::whole},
          {"contract_status", "SitesContractStatus", Kind::whole}},
         by(getSitesWithParams)},
        {"location",
         addSites,
         0,
         R"({"id":#,"location":{@}})",
         "Locations",
         "LocationsId",
         {{"lat", "LocationsLatitude", Kind::coordinate}, {"lon", "LocationsLongitude", Kind::coordinate}},
         {}},
        {"event",
         addEventsWithoutTarget,
         8, // stored, and listed for no device
         R"({"id":#,@})",
         "Events",
         "EventsId",
         {{"time", "EventsTime", Kind::number},
          {"section", "EventsSectionId", Kind::number},
          {"zone", "EventsZoneId", Kind::number},
          {"localtime", "EventsLocalTime", Kind::number},
          {"review_id", "EventsReviewId", Kind::number},
          {"operator_id", "EventsUserId", Kind::number},
          {"device", "EventsDeviceId", Kind::whole},
          {"channel", "EventsChannel", Kind::whole},
          {"active", "EventsActive", Kind::byte},
          {"class", "EventsClass", Kind::byte},
          {"detector", "EventsDetector", Kind::byte},
          {"reason", "EventsReason", Kind::byte},
          {"review_state", "EventsReviewState", Kind::byte},
          {"is_closed", "EventsIsClosed", Kind::flag},
          {"affect", "EventsAffect", Kind::flag},
          {"data", "EventsData", Kind::text},
          {"jdata", "EventsJData", Kind::text}},
         {}},
    };
}

inline std::vector<Subject> subjects()
{
    std::vector<Subject> all = directorySubjects();
    for (const std::vector<Subject> &more : {equipmentSubjects(), siteAndEventSubjects()})
        all.insert(all.end(), more.begin(), more.end());
    return all;
}

inline bool isTextKind(Kind kind)
{
    return kind == Kind::text || kind == Kind::searchedText;
}

inline std::string replaced(std::string text, char place, const std::string &by)
{
    for (size_t at = text.find(place); at != std::string::npos; at = text.find(place, at + by.size()))
        text.replace(at, 1, by);
    return text;
}

inline std::string memberOf(const std::string &key, const std::string &value)
{
    return key.empty() ? value : '"' + key + "\":" + value;
}

// A batch with one record for each value, numbered from 1.
inline std::string batchOf(const Subject &subject, const std::string &key, const std::vector<std::string> &values)
{
    std::string items;
    for (size_t i = 0; i < values.size(); ++i)
        items += (i ? "," : "")
               + replaced(replaced(subject.item, '#', std::to_string(i + 1)), '@', memberOf(key, values[i]));
    return R"({"D":{"items":[)" + items + "]}}";
}

// A parameter of a test: one member of one kind of record.
struct SubjectMember
{
    Subject subject;
    Member member;
};

inline void PrintTo(const SubjectMember &parameter, std::ostream *out)
{
    *out << parameter.subject.name << " \"" << parameter.member.key << '"';
}

inline std::vector<SubjectMember> membersWhere(const std::function<bool(Kind)> &isWanted)
{
    std::vector<SubjectMember> chosen;
    for (const Subject &subject : subjects())
        for (const Member &member : subject.members)
            if (isWanted(member.kind))
                chosen.push_back({subject, member});
    return chosen;
}

inline std::string nameOf(const ::testing::TestParamInfo<SubjectMember> &info)
{
    std::string name = info.param.subject.name + "_" + info.param.member.key;
    name.erase(std::remove_if(name.begin(), name.end(), [](char c) { return !std::isalnum(c) && c != '_'; }),
               name.end());
    return name;
}

// ---- Looking into the file ----

// A cell with its type, which File leaves out: "integer 5", "real 0.5", "text a", "null".
inline std::string cell(sqlite3_stmt *statement, int column)
{
    switch (sqlite3_column_type(statement, column)) {
    case SQLITE_INTEGER:
        return "integer " + std::to_string(sqlite3_column_int64(statement, column));
    case SQLITE_FLOAT: {
        std::array<char, 40> text{};
        std::snprintf(text.data(), text.size(), "real %.17g", sqlite3_column_double(statement, column));
        return text.data();
    }
    case SQLITE_TEXT: {
        const void *bytes = sqlite3_column_blob(statement, column);
        const auto size = static_cast<size_t>(sqlite3_column_bytes(statement, column));
        return "text " + (size ? std::string(static_cast<const char *>(bytes), size) : std::string());
    }
    default:
        return "null";
    }
}

// Both columns of a select's rows, the first as the place of the second.
inline std::map<int64_t, std::string> cells(const std::string &sql)
{
    sqlite3 *connection = nullptr;
    sqlite3_stmt *statement = nullptr;
    std::map<int64_t, std::string> found;
    int step = SQLITE_ERROR;
    if (sqlite3_open("CacheDb", &connection) == SQLITE_OK
        && sqlite3_prepare_v2(connection, sql.c_str(), -1, &statement, nullptr) == SQLITE_OK)
        while ((step = sqlite3_step(statement)) == SQLITE_ROW)
            found[sqlite3_column_int64(statement, 0)] = cell(statement, 1);
    sqlite3_finalize(statement);
    sqlite3_close(connection);
    if (step != SQLITE_DONE)
        throw std::runtime_error("cannot be read: " + sql);
    return found;
}

inline std::map<int64_t, std::string> column(const Subject &subject, const Member &member)
{
    return cells("SELECT " + subject.idColumn + ", " + member.column + " FROM " + subject.table);
}

inline std::map<int64_t, std::string> numbered(const std::vector<std::string> &values)
{
    std::map<int64_t, std::string> expected;
    for (size_t i = 0; i < values.size(); ++i)
        expected[static_cast<int64_t>(i + 1)] = values[i];
    return expected;
}

class HostileTest : public StoreTest
{
protected:
    HostileTest() : schema(tables()) {}

    std::vector<Row> tables() const { return file.rows("SELECT type, name, tbl_name, sql FROM sqlite_master"); }

    void expectIntact() const
    {
        const auto isIndexOfEvents = [](const Row &row) { return row[0] == "index" && row[2] == "Events"; };
        std::vector<Row> now = tables();
        now.erase(std::remove_if(now.begin(), now.end(), isIndexOfEvents), now.end());
        std::vector<Row> before = schema;
        before.erase(std::remove_if(before.begin(), before.end(), isIndexOfEvents), before.end());
        EXPECT_EQ(now, before);
        EXPECT_EQ(file.value("PRAGMA integrity_check"), "ok");
        EXPECT_EQ(file.value("SELECT VersionNumber FROM Version"), "0.1");
    }

    // Nothing at all was stored.
    void expectEmpty() const
    {
        for (const Row &row : schema)
            if (row[0] == "table" && row[1] != "Version") {
                EXPECT_EQ(file.number("SELECT count(*) FROM " + *row[1]), 0) << *row[1];
            }
    }

    std::vector<Row> schema;
};

// ---- Removals ----

struct Removal
{
    std::string name;
    TextFunction remove;
    std::string removed; // "@" for the number
    TextFunction add;
    std::string item;
    std::string table;
    std::string column;
};

inline std::vector<Removal> removals()
{
    const std::string plain = R"({"id":@})";
    const std::string parts = R"({"id":@,"sections":[{"id":@,"zones":[{"id":@}]}]})";
    return {
        {"deleteDomain", deleteDomain, R"({"D":{"domain_id":@}})", addDomains, plain, "Domains", "DomainsId"},
        {"deleteUser", deleteUser, R"({"D":{"op_id":@}})", addUsers, plain, "Users", "UsersId"},
        {"deleteOrganization", deleteOrganization, R"({"D":{"org_id":@}})", addOrganizations, R"({"org_id":@})",
         "Organizations", "OrganizationsId"},
        {"deleteContractor", deleteContractor, R"({"D":{"id":@}})", addContractors, plain, "Contractors",
         "ContractorsId"},
        {"deleteContract", deleteContract, R"({"D":{"id":@}})", addContracts, plain, "Contracts", "ContractsId"},
        {"deleteDevice", deleteDevice, R"({"D":{"id":@}})", addDevices, plain, "Devices", "DevicesId"},
        {"deleteSection", deleteSection, R"({"D":{"device":@,"section":@}})", addDevices, parts, "Sections",
         "SectionsSectionId"},
        {"deleteZone", deleteZone, R"({"D":{"device":@,"section":@,"zone":@}})", addDevices, parts, "Zones",
         "ZonesZoneId"},
        {"deleteSite", deleteSite, R"({"D":{"site_id":@}})", addSites, plain, "Sites", "SitesId"},
    };
}

inline void PrintTo(const Removal &removal, std::ostream *out)
{
    *out << removal.name;
}

} // namespace brimlet::test
