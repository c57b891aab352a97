// Owners, views, ranges and answers of brimlet.hpp.
#include "Store.h"
#include "brimlet.hpp"

#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <type_traits>
#include <vector>

namespace {

using namespace brimlet;
using brimlet::test::Directory;

template<class T>
constexpr bool isMoveOnly =
    std::is_nothrow_move_constructible_v<T>
        &&std::is_nothrow_move_assignable_v<T> && !std::is_copy_constructible_v<T> && !std::is_copy_assignable_v<T>;

static_assert(isMoveOnly<Record<UserView>>);
static_assert(isMoveOnly<Array<UserView>>);
static_assert(isMoveOnly<OwnedText>);
static_assert(isMoveOnly<Answer<Record<UserView>>>);
static_assert(!std::is_move_constructible_v<Session>);
static_assert(sizeof(UserView) == sizeof(void *), "a view is a pointer");

const char equipment[] = R"({"D":{"items":[{"id":10,"account":1234,"parted":1,"config_version":3,"domain":4,
    "cluster_id":6,
    "sections":[{"id":1,"name":"Hall","schedule_id":2,"tracert":3,"flags":4,"detector":5,"arm":6,"physic":7,"form":8,
                 "delay":9,"uid_type":10,
                 "zones":[{"id":1,"name":"Door","detector":11,"physic":12,"form":13,"flags":14,"delay":15,
                           "schedule_id":16,"tracert":17,"uid_type":18,"arm":19},{"id":2}]},
                {"id":2}],
    "users":[{"user_index":5,"name":"Guard","comment":"nights","phone":"112","sections":[1,2]}]}]}})";

class BindingRecords : public ::testing::Test
{
protected:
    Directory directory;
    Session session;
};

TEST_F(BindingRecords, AbsentIsNotEmpty)
{
    ASSERT_EQ(session.addUsers(R"({"D":{"items":[{"id":7,"name":"Anna","login":"","active":0}]}})"), Code::Done);
    const auto user = session.getUser(7);
    ASSERT_TRUE(user);
    EXPECT_EQ(user->id(), 7u);
    EXPECT_EQ(user->name(), u"Anna");
    EXPECT_EQ(user->login(), u"");
    EXPECT_EQ(user->contacts(), std::nullopt);
    EXPECT_EQ(user->isActive(), false);
    EXPECT_EQ(user->roles(), std::nullopt);
    EXPECT_EQ(user->phone(), std::nullopt);
    EXPECT_FALSE(user->domain());
}

TEST_F(BindingRecords, FlagsAreNumbersAndTrueIsFalse)
{
    ASSERT_EQ(session.addUsers(R"({"D":{"items":[{"id":7,"active":true},{"id":8,"active":1}]}})"), Code::Done);
    const auto sentTrue = session.getUser(7);
    const auto sentOne = session.getUser(8);
    EXPECT_EQ(sentTrue->isActive(), false);
    EXPECT_EQ(sentOne->isActive(), true);
}

TEST_F(BindingRecords, ViewsLookAtTheRecordItself)
{
    ASSERT_EQ(session.addUsers(R"({"D":{"items":[{"id":7,"name":"Anna"}]}})"), Code::Done);
    const auto user = session.getUser(7);
    const FlatUser &flat = user->record();
    EXPECT_EQ(static_cast<const void *>(user->name()->data()), static_cast<const void *>(flat.name));
}

TEST_F(BindingRecords, UsersReachTheirDomainAndItsLocale)
{
    require(session.addLocales(R"({"D":{"items":[{"id":1,"iso":"en","description":"English"}]}})"));
    require(session.addDomains(R"({"D":{"items":[{"id":4,"name":"North","org_id":5,"locale_id":1}]}})"));
    require(session.addUsers(
        R"({"D":{"items":[{"id":7,"name":"Anna","login":"anna","contacts":"room 3","active":1,"domain":4,
        "org":5,"roles":6,"phone":9007199254740992}]}})"));
    const auto user = session.getUser(7);
    EXPECT_EQ(user->login(), u"anna");
    EXPECT_EQ(user->contacts(), u"room 3");
    EXPECT_EQ(user->isActive(), true);
    EXPECT_EQ(user->domainId(), 4u);
    EXPECT_EQ(user->orgId(), 5u);
    EXPECT_EQ(user->roles(), 6u);
    EXPECT_EQ(user->phone(), uint64_t{9007199254740992});
    ASSERT_TRUE(user->domain());
    EXPECT_EQ(user->domain()->id(), 4u);
    EXPECT_EQ(user->domain()->name(), u"North");
    EXPECT_EQ(user->domain()->orgId(), 5u);
    EXPECT_EQ(user->domain()->locale()->id(), 1u);
    EXPECT_EQ(user->domain()->locale()->iso(), u"en");
    EXPECT_EQ(user->domain()->locale()->description(), u"English");
}

