// The names of all tables, columns and JSON keys, the order in which the descriptors hold them, and the ten maps from
// a key of a query to a column.
#include "catalog/TableCatalog.h"
#include "json/KeyMaps.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <functional>
#include <gtest/gtest.h>
#include <ostream>
#include <string>
#include <vector>

namespace {

using namespace brimlet;

// ---- Descriptors ----

// One entry of a descriptor: its form, its column and its keys.
struct Entry
{
    std::string form;
    std::string column;
    std::vector<std::string> keys;
};

bool operator==(const Entry &left, const Entry &right)
{
    return left.form == right.form && left.column == right.column && left.keys == right.keys;
}

void PrintTo(const Entry &entry, std::ostream *out)
{
    *out << entry.form << " \"" << entry.column << '"';
    for (const std::string &key : entry.keys)
        *out << " \"" << key << '"';
    *out << '\n';
}

// As the tests expect an entry.
Entry field(const char *column, const char *key)
{
    return {"field", column, {key}};
}
Entry keyOnly(const char *key)
{
    return {"field", "", {key}};
}
Entry idField(const char *column, const char *first, const char *second, const char *third)
{
    return {"id field", column, {first, second, third}};
}
Entry bare(const char *column)
{
    return {"bare column", column, {}};
}

// As a descriptor holds it.
Entry entry(const FieldDesc &desc)
{
    return {"field", desc.column.toStdString(), {desc.key.toStdString()}};
}
Entry entry(const IdFieldDesc &desc)
{
    const FieldKeys &keys = desc.fieldKeys;
    return {"id field",
            desc.column.toStdString(),
            {keys.first.toStdString(), keys.second.toStdString(), keys.third.toStdString()}};
}
Entry entry(const QString &column)
{
    return {"bare column", column.toStdString(), {}};
}

using Entries = std::vector<Entry>;

// The entries under these members. That they lie behind the table's name, in this order and with nothing between or
// behind them, is checked on the way.
template<class TableType, class... Descs>
Entries entriesOf(const TableType &table, Descs TableType::*...members)
{
    const void *places[] = {&table.table, &(table.*members)...};
    EXPECT_TRUE(std::is_sorted(std::begin(places), std::end(places), std::less<>()));
    EXPECT_EQ(sizeof(TableType), (sizeof(QString) + ... + sizeof(Descs)));
    return {entry(table.*members)...};
}

// A descriptor made on its own, and the catalog's.
template<class TableType>
std::array<TableType, 2> both(TableType TableCatalog::*member)
{
    return {TableType(), TableCatalog().*member};
}

TEST(DescriptorsNameTheColumnsAndKeysOf, Users)
{
    for (const UsersTable &table : both(&TableCatalog::users)) {
        EXPECT_EQ(table.table, "Users");
        EXPECT_EQ(entriesOf(table, &UsersTable::id, &UsersTable::name, &UsersTable::login, &UsersTable::contacts,
                            &UsersTable::isActive, &UsersTable::domainId, &UsersTable::orgId, &UsersTable::roles,
                            &UsersTable::phone),
                  (Entries{idField("UsersId", "id", "op_id", "id"), field("UsersName", "name"),
                           field("UsersLogin", "login"), field("UsersContacts", "contacts"),
                           field("UsersIsActive", "active"), field("UsersDomainId", "domain"),
                           field("UsersOrgId", "org"), field("UsersRoles", "roles"), field("UsersPhone", "phone")}));
    }
}

TEST(DescriptorsNameTheColumnsAndKeysOf, Domains)
{
    for (const DomainsTable &table : both(&TableCatalog::domains)) {
        EXPECT_EQ(table.table, "Domains");
        EXPECT_EQ(
            entriesOf(table, &DomainsTable::id, &DomainsTable::name, &DomainsTable::orgId, &DomainsTable::localeId),
            (Entries{idField("DomainsId", "id", "domain_id", "id"), field("DomainsName", "name"),
                     field("DomainsOrgId", "org_id"), field("DomainsLocaleId", "locale_id")}));
    }
}

TEST(DescriptorsNameTheColumnsAndKeysOf, Organizations)
{
    using Table = OrganizationsTable;
    for (const Table &table : both(&TableCatalog::organizations)) {
        EXPECT_EQ(table.table, "Organizations");
        EXPECT_EQ(
            entriesOf(table, &Table::id, &Table::inn, &Table::officialName, &Table::shortName, &Table::kpp,
                      &Table::ogrn, &Table::localeId, &Table::address, &Table::contactId),
            (Entries{idField("OrganizationsId", "org_id", "org_id", "org_id"), field("OrganizationsInn", "inn"),
                     field("OrganizationsOfficialName", "off_name"), field("OrganizationsShortName", "short_name"),
                     field("OrganizationsKpp", "kpp"), field("OrganizationsOgrn", "ogrn"),
                     field("OrganizationsLocaleId", "locale_id"), field("OrganizationsAddress", "address_text"),
                     idField("OrganizationsContactId", "", "", "contact")}));
    }
}

TEST(DescriptorsNameTheColumnsAndKeysOf, Locales)
{
    for (const LocalesTable &table : both(&TableCatalog::locales)) {
        EXPECT_EQ(table.table, "Locales");
        EXPECT_EQ(entriesOf(table, &LocalesTable::id, &LocalesTable::iso, &LocalesTable::description),
                  (Entries{idField("LocalesId", "id", "", ""), field("LocalesIso", "iso"),
                           field("LocalesDescription", "description")}));
    }
}

TEST(DescriptorsNameTheColumnsAndKeysOf, Persons)
{
    for (const PersonsTable &table : both(&TableCatalog::persons)) {
        EXPECT_EQ(table.table, "Persons");
        EXPECT_EQ(entriesOf(table, &PersonsTable::id, &PersonsTable::name, &PersonsTable::phone, &PersonsTable::email,
                            &PersonsTable::postal),
                  (Entries{idField("PersonsId", "id", "id", "id"), field("PersonsName", "name"),
                           field("PersonsPhone", "phone"), field("PersonsEmail", "email"),
                           field("PersonsPostal", "postal")}));
    }
}

TEST(DescriptorsNameTheColumnsAndKeysOf, Contractors)
{
    using Table = ContractorsTable;
    for (const Table &table : both(&TableCatalog::contractors)) {
        EXPECT_EQ(table.table, "Contractors");
        EXPECT_EQ(entriesOf(table, &Table::id, &Table::inn, &Table::orgId, &Table::type, &Table::officialName,
                            &Table::name, &Table::extra),
                  (Entries{idField("ContractorsId", "id", "id", "id"), field("ContractorsInn", "inn"),
                           field("ContractorsOrgId", "org_id"), field("ContractorsType", "type"),
                           field("ContractorsOfficialName", "off_name"), field("ContractorsName", "name"),
                           field("ContractorsExtra", "extra")}));
    }
}

TEST(DescriptorsNameTheColumnsAndKeysOf, Contracts)
{
    using Table = ContractsTable;
    for (const Table &table : both(&TableCatalog::contracts)) {
        EXPECT_EQ(table.table, "Contracts");
        EXPECT_EQ(entriesOf(table, &Table::id, &Table::number, &Table::contractorId, &Table::name, &Table::status,
                            &Table::date, &Table::description, &Table::extra, &Table::userId),
                  (Entries{idField("ContractsId", "id", "id", "id"), field("ContractsNumber", "number"),
                           field("ContractsContractorId", "contractor_id"), field("ContractsName", "c_name"),
                           field("ContractsStatus", "status"), field("ContractsDate", "date"),
                           field("ContractsDescription", "description"), field("ContractsExtra", "extra"),
                           field("ContractsUserId", "operator_id")}));
    }
}

TEST(DescriptorsNameTheColumnsAndKeysOf, Zones)
{
    using Table = ZonesTable;
    for (const Table &table : both(&TableCatalog::zones)) {
        EXPECT_EQ(table.table, "Zones");
        EXPECT_EQ(
            entriesOf(table, &Table::deviceId, &Table::sectionId, &Table::zoneId, &Table::name, &Table::detector,
                      &Table::physic, &Table::form, &Table::flags, &Table::delay, &Table::scheduleId, &Table::tracert,
                      &Table::uidType, &Table::arm),
            (Entries{idField("ZonesDeviceId", "", "device", "device"),
                     idField("ZonesSectionId", "", "section", "section"), idField("ZonesZoneId", "id", "zone", "zone"),
                     field("ZonesName", "name"), field("ZonesDetector", "detector"), field("ZonesPhysic", "physic"),
                     field("ZonesForm", "form"), field("ZonesFlags", "flags"), field("ZonesDelay", "delay"),
                     field("ZonesScheduleId", "schedule_id"), field("ZonesTracert", "tracert"),
                     field("ZonesUidType", "uid_type"), field("ZonesArm", "arm")}));
    }
}

TEST(DescriptorsNameTheColumnsAndKeysOf, Sections)
{
    using Table = SectionsTable;
    for (const Table &table : both(&TableCatalog::sections)) {
        EXPECT_EQ(table.table, "Sections");
        EXPECT_EQ(
            entriesOf(table, &Table::deviceId, &Table::sectionId, &Table::name, &Table::scheduleId, &Table::tracert,
                      &Table::flags, &Table::detector, &Table::arm, &Table::physic, &Table::form, &Table::delay,
                      &Table::uidType, &Table::zones),
            (Entries{idField("SectionsDeviceId", "", "device", "device"),
                     idField("SectionsSectionId", "id", "section", "section"), field("SectionsName", "name"),
                     field("SectionsScheduleId", "schedule_id"), field("SectionsTracert", "tracert"),
                     field("SectionsFlags", "flags"), field("SectionsDetector", "detector"),
                     field("SectionsArm", "arm"), field("SectionsPhysic", "physic"), field("SectionsForm", "form"),
                     field("SectionsDelay", "delay"), field("SectionsUidType", "uid_type"), keyOnly("zones")}));
    }
}

TEST(DescriptorsNameTheColumnsAndKeysOf, DeviceUsers)
{
    using Table = DeviceUsersTable;
    for (const Table &table : both(&TableCatalog::deviceUsers)) {
        EXPECT_EQ(table.table, "DeviceUsers");
        EXPECT_EQ(entriesOf(table, &Table::deviceId, &Table::deviceUserId, &Table::name, &Table::comment, &Table::phone,
                            &Table::sections),
                  (Entries{idField("DeviceUsersDeviceId", "", "", ""),
                           idField("DeviceUsersDeviceUserId", "user_index", "", "user_index"),
                           field("DeviceUsersName", "name"), field("DeviceUsersComment", "comment"),
                           field("DeviceUsersPhone", "phone"), keyOnly("sections")}));
    }
}

TEST(DescriptorsNameTheColumnsAndKeysOf, Devices)
{
    using Table = DevicesTable;
    for (const Table &table : both(&TableCatalog::devices)) {
        EXPECT_EQ(table.table, "Devices");
        EXPECT_EQ(entriesOf(table, &Table::id, &Table::account, &Table::domainId, &Table::configVersion,
                            &Table::isParted, &Table::clusterId, &Table::users, &Table::sections),
                  (Entries{idField("DevicesId", "id", "id", "id"), field("DevicesAccount", "account"),
                           field("DevicesDomainId", "domain"), field("DevicesConfigVersion", "config_version"),
                           field("DevicesIsParted", "parted"), field("DevicesClusterId", "cluster_id"),
                           keyOnly("users"), keyOnly("sections")}));
    }
}

TEST(DescriptorsNameTheColumnsAndKeysOf, DeviceUserSectionLinks)
{
    using Table = DeviceUserSectionLinksTable;
    for (const Table &table : both(&TableCatalog::deviceUserSectionLinks)) {
        EXPECT_EQ(table.table, "DeviceUserSectionLinks");
        EXPECT_EQ(entriesOf(table, &Table::deviceId, &Table::deviceUserId, &Table::sectionId),
                  (Entries{bare("DeviceUserSectionLinksDeviceId"), bare("DeviceUserSectionLinksDeviceUserId"),
                           bare("DeviceUserSectionLinksSectionId")}));
    }
}

TEST(DescriptorsNameTheColumnsAndKeysOf, Locations)
{
    using Table = LocationsTable;
    for (const Table &table : both(&TableCatalog::locations)) {
        EXPECT_EQ(table.table, "Locations");
        EXPECT_EQ(entriesOf(table, &Table::id, &Table::latitude, &Table::longitude),
                  (Entries{idField("LocationsId", "", "", ""), field("LocationsLatitude", "lat"),
                           field("LocationsLongitude", "lon")}));
    }
}

TEST(DescriptorsNameTheColumnsAndKeysOf, Sites)
{
    using Table = SitesTable;
    for (const Table &table : both(&TableCatalog::sites)) {
        EXPECT_EQ(table.table, "Sites");
        EXPECT_EQ(entriesOf(table, &Table::id, &Table::name, &Table::comment, &Table::extra, &Table::isCrossing,
                            &Table::domainId, &Table::address, &Table::contractId, &Table::contractStatus, &Table::type,
                            &Table::category, &Table::armMode, &Table::isDelegated, &Table::isSitePlanExists,
                            &Table::location, &Table::devices),
                  (Entries{idField("SitesId", "id", "site_id", "id"), field("SitesName", "name"),
                           field("SitesComment", "comment"), field("SitesExtra", "extra"),
                           field("SitesIsCrossing", "is_crossing"), field("SitesDomainId", "domain"),
                           field("SitesAddress", "address_text"), field("SitesContractId", "contract_id"),
                           field("SitesContractStatus", "contract_status"), field("SitesType", "type"),
                           field("SitesCategory", "category"), field("SitesArmMode", "arm_mode"),
                           field("SitesIsDelegated", "delegated"), field("SitesIsSitePlanExists", "site_plan"),
                           keyOnly("location"), keyOnly("devices")}));
    }
}

TEST(DescriptorsNameTheColumnsAndKeysOf, Events)
{
    using Table = EventsTable;
    for (const Table &table : both(&TableCatalog::events)) {
        EXPECT_EQ(table.table, "Events");
        EXPECT_EQ(entriesOf(table, &Table::id, &Table::time, &Table::deviceId, &Table::sectionId, &Table::zoneId,
                            &Table::active, &Table::eventClass, &Table::detector, &Table::reason, &Table::localTime,
                            &Table::channel, &Table::data, &Table::reviewId, &Table::reviewState, &Table::userId,
                            &Table::isClosed, &Table::affect, &Table::jData, &Table::timeIndex),
                  (Entries{idField("EventsId", "id", "", "id"), field("EventsTime", "time"),
                           idField("EventsDeviceId", "device", "", "device_id"),
                           idField("EventsSectionId", "section", "", "device_section"), field("EventsZoneId", "zone"),
                           field("EventsActive", "active"), field("EventsClass", "class"),
                           field("EventsDetector", "detector"), field("EventsReason", "reason"),
                           field("EventsLocalTime", "localtime"), field("EventsChannel", "channel"),
                           field("EventsData", "data"), field("EventsReviewId", "review_id"),
                           field("EventsReviewState", "review_state"), field("EventsUserId", "operator_id"),
                           field("EventsIsClosed", "is_closed"), field("EventsAffect", "affect"),
                           field("EventsJData", "jdata"), bare("EventsTimeIndex")}));
    }
}

TEST(DescriptorsNameTheColumnsAndKeysOf, Session)
{
    for (const SessionTable &table : both(&TableCatalog::session)) {
        EXPECT_EQ(table.table, "Session");
        EXPECT_EQ(entriesOf(table, &SessionTable::id, &SessionTable::ip),
                  (Entries{bare("SessionId"), bare("SessionIp")}));
    }
}

TEST(DescriptorsNameTheColumnsAndKeysOf, Version)
{
    for (const VersionTable &table : both(&TableCatalog::version)) {
        EXPECT_EQ(table.table, "Version");
        EXPECT_EQ(entriesOf(table, &VersionTable::id, &VersionTable::number),
                  (Entries{bare("VersionId"), bare("VersionNumber")}));
    }
}

TEST(Descriptors, ACopyHasNoLinkToItsOriginal)
{
    const UsersTable original;
    UsersTable copy = original;
    copy.table = "Other";
    copy.id.fieldKeys.second = "other";

    EXPECT_EQ(original.table, "Users");
    EXPECT_EQ(original.id.fieldKeys.second, "op_id");
    EXPECT_EQ(copy.name.column, "UsersName");
}

TEST(TableCatalogTest, HoldsTheSeventeenDescriptorsInTheirOrder)
{
    const TableCatalog tables;
    const std::vector<const Table *> inOrder = {&tables.users,       &tables.domains, &tables.organizations,
                                                &tables.locales,     &tables.persons, &tables.contractors,
                                                &tables.contracts,   &tables.zones,   &tables.sections,
                                                &tables.deviceUsers, &tables.devices, &tables.deviceUserSectionLinks,
                                                &tables.locations,   &tables.sites,   &tables.events,
                                                &tables.session,     &tables.version};

    std::vector<std::string> names;
    for (const Table *table : inOrder)
        names.push_back(table->table.toStdString());

    EXPECT_TRUE(std::is_sorted(inOrder.begin(), inOrder.end(), std::less<>()));
    EXPECT_EQ(names, (std::vector<std::string>{"Users", "Domains", "Organizations", "Locales", "Persons", "Contractors",
                                               "Contracts", "Zones", "Sections", "DeviceUsers", "Devices",
                                               "DeviceUserSectionLinks", "Locations", "Sites", "Events", "Session",
                                               "Version"}));
}

// ---- Key maps ----

struct Key
{
    std::string key;
    std::string column;
};

struct KeyMap
{
    std::string name;
    bool (*columnForKey)(QString &column, const QString &key);
    std::vector<Key> accepted;

