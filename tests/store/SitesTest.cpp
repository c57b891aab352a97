#include "Store.h"

namespace {

using namespace brimlet::test;
using Rows = std::vector<Row>;

const char *const fullSite = R"({"id":7,"name":"n","comment":"c","extra":"e","is_crossing":1,"domain":3,)"
                             R"("address_text":"a","contract_id":11,"contract_status":-2,"type":4,"category":5,)"
                             R"("arm_mode":6,"delegated":1,"site_plan":1,"location":{"lat":55.5,"lon":-37.25}})";

// A device with everything below it.
const char *const fullDevice = R"({"id":10,"account":1234,"sections":[{"id":1,"zones":[{"id":2}]}],)"
                               R"("users":[{"user_index":4,"sections":[1]}]})";

const char *const allSites = "SELECT SitesId,SitesName,SitesComment,SitesExtra,SitesIsCrossing,SitesDomainId,"
                             "SitesAddress,SitesContractId,SitesContractStatus,SitesType,SitesCategory,SitesArmMode,"
                             "SitesIsDelegated,SitesIsSitePlanExists FROM Sites ORDER BY SitesId";

const char *const allLocations = "SELECT LocationsId,LocationsLatitude,LocationsLongitude FROM Locations "
                                 "ORDER BY LocationsId";

struct NameAndAddress
{
    uint32_t code;
    std::optional<std::string> name;
    std::optional<std::string> address;
};

NameAndAddress nameAndAddress(uint32_t id)
{
    uint16_t *name = nullptr;
    uint16_t *address = nullptr;
    const uint32_t code = getSiteNameAndAddress(&name, &address, id);
    const Owned<uint16_t> ownedName(name);
    const Owned<uint16_t> ownedAddress(address);
    return {code, utf8(name), utf8(address)};
}

// A key of a site with a value that is of a wrong type for it.
struct WrongType
{
    std::string key;
    std::string value;
};

std::vector<WrongType> wrongTypes()
{
    const std::vector<std::string> texts = {"name", "comment", "extra", "address_text"};
    const std::vector<std::string> flags = {"is_crossing", "delegated", "site_plan"};
    const std::vector<std::string> numbers = {"domain",   "contract_id", "contract_status", "type", "category",
                                              "arm_mode", "id"};
    std::vector<WrongType> all;
    for (const std::string &key : texts)
        for (const char *value : {"5", "true", "null", "[]", "{}"})
            all.push_back({key, value});
    for (const std::string &key : flags)
        for (const char *value : {R"("1")", "null", "[]", "{}"})
            all.push_back({key, value});
    for (const std::string &key : numbers)
        for (const char *value : {R"("1")", "true", "null", "[]", "{}"})
            all.push_back({key, value});
    return all;
}

std::string siteWith(const WrongType &member)
{
    const std::string id = member.key == "id" ? "" : R"("id":8,)";
    return "{" + id + "\"" + member.key + "\":" + member.value + "}";
}

class Sites : public StoreTest
{
protected:
    // Contract 11 of contractor 4 and operator 70, who is of domain 30, which has locale 2.
    void addContractChain()
    {
        ASSERT_EQ(send(addLocales, R"({"D":{"items":[{"id":2,"iso":"de","description":"German"}]}})"), 0u);
        ASSERT_EQ(send(addDomains, R"({"D":{"items":[{"id":30,"name":"night","org_id":31,"locale_id":2}]}})"), 0u);
        ASSERT_EQ(send(addUsers, R"({"D":{"items":[{"id":70,"name":"u","login":"l","contacts":"k","active":1,)"
                                 R"("domain":30,"org":71,"roles":72,"phone":12345678901}]}})"),
                  0u);
        ASSERT_EQ(send(addContractors, R"({"D":{"items":[{"id":4,"inn":"i","org_id":41,"type":42,"off_name":"o",)"
                                       R"("name":"p","extra":"x"}]}})"),
                  0u);
        ASSERT_EQ(send(addContracts, R"({"D":{"items":[{"id":11,"number":"no","c_name":"cn","status":12,"date":13,)"
                                     R"("description":"d","extra":"ce","contractor_id":4,"operator_id":70}]}})"),
                  0u);
    }

    // Domain 3, which has locale 1.
    void addOwnDomain()
    {
        ASSERT_EQ(send(addLocales, R"({"D":{"items":[{"id":1,"iso":"en","description":"English"}]}})"), 0u);
        ASSERT_EQ(send(addDomains, R"({"D":{"items":[{"id":3,"name":"day","org_id":33,"locale_id":1}]}})"), 0u);
    }

    // Domain 3 exists, but its name overflows as soon as a statement reads that row.
    void addUnreadableDomain()
    {
        foreign("INSERT INTO Domains (DomainsId) VALUES (3), (5);"
                "ALTER TABLE Domains RENAME COLUMN DomainsName TO Gone;"
                "ALTER TABLE Domains ADD COLUMN DomainsName AS (abs(-9223372036854775807 - (DomainsId = 3)))");
    }

    // All tables that an add of sites writes to.
    std::vector<Rows> written() const
    {
        std::vector<Rows> all;
        for (const char *table :
             {"Sites", "Locations", "Devices", "Sections", "Zones", "DeviceUsers", "DeviceUserSectionLinks"})
            all.push_back(file.rows(std::string("SELECT * FROM ") + table + " ORDER BY rowid"));
        return all;
    }
};

// ---- Adding ----

TEST_F(Sites, AddStoresEveryField)
{
    ASSERT_EQ(send(addSites, batch(fullSite)), 0u);
    EXPECT_EQ(file.rows(allSites), (Rows{Row{"7", "n", "c", "e", "1", "3", "a", "11", "-2", "4", "5", "6", "1", "1"}}));
    EXPECT_EQ(file.rows(allLocations), (Rows{Row{"7", "55.5", "-37.25"}}));
}

TEST_F(Sites, AddStoresNumbersAndFlagsAsIntegersAndCoordinatesAsReals)
{
    ASSERT_EQ(send(addSites, batch(R"({"id":7,"name":"1","is_crossing":1,"domain":3,"contract_id":-5,)"
                                   R"("contract_status":2,"type":4,"category":5,"arm_mode":6,"delegated":0,)"
                                   R"("site_plan":1,"location":{"lat":55,"lon":1}})")),
              0u);
    EXPECT_EQ(file.rows("SELECT typeof(SitesId),typeof(SitesName),typeof(SitesIsCrossing),typeof(SitesDomainId),"
                        "typeof(SitesContractId),typeof(SitesContractStatus),typeof(SitesType),"
                        "typeof(SitesCategory),typeof(SitesArmMode),typeof(SitesIsDelegated),"
                        "typeof(SitesIsSitePlanExists) FROM Sites"),
              (Rows{Row{"integer", "text", "integer", "integer", "integer", "integer", "integer", "integer", "integer",
                        "integer", "integer"}}));
    EXPECT_EQ(file.rows("SELECT typeof(LocationsId),typeof(LocationsLatitude),typeof(LocationsLongitude) "
                        "FROM Locations"),
              (Rows{Row{"integer", "real", "real"}}));
}

TEST_F(Sites, AddStoresNullForEveryFieldLeftOut)
{
    ASSERT_EQ(send(addSites, batch(R"({"id":7})")), 0u);
    Row expected(14);
    expected[0] = "7";
    EXPECT_EQ(file.rows(allSites), Rows{expected});
    EXPECT_EQ(file.rows(allLocations), Rows{});
}

TEST_F(Sites, AddStoresABatch)
{
    ASSERT_EQ(send(addSites, batch(R"({"id":1,"name":"x"},{"id":2,"location":{"lat":2}},{"id":3,"type":3})")), 0u);
    EXPECT_EQ(file.rows("SELECT SitesId,SitesName,SitesType FROM Sites ORDER BY SitesId"),
              (Rows{Row{"1", "x", std::nullopt}, Row{"2", std::nullopt, std::nullopt}, Row{"3", std::nullopt, "3"}}));
    EXPECT_EQ(file.rows(allLocations), (Rows{Row{"2", "2.0", std::nullopt}}));
}

TEST_F(Sites, AddReplacesTheWholeRow)
{
    ASSERT_EQ(send(addSites, batch(fullSite)), 0u);
    ASSERT_EQ(send(addSites, batch(R"({"id":7,"comment":"new"})")), 0u);
    Row expected(14);
    expected[0] = "7";
    expected[2] = "new";
    EXPECT_EQ(file.rows(allSites), Rows{expected});
}

TEST_F(Sites, AddWithoutALocationKeepsTheOldOne)
{
    ASSERT_EQ(send(addSites, batch(fullSite)), 0u);
    ASSERT_EQ(send(addSites, batch(R"({"id":7})")), 0u);
    EXPECT_EQ(file.rows(allLocations), (Rows{Row{"7", "55.5", "-37.25"}}));
}

TEST_F(Sites, AddWithALocationReplacesTheOldOneWhole)
{
    ASSERT_EQ(send(addSites, batch(fullSite)), 0u);
    ASSERT_EQ(send(addSites, batch(R"({"id":7,"location":{"lon":4}})")), 0u);
    EXPECT_EQ(file.rows(allLocations), (Rows{Row{"7", std::nullopt, "4.0"}}));
}

TEST_F(Sites, AddTakesTheLastOfTwoSitesWithOneId)
{
    ASSERT_EQ(send(addSites, batch(R"({"id":1,"name":"x","type":1,"location":{"lat":1}},{"id":1,"name":"y"})")), 0u);
    EXPECT_EQ(file.rows("SELECT SitesName,SitesType FROM Sites"), (Rows{Row{"y", std::nullopt}}));
    EXPECT_EQ(file.rows(allLocations), (Rows{Row{"1", "1.0", std::nullopt}}));
}

TEST_F(Sites, AddKeepsAnEmptyTextApartFromAnAbsentOne)
{
    ASSERT_EQ(send(addSites, batch(R"({"id":7,"name":"","comment":"","extra":"","address_text":""})")), 0u);
    EXPECT_EQ(file.rows("SELECT typeof(SitesName),SitesName,typeof(SitesComment),SitesComment,typeof(SitesExtra),"
                        "SitesExtra,typeof(SitesAddress),SitesAddress FROM Sites"),
              (Rows{Row{"text", "", "text", "", "text", "", "text", ""}}));
    const auto site = get(getSite, 7);
    ASSERT_EQ(site.code, 0u);
    EXPECT_EQ(utf8(site->name), "");
    EXPECT_EQ(utf8(site->comment), "");
    EXPECT_EQ(utf8(site->extra), "");
    EXPECT_EQ(utf8(site->address), "");
}

TEST_F(Sites, TextsAreReturnedAsStored)
{
    const std::string text = "Склад №5 \xF0\x9F\x94\x92 " + std::string(300, 'x');
    ASSERT_EQ(send(addSites, batch(R"({"id":7,"name":")" + text + "\"}")), 0u);
    EXPECT_EQ(file.value("SELECT SitesName FROM Sites"), text);
    const auto site = get(getSite, 7);
    ASSERT_EQ(site.code, 0u);
    EXPECT_EQ(utf8(site->name), text);
}

