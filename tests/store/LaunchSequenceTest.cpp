#include "Store.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sqlite3.h>

struct sqlite3_api_routines;

using namespace brimlet::test;
namespace fs = std::filesystem;

namespace {

class LaunchSequence : public ::testing::Test
{
protected:
    // Launches, exits and forgets the lines: a file that passes all checks.
    void makeValidFile()
    {
        {
            Library library;
        }
        lines.clear();
    }

    // Launches, exits and gives the result; the lines are those of the launch.
    uint32_t launch()
    {
        lines.clear();
        Library library;
        return getLaunchCacheResult();
    }

    int64_t objects() const { return file.number("SELECT count(*) FROM sqlite_master"); }

    Directory directory;
    File file;
    DebugLines lines;
};

using Lines = std::vector<std::string>;

void writeFile(const std::string &name, const std::string &bytes)
{
    std::ofstream(name, std::ios::binary) << bytes;
}

// Makes the file a link, unless the system has no links.
bool makeLink(const std::string &target)
{
    std::error_code error;
    fs::create_symlink(target, "CacheDb", error);
    if (error && error != std::errc::function_not_supported)
        throw fs::filesystem_error("no link", error);
    return !error;
}

constexpr const char *withoutLinks = "the system has no links";

// ---- A look at the library's own connection ----

// The step that SQLite refuses to prepare, and the statements that ran.
struct Step
{
    int action;
    std::string table;
};
std::optional<Step> refusedStep;
std::vector<std::string> statements;
bool connected = false;

int authorize(void *, int action, const char *table, const char *, const char *, const char *)
{
    const bool refused = refusedStep && refusedStep->action == action && table && refusedStep->table == table;
    return refused ? SQLITE_DENY : SQLITE_OK;
}

int record(unsigned, void *, void *, void *sql)
{
    statements.emplace_back(static_cast<const char *>(sql));
    return 0;
}

int attach(sqlite3 *connection, char **, const sqlite3_api_routines *)
{
    connected = true;
    sqlite3_set_authorizer(connection, authorize, nullptr);
    sqlite3_trace_v2(connection, SQLITE_TRACE_STMT, record, nullptr);
    return SQLITE_OK;
}

// Watches the connections that are opened while it lives. Qt may have been built with an SQLite of its own, which
// this process does not reach; then nothing is seen.
class Watch
{
public:
    explicit Watch(std::optional<Step> refuse = {})
    {
        refusedStep = std::move(refuse);
        statements.clear();
        connected = false;
        sqlite3_auto_extension(entry());
    }
    ~Watch() { sqlite3_cancel_auto_extension(entry()); }
    Watch(const Watch &) = delete;
    Watch &operator=(const Watch &) = delete;
    bool sees() const { return connected; }

private:
    using Entry = void (*)();
    static Entry entry() { return reinterpret_cast<Entry>(attach); }
};

std::string tableRead(const std::string &statement)
{
    const size_t from = statement.find(" FROM ");
    if (from == std::string::npos)
        return statement;
    const size_t begin = from + 6;
    return statement.substr(begin, statement.find(' ', begin) - begin);
}

// ---- What a store without tables answers ----

using Call = std::pair<const char *, std::function<uint32_t()>>;

template<class Function>
uint32_t add(Function function, const std::string &record)
{
    return send(function, R"({"D":{"items":[)" + record + "]}}");
}

std::vector<Call> reads()
{
    return {
        {"getContract", [] { return get(getContract, 1).code; }},
        {"getContractor", [] { return get(getContractor, 1).code; }},
        {"getDevice", [] { return get(getDevice, 1).code; }},
        {"getDomain", [] { return get(getDomain, 1).code; }},
        {"getLocale", [] { return get(getLocale, 1).code; }},
        {"getOrganization", [] { return get(getOrganization, 1).code; }},
        {"getSite", [] { return get(getSite, 1).code; }},
        {"getUser", [] { return get(getUser, 1).code; }},
        {"getSection", [] { return get(getSection, 1, 2).code; }},
        {"getZone", [] { return get(getZone, 1, 2, 3).code; }},
        {"getContracts", [] { return list(getContracts).code; }},
        {"getContractors", [] { return list(getContractors).code; }},
        {"getDevices", [] { return list(getDevices).code; }},
        {"getDomains", [] { return list(getDomains).code; }},
        {"getLocales", [] { return list(getLocales).code; }},
        {"getOrganizations", [] { return list(getOrganizations).code; }},
        {"getSites", [] { return list(getSites).code; }},
        {"getUsers", [] { return list(getUsers).code; }},
        {"getEvents", [] { return list(getEvents, 0, 9).code; }},
        {"getAffectEvents", [] { return list(getAffectEvents).code; }},
        {"getSections", [] { return list(getSections, 1).code; }},
        {"getZones", [] { return list(getZones, 1).code; }},
        {"getZonesForSection", [] { return list(getZonesForSection, 1, 2).code; }},
        {"getContractsWithParams", [] { return listBy(getContractsWithParams, "id", "1").code; }},
        {"getContractorsWithParams", [] { return listBy(getContractorsWithParams, "id", "1").code; }},
        {"getDevicesWithParams", [] { return listBy(getDevicesWithParams, "id", "1").code; }},
        {"getDomainsWithParams", [] { return listBy(getDomainsWithParams, "id", "1").code; }},
        {"getLocalesWithParams", [] { return listBy(getLocalesWithParams, "id", "1").code; }},
        {"getOrganizationsWithParams", [] { return listBy(getOrganizationsWithParams, "org_id", "1").code; }},
        {"getSitesWithParams", [] { return listBy(getSitesWithParams, "id", "1").code; }},
        {"getUsersWithParams", [] { return listBy(getUsersWithParams, "id", "1").code; }},
        {"getSectionsWithParams", [] { return listBy(getSectionsWithParams, "id", "1", 2).code; }},
        {"getZonesWithParams", [] { return listBy(getZonesWithParams, "id", "1", 2).code; }},
        {"getZonesForSectionWithParams", [] { return listBy(getZonesForSectionWithParams, "id", "1", 2, 3).code; }},
        {"getServerIp",
         [] {
             uint16_t *address = nullptr;
             return getServerIp(&address);
         }},
        {"getSiteNameAndAddress",
         [] {
             uint16_t *name = nullptr;
             uint16_t *address = nullptr;
             return getSiteNameAndAddress(&name, &address, 1);
         }},
    };
}

// The removals, which read first, and so fail as reads do.
std::vector<Call> removals()
{
    return {
        {"deleteContract", [] { return send(deleteContract, R"({"D":{"id":1}})"); }},
        {"deleteContractor", [] { return send(deleteContractor, R"({"D":{"id":1}})"); }},
        {"deleteDevice", [] { return send(deleteDevice, R"({"D":{"id":1}})"); }},
        {"deleteDomain", [] { return send(deleteDomain, R"({"D":{"domain_id":1}})"); }},
        {"deleteOrganization", [] { return send(deleteOrganization, R"({"D":{"org_id":1}})"); }},
        {"deleteSection", [] { return send(deleteSection, R"({"D":{"device":2,"section":1}})"); }},
        {"deleteSite", [] { return send(deleteSite, R"({"D":{"site_id":1}})"); }},
        {"deleteUser", [] { return send(deleteUser, R"({"D":{"op_id":1}})"); }},
        {"deleteZone", [] { return send(deleteZone, R"({"D":{"device":2,"section":3,"zone":1}})"); }},
        {"removeAffectFlag", [] { return update(removeAffectFlag, R"({"D":{"id":1}})").code; }},
    };
}

std::vector<Call> writes()
{
    return {
        {"addContractors", [] { return add(addContractors, R"({"id":1})"); }},
        {"addContracts", [] { return add(addContracts, R"({"id":1})"); }},
        {"addDevice", [] { return send(addDevice, R"({"D":{"id":1}})"); }},
        {"addDevices", [] { return add(addDevices, R"({"id":1})"); }},
        {"addDomains", [] { return add(addDomains, R"({"id":1})"); }},
        {"addLocales", [] { return add(addLocales, R"({"id":1})"); }},
        {"addOrganizations", [] { return add(addOrganizations, R"({"org_id":1})"); }},
        {"addSites", [] { return add(addSites, R"({"id":1})"); }},
        {"addUsers", [] { return add(addUsers, R"({"id":1})"); }},
        {"addEvent", [] { return update(addEvent, R"({"D":{"id":1}})").code; }},
        {"addEvents", [] { return listAdded(R"({"D":{"items":[{"id":1}]}})").code; }},
        {"updateContract", [] { return update(updateContract, R"({"D":{"id":1}})").code; }},
        {"updateContractor", [] { return update(updateContractor, R"({"D":{"id":1}})").code; }},
        {"updateDeviceFw", [] { return update(updateDeviceFw, R"({"D":{"id":1}})").code; }},
        {"updateDomain", [] { return update(updateDomain, R"({"D":{"id":1}})").code; }},
        {"updateOrganization", [] { return update(updateOrganization, R"({"D":{"org_id":1}})").code; }},
        {"updateSection", [] { return update(updateSection, R"({"D":{"device":2,"id":1}})").code; }},
        {"updateSite", [] { return update(updateSite, R"({"D":{"id":1}})").code; }},
        {"updateUser", [] { return update(updateUser, R"({"D":{"id":1}})").code; }},
        {"updateZone", [] { return update(updateZone, R"({"D":{"device":2,"section":3,"id":1}})").code; }},
        {"clearAll", [] { return clearAll(); }},
        {"clearAllExceptEvents", [] { return clearAllExceptEvents(); }},
        {"clearEventsBeforeDateExceptAffects", [] { return clearEventsBeforeDateExceptAffects(9); }},
        {"setServerIp", [] { return send(setServerIp, "10.0.0.1"); }},
    };
}

void expectEach(const std::vector<Call> &calls, uint32_t code)
{
    for (const auto &[name, call] : calls)
        EXPECT_EQ(call(), code) << name;
}

// ---- No file ----

TEST_F(LaunchSequence, AFreshDirectoryGives100WithoutALine)
{
    EXPECT_EQ(launch(), 100u);
    EXPECT_EQ(lines.all(), Lines());
}

TEST_F(LaunchSequence, AFreshFileHoldsTheVersion)
{
    makeValidFile();
    EXPECT_EQ(file.rows("SELECT * FROM Version"), (std::vector<Row>{{"0", "0.1"}}));
    EXPECT_EQ(file.value("SELECT typeof(VersionId) FROM Version"), "integer");
    EXPECT_EQ(file.value("SELECT typeof(VersionNumber) FROM Version"), "text");
}

TEST_F(LaunchSequence, AFreshFileHoldsNoOtherRow)
{
    makeValidFile();
    for (const Row &table : file.rows("SELECT name FROM sqlite_master WHERE type = 'table' AND name <> 'Version'"))
        EXPECT_EQ(file.number("SELECT count(*) FROM " + table[0].value()), 0) << table[0].value();
}

TEST_F(LaunchSequence, AFreshFileHoldsNoIndexButThePrimaryKeys)
{
    makeValidFile();
    EXPECT_EQ(file.number("SELECT count(*) FROM sqlite_master WHERE type <> 'table' AND sql IS NOT NULL"), 0);
    EXPECT_EQ(file.number("SELECT count(*) FROM sqlite_master WHERE type <> 'table' AND type <> 'index'"), 0);
}

TEST_F(LaunchSequence, AFreshFileHoldsTheseTablesInThisOrder)
{
    makeValidFile();
    EXPECT_EQ(
        file.rows("SELECT name, sql FROM sqlite_master WHERE type = 'table' ORDER BY rowid"),
        (std::vector<Row>{
            {"Users", "CREATE TABLE Users (UsersId UNSIGNED BIG INT PRIMARY KEY,UsersName VARCHAR(255),"
                      "UsersLogin VARCHAR(255),UsersContacts VARCHAR(255),UsersIsActive BOOLEAN,"
                      "UsersDomainId UNSIGNED BIG INT,UsersOrgId UNSIGNED BIG INT,UsersRoles UNSIGNED BIG INT,"
                      "UsersPhone DOUBLE)"},
            {"Domains", "CREATE TABLE Domains (DomainsId UNSIGNED BIG INT PRIMARY KEY,DomainsName VARCHAR(255),"
                        "DomainsOrgId UNSIGNED BIG INT,DomainsLocaleId UNSIGNED BIG INT)"},
            {"Organizations",
             "CREATE TABLE Organizations (OrganizationsId UNSIGNED BIG INT PRIMARY KEY,OrganizationsInn VARCHAR(255),"
             "OrganizationsOfficialName VARCHAR(255),OrganizationsShortName VARCHAR(255),"
             "OrganizationsKpp VARCHAR(255),OrganizationsOgrn VARCHAR(255),"
             "OrganizationsContactId UNSIGNED BIG INT,OrganizationsLocaleId UNSIGNED BIG INT,"
             "OrganizationsAddress VARCHAR(255))"},
            {"Locales", "CREATE TABLE Locales (LocalesId UNSIGNED BIG INT PRIMARY KEY,LocalesIso VARCHAR(255),"
                        "LocalesDescription VARCHAR(255))"},
            {"Persons", "CREATE TABLE Persons (PersonsId UNSIGNED BIG INT PRIMARY KEY,PersonsName VARCHAR(255),"
                        "PersonsPhone VARCHAR(255),PersonsEmail VARCHAR(255),PersonsPostal VARCHAR(255))"},
            {"Contractors",
             "CREATE TABLE Contractors (ContractorsId UNSIGNED BIG INT PRIMARY KEY,ContractorsInn VARCHAR(255),"
             "ContractorsOrgId UNSIGNED BIG INT,ContractorsType UNSIGNED BIG INT,"
             "ContractorsOfficialName VARCHAR(255),ContractorsName VARCHAR(255),ContractorsExtra VARCHAR(255))"},
            {"Contracts",
             "CREATE TABLE Contracts (ContractsId UNSIGNED BIG INT PRIMARY KEY,ContractsNumber VARCHAR(255),"
             "ContractsContractorId UNSIGNED BIG INT,ContractsName VARCHAR(255),ContractsStatus UNSIGNED BIG INT,"
             "ContractsDate UNSIGNED BIG INT,ContractsDescription VARCHAR(255),ContractsExtra VARCHAR(255),"
             "ContractsUserId UNSIGNED BIG INT)"},
            {"Zones", "CREATE TABLE Zones (ZonesDeviceId UNSIGNED BIG INT,ZonesSectionId UNSIGNED BIG INT,"
                      "ZonesZoneId UNSIGNED BIG INT,ZonesName VARCHAR(255),ZonesDetector UNSIGNED BIG INT,"
                      "ZonesPhysic UNSIGNED BIG INT,ZonesForm UNSIGNED BIG INT,ZonesFlags UNSIGNED BIG INT,"
                      "ZonesDelay UNSIGNED BIG INT,ZonesScheduleId UNSIGNED BIG INT,ZonesTracert UNSIGNED BIG INT,"
                      "ZonesUidType UNSIGNED BIG INT,ZonesArm UNSIGNED BIG INT,"
                      "PRIMARY KEY(ZonesDeviceId,ZonesZoneId))"},
            {"Sections", "CREATE TABLE Sections (SectionsDeviceId UNSIGNED BIG INT,SectionsSectionId UNSIGNED BIG INT,"
                         "SectionsName VARCHAR(255),SectionsScheduleId UNSIGNED BIG INT,"
                         "SectionsTracert UNSIGNED BIG INT,SectionsFlags UNSIGNED BIG INT,"
                         "SectionsDetector UNSIGNED BIG INT,SectionsArm UNSIGNED BIG INT,"
                         "SectionsPhysic UNSIGNED BIG INT,SectionsForm UNSIGNED BIG INT,"
                         "SectionsDelay UNSIGNED BIG INT,SectionsUidType UNSIGNED BIG INT,"
                         "PRIMARY KEY(SectionsDeviceId,SectionsSectionId))"},
            {"Devices", "CREATE TABLE Devices (DevicesId UNSIGNED BIG INT PRIMARY KEY,DevicesAccount UNSIGNED BIG INT,"
                        "DevicesDomainId UNSIGNED BIG INT,DevicesConfigVersion UNSIGNED BIG INT,"
                        "DevicesIsParted BOOLEAN,DevicesClusterId UNSIGNED BIG INT)"},
            {"Locations", "CREATE TABLE Locations (LocationsId UNSIGNED BIG INT PRIMARY KEY,"
                          "LocationsLatitude DOUBLE,LocationsLongitude DOUBLE)"},
            {"Sites", "CREATE TABLE Sites (SitesId UNSIGNED BIG INT PRIMARY KEY,SitesName VARCHAR(255),"
                      "SitesComment VARCHAR(255),SitesExtra VARCHAR(255),SitesIsCrossing BOOLEAN,"
                      "SitesDomainId UNSIGNED BIG INT,SitesAddress VARCHAR(255),SitesContractId UNSIGNED BIG INT,"
                      "SitesContractStatus UNSIGNED BIG INT,SitesType UNSIGNED BIG INT,"
                      "SitesCategory UNSIGNED BIG INT,SitesArmMode UNSIGNED BIG INT,SitesIsDelegated BOOLEAN,"
                      "SitesIsSitePlanExists BOOLEAN)"},
            {"DeviceUsers",
             "CREATE TABLE DeviceUsers (DeviceUsersDeviceId UNSIGNED BIG INT,DeviceUsersDeviceUserId UNSIGNED BIG INT,"
             "DeviceUsersName VARCHAR(255),DeviceUsersComment VARCHAR(255),DeviceUsersPhone VARCHAR(255),"
             "PRIMARY KEY(DeviceUsersDeviceId,DeviceUsersDeviceUserId))"},
            {"Events", "CREATE TABLE Events (EventsId UNSIGNED BIG INT PRIMARY KEY,EventsTime UNSIGNED BIG INT,"
                       "EventsDeviceId UNSIGNED BIG INT,EventsSectionId UNSIGNED BIG INT,"
                       "EventsZoneId UNSIGNED BIG INT,EventsActive BOOLEAN,EventsClass UNSIGNED BIG INT,"
                       "EventsDetector UNSIGNED BIG INT,EventsReason UNSIGNED BIG INT,"
                       "EventsLocalTime UNSIGNED BIG INT,EventsChannel UNSIGNED BIG INT,EventsData VARCHAR(255),"
                       "EventsReviewId UNSIGNED BIG INT,EventsReviewState UNSIGNED BIG INT,"
                       "EventsUserId UNSIGNED BIG INT,EventsIsClosed BOOLEAN,EventsAffect BOOLEAN,"
                       "EventsJData VARCHAR(255))"},
            {"DeviceUserSectionLinks",
             "CREATE TABLE DeviceUserSectionLinks (DeviceUserSectionLinksDeviceId UNSIGNED BIG INT,"
             "DeviceUserSectionLinksDeviceUserId UNSIGNED BIG INT,"
             "DeviceUserSectionLinksSectionId UNSIGNED BIG INT,"
             "PRIMARY KEY(DeviceUserSectionLinksDeviceId,DeviceUserSectionLinksDeviceUserId,"
             "DeviceUserSectionLinksSectionId))"},
            {"Session", "CREATE TABLE Session (SessionId INTEGER PRIMARY KEY,SessionIp VARCHAR(255))"},
            {"Version", "CREATE TABLE Version (VersionId INTEGER PRIMARY KEY,VersionNumber VARCHAR(255))"},
        }));
}

TEST_F(LaunchSequence, CreationIsOneTransaction)
{
    const Watch watch;
    EXPECT_EQ(launch(), 100u);
    if (!watch.sees())
        GTEST_SKIP() << "Qt brings an SQLite of its own";
    ASSERT_EQ(statements.size(), 20u);
    EXPECT_EQ(statements.front(), "BEGIN");
    const std::string versionRow = "INSERT OR REPLACE INTO Version (VersionId,VersionNumber)VALUES (0,";
    EXPECT_EQ(statements[18].substr(0, versionRow.size()), versionRow); // behind it the place as Qt names it
    EXPECT_EQ(statements.back(), "COMMIT");
}

// ---- A step of the creation fails ----

struct CreationStep
{
    std::string name;
    Step refused;
    std::string line;
};

void PrintTo(const CreationStep &step, std::ostream *out)
{
    *out << step.line;
}

class Creation : public LaunchSequence, public ::testing::WithParamInterface<CreationStep>
{
};

TEST_P(Creation, AFailedStepUndoesAllBefore)
{
    {
        const Watch watch(GetParam().refused);
        const uint32_t result = launch();
        if (!watch.sees())
            GTEST_SKIP() << "Qt brings an SQLite of its own";
        EXPECT_EQ(result, 6u);
        EXPECT_EQ(statements.front(), "BEGIN");
        EXPECT_EQ(statements.back(), "ROLLBACK");
    }
    EXPECT_TRUE(isFailure(lines.all(), GetParam().line));
    ASSERT_TRUE(fs::exists("CacheDb"));
    EXPECT_EQ(objects(), 0);
    EXPECT_EQ(launch(), 103u);
}

INSTANTIATE_TEST_SUITE_P(
    LaunchSequence, Creation,
    ::testing::Values(
        CreationStep{"Users", {SQLITE_CREATE_TABLE, "Users"}, "create table users error"},
        CreationStep{"Domains", {SQLITE_CREATE_TABLE, "Domains"}, "create table domains error"},
        CreationStep{"Organizations", {SQLITE_CREATE_TABLE, "Organizations"}, "create table orgs error"},
        CreationStep{"Locales", {SQLITE_CREATE_TABLE, "Locales"}, "create table locales error"},
        CreationStep{"Persons", {SQLITE_CREATE_TABLE, "Persons"}, "create table persons error"},
        CreationStep{"Contractors", {SQLITE_CREATE_TABLE, "Contractors"}, "create table contractors error"},
        CreationStep{"Contracts", {SQLITE_CREATE_TABLE, "Contracts"}, "create table contracts error"},
        CreationStep{"Zones", {SQLITE_CREATE_TABLE, "Zones"}, "create table zones error"},
        CreationStep{"Sections", {SQLITE_CREATE_TABLE, "Sections"}, "create table sections error"},
        CreationStep{"Devices", {SQLITE_CREATE_TABLE, "Devices"}, "create table devices error"},
        CreationStep{"Locations", {SQLITE_CREATE_TABLE, "Locations"}, "create table locations error"},
        CreationStep{"Sites", {SQLITE_CREATE_TABLE, "Sites"}, "create table sites error"},
        CreationStep{"DeviceUsers", {SQLITE_CREATE_TABLE, "DeviceUsers"}, "create table device users error"},
        CreationStep{"Events", {SQLITE_CREATE_TABLE, "Events"}, "create table events error"},
        CreationStep{"DeviceUserSectionLinks",
                     {SQLITE_CREATE_TABLE, "DeviceUserSectionLinks"},
                     "create table DeviceUserSectionLinks error"},
        CreationStep{"Session", {SQLITE_CREATE_TABLE, "Session"}, "create table session error"},
        CreationStep{"Version", {SQLITE_CREATE_TABLE, "Version"}, "create table version error"},
        CreationStep{"VersionRow", {SQLITE_INSERT, "Version"}, "set verson error"}),
    [](const ::testing::TestParamInfo<CreationStep> &test) { return test.param.name; });

// ---- A valid file ----

TEST_F(LaunchSequence, AValidFileGives0WithoutALine)
{
    makeValidFile();
    EXPECT_EQ(launch(), 0u);
    EXPECT_EQ(lines.all(), Lines());
}

TEST_F(LaunchSequence, AValidFileKeepsItsDataThroughLaunches)
{
    {
        Library library;
        ASSERT_EQ(send(addUsers, R"({"D":{"items":[{"id":7,"name":"a"}]}})"), 0u);
        ASSERT_EQ(send(setServerIp, "10.0.0.1"), 0u);
    }
    EXPECT_EQ(launch(), 0u);
    EXPECT_EQ(launch(), 0u);
    EXPECT_EQ(file.rows("SELECT UsersId, UsersName FROM Users"), (std::vector<Row>{{"7", "a"}}));
    EXPECT_EQ(file.rows("SELECT * FROM Session"), (std::vector<Row>{{"0", "10.0.0.1"}}));
}

TEST_F(LaunchSequence, AValidFileMayHoldMore)
{
    makeValidFile();
    file.execute("CREATE TABLE Notes (Text); ALTER TABLE Users ADD COLUMN UsersNote;"
                 "INSERT INTO Version VALUES (1, '0.2')");
    EXPECT_EQ(launch(), 0u);
    EXPECT_EQ(file.number("SELECT count(*) FROM Notes"), 0);
}

TEST_F(LaunchSequence, ALinkToAValidFileIsFollowed)
{
    makeValidFile();
    fs::rename("CacheDb", "Elsewhere");
    if (!makeLink("Elsewhere"))
        GTEST_SKIP() << withoutLinks;
    EXPECT_EQ(launch(), 0u);
    EXPECT_TRUE(fs::is_symlink("CacheDb"));
}

TEST_F(LaunchSequence, TheProbesRunInThisOrderInOneTransaction)
{
    makeValidFile();
    const Watch watch;
    EXPECT_EQ(launch(), 0u);
    if (!watch.sees())
        GTEST_SKIP() << "Qt brings an SQLite of its own";
    std::vector<std::string> steps;
    for (const std::string &statement : statements)
        steps.push_back(tableRead(statement));
    EXPECT_EQ(steps, (std::vector<std::string>{"Version",
                                               "BEGIN",
                                               "Users",
                                               "Domains",
                                               "Organizations",
                                               "Locales",
                                               "Persons",
                                               "Contractors",
                                               "Contracts",
                                               "Zones",
                                               "Sections",
                                               "Devices",
                                               "Locations",
                                               "Sites",
                                               "DeviceUsers",
                                               "Events",
                                               "DeviceUserSectionLinks",
                                               "Session",
                                               "Version",
                                               "COMMIT"}));
}

// ---- The version fails: 103 ----

class OtherVersion : public LaunchSequence, public ::testing::WithParamInterface<std::string>
{
};

TEST_P(OtherVersion, IsReplacedWithoutALine)
{
    makeValidFile();
    file.execute("UPDATE Version SET VersionNumber = '" + GetParam() + "'");
    EXPECT_EQ(launch(), 103u);
    EXPECT_EQ(lines.all(), Lines());
    EXPECT_EQ(objects(), 0);
}

INSTANTIATE_TEST_SUITE_P(LaunchSequence, OtherVersion,
                         ::testing::Values("0.2", "0.10", "0.1.0", "00.1", ".1", "0,1", "1", "", " 0.1", "0.1 ",
                                           "v0.1"));

TEST_F(LaunchSequence, ANullVersionGives103WithoutALine)
{
    makeValidFile();
    file.execute("UPDATE Version SET VersionNumber = NULL");
    EXPECT_EQ(launch(), 103u);
    EXPECT_EQ(lines.all(), Lines());
}

TEST_F(LaunchSequence, AMissingVersionRowGives103WithoutALine)
{
    makeValidFile();
    file.execute("DELETE FROM Version");
    EXPECT_EQ(launch(), 103u);
    EXPECT_EQ(lines.all(), Lines());
    EXPECT_EQ(objects(), 0);
}

TEST_F(LaunchSequence, TheVersionStandsInRow0)
{
    makeValidFile();
    file.execute("UPDATE Version SET VersionId = 1");
    EXPECT_EQ(launch(), 103u);
    EXPECT_EQ(lines.all(), Lines());
}

TEST_F(LaunchSequence, AMissingVersionTableGives103AndFourLines)
{
    makeValidFile();
    file.execute("DROP TABLE Version");
    EXPECT_EQ(launch(), 103u);
    EXPECT_TRUE(isFailure(lines.all(), "get version error"));
    EXPECT_EQ(objects(), 0);
}

TEST_F(LaunchSequence, AMissingVersionColumnGives103AndFourLines)
{
    for (const std::string column : {"VersionId", "VersionNumber"}) {
        fs::remove("CacheDb");
        makeValidFile();
        file.execute("ALTER TABLE Version RENAME COLUMN " + column + " TO Other");
        EXPECT_EQ(launch(), 103u) << column;
        EXPECT_TRUE(isFailure(lines.all(), "get version error")) << column;
    }
}

TEST_F(LaunchSequence, TheVersionIsCheckedBeforeTheSchema)
{
    makeValidFile();
    file.execute("DROP TABLE Users; UPDATE Version SET VersionNumber = '0.2'");
    EXPECT_EQ(launch(), 103u);
    EXPECT_EQ(lines.all(), Lines());
}

TEST_F(LaunchSequence, AFailedVersionCheckRollsBackWithoutATransaction)
{
    writeFile("CacheDb", "");
    const Watch watch;
    EXPECT_EQ(launch(), 103u);
    if (!watch.sees())
        GTEST_SKIP() << "Qt brings an SQLite of its own";
    EXPECT_EQ(statements, (std::vector<std::string>{"ROLLBACK"}));
}

TEST_F(LaunchSequence, AWrongVersionIsNoFailureOfTheCheck)
{
    makeValidFile();
    file.execute("DELETE FROM Version");
    const Watch watch;
    EXPECT_EQ(launch(), 103u);
    if (!watch.sees())
        GTEST_SKIP() << "Qt brings an SQLite of its own";
    EXPECT_EQ(statements, (std::vector<std::string>{"SELECT VersionNumber FROM Version WHERE VersionId = 0"}));
}

TEST_F(LaunchSequence, AnEmptyFileGives103AndFourLines)
{
    writeFile("CacheDb", "");
    EXPECT_EQ(launch(), 103u);
    EXPECT_TRUE(isFailure(lines.all(), "get version error"));
    EXPECT_EQ(objects(), 0);
}

TEST_F(LaunchSequence, AFileOfOtherBytesGives103AndFourLines)
{
    std::string noise(8192, '\0');
    uint32_t state = 1;
    for (char &byte : noise) {
        state = state * 1664525u + 1013904223u;
        byte = static_cast<char>(state >> 24);
    }
    for (const std::string &bytes : {noise, std::string("no database"), "SQLite format 3" + noise}) {
        writeFile("CacheDb", bytes);
        EXPECT_EQ(launch(), 103u);
        EXPECT_TRUE(isFailure(lines.all(), "get version error"));
        EXPECT_EQ(objects(), 0);
    }
}

TEST_F(LaunchSequence, AReplacedFileIsAnotherFile)
{
    makeValidFile();
    file.execute("DELETE FROM Version");
    fs::create_hard_link("CacheDb", "Old");
    EXPECT_EQ(launch(), 103u);
    EXPECT_FALSE(fs::equivalent("CacheDb", "Old"));
    EXPECT_EQ(File("Old").number("SELECT count(*) FROM sqlite_master WHERE type = 'table'"), 17);
}

// ---- The schema fails: 101 ----

TEST_F(LaunchSequence, AMissingTableGives101AndTheLinesOfTheStatement)
{
    makeValidFile();
    fs::rename("CacheDb", "Valid");
    for (const std::string table :
         {"Users", "Domains", "Organizations", "Locales", "Persons", "Contractors", "Contracts", "Zones", "Sections",
          "Devices", "Locations", "Sites", "DeviceUsers", "Events", "DeviceUserSectionLinks", "Session"}) {
        fs::remove("CacheDb");
        fs::copy_file("Valid", "CacheDb");
        file.execute("DROP TABLE " + table);
        EXPECT_EQ(launch(), 101u) << table;
        EXPECT_EQ(lines.allWithErrorsAt({1}), (Lines{"execute error", "*"})) << table;
        EXPECT_EQ(objects(), 0) << table;
    }
}

struct SelectedColumns
{
    std::string table;
    std::vector<std::string> fields;
};

void PrintTo(const SelectedColumns &columns, std::ostream *out)
{
    *out << columns.table;
}

class Probe : public LaunchSequence, public ::testing::WithParamInterface<SelectedColumns>
{
};

TEST_P(Probe, AMissingColumnGives101AndTheLinesOfTheStatement)
{
    const std::string &table = GetParam().table;
    makeValidFile();
    fs::rename("CacheDb", "Valid");
    for (const std::string &field : GetParam().fields) {
        fs::remove("CacheDb");
        fs::copy_file("Valid", "CacheDb");
        file.execute("ALTER TABLE " + table + " RENAME COLUMN " + table + field + " TO Other");
        EXPECT_EQ(launch(), 101u) << field;
        EXPECT_EQ(lines.allWithErrorsAt({1}), (Lines{"execute error", "*"})) << field;
        EXPECT_EQ(objects(), 0) << field;
    }
}

INSTANTIATE_TEST_SUITE_P(
    LaunchSequence, Probe,
    ::testing::Values(
        SelectedColumns{"Users",
                        {"Id", "Name", "Login", "Contacts", "IsActive", "DomainId", "OrgId", "Roles", "Phone"}},
        SelectedColumns{"Domains", {"Id", "Name", "OrgId", "LocaleId"}},
        SelectedColumns{"Organizations",
                        {"Id", "Inn", "OfficialName", "ShortName", "Kpp", "Ogrn", "ContactId", "LocaleId", "Address"}},
        SelectedColumns{"Locales", {"Id", "Iso", "Description"}},
        SelectedColumns{"Persons", {"Id", "Name", "Phone", "Email", "Postal"}},
        SelectedColumns{"Contractors", {"Id", "Inn", "OrgId", "Type", "OfficialName", "Name", "Extra"}},
        SelectedColumns{"Contracts",
                        {"Id", "Number", "ContractorId", "Name", "Status", "Date", "Description", "Extra", "UserId"}},
        SelectedColumns{"Zones",
                        {"DeviceId", "SectionId", "ZoneId", "Name", "Detector", "Physic", "Form", "Flags", "Delay",
                         "ScheduleId", "Tracert", "UidType", "Arm"}},
        SelectedColumns{"Sections",
                        {"DeviceId", "SectionId", "Name", "ScheduleId", "Tracert", "Flags", "Detector", "Arm", "Physic",
                         "Form", "Delay", "UidType"}},
        SelectedColumns{"Devices", {"Id", "Account", "DomainId", "ConfigVersion", "IsParted", "ClusterId"}},
        SelectedColumns{"Locations", {"Id", "Latitude", "Longitude"}},
        SelectedColumns{"Sites",
                        {"Id", "Name", "Comment", "Extra", "IsCrossing", "DomainId", "Address", "ContractId",
                         "ContractStatus", "Type", "Category", "ArmMode", "IsDelegated", "IsSitePlanExists"}},
        SelectedColumns{"DeviceUsers", {"DeviceId", "DeviceUserId", "Name", "Comment", "Phone"}},
        SelectedColumns{"Events",
                        {"Id", "Time", "DeviceId", "SectionId", "ZoneId", "Active", "Class", "Detector", "Reason",
                         "LocalTime", "Channel", "Data", "ReviewId", "ReviewState", "UserId", "IsClosed", "Affect",
                         "JData"}},
        SelectedColumns{"DeviceUserSectionLinks", {"DeviceId", "DeviceUserId"}}),
    [](const ::testing::TestParamInfo<SelectedColumns> &test) { return test.param.table; });

TEST_F(LaunchSequence, AMissingColumnThatNoSelectNamesGoesUnnoticed)
{
    makeValidFile();
    file.execute("ALTER TABLE DeviceUserSectionLinks RENAME COLUMN DeviceUserSectionLinksSectionId TO Other;"
                 "ALTER TABLE Session RENAME COLUMN SessionId TO Other;"
                 "ALTER TABLE Session RENAME COLUMN SessionIp TO Another");
    EXPECT_EQ(launch(), 0u);
    EXPECT_EQ(lines.all(), Lines());
}

TEST_F(LaunchSequence, AFailedProbeEndsNoTransaction)
{
    makeValidFile();
    file.execute("DROP TABLE Session");
    const Watch watch;
    EXPECT_EQ(launch(), 101u);
    if (!watch.sees())
        GTEST_SKIP() << "Qt brings an SQLite of its own";
    ASSERT_EQ(statements.size(), 17u);
    EXPECT_EQ(statements[1], "BEGIN");
    EXPECT_EQ(tableRead(statements.back()), "DeviceUserSectionLinks");
}

TEST_F(LaunchSequence, AFailedProbeLeavesNoLockBehind)
{
    makeValidFile();
    file.execute("DROP TABLE Session");
    Library library;
    ASSERT_EQ(getLaunchCacheResult(), 101u);
    file.execute("CREATE TABLE Notes (Text)");
    EXPECT_EQ(objects(), 1);
}

// ---- The file does not open: 102, 6 ----

TEST_F(LaunchSequence, ALinkIntoAMissingDirectoryGives102WithoutALine)
{
    if (!makeLink("missing/CacheDb"))
        GTEST_SKIP() << withoutLinks;
    EXPECT_EQ(launch(), 102u);
    EXPECT_EQ(lines.all(), Lines());
    EXPECT_TRUE(fs::is_regular_file(fs::symlink_status("CacheDb")));
    EXPECT_EQ(objects(), 0);
}

TEST_F(LaunchSequence, ALinkToAMissingFileExistsAndGives103)
{
    if (!makeLink("Elsewhere"))
        GTEST_SKIP() << withoutLinks;
    EXPECT_EQ(launch(), 103u);
    EXPECT_TRUE(isFailure(lines.all(), "get version error"));
    EXPECT_TRUE(fs::is_regular_file(fs::symlink_status("CacheDb")));
    EXPECT_EQ(objects(), 0);
}

TEST_F(LaunchSequence, ADirectoryOfThatNameGives6WithoutALine)
{
    fs::create_directory("CacheDb");
    EXPECT_EQ(launch(), 6u);
    EXPECT_EQ(lines.all(), Lines());
    EXPECT_TRUE(fs::is_directory("CacheDb"));
    EXPECT_EQ(launch(), 6u);
}

TEST_F(LaunchSequence, AStoreThatDidNotOpenFailsWithTheUsualLines)
{
    fs::create_directory("CacheDb");
    Library library;
    lines.clear();
    EXPECT_EQ(list(getUsers).code, 7u);
    EXPECT_TRUE(isFailure(lines.all(), "get users error"));
}

// ---- After a replacement, and after a failed one ----

struct Unusable
{
    uint32_t result;
    bool (*prepare)(); // false where the system has no such thing
    uint32_t next;
};

void PrintTo(const Unusable &unusable, std::ostream *out)
{
    *out << unusable.result;
}

class UnusableStore : public LaunchSequence, public ::testing::WithParamInterface<Unusable>
{
protected:
    void SetUp() override
    {
        if (!GetParam().prepare())
            GTEST_SKIP() << withoutLinks;
        library = std::make_unique<Library>();
        lines.clear();
    }