    bool accepts(const std::string &key) const
    {
        return std::any_of(accepted.begin(), accepted.end(), [&](const Key &one) { return one.key == key; });
    }
};

void PrintTo(const KeyMap &map, std::ostream *out)
{
    *out << map.name;
}

// Every key that any document of the library knows.
const std::vector<std::string> allKeys = {"D",
                                          "account",
                                          "active",
                                          "address_text",
                                          "affect",
                                          "arm",
                                          "arm_mode",
                                          "c_name",
                                          "category",
                                          "channel",
                                          "class",
                                          "cluster_id",
                                          "comment",
                                          "config_version",
                                          "contact",
                                          "contacts",
                                          "contract_id",
                                          "contract_status",
                                          "contractor_id",
                                          "data",
                                          "date",
                                          "delay",
                                          "delegated",
                                          "description",
                                          "detector",
                                          "device",
                                          "device_id",
                                          "device_section",
                                          "devices",
                                          "domain",
                                          "domain_id",
                                          "email",
                                          "extra",
                                          "flags",
                                          "form",
                                          "id",
                                          "inn",
                                          "is_closed",
                                          "is_crossing",
                                          "iso",
                                          "items",
                                          "jdata",
                                          "kpp",
                                          "lat",
                                          "locale_id",
                                          "localtime",
                                          "location",
                                          "login",
                                          "lon",
                                          "name",
                                          "number",
                                          "off_name",
                                          "ogrn",
                                          "op_id",
                                          "operator_id",
                                          "org",
                                          "org_id",
                                          "parted",
                                          "phone",
                                          "physic",
                                          "postal",
                                          "reason",
                                          "review_id",
                                          "review_state",
                                          "roles",
                                          "schedule_id",
                                          "section",
                                          "sections",
                                          "short_name",
                                          "site_id",
                                          "site_plan",
                                          "status",
                                          "time",
                                          "tracert",
                                          "type",
                                          "uid_type",
                                          "user_index",
                                          "users",
                                          "zone",
                                          "zones"};

class KeyMaps : public ::testing::TestWithParam<KeyMap>
{
protected:
    // The column that a key gives, and "untouched" where it is refused and the argument stays.
    std::string columnFor(const std::string &key)
    {
        QString column = "untouched";
        const bool found = GetParam().columnForKey(column, QString::fromStdString(key));
        EXPECT_EQ(found, column != "untouched") << key;
        return column.toStdString();
    }
};

TEST_P(KeyMaps, GiveTheColumnOfEachKeyThatTheyHold)
{
    for (const Key &one : GetParam().accepted)
        EXPECT_EQ(columnFor(one.key), one.column) << one.key;
}

TEST_P(KeyMaps, RefuseEveryOtherKey)
{
    for (const std::string &key : allKeys) {
        if (!GetParam().accepts(key)) {
            EXPECT_EQ(columnFor(key), "untouched") << key;
        }
    }
}

TEST_P(KeyMaps, RefuseAKeyInAnotherCase)
{
    for (const Key &one : GetParam().accepted) {
        std::string capital = one.key;
        capital[0] = static_cast<char>(std::toupper(capital[0]));
        EXPECT_EQ(columnFor(capital), "untouched") << capital;
        std::string upper = one.key;
        std::transform(upper.begin(), upper.end(), upper.begin(),
                       [](char letter) { return static_cast<char>(std::toupper(letter)); });
        EXPECT_EQ(columnFor(upper), "untouched") << upper;
    }
}

TEST_P(KeyMaps, RefuseAKeyWithMoreOrLessThanItsLetters)
{
    for (const Key &one : GetParam().accepted) {
        EXPECT_EQ(columnFor(one.key + " "), "untouched") << one.key;
        EXPECT_EQ(columnFor(" " + one.key), "untouched") << one.key;
        EXPECT_EQ(columnFor(one.key + std::string(1, '\0')), "untouched") << one.key;
        EXPECT_EQ(columnFor(one.key.substr(1)), "untouched") << one.key;
    }
}

TEST_P(KeyMaps, RefuseAColumnForAKey)
{
    for (const Key &one : GetParam().accepted)
        EXPECT_EQ(columnFor(one.column), "untouched") << one.column;
}

TEST_P(KeyMaps, RefuseTheEmptyKey)
{
    EXPECT_EQ(columnFor(""), "untouched");
}

TEST_P(KeyMaps, RefuseTheNullKey)
{
    QString column = "untouched";
    EXPECT_FALSE(GetParam().columnForKey(column, QString()));
    EXPECT_EQ(column, "untouched");
}

TEST_P(KeyMaps, LeaveANullColumnNullWhenTheyRefuse)
{
    QString column;
    EXPECT_FALSE(GetParam().columnForKey(column, "no such key"));
    EXPECT_TRUE(column.isNull());
}

const KeyMap keyMaps[] = {
    {"Contracts",
     contractColumnForKey,
     {{"id", "ContractsId"},
      {"number", "ContractsNumber"},
      {"contractor_id", "ContractsContractorId"},
      {"c_name", "ContractsName"},
      {"status", "ContractsStatus"},
      {"date", "ContractsDate"},
      {"description", "ContractsDescription"},
      {"extra", "ContractsExtra"}}},
    {"Contractors",
     contractorColumnForKey,
     {{"id", "ContractorsId"},
      {"inn", "ContractorsInn"},
      {"org_id", "ContractorsOrgId"},
      {"type", "ContractorsType"},
      {"off_name", "ContractorsOfficialName"},
      {"name", "ContractorsName"},
      {"extra", "ContractorsExtra"}}},
    {"Devices",
     deviceColumnForKey,
     {{"id", "DevicesId"},
      {"account", "DevicesAccount"},
      {"domain", "DevicesDomainId"},
      {"config_version", "DevicesConfigVersion"},
      {"parted", "DevicesIsParted"}}},
    {"Domains",
     domainColumnForKey,
     {{"id", "DomainsId"}, {"name", "DomainsName"}, {"org_id", "DomainsOrgId"}, {"locale_id", "DomainsLocaleId"}}},
    {"Locales",
     localeColumnForKey,
     {{"id", "LocalesId"}, {"iso", "LocalesIso"}, {"description", "LocalesDescription"}}},
    {"Organizations",
     organizationColumnForKey,
     {{"org_id", "OrganizationsId"},
      {"inn", "OrganizationsInn"},
      {"off_name", "OrganizationsOfficialName"},
      {"short_name", "OrganizationsShortName"},
      {"kpp", "OrganizationsKpp"},
      {"ogrn", "OrganizationsOgrn"},
      {"locale_id", "OrganizationsLocaleId"},
      {"address_text", "OrganizationsAddress"}}},
    {"Sections",
     sectionColumnForKey,
     {{"id", "SectionsSectionId"},
      {"name", "SectionsName"},
      {"schedule_id", "SectionsScheduleId"},
      {"tracert", "SectionsTracert"},
      {"flags", "SectionsFlags"},
      {"detector", "SectionsDetector"},
      {"arm", "SectionsArm"}}},
    {"Sites",
     siteColumnForKey,
     {{"id", "SitesId"},
      {"name", "SitesName"},
      {"comment", "SitesComment"},
      {"extra", "SitesExtra"},
      {"is_crossing", "SitesIsCrossing"},
      {"domain", "SitesDomainId"},
      {"address_text", "SitesAddress"},
      {"contract_id", "SitesContractId"},
      {"contract_status", "SitesContractStatus"},
      {"type", "SitesType"},
      {"category", "SitesCategory"},
      {"arm_mode", "SitesArmMode"},
      {"delegated", "SitesIsDelegated"}}},
    {"Users",
     userColumnForKey,
     {{"id", "UsersId"},
      {"name", "UsersName"},
      {"login", "UsersLogin"},
      {"contacts", "UsersContacts"},
      {"active", "UsersIsActive"},
      {"domain", "UsersDomainId"},
      {"org", "UsersOrgId"},
      {"roles", "UsersRoles"},
      {"phone", "UsersPhone"}}},
    {"Zones",
     zoneColumnForKey,
     {{"id", "ZonesZoneId"},
      {"name", "ZonesName"},
      {"detector", "ZonesDetector"},
      {"physic", "ZonesPhysic"},
      {"form", "ZonesForm"},
      {"flags", "ZonesFlags"},
      {"delay", "ZonesDelay"},
      {"schedule_id", "ZonesScheduleId"},
      {"tracert", "ZonesTracert"},
      {"uid_type", "ZonesUidType"}}},
};

INSTANTIATE_TEST_SUITE_P(Of, KeyMaps, ::testing::ValuesIn(keyMaps), [](const auto &map) { return map.param.name; });

} // namespace
