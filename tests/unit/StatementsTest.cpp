// Every statement that the catalog prepares, compared as a whole: its text, and the values that it is left bound with.
#include "catalog/TableCatalog.h"

#include <QCoreApplication>
#include <QSqlDatabase>
#include <QSqlError>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <ostream>
#include <string>
#include <vector>

namespace {

using namespace brimlet;

using Texts = std::vector<std::string>;
using Named = std::map<std::string, std::string>;

// ---- What a query holds ----

// A value with its type, "uint 7" or "QString 'x'", and for a null "uint null"; a list of them in brackets.
std::string shown(const QVariant &value)
{
    if (value.type() == QVariant::List) {
        std::string all;
        for (const QVariant &element : value.toList())
            all += (all.empty() ? "" : ", ") + shown(element);
        return '[' + all + ']';
    }
    const char *type = value.typeName() ? value.typeName() : "nothing";
    const std::string text = value.toString().toStdString();
    if (value.isNull())
        return std::string(type) + " null";
    return std::string(type) + ' ' + (value.type() == QVariant::String ? '\'' + text + '\'' : text);
}

// A catalog with a query on a database of its own, which lives in memory and holds no table.
class Connection
{
public:
    Connection()
    {
        QSqlDatabase database = QSqlDatabase::addDatabase("QSQLITE", "statements");
        database.setDatabaseName(":memory:");
        EXPECT_TRUE(database.open());
        query = QSqlQuery(database);
    }
    ~Connection()
    {
        query = QSqlQuery();
        QSqlDatabase::removeDatabase("statements");
    }
    Connection(const Connection &) = delete;
    Connection &operator=(const Connection &) = delete;

    void createTables()
    {
        for (const auto prepareTable : {&TableCatalog::prepareUsersTable, &TableCatalog::prepareDomainsTable,
                                        &TableCatalog::prepareOrganizationsTable, &TableCatalog::prepareLocalesTable,
                                        &TableCatalog::preparePersonsTable, &TableCatalog::prepareContractorsTable,
                                        &TableCatalog::prepareContractsTable, &TableCatalog::prepareZonesTable,
                                        &TableCatalog::prepareSectionsTable, &TableCatalog::prepareDevicesTable,
                                        &TableCatalog::prepareLocationsTable, &TableCatalog::prepareSitesTable,
                                        &TableCatalog::prepareDeviceUsersTable, &TableCatalog::prepareEventsTable,
                                        &TableCatalog::prepareDeviceUserSectionLinksTable,
                                        &TableCatalog::prepareSessionTable, &TableCatalog::prepareVersionTable}) {
            (tables.*prepareTable)(query);
            EXPECT_TRUE(query.exec()) << query.lastError().text().toStdString();
        }
    }

    // The text, which SQLite has to have accepted.
    std::string text() const
    {
        EXPECT_FALSE(query.lastError().isValid()) << query.lastError().text().toStdString();
        return query.lastQuery().toStdString();
    }

    // The values in the order of their places.
    Texts bound() const
    {
        Texts values;
        for (int i = 0; i < query.boundValues().size(); ++i)
            values.push_back(shown(query.boundValue(i)));
        return values;
    }

    // The values under the names of their places.
    Named boundByName() const
    {
        Named values;
        const QMap<QString, QVariant> all = query.boundValues();
        for (auto value = all.begin(); value != all.end(); ++value)
            values[value.key().toStdString()] = shown(value.value());
        return values;
    }

    // Whether the statement runs, as a batch if it holds lists.
    bool runs() { return query.boundValue(0).type() == QVariant::List ? query.execBatch() : query.exec(); }