TEST_F(Sites, AddReadsSignedNumbersAsWholeOnes)
{
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"-5", "-5"},
        {"1.5", "0"},
        {"-0.5", "0"},
        {"2147483647", "2147483647"},
        {"-2147483648", "-2147483648"},
        {"2147483648", "0"},
        {"-2147483649", "0"},
    };
    for (const auto &[json, stored] : cases) {
        SCOPED_TRACE(json);
        ASSERT_EQ(send(addSites, batch(R"({"id":7,"contract_id":)" + json + R"(,"contract_status":)" + json + "}")),
                  0u);
        EXPECT_EQ(file.rows("SELECT SitesContractId,SitesContractStatus FROM Sites"), (Rows{Row{stored, stored}}));
    }
}

TEST_F(Sites, AddReadsUnsignedNumbersModulo32Bits)
{
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"3.9", "3"},         {"-0.5", "0"},
        {"-1", "4294967295"}, {"4294967295", "4294967295"},
        {"4294967296", "0"},  {"5000000000", "705032704"},
    };
    for (const auto &[json, stored] : cases) {
        SCOPED_TRACE(json);
        ASSERT_EQ(send(addSites, batch(R"({"id":7,"domain":)" + json + R"(,"type":)" + json + R"(,"category":)" + json
                                       + R"(,"arm_mode":)" + json + "}")),
                  0u);
        EXPECT_EQ(file.rows("SELECT SitesDomainId,SitesType,SitesCategory,SitesArmMode FROM Sites"),
                  (Rows{Row{stored, stored, stored, stored}}));
    }
}

TEST_F(Sites, AFlagIsTrueOnlyForAWholeNumberOtherThanZero)
{
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"1", "1"}, {"0", "0"}, {"-3", "1"}, {"0.5", "0"}, {"true", "0"}, {"false", "0"}, {"2147483648", "0"},
    };
    for (const auto &[json, stored] : cases) {
        SCOPED_TRACE(json);
        ASSERT_EQ(send(addSites, batch(R"({"id":7,"is_crossing":)" + json + R"(,"delegated":)" + json
                                       + R"(,"site_plan":)" + json + "}")),
                  0u);
        EXPECT_EQ(file.rows("SELECT SitesIsCrossing,SitesIsDelegated,SitesIsSitePlanExists FROM Sites"),
                  (Rows{Row{stored, stored, stored}}));
    }
}

TEST_F(Sites, ALocationGoesUnderTheIdOfItsSite)
{
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"1.9", "1"}, {"-1", "4294967295"}, {"4294967296", "0"}, {"5000000000", "705032704"}};
    for (const auto &[json, stored] : cases) {
        SCOPED_TRACE(json);
        foreign("DELETE FROM Sites; DELETE FROM Locations");
        ASSERT_EQ(send(addSites, batch(R"({"id":)" + json + R"(,"location":{"id":99,"lat":1,"lon":2}})")), 0u);
        EXPECT_EQ(file.rows("SELECT SitesId FROM Sites"), (Rows{Row{stored}}));
        EXPECT_EQ(file.rows(allLocations), (Rows{Row{stored, "1.0", "2.0"}}));
    }
}

TEST_F(Sites, ALocationThatIsEmptyOrNoObjectIsNone)
{
    for (const char *location : {"{}", "5", R"("x")", "null", "true", "[]", "[1]", R"([{"lat":1}])"}) {
        SCOPED_TRACE(location);
        EXPECT_EQ(send(addSites, batch(std::string(R"({"id":7,"location":)") + location + "}")), 0u);
        EXPECT_EQ(file.number("SELECT count(*) FROM Sites"), 1);
        EXPECT_EQ(file.number("SELECT count(*) FROM Locations"), 0);
    }
}

TEST_F(Sites, CoordinatesOfAnyTypeAreTaken)
{
    const std::vector<std::pair<std::string, Row>> cases = {
        {R"({"lat":"x"})", Row{"0.0", std::nullopt}},          {R"({"lon":"5"})", Row{std::nullopt, "0.0"}},
        {R"({"lat":null,"lon":true})", Row{"0.0", "0.0"}},     {R"({"lat":[],"lon":{}})", Row{"0.0", "0.0"}},
        {R"({"lat":-1.25,"lon":180})", Row{"-1.25", "180.0"}}, {R"({"other":1})", Row{std::nullopt, std::nullopt}},
    };
    for (const auto &[location, stored] : cases) {
        SCOPED_TRACE(location);
        EXPECT_EQ(send(addSites, batch(R"({"id":7,"location":)" + location + "}")), 0u);
        EXPECT_EQ(file.rows("SELECT LocationsLatitude,LocationsLongitude FROM Locations"), Rows{stored});
    }
}

TEST_F(Sites, ALocationWithoutCoordinatesIsStillALocation)
{
    ASSERT_EQ(send(addSites, batch(R"({"id":7,"location":{"other":1}})")), 0u);
    const auto site = get(getSite, 7);
    ASSERT_EQ(site.code, 0u);
    ASSERT_NE(site->location, nullptr);
    EXPECT_EQ(site->location->id, 7u);
    EXPECT_EQ(site->location->latitude, nullptr);
    EXPECT_EQ(site->location->longitude, nullptr);
}

TEST_F(Sites, DevicesThatAreNoArrayAreNone)
{
    for (const char *devices : {"5", R"("x")", "null", "true", "{}", R"({"id":1})", "[]"}) {
        SCOPED_TRACE(devices);
        EXPECT_EQ(send(addSites, batch(std::string(R"({"id":7,"devices":)") + devices + "}")), 0u);
        EXPECT_EQ(file.number("SELECT count(*) FROM Sites"), 1);
        EXPECT_EQ(file.number("SELECT count(*) FROM Devices"), 0);
    }
}

TEST_F(Sites, ADeviceThatCannotBeReadRefusesTheBatch)
{
    for (const char *devices : {"[5]", "[null]", R"(["x"])", "[[]]", "[{}]", R"([{"id":"1"}])", R"([{"id":1},5])",
                                R"([{"id":1,"account":"x"}])", R"([{"id":1,"sections":[5]}])"}) {
        SCOPED_TRACE(devices);
        EXPECT_EQ(send(addSites, batch(std::string(R"({"id":6},{"id":7,"devices":)") + devices + "}")), 5u);
        EXPECT_EQ(file.number("SELECT count(*) FROM Sites"), 0);
        EXPECT_EQ(file.number("SELECT count(*) FROM Devices"), 0);
    }
}

TEST_F(Sites, AddStoresTheDevicesOfEverySite)
{
    ASSERT_EQ(send(addSites, batch(std::string(R"({"id":1,"devices":[)") + fullDevice
                                   + R"(,{"id":11}]},{"id":2},{"id":3,"devices":[{"id":12,"account":5}]})")),
              0u);
    EXPECT_EQ(file.rows("SELECT DevicesId,DevicesAccount FROM Devices ORDER BY DevicesId"),
              (Rows{Row{"10", "1234"}, Row{"11", std::nullopt}, Row{"12", "5"}}));
    EXPECT_EQ(file.rows("SELECT SectionsDeviceId,SectionsSectionId FROM Sections"), (Rows{Row{"10", "1"}}));
    EXPECT_EQ(file.rows("SELECT ZonesDeviceId,ZonesSectionId,ZonesZoneId FROM Zones"), (Rows{Row{"10", "1", "2"}}));
    EXPECT_EQ(file.rows("SELECT DeviceUsersDeviceId,DeviceUsersDeviceUserId FROM DeviceUsers"), (Rows{Row{"10", "4"}}));
    EXPECT_EQ(file.rows("SELECT * FROM DeviceUserSectionLinks"), (Rows{Row{"10", "4", "1"}}));
}

TEST_F(Sites, TheDevicesOfASiteAreListedAndNotReadWithIt)
{
    ASSERT_EQ(send(addSites, batch(std::string(R"({"id":7,"devices":[)") + fullDevice + "]}")), 0u);
    const auto site = get(getSite, 7);
    ASSERT_EQ(site.code, 0u);
    EXPECT_EQ(site->devices, nullptr);
    EXPECT_EQ(site->deviceCount, 0u);
    const auto devices = list(getDevices);
    ASSERT_EQ(devices.code, 0u);
    ASSERT_EQ(devices.size(), 1u);
    EXPECT_EQ(devices[0].id, 10u);
    EXPECT_EQ(devices[0].sectionsCount, 1u);
    EXPECT_EQ(devices[0].usersCount, 1u);
}

