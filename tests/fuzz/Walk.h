// Reads everything in a flat record once, and releases it.
#pragma once

#include "Require.h"
#include "brimlet/brimlet.h"

#include <cstdlib>

namespace brimlet::fuzz {

// ---- Fields ----

// Collects all that is read, so that the compiler removes no read.
inline volatile uint64_t seen = 0;

inline void look(uint64_t value)
{
    seen = seen + value;
}

// A number in a block of its own, or a text up to its terminator.
template<class T>
void lookAt(const T *block)
{
    if (block)
        look(static_cast<uint64_t>(*block != T{}));
}
inline void lookAt(const uint16_t *text)
{
    if (!text)
        return;
    for (const uint16_t *unit = text; *unit != 0; ++unit)
        look(*unit);
}

template<class... Blocks>
void lookAtAll(const Blocks *...blocks)
{
    (lookAt(blocks), ...);
}

// ---- Records ----

void walk(const FlatLocale &record);
void walk(const FlatDomain &record);
void walk(const FlatUser &record);
void walk(const FlatPerson &record);
void walk(const FlatOrganization &record);
void walk(const FlatContractor &record);
void walk(const FlatContract &record);
void walk(const FlatZone &record);
void walk(const FlatSection &record);
void walk(const FlatDeviceUser &record);
void walk(const FlatDevice &record);
void walk(const FlatLocation &record);
void walk(const FlatSite &record);
void walk(const FlatEvent &record);

template<class Flat>
void walkOptional(const Flat *record)
{
    if (record)
        walk(*record);
}

template<class Flat>
void walkList(const Flat *records, uint32_t count)
{
    require((records == nullptr) == (count == 0), "a list and its count agree");
    for (uint32_t i = 0; i < count; ++i)
        walk(records[i]);
}

inline void walk(const FlatLocale &record)
{
    look(record.id);
    lookAtAll(record.iso, record.description);
}
inline void walk(const FlatDomain &record)
{
    look(record.id);
    lookAtAll(record.name, record.orgId);
    walkOptional(record.locale);
}
inline void walk(const FlatUser &record)
{
    look(record.id);
    lookAtAll(record.name, record.login, record.contacts, record.isActive, record.domainId, record.roles, record.phone,
              record.orgId);
    walkOptional(record.domain);
}
inline void walk(const FlatPerson &record)
{
    look(record.id);
    lookAtAll(record.name, record.phone, record.email, record.postal);
}
inline void walk(const FlatOrganization &record)
{
    look(record.id);
    lookAtAll(record.inn, record.officialName, record.shortName, record.kpp, record.ogrn, record.address);
    walkOptional(record.contact);
    walkOptional(record.locale);
}
inline void walk(const FlatContractor &record)
{
    look(record.id);
    lookAtAll(record.inn, record.orgId, record.type, record.officialName, record.name, record.extra);
}
inline void walk(const FlatContract &record)
{
    look(record.id);
    lookAtAll(record.number, record.name, record.status, record.date, record.description, record.extra);
    walkOptional(record.contractor);
    walkOptional(record.user);
}
inline void walk(const FlatZone &record)
{
    look(record.id);
    lookAtAll(record.name, record.detector, record.physic, record.form, record.flags, record.delay, record.scheduleId,
              record.tracert, record.uidType, record.arm);
}
inline void walk(const FlatSection &record)
{
    look(record.id);
    lookAtAll(record.name, record.scheduleId, record.tracert, record.flags, record.detector, record.arm, record.physic,
              record.form, record.delay, record.uidType);
    walkList(record.zones, record.zonesCount);
}
inline void walk(const FlatDeviceUser &record)
{
    look(record.id);
    lookAtAll(record.name, record.comment, record.phone);
    require((record.sections == nullptr) == (record.sectionsCount == 0), "section numbers and their count agree");
    for (uint32_t i = 0; i < record.sectionsCount; ++i)
        look(record.sections[i]);
}
inline void walk(const FlatDevice &record)
{
    look(record.id);
    lookAtAll(record.account, record.configVersion, record.isParted, record.clusterId, record.domainId);
    walkOptional(record.domain);
    walkList(record.sections, record.sectionsCount);
    walkList(record.users, record.usersCount);
}
inline void walk(const FlatLocation &record)
{
    look(record.id);
    lookAtAll(record.latitude, record.longitude);
}
inline void walk(const FlatSite &record)
{
    look(record.id);
    lookAtAll(record.name, record.comment, record.extra, record.isCrossing, record.address, record.contractStatus,
              record.type, record.category, record.armMode, record.isDelegated, record.domainId, record.contractId,
              record.isSitePlanExists);
    walkOptional(record.domain);
    walkOptional(record.contract);
    walkOptional(record.location);
    walkList(record.devices, record.deviceCount);
}
inline void walk(const FlatEvent &record)
{
    look(record.id);
    lookAtAll(record.time, record.deviceId, record.sectionId, record.zoneId, record.active, record.eventClass,
              record.detector, record.reason, record.localTime, record.channel, record.data, record.reviewId,
              record.reviewState, record.userId, record.isClosed, record.affect, record.jData, record.account,
              record.sectionName, record.zoneName, record.domainName);
}

// ---- Release ----

template<class Flat>
struct Release
{
    uint32_t (*one)(Flat *);
    uint32_t (*array)(Flat *, uint32_t);
};

inline Release<FlatLocale> releaseOf(const FlatLocale *)
{
    return {freeLocale, freeLocalesArray};
}
inline Release<FlatDomain> releaseOf(const FlatDomain *)
{
    return {freeDomain, freeDomainsArray};
}
inline Release<FlatUser> releaseOf(const FlatUser *)
{
    return {freeUser, freeUsersArray};
}
inline Release<FlatOrganization> releaseOf(const FlatOrganization *)
{
    return {freeOrganization, freeOrganizationsArray};
}
inline Release<FlatContractor> releaseOf(const FlatContractor *)
{
    return {freeContractor, freeContractorsArray};
}
inline Release<FlatContract> releaseOf(const FlatContract *)
{
    return {freeContract, freeContractsArray};
}
inline Release<FlatDevice> releaseOf(const FlatDevice *)
{
    return {freeDevice, freeDevicesArray};
}
inline Release<FlatSection> releaseOf(const FlatSection *)
{
    return {freeSection, freeSectionsArray};
}
inline Release<FlatZone> releaseOf(const FlatZone *)
{
    return {freeZone, freeZonesArray};
}
inline Release<FlatSite> releaseOf(const FlatSite *)
{
    return {freeSite, freeSitesArray};
}
inline Release<FlatEvent> releaseOf(const FlatEvent *)
{
    return {freeEvent, freeEventsArray};
}

// Reads what a function returned and releases it. With any code but 0 there must be nothing.
template<class Flat>
void walkAndFree(uint32_t code, Flat *record)
{
    require((code == BRIMLET_DONE) == (record != nullptr), "a record comes out with 0 and only then");
    if (!record)
        return;
    walk(*record);
    require(releaseOf(record).one(record) == BRIMLET_DONE, "a record is freed whole");
}

template<class Flat>
void walkAndFree(uint32_t code, Flat *records, uint32_t count)
{
    require((code == BRIMLET_DONE) == (records != nullptr), "a list comes out with 0 and only then");
    walkList(records, count);
    if (records)
        require(releaseOf(records).array(records, count) == BRIMLET_DONE, "a list is freed whole");
}

inline void walkAndFree(uint16_t *text)
{
    lookAt(text);
    std::free(text);
}

// ---- Calls without an out-parameter of the caller ----

// listed(getUsers), listed(getZonesForSection, device, section)
template<class Flat, class... Arguments>
uint32_t listed(uint32_t (*function)(Flat **, uint32_t *, Arguments...), Arguments... arguments)
{
    Flat *records = nullptr;
    uint32_t count = 0;
    const uint32_t code = function(&records, &count, arguments...);
    walkAndFree(code, records, count);
    return code;
}

// got(getUser, id), got(updateUser, json, length)
template<class Flat, class... Arguments>
uint32_t got(uint32_t (*function)(Flat **, Arguments...), Arguments... arguments)
{
    Flat *record = nullptr;
    const uint32_t code = function(&record, arguments...);
    walkAndFree(code, record);
    return code;
}

} // namespace brimlet::fuzz