    // Through a statement of its own, behind the query's back.
    void execute(const QString &sql)
    {
        QSqlQuery other(QSqlDatabase::database("statements"));
        EXPECT_TRUE(other.exec(sql)) << other.lastError().text().toStdString();
    }

private:
    int argc = 0;
    QCoreApplication application{argc, nullptr};

public:
    TableCatalog tables;
    QSqlQuery query;
};

// ---- Records ----

template<class Record>
Record withId(quint32 id)
{
    Record record;
    record.id = id;
    return record;
}

// Two of each kind: number 7 holds all that there is, number 8 nothing but its id.

User fullUser()
{
    User user = withId<User>(7);
    user.name = "n";
    user.login = "l";
    user.contacts = "c";
    user.isActive = true;
    user.domainId = 3u;
    user.roles = 4u;
    user.phone = Q_UINT64_C(79001234567);
    user.domain = withId<Domain>(33);
    user.orgId = 2u;
    return user;
}

Domain fullDomain()
{
    Domain domain = withId<Domain>(7);
    domain.name = "n";
    domain.orgId = 2u;
    domain.locale = withId<Locale>(1);
    return domain;
}

Person fullPerson()
{
    Person person = withId<Person>(5);
    person.name = "n";
    person.phone = "p";
    person.email = "e";
    person.postal = "o";
    return person;
}

Organization fullOrganization()
{
    Organization organization = withId<Organization>(7);
    organization.inn = "i";
    organization.officialName = "o";
    organization.shortName = "s";
    organization.kpp = "k";
    organization.ogrn = "g";
    organization.address = "a";
    organization.contact = fullPerson();
    organization.locale = withId<Locale>(1);
    return organization;
}

Organization withContact(quint32 id, const Person &contact)
{
    Organization organization = withId<Organization>(id);
    organization.contact = contact;
    return organization;
}

Locale fullLocale()
{
    Locale locale = withId<Locale>(7);
    locale.iso = "i";
    locale.description = "d";
    return locale;
}

Contractor fullContractor()
{
    Contractor contractor = withId<Contractor>(7);
    contractor.inn = "i";
    contractor.orgId = 2u;
    contractor.type = 1u;
    contractor.officialName = "o";
    contractor.name = "n";
    contractor.extra = "e";
    return contractor;
}

Contract fullContract()
{
    Contract contract = withId<Contract>(7);
    contract.number = "n";
    contract.contractor = withId<Contractor>(4);
    contract.name = "x";
    contract.status = 1u;
    contract.date = 100u;
    contract.description = "d";
    contract.extra = "e";
    contract.user = withId<User>(9);
    return contract;
}

Zone fullZone()
{
    Zone zone = withId<Zone>(7);
    zone.name = "n";
    zone.detector = 21u;
    zone.physic = 22u;
    zone.form = 23u;
    zone.flags = 24u;
    zone.delay = 25u;
    zone.scheduleId = 26u;
    zone.tracert = 27u;
    zone.uidType = 28u;
    zone.arm = 29u;
    return zone;
}

Section fullSection()
{
    Section section = withId<Section>(7);
    section.name = "n";
    section.scheduleId = 21u;
    section.zones = {fullZone(), withId<Zone>(8)};
    section.tracert = 22u;
    section.flags = 23u;
    section.detector = 24u;
    section.arm = 25u;
    section.physic = 26u;
    section.form = 27u;
    section.delay = 28u;
    section.uidType = 29u;
    return section;
}

DeviceUser fullDeviceUser()
{
    DeviceUser user = withId<DeviceUser>(7);
    user.name = "n";
    user.comment = "c";
    user.phone = "p";
    user.sections = {31, 31, 32};
    return user;
}

Device fullDevice()
{
    Device device = withId<Device>(7);
    device.account = 1234u;
    device.domain = withId<Domain>(33);
    device.configVersion = 6u;
    device.sections = {fullSection(), withId<Section>(8)};
    device.users = {fullDeviceUser(), withId<DeviceUser>(8)};
    device.isParted = true;
    device.clusterId = 2u;
    device.domainId = 3u;
    return device;
}

// Device 9 with a zone 7 of a section 7, and a user 7 of section 31.
Device smallDevice()
{
    Device device = withId<Device>(9);
    Section section = withId<Section>(7);
    section.zones = {withId<Zone>(7)};
    DeviceUser user = withId<DeviceUser>(7);
    user.sections = {31};
    device.sections = {section};
    device.users = {user};
    return device;
}

// What the tree's statements are given: a whole tree, a device with nothing in it, a small tree.
std::vector<Device> threeDevices()
{
    return {fullDevice(), withId<Device>(8), smallDevice()};
}

Location fullLocation()
{
    Location location = withId<Location>(7);
    location.latitude = 55.75;
    location.longitude = -37.5;
    return location;
}

Site fullSite()
{
    Site site = withId<Site>(7);
    site.name = "n";
    site.comment = "c";
    site.extra = "e";
    site.isCrossing = true;
    site.domain = withId<Domain>(33);
    site.address = "a";
    site.contract = withId<Contract>(44);
    site.contractStatus = -2;
    site.type = 4u;
    site.category = 5u;
    site.armMode = 6u;
    site.isDelegated = false;
    site.devices = {withId<Device>(55)};
    site.domainId = 3u;
    site.location = fullLocation();
    site.contractId = -1;
    site.isSitePlanExists = true;
    return site;
}

Site withLocation(quint32 id, const Location &location)
{
    Site site = withId<Site>(id);
    site.location = location;
    return site;
}

Event fullEvent()
{
    Event event = withId<Event>(7);
    event.time = 1000u;
    event.deviceId = -10;
    event.sectionId = 20u;
    event.zoneId = 30u;
    event.active = quint8(1);
    event.eventClass = quint8(255);
    event.detector = quint8(3);
    event.reason = quint8(4);
    event.localTime = 4294967295u;
    event.channel = -5;
    event.data = "d";
    event.reviewId = 6u;
    event.reviewState = quint8(8);
    event.userId = 9u;
    event.isClosed = false;
    event.affect = true;
    event.jData = "{}";
    event.account = 1234u;
    event.sectionName = "s";
    event.zoneName = "z";
    event.domainName = "o";
    return event;
}

// ---- Statements whose text is fixed ----

struct Statement
{
    std::string name;
    std::function<void(const TableCatalog &, QSqlQuery &)> prepare;
    std::string text;
    Texts bound;
};

void PrintTo(const Statement &statement, std::ostream *out)
{
    *out << statement.name;
}

const auto byName = [](const auto &test) { return test.param.name; };

class CreatedTables : public ::testing::TestWithParam<Statement>, protected Connection
{
};

TEST_P(CreatedTables, AreDeclaredWithAllTheirColumns)
{
    GetParam().prepare(tables, query);
    EXPECT_EQ(text(), GetParam().text);
    EXPECT_EQ(bound(), Texts());
    EXPECT_TRUE(runs());
}

const Statement creations[] = {
    {"Users",
     [](auto &tables, auto &query) { tables.prepareUsersTable(query); },
     "CREATE TABLE Users (UsersId UNSIGNED BIG INT PRIMARY KEY,UsersName VARCHAR(255),UsersLogin "
     "VARCHAR(255),UsersContacts VARCHAR(255),UsersIsActive BOOLEAN,UsersDomainId UNSIGNED BIG INT,"
     "UsersOrgId UNSIGNED BIG INT,UsersRoles UNSIGNED BIG INT,UsersPhone DOUBLE)",
     {}},
    {"Domains",
     [](auto &tables, auto &query) { tables.prepareDomainsTable(query); },
     "CREATE TABLE Domains (DomainsId UNSIGNED BIG INT PRIMARY KEY,DomainsName VARCHAR(255),DomainsOrgId "
     "UNSIGNED BIG INT,DomainsLocaleId UNSIGNED BIG INT)",
     {}},
    {"Organizations",
     [](auto &tables, auto &query) { tables.prepareOrganizationsTable(query); },
     "CREATE TABLE Organizations (OrganizationsId UNSIGNED BIG INT PRIMARY KEY,OrganizationsInn "
     "VARCHAR(255),OrganizationsOfficialName VARCHAR(255),OrganizationsShortName VARCHAR(255),"
     "OrganizationsKpp VARCHAR(255),OrganizationsOgrn VARCHAR(255),OrganizationsContactId UNSIGNED BIG "
     "INT,OrganizationsLocaleId UNSIGNED BIG INT,OrganizationsAddress VARCHAR(255))",
     {}},
    {"Locales",
     [](auto &tables, auto &query) { tables.prepareLocalesTable(query); },
     "CREATE TABLE Locales (LocalesId UNSIGNED BIG INT PRIMARY KEY,LocalesIso VARCHAR(255),"
     "LocalesDescription VARCHAR(255))",
     {}},
    {"Persons",
     [](auto &tables, auto &query) { tables.preparePersonsTable(query); },
     "CREATE TABLE Persons (PersonsId UNSIGNED BIG INT PRIMARY KEY,PersonsName VARCHAR(255),PersonsPhone "
     "VARCHAR(255),PersonsEmail VARCHAR(255),PersonsPostal VARCHAR(255))",
     {}},
    {"Contractors",
     [](auto &tables, auto &query) { tables.prepareContractorsTable(query); },
     "CREATE TABLE Contractors (ContractorsId UNSIGNED BIG INT PRIMARY KEY,ContractorsInn VARCHAR(255),"
     "ContractorsOrgId UNSIGNED BIG INT,ContractorsType UNSIGNED BIG INT,ContractorsOfficialName "
     "VARCHAR(255),ContractorsName VARCHAR(255),ContractorsExtra VARCHAR(255))",
     {}},
    {"Contracts",
     [](auto &tables, auto &query) { tables.prepareContractsTable(query); },
     "CREATE TABLE Contracts (ContractsId UNSIGNED BIG INT PRIMARY KEY,ContractsNumber VARCHAR(255),"
     "ContractsContractorId UNSIGNED BIG INT,ContractsName VARCHAR(255),ContractsStatus UNSIGNED BIG INT,"
     "ContractsDate UNSIGNED BIG INT,ContractsDescription VARCHAR(255),ContractsExtra VARCHAR(255),"
     "ContractsUserId UNSIGNED BIG INT)",
     {}},
    {"Zones",
     [](auto &tables, auto &query) { tables.prepareZonesTable(query); },
     "CREATE TABLE Zones (ZonesDeviceId UNSIGNED BIG INT,ZonesSectionId UNSIGNED BIG INT,ZonesZoneId "
     "UNSIGNED BIG INT,ZonesName VARCHAR(255),ZonesDetector UNSIGNED BIG INT,ZonesPhysic UNSIGNED BIG "
     "INT,ZonesForm UNSIGNED BIG INT,ZonesFlags UNSIGNED BIG INT,ZonesDelay UNSIGNED BIG INT,"
     "ZonesScheduleId UNSIGNED BIG INT,ZonesTracert UNSIGNED BIG INT,ZonesUidType UNSIGNED BIG INT,"
     "ZonesArm UNSIGNED BIG INT,PRIMARY KEY(ZonesDeviceId,ZonesZoneId))",
     {}},
    {"Sections",
     [](auto &tables, auto &query) { tables.prepareSectionsTable(query); },
     "CREATE TABLE Sections (SectionsDeviceId UNSIGNED BIG INT,SectionsSectionId UNSIGNED BIG INT,"
     "SectionsName VARCHAR(255),SectionsScheduleId UNSIGNED BIG INT,SectionsTracert UNSIGNED BIG INT,"
     "SectionsFlags UNSIGNED BIG INT,SectionsDetector UNSIGNED BIG INT,SectionsArm UNSIGNED BIG INT,"
     "SectionsPhysic UNSIGNED BIG INT,SectionsForm UNSIGNED BIG INT,SectionsDelay UNSIGNED BIG INT,"
     "SectionsUidType UNSIGNED BIG INT,PRIMARY KEY(SectionsDeviceId,SectionsSectionId))",
     {}},
    {"Devices",
     [](auto &tables, auto &query) { tables.prepareDevicesTable(query); },
     "CREATE TABLE Devices (DevicesId UNSIGNED BIG INT PRIMARY KEY,DevicesAccount UNSIGNED BIG INT,"
     "DevicesDomainId UNSIGNED BIG INT,DevicesConfigVersion UNSIGNED BIG INT,DevicesIsParted BOOLEAN,"
     "DevicesClusterId UNSIGNED BIG INT)",
     {}},
    {"Locations",
     [](auto &tables, auto &query) { tables.prepareLocationsTable(query); },
     "CREATE TABLE Locations (LocationsId UNSIGNED BIG INT PRIMARY KEY,LocationsLatitude DOUBLE,"
     "LocationsLongitude DOUBLE)",
     {}},
    {"Sites",
     [](auto &tables, auto &query) { tables.prepareSitesTable(query); },
     "CREATE TABLE Sites (SitesId UNSIGNED BIG INT PRIMARY KEY,SitesName VARCHAR(255),SitesComment "
     "VARCHAR(255),SitesExtra VARCHAR(255),SitesIsCrossing BOOLEAN,SitesDomainId UNSIGNED BIG INT,"
     "SitesAddress VARCHAR(255),SitesContractId UNSIGNED BIG INT,SitesContractStatus UNSIGNED BIG INT,"
     "SitesType UNSIGNED BIG INT,SitesCategory UNSIGNED BIG INT,SitesArmMode UNSIGNED BIG INT,"
     "SitesIsDelegated BOOLEAN,SitesIsSitePlanExists BOOLEAN)",
     {}},
    {"DeviceUsers",
     [](auto &tables, auto &query) { tables.prepareDeviceUsersTable(query); },
     "CREATE TABLE DeviceUsers (DeviceUsersDeviceId UNSIGNED BIG INT,DeviceUsersDeviceUserId UNSIGNED "
     "BIG INT,DeviceUsersName VARCHAR(255),DeviceUsersComment VARCHAR(255),DeviceUsersPhone VARCHAR(255),"
     "PRIMARY KEY(DeviceUsersDeviceId,DeviceUsersDeviceUserId))",
     {}},
    {"Events",
     [](auto &tables, auto &query) { tables.prepareEventsTable(query); },
     "CREATE TABLE Events (EventsId UNSIGNED BIG INT PRIMARY KEY,EventsTime UNSIGNED BIG INT,"
     "EventsDeviceId UNSIGNED BIG INT,EventsSectionId UNSIGNED BIG INT,EventsZoneId UNSIGNED BIG INT,"
     "EventsActive BOOLEAN,EventsClass UNSIGNED BIG INT,EventsDetector UNSIGNED BIG INT,EventsReason "
     "UNSIGNED BIG INT,EventsLocalTime UNSIGNED BIG INT,EventsChannel UNSIGNED BIG INT,EventsData "
     "VARCHAR(255),EventsReviewId UNSIGNED BIG INT,EventsReviewState UNSIGNED BIG INT,EventsUserId "
     "UNSIGNED BIG INT,EventsIsClosed BOOLEAN,EventsAffect BOOLEAN,EventsJData VARCHAR(255))",
     {}},
    {"DeviceUserSectionLinks",
     [](auto &tables, auto &query) { tables.prepareDeviceUserSectionLinksTable(query); },
     "CREATE TABLE DeviceUserSectionLinks (DeviceUserSectionLinksDeviceId UNSIGNED BIG INT,"
     "DeviceUserSectionLinksDeviceUserId UNSIGNED BIG INT,DeviceUserSectionLinksSectionId UNSIGNED BIG "
     "INT,PRIMARY KEY(DeviceUserSectionLinksDeviceId,DeviceUserSectionLinksDeviceUserId,"
     "DeviceUserSectionLinksSectionId))",
     {}},
    {"Session",
     [](auto &tables, auto &query) { tables.prepareSessionTable(query); },
     "CREATE TABLE Session (SessionId INTEGER PRIMARY KEY,SessionIp VARCHAR(255))",
     {}},
    {"Version",
     [](auto &tables, auto &query) { tables.prepareVersionTable(query); },
     "CREATE TABLE Version (VersionId INTEGER PRIMARY KEY,VersionNumber VARCHAR(255))",
     {}},
};
INSTANTIATE_TEST_SUITE_P(Of, CreatedTables, ::testing::ValuesIn(creations), byName);

class PreparedStatement : public ::testing::TestWithParam<Statement>, protected Connection
{
protected:
    PreparedStatement() { createTables(); }
};

TEST_P(PreparedStatement, HasItsTextAndItsValuesAndRuns)
{
    GetParam().prepare(tables, query);
    EXPECT_EQ(text(), GetParam().text);
    EXPECT_EQ(bound(), GetParam().bound);
    EXPECT_TRUE(runs()) << query.lastError().text().toStdString();
}

// One list for each column, of a record that holds everything and of one that holds only its id. The lists of texts,
// and no others, are one null longer.
const Statement inserts[] = {
    {"Users",
     [](auto &tables, auto &query) {
         tables.prepareUsersInsert(query, {fullUser(), withId<User>(8)});
     },
     "INSERT OR REPLACE INTO Users (UsersId,UsersName,UsersLogin,UsersContacts,UsersIsActive,"
     "UsersDomainId,UsersOrgId,UsersRoles,UsersPhone)VALUES (?,?,?,?,?,?,?,?,?)",
     {"[uint 7, uint 8]", "[QString 'n', QString null, QString null]", "[QString 'l', QString null, QString null]",
      "[QString 'c', QString null, QString null]", "[bool true, bool null]", "[uint 3, uint null]",
      "[uint 2, uint null]", "[uint 4, uint null]", "[qulonglong 79001234567, qulonglong null]"}},
    {"Domains",
     [](auto &tables, auto &query) {
         tables.prepareDomainsInsert(query, {fullDomain(), withId<Domain>(8)});
     },
     "INSERT OR REPLACE INTO Domains (DomainsId,DomainsName,DomainsOrgId,DomainsLocaleId)VALUES (?, ?, ?,"
     " ?)",
     {"[uint 7, uint 8]", "[QString 'n', QString null, QString null]", "[uint 2, uint null]", "[uint 1, uint null]"}},
    {"Organizations",
     [](auto &tables, auto &query) {
         tables.prepareOrganizationsInsert(query, {fullOrganization(), withId<Organization>(8)});
     },
     "INSERT OR REPLACE INTO Organizations (OrganizationsId,OrganizationsInn,OrganizationsOfficialName,"
     "OrganizationsShortName,OrganizationsKpp,OrganizationsOgrn,OrganizationsContactId,"
     "OrganizationsLocaleId,OrganizationsAddress)VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)",
     {"[uint 7, uint 8]", "[QString 'i', QString null, QString null]", "[QString 'o', QString null, QString null]",
      "[QString 's', QString null, QString null]", "[QString 'k', QString null, QString null]",
      "[QString 'g', QString null, QString null]", "[uint 5, uint null]", "[uint 1, uint null]",
      "[QString 'a', QString null, QString null]"}},
    {"PersonsOfOrganizations",
     [](auto &tables, auto &query) {
         tables.preparePersonsInsert(query, {withId<Organization>(1), fullOrganization(), withId<Organization>(2),
                                             withContact(3, withId<Person>(6))});
     },
     "INSERT OR REPLACE INTO Persons (PersonsId,PersonsName,PersonsPhone,PersonsEmail,"
     "PersonsPostal)VALUES (?,?,?,?,?)",
     {"[uint 5, uint 6]", "[QString 'n', QString null, QString null]", "[QString 'p', QString null, QString null]",
      "[QString 'e', QString null, QString null]", "[QString 'o', QString null, QString null]"}},
    {"Locales",
     [](auto &tables, auto &query) {
         tables.prepareLocalesInsert(query, {fullLocale(), withId<Locale>(8)});
     },
     "INSERT OR REPLACE INTO Locales (LocalesId,LocalesIso,LocalesDescription)VALUES (?,?,?)",
     {"[uint 7, uint 8]", "[QString 'i', QString null, QString null]", "[QString 'd', QString null, QString null]"}},
    {"Contractors",
     [](auto &tables, auto &query) {
         tables.prepareContractorsInsert(query, {fullContractor(), withId<Contractor>(8)});
     },
     "INSERT OR REPLACE INTO Contractors (ContractorsId,ContractorsInn,ContractorsOrgId,ContractorsType,"
     "ContractorsOfficialName,ContractorsName,ContractorsExtra)VALUES (?,?,?,?,?,?,?)",
     {"[uint 7, uint 8]", "[QString 'i', QString null, QString null]", "[uint 2, uint null]", "[uint 1, uint null]",
      "[QString 'o', QString null, QString null]", "[QString 'n', QString null, QString null]",
      "[QString 'e', QString null, QString null]"}},
    {"ContractsWithStringNullsForStatusAndDate",
     [](auto &tables, auto &query) {
         tables.prepareContractsInsert(query, {fullContract(), withId<Contract>(8)});
     },
     "INSERT OR REPLACE INTO Contracts (ContractsId,ContractsNumber,ContractsContractorId,ContractsName,"
     "ContractsStatus,ContractsDate,ContractsDescription,ContractsExtra,ContractsUserId)VALUES (?,?,?,?,"
     "?,?,?,?,?)",
     {"[uint 7, uint 8]", "[QString 'n', QString null, QString null]", "[uint 4, uint null]",
      "[QString 'x', QString null, QString null]", "[uint 1, QString null]", "[uint 100, QString null]",
      "[QString 'd', QString null, QString null]", "[QString 'e', QString null, QString null]", "[uint 9, uint null]"}},
    {"DevicesWithAnUnsignedNullForTheirFlag",
     [](auto &tables, auto &query) {
         tables.prepareDevicesInsert(query, {fullDevice(), withId<Device>(8)});
     },
     "INSERT OR REPLACE INTO Devices (DevicesId,DevicesAccount,DevicesDomainId,DevicesConfigVersion,"
     "DevicesIsParted,DevicesClusterId)VALUES (?,?,?,?,?,?)",
     {"[uint 7, uint 8]", "[uint 1234, uint null]", "[uint 3, uint null]", "[uint 6, uint null]",
      "[bool true, uint null]", "[uint 2, uint null]"}},
    {"SectionsOfDevices",
     [](auto &tables, auto &query) { tables.prepareSectionsInsert(query, threeDevices()); },
     "INSERT OR REPLACE INTO Sections (SectionsDeviceId,SectionsSectionId,SectionsName,"
     "SectionsScheduleId,SectionsTracert,SectionsFlags,SectionsDetector,SectionsArm,SectionsPhysic,"
     "SectionsForm,SectionsDelay,SectionsUidType)VALUES (?,?,?,?,?,?,?,?,?,?,?,?)",
     {"[uint 7, uint 7, uint 9]", "[uint 7, uint 8, uint 7]", "[QString 'n', QString null, QString null, QString null]",
      "[uint 21, uint null, uint null]", "[uint 22, uint null, uint null]", "[uint 23, uint null, uint null]",
      "[uint 24, uint null, uint null]", "[uint 25, uint null, uint null]", "[uint 26, uint null, uint null]",
      "[uint 27, uint null, uint null]", "[uint 28, uint null, uint null]", "[uint 29, uint null, uint null]"}},
    {"ZonesOfDevices",
     [](auto &tables, auto &query) { tables.prepareZonesInsert(query, threeDevices()); },
     "INSERT OR REPLACE INTO Zones (ZonesDeviceId,ZonesSectionId,ZonesZoneId,ZonesName,ZonesDetector,"
     "ZonesPhysic,ZonesForm,ZonesFlags,ZonesDelay,ZonesScheduleId,ZonesTracert,ZonesUidType,"
     "ZonesArm)VALUES (?,?,?,?,?,?,?,?,?,?,?,?,?)",
     {"[uint 7, uint 7, uint 9]", "[uint 7, uint 7, uint 7]", "[uint 7, uint 8, uint 7]",
      "[QString 'n', QString null, QString null, QString null]", "[uint 21, uint null, uint null]",
      "[uint 22, uint null, uint null]", "[uint 23, uint null, uint null]", "[uint 24, uint null, uint null]",
      "[uint 25, uint null, uint null]", "[uint 26, uint null, uint null]", "[uint 27, uint null, uint null]",
      "[uint 28, uint null, uint null]", "[uint 29, uint null, uint null]"}},
    {"DeviceUsersOfDevices",
     [](auto &tables, auto &query) { tables.prepareDeviceUsersInsert(query, threeDevices()); },
     "INSERT OR REPLACE INTO DeviceUsers (DeviceUsersDeviceId,DeviceUsersDeviceUserId,DeviceUsersName,"
     "DeviceUsersComment,DeviceUsersPhone)VALUES (?,?,?,?,?)",
     {"[uint 7, uint 7, uint 9]", "[uint 7, uint 8, uint 7]", "[QString 'n', QString null, QString null, QString null]",
      "[QString 'c', QString null, QString null, QString null]",
      "[QString 'p', QString null, QString null, QString null]"}},
    {"LinksOfDevices",
     [](auto &tables, auto &query) { tables.prepareDeviceUserSectionLinksInsert(query, threeDevices()); },
     "INSERT OR IGNORE INTO DeviceUserSectionLinks (DeviceUserSectionLinksDeviceId,"
     "DeviceUserSectionLinksDeviceUserId,DeviceUserSectionLinksSectionId)VALUES (?,?,?)",
     {"[uint 7, uint 7, uint 7, uint 9]", "[uint 7, uint 7, uint 7, uint 7]", "[uint 31, uint 31, uint 32, uint 31]"}},
    {"SitesWithUnsignedNullsForSignedValues",
     [](auto &tables, auto &query) {
         tables.prepareSitesInsert(query, {fullSite(), withId<Site>(8)});
     },
     "INSERT OR REPLACE INTO Sites (SitesId,SitesName,SitesComment,SitesExtra,SitesIsCrossing,"
     "SitesDomainId,SitesAddress,SitesContractId,SitesContractStatus,SitesType,SitesCategory,"
     "SitesArmMode,SitesIsDelegated,SitesIsSitePlanExists)VALUES (?,?,?,?,?,?,?,?,?,?,?,?,?,?)",
     {"[uint 7, uint 8]", "[QString 'n', QString null, QString null]", "[QString 'c', QString null, QString null]",
      "[QString 'e', QString null, QString null]", "[bool true, bool null]", "[uint 3, uint null]",
      "[QString 'a', QString null, QString null]", "[int -1, uint null]", "[int -2, uint null]", "[uint 4, uint null]",
      "[uint 5, uint null]", "[uint 6, uint null]", "[bool false, bool null]", "[bool true, bool null]"}},
    {"LocationsOfSites",
     [](auto &tables, auto &query) {
         tables.prepareLocationsInsert(
             query, {withId<Site>(6), fullSite(), withLocation(8, withId<Location>(8)), withId<Site>(9)});
     },
     "INSERT OR REPLACE INTO Locations (LocationsId,LocationsLatitude,LocationsLongitude)VALUES (?,?,?)",
     {"[uint 7, uint 8]", "[double 55.75, double null]", "[double -37.5, double null]"}},
    {"Events",
     [](auto &tables, auto &query) {
         tables.prepareEventsInsert(query, {fullEvent(), withId<Event>(8)});
     },
     "INSERT OR REPLACE INTO Events (EventsId,EventsTime,EventsDeviceId,EventsSectionId,EventsZoneId,"
     "EventsActive,EventsClass,EventsDetector,EventsReason,EventsLocalTime,EventsChannel,EventsData,"
     "EventsReviewId,EventsReviewState,EventsUserId,EventsIsClosed,EventsAffect,EventsJData)VALUES (?,?,"
     "?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?)",
     {"[uint 7, uint 8]", "[uint 1000, uint null]", "[int -10, int null]", "[uint 20, uint null]",
      "[uint 30, uint null]", "[int 1, int null]", "[int 255, int null]", "[int 3, int null]", "[int 4, int null]",
      "[uint 4294967295, uint null]", "[int -5, int null]", "[QString 'd', QString null, QString null]",
      "[uint 6, uint null]", "[int 8, int null]", "[uint 9, uint null]", "[bool false, bool null]",
      "[bool true, bool null]", "[QString '{}', QString null, QString null]"}},
};
INSTANTIATE_TEST_SUITE_P(OfAnInsert, PreparedStatement, ::testing::ValuesIn(inserts), byName);

// The lists of texts hold their surplus null even where there is nothing to write.
const Statement emptyInserts[] = {
    {"Users",
     [](auto &tables, auto &query) { tables.prepareUsersInsert(query, {}); },
     "INSERT OR REPLACE INTO Users (UsersId,UsersName,UsersLogin,UsersContacts,UsersIsActive,"
     "UsersDomainId,UsersOrgId,UsersRoles,UsersPhone)VALUES (?,?,?,?,?,?,?,?,?)",
     {"[]", "[QString null]", "[QString null]", "[QString null]", "[]", "[]", "[]", "[]", "[]"}},
    {"Domains",
     [](auto &tables, auto &query) { tables.prepareDomainsInsert(query, {}); },
     "INSERT OR REPLACE INTO Domains (DomainsId,DomainsName,DomainsOrgId,DomainsLocaleId)VALUES (?, ?, ?,"
     " ?)",
     {"[]", "[QString null]", "[]", "[]"}},
    {"Organizations",
     [](auto &tables, auto &query) { tables.prepareOrganizationsInsert(query, {}); },
     "INSERT OR REPLACE INTO Organizations (OrganizationsId,OrganizationsInn,OrganizationsOfficialName,"
     "OrganizationsShortName,OrganizationsKpp,OrganizationsOgrn,OrganizationsContactId,"
     "OrganizationsLocaleId,OrganizationsAddress)VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)",
     {"[]", "[QString null]", "[QString null]", "[QString null]", "[QString null]", "[QString null]", "[]", "[]",
      "[QString null]"}},
    {"Persons",
     [](auto &tables, auto &query) { tables.preparePersonsInsert(query, {}); },
     "INSERT OR REPLACE INTO Persons (PersonsId,PersonsName,PersonsPhone,PersonsEmail,"
     "PersonsPostal)VALUES (?,?,?,?,?)",
     {"[]", "[QString null]", "[QString null]", "[QString null]", "[QString null]"}},
    {"Locales",
     [](auto &tables, auto &query) { tables.prepareLocalesInsert(query, {}); },
     "INSERT OR REPLACE INTO Locales (LocalesId,LocalesIso,LocalesDescription)VALUES (?,?,?)",
     {"[]", "[QString null]", "[QString null]"}},
    {"Contractors",
     [](auto &tables, auto &query) { tables.prepareContractorsInsert(query, {}); },
     "INSERT OR REPLACE INTO Contractors (ContractorsId,ContractorsInn,ContractorsOrgId,ContractorsType,"
     "ContractorsOfficialName,ContractorsName,ContractorsExtra)VALUES (?,?,?,?,?,?,?)",
     {"[]", "[QString null]", "[]", "[]", "[QString null]", "[QString null]", "[QString null]"}},
    {"Contracts",
     [](auto &tables, auto &query) { tables.prepareContractsInsert(query, {}); },
     "INSERT OR REPLACE INTO Contracts (ContractsId,ContractsNumber,ContractsContractorId,ContractsName,"
     "ContractsStatus,ContractsDate,ContractsDescription,ContractsExtra,ContractsUserId)VALUES (?,?,?,?,"
     "?,?,?,?,?)",
     {"[]", "[QString null]", "[]", "[QString null]", "[]", "[]", "[QString null]", "[QString null]", "[]"}},
    {"Devices",
     [](auto &tables, auto &query) { tables.prepareDevicesInsert(query, {}); },
     "INSERT OR REPLACE INTO Devices (DevicesId,DevicesAccount,DevicesDomainId,DevicesConfigVersion,"
     "DevicesIsParted,DevicesClusterId)VALUES (?,?,?,?,?,?)",
     {"[]", "[]", "[]", "[]", "[]", "[]"}},
    {"Sections",
     [](auto &tables, auto &query) { tables.prepareSectionsInsert(query, {}); },
     "INSERT OR REPLACE INTO Sections (SectionsDeviceId,SectionsSectionId,SectionsName,"
     "SectionsScheduleId,SectionsTracert,SectionsFlags,SectionsDetector,SectionsArm,SectionsPhysic,"
     "SectionsForm,SectionsDelay,SectionsUidType)VALUES (?,?,?,?,?,?,?,?,?,?,?,?)",
     {"[]", "[]", "[QString null]", "[]", "[]", "[]", "[]", "[]", "[]", "[]", "[]", "[]"}},
    {"Zones",
     [](auto &tables, auto &query) { tables.prepareZonesInsert(query, {}); },
     "INSERT OR REPLACE INTO Zones (ZonesDeviceId,ZonesSectionId,ZonesZoneId,ZonesName,ZonesDetector,"
     "ZonesPhysic,ZonesForm,ZonesFlags,ZonesDelay,ZonesScheduleId,ZonesTracert,ZonesUidType,"
     "ZonesArm)VALUES (?,?,?,?,?,?,?,?,?,?,?,?,?)",
     {"[]", "[]", "[]", "[QString null]", "[]", "[]", "[]", "[]", "[]", "[]", "[]", "[]", "[]"}},
    {"DeviceUsers",
     [](auto &tables, auto &query) { tables.prepareDeviceUsersInsert(query, {}); },
     "INSERT OR REPLACE INTO DeviceUsers (DeviceUsersDeviceId,DeviceUsersDeviceUserId,DeviceUsersName,"
     "DeviceUsersComment,DeviceUsersPhone)VALUES (?,?,?,?,?)",
     {"[]", "[]", "[QString null]", "[QString null]", "[QString null]"}},
    {"DeviceUserSectionLinks",
     [](auto &tables, auto &query) { tables.prepareDeviceUserSectionLinksInsert(query, {}); },
     "INSERT OR IGNORE INTO DeviceUserSectionLinks (DeviceUserSectionLinksDeviceId,"
     "DeviceUserSectionLinksDeviceUserId,DeviceUserSectionLinksSectionId)VALUES (?,?,?)",
     {"[]", "[]", "[]"}},
    {"Sites",
     [](auto &tables, auto &query) { tables.prepareSitesInsert(query, {}); },
     "INSERT OR REPLACE INTO Sites (SitesId,SitesName,SitesComment,SitesExtra,SitesIsCrossing,"
     "SitesDomainId,SitesAddress,SitesContractId,SitesContractStatus,SitesType,SitesCategory,"
     "SitesArmMode,SitesIsDelegated,SitesIsSitePlanExists)VALUES (?,?,?,?,?,?,?,?,?,?,?,?,?,?)",
     {"[]", "[QString null]", "[QString null]", "[QString null]", "[]", "[]", "[QString null]", "[]", "[]", "[]", "[]",
      "[]", "[]", "[]"}},
    {"Locations",
     [](auto &tables, auto &query) { tables.prepareLocationsInsert(query, {}); },
     "INSERT OR REPLACE INTO Locations (LocationsId,LocationsLatitude,LocationsLongitude)VALUES (?,?,?)",
     {"[]", "[]", "[]"}},
    {"Events",
     [](auto &tables, auto &query) { tables.prepareEventsInsert(query, {}); },
     "INSERT OR REPLACE INTO Events (EventsId,EventsTime,EventsDeviceId,EventsSectionId,EventsZoneId,"
     "EventsActive,EventsClass,EventsDetector,EventsReason,EventsLocalTime,EventsChannel,EventsData,"
     "EventsReviewId,EventsReviewState,EventsUserId,EventsIsClosed,EventsAffect,EventsJData)VALUES (?,?,"
     "?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?)",
     {"[]", "[]", "[]", "[]", "[]", "[]", "[]", "[]", "[]", "[]", "[]", "[QString null]", "[]", "[]", "[]", "[]", "[]",
      "[QString null]"}},
};
INSTANTIATE_TEST_SUITE_P(OfAnInsertOfNothing, PreparedStatement, ::testing::ValuesIn(emptyInserts), byName);

const std::string usersSelect =
    "SELECT UsersId,UsersName,UsersLogin,UsersContacts,UsersIsActive,UsersDomainId,UsersRoles,UsersPhone,"
    "UsersOrgId,DomainsId,DomainsName,DomainsOrgId,LocalesId,LocalesIso,LocalesDescription FROM Users "
    "LEFT JOIN Domains ON UsersDomainId = DomainsId LEFT JOIN Locales ON DomainsLocaleId = LocalesId";
const std::string domainsSelect =
    "SELECT DomainsId,DomainsName,DomainsOrgId,LocalesId,LocalesIso,LocalesDescription FROM Domains LEFT "
    "JOIN Locales ON DomainsLocaleId = LocalesId";
const std::string organizationsSelect =
    "SELECT OrganizationsId,OrganizationsInn,OrganizationsOfficialName,OrganizationsShortName,"
    "OrganizationsKpp,OrganizationsOgrn,OrganizationsAddress,LocalesId,LocalesIso,LocalesDescription,"
    "PersonsId,PersonsName,PersonsPhone,PersonsEmail,PersonsPostal FROM Organizations LEFT JOIN Locales "
    "ON OrganizationsLocaleId = LocalesId LEFT JOIN Persons ON OrganizationsContactId = PersonsId";
const std::string localesSelect = "SELECT LocalesId,LocalesIso,LocalesDescription FROM Locales";
const std::string contractorsSelect =
    "SELECT ContractorsId,ContractorsInn,ContractorsType,ContractorsOfficialName,ContractorsName,"
    "ContractorsExtra,ContractorsOrgId FROM Contractors";
const std::string contractsSelect =
    "SELECT ContractsId,ContractsNumber,ContractsName,ContractsStatus,ContractsDate,ContractsDescription,"
    "ContractsExtra,ContractorsId,ContractorsInn,ContractorsType,ContractorsOfficialName,ContractorsName,"
    "ContractorsExtra,ContractorsOrgId,UsersId,UsersName,UsersLogin,UsersContacts,UsersIsActive,"
    "UsersDomainId,UsersRoles,UsersPhone,UsersOrgId,DomainsId,DomainsName,DomainsOrgId,LocalesId,"
    "LocalesIso,LocalesDescription FROM Contracts LEFT JOIN Contractors ON ContractsContractorId = "
    "ContractorsId LEFT JOIN Users ON ContractsUserId = UsersId LEFT JOIN Domains ON UsersDomainId = "
    "DomainsId LEFT JOIN Locales ON DomainsLocaleId = LocalesId";
const std::string devicesSelect =
    "SELECT DevicesId,DevicesAccount,DevicesConfigVersion,DevicesIsParted,DevicesClusterId,"
    "DevicesDomainId,DomainsId,DomainsName,DomainsOrgId,LocalesId,LocalesIso,LocalesDescription FROM "
    "Devices LEFT JOIN Domains ON DevicesDomainId = DomainsId LEFT JOIN Locales ON DomainsLocaleId = "
    "LocalesId";
const std::string sectionsSelect =
    "SELECT SectionsSectionId,SectionsName,SectionsScheduleId,SectionsTracert,SectionsFlags,"
    "SectionsDetector,SectionsArm,SectionsPhysic,SectionsForm,SectionsDelay,SectionsUidType FROM Sections";
const std::string zonesSelect =
    "SELECT ZonesZoneId,ZonesName,ZonesDetector,ZonesPhysic,ZonesForm,ZonesFlags,ZonesDelay,"
    "ZonesScheduleId,ZonesTracert,ZonesUidType,ZonesArm FROM Zones";
const std::string sitesSelect =
    "SELECT SitesId,SitesName,SitesComment,SitesExtra,SitesIsCrossing,SitesAddress,SitesContractStatus,"
    "SitesType,SitesCategory,SitesArmMode,SitesIsDelegated,SitesDomainId,SitesContractId,"
    "SitesIsSitePlanExists,LocationsId,LocationsLatitude,LocationsLongitude,ContractsId,ContractsNumber,"
    "ContractsName,ContractsStatus,ContractsDate,ContractsDescription,ContractsExtra,ContractorsId,"
    "ContractorsInn,ContractorsType,ContractorsOfficialName,ContractorsName,ContractorsExtra,"
    "ContractorsOrgId,UsersId,UsersName,UsersLogin,UsersContacts,UsersIsActive,UsersDomainId,UsersRoles,"
    "UsersPhone,UsersOrgId,DomainsId,DomainsName,DomainsOrgId,LocalesId,LocalesIso,LocalesDescription "
    "FROM Sites LEFT JOIN Locations ON SitesId = LocationsId LEFT JOIN Contracts ON SitesContractId = "
    "ContractsId LEFT JOIN Contractors ON ContractsContractorId = ContractorsId LEFT JOIN Users ON "
    "ContractsUserId = UsersId LEFT JOIN Domains ON UsersDomainId = DomainsId LEFT JOIN Locales ON "
    "DomainsLocaleId = LocalesId";
const std::string innerEventsSelect =
    "SELECT EventsId,EventsTime,EventsDeviceId,EventsSectionId,EventsZoneId,EventsActive,EventsClass,"
    "EventsDetector,EventsReason,EventsLocalTime,EventsChannel,EventsData,EventsReviewId,"
    "EventsReviewState,EventsUserId,EventsIsClosed,EventsAffect,EventsJData,DevicesAccount,SectionsName,"
    "ZonesName,DomainsName FROM Events INNER JOIN Devices ON EventsDeviceId = DevicesId LEFT JOIN "
    "Sections ON EventsDeviceId = SectionsDeviceId AND EventsSectionId = SectionsSectionId LEFT JOIN "
    "Zones ON EventsDeviceId = ZonesDeviceId AND EventsSectionId = ZonesSectionId AND EventsZoneId = "
    "ZonesZoneId LEFT JOIN Users ON EventsUserId = UsersId LEFT JOIN Domains ON UsersDomainId = DomainsId";
const std::string leftEventsSelect =
    "SELECT EventsId,EventsTime,EventsDeviceId,EventsSectionId,EventsZoneId,EventsActive,EventsClass,"
    "EventsDetector,EventsReason,EventsLocalTime,EventsChannel,EventsData,EventsReviewId,"
    "EventsReviewState,EventsUserId,EventsIsClosed,EventsAffect,EventsJData,DevicesAccount,SectionsName,"
    "ZonesName,DomainsName FROM Events LEFT JOIN Devices ON EventsDeviceId = DevicesId LEFT JOIN "
    "Sections ON EventsDeviceId = SectionsDeviceId AND EventsSectionId = SectionsSectionId LEFT JOIN "
    "Zones ON EventsDeviceId = ZonesDeviceId AND EventsSectionId = ZonesSectionId AND EventsZoneId = "
    "ZonesZoneId LEFT JOIN Users ON EventsUserId = UsersId LEFT JOIN Domains ON UsersDomainId = DomainsId";

const Statement selects[] = {
    {"Users", [](auto &tables, auto &query) { tables.prepareUsersSelect(query); }, usersSelect, {}},
    {"UserById",
     [](auto &tables, auto &query) { tables.prepareUserSelectById(query, 4294967295u); },
     usersSelect + " WHERE UsersId = ?",
     {"uint 4294967295"}},
    {"UsersByField",
     [](auto &tables, auto &query) { tables.prepareUsersSelectByField(query, "UsersPhone", "5"); },
     usersSelect + " WHERE UsersPhone = ?",
     {"QString '5'"}},
    {"Domains", [](auto &tables, auto &query) { tables.prepareDomainsSelect(query); }, domainsSelect, {}},
    {"DomainById",
     [](auto &tables, auto &query) { tables.prepareDomainSelectById(query, 4294967295u); },
     domainsSelect + " WHERE DomainsId = ?",
     {"uint 4294967295"}},
    {"DomainsByField",
     [](auto &tables, auto &query) { tables.prepareDomainsSelectByField(query, "DomainsOrgId", "5"); },
     domainsSelect + " WHERE DomainsOrgId = ?",
     {"QString '5'"}},
    {"Organizations",
     [](auto &tables, auto &query) { tables.prepareOrganizationsSelect(query); },
     organizationsSelect,
     {}},
    {"OrganizationById",
     [](auto &tables, auto &query) { tables.prepareOrganizationSelectById(query, 4294967295u); },
     organizationsSelect + " WHERE OrganizationsId = ?",
     {"uint 4294967295"}},
    {"OrganizationsByField",
     [](auto &tables, auto &query) { tables.prepareOrganizationsSelectByField(query, "OrganizationsKpp", "5"); },
     organizationsSelect + " WHERE OrganizationsKpp = ?",
     {"QString '5'"}},
    {"Locales", [](auto &tables, auto &query) { tables.prepareLocalesSelect(query); }, localesSelect, {}},
    {"LocaleById",
     [](auto &tables, auto &query) { tables.prepareLocaleSelectById(query, 4294967295u); },
     localesSelect + " WHERE LocalesId = ?",
     {"uint 4294967295"}},
    {"LocalesByField",
     [](auto &tables, auto &query) { tables.prepareLocalesSelectByField(query, "LocalesIso", "5"); },
     localesSelect + " WHERE LocalesIso = ?",
     {"QString '5'"}},
    {"Contractors", [](auto &tables, auto &query) { tables.prepareContractorsSelect(query); }, contractorsSelect, {}},
    {"ContractorById",
     [](auto &tables, auto &query) { tables.prepareContractorSelectById(query, 4294967295u); },
     contractorsSelect + " WHERE ContractorsId = ?",
     {"uint 4294967295"}},
    {"ContractorsByField",
     [](auto &tables, auto &query) { tables.prepareContractorsSelectByField(query, "ContractorsType", "5"); },
     contractorsSelect + " WHERE ContractorsType = ?",
     {"QString '5'"}},
    {"Contracts", [](auto &tables, auto &query) { tables.prepareContractsSelect(query); }, contractsSelect, {}},
    {"ContractById",
     [](auto &tables, auto &query) { tables.prepareContractSelectById(query, 4294967295u); },
     contractsSelect + " WHERE ContractsId = ?",
     {"uint 4294967295"}},
    {"ContractsByField",
     [](auto &tables, auto &query) { tables.prepareContractsSelectByField(query, "ContractsContractorId", "5"); },
     contractsSelect + " WHERE ContractsContractorId = ?",
     {"QString '5'"}},
    {"Devices", [](auto &tables, auto &query) { tables.prepareDevicesSelect(query); }, devicesSelect, {}},
    {"DeviceById",
     [](auto &tables, auto &query) { tables.prepareDeviceSelectById(query, 4294967295u); },
     devicesSelect + " WHERE DevicesId = ?",
     {"uint 4294967295"}},
    {"DevicesByField",
     [](auto &tables, auto &query) { tables.prepareDevicesSelectByField(query, "DevicesIsParted", "5"); },
     devicesSelect + " WHERE DevicesIsParted = ?",
     {"QString '5'"}},
    {"Sites", [](auto &tables, auto &query) { tables.prepareSitesSelect(query); }, sitesSelect, {}},
    {"SiteById",
     [](auto &tables, auto &query) { tables.prepareSiteSelectById(query, 4294967295u); },
     sitesSelect + " WHERE SitesId = ?",
     {"uint 4294967295"}},
    {"SitesByField",
     [](auto &tables, auto &query) { tables.prepareSitesSelectByField(query, "SitesContractStatus", "5"); },
     sitesSelect + " WHERE SitesContractStatus = ?",
     {"QString '5'"}},
    {"UsersByAnEmptyValue",
     [](auto &tables, auto &query) { tables.prepareUsersSelectByField(query, "UsersName", ""); },
     usersSelect + " WHERE UsersName = ?",
     {"QString ''"}},
    {"PersonById",
     [](auto &tables, auto &query) { tables.preparePersonSelectById(query, 5); },
     "SELECT * FROM Persons WHERE PersonsId = ?",
     {"uint 5"}},
    {"LocationById",
     [](auto &tables, auto &query) { tables.prepareLocationSelectById(query, 5); },
     "SELECT * FROM Locations WHERE LocationsId = ?",
     {"uint 5"}},
    {"SectionById",
     [](auto &tables, auto &query) { tables.prepareSectionSelectById(query, 20, 10); },
     sectionsSelect + " WHERE SectionsDeviceId = ? AND SectionsSectionId = ?",
     {"uint 10", "uint 20"}},
    {"SectionsOfDevice",
     [](auto &tables, auto &query) { tables.prepareSectionsOfDeviceSelect(query, 10); },
     sectionsSelect + " WHERE SectionsDeviceId = ?",
     {"uint 10"}},
    {"SectionsByField",
     [](auto &tables, auto &query) { tables.prepareSectionsSelectByField(query, "SectionsArm", "5", 10); },
     sectionsSelect + " WHERE SectionsDeviceId = ? AND SectionsArm = ?",
     {"uint 10", "QString '5'"}},
    {"ZonesOfDevice",
     [](auto &tables, auto &query) { tables.prepareZonesOfDeviceSelect(query, 10); },
     zonesSelect + " WHERE ZonesDeviceId = ?",
     {"uint 10"}},
    {"ZonesOfSection",
     [](auto &tables, auto &query) { tables.prepareZonesOfSectionSelect(query, 10, 20); },
     zonesSelect + " WHERE ZonesDeviceId = ? AND ZonesSectionId = ?",
     {"uint 10", "uint 20"}},
    {"ZoneById",
     [](auto &tables, auto &query) { tables.prepareZoneSelectById(query, 30, 10, 20); },
     zonesSelect + " WHERE ZonesDeviceId = ? AND ZonesSectionId = ? AND ZonesZoneId = ?",
     {"uint 10", "uint 20", "uint 30"}},
    {"ZonesOfDeviceByField",
     [](auto &tables, auto &query) { tables.prepareZonesOfDeviceSelectByField(query, "ZonesForm", "5", 10); },
     zonesSelect + " WHERE ZonesDeviceId = ? AND ZonesForm = ?",
     {"uint 10", "QString '5'"}},
    {"ZonesOfSectionByField",
     [](auto &tables, auto &query) { tables.prepareZonesOfSectionSelectByField(query, "ZonesForm", "5", 10, 20); },
     zonesSelect + " WHERE ZonesDeviceId = ? AND ZonesSectionId = ? AND ZonesForm = ?",
     {"uint 10", "uint 20", "QString '5'"}},
    {"DeviceUsersOfDevice",
     [](auto &tables, auto &query) { tables.prepareDeviceUsersOfDeviceSelect(query, 10); },
     "SELECT DeviceUsersDeviceUserId,DeviceUsersName,DeviceUsersComment,DeviceUsersPhone FROM "
     "DeviceUsers WHERE DeviceUsersDeviceId = ?",
     {"uint 10"}},
    {"LinksOfDeviceUser",
     [](auto &tables, auto &query) { tables.prepareDeviceUserLinksSelect(query, 10, 4); },
     "SELECT * FROM DeviceUserSectionLinks WHERE DeviceUserSectionLinksDeviceId = ? AND "
     "DeviceUserSectionLinksDeviceUserId = ?",
     {"uint 10", "uint 4"}},
    {"SiteFields",
     [](auto &tables, auto &query) { tables.prepareSiteFieldsSelect(query, 7); },
     "SELECT SitesName,SitesAddress FROM Sites WHERE SitesId = ?",
     {"uint 7"}},
    {"EventByIdWhateverItsDevice",
     [](auto &tables, auto &query) { tables.prepareEventSelectById(query, 7); },
     leftEventsSelect + " WHERE EventsId = ?",
     {"uint 7"}},
    {"EventsByTime",
     [](auto &tables, auto &query) { tables.prepareEventsSelectByTime(query, 1, 4294967295u); },
     innerEventsSelect + " WHERE EventsTime BETWEEN ? AND ?",
     {"uint 1", "uint 4294967295"}},
    {"EventsByIdsInTheText",
     [](auto &tables, auto &query) {
         tables.prepareEventsSelectByIds(query, {7, 0, 4294967295u, 7});
     },
     innerEventsSelect + " WHERE EventsId IN (7,0,4294967295,7)",
     {}},
    {"EventsByOneId",
     [](auto &tables, auto &query) { tables.prepareEventsSelectByIds(query, {12}); },
     innerEventsSelect + " WHERE EventsId IN (12)",
     {}},
    {"AffectEvents",
     [](auto &tables, auto &query) { tables.prepareAffectEventsSelect(query); },
     innerEventsSelect + " WHERE EventsAffect = 1",
     {}},
    {"DeviceExists",
     [](auto &tables, auto &query) { tables.prepareDeviceExists(query, 10); },
     "SELECT DevicesId FROM Devices WHERE DevicesId = ?",
     {"uint 10"}},
    {"SectionExists",
     [](auto &tables, auto &query) { tables.prepareSectionExists(query, 10, 20); },
     "SELECT SectionsDeviceId,SectionsSectionId FROM Sections WHERE SectionsDeviceId = ? AND "
     "SectionsSectionId = ?",
     {"uint 10", "uint 20"}},
    {"SiteExists",
     [](auto &tables, auto &query) { tables.prepareSiteExists(query, 7); },
     "SELECT SitesId FROM Sites WHERE SitesId = ?",
     {"uint 7"}},
    {"EventExists",
     [](auto &tables, auto &query) { tables.prepareEventExists(query, 7); },
     "SELECT EventsId FROM Events WHERE EventsId = ?",
     {"uint 7"}},
    {"Session", [](auto &tables, auto &query) { tables.prepareSessionSelect(query); }, "SELECT * FROM Session", {}},
    {"Version",
     [](auto &tables, auto &query) { tables.prepareVersionSelect(query); },
     "SELECT VersionNumber FROM Version WHERE VersionId = 0",
     {}},
};
INSTANTIATE_TEST_SUITE_P(OfASelect, PreparedStatement, ::testing::ValuesIn(selects), byName);

const Statement writes[] = {
    {"DeviceFirmware",
     [](auto &tables, auto &query) { tables.prepareDeviceFwUpdate(query, fullDevice()); },
     "UPDATE Devices SET DevicesConfigVersion = ? WHERE DevicesId = ?",
     {"uint 6", "uint 7"}},
    {"DeviceFirmwareThatIsAbsent",
     [](auto &tables, auto &query) { tables.prepareDeviceFwUpdate(query, withId<Device>(8)); },
     "UPDATE Devices SET DevicesConfigVersion = ? WHERE DevicesId = ?",
     {"uint null", "uint 8"}},
    {"AffectFlagRemoval",
     [](auto &tables, auto &query) { tables.prepareAffectFlagRemoval(query, 7); },
     "UPDATE Events SET EventsAffect = 0 WHERE EventsId = ?",
     {"uint 7"}},
    {"EventsTimeIndex",
     [](auto &tables, auto &query) { tables.prepareEventsTimeIndex(query); },
     "CREATE INDEX IF NOT EXISTS EventsTimeIndex ON Events (EventsTime)",
     {}},
    {"ServerAddress",
     [](auto &tables, auto &query) { tables.prepareSessionInsert(query, "a b"); },
     "INSERT OR REPLACE INTO Session (SessionId,SessionIp)VALUES (0,?)",
     {"QString 'a b'"}},
    {"EmptyServerAddress",
     [](auto &tables, auto &query) { tables.prepareSessionInsert(query, ""); },
     "INSERT OR REPLACE INTO Session (SessionId,SessionIp)VALUES (0,?)",
     {"QString ''"}},
    {"VersionNumber",
     [](auto &tables, auto &query) { tables.prepareVersionInsert(query, "0.1"); },
     "INSERT OR REPLACE INTO Version (VersionId,VersionNumber)VALUES (0,?)",
     {"QString '0.1'"}},
};
INSTANTIATE_TEST_SUITE_P(OfAWrite, PreparedStatement, ::testing::ValuesIn(writes), byName);

const Statement deletes[] = {
    {"Users",
     [](auto &tables, auto &query) { tables.prepareDelete(query, "Users", "UsersId", 7); },
     "DELETE FROM Users WHERE UsersId = ?",
     {"uint 7"}},
    {"Domains",
     [](auto &tables, auto &query) { tables.prepareDelete(query, "Domains", "DomainsId", 7); },
     "DELETE FROM Domains WHERE DomainsId = ?",
     {"uint 7"}},
    {"Organizations",
     [](auto &tables, auto &query) { tables.prepareDelete(query, "Organizations", "OrganizationsId", 7); },
     "DELETE FROM Organizations WHERE OrganizationsId = ?",
     {"uint 7"}},
    {"Contractors",
     [](auto &tables, auto &query) { tables.prepareDelete(query, "Contractors", "ContractorsId", 7); },
     "DELETE FROM Contractors WHERE ContractorsId = ?",
     {"uint 7"}},
    {"Contracts",
     [](auto &tables, auto &query) { tables.prepareDelete(query, "Contracts", "ContractsId", 7); },
     "DELETE FROM Contracts WHERE ContractsId = ?",
     {"uint 7"}},
    {"Locations",
     [](auto &tables, auto &query) { tables.prepareDelete(query, "Locations", "LocationsId", 7); },
     "DELETE FROM Locations WHERE LocationsId = ?",
     {"uint 7"}},
    {"PersonOfOrganization",
     [](auto &tables, auto &query) { tables.preparePersonDeleteForOrganization(query, 7); },
     "DELETE FROM Persons WHERE PersonsId = (SELECT OrganizationsContactId FROM Organizations WHERE "
     "OrganizationsId = ?)",
     {"uint 7"}},
    {"Device",
     [](auto &tables, auto &query) { tables.prepareDeviceDelete(query, 10); },
     "DELETE FROM Devices WHERE DevicesId = ?",
     {"uint 10"}},
    {"SectionsOfDevice",
     [](auto &tables, auto &query) { tables.prepareSectionsOfDeviceDelete(query, 10); },
     "DELETE FROM Sections WHERE SectionsDeviceId = ?",
     {"uint 10"}},
    {"ZonesOfDevice",
     [](auto &tables, auto &query) { tables.prepareZonesOfDeviceDelete(query, 10); },
     "DELETE FROM Zones WHERE ZonesDeviceId = ?",
     {"uint 10"}},
    {"DeviceUsersOfDevice",
     [](auto &tables, auto &query) { tables.prepareDeviceUsersOfDeviceDelete(query, 10); },
     "DELETE FROM DeviceUsers WHERE DeviceUsersDeviceId = ?",
     {"uint 10"}},
    {"LinksOfDevice",
     [](auto &tables, auto &query) { tables.prepareLinksOfDeviceDelete(query, 10); },
     "DELETE FROM DeviceUserSectionLinks WHERE DeviceUserSectionLinksDeviceId = ?",
     {"uint 10"}},
    {"Section",
     [](auto &tables, auto &query) { tables.prepareSectionDelete(query, 10, 20); },
     "DELETE FROM Sections WHERE SectionsDeviceId = ? AND SectionsSectionId = ?",
     {"uint 10", "uint 20"}},
    {"ZonesOfSection",
     [](auto &tables, auto &query) { tables.prepareZonesOfSectionDelete(query, 10, 20); },
     "DELETE FROM Zones WHERE ZonesDeviceId = ? AND ZonesSectionId = ?",
     {"uint 10", "uint 20"}},
    {"LinksOfSection",
     [](auto &tables, auto &query) { tables.prepareLinksOfSectionDelete(query, 10, 20); },
     "DELETE FROM DeviceUserSectionLinks WHERE DeviceUserSectionLinksDeviceId = ? AND "
     "DeviceUserSectionLinksSectionId = ?",
     {"uint 10", "uint 20"}},
    {"Zone",
     [](auto &tables, auto &query) { tables.prepareZoneDelete(query, 10, 20, 30); },
     "DELETE FROM Zones WHERE ZonesDeviceId = ? AND ZonesSectionId = ? AND ZonesZoneId = ?",
     {"uint 10", "uint 20", "uint 30"}},
    {"Site",
     [](auto &tables, auto &query) { tables.prepareSiteDelete(query, 7); },
     "DELETE FROM Sites WHERE SitesId = ?",
     {"uint 7"}},
    {"EventsBeforeADate",
     [](auto &tables, auto &query) { tables.prepareEventsDeleteBeforeDate(query, 4294967295u); },
     "DELETE FROM Events WHERE EventsTime <= ? AND EventsAffect = 0",
     {"uint 4294967295"}},
    {"AllUsers", [](auto &tables, auto &query) { tables.prepareClear(query, "Users"); }, "DELETE FROM Users", {}},
    {"AllDomains", [](auto &tables, auto &query) { tables.prepareClear(query, "Domains"); }, "DELETE FROM Domains", {}},
    {"AllOrganizations",
     [](auto &tables, auto &query) { tables.prepareClear(query, "Organizations"); },
     "DELETE FROM Organizations",
     {}},
    {"AllLocales", [](auto &tables, auto &query) { tables.prepareClear(query, "Locales"); }, "DELETE FROM Locales", {}},
    {"AllPersons", [](auto &tables, auto &query) { tables.prepareClear(query, "Persons"); }, "DELETE FROM Persons", {}},
    {"AllContractors",
     [](auto &tables, auto &query) { tables.prepareClear(query, "Contractors"); },
     "DELETE FROM Contractors",
     {}},
    {"AllContracts",
     [](auto &tables, auto &query) { tables.prepareClear(query, "Contracts"); },
     "DELETE FROM Contracts",
     {}},
    {"AllZones", [](auto &tables, auto &query) { tables.prepareClear(query, "Zones"); }, "DELETE FROM Zones", {}},
    {"AllSections",
     [](auto &tables, auto &query) { tables.prepareClear(query, "Sections"); },
     "DELETE FROM Sections",
     {}},
    {"AllDeviceUsers",
     [](auto &tables, auto &query) { tables.prepareClear(query, "DeviceUsers"); },
     "DELETE FROM DeviceUsers",
     {}},
    {"AllDeviceUserSectionLinks",
     [](auto &tables, auto &query) { tables.prepareClear(query, "DeviceUserSectionLinks"); },
     "DELETE FROM DeviceUserSectionLinks",
     {}},
    {"AllDevices", [](auto &tables, auto &query) { tables.prepareClear(query, "Devices"); }, "DELETE FROM Devices", {}},
    {"AllLocations",
     [](auto &tables, auto &query) { tables.prepareClear(query, "Locations"); },
     "DELETE FROM Locations",
     {}},
    {"AllSites", [](auto &tables, auto &query) { tables.prepareClear(query, "Sites"); }, "DELETE FROM Sites", {}},
    {"AllEvents", [](auto &tables, auto &query) { tables.prepareClear(query, "Events"); }, "DELETE FROM Events", {}},
};
INSTANTIATE_TEST_SUITE_P(OfADelete, PreparedStatement, ::testing::ValuesIn(deletes), byName);

// ---- Partial statements ----

struct Upsert
{
    std::string name;
    std::function<void(const TableCatalog &, QSqlQuery &)> prepare;
    std::string text;
    Named bound;
};

void PrintTo(const Upsert &upsert, std::ostream *out)
{
    *out << upsert.name;
}

class PartialUpsert : public ::testing::TestWithParam<Upsert>, protected Connection
{
protected:
    PartialUpsert() { createTables(); }
};

TEST_P(PartialUpsert, NamesAndBindsWhatIsPresent)
{
    GetParam().prepare(tables, query);
    EXPECT_EQ(text(), GetParam().text);
    EXPECT_EQ(boundByName(), GetParam().bound);
    EXPECT_TRUE(runs()) << query.lastError().text().toStdString();
}

// The statement of a record with id 7 that holds what `set` gives it.
using Prepare = std::function<void(const TableCatalog &, QSqlQuery &)>;

template<class Record, class Set>
Prepare prepared(void (TableCatalog::*prepare)(QSqlQuery &, const Record &) const, Set set)
{
    Record record = withId<Record>(7);
    set(record);
    return [=](const TableCatalog &tables, QSqlQuery &query) { (tables.*prepare)(query, record); };
}

template<class Set>
Prepare contract(Set set)
{
    return prepared(&TableCatalog::prepareContractUpsert, set);
}
template<class Set>
Prepare contractor(Set set)
{
    return prepared(&TableCatalog::prepareContractorUpsert, set);
}
template<class Set>
Prepare domain(Set set)
{
    return prepared(&TableCatalog::prepareDomainUpsert, set);
}
template<class Set>
Prepare organization(Set set)
{
    return prepared(&TableCatalog::prepareOrganizationUpsert, set);
}
template<class Set>
Prepare user(Set set)
{
    return prepared(&TableCatalog::prepareUserUpsert, set);
}
template<class Set>
Prepare site(Set set)
{
    return prepared(&TableCatalog::prepareSiteUpsert, set);
}
template<class Set>
Prepare location(Set set)
{
    return prepared(&TableCatalog::prepareLocationReplace, set);
}
template<class Set>
Prepare person(Set set)
{
    return prepared(&TableCatalog::preparePersonReplace, set);
}
// In device 10.
template<class Set>
Prepare section(Set set)
{
    Section record = withId<Section>(7);
    set(record);
    return [=](const TableCatalog &tables, QSqlQuery &query) { tables.prepareSectionUpsert(query, record, 10); };
}
// In section 20 of device 10.
template<class Set>
Prepare zone(Set set)
{
    Zone record = withId<Zone>(7);
    set(record);
    return [=](const TableCatalog &tables, QSqlQuery &query) { tables.prepareZoneUpsert(query, record, 10, 20); };
}

const Upsert contractUpserts[] = {
    {"KeyOnly",
     contract([](auto &) {}),
     "INSERT INTO Contracts(ContractsId)VALUES(:1) ON CONFLICT(ContractsId) DO UPDATE SET ContractsId=:1 "
     "WHERE ContractsId=:1",
     {{":1", "uint 7"}}},
    {"NumberAlone",
     contract([](auto &r) { r.number = "n"; }),
     "INSERT INTO Contracts(ContractsId,ContractsNumber)VALUES(:1,:2) ON CONFLICT(ContractsId) DO UPDATE "
     "SET ContractsId=:1,ContractsNumber=:2 WHERE ContractsId=:1",
     {{":1", "uint 7"}, {":2", "QString 'n'"}}},
    {"ContractorAlone",
     contract([](auto &r) { r.contractor = withId<Contractor>(4); }),
     "INSERT INTO Contracts(ContractsId,ContractsContractorId)VALUES(:1,:3) ON CONFLICT(ContractsId) DO "
     "UPDATE SET ContractsId=:1,ContractsContractorId=:3 WHERE ContractsId=:1",
     {{":1", "uint 7"}, {":3", "uint 4"}}},
    {"NameAlone",
     contract([](auto &r) { r.name = "x"; }),
     "INSERT INTO Contracts(ContractsId,ContractsName)VALUES(:1,:4) ON CONFLICT(ContractsId) DO UPDATE "
     "SET ContractsId=:1,ContractsName=:4 WHERE ContractsId=:1",
     {{":1", "uint 7"}, {":4", "QString 'x'"}}},
    {"StatusAlone",
     contract([](auto &r) { r.status = 0u; }),
     "INSERT INTO Contracts(ContractsId,ContractsStatus)VALUES(:1,:5) ON CONFLICT(ContractsId) DO UPDATE "
     "SET ContractsId=:1,ContractsStatus=:5 WHERE ContractsId=:1",
     {{":1", "uint 7"}, {":5", "uint 0"}}},
    {"DateAlone",
     contract([](auto &r) { r.date = 4294967295u; }),
     "INSERT INTO Contracts(ContractsId,ContractsDate)VALUES(:1,:6) ON CONFLICT(ContractsId) DO UPDATE "
     "SET ContractsId=:1,ContractsDate=:6 WHERE ContractsId=:1",
     {{":1", "uint 7"}, {":6", "uint 4294967295"}}},
    {"DescriptionAlone",
     contract([](auto &r) { r.description = ""; }),
     "INSERT INTO Contracts(ContractsId,ContractsDescription)VALUES(:1,:7) ON CONFLICT(ContractsId) DO "
     "UPDATE SET ContractsId=:1,ContractsDescription=:7 WHERE ContractsId=:1",
     {{":1", "uint 7"}, {":7", "QString ''"}}},
    {"ExtraAlone",
     contract([](auto &r) { r.extra = "e"; }),
     "INSERT INTO Contracts(ContractsId,ContractsExtra)VALUES(:1,:8) ON CONFLICT(ContractsId) DO UPDATE "
     "SET ContractsId=:1,ContractsExtra=:8 WHERE ContractsId=:1",
     {{":1", "uint 7"}, {":8", "QString 'e'"}}},
    {"UserAlone",
     contract([](auto &r) { r.user = withId<User>(9); }),
     "INSERT INTO Contracts(ContractsId,ContractsUserId)VALUES(:1,:9) ON CONFLICT(ContractsId) DO UPDATE "
     "SET ContractsId=:1,ContractsUserId=:9 WHERE ContractsId=:1",
     {{":1", "uint 7"}, {":9", "uint 9"}}},
    {"NumberAndName",
     contract([](auto &r) {
         r.number = "n";
         r.name = "x";
     }),
     "INSERT INTO Contracts(ContractsId,ContractsNumber,ContractsName)VALUES(:1,:2,:4) ON "
     "CONFLICT(ContractsId) DO UPDATE SET ContractsId=:1,ContractsNumber=:2,ContractsName=:4 WHERE "
     "ContractsId=:1",
     {{":1", "uint 7"}, {":2", "QString 'n'"}, {":4", "QString 'x'"}}},
    {"AllFields",
     contract([](auto &r) {
         r.number = "n";
         r.contractor = withId<Contractor>(4);
         r.name = "x";
         r.status = 0u;
         r.date = 4294967295u;
         r.description = "";
         r.extra = "e";
         r.user = withId<User>(9);
     }),
     "INSERT INTO Contracts(ContractsId,ContractsNumber,ContractsContractorId,ContractsName,"
     "ContractsStatus,ContractsDate,ContractsDescription,ContractsExtra,ContractsUserId)VALUES(:1,:2,:3,"
     ":4,:5,:6,:7,:8,:9) ON CONFLICT(ContractsId) DO UPDATE SET ContractsId=:1,ContractsNumber=:2,"
     "ContractsContractorId=:3,ContractsName=:4,ContractsStatus=:5,ContractsDate=:6,"
     "ContractsDescription=:7,ContractsExtra=:8,ContractsUserId=:9 WHERE ContractsId=:1",
     {{":1", "uint 7"},
      {":2", "QString 'n'"},
      {":3", "uint 4"},
      {":4", "QString 'x'"},
      {":5", "uint 0"},
      {":6", "uint 4294967295"},
      {":7", "QString ''"},
      {":8", "QString 'e'"},
      {":9", "uint 9"}}},
};
INSTANTIATE_TEST_SUITE_P(OfAContract, PartialUpsert, ::testing::ValuesIn(contractUpserts), byName);

const Upsert contractorUpserts[] = {
    {"KeyOnly",
     contractor([](auto &) {}),
     "INSERT INTO Contractors(ContractorsId)VALUES(:1) ON CONFLICT(ContractorsId) DO UPDATE SET "
     "ContractorsId=:1 WHERE ContractorsId=:1",
     {{":1", "uint 7"}}},
    {"InnAlone",
     contractor([](auto &r) { r.inn = "i"; }),
     "INSERT INTO Contractors(ContractorsId,ContractorsInn)VALUES(:1,:2) ON CONFLICT(ContractorsId) DO "
     "UPDATE SET ContractorsId=:1,ContractorsInn=:2 WHERE ContractorsId=:1",
     {{":1", "uint 7"}, {":2", "QString 'i'"}}},
    {"OrgIdAlone",
     contractor([](auto &r) { r.orgId = 2u; }),
     "INSERT INTO Contractors(ContractorsId,ContractorsOrgId)VALUES(:1,:3) ON CONFLICT(ContractorsId) DO "
     "UPDATE SET ContractorsId=:1,ContractorsOrgId=:3 WHERE ContractorsId=:1",
     {{":1", "uint 7"}, {":3", "uint 2"}}},
    {"TypeAlone",
     contractor([](auto &r) { r.type = 0u; }),
     "INSERT INTO Contractors(ContractorsId,ContractorsType)VALUES(:1,:4) ON CONFLICT(ContractorsId) DO "
     "UPDATE SET ContractorsId=:1,ContractorsType=:4 WHERE ContractorsId=:1",
     {{":1", "uint 7"}, {":4", "uint 0"}}},
    {"OfficialNameAlone",
     contractor([](auto &r) { r.officialName = "o"; }),
     "INSERT INTO Contractors(ContractorsId,ContractorsOfficialName)VALUES(:1,:5) ON "
     "CONFLICT(ContractorsId) DO UPDATE SET ContractorsId=:1,ContractorsOfficialName=:5 WHERE "
     "ContractorsId=:1",
     {{":1", "uint 7"}, {":5", "QString 'o'"}}},
    {"NameAlone",
     contractor([](auto &r) { r.name = ""; }),
     "INSERT INTO Contractors(ContractorsId,ContractorsName)VALUES(:1,:6) ON CONFLICT(ContractorsId) DO "
     "UPDATE SET ContractorsId=:1,ContractorsName=:6 WHERE ContractorsId=:1",
     {{":1", "uint 7"}, {":6", "QString ''"}}},
    {"ExtraAlone",
     contractor([](auto &r) { r.extra = "e"; }),
     "INSERT INTO Contractors(ContractorsId,ContractorsExtra)VALUES(:1,:7) ON CONFLICT(ContractorsId) DO "
     "UPDATE SET ContractorsId=:1,ContractorsExtra=:7 WHERE ContractorsId=:1",
     {{":1", "uint 7"}, {":7", "QString 'e'"}}},
    {"AllFields",
     contractor([](auto &r) {
         r.inn = "i";
         r.orgId = 2u;
         r.type = 0u;
         r.officialName = "o";
         r.name = "";
         r.extra = "e";
     }),
     "INSERT INTO Contractors(ContractorsId,ContractorsInn,ContractorsOrgId,ContractorsType,"
     "ContractorsOfficialName,ContractorsName,ContractorsExtra)VALUES(:1,:2,:3,:4,:5,:6,:7) ON "
     "CONFLICT(ContractorsId) DO UPDATE SET ContractorsId=:1,ContractorsInn=:2,ContractorsOrgId=:3,"
     "ContractorsType=:4,ContractorsOfficialName=:5,ContractorsName=:6,ContractorsExtra=:7 WHERE "
     "ContractorsId=:1",
     {{":1", "uint 7"},
      {":2", "QString 'i'"},
      {":3", "uint 2"},
      {":4", "uint 0"},
      {":5", "QString 'o'"},
      {":6", "QString ''"},
      {":7", "QString 'e'"}}},
};
INSTANTIATE_TEST_SUITE_P(OfAContractor, PartialUpsert, ::testing::ValuesIn(contractorUpserts), byName);

const Upsert domainUpserts[] = {
    {"KeyOnly",
     domain([](auto &) {}),
     "INSERT INTO Domains(DomainsId)VALUES(:1) ON CONFLICT(DomainsId) DO UPDATE SET DomainsId=:1 WHERE "
     "DomainsId=:1",
     {{":1", "uint 7"}}},
    {"NameAlone",
     domain([](auto &r) { r.name = "n"; }),
     "INSERT INTO Domains(DomainsId,DomainsName)VALUES(:1,:2) ON CONFLICT(DomainsId) DO UPDATE SET "
     "DomainsId=:1,DomainsName=:2 WHERE DomainsId=:1",
     {{":1", "uint 7"}, {":2", "QString 'n'"}}},
    {"OrgIdAlone",
     domain([](auto &r) { r.orgId = 2u; }),
     "INSERT INTO Domains(DomainsId,DomainsOrgId)VALUES(:1,:3) ON CONFLICT(DomainsId) DO UPDATE SET "
     "DomainsId=:1,DomainsOrgId=:3 WHERE DomainsId=:1",
     {{":1", "uint 7"}, {":3", "uint 2"}}},
    {"LocaleAlone",
     domain([](auto &r) { r.locale = withId<Locale>(0); }),
     "INSERT INTO Domains(DomainsId,DomainsLocaleId)VALUES(:1,:4) ON CONFLICT(DomainsId) DO UPDATE SET "
     "DomainsId=:1,DomainsLocaleId=:4 WHERE DomainsId=:1",
     {{":1", "uint 7"}, {":4", "uint 0"}}},
    {"AllFields",
     domain([](auto &r) {
         r.name = "n";
         r.orgId = 2u;
         r.locale = withId<Locale>(0);
     }),
     "INSERT INTO Domains(DomainsId,DomainsName,DomainsOrgId,DomainsLocaleId)VALUES(:1,:2,:3,:4) ON "
     "CONFLICT(DomainsId) DO UPDATE SET DomainsId=:1,DomainsName=:2,DomainsOrgId=:3,DomainsLocaleId=:4 "
     "WHERE DomainsId=:1",
     {{":1", "uint 7"}, {":2", "QString 'n'"}, {":3", "uint 2"}, {":4", "uint 0"}}},
};
INSTANTIATE_TEST_SUITE_P(OfADomain, PartialUpsert, ::testing::ValuesIn(domainUpserts), byName);

const Upsert organizationUpserts[] = {
    {"KeyOnly",
     organization([](auto &) {}),
     "INSERT INTO Organizations(OrganizationsId)VALUES(:1) ON CONFLICT(OrganizationsId) DO UPDATE SET "
     "OrganizationsId=:1 WHERE OrganizationsId=:1",
     {{":1", "uint 7"}}},
    {"InnAlone",
     organization([](auto &r) { r.inn = "i"; }),
     "INSERT INTO Organizations(OrganizationsId,OrganizationsInn)VALUES(:1,:2) ON "
     "CONFLICT(OrganizationsId) DO UPDATE SET OrganizationsId=:1,OrganizationsInn=:2 WHERE "
     "OrganizationsId=:1",
     {{":1", "uint 7"}, {":2", "QString 'i'"}}},
    {"OfficialNameAlone",
     organization([](auto &r) { r.officialName = "o"; }),
     "INSERT INTO Organizations(OrganizationsId,OrganizationsOfficialName)VALUES(:1,:3) ON "
     "CONFLICT(OrganizationsId) DO UPDATE SET OrganizationsId=:1,OrganizationsOfficialName=:3 WHERE "
     "OrganizationsId=:1",
     {{":1", "uint 7"}, {":3", "QString 'o'"}}},
    {"ShortNameAlone",
     organization([](auto &r) { r.shortName = "s"; }),
     "INSERT INTO Organizations(OrganizationsId,OrganizationsShortName)VALUES(:1,:4) ON "
     "CONFLICT(OrganizationsId) DO UPDATE SET OrganizationsId=:1,OrganizationsShortName=:4 WHERE "
     "OrganizationsId=:1",
     {{":1", "uint 7"}, {":4", "QString 's'"}}},
    {"KppAlone",
     organization([](auto &r) { r.kpp = "k"; }),
     "INSERT INTO Organizations(OrganizationsId,OrganizationsKpp)VALUES(:1,:5) ON "
     "CONFLICT(OrganizationsId) DO UPDATE SET OrganizationsId=:1,OrganizationsKpp=:5 WHERE "
     "OrganizationsId=:1",
     {{":1", "uint 7"}, {":5", "QString 'k'"}}},
    {"OgrnAlone",
     organization([](auto &r) { r.ogrn = ""; }),
     "INSERT INTO Organizations(OrganizationsId,OrganizationsOgrn)VALUES(:1,:6) ON "
     "CONFLICT(OrganizationsId) DO UPDATE SET OrganizationsId=:1,OrganizationsOgrn=:6 WHERE "
     "OrganizationsId=:1",
     {{":1", "uint 7"}, {":6", "QString ''"}}},
    {"AddressAlone",
     organization([](auto &r) { r.address = "a"; }),
     "INSERT INTO Organizations(OrganizationsId,OrganizationsAddress)VALUES(:1,:7) ON "
     "CONFLICT(OrganizationsId) DO UPDATE SET OrganizationsId=:1,OrganizationsAddress=:7 WHERE "
     "OrganizationsId=:1",
     {{":1", "uint 7"}, {":7", "QString 'a'"}}},
    {"ContactAlone",
     organization([](auto &r) { r.contact = withId<Person>(5); }),
     "INSERT INTO Organizations(OrganizationsId,OrganizationsContactId)VALUES(:1,:8) ON "
     "CONFLICT(OrganizationsId) DO UPDATE SET OrganizationsId=:1,OrganizationsContactId=:8 WHERE "
     "OrganizationsId=:1",
     {{":1", "uint 7"}, {":8", "uint 5"}}},
    {"LocaleAlone",
     organization([](auto &r) { r.locale = withId<Locale>(1); }),
     "INSERT INTO Organizations(OrganizationsId,OrganizationsLocaleId)VALUES(:1,:9) ON "
     "CONFLICT(OrganizationsId) DO UPDATE SET OrganizationsId=:1,OrganizationsLocaleId=:9 WHERE "
     "OrganizationsId=:1",
     {{":1", "uint 7"}, {":9", "uint 1"}}},
    {"AllFields",
     organization([](auto &r) {
         r.inn = "i";
         r.officialName = "o";
         r.shortName = "s";
         r.kpp = "k";
         r.ogrn = "";
         r.address = "a";
         r.contact = withId<Person>(5);
         r.locale = withId<Locale>(1);
     }),
     "INSERT INTO Organizations(OrganizationsId,OrganizationsInn,OrganizationsOfficialName,"
     "OrganizationsShortName,OrganizationsKpp,OrganizationsOgrn,OrganizationsAddress,"
     "OrganizationsContactId,OrganizationsLocaleId)VALUES(:1,:2,:3,:4,:5,:6,:7,:8,:9) ON "
     "CONFLICT(OrganizationsId) DO UPDATE SET OrganizationsId=:1,OrganizationsInn=:2,"
     "OrganizationsOfficialName=:3,OrganizationsShortName=:4,OrganizationsKpp=:5,OrganizationsOgrn=:6,"
     "OrganizationsAddress=:7,OrganizationsContactId=:8,OrganizationsLocaleId=:9 WHERE OrganizationsId=:1",
     {{":1", "uint 7"},
      {":2", "QString 'i'"},
      {":3", "QString 'o'"},
      {":4", "QString 's'"},
      {":5", "QString 'k'"},
      {":6", "QString ''"},
      {":7", "QString 'a'"},
      {":8", "uint 5"},
      {":9", "uint 1"}}},
};
INSTANTIATE_TEST_SUITE_P(OfAnOrganization, PartialUpsert, ::testing::ValuesIn(organizationUpserts), byName);

const Upsert userUpserts[] = {
    {"KeyOnly",
     user([](auto &) {}),
     "INSERT INTO Users(UsersId)VALUES(:1) ON CONFLICT(UsersId) DO UPDATE SET UsersId=:1 WHERE UsersId=:1",
     {{":1", "uint 7"}}},
    {"NameAlone",
     user([](auto &r) { r.name = "n"; }),
     "INSERT INTO Users(UsersId,UsersName)VALUES(:1,:2) ON CONFLICT(UsersId) DO UPDATE SET UsersId=:1,"
     "UsersName=:2 WHERE UsersId=:1",
     {{":1", "uint 7"}, {":2", "QString 'n'"}}},
    {"LoginAlone",
     user([](auto &r) { r.login = "l"; }),
     "INSERT INTO Users(UsersId,UsersLogin)VALUES(:1,:3) ON CONFLICT(UsersId) DO UPDATE SET UsersId=:1,"
     "UsersLogin=:3 WHERE UsersId=:1",
     {{":1", "uint 7"}, {":3", "QString 'l'"}}},
    {"ContactsAlone",
     user([](auto &r) { r.contacts = ""; }),
     "INSERT INTO Users(UsersId,UsersContacts)VALUES(:1,:4) ON CONFLICT(UsersId) DO UPDATE SET "
     "UsersId=:1,UsersContacts=:4 WHERE UsersId=:1",
     {{":1", "uint 7"}, {":4", "QString ''"}}},
    {"IsActiveAlone",
     user([](auto &r) { r.isActive = false; }),
     "INSERT INTO Users(UsersId,UsersIsActive)VALUES(:1,:5) ON CONFLICT(UsersId) DO UPDATE SET "
     "UsersId=:1,UsersIsActive=:5 WHERE UsersId=:1",
     {{":1", "uint 7"}, {":5", "bool false"}}},
    {"DomainIdAlone",
     user([](auto &r) { r.domainId = 3u; }),
     "INSERT INTO Users(UsersId,UsersDomainId)VALUES(:1,:6) ON CONFLICT(UsersId) DO UPDATE SET "
     "UsersId=:1,UsersDomainId=:6 WHERE UsersId=:1",
     {{":1", "uint 7"}, {":6", "uint 3"}}},
    {"RolesAlone",
     user([](auto &r) { r.roles = 0u; }),
     "INSERT INTO Users(UsersId,UsersRoles)VALUES(:1,:7) ON CONFLICT(UsersId) DO UPDATE SET UsersId=:1,"
     "UsersRoles=:7 WHERE UsersId=:1",
     {{":1", "uint 7"}, {":7", "uint 0"}}},
    {"PhoneAlone",
     user([](auto &r) { r.phone = Q_UINT64_C(18446744073709551615); }),
     "INSERT INTO Users(UsersId,UsersPhone)VALUES(:1,:8) ON CONFLICT(UsersId) DO UPDATE SET UsersId=:1,"
     "UsersPhone=:8 WHERE UsersId=:1",
     {{":1", "uint 7"}, {":8", "qulonglong 18446744073709551615"}}},
    {"OrgIdAlone",
     user([](auto &r) { r.orgId = 2u; }),
     "INSERT INTO Users(UsersId,UsersOrgId)VALUES(:1,:9) ON CONFLICT(UsersId) DO UPDATE SET UsersId=:1,"
     "UsersOrgId=:9 WHERE UsersId=:1",
     {{":1", "uint 7"}, {":9", "uint 2"}}},
    {"AllFields",
     user([](auto &r) {
         r.name = "n";
         r.login = "l";
         r.contacts = "";
         r.isActive = false;
         r.domainId = 3u;
         r.roles = 0u;
         r.phone = Q_UINT64_C(18446744073709551615);
         r.orgId = 2u;
     }),
     "INSERT INTO Users(UsersId,UsersName,UsersLogin,UsersContacts,UsersIsActive,UsersDomainId,"
     "UsersRoles,UsersPhone,UsersOrgId)VALUES(:1,:2,:3,:4,:5,:6,:7,:8,:9) ON CONFLICT(UsersId) DO UPDATE "
     "SET UsersId=:1,UsersName=:2,UsersLogin=:3,UsersContacts=:4,UsersIsActive=:5,UsersDomainId=:6,"
     "UsersRoles=:7,UsersPhone=:8,UsersOrgId=:9 WHERE UsersId=:1",
     {{":1", "uint 7"},
      {":2", "QString 'n'"},
      {":3", "QString 'l'"},
      {":4", "QString ''"},
      {":5", "bool false"},
      {":6", "uint 3"},
      {":7", "uint 0"},
      {":8", "qulonglong 18446744073709551615"},
      {":9", "uint 2"}}},
    {"TheDomainItselfIsNotWritten",
     user([](auto &r) { r.domain = withId<Domain>(3); }),
     "INSERT INTO Users(UsersId)VALUES(:1) ON CONFLICT(UsersId) DO UPDATE SET UsersId=:1 WHERE UsersId=:1",
     {{":1", "uint 7"}}},
};
INSTANTIATE_TEST_SUITE_P(OfAUser, PartialUpsert, ::testing::ValuesIn(userUpserts), byName);

const Upsert siteUpserts[] = {
    {"KeyOnly",
     site([](auto &) {}),
     "INSERT INTO Sites(SitesId)VALUES(:a) ON CONFLICT(SitesId) DO UPDATE SET SitesId=:a WHERE SitesId=:a",
     {{":a", "uint 7"}}},
    {"NameAlone",
     site([](auto &r) { r.name = "n"; }),
     "INSERT INTO Sites(SitesId,SitesName)VALUES(:a,:b) ON CONFLICT(SitesId) DO UPDATE SET SitesId=:a,"
     "SitesName=:b WHERE SitesId=:a",
     {{":a", "uint 7"}, {":b", "QString 'n'"}}},
    {"CommentAlone",
     site([](auto &r) { r.comment = "c"; }),
     "INSERT INTO Sites(SitesId,SitesComment)VALUES(:a,:c) ON CONFLICT(SitesId) DO UPDATE SET SitesId=:a,"
     "SitesComment=:c WHERE SitesId=:a",
     {{":a", "uint 7"}, {":c", "QString 'c'"}}},
    {"ExtraAlone",
     site([](auto &r) { r.extra = ""; }),
     "INSERT INTO Sites(SitesId,SitesExtra)VALUES(:a,:d) ON CONFLICT(SitesId) DO UPDATE SET SitesId=:a,"
     "SitesExtra=:d WHERE SitesId=:a",
     {{":a", "uint 7"}, {":d", "QString ''"}}},
    {"IsCrossingAlone",
     site([](auto &r) { r.isCrossing = true; }),
     "INSERT INTO Sites(SitesId,SitesIsCrossing)VALUES(:a,:e) ON CONFLICT(SitesId) DO UPDATE SET "
     "SitesId=:a,SitesIsCrossing=:e WHERE SitesId=:a",
     {{":a", "uint 7"}, {":e", "bool true"}}},
    {"AddressAlone",
     site([](auto &r) { r.address = "a"; }),
     "INSERT INTO Sites(SitesId,SitesAddress)VALUES(:a,:f) ON CONFLICT(SitesId) DO UPDATE SET SitesId=:a,"
     "SitesAddress=:f WHERE SitesId=:a",
     {{":a", "uint 7"}, {":f", "QString 'a'"}}},
    {"ContractAlone",
     site([](auto &r) { r.contract = withId<Contract>(11); }),
     "INSERT INTO Sites(SitesId,SitesContractId)VALUES(:a,:g) ON CONFLICT(SitesId) DO UPDATE SET "
     "SitesId=:a,SitesContractId=:g WHERE SitesId=:a",
     {{":a", "uint 7"}, {":g", "uint 11"}}},
    {"ContractStatusAlone",
     site([](auto &r) { r.contractStatus = -2; }),
     "INSERT INTO Sites(SitesId,SitesContractStatus)VALUES(:a,:h) ON CONFLICT(SitesId) DO UPDATE SET "
     "SitesId=:a,SitesContractStatus=:h WHERE SitesId=:a",
     {{":a", "uint 7"}, {":h", "int -2"}}},
    {"TypeAlone",
     site([](auto &r) { r.type = 0u; }),
     "INSERT INTO Sites(SitesId,SitesType)VALUES(:a,:i) ON CONFLICT(SitesId) DO UPDATE SET SitesId=:a,"
     "SitesType=:i WHERE SitesId=:a",
     {{":a", "uint 7"}, {":i", "uint 0"}}},
    {"CategoryAlone",
     site([](auto &r) { r.category = 5u; }),
     "INSERT INTO Sites(SitesId,SitesCategory)VALUES(:a,:j) ON CONFLICT(SitesId) DO UPDATE SET "
     "SitesId=:a,SitesCategory=:j WHERE SitesId=:a",
     {{":a", "uint 7"}, {":j", "uint 5"}}},
    {"ArmModeAlone",
     site([](auto &r) { r.armMode = 6u; }),
     "INSERT INTO Sites(SitesId,SitesArmMode)VALUES(:a,:k) ON CONFLICT(SitesId) DO UPDATE SET SitesId=:a,"
     "SitesArmMode=:k WHERE SitesId=:a",
     {{":a", "uint 7"}, {":k", "uint 6"}}},
    {"IsDelegatedAlone",
     site([](auto &r) { r.isDelegated = false; }),
     "INSERT INTO Sites(SitesId,SitesIsDelegated)VALUES(:a,:l) ON CONFLICT(SitesId) DO UPDATE SET "
     "SitesId=:a,SitesIsDelegated=:l WHERE SitesId=:a",
     {{":a", "uint 7"}, {":l", "bool false"}}},
    {"DomainIdAlone",
     site([](auto &r) { r.domainId = 3u; }),
     "INSERT INTO Sites(SitesId,SitesDomainId)VALUES(:a,:m) ON CONFLICT(SitesId) DO UPDATE SET "
     "SitesId=:a,SitesDomainId=:m WHERE SitesId=:a",
     {{":a", "uint 7"}, {":m", "uint 3"}}},
    {"ContractIdAlone",
     site([](auto &r) { r.contractId = -1; }),
     "INSERT INTO Sites(SitesId,SitesContractId)VALUES(:a,:n) ON CONFLICT(SitesId) DO UPDATE SET "
     "SitesId=:a,SitesContractId=:n WHERE SitesId=:a",
     {{":a", "uint 7"}, {":n", "int -1"}}},
    {"IsSitePlanExistsAlone",
     site([](auto &r) { r.isSitePlanExists = true; }),
     "INSERT INTO Sites(SitesId,SitesIsSitePlanExists)VALUES(:a,:o) ON CONFLICT(SitesId) DO UPDATE SET "
     "SitesId=:a,SitesIsSitePlanExists=:o WHERE SitesId=:a",
     {{":a", "uint 7"}, {":o", "bool true"}}},
    {"ContractAndContractId",
     site([](auto &r) {
         r.contract = withId<Contract>(11);
         r.contractId = -1;
     }),
     "INSERT INTO Sites(SitesId,SitesContractId,SitesContractId)VALUES(:a,:g,:n) ON CONFLICT(SitesId) DO "
     "UPDATE SET SitesId=:a,SitesContractId=:g,SitesContractId=:n WHERE SitesId=:a",
     {{":a", "uint 7"}, {":g", "uint 11"}, {":n", "int -1"}}},
    {"AllFields",
     site([](auto &r) {
         r.name = "n";
         r.comment = "c";
         r.extra = "";
         r.isCrossing = true;
         r.address = "a";
         r.contract = withId<Contract>(11);
         r.contractStatus = -2;
         r.type = 0u;
         r.category = 5u;
         r.armMode = 6u;
         r.isDelegated = false;
         r.domainId = 3u;
         r.contractId = -1;
         r.isSitePlanExists = true;
     }),
     "INSERT INTO Sites(SitesId,SitesName,SitesComment,SitesExtra,SitesIsCrossing,SitesAddress,"
     "SitesContractId,SitesContractStatus,SitesType,SitesCategory,SitesArmMode,SitesIsDelegated,"
     "SitesDomainId,SitesContractId,SitesIsSitePlanExists)VALUES(:a,:b,:c,:d,:e,:f,:g,:h,:i,:j,:k,:l,:m,"
     ":n,:o) ON CONFLICT(SitesId) DO UPDATE SET SitesId=:a,SitesName=:b,SitesComment=:c,SitesExtra=:d,"
     "SitesIsCrossing=:e,SitesAddress=:f,SitesContractId=:g,SitesContractStatus=:h,SitesType=:i,"
     "SitesCategory=:j,SitesArmMode=:k,SitesIsDelegated=:l,SitesDomainId=:m,SitesContractId=:n,"
     "SitesIsSitePlanExists=:o WHERE SitesId=:a",
     {{":a", "uint 7"},
      {":b", "QString 'n'"},
      {":c", "QString 'c'"},
      {":d", "QString ''"},
      {":e", "bool true"},
      {":f", "QString 'a'"},
      {":g", "uint 11"},
      {":h", "int -2"},
      {":i", "uint 0"},
      {":j", "uint 5"},
      {":k", "uint 6"},
      {":l", "bool false"},
      {":m", "uint 3"},
      {":n", "int -1"},
      {":o", "bool true"}}},
    {"DomainLocationAndDevicesAreNotWritten",
     site([](auto &r) {
         r.domain = withId<Domain>(3);
         r.location = fullLocation();
         r.devices = {fullDevice()};
     }),
     "INSERT INTO Sites(SitesId)VALUES(:a) ON CONFLICT(SitesId) DO UPDATE SET SitesId=:a WHERE SitesId=:a",
     {{":a", "uint 7"}}},
};
INSTANTIATE_TEST_SUITE_P(OfASite, PartialUpsert, ::testing::ValuesIn(siteUpserts), byName);

const Upsert sectionUpserts[] = {
    {"KeyOnly",
     section([](auto &) {}),
     "INSERT INTO Sections(SectionsDeviceId,SectionsSectionId)VALUES(:1,:2) ON CONFLICT(SectionsDeviceId,"
     "SectionsSectionId) DO UPDATE SET SectionsDeviceId=:1,SectionsSectionId=:2 WHERE "
     "SectionsDeviceId=:1 AND SectionsSectionId=:2",
     {{":1", "uint 10"}, {":2", "uint 7"}}},
    {"NameAlone",
     section([](auto &r) { r.name = "n"; }),
     "INSERT INTO Sections(SectionsDeviceId,SectionsSectionId,SectionsName)VALUES(:1,:2,:3) ON "
     "CONFLICT(SectionsDeviceId,SectionsSectionId) DO UPDATE SET SectionsDeviceId=:1,"
     "SectionsSectionId=:2,SectionsName=:3 WHERE SectionsDeviceId=:1 AND SectionsSectionId=:2",
     {{":1", "uint 10"}, {":2", "uint 7"}, {":3", "QString 'n'"}}},
    {"ScheduleIdAlone",
     section([](auto &r) { r.scheduleId = 21u; }),
     "INSERT INTO Sections(SectionsDeviceId,SectionsSectionId,SectionsScheduleId)VALUES(:1,:2,:4) ON "
     "CONFLICT(SectionsDeviceId,SectionsSectionId) DO UPDATE SET SectionsDeviceId=:1,"
     "SectionsSectionId=:2,SectionsScheduleId=:4 WHERE SectionsDeviceId=:1 AND SectionsSectionId=:2",
     {{":1", "uint 10"}, {":2", "uint 7"}, {":4", "uint 21"}}},
    {"TracertAlone",
     section([](auto &r) { r.tracert = 22u; }),
     "INSERT INTO Sections(SectionsDeviceId,SectionsSectionId,SectionsTracert)VALUES(:1,:2,:5) ON "
     "CONFLICT(SectionsDeviceId,SectionsSectionId) DO UPDATE SET SectionsDeviceId=:1,"
     "SectionsSectionId=:2,SectionsTracert=:5 WHERE SectionsDeviceId=:1 AND SectionsSectionId=:2",
     {{":1", "uint 10"}, {":2", "uint 7"}, {":5", "uint 22"}}},
    {"FlagsAlone",
     section([](auto &r) { r.flags = 23u; }),
     "INSERT INTO Sections(SectionsDeviceId,SectionsSectionId,SectionsFlags)VALUES(:1,:2,:6) ON "
     "CONFLICT(SectionsDeviceId,SectionsSectionId) DO UPDATE SET SectionsDeviceId=:1,"
     "SectionsSectionId=:2,SectionsFlags=:6 WHERE SectionsDeviceId=:1 AND SectionsSectionId=:2",
     {{":1", "uint 10"}, {":2", "uint 7"}, {":6", "uint 23"}}},
    {"DetectorAlone",
     section([](auto &r) { r.detector = 24u; }),
     "INSERT INTO Sections(SectionsDeviceId,SectionsSectionId,SectionsDetector)VALUES(:1,:2,:7) ON "
     "CONFLICT(SectionsDeviceId,SectionsSectionId) DO UPDATE SET SectionsDeviceId=:1,"
     "SectionsSectionId=:2,SectionsDetector=:7 WHERE SectionsDeviceId=:1 AND SectionsSectionId=:2",
     {{":1", "uint 10"}, {":2", "uint 7"}, {":7", "uint 24"}}},
    {"ArmAlone",
     section([](auto &r) { r.arm = 25u; }),
     "INSERT INTO Sections(SectionsDeviceId,SectionsSectionId,SectionsArm)VALUES(:1,:2,:8) ON "
     "CONFLICT(SectionsDeviceId,SectionsSectionId) DO UPDATE SET SectionsDeviceId=:1,"
     "SectionsSectionId=:2,SectionsArm=:8 WHERE SectionsDeviceId=:1 AND SectionsSectionId=:2",
     {{":1", "uint 10"}, {":2", "uint 7"}, {":8", "uint 25"}}},
    {"PhysicAlone",
     section([](auto &r) { r.physic = 26u; }),
     "INSERT INTO Sections(SectionsDeviceId,SectionsSectionId,SectionsPhysic)VALUES(:1,:2,:9) ON "
     "CONFLICT(SectionsDeviceId,SectionsSectionId) DO UPDATE SET SectionsDeviceId=:1,"
     "SectionsSectionId=:2,SectionsPhysic=:9 WHERE SectionsDeviceId=:1 AND SectionsSectionId=:2",
     {{":1", "uint 10"}, {":2", "uint 7"}, {":9", "uint 26"}}},
    {"FormAlone",
     section([](auto &r) { r.form = 27u; }),
     "INSERT INTO Sections(SectionsDeviceId,SectionsSectionId,SectionsForm)VALUES(:1,:2,:10) ON "
     "CONFLICT(SectionsDeviceId,SectionsSectionId) DO UPDATE SET SectionsDeviceId=:1,"
     "SectionsSectionId=:2,SectionsForm=:10 WHERE SectionsDeviceId=:1 AND SectionsSectionId=:2",
     {{":1", "uint 10"}, {":2", "uint 7"}, {":10", "uint 27"}}},
    {"DelayAlone",
     section([](auto &r) { r.delay = 0u; }),
     "INSERT INTO Sections(SectionsDeviceId,SectionsSectionId,SectionsDelay)VALUES(:1,:2,:11) ON "
     "CONFLICT(SectionsDeviceId,SectionsSectionId) DO UPDATE SET SectionsDeviceId=:1,"
     "SectionsSectionId=:2,SectionsDelay=:11 WHERE SectionsDeviceId=:1 AND SectionsSectionId=:2",
     {{":1", "uint 10"}, {":2", "uint 7"}, {":11", "uint 0"}}},
    {"UidTypeAlone",
     section([](auto &r) { r.uidType = 29u; }),
     "INSERT INTO Sections(SectionsDeviceId,SectionsSectionId,SectionsUidType)VALUES(:1,:2,:12) ON "
     "CONFLICT(SectionsDeviceId,SectionsSectionId) DO UPDATE SET SectionsDeviceId=:1,"
     "SectionsSectionId=:2,SectionsUidType=:12 WHERE SectionsDeviceId=:1 AND SectionsSectionId=:2",
     {{":1", "uint 10"}, {":2", "uint 7"}, {":12", "uint 29"}}},
    {"AllFields",
     section([](auto &r) {
         r.name = "n";
         r.scheduleId = 21u;
         r.tracert = 22u;
         r.flags = 23u;
         r.detector = 24u;
         r.arm = 25u;
         r.physic = 26u;
         r.form = 27u;
         r.delay = 0u;
         r.uidType = 29u;
     }),
     "INSERT INTO Sections(SectionsDeviceId,SectionsSectionId,SectionsName,SectionsScheduleId,"
     "SectionsTracert,SectionsFlags,SectionsDetector,SectionsArm,SectionsPhysic,SectionsForm,"
     "SectionsDelay,SectionsUidType)VALUES(:1,:2,:3,:4,:5,:6,:7,:8,:9,:10,:11,:12) ON "
     "CONFLICT(SectionsDeviceId,SectionsSectionId) DO UPDATE SET SectionsDeviceId=:1,"
     "SectionsSectionId=:2,SectionsName=:3,SectionsScheduleId=:4,SectionsTracert=:5,SectionsFlags=:6,"
     "SectionsDetector=:7,SectionsArm=:8,SectionsPhysic=:9,SectionsForm=:10,SectionsDelay=:11,"
     "SectionsUidType=:12 WHERE SectionsDeviceId=:1 AND SectionsSectionId=:2",
     {{":1", "uint 10"},
      {":2", "uint 7"},
      {":3", "QString 'n'"},
      {":4", "uint 21"},
      {":5", "uint 22"},
      {":6", "uint 23"},
      {":7", "uint 24"},
      {":8", "uint 25"},
      {":9", "uint 26"},
      {":10", "uint 27"},
      {":11", "uint 0"},
      {":12", "uint 29"}}},
    {"ZonesAreNotWritten",
     section([](auto &r) { r.zones = {fullZone()}; }),
     "INSERT INTO Sections(SectionsDeviceId,SectionsSectionId)VALUES(:1,:2) ON "
     "CONFLICT(SectionsDeviceId,SectionsSectionId) DO UPDATE SET SectionsDeviceId=:1,SectionsSectionId=:2 "
     "WHERE SectionsDeviceId=:1 AND SectionsSectionId=:2",
     {{":1", "uint 10"}, {":2", "uint 7"}}},
};
INSTANTIATE_TEST_SUITE_P(OfASection, PartialUpsert, ::testing::ValuesIn(sectionUpserts), byName);

const Upsert zoneUpserts[] = {
    {"KeyOnly",
     zone([](auto &) {}),
     "INSERT INTO Zones(ZonesDeviceId,ZonesSectionId,ZonesZoneId)VALUES(:1,:2,:3) ON "
     "CONFLICT(ZonesDeviceId,ZonesZoneId) DO UPDATE SET ZonesDeviceId=:1,ZonesSectionId=:2,"
     "ZonesZoneId=:3 WHERE ZonesDeviceId=:1 AND ZonesZoneId=:3",
     {{":1", "uint 10"}, {":2", "uint 20"}, {":3", "uint 7"}}},
    {"NameAlone",
     zone([](auto &r) { r.name = "n"; }),
     "INSERT INTO Zones(ZonesDeviceId,ZonesSectionId,ZonesZoneId,ZonesName)VALUES(:1,:2,:3,:4) ON "
     "CONFLICT(ZonesDeviceId,ZonesZoneId) DO UPDATE SET ZonesDeviceId=:1,ZonesSectionId=:2,"
     "ZonesZoneId=:3,ZonesName=:4 WHERE ZonesDeviceId=:1 AND ZonesZoneId=:3",
     {{":1", "uint 10"}, {":2", "uint 20"}, {":3", "uint 7"}, {":4", "QString 'n'"}}},
    {"DetectorAlone",
     zone([](auto &r) { r.detector = 21u; }),
     "INSERT INTO Zones(ZonesDeviceId,ZonesSectionId,ZonesZoneId,ZonesDetector)VALUES(:1,:2,:3,:5) ON "
     "CONFLICT(ZonesDeviceId,ZonesZoneId) DO UPDATE SET ZonesDeviceId=:1,ZonesSectionId=:2,"
     "ZonesZoneId=:3,ZonesDetector=:5 WHERE ZonesDeviceId=:1 AND ZonesZoneId=:3",
     {{":1", "uint 10"}, {":2", "uint 20"}, {":3", "uint 7"}, {":5", "uint 21"}}},
    {"PhysicAlone",
     zone([](auto &r) { r.physic = 22u; }),
     "INSERT INTO Zones(ZonesDeviceId,ZonesSectionId,ZonesZoneId,ZonesPhysic)VALUES(:1,:2,:3,:6) ON "
     "CONFLICT(ZonesDeviceId,ZonesZoneId) DO UPDATE SET ZonesDeviceId=:1,ZonesSectionId=:2,"
     "ZonesZoneId=:3,ZonesPhysic=:6 WHERE ZonesDeviceId=:1 AND ZonesZoneId=:3",
     {{":1", "uint 10"}, {":2", "uint 20"}, {":3", "uint 7"}, {":6", "uint 22"}}},
    {"FormAlone",
     zone([](auto &r) { r.form = 23u; }),
     "INSERT INTO Zones(ZonesDeviceId,ZonesSectionId,ZonesZoneId,ZonesForm)VALUES(:1,:2,:3,:7) ON "
     "CONFLICT(ZonesDeviceId,ZonesZoneId) DO UPDATE SET ZonesDeviceId=:1,ZonesSectionId=:2,"
     "ZonesZoneId=:3,ZonesForm=:7 WHERE ZonesDeviceId=:1 AND ZonesZoneId=:3",
     {{":1", "uint 10"}, {":2", "uint 20"}, {":3", "uint 7"}, {":7", "uint 23"}}},
    {"FlagsAlone",
     zone([](auto &r) { r.flags = 24u; }),
     "INSERT INTO Zones(ZonesDeviceId,ZonesSectionId,ZonesZoneId,ZonesFlags)VALUES(:1,:2,:3,:8) ON "
     "CONFLICT(ZonesDeviceId,ZonesZoneId) DO UPDATE SET ZonesDeviceId=:1,ZonesSectionId=:2,"
     "ZonesZoneId=:3,ZonesFlags=:8 WHERE ZonesDeviceId=:1 AND ZonesZoneId=:3",
     {{":1", "uint 10"}, {":2", "uint 20"}, {":3", "uint 7"}, {":8", "uint 24"}}},
    {"DelayAlone",
     zone([](auto &r) { r.delay = 25u; }),
     "INSERT INTO Zones(ZonesDeviceId,ZonesSectionId,ZonesZoneId,ZonesDelay)VALUES(:1,:2,:3,:9) ON "
     "CONFLICT(ZonesDeviceId,ZonesZoneId) DO UPDATE SET ZonesDeviceId=:1,ZonesSectionId=:2,"
     "ZonesZoneId=:3,ZonesDelay=:9 WHERE ZonesDeviceId=:1 AND ZonesZoneId=:3",
     {{":1", "uint 10"}, {":2", "uint 20"}, {":3", "uint 7"}, {":9", "uint 25"}}},
    {"ScheduleIdAlone",
     zone([](auto &r) { r.scheduleId = 26u; }),
     "INSERT INTO Zones(ZonesDeviceId,ZonesSectionId,ZonesZoneId,ZonesScheduleId)VALUES(:1,:2,:3,:10) ON "
     "CONFLICT(ZonesDeviceId,ZonesZoneId) DO UPDATE SET ZonesDeviceId=:1,ZonesSectionId=:2,"
     "ZonesZoneId=:3,ZonesScheduleId=:10 WHERE ZonesDeviceId=:1 AND ZonesZoneId=:3",
     {{":1", "uint 10"}, {":2", "uint 20"}, {":3", "uint 7"}, {":10", "uint 26"}}},
    {"TracertAlone",
     zone([](auto &r) { r.tracert = 27u; }),
     "INSERT INTO Zones(ZonesDeviceId,ZonesSectionId,ZonesZoneId,ZonesTracert)VALUES(:1,:2,:3,:11) ON "
     "CONFLICT(ZonesDeviceId,ZonesZoneId) DO UPDATE SET ZonesDeviceId=:1,ZonesSectionId=:2,"
     "ZonesZoneId=:3,ZonesTracert=:11 WHERE ZonesDeviceId=:1 AND ZonesZoneId=:3",
     {{":1", "uint 10"}, {":2", "uint 20"}, {":3", "uint 7"}, {":11", "uint 27"}}},
    {"UidTypeAlone",
     zone([](auto &r) { r.uidType = 28u; }),
     "INSERT INTO Zones(ZonesDeviceId,ZonesSectionId,ZonesZoneId,ZonesUidType)VALUES(:1,:2,:3,:12) ON "
     "CONFLICT(ZonesDeviceId,ZonesZoneId) DO UPDATE SET ZonesDeviceId=:1,ZonesSectionId=:2,"
     "ZonesZoneId=:3,ZonesUidType=:12 WHERE ZonesDeviceId=:1 AND ZonesZoneId=:3",
     {{":1", "uint 10"}, {":2", "uint 20"}, {":3", "uint 7"}, {":12", "uint 28"}}},
    {"ArmAlone",
     zone([](auto &r) { r.arm = 0u; }),
     "INSERT INTO Zones(ZonesDeviceId,ZonesSectionId,ZonesZoneId,ZonesArm)VALUES(:1,:2,:3,:13) ON "
     "CONFLICT(ZonesDeviceId,ZonesZoneId) DO UPDATE SET ZonesDeviceId=:1,ZonesSectionId=:2,"
     "ZonesZoneId=:3,ZonesArm=:13 WHERE ZonesDeviceId=:1 AND ZonesZoneId=:3",
     {{":1", "uint 10"}, {":2", "uint 20"}, {":3", "uint 7"}, {":13", "uint 0"}}},
    {"AllFields",
     zone([](auto &r) {
         r.name = "n";
         r.detector = 21u;
         r.physic = 22u;
         r.form = 23u;
         r.flags = 24u;
         r.delay = 25u;
         r.scheduleId = 26u;
         r.tracert = 27u;
         r.uidType = 28u;
         r.arm = 0u;
     }),
     "INSERT INTO Zones(ZonesDeviceId,ZonesSectionId,ZonesZoneId,ZonesName,ZonesDetector,ZonesPhysic,"
     "ZonesForm,ZonesFlags,ZonesDelay,ZonesScheduleId,ZonesTracert,ZonesUidType,ZonesArm)VALUES(:1,:2,:3,"
     ":4,:5,:6,:7,:8,:9,:10,:11,:12,:13) ON CONFLICT(ZonesDeviceId,ZonesZoneId) DO UPDATE SET "
     "ZonesDeviceId=:1,ZonesSectionId=:2,ZonesZoneId=:3,ZonesName=:4,ZonesDetector=:5,ZonesPhysic=:6,"
     "ZonesForm=:7,ZonesFlags=:8,ZonesDelay=:9,ZonesScheduleId=:10,ZonesTracert=:11,ZonesUidType=:12,"
     "ZonesArm=:13 WHERE ZonesDeviceId=:1 AND ZonesZoneId=:3",
     {{":1", "uint 10"},
      {":2", "uint 20"},
      {":3", "uint 7"},
      {":4", "QString 'n'"},
      {":5", "uint 21"},
      {":6", "uint 22"},
      {":7", "uint 23"},
      {":8", "uint 24"},
      {":9", "uint 25"},
      {":10", "uint 26"},
      {":11", "uint 27"},
      {":12", "uint 28"},
      {":13", "uint 0"}}},
};
INSTANTIATE_TEST_SUITE_P(OfAZone, PartialUpsert, ::testing::ValuesIn(zoneUpserts), byName);

class PartialReplace : public PreparedStatement
{
};

TEST_P(PartialReplace, NamesAndBindsWhatIsPresentInOrder)
{
    GetParam().prepare(tables, query);
    EXPECT_EQ(text(), GetParam().text);
    EXPECT_EQ(bound(), GetParam().bound);
    EXPECT_TRUE(runs()) << query.lastError().text().toStdString();
}

const Statement locationReplaces[] = {
    {"KeyOnly", location([](auto &) {}), "INSERT OR REPLACE INTO Locations(LocationsId)VALUES(?)", {"uint 7"}},
    {"LatitudeAlone",
     location([](auto &r) { r.latitude = 0.0; }),
     "INSERT OR REPLACE INTO Locations(LocationsId,LocationsLatitude)VALUES(?,?)",
     {"uint 7", "double 0"}},
    {"LongitudeAlone",
     location([](auto &r) { r.longitude = -1.5; }),
     "INSERT OR REPLACE INTO Locations(LocationsId,LocationsLongitude)VALUES(?,?)",
     {"uint 7", "double -1.5"}},
    {"AllFields",
     location([](auto &r) {
         r.latitude = 0.0;
         r.longitude = -1.5;
     }),
     "INSERT OR REPLACE INTO Locations(LocationsId,LocationsLatitude,LocationsLongitude)VALUES(?,?,?)",
     {"uint 7", "double 0", "double -1.5"}},
};
INSTANTIATE_TEST_SUITE_P(OfALocation, PartialReplace, ::testing::ValuesIn(locationReplaces), byName);

const Statement personReplaces[] = {
    {"KeyOnly", person([](auto &) {}), "INSERT OR REPLACE INTO Persons(PersonsId)VALUES(?)", {"uint 7"}},
    {"NameAlone",
     person([](auto &r) { r.name = "n"; }),
     "INSERT OR REPLACE INTO Persons(PersonsId,PersonsName)VALUES(?,?)",
     {"uint 7", "QString 'n'"}},
    {"PhoneAlone",
     person([](auto &r) { r.phone = "p"; }),
     "INSERT OR REPLACE INTO Persons(PersonsId,PersonsPhone)VALUES(?,?)",
     {"uint 7", "QString 'p'"}},
    {"EmailAlone",
     person([](auto &r) { r.email = ""; }),
     "INSERT OR REPLACE INTO Persons(PersonsId,PersonsEmail)VALUES(?,?)",
     {"uint 7", "QString ''"}},
    {"PostalAlone",
     person([](auto &r) { r.postal = "o"; }),
     "INSERT OR REPLACE INTO Persons(PersonsId,PersonsPostal)VALUES(?,?)",
     {"uint 7", "QString 'o'"}},
    {"NameAndPostal",
     person([](auto &r) {
         r.name = "n";
         r.postal = "o";
     }),
     "INSERT OR REPLACE INTO Persons(PersonsId,PersonsName,PersonsPostal)VALUES(?,?,?)",
     {"uint 7", "QString 'n'", "QString 'o'"}},
    {"AllFields",
     person([](auto &r) {
         r.name = "n";
         r.phone = "p";
         r.email = "";
         r.postal = "o";
     }),
     "INSERT OR REPLACE INTO Persons(PersonsId,PersonsName,PersonsPhone,PersonsEmail,"
     "PersonsPostal)VALUES(?,?,?,?,?)",
     {"uint 7", "QString 'n'", "QString 'p'", "QString ''", "QString 'o'"}},
};
INSTANTIATE_TEST_SUITE_P(OfAPerson, PartialReplace, ::testing::ValuesIn(personReplaces), byName);

// ---- Running ----

class Statements : public ::testing::Test, protected Connection
{
protected:
    Statements() { createTables(); }

