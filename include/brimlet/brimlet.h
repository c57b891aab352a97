/**
 * @file brimlet.h
 * Brimlet keeps a local, disposable copy of a monitoring service's reference data and event journal in one SQLite
 * file. This is its whole interface: 96 plain functions, for C, C++ and every language that can call C.
 *
 * Conventions, which hold for every function unless it says otherwise:
 *
 * 1. **Results.** Each function lists every result code that it can return, with its condition; ResultCodes.h says
 *    what a code means, what causes it and what to do about it. If memory runs out there may be no result: the process
 *    aborts, or a C++ client catches a std::bad_alloc and must let the process end, because the transaction of the call
 *    is still open.
 * 2. **Text in** is a pointer to UTF-16 code units and a length in code units, not bytes. It needs no terminator. A
 *    byte order mark at its start is obeyed and dropped. A text has at most 700 million code units: a longer one is
 *    not refused, and the process may abort.
 * 3. **Documents** are the texts named `json`: a JSON object whose member "D" is the payload, in one of three forms.
 *    - Batch: `{"D":{"items":[{...},{...}]}}`. It is stored as a whole or not at all.
 *    - Document of one record: `{"D":{...}}`, with the members of the record in "D" itself.
 *    - Id-only document: `{"D":{"op_id":7}}`, with the keys that the function names. A value of any other type than
 *      number reads as 0.
 *
 *    Keys are compared exactly, and unknown members are ignored. Members other than the required ones may be left out,
 *    but must not be null: null is a wrong type. Nested arrays and objects are the exception: every other type reads as
 *    empty there, while an element of a wrong type is still a wrong type. FlatRecords.h lists the keys of each record,
 *    and the kind of value that each takes.
 * 4. **Adding replaces** the stored record with the same id as a whole: members that the document leaves out become
 *    absent. Rows of other tables that it leaves out stay. **Updating merges**: it inserts a record with a new id,
 *    otherwise members that the document leaves out keep their stored values. The function then returns the record as
 *    stored.
 * 5. **Out-parameters** must not be null. One that receives a record, an array or a text must point to null, otherwise
 *    the function returns BRIMLET_REFUSED before it does anything else. On any result but BRIMLET_DONE they all keep
 *    their values.
 * 6. **The client owns** what it receives, and releases it whole with the function that the comment names, an array
 *    with the count that came with it. The free functions may be called at any time, also after exitCache. Every block
 *    comes from the allocator that the plain texts are released with: `free`, on Windows `CoTaskMemFree`.
 * 7. **Absent is not empty**: what is absent is a null pointer, an empty text is a block with the NUL terminator only.
 * 8. **Searching**: a `...WithParams` function gets the records in which the field of a key equals a value. The key is
 *    compared exactly. The value is always given as text ("5" finds the number 5), without patterns or case folding.
 * 9. **Arrays** are in no particular order and never empty: a function with no record to return returns
 *    BRIMLET_NOT_FOUND.
 * 10. **Threads**: launchCache keeps the thread that calls it. All other functions may be called from any thread, one
 *     call at a time, once getState no longer returns BRIMLET_STATE_NONE and before exitCache. Outside of that time a
 *     call that reaches the store crashes.
 */
#ifndef BRIMLET_H
#define BRIMLET_H

#include "FlatRecords.h"
#include "ResultCodes.h"

#include <stdint.h>

/** The version of the library that this header belongs to: major, minor and patch. CMake reads it from here. */
#define BRIMLET_VERSION "0.1.0"

/**
 * @def BRIMLET_API
 * Exports a function from the library, or imports it into a client.
 */
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
 * Runs the library on the calling thread until exitCache is called.
 *
 * Opens the file "CacheDb" in the working directory, or creates it. Poll getState to learn when that is done, then call
 * getLaunchCacheResult to learn how it went. A launch that fails does not return either. At most one launch may run at
 * a time; when launchCache and exitCache have both returned, launchCache may be called again, on any thread.
 *
 * It creates the process's one QCoreApplication, so a client that has one of its own cannot use it. On Unix the first
 * call sets the process's locale to that of its environment, as Qt does.
 *
 * @return always 0
 */
BRIMLET_API int32_t launchCache(void);

/**
 * Closes the file and makes launchCache return, without waiting for it.
 *
 * Call it once getState has returned BRIMLET_STATE_RUNNING: an event loop that has not started yet would miss the call.
 * No other call may be running. Afterwards a client may only call getState, getLaunchCacheResult, the free functions
 * and launchCache. Does nothing if nothing is launched.
 *
 * Once getState no longer returns BRIMLET_STATE_NONE a process may exit without it; before that, its exit may crash or
 * hang in Qt. An exit handler may call it only if it was registered after the launch was finished, because Qt cleans up
 * before handlers that were registered earlier.
 */
BRIMLET_API void exitCache(void);

/**
 * Gets the state of the library.
 * May be called at any time except while exitCache runs.
 *
 * @return a value of BrimletState
 */
BRIMLET_API uint32_t getState(void);

/**
 * Gets the result of the launch.
 * May be called at any time except while exitCache runs.
 *
 * @return a value of BrimletLaunchResult
 */
BRIMLET_API uint32_t getLaunchCacheResult(void);

/** @} */

/**
 * @name Server address
 * @{
 */

/**
 * Stores the server address, in place of the one before.
 *
 * Any text is accepted, and it is not JSON. The address survives clearAll and clearAllExceptEvents.
 *
 * @param[in] text    the address; an empty text means none
 * @param[in] length  length of `text` in UTF-16 code units
 * @retval BRIMLET_DONE          the address is stored
 * @retval BRIMLET_WRITE_FAILED  the store could not be written; the address is as it was
 */
BRIMLET_API uint32_t setServerIp(const uint16_t *text, uint32_t length);

/**
 * Gets the address that setServerIp stored.
 * Release it with free, on Windows with CoTaskMemFree.
 *
 * @param[out] address  receives the address
 * @retval BRIMLET_DONE         `*address` is the address, absent if there is none or it is empty
 * @retval BRIMLET_READ_FAILED  the store could not be read
 * @retval BRIMLET_REFUSED      `*address` is not null
 */
BRIMLET_API uint32_t getServerIp(uint16_t **address);

/** @} */

/**
 * @name Locales
 *
 * Documents hold the keys of FlatLocale. No function updates or deletes a single locale; clearAll and
 * clearAllExceptEvents delete them all.
 * @{
 */

/**
 * Adds or replaces locales.
 *
 * @param[in] json    batch of locales
 * @param[in] length  length of `json` in UTF-16 code units
 * @retval BRIMLET_DONE          all locales of the batch are stored
 * @retval BRIMLET_INCOMPLETE    a required member is missing or a member has a wrong type; no locale is stored
 * @retval BRIMLET_WRITE_FAILED  the store could not be written; no locale is stored
 * @retval BRIMLET_REFUSED       `json` is not a JSON object, or its "items" is empty
 */
BRIMLET_API uint32_t addLocales(const uint16_t *json, uint32_t length);

/**
 * Gets one locale.
 * Release it with freeLocale.
 *
 * @param[out] locale  receives the locale
 * @param[in]  id      id of the locale
 * @retval BRIMLET_DONE         `*locale` is the locale
 * @retval BRIMLET_READ_FAILED  the store could not be read
 * @retval BRIMLET_NOT_FOUND    the store has no locale with this id
 * @retval BRIMLET_REFUSED      `*locale` is not null
 * @retval BRIMLET_NO_RECORD    internal error: no record
 */
BRIMLET_API uint32_t getLocale(FlatLocale **locale, uint32_t id);

/**
 * Gets all locales as an array.
 * Release it with freeLocalesArray.
 *
 * @param[out] locales  receives the array of locales
 * @param[out] count    receives the number of locales
 * @retval BRIMLET_DONE         `*locales` is the array, with at least one locale
 * @retval BRIMLET_NO_BLOCK     out of memory for the array
 * @retval BRIMLET_READ_FAILED  the store could not be read
 * @retval BRIMLET_NOT_FOUND    the store has no locales
 * @retval BRIMLET_REFUSED      `*locales` is not null
 */
BRIMLET_API uint32_t getLocales(FlatLocale **locales, uint32_t *count);

