// Contractors: one table, nothing joined, every column searchable.
#include "Store.h"

#include <string>
#include <utility>
#include <vector>

namespace {

using namespace brimlet::test;

// Documents with the codes that they get; members or keys with the texts that go with them.
using Codes = std::vector<std::pair<std::string, uint32_t>>;
using Pairs = std::vector<std::pair<std::string, std::string>>;

constexpr char acme[] =
    R"({"id":4,"inn":"7701","org_id":2,"type":1,"off_name":"Acme Limited","name":"Acme","extra":"note"})";

class Contractors : public StoreTest
{
protected:
    // The row of a contractor in the order of the table; empty when there is none.
    Row stored(uint32_t id) const
    {
        const std::vector<Row> rows =
            file.rows("SELECT ContractorsId, ContractorsInn, ContractorsOrgId, ContractorsType, "
                      "ContractorsOfficialName, ContractorsName, ContractorsExtra FROM Contractors "
                      "WHERE ContractorsId = "
                      + std::to_string(id));
        return rows.empty() ? Row() : rows.at(0);
    }

    int64_t rowCount() const { return file.number("SELECT count(*) FROM Contractors"); }

    // Has the file note which columns an update of a contractor assigns.
    void watch()
    {
        std::string sql = "CREATE TABLE Assigned (Name VARCHAR(255));";
        for (const char *column : {"ContractorsId", "ContractorsInn", "ContractorsOrgId", "ContractorsType",
                                   "ContractorsOfficialName", "ContractorsName", "ContractorsExtra"})
            sql += "CREATE TRIGGER Watch" + std::string(column) + " AFTER UPDATE OF " + column
                 + " ON Contractors BEGIN INSERT INTO Assigned VALUES ('" + column + "'); END;";
        foreign(sql);
    }

    // The columns that were assigned, but for the key, which is assigned too.
    std::optional<std::string> assignedBesideTheKey() const
    {
        EXPECT_EQ(file.number("SELECT count(*) FROM Assigned WHERE Name = 'ContractorsId'"), 1);
        return file.value("SELECT group_concat(Name, ' ') FROM Assigned WHERE Name <> 'ContractorsId'");
    }

    // A member that neither an add nor an update may contain.
    void expectRefused(const std::string &member) const
    {
        SCOPED_TRACE(member);
        EXPECT_EQ(send(addContractors, batch(R"({"id":4,)" + member + "}")), 5u);
        EXPECT_EQ(update(updateContractor, one(R"({"id":4,)" + member + "}")).code, 5u);
    }
};

// ---- The table ----

TEST_F(Contractors, TableHasItsColumnsInOrder)
{
    EXPECT_EQ(file.value("SELECT sql FROM sqlite_master WHERE type = 'table' AND name = 'Contractors'"),
              "CREATE TABLE Contractors (ContractorsId UNSIGNED BIG INT PRIMARY KEY,ContractorsInn VARCHAR(255),"
              "ContractorsOrgId UNSIGNED BIG INT,ContractorsType UNSIGNED BIG INT,"
              "ContractorsOfficialName VARCHAR(255),ContractorsName VARCHAR(255),ContractorsExtra VARCHAR(255))");
}

TEST_F(Contractors, TableHasNoIndexButItsKey)
{
    EXPECT_EQ(file.number("SELECT count(*) FROM sqlite_master WHERE type = 'index' AND tbl_name = 'Contractors'"), 1);
}

// ---- Adding ----

TEST_F(Contractors, AddPutsEachKeyIntoItsColumn)
{
    EXPECT_EQ(send(addContractors, batch(acme)), 0u);
    EXPECT_EQ(stored(4), (Row{"4", "7701", "2", "1", "Acme Limited", "Acme", "note"}));
}

TEST_F(Contractors, AddStoresNumbersAsIntegersAndTextsAsText)
{
    ASSERT_EQ(send(addContractors, batch(acme)), 0u);
    EXPECT_EQ(file.rows("SELECT typeof(ContractorsId), typeof(ContractorsInn), typeof(ContractorsOrgId), "
                        "typeof(ContractorsType), typeof(ContractorsOfficialName), typeof(ContractorsName), "
                        "typeof(ContractorsExtra) FROM Contractors"),
              (std::vector<Row>{Row{"integer", "text", "integer", "integer", "text", "text", "text"}}));
}

TEST_F(Contractors, AddStoresWhatIsLeftOutAsNull)
{
    EXPECT_EQ(send(addContractors, batch(R"({"id":4})")), 0u);
    EXPECT_EQ(stored(4), (Row{"4", {}, {}, {}, {}, {}, {}}));
}

TEST_F(Contractors, AddStoresAnEmptyTextAsText)
{
    EXPECT_EQ(send(addContractors, batch(R"({"id":4,"inn":"","off_name":"","name":"","extra":""})")), 0u);
    EXPECT_EQ(stored(4), (Row{"4", "", {}, {}, "", "", ""}));
}

TEST_F(Contractors, AddReplacesTheWholeRow)
{
    ASSERT_EQ(send(addContractors, batch(acme)), 0u);
    EXPECT_EQ(send(addContractors, batch(R"({"id":4,"extra":"new"})")), 0u);
    EXPECT_EQ(stored(4), (Row{"4", {}, {}, {}, {}, {}, "new"}));
    EXPECT_EQ(rowCount(), 1);
}

TEST_F(Contractors, AddNamesEveryColumnWhateverIsSent)
{
    foreign("DROP TABLE Contractors; CREATE TABLE Contractors (ContractorsId UNSIGNED BIG INT PRIMARY KEY,"
            "ContractorsInn VARCHAR(255) DEFAULT 'd',ContractorsOrgId UNSIGNED BIG INT DEFAULT 9,"
            "ContractorsType UNSIGNED BIG INT DEFAULT 9,ContractorsOfficialName VARCHAR(255) DEFAULT 'd',"
            "ContractorsName VARCHAR(255) DEFAULT 'd',ContractorsExtra VARCHAR(255) DEFAULT 'd')");
    EXPECT_EQ(send(addContractors, batch(R"({"id":4,"name":"Acme"})")), 0u);
    EXPECT_EQ(stored(4), (Row{"4", {}, {}, {}, {}, "Acme", {}}));
}

TEST_F(Contractors, AddTakesABatchWithDifferentKeys)
{
    EXPECT_EQ(
        send(addContractors,
             batch(R"({"id":4,"name":"Acme"},{"id":5,"type":7,"inn":"12"},{"id":6,"org_id":3,"off_name":"Six"})")),
        0u);
    EXPECT_EQ(stored(4), (Row{"4", {}, {}, {}, {}, "Acme", {}}));
    EXPECT_EQ(stored(5), (Row{"5", "12", {}, "7", {}, {}, {}}));
    EXPECT_EQ(stored(6), (Row{"6", {}, "3", {}, "Six", {}, {}}));
}

TEST_F(Contractors, AddLetsTheLaterOfTwoEqualIdsWinWhole)
{
    EXPECT_EQ(send(addContractors, batch(R"({"id":4,"name":"first","type":1},{"id":4,"name":"second"})")), 0u);
    EXPECT_EQ(stored(4), (Row{"4", {}, {}, {}, {}, "second", {}}));
    EXPECT_EQ(rowCount(), 1);
}

TEST_F(Contractors, AddKeepsLongAndForeignTextsWhole)
{
    const std::string extra = "Ромашка 𝄞 " + std::string(1000, 'x');
    EXPECT_EQ(send(addContractors, batch(R"({"id":4,"extra":")" + extra + "\"}")), 0u);
    EXPECT_EQ(stored(4), (Row{"4", {}, {}, {}, {}, {}, extra}));
    const auto answer = get(getContractor, 4);
    ASSERT_EQ(answer.code, 0u);
    EXPECT_EQ(utf8(answer->extra), extra);
}

