using System.Collections.Generic;

namespace Brimlet
{
    // The records as a client reads them: copies that hold no block of the library and do not change. A property has
    // the name of its field in FlatRecords.h; it is null where the field is absent, which for a text is not the empty
    // one. A list is never null.

    /// <summary>A locale.</summary>
    public sealed unsafe class Locale
    {
        internal Locale(FlatLocale* flat)
        {
            Id = flat->id;
            Iso = Blocks.Text(flat->iso);
            Description = Blocks.Text(flat->description);
        }

        public uint Id { get; }
        public string Iso { get; }
        public string Description { get; }
    }

    /// <summary>A domain, with its locale if the store holds it.</summary>
    public sealed unsafe class Domain
    {
        internal Domain(FlatDomain* flat)
        {
            Id = flat->id;
            Name = Blocks.Text(flat->name);
            OrgId = Blocks.Value(flat->orgId);
            Locale = flat->locale == null ? null : new Locale(flat->locale);
        }

        public uint Id { get; }
        public string Name { get; }
        public uint? OrgId { get; }
        public Locale Locale { get; }
    }

    /// <summary>An operator of the monitoring service, with the domain if the store holds it.</summary>
    public sealed unsafe class User
    {
        internal User(FlatUser* flat)
        {
            Id = flat->id;
            Name = Blocks.Text(flat->name);
            Login = Blocks.Text(flat->login);
            Contacts = Blocks.Text(flat->contacts);
            IsActive = Blocks.Flag(flat->isActive);
            DomainId = Blocks.Value(flat->domainId);
            Roles = Blocks.Value(flat->roles);
            Phone = Blocks.Value(flat->phone);
            Domain = flat->domain == null ? null : new Domain(flat->domain);
            OrgId = Blocks.Value(flat->orgId);
        }

        public uint Id { get; }
        public string Name { get; }
        public string Login { get; }
        public string Contacts { get; }
        public bool? IsActive { get; }
        public uint? DomainId { get; }
        public uint? Roles { get; }
        public ulong? Phone { get; }
        public Domain Domain { get; }
        public uint? OrgId { get; }
    }

    /// <summary>The contact person of an organization.</summary>
    public sealed unsafe class Person
    {
        internal Person(FlatPerson* flat)
        {
            Id = flat->id;
            Name = Blocks.Text(flat->name);
            Phone = Blocks.Text(flat->phone);
            Email = Blocks.Text(flat->email);
            Postal = Blocks.Text(flat->postal);
        }

        public uint Id { get; }
        public string Name { get; }
        public string Phone { get; }
        public string Email { get; }
        public string Postal { get; }
    }

    /// <summary>An organization, with its contact person and its locale if the store holds them.</summary>
    public sealed unsafe class Organization
    {
        internal Organization(FlatOrganization* flat)
        {
            Id = flat->id;
            Inn = Blocks.Text(flat->inn);
            OfficialName = Blocks.Text(flat->officialName);
            ShortName = Blocks.Text(flat->shortName);
            Kpp = Blocks.Text(flat->kpp);
            Ogrn = Blocks.Text(flat->ogrn);
            Address = Blocks.Text(flat->address);
            Contact = flat->contact == null ? null : new Person(flat->contact);
            Locale = flat->locale == null ? null : new Locale(flat->locale);
        }

        public uint Id { get; }
        public string Inn { get; }
        public string OfficialName { get; }
        public string ShortName { get; }
        public string Kpp { get; }
        public string Ogrn { get; }
        public string Address { get; }
        public Person Contact { get; }
        public Locale Locale { get; }
    }

    /// <summary>A party to contracts.</summary>
    public sealed unsafe class Contractor
    {
        internal Contractor(FlatContractor* flat)
        {
            Id = flat->id;
            Inn = Blocks.Text(flat->inn);
            OrgId = Blocks.Value(flat->orgId);
            Type = Blocks.Value(flat->type);
            OfficialName = Blocks.Text(flat->officialName);
            Name = Blocks.Text(flat->name);
            Extra = Blocks.Text(flat->extra);
        }

        public uint Id { get; }
        public string Inn { get; }
        public uint? OrgId { get; }
        public uint? Type { get; }
        public string OfficialName { get; }
        public string Name { get; }
        public string Extra { get; }
    }

