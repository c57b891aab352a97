#include "Store.h"

using namespace brimlet::test;

namespace {

// A number of a section by its JSON key and its flat field. In the order of the columns.
struct NumberField
{
    const char *key;
    uint32_t *FlatSection::*field;
};

const NumberField numberFields[] = {
    {"schedule_id", &FlatSection::scheduleId},
    {"tracert", &FlatSection::tracert},
    {"flags", &FlatSection::flags},
    {"detector", &FlatSection::detector},
    {"arm", &FlatSection::arm},
    {"physic", &FlatSection::physic},
    {"form", &FlatSection::form},
    {"delay", &FlatSection::delay},
    {"uid_type", &FlatSection::uidType},
};

const char *const columnNames[] = {"SectionsDeviceId", "SectionsSectionId", "SectionsName",     "SectionsScheduleId",
                                   "SectionsTracert",  "SectionsFlags",     "SectionsDetector", "SectionsArm",
                                   "SectionsPhysic",   "SectionsForm",      "SectionsDelay",    "SectionsUidType"};

// Every field of section 1 with a different value, in a document and as stored in the file.
const char *const fullMembers = R"("name":"Hall","schedule_id":2,"tracert":3,"flags":4,"detector":5,"arm":6,)"
                                R"("physic":7,"form":8,"delay":9,"uid_type":11)";
const Row fullRow{"10", "1", "Hall", "2", "3", "4", "5", "6", "7", "8", "9", "11"};
const std::optional<std::string> none;
const Row bareRow{"10", "1", none, none, none, none, none, none, none, none, none, none};

const char *const wrongNumbers[] = {R"("5")", "true", "null", "[]", "{}"};
const char *const wrongTexts[] = {"5", "true", "null", "[]", "{}"};

// The update of section 1 of device 10, with further members after the two ids.
std::string sectionUpdate(const std::string &members = "")
{
    return R"({"D":{"device":10,"id":1)" + (members.empty() ? members : "," + members) + "}}";
}

// The document of device 10 with the given elements in its sections.
std::string deviceWith(const std::string &sections)
{
    return R"({"D":{"id":10,"sections":[)" + sections + "]}}";
}

std::string joined(const char *prefix, const char *suffix)
{
    std::string list;
    for (const char *name : columnNames)
        list += (list.empty() ? "" : ",") + (prefix + std::string(name) + suffix);
    return list;
}

void expectFullFields(const FlatSection &section)
{
    EXPECT_EQ(utf8(section.name), "Hall");
    EXPECT_EQ(value(section.scheduleId), 2u);
    EXPECT_EQ(value(section.tracert), 3u);
    EXPECT_EQ(value(section.flags), 4u);
    EXPECT_EQ(value(section.detector), 5u);
    EXPECT_EQ(value(section.arm), 6u);
    EXPECT_EQ(value(section.physic), 7u);
    EXPECT_EQ(value(section.form), 8u);
    EXPECT_EQ(value(section.delay), 9u);
    EXPECT_EQ(value(section.uidType), 11u);
}

void expectNoFields(const FlatSection &section)
{
    EXPECT_EQ(section.name, nullptr);
    for (const NumberField &number : numberFields)
        EXPECT_EQ(section.*number.field, nullptr) << number.key;
}

void expectNoZones(const FlatSection &section)
{
    EXPECT_EQ(section.zones, nullptr);
    EXPECT_EQ(section.zonesCount, 0u);
}

class Sections : public StoreTest
{
protected:
    std::vector<Row> rows(int device = 10, int section = 1) const
    {
        return file.rows("SELECT " + joined("", "") + " FROM Sections WHERE SectionsDeviceId=" + std::to_string(device)
                         + " AND SectionsSectionId=" + std::to_string(section));
    }

    int64_t count(const std::string &table) const { return file.number("SELECT count(*) FROM " + table); }
};

// ---- From a device document ----

TEST_F(Sections, DocumentFillsEveryColumn)
{
    ASSERT_EQ(send(addDevice, deviceWith(R"({"id":1,)" + std::string(fullMembers) + "}")), 0u);
    EXPECT_EQ(rows(), std::vector<Row>{fullRow});
    EXPECT_EQ(file.rows("SELECT " + joined("typeof(", ")") + " FROM Sections"),
              (std::vector<Row>{Row{"integer", "integer", "text", "integer", "integer", "integer", "integer", "integer",
                                    "integer", "integer", "integer", "integer"}}));
}

TEST_F(Sections, DocumentLeavesNullForWhatItOmits)
{
    ASSERT_EQ(send(addDevice, deviceWith(R"({"id":1})")), 0u);
    EXPECT_EQ(rows(), std::vector<Row>{bareRow});
}

TEST_F(Sections, DocumentReplacesTheWholeRow)
{
    ASSERT_EQ(send(addDevice, deviceWith(R"({"id":1,)" + std::string(fullMembers) + "}")), 0u);
    ASSERT_EQ(send(addDevice, deviceWith(R"({"id":1})")), 0u);
    EXPECT_EQ(rows(), std::vector<Row>{bareRow});
}

TEST_F(Sections, DocumentKeepsTheSectionsThatItOmits)
{
    ASSERT_EQ(send(addDevice, deviceWith(R"({"id":1,"name":"a"},{"id":2,"name":"b"})")), 0u);
    ASSERT_EQ(send(addDevice, deviceWith(R"({"id":2,"name":"c"})")), 0u);
    EXPECT_EQ(file.rows("SELECT SectionsSectionId,SectionsName FROM Sections ORDER BY SectionsSectionId"),
              (std::vector<Row>{Row{"1", "a"}, Row{"2", "c"}}));
}

TEST_F(Sections, DocumentLastOfTwoEqualIdsStays)
{
    ASSERT_EQ(send(addDevice, deviceWith(R"({"id":1,"name":"a","flags":3},{"id":1,"name":"b"})")), 0u);
    EXPECT_EQ(file.rows("SELECT SectionsName,SectionsFlags FROM Sections"), (std::vector<Row>{Row{"b", none}}));
}

TEST_F(Sections, DocumentTakesTheDeviceFromTheTreeAlone)
{
    ASSERT_EQ(send(addDevice, deviceWith(R"({"device":99,"id":1},{"device":"x","id":2},{"device":null,"id":3})")), 0u);
    EXPECT_EQ(file.rows("SELECT DISTINCT SectionsDeviceId FROM Sections"), (std::vector<Row>{Row{"10"}}));
    EXPECT_EQ(count("Sections"), 3);
}

TEST_F(Sections, DocumentTakesSectionForAMissingId)
{
    ASSERT_EQ(send(addDevice, deviceWith(R"({"section":7,"name":"a"})")), 0u);
    EXPECT_EQ(file.rows("SELECT SectionsSectionId,SectionsName FROM Sections"), (std::vector<Row>{Row{"7", "a"}}));
}

TEST_F(Sections, DocumentPrefersIdToSection)
{
    ASSERT_EQ(send(addDevice, deviceWith(R"({"section":7,"id":1},{"section":"x","id":2})")), 0u);
    EXPECT_EQ(file.rows("SELECT SectionsSectionId FROM Sections ORDER BY SectionsSectionId"),
              (std::vector<Row>{Row{"1"}, Row{"2"}}));
}

TEST_F(Sections, DocumentWithoutAnyIdIsIncomplete)
{
    EXPECT_EQ(send(addDevice, deviceWith(R"({"name":"a"})")), 5u);
    EXPECT_EQ(count("Devices"), 0);
    EXPECT_EQ(count("Sections"), 0);
}

TEST_F(Sections, DocumentWithAWrongTypeIsIncomplete)
{
    const DebugLines lines;
    for (const NumberField &number : numberFields)
        for (const char *wrong : wrongNumbers)
            EXPECT_EQ(send(addDevice, deviceWith(R"({"id":1,")" + std::string(number.key) + "\":" + wrong + "}")), 5u)
                << number.key << " " << wrong;
    for (const char *wrong : wrongTexts)
        EXPECT_EQ(send(addDevice, deviceWith(std::string(R"({"id":1,"name":)") + wrong + "}")), 5u) << wrong;
    for (const char *wrong : wrongNumbers) {
        EXPECT_EQ(send(addDevice, deviceWith(std::string(R"({"id":)") + wrong + "}")), 5u) << wrong;
        EXPECT_EQ(send(addDevice, deviceWith(std::string(R"({"section":)") + wrong + "}")), 5u) << wrong;
        EXPECT_EQ(send(addDevice, deviceWith(std::string(R"({"section":1,"id":)") + wrong + "}")), 5u) << wrong;
    }
    EXPECT_EQ(count("Devices"), 0);
    EXPECT_EQ(count("Sections"), 0);
    EXPECT_EQ(lines.all(), std::vector<std::string>{});
}

