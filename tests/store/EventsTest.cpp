#include "Store.h"

namespace {

using namespace brimlet::test;
using Rows = std::vector<Row>;

const char *const fullEvent = R"({"id":5,"time":1000,"device":10,"section":1,"zone":2,"active":200,"class":3,)"
                              R"("detector":4,"reason":6,"localtime":1100,"channel":-8,"data":"d","review_id":9,)"
                              R"("review_state":7,"operator_id":70,"is_closed":1,"affect":1,"jdata":"{\"k\":[1]}"})";

const char *const allEvents = "SELECT EventsId,EventsTime,EventsDeviceId,EventsSectionId,EventsZoneId,EventsActive,"
                              "EventsClass,EventsDetector,EventsReason,EventsLocalTime,EventsChannel,EventsData,"
                              "EventsReviewId,EventsReviewState,EventsUserId,EventsIsClosed,EventsAffect,EventsJData "
                              "FROM Events ORDER BY EventsId";

// What fullEvent is stored as.
Row fullRow()
{
    return {"5",    "1000", "10", "1", "2", "200", "3", "4", "6",
            "1100", "-8",   "d",  "9", "7", "70",  "1", "1", R"({"k":[1]})"};
}

// An event of one more member.
std::string eventWith(const std::string &key, const std::string &value)
{
    return R"({"id":1,")" + key + "\":" + value + "}";
}

// A member of an event, and the column that it goes to.
struct Member
{
    const char *key;
    const char *column;
};

const std::vector<Member> unsignedMembers = {
    {"time", "EventsTime"},           {"section", "EventsSectionId"},  {"zone", "EventsZoneId"},
    {"localtime", "EventsLocalTime"}, {"review_id", "EventsReviewId"}, {"operator_id", "EventsUserId"},
};
const std::vector<Member> signedMembers = {{"device", "EventsDeviceId"}, {"channel", "EventsChannel"}};
const std::vector<Member> byteMembers = {
    {"active", "EventsActive"},
    {"class", "EventsClass"},
    {"detector", "EventsDetector"},
    {"reason", "EventsReason"},
    {"review_state", "EventsReviewState"},
};
const std::vector<Member> flagMembers = {{"is_closed", "EventsIsClosed"}, {"affect", "EventsAffect"}};
const std::vector<Member> textMembers = {{"data", "EventsData"}, {"jdata", "EventsJData"}};

class Events : public StoreTest
{
protected:
    // Device 10, account 1234, with section 1 and zone 2; operator 70 of domain 30.
    void addEquipment()
    {
        ASSERT_EQ(send(addDevices, R"({"D":{"items":[{"id":10,"account":1234,"domain":31,)"
                                   R"("sections":[{"id":1,"name":"hall","zones":[{"id":2,"name":"door"}]}]}]}})"),
                  0u);
        ASSERT_EQ(send(addDomains, R"({"D":{"items":[{"id":30,"name":"night"},{"id":31,"name":"other"}]}})"), 0u);
        ASSERT_EQ(send(addUsers, R"({"D":{"items":[{"id":70,"domain":30}]}})"), 0u);
    }

    int64_t stored() const { return file.number("SELECT count(*) FROM Events"); }

    int64_t indexes() const
    {
        return file.number("SELECT count(*) FROM sqlite_master WHERE type = 'index' AND name = 'EventsTimeIndex' "
                           "AND tbl_name = 'Events'");
    }

    // Adds one event both alone and in a batch, and expects each to be stored with these values of one column.
    void expectStored(const Member &member, const std::string &json, const std::string &expected)
    {
        SCOPED_TRACE(std::string(member.key) + " " + json);
        const std::string look = std::string("SELECT ") + member.column + ",typeof(" + member.column + ") FROM Events";
        foreign("DELETE FROM Events");
        EXPECT_EQ(update(addEvent, one(eventWith(member.key, json))).code, 0u);
        EXPECT_EQ(file.rows(look), (Rows{Row{expected, "integer"}}));
        foreign("DELETE FROM Events");
        EXPECT_EQ(listAdded(batch(eventWith(member.key, json))).code, 8u); // its device is not known
        EXPECT_EQ(file.rows(look), (Rows{Row{expected, "integer"}}));
    }

    void expectRefused(const Member &member, const std::string &json)
    {
        SCOPED_TRACE(std::string(member.key) + " " + json);
        const auto event = update(addEvent, one(eventWith(member.key, json)));
        EXPECT_EQ(event.code, 5u);
        EXPECT_EQ(event.record.get(), nullptr);
        EXPECT_EQ(listAdded(batch(R"({"id":2},)" + eventWith(member.key, json))).code, 5u);
        EXPECT_EQ(stored(), 0);
    }
};

