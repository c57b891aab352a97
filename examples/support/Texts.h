// Conversion of texts: the client uses UTF-8, the library UTF-16.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace example {

// A text for the library: UTF-16 code units and their count, no terminator.
using Utf16 = std::vector<uint16_t>;

// An invalid UTF-8 sequence becomes U+FFFD.
std::u32string codePointsOf(std::string_view utf8);

Utf16 toUtf16(std::string_view utf8);

// The UTF-8 of a text that the library returned. It ends at the NUL terminator; an unpaired surrogate becomes U+FFFD.
std::string toUtf8(const uint16_t *text);

// A whole JSON file, ready to send.
Utf16 readDocument(const std::filesystem::path &file);

} // namespace example
