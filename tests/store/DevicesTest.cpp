// Devices: a document taken apart into five tables, the tree put together again, its firmware update, its release.
#include "Store.h"

#include <string>
#include <vector>

namespace {

using namespace brimlet::test;

using Lines = std::vector<std::string>;
using Rows = std::vector<Row>;

uint32_t add(const std::string &device)
{
    return send(addDevice, one(device));
}

const FlatSection *section(const FlatDevice *device, uint32_t id)
{
    for (uint32_t index = 0; device && index < device->sectionsCount; ++index)
        if (device->sections[index].id == id)
            return &device->sections[index];
    return nullptr;
}

const FlatZone *zone(const FlatSection *section, uint32_t id)
{
    for (uint32_t index = 0; section && index < section->zonesCount; ++index)
        if (section->zones[index].id == id)
            return &section->zones[index];
    return nullptr;
}

const FlatDeviceUser *user(const FlatDevice *device, uint32_t id)
{
    for (uint32_t index = 0; device && index < device->usersCount; ++index)
        if (device->users[index].id == id)
            return &device->users[index];
    return nullptr;
}

// Two sections with three zones, two users with three links.
const char *const tree = R"({"id":10,"account":1234,"config_version":7,
    "sections":[{"id":1,"name":"a","zones":[{"id":5,"name":"b"},{"id":6}]},{"id":2,"zones":[{"id":7}]}],
    "users":[{"user_index":4,"name":"c","sections":[1,2]},{"user_index":3,"sections":[1]}]})";

class Devices : public StoreTest
{
protected:
    // Every row of the five tables.
    std::vector<Rows> equipment() const
    {
        return {file.rows("SELECT * FROM Devices ORDER BY 1"), file.rows("SELECT * FROM Sections ORDER BY 1, 2"),
                file.rows("SELECT * FROM Zones ORDER BY 1, 3"), file.rows("SELECT * FROM DeviceUsers ORDER BY 1, 2"),
                file.rows("SELECT * FROM DeviceUserSectionLinks ORDER BY 1, 2, 3")};
    }

    // A document that would change all five tables fails at one of them and changes none.
    void expectUndoneWhere(const std::string &table, const std::string &words)
    {
        ASSERT_EQ(add(tree), 0u);
        refuse("INSERT", table);
        const std::vector<Rows> before = equipment();
        const std::string documents[] = {
            R"({"id":11,"sections":[{"id":1,"zones":[{"id":1}]}],"users":[{"user_index":1,"sections":[1]}]})",
            R"({"id":10,"account":9,"sections":[{"id":1,"name":"x","zones":[{"id":5,"name":"x"}]}],
                "users":[{"user_index":4,"name":"x","sections":[1,8]}]})"};

        DebugLines lines;
        EXPECT_EQ(send(addDevices, batch(documents[0] + "," + documents[1])), 9u);
        EXPECT_TRUE(isBatchFailure(lines.all(), words));
        EXPECT_EQ(equipment(), before);
        for (const std::string &document : documents) {
            lines.clear();
            EXPECT_EQ(add(document), 9u);
            EXPECT_TRUE(isBatchFailure(lines.all(), words));
            EXPECT_EQ(equipment(), before);
        }
    }
};

// ---- The table ----

TEST_F(Devices, TheTableIsKeyedByTheId)
{
    EXPECT_EQ(file.value("SELECT sql FROM sqlite_master WHERE name = 'Devices'"),
              "CREATE TABLE Devices (DevicesId UNSIGNED BIG INT PRIMARY KEY,DevicesAccount UNSIGNED BIG INT,"
              "DevicesDomainId UNSIGNED BIG INT,DevicesConfigVersion UNSIGNED BIG INT,DevicesIsParted BOOLEAN,"
              "DevicesClusterId UNSIGNED BIG INT)");
}

// ---- Adding: the device's own row ----

TEST_F(Devices, AddStoresEveryFieldInItsColumn)
{
    ASSERT_EQ(add(R"({"id":10,"account":1234,"domain":3,"config_version":7,"parted":1,"cluster_id":2})"), 0u);
    EXPECT_EQ(file.rows("SELECT DevicesId, DevicesAccount, DevicesDomainId, DevicesConfigVersion, DevicesIsParted, "
                        "DevicesClusterId FROM Devices"),
              (Rows{Row{"10", "1234", "3", "7", "1", "2"}}));
    EXPECT_EQ(file.rows("SELECT typeof(DevicesId), typeof(DevicesAccount), typeof(DevicesDomainId), "
                        "typeof(DevicesConfigVersion), typeof(DevicesIsParted), typeof(DevicesClusterId) FROM Devices"),
              (Rows{Row{"integer", "integer", "integer", "integer", "integer", "integer"}}));
}

TEST_F(Devices, AddStoresNullForEveryFieldThatIsLeftOut)
{
    ASSERT_EQ(add(R"({"id":10})"), 0u);
    EXPECT_EQ(file.rows("SELECT * FROM Devices"), (Rows{Row{"10", {}, {}, {}, {}, {}}}));
}

TEST_F(Devices, AddOfABareDeviceWritesNoRowOfAnotherTable)
{
    ASSERT_EQ(add(R"({"id":10})"), 0u);
    for (const char *table : {"Sections", "Zones", "DeviceUsers", "DeviceUserSectionLinks"})
        EXPECT_EQ(file.number(std::string("SELECT COUNT(*) FROM ") + table), 0) << table;
}

TEST_F(Devices, AddKeepsZerosApartFromAbsentFields)
{
    ASSERT_EQ(add(R"({"id":0,"account":0,"domain":0,"config_version":0,"parted":0,"cluster_id":0})"), 0u);
    EXPECT_EQ(file.rows("SELECT * FROM Devices"), (Rows{Row{"0", "0", "0", "0", "0", "0"}}));
    const auto device = get(getDevice, 0);
    ASSERT_EQ(device.code, 0u);
    EXPECT_EQ(device->id, 0u);
    EXPECT_EQ(value(device->account), 0u);
    EXPECT_EQ(value(device->domainId), 0u);
    EXPECT_EQ(value(device->configVersion), 0u);
    EXPECT_EQ(value(device->isParted), 0);
    EXPECT_EQ(value(device->clusterId), 0u);
}

TEST_F(Devices, AddStoresTheGreatestNumbers)
{
    ASSERT_EQ(add(R"({"id":4294967295,"account":4294967295,"domain":4294967294,"config_version":4294967293,
                      "cluster_id":4294967292})"),
              0u);
    EXPECT_EQ(file.rows("SELECT * FROM Devices"),
              (Rows{Row{"4294967295", "4294967295", "4294967294", "4294967293", {}, "4294967292"}}));
    const auto device = get(getDevice, UINT32_MAX);
    ASSERT_EQ(device.code, 0u);
    EXPECT_EQ(device->id, 4294967295u);
    EXPECT_EQ(value(device->account), 4294967295u);
    EXPECT_EQ(value(device->domainId), 4294967294u);
    EXPECT_EQ(value(device->configVersion), 4294967293u);
    EXPECT_EQ(value(device->clusterId), 4294967292u);
}

TEST_F(Devices, NumbersDropTheirFractionAndKeepTheLow32Bits)
{
    ASSERT_EQ(add(R"({"id":1.9,"account":-1,"domain":4294967296,"config_version":5000000000,"cluster_id":-0.5})"), 0u);
    EXPECT_EQ(file.rows("SELECT * FROM Devices"), (Rows{Row{"1", "4294967295", "0", "705032704", {}, "0"}}));
}

TEST_F(Devices, PartedIsTrueForWholeNumbersOtherThan0Only)
{
    const std::pair<const char *, int64_t> flags[] = {{"1", 1},   {"2", 1},    {"-1", 1},   {"0", 0},
                                                      {"0.5", 0}, {"5e10", 0}, {"true", 0}, {"false", 0}};
    for (const auto &[json, stored] : flags) {
        ASSERT_EQ(add(std::string(R"({"id":1,"parted":)") + json + "}"), 0u) << json;
        EXPECT_EQ(file.number("SELECT DevicesIsParted FROM Devices"), stored) << json;
        EXPECT_EQ(value(get(getDevice, 1)->isParted), stored) << json;
    }
}

TEST_F(Devices, AddReplacesTheWholeRow)
{
    ASSERT_EQ(add(R"({"id":1,"account":5,"domain":3,"config_version":7,"parted":1,"cluster_id":2})"), 0u);
    ASSERT_EQ(add(R"({"id":1,"config_version":8})"), 0u);
    EXPECT_EQ(file.rows("SELECT * FROM Devices"), (Rows{Row{"1", {}, {}, "8", {}, {}}}));
}

TEST_F(Devices, AddOfTheIdAloneEmptiesTheRowAndKeepsTheChildren)
{
    ASSERT_EQ(add(tree), 0u);
    std::vector<Rows> expected = equipment();
    ASSERT_EQ(add(R"({"id":10})"), 0u);
    expected[0] = Rows{Row{"10", {}, {}, {}, {}, {}}};
    EXPECT_EQ(equipment(), expected);
}

TEST_F(Devices, UnknownMembersAreIgnored)
{
    ASSERT_EQ(add(R"({"id":1,"name":5,"domain_id":"x","device":null,"site":{}})"), 0u);
    EXPECT_EQ(file.rows("SELECT * FROM Devices"), (Rows{Row{"1", {}, {}, {}, {}, {}}}));
}

TEST_F(Devices, AddLogsNothing)
{
    DebugLines lines;
    ASSERT_EQ(add(tree), 0u);
    ASSERT_EQ(send(addDevices, batch(tree)), 0u);
    EXPECT_EQ(lines.all(), Lines{});
}

// ---- Adding: sections and zones of a document ----

