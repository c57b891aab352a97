// Removal of devices, sections and zones with everything that hangs on them.
#include "Store.h"

#include <string>
#include <vector>

namespace {

using namespace brimlet::test;

using Lines = std::vector<std::string>;
using Rows = std::vector<Row>;

// Sections 1 and 2; zones 5 and 6 in section 1, zone 7 in section 2; user 4 of both sections, user 3 of section 1.
std::string tree(const std::string &id)
{
    return R"({"id":)" + id + R"(,"account":1,
        "sections":[{"id":1,"name":"a","zones":[{"id":5,"name":"b"},{"id":6}]},{"id":2,"zones":[{"id":7}]}],
        "users":[{"user_index":4,"name":"c","sections":[1,2]},{"user_index":3,"sections":[1]}]})";
}

class EquipmentRemoval : public StoreTest
{
protected:
    // Devices 10 and 11, alike but for their numbers.
    void addTrees() { ASSERT_EQ(send(addDevices, R"({"D":{"items":[)" + tree("10") + "," + tree("11") + "]}}"), 0u); }

    // Every row of the five tables.
    std::vector<Rows> equipment() const
    {
        return {file.rows("SELECT * FROM Devices ORDER BY 1"), file.rows("SELECT * FROM Sections ORDER BY 1, 2"),
                file.rows("SELECT * FROM Zones ORDER BY 1, 3"), file.rows("SELECT * FROM DeviceUsers ORDER BY 1, 2"),
                file.rows("SELECT * FROM DeviceUserSectionLinks ORDER BY 1, 2, 3")};
    }

    void expectDeviceStaysWhere(const std::string &table, const std::string &words)
    {
        addTrees();
        refuse("DELETE", table);
        const std::vector<Rows> before = equipment();
        DebugLines lines;
        EXPECT_EQ(send(deleteDevice, R"({"D":{"id":10}})"), 9u);
        EXPECT_TRUE(isFailure(lines.all(), words));
        EXPECT_EQ(equipment(), before);
    }

    void expectSectionStaysWhere(const std::string &table, const std::string &words)
    {
        addTrees();
        refuse("DELETE", table);
        const std::vector<Rows> before = equipment();
        DebugLines lines;
        EXPECT_EQ(send(deleteSection, R"({"D":{"device":10,"section":1}})"), 9u);
        EXPECT_TRUE(isFailure(lines.all(), words));
        EXPECT_EQ(equipment(), before);
    }
};

// ---- Devices ----

TEST_F(EquipmentRemoval, DeleteDeviceEmptiesAllFiveTables)
{
    ASSERT_EQ(send(addDevice, R"({"D":)" + tree("10") + "}"), 0u);
    DebugLines lines;
    EXPECT_EQ(send(deleteDevice, R"({"D":{"id":10}})"), 0u);
    EXPECT_EQ(lines.all(), Lines{});
    EXPECT_EQ(equipment(), std::vector<Rows>(5));
    EXPECT_EQ(get(getDevice, 10).code, 8u);
}

TEST_F(EquipmentRemoval, DeleteDeviceLeavesAnotherDeviceWithTheSameNumbers)
{
    ASSERT_EQ(send(addDevice, R"({"D":)" + tree("11") + "}"), 0u);
    const std::vector<Rows> expected = equipment();
    ASSERT_EQ(send(addDevice, R"({"D":)" + tree("10") + "}"), 0u);
    EXPECT_EQ(send(deleteDevice, R"({"D":{"id":10}})"), 0u);
    EXPECT_EQ(equipment(), expected);
}

TEST_F(EquipmentRemoval, DeleteDeviceTakesChildrenOfEarlierDocuments)
{
    ASSERT_EQ(send(addDevice, R"({"D":)" + tree("10") + "}"), 0u);
    ASSERT_EQ(send(addDevice, R"({"D":{"id":10}})"), 0u);
    EXPECT_EQ(send(deleteDevice, R"({"D":{"id":10}})"), 0u);
    EXPECT_EQ(equipment(), std::vector<Rows>(5));
}

