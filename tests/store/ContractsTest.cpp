// Contracts: a row that names a contractor and a user, read back with both, the user's domain and that domain's locale.
#include "Store.h"

#include <string>
#include <utility>
#include <vector>

namespace {

using namespace brimlet::test;

// Documents with the codes that they get; members or keys with the texts that go with them.
using Codes = std::vector<std::pair<std::string, uint32_t>>;
using Pairs = std::vector<std::pair<std::string, std::string>>;

constexpr char lease[] = R"({"id":11,"number":"A-1","c_name":"Lease","status":1,"date":100,)"
                         R"("description":"three rooms","extra":"note","contractor_id":4,"operator_id":7})";

class Contracts : public StoreTest
{
protected:
    // The row of a contract in the order of the table; empty when there is none.
    Row stored(uint32_t id) const
    {
        const std::vector<Row> rows =
            file.rows("SELECT ContractsId, ContractsNumber, ContractsContractorId, ContractsName, ContractsStatus, "
                      "ContractsDate, ContractsDescription, ContractsExtra, ContractsUserId FROM Contracts "
                      "WHERE ContractsId = "
                      + std::to_string(id));
        return rows.empty() ? Row() : rows.at(0);
    }

    int64_t rowCount() const { return file.number("SELECT count(*) FROM Contracts"); }

    // The contractor 4 and the user 7 with the domain 3 and the locale 1.
    void addParties()
    {
        foreign("INSERT INTO Locales VALUES (1, 'de', 'German');"
                "INSERT INTO Domains VALUES (3, 'North', 2, 1);"
                "INSERT INTO Users (UsersId, UsersName, UsersLogin, UsersContacts, UsersIsActive, UsersDomainId, "
                "UsersOrgId, UsersRoles, UsersPhone) "
                "VALUES (7, 'Ann', 'ann', 'room 1', 1, 3, 5, 6, 79161234567);"
                "INSERT INTO Contractors VALUES (4, '7701', 8, 9, 'Acme Limited', 'Acme', 'party')");
    }

    // Has the file note which columns an update of a contract assigns.
    void watch()
    {
        std::string sql = "CREATE TABLE Assigned (Name VARCHAR(255));";
        for (const char *column :
             {"ContractsId", "ContractsNumber", "ContractsContractorId", "ContractsName", "ContractsStatus",
              "ContractsDate", "ContractsDescription", "ContractsExtra", "ContractsUserId"})
            sql += "CREATE TRIGGER Watch" + std::string(column) + " AFTER UPDATE OF " + column
                 + " ON Contracts BEGIN INSERT INTO Assigned VALUES ('" + column + "'); END;";
        foreign(sql);
    }

    // The columns that were assigned, but for the key, which is assigned too.
    std::optional<std::string> assignedBesideTheKey() const
    {
        EXPECT_EQ(file.number("SELECT count(*) FROM Assigned WHERE Name = 'ContractsId'"), 1);
        return file.value("SELECT group_concat(Name, ' ') FROM Assigned WHERE Name <> 'ContractsId'");
    }

