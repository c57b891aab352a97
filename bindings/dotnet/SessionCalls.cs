using System;
using System.Collections.Generic;

namespace Brimlet
{
    // The calls of a session, in the order of brimlet.h.
    public sealed unsafe partial class Session
    {
        // ---- Server address ----

        public void SetServerIp(string text) => Send(Native.setServerIp, text);

        /// <summary>The text that SetServerIp remembered, or null where there is none or it is empty.</summary>
        public string GetServerIp()
        {
            using (var address = new TextHandle())
            {
                Expect(Take(address, Native.getServerIp), nameof(GetServerIp));
                return Blocks.Text((char*)address.Block);
            }
        }

        // ---- Locales ----

        public void AddLocales(string json) => Send(Native.addLocales, json);

        public Locale GetLocale(uint id) => Get(Kind.Locale, Native.getLocale, id);

        public IReadOnlyList<Locale> GetLocales() => List(Kind.Locale, Native.getLocales);

        public IReadOnlyList<Locale> GetLocalesWithParams(string key, string value)
        {
            return Find(Kind.Locale, Native.getLocalesWithParams, key, value);
        }

        // ---- Domains ----

        public void AddDomains(string json) => Send(Native.addDomains, json);

        public Domain UpdateDomain(string json) => Exchange(Kind.Domain, Native.updateDomain, json);

        public void DeleteDomain(string json) => Send(Native.deleteDomain, json);

        public Domain GetDomain(uint id) => Get(Kind.Domain, Native.getDomain, id);

        public IReadOnlyList<Domain> GetDomains() => List(Kind.Domain, Native.getDomains);

        public IReadOnlyList<Domain> GetDomainsWithParams(string key, string value)
        {
            return Find(Kind.Domain, Native.getDomainsWithParams, key, value);
        }

        // ---- Users ----

        public void AddUsers(string json) => Send(Native.addUsers, json);

        public User UpdateUser(string json) => Exchange(Kind.User, Native.updateUser, json);

        public void DeleteUser(string json) => Send(Native.deleteUser, json);

        public User GetUser(uint id) => Get(Kind.User, Native.getUser, id);

        public IReadOnlyList<User> GetUsers() => List(Kind.User, Native.getUsers);

        public IReadOnlyList<User> GetUsersWithParams(string key, string value)
        {
            return Find(Kind.User, Native.getUsersWithParams, key, value);
        }

        // ---- Organizations ----

        public void AddOrganizations(string json) => Send(Native.addOrganizations, json);

        public Organization UpdateOrganization(string json)
        {
            return Exchange(Kind.Organization, Native.updateOrganization, json);
        }

        public void DeleteOrganization(string json) => Send(Native.deleteOrganization, json);

        public Organization GetOrganization(uint id) => Get(Kind.Organization, Native.getOrganization, id);

        public IReadOnlyList<Organization> GetOrganizations() => List(Kind.Organization, Native.getOrganizations);

        public IReadOnlyList<Organization> GetOrganizationsWithParams(string key, string value)
        {
            return Find(Kind.Organization, Native.getOrganizationsWithParams, key, value);
        }

        // ---- Contractors ----

        public void AddContractors(string json) => Send(Native.addContractors, json);

        public Contractor UpdateContractor(string json) => Exchange(Kind.Contractor, Native.updateContractor, json);

        public void DeleteContractor(string json) => Send(Native.deleteContractor, json);

        public Contractor GetContractor(uint id) => Get(Kind.Contractor, Native.getContractor, id);

        public IReadOnlyList<Contractor> GetContractors() => List(Kind.Contractor, Native.getContractors);

        public IReadOnlyList<Contractor> GetContractorsWithParams(string key, string value)
        {
            return Find(Kind.Contractor, Native.getContractorsWithParams, key, value);
        }

        // ---- Contracts ----

        public void AddContracts(string json) => Send(Native.addContracts, json);

        public Contract UpdateContract(string json) => Exchange(Kind.Contract, Native.updateContract, json);

        public void DeleteContract(string json) => Send(Native.deleteContract, json);

        public Contract GetContract(uint id) => Get(Kind.Contract, Native.getContract, id);

        public IReadOnlyList<Contract> GetContracts() => List(Kind.Contract, Native.getContracts);

        public IReadOnlyList<Contract> GetContractsWithParams(string key, string value)
        {
            return Find(Kind.Contract, Native.getContractsWithParams, key, value);
        }

        // ---- Devices ----

        public void AddDevice(string json) => Send(Native.addDevice, json);

        public void AddDevices(string json) => Send(Native.addDevices, json);

        public Device UpdateDeviceFw(string json) => Exchange(Kind.Device, Native.updateDeviceFw, json);

        public void DeleteDevice(string json) => Send(Native.deleteDevice, json);

        public Device GetDevice(uint id) => Get(Kind.Device, Native.getDevice, id);

        public IReadOnlyList<Device> GetDevices() => List(Kind.Device, Native.getDevices);

        public IReadOnlyList<Device> GetDevicesWithParams(string key, string value)
        {
            return Find(Kind.Device, Native.getDevicesWithParams, key, value);
        }

        // ---- Sections ----

        public Section UpdateSection(string json) => Exchange(Kind.Section, Native.updateSection, json);

        public void DeleteSection(string json) => Send(Native.deleteSection, json);