TEST_F(EquipmentRemoval, DeleteDeviceTakesABareDevice)
{
    ASSERT_EQ(send(addDevice, R"({"D":{"id":10}})"), 0u);
    EXPECT_EQ(send(deleteDevice, R"({"D":{"id":10}})"), 0u);
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Devices"), 0);
}

TEST_F(EquipmentRemoval, DeleteDeviceTakesChildrenThatHangOnNoSection)
{
    ASSERT_EQ(send(addDevice, R"({"D":{"id":10,"users":[{"user_index":4,"sections":[9]}]}})"), 0u);
    ASSERT_EQ(update(updateZone, R"({"D":{"device":10,"section":8,"id":5}})").code, 11u);
    foreign("INSERT INTO DeviceUserSectionLinks VALUES (10, 77, 1)");
    EXPECT_EQ(send(deleteDevice, R"({"D":{"id":10}})"), 0u);
    EXPECT_EQ(equipment(), std::vector<Rows>(5));
}

TEST_F(EquipmentRemoval, DeleteDeviceReturns8ForAnUnknownId)
{
    addTrees();
    const std::vector<Rows> before = equipment();
    DebugLines lines;
    EXPECT_EQ(send(deleteDevice, R"({"D":{"id":12}})"), 8u);
    EXPECT_EQ(lines.all(), Lines{});
    EXPECT_EQ(equipment(), before);
}

TEST_F(EquipmentRemoval, DeleteDeviceReturns8TheSecondTime)
{
    addTrees();
    EXPECT_EQ(send(deleteDevice, R"({"D":{"id":10}})"), 0u);
    EXPECT_EQ(send(deleteDevice, R"({"D":{"id":10}})"), 8u);
}

TEST_F(EquipmentRemoval, DeleteDeviceLeavesEventsAndDomains)
{
    ASSERT_EQ(send(addDomains, R"({"D":{"items":[{"id":3}]}})"), 0u);
    ASSERT_EQ(send(addDevice, R"({"D":{"id":10,"domain":3,"sections":[{"id":1,"zones":[{"id":5}]}]}})"), 0u);
    ASSERT_EQ(update(addEvent, R"({"D":{"id":1,"time":100,"device":10,"section":1,"zone":5}})").code, 0u);
    EXPECT_EQ(send(deleteDevice, R"({"D":{"id":10}})"), 0u);
    EXPECT_EQ(file.rows("SELECT EventsId, EventsDeviceId, EventsSectionId, EventsZoneId FROM Events"),
              (Rows{Row{"1", "10", "1", "5"}}));
    EXPECT_EQ(get(getDomain, 3).code, 0u);
}

TEST_F(EquipmentRemoval, ADeviceThatComesAgainBringsItsRowsBack)
{
    ASSERT_EQ(send(addDevice, R"({"D":)" + tree("10") + "}"), 0u);
    const std::vector<Rows> before = equipment();
    ASSERT_EQ(send(deleteDevice, R"({"D":{"id":10}})"), 0u);
    ASSERT_EQ(send(addDevice, R"({"D":{"id":10}})"), 0u);
    EXPECT_EQ(get(getDevice, 10)->sectionsCount, 0u);
    ASSERT_EQ(send(addDevice, R"({"D":)" + tree("10") + "}"), 0u);
    EXPECT_EQ(equipment(), before);
}

// ---- Sections ----

TEST_F(EquipmentRemoval, DeleteSectionTakesItsZonesAndLinksAlone)
{
    addTrees();
    std::vector<Rows> expected = equipment();
    DebugLines lines;
    EXPECT_EQ(send(deleteSection, R"({"D":{"device":10,"section":1}})"), 0u);
    EXPECT_EQ(lines.all(), Lines{});
    const std::vector<Rows> after = equipment();
    EXPECT_EQ(after[0], expected[0]);
    EXPECT_EQ(file.rows("SELECT SectionsDeviceId, SectionsSectionId FROM Sections ORDER BY 1, 2"),
              (Rows{Row{"10", "2"}, Row{"11", "1"}, Row{"11", "2"}}));
    EXPECT_EQ(file.rows("SELECT ZonesDeviceId, ZonesSectionId, ZonesZoneId FROM Zones ORDER BY 1, 3"),
              (Rows{Row{"10", "2", "7"}, Row{"11", "1", "5"}, Row{"11", "1", "6"}, Row{"11", "2", "7"}}));
    EXPECT_EQ(after[3], expected[3]);
    EXPECT_EQ(after[4], (Rows{Row{"10", "4", "2"}, Row{"11", "3", "1"}, Row{"11", "4", "1"}, Row{"11", "4", "2"}}));
}