void expectFull(const FlatEvent &event)
{
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
    EXPECT_EQ(utf8(event.jData), R"({"k":[1]})");
    EXPECT_EQ(value(event.account), 1234u);
    EXPECT_EQ(utf8(event.sectionName), "hall");
    EXPECT_EQ(utf8(event.zoneName), "door");
    EXPECT_EQ(utf8(event.domainName), "night");
}

// ---- What is stored ----

TEST_F(Events, AddOneStoresEveryField)
{
    EXPECT_EQ(update(addEvent, one(fullEvent)).code, 0u);
    EXPECT_EQ(file.rows(allEvents), Rows{fullRow()});
}

TEST_F(Events, AddManyStoresEveryField)
{
    addEquipment();
    EXPECT_EQ(listAdded(batch(fullEvent)).code, 0u);
    EXPECT_EQ(file.rows(allEvents), Rows{fullRow()});
}

TEST_F(Events, NumbersAndFlagsAreStoredAsIntegers)
{
    EXPECT_EQ(update(addEvent, one(fullEvent)).code, 0u);
    EXPECT_EQ(file.rows("SELECT typeof(EventsId),typeof(EventsTime),typeof(EventsDeviceId),typeof(EventsSectionId),"
                        "typeof(EventsZoneId),typeof(EventsActive),typeof(EventsClass),typeof(EventsDetector),"
                        "typeof(EventsReason),typeof(EventsLocalTime),typeof(EventsChannel),typeof(EventsReviewId),"
                        "typeof(EventsReviewState),typeof(EventsUserId),typeof(EventsIsClosed),typeof(EventsAffect) "
                        "FROM Events"),
              Rows{Row(16, "integer")});
    EXPECT_EQ(file.rows("SELECT typeof(EventsData),typeof(EventsJData) FROM Events"), (Rows{Row{"text", "text"}}));
}

TEST_F(Events, AFieldLeftOutIsStoredAsNull)
{
    Row bare(18);
    bare[0] = "5";
    EXPECT_EQ(update(addEvent, R"({"D":{"id":5}})").code, 0u);
    EXPECT_EQ(file.rows(allEvents), Rows{bare});
    foreign("DELETE FROM Events");
    EXPECT_EQ(listAdded(batch(R"({"id":5})")).code, 8u);
    EXPECT_EQ(file.rows(allEvents), Rows{bare});
}

TEST_F(Events, ABatchMayMixFullAndMinimalEvents)
{
    Row bare(18);
    bare[0] = "6";
    EXPECT_EQ(listAdded(batch(R"({"id":6},)" + std::string(fullEvent))).code, 8u);
    EXPECT_EQ(file.rows(allEvents), (Rows{fullRow(), bare}));
}

TEST_F(Events, TheIdIsTruncatedToItsLow32Bits)
{
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"7.9", "7"},         {"-0.5", "0"},
        {"-1", "4294967295"}, {"4294967295", "4294967295"},
        {"4294967296", "0"},  {"5000000000", "705032704"},
    };
    for (const auto &[json, expected] : cases) {
        SCOPED_TRACE(json);
        foreign("DELETE FROM Events");
        const auto event = update(addEvent, one(R"({"id":)" + json + "}"));
        ASSERT_EQ(event.code, 0u);
        EXPECT_EQ(std::to_string(event->id), expected);
        EXPECT_EQ(file.rows("SELECT EventsId FROM Events"), (Rows{Row{expected}}));
    }
}

TEST_F(Events, UnsignedNumbersAreTruncatedToTheirLow32Bits)
{
    for (const Member &member : unsignedMembers) {
        expectStored(member, "0", "0");
        expectStored(member, "3.9", "3");
        expectStored(member, "-1", "4294967295");
        expectStored(member, "4294967295", "4294967295");
        expectStored(member, "5000000000", "705032704");
    }
}

TEST_F(Events, SignedNumbersThatAreNotWholeOrTooBigAreZero)
{
    for (const Member &member : signedMembers) {
        expectStored(member, "-5", "-5");
        expectStored(member, "1.5", "0");
        expectStored(member, "2147483647", "2147483647");
        expectStored(member, "-2147483648", "-2147483648");
        expectStored(member, "2147483648", "0");
        expectStored(member, "4294967295", "0");
    }
}

TEST_F(Events, BytesKeepTheLow8BitsOfAWholeNumber)
{
    for (const Member &member : byteMembers) {
        expectStored(member, "255", "255");
        expectStored(member, "300", "44");
        expectStored(member, "256", "0");
        expectStored(member, "-1", "255");
        expectStored(member, "1.5", "0");
        expectStored(member, "2147483649", "0");
    }
}

