// The keys of the queries by a field: the keys, the column of each, and that no other key is accepted.
#include "Store.h"

#include <algorithm>
#include <cctype>
#include <set>

namespace {

using namespace brimlet::test;

// ---- Queries ----

// The result of a query by a field.
struct Found
{
    uint32_t code;
    bool isNull;
    uint32_t count;
    std::vector<uint32_t> ids;
};

bool operator==(const Found &left, const Found &right)
{
    return left.code == right.code && left.isNull == right.isNull && left.count == right.count && left.ids == right.ids;
}

void PrintTo(const Found &found, std::ostream *out)
{
    *out << "code " << found.code << ", " << (found.isNull ? "no records" : "records") << ", count " << found.count
         << ", ids " << ::testing::PrintToString(found.ids);
}

// The count before each call.
const uint32_t untouched = 77;

Found records(std::vector<uint32_t> ids)
{
    const auto count = static_cast<uint32_t>(ids.size());
    return {0, false, count, std::move(ids)};
}

Found nothing(uint32_t code)
{
    return {code, true, untouched, {}};
}

using Query = std::function<Found(const std::string &, const std::string &)>;

// The query of an export, with the device and the section that it is asked about.
template<class Flat, class... Keys, class... Parents>
Query by(uint32_t (*function)(Flat **, uint32_t *, const uint16_t *, uint32_t, const uint16_t *, uint32_t, Keys...),
         Parents... parents)
{
    return [=](const std::string &key, const std::string &value) {
        List<Flat> list;
        *list.count() = untouched;
        list.code = find(function, list.out(), list.count(), key, value, parents...);
        Found found{list.code, list.isNull(), list.size(), {}};
        if (!list.isNull())
            for (const Flat &record : list)
                found.ids.push_back(record.id);
        std::sort(found.ids.begin(), found.ids.end());
        return found;
    };
}

// ---- Maps ----

struct Key
{
    std::string key;
    std::string column;
};

// The keys of one kind of record.
struct Map
{
    std::string name;
    Query query;
    std::string table;
    std::vector<std::string> parents; // the columns of the parents, with device 10 and section 20
    std::vector<Key> keys;            // the id's first
    std::vector<std::string> refused; // keys of the record by which it cannot be looked for