TEST_F(EquipmentRemoval, AUserStaysWhenItsLastLinkGoes)
{
    addTrees();
    ASSERT_EQ(send(deleteSection, R"({"D":{"device":10,"section":1}})"), 0u);
    const auto device = get(getDevice, 10);
    ASSERT_EQ(device.code, 0u);
    ASSERT_EQ(device->usersCount, 2u);
    for (uint32_t index = 0; index < 2; ++index) {
        const FlatDeviceUser &user = device->users[index];
        if (user.id == 3) {
            EXPECT_EQ(user.sections, nullptr);
            EXPECT_EQ(user.sectionsCount, 0u);
        } else {
            ASSERT_EQ(user.sectionsCount, 1u);
            EXPECT_EQ(user.sections[0], 2u);
        }
    }
}

TEST_F(EquipmentRemoval, DeleteSectionTellsDeviceAndSectionApart)
{
    ASSERT_EQ(send(addDevices, R"({"D":{"items":[{"id":10,"sections":[{"id":1}]},{"id":1,"sections":[{"id":10}]}]}})"),
              0u);
    EXPECT_EQ(send(deleteSection, R"({"D":{"device":10,"section":1}})"), 0u);
    EXPECT_EQ(file.rows("SELECT SectionsDeviceId, SectionsSectionId FROM Sections"), (Rows{Row{"1", "10"}}));
}

TEST_F(EquipmentRemoval, DeleteSectionReturns8ForASectionOfAnotherDeviceOnly)
{
    addTrees();
    ASSERT_EQ(send(addDevice, R"({"D":{"id":11,"sections":[{"id":3}]}})"), 0u);
    const std::vector<Rows> before = equipment();
    DebugLines lines;
    EXPECT_EQ(send(deleteSection, R"({"D":{"device":10,"section":3}})"), 8u);
    EXPECT_EQ(send(deleteSection, R"({"D":{"device":12,"section":1}})"), 8u);
    EXPECT_EQ(lines.all(), Lines{});
    EXPECT_EQ(equipment(), before);
}

TEST_F(EquipmentRemoval, DeleteSectionNeedsNoDevice)
{
    ASSERT_EQ(update(updateSection, R"({"D":{"device":12,"id":1}})").code, 11u);
    EXPECT_EQ(send(deleteSection, R"({"D":{"device":12,"section":1}})"), 0u);
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Sections"), 0);
}

TEST_F(EquipmentRemoval, AMovedZoneGoesWithItsNewSection)
{
    addTrees();
    ASSERT_EQ(update(updateZone, R"({"D":{"device":10,"section":2,"id":5}})").code, 0u);
    ASSERT_EQ(send(deleteSection, R"({"D":{"device":10,"section":1}})"), 0u);
    EXPECT_EQ(file.rows("SELECT ZonesZoneId FROM Zones WHERE ZonesDeviceId = 10 ORDER BY 1"),
              (Rows{Row{"5"}, Row{"7"}}));
    ASSERT_EQ(send(deleteSection, R"({"D":{"device":10,"section":2}})"), 0u);
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Zones WHERE ZonesDeviceId = 10"), 0);
}

// The zones go twice over: what the first removal brings back, here by a trigger, goes with the second.
TEST_F(EquipmentRemoval, DeleteSectionRemovesItsZonesTwice)
{
    addTrees();
    foreign("CREATE TRIGGER Again AFTER DELETE ON Zones WHEN OLD.ZonesName = 'b' BEGIN "
            "INSERT INTO Zones (ZonesDeviceId, ZonesSectionId, ZonesZoneId, ZonesName) "
            "VALUES (OLD.ZonesDeviceId, OLD.ZonesSectionId, OLD.ZonesZoneId, 'again'); END");
    EXPECT_EQ(send(deleteSection, R"({"D":{"device":10,"section":1}})"), 0u);
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Zones WHERE ZonesDeviceId = 10 AND ZonesSectionId = 1"), 0);
}