TEST_F(Contractors, AddIgnoresUnknownKeys)
{
    EXPECT_EQ(send(addContractors, batch(R"({"id":4,"c_name":"x","Name":"y","contact":{"id":1},"user":null})")), 0u);
    EXPECT_EQ(stored(4), (Row{"4", {}, {}, {}, {}, {}, {}}));
}

TEST_F(Contractors, AddKeepsTheLowBitsOfNumbers)
{
    EXPECT_EQ(send(addContractors, batch(R"({"id":4294967295,"org_id":5000000000,"type":-1},{"id":4.9,"type":3.9})")),
              0u);
    EXPECT_EQ(stored(4294967295u), (Row{"4294967295", {}, "705032704", "4294967295", {}, {}, {}}));
    EXPECT_EQ(stored(4), (Row{"4", {}, {}, "3", {}, {}, {}}));
}

TEST_F(Contractors, AddStoresNothingOfABatchWithABadElement)
{
    EXPECT_EQ(send(addContractors, batch(R"({"id":4},{"id":5},7)")), 5u);
    EXPECT_EQ(send(addContractors, batch(R"({"id":4},{"name":"no id"},{"id":6})")), 5u);
    EXPECT_EQ(rowCount(), 0);
}

TEST_F(Contractors, AddRefusesDocumentsThatAreNoBatch)
{
    for (const auto &[json, code] : Codes{{"", 10u},
                                          {"not json", 10u},
                                          {R"([{"id":4}])", 10u},
                                          {R"({"items":[{"id":4}]})", 5u},
                                          {R"({"d":{"items":[{"id":4}]}})", 5u},
                                          {R"({"D":[{"id":4}]})", 5u},
                                          {R"({"D":{"id":4}})", 5u},
                                          {R"({"D":{"items":{"id":4}}})", 5u},
                                          {R"({"D":{"items":[]}})", 10u}}) {
        SCOPED_TRACE(json);
        EXPECT_EQ(send(addContractors, json), code);
    }
    EXPECT_EQ(addContractors(nullptr, 0), 10u);
    EXPECT_EQ(rowCount(), 0);
}

// ---- Types ----

TEST_F(Contractors, TextsRefuseOtherTypes)
{
    for (const char *key : {"inn", "off_name", "name", "extra"})
        for (const char *json : {"123", "true", "null", "[]", "{}"})
            expectRefused("\"" + std::string(key) + "\":" + json);
    EXPECT_EQ(rowCount(), 0);
}

