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
 * The comment behind a field names the JSON key that it comes from.
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
    uint32_t id;           /**< Key "id". */
    uint16_t *iso;         /**< Key "iso". */
    uint16_t *description; /**< Key "description". */
} FlatLocale;

/** A domain, with its locale if the store holds it. */
typedef struct FlatDomain
{
    uint32_t id;        /**< Key "id". */
    uint16_t *name;     /**< Key "name". */
    uint32_t *orgId;    /**< Key "org_id". */
    FlatLocale *locale; /**< The locale that "locale_id" names. */
} FlatDomain;

/** An operator of the monitoring service, with the domain if the store holds it. */
typedef struct FlatUser
{
    uint32_t id;        /**< Key "id". */
    uint16_t *name;     /**< Key "name". */
    uint16_t *login;    /**< Key "login". */
    uint16_t *contacts; /**< Key "contacts". */
    uint8_t *isActive;  /**< Key "active". */
    uint32_t *domainId; /**< Key "domain". */
    uint32_t *roles;    /**< Key "roles". */
    uint64_t *phone;    /**< Key "phone". */
    FlatDomain *domain; /**< The domain that "domain" names. */
    uint32_t *orgId;    /**< Key "org". */
} FlatUser;

/** The contact person of an organization. */
typedef struct FlatPerson
{
    uint32_t id;      /**< Key "id". */
    uint16_t *name;   /**< Key "name". */
    uint16_t *phone;  /**< Key "phone". */
    uint16_t *email;  /**< Key "email". */
    uint16_t *postal; /**< Key "postal". */
} FlatPerson;

/** An organization, with its contact person and its locale if the store holds them. */
typedef struct FlatOrganization
{
    uint32_t id;            /**< Key "org_id". */
    uint16_t *inn;          /**< Key "inn". */
    uint16_t *officialName; /**< Key "off_name". */
    uint16_t *shortName;    /**< Key "short_name". */
    uint16_t *kpp;          /**< Key "kpp". */
    uint16_t *ogrn;         /**< Key "ogrn". */
    uint16_t *address;      /**< Key "address_text". */
    FlatPerson *contact;    /**< Key "contact". */
    FlatLocale *locale;     /**< The locale that "locale_id" names. */
} FlatOrganization;

/** A party to contracts. */
typedef struct FlatContractor
{
    uint32_t id;            /**< Key "id". */
    uint16_t *inn;          /**< Key "inn". */
    uint32_t *orgId;        /**< Key "org_id". */
    uint32_t *type;         /**< Key "type". */
    uint16_t *officialName; /**< Key "off_name". */
    uint16_t *name;         /**< Key "name". */
    uint16_t *extra;        /**< Key "extra". */
} FlatContractor;

/** A contract, with its contractor and its operator if the store holds them. */
typedef struct FlatContract
{
    uint32_t id;                /**< Key "id". */
    uint16_t *number;           /**< Key "number". */
    FlatContractor *contractor; /**< The contractor that "contractor_id" names. */
    uint16_t *name;             /**< Key "c_name". */
    uint32_t *status;           /**< Key "status". */
    uint32_t *date;             /**< Key "date". */
    uint16_t *description;      /**< Key "description". */
    uint16_t *extra;            /**< Key "extra". */
    FlatUser *user;             /**< The user that "operator_id" names. */
} FlatContract;

/** A zone. Its device and section are not part of it. */
typedef struct FlatZone
{
    uint32_t id;          /**< Key "id" or "zone". */
    uint16_t *name;       /**< Key "name". */
    uint32_t *detector;   /**< Key "detector". */
    uint32_t *physic;     /**< Key "physic". */
    uint32_t *form;       /**< Key "form". */
    uint32_t *flags;      /**< Key "flags". */
    uint32_t *delay;      /**< Key "delay". */
    uint32_t *scheduleId; /**< Key "schedule_id". */
    uint32_t *tracert;    /**< Key "tracert". */
    uint32_t *uidType;    /**< Key "uid_type". */
    uint32_t *arm;        /**< Key "arm". */
} FlatZone;

/** A section with its zones. Its device is not part of it. */
typedef struct FlatSection
{
    uint32_t id;          /**< Key "id" or "section". */
    uint16_t *name;       /**< Key "name". */
    uint32_t *scheduleId; /**< Key "schedule_id". */
    FlatZone *zones;      /**< Key "zones". */
    uint32_t zonesCount;  /**< How many zones. */
    uint32_t *tracert;    /**< Key "tracert". */
    uint32_t *flags;      /**< Key "flags". */
    uint32_t *detector;   /**< Key "detector". */
    uint32_t *arm;        /**< Key "arm". */
    uint32_t *physic;     /**< Key "physic". */
    uint32_t *form;       /**< Key "form". */
    uint32_t *delay;      /**< Key "delay". */
    uint32_t *uidType;    /**< Key "uid_type". */
} FlatSection;