TEST_F(Sites, AWrongTypeUnderAnyKeyRefusesTheBatch)
{
    for (const WrongType &member : wrongTypes()) {
        SCOPED_TRACE(siteWith(member));
        EXPECT_EQ(send(addSites, batch(R"({"id":6},)" + siteWith(member))), 5u);
        EXPECT_EQ(file.number("SELECT count(*) FROM Sites"), 0);
    }
}

TEST_F(Sites, AddNeedsTheIdUnderId)
{
    EXPECT_EQ(send(addSites, batch("{}")), 5u);
    EXPECT_EQ(send(addSites, batch(R"({"site_id":7,"name":"n"})")), 5u);
    EXPECT_EQ(file.number("SELECT count(*) FROM Sites"), 0);
}

TEST_F(Sites, AddIgnoresUnknownKeys)
{
    EXPECT_EQ(send(addSites, batch(R"({"id":7,"address":"a","Name":"n","unknown":null})")), 0u);
    Row expected(14);
    expected[0] = "7";
    EXPECT_EQ(file.rows(allSites), Rows{expected});
}

TEST_F(Sites, AddRefusesABrokenDocument)
{
    EXPECT_EQ(send(addSites, ""), 10u);
    EXPECT_EQ(send(addSites, "not json"), 10u);
    EXPECT_EQ(send(addSites, R"([{"id":7}])"), 10u);
    EXPECT_EQ(addSites(nullptr, 0), 10u);
    EXPECT_EQ(send(addSites, R"({"D":{"items":[]}})"), 10u);
    EXPECT_EQ(send(addSites, R"({"D":{"items":{}}})"), 5u);
    EXPECT_EQ(send(addSites, R"({"D":{"id":7}})"), 5u);
    EXPECT_EQ(send(addSites, R"({"D":[{"id":7}]})"), 5u);
    EXPECT_EQ(send(addSites, R"({"items":[{"id":7}]})"), 5u);
    EXPECT_EQ(send(addSites, batch(R"({"id":7},{"id":8},5)")), 5u);
    EXPECT_EQ(file.number("SELECT count(*) FROM Sites"), 0);
}

// The step of an add that fails, by its table, and the words that it logs.
struct FailingStep
{
    const char *table;
    const char *words;

    friend std::ostream &operator<<(std::ostream &stream, const FailingStep &step) { return stream << step.table; }
};

class SitesAddSteps : public Sites, public ::testing::WithParamInterface<FailingStep>
{
};

TEST_P(SitesAddSteps, AFailureUndoesTheWholeBatch)
{
    ASSERT_EQ(send(addSites, batch(R"({"id":1,"name":"old","location":{"lat":1},"devices":[{"id":10,"account":5}]})")),
              0u);
    refuse("INSERT", GetParam().table);
    const std::vector<Rows> before = written();
    DebugLines lines;
    EXPECT_EQ(send(addSites, batch(std::string(R"({"id":1,"name":"new","location":{"lat":2},"devices":[)") + fullDevice
                                   + R"(]},{"id":2,"location":{"lat":2},"devices":[{"id":20}]})")),
              9u);
    EXPECT_TRUE(isBatchFailure(lines.all(), GetParam().words));
    EXPECT_EQ(written(), before);
}

INSTANTIATE_TEST_SUITE_P(Tables, SitesAddSteps,
                         ::testing::Values(FailingStep{"Sites", "add sites error"},
                                           FailingStep{"Devices", "add devices error"},
                                           FailingStep{"Sections", "add sections error"},
                                           FailingStep{"Zones", "add zones error"},
                                           FailingStep{"DeviceUsers", "add device users error"},
                                           FailingStep{"DeviceUserSectionLinks", "add device users error"},
                                           FailingStep{"Locations", "add locations error"}),
                         [](const auto &step) { return std::string(step.param.table); });

TEST_F(Sites, AddWritesSitesThenDevicesThenLocations)
{
    const std::string document = batch(R"({"id":1,"location":{"lat":1},"devices":[{"id":10}]})");
    DebugLines lines;
    refuse("INSERT", "Locations");
    lines.clear();
    EXPECT_EQ(send(addSites, document), 9u);
    EXPECT_TRUE(isBatchFailure(lines.all(), "add locations error"));
    refuse("INSERT", "Devices");
    lines.clear();
    EXPECT_EQ(send(addSites, document), 9u);
    EXPECT_TRUE(isBatchFailure(lines.all(), "add devices error"));
    refuse("INSERT", "Sites");
    lines.clear();
    EXPECT_EQ(send(addSites, document), 9u);
    EXPECT_TRUE(isBatchFailure(lines.all(), "add sites error"));
}

TEST_F(Sites, AFailureAtTheSecondSitesDevicesUndoesThoseOfTheFirst)
{
    foreign("CREATE TRIGGER RefuseSecond BEFORE INSERT ON Devices WHEN NEW.DevicesId = 20 "
            "BEGIN SELECT RAISE(ABORT, 'refused'); END");
    const std::vector<Rows> before = written();
    DebugLines lines;
    EXPECT_EQ(send(addSites,
                   batch(std::string(R"({"id":1,"devices":[)") + fullDevice + R"(]},{"id":2,"devices":[{"id":20}]})")),
              9u);
    EXPECT_TRUE(isBatchFailure(lines.all(), "add devices error"));
    EXPECT_EQ(written(), before);
}

TEST_F(Sites, AddWithoutDevicesOrLocationWritesToSitesOnly)
{
    for (const char *table : {"Devices", "Sections", "Zones", "DeviceUsers", "DeviceUserSectionLinks", "Locations"})
        refuse("INSERT", table);
    DebugLines lines;
    EXPECT_EQ(send(addSites, batch(R"({"id":1},{"id":2,"devices":[],"location":{}})")), 0u);
    EXPECT_EQ(lines.all(), std::vector<std::string>{});
    EXPECT_EQ(file.number("SELECT count(*) FROM Sites"), 2);
}

TEST_F(Sites, AddReturns9WithoutTheTable)
{
    foreign("DROP TABLE Sites");
    DebugLines lines;
    EXPECT_EQ(send(addSites, batch(fullSite)), 9u);
    EXPECT_TRUE(isBatchFailure(lines.all(), "add sites error"));
    EXPECT_EQ(file.number("SELECT count(*) FROM Locations"), 0);
}

// ---- Reading ----

TEST_F(Sites, GetReturnsEveryField)
{
    ASSERT_EQ(send(addSites, batch(fullSite)), 0u);
    const auto site = get(getSite, 7);
    ASSERT_EQ(site.code, 0u);
    EXPECT_EQ(site->id, 7u);
    EXPECT_EQ(utf8(site->name), "n");
    EXPECT_EQ(utf8(site->comment), "c");
    EXPECT_EQ(utf8(site->extra), "e");
    EXPECT_EQ(value(site->isCrossing), 1);
    EXPECT_EQ(utf8(site->address), "a");
    EXPECT_EQ(value(site->contractStatus), -2);
    EXPECT_EQ(value(site->type), 4u);
    EXPECT_EQ(value(site->category), 5u);
    EXPECT_EQ(value(site->armMode), 6u);
    EXPECT_EQ(value(site->isDelegated), 1);
    EXPECT_EQ(value(site->domainId), 3u);
    EXPECT_EQ(value(site->contractId), 11);
    EXPECT_EQ(value(site->isSitePlanExists), 1);
    ASSERT_NE(site->location, nullptr);
    EXPECT_EQ(site->location->id, 7u);
    EXPECT_EQ(value(site->location->latitude), 55.5);
    EXPECT_EQ(value(site->location->longitude), -37.25);
}

TEST_F(Sites, GetReturnsNullForEveryFieldAbsent)
{
    ASSERT_EQ(send(addSites, batch(R"({"id":7})")), 0u);
    const auto site = get(getSite, 7);
    ASSERT_EQ(site.code, 0u);
    EXPECT_EQ(site->id, 7u);
    EXPECT_EQ(site->name, nullptr);
    EXPECT_EQ(site->comment, nullptr);
    EXPECT_EQ(site->extra, nullptr);
    EXPECT_EQ(site->isCrossing, nullptr);
    EXPECT_EQ(site->domain, nullptr);
    EXPECT_EQ(site->address, nullptr);
    EXPECT_EQ(site->contract, nullptr);
    EXPECT_EQ(site->contractStatus, nullptr);
    EXPECT_EQ(site->type, nullptr);
    EXPECT_EQ(site->category, nullptr);
    EXPECT_EQ(site->armMode, nullptr);
    EXPECT_EQ(site->isDelegated, nullptr);
    EXPECT_EQ(site->devices, nullptr);
    EXPECT_EQ(site->deviceCount, 0u);
    EXPECT_EQ(site->domainId, nullptr);
    EXPECT_EQ(site->location, nullptr);
    EXPECT_EQ(site->contractId, nullptr);
    EXPECT_EQ(site->isSitePlanExists, nullptr);
}

TEST_F(Sites, AFalseFlagAndAZeroArePresent)
{
    ASSERT_EQ(send(addSites, batch(R"({"id":7,"is_crossing":0,"delegated":true,"site_plan":0,"type":0,)"
                                   R"("contract_id":0,"contract_status":0})")),
              0u);
    const auto site = get(getSite, 7);
    ASSERT_EQ(site.code, 0u);
    EXPECT_EQ(value(site->isCrossing), 0);
    EXPECT_EQ(value(site->isDelegated), 0);
    EXPECT_EQ(value(site->isSitePlanExists), 0);
    EXPECT_EQ(value(site->type), 0u);
    EXPECT_EQ(value(site->contractId), 0);
    EXPECT_EQ(value(site->contractStatus), 0);
}