TEST_F(Sections, DocumentReadsZonesOfAnotherTypeAsNone)
{
    for (const char *zones : {"5", R"("x")", "null", "true", "{}", R"({"id":5})", "[]"})
        EXPECT_EQ(send(addDevice, deviceWith(std::string(R"({"id":1,"zones":)") + zones + "}")), 0u) << zones;
    EXPECT_EQ(count("Sections"), 1);
    EXPECT_EQ(count("Zones"), 0);
}

TEST_F(Sections, DocumentWithAWrongZoneIsIncomplete)
{
    for (const char *zone : {"5", R"("x")", "null", "true", "[]", "{}", R"({"id":"5"})", R"({"id":5,"arm":null})"})
        EXPECT_EQ(send(addDevice, deviceWith(std::string(R"({"id":1,"zones":[{"id":4},)") + zone + "]}")), 5u) << zone;
    EXPECT_EQ(count("Devices"), 0);
    EXPECT_EQ(count("Sections"), 0);
    EXPECT_EQ(count("Zones"), 0);
}

TEST_F(Sections, DocumentWhoseSectionsFailLeavesNoDevice)
{
    refuse("INSERT", "Sections");
    const DebugLines lines;
    EXPECT_EQ(send(addDevice, deviceWith(R"({"id":1})")), 9u);
    EXPECT_TRUE(isBatchFailure(lines.all(), "add sections error"));
    EXPECT_EQ(count("Devices"), 0);
}

// ---- Update: what is written ----

TEST_F(Sections, UpdateOfANewSectionFillsEveryColumn)
{
    ASSERT_EQ(send(addDevice, R"({"D":{"id":10}})"), 0u);
    const auto section = update(updateSection, sectionUpdate(fullMembers));
    ASSERT_EQ(section.code, 0u);
    EXPECT_EQ(section->id, 1u);
    expectFullFields(*section.record);
    expectNoZones(*section.record);
    EXPECT_EQ(rows(), std::vector<Row>{fullRow});
    EXPECT_EQ(file.rows("SELECT " + joined("typeof(", ")") + " FROM Sections"),
              (std::vector<Row>{Row{"integer", "integer", "text", "integer", "integer", "integer", "integer", "integer",
                                    "integer", "integer", "integer", "integer"}}));
}

TEST_F(Sections, UpdateOfANewSectionLeavesNullForWhatItOmits)
{
    ASSERT_EQ(send(addDevice, R"({"D":{"id":10}})"), 0u);
    const auto section = update(updateSection, sectionUpdate());
    ASSERT_EQ(section.code, 0u);
    EXPECT_EQ(section->id, 1u);
    expectNoFields(*section.record);
    expectNoZones(*section.record);
    EXPECT_EQ(rows(), std::vector<Row>{bareRow});
}

TEST_F(Sections, UpdateWithTheIdsAloneChangesNothing)
{
    ASSERT_EQ(
        send(addDevice, deviceWith(R"({"id":1,"zones":[{"id":5,"name":"Door"}],)" + std::string(fullMembers) + "}")),
        0u);
    const auto section = update(updateSection, sectionUpdate());
    ASSERT_EQ(section.code, 0u);
    EXPECT_EQ(section->id, 1u);
    expectFullFields(*section.record);
    ASSERT_EQ(section->zonesCount, 1u);
    EXPECT_EQ(section->zones[0].id, 5u);
    EXPECT_EQ(utf8(section->zones[0].name), "Door");
    EXPECT_EQ(rows(), std::vector<Row>{fullRow});
}

TEST_F(Sections, UpdateChangesTheOneNumberThatItHolds)
{
    ASSERT_EQ(send(addDevice, deviceWith(R"({"id":1,)" + std::string(fullMembers) + "}")), 0u);
    Row expected = fullRow;
    uint32_t next = 500;
    size_t column = 3;
    for (const NumberField &number : numberFields) {
        SCOPED_TRACE(number.key);
        const auto section =
            update(updateSection, sectionUpdate("\"" + std::string(number.key) + "\":" + std::to_string(++next)));
        ASSERT_EQ(section.code, 0u);
        EXPECT_EQ(value(section.record.get()->*number.field), next);
        expected[column++] = std::to_string(next);
        EXPECT_EQ(rows(), std::vector<Row>{expected});
    }
}

TEST_F(Sections, UpdateChangesTheNameAlone)
{
    ASSERT_EQ(send(addDevice, deviceWith(R"({"id":1,)" + std::string(fullMembers) + "}")), 0u);
    const auto section = update(updateSection, sectionUpdate(R"("name":"Attic")"));
    ASSERT_EQ(section.code, 0u);
    EXPECT_EQ(utf8(section->name), "Attic");
    EXPECT_EQ(value(section->flags), 4u);
    Row expected = fullRow;
    expected[2] = "Attic";
    EXPECT_EQ(rows(), std::vector<Row>{expected});
}

TEST_F(Sections, UpdateOfANewSectionFillsTheOneNumberThatItHolds)
{
    ASSERT_EQ(send(addDevice, R"({"D":{"id":10}})"), 0u);
    size_t column = 3;
    for (const NumberField &number : numberFields) {
        SCOPED_TRACE(number.key);
        foreign("DELETE FROM Sections");
        ASSERT_EQ(update(updateSection, sectionUpdate("\"" + std::string(number.key) + "\":12")).code, 0u);
        Row expected = bareRow;
        expected[column++] = "12";
        EXPECT_EQ(rows(), std::vector<Row>{expected});
    }
}

TEST_F(Sections, UpdateStoresZero)
{
    ASSERT_EQ(send(addDevice, deviceWith(R"({"id":1,)" + std::string(fullMembers) + "}")), 0u);
    const auto section = update(updateSection, sectionUpdate(R"("flags":0)"));
    ASSERT_EQ(section.code, 0u);
    EXPECT_EQ(value(section->flags), 0u);
    EXPECT_EQ(file.value("SELECT SectionsFlags FROM Sections"), "0");
}

TEST_F(Sections, UpdateStoresAnEmptyName)
{
    ASSERT_EQ(send(addDevice, deviceWith(R"({"id":1,)" + std::string(fullMembers) + "}")), 0u);
    const auto section = update(updateSection, sectionUpdate(R"("name":"")"));
    ASSERT_EQ(section.code, 0u);
    EXPECT_EQ(utf8(section->name), "");
    EXPECT_EQ(file.value("SELECT typeof(SectionsName) FROM Sections"), "text");
    EXPECT_EQ(file.value("SELECT SectionsName FROM Sections"), "");
}

TEST_F(Sections, UpdateKeepsTheLowBitsOfANumber)
{
    ASSERT_EQ(send(addDevice, R"({"D":{"id":10}})"), 0u);
    const auto section = update(
        updateSection, sectionUpdate(R"("tracert":3.9,"flags":-1,"arm":4294967296,"form":5000000000,"delay":-0.5)"));
    ASSERT_EQ(section.code, 0u);
    EXPECT_EQ(value(section->tracert), 3u);
    EXPECT_EQ(value(section->flags), 4294967295u);
    EXPECT_EQ(value(section->arm), 0u);
    EXPECT_EQ(value(section->form), 705032704u);
    EXPECT_EQ(value(section->delay), 0u);
    EXPECT_EQ(file.value("SELECT SectionsFlags FROM Sections"), "4294967295");
}

