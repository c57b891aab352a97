// Domains through the exported functions: batches that replace, updates that keep absent members, deletes, reads
// with the joined locale, queries by a field, and the store after each of them fails.
#include "Store.h"

#ifdef __GLIBC__
#include <malloc.h>
#endif

using namespace brimlet::test;

namespace {

// Every field, each with a different value.
const char *const North = R"({"id":3,"name":"North","org_id":2,"locale_id":1})";

class Domains : public StoreTest
{
protected:
    uint32_t add(const std::string &items) { return send(addDomains, batch(items)); }

    void addEnglish() { EXPECT_EQ(send(addLocales, batch(R"({"id":1,"iso":"en","description":"English"})")), 0u); }

    // A domain's columns after the id, in the order of the table.
    Row stored(const std::string &id) const
    {
        const std::vector<Row> found =
            file.rows("SELECT DomainsName, DomainsOrgId, DomainsLocaleId FROM Domains WHERE DomainsId = " + id);
        return found.size() == 1 ? found[0] : Row{};
    }

    std::optional<std::string> column(const std::string &expression) const
    {
        return file.value("SELECT " + expression + " FROM Domains");
    }

    int64_t count() const { return file.number("SELECT COUNT(*) FROM Domains"); }

    const Row north{"North", "2", "1"};
    const Row nothing = Row(3);
};

// ---- Adding ----

TEST_F(Domains, AddStoresEveryFieldInItsColumn)
{
    EXPECT_EQ(add(North), 0u);
    EXPECT_EQ(count(), 1);
    EXPECT_EQ(stored("3"), north);
}

TEST_F(Domains, AddStoresTextsAsTextAndNumbersAsNumbers)
{
    EXPECT_EQ(add(North), 0u);
    EXPECT_EQ(file.rows("SELECT typeof(DomainsId), typeof(DomainsName), typeof(DomainsOrgId), typeof(DomainsLocaleId)"
                        " FROM Domains"),
              (std::vector<Row>{{"integer", "text", "integer", "integer"}}));
}

TEST_F(Domains, AddOfAnIdAloneStoresNothingBeside)
{
    EXPECT_EQ(add(R"({"id":3})"), 0u);
    EXPECT_EQ(stored("3"), nothing);
}

TEST_F(Domains, AddStoresEachAbsentFieldAsNull)
{
    EXPECT_EQ(add(R"({"id":1,"org_id":5},{"id":2,"name":"b","locale_id":6},{"id":3},{"id":4,"name":"d"},)"
                  R"({"id":5,"locale_id":7})"),
              0u);
    EXPECT_EQ(stored("1"), (Row{{}, "5", {}}));
    EXPECT_EQ(stored("2"), (Row{"b", {}, "6"}));
    EXPECT_EQ(stored("3"), nothing);
    EXPECT_EQ(stored("4"), (Row{"d", {}, {}}));
    EXPECT_EQ(stored("5"), (Row{{}, {}, "7"}));
}

TEST_F(Domains, AddReplacesTheWholeRow)
{
    EXPECT_EQ(add(North), 0u);
    EXPECT_EQ(add(R"({"id":3,"locale_id":9})"), 0u);
    EXPECT_EQ(count(), 1);
    EXPECT_EQ(stored("3"), (Row{{}, {}, "9"}));
}

TEST_F(Domains, AddWithoutALocaleLosesTheLocaleAndLeavesItsRow)
{
    addEnglish();
    EXPECT_EQ(add(North), 0u);
    EXPECT_EQ(add(R"({"id":3,"name":"North","org_id":2})"), 0u);
    const auto domain = get(getDomain, 3);
    ASSERT_EQ(domain.code, 0u);
    EXPECT_EQ(domain->locale, nullptr);
    EXPECT_EQ(get(getLocale, 1).code, 0u);
}

TEST_F(Domains, AddLeavesOtherRowsAlone)
{
    EXPECT_EQ(add(North), 0u);
    EXPECT_EQ(add(R"({"id":4,"name":"x"})"), 0u);
    EXPECT_EQ(count(), 2);
    EXPECT_EQ(stored("3"), north);
}

TEST_F(Domains, TheLaterOfTwoRecordsWithOneIdWinsWhole)
{
    EXPECT_EQ(add(std::string(North) + R"(,{"id":3,"org_id":8})"), 0u);
    EXPECT_EQ(count(), 1);
    EXPECT_EQ(stored("3"), (Row{{}, "8", {}}));
}

TEST_F(Domains, AddIgnoresMembersItDoesNotKnow)
{
    EXPECT_EQ(send(addDomains,
                   R"({"x":1,"D":{"y":[],"items":[{"id":3,"domain_id":9,"org":5,"locale":{"id":1},"Name":null}]}})"),
              0u);
    EXPECT_EQ(count(), 1);
    EXPECT_EQ(stored("3"), nothing);
}

TEST_F(Domains, AddWritesNoLocale)
{
    EXPECT_EQ(add(North), 0u);
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Locales"), 0);
    addEnglish();
    EXPECT_EQ(add(R"({"id":4,"locale_id":1,"iso":"de","description":"Deutsch"})"), 0u);
    EXPECT_EQ(file.rows("SELECT * FROM Locales"), (std::vector<Row>{{"1", "en", "English"}}));
}

TEST_F(Domains, AddLogsNothingWhenItWorks)
{
    const DebugLines lines;
    EXPECT_EQ(add(North), 0u);
    EXPECT_EQ(lines.all(), std::vector<std::string>());
}

// ---- Values ----

TEST_F(Domains, AnEmptyNameStaysEmptyAndPresent)
{
    EXPECT_EQ(add(R"({"id":3,"name":""})"), 0u);
    EXPECT_EQ(column("typeof(DomainsName)"), "text");
    EXPECT_EQ(column("DomainsName"), "");
    const auto domain = get(getDomain, 3);
    ASSERT_EQ(domain.code, 0u);
    EXPECT_EQ(utf8(domain->name), "");
}

TEST_F(Domains, ZerosStayZeroAndPresent)
{
    EXPECT_EQ(send(addLocales, batch(R"({"id":0,"iso":"zero"})")), 0u);
    EXPECT_EQ(add(R"({"id":0,"org_id":0,"locale_id":0})"), 0u);
    EXPECT_EQ(stored("0"), (Row{{}, "0", "0"}));
    const auto domain = get(getDomain, 0);
    ASSERT_EQ(domain.code, 0u);
    EXPECT_EQ(domain->id, 0u);
    EXPECT_EQ(value(domain->orgId), 0u);
    ASSERT_NE(domain->locale, nullptr);
    EXPECT_EQ(domain->locale->id, 0u);
    EXPECT_EQ(utf8(domain->locale->iso), "zero");
}

TEST_F(Domains, ANameIsNeitherCutNorChanged)
{
    const std::string name = std::string(600, 'n') + "'; -- é Ж 😀";
    EXPECT_EQ(add(R"({"id":3,"name":")" + name + "\"}"), 0u);
    const auto domain = get(getDomain, 3);
    ASSERT_EQ(domain.code, 0u);
    EXPECT_EQ(utf8(domain->name), name);
    EXPECT_EQ(column("DomainsName"), name);
}