    std::unique_ptr<Library> library;
};

TEST_P(UnusableStore, IsLaunchedAllTheSame)
{
    EXPECT_EQ(getState(), 2u);
    EXPECT_EQ(getLaunchCacheResult(), GetParam().result);
}

TEST_P(UnusableStore, AnswersEveryRead7)
{
    expectEach(reads(), 7);
}

TEST_P(UnusableStore, AnswersEveryRemoval7)
{
    expectEach(removals(), 7);
}

TEST_P(UnusableStore, AnswersEveryWrite9)
{
    expectEach(writes(), 9);
}

TEST_P(UnusableStore, LogsAsUsual)
{
    EXPECT_EQ(list(getUsers).code, 7u);
    EXPECT_TRUE(isFailure(lines.all(), "get users error"));
    lines.clear();
    EXPECT_EQ(add(addLocales, R"({"id":1})"), 9u);
    EXPECT_TRUE(isBatchFailure(lines.all(), "add locales error"));
    lines.clear();
    EXPECT_EQ(add(addUsers, R"({"id":1})"), 9u);
    EXPECT_EQ(lines.allWithErrorsAt({1}), (Lines{"execute batch error", "*", "add users error"}));
}

TEST_P(UnusableStore, IsFoundByEveryLaunchAfter)
{
    library.reset();
    EXPECT_EQ(launch(), GetParam().next);
    EXPECT_EQ(launch(), GetParam().next);
}

TEST_P(UnusableStore, IsMendedByRemovingTheFile)
{
    library.reset();
    ASSERT_TRUE(fs::remove("CacheDb"));
    library = std::make_unique<Library>();
    EXPECT_EQ(getLaunchCacheResult(), 100u);
    EXPECT_EQ(add(addUsers, R"({"id":1})"), 0u);
    EXPECT_EQ(list(getUsers).size(), 1u);
}

bool makeDirectoryOfThatName()
{
    return fs::create_directory("CacheDb");
}

bool makeFileOfAnotherSchema()
{
    {
        Library library;
    }
    File().execute("ALTER TABLE Users RENAME COLUMN UsersPhone TO Other");
    return true;
}

bool makeLinkIntoAMissingDirectory()
{
    return makeLink("missing/CacheDb");
}

bool makeEmptyFile()
{
    writeFile("CacheDb", "");
    return true;
}

INSTANTIATE_TEST_SUITE_P(
    LaunchSequence, UnusableStore,
    ::testing::Values(Unusable{6, makeDirectoryOfThatName, 6}, Unusable{101, makeFileOfAnotherSchema, 103},
                      Unusable{102, makeLinkIntoAMissingDirectory, 103}, Unusable{103, makeEmptyFile, 103}),
    [](const ::testing::TestParamInfo<Unusable> &test) { return "Result" + std::to_string(test.param.result); });

} // namespace
