// Runs a fragment of a page, which takes the place of the line that names it.
#include <brimlet.hpp>

#include <filesystem>
#include <iostream>

// Helpers that the fragments of pages call.
[[maybe_unused]] static void show(std::u16string_view text)
{
    std::cout << brimlet::utf8(text) << '\n';
}
[[maybe_unused]] static void show(const uint16_t *text)
{
    show(reinterpret_cast<const char16_t *>(text));
}

int main()
{
    std::filesystem::create_directory("cache");
    FRAGMENT
}
