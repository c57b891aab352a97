// Every table, with its statements and the readers of its rows. A builder leaves the query prepared and bound; its
// caller runs it. A row reader takes the row and the indexes of the result's columns.
#pragma once

#include "catalog/ContractsTable.h"
#include "catalog/DeviceUsersTable.h"
#include "catalog/DevicesTable.h"
#include "catalog/EventsTable.h"
#include "catalog/MaintenanceTables.h"
#include "catalog/OrganizationsTable.h"
#include "catalog/SectionsTable.h"
#include "catalog/SitesTable.h"
#include "catalog/ZonesTable.h"

#include <QSqlQuery>
#include <initializer_list>
#include <vector>

namespace brimlet {

class TableCatalog
{
public:
    UsersTable users;
    DomainsTable domains;
    OrganizationsTable organizations;
    LocalesTable locales;
    PersonsTable persons;
    ContractorsTable contractors;
    ContractsTable contracts;
    ZonesTable zones;
    SectionsTable sections;
    DeviceUsersTable deviceUsers;
    DevicesTable devices;
    DeviceUserSectionLinksTable deviceUserSectionLinks;
    LocationsTable locations;
    SitesTable sites;
    EventsTable events;
    SessionTable session;
    VersionTable version;

    // ---- Users ----
    void prepareUsersTable(QSqlQuery &query) const;
    void prepareUsersInsert(QSqlQuery &query, const std::vector<User> &records) const;
    void prepareUserUpsert(QSqlQuery &query, const User &user) const;
    void prepareUsersSelect(QSqlQuery &query) const;
    void prepareUserSelectById(QSqlQuery &query, quint32 id) const;
    void prepareUsersSelectByField(QSqlQuery &query, const QString &column, const QString &value) const;
    static void readUserRow(User &user, const QSqlQuery &query, const UserColumns &columns);

    // ---- Domains ----
    void prepareDomainsTable(QSqlQuery &query) const;
    void prepareDomainsInsert(QSqlQuery &query, const std::vector<Domain> &records) const;
    void prepareDomainUpsert(QSqlQuery &query, const Domain &domain) const;
    void prepareDomainsSelect(QSqlQuery &query) const;
    void prepareDomainSelectById(QSqlQuery &query, quint32 id) const;
    void prepareDomainsSelectByField(QSqlQuery &query, const QString &column, const QString &value) const;
    static void readDomainRow(Domain &domain, const QSqlQuery &query, const DomainColumns &columns);

    // ---- Organizations and persons ----
    void prepareOrganizationsTable(QSqlQuery &query) const;
    void prepareOrganizationsInsert(QSqlQuery &query, const std::vector<Organization> &records) const;
    void prepareOrganizationUpsert(QSqlQuery &query, const Organization &organization) const;
    void prepareOrganizationsSelect(QSqlQuery &query) const;
    void prepareOrganizationSelectById(QSqlQuery &query, quint32 id) const;
    void prepareOrganizationsSelectByField(QSqlQuery &query, const QString &column, const QString &value) const;
    static void readOrganizationRow(Organization &organization, const QSqlQuery &query,
                                    const OrganizationColumns &columns);

    void preparePersonsTable(QSqlQuery &query) const;
    void preparePersonsInsert(QSqlQuery &query, const std::vector<Organization> &records) const;
    void preparePersonReplace(QSqlQuery &query, const Person &person) const;
    void preparePersonSelectById(QSqlQuery &query, quint32 id) const;
    void preparePersonDeleteForOrganization(QSqlQuery &query, quint32 organizationId) const;
    static void readPersonRow(Person &person, const QSqlQuery &query, const PersonColumns &columns);

    // ---- Locales ----
    void prepareLocalesTable(QSqlQuery &query) const;
    void prepareLocalesInsert(QSqlQuery &query, const std::vector<Locale> &records) const;
    void prepareLocalesSelect(QSqlQuery &query) const;
    void prepareLocaleSelectById(QSqlQuery &query, quint32 id) const;
    void prepareLocalesSelectByField(QSqlQuery &query, const QString &column, const QString &value) const;
    static void readLocaleRow(Locale &locale, const QSqlQuery &query, const LocaleColumns &columns);

    // ---- Contractors ----
    void prepareContractorsTable(QSqlQuery &query) const;
    void prepareContractorsInsert(QSqlQuery &query, const std::vector<Contractor> &records) const;
    void prepareContractorUpsert(QSqlQuery &query, const Contractor &contractor) const;
    void prepareContractorsSelect(QSqlQuery &query) const;
    void prepareContractorSelectById(QSqlQuery &query, quint32 id) const;
    void prepareContractorsSelectByField(QSqlQuery &query, const QString &column, const QString &value) const;
    static void readContractorRow(Contractor &contractor, const QSqlQuery &query, const ContractorColumns &columns);

