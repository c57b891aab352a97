// The texts, codes and meanings of brimlet.hpp: what needs no launch.
#include "brimlet.hpp"

#include <algorithm>
#include <gtest/gtest.h>
#include <vector>

namespace {

using namespace brimlet;

TEST(BindingTexts, Utf8BecomesUtf16AndComesBack)
{
    const std::string text = "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"; // one, two, three and four bytes
    EXPECT_EQ(utf16(text), u"a\u00E9\u20AC\U0001F600");
    EXPECT_EQ(utf8(u"a\u00E9\u20AC\U0001F600"), text);
    EXPECT_EQ(utf16(""), u"");
    EXPECT_EQ(utf8(u""), "");
    EXPECT_EQ(utf16(std::string("\0x", 2)), std::u16string(u"\0x", 2));
}

TEST(BindingTexts, BrokenUtf8ReturnsTheReplacementCharacter)
{
    EXPECT_EQ(utf16("\x80z"), u"\uFFFDz");
    EXPECT_EQ(utf16("\xC3"), u"\uFFFD");
    EXPECT_EQ(utf16("\xC0\x80"), u"\uFFFD\uFFFD");   // a longer form than needed
    EXPECT_EQ(utf16("\xE0\x80\x80"), u"\uFFFD");     // the same in three bytes
    EXPECT_EQ(utf16("\xED\xA0\x80"), u"\uFFFD");     // an unpaired surrogate
    EXPECT_EQ(utf16("\xF4\x90\x80\x80"), u"\uFFFD"); // beyond the last character
    EXPECT_EQ(utf16("\xE2\x82z"), u"\uFFFDz");
}

TEST(BindingTexts, HalfASurrogatePairReturnsTheReplacementCharacter)
{
    const char16_t high[] = {0xD83D, u'z', 0};
    const char16_t low[] = {0xDE00, u'z', 0};
    const char16_t last[] = {u'z', 0xD83D, 0};
    EXPECT_EQ(utf8(high), "\xEF\xBF\xBDz");
    EXPECT_EQ(utf8(low), "\xEF\xBF\xBDz");
    EXPECT_EQ(utf8(last), "z\xEF\xBF\xBD");
}

TEST(BindingTexts, ArgumentsTakeBothFormsOfText)
{
    const std::u16string wide = u"\u20AC";
    EXPECT_EQ(TextArgument(wide).length(), 1u);
    EXPECT_EQ(TextArgument(wide).units(), reinterpret_cast<const uint16_t *>(wide.data())); // not copied
    EXPECT_EQ(TextArgument(u"ab").length(), 2u);
    EXPECT_EQ(TextArgument(std::u16string_view(u"ab", 1)).length(), 1u);
    EXPECT_EQ(TextArgument("\xE2\x82\xAC").length(), 1u);
    EXPECT_EQ(TextArgument("\xE2\x82\xAC").units()[0], 0x20AC);
    EXPECT_EQ(TextArgument(std::string("ab")).length(), 2u);
    EXPECT_EQ(TextArgument(std::string_view("ab", 1)).length(), 1u);
}

TEST(BindingTexts, ATextThatIsTooLongIsRefused)
{
    const char16_t unit = u'a'; // the only one, and not even this one is read
    const auto textOf = [&unit](size_t length) { return std::u16string_view(&unit, length); };
    EXPECT_EQ(TextArgument(textOf(700'000'000)).length(), 700'000'000u);
    EXPECT_THROW(TextArgument(textOf(700'000'001)).length(), std::length_error);
}

TEST(BindingTexts, CodesAreTheNumbersOfTheHeader)
{
    EXPECT_EQ(static_cast<uint32_t>(Code::Done), 0u);
    EXPECT_EQ(static_cast<uint32_t>(Code::NoBlock), 3u);
    EXPECT_EQ(static_cast<uint32_t>(Code::Incomplete), 5u);
    EXPECT_EQ(static_cast<uint32_t>(Code::ReadFailed), 7u);
    EXPECT_EQ(static_cast<uint32_t>(Code::NotFound), 8u);
    EXPECT_EQ(static_cast<uint32_t>(Code::WriteFailed), 9u);
    EXPECT_EQ(static_cast<uint32_t>(Code::Refused), 10u);
    EXPECT_EQ(static_cast<uint32_t>(Code::NoParent), 11u);
    EXPECT_EQ(static_cast<uint32_t>(Code::NoRecord), 255u);
    EXPECT_EQ(static_cast<uint32_t>(LaunchResult::Opened), 0u);
    EXPECT_EQ(static_cast<uint32_t>(LaunchResult::Failed), 6u);
    EXPECT_EQ(static_cast<uint32_t>(LaunchResult::Created), 100u);
    EXPECT_EQ(static_cast<uint32_t>(LaunchResult::ReplacedSchema), 101u);
    EXPECT_EQ(static_cast<uint32_t>(LaunchResult::ReplacedUnreadable), 102u);
    EXPECT_EQ(static_cast<uint32_t>(LaunchResult::ReplacedVersion), 103u);
    EXPECT_EQ(static_cast<uint32_t>(LaunchResult::None), 255u);
    EXPECT_EQ(static_cast<uint32_t>(State::None), 0u);
    EXPECT_EQ(static_cast<uint32_t>(State::Launched), 1u);
    EXPECT_EQ(static_cast<uint32_t>(State::Running), 2u);
}

TEST(BindingTexts, EveryCodeHasAMeaningOfItsOwn)
{
    std::vector<std::string_view> meanings;
    for (const uint32_t code : {0u, 3u, 5u, 7u, 8u, 9u, 10u, 11u, 255u})
        meanings.push_back(meaning(static_cast<Code>(code)));
    for (const uint32_t result : {0u, 6u, 100u, 101u, 102u, 103u, 255u})
        meanings.push_back(meaning(static_cast<LaunchResult>(result)));
    for (const uint32_t state : {0u, 1u, 2u})
        meanings.push_back(meaning(static_cast<State>(state)));
    EXPECT_EQ(std::count(meanings.begin(), meanings.end(), "unknown"), 0);
    std::sort(meanings.begin(), meanings.end());
    EXPECT_EQ(std::unique(meanings.begin(), meanings.end()), meanings.end());

    EXPECT_EQ(meaning(Code::ReadFailed), "the store could not be read");
    EXPECT_EQ(meaning(static_cast<Code>(4)), "unknown");
    EXPECT_EQ(meaning(static_cast<LaunchResult>(4)), "unknown");
    EXPECT_EQ(meaning(static_cast<State>(4)), "unknown");
}

TEST(BindingTexts, LaunchResultsTellWhetherTheStoreIsUsable)
{
    for (const uint32_t result : {0u, 100u})
        EXPECT_TRUE(isUsable(static_cast<LaunchResult>(result))) << result;
    for (const uint32_t result : {6u, 101u, 102u, 103u, 255u})
        EXPECT_FALSE(isUsable(static_cast<LaunchResult>(result))) << result;
    for (const uint32_t result : {101u, 102u, 103u})
        EXPECT_TRUE(isReplaced(static_cast<LaunchResult>(result))) << result;
    for (const uint32_t result : {0u, 6u, 100u, 255u})
        EXPECT_FALSE(isReplaced(static_cast<LaunchResult>(result))) << result;
}

TEST(BindingTexts, AnErrorHasItsCodeAndItsMeaning)
{
    const Error error(Code::NotFound);
    EXPECT_EQ(error.code(), Code::NotFound);
    EXPECT_STREQ(error.what(), "8, the store holds nothing that fits");
}

TEST(BindingTexts, EveryCodeButDoneThatIsRequiredToBeDoneIsAnError)
{
    EXPECT_NO_THROW(require(Code::Done));
    for (const Code code : {Code::NoBlock, Code::Incomplete, Code::ReadFailed, Code::NotFound, Code::WriteFailed,
                            Code::Refused, Code::NoParent, Code::NoRecord})
        EXPECT_THROW(require(code), Error) << meaning(code);
}

} // namespace