TEST_F(EquipmentRemoval, TheSecondRemovalOfTheZonesFailsUnderTheSameWords)
{
    addTrees();
    foreign("CREATE TRIGGER Again AFTER DELETE ON Zones WHEN OLD.ZonesName = 'b' BEGIN "
            "INSERT INTO Zones (ZonesDeviceId, ZonesSectionId, ZonesZoneId, ZonesName) "
            "VALUES (OLD.ZonesDeviceId, OLD.ZonesSectionId, OLD.ZonesZoneId, 'again'); END;"
            "CREATE TRIGGER Refuse BEFORE DELETE ON Zones WHEN OLD.ZonesName = 'again' "
            "BEGIN SELECT RAISE(ABORT, 'refused'); END");
    const std::vector<Rows> before = equipment();
    DebugLines lines;
    EXPECT_EQ(send(deleteSection, R"({"D":{"device":10,"section":1}})"), 9u);
    EXPECT_TRUE(isFailure(lines.all(), "delete zones for device section error"));
    EXPECT_EQ(equipment(), before);
}

// ---- Zones ----

TEST_F(EquipmentRemoval, DeleteZoneTakesOneRow)
{
    addTrees();
    std::vector<Rows> expected = equipment();
    DebugLines lines;
    EXPECT_EQ(send(deleteZone, R"({"D":{"device":10,"section":1,"zone":5}})"), 0u);
    EXPECT_EQ(lines.all(), Lines{});
    const std::vector<Rows> after = equipment();
    expected[2].erase(expected[2].begin());
    EXPECT_EQ(after, expected);
    EXPECT_EQ(get(getZone, 5, 10, 1).code, 8u);
    EXPECT_EQ(get(getZone, 5, 11, 1).code, 0u);
}

TEST_F(EquipmentRemoval, DeleteZoneTellsItsThreeNumbersApart)
{
    ASSERT_EQ(send(addDevices, R"({"D":{"items":[{"id":1,"sections":[{"id":2,"zones":[{"id":3}]}]},
                                                 {"id":2,"sections":[{"id":1,"zones":[{"id":3}]}]},
                                                 {"id":3,"sections":[{"id":2,"zones":[{"id":1}]}]},
                                                 {"id":2,"sections":[{"id":3,"zones":[{"id":1}]}]}]}})"),
              0u);
    EXPECT_EQ(send(deleteZone, R"({"D":{"device":1,"section":2,"zone":3}})"), 0u);
    EXPECT_EQ(file.rows("SELECT ZonesDeviceId, ZonesSectionId, ZonesZoneId FROM Zones ORDER BY 1, 3"),
              (Rows{Row{"2", "3", "1"}, Row{"2", "1", "3"}, Row{"3", "2", "1"}}));
}

TEST_F(EquipmentRemoval, DeleteZoneUnderAWrongSectionReturns8)
{
    addTrees();
    const std::vector<Rows> before = equipment();
    DebugLines lines;
    EXPECT_EQ(send(deleteZone, R"({"D":{"device":10,"section":2,"zone":5}})"), 8u);
    EXPECT_EQ(send(deleteZone, R"({"D":{"device":10,"section":1,"zone":7}})"), 8u);
    EXPECT_EQ(send(deleteZone, R"({"D":{"device":12,"section":1,"zone":5}})"), 8u);
    EXPECT_EQ(lines.all(), Lines{});
    EXPECT_EQ(equipment(), before);
}

TEST_F(EquipmentRemoval, DeleteZoneTakesAMovedZoneFromItsNewSection)
{
    addTrees();
    ASSERT_EQ(update(updateZone, R"({"D":{"device":10,"section":2,"id":5}})").code, 0u);
    EXPECT_EQ(send(deleteZone, R"({"D":{"device":10,"section":1,"zone":5}})"), 8u);
    EXPECT_EQ(send(deleteZone, R"({"D":{"device":10,"section":2,"zone":5}})"), 0u);
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Zones WHERE ZonesDeviceId = 10 AND ZonesZoneId = 5"), 0);
}

