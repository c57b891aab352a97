// Organizations and their contact persons: two tables, one document. An update keeps absent members of the one and
// replaces the other.
#include "Store.h"

#include <string>
#include <utility>
#include <vector>

namespace {

using namespace brimlet::test;

// Documents with the codes that they get; members or keys with the texts that go with them.
using Codes = std::vector<std::pair<std::string, uint32_t>>;
using Pairs = std::vector<std::pair<std::string, std::string>>;

constexpr char works[] =
    R"({"org_id":2,"inn":"7702","off_name":"Northern Works","short_name":"NW","kpp":"0101","ogrn":"0202",)"
    R"("address_text":"Pier 3","locale_id":1,)"
    R"("contact":{"id":5,"name":"Eve","phone":"+7 1","email":"eve@x","postal":"Box 9"}})";

// The rows that `works` makes.
Row worksRow()
{
    return {"2", "7702", "Northern Works", "NW", "0101", "0202", "5", "1", "Pier 3"};
}

Row eveRow()
{
    return {"5", "Eve", "+7 1", "eve@x", "Box 9"};
}

class Organizations : public StoreTest
{
protected:
    // The row of an organization or a person in the order of the table; empty when there is none.
    Row stored(uint32_t id) const
    {
        const std::vector<Row> rows =
            file.rows("SELECT OrganizationsId, OrganizationsInn, OrganizationsOfficialName, OrganizationsShortName, "
                      "OrganizationsKpp, OrganizationsOgrn, OrganizationsContactId, OrganizationsLocaleId, "
                      "OrganizationsAddress FROM Organizations WHERE OrganizationsId = "
                      + std::to_string(id));
        return rows.empty() ? Row() : rows.at(0);
    }
    Row storedPerson(uint32_t id) const
    {
        const std::vector<Row> rows =
            file.rows("SELECT PersonsId, PersonsName, PersonsPhone, PersonsEmail, PersonsPostal FROM Persons "
                      "WHERE PersonsId = "
                      + std::to_string(id));
        return rows.empty() ? Row() : rows.at(0);
    }

    int64_t rowCount() const { return file.number("SELECT count(*) FROM Organizations"); }
    int64_t personCount() const { return file.number("SELECT count(*) FROM Persons"); }

    // Has the file note which columns an update of an organization assigns.
    void watch()
    {
        std::string sql = "CREATE TABLE Assigned (Name VARCHAR(255));";
        for (const char *column : {"OrganizationsId", "OrganizationsInn", "OrganizationsOfficialName",
                                   "OrganizationsShortName", "OrganizationsKpp", "OrganizationsOgrn",
                                   "OrganizationsContactId", "OrganizationsLocaleId", "OrganizationsAddress"})
            sql += "CREATE TRIGGER Watch" + std::string(column) + " AFTER UPDATE OF " + column
                 + " ON Organizations BEGIN INSERT INTO Assigned VALUES ('" + column + "'); END;";
        foreign(sql);
    }

    // The columns that were assigned, but for the key, which is assigned too.
    std::optional<std::string> assignedBesideTheKey() const
    {
        EXPECT_EQ(file.number("SELECT count(*) FROM Assigned WHERE Name = 'OrganizationsId'"), 1);
        return file.value("SELECT group_concat(Name, ' ') FROM Assigned WHERE Name <> 'OrganizationsId'");
    }

    // Gives every column a default that shows where a statement leaves it out.
    void setDefaults()
    {
        foreign("DROP TABLE Organizations; CREATE TABLE Organizations (OrganizationsId UNSIGNED BIG INT PRIMARY KEY,"
                "OrganizationsInn VARCHAR(255) DEFAULT 'd',OrganizationsOfficialName VARCHAR(255) DEFAULT 'd',"
                "OrganizationsShortName VARCHAR(255) DEFAULT 'd',OrganizationsKpp VARCHAR(255) DEFAULT 'd',"
                "OrganizationsOgrn VARCHAR(255) DEFAULT 'd',OrganizationsContactId UNSIGNED BIG INT DEFAULT 9,"
                "OrganizationsLocaleId UNSIGNED BIG INT DEFAULT 9,OrganizationsAddress VARCHAR(255) DEFAULT 'd');"
                "DROP TABLE Persons; CREATE TABLE Persons (PersonsId UNSIGNED BIG INT PRIMARY KEY,"
                "PersonsName VARCHAR(255) DEFAULT 'd',PersonsPhone VARCHAR(255) DEFAULT 'd',"
                "PersonsEmail VARCHAR(255) DEFAULT 'd',PersonsPostal VARCHAR(255) DEFAULT 'd')");
    }

