// One JSON object into one record, which the caller discards when the reader answers false. The keys come from the
// table's descriptor; a document makes it once for all its records.
#pragma once

#include "catalog/ContractsTable.h"
#include "catalog/DeviceUsersTable.h"
#include "catalog/DevicesTable.h"
#include "catalog/EventsTable.h"
#include "catalog/OrganizationsTable.h"
#include "catalog/SectionsTable.h"
#include "catalog/SitesTable.h"
#include "catalog/ZonesTable.h"

#include <QJsonArray>
#include <QJsonObject>

namespace brimlet {

// A table whose documents hold objects of other tables, with the descriptors of those.
struct OrganizationKeys : OrganizationsTable
{
    PersonsTable person;
};

struct SectionKeys : SectionsTable
{
    ZonesTable zone;
};

struct DeviceKeys : DevicesTable
{
    SectionKeys section;
    DeviceUsersTable user;
};

struct SiteKeys : SitesTable
{
    LocationsTable locationKeys;
    DeviceKeys device;
};

bool fillLocale(Locale &locale, const QJsonObject &object, const LocalesTable &keys = {});
bool fillDomain(Domain &domain, const QJsonObject &object, const DomainsTable &keys = {});
bool fillUser(User &user, const QJsonObject &object, const UsersTable &keys = {});
bool fillPerson(Person &person, const QJsonObject &object, const PersonsTable &keys = {});
bool fillOrganization(Organization &organization, const QJsonObject &object, const OrganizationKeys &keys = {});
bool fillContractor(Contractor &contractor, const QJsonObject &object, const ContractorsTable &keys = {});
bool fillContract(Contract &contract, const QJsonObject &object, const ContractsTable &keys = {});
bool fillZone(Zone &zone, const QJsonObject &object, const ZonesTable &keys = {});
bool fillSection(Section &section, const QJsonObject &object, const SectionKeys &keys = {});
bool fillDeviceUser(DeviceUser &user, const QJsonObject &object, const DeviceUsersTable &keys = {});
bool fillDevice(Device &device, const QJsonObject &object, const DeviceKeys &keys = {});
bool fillSite(Site &site, const QJsonObject &object, const SiteKeys &keys = {});
bool fillEvent(Event &event, const QJsonObject &object, const EventsTable &keys = {});

template<class Record, class Keys>
using ObjectReader = bool (*)(Record &, const QJsonObject &, const Keys &);

// The records of an array, up to the first element that is no object or that its reader refuses.
template<class Record, class Keys>
bool readObjects(std::vector<Record> &records, const QJsonArray &array, ObjectReader<Record, Keys> fill,
                 const Keys &keys)
{
    records.reserve(static_cast<size_t>(array.size()));
    for (const QJsonValue element : array) {
        if (!element.isObject())
            return false;
        records.emplace_back();
        if (!fill(records.back(), element.toObject(), keys)) {
            records.pop_back();
            return false;
        }
    }
    return true;
}

} // namespace brimlet