/**
 * Gets the locales whose field `key` equals `value`, as an array.
 * Release it with freeLocalesArray.
 *
 * @param[out] locales      receives the array of locales
 * @param[out] count        receives the number of locales
 * @param[in]  key          key of FlatLocale
 * @param[in]  keyLength    length of `key` in UTF-16 code units
 * @param[in]  value        value to find, as text
 * @param[in]  valueLength  length of `value` in UTF-16 code units
 * @retval BRIMLET_DONE         `*locales` is the array, with at least one locale
 * @retval BRIMLET_NO_BLOCK     out of memory for the array
 * @retval BRIMLET_READ_FAILED  the store could not be read
 * @retval BRIMLET_NOT_FOUND    no locale has this value
 * @retval BRIMLET_REFUSED      `*locales` is not null, or `key` is not a key to search by
 */
BRIMLET_API uint32_t getLocalesWithParams(FlatLocale **locales, uint32_t *count, const uint16_t *key,
                                          uint32_t keyLength, const uint16_t *value, uint32_t valueLength);

/**
 * Releases a locale and everything in it.
 *
 * @param[in] locale  locale that a function returned
 * @retval BRIMLET_DONE     the locale is released
 * @retval BRIMLET_REFUSED  `locale` is null
 */
BRIMLET_API uint32_t freeLocale(FlatLocale *locale);

/**
 * Releases an array of locales and everything in it.
 *
 * @param[in] locales  array that a function returned
 * @param[in] count    count that the function returned with it
 * @retval BRIMLET_DONE     the array is released
 * @retval BRIMLET_REFUSED  `locales` is null, or `count` is 0
 */
BRIMLET_API uint32_t freeLocalesArray(FlatLocale *locales, uint32_t count);

/** @} */

/**
 * @name Domains
 *
 * Documents hold the keys of FlatDomain.
 * @{
 */

/**
 * Adds or replaces domains.
 *
 * @param[in] json    batch of domains
 * @param[in] length  length of `json` in UTF-16 code units
 * @retval BRIMLET_DONE          all domains of the batch are stored
 * @retval BRIMLET_INCOMPLETE    a required member is missing or a member has a wrong type; no domain is stored
 * @retval BRIMLET_WRITE_FAILED  the store could not be written; no domain is stored
 * @retval BRIMLET_REFUSED       `json` is not a JSON object, or its "items" is empty
 */
BRIMLET_API uint32_t addDomains(const uint16_t *json, uint32_t length);

/**
 * Updates or inserts a domain, and gets it as stored.
 * Release it with freeDomain.
 *
 * @param[out] domain  receives the domain as stored
 * @param[in]  json    document of one domain
 * @param[in]  length  length of `json` in UTF-16 code units
 * @retval BRIMLET_DONE          `*domain` is the domain as stored
 * @retval BRIMLET_INCOMPLETE    a required member is missing or a member has a wrong type; nothing is written
 * @retval BRIMLET_NOT_FOUND     the domain is not in the store after the write
 * @retval BRIMLET_WRITE_FAILED  the store could not be written; the domain is as it was
 * @retval BRIMLET_REFUSED       `*domain` is not null, or `json` is not a JSON object
 * @retval BRIMLET_NO_RECORD     internal error: no record
 */
BRIMLET_API uint32_t updateDomain(FlatDomain **domain, const uint16_t *json, uint32_t length);

/**
 * Deletes one domain. Records that name it stay.
 *
 * @param[in] json    id-only document with "domain_id"
 * @param[in] length  length of `json` in UTF-16 code units
 * @retval BRIMLET_DONE          the domain is deleted
 * @retval BRIMLET_INCOMPLETE    "D" is missing or not an object, or "domain_id" is missing
 * @retval BRIMLET_READ_FAILED   the store could not be read
 * @retval BRIMLET_NOT_FOUND     the store has no domain with this id
 * @retval BRIMLET_WRITE_FAILED  the store could not be written; nothing is deleted
 * @retval BRIMLET_REFUSED       `json` is not a JSON object
 */
BRIMLET_API uint32_t deleteDomain(const uint16_t *json, uint32_t length);

/**
 * Gets one domain.
 * Release it with freeDomain.
 *
 * @param[out] domain  receives the domain
 * @param[in]  id      id of the domain
 * @retval BRIMLET_DONE         `*domain` is the domain
 * @retval BRIMLET_READ_FAILED  the store could not be read
 * @retval BRIMLET_NOT_FOUND    the store has no domain with this id
 * @retval BRIMLET_REFUSED      `*domain` is not null
 * @retval BRIMLET_NO_RECORD    internal error: no record
 */
BRIMLET_API uint32_t getDomain(FlatDomain **domain, uint32_t id);

/**
 * Gets all domains as an array.
 * Release it with freeDomainsArray.
 *
 * @param[out] domains  receives the array of domains
 * @param[out] count    receives the number of domains
 * @retval BRIMLET_DONE         `*domains` is the array, with at least one domain
 * @retval BRIMLET_NO_BLOCK     out of memory for the array
 * @retval BRIMLET_READ_FAILED  the store could not be read
 * @retval BRIMLET_NOT_FOUND    the store has no domains
 * @retval BRIMLET_REFUSED      `*domains` is not null
 */
BRIMLET_API uint32_t getDomains(FlatDomain **domains, uint32_t *count);

/**
 * Gets the domains whose field `key` equals `value`, as an array.
 * Release it with freeDomainsArray.
 *
 * @param[out] domains      receives the array of domains
 * @param[out] count        receives the number of domains
 * @param[in]  key          key of FlatDomain
 * @param[in]  keyLength    length of `key` in UTF-16 code units
 * @param[in]  value        value to find, as text
 * @param[in]  valueLength  length of `value` in UTF-16 code units
 * @retval BRIMLET_DONE         `*domains` is the array, with at least one domain
 * @retval BRIMLET_NO_BLOCK     out of memory for the array
 * @retval BRIMLET_READ_FAILED  the store could not be read
 * @retval BRIMLET_NOT_FOUND    no domain has this value
 * @retval BRIMLET_REFUSED      `*domains` is not null, or `key` is not a key to search by
 */
BRIMLET_API uint32_t getDomainsWithParams(FlatDomain **domains, uint32_t *count, const uint16_t *key,
                                          uint32_t keyLength, const uint16_t *value, uint32_t valueLength);

/**
 * Releases a domain and everything in it.
 *
 * @param[in] domain  domain that a function returned
 * @retval BRIMLET_DONE     the domain is released
 * @retval BRIMLET_REFUSED  `domain` is null
 */
BRIMLET_API uint32_t freeDomain(FlatDomain *domain);

/**
 * Releases an array of domains and everything in it.
 *
 * @param[in] domains  array that a function returned
 * @param[in] count    count that the function returned with it
 * @retval BRIMLET_DONE     the array is released
 * @retval BRIMLET_REFUSED  `domains` is null, or `count` is 0
 */
BRIMLET_API uint32_t freeDomainsArray(FlatDomain *domains, uint32_t count);

/** @} */

/**
 * @name Users
 *
 * Documents hold the keys of FlatUser.
 * @{
 */

/**
 * Adds or replaces users.
 *
 * @param[in] json    batch of users
 * @param[in] length  length of `json` in UTF-16 code units
 * @retval BRIMLET_DONE          all users of the batch are stored
 * @retval BRIMLET_INCOMPLETE    a required member is missing or a member has a wrong type; no user is stored
 * @retval BRIMLET_WRITE_FAILED  the store could not be written; no user is stored
 * @retval BRIMLET_REFUSED       `json` is not a JSON object, or its "items" is empty
 */
BRIMLET_API uint32_t addUsers(const uint16_t *json, uint32_t length);

/**
 * Updates or inserts a user, and gets it as stored.
 * Release it with freeUser.
 *
 * @param[out] user    receives the user as stored
 * @param[in]  json    document of one user
 * @param[in]  length  length of `json` in UTF-16 code units
 * @retval BRIMLET_DONE          `*user` is the user as stored
 * @retval BRIMLET_INCOMPLETE    a required member is missing or a member has a wrong type; nothing is written
 * @retval BRIMLET_NOT_FOUND     the user is not in the store after the write
 * @retval BRIMLET_WRITE_FAILED  the store could not be written; the user is as it was
 * @retval BRIMLET_REFUSED       `*user` is not null, or `json` is not a JSON object
 * @retval BRIMLET_NO_RECORD     internal error: no record
 */
BRIMLET_API uint32_t updateUser(FlatUser **user, const uint16_t *json, uint32_t length);

/**
 * Deletes one user. Records that name it stay.
 *
 * @param[in] json    id-only document with "op_id"
 * @param[in] length  length of `json` in UTF-16 code units
 * @retval BRIMLET_DONE          the user is deleted
 * @retval BRIMLET_INCOMPLETE    "D" is missing or not an object, or "op_id" is missing
 * @retval BRIMLET_READ_FAILED   the store could not be read
 * @retval BRIMLET_NOT_FOUND     the store has no user with this id
 * @retval BRIMLET_WRITE_FAILED  the store could not be written; nothing is deleted
 * @retval BRIMLET_REFUSED       `json` is not a JSON object
 */
