/**
 * @file FlatRecords.h
 * The records that Brimlet returns, and the keys of the documents that they come from. Plain C99, included by
 * brimlet.h.
 *
 * A flat record is a tree of separate blocks that the client owns. Release it whole, with the free function of its
 * name. The C type of a field is its kind, and says what a document holds under its key:
 *
 * - `uint32_t`: the id of the record, or a count; in the record itself and always present. Documents give an id as a
 *   number, like the next.
 * - `uint32_t *`: a number, for example the id of another record, which the store need not hold. Its fraction is dropped
 *   and its low 32 bits are kept.
 * - `int32_t *`: a whole number. With a fraction, or outside the range of the type, it reads as 0.
 * - `uint64_t *`: a number. Its fraction is dropped.
 * - `uint8_t *`: where the comment says so a flag, 0 or 1, given as a number or a boolean: a whole number other than 0
 *   in the range of `int32_t` is true, everything else is false, `true` included. Otherwise the low 8 bits of a whole
 *   number as above.
 * - `double *`: a real number. A value of another type reads as 0.
 * - `uint16_t *`: a text, in UTF-16 with a NUL terminator. An empty text is a block with the terminator alone.
 * - A pointer to a flat record: the record, where the store holds it. What a document holds under its key stands in the
 *   comment.
 * - A pointer to flat records or numbers with a count behind it: an array in one block, from an array in the document.
 *   If the array is empty, the pointer is null and the count is 0.
 *
 * Every pointer is a block of its own, or null when the field is absent. Documents give numbers as doubles, exact up to
 * 2^53. The numbers have no unit and no meaning in the library: it stores what the service calls a code, a date or a
 * time, and compares an event's time. The fields lie in the order of their declaration, at the platform's natural
 * alignment.
 */
#ifndef BRIMLET_FLAT_RECORDS_H
#define BRIMLET_FLAT_RECORDS_H

#include <stdint.h>

/** A locale. */
typedef struct FlatLocale
{
    uint32_t id;           /**< Id. Key "id", required. */
    uint16_t *iso;         /**< ISO code. Key "iso". */
    uint16_t *description; /**< Description. Key "description". */
} FlatLocale;

/** A domain, with its locale if the store holds it. */
typedef struct FlatDomain
{
    uint32_t id;        /**< Id. Key "id", required. */
    uint16_t *name;     /**< Name. Key "name". */
    uint32_t *orgId;    /**< Id of the organization. Key "org_id". */
    FlatLocale *locale; /**< Locale. Key "locale_id", the id of a locale. */
} FlatDomain;

/** A user: an operator of the monitoring service, with the domain if the store holds it. */
typedef struct FlatUser
{
    uint32_t id;        /**< Id. Key "id", required. */
    uint16_t *name;     /**< Name. Key "name". */
    uint16_t *login;    /**< Login name. Key "login". */
    uint16_t *contacts; /**< Contacts, as one text. Key "contacts". */
    uint8_t *isActive;  /**< Whether the user is active. Key "active", a flag. */
    uint32_t *domainId; /**< Id of the domain. Key "domain". */
    uint32_t *roles;    /**< Roles, as one code. Key "roles". */
    uint64_t *phone;    /**< Telephone number. Key "phone". Exact up to 2^52; from there to 2^63 a neighbouring number
                             may come back. */
    FlatDomain *domain; /**< Domain. Key "domain", the id of a domain. */
    uint32_t *orgId;    /**< Id of the organization. Key "org". */
} FlatUser;

/** The contact person of an organization. */
typedef struct FlatPerson
{
    uint32_t id;      /**< Id. Key "id", required. */
    uint16_t *name;   /**< Name. Key "name". */
    uint16_t *phone;  /**< Telephone number. Key "phone". */
    uint16_t *email;  /**< Email address. Key "email". */
    uint16_t *postal; /**< Postal address. Key "postal". */
} FlatPerson;

/** An organization, with its contact person and its locale if the store holds them. */
typedef struct FlatOrganization
{
    uint32_t id;            /**< Id. Key "org_id", required. */
    uint16_t *inn;          /**< Registration number INN. Key "inn". */
    uint16_t *officialName; /**< Official name. Key "off_name". */
    uint16_t *shortName;    /**< Short name. Key "short_name". */
    uint16_t *kpp;          /**< Registration number KPP. Key "kpp". */
    uint16_t *ogrn;         /**< Registration number OGRN. Key "ogrn". */
    uint16_t *address;      /**< Address. Key "address_text". */
    FlatPerson *contact;    /**< Contact person. Key "contact", an object with the keys of FlatPerson; an empty object
                                 or a value of another type is no contact. */
    FlatLocale *locale;     /**< Locale. Key "locale_id", the id of a locale. */
} FlatOrganization;