TEST_F(Contractors, NumbersRefuseOtherTypes)
{
    for (const char *key : {"org_id", "type"})
        for (const char *json : {R"("1")", "true", "null", "[]", "{}"})
            expectRefused("\"" + std::string(key) + "\":" + json);
    EXPECT_EQ(rowCount(), 0);
}

TEST_F(Contractors, IdIsRequiredAndANumber)
{
    for (const char *object :
         {R"({"name":"x"})", R"({"id":"4"})", R"({"id":null})", R"({"id":true})", R"({"id":{}})", R"({"org_id":4})"}) {
        SCOPED_TRACE(object);
        EXPECT_EQ(send(addContractors, batch(object)), 5u);
        EXPECT_EQ(update(updateContractor, one(object)).code, 5u);
    }
    EXPECT_EQ(rowCount(), 0);
}

// ---- Reading ----

TEST_F(Contractors, GetReturnsEachColumnInItsField)
{
    file.execute("INSERT INTO Contractors VALUES (4, '7701', 2, 1, 'Acme Limited', 'Acme', 'note')");
    const auto answer = get(getContractor, 4);
    ASSERT_EQ(answer.code, 0u);
    EXPECT_EQ(answer->id, 4u);
    EXPECT_EQ(utf8(answer->inn), "7701");
    EXPECT_EQ(value(answer->orgId), 2u);
    EXPECT_EQ(value(answer->type), 1u);
    EXPECT_EQ(utf8(answer->officialName), "Acme Limited");
    EXPECT_EQ(utf8(answer->name), "Acme");
    EXPECT_EQ(utf8(answer->extra), "note");
}

TEST_F(Contractors, GetReturnsNullPointersForNulls)
{
    file.execute("INSERT INTO Contractors (ContractorsId) VALUES (4)");
    const auto answer = get(getContractor, 4);
    ASSERT_EQ(answer.code, 0u);
    EXPECT_EQ(answer->id, 4u);
    EXPECT_EQ(answer->inn, nullptr);
    EXPECT_EQ(answer->orgId, nullptr);
    EXPECT_EQ(answer->type, nullptr);
    EXPECT_EQ(answer->officialName, nullptr);
    EXPECT_EQ(answer->name, nullptr);
    EXPECT_EQ(answer->extra, nullptr);
}

TEST_F(Contractors, GetKeepsEmptyAndZeroApartFromAbsent)
{
    file.execute("INSERT INTO Contractors VALUES (0, '', 0, 0, '', '', '')");
    const auto answer = get(getContractor, 0);
    ASSERT_EQ(answer.code, 0u);
    EXPECT_EQ(answer->id, 0u);
    EXPECT_EQ(utf8(answer->inn), "");
    EXPECT_EQ(value(answer->orgId), 0u);
    EXPECT_EQ(value(answer->type), 0u);
    EXPECT_EQ(utf8(answer->officialName), "");
    EXPECT_EQ(utf8(answer->name), "");
    EXPECT_EQ(utf8(answer->extra), "");
}

TEST_F(Contractors, GetReturns8ForAnUnknownId)
{
    ASSERT_EQ(send(addContractors, batch(acme)), 0u);
    FlatContractor *out = nullptr;
    EXPECT_EQ(getContractor(&out, 5), 8u);
    EXPECT_EQ(out, nullptr);
}

TEST_F(Contractors, ListReturnsAllRows)
{
    ASSERT_EQ(send(addContractors, batch(acme, R"({"id":5},{"id":6,"name":"Six"})")), 0u);
    const auto all = list(getContractors);
    ASSERT_EQ(all.code, 0u);
    ASSERT_EQ(all.size(), 3u);
    ASSERT_NE(all.withId(4), nullptr);
    EXPECT_EQ(utf8(all.withId(4)->inn), "7701");
    EXPECT_EQ(value(all.withId(4)->orgId), 2u);
    EXPECT_EQ(value(all.withId(4)->type), 1u);
    ASSERT_NE(all.withId(5), nullptr);
    EXPECT_EQ(all.withId(5)->name, nullptr);
    ASSERT_NE(all.withId(6), nullptr);
    EXPECT_EQ(utf8(all.withId(6)->name), "Six");
    EXPECT_EQ(all.withId(6)->orgId, nullptr);
}

TEST_F(Contractors, ListReturns8ForAnEmptyTable)
{
    FlatContractor *out = nullptr;
    uint32_t count = 77;
    EXPECT_EQ(getContractors(&out, &count), 8u);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(count, 77u);
}

TEST_F(Contractors, EveryKeyCanBeSearchedFor)
{
    ASSERT_EQ(send(addContractors,
                   batch(acme, R"({"id":5,"inn":"i","org_id":9,"type":8,"off_name":"o","name":"n","extra":"e"},)"
                               R"({"id":6})")),
              0u);
    for (const auto &[key, text] : Pairs{{"id", "4"},
                                         {"inn", "7701"},
                                         {"org_id", "2"},
                                         {"type", "1"},
                                         {"off_name", "Acme Limited"},
                                         {"name", "Acme"},
                                         {"extra", "note"}}) {
        SCOPED_TRACE(key);
        const auto found = listBy(getContractorsWithParams, key, text);
        EXPECT_EQ(found.code, 0u);
        ASSERT_EQ(found.size(), 1u);
        EXPECT_EQ(found[0].id, 4u);
        EXPECT_EQ(utf8(found[0].extra), "note");
    }
}