    // ---- Contracts ----
    void prepareContractsTable(QSqlQuery &query) const;
    void prepareContractsInsert(QSqlQuery &query, const std::vector<Contract> &records) const;
    void prepareContractUpsert(QSqlQuery &query, const Contract &contract) const;
    void prepareContractsSelect(QSqlQuery &query) const;
    void prepareContractSelectById(QSqlQuery &query, quint32 id) const;
    void prepareContractsSelectByField(QSqlQuery &query, const QString &column, const QString &value) const;
    static void readContractRow(Contract &contract, const QSqlQuery &query, const ContractColumns &columns);

    // ---- Zones ----
    void prepareZonesTable(QSqlQuery &query) const;
    void prepareZonesInsert(QSqlQuery &query, const std::vector<Device> &records) const;
    void prepareZoneUpsert(QSqlQuery &query, const Zone &zone, quint32 deviceId, quint32 sectionId) const;
    void prepareZonesOfDeviceSelect(QSqlQuery &query, quint32 deviceId) const;
    void prepareZonesOfSectionSelect(QSqlQuery &query, quint32 deviceId, quint32 sectionId) const;
    void prepareZoneSelectById(QSqlQuery &query, quint32 zoneId, quint32 deviceId, quint32 sectionId) const;
    void prepareZonesOfDeviceSelectByField(QSqlQuery &query, const QString &column, const QString &value,
                                           quint32 deviceId) const;
    void prepareZonesOfSectionSelectByField(QSqlQuery &query, const QString &column, const QString &value,
                                            quint32 deviceId, quint32 sectionId) const;
    void prepareZoneDelete(QSqlQuery &query, quint32 deviceId, quint32 sectionId, quint32 zoneId) const;
    void prepareZonesOfDeviceDelete(QSqlQuery &query, quint32 deviceId) const;
    void prepareZonesOfSectionDelete(QSqlQuery &query, quint32 deviceId, quint32 sectionId) const;
    static void readZoneRow(Zone &zone, const QSqlQuery &query, const ZoneColumns &columns);

    // ---- Sections ----
    void prepareSectionsTable(QSqlQuery &query) const;
    void prepareSectionsInsert(QSqlQuery &query, const std::vector<Device> &records) const;
    void prepareSectionUpsert(QSqlQuery &query, const Section &section, quint32 deviceId) const;
    void prepareSectionSelectById(QSqlQuery &query, quint32 sectionId, quint32 deviceId) const;
    void prepareSectionsOfDeviceSelect(QSqlQuery &query, quint32 deviceId) const;
    void prepareSectionsSelectByField(QSqlQuery &query, const QString &column, const QString &value,
                                      quint32 deviceId) const;
    void prepareSectionExists(QSqlQuery &query, quint32 deviceId, quint32 sectionId) const;
    void prepareSectionDelete(QSqlQuery &query, quint32 deviceId, quint32 sectionId) const;
    void prepareSectionsOfDeviceDelete(QSqlQuery &query, quint32 deviceId) const;
    static void readSectionRow(Section &section, const QSqlQuery &query, const SectionColumns &columns);

    // ---- Device users and their links to sections ----
    void prepareDeviceUsersTable(QSqlQuery &query) const;
    void prepareDeviceUsersInsert(QSqlQuery &query, const std::vector<Device> &records) const;
    void prepareDeviceUsersOfDeviceSelect(QSqlQuery &query, quint32 deviceId) const;
    void prepareDeviceUsersOfDeviceDelete(QSqlQuery &query, quint32 deviceId) const;
    static void readDeviceUserRow(DeviceUser &user, const QSqlQuery &query, const DeviceUserColumns &columns);

    void prepareDeviceUserSectionLinksTable(QSqlQuery &query) const;
    void prepareDeviceUserSectionLinksInsert(QSqlQuery &query, const std::vector<Device> &records) const;
    void prepareDeviceUserLinksSelect(QSqlQuery &query, quint32 deviceId, quint32 deviceUserId) const;
    void prepareLinksOfDeviceDelete(QSqlQuery &query, quint32 deviceId) const;
    void prepareLinksOfSectionDelete(QSqlQuery &query, quint32 deviceId, quint32 sectionId) const;
    static void readDeviceUserLinkRow(DeviceUserSectionLink &link, const QSqlQuery &query,
                                      const DeviceUserLinkColumns &columns);

    // ---- Devices ----
    void prepareDevicesTable(QSqlQuery &query) const;
    void prepareDevicesInsert(QSqlQuery &query, const std::vector<Device> &records) const;
    void prepareDevicesSelect(QSqlQuery &query) const;
    void prepareDeviceSelectById(QSqlQuery &query, quint32 id) const;
    void prepareDevicesSelectByField(QSqlQuery &query, const QString &column, const QString &value) const;
    void prepareDeviceFwUpdate(QSqlQuery &query, const Device &device) const;
    void prepareDeviceExists(QSqlQuery &query, quint32 id) const;
    void prepareDeviceDelete(QSqlQuery &query, quint32 id) const;
    static void readDeviceRow(Device &device, const QSqlQuery &query, const DeviceColumns &columns);

