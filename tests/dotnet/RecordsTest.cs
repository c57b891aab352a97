using System;
using System.Collections.Generic;
using System.Linq;
using Brimlet;

// Every field of every kind of record, from its document to its property; absent and empty kept apart.
internal static class RecordsTest
{
    private const string locale = "{Id=5 Iso=\"de\" Description=\"Deutsch 𠮷\"}";
    private const string domain = "{Id=6 Name=\"Süd\" OrgId=8 Locale=" + locale + "}";
    private const string user = "{Id=7 Name=\"Anna\" Login=\"\" Contacts=\"+1\" IsActive=True DomainId=6 Roles=3"
        + " Phone=4503599627370495 Domain=" + domain + " OrgId=8}";
    private const string organization = "{Id=8 Inn=\"1\" OfficialName=\"Two\" ShortName=\"Three\" Kpp=\"4\" Ogrn=\"5\""
        + " Address=\"Six\" Contact={Id=9 Name=\"Ben\" Phone=\"1\" Email=\"b@example.org\" Postal=\"2\"}"
        + " Locale=" + locale + "}";
    private const string contractor = "{Id=10 Inn=\"1\" OrgId=8 Type=2 OfficialName=\"Two\" Name=\"Three\""
        + " Extra=\"Four\"}";
    private const string contract = "{Id=11 Number=\"1/2\" Contractor=" + contractor + " Name=\"Watch\" Status=2"
        + " Date=4294967295 Description=\"Three\" Extra=\"Four\" User=" + user + "}";
    private const string zone = "{Id=13 Name=\"Door\" Detector=1 Physic=2 Form=3 Flags=4 Delay=5 ScheduleId=6"
        + " Tracert=7 UidType=8 Arm=9}";
    private const string section = "{Id=12 Name=\"Hall\" ScheduleId=1 Zones=[" + zone + "] Tracert=2 Flags=3"
        + " Detector=4 Arm=5 Physic=6 Form=7 Delay=8 UidType=9}";
    private const string device = "{Id=15 Account=1 Domain=" + domain + " ConfigVersion=2 Sections=[" + section + "]"
        + " Users=[{Id=14 Name=\"Cid\" Comment=\"owner\" Phone=\"3\" Sections=[12 77]}] IsParted=True ClusterId=4"
        + " DomainId=6}";
    private const string site = "{Id=16 Name=\"Shop\" Comment=\"1\" Extra=\"2\" IsCrossing=True Domain=" + domain
        + " Address=\"3\" Contract=" + contract + " ContractStatus=-4 Type=5 Category=6 ArmMode=7 IsDelegated=False"
        + " Devices=[] DomainId=6 Location={Id=16 Latitude=-1.5 Longitude=2.25} ContractId=11 IsSitePlanExists=True}";
    private const string anEvent = "{Id=17 Time=100 DeviceId=15 SectionId=12 ZoneId=13 Active=1 EventClass=2 Detector=3"
        + " Reason=255 LocalTime=4 Channel=-5 Data=\"six\" ReviewId=7 ReviewState=8 UserId=7 IsClosed=False"
        + " Affect=True JData=\"{}\" Account=1 SectionName=\"Hall\" ZoneName=\"Door\" DomainName=\"Süd\"}";

    internal static void Run()
    {
        using (var workplace = new Workplace())
        using (var session = new Session(workplace.Directory))
        {
            Fill(session);
            ReadEach(session);
            ReadLists(session);
            Find(session);
            Update(session);
            Delete(session);
            ReadAbsent(session);
            ReadFlags(session);
        }
    }

    private static void Fill(Session session)
    {
        session.AddLocales(Items("{'id':5,'iso':'de','description':'Deutsch 𠮷'}"));
        session.AddDomains(Items("{'id':6,'name':'Süd','org_id':8,'locale_id':5}"));
        session.AddUsers(Items("{'id':7,'name':'Anna','login':'','contacts':'+1','active':1,'domain':6,'roles':3,"
            + "'phone':4503599627370495,'org':8}"));
        session.AddOrganizations(Items("{'org_id':8,'inn':'1','off_name':'Two','short_name':'Three','kpp':'4',"
            + "'ogrn':'5','address_text':'Six','locale_id':5,'contact':{'id':9,'name':'Ben','phone':'1',"
            + "'email':'b@example.org','postal':'2'}}"));
        session.AddContractors(Items("{'id':10,'inn':'1','org_id':8,'type':2,'off_name':'Two','name':'Three',"
            + "'extra':'Four'}"));
        session.AddContracts(Items("{'id':11,'number':'1/2','c_name':'Watch','status':2,'date':4294967295,"
            + "'description':'Three','extra':'Four','contractor_id':10,'operator_id':7}"));
        session.AddDevices(Items("{'id':15,'account':1,'domain':6,'config_version':2,'parted':1,'cluster_id':4,"
            + "'sections':[{'id':12,'name':'Hall','schedule_id':1,'tracert':2,'flags':3,'detector':4,'arm':5,"
            + "'physic':6,'form':7,'delay':8,'uid_type':9,'zones':[{'id':13,'name':'Door','detector':1,'physic':2,"
            + "'form':3,'flags':4,'delay':5,'schedule_id':6,'tracert':7,'uid_type':8,'arm':9}]}],"
            + "'users':[{'user_index':14,'name':'Cid','comment':'owner','phone':'3','sections':[12,77]}]}"));
        session.AddSites(Items("{'id':16,'name':'Shop','comment':'1','extra':'2','is_crossing':1,'domain':6,"
            + "'address_text':'3','contract_id':11,'contract_status':-4,'type':5,'category':6,'arm_mode':7,"
            + "'delegated':0,'site_plan':1,'location':{'lat':-1.5,'lon':2.25}}"));
        Is("addEvent", anEvent, session.AddEvent(Single("{'id':17,'time':100,'device':15,'section':12,'zone':13,"
            + "'active':1,'class':2,'detector':3,'reason':255,'localtime':4,'channel':-5,'data':'six','review_id':7,"
            + "'review_state':8,'operator_id':7,'is_closed':0,'affect':1,'jdata':'{}'}")));
    }