    // A member that neither an add nor an update may contain.
    void expectRefused(const std::string &member) const
    {
        SCOPED_TRACE(member);
        EXPECT_EQ(send(addOrganizations, batch(R"({"org_id":2,)" + member + "}")), 5u);
        EXPECT_EQ(update(updateOrganization, one(R"({"org_id":2,)" + member + "}")).code, 5u);
    }
};

void expectEve(const FlatPerson *person)
{
    ASSERT_NE(person, nullptr);
    EXPECT_EQ(person->id, 5u);
    EXPECT_EQ(utf8(person->name), "Eve");
    EXPECT_EQ(utf8(person->phone), "+7 1");
    EXPECT_EQ(utf8(person->email), "eve@x");
    EXPECT_EQ(utf8(person->postal), "Box 9");
}

// The organization 2 as `works` describes it, with the locale 1.
void expectWorks(const FlatOrganization &organization)
{
    EXPECT_EQ(organization.id, 2u);
    EXPECT_EQ(utf8(organization.inn), "7702");
    EXPECT_EQ(utf8(organization.officialName), "Northern Works");
    EXPECT_EQ(utf8(organization.shortName), "NW");
    EXPECT_EQ(utf8(organization.kpp), "0101");
    EXPECT_EQ(utf8(organization.ogrn), "0202");
    EXPECT_EQ(utf8(organization.address), "Pier 3");
    expectEve(organization.contact);
    ASSERT_NE(organization.locale, nullptr);
    EXPECT_EQ(organization.locale->id, 1u);
    EXPECT_EQ(utf8(organization.locale->iso), "de");
    EXPECT_EQ(utf8(organization.locale->description), "German");
}

// ---- The tables ----

TEST_F(Organizations, TablesHaveTheirColumnsInOrder)
{
    EXPECT_EQ(file.value("SELECT sql FROM sqlite_master WHERE type = 'table' AND name = 'Organizations'"),
              "CREATE TABLE Organizations (OrganizationsId UNSIGNED BIG INT PRIMARY KEY,"
              "OrganizationsInn VARCHAR(255),OrganizationsOfficialName VARCHAR(255),"
              "OrganizationsShortName VARCHAR(255),OrganizationsKpp VARCHAR(255),OrganizationsOgrn VARCHAR(255),"
              "OrganizationsContactId UNSIGNED BIG INT,OrganizationsLocaleId UNSIGNED BIG INT,"
              "OrganizationsAddress VARCHAR(255))");
    EXPECT_EQ(file.value("SELECT sql FROM sqlite_master WHERE type = 'table' AND name = 'Persons'"),
              "CREATE TABLE Persons (PersonsId UNSIGNED BIG INT PRIMARY KEY,PersonsName VARCHAR(255),"
              "PersonsPhone VARCHAR(255),PersonsEmail VARCHAR(255),PersonsPostal VARCHAR(255))");
}

TEST_F(Organizations, TablesHaveNoIndexButTheirKeys)
{
    EXPECT_EQ(file.number("SELECT count(*) FROM sqlite_master WHERE type = 'index' AND tbl_name = 'Organizations'"), 1);
    EXPECT_EQ(file.number("SELECT count(*) FROM sqlite_master WHERE type = 'index' AND tbl_name = 'Persons'"), 1);
}

// ---- Adding ----

TEST_F(Organizations, AddPutsEachKeyIntoItsColumn)
{
    EXPECT_EQ(send(addOrganizations, batch(works)), 0u);
    EXPECT_EQ(stored(2), worksRow());
    EXPECT_EQ(storedPerson(5), eveRow());
}

TEST_F(Organizations, AddStoresNumbersAsIntegersAndTextsAsText)
{
    ASSERT_EQ(send(addOrganizations, batch(works)), 0u);
    EXPECT_EQ(file.rows("SELECT typeof(OrganizationsId), typeof(OrganizationsInn), "
                        "typeof(OrganizationsOfficialName), typeof(OrganizationsShortName), "
                        "typeof(OrganizationsKpp), typeof(OrganizationsOgrn), typeof(OrganizationsContactId), "
                        "typeof(OrganizationsLocaleId), typeof(OrganizationsAddress) FROM Organizations"),
              (std::vector<Row>{Row{"integer", "text", "text", "text", "text", "text", "integer", "integer", "text"}}));
    EXPECT_EQ(file.rows("SELECT typeof(PersonsId), typeof(PersonsName), typeof(PersonsPhone), "
                        "typeof(PersonsEmail), typeof(PersonsPostal) FROM Persons"),
              (std::vector<Row>{Row{"integer", "text", "text", "text", "text"}}));
}

TEST_F(Organizations, AddStoresWhatIsLeftOutAsNull)
{
    EXPECT_EQ(send(addOrganizations, batch(R"({"org_id":2})")), 0u);
    EXPECT_EQ(stored(2), (Row{"2", {}, {}, {}, {}, {}, {}, {}, {}}));
    EXPECT_EQ(personCount(), 0);
}

TEST_F(Organizations, AddOfAContactOfItsIdAloneStoresNulls)
{
    EXPECT_EQ(send(addOrganizations, batch(R"({"org_id":2,"contact":{"id":5}})")), 0u);
    EXPECT_EQ(stored(2), (Row{"2", {}, {}, {}, {}, {}, "5", {}, {}}));
    EXPECT_EQ(storedPerson(5), (Row{"5", {}, {}, {}, {}}));
}

TEST_F(Organizations, AddStoresAnEmptyTextAsTextAndZeroAsZero)
{
    EXPECT_EQ(send(addOrganizations,
                   batch(R"({"org_id":2,"inn":"","off_name":"","short_name":"","kpp":"","ogrn":"","address_text":"",)"
                         R"("locale_id":0,"contact":{"id":0,"name":"","phone":"","email":"","postal":""}})")),
              0u);
    EXPECT_EQ(stored(2), (Row{"2", "", "", "", "", "", "0", "0", ""}));
    EXPECT_EQ(storedPerson(0), (Row{"0", "", "", "", ""}));
}

TEST_F(Organizations, AddReplacesTheWholeRowAndLeavesTheFormerPerson)
{
    ASSERT_EQ(send(addOrganizations, batch(works)), 0u);
    EXPECT_EQ(send(addOrganizations, batch(R"({"org_id":2,"kpp":"9"})")), 0u);
    EXPECT_EQ(stored(2), (Row{"2", {}, {}, {}, "9", {}, {}, {}, {}}));
    EXPECT_EQ(storedPerson(5), eveRow());
    EXPECT_EQ(rowCount(), 1);
}

TEST_F(Organizations, AddReplacesTheWholePerson)
{
    ASSERT_EQ(send(addOrganizations, batch(works)), 0u);
    EXPECT_EQ(send(addOrganizations, batch(R"({"org_id":2,"contact":{"id":5,"email":"new"}})")), 0u);
    EXPECT_EQ(storedPerson(5), (Row{"5", {}, {}, "new", {}}));
    EXPECT_EQ(personCount(), 1);
}

TEST_F(Organizations, AddNamesEveryColumnOfBothTablesWhateverIsSent)
{
    setDefaults();
    EXPECT_EQ(send(addOrganizations, batch(R"({"org_id":2,"contact":{"id":5,"name":"Eve"}})")), 0u);
    EXPECT_EQ(stored(2), (Row{"2", {}, {}, {}, {}, {}, "5", {}, {}}));
    EXPECT_EQ(storedPerson(5), (Row{"5", "Eve", {}, {}, {}}));
}

TEST_F(Organizations, AddTakesABatchInWhichOnlySomeHaveContacts)
{
    EXPECT_EQ(send(addOrganizations, batch(R"({"org_id":1,"inn":"a"},{"org_id":2,"contact":{"id":8,"phone":"p"}},)"
                                           R"({"org_id":3,"locale_id":4,"ogrn":"o"},)"
                                           R"({"org_id":4,"off_name":"f","contact":{"id":6,"name":"n"}})")),
              0u);
    EXPECT_EQ(stored(1), (Row{"1", "a", {}, {}, {}, {}, {}, {}, {}}));
    EXPECT_EQ(stored(2), (Row{"2", {}, {}, {}, {}, {}, "8", {}, {}}));
    EXPECT_EQ(stored(3), (Row{"3", {}, {}, {}, {}, "o", {}, "4", {}}));
    EXPECT_EQ(stored(4), (Row{"4", {}, "f", {}, {}, {}, "6", {}, {}}));
    EXPECT_EQ(storedPerson(8), (Row{"8", {}, "p", {}, {}}));
    EXPECT_EQ(storedPerson(6), (Row{"6", "n", {}, {}, {}}));
    EXPECT_EQ(personCount(), 2);
}

TEST_F(Organizations, AddLetsTheLaterOfTwoEqualIdsWinWhole)
{
    EXPECT_EQ(send(addOrganizations, batch(R"({"org_id":2,"inn":"first","kpp":"k"},{"org_id":2,"inn":"second"})")), 0u);
    EXPECT_EQ(stored(2), (Row{"2", "second", {}, {}, {}, {}, {}, {}, {}}));
    EXPECT_EQ(rowCount(), 1);
}

TEST_F(Organizations, AddLetsTheLaterOfTwoEqualContactsWinWhole)
{
    EXPECT_EQ(send(addOrganizations, batch(R"({"org_id":2,"contact":{"id":5,"name":"first","phone":"1"}},)"
                                           R"({"org_id":3,"contact":{"id":5,"name":"second"}})")),
              0u);
    EXPECT_EQ(stored(2), (Row{"2", {}, {}, {}, {}, {}, "5", {}, {}}));
    EXPECT_EQ(stored(3), (Row{"3", {}, {}, {}, {}, {}, "5", {}, {}}));
    EXPECT_EQ(storedPerson(5), (Row{"5", "second", {}, {}, {}}));
    EXPECT_EQ(personCount(), 1);
}

TEST_F(Organizations, AddIgnoresUnknownKeys)
{
    EXPECT_EQ(send(addOrganizations, batch(R"({"org_id":2,"id":9,"name":"x","address":7,"Contact":{"name":"x"},)"
                                           R"("contact":{"id":5,"org_id":2,"inn":7}})")),
              0u);
    EXPECT_EQ(stored(2), (Row{"2", {}, {}, {}, {}, {}, "5", {}, {}}));
    EXPECT_EQ(storedPerson(5), (Row{"5", {}, {}, {}, {}}));
}

TEST_F(Organizations, AddKeepsTheLowBitsOfNumbers)
{
    EXPECT_EQ(send(addOrganizations, batch(R"({"org_id":-1,"locale_id":5000000000,"contact":{"id":5.9}})")), 0u);
    EXPECT_EQ(stored(4294967295u), (Row{"4294967295", {}, {}, {}, {}, {}, "5", "705032704", {}}));
    EXPECT_EQ(storedPerson(5), (Row{"5", {}, {}, {}, {}}));
}

TEST_F(Organizations, AddStoresNothingOfABatchWithABadElement)
{
    EXPECT_EQ(send(addOrganizations, batch(R"({"org_id":2,"contact":{"id":5}},{"org_id":3},7)")), 5u);
    EXPECT_EQ(send(addOrganizations, batch(R"({"org_id":2,"contact":{"id":5}},{"id":3},{"org_id":4})")), 5u);
    EXPECT_EQ(rowCount(), 0);
    EXPECT_EQ(personCount(), 0);
}

TEST_F(Organizations, AddRefusesDocumentsThatAreNoBatch)
{
    for (const auto &[json, code] : Codes{{"", 10u},
                                          {"not json", 10u},
                                          {R"([{"org_id":2}])", 10u},
                                          {R"({"items":[{"org_id":2}]})", 5u},
                                          {R"({"D":[{"org_id":2}]})", 5u},
                                          {R"({"D":{"org_id":2}})", 5u},
                                          {R"({"D":{"items":{"org_id":2}}})", 5u},
                                          {R"({"D":{"items":[]}})", 10u}}) {
        SCOPED_TRACE(json);
        EXPECT_EQ(send(addOrganizations, json), code);
    }
    EXPECT_EQ(addOrganizations(nullptr, 0), 10u);
    EXPECT_EQ(rowCount(), 0);
}

// ---- Types ----

TEST_F(Organizations, TextsRefuseOtherTypes)
{
    for (const char *key : {"inn", "off_name", "short_name", "kpp", "ogrn", "address_text"})
        for (const char *json : {"123", "true", "null", "[]", "{}"})
            expectRefused("\"" + std::string(key) + "\":" + json);
    EXPECT_EQ(rowCount(), 0);
}

TEST_F(Organizations, TheLocaleIsANumber)
{
    for (const char *json : {R"({"id":1})", "{}", R"("1")", "true", "null", "[1]"})
        expectRefused(R"("locale_id":)" + std::string(json));
    EXPECT_EQ(rowCount(), 0);
}

TEST_F(Organizations, IdIsRequiredAndANumberUnderItsOwnKey)
{
    for (const char *object : {R"({"id":2})", R"({"inn":"x"})", R"({"org_id":"2"})", R"({"org_id":null,"id":2})",
                               R"({"org_id":true})", R"({"org_id":{}})"}) {
        SCOPED_TRACE(object);
        EXPECT_EQ(send(addOrganizations, batch(object)), 5u);
        EXPECT_EQ(update(updateOrganization, one(object)).code, 5u);
    }
    EXPECT_EQ(rowCount(), 0);
}

TEST_F(Organizations, TextsOfAContactRefuseOtherTypes)
{
    for (const char *key : {"name", "phone", "email", "postal"})
        for (const char *json : {"123", "true", "null", "[]", "{}"})
            expectRefused(R"("contact":{"id":5,")" + std::string(key) + "\":" + json + "}");
    EXPECT_EQ(rowCount(), 0);
    EXPECT_EQ(personCount(), 0);
}