BRIMLET_API uint32_t deleteUser(const uint16_t *json, uint32_t length);

/**
 * Gets one user.
 * Release it with freeUser.
 *
 * @param[out] user  receives the user
 * @param[in]  id    id of the user
 * @retval BRIMLET_DONE         `*user` is the user
 * @retval BRIMLET_READ_FAILED  the store could not be read
 * @retval BRIMLET_NOT_FOUND    the store has no user with this id
 * @retval BRIMLET_REFUSED      `*user` is not null
 * @retval BRIMLET_NO_RECORD    internal error: no record
 */
BRIMLET_API uint32_t getUser(FlatUser **user, uint32_t id);

/**
 * Gets all users as an array.
 * Release it with freeUsersArray.
 *
 * @param[out] users  receives the array of users
 * @param[out] count  receives the number of users
 * @retval BRIMLET_DONE         `*users` is the array, with at least one user
 * @retval BRIMLET_NO_BLOCK     out of memory for the array
 * @retval BRIMLET_READ_FAILED  the store could not be read
 * @retval BRIMLET_NOT_FOUND    the store has no users
 * @retval BRIMLET_REFUSED      `*users` is not null
 */
BRIMLET_API uint32_t getUsers(FlatUser **users, uint32_t *count);

/**
 * Gets the users whose field `key` equals `value`, as an array.
 * Release it with freeUsersArray.
 *
 * @param[out] users        receives the array of users
 * @param[out] count        receives the number of users
 * @param[in]  key          key of FlatUser
 * @param[in]  keyLength    length of `key` in UTF-16 code units
 * @param[in]  value        value to find, as text
 * @param[in]  valueLength  length of `value` in UTF-16 code units
 * @retval BRIMLET_DONE         `*users` is the array, with at least one user
 * @retval BRIMLET_NO_BLOCK     out of memory for the array
 * @retval BRIMLET_READ_FAILED  the store could not be read
 * @retval BRIMLET_NOT_FOUND    no user has this value
 * @retval BRIMLET_REFUSED      `*users` is not null, or `key` is not a key to search by
 */
BRIMLET_API uint32_t getUsersWithParams(FlatUser **users, uint32_t *count, const uint16_t *key, uint32_t keyLength,
                                        const uint16_t *value, uint32_t valueLength);

/**
 * Releases a user and everything in it.
 *
 * @param[in] user  user that a function returned
 * @retval BRIMLET_DONE     the user is released
 * @retval BRIMLET_REFUSED  `user` is null
 */
BRIMLET_API uint32_t freeUser(FlatUser *user);

/**
 * Releases an array of users and everything in it.
 *
 * @param[in] users  array that a function returned
 * @param[in] count  count that the function returned with it
 * @retval BRIMLET_DONE     the array is released
 * @retval BRIMLET_REFUSED  `users` is null, or `count` is 0
 */
BRIMLET_API uint32_t freeUsersArray(FlatUser *users, uint32_t count);

/** @} */

/**
 * @name Organizations
 *
 * Documents hold the keys of FlatOrganization, with an object with the keys of FlatPerson under "contact".
 * @{
 */

/**
 * Adds or replaces organizations, with their contact persons.
 *
 * @param[in] json    batch of organizations
 * @param[in] length  length of `json` in UTF-16 code units
 * @retval BRIMLET_DONE          all organizations of the batch are stored
 * @retval BRIMLET_INCOMPLETE    a required member is missing or a member has a wrong type; no organization is stored
 * @retval BRIMLET_WRITE_FAILED  the store could not be written; no organization is stored
 * @retval BRIMLET_REFUSED       `json` is not a JSON object, or its "items" is empty
 */
BRIMLET_API uint32_t addOrganizations(const uint16_t *json, uint32_t length);

/**
 * Updates or inserts an organization, and gets it as stored.
 * Release it with freeOrganization.
 *
 * A "contact" replaces the stored person as a whole.
 *
 * @param[out] organization  receives the organization as stored
 * @param[in]  json          document of one organization
 * @param[in]  length        length of `json` in UTF-16 code units
 * @retval BRIMLET_DONE          `*organization` is the organization as stored
 * @retval BRIMLET_INCOMPLETE    a required member is missing or a member has a wrong type; nothing is written
 * @retval BRIMLET_NOT_FOUND     the organization is not in the store after the write
 * @retval BRIMLET_WRITE_FAILED  the store could not be written; the organization is as it was
 * @retval BRIMLET_REFUSED       `*organization` is not null, or `json` is not a JSON object
 * @retval BRIMLET_NO_RECORD     internal error: no record
 */
BRIMLET_API uint32_t updateOrganization(FlatOrganization **organization, const uint16_t *json, uint32_t length);

/**
 * Deletes one organization and the contact person that it names.
 *
 * @param[in] json    id-only document with "org_id"
 * @param[in] length  length of `json` in UTF-16 code units
 * @retval BRIMLET_DONE          the organization is deleted
 * @retval BRIMLET_INCOMPLETE    "D" is missing or not an object, or "org_id" is missing
 * @retval BRIMLET_READ_FAILED   the store could not be read
 * @retval BRIMLET_NOT_FOUND     the store has no organization with this id
 * @retval BRIMLET_WRITE_FAILED  the store could not be written; nothing is deleted
 * @retval BRIMLET_REFUSED       `json` is not a JSON object
 */
BRIMLET_API uint32_t deleteOrganization(const uint16_t *json, uint32_t length);

/**
 * Gets one organization.
 * Release it with freeOrganization.
 *
 * @param[out] organization  receives the organization
 * @param[in]  id            id of the organization
 * @retval BRIMLET_DONE         `*organization` is the organization
 * @retval BRIMLET_READ_FAILED  the store could not be read
 * @retval BRIMLET_NOT_FOUND    the store has no organization with this id
 * @retval BRIMLET_REFUSED      `*organization` is not null
 * @retval BRIMLET_NO_RECORD    internal error: no record
 */
BRIMLET_API uint32_t getOrganization(FlatOrganization **organization, uint32_t id);

/**
 * Gets all organizations as an array.
 * Release it with freeOrganizationsArray.
 *
 * @param[out] organizations  receives the array of organizations
 * @param[out] count          receives the number of organizations
 * @retval BRIMLET_DONE         `*organizations` is the array, with at least one organization
 * @retval BRIMLET_NO_BLOCK     out of memory for the array
 * @retval BRIMLET_READ_FAILED  the store could not be read
 * @retval BRIMLET_NOT_FOUND    the store has no organizations
 * @retval BRIMLET_REFUSED      `*organizations` is not null
 */
BRIMLET_API uint32_t getOrganizations(FlatOrganization **organizations, uint32_t *count);

/**
 * Gets the organizations whose field `key` equals `value`, as an array.
 * Release it with freeOrganizationsArray.
 *
 * @param[out] organizations  receives the array of organizations
 * @param[out] count          receives the number of organizations
 * @param[in]  key            key of FlatOrganization, except "contact"
 * @param[in]  keyLength      length of `key` in UTF-16 code units
 * @param[in]  value          value to find, as text
 * @param[in]  valueLength    length of `value` in UTF-16 code units
 * @retval BRIMLET_DONE         `*organizations` is the array, with at least one organization
 * @retval BRIMLET_NO_BLOCK     out of memory for the array
 * @retval BRIMLET_READ_FAILED  the store could not be read
 * @retval BRIMLET_NOT_FOUND    no organization has this value
 * @retval BRIMLET_REFUSED      `*organizations` is not null, or `key` is not a key to search by
 */
BRIMLET_API uint32_t getOrganizationsWithParams(FlatOrganization **organizations, uint32_t *count, const uint16_t *key,
                                                uint32_t keyLength, const uint16_t *value, uint32_t valueLength);

/**
 * Releases an organization and everything in it.
 *
 * @param[in] organization  organization that a function returned
 * @retval BRIMLET_DONE     the organization is released
 * @retval BRIMLET_REFUSED  `organization` is null
 */
BRIMLET_API uint32_t freeOrganization(FlatOrganization *organization);

/**
 * Releases an array of organizations and everything in it.
 *
 * @param[in] organizations  array that a function returned
 * @param[in] count          count that the function returned with it
 * @retval BRIMLET_DONE     the array is released
 * @retval BRIMLET_REFUSED  `organizations` is null, or `count` is 0
 */
