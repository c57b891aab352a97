#include "Store.h"

using namespace brimlet::test;

namespace {

// A number of a zone by its JSON key and its flat field. In the order of the columns.
struct NumberField
{
    const char *key;
    uint32_t *FlatZone::*field;
};

const NumberField numberFields[] = {
    {"detector", &FlatZone::detector}, {"physic", &FlatZone::physic},    {"form", &FlatZone::form},
    {"flags", &FlatZone::flags},       {"delay", &FlatZone::delay},      {"schedule_id", &FlatZone::scheduleId},
    {"tracert", &FlatZone::tracert},   {"uid_type", &FlatZone::uidType}, {"arm", &FlatZone::arm},
};

const char *const columnNames[] = {"ZonesDeviceId", "ZonesSectionId", "ZonesZoneId", "ZonesName",  "ZonesDetector",
                                   "ZonesPhysic",   "ZonesForm",      "ZonesFlags",  "ZonesDelay", "ZonesScheduleId",
                                   "ZonesTracert",  "ZonesUidType",   "ZonesArm"};

// Every field of zone 5 with a different value, in a document and as stored in the file.
const char *const fullMembers = R"("name":"Door","detector":21,"physic":22,"form":23,"flags":24,"delay":25,)"
                                R"("schedule_id":26,"tracert":27,"uid_type":28,"arm":29)";
const Row fullRow{"10", "1", "5", "Door", "21", "22", "23", "24", "25", "26", "27", "28", "29"};
const std::optional<std::string> none;
const Row bareRow{"10", "1", "5", none, none, none, none, none, none, none, none, none, none};

const char *const wrongNumbers[] = {R"("5")", "true", "null", "[]", "{}"};
const char *const wrongTexts[] = {"5", "true", "null", "[]", "{}"};

// The update of zone 5 of device 10 under a section, with further members after the three ids.
std::string zoneUpdate(const std::string &members = "", int section = 1)
{
    return R"({"D":{"device":10,"section":)" + std::to_string(section) + R"(,"id":5)"
         + (members.empty() ? members : "," + members) + "}}";
}

// The document of device 10 with the given elements in the zones of its section 1.
std::string deviceWith(const std::string &zones)
{
    return R"({"D":{"id":10,"sections":[{"id":1,"zones":[)" + zones + "]}]}}";
}

std::string full()
{
    return R"({"id":5,)" + std::string(fullMembers) + "}";
}

std::string joined(const char *prefix, const char *suffix)
{
    std::string list;
    for (const char *name : columnNames)
        list += (list.empty() ? "" : ",") + (prefix + std::string(name) + suffix);
    return list;
}

void expectFullFields(const FlatZone &zone)
{
    EXPECT_EQ(utf8(zone.name), "Door");
    EXPECT_EQ(value(zone.detector), 21u);
    EXPECT_EQ(value(zone.physic), 22u);
    EXPECT_EQ(value(zone.form), 23u);
    EXPECT_EQ(value(zone.flags), 24u);
    EXPECT_EQ(value(zone.delay), 25u);
    EXPECT_EQ(value(zone.scheduleId), 26u);
    EXPECT_EQ(value(zone.tracert), 27u);
    EXPECT_EQ(value(zone.uidType), 28u);
    EXPECT_EQ(value(zone.arm), 29u);
}

void expectNoFields(const FlatZone &zone)
{
    EXPECT_EQ(zone.name, nullptr);
    for (const NumberField &number : numberFields)
        EXPECT_EQ(zone.*number.field, nullptr) << number.key;
}

class Zones : public StoreTest
{
protected:
    std::vector<Row> rows() const { return file.rows("SELECT " + joined("", "") + " FROM Zones"); }

    int64_t count(const std::string &table) const { return file.number("SELECT count(*) FROM " + table); }

    // Device 10 with the sections 1 and 2 and no zone.
    void addParents() { ASSERT_EQ(send(addDevice, R"({"D":{"id":10,"sections":[{"id":1},{"id":2}]}})"), 0u); }
};

// ---- From a device document ----

TEST_F(Zones, DocumentFillsEveryColumn)
{
    ASSERT_EQ(send(addDevice, deviceWith(full())), 0u);
    EXPECT_EQ(rows(), std::vector<Row>{fullRow});
    EXPECT_EQ(file.rows("SELECT " + joined("typeof(", ")") + " FROM Zones"),
              (std::vector<Row>{Row{"integer", "integer", "integer", "text", "integer", "integer", "integer", "integer",
                                    "integer", "integer", "integer", "integer", "integer"}}));
}

TEST_F(Zones, DocumentLeavesNullForWhatItOmits)
{
    ASSERT_EQ(send(addDevice, deviceWith(R"({"id":5})")), 0u);
    EXPECT_EQ(rows(), std::vector<Row>{bareRow});
}

TEST_F(Zones, DocumentReplacesTheWholeRow)
{
    ASSERT_EQ(send(addDevice, deviceWith(full())), 0u);
    ASSERT_EQ(send(addDevice, deviceWith(R"({"id":5})")), 0u);
    EXPECT_EQ(rows(), std::vector<Row>{bareRow});
}

TEST_F(Zones, DocumentKeepsTheZonesThatItOmits)
{
    ASSERT_EQ(send(addDevice, deviceWith(R"({"id":5,"name":"a"},{"id":6,"name":"b"})")), 0u);
    ASSERT_EQ(send(addDevice, deviceWith(R"({"id":6,"name":"c"})")), 0u);
    EXPECT_EQ(file.rows("SELECT ZonesZoneId,ZonesName FROM Zones ORDER BY ZonesZoneId"),
              (std::vector<Row>{Row{"5", "a"}, Row{"6", "c"}}));
}

TEST_F(Zones, DocumentWithOneNumberInTwoSectionsLeavesTheLater)
{
    ASSERT_EQ(send(addDevice, R"({"D":{"id":10,"sections":[{"id":2,"zones":[{"id":5,"name":"a","flags":3}]},)"
                              R"({"id":1,"zones":[{"id":5,"name":"b"}]}]}})"),
              0u);
    EXPECT_EQ(file.rows("SELECT ZonesSectionId,ZonesZoneId,ZonesName,ZonesFlags FROM Zones"),
              (std::vector<Row>{Row{"1", "5", "b", none}}));
}

TEST_F(Zones, DocumentThatMovesAZoneReplacesItWhole)
{
    ASSERT_EQ(send(addDevice, deviceWith(full())), 0u);
    ASSERT_EQ(send(addDevice, R"({"D":{"id":10,"sections":[{"id":2,"zones":[{"id":5}]}]}})"), 0u);
    Row expected = bareRow;
    expected[1] = "2";
    EXPECT_EQ(rows(), std::vector<Row>{expected});
    EXPECT_EQ(list(getZonesForSection, 10, 1).code, 8u);
}

TEST_F(Zones, DocumentMayUseOneNumberInTwoDevices)
{
    ASSERT_EQ(send(addDevices, R"({"D":{"items":[{"id":10,"sections":[{"id":1,"zones":[{"id":5,"name":"a"}]}]},)"
                               R"({"id":11,"sections":[{"id":1,"zones":[{"id":5,"name":"b"}]}]}]}})"),
              0u);
    EXPECT_EQ(file.rows("SELECT ZonesDeviceId,ZonesName FROM Zones ORDER BY ZonesDeviceId"),
              (std::vector<Row>{Row{"10", "a"}, Row{"11", "b"}}));
}

TEST_F(Zones, DocumentTakesDeviceAndSectionFromTheTreeAlone)
{
    ASSERT_EQ(send(addDevice, deviceWith(R"({"device":99,"section":98,"id":5},{"device":"x","section":null,"id":6})")),
              0u);
    EXPECT_EQ(file.rows("SELECT ZonesDeviceId,ZonesSectionId,ZonesZoneId FROM Zones ORDER BY ZonesZoneId"),
              (std::vector<Row>{Row{"10", "1", "5"}, Row{"10", "1", "6"}}));
}

TEST_F(Zones, DocumentTakesZoneForAMissingId)
{
    ASSERT_EQ(send(addDevice, deviceWith(R"({"zone":7,"name":"a"})")), 0u);
    EXPECT_EQ(file.rows("SELECT ZonesZoneId,ZonesName FROM Zones"), (std::vector<Row>{Row{"7", "a"}}));
}

TEST_F(Zones, DocumentPrefersIdToZone)
{
    ASSERT_EQ(send(addDevice, deviceWith(R"({"zone":7,"id":5},{"zone":"x","id":6})")), 0u);
    EXPECT_EQ(file.rows("SELECT ZonesZoneId FROM Zones ORDER BY ZonesZoneId"), (std::vector<Row>{Row{"5"}, Row{"6"}}));
}

TEST_F(Zones, DocumentWithAWrongTypeIsIncomplete)
{
    const DebugLines lines;
    for (const NumberField &number : numberFields)
        for (const char *wrong : wrongNumbers)
            EXPECT_EQ(send(addDevice, deviceWith(R"({"id":5,")" + std::string(number.key) + "\":" + wrong + "}")), 5u)
                << number.key << " " << wrong;
    for (const char *wrong : wrongTexts)
        EXPECT_EQ(send(addDevice, deviceWith(std::string(R"({"id":5,"name":)") + wrong + "}")), 5u) << wrong;
    for (const char *wrong : wrongNumbers) {
        EXPECT_EQ(send(addDevice, deviceWith(std::string(R"({"id":)") + wrong + "}")), 5u) << wrong;
        EXPECT_EQ(send(addDevice, deviceWith(std::string(R"({"zone":)") + wrong + "}")), 5u) << wrong;
        EXPECT_EQ(send(addDevice, deviceWith(std::string(R"({"zone":5,"id":)") + wrong + "}")), 5u) << wrong;
    }
    EXPECT_EQ(send(addDevice, deviceWith(R"({"name":"a"})")), 5u);
    EXPECT_EQ(send(addDevice, deviceWith(R"({"section":5})")), 5u);
    EXPECT_EQ(count("Devices"), 0);
    EXPECT_EQ(count("Zones"), 0);
    EXPECT_EQ(lines.all(), std::vector<std::string>{});
}

