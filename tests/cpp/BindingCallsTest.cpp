// Every member of Session, so that each is seen to reach the function of its name with its arguments in their order.
#include "Store.h"
#include "brimlet.hpp"

#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

using namespace brimlet;

class BindingCalls : public ::testing::Test
{
protected:
    test::Directory directory;
    Session session;
};

// Reads an answer within one statement, at whose end it is destroyed.
template<class T>
const Answer<T> &seen(const Answer<T> &answer)
{
    return answer;
}

// The ids of an array, in order.
template<class View>
std::string ids(const Answer<Array<View>> &answer)
{
    if (!answer)
        return "code " + std::to_string(static_cast<uint32_t>(answer.code()));
    std::vector<uint32_t> numbers;
    for (const View view : *answer)
        numbers.push_back(view.id());
    std::sort(numbers.begin(), numbers.end());
    std::string text;
    for (const uint32_t number : numbers)
        text += (text.empty() ? "" : " ") + std::to_string(number);
    return text;
}

TEST_F(BindingCalls, ServerAddress)
{
    EXPECT_EQ(seen(session.getServerIp())->view(), std::nullopt);
    EXPECT_EQ(session.setServerIp(u"10.0.0.1"), Code::Done);
    EXPECT_EQ(seen(session.getServerIp())->view(), u"10.0.0.1");
    EXPECT_EQ(session.setServerIp(""), Code::Done);
    EXPECT_EQ(seen(session.getServerIp())->view(), std::nullopt);
}

TEST_F(BindingCalls, Locales)
{
    EXPECT_EQ(session.addLocales(R"({"D":{"items":[{"id":1,"iso":"en"},{"id":2}]}})"), Code::Done);
    EXPECT_EQ(seen(session.getLocale(1))->iso(), u"en");
    EXPECT_EQ(ids(session.getLocales()), "1 2");
    EXPECT_EQ(ids(session.getLocalesWithParams("iso", "en")), "1");
}

TEST_F(BindingCalls, Domains)
{
    EXPECT_EQ(session.addDomains(R"({"D":{"items":[{"id":1,"name":"a"},{"id":2}]}})"), Code::Done);
    EXPECT_EQ(seen(session.updateDomain(R"({"D":{"id":1,"name":"b"}})"))->name(), u"b");
    EXPECT_EQ(seen(session.getDomain(1))->name(), u"b");
    EXPECT_EQ(ids(session.getDomains()), "1 2");
    EXPECT_EQ(ids(session.getDomainsWithParams("name", "b")), "1");
    EXPECT_EQ(session.deleteDomain(R"({"D":{"domain_id":1}})"), Code::Done);
    EXPECT_EQ(ids(session.getDomains()), "2");
}

TEST_F(BindingCalls, Users)
{
    EXPECT_EQ(session.addUsers(R"({"D":{"items":[{"id":1,"name":"a"},{"id":2}]}})"), Code::Done);
    EXPECT_EQ(seen(session.updateUser(R"({"D":{"id":1,"name":"b"}})"))->name(), u"b");
    EXPECT_EQ(seen(session.getUser(1))->name(), u"b");
    EXPECT_EQ(ids(session.getUsers()), "1 2");
    EXPECT_EQ(ids(session.getUsersWithParams(u"name", u"b")), "1");
    EXPECT_EQ(session.deleteUser(R"({"D":{"op_id":1}})"), Code::Done);
    EXPECT_EQ(ids(session.getUsers()), "2");
}

TEST_F(BindingCalls, Organizations)
{
    EXPECT_EQ(session.addOrganizations(R"({"D":{"items":[{"org_id":1,"inn":"a"},{"org_id":2}]}})"), Code::Done);
    EXPECT_EQ(seen(session.updateOrganization(R"({"D":{"org_id":1,"inn":"b"}})"))->inn(), u"b");
    EXPECT_EQ(seen(session.getOrganization(1))->inn(), u"b");
    EXPECT_EQ(ids(session.getOrganizations()), "1 2");
    EXPECT_EQ(ids(session.getOrganizationsWithParams("inn", "b")), "1");
    EXPECT_EQ(session.deleteOrganization(R"({"D":{"org_id":1}})"), Code::Done);
    EXPECT_EQ(ids(session.getOrganizations()), "2");
}