TEST_F(Events, AFlagIsTrueOnlyForAWholeNumberOtherThanZero)
{
    for (const Member &member : flagMembers) {
        expectStored(member, "1", "1");
        expectStored(member, "-2", "1");
        expectStored(member, "0", "0");
        expectStored(member, "0.5", "0");
        expectStored(member, "true", "0");
        expectStored(member, "false", "0");
        expectStored(member, "2147483648", "0");
    }
}

TEST_F(Events, AWrongTypeUnderAnyKeyIsRefused)
{
    for (const auto *members : {&unsignedMembers, &signedMembers, &byteMembers})
        for (const Member &member : *members)
            for (const char *json : {R"("1")", "true", "null", "[]", "{}"})
                expectRefused(member, json);
    for (const Member &member : flagMembers)
        for (const char *json : {R"("1")", "null", "[]", "{}"})
            expectRefused(member, json);
    for (const Member &member : textMembers)
        for (const char *json : {"1", "true", "null", "[1]", R"({"k":1})"})
            expectRefused(member, json);
}

TEST_F(Events, TheIdIsRequiredAndANumber)
{
    for (const char *event :
         {"{}", R"({"time":1})", R"({"id":"7"})", R"({"id":null})", R"({"id":true})", R"({"event_id":7})"}) {
        SCOPED_TRACE(event);
        EXPECT_EQ(update(addEvent, one(event)).code, 5u);
        EXPECT_EQ(listAdded(batch(event)).code, 5u);
    }
    EXPECT_EQ(stored(), 0);
}

TEST_F(Events, OtherKeysAreIgnored)
{
    addEquipment();
    const auto event = update(addEvent, one(R"({"id":5,"device_id":10,"device_section":1,"account":7,)"
                                            R"("section_name":"x","unknown":null})"));
    ASSERT_EQ(event.code, 0u);
    Row bare(18);
    bare[0] = "5";
    EXPECT_EQ(file.rows(allEvents), Rows{bare});
    EXPECT_EQ(event->deviceId, nullptr);
    EXPECT_EQ(event->sectionId, nullptr);
    EXPECT_EQ(event->account, nullptr);
    EXPECT_EQ(event->sectionName, nullptr);
}

TEST_F(Events, TextsAreStoredUnchanged)
{
    const std::string text = "Тревога \xF0\x9F\x94\x94 " + std::string(300, 'x');
    const auto event = update(addEvent, one(R"({"id":5,"data":")" + text + R"(","jdata":"not json"})"));
    ASSERT_EQ(event.code, 0u);
    EXPECT_EQ(utf8(event->data), text);
    EXPECT_EQ(utf8(event->jData), "not json");
    EXPECT_EQ(file.rows("SELECT EventsData,EventsJData FROM Events"), (Rows{Row{text, "not json"}}));
}

TEST_F(Events, AnEmptyTextIsNoAbsentOne)
{
    const auto event = update(addEvent, R"({"D":{"id":5,"data":"","jdata":""}})");
    ASSERT_EQ(event.code, 0u);
    EXPECT_EQ(utf8(event->data), "");
    EXPECT_EQ(utf8(event->jData), "");
    EXPECT_EQ(file.rows("SELECT typeof(EventsData),EventsData,typeof(EventsJData),EventsJData FROM Events"),
              (Rows{Row{"text", "", "text", ""}}));
}

TEST_F(Events, AnEventThatComesAgainReplacesTheWholeRow)
{
    addEquipment();
    ASSERT_EQ(update(addEvent, one(fullEvent)).code, 0u);
    const auto event = update(addEvent, R"({"D":{"id":5,"time":2000,"device":10}})");
    ASSERT_EQ(event.code, 0u);
    EXPECT_EQ(value(event->time), 2000u);
    EXPECT_EQ(event->data, nullptr);
    EXPECT_EQ(event->affect, nullptr);
    EXPECT_EQ(event->isClosed, nullptr);
    Row expected(18);
    expected[0] = "5";
    expected[1] = "2000";
    expected[2] = "10";
    EXPECT_EQ(file.rows(allEvents), Rows{expected});
    ASSERT_EQ(listAdded(batch(R"({"id":5,"zone":3})")).code, 8u);
    EXPECT_EQ(file.rows("SELECT EventsTime,EventsDeviceId,EventsZoneId FROM Events"),
              (Rows{Row{std::nullopt, std::nullopt, "3"}}));
}

TEST_F(Events, TheLastOfTwoEventsWithOneIdWinsInABatch)
{
    addEquipment();
    const auto events = listAdded(batch(R"({"id":5,"device":10,"time":1,"data":"x"},{"id":5,"device":10,"time":2})"));
    ASSERT_EQ(events.code, 0u);
    ASSERT_EQ(events.size(), 1u);
    EXPECT_EQ(value(events[0].time), 2u);
    EXPECT_EQ(events[0].data, nullptr);
    EXPECT_EQ(file.rows("SELECT EventsId,EventsTime,EventsData FROM Events"), (Rows{Row{"5", "2", std::nullopt}}));
}