TEST_F(Zones, DocumentWhoseZonesFailLeavesNoDevice)
{
    refuse("INSERT", "Zones");
    const DebugLines lines;
    EXPECT_EQ(send(addDevice, deviceWith(R"({"id":5})")), 9u);
    EXPECT_TRUE(isBatchFailure(lines.all(), "add zones error"));
    EXPECT_EQ(count("Devices"), 0);
    EXPECT_EQ(count("Sections"), 0);
}

// ---- Update: what is written ----

TEST_F(Zones, UpdateOfANewZoneFillsEveryColumn)
{
    addParents();
    const auto zone = update(updateZone, zoneUpdate(fullMembers));
    ASSERT_EQ(zone.code, 0u);
    EXPECT_EQ(zone->id, 5u);
    expectFullFields(*zone.record);
    EXPECT_EQ(rows(), std::vector<Row>{fullRow});
    EXPECT_EQ(file.rows("SELECT " + joined("typeof(", ")") + " FROM Zones"),
              (std::vector<Row>{Row{"integer", "integer", "integer", "text", "integer", "integer", "integer", "integer",
                                    "integer", "integer", "integer", "integer", "integer"}}));
}

TEST_F(Zones, UpdateOfANewZoneLeavesNullForWhatItOmits)
{
    addParents();
    const auto zone = update(updateZone, zoneUpdate());
    ASSERT_EQ(zone.code, 0u);
    EXPECT_EQ(zone->id, 5u);
    expectNoFields(*zone.record);
    EXPECT_EQ(rows(), std::vector<Row>{bareRow});
}

TEST_F(Zones, UpdateWithTheIdsAloneChangesNothing)
{
    ASSERT_EQ(send(addDevice, deviceWith(full())), 0u);
    const auto zone = update(updateZone, zoneUpdate());
    ASSERT_EQ(zone.code, 0u);
    EXPECT_EQ(zone->id, 5u);
    expectFullFields(*zone.record);
    EXPECT_EQ(rows(), std::vector<Row>{fullRow});
}

TEST_F(Zones, UpdateChangesTheOneNumberThatItHolds)
{
    ASSERT_EQ(send(addDevice, deviceWith(full())), 0u);
    Row expected = fullRow;
    uint32_t next = 500;
    size_t column = 4;
    for (const NumberField &number : numberFields) {
        SCOPED_TRACE(number.key);
        const auto zone =
            update(updateZone, zoneUpdate("\"" + std::string(number.key) + "\":" + std::to_string(++next)));
        ASSERT_EQ(zone.code, 0u);
        EXPECT_EQ(value(zone.record.get()->*number.field), next);
        expected[column++] = std::to_string(next);
        EXPECT_EQ(rows(), std::vector<Row>{expected});
    }
}

TEST_F(Zones, UpdateChangesTheNameAlone)
{
    ASSERT_EQ(send(addDevice, deviceWith(full())), 0u);
    const auto zone = update(updateZone, zoneUpdate(R"("name":"Gate")"));
    ASSERT_EQ(zone.code, 0u);
    EXPECT_EQ(utf8(zone->name), "Gate");
    EXPECT_EQ(value(zone->arm), 29u);
    Row expected = fullRow;
    expected[3] = "Gate";
    EXPECT_EQ(rows(), std::vector<Row>{expected});
}

TEST_F(Zones, UpdateOfANewZoneFillsTheOneNumberThatItHolds)
{
    addParents();
    size_t column = 4;
    for (const NumberField &number : numberFields) {
        SCOPED_TRACE(number.key);
        foreign("DELETE FROM Zones");
        ASSERT_EQ(update(updateZone, zoneUpdate("\"" + std::string(number.key) + "\":12")).code, 0u);
        Row expected = bareRow;
        expected[column++] = "12";
        EXPECT_EQ(rows(), std::vector<Row>{expected});
    }
}

TEST_F(Zones, UpdateStoresZero)
{
    ASSERT_EQ(send(addDevice, deviceWith(full())), 0u);
    const auto zone = update(updateZone, zoneUpdate(R"("delay":0)"));
    ASSERT_EQ(zone.code, 0u);
    EXPECT_EQ(value(zone->delay), 0u);
    EXPECT_EQ(file.value("SELECT ZonesDelay FROM Zones"), "0");
}

TEST_F(Zones, UpdateStoresAnEmptyName)
{
    ASSERT_EQ(send(addDevice, deviceWith(full())), 0u);
    const auto zone = update(updateZone, zoneUpdate(R"("name":"")"));
    ASSERT_EQ(zone.code, 0u);
    EXPECT_EQ(utf8(zone->name), "");
    EXPECT_EQ(file.value("SELECT typeof(ZonesName) FROM Zones"), "text");
    EXPECT_EQ(file.value("SELECT ZonesName FROM Zones"), "");
}