TEST_F(Sites, TheSitePlanFlagIsReadAsANumberAndTheOtherFlagsAsFlags)
{
    ASSERT_EQ(send(addSites, batch(R"({"id":7})")), 0u);
    foreign("UPDATE Sites SET SitesIsCrossing = 'x', SitesIsDelegated = 'x', SitesIsSitePlanExists = 'x'");
    const auto text = get(getSite, 7);
    ASSERT_EQ(text.code, 0u);
    EXPECT_EQ(value(text->isCrossing), 1);
    EXPECT_EQ(value(text->isDelegated), 1);
    EXPECT_EQ(value(text->isSitePlanExists), 0);
    foreign("UPDATE Sites SET SitesIsCrossing = 2, SitesIsDelegated = 2, SitesIsSitePlanExists = 2");
    const auto number = get(getSite, 7);
    ASSERT_EQ(number.code, 0u);
    EXPECT_EQ(value(number->isCrossing), 1);
    EXPECT_EQ(value(number->isDelegated), 1);
    EXPECT_EQ(value(number->isSitePlanExists), 1);
}

TEST_F(Sites, GetReturnsTheContractWithAllThatItRefersTo)
{
    addContractChain();
    ASSERT_EQ(send(addSites, batch(R"({"id":7,"contract_id":11})")), 0u);
    const auto site = get(getSite, 7);
    ASSERT_EQ(site.code, 0u);
    EXPECT_EQ(value(site->contractId), 11);
    ASSERT_NE(site->contract, nullptr);
    const FlatContract &contract = *site->contract;
    EXPECT_EQ(contract.id, 11u);
    EXPECT_EQ(utf8(contract.number), "no");
    EXPECT_EQ(utf8(contract.name), "cn");
    EXPECT_EQ(value(contract.status), 12u);
    EXPECT_EQ(value(contract.date), 13u);
    EXPECT_EQ(utf8(contract.description), "d");
    EXPECT_EQ(utf8(contract.extra), "ce");
    ASSERT_NE(contract.contractor, nullptr);
    EXPECT_EQ(contract.contractor->id, 4u);
    EXPECT_EQ(utf8(contract.contractor->inn), "i");
    EXPECT_EQ(value(contract.contractor->orgId), 41u);
    EXPECT_EQ(value(contract.contractor->type), 42u);
    EXPECT_EQ(utf8(contract.contractor->officialName), "o");
    EXPECT_EQ(utf8(contract.contractor->name), "p");
    EXPECT_EQ(utf8(contract.contractor->extra), "x");
}

TEST_F(Sites, GetReturnsTheOperatorOfTheContractWithDomainAndLocale)
{
    addContractChain();
    ASSERT_EQ(send(addSites, batch(R"({"id":7,"contract_id":11})")), 0u);
    const auto site = get(getSite, 7);
    ASSERT_EQ(site.code, 0u);
    ASSERT_NE(site->contract, nullptr);
    ASSERT_NE(site->contract->user, nullptr);
    const FlatUser &user = *site->contract->user;
    EXPECT_EQ(user.id, 70u);
    EXPECT_EQ(utf8(user.name), "u");
    EXPECT_EQ(utf8(user.login), "l");
    EXPECT_EQ(utf8(user.contacts), "k");
    EXPECT_EQ(value(user.isActive), 1);
    EXPECT_EQ(value(user.domainId), 30u);
    EXPECT_EQ(value(user.roles), 72u);
    EXPECT_EQ(value(user.phone), 12345678901u);
    EXPECT_EQ(value(user.orgId), 71u);
    ASSERT_NE(user.domain, nullptr);
    EXPECT_EQ(user.domain->id, 30u);
    EXPECT_EQ(utf8(user.domain->name), "night");
    EXPECT_EQ(value(user.domain->orgId), 31u);
    ASSERT_NE(user.domain->locale, nullptr);
    EXPECT_EQ(user.domain->locale->id, 2u);
    EXPECT_EQ(utf8(user.domain->locale->iso), "de");
    EXPECT_EQ(utf8(user.domain->locale->description), "German");
}

TEST_F(Sites, ASitesOwnDomainIsNotThatOfTheOperator)
{
    addContractChain();
    addOwnDomain();
    ASSERT_EQ(send(addSites, batch(R"({"id":7,"contract_id":11,"domain":3})")), 0u);
    const auto site = get(getSite, 7);
    ASSERT_EQ(site.code, 0u);
    ASSERT_NE(site->domain, nullptr);
    EXPECT_EQ(site->domain->id, 3u);
    EXPECT_EQ(utf8(site->domain->name), "day");
    EXPECT_EQ(value(site->domain->orgId), 33u);
    ASSERT_NE(site->domain->locale, nullptr);
    EXPECT_EQ(site->domain->locale->id, 1u);
    EXPECT_EQ(utf8(site->domain->locale->iso), "en");
    EXPECT_EQ(utf8(site->domain->locale->description), "English");
    ASSERT_NE(site->contract, nullptr);
    ASSERT_NE(site->contract->user, nullptr);
    ASSERT_NE(site->contract->user->domain, nullptr);
    EXPECT_EQ(site->contract->user->domain->id, 30u);
}

TEST_F(Sites, TheOperatorsDomainIsNotTheSites)
{
    addContractChain();
    ASSERT_EQ(send(addSites, batch(R"({"id":7,"contract_id":11})")), 0u);
    const auto site = get(getSite, 7);
    ASSERT_EQ(site.code, 0u);
    EXPECT_EQ(site->domainId, nullptr);
    EXPECT_EQ(site->domain, nullptr);
}

TEST_F(Sites, EveryRecordOfTheContractMayBeMissing)
{
    addContractChain();
    ASSERT_EQ(send(addSites, batch(R"({"id":7,"contract_id":11})")), 0u);
    const auto read = [] { return get(getSite, 7); };

    foreign("DELETE FROM Locales");
    const auto withoutLocale = read();
    ASSERT_EQ(withoutLocale.code, 0u);
    ASSERT_TRUE(withoutLocale->contract && withoutLocale->contract->user);
    ASSERT_NE(withoutLocale->contract->user->domain, nullptr);
    EXPECT_EQ(withoutLocale->contract->user->domain->locale, nullptr);

    foreign("DELETE FROM Domains");
    const auto withoutDomain = read();
    ASSERT_EQ(withoutDomain.code, 0u);
    ASSERT_NE(withoutDomain->contract, nullptr);
    ASSERT_NE(withoutDomain->contract->user, nullptr);
    EXPECT_EQ(value(withoutDomain->contract->user->domainId), 30u);
    EXPECT_EQ(withoutDomain->contract->user->domain, nullptr);

    foreign("DELETE FROM Users");
    const auto withoutUser = read();
    ASSERT_EQ(withoutUser.code, 0u);
    ASSERT_NE(withoutUser->contract, nullptr);
    EXPECT_EQ(withoutUser->contract->user, nullptr);
    EXPECT_NE(withoutUser->contract->contractor, nullptr);

    foreign("DELETE FROM Contractors");
    const auto withoutContractor = read();
    ASSERT_EQ(withoutContractor.code, 0u);
    ASSERT_NE(withoutContractor->contract, nullptr);
    EXPECT_EQ(withoutContractor->contract->contractor, nullptr);

    foreign("DELETE FROM Contracts");
    const auto withoutContract = read();
    ASSERT_EQ(withoutContract.code, 0u);
    EXPECT_EQ(withoutContract->contract, nullptr);
    EXPECT_EQ(value(withoutContract->contractId), 11);
}

TEST_F(Sites, AContractThatComesLaterShows)
{
    ASSERT_EQ(send(addSites, batch(R"({"id":7,"contract_id":11})")), 0u);
    const auto before = get(getSite, 7);
    ASSERT_EQ(before.code, 0u);
    EXPECT_EQ(before->contract, nullptr);
    addContractChain();
    const auto site = get(getSite, 7);
    ASSERT_EQ(site.code, 0u);
    ASSERT_NE(site->contract, nullptr);
    EXPECT_EQ(site->contract->id, 11u);
}

TEST_F(Sites, ANegativeContractIdIsNoContract)
{
    ASSERT_EQ(send(addContracts, R"({"D":{"items":[{"id":-5}]}})"), 0u);
    ASSERT_EQ(send(addSites, batch(R"({"id":7,"contract_id":-5})")), 0u);
    const auto site = get(getSite, 7);
    ASSERT_EQ(site.code, 0u);
    EXPECT_EQ(value(site->contractId), -5);
    EXPECT_EQ(site->contract, nullptr);
}

TEST_F(Sites, DomainZeroIsNoDomain)
{
    ASSERT_EQ(send(addDomains, R"({"D":{"items":[{"id":0,"name":"zero"}]}})"), 0u);
    ASSERT_EQ(send(addSites, batch(R"({"id":7,"domain":0})")), 0u);
    const auto site = get(getSite, 7);
    ASSERT_EQ(site.code, 0u);
    EXPECT_EQ(value(site->domainId), 0u);
    EXPECT_EQ(site->domain, nullptr);
    const auto sites = list(getSites);
    ASSERT_EQ(sites.size(), 1u);
    EXPECT_EQ(value(sites[0].domainId), 0u);
    EXPECT_EQ(sites[0].domain, nullptr);
}

TEST_F(Sites, AnUnknownDomainLeavesItsIdAlone)
{
    ASSERT_EQ(send(addSites, batch(R"({"id":7,"domain":3})")), 0u);
    const auto site = get(getSite, 7);
    ASSERT_EQ(site.code, 0u);
    EXPECT_EQ(value(site->domainId), 3u);
    EXPECT_EQ(site->domain, nullptr);
    const auto sites = list(getSites);
    ASSERT_EQ(sites.size(), 1u);
    EXPECT_EQ(value(sites[0].domainId), 3u);
    EXPECT_EQ(sites[0].domain, nullptr);
}

TEST_F(Sites, GetReturns8ForAnUnknownId)
{
    ASSERT_EQ(send(addSites, batch(fullSite)), 0u);
    DebugLines lines;
    const auto site = get(getSite, 8);
    EXPECT_EQ(site.code, 8u);
    EXPECT_EQ(site.record.get(), nullptr);
    EXPECT_EQ(lines.all(), std::vector<std::string>{});
}