// ---- Orphans ----

TEST_F(EquipmentRemoval, DeleteDeviceDoesNotReachChildrenWithoutTheirDevice)
{
    ASSERT_EQ(update(updateSection, R"({"D":{"device":10,"id":1}})").code, 11u);
    ASSERT_EQ(update(updateZone, R"({"D":{"device":10,"section":1,"id":5}})").code, 11u);
    foreign("INSERT INTO DeviceUsers (DeviceUsersDeviceId, DeviceUsersDeviceUserId) VALUES (10, 4);"
            "INSERT INTO DeviceUserSectionLinks VALUES (10, 4, 1)");
    const std::vector<Rows> before = equipment();
    EXPECT_EQ(send(deleteDevice, R"({"D":{"id":10}})"), 8u);
    EXPECT_EQ(equipment(), before);
    EXPECT_EQ(before[2].size(), 1u);
}

TEST_F(EquipmentRemoval, DeleteDeviceReachesThemOnceTheDeviceIsAdded)
{
    ASSERT_EQ(update(updateSection, R"({"D":{"device":10,"id":1}})").code, 11u);
    ASSERT_EQ(update(updateZone, R"({"D":{"device":10,"section":1,"id":5}})").code, 11u);
    ASSERT_EQ(send(addDevice, R"({"D":{"id":10}})"), 0u);
    EXPECT_EQ(send(deleteDevice, R"({"D":{"id":10}})"), 0u);
    EXPECT_EQ(equipment(), std::vector<Rows>(5));
}

TEST_F(EquipmentRemoval, DeleteSectionDoesNotReachZonesAndLinksWithoutTheirSection)
{
    ASSERT_EQ(send(addDevice, R"({"D":{"id":10,"users":[{"user_index":4,"sections":[9]}]}})"), 0u);
    ASSERT_EQ(update(updateZone, R"({"D":{"device":10,"section":9,"id":5}})").code, 11u);
    EXPECT_EQ(send(deleteSection, R"({"D":{"device":10,"section":9}})"), 8u);
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Zones"), 1);
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM DeviceUserSectionLinks"), 1);
}

TEST_F(EquipmentRemoval, DeleteZoneReachesAnOrphan)
{
    ASSERT_EQ(update(updateZone, R"({"D":{"device":10,"section":9,"id":5}})").code, 11u);
    EXPECT_EQ(send(deleteZone, R"({"D":{"device":10,"section":9,"zone":5}})"), 0u);
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Zones"), 0);
}

TEST_F(EquipmentRemoval, ClearingReachesEveryOrphan)
{
    ASSERT_EQ(update(updateSection, R"({"D":{"device":10,"id":1}})").code, 11u);
    ASSERT_EQ(update(updateZone, R"({"D":{"device":10,"section":9,"id":5}})").code, 11u);
    foreign("INSERT INTO DeviceUserSectionLinks VALUES (10, 4, 1)");
    EXPECT_EQ(clearAllExceptEvents(), 0u);
    EXPECT_EQ(equipment(), std::vector<Rows>(5));
}

// ---- Documents ----

TEST_F(EquipmentRemoval, ABrokenTextReturns10)
{
    addTrees();
    const std::vector<Rows> before = equipment();
    for (const char *text : {"", "not json", "[10]", "10", R"({"D":{"id":10,"device":10,"section":1,"zone":5})"}) {
        EXPECT_EQ(send(deleteDevice, text), 10u) << text;
        EXPECT_EQ(send(deleteSection, text), 10u) << text;
        EXPECT_EQ(send(deleteZone, text), 10u) << text;
    }
    EXPECT_EQ(equipment(), before);
}