TEST_F(Contractors, SearchReturnsEveryRowThatFits)
{
    ASSERT_EQ(send(addContractors, batch(R"({"id":4,"type":1},{"id":5,"type":2},{"id":6,"type":1})")), 0u);
    const auto found = listBy(getContractorsWithParams, "type", "1");
    ASSERT_EQ(found.size(), 2u);
    EXPECT_NE(found.withId(4), nullptr);
    EXPECT_NE(found.withId(6), nullptr);
}

TEST_F(Contractors, SearchComparesTextsWhole)
{
    ASSERT_EQ(send(addContractors, batch(R"({"id":4,"inn":"07","name":"Acme"})")), 0u);
    EXPECT_EQ(listBy(getContractorsWithParams, "inn", "07").size(), 1u);
    EXPECT_EQ(listBy(getContractorsWithParams, "inn", "7").code, 8u);
    EXPECT_EQ(listBy(getContractorsWithParams, "name", "acme").code, 8u);
    EXPECT_EQ(listBy(getContractorsWithParams, "name", "Ac%").code, 8u);
    EXPECT_EQ(listBy(getContractorsWithParams, "name", "Acme ").code, 8u);
}

TEST_F(Contractors, SearchForAnEmptyTextFindsItAndNoAbsentOne)
{
    ASSERT_EQ(send(addContractors, batch(R"({"id":4,"name":""},{"id":5})")), 0u);
    const auto found = listBy(getContractorsWithParams, "name", "");
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0].id, 4u);
}

TEST_F(Contractors, SearchReturns8IfNothingFits)
{
    ASSERT_EQ(send(addContractors, batch(acme)), 0u);
    FlatContractor *out = nullptr;
    uint32_t count = 77;
    EXPECT_EQ(find(getContractorsWithParams, &out, &count, "name", "Nobody"), 8u);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(count, 77u);
}

TEST_F(Contractors, SearchRefusesOtherKeysWithoutAskingTheStore)
{
    foreign("ALTER TABLE Contractors RENAME TO Elsewhere");
    const DebugLines lines;
    for (const char *key : {"", "ID", "Name", "contractor_id", "ContractorsId", "ContractorsName", "number", "name "}) {
        SCOPED_TRACE(key);
        FlatContractor *out = nullptr;
        uint32_t count = 77;
        EXPECT_EQ(find(getContractorsWithParams, &out, &count, key, "4"), 10u);
        EXPECT_EQ(out, nullptr);
        EXPECT_EQ(count, 77u);
    }
    EXPECT_EQ(lines.all(), std::vector<std::string>());
}

// ---- Updating ----

TEST_F(Contractors, UpdateKeepsWhatIsLeftOut)
{
    ASSERT_EQ(send(addContractors, batch(acme)), 0u);
    EXPECT_EQ(update(updateContractor, one(R"({"id":4,"extra":"new"})")).code, 0u);
    EXPECT_EQ(stored(4), (Row{"4", "7701", "2", "1", "Acme Limited", "Acme", "new"}));
}

TEST_F(Contractors, UpdateReturnsTheRowAsStored)
{
    ASSERT_EQ(send(addContractors, batch(acme)), 0u);
    const auto answer = update(updateContractor, one(R"({"id":4,"extra":"new","type":-1})"));
    ASSERT_EQ(answer.code, 0u);
    EXPECT_EQ(answer->id, 4u);
    EXPECT_EQ(utf8(answer->inn), "7701");
    EXPECT_EQ(value(answer->orgId), 2u);
    EXPECT_EQ(value(answer->type), 4294967295u);
    EXPECT_EQ(utf8(answer->officialName), "Acme Limited");
    EXPECT_EQ(utf8(answer->name), "Acme");
    EXPECT_EQ(utf8(answer->extra), "new");
}

TEST_F(Contractors, UpdateReadsTheRowBackFromTheFile)
{
    foreign("CREATE TRIGGER Rename AFTER INSERT ON Contractors BEGIN "
            "UPDATE Contractors SET ContractorsName = 'from the file'; END");
    const auto answer = update(updateContractor, one(acme));
    ASSERT_EQ(answer.code, 0u);
    EXPECT_EQ(utf8(answer->name), "from the file");
}

TEST_F(Contractors, UpdatePutsEachKeyIntoItsColumn)
{
    EXPECT_EQ(update(updateContractor, one(acme)).code, 0u);
    EXPECT_EQ(stored(4), (Row{"4", "7701", "2", "1", "Acme Limited", "Acme", "note"}));
    EXPECT_EQ(rowCount(), 1);
}