TEST_F(Domains, NumbersDropTheFractionAndKeepTheLow32Bits)
{
    const std::vector<std::pair<const char *, const char *>> cases{
        {"3.9", "3"},        {"-0.5", "0"},   {"-1", "4294967295"},        {"4294967295", "4294967295"},
        {"4294967296", "0"}, {"1e3", "1000"}, {"5000000000", "705032704"},
    };
    for (const auto &[written, number] : cases) {
        SCOPED_TRACE(written);
        foreign("DELETE FROM Domains");
        const std::string text = written;
        EXPECT_EQ(add(R"({"id":)" + text + R"(,"org_id":)" + text + R"(,"locale_id":)" + text + "}"), 0u);
        EXPECT_EQ(column("DomainsId"), number);
        EXPECT_EQ(column("DomainsOrgId"), number);
        EXPECT_EQ(column("DomainsLocaleId"), number);
        const auto domain = get(getDomain, std::stoul(number));
        ASSERT_EQ(domain.code, 0u);
        EXPECT_EQ(value(domain->orgId), std::stoul(number));
    }
}

// ---- Refused documents ----

struct Wrong
{
    const char *key;
    std::vector<const char *> values;
};

const std::vector<Wrong> WrongTypes{
    {"id", {"null", R"("3")", "true", "[3]", "{}"}},
    {"name", {"null", "1", "true", R"(["a"])", "{}"}},
    {"org_id", {"null", R"("2")", "true", "[2]", R"({"org_id":2})"}},
    {"locale_id", {"null", R"("1")", "true", "[1]", R"({"id":1})"}},
};

std::string withWrong(const char *key, const char *value)
{
    const std::string id = std::string(key) == "id" ? "" : R"("id":3,)";
    return "{" + id + "\"" + key + "\":" + value + "}";
}

TEST_F(Domains, AddReturns5ForAWrongTypeUnderAnyKey)
{
    const DebugLines lines;
    for (const Wrong &wrong : WrongTypes)
        for (const char *value : wrong.values) {
            SCOPED_TRACE(std::string(wrong.key) + " " + value);
            EXPECT_EQ(add(withWrong(wrong.key, value)), 5u);
        }
    EXPECT_EQ(count(), 0);
    EXPECT_EQ(lines.all(), std::vector<std::string>());
}

TEST_F(Domains, UpdateReturns5ForAWrongTypeUnderAnyKey)
{
    EXPECT_EQ(add(North), 0u);
    const DebugLines lines;
    for (const Wrong &wrong : WrongTypes)
        for (const char *value : wrong.values) {
            SCOPED_TRACE(std::string(wrong.key) + " " + value);
            const auto domain = update(updateDomain, one(withWrong(wrong.key, value)));
            EXPECT_EQ(domain.code, 5u);
            EXPECT_EQ(domain.record, nullptr);
        }
    EXPECT_EQ(stored("3"), north);
    EXPECT_EQ(lines.all(), std::vector<std::string>());
}

TEST_F(Domains, ABatchWithOneBadElementStoresNothing)
{
    for (const char *bad :
         {"5", "null", R"("x")", "[]", "{}", R"({"name":"x"})", R"({"domain_id":9})", R"({"id":9,"locale_id":null})"}) {
        SCOPED_TRACE(bad);
        EXPECT_EQ(add(std::string(North) + "," + bad + R"(,{"id":4})"), 5u);
        EXPECT_EQ(add(std::string(North) + R"(,{"id":4},)" + bad), 5u);
        EXPECT_EQ(count(), 0);
    }
}

TEST_F(Domains, AddRefusesBrokenDocuments)
{
    const std::vector<std::pair<const char *, uint32_t>> cases{
        {"", 10},
        {"not json", 10},
        {R"([{"id":3}])", 10},
        {"3", 10},
        {R"({"D":{"items":[{"id":3}]})", 10},
        {R"({"D":{"items":[]}})", 10},
        {"{}", 5},
        {R"({"items":[{"id":3}]})", 5},
        {R"({"d":{"items":[{"id":3}]}})", 5},
        {R"({"D":[{"id":3}]})", 5},
        {R"({"D":null})", 5},
        {R"({"D":{}})", 5},
        {R"({"D":{"id":3}})", 5},
        {R"({"D":{"items":{"id":3}}})", 5},
        {R"({"D":{"items":null}})", 5},
    };
    for (const auto &[json, code] : cases) {
        SCOPED_TRACE(json);
        EXPECT_EQ(send(addDomains, json), code);
    }
    EXPECT_EQ(count(), 0);
}

TEST_F(Domains, UpdateRefusesBrokenDocuments)
{
    const std::vector<std::pair<const char *, uint32_t>> cases{
        {"", 10},
        {"not json", 10},
        {R"([{"id":3}])", 10},
        {R"({"D":{"id":3})", 10},
        {"{}", 5},
        {R"({"id":3})", 5},
        {R"({"D":[{"id":3}]})", 5},
        {R"({"D":3})", 5},
        {R"({"D":{}})", 5},
        {R"({"D":{"domain_id":3}})", 5},
        {R"({"D":{"name":"x"}})", 5},
        {R"({"D":{"items":[{"id":3}]}})", 5},
    };
    for (const auto &[json, code] : cases) {
        SCOPED_TRACE(json);
        const auto domain = update(updateDomain, json);
        EXPECT_EQ(domain.code, code);
        EXPECT_EQ(domain.record, nullptr);
    }
    EXPECT_EQ(count(), 0);
}

TEST_F(Domains, DeleteRefusesBrokenDocuments)
{
    EXPECT_EQ(add(R"({"id":0},{"id":3})"), 0u);
    const std::vector<std::pair<const char *, uint32_t>> cases{
        {"", 10},
        {"not json", 10},
        {"[3]", 10},
        {"{}", 5},
        {R"({"domain_id":3})", 5},
        {R"({"D":[]})", 5},
        {R"({"D":3})", 5},
        {R"({"D":{}})", 5},
        {R"({"D":{"id":3}})", 5},
        {R"({"D":{"Domain_id":3}})", 5},
        {R"({"D":{"domain":3}})", 5},
        {R"({"D":{"items":[{"domain_id":3}]}})", 5},
    };
    for (const auto &[json, code] : cases) {
        SCOPED_TRACE(json);
        EXPECT_EQ(send(deleteDomain, json), code);
    }
    EXPECT_EQ(count(), 2);
}