// ---- Returned events ----

TEST_F(Events, AddOneReturnsEveryFieldAndTheNames)
{
    addEquipment();
    const auto event = update(addEvent, one(fullEvent));
    ASSERT_EQ(event.code, 0u);
    expectFull(*event.record);
}

TEST_F(Events, AddManyReturnsEveryFieldAndTheNames)
{
    addEquipment();
    const auto events = listAdded(batch(fullEvent));
    ASSERT_EQ(events.code, 0u);
    ASSERT_EQ(events.size(), 1u);
    expectFull(events[0]);
}

TEST_F(Events, AnAbsentFieldIsReturnedAsNull)
{
    const auto event = update(addEvent, R"({"D":{"id":5}})");
    ASSERT_EQ(event.code, 0u);
    EXPECT_EQ(event->id, 5u);
    EXPECT_EQ(event->time, nullptr);
    EXPECT_EQ(event->deviceId, nullptr);
    EXPECT_EQ(event->sectionId, nullptr);
    EXPECT_EQ(event->zoneId, nullptr);
    EXPECT_EQ(event->active, nullptr);
    EXPECT_EQ(event->eventClass, nullptr);
    EXPECT_EQ(event->detector, nullptr);
    EXPECT_EQ(event->reason, nullptr);
    EXPECT_EQ(event->localTime, nullptr);
    EXPECT_EQ(event->channel, nullptr);
    EXPECT_EQ(event->data, nullptr);
    EXPECT_EQ(event->reviewId, nullptr);
    EXPECT_EQ(event->reviewState, nullptr);
    EXPECT_EQ(event->userId, nullptr);
    EXPECT_EQ(event->isClosed, nullptr);
    EXPECT_EQ(event->affect, nullptr);
    EXPECT_EQ(event->jData, nullptr);
    EXPECT_EQ(event->account, nullptr);
    EXPECT_EQ(event->sectionName, nullptr);
    EXPECT_EQ(event->zoneName, nullptr);
    EXPECT_EQ(event->domainName, nullptr);
}

TEST_F(Events, AnEventOfAnUnknownDeviceIsReturnedAloneAndWithoutNames)
{
    const auto event = update(addEvent, one(fullEvent));
    ASSERT_EQ(event.code, 0u);
    EXPECT_EQ(value(event->deviceId), 10);
    EXPECT_EQ(value(event->sectionId), 1u);
    EXPECT_EQ(value(event->zoneId), 2u);
    EXPECT_EQ(value(event->userId), 70u);
    EXPECT_EQ(event->account, nullptr);
    EXPECT_EQ(event->sectionName, nullptr);
    EXPECT_EQ(event->zoneName, nullptr);
    EXPECT_EQ(event->domainName, nullptr);
}

TEST_F(Events, ABatchOfUnknownDevicesReturns8AndIsStored)
{
    FlatEvent *out = nullptr;
    uint32_t count = 77;
    DebugLines lines;
    EXPECT_EQ(send(addEvents, &out, &count, batch(std::string(fullEvent) + R"(,{"id":6})")), 8u);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(count, 77u);
    EXPECT_EQ(lines.all(), std::vector<std::string>{});
    EXPECT_EQ(file.rows("SELECT EventsId FROM Events ORDER BY EventsId"), (Rows{Row{"5"}, Row{"6"}}));
}

TEST_F(Events, ABatchReturnsTheEventsOfKnownDevicesOnly)
{
    addEquipment();
    const auto events = listAdded(batch(R"({"id":1,"device":10},{"id":2,"device":11},{"id":3},{"id":4,"device":10})"));
    ASSERT_EQ(events.code, 0u);
    ASSERT_EQ(events.size(), 2u);
    EXPECT_NE(events.withId(1), nullptr);
    EXPECT_NE(events.withId(4), nullptr);
    EXPECT_EQ(stored(), 4);
}

TEST_F(Events, ABatchReturnsNoEventsButItsOwn)
{
    addEquipment();
    ASSERT_EQ(listAdded(batch(R"({"id":1,"device":10},{"id":2,"device":10})")).size(), 2u);
    const auto events = listAdded(batch(R"({"id":3,"device":10})"));
    ASSERT_EQ(events.code, 0u);
    ASSERT_EQ(events.size(), 1u);
    EXPECT_EQ(events[0].id, 3u);
}

