/**
 * @file brimlet.h
 * Brimlet keeps a local, disposable copy of a monitoring service's reference data and event journal in one SQLite
 * file. This is its whole interface: 96 plain functions, for C, C++ and every language that can call C.
 *
 * Conventions, which hold for every function below unless it says otherwise:
 *
 * 1. **Text in** is a pointer to UTF-16 code units and their count in units, not bytes; no terminator is needed. A byte
 *    order mark at its start is obeyed and dropped. A text has at most 700 million units: a count beyond that is not
 *    refused, and the process may die of it.
 *    Texts named `json` hold a JSON object whose member "D" is the payload, in one of three forms:
 *    - batch: `{"D":{"items":[{...},{...}]}}`
 *    - one record: `{"D":{...}}`, the members of the record standing in "D" itself
 *    - bare id: `{"D":{"op_id":7}}`, with the keys that the function names; a value of any other type than number
 *      reads as 0
 *
 *    Unknown members are ignored. A member that may be left out must not be null: null is a wrong type, but for nested
 *    arrays and the objects "contact" and "location", where every other type reads as empty. Numbers are
 *    read as doubles; ids and other unsigned numbers drop the fraction and keep the low 32 bits; a number that is
 *    called whole reads as 0 where it has a fraction or does not fit a signed 32-bit number. A flag takes a number or
 *    a boolean: it is true for a whole signed 32-bit number other than 0 and false for the rest, `true` included. The
 *    library gives its numbers no unit: of times and dates it compares an event's "time", and reads nothing into them.
 * 2. **Adding replaces**: a row of the same id is overwritten whole, and what the document leaves out becomes absent;
 *    rows of other tables that it leaves out stay. **Updating merges**: what the document leaves out stays, a new id
 *    makes a new row, and the row as it is stored then comes back. A batch goes in whole or not at all.
 * 3. **Results out** go through a pointer to a pointer, which must hold null on entry; else the function answers
 *    BRIMLET_REFUSED before it looks at anything else. On any answer but BRIMLET_DONE it is left as it was, and so is
 *    a count. The out-pointers themselves must not be null.
 * 4. **What comes out belongs to the client**: records go back whole through the free function of their name, arrays
 *    through the array's free function with the count they came with. A free function works at any time, also after
 *    exitCache. The few plain texts go back through `CoTaskMemFree` on Windows, `free` elsewhere, which is also the
 *    allocator of every other block.
 * 5. **Absent is not empty**: an absent field is a null pointer, an empty text a block that holds the zero unit.
 * 6. **By a field**: a `...WithParams` function takes a member's JSON key, compared exactly, and a value, always as
 *    text ("5" finds the number 5). It lists the records whose field equals the value; no pattern, no case folding.
 *    A key that cannot be searched for answers BRIMLET_REFUSED.
 * 7. **Lists have no order** and an empty list is no list: the answer is BRIMLET_NOT_FOUND.
 * 8. **Threads**: one thread is given away to launchCache. All other calls may come from any thread, one at a time,
 *    once getState is no longer 0 and before exitCache. Before and after that a call that reaches the store faults.
 *
 * Each function lists the results that it can answer (ResultCodes.h gives their meaning). Where memory runs out there
 * may be none: the process ends, or a C++ client sees a std::bad_alloc and has to let the process end, since the
 * transaction of the call is still open.
 */
#ifndef BRIMLET_H
#define BRIMLET_H

#include "FlatRecords.h"
#include "ResultCodes.h"

#include <stdint.h>