TEST_F(Sections, UpdateStoresANameOfAnyScript)
{
    ASSERT_EQ(send(addDevice, R"({"D":{"id":10}})"), 0u);
    const auto section = update(updateSection, sectionUpdate(R"("name":"Зал 'é' 😀")"));
    ASSERT_EQ(section.code, 0u);
    EXPECT_EQ(utf8(section->name), "Зал 'é' 😀");
    EXPECT_EQ(file.value("SELECT SectionsName FROM Sections"), "Зал 'é' 😀");
}

TEST_F(Sections, UpdateLeavesTheSameNumberOfAnotherDeviceAlone)
{
    ASSERT_EQ(send(addDevices, R"({"D":{"items":[{"id":10,"sections":[{"id":1,"name":"a"},{"id":2,"name":"b"}]},)"
                               R"({"id":11,"sections":[{"id":1,"name":"c"}]}]}})"),
              0u);
    ASSERT_EQ(update(updateSection, sectionUpdate(R"("name":"z")")).code, 0u);
    EXPECT_EQ(file.rows("SELECT SectionsDeviceId,SectionsSectionId,SectionsName FROM Sections"
                        " ORDER BY SectionsDeviceId,SectionsSectionId"),
              (std::vector<Row>{Row{"10", "1", "z"}, Row{"10", "2", "b"}, Row{"11", "1", "c"}}));
}

TEST_F(Sections, UpdateOfAnUnknownSectionOfAKnownNumberAddsARow)
{
    ASSERT_EQ(send(addDevices, R"({"D":{"items":[{"id":10},{"id":11,"sections":[{"id":1,"name":"c"}]}]}})"), 0u);
    ASSERT_EQ(update(updateSection, sectionUpdate(R"("flags":3)")).code, 0u);
    EXPECT_EQ(file.rows("SELECT SectionsDeviceId,SectionsName,SectionsFlags FROM Sections ORDER BY SectionsDeviceId"),
              (std::vector<Row>{Row{"10", none, "3"}, Row{"11", "c", none}}));
}

TEST_F(Sections, UpdateKeepsTheRowInItsPlace)
{
    ASSERT_EQ(send(addDevice, deviceWith(R"({"id":1},{"id":2})")), 0u);
    const auto before = file.value("SELECT rowid FROM Sections WHERE SectionsSectionId=1");
    ASSERT_EQ(update(updateSection, sectionUpdate(R"("name":"x")")).code, 0u);
    EXPECT_EQ(file.value("SELECT rowid FROM Sections WHERE SectionsSectionId=1"), before);
}

TEST_F(Sections, UpdateAssignsTheKeysAndThePresentColumnsAlone)
{
    ASSERT_EQ(send(addDevice, deviceWith(R"({"id":1})")), 0u);
    std::string sql = "CREATE TABLE Touched (Name TEXT);";
    for (const std::string name : columnNames)
        sql += "CREATE TRIGGER Touch" + name + " AFTER UPDATE OF " + name + " ON Sections BEGIN INSERT INTO Touched"
             + " VALUES('" + name + "'); END;";
    foreign(sql);
    ASSERT_EQ(update(updateSection, sectionUpdate(R"("uid_type":4)")).code, 0u);
    EXPECT_EQ(file.rows("SELECT Name FROM Touched ORDER BY Name"),
              (std::vector<Row>{Row{"SectionsDeviceId"}, Row{"SectionsSectionId"}, Row{"SectionsUidType"}}));
    foreign("DELETE FROM Touched");
    ASSERT_EQ(update(updateSection, sectionUpdate()).code, 0u);
    EXPECT_EQ(file.rows("SELECT Name FROM Touched ORDER BY Name"),
              (std::vector<Row>{Row{"SectionsDeviceId"}, Row{"SectionsSectionId"}}));
    foreign("DELETE FROM Touched");
    ASSERT_EQ(update(updateSection, sectionUpdate(fullMembers)).code, 0u);
    EXPECT_EQ(file.number("SELECT count(DISTINCT Name) FROM Touched"), 12);
}

TEST_F(Sections, UpdateNamesNoAbsentColumnAndADocumentNamesAll)
{
    foreign("DROP TABLE Sections; CREATE TABLE Sections (SectionsDeviceId INT,SectionsSectionId INT,SectionsName TEXT"
            " DEFAULT 'd',SectionsScheduleId INT DEFAULT 77,SectionsTracert INT DEFAULT 77,SectionsFlags INT"
            " DEFAULT 77,SectionsDetector INT DEFAULT 77,SectionsArm INT DEFAULT 77,SectionsPhysic INT DEFAULT 77,"
            "SectionsForm INT DEFAULT 77,SectionsDelay INT DEFAULT 77,SectionsUidType INT DEFAULT 77,"
            "PRIMARY KEY(SectionsDeviceId,SectionsSectionId))");
    ASSERT_EQ(send(addDevice, R"({"D":{"id":10}})"), 0u);
    ASSERT_EQ(update(updateSection, sectionUpdate(R"("delay":5)")).code, 0u);
    EXPECT_EQ(rows(), (std::vector<Row>{Row{"10", "1", "d", "77", "77", "77", "77", "77", "77", "77", "5", "77"}}));
    ASSERT_EQ(send(addDevice, deviceWith(R"({"id":1})")), 0u);
    EXPECT_EQ(rows(), std::vector<Row>{bareRow});
}

TEST_F(Sections, UpdateNeedsTheKeyOfDeviceAndSection)
{
    foreign("CREATE TABLE Other AS SELECT * FROM Sections; DROP TABLE Sections; ALTER TABLE Other RENAME TO Sections");
    const DebugLines lines;
    EXPECT_EQ(update(updateSection, sectionUpdate()).code, 9u);
    EXPECT_TRUE(isFailure(lines.all(), "add or update section error"));
    EXPECT_EQ(count("Sections"), 0);
}

// ---- Update: the document ----

TEST_F(Sections, UpdateTakesSectionForAMissingId)
{
    ASSERT_EQ(send(addDevice, deviceWith(R"({"id":1,"flags":3})")), 0u);
    const auto section = update(updateSection, R"({"D":{"device":10,"section":1,"name":"x"}})");
    ASSERT_EQ(section.code, 0u);
    EXPECT_EQ(section->id, 1u);
    EXPECT_EQ(utf8(section->name), "x");
    EXPECT_EQ(value(section->flags), 3u);
    EXPECT_EQ(count("Sections"), 1);
}

TEST_F(Sections, UpdatePrefersIdToSection)
{
    ASSERT_EQ(send(addDevice, R"({"D":{"id":10}})"), 0u);
    EXPECT_EQ(update(updateSection, R"({"D":{"device":10,"section":7,"id":1}})").code, 0u);
    EXPECT_EQ(update(updateSection, R"({"D":{"device":10,"section":"x","id":2}})").code, 0u);
    EXPECT_EQ(file.rows("SELECT SectionsSectionId FROM Sections ORDER BY SectionsSectionId"),
              (std::vector<Row>{Row{"1"}, Row{"2"}}));
}

TEST_F(Sections, UpdateDropsTheFractionOfItsIds)
{
    ASSERT_EQ(send(addDevice, R"({"D":{"id":10}})"), 0u);
    EXPECT_EQ(update(updateSection, R"({"D":{"device":10.9,"id":1.9}})").code, 0u);
    EXPECT_EQ(file.rows("SELECT SectionsDeviceId,SectionsSectionId FROM Sections"), (std::vector<Row>{Row{"10", "1"}}));
}

TEST_F(Sections, UpdateWrapsItsIds)
{
    ASSERT_EQ(send(addDevice, R"({"D":{"id":4294967295}})"), 0u);
    const auto section = update(updateSection, R"({"D":{"device":-1,"id":-1}})");
    ASSERT_EQ(section.code, 0u);
    EXPECT_EQ(section->id, 4294967295u);
    EXPECT_EQ(file.rows("SELECT SectionsDeviceId,SectionsSectionId FROM Sections"),
              (std::vector<Row>{Row{"4294967295", "4294967295"}}));
}