TEST_F(Sites, AllReadsRefuseAFilledOutParameterBeforeTheStore)
{
    foreign("DROP TABLE Sites");
    DebugLines lines;
    FlatSite occupied = {};
    FlatSite *out = &occupied;
    uint32_t count = 77;
    EXPECT_EQ(getSite(&out, 7), 10u);
    EXPECT_EQ(getSites(&out, &count), 10u);
    EXPECT_EQ(find(getSitesWithParams, &out, &count, "id", "7"), 10u);
    EXPECT_EQ(out, &occupied);
    EXPECT_EQ(count, 77u);
    EXPECT_EQ(lines.all(), std::vector<std::string>{});
}

TEST_F(Sites, ListReturns8ForAnEmptyTable)
{
    FlatSite *out = nullptr;
    uint32_t count = 77;
    EXPECT_EQ(getSites(&out, &count), 8u);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(count, 77u);
}

TEST_F(Sites, ListReturnsEverySiteWithItsOwn)
{
    addContractChain();
    addOwnDomain();
    ASSERT_EQ(send(addSites, batch(R"({"id":1,"domain":3,"location":{"lat":1}},{"id":2,"domain":30},)"
                                   R"({"id":3,"contract_id":11},{"id":4,"domain":99})")),
              0u);
    const auto sites = list(getSites);
    ASSERT_EQ(sites.code, 0u);
    ASSERT_EQ(sites.size(), 4u);
    const FlatSite *first = sites.withId(1);
    const FlatSite *second = sites.withId(2);
    const FlatSite *third = sites.withId(3);
    const FlatSite *fourth = sites.withId(4);
    ASSERT_TRUE(first && second && third && fourth);
    ASSERT_NE(first->domain, nullptr);
    EXPECT_EQ(utf8(first->domain->name), "day");
    ASSERT_NE(first->location, nullptr);
    EXPECT_EQ(value(first->location->latitude), 1.0);
    EXPECT_EQ(first->contract, nullptr);
    ASSERT_NE(second->domain, nullptr);
    EXPECT_EQ(utf8(second->domain->name), "night");
    EXPECT_EQ(second->location, nullptr);
    ASSERT_NE(third->contract, nullptr);
    ASSERT_NE(third->contract->user, nullptr);
    EXPECT_EQ(third->domain, nullptr);
    EXPECT_EQ(value(fourth->domainId), 99u);
    EXPECT_EQ(fourth->domain, nullptr);
    for (const FlatSite &site : sites) {
        EXPECT_EQ(site.devices, nullptr);
        EXPECT_EQ(site.deviceCount, 0u);
    }
}

TEST_F(Sites, EverySearchableKeyFindsItsSite)
{
    ASSERT_EQ(send(addSites, batch(std::string(fullSite)
                                   + R"(,{"id":8,"name":"o","comment":"o","extra":"o","is_crossing":0,"domain":1,)"
                                     R"("address_text":"o","contract_id":1,"contract_status":1,"type":1,"category":1,)"
                                     R"("arm_mode":1,"delegated":0,"site_plan":0},{"id":9})")),
              0u);
    const std::vector<std::pair<std::string, std::string>> searches = {
        {"id", "7"},           {"name", "n"},         {"comment", "c"},
        {"extra", "e"},        {"is_crossing", "1"},  {"domain", "3"},
        {"address_text", "a"}, {"contract_id", "11"}, {"contract_status", "-2"},
        {"type", "4"},         {"category", "5"},     {"arm_mode", "6"},
        {"delegated", "1"},
    };
    for (const auto &[key, text] : searches) {
        SCOPED_TRACE(key);
        const auto sites = listBy(getSitesWithParams, key, text);
        ASSERT_EQ(sites.code, 0u);
        ASSERT_EQ(sites.size(), 1u);
        EXPECT_EQ(sites[0].id, 7u);
    }
}

TEST_F(Sites, AKeyThatCannotBeSearchedReturns10BeforeTheStore)
{
    foreign("DROP TABLE Sites");
    DebugLines lines;
    for (const char *key : {"site_plan", "location", "devices", "site_id", "", "Name", "NAME", "address", "lat",
                            "domain_id", "SitesName", " name"}) {
        SCOPED_TRACE(key);
        FlatSite *out = nullptr;
        uint32_t count = 77;
        EXPECT_EQ(find(getSitesWithParams, &out, &count, key, "1"), 10u);
        EXPECT_EQ(out, nullptr);
        EXPECT_EQ(count, 77u);
    }
    EXPECT_EQ(lines.all(), std::vector<std::string>{});
}

TEST_F(Sites, SearchingReturnsAllThatFitWithTheirOwn)
{
    addContractChain();
    addOwnDomain();
    ASSERT_EQ(send(addSites, batch(R"({"id":1,"is_crossing":1,"domain":3,"location":{"lon":2}},)"
                                   R"({"id":2,"is_crossing":0},{"id":3,"is_crossing":1,"contract_id":11})")),
              0u);
    const auto sites = listBy(getSitesWithParams, "is_crossing", "1");
    ASSERT_EQ(sites.code, 0u);
    ASSERT_EQ(sites.size(), 2u);
    const FlatSite *first = sites.withId(1);
    const FlatSite *third = sites.withId(3);
    ASSERT_TRUE(first && third);
    ASSERT_NE(first->domain, nullptr);
    EXPECT_EQ(utf8(first->domain->name), "day");
    ASSERT_NE(first->domain->locale, nullptr);
    ASSERT_NE(first->location, nullptr);
    ASSERT_NE(third->contract, nullptr);
    EXPECT_NE(third->contract->contractor, nullptr);
}

TEST_F(Sites, SearchingComparesTextsExactly)
{
    ASSERT_EQ(send(addSites, batch(R"({"id":1,"name":"Hall"},{"id":2})")), 0u);
    EXPECT_EQ(listBy(getSitesWithParams, "name", "Hall").size(), 1u);
    for (const char *text : {"hall", "Hal", "Hall ", "%", "H%", "NULL"}) {
        SCOPED_TRACE(text);
        FlatSite *out = nullptr;
        uint32_t count = 77;
        EXPECT_EQ(find(getSitesWithParams, &out, &count, "name", text), 8u);
        EXPECT_EQ(out, nullptr);
        EXPECT_EQ(count, 77u);
    }
}

// A table without which no site can be read.
class SitesTables : public Sites, public ::testing::WithParamInterface<const char *>
{
};

TEST_P(SitesTables, ReadsReturn7WithoutATableOfTheJoin)
{
    ASSERT_EQ(send(addSites, batch(R"({"id":7})")), 0u);
    foreign(std::string("DROP TABLE ") + GetParam());
    DebugLines lines;
    const auto site = get(getSite, 7);
    EXPECT_EQ(site.code, 7u);
    EXPECT_EQ(site.record.get(), nullptr);
    EXPECT_TRUE(isFailure(lines.all(), "get site by id error"));

    lines.clear();
    FlatSite *out = nullptr;
    uint32_t count = 77;
    EXPECT_EQ(getSites(&out, &count), 7u);
    EXPECT_TRUE(isFailure(lines.all(), "get sites error"));
    lines.clear();
    EXPECT_EQ(find(getSitesWithParams, &out, &count, "id", "7"), 7u);
    EXPECT_TRUE(isFailure(lines.all(), "get sites by field error"));
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(count, 77u);

    lines.clear();
    EXPECT_EQ(send(deleteSite, R"({"D":{"site_id":7}})"), 7u);
    EXPECT_TRUE(isFailure(lines.all(), "get site by id error"));
}

INSTANTIATE_TEST_SUITE_P(Join, SitesTables,
                         ::testing::Values("Sites", "Locations", "Contracts", "Contractors", "Users", "Domains",
                                           "Locales"),
                         [](const auto &table) { return std::string(table.param); });

TEST_F(Sites, GetReturns7WhenTheDomainCannotBeRead)
{
    ASSERT_EQ(send(addSites, batch(R"({"id":7,"domain":3},{"id":8,"domain":5})")), 0u);
    addUnreadableDomain();
    DebugLines lines;
    const auto site = get(getSite, 7);
    EXPECT_EQ(site.code, 7u);
    EXPECT_EQ(site.record.get(), nullptr);
    EXPECT_TRUE(isFailure(lines.all(), "get domain error"));
    EXPECT_EQ(get(getSite, 8).code, 0u);
}

TEST_F(Sites, AListReturns7WhenTheDomainOfOneSiteCannotBeRead)
{
    ASSERT_EQ(send(addSites, batch(R"({"id":1,"name":"n","domain":5},{"id":2,"name":"n","domain":3},)"
                                   R"({"id":3,"name":"n","domain":3})")),
              0u);
    addUnreadableDomain();
    DebugLines lines;
    FlatSite *out = nullptr;
    uint32_t count = 77;
    EXPECT_EQ(getSites(&out, &count), 7u);
    EXPECT_TRUE(isFailure(lines.all(), "get domain error"));
    lines.clear();
    EXPECT_EQ(find(getSitesWithParams, &out, &count, "name", "n"), 7u);
    EXPECT_TRUE(isFailure(lines.all(), "get domain error"));
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(count, 77u);
}

// ---- Name and address ----

TEST_F(Sites, NameAndAddressComeTogether)
{
    ASSERT_EQ(send(addSites, batch(R"({"id":7,"name":"n","address_text":"a"},{"id":8,"name":"o"})")), 0u);
    const NameAndAddress texts = nameAndAddress(7);
    EXPECT_EQ(texts.code, 0u);
    EXPECT_EQ(texts.name, "n");
    EXPECT_EQ(texts.address, "a");
}