TEST_F(Devices, AddStoresEveryFieldOfASection)
{
    ASSERT_EQ(add(R"({"id":10,"sections":[{"id":1,"name":"a","schedule_id":2,"tracert":3,"flags":4,"detector":5,
                      "arm":6,"physic":7,"form":8,"delay":9,"uid_type":11}]})"),
              0u);
    EXPECT_EQ(file.rows("SELECT SectionsDeviceId, SectionsSectionId, SectionsName, SectionsScheduleId, "
                        "SectionsTracert, SectionsFlags, SectionsDetector, SectionsArm, SectionsPhysic, SectionsForm, "
                        "SectionsDelay, SectionsUidType FROM Sections"),
              (Rows{Row{"10", "1", "a", "2", "3", "4", "5", "6", "7", "8", "9", "11"}}));
    EXPECT_EQ(file.rows("SELECT typeof(SectionsDeviceId), typeof(SectionsSectionId), typeof(SectionsName), "
                        "typeof(SectionsScheduleId), typeof(SectionsUidType) FROM Sections"),
              (Rows{Row{"integer", "integer", "text", "integer", "integer"}}));
}

TEST_F(Devices, AddStoresNullForEveryFieldThatASectionLeavesOut)
{
    ASSERT_EQ(add(R"({"id":10,"sections":[{"id":1}]})"), 0u);
    EXPECT_EQ(file.rows("SELECT * FROM Sections"), (Rows{Row{"10", "1", {}, {}, {}, {}, {}, {}, {}, {}, {}, {}}}));
}

TEST_F(Devices, AddStoresEveryFieldOfAZone)
{
    ASSERT_EQ(add(R"({"id":10,"sections":[{"id":1,"zones":[{"id":5,"name":"b","detector":2,"physic":3,"form":4,
                      "flags":6,"delay":7,"schedule_id":8,"tracert":9,"uid_type":11,"arm":12}]}]})"),
              0u);
    EXPECT_EQ(file.rows("SELECT ZonesDeviceId, ZonesSectionId, ZonesZoneId, ZonesName, ZonesDetector, ZonesPhysic, "
                        "ZonesForm, ZonesFlags, ZonesDelay, ZonesScheduleId, ZonesTracert, ZonesUidType, ZonesArm "
                        "FROM Zones"),
              (Rows{Row{"10", "1", "5", "b", "2", "3", "4", "6", "7", "8", "9", "11", "12"}}));
    EXPECT_EQ(file.rows("SELECT typeof(ZonesDeviceId), typeof(ZonesSectionId), typeof(ZonesZoneId), "
                        "typeof(ZonesName), typeof(ZonesDetector), typeof(ZonesArm) FROM Zones"),
              (Rows{Row{"integer", "integer", "integer", "text", "integer", "integer"}}));
}

TEST_F(Devices, AddStoresNullForEveryFieldThatAZoneLeavesOut)
{
    ASSERT_EQ(add(R"({"id":10,"sections":[{"id":1,"zones":[{"id":5}]}]})"), 0u);
    EXPECT_EQ(file.rows("SELECT * FROM Zones"), (Rows{Row{"10", "1", "5", {}, {}, {}, {}, {}, {}, {}, {}, {}, {}}}));
}

TEST_F(Devices, SectionAndZoneStandInForTheIds)
{
    ASSERT_EQ(add(R"({"id":10,"sections":[{"section":1,"zones":[{"zone":5}]},{"id":2,"section":8,
                      "zones":[{"id":6,"zone":9}]}]})"),
              0u);
    EXPECT_EQ(file.rows("SELECT SectionsSectionId FROM Sections ORDER BY 1"), (Rows{Row{"1"}, Row{"2"}}));
    EXPECT_EQ(file.rows("SELECT ZonesSectionId, ZonesZoneId FROM Zones ORDER BY 2"),
              (Rows{Row{"1", "5"}, Row{"2", "6"}}));
}

TEST_F(Devices, AnIdOfAWrongTypeIsNotReplacedByItsStandIn)
{
    EXPECT_EQ(add(R"({"id":10,"sections":[{"id":"1","section":1}]})"), 5u);
    EXPECT_EQ(add(R"({"id":10,"sections":[{"id":1,"zones":[{"id":null,"zone":5}]}]})"), 5u);
}

TEST_F(Devices, ChildrenTakeTheirKeysFromTheTreeAlone)
{
    ASSERT_EQ(add(R"({"id":10,"sections":[{"id":1,"device":99,"zones":[{"id":5,"device":99,"section":99}]}],
                      "users":[{"user_index":4,"device":99,"id":98,"sections":[1]}]})"),
              0u);
    EXPECT_EQ(file.rows("SELECT SectionsDeviceId, SectionsSectionId FROM Sections"), (Rows{Row{"10", "1"}}));
    EXPECT_EQ(file.rows("SELECT ZonesDeviceId, ZonesSectionId, ZonesZoneId FROM Zones"), (Rows{Row{"10", "1", "5"}}));
    EXPECT_EQ(file.rows("SELECT DeviceUsersDeviceId, DeviceUsersDeviceUserId FROM DeviceUsers"),
              (Rows{Row{"10", "4"}}));
    EXPECT_EQ(file.rows("SELECT * FROM DeviceUserSectionLinks"), (Rows{Row{"10", "4", "1"}}));
}

TEST_F(Devices, TwoDevicesMayUseTheSameNumbers)
{
    const auto numbered = [](const std::string &id, const std::string &name) {
        return R"({"id":)" + id + R"(,"sections":[{"id":1,"name":")" + name + R"(","zones":[{"id":5,"name":")" + name
             + R"("}]}],"users":[{"user_index":4,"name":")" + name + R"(","sections":[1]}]})";
    };
    ASSERT_EQ(send(addDevices, batch(numbered("10", "x") + "," + numbered("11", "y"))), 0u);
    EXPECT_EQ(file.rows("SELECT SectionsDeviceId, SectionsName FROM Sections ORDER BY 1"),
              (Rows{Row{"10", "x"}, Row{"11", "y"}}));
    EXPECT_EQ(file.rows("SELECT ZonesDeviceId, ZonesName FROM Zones ORDER BY 1"),
              (Rows{Row{"10", "x"}, Row{"11", "y"}}));
    EXPECT_EQ(file.rows("SELECT DeviceUsersDeviceId, DeviceUsersName FROM DeviceUsers ORDER BY 1"),
              (Rows{Row{"10", "x"}, Row{"11", "y"}}));
    EXPECT_EQ(utf8(section(get(getDevice, 10).record.get(), 1)->name), "x");
    EXPECT_EQ(utf8(section(get(getDevice, 11).record.get(), 1)->name), "y");
}

TEST_F(Devices, AZoneIdThatComesTwiceBelongsToTheLaterSection)
{
    ASSERT_EQ(add(R"({"id":10,"sections":[{"id":1,"zones":[{"id":5,"name":"first","arm":1}]},
                      {"id":2,"zones":[{"id":5,"name":"second"}]}]})"),
              0u);
    EXPECT_EQ(file.rows("SELECT ZonesSectionId, ZonesZoneId, ZonesName, ZonesArm FROM Zones"),
              (Rows{Row{"2", "5", "second", {}}}));
    const auto device = get(getDevice, 10);
    ASSERT_EQ(device.code, 0u);
    EXPECT_EQ(section(device.record.get(), 1)->zonesCount, 0u);
    EXPECT_EQ(section(device.record.get(), 2)->zonesCount, 1u);
}

TEST_F(Devices, AZoneNumberThatComesTwiceInOneSectionLeavesTheLaterZone)
{
    ASSERT_EQ(add(R"({"id":10,"sections":[{"id":1,"zones":[{"id":5,"name":"first","arm":1},
                      {"id":5,"name":"second"}]}]})"),
              0u);
    EXPECT_EQ(file.rows("SELECT ZonesName, ZonesArm FROM Zones"), (Rows{Row{"second", {}}}));
}

TEST_F(Devices, ASectionNumberThatComesTwiceLeavesTheLaterRowAndAllZones)
{
    ASSERT_EQ(add(R"({"id":10,"sections":[{"id":1,"name":"first","arm":1,"zones":[{"id":5}]},
                      {"id":1,"name":"second","zones":[{"id":6}]}]})"),
              0u);
    EXPECT_EQ(file.rows("SELECT SectionsName, SectionsArm FROM Sections"), (Rows{Row{"second", {}}}));
    EXPECT_EQ(file.rows("SELECT ZonesSectionId, ZonesZoneId FROM Zones ORDER BY 2"),
              (Rows{Row{"1", "5"}, Row{"1", "6"}}));
}

