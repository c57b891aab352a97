// Documents that are bombs, and texts whose count lies: refused, or taken whole, and no unit beyond a count is read.
#include "GuardedText.h"
#include "Hostile.h"

#include <cstdlib>

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/lsan_interface.h>
#endif

using namespace brimlet::test;

namespace {

class HostileInput : public HostileTest
{
};

// ---- Bombs ----

bool isLongForm()
{
    const char *form = std::getenv("BRIMLET_FAULTS");
    return form && std::string(form) == "long";
}

std::string times(size_t count, const std::string &text)
{
    std::string all;
    all.reserve(count * text.size());
    for (size_t i = 0; i < count; ++i)
        all += text;
    return all;
}

TEST_F(HostileInput, AMillionOpeningBracketsAreRefused)
{
    const size_t million = 1000000;
    expectAll(times(million, "["), 10);
    expectAll(times(million, R"({"D":)"), 10);
    expectAll(R"({"D":)" + times(million, "["), 10);
    expectAll(R"({"D":{"items":)" + times(million, "["), 10);
    expectAll(R"({"D":{"items":)" + times(million, R"([{"items":)"), 10);
    expectEmpty();
    expectIntact();
}

TEST_F(HostileInput, DocumentsNestUpTo1024Levels)
{
    // Two levels are the document's own.
    for (const size_t levels : {1000u, 1021u, 1022u}) {
        const std::string nested = times(levels, R"({"a":)") + "1" + times(levels, "}");
        EXPECT_EQ(send(addDevice, R"({"D":{"id":1,"x":)" + nested + "}}"), 0u) << levels;
        EXPECT_EQ(send(addDevice, R"({"D":{"id":1,"x":)" + times(levels, "[") + times(levels, "]") + "}}"), 0u);
    }
    for (const size_t levels : {1023u, 1024u, 1025u, 2000u}) {
        const std::string nested = times(levels, R"({"a":)") + "1" + times(levels, "}");
        EXPECT_EQ(send(addDevice, R"({"D":{"id":1,"x":)" + nested + "}}"), 10u) << levels;
        EXPECT_EQ(send(addDevice, R"({"D":{"id":1,"x":)" + times(levels, "[") + times(levels, "]") + "}}"), 10u);
    }
    expectIntact();
}

TEST_F(HostileInput, ATextOf64MegabytesIsStoredFoundAndReturned)
{
    const size_t size = size_t{64} << 20;
    const std::string text(size, 'x');
    ASSERT_EQ(send(addUsers, R"({"D":{"items":[{"id":7,"name":")" + text + R"("}]}})"), 0u);
    EXPECT_EQ(file.number("SELECT length(UsersName) FROM Users"), static_cast<int64_t>(size));
    const List<FlatUser> users = listBy(getUsersWithParams, "name", text);
    ASSERT_EQ(users.size(), 1u);
    EXPECT_EQ(std::char_traits<char16_t>::length(reinterpret_cast<const char16_t *>(users[0].name)), size);
    expectIntact();
}

TEST_F(HostileInput, AnAddressOf64MegabytesIsRemembered)
{
    const size_t size = size_t{64} << 20;
    ASSERT_EQ(send(setServerIp, std::string(size, 'x')), 0u);
    uint16_t *address = nullptr;
    ASSERT_EQ(getServerIp(&address), 0u);
    const Owned<uint16_t> owned(address);
    EXPECT_EQ(std::char_traits<char16_t>::length(reinterpret_cast<const char16_t *>(address)), size);
}

// 20 megabytes, 200 in the long form.
TEST_F(HostileInput, ADocumentOfManyMegabytesIsStoredWhole)
{
    const size_t count = isLongForm() ? 200 << 10 : 20 << 10;
    const std::string kilobyte(1000, 'x');
    std::string items;
    for (size_t id = 1; id <= count; ++id)
        items += (id > 1 ? R"(,{"id":)" : R"({"id":)") + std::to_string(id) + R"(,"iso":")" + kilobyte + "\"}";
    EXPECT_EQ(send(addLocales, R"({"D":{"items":[)" + items + "]}}"), 0u);
    EXPECT_EQ(file.number("SELECT sum(length(LocalesIso)) FROM Locales"), static_cast<int64_t>(count * 1000));
    EXPECT_EQ(send(addLocales, R"({"D":{"items":[)" + items + "]}"), 10u) << "one bracket short";
    EXPECT_EQ(send(addLocales, R"({"D":{"items":[)" + items + ",{}]}}"), 5u) << "one record too many";
    expectIntact();
}

// 200,000 records, a million in the long form.
TEST_F(HostileInput, AVastBatchIsStoredAndReturnedAsAWhole)
{
    const uint32_t count = isLongForm() ? 1000000 : 200000;
    std::string items;
    for (uint32_t id = 1; id <= count; ++id)
        items += (id > 1 ? R"(,{"id":)" : R"({"id":)") + std::to_string(id) + "}";
    ASSERT_EQ(send(addLocales, R"({"D":{"items":[)" + items + "]}}"), 0u);
    EXPECT_EQ(file.number("SELECT count(*) FROM Locales"), count);
    const List<FlatLocale> locales = list(getLocales);
    EXPECT_EQ(locales.code, 0u);
    EXPECT_EQ(locales.size(), count);
    expectIntact();
}