    private static void ReadEach(Session session)
    {
        Is("getLocale", locale, session.GetLocale(5));
        Is("getDomain", domain, session.GetDomain(6));
        Is("getUser", user, session.GetUser(7));
        Is("getOrganization", organization, session.GetOrganization(8));
        Is("getContractor", contractor, session.GetContractor(10));
        Is("getContract", contract, session.GetContract(11));
        Is("getDevice", device, session.GetDevice(15));
        Is("getSection", section, session.GetSection(12, 15));
        Is("getZone", zone, session.GetZone(13, 15, 12));
        Is("getSite", site, session.GetSite(16));
        Is("getSiteNameAndAddress", "{Name=\"Shop\" Address=\"3\"}", session.GetSiteNameAndAddress(16));
    }

    private static void ReadLists(Session session)
    {
        Are("getLocales", locale, session.GetLocales());
        Are("getDomains", domain, session.GetDomains());
        Are("getUsers", user, session.GetUsers());
        Are("getOrganizations", organization, session.GetOrganizations());
        Are("getContractors", contractor, session.GetContractors());
        Are("getContracts", contract, session.GetContracts());
        Are("getDevices", device, session.GetDevices());
        Are("getSections", section, session.GetSections(15));
        Are("getZones", zone, session.GetZones(15));
        Are("getZonesForSection", zone, session.GetZonesForSection(15, 12));
        Are("getSites", site, session.GetSites());
        Are("getEvents", anEvent, session.GetEvents(100, 100));
        Are("getAffectEvents", anEvent, session.GetAffectEvents());
        Are("addEvents", anEvent.Replace("Id=17 ", "Id=18 ").Replace("Affect=True", "Affect=-"), session.AddEvents(
            Items("{'id':18,'time':100,'device':15,'section':12,'zone':13,'active':1,'class':2,'detector':3,"
            + "'reason':255,'localtime':4,'channel':-5,'data':'six','review_id':7,'review_state':8,'operator_id':7,"
            + "'is_closed':0,'jdata':'{}'}")));
    }

    private static void Find(Session session)
    {
        Are("getLocalesWithParams", locale, session.GetLocalesWithParams("description", "Deutsch 𠮷"));
        Are("getDomainsWithParams", domain, session.GetDomainsWithParams("name", "Süd"));
        Are("getUsersWithParams", user, session.GetUsersWithParams("phone", "4503599627370495"));
        Are("getUsersWithParams, by an empty text", user, session.GetUsersWithParams("login", ""));
        Are("getOrganizationsWithParams", organization, session.GetOrganizationsWithParams("short_name", "Three"));
        Are("getContractorsWithParams", contractor, session.GetContractorsWithParams("type", "2"));
        Are("getContractsWithParams", contract, session.GetContractsWithParams("number", "1/2"));
        Are("getDevicesWithParams", device, session.GetDevicesWithParams("account", "1"));
        Are("getSectionsWithParams", section, session.GetSectionsWithParams("name", "Hall", 15));
        Are("getZonesWithParams", zone, session.GetZonesWithParams("name", "Door", 15));
        Are("getZonesForSectionWithParams", zone, session.GetZonesForSectionWithParams("physic", "2", 15, 12));
        Are("getSitesWithParams", site, session.GetSitesWithParams("contract_status", "-4"));
        Check.Equal("getZonesForSectionWithParams, in another section", 0,
            session.GetZonesForSectionWithParams("physic", "2", 12, 15).Count);
    }

