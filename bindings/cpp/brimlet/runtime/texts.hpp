/**
 * @file texts.hpp
 * Texts as arguments, in UTF-16 and UTF-8. Included by brimlet.hpp.
 */
#ifndef BRIMLET_RUNTIME_TEXTS_HPP
#define BRIMLET_RUNTIME_TEXTS_HPP

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace brimlet {

namespace detail {

constexpr char32_t replacement = 0xFFFD; // for every invalid sequence

inline bool isHighSurrogate(char32_t unit)
{
    return unit >= 0xD800 && unit < 0xDC00;
}

inline bool isLowSurrogate(char32_t unit)
{
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

inline char32_t takeCodePoint(std::string_view &utf8)
{
    const auto lead = static_cast<unsigned char>(utf8.front());
    utf8.remove_prefix(1);
    if (lead < 0x80)
        return lead;
    if (lead < 0xC2 || lead > 0xF4)
        return replacement;
    const int followers = lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
    char32_t codePoint = lead & (0x3Fu >> followers);
    for (int i = 0; i < followers; ++i) {
        if (utf8.empty() || (static_cast<unsigned char>(utf8.front()) & 0xC0u) != 0x80u)
            return replacement;
        codePoint = codePoint << 6 | (static_cast<unsigned char>(utf8.front()) & 0x3Fu);
        utf8.remove_prefix(1);
    }
    constexpr char32_t smallest[] = {0, 0x80, 0x800, 0x10000}; // a longer form than needed is invalid
    const bool isSound = codePoint >= smallest[followers] && codePoint <= 0x10FFFF && !isHighSurrogate(codePoint)
                      && !isLowSurrogate(codePoint);
    return isSound ? codePoint : replacement;
}

inline char32_t takeCodePoint(std::u16string_view &utf16)
{
    const char32_t unit = utf16.front();
    utf16.remove_prefix(1);
    if (isHighSurrogate(unit) && !utf16.empty() && isLowSurrogate(utf16.front())) {
        const char32_t low = utf16.front();
        utf16.remove_prefix(1);
        return 0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00);
    }
    return isHighSurrogate(unit) || isLowSurrogate(unit) ? replacement : unit;
}

inline void append(std::u16string &utf16, char32_t codePoint)
{
    if (codePoint < 0x10000) {
        utf16 += static_cast<char16_t>(codePoint);
    } else {
        utf16 += static_cast<char16_t>(0xD800 + ((codePoint - 0x10000) >> 10));
        utf16 += static_cast<char16_t>(0xDC00 + ((codePoint - 0x10000) & 0x3FF));
    }
}

inline void append(std::string &utf8, char32_t codePoint)
{
    const auto byte = [&utf8](char32_t value) { utf8 += static_cast<char>(static_cast<unsigned char>(value)); };
    const auto followers = [&](int count) {
        while (count-- > 0)
            byte(0x80 | (codePoint >> (6 * count) & 0x3F));
    };
    if (codePoint < 0x80) {
        byte(codePoint);
    } else if (codePoint < 0x800) {
        byte(0xC0 | codePoint >> 6);
        followers(1);
    } else if (codePoint < 0x10000) {
        byte(0xE0 | codePoint >> 12);
        followers(2);
    } else {
        byte(0xF0 | codePoint >> 18);
        followers(3);
    }
}

} // namespace detail

/** Converts UTF-8 to UTF-16. An invalid sequence becomes U+FFFD. */
inline std::u16string utf16(std::string_view utf8)
{
    std::u16string text;
    text.reserve(utf8.size());
    while (!utf8.empty())
        detail::append(text, detail::takeCodePoint(utf8));
    return text;
}

/** Converts UTF-16 to UTF-8. An unpaired surrogate becomes U+FFFD. */
inline std::string utf8(std::u16string_view utf16)
{
    std::string text;
    text.reserve(utf16.size());
    while (!utf16.empty())
        detail::append(text, detail::takeCodePoint(utf16));
    return text;
}

/** The longest text that the library takes, in UTF-16 code units. */
constexpr size_t longestText = 700'000'000;

/** A text as an argument: a view of UTF-16, or a conversion of UTF-8. */
class TextArgument
{
public:
    /** @name UTF-16
     *  @{ */
    /** A view: the text must live as long as the argument. */
    TextArgument(std::u16string_view utf16) : text(utf16) {}
    TextArgument(const std::u16string &utf16) : text(utf16) {}
    TextArgument(const char16_t *utf16) : text(utf16) {}
    /** @} */

    /** @name UTF-8
     *  @{ */
    /** A conversion: the argument keeps the converted text. */
    TextArgument(std::string_view utf8) : converted(brimlet::utf16(utf8)), text(converted) {}
    TextArgument(const std::string &utf8) : TextArgument(std::string_view(utf8)) {}
    TextArgument(const char *utf8) : TextArgument(std::string_view(utf8)) {}
    /** @} */

    TextArgument(const TextArgument &) = delete;
    TextArgument &operator=(const TextArgument &) = delete;

    /** The UTF-16 code units. */
    const uint16_t *units() const { return reinterpret_cast<const uint16_t *>(text.data()); }

    /** The number of code units. Throws std::length_error if there are more than longestText. */
    uint32_t length() const
    {
        if (text.size() > longestText)
            throw std::length_error("a text of more than " + std::to_string(longestText) + " UTF-16 units");
        return static_cast<uint32_t>(text.size());
    }

private:
    std::u16string converted;
    std::u16string_view text;
};

} // namespace brimlet

#endif