TEST_F(Sections, UpdateWithoutADeviceIsIncomplete)
{
    ASSERT_EQ(send(addDevice, R"({"D":{"id":0}})"), 0u);
    const DebugLines lines;
    EXPECT_EQ(update(updateSection, R"({"D":{"id":1,"name":"x"}})").code, 5u);
    EXPECT_EQ(update(updateSection, R"({"D":{}})").code, 5u);
    EXPECT_EQ(update(updateSection, R"({"device":10,"D":{"id":1}})").code, 5u);
    EXPECT_EQ(update(updateSection, R"({"D":{"items":[{"device":10,"id":1}]}})").code, 5u);
    EXPECT_EQ(count("Sections"), 0);
    EXPECT_EQ(lines.all(), std::vector<std::string>{});
}

TEST_F(Sections, UpdateWithoutAnyIdIsIncomplete)
{
    EXPECT_EQ(update(updateSection, R"({"D":{"device":10,"name":"x"}})").code, 5u);
    EXPECT_EQ(update(updateSection, R"({"D":{"device":10,"zone":1}})").code, 5u);
    EXPECT_EQ(count("Sections"), 0);
}

TEST_F(Sections, UpdateReadsADeviceOfAnotherTypeAsZero)
{
    ASSERT_EQ(send(addDevice, R"({"D":{"id":0}})"), 0u);
    int id = 0;
    for (const std::string device : {R"("10")", "true", "null", "[10]", R"({"id":10})"}) {
        const std::string document = R"({"D":{"device":)" + device + R"(,"id":)" + std::to_string(++id) + "}}";
        EXPECT_EQ(update(updateSection, document).code, 0u) << document;
    }
    EXPECT_EQ(file.rows("SELECT SectionsDeviceId,count(*) FROM Sections GROUP BY SectionsDeviceId"),
              (std::vector<Row>{Row{"0", "5"}}));
}

TEST_F(Sections, UpdateWithAWrongTypeIsIncomplete)
{
    ASSERT_EQ(send(addDevice, deviceWith(R"({"id":1,)" + std::string(fullMembers) + "}")), 0u);
    const DebugLines lines;
    for (const NumberField &number : numberFields)
        for (const char *wrong : wrongNumbers)
            EXPECT_EQ(update(updateSection, sectionUpdate("\"" + std::string(number.key) + "\":" + wrong)).code, 5u)
                << number.key << " " << wrong;
    for (const char *wrong : wrongTexts)
        EXPECT_EQ(update(updateSection, sectionUpdate(std::string(R"("name":)") + wrong)).code, 5u) << wrong;
    for (const std::string wrong : wrongNumbers) {
        EXPECT_EQ(update(updateSection, R"({"D":{"device":10,"id":)" + wrong + "}}").code, 5u) << wrong;
        EXPECT_EQ(update(updateSection, R"({"D":{"device":10,"section":)" + wrong + "}}").code, 5u) << wrong;
        EXPECT_EQ(update(updateSection, R"({"D":{"device":10,"section":1,"id":)" + wrong + "}}").code, 5u) << wrong;
    }
    EXPECT_EQ(rows(), std::vector<Row>{fullRow});
    EXPECT_EQ(count("Sections"), 1);
    EXPECT_EQ(lines.all(), std::vector<std::string>{});
}

TEST_F(Sections, UpdateRefusesATextThatIsNoObject)
{
    for (const char *text : {"", "nonsense", "[1,2]", "7", R"("x")", R"({"D":{"device":10,"id":1})"})
        EXPECT_EQ(update(updateSection, text).code, 10u) << text;
    FlatSection *out = nullptr;
    EXPECT_EQ(updateSection(&out, nullptr, 0), 10u);
    EXPECT_EQ(count("Sections"), 0);
}

TEST_F(Sections, UpdateWithoutTheEnvelopeIsIncomplete)
{
    for (const char *text :
         {"{}", R"({"device":10,"id":1})", R"({"D":[]})", R"({"D":5})", R"({"d":{"device":10,"id":1}})"})
        EXPECT_EQ(update(updateSection, text).code, 5u) << text;
    EXPECT_EQ(count("Sections"), 0);
}

TEST_F(Sections, UpdateIgnoresUnknownMembers)
{
    ASSERT_EQ(send(addDevice, R"({"D":{"id":10}})"), 0u);
    EXPECT_EQ(update(updateSection, sectionUpdate(R"("account":null,"Name":5,"user_index":"x")")).code, 0u);
    EXPECT_EQ(rows(), std::vector<Row>{bareRow});
}

TEST_F(Sections, UpdateWritesNoZone)
{
    ASSERT_EQ(send(addDevice, deviceWith(R"({"id":1,"zones":[{"id":5,"name":"Door"}]})")), 0u);
    const auto section = update(updateSection, sectionUpdate(R"("zones":[{"id":5,"name":"Window"},{"id":6}])"));
    ASSERT_EQ(section.code, 0u);
    ASSERT_EQ(section->zonesCount, 1u);
    EXPECT_EQ(section->zones[0].id, 5u);
    EXPECT_EQ(utf8(section->zones[0].name), "Door");
    EXPECT_EQ(file.rows("SELECT ZonesZoneId,ZonesName FROM Zones"), (std::vector<Row>{Row{"5", "Door"}}));
}

TEST_F(Sections, UpdateWithAWrongZoneIsIncomplete)
{
    for (const std::string zone : {"5", R"("x")", "null", "true", "[]", "{}", R"({"id":"5"})", R"({"id":5,"name":1})"})
        EXPECT_EQ(update(updateSection, sectionUpdate(R"("name":"x","zones":[{"id":4},)" + zone + "]")).code, 5u)
            << zone;
    EXPECT_EQ(count("Sections"), 0);
}

TEST_F(Sections, UpdateReadsZonesOfAnotherTypeAsNone)
{
    ASSERT_EQ(send(addDevice, R"({"D":{"id":10}})"), 0u);
    for (const char *zones : {"5", R"("x")", "null", "true", R"({"name":5})", "[]"})
        EXPECT_EQ(update(updateSection, sectionUpdate(std::string(R"("zones":)") + zones)).code, 0u) << zones;
    EXPECT_EQ(rows(), std::vector<Row>{bareRow});
}

// ---- Update: the parent device ----

TEST_F(Sections, UpdateForAnUnknownDeviceReturns11AndIsStored)
{
    const DebugLines lines;
    const auto section = update(updateSection, sectionUpdate(R"("name":"x")"));
    EXPECT_EQ(section.code, 11u);
    EXPECT_EQ(section.record.get(), nullptr);
    const auto found = get(getSection, 1, 10);
    ASSERT_EQ(found.code, 0u);
    EXPECT_EQ(utf8(found->name), "x");
    EXPECT_EQ(lines.all(), std::vector<std::string>{});
}

TEST_F(Sections, UpdateForAnUnknownDeviceMergesNonetheless)
{
    ASSERT_EQ(update(updateSection, sectionUpdate(fullMembers)).code, 11u);
    ASSERT_EQ(update(updateSection, sectionUpdate(R"("name":"x")")).code, 11u);
    Row expected = fullRow;
    expected[2] = "x";
    EXPECT_EQ(rows(), std::vector<Row>{expected});
}

TEST_F(Sections, UpdateAsksForTheDeviceOfTheDocument)
{
    ASSERT_EQ(send(addDevice, R"({"D":{"id":1}})"), 0u);
    EXPECT_EQ(update(updateSection, sectionUpdate()).code, 11u);
    ASSERT_EQ(send(addDevice, R"({"D":{"id":10}})"), 0u);
    EXPECT_EQ(update(updateSection, sectionUpdate()).code, 0u);
}

TEST_F(Sections, UpdateReturns7IfTheDeviceCannotBeReadAndIsStored)
{
    ASSERT_EQ(send(addDevice, deviceWith(R"({"id":1,"name":"a"})")), 0u);
    foreign("ALTER TABLE Devices RENAME TO Gone");
    const DebugLines lines;
    const auto section = update(updateSection, sectionUpdate(R"("name":"x")"));
    EXPECT_EQ(section.code, 7u);
    EXPECT_EQ(section.record.get(), nullptr);
    EXPECT_TRUE(isFailure(lines.all(), "is device exists error"));
    EXPECT_EQ(file.value("SELECT SectionsName FROM Sections"), "x");
}

