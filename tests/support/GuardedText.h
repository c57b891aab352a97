// A text that ends at the start of inaccessible memory.
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
