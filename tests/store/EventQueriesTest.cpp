#include "Store.h"

#include <algorithm>

namespace {

using namespace brimlet::test;

// The ids of a list in rising order.
std::vector<uint32_t> ids(const List<FlatEvent> &events)
{
    std::vector<uint32_t> all;
    for (const FlatEvent &event : events)
        all.push_back(event.id);
    std::sort(all.begin(), all.end());
    return all;
}

using Ids = std::vector<uint32_t>;

class EventQueries : public StoreTest
{
protected:
    void addDevice10() { ASSERT_EQ(send(addDevice, R"({"D":{"id":10,"account":1234}})"), 0u); }

    // The devices of events may not exist, so accept any result of a successful write.
    void addEventList(const std::string &items)
    {
        const uint32_t code = listAdded(R"({"D":{"items":[)" + items + "]}}").code;
        ASSERT_TRUE(code == 0u || code == 8u) << code;
    }

    // The one event of the store, as a list shows it.
    void expectNames(const std::optional<std::string> &section, const std::optional<std::string> &zone,
                     const std::optional<std::string> &domain)
    {
        const auto timed = list(getEvents, 0, UINT32_MAX);
        const auto marked = list(getAffectEvents);
        for (const List<FlatEvent> *events : {&timed, &marked}) {
            ASSERT_EQ(events->code, 0u);
            ASSERT_EQ(events->size(), 1u);
            const FlatEvent &event = (*events)[0];
            EXPECT_EQ(utf8(event.sectionName), section);
            EXPECT_EQ(utf8(event.zoneName), zone);
            EXPECT_EQ(utf8(event.domainName), domain);
        }
    }