TEST_F(BindingRecords, OrganizationsReachTheirContactAndLocale)
{
    require(session.addLocales(R"({"D":{"items":[{"id":1,"iso":"en"}]}})"));
    require(session.addOrganizations(R"({"D":{"items":[{"org_id":5,"inn":"a","off_name":"b","short_name":"c","kpp":"d",
        "ogrn":"e","address_text":"f","locale_id":1,
        "contact":{"id":9,"name":"g","phone":"h","email":"i","postal":"j"}}]}})"));
    const auto organization = session.getOrganization(5);
    EXPECT_EQ(organization->inn(), u"a");
    EXPECT_EQ(organization->officialName(), u"b");
    EXPECT_EQ(organization->shortName(), u"c");
    EXPECT_EQ(organization->kpp(), u"d");
    EXPECT_EQ(organization->ogrn(), u"e");
    EXPECT_EQ(organization->address(), u"f");
    EXPECT_EQ(organization->locale()->iso(), u"en");
    EXPECT_EQ(organization->contact()->id(), 9u);
    EXPECT_EQ(organization->contact()->name(), u"g");
    EXPECT_EQ(organization->contact()->phone(), u"h");
    EXPECT_EQ(organization->contact()->email(), u"i");
    EXPECT_EQ(organization->contact()->postal(), u"j");
}

TEST_F(BindingRecords, ContractsReachTheirContractorAndOperator)
{
    require(session.addUsers(R"({"D":{"items":[{"id":7,"name":"Anna"}]}})"));
    require(session.addContractors(R"({"D":{"items":[{"id":3,"inn":"a","org_id":1,"type":2,"off_name":"b","name":"c",
        "extra":"d"}]}})"));
    require(
        session.addContracts(R"({"D":{"items":[{"id":2,"number":"a","c_name":"b","status":1,"date":4,"description":"c",
        "extra":"d","contractor_id":3,"operator_id":7}]}})"));
    const auto contract = session.getContract(2);
    EXPECT_EQ(contract->number(), u"a");
    EXPECT_EQ(contract->name(), u"b");
    EXPECT_EQ(contract->status(), 1u);
    EXPECT_EQ(contract->date(), 4u);
    EXPECT_EQ(contract->description(), u"c");
    EXPECT_EQ(contract->extra(), u"d");
    EXPECT_EQ(contract->user()->name(), u"Anna");
    EXPECT_EQ(contract->contractor()->inn(), u"a");
    EXPECT_EQ(contract->contractor()->orgId(), 1u);
    EXPECT_EQ(contract->contractor()->type(), 2u);
    EXPECT_EQ(contract->contractor()->officialName(), u"b");
    EXPECT_EQ(contract->contractor()->name(), u"c");
    EXPECT_EQ(contract->contractor()->extra(), u"d");
}

TEST_F(BindingRecords, DevicesReachTheirSectionsZonesAndUsers)
{
    require(session.addDomains(R"({"D":{"items":[{"id":4,"name":"North"}]}})"));
    ASSERT_EQ(session.addDevices(equipment), Code::Done);
    const auto device = session.getDevice(10);
    EXPECT_EQ(device->account(), 1234u);
    EXPECT_EQ(device->domain()->name(), u"North");
    EXPECT_EQ(device->domainId(), 4u);
    EXPECT_EQ(device->configVersion(), 3u);
    EXPECT_EQ(device->isParted(), true);
    EXPECT_EQ(device->clusterId(), 6u);

    ASSERT_EQ(device->sections().size(), 2u);
    for (const SectionView section : device->sections())
        EXPECT_EQ(section.zones().size(), section.id() == 1 ? 2u : 0u);

    ASSERT_EQ(device->users().size(), 1u);
    const DeviceUserView user = device->users()[0];
    EXPECT_EQ(user.id(), 5u);
    EXPECT_EQ(user.name(), u"Guard");
    EXPECT_EQ(user.comment(), u"nights");
    EXPECT_EQ(user.phone(), u"112");
    const std::vector<uint32_t> sections(user.sections().begin(), user.sections().end());
    EXPECT_EQ(sections, (std::vector<uint32_t>{1, 2}));
}