TEST_F(Sites, AnAbsentNameOrAddressStaysNull)
{
    ASSERT_EQ(send(addSites, batch(R"({"id":1,"name":"n"},{"id":2,"address_text":"a"},{"id":3})")), 0u);
    const NameAndAddress nameOnly = nameAndAddress(1);
    EXPECT_EQ(nameOnly.code, 0u);
    EXPECT_EQ(nameOnly.name, "n");
    EXPECT_FALSE(nameOnly.address.has_value());
    const NameAndAddress addressOnly = nameAndAddress(2);
    EXPECT_EQ(addressOnly.code, 0u);
    EXPECT_FALSE(addressOnly.name.has_value());
    EXPECT_EQ(addressOnly.address, "a");
    const NameAndAddress neither = nameAndAddress(3);
    EXPECT_EQ(neither.code, 0u);
    EXPECT_FALSE(neither.name.has_value());
    EXPECT_FALSE(neither.address.has_value());
}

TEST_F(Sites, AnEmptyNameAndAddressAreTexts)
{
    ASSERT_EQ(send(addSites, batch(R"({"id":7,"name":"","address_text":""})")), 0u);
    const NameAndAddress texts = nameAndAddress(7);
    EXPECT_EQ(texts.code, 0u);
    EXPECT_EQ(texts.name, "");
    EXPECT_EQ(texts.address, "");
}

TEST_F(Sites, NameAndAddressOfAnUnknownSiteReturn8)
{
    ASSERT_EQ(send(addSites, batch(fullSite)), 0u);
    DebugLines lines;
    uint16_t *name = nullptr;
    uint16_t *address = nullptr;
    EXPECT_EQ(getSiteNameAndAddress(&name, &address, 8), 8u);
    EXPECT_EQ(name, nullptr);
    EXPECT_EQ(address, nullptr);
    EXPECT_EQ(lines.all(), std::vector<std::string>{});
}

TEST_F(Sites, NameAndAddressRefuseEitherFilledOutParameterBeforeTheStore)
{
    foreign("DROP TABLE Sites");
    DebugLines lines;
    uint16_t text = 0;
    uint16_t *filled = &text;
    uint16_t *empty = nullptr;
    EXPECT_EQ(getSiteNameAndAddress(&filled, &empty, 7), 10u);
    EXPECT_EQ(getSiteNameAndAddress(&empty, &filled, 7), 10u);
    EXPECT_EQ(filled, &text);
    EXPECT_EQ(empty, nullptr);
    EXPECT_EQ(lines.all(), std::vector<std::string>{});
}

TEST_F(Sites, NameAndAddressNeedTheirOwnTableOnly)
{
    ASSERT_EQ(send(addSites, batch(fullSite)), 0u);
    foreign("DROP TABLE Locations; DROP TABLE Contracts; DROP TABLE Domains");
    const NameAndAddress texts = nameAndAddress(7);
    EXPECT_EQ(texts.code, 0u);
    EXPECT_EQ(texts.name, "n");
    EXPECT_EQ(texts.address, "a");
}

TEST_F(Sites, NameAndAddressReturn7WhenTheSiteCannotBeFound)
{
    foreign("DROP TABLE Sites");
    DebugLines lines;
    const NameAndAddress texts = nameAndAddress(7);
    EXPECT_EQ(texts.code, 7u);
    EXPECT_FALSE(texts.name.has_value());
    EXPECT_FALSE(texts.address.has_value());
    EXPECT_TRUE(isFailure(lines.all(), "is site exists error"));
}

TEST_F(Sites, NameAndAddressReturn7WhenTheyCannotBeRead)
{
    for (const char *column : {"SitesName", "SitesAddress"}) {
        SCOPED_TRACE(column);
        ASSERT_EQ(send(addSites, batch(fullSite)), 0u);
        foreign(std::string("ALTER TABLE Sites RENAME COLUMN ") + column + " TO Gone");
        DebugLines lines;
        const NameAndAddress texts = nameAndAddress(7);
        EXPECT_EQ(texts.code, 7u);
        EXPECT_FALSE(texts.name.has_value());
        EXPECT_FALSE(texts.address.has_value());
        EXPECT_TRUE(isFailure(lines.all(), "get site fields error"));
        lines.clear();
        EXPECT_EQ(nameAndAddress(8).code, 8u);
        EXPECT_EQ(lines.all(), std::vector<std::string>{});
        foreign(std::string("ALTER TABLE Sites RENAME COLUMN Gone TO ") + column);
    }
}

// ---- Updating ----

TEST_F(Sites, UpdateChangesOneFieldAtATime)
{
    ASSERT_EQ(send(addSites, batch(fullSite)), 0u);
    Row expected = file.rows(allSites).at(0);
    struct Change
    {
        size_t column;
        const char *member;
        const char *stored;
    };
    const std::vector<Change> changes = {
        {1, R"("name":"n2")", "n2"},        {2, R"("comment":"c2")", "c2"},       {3, R"("extra":"e2")", "e2"},
        {4, R"("is_crossing":0)", "0"},     {5, R"("domain":23)", "23"},          {6, R"("address_text":"")", ""},
        {7, R"("contract_id":-21)", "-21"}, {8, R"("contract_status":22)", "22"}, {9, R"("type":24)", "24"},
        {10, R"("category":25)", "25"},     {11, R"("arm_mode":26)", "26"},       {12, R"("delegated":true)", "0"},
        {13, R"("site_plan":0)", "0"},
    };
    for (const Change &change : changes) {
        SCOPED_TRACE(change.member);
        ASSERT_EQ(update(updateSite, one(std::string(R"({"id":7,)") + change.member + "}")).code, 0u);
        expected[change.column] = change.stored;
        EXPECT_EQ(file.rows(allSites), Rows{expected});
        EXPECT_EQ(file.rows(allLocations), (Rows{Row{"7", "55.5", "-37.25"}}));
    }
}

TEST_F(Sites, UpdateChangesEveryFieldAtOnce)
{
    ASSERT_EQ(send(addSites, batch(R"({"id":7},{"id":8})")), 0u);
    EXPECT_EQ(update(updateSite, one(fullSite)).code, 0u);
    Row other(14);
    other[0] = "8";
    EXPECT_EQ(file.rows(allSites),
              (Rows{Row{"7", "n", "c", "e", "1", "3", "a", "11", "-2", "4", "5", "6", "1", "1"}, other}));
    EXPECT_EQ(file.rows("SELECT typeof(SitesContractId),typeof(SitesContractStatus),typeof(SitesIsCrossing),"
                        "typeof(SitesDomainId) FROM Sites WHERE SitesId = 7"),
              (Rows{Row{"integer", "integer", "integer", "integer"}}));
    EXPECT_EQ(file.rows(allLocations), (Rows{Row{"7", "55.5", "-37.25"}}));
}

TEST_F(Sites, UpdateReturnsTheMergedSiteWithAllThatItRefersTo)
{
    addContractChain();
    addOwnDomain();
    ASSERT_EQ(send(addSites, batch(fullSite)), 0u);
    const auto site = update(updateSite, one(R"({"id":7,"name":"new"})"));
    ASSERT_EQ(site.code, 0u);
    EXPECT_EQ(site->id, 7u);
    EXPECT_EQ(utf8(site->name), "new");
    EXPECT_EQ(utf8(site->comment), "c");
    EXPECT_EQ(value(site->contractStatus), -2);
    ASSERT_NE(site->domain, nullptr);
    EXPECT_EQ(utf8(site->domain->name), "day");
    ASSERT_NE(site->location, nullptr);
    EXPECT_EQ(value(site->location->latitude), 55.5);
    ASSERT_NE(site->contract, nullptr);
    ASSERT_NE(site->contract->user, nullptr);
    ASSERT_NE(site->contract->user->domain, nullptr);
    EXPECT_NE(site->contract->user->domain->locale, nullptr);
}

TEST_F(Sites, UpdateWithTheIdAloneChangesNothing)
{
    ASSERT_EQ(send(addSites, batch(fullSite)), 0u);
    const Rows before = file.rows(allSites);
    const auto site = update(updateSite, one(R"({"id":7})"));
    ASSERT_EQ(site.code, 0u);
    EXPECT_EQ(utf8(site->name), "n");
    EXPECT_EQ(file.rows(allSites), before);
}

TEST_F(Sites, UpdateInsertsAnUnknownSite)
{
    const auto site = update(updateSite, one(R"({"id":7,"type":4})"));
    ASSERT_EQ(site.code, 0u);
    EXPECT_EQ(site->id, 7u);
    EXPECT_EQ(value(site->type), 4u);
    EXPECT_EQ(site->name, nullptr);
    Row expected(14);
    expected[0] = "7";
    expected[9] = "4";
    EXPECT_EQ(file.rows(allSites), Rows{expected});
}

TEST_F(Sites, UpdateReplacesTheLocationWhole)
{
    ASSERT_EQ(send(addSites, batch(fullSite)), 0u);
    const auto site = update(updateSite, one(R"({"id":7,"location":{"lat":1.5}})"));
    ASSERT_EQ(site.code, 0u);
    ASSERT_NE(site->location, nullptr);
    EXPECT_EQ(value(site->location->latitude), 1.5);
    EXPECT_EQ(site->location->longitude, nullptr);
    EXPECT_EQ(file.rows(allLocations), (Rows{Row{"7", "1.5", std::nullopt}}));
    EXPECT_EQ(update(updateSite, one(R"({"id":7,"location":{"lon":2.5}})")).code, 0u);
    EXPECT_EQ(file.rows(allLocations), (Rows{Row{"7", std::nullopt, "2.5"}}));
    EXPECT_EQ(update(updateSite, one(R"({"id":7,"location":{"other":1}})")).code, 0u);
    EXPECT_EQ(file.rows(allLocations), (Rows{Row{"7", std::nullopt, std::nullopt}}));
}