TEST_F(Domains, ANullTextReturns10)
{
    FlatDomain *domain = nullptr;
    EXPECT_EQ(addDomains(nullptr, 0), 10u);
    EXPECT_EQ(updateDomain(&domain, nullptr, 0), 10u);
    EXPECT_EQ(deleteDomain(nullptr, 0), 10u);
    EXPECT_EQ(domain, nullptr);
}

// ---- Reading ----

TEST_F(Domains, GetReturnsEveryField)
{
    addEnglish();
    EXPECT_EQ(add(North), 0u);
    const auto domain = get(getDomain, 3);
    ASSERT_EQ(domain.code, 0u);
    EXPECT_EQ(domain->id, 3u);
    EXPECT_EQ(utf8(domain->name), "North");
    EXPECT_EQ(value(domain->orgId), 2u);
    ASSERT_NE(domain->locale, nullptr);
    EXPECT_EQ(domain->locale->id, 1u);
    EXPECT_EQ(utf8(domain->locale->iso), "en");
    EXPECT_EQ(utf8(domain->locale->description), "English");
}

TEST_F(Domains, GetReturnsNullForEveryAbsentField)
{
    EXPECT_EQ(add(R"({"id":3})"), 0u);
    const auto domain = get(getDomain, 3);
    ASSERT_EQ(domain.code, 0u);
    EXPECT_EQ(domain->id, 3u);
    EXPECT_EQ(domain->name, nullptr);
    EXPECT_EQ(domain->orgId, nullptr);
    EXPECT_EQ(domain->locale, nullptr);
}

TEST_F(Domains, TheOrganizationIsANumberWithNothingJoined)
{
    EXPECT_EQ(add(R"({"id":3,"org_id":4294967295})"), 0u);
    const auto domain = get(getDomain, 3);
    ASSERT_EQ(domain.code, 0u);
    EXPECT_EQ(value(domain->orgId), 4294967295u);
}

TEST_F(Domains, GetReturns8ForAnUnknownIdAndLogsNothing)
{
    EXPECT_EQ(add(North), 0u);
    const DebugLines lines;
    FlatDomain *domain = nullptr;
    EXPECT_EQ(getDomain(&domain, 4), 8u);
    EXPECT_EQ(domain, nullptr);
    EXPECT_EQ(lines.all(), std::vector<std::string>());
}

TEST_F(Domains, AnUnknownLocaleIsStoredButNotShownUntilItIsAdded)
{
    EXPECT_EQ(add(North), 0u);
    const auto before = get(getDomain, 3);
    ASSERT_EQ(before.code, 0u);
    EXPECT_EQ(before->locale, nullptr);
    EXPECT_EQ(column("DomainsLocaleId"), "1");
    const auto found = listBy(getDomainsWithParams, "locale_id", "1");
    ASSERT_EQ(found.code, 0u);
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0].id, 3u);
    EXPECT_EQ(found[0].locale, nullptr);

    addEnglish();
    const auto after = get(getDomain, 3);
    ASSERT_EQ(after.code, 0u);
    ASSERT_NE(after->locale, nullptr);
    EXPECT_EQ(utf8(after->locale->iso), "en");
}

TEST_F(Domains, ALocaleOfNothingButAnIdIsStillALocale)
{
    EXPECT_EQ(send(addLocales, batch(R"({"id":1})")), 0u);
    EXPECT_EQ(add(North), 0u);
    const auto domain = get(getDomain, 3);
    ASSERT_EQ(domain.code, 0u);
    ASSERT_NE(domain->locale, nullptr);
    EXPECT_EQ(domain->locale->id, 1u);
    EXPECT_EQ(domain->locale->iso, nullptr);
    EXPECT_EQ(domain->locale->description, nullptr);
}

TEST_F(Domains, ADomainWithoutALocaleIdHasNoLocale)
{
    EXPECT_EQ(send(addLocales, batch(R"({"id":0,"iso":"zero"})")), 0u);
    foreign("INSERT INTO Locales(LocalesId, LocalesIso) VALUES (NULL, 'none')");
    EXPECT_EQ(add(R"({"id":3})"), 0u);
    const auto domain = get(getDomain, 3);
    ASSERT_EQ(domain.code, 0u);
    EXPECT_EQ(domain->locale, nullptr);
}

TEST_F(Domains, EachDomainOfAnArrayHasItsOwnLocale)
{
    EXPECT_EQ(send(addLocales, batch(R"({"id":1,"iso":"en"},{"id":2,"description":"Deutsch"})")), 0u);
    EXPECT_EQ(add(R"({"id":1,"name":"a","locale_id":1},{"id":2,"org_id":5,"locale_id":2},{"id":3,"name":"c"},)"
                  R"({"id":4,"locale_id":9})"),
              0u);
    const auto domains = list(getDomains);
    ASSERT_EQ(domains.code, 0u);
    ASSERT_EQ(domains.size(), 4u);
    ASSERT_NE(domains.withId(1), nullptr);
    ASSERT_NE(domains.withId(1)->locale, nullptr);
    EXPECT_EQ(utf8(domains.withId(1)->name), "a");
    EXPECT_EQ(domains.withId(1)->orgId, nullptr);
    EXPECT_EQ(utf8(domains.withId(1)->locale->iso), "en");
    EXPECT_EQ(domains.withId(1)->locale->description, nullptr);
    ASSERT_NE(domains.withId(2), nullptr);
    ASSERT_NE(domains.withId(2)->locale, nullptr);
    EXPECT_EQ(domains.withId(2)->name, nullptr);
    EXPECT_EQ(value(domains.withId(2)->orgId), 5u);
    EXPECT_EQ(domains.withId(2)->locale->iso, nullptr);
    EXPECT_EQ(utf8(domains.withId(2)->locale->description), "Deutsch");
    ASSERT_NE(domains.withId(3), nullptr);
    EXPECT_EQ(utf8(domains.withId(3)->name), "c");
    EXPECT_EQ(domains.withId(3)->locale, nullptr);
    ASSERT_NE(domains.withId(4), nullptr);
    EXPECT_EQ(domains.withId(4)->locale, nullptr);
}

TEST_F(Domains, ListOfAnEmptyTableReturns8AndLeavesTheOutputs)
{
    const DebugLines lines;
    FlatDomain *domains = nullptr;
    uint32_t count = 77;
    EXPECT_EQ(getDomains(&domains, &count), 8u);
    EXPECT_EQ(domains, nullptr);
    EXPECT_EQ(count, 77u);
    EXPECT_EQ(lines.all(), std::vector<std::string>());
}