TEST_F(Zones, UpdateKeepsTheLowBitsOfANumber)
{
    addParents();
    const auto zone =
        update(updateZone, zoneUpdate(R"("tracert":3.9,"flags":-1,"arm":4294967296,"form":5000000000,"delay":-0.5)"));
    ASSERT_EQ(zone.code, 0u);
    EXPECT_EQ(value(zone->tracert), 3u);
    EXPECT_EQ(value(zone->flags), 4294967295u);
    EXPECT_EQ(value(zone->arm), 0u);
    EXPECT_EQ(value(zone->form), 705032704u);
    EXPECT_EQ(value(zone->delay), 0u);
    EXPECT_EQ(file.value("SELECT ZonesFlags FROM Zones"), "4294967295");
}

TEST_F(Zones, UpdateStoresANameOfAnyScript)
{
    addParents();
    const auto zone = update(updateZone, zoneUpdate(R"("name":"Дверь 'é' 😀")"));
    ASSERT_EQ(zone.code, 0u);
    EXPECT_EQ(utf8(zone->name), "Дверь 'é' 😀");
    EXPECT_EQ(file.value("SELECT ZonesName FROM Zones"), "Дверь 'é' 😀");
}

TEST_F(Zones, UpdateLeavesTheSameNumberOfAnotherDeviceAlone)
{
    ASSERT_EQ(send(addDevices, R"({"D":{"items":[)"
                               R"({"id":10,"sections":[{"id":1,"zones":[{"id":5,"name":"a"},{"id":6,"name":"b"}]}]},)"
                               R"({"id":11,"sections":[{"id":1,"zones":[{"id":5,"name":"c"}]}]}]}})"),
              0u);
    ASSERT_EQ(update(updateZone, zoneUpdate(R"("name":"z")")).code, 0u);
    EXPECT_EQ(file.rows("SELECT ZonesDeviceId,ZonesZoneId,ZonesName FROM Zones ORDER BY ZonesDeviceId,ZonesZoneId"),
              (std::vector<Row>{Row{"10", "5", "z"}, Row{"10", "6", "b"}, Row{"11", "5", "c"}}));
}

TEST_F(Zones, UpdateKeepsTheRowInItsPlace)
{
    ASSERT_EQ(send(addDevice, deviceWith(R"({"id":5},{"id":6})")), 0u);
    const auto before = file.value("SELECT rowid FROM Zones WHERE ZonesZoneId=5");
    ASSERT_EQ(update(updateZone, zoneUpdate(R"("name":"x")")).code, 0u);
    EXPECT_EQ(file.value("SELECT rowid FROM Zones WHERE ZonesZoneId=5"), before);
}

TEST_F(Zones, UpdateAssignsTheKeysAndThePresentColumnsAlone)
{
    ASSERT_EQ(send(addDevice, deviceWith(R"({"id":5})")), 0u);
    std::string sql = "CREATE TABLE Touched (Name TEXT);";
    for (const std::string name : columnNames)
        sql += "CREATE TRIGGER Touch" + name + " AFTER UPDATE OF " + name + " ON Zones BEGIN INSERT INTO Touched"
             + " VALUES('" + name + "'); END;";
    foreign(sql);
    ASSERT_EQ(update(updateZone, zoneUpdate(R"("arm":4)")).code, 0u);
    EXPECT_EQ(file.rows("SELECT Name FROM Touched ORDER BY Name"),
              (std::vector<Row>{Row{"ZonesArm"}, Row{"ZonesDeviceId"}, Row{"ZonesSectionId"}, Row{"ZonesZoneId"}}));
    foreign("DELETE FROM Touched");
    ASSERT_EQ(update(updateZone, zoneUpdate()).code, 0u);
    EXPECT_EQ(file.rows("SELECT Name FROM Touched ORDER BY Name"),
              (std::vector<Row>{Row{"ZonesDeviceId"}, Row{"ZonesSectionId"}, Row{"ZonesZoneId"}}));
    foreign("DELETE FROM Touched");
    ASSERT_EQ(update(updateZone, zoneUpdate(fullMembers)).code, 0u);
    EXPECT_EQ(file.number("SELECT count(DISTINCT Name) FROM Touched"), 13);
}

TEST_F(Zones, UpdateNamesNoAbsentColumnAndADocumentNamesAll)
{
    foreign("DROP TABLE Zones; CREATE TABLE Zones (ZonesDeviceId INT,ZonesSectionId INT,ZonesZoneId INT,ZonesName TEXT"
            " DEFAULT 'd',ZonesDetector INT DEFAULT 77,ZonesPhysic INT DEFAULT 77,ZonesForm INT DEFAULT 77,"
            "ZonesFlags INT DEFAULT 77,ZonesDelay INT DEFAULT 77,ZonesScheduleId INT DEFAULT 77,"
            "ZonesTracert INT DEFAULT 77,ZonesUidType INT DEFAULT 77,ZonesArm INT DEFAULT 77,"
            "PRIMARY KEY(ZonesDeviceId,ZonesZoneId))");
    addParents();
    ASSERT_EQ(update(updateZone, zoneUpdate(R"("uid_type":6)")).code, 0u);
    EXPECT_EQ(rows(),
              (std::vector<Row>{Row{"10", "1", "5", "d", "77", "77", "77", "77", "77", "77", "77", "6", "77"}}));
    ASSERT_EQ(send(addDevice, deviceWith(R"({"id":5})")), 0u);
    EXPECT_EQ(rows(), std::vector<Row>{bareRow});
}

TEST_F(Zones, UpdateNeedsTheKeyOfDeviceAndZone)
{
    foreign("CREATE TABLE Other AS SELECT * FROM Zones; DROP TABLE Zones; ALTER TABLE Other RENAME TO Zones;"
            "CREATE UNIQUE INDEX Key ON Zones(ZonesDeviceId,ZonesSectionId,ZonesZoneId)");
    addParents();
    const DebugLines lines;
    EXPECT_EQ(update(updateZone, zoneUpdate()).code, 9u);
    EXPECT_TRUE(isFailure(lines.all(), "add or update zone error"));
    file.execute("DROP INDEX Key; CREATE UNIQUE INDEX Key ON Zones(ZonesDeviceId,ZonesZoneId)");
    // SQLite does not look for a new index when it prepares, only when it runs a statement; a read is enough.
    EXPECT_EQ(list(getZones, 10).code, 8u);
    EXPECT_EQ(update(updateZone, zoneUpdate()).code, 0u);
    EXPECT_EQ(count("Zones"), 1);
}

// ---- Update: a zone that moves ----

TEST_F(Zones, UpdateUnderAnotherSectionMovesTheZone)
{
    ASSERT_EQ(send(addDevice, R"({"D":{"id":10,"sections":[{"id":1,"zones":[)" + full() + R"(]},{"id":2}]}})"), 0u);
    const auto moved = update(updateZone, zoneUpdate(R"("name":"Gate")", 2));
    ASSERT_EQ(moved.code, 0u);
    EXPECT_EQ(moved->id, 5u);
    EXPECT_EQ(utf8(moved->name), "Gate");
    EXPECT_EQ(value(moved->detector), 21u);
    EXPECT_EQ(value(moved->arm), 29u);
    Row expected = fullRow;
    expected[1] = "2";
    expected[3] = "Gate";
    EXPECT_EQ(rows(), std::vector<Row>{expected});
    EXPECT_EQ(list(getZonesForSection, 10, 1).code, 8u);
    EXPECT_EQ(list(getZonesForSection, 10, 2).size(), 1u);
    EXPECT_EQ(get(getZone, 5, 10, 1).code, 8u);
    EXPECT_EQ(get(getZone, 5, 10, 2).code, 0u);
}

TEST_F(Zones, UpdateUnderAnUnknownSectionReturns11AndMovesTheZone)
{
    ASSERT_EQ(send(addDevice, deviceWith(full())), 0u);
    EXPECT_EQ(update(updateZone, zoneUpdate("", 9)).code, 11u);
    Row expected = fullRow;
    expected[1] = "9";
    EXPECT_EQ(rows(), std::vector<Row>{expected});
}