TEST_F(Organizations, IdOfAContactIsRequiredAndANumber)
{
    for (const char *contact :
         {R"({"name":"x"})", R"({"id":"5"})", R"({"id":null})", R"({"id":true})", R"({"id":{}})", R"({"unknown":1})"})
        expectRefused(R"("contact":)" + std::string(contact));
    EXPECT_EQ(rowCount(), 0);
    EXPECT_EQ(personCount(), 0);
}

TEST_F(Organizations, AGoodContactDoesNotSaveABadOrganization)
{
    expectRefused(R"("inn":7,"contact":{"id":5,"name":"Eve"})");
    EXPECT_EQ(personCount(), 0);
}

TEST_F(Organizations, AContactThatIsEmptyOrNoObjectIsNone)
{
    for (const char *contact : {"{}", "7", R"("text")", "true", "null", "[]", R"([{"id":5}])"}) {
        SCOPED_TRACE(contact);
        const std::string object = R"({"org_id":2,"contact":)" + std::string(contact) + "}";
        EXPECT_EQ(send(addOrganizations, batch(object)), 0u);
        EXPECT_EQ(update(updateOrganization, one(object)).code, 0u);
        EXPECT_EQ(stored(2), (Row{"2", {}, {}, {}, {}, {}, {}, {}, {}}));
    }
    EXPECT_EQ(personCount(), 0);
}

// ---- Reading ----

TEST_F(Organizations, GetReturnsEachColumnInItsField)
{
    file.execute("INSERT INTO Organizations VALUES (2, '7702', 'Northern Works', 'NW', '0101', '0202', 5, 1, 'Pier 3');"
                 "INSERT INTO Persons VALUES (5, 'Eve', '+7 1', 'eve@x', 'Box 9');"
                 "INSERT INTO Locales VALUES (1, 'de', 'German')");
    const auto answer = get(getOrganization, 2);
    ASSERT_EQ(answer.code, 0u);
    expectWorks(*answer.record);
}

TEST_F(Organizations, GetReturnsNullPointersForNulls)
{
    file.execute("INSERT INTO Organizations (OrganizationsId) VALUES (2)");
    const auto answer = get(getOrganization, 2);
    ASSERT_EQ(answer.code, 0u);
    EXPECT_EQ(answer->id, 2u);
    EXPECT_EQ(answer->inn, nullptr);
    EXPECT_EQ(answer->officialName, nullptr);
    EXPECT_EQ(answer->shortName, nullptr);
    EXPECT_EQ(answer->kpp, nullptr);
    EXPECT_EQ(answer->ogrn, nullptr);
    EXPECT_EQ(answer->address, nullptr);
    EXPECT_EQ(answer->contact, nullptr);
    EXPECT_EQ(answer->locale, nullptr);
}

TEST_F(Organizations, GetReturnsNullPointersForNullsOfAContactAndALocale)
{
    file.execute("INSERT INTO Organizations (OrganizationsId, OrganizationsContactId, OrganizationsLocaleId) "
                 "VALUES (2, 5, 1); INSERT INTO Persons (PersonsId) VALUES (5); "
                 "INSERT INTO Locales (LocalesId) VALUES (1)");
    const auto answer = get(getOrganization, 2);
    ASSERT_EQ(answer.code, 0u);
    ASSERT_NE(answer->contact, nullptr);
    EXPECT_EQ(answer->contact->id, 5u);
    EXPECT_EQ(answer->contact->name, nullptr);
    EXPECT_EQ(answer->contact->phone, nullptr);
    EXPECT_EQ(answer->contact->email, nullptr);
    EXPECT_EQ(answer->contact->postal, nullptr);
    ASSERT_NE(answer->locale, nullptr);
    EXPECT_EQ(answer->locale->id, 1u);
    EXPECT_EQ(answer->locale->iso, nullptr);
    EXPECT_EQ(answer->locale->description, nullptr);
}

TEST_F(Organizations, GetKeepsEmptyAndZeroApartFromAbsent)
{
    file.execute("INSERT INTO Organizations VALUES (0, '', '', '', '', '', 0, 0, '');"
                 "INSERT INTO Persons VALUES (0, '', '', '', ''); INSERT INTO Locales VALUES (0, '', '')");
    const auto answer = get(getOrganization, 0);
    ASSERT_EQ(answer.code, 0u);
    EXPECT_EQ(answer->id, 0u);
    EXPECT_EQ(utf8(answer->inn), "");
    EXPECT_EQ(utf8(answer->address), "");
    ASSERT_NE(answer->contact, nullptr);
    EXPECT_EQ(answer->contact->id, 0u);
    EXPECT_EQ(utf8(answer->contact->name), "");
    EXPECT_EQ(utf8(answer->contact->phone), "");
    EXPECT_EQ(utf8(answer->contact->email), "");
    EXPECT_EQ(utf8(answer->contact->postal), "");
    ASSERT_NE(answer->locale, nullptr);
    EXPECT_EQ(answer->locale->id, 0u);
    EXPECT_EQ(utf8(answer->locale->iso), "");
}

TEST_F(Organizations, GetLeavesOutAContactAndALocaleThatAreMissing)
{
    ASSERT_EQ(send(addOrganizations, batch(works)), 0u);
    foreign("DELETE FROM Persons");
    const auto answer = get(getOrganization, 2);
    ASSERT_EQ(answer.code, 0u);
    EXPECT_EQ(utf8(answer->inn), "7702");
    EXPECT_EQ(answer->contact, nullptr);
    EXPECT_EQ(answer->locale, nullptr);
    EXPECT_EQ(stored(2), worksRow());
}

TEST_F(Organizations, LocaleShowsOnceItIsThere)
{
    ASSERT_EQ(send(addOrganizations, batch(R"({"org_id":2,"locale_id":1})")), 0u);
    const auto without = get(getOrganization, 2);
    ASSERT_EQ(without.code, 0u);
    EXPECT_EQ(without->locale, nullptr);
    ASSERT_EQ(send(addLocales, R"({"D":{"items":[{"id":1,"iso":"fr"}]}})"), 0u);
    const auto with = get(getOrganization, 2);
    ASSERT_EQ(with.code, 0u);
    ASSERT_NE(with->locale, nullptr);
    EXPECT_EQ(utf8(with->locale->iso), "fr");
}