TEST_F(Domains, ARowWithoutAnIdIsListedUnder0)
{
    foreign("INSERT INTO Domains(DomainsId, DomainsName) VALUES (NULL, 'none')");
    const auto domains = list(getDomains);
    ASSERT_EQ(domains.code, 0u);
    ASSERT_EQ(domains.size(), 1u);
    EXPECT_EQ(domains[0].id, 0u);
    EXPECT_EQ(utf8(domains[0].name), "none");
}

// ---- By a field ----

TEST_F(Domains, EveryKeyFindsByItsOwnColumn)
{
    EXPECT_EQ(add(std::string(North) + R"(,{"id":1,"name":"n","org_id":3,"locale_id":2},{"id":9})"), 0u);
    const std::vector<std::pair<const char *, const char *>> cases{
        {"id", "3"}, {"name", "North"}, {"org_id", "2"}, {"locale_id", "1"}};
    for (const auto &[key, wanted] : cases) {
        SCOPED_TRACE(key);
        const auto domains = listBy(getDomainsWithParams, key, wanted);
        EXPECT_EQ(domains.code, 0u);
        ASSERT_EQ(domains.size(), 1u);
        EXPECT_EQ(domains[0].id, 3u);
        EXPECT_EQ(utf8(domains[0].name), "North");
    }
}

TEST_F(Domains, EveryKeyReturns8ForAValueThatNoRowHas)
{
    EXPECT_EQ(add(std::string(North) + R"(,{"id":4})"), 0u);
    const DebugLines lines;
    for (const char *key : {"id", "name", "org_id", "locale_id"})
        for (const char *wanted : {"99", "", "%", "north"}) {
            SCOPED_TRACE(std::string(key) + " " + wanted);
            const auto domains = listBy(getDomainsWithParams, key, wanted);
            EXPECT_EQ(domains.code, 8u);
            EXPECT_TRUE(domains.isNull());
        }
    EXPECT_EQ(lines.all(), std::vector<std::string>());
}

TEST_F(Domains, AnyOtherKeyReturns10)
{
    EXPECT_EQ(add(North), 0u);
    const DebugLines lines;
    for (const char *key : {"domain_id", "op_id", "org", "locale", "domain", "orgId", "ID", "Name", " name",
                            "DomainsId", "DomainsName", "items", ""}) {
        SCOPED_TRACE(key);
        FlatDomain *domains = nullptr;
        uint32_t count = 77;
        EXPECT_EQ(find(getDomainsWithParams, &domains, &count, key, "3"), 10u);
        EXPECT_EQ(domains, nullptr);
        EXPECT_EQ(count, 77u);
    }
    EXPECT_EQ(lines.all(), std::vector<std::string>());
}

TEST_F(Domains, AllRowsWithTheValueAreFoundWithTheirLocales)
{
    addEnglish();
    EXPECT_EQ(add(R"({"id":1,"org_id":2,"locale_id":1},{"id":2,"org_id":3},{"id":3,"org_id":2},{"id":4})"), 0u);
    const auto domains = listBy(getDomainsWithParams, "org_id", "2");
    ASSERT_EQ(domains.code, 0u);
    ASSERT_EQ(domains.size(), 2u);
    ASSERT_NE(domains.withId(1), nullptr);
    ASSERT_NE(domains.withId(1)->locale, nullptr);
    EXPECT_EQ(utf8(domains.withId(1)->locale->iso), "en");
    ASSERT_NE(domains.withId(3), nullptr);
    EXPECT_EQ(domains.withId(3)->locale, nullptr);
}

TEST_F(Domains, AnEmptyNameIsFoundAndAnAbsentOneIsNot)
{
    EXPECT_EQ(add(R"({"id":1,"name":""},{"id":2})"), 0u);
    const auto domains = listBy(getDomainsWithParams, "name", "");
    ASSERT_EQ(domains.code, 0u);
    ASSERT_EQ(domains.size(), 1u);
    EXPECT_EQ(domains[0].id, 1u);
}

// ---- Updating ----

TEST_F(Domains, UpdateOfANewIdInsertsTheRowAndReturnsIt)
{
    addEnglish();
    const auto domain = update(updateDomain, one(North));
    ASSERT_EQ(domain.code, 0u);
    EXPECT_EQ(count(), 1);
    EXPECT_EQ(stored("3"), north);
    EXPECT_EQ(domain->id, 3u);
    EXPECT_EQ(utf8(domain->name), "North");
    EXPECT_EQ(value(domain->orgId), 2u);
    ASSERT_NE(domain->locale, nullptr);
    EXPECT_EQ(domain->locale->id, 1u);
    EXPECT_EQ(utf8(domain->locale->iso), "en");
    EXPECT_EQ(utf8(domain->locale->description), "English");
}

TEST_F(Domains, UpdateStoresTextsAsTextAndNumbersAsNumbers)
{
    ASSERT_EQ(update(updateDomain, one(North)).code, 0u);
    EXPECT_EQ(file.rows("SELECT typeof(DomainsId), typeof(DomainsName), typeof(DomainsOrgId), typeof(DomainsLocaleId)"
                        " FROM Domains"),
              (std::vector<Row>{{"integer", "text", "integer", "integer"}}));
}

TEST_F(Domains, UpdateOfANewIdAloneMakesARowOfNothingElse)
{
    const auto domain = update(updateDomain, R"({"D":{"id":3}})");
    ASSERT_EQ(domain.code, 0u);
    EXPECT_EQ(domain->id, 3u);
    EXPECT_EQ(domain->name, nullptr);
    EXPECT_EQ(domain->orgId, nullptr);
    EXPECT_EQ(domain->locale, nullptr);
    EXPECT_EQ(count(), 1);
    EXPECT_EQ(stored("3"), nothing);
}

TEST_F(Domains, UpdateOfAKnownIdAloneChangesNothingAndReturnsTheStoredRow)
{
    addEnglish();
    EXPECT_EQ(add(North), 0u);
    const auto domain = update(updateDomain, R"({"D":{"id":3}})");
    ASSERT_EQ(domain.code, 0u);
    EXPECT_EQ(utf8(domain->name), "North");
    EXPECT_EQ(value(domain->orgId), 2u);
    ASSERT_NE(domain->locale, nullptr);
    EXPECT_EQ(utf8(domain->locale->iso), "en");
    EXPECT_EQ(stored("3"), north);
}

