// A text that ends where memory that nobody may touch begins.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace brimlet::test {

class GuardedText
{
public:
    explicit GuardedText(const std::u16string &text);
    ~GuardedText();
    GuardedText(const GuardedText &) = delete;
    GuardedText &operator=(const GuardedText &) = delete;
    const uint16_t *data() const { return start; }
    uint32_t count() const { return length; }

private:
    void *memory;
    uint32_t length;
    uint16_t *start;
};

} // namespace brimlet::test
