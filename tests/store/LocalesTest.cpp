// Locales: added whole and in batches, read by id, by field and all together, and never removed one by one.
#include "Store.h"

#include <algorithm>

namespace {

using namespace brimlet::test;

class Locales : public StoreTest
{
protected:
    std::vector<Row> rows() const
    {
        return file.rows("SELECT LocalesId, LocalesIso, LocalesDescription FROM Locales ORDER BY LocalesId");
    }
};

std::vector<uint32_t> ids(const List<FlatLocale> &locales)
{
    std::vector<uint32_t> ids;
    for (const FlatLocale &locale : locales)
        ids.push_back(locale.id);
    std::sort(ids.begin(), ids.end());
    return ids;
}

// ---- The table ----

TEST_F(Locales, TableIsCreatedAsItIs)
{
    EXPECT_EQ(file.value("SELECT sql FROM sqlite_master WHERE type = 'table' AND name = 'Locales'"),
              "CREATE TABLE Locales (LocalesId UNSIGNED BIG INT PRIMARY KEY,LocalesIso VARCHAR(255),"
              "LocalesDescription VARCHAR(255))");
}

TEST_F(Locales, TableHasNoIndexButItsKey)
{
    EXPECT_EQ(send(addLocales, R"({"D":{"items":[{"id":1}]}})"), 0u);
    EXPECT_EQ(file.rows("SELECT name FROM sqlite_master WHERE type <> 'table' AND tbl_name = 'Locales'"),
              (std::vector<Row>{{"sqlite_autoindex_Locales_1"}}));
}

TEST_F(Locales, TableIsEmptyAtFirst)
{
    EXPECT_EQ(rows(), std::vector<Row>());
}

// ---- Adding ----

TEST_F(Locales, AddStoresEveryMember)
{
    EXPECT_EQ(send(addLocales, R"({"D":{"items":[{"id":7,"iso":"de_DE","description":"German"}]}})"), 0u);
    EXPECT_EQ(rows(), (std::vector<Row>{{"7", "de_DE", "German"}}));
    EXPECT_EQ(file.rows("SELECT typeof(LocalesId), typeof(LocalesIso), typeof(LocalesDescription) FROM Locales"),
              (std::vector<Row>{{"integer", "text", "text"}}));
}

TEST_F(Locales, AddStoresNullForWhatIsLeftOut)
{
    EXPECT_EQ(send(addLocales, R"({"D":{"items":[{"id":1},{"id":2,"iso":"b"},{"id":3,"description":"c"}]}})"), 0u);
    EXPECT_EQ(rows(), (std::vector<Row>{
                          {"1", std::nullopt, std::nullopt}, {"2", "b", std::nullopt}, {"3", std::nullopt, "c"}}));
}

TEST_F(Locales, AddStoresAnEmptyText)
{
    EXPECT_EQ(send(addLocales, R"({"D":{"items":[{"id":1,"iso":"","description":""}]}})"), 0u);
    EXPECT_EQ(rows(), (std::vector<Row>{{"1", "", ""}}));
}

TEST_F(Locales, AddKeepsMixedElementsApart)
{
    EXPECT_EQ(send(addLocales, R"({"D":{"items":[{"id":1,"iso":"a","description":"x"},{"id":2},
                                                  {"id":3,"iso":"","description":"z"},{"id":4,"iso":"d"}]}})"),
              0u);
    EXPECT_EQ(rows(),
              (std::vector<Row>{
                  {"1", "a", "x"}, {"2", std::nullopt, std::nullopt}, {"3", "", "z"}, {"4", "d", std::nullopt}}));
}

TEST_F(Locales, AddReplacesTheWholeRow)
{
    EXPECT_EQ(send(addLocales, R"({"D":{"items":[{"id":1,"iso":"a","description":"x"}]}})"), 0u);
    EXPECT_EQ(send(addLocales, R"({"D":{"items":[{"id":1,"iso":"b"}]}})"), 0u);
    EXPECT_EQ(rows(), (std::vector<Row>{{"1", "b", std::nullopt}}));
    const auto locale = get(getLocale, 1);
    ASSERT_EQ(locale.code, 0u);
    EXPECT_EQ(utf8(locale->iso), "b");
    EXPECT_EQ(locale->description, nullptr);
}