TEST_F(Domains, UpdateOfTheLocaleKeepsTheNameAndTheOrganization)
{
    EXPECT_EQ(send(addLocales, batch(R"({"id":1,"iso":"en"},{"id":9,"iso":"de"})")), 0u);
    EXPECT_EQ(add(North), 0u);
    const auto domain = update(updateDomain, R"({"D":{"id":3,"locale_id":9}})");
    ASSERT_EQ(domain.code, 0u);
    EXPECT_EQ(utf8(domain->name), "North");
    EXPECT_EQ(value(domain->orgId), 2u);
    ASSERT_NE(domain->locale, nullptr);
    EXPECT_EQ(domain->locale->id, 9u);
    EXPECT_EQ(utf8(domain->locale->iso), "de");
    EXPECT_EQ(stored("3"), (Row{"North", "2", "9"}));
}

TEST_F(Domains, UpdateOfOneFieldChangesItsColumnAlone)
{
    const std::vector<std::tuple<size_t, const char *, const char *>> cases{
        {0, R"("name":"x")", "x"}, {1, R"("org_id":22)", "22"}, {2, R"("locale_id":11)", "11"}};
    for (const auto &[place, field, written] : cases) {
        SCOPED_TRACE(field);
        EXPECT_EQ(add(North), 0u);
        ASSERT_EQ(update(updateDomain, R"({"D":{"id":3,)" + std::string(field) + "}}").code, 0u);
        Row expected = north;
        expected[place] = written;
        EXPECT_EQ(stored("3"), expected);
    }
}

TEST_F(Domains, UpdateOfANewIdFillsTheFieldsSentAlone)
{
    const std::vector<std::tuple<size_t, const char *, const char *>> cases{
        {0, R"("name":"x")", "x"}, {1, R"("org_id":22)", "22"}, {2, R"("locale_id":11)", "11"}};
    for (const auto &[place, field, written] : cases) {
        SCOPED_TRACE(field);
        const std::string id = std::to_string(100 + place);
        ASSERT_EQ(update(updateDomain, R"({"D":{"id":)" + id + "," + field + "}}").code, 0u);
        Row expected = nothing;
        expected[place] = written;
        EXPECT_EQ(stored(id), expected);
    }
}

TEST_F(Domains, UpdateOfEveryFieldChangesEveryColumn)
{
    EXPECT_EQ(add(North), 0u);
    ASSERT_EQ(update(updateDomain, R"({"D":{"locale_id":102,"org_id":101,"name":"n","id":3}})").code, 0u);
    EXPECT_EQ(stored("3"), (Row{"n", "101", "102"}));
}

TEST_F(Domains, UpdateWithAnEmptyNameAndZerosOverwrites)
{
    EXPECT_EQ(add(North), 0u);
    const auto domain = update(updateDomain, R"({"D":{"id":3,"name":"","org_id":0,"locale_id":0}})");
    ASSERT_EQ(domain.code, 0u);
    EXPECT_EQ(utf8(domain->name), "");
    EXPECT_EQ(value(domain->orgId), 0u);
    EXPECT_EQ(stored("3"), (Row{"", "0", "0"}));
    EXPECT_EQ(column("typeof(DomainsName)"), "text");
}

TEST_F(Domains, UpdateToAnUnknownLocaleStoresItAndReturnsNone)
{
    addEnglish();
    EXPECT_EQ(add(North), 0u);
    const auto domain = update(updateDomain, R"({"D":{"id":3,"locale_id":9}})");
    ASSERT_EQ(domain.code, 0u);
    EXPECT_EQ(domain->locale, nullptr);
    EXPECT_EQ(column("DomainsLocaleId"), "9");
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Locales"), 1);
}

TEST_F(Domains, UpdateReadsNumbersAsAddDoes)
{
    const auto domain = update(updateDomain, R"({"D":{"id":4294967299.5,"org_id":-1,"locale_id":5000000000}})");
    ASSERT_EQ(domain.code, 0u);
    EXPECT_EQ(domain->id, 3u);
    EXPECT_EQ(value(domain->orgId), 4294967295u);
    EXPECT_EQ(stored("3"), (Row{{}, "4294967295", "705032704"}));
}

TEST_F(Domains, UpdateLeavesOtherRowsAlone)
{
    EXPECT_EQ(add(std::string(North) + R"(,{"id":4,"name":"South"})"), 0u);
    ASSERT_EQ(update(updateDomain, R"({"D":{"id":4,"org_id":5}})").code, 0u);
    EXPECT_EQ(stored("3"), north);
    EXPECT_EQ(stored("4"), (Row{"South", "5", {}}));
}

TEST_F(Domains, UpdateKeepsTheRowAndAddReplacesIt)
{
    EXPECT_EQ(add(std::string(North) + R"(,{"id":4})"), 0u);
    const std::string rowOfNorth = "SELECT rowid FROM Domains WHERE DomainsId = 3";
    const int64_t before = file.number(rowOfNorth);
    ASSERT_EQ(update(updateDomain, R"({"D":{"id":3,"name":"x"}})").code, 0u);
    EXPECT_EQ(file.number(rowOfNorth), before);
    EXPECT_EQ(add(North), 0u);
    EXPECT_NE(file.number(rowOfNorth), before);
}

TEST_F(Domains, UpdateTouchesOnlyTheColumnsSent)
{
    EXPECT_EQ(add(North), 0u);
    foreign("CREATE TRIGGER Fixed BEFORE UPDATE OF DomainsOrgId, DomainsLocaleId ON Domains"
            " BEGIN SELECT RAISE(ABORT, 'refused'); END");
    EXPECT_EQ(update(updateDomain, R"({"D":{"id":3,"name":"x"}})").code, 0u);
    EXPECT_EQ(update(updateDomain, R"({"D":{"id":3,"name":"y","org_id":2}})").code, 9u);
    EXPECT_EQ(update(updateDomain, R"({"D":{"id":3,"name":"y","locale_id":1}})").code, 9u);
    EXPECT_EQ(stored("3"), (Row{"x", "2", "1"}));
}

TEST_F(Domains, UpdateAssignsTheIdToItself)
{
    EXPECT_EQ(add(North), 0u);
    foreign("CREATE TRIGGER Fixed BEFORE UPDATE OF DomainsId ON Domains BEGIN SELECT RAISE(ABORT, 'refused'); END");
    EXPECT_EQ(update(updateDomain, R"({"D":{"id":3}})").code, 9u);
}

TEST_F(Domains, UpdateReturnsWhatTheStoreHoldsAndNotWhatWasSent)
{
    foreign("CREATE TRIGGER Rename AFTER INSERT ON Domains BEGIN UPDATE Domains SET DomainsName = 'stored'"
            " WHERE DomainsId = NEW.DomainsId; END");
    const auto domain = update(updateDomain, R"({"D":{"id":3,"name":"sent"}})");
    ASSERT_EQ(domain.code, 0u);
    EXPECT_EQ(utf8(domain->name), "stored");
}