BRIMLET_API uint32_t freeOrganizationsArray(FlatOrganization *organizations, uint32_t count);

/** @} */

/**
 * @name Contractors
 *
 * Documents hold the keys of FlatContractor.
 * @{
 */

/**
 * Adds or replaces contractors.
 *
 * @param[in] json    batch of contractors
 * @param[in] length  length of `json` in UTF-16 code units
 * @retval BRIMLET_DONE          all contractors of the batch are stored
 * @retval BRIMLET_INCOMPLETE    a required member is missing or a member has a wrong type; no contractor is stored
 * @retval BRIMLET_WRITE_FAILED  the store could not be written; no contractor is stored
 * @retval BRIMLET_REFUSED       `json` is not a JSON object, or its "items" is empty
 */
BRIMLET_API uint32_t addContractors(const uint16_t *json, uint32_t length);

/**
 * Updates or inserts a contractor, and gets it as stored.
 * Release it with freeContractor.
 *
 * @param[out] contractor  receives the contractor as stored
 * @param[in]  json        document of one contractor
 * @param[in]  length      length of `json` in UTF-16 code units
 * @retval BRIMLET_DONE          `*contractor` is the contractor as stored
 * @retval BRIMLET_INCOMPLETE    a required member is missing or a member has a wrong type; nothing is written
 * @retval BRIMLET_NOT_FOUND     the contractor is not in the store after the write
 * @retval BRIMLET_WRITE_FAILED  the store could not be written; the contractor is as it was
 * @retval BRIMLET_REFUSED       `*contractor` is not null, or `json` is not a JSON object
 * @retval BRIMLET_NO_RECORD     internal error: no record
 */
BRIMLET_API uint32_t updateContractor(FlatContractor **contractor, const uint16_t *json, uint32_t length);

/**
 * Deletes one contractor. Records that name it stay.
 *
 * @param[in] json    id-only document with "id"
 * @param[in] length  length of `json` in UTF-16 code units
 * @retval BRIMLET_DONE          the contractor is deleted
 * @retval BRIMLET_INCOMPLETE    "D" is missing or not an object, or "id" is missing
 * @retval BRIMLET_READ_FAILED   the store could not be read
 * @retval BRIMLET_NOT_FOUND     the store has no contractor with this id
 * @retval BRIMLET_WRITE_FAILED  the store could not be written; nothing is deleted
 * @retval BRIMLET_REFUSED       `json` is not a JSON object
 */
BRIMLET_API uint32_t deleteContractor(const uint16_t *json, uint32_t length);

/**
 * Gets one contractor.
 * Release it with freeContractor.
 *
 * @param[out] contractor  receives the contractor
 * @param[in]  id          id of the contractor
 * @retval BRIMLET_DONE         `*contractor` is the contractor
 * @retval BRIMLET_READ_FAILED  the store could not be read
 * @retval BRIMLET_NOT_FOUND    the store has no contractor with this id
 * @retval BRIMLET_REFUSED      `*contractor` is not null
 * @retval BRIMLET_NO_RECORD    internal error: no record
 */
BRIMLET_API uint32_t getContractor(FlatContractor **contractor, uint32_t id);

/**
 * Gets all contractors as an array.
 * Release it with freeContractorsArray.
 *
 * @param[out] contractors  receives the array of contractors
 * @param[out] count        receives the number of contractors
 * @retval BRIMLET_DONE         `*contractors` is the array, with at least one contractor
 * @retval BRIMLET_NO_BLOCK     out of memory for the array
 * @retval BRIMLET_READ_FAILED  the store could not be read
 * @retval BRIMLET_NOT_FOUND    the store has no contractors
 * @retval BRIMLET_REFUSED      `*contractors` is not null
 */
BRIMLET_API uint32_t getContractors(FlatContractor **contractors, uint32_t *count);

/**
 * Gets the contractors whose field `key` equals `value`, as an array.
 * Release it with freeContractorsArray.
 *
 * @param[out] contractors  receives the array of contractors
 * @param[out] count        receives the number of contractors
 * @param[in]  key          key of FlatContractor
 * @param[in]  keyLength    length of `key` in UTF-16 code units
 * @param[in]  value        value to find, as text
 * @param[in]  valueLength  length of `value` in UTF-16 code units
 * @retval BRIMLET_DONE         `*contractors` is the array, with at least one contractor
 * @retval BRIMLET_NO_BLOCK     out of memory for the array
 * @retval BRIMLET_READ_FAILED  the store could not be read
 * @retval BRIMLET_NOT_FOUND    no contractor has this value
 * @retval BRIMLET_REFUSED      `*contractors` is not null, or `key` is not a key to search by
 */
BRIMLET_API uint32_t getContractorsWithParams(FlatContractor **contractors, uint32_t *count, const uint16_t *key,
                                              uint32_t keyLength, const uint16_t *value, uint32_t valueLength);

/**
 * Releases a contractor and everything in it.
 *
 * @param[in] contractor  contractor that a function returned
 * @retval BRIMLET_DONE     the contractor is released
 * @retval BRIMLET_REFUSED  `contractor` is null
 */
BRIMLET_API uint32_t freeContractor(FlatContractor *contractor);

/**
 * Releases an array of contractors and everything in it.
 *
 * @param[in] contractors  array that a function returned
 * @param[in] count        count that the function returned with it
 * @retval BRIMLET_DONE     the array is released
 * @retval BRIMLET_REFUSED  `contractors` is null, or `count` is 0
 */
BRIMLET_API uint32_t freeContractorsArray(FlatContractor *contractors, uint32_t count);

/** @} */

/**
 * @name Contracts
 *
 * Documents hold the keys of FlatContract.
 * @{
 */

/**
 * Adds or replaces contracts.
 *
 * @param[in] json    batch of contracts
 * @param[in] length  length of `json` in UTF-16 code units
 * @retval BRIMLET_DONE          all contracts of the batch are stored
 * @retval BRIMLET_INCOMPLETE    a required member is missing or a member has a wrong type; no contract is stored
 * @retval BRIMLET_WRITE_FAILED  the store could not be written; no contract is stored
 * @retval BRIMLET_REFUSED       `json` is not a JSON object, or its "items" is empty
 */
BRIMLET_API uint32_t addContracts(const uint16_t *json, uint32_t length);

/**
 * Updates or inserts a contract, and gets it as stored.
 * Release it with freeContract.
 *
 * @param[out] contract  receives the contract as stored
 * @param[in]  json      document of one contract
 * @param[in]  length    length of `json` in UTF-16 code units
 * @retval BRIMLET_DONE          `*contract` is the contract as stored
 * @retval BRIMLET_INCOMPLETE    a required member is missing or a member has a wrong type; nothing is written
 * @retval BRIMLET_NOT_FOUND     the contract is not in the store after the write
 * @retval BRIMLET_WRITE_FAILED  the store could not be written; the contract is as it was
 * @retval BRIMLET_REFUSED       `*contract` is not null, or `json` is not a JSON object
 * @retval BRIMLET_NO_RECORD     internal error: no record
 */
BRIMLET_API uint32_t updateContract(FlatContract **contract, const uint16_t *json, uint32_t length);

/**
 * Deletes one contract. Records that name it stay.
 *
 * @param[in] json    id-only document with "id"
 * @param[in] length  length of `json` in UTF-16 code units
 * @retval BRIMLET_DONE          the contract is deleted
 * @retval BRIMLET_INCOMPLETE    "D" is missing or not an object, or "id" is missing
 * @retval BRIMLET_READ_FAILED   the store could not be read
 * @retval BRIMLET_NOT_FOUND     the store has no contract with this id
 * @retval BRIMLET_WRITE_FAILED  the store could not be written; nothing is deleted
 * @retval BRIMLET_REFUSED       `json` is not a JSON object
 */
BRIMLET_API uint32_t deleteContract(const uint16_t *json, uint32_t length);

/**
 * Gets one contract.
 * Release it with freeContract.
 *
 * @param[out] contract  receives the contract
 * @param[in]  id        id of the contract
 * @retval BRIMLET_DONE         `*contract` is the contract
 * @retval BRIMLET_READ_FAILED  the store could not be read
 * @retval BRIMLET_NOT_FOUND    the store has no contract with this id
 * @retval BRIMLET_REFUSED      `*contract` is not null
 * @retval BRIMLET_NO_RECORD    internal error: no record
 */
BRIMLET_API uint32_t getContract(FlatContract **contract, uint32_t id);