TEST_F(Events, ABatchReturnsTheBiggestIdsToo)
{
    addEquipment();
    const auto events = listAdded(batch(R"({"id":0,"device":10},{"id":4294967295,"device":10},)"
                                        R"({"id":2147483648,"device":10})"));
    ASSERT_EQ(events.code, 0u);
    EXPECT_EQ(events.size(), 3u);
    EXPECT_NE(events.withId(0), nullptr);
    EXPECT_NE(events.withId(4294967295u), nullptr);
    EXPECT_NE(events.withId(2147483648u), nullptr);
}

TEST_F(Events, ABatchMayBeLong)
{
    addEquipment();
    std::string items;
    for (int id = 1; id <= 3000; ++id)
        items += (id > 1 ? "," : "") + std::string(R"({"device":10,"id":)") + std::to_string(id) + "}";
    const auto events = listAdded(batch(items));
    ASSERT_EQ(events.code, 0u);
    EXPECT_EQ(events.size(), 3000u);
    EXPECT_EQ(stored(), 3000);
}

TEST_F(Events, AnEventOfAnUnknownDeviceIsListedOnceTheDeviceArrives)
{
    ASSERT_EQ(update(addEvent, one(fullEvent)).code, 0u);
    ASSERT_EQ(listAdded(batch(fullEvent)).code, 8u);
    EXPECT_EQ(list(getEvents, 0, UINT32_MAX).code, 8u);
    const Rows before = file.rows(allEvents);
    addEquipment();
    const auto events = list(getEvents, 0, UINT32_MAX);
    ASSERT_EQ(events.code, 0u);
    ASSERT_EQ(events.size(), 1u);
    expectFull(events[0]);
    EXPECT_EQ(file.rows(allEvents), before);
}

// ---- Documents and out-parameters ----

TEST_F(Events, AddOneRefusesABrokenDocument)
{
    EXPECT_EQ(update(addEvent, "").code, 10u);
    EXPECT_EQ(update(addEvent, "not json").code, 10u);
    EXPECT_EQ(update(addEvent, "[]").code, 10u);
    EXPECT_EQ(update(addEvent, "5").code, 10u);
    FlatEvent *out = nullptr;
    EXPECT_EQ(addEvent(&out, nullptr, 0), 10u);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(update(addEvent, R"({"E":{}})").code, 5u);
    EXPECT_EQ(update(addEvent, R"({"id":1})").code, 5u);
    EXPECT_EQ(update(addEvent, R"({"D":[{"id":1}]})").code, 5u);
    EXPECT_EQ(update(addEvent, R"({"D":{}})").code, 5u);
    EXPECT_EQ(update(addEvent, batch(R"({"id":1})")).code, 5u);
    EXPECT_EQ(stored(), 0);
}

TEST_F(Events, AddManyRefusesABrokenDocument)
{
    const std::vector<std::pair<std::string, uint32_t>> cases = {
        {"", 10},
        {"not json", 10},
        {"[]", 10},
        {R"({"D":{"items":[]}})", 10},
        {R"({"D":{"items":{}}})", 5},
        {R"({"D":{}})", 5},
        {R"({"D":{"id":1}})", 5},
        {R"({"D":5})", 5},
        {R"({"items":[{"id":1}]})", 5},
        {R"({"D":{"items":[{"id":1},{"id":2},3]}})", 5},
        {R"({"D":{"items":[3,{"id":1},{"id":2}]}})", 5},
        {R"({"D":{"items":[{"id":1},null]}})", 5},
        {R"({"D":{"items":[{"id":1},[]]}})", 5},
    };
    for (const auto &[document, code] : cases) {
        SCOPED_TRACE(document);
        FlatEvent *out = nullptr;
        uint32_t count = 77;
        EXPECT_EQ(send(addEvents, &out, &count, document), code);
        EXPECT_EQ(out, nullptr);
        EXPECT_EQ(count, 77u);
    }
    EXPECT_EQ(stored(), 0);
    EXPECT_EQ(indexes(), 0);
}

TEST_F(Events, AddOneRefusesAFilledOutParameterBeforeTheText)
{
    FlatEvent occupied = {};
    FlatEvent *out = &occupied;
    EXPECT_EQ(send(addEvent, &out, one(fullEvent)), 10u);
    EXPECT_EQ(send(addEvent, &out, R"({"D":{}})"), 10u);
    EXPECT_EQ(out, &occupied);
    EXPECT_EQ(stored(), 0);
}

TEST_F(Events, AddManyOverwritesAFilledOutParameter)
{
    addEquipment();
    FlatEvent occupied = {};
    occupied.id = 99;
    FlatEvent *out = &occupied;
    uint32_t count = 77;
    ASSERT_EQ(send(addEvents, &out, &count, batch(fullEvent)), 0u);
    ASSERT_NE(out, &occupied);
    EXPECT_EQ(occupied.id, 99u);
    ASSERT_EQ(count, 1u);
    EXPECT_EQ(out->id, 5u);
    EXPECT_EQ(freeEventsArray(out, count), 0u);
}

