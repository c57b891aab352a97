/**
 * @file FlatRecords.h
 * The records that Brimlet hands out. Plain C99; included by brimlet.h.
 *
 * A flat record is a tree of separate blocks that the client owns. Its kinds of fields:
 *
 * - `uint32_t`, the key or a count: the value itself, always there.
 * - `uint32_t *`, `int32_t *`, `uint64_t *`, `double *`: the value in a block of its own; null when absent.
 * - `uint8_t *`: an 8-bit value or a flag (0 or 1) in a block of its own; null when absent.
 * - `uint16_t *`: UTF-16 text ended by a zero unit, in a block of its own; null when absent. An empty text is a block
 *   that holds the zero unit alone, so empty and absent stay apart.
 * - a pointer to a flat record: the record in a block of its own; null when absent.
 * - a pointer to a flat record or number with a count behind it: one block of that many elements; null and 0 when
 *   there are none.
 *
 * Fields lie in the order of their declaration at the platform's natural alignment. Give a record back whole, to the
 * free function of its name.
 */
#ifndef BRIMLET_FLAT_RECORDS_H
#define BRIMLET_FLAT_RECORDS_H

#include <stdint.h>

/** A locale. */
typedef struct FlatLocale
{
    uint32_t id;
    uint16_t *iso;
    uint16_t *description;
} FlatLocale;

/** A domain, with its locale if the store holds it. */
typedef struct FlatDomain
{
    uint32_t id;
    uint16_t *name;
    uint32_t *orgId;
    FlatLocale *locale;
} FlatDomain;

/** An operator of the monitoring service, with the domain if the store holds it. */
typedef struct FlatUser
{
    uint32_t id;
    uint16_t *name;
    uint16_t *login;
    uint16_t *contacts;
    uint8_t *isActive;
    uint32_t *domainId;
    uint32_t *roles;
    uint64_t *phone;
    FlatDomain *domain;
    uint32_t *orgId;
} FlatUser;

/** The contact person of an organization. */
typedef struct FlatPerson
{
    uint32_t id;
    uint16_t *name;
    uint16_t *phone;
    uint16_t *email;
    uint16_t *postal;
} FlatPerson;

/** An organization, with its contact person and its locale if the store holds them. */
typedef struct FlatOrganization
{
    uint32_t id;
    uint16_t *inn;
    uint16_t *officialName;
    uint16_t *shortName;
    uint16_t *kpp;
    uint16_t *ogrn;
    uint16_t *address;
    FlatPerson *contact;
    FlatLocale *locale;
} FlatOrganization;

/** A party to contracts. */
typedef struct FlatContractor
{
    uint32_t id;
    uint16_t *inn;
    uint32_t *orgId;
    uint32_t *type;
    uint16_t *officialName;
    uint16_t *name;
    uint16_t *extra;
} FlatContractor;

/** A contract, with its contractor and its operator if the store holds them. */
typedef struct FlatContract
{
    uint32_t id;
    uint16_t *number;
    FlatContractor *contractor;
    uint16_t *name;
    uint32_t *status;
    uint32_t *date;
    uint16_t *description;
    uint16_t *extra;
    FlatUser *user;
} FlatContract;

/** A zone. Its device and section are not part of it. */
typedef struct FlatZone
{
    uint32_t id;
    uint16_t *name;
    uint32_t *detector;
    uint32_t *physic;
    uint32_t *form;
    uint32_t *flags;
    uint32_t *delay;
    uint32_t *scheduleId;
    uint32_t *tracert;
    uint32_t *uidType;
    uint32_t *arm;
} FlatZone;

/** A section with its zones. Its device is not part of it. */
typedef struct FlatSection
{
    uint32_t id;
    uint16_t *name;
    uint32_t *scheduleId;
    FlatZone *zones;
    uint32_t zonesCount;
    uint32_t *tracert;
    uint32_t *flags;
    uint32_t *detector;
    uint32_t *arm;
    uint32_t *physic;
    uint32_t *form;
    uint32_t *delay;
    uint32_t *uidType;
} FlatSection;

/** A user programmed into a device, with the numbers of the sections that this user reaches. */
typedef struct FlatDeviceUser
{
    uint32_t id;
    uint16_t *name;
    uint16_t *comment;
    uint16_t *phone;
    uint32_t *sections;
    uint32_t sectionsCount;
} FlatDeviceUser;

/** A device with its sections and users, and with the domain if the store holds it. */
typedef struct FlatDevice
{
    uint32_t id;
    uint32_t *account;
    FlatDomain *domain;
    uint32_t *configVersion;
    FlatSection *sections;
    uint32_t sectionsCount;
    FlatDeviceUser *users;
    uint32_t usersCount;
    uint8_t *isParted;
    uint32_t *clusterId;
    uint32_t *domainId;
} FlatDevice;

/** Where a site lies, under the site's own id. */
typedef struct FlatLocation
{
    uint32_t id;
    double *latitude;
    double *longitude;
} FlatLocation;

/** A site, with its domain, location and contract if the store holds them. A read gives no devices. */
typedef struct FlatSite
{
    uint32_t id;
    uint16_t *name;
    uint16_t *comment;
    uint16_t *extra;
    uint8_t *isCrossing;
    FlatDomain *domain;
    uint16_t *address;
    FlatContract *contract;
    int32_t *contractStatus;
    uint32_t *type;
    uint32_t *category;
    uint32_t *armMode;
    uint8_t *isDelegated;
    FlatDevice *devices;
    uint32_t deviceCount;
    uint32_t *domainId;
    FlatLocation *location;
    int32_t *contractId;
    uint8_t *isSitePlanExists;
} FlatSite;

/** An event. The last four fields come from the equipment and the operator that the event names. */
typedef struct FlatEvent
{
    uint32_t id;
    uint32_t *time;
    int32_t *deviceId;
    uint32_t *sectionId;
    uint32_t *zoneId;
    uint8_t *active;
    uint8_t *eventClass;
    uint8_t *detector;
    uint8_t *reason;
    uint32_t *localTime;
    int32_t *channel;
    uint16_t *data;
    uint32_t *reviewId;
    uint8_t *reviewState;
    uint32_t *userId;
    uint8_t *isClosed;
    uint8_t *affect;
    uint16_t *jData;
    uint32_t *account;
    uint16_t *sectionName;
    uint16_t *zoneName;
    uint16_t *domainName;
} FlatEvent;

#endif