TEST_F(Sections, UpdateAsksForNothingButTheDevicesId)
{
    ASSERT_EQ(send(addDevice, R"({"D":{"id":10}})"), 0u);
    foreign("DROP TABLE Devices; CREATE TABLE Devices (DevicesId INT); INSERT INTO Devices VALUES (10)");
    EXPECT_EQ(update(updateSection, sectionUpdate()).code, 0u);
}

TEST_F(Sections, UpdateWhoseDeviceCheckFailedDoesNotBlockTheNext)
{
    foreign("ALTER TABLE Devices RENAME TO Gone");
    ASSERT_EQ(update(updateSection, sectionUpdate()).code, 7u);
    foreign("ALTER TABLE Gone RENAME TO Devices; INSERT INTO Devices(DevicesId) VALUES (10)");
    EXPECT_EQ(update(updateSection, sectionUpdate(R"("name":"x")")).code, 0u);
    EXPECT_EQ(file.value("SELECT SectionsName FROM Sections"), "x");
}

// ---- Update: failures ----

TEST_F(Sections, UpdateThatCannotBeWrittenReturns9)
{
    refuse("INSERT", "Sections");
    const DebugLines lines;
    const auto section = update(updateSection, sectionUpdate(R"("name":"x")"));
    EXPECT_EQ(section.code, 9u);
    EXPECT_EQ(section.record.get(), nullptr);
    EXPECT_TRUE(isFailure(lines.all(), "add or update section error"));
    EXPECT_NE(lines.all().at(1).find("refused"), std::string::npos);
    EXPECT_EQ(count("Sections"), 0);
}

TEST_F(Sections, UpdateThatCannotBeMergedKeepsTheRow)
{
    ASSERT_EQ(send(addDevice, deviceWith(R"({"id":1,)" + std::string(fullMembers) + "}")), 0u);
    refuse("UPDATE", "Sections");
    const DebugLines lines;
    EXPECT_EQ(update(updateSection, sectionUpdate(R"("name":"x")")).code, 9u);
    EXPECT_TRUE(isFailure(lines.all(), "add or update section error"));
    EXPECT_EQ(rows(), std::vector<Row>{fullRow});
    EXPECT_EQ(update(updateSection, R"({"D":{"device":10,"id":2}})").code, 0u);
}

TEST_F(Sections, UpdateOfAMissingColumnFailsOnlyIfItIsNamed)
{
    ASSERT_EQ(send(addDevice, deviceWith(R"({"id":1,"name":"a"})")), 0u);
    foreign("ALTER TABLE Sections RENAME COLUMN SectionsForm TO Gone");
    DebugLines lines;
    EXPECT_EQ(update(updateSection, sectionUpdate(R"("name":"x","form":2)")).code, 9u);
    EXPECT_TRUE(isFailure(lines.all(), "add or update section error"));
    lines.clear();
    EXPECT_EQ(update(updateSection, sectionUpdate(R"("name":"x")")).code, 9u);
    EXPECT_TRUE(isFailure(lines.all(), "get sections for device by id error"));
    EXPECT_EQ(file.value("SELECT SectionsName FROM Sections"), "a");
}

TEST_F(Sections, UpdateThatCannotBeReadBackIsUndone)
{
    foreign("ALTER TABLE Sections RENAME COLUMN SectionsForm TO Gone; INSERT INTO Devices(DevicesId) VALUES (10)");
    const DebugLines lines;
    const auto section = update(updateSection, sectionUpdate(R"("name":"x")"));
    EXPECT_EQ(section.code, 9u);
    EXPECT_EQ(section.record.get(), nullptr);
    EXPECT_TRUE(isFailure(lines.all(), "get sections for device by id error"));
    foreign("ALTER TABLE Sections RENAME COLUMN Gone TO SectionsForm");
    EXPECT_EQ(count("Sections"), 0);
    EXPECT_EQ(update(updateSection, R"({"D":{"device":10,"id":2}})").code, 0u);
    EXPECT_EQ(count("Sections"), 1);
}

TEST_F(Sections, UpdateThatFailsDoesNotAskForTheDevice)
{
    refuse("INSERT", "Sections");
    foreign("DROP TABLE Devices");
    const DebugLines lines;
    EXPECT_EQ(update(updateSection, sectionUpdate()).code, 9u);
    EXPECT_TRUE(isFailure(lines.all(), "add or update section error"));
}

TEST_F(Sections, UpdateWhoseRowIsNotFoundAgainReturns8AndIsCommitted)
{
    foreign("CREATE TRIGGER Move AFTER INSERT ON Sections BEGIN UPDATE Sections SET SectionsSectionId=99; END;"
            "DROP TABLE Devices");
    const DebugLines lines;
    const auto section = update(updateSection, sectionUpdate(R"("name":"x")"));
    EXPECT_EQ(section.code, 8u);
    EXPECT_EQ(section.record.get(), nullptr);
    EXPECT_EQ(lines.all(), std::vector<std::string>{});
    EXPECT_EQ(file.rows("SELECT SectionsSectionId,SectionsName FROM Sections"), (std::vector<Row>{Row{"99", "x"}}));
}

TEST_F(Sections, UpdateReturnsTheRowAsStored)
{
    ASSERT_EQ(send(addDevice, R"({"D":{"id":10}})"), 0u);
    foreign("CREATE TRIGGER Change AFTER INSERT ON Sections BEGIN UPDATE Sections SET SectionsName='changed'; END");
    const auto section = update(updateSection, sectionUpdate(R"("name":"sent")"));
    ASSERT_EQ(section.code, 0u);
    EXPECT_EQ(utf8(section->name), "changed");
}

// ---- Zones that cannot be read ----

TEST_F(Sections, GetWithUnreadableZonesReturnsNone)
{
    ASSERT_EQ(send(addDevice, deviceWith(R"({"id":1,"name":"a","zones":[{"id":5}]})")), 0u);
    foreign("ALTER TABLE Zones RENAME TO Gone");
    const DebugLines lines;
    const auto section = get(getSection, 1, 10);
    ASSERT_EQ(section.code, 0u);
    EXPECT_EQ(utf8(section->name), "a");
    expectNoZones(*section.record);
    EXPECT_TRUE(isFailure(lines.all(), "get zones for device section error"));
}

TEST_F(Sections, ListWithUnreadableZonesReturnsEverySection)
{
    ASSERT_EQ(send(addDevice, deviceWith(R"({"id":1,"name":"a","zones":[{"id":5}]},{"id":2,"name":"b"})")), 0u);
    foreign("ALTER TABLE Zones RENAME TO Gone");
    const DebugLines lines;
    const auto sections = list(getSections, 10);
    ASSERT_EQ(sections.code, 0u);
    ASSERT_EQ(sections.size(), 2u);
    for (const FlatSection &section : sections)
        expectNoZones(section);
    const std::vector<std::string> expected{"execute error", "*", "get zones for device section error", "*",
                                            "execute error", "*", "get zones for device section error", "*"};
    EXPECT_EQ(lines.allWithErrorsAt({1, 3, 5, 7}), expected);
}

TEST_F(Sections, ListByFieldWithUnreadableZonesReturnsTheSection)
{
    ASSERT_EQ(send(addDevice, deviceWith(R"({"id":1,"name":"a","zones":[{"id":5}]},{"id":2,"name":"b"})")), 0u);
    foreign("ALTER TABLE Zones RENAME TO Gone");
    const DebugLines lines;
    const auto sections = listBy(getSectionsWithParams, "name", "a", 10);
    ASSERT_EQ(sections.code, 0u);
    ASSERT_EQ(sections.size(), 1u);
    EXPECT_EQ(sections[0].id, 1u);
    expectNoZones(sections[0]);
    EXPECT_TRUE(isFailure(lines.all(), "get zones for device section error"));
}