/** A contractor: a party to contracts. */
typedef struct FlatContractor
{
    uint32_t id;            /**< Id. Key "id", required. */
    uint16_t *inn;          /**< Registration number INN. Key "inn". */
    uint32_t *orgId;        /**< Id of the organization. Key "org_id". */
    uint32_t *type;         /**< Type code. Key "type". */
    uint16_t *officialName; /**< Official name. Key "off_name". */
    uint16_t *name;         /**< Name. Key "name". */
    uint16_t *extra;        /**< Free text. Key "extra". */
} FlatContractor;

/** A contract, with its contractor and its operator if the store holds them. */
typedef struct FlatContract
{
    uint32_t id;                /**< Id. Key "id", required. */
    uint16_t *number;           /**< Number of the contract. Key "number". */
    FlatContractor *contractor; /**< Contractor. Key "contractor_id", the id of a contractor. */
    uint16_t *name;             /**< Name. Key "c_name". */
    uint32_t *status;           /**< Status code. Key "status". */
    uint32_t *date;             /**< Date. Key "date". */
    uint16_t *description;      /**< Description. Key "description". */
    uint16_t *extra;            /**< Free text. Key "extra". */
    FlatUser *user;             /**< Operator. Key "operator_id", the id of a user. */
} FlatContract;

/** A zone of a section. Its device and its section are not part of the record. */
typedef struct FlatZone
{
    uint32_t id;          /**< Number of the zone in its device. Key "id" or "zone", required. */
    uint16_t *name;       /**< Name. Key "name". */
    uint32_t *detector;   /**< Detector code. Key "detector". */
    uint32_t *physic;     /**< Physic code. Key "physic". */
    uint32_t *form;       /**< Form code. Key "form". */
    uint32_t *flags;      /**< Flags, as one code. Key "flags". */
    uint32_t *delay;      /**< Delay. Key "delay". */
    uint32_t *scheduleId; /**< Id of the schedule. Key "schedule_id". */
    uint32_t *tracert;    /**< Tracert code. Key "tracert". */
    uint32_t *uidType;    /**< Code of the uid's type. Key "uid_type". */
    uint32_t *arm;        /**< Arm code. Key "arm". */
} FlatZone;

/** A section of a device, with its zones. Its device is not part of the record. */
typedef struct FlatSection
{
    uint32_t id;          /**< Number of the section in its device. Key "id" or "section", required. */
    uint16_t *name;       /**< Name. Key "name". */
    uint32_t *scheduleId; /**< Id of the schedule. Key "schedule_id". */
    FlatZone *zones;      /**< Zones. Key "zones". */
    uint32_t zonesCount;  /**< Number of zones. */
    uint32_t *tracert;    /**< Tracert code. Key "tracert". */
    uint32_t *flags;      /**< Flags, as one code. Key "flags". */
    uint32_t *detector;   /**< Detector code. Key "detector". */
    uint32_t *arm;        /**< Arm code. Key "arm". */
    uint32_t *physic;     /**< Physic code. Key "physic". */
    uint32_t *form;       /**< Form code. Key "form". */
    uint32_t *delay;      /**< Delay. Key "delay". */
    uint32_t *uidType;    /**< Code of the uid's type. Key "uid_type". */
} FlatSection;

/** A user of a device, who is none of the users of the service. */
typedef struct FlatDeviceUser
{
    uint32_t id;            /**< Number of the user in the device. Key "user_index", required. */
    uint16_t *name;         /**< Name. Key "name". */
    uint16_t *comment;      /**< Comment. Key "comment". */
    uint16_t *phone;        /**< Telephone number. Key "phone". */
    uint32_t *sections;     /**< Numbers of the sections that the user has access to. Key "sections". */
    uint32_t sectionsCount; /**< Number of sections. */
} FlatDeviceUser;

