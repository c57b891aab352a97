using System;
using System.Collections.Generic;

namespace Brimlet
{
    internal delegate T ReadRecord<T>(IntPtr record);

    // A kind of record: how it is read out of its block, how long that is, and how the blocks go back.
    internal sealed class Kind<T>
    {
        internal readonly ReadRecord<T> Read;
        internal readonly int Size;
        internal readonly FreeRecord Free;
        internal readonly FreeArray FreeAll;

        internal Kind(ReadRecord<T> read, int size, FreeRecord free = null, FreeArray freeAll = null)
        {
            Read = read;
            Size = size;
            Free = free;
            FreeAll = freeAll;
        }
    }

    // The kinds that come out by themselves or in arrays.
    internal static unsafe class Kind
    {
        internal static readonly Kind<Locale> Locale = new Kind<Locale>(at => new Locale((FlatLocale*)at),
            sizeof(FlatLocale), Native.freeLocale, Native.freeLocalesArray);

        internal static readonly Kind<Domain> Domain = new Kind<Domain>(at => new Domain((FlatDomain*)at),
            sizeof(FlatDomain), Native.freeDomain, Native.freeDomainsArray);

        internal static readonly Kind<User> User = new Kind<User>(at => new User((FlatUser*)at),
            sizeof(FlatUser), Native.freeUser, Native.freeUsersArray);

        internal static readonly Kind<Organization> Organization = new Kind<Organization>(
            at => new Organization((FlatOrganization*)at), sizeof(FlatOrganization), Native.freeOrganization,
            Native.freeOrganizationsArray);

        internal static readonly Kind<Contractor> Contractor = new Kind<Contractor>(
            at => new Contractor((FlatContractor*)at), sizeof(FlatContractor), Native.freeContractor,
            Native.freeContractorsArray);

        internal static readonly Kind<Contract> Contract = new Kind<Contract>(at => new Contract((FlatContract*)at),
            sizeof(FlatContract), Native.freeContract, Native.freeContractsArray);

        internal static readonly Kind<Device> Device = new Kind<Device>(at => new Device((FlatDevice*)at),
            sizeof(FlatDevice), Native.freeDevice, Native.freeDevicesArray);

        // Its array hangs on a device and goes back with it.
        internal static readonly Kind<DeviceUser> DeviceUser = new Kind<DeviceUser>(
            at => new DeviceUser((FlatDeviceUser*)at), sizeof(FlatDeviceUser));

        internal static readonly Kind<Section> Section = new Kind<Section>(at => new Section((FlatSection*)at),
            sizeof(FlatSection), Native.freeSection, Native.freeSectionsArray);

        internal static readonly Kind<Zone> Zone = new Kind<Zone>(at => new Zone((FlatZone*)at),
            sizeof(FlatZone), Native.freeZone, Native.freeZonesArray);

        internal static readonly Kind<Site> Site = new Kind<Site>(at => new Site((FlatSite*)at),
            sizeof(FlatSite), Native.freeSite, Native.freeSitesArray);

        internal static readonly Kind<Event> Event = new Kind<Event>(at => new Event((FlatEvent*)at),
            sizeof(FlatEvent), Native.freeEvent, Native.freeEventsArray);
    }

    // Copies what lies in the blocks of a flat record.
    internal static unsafe class Blocks
    {
        internal static string Text(char* block) => block == null ? null : new string(block);

        internal static uint? Value(uint* block) => block == null ? (uint?)null : *block;

        internal static int? Value(int* block) => block == null ? (int?)null : *block;

        internal static ulong? Value(ulong* block) => block == null ? (ulong?)null : *block;

        internal static double? Value(double* block) => block == null ? (double?)null : *block;

        internal static byte? Value(byte* block) => block == null ? (byte?)null : *block;

        internal static bool? Flag(byte* block) => block == null ? (bool?)null : *block != 0;

        internal static IReadOnlyList<uint> Numbers(uint* block, uint count)
        {
            var numbers = new uint[count];
            for (uint i = 0; i < count; ++i)
            {
                numbers[i] = block[i];
            }
            return Array.AsReadOnly(numbers);
        }

        internal static IReadOnlyList<T> List<T>(Kind<T> kind, void* block, uint count)
        {
            var records = new T[count];
            for (uint i = 0; i < count; ++i)
            {
                records[i] = kind.Read((IntPtr)((byte*)block + (long)i * kind.Size));
            }
            return Array.AsReadOnly(records);
        }
    }
}