    const std::string &id() const { return keys[0].column; }
    bool accepts(const std::string &key) const
    {
        return std::any_of(keys.begin(), keys.end(), [&](const Key &one) { return one.key == key; });
    }
};

void PrintTo(const Map &map, std::ostream *out)
{
    *out << map.name;
}

const std::vector<Map> &maps()
{
    static const std::vector<Key> zoneKeys = {{"id", "ZonesZoneId"},         {"name", "ZonesName"},
                                              {"detector", "ZonesDetector"}, {"physic", "ZonesPhysic"},
                                              {"form", "ZonesForm"},         {"flags", "ZonesFlags"},
                                              {"delay", "ZonesDelay"},       {"schedule_id", "ZonesScheduleId"},
                                              {"tracert", "ZonesTracert"},   {"uid_type", "ZonesUidType"}};
    static const std::vector<Map> all = {
        {"Contracts",
         by(getContractsWithParams),
         "Contracts",
         {},
         {{"id", "ContractsId"},
          {"number", "ContractsNumber"},
          {"contractor_id", "ContractsContractorId"},
          {"c_name", "ContractsName"},
          {"status", "ContractsStatus"},
          {"date", "ContractsDate"},
          {"description", "ContractsDescription"},
          {"extra", "ContractsExtra"}},
         {"operator_id", "name"}},
        {"Contractors",
         by(getContractorsWithParams),
         "Contractors",
         {},
         {{"id", "ContractorsId"},
          {"inn", "ContractorsInn"},
          {"org_id", "ContractorsOrgId"},
          {"type", "ContractorsType"},
          {"off_name", "ContractorsOfficialName"},
          {"name", "ContractorsName"},
          {"extra", "ContractorsExtra"}},
         {}},
        {"Devices",
         by(getDevicesWithParams),
         "Devices",
         {},
         {{"id", "DevicesId"},
          {"account", "DevicesAccount"},
          {"domain", "DevicesDomainId"},
          {"config_version", "DevicesConfigVersion"},
          {"parted", "DevicesIsParted"}},
         {"cluster_id", "users", "sections"}},
        {"Domains",
         by(getDomainsWithParams),
         "Domains",
         {},
         {{"id", "DomainsId"}, {"name", "DomainsName"}, {"org_id", "DomainsOrgId"}, {"locale_id", "DomainsLocaleId"}},
         {"domain_id"}},
        {"Locales",
         by(getLocalesWithParams),
         "Locales",
         {},
         {{"id", "LocalesId"}, {"iso", "LocalesIso"}, {"description", "LocalesDescription"}},
         {}},
        {"Organizations",
         by(getOrganizationsWithParams),
         "Organizations",
         {},
         {{"org_id", "OrganizationsId"},
          {"inn", "OrganizationsInn"},
          {"off_name", "OrganizationsOfficialName"},
          {"short_name", "OrganizationsShortName"},
          {"kpp", "OrganizationsKpp"},
          {"ogrn", "OrganizationsOgrn"},
          {"locale_id", "OrganizationsLocaleId"},
          {"address_text", "OrganizationsAddress"}},
         {"contact", "id"}},
        {"Sections",
         by(getSectionsWithParams, 10),
         "Sections",
         {"SectionsDeviceId"},
         {{"id", "SectionsSectionId"},
          {"name", "SectionsName"},
          {"schedule_id", "SectionsScheduleId"},
          {"tracert", "SectionsTracert"},
          {"flags", "SectionsFlags"},
          {"detector", "SectionsDetector"},
          {"arm", "SectionsArm"}},
         {"physic", "form", "delay", "uid_type", "zones", "device", "section"}},
        {"Sites",
         by(getSitesWithParams),
         "Sites",
         {},
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
          {"delegated", "SitesIsDelegated"}},
         {"site_plan", "location", "devices", "site_id", "lat", "lon"}},
        {"Users",
         by(getUsersWithParams),
         "Users",
         {},
         {{"id", "UsersId"},
          {"name", "UsersName"},
          {"login", "UsersLogin"},
          {"contacts", "UsersContacts"},
          {"active", "UsersIsActive"},
          {"domain", "UsersDomainId"},
          {"org", "UsersOrgId"},
          {"roles", "UsersRoles"},
          {"phone", "UsersPhone"}},
         {"op_id"}},
        {"ZonesOfADevice",
         by(getZonesWithParams, 10),
         "Zones",
         {"ZonesDeviceId", "ZonesSectionId"},
         zoneKeys,
         {"arm", "device", "section", "zone"}},
        {"ZonesOfASection",
         by(getZonesForSectionWithParams, 10, 20),
         "Zones",
         {"ZonesDeviceId", "ZonesSectionId"},
         zoneKeys,
         {"arm", "device", "section", "zone"}},
    };
    return all;
}

class FieldKeys : public StoreTest, public ::testing::WithParamInterface<Map>
{
protected:
    struct Column
    {
        std::string name;
        bool isText;
    };
    // All columns but those of the key.
    std::vector<Column> columns() const
    {
        std::vector<Column> found;
        const Map &map = GetParam();
        for (const Row &row : file.rows("SELECT name, type FROM pragma_table_info('" + map.table + "')")) {
            const std::string name = row.at(0).value();
            if (name != map.id() && std::find(map.parents.begin(), map.parents.end(), name) == map.parents.end())
                found.push_back({name, row.at(1) == "VARCHAR(255)"});
        }
        return found;
    }

    // Puts in a row with the value of one column, and with other values in the rest.
    void insert(uint32_t id, const std::string &wanted = "", const std::string &value = "")
    {
        std::string names = GetParam().id();
        std::string values = std::to_string(id);
        for (size_t place = 0; place < GetParam().parents.size(); ++place) {
            names += "," + GetParam().parents[place];
            values += place == 0 ? ",10" : ",20";
        }
        for (const Column &column : columns()) {
            names += "," + column.name;
            values += "," + (column.name == wanted ? value : column.isText ? "'other'" : "0");
        }
        foreign("INSERT INTO " + GetParam().table + "(" + names + ") VALUES(" + values + ")");
    }

    // One row for each column, from id 100 on, in which that column alone holds 1 or "one".
    std::vector<Column> insertARowForEachColumn()
    {
        const std::vector<Column> all = columns();
        for (size_t place = 0; place < all.size(); ++place)
            insert(static_cast<uint32_t>(100 + place), all[place].name, all[place].isText ? "'one'" : "1");
        return all;
    }
};

TEST_P(FieldKeys, FindRowsByTheirColumns)
{
    const std::vector<Column> all = insertARowForEachColumn();
    size_t searched = 0;
    for (const Key &key : GetParam().keys)
        for (size_t place = 0; place < all.size(); ++place)
            if (all[place].name == key.column) {
                SCOPED_TRACE(key.key);
                EXPECT_EQ(GetParam().query(key.key, all[place].isText ? "one" : "1"),
                          records({static_cast<uint32_t>(100 + place)}));
                ++searched;
            }
    EXPECT_EQ(searched, GetParam().keys.size() - 1);
}