TEST_F(Devices, ADeviceThatComesTwiceLeavesTheLaterRowAndAllChildren)
{
    ASSERT_EQ(send(addDevices, batch(R"({"id":10,"account":1,"cluster_id":1,"sections":[{"id":1}]},
                                        {"id":10,"account":2,"sections":[{"id":2}]})")),
              0u);
    EXPECT_EQ(file.rows("SELECT DevicesAccount, DevicesClusterId FROM Devices"), (Rows{Row{"2", {}}}));
    EXPECT_EQ(file.rows("SELECT SectionsSectionId FROM Sections ORDER BY 1"), (Rows{Row{"1"}, Row{"2"}}));
}

TEST_F(Devices, AZoneMovesToTheSectionUnderWhichItComes)
{
    ASSERT_EQ(add(R"({"id":10,"sections":[{"id":1,"zones":[{"id":5,"name":"b","arm":1}]},{"id":2}]})"), 0u);
    ASSERT_EQ(add(R"({"id":10,"sections":[{"id":2,"zones":[{"id":5,"delay":3}]}]})"), 0u);
    EXPECT_EQ(file.rows("SELECT ZonesSectionId, ZonesZoneId, ZonesName, ZonesArm, ZonesDelay FROM Zones"),
              (Rows{Row{"2", "5", {}, {}, "3"}}));
    const auto device = get(getDevice, 10);
    ASSERT_EQ(device.code, 0u);
    EXPECT_EQ(section(device.record.get(), 1)->zones, nullptr);
    EXPECT_NE(zone(section(device.record.get(), 2), 5), nullptr);
}

TEST_F(Devices, AZoneMayMoveToASectionThatTheDocumentDoesNotHave)
{
    ASSERT_EQ(add(R"({"id":10,"sections":[{"id":1,"zones":[{"id":5}]}]})"), 0u);
    ASSERT_EQ(update(updateZone, R"({"D":{"device":10,"section":2,"id":5}})").code, 11u);
    EXPECT_EQ(section(get(getDevice, 10).record.get(), 1)->zonesCount, 0u);
    ASSERT_EQ(add(R"({"id":10,"sections":[{"id":2}]})"), 0u);
    EXPECT_NE(zone(section(get(getDevice, 10).record.get(), 2), 5), nullptr);
}

TEST_F(Devices, ChildrenThatANewDocumentLeavesOutStay)
{
    ASSERT_EQ(add(tree), 0u);
    ASSERT_EQ(add(R"({"id":10,"sections":[{"id":2,"zones":[{"id":8}]}],"users":[{"user_index":3,"name":"d"}]})"), 0u);
    const auto device = get(getDevice, 10);
    ASSERT_EQ(device.code, 0u);
    EXPECT_EQ(device->sectionsCount, 2u);
    ASSERT_NE(section(device.record.get(), 1), nullptr);
    EXPECT_EQ(utf8(section(device.record.get(), 1)->name), "a");
    EXPECT_EQ(section(device.record.get(), 1)->zonesCount, 2u);
    EXPECT_EQ(section(device.record.get(), 2)->zonesCount, 2u);
    EXPECT_EQ(device->usersCount, 2u);
    EXPECT_EQ(utf8(user(device.record.get(), 4)->name), "c");
    EXPECT_EQ(user(device.record.get(), 4)->sectionsCount, 2u);
    EXPECT_EQ(utf8(user(device.record.get(), 3)->name), "d");
    EXPECT_EQ(user(device.record.get(), 3)->sectionsCount, 1u);
}

TEST_F(Devices, ASectionThatComesAgainIsReplacedWholeAndKeepsItsZones)
{
    ASSERT_EQ(add(R"({"id":10,"sections":[{"id":1,"name":"a","arm":1,"zones":[{"id":5}]}]})"), 0u);
    ASSERT_EQ(add(R"({"id":10,"sections":[{"id":1,"delay":3}]})"), 0u);
    EXPECT_EQ(file.rows("SELECT SectionsName, SectionsArm, SectionsDelay FROM Sections"), (Rows{Row{{}, {}, "3"}}));
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Zones"), 1);
}

TEST_F(Devices, EmptyArraysRemoveNothing)
{
    ASSERT_EQ(add(tree), 0u);
    std::vector<Rows> expected = equipment();
    ASSERT_EQ(add(R"({"id":10,"sections":[],"users":[]})"), 0u);
    expected[0] = Rows{Row{"10", {}, {}, {}, {}, {}}};
    EXPECT_EQ(equipment(), expected);
}

TEST_F(Devices, AddWritesNoRowBeyondThoseOfTheDocument)
{
    ASSERT_EQ(send(addDevices, batch(std::string(tree) + R"(,{"id":11},{"id":12,"sections":[{"id":1}]})")), 0u);
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Devices"), 3);
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Sections"), 3);
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Zones"), 3);
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM DeviceUsers"), 2);
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM DeviceUserSectionLinks"), 3);
}

// ---- Documents that are refused ----

TEST_F(Devices, ABrokenTextReturns10)
{
    for (const char *text : {"", "not json", "[1,2]", "5", R"("D")", R"({"D":{"id":1})"}) {
        EXPECT_EQ(send(addDevice, text), 10u) << text;
        EXPECT_EQ(send(addDevices, text), 10u) << text;
        EXPECT_EQ(update(updateDeviceFw, text).code, 10u) << text;
    }
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Devices"), 0);
}

TEST_F(Devices, AMissingEnvelopeReturns5)
{
    for (const char *text : {"{}", R"({"id":1})", R"({"items":[{"id":1}]})", R"({"D":[{"id":1}]})", R"({"D":null})",
                             R"({"d":{"id":1}})"}) {
        EXPECT_EQ(send(addDevice, text), 5u) << text;
        EXPECT_EQ(send(addDevices, text), 5u) << text;
        EXPECT_EQ(update(updateDeviceFw, text).code, 5u) << text;
    }
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Devices"), 0);
}

TEST_F(Devices, ABatchWithoutElementsReturns10)
{
    EXPECT_EQ(send(addDevices, R"({"D":{"items":[]}})"), 10u);
}

TEST_F(Devices, ABatchWithoutItemsReturns5)
{
    EXPECT_EQ(send(addDevices, R"({"D":{}})"), 5u);
    EXPECT_EQ(send(addDevices, R"({"D":{"id":1}})"), 5u);
    EXPECT_EQ(send(addDevices, R"({"D":{"items":{"id":1}}})"), 5u);
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Devices"), 0);
}

TEST_F(Devices, OneRecordIsNoBatch)
{
    EXPECT_EQ(send(addDevice, batch(R"({"id":1})")), 5u);
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Devices"), 0);
}

TEST_F(Devices, ABadElementRefusesTheWholeBatch)
{
    for (const char *bad : {"7", "null", R"("x")", "[]", "{}", R"({"id":"2"})", R"({"id":2,"account":"1"})",
                            R"({"id":2,"sections":[{}]})"})
        EXPECT_EQ(send(addDevices, batch(std::string(R"({"id":1},)") + bad + R"(,{"id":3})")), 5u) << bad;
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Devices"), 0);
}

TEST_F(Devices, AMissingIdReturns5)
{
    EXPECT_EQ(add(R"({"account":1})"), 5u);
    EXPECT_EQ(add(R"({"device":1,"section":1,"zone":1})"), 5u);
    EXPECT_EQ(update(updateDeviceFw, R"({"D":{"config_version":1}})").code, 5u);
}

TEST_F(Devices, AnIdOfAWrongTypeReturns5)
{
    for (const char *wrong : {R"("1")", "null", "true", "[1]", "{}"}) {
        const std::string device = std::string(R"({"id":)") + wrong + "}";
        EXPECT_EQ(add(device), 5u) << wrong;
        EXPECT_EQ(send(addDevices, batch(device)), 5u) << wrong;
        EXPECT_EQ(update(updateDeviceFw, one(device)).code, 5u) << wrong;
    }
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Devices"), 0);
}

TEST_F(Devices, ANumberOfAWrongTypeReturns5)
{
    ASSERT_EQ(add(R"({"id":1,"config_version":4})"), 0u);
    const std::vector<Rows> before = equipment();
    for (const char *key : {"account", "domain", "config_version", "cluster_id"})
        for (const char *wrong : {R"("1")", R"("")", "null", "true", "false", "[]", "{}"}) {
            const std::string device = std::string(R"({"id":1,")") + key + R"(":)" + wrong + "}";
            EXPECT_EQ(add(device), 5u) << device;
            EXPECT_EQ(send(addDevices, batch(device)), 5u) << device;
            EXPECT_EQ(update(updateDeviceFw, one(device)).code, 5u) << device;
        }
    EXPECT_EQ(equipment(), before);
}

TEST_F(Devices, PartedOfAWrongTypeReturns5)
{
    for (const char *wrong : {R"("1")", R"("true")", "null", "[]", "{}"}) {
        const std::string device = std::string(R"({"id":1,"parted":)") + wrong + "}";
        EXPECT_EQ(add(device), 5u) << wrong;
        EXPECT_EQ(send(addDevices, batch(device)), 5u) << wrong;
        EXPECT_EQ(update(updateDeviceFw, one(device)).code, 5u) << wrong;
    }
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Devices"), 0);
}

TEST_F(Devices, ArraysOfAWrongTypeReadAsEmpty)
{
    for (const char *wrong : {"5", R"("x")", "null", "true", "{}", R"({"id":1})"}) {
        ASSERT_EQ(add(std::string(R"({"id":1,"sections":)") + wrong + R"(,"users":)" + wrong + "}"), 0u) << wrong;
        ASSERT_EQ(add(std::string(R"({"id":2,"sections":[{"id":1,"zones":)") + wrong + "}]}"), 0u) << wrong;
    }
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Devices"), 2);
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Sections"), 1);
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Zones"), 0);
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM DeviceUsers"), 0);
}

TEST_F(Devices, AnElementThatIsNoObjectReturns5)
{
    for (const char *wrong : {"1", R"("1")", "null", "true", "[]"}) {
        const std::string element(wrong);
        EXPECT_EQ(add(R"({"id":1,"sections":[{"id":1},)" + element + "]}"), 5u) << wrong;
        EXPECT_EQ(add(R"({"id":1,"sections":[{"id":1,"zones":[{"id":5},)" + element + "]}]}"), 5u) << wrong;
        EXPECT_EQ(add(R"({"id":1,"users":[{"user_index":1},)" + element + "]}"), 5u) << wrong;
        EXPECT_EQ(send(addDevices, batch(R"({"id":2},{"id":1,"sections":[)" + element + "]}")), 5u) << wrong;
    }
    EXPECT_EQ(equipment(), std::vector<Rows>(5));
}

TEST_F(Devices, AnElementThatDoesNotPassReturns5)
{
    for (const char *children :
         {R"("sections":[{"id":1},{"name":"x"}])", R"("sections":[{"id":1,"name":5}])",
          R"("sections":[{"id":1,"zones":[{"name":"x"}]}])", R"("sections":[{"id":1,"zones":[{"id":5,"name":null}]}])",
          R"("users":[{"name":"x"}])", R"("users":[{"user_index":1,"name":5}])",
          R"("users":[{"user_index":1,"sections":["1"]}])", R"("sections":[{"id":1}],"users":[{}])"}) {
        const std::string device = std::string(R"({"id":1,)") + children + "}";
        EXPECT_EQ(add(device), 5u) << children;
        EXPECT_EQ(send(addDevices, batch(device)), 5u) << children;
        EXPECT_EQ(update(updateDeviceFw, one(device)).code, 5u) << children;
    }
    EXPECT_EQ(equipment(), std::vector<Rows>(5));
}

TEST_F(Devices, AFieldOfAWrongTypeInASectionOrAZoneReturns5)
{
    for (const char *key :
         {"name", "schedule_id", "tracert", "flags", "detector", "arm", "physic", "form", "delay", "uid_type"})
        for (const char *wrong : {"null", "true", "[]", "{}", std::string(key) == "name" ? "1" : R"("1")"}) {
            const std::string child = std::string(R"({"id":1,")") + key + R"(":)" + wrong + "}";
            EXPECT_EQ(add(R"({"id":1,"sections":[)" + child + "]}"), 5u) << child;
            EXPECT_EQ(add(R"({"id":1,"sections":[{"id":1,"zones":[)" + child + "]}]}"), 5u) << child;
        }
    EXPECT_EQ(equipment(), std::vector<Rows>(5));
}

TEST_F(Devices, ARefusedDocumentLogsNothing)
{
    DebugLines lines;
    send(addDevice, "not json");
    send(addDevices, batch("7"));
    update(updateDeviceFw, R"({"D":{}})");
    EXPECT_EQ(lines.all(), Lines{});
}

TEST_F(Devices, ARefusedDocumentNeedsNoStore)
{
    library.reset();
    EXPECT_EQ(send(addDevice, "not json"), 10u);
    EXPECT_EQ(send(addDevices, R"({"D":{}})"), 5u);
    EXPECT_EQ(update(updateDeviceFw, "{}").code, 5u);
}

// ---- Batches that fail ----

TEST_F(Devices, AFailingDeviceUndoesTheWrite)
{
    expectUndoneWhere("Devices", "add devices error");
}

TEST_F(Devices, AFailingSectionUndoesTheWrite)
{
    expectUndoneWhere("Sections", "add sections error");
}

TEST_F(Devices, AFailingZoneUndoesTheWrite)
{
    expectUndoneWhere("Zones", "add zones error");
}

TEST_F(Devices, AFailingDeviceUserUndoesTheWrite)
{
    expectUndoneWhere("DeviceUsers", "add device users error");
}

TEST_F(Devices, AFailingLinkUndoesTheWriteUnderTheWordsOfTheUsers)
{
    expectUndoneWhere("DeviceUserSectionLinks", "add device users error");
}

TEST_F(Devices, ABatchThatFailsHalfwayUndoesItsFirstRows)
{
    foreign("CREATE TRIGGER LastZone BEFORE INSERT ON Zones WHEN NEW.ZonesZoneId = 7 "
            "BEGIN SELECT RAISE(ABORT, 'refused'); END");
    DebugLines lines;
    EXPECT_EQ(send(addDevices, batch(tree)), 9u);
    EXPECT_TRUE(isBatchFailure(lines.all(), "add zones error"));
    EXPECT_EQ(equipment(), std::vector<Rows>(5));
}

TEST_F(Devices, TheFirstFailingBatchEndsTheWrite)
{
    foreign("DROP TABLE Sections; DROP TABLE Zones; DROP TABLE DeviceUsers; DROP TABLE DeviceUserSectionLinks");
    DebugLines lines;
    EXPECT_EQ(send(addDevices, batch(tree)), 9u);
    EXPECT_TRUE(isBatchFailure(lines.all(), "add sections error"));
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Devices"), 0);
}

TEST_F(Devices, AMissingTableFailsAddAsARefusedRowDoes)
{
    const std::pair<const char *, const char *> tables[] = {{"DeviceUserSectionLinks", "add device users error"},
                                                            {"DeviceUsers", "add device users error"},
                                                            {"Zones", "add zones error"},
                                                            {"Sections", "add sections error"},
                                                            {"Devices", "add devices error"}};
    for (const auto &[table, words] : tables) {
        foreign(std::string("DROP TABLE ") + table);
        DebugLines lines;
        EXPECT_EQ(add(tree), 9u) << table;
        EXPECT_TRUE(isBatchFailure(lines.all(), words));
        lines.clear();
        EXPECT_EQ(send(addDevices, batch(tree)), 9u) << table;
        EXPECT_TRUE(isBatchFailure(lines.all(), words));
    }
}

TEST_F(Devices, ABatchWithoutRowsCannotFail)
{
    foreign("DROP TABLE Sections; DROP TABLE Zones; DROP TABLE DeviceUsers; DROP TABLE DeviceUserSectionLinks");
    DebugLines lines;
    EXPECT_EQ(send(addDevices, batch(R"({"id":1},{"id":2})")), 0u);
    EXPECT_EQ(lines.all(), Lines{});
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Devices"), 2);
}

TEST_F(Devices, TheStoreWorksOnAfterAFailedWrite)
{
    refuse("INSERT", "DeviceUserSectionLinks");
    ASSERT_EQ(add(tree), 9u);
    foreign("DROP TRIGGER RefuseINSERTDeviceUserSectionLinks");
    ASSERT_EQ(add(tree), 0u);
    EXPECT_EQ(get(getDevice, 10)->usersCount, 2u);
}

// ---- The read back of a single add ----

TEST_F(Devices, AddIsUndoneWhenTheDeviceCannotBeReadBack)
{
    foreign("DROP TABLE Domains");
    DebugLines lines;
    EXPECT_EQ(add(tree), 9u);
    EXPECT_TRUE(isFailure(lines.all(), "get device error"));
    EXPECT_EQ(equipment(), std::vector<Rows>(5));
}

TEST_F(Devices, AddOfABatchReadsNothingBack)
{
    foreign("DROP TABLE Domains");
    DebugLines lines;
    EXPECT_EQ(send(addDevices, batch(tree)), 0u);
    EXPECT_EQ(lines.all(), Lines{});
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Devices"), 1);
}

TEST_F(Devices, AddIsUndoneWhenItsSectionsCannotBeReadBack)
{
    foreign("DROP TABLE Sections");
    DebugLines lines;
    EXPECT_EQ(add(R"({"id":1})"), 9u);
    EXPECT_TRUE(isFailure(lines.all(), "get sections for device error"));
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Devices"), 0);
}

TEST_F(Devices, AddIsUndoneWhenItsUsersCannotBeReadBack)
{
    foreign("DROP TABLE DeviceUsers");
    DebugLines lines;
    EXPECT_EQ(add(R"({"id":1,"sections":[{"id":1,"zones":[{"id":5}]}]})"), 9u);
    EXPECT_TRUE(isFailure(lines.all(), "get device users error"));
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Devices"), 0);
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Sections"), 0);
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Zones"), 0);
}

TEST_F(Devices, AddIsUndoneWhenItsLinksCannotBeReadBack)
{
    foreign("DROP TABLE DeviceUserSectionLinks");
    DebugLines lines;
    EXPECT_EQ(add(R"({"id":1,"users":[{"user_index":1}]})"), 9u);
    EXPECT_TRUE(isFailure(lines.all(), "get device user links error"));
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Devices"), 0);
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM DeviceUsers"), 0);
}

// The failure to read a section's zones is ignored, but its rollback has undone the write.
TEST_F(Devices, AddReturns0AndIsUndoneWhenItsZonesCannotBeReadBack)
{
    foreign("DROP TABLE Zones");
    DebugLines lines;
    EXPECT_EQ(add(R"({"id":1,"sections":[{"id":1}]})"), 0u);
    EXPECT_TRUE(isFailure(lines.all(), "get zones for device section error"));
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Devices"), 0);
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Sections"), 0);
}

TEST_F(Devices, AddReturns8WhenTheDeviceIsGoneAtTheReadBack)
{
    foreign("CREATE TRIGGER Gone AFTER INSERT ON Devices BEGIN DELETE FROM Devices; END");
    DebugLines lines;
    EXPECT_EQ(add(R"({"id":1,"sections":[{"id":1}]})"), 8u);
    EXPECT_EQ(lines.all(), Lines{});
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Devices"), 0);
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Sections"), 1);
}

// ---- Reading ----

TEST_F(Devices, GetReturnsEveryField)
{
    ASSERT_EQ(send(addLocales, R"({"D":{"items":[{"id":2,"iso":"en","description":"English"}]}})"), 0u);
    ASSERT_EQ(send(addDomains, R"({"D":{"items":[{"id":3,"name":"north","org_id":8,"locale_id":2}]}})"), 0u);
    ASSERT_EQ(add(R"({"id":10,"account":1234,"domain":3,"config_version":7,"parted":1,"cluster_id":6})"), 0u);
    const auto device = get(getDevice, 10);
    ASSERT_EQ(device.code, 0u);
    EXPECT_EQ(device->id, 10u);
    EXPECT_EQ(value(device->account), 1234u);
    EXPECT_EQ(value(device->configVersion), 7u);
    EXPECT_EQ(value(device->isParted), 1);
    EXPECT_EQ(value(device->clusterId), 6u);
    EXPECT_EQ(value(device->domainId), 3u);
    ASSERT_NE(device->domain, nullptr);
    EXPECT_EQ(device->domain->id, 3u);
    EXPECT_EQ(utf8(device->domain->name), "north");
    EXPECT_EQ(value(device->domain->orgId), 8u);
    ASSERT_NE(device->domain->locale, nullptr);
    EXPECT_EQ(device->domain->locale->id, 2u);
    EXPECT_EQ(utf8(device->domain->locale->iso), "en");
    EXPECT_EQ(utf8(device->domain->locale->description), "English");
}

TEST_F(Devices, GetReturnsNullForEveryAbsentField)
{
    ASSERT_EQ(add(R"({"id":10})"), 0u);
    const auto device = get(getDevice, 10);
    ASSERT_EQ(device.code, 0u);
    EXPECT_EQ(device->id, 10u);
    EXPECT_EQ(device->account, nullptr);
    EXPECT_EQ(device->domain, nullptr);
    EXPECT_EQ(device->configVersion, nullptr);
    EXPECT_EQ(device->sections, nullptr);
    EXPECT_EQ(device->sectionsCount, 0u);
    EXPECT_EQ(device->users, nullptr);
    EXPECT_EQ(device->usersCount, 0u);
    EXPECT_EQ(device->isParted, nullptr);
    EXPECT_EQ(device->clusterId, nullptr);
    EXPECT_EQ(device->domainId, nullptr);
}

TEST_F(Devices, GetReturnsTheWholeTree)
{
    ASSERT_EQ(add(tree), 0u);
    const auto device = get(getDevice, 10);
    ASSERT_EQ(device.code, 0u);
    ASSERT_EQ(device->sectionsCount, 2u);
    const FlatSection *first = section(device.record.get(), 1);
    const FlatSection *second = section(device.record.get(), 2);
    ASSERT_NE(first, nullptr);
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(utf8(first->name), "a");
    EXPECT_EQ(second->name, nullptr);
    ASSERT_EQ(first->zonesCount, 2u);
    ASSERT_NE(zone(first, 5), nullptr);
    EXPECT_EQ(utf8(zone(first, 5)->name), "b");
    ASSERT_NE(zone(first, 6), nullptr);
    EXPECT_EQ(zone(first, 6)->name, nullptr);
    ASSERT_EQ(second->zonesCount, 1u);
    EXPECT_NE(zone(second, 7), nullptr);
    ASSERT_EQ(device->usersCount, 2u);
    ASSERT_NE(user(device.record.get(), 4), nullptr);
    EXPECT_EQ(utf8(user(device.record.get(), 4)->name), "c");
    EXPECT_EQ(user(device.record.get(), 4)->sectionsCount, 2u);
    ASSERT_NE(user(device.record.get(), 3), nullptr);
    EXPECT_EQ(user(device.record.get(), 3)->sectionsCount, 1u);
}

TEST_F(Devices, GetReturnsEveryFieldOfSectionsAndZones)
{
    ASSERT_EQ(add(R"({"id":10,"sections":[{"id":1,"name":"a","schedule_id":2,"tracert":3,"flags":4,"detector":5,
                      "arm":6,"physic":7,"form":8,"delay":9,"uid_type":11,"zones":[{"id":5,"name":"b","detector":12,
                      "physic":13,"form":14,"flags":16,"delay":17,"schedule_id":18,"tracert":19,"uid_type":21,
                      "arm":22}]}]})"),
              0u);
    const auto device = get(getDevice, 10);
    ASSERT_EQ(device.code, 0u);
    const FlatSection *read = section(device.record.get(), 1);
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(utf8(read->name), "a");
    EXPECT_EQ(value(read->scheduleId), 2u);
    EXPECT_EQ(value(read->tracert), 3u);
    EXPECT_EQ(value(read->flags), 4u);
    EXPECT_EQ(value(read->detector), 5u);
    EXPECT_EQ(value(read->arm), 6u);
    EXPECT_EQ(value(read->physic), 7u);
    EXPECT_EQ(value(read->form), 8u);
    EXPECT_EQ(value(read->delay), 9u);
    EXPECT_EQ(value(read->uidType), 11u);
    const FlatZone *leaf = zone(read, 5);
    ASSERT_NE(leaf, nullptr);
    EXPECT_EQ(utf8(leaf->name), "b");
    EXPECT_EQ(value(leaf->detector), 12u);
    EXPECT_EQ(value(leaf->physic), 13u);
    EXPECT_EQ(value(leaf->form), 14u);
    EXPECT_EQ(value(leaf->flags), 16u);
    EXPECT_EQ(value(leaf->delay), 17u);
    EXPECT_EQ(value(leaf->scheduleId), 18u);
    EXPECT_EQ(value(leaf->tracert), 19u);
    EXPECT_EQ(value(leaf->uidType), 21u);
    EXPECT_EQ(value(leaf->arm), 22u);
}