TEST_F(Contractors, UpdateTakesAnyMixOfKeys)
{
    const Pairs members = {{R"(,"inn":"7701")", "7701"},  {R"(,"org_id":2)", "2"},
                           {R"(,"type":1)", "1"},         {R"(,"off_name":"Full")", "Full"},
                           {R"(,"name":"Acme")", "Acme"}, {R"(,"extra":"note")", "note"}};
    for (uint32_t mix = 0; mix < 64; ++mix) {
        const uint32_t id = 100 + mix;
        std::string object = "{\"id\":" + std::to_string(id);
        Row expected = {std::to_string(id)};
        for (size_t place = 0; place < members.size(); ++place) {
            const bool sent = (mix >> place & 1u) != 0;
            object += sent ? members[place].first : "";
            expected.push_back(sent ? std::optional<std::string>(members[place].second) : std::nullopt);
        }
        SCOPED_TRACE(object);
        EXPECT_EQ(update(updateContractor, one(object + "}")).code, 0u);
        EXPECT_EQ(stored(id), expected);
    }
}

TEST_F(Contractors, UpdateAssignsTheKeyAndTheColumnsSent)
{
    ASSERT_EQ(send(addContractors, batch(acme)), 0u);
    watch();
    for (const auto &[member, column] : Pairs{{R"("inn":"x")", "ContractorsInn"},
                                              {R"("org_id":9)", "ContractorsOrgId"},
                                              {R"("type":9)", "ContractorsType"},
                                              {R"("off_name":"x")", "ContractorsOfficialName"},
                                              {R"("name":"x")", "ContractorsName"},
                                              {R"("extra":"x")", "ContractorsExtra"}}) {
        SCOPED_TRACE(member);
        foreign("DELETE FROM Assigned");
        EXPECT_EQ(update(updateContractor, one(R"({"id":4,)" + member + "}")).code, 0u);
        EXPECT_EQ(assignedBesideTheKey(), column);
    }
    EXPECT_EQ(stored(4), (Row{"4", "x", "9", "9", "x", "x", "x"}));
}

TEST_F(Contractors, UpdateNamesNoColumnThatIsNotSent)
{
    foreign("DROP TABLE Contractors; CREATE TABLE Contractors (ContractorsId UNSIGNED BIG INT PRIMARY KEY,"
            "ContractorsInn VARCHAR(255) DEFAULT 'd',ContractorsOrgId UNSIGNED BIG INT DEFAULT 9,"
            "ContractorsType UNSIGNED BIG INT DEFAULT 9,ContractorsOfficialName VARCHAR(255) DEFAULT 'd',"
            "ContractorsName VARCHAR(255) DEFAULT 'd',ContractorsExtra VARCHAR(255) DEFAULT 'd')");
    EXPECT_EQ(update(updateContractor, one(R"({"id":4,"name":"Acme"})")).code, 0u);
    EXPECT_EQ(stored(4), (Row{"4", "d", "9", "9", "d", "Acme", "d"}));
}

TEST_F(Contractors, UpdateOfTheIdAloneChangesNothing)
{
    ASSERT_EQ(send(addContractors, batch(acme)), 0u);
    const auto answer = update(updateContractor, one(R"({"id":4})"));
    ASSERT_EQ(answer.code, 0u);
    EXPECT_EQ(utf8(answer->name), "Acme");
    EXPECT_EQ(stored(4), (Row{"4", "7701", "2", "1", "Acme Limited", "Acme", "note"}));
}

TEST_F(Contractors, UpdateOfANewIdAloneMakesARowOfNothingElse)
{
    const auto answer = update(updateContractor, one(R"({"id":4})"));
    ASSERT_EQ(answer.code, 0u);
    EXPECT_EQ(answer->id, 4u);
    EXPECT_EQ(answer->name, nullptr);
    EXPECT_EQ(answer->type, nullptr);
    EXPECT_EQ(stored(4), (Row{"4", {}, {}, {}, {}, {}, {}}));
}

TEST_F(Contractors, UpdateOverwritesWithEmptyTextsAndZeros)
{
    ASSERT_EQ(send(addContractors, batch(acme)), 0u);
    const auto answer = update(updateContractor, one(R"({"id":4,"name":"","type":0})"));
    ASSERT_EQ(answer.code, 0u);
    EXPECT_EQ(utf8(answer->name), "");
    EXPECT_EQ(value(answer->type), 0u);
    EXPECT_EQ(stored(4), (Row{"4", "7701", "2", "0", "Acme Limited", "", "note"}));
}

TEST_F(Contractors, UpdateTouchesNoOtherRow)
{
    ASSERT_EQ(send(addContractors, batch(acme, R"({"id":5,"name":"Five"})")), 0u);
    EXPECT_EQ(update(updateContractor, one(R"({"id":5,"name":"new"})")).code, 0u);
    EXPECT_EQ(stored(4), (Row{"4", "7701", "2", "1", "Acme Limited", "Acme", "note"}));
    EXPECT_EQ(stored(5), (Row{"5", {}, {}, {}, {}, "new", {}}));
}

TEST_F(Contractors, UpdateRefusesDocumentsThatAreNoRecord)
{
    for (const auto &[json, code] : Codes{{"", 10u},
                                          {"not json", 10u},
                                          {R"(["id",4])", 10u},
                                          {R"({"id":4})", 5u},
                                          {R"({"D":4})", 5u},
                                          {R"({"D":{}})", 5u},
                                          {batch(acme), 5u}}) {
        SCOPED_TRACE(json);
        FlatContractor *out = nullptr;
        EXPECT_EQ(send(updateContractor, &out, json), code);
        EXPECT_EQ(out, nullptr);
    }
    EXPECT_EQ(rowCount(), 0);
}