TEST_P(FieldKeys, FindARowByItsId)
{
    insert(7);
    insert(8);
    EXPECT_EQ(GetParam().query(GetParam().keys[0].key, "7"), records({7}));
    EXPECT_EQ(GetParam().query(GetParam().keys[0].key, "8"), records({8}));
    EXPECT_EQ(GetParam().query(GetParam().keys[0].key, "9"), nothing(8));
}

TEST_P(FieldKeys, FindEveryRowWithTheValue)
{
    for (const Column &column : columns())
        for (const Key &key : GetParam().keys)
            if (column.name == key.column) {
                SCOPED_TRACE(key.key);
                foreign("DELETE FROM " + GetParam().table);
                insert(3, column.name, column.isText ? "'x'" : "4294967295");
                insert(1, column.name, column.isText ? "'x'" : "4294967295");
                insert(2);
                EXPECT_EQ(GetParam().query(key.key, column.isText ? "x" : "4294967295"), records({1, 3}));
            }
}

TEST_P(FieldKeys, FindNoAbsentField)
{
    std::string names = GetParam().id();
    std::string values = "7";
    for (size_t place = 0; place < GetParam().parents.size(); ++place) {
        names += "," + GetParam().parents[place];
        values += place == 0 ? ",10" : ",20";
    }
    foreign("INSERT INTO " + GetParam().table + "(" + names + ") VALUES(" + values + ")");
    for (const Key &key : GetParam().keys)
        for (const char *value : {"", "0", "NULL", "null", "%"}) {
            SCOPED_TRACE(key.key + " of " + value);
            EXPECT_EQ(GetParam().query(key.key, value), nothing(8));
        }
}

TEST_P(FieldKeys, CompareTextsWholeAndExactly)
{
    for (const Column &column : columns())
        for (const Key &key : GetParam().keys)
            if (column.isText && column.name == key.column) {
                foreign("DELETE FROM " + GetParam().table);
                insert(7, column.name, "'it''s \"%1\" ? :1 \u0436'");
                insert(8, column.name, "''");
                EXPECT_EQ(GetParam().query(key.key, "it's \"%1\" ? :1 \u0436"), records({7})) << key.key;
                EXPECT_EQ(GetParam().query(key.key, ""), records({8})) << key.key;
                for (const char *value : {"it's", "IT'S \"%1\" ? :1 \u0436", "it's%", "%", "_", "' OR ''='"}) {
                    SCOPED_TRACE(key.key + " of " + value);
                    EXPECT_EQ(GetParam().query(key.key, value), nothing(8));
                }
            }
}

TEST_P(FieldKeys, CompareNumbersWithTexts)
{
    for (const Column &column : columns())
        for (const Key &key : GetParam().keys)
            if (!column.isText && column.name == key.column) {
                foreign("DELETE FROM " + GetParam().table);
                insert(7, column.name, "5");
                EXPECT_EQ(GetParam().query(key.key, "5"), records({7})) << key.key;
                for (const char *value : {"", "6", "55", "five", "5 OR 1=1", "true"}) {
                    SCOPED_TRACE(key.key + " of " + value);
                    EXPECT_EQ(GetParam().query(key.key, value), nothing(8));
                }
            }
}

TEST_P(FieldKeys, ExcludeWhatIsNotAKeyToSearchBy)
{
    insertARowForEachColumn();
    const DebugLines lines;
    for (const std::string &key : GetParam().refused) {
        SCOPED_TRACE(key);
        EXPECT_EQ(GetParam().query(key, "1"), nothing(10));
        EXPECT_EQ(GetParam().query(key, "one"), nothing(10));
    }
    EXPECT_EQ(lines.all(), std::vector<std::string>());
}

TEST_P(FieldKeys, AreNotTheNamesOfColumns)
{
    insertARowForEachColumn();
    for (const Row &row : file.rows("SELECT name FROM pragma_table_info('" + GetParam().table + "')")) {
        const std::string column = row.at(0).value();
        SCOPED_TRACE(column);
        EXPECT_EQ(GetParam().query(column, "1"), nothing(10));
        EXPECT_EQ(GetParam().query(GetParam().table + "." + column, "1"), nothing(10));
    }
    for (const char *name : {"rowid", "oid", "_rowid_", "1", "*"})
        EXPECT_EQ(GetParam().query(name, "1"), nothing(10)) << name;
    EXPECT_EQ(GetParam().query(GetParam().table, "1"), nothing(10));
}