/**
 * Gets all contracts as an array.
 * Release it with freeContractsArray.
 *
 * @param[out] contracts  receives the array of contracts
 * @param[out] count      receives the number of contracts
 * @retval BRIMLET_DONE         `*contracts` is the array, with at least one contract
 * @retval BRIMLET_NO_BLOCK     out of memory for the array
 * @retval BRIMLET_READ_FAILED  the store could not be read
 * @retval BRIMLET_NOT_FOUND    the store has no contracts
 * @retval BRIMLET_REFUSED      `*contracts` is not null
 */
BRIMLET_API uint32_t getContracts(FlatContract **contracts, uint32_t *count);

/**
 * Gets the contracts whose field `key` equals `value`, as an array.
 * Release it with freeContractsArray.
 *
 * @param[out] contracts    receives the array of contracts
 * @param[out] count        receives the number of contracts
 * @param[in]  key          key of FlatContract, except "operator_id"
 * @param[in]  keyLength    length of `key` in UTF-16 code units
 * @param[in]  value        value to find, as text
 * @param[in]  valueLength  length of `value` in UTF-16 code units
 * @retval BRIMLET_DONE         `*contracts` is the array, with at least one contract
 * @retval BRIMLET_NO_BLOCK     out of memory for the array
 * @retval BRIMLET_READ_FAILED  the store could not be read
 * @retval BRIMLET_NOT_FOUND    no contract has this value
 * @retval BRIMLET_REFUSED      `*contracts` is not null, or `key` is not a key to search by
 */
BRIMLET_API uint32_t getContractsWithParams(FlatContract **contracts, uint32_t *count, const uint16_t *key,
                                            uint32_t keyLength, const uint16_t *value, uint32_t valueLength);

/**
 * Releases a contract and everything in it.
 *
 * @param[in] contract  contract that a function returned
 * @retval BRIMLET_DONE     the contract is released
 * @retval BRIMLET_REFUSED  `contract` is null
 */
BRIMLET_API uint32_t freeContract(FlatContract *contract);

/**
 * Releases an array of contracts and everything in it.
 *
 * @param[in] contracts  array that a function returned
 * @param[in] count      count that the function returned with it
 * @retval BRIMLET_DONE     the array is released
 * @retval BRIMLET_REFUSED  `contracts` is null, or `count` is 0
 */
BRIMLET_API uint32_t freeContractsArray(FlatContract *contracts, uint32_t count);

/** @} */

/**
 * @name Devices
 *
 * Documents hold the keys of FlatDevice, with objects with the keys of FlatSection and FlatDeviceUser in the arrays
 * "sections" and "users".
 *
 * Adding a device replaces the rows that its document names. Sections, zones, users and links that the document leaves
 * out stay in the store; only a delete function or a clear function removes them.
 * @{
 */

/**
 * Adds or replaces one device, with everything in it.
 *
 * @param[in] json    document of one device
 * @param[in] length  length of `json` in UTF-16 code units
 * @retval BRIMLET_DONE          the device is stored
 * @retval BRIMLET_INCOMPLETE    a required member is missing or a member has a wrong type; nothing is stored
 * @retval BRIMLET_NOT_FOUND     the device is not in the store after the write
 * @retval BRIMLET_WRITE_FAILED  the store could not be written; nothing is stored
 * @retval BRIMLET_REFUSED       `json` is not a JSON object
 */
BRIMLET_API uint32_t addDevice(const uint16_t *json, uint32_t length);

/**
 * Adds or replaces devices, with everything in them.
 *
 * @param[in] json    batch of devices
 * @param[in] length  length of `json` in UTF-16 code units
 * @retval BRIMLET_DONE          all devices of the batch are stored
 * @retval BRIMLET_INCOMPLETE    a required member is missing or a member has a wrong type; no device is stored
 * @retval BRIMLET_WRITE_FAILED  the store could not be written; no device is stored
 * @retval BRIMLET_REFUSED       `json` is not a JSON object, or its "items" is empty
 */
BRIMLET_API uint32_t addDevices(const uint16_t *json, uint32_t length);

/**
 * Sets the "config_version" of a stored device, and gets the device as stored.
 * Release it with freeDevice.
 *
 * A document without "config_version" makes it absent. All other members are checked and then ignored.
 *
 * @param[out] device  receives the device as stored
 * @param[in]  json    document of one device
 * @param[in]  length  length of `json` in UTF-16 code units
 * @retval BRIMLET_DONE          `*device` is the device as stored
 * @retval BRIMLET_INCOMPLETE    a required member is missing or a member has a wrong type; nothing is written
 * @retval BRIMLET_NOT_FOUND     the store has no device with this id
 * @retval BRIMLET_WRITE_FAILED  the store could not be written; the device is as it was
 * @retval BRIMLET_REFUSED       `*device` is not null, or `json` is not a JSON object
 * @retval BRIMLET_NO_RECORD     internal error: no record
 */
BRIMLET_API uint32_t updateDeviceFw(FlatDevice **device, const uint16_t *json, uint32_t length);

/**
 * Deletes one device with its sections, zones, users and links.
 *
 * @param[in] json    id-only document with "id"
 * @param[in] length  length of `json` in UTF-16 code units
 * @retval BRIMLET_DONE          the device is deleted
 * @retval BRIMLET_INCOMPLETE    "D" is missing or not an object, or "id" is missing
 * @retval BRIMLET_READ_FAILED   the store could not be read
 * @retval BRIMLET_NOT_FOUND     the store has no device with this id
 * @retval BRIMLET_WRITE_FAILED  the store could not be written; nothing is deleted
 * @retval BRIMLET_REFUSED       `json` is not a JSON object
 */
BRIMLET_API uint32_t deleteDevice(const uint16_t *json, uint32_t length);

/**
 * Gets one device.
 * Release it with freeDevice.
 *
 * @param[out] device  receives the device
 * @param[in]  id      id of the device
 * @retval BRIMLET_DONE         `*device` is the device
 * @retval BRIMLET_READ_FAILED  the store could not be read
 * @retval BRIMLET_NOT_FOUND    the store has no device with this id
 * @retval BRIMLET_REFUSED      `*device` is not null
 * @retval BRIMLET_NO_RECORD    internal error: no record
 */
BRIMLET_API uint32_t getDevice(FlatDevice **device, uint32_t id);

/**
 * Gets all devices as an array.
 * Release it with freeDevicesArray.
 *
 * @param[out] devices  receives the array of devices
 * @param[out] count    receives the number of devices
 * @retval BRIMLET_DONE         `*devices` is the array, with at least one device
 * @retval BRIMLET_NO_BLOCK     out of memory for the array
 * @retval BRIMLET_READ_FAILED  the store could not be read
 * @retval BRIMLET_NOT_FOUND    the store has no devices
 * @retval BRIMLET_REFUSED      `*devices` is not null
 */
BRIMLET_API uint32_t getDevices(FlatDevice **devices, uint32_t *count);

/**
 * Gets the devices whose field `key` equals `value`, as an array.
 * Release it with freeDevicesArray.
 *
 * @param[out] devices      receives the array of devices
 * @param[out] count        receives the number of devices
 * @param[in]  key          key of FlatDevice, except "cluster_id", "sections" and "users"
 * @param[in]  keyLength    length of `key` in UTF-16 code units
 * @param[in]  value        value to find, as text
 * @param[in]  valueLength  length of `value` in UTF-16 code units
 * @retval BRIMLET_DONE         `*devices` is the array, with at least one device
 * @retval BRIMLET_NO_BLOCK     out of memory for the array
 * @retval BRIMLET_READ_FAILED  the store could not be read
 * @retval BRIMLET_NOT_FOUND    no device has this value
 * @retval BRIMLET_REFUSED      `*devices` is not null, or `key` is not a key to search by
 */
BRIMLET_API uint32_t getDevicesWithParams(FlatDevice **devices, uint32_t *count, const uint16_t *key,
                                          uint32_t keyLength, const uint16_t *value, uint32_t valueLength);

/**
 * Releases a device and everything in it.
 *
 * @param[in] device  device that a function returned
 * @retval BRIMLET_DONE     the device is released
 * @retval BRIMLET_REFUSED  `device` is null, or the pointer and the count of an array in it disagree; what was released
 *                          before stays released, and the device itself stays allocated
 */
BRIMLET_API uint32_t freeDevice(FlatDevice *device);

/**
 * Releases an array of devices and everything in it.
 *
 * @param[in] devices  array that a function returned
 * @param[in] count    count that the function returned with it
 * @retval BRIMLET_DONE     the array is released
 * @retval BRIMLET_REFUSED  `devices` is null, or `count` is 0, or the pointer and the count of an array in a device
 *                          disagree; what was released before stays released, and the rest stays allocated
 */
