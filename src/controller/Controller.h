// The one instance behind the exported functions: it owns the store, launches it, and maps the results of its
// operations to result codes. A method calls one or two operations of the store and opens no transaction itself.
#pragma once

#include "brimlet/ResultCodes.h"
#include "controller/Database.h"

#include <QObject>
#include <atomic>
#include <memory>

namespace brimlet::controller {

class Controller : public QObject
{
    Q_OBJECT

public:
    Controller();
    ~Controller() override;

    // Opens, creates or replaces the file of that name. Call it before anything else.
    void launch(const QString &name);
    quint32 getState() const { return state.load(std::memory_order_acquire); }
    quint32 getLaunchResult() const { return launchResult; }

    // ---- Locales ----
    BrimletResult addLocales(const std::vector<Locale> &locales);
    BrimletResult getLocale(std::optional<Locale> &locale, quint32 id);
    BrimletResult getLocales(std::vector<Locale> &locales);
    BrimletResult getLocalesWithParams(std::vector<Locale> &locales, const QString &key, const QString &value);

    // ---- Domains ----
    BrimletResult addDomains(const std::vector<Domain> &domains);
    BrimletResult updateDomain(std::optional<Domain> &domain);
    BrimletResult deleteDomain(quint32 id);
    BrimletResult getDomain(std::optional<Domain> &domain, quint32 id);
    BrimletResult getDomains(std::vector<Domain> &domains);
    BrimletResult getDomainsWithParams(std::vector<Domain> &domains, const QString &key, const QString &value);

    // ---- Users ----
    BrimletResult addUsers(const std::vector<User> &users);
    BrimletResult updateUser(std::optional<User> &user);
    BrimletResult deleteUser(quint32 id);
    BrimletResult getUser(std::optional<User> &user, quint32 id);
    BrimletResult getUsers(std::vector<User> &users);
    BrimletResult getUsersWithParams(std::vector<User> &users, const QString &key, const QString &value);

    // ---- Organizations ----
    BrimletResult addOrganizations(const std::vector<Organization> &organizations);
    BrimletResult updateOrganization(std::optional<Organization> &organization);
    BrimletResult deleteOrganization(quint32 id);
    BrimletResult getOrganization(std::optional<Organization> &organization, quint32 id);
    BrimletResult getOrganizations(std::vector<Organization> &organizations);
    BrimletResult getOrganizationsWithParams(std::vector<Organization> &organizations, const QString &key,
                                             const QString &value);

    // ---- Contractors ----
    BrimletResult addContractors(const std::vector<Contractor> &contractors);
    BrimletResult updateContractor(std::optional<Contractor> &contractor);
    BrimletResult deleteContractor(quint32 id);
    BrimletResult getContractor(std::optional<Contractor> &contractor, quint32 id);
    BrimletResult getContractors(std::vector<Contractor> &contractors);
    BrimletResult getContractorsWithParams(std::vector<Contractor> &contractors, const QString &key,
                                           const QString &value);

    // ---- Contracts ----
    BrimletResult addContracts(const std::vector<Contract> &contracts);
    BrimletResult updateContract(std::optional<Contract> &contract);
    BrimletResult deleteContract(quint32 id);
    BrimletResult getContract(std::optional<Contract> &contract, quint32 id);
    BrimletResult getContracts(std::vector<Contract> &contracts);
    BrimletResult getContractsWithParams(std::vector<Contract> &contracts, const QString &key, const QString &value);

    // ---- Devices ----
    BrimletResult addDevice(std::optional<Device> &device);
    BrimletResult addDevices(const std::vector<Device> &devices);
    BrimletResult updateDeviceFw(std::optional<Device> &device);
    BrimletResult deleteDevice(quint32 id);
    BrimletResult getDevice(std::optional<Device> &device, quint32 id);
    BrimletResult getDevices(std::vector<Device> &devices);
    BrimletResult getDevicesWithParams(std::vector<Device> &devices, const QString &key, const QString &value);

    // ---- Sections ----
    BrimletResult updateSection(std::optional<Section> &section, quint32 deviceId);
    BrimletResult deleteSection(quint32 sectionId, quint32 deviceId);
    BrimletResult getSection(std::optional<Section> &section, quint32 sectionId, quint32 deviceId);
    BrimletResult getSections(std::vector<Section> &sections, quint32 deviceId);
    BrimletResult getSectionsWithParams(std::vector<Section> &sections, const QString &key, const QString &value,
                                        quint32 deviceId);

    // ---- Zones ----
    BrimletResult updateZone(std::optional<Zone> &zone, quint32 deviceId, quint32 sectionId);
    BrimletResult deleteZone(quint32 zoneId, quint32 deviceId, quint32 sectionId);
    BrimletResult getZone(std::optional<Zone> &zone, quint32 zoneId, quint32 deviceId, quint32 sectionId);
    BrimletResult getZones(std::vector<Zone> &zones, quint32 deviceId);
    BrimletResult getZonesForSection(std::vector<Zone> &zones, quint32 deviceId, quint32 sectionId);
    BrimletResult getZonesWithParams(std::vector<Zone> &zones, const QString &key, const QString &value,
                                     quint32 deviceId);
    BrimletResult getZonesForSectionWithParams(std::vector<Zone> &zones, const QString &key, const QString &value,
                                               quint32 deviceId, quint32 sectionId);

    // ---- Sites ----
    BrimletResult addSites(const std::vector<Site> &sites);
    BrimletResult updateSite(std::optional<Site> &site);
    BrimletResult deleteSite(quint32 id);
    BrimletResult getSite(std::optional<Site> &site, quint32 id);
    BrimletResult getSites(std::vector<Site> &sites);
    BrimletResult getSitesWithParams(std::vector<Site> &sites, const QString &key, const QString &value);
    BrimletResult getSiteNameAndAddress(std::optional<QString> &name, std::optional<QString> &address, quint32 id);

    // ---- Events ----
    BrimletResult addEvent(std::optional<Event> &event);
    BrimletResult addEvents(std::vector<Event> &events);
    BrimletResult getEvents(std::vector<Event> &events, quint32 from, quint32 to);
    BrimletResult getAffectEvents(std::vector<Event> &events);
    BrimletResult removeAffectFlag(std::optional<Event> &event, quint32 id);
    BrimletResult clearEventsBeforeDateExceptAffects(quint32 date);

    // ---- Server address and clearing ----
    BrimletResult setServerIp(const QString &ip);
    BrimletResult getServerIp(QString &ip);
    BrimletResult clearAll();
    BrimletResult clearAllExceptEvents();

public slots:
    void onStart();

private:
    // The launch sequence: returns BRIMLET_LAUNCH_OPENED if the file passes its checks.
    BrimletLaunchResult openOrReplace(const QString &name);

    std::atomic<quint32> state{BRIMLET_STATE_LAUNCHED}; // changes while others poll it
    quint32 launchResult = BRIMLET_LAUNCH_NONE;         // final before the instance is published
    std::unique_ptr<Database> database;
};

} // namespace brimlet::controller