        public Section GetSection(uint sectionId, uint deviceId)
        {
            return Get(Kind.Section, (ref IntPtr section) => Native.getSection(ref section, sectionId, deviceId));
        }

        public IReadOnlyList<Section> GetSections(uint deviceId)
        {
            return List(Kind.Section, (ref IntPtr sections, ref uint count) =>
                Native.getSections(ref sections, ref count, deviceId));
        }

        public IReadOnlyList<Section> GetSectionsWithParams(string key, string value, uint deviceId)
        {
            ArrayForField find = (ref IntPtr sections, ref uint count, char* keyUnits, uint keyLength, char* valueUnits,
                    uint valueLength) =>
                Native.getSectionsWithParams(ref sections, ref count, keyUnits, keyLength, valueUnits, valueLength,
                    deviceId);
            return Find(Kind.Section, find, key, value);
        }

        // ---- Zones ----

        public Zone UpdateZone(string json) => Exchange(Kind.Zone, Native.updateZone, json);

        public void DeleteZone(string json) => Send(Native.deleteZone, json);

        public Zone GetZone(uint zoneId, uint deviceId, uint sectionId)
        {
            return Get(Kind.Zone, (ref IntPtr zone) => Native.getZone(ref zone, zoneId, deviceId, sectionId));
        }

        public IReadOnlyList<Zone> GetZones(uint deviceId)
        {
            return List(Kind.Zone, (ref IntPtr zones, ref uint count) =>
                Native.getZones(ref zones, ref count, deviceId));
        }

        public IReadOnlyList<Zone> GetZonesForSection(uint deviceId, uint sectionId)
        {
            return List(Kind.Zone, (ref IntPtr zones, ref uint count) =>
                Native.getZonesForSection(ref zones, ref count, deviceId, sectionId));
        }

        public IReadOnlyList<Zone> GetZonesWithParams(string key, string value, uint deviceId)
        {
            ArrayForField find = (ref IntPtr zones, ref uint count, char* keyUnits, uint keyLength, char* valueUnits,
                    uint valueLength) =>
                Native.getZonesWithParams(ref zones, ref count, keyUnits, keyLength, valueUnits, valueLength,
                    deviceId);
            return Find(Kind.Zone, find, key, value);
        }

        public IReadOnlyList<Zone> GetZonesForSectionWithParams(string key, string value, uint deviceId,
            uint sectionId)
        {
            ArrayForField find = (ref IntPtr zones, ref uint count, char* keyUnits, uint keyLength, char* valueUnits,
                    uint valueLength) =>
                Native.getZonesForSectionWithParams(ref zones, ref count, keyUnits, keyLength, valueUnits, valueLength,
                    deviceId, sectionId);
            return Find(Kind.Zone, find, key, value);
        }

        // ---- Sites ----

        public void AddSites(string json) => Send(Native.addSites, json);

        public Site UpdateSite(string json) => Exchange(Kind.Site, Native.updateSite, json);

        public void DeleteSite(string json) => Send(Native.deleteSite, json);

        public Site GetSite(uint id) => Get(Kind.Site, Native.getSite, id);

        public IReadOnlyList<Site> GetSites() => List(Kind.Site, Native.getSites);

        public IReadOnlyList<Site> GetSitesWithParams(string key, string value)
        {
            return Find(Kind.Site, Native.getSitesWithParams, key, value);
        }

        /// <summary>A site's name and address without the rest, or null where there is no such site.</summary>
        public SiteLabel GetSiteNameAndAddress(uint id)
        {
            using (var name = new TextHandle())
            using (var address = new TextHandle())
            {
                Code code = Take(name, (ref IntPtr nameBlock) =>
                {
                    IntPtr addressBlock = IntPtr.Zero;
                    Code answer = Native.getSiteNameAndAddress(ref nameBlock, ref addressBlock, id);
                    address.Take(addressBlock);
                    return answer;
                });
                return IsFound(code, nameof(GetSiteNameAndAddress))
                    ? new SiteLabel(Blocks.Text((char*)name.Block), Blocks.Text((char*)address.Block))
                    : null;
            }
        }

        // ---- Events ----

        public Event AddEvent(string json) => Exchange(Kind.Event, Native.addEvent, json);

        /// <summary>Those of the batch whose device is known, none where no device is.</summary>
        public IReadOnlyList<Event> AddEvents(string json)
        {
            using (var pinned = new PinnedText(json))
            {
                return List(Kind.Event, (ref IntPtr events, ref uint count) =>
                    Native.addEvents(ref events, ref count, pinned.Units, pinned.Length));
            }
        }

        public IReadOnlyList<Event> GetEvents(uint from, uint to)
        {
            return List(Kind.Event, (ref IntPtr events, ref uint count) =>
                Native.getEvents(ref events, ref count, from, to));
        }

        public IReadOnlyList<Event> GetAffectEvents() => List(Kind.Event, Native.getAffectEvents);

        public Event RemoveAffectFlag(string json) => Exchange(Kind.Event, Native.removeAffectFlag, json);

        public void ClearEventsBeforeDateExceptAffects(uint date)
        {
            Run(() => Native.clearEventsBeforeDateExceptAffects(date));
        }

        // ---- Clearing ----

        public void ClearAll() => Run(Native.clearAll);

        public void ClearAllExceptEvents() => Run(Native.clearAllExceptEvents);
    }
}