    private static void Update(Session session)
    {
        Is("updateDomain", domain.Replace("Süd", "Nord"), session.UpdateDomain(Single("{'id':6,'name':'Nord'}")));
        Is("updateUser", user.Replace("Süd", "Nord").Replace("Anna", "Eva"),
            session.UpdateUser(Single("{'id':7,'name':'Eva'}")));
        Is("updateOrganization", organization.Replace("Two", "2"),
            session.UpdateOrganization(Single("{'org_id':8,'off_name':'2'}")));
        Is("updateContractor", contractor.Replace("Four", "4"),
            session.UpdateContractor(Single("{'id':10,'extra':'4'}")));
        Check.Equal("updateContract", "Guard", session.UpdateContract(Single("{'id':11,'c_name':'Guard'}")).Name);
        Check.Equal("updateDeviceFw", 3u,
            session.UpdateDeviceFw(Single("{'id':15,'config_version':3}")).ConfigVersion);
        Is("updateSection", section.Replace("Hall", "Loft"),
            session.UpdateSection(Single("{'device':15,'id':12,'name':'Loft'}")));
        Is("updateZone", zone.Replace("Door", "Gate"),
            session.UpdateZone(Single("{'device':15,'section':12,'id':13,'name':'Gate'}")));
        Check.Equal("updateSite", "Kiosk", session.UpdateSite(Single("{'id':16,'name':'Kiosk'}")).Name);
        Is("removeAffectFlag", anEvent.Replace("Affect=True", "Affect=False").Replace("Süd", "Nord")
            .Replace("Hall", "Loft").Replace("Door", "Gate"), session.RemoveAffectFlag(Single("{'id':17}")));
    }

    private static void Delete(Session session)
    {
        session.DeleteZone(Single("{'device':15,'section':12,'zone':13}"));
        Check.Equal("deleteZone", null, session.GetZone(13, 15, 12));
        session.DeleteSection(Single("{'device':15,'section':12}"));
        Check.Equal("deleteSection", null, session.GetSection(12, 15));
        session.DeleteDevice(Single("{'id':15}"));
        Check.Equal("deleteDevice", null, session.GetDevice(15));
        session.DeleteSite(Single("{'site_id':16}"));
        Check.Equal("deleteSite", null, session.GetSite(16));
        Check.Equal("no label of a site that is gone", null, session.GetSiteNameAndAddress(16));
        session.DeleteContract(Single("{'id':11}"));
        Check.Equal("deleteContract", null, session.GetContract(11));
        session.DeleteContractor(Single("{'id':10}"));
        Check.Equal("deleteContractor", null, session.GetContractor(10));
        session.DeleteOrganization(Single("{'org_id':8}"));
        Check.Equal("deleteOrganization", null, session.GetOrganization(8));
        session.DeleteUser(Single("{'op_id':7}"));
        Check.Equal("deleteUser", null, session.GetUser(7));
        session.DeleteDomain(Single("{'domain_id':6}"));
        Check.Equal("deleteDomain", null, session.GetDomain(6));
    }

    // Documents with only an id become records with only an id.
    private static void ReadFlags(Session session)
    {
        session.AddUsers(Items("{'id':2,'active':true},{'id':3,'active':1}"));
        Check.Equal("true in a document is stored as false", false, session.GetUser(2).IsActive);
        Check.Equal("and 1 as true", true, session.GetUser(3).IsActive);
    }

    private static void ReadAbsent(Session session)
    {
        session.ClearAll();
        session.AddLocales(Items("{'id':1}"));
        session.AddDomains(Items("{'id':1}"));
        session.AddUsers(Items("{'id':1}"));
        session.AddOrganizations(Items("{'org_id':1}"));
        session.AddContractors(Items("{'id':1}"));
        session.AddContracts(Items("{'id':1}"));
        session.AddDevice(Single("{'id':1,'sections':[{'id':1}],'users':[{'user_index':1}]}"));
        session.UpdateZone(Single("{'device':1,'section':1,'id':1}"));
        session.AddSites(Items("{'id':1}"));
        var records = new object[]
        {
            session.GetLocale(1), session.GetDomain(1), session.GetUser(1), session.GetOrganization(1),
            session.GetContractor(1), session.GetContract(1), session.GetDevice(1).Users.Single(),
            session.GetZone(1, 1, 1), session.GetSite(1), session.AddEvent(Single("{'id':1}"))
        };
        foreach (object record in records)
        {
            string[] held = record.GetType().GetProperties().Where(property => property.Name != "Id"
                && !new[] { "-", "[]" }.Contains(Show.Value(property.GetValue(record)))).Select(
                property => property.Name).ToArray();
            Check.Equal("an empty " + record.GetType().Name + " holds", "[]", Show.Value(held));
        }
        Check.Equal("a site without name and address has a label", "{Name=- Address=-}",
            Show.Value(session.GetSiteNameAndAddress(1)));
    }

    private static void Is(string what, string expected, object record)
    {
        Check.That(what, expected == Show.Value(record), "\n    expected " + expected + "\n    and got  "
            + Show.Value(record));
    }

    private static void Are(string what, string expected, IReadOnlyList<object> records)
    {
        Is(what, "[" + expected + "]", records);
    }

    internal static string Items(string record) => Single("{'items':[" + record + "]}");

    internal static string Single(string record) => ("{'D':" + record + "}").Replace('\'', '"');
}