TEST_F(Zones, UpdateThatMovesAZoneTakesItOutOfTheOldSection)
{
    ASSERT_EQ(send(addDevice, R"({"D":{"id":10,"sections":[{"id":1,"zones":[{"id":5},{"id":6}]},{"id":2}]}})"), 0u);
    ASSERT_EQ(update(updateZone, zoneUpdate("", 2)).code, 0u);
    const auto before = get(getSection, 1, 10);
    const auto after = get(getSection, 2, 10);
    ASSERT_EQ(before.code, 0u);
    ASSERT_EQ(after.code, 0u);
    ASSERT_EQ(before->zonesCount, 1u);
    EXPECT_EQ(before->zones[0].id, 6u);
    ASSERT_EQ(after->zonesCount, 1u);
    EXPECT_EQ(after->zones[0].id, 5u);
}

// ---- Update: the document ----

TEST_F(Zones, UpdateTakesZoneForAMissingId)
{
    ASSERT_EQ(send(addDevice, deviceWith(R"({"id":5,"flags":3})")), 0u);
    const auto zone = update(updateZone, R"({"D":{"device":10,"section":1,"zone":5}})");
    ASSERT_EQ(zone.code, 0u);
    EXPECT_EQ(zone->id, 5u);
    EXPECT_EQ(value(zone->flags), 3u);
    EXPECT_EQ(count("Zones"), 1);
}

TEST_F(Zones, UpdatePrefersIdToZone)
{
    addParents();
    EXPECT_EQ(update(updateZone, R"({"D":{"device":10,"section":1,"zone":7,"id":5}})").code, 0u);
    EXPECT_EQ(update(updateZone, R"({"D":{"device":10,"section":1,"zone":"x","id":6}})").code, 0u);
    EXPECT_EQ(file.rows("SELECT ZonesZoneId FROM Zones ORDER BY ZonesZoneId"), (std::vector<Row>{Row{"5"}, Row{"6"}}));
}

TEST_F(Zones, UpdateDropsTheFractionOfItsIds)
{
    addParents();
    EXPECT_EQ(update(updateZone, R"({"D":{"device":10.9,"section":1.9,"id":5.9}})").code, 0u);
    EXPECT_EQ(rows(), std::vector<Row>{bareRow});
}

TEST_F(Zones, UpdateWrapsItsIds)
{
    EXPECT_EQ(update(updateZone, R"({"D":{"device":-1,"section":-2,"id":-3}})").code, 11u);
    EXPECT_EQ(file.rows("SELECT ZonesDeviceId,ZonesSectionId,ZonesZoneId FROM Zones"),
              (std::vector<Row>{Row{"4294967295", "4294967294", "4294967293"}}));
}

TEST_F(Zones, UpdateWithoutAParentIsIncomplete)
{
    const DebugLines lines;
    EXPECT_EQ(update(updateZone, R"({"D":{"section":1,"id":5}})").code, 5u);
    EXPECT_EQ(update(updateZone, R"({"D":{"device":10,"id":5}})").code, 5u);
    EXPECT_EQ(update(updateZone, R"({"D":{"id":5}})").code, 5u);
    EXPECT_EQ(update(updateZone, R"({"D":{}})").code, 5u);
    EXPECT_EQ(update(updateZone, R"({"device":10,"section":1,"D":{"id":5}})").code, 5u);
    EXPECT_EQ(count("Zones"), 0);
    EXPECT_EQ(lines.all(), std::vector<std::string>{});
}

TEST_F(Zones, UpdateWithoutAnyIdIsIncomplete)
{
    EXPECT_EQ(update(updateZone, R"({"D":{"device":10,"section":1,"name":"x"}})").code, 5u);
    EXPECT_EQ(count("Zones"), 0);
}

TEST_F(Zones, UpdateReadsAParentOfAnotherTypeAsZero)
{
    ASSERT_EQ(send(addDevice, R"({"D":{"id":0,"sections":[{"id":0},{"id":1}]}})"), 0u);
    ASSERT_EQ(send(addDevice, R"({"D":{"id":10,"sections":[{"id":0}]}})"), 0u);
    int id = 0;
    for (const std::string wrong : {R"("10")", "true", "null", "[10]", R"({"id":10})"}) {
        const std::string byDevice =
            R"({"D":{"device":)" + wrong + R"(,"section":1,"id":)" + std::to_string(++id) + "}}";
        EXPECT_EQ(update(updateZone, byDevice).code, 0u) << byDevice;
        const std::string bySection =
            R"({"D":{"device":10,"section":)" + wrong + R"(,"id":)" + std::to_string(++id) + "}}";
        EXPECT_EQ(update(updateZone, bySection).code, 0u) << bySection;
    }
    EXPECT_EQ(file.rows("SELECT ZonesDeviceId,ZonesSectionId,count(*) FROM Zones GROUP BY ZonesDeviceId,ZonesSectionId"
                        " ORDER BY ZonesDeviceId"),
              (std::vector<Row>{Row{"0", "1", "5"}, Row{"10", "0", "5"}}));
}

TEST_F(Zones, UpdateWithAWrongTypeIsIncomplete)
{
    ASSERT_EQ(send(addDevice, deviceWith(full())), 0u);
    const DebugLines lines;
    for (const NumberField &number : numberFields)
        for (const char *wrong : wrongNumbers)
            EXPECT_EQ(update(updateZone, zoneUpdate("\"" + std::string(number.key) + "\":" + wrong)).code, 5u)
                << number.key << " " << wrong;
    for (const char *wrong : wrongTexts)
        EXPECT_EQ(update(updateZone, zoneUpdate(std::string(R"("name":)") + wrong)).code, 5u) << wrong;
    for (const std::string wrong : wrongNumbers) {
        EXPECT_EQ(update(updateZone, R"({"D":{"device":10,"section":1,"id":)" + wrong + "}}").code, 5u) << wrong;
        EXPECT_EQ(update(updateZone, R"({"D":{"device":10,"section":1,"zone":)" + wrong + "}}").code, 5u) << wrong;
        EXPECT_EQ(update(updateZone, R"({"D":{"device":10,"section":1,"zone":5,"id":)" + wrong + "}}").code, 5u)
            << wrong;
    }
    EXPECT_EQ(rows(), std::vector<Row>{fullRow});
    EXPECT_EQ(lines.all(), std::vector<std::string>{});
}

TEST_F(Zones, UpdateRefusesATextThatIsNoObject)
{
    for (const char *text : {"", "nonsense", "[1,2]", "7", R"("x")", R"({"D":{"device":10,"section":1,"id":5})"})
        EXPECT_EQ(update(updateZone, text).code, 10u) << text;
    FlatZone *out = nullptr;
    EXPECT_EQ(updateZone(&out, nullptr, 0), 10u);
    EXPECT_EQ(count("Zones"), 0);
}

TEST_F(Zones, UpdateWithoutTheEnvelopeIsIncomplete)
{
    for (const char *text : {"{}", R"({"device":10,"section":1,"id":5})", R"({"D":[]})", R"({"D":null})"})
        EXPECT_EQ(update(updateZone, text).code, 5u) << text;
    EXPECT_EQ(count("Zones"), 0);
}

TEST_F(Zones, UpdateIgnoresUnknownMembers)
{
    addParents();
    EXPECT_EQ(update(updateZone, zoneUpdate(R"("zones":[5],"Name":5,"account":null)")).code, 0u);
    EXPECT_EQ(rows(), std::vector<Row>{bareRow});
}

