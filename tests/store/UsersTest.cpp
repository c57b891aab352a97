// Users through the exported functions: batches that replace, updates that keep absent members, deletes, reads with
// the joined domain and locale, queries by a field, and the store after each of them fails.
#include "Store.h"

#ifdef __GLIBC__
#include <malloc.h>
#endif

using namespace brimlet::test;

namespace {

// Every field, each with a different value.
const char *const Ann = R"({"id":7,"name":"Ann","login":"ann7","contacts":"room 5","active":1,"domain":3,"org":2,)"
                        R"("roles":4,"phone":79991234567})";

class Users : public StoreTest
{
protected:
    uint32_t add(const std::string &items) { return send(addUsers, batch(items)); }

    // A user's columns after the id, in the order of the table.
    Row stored(const std::string &id) const
    {
        const std::vector<Row> found =
            file.rows("SELECT UsersName, UsersLogin, UsersContacts, UsersIsActive, UsersDomainId, UsersOrgId,"
                      " UsersRoles, CAST(UsersPhone AS INTEGER) FROM Users WHERE UsersId = "
                      + id);
        return found.size() == 1 ? found[0] : Row{};
    }

    std::optional<std::string> column(const std::string &expression) const
    {
        return file.value("SELECT " + expression + " FROM Users");
    }

    int64_t count() const { return file.number("SELECT COUNT(*) FROM Users"); }