/** A user programmed into a device, with the numbers of the sections that this user reaches. */
typedef struct FlatDeviceUser
{
    uint32_t id;            /**< Key "user_index". */
    uint16_t *name;         /**< Key "name". */
    uint16_t *comment;      /**< Key "comment". */
    uint16_t *phone;        /**< Key "phone". */
    uint32_t *sections;     /**< Key "sections". */
    uint32_t sectionsCount; /**< How many sections. */
} FlatDeviceUser;

/** A device with its sections and users, and with the domain if the store holds it. */
typedef struct FlatDevice
{
    uint32_t id;             /**< Key "id". */
    uint32_t *account;       /**< Key "account". */
    FlatDomain *domain;      /**< The domain that "domain" names. */
    uint32_t *configVersion; /**< Key "config_version". */
    FlatSection *sections;   /**< Key "sections". */
    uint32_t sectionsCount;  /**< How many sections. */
    FlatDeviceUser *users;   /**< Key "users". */
    uint32_t usersCount;     /**< How many users. */
    uint8_t *isParted;       /**< Key "parted". */
    uint32_t *clusterId;     /**< Key "cluster_id". */
    uint32_t *domainId;      /**< Key "domain". */
} FlatDevice;

/** Where a site lies, under the site's own id. */
typedef struct FlatLocation
{
    uint32_t id;       /**< The id of the site. */
    double *latitude;  /**< Key "lat". */
    double *longitude; /**< Key "lon". */
} FlatLocation;

/** A site, with its domain, location and contract if the store holds them. A read gives no devices. */
typedef struct FlatSite
{
    uint32_t id;               /**< Key "id". */
    uint16_t *name;            /**< Key "name". */
    uint16_t *comment;         /**< Key "comment". */
    uint16_t *extra;           /**< Key "extra". */
    uint8_t *isCrossing;       /**< Key "is_crossing". */
    FlatDomain *domain;        /**< The domain that "domain" names. */
    uint16_t *address;         /**< Key "address_text". */
    FlatContract *contract;    /**< The contract that "contract_id" names. */
    int32_t *contractStatus;   /**< Key "contract_status". */
    uint32_t *type;            /**< Key "type". */
    uint32_t *category;        /**< Key "category". */
    uint32_t *armMode;         /**< Key "arm_mode". */
    uint8_t *isDelegated;      /**< Key "delegated". */
    FlatDevice *devices;       /**< Null after a read. */
    uint32_t deviceCount;      /**< How many devices: 0 after a read. */
    uint32_t *domainId;        /**< Key "domain". */
    FlatLocation *location;    /**< Key "location". */
    int32_t *contractId;       /**< Key "contract_id". */
    uint8_t *isSitePlanExists; /**< Key "site_plan". */
} FlatSite;

/** An event. The last four fields come from the equipment and the operator that the event names. */
typedef struct FlatEvent
{
    uint32_t id;           /**< Key "id". */
    uint32_t *time;        /**< Key "time". */
    int32_t *deviceId;     /**< Key "device". */
    uint32_t *sectionId;   /**< Key "section". */
    uint32_t *zoneId;      /**< Key "zone". */
    uint8_t *active;       /**< Key "active". */
    uint8_t *eventClass;   /**< Key "class". */
    uint8_t *detector;     /**< Key "detector". */
    uint8_t *reason;       /**< Key "reason". */
    uint32_t *localTime;   /**< Key "localtime". */
    int32_t *channel;      /**< Key "channel". */
    uint16_t *data;        /**< Key "data". */
    uint32_t *reviewId;    /**< Key "review_id". */
    uint8_t *reviewState;  /**< Key "review_state". */
    uint32_t *userId;      /**< Key "operator_id". */
    uint8_t *isClosed;     /**< Key "is_closed". */
    uint8_t *affect;       /**< Key "affect". */
    uint16_t *jData;       /**< Key "jdata". */
    uint32_t *account;     /**< The account of the device. */
    uint16_t *sectionName; /**< The name of the section. */
    uint16_t *zoneName;    /**< The name of the zone. */
    uint16_t *domainName;  /**< The name of the user's domain. */
} FlatEvent;

#endif