BRIMLET_API uint32_t freeDevicesArray(FlatDevice *devices, uint32_t count);

/** @} */

/**
 * @name Sections
 *
 * Documents hold the keys of FlatSection. The number of a section is unique in its device.
 * @{
 */

/**
 * Updates or inserts a section of a device, and gets it with its stored zones.
 * Release it with freeSection.
 *
 * "zones" of the document are checked but not written.
 *
 * @param[out] section  receives the section as stored
 * @param[in]  json     document of one section, and the id of its device under "device" as in an id-only document
 * @param[in]  length   length of `json` in UTF-16 code units
 * @retval BRIMLET_DONE          `*section` is the section as stored
 * @retval BRIMLET_INCOMPLETE    "device" or another required member is missing or a member has a wrong type; nothing is
 *                               written
 * @retval BRIMLET_READ_FAILED   the store could not be searched for the device; the section is written
 * @retval BRIMLET_NOT_FOUND     the section is not in the store after the write
 * @retval BRIMLET_WRITE_FAILED  the store could not be written; the section is as it was
 * @retval BRIMLET_REFUSED       `*section` is not null, or `json` is not a JSON object
 * @retval BRIMLET_NO_PARENT     the store has no device with this id; the section is written
 * @retval BRIMLET_NO_RECORD     internal error: no record
 */
BRIMLET_API uint32_t updateSection(FlatSection **section, const uint16_t *json, uint32_t length);

/**
 * Deletes one section with its zones and links.
 *
 * @param[in] json    id-only document with "device" and "section"
 * @param[in] length  length of `json` in UTF-16 code units
 * @retval BRIMLET_DONE          the section is deleted
 * @retval BRIMLET_INCOMPLETE    "D" is missing or not an object, or "device" or "section" is missing
 * @retval BRIMLET_READ_FAILED   the store could not be read
 * @retval BRIMLET_NOT_FOUND     the device has no section with this number
 * @retval BRIMLET_WRITE_FAILED  the store could not be written; nothing is deleted
 * @retval BRIMLET_REFUSED       `json` is not a JSON object
 */
BRIMLET_API uint32_t deleteSection(const uint16_t *json, uint32_t length);

/**
 * Gets one section of a device.
 * Release it with freeSection.
 *
 * @param[out] section    receives the section
 * @param[in]  sectionId  number of the section
 * @param[in]  deviceId   id of the device
 * @retval BRIMLET_DONE         `*section` is the section
 * @retval BRIMLET_READ_FAILED  the store could not be read
 * @retval BRIMLET_NOT_FOUND    the device has no section with this number
 * @retval BRIMLET_REFUSED      `*section` is not null
 * @retval BRIMLET_NO_RECORD    internal error: no record
 */
BRIMLET_API uint32_t getSection(FlatSection **section, uint32_t sectionId, uint32_t deviceId);

/**
 * Gets the sections of a device as an array.
 * Release it with freeSectionsArray.
 *
 * @param[out] sections  receives the array of sections
 * @param[out] count     receives the number of sections
 * @param[in]  deviceId  id of the device
 * @retval BRIMLET_DONE         `*sections` is the array, with at least one section
 * @retval BRIMLET_NO_BLOCK     out of memory for the array
 * @retval BRIMLET_READ_FAILED  the store could not be read
 * @retval BRIMLET_NOT_FOUND    the device has no sections
 * @retval BRIMLET_REFUSED      `*sections` is not null
 */
BRIMLET_API uint32_t getSections(FlatSection **sections, uint32_t *count, uint32_t deviceId);

/**
 * Gets the sections of a device whose field `key` equals `value`, as an array.
 * Release it with freeSectionsArray.
 *
 * @param[out] sections     receives the array of sections
 * @param[out] count        receives the number of sections
 * @param[in]  key          key of FlatSection, except "section", "zones", "physic", "form", "delay" and "uid_type"
 * @param[in]  keyLength    length of `key` in UTF-16 code units
 * @param[in]  value        value to find, as text
 * @param[in]  valueLength  length of `value` in UTF-16 code units
 * @param[in]  deviceId     id of the device
 * @retval BRIMLET_DONE         `*sections` is the array, with at least one section
 * @retval BRIMLET_NO_BLOCK     out of memory for the array
 * @retval BRIMLET_READ_FAILED  the store could not be read
 * @retval BRIMLET_NOT_FOUND    no section of the device has this value
 * @retval BRIMLET_REFUSED      `*sections` is not null, or `key` is not a key to search by
 */
BRIMLET_API uint32_t getSectionsWithParams(FlatSection **sections, uint32_t *count, const uint16_t *key,
                                           uint32_t keyLength, const uint16_t *value, uint32_t valueLength,
                                           uint32_t deviceId);

/**
 * Releases a section and everything in it.
 *
 * @param[in] section  section that a function returned
 * @retval BRIMLET_DONE     the section is released
 * @retval BRIMLET_REFUSED  `section` is null, or the pointer and the count of the array in it disagree; what was
 *                          released before stays released, and the section itself stays allocated
 */
BRIMLET_API uint32_t freeSection(FlatSection *section);

/**
 * Releases an array of sections and everything in it.
 *
 * @param[in] sections  array that a function returned
 * @param[in] count     count that the function returned with it
 * @retval BRIMLET_DONE     the array is released
 * @retval BRIMLET_REFUSED  `sections` is null, or `count` is 0, or the pointer and the count of the array in a section
 *                          disagree; what was released before stays released, and the rest stays allocated
 */
BRIMLET_API uint32_t freeSectionsArray(FlatSection *sections, uint32_t count);

/** @} */

/**
 * @name Zones
 *
 * Documents hold the keys of FlatZone. The number of a zone is unique in its device, not only in its section: a zone
 * that is written under another section moves there.
 * @{
 */

/**
 * Updates or inserts a zone of a section, and gets it as stored.
 * Release it with freeZone.
 *
 * @param[out] zone    receives the zone as stored
 * @param[in]  json    document of one zone, and the id of its device under "device" and the number of its section under
 *                     "section" as in an id-only document
 * @param[in]  length  length of `json` in UTF-16 code units
 * @retval BRIMLET_DONE          `*zone` is the zone as stored
 * @retval BRIMLET_INCOMPLETE    "device", "section" or another required member is missing or a member has a wrong type;
 *                               nothing is written
 * @retval BRIMLET_READ_FAILED   the store could not be searched for the section or the device; the zone is written
 * @retval BRIMLET_NOT_FOUND     the zone is not in the store after the write
 * @retval BRIMLET_WRITE_FAILED  the store could not be written; the zone is as it was
 * @retval BRIMLET_REFUSED       `*zone` is not null, or `json` is not a JSON object
 * @retval BRIMLET_NO_PARENT     the store does not have this section or this device; the zone is written
 * @retval BRIMLET_NO_RECORD     internal error: no record
 */
BRIMLET_API uint32_t updateZone(FlatZone **zone, const uint16_t *json, uint32_t length);

/**
 * Deletes one zone.
 *
 * @param[in] json    id-only document with "device", "section" and "zone"
 * @param[in] length  length of `json` in UTF-16 code units
 * @retval BRIMLET_DONE          the zone is deleted
 * @retval BRIMLET_INCOMPLETE    "D" is missing or not an object, or "device", "section" or "zone" is missing
 * @retval BRIMLET_READ_FAILED   the store could not be read
 * @retval BRIMLET_NOT_FOUND     the section has no zone with this number
 * @retval BRIMLET_WRITE_FAILED  the store could not be written; nothing is deleted
 * @retval BRIMLET_REFUSED       `json` is not a JSON object
 */
BRIMLET_API uint32_t deleteZone(const uint16_t *json, uint32_t length);

/**
 * Gets one zone of a section.
 * Release it with freeZone.
 *
 * @param[out] zone       receives the zone
 * @param[in]  zoneId     number of the zone
 * @param[in]  deviceId   id of the device
 * @param[in]  sectionId  number of the section
 * @retval BRIMLET_DONE         `*zone` is the zone
 * @retval BRIMLET_READ_FAILED  the store could not be read
 * @retval BRIMLET_NOT_FOUND    the section has no zone with this number
 * @retval BRIMLET_REFUSED      `*zone` is not null
 * @retval BRIMLET_NO_RECORD    internal error: no record
 */
BRIMLET_API uint32_t getZone(FlatZone **zone, uint32_t zoneId, uint32_t deviceId, uint32_t sectionId);