TEST_F(Locales, AddLeavesOtherRowsAlone)
{
    EXPECT_EQ(send(addLocales, R"({"D":{"items":[{"id":1,"iso":"a"},{"id":2,"iso":"b"}]}})"), 0u);
    EXPECT_EQ(send(addLocales, R"({"D":{"items":[{"id":2,"iso":"c"}]}})"), 0u);
    EXPECT_EQ(rows(), (std::vector<Row>{{"1", "a", std::nullopt}, {"2", "c", std::nullopt}}));
}

TEST_F(Locales, AddTakesTheLaterOfTwoElementsWithOneId)
{
    EXPECT_EQ(send(addLocales, R"({"D":{"items":[{"id":1,"iso":"a","description":"x"},{"id":2},{"id":1,"iso":"b"}]}})"),
              0u);
    EXPECT_EQ(rows(), (std::vector<Row>{{"1", "b", std::nullopt}, {"2", std::nullopt, std::nullopt}}));
}

TEST_F(Locales, AddStoresTheWholeRangeOfIds)
{
    EXPECT_EQ(send(addLocales, R"({"D":{"items":[{"id":0},{"id":4294967295},{"id":2147483648}]}})"), 0u);
    EXPECT_EQ(file.rows("SELECT LocalesId, typeof(LocalesId) FROM Locales ORDER BY LocalesId"),
              (std::vector<Row>{{"0", "integer"}, {"2147483648", "integer"}, {"4294967295", "integer"}}));
    EXPECT_EQ(get(getLocale, 0)->id, 0u);
    EXPECT_EQ(get(getLocale, 4294967295u)->id, 4294967295u);
    EXPECT_EQ(ids(list(getLocales)), (std::vector<uint32_t>{0, 2147483648u, 4294967295u}));
}

TEST_F(Locales, AddNeitherChecksNorCutsTheLengthOfAText)
{
    const std::string text(1000, 'x');
    EXPECT_EQ(send(addLocales, R"({"D":{"items":[{"id":1,"iso":")" + text + R"(","description":")" + text + R"("}]}})"),
              0u);
    EXPECT_EQ(rows(), (std::vector<Row>{{"1", text, text}}));
    EXPECT_EQ(utf8(get(getLocale, 1)->description), text);
}

TEST_F(Locales, AddTakesALargeBatch)
{
    std::string items;
    for (int id = 1; id <= 2000; ++id)
        items += (id > 1 ? ",{\"id\":" : "{\"id\":") + std::to_string(id) + ",\"iso\":\"l" + std::to_string(id) + "\"}";
    EXPECT_EQ(send(addLocales, R"({"D":{"items":[)" + items + "]}}"), 0u);
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Locales WHERE LocalesIso = 'l' || LocalesId"), 2000);
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Locales"), 2000);
    EXPECT_EQ(list(getLocales).size(), 2000u);
}

TEST_F(Locales, AddWritesNoRowForAnEmptyBatchOrARecordWithoutId)
{
    EXPECT_EQ(send(addLocales, R"({"D":{"items":[]}})"), 10u);
    EXPECT_EQ(send(addLocales, R"({"D":{"items":[{"iso":"a"}]}})"), 5u);
    EXPECT_EQ(send(addLocales, R"({"D":{"items":[{"id":1},{"iso":"a"}]}})"), 5u);
    EXPECT_EQ(rows(), std::vector<Row>());
}