// ---- Update: the parents ----

TEST_F(Zones, UpdateUnderAnUnknownSectionReturns11AndIsStored)
{
    ASSERT_EQ(send(addDevice, R"({"D":{"id":10}})"), 0u);
    const DebugLines lines;
    const auto zone = update(updateZone, zoneUpdate(R"("name":"x")"));
    EXPECT_EQ(zone.code, 11u);
    EXPECT_EQ(zone.record.get(), nullptr);
    const auto found = get(getZone, 5, 10, 1);
    ASSERT_EQ(found.code, 0u);
    EXPECT_EQ(utf8(found->name), "x");
    EXPECT_EQ(lines.all(), std::vector<std::string>{});
}

TEST_F(Zones, UpdateUnderASectionOfAnUnknownDeviceReturns11AndIsStored)
{
    ASSERT_EQ(update(updateSection, R"({"D":{"device":10,"id":1}})").code, 11u);
    const DebugLines lines;
    const auto zone = update(updateZone, zoneUpdate(R"("name":"x")"));
    EXPECT_EQ(zone.code, 11u);
    EXPECT_EQ(zone.record.get(), nullptr);
    EXPECT_EQ(file.value("SELECT ZonesName FROM Zones"), "x");
    EXPECT_EQ(lines.all(), std::vector<std::string>{});
}

TEST_F(Zones, UpdateInAnEmptyStoreReturns11AndIsStored)
{
    const DebugLines lines;
    EXPECT_EQ(update(updateZone, zoneUpdate(fullMembers)).code, 11u);
    EXPECT_EQ(rows(), std::vector<Row>{fullRow});
    EXPECT_EQ(lines.all(), std::vector<std::string>{});
}

TEST_F(Zones, UpdateMergesWithoutItsParentsToo)
{
    ASSERT_EQ(update(updateZone, zoneUpdate(fullMembers)).code, 11u);
    ASSERT_EQ(update(updateZone, zoneUpdate(R"("name":"x")")).code, 11u);
    Row expected = fullRow;
    expected[3] = "x";
    EXPECT_EQ(rows(), std::vector<Row>{expected});
}

TEST_F(Zones, UpdateAsksForTheSectionOfItsOwnDevice)
{
    ASSERT_EQ(send(addDevices, R"({"D":{"items":[{"id":10,"sections":[{"id":2}]},)"
                               R"({"id":11,"sections":[{"id":1}]},{"id":1,"sections":[{"id":10}]}]}})"),
              0u);
    EXPECT_EQ(update(updateZone, zoneUpdate("", 1)).code, 11u);
    EXPECT_EQ(update(updateZone, zoneUpdate("", 2)).code, 0u);
}

TEST_F(Zones, UpdateReturns7IfTheSectionCannotBeReadAndIsStored)
{
    ASSERT_EQ(send(addDevice, deviceWith(R"({"id":5,"name":"a"})")), 0u);
    foreign("ALTER TABLE Sections RENAME TO Gone");
    const DebugLines lines;
    const auto zone = update(updateZone, zoneUpdate(R"("name":"x")"));
    EXPECT_EQ(zone.code, 7u);
    EXPECT_EQ(zone.record.get(), nullptr);
    EXPECT_TRUE(isFailure(lines.all(), "is section exists error"));
    EXPECT_EQ(file.value("SELECT ZonesName FROM Zones"), "x");
}

TEST_F(Zones, UpdateReturns7IfTheDeviceCannotBeReadAndIsStored)
{
    ASSERT_EQ(send(addDevice, deviceWith(R"({"id":5,"name":"a"})")), 0u);
    foreign("ALTER TABLE Devices RENAME TO Gone");
    const DebugLines lines;
    const auto zone = update(updateZone, zoneUpdate(R"("name":"x")"));
    EXPECT_EQ(zone.code, 7u);
    EXPECT_EQ(zone.record.get(), nullptr);
    EXPECT_TRUE(isFailure(lines.all(), "is device exists error"));
    EXPECT_EQ(file.value("SELECT ZonesName FROM Zones"), "x");
}

TEST_F(Zones, UpdateAsksForTheSectionBeforeTheDevice)
{
    foreign("DROP TABLE Sections; DROP TABLE Devices");
    const DebugLines lines;
    EXPECT_EQ(update(updateZone, zoneUpdate()).code, 7u);
    EXPECT_TRUE(isFailure(lines.all(), "is section exists error"));
}

TEST_F(Zones, UpdateUnderAnUnknownSectionDoesNotAskForTheDevice)
{
    foreign("DROP TABLE Devices");
    const DebugLines lines;
    EXPECT_EQ(update(updateZone, zoneUpdate()).code, 11u);
    EXPECT_EQ(lines.all(), std::vector<std::string>{});
    EXPECT_EQ(count("Zones"), 1);
}

TEST_F(Zones, UpdateAsksForNothingButTheKeysOfItsParents)
{
    foreign("DROP TABLE Devices; CREATE TABLE Devices (DevicesId INT); INSERT INTO Devices VALUES (10);"
            "DROP TABLE Sections; CREATE TABLE Sections (SectionsSectionId INT,SectionsDeviceId INT);"
            "INSERT INTO Sections VALUES (1,10)");
    EXPECT_EQ(update(updateZone, zoneUpdate()).code, 0u);
}

TEST_F(Zones, UpdateWhoseSectionCheckFailedDoesNotBlockTheNext)
{
    foreign("ALTER TABLE Sections RENAME TO Gone");
    ASSERT_EQ(update(updateZone, zoneUpdate()).code, 7u);
    file.execute("ALTER TABLE Gone RENAME TO Sections");
    addParents();
    EXPECT_EQ(update(updateZone, zoneUpdate(R"("name":"x")")).code, 0u);
    EXPECT_EQ(file.value("SELECT ZonesName FROM Zones"), "x");
}

// ---- Update: failures ----

TEST_F(Zones, UpdateThatCannotBeWrittenReturns9)
{
    addParents();
    refuse("INSERT", "Zones");
    const DebugLines lines;
    const auto zone = update(updateZone, zoneUpdate(R"("name":"x")"));
    EXPECT_EQ(zone.code, 9u);
    EXPECT_EQ(zone.record.get(), nullptr);
    EXPECT_TRUE(isFailure(lines.all(), "add or update zone error"));
    EXPECT_NE(lines.all().at(1).find("refused"), std::string::npos);
    EXPECT_EQ(count("Zones"), 0);
}

TEST_F(Zones, UpdateThatCannotBeMergedKeepsTheRow)
{
    ASSERT_EQ(send(addDevice, deviceWith(full())), 0u);
    refuse("UPDATE", "Zones");
    const DebugLines lines;
    EXPECT_EQ(update(updateZone, zoneUpdate(R"("name":"x")", 2)).code, 9u);
    EXPECT_TRUE(isFailure(lines.all(), "add or update zone error"));
    EXPECT_EQ(rows(), std::vector<Row>{fullRow});
    EXPECT_EQ(update(updateZone, R"({"D":{"device":10,"section":1,"id":6}})").code, 0u);
}

TEST_F(Zones, UpdateOfAMissingColumnFailsOnlyIfItIsNamed)
{
    ASSERT_EQ(send(addDevice, deviceWith(R"({"id":5,"name":"a"})")), 0u);
    foreign("ALTER TABLE Zones RENAME COLUMN ZonesForm TO Gone");
    DebugLines lines;
    EXPECT_EQ(update(updateZone, zoneUpdate(R"("name":"x","form":2)")).code, 9u);
    EXPECT_TRUE(isFailure(lines.all(), "add or update zone error"));
    lines.clear();
    EXPECT_EQ(update(updateZone, zoneUpdate(R"("name":"x")")).code, 9u);
    EXPECT_TRUE(isFailure(lines.all(), "get zones for device section by id error"));
    EXPECT_EQ(file.value("SELECT ZonesName FROM Zones"), "a");
}