TEST_F(Domains, UpdateReturns8WhenTheRowIsGoneAndStaysCommitted)
{
    foreign("CREATE TRIGGER Gone AFTER INSERT ON Domains BEGIN DELETE FROM Domains WHERE DomainsId = NEW.DomainsId;"
            " INSERT INTO Locales(LocalesId) VALUES (99); END");
    const DebugLines lines;
    const auto domain = update(updateDomain, one(North));
    EXPECT_EQ(domain.code, 8u);
    EXPECT_EQ(domain.record, nullptr);
    EXPECT_EQ(lines.all(), std::vector<std::string>());
    EXPECT_EQ(file.number("SELECT LocalesId FROM Locales"), 99);
}

TEST_F(Domains, UpdateLogsNothingWhenItWorks)
{
    const DebugLines lines;
    EXPECT_EQ(update(updateDomain, one(North)).code, 0u);
    EXPECT_EQ(lines.all(), std::vector<std::string>());
}

// ---- Deleting ----

TEST_F(Domains, DeleteRemovesTheOneRow)
{
    EXPECT_EQ(add(std::string(North) + R"(,{"id":4})"), 0u);
    const DebugLines lines;
    EXPECT_EQ(send(deleteDomain, R"({"D":{"domain_id":3}})"), 0u);
    EXPECT_EQ(column("DomainsId"), "4");
    EXPECT_EQ(get(getDomain, 3).code, 8u);
    EXPECT_EQ(lines.all(), std::vector<std::string>());
}

TEST_F(Domains, DeleteTakesTheOtherKeyThanAddAndUpdate)
{
    EXPECT_EQ(add(North), 0u);
    EXPECT_EQ(send(deleteDomain, R"({"D":{"id":3}})"), 5u);
    EXPECT_EQ(count(), 1);
    EXPECT_EQ(send(deleteDomain, R"({"D":{"domain_id":3,"id":4}})"), 0u);
    EXPECT_EQ(count(), 0);
    EXPECT_EQ(add(R"({"domain_id":3})"), 5u);
    EXPECT_EQ(update(updateDomain, R"({"D":{"domain_id":3}})").code, 5u);
    EXPECT_EQ(count(), 0);
}

TEST_F(Domains, DeleteReturns8ForAnUnknownIdAndLogsNothing)
{
    EXPECT_EQ(add(North), 0u);
    refuse("DELETE", "Domains");
    const DebugLines lines;
    EXPECT_EQ(send(deleteDomain, R"({"D":{"domain_id":4}})"), 8u);
    EXPECT_EQ(lines.all(), std::vector<std::string>());
    EXPECT_EQ(count(), 1);
}

TEST_F(Domains, DeleteReadsAnIdOfAWrongTypeAs0)
{
    for (const char *wrong : {R"("3")", "true", "null", "[3]", R"({"id":3})"}) {
        SCOPED_TRACE(wrong);
        const std::string json = R"({"D":{"domain_id":)" + std::string(wrong) + "}}";
        EXPECT_EQ(add(R"({"id":3})"), 0u);
        EXPECT_EQ(send(deleteDomain, json), 8u);
        EXPECT_EQ(add(R"({"id":0})"), 0u);
        EXPECT_EQ(send(deleteDomain, json), 0u);
        EXPECT_EQ(column("DomainsId"), "3");
    }
}

TEST_F(Domains, DeleteLeavesTheLocale)
{
    addEnglish();
    EXPECT_EQ(add(North), 0u);
    EXPECT_EQ(send(deleteDomain, R"({"D":{"domain_id":3}})"), 0u);
    EXPECT_EQ(get(getLocale, 1).code, 0u);
}

TEST_F(Domains, DeleteLeavesUsersDevicesAndSitesWithTheirDomainId)
{
    EXPECT_EQ(add(North), 0u);
    EXPECT_EQ(send(addUsers, batch(R"({"id":7,"domain":3})")), 0u);
    EXPECT_EQ(send(addDevices, batch(R"({"id":10,"domain":3})")), 0u);
    EXPECT_EQ(send(addSites, batch(R"({"id":20,"domain":3})")), 0u);
    const auto before = get(getUser, 7);
    ASSERT_EQ(before.code, 0u);
    ASSERT_NE(before->domain, nullptr);
    EXPECT_EQ(utf8(before->domain->name), "North");

    EXPECT_EQ(send(deleteDomain, R"({"D":{"domain_id":3}})"), 0u);
    const auto user = get(getUser, 7);
    ASSERT_EQ(user.code, 0u);
    EXPECT_EQ(value(user->domainId), 3u);
    EXPECT_EQ(user->domain, nullptr);
    const auto device = get(getDevice, 10);
    ASSERT_EQ(device.code, 0u);
    EXPECT_EQ(value(device->domainId), 3u);
    EXPECT_EQ(device->domain, nullptr);
    const auto site = get(getSite, 20);
    ASSERT_EQ(site.code, 0u);
    EXPECT_EQ(value(site->domainId), 3u);
    EXPECT_EQ(site->domain, nullptr);
}

TEST_F(Domains, ARemovedOrganizationLeavesItsDomains)
{
    EXPECT_EQ(send(addOrganizations, batch(R"({"org_id":2})")), 0u);
    EXPECT_EQ(add(North), 0u);
    EXPECT_EQ(send(deleteOrganization, R"({"D":{"org_id":2}})"), 0u);
    EXPECT_EQ(stored("3"), north);
}

// ---- Failing statements ----

TEST_F(Domains, AFailedAddReturns9AndLogsFourLines)
{
    refuse("INSERT", "Domains");
    const DebugLines lines;
    EXPECT_EQ(add(North), 9u);
    ASSERT_TRUE(isBatchFailure(lines.all(), "add domains error"));
    EXPECT_NE(lines.all()[1].find("refused"), std::string::npos);
}

TEST_F(Domains, AFailedAddWithoutItsTableLogsFourLines)
{
    foreign("DROP TABLE Domains");
    const DebugLines lines;
    EXPECT_EQ(add(North), 9u);
    EXPECT_TRUE(isBatchFailure(lines.all(), "add domains error"));
}

TEST_F(Domains, AddNeedsEveryColumnOfItsTable)
{
    for (const char *name : {"DomainsId", "DomainsName", "DomainsOrgId", "DomainsLocaleId"}) {
        SCOPED_TRACE(name);
        foreign("ALTER TABLE Domains RENAME COLUMN " + std::string(name) + " TO Renamed");
        EXPECT_EQ(add(R"({"id":3})"), 9u);
        foreign("ALTER TABLE Domains RENAME COLUMN Renamed TO " + std::string(name));
    }
    EXPECT_EQ(add(R"({"id":3})"), 0u);
}