TEST_F(Locales, AddHasNoSecondKeyForTheId)
{
    for (const char *key : {"", "locale_id", "Id", "LocalesId"}) {
        SCOPED_TRACE(key);
        EXPECT_EQ(send(addLocales, std::string(R"({"D":{"items":[{")") + key + R"(":1}]}})"), 5u);
    }
    EXPECT_EQ(rows(), std::vector<Row>());
}

TEST_F(Locales, AddRefusesWrongTypes)
{
    for (const char *members :
         {R"("id":"1")", R"("id":null)", R"("id":true)", R"("id":{})", R"("id":1,"iso":1)", R"("id":1,"iso":null)",
          R"("id":1,"iso":true)", R"("id":1,"iso":["a"])", R"("id":1,"description":1)", R"("id":1,"description":null)",
          R"("id":1,"description":{"text":"a"})", R"("id":1,"iso":"a","description":false)"}) {
        SCOPED_TRACE(members);
        EXPECT_EQ(send(addLocales, std::string(R"({"D":{"items":[{)") + members + "}]}}"), 5u);
    }
    EXPECT_EQ(rows(), std::vector<Row>());
}

TEST_F(Locales, AddLogsNothing)
{
    const DebugLines lines;
    EXPECT_EQ(send(addLocales, R"({"D":{"items":[{"id":1}]}})"), 0u);
    EXPECT_EQ(send(addLocales, "not json"), 10u);
    EXPECT_EQ(send(addLocales, "{}"), 5u);
    EXPECT_EQ(lines.all(), std::vector<std::string>());
}

TEST_F(Locales, AddUndoesTheWholeBatchWhenOneRowFails)
{
    EXPECT_EQ(send(addLocales, R"({"D":{"items":[{"id":1,"iso":"a","description":"x"}]}})"), 0u);
    foreign("CREATE TRIGGER Refuse BEFORE INSERT ON Locales WHEN NEW.LocalesId = 3"
            " BEGIN SELECT RAISE(ABORT, 'refused'); END");
    const DebugLines lines;
    EXPECT_EQ(send(addLocales, R"({"D":{"items":[{"id":1,"iso":"b"},{"id":2},{"id":3},{"id":4}]}})"), 9u);
    EXPECT_TRUE(isBatchFailure(lines.all(), "add locales error"));
    EXPECT_NE(lines.all().at(1).find("refused"), std::string::npos);
    EXPECT_EQ(rows(), (std::vector<Row>{{"1", "a", "x"}}));
}

TEST_F(Locales, AddReturns9WithoutTheTable)
{
    foreign("DROP TABLE Locales");
    const DebugLines lines;
    EXPECT_EQ(send(addLocales, R"({"D":{"items":[{"id":1},{"id":2}]}})"), 9u);
    EXPECT_TRUE(isBatchFailure(lines.all(), "add locales error"));
}

TEST_F(Locales, AddWorksAgainAfterAFailure)
{
    refuse("INSERT", "Locales");
    EXPECT_EQ(send(addLocales, R"({"D":{"items":[{"id":1}]}})"), 9u);
    foreign("DROP TRIGGER RefuseINSERTLocales");
    EXPECT_EQ(send(addLocales, R"({"D":{"items":[{"id":2}]}})"), 0u);
    EXPECT_EQ(rows(), (std::vector<Row>{{"2", std::nullopt, std::nullopt}}));
}

// ---- One by its id ----

TEST_F(Locales, GetReturnsEveryField)
{
    EXPECT_EQ(send(addLocales, R"({"D":{"items":[{"id":7,"iso":"ru_RU","description":"\u0420\u0443\u0441"},
                                                  {"id":8,"iso":"x"}]}})"),
              0u);
    const auto locale = get(getLocale, 7);
    ASSERT_EQ(locale.code, 0u);
    EXPECT_EQ(locale->id, 7u);
    EXPECT_EQ(utf8(locale->iso), "ru_RU");
    EXPECT_EQ(utf8(locale->description), "\u0420\u0443\u0441");
}

TEST_F(Locales, GetReturnsNullForAnAbsentField)
{
    EXPECT_EQ(send(addLocales, R"({"D":{"items":[{"id":7}]}})"), 0u);
    const auto locale = get(getLocale, 7);
    ASSERT_EQ(locale.code, 0u);
    EXPECT_EQ(locale->id, 7u);
    EXPECT_EQ(locale->iso, nullptr);
    EXPECT_EQ(locale->description, nullptr);
}

TEST_F(Locales, GetReturnsANulTerminatorForAnEmptyText)
{
    EXPECT_EQ(send(addLocales, R"({"D":{"items":[{"id":7,"iso":"","description":""}]}})"), 0u);
    const auto locale = get(getLocale, 7);
    ASSERT_EQ(locale.code, 0u);
    ASSERT_NE(locale->iso, nullptr);
    EXPECT_EQ(locale->iso[0], 0u);
    ASSERT_NE(locale->description, nullptr);
    EXPECT_EQ(locale->description[0], 0u);
}