TEST_F(Organizations, GetReturns8ForAnUnknownId)
{
    ASSERT_EQ(send(addOrganizations, batch(works)), 0u);
    FlatOrganization *out = nullptr;
    EXPECT_EQ(getOrganization(&out, 5), 8u);
    EXPECT_EQ(out, nullptr);
}

TEST_F(Organizations, ListReturnsAllRowsWithWhatTheyName)
{
    file.execute("INSERT INTO Locales VALUES (1, 'de', 'German')");
    ASSERT_EQ(send(addOrganizations, batch(works, R"({"org_id":3},{"org_id":4,"contact":{"id":6,"name":"Joe"}})")), 0u);
    const auto all = list(getOrganizations);
    ASSERT_EQ(all.code, 0u);
    ASSERT_EQ(all.size(), 3u);
    ASSERT_NE(all.withId(2), nullptr);
    expectWorks(*all.withId(2));
    ASSERT_NE(all.withId(3), nullptr);
    EXPECT_EQ(all.withId(3)->inn, nullptr);
    EXPECT_EQ(all.withId(3)->contact, nullptr);
    EXPECT_EQ(all.withId(3)->locale, nullptr);
    ASSERT_NE(all.withId(4), nullptr);
    ASSERT_NE(all.withId(4)->contact, nullptr);
    EXPECT_EQ(utf8(all.withId(4)->contact->name), "Joe");
}

TEST_F(Organizations, ListReturns8ForAnEmptyTable)
{
    file.execute("INSERT INTO Persons (PersonsId) VALUES (5)");
    FlatOrganization *out = nullptr;
    uint32_t count = 77;
    EXPECT_EQ(getOrganizations(&out, &count), 8u);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(count, 77u);
}

TEST_F(Organizations, EveryKeyButTheContactCanBeSearchedFor)
{
    file.execute("INSERT INTO Locales VALUES (1, 'de', 'German')");
    ASSERT_EQ(send(addOrganizations,
                   batch(works, R"({"org_id":3,"inn":"i","off_name":"f","short_name":"s","kpp":"k","ogrn":"o",)"
                                R"("address_text":"a","locale_id":7,"contact":{"id":6}},{"org_id":4})")),
              0u);
    for (const auto &[key, text] : Pairs{{"org_id", "2"},
                                         {"inn", "7702"},
                                         {"off_name", "Northern Works"},
                                         {"short_name", "NW"},
                                         {"kpp", "0101"},
                                         {"ogrn", "0202"},
                                         {"locale_id", "1"},
                                         {"address_text", "Pier 3"}}) {
        SCOPED_TRACE(key);
        const auto found = listBy(getOrganizationsWithParams, key, text);
        EXPECT_EQ(found.code, 0u);
        ASSERT_EQ(found.size(), 1u);
        expectWorks(found[0]);
    }
}

TEST_F(Organizations, SearchByLocaleFindsOrganizationsOfAMissingOne)
{
    ASSERT_EQ(send(addOrganizations,
                   batch(R"({"org_id":2,"locale_id":1},{"org_id":3,"locale_id":4},{"org_id":4,"locale_id":1})")),
              0u);
    const auto found = listBy(getOrganizationsWithParams, "locale_id", "1");
    ASSERT_EQ(found.size(), 2u);
    ASSERT_NE(found.withId(2), nullptr);
    EXPECT_EQ(found.withId(2)->locale, nullptr);
    EXPECT_NE(found.withId(4), nullptr);
}

TEST_F(Organizations, SearchComparesTextsWhole)
{
    ASSERT_EQ(send(addOrganizations, batch(works)), 0u);
    EXPECT_EQ(listBy(getOrganizationsWithParams, "kpp", "0101").size(), 1u);
    EXPECT_EQ(listBy(getOrganizationsWithParams, "kpp", "101").code, 8u);
    EXPECT_EQ(listBy(getOrganizationsWithParams, "short_name", "nw").code, 8u);
    EXPECT_EQ(listBy(getOrganizationsWithParams, "short_name", "N%").code, 8u);
}

TEST_F(Organizations, SearchReturns8IfNothingFits)
{
    ASSERT_EQ(send(addOrganizations, batch(works)), 0u);
    FlatOrganization *out = nullptr;
    uint32_t count = 77;
    EXPECT_EQ(find(getOrganizationsWithParams, &out, &count, "inn", "7701"), 8u);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(count, 77u);
}

TEST_F(Organizations, SearchRefusesOtherKeysWithoutAskingTheStore)
{
    foreign("ALTER TABLE Organizations RENAME TO Elsewhere");
    const DebugLines lines;
    for (const char *key :
         {"contact", "id", "", "Inn", "name", "address", "OrganizationsContactId", "OrganizationsId"}) {
        SCOPED_TRACE(key);
        FlatOrganization *out = nullptr;
        uint32_t count = 77;
        EXPECT_EQ(find(getOrganizationsWithParams, &out, &count, key, "5"), 10u);
        EXPECT_EQ(out, nullptr);
        EXPECT_EQ(count, 77u);
    }
    EXPECT_EQ(lines.all(), std::vector<std::string>());
}

// ---- Updating ----

TEST_F(Organizations, UpdatePutsEachKeyIntoItsColumn)
{
    EXPECT_EQ(update(updateOrganization, one(works)).code, 0u);
    EXPECT_EQ(stored(2), worksRow());
    EXPECT_EQ(storedPerson(5), eveRow());
    EXPECT_EQ(rowCount(), 1);
}

TEST_F(Organizations, UpdateReturnsTheRowAsStoredWithWhatItNames)
{
    file.execute("INSERT INTO Locales VALUES (1, 'de', 'German')");
    ASSERT_EQ(send(addOrganizations, batch(works)), 0u);
    const auto answer = update(updateOrganization, one(R"({"org_id":2,"kpp":"0101"})"));
    ASSERT_EQ(answer.code, 0u);
    expectWorks(*answer.record);
}

TEST_F(Organizations, UpdateReadsThePersonBackFromTheFile)
{
    foreign("CREATE TRIGGER Rename AFTER INSERT ON Persons BEGIN "
            "UPDATE Persons SET PersonsPhone = 'from the file'; END");
    const auto answer = update(updateOrganization, one(R"({"org_id":2,"contact":{"id":5,"name":"Eve"}})"));
    ASSERT_EQ(answer.code, 0u);
    ASSERT_NE(answer->contact, nullptr);
    EXPECT_EQ(utf8(answer->contact->phone), "from the file");
}

TEST_F(Organizations, UpdateMergesTheOrganizationAndReplacesThePerson)
{
    ASSERT_EQ(send(addOrganizations, batch(works)), 0u);
    const auto answer = update(updateOrganization, one(R"({"org_id":2,"contact":{"id":5,"name":"new"}})"));
    ASSERT_EQ(answer.code, 0u);
    EXPECT_EQ(stored(2), worksRow());
    EXPECT_EQ(storedPerson(5), (Row{"5", "new", {}, {}, {}}));
    EXPECT_EQ(utf8(answer->inn), "7702");
    ASSERT_NE(answer->contact, nullptr);
    EXPECT_EQ(utf8(answer->contact->name), "new");
    EXPECT_EQ(answer->contact->phone, nullptr);
    EXPECT_EQ(answer->contact->email, nullptr);
    EXPECT_EQ(answer->contact->postal, nullptr);
}

TEST_F(Organizations, UpdateReplacesThePersonByAnyMixOfKeys)
{
    ASSERT_EQ(send(addOrganizations, batch(works)), 0u);
    const Pairs members = {
        {R"(,"name":"n")", "n"}, {R"(,"phone":"p")", "p"}, {R"(,"email":"e")", "e"}, {R"(,"postal":"b")", "b"}};
    for (uint32_t mix = 0; mix < 16; ++mix) {
        std::string contact = R"({"id":5)";
        Row expected = {"5"};
        for (size_t place = 0; place < members.size(); ++place) {
            const bool sent = (mix >> place & 1u) != 0;
            contact += sent ? members[place].first : "";
            expected.push_back(sent ? std::optional<std::string>(members[place].second) : std::nullopt);
        }
        SCOPED_TRACE(contact);
        EXPECT_EQ(update(updateOrganization, one(R"({"org_id":2,"contact":)" + contact + "}}")).code, 0u);
        EXPECT_EQ(storedPerson(5), expected);
    }
    EXPECT_EQ(stored(2), worksRow());
}