TEST_F(Domains, AFailedAddLeavesNothingOfTheBatch)
{
    EXPECT_EQ(add(North), 0u);
    foreign("CREATE TRIGGER Third BEFORE INSERT ON Domains WHEN NEW.DomainsId = 9"
            " BEGIN SELECT RAISE(ABORT, 'refused'); END");
    EXPECT_EQ(add(R"({"id":3,"name":"x"},{"id":8},{"id":9},{"id":10})"), 9u);
    EXPECT_EQ(count(), 1);
    EXPECT_EQ(stored("3"), north);
}

TEST_F(Domains, AFailedUpdateReturns9AndLogsFourLines)
{
    EXPECT_EQ(add(North), 0u);
    refuse("UPDATE", "Domains");
    const DebugLines lines;
    const auto domain = update(updateDomain, R"({"D":{"id":3,"name":"x"}})");
    EXPECT_EQ(domain.code, 9u);
    EXPECT_EQ(domain.record, nullptr);
    EXPECT_TRUE(isFailure(lines.all(), "add or update domain error"));
    EXPECT_EQ(stored("3"), north);
}

TEST_F(Domains, AFailedUpdateOfANewIdReturns9AndLogsFourLines)
{
    refuse("INSERT", "Domains");
    const DebugLines lines;
    EXPECT_EQ(update(updateDomain, one(North)).code, 9u);
    EXPECT_TRUE(isFailure(lines.all(), "add or update domain error"));
    EXPECT_EQ(count(), 0);
}

TEST_F(Domains, AFailedUpdateWithoutItsTableLogsFourLines)
{
    foreign("DROP TABLE Domains");
    const DebugLines lines;
    EXPECT_EQ(update(updateDomain, one(North)).code, 9u);
    EXPECT_TRUE(isFailure(lines.all(), "add or update domain error"));
}

TEST_F(Domains, AFailedReadBackUndoesTheUpdate)
{
    EXPECT_EQ(add(North), 0u);
    foreign("ALTER TABLE Locales RENAME TO Renamed");
    const DebugLines lines;
    const auto domain = update(updateDomain, R"({"D":{"id":3,"name":"x"}})");
    EXPECT_EQ(domain.code, 9u);
    EXPECT_EQ(domain.record, nullptr);
    EXPECT_TRUE(isFailure(lines.all(), "get domain error"));
    EXPECT_EQ(update(updateDomain, R"({"D":{"id":4}})").code, 9u);
    EXPECT_EQ(count(), 1);
    EXPECT_EQ(stored("3"), north);
}

TEST_F(Domains, AFailedGetReturns7AndLogsFourLines)
{
    EXPECT_EQ(add(North), 0u);
    for (const char *table : {"Domains", "Locales"}) {
        SCOPED_TRACE(table);
        foreign("ALTER TABLE " + std::string(table) + " RENAME TO Renamed");
        const DebugLines lines;
        FlatDomain *domain = nullptr;
        EXPECT_EQ(getDomain(&domain, 3), 7u);
        EXPECT_EQ(domain, nullptr);
        EXPECT_TRUE(isFailure(lines.all(), "get domain error"));
        foreign("ALTER TABLE Renamed RENAME TO " + std::string(table));
    }
    EXPECT_EQ(get(getDomain, 3).code, 0u);
}

TEST_F(Domains, AFailedListReturns7AndLogsFourLines)
{
    EXPECT_EQ(add(North), 0u);
    for (const char *table : {"Domains", "Locales"}) {
        SCOPED_TRACE(table);
        foreign("ALTER TABLE " + std::string(table) + " RENAME TO Renamed");
        const DebugLines lines;
        FlatDomain *domains = nullptr;
        uint32_t count = 77;
        EXPECT_EQ(getDomains(&domains, &count), 7u);
        EXPECT_EQ(domains, nullptr);
        EXPECT_EQ(count, 77u);
        EXPECT_TRUE(isFailure(lines.all(), "get domains error"));
        foreign("ALTER TABLE Renamed RENAME TO " + std::string(table));
    }
    EXPECT_EQ(list(getDomains).code, 0u);
}

TEST_F(Domains, AFailedQueryByAFieldReturns7AndLogsFourLines)
{
    EXPECT_EQ(add(North), 0u);
    for (const char *table : {"Domains", "Locales"}) {
        SCOPED_TRACE(table);
        foreign("ALTER TABLE " + std::string(table) + " RENAME TO Renamed");
        const DebugLines lines;
        FlatDomain *domains = nullptr;
        uint32_t count = 77;
        EXPECT_EQ(find(getDomainsWithParams, &domains, &count, "name", "North"), 7u);
        EXPECT_EQ(domains, nullptr);
        EXPECT_EQ(count, 77u);
        EXPECT_TRUE(isFailure(lines.all(), "get domains by field error"));
        foreign("ALTER TABLE Renamed RENAME TO " + std::string(table));
    }
    EXPECT_EQ(listBy(getDomainsWithParams, "name", "North").code, 0u);
}

TEST_F(Domains, AnUnknownKeyReturns10BeforeTheStoreIsTouched)
{
    foreign("DROP TABLE Domains");
    const DebugLines lines;
    EXPECT_EQ(listBy(getDomainsWithParams, "domain_id", "3").code, 10u);
    EXPECT_EQ(lines.all(), std::vector<std::string>());
    EXPECT_EQ(listBy(getDomainsWithParams, "id", "3").code, 7u);
}

TEST_F(Domains, ADeleteThatCannotReadReturns7AndDeletesNothing)
{
    EXPECT_EQ(add(North), 0u);
    foreign("ALTER TABLE Locales RENAME TO Renamed");
    const DebugLines lines;
    EXPECT_EQ(send(deleteDomain, R"({"D":{"domain_id":3}})"), 7u);
    EXPECT_TRUE(isFailure(lines.all(), "get domain error"));
    EXPECT_EQ(stored("3"), north);
}

TEST_F(Domains, AFailedDeleteReturns9AndLogsFourLines)
{
    EXPECT_EQ(add(North), 0u);
    refuse("DELETE", "Domains");
    const DebugLines lines;
    EXPECT_EQ(send(deleteDomain, R"({"D":{"domain_id":3}})"), 9u);
    EXPECT_TRUE(isFailure(lines.all(), "delete domain error"));
    EXPECT_EQ(stored("3"), north);
}