TEST_F(Locales, GetReturns8ForAnUnknownId)
{
    EXPECT_EQ(send(addLocales, R"({"D":{"items":[{"id":7}]}})"), 0u);
    const DebugLines lines;
    FlatLocale *out = nullptr;
    EXPECT_EQ(getLocale(&out, 8), 8u);
    EXPECT_EQ(getLocale(&out, 0), 8u);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(lines.all(), std::vector<std::string>());
}

TEST_F(Locales, GetReturns10ForATargetThatIsNotNull)
{
    EXPECT_EQ(send(addLocales, R"({"D":{"items":[{"id":7}]}})"), 0u);
    FlatLocale own{};
    FlatLocale *out = &own;
    EXPECT_EQ(getLocale(&out, 7), 10u);
    EXPECT_EQ(out, &own);
    foreign("DROP TABLE Locales");
    const DebugLines lines;
    EXPECT_EQ(getLocale(&out, 7), 10u);
    EXPECT_EQ(lines.all(), std::vector<std::string>());
    library.reset();
    EXPECT_EQ(getLocale(&out, 7), 10u);
    EXPECT_EQ(out, &own);
}

TEST_F(Locales, GetReturns7WithoutTheTable)
{
    foreign("DROP TABLE Locales");
    const DebugLines lines;
    FlatLocale *out = nullptr;
    EXPECT_EQ(getLocale(&out, 7), 7u);
    EXPECT_EQ(out, nullptr);
    EXPECT_TRUE(isFailure(lines.all(), "get locale error"));
}

TEST_F(Locales, GetReturns7WithoutAColumn)
{
    EXPECT_EQ(send(addLocales, R"({"D":{"items":[{"id":7,"iso":"a"}]}})"), 0u);
    foreign("ALTER TABLE Locales RENAME COLUMN LocalesIso TO Other");
    const DebugLines lines;
    EXPECT_EQ(get(getLocale, 7).code, 7u);
    EXPECT_TRUE(isFailure(lines.all(), "get locale error"));
    foreign("ALTER TABLE Locales RENAME COLUMN Other TO LocalesIso");
    EXPECT_EQ(utf8(get(getLocale, 7)->iso), "a");
}

TEST_F(Locales, GetReadsARowByTheNamesOfItsColumns)
{
    foreign("DROP TABLE Locales");
    foreign("CREATE TABLE Locales (Extra TEXT,LocalesDescription VARCHAR(255),LocalesIso VARCHAR(255),"
            "LocalesId UNSIGNED BIG INT PRIMARY KEY)");
    foreign("INSERT INTO Locales VALUES('e','d','i',7)");
    const auto locale = get(getLocale, 7);
    ASSERT_EQ(locale.code, 0u);
    EXPECT_EQ(locale->id, 7u);
    EXPECT_EQ(utf8(locale->iso), "i");
    EXPECT_EQ(utf8(locale->description), "d");
}

// ---- All ----

TEST_F(Locales, ListReturnsEveryRow)
{
    EXPECT_EQ(send(addLocales, R"({"D":{"items":[{"id":3,"iso":"c","description":"z"},{"id":1,"iso":"a"},{"id":2}]}})"),
              0u);
    const auto locales = list(getLocales);
    ASSERT_EQ(locales.code, 0u);
    EXPECT_EQ(ids(locales), (std::vector<uint32_t>{1, 2, 3}));
    EXPECT_EQ(utf8(locales.withId(3)->iso), "c");
    EXPECT_EQ(utf8(locales.withId(3)->description), "z");
    EXPECT_EQ(utf8(locales.withId(1)->iso), "a");
    EXPECT_EQ(locales.withId(1)->description, nullptr);
    EXPECT_EQ(locales.withId(2)->iso, nullptr);
    EXPECT_EQ(locales.withId(2)->description, nullptr);
}