    const Row ann{"Ann", "ann7", "room 5", "1", "3", "2", "4", "79991234567"};
    const Row nothing = Row(8);
};

// ---- Adding ----

TEST_F(Users, AddStoresEveryFieldInItsColumn)
{
    EXPECT_EQ(add(Ann), 0u);
    EXPECT_EQ(count(), 1);
    EXPECT_EQ(stored("7"), ann);
}

TEST_F(Users, AddStoresTextsAsTextAndNumbersAsNumbers)
{
    EXPECT_EQ(add(Ann), 0u);
    EXPECT_EQ(
        file.rows("SELECT typeof(UsersId), typeof(UsersName), typeof(UsersLogin), typeof(UsersContacts),"
                  " typeof(UsersIsActive), typeof(UsersDomainId), typeof(UsersOrgId), typeof(UsersRoles),"
                  " typeof(UsersPhone) FROM Users"),
        (std::vector<Row>{{"integer", "text", "text", "text", "integer", "integer", "integer", "integer", "real"}}));
}

TEST_F(Users, AddOfAnIdAloneStoresNothingBeside)
{
    EXPECT_EQ(add(R"({"id":7})"), 0u);
    EXPECT_EQ(stored("7"), nothing);
}

TEST_F(Users, AddStoresEachAbsentFieldAsNull)
{
    EXPECT_EQ(add(R"({"id":1,"login":"a","active":0,"org":5,"phone":9},{"id":2,"name":"b","contacts":"c","domain":6,)"
                  R"("roles":7},{"id":3},{"id":4,"name":"d","phone":8})"),
              0u);
    EXPECT_EQ(stored("1"), (Row{{}, "a", {}, "0", {}, "5", {}, "9"}));
    EXPECT_EQ(stored("2"), (Row{"b", {}, "c", {}, "6", {}, "7", {}}));
    EXPECT_EQ(stored("3"), nothing);
    EXPECT_EQ(stored("4"), (Row{"d", {}, {}, {}, {}, {}, {}, "8"}));
}

TEST_F(Users, AddReplacesTheWholeRow)
{
    EXPECT_EQ(add(Ann), 0u);
    EXPECT_EQ(add(R"({"id":7,"name":"x"})"), 0u);
    EXPECT_EQ(count(), 1);
    EXPECT_EQ(stored("7"), (Row{"x", {}, {}, {}, {}, {}, {}, {}}));
}

TEST_F(Users, AddLeavesOtherRowsAlone)
{
    EXPECT_EQ(add(Ann), 0u);
    EXPECT_EQ(add(R"({"id":8,"name":"x"})"), 0u);
    EXPECT_EQ(count(), 2);
    EXPECT_EQ(stored("7"), ann);
}

TEST_F(Users, TheLaterOfTwoRecordsWithOneIdWinsWhole)
{
    EXPECT_EQ(add(std::string(Ann) + R"(,{"id":7,"login":"later"})"), 0u);
    EXPECT_EQ(count(), 1);
    EXPECT_EQ(stored("7"), (Row{{}, "later", {}, {}, {}, {}, {}, {}}));
}

TEST_F(Users, AddIgnoresMembersItDoesNotKnow)
{
    EXPECT_EQ(send(addUsers, R"({"x":1,"D":{"y":[],"items":[{"id":7,"op_id":9,"org_id":5,"Name":1,"email":null}]}})"),
              0u);
    EXPECT_EQ(count(), 1);
    EXPECT_EQ(stored("7"), nothing);
}

TEST_F(Users, AddLogsNothingWhenItWorks)
{
    const DebugLines lines;
    EXPECT_EQ(add(Ann), 0u);
    EXPECT_EQ(lines.all(), std::vector<std::string>());
}

// ---- Values ----

TEST_F(Users, EmptyTextsStayEmptyAndPresent)
{
    EXPECT_EQ(add(R"({"id":7,"name":"","login":"","contacts":""})"), 0u);
    EXPECT_EQ(file.rows("SELECT typeof(UsersName), UsersName, typeof(UsersLogin), UsersLogin, typeof(UsersContacts),"
                        " UsersContacts FROM Users"),
              (std::vector<Row>{{"text", "", "text", "", "text", ""}}));
    const auto user = get(getUser, 7);
    ASSERT_EQ(user.code, 0u);
    EXPECT_EQ(utf8(user->name), "");
    EXPECT_EQ(utf8(user->login), "");
    EXPECT_EQ(utf8(user->contacts), "");
}

TEST_F(Users, ZerosStayZeroAndPresent)
{
    EXPECT_EQ(add(R"({"id":0,"active":0,"domain":0,"org":0,"roles":0,"phone":0})"), 0u);
    EXPECT_EQ(stored("0"), (Row{{}, {}, {}, "0", "0", "0", "0", "0"}));
    const auto user = get(getUser, 0);
    ASSERT_EQ(user.code, 0u);
    EXPECT_EQ(user->id, 0u);
    EXPECT_EQ(value(user->isActive), 0u);
    EXPECT_EQ(value(user->domainId), 0u);
    EXPECT_EQ(value(user->orgId), 0u);
    EXPECT_EQ(value(user->roles), 0u);
    EXPECT_EQ(value(user->phone), 0u);
}

TEST_F(Users, TextsAreNeitherCutNorRead)
{
    const std::string longText(1000, 'n');
    EXPECT_EQ(add(R"({"id":7,"name":")" + longText + R"(","login":"O'Hara; --","contacts":"[{\"a\":1},\"é Ж 😀\"]"})"),
              0u);
    const auto user = get(getUser, 7);
    ASSERT_EQ(user.code, 0u);
    EXPECT_EQ(utf8(user->name), longText);
    EXPECT_EQ(utf8(user->login), "O'Hara; --");
    EXPECT_EQ(utf8(user->contacts), R"([{"a":1},"é Ж 😀"])");
    EXPECT_EQ(column("UsersContacts"), R"([{"a":1},"é Ж 😀"])");
}

TEST_F(Users, IdsDropTheFractionAndKeepTheLow32Bits)
{
    const std::vector<std::pair<const char *, const char *>> cases{
        {"1.9", "1"},        {"-0.5", "0"},        {"-1", "4294967295"},        {"4294967295", "4294967295"},
        {"4294967296", "0"}, {"-2", "4294967294"}, {"5000000000", "705032704"},
    };
    for (const auto &[written, id] : cases) {
        SCOPED_TRACE(written);
        foreign("DELETE FROM Users");
        EXPECT_EQ(add(R"({"id":)" + std::string(written) + "}"), 0u);
        EXPECT_EQ(column("UsersId"), id);
        EXPECT_EQ(get(getUser, std::stoul(id)).code, 0u);
    }
}

TEST_F(Users, NumbersDropTheFractionAndKeepTheLow32Bits)
{
    const std::vector<std::pair<const char *, const char *>> cases{
        {"3.9", "3"},        {"-0.5", "0"},   {"-1", "4294967295"},        {"4294967295", "4294967295"},
        {"4294967296", "0"}, {"1e3", "1000"}, {"5000000000", "705032704"},
    };
    for (const char *key : {"domain", "org", "roles"})
        for (const auto &[written, number] : cases) {
            SCOPED_TRACE(std::string(key) + " " + written);
            EXPECT_EQ(add(R"({"id":7,")" + std::string(key) + "\":" + written + "}"), 0u);
            EXPECT_EQ(column("COALESCE(UsersDomainId, UsersOrgId, UsersRoles)"), number);
        }
}

TEST_F(Users, NumbersUpToTheLast32BitValueComeBack)
{
    EXPECT_EQ(add(R"({"id":4294967295,"domain":4294967294,"org":4294967293,"roles":4294967292})"), 0u);
    const auto user = get(getUser, 4294967295u);
    ASSERT_EQ(user.code, 0u);
    EXPECT_EQ(user->id, 4294967295u);
    EXPECT_EQ(value(user->domainId), 4294967294u);
    EXPECT_EQ(value(user->orgId), 4294967293u);
    EXPECT_EQ(value(user->roles), 4294967292u);
}

TEST_F(Users, ActiveIsTrueForAWholeNumberOtherThanZeroOnly)
{
    const std::vector<std::pair<const char *, const char *>> cases{
        {"1", "1"},   {"2", "1"},   {"-1", "1"},         {"2147483647", "1"}, {"-2147483648", "1"}, {"0", "0"},
        {"0.5", "0"}, {"1.5", "0"}, {"2147483648", "0"}, {"4294967297", "0"}, {"true", "0"},        {"false", "0"},
    };
    for (const auto &[written, flag] : cases) {
        SCOPED_TRACE(written);
        EXPECT_EQ(add(R"({"id":7,"active":)" + std::string(written) + "}"), 0u);
        EXPECT_EQ(column("UsersIsActive"), flag);
        const auto user = get(getUser, 7);
        ASSERT_EQ(user.code, 0u);
        EXPECT_EQ(value(user->isActive), static_cast<uint8_t>(*flag - '0'));
    }
}

TEST_F(Users, PhonesAreReturnedAsExactlyAsADoubleStoresThem)
{
    const std::vector<std::pair<const char *, uint64_t>> cases{
        {"79991234567", 79991234567u},
        {"4294967296", 4294967296u},
        {"100.9", 100u},
        {"-0.5", 0u},
        {"9007199254740992", 9007199254740992u},
        {"9007199254740993", 9007199254740992u},
    };
    for (const auto &[written, phone] : cases) {
        SCOPED_TRACE(written);
        EXPECT_EQ(add(R"({"id":7,"phone":)" + std::string(written) + "}"), 0u);
        EXPECT_EQ(column("CAST(UsersPhone AS INTEGER)"), std::to_string(phone));
        const auto user = get(getUser, 7);
        ASSERT_EQ(user.code, 0u);
        EXPECT_EQ(value(user->phone), phone);
    }
}

TEST_F(Users, PhonesOfMoreThan63BitsAreStoredUnsigned)
{
    EXPECT_EQ(add(R"({"id":1,"phone":9223372036854775808},{"id":2,"phone":13835058055282163712},)"
                  R"({"id":3,"phone":-1})"),
              0u);
    EXPECT_EQ(file.number("SELECT UsersPhone = 9223372036854775808.0 FROM Users WHERE UsersId = 1"), 1);
    EXPECT_EQ(file.number("SELECT UsersPhone = 13835058055282163712.0 FROM Users WHERE UsersId = 2"), 1);
    EXPECT_EQ(file.number("SELECT UsersPhone = 18446744073709551615.0 FROM Users WHERE UsersId = 3"), 1);
}

// ---- Refused documents ----

struct Wrong
{
    const char *key;
    std::vector<const char *> values;
};

const std::vector<Wrong> WrongTypes{
    {"id", {"null", R"("7")", "true", "[7]", "{}"}},
    {"name", {"null", "1", "true", "[]", "{}"}},
    {"login", {"null", "1", "false", R"(["a"])", "{}"}},
    {"contacts", {"null", "0", "true", R"(["a","b"])", R"({"a":"b"})"}},
    {"active", {"null", R"("1")", R"("true")", "[]", "{}"}},
    {"domain", {"null", R"("3")", "true", "[3]", R"({"id":3})"}},
    {"org", {"null", R"("2")", "false", "[]", R"({"org_id":2})"}},
    {"roles", {"null", R"("4")", "true", "[4]", "{}"}},
    {"phone", {"null", R"("79991234567")", "true", "[]", "{}"}},
};

std::string withWrong(const char *key, const char *value)
{
    const std::string id = std::string(key) == "id" ? "" : R"("id":7,)";
    return "{" + id + "\"" + key + "\":" + value + "}";
}

TEST_F(Users, AddReturns5ForAWrongTypeUnderAnyKey)
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

TEST_F(Users, UpdateReturns5ForAWrongTypeUnderAnyKey)
{
    EXPECT_EQ(add(Ann), 0u);
    const DebugLines lines;
    for (const Wrong &wrong : WrongTypes)
        for (const char *value : wrong.values) {
            SCOPED_TRACE(std::string(wrong.key) + " " + value);
            const auto user = update(updateUser, one(withWrong(wrong.key, value)));
            EXPECT_EQ(user.code, 5u);
            EXPECT_EQ(user.record, nullptr);
        }
    EXPECT_EQ(stored("7"), ann);
    EXPECT_EQ(lines.all(), std::vector<std::string>());
}

TEST_F(Users, ABatchWithOneBadElementStoresNothing)
{
    for (const char *bad :
         {"5", "null", R"("x")", "[]", "{}", R"({"name":"x"})", R"({"op_id":9})", R"({"id":9,"name":null})"}) {
        SCOPED_TRACE(bad);
        EXPECT_EQ(add(std::string(Ann) + "," + bad + R"(,{"id":8})"), 5u);
        EXPECT_EQ(add(std::string(Ann) + R"(,{"id":8},)" + bad), 5u);
        EXPECT_EQ(count(), 0);
    }
}

TEST_F(Users, AddRefusesBrokenDocuments)
{
    const std::vector<std::pair<const char *, uint32_t>> cases{
        {"", 10},
        {"not json", 10},
        {R"([{"id":7}])", 10},
        {"7", 10},
        {R"("D")", 10},
        {R"({"D":{"items":[{"id":7}]})", 10},
        {R"({"D":{"items":[]}})", 10},
        {"{}", 5},
        {R"({"items":[{"id":7}]})", 5},
        {R"({"d":{"items":[{"id":7}]}})", 5},
        {R"({"D":[{"id":7}]})", 5},
        {R"({"D":null})", 5},
        {R"({"D":{}})", 5},
        {R"({"D":{"id":7}})", 5},
        {R"({"D":{"items":{"id":7}}})", 5},
        {R"({"D":{"items":null}})", 5},
    };
    for (const auto &[json, code] : cases) {
        SCOPED_TRACE(json);
        EXPECT_EQ(send(addUsers, json), code);
    }
    EXPECT_EQ(count(), 0);
}

TEST_F(Users, UpdateRefusesBrokenDocuments)
{
    const std::vector<std::pair<const char *, uint32_t>> cases{
        {"", 10},
        {"not json", 10},
        {R"([{"id":7}])", 10},
        {R"({"D":{"id":7})", 10},
        {"{}", 5},
        {R"({"id":7})", 5},
        {R"({"D":[{"id":7}]})", 5},
        {R"({"D":7})", 5},
        {R"({"D":{}})", 5},
        {R"({"D":{"op_id":7}})", 5},
        {R"({"D":{"name":"x"}})", 5},
        {R"({"D":{"items":[{"id":7}]}})", 5},
    };
    for (const auto &[json, code] : cases) {
        SCOPED_TRACE(json);
        const auto user = update(updateUser, json);
        EXPECT_EQ(user.code, code);
        EXPECT_EQ(user.record, nullptr);
    }
    EXPECT_EQ(count(), 0);
}

TEST_F(Users, DeleteRefusesBrokenDocuments)
{
    EXPECT_EQ(add(R"({"id":0},{"id":7})"), 0u);
    const std::vector<std::pair<const char *, uint32_t>> cases{
        {"", 10},
        {"not json", 10},
        {"[7]", 10},
        {"{}", 5},
        {R"({"op_id":7})", 5},
        {R"({"D":[]})", 5},
        {R"({"D":7})", 5},
        {R"({"D":{}})", 5},
        {R"({"D":{"id":7}})", 5},
        {R"({"D":{"OP_ID":7}})", 5},
        {R"({"D":{"items":[{"op_id":7}]}})", 5},
    };
    for (const auto &[json, code] : cases) {
        SCOPED_TRACE(json);
        EXPECT_EQ(send(deleteUser, json), code);
    }
    EXPECT_EQ(count(), 2);
}

TEST_F(Users, ANullTextReturns10)
{
    FlatUser *user = nullptr;
    EXPECT_EQ(addUsers(nullptr, 0), 10u);
    EXPECT_EQ(updateUser(&user, nullptr, 0), 10u);
    EXPECT_EQ(deleteUser(nullptr, 0), 10u);
    EXPECT_EQ(user, nullptr);
}

TEST_F(Users, ATextEndsAtItsLength)
{
    const std::u16string text = utf16(R"({"D":{"items":[{"id":7}]}}, and more)");
    EXPECT_EQ(addUsers(reinterpret_cast<const uint16_t *>(text.data()), 26), 0u);
    EXPECT_EQ(addUsers(reinterpret_cast<const uint16_t *>(text.data()), 27), 10u);
    EXPECT_EQ(count(), 1);
}

// ---- Reading ----

TEST_F(Users, GetReturnsEveryField)
{
    EXPECT_EQ(send(addLocales, batch(R"({"id":1,"iso":"en","description":"English"})")), 0u);
    EXPECT_EQ(send(addDomains, batch(R"({"id":3,"name":"North","org_id":6,"locale_id":1})")), 0u);
    EXPECT_EQ(add(Ann), 0u);
    const auto user = get(getUser, 7);
    ASSERT_EQ(user.code, 0u);
    EXPECT_EQ(user->id, 7u);
    EXPECT_EQ(utf8(user->name), "Ann");
    EXPECT_EQ(utf8(user->login), "ann7");
    EXPECT_EQ(utf8(user->contacts), "room 5");
    EXPECT_EQ(value(user->isActive), 1u);
    EXPECT_EQ(value(user->domainId), 3u);
    EXPECT_EQ(value(user->roles), 4u);
    EXPECT_EQ(value(user->phone), 79991234567u);
    EXPECT_EQ(value(user->orgId), 2u);
    ASSERT_NE(user->domain, nullptr);
    EXPECT_EQ(user->domain->id, 3u);
    EXPECT_EQ(utf8(user->domain->name), "North");
    EXPECT_EQ(value(user->domain->orgId), 6u);
    ASSERT_NE(user->domain->locale, nullptr);
    EXPECT_EQ(user->domain->locale->id, 1u);
    EXPECT_EQ(utf8(user->domain->locale->iso), "en");
    EXPECT_EQ(utf8(user->domain->locale->description), "English");
}

TEST_F(Users, GetReturnsNullForEveryAbsentField)
{
    EXPECT_EQ(add(R"({"id":7})"), 0u);
    const auto user = get(getUser, 7);
    ASSERT_EQ(user.code, 0u);
    EXPECT_EQ(user->id, 7u);
    EXPECT_EQ(user->name, nullptr);
    EXPECT_EQ(user->login, nullptr);
    EXPECT_EQ(user->contacts, nullptr);
    EXPECT_EQ(user->isActive, nullptr);
    EXPECT_EQ(user->domainId, nullptr);
    EXPECT_EQ(user->roles, nullptr);
    EXPECT_EQ(user->phone, nullptr);
    EXPECT_EQ(user->domain, nullptr);
    EXPECT_EQ(user->orgId, nullptr);
}

TEST_F(Users, GetReturns8ForAnUnknownIdAndLogsNothing)
{
    EXPECT_EQ(add(Ann), 0u);
    const DebugLines lines;
    FlatUser *user = nullptr;
    EXPECT_EQ(getUser(&user, 8), 8u);
    EXPECT_EQ(user, nullptr);
    EXPECT_EQ(lines.all(), std::vector<std::string>());
}

TEST_F(Users, AnUnknownDomainLeavesItsIdAndNoDomainUntilItIsAdded)
{
    EXPECT_EQ(add(R"({"id":7,"domain":3})"), 0u);
    const auto before = get(getUser, 7);
    ASSERT_EQ(before.code, 0u);
    EXPECT_EQ(value(before->domainId), 3u);
    EXPECT_EQ(before->domain, nullptr);

    EXPECT_EQ(send(addDomains, batch(R"({"id":3,"name":"North","locale_id":1})")), 0u);
    const auto withDomain = get(getUser, 7);
    ASSERT_EQ(withDomain.code, 0u);
    EXPECT_EQ(value(withDomain->domainId), 3u);
    ASSERT_NE(withDomain->domain, nullptr);
    EXPECT_EQ(withDomain->domain->id, 3u);
    EXPECT_EQ(utf8(withDomain->domain->name), "North");
    EXPECT_EQ(withDomain->domain->locale, nullptr);

    EXPECT_EQ(send(addLocales, batch(R"({"id":1,"iso":"en"})")), 0u);
    const auto withLocale = get(getUser, 7);
    ASSERT_EQ(withLocale.code, 0u);
    ASSERT_NE(withLocale->domain, nullptr);
    ASSERT_NE(withLocale->domain->locale, nullptr);
    EXPECT_EQ(withLocale->domain->locale->id, 1u);
    EXPECT_EQ(utf8(withLocale->domain->locale->iso), "en");
    EXPECT_EQ(withLocale->domain->locale->description, nullptr);
}

TEST_F(Users, ADomainOfNothingButAnIdIsStillADomain)
{
    EXPECT_EQ(send(addDomains, batch(R"({"id":0})")), 0u);
    EXPECT_EQ(add(R"({"id":7,"domain":0})"), 0u);
    const auto user = get(getUser, 7);
    ASSERT_EQ(user.code, 0u);
    ASSERT_NE(user->domain, nullptr);
    EXPECT_EQ(user->domain->id, 0u);
    EXPECT_EQ(user->domain->name, nullptr);
    EXPECT_EQ(user->domain->orgId, nullptr);
    EXPECT_EQ(user->domain->locale, nullptr);
}

TEST_F(Users, AUserWithoutADomainIdHasNoDomain)
{
    EXPECT_EQ(send(addDomains, batch(R"({"id":0,"name":"zero"})")), 0u);
    foreign("INSERT INTO Domains(DomainsId, DomainsName) VALUES (NULL, 'none')");
    EXPECT_EQ(add(R"({"id":7})"), 0u);
    const auto user = get(getUser, 7);
    ASSERT_EQ(user.code, 0u);
    EXPECT_EQ(user->domain, nullptr);
}

TEST_F(Users, EachUserOfAnArrayHasItsOwnDomain)
{
    EXPECT_EQ(send(addLocales, batch(R"({"id":1,"iso":"en"},{"id":2,"iso":"de"})")), 0u);
    EXPECT_EQ(send(addDomains, batch(R"({"id":3,"name":"North","locale_id":1},{"id":4,"org_id":5})")), 0u);
    EXPECT_EQ(add(R"({"id":1,"name":"a","domain":3},{"id":2,"domain":4},{"id":3,"name":"c"},{"id":4,"domain":9})"), 0u);
    const auto users = list(getUsers);
    ASSERT_EQ(users.code, 0u);
    ASSERT_EQ(users.size(), 4u);
    ASSERT_NE(users.withId(1), nullptr);
    ASSERT_NE(users.withId(1)->domain, nullptr);
    EXPECT_EQ(utf8(users.withId(1)->name), "a");
    EXPECT_EQ(utf8(users.withId(1)->domain->name), "North");
    ASSERT_NE(users.withId(1)->domain->locale, nullptr);
    EXPECT_EQ(utf8(users.withId(1)->domain->locale->iso), "en");
    ASSERT_NE(users.withId(2), nullptr);
    ASSERT_NE(users.withId(2)->domain, nullptr);
    EXPECT_EQ(users.withId(2)->name, nullptr);
    EXPECT_EQ(users.withId(2)->domain->name, nullptr);
    EXPECT_EQ(value(users.withId(2)->domain->orgId), 5u);
    EXPECT_EQ(users.withId(2)->domain->locale, nullptr);
    ASSERT_NE(users.withId(3), nullptr);
    EXPECT_EQ(users.withId(3)->domainId, nullptr);
    EXPECT_EQ(users.withId(3)->domain, nullptr);
    ASSERT_NE(users.withId(4), nullptr);
    EXPECT_EQ(value(users.withId(4)->domainId), 9u);
    EXPECT_EQ(users.withId(4)->domain, nullptr);
}

TEST_F(Users, ListOfAnEmptyTableReturns8AndLeavesTheOutputs)
{
    const DebugLines lines;
    FlatUser *users = nullptr;
    uint32_t count = 77;
    EXPECT_EQ(getUsers(&users, &count), 8u);
    EXPECT_EQ(users, nullptr);
    EXPECT_EQ(count, 77u);
    EXPECT_EQ(lines.all(), std::vector<std::string>());
}

TEST_F(Users, ARowWithoutAnIdIsListedUnder0)
{
    foreign("INSERT INTO Users(UsersId, UsersName) VALUES (NULL, 'nobody')");
    const auto users = list(getUsers);
    ASSERT_EQ(users.code, 0u);
    ASSERT_EQ(users.size(), 1u);
    EXPECT_EQ(users[0].id, 0u);
    EXPECT_EQ(utf8(users[0].name), "nobody");
}

TEST_F(Users, AnyNumberOtherThanZeroReadsAsActive)
{
    EXPECT_EQ(add(R"({"id":7})"), 0u);
    foreign("UPDATE Users SET UsersIsActive = 5");
    const auto user = get(getUser, 7);
    ASSERT_EQ(user.code, 0u);
    EXPECT_EQ(value(user->isActive), 1u);
}

TEST_F(Users, UsersOutliveARelaunch)
{
    EXPECT_EQ(add(Ann), 0u);
    relaunch();
    const auto user = get(getUser, 7);
    ASSERT_EQ(user.code, 0u);
    EXPECT_EQ(utf8(user->name), "Ann");
    EXPECT_EQ(stored("7"), ann);
}

// ---- By a field ----

TEST_F(Users, EveryKeyFindsByItsOwnColumn)
{
    EXPECT_EQ(add(std::string(Ann)
                  + R"(,{"id":1,"name":"n","login":"l","contacts":"c","active":0,"domain":7,"org":7,"roles":7,)"
                    R"("phone":7},{"id":2})"),
              0u);
    const std::vector<std::pair<const char *, const char *>> cases{
        {"id", "7"},     {"name", "Ann"}, {"login", "ann7"}, {"contacts", "room 5"},   {"active", "1"},
        {"domain", "3"}, {"org", "2"},    {"roles", "4"},    {"phone", "79991234567"},
    };
    for (const auto &[key, wanted] : cases) {
        SCOPED_TRACE(key);
        const auto users = listBy(getUsersWithParams, key, wanted);
        EXPECT_EQ(users.code, 0u);
        ASSERT_EQ(users.size(), 1u);
        EXPECT_EQ(users[0].id, 7u);
        EXPECT_EQ(utf8(users[0].login), "ann7");
    }
}

TEST_F(Users, EveryKeyReturns8ForAValueThatNoRowHas)
{
    EXPECT_EQ(add(std::string(Ann) + R"(,{"id":8})"), 0u);
    const DebugLines lines;
    for (const char *key : {"id", "name", "login", "contacts", "active", "domain", "org", "roles", "phone"})
        for (const char *wanted : {"99", ""}) {
            SCOPED_TRACE(std::string(key) + " " + wanted);
            const auto users = listBy(getUsersWithParams, key, wanted);
            EXPECT_EQ(users.code, 8u);
            EXPECT_TRUE(users.isNull());
        }
    EXPECT_EQ(lines.all(), std::vector<std::string>());
}

TEST_F(Users, AnyOtherKeyReturns10)
{
    EXPECT_EQ(add(Ann), 0u);
    const DebugLines lines;
    for (const char *key : {"op_id", "domain_id", "org_id", "operator_id", "user_id", "is_active", "phones", "ID",
                            "Name", "name ", "UsersId", "UsersName", "items", ""}) {
        SCOPED_TRACE(key);
        FlatUser *users = nullptr;
        uint32_t count = 77;
        EXPECT_EQ(find(getUsersWithParams, &users, &count, key, "7"), 10u);
        EXPECT_EQ(users, nullptr);
        EXPECT_EQ(count, 77u);
    }
    EXPECT_EQ(lines.all(), std::vector<std::string>());
}

TEST_F(Users, AllRowsWithTheValueAreFound)
{
    EXPECT_EQ(add(R"({"id":1,"roles":4,"name":"a"},{"id":2,"roles":5},{"id":3,"roles":4},{"id":4})"), 0u);
    const auto users = listBy(getUsersWithParams, "roles", "4");
    ASSERT_EQ(users.code, 0u);
    ASSERT_EQ(users.size(), 2u);
    ASSERT_NE(users.withId(1), nullptr);
    EXPECT_EQ(utf8(users.withId(1)->name), "a");
    EXPECT_NE(users.withId(3), nullptr);
}

TEST_F(Users, ActiveFindsNumbersAndNotTrue)
{
    EXPECT_EQ(add(R"({"id":1,"active":true},{"id":2,"active":1},{"id":3})"), 0u);
    const auto active = listBy(getUsersWithParams, "active", "1");
    ASSERT_EQ(active.code, 0u);
    ASSERT_EQ(active.size(), 1u);
    EXPECT_EQ(active[0].id, 2u);
    const auto inactive = listBy(getUsersWithParams, "active", "0");
    ASSERT_EQ(inactive.code, 0u);
    ASSERT_EQ(inactive.size(), 1u);
    EXPECT_EQ(inactive[0].id, 1u);
}

TEST_F(Users, ATextIsComparedWhole)
{
    EXPECT_EQ(add(R"({"id":1,"name":"Ann"},{"id":2,"name":""})"), 0u);
    for (const char *wanted : {"ann", "An", "A%", "%", "Ann ", "'Ann'"}) {
        SCOPED_TRACE(wanted);
        EXPECT_EQ(listBy(getUsersWithParams, "name", wanted).code, 8u);
    }
    const auto nameless = listBy(getUsersWithParams, "name", "");
    ASSERT_EQ(nameless.code, 0u);
    ASSERT_EQ(nameless.size(), 1u);
    EXPECT_EQ(nameless[0].id, 2u);
}

TEST_F(Users, ByAFieldJoinsTheDomainAndItsLocale)
{
    EXPECT_EQ(send(addLocales, batch(R"({"id":1,"iso":"en"})")), 0u);
    EXPECT_EQ(send(addDomains, batch(R"({"id":3,"name":"North","locale_id":1})")), 0u);
    EXPECT_EQ(add(std::string(Ann) + R"(,{"id":8,"domain":4})"), 0u);
    const auto joined = listBy(getUsersWithParams, "domain", "3");
    ASSERT_EQ(joined.code, 0u);
    ASSERT_EQ(joined.size(), 1u);
    ASSERT_NE(joined[0].domain, nullptr);
    EXPECT_EQ(utf8(joined[0].domain->name), "North");
    ASSERT_NE(joined[0].domain->locale, nullptr);
    EXPECT_EQ(utf8(joined[0].domain->locale->iso), "en");
    const auto unjoined = listBy(getUsersWithParams, "domain", "4");
    ASSERT_EQ(unjoined.code, 0u);
    ASSERT_EQ(unjoined.size(), 1u);
    EXPECT_EQ(unjoined[0].id, 8u);
    EXPECT_EQ(unjoined[0].domain, nullptr);
}

// ---- Updating ----

TEST_F(Users, UpdateOfANewIdInsertsTheRowAndReturnsIt)
{
    const auto user = update(updateUser, one(Ann));
    ASSERT_EQ(user.code, 0u);
    EXPECT_EQ(count(), 1);
    EXPECT_EQ(stored("7"), ann);
    EXPECT_EQ(user->id, 7u);
    EXPECT_EQ(utf8(user->name), "Ann");
    EXPECT_EQ(utf8(user->login), "ann7");
    EXPECT_EQ(utf8(user->contacts), "room 5");
    EXPECT_EQ(value(user->isActive), 1u);
    EXPECT_EQ(value(user->domainId), 3u);
    EXPECT_EQ(value(user->roles), 4u);
    EXPECT_EQ(value(user->phone), 79991234567u);
    EXPECT_EQ(user->domain, nullptr);
    EXPECT_EQ(value(user->orgId), 2u);
}

TEST_F(Users, UpdateStoresTextsAsTextAndNumbersAsNumbers)
{
    ASSERT_EQ(update(updateUser, one(Ann)).code, 0u);
    EXPECT_EQ(
        file.rows("SELECT typeof(UsersId), typeof(UsersName), typeof(UsersLogin), typeof(UsersContacts),"
                  " typeof(UsersIsActive), typeof(UsersDomainId), typeof(UsersOrgId), typeof(UsersRoles),"
                  " typeof(UsersPhone) FROM Users"),
        (std::vector<Row>{{"integer", "text", "text", "text", "integer", "integer", "integer", "integer", "real"}}));
}

TEST_F(Users, UpdateOfANewIdAloneMakesARowOfNothingElse)
{
    const auto user = update(updateUser, R"({"D":{"id":7}})");
    ASSERT_EQ(user.code, 0u);
    EXPECT_EQ(user->id, 7u);
    EXPECT_EQ(user->name, nullptr);
    EXPECT_EQ(user->phone, nullptr);
    EXPECT_EQ(count(), 1);
    EXPECT_EQ(stored("7"), nothing);
}

TEST_F(Users, UpdateOfAKnownIdAloneChangesNothingAndReturnsTheStoredRow)
{
    EXPECT_EQ(add(Ann), 0u);
    const auto user = update(updateUser, R"({"D":{"id":7}})");
    ASSERT_EQ(user.code, 0u);
    EXPECT_EQ(utf8(user->name), "Ann");
    EXPECT_EQ(utf8(user->contacts), "room 5");
    EXPECT_EQ(value(user->isActive), 1u);
    EXPECT_EQ(value(user->phone), 79991234567u);
    EXPECT_EQ(stored("7"), ann);
}

TEST_F(Users, UpdateKeepsWhatTheDocumentLeavesOut)
{
    EXPECT_EQ(add(Ann), 0u);
    const auto user = update(updateUser, R"({"D":{"id":7,"name":"x"}})");
    ASSERT_EQ(user.code, 0u);
    EXPECT_EQ(utf8(user->name), "x");
    EXPECT_EQ(utf8(user->login), "ann7");
    EXPECT_EQ(value(user->phone), 79991234567u);
    EXPECT_EQ(stored("7"), (Row{"x", "ann7", "room 5", "1", "3", "2", "4", "79991234567"}));
}

TEST_F(Users, UpdateOfOneFieldChangesItsColumnAlone)
{
    const std::vector<std::tuple<size_t, const char *, const char *>> cases{
        {0, R"("name":"x")", "x"},  {1, R"("login":"x")", "x"},   {2, R"("contacts":"x")", "x"},
        {3, R"("active":0)", "0"},  {4, R"("domain":33)", "33"},  {5, R"("org":22)", "22"},
        {6, R"("roles":44)", "44"}, {7, R"("phone":100)", "100"},
    };
    for (const auto &[place, field, written] : cases) {
        SCOPED_TRACE(field);
        EXPECT_EQ(add(Ann), 0u);
        ASSERT_EQ(update(updateUser, R"({"D":{"id":7,)" + std::string(field) + "}}").code, 0u);
        Row expected = ann;
        expected[place] = written;
        EXPECT_EQ(stored("7"), expected);
    }
}

TEST_F(Users, UpdateOfANewIdFillsTheFieldsSentAlone)
{
    const std::vector<std::tuple<size_t, const char *, const char *>> cases{
        {0, R"("name":"x")", "x"},  {1, R"("login":"x")", "x"},   {2, R"("contacts":"x")", "x"},
        {3, R"("active":0)", "0"},  {4, R"("domain":33)", "33"},  {5, R"("org":22)", "22"},
        {6, R"("roles":44)", "44"}, {7, R"("phone":100)", "100"},
    };
    for (const auto &[place, field, written] : cases) {
        SCOPED_TRACE(field);
        const std::string id = std::to_string(100 + place);
        ASSERT_EQ(update(updateUser, R"({"D":{"id":)" + id + "," + field + "}}").code, 0u);
        Row expected = nothing;
        expected[place] = written;
        EXPECT_EQ(stored(id), expected);
    }
}

TEST_F(Users, UpdateOfEveryFieldChangesEveryColumn)
{
    EXPECT_EQ(add(Ann), 0u);
    ASSERT_EQ(update(updateUser, R"({"D":{"phone":108,"roles":107,"org":106,"domain":105,"active":0,"contacts":"c",)"
                                 R"("login":"l","name":"n","id":7}})")
                  .code,
              0u);
    EXPECT_EQ(stored("7"), (Row{"n", "l", "c", "0", "105", "106", "107", "108"}));
}

TEST_F(Users, UpdateWithEmptyTextsAndZerosOverwrites)
{
    EXPECT_EQ(add(Ann), 0u);
    const auto user = update(updateUser, R"({"D":{"id":7,"name":"","contacts":"","active":0,"roles":0,"phone":0}})");
    ASSERT_EQ(user.code, 0u);
    EXPECT_EQ(utf8(user->name), "");
    EXPECT_EQ(utf8(user->contacts), "");
    EXPECT_EQ(value(user->roles), 0u);
    EXPECT_EQ(stored("7"), (Row{"", "ann7", "", "0", "3", "2", "0", "0"}));
    EXPECT_EQ(column("typeof(UsersName)"), "text");
}

TEST_F(Users, UpdateReadsTrueAsFalse)
{
    EXPECT_EQ(add(Ann), 0u);
    const auto user = update(updateUser, R"({"D":{"id":7,"active":true}})");
    ASSERT_EQ(user.code, 0u);
    EXPECT_EQ(value(user->isActive), 0u);
    EXPECT_EQ(column("UsersIsActive"), "0");
}

TEST_F(Users, UpdateStoresAPhoneOfMoreThan32BitsExactly)
{
    const auto user = update(updateUser, R"({"D":{"id":7,"phone":79991234567}})");
    ASSERT_EQ(user.code, 0u);
    EXPECT_EQ(value(user->phone), 79991234567u);
    EXPECT_EQ(column("CAST(UsersPhone AS INTEGER)"), "79991234567");
}

TEST_F(Users, UpdateLeavesOtherRowsAlone)
{
    EXPECT_EQ(add(std::string(Ann) + R"(,{"id":8,"name":"Bob"})"), 0u);
    ASSERT_EQ(update(updateUser, R"({"D":{"id":8,"name":"Rob","roles":1}})").code, 0u);
    EXPECT_EQ(stored("7"), ann);
    EXPECT_EQ(stored("8"), (Row{"Rob", {}, {}, {}, {}, {}, "1", {}}));
}

TEST_F(Users, UpdateReturnsTheDomainAndItsLocaleFromTheStore)
{
    EXPECT_EQ(send(addLocales, batch(R"({"id":1,"iso":"en","description":"English"})")), 0u);
    EXPECT_EQ(send(addDomains, batch(R"({"id":3,"name":"North","org_id":6,"locale_id":1})")), 0u);
    const auto user = update(updateUser, R"({"D":{"id":7,"domain":3}})");
    ASSERT_EQ(user.code, 0u);
    EXPECT_EQ(value(user->domainId), 3u);
    ASSERT_NE(user->domain, nullptr);
    EXPECT_EQ(utf8(user->domain->name), "North");
    EXPECT_EQ(value(user->domain->orgId), 6u);
    ASSERT_NE(user->domain->locale, nullptr);
    EXPECT_EQ(utf8(user->domain->locale->description), "English");
}

TEST_F(Users, UpdateKeepsTheRowAndAddReplacesIt)
{
    EXPECT_EQ(add(std::string(Ann) + R"(,{"id":8})"), 0u);
    const std::string rowOfAnn = "SELECT rowid FROM Users WHERE UsersId = 7";
    const int64_t before = file.number(rowOfAnn);
    ASSERT_EQ(update(updateUser, R"({"D":{"id":7,"name":"x"}})").code, 0u);
    EXPECT_EQ(file.number(rowOfAnn), before);
    EXPECT_EQ(add(Ann), 0u);
    EXPECT_NE(file.number(rowOfAnn), before);
}

TEST_F(Users, UpdateTouchesOnlyTheColumnsSent)
{
    EXPECT_EQ(add(Ann), 0u);
    foreign("CREATE TRIGGER Fixed BEFORE UPDATE OF UsersLogin, UsersContacts, UsersIsActive, UsersDomainId,"
            " UsersOrgId, UsersRoles, UsersPhone ON Users BEGIN SELECT RAISE(ABORT, 'refused'); END");
    EXPECT_EQ(update(updateUser, R"({"D":{"id":7,"name":"x"}})").code, 0u);
    EXPECT_EQ(update(updateUser, R"({"D":{"id":7,"name":"y","roles":4}})").code, 9u);
    EXPECT_EQ(column("UsersName"), "x");
}

TEST_F(Users, UpdateAssignsTheIdToItself)
{
    EXPECT_EQ(add(Ann), 0u);
    foreign("CREATE TRIGGER Fixed BEFORE UPDATE OF UsersId ON Users BEGIN SELECT RAISE(ABORT, 'refused'); END");
    EXPECT_EQ(update(updateUser, R"({"D":{"id":7}})").code, 9u);
}

TEST_F(Users, UpdateReturnsWhatTheStoreHoldsAndNotWhatWasSent)
{
    foreign("CREATE TRIGGER Rename AFTER INSERT ON Users BEGIN UPDATE Users SET UsersName = 'stored', UsersRoles = 9"
            " WHERE UsersId = NEW.UsersId; END");
    const auto user = update(updateUser, R"({"D":{"id":7,"name":"sent"}})");
    ASSERT_EQ(user.code, 0u);
    EXPECT_EQ(utf8(user->name), "stored");
    EXPECT_EQ(value(user->roles), 9u);
}

TEST_F(Users, UpdateReturns8WhenTheRowIsGoneAndStaysCommitted)
{
    foreign("CREATE TRIGGER Gone AFTER INSERT ON Users BEGIN DELETE FROM Users WHERE UsersId = NEW.UsersId;"
            " INSERT INTO Locales(LocalesId) VALUES (99); END");
    const DebugLines lines;
    const auto user = update(updateUser, one(Ann));
    EXPECT_EQ(user.code, 8u);
    EXPECT_EQ(user.record, nullptr);
    EXPECT_EQ(lines.all(), std::vector<std::string>());
    EXPECT_EQ(file.number("SELECT LocalesId FROM Locales"), 99);
}

TEST_F(Users, UpdateLogsNothingWhenItWorks)
{
    const DebugLines lines;
    EXPECT_EQ(update(updateUser, one(Ann)).code, 0u);
    EXPECT_EQ(lines.all(), std::vector<std::string>());
}

// ---- Deleting ----

TEST_F(Users, DeleteRemovesTheOneRow)
{
    EXPECT_EQ(add(std::string(Ann) + R"(,{"id":8})"), 0u);
    const DebugLines lines;
    EXPECT_EQ(send(deleteUser, R"({"D":{"op_id":7}})"), 0u);
    EXPECT_EQ(column("UsersId"), "8");
    EXPECT_EQ(get(getUser, 7).code, 8u);
    EXPECT_EQ(lines.all(), std::vector<std::string>());
}

TEST_F(Users, DeleteTakesTheOtherKeyThanAddAndUpdate)
{
    EXPECT_EQ(add(Ann), 0u);
    EXPECT_EQ(send(deleteUser, R"({"D":{"id":7}})"), 5u);
    EXPECT_EQ(count(), 1);
    EXPECT_EQ(send(deleteUser, R"({"D":{"op_id":7,"id":8}})"), 0u);
    EXPECT_EQ(count(), 0);
    EXPECT_EQ(add(R"({"op_id":7})"), 5u);
    EXPECT_EQ(update(updateUser, R"({"D":{"op_id":7}})").code, 5u);
    EXPECT_EQ(count(), 0);
}

TEST_F(Users, DeleteReturns8ForAnUnknownIdAndLogsNothing)
{
    EXPECT_EQ(add(Ann), 0u);
    refuse("DELETE", "Users");
    const DebugLines lines;
    EXPECT_EQ(send(deleteUser, R"({"D":{"op_id":8}})"), 8u);
    EXPECT_EQ(lines.all(), std::vector<std::string>());
    EXPECT_EQ(count(), 1);
}

TEST_F(Users, DeleteReadsAnIdOfAWrongTypeAs0)
{
    for (const char *wrong : {R"("7")", "true", "null", "[7]", R"({"id":7})"}) {
        SCOPED_TRACE(wrong);
        const std::string json = R"({"D":{"op_id":)" + std::string(wrong) + "}}";
        EXPECT_EQ(add(R"({"id":7})"), 0u);
        EXPECT_EQ(send(deleteUser, json), 8u);
        EXPECT_EQ(add(R"({"id":0})"), 0u);
        EXPECT_EQ(send(deleteUser, json), 0u);
        EXPECT_EQ(column("UsersId"), "7");
    }
}

TEST_F(Users, DeleteReadsTheIdAsEveryOtherNumber)
{
    EXPECT_EQ(add(R"({"id":4294967295},{"id":1},{"id":705032704})"), 0u);
    EXPECT_EQ(send(deleteUser, R"({"D":{"op_id":-1}})"), 0u);
    EXPECT_EQ(send(deleteUser, R"({"D":{"op_id":1.9}})"), 0u);
    EXPECT_EQ(column("UsersId"), "705032704");
    EXPECT_EQ(send(deleteUser, R"({"D":{"op_id":5000000000}})"), 0u);
    EXPECT_EQ(count(), 0);
}

TEST_F(Users, DeleteLeavesTheDomain)
{
    EXPECT_EQ(send(addDomains, batch(R"({"id":3})")), 0u);
    EXPECT_EQ(add(Ann), 0u);
    EXPECT_EQ(send(deleteUser, R"({"D":{"op_id":7}})"), 0u);
    EXPECT_EQ(get(getDomain, 3).code, 0u);
}

TEST_F(Users, DeleteLeavesContractsWithoutTheirUser)
{
    EXPECT_EQ(add(Ann), 0u);
    EXPECT_EQ(send(addContracts, batch(R"({"id":11,"number":"N","operator_id":7})")), 0u);
    const auto before = get(getContract, 11);
    ASSERT_EQ(before.code, 0u);
    ASSERT_NE(before->user, nullptr);
    EXPECT_EQ(utf8(before->user->name), "Ann");

    EXPECT_EQ(send(deleteUser, R"({"D":{"op_id":7}})"), 0u);
    const auto after = get(getContract, 11);
    ASSERT_EQ(after.code, 0u);
    EXPECT_EQ(utf8(after->number), "N");
    EXPECT_EQ(after->user, nullptr);
    EXPECT_EQ(file.value("SELECT ContractsUserId FROM Contracts"), "7");
}

TEST_F(Users, DeleteLeavesEventsWithTheirOperator)
{
    EXPECT_EQ(add(Ann), 0u);
    EXPECT_EQ(update(addEvent, R"({"D":{"id":21,"operator_id":7}})").code, 0u);
    EXPECT_EQ(send(deleteUser, R"({"D":{"op_id":7}})"), 0u);
    EXPECT_EQ(file.value("SELECT EventsUserId FROM Events"), "7");
}

// ---- Failing statements ----

TEST_F(Users, AFailedAddReturns9AndLogsThreeLines)
{
    refuse("INSERT", "Users");
    const DebugLines lines;
    EXPECT_EQ(add(Ann), 9u);
    ASSERT_EQ(lines.allWithErrorsAt({1}), (std::vector<std::string>{"execute batch error", "*", "add users error"}));
    EXPECT_NE(lines.all()[1].find("refused"), std::string::npos);
}

TEST_F(Users, AFailedAddWithoutItsTableLogsThreeLines)
{
    foreign("DROP TABLE Users");
    const DebugLines lines;
    EXPECT_EQ(add(Ann), 9u);
    EXPECT_EQ(lines.allWithErrorsAt({1}), (std::vector<std::string>{"execute batch error", "*", "add users error"}));
}

TEST_F(Users, AddNeedsEveryColumnOfItsTable)
{
    for (const char *name : {"UsersId", "UsersName", "UsersLogin", "UsersContacts", "UsersIsActive", "UsersDomainId",
                             "UsersOrgId", "UsersRoles", "UsersPhone"}) {
        SCOPED_TRACE(name);
        foreign("ALTER TABLE Users RENAME COLUMN " + std::string(name) + " TO Renamed");
        EXPECT_EQ(add(R"({"id":7})"), 9u);
        foreign("ALTER TABLE Users RENAME COLUMN Renamed TO " + std::string(name));
    }
    EXPECT_EQ(add(R"({"id":7})"), 0u);
}

TEST_F(Users, AFailedAddLeavesNothingOfTheBatch)
{
    EXPECT_EQ(add(Ann), 0u);
    foreign("CREATE TRIGGER Third BEFORE INSERT ON Users WHEN NEW.UsersId = 9"
            " BEGIN SELECT RAISE(ABORT, 'refused'); END");
    EXPECT_EQ(add(R"({"id":7,"name":"x"},{"id":8},{"id":9},{"id":10})"), 9u);
    EXPECT_EQ(count(), 1);
    EXPECT_EQ(stored("7"), ann);
}

TEST_F(Users, AFailedUpdateReturns9AndLogsFourLines)
{
    EXPECT_EQ(add(Ann), 0u);
    refuse("UPDATE", "Users");
    const DebugLines lines;
    const auto user = update(updateUser, R"({"D":{"id":7,"name":"x"}})");
    EXPECT_EQ(user.code, 9u);
    EXPECT_EQ(user.record, nullptr);
    EXPECT_TRUE(isFailure(lines.all(), "add user error"));
    EXPECT_EQ(stored("7"), ann);
}

TEST_F(Users, AFailedUpdateOfANewIdReturns9AndLogsFourLines)
{
    refuse("INSERT", "Users");
    const DebugLines lines;
    EXPECT_EQ(update(updateUser, one(Ann)).code, 9u);
    EXPECT_TRUE(isFailure(lines.all(), "add user error"));
    EXPECT_EQ(count(), 0);
}

TEST_F(Users, AFailedUpdateWithoutItsTableLogsFourLines)
{
    foreign("DROP TABLE Users");
    const DebugLines lines;
    EXPECT_EQ(update(updateUser, one(Ann)).code, 9u);
    EXPECT_TRUE(isFailure(lines.all(), "add user error"));
}

TEST_F(Users, AFailedReadBackUndoesTheUpdate)
{
    EXPECT_EQ(add(Ann), 0u);
    for (const char *table : {"Domains", "Locales"}) {
        SCOPED_TRACE(table);
        foreign("ALTER TABLE " + std::string(table) + " RENAME TO Renamed");
        const DebugLines lines;
        const auto user = update(updateUser, R"({"D":{"id":7,"name":"x"}})");
        EXPECT_EQ(user.code, 9u);
        EXPECT_EQ(user.record, nullptr);
        EXPECT_TRUE(isFailure(lines.all(), "get user error"));
        EXPECT_EQ(update(updateUser, R"({"D":{"id":8,"name":"x"}})").code, 9u);
        EXPECT_EQ(count(), 1);
        EXPECT_EQ(stored("7"), ann);
        foreign("ALTER TABLE Renamed RENAME TO " + std::string(table));
    }
    EXPECT_EQ(update(updateUser, R"({"D":{"id":7,"name":"x"}})").code, 0u);
}

TEST_F(Users, AFailedReadBackLogsOnceAndLeavesNoTransactionOpen)
{
    foreign("ALTER TABLE Domains RENAME TO Renamed");
    EXPECT_EQ(update(updateUser, one(Ann)).code, 9u);
    EXPECT_NO_THROW(file.execute("INSERT INTO Users(UsersId) VALUES (5)"));
    EXPECT_EQ(column("UsersId"), "5");
}

TEST_F(Users, AFailedGetReturns7AndLogsFourLines)
{
    EXPECT_EQ(add(Ann), 0u);
    for (const char *table : {"Users", "Domains", "Locales"}) {
        SCOPED_TRACE(table);
        foreign("ALTER TABLE " + std::string(table) + " RENAME TO Renamed");
        const DebugLines lines;
        FlatUser *user = nullptr;
        EXPECT_EQ(getUser(&user, 7), 7u);
        EXPECT_EQ(user, nullptr);
        EXPECT_TRUE(isFailure(lines.all(), "get user error"));
        foreign("ALTER TABLE Renamed RENAME TO " + std::string(table));
    }
    EXPECT_EQ(get(getUser, 7).code, 0u);
}

TEST_F(Users, AFailedListReturns7AndLogsFourLines)
{
    EXPECT_EQ(add(Ann), 0u);
    for (const char *table : {"Users", "Domains", "Locales"}) {
        SCOPED_TRACE(table);
        foreign("ALTER TABLE " + std::string(table) + " RENAME TO Renamed");
        const DebugLines lines;
        FlatUser *users = nullptr;
        uint32_t count = 77;
        EXPECT_EQ(getUsers(&users, &count), 7u);
        EXPECT_EQ(users, nullptr);
        EXPECT_EQ(count, 77u);
        EXPECT_TRUE(isFailure(lines.all(), "get users error"));
        foreign("ALTER TABLE Renamed RENAME TO " + std::string(table));
    }
    EXPECT_EQ(list(getUsers).code, 0u);
}

TEST_F(Users, AFailedQueryByAFieldReturns7AndLogsFourLines)
{
    EXPECT_EQ(add(Ann), 0u);
    for (const char *table : {"Users", "Domains", "Locales"}) {
        SCOPED_TRACE(table);
        foreign("ALTER TABLE " + std::string(table) + " RENAME TO Renamed");
        const DebugLines lines;
        FlatUser *users = nullptr;
        uint32_t count = 77;
        EXPECT_EQ(find(getUsersWithParams, &users, &count, "name", "Ann"), 7u);
        EXPECT_EQ(users, nullptr);
        EXPECT_EQ(count, 77u);
        EXPECT_TRUE(isFailure(lines.all(), "get users by field error"));
        foreign("ALTER TABLE Renamed RENAME TO " + std::string(table));
    }
    EXPECT_EQ(listBy(getUsersWithParams, "name", "Ann").code, 0u);
}

TEST_F(Users, AnUnknownKeyReturns10BeforeTheStoreIsTouched)
{
    foreign("DROP TABLE Users");
    const DebugLines lines;
    EXPECT_EQ(listBy(getUsersWithParams, "op_id", "7").code, 10u);
    EXPECT_EQ(lines.all(), std::vector<std::string>());
    EXPECT_EQ(listBy(getUsersWithParams, "id", "7").code, 7u);
}

TEST_F(Users, ADeleteThatCannotReadReturns7AndDeletesNothing)
{
    EXPECT_EQ(add(Ann), 0u);
    foreign("ALTER TABLE Domains RENAME TO Renamed");
    const DebugLines lines;
    EXPECT_EQ(send(deleteUser, R"({"D":{"op_id":7}})"), 7u);
    EXPECT_TRUE(isFailure(lines.all(), "get user error"));
    EXPECT_EQ(stored("7"), ann);
}

TEST_F(Users, AFailedDeleteReturns9AndLogsFourLines)
{
    EXPECT_EQ(add(Ann), 0u);
    refuse("DELETE", "Users");
    const DebugLines lines;
    EXPECT_EQ(send(deleteUser, R"({"D":{"op_id":7}})"), 9u);
    EXPECT_TRUE(isFailure(lines.all(), "delete user error"));
    EXPECT_EQ(stored("7"), ann);
}

TEST_F(Users, FailedCallsLeaveNoTransactionOpen)
{
    EXPECT_EQ(add(Ann), 0u);
    refuse("INSERT", "Users");
    refuse("DELETE", "Users");
    const std::vector<std::function<uint32_t()>> calls{
        [this] { return add(R"({"id":8})"); },
        [] { return update(updateUser, R"({"D":{"id":8}})").code; },
        [] { return send(deleteUser, R"({"D":{"op_id":7}})"); },
    };
    for (size_t call = 0; call < calls.size(); ++call) {
        SCOPED_TRACE(call);
        EXPECT_EQ(calls[call](), 9u);
        EXPECT_NO_THROW(file.execute("UPDATE Users SET UsersRoles = " + std::to_string(call)));
        EXPECT_EQ(column("UsersRoles"), std::to_string(call));
    }
}

// ---- Guards ----

TEST_F(Users, ATargetThatIsNotNullReturns10BeforeAnythingElse)
{
    foreign("DROP TABLE Users");
    const DebugLines lines;
    FlatUser occupied{};
    FlatUser *target = &occupied;
    uint32_t count = 77;
    EXPECT_EQ(getUser(&target, 7), 10u);
    EXPECT_EQ(getUsers(&target, &count), 10u);
    EXPECT_EQ(find(getUsersWithParams, &target, &count, "name", "Ann"), 10u);
    EXPECT_EQ(find(getUsersWithParams, &target, &count, "op_id", "7"), 10u);
    EXPECT_EQ(send(updateUser, &target, one(Ann)), 10u);
    EXPECT_EQ(send(updateUser, &target, "{}"), 10u);
    EXPECT_EQ(target, &occupied);
    EXPECT_EQ(count, 77u);
    EXPECT_EQ(lines.all(), std::vector<std::string>());
}

TEST_F(Users, AnUpdateIntoATargetThatIsNotNullWritesNothing)
{
    EXPECT_EQ(add(Ann), 0u);
    FlatUser occupied{};
    FlatUser *target = &occupied;
    EXPECT_EQ(send(updateUser, &target, R"({"D":{"id":7,"name":"x"}})"), 10u);
    EXPECT_EQ(send(updateUser, &target, R"({"D":{"id":8}})"), 10u);
    EXPECT_EQ(count(), 1);
    EXPECT_EQ(stored("7"), ann);
}

TEST_F(Users, GuardsAndReadersWorkWithoutALaunchedLibrary)
{
    library.reset();
    FlatUser occupied{};
    FlatUser *target = &occupied;
    uint32_t count = 77;
    EXPECT_EQ(getUser(&target, 7), 10u);
    EXPECT_EQ(getUsers(&target, &count), 10u);
    EXPECT_EQ(find(getUsersWithParams, &target, &count, "name", "Ann"), 10u);
    EXPECT_EQ(send(updateUser, &target, one(Ann)), 10u);
    EXPECT_EQ(send(addUsers, "not json"), 10u);
    EXPECT_EQ(send(addUsers, "{}"), 5u);
    EXPECT_EQ(send(deleteUser, R"({"D":{"id":7}})"), 5u);
}

// ---- Freeing ----

uint16_t *text()
{
    uint16_t *made = zeroed<uint16_t>(100);
    made[0] = u'x';
    return made;
}

// A record as a client gets it, every field present.
FlatUser filled()
{
    const FlatLocale locale{1, text(), text()};
    const FlatDomain domain{3, text(), block(2u), block(locale)};
    return {
        7,        text(), text(), text(), block(uint8_t{1}), block(3u), block(4u), block(uint64_t{5}), block(domain),
        block(6u)};
}

TEST_F(Users, FreeReturns10ForNothing)
{
    EXPECT_EQ(freeUser(nullptr), 10u);
    EXPECT_EQ(freeUsersArray(nullptr, 0), 10u);
    EXPECT_EQ(freeUsersArray(nullptr, 3), 10u);
}

TEST_F(Users, FreeOfAnArrayWithoutACountReturns10AndFreesNothing)
{
    EXPECT_EQ(add(Ann), 0u);
    const auto users = list(getUsers);
    ASSERT_EQ(users.code, 0u);
    EXPECT_EQ(freeUsersArray(&users[0], 0), 10u);
    EXPECT_EQ(users[0].id, 7u);
    EXPECT_EQ(utf8(users[0].name), "Ann");
    EXPECT_EQ(value(users[0].phone), 79991234567u);
}

TEST_F(Users, FreeTakesRecordsWithAndWithoutTheirParts)
{
    EXPECT_EQ(freeUser(block(filled())), 0u);
    EXPECT_EQ(freeUser(block(FlatUser{})), 0u);
    FlatUser noLocale = filled();
    EXPECT_EQ(freeLocale(noLocale.domain->locale), 0u);
    noLocale.domain->locale = nullptr;
    EXPECT_EQ(freeUser(block(noLocale)), 0u);
}

TEST_F(Users, RecordsOutliveTheLibrary)
{
    EXPECT_EQ(add(Ann), 0u);
    auto user = get(getUser, 7);
    auto users = list(getUsers);
    library.reset();
    ASSERT_EQ(user.code, 0u);
    EXPECT_EQ(utf8(user->login), "ann7");
    EXPECT_EQ(freeUser(user.record.release()), 0u);
    ASSERT_EQ(users.size(), 1u);
    EXPECT_EQ(utf8(users[0].login), "ann7");
}

#ifdef __GLIBC__
TEST_F(Users, FreeReleasesEveryBlock)
{
    const size_t before = mallinfo2().uordblks;
    for (int round = 0; round < 1000; ++round)
        EXPECT_EQ(freeUser(block(filled())), 0u);
    // A block that is forgotten takes at least 32 bytes each time.
    EXPECT_LT(mallinfo2().uordblks, before + 16000);
}

TEST_F(Users, FreeOfAnArrayReleasesEveryBlockOfEveryElement)
{
    const uint32_t length = 500;
    const size_t before = mallinfo2().uordblks;
    for (int round = 0; round < 2; ++round) {
        auto *users = zeroed<FlatUser>(length);
        for (uint32_t index = 0; index < length; ++index)
            users[index] = filled();
        EXPECT_EQ(freeUsersArray(users, length), 0u);
    }
    EXPECT_LT(mallinfo2().uordblks, before + 16000);
}
#endif

} // namespace