TEST_F(BindingCalls, Contractors)
{
    EXPECT_EQ(session.addContractors(R"({"D":{"items":[{"id":1,"name":"a"},{"id":2}]}})"), Code::Done);
    EXPECT_EQ(seen(session.updateContractor(R"({"D":{"id":1,"name":"b"}})"))->name(), u"b");
    EXPECT_EQ(seen(session.getContractor(1))->name(), u"b");
    EXPECT_EQ(ids(session.getContractors()), "1 2");
    EXPECT_EQ(ids(session.getContractorsWithParams("name", "b")), "1");
    EXPECT_EQ(session.deleteContractor(R"({"D":{"id":1}})"), Code::Done);
    EXPECT_EQ(ids(session.getContractors()), "2");
}

TEST_F(BindingCalls, Contracts)
{
    EXPECT_EQ(session.addContracts(R"({"D":{"items":[{"id":1,"number":"a"},{"id":2}]}})"), Code::Done);
    EXPECT_EQ(seen(session.updateContract(R"({"D":{"id":1,"number":"b"}})"))->number(), u"b");
    EXPECT_EQ(seen(session.getContract(1))->number(), u"b");
    EXPECT_EQ(ids(session.getContracts()), "1 2");
    EXPECT_EQ(ids(session.getContractsWithParams("number", "b")), "1");
    EXPECT_EQ(session.deleteContract(R"({"D":{"id":1}})"), Code::Done);
    EXPECT_EQ(ids(session.getContracts()), "2");
}

TEST_F(BindingCalls, Devices)
{
    EXPECT_EQ(session.addDevices(R"({"D":{"items":[{"id":1,"account":5}]}})"), Code::Done);
    EXPECT_EQ(session.addDevice(R"({"D":{"id":2,"account":6}})"), Code::Done);
    EXPECT_EQ(seen(session.updateDeviceFw(R"({"D":{"id":1,"config_version":3}})"))->configVersion(), 3u);
    EXPECT_EQ(seen(session.getDevice(1))->account(), 5u);
    EXPECT_EQ(ids(session.getDevices()), "1 2");
    EXPECT_EQ(ids(session.getDevicesWithParams("account", "6")), "2");
    EXPECT_EQ(session.deleteDevice(R"({"D":{"id":1}})"), Code::Done);
    EXPECT_EQ(ids(session.getDevices()), "2");
}

TEST_F(BindingCalls, Sections)
{
    require(session.addDevice(R"({"D":{"id":30,"sections":[{"id":1,"name":"a"},{"id":2}]}})"));
    EXPECT_EQ(seen(session.updateSection(R"({"D":{"device":30,"id":1,"name":"b"}})"))->name(), u"b");
    EXPECT_EQ(session.updateSection(R"({"D":{"device":31,"id":1,"name":"b"}})").code(), Code::NoParent);
    EXPECT_EQ(seen(session.getSection(1, 30))->name(), u"b");
    EXPECT_EQ(session.getSection(30, 1).code(), Code::NotFound);
    EXPECT_EQ(ids(session.getSections(30)), "1 2");
    EXPECT_EQ(ids(session.getSectionsWithParams("name", "b", 30)), "1");
    EXPECT_EQ(session.deleteSection(R"({"D":{"device":30,"section":1}})"), Code::Done);
    EXPECT_EQ(ids(session.getSections(30)), "2");
}