TEST_F(BindingRecords, SectionsAndZonesShowTheirFields)
{
    ASSERT_EQ(session.addDevices(equipment), Code::Done);
    const auto section = session.getSection(1, 10);
    EXPECT_EQ(section->name(), u"Hall");
    EXPECT_EQ(section->scheduleId(), 2u);
    EXPECT_EQ(section->tracert(), 3u);
    EXPECT_EQ(section->flags(), 4u);
    EXPECT_EQ(section->detector(), 5u);
    EXPECT_EQ(section->arm(), 6u);
    EXPECT_EQ(section->physic(), 7u);
    EXPECT_EQ(section->form(), 8u);
    EXPECT_EQ(section->delay(), 9u);
    EXPECT_EQ(section->uidType(), 10u);

    const auto zone = session.getZone(1, 10, 1);
    EXPECT_EQ(zone->name(), u"Door");
    EXPECT_EQ(zone->detector(), 11u);
    EXPECT_EQ(zone->physic(), 12u);
    EXPECT_EQ(zone->form(), 13u);
    EXPECT_EQ(zone->flags(), 14u);
    EXPECT_EQ(zone->delay(), 15u);
    EXPECT_EQ(zone->scheduleId(), 16u);
    EXPECT_EQ(zone->tracert(), 17u);
    EXPECT_EQ(zone->uidType(), 18u);
    EXPECT_EQ(zone->arm(), 19u);
}

TEST_F(BindingRecords, SitesShowTheirFieldsAndReachWhatTheyName)
{
    require(session.addDomains(R"({"D":{"items":[{"id":4,"name":"North"}]}})"));
    require(session.addContracts(R"({"D":{"items":[{"id":2,"number":"a"}]}})"));
    require(session.addSites(R"({"D":{"items":[{"id":1,"name":"Mill","comment":"a","extra":"b","address_text":"c",
        "is_crossing":1,"delegated":0,"site_plan":1,"domain":4,"type":5,"category":6,"arm_mode":7,"contract_id":2,
        "contract_status":-8,"location":{"lat":52.5,"lon":-13.25}}]}})"));
    const auto site = session.getSite(1);
    EXPECT_EQ(site->name(), u"Mill");
    EXPECT_EQ(site->comment(), u"a");
    EXPECT_EQ(site->extra(), u"b");
    EXPECT_EQ(site->address(), u"c");
    EXPECT_EQ(site->isCrossing(), true);
    EXPECT_EQ(site->isDelegated(), false);
    EXPECT_EQ(site->isSitePlanExists(), true);
    EXPECT_EQ(site->domain()->name(), u"North");
    EXPECT_EQ(site->domainId(), 4u);
    EXPECT_EQ(site->contract()->number(), u"a");
    EXPECT_EQ(site->contractId(), 2);
    EXPECT_EQ(site->contractStatus(), -8);
    EXPECT_EQ(site->type(), 5u);
    EXPECT_EQ(site->category(), 6u);
    EXPECT_EQ(site->armMode(), 7u);
    EXPECT_EQ(site->location()->id(), 1u);
    EXPECT_EQ(site->location()->latitude(), 52.5);
    EXPECT_EQ(site->location()->longitude(), -13.25);
    EXPECT_TRUE(site->devices().empty()); // a read returns none
    EXPECT_EQ(site->devices().begin(), site->devices().end());
}

TEST_F(BindingRecords, EventsShowTheirFieldsAndTheNamesOfTheirEquipment)
{
    require(session.addDomains(R"({"D":{"items":[{"id":4,"name":"North"}]}})"));
    require(session.addDevices(equipment));
    const auto event = session.addEvent(R"({"D":{"id":1,"time":2,"device":10,"section":1,"zone":1,"active":3,"class":4,
        "detector":5,"reason":6,"localtime":7,"channel":-8,"data":"a","review_id":9,"review_state":10,"operator_id":11,
        "is_closed":1,"affect":0,"jdata":"b"}})");
    ASSERT_TRUE(event);
    EXPECT_EQ(event->id(), 1u);
    EXPECT_EQ(event->time(), 2u);
    EXPECT_EQ(event->deviceId(), 10);
    EXPECT_EQ(event->sectionId(), 1u);
    EXPECT_EQ(event->zoneId(), 1u);
    EXPECT_EQ(event->active(), 3);
    EXPECT_EQ(event->eventClass(), 4);
    EXPECT_EQ(event->detector(), 5);
    EXPECT_EQ(event->reason(), 6);
    EXPECT_EQ(event->localTime(), 7u);
    EXPECT_EQ(event->channel(), -8);
    EXPECT_EQ(event->data(), u"a");
    EXPECT_EQ(event->reviewId(), 9u);
    EXPECT_EQ(event->reviewState(), 10);
    EXPECT_EQ(event->userId(), 11u);
    EXPECT_EQ(event->isClosed(), true);
    EXPECT_EQ(event->affect(), false);
    EXPECT_EQ(event->jData(), u"b");
    EXPECT_EQ(event->account(), 1234u);
    EXPECT_EQ(event->sectionName(), u"Hall");
    EXPECT_EQ(event->zoneName(), u"Door");
    EXPECT_EQ(event->domainName(), std::nullopt);
}