TEST_P(FieldKeys, AreComparedExactly)
{
    insertARowForEachColumn();
    for (const Key &one : GetParam().keys) {
        const std::string &key = one.key;
        std::string upper = key;
        std::transform(upper.begin(), upper.end(), upper.begin(),
                       [](unsigned char letter) { return static_cast<char>(std::toupper(letter)); });
        const std::string capital = upper.substr(0, 1) + key.substr(1);
        const std::string last = key.substr(0, key.size() - 1) + upper.substr(key.size() - 1);
        for (const std::string &other :
             {upper, capital, last, " " + key, key + " ", key + std::string(1, '\0'), key + "s", key + "\n",
              "\"" + key + "\"", key.substr(1), key.substr(0, key.size() - 1)}) {
            ASSERT_FALSE(GetParam().accepts(other)) << other;
            SCOPED_TRACE(other);
            EXPECT_EQ(GetParam().query(other, "1"), nothing(10));
        }
    }
}

TEST_P(FieldKeys, AreNotEmpty)
{
    insertARowForEachColumn();
    EXPECT_EQ(GetParam().query("", "1"), nothing(10));
    EXPECT_EQ(GetParam().query("", ""), nothing(10));
    EXPECT_EQ(GetParam().query(std::string(1, '\0'), ""), nothing(10));
}

TEST_P(FieldKeys, AreNotThoseOfOtherRecords)
{
    insertARowForEachColumn();
    std::set<std::string> foreignKeys = {"user_index", "time", "class", "jdata", "email", "lat"};
    for (const Map &map : maps()) {
        for (const Key &key : map.keys)
            foreignKeys.insert(key.key);
        foreignKeys.insert(map.refused.begin(), map.refused.end());
    }
    for (const std::string &key : foreignKeys)
        if (!GetParam().accepts(key)) {
            EXPECT_EQ(GetParam().query(key, "1"), nothing(10)) << key;
        }
}

TEST_P(FieldKeys, AreCheckedBeforeTheStore)
{
    foreign("DROP TABLE " + GetParam().table);
    const DebugLines lines;
    EXPECT_EQ(GetParam().query("", "1"), nothing(10));
    EXPECT_EQ(GetParam().query("unknown", "1"), nothing(10));
    for (const std::string &key : GetParam().refused)
        EXPECT_EQ(GetParam().query(key, "1"), nothing(10)) << key;
    EXPECT_EQ(lines.all(), std::vector<std::string>());
    for (const Key &key : GetParam().keys)
        EXPECT_EQ(GetParam().query(key.key, "1"), nothing(7)) << key.key;
}

INSTANTIATE_TEST_SUITE_P(Of, FieldKeys, ::testing::ValuesIn(maps()),
                         [](const ::testing::TestParamInfo<Map> &map) { return map.param.name; });

// ---- What the maps do not share ----

class Keys : public StoreTest
{
};

TEST_F(Keys, OfDevicesReachThePartedFlagAndNotTheCluster)
{
    EXPECT_EQ(send(addDevices, R"({"D":{"items":[{"id":1,"parted":1,"cluster_id":0},
                                                  {"id":2,"parted":0,"cluster_id":1}]}})"),
              0u);
    const auto devices = listBy(getDevicesWithParams, "parted", "1");
    ASSERT_EQ(devices.size(), 1u);
    EXPECT_EQ(devices[0].id, 1u);
    EXPECT_EQ(listBy(getDevicesWithParams, "cluster_id", "1").code, 10u);
}

TEST_F(Keys, OfSectionsAndZonesDiffer)
{
    EXPECT_EQ(send(addDevice, R"({"D":{"id":10,"sections":[{"id":1,"physic":3,"arm":4,"form":5,"delay":6,"uid_type":7,
                                       "zones":[{"id":2,"physic":3,"arm":4,"form":5,"delay":6,"uid_type":7}]}]}})"),
              0u);
    EXPECT_EQ(listBy(getSectionsWithParams, "arm", "4", 10).code, 0u);
    EXPECT_EQ(listBy(getZonesWithParams, "arm", "4", 10).code, 10u);
    EXPECT_EQ(listBy(getZonesForSectionWithParams, "arm", "4", 10, 1).code, 10u);
    const std::vector<std::pair<std::string, std::string>> zonesOnly = {
        {"physic", "3"}, {"form", "5"}, {"delay", "6"}, {"uid_type", "7"}};
    for (const auto &[key, value] : zonesOnly) {
        SCOPED_TRACE(key);
        EXPECT_EQ(listBy(getSectionsWithParams, key, value, 10).code, 10u);
        EXPECT_EQ(listBy(getZonesWithParams, key, value, 10).code, 0u);
        EXPECT_EQ(listBy(getZonesForSectionWithParams, key, value, 10, 1).code, 0u);
    }
}