TEST_F(Zones, UpdateThatCannotBeReadBackIsUndone)
{
    addParents();
    foreign("ALTER TABLE Zones RENAME COLUMN ZonesForm TO Gone");
    const DebugLines lines;
    const auto zone = update(updateZone, zoneUpdate(R"("name":"x")"));
    EXPECT_EQ(zone.code, 9u);
    EXPECT_EQ(zone.record.get(), nullptr);
    EXPECT_TRUE(isFailure(lines.all(), "get zones for device section by id error"));
    foreign("ALTER TABLE Zones RENAME COLUMN Gone TO ZonesForm");
    EXPECT_EQ(count("Zones"), 0);
    EXPECT_EQ(update(updateZone, R"({"D":{"device":10,"section":1,"id":6}})").code, 0u);
    EXPECT_EQ(count("Zones"), 1);
}

TEST_F(Zones, UpdateThatFailsDoesNotAskForItsParents)
{
    refuse("INSERT", "Zones");
    foreign("DROP TABLE Devices; DROP TABLE Sections");
    const DebugLines lines;
    EXPECT_EQ(update(updateZone, zoneUpdate()).code, 9u);
    EXPECT_TRUE(isFailure(lines.all(), "add or update zone error"));
}

TEST_F(Zones, UpdateWhoseRowIsNotFoundAgainReturns8AndIsCommitted)
{
    foreign("CREATE TRIGGER Move AFTER INSERT ON Zones BEGIN UPDATE Zones SET ZonesSectionId=99; END;"
            "DROP TABLE Devices; DROP TABLE Sections");
    const DebugLines lines;
    const auto zone = update(updateZone, zoneUpdate(R"("name":"x")"));
    EXPECT_EQ(zone.code, 8u);
    EXPECT_EQ(zone.record.get(), nullptr);
    EXPECT_EQ(lines.all(), std::vector<std::string>{});
    EXPECT_EQ(file.rows("SELECT ZonesSectionId,ZonesName FROM Zones"), (std::vector<Row>{Row{"99", "x"}}));
}

TEST_F(Zones, UpdateReturnsTheRowAsStored)
{
    addParents();
    foreign("CREATE TRIGGER Change AFTER INSERT ON Zones BEGIN UPDATE Zones SET ZonesName='changed'; END");
    const auto zone = update(updateZone, zoneUpdate(R"("name":"sent")"));
    ASSERT_EQ(zone.code, 0u);
    EXPECT_EQ(utf8(zone->name), "changed");
}

// ---- Reading ----

TEST_F(Zones, EveryReadReturnsEveryField)
{
    foreign("INSERT INTO Zones VALUES (10,1,5,'Door',21,22,23,24,25,26,27,28,29)");
    const auto one = get(getZone, 5, 10, 1);
    ASSERT_EQ(one.code, 0u);
    EXPECT_EQ(one->id, 5u);
    expectFullFields(*one.record);
    List<FlatZone> lists[] = {list(getZones, 10), list(getZonesForSection, 10, 1),
                              listBy(getZonesWithParams, "id", "5", 10),
                              listBy(getZonesForSectionWithParams, "id", "5", 10, 1)};
    for (const List<FlatZone> &zones : lists) {
        ASSERT_EQ(zones.code, 0u);
        ASSERT_EQ(zones.size(), 1u);
        EXPECT_EQ(zones[0].id, 5u);
        expectFullFields(zones[0]);
    }
}

TEST_F(Zones, EveryReadLeavesNullAbsent)
{
    foreign("INSERT INTO Zones(ZonesDeviceId,ZonesSectionId,ZonesZoneId) VALUES (10,1,5)");
    const auto one = get(getZone, 5, 10, 1);
    ASSERT_EQ(one.code, 0u);
    expectNoFields(*one.record);
    List<FlatZone> lists[] = {list(getZones, 10), list(getZonesForSection, 10, 1),
                              listBy(getZonesWithParams, "id", "5", 10),
                              listBy(getZonesForSectionWithParams, "id", "5", 10, 1)};
    for (const List<FlatZone> &zones : lists) {
        ASSERT_EQ(zones.code, 0u);
        EXPECT_EQ(zones[0].id, 5u);
        expectNoFields(zones[0]);
    }
}

TEST_F(Zones, NullIdReadsAsZero)
{
    foreign("INSERT INTO Zones(ZonesDeviceId,ZonesSectionId,ZonesName) VALUES (10,1,'a')");
    const auto zones = list(getZones, 10);
    ASSERT_EQ(zones.code, 0u);
    EXPECT_EQ(zones[0].id, 0u);
    EXPECT_EQ(utf8(zones[0].name), "a");
    EXPECT_EQ(list(getZonesForSection, 10, 1)[0].id, 0u);
    EXPECT_EQ(get(getZone, 0, 10, 1).code, 8u);
}

TEST_F(Zones, ZoneWithoutASectionIsFoundByItsDeviceAlone)
{
    foreign("INSERT INTO Zones(ZonesDeviceId,ZonesZoneId) VALUES (10,5)");
    EXPECT_EQ(list(getZones, 10).size(), 1u);
    EXPECT_EQ(listBy(getZonesWithParams, "id", "5", 10).size(), 1u);
    EXPECT_EQ(list(getZonesForSection, 10, 0).code, 8u);
    EXPECT_EQ(get(getZone, 5, 10, 0).code, 8u);
}

TEST_F(Zones, EmptyNameReadsAsEmptyText)
{
    foreign("INSERT INTO Zones(ZonesDeviceId,ZonesSectionId,ZonesZoneId,ZonesName) VALUES (10,1,5,'')");
    const auto zone = get(getZone, 5, 10, 1);
    ASSERT_EQ(zone.code, 0u);
    ASSERT_NE(zone->name, nullptr);
    EXPECT_EQ(zone->name[0], 0u);
}

TEST_F(Zones, NumberThatIsNoneReadsAsZero)
{
    foreign("INSERT INTO Zones(ZonesDeviceId,ZonesSectionId,ZonesZoneId,ZonesArm) VALUES (10,1,5,'many')");
    const auto zone = get(getZone, 5, 10, 1);
    ASSERT_EQ(zone.code, 0u);
    EXPECT_EQ(value(zone->arm), 0u);
}

TEST_F(Zones, GetTakesTheZoneThenTheDeviceThenTheSection)
{
    foreign("INSERT INTO Zones(ZonesDeviceId,ZonesSectionId,ZonesZoneId,ZonesName) VALUES (10,1,5,'right'),"
            "(5,10,1,'a'),(5,1,10,'b'),(10,5,1,'c'),(1,5,10,'d'),(1,10,5,'e')");
    const auto zone = get(getZone, 5, 10, 1);
    ASSERT_EQ(zone.code, 0u);
    EXPECT_EQ(zone->id, 5u);
    EXPECT_EQ(utf8(zone->name), "right");
}

TEST_F(Zones, GetOfAnUnknownTripleReturns8)
{
    ASSERT_EQ(send(addDevice, deviceWith(R"({"id":5})")), 0u);
    const DebugLines lines;
    EXPECT_EQ(get(getZone, 6, 10, 1).code, 8u);
    EXPECT_EQ(get(getZone, 5, 11, 1).code, 8u);
    EXPECT_EQ(get(getZone, 5, 10, 2).code, 8u);
    EXPECT_EQ(get(getZone, 5, 1, 10).code, 8u);
    EXPECT_EQ(lines.all(), std::vector<std::string>{});
}

