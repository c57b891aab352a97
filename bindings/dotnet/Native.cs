using System;
#if NET5_0_OR_GREATER
using System.Reflection;
#endif
using System.Runtime.InteropServices;

namespace Brimlet
{
    // The functions of brimlet.h, in its order and by its names. Texts go in as their UTF-16 units with their count;
    // records and texts come out as pointers to blocks, which Handles.cs owns and Blocks.cs reads.
    internal static unsafe class Native
    {
        // Mono maps it to the platform's name of the library by Brimlet.dll.config.
        private const string library = "brimlet";

#if NET5_0_OR_GREATER
        static Native() => NativeLibrary.SetDllImportResolver(typeof(Native).Assembly, Resolve);

        // .NET by itself knows no names with a version, and a machine that only runs clients has no other.
        private static IntPtr Resolve(string name, Assembly assembly, DllImportSearchPath? path)
        {
            if (name != library)
            {
                return IntPtr.Zero;
            }
            string file = RuntimeInformation.IsOSPlatform(OSPlatform.Linux) ? "libbrimlet.so.0"
                : RuntimeInformation.IsOSPlatform(OSPlatform.OSX) ? "libbrimlet.0.dylib" : library;
            NativeLibrary.TryLoad(file, assembly, path, out IntPtr found);
            return found; // where it is none, .NET's own search goes on
        }
#endif

        // ---- Lifecycle ----

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern int launchCache();

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern void exitCache();

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern State getState();

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern LaunchResult getLaunchCacheResult();

        // ---- Server address ----

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code setServerIp(char* text, uint length);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code getServerIp(ref IntPtr address);

        // ---- Locales ----

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code addLocales(char* json, uint length);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code getLocale(ref IntPtr locale, uint id);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code getLocales(ref IntPtr locales, ref uint count);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code getLocalesWithParams(ref IntPtr locales, ref uint count, char* key, uint keyLength,
            char* value, uint valueLength);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code freeLocale(IntPtr locale);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code freeLocalesArray(IntPtr locales, uint count);

        // ---- Domains ----

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code addDomains(char* json, uint length);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code updateDomain(ref IntPtr domain, char* json, uint length);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code deleteDomain(char* json, uint length);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code getDomain(ref IntPtr domain, uint id);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code getDomains(ref IntPtr domains, ref uint count);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code getDomainsWithParams(ref IntPtr domains, ref uint count, char* key, uint keyLength,
            char* value, uint valueLength);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code freeDomain(IntPtr domain);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code freeDomainsArray(IntPtr domains, uint count);

        // ---- Users ----

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code addUsers(char* json, uint length);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code updateUser(ref IntPtr user, char* json, uint length);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code deleteUser(char* json, uint length);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code getUser(ref IntPtr user, uint id);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code getUsers(ref IntPtr users, ref uint count);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code getUsersWithParams(ref IntPtr users, ref uint count, char* key, uint keyLength,
            char* value, uint valueLength);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code freeUser(IntPtr user);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code freeUsersArray(IntPtr users, uint count);

        // ---- Organizations ----

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code addOrganizations(char* json, uint length);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code updateOrganization(ref IntPtr organization, char* json, uint length);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code deleteOrganization(char* json, uint length);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code getOrganization(ref IntPtr organization, uint id);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code getOrganizations(ref IntPtr organizations, ref uint count);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code getOrganizationsWithParams(ref IntPtr organizations, ref uint count, char* key,
            uint keyLength, char* value, uint valueLength);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code freeOrganization(IntPtr organization);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code freeOrganizationsArray(IntPtr organizations, uint count);

        // ---- Contractors ----

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code addContractors(char* json, uint length);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code updateContractor(ref IntPtr contractor, char* json, uint length);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code deleteContractor(char* json, uint length);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code getContractor(ref IntPtr contractor, uint id);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code getContractors(ref IntPtr contractors, ref uint count);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code getContractorsWithParams(ref IntPtr contractors, ref uint count, char* key,
            uint keyLength, char* value, uint valueLength);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code freeContractor(IntPtr contractor);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code freeContractorsArray(IntPtr contractors, uint count);