TEST_F(Locales, ListReturns8ForAnEmptyTable)
{
    const DebugLines lines;
    FlatLocale *out = nullptr;
    uint32_t count = 77;
    EXPECT_EQ(getLocales(&out, &count), 8u);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(count, 77u);
    EXPECT_EQ(lines.all(), std::vector<std::string>());
}

TEST_F(Locales, ListReturns10ForATargetThatIsNotNull)
{
    EXPECT_EQ(send(addLocales, R"({"D":{"items":[{"id":7}]}})"), 0u);
    FlatLocale own{};
    FlatLocale *out = &own;
    uint32_t count = 77;
    EXPECT_EQ(getLocales(&out, &count), 10u);
    library.reset();
    EXPECT_EQ(getLocales(&out, &count), 10u);
    EXPECT_EQ(out, &own);
    EXPECT_EQ(count, 77u);
}

TEST_F(Locales, ListReturns7WithoutTheTable)
{
    foreign("DROP TABLE Locales");
    const DebugLines lines;
    FlatLocale *out = nullptr;
    uint32_t count = 77;
    EXPECT_EQ(getLocales(&out, &count), 7u);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(count, 77u);
    EXPECT_TRUE(isFailure(lines.all(), "get locales error"));
}

TEST_F(Locales, ListTakesARowWithoutAnIdForZero)
{
    foreign("INSERT INTO Locales VALUES(NULL,'a',NULL)");
    const auto locales = list(getLocales);
    ASSERT_EQ(locales.size(), 1u);
    EXPECT_EQ(locales[0].id, 0u);
    EXPECT_EQ(utf8(locales[0].iso), "a");
    EXPECT_EQ(get(getLocale, 0).code, 8u);
}

TEST_F(Locales, ListSurvivesALaunch)
{
    EXPECT_EQ(send(addLocales, R"({"D":{"items":[{"id":1,"iso":"a"},{"id":2}]}})"), 0u);
    relaunch();
    EXPECT_EQ(ids(list(getLocales)), (std::vector<uint32_t>{1, 2}));
    EXPECT_EQ(utf8(get(getLocale, 1)->iso), "a");
}

// ---- By a field ----

class LocalesByField : public Locales
{
protected:
    LocalesByField()
    {
        EXPECT_EQ(send(addLocales, R"({"D":{"items":[{"id":1,"iso":"a","description":"x"},
                                                      {"id":2,"iso":"a","description":"it's"},
                                                      {"id":3,"iso":"A","description":""},
                                                      {"id":5,"iso":"1"},
                                                      {"id":15}]}})"),
                  0u);
    }
};

TEST_F(LocalesByField, IsoFindsEveryRowWithExactlyThatText)
{
    const auto locales = listBy(getLocalesWithParams, "iso", "a");
    ASSERT_EQ(locales.code, 0u);
    EXPECT_EQ(ids(locales), (std::vector<uint32_t>{1, 2}));
    EXPECT_EQ(utf8(locales.withId(1)->iso), "a");
    EXPECT_EQ(utf8(locales.withId(1)->description), "x");
}

TEST_F(LocalesByField, DescriptionFindsItsText)
{
    EXPECT_EQ(ids(listBy(getLocalesWithParams, "description", "x")), (std::vector<uint32_t>{1}));
    EXPECT_EQ(ids(listBy(getLocalesWithParams, "description", "it's")), (std::vector<uint32_t>{2}));
}

TEST_F(LocalesByField, IdFindsTheNumberByItsDigits)
{
    EXPECT_EQ(ids(listBy(getLocalesWithParams, "id", "5")), (std::vector<uint32_t>{5}));
    EXPECT_EQ(ids(listBy(getLocalesWithParams, "id", "1")), (std::vector<uint32_t>{1}));
}

TEST_F(LocalesByField, AnEmptyValueFindsTheEmptyTextAndNotTheAbsentOne)
{
    EXPECT_EQ(ids(listBy(getLocalesWithParams, "description", "")), (std::vector<uint32_t>{3}));
}