TEST_F(Organizations, UpdateWithoutAContactKeepsAndShowsIt)
{
    ASSERT_EQ(send(addOrganizations, batch(works)), 0u);
    for (const char *object : {R"({"org_id":2,"inn":"8"})", R"({"org_id":2,"inn":"8","contact":{}})",
                               R"({"org_id":2,"inn":"8","contact":7})", R"({"org_id":2,"inn":"8","contact":null})"}) {
        SCOPED_TRACE(object);
        const auto answer = update(updateOrganization, one(object));
        ASSERT_EQ(answer.code, 0u);
        EXPECT_EQ(utf8(answer->inn), "8");
        expectEve(answer->contact);
        EXPECT_EQ(stored(2), (Row{"2", "8", "Northern Works", "NW", "0101", "0202", "5", "1", "Pier 3"}));
        EXPECT_EQ(storedPerson(5), eveRow());
    }
}

TEST_F(Organizations, UpdateWithAnotherContactLeavesTheFormerPersonBehind)
{
    ASSERT_EQ(send(addOrganizations, batch(works)), 0u);
    const auto answer = update(updateOrganization, one(R"({"org_id":2,"contact":{"id":6,"name":"Joe"}})"));
    ASSERT_EQ(answer.code, 0u);
    ASSERT_NE(answer->contact, nullptr);
    EXPECT_EQ(answer->contact->id, 6u);
    EXPECT_EQ(utf8(answer->contact->name), "Joe");
    EXPECT_EQ(answer->contact->phone, nullptr);
    EXPECT_EQ(stored(2), (Row{"2", "7702", "Northern Works", "NW", "0101", "0202", "6", "1", "Pier 3"}));
    EXPECT_EQ(storedPerson(5), eveRow());
    EXPECT_EQ(storedPerson(6), (Row{"6", "Joe", {}, {}, {}}));
}

TEST_F(Organizations, UpdateOfASharedContactShowsInBothOrganizations)
{
    ASSERT_EQ(send(addOrganizations, batch(works, R"({"org_id":3,"contact":{"id":5,"name":"Eve"}})")), 0u);
    ASSERT_EQ(update(updateOrganization, one(R"({"org_id":3,"contact":{"id":5,"email":"new"}})")).code, 0u);
    const auto answer = get(getOrganization, 2);
    ASSERT_EQ(answer.code, 0u);
    ASSERT_NE(answer->contact, nullptr);
    EXPECT_EQ(answer->contact->name, nullptr);
    EXPECT_EQ(utf8(answer->contact->email), "new");
}

TEST_F(Organizations, UpdateStoresAReferenceToAMissingLocaleAndShowsNone)
{
    file.execute("INSERT INTO Locales VALUES (1, 'de', 'German')");
    ASSERT_EQ(send(addOrganizations, batch(works)), 0u);
    const auto answer = update(updateOrganization, one(R"({"org_id":2,"locale_id":9})"));
    ASSERT_EQ(answer.code, 0u);
    EXPECT_EQ(answer->locale, nullptr);
    EXPECT_EQ(stored(2), (Row{"2", "7702", "Northern Works", "NW", "0101", "0202", "5", "9", "Pier 3"}));
}

TEST_F(Organizations, UpdateTakesAnyMixOfKeys)
{
    file.execute("WITH RECURSIVE Ids(Id) AS (SELECT 1000 UNION ALL SELECT Id + 1 FROM Ids WHERE Id < 1255) "
                 "INSERT INTO Organizations SELECT Id, 'old', 'old', 'old', 'old', 'old', 90, 90, 'old' FROM Ids");
    struct Member
    {
        const char *json, *before, *after;
    };
    const std::vector<Member> members = {{R"(,"inn":"i")", "old", "i"},        {R"(,"off_name":"f")", "old", "f"},
                                         {R"(,"short_name":"s")", "old", "s"}, {R"(,"kpp":"k")", "old", "k"},
                                         {R"(,"ogrn":"o")", "old", "o"},       {R"(,"contact":{"id":5})", "90", "5"},
                                         {R"(,"locale_id":1)", "90", "1"},     {R"(,"address_text":"a")", "old", "a"}};
    for (uint32_t mix = 0; mix < 256; ++mix) {
        const std::string id = std::to_string(1000 + mix);
        std::string object = "{\"org_id\":" + id;
        Row expected = {id};
        for (size_t place = 0; place < members.size(); ++place) {
            const bool sent = (mix >> place & 1u) != 0;
            object += sent ? members[place].json : "";
            expected.emplace_back(sent ? members[place].after : members[place].before);
        }
        SCOPED_TRACE(object);
        EXPECT_EQ(update(updateOrganization, one(object + "}")).code, 0u);
        EXPECT_EQ(stored(1000 + mix), expected);
    }
}

TEST_F(Organizations, UpdateAssignsTheKeyAndTheColumnsSent)
{
    ASSERT_EQ(send(addOrganizations, batch(works)), 0u);
    watch();
    for (const auto &[member, column] : Pairs{{R"("inn":"x")", "OrganizationsInn"},
                                              {R"("off_name":"x")", "OrganizationsOfficialName"},
                                              {R"("short_name":"x")", "OrganizationsShortName"},
                                              {R"("kpp":"x")", "OrganizationsKpp"},
                                              {R"("ogrn":"x")", "OrganizationsOgrn"},
                                              {R"("address_text":"x")", "OrganizationsAddress"},
                                              {R"("contact":{"id":9})", "OrganizationsContactId"},
                                              {R"("locale_id":9)", "OrganizationsLocaleId"}}) {
        SCOPED_TRACE(member);
        foreign("DELETE FROM Assigned");
        EXPECT_EQ(update(updateOrganization, one(R"({"org_id":2,)" + member + "}")).code, 0u);
        EXPECT_EQ(assignedBesideTheKey(), column);
    }
    EXPECT_EQ(stored(2), (Row{"2", "x", "x", "x", "x", "x", "9", "9", "x"}));
}

TEST_F(Organizations, UpdateNamesNoColumnOfEitherTableThatIsNotSent)
{
    setDefaults();
    EXPECT_EQ(update(updateOrganization, one(R"({"org_id":2,"kpp":"k","contact":{"id":5,"email":"e"}})")).code, 0u);
    EXPECT_EQ(stored(2), (Row{"2", "d", "d", "d", "k", "d", "5", "9", "d"}));
    EXPECT_EQ(storedPerson(5), (Row{"5", "d", "d", "e", "d"}));
    EXPECT_EQ(update(updateOrganization, one(R"({"org_id":2,"contact":{"id":5,"name":"n"}})")).code, 0u);
    EXPECT_EQ(storedPerson(5), (Row{"5", "n", "d", "d", "d"}));
}

TEST_F(Organizations, UpdateOfTheIdAloneChangesNothing)
{
    ASSERT_EQ(send(addOrganizations, batch(works)), 0u);
    const auto answer = update(updateOrganization, one(R"({"org_id":2})"));
    ASSERT_EQ(answer.code, 0u);
    EXPECT_EQ(utf8(answer->officialName), "Northern Works");
    expectEve(answer->contact);
    EXPECT_EQ(stored(2), worksRow());
    EXPECT_EQ(storedPerson(5), eveRow());
}

TEST_F(Organizations, UpdateOfANewIdAloneMakesARowOfNothingElse)
{
    const auto answer = update(updateOrganization, one(R"({"org_id":2})"));
    ASSERT_EQ(answer.code, 0u);
    EXPECT_EQ(answer->id, 2u);
    EXPECT_EQ(answer->inn, nullptr);
    EXPECT_EQ(answer->contact, nullptr);
    EXPECT_EQ(stored(2), (Row{"2", {}, {}, {}, {}, {}, {}, {}, {}}));
    EXPECT_EQ(personCount(), 0);
}

