#include "Store.h"

#include <map>

namespace {

using namespace brimlet::test;
using Rows = std::vector<Row>;

// A step of a clear: the table that it empties, and the words that it logs when it fails.
struct Step
{
    const char *table;
    const char *words;

    friend std::ostream &operator<<(std::ostream &stream, const Step &step) { return stream << step.table; }
};

// In the order in which they run. The events come last, and in clearAll only.
const std::vector<Step> steps = {
    {"Users", "clear users error"},
    {"Domains", "clear domains error"},
    {"Organizations", "clear orgs error"},
    {"Locales", "clear locales error"},
    {"Persons", "clear persons error"},
    {"Contractors", "clear contractors error"},
    {"Contracts", "clear contracts error"},
    {"Zones", "clear zones error"},
    {"Sections", "clear sections error"},
    {"DeviceUsers", "clear deviceUsers error"},
    {"DeviceUserSectionLinks", "clear deviceUsers-section links error"},
    {"Devices", "clear devices error"},
    {"Locations", "clear locations error"},
    {"Sites", "clear sites error"},
};

const char *const device = R"({"D":{"id":10,"account":1234,)"
                           R"("sections":[{"id":1,"name":"hall","zones":[{"id":2,"name":"door"}]}],)"
                           R"("users":[{"user_index":4,"name":"guest","sections":[1]}]}})";

void addReferences()
{
    ASSERT_EQ(send(addLocales, R"({"D":{"items":[{"id":1,"iso":"en"}]}})"), 0u);
    ASSERT_EQ(send(addDomains, R"({"D":{"items":[{"id":30,"name":"night","locale_id":1}]}})"), 0u);
    ASSERT_EQ(send(addUsers, R"({"D":{"items":[{"id":70,"name":"u","domain":30}]}})"), 0u);
    ASSERT_EQ(send(addOrganizations, R"({"D":{"items":[{"org_id":2,"contact":{"id":5,"name":"p"}}]}})"), 0u);
    ASSERT_EQ(send(addContractors, R"({"D":{"items":[{"id":4,"name":"c"}]}})"), 0u);
    ASSERT_EQ(send(addContracts, R"({"D":{"items":[{"id":11,"contractor_id":4,"operator_id":70}]}})"), 0u);
    ASSERT_EQ(send(addSites, R"({"D":{"items":[{"id":7,"contract_id":11,"location":{"lat":1,"lon":2}}]}})"), 0u);
    ASSERT_EQ(send(addDevice, device), 0u);
}

class Clearing : public StoreTest
{
protected:
    // Puts at least one row into every table.
    void fill()
    {
        addReferences();
        ASSERT_EQ(listAdded(R"({"D":{"items":[)"
                            R"({"id":1,"time":100,"device":10,"section":1,"zone":2,"operator_id":70,"affect":1},)"
                            R"({"id":2,"time":200,"device":10,"data":"d"},{"id":3,"time":300,"device":99}]}})")
                      .size(),
                  2u);
        const std::u16string address = u"10.0.0.1";
        ASSERT_EQ(
            setServerIp(reinterpret_cast<const uint16_t *>(address.data()), static_cast<uint32_t>(address.size())), 0u);
        for (const auto &[table, rows] : content())
            ASSERT_FALSE(rows.empty()) << table;
    }

    // All rows of all tables.
    std::map<std::string, Rows> content() const
    {
        std::map<std::string, Rows> all;
        for (const Row &table : file.rows("SELECT name FROM sqlite_master WHERE type = 'table'"))
            all[*table[0]] = file.rows("SELECT * FROM " + *table[0] + " ORDER BY rowid");
        return all;
    }