TEST_F(LocalesByField, ValuesAreComparedWholeAndExactly)
{
    for (const char *value : {"b", "%", "a%", "_", "aa", " a", "a ", "NULL", "'a'", "a' OR '1'='1", "?", "%1", ":1"}) {
        SCOPED_TRACE(value);
        EXPECT_EQ(listBy(getLocalesWithParams, "iso", value).code, 8u);
    }
    EXPECT_EQ(ids(listBy(getLocalesWithParams, "iso", "A")), (std::vector<uint32_t>{3}));
    EXPECT_EQ(listBy(getLocalesWithParams, "id", "4").code, 8u);
    EXPECT_EQ(listBy(getLocalesWithParams, "id", "a").code, 8u);
}

TEST_F(LocalesByField, Returns8WhenNoRowMatches)
{
    const DebugLines lines;
    FlatLocale *out = nullptr;
    uint32_t count = 77;
    EXPECT_EQ(find(getLocalesWithParams, &out, &count, "iso", "nowhere"), 8u);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(count, 77u);
    EXPECT_EQ(lines.all(), std::vector<std::string>());
}

TEST_F(LocalesByField, Returns10ForAnUnknownKey)
{
    const DebugLines lines;
    for (const char *key : {"Iso", "ISO", "LocalesIso", "LocalesId", "Id", "", "iso ", " iso", "name", "locale_id"}) {
        SCOPED_TRACE(key);
        FlatLocale *out = nullptr;
        uint32_t count = 77;
        EXPECT_EQ(find(getLocalesWithParams, &out, &count, key, "a"), 10u);
        EXPECT_EQ(out, nullptr);
        EXPECT_EQ(count, 77u);
    }
    EXPECT_EQ(lines.all(), std::vector<std::string>());
}

TEST_F(LocalesByField, Returns10ForATargetThatIsNotNull)
{
    FlatLocale own{};
    FlatLocale *out = &own;
    uint32_t count = 77;
    EXPECT_EQ(find(getLocalesWithParams, &out, &count, "iso", "a"), 10u);
    library.reset();
    EXPECT_EQ(find(getLocalesWithParams, &out, &count, "iso", "a"), 10u);
    EXPECT_EQ(out, &own);
    EXPECT_EQ(count, 77u);
}

TEST_F(LocalesByField, Returns7WithoutTheTable)
{
    foreign("DROP TABLE Locales");
    const DebugLines lines;
    FlatLocale *out = nullptr;
    uint32_t count = 77;
    EXPECT_EQ(find(getLocalesWithParams, &out, &count, "iso", "a"), 7u);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(count, 77u);
    EXPECT_TRUE(isFailure(lines.all(), "get locales by field error"));
}

TEST_F(LocalesByField, ChecksTheKeyBeforeTheStore)
{
    foreign("DROP TABLE Locales");
    const DebugLines lines;
    EXPECT_EQ(listBy(getLocalesWithParams, "Iso", "a").code, 10u);
    EXPECT_EQ(lines.all(), std::vector<std::string>());
}

// ---- What leaves locales alone, and what does not ----

TEST_F(Locales, StayWhenTheirDomainIsDeleted)
{
    EXPECT_EQ(send(addLocales, R"({"D":{"items":[{"id":1,"iso":"a"}]}})"), 0u);
    EXPECT_EQ(send(addDomains, R"({"D":{"items":[{"id":3,"locale_id":1}]}})"), 0u);
    EXPECT_EQ(send(deleteDomain, R"({"D":{"domain_id":3}})"), 0u);
    EXPECT_EQ(rows(), (std::vector<Row>{{"1", "a", std::nullopt}}));
}

TEST_F(Locales, StayWhenTheirOrganizationIsDeleted)
{
    EXPECT_EQ(send(addLocales, R"({"D":{"items":[{"id":1,"iso":"a"}]}})"), 0u);
    EXPECT_EQ(send(addOrganizations, R"({"D":{"items":[{"org_id":3,"locale_id":1,"contact":{"id":1}}]}})"), 0u);
    EXPECT_EQ(send(deleteOrganization, R"({"D":{"org_id":3}})"), 0u);
    EXPECT_EQ(rows(), (std::vector<Row>{{"1", "a", std::nullopt}}));
}

