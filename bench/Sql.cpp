#include "Sql.h"

namespace bench::sql {

namespace {

// "?,?,?" for the columns of a list.
std::string places(const std::string &columns)
{
    std::string text = "?";
    for (const char character : columns)
        if (character == ',')
            text += ",?";
    return text;
}

std::string insert(const std::string &table, const std::string &columns, const std::string &verb = "INSERT OR REPLACE")
{
    return verb + " INTO " + table + " (" + columns + ")VALUES (" + places(columns) + ")";
}

// ---- Columns and joins that several selects share ----

const std::string domainColumns = "DomainsId,DomainsName,DomainsOrgId,LocalesId,LocalesIso,LocalesDescription";
const std::string localeJoin = " LEFT JOIN Locales ON DomainsLocaleId = LocalesId";

std::string domainJoin(const std::string &column)
{
    return " LEFT JOIN Domains ON " + column + " = DomainsId" + localeJoin;
}

const std::string userColumns = "UsersId,UsersName,UsersLogin,UsersContacts,UsersIsActive,UsersDomainId,UsersRoles,"
                                "UsersPhone,UsersOrgId,"
                              + domainColumns;

const std::string contractColumns = "ContractsId,ContractsNumber,ContractsName,ContractsStatus,ContractsDate,"
                                    "ContractsDescription,ContractsExtra,ContractorsId,ContractorsInn,ContractorsType,"
                                    "ContractorsOfficialName,ContractorsName,ContractorsExtra,ContractorsOrgId,"
                                  + userColumns;
const std::string contractJoins = " LEFT JOIN Contractors ON ContractsContractorId = ContractorsId"
                                  " LEFT JOIN Users ON ContractsUserId = UsersId"
                                + domainJoin("UsersDomainId");

const std::string eventColumns =
    "EventsId,EventsTime,EventsDeviceId,EventsSectionId,EventsZoneId,EventsActive,EventsClass,EventsDetector,"
    "EventsReason,EventsLocalTime,EventsChannel,EventsData,EventsReviewId,EventsReviewState,EventsUserId,"
    "EventsIsClosed,EventsAffect,EventsJData";

std::string eventsSelect(const std::string &deviceJoin)
{
    return "SELECT " + eventColumns + ",DevicesAccount,SectionsName,ZonesName,DomainsName FROM Events " + deviceJoin
         + " JOIN Devices ON EventsDeviceId = DevicesId"
           " LEFT JOIN Sections ON EventsDeviceId = SectionsDeviceId AND EventsSectionId = SectionsSectionId"
           " LEFT JOIN Zones ON EventsDeviceId = ZonesDeviceId AND EventsSectionId = ZonesSectionId"
           " AND EventsZoneId = ZonesZoneId"
           " LEFT JOIN Users ON EventsUserId = UsersId"
           " LEFT JOIN Domains ON UsersDomainId = DomainsId";
}

const std::string sectionColumns =
    "SectionsSectionId,SectionsName,SectionsScheduleId,SectionsTracert,SectionsFlags,SectionsDetector,SectionsArm,"
    "SectionsPhysic,SectionsForm,SectionsDelay,SectionsUidType";
const std::string zoneColumns = "ZonesZoneId,ZonesName,ZonesDetector,ZonesPhysic,ZonesForm,ZonesFlags,ZonesDelay,"
                                "ZonesScheduleId,ZonesTracert,ZonesUidType,ZonesArm";
const std::string deviceUserColumns = "DeviceUsersDeviceUserId,DeviceUsersName,DeviceUsersComment,DeviceUsersPhone";

} // namespace

const std::string begin = "BEGIN";
const std::string commit = "COMMIT";

// ---- Events ----

const std::string insertEvent = insert("Events", eventColumns);
const std::string eventsTimeIndex = "CREATE INDEX IF NOT EXISTS EventsTimeIndex ON Events (EventsTime)";
const std::string eventById = eventsSelect("LEFT") + " WHERE EventsId = ?";
const std::string eventOfDevice = eventsSelect("INNER") + " WHERE EventsId = ?";
const std::string eventsOfDevices = eventsSelect("INNER") + " WHERE EventsId IN ";
const std::string eventsByTime = eventsSelect("INNER") + " WHERE EventsTime BETWEEN ? AND ?";
const std::string deleteEventsBefore = "DELETE FROM Events WHERE EventsTime <= ? AND EventsAffect = 0";

// ---- Devices ----

const std::string insertDevice = insert("Devices", "DevicesId,DevicesAccount,DevicesDomainId,DevicesConfigVersion,"
                                                   "DevicesIsParted,DevicesClusterId");
const std::string insertSection = insert("Sections", "SectionsDeviceId," + sectionColumns);
const std::string insertZone = insert("Zones", "ZonesDeviceId,ZonesSectionId," + zoneColumns);
const std::string insertDeviceUser = insert("DeviceUsers", "DeviceUsersDeviceId," + deviceUserColumns);
const std::string insertLink = insert("DeviceUserSectionLinks",
                                      "DeviceUserSectionLinksDeviceId,DeviceUserSectionLinksDeviceUserId,"
                                      "DeviceUserSectionLinksSectionId",
                                      "INSERT OR IGNORE");

const std::string devices = "SELECT DevicesId,DevicesAccount,DevicesConfigVersion,DevicesIsParted,DevicesClusterId,"
                            "DevicesDomainId,"
                          + domainColumns + " FROM Devices" + domainJoin("DevicesDomainId");
const std::string deviceById = devices + " WHERE DevicesId = ?";
const std::string sectionsOfDevice = "SELECT " + sectionColumns + " FROM Sections WHERE SectionsDeviceId = ?";
const std::string zonesOfSection =
    "SELECT " + zoneColumns + " FROM Zones WHERE ZonesDeviceId = ? AND ZonesSectionId = ?";
const std::string usersOfDevice = "SELECT " + deviceUserColumns + " FROM DeviceUsers WHERE DeviceUsersDeviceId = ?";
const std::string linksOfUser = "SELECT * FROM DeviceUserSectionLinks WHERE DeviceUserSectionLinksDeviceId = ?"
                                " AND DeviceUserSectionLinksDeviceUserId = ?";

// ---- Users ----

const std::string insertUser = insert("Users", "UsersId,UsersName,UsersLogin,UsersContacts,UsersIsActive,UsersDomainId,"
                                               "UsersOrgId,UsersRoles,UsersPhone");
const std::string users = "SELECT " + userColumns + " FROM Users" + domainJoin("UsersDomainId");
const std::string userById = users + " WHERE UsersId = ?";
const std::string usersByLogin = users + " WHERE UsersLogin = ?";
const std::string mergeUser = [] {
    std::string text = "INSERT INTO Users(UsersId,UsersName,UsersLogin,UsersContacts,UsersIsActive,UsersDomainId,"
                       "UsersOrgId,UsersRoles,UsersPhone)VALUES(?,?,?,?,?,?,?,?,?) ON CONFLICT(UsersId) DO UPDATE SET ";
    for (const std::string column : {"UsersName", "UsersLogin", "UsersContacts", "UsersIsActive", "UsersDomainId",
                                     "UsersOrgId", "UsersRoles", "UsersPhone"})
        text += column + "=coalesce(excluded." + column + "," + column + "),";
    text.pop_back();
    return text;
}();

// ---- Sites ----

const std::string sites =
    "SELECT SitesId,SitesName,SitesComment,SitesExtra,SitesIsCrossing,SitesAddress,SitesContractStatus,SitesType,"
    "SitesCategory,SitesArmMode,SitesIsDelegated,SitesDomainId,SitesContractId,SitesIsSitePlanExists,LocationsId,"
    "LocationsLatitude,LocationsLongitude,"
    + contractColumns
    + " FROM Sites LEFT JOIN Locations ON SitesId = LocationsId LEFT JOIN Contracts ON SitesContractId = ContractsId"
    + contractJoins;
const std::string siteById = sites + " WHERE SitesId = ?";
const std::string domainById = "SELECT " + domainColumns + " FROM Domains" + localeJoin + " WHERE DomainsId = ?";

// ---- The file ----

const std::string version = "SELECT VersionNumber FROM Version WHERE VersionId = 0";
const std::string insertVersion = "INSERT OR REPLACE INTO Version (VersionId,VersionNumber)VALUES (0,'0.1')";

const std::vector<std::string> createTables = {
    "CREATE TABLE Users (UsersId UNSIGNED BIG INT PRIMARY KEY,UsersName VARCHAR(255),UsersLogin VARCHAR(255),"
    "UsersContacts VARCHAR(255),UsersIsActive BOOLEAN,UsersDomainId UNSIGNED BIG INT,UsersOrgId UNSIGNED BIG INT,"
    "UsersRoles UNSIGNED BIG INT,UsersPhone DOUBLE)",
    "CREATE TABLE Domains (DomainsId UNSIGNED BIG INT PRIMARY KEY,DomainsName VARCHAR(255),"
    "DomainsOrgId UNSIGNED BIG INT,DomainsLocaleId UNSIGNED BIG INT)",
    "CREATE TABLE Organizations (OrganizationsId UNSIGNED BIG INT PRIMARY KEY,OrganizationsInn VARCHAR(255),"
    "OrganizationsOfficialName VARCHAR(255),OrganizationsShortName VARCHAR(255),OrganizationsKpp VARCHAR(255),"
    "OrganizationsOgrn VARCHAR(255),OrganizationsContactId UNSIGNED BIG INT,OrganizationsLocaleId UNSIGNED BIG INT,"
    "OrganizationsAddress VARCHAR(255))",
    "CREATE TABLE Locales (LocalesId UNSIGNED BIG INT PRIMARY KEY,LocalesIso VARCHAR(255),"
    "LocalesDescription VARCHAR(255))",
    "CREATE TABLE Persons (PersonsId UNSIGNED BIG INT PRIMARY KEY,PersonsName VARCHAR(255),PersonsPhone VARCHAR(255),"
    "PersonsEmail VARCHAR(255),PersonsPostal VARCHAR(255))",
    "CREATE TABLE Contractors (ContractorsId UNSIGNED BIG INT PRIMARY KEY,ContractorsInn VARCHAR(255),"
    "ContractorsOrgId UNSIGNED BIG INT,ContractorsType UNSIGNED BIG INT,ContractorsOfficialName VARCHAR(255),"
    "ContractorsName VARCHAR(255),ContractorsExtra VARCHAR(255))",
    "CREATE TABLE Contracts (ContractsId UNSIGNED BIG INT PRIMARY KEY,ContractsNumber VARCHAR(255),"
    "ContractsContractorId UNSIGNED BIG INT,ContractsName VARCHAR(255),ContractsStatus UNSIGNED BIG INT,"
    "ContractsDate UNSIGNED BIG INT,ContractsDescription VARCHAR(255),ContractsExtra VARCHAR(255),"
    "ContractsUserId UNSIGNED BIG INT)",
    "CREATE TABLE Zones (ZonesDeviceId UNSIGNED BIG INT,ZonesSectionId UNSIGNED BIG INT,ZonesZoneId UNSIGNED BIG INT,"
    "ZonesName VARCHAR(255),ZonesDetector UNSIGNED BIG INT,ZonesPhysic UNSIGNED BIG INT,ZonesForm UNSIGNED BIG INT,"
    "ZonesFlags UNSIGNED BIG INT,ZonesDelay UNSIGNED BIG INT,ZonesScheduleId UNSIGNED BIG INT,"
    "ZonesTracert UNSIGNED BIG INT,ZonesUidType UNSIGNED BIG INT,ZonesArm UNSIGNED BIG INT,"
    "PRIMARY KEY(ZonesDeviceId,ZonesZoneId))",
    "CREATE TABLE Sections (SectionsDeviceId UNSIGNED BIG INT,SectionsSectionId UNSIGNED BIG INT,"
    "SectionsName VARCHAR(255),SectionsScheduleId UNSIGNED BIG INT,SectionsTracert UNSIGNED BIG INT,"
    "SectionsFlags UNSIGNED BIG INT,SectionsDetector UNSIGNED BIG INT,SectionsArm UNSIGNED BIG INT,"
    "SectionsPhysic UNSIGNED BIG INT,SectionsForm UNSIGNED BIG INT,SectionsDelay UNSIGNED BIG INT,"
    "SectionsUidType UNSIGNED BIG INT,PRIMARY KEY(SectionsDeviceId,SectionsSectionId))",
    "CREATE TABLE Devices (DevicesId UNSIGNED BIG INT PRIMARY KEY,DevicesAccount UNSIGNED BIG INT,"
    "DevicesDomainId UNSIGNED BIG INT,DevicesConfigVersion UNSIGNED BIG INT,DevicesIsParted BOOLEAN,"
    "DevicesClusterId UNSIGNED BIG INT)",
    "CREATE TABLE Locations (LocationsId UNSIGNED BIG INT PRIMARY KEY,LocationsLatitude DOUBLE,"
    "LocationsLongitude DOUBLE)",
    "CREATE TABLE Sites (SitesId UNSIGNED BIG INT PRIMARY KEY,SitesName VARCHAR(255),SitesComment VARCHAR(255),"
    "SitesExtra VARCHAR(255),SitesIsCrossing BOOLEAN,SitesDomainId UNSIGNED BIG INT,SitesAddress VARCHAR(255),"
    "SitesContractId UNSIGNED BIG INT,SitesContractStatus UNSIGNED BIG INT,SitesType UNSIGNED BIG INT,"
    "SitesCategory UNSIGNED BIG INT,SitesArmMode UNSIGNED BIG INT,SitesIsDelegated BOOLEAN,"
    "SitesIsSitePlanExists BOOLEAN)",
    "CREATE TABLE DeviceUsers (DeviceUsersDeviceId UNSIGNED BIG INT,DeviceUsersDeviceUserId UNSIGNED BIG INT,"
    "DeviceUsersName VARCHAR(255),DeviceUsersComment VARCHAR(255),DeviceUsersPhone VARCHAR(255),"
    "PRIMARY KEY(DeviceUsersDeviceId,DeviceUsersDeviceUserId))",
    "CREATE TABLE Events (EventsId UNSIGNED BIG INT PRIMARY KEY,EventsTime UNSIGNED BIG INT,"
    "EventsDeviceId UNSIGNED BIG INT,EventsSectionId UNSIGNED BIG INT,EventsZoneId UNSIGNED BIG INT,"
    "EventsActive BOOLEAN,EventsClass UNSIGNED BIG INT,EventsDetector UNSIGNED BIG INT,EventsReason UNSIGNED BIG INT,"
    "EventsLocalTime UNSIGNED BIG INT,EventsChannel UNSIGNED BIG INT,EventsData VARCHAR(255),"
    "EventsReviewId UNSIGNED BIG INT,EventsReviewState UNSIGNED BIG INT,EventsUserId UNSIGNED BIG INT,"
    "EventsIsClosed BOOLEAN,EventsAffect BOOLEAN,EventsJData VARCHAR(255))",
    "CREATE TABLE DeviceUserSectionLinks (DeviceUserSectionLinksDeviceId UNSIGNED BIG INT,"
    "DeviceUserSectionLinksDeviceUserId UNSIGNED BIG INT,DeviceUserSectionLinksSectionId UNSIGNED BIG INT,"
    "PRIMARY KEY(DeviceUserSectionLinksDeviceId,DeviceUserSectionLinksDeviceUserId,DeviceUserSectionLinksSectionId))",
    "CREATE TABLE Session (SessionId INTEGER PRIMARY KEY,SessionIp VARCHAR(255))",
    "CREATE TABLE Version (VersionId INTEGER PRIMARY KEY,VersionNumber VARCHAR(255))",
};

const std::vector<std::string> probes = {
    userById,
    domainById,
    "SELECT OrganizationsId,OrganizationsInn,OrganizationsOfficialName,OrganizationsShortName,OrganizationsKpp,"
    "OrganizationsOgrn,OrganizationsAddress,LocalesId,LocalesIso,LocalesDescription,PersonsId,PersonsName,PersonsPhone,"
    "PersonsEmail,PersonsPostal FROM Organizations LEFT JOIN Locales ON OrganizationsLocaleId = LocalesId"
    " LEFT JOIN Persons ON OrganizationsContactId = PersonsId WHERE OrganizationsId = ?",
    "SELECT LocalesId,LocalesIso,LocalesDescription FROM Locales WHERE LocalesId = ?",
    "SELECT * FROM Persons WHERE PersonsId = ?",
    "SELECT ContractorsId,ContractorsInn,ContractorsType,ContractorsOfficialName,ContractorsName,ContractorsExtra,"
    "ContractorsOrgId FROM Contractors WHERE ContractorsId = ?",
    "SELECT " + contractColumns + " FROM Contracts" + contractJoins + " WHERE ContractsId = ?",
    zonesOfSection + " AND ZonesZoneId = ?",
    sectionsOfDevice + " AND SectionsSectionId = ?",
    deviceById,
    "SELECT * FROM Locations WHERE LocationsId = ?",
    siteById,
    usersOfDevice,
    eventById,
    linksOfUser,
    "SELECT * FROM Session",
    version,
};

const std::vector<std::string> clearTables = [] {
    std::vector<std::string> texts;
    for (const char *table :
         {"Users", "Domains", "Organizations", "Locales", "Persons", "Contractors", "Contracts", "Zones", "Sections",
          "DeviceUsers", "DeviceUserSectionLinks", "Devices", "Locations", "Sites"})
        texts.push_back(std::string("DELETE FROM ") + table);
    return texts;
}();

} // namespace bench::sql