    /// <summary>A contract, with its contractor and its operator if the store holds them.</summary>
    public sealed unsafe class Contract
    {
        internal Contract(FlatContract* flat)
        {
            Id = flat->id;
            Number = Blocks.Text(flat->number);
            Contractor = flat->contractor == null ? null : new Contractor(flat->contractor);
            Name = Blocks.Text(flat->name);
            Status = Blocks.Value(flat->status);
            Date = Blocks.Value(flat->date);
            Description = Blocks.Text(flat->description);
            Extra = Blocks.Text(flat->extra);
            User = flat->user == null ? null : new User(flat->user);
        }

        public uint Id { get; }
        public string Number { get; }
        public Contractor Contractor { get; }
        public string Name { get; }
        public uint? Status { get; }
        public uint? Date { get; }
        public string Description { get; }
        public string Extra { get; }
        public User User { get; }
    }

    /// <summary>A zone. Its device and section are not part of it.</summary>
    public sealed unsafe class Zone
    {
        internal Zone(FlatZone* flat)
        {
            Id = flat->id;
            Name = Blocks.Text(flat->name);
            Detector = Blocks.Value(flat->detector);
            Physic = Blocks.Value(flat->physic);
            Form = Blocks.Value(flat->form);
            Flags = Blocks.Value(flat->flags);
            Delay = Blocks.Value(flat->delay);
            ScheduleId = Blocks.Value(flat->scheduleId);
            Tracert = Blocks.Value(flat->tracert);
            UidType = Blocks.Value(flat->uidType);
            Arm = Blocks.Value(flat->arm);
        }

        public uint Id { get; }
        public string Name { get; }
        public uint? Detector { get; }
        public uint? Physic { get; }
        public uint? Form { get; }
        public uint? Flags { get; }
        public uint? Delay { get; }
        public uint? ScheduleId { get; }
        public uint? Tracert { get; }
        public uint? UidType { get; }
        public uint? Arm { get; }
    }

    /// <summary>A section with its zones. Its device is not part of it.</summary>
    public sealed unsafe class Section
    {
        internal Section(FlatSection* flat)
        {
            Id = flat->id;
            Name = Blocks.Text(flat->name);
            ScheduleId = Blocks.Value(flat->scheduleId);
            Zones = Blocks.List(Kind.Zone, flat->zones, flat->zonesCount);
            Tracert = Blocks.Value(flat->tracert);
            Flags = Blocks.Value(flat->flags);
            Detector = Blocks.Value(flat->detector);
            Arm = Blocks.Value(flat->arm);
            Physic = Blocks.Value(flat->physic);
            Form = Blocks.Value(flat->form);
            Delay = Blocks.Value(flat->delay);
            UidType = Blocks.Value(flat->uidType);
        }

        public uint Id { get; }
        public string Name { get; }
        public uint? ScheduleId { get; }
        public IReadOnlyList<Zone> Zones { get; }
        public uint? Tracert { get; }
        public uint? Flags { get; }
        public uint? Detector { get; }
        public uint? Arm { get; }
        public uint? Physic { get; }
        public uint? Form { get; }
        public uint? Delay { get; }
        public uint? UidType { get; }
    }

    /// <summary>A user programmed into a device, with the numbers of the sections that this user reaches.</summary>
    public sealed unsafe class DeviceUser
    {
        internal DeviceUser(FlatDeviceUser* flat)
        {
            Id = flat->id;
            Name = Blocks.Text(flat->name);
            Comment = Blocks.Text(flat->comment);
            Phone = Blocks.Text(flat->phone);
            Sections = Blocks.Numbers(flat->sections, flat->sectionsCount);
        }

        public uint Id { get; }
        public string Name { get; }
        public string Comment { get; }
        public string Phone { get; }
        public IReadOnlyList<uint> Sections { get; }
    }

    /// <summary>A device with its sections and users, and with the domain if the store holds it.</summary>
    public sealed unsafe class Device
    {
        internal Device(FlatDevice* flat)
        {
            Id = flat->id;
            Account = Blocks.Value(flat->account);
            Domain = flat->domain == null ? null : new Domain(flat->domain);
            ConfigVersion = Blocks.Value(flat->configVersion);
            Sections = Blocks.List(Kind.Section, flat->sections, flat->sectionsCount);
            Users = Blocks.List(Kind.DeviceUser, flat->users, flat->usersCount);
            IsParted = Blocks.Flag(flat->isParted);
            ClusterId = Blocks.Value(flat->clusterId);
            DomainId = Blocks.Value(flat->domainId);
        }

        public uint Id { get; }
        public uint? Account { get; }
        public Domain Domain { get; }
        public uint? ConfigVersion { get; }
        public IReadOnlyList<Section> Sections { get; }
        public IReadOnlyList<DeviceUser> Users { get; }
        public bool? IsParted { get; }
        public uint? ClusterId { get; }
        public uint? DomainId { get; }
    }

