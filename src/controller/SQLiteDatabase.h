// The store in its SQLite file: the steps of each operation, its transaction, and what a failure logs. TableCatalog has
// the names and the statements. One query serves all operations, so a reader that runs child queries for each row reads
// its own result to the end first.
#pragma once

#include "catalog/TableCatalog.h"
#include "controller/Database.h"

#include <QSqlDatabase>
#include <QSqlQuery>

namespace brimlet::controller {

class SQLiteDatabase : public Database
{
    Q_OBJECT

public:
    SQLiteDatabase();
    ~SQLiteDatabase() override;

    bool exists(const QString &name) override;
    bool create(const QString &name) override;
    bool open(const QString &name) override;
    bool recreate(const QString &name) override;
    bool isVersionValid() override;
    bool isSchemaValid() override;

    bool addEvent(std::optional<Event> &event) override;
    bool addEvents(std::vector<Event> &events) override;
    bool addSites(const std::vector<Site> &sites) override;
    bool addDevice(std::optional<Device> &device) override;
    bool addDevices(const std::vector<Device> &devices) override;
    bool addContracts(const std::vector<Contract> &contracts) override;
    bool addContractors(const std::vector<Contractor> &contractors) override;
    bool addLocales(const std::vector<Locale> &locales) override;
    bool addOrganizations(const std::vector<Organization> &organizations) override;
    bool addDomains(const std::vector<Domain> &domains) override;
    bool addUsers(const std::vector<User> &users) override;

    bool getAffectEvents(std::vector<Event> &events) override;
    bool getEvents(std::vector<Event> &events, quint32 from, quint32 to) override;
    bool getSite(std::optional<Site> &site, quint32 id) override;
    bool getSitesByField(std::vector<Site> &sites, const QString &column, const QString &value) override;
    bool getSites(std::vector<Site> &sites) override;
    bool getDevice(std::optional<Device> &device, quint32 id) override;
    bool getDevicesByField(std::vector<Device> &devices, const QString &column, const QString &value) override;
    bool getDevices(std::vector<Device> &devices) override;
    bool getSection(std::optional<Section> &section, quint32 sectionId, quint32 deviceId) override;
    bool getSectionsByField(std::vector<Section> &sections, const QString &column, const QString &value,
                            quint32 deviceId) override;
    bool getSections(std::vector<Section> &sections, quint32 deviceId) override;
    bool getZone(std::optional<Zone> &zone, quint32 zoneId, quint32 deviceId, quint32 sectionId) override;
    bool getZonesForSectionByField(std::vector<Zone> &zones, const QString &column, const QString &value,
                                   quint32 deviceId, quint32 sectionId) override;
    bool getZonesByField(std::vector<Zone> &zones, const QString &column, const QString &value,
                         quint32 deviceId) override;
    bool getZonesForSection(std::vector<Zone> &zones, quint32 deviceId, quint32 sectionId) override;
    bool getZones(std::vector<Zone> &zones, quint32 deviceId) override;
    bool getContract(std::optional<Contract> &contract, quint32 id) override;
    bool getContractsByField(std::vector<Contract> &contracts, const QString &column, const QString &value) override;
    bool getContracts(std::vector<Contract> &contracts) override;
    bool getContractor(std::optional<Contractor> &contractor, quint32 id) override;
    bool getContractorsByField(std::vector<Contractor> &contractors, const QString &column,
                               const QString &value) override;
    bool getContractors(std::vector<Contractor> &contractors) override;
    bool getLocale(std::optional<Locale> &locale, quint32 id) override;
    bool getLocalesByField(std::vector<Locale> &locales, const QString &column, const QString &value) override;
    bool getLocales(std::vector<Locale> &locales) override;
    bool getOrganization(std::optional<Organization> &organization, quint32 id) override;
    bool getOrganizationsByField(std::vector<Organization> &organizations, const QString &column,
                                 const QString &value) override;
    bool getOrganizations(std::vector<Organization> &organizations) override;
    bool getDomain(std::optional<Domain> &domain, quint32 id) override;
    bool getDomainsByField(std::vector<Domain> &domains, const QString &column, const QString &value) override;
    bool getDomains(std::vector<Domain> &domains) override;
    bool getUser(std::optional<User> &user, quint32 id) override;
    bool getUsersByField(std::vector<User> &users, const QString &column, const QString &value) override;
    bool getUsers(std::vector<User> &users) override;