TEST_F(Sections, ListReturnsTheZonesThatCanBeRead)
{
    ASSERT_EQ(send(addDevice, deviceWith(R"({"id":1,"zones":[{"id":5}]},{"id":2,"zones":[{"id":6}]},)"
                                         R"({"id":3,"zones":[{"id":7}]})")),
              0u);
    // Of section 2 the zones overflow, and with them their read.
    foreign("ALTER TABLE Zones RENAME TO Stored; CREATE VIEW Zones AS SELECT ZonesDeviceId,ZonesSectionId,ZonesZoneId,"
            "ZonesName,ZonesDetector,ZonesPhysic,ZonesForm,ZonesFlags,ZonesDelay,ZonesScheduleId,ZonesTracert,"
            "ZonesUidType,CASE ZonesSectionId WHEN 2 THEN abs(-9223372036854775806-ZonesSectionId) ELSE ZonesArm END"
            " AS ZonesArm FROM Stored");
    for (const bool byField : {false, true}) {
        const DebugLines lines;
        const auto sections = byField ? listBy(getSectionsWithParams, "id", "2", 10) : list(getSections, 10);
        ASSERT_EQ(sections.code, 0u);
        ASSERT_EQ(sections.size(), byField ? 1u : 3u);
        EXPECT_TRUE(isFailure(lines.all(), "get zones for device section error"));
        expectNoZones(*sections.withId(2));
        if (byField)
            continue;
        ASSERT_EQ(sections.withId(1)->zonesCount, 1u);
        EXPECT_EQ(sections.withId(1)->zones[0].id, 5u);
        ASSERT_EQ(sections.withId(3)->zonesCount, 1u);
        EXPECT_EQ(sections.withId(3)->zones[0].id, 7u);
    }
}

TEST_F(Sections, UpdateWithUnreadableZonesReturns0AndIsUndone)
{
    ASSERT_EQ(send(addDevice, R"({"D":{"id":10}})"), 0u);
    foreign("ALTER TABLE Zones RENAME TO Gone");
    const DebugLines lines;
    const auto section = update(updateSection, sectionUpdate(R"("name":"x")"));
    ASSERT_EQ(section.code, 0u);
    EXPECT_EQ(section->id, 1u);
    EXPECT_EQ(utf8(section->name), "x");
    expectNoZones(*section.record);
    EXPECT_TRUE(isFailure(lines.all(), "get zones for device section error"));
    EXPECT_EQ(count("Sections"), 0);
}

TEST_F(Sections, UpdateWithUnreadableZonesKeepsTheOldRow)
{
    ASSERT_EQ(send(addDevice, deviceWith(R"({"id":1,)" + std::string(fullMembers) + "}")), 0u);
    foreign("ALTER TABLE Zones RENAME TO Gone");
    const auto section = update(updateSection, sectionUpdate(R"("name":"x")"));
    ASSERT_EQ(section.code, 0u);
    EXPECT_EQ(utf8(section->name), "x");
    EXPECT_EQ(value(section->flags), 4u);
    EXPECT_EQ(rows(), std::vector<Row>{fullRow});
}

TEST_F(Sections, UpdateForAnUnknownDeviceWithUnreadableZonesReturns11AndIsUndone)
{
    foreign("ALTER TABLE Zones RENAME TO Gone");
    const DebugLines lines;
    const auto section = update(updateSection, sectionUpdate());
    EXPECT_EQ(section.code, 11u);
    EXPECT_EQ(section.record.get(), nullptr);
    EXPECT_TRUE(isFailure(lines.all(), "get zones for device section error"));
    EXPECT_EQ(count("Sections"), 0);
}

// ---- Reading ----

TEST_F(Sections, EveryReadReturnsEveryField)
{
    foreign("INSERT INTO Sections VALUES (10,1,'Hall',2,3,4,5,6,7,8,9,11);"
            "INSERT INTO Zones VALUES (10,1,5,'Door',21,22,23,24,25,26,27,28,29)");
    const auto one = get(getSection, 1, 10);
    const auto all = list(getSections, 10);
    const auto some = listBy(getSectionsWithParams, "id", "1", 10);
    ASSERT_EQ(one.code, 0u);
    ASSERT_EQ(all.code, 0u);
    ASSERT_EQ(all.size(), 1u);
    ASSERT_EQ(some.code, 0u);
    ASSERT_EQ(some.size(), 1u);
    for (const FlatSection *section : {one.record.get(), &all[0], &some[0]}) {
        EXPECT_EQ(section->id, 1u);
        expectFullFields(*section);
        ASSERT_EQ(section->zonesCount, 1u);
        EXPECT_EQ(section->zones[0].id, 5u);
        EXPECT_EQ(utf8(section->zones[0].name), "Door");
        EXPECT_EQ(value(section->zones[0].detector), 21u);
        EXPECT_EQ(value(section->zones[0].physic), 22u);
        EXPECT_EQ(value(section->zones[0].form), 23u);
        EXPECT_EQ(value(section->zones[0].flags), 24u);
        EXPECT_EQ(value(section->zones[0].delay), 25u);
        EXPECT_EQ(value(section->zones[0].scheduleId), 26u);
        EXPECT_EQ(value(section->zones[0].tracert), 27u);
        EXPECT_EQ(value(section->zones[0].uidType), 28u);
        EXPECT_EQ(value(section->zones[0].arm), 29u);
    }
}

TEST_F(Sections, EveryReadLeavesNullAbsent)
{
    foreign("INSERT INTO Sections(SectionsDeviceId,SectionsSectionId) VALUES (10,1)");
    const auto one = get(getSection, 1, 10);
    const auto all = list(getSections, 10);
    const auto some = listBy(getSectionsWithParams, "id", "1", 10);
    ASSERT_EQ(one.code, 0u);
    ASSERT_EQ(all.code, 0u);
    ASSERT_EQ(some.code, 0u);
    for (const FlatSection *section : {one.record.get(), &all[0], &some[0]}) {
        EXPECT_EQ(section->id, 1u);
        expectNoFields(*section);
        expectNoZones(*section);
    }
}

TEST_F(Sections, NullIdReadsAsZero)
{
    foreign("INSERT INTO Sections(SectionsDeviceId,SectionsName) VALUES (10,'a');"
            "INSERT INTO Zones(ZonesDeviceId,ZonesSectionId,ZonesZoneId) VALUES (10,0,5)");
    const auto sections = list(getSections, 10);
    ASSERT_EQ(sections.code, 0u);
    EXPECT_EQ(sections[0].id, 0u);
    EXPECT_EQ(utf8(sections[0].name), "a");
    EXPECT_EQ(sections[0].zonesCount, 1u);
    EXPECT_EQ(get(getSection, 0, 10).code, 8u);
}

TEST_F(Sections, EmptyNameReadsAsEmptyText)
{
    foreign("INSERT INTO Sections(SectionsDeviceId,SectionsSectionId,SectionsName) VALUES (10,1,'')");
    const auto section = get(getSection, 1, 10);
    ASSERT_EQ(section.code, 0u);
    ASSERT_NE(section->name, nullptr);
    EXPECT_EQ(section->name[0], 0u);
}

TEST_F(Sections, NumberThatIsNoneReadsAsZero)
{
    foreign("INSERT INTO Sections(SectionsDeviceId,SectionsSectionId,SectionsFlags) VALUES (10,1,'many')");
    const auto section = get(getSection, 1, 10);
    ASSERT_EQ(section.code, 0u);
    EXPECT_EQ(value(section->flags), 0u);
}

TEST_F(Sections, GetTakesTheSectionBeforeTheDevice)
{
    ASSERT_EQ(send(addDevices, R"({"D":{"items":[{"id":10,"sections":[{"id":1,"name":"right"}]},)"
                               R"({"id":1,"sections":[{"id":10,"name":"wrong"}]}]}})"),
              0u);
    const auto section = get(getSection, 1, 10);
    ASSERT_EQ(section.code, 0u);
    EXPECT_EQ(section->id, 1u);
    EXPECT_EQ(utf8(section->name), "right");
}

