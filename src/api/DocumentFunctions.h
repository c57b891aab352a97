// The document that each function takes, under the name of the function. The function reads its document by it, and
// `describe` prints it.
#pragma once

#include "json/Documents.h"
#include "json/ObjectReaders.h"

namespace brimlet::documents {

inline constexpr auto addLocales = batchOf(fillLocale);

inline constexpr auto addDomains = batchOf(fillDomain);
inline constexpr auto updateDomain = recordOf(fillDomain);
inline constexpr auto deleteDomain = idsUnder(&DomainsTable::id);

inline constexpr auto addUsers = batchOf(fillUser);
inline constexpr auto updateUser = recordOf(fillUser);
inline constexpr auto deleteUser = idsUnder(&UsersTable::id);

inline constexpr auto addOrganizations = batchOf(fillOrganization);
inline constexpr auto updateOrganization = recordOf(fillOrganization);
inline constexpr auto deleteOrganization = idsUnder(&OrganizationsTable::id);

inline constexpr auto addContractors = batchOf(fillContractor);
inline constexpr auto updateContractor = recordOf(fillContractor);
inline constexpr auto deleteContractor = idsUnder(&ContractorsTable::id);

inline constexpr auto addContracts = batchOf(fillContract);
inline constexpr auto updateContract = recordOf(fillContract);
inline constexpr auto deleteContract = idsUnder(&ContractsTable::id);

inline constexpr auto addDevice = recordOf(fillDevice);
inline constexpr auto addDevices = batchOf(fillDevice);
inline constexpr auto updateDeviceFw = recordOf(fillDevice);
inline constexpr auto deleteDevice = idsUnder(&DevicesTable::id);

inline constexpr auto updateSection = recordOf(fillSection, &SectionsTable::deviceId);
inline constexpr auto deleteSection = idsUnder(&SectionsTable::deviceId, &SectionsTable::sectionId);

inline constexpr auto updateZone = recordOf(fillZone, &ZonesTable::deviceId, &ZonesTable::sectionId);
inline constexpr auto deleteZone = idsUnder(&ZonesTable::deviceId, &ZonesTable::sectionId, &ZonesTable::zoneId);

inline constexpr auto addSites = batchOf(fillSite);
inline constexpr auto updateSite = recordOf(fillSite);
inline constexpr auto deleteSite = idsUnder(&SitesTable::id);

inline constexpr auto addEvent = recordOf(fillEvent);
inline constexpr auto addEvents = batchOf(fillEvent);
inline constexpr auto removeAffectFlag = idsUnder(&EventsTable::id).by(&FieldKeys::third);

} // namespace brimlet::documents