TEST_F(HostileInput, ARepeatedKeyHasItsLastValue)
{
#if defined(__SANITIZE_ADDRESS__)
    // Qt's parser leaks an array or object whose key is repeated. The library cannot free it.
    const __lsan::ScopedDisabler disabler;
#endif
    EXPECT_EQ(send(addLocales, R"({"D":{"items":[{"id":1}],"items":[{"id":2,"iso":"a","iso":"b"}]}})"), 0u);
    EXPECT_EQ(file.rows("SELECT LocalesId, LocalesIso FROM Locales"), (std::vector<Row>{{"2", "b"}}));
    EXPECT_EQ(send(addDevice, R"({"D":{"id":1,"sections":[{"id":1}],"sections":5}})"), 0u);
    EXPECT_EQ(file.number("SELECT count(*) FROM Sections"), 0);
    EXPECT_EQ(send(addLocales, R"({"D":{"items":[{"id":1}]},"D":5})"), 5u);
}

// ---- Counts ----

// Counts that a signed number takes for negative ones.
const std::vector<uint32_t> vastCounts = {0x80000000u, 0x80000001u, 0xFFFFFFFEu, 0xFFFFFFFFu};

TEST_F(HostileInput, NoUnitBeyondTheCountIsRead)
{
    const GuardedText nothing(u"");
    const GuardedText bracket(u"{");
    const GuardedText document(uR"({"D":{"none":1}})");
    for (const Reader &reader : readers()) {
        EXPECT_EQ(reader.call(nothing.data(), 0), 10u) << reader.name;
        EXPECT_EQ(reader.call(bracket.data(), 0), 10u) << reader.name;
        EXPECT_EQ(reader.call(bracket.data(), 1), 10u) << reader.name;
        EXPECT_EQ(reader.call(document.data(), document.count()), 5u) << reader.name;
        EXPECT_EQ(reader.call(document.data(), document.count() - 1), 10u) << reader.name;
    }
    expectEmpty();
}

// Such a count is ignored: the text is read up to a NUL terminator, wherever that is.
TEST_F(HostileInput, ACountFrom2ToThe31ReadsUpToANulTerminator)
{
    const GuardedText nothing(std::u16string(1, u'\0'));
    const GuardedText document(std::u16string(uR"({"D":{"none":1}})") + u'\0');
    for (const Reader &reader : readers())
        for (const uint32_t count : vastCounts) {
            EXPECT_EQ(reader.call(nothing.data(), count), 10u) << reader.name << " " << count;
            EXPECT_EQ(reader.call(document.data(), count), 5u) << reader.name << " " << count;
        }
    expectEmpty();
}

TEST_F(HostileInput, NoUnitOfAnAddressBeyondTheCountIsRead)
{
    const GuardedText address(u"10.0.0.1");
    EXPECT_EQ(setServerIp(address.data(), address.count()), 0u);
    EXPECT_EQ(file.value("SELECT SessionIp FROM Session"), "10.0.0.1");
    EXPECT_EQ(setServerIp(address.data(), 1), 0u);
    EXPECT_EQ(file.value("SELECT SessionIp FROM Session"), "1");
    EXPECT_EQ(setServerIp(address.data(), 0), 0u);
    EXPECT_EQ(file.value("SELECT SessionIp FROM Session"), "");
    const GuardedText ended(std::u16string(u"10.0.0.2") + u'\0');
    for (const uint32_t count : vastCounts) {
        EXPECT_EQ(setServerIp(ended.data(), count), 0u);
        EXPECT_EQ(file.value("SELECT SessionIp FROM Session"), "10.0.0.2");
    }
}

TEST_F(HostileInput, NoUnitOfAKeyOrAValueBeyondTheCountIsRead)
{
    ASSERT_EQ(send(addLocales, R"({"D":{"items":[{"id":1,"iso":"nb"},{"id":2,"iso":"n"},{"id":3,"iso":""}]}})"), 0u);
    const auto ids = [](const GuardedText &key, uint32_t keyCount, const GuardedText &value, uint32_t valueCount) {
        List<FlatLocale> locales;
        locales.code =
            getLocalesWithParams(locales.out(), locales.count(), key.data(), keyCount, value.data(), valueCount);
        return idsOf(locales);
    };
    const GuardedText key(u"iso");
    const GuardedText value(u"nb");
    EXPECT_EQ(ids(key, 3, value, 2).ids, std::vector<uint32_t>{1});
    EXPECT_EQ(ids(key, 3, value, 1).ids, std::vector<uint32_t>{2});
    EXPECT_EQ(ids(key, 3, value, 0).ids, std::vector<uint32_t>{3});
    EXPECT_EQ(ids(key, 2, value, 2).code, 10u);
    EXPECT_EQ(ids(key, 0, value, 2).code, 10u);
    const GuardedText endedKey(std::u16string(u"iso") + u'\0');
    const GuardedText endedValue(std::u16string(u"nb") + u'\0');
    for (const uint32_t count : vastCounts)
        EXPECT_EQ(ids(endedKey, count, endedValue, count).ids, std::vector<uint32_t>{1}) << count;
}

} // namespace