TEST_F(Organizations, UpdateOverwritesWithEmptyTextsAndZeros)
{
    ASSERT_EQ(send(addOrganizations, batch(works)), 0u);
    const auto answer =
        update(updateOrganization, one(R"({"org_id":2,"inn":"","locale_id":0,"contact":{"id":5,"name":""}})"));
    ASSERT_EQ(answer.code, 0u);
    EXPECT_EQ(utf8(answer->inn), "");
    EXPECT_EQ(stored(2), (Row{"2", "", "Northern Works", "NW", "0101", "0202", "5", "0", "Pier 3"}));
    EXPECT_EQ(storedPerson(5), (Row{"5", "", {}, {}, {}}));
}

TEST_F(Organizations, UpdateTouchesNoOtherRow)
{
    ASSERT_EQ(send(addOrganizations, batch(works, R"({"org_id":3,"contact":{"id":6}})")), 0u);
    EXPECT_EQ(update(updateOrganization, one(R"({"org_id":3,"inn":"x","contact":{"id":6,"name":"y"}})")).code, 0u);
    EXPECT_EQ(stored(2), worksRow());
    EXPECT_EQ(storedPerson(5), eveRow());
    EXPECT_EQ(stored(3), (Row{"3", "x", {}, {}, {}, {}, "6", {}, {}}));
}

TEST_F(Organizations, UpdateRefusesDocumentsThatAreNoRecord)
{
    for (const auto &[json, code] : Codes{{"", 10u},
                                          {"not json", 10u},
                                          {R"(["org_id",2])", 10u},
                                          {R"({"org_id":2})", 5u},
                                          {R"({"D":2})", 5u},
                                          {R"({"D":{}})", 5u},
                                          {batch(works), 5u}}) {
        SCOPED_TRACE(json);
        FlatOrganization *out = nullptr;
        EXPECT_EQ(send(updateOrganization, &out, json), code);
        EXPECT_EQ(out, nullptr);
    }
    EXPECT_EQ(rowCount(), 0);
}

TEST_F(Organizations, UpdateReturns8WhenTheRowIsDeletedMeanwhileAndStillCommits)
{
    foreign("CREATE TRIGGER DropNew AFTER INSERT ON Organizations BEGIN "
            "DELETE FROM Organizations WHERE OrganizationsId = NEW.OrganizationsId; END");
    const DebugLines lines;
    FlatOrganization *out = nullptr;
    EXPECT_EQ(send(updateOrganization, &out, one(works)), 8u);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(lines.all(), std::vector<std::string>());
    EXPECT_EQ(rowCount(), 0);
    EXPECT_EQ(storedPerson(5), eveRow());
}

// ---- Removing ----

TEST_F(Organizations, DeleteRemovesTheRowAndThePersonThatItNames)
{
    ASSERT_EQ(send(addOrganizations, batch(works, R"({"org_id":3,"contact":{"id":6}})")), 0u);
    EXPECT_EQ(send(deleteOrganization, one(R"({"org_id":2})")), 0u);
    EXPECT_EQ(stored(2), Row());
    EXPECT_EQ(storedPerson(5), Row());
    EXPECT_EQ(stored(3), (Row{"3", {}, {}, {}, {}, {}, "6", {}, {}}));
    EXPECT_EQ(storedPerson(6), (Row{"6", {}, {}, {}, {}}));
}

TEST_F(Organizations, AddAfterADeleteBringsThePersonNotBack)
{
    ASSERT_EQ(send(addOrganizations, batch(works)), 0u);
    ASSERT_EQ(send(deleteOrganization, one(R"({"org_id":2})")), 0u);
    ASSERT_EQ(send(addOrganizations, batch(R"({"org_id":2})")), 0u);
    EXPECT_EQ(stored(2), (Row{"2", {}, {}, {}, {}, {}, {}, {}, {}}));
    EXPECT_EQ(personCount(), 0);
    const auto answer = get(getOrganization, 2);
    ASSERT_EQ(answer.code, 0u);
    EXPECT_EQ(answer->contact, nullptr);
}

TEST_F(Organizations, DeleteTakesOnlyThePersonOfTheMoment)
{
    ASSERT_EQ(send(addOrganizations, batch(works)), 0u);
    ASSERT_EQ(update(updateOrganization, one(R"({"org_id":2,"contact":{"id":6}})")).code, 0u);
    EXPECT_EQ(send(deleteOrganization, one(R"({"org_id":2})")), 0u);
    EXPECT_EQ(storedPerson(6), Row());
    EXPECT_EQ(storedPerson(5), eveRow());
}

TEST_F(Organizations, DeleteWithoutAContactRemovesNoPerson)
{
    ASSERT_EQ(send(addOrganizations, batch(works)), 0u);
    ASSERT_EQ(send(addOrganizations, batch(R"({"org_id":3})")), 0u);
    EXPECT_EQ(send(deleteOrganization, one(R"({"org_id":3})")), 0u);
    EXPECT_EQ(stored(3), Row());
    EXPECT_EQ(storedPerson(5), eveRow());
}

TEST_F(Organizations, DeleteTakesASharedPersonFromTheOther)
{
    ASSERT_EQ(send(addOrganizations, batch(works, R"({"org_id":3,"contact":{"id":5}})")), 0u);
    EXPECT_EQ(send(deleteOrganization, one(R"({"org_id":2})")), 0u);
    EXPECT_EQ(personCount(), 0);
    EXPECT_EQ(stored(3), (Row{"3", {}, {}, {}, {}, {}, "5", {}, {}}));
    const auto other = get(getOrganization, 3);
    ASSERT_EQ(other.code, 0u);
    EXPECT_EQ(other->contact, nullptr);
}

TEST_F(Organizations, DeleteLeavesAllThatNamesTheOrganization)
{
    ASSERT_EQ(send(addOrganizations, batch(works)), 0u);
    foreign("INSERT INTO Locales (LocalesId) VALUES (1); INSERT INTO Domains (DomainsId, DomainsOrgId) VALUES (3, 2);"
            "INSERT INTO Users (UsersId, UsersOrgId) VALUES (7, 2);"
            "INSERT INTO Contractors (ContractorsId, ContractorsOrgId) VALUES (4, 2)");
    EXPECT_EQ(send(deleteOrganization, one(R"({"org_id":2})")), 0u);
    EXPECT_EQ(file.rows("SELECT LocalesId, DomainsId, DomainsOrgId, UsersId, UsersOrgId, ContractorsId, "
                        "ContractorsOrgId FROM Locales JOIN Domains JOIN Users JOIN Contractors"),
              (std::vector<Row>{Row{"1", "3", "2", "7", "2", "4", "2"}}));
    const auto domain = get(getDomain, 3);
    ASSERT_EQ(domain.code, 0u);
    EXPECT_EQ(value(domain->orgId), 2u);
}

TEST_F(Organizations, DeleteReturns8ForAnUnknownIdAndLogsNothing)
{
    ASSERT_EQ(send(addOrganizations, batch(works)), 0u);
    const DebugLines lines;
    EXPECT_EQ(send(deleteOrganization, one(R"({"org_id":5})")), 8u);
    EXPECT_EQ(lines.all(), std::vector<std::string>());
    EXPECT_EQ(rowCount(), 1);
    EXPECT_EQ(personCount(), 1);
}

TEST_F(Organizations, DeleteTakesAnIdThatIsNoNumberForZero)
{
    ASSERT_EQ(send(addOrganizations, batch(works)), 0u);
    EXPECT_EQ(send(deleteOrganization, one(R"({"org_id":"2"})")), 8u);
    ASSERT_EQ(send(addOrganizations, batch(R"({"org_id":0})")), 0u);
    EXPECT_EQ(send(deleteOrganization, one(R"({"org_id":"2"})")), 0u);
    EXPECT_EQ(stored(0), Row());
    EXPECT_EQ(stored(2), worksRow());
}