TEST_F(BindingCalls, Zones)
{
    require(session.addDevice(R"({"D":{"id":30,"sections":[{"id":20,"zones":[{"id":1,"name":"a"},{"id":2}]},
                                                   {"id":21,"zones":[{"id":3,"name":"b"}]}]}})"));
    EXPECT_EQ(seen(session.updateZone(R"({"D":{"device":30,"section":20,"id":1,"name":"b"}})"))->name(), u"b");
    EXPECT_EQ(seen(session.getZone(1, 30, 20))->name(), u"b");
    EXPECT_EQ(session.getZone(1, 20, 30).code(), Code::NotFound);
    EXPECT_EQ(ids(session.getZones(30)), "1 2 3");
    EXPECT_EQ(ids(session.getZonesForSection(30, 20)), "1 2");
    EXPECT_EQ(ids(session.getZonesWithParams("name", "b", 30)), "1 3");
    EXPECT_EQ(ids(session.getZonesForSectionWithParams("name", "b", 30, 20)), "1");
    EXPECT_EQ(session.deleteZone(R"({"D":{"device":30,"section":20,"zone":1}})"), Code::Done);
    EXPECT_EQ(ids(session.getZones(30)), "2 3");
}

TEST_F(BindingCalls, Sites)
{
    EXPECT_EQ(session.addSites(R"({"D":{"items":[{"id":1,"name":"a","address_text":"c"},{"id":2}]}})"), Code::Done);
    EXPECT_EQ(seen(session.updateSite(R"({"D":{"id":1,"name":"b"}})"))->name(), u"b");
    EXPECT_EQ(seen(session.getSite(1))->name(), u"b");
    EXPECT_EQ(ids(session.getSites()), "1 2");
    EXPECT_EQ(ids(session.getSitesWithParams("name", "b")), "1");
    const auto label = session.getSiteNameAndAddress(1);
    EXPECT_EQ(label->name.view(), u"b");
    EXPECT_EQ(label->address.view(), u"c");
    EXPECT_EQ(seen(session.getSiteNameAndAddress(2))->name.view(), std::nullopt);
    EXPECT_EQ(session.getSiteNameAndAddress(3).code(), Code::NotFound);
    EXPECT_EQ(session.deleteSite(R"({"D":{"site_id":1}})"), Code::Done);
    EXPECT_EQ(ids(session.getSites()), "2");
}

TEST_F(BindingCalls, Events)
{
    require(session.addDevice(R"({"D":{"id":30}})"));
    EXPECT_EQ(seen(session.addEvent(R"({"D":{"id":1,"time":10,"device":30,"affect":1}})"))->time(), 10u);
    EXPECT_EQ(ids(session.addEvents(R"({"D":{"items":[{"id":2,"time":20,"device":30,"affect":0},
                                                      {"id":3,"time":30,"device":30,"affect":1}]}})")),
              "2 3");
    EXPECT_EQ(ids(session.getEvents(10, 20)), "1 2");
    EXPECT_EQ(ids(session.getAffectEvents()), "1 3");
    EXPECT_EQ(seen(session.removeAffectFlag(R"({"D":{"id":3}})"))->affect(), false);
    EXPECT_EQ(ids(session.getAffectEvents()), "1");
    EXPECT_EQ(session.clearEventsBeforeDateExceptAffects(20), Code::Done);
    EXPECT_EQ(ids(session.getEvents(0, 100)), "1 3");
}

TEST_F(BindingCalls, Clearing)
{
    require(session.addDevice(R"({"D":{"id":30}})"));
    (void)session.addEvent(R"({"D":{"id":1,"time":10,"device":30}})");
    EXPECT_EQ(session.clearAllExceptEvents(), Code::Done);
    EXPECT_EQ(ids(session.getDevices()), "code 8");
    require(session.addDevice(R"({"D":{"id":30}})")); // the event shows again
    EXPECT_EQ(ids(session.getEvents(0, 100)), "1");
    EXPECT_EQ(session.clearAll(), Code::Done);
    require(session.addDevice(R"({"D":{"id":30}})"));
    EXPECT_EQ(ids(session.getEvents(0, 100)), "code 8");
}

} // namespace