TEST_F(Domains, FailedCallsLeaveNoTransactionOpen)
{
    EXPECT_EQ(add(North), 0u);
    refuse("INSERT", "Domains");
    refuse("DELETE", "Domains");
    const std::vector<std::function<uint32_t()>> calls{
        [this] { return add(R"({"id":4})"); },
        [] { return update(updateDomain, R"({"D":{"id":4}})").code; },
        [] { return send(deleteDomain, R"({"D":{"domain_id":3}})"); },
    };
    for (size_t call = 0; call < calls.size(); ++call) {
        SCOPED_TRACE(call);
        EXPECT_EQ(calls[call](), 9u);
        EXPECT_NO_THROW(file.execute("UPDATE Domains SET DomainsOrgId = " + std::to_string(call)));
        EXPECT_EQ(column("DomainsOrgId"), std::to_string(call));
    }
}

TEST_F(Domains, AFailedReadBackLeavesNoTransactionOpen)
{
    foreign("ALTER TABLE Locales RENAME TO Renamed");
    EXPECT_EQ(update(updateDomain, one(North)).code, 9u);
    EXPECT_NO_THROW(file.execute("INSERT INTO Domains(DomainsId) VALUES (5)"));
    EXPECT_EQ(column("DomainsId"), "5");
}

// ---- Guards ----

TEST_F(Domains, ATargetThatIsNotNullReturns10BeforeAnythingElse)
{
    foreign("DROP TABLE Domains");
    const DebugLines lines;
    FlatDomain occupied{};
    FlatDomain *target = &occupied;
    uint32_t count = 77;
    EXPECT_EQ(getDomain(&target, 3), 10u);
    EXPECT_EQ(getDomains(&target, &count), 10u);
    EXPECT_EQ(find(getDomainsWithParams, &target, &count, "name", "North"), 10u);
    EXPECT_EQ(find(getDomainsWithParams, &target, &count, "domain_id", "3"), 10u);
    EXPECT_EQ(send(updateDomain, &target, one(North)), 10u);
    EXPECT_EQ(send(updateDomain, &target, "{}"), 10u);
    EXPECT_EQ(target, &occupied);
    EXPECT_EQ(count, 77u);
    EXPECT_EQ(lines.all(), std::vector<std::string>());
}

TEST_F(Domains, AnUpdateIntoATargetThatIsNotNullWritesNothing)
{
    EXPECT_EQ(add(North), 0u);
    FlatDomain occupied{};
    FlatDomain *target = &occupied;
    EXPECT_EQ(send(updateDomain, &target, R"({"D":{"id":3,"name":"x"}})"), 10u);
    EXPECT_EQ(send(updateDomain, &target, R"({"D":{"id":4}})"), 10u);
    EXPECT_EQ(count(), 1);
    EXPECT_EQ(stored("3"), north);
}

TEST_F(Domains, GuardsAndReadersWorkWithoutALaunchedLibrary)
{
    library.reset();
    FlatDomain occupied{};
    FlatDomain *target = &occupied;
    uint32_t count = 77;
    EXPECT_EQ(getDomain(&target, 3), 10u);
    EXPECT_EQ(getDomains(&target, &count), 10u);
    EXPECT_EQ(find(getDomainsWithParams, &target, &count, "name", "North"), 10u);
    EXPECT_EQ(send(updateDomain, &target, one(North)), 10u);
    EXPECT_EQ(send(addDomains, "not json"), 10u);
    EXPECT_EQ(send(addDomains, "{}"), 5u);
    EXPECT_EQ(send(deleteDomain, R"({"D":{"id":3}})"), 5u);
}

// ---- Freeing ----

uint16_t *text()
{
    uint16_t *made = zeroed<uint16_t>(100);
    made[0] = u'x';
    return made;
}

// A record as a client gets it, every field present.
FlatDomain filled()
{
    return {3, text(), block(2u), block(FlatLocale{1, text(), text()})};
}

TEST_F(Domains, FreeReturns10ForNothing)
{
    EXPECT_EQ(freeDomain(nullptr), 10u);
    EXPECT_EQ(freeDomainsArray(nullptr, 0), 10u);
    EXPECT_EQ(freeDomainsArray(nullptr, 3), 10u);
}

TEST_F(Domains, FreeOfAnArrayWithoutACountReturns10AndFreesNothing)
{
    addEnglish();
    EXPECT_EQ(add(North), 0u);
    const auto domains = list(getDomains);
    ASSERT_EQ(domains.code, 0u);
    EXPECT_EQ(freeDomainsArray(&domains[0], 0), 10u);
    EXPECT_EQ(domains[0].id, 3u);
    EXPECT_EQ(utf8(domains[0].name), "North");
    ASSERT_NE(domains[0].locale, nullptr);
    EXPECT_EQ(utf8(domains[0].locale->iso), "en");
}

TEST_F(Domains, FreeTakesRecordsWithAndWithoutTheirParts)
{
    EXPECT_EQ(freeDomain(block(filled())), 0u);
    EXPECT_EQ(freeDomain(block(FlatDomain{})), 0u);
    EXPECT_EQ(freeDomain(block(FlatDomain{3, nullptr, nullptr, block(FlatLocale{})})), 0u);
}

TEST_F(Domains, RecordsOutliveTheLibrary)
{
    addEnglish();
    EXPECT_EQ(add(North), 0u);
    auto domain = get(getDomain, 3);
    auto domains = list(getDomains);
    library.reset();
    ASSERT_EQ(domain.code, 0u);
    EXPECT_EQ(utf8(domain->locale->iso), "en");
    EXPECT_EQ(freeDomain(domain.record.release()), 0u);
    ASSERT_EQ(domains.size(), 1u);
    EXPECT_EQ(utf8(domains[0].locale->iso), "en");
}

#ifdef __GLIBC__
TEST_F(Domains, FreeReleasesEveryBlockTheLocalesToo)
{
    const size_t before = mallinfo2().uordblks;
    for (int round = 0; round < 1000; ++round)
        EXPECT_EQ(freeDomain(block(filled())), 0u);
    // A block that is forgotten takes at least 32 bytes each time.
    EXPECT_LT(mallinfo2().uordblks, before + 16000);
}

TEST_F(Domains, FreeOfAnArrayReleasesEveryBlockOfEveryElement)
{
    const uint32_t length = 500;
    const size_t before = mallinfo2().uordblks;
    for (int round = 0; round < 2; ++round) {
        auto *domains = zeroed<FlatDomain>(length);
        for (uint32_t index = 0; index < length; ++index)
            domains[index] = filled();
        EXPECT_EQ(freeDomainsArray(domains, length), 0u);
    }
    EXPECT_LT(mallinfo2().uordblks, before + 16000);
}
#endif

} // namespace