/**
 * Gets the zones of a device as an array.
 * Release it with freeZonesArray.
 *
 * @param[out] zones     receives the array of zones
 * @param[out] count     receives the number of zones
 * @param[in]  deviceId  id of the device
 * @retval BRIMLET_DONE         `*zones` is the array, with at least one zone
 * @retval BRIMLET_NO_BLOCK     out of memory for the array
 * @retval BRIMLET_READ_FAILED  the store could not be read
 * @retval BRIMLET_NOT_FOUND    the device has no zones
 * @retval BRIMLET_REFUSED      `*zones` is not null
 */
BRIMLET_API uint32_t getZones(FlatZone **zones, uint32_t *count, uint32_t deviceId);

/**
 * Gets the zones of a section as an array.
 * Release it with freeZonesArray.
 *
 * @param[out] zones      receives the array of zones
 * @param[out] count      receives the number of zones
 * @param[in]  deviceId   id of the device
 * @param[in]  sectionId  number of the section
 * @retval BRIMLET_DONE         `*zones` is the array, with at least one zone
 * @retval BRIMLET_NO_BLOCK     out of memory for the array
 * @retval BRIMLET_READ_FAILED  the store could not be read
 * @retval BRIMLET_NOT_FOUND    the section has no zones
 * @retval BRIMLET_REFUSED      `*zones` is not null
 */
BRIMLET_API uint32_t getZonesForSection(FlatZone **zones, uint32_t *count, uint32_t deviceId, uint32_t sectionId);

/**
 * Gets the zones of a device whose field `key` equals `value`, as an array.
 * Release it with freeZonesArray.
 *
 * @param[out] zones        receives the array of zones
 * @param[out] count        receives the number of zones
 * @param[in]  key          key of FlatZone, except "zone" and "arm"
 * @param[in]  keyLength    length of `key` in UTF-16 code units
 * @param[in]  value        value to find, as text
 * @param[in]  valueLength  length of `value` in UTF-16 code units
 * @param[in]  deviceId     id of the device
 * @retval BRIMLET_DONE         `*zones` is the array, with at least one zone
 * @retval BRIMLET_NO_BLOCK     out of memory for the array
 * @retval BRIMLET_READ_FAILED  the store could not be read
 * @retval BRIMLET_NOT_FOUND    no zone of the device has this value
 * @retval BRIMLET_REFUSED      `*zones` is not null, or `key` is not a key to search by
 */
BRIMLET_API uint32_t getZonesWithParams(FlatZone **zones, uint32_t *count, const uint16_t *key, uint32_t keyLength,
                                        const uint16_t *value, uint32_t valueLength, uint32_t deviceId);

/**
 * Gets the zones of a section whose field `key` equals `value`, as an array.
 * Release it with freeZonesArray.
 *
 * @param[out] zones        receives the array of zones
 * @param[out] count        receives the number of zones
 * @param[in]  key          key of FlatZone, except "zone" and "arm"
 * @param[in]  keyLength    length of `key` in UTF-16 code units
 * @param[in]  value        value to find, as text
 * @param[in]  valueLength  length of `value` in UTF-16 code units
 * @param[in]  deviceId     id of the device
 * @param[in]  sectionId    number of the section
 * @retval BRIMLET_DONE         `*zones` is the array, with at least one zone
 * @retval BRIMLET_NO_BLOCK     out of memory for the array
 * @retval BRIMLET_READ_FAILED  the store could not be read
 * @retval BRIMLET_NOT_FOUND    no zone of the section has this value
 * @retval BRIMLET_REFUSED      `*zones` is not null, or `key` is not a key to search by
 */
BRIMLET_API uint32_t getZonesForSectionWithParams(FlatZone **zones, uint32_t *count, const uint16_t *key,
                                                  uint32_t keyLength, const uint16_t *value, uint32_t valueLength,
                                                  uint32_t deviceId, uint32_t sectionId);

/**
 * Releases a zone and everything in it.
 *
 * @param[in] zone  zone that a function returned
 * @retval BRIMLET_DONE     the zone is released
 * @retval BRIMLET_REFUSED  `zone` is null
 */
BRIMLET_API uint32_t freeZone(FlatZone *zone);

/**
 * Releases an array of zones and everything in it.
 *
 * @param[in] zones  array that a function returned
 * @param[in] count  count that the function returned with it
 * @retval BRIMLET_DONE     the array is released
 * @retval BRIMLET_REFUSED  `zones` is null, or `count` is 0
 */
BRIMLET_API uint32_t freeZonesArray(FlatZone *zones, uint32_t count);

/** @} */

/**
 * @name Sites
 *
 * Documents hold the keys of FlatSite, with an object with the keys of FlatLocation under "location" and objects with
 * the keys of FlatDevice in the array "devices".
 * @{
 */

/**
 * Adds or replaces sites with their locations, and adds their devices as addDevices does.
 *
 * The store keeps no link between a site and its devices.
 *
 * @param[in] json    batch of sites
 * @param[in] length  length of `json` in UTF-16 code units
 * @retval BRIMLET_DONE          all sites of the batch are stored
 * @retval BRIMLET_INCOMPLETE    a required member is missing or a member has a wrong type; no site is stored
 * @retval BRIMLET_WRITE_FAILED  the store could not be written; no site is stored
 * @retval BRIMLET_REFUSED       `json` is not a JSON object, or its "items" is empty
 */
BRIMLET_API uint32_t addSites(const uint16_t *json, uint32_t length);

/**
 * Updates or inserts a site, and gets it as stored.
 * Release it with freeSite.
 *
 * A "location" replaces the stored location as a whole. "devices" are checked but not written.
 *
 * @param[out] site    receives the site as stored
 * @param[in]  json    document of one site
 * @param[in]  length  length of `json` in UTF-16 code units
 * @retval BRIMLET_DONE          `*site` is the site as stored
 * @retval BRIMLET_INCOMPLETE    a required member is missing or a member has a wrong type; nothing is written
 * @retval BRIMLET_NOT_FOUND     the site is not in the store after the write
 * @retval BRIMLET_WRITE_FAILED  the store could not be written; the site is as it was
 * @retval BRIMLET_REFUSED       `*site` is not null, or `json` is not a JSON object
 * @retval BRIMLET_NO_RECORD     internal error: no record
 */
BRIMLET_API uint32_t updateSite(FlatSite **site, const uint16_t *json, uint32_t length);

/**
 * Deletes one site and its location.
 *
 * @param[in] json    id-only document with "site_id"
 * @param[in] length  length of `json` in UTF-16 code units
 * @retval BRIMLET_DONE          the site is deleted
 * @retval BRIMLET_INCOMPLETE    "D" is missing or not an object, or "site_id" is missing
 * @retval BRIMLET_READ_FAILED   the store could not be read
 * @retval BRIMLET_NOT_FOUND     the store has no site with this id
 * @retval BRIMLET_WRITE_FAILED  the store could not be written; nothing is deleted
 * @retval BRIMLET_REFUSED       `json` is not a JSON object
 */
BRIMLET_API uint32_t deleteSite(const uint16_t *json, uint32_t length);

/**
 * Gets one site.
 * Release it with freeSite.
 *
 * @param[out] site  receives the site
 * @param[in]  id    id of the site
 * @retval BRIMLET_DONE         `*site` is the site
 * @retval BRIMLET_READ_FAILED  the store could not be read
 * @retval BRIMLET_NOT_FOUND    the store has no site with this id
 * @retval BRIMLET_REFUSED      `*site` is not null
 * @retval BRIMLET_NO_RECORD    internal error: no record
 */
BRIMLET_API uint32_t getSite(FlatSite **site, uint32_t id);

/**
 * Gets all sites as an array.
 * Release it with freeSitesArray.
 *
 * @param[out] sites  receives the array of sites
 * @param[out] count  receives the number of sites
 * @retval BRIMLET_DONE         `*sites` is the array, with at least one site
 * @retval BRIMLET_NO_BLOCK     out of memory for the array
 * @retval BRIMLET_READ_FAILED  the store could not be read
 * @retval BRIMLET_NOT_FOUND    the store has no sites
 * @retval BRIMLET_REFUSED      `*sites` is not null
 */
BRIMLET_API uint32_t getSites(FlatSite **sites, uint32_t *count);

/**
 * Gets the sites whose field `key` equals `value`, as an array.
 * Release it with freeSitesArray.
 *
 * @param[out] sites        receives the array of sites
 * @param[out] count        receives the number of sites
 * @param[in]  key          key of FlatSite, except "site_plan", "location" and "devices"
 * @param[in]  keyLength    length of `key` in UTF-16 code units
 * @param[in]  value        value to find, as text
 * @param[in]  valueLength  length of `value` in UTF-16 code units
 * @retval BRIMLET_DONE         `*sites` is the array, with at least one site
 * @retval BRIMLET_NO_BLOCK     out of memory for the array
 * @retval BRIMLET_READ_FAILED  the store could not be read
 * @retval BRIMLET_NOT_FOUND    no site has this value
 * @retval BRIMLET_REFUSED      `*sites` is not null, or `key` is not a key to search by
 */