        // ---- Contracts ----

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code addContracts(char* json, uint length);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code updateContract(ref IntPtr contract, char* json, uint length);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code deleteContract(char* json, uint length);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code getContract(ref IntPtr contract, uint id);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code getContracts(ref IntPtr contracts, ref uint count);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code getContractsWithParams(ref IntPtr contracts, ref uint count, char* key,
            uint keyLength, char* value, uint valueLength);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code freeContract(IntPtr contract);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code freeContractsArray(IntPtr contracts, uint count);

        // ---- Devices ----

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code addDevice(char* json, uint length);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code addDevices(char* json, uint length);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code updateDeviceFw(ref IntPtr device, char* json, uint length);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code deleteDevice(char* json, uint length);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code getDevice(ref IntPtr device, uint id);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code getDevices(ref IntPtr devices, ref uint count);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code getDevicesWithParams(ref IntPtr devices, ref uint count, char* key, uint keyLength,
            char* value, uint valueLength);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code freeDevice(IntPtr device);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code freeDevicesArray(IntPtr devices, uint count);

        // ---- Sections ----

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code updateSection(ref IntPtr section, char* json, uint length);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code deleteSection(char* json, uint length);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code getSection(ref IntPtr section, uint sectionId, uint deviceId);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code getSections(ref IntPtr sections, ref uint count, uint deviceId);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code getSectionsWithParams(ref IntPtr sections, ref uint count, char* key,
            uint keyLength, char* value, uint valueLength, uint deviceId);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code freeSection(IntPtr section);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code freeSectionsArray(IntPtr sections, uint count);

        // ---- Zones ----

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code updateZone(ref IntPtr zone, char* json, uint length);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code deleteZone(char* json, uint length);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code getZone(ref IntPtr zone, uint zoneId, uint deviceId, uint sectionId);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code getZones(ref IntPtr zones, ref uint count, uint deviceId);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code getZonesForSection(ref IntPtr zones, ref uint count, uint deviceId, uint sectionId);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code getZonesWithParams(ref IntPtr zones, ref uint count, char* key, uint keyLength,
            char* value, uint valueLength, uint deviceId);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code getZonesForSectionWithParams(ref IntPtr zones, ref uint count, char* key,
            uint keyLength, char* value, uint valueLength, uint deviceId, uint sectionId);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code freeZone(IntPtr zone);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code freeZonesArray(IntPtr zones, uint count);

        // ---- Sites ----

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code addSites(char* json, uint length);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code updateSite(ref IntPtr site, char* json, uint length);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code deleteSite(char* json, uint length);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code getSite(ref IntPtr site, uint id);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code getSites(ref IntPtr sites, ref uint count);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code getSitesWithParams(ref IntPtr sites, ref uint count, char* key, uint keyLength,
            char* value, uint valueLength);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code getSiteNameAndAddress(ref IntPtr name, ref IntPtr address, uint id);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code freeSite(IntPtr site);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code freeSitesArray(IntPtr sites, uint count);

        // ---- Events ----

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code addEvent(ref IntPtr @event, char* json, uint length);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code addEvents(ref IntPtr events, ref uint count, char* json, uint length);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code getEvents(ref IntPtr events, ref uint count, uint from, uint to);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code getAffectEvents(ref IntPtr events, ref uint count);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code removeAffectFlag(ref IntPtr @event, char* json, uint length);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code clearEventsBeforeDateExceptAffects(uint date);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code freeEvent(IntPtr @event);

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code freeEventsArray(IntPtr events, uint count);

        // ---- Clearing ----

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code clearAll();

        [DllImport(library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern Code clearAllExceptEvents();
    }
}