TEST_F(Organizations, DeleteRefusesDocumentsWithoutTheId)
{
    ASSERT_EQ(send(addOrganizations, batch(R"({"org_id":2},{"org_id":0})")), 0u);
    for (const auto &[json, code] : Codes{{"", 10u},
                                          {"not json", 10u},
                                          {"[2]", 10u},
                                          {R"({"org_id":2})", 5u},
                                          {R"({"D":2})", 5u},
                                          {R"({"D":{}})", 5u},
                                          {R"({"D":{"id":2}})", 5u}}) {
        SCOPED_TRACE(json);
        EXPECT_EQ(send(deleteOrganization, json), code);
    }
    EXPECT_EQ(rowCount(), 2);
}

// ---- Failing writes ----

TEST_F(Organizations, FailedAddLogsAndRollsTheBatchBack)
{
    ASSERT_EQ(send(addOrganizations, batch(works)), 0u);
    foreign("CREATE TRIGGER Refuse4 BEFORE INSERT ON Organizations WHEN NEW.OrganizationsId = 4 "
            "BEGIN SELECT RAISE(ABORT, 'refused'); END");
    const DebugLines lines;
    EXPECT_EQ(send(addOrganizations, batch(R"({"org_id":2,"inn":"new","contact":{"id":5}},{"org_id":3},{"org_id":4})")),
              9u);
    EXPECT_TRUE(isBatchFailure(lines.all(), "add organizations error"));
    EXPECT_EQ(rowCount(), 1);
    EXPECT_EQ(stored(2), worksRow());
    EXPECT_EQ(storedPerson(5), eveRow());
}

TEST_F(Organizations, FailedPersonsTakeTheOrganizationsOfTheBatchWithThem)
{
    ASSERT_EQ(send(addOrganizations, batch(works)), 0u);
    foreign("CREATE TRIGGER Refuse6 BEFORE INSERT ON Persons WHEN NEW.PersonsId = 6 "
            "BEGIN SELECT RAISE(ABORT, 'refused'); END");
    const DebugLines lines;
    EXPECT_EQ(
        send(addOrganizations, batch(R"({"org_id":2,"inn":"new","contact":{"id":5}},{"org_id":3,"contact":{"id":6}})")),
        9u);
    EXPECT_TRUE(isBatchFailure(lines.all(), "add persons error"));
    EXPECT_EQ(rowCount(), 1);
    EXPECT_EQ(stored(2), worksRow());
    EXPECT_EQ(storedPerson(5), eveRow());
}

TEST_F(Organizations, FailedAddFailsTheSameWithoutTheTables)
{
    foreign("DROP TABLE Persons");
    {
        const DebugLines lines;
        EXPECT_EQ(send(addOrganizations, batch(works)), 9u);
        EXPECT_TRUE(isBatchFailure(lines.all(), "add persons error"));
        EXPECT_EQ(rowCount(), 0);
    }
    foreign("DROP TABLE Organizations");
    const DebugLines lines;
    EXPECT_EQ(send(addOrganizations, batch(works)), 9u);
    EXPECT_TRUE(isBatchFailure(lines.all(), "add organizations error"));
}

TEST_F(Organizations, AddWritesOrganizationsBeforePersons)
{
    refuse("INSERT", "Organizations");
    refuse("INSERT", "Persons");
    const DebugLines lines;
    EXPECT_EQ(send(addOrganizations, batch(works)), 9u);
    EXPECT_TRUE(isBatchFailure(lines.all(), "add organizations error"));
}

TEST_F(Organizations, AddWithoutAnyContactWritesNoPerson)
{
    refuse("INSERT", "Persons");
    const DebugLines lines;
    EXPECT_EQ(send(addOrganizations, batch(R"({"org_id":2},{"org_id":3,"contact":{}})")), 0u);
    EXPECT_EQ(lines.all(), std::vector<std::string>());
    EXPECT_EQ(rowCount(), 2);
}

TEST_F(Organizations, AddWorksAgainAfterAFailedOne)
{
    refuse("INSERT", "Persons");
    EXPECT_EQ(send(addOrganizations, batch(works)), 9u);
    foreign("DROP TRIGGER RefuseINSERTPersons");
    EXPECT_EQ(send(addOrganizations, batch(works)), 0u);
    EXPECT_EQ(stored(2), worksRow());
}

TEST_F(Organizations, FailedUpdateLogsAndLeavesTheRow)
{
    ASSERT_EQ(send(addOrganizations, batch(works)), 0u);
    refuse("UPDATE", "Organizations");
    const DebugLines lines;
    FlatOrganization *out = nullptr;
    EXPECT_EQ(send(updateOrganization, &out, one(R"({"org_id":2,"inn":"new","contact":{"id":5}})")), 9u);
    EXPECT_TRUE(isFailure(lines.all(), "add or update organization error"));
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(stored(2), worksRow());
    EXPECT_EQ(storedPerson(5), eveRow());
}

TEST_F(Organizations, FailedUpdateOfANewIdLeavesNoRow)
{
    refuse("INSERT", "Organizations");
    const DebugLines lines;
    EXPECT_EQ(update(updateOrganization, one(works)).code, 9u);
    EXPECT_TRUE(isFailure(lines.all(), "add or update organization error"));
    EXPECT_EQ(rowCount(), 0);
    EXPECT_EQ(personCount(), 0);
}

TEST_F(Organizations, FailedPersonTakesTheUpdateWithIt)
{
    ASSERT_EQ(send(addOrganizations, batch(works)), 0u);
    refuse("INSERT", "Persons");
    const DebugLines lines;
    FlatOrganization *out = nullptr;
    EXPECT_EQ(send(updateOrganization, &out, one(R"({"org_id":2,"inn":"new","contact":{"id":6}})")), 9u);
    EXPECT_TRUE(isFailure(lines.all(), "add or update person error"));
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(stored(2), worksRow());
    EXPECT_EQ(storedPerson(5), eveRow());
    EXPECT_EQ(update(updateOrganization, one(R"({"org_id":3,"contact":{"id":6}})")).code, 9u);
    EXPECT_EQ(rowCount(), 1);
}

TEST_F(Organizations, UpdateWithoutAContactWritesNoPerson)
{
    ASSERT_EQ(send(addOrganizations, batch(works)), 0u);
    refuse("INSERT", "Persons");
    const DebugLines lines;
    EXPECT_EQ(update(updateOrganization, one(R"({"org_id":2,"inn":"new"})")).code, 0u);
    EXPECT_EQ(update(updateOrganization, one(R"({"org_id":2,"contact":{}})")).code, 0u);
    EXPECT_EQ(lines.all(), std::vector<std::string>());
    EXPECT_EQ(storedPerson(5), eveRow());
}

TEST_F(Organizations, FailedReadBackUndoesTheUpdateAndThePerson)
{
    ASSERT_EQ(send(addOrganizations, batch(works)), 0u);
    foreign("ALTER TABLE Locales RENAME TO Elsewhere");
    const DebugLines lines;
    FlatOrganization *out = nullptr;
    EXPECT_EQ(send(updateOrganization, &out, one(R"({"org_id":2,"inn":"new","contact":{"id":5}})")), 9u);
    EXPECT_TRUE(isFailure(lines.all(), "get organization error"));
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(stored(2), worksRow());
    EXPECT_EQ(storedPerson(5), eveRow());
}

TEST_F(Organizations, UpdateWorksAgainAfterAFailedOne)
{
    refuse("INSERT", "Persons");
    EXPECT_EQ(update(updateOrganization, one(works)).code, 9u);
    foreign("DROP TRIGGER RefuseINSERTPersons");
    EXPECT_EQ(update(updateOrganization, one(works)).code, 0u);
    EXPECT_EQ(stored(2), worksRow());
    EXPECT_EQ(storedPerson(5), eveRow());
}

TEST_F(Organizations, FailedDeleteOfThePersonLeavesBoth)
{
    ASSERT_EQ(send(addOrganizations, batch(works)), 0u);
    refuse("DELETE", "Persons");
    const DebugLines lines;
    EXPECT_EQ(send(deleteOrganization, one(R"({"org_id":2})")), 9u);
    EXPECT_TRUE(isFailure(lines.all(), "delete person error"));
    EXPECT_EQ(stored(2), worksRow());
    EXPECT_EQ(storedPerson(5), eveRow());
}