TEST_F(Zones, ListsStayInTheirDeviceAndSection)
{
    foreign("INSERT INTO Zones(ZonesDeviceId,ZonesSectionId,ZonesZoneId) VALUES (10,1,5),(10,1,6),(10,2,7),(11,1,8),"
            "(1,10,9)");
    const auto ofDevice = list(getZones, 10);
    ASSERT_EQ(ofDevice.code, 0u);
    EXPECT_EQ(ofDevice.size(), 3u);
    for (const uint32_t id : {5u, 6u, 7u})
        EXPECT_NE(ofDevice.withId(id), nullptr) << id;
    const auto ofSection = list(getZonesForSection, 10, 1);
    ASSERT_EQ(ofSection.code, 0u);
    EXPECT_EQ(ofSection.size(), 2u);
    for (const uint32_t id : {5u, 6u})
        EXPECT_NE(ofSection.withId(id), nullptr) << id;
}

TEST_F(Zones, ListsWithoutAZoneReturn8)
{
    ASSERT_EQ(send(addDevice, R"({"D":{"id":10,"sections":[{"id":1},{"id":2,"zones":[{"id":5,"name":"a"}]}]}})"), 0u);
    const DebugLines lines;
    FlatZone *out = nullptr;
    uint32_t length = 77;
    EXPECT_EQ(getZones(&out, &length, 11), 8u);
    EXPECT_EQ(getZonesForSection(&out, &length, 10, 1), 8u);
    EXPECT_EQ(getZonesForSection(&out, &length, 11, 2), 8u);
    EXPECT_EQ(find(getZonesWithParams, &out, &length, "name", "b", 10), 8u);
    EXPECT_EQ(find(getZonesWithParams, &out, &length, "name", "a", 11), 8u);
    EXPECT_EQ(find(getZonesForSectionWithParams, &out, &length, "name", "b", 10, 2), 8u);
    EXPECT_EQ(find(getZonesForSectionWithParams, &out, &length, "name", "a", 10, 1), 8u);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(length, 77u);
    EXPECT_EQ(lines.all(), std::vector<std::string>{});
}

TEST_F(Zones, GetThatCannotBeReadReturns7)
{
    foreign("ALTER TABLE Zones RENAME TO Gone");
    const DebugLines lines;
    EXPECT_EQ(get(getZone, 5, 10, 1).code, 7u);
    EXPECT_TRUE(isFailure(lines.all(), "get zones for device section by id error"));
}

TEST_F(Zones, ListsThatCannotBeReadReturn7)
{
    foreign("ALTER TABLE Zones RENAME TO Gone");
    FlatZone *out = nullptr;
    uint32_t length = 77;
    DebugLines lines;
    EXPECT_EQ(getZones(&out, &length, 10), 7u);
    EXPECT_TRUE(isFailure(lines.all(), "get zones for device error"));
    lines.clear();
    EXPECT_EQ(getZonesForSection(&out, &length, 10, 1), 7u);
    EXPECT_TRUE(isFailure(lines.all(), "get zones for device section error"));
    lines.clear();
    EXPECT_EQ(find(getZonesWithParams, &out, &length, "name", "a", 10), 7u);
    EXPECT_TRUE(isFailure(lines.all(), "get zones for device by field error"));
    lines.clear();
    EXPECT_EQ(find(getZonesForSectionWithParams, &out, &length, "name", "a", 10, 1), 7u);
    EXPECT_TRUE(isFailure(lines.all(), "get zones for device section by field error"));
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(length, 77u);
}

TEST_F(Zones, FailedReadsDoNotBlockTheNext)
{
    ASSERT_EQ(send(addDevice, deviceWith(R"({"id":5,"name":"a"})")), 0u);
    foreign("ALTER TABLE Zones RENAME TO Gone");
    ASSERT_EQ(get(getZone, 5, 10, 1).code, 7u);
    ASSERT_EQ(list(getZones, 10).code, 7u);
    ASSERT_EQ(list(getZonesForSection, 10, 1).code, 7u);
    ASSERT_EQ(listBy(getZonesWithParams, "name", "a", 10).code, 7u);
    ASSERT_EQ(listBy(getZonesForSectionWithParams, "name", "a", 10, 1).code, 7u);
    file.execute("ALTER TABLE Gone RENAME TO Zones");
    EXPECT_EQ(get(getZone, 5, 10, 1).code, 0u);
    EXPECT_EQ(update(updateZone, zoneUpdate(R"("name":"b")")).code, 0u);
    EXPECT_EQ(file.value("SELECT ZonesName FROM Zones"), "b");
}

TEST_F(Zones, ReadsNeedNoParents)
{
    foreign("INSERT INTO Zones(ZonesDeviceId,ZonesSectionId,ZonesZoneId) VALUES (10,1,5);"
            "DROP TABLE Devices; DROP TABLE Sections");
    EXPECT_EQ(get(getZone, 5, 10, 1).code, 0u);
    EXPECT_EQ(list(getZones, 10).code, 0u);
    EXPECT_EQ(list(getZonesForSection, 10, 1).code, 0u);
    EXPECT_EQ(listBy(getZonesWithParams, "id", "5", 10).code, 0u);
    EXPECT_EQ(listBy(getZonesForSectionWithParams, "id", "5", 10, 1).code, 0u);
}

// ---- By a field ----

TEST_F(Zones, ListsByFieldFindEachSearchableKey)
{
    ASSERT_EQ(send(addDevice, deviceWith(full() + R"(,{"id":40,"name":"b"})")), 0u);
    const std::pair<const char *, const char *> searches[] = {
        {"id", "5"},     {"name", "Door"}, {"detector", "21"},    {"physic", "22"},  {"form", "23"},
        {"flags", "24"}, {"delay", "25"},  {"schedule_id", "26"}, {"tracert", "27"}, {"uid_type", "28"}};
    for (const auto &[key, wanted] : searches) {
        SCOPED_TRACE(key);
        const auto ofDevice = listBy(getZonesWithParams, key, wanted, 10);
        ASSERT_EQ(ofDevice.code, 0u);
        ASSERT_EQ(ofDevice.size(), 1u);
        EXPECT_EQ(ofDevice[0].id, 5u);
        expectFullFields(ofDevice[0]);
        const auto ofSection = listBy(getZonesForSectionWithParams, key, wanted, 10, 1);
        ASSERT_EQ(ofSection.code, 0u);
        ASSERT_EQ(ofSection.size(), 1u);
        EXPECT_EQ(ofSection[0].id, 5u);
        expectFullFields(ofSection[0]);
    }
}

TEST_F(Zones, ListsByFieldRefuseEveryOtherKey)
{
    ASSERT_EQ(send(addDevice, deviceWith(full())), 0u);
    foreign("ALTER TABLE Zones RENAME TO Gone");
    const DebugLines lines;
    for (const char *key :
         {"arm", "device", "section", "zone", "zones", "", "ID", "Name", "name ", "ZonesName", "scheduleId"}) {
        FlatZone *out = nullptr;
        uint32_t length = 77;
        EXPECT_EQ(find(getZonesWithParams, &out, &length, key, "29", 10), 10u) << key;
        EXPECT_EQ(find(getZonesForSectionWithParams, &out, &length, key, "29", 10, 1), 10u) << key;
        EXPECT_EQ(out, nullptr);
        EXPECT_EQ(length, 77u);
    }
    EXPECT_EQ(lines.all(), std::vector<std::string>{});
}