#if defined(_WIN32) && defined(BRIMLET_BUILD)
#define BRIMLET_API __declspec(dllexport)
#elif defined(_WIN32)
#define BRIMLET_API __declspec(dllimport)
#elif defined(__GNUC__)
#define BRIMLET_API __attribute__((visibility("default")))
#else
#define BRIMLET_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/**
 * @name Lifecycle
 * @{
 */

/**
 * Runs the library on the calling thread, and returns when exitCache has been called. Opens or creates the file
 * "CacheDb" in the working directory; poll getState to learn when that is done, then ask getLaunchCacheResult how it
 * went. A failed launch does not return either. Call it once at a time; when both it and exitCache have returned it may
 * be called again, on any thread. It makes the process's one QCoreApplication: a client that has one of its own cannot
 * use it. The first call sets the locale of a Unix process to that of its environment, as Qt does.
 * @return 0
 */
BRIMLET_API int32_t launchCache(void);

/**
 * Closes the file and lets launchCache return, without waiting for that. No other call may be running, and no
 * other call may follow but getState, getLaunchCacheResult, the free functions and a new launchCache. Wait for
 * getState to answer BRIMLET_STATE_RUNNING before: an event loop that has not started yet would miss the call. Does
 * nothing when nothing is launched. Once getState is no longer 0 a process may end without it; before that its end may
 * crash or hang in Qt. A handler of the process's end may call it only where that was registered when the launch was
 * over, since Qt goes before earlier ones.
 */
BRIMLET_API void exitCache(void);

/** May be called at any time but while exitCache runs. @return a value of BrimletState */
BRIMLET_API uint32_t getState(void);

/** May be called at any time but while exitCache runs. @return a value of BrimletLaunchResult */
BRIMLET_API uint32_t getLaunchCacheResult(void);

/** @} */

/**
 * @name Server address
 * @{
 */

/**
 * Remembers a text for the client, any text, in place of the one before. It is no JSON. The address outlives
 * clearAll.
 * @param text   the address; an empty text means none
 * @param length its length in UTF-16 units
 * @return 0, 9
 */
BRIMLET_API uint32_t setServerIp(const uint16_t *text, uint32_t length);

/**
 * Gives the text that setServerIp remembered.
 * @param[out] address the text, released by the client with the platform's allocator (convention 4); stays null, with
 *             the result 0, when there is none or it is empty
 * @return 0, 7, 10
 */
BRIMLET_API uint32_t getServerIp(uint16_t **address);

/** @} */

/**
 * @name Locales
 * JSON: "id" number, required; "iso", "description" text. Searchable: all three.
 * A locale is never updated or deleted singly; clearAll and clearAllExceptEvents remove all of them.
 * @{
 */

/** Adds locales. @param json batch @param length its length in UTF-16 units @return 0, 5, 9, 10 */
BRIMLET_API uint32_t addLocales(const uint16_t *json, uint32_t length);

/** Gives one locale. @param[out] locale free with freeLocale @param id its id @return 0, 7, 8, 10, 255 */
BRIMLET_API uint32_t getLocale(FlatLocale **locale, uint32_t id);

/** Gives all locales. @param[out] locales free with freeLocalesArray @param[out] count how many
    @return 0, 3, 7, 8, 10 */
BRIMLET_API uint32_t getLocales(FlatLocale **locales, uint32_t *count);

/** Gives the locales whose field `key` equals `value`. @param[out] locales free with freeLocalesArray
    @param[out] count how many @param key a JSON key of the record @param keyLength its length in UTF-16 units
    @param value a text @param valueLength its length in UTF-16 units
    @return 0, 3, 7, 8, 10 */
BRIMLET_API uint32_t getLocalesWithParams(FlatLocale **locales, uint32_t *count, const uint16_t *key,
                                          uint32_t keyLength, const uint16_t *value, uint32_t valueLength);

/** Frees a locale. @param locale what a function gave @return 0, or 10 for a null pointer */
BRIMLET_API uint32_t freeLocale(FlatLocale *locale);

/** Frees an array of locales. @param locales what a function gave @param count its count
    @return 0, or 10 for a null pointer or a count of 0 */
BRIMLET_API uint32_t freeLocalesArray(FlatLocale *locales, uint32_t count);

/** @} */

/**
 * @name Domains
 * JSON: "id" number, required; "name" text; "org_id" number; "locale_id" number. Searchable: all four.
 * @{
 */

/** Adds domains. @param json batch @param length its length in UTF-16 units @return 0, 5, 9, 10 */
BRIMLET_API uint32_t addDomains(const uint16_t *json, uint32_t length);

/** Merges a domain. @param[out] domain as stored, free with freeDomain @param json one record
    @param length its length in UTF-16 units
    @return 0, 5, 8, 9, 10, 255 */
BRIMLET_API uint32_t updateDomain(FlatDomain **domain, const uint16_t *json, uint32_t length);

/** Removes a domain, and nothing that names it. @param json bare id under "domain_id"
    @param length its length in UTF-16 units
    @return 0, 5, 7, 8, 9, 10 */
BRIMLET_API uint32_t deleteDomain(const uint16_t *json, uint32_t length);

/** Gives one domain. @param[out] domain free with freeDomain @param id its id @return 0, 7, 8, 10, 255 */
BRIMLET_API uint32_t getDomain(FlatDomain **domain, uint32_t id);

/** Gives all domains. @param[out] domains free with freeDomainsArray @param[out] count how many
    @return 0, 3, 7, 8, 10 */
BRIMLET_API uint32_t getDomains(FlatDomain **domains, uint32_t *count);

/** Gives the domains whose field `key` equals `value`. @param[out] domains free with freeDomainsArray
    @param[out] count how many @param key a JSON key of the record @param keyLength its length in UTF-16 units
    @param value a text @param valueLength its length in UTF-16 units
    @return 0, 3, 7, 8, 10 */
BRIMLET_API uint32_t getDomainsWithParams(FlatDomain **domains, uint32_t *count, const uint16_t *key,
                                          uint32_t keyLength, const uint16_t *value, uint32_t valueLength);

/** Frees a domain. @param domain what a function gave @return 0, or 10 for a null pointer */
BRIMLET_API uint32_t freeDomain(FlatDomain *domain);

/** Frees an array of domains. @param domains what a function gave @param count its count
    @return 0, or 10 for a null pointer or a count of 0 */
BRIMLET_API uint32_t freeDomainsArray(FlatDomain *domains, uint32_t count);

/** @} */

/**
 * @name Users
 * JSON: "id" number, required; "name", "login", "contacts" text; "active" flag; "domain", "org", "roles" number;
 * "phone" number, exact up to 2^52; from there to 2^63 it may come back as one of the numbers beside it. Searchable: all
 * nine.
 * @{
 */

/** Adds users. @param json batch @param length its length in UTF-16 units @return 0, 5, 9, 10 */
BRIMLET_API uint32_t addUsers(const uint16_t *json, uint32_t length);

/** Merges a user. @param[out] user as stored, free with freeUser @param json one record
    @param length its length in UTF-16 units
    @return 0, 5, 8, 9, 10, 255 */
BRIMLET_API uint32_t updateUser(FlatUser **user, const uint16_t *json, uint32_t length);

/** Removes a user, and nothing that names it. @param json bare id under "op_id"
    @param length its length in UTF-16 units
    @return 0, 5, 7, 8, 9, 10 */
BRIMLET_API uint32_t deleteUser(const uint16_t *json, uint32_t length);

/** Gives one user. @param[out] user free with freeUser @param id its id @return 0, 7, 8, 10, 255 */
BRIMLET_API uint32_t getUser(FlatUser **user, uint32_t id);

/** Gives all users. @param[out] users free with freeUsersArray @param[out] count how many @return 0, 3, 7, 8, 10 */
BRIMLET_API uint32_t getUsers(FlatUser **users, uint32_t *count);

/** Gives the users whose field `key` equals `value`. @param[out] users free with freeUsersArray
    @param[out] count how many @param key a JSON key of the record @param keyLength its length in UTF-16 units
    @param value a text @param valueLength its length in UTF-16 units
    @return 0, 3, 7, 8, 10 */
BRIMLET_API uint32_t getUsersWithParams(FlatUser **users, uint32_t *count, const uint16_t *key, uint32_t keyLength,
                                        const uint16_t *value, uint32_t valueLength);

/** Frees a user. @param user what a function gave @return 0, or 10 for a null pointer */
BRIMLET_API uint32_t freeUser(FlatUser *user);

/** Frees an array of users. @param users what a function gave @param count its count
    @return 0, or 10 for a null pointer or a count of 0 */
BRIMLET_API uint32_t freeUsersArray(FlatUser *users, uint32_t count);

/** @} */

/**
 * @name Organizations
 * JSON: "org_id" number, required; "inn", "off_name", "short_name", "kpp", "ogrn", "address_text" text; "locale_id"
 * number; "contact" object with "id" number, required, and "name", "phone", "email", "postal" text. A "contact" that
 * is empty or no object means none. Searchable: all but "contact".
 * @{
 */

/** Adds organizations with their contact persons. @param json batch @param length its length in UTF-16 units
    @return 0, 5, 9, 10 */
BRIMLET_API uint32_t addOrganizations(const uint16_t *json, uint32_t length);

/** Merges an organization. A "contact" is not merged: it replaces that person whole.
    @param[out] organization as stored, free with freeOrganization @param json one record
    @param length its length in UTF-16 units
    @return 0, 5, 8, 9, 10, 255 */
BRIMLET_API uint32_t updateOrganization(FlatOrganization **organization, const uint16_t *json, uint32_t length);

/** Removes an organization and the person that it names. @param json bare id under "org_id"
    @param length its length in UTF-16 units
    @return 0, 5, 7, 8, 9, 10 */
BRIMLET_API uint32_t deleteOrganization(const uint16_t *json, uint32_t length);

/** Gives one organization. @param[out] organization free with freeOrganization @param id its id
    @return 0, 7, 8, 10, 255 */
BRIMLET_API uint32_t getOrganization(FlatOrganization **organization, uint32_t id);

/** Gives all organizations. @param[out] organizations free with freeOrganizationsArray @param[out] count how many
    @return 0, 3, 7, 8, 10 */
BRIMLET_API uint32_t getOrganizations(FlatOrganization **organizations, uint32_t *count);

/** Gives the organizations whose field `key` equals `value`. @param[out] organizations free with freeOrganizationsArray
    @param[out] count how many @param key a JSON key of the record @param keyLength its length in UTF-16 units
    @param value a text @param valueLength its length in UTF-16 units
    @return 0, 3, 7, 8, 10 */
BRIMLET_API uint32_t getOrganizationsWithParams(FlatOrganization **organizations, uint32_t *count, const uint16_t *key,
                                                uint32_t keyLength, const uint16_t *value, uint32_t valueLength);

/** Frees an organization. @param organization what a function gave @return 0, or 10 for a null pointer */
BRIMLET_API uint32_t freeOrganization(FlatOrganization *organization);

/** Frees an array of organizations. @param organizations what a function gave @param count its count
    @return 0, or 10 for a null pointer or a count of 0 */
BRIMLET_API uint32_t freeOrganizationsArray(FlatOrganization *organizations, uint32_t count);

/** @} */

/**
 * @name Contractors
 * JSON: "id" number, required; "inn", "off_name", "name", "extra" text; "org_id", "type" number. Searchable: all.
 * @{
 */

/** Adds contractors. @param json batch @param length its length in UTF-16 units @return 0, 5, 9, 10 */
BRIMLET_API uint32_t addContractors(const uint16_t *json, uint32_t length);

/** Merges a contractor. @param[out] contractor as stored, free with freeContractor @param json one record
    @param length its length in UTF-16 units
    @return 0, 5, 8, 9, 10, 255 */
BRIMLET_API uint32_t updateContractor(FlatContractor **contractor, const uint16_t *json, uint32_t length);

/** Removes a contractor, and nothing that names it. @param json bare id under "id"
    @param length its length in UTF-16 units
    @return 0, 5, 7, 8, 9, 10 */
BRIMLET_API uint32_t deleteContractor(const uint16_t *json, uint32_t length);

/** Gives one contractor. @param[out] contractor free with freeContractor @param id its id
    @return 0, 7, 8, 10, 255 */
BRIMLET_API uint32_t getContractor(FlatContractor **contractor, uint32_t id);

/** Gives all contractors. @param[out] contractors free with freeContractorsArray @param[out] count how many
    @return 0, 3, 7, 8, 10 */
BRIMLET_API uint32_t getContractors(FlatContractor **contractors, uint32_t *count);

/** Gives the contractors whose field `key` equals `value`. @param[out] contractors free with freeContractorsArray
    @param[out] count how many @param key a JSON key of the record @param keyLength its length in UTF-16 units
    @param value a text @param valueLength its length in UTF-16 units
    @return 0, 3, 7, 8, 10 */
BRIMLET_API uint32_t getContractorsWithParams(FlatContractor **contractors, uint32_t *count, const uint16_t *key,
                                              uint32_t keyLength, const uint16_t *value, uint32_t valueLength);

/** Frees a contractor. @param contractor what a function gave @return 0, or 10 for a null pointer */
BRIMLET_API uint32_t freeContractor(FlatContractor *contractor);

/** Frees an array of contractors. @param contractors what a function gave @param count its count
    @return 0, or 10 for a null pointer or a count of 0 */
BRIMLET_API uint32_t freeContractorsArray(FlatContractor *contractors, uint32_t count);

/** @} */

/**
 * @name Contracts
 * JSON: "id" number, required; "number", "c_name", "description", "extra" text; "status", "date" number;
 * "contractor_id", "operator_id" number. Searchable: all but "operator_id".
 * @{
 */

/** Adds contracts. @param json batch @param length its length in UTF-16 units @return 0, 5, 9, 10 */
BRIMLET_API uint32_t addContracts(const uint16_t *json, uint32_t length);

/** Merges a contract. @param[out] contract as stored, with its contractor and operator, free with freeContract
    @param json one record @param length its length in UTF-16 units
    @return 0, 5, 8, 9, 10, 255 */
BRIMLET_API uint32_t updateContract(FlatContract **contract, const uint16_t *json, uint32_t length);

/** Removes a contract, and nothing that names it. @param json bare id under "id"
    @param length its length in UTF-16 units
    @return 0, 5, 7, 8, 9, 10 */
BRIMLET_API uint32_t deleteContract(const uint16_t *json, uint32_t length);

/** Gives one contract. @param[out] contract free with freeContract @param id its id @return 0, 7, 8, 10, 255 */
BRIMLET_API uint32_t getContract(FlatContract **contract, uint32_t id);

/** Gives all contracts. @param[out] contracts free with freeContractsArray @param[out] count how many
    @return 0, 3, 7, 8, 10 */
BRIMLET_API uint32_t getContracts(FlatContract **contracts, uint32_t *count);

/** Gives the contracts whose field `key` equals `value`. @param[out] contracts free with freeContractsArray
    @param[out] count how many @param key a JSON key of the record @param keyLength its length in UTF-16 units
    @param value a text @param valueLength its length in UTF-16 units
    @return 0, 3, 7, 8, 10 */
BRIMLET_API uint32_t getContractsWithParams(FlatContract **contracts, uint32_t *count, const uint16_t *key,
                                            uint32_t keyLength, const uint16_t *value, uint32_t valueLength);

/** Frees a contract. @param contract what a function gave @return 0, or 10 for a null pointer */
BRIMLET_API uint32_t freeContract(FlatContract *contract);

/** Frees an array of contracts. @param contracts what a function gave @param count its count
    @return 0, or 10 for a null pointer or a count of 0 */
BRIMLET_API uint32_t freeContractsArray(FlatContract *contracts, uint32_t count);

/** @} */

/**
 * @name Devices
 * JSON: "id" number, required; "account", "domain", "config_version", "cluster_id" number; "parted" flag; "sections"
 * array of sections, each with "zones"; "users" array of device users, each with "user_index" number, required,
 * "name", "comment", "phone" text and "sections" array of section numbers. An array of another type reads as empty;
 * a wrong element refuses the document. Searchable: "id", "account", "domain", "config_version", "parted".
 *
 * Adding a device replaces the rows that its document names. Sections, zones, users and links that the document
 * leaves out stay; only a removal takes them away.
 * @{
 */

/** Adds a device with all it holds. @param json one record @param length its length in UTF-16 units
    @return 0, 5, 8, 9, 10 */
BRIMLET_API uint32_t addDevice(const uint16_t *json, uint32_t length);

/** Adds devices with all they hold. @param json batch @param length its length in UTF-16 units @return 0, 5, 9, 10 */
BRIMLET_API uint32_t addDevices(const uint16_t *json, uint32_t length);

/** Sets "config_version" of a device that is in the store, to absent where the document leaves it out. All other
    members are checked and then ignored. @param[out] device as stored, free with freeDevice @param json one record
    @param length its length in UTF-16 units
    @return 0, 5, 8, 9, 10, 255 */
BRIMLET_API uint32_t updateDeviceFw(FlatDevice **device, const uint16_t *json, uint32_t length);

/** Removes a device with its sections, zones, users and links. @param json bare id under "id"
    @param length its length in UTF-16 units
    @return 0, 5, 7, 8, 9, 10 */
BRIMLET_API uint32_t deleteDevice(const uint16_t *json, uint32_t length);

/** Gives one device. @param[out] device free with freeDevice @param id its id @return 0, 7, 8, 10, 255 */
BRIMLET_API uint32_t getDevice(FlatDevice **device, uint32_t id);

/** Gives all devices. @param[out] devices free with freeDevicesArray @param[out] count how many
    @return 0, 3, 7, 8, 10 */
BRIMLET_API uint32_t getDevices(FlatDevice **devices, uint32_t *count);

/** Gives the devices whose field `key` equals `value`. @param[out] devices free with freeDevicesArray
    @param[out] count how many @param key a JSON key of the record @param keyLength its length in UTF-16 units
    @param value a text @param valueLength its length in UTF-16 units
    @return 0, 3, 7, 8, 10 */
BRIMLET_API uint32_t getDevicesWithParams(FlatDevice **devices, uint32_t *count, const uint16_t *key,
                                          uint32_t keyLength, const uint16_t *value, uint32_t valueLength);

/** Frees a device. @param device what a function gave
    @return 0, or 10 for a null pointer; 10 also where an inner array and its count disagree, what was freed before then
    stays freed and the device itself stays allocated */
BRIMLET_API uint32_t freeDevice(FlatDevice *device);

/** Frees an array of devices. @param devices what a function gave @param count its count
    @return 0, or 10 for a null pointer or a count of 0, or as freeDevice */
BRIMLET_API uint32_t freeDevicesArray(FlatDevice *devices, uint32_t count);

/** @} */

/**
 * @name Sections
 * JSON: "id", or else "section", number, required; "name" text; "detector", "physic", "schedule_id", "tracert",
 * "flags", "delay", "form", "uid_type", "arm" number; "zones" array of zones. Searchable: "id", "name",
 * "schedule_id", "tracert", "flags", "detector", "arm".
 * @{
 */

/** Merges a section of the device under "device". Its "zones" are checked and not written.
    @param[out] section as stored, with its zones, free with freeSection @param json one record with "device" beside it
    @param length its length in UTF-16 units
    @return 0, 5, 7, 8, 9, 10, 11, 255; with 7 and 11 the section is written and stays so */
BRIMLET_API uint32_t updateSection(FlatSection **section, const uint16_t *json, uint32_t length);

/** Removes a section with its zones and links. @param json bare ids under "device" and "section"
    @param length its length in UTF-16 units
    @return 0, 5, 7, 8, 9, 10 */
BRIMLET_API uint32_t deleteSection(const uint16_t *json, uint32_t length);

/** Gives one section of a device. @param[out] section free with freeSection @param sectionId its number
    @param deviceId the id of the device
    @return 0, 7, 8, 10, 255 */
BRIMLET_API uint32_t getSection(FlatSection **section, uint32_t sectionId, uint32_t deviceId);

/** Gives the sections of a device. @param[out] sections free with freeSectionsArray @param[out] count how many
    @param deviceId the id of the device
    @return 0, 3, 7, 8, 10 */
BRIMLET_API uint32_t getSections(FlatSection **sections, uint32_t *count, uint32_t deviceId);

/** Gives the sections of a device whose field `key` equals `value`. @param[out] sections free with freeSectionsArray
    @param[out] count how many @param key a JSON key of the record @param keyLength its length in UTF-16 units
    @param value a text @param valueLength its length in UTF-16 units @param deviceId the id of the device
    @return 0, 3, 7, 8, 10 */
BRIMLET_API uint32_t getSectionsWithParams(FlatSection **sections, uint32_t *count, const uint16_t *key,
                                           uint32_t keyLength, const uint16_t *value, uint32_t valueLength,
                                           uint32_t deviceId);

/** Frees a section. @param section what a function gave
    @return 0, or 10 for a null pointer; 10 also where `zones` and its count disagree */
BRIMLET_API uint32_t freeSection(FlatSection *section);

/** Frees an array of sections. @param sections what a function gave @param count its count
    @return 0, or 10 for a null pointer or a count of 0, or as freeSection */
BRIMLET_API uint32_t freeSectionsArray(FlatSection *sections, uint32_t count);

/** @} */

/**
 * @name Zones
 * JSON: "id", or else "zone", number, required; "name" text; "detector", "physic", "schedule_id", "tracert", "flags",
 * "delay", "form", "uid_type", "arm" number. Searchable: "id", "name" and all numbers but "arm".
 * A zone's number is unique in its device: a zone that comes under another section moves there.
 * @{
 */

/** Merges a zone of the device under "device" and the section under "section".
    @param[out] zone as stored, free with freeZone @param json one record with "device" and "section" beside it
    @param length its length in UTF-16 units
    @return 0, 5, 7, 8, 9, 10, 11, 255; with 7 and 11 the zone is written and stays so */
BRIMLET_API uint32_t updateZone(FlatZone **zone, const uint16_t *json, uint32_t length);

/** Removes a zone. @param json bare ids under "device", "section" and "zone" @param length its length in UTF-16 units
    @return 0, 5, 7, 8, 9, 10 */
BRIMLET_API uint32_t deleteZone(const uint16_t *json, uint32_t length);

/** Gives one zone of a section of a device. @param[out] zone free with freeZone @param zoneId its number
    @param deviceId the id of the device @param sectionId the number of the section
    @return 0, 7, 8, 10, 255 */
BRIMLET_API uint32_t getZone(FlatZone **zone, uint32_t zoneId, uint32_t deviceId, uint32_t sectionId);

/** Gives the zones of a device. @param[out] zones free with freeZonesArray @param[out] count how many
    @param deviceId the id of the device
    @return 0, 3, 7, 8, 10 */
BRIMLET_API uint32_t getZones(FlatZone **zones, uint32_t *count, uint32_t deviceId);

/** Gives the zones of a section. @param[out] zones free with freeZonesArray @param[out] count how many
    @param deviceId the id of the device @param sectionId the number of the section
    @return 0, 3, 7, 8, 10 */
BRIMLET_API uint32_t getZonesForSection(FlatZone **zones, uint32_t *count, uint32_t deviceId, uint32_t sectionId);

/** Gives the zones of a device whose field `key` equals `value`. @param[out] zones free with freeZonesArray
    @param[out] count how many @param key a JSON key of the record @param keyLength its length in UTF-16 units
    @param value a text @param valueLength its length in UTF-16 units @param deviceId the id of the device
    @return 0, 3, 7, 8, 10 */
BRIMLET_API uint32_t getZonesWithParams(FlatZone **zones, uint32_t *count, const uint16_t *key, uint32_t keyLength,
                                        const uint16_t *value, uint32_t valueLength, uint32_t deviceId);

/** Gives the zones of a section whose field `key` equals `value`. @param[out] zones free with freeZonesArray
    @param[out] count how many @param key a JSON key of the record @param keyLength its length in UTF-16 units
    @param value a text @param valueLength its length in UTF-16 units @param deviceId the id of the device
    @param sectionId the number of the section
    @return 0, 3, 7, 8, 10 */
BRIMLET_API uint32_t getZonesForSectionWithParams(FlatZone **zones, uint32_t *count, const uint16_t *key,
                                                  uint32_t keyLength, const uint16_t *value, uint32_t valueLength,
                                                  uint32_t deviceId, uint32_t sectionId);

/** Frees a zone. @param zone what a function gave @return 0, or 10 for a null pointer */
BRIMLET_API uint32_t freeZone(FlatZone *zone);

/** Frees an array of zones. @param zones what a function gave @param count its count
    @return 0, or 10 for a null pointer or a count of 0 */
BRIMLET_API uint32_t freeZonesArray(FlatZone *zones, uint32_t count);

/** @} */

/**
 * @name Sites
 * JSON: "id" number, required; "name", "comment", "extra", "address_text" text; "is_crossing", "delegated",
 * "site_plan" flag; "domain", "type", "category", "arm_mode" number; "contract_id", "contract_status" whole signed
 * number; "location" object with "lat" and "lon", of which what is no number reads as 0; "devices" array of devices. A
 * "location" that is empty or no object means none. Searchable: all but "site_plan", "location" and "devices".
 * @{
 */

/** Adds sites with their locations, and their devices as addDevices does. The store keeps no link between a site and
    its devices. @param json batch @param length its length in UTF-16 units @return 0, 5, 9, 10 */
BRIMLET_API uint32_t addSites(const uint16_t *json, uint32_t length);

/** Merges a site. A "location" is not merged: it replaces the location whole. "devices" are checked and not written.
    @param[out] site as stored, free with freeSite @param json one record @param length its length in UTF-16 units
    @return 0, 5, 8, 9, 10, 255 */
BRIMLET_API uint32_t updateSite(FlatSite **site, const uint16_t *json, uint32_t length);

/** Removes a site and its location. @param json bare id under "site_id" @param length its length in UTF-16 units
    @return 0, 5, 7, 8, 9, 10 */
BRIMLET_API uint32_t deleteSite(const uint16_t *json, uint32_t length);

/** Gives one site. @param[out] site free with freeSite @param id its id @return 0, 7, 8, 10, 255 */
BRIMLET_API uint32_t getSite(FlatSite **site, uint32_t id);

/** Gives all sites. @param[out] sites free with freeSitesArray @param[out] count how many @return 0, 3, 7, 8, 10 */
BRIMLET_API uint32_t getSites(FlatSite **sites, uint32_t *count);

/** Gives the sites whose field `key` equals `value`. @param[out] sites free with freeSitesArray
    @param[out] count how many @param key a JSON key of the record @param keyLength its length in UTF-16 units
    @param value a text @param valueLength its length in UTF-16 units
    @return 0, 3, 7, 8, 10 */
BRIMLET_API uint32_t getSitesWithParams(FlatSite **sites, uint32_t *count, const uint16_t *key, uint32_t keyLength,
                                        const uint16_t *value, uint32_t valueLength);

/** Gives a site's name and address without the rest. @param[out] name,address each released by the client with
    the platform's allocator (convention 4), null when absent; both must hold null on entry @param id its id
    @return 0, 7, 8, 10 */
BRIMLET_API uint32_t getSiteNameAndAddress(uint16_t **name, uint16_t **address, uint32_t id);

/** Frees a site. @param site what a function gave
    @return 0, or 10 for a null pointer; 10 also where `devices` and its count disagree */
BRIMLET_API uint32_t freeSite(FlatSite *site);

/** Frees an array of sites. @param sites what a function gave @param count its count
    @return 0, or 10 for a null pointer or a count of 0, or as freeSite */
BRIMLET_API uint32_t freeSitesArray(FlatSite *sites, uint32_t count);

/** @} */

/**
 * @name Events
 * JSON: "id" number, required; "time", "section", "zone", "localtime", "review_id", "operator_id" number; "device",
 * "channel" whole signed number; "active", "class", "detector", "reason", "review_state" whole number of which the
 * low 8 bits count; "data", "jdata" text; "is_closed", "affect" flag.
 * An event that names a device unknown to the store is kept, but no list shows it before that device is added.
 * @{
 */

/** Adds an event. @param[out] event as stored, with the names of its equipment, free with freeEvent
    @param json one record @param length its length in UTF-16 units
    @return 0, 5, 8, 9, 10, 255; with 8 the index of events could not be made and the event is not stored */
BRIMLET_API uint32_t addEvent(FlatEvent **event, const uint16_t *json, uint32_t length);

/**
 * Adds events.
 * @param[out] events those of the batch whose device is known, free with freeEventsArray. What the pointer holds on
 *             entry is not looked at, it is overwritten on success
 * @param[out] count how many
 * @param json batch
 * @param length its length in UTF-16 units
 * @return 0, 3, 5, 8, 9, 10; with 8 no device of the batch is known, and the events are stored all the same; or, as
 *         with addEvent, the index of events could not be made, and they are not
 */
BRIMLET_API uint32_t addEvents(FlatEvent **events, uint32_t *count, const uint16_t *json, uint32_t length);

/** Gives the events of known devices with a time between `from` and `to`, both included.
    @param[out] events free with freeEventsArray @param[out] count how many @param from the earliest time
    @param to the latest time
    @return 0, 3, 7, 8, 10 */
BRIMLET_API uint32_t getEvents(FlatEvent **events, uint32_t *count, uint32_t from, uint32_t to);

/** Gives the events of known devices whose affect flag is set. @param[out] events free with freeEventsArray
    @param[out] count how many @return 0, 3, 7, 8, 10 */
BRIMLET_API uint32_t getAffectEvents(FlatEvent **events, uint32_t *count);

/**
 * Clears the affect flag of an event.
 * @param[in,out] event as stored, free with freeEvent. It need not hold null: on success a block that it holds is
 *                released, that one block and nothing that it points to
 * @param json bare id under "id"
 * @param length its length in UTF-16 units
 * @return 0, 5, 7, 8, 9, 10, 255
 */
BRIMLET_API uint32_t removeAffectFlag(FlatEvent **event, const uint16_t *json, uint32_t length);

/** Removes the events with a time up to and including `date` whose affect flag is stored as not set. Events that
    arrived without "affect" or without "time" stay.
    @param date the latest time that goes
    @return 0, 9 */
BRIMLET_API uint32_t clearEventsBeforeDateExceptAffects(uint32_t date);

/** Frees an event. @param event what a function gave @return 0, or 10 for a null pointer */
BRIMLET_API uint32_t freeEvent(FlatEvent *event);

/** Frees an array of events. @param events what a function gave @param count its count
    @return 0, or 10 for a null pointer or a count of 0 */
BRIMLET_API uint32_t freeEventsArray(FlatEvent *events, uint32_t count);

/** @} */

/**
 * @name Clearing
 * @{
 */

/** Empties the store, all or nothing. The server address stays. @return 0, 9 */
BRIMLET_API uint32_t clearAll(void);

/** Empties the store but for the events, all or nothing. The server address stays. @return 0, 9 */
BRIMLET_API uint32_t clearAllExceptEvents(void);

/** @} */

#ifdef __cplusplus
}
#endif

#endif