TEST_F(Organizations, FailedDeleteOfTheRowKeepsThePerson)
{
    ASSERT_EQ(send(addOrganizations, batch(works)), 0u);
    refuse("DELETE", "Organizations");
    const DebugLines lines;
    EXPECT_EQ(send(deleteOrganization, one(R"({"org_id":2})")), 9u);
    EXPECT_TRUE(isFailure(lines.all(), "delete organization error"));
    EXPECT_EQ(stored(2), worksRow());
    EXPECT_EQ(storedPerson(5), eveRow());
    foreign("DROP TRIGGER RefuseDELETEOrganizations");
    EXPECT_EQ(send(deleteOrganization, one(R"({"org_id":2})")), 0u);
    EXPECT_EQ(rowCount() + personCount(), 0);
}

TEST_F(Organizations, DeleteTakesThePersonFirst)
{
    ASSERT_EQ(send(addOrganizations, batch(works)), 0u);
    refuse("DELETE", "Organizations");
    refuse("DELETE", "Persons");
    const DebugLines lines;
    EXPECT_EQ(send(deleteOrganization, one(R"({"org_id":2})")), 9u);
    EXPECT_TRUE(isFailure(lines.all(), "delete person error"));
}

// ---- Failing reads ----

TEST_F(Organizations, ReadsNeedAllThreeTables)
{
    ASSERT_EQ(send(addOrganizations, batch(R"({"org_id":2})")), 0u);
    for (const std::string table : {"Organizations", "Persons", "Locales"}) {
        SCOPED_TRACE(table);
        foreign("ALTER TABLE " + table + " RENAME TO Elsewhere");
        EXPECT_EQ(get(getOrganization, 2).code, 7u);
        EXPECT_EQ(list(getOrganizations).code, 7u);
        EXPECT_EQ(listBy(getOrganizationsWithParams, "org_id", "2").code, 7u);
        foreign("ALTER TABLE Elsewhere RENAME TO " + table);
        EXPECT_EQ(get(getOrganization, 2).code, 0u);
    }
}

TEST_F(Organizations, FailedGetLogsTheRead)
{
    foreign("ALTER TABLE Organizations RENAME TO Elsewhere");
    const DebugLines lines;
    FlatOrganization *out = nullptr;
    EXPECT_EQ(getOrganization(&out, 2), 7u);
    EXPECT_TRUE(isFailure(lines.all(), "get organization error"));
    EXPECT_EQ(out, nullptr);
}

TEST_F(Organizations, FailedListLogsTheList)
{
    foreign("ALTER TABLE Organizations RENAME TO Elsewhere");
    const DebugLines lines;
    FlatOrganization *out = nullptr;
    uint32_t count = 77;
    EXPECT_EQ(getOrganizations(&out, &count), 7u);
    EXPECT_TRUE(isFailure(lines.all(), "get organizations error"));
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(count, 77u);
}

TEST_F(Organizations, FailedSearchLogsTheSearch)
{
    foreign("ALTER TABLE Organizations RENAME TO Elsewhere");
    const DebugLines lines;
    FlatOrganization *out = nullptr;
    uint32_t count = 77;
    EXPECT_EQ(find(getOrganizationsWithParams, &out, &count, "inn", "7702"), 7u);
    EXPECT_TRUE(isFailure(lines.all(), "get organizations by field error"));
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(count, 77u);
}

TEST_F(Organizations, DeleteReturns7WhenItsReadFails)
{
    ASSERT_EQ(send(addOrganizations, batch(works)), 0u);
    foreign("ALTER TABLE Locales RENAME TO Elsewhere");
    const DebugLines lines;
    EXPECT_EQ(send(deleteOrganization, one(R"({"org_id":2})")), 7u);
    EXPECT_TRUE(isFailure(lines.all(), "get organization error"));
    EXPECT_EQ(stored(2), worksRow());
    EXPECT_EQ(storedPerson(5), eveRow());
}

TEST_F(Organizations, RefusedAndMissedCallsLogNothing)
{
    const DebugLines lines;
    EXPECT_EQ(send(addOrganizations, batch("7")), 5u);
    EXPECT_EQ(send(addOrganizations, "not json"), 10u);
    EXPECT_EQ(update(updateOrganization, one("{}")).code, 5u);
    EXPECT_EQ(send(deleteOrganization, one("{}")), 5u);
    EXPECT_EQ(get(getOrganization, 2).code, 8u);
    EXPECT_EQ(list(getOrganizations).code, 8u);
    EXPECT_EQ(listBy(getOrganizationsWithParams, "org_id", "2").code, 8u);
    EXPECT_EQ(lines.all(), std::vector<std::string>());
}

TEST_F(Organizations, WorkingCallsLogNothing)
{
    const DebugLines lines;
    EXPECT_EQ(send(addOrganizations, batch(works)), 0u);
    EXPECT_EQ(update(updateOrganization, one(R"({"org_id":2,"inn":"9","contact":{"id":6}})")).code, 0u);
    EXPECT_EQ(get(getOrganization, 2).code, 0u);
    EXPECT_EQ(list(getOrganizations).code, 0u);
    EXPECT_EQ(listBy(getOrganizationsWithParams, "inn", "9").code, 0u);
    EXPECT_EQ(send(deleteOrganization, one(R"({"org_id":2})")), 0u);
    EXPECT_EQ(lines.all(), std::vector<std::string>());
}

// ---- Targets and frees ----

TEST_F(Organizations, FunctionsWithATargetRefuseOneThatIsTaken)
{
    foreign("ALTER TABLE Organizations RENAME TO Elsewhere");
    const DebugLines lines;
    FlatOrganization mine = {};
    FlatOrganization *out = &mine;
    uint32_t count = 77;
    EXPECT_EQ(getOrganization(&out, 2), 10u);
    EXPECT_EQ(getOrganizations(&out, &count), 10u);
    EXPECT_EQ(find(getOrganizationsWithParams, &out, &count, "inn", "7702"), 10u);
    EXPECT_EQ(send(updateOrganization, &out, one(works)), 10u);
    EXPECT_EQ(send(updateOrganization, &out, one("{}")), 10u);
    EXPECT_EQ(out, &mine);
    EXPECT_EQ(count, 77u);
    EXPECT_EQ(lines.all(), std::vector<std::string>());
}

TEST_F(Organizations, UpdateWithATakenTargetWritesNothing)
{
    FlatOrganization mine = {};
    FlatOrganization *out = &mine;
    EXPECT_EQ(send(updateOrganization, &out, one(works)), 10u);
    EXPECT_EQ(out, &mine);
    EXPECT_EQ(rowCount() + personCount(), 0);
}

TEST_F(Organizations, FreeRefusesANullPointer)
{
    EXPECT_EQ(freeOrganization(nullptr), 10u);
    EXPECT_EQ(freeOrganizationsArray(nullptr, 0), 10u);
    EXPECT_EQ(freeOrganizationsArray(nullptr, 1), 10u);
}

TEST_F(Organizations, FreeOfAnArrayWithoutACountLeavesIt)
{
    ASSERT_EQ(send(addOrganizations, batch(works)), 0u);
    const auto all = list(getOrganizations);
    ASSERT_EQ(all.size(), 1u);
    EXPECT_EQ(freeOrganizationsArray(&all[0], 0), 10u);
    EXPECT_EQ(utf8(all[0].inn), "7702");
    expectEve(all[0].contact);
}

TEST_F(Organizations, FreeTakesTheContactAndTheLocaleToo)
{
    file.execute("INSERT INTO Locales VALUES (1, 'de', 'German')");
    ASSERT_EQ(send(addOrganizations, batch(works, R"({"org_id":3})")), 0u);
    FlatOrganization *single = nullptr;
    FlatOrganization *array = nullptr;
    uint32_t count = 0;
    ASSERT_EQ(getOrganization(&single, 2), 0u);
    ASSERT_EQ(getOrganizations(&array, &count), 0u);
    ASSERT_EQ(count, 2u);
    EXPECT_EQ(library->exit(), 0);
    expectWorks(*single);
    EXPECT_EQ(freeOrganization(single), 0u);
    EXPECT_EQ(freeOrganizationsArray(array, count), 0u);
}

} // namespace