    // An event of device 10, section 1, zone 2 and operator 70 that every list shows.
    void addNamedEvent()
    {
        addEventList(R"({"id":5,"time":1,"device":10,"section":1,"zone":2,"operator_id":70,"affect":1})");
    }
};

// ---- By time ----

TEST_F(EventQueries, ARangeIncludesBothEnds)
{
    addDevice10();
    addEventList(R"({"id":1,"device":10,"time":99},{"id":2,"device":10,"time":100},{"id":3,"device":10,"time":150},)"
                 R"({"id":4,"device":10,"time":200},{"id":5,"device":10,"time":201})");
    const auto events = list(getEvents, 100, 200);
    EXPECT_EQ(events.code, 0u);
    EXPECT_EQ(ids(events), (Ids{2, 3, 4}));
}

TEST_F(EventQueries, ARangeOfOneTimeFindsExactlyThatTime)
{
    addDevice10();
    addEventList(R"({"id":1,"device":10,"time":99},{"id":2,"device":10,"time":100},{"id":3,"device":10,"time":100},)"
                 R"({"id":4,"device":10,"time":101})");
    EXPECT_EQ(ids(list(getEvents, 100, 100)), (Ids{2, 3}));
}

TEST_F(EventQueries, ARangeWhoseEndsAreSwappedIsEmpty)
{
    addDevice10();
    addEventList(R"({"id":1,"device":10,"time":100},{"id":2,"device":10,"time":150},{"id":3,"device":10,"time":200})");
    FlatEvent *out = nullptr;
    uint32_t count = 77;
    EXPECT_EQ(getEvents(&out, &count, 200, 100), 8u);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(count, 77u);
}

TEST_F(EventQueries, AnEventWithoutATimeIsInNoRange)
{
    addDevice10();
    addEventList(R"({"id":1,"device":10},{"id":2,"device":10,"time":0})");
    EXPECT_EQ(ids(list(getEvents, 0, UINT32_MAX)), (Ids{2}));
    EXPECT_EQ(ids(list(getEvents, 0, 0)), (Ids{2}));
}

TEST_F(EventQueries, TimesAreComparedAsUnsignedNumbers)
{
    addDevice10();
    addEventList(R"({"id":1,"device":10,"time":9},{"id":2,"device":10,"time":10},)"
                 R"({"id":3,"device":10,"time":2147483648},{"id":4,"device":10,"time":4294967295})");
    EXPECT_EQ(ids(list(getEvents, 10, UINT32_MAX)), (Ids{2, 3, 4}));
    EXPECT_EQ(ids(list(getEvents, 3000000000u, UINT32_MAX)), (Ids{4}));
    EXPECT_EQ(ids(list(getEvents, 0, 2147483647)), (Ids{1, 2}));
}

TEST_F(EventQueries, TheLocalTimeIsNotCompared)
{
    addDevice10();
    addEventList(R"({"id":1,"device":10,"time":100,"localtime":500},{"id":2,"device":10,"localtime":100})");
    EXPECT_EQ(ids(list(getEvents, 100, 100)), (Ids{1}));
    EXPECT_EQ(list(getEvents, 500, 500).code, 8u);
}

TEST_F(EventQueries, ARangeShowsMarkedAndUnmarkedEvents)
{
    addDevice10();
    addEventList(R"({"id":1,"device":10,"time":1,"affect":1},{"id":2,"device":10,"time":1,"affect":0},)"
                 R"({"id":3,"device":10,"time":1})");
    EXPECT_EQ(ids(list(getEvents, 1, 1)), (Ids{1, 2, 3}));
}

// ---- By flag ----

TEST_F(EventQueries, OnlyMarkedEventsAreListedAsSuch)
{
    addDevice10();
    addEventList(R"({"id":1,"device":10,"affect":1},{"id":2,"device":10,"affect":0},{"id":3,"device":10},)"
                 R"({"id":4,"device":10,"affect":true},{"id":5,"device":10,"affect":7,"time":1})");
    const auto events = list(getAffectEvents);
    EXPECT_EQ(events.code, 0u);
    EXPECT_EQ(ids(events), (Ids{1, 5}));
    for (const FlatEvent &event : events)
        EXPECT_EQ(value(event.affect), 1);
}

TEST_F(EventQueries, AMarkOtherThanOneIsNone)
{
    addDevice10();
    addEventList(R"({"id":1,"device":10,"affect":1})");
    foreign("UPDATE Events SET EventsAffect = 2");
    EXPECT_EQ(list(getAffectEvents).code, 8u);
}

TEST_F(EventQueries, WithoutMarkedEventsTheResultIs8)
{
    addDevice10();
    addEventList(R"({"id":1,"device":10,"affect":0},{"id":2,"device":10})");
    FlatEvent *out = nullptr;
    uint32_t count = 77;
    EXPECT_EQ(getAffectEvents(&out, &count), 8u);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(count, 77u);
}

// ---- Both ----

TEST_F(EventQueries, AnEmptyTableReturns8)
{
    DebugLines lines;
    FlatEvent *out = nullptr;
    uint32_t count = 77;
    EXPECT_EQ(getEvents(&out, &count, 0, UINT32_MAX), 8u);
    EXPECT_EQ(getAffectEvents(&out, &count), 8u);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(count, 77u);
    EXPECT_EQ(lines.all(), std::vector<std::string>{});
}

TEST_F(EventQueries, AFilledOutParameterIsRefusedBeforeTheStore)
{
    foreign("DROP TABLE Events");
    DebugLines lines;
    FlatEvent occupied = {};
    FlatEvent *out = &occupied;
    uint32_t count = 77;
    EXPECT_EQ(getEvents(&out, &count, 0, UINT32_MAX), 10u);
    EXPECT_EQ(getAffectEvents(&out, &count), 10u);
    EXPECT_EQ(out, &occupied);
    EXPECT_EQ(count, 77u);
    EXPECT_EQ(lines.all(), std::vector<std::string>{});
}

TEST_F(EventQueries, AnEventOfAnUnknownDeviceIsListedOnceTheDeviceIsThere)
{
    addEventList(R"({"id":1,"device":10,"time":5,"affect":1},{"id":2,"time":5,"affect":1})");
    EXPECT_EQ(list(getEvents, 5, 5).code, 8u);
    EXPECT_EQ(list(getAffectEvents).code, 8u);
    const std::vector<Row> before = file.rows("SELECT * FROM Events ORDER BY EventsId");
    addDevice10();
    EXPECT_EQ(ids(list(getEvents, 5, 5)), (Ids{1}));
    EXPECT_EQ(ids(list(getAffectEvents)), (Ids{1}));
    EXPECT_EQ(file.rows("SELECT * FROM Events ORDER BY EventsId"), before);
}

TEST_F(EventQueries, AnEventOfADeletedDeviceIsListedNoMore)
{
    addDevice10();
    addEventList(R"({"id":1,"device":10,"time":5,"affect":1})");
    ASSERT_EQ(list(getEvents, 5, 5).size(), 1u);
    ASSERT_EQ(send(deleteDevice, R"({"D":{"id":10}})"), 0u);
    EXPECT_EQ(list(getEvents, 5, 5).code, 8u);
    EXPECT_EQ(list(getAffectEvents).code, 8u);
    EXPECT_EQ(file.number("SELECT count(*) FROM Events"), 1);
}

TEST_F(EventQueries, ANegativeDeviceIsNotTheUnsignedOne)
{
    ASSERT_EQ(send(addDevice, R"({"D":{"id":-5}})"), 0u);
    ASSERT_EQ(file.number("SELECT DevicesId FROM Devices"), 4294967291);
    addEventList(R"({"id":1,"device":-5,"time":5,"affect":1})");
    EXPECT_EQ(list(getEvents, 5, 5).code, 8u);
    EXPECT_EQ(list(getAffectEvents).code, 8u);
}

TEST_F(EventQueries, EveryFieldIsListed)
{
    ASSERT_EQ(send(addDevice, R"({"D":{"id":10,"account":1234,)"
                              R"("sections":[{"id":1,"name":"hall","zones":[{"id":2,"name":"door"}]}]}})"),
              0u);
    ASSERT_EQ(send(addDomains, R"({"D":{"items":[{"id":30,"name":"night"}]}})"), 0u);
    ASSERT_EQ(send(addUsers, R"({"D":{"items":[{"id":70,"domain":30}]}})"), 0u);
    addEventList(R"({"id":5,"time":1000,"device":10,"section":1,"zone":2,"active":200,"class":3,"detector":4,)"
                 R"("reason":6,"localtime":1100,"channel":-8,"data":"d","review_id":9,"review_state":7,)"
                 R"("operator_id":70,"is_closed":1,"affect":1,"jdata":"j"})");
    const auto timed = list(getEvents, 1000, 1000);
    const auto marked = list(getAffectEvents);
    for (const List<FlatEvent> *events : {&timed, &marked}) {
        ASSERT_EQ(events->code, 0u);
        ASSERT_EQ(events->size(), 1u);
        const FlatEvent &event = (*events)[0];
        EXPECT_EQ(event.id, 5u);
        EXPECT_EQ(value(event.time), 1000u);
        EXPECT_EQ(value(event.deviceId), 10);
        EXPECT_EQ(value(event.sectionId), 1u);
        EXPECT_EQ(value(event.zoneId), 2u);
        EXPECT_EQ(value(event.active), 200);
        EXPECT_EQ(value(event.eventClass), 3);
        EXPECT_EQ(value(event.detector), 4);
        EXPECT_EQ(value(event.reason), 6);
        EXPECT_EQ(value(event.localTime), 1100u);
        EXPECT_EQ(value(event.channel), -8);
        EXPECT_EQ(utf8(event.data), "d");
        EXPECT_EQ(value(event.reviewId), 9u);
        EXPECT_EQ(value(event.reviewState), 7);
        EXPECT_EQ(value(event.userId), 70u);
        EXPECT_EQ(value(event.isClosed), 1);
        EXPECT_EQ(value(event.affect), 1);
        EXPECT_EQ(utf8(event.jData), "j");
        EXPECT_EQ(value(event.account), 1234u);
        EXPECT_EQ(utf8(event.sectionName), "hall");
        EXPECT_EQ(utf8(event.zoneName), "door");
        EXPECT_EQ(utf8(event.domainName), "night");
    }
}

TEST_F(EventQueries, AbsentFieldsAreListedAsNull)
{
    ASSERT_EQ(send(addDevice, R"({"D":{"id":10}})"), 0u);
    addEventList(R"({"id":5,"device":10,"time":1})");
    const auto events = list(getEvents, 1, 1);
    ASSERT_EQ(events.code, 0u);
    ASSERT_EQ(events.size(), 1u);
    const FlatEvent &event = events[0];
    EXPECT_EQ(event.sectionId, nullptr);
    EXPECT_EQ(event.zoneId, nullptr);
    EXPECT_EQ(event.active, nullptr);
    EXPECT_EQ(event.eventClass, nullptr);
    EXPECT_EQ(event.detector, nullptr);
    EXPECT_EQ(event.reason, nullptr);
    EXPECT_EQ(event.localTime, nullptr);
    EXPECT_EQ(event.channel, nullptr);
    EXPECT_EQ(event.data, nullptr);
    EXPECT_EQ(event.reviewId, nullptr);
    EXPECT_EQ(event.reviewState, nullptr);
    EXPECT_EQ(event.userId, nullptr);
    EXPECT_EQ(event.isClosed, nullptr);
    EXPECT_EQ(event.affect, nullptr);
    EXPECT_EQ(event.jData, nullptr);
    EXPECT_EQ(event.account, nullptr);
    EXPECT_EQ(event.sectionName, nullptr);
    EXPECT_EQ(event.zoneName, nullptr);
    EXPECT_EQ(event.domainName, nullptr);
}

TEST_F(EventQueries, StoredNumbersAreReadByTheirKind)
{
    addDevice10();
    foreign("INSERT INTO Events (EventsId, EventsTime, EventsDeviceId, EventsActive, EventsClass, EventsDetector, "
            "EventsReason, EventsReviewState, EventsChannel, EventsIsClosed) "
            "VALUES (5, 1, 10, 300, 256, -1, 511, 1, -9, 2)");
    const auto events = list(getEvents, 1, 1);
    ASSERT_EQ(events.size(), 1u);
    EXPECT_EQ(value(events[0].active), 44);
    EXPECT_EQ(value(events[0].eventClass), 0);
    EXPECT_EQ(value(events[0].detector), 255);
    EXPECT_EQ(value(events[0].reason), 255);
    EXPECT_EQ(value(events[0].reviewState), 1);
    EXPECT_EQ(value(events[0].channel), -9);
    EXPECT_EQ(value(events[0].isClosed), 1);
}

TEST_F(EventQueries, AFalseFlagIsListedAsZero)
{
    addDevice10();
    addEventList(R"({"id":5,"device":10,"time":1,"affect":0,"is_closed":0,"active":0})");
    const auto events = list(getEvents, 1, 1);
    ASSERT_EQ(events.size(), 1u);
    EXPECT_EQ(value(events[0].affect), 0);
    EXPECT_EQ(value(events[0].isClosed), 0);
    EXPECT_EQ(value(events[0].active), 0);
}

TEST_F(EventQueries, AColumnThatTheReaderDoesNotKnowDoesNoHarm)
{
    addDevice10();
    foreign("ALTER TABLE Events ADD COLUMN Later");
    addEventList(R"({"id":5,"device":10,"time":1,"affect":1})");
    EXPECT_EQ(ids(list(getEvents, 1, 1)), (Ids{5}));
    EXPECT_EQ(ids(list(getAffectEvents)), (Ids{5}));
}

// ---- Names ----

TEST_F(EventQueries, AnUnknownSectionHasNoName)
{
    addDevice10();
    addNamedEvent();
    expectNames(std::nullopt, std::nullopt, std::nullopt);
    const auto events = list(getEvents, 1, 1);
    ASSERT_EQ(events.size(), 1u);
    EXPECT_EQ(value(events[0].sectionId), 1u);
    EXPECT_EQ(value(events[0].zoneId), 2u);
    EXPECT_EQ(value(events[0].userId), 70u);
    EXPECT_EQ(value(events[0].account), 1234u);
}

TEST_F(EventQueries, NamesOfAnotherDeviceAreNotTaken)
{
    ASSERT_EQ(send(addDevices, R"({"D":{"items":[{"id":10},)"
                               R"({"id":11,"sections":[{"id":1,"name":"hall","zones":[{"id":2,"name":"door"}]}]}]}})"),
              0u);
    addNamedEvent();
    expectNames(std::nullopt, std::nullopt, std::nullopt);
}

TEST_F(EventQueries, ASectionIsFoundAmongThoseOfItsDevice)
{
    ASSERT_EQ(send(addDevices, R"({"D":{"items":[)"
                               R"({"id":10,"sections":[{"id":1,"name":"hall"},{"id":2,"name":"attic"}]},)"
                               R"({"id":11,"sections":[{"id":1,"name":"cellar"}]}]}})"),
              0u);
    addNamedEvent();
    expectNames("hall", std::nullopt, std::nullopt);
}

TEST_F(EventQueries, AZoneOfAnotherSectionHasNoName)
{
    ASSERT_EQ(send(addDevice, R"({"D":{"id":10,"sections":[{"id":1,"name":"hall","zones":[{"id":3,"name":"lamp"}]},)"
                              R"({"id":9,"zones":[{"id":2,"name":"door"}]}]}})"),
              0u);
    addNamedEvent();
    expectNames("hall", std::nullopt, std::nullopt);
}

TEST_F(EventQueries, AZoneIsNamedWithoutItsSection)
{
    ASSERT_EQ(
        send(addDevice, R"({"D":{"id":10,"sections":[{"id":1,"name":"hall","zones":[{"id":2,"name":"door"}]}]}})"), 0u);
    foreign("DELETE FROM Sections");
    addNamedEvent();
    expectNames(std::nullopt, "door", std::nullopt);
}

TEST_F(EventQueries, AnEmptyNameIsAName)
{
    ASSERT_EQ(send(addDevice, R"({"D":{"id":10,"sections":[{"id":1,"name":"","zones":[{"id":2,"name":""}]}]}})"), 0u);
    ASSERT_EQ(send(addDomains, R"({"D":{"items":[{"id":30,"name":""}]}})"), 0u);
    ASSERT_EQ(send(addUsers, R"({"D":{"items":[{"id":70,"domain":30}]}})"), 0u);
    addNamedEvent();
    expectNames("", "", "");
}

TEST_F(EventQueries, TheDomainIsThatOfTheOperatorAndNotOfTheDevice)
{
    ASSERT_EQ(send(addDevice, R"({"D":{"id":10,"domain":31}})"), 0u);
    ASSERT_EQ(send(addDomains, R"({"D":{"items":[{"id":30,"name":"night"},{"id":31,"name":"day"}]}})"), 0u);
    addNamedEvent();
    expectNames(std::nullopt, std::nullopt, std::nullopt);
    ASSERT_EQ(send(addUsers, R"({"D":{"items":[{"id":70,"domain":30}]}})"), 0u);
    expectNames(std::nullopt, std::nullopt, "night");
}

TEST_F(EventQueries, AnOperatorWithoutADomainReturnsNoName)
{
    addDevice10();
    ASSERT_EQ(send(addDomains, R"({"D":{"items":[{"id":30,"name":"night"},{"id":0,"name":"zero"}]}})"), 0u);
    ASSERT_EQ(send(addUsers, R"({"D":{"items":[{"id":70}]}})"), 0u);
    addNamedEvent();
    expectNames(std::nullopt, std::nullopt, std::nullopt);
    ASSERT_EQ(send(addUsers, R"({"D":{"items":[{"id":70,"domain":99}]}})"), 0u);
    expectNames(std::nullopt, std::nullopt, std::nullopt);
}

TEST_F(EventQueries, AnEventWithoutAnOperatorHasNoDomain)
{
    addDevice10();
    ASSERT_EQ(send(addDomains, R"({"D":{"items":[{"id":30,"name":"night"}]}})"), 0u);
    ASSERT_EQ(send(addUsers, R"({"D":{"items":[{"id":0,"domain":30}]}})"), 0u);
    addEventList(R"({"id":5,"time":1,"device":10,"affect":1})");
    expectNames(std::nullopt, std::nullopt, std::nullopt);
}

TEST_F(EventQueries, TheAccountIsThatOfTheDevice)
{
    ASSERT_EQ(
        send(addDevices, R"({"D":{"items":[{"id":10,"account":1234},{"id":11,"account":4294967295},{"id":12}]}})"), 0u);
    addEventList(R"({"id":1,"time":1,"device":10},{"id":2,"time":1,"device":11},{"id":3,"time":1,"device":12})");
    const auto events = list(getEvents, 1, 1);
    ASSERT_EQ(ids(events), (Ids{1, 2, 3}));
    EXPECT_EQ(value(events.withId(1)->account), 1234u);
    EXPECT_EQ(value(events.withId(2)->account), 4294967295u);
    EXPECT_EQ(events.withId(3)->account, nullptr);
}

// ---- Failures ----

// A table without which no event can be listed.
class EventQueriesTables : public EventQueries, public ::testing::WithParamInterface<const char *>
{
};

TEST_P(EventQueriesTables, WithoutATableOfTheJoinTheResultIs7)
{
    addDevice10();
    addEventList(R"({"id":1,"device":10,"time":1,"affect":1})");
    foreign(std::string("DROP TABLE ") + GetParam());
    FlatEvent *out = nullptr;
    uint32_t count = 77;
    DebugLines lines;
    EXPECT_EQ(getEvents(&out, &count, 1, 1), 7u);
    EXPECT_TRUE(isFailure(lines.all(), "get events error"));
    lines.clear();
    EXPECT_EQ(getAffectEvents(&out, &count), 7u);
    EXPECT_TRUE(isFailure(lines.all(), "get affect events error"));
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(count, 77u);
}

INSTANTIATE_TEST_SUITE_P(Join, EventQueriesTables,
                         ::testing::Values("Events", "Devices", "Sections", "Zones", "Users", "Domains"),
                         [](const auto &table) { return std::string(table.param); });

TEST_F(EventQueries, AFailedReadLeavesNoLockBehind)
{
    addDevice10();
    addEventList(R"({"id":1,"device":10,"time":1,"affect":1})");
    foreign("ALTER TABLE Events RENAME COLUMN EventsJData TO Gone;" // and in its place one that overflows when read
            "ALTER TABLE Events ADD COLUMN EventsJData AS (abs(-9223372036854775807 - EventsId))");
    DebugLines lines;
    EXPECT_EQ(list(getEvents, 1, 1).code, 7u);
    EXPECT_TRUE(isFailure(lines.all(), "get events error"));
    file.execute("INSERT INTO Domains (DomainsId) VALUES (1)");
    lines.clear();
    EXPECT_EQ(list(getAffectEvents).code, 7u);
    EXPECT_TRUE(isFailure(lines.all(), "get affect events error"));
    file.execute("INSERT INTO Domains (DomainsId) VALUES (2)");
    EXPECT_EQ(list(getDomains).size(), 2u);
}

TEST_F(EventQueries, EventsAreListedAgainAfterAFailure)
{
    addDevice10();
    addEventList(R"({"id":1,"device":10,"time":1,"affect":1})");
    foreign("ALTER TABLE Events RENAME COLUMN EventsJData TO Gone");
    EXPECT_EQ(list(getEvents, 1, 1).code, 7u);
    EXPECT_EQ(list(getAffectEvents).code, 7u);
    foreign("ALTER TABLE Events RENAME COLUMN Gone TO EventsJData");
    EXPECT_EQ(ids(list(getEvents, 1, 1)), (Ids{1}));
    EXPECT_EQ(ids(list(getAffectEvents)), (Ids{1}));
}

} // namespace