TEST_F(Events, AddManyLeavesAFilledOutParameterAloneWhenItDoesNotSucceed)
{
    FlatEvent occupied = {};
    FlatEvent *out = &occupied;
    uint32_t count = 77;
    EXPECT_EQ(send(addEvents, &out, &count, "not json"), 10u);
    EXPECT_EQ(send(addEvents, &out, &count, R"({"D":{}})"), 5u);
    EXPECT_EQ(send(addEvents, &out, &count, batch(fullEvent)), 8u);
    refuse("INSERT", "Events");
    EXPECT_EQ(send(addEvents, &out, &count, batch(fullEvent)), 9u);
    EXPECT_EQ(out, &occupied);
    EXPECT_EQ(count, 77u);
}

TEST_F(Events, FreeRefusesNothingToFree)
{
    FlatEvent event = {};
    EXPECT_EQ(freeEvent(nullptr), 10u);
    EXPECT_EQ(freeEventsArray(nullptr, 0), 10u);
    EXPECT_EQ(freeEventsArray(nullptr, 1), 10u);
    EXPECT_EQ(freeEventsArray(&event, 0), 10u);
}

TEST_F(Events, FreeTakesFullAndMinimalEvents)
{
    addEquipment();
    FlatEvent *event = nullptr;
    ASSERT_EQ(send(addEvent, &event, one(fullEvent)), 0u);
    EXPECT_EQ(freeEvent(event), 0u);
    event = nullptr;
    ASSERT_EQ(send(addEvent, &event, R"({"D":{"id":6}})"), 0u);
    EXPECT_EQ(freeEvent(event), 0u);
    FlatEvent *events = nullptr;
    uint32_t count = 0;
    ASSERT_EQ(send(addEvents, &events, &count, batch(std::string(fullEvent) + R"(,{"id":6,"device":10})")), 0u);
    ASSERT_EQ(count, 2u);
    EXPECT_EQ(freeEventsArray(events, count), 0u);
}

// ---- The index ----

TEST_F(Events, AFreshFileHasNoTimeIndex)
{
    EXPECT_EQ(indexes(), 0);
    EXPECT_EQ(list(getEvents, 0, UINT32_MAX).code, 8u);
    EXPECT_EQ(indexes(), 0);
}

TEST_F(Events, TheFirstEventBringsTheTimeIndex)
{
    ASSERT_EQ(update(addEvent, R"({"D":{"id":1}})").code, 0u);
    EXPECT_EQ(indexes(), 1);
    EXPECT_EQ(file.rows("SELECT name FROM pragma_index_info('EventsTimeIndex')"), (Rows{Row{"EventsTime"}}));
    EXPECT_EQ(file.number("SELECT count(*) FROM pragma_index_list('Events') "
                          "WHERE name = 'EventsTimeIndex' AND \"unique\" = 0"),
              1);
}

TEST_F(Events, TheFirstBatchBringsTheTimeIndex)
{
    ASSERT_EQ(listAdded(batch(R"({"id":1})")).code, 8u);
    EXPECT_EQ(indexes(), 1);
}

TEST_F(Events, TheTimeIndexIsCreatedAgainIfItIsGone)
{
    ASSERT_EQ(update(addEvent, R"({"D":{"id":1}})").code, 0u);
    foreign("DROP INDEX EventsTimeIndex");
    ASSERT_EQ(update(addEvent, R"({"D":{"id":2}})").code, 0u);
    EXPECT_EQ(indexes(), 1);
    foreign("DROP INDEX EventsTimeIndex");
    ASSERT_EQ(listAdded(batch(R"({"id":3})")).code, 8u);
    EXPECT_EQ(indexes(), 1);
}

TEST_F(Events, EventsOfTheSameTimeAreNoConflict)
{
    addEquipment();
    EXPECT_EQ(listAdded(batch(R"({"id":1,"device":10,"time":5},{"id":2,"device":10,"time":5})")).size(), 2u);
}

class EventsIndexFailure : public Events
{
protected:
    // A table in the way of the index.
    void failIndex() { foreign("CREATE TABLE EventsTimeIndex (x)"); }
};

TEST_F(EventsIndexFailure, TheEventIsUndoneAndTheResultIs8)
{
    failIndex();
    DebugLines lines;
    const auto event = update(addEvent, one(fullEvent));
    EXPECT_EQ(event.code, 8u);
    EXPECT_EQ(event.record.get(), nullptr);
    EXPECT_TRUE(isFailure(lines.all(), "Create Events Time Index error"));
    EXPECT_EQ(stored(), 0);
}