    /// <summary>Where a site lies, under the site's own id.</summary>
    public sealed unsafe class Location
    {
        internal Location(FlatLocation* flat)
        {
            Id = flat->id;
            Latitude = Blocks.Value(flat->latitude);
            Longitude = Blocks.Value(flat->longitude);
        }

        public uint Id { get; }
        public double? Latitude { get; }
        public double? Longitude { get; }
    }

    /// <summary>A site, with its domain, location and contract if the store holds them. A read gives no devices.
    /// </summary>
    public sealed unsafe class Site
    {
        internal Site(FlatSite* flat)
        {
            Id = flat->id;
            Name = Blocks.Text(flat->name);
            Comment = Blocks.Text(flat->comment);
            Extra = Blocks.Text(flat->extra);
            IsCrossing = Blocks.Flag(flat->isCrossing);
            Domain = flat->domain == null ? null : new Domain(flat->domain);
            Address = Blocks.Text(flat->address);
            Contract = flat->contract == null ? null : new Contract(flat->contract);
            ContractStatus = Blocks.Value(flat->contractStatus);
            Type = Blocks.Value(flat->type);
            Category = Blocks.Value(flat->category);
            ArmMode = Blocks.Value(flat->armMode);
            IsDelegated = Blocks.Flag(flat->isDelegated);
            Devices = Blocks.List(Kind.Device, flat->devices, flat->deviceCount);
            DomainId = Blocks.Value(flat->domainId);
            Location = flat->location == null ? null : new Location(flat->location);
            ContractId = Blocks.Value(flat->contractId);
            IsSitePlanExists = Blocks.Flag(flat->isSitePlanExists);
        }

        public uint Id { get; }
        public string Name { get; }
        public string Comment { get; }
        public string Extra { get; }
        public bool? IsCrossing { get; }
        public Domain Domain { get; }
        public string Address { get; }
        public Contract Contract { get; }
        public int? ContractStatus { get; }
        public uint? Type { get; }
        public uint? Category { get; }
        public uint? ArmMode { get; }
        public bool? IsDelegated { get; }
        public IReadOnlyList<Device> Devices { get; }
        public uint? DomainId { get; }
        public Location Location { get; }
        public int? ContractId { get; }
        public bool? IsSitePlanExists { get; }
    }

    /// <summary>An event. The last four fields come from the equipment and the operator that the event names.</summary>
    public sealed unsafe class Event
    {
        internal Event(FlatEvent* flat)
        {
            Id = flat->id;
            Time = Blocks.Value(flat->time);
            DeviceId = Blocks.Value(flat->deviceId);
            SectionId = Blocks.Value(flat->sectionId);
            ZoneId = Blocks.Value(flat->zoneId);
            Active = Blocks.Value(flat->active);
            EventClass = Blocks.Value(flat->eventClass);
            Detector = Blocks.Value(flat->detector);
            Reason = Blocks.Value(flat->reason);
            LocalTime = Blocks.Value(flat->localTime);
            Channel = Blocks.Value(flat->channel);
            Data = Blocks.Text(flat->data);
            ReviewId = Blocks.Value(flat->reviewId);
            ReviewState = Blocks.Value(flat->reviewState);
            UserId = Blocks.Value(flat->userId);
            IsClosed = Blocks.Flag(flat->isClosed);
            Affect = Blocks.Flag(flat->affect);
            JData = Blocks.Text(flat->jData);
            Account = Blocks.Value(flat->account);
            SectionName = Blocks.Text(flat->sectionName);
            ZoneName = Blocks.Text(flat->zoneName);
            DomainName = Blocks.Text(flat->domainName);
        }

        public uint Id { get; }
        public uint? Time { get; }
        public int? DeviceId { get; }
        public uint? SectionId { get; }
        public uint? ZoneId { get; }
        public byte? Active { get; }
        public byte? EventClass { get; }
        public byte? Detector { get; }
        public byte? Reason { get; }
        public uint? LocalTime { get; }
        public int? Channel { get; }
        public string Data { get; }
        public uint? ReviewId { get; }
        public byte? ReviewState { get; }
        public uint? UserId { get; }
        public bool? IsClosed { get; }
        public bool? Affect { get; }
        public string JData { get; }
        public uint? Account { get; }
        public string SectionName { get; }
        public string ZoneName { get; }
        public string DomainName { get; }
    }
}