TEST_F(Devices, ADomainThatIsNotThereLeavesItsNumberOnly)
{
    ASSERT_EQ(add(R"({"id":1,"domain":3})"), 0u);
    const auto device = get(getDevice, 1);
    ASSERT_EQ(device.code, 0u);
    EXPECT_EQ(value(device->domainId), 3u);
    EXPECT_EQ(device->domain, nullptr);
}

TEST_F(Devices, ADomainMayComeAfterItsDevice)
{
    ASSERT_EQ(add(R"({"id":1,"domain":3})"), 0u);
    ASSERT_EQ(send(addDomains, R"({"D":{"items":[{"id":3}]}})"), 0u);
    const auto device = get(getDevice, 1);
    ASSERT_EQ(device.code, 0u);
    ASSERT_NE(device->domain, nullptr);
    EXPECT_EQ(device->domain->id, 3u);
    EXPECT_EQ(device->domain->name, nullptr);
    EXPECT_EQ(device->domain->orgId, nullptr);
}

TEST_F(Devices, ALocaleThatIsNotThereLeavesTheDomainWithoutOne)
{
    ASSERT_EQ(send(addDomains, R"({"D":{"items":[{"id":3,"name":"north","locale_id":2}]}})"), 0u);
    ASSERT_EQ(add(R"({"id":1,"domain":3})"), 0u);
    const auto device = get(getDevice, 1);
    ASSERT_EQ(device.code, 0u);
    ASSERT_NE(device->domain, nullptr);
    EXPECT_EQ(utf8(device->domain->name), "north");
    EXPECT_EQ(device->domain->locale, nullptr);
}