    // A member that neither an add nor an update may contain.
    void expectRefused(const std::string &member) const
    {
        SCOPED_TRACE(member);
        EXPECT_EQ(send(addContracts, batch(R"({"id":11,)" + member + "}")), 5u);
        EXPECT_EQ(update(updateContract, one(R"({"id":11,)" + member + "}")).code, 5u);
    }
};

// The contract 11 as `lease` describes it, apart from its parties.
void expectOwnFields(const FlatContract &contract)
{
    EXPECT_EQ(contract.id, 11u);
    EXPECT_EQ(utf8(contract.number), "A-1");
    EXPECT_EQ(utf8(contract.name), "Lease");
    EXPECT_EQ(value(contract.status), 1u);
    EXPECT_EQ(value(contract.date), 100u);
    EXPECT_EQ(utf8(contract.description), "three rooms");
    EXPECT_EQ(utf8(contract.extra), "note");
}

void expectContractor(const FlatContractor *contractor)
{
    ASSERT_NE(contractor, nullptr);
    EXPECT_EQ(contractor->id, 4u);
    EXPECT_EQ(utf8(contractor->inn), "7701");
    EXPECT_EQ(value(contractor->orgId), 8u);
    EXPECT_EQ(value(contractor->type), 9u);
    EXPECT_EQ(utf8(contractor->officialName), "Acme Limited");
    EXPECT_EQ(utf8(contractor->name), "Acme");
    EXPECT_EQ(utf8(contractor->extra), "party");
}

void expectDomain(const FlatDomain *domain)
{
    ASSERT_NE(domain, nullptr);
    EXPECT_EQ(domain->id, 3u);
    EXPECT_EQ(utf8(domain->name), "North");
    EXPECT_EQ(value(domain->orgId), 2u);
    ASSERT_NE(domain->locale, nullptr);
    EXPECT_EQ(domain->locale->id, 1u);
    EXPECT_EQ(utf8(domain->locale->iso), "de");
    EXPECT_EQ(utf8(domain->locale->description), "German");
}

void expectUser(const FlatUser *user)
{
    ASSERT_NE(user, nullptr);
    EXPECT_EQ(user->id, 7u);
    EXPECT_EQ(utf8(user->name), "Ann");
    EXPECT_EQ(utf8(user->login), "ann");
    EXPECT_EQ(utf8(user->contacts), "room 1");
    EXPECT_EQ(value(user->isActive), 1);
    EXPECT_EQ(value(user->domainId), 3u);
    EXPECT_EQ(value(user->roles), 6u);
    EXPECT_EQ(value(user->phone), 79161234567u);
    EXPECT_EQ(value(user->orgId), 5u);
    expectDomain(user->domain);
}

void expectWhole(const FlatContract &contract)
{
    expectOwnFields(contract);
    expectContractor(contract.contractor);
    expectUser(contract.user);
}

// ---- The table ----

TEST_F(Contracts, TableHasItsColumnsInOrder)
{
    EXPECT_EQ(file.value("SELECT sql FROM sqlite_master WHERE type = 'table' AND name = 'Contracts'"),
              "CREATE TABLE Contracts (ContractsId UNSIGNED BIG INT PRIMARY KEY,ContractsNumber VARCHAR(255),"
              "ContractsContractorId UNSIGNED BIG INT,ContractsName VARCHAR(255),ContractsStatus UNSIGNED BIG INT,"
              "ContractsDate UNSIGNED BIG INT,ContractsDescription VARCHAR(255),ContractsExtra VARCHAR(255),"
              "ContractsUserId UNSIGNED BIG INT)");
}

TEST_F(Contracts, TableHasNoIndexButItsKey)
{
    EXPECT_EQ(file.number("SELECT count(*) FROM sqlite_master WHERE type = 'index' AND tbl_name = 'Contracts'"), 1);
}

// ---- Adding ----

TEST_F(Contracts, AddPutsEachKeyIntoItsColumn)
{
    EXPECT_EQ(send(addContracts, batch(lease)), 0u);
    EXPECT_EQ(stored(11), (Row{"11", "A-1", "4", "Lease", "1", "100", "three rooms", "note", "7"}));
}

TEST_F(Contracts, AddStoresNumbersAsIntegersAndTextsAsText)
{
    ASSERT_EQ(send(addContracts, batch(lease)), 0u);
    EXPECT_EQ(
        file.rows("SELECT typeof(ContractsId), typeof(ContractsNumber), typeof(ContractsContractorId), "
                  "typeof(ContractsName), typeof(ContractsStatus), typeof(ContractsDate), "
                  "typeof(ContractsDescription), typeof(ContractsExtra), typeof(ContractsUserId) "
                  "FROM Contracts"),
        (std::vector<Row>{Row{"integer", "text", "integer", "text", "integer", "integer", "text", "text", "integer"}}));
}

TEST_F(Contracts, AddStoresWhatIsLeftOutAsNull)
{
    EXPECT_EQ(send(addContracts, batch(R"({"id":11})")), 0u);
    EXPECT_EQ(stored(11), (Row{"11", {}, {}, {}, {}, {}, {}, {}, {}}));
}

TEST_F(Contracts, AddStoresAnEmptyTextAsTextAndZeroAsZero)
{
    EXPECT_EQ(send(addContracts, batch(R"({"id":11,"number":"","c_name":"","description":"","extra":"",)"
                                       R"("status":0,"date":0,"contractor_id":0,"operator_id":0})")),
              0u);
    EXPECT_EQ(stored(11), (Row{"11", "", "0", "", "0", "0", "", "", "0"}));
}

TEST_F(Contracts, AddIgnoresANameThatIsNotUnderItsKey)
{
    EXPECT_EQ(send(addContracts, batch(R"({"id":11,"name":"x"})")), 0u);
    EXPECT_EQ(stored(11), (Row{"11", {}, {}, {}, {}, {}, {}, {}, {}}));
}

TEST_F(Contracts, AddIgnoresUnknownKeys)
{
    EXPECT_EQ(send(addContracts, batch(R"({"id":11,"name":7,"contractor":{"id":4},"op_id":7,"user":null})")), 0u);
    EXPECT_EQ(stored(11), (Row{"11", {}, {}, {}, {}, {}, {}, {}, {}}));
}

TEST_F(Contracts, AddReplacesTheWholeRow)
{
    ASSERT_EQ(send(addContracts, batch(lease)), 0u);
    EXPECT_EQ(send(addContracts, batch(R"({"id":11,"status":2})")), 0u);
    EXPECT_EQ(stored(11), (Row{"11", {}, {}, {}, "2", {}, {}, {}, {}}));
    EXPECT_EQ(rowCount(), 1);
}

TEST_F(Contracts, AddWithoutTheOperatorLosesTheUser)
{
    addParties();
    ASSERT_EQ(send(addContracts, batch(lease)), 0u);
    ASSERT_EQ(send(addContracts, batch(R"({"id":11,"contractor_id":4})")), 0u);
    const auto answer = get(getContract, 11);
    ASSERT_EQ(answer.code, 0u);
    EXPECT_EQ(answer->user, nullptr);
    expectContractor(answer->contractor);
}

TEST_F(Contracts, AddNamesEveryColumnWhateverIsSent)
{
    foreign("DROP TABLE Contracts; CREATE TABLE Contracts (ContractsId UNSIGNED BIG INT PRIMARY KEY,"
            "ContractsNumber VARCHAR(255) DEFAULT 'd',ContractsContractorId UNSIGNED BIG INT DEFAULT 9,"
            "ContractsName VARCHAR(255) DEFAULT 'd',ContractsStatus UNSIGNED BIG INT DEFAULT 9,"
            "ContractsDate UNSIGNED BIG INT DEFAULT 9,ContractsDescription VARCHAR(255) DEFAULT 'd',"
            "ContractsExtra VARCHAR(255) DEFAULT 'd',ContractsUserId UNSIGNED BIG INT DEFAULT 9)");
    EXPECT_EQ(send(addContracts, batch(R"({"id":11})")), 0u);
    EXPECT_EQ(stored(11), (Row{"11", {}, {}, {}, {}, {}, {}, {}, {}}));
}

TEST_F(Contracts, AddTakesABatchWithDifferentKeys)
{
    EXPECT_EQ(send(addContracts, batch(R"({"id":11,"c_name":"a","operator_id":7},{"id":12,"status":2,"number":"n"},)"
                                       R"({"id":13,"contractor_id":4,"date":3,"extra":"e"},)"
                                       R"({"id":14,"description":"d"})")),
              0u);
    EXPECT_EQ(stored(11), (Row{"11", {}, {}, "a", {}, {}, {}, {}, "7"}));
    EXPECT_EQ(stored(12), (Row{"12", "n", {}, {}, "2", {}, {}, {}, {}}));
    EXPECT_EQ(stored(13), (Row{"13", {}, "4", {}, {}, "3", {}, "e", {}}));
    EXPECT_EQ(stored(14), (Row{"14", {}, {}, {}, {}, {}, "d", {}, {}}));
}

TEST_F(Contracts, AddLetsTheLaterOfTwoEqualIdsWinWhole)
{
    EXPECT_EQ(send(addContracts, batch(R"({"id":11,"c_name":"first","status":1},{"id":11,"c_name":"second"})")), 0u);
    EXPECT_EQ(stored(11), (Row{"11", {}, {}, "second", {}, {}, {}, {}, {}}));
    EXPECT_EQ(rowCount(), 1);
}

TEST_F(Contracts, AddKeepsTheLowBitsOfNumbers)
{
    EXPECT_EQ(send(addContracts, batch(R"({"id":11,"status":4294967295,"date":-1,"contractor_id":5000000000,)"
                                       R"("operator_id":7.9})")),
              0u);
    EXPECT_EQ(stored(11), (Row{"11", {}, "705032704", {}, "4294967295", "4294967295", {}, {}, "7"}));
    const auto answer = get(getContract, 11);
    ASSERT_EQ(answer.code, 0u);
    EXPECT_EQ(value(answer->status), 4294967295u);
    EXPECT_EQ(value(answer->date), 4294967295u);
}

TEST_F(Contracts, AddStoresNothingOfABatchWithABadElement)
{
    EXPECT_EQ(send(addContracts, batch(R"({"id":11},{"id":12},7)")), 5u);
    EXPECT_EQ(send(addContracts, batch(R"({"id":11},{"number":"no id"},{"id":13})")), 5u);
    EXPECT_EQ(rowCount(), 0);
}

TEST_F(Contracts, AddRefusesDocumentsThatAreNoBatch)
{
    for (const auto &[json, code] : Codes{{"", 10u},
                                          {"not json", 10u},
                                          {R"([{"id":11}])", 10u},
                                          {R"({"items":[{"id":11}]})", 5u},
                                          {R"({"D":[{"id":11}]})", 5u},
                                          {R"({"D":{"id":11}})", 5u},
                                          {R"({"D":{"items":{"id":11}}})", 5u},
                                          {R"({"D":{"items":[]}})", 10u}}) {
        SCOPED_TRACE(json);
        EXPECT_EQ(send(addContracts, json), code);
    }
    EXPECT_EQ(addContracts(nullptr, 0), 10u);
    EXPECT_EQ(rowCount(), 0);
}

TEST_F(Contracts, WritesNeverTouchTheParties)
{
    addParties();
    const std::string parties = "SELECT * FROM Contractors JOIN Users JOIN Domains JOIN Locales";
    const std::vector<Row> before = file.rows(parties);
    ASSERT_EQ(before.size(), 1u);
    EXPECT_EQ(send(addContracts, batch(lease)), 0u);
    EXPECT_EQ(update(updateContract, one(lease)).code, 0u);
    EXPECT_EQ(update(updateContract, one(R"({"id":11,"contractor_id":40,"operator_id":70})")).code, 0u);
    EXPECT_EQ(file.rows(parties), before);
}

TEST_F(Contracts, AddDoesNotAskForTheParties)
{
    foreign("DROP TABLE Contractors; DROP TABLE Users");
    EXPECT_EQ(send(addContracts, batch(lease)), 0u);
    EXPECT_EQ(rowCount(), 1);
}

// ---- Types ----

TEST_F(Contracts, TextsRefuseOtherTypes)
{
    for (const char *key : {"number", "c_name", "description", "extra"})
        for (const char *json : {"123", "true", "null", "[]", "{}"})
            expectRefused("\"" + std::string(key) + "\":" + json);
    EXPECT_EQ(rowCount(), 0);
}

TEST_F(Contracts, NumbersRefuseOtherTypes)
{
    for (const char *key : {"status", "date"})
        for (const char *json : {R"("1")", "true", "null", "[]", "{}"})
            expectRefused("\"" + std::string(key) + "\":" + json);
    EXPECT_EQ(rowCount(), 0);
}

TEST_F(Contracts, ReferencesRefuseAllButNumbers)
{
    for (const char *key : {"contractor_id", "operator_id"})
        for (const char *json : {R"({"id":4})", "{}", R"("4")", "true", "null", "[4]"})
            expectRefused("\"" + std::string(key) + "\":" + json);
    EXPECT_EQ(rowCount(), 0);
}

TEST_F(Contracts, IdIsRequiredAndANumber)
{
    for (const char *object : {R"({"number":"x"})", R"({"id":"11"})", R"({"id":null})", R"({"id":true})",
                               R"({"id":{}})", R"({"contract_id":11})"}) {
        SCOPED_TRACE(object);
        EXPECT_EQ(send(addContracts, batch(object)), 5u);
        EXPECT_EQ(update(updateContract, one(object)).code, 5u);
    }
    EXPECT_EQ(rowCount(), 0);
}

// ---- Reading ----

TEST_F(Contracts, GetReturnsEachColumnInItsFieldAndAllFourLevels)
{
    file.execute("INSERT INTO Contracts VALUES (11, 'A-1', 4, 'Lease', 1, 100, 'three rooms', 'note', 7)");
    addParties();
    const auto answer = get(getContract, 11);
    ASSERT_EQ(answer.code, 0u);
    expectWhole(*answer.record);
}

TEST_F(Contracts, GetReturnsNullPointersForNulls)
{
    file.execute("INSERT INTO Contracts (ContractsId) VALUES (11)");
    addParties();
    const auto answer = get(getContract, 11);
    ASSERT_EQ(answer.code, 0u);
    EXPECT_EQ(answer->id, 11u);
    EXPECT_EQ(answer->number, nullptr);
    EXPECT_EQ(answer->contractor, nullptr);
    EXPECT_EQ(answer->name, nullptr);
    EXPECT_EQ(answer->status, nullptr);
    EXPECT_EQ(answer->date, nullptr);
    EXPECT_EQ(answer->description, nullptr);
    EXPECT_EQ(answer->extra, nullptr);
    EXPECT_EQ(answer->user, nullptr);
}

TEST_F(Contracts, GetKeepsEmptyAndZeroApartFromAbsent)
{
    file.execute("INSERT INTO Contracts VALUES (0, '', NULL, '', 0, 0, '', '', NULL)");
    const auto answer = get(getContract, 0);
    ASSERT_EQ(answer.code, 0u);
    EXPECT_EQ(answer->id, 0u);
    EXPECT_EQ(utf8(answer->number), "");
    EXPECT_EQ(utf8(answer->name), "");
    EXPECT_EQ(value(answer->status), 0u);
    EXPECT_EQ(value(answer->date), 0u);
    EXPECT_EQ(utf8(answer->description), "");
    EXPECT_EQ(utf8(answer->extra), "");
}

TEST_F(Contracts, GetShowsPartiesThatHoldNothingButTheirIds)
{
    file.execute("INSERT INTO Contracts (ContractsId, ContractsContractorId, ContractsUserId) VALUES (11, 4, 7);"
                 "INSERT INTO Contractors (ContractorsId) VALUES (4); INSERT INTO Users (UsersId) VALUES (7)");
    const auto answer = get(getContract, 11);
    ASSERT_EQ(answer.code, 0u);
    ASSERT_NE(answer->contractor, nullptr);
    EXPECT_EQ(answer->contractor->id, 4u);
    EXPECT_EQ(answer->contractor->inn, nullptr);
    EXPECT_EQ(answer->contractor->orgId, nullptr);
    EXPECT_EQ(answer->contractor->extra, nullptr);
    ASSERT_NE(answer->user, nullptr);
    EXPECT_EQ(answer->user->id, 7u);
    EXPECT_EQ(answer->user->name, nullptr);
    EXPECT_EQ(answer->user->isActive, nullptr);
    EXPECT_EQ(answer->user->domainId, nullptr);
    EXPECT_EQ(answer->user->phone, nullptr);
    EXPECT_EQ(answer->user->domain, nullptr);
}

TEST_F(Contracts, GetShowsPartiesWithTheIdZero)
{
    file.execute("INSERT INTO Contracts (ContractsId, ContractsContractorId, ContractsUserId) VALUES (11, 0, 0);"
                 "INSERT INTO Contractors (ContractorsId) VALUES (0); INSERT INTO Users (UsersId) VALUES (0)");
    const auto answer = get(getContract, 11);
    ASSERT_EQ(answer.code, 0u);
    ASSERT_NE(answer->contractor, nullptr);
    EXPECT_EQ(answer->contractor->id, 0u);
    ASSERT_NE(answer->user, nullptr);
    EXPECT_EQ(answer->user->id, 0u);
}

TEST_F(Contracts, ContractorShowsOnceItIsThere)
{
    EXPECT_EQ(send(addContracts, batch(R"({"id":11,"contractor_id":4})")), 0u);
    EXPECT_EQ(stored(11), (Row{"11", {}, "4", {}, {}, {}, {}, {}, {}}));
    const auto without = get(getContract, 11);
    ASSERT_EQ(without.code, 0u);
    EXPECT_EQ(without->contractor, nullptr);
    ASSERT_EQ(send(addContractors, R"({"D":{"items":[{"id":4,"name":"Acme"}]}})"), 0u);
    const auto with = get(getContract, 11);
    ASSERT_EQ(with.code, 0u);
    ASSERT_NE(with->contractor, nullptr);
    EXPECT_EQ(with->contractor->id, 4u);
    EXPECT_EQ(utf8(with->contractor->name), "Acme");
}

TEST_F(Contracts, UserGoesAndComesWithItsRow)
{
    addParties();
    ASSERT_EQ(send(addContracts, batch(lease)), 0u);
    ASSERT_EQ(send(deleteUser, R"({"D":{"op_id":7}})"), 0u);
    EXPECT_EQ(stored(11), (Row{"11", "A-1", "4", "Lease", "1", "100", "three rooms", "note", "7"}));
    const auto without = get(getContract, 11);
    ASSERT_EQ(without.code, 0u);
    EXPECT_EQ(without->user, nullptr);
    expectContractor(without->contractor);
    ASSERT_EQ(send(addUsers, R"({"D":{"items":[{"id":7,"name":"Bob"}]}})"), 0u);
    const auto with = get(getContract, 11);
    ASSERT_EQ(with.code, 0u);
    ASSERT_NE(with->user, nullptr);
    EXPECT_EQ(utf8(with->user->name), "Bob");
}

TEST_F(Contracts, UserWithoutItsDomainKeepsTheDomainsId)
{
    addParties();
    ASSERT_EQ(send(addContracts, batch(lease)), 0u);
    foreign("DELETE FROM Domains");
    const auto answer = get(getContract, 11);
    ASSERT_EQ(answer.code, 0u);
    ASSERT_NE(answer->user, nullptr);
    EXPECT_EQ(value(answer->user->domainId), 3u);
    EXPECT_EQ(answer->user->domain, nullptr);
}

TEST_F(Contracts, DomainWithoutItsLocaleShowsTheRest)
{
    addParties();
    ASSERT_EQ(send(addContracts, batch(lease)), 0u);
    foreign("DELETE FROM Locales");
    const auto answer = get(getContract, 11);
    ASSERT_EQ(answer.code, 0u);
    ASSERT_NE(answer->user, nullptr);
    ASSERT_NE(answer->user->domain, nullptr);
    EXPECT_EQ(utf8(answer->user->domain->name), "North");
    EXPECT_EQ(answer->user->domain->locale, nullptr);
}

TEST_F(Contracts, GetReturns8ForAnUnknownId)
{
    ASSERT_EQ(send(addContracts, batch(lease)), 0u);
    FlatContract *out = nullptr;
    EXPECT_EQ(getContract(&out, 4), 8u);
    EXPECT_EQ(out, nullptr);
}

TEST_F(Contracts, ListReturnsAllRowsWithTheirParties)
{
    addParties();
    ASSERT_EQ(send(addContracts, batch(lease, R"({"id":12},{"id":13,"contractor_id":4,"operator_id":8})")), 0u);
    const auto all = list(getContracts);
    ASSERT_EQ(all.code, 0u);
    ASSERT_EQ(all.size(), 3u);
    ASSERT_NE(all.withId(11), nullptr);
    expectWhole(*all.withId(11));
    ASSERT_NE(all.withId(12), nullptr);
    EXPECT_EQ(all.withId(12)->number, nullptr);
    EXPECT_EQ(all.withId(12)->contractor, nullptr);
    EXPECT_EQ(all.withId(12)->user, nullptr);
    ASSERT_NE(all.withId(13), nullptr);
    expectContractor(all.withId(13)->contractor);
    EXPECT_EQ(all.withId(13)->user, nullptr);
}

TEST_F(Contracts, ListReturns8ForAnEmptyTable)
{
    addParties();
    FlatContract *out = nullptr;
    uint32_t count = 77;
    EXPECT_EQ(getContracts(&out, &count), 8u);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(count, 77u);
}

TEST_F(Contracts, EveryKeyButTheOperatorCanBeSearchedFor)
{
    addParties();
    ASSERT_EQ(send(addContracts,
                   batch(lease, R"({"id":12,"number":"n","c_name":"c","status":2,"date":3,)"
                                R"("description":"d","extra":"e","contractor_id":5,"operator_id":8},{"id":13})")),
              0u);
    for (const auto &[key, text] : Pairs{{"id", "11"},
                                         {"number", "A-1"},
                                         {"contractor_id", "4"},
                                         {"c_name", "Lease"},
                                         {"status", "1"},
                                         {"date", "100"},
                                         {"description", "three rooms"},
                                         {"extra", "note"}}) {
        SCOPED_TRACE(key);
        const auto found = listBy(getContractsWithParams, key, text);
        EXPECT_EQ(found.code, 0u);
        ASSERT_EQ(found.size(), 1u);
        expectWhole(found[0]);
    }
}

TEST_F(Contracts, SearchByContractorFindsContractsOfAMissingOne)
{
    ASSERT_EQ(send(addContracts, batch(R"({"id":11,"contractor_id":4},{"id":12,"contractor_id":5},)"
                                       R"({"id":13,"contractor_id":4},{"id":14})")),
              0u);
    const auto found = listBy(getContractsWithParams, "contractor_id", "4");
    ASSERT_EQ(found.size(), 2u);
    ASSERT_NE(found.withId(11), nullptr);
    EXPECT_EQ(found.withId(11)->contractor, nullptr);
    EXPECT_NE(found.withId(13), nullptr);
}

TEST_F(Contracts, SearchComparesTextsWhole)
{
    ASSERT_EQ(send(addContracts, batch(R"({"id":11,"number":"07","c_name":"Lease"})")), 0u);
    EXPECT_EQ(listBy(getContractsWithParams, "number", "07").size(), 1u);
    EXPECT_EQ(listBy(getContractsWithParams, "number", "7").code, 8u);
    EXPECT_EQ(listBy(getContractsWithParams, "c_name", "lease").code, 8u);
    EXPECT_EQ(listBy(getContractsWithParams, "c_name", "L%").code, 8u);
}

TEST_F(Contracts, SearchReturns8IfNothingFits)
{
    ASSERT_EQ(send(addContracts, batch(lease)), 0u);
    FlatContract *out = nullptr;
    uint32_t count = 77;
    EXPECT_EQ(find(getContractsWithParams, &out, &count, "status", "2"), 8u);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(count, 77u);
}

TEST_F(Contracts, SearchRefusesOtherKeysWithoutAskingTheStore)
{
    foreign("ALTER TABLE Contracts RENAME TO Elsewhere");
    const DebugLines lines;
    for (const char *key : {"operator_id", "", "name", "Number", "contract_id", "ContractsId", "ContractsUserId"}) {
        SCOPED_TRACE(key);
        FlatContract *out = nullptr;
        uint32_t count = 77;
        EXPECT_EQ(find(getContractsWithParams, &out, &count, key, "7"), 10u);
        EXPECT_EQ(out, nullptr);
        EXPECT_EQ(count, 77u);
    }
    EXPECT_EQ(lines.all(), std::vector<std::string>());
}

// ---- Updating ----

TEST_F(Contracts, UpdatePutsEachKeyIntoItsColumn)
{
    EXPECT_EQ(update(updateContract, one(lease)).code, 0u);
    EXPECT_EQ(stored(11), (Row{"11", "A-1", "4", "Lease", "1", "100", "three rooms", "note", "7"}));
    EXPECT_EQ(rowCount(), 1);
}

TEST_F(Contracts, UpdateOfNumberAndNameStoresJustThose)
{
    EXPECT_EQ(update(updateContract, one(R"({"id":7,"number":"n","c_name":"c"})")).code, 0u);
    EXPECT_EQ(stored(7), (Row{"7", "n", {}, "c", {}, {}, {}, {}, {}}));
    EXPECT_EQ(update(updateContract, one(R"({"id":7,"number":"n2","c_name":"c2"})")).code, 0u);
    EXPECT_EQ(stored(7), (Row{"7", "n2", {}, "c2", {}, {}, {}, {}, {}}));
}

TEST_F(Contracts, UpdateOfTheStatusKeepsAndShowsTheParties)
{
    addParties();
    ASSERT_EQ(send(addContracts, batch(lease)), 0u);
    const auto answer = update(updateContract, one(R"({"id":11,"status":2})"));
    ASSERT_EQ(answer.code, 0u);
    EXPECT_EQ(value(answer->status), 2u);
    EXPECT_EQ(utf8(answer->number), "A-1");
    EXPECT_EQ(utf8(answer->name), "Lease");
    EXPECT_EQ(value(answer->date), 100u);
    expectContractor(answer->contractor);
    expectUser(answer->user);
    EXPECT_EQ(stored(11), (Row{"11", "A-1", "4", "Lease", "2", "100", "three rooms", "note", "7"}));
}

TEST_F(Contracts, UpdateShowsThePartiesOfItsOwnReferences)
{
    addParties();
    const auto answer = update(updateContract, one(lease));
    ASSERT_EQ(answer.code, 0u);
    expectWhole(*answer.record);
}

TEST_F(Contracts, UpdateStoresAReferenceToAMissingRowAndShowsNone)
{
    addParties();
    ASSERT_EQ(send(addContracts, batch(lease)), 0u);
    const auto answer = update(updateContract, one(R"({"id":11,"contractor_id":40,"operator_id":70})"));
    ASSERT_EQ(answer.code, 0u);
    EXPECT_EQ(answer->contractor, nullptr);
    EXPECT_EQ(answer->user, nullptr);
    EXPECT_EQ(stored(11), (Row{"11", "A-1", "40", "Lease", "1", "100", "three rooms", "note", "70"}));
}

TEST_F(Contracts, UpdateTakesAnyMixOfKeys)
{
    file.execute("WITH RECURSIVE Ids(Id) AS (SELECT 1000 UNION ALL SELECT Id + 1 FROM Ids WHERE Id < 1255) "
                 "INSERT INTO Contracts SELECT Id, 'old', 90, 'old', 90, 90, 'old', 'old', 90 FROM Ids");
    struct Member
    {
        const char *json, *before, *after;
    };
    const std::vector<Member> members = {{R"(,"number":"n")", "old", "n"}, {R"(,"contractor_id":4)", "90", "4"},
                                         {R"(,"c_name":"c")", "old", "c"}, {R"(,"status":1)", "90", "1"},
                                         {R"(,"date":2)", "90", "2"},      {R"(,"description":"d")", "old", "d"},
                                         {R"(,"extra":"e")", "old", "e"},  {R"(,"operator_id":7)", "90", "7"}};
    for (uint32_t mix = 0; mix < 256; ++mix) {
        const std::string id = std::to_string(1000 + mix);
        std::string object = "{\"id\":" + id;
        Row expected = {id};
        for (size_t place = 0; place < members.size(); ++place) {
            const bool sent = (mix >> place & 1u) != 0;
            object += sent ? members[place].json : "";
            expected.emplace_back(sent ? members[place].after : members[place].before);
        }
        SCOPED_TRACE(object);
        EXPECT_EQ(update(updateContract, one(object + "}")).code, 0u);
        EXPECT_EQ(stored(1000 + mix), expected);
    }
}

TEST_F(Contracts, UpdateAssignsTheKeyAndTheColumnsSent)
{
    ASSERT_EQ(send(addContracts, batch(lease)), 0u);
    watch();
    for (const auto &[member, column] : Pairs{{R"("number":"x")", "ContractsNumber"},
                                              {R"("contractor_id":9)", "ContractsContractorId"},
                                              {R"("c_name":"x")", "ContractsName"},
                                              {R"("status":9)", "ContractsStatus"},
                                              {R"("date":9)", "ContractsDate"},
                                              {R"("description":"x")", "ContractsDescription"},
                                              {R"("extra":"x")", "ContractsExtra"},
                                              {R"("operator_id":9)", "ContractsUserId"}}) {
        SCOPED_TRACE(member);
        foreign("DELETE FROM Assigned");
        EXPECT_EQ(update(updateContract, one(R"({"id":11,)" + member + "}")).code, 0u);
        EXPECT_EQ(assignedBesideTheKey(), column);
    }
    EXPECT_EQ(stored(11), (Row{"11", "x", "9", "x", "9", "9", "x", "x", "9"}));
}

TEST_F(Contracts, UpdateNamesNoColumnThatIsNotSent)
{
    foreign("DROP TABLE Contracts; CREATE TABLE Contracts (ContractsId UNSIGNED BIG INT PRIMARY KEY,"
            "ContractsNumber VARCHAR(255) DEFAULT 'd',ContractsContractorId UNSIGNED BIG INT DEFAULT 9,"
            "ContractsName VARCHAR(255) DEFAULT 'd',ContractsStatus UNSIGNED BIG INT DEFAULT 9,"
            "ContractsDate UNSIGNED BIG INT DEFAULT 9,ContractsDescription VARCHAR(255) DEFAULT 'd',"
            "ContractsExtra VARCHAR(255) DEFAULT 'd',ContractsUserId UNSIGNED BIG INT DEFAULT 9)");
    EXPECT_EQ(update(updateContract, one(R"({"id":11,"c_name":"Lease"})")).code, 0u);
    EXPECT_EQ(stored(11), (Row{"11", "d", "9", "Lease", "9", "9", "d", "d", "9"}));
}

TEST_F(Contracts, UpdateOfTheIdAloneChangesNothing)
{
    addParties();
    ASSERT_EQ(send(addContracts, batch(lease)), 0u);
    const auto answer = update(updateContract, one(R"({"id":11})"));
    ASSERT_EQ(answer.code, 0u);
    expectWhole(*answer.record);
    EXPECT_EQ(stored(11), (Row{"11", "A-1", "4", "Lease", "1", "100", "three rooms", "note", "7"}));
}

TEST_F(Contracts, UpdateOfANewIdAloneMakesARowOfNothingElse)
{
    const auto answer = update(updateContract, one(R"({"id":11})"));
    ASSERT_EQ(answer.code, 0u);
    EXPECT_EQ(answer->id, 11u);
    EXPECT_EQ(answer->number, nullptr);
    EXPECT_EQ(answer->status, nullptr);
    EXPECT_EQ(stored(11), (Row{"11", {}, {}, {}, {}, {}, {}, {}, {}}));
}

TEST_F(Contracts, UpdateOverwritesWithEmptyTextsAndZeros)
{
    ASSERT_EQ(send(addContracts, batch(lease)), 0u);
    const auto answer = update(updateContract, one(R"({"id":11,"c_name":"","status":0,"contractor_id":0})"));
    ASSERT_EQ(answer.code, 0u);
    EXPECT_EQ(utf8(answer->name), "");
    EXPECT_EQ(value(answer->status), 0u);
    EXPECT_EQ(stored(11), (Row{"11", "A-1", "0", "", "0", "100", "three rooms", "note", "7"}));
}

TEST_F(Contracts, UpdateTouchesNoOtherRow)
{
    ASSERT_EQ(send(addContracts, batch(lease, R"({"id":12})")), 0u);
    EXPECT_EQ(update(updateContract, one(R"({"id":12,"c_name":"new","operator_id":8})")).code, 0u);
    EXPECT_EQ(stored(11), (Row{"11", "A-1", "4", "Lease", "1", "100", "three rooms", "note", "7"}));
    EXPECT_EQ(stored(12), (Row{"12", {}, {}, "new", {}, {}, {}, {}, "8"}));
}

TEST_F(Contracts, UpdateRefusesDocumentsThatAreNoRecord)
{
    for (const auto &[json, code] : Codes{{"", 10u},
                                          {"not json", 10u},
                                          {R"(["id",11])", 10u},
                                          {R"({"id":11})", 5u},
                                          {R"({"D":11})", 5u},
                                          {R"({"D":{}})", 5u},
                                          {batch(lease), 5u}}) {
        SCOPED_TRACE(json);
        FlatContract *out = nullptr;
        EXPECT_EQ(send(updateContract, &out, json), code);
        EXPECT_EQ(out, nullptr);
    }
    EXPECT_EQ(rowCount(), 0);
}

TEST_F(Contracts, UpdateReturns8WhenTheRowIsDeletedMeanwhileAndStillCommits)
{
    foreign("CREATE TABLE Seen (Id INTEGER); CREATE TRIGGER DropNew AFTER INSERT ON Contracts BEGIN "
            "INSERT INTO Seen VALUES (NEW.ContractsId); "
            "DELETE FROM Contracts WHERE ContractsId = NEW.ContractsId; END");
    const DebugLines lines;
    FlatContract *out = nullptr;
    EXPECT_EQ(send(updateContract, &out, one(lease)), 8u);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(lines.all(), std::vector<std::string>());
    EXPECT_EQ(file.number("SELECT count(*) FROM Seen"), 1);
}

// ---- Removing ----

TEST_F(Contracts, DeleteRemovesTheOneRow)
{
    ASSERT_EQ(send(addContracts, batch(R"({"id":11},{"id":12})")), 0u);
    EXPECT_EQ(send(deleteContract, one(R"({"id":11})")), 0u);
    EXPECT_EQ(stored(11), Row());
    EXPECT_EQ(stored(12), (Row{"12", {}, {}, {}, {}, {}, {}, {}, {}}));
}

TEST_F(Contracts, DeleteLeavesPartiesAndSites)
{
    addParties();
    ASSERT_EQ(send(addContracts, batch(lease)), 0u);
    foreign("INSERT INTO Sites (SitesId, SitesContractId) VALUES (20, 11)");
    EXPECT_EQ(send(deleteContract, one(R"({"id":11})")), 0u);
    EXPECT_EQ(file.rows("SELECT SitesId, SitesContractId FROM Sites"), (std::vector<Row>{Row{"20", "11"}}));
    EXPECT_EQ(file.number("SELECT count(*) FROM Contractors WHERE ContractorsId = 4"), 1);
    EXPECT_EQ(file.number("SELECT count(*) FROM Users WHERE UsersId = 7"), 1);
}

TEST_F(Contracts, DeleteReturns8ForAnUnknownIdAndLogsNothing)
{
    ASSERT_EQ(send(addContracts, batch(lease)), 0u);
    const DebugLines lines;
    EXPECT_EQ(send(deleteContract, one(R"({"id":4})")), 8u);
    EXPECT_EQ(lines.all(), std::vector<std::string>());
    EXPECT_EQ(rowCount(), 1);
}

TEST_F(Contracts, DeleteTakesAnIdThatIsNoNumberForZero)
{
    ASSERT_EQ(send(addContracts, batch(R"({"id":11})")), 0u);
    EXPECT_EQ(send(deleteContract, one(R"({"id":null})")), 8u);
    ASSERT_EQ(send(addContracts, batch(R"({"id":0})")), 0u);
    EXPECT_EQ(send(deleteContract, one(R"({"id":"11"})")), 0u);
    EXPECT_EQ(stored(0), Row());
    EXPECT_NE(stored(11), Row());
}

TEST_F(Contracts, DeleteRefusesDocumentsWithoutTheId)
{
    ASSERT_EQ(send(addContracts, batch(R"({"id":11},{"id":0})")), 0u);
    for (const auto &[json, code] : Codes{{"", 10u},
                                          {"not json", 10u},
                                          {"[11]", 10u},
                                          {R"({"id":11})", 5u},
                                          {R"({"D":11})", 5u},
                                          {R"({"D":{}})", 5u},
                                          {R"({"D":{"contract_id":11}})", 5u}}) {
        SCOPED_TRACE(json);
        EXPECT_EQ(send(deleteContract, json), code);
    }
    EXPECT_EQ(rowCount(), 2);
}

// ---- Failing ----

TEST_F(Contracts, FailedAddLogsAndRollsTheBatchBack)
{
    ASSERT_EQ(send(addContracts, batch(lease)), 0u);
    foreign("CREATE TRIGGER Refuse12 BEFORE INSERT ON Contracts WHEN NEW.ContractsId = 12 "
            "BEGIN SELECT RAISE(ABORT, 'refused'); END");
    const DebugLines lines;
    EXPECT_EQ(send(addContracts, batch(R"({"id":10},{"id":11,"c_name":"new"},{"id":12},{"id":13})")), 9u);
    EXPECT_TRUE(isBatchFailure(lines.all(), "add contracts error"));
    EXPECT_EQ(rowCount(), 1);
    EXPECT_EQ(stored(11), (Row{"11", "A-1", "4", "Lease", "1", "100", "three rooms", "note", "7"}));
}

TEST_F(Contracts, FailedAddFailsTheSameWithoutTheTable)
{
    foreign("DROP TABLE Contracts");
    const DebugLines lines;
    EXPECT_EQ(send(addContracts, batch(lease)), 9u);
    EXPECT_TRUE(isBatchFailure(lines.all(), "add contracts error"));
}

TEST_F(Contracts, AddWorksAgainAfterAFailedOne)
{
    refuse("INSERT", "Contracts");
    EXPECT_EQ(send(addContracts, batch(lease)), 9u);
    foreign("DROP TRIGGER RefuseINSERTContracts");
    EXPECT_EQ(send(addContracts, batch(lease)), 0u);
    EXPECT_EQ(rowCount(), 1);
}

TEST_F(Contracts, FailedUpdateLogsAndLeavesTheRow)
{
    ASSERT_EQ(send(addContracts, batch(lease)), 0u);
    refuse("UPDATE", "Contracts");
    const DebugLines lines;
    FlatContract *out = nullptr;
    EXPECT_EQ(send(updateContract, &out, one(R"({"id":11,"c_name":"new"})")), 9u);
    EXPECT_TRUE(isFailure(lines.all(), "add or update contract error"));
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(stored(11), (Row{"11", "A-1", "4", "Lease", "1", "100", "three rooms", "note", "7"}));
}

TEST_F(Contracts, FailedUpdateOfANewIdLeavesNoRow)
{
    refuse("INSERT", "Contracts");
    const DebugLines lines;
    EXPECT_EQ(update(updateContract, one(lease)).code, 9u);
    EXPECT_TRUE(isFailure(lines.all(), "add or update contract error"));
    EXPECT_EQ(rowCount(), 0);
}

TEST_F(Contracts, FailedReadBackUndoesTheUpdate)
{
    ASSERT_EQ(send(addContracts, batch(lease)), 0u);
    foreign("ALTER TABLE Locales RENAME TO Elsewhere");
    const DebugLines lines;
    FlatContract *out = nullptr;
    EXPECT_EQ(send(updateContract, &out, one(R"({"id":11,"c_name":"new"})")), 9u);
    EXPECT_TRUE(isFailure(lines.all(), "get contract by id error"));
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(stored(11), (Row{"11", "A-1", "4", "Lease", "1", "100", "three rooms", "note", "7"}));
}

TEST_F(Contracts, UpdateWorksAgainAfterAFailedOne)
{
    foreign("ALTER TABLE Locales RENAME TO Elsewhere");
    EXPECT_EQ(update(updateContract, one(lease)).code, 9u);
    EXPECT_EQ(rowCount(), 0);
    foreign("ALTER TABLE Elsewhere RENAME TO Locales");
    EXPECT_EQ(update(updateContract, one(lease)).code, 0u);
    EXPECT_EQ(rowCount(), 1);
}

TEST_F(Contracts, ReadsNeedAllFiveTables)
{
    ASSERT_EQ(send(addContracts, batch(R"({"id":11})")), 0u);
    for (const std::string table : {"Contracts", "Contractors", "Users", "Domains", "Locales"}) {
        SCOPED_TRACE(table);
        foreign("ALTER TABLE " + table + " RENAME TO Elsewhere");
        EXPECT_EQ(get(getContract, 11).code, 7u);
        EXPECT_EQ(list(getContracts).code, 7u);
        EXPECT_EQ(listBy(getContractsWithParams, "id", "11").code, 7u);
        foreign("ALTER TABLE Elsewhere RENAME TO " + table);
        EXPECT_EQ(get(getContract, 11).code, 0u);
    }
}

TEST_F(Contracts, FailedGetLogsTheReadById)
{
    foreign("ALTER TABLE Contracts RENAME TO Elsewhere");
    const DebugLines lines;
    FlatContract *out = nullptr;
    EXPECT_EQ(getContract(&out, 11), 7u);
    EXPECT_TRUE(isFailure(lines.all(), "get contract by id error"));
    EXPECT_EQ(out, nullptr);
}

TEST_F(Contracts, FailedListLogsTheList)
{
    foreign("ALTER TABLE Contracts RENAME TO Elsewhere");
    const DebugLines lines;
    FlatContract *out = nullptr;
    uint32_t count = 77;
    EXPECT_EQ(getContracts(&out, &count), 7u);
    EXPECT_TRUE(isFailure(lines.all(), "get contracts error"));
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(count, 77u);
}

TEST_F(Contracts, FailedSearchLogsTheSearch)
{
    foreign("ALTER TABLE Contracts RENAME TO Elsewhere");
    const DebugLines lines;
    FlatContract *out = nullptr;
    uint32_t count = 77;
    EXPECT_EQ(find(getContractsWithParams, &out, &count, "number", "A-1"), 7u);
    EXPECT_TRUE(isFailure(lines.all(), "get contracts by field error"));
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(count, 77u);
}

TEST_F(Contracts, DeleteReturns7WhenItsReadFails)
{
    ASSERT_EQ(send(addContracts, batch(lease)), 0u);
    foreign("ALTER TABLE Users RENAME TO Elsewhere");
    const DebugLines lines;
    EXPECT_EQ(send(deleteContract, one(R"({"id":11})")), 7u);
    EXPECT_TRUE(isFailure(lines.all(), "get contract by id error"));
    EXPECT_EQ(rowCount(), 1);
}

TEST_F(Contracts, FailedDeleteLogsAndLeavesTheRow)
{
    ASSERT_EQ(send(addContracts, batch(lease)), 0u);
    refuse("DELETE", "Contracts");
    const DebugLines lines;
    EXPECT_EQ(send(deleteContract, one(R"({"id":11})")), 9u);
    EXPECT_TRUE(isFailure(lines.all(), "delete contract error"));
    EXPECT_EQ(rowCount(), 1);
    foreign("DROP TRIGGER RefuseDELETEContracts");
    EXPECT_EQ(send(deleteContract, one(R"({"id":11})")), 0u);
    EXPECT_EQ(rowCount(), 0);
}

TEST_F(Contracts, RefusedAndMissedCallsLogNothing)
{
    const DebugLines lines;
    EXPECT_EQ(send(addContracts, batch("7")), 5u);
    EXPECT_EQ(send(addContracts, "not json"), 10u);
    EXPECT_EQ(update(updateContract, one("{}")).code, 5u);
    EXPECT_EQ(send(deleteContract, one("{}")), 5u);
    EXPECT_EQ(get(getContract, 11).code, 8u);
    EXPECT_EQ(list(getContracts).code, 8u);
    EXPECT_EQ(listBy(getContractsWithParams, "id", "11").code, 8u);
    EXPECT_EQ(lines.all(), std::vector<std::string>());
}

TEST_F(Contracts, WorkingCallsLogNothing)
{
    const DebugLines lines;
    EXPECT_EQ(send(addContracts, batch(lease)), 0u);
    EXPECT_EQ(update(updateContract, one(R"({"id":11,"status":9})")).code, 0u);
    EXPECT_EQ(get(getContract, 11).code, 0u);
    EXPECT_EQ(list(getContracts).code, 0u);
    EXPECT_EQ(listBy(getContractsWithParams, "status", "9").code, 0u);
    EXPECT_EQ(send(deleteContract, one(R"({"id":11})")), 0u);
    EXPECT_EQ(lines.all(), std::vector<std::string>());
}

// ---- Targets and frees ----

TEST_F(Contracts, FunctionsWithATargetRefuseOneThatIsTaken)
{
    foreign("ALTER TABLE Contracts RENAME TO Elsewhere");
    const DebugLines lines;
    FlatContract mine = {};
    FlatContract *out = &mine;
    uint32_t count = 77;
    EXPECT_EQ(getContract(&out, 11), 10u);
    EXPECT_EQ(getContracts(&out, &count), 10u);
    EXPECT_EQ(find(getContractsWithParams, &out, &count, "number", "A-1"), 10u);
    EXPECT_EQ(send(updateContract, &out, one(lease)), 10u);
    EXPECT_EQ(send(updateContract, &out, one("{}")), 10u);
    EXPECT_EQ(out, &mine);
    EXPECT_EQ(count, 77u);
    EXPECT_EQ(lines.all(), std::vector<std::string>());
}

TEST_F(Contracts, UpdateWithATakenTargetWritesNothing)
{
    FlatContract mine = {};
    FlatContract *out = &mine;
    EXPECT_EQ(send(updateContract, &out, one(lease)), 10u);
    EXPECT_EQ(out, &mine);
    EXPECT_EQ(rowCount(), 0);
}

TEST_F(Contracts, FreeRefusesANullPointer)
{
    EXPECT_EQ(freeContract(nullptr), 10u);
    EXPECT_EQ(freeContractsArray(nullptr, 0), 10u);
    EXPECT_EQ(freeContractsArray(nullptr, 1), 10u);
}

TEST_F(Contracts, FreeOfAnArrayWithoutACountLeavesIt)
{
    addParties();
    ASSERT_EQ(send(addContracts, batch(lease)), 0u);
    const auto all = list(getContracts);
    ASSERT_EQ(all.size(), 1u);
    EXPECT_EQ(freeContractsArray(&all[0], 0), 10u);
    expectWhole(all[0]);
}

TEST_F(Contracts, FreeTakesAllFourLevels)
{
    addParties();
    ASSERT_EQ(send(addContracts, batch(lease, R"({"id":12})")), 0u);
    FlatContract *single = nullptr;
    FlatContract *array = nullptr;
    uint32_t count = 0;
    ASSERT_EQ(getContract(&single, 11), 0u);
    ASSERT_EQ(getContracts(&array, &count), 0u);
    ASSERT_EQ(count, 2u);
    EXPECT_EQ(library->exit(), 0);
    expectWhole(*single);
    EXPECT_EQ(freeContract(single), 0u);
    EXPECT_EQ(freeContractsArray(array, count), 0u);
}

} // namespace