TEST_F(Sites, UpdatePutsTheLocationUnderTheIdOfItsSite)
{
    const auto site = update(updateSite, one(R"({"id":-1,"location":{"id":99,"lat":"x","lon":2}})"));
    ASSERT_EQ(site.code, 0u);
    EXPECT_EQ(site->id, 4294967295u);
    ASSERT_NE(site->location, nullptr);
    EXPECT_EQ(site->location->id, 4294967295u);
    EXPECT_EQ(file.rows(allLocations), (Rows{Row{"4294967295", "0.0", "2.0"}}));
}

TEST_F(Sites, UpdateWithoutALocationLeavesItAlone)
{
    ASSERT_EQ(send(addSites, batch(fullSite)), 0u);
    for (const char *location : {"{}", "5", "null", R"("x")", "[1]"}) {
        SCOPED_TRACE(location);
        const auto site = update(updateSite, one(std::string(R"({"id":7,"location":)") + location + "}"));
        ASSERT_EQ(site.code, 0u);
        ASSERT_NE(site->location, nullptr);
        EXPECT_EQ(file.rows(allLocations), (Rows{Row{"7", "55.5", "-37.25"}}));
    }
}

TEST_F(Sites, UpdateChecksTheDevicesAndDropsThem)
{
    const auto site = update(updateSite, one(std::string(R"({"id":7,"devices":[)") + fullDevice + "]}"));
    ASSERT_EQ(site.code, 0u);
    EXPECT_EQ(site->devices, nullptr);
    EXPECT_EQ(site->deviceCount, 0u);
    for (const char *table : {"Devices", "Sections", "Zones", "DeviceUsers", "DeviceUserSectionLinks"})
        EXPECT_EQ(file.number(std::string("SELECT count(*) FROM ") + table), 0) << table;
    EXPECT_EQ(update(updateSite, one(R"({"id":8,"devices":5})")).code, 0u);
    EXPECT_EQ(update(updateSite, one(R"({"id":9,"devices":[5]})")).code, 5u);
    EXPECT_EQ(update(updateSite, one(R"({"id":9,"devices":[{"id":"1"}]})")).code, 5u);
    EXPECT_EQ(file.rows("SELECT SitesId FROM Sites ORDER BY SitesId"), (Rows{Row{"7"}, Row{"8"}}));
}

TEST_F(Sites, UpdateRefusesAWrongTypeUnderAnyKey)
{
    for (const WrongType &member : wrongTypes()) {
        SCOPED_TRACE(siteWith(member));
        const auto site = update(updateSite, one(siteWith(member)));
        EXPECT_EQ(site.code, 5u);
        EXPECT_EQ(site.record.get(), nullptr);
    }
    EXPECT_EQ(file.number("SELECT count(*) FROM Sites"), 0);
}

TEST_F(Sites, UpdateRefusesABrokenDocument)
{
    EXPECT_EQ(update(updateSite, "").code, 10u);
    EXPECT_EQ(update(updateSite, "not json").code, 10u);
    EXPECT_EQ(update(updateSite, R"([{"id":7}])").code, 10u);
    EXPECT_EQ(update(updateSite, R"({"id":7})").code, 5u);
    EXPECT_EQ(update(updateSite, R"({"D":5})").code, 5u);
    EXPECT_EQ(update(updateSite, R"({"D":{}})").code, 5u);
    EXPECT_EQ(update(updateSite, R"({"D":{"site_id":7}})").code, 5u);
    EXPECT_EQ(update(updateSite, batch(R"({"id":7})")).code, 5u);
    EXPECT_EQ(file.number("SELECT count(*) FROM Sites"), 0);
}

TEST_F(Sites, UpdateRefusesAFilledOutParameterBeforeTheText)
{
    FlatSite occupied = {};
    FlatSite *out = &occupied;
    EXPECT_EQ(send(updateSite, &out, one(fullSite)), 10u);
    EXPECT_EQ(send(updateSite, &out, R"({"D":{}})"), 10u);
    EXPECT_EQ(out, &occupied);
    EXPECT_EQ(file.number("SELECT count(*) FROM Sites"), 0);
}

TEST_F(Sites, AFailedUpdateLeavesTheSite)
{
    ASSERT_EQ(send(addSites, batch(fullSite)), 0u);
    refuse("UPDATE", "Sites");
    const std::vector<Rows> before = written();
    DebugLines lines;
    const auto site = update(updateSite, one(R"({"id":7,"name":"new","location":{"lat":1}})"));
    EXPECT_EQ(site.code, 9u);
    EXPECT_EQ(site.record.get(), nullptr);
    EXPECT_TRUE(isFailure(lines.all(), "update site error"));
    EXPECT_EQ(written(), before);
}

TEST_F(Sites, AnUpdateThatCannotInsertLeavesNoSite)
{
    refuse("INSERT", "Sites");
    DebugLines lines;
    EXPECT_EQ(update(updateSite, one(R"({"id":7,"location":{"lat":1}})")).code, 9u);
    EXPECT_TRUE(isFailure(lines.all(), "update site error"));
    EXPECT_EQ(file.number("SELECT count(*) FROM Locations"), 0);
}

TEST_F(Sites, AFailedLocationUndoesTheUpdate)
{
    ASSERT_EQ(send(addSites, batch(fullSite)), 0u);
    refuse("INSERT", "Locations");
    const std::vector<Rows> before = written();
    DebugLines lines;
    const auto site = update(updateSite, one(R"({"id":7,"name":"new","location":{"lat":1}})"));
    EXPECT_EQ(site.code, 9u);
    EXPECT_EQ(site.record.get(), nullptr);
    EXPECT_TRUE(isFailure(lines.all(), "add or update location error"));
    lines.clear();
    EXPECT_EQ(update(updateSite, one(R"({"id":8,"location":{"lat":1}})")).code, 9u);
    EXPECT_TRUE(isFailure(lines.all(), "add or update location error"));
    EXPECT_EQ(written(), before);
    EXPECT_EQ(update(updateSite, one(R"({"id":8})")).code, 0u);
}

TEST_F(Sites, AFailedReadBackUndoesTheUpdate)
{
    ASSERT_EQ(send(addSites, batch(fullSite)), 0u);
    foreign("DROP TABLE Contracts");
    const std::vector<Rows> before = written();
    DebugLines lines;
    const auto site = update(updateSite, one(R"({"id":7,"name":"new","location":{"lat":1}})"));
    EXPECT_EQ(site.code, 9u);
    EXPECT_EQ(site.record.get(), nullptr);
    EXPECT_TRUE(isFailure(lines.all(), "get site by id error"));
    EXPECT_EQ(written(), before);
}

TEST_F(Sites, AnUnreadableDomainUndoesTheUpdate)
{
    ASSERT_EQ(send(addSites, batch(R"({"id":7,"name":"old"})")), 0u);
    addUnreadableDomain();
    const std::vector<Rows> before = written();
    DebugLines lines;
    EXPECT_EQ(update(updateSite, one(R"({"id":7,"name":"new","domain":3})")).code, 9u);
    EXPECT_TRUE(isFailure(lines.all(), "get domain error"));
    EXPECT_EQ(written(), before);
    EXPECT_EQ(update(updateSite, one(R"({"id":7,"name":"new","domain":5})")).code, 0u);
}

TEST_F(Sites, AnUpdateWhoseRowIsGoneReturns8AndIsStored)
{
    foreign("CREATE TRIGGER Vanish AFTER INSERT ON Sites BEGIN DELETE FROM Sites WHERE SitesId = NEW.SitesId; END");
    DebugLines lines;
    const auto site = update(updateSite, one(R"({"id":7,"location":{"lat":1}})"));
    EXPECT_EQ(site.code, 8u);
    EXPECT_EQ(site.record.get(), nullptr);
    EXPECT_EQ(lines.all(), std::vector<std::string>{});
    EXPECT_EQ(file.rows(allLocations), (Rows{Row{"7", "1.0", std::nullopt}}));
}

// ---- Deleting ----

TEST_F(Sites, DeleteRemovesTheSiteAndItsLocation)
{
    addContractChain();
    addOwnDomain();
    ASSERT_EQ(send(addSites,
                   batch(std::string(fullSite) + R"(,{"id":8,"location":{"lat":8},"devices":[)" + fullDevice + "]}")),
              0u);
    EXPECT_EQ(send(deleteSite, R"({"D":{"site_id":7}})"), 0u);
    EXPECT_EQ(file.rows("SELECT SitesId FROM Sites"), (Rows{Row{"8"}}));
    EXPECT_EQ(file.rows("SELECT LocationsId FROM Locations"), (Rows{Row{"8"}}));
    EXPECT_EQ(get(getSite, 7).code, 8u);
    EXPECT_EQ(file.number("SELECT count(*) FROM Contracts"), 1);
    EXPECT_EQ(file.number("SELECT count(*) FROM Domains"), 2);
}

TEST_F(Sites, DeleteLeavesTheDevicesThatCameWithTheSite)
{
    ASSERT_EQ(send(addSites, batch(std::string(R"({"id":7,"devices":[)") + fullDevice + "]}")), 0u);
    EXPECT_EQ(send(deleteSite, R"({"D":{"site_id":7}})"), 0u);
    EXPECT_EQ(file.number("SELECT count(*) FROM Sites"), 0);
    for (const char *table : {"Devices", "Sections", "Zones", "DeviceUsers", "DeviceUserSectionLinks"})
        EXPECT_EQ(file.number(std::string("SELECT count(*) FROM ") + table), 1) << table;
}

TEST_F(Sites, DeleteReadsTheIdUnderSiteId)
{
    ASSERT_EQ(send(addSites, batch(fullSite)), 0u);
    EXPECT_EQ(send(deleteSite, R"({"D":{"id":7}})"), 5u);
    EXPECT_EQ(file.number("SELECT count(*) FROM Sites"), 1);
    EXPECT_EQ(send(deleteSite, R"({"D":{"id":8,"site_id":7}})"), 0u);
    EXPECT_EQ(file.number("SELECT count(*) FROM Sites"), 0);
}