// ---- Owners and answers ----

TEST_F(BindingRecords, ArraysAreRangesOfViews)
{
    require(session.addUsers(R"({"D":{"items":[{"id":7},{"id":8},{"id":9}]}})"));
    const auto users = session.getUsers();
    ASSERT_EQ(users->size(), 3u);
    EXPECT_FALSE(users->empty());
    EXPECT_EQ(users->end() - users->begin(), 3);
    EXPECT_EQ(std::distance(users->begin(), users->end()), 3);
    uint32_t sum = 0;
    for (const UserView user : *users)
        sum += user.id();
    EXPECT_EQ(sum, 24u);
    auto second = users->begin();
    EXPECT_EQ((*second++).id(), (*users)[0].id());
    EXPECT_EQ(second->id(), (*users)[1].id());
}

TEST_F(BindingRecords, AnArrayMayBeWalkedOverAsItComes)
{
    require(session.addUsers(R"({"D":{"items":[{"id":7},{"id":8}]}})"));
    uint32_t sum = 0;
    for (const UserView user : session.getUsers().value())
        sum += user.id();
    EXPECT_EQ(sum, 15u);
}

TEST_F(BindingRecords, OwnersMoveAndLeaveNothingBehind)
{
    require(session.addUsers(R"({"D":{"items":[{"id":7},{"id":8}]}})"));
    Record<UserView> one = session.getUser(7).value();
    Record<UserView> other = std::move(one);
    EXPECT_FALSE(one); // NOLINT(bugprone-use-after-move): this is what is tested
    ASSERT_TRUE(other);
    EXPECT_EQ(other->id(), 7u);
    other = session.getUser(8).value(); // frees the first
    EXPECT_EQ((*other).id(), 8u);

    Array<UserView> array = session.getUsers().value();
    Array<UserView> otherArray = std::move(array);
    EXPECT_EQ(array.size(), 0u); // NOLINT(bugprone-use-after-move)
    EXPECT_TRUE(array.begin() == array.end());
    EXPECT_EQ(otherArray.size(), 2u);
}

TEST_F(BindingRecords, ARecordCanBePassedToC)
{
    require(session.addUsers(R"({"D":{"items":[{"id":7}]}})"));
    Record<UserView> record = session.getUser(7).value();
    FlatUser *flat = record.release();
    EXPECT_FALSE(record);
    const Record<UserView> again(flat); // and taken over
    EXPECT_EQ(again->id(), 7u);
}

TEST(BindingOwners, OutliveTheSession)
{
    const Directory directory;
    Record<DeviceView> device;
    Array<UserView> users;
    OwnedText address;
    {
        Session session;
        require(session.addDevices(equipment));
        require(session.addUsers(R"({"D":{"items":[{"id":7,"name":"Anna"}]}})"));
        require(session.setServerIp("10.0.0.1"));
        device = session.getDevice(10).value();
        users = session.getUsers().value();
        address = session.getServerIp().value();
    }
    EXPECT_EQ(device->sections().size(), 2u);
    EXPECT_EQ(users[0].name(), u"Anna");
    EXPECT_EQ(address.view(), u"10.0.0.1");
}

TEST_F(BindingRecords, AnAnswerWithoutAValueThrowsItsCode)
{
    const auto user = session.getUser(7);
    EXPECT_FALSE(user);
    EXPECT_EQ(user.code(), Code::NotFound);
    try {
        (void)user->id();
        FAIL() << "read a record that does not exist";
    } catch (const Error &error) {
        EXPECT_EQ(error.code(), Code::NotFound);
    }
    EXPECT_THROW((void)user.value(), Error);
    EXPECT_THROW((void)*user, Error);
    EXPECT_THROW((void)session.getUsers().value(), Error);
    EXPECT_THROW((void)*session.getUsers(), Error);
}

TEST_F(BindingRecords, OnlyNothingFoundIsEmpty)
{
    EXPECT_TRUE(session.getUsers().orEmpty().empty());
    EXPECT_FALSE(session.getUser(7).orEmpty());
    EXPECT_THROW((void)session.getUsersWithParams("no key", "7").orEmpty(), Error);
    require(session.addUsers(R"({"D":{"items":[{"id":7}]}})"));
    EXPECT_EQ(session.getUsers().orEmpty().size(), 1u);
}

} // namespace