TEST_F(Contractors, UpdateReturns8WhenTheRowIsDeletedMeanwhileAndStillCommits)
{
    foreign("CREATE TABLE Seen (Id INTEGER); CREATE TRIGGER Drop4 AFTER INSERT ON Contractors BEGIN "
            "INSERT INTO Seen VALUES (NEW.ContractorsId); "
            "DELETE FROM Contractors WHERE ContractorsId = NEW.ContractorsId; END");
    const DebugLines lines;
    FlatContractor *out = nullptr;
    EXPECT_EQ(send(updateContractor, &out, one(acme)), 8u);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(lines.all(), std::vector<std::string>());
    EXPECT_EQ(file.number("SELECT count(*) FROM Seen"), 1);
}

// ---- Removing ----

TEST_F(Contractors, DeleteRemovesTheOneRow)
{
    ASSERT_EQ(send(addContractors, batch(R"({"id":4},{"id":5})")), 0u);
    EXPECT_EQ(send(deleteContractor, one(R"({"id":4})")), 0u);
    EXPECT_EQ(stored(4), Row());
    EXPECT_EQ(stored(5), (Row{"5", {}, {}, {}, {}, {}, {}}));
}

TEST_F(Contractors, DeleteLeavesContractsAlone)
{
    ASSERT_EQ(send(addContractors, batch(acme)), 0u);
    foreign("INSERT INTO Contracts (ContractsId, ContractsNumber, ContractsContractorId) VALUES (11, 'n', 4)");
    EXPECT_EQ(send(deleteContractor, one(R"({"id":4})")), 0u);
    EXPECT_EQ(file.rows("SELECT ContractsId, ContractsNumber, ContractsContractorId FROM Contracts"),
              (std::vector<Row>{Row{"11", "n", "4"}}));
    const auto contract = get(getContract, 11);
    ASSERT_EQ(contract.code, 0u);
    EXPECT_EQ(contract->contractor, nullptr);
}

TEST_F(Contractors, DeleteReturns8ForAnUnknownIdAndLogsNothing)
{
    ASSERT_EQ(send(addContractors, batch(acme)), 0u);
    const DebugLines lines;
    EXPECT_EQ(send(deleteContractor, one(R"({"id":5})")), 8u);
    EXPECT_EQ(lines.all(), std::vector<std::string>());
    EXPECT_EQ(rowCount(), 1);
}

TEST_F(Contractors, DeleteTakesAnIdThatIsNoNumberForZero)
{
    ASSERT_EQ(send(addContractors, batch(R"({"id":4})")), 0u);
    EXPECT_EQ(send(deleteContractor, one(R"({"id":"4"})")), 8u);
    ASSERT_EQ(send(addContractors, batch(R"({"id":0})")), 0u);
    EXPECT_EQ(send(deleteContractor, one(R"({"id":"4"})")), 0u);
    EXPECT_EQ(stored(0), Row());
    EXPECT_EQ(stored(4), (Row{"4", {}, {}, {}, {}, {}, {}}));
}

TEST_F(Contractors, DeleteRefusesDocumentsWithoutTheId)
{
    ASSERT_EQ(send(addContractors, batch(R"({"id":4},{"id":0})")), 0u);
    for (const auto &[json, code] : Codes{{"", 10u},
                                          {"not json", 10u},
                                          {"[4]", 10u},
                                          {R"({"id":4})", 5u},
                                          {R"({"D":4})", 5u},
                                          {R"({"D":{}})", 5u},
                                          {R"({"D":{"op_id":4}})", 5u},
                                          {R"({"D":{"org_id":4}})", 5u}}) {
        SCOPED_TRACE(json);
        EXPECT_EQ(send(deleteContractor, json), code);
    }
    EXPECT_EQ(rowCount(), 2);
}

// ---- Failing ----

TEST_F(Contractors, FailedAddLogsAndRollsTheBatchBack)
{
    ASSERT_EQ(send(addContractors, batch(acme)), 0u);
    foreign("CREATE TRIGGER Refuse5 BEFORE INSERT ON Contractors WHEN NEW.ContractorsId = 5 "
            "BEGIN SELECT RAISE(ABORT, 'refused'); END");
    const DebugLines lines;
    EXPECT_EQ(send(addContractors, batch(R"({"id":3},{"id":4,"name":"new"},{"id":5},{"id":6})")), 9u);
    EXPECT_TRUE(isBatchFailure(lines.all(), "add contractors error"));
    EXPECT_EQ(rowCount(), 1);
    EXPECT_EQ(stored(4), (Row{"4", "7701", "2", "1", "Acme Limited", "Acme", "note"}));
}

TEST_F(Contractors, FailedAddLogsTheWordsOfTheFile)
{
    refuse("INSERT", "Contractors");
    const DebugLines lines;
    EXPECT_EQ(send(addContractors, batch(acme)), 9u);
    ASSERT_EQ(lines.all().size(), 4u);
    EXPECT_NE(lines.all()[1].find("refused"), std::string::npos) << lines.all()[1];
}