TEST_F(EquipmentRemoval, AMissingEnvelopeReturns5)
{
    addTrees();
    const std::vector<Rows> before = equipment();
    for (const char *text : {"{}", R"({"id":10,"device":10,"section":1,"zone":5})", R"({"D":[{"id":10}]})",
                             R"({"D":10})", R"({"D":null})"}) {
        EXPECT_EQ(send(deleteDevice, text), 5u) << text;
        EXPECT_EQ(send(deleteSection, text), 5u) << text;
        EXPECT_EQ(send(deleteZone, text), 5u) << text;
    }
    EXPECT_EQ(equipment(), before);
}

TEST_F(EquipmentRemoval, AMissingKeyReturns5)
{
    addTrees();
    const std::vector<Rows> before = equipment();
    for (const char *text : {R"({"D":{}})", R"({"D":{"device":10}})", R"({"D":{"ID":10}})"})
        EXPECT_EQ(send(deleteDevice, text), 5u) << text;
    for (const char *text : {R"({"D":{}})", R"({"D":{"section":1}})", R"({"D":{"device":10}})",
                             R"({"D":{"device":10,"id":1}})", R"({"D":{"id":10,"section":1}})"})
        EXPECT_EQ(send(deleteSection, text), 5u) << text;
    for (const char *text : {R"({"D":{}})", R"({"D":{"section":1,"zone":5}})", R"({"D":{"device":10,"zone":5}})",
                             R"({"D":{"device":10,"section":1}})", R"({"D":{"device":10,"section":1,"id":5}})"})
        EXPECT_EQ(send(deleteZone, text), 5u) << text;
    EXPECT_EQ(equipment(), before);
}

TEST_F(EquipmentRemoval, ARefusedDocumentLogsNothingAndNeedsNoStore)
{
    library.reset();
    DebugLines lines;
    EXPECT_EQ(send(deleteDevice, "not json"), 10u);
    EXPECT_EQ(send(deleteSection, R"({"D":{"section":1}})"), 5u);
    EXPECT_EQ(send(deleteZone, "{}"), 5u);
    EXPECT_EQ(lines.all(), Lines{});
}

TEST_F(EquipmentRemoval, AValueOfAWrongTypeReadsAs0)
{
    addTrees();
    const std::vector<Rows> before = equipment();
    for (const char *wrong : {R"("x")", R"("10")", "null", "true", "[10]", "{}"}) {
        const std::string text(wrong);
        EXPECT_EQ(send(deleteDevice, R"({"D":{"id":)" + text + "}}"), 8u) << wrong;
        EXPECT_EQ(send(deleteSection, R"({"D":{"device":)" + text + R"(,"section":1}})"), 8u) << wrong;
        EXPECT_EQ(send(deleteSection, R"({"D":{"device":10,"section":)" + text + "}}"), 8u) << wrong;
        EXPECT_EQ(send(deleteZone, R"({"D":{"device":)" + text + R"(,"section":1,"zone":5}})"), 8u) << wrong;
        EXPECT_EQ(send(deleteZone, R"({"D":{"device":10,"section":)" + text + R"(,"zone":5}})"), 8u) << wrong;
        EXPECT_EQ(send(deleteZone, R"({"D":{"device":10,"section":1,"zone":)" + text + "}}"), 8u) << wrong;
    }
    EXPECT_EQ(equipment(), before);
}

TEST_F(EquipmentRemoval, AValueOfAWrongTypeRemovesWhatIsNumbered0)
{
    const char *const numbered0 = R"({"D":{"id":0,"sections":[{"id":0,"zones":[{"id":0}]}]}})";
    ASSERT_EQ(send(addDevice, numbered0), 0u);
    EXPECT_EQ(send(deleteZone, R"({"D":{"device":"x","section":null,"zone":true}})"), 0u);
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Zones"), 0);
    EXPECT_EQ(send(deleteSection, R"({"D":{"device":"x","section":[]}})"), 0u);
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Sections"), 0);
    EXPECT_EQ(send(deleteDevice, R"({"D":{"id":"x"}})"), 0u);
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Devices"), 0);
}