TEST_F(Keys, OfUsersLeaveOutThatOfARemoval)
{
    EXPECT_EQ(send(addUsers, R"({"D":{"items":[{"id":7}]}})"), 0u);
    EXPECT_EQ(listBy(getUsersWithParams, "op_id", "7").code, 10u);
    EXPECT_EQ(listBy(getUsersWithParams, "id", "7").code, 0u);
    EXPECT_EQ(send(deleteUser, R"({"D":{"op_id":7}})"), 0u);
}

TEST_F(Keys, OfOrganizationsCallTheIdByItsOwnName)
{
    EXPECT_EQ(send(addOrganizations, R"({"D":{"items":[{"org_id":7}]}})"), 0u);
    EXPECT_EQ(listBy(getOrganizationsWithParams, "org_id", "7").code, 0u);
    EXPECT_EQ(listBy(getOrganizationsWithParams, "id", "7").code, 10u);
}

TEST_F(Keys, EndAtTheGivenLength)
{
    EXPECT_EQ(send(addUsers, R"({"D":{"items":[{"id":7,"name":"x"}]}})"), 0u);
    const std::u16string key = u"names";
    const std::u16string text = u"xy";
    const auto *keyUnits = reinterpret_cast<const uint16_t *>(key.data());
    const auto *textUnits = reinterpret_cast<const uint16_t *>(text.data());
    List<FlatUser> users;
    EXPECT_EQ(getUsersWithParams(users.out(), users.count(), keyUnits, 5, textUnits, 1), 10u);
    EXPECT_EQ(getUsersWithParams(users.out(), users.count(), keyUnits, 4, textUnits, 2), 8u);
    EXPECT_EQ(getUsersWithParams(users.out(), users.count(), keyUnits, 3, textUnits, 1), 10u);
    EXPECT_EQ(getUsersWithParams(users.out(), users.count(), keyUnits, 4, textUnits, 1), 0u);
    ASSERT_EQ(users.size(), 1u);
    EXPECT_EQ(users[0].id, 7u);
}

TEST_F(Keys, AreRefusedAsANullPointer)
{
    EXPECT_EQ(send(addUsers, R"({"D":{"items":[{"id":7,"name":"x"}]}})"), 0u);
    const std::u16string text = u"x";
    List<FlatUser> users;
    EXPECT_EQ(
        getUsersWithParams(users.out(), users.count(), nullptr, 0, reinterpret_cast<const uint16_t *>(text.data()), 1),
        10u);
    EXPECT_EQ(getUsersWithParams(users.out(), users.count(), nullptr, 4, nullptr, 0), 10u);
}

TEST_F(Keys, LoseALeadingByteOrderMark)
{
    EXPECT_EQ(send(addUsers, R"({"D":{"items":[{"id":7,"name":"x"}]}})"), 0u);
    EXPECT_EQ(listBy(getUsersWithParams, "\uFEFFname", "\uFEFFx").code, 0u);
    EXPECT_EQ(listBy(getUsersWithParams, "name\uFEFF", "x").code, 10u);
}

template<class Flat, class... Parents, class... Numbers>
void expectGuarded(uint32_t (*function)(Flat **, uint32_t *, const uint16_t *, uint32_t, const uint16_t *, uint32_t,
                                        Parents...),
                   Numbers... numbers)
{
    Flat own{};
    Flat *out = &own;
    uint32_t count = untouched;
    EXPECT_EQ(find(function, &out, &count, "name", "x", numbers...), 10u);
    EXPECT_EQ(find(function, &out, &count, "unknown", "x", numbers...), 10u);
    EXPECT_EQ(out, &own);
    EXPECT_EQ(count, untouched);
}

TEST_F(Keys, AreIgnoredWhenTheTargetIsNotNull)
{
    library.reset();
    expectGuarded(getContractorsWithParams);
    expectGuarded(getContractsWithParams);
    expectGuarded(getDevicesWithParams);
    expectGuarded(getDomainsWithParams);
    expectGuarded(getLocalesWithParams);
    expectGuarded(getOrganizationsWithParams);
    expectGuarded(getSitesWithParams);
    expectGuarded(getUsersWithParams);
    expectGuarded(getSectionsWithParams, 10);
    expectGuarded(getZonesWithParams, 10);
    expectGuarded(getZonesForSectionWithParams, 10, 20);
}

} // namespace
