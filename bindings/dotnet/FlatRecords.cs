using System.Runtime.InteropServices;

#pragma warning disable 0649 // the library writes these fields, nothing here does

namespace Brimlet
{
    // The records of FlatRecords.h, field by field: what it says of blocks, absent values and counts holds here.

    [StructLayout(LayoutKind.Sequential)]
    internal unsafe struct FlatLocale
    {
        public uint id;
        public char* iso;
        public char* description;
    }

    [StructLayout(LayoutKind.Sequential)]
    internal unsafe struct FlatDomain
    {
        public uint id;
        public char* name;
        public uint* orgId;
        public FlatLocale* locale;
    }

    [StructLayout(LayoutKind.Sequential)]
    internal unsafe struct FlatUser
    {
        public uint id;
        public char* name;
        public char* login;
        public char* contacts;
        public byte* isActive;
        public uint* domainId;
        public uint* roles;
        public ulong* phone;
        public FlatDomain* domain;
        public uint* orgId;
    }

    [StructLayout(LayoutKind.Sequential)]
    internal unsafe struct FlatPerson
    {
        public uint id;
        public char* name;
        public char* phone;
        public char* email;
        public char* postal;
    }

    [StructLayout(LayoutKind.Sequential)]
    internal unsafe struct FlatOrganization
    {
        public uint id;
        public char* inn;
        public char* officialName;
        public char* shortName;
        public char* kpp;
        public char* ogrn;
        public char* address;
        public FlatPerson* contact;
        public FlatLocale* locale;
    }

    [StructLayout(LayoutKind.Sequential)]
    internal unsafe struct FlatContractor
    {
        public uint id;
        public char* inn;
        public uint* orgId;
        public uint* type;
        public char* officialName;
        public char* name;
        public char* extra;
    }

    [StructLayout(LayoutKind.Sequential)]
    internal unsafe struct FlatContract
    {
        public uint id;
        public char* number;
        public FlatContractor* contractor;
        public char* name;
        public uint* status;
        public uint* date;
        public char* description;
        public char* extra;
        public FlatUser* user;
    }

    [StructLayout(LayoutKind.Sequential)]
    internal unsafe struct FlatZone
    {
        public uint id;
        public char* name;
        public uint* detector;
        public uint* physic;
        public uint* form;
        public uint* flags;
        public uint* delay;
        public uint* scheduleId;
        public uint* tracert;
        public uint* uidType;
        public uint* arm;
    }

    [StructLayout(LayoutKind.Sequential)]
    internal unsafe struct FlatSection
    {
        public uint id;
        public char* name;
        public uint* scheduleId;
        public FlatZone* zones;
        public uint zonesCount;
        public uint* tracert;
        public uint* flags;
        public uint* detector;
        public uint* arm;
        public uint* physic;
        public uint* form;
        public uint* delay;
        public uint* uidType;
    }

    [StructLayout(LayoutKind.Sequential)]
    internal unsafe struct FlatDeviceUser
    {
        public uint id;
        public char* name;
        public char* comment;
        public char* phone;
        public uint* sections;
        public uint sectionsCount;
    }

    [StructLayout(LayoutKind.Sequential)]
    internal unsafe struct FlatDevice
    {
        public uint id;
        public uint* account;
        public FlatDomain* domain;
        public uint* configVersion;
        public FlatSection* sections;
        public uint sectionsCount;
        public FlatDeviceUser* users;
        public uint usersCount;
        public byte* isParted;
        public uint* clusterId;
        public uint* domainId;
    }

    [StructLayout(LayoutKind.Sequential)]
    internal unsafe struct FlatLocation
    {
        public uint id;
        public double* latitude;
        public double* longitude;
    }

    [StructLayout(LayoutKind.Sequential)]
    internal unsafe struct FlatSite
    {
        public uint id;
        public char* name;
        public char* comment;
        public char* extra;
        public byte* isCrossing;
        public FlatDomain* domain;
        public char* address;
        public FlatContract* contract;
        public int* contractStatus;
        public uint* type;
        public uint* category;
        public uint* armMode;
        public byte* isDelegated;
        public FlatDevice* devices;
        public uint deviceCount;
        public uint* domainId;
        public FlatLocation* location;
        public int* contractId;
        public byte* isSitePlanExists;
    }

    [StructLayout(LayoutKind.Sequential)]
    internal unsafe struct FlatEvent
    {
        public uint id;
        public uint* time;
        public int* deviceId;
        public uint* sectionId;
        public uint* zoneId;
        public byte* active;
        public byte* eventClass;
        public byte* detector;
        public byte* reason;
        public uint* localTime;
        public int* channel;
        public char* data;
        public uint* reviewId;
        public byte* reviewState;
        public uint* userId;
        public byte* isClosed;
        public byte* affect;
        public char* jData;
        public uint* account;
        public char* sectionName;
        public char* zoneName;
        public char* domainName;
    }
}