TEST_F(EventsIndexFailure, TheBatchIsUndoneAndTheResultIs8)
{
    addEquipment();
    failIndex();
    FlatEvent *out = nullptr;
    uint32_t count = 77;
    DebugLines lines;
    EXPECT_EQ(send(addEvents, &out, &count, batch(std::string(fullEvent) + R"(,{"id":6,"device":10})")), 8u);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(count, 77u);
    EXPECT_TRUE(isFailure(lines.all(), "Create Events Time Index error"));
    EXPECT_EQ(stored(), 0);
}

TEST_F(EventsIndexFailure, AnEventThatWasThereBeforeIsReturnedAsItWas)
{
    foreign("INSERT INTO Events (EventsId, EventsTime, EventsData) VALUES (5, 1, 'old')");
    failIndex();
    DebugLines lines;
    const auto event = update(addEvent, one(fullEvent));
    ASSERT_EQ(event.code, 0u);
    EXPECT_EQ(event->id, 5u);
    EXPECT_EQ(value(event->time), 1u);
    EXPECT_EQ(utf8(event->data), "old");
    EXPECT_EQ(event->deviceId, nullptr);
    EXPECT_TRUE(isFailure(lines.all(), "Create Events Time Index error"));
    EXPECT_EQ(file.rows("SELECT EventsId,EventsTime,EventsData FROM Events"), (Rows{Row{"5", "1", "old"}}));
}

TEST_F(EventsIndexFailure, ABatchReturnsThoseThatWereThereBefore)
{
    addEquipment();
    foreign("INSERT INTO Events (EventsId, EventsTime, EventsDeviceId, EventsData) VALUES (5, 1, 10, 'old')");
    failIndex();
    DebugLines lines;
    const auto events = listAdded(batch(std::string(fullEvent) + R"(,{"id":6,"device":10})"));
    ASSERT_EQ(events.code, 0u);
    ASSERT_EQ(events.size(), 1u);
    EXPECT_EQ(events[0].id, 5u);
    EXPECT_EQ(value(events[0].time), 1u);
    EXPECT_EQ(utf8(events[0].data), "old");
    EXPECT_TRUE(isFailure(lines.all(), "Create Events Time Index error"));
    EXPECT_EQ(file.rows("SELECT EventsId,EventsData FROM Events"), (Rows{Row{"5", "old"}}));
}

TEST_F(EventsIndexFailure, AReadBackThatFailsTooReturns9)
{
    failIndex();
    foreign("DROP TABLE Users");
    DebugLines lines;
    const auto event = update(addEvent, one(fullEvent));
    EXPECT_EQ(event.code, 9u);
    EXPECT_EQ(event.record.get(), nullptr);
    EXPECT_EQ(lines.allWithErrorsAt({1, 3, 5, 7}),
              (std::vector<std::string>{"execute error", "*", "Create Events Time Index error", "*", "execute error",
                                        "*", "get event by id error", "*"}));
    lines.clear();
    EXPECT_EQ(listAdded(batch(fullEvent)).code, 9u);
    EXPECT_EQ(lines.allWithErrorsAt({1, 3, 5, 7}),
              (std::vector<std::string>{"execute error", "*", "Create Events Time Index error", "*", "execute error",
                                        "*", "get events by ids error", "*"}));
    EXPECT_EQ(stored(), 0);
}

TEST_F(EventsIndexFailure, EventsAreStoredAgainOnceTheWayIsClear)
{
    failIndex();
    ASSERT_EQ(update(addEvent, one(fullEvent)).code, 8u);
    foreign("DROP TABLE EventsTimeIndex");
    DebugLines lines;
    EXPECT_EQ(update(addEvent, one(fullEvent)).code, 0u);
    EXPECT_EQ(lines.all(), std::vector<std::string>{});
    EXPECT_EQ(stored(), 1);
    EXPECT_EQ(indexes(), 1);
}

// ---- Failures ----

TEST_F(Events, AFailedWriteReturns9)
{
    refuse("INSERT", "Events");
    DebugLines lines;
    const auto event = update(addEvent, one(fullEvent));
    EXPECT_EQ(event.code, 9u);
    EXPECT_EQ(event.record.get(), nullptr);
    EXPECT_TRUE(isBatchFailure(lines.all(), "add events error"));
    lines.clear();
    EXPECT_EQ(listAdded(batch(fullEvent)).code, 9u);
    EXPECT_TRUE(isBatchFailure(lines.all(), "add events error"));
    EXPECT_EQ(stored(), 0);
    EXPECT_EQ(indexes(), 0);
}