TEST_F(EquipmentRemoval, NumbersDropTheirFractionAndKeepTheLow32Bits)
{
    ASSERT_EQ(send(addDevice, R"({"D":{"id":4294967295,"sections":[{"id":1,"zones":[{"id":5}]},{"id":2}]}})"), 0u);
    EXPECT_EQ(send(deleteZone, R"({"D":{"device":-1,"section":1.9,"zone":4294967301}})"), 0u);
    EXPECT_EQ(send(deleteSection, R"({"D":{"device":-1,"section":2.5}})"), 0u);
    EXPECT_EQ(file.rows("SELECT SectionsSectionId FROM Sections"), (Rows{Row{"1"}}));
    EXPECT_EQ(send(deleteDevice, R"({"D":{"id":-1}})"), 0u);
    EXPECT_EQ(equipment(), std::vector<Rows>(5));
}

TEST_F(EquipmentRemoval, OtherMembersAreIgnored)
{
    addTrees();
    EXPECT_EQ(send(deleteZone, R"({"D":{"device":10,"section":1,"zone":5,"id":"x","name":5}})"), 0u);
    EXPECT_EQ(send(deleteSection, R"({"D":{"device":10,"section":1,"zone":6,"id":2}})"), 0u);
    EXPECT_EQ(send(deleteDevice, R"({"D":{"id":10,"device":11}})"), 0u);
    EXPECT_EQ(file.rows("SELECT DevicesId FROM Devices"), (Rows{Row{"11"}}));
}

// ---- Failures ----

TEST_F(EquipmentRemoval, DeleteDeviceIsUndoneIfTheDeviceStays)
{
    expectDeviceStaysWhere("Devices", "delete device error");
}

TEST_F(EquipmentRemoval, DeleteDeviceIsUndoneIfASectionStays)
{
    expectDeviceStaysWhere("Sections", "delete sections for device error");
}

TEST_F(EquipmentRemoval, DeleteDeviceIsUndoneIfAZoneStays)
{
    expectDeviceStaysWhere("Zones", "delete zones for device error");
}

TEST_F(EquipmentRemoval, DeleteDeviceIsUndoneIfAUserStays)
{
    expectDeviceStaysWhere("DeviceUsers", "delete DeviceUsers for device error");
}

TEST_F(EquipmentRemoval, DeleteDeviceIsUndoneIfALinkStays)
{
    expectDeviceStaysWhere("DeviceUserSectionLinks", "delete DeviceUserSectionLinks for device error");
}

TEST_F(EquipmentRemoval, DeleteDeviceReturns7WhenTheTreeCannotBeRead)
{
    addTrees();
    const std::pair<const char *, const char *> tables[] = {{"DeviceUserSectionLinks", "get device user links error"},
                                                            {"DeviceUsers", "get device users error"},
                                                            {"Sections", "get sections for device error"},
                                                            {"Domains", "get device error"}};
    for (const auto &[table, words] : tables) {
        foreign(std::string("DROP TABLE ") + table);
        DebugLines lines;
        EXPECT_EQ(send(deleteDevice, R"({"D":{"id":10}})"), 7u) << table;
        EXPECT_TRUE(isFailure(lines.all(), words));
        EXPECT_EQ(file.number("SELECT COUNT(*) FROM Devices"), 2) << table;
        EXPECT_EQ(file.number("SELECT COUNT(*) FROM Zones"), 6) << table;
    }
}

TEST_F(EquipmentRemoval, DeleteDeviceWithoutTheLinksTableFailsAtItsLastStep)
{
    ASSERT_EQ(send(addDevice, R"({"D":{"id":10,"sections":[{"id":1,"zones":[{"id":5}]}]}})"), 0u);
    foreign("DROP TABLE DeviceUserSectionLinks");
    DebugLines lines;
    EXPECT_EQ(send(deleteDevice, R"({"D":{"id":10}})"), 9u);
    EXPECT_TRUE(isFailure(lines.all(), "delete DeviceUserSectionLinks for device error"));
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Devices"), 1);
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Sections"), 1);
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Zones"), 1);
}

