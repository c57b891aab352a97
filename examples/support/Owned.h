// Owners of what the library returns: each releases its block with the matching free function.
#pragma once

#include "brimlet.h"

#include <cstdlib>
#include <memory>
#include <stdexcept>

#ifdef _WIN32
#include <objbase.h>
#endif

namespace example {

// One overload for each kind of record, from which the templates below choose. The results are ignored: they are 0 for
// every complete record, and the templates release nothing else.
inline void giveBack(FlatLocale *locale)
{
    freeLocale(locale);
}
inline void giveBack(FlatDomain *domain)
{
    freeDomain(domain);
}
inline void giveBack(FlatUser *user)
{
    freeUser(user);
}
inline void giveBack(FlatOrganization *organization)
{
    freeOrganization(organization);
}
inline void giveBack(FlatContractor *contractor)
{
    freeContractor(contractor);
}
inline void giveBack(FlatContract *contract)
{
    freeContract(contract);
}
inline void giveBack(FlatDevice *device)
{
    freeDevice(device);
}
inline void giveBack(FlatSection *section)
{
    freeSection(section);
}
inline void giveBack(FlatZone *zone)
{
    freeZone(zone);
}
inline void giveBack(FlatSite *site)
{
    freeSite(site);
}
inline void giveBack(FlatEvent *event)
{
    freeEvent(event);
}

inline void giveBack(FlatLocale *locales, uint32_t count)
{
    freeLocalesArray(locales, count);
}
inline void giveBack(FlatDomain *domains, uint32_t count)
{
    freeDomainsArray(domains, count);
}
inline void giveBack(FlatUser *users, uint32_t count)
{
    freeUsersArray(users, count);
}
inline void giveBack(FlatOrganization *organizations, uint32_t count)
{
    freeOrganizationsArray(organizations, count);
}
inline void giveBack(FlatContractor *contractors, uint32_t count)
{
    freeContractorsArray(contractors, count);
}
inline void giveBack(FlatContract *contracts, uint32_t count)
{
    freeContractsArray(contracts, count);
}
inline void giveBack(FlatDevice *devices, uint32_t count)
{
    freeDevicesArray(devices, count);
}
inline void giveBack(FlatSection *sections, uint32_t count)
{
    freeSectionsArray(sections, count);
}
inline void giveBack(FlatZone *zones, uint32_t count)
{
    freeZonesArray(zones, count);
}
inline void giveBack(FlatSite *sites, uint32_t count)
{
    freeSitesArray(sites, count);
}
inline void giveBack(FlatEvent *events, uint32_t count)
{
    freeEventsArray(events, count);
}

// Plain texts have no free function, the allocator of the platform releases them.
inline void giveBack(uint16_t *text)
{
#ifdef _WIN32
    CoTaskMemFree(text);
#else
    std::free(text);
#endif
}

struct GiveBack
{
    template<class Block>
    void operator()(Block *block) const
    {
        giveBack(block);
    }
};

// A single record, for instance Owned<FlatUser>, or a plain text, Owned<uint16_t>.
template<class Block>
using Owned = std::unique_ptr<Block, GiveBack>;

// An array of records with its count, which may be 0.
template<class Flat>
class OwnedArray
{
public:
    OwnedArray() = default;
    OwnedArray(Flat *block, uint32_t count) : records(block, GiveBackAll{count}) {}

    Flat *begin() const { return records.get(); }
    Flat *end() const { return records.get() + size(); }
    Flat &front() const
    {
        if (!records)
            throw std::out_of_range("an empty array has no first record");
        return records[0];
    }
    uint32_t size() const { return records ? records.get_deleter().count : 0; }

private:
    struct GiveBackAll
    {
        uint32_t count = 0;
        void operator()(Flat *block) const { giveBack(block, count); }
    };

    std::unique_ptr<Flat[], GiveBackAll> records;
};

} // namespace example