TEST_F(Contractors, FailedAddFailsTheSameWithoutTheTable)
{
    foreign("DROP TABLE Contractors");
    const DebugLines lines;
    EXPECT_EQ(send(addContractors, batch(acme)), 9u);
    EXPECT_TRUE(isBatchFailure(lines.all(), "add contractors error"));
}

TEST_F(Contractors, AddWorksAgainAfterAFailedOne)
{
    refuse("INSERT", "Contractors");
    EXPECT_EQ(send(addContractors, batch(acme)), 9u);
    foreign("DROP TRIGGER RefuseINSERTContractors");
    EXPECT_EQ(send(addContractors, batch(acme)), 0u);
    EXPECT_EQ(rowCount(), 1);
}

TEST_F(Contractors, FailedUpdateLogsAndLeavesTheRow)
{
    ASSERT_EQ(send(addContractors, batch(acme)), 0u);
    refuse("UPDATE", "Contractors");
    const DebugLines lines;
    FlatContractor *out = nullptr;
    EXPECT_EQ(send(updateContractor, &out, one(R"({"id":4,"name":"new"})")), 9u);
    EXPECT_TRUE(isFailure(lines.all(), "add or update contractor error"));
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(stored(4), (Row{"4", "7701", "2", "1", "Acme Limited", "Acme", "note"}));
}

TEST_F(Contractors, FailedUpdateOfANewIdLeavesNoRow)
{
    refuse("INSERT", "Contractors");
    const DebugLines lines;
    EXPECT_EQ(update(updateContractor, one(acme)).code, 9u);
    EXPECT_TRUE(isFailure(lines.all(), "add or update contractor error"));
    EXPECT_EQ(rowCount(), 0);
}

TEST_F(Contractors, FailedReadBackUndoesTheUpdate)
{
    ASSERT_EQ(send(addContractors, batch(acme)), 0u);
    foreign("ALTER TABLE Contractors RENAME COLUMN ContractorsExtra TO Elsewhere");
    const DebugLines lines;
    FlatContractor *out = nullptr;
    EXPECT_EQ(send(updateContractor, &out, one(R"({"id":4,"name":"new"})")), 9u);
    EXPECT_TRUE(isFailure(lines.all(), "get contractor by id error"));
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(file.value("SELECT ContractorsName FROM Contractors"), "Acme");
}

TEST_F(Contractors, UpdateWorksAgainAfterAFailedOne)
{
    foreign("ALTER TABLE Contractors RENAME COLUMN ContractorsExtra TO Elsewhere");
    EXPECT_EQ(update(updateContractor, one(R"({"id":4,"name":"new"})")).code, 9u);
    foreign("ALTER TABLE Contractors RENAME COLUMN Elsewhere TO ContractorsExtra");
    EXPECT_EQ(update(updateContractor, one(R"({"id":4,"name":"new"})")).code, 0u);
    EXPECT_EQ(rowCount(), 1);
}

TEST_F(Contractors, FailedGetLogsTheReadById)
{
    foreign("ALTER TABLE Contractors RENAME TO Elsewhere");
    const DebugLines lines;
    FlatContractor *out = nullptr;
    EXPECT_EQ(getContractor(&out, 4), 7u);
    EXPECT_TRUE(isFailure(lines.all(), "get contractor by id error"));
    EXPECT_EQ(out, nullptr);
}

TEST_F(Contractors, FailedListLogsTheWordsOfTheSearch)
{
    foreign("ALTER TABLE Contractors RENAME TO Elsewhere");
    const DebugLines lines;
    FlatContractor *out = nullptr;
    uint32_t count = 77;
    EXPECT_EQ(getContractors(&out, &count), 7u);
    EXPECT_TRUE(isFailure(lines.all(), "get contractors by field error"));
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(count, 77u);
}

TEST_F(Contractors, FailedSearchLogsTheSearch)
{
    foreign("ALTER TABLE Contractors RENAME TO Elsewhere");
    const DebugLines lines;
    FlatContractor *out = nullptr;
    uint32_t count = 77;
    EXPECT_EQ(find(getContractorsWithParams, &out, &count, "name", "Acme"), 7u);
    EXPECT_TRUE(isFailure(lines.all(), "get contractors by field error"));
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(count, 77u);
}

TEST_F(Contractors, ReadsWorkAgainAfterAFailedOne)
{
    ASSERT_EQ(send(addContractors, batch(acme)), 0u);
    foreign("ALTER TABLE Contractors RENAME TO Elsewhere");
    EXPECT_EQ(get(getContractor, 4).code, 7u);
    EXPECT_EQ(list(getContractors).code, 7u);
    foreign("ALTER TABLE Elsewhere RENAME TO Contractors");
    EXPECT_EQ(get(getContractor, 4).code, 0u);
    EXPECT_EQ(list(getContractors).code, 0u);
}

TEST_F(Contractors, DeleteReturns7WhenItsReadFails)
{
    ASSERT_EQ(send(addContractors, batch(acme)), 0u);
    foreign("ALTER TABLE Contractors RENAME COLUMN ContractorsExtra TO Elsewhere");
    const DebugLines lines;
    EXPECT_EQ(send(deleteContractor, one(R"({"id":4})")), 7u);
    EXPECT_TRUE(isFailure(lines.all(), "get contractor by id error"));
    EXPECT_EQ(rowCount(), 1);
}