    bool deleteUser(quint32 id) override;
    bool updateSite(std::optional<Site> &site) override;
    bool updateDeviceFw(std::optional<Device> &device) override;
    bool updateSection(std::optional<Section> &section, quint32 deviceId) override;
    bool updateZone(std::optional<Zone> &zone, quint32 deviceId, quint32 sectionId) override;
    bool updateContract(std::optional<Contract> &contract) override;
    bool updateContractor(std::optional<Contractor> &contractor) override;
    bool updateOrganization(std::optional<Organization> &organization) override;
    bool updateDomain(std::optional<Domain> &domain) override;
    bool updateUser(std::optional<User> &user) override;
    bool deleteDomain(quint32 id) override;
    bool deleteOrganization(quint32 id) override;
    bool deleteContractor(quint32 id) override;
    bool deleteContract(quint32 id) override;
    bool deleteZone(quint32 deviceId, quint32 sectionId, quint32 zoneId) override;
    bool deleteSection(quint32 deviceId, quint32 sectionId) override;
    bool isSectionExists(bool &exists, quint32 deviceId, quint32 sectionId) override;
    bool isDeviceExists(bool &exists, quint32 id) override;
    bool deleteDevice(quint32 id) override;
    bool isSiteExists(bool &exists, quint32 id) override;
    bool getSiteFields(std::optional<QString> &name, std::optional<QString> &address, quint32 id) override;
    bool deleteSite(quint32 id) override;

    bool clearEventsBeforeDate(quint32 date) override;
    bool isEventExists(bool &exists, quint32 id) override;
    bool removeAffectFlag(std::optional<Event> &event, quint32 id) override;
    bool setServerIp(const QString &ip) override;
    bool getServerIp(QString &ip) override;
    bool clearAll() override;
    bool clearAllExceptEvents() override;

private:
    bool createTables();

    // ---- Running a statement ----

    // The only two that run the prepared statement; a failure logs two debug lines.
    bool execute();
    bool executeBatch();
    // The same; a failure also logs the operation's error and rolls back (`fail`), and they return false.
    bool run(const char *error);
    bool runBatch(const char *error);
    bool fail(const char *error);
    void log(const char *message) const;
    void logLastError() const;

    // ---- Transactions ----

    void begin();
    bool commit(); // always true: the result of the commit is ignored

    // ---- Common steps (StorePatterns.h) ----

    // Runs the prepared select and reads its first row, or resets the optional if there is none.
    template<class Record, class Columns>
    bool readOne(std::optional<Record> &record, RowReader<Record, Columns> readRow, const char *error);
    // Runs the prepared select and appends all its rows.
    template<class Record, class Columns>
    bool readList(std::vector<Record> &records, RowReader<Record, Columns> readRow, const char *error);
    // Runs the prepared select and sets `exists` to whether it returned a row.
    bool readExists(bool &exists, const char *error);
    // Replaces the record by the stored row of its id.
    template<class Record, class... Parents>
    bool readBack(std::optional<Record> &record,
                  bool (SQLiteDatabase::*read)(std::optional<Record> &, quint32, Parents...), Parents... parents);
    // A whole operation that removes a row by its id.
    template<class Table>
    bool deleteById(const Table &table, quint32 id, const char *error);

    // ---- Internal readers and writers, which run in the transaction of their caller ----

    bool readUserById(std::optional<User> &user, quint32 id);
    bool readDomainById(std::optional<Domain> &domain, quint32 id);
    bool readOrganizationById(std::optional<Organization> &organization, quint32 id);
    bool readContractorById(std::optional<Contractor> &contractor, quint32 id);
    bool readContractById(std::optional<Contract> &contract, quint32 id);

    bool readZoneById(std::optional<Zone> &zone, quint32 zoneId, quint32 deviceId, quint32 sectionId);
    bool readZonesOfSection(std::vector<Zone> &zones, quint32 deviceId, quint32 sectionId);
    bool readSectionById(std::optional<Section> &section, quint32 sectionId, quint32 deviceId);
    bool readSectionsOfDevice(std::vector<Section> &sections, quint32 deviceId);
    void readZonesOfSections(std::vector<Section> &sections, quint32 deviceId);
    bool readDeviceUsers(std::vector<DeviceUser> &users, quint32 deviceId);
    bool readDeviceUserLinks(std::vector<DeviceUserSectionLink> &links, quint32 deviceId, quint32 deviceUserId);
    bool readDevice(std::optional<Device> &device, quint32 id);
    bool readAllDevices(std::vector<Device> &devices);
    bool readChildrenOf(std::vector<Device> &devices);
    bool readChildrenOf(Device &device);
    bool writeDevices(const std::vector<Device> &devices);

    bool getSiteById(std::optional<Site> &site, quint32 id);
    bool readDomainsOf(std::vector<Site> &sites);
    bool readDomainOf(Site &site);
    bool writeSites(const std::vector<Site> &sites);

    bool getEventById(std::optional<Event> &event, quint32 id);
    bool getEventsByIds(std::vector<Event> &events, const std::vector<quint32> &ids);
    bool writeEvents(const std::vector<Event> &events);

    bool clearTables();

    QString path;
    QSqlDatabase database;
    QSqlQuery query;
    TableCatalog tables;
};

} // namespace brimlet::controller
