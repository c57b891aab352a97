// Texts on both sides of the boundary: the client thinks in UTF-8, the library speaks UTF-16.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace example {

// A text as the library takes it: UTF-16 units and their count, no terminator.
using Utf16 = std::vector<uint16_t>;

// A broken UTF-8 sequence gives U+FFFD.
std::u32string codePointsOf(std::string_view utf8);

Utf16 toUtf16(std::string_view utf8);

// The UTF-8 of a text that the library handed out. It ends at the zero unit; half a surrogate pair gives U+FFFD.
std::string toUtf8(const uint16_t *text);

// A whole JSON file, ready to be sent.
Utf16 readDocument(const std::filesystem::path &file);

} // namespace example