TEST_F(Sections, GetOfAnUnknownPairReturns8)
{
    ASSERT_EQ(send(addDevice, deviceWith(R"({"id":1})")), 0u);
    const DebugLines lines;
    EXPECT_EQ(get(getSection, 2, 10).code, 8u);
    EXPECT_EQ(get(getSection, 1, 11).code, 8u);
    EXPECT_EQ(get(getSection, 10, 1).code, 8u);
    EXPECT_EQ(lines.all(), std::vector<std::string>{});
}

TEST_F(Sections, ReadsReturnTheZonesOfTheirOwnSectionAndDevice)
{
    ASSERT_EQ(send(addDevices, R"({"D":{"items":[{"id":10,"sections":[{"id":1,"zones":[{"id":5},{"id":6}]},)"
                               R"({"id":2,"zones":[{"id":7}]},{"id":3}]},)"
                               R"({"id":11,"sections":[{"id":1,"zones":[{"id":8},{"id":5}]}]}]}})"),
              0u);
    const auto sections = list(getSections, 10);
    ASSERT_EQ(sections.code, 0u);
    ASSERT_EQ(sections.size(), 3u);
    ASSERT_EQ(sections.withId(1)->zonesCount, 2u);
    EXPECT_EQ(sections.withId(1)->zones[0].id + sections.withId(1)->zones[1].id, 11u);
    ASSERT_EQ(sections.withId(2)->zonesCount, 1u);
    EXPECT_EQ(sections.withId(2)->zones[0].id, 7u);
    expectNoZones(*sections.withId(3));
    const auto some = listBy(getSectionsWithParams, "id", "2", 10);
    ASSERT_EQ(some.code, 0u);
    ASSERT_EQ(some[0].zonesCount, 1u);
    EXPECT_EQ(some[0].zones[0].id, 7u);
    const auto one = get(getSection, 1, 11);
    ASSERT_EQ(one.code, 0u);
    EXPECT_EQ(one->zonesCount, 2u);
}

TEST_F(Sections, ListNeedsNoDevice)
{
    foreign("INSERT INTO Sections(SectionsDeviceId,SectionsSectionId) VALUES (10,1),(10,2),(11,3)");
    const auto sections = list(getSections, 10);
    ASSERT_EQ(sections.code, 0u);
    EXPECT_EQ(sections.size(), 2u);
    EXPECT_EQ(sections.withId(3), nullptr);
}

TEST_F(Sections, ListOfADeviceWithoutSectionsReturns8)
{
    ASSERT_EQ(send(addDevices, R"({"D":{"items":[{"id":10},{"id":11,"sections":[{"id":1}]}]}})"), 0u);
    const DebugLines lines;
    FlatSection *out = nullptr;
    uint32_t length = 77;
    EXPECT_EQ(getSections(&out, &length, 10), 8u);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(length, 77u);
    EXPECT_EQ(lines.all(), std::vector<std::string>{});
}

TEST_F(Sections, GetThatCannotBeReadReturns7)
{
    foreign("ALTER TABLE Sections RENAME TO Gone");
    const DebugLines lines;
    EXPECT_EQ(get(getSection, 1, 10).code, 7u);
    EXPECT_TRUE(isFailure(lines.all(), "get sections for device by id error"));
}

TEST_F(Sections, ListThatCannotBeReadReturns7)
{
    foreign("ALTER TABLE Sections RENAME TO Gone");
    const DebugLines lines;
    FlatSection *out = nullptr;
    uint32_t length = 77;
    EXPECT_EQ(getSections(&out, &length, 10), 7u);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(length, 77u);
    EXPECT_TRUE(isFailure(lines.all(), "get sections for device error"));
}

TEST_F(Sections, ListByFieldThatCannotBeReadReturns7)
{
    foreign("ALTER TABLE Sections RENAME TO Gone");
    const DebugLines lines;
    FlatSection *out = nullptr;
    uint32_t length = 77;
    EXPECT_EQ(find(getSectionsWithParams, &out, &length, "name", "a", 10), 7u);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(length, 77u);
    EXPECT_TRUE(isFailure(lines.all(), "get sections for device by field error"));
}

TEST_F(Sections, FailedReadsDoNotBlockTheNext)
{
    ASSERT_EQ(send(addDevice, deviceWith(R"({"id":1,"name":"a"})")), 0u);
    foreign("ALTER TABLE Sections RENAME TO Gone");
    ASSERT_EQ(get(getSection, 1, 10).code, 7u);
    ASSERT_EQ(list(getSections, 10).code, 7u);
    ASSERT_EQ(listBy(getSectionsWithParams, "name", "a", 10).code, 7u);
    file.execute("ALTER TABLE Gone RENAME TO Sections");
    EXPECT_EQ(get(getSection, 1, 10).code, 0u);
    EXPECT_EQ(update(updateSection, sectionUpdate(R"("name":"b")")).code, 0u);
    EXPECT_EQ(file.value("SELECT SectionsName FROM Sections"), "b");
}

// ---- By a field ----

TEST_F(Sections, ListByFieldFindsEachSearchableKey)
{
    ASSERT_EQ(send(addDevice, deviceWith(R"({"id":1,)" + std::string(fullMembers) + R"(},{"id":20,"name":"b"})")), 0u);
    const std::pair<const char *, const char *> searches[] = {{"id", "1"},      {"name", "Hall"}, {"schedule_id", "2"},
                                                              {"tracert", "3"}, {"flags", "4"},   {"detector", "5"},
                                                              {"arm", "6"}};
    for (const auto &[key, wanted] : searches) {
        SCOPED_TRACE(key);
        const auto sections = listBy(getSectionsWithParams, key, wanted, 10);
        ASSERT_EQ(sections.code, 0u);
        ASSERT_EQ(sections.size(), 1u);
        EXPECT_EQ(sections[0].id, 1u);
        expectFullFields(sections[0]);
    }
}

TEST_F(Sections, ListByFieldRefusesEveryOtherKey)
{
    ASSERT_EQ(send(addDevice, deviceWith(R"({"id":1,)" + std::string(fullMembers) + "}")), 0u);
    foreign("ALTER TABLE Sections RENAME TO Gone");
    const DebugLines lines;
    for (const char *key : {"physic", "form", "delay", "uid_type", "zones", "device", "section", "zone", "", "ID",
                            "Name", "name ", "SectionsName", "scheduleId"}) {
        FlatSection *out = nullptr;
        uint32_t length = 77;
        EXPECT_EQ(find(getSectionsWithParams, &out, &length, key, "1", 10), 10u) << key;
        EXPECT_EQ(out, nullptr);
        EXPECT_EQ(length, 77u);
    }
    EXPECT_EQ(lines.all(), std::vector<std::string>{});
}

TEST_F(Sections, ListByFieldStaysInItsDevice)
{
    ASSERT_EQ(send(addDevices, R"({"D":{"items":[{"id":10,"sections":[{"id":1,"name":"a"},{"id":2,"name":"a"},)"
                               R"({"id":3,"name":"b"}]},{"id":11,"sections":[{"id":4,"name":"a"}]}]}})"),
              0u);
    const auto sections = listBy(getSectionsWithParams, "name", "a", 10);
    ASSERT_EQ(sections.code, 0u);
    EXPECT_EQ(sections.size(), 2u);
    EXPECT_NE(sections.withId(1), nullptr);
    EXPECT_NE(sections.withId(2), nullptr);
    EXPECT_EQ(listBy(getSectionsWithParams, "name", "b", 11).code, 8u);
}

TEST_F(Sections, ListByFieldComparesNumbersByTheirValue)
{
    ASSERT_EQ(send(addDevice, deviceWith(R"({"id":1,"arm":6},{"id":2,"arm":4294967295},{"id":3})")), 0u);
    EXPECT_EQ(listBy(getSectionsWithParams, "arm", "6", 10).code, 0u);
    EXPECT_EQ(listBy(getSectionsWithParams, "arm", "06", 10).code, 0u);
    EXPECT_EQ(listBy(getSectionsWithParams, "arm", "4294967295", 10).code, 0u);
    EXPECT_EQ(listBy(getSectionsWithParams, "arm", "60", 10).code, 8u);
    EXPECT_EQ(listBy(getSectionsWithParams, "arm", "six", 10).code, 8u);
    EXPECT_EQ(listBy(getSectionsWithParams, "arm", "", 10).code, 8u);
}

