// The users programmed into a device, and the links between them and the device's sections.
#include "Store.h"

#include <algorithm>
#include <string>
#include <vector>

namespace {

using namespace brimlet::test;

using Lines = std::vector<std::string>;
using Numbers = std::vector<uint32_t>;
using Rows = std::vector<Row>;

class DeviceUsers : public StoreTest
{
protected:
    Rows users() const { return file.rows("SELECT * FROM DeviceUsers ORDER BY 1, 2"); }
    Rows links() const { return file.rows("SELECT * FROM DeviceUserSectionLinks ORDER BY 1, 2, 3"); }
};

// Adds device 10 with these users.
uint32_t add(const std::string &users)
{
    return send(addDevice, R"({"D":{"id":10,"users":[)" + users + "]}}");
}

const FlatDeviceUser *user(const FlatDevice *device, uint32_t id)
{
    for (uint32_t index = 0; device && index < device->usersCount; ++index)
        if (device->users[index].id == id)
            return &device->users[index];
    return nullptr;
}

// The section numbers of a user, in rising order.
Numbers sections(const FlatDeviceUser *user)
{
    Numbers numbers;
    if (user)
        numbers.assign(user->sections, user->sections + user->sectionsCount);
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

// ---- The tables ----

TEST_F(DeviceUsers, TheTableIsKeyedByDeviceAndUser)
{
    EXPECT_EQ(file.value("SELECT sql FROM sqlite_master WHERE name = 'DeviceUsers'"),
              "CREATE TABLE DeviceUsers (DeviceUsersDeviceId UNSIGNED BIG INT,DeviceUsersDeviceUserId UNSIGNED BIG INT,"
              "DeviceUsersName VARCHAR(255),DeviceUsersComment VARCHAR(255),DeviceUsersPhone VARCHAR(255),"
              "PRIMARY KEY(DeviceUsersDeviceId,DeviceUsersDeviceUserId))");
}

TEST_F(DeviceUsers, TheTableOfLinksIsKeyedByAllItsColumns)
{
    EXPECT_EQ(file.value("SELECT sql FROM sqlite_master WHERE name = 'DeviceUserSectionLinks'"),
              "CREATE TABLE DeviceUserSectionLinks (DeviceUserSectionLinksDeviceId UNSIGNED BIG INT,"
              "DeviceUserSectionLinksDeviceUserId UNSIGNED BIG INT,DeviceUserSectionLinksSectionId UNSIGNED BIG INT,"
              "PRIMARY KEY(DeviceUserSectionLinksDeviceId,DeviceUserSectionLinksDeviceUserId,"
              "DeviceUserSectionLinksSectionId))");
}

// ---- Writing users ----

TEST_F(DeviceUsers, AddStoresEveryFieldInItsColumn)
{
    ASSERT_EQ(add(R"({"user_index":4,"name":"c","comment":"d","phone":"123","sections":[1,2]})"), 0u);
    EXPECT_EQ(file.rows("SELECT DeviceUsersDeviceId, DeviceUsersDeviceUserId, DeviceUsersName, DeviceUsersComment, "
                        "DeviceUsersPhone FROM DeviceUsers"),
              (Rows{Row{"10", "4", "c", "d", "123"}}));
    EXPECT_EQ(file.rows("SELECT typeof(DeviceUsersDeviceId), typeof(DeviceUsersDeviceUserId), "
                        "typeof(DeviceUsersName), typeof(DeviceUsersComment), typeof(DeviceUsersPhone) "
                        "FROM DeviceUsers"),
              (Rows{Row{"integer", "integer", "text", "text", "text"}}));
    EXPECT_EQ(file.rows("SELECT DeviceUserSectionLinksDeviceId, DeviceUserSectionLinksDeviceUserId, "
                        "DeviceUserSectionLinksSectionId FROM DeviceUserSectionLinks ORDER BY 3"),
              (Rows{Row{"10", "4", "1"}, Row{"10", "4", "2"}}));
    EXPECT_EQ(file.rows("SELECT DISTINCT typeof(DeviceUserSectionLinksDeviceId), "
                        "typeof(DeviceUserSectionLinksDeviceUserId), typeof(DeviceUserSectionLinksSectionId) "
                        "FROM DeviceUserSectionLinks"),
              (Rows{Row{"integer", "integer", "integer"}}));
}

TEST_F(DeviceUsers, AddStoresNullForEveryFieldThatIsLeftOut)
{
    ASSERT_EQ(add(R"({"user_index":4})"), 0u);
    EXPECT_EQ(users(), (Rows{Row{"10", "4", {}, {}, {}}}));
    EXPECT_EQ(links(), Rows{});
}

TEST_F(DeviceUsers, AddKeepsEmptyTextsApartFromAbsentOnes)
{
    ASSERT_EQ(add(R"({"user_index":4,"name":"","comment":"","phone":""})"), 0u);
    EXPECT_EQ(users(), (Rows{Row{"10", "4", "", "", ""}}));
    const auto device = get(getDevice, 10);
    ASSERT_EQ(device.code, 0u);
    EXPECT_EQ(utf8(device->users[0].name), "");
    EXPECT_EQ(utf8(device->users[0].comment), "");
    EXPECT_EQ(utf8(device->users[0].phone), "");
}

TEST_F(DeviceUsers, TextsOfAnyLengthAndScriptComeBack)
{
    const std::string name = "Ωмега 𝄞 '\\\"";
    const std::string comment(1000, 'x');
    ASSERT_EQ(add(R"({"user_index":4,"name":"Ωмега 𝄞 '\\\"","comment":")" + comment + R"("})"), 0u);
    EXPECT_EQ(file.value("SELECT DeviceUsersName FROM DeviceUsers"), name);
    const auto device = get(getDevice, 10);
    ASSERT_EQ(device.code, 0u);
    EXPECT_EQ(utf8(device->users[0].name), name);
    EXPECT_EQ(utf8(device->users[0].comment), comment);
}

TEST_F(DeviceUsers, AUserThatComesAgainIsReplacedWholeAndKeepsItsLinks)
{
    ASSERT_EQ(add(R"({"user_index":4,"name":"c","comment":"d","phone":"123","sections":[1]})"), 0u);
    ASSERT_EQ(add(R"({"user_index":4,"name":"e"})"), 0u);
    EXPECT_EQ(users(), (Rows{Row{"10", "4", "e", {}, {}}}));
    EXPECT_EQ(links(), (Rows{Row{"10", "4", "1"}}));
}

TEST_F(DeviceUsers, AUserThatIsNoLongerNamedStays)
{
    ASSERT_EQ(add(R"({"user_index":4,"name":"c"})"), 0u);
    ASSERT_EQ(add(R"({"user_index":5,"name":"d"})"), 0u);
    EXPECT_EQ(users(), (Rows{Row{"10", "4", "c", {}, {}}, Row{"10", "5", "d", {}, {}}}));
    EXPECT_EQ(get(getDevice, 10)->usersCount, 2u);
}

TEST_F(DeviceUsers, AUserThatComesTwiceLeavesTheLaterRowAndAllLinks)
{
    ASSERT_EQ(add(R"({"user_index":4,"name":"first","phone":"1","sections":[1]},
                     {"user_index":4,"name":"second","sections":[2]})"),
              0u);
    EXPECT_EQ(users(), (Rows{Row{"10", "4", "second", {}, {}}}));
    EXPECT_EQ(links(), (Rows{Row{"10", "4", "1"}, Row{"10", "4", "2"}}));
}

TEST_F(DeviceUsers, TwoDevicesMayUseTheSameNumber)
{
    ASSERT_EQ(send(addDevices, R"({"D":{"items":[{"id":10,"users":[{"user_index":4,"name":"x","sections":[1]}]},
                                                 {"id":11,"users":[{"user_index":4,"name":"y","sections":[2]}]}]}})"),
              0u);
    ASSERT_EQ(send(addDevice, R"({"D":{"id":11,"users":[{"user_index":4,"name":"z","sections":[3]}]}})"), 0u);
    EXPECT_EQ(users(), (Rows{Row{"10", "4", "x", {}, {}}, Row{"11", "4", "z", {}, {}}}));
    const auto first = get(getDevice, 10);
    ASSERT_EQ(first.code, 0u);
    EXPECT_EQ(sections(user(first.record.get(), 4)), (Numbers{1}));
    const auto second = get(getDevice, 11);
    ASSERT_EQ(second.code, 0u);
    EXPECT_EQ(sections(user(second.record.get(), 4)), (Numbers{2, 3}));
}

TEST_F(DeviceUsers, NothingJoinsThemToTheOperators)
{
    ASSERT_EQ(send(addUsers, R"({"D":{"items":[{"id":4,"name":"operator"}]}})"), 0u);
    ASSERT_EQ(add(R"({"user_index":4})"), 0u);
    EXPECT_EQ(get(getDevice, 10)->users[0].name, nullptr);
    EXPECT_EQ(utf8(get(getUser, 4)->name), "operator");
}

TEST_F(DeviceUsers, NumbersDropTheirFractionAndKeepTheLow32Bits)
{
    ASSERT_EQ(add(R"({"user_index":4.9,"sections":[1.9,-1,4294967298]},{"user_index":-1})"), 0u);
    EXPECT_EQ(users(), (Rows{Row{"10", "4", {}, {}, {}}, Row{"10", "4294967295", {}, {}, {}}}));
    const auto device = get(getDevice, 10);
    ASSERT_EQ(device.code, 0u);
    EXPECT_EQ(sections(user(device.record.get(), 4)), (Numbers{1, 2, 4294967295}));
    EXPECT_NE(user(device.record.get(), UINT32_MAX), nullptr);
}

TEST_F(DeviceUsers, ZerosAreNumbersLikeOthers)
{
    ASSERT_EQ(add(R"({"user_index":0,"sections":[0]})"), 0u);
    const auto device = get(getDevice, 10);
    ASSERT_EQ(device.code, 0u);
    EXPECT_EQ(sections(user(device.record.get(), 0)), (Numbers{0}));
}

// ---- Writing links ----

TEST_F(DeviceUsers, ANumberThatComesTwiceReturnsOneLink)
{
    ASSERT_EQ(add(R"({"user_index":4,"sections":[1,1,2]})"), 0u);
    EXPECT_EQ(links(), (Rows{Row{"10", "4", "1"}, Row{"10", "4", "2"}}));
    EXPECT_EQ(sections(user(get(getDevice, 10).record.get(), 4)), (Numbers{1, 2}));
}

TEST_F(DeviceUsers, LinksOnlyGrow)
{
    ASSERT_EQ(add(R"({"user_index":4,"sections":[1]})"), 0u);
    ASSERT_EQ(add(R"({"user_index":4,"sections":[2]})"), 0u);
    EXPECT_EQ(sections(user(get(getDevice, 10).record.get(), 4)), (Numbers{1, 2}));
    ASSERT_EQ(add(R"({"user_index":4,"sections":[]})"), 0u);
    EXPECT_EQ(sections(user(get(getDevice, 10).record.get(), 4)), (Numbers{1, 2}));
    ASSERT_EQ(add(R"({"user_index":4})"), 0u);
    EXPECT_EQ(sections(user(get(getDevice, 10).record.get(), 4)), (Numbers{1, 2}));
    ASSERT_EQ(send(addDevice, R"({"D":{"id":10}})"), 0u);
    EXPECT_EQ(sections(user(get(getDevice, 10).record.get(), 4)), (Numbers{1, 2}));
}

TEST_F(DeviceUsers, ALinkThatComesAgainIsNotReplaced)
{
    ASSERT_EQ(add(R"({"user_index":4,"sections":[1,2]})"), 0u);
    const std::string places = "SELECT rowid, DeviceUserSectionLinksSectionId FROM DeviceUserSectionLinks ORDER BY 2";
    const Rows before = file.rows(places);
    ASSERT_EQ(add(R"({"user_index":4,"sections":[1,2]})"), 0u);
    EXPECT_EQ(file.rows(places), before);
}

TEST_F(DeviceUsers, ALinkNeedsNoSection)
{
    ASSERT_EQ(add(R"({"user_index":4,"sections":[9]})"), 0u);
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Sections"), 0);
    EXPECT_EQ(sections(user(get(getDevice, 10).record.get(), 4)), (Numbers{9}));
}

TEST_F(DeviceUsers, ASectionThatComesByItselfMakesNoLink)
{
    ASSERT_EQ(send(addDevice, R"({"D":{"id":10,"sections":[{"id":1}],"users":[{"user_index":4}]}})"), 0u);
    EXPECT_EQ(links(), Rows{});
}

TEST_F(DeviceUsers, LinksOfSeveralUsersStayApart)
{
    ASSERT_EQ(add(R"({"user_index":1,"sections":[1,2]},{"user_index":2,"sections":[2,3,4]},{"user_index":3})"), 0u);
    const auto device = get(getDevice, 10);
    ASSERT_EQ(device.code, 0u);
    EXPECT_EQ(sections(user(device.record.get(), 1)), (Numbers{1, 2}));
    EXPECT_EQ(sections(user(device.record.get(), 2)), (Numbers{2, 3, 4}));
    EXPECT_EQ(sections(user(device.record.get(), 3)), Numbers{});
}

// ---- Documents that are refused ----

TEST_F(DeviceUsers, AMissingNumberReturns5)
{
    EXPECT_EQ(add(R"({"name":"x"})"), 5u);
    EXPECT_EQ(add(R"({"id":4})"), 5u);
    EXPECT_EQ(add(R"({"user_index":4},{})"), 5u);
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Devices"), 0);
    EXPECT_EQ(users(), Rows{});
}

TEST_F(DeviceUsers, ANumberOfAWrongTypeReturns5)
{
    for (const char *wrong : {R"("4")", "null", "true", "[4]", "{}"})
        EXPECT_EQ(add(std::string(R"({"user_index":)") + wrong + "}"), 5u) << wrong;
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Devices"), 0);
}

TEST_F(DeviceUsers, ATextOfAWrongTypeReturns5)
{
    for (const char *key : {"name", "comment", "phone"})
        for (const char *wrong : {"123", "null", "true", R"(["x"])", "{}"})
            EXPECT_EQ(add(std::string(R"({"user_index":4,")") + key + R"(":)" + wrong + "}"), 5u) << key << wrong;
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Devices"), 0);
}

TEST_F(DeviceUsers, SectionsOfAWrongTypeReadAsEmpty)
{
    for (const char *wrong : {"5", R"("1")", "null", "true", "{}", R"({"id":1})"})
        ASSERT_EQ(add(std::string(R"({"user_index":4,"sections":)") + wrong + "}"), 0u) << wrong;
    EXPECT_EQ(users().size(), 1u);
    EXPECT_EQ(links(), Rows{});
}

TEST_F(DeviceUsers, ASectionThatIsNoNumberReturns5)
{
    for (const char *wrong : {R"("1")", "null", "true", "[1]", R"({"id":1})"})
        EXPECT_EQ(add(std::string(R"({"user_index":4,"sections":[1,)") + wrong + ",2]}"), 5u) << wrong;
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Devices"), 0);
    EXPECT_EQ(users(), Rows{});
    EXPECT_EQ(links(), Rows{});
}

// ---- Reading ----

TEST_F(DeviceUsers, GetReturnsEveryField)
{
    ASSERT_EQ(add(R"({"user_index":4,"name":"c","comment":"d","phone":"123","sections":[1,2]})"), 0u);
    const auto device = get(getDevice, 10);
    ASSERT_EQ(device.code, 0u);
    ASSERT_EQ(device->usersCount, 1u);
    EXPECT_EQ(device->users[0].id, 4u);
    EXPECT_EQ(utf8(device->users[0].name), "c");
    EXPECT_EQ(utf8(device->users[0].comment), "d");
    EXPECT_EQ(utf8(device->users[0].phone), "123");
    EXPECT_EQ(sections(&device->users[0]), (Numbers{1, 2}));
}

TEST_F(DeviceUsers, GetReturnsNullForEveryAbsentField)
{
    ASSERT_EQ(add(R"({"user_index":4})"), 0u);
    const auto device = get(getDevice, 10);
    ASSERT_EQ(device.code, 0u);
    ASSERT_EQ(device->usersCount, 1u);
    EXPECT_EQ(device->users[0].id, 4u);
    EXPECT_EQ(device->users[0].name, nullptr);
    EXPECT_EQ(device->users[0].comment, nullptr);
    EXPECT_EQ(device->users[0].phone, nullptr);
    EXPECT_EQ(device->users[0].sections, nullptr);
    EXPECT_EQ(device->users[0].sectionsCount, 0u);
}

TEST_F(DeviceUsers, EveryReadOfADeviceReturnsThem)
{
    ASSERT_EQ(add(R"({"user_index":4,"sections":[1,2]})"), 0u);
    const auto devices = list(getDevices);
    ASSERT_EQ(devices.code, 0u);
    EXPECT_EQ(sections(user(&devices[0], 4)), (Numbers{1, 2}));
    const auto found = listBy(getDevicesWithParams, "id", "10");
    ASSERT_EQ(found.code, 0u);
    EXPECT_EQ(sections(user(&found[0], 4)), (Numbers{1, 2}));
    const auto updated = update(updateDeviceFw, R"({"D":{"id":10}})");
    ASSERT_EQ(updated.code, 0u);
    EXPECT_EQ(sections(user(updated.record.get(), 4)), (Numbers{1, 2}));
}

TEST_F(DeviceUsers, ALinkWithoutItsUserIsNotSeen)
{
    ASSERT_EQ(add(R"({"user_index":4,"sections":[1]})"), 0u);
    foreign("INSERT INTO DeviceUserSectionLinks VALUES (10, 5, 1), (11, 4, 2)");
    const auto device = get(getDevice, 10);
    ASSERT_EQ(device.code, 0u);
    EXPECT_EQ(device->usersCount, 1u);
    EXPECT_EQ(sections(user(device.record.get(), 4)), (Numbers{1}));
}

// ---- Failures ----

TEST_F(DeviceUsers, ReadsReturn7WhenUsersCannotBeRead)
{
    ASSERT_EQ(send(addDevices, R"({"D":{"items":[{"id":10,"users":[{"user_index":4}]},{"id":11}]}})"), 0u);
    foreign("DROP TABLE DeviceUsers");
    DebugLines lines;
    EXPECT_EQ(get(getDevice, 10).code, 7u);
    EXPECT_TRUE(isFailure(lines.all(), "get device users error"));
    lines.clear();
    EXPECT_EQ(list(getDevices).code, 7u);
    EXPECT_TRUE(isFailure(lines.all(), "get device users error"));
    lines.clear();
    EXPECT_EQ(listBy(getDevicesWithParams, "id", "11").code, 7u);
    EXPECT_TRUE(isFailure(lines.all(), "get device users error"));
}

TEST_F(DeviceUsers, ReadsReturn7WhenLinksCannotBeRead)
{
    ASSERT_EQ(add(R"({"user_index":4},{"user_index":5})"), 0u);
    foreign("DROP TABLE DeviceUserSectionLinks");
    DebugLines lines;
    EXPECT_EQ(get(getDevice, 10).code, 7u);
    EXPECT_TRUE(isFailure(lines.all(), "get device user links error"));
    lines.clear();
    EXPECT_EQ(list(getDevices).code, 7u);
    EXPECT_TRUE(isFailure(lines.all(), "get device user links error"));
    lines.clear();
    EXPECT_EQ(listBy(getDevicesWithParams, "id", "10").code, 7u);
    EXPECT_TRUE(isFailure(lines.all(), "get device user links error"));
}

TEST_F(DeviceUsers, LinksAreNotReadForADeviceWithoutUsers)
{
    ASSERT_EQ(send(addDevice, R"({"D":{"id":10}})"), 0u);
    foreign("DROP TABLE DeviceUserSectionLinks");
    DebugLines lines;
    EXPECT_EQ(get(getDevice, 10).code, 0u);
    EXPECT_EQ(lines.all(), Lines{});
}

TEST_F(DeviceUsers, ARenamedColumnFailsTheReadOfTheUsers)
{
    ASSERT_EQ(add(R"({"user_index":4})"), 0u);
    foreign("ALTER TABLE DeviceUsers RENAME COLUMN DeviceUsersPhone TO Other");
    DebugLines lines;
    EXPECT_EQ(get(getDevice, 10).code, 7u);
    EXPECT_TRUE(isFailure(lines.all(), "get device users error"));
}

TEST_F(DeviceUsers, AFurtherColumnOfTheLinksIsPassedOver)
{
    ASSERT_EQ(add(R"({"user_index":4,"sections":[1]})"), 0u);
    foreign("ALTER TABLE DeviceUserSectionLinks ADD COLUMN Other INTEGER DEFAULT 5");
    const auto device = get(getDevice, 10);
    ASSERT_EQ(device.code, 0u);
    EXPECT_EQ(sections(user(device.record.get(), 4)), (Numbers{1}));
}

TEST_F(DeviceUsers, UsersAndLinksFailUnderTheSameWords)
{
    refuse("INSERT", "DeviceUserSectionLinks");
    DebugLines lines;
    EXPECT_EQ(add(R"({"user_index":4,"sections":[1]})"), 9u);
    EXPECT_TRUE(isBatchFailure(lines.all(), "add device users error"));
    EXPECT_EQ(users(), Rows{});
    refuse("INSERT", "DeviceUsers");
    lines.clear();
    EXPECT_EQ(add(R"({"user_index":4,"sections":[1]})"), 9u);
    EXPECT_TRUE(isBatchFailure(lines.all(), "add device users error"));
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Devices"), 0);
}

TEST_F(DeviceUsers, AUserWithoutLinksIsWrittenThoughLinksAreRefused)
{
    refuse("INSERT", "DeviceUserSectionLinks");
    EXPECT_EQ(add(R"({"user_index":4})"), 0u);
    EXPECT_EQ(users().size(), 1u);
}

// ---- Release ----

FlatDevice *deviceWithOneUser(uint32_t *sections, uint32_t count)
{
    auto *device = zeroed<FlatDevice>();
    device->users = zeroed<FlatDeviceUser>();
    device->usersCount = 1;
    device->users[0].sections = sections;
    device->users[0].sectionsCount = count;
    return device;
}

TEST(DeviceUserRelease, SectionsWithoutACountAreFreedAll)
{
    EXPECT_EQ(freeDevice(deviceWithOneUser(zeroed<uint32_t>(3), 0)), 0u);
}

TEST(DeviceUserRelease, ACountWithoutSectionsIsNoMatter)
{
    EXPECT_EQ(freeDevice(deviceWithOneUser(nullptr, 3)), 0u);
}

TEST(DeviceUserRelease, AnArrayOfDevicesIsFreedWhateverTheCountsOfItsUsers)
{
    FlatDevice *devices = deviceWithOneUser(nullptr, 3);
    EXPECT_EQ(freeDevicesArray(devices, 1), 0u);
}

} // namespace