TEST_F(Devices, GetReturns8ForAnUnknownId)
{
    ASSERT_EQ(add(R"({"id":1})"), 0u);
    DebugLines lines;
    const auto device = get(getDevice, 2);
    EXPECT_EQ(device.code, 8u);
    EXPECT_EQ(device.record, nullptr);
    EXPECT_EQ(lines.all(), Lines{});
}

TEST_F(Devices, ListReturnsEveryDeviceWithItsOwnChildren)
{
    ASSERT_EQ(send(addDomains, R"({"D":{"items":[{"id":3,"name":"north"}]}})"), 0u);
    ASSERT_EQ(send(addDevices, batch(std::string(tree) + R"(,{"id":11,"domain":3,"sections":[{"id":1,"name":"z",
                                       "zones":[{"id":9}]}]},{"id":12})")),
              0u);
    const auto devices = list(getDevices);
    ASSERT_EQ(devices.code, 0u);
    ASSERT_EQ(devices.size(), 3u);
    ASSERT_NE(devices.withId(10), nullptr);
    ASSERT_NE(devices.withId(11), nullptr);
    ASSERT_NE(devices.withId(12), nullptr);
    EXPECT_EQ(value(devices.withId(10)->account), 1234u);
    EXPECT_EQ(devices.withId(10)->sectionsCount, 2u);
    EXPECT_EQ(section(devices.withId(10), 1)->zonesCount, 2u);
    EXPECT_EQ(devices.withId(10)->usersCount, 2u);
    EXPECT_EQ(devices.withId(11)->sectionsCount, 1u);
    EXPECT_EQ(utf8(section(devices.withId(11), 1)->name), "z");
    EXPECT_NE(zone(section(devices.withId(11), 1), 9), nullptr);
    EXPECT_EQ(devices.withId(11)->users, nullptr);
    EXPECT_EQ(utf8(devices.withId(11)->domain->name), "north");
    EXPECT_EQ(devices.withId(12)->sections, nullptr);
    EXPECT_EQ(devices.withId(12)->domain, nullptr);
}

TEST_F(Devices, ListReturns8WithoutDevicesAndTouchesNothing)
{
    FlatDevice *devices = nullptr;
    uint32_t count = 77;
    DebugLines lines;
    EXPECT_EQ(getDevices(&devices, &count), 8u);
    EXPECT_EQ(devices, nullptr);
    EXPECT_EQ(count, 77u);
    EXPECT_EQ(lines.all(), Lines{});
}