TEST_F(Sections, ListByFieldComparesNamesExactly)
{
    ASSERT_EQ(send(addDevice, deviceWith(R"({"id":1,"name":"Hall"},{"id":2,"name":"5"},{"id":3,"name":""},{"id":4})")),
              0u);
    for (const char *name : {"hall", "Hal", "Hall ", "H%", "05", "NULL", "' OR 1=1 --"})
        EXPECT_EQ(listBy(getSectionsWithParams, "name", name, 10).code, 8u) << name;
    EXPECT_EQ(listBy(getSectionsWithParams, "name", "5", 10).size(), 1u);
    const auto unnamed = listBy(getSectionsWithParams, "name", "", 10);
    ASSERT_EQ(unnamed.code, 0u);
    ASSERT_EQ(unnamed.size(), 1u);
    EXPECT_EQ(unnamed[0].id, 3u);
}

TEST_F(Sections, ListByFieldWithoutAMatchReturns8)
{
    ASSERT_EQ(send(addDevice, deviceWith(R"({"id":1,"name":"a"})")), 0u);
    const DebugLines lines;
    FlatSection *out = nullptr;
    uint32_t length = 77;
    EXPECT_EQ(find(getSectionsWithParams, &out, &length, "name", "b", 10), 8u);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(length, 77u);
    EXPECT_EQ(lines.all(), std::vector<std::string>{});
}

// ---- Guards ----

TEST_F(Sections, OutParameterInUseIsRefusedAndNothingTouched)
{
    ASSERT_EQ(send(addDevice, deviceWith(R"({"id":1,"name":"a"})")), 0u);
    FlatSection block{};
    FlatSection *out = &block;
    uint32_t length = 77;
    const DebugLines lines;
    EXPECT_EQ(getSection(&out, 1, 10), 10u);
    EXPECT_EQ(getSections(&out, &length, 10), 10u);
    EXPECT_EQ(find(getSectionsWithParams, &out, &length, "name", "a", 10), 10u);
    EXPECT_EQ(send(updateSection, &out, sectionUpdate(R"("name":"x")")), 10u);
    EXPECT_EQ(out, &block);
    EXPECT_EQ(length, 77u);
    EXPECT_EQ(file.value("SELECT SectionsName FROM Sections"), "a");
    EXPECT_EQ(lines.all(), std::vector<std::string>{});
}

TEST_F(Sections, OutParameterInUseComesBeforeEveryOtherFault)
{
    library.reset();
    FlatSection block{};
    FlatSection *out = &block;
    uint32_t length = 77;
    EXPECT_EQ(getSection(&out, 1, 10), 10u);
    EXPECT_EQ(getSections(&out, &length, 10), 10u);
    EXPECT_EQ(find(getSectionsWithParams, &out, &length, "name", "a", 10), 10u);
    EXPECT_EQ(send(updateSection, &out, "{}"), 10u);
    EXPECT_EQ(send(updateSection, &out, sectionUpdate()), 10u);
    EXPECT_EQ(out, &block);
    EXPECT_EQ(length, 77u);
}

TEST_F(Sections, UpdateRefusesBadTextsWithoutALaunch)
{
    library.reset();
    EXPECT_EQ(update(updateSection, "nonsense").code, 10u);
    EXPECT_EQ(update(updateSection, R"({"D":{"id":1}})").code, 5u);
    EXPECT_EQ(update(updateSection, R"({"D":{"device":10}})").code, 5u);
    EXPECT_EQ(update(updateSection, R"({"D":{"device":10,"id":1,"arm":null}})").code, 5u);
}

// ---- Freeing ----

TEST_F(Sections, FreeRefusesNothing)
{
    EXPECT_EQ(freeSection(nullptr), 10u);
    EXPECT_EQ(freeSectionsArray(nullptr, 1), 10u);
    EXPECT_EQ(freeSectionsArray(nullptr, 0), 10u);
}

TEST_F(Sections, FreeOfAnArrayWithoutACountFreesNothing)
{
    ASSERT_EQ(send(addDevice, deviceWith(R"({"id":1,"name":"a","zones":[{"id":5}]})")), 0u);
    auto sections = list(getSections, 10);
    ASSERT_EQ(sections.code, 0u);
    EXPECT_EQ(freeSectionsArray(*sections.out(), 0), 10u);
    EXPECT_EQ(utf8(sections[0].name), "a");
    EXPECT_EQ(sections[0].zonesCount, 1u);
}

TEST_F(Sections, FreeWorksAfterTheExit)
{
    ASSERT_EQ(
        send(addDevice, deviceWith(R"({"id":1,"zones":[{"id":5,"name":"Door"}],)" + std::string(fullMembers) + "}")),
        0u);
    auto one = get(getSection, 1, 10);
    FlatSection *all = nullptr;
    uint32_t length = 0;
    ASSERT_EQ(one.code, 0u);
    ASSERT_EQ(getSections(&all, &length, 10), 0u);
    library.reset();
    EXPECT_EQ(utf8(one->zones[0].name), "Door");
    EXPECT_EQ(freeSection(one.record.release()), 0u);
    EXPECT_EQ(freeSectionsArray(all, length), 0u);
}

TEST_F(Sections, FreeRefusesZonesWithoutACount)
{
    ASSERT_EQ(send(addDevice, deviceWith(R"({"id":1,"zones":[{"id":5}],)" + std::string(fullMembers) + "}")), 0u);
    auto section = get(getSection, 1, 10);
    ASSERT_EQ(section.code, 0u);
    section->zonesCount = 0;
    EXPECT_EQ(freeSection(section.record.get()), 10u);
    EXPECT_EQ(section->name, nullptr);
    EXPECT_EQ(section->scheduleId, nullptr);
    EXPECT_EQ(section->id, 1u);
    ASSERT_NE(section->zones, nullptr);
    EXPECT_EQ(section->zones[0].id, 5u);
    EXPECT_EQ(value(section->tracert), 3u);
    EXPECT_EQ(value(section->uidType), 11u);
    section->zonesCount = 1;
}

TEST_F(Sections, FreeRefusesACountWithoutZones)
{
    ASSERT_EQ(send(addDevice, deviceWith(R"({"id":1,)" + std::string(fullMembers) + "}")), 0u);
    auto section = get(getSection, 1, 10);
    ASSERT_EQ(section.code, 0u);
    section->zonesCount = 3;
    EXPECT_EQ(freeSection(section.record.get()), 10u);
    EXPECT_EQ(section->name, nullptr);
    EXPECT_EQ(section->scheduleId, nullptr);
    EXPECT_EQ(section->zonesCount, 3u);
    EXPECT_EQ(value(section->tracert), 3u);
    section->zonesCount = 0;
}

TEST_F(Sections, FreeOfAnArrayStopsAtTheFirstRefusedElement)
{
    ASSERT_EQ(send(addDevice, deviceWith(R"({"id":1,"name":"a","flags":1,"zones":[{"id":5}]},)"
                                         R"({"id":2,"name":"b","flags":2,"zones":[{"id":6}]},)"
                                         R"({"id":3,"name":"c","flags":3,"zones":[{"id":7}]})")),
              0u);
    auto sections = list(getSections, 10);
    ASSERT_EQ(sections.code, 0u);
    ASSERT_EQ(sections.size(), 3u);
    sections[1].zonesCount = 0;
    EXPECT_EQ(freeSectionsArray(*sections.out(), 3), 10u);
    EXPECT_EQ(sections[0].name, nullptr);
    EXPECT_EQ(sections[0].flags, nullptr);
    expectNoZones(sections[0]);
    EXPECT_EQ(sections[1].name, nullptr);
    EXPECT_NE(sections[1].flags, nullptr);
    EXPECT_NE(sections[1].zones, nullptr);
    EXPECT_NE(sections[2].name, nullptr);
    EXPECT_NE(sections[2].zones, nullptr);
    EXPECT_EQ(sections[2].zonesCount, 1u);
    sections[1].zonesCount = 1;
}

} // namespace