    // The values of the first column, in the order of their rows.
    Texts column(const QString &sql)
    {
        QSqlQuery other(QSqlDatabase::database("statements"));
        EXPECT_TRUE(other.exec(sql)) << other.lastError().text().toStdString();
        Texts values;
        while (other.next())
            values.push_back(shown(other.value(0)));
        return values;
    }
};

TEST_F(Statements, ABatchWritesARowForEachRecordAndNoneForTheSurplusNull)
{
    tables.prepareLocalesInsert(query, {fullLocale(), withId<Locale>(8)});
    ASSERT_TRUE(query.execBatch());
    EXPECT_EQ(column("SELECT LocalesId FROM Locales ORDER BY LocalesId"), (Texts{"qlonglong 7", "qlonglong 8"}));
}

TEST_F(Statements, ABatchOfNothingWritesNothing)
{
    tables.prepareLocalesInsert(query, {});
    ASSERT_TRUE(query.execBatch());
    EXPECT_EQ(column("SELECT LocalesId FROM Locales"), Texts());
}

TEST_F(Statements, ThePlaceOfEventIdsWithoutOneIsNothingThatSQLiteTakes)
{
    tables.prepareEventsSelectByIds(query, {});
    EXPECT_EQ(query.lastQuery().toStdString(), innerEventsSelect + " WHERE EventsId IN )");
    EXPECT_FALSE(query.exec());
}

TEST_F(Statements, ANumberedUpsertBindsANameThatOccursThreeTimesOnce)
{
    tables.prepareDomainUpsert(query, withId<Domain>(7));
    ASSERT_TRUE(query.exec());
    tables.prepareDomainUpsert(query, fullDomain());
    ASSERT_TRUE(query.exec());
    EXPECT_EQ(column("SELECT DomainsName FROM Domains"), (Texts{"QString 'n'"}));
}

// ---- Preparing again ----

TEST_F(Statements, TheSameTextIsBoundAnewAndItsSecondValuesWin)
{
    execute("INSERT INTO Zones(ZonesDeviceId,ZonesSectionId,ZonesZoneId) VALUES(1,2,5),(1,3,6)");
    tables.startOperation();
    tables.prepareZonesOfSectionSelect(query, 1, 2);
    ASSERT_TRUE(query.exec());
    ASSERT_TRUE(query.next());

    tables.prepareZonesOfSectionSelect(query, 1, 3);
    EXPECT_EQ(bound(), (Texts{"uint 1", "uint 3"}));
    ASSERT_TRUE(query.exec());
    ASSERT_TRUE(query.next());
    EXPECT_EQ(shown(query.value("ZonesZoneId")), "qlonglong 6");
    EXPECT_FALSE(query.next());
}

TEST_F(Statements, TheSameTextCanBeBoundAnewManyTimes)
{
    tables.startOperation();
    for (quint32 section = 0; section < 100; ++section) {
        tables.prepareZonesOfSectionSelect(query, 1, section);
        EXPECT_EQ(bound(), (Texts{"uint 1", "uint " + std::to_string(section)}));
        EXPECT_TRUE(query.exec());
    }
}

TEST_F(Statements, TheSameBatchIsBoundAnewAndItsSecondListsWin)
{
    tables.startOperation();
    tables.prepareLocalesInsert(query, {fullLocale()});
    ASSERT_TRUE(query.execBatch());

    tables.prepareLocalesInsert(query, {withId<Locale>(8), withId<Locale>(9)});
    EXPECT_EQ(bound(), (Texts{"[uint 8, uint 9]", "[QString null, QString null, QString null]",
                              "[QString null, QString null, QString null]"}));
    ASSERT_TRUE(query.execBatch());
    EXPECT_EQ(column("SELECT LocalesId FROM Locales ORDER BY LocalesId"),
              (Texts{"qlonglong 7", "qlonglong 8", "qlonglong 9"}));
}

TEST_F(Statements, RebindingWithoutRunningInBetweenReplacesTheValues)
{
    tables.startOperation();
    tables.prepareUserSelectById(query, 7);
    tables.prepareUserSelectById(query, 8);
    EXPECT_EQ(bound(), (Texts{"uint 8"}));
}

// Whether a statement was prepared or only bound shows when its table goes away: preparing complains at once.

TEST_F(Statements, WithinAnOperationTheSameTextIsNotPreparedAgain)
{
    tables.startOperation();
    tables.prepareLocaleSelectById(query, 1);
    execute("DROP TABLE Locales");

    tables.prepareLocaleSelectById(query, 2);
    EXPECT_FALSE(query.lastError().isValid());
    EXPECT_EQ(bound(), (Texts{"uint 2"}));
}

TEST_F(Statements, AnotherTextIsPrepared)
{
    tables.startOperation();
    tables.prepareLocaleSelectById(query, 1);
    execute("DROP TABLE Locales");

    tables.prepareLocalesSelectByField(query, "LocalesIso", "x");
    EXPECT_TRUE(query.lastError().isValid());
}

TEST_F(Statements, ATextThatAnotherOneReplacedIsPreparedAgain)
{
    tables.startOperation();
    tables.prepareLocaleSelectById(query, 1);
    tables.prepareUserSelectById(query, 1);
    execute("DROP TABLE Locales");

    tables.prepareLocaleSelectById(query, 2);
    EXPECT_TRUE(query.lastError().isValid());
}

TEST_F(Statements, AnOperationPreparesTheSameTextAnew)
{
    tables.startOperation();
    tables.prepareLocaleSelectById(query, 1);
    execute("DROP TABLE Locales");

    tables.startOperation();
    tables.prepareLocaleSelectById(query, 2);
    EXPECT_TRUE(query.lastError().isValid());
}

TEST_F(Statements, AnOperationPreparesAStatementThatFailedToPrepareBefore)
{
    execute("ALTER TABLE Locales RENAME TO Away");
    tables.startOperation();
    tables.prepareLocaleSelectById(query, 1);
    EXPECT_TRUE(query.lastError().isValid());
    execute("ALTER TABLE Away RENAME TO Locales");

    tables.startOperation();
    tables.prepareLocaleSelectById(query, 1);
    EXPECT_FALSE(query.lastError().isValid());
    EXPECT_TRUE(query.exec());
}

TEST_F(Statements, AStatementThatFailedToPrepareFailsToRunEachTimeItIsBound)
{
    execute("DROP TABLE Zones");
    tables.startOperation();
    for (quint32 section = 1; section <= 3; ++section) {
        tables.prepareZonesOfSectionSelect(query, 1, section);
        EXPECT_FALSE(query.exec());
        EXPECT_TRUE(query.lastError().isValid());
    }
}

TEST_F(Statements, AStatementThatFailedToPrepareIsPreparedAgainInTheSameOperation)
{
    execute("ALTER TABLE Zones RENAME TO Away");
    tables.startOperation();
    tables.prepareZonesOfSectionSelect(query, 1, 2);
    EXPECT_FALSE(query.exec());
    execute("ALTER TABLE Away RENAME TO Zones");

    tables.prepareZonesOfSectionSelect(query, 1, 3);
    EXPECT_EQ(bound(), (Texts{"uint 1", "uint 3"}));
    EXPECT_TRUE(query.exec());
}

TEST_F(Statements, APartialUpsertIsPreparedAnewEachTime)
{
    tables.startOperation();
    tables.prepareDomainUpsert(query, withId<Domain>(1));
    execute("DROP TABLE Domains");

    tables.prepareDomainUpsert(query, withId<Domain>(2));
    EXPECT_TRUE(query.lastError().isValid());
}

TEST_F(Statements, ATextPreparedByAnotherQueryIsPreparedInThisOne)
{
    QSqlQuery other(QSqlDatabase::database("statements"));
    tables.startOperation();
    tables.prepareLocaleSelectById(other, 1);
    tables.prepareLocaleSelectById(query, 2);

    EXPECT_EQ(bound(), (Texts{"uint 2"}));
    EXPECT_TRUE(query.exec());
}

} // namespace
