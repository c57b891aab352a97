// Everything that the library does to its file. An operation returns whether its statements ran; a row that does not
// exist is no failure but an empty optional or list. Each operation is a transaction, and a failed one leaves the file
// as it was. The order of the operations is part of the class.
#pragma once

#include "records/Event.h"
#include "records/Organization.h"
#include "records/Site.h"

#include <QObject>
#include <vector>

namespace brimlet::controller {

class Database : public QObject
{
    Q_OBJECT

public:
    // The file
    virtual bool exists(const QString &name) = 0;
    virtual bool create(const QString &name) = 0;
    virtual bool open(const QString &name) = 0;
    virtual bool recreate(const QString &name) = 0;
    virtual bool isVersionValid() = 0;
    virtual bool isSchemaValid() = 0;

    // Adding
    virtual bool addEvent(std::optional<Event> &event) = 0;
    virtual bool addEvents(std::vector<Event> &events) = 0;
    virtual bool addSites(const std::vector<Site> &sites) = 0;
    virtual bool addDevice(std::optional<Device> &device) = 0;
    virtual bool addDevices(const std::vector<Device> &devices) = 0;
    virtual bool addContracts(const std::vector<Contract> &contracts) = 0;
    virtual bool addContractors(const std::vector<Contractor> &contractors) = 0;
    virtual bool addLocales(const std::vector<Locale> &locales) = 0;
    virtual bool addOrganizations(const std::vector<Organization> &organizations) = 0;
    virtual bool addDomains(const std::vector<Domain> &domains) = 0;
    virtual bool addUsers(const std::vector<User> &users) = 0;

    // Reading
    virtual bool getAffectEvents(std::vector<Event> &events) = 0;
    virtual bool getEvents(std::vector<Event> &events, quint32 from, quint32 to) = 0;
    virtual bool getSite(std::optional<Site> &site, quint32 id) = 0;
    virtual bool getSitesByField(std::vector<Site> &sites, const QString &column, const QString &value) = 0;
    virtual bool getSites(std::vector<Site> &sites) = 0;
    virtual bool getDevice(std::optional<Device> &device, quint32 id) = 0;
    virtual bool getDevicesByField(std::vector<Device> &devices, const QString &column, const QString &value) = 0;
    virtual bool getDevices(std::vector<Device> &devices) = 0;
    virtual bool getSection(std::optional<Section> &section, quint32 sectionId, quint32 deviceId) = 0;
    virtual bool getSectionsByField(std::vector<Section> &sections, const QString &column, const QString &value,
                                    quint32 deviceId) = 0;
    virtual bool getSections(std::vector<Section> &sections, quint32 deviceId) = 0;
    virtual bool getZone(std::optional<Zone> &zone, quint32 zoneId, quint32 deviceId, quint32 sectionId) = 0;
    virtual bool getZonesForSectionByField(std::vector<Zone> &zones, const QString &column, const QString &value,
                                           quint32 deviceId, quint32 sectionId) = 0;
    virtual bool getZonesByField(std::vector<Zone> &zones, const QString &column, const QString &value,
                                 quint32 deviceId) = 0;
    virtual bool getZonesForSection(std::vector<Zone> &zones, quint32 deviceId, quint32 sectionId) = 0;
    virtual bool getZones(std::vector<Zone> &zones, quint32 deviceId) = 0;
    virtual bool getContract(std::optional<Contract> &contract, quint32 id) = 0;
    virtual bool getContractsByField(std::vector<Contract> &contracts, const QString &column, const QString &value) = 0;
    virtual bool getContracts(std::vector<Contract> &contracts) = 0;
    virtual bool getContractor(std::optional<Contractor> &contractor, quint32 id) = 0;
    virtual bool getContractorsByField(std::vector<Contractor> &contractors, const QString &column,
                                       const QString &value) = 0;
    virtual bool getContractors(std::vector<Contractor> &contractors) = 0;
    virtual bool getLocale(std::optional<Locale> &locale, quint32 id) = 0;
    virtual bool getLocalesByField(std::vector<Locale> &locales, const QString &column, const QString &value) = 0;
    virtual bool getLocales(std::vector<Locale> &locales) = 0;
    virtual bool getOrganization(std::optional<Organization> &organization, quint32 id) = 0;
    virtual bool getOrganizationsByField(std::vector<Organization> &organizations, const QString &column,
                                         const QString &value) = 0;
    virtual bool getOrganizations(std::vector<Organization> &organizations) = 0;
    virtual bool getDomain(std::optional<Domain> &domain, quint32 id) = 0;
    virtual bool getDomainsByField(std::vector<Domain> &domains, const QString &column, const QString &value) = 0;
    virtual bool getDomains(std::vector<Domain> &domains) = 0;
    virtual bool getUser(std::optional<User> &user, quint32 id) = 0;
    virtual bool getUsersByField(std::vector<User> &users, const QString &column, const QString &value) = 0;
    virtual bool getUsers(std::vector<User> &users) = 0;

    // Updating and removing
    virtual bool deleteUser(quint32 id) = 0;
    virtual bool updateSite(std::optional<Site> &site) = 0;
    virtual bool updateDeviceFw(std::optional<Device> &device) = 0;
    virtual bool updateSection(std::optional<Section> &section, quint32 deviceId) = 0;
    virtual bool updateZone(std::optional<Zone> &zone, quint32 deviceId, quint32 sectionId) = 0;
    virtual bool updateContract(std::optional<Contract> &contract) = 0;
    virtual bool updateContractor(std::optional<Contractor> &contractor) = 0;
    virtual bool updateOrganization(std::optional<Organization> &organization) = 0;
    virtual bool updateDomain(std::optional<Domain> &domain) = 0;
    virtual bool updateUser(std::optional<User> &user) = 0;
    virtual bool deleteDomain(quint32 id) = 0;
    virtual bool deleteOrganization(quint32 id) = 0;
    virtual bool deleteContractor(quint32 id) = 0;
    virtual bool deleteContract(quint32 id) = 0;
    virtual bool deleteZone(quint32 deviceId, quint32 sectionId, quint32 zoneId) = 0;
    virtual bool deleteSection(quint32 deviceId, quint32 sectionId) = 0;
    virtual bool isSectionExists(bool &exists, quint32 deviceId, quint32 sectionId) = 0;
    virtual bool isDeviceExists(bool &exists, quint32 id) = 0;
    virtual bool deleteDevice(quint32 id) = 0;
    virtual bool isSiteExists(bool &exists, quint32 id) = 0;
    virtual bool getSiteFields(std::optional<QString> &name, std::optional<QString> &address, quint32 id) = 0;
    virtual bool deleteSite(quint32 id) = 0;

    // Events, server address, clearing
    virtual bool clearEventsBeforeDate(quint32 date) = 0;
    virtual bool isEventExists(bool &exists, quint32 id) = 0;
    virtual bool removeAffectFlag(std::optional<Event> &event, quint32 id) = 0;
    virtual bool setServerIp(const QString &ip) = 0;
    virtual bool getServerIp(QString &ip) = 0;
    virtual bool clearAll() = 0;
    virtual bool clearAllExceptEvents() = 0;
};

} // namespace brimlet::controller