BRIMLET_API uint32_t getSitesWithParams(FlatSite **sites, uint32_t *count, const uint16_t *key, uint32_t keyLength,
                                        const uint16_t *value, uint32_t valueLength);

/**
 * Gets the name and the address of a site.
 * Release each with free, on Windows with CoTaskMemFree.
 *
 * @param[out] name     receives the name
 * @param[out] address  receives the address
 * @param[in]  id       id of the site
 * @retval BRIMLET_DONE         `*name` and `*address` are the texts, each absent if the site has none
 * @retval BRIMLET_READ_FAILED  the store could not be read
 * @retval BRIMLET_NOT_FOUND    the store has no site with this id
 * @retval BRIMLET_REFUSED      `*name` or `*address` is not null
 */
BRIMLET_API uint32_t getSiteNameAndAddress(uint16_t **name, uint16_t **address, uint32_t id);

/**
 * Releases a site and everything in it.
 *
 * @param[in] site  site that a function returned
 * @retval BRIMLET_DONE     the site is released
 * @retval BRIMLET_REFUSED  `site` is null, or the pointer and the count of the array in it disagree; what was released
 *                          before stays released, and the site itself stays allocated
 */
BRIMLET_API uint32_t freeSite(FlatSite *site);

/**
 * Releases an array of sites and everything in it.
 *
 * @param[in] sites  array that a function returned
 * @param[in] count  count that the function returned with it
 * @retval BRIMLET_DONE     the array is released
 * @retval BRIMLET_REFUSED  `sites` is null, or `count` is 0, or the pointer and the count of the array in a site
 *                          disagree; what was released before stays released, and the rest stays allocated
 */
BRIMLET_API uint32_t freeSitesArray(FlatSite *sites, uint32_t count);

/** @} */

/**
 * @name Events
 *
 * Documents hold the keys of FlatEvent. An event that names a device unknown to the store is kept, but no list contains
 * it until that device is added.
 * @{
 */

/**
 * Adds or replaces one event, and gets it as stored, with the names of its equipment.
 * Release it with freeEvent.
 *
 * @param[out] event   receives the event as stored
 * @param[in]  json    document of one event
 * @param[in]  length  length of `json` in UTF-16 code units
 * @retval BRIMLET_DONE          `*event` is the event as stored
 * @retval BRIMLET_INCOMPLETE    a required member is missing or a member has a wrong type; nothing is stored
 * @retval BRIMLET_NOT_FOUND     the index of events could not be created; the event is not stored
 * @retval BRIMLET_WRITE_FAILED  the store could not be written; the event is not stored
 * @retval BRIMLET_REFUSED       `*event` is not null, or `json` is not a JSON object
 * @retval BRIMLET_NO_RECORD     internal error: no record
 */
BRIMLET_API uint32_t addEvent(FlatEvent **event, const uint16_t *json, uint32_t length);

/**
 * Adds or replaces events, and gets those whose device is known, as an array.
 * Release it with freeEventsArray.
 *
 * @param[out] events  receives the array of events; what it holds on entry is ignored, and overwritten on success
 * @param[out] count   receives the number of events
 * @param[in]  json    batch of events
 * @param[in]  length  length of `json` in UTF-16 code units
 * @retval BRIMLET_DONE          all events are stored, `*events` is the array of those whose device is known, with at
 *                               least one event
 * @retval BRIMLET_NO_BLOCK      out of memory for the array
 * @retval BRIMLET_INCOMPLETE    a required member is missing or a member has a wrong type; no event is stored
 * @retval BRIMLET_NOT_FOUND     no device of the batch is known, and all events are stored; or the index of events
 *                               could not be created, and no event is stored
 * @retval BRIMLET_WRITE_FAILED  the store could not be written; no event is stored
 * @retval BRIMLET_REFUSED       `json` is not a JSON object, or its "items" is empty
 */
BRIMLET_API uint32_t addEvents(FlatEvent **events, uint32_t *count, const uint16_t *json, uint32_t length);

/**
 * Gets the events whose device is known and whose time is in a range, as an array.
 * Release it with freeEventsArray.
 *
 * @param[out] events  receives the array of events
 * @param[out] count   receives the number of events
 * @param[in]  from    earliest time, included
 * @param[in]  to      latest time, included
 * @retval BRIMLET_DONE         `*events` is the array, with at least one event
 * @retval BRIMLET_NO_BLOCK     out of memory for the array
 * @retval BRIMLET_READ_FAILED  the store could not be read
 * @retval BRIMLET_NOT_FOUND    no event of a known device has a time in this range
 * @retval BRIMLET_REFUSED      `*events` is not null
 */
BRIMLET_API uint32_t getEvents(FlatEvent **events, uint32_t *count, uint32_t from, uint32_t to);

/**
 * Gets the events whose device is known and whose affect flag is set, as an array.
 * Release it with freeEventsArray.
 *
 * @param[out] events  receives the array of events
 * @param[out] count   receives the number of events
 * @retval BRIMLET_DONE         `*events` is the array, with at least one event
 * @retval BRIMLET_NO_BLOCK     out of memory for the array
 * @retval BRIMLET_READ_FAILED  the store could not be read
 * @retval BRIMLET_NOT_FOUND    no event of a known device has its affect flag set
 * @retval BRIMLET_REFUSED      `*events` is not null
 */
BRIMLET_API uint32_t getAffectEvents(FlatEvent **events, uint32_t *count);

/**
 * Clears the affect flag of an event, and gets the event as stored.
 * Release it with freeEvent.
 *
 * @param[in,out] event   receives the event as stored; may hold a block on entry, which is released on success: that
 *                        one block, and nothing that it points to
 * @param[in]     json    id-only document with "id"
 * @param[in]     length  length of `json` in UTF-16 code units
 * @retval BRIMLET_DONE          the flag is cleared, and `*event` is the event as stored
 * @retval BRIMLET_INCOMPLETE    "D" is missing or not an object, or "id" is missing
 * @retval BRIMLET_READ_FAILED   the store could not be read
 * @retval BRIMLET_NOT_FOUND     the store has no event with this id
 * @retval BRIMLET_WRITE_FAILED  the store could not be written, or the event is not in the store after the write
 * @retval BRIMLET_REFUSED       `json` is not a JSON object
 * @retval BRIMLET_NO_RECORD     internal error: no record
 */
BRIMLET_API uint32_t removeAffectFlag(FlatEvent **event, const uint16_t *json, uint32_t length);

/**
 * Deletes the events up to a date whose affect flag is stored as not set.
 *
 * Events that were added without "affect" or without "time" stay.
 *
 * @param[in] date  latest time to delete, included
 * @retval BRIMLET_DONE          no such event is left
 * @retval BRIMLET_WRITE_FAILED  the store could not be written; nothing is deleted
 */
BRIMLET_API uint32_t clearEventsBeforeDateExceptAffects(uint32_t date);

/**
 * Releases an event and everything in it.
 *
 * @param[in] event  event that a function returned
 * @retval BRIMLET_DONE     the event is released
 * @retval BRIMLET_REFUSED  `event` is null
 */
BRIMLET_API uint32_t freeEvent(FlatEvent *event);

/**
 * Releases an array of events and everything in it.
 *
 * @param[in] events  array that a function returned
 * @param[in] count   count that the function returned with it
 * @retval BRIMLET_DONE     the array is released
 * @retval BRIMLET_REFUSED  `events` is null, or `count` is 0
 */
BRIMLET_API uint32_t freeEventsArray(FlatEvent *events, uint32_t count);

/** @} */

/**
 * @name Clearing
 * @{
 */

/**
 * Deletes all records. The server address stays.
 *
 * @retval BRIMLET_DONE          the store is empty
 * @retval BRIMLET_WRITE_FAILED  the store could not be written; nothing is deleted
 */
BRIMLET_API uint32_t clearAll(void);

/**
 * Deletes all records except events. The server address stays.
 *
 * @retval BRIMLET_DONE          the store has no records except events
 * @retval BRIMLET_WRITE_FAILED  the store could not be written; nothing is deleted
 */
BRIMLET_API uint32_t clearAllExceptEvents(void);

/** @} */

#ifdef __cplusplus
}
#endif

#endif