TEST_F(Events, AFailedWriteUndoesTheWholeBatch)
{
    addEquipment();
    ASSERT_EQ(update(addEvent, R"({"D":{"id":1,"data":"old"}})").code, 0u);
    foreign("CREATE TRIGGER RefuseThird BEFORE INSERT ON Events WHEN NEW.EventsId = 3 "
            "BEGIN SELECT RAISE(ABORT, 'refused'); END");
    FlatEvent *out = nullptr;
    uint32_t count = 77;
    DebugLines lines;
    EXPECT_EQ(send(addEvents, &out, &count,
                   batch(R"({"id":1,"device":10},{"id":2,"device":10},{"id":3,"device":10},{"id":4,"device":10})")),
              9u);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(count, 77u);
    EXPECT_TRUE(isBatchFailure(lines.all(), "add events error"));
    EXPECT_EQ(file.rows("SELECT EventsId,EventsData FROM Events"), (Rows{Row{"1", "old"}}));
}

TEST_F(Events, AWriteWithoutTheTableReturns9)
{
    foreign("DROP TABLE Events");
    DebugLines lines;
    EXPECT_EQ(update(addEvent, one(fullEvent)).code, 9u);
    EXPECT_TRUE(isBatchFailure(lines.all(), "add events error"));
    lines.clear();
    EXPECT_EQ(listAdded(batch(fullEvent)).code, 9u);
    EXPECT_TRUE(isBatchFailure(lines.all(), "add events error"));
}

// A table without which no event can be read, although it can be written.
class EventsReadBack : public Events, public ::testing::WithParamInterface<const char *>
{
};

TEST_P(EventsReadBack, AFailureUndoesTheWrite)
{
    foreign(std::string("DROP TABLE ") + GetParam());
    DebugLines lines;
    const auto event = update(addEvent, one(fullEvent));
    EXPECT_EQ(event.code, 9u);
    EXPECT_EQ(event.record.get(), nullptr);
    EXPECT_TRUE(isFailure(lines.all(), "get event by id error"));
    EXPECT_EQ(stored(), 0);
    EXPECT_EQ(indexes(), 0);

    lines.clear();
    FlatEvent *out = nullptr;
    uint32_t count = 77;
    EXPECT_EQ(send(addEvents, &out, &count, batch(std::string(fullEvent) + R"(,{"id":6})")), 9u);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(count, 77u);
    EXPECT_TRUE(isFailure(lines.all(), "get events by ids error"));
    EXPECT_EQ(stored(), 0);
    EXPECT_EQ(indexes(), 0);
}

INSTANTIATE_TEST_SUITE_P(Join, EventsReadBack, ::testing::Values("Devices", "Sections", "Zones", "Users", "Domains"),
                         [](const auto &table) { return std::string(table.param); });

TEST_F(Events, AFailedReadBackBringsTheOldRowBack)
{
    ASSERT_EQ(update(addEvent, R"({"D":{"id":5,"data":"old"}})").code, 0u);
    foreign("ALTER TABLE Zones RENAME COLUMN ZonesName TO Gone");
    EXPECT_EQ(update(addEvent, one(fullEvent)).code, 9u);
    EXPECT_EQ(listAdded(batch(fullEvent)).code, 9u);
    EXPECT_EQ(file.rows("SELECT EventsId,EventsTime,EventsData FROM Events"), (Rows{Row{"5", std::nullopt, "old"}}));
}

TEST_F(Events, AnEventThatIsGoneAtTheReadBackReturns8)
{
    addEquipment();
    foreign("CREATE TRIGGER Vanish AFTER INSERT ON Events "
            "BEGIN DELETE FROM Events WHERE EventsId = NEW.EventsId; END");
    DebugLines lines;
    const auto event = update(addEvent, one(fullEvent));
    EXPECT_EQ(event.code, 8u);
    EXPECT_EQ(event.record.get(), nullptr);
    EXPECT_EQ(indexes(), 1); // what was written besides is committed
    EXPECT_EQ(listAdded(batch(fullEvent)).code, 8u);
    EXPECT_EQ(lines.all(), std::vector<std::string>{});
    EXPECT_EQ(stored(), 0);
}

TEST_F(Events, AnEventOutlivesTheLibrary)
{
    addEquipment();
    const auto event = update(addEvent, one(fullEvent));
    ASSERT_EQ(event.code, 0u);
    library.reset();
    expectFull(*event.record);
}

TEST_F(Events, EventsStayAfterALaunch)
{
    addEquipment();
    ASSERT_EQ(update(addEvent, one(fullEvent)).code, 0u);
    relaunch();
    EXPECT_EQ(getLaunchCacheResult(), 0u);
    const auto events = list(getEvents, 1000, 1000);
    ASSERT_EQ(events.code, 0u);
    ASSERT_EQ(events.size(), 1u);
    expectFull(events[0]);
}

} // namespace