TEST_F(Devices, ListByFieldFindsByEveryKey)
{
    ASSERT_EQ(send(addDevices, batch(R"({"id":1,"account":100,"domain":200,"config_version":300,"parted":1},
                                        {"id":2,"account":101,"domain":201,"config_version":301,"parted":0},
                                        {"id":3})")),
              0u);
    const std::pair<const char *, const char *> searches[] = {
        {"id", "1"}, {"account", "100"}, {"domain", "200"}, {"config_version", "300"}, {"parted", "1"}};
    for (const auto &[key, text] : searches) {
        const auto devices = listBy(getDevicesWithParams, key, text);
        ASSERT_EQ(devices.code, 0u) << key;
        ASSERT_EQ(devices.size(), 1u) << key;
        EXPECT_EQ(devices[0].id, 1u) << key;
    }
}

TEST_F(Devices, ListByFieldRefusesEveryOtherKeyWithoutTheStore)
{
    foreign("DROP TABLE Devices");
    DebugLines lines;
    for (const char *key : {"cluster_id", "users", "sections", "", "ID", "Account", "account ", "domain_id", "device",
                            "user_index", "DevicesId", "DevicesClusterId"}) {
        const auto devices = listBy(getDevicesWithParams, key, "1");
        EXPECT_EQ(devices.code, 10u) << key;
        EXPECT_TRUE(devices.isNull()) << key;
    }
    EXPECT_EQ(lines.all(), Lines{});
}

TEST_F(Devices, ListByFieldReturnsEveryMatchWithItsChildren)
{
    ASSERT_EQ(send(addDomains, R"({"D":{"items":[{"id":3,"name":"north"}]}})"), 0u);
    ASSERT_EQ(send(addDevices, batch(R"({"id":1,"domain":3,"sections":[{"id":1,"zones":[{"id":5}]}],
                                         "users":[{"user_index":4,"sections":[1]}]},
                                        {"id":2,"domain":3},{"id":3,"domain":4}, {"id":4})")),
              0u);
    const auto devices = listBy(getDevicesWithParams, "domain", "3");
    ASSERT_EQ(devices.code, 0u);
    ASSERT_EQ(devices.size(), 2u);
    ASSERT_NE(devices.withId(1), nullptr);
    EXPECT_NE(zone(section(devices.withId(1), 1), 5), nullptr);
    EXPECT_EQ(devices.withId(1)->users[0].sections[0], 1u);
    ASSERT_NE(devices.withId(2), nullptr);
    EXPECT_EQ(utf8(devices.withId(2)->domain->name), "north");
}

TEST_F(Devices, ListByFieldFindsADomainThatIsNotThere)
{
    ASSERT_EQ(add(R"({"id":1,"domain":3})"), 0u);
    EXPECT_EQ(listBy(getDevicesWithParams, "domain", "3").size(), 1u);
}

TEST_F(Devices, ListByPartedComparesWithTheStoredNumber)
{
    ASSERT_EQ(send(addDevices, batch(R"({"id":1,"parted":1},{"id":2,"parted":true},{"id":3})")), 0u);
    const auto parted = listBy(getDevicesWithParams, "parted", "1");
    ASSERT_EQ(parted.size(), 1u);
    EXPECT_EQ(parted[0].id, 1u);
    const auto whole = listBy(getDevicesWithParams, "parted", "0");
    ASSERT_EQ(whole.size(), 1u);
    EXPECT_EQ(whole[0].id, 2u);
    EXPECT_EQ(listBy(getDevicesWithParams, "parted", "true").code, 8u);
}

TEST_F(Devices, ListByFieldReturns8WithoutAMatch)
{
    ASSERT_EQ(add(R"({"id":1,"account":5})"), 0u);
    DebugLines lines;
    for (const char *text : {"6", "", "x", "5%", "5 OR 1=1", "NULL"}) {
        const auto devices = listBy(getDevicesWithParams, "account", text);
        EXPECT_EQ(devices.code, 8u) << text;
        EXPECT_TRUE(devices.isNull()) << text;
    }
    EXPECT_EQ(listBy(getDevicesWithParams, "config_version", "").code, 8u);
    EXPECT_EQ(lines.all(), Lines{});
}

TEST_F(Devices, ATargetThatIsNotNullIsRefusedFirst)
{
    library.reset();
    FlatDevice taken = {};
    FlatDevice *out = &taken;
    uint32_t count = 77;
    EXPECT_EQ(getDevice(&out, 1), 10u);
    EXPECT_EQ(getDevices(&out, &count), 10u);
    EXPECT_EQ(find(getDevicesWithParams, &out, &count, "id", "1"), 10u);
    EXPECT_EQ(send(updateDeviceFw, &out, R"({"D":{"id":1}})"), 10u);
    EXPECT_EQ(send(updateDeviceFw, &out, "{}"), 10u);
    EXPECT_EQ(out, &taken);
    EXPECT_EQ(count, 77u);
}

// ---- Reads that fail ----

TEST_F(Devices, ReadsReturn7WhenTheDeviceCannotBeRead)
{
    ASSERT_EQ(add(tree), 0u);
    for (const char *table : {"Locales", "Domains", "Devices"}) {
        foreign(std::string("DROP TABLE ") + table);
        DebugLines lines;
        EXPECT_EQ(get(getDevice, 10).code, 7u) << table;
        EXPECT_TRUE(isFailure(lines.all(), "get device error"));
        lines.clear();
        EXPECT_EQ(list(getDevices).code, 7u) << table;
        EXPECT_TRUE(isFailure(lines.all(), "get devices error"));
        lines.clear();
        EXPECT_EQ(listBy(getDevicesWithParams, "account", "1234").code, 7u) << table;
        EXPECT_TRUE(isFailure(lines.all(), "get devices by field error"));
    }
}

TEST_F(Devices, AFailedReadLeavesTheTargets)
{
    ASSERT_EQ(add(tree), 0u);
    foreign("DROP TABLE DeviceUsers");
    FlatDevice *out = nullptr;
    uint32_t count = 77;
    EXPECT_EQ(getDevice(&out, 10), 7u);
    EXPECT_EQ(getDevices(&out, &count), 7u);
    EXPECT_EQ(find(getDevicesWithParams, &out, &count, "id", "10"), 7u);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(count, 77u);
}

TEST_F(Devices, ReadsReturn7WhenSectionsCannotBeRead)
{
    ASSERT_EQ(send(addDevices, batch(std::string(tree) + R"(,{"id":11,"account":1234})")), 0u);
    foreign("DROP TABLE Sections");
    DebugLines lines;
    EXPECT_EQ(get(getDevice, 10).code, 7u);
    EXPECT_TRUE(isFailure(lines.all(), "get sections for device error"));
    lines.clear();
    EXPECT_EQ(list(getDevices).code, 7u);
    EXPECT_TRUE(isFailure(lines.all(), "get sections for device error"));
    lines.clear();
    EXPECT_EQ(listBy(getDevicesWithParams, "account", "1234").code, 7u);
    EXPECT_TRUE(isFailure(lines.all(), "get sections for device error"));
}

TEST_F(Devices, ReadsReturn0WithEmptySectionsWhenZonesCannotBeRead)
{
    ASSERT_EQ(add(tree), 0u);
    foreign("DROP TABLE Zones");
    const Lines failures = {"execute error", "*", "get zones for device section error", "*",
                            "execute error", "*", "get zones for device section error", "*"};

    DebugLines lines;
    const auto device = get(getDevice, 10);
    ASSERT_EQ(device.code, 0u);
    EXPECT_EQ(lines.allWithErrorsAt({1, 3, 5, 7}), failures);
    ASSERT_EQ(device->sectionsCount, 2u);
    EXPECT_EQ(section(device.record.get(), 1)->zones, nullptr);
    EXPECT_EQ(section(device.record.get(), 1)->zonesCount, 0u);
    EXPECT_EQ(utf8(section(device.record.get(), 1)->name), "a");
    EXPECT_EQ(device->usersCount, 2u);

    lines.clear();
    const auto devices = list(getDevices);
    ASSERT_EQ(devices.code, 0u);
    EXPECT_EQ(lines.allWithErrorsAt({1, 3, 5, 7}), failures);
    EXPECT_EQ(devices[0].sectionsCount, 2u);

    lines.clear();
    const auto found = listBy(getDevicesWithParams, "id", "10");
    ASSERT_EQ(found.code, 0u);
    EXPECT_EQ(lines.allWithErrorsAt({1, 3, 5, 7}), failures);
    EXPECT_EQ(found[0].usersCount, 2u);
}

// ---- The firmware update ----

TEST_F(Devices, UpdateFwChangesTheConfigVersionAlone)
{
    ASSERT_EQ(add(R"({"id":1,"account":5,"domain":3,"config_version":7,"parted":1,"cluster_id":2})"), 0u);
    ASSERT_EQ(add(R"({"id":2,"config_version":7})"), 0u);
    const auto device = update(updateDeviceFw, R"({"D":{"id":1,"config_version":8}})");
    ASSERT_EQ(device.code, 0u);
    EXPECT_EQ(file.rows("SELECT * FROM Devices ORDER BY 1"),
              (Rows{Row{"1", "5", "3", "8", "1", "2"}, Row{"2", {}, {}, "7", {}, {}}}));
}

TEST_F(Devices, UpdateFwReturnsTheStoredDeviceWithItsTree)
{
    ASSERT_EQ(send(addDomains, R"({"D":{"items":[{"id":3,"name":"north"}]}})"), 0u);
    ASSERT_EQ(add(tree), 0u);
    foreign("UPDATE Devices SET DevicesDomainId = 3");
    const auto device = update(updateDeviceFw, R"({"D":{"id":10,"config_version":4294967295}})");
    ASSERT_EQ(device.code, 0u);
    EXPECT_EQ(device->id, 10u);
    EXPECT_EQ(value(device->configVersion), 4294967295u);
    EXPECT_EQ(value(device->account), 1234u);
    EXPECT_EQ(utf8(device->domain->name), "north");
    EXPECT_EQ(device->sectionsCount, 2u);
    EXPECT_EQ(section(device.record.get(), 1)->zonesCount, 2u);
    EXPECT_EQ(device->usersCount, 2u);
}

TEST_F(Devices, UpdateFwWithoutAConfigVersionClearsIt)
{
    ASSERT_EQ(add(R"({"id":1,"account":5,"config_version":7})"), 0u);
    const auto device = update(updateDeviceFw, R"({"D":{"id":1}})");
    ASSERT_EQ(device.code, 0u);
    EXPECT_EQ(device->configVersion, nullptr);
    EXPECT_EQ(value(device->account), 5u);
    EXPECT_EQ(file.rows("SELECT DevicesAccount, DevicesConfigVersion FROM Devices"), (Rows{Row{"5", {}}}));
}

TEST_F(Devices, UpdateFwIgnoresEverythingElse)
{
    ASSERT_EQ(add(tree), 0u);
    std::vector<Rows> expected = equipment();
    const auto device = update(updateDeviceFw, R"({"D":{"id":10,"config_version":8,"account":1,"domain":1,"parted":1,
        "cluster_id":1,"sections":[{"id":1,"name":"x","zones":[{"id":5,"name":"x"}]},{"id":9}],
        "users":[{"user_index":4,"name":"x","sections":[9]},{"user_index":9}]}})");
    ASSERT_EQ(device.code, 0u);
    EXPECT_EQ(device->sectionsCount, 2u);
    EXPECT_EQ(value(device->account), 1234u);
    expected[0] = Rows{Row{"10", "1234", {}, "8", {}, {}}};
    EXPECT_EQ(equipment(), expected);
}