    // ---- Sites and locations ----
    void prepareSitesTable(QSqlQuery &query) const;
    void prepareSitesInsert(QSqlQuery &query, const std::vector<Site> &records) const;
    void prepareSiteUpsert(QSqlQuery &query, const Site &site) const;
    void prepareSitesSelect(QSqlQuery &query) const;
    void prepareSiteSelectById(QSqlQuery &query, quint32 id) const;
    void prepareSitesSelectByField(QSqlQuery &query, const QString &column, const QString &value) const;
    void prepareSiteExists(QSqlQuery &query, quint32 id) const;
    void prepareSiteFieldsSelect(QSqlQuery &query, quint32 id) const;
    void prepareSiteDelete(QSqlQuery &query, quint32 id) const;
    static void readSiteRow(Site &site, const QSqlQuery &query, const SiteColumns &columns);
    static void readSiteLabelRow(SiteLabel &label, const QSqlQuery &query, const SiteLabelColumns &columns);

    void prepareLocationsTable(QSqlQuery &query) const;
    void prepareLocationsInsert(QSqlQuery &query, const std::vector<Site> &records) const;
    void prepareLocationReplace(QSqlQuery &query, const Location &location) const;
    void prepareLocationSelectById(QSqlQuery &query, quint32 id) const;
    static void readLocationRow(Location &location, const QSqlQuery &query, const LocationColumns &columns);

    // ---- Events ----
    void prepareEventsTable(QSqlQuery &query) const;
    void prepareEventsTimeIndex(QSqlQuery &query) const;
    void prepareEventsInsert(QSqlQuery &query, const std::vector<Event> &records) const;
    void prepareEventSelectById(QSqlQuery &query, quint32 id) const;
    void prepareEventsSelectByTime(QSqlQuery &query, quint32 from, quint32 to) const;
    void prepareEventsSelectByIds(QSqlQuery &query, const std::vector<quint32> &ids) const;
    void prepareAffectEventsSelect(QSqlQuery &query) const;
    void prepareEventExists(QSqlQuery &query, quint32 id) const;
    void prepareAffectFlagRemoval(QSqlQuery &query, quint32 id) const;
    void prepareEventsDeleteBeforeDate(QSqlQuery &query, quint32 date) const;
    static void readEventRow(Event &event, const QSqlQuery &query, const EventColumns &columns);

    // ---- Session and version ----
    void prepareSessionTable(QSqlQuery &query) const;
    void prepareSessionInsert(QSqlQuery &query, const QString &ip) const;
    void prepareSessionSelect(QSqlQuery &query) const;
    void prepareVersionTable(QSqlQuery &query) const;
    void prepareVersionInsert(QSqlQuery &query, const QString &number) const;
    void prepareVersionSelect(QSqlQuery &query) const;

    // ---- Any table ----
    void prepareDelete(QSqlQuery &query, const QString &table, const QString &idColumn, quint32 id) const;
    void prepareClear(QSqlQuery &query, const QString &table) const;

    // Call it at the start of each operation of the store: it forgets the statement that the query holds prepared.
    void startOperation();

private:
    QString usersSelect() const;
    QString domainsSelect() const;
    QString domainSelectById() const;
    QString organizationsSelect() const;
    QString localesSelect() const;
    QString contractorsSelect() const;
    QString contractsSelect() const;
    QString zonesSelect() const;
    QString zonesOfDeviceSelect() const;
    QString zonesOfSectionSelect() const;
    QString sectionsSelect() const;
    QString sectionsOfDeviceSelect() const;
    QString deviceUserLinksSelect() const;
    QString devicesSelect() const;
    QString sitesSelect() const;
    QString prepareEventsSelect(bool innerDevices) const;

    // The joins that several selects share: a user's domain with its locale, a contract's contractor and user.
    QString domainJoin(const QString &domainIdColumn) const;
    QString contractJoins() const;
    QStringList userColumns() const;
    QStringList domainColumns() const;
    QStringList contractColumns() const;

    // Prepares a statement and binds its values. If the query still holds the same text, prepared in this operation,
    // it is rebound instead: the child queries of one operation often repeat one text.
    void prepare(QSqlQuery &query, const QString &text, std::initializer_list<QVariant> values = {}) const;

    // The same for a child query that repeats: its text, too, is built once until another child query follows.
    using MakeText = QString (TableCatalog::*)() const;
    void prepareChildQuery(QSqlQuery &query, MakeText makeText, std::initializer_list<QVariant> values) const;

    mutable bool isPreparedInOperation = false;
    mutable MakeText cachedMaker = nullptr;
    mutable QString cachedText;
};

} // namespace brimlet