/** A device with its sections and users, and with the domain if the store holds it. */
typedef struct FlatDevice
{
    uint32_t id;             /**< Id. Key "id", required. */
    uint32_t *account;       /**< Account number. Key "account". */
    FlatDomain *domain;      /**< Domain. Key "domain", the id of a domain. */
    uint32_t *configVersion; /**< Version of the configuration. Key "config_version". */
    FlatSection *sections;   /**< Sections. Key "sections". */
    uint32_t sectionsCount;  /**< Number of sections. */
    FlatDeviceUser *users;   /**< Users of the device. Key "users". */
    uint32_t usersCount;     /**< Number of users. */
    uint8_t *isParted;       /**< Whether the device is parted. Key "parted", a flag. */
    uint32_t *clusterId;     /**< Id of the cluster. Key "cluster_id". */
    uint32_t *domainId;      /**< Id of the domain. Key "domain". */
} FlatDevice;

/** The location of a site. */
typedef struct FlatLocation
{
    uint32_t id;       /**< Id of the site. No key: it is that of the site around it. */
    double *latitude;  /**< Latitude. Key "lat". */
    double *longitude; /**< Longitude. Key "lon". */
} FlatLocation;

/** A site, with its domain, contract and location if the store holds them. */
typedef struct FlatSite
{
    uint32_t id;               /**< Id. Key "id", required. */
    uint16_t *name;            /**< Name. Key "name". */
    uint16_t *comment;         /**< Comment. Key "comment". */
    uint16_t *extra;           /**< Free text. Key "extra". */
    uint8_t *isCrossing;       /**< Whether the site is a crossing. Key "is_crossing", a flag. */
    FlatDomain *domain;        /**< Domain. Key "domain", the id of a domain; 0 is no domain. */
    uint16_t *address;         /**< Address. Key "address_text". */
    FlatContract *contract;    /**< Contract. Key "contract_id", the id of a contract. */
    int32_t *contractStatus;   /**< Status code of the contract. Key "contract_status". */
    uint32_t *type;            /**< Type code. Key "type". */
    uint32_t *category;        /**< Category code. Key "category". */
    uint32_t *armMode;         /**< Arm mode code. Key "arm_mode". */
    uint8_t *isDelegated;      /**< Whether the site is delegated. Key "delegated", a flag. */
    FlatDevice *devices;       /**< Devices. Key "devices". Empty in every record that the library returns. */
    uint32_t deviceCount;      /**< Number of devices: 0 in every record that the library returns. */
    uint32_t *domainId;        /**< Id of the domain. Key "domain". */
    FlatLocation *location;    /**< Location. Key "location", an object with the keys of FlatLocation; an empty object
                                    or a value of another type is no location. */
    int32_t *contractId;       /**< Id of the contract. Key "contract_id". */
    uint8_t *isSitePlanExists; /**< Whether there is a plan of the site. Key "site_plan", a flag. */
} FlatSite;

/** An event, with names of the equipment and the operator that it refers to. */
typedef struct FlatEvent
{
    uint32_t id;           /**< Id. Key "id", required. */
    uint32_t *time;        /**< Time, by which getEvents and clearEventsBeforeDateExceptAffects select. Key "time". */
    int32_t *deviceId;     /**< Id of the device. Key "device". */
    uint32_t *sectionId;   /**< Number of the section. Key "section". */
    uint32_t *zoneId;      /**< Number of the zone. Key "zone". */
    uint8_t *active;       /**< Active code. Key "active". */
    uint8_t *eventClass;   /**< Class code. Key "class". */
    uint8_t *detector;     /**< Detector code. Key "detector". */
    uint8_t *reason;       /**< Reason code. Key "reason". */
    uint32_t *localTime;   /**< Local time. Key "localtime". */
    int32_t *channel;      /**< Channel code. Key "channel". */
    uint16_t *data;        /**< Data. Key "data". */
    uint32_t *reviewId;    /**< Id of the review. Key "review_id". */
    uint8_t *reviewState;  /**< State code of the review. Key "review_state". */
    uint32_t *userId;      /**< Id of the operator, a user. Key "operator_id". */
    uint8_t *isClosed;     /**< Whether the event is closed. Key "is_closed", a flag. */
    uint8_t *affect;       /**< Affect flag: clearEventsBeforeDateExceptAffects keeps the event while it is set. Key
                                "affect", a flag. */
    uint16_t *jData;       /**< Data as JSON text, which the library does not parse. Key "jdata". */
    uint32_t *account;     /**< Account number of the device. No key: it comes from the stored device. */
    uint16_t *sectionName; /**< Name of the section. No key: it comes from the stored section. */
    uint16_t *zoneName;    /**< Name of the zone. No key: it comes from the stored zone. */
    uint16_t *domainName;  /**< Name of the operator's domain. No key: it comes from the stored domain. */
} FlatEvent;

#endif
