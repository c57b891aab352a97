// Texts that mean something to a statement, texts of all of Unicode and of what is none, in every member, key and
// value: stored and found as they are, and the tables stay as they were.
#include "Hostile.h"

using namespace brimlet::test;

namespace {

class HostileTexts : public HostileTest
{
};

// ---- Texts ----

std::string escaped(const std::string &utf8)
{
    std::string json;
    for (const char c : utf8) {
        if (c == '"' || c == '\\')
            json += '\\';
        if (static_cast<unsigned char>(c) < 0x20) {
            std::array<char, 7> escape{};
            std::snprintf(escape.data(), escape.size(), "\\u%04x", static_cast<unsigned>(c));
            json += escape.data();
        } else {
            json += c;
        }
    }
    return json;
}

std::string quoted(const std::string &utf8)
{
    return '"' + escaped(utf8) + '"';
}

// What means something to SQL, to a placeholder or to a formatter.
const std::vector<std::string> &meaningfulTexts()
{
    static const std::vector<std::string> all = {"'",
                                                 "''",
                                                 "'''",
                                                 "\"",
                                                 "\"\"",
                                                 "`",
                                                 "[",
                                                 "]",
                                                 "\\",
                                                 "\\'",
                                                 "%",
                                                 "%%",
                                                 "%1",
                                                 "%2",
                                                 "%9",
                                                 "%10",
                                                 "%99",
                                                 "%L1",
                                                 "%s",
                                                 "%n",
                                                 "%1%2%3",
                                                 ":1",
                                                 ":a",
                                                 ":1:2",
                                                 "?",
                                                 "??",
                                                 "?1",
                                                 "@a",
                                                 "$a",
                                                 "#",
                                                 "--",
                                                 "-- ",
                                                 "x--",
                                                 "/*",
                                                 "*/",
                                                 "/* */",
                                                 ";",
                                                 "; --",
                                                 "';",
                                                 "');--",
                                                 "' OR '1'='1",
                                                 "1 OR 1=1",
                                                 "1;DROP TABLE Users",
                                                 "'; DROP TABLE Users; --",
                                                 "\"; DROP TABLE Users; --",
                                                 "') ; DELETE FROM Events ; --",
                                                 "x' UNION SELECT * FROM Session --",
                                                 "NULL",
                                                 "null",
                                                 "CURRENT_TIMESTAMP",
                                                 "Users",
                                                 "UsersId",
                                                 "sqlite_master",
                                                 "*",
                                                 "_",
                                                 "%'",
                                                 "\n",
                                                 "\r\n",
                                                 "\t",
                                                 "\x7f",
                                                 " ",
                                                 "  a ",
                                                 "{}",
                                                 "[]",
                                                 "{\"D\":{}}",
                                                 "</script>",
                                                 "${x}",
                                                 "$(x)",
                                                 "../../x",
                                                 "a,b",
                                                 "(",
                                                 ")",
                                                 "x'00'",
                                                 "1e1",
                                                 "0x10"};
    return all;
}

class HostileText : public HostileTest, public ::testing::WithParamInterface<SubjectMember>
{
};

TEST_P(HostileText, IsStoredAndFoundAsItIs)
{
    const auto &[subject, member] = GetParam();
    const std::vector<std::string> &texts = meaningfulTexts();
    std::vector<std::string> values;
    std::vector<std::string> expected;
    for (const std::string &text : texts) {
        values.push_back(quoted(text));
        expected.push_back("text " + text);
    }
    ASSERT_EQ(send(subject.add, batchOf(subject, member.key, values)), subject.code);
    EXPECT_EQ(column(subject, member), numbered(expected));

    const bool isPartOfDevice = subject.table == "Sections" || subject.table == "Zones";
    if (member.kind == Kind::searchedText)
        for (uint32_t place = 1; place <= texts.size(); ++place) {
            const Found found = subject.search(member.key, texts[place - 1], place);
            EXPECT_EQ(found.code, 0u) << texts[place - 1];
            EXPECT_EQ(found.ids, std::vector<uint32_t>{isPartOfDevice ? 1 : place}) << texts[place - 1];
        }
    expectIntact();
}

INSTANTIATE_TEST_SUITE_P(Members, HostileText, ::testing::ValuesIn(membersWhere(isTextKind)), nameOf);

TEST_F(HostileTexts, NoTextIsAKeyThatCanBeSearchedForButTheKeysThemselves)
{
    for (const auto &[name, search] : searches())
        for (const std::string &text : meaningfulTexts())
            for (const std::string &key : {text, "name" + text, text + "name", "id" + text, text + "id"}) {
                const Found found = search(key, "1", 1);
                EXPECT_EQ(found.code, 10u) << name << " " << key;
                EXPECT_TRUE(found.ids.empty()) << name << " " << key;
            }
    expectIntact();
}

TEST_F(HostileTexts, NoTextFindsARowWhoseNumberIsAnother)
{
    for (const Subject &subject : subjects())
        if (!subject.members.front().key.empty() && !isTextKind(subject.members.front().kind))
            send(subject.add, batchOf(subject, subject.members.front().key, {"77"}));
    ASSERT_EQ(send(addDevice, R"({"D":{"id":1,"sections":[{"id":77,"zones":[{"id":77}]},{"id":1}]}})"), 0u);
    for (const auto &[name, search] : searches()) {
        const std::string key = name == "getOrganizationsWithParams" ? "org_id" : "id";
        for (const std::string &text : meaningfulTexts())
            EXPECT_EQ(search(key, text, 1).code, 8u) << name << " " << text;
    }
    expectIntact();
}

TEST_F(HostileTexts, MembersOfAnyNameAreIgnored)
{
    for (const Subject &subject : subjects()) {
        const Member &member = subject.members.front();
        if (member.key.empty())
            continue; // an array has no members
        ASSERT_EQ(clearAll(), 0u);
        std::string members = memberOf(member.key, isTextKind(member.kind) ? "\"x\"" : "5");
        for (const std::string &text : meaningfulTexts())
            members += ",\"" + escaped(text) + "\":" + quoted(text);
        const std::string document = R"({"D":{"items":[)" + replaced(replaced(subject.item, '#', "1"), '@', members)
                                   + R"(],"'; --":1},"%1":{}})";
        EXPECT_EQ(send(subject.add, document), subject.code) << subject.name;
        EXPECT_EQ(column(subject, member).size(), 1u) << subject.name;
    }
    expectIntact();
}

TEST_F(HostileTexts, RemovalsTakeATextForTheNumber0)
{
    for (const Removal &removal : removals()) {
        ASSERT_EQ(send(removal.add, R"({"D":{"items":[)" + replaced(removal.item, '@', "7") + "]}}"), 0u);
        for (const std::string &text : meaningfulTexts())
            EXPECT_EQ(send(removal.remove, replaced(removal.removed, '@', quoted(text))), 8u) << removal.name << text;
        EXPECT_EQ(file.number("SELECT count(*) FROM " + removal.table), 1) << removal.name;
    }
    expectIntact();
}

TEST_F(HostileTexts, AnyAddressIsRememberedAsItIs)
{
    for (const std::string &text : meaningfulTexts()) {
        ASSERT_EQ(send(setServerIp, text), 0u);
        uint16_t *address = nullptr;
        ASSERT_EQ(getServerIp(&address), 0u);
        const Owned<uint16_t> owned(address);
        EXPECT_EQ(utf8(address), text);
    }
    expectIntact();
}

// ---- Unicode ----

void appendUtf8(std::string &text, uint32_t point)
{
    const auto byte = [&](uint32_t value) { text += static_cast<char>(static_cast<unsigned char>(value)); };
    const auto follow = [&](uint32_t shift) { byte(0x80u | (point >> shift & 0x3Fu)); };
    if (point < 0x80) {
        byte(point);
    } else if (point < 0x800) {
        byte(0xC0u | point >> 6);
        follow(0);
    } else if (point < 0x10000) {
        byte(0xE0u | point >> 12);
        follow(6);
        follow(0);
    } else {
        byte(0xF0u | point >> 18);
        follow(12);
        follow(6);
        follow(0);
    }
}

void appendUtf16(std::u16string &text, uint32_t point)
{
    if (point < 0x10000) {
        text += static_cast<char16_t>(point);
        return;
    }
    text += static_cast<char16_t>(0xD800u + ((point - 0x10000u) >> 10));
    text += static_cast<char16_t>(0xDC00u + (point & 0x3FFu));
}

uint32_t addLocaleWithText(const std::u16string &json)
{
    return call(addLocales, uR"({"D":{"items":[{"id":1,"iso":")" + json + uR"("}]}})");
}

class Plane : public HostileTest, public ::testing::WithParamInterface<uint32_t>
{
};

bool hasTestOfItsOwn(uint32_t point)
{
    return point == 0 || (point >= 0xD800 && point < 0xE000) || point == 0xFFFE || point == 0xFFFF;
}

// Every code point but those, 4096 in a text.
TEST_P(Plane, IsStoredAndGivenWhole)
{
    const uint32_t first = GetParam() << 16;
    for (uint32_t start = first; start < first + 0x10000; start += 4096) {
        std::string bytes;
        std::u16string units;
        std::u16string json;
        for (uint32_t point = start; point < start + 4096; ++point) {
            if (hasTestOfItsOwn(point))
                continue;
            appendUtf8(bytes, point);
            appendUtf16(units, point);
            if (point == '"' || point == '\\')
                json += u'\\';
            appendUtf16(json, point);
        }
        if (bytes.empty())
            continue;
        ASSERT_EQ(addLocaleWithText(json), 0u) << start;
        EXPECT_EQ(cells("SELECT LocalesId, LocalesIso FROM Locales").at(1), "text " + bytes) << start;
        const Answer<FlatLocale> locale = get(getLocale, 1);
        ASSERT_EQ(locale.code, 0u) << start;
        EXPECT_TRUE(reinterpret_cast<const char16_t *>(locale->iso) == units) << start;
        EXPECT_EQ(listBy(getLocalesWithParams, "iso", bytes).size(), 1u) << start;
    }
    expectIntact();
}

INSTANTIATE_TEST_SUITE_P(All, Plane, ::testing::Range(0u, 17u));

// The bytes of the one stored text, in hexadecimal digits.
std::optional<std::string> storedBytes(const File &file)
{
    return file.value("SELECT hex(LocalesIso) FROM Locales");
}

// The store's conversion again: what is stored and found is the text itself.
TEST_F(HostileTexts, TheLastTwoCodePointsOfTheFirstPlaneComeBackAsReplacements)
{
    for (const char16_t point : {u'\xFFFE', u'\xFFFF'}) {
        ASSERT_EQ(addLocaleWithText(std::u16string{'a', point}), 0u);
        EXPECT_EQ(storedBytes(file), point == 0xFFFE ? "61EFBFBE" : "61EFBFBF");
        const List<FlatLocale> found =
            listBy(getLocalesWithParams, "iso", point == 0xFFFE ? "a\xEF\xBF\xBE" : "a\xEF\xBF\xBF");
        ASSERT_EQ(found.size(), 1u);
        EXPECT_EQ(utf8(found[0].iso), "a\xEF\xBF\xBD");
    }
    expectIntact();
}

TEST_F(HostileTexts, ARawLoneSurrogateInADocumentBecomesAQuestionMark)
{
    const std::vector<std::pair<std::u16string, std::string>> texts = {
        {{0xD800}, "3F"},           {{0xDFFF}, "3F"},
        {{0xD800, 'a'}, "3F61"},    {{'a', 0xDC00, 'b'}, "613F62"},
        {{0xDC00, 0xD800}, "3F3F"}, {{0xD83D, 0xD83D, 0xDE00}, "3FF09F9880"},
    };
    for (const auto &[text, bytes] : texts) {
        ASSERT_EQ(addLocaleWithText(text), 0u);
        EXPECT_EQ(storedBytes(file), bytes);
    }
    EXPECT_EQ(call(addLocales, std::u16string(1, char16_t{0xD800})), 10u);
    expectIntact();
}

// The store's conversion joins an unpaired surrogate with whatever follows it.
TEST_F(HostileTexts, AnEscapedLoneSurrogateIsStoredAsThreeBytesOrJoined)
{
    const std::vector<std::pair<std::u16string, std::string>> texts = {
        {uR"(\ud800)", "EDA080"},         {uR"(\udc00)", "EDB080"},    {uR"(\udfff)", "EDBFBF"},
        {uR"(\ud83d\ude00)", "F09F9880"}, {uR"(\ud800a)", "F09081A1"}, {uR"(\udc00\ud800)", "F0908080"},
        {uR"(a\ud800)", "61EDA080"},
    };
    for (const auto &[json, bytes] : texts) {
        ASSERT_EQ(addLocaleWithText(json), 0u);
        EXPECT_EQ(storedBytes(file), bytes);
        EXPECT_EQ(get(getLocale, 1).code, 0u);
        list(getZones, UINT32_MAX);
    }
    expectIntact();
}

TEST_F(HostileTexts, ALoneSurrogateInAnAddressOrAValueIsTakenAsItIs)
{
    ASSERT_EQ(call(setServerIp, std::u16string(1, char16_t{0xD800})), 0u);
    EXPECT_EQ(file.value("SELECT hex(SessionIp) FROM Session"), "EDA080");
    uint16_t *address = nullptr;
    ASSERT_EQ(getServerIp(&address), 0u);
    const Owned<uint16_t> owned(address);
    EXPECT_EQ(address[0], 0xFFFDu);
    EXPECT_EQ(address[1], 0u);

    ASSERT_EQ(addLocaleWithText(uR"(\ud800)"), 0u);
    List<FlatLocale> found;
    const std::u16string key = u"iso";
    const uint16_t surrogate = 0xD800;
    EXPECT_EQ(getLocalesWithParams(found.out(), found.count(), reinterpret_cast<const uint16_t *>(key.data()), 3,
                                   &surrogate, 1),
              0u);
    EXPECT_EQ(found.size(), 1u);
}

std::u16string swapped(std::u16string text)
{
    for (char16_t &unit : text)
        unit = static_cast<char16_t>((unit >> 8 | unit << 8) & 0xFFFF);
    return text;
}

TEST_F(HostileTexts, ByteOrderMarksAtTheStartOfADocumentAreObeyed)
{
    const std::u16string document = uR"({"D":{"items":[{"id":1,"iso":"x"}]}})";
    const std::u16string mark(1, char16_t{0xFEFF});
    for (const std::u16string &text : {mark + document, mark + mark + document, swapped(mark + document)}) {
        EXPECT_EQ(call(addLocales, text), 0u);
        EXPECT_EQ(storedBytes(file), "78");
        EXPECT_EQ(clearAll(), 0u);
    }
    for (const std::u16string &text :
         {mark, mark + mark + mark + document, document + mark, swapped(document), swapped(mark) + document})
        EXPECT_EQ(call(addLocales, text), 10u);
    expectEmpty();
}

TEST_F(HostileTexts, ATextLosesTheByteOrderMarkThatItStartsWith)
{
    const std::vector<std::pair<std::u16string, std::string>> texts = {
        {uR"(\ufeffa\ufeff)", "61EFBBBF"},
        {uR"(a\ufeff)", "61EFBBBF"},
        {uR"(\ufffe\u6100b)", "61E68880"}, // read as a text in the other byte order
        {uR"(\ufeff)", ""},
    };
    for (const auto &[json, bytes] : texts) {
        ASSERT_EQ(addLocaleWithText(json), 0u);
        EXPECT_EQ(storedBytes(file), bytes);
    }
    ASSERT_EQ(call(setServerIp, {0xFEFF, 'a', 0xFEFF}), 0u);
    EXPECT_EQ(file.value("SELECT hex(SessionIp) FROM Session"), "61EFBBBF");
    expectIntact();
}

TEST_F(HostileTexts, ANulTerminatorIsPartOfATextAndOfNothingElse)
{
    for (const std::u16string &json : {std::u16string({'a', 0, 'b'}), std::u16string(uR"(a\u0000b)")}) {
        ASSERT_EQ(addLocaleWithText(json), 0u);
        EXPECT_EQ(storedBytes(file), "610062");
        const Answer<FlatLocale> locale = get(getLocale, 1);
        ASSERT_EQ(locale.code, 0u);
        const auto *iso = reinterpret_cast<const char16_t *>(locale->iso);
        EXPECT_EQ(std::u16string(iso, 4), std::u16string({'a', 0, 'b', 0}));
        EXPECT_EQ(listBy(getLocalesWithParams, "iso", std::string("a\0b", 3)).size(), 1u);
        EXPECT_EQ(listBy(getLocalesWithParams, "iso", "a").code, 8u);
    }
    EXPECT_EQ(listBy(getLocalesWithParams, std::string("iso\0", 4), "x").code, 10u);
    const std::string document = R"({"D":{"items":[{"id":1}]}})";
    EXPECT_EQ(send(addLocales, document + '\0'), 10u);
    EXPECT_EQ(send(addLocales, '\0' + document), 10u);
    expectAll(std::string(1, '\0'), 10);
    expectIntact();
}

} // namespace