TEST_F(Contractors, FailedDeleteLogsAndLeavesTheRow)
{
    ASSERT_EQ(send(addContractors, batch(acme)), 0u);
    refuse("DELETE", "Contractors");
    const DebugLines lines;
    EXPECT_EQ(send(deleteContractor, one(R"({"id":4})")), 9u);
    EXPECT_TRUE(isFailure(lines.all(), "delete contractor error"));
    EXPECT_EQ(rowCount(), 1);
    foreign("DROP TRIGGER RefuseDELETEContractors");
    EXPECT_EQ(send(deleteContractor, one(R"({"id":4})")), 0u);
    EXPECT_EQ(rowCount(), 0);
}

TEST_F(Contractors, RefusedAndMissedCallsLogNothing)
{
    const DebugLines lines;
    EXPECT_EQ(send(addContractors, batch("7")), 5u);
    EXPECT_EQ(send(addContractors, "not json"), 10u);
    EXPECT_EQ(update(updateContractor, one("{}")).code, 5u);
    EXPECT_EQ(send(deleteContractor, one("{}")), 5u);
    EXPECT_EQ(get(getContractor, 4).code, 8u);
    EXPECT_EQ(list(getContractors).code, 8u);
    EXPECT_EQ(listBy(getContractorsWithParams, "id", "4").code, 8u);
    EXPECT_EQ(lines.all(), std::vector<std::string>());
}

TEST_F(Contractors, WorkingCallsLogNothing)
{
    const DebugLines lines;
    EXPECT_EQ(send(addContractors, batch(acme)), 0u);
    EXPECT_EQ(update(updateContractor, one(R"({"id":4,"type":9})")).code, 0u);
    EXPECT_EQ(get(getContractor, 4).code, 0u);
    EXPECT_EQ(list(getContractors).code, 0u);
    EXPECT_EQ(listBy(getContractorsWithParams, "type", "9").code, 0u);
    EXPECT_EQ(send(deleteContractor, one(R"({"id":4})")), 0u);
    EXPECT_EQ(lines.all(), std::vector<std::string>());
}

// ---- Targets and frees ----

TEST_F(Contractors, FunctionsWithATargetRefuseOneThatIsTaken)
{
    foreign("ALTER TABLE Contractors RENAME TO Elsewhere");
    const DebugLines lines;
    FlatContractor mine = {};
    FlatContractor *out = &mine;
    uint32_t count = 77;
    EXPECT_EQ(getContractor(&out, 4), 10u);
    EXPECT_EQ(getContractors(&out, &count), 10u);
    EXPECT_EQ(find(getContractorsWithParams, &out, &count, "name", "Acme"), 10u);
    EXPECT_EQ(send(updateContractor, &out, one(acme)), 10u);
    EXPECT_EQ(send(updateContractor, &out, one("{}")), 10u);
    EXPECT_EQ(out, &mine);
    EXPECT_EQ(count, 77u);
    EXPECT_EQ(lines.all(), std::vector<std::string>());
}

TEST_F(Contractors, UpdateWithATakenTargetWritesNothing)
{
    FlatContractor mine = {};
    FlatContractor *out = &mine;
    EXPECT_EQ(send(updateContractor, &out, one(acme)), 10u);
    EXPECT_EQ(out, &mine);
    EXPECT_EQ(rowCount(), 0);
}

TEST_F(Contractors, FreeRefusesANullPointer)
{
    EXPECT_EQ(freeContractor(nullptr), 10u);
    EXPECT_EQ(freeContractorsArray(nullptr, 0), 10u);
    EXPECT_EQ(freeContractorsArray(nullptr, 1), 10u);
}

TEST_F(Contractors, FreeOfAnArrayWithoutACountLeavesIt)
{
    ASSERT_EQ(send(addContractors, batch(acme)), 0u);
    const auto all = list(getContractors);
    ASSERT_EQ(all.size(), 1u);
    EXPECT_EQ(freeContractorsArray(&all[0], 0), 10u);
    EXPECT_EQ(utf8(all[0].name), "Acme");
}

TEST_F(Contractors, RecordsOutliveTheLibrary)
{
    ASSERT_EQ(send(addContractors, batch(acme)), 0u);
    FlatContractor *single = nullptr;
    FlatContractor *array = nullptr;
    uint32_t count = 0;
    ASSERT_EQ(getContractor(&single, 4), 0u);
    ASSERT_EQ(getContractors(&array, &count), 0u);
    EXPECT_EQ(library->exit(), 0);
    EXPECT_EQ(utf8(single->name), "Acme");
    EXPECT_EQ(utf8(array->name), "Acme");
    EXPECT_EQ(freeContractor(single), 0u);
    EXPECT_EQ(freeContractorsArray(array, count), 0u);
}

TEST_F(Contractors, RowsOutliveALaunch)
{
    ASSERT_EQ(send(addContractors, batch(acme)), 0u);
    relaunch();
    const auto answer = get(getContractor, 4);
    ASSERT_EQ(answer.code, 0u);
    EXPECT_EQ(utf8(answer->name), "Acme");
}

} // namespace