TEST_F(Locales, AreNotWrittenByWhatNamesThem)
{
    EXPECT_EQ(send(addDomains, R"({"D":{"items":[{"id":3,"locale_id":9}]}})"), 0u);
    EXPECT_EQ(send(addOrganizations, R"({"D":{"items":[{"org_id":3,"locale_id":9}]}})"), 0u);
    EXPECT_EQ(rows(), std::vector<Row>());
    EXPECT_EQ(file.value("SELECT DomainsLocaleId FROM Domains"), "9");
    EXPECT_EQ(get(getDomain, 3)->locale, nullptr);
    EXPECT_EQ(get(getOrganization, 3)->locale, nullptr);
}

TEST_F(Locales, ShowInWhatNamesThemOnceTheyAreThere)
{
    EXPECT_EQ(send(addDomains, R"({"D":{"items":[{"id":3,"locale_id":9}]}})"), 0u);
    EXPECT_EQ(send(addLocales, R"({"D":{"items":[{"id":9,"iso":"a","description":"x"}]}})"), 0u);
    const auto domain = get(getDomain, 3);
    ASSERT_EQ(domain.code, 0u);
    ASSERT_NE(domain->locale, nullptr);
    EXPECT_EQ(domain->locale->id, 9u);
    EXPECT_EQ(utf8(domain->locale->iso), "a");
    EXPECT_EQ(utf8(domain->locale->description), "x");
}

TEST_F(Locales, AreClearedWithTheRest)
{
    EXPECT_EQ(send(addLocales, R"({"D":{"items":[{"id":1},{"id":2}]}})"), 0u);
    EXPECT_EQ(clearAll(), 0u);
    EXPECT_EQ(rows(), std::vector<Row>());
    EXPECT_EQ(send(addLocales, R"({"D":{"items":[{"id":1},{"id":2}]}})"), 0u);
    EXPECT_EQ(clearAllExceptEvents(), 0u);
    EXPECT_EQ(rows(), std::vector<Row>());
}

// ---- Freeing ----

TEST_F(Locales, FreeTakesARecord)
{
    EXPECT_EQ(send(addLocales, R"({"D":{"items":[{"id":1,"iso":"a","description":"x"},{"id":2}]}})"), 0u);
    for (const uint32_t id : {1u, 2u}) {
        FlatLocale *out = nullptr;
        ASSERT_EQ(getLocale(&out, id), 0u);
        EXPECT_EQ(freeLocale(out), 0u);
    }
}

TEST_F(Locales, FreeReturns10ForNull)
{
    EXPECT_EQ(freeLocale(nullptr), 10u);
    EXPECT_EQ(freeLocalesArray(nullptr, 0), 10u);
    EXPECT_EQ(freeLocalesArray(nullptr, 3), 10u);
}

TEST_F(Locales, FreeLeavesAnArrayWithoutACountAlone)
{
    EXPECT_EQ(send(addLocales, R"({"D":{"items":[{"id":1,"iso":"a"},{"id":2,"description":"x"}]}})"), 0u);
    FlatLocale *out = nullptr;
    uint32_t count = 0;
    ASSERT_EQ(getLocales(&out, &count), 0u);
    ASSERT_EQ(count, 2u);
    EXPECT_EQ(freeLocalesArray(out, 0), 10u);
    EXPECT_EQ(out[0].id + out[1].id, 3u);
    const FlatLocale &first = out[0].id == 1 ? out[0] : out[1];
    EXPECT_EQ(utf8(first.iso), "a");
    EXPECT_EQ(freeLocalesArray(out, count), 0u);
}

TEST_F(Locales, FreeWorksAfterTheExit)
{
    EXPECT_EQ(send(addLocales, R"({"D":{"items":[{"id":1,"iso":"a"}]}})"), 0u);
    FlatLocale *out = nullptr;
    uint32_t count = 0;
    ASSERT_EQ(getLocales(&out, &count), 0u);
    FlatLocale *one = nullptr;
    ASSERT_EQ(getLocale(&one, 1), 0u);
    library.reset();
    EXPECT_EQ(utf8(one->iso), "a");
    EXPECT_EQ(freeLocale(one), 0u);
    EXPECT_EQ(freeLocalesArray(out, count), 0u);
    EXPECT_EQ(freeLocale(nullptr), 10u);
}

} // namespace