TEST_F(Devices, UpdateFwOfAnUnknownIdReturns8AndWritesNoRow)
{
    ASSERT_EQ(add(R"({"id":1,"config_version":7})"), 0u);
    DebugLines lines;
    const auto device = update(updateDeviceFw, R"({"D":{"id":2,"config_version":8}})");
    EXPECT_EQ(device.code, 8u);
    EXPECT_EQ(device.record, nullptr);
    EXPECT_EQ(lines.all(), Lines{});
    EXPECT_EQ(file.rows("SELECT DevicesId, DevicesConfigVersion FROM Devices"), (Rows{Row{"1", "7"}}));
}

TEST_F(Devices, UpdateFwReturns9WhenTheStatementFails)
{
    ASSERT_EQ(add(R"({"id":1,"config_version":7})"), 0u);
    refuse("UPDATE", "Devices");
    DebugLines lines;
    const auto device = update(updateDeviceFw, R"({"D":{"id":1,"config_version":8}})");
    EXPECT_EQ(device.code, 9u);
    EXPECT_EQ(device.record, nullptr);
    EXPECT_TRUE(isFailure(lines.all(), "update device firmware error"));
    EXPECT_EQ(file.number("SELECT DevicesConfigVersion FROM Devices"), 7);
}

TEST_F(Devices, UpdateFwReturns9WithoutTheTable)
{
    foreign("DROP TABLE Devices");
    DebugLines lines;
    EXPECT_EQ(update(updateDeviceFw, R"({"D":{"id":1,"config_version":8}})").code, 9u);
    EXPECT_TRUE(isFailure(lines.all(), "update device firmware error"));
}

TEST_F(Devices, UpdateFwIsUndoneWhenTheReadBackFails)
{
    ASSERT_EQ(add(tree), 0u);
    const std::pair<const char *, const char *> tables[] = {{"DeviceUserSectionLinks", "get device user links error"},
                                                            {"DeviceUsers", "get device users error"},
                                                            {"Sections", "get sections for device error"},
                                                            {"Domains", "get device error"}};
    for (const auto &[table, words] : tables) {
        foreign(std::string("DROP TABLE ") + table);
        DebugLines lines;
        const auto device = update(updateDeviceFw, R"({"D":{"id":10,"config_version":8}})");
        EXPECT_EQ(device.code, 9u) << table;
        EXPECT_EQ(device.record, nullptr) << table;
        EXPECT_TRUE(isFailure(lines.all(), words));
        EXPECT_EQ(file.number("SELECT DevicesConfigVersion FROM Devices"), 7) << table;
    }
}

TEST_F(Devices, UpdateFwReturns0AndIsUndoneWhenZonesCannotBeRead)
{
    ASSERT_EQ(add(R"({"id":1,"config_version":7,"sections":[{"id":1}]})"), 0u);
    foreign("DROP TABLE Zones");
    DebugLines lines;
    const auto device = update(updateDeviceFw, R"({"D":{"id":1,"config_version":8}})");
    ASSERT_EQ(device.code, 0u);
    EXPECT_TRUE(isFailure(lines.all(), "get zones for device section error"));
    EXPECT_EQ(value(device->configVersion), 8u);
    EXPECT_EQ(device->sectionsCount, 1u);
    EXPECT_EQ(file.number("SELECT DevicesConfigVersion FROM Devices"), 7);
}

TEST_F(Devices, UpdateSectionReturns0AndIsUndoneWhenZonesCannotBeRead)
{
    ASSERT_EQ(add(R"({"id":1,"sections":[{"id":1,"name":"old"}]})"), 0u);
    foreign("DROP TABLE Zones");
    DebugLines lines;
    const auto changed = update(updateSection, R"({"D":{"device":1,"id":1,"name":"new"}})");
    ASSERT_EQ(changed.code, 0u);
    EXPECT_TRUE(isFailure(lines.all(), "get zones for device section error"));
    EXPECT_EQ(utf8(changed->name), "new");
    EXPECT_EQ(changed->zones, nullptr);
    EXPECT_EQ(file.value("SELECT SectionsName FROM Sections"), "old");
}

// ---- Release ----

uint16_t *text(char16_t letter)
{
    uint16_t *made = zeroed<uint16_t>(2);
    made[0] = letter;
    return made;
}

void fill(FlatZone &zone, uint32_t id)
{
    zone = {id,        text(u'z'), block(1u), block(2u), block(3u), block(4u),
            block(5u), block(6u),  block(7u), block(8u), block(9u)};
}

void fill(FlatSection &section, uint32_t id)
{
    section = {id,        text(u's'), block(1u), zeroed<FlatZone>(2), 2,         block(2u), block(3u),
               block(4u), block(5u),  block(6u), block(7u),           block(8u), block(9u)};
    fill(section.zones[0], 1);
    fill(section.zones[1], 2);
}

void fill(FlatDeviceUser &user, uint32_t id)
{
    user = {id, text(u'n'), text(u'c'), text(u'p'), zeroed<uint32_t>(3), 3};
}

// A device with everything that a device can have: two sections of two zones, two users of three links.
void fill(FlatDevice &device, uint32_t id)
{
    FlatLocale *locale = block(FlatLocale{1, text(u'i'), text(u'd')});
    FlatDomain *domain = block(FlatDomain{2, text(u'n'), block(3u), locale});
    device = {id, block(1u),         domain,    block(2u), zeroed<FlatSection>(2), 2, zeroed<FlatDeviceUser>(2),
              2,  block(uint8_t{1}), block(3u), block(4u)};
    fill(device.sections[0], 1);
    fill(device.sections[1], 2);
    fill(device.users[0], 1);
    fill(device.users[1], 2);
}

FlatDevice *fullDevice()
{
    FlatDevice *device = zeroed<FlatDevice>(1);
    fill(*device, 1);
    return device;
}

// What was written before the sections is undone, what follows the users is not.
void expectReleasedUpToTheLists(const FlatDevice *device)
{
    EXPECT_EQ(device->account, nullptr);
    EXPECT_EQ(device->domain, nullptr);
    EXPECT_EQ(device->configVersion, nullptr);
    EXPECT_EQ(value(device->isParted), 1);
    EXPECT_EQ(value(device->clusterId), 3u);
    EXPECT_EQ(value(device->domainId), 4u);
}

TEST(DeviceRelease, FreeTakesADeviceWithEverything)
{
    EXPECT_EQ(freeDevice(fullDevice()), 0u);
}

TEST(DeviceRelease, FreeTakesADeviceWithNothing)
{
    EXPECT_EQ(freeDevice(zeroed<FlatDevice>(1)), 0u);
}

TEST(DeviceRelease, FreeRefusesNull)
{
    EXPECT_EQ(freeDevice(nullptr), 10u);
}

TEST(DeviceRelease, FreeStopsAtSectionsWithoutACount)
{
    FlatDevice *device = fullDevice();
    device->sectionsCount = 0;
    EXPECT_EQ(freeDevice(device), 10u);
    expectReleasedUpToTheLists(device);
    ASSERT_NE(device->sections, nullptr);
    EXPECT_EQ(device->sections[0].name[0], u's');
    ASSERT_NE(device->users, nullptr);
    EXPECT_EQ(device->usersCount, 2u);
    EXPECT_EQ(device->users[0].name[0], u'n');

    device->sectionsCount = 2;
    EXPECT_EQ(freeDevice(device), 0u);
}

TEST(DeviceRelease, FreeStopsAtACountWithoutSections)
{
    FlatDevice *device = fullDevice();
    FlatSection *sections = device->sections;
    device->sections = nullptr;
    EXPECT_EQ(freeDevice(device), 10u);
    expectReleasedUpToTheLists(device);
    EXPECT_EQ(device->sectionsCount, 2u);
    EXPECT_NE(device->users, nullptr);

    device->sections = sections;
    EXPECT_EQ(freeDevice(device), 0u);
}

TEST(DeviceRelease, FreeStopsAtUsersWithoutACount)
{
    FlatDevice *device = fullDevice();
    device->usersCount = 0;
    EXPECT_EQ(freeDevice(device), 10u);
    expectReleasedUpToTheLists(device);
    EXPECT_EQ(device->sections, nullptr);
    EXPECT_EQ(device->sectionsCount, 0u);
    ASSERT_NE(device->users, nullptr);
    EXPECT_EQ(device->users[1].phone[0], u'p');

    device->usersCount = 2;
    EXPECT_EQ(freeDevice(device), 0u);
}

TEST(DeviceRelease, FreeStopsAtACountWithoutUsers)
{
    FlatDevice *device = fullDevice();
    FlatDeviceUser *users = device->users;
    device->users = nullptr;
    EXPECT_EQ(freeDevice(device), 10u);
    expectReleasedUpToTheLists(device);
    EXPECT_EQ(device->sections, nullptr);
    EXPECT_EQ(device->sectionsCount, 0u);
    EXPECT_EQ(device->usersCount, 2u);

    device->users = users;
    EXPECT_EQ(freeDevice(device), 0u);
}