TEST_F(EquipmentRemoval, DeleteDeviceWithoutTheZonesTablePassesItsReadAndFails)
{
    ASSERT_EQ(send(addDevice, R"({"D":{"id":10,"sections":[{"id":1}],"users":[{"user_index":4,"sections":[1]}]}})"),
              0u);
    foreign("DROP TABLE Zones");
    DebugLines lines;
    EXPECT_EQ(send(deleteDevice, R"({"D":{"id":10}})"), 9u);
    EXPECT_EQ(lines.allWithErrorsAt({1, 3, 5, 7}),
              (Lines{"execute error", "*", "get zones for device section error", "*", "execute error", "*",
                     "delete zones for device error", "*"}));
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Devices"), 1);
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Sections"), 1);
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM DeviceUserSectionLinks"), 1);
}

TEST_F(EquipmentRemoval, DeleteSectionIsUndoneIfTheSectionStays)
{
    expectSectionStaysWhere("Sections", "delete device section error");
}

TEST_F(EquipmentRemoval, DeleteSectionIsUndoneIfAZoneStays)
{
    expectSectionStaysWhere("Zones", "delete zones for device section error");
}

TEST_F(EquipmentRemoval, DeleteSectionIsUndoneIfALinkStays)
{
    expectSectionStaysWhere("DeviceUserSectionLinks", "delete deviceUser-section link for device section error");
}

TEST_F(EquipmentRemoval, DeleteSectionReturns7WhenTheSectionCannotBeRead)
{
    addTrees();
    foreign("DROP TABLE Sections");
    DebugLines lines;
    EXPECT_EQ(send(deleteSection, R"({"D":{"device":10,"section":1}})"), 7u);
    EXPECT_TRUE(isFailure(lines.all(), "get sections for device by id error"));
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Zones"), 6);
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM DeviceUserSectionLinks"), 6);
}

TEST_F(EquipmentRemoval, DeleteSectionWithoutTheZonesTablePassesItsReadAndFails)
{
    addTrees();
    foreign("DROP TABLE Zones");
    DebugLines lines;
    EXPECT_EQ(send(deleteSection, R"({"D":{"device":10,"section":1}})"), 9u);
    EXPECT_EQ(lines.allWithErrorsAt({1, 3, 5, 7}),
              (Lines{"execute error", "*", "get zones for device section error", "*", "execute error", "*",
                     "delete zones for device section error", "*"}));
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Sections"), 4);
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM DeviceUserSectionLinks"), 6);
}

TEST_F(EquipmentRemoval, DeleteSectionWithoutTheLinksTableFailsAtItsLastStep)
{
    addTrees();
    foreign("DROP TABLE DeviceUserSectionLinks");
    DebugLines lines;
    EXPECT_EQ(send(deleteSection, R"({"D":{"device":10,"section":1}})"), 9u);
    EXPECT_TRUE(isFailure(lines.all(), "delete deviceUser-section link for device section error"));
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Sections"), 4);
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Zones"), 6);
}

TEST_F(EquipmentRemoval, DeleteZoneReturns7WhenTheZoneCannotBeRead)
{
    addTrees();
    foreign("DROP TABLE Zones");
    DebugLines lines;
    EXPECT_EQ(send(deleteZone, R"({"D":{"device":10,"section":1,"zone":5}})"), 7u);
    EXPECT_TRUE(isFailure(lines.all(), "get zones for device section by id error"));
}

TEST_F(EquipmentRemoval, DeleteZoneReturns9IfTheZoneStays)
{
    addTrees();
    refuse("DELETE", "Zones");
    const std::vector<Rows> before = equipment();
    DebugLines lines;
    EXPECT_EQ(send(deleteZone, R"({"D":{"device":10,"section":1,"zone":5}})"), 9u);
    EXPECT_TRUE(isFailure(lines.all(), "delete zone error"));
    EXPECT_EQ(equipment(), before);
}

TEST_F(EquipmentRemoval, TheStoreWorksOnAfterAFailedRemoval)
{
    addTrees();
    refuse("DELETE", "DeviceUserSectionLinks");
    ASSERT_EQ(send(deleteDevice, R"({"D":{"id":10}})"), 9u);
    foreign("DROP TRIGGER RefuseDELETEDeviceUserSectionLinks");
    EXPECT_EQ(send(deleteDevice, R"({"D":{"id":10}})"), 0u);
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Zones"), 3);
}

} // namespace
