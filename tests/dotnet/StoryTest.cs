using System;
using System.Collections.Generic;
using System.IO;
using System.Linq;
using Brimlet;

// A client's day on the sample documents, from an empty directory to a second launch.
internal static class StoryTest
{
    private const uint six = 1710396000; // in the morning of the day that the sample events tell

    internal static void Run()
    {
        using (var workplace = new Workplace())
        {
            using (var session = new Session(workplace.Directory))
            {
                Check.Equal("an empty directory gets a new file", LaunchResult.Created, session.Report.Last);
                Load(session);
                RememberServer(session);
                Look(session);
                KeepJournal(session);
                Change(session);
            }
            using (var session = new Session(workplace.Directory))
            {
                Check.Equal("a second launch opens the file", LaunchResult.Opened, session.Report.Last);
                Check.Equal("which keeps its users", 300, session.GetUsers().Count);
                Check.Equal("and its events", 1220, AllEvents(session).Count);
                Clear(session);
            }
        }
    }

    internal static string Document(string name)
    {
        return File.ReadAllText(Path.Combine(Program.Sources, "examples/data", name));
    }

    // The sample documents but for the events, in the order that their references need.
    internal static void Load(Session session)
    {
        session.AddLocales(Document("locales.json"));
        session.AddDomains(Document("domains.json"));
        session.AddOrganizations(Document("organizations.json"));
        session.AddUsers(Document("users.json"));
        session.AddContractors(Document("contractors.json"));
        session.AddContracts(Document("contracts.json"));
        session.AddDevices(Document("devices.json"));
        session.AddSites(Document("sites.json"));
        Check.Equal("locales, domains, organizations, users, contractors, contracts, devices, sites",
            "[12 15 30 300 40 80 46 40]", Show.Value(Counts(session)));
    }

    // The events that came back, hour by hour.
    internal static int AddDay(Session session)
    {
        return Directory.GetFiles(Path.Combine(Program.Sources, "examples/data/events"))
            .Sum(file => session.AddEvents(File.ReadAllText(file)).Count);
    }

    private static int[] Counts(Session session)
    {
        return new[]
        {
            session.GetLocales().Count, session.GetDomains().Count, session.GetOrganizations().Count,
            session.GetUsers().Count, session.GetContractors().Count, session.GetContracts().Count,
            session.GetDevices().Count, session.GetSites().Count
        };
    }

    private static void RememberServer(Session session)
    {
        Check.Equal("no server address at first", null, session.GetServerIp());
        session.SetServerIp("monitoring.example.net:7443");
        Check.Equal("the server address comes back", "monitoring.example.net:7443", session.GetServerIp());
    }

    private static void Look(Session session)
    {
        Contract contract = session.GetContract(2010);
        Check.Equal("a contract comes with its contractor", "ИП Ежова", contract.Contractor.Name);
        Check.Equal("with its operator, the domain and the locale", "Русский (Россия)",
            contract.User.Domain.Locale.Description);

        Device device = session.GetDevice(104);
        Check.Equal("a device comes with its sections and zones", "[[1 2 3 4 5] [6 7 8]]",
            Show.Value(device.Sections.Select(section => section.Zones.Select(zone => zone.Id))));
        Check.Equal("and with its users and what they reach", "[[1 2] [2]]",
            Show.Value(device.Users.Select(user => user.Sections)));

        Site site = session.GetSite(310);
        Check.Equal("a site comes with its location", 57.26394, site.Location.Latitude);
        SiteLabel label = session.GetSiteNameAndAddress(310);
        Check.Equal("a site's label is its name and address", site.Name + site.Address, label.Name + label.Address);

        Check.Equal("users by a number", 35, session.GetUsersWithParams("domain", "10").Count);
        Check.Equal("users by a text beyond the basic plane", 1, session.GetUsersWithParams("name", "𠮷田 葵").Count);
        Check.Equal("users by a text in other letters", 0, session.GetUsersWithParams("login", "A.OHara").Count);
        Check.Equal("contracts by their status", 8, session.GetContractsWithParams("status", "3").Count);
        Check.Equal("devices by their account", 107u, session.GetDevicesWithParams("account", "4107").Single().Id);
        Check.Equal("sites by a flag", 4, session.GetSitesWithParams("is_crossing", "1").Count);
    }

    private static IReadOnlyList<Event> AllEvents(Session session) => session.GetEvents(0, uint.MaxValue);

    private static void KeepJournal(Session session)
    {
        Check.Equal("a day of events, of known devices", 1483, AddDay(session));
        session.AddDevice(Document("add_device.json"));
        Check.Equal("with the last device known too", 1500, AllEvents(session).Count);

        Event single = session.AddEvent(Document("event.json"));
        Check.Equal("an event comes back with the names of its equipment", "Büros, Besprechung, Glas",
            single.SectionName + ", " + single.ZoneName);
        Check.Equal("the journal before six", 265, session.GetEvents(0, six - 1).Count);

        Event marked = session.GetAffectEvents().OrderBy(each => each.Time).First();
        Check.Equal("a mark is taken away", false,
            session.RemoveAffectFlag("{\"D\":{\"id\":" + marked.Id + "}}").Affect);
        Check.Equal("which leaves the others", 13, session.GetAffectEvents().Count);
        session.ClearEventsBeforeDateExceptAffects(six - 1);
        Check.Equal("a purge leaves the marked and the unsaid", 7, session.GetEvents(0, six - 1).Count);
        Check.Equal("and all that came later", 1243, AllEvents(session).Count);
    }

    private static void Change(Session session)
    {
        Check.Equal("an update gives the merged site", "Ворота со двора, код у дежурного. renovation until May",
            Joined(session.UpdateSite(Document("update_site.json")), site => site.Comment + " " + site.Extra));
        Check.Equal("the merged contract with its new operator", "Мар’яна Яворенко",
            session.UpdateContract(Document("update_contract.json")).User.Name);
        Check.Equal("the organization with its new contact", "Jördis Krähenbühl -",
            Joined(session.UpdateOrganization(Document("update_organization.json")).Contact,
                contact => contact.Name + " " + Show.Value(contact.Postal)));
        session.DeleteDevice(Document("delete_device.json"));
        Check.Equal("a removed device silences its events", 1220, AllEvents(session).Count);
    }

    private static string Joined<T>(T record, Func<T, string> text) => text(record);

    private static void Clear(Session session)
    {
        session.ClearAllExceptEvents();
        Check.Equal("all but the events is cleared", "[0 0 0 0 0 0 0 0]", Show.Value(Counts(session)));
        session.AddDevice("{\"D\":{\"id\":107}}");
        Check.That("the events are there when their device comes back", AllEvents(session).Count > 0);
        session.ClearAll();
        Check.Equal("all is cleared", "[0 0 0 0 0 0 0 0]", Show.Value(Counts(session)));
        session.AddDevice("{\"D\":{\"id\":107}}");
        Check.Equal("the events too", 0, AllEvents(session).Count);
        Check.Equal("but not the server address", "monitoring.example.net:7443", session.GetServerIp());
    }
}