TEST(DeviceRelease, FreeStopsAtZonesWithoutACountInASection)
{
    FlatDevice *device = fullDevice();
    device->sections[1].zonesCount = 0;
    EXPECT_EQ(freeDevice(device), 10u);
    expectReleasedUpToTheLists(device);
    ASSERT_NE(device->sections, nullptr);
    EXPECT_EQ(device->sectionsCount, 2u);
    const FlatSection &first = device->sections[0];
    EXPECT_EQ(first.name, nullptr);
    EXPECT_EQ(first.zones, nullptr);
    EXPECT_EQ(first.zonesCount, 0u);
    EXPECT_EQ(first.tracert, nullptr);
    EXPECT_EQ(first.uidType, nullptr);
    const FlatSection &second = device->sections[1];
    EXPECT_EQ(second.name, nullptr);
    EXPECT_EQ(second.scheduleId, nullptr);
    ASSERT_NE(second.zones, nullptr);
    EXPECT_EQ(second.zones[0].name[0], u'z');
    EXPECT_EQ(value(second.tracert), 2u);
    EXPECT_EQ(value(second.uidType), 9u);
    EXPECT_NE(device->users, nullptr);

    device->sections[1].zonesCount = 2;
    EXPECT_EQ(freeDevice(device), 0u);
}

TEST(DeviceRelease, FreeStopsAtACountWithoutZonesInASection)
{
    FlatDevice *device = fullDevice();
    FlatZone *zones = device->sections[0].zones;
    device->sections[0].zones = nullptr;
    EXPECT_EQ(freeDevice(device), 10u);
    expectReleasedUpToTheLists(device);
    EXPECT_EQ(device->sections[0].name, nullptr);
    EXPECT_EQ(device->sections[0].zonesCount, 2u);
    EXPECT_EQ(value(device->sections[0].tracert), 2u);
    EXPECT_NE(device->sections[1].name, nullptr);
    EXPECT_NE(device->users, nullptr);

    device->sections[0].zones = zones;
    EXPECT_EQ(freeDevice(device), 0u);
}

TEST(DeviceRelease, FreeTakesAnArray)
{
    FlatDevice *devices = zeroed<FlatDevice>(3);
    fill(devices[0], 1);
    fill(devices[2], 3);
    EXPECT_EQ(freeDevicesArray(devices, 3), 0u);
}

TEST(DeviceRelease, FreeArrayRefusesNullAndACountOf0)
{
    EXPECT_EQ(freeDevicesArray(nullptr, 3), 10u);
    EXPECT_EQ(freeDevicesArray(nullptr, 0), 10u);
    FlatDevice *device = fullDevice();
    EXPECT_EQ(freeDevicesArray(device, 0), 10u);
    EXPECT_EQ(value(device->account), 1u);
    EXPECT_EQ(device->sectionsCount, 2u);
    EXPECT_EQ(freeDevicesArray(device, 1), 0u);
}

TEST(DeviceRelease, FreeArrayStopsAtTheFirstBadDevice)
{
    FlatDevice *devices = zeroed<FlatDevice>(3);
    for (uint32_t index = 0; index < 3; ++index)
        fill(devices[index], index);
    devices[1].usersCount = 0;
    EXPECT_EQ(freeDevicesArray(devices, 3), 10u);
    EXPECT_EQ(devices[0].account, nullptr);
    EXPECT_EQ(devices[0].domain, nullptr);
    EXPECT_EQ(devices[0].configVersion, nullptr);
    EXPECT_EQ(devices[0].sections, nullptr);
    EXPECT_EQ(devices[0].sectionsCount, 0u);
    EXPECT_EQ(devices[0].users, nullptr);
    EXPECT_EQ(devices[0].usersCount, 0u);
    EXPECT_EQ(devices[0].isParted, nullptr);
    EXPECT_EQ(devices[0].clusterId, nullptr);
    EXPECT_EQ(devices[0].domainId, nullptr);
    expectReleasedUpToTheLists(&devices[1]);
    EXPECT_EQ(devices[1].sections, nullptr);
    EXPECT_NE(devices[1].users, nullptr);
    EXPECT_EQ(value(devices[2].account), 1u);
    EXPECT_EQ(devices[2].sectionsCount, 2u);
    EXPECT_EQ(utf8(devices[2].domain->name), "n");

    devices[1].usersCount = 2;
    EXPECT_EQ(freeDevicesArray(devices, 3), 0u);
}

TEST_F(Devices, FreeStopsAtABadCountInARecordOfTheStoreToo)
{
    ASSERT_EQ(add(tree), 0u);
    auto device = get(getDevice, 10);
    ASSERT_EQ(device.code, 0u);
    device->sectionsCount = 0;
    EXPECT_EQ(freeDevice(device.record.get()), 10u);
    EXPECT_EQ(device->account, nullptr);
    EXPECT_NE(device->sections, nullptr);
    EXPECT_NE(device->users, nullptr);
    device->sectionsCount = 2;
}

TEST_F(Devices, ADeviceOutlivesTheLibrary)
{
    ASSERT_EQ(add(tree), 0u);
    FlatDevice *device = nullptr;
    ASSERT_EQ(getDevice(&device, 10), 0u);
    library.reset();
    EXPECT_EQ(utf8(section(device, 1)->name), "a");
    EXPECT_EQ(freeDevice(device), 0u);
}

// ---- A larger park ----

std::string parkDevice(uint32_t id)
{
    const std::string number = std::to_string(id);
    std::string json = R"({"id":)" + number + R"(,"account":)" + std::to_string(100000 + id) + R"(,"config_version":)"
                     + std::to_string(id % 7) + R"(,"parted":)" + std::to_string(id % 2) + R"(,"sections":[)";
    for (uint32_t section = 1; section <= 8; ++section) {
        json += section > 1 ? "," : "";
        json += R"({"id":)" + std::to_string(section) + R"(,"name":"s)" + number + "." + std::to_string(section)
              + R"(","zones":[)";
        for (uint32_t zone = (section - 1) * 8 + 1; zone <= section * 8; ++zone) {
            json += zone > (section - 1) * 8 + 1 ? "," : "";
            json += R"({"id":)" + std::to_string(zone) + R"(,"name":"z)" + number + "." + std::to_string(zone)
                  + R"(","delay":)" + std::to_string(id + zone) + "}";
        }
        json += "]}";
    }
    json += R"(],"users":[)";
    for (uint32_t user = 1; user <= 4; ++user) {
        const std::string index = std::to_string(user);
        json += user > 1 ? "," : "";
        json += R"({"user_index":)" + index + R"(,"name":"u)" + number + "." + index + R"(","sections":[)" + index + ","
              + std::to_string(user + 1) + "," + std::to_string(user + 2) + "]}";
    }
    return json + "]}";
}

TEST_F(Devices, LargeParkGoesInAsOneDocumentAndComesBackWhole)
{
    std::string json = R"({"D":{"items":[)";
    for (uint32_t id = 1; id <= 2000; ++id) {
        json += id > 1 ? "," : "";
        json += parkDevice(id);
    }
    json += "]}}";
    ASSERT_EQ(send(addDevices, json), 0u);
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Devices"), 2000);
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Sections"), 16000);
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Zones"), 128000);
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM DeviceUsers"), 8000);
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM DeviceUserSectionLinks"), 24000);

    FlatDevice *devices = nullptr;
    uint32_t count = 0;
    ASSERT_EQ(getDevices(&devices, &count), 0u);
    ASSERT_EQ(count, 2000u);
    uint64_t ids = 0;
    uint32_t misshapen = 0;
    for (uint32_t index = 0; index < count; ++index) {
        const FlatDevice &device = devices[index];
        ids += device.id;
        bool whole = device.sectionsCount == 8 && device.usersCount == 4;
        for (uint32_t place = 0; whole && place < 8; ++place)
            whole = device.sections[place].zonesCount == 8;
        for (uint32_t place = 0; whole && place < 4; ++place)
            whole = device.users[place].sectionsCount == 3;
        misshapen += whole ? 0 : 1;
    }
    EXPECT_EQ(ids, 2001000u);
    EXPECT_EQ(misshapen, 0u);

    for (const uint32_t id : {1u, 777u, 2000u}) {
        const FlatDevice *device = nullptr;
        for (uint32_t index = 0; index < count; ++index)
            if (devices[index].id == id)
                device = &devices[index];
        ASSERT_NE(device, nullptr) << id;
        EXPECT_EQ(value(device->account), 100000 + id);
        EXPECT_EQ(value(device->configVersion), id % 7);
        EXPECT_EQ(value(device->isParted), id % 2);
        const std::string number = std::to_string(id);
        const FlatSection *eighth = section(device, 8);
        ASSERT_NE(eighth, nullptr) << id;
        EXPECT_EQ(utf8(eighth->name), "s" + number + ".8");
        const FlatZone *last = zone(eighth, 64);
        ASSERT_NE(last, nullptr) << id;
        EXPECT_EQ(utf8(last->name), "z" + number + ".64");
        EXPECT_EQ(value(last->delay), id + 64);
        EXPECT_EQ(zone(section(device, 1), 9), nullptr) << id;
        const FlatDeviceUser *fourth = user(device, 4);
        ASSERT_NE(fourth, nullptr) << id;
        EXPECT_EQ(utf8(fourth->name), "u" + number + ".4");
        uint32_t links = 0;
        for (uint32_t place = 0; place < fourth->sectionsCount; ++place)
            links |= 1u << fourth->sections[place];
        EXPECT_EQ(links, 0b1110000u);
    }
    EXPECT_EQ(freeDevicesArray(devices, count), 0u);
}

} // namespace