TEST_F(Sites, DeleteReturns8ForAnUnknownId)
{
    ASSERT_EQ(send(addSites, batch(fullSite)), 0u);
    foreign("INSERT INTO Locations VALUES (8, 1, 2)");
    DebugLines lines;
    EXPECT_EQ(send(deleteSite, R"({"D":{"site_id":8}})"), 8u);
    EXPECT_EQ(lines.all(), std::vector<std::string>{});
    EXPECT_EQ(file.number("SELECT count(*) FROM Sites"), 1);
    EXPECT_EQ(file.number("SELECT count(*) FROM Locations"), 2);
}

TEST_F(Sites, DeleteConvertsTheIdAndTakesAnyOtherTypeForZero)
{
    ASSERT_EQ(send(addSites, batch(R"({"id":7},{"id":4294967295})")), 0u);
    for (const char *id : {R"("7")", "true", "null", "[7]", "{}"})
        EXPECT_EQ(send(deleteSite, std::string(R"({"D":{"site_id":)") + id + "}}"), 8u) << id;
    EXPECT_EQ(file.number("SELECT count(*) FROM Sites"), 2);
    EXPECT_EQ(send(deleteSite, R"({"D":{"site_id":7.9}})"), 0u);
    EXPECT_EQ(send(deleteSite, R"({"D":{"site_id":-1}})"), 0u);
    EXPECT_EQ(file.number("SELECT count(*) FROM Sites"), 0);
    ASSERT_EQ(send(addSites, batch(R"({"id":0})")), 0u);
    EXPECT_EQ(send(deleteSite, R"({"D":{"site_id":"7"}})"), 0u);
    EXPECT_EQ(file.number("SELECT count(*) FROM Sites"), 0);
}

TEST_F(Sites, DeleteRefusesABrokenDocument)
{
    EXPECT_EQ(send(deleteSite, ""), 10u);
    EXPECT_EQ(send(deleteSite, "not json"), 10u);
    EXPECT_EQ(send(deleteSite, "[7]"), 10u);
    EXPECT_EQ(send(deleteSite, R"({"site_id":7})"), 5u);
    EXPECT_EQ(send(deleteSite, R"({"D":7})"), 5u);
    EXPECT_EQ(send(deleteSite, R"({"D":{}})"), 5u);
}

TEST_F(Sites, AFailedDeleteOfTheLocationLeavesBoth)
{
    ASSERT_EQ(send(addSites, batch(fullSite)), 0u);
    refuse("DELETE", "Locations");
    DebugLines lines;
    EXPECT_EQ(send(deleteSite, R"({"D":{"site_id":7}})"), 9u);
    EXPECT_TRUE(isFailure(lines.all(), "delete location error"));
    EXPECT_EQ(file.number("SELECT count(*) FROM Sites"), 1);
    EXPECT_EQ(file.number("SELECT count(*) FROM Locations"), 1);
}

TEST_F(Sites, AFailedDeleteOfTheSiteBringsTheLocationBack)
{
    ASSERT_EQ(send(addSites, batch(fullSite)), 0u);
    refuse("DELETE", "Sites");
    DebugLines lines;
    EXPECT_EQ(send(deleteSite, R"({"D":{"site_id":7}})"), 9u);
    EXPECT_TRUE(isFailure(lines.all(), "delete site error"));
    EXPECT_EQ(file.number("SELECT count(*) FROM Sites"), 1);
    EXPECT_EQ(file.number("SELECT count(*) FROM Locations"), 1);
}

TEST_F(Sites, DeleteTakesTheLocationFirst)
{
    ASSERT_EQ(send(addSites, batch(fullSite)), 0u);
    refuse("DELETE", "Sites");
    refuse("DELETE", "Locations");
    DebugLines lines;
    EXPECT_EQ(send(deleteSite, R"({"D":{"site_id":7}})"), 9u);
    EXPECT_TRUE(isFailure(lines.all(), "delete location error"));
}

TEST_F(Sites, DeleteReturns7WhenTheDomainCannotBeRead)
{
    ASSERT_EQ(send(addSites, batch(R"({"id":7,"domain":3})")), 0u);
    addUnreadableDomain();
    DebugLines lines;
    EXPECT_EQ(send(deleteSite, R"({"D":{"site_id":7}})"), 7u);
    EXPECT_TRUE(isFailure(lines.all(), "get domain error"));
    EXPECT_EQ(file.number("SELECT count(*) FROM Sites"), 1);
}

// ---- Freeing ----

// The devices of a site that the client put into it: an array of the library's.
void putDevices(FlatSite &site)
{
    ASSERT_EQ(getDevices(&site.devices, &site.deviceCount), 0u);
}

TEST_F(Sites, FreeRefusesNothingToFree)
{
    FlatSite site = {};
    EXPECT_EQ(freeSite(nullptr), 10u);
    EXPECT_EQ(freeSitesArray(nullptr, 0), 10u);
    EXPECT_EQ(freeSitesArray(nullptr, 1), 10u);
    EXPECT_EQ(freeSitesArray(&site, 0), 10u);
}

TEST_F(Sites, FreeStopsAtACountWithoutDevices)
{
    addContractChain();
    addOwnDomain();
    ASSERT_EQ(send(addSites, batch(fullSite)), 0u);
    const auto site = get(getSite, 7);
    ASSERT_EQ(site.code, 0u);
    site->deviceCount = 3;
    EXPECT_EQ(freeSite(site.record.get()), 10u);
    EXPECT_EQ(site->name, nullptr);
    EXPECT_EQ(site->comment, nullptr);
    EXPECT_EQ(site->extra, nullptr);
    EXPECT_EQ(site->isCrossing, nullptr);
    EXPECT_EQ(site->domain, nullptr);
    EXPECT_EQ(site->address, nullptr);
    EXPECT_EQ(site->contract, nullptr);
    EXPECT_EQ(site->contractStatus, nullptr);
    EXPECT_EQ(site->type, nullptr);
    EXPECT_EQ(site->category, nullptr);
    EXPECT_EQ(site->armMode, nullptr);
    EXPECT_EQ(site->isDelegated, nullptr);
    EXPECT_EQ(site->deviceCount, 3u);
    EXPECT_EQ(value(site->domainId), 3u);
    ASSERT_NE(site->location, nullptr);
    EXPECT_EQ(value(site->location->latitude), 55.5);
    EXPECT_EQ(value(site->contractId), 11);
    EXPECT_EQ(value(site->isSitePlanExists), 1);
    site->deviceCount = 0; // and is freed whole by its owner
}

TEST_F(Sites, FreeStopsAtDevicesWithoutACount)
{
    ASSERT_EQ(send(addSites, batch(R"({"id":7,"domain":3,"delegated":1,"devices":[{"id":10,"account":5}]})")), 0u);
    const auto site = get(getSite, 7);
    ASSERT_EQ(site.code, 0u);
    putDevices(*site.record);
    site->deviceCount = 0;
    EXPECT_EQ(freeSite(site.record.get()), 10u);
    EXPECT_EQ(site->isDelegated, nullptr);
    ASSERT_NE(site->devices, nullptr);
    EXPECT_EQ(value(site->devices[0].account), 5u);
    EXPECT_EQ(value(site->domainId), 3u);
    site->deviceCount = 1; // and is freed whole by its owner
}

TEST_F(Sites, FreeStopsAtADeviceThatCannotBeFreed)
{
    ASSERT_EQ(send(addSites, batch(R"({"id":7,"domain":3,"devices":[{"id":10,"account":5}]})")), 0u);
    const auto site = get(getSite, 7);
    ASSERT_EQ(site.code, 0u);
    putDevices(*site.record);
    site->devices[0].sectionsCount = 3;
    EXPECT_EQ(freeSite(site.record.get()), 10u);
    ASSERT_NE(site->devices, nullptr);
    EXPECT_EQ(value(site->domainId), 3u);
    site->devices[0].sectionsCount = 0; // and is freed whole by its owner
}

TEST_F(Sites, FreeTakesTheDevicesAlong)
{
    ASSERT_EQ(send(addSites, batch(std::string(R"({"id":7,"devices":[)") + fullDevice + R"(,{"id":11}]})")), 0u);
    FlatSite *site = nullptr;
    ASSERT_EQ(getSite(&site, 7), 0u);
    putDevices(*site);
    EXPECT_EQ(site->deviceCount, 2u);
    EXPECT_EQ(freeSite(site), 0u);
}

TEST_F(Sites, FreeingAnArrayStopsAtTheFirstSiteThatCannotBeFreed)
{
    ASSERT_EQ(send(addSites, batch(R"({"id":1,"name":"n","domain":9},{"id":2,"name":"n","domain":9},)"
                                   R"({"id":3,"name":"n","domain":9})")),
              0u);
    const auto sites = list(getSites);
    ASSERT_EQ(sites.size(), 3u);
    sites[1].deviceCount = 3;
    EXPECT_EQ(freeSitesArray(&sites[0], 3), 10u);
    EXPECT_EQ(sites[0].name, nullptr);
    EXPECT_EQ(sites[0].domainId, nullptr);
    EXPECT_EQ(sites[1].name, nullptr);
    EXPECT_EQ(value(sites[1].domainId), 9u);
    EXPECT_EQ(utf8(sites[2].name), "n");
    EXPECT_EQ(value(sites[2].domainId), 9u);
    sites[1].deviceCount = 0; // and is freed whole by its owner
}

TEST_F(Sites, ASiteOutlivesTheLibrary)
{
    addContractChain();
    addOwnDomain();
    ASSERT_EQ(send(addSites, batch(fullSite)), 0u);
    const auto site = get(getSite, 7);
    ASSERT_EQ(site.code, 0u);
    library.reset();
    EXPECT_EQ(utf8(site->name), "n");
    ASSERT_TRUE(site->contract && site->contract->user && site->contract->user->domain);
    EXPECT_EQ(utf8(site->contract->user->domain->name), "night");
}

} // namespace