TEST_F(Zones, ListsByFieldDifferFromThoseOfSectionsInArmAndPhysic)
{
    ASSERT_EQ(send(addDevice, R"({"D":{"id":10,"sections":[{"id":1,"arm":6,"physic":7,"zones":[)"
                              R"({"id":5,"arm":6,"physic":7}]}]}})"),
              0u);
    EXPECT_EQ(listBy(getZonesWithParams, "arm", "6", 10).code, 10u);
    EXPECT_EQ(listBy(getSectionsWithParams, "arm", "6", 10).code, 0u);
    EXPECT_EQ(listBy(getZonesWithParams, "physic", "7", 10).code, 0u);
    EXPECT_EQ(listBy(getSectionsWithParams, "physic", "7", 10).code, 10u);
}

TEST_F(Zones, ListsByFieldStayInTheirDeviceAndSection)
{
    foreign("INSERT INTO Zones(ZonesDeviceId,ZonesSectionId,ZonesZoneId,ZonesName) VALUES (10,1,5,'a'),(10,1,6,'b'),"
            "(10,2,7,'a'),(11,1,8,'a'),(1,10,9,'a')");
    const auto ofDevice = listBy(getZonesWithParams, "name", "a", 10);
    ASSERT_EQ(ofDevice.code, 0u);
    ASSERT_EQ(ofDevice.size(), 2u);
    EXPECT_NE(ofDevice.withId(5), nullptr);
    EXPECT_NE(ofDevice.withId(7), nullptr);
    const auto ofSection = listBy(getZonesForSectionWithParams, "name", "a", 10, 1);
    ASSERT_EQ(ofSection.code, 0u);
    ASSERT_EQ(ofSection.size(), 1u);
    EXPECT_EQ(ofSection[0].id, 5u);
}

TEST_F(Zones, ListsByFieldCompareNumbersByTheirValue)
{
    ASSERT_EQ(send(addDevice, deviceWith(R"({"id":5,"flags":6},{"id":6,"flags":4294967295},{"id":7})")), 0u);
    for (const char *flags : {"6", "06", "4294967295"}) {
        EXPECT_EQ(listBy(getZonesWithParams, "flags", flags, 10).size(), 1u) << flags;
        EXPECT_EQ(listBy(getZonesForSectionWithParams, "flags", flags, 10, 1).size(), 1u) << flags;
    }
    for (const char *flags : {"60", "six", "", "NULL"}) {
        EXPECT_EQ(listBy(getZonesWithParams, "flags", flags, 10).code, 8u) << flags;
        EXPECT_EQ(listBy(getZonesForSectionWithParams, "flags", flags, 10, 1).code, 8u) << flags;
    }
}

TEST_F(Zones, ListsByFieldCompareNamesExactly)
{
    ASSERT_EQ(send(addDevice, deviceWith(R"({"id":5,"name":"Door"},{"id":6,"name":"5"},{"id":7,"name":""},{"id":8})")),
              0u);
    for (const char *name : {"door", "Doo", "Door ", "D%", "05", "NULL", "' OR 1=1 --"}) {
        EXPECT_EQ(listBy(getZonesWithParams, "name", name, 10).code, 8u) << name;
        EXPECT_EQ(listBy(getZonesForSectionWithParams, "name", name, 10, 1).code, 8u) << name;
    }
    const auto unnamed = listBy(getZonesWithParams, "name", "", 10);
    ASSERT_EQ(unnamed.code, 0u);
    ASSERT_EQ(unnamed.size(), 1u);
    EXPECT_EQ(unnamed[0].id, 7u);
}

// ---- Guards ----

TEST_F(Zones, OutParameterInUseIsRefusedAndNothingTouched)
{
    ASSERT_EQ(send(addDevice, deviceWith(R"({"id":5,"name":"a"})")), 0u);
    FlatZone block{};
    FlatZone *out = &block;
    uint32_t length = 77;
    const DebugLines lines;
    EXPECT_EQ(getZone(&out, 5, 10, 1), 10u);
    EXPECT_EQ(getZones(&out, &length, 10), 10u);
    EXPECT_EQ(getZonesForSection(&out, &length, 10, 1), 10u);
    EXPECT_EQ(find(getZonesWithParams, &out, &length, "name", "a", 10), 10u);
    EXPECT_EQ(find(getZonesForSectionWithParams, &out, &length, "name", "a", 10, 1), 10u);
    EXPECT_EQ(send(updateZone, &out, zoneUpdate(R"("name":"x")")), 10u);
    EXPECT_EQ(out, &block);
    EXPECT_EQ(length, 77u);
    EXPECT_EQ(file.value("SELECT ZonesName FROM Zones"), "a");
    EXPECT_EQ(lines.all(), std::vector<std::string>{});
}

TEST_F(Zones, OutParameterInUseComesBeforeEveryOtherFault)
{
    library.reset();
    FlatZone block{};
    FlatZone *out = &block;
    uint32_t length = 77;
    EXPECT_EQ(getZone(&out, 5, 10, 1), 10u);
    EXPECT_EQ(getZones(&out, &length, 10), 10u);
    EXPECT_EQ(getZonesForSection(&out, &length, 10, 1), 10u);
    EXPECT_EQ(find(getZonesWithParams, &out, &length, "name", "a", 10), 10u);
    EXPECT_EQ(find(getZonesForSectionWithParams, &out, &length, "name", "a", 10, 1), 10u);
    EXPECT_EQ(send(updateZone, &out, "{}"), 10u);
    EXPECT_EQ(send(updateZone, &out, zoneUpdate()), 10u);
    EXPECT_EQ(out, &block);
    EXPECT_EQ(length, 77u);
}

TEST_F(Zones, UpdateRefusesBadTextsWithoutALaunch)
{
    library.reset();
    EXPECT_EQ(update(updateZone, "nonsense").code, 10u);
    EXPECT_EQ(update(updateZone, R"({"D":{"section":1,"id":5}})").code, 5u);
    EXPECT_EQ(update(updateZone, R"({"D":{"device":10,"id":5}})").code, 5u);
    EXPECT_EQ(update(updateZone, R"({"D":{"device":10,"section":1}})").code, 5u);
    EXPECT_EQ(update(updateZone, zoneUpdate(R"("arm":null)")).code, 5u);
}

// ---- Freeing ----

TEST_F(Zones, FreeRefusesNothing)
{
    EXPECT_EQ(freeZone(nullptr), 10u);
    EXPECT_EQ(freeZonesArray(nullptr, 1), 10u);
    EXPECT_EQ(freeZonesArray(nullptr, 0), 10u);
}

TEST_F(Zones, FreeOfAnArrayWithoutACountFreesNothing)
{
    ASSERT_EQ(send(addDevice, deviceWith(R"({"id":5,"name":"a"})")), 0u);
    auto zones = list(getZones, 10);
    ASSERT_EQ(zones.code, 0u);
    EXPECT_EQ(freeZonesArray(*zones.out(), 0), 10u);
    EXPECT_EQ(utf8(zones[0].name), "a");
}

TEST_F(Zones, FreeWorksAfterTheExit)
{
    ASSERT_EQ(send(addDevice, deviceWith(full() + R"(,{"id":6})")), 0u);
    auto one = get(getZone, 5, 10, 1);
    FlatZone *all = nullptr;
    uint32_t length = 0;
    ASSERT_EQ(one.code, 0u);
    ASSERT_EQ(getZones(&all, &length, 10), 0u);
    ASSERT_EQ(length, 2u);
    library.reset();
    expectFullFields(*one.record);
    EXPECT_EQ(freeZone(one.record.release()), 0u);
    EXPECT_EQ(freeZonesArray(all, length), 0u);
}

} // namespace
