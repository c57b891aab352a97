using System;
using System.Collections.Generic;
using System.IO;
using System.Text.RegularExpressions;
using Brimlet;

// The binding releases everything that it receives: the resident memory does not grow, however often a call is made.
// Each record has a long text, so that a leak of any kind of block shows.
internal static class MemoryTest
{
    private const int units = 20000;
    private const int calls = 400; // of 40 kB or more each
    private const int allowedKilobytes = 8 * 1024; // half of that: what the heaps move about on their own

    internal static void Run()
    {
        using (var workplace = new Workplace())
        using (var session = new Session(workplace.Directory))
        {
            Fill(session);
            foreach (KeyValuePair<string, Action> call in Calls(session))
            {
                Repeat(call.Value, calls / 4);
                int before = ResidentKilobytes();
                Repeat(call.Value, calls);
                int grown = ResidentKilobytes() - before;
                Check.That(call.Key + " leaves the memory as it was, to " + grown + " kB", grown < allowedKilobytes);
            }
        }
    }

    private static void Fill(Session session)
    {
        string text = new string('x', units);
        session.SetServerIp(text);
        session.AddLocales(RecordsTest.Items("{'id':1,'description':'" + text + "'}"));
        session.AddDomains(RecordsTest.Items("{'id':1,'name':'" + text + "'}"));
        session.AddUsers(RecordsTest.Items("{'id':1,'name':'" + text + "'}"));
        session.AddOrganizations(RecordsTest.Items("{'org_id':1,'inn':'" + text + "'}"));
        session.AddContractors(RecordsTest.Items("{'id':1,'name':'" + text + "'}"));
        session.AddContracts(RecordsTest.Items("{'id':1,'number':'" + text + "'}"));
        session.AddDevice(RecordsTest.Single("{'id':1,'sections':[{'id':1,'name':'" + text + "'},{'id':2,"
            + "'zones':[{'id':1,'name':'" + text + "'}]}],'users':[{'user_index':1,'sections':[1]}]}"));
        session.AddSites(RecordsTest.Items("{'id':1,'name':'" + text + "','address_text':'" + text + "'}"));
        session.AddEvent(RecordsTest.Single("{'id':1,'device':1,'time':1,'affect':1,'data':'" + text + "'}"));
    }

    private static Dictionary<string, Action> Calls(Session session)
    {
        string batch = RecordsTest.Items("{'id':1,'device':1,'data':'" + new string('x', units) + "'}");
        return new Dictionary<string, Action>
        {
            { "getServerIp", () => session.GetServerIp() },
            { "getSiteNameAndAddress", () => session.GetSiteNameAndAddress(1) },
            { "getLocale", () => session.GetLocale(1) },
            { "getLocales", () => session.GetLocales() },
            { "getDomain", () => session.GetDomain(1) },
            { "getDomains", () => session.GetDomains() },
            { "getUser", () => session.GetUser(1) },
            { "getUsers", () => session.GetUsers() },
            { "getUsersWithParams", () => session.GetUsersWithParams("id", "1") },
            { "a text on its way in", () => session.GetUsersWithParams("login", new string('x', units)) },
            { "updateUser", () => session.UpdateUser(RecordsTest.Single("{'id':1,'roles':2}")) },
            { "getOrganization", () => session.GetOrganization(1) },
            { "getOrganizations", () => session.GetOrganizations() },
            { "getContractor", () => session.GetContractor(1) },
            { "getContractors", () => session.GetContractors() },
            { "getContract", () => session.GetContract(1) },
            { "getContracts", () => session.GetContracts() },
            { "getDevice", () => session.GetDevice(1) },
            { "getDevices", () => session.GetDevices() },
            { "getSection", () => session.GetSection(1, 1) },
            { "getSections", () => session.GetSections(1) },
            { "getZone", () => session.GetZone(1, 1, 2) },
            { "getZones", () => session.GetZones(1) },
            { "getSite", () => session.GetSite(1) },
            { "getSites", () => session.GetSites() },
            { "getAffectEvents", () => session.GetAffectEvents() },
            { "removeAffectFlag", () => session.RemoveAffectFlag(RecordsTest.Single("{'id':1}")) },
            { "addEvents", () => session.AddEvents(batch) }
        };
    }

    private static void Repeat(Action call, int times)
    {
        for (int i = 0; i < times; ++i)
        {
            call();
        }
    }

    private static int ResidentKilobytes()
    {
        GC.Collect();
        GC.WaitForPendingFinalizers();
        GC.Collect();
        return int.Parse(Regex.Match(File.ReadAllText("/proc/self/status"), @"VmRSS:\s+(\d+) kB").Groups[1].Value);
    }
}