    int64_t indexes() const
    {
        return file.number("SELECT count(*) FROM sqlite_master WHERE type = 'index' AND name = 'EventsTimeIndex'");
    }
};

std::optional<std::string> serverAddress()
{
    uint16_t *address = nullptr;
    EXPECT_EQ(getServerIp(&address), 0u);
    const Owned<uint16_t> owned(address);
    return utf8(address);
}

TEST_F(Clearing, ClearAllEmptiesEveryTableButSessionAndVersion)
{
    fill();
    std::map<std::string, Rows> expected = content();
    ASSERT_EQ(expected.size(), 17u);
    for (auto &[table, rows] : expected)
        if (table != "Session" && table != "Version")
            rows.clear();
    DebugLines lines;
    EXPECT_EQ(clearAll(), 0u);
    EXPECT_EQ(content(), expected);
    EXPECT_EQ(lines.all(), std::vector<std::string>{});
}

TEST_F(Clearing, ClearAllExceptEventsKeepsTheEventsAsTheyAre)
{
    fill();
    std::map<std::string, Rows> expected = content();
    for (auto &[table, rows] : expected)
        if (table != "Events" && table != "Session" && table != "Version")
            rows.clear();
    ASSERT_EQ(expected["Events"].size(), 3u);
    DebugLines lines;
    EXPECT_EQ(clearAllExceptEvents(), 0u);
    EXPECT_EQ(content(), expected);
    EXPECT_EQ(lines.all(), std::vector<std::string>{});
}

TEST_F(Clearing, AnEmptyStoreIsClearedToo)
{
    EXPECT_EQ(clearAll(), 0u);
    EXPECT_EQ(clearAllExceptEvents(), 0u);
    EXPECT_EQ(file.rows("SELECT VersionId,VersionNumber FROM Version"), (Rows{Row{"0", "0.1"}}));
}

TEST_F(Clearing, AClearMayBeRepeated)
{
    fill();
    EXPECT_EQ(clearAllExceptEvents(), 0u);
    EXPECT_EQ(clearAllExceptEvents(), 0u);
    EXPECT_EQ(file.number("SELECT count(*) FROM Events"), 3);
    EXPECT_EQ(clearAll(), 0u);
    EXPECT_EQ(clearAll(), 0u);
    EXPECT_EQ(file.number("SELECT count(*) FROM Events"), 0);
}

TEST_F(Clearing, TheServerAddressOutlivesBothClears)
{
    fill();
    EXPECT_EQ(clearAllExceptEvents(), 0u);
    EXPECT_EQ(serverAddress(), "10.0.0.1");
    EXPECT_EQ(clearAll(), 0u);
    EXPECT_EQ(serverAddress(), "10.0.0.1");
}

TEST_F(Clearing, TheTimeIndexOutlivesBothClears)
{
    fill();
    ASSERT_EQ(indexes(), 1);
    EXPECT_EQ(clearAllExceptEvents(), 0u);
    EXPECT_EQ(indexes(), 1);
    EXPECT_EQ(clearAll(), 0u);
    EXPECT_EQ(indexes(), 1);
}

TEST_F(Clearing, AClearedFileIsOpenedAgain)
{
    fill();
    EXPECT_EQ(clearAll(), 0u);
    relaunch();
    EXPECT_EQ(getLaunchCacheResult(), 0u);
    EXPECT_EQ(serverAddress(), "10.0.0.1");
    EXPECT_EQ(list(getUsers).code, 8u);
    addReferences();
    EXPECT_EQ(list(getUsers).size(), 1u);
}

TEST_F(Clearing, EveryListIsEmptyAfterwards)
{
    fill();
    EXPECT_EQ(clearAll(), 0u);
    EXPECT_EQ(list(getUsers).code, 8u);
    EXPECT_EQ(list(getDomains).code, 8u);
    EXPECT_EQ(list(getOrganizations).code, 8u);
    EXPECT_EQ(list(getLocales).code, 8u);
    EXPECT_EQ(list(getContractors).code, 8u);
    EXPECT_EQ(list(getContracts).code, 8u);
    EXPECT_EQ(list(getZones, 10).code, 8u);
    EXPECT_EQ(list(getSections, 10).code, 8u);
    EXPECT_EQ(list(getDevices).code, 8u);
    EXPECT_EQ(list(getSites).code, 8u);
    EXPECT_EQ(list(getEvents, 0, UINT32_MAX).code, 8u);
    EXPECT_EQ(list(getAffectEvents).code, 8u);
}

// ---- The journal without its devices ----

TEST_F(Clearing, TheJournalIsSilentUntilTheDevicesReturn)
{
    fill();
    ASSERT_EQ(list(getEvents, 0, UINT32_MAX).size(), 2u);
    ASSERT_EQ(list(getAffectEvents).size(), 1u);
    ASSERT_EQ(clearAllExceptEvents(), 0u);
    EXPECT_EQ(list(getEvents, 0, UINT32_MAX).code, 8u);
    EXPECT_EQ(list(getAffectEvents).code, 8u);
    EXPECT_EQ(file.number("SELECT count(*) FROM Events"), 3);

    ASSERT_EQ(send(addDevice, R"({"D":{"id":10,"account":1234}})"), 0u);
    const auto events = list(getEvents, 0, UINT32_MAX);
    ASSERT_EQ(events.size(), 2u);
    const FlatEvent *event = events.withId(1);
    ASSERT_NE(event, nullptr);
    EXPECT_EQ(value(event->time), 100u);
    EXPECT_EQ(value(event->account), 1234u);
    EXPECT_EQ(list(getAffectEvents).size(), 1u);
}

TEST_F(Clearing, TheEventsGetTheirNamesBackOneAfterTheOther)
{
    fill();
    ASSERT_EQ(clearAllExceptEvents(), 0u);
    ASSERT_EQ(send(addDevice, R"({"D":{"id":10}})"), 0u);
    const auto bare = list(getEvents, 100, 100);
    ASSERT_EQ(bare.size(), 1u);
    EXPECT_EQ(value(bare[0].sectionId), 1u);
    EXPECT_EQ(value(bare[0].userId), 70u);
    EXPECT_EQ(bare[0].account, nullptr);
    EXPECT_EQ(bare[0].sectionName, nullptr);
    EXPECT_EQ(bare[0].zoneName, nullptr);
    EXPECT_EQ(bare[0].domainName, nullptr);

    ASSERT_EQ(send(addDevice, device), 0u);
    const auto equipped = list(getEvents, 100, 100);
    ASSERT_EQ(equipped.size(), 1u);
    EXPECT_EQ(value(equipped[0].account), 1234u);
    EXPECT_EQ(utf8(equipped[0].sectionName), "hall");
    EXPECT_EQ(utf8(equipped[0].zoneName), "door");
    EXPECT_EQ(equipped[0].domainName, nullptr);

    addReferences();
    const auto whole = list(getEvents, 100, 100);
    ASSERT_EQ(whole.size(), 1u);
    EXPECT_EQ(utf8(whole[0].domainName), "night");
}

TEST_F(Clearing, AnEventIsStillFoundByItsIdWithoutItsDevice)
{
    fill();
    ASSERT_EQ(clearAllExceptEvents(), 0u);
    const auto event = update(removeAffectFlag, R"({"D":{"id":1}})");
    ASSERT_EQ(event.code, 0u);
    EXPECT_EQ(value(event->deviceId), 10);
    EXPECT_EQ(value(event->affect), 0);
    EXPECT_EQ(event->account, nullptr);
    EXPECT_EQ(event->sectionName, nullptr);
}

TEST_F(Clearing, RetentionStillWorksWithoutTheDevices)
{
    fill();
    foreign("UPDATE Events SET EventsAffect = 0 WHERE EventsId = 2");
    ASSERT_EQ(clearAllExceptEvents(), 0u);
    EXPECT_EQ(clearEventsBeforeDateExceptAffects(1000), 0u);
    EXPECT_EQ(file.rows("SELECT EventsId FROM Events ORDER BY EventsId"), (Rows{Row{"1"}, Row{"3"}}));
}

// ---- Failures ----

class ClearingSteps : public Clearing, public ::testing::WithParamInterface<Step>
{
};

TEST_P(ClearingSteps, AFailureLeavesAllTablesAsTheyWere)
{
    fill();
    refuse("DELETE", GetParam().table);
    const std::map<std::string, Rows> before = content();
    DebugLines lines;
    EXPECT_EQ(clearAllExceptEvents(), 9u);
    EXPECT_TRUE(isFailure(lines.all(), GetParam().words));
    EXPECT_EQ(content(), before);
    lines.clear();
    EXPECT_EQ(clearAll(), 9u);
    EXPECT_TRUE(isFailure(lines.all(), GetParam().words));
    EXPECT_EQ(content(), before);
}

TEST_P(ClearingSteps, AMissingTableLeavesAllOthersAsTheyWere)
{
    fill();
    foreign(std::string("DROP TABLE ") + GetParam().table);
    const std::map<std::string, Rows> before = content();
    DebugLines lines;
    EXPECT_EQ(clearAllExceptEvents(), 9u);
    EXPECT_TRUE(isFailure(lines.all(), GetParam().words));
    lines.clear();
    EXPECT_EQ(clearAll(), 9u);
    EXPECT_TRUE(isFailure(lines.all(), GetParam().words));
    EXPECT_EQ(content(), before);
}

INSTANTIATE_TEST_SUITE_P(Tables, ClearingSteps, ::testing::ValuesIn(steps),
                         [](const auto &step) { return std::string(step.param.table); });

TEST_F(Clearing, AFailureAtTheEventsLeavesAllTablesAsTheyWere)
{
    fill();
    refuse("DELETE", "Events");
    const std::map<std::string, Rows> before = content();
    DebugLines lines;
    EXPECT_EQ(clearAll(), 9u);
    EXPECT_TRUE(isFailure(lines.all(), "clear events error"));
    EXPECT_EQ(content(), before);
}

TEST_F(Clearing, ClearAllReturns9WithoutTheEvents)
{
    fill();
    foreign("DROP TABLE Events");
    const std::map<std::string, Rows> before = content();
    DebugLines lines;
    EXPECT_EQ(clearAll(), 9u);
    EXPECT_TRUE(isFailure(lines.all(), "clear events error"));
    EXPECT_EQ(content(), before);
}

TEST_F(Clearing, ClearAllExceptEventsDoesNotNeedTheEvents)
{
    fill();
    refuse("DELETE", "Events");
    EXPECT_EQ(clearAllExceptEvents(), 0u);
    EXPECT_EQ(file.number("SELECT count(*) FROM Events"), 3);
    addReferences();
    foreign("DROP TABLE Events");
    EXPECT_EQ(clearAllExceptEvents(), 0u);
    EXPECT_EQ(file.number("SELECT count(*) FROM Users"), 0);
}

TEST_F(Clearing, NeitherClearDeletesFromSessionOrVersion)
{
    fill();
    refuse("DELETE", "Session");
    refuse("DELETE", "Version");
    EXPECT_EQ(clearAllExceptEvents(), 0u);
    EXPECT_EQ(clearAll(), 0u);
}

TEST_F(Clearing, TheStepsRunInTheirOrder)
{
    fill();
    DebugLines lines;
    refuse("DELETE", "Events");
    for (size_t step = steps.size(); step-- > 0;) {
        refuse("DELETE", steps[step].table); // and so are all behind it
        lines.clear();
        EXPECT_EQ(clearAllExceptEvents(), 9u);
        EXPECT_TRUE(isFailure(lines.all(), steps[step].words));
        lines.clear();
        EXPECT_EQ(clearAll(), 9u);
        EXPECT_TRUE(isFailure(lines.all(), steps[step].words));
    }
}

TEST_F(Clearing, AFailedClearLeavesNoTransactionOpen)
{
    fill();
    refuse("DELETE", "Sites");
    EXPECT_EQ(clearAll(), 9u);
    EXPECT_EQ(clearAllExceptEvents(), 9u);
    file.execute("DROP TRIGGER RefuseDELETESites");
    EXPECT_EQ(clearAll(), 0u);
    EXPECT_EQ(file.number("SELECT count(*) FROM Sites"), 0);
    EXPECT_EQ(file.number("SELECT count(*) FROM Events"), 0);
}

} // namespace
