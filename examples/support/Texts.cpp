#include "Texts.h"

#include <fstream>
#include <iterator>
#include <stdexcept>

namespace example {
namespace {

constexpr char32_t replacement = 0xFFFD;
constexpr char32_t firstBeyondOneUnit = 0x10000; // from here on UTF-16 uses a surrogate pair
constexpr char32_t firstHighSurrogate = 0xD800;
constexpr char32_t firstLowSurrogate = 0xDC00;
constexpr char32_t lastLowSurrogate = 0xDFFF;

bool isHighSurrogate(char32_t unit)
{
    return unit >= firstHighSurrogate && unit < firstLowSurrogate;
}

bool isLowSurrogate(char32_t unit)
{
    return unit >= firstLowSurrogate && unit <= lastLowSurrogate;
}

// The number of continuation bytes after a lead byte, -1 if the byte is not a lead byte.
int followersOf(unsigned char lead)
{
    if (lead < 0x80)
        return 0;
    if (lead < 0xC2 || lead > 0xF4)
        return -1;
    return lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
}

char32_t takeCodePoint(std::string_view &utf8)
{
    const auto lead = static_cast<unsigned char>(utf8.front());
    utf8.remove_prefix(1);
    const int followers = followersOf(lead);
    if (followers <= 0)
        return followers == 0 ? lead : replacement;

    char32_t codePoint = lead & (0x3Fu >> followers);
    for (int i = 0; i < followers; ++i) {
        if (utf8.empty() || (static_cast<unsigned char>(utf8.front()) & 0xC0u) != 0x80u)
            return replacement;
        codePoint = codePoint << 6 | (static_cast<unsigned char>(utf8.front()) & 0x3Fu);
        utf8.remove_prefix(1);
    }
    constexpr char32_t smallest[] = {0, 0x80, 0x800, firstBeyondOneUnit}; // an overlong form is invalid too
    const bool isSound = codePoint >= smallest[followers] && codePoint <= 0x10FFFF && !isHighSurrogate(codePoint)
                      && !isLowSurrogate(codePoint);
    return isSound ? codePoint : replacement;
}

void appendUtf8(std::string &utf8, char32_t codePoint)
{
    const auto append = [&utf8](char32_t byte) { utf8 += static_cast<char>(static_cast<unsigned char>(byte)); };
    const auto appendFollower = [&](int shift) { append(0x80 | (codePoint >> shift & 0x3F)); };
    if (codePoint < 0x80) {
        append(codePoint);
    } else if (codePoint < 0x800) {
        append(0xC0 | codePoint >> 6);
        appendFollower(0);
    } else if (codePoint < firstBeyondOneUnit) {
        append(0xE0 | codePoint >> 12);
        appendFollower(6);
        appendFollower(0);
    } else {
        append(0xF0 | codePoint >> 18);
        appendFollower(12);
        appendFollower(6);
        appendFollower(0);
    }
}

} // namespace

std::u32string codePointsOf(std::string_view utf8)
{
    std::u32string codePoints;
    while (!utf8.empty())
        codePoints += takeCodePoint(utf8);
    return codePoints;
}

Utf16 toUtf16(std::string_view utf8)
{
    Utf16 units;
    units.reserve(utf8.size());
    for (const char32_t codePoint : codePointsOf(utf8)) {
        if (codePoint < firstBeyondOneUnit) {
            units.push_back(static_cast<uint16_t>(codePoint));
        } else {
            const char32_t rest = codePoint - firstBeyondOneUnit;
            units.push_back(static_cast<uint16_t>(firstHighSurrogate + (rest >> 10)));
            units.push_back(static_cast<uint16_t>(firstLowSurrogate + (rest & 0x3FF)));
        }
    }
    return units;
}

std::string toUtf8(const uint16_t *text)
{
    std::string utf8;
    while (*text != 0) {
        char32_t codePoint = *text++;
        if (isHighSurrogate(codePoint) && isLowSurrogate(*text))
            codePoint = firstBeyondOneUnit + ((codePoint - firstHighSurrogate) << 10) + (*text++ - firstLowSurrogate);
        else if (isHighSurrogate(codePoint) || isLowSurrogate(codePoint))
            codePoint = replacement;
        appendUtf8(utf8, codePoint);
    }
    return utf8;
}

Utf16 readDocument(const std::filesystem::path &file)
{
    std::ifstream stream(file, std::ios::binary);
    if (!stream)
        throw std::runtime_error("cannot read " + file.string());
    return toUtf16(std::string(std::istreambuf_iterator<char>(stream), {}));
}

} // namespace example
