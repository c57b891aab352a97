// The meaning of the bytes of an input. Text is UTF-8, so that inputs can be read and written by hand; three bytes that
// UTF-8 never uses have a meaning of their own.
#pragma once

#include <QString>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace brimlet::fuzz {

constexpr uint8_t endOfCall = 0xFF;     // between two calls
constexpr uint8_t rawUnit = 0xFE;       // the next two bytes, high one first, are a raw code unit
constexpr uint8_t endOfArgument = 0xFD; // between two arguments of a call

struct Bytes
{
    const uint8_t *data = nullptr;
    size_t size = 0;

    // Everything after the first bytes.
    Bytes behind(size_t count) const { return count < size ? Bytes{data + count, size - count} : Bytes{}; }
};

inline std::vector<Bytes> split(const Bytes &bytes, uint8_t separator)
{
    std::vector<Bytes> parts;
    size_t start = 0;
    for (size_t i = 0; i <= bytes.size; ++i) {
        if (i < bytes.size && bytes.data[i] != separator)
            continue;
        parts.push_back({bytes.data + start, i - start});
        start = i + 1;
    }
    return parts;
}

inline QString toText(const Bytes &bytes)
{
    QString text;
    size_t start = 0;
    const auto appendUpTo = [&](size_t end) {
        text += QString::fromUtf8(reinterpret_cast<const char *>(bytes.data) + start, static_cast<int>(end - start));
    };
    for (size_t i = 0; i + 2 < bytes.size; ++i) {
        if (bytes.data[i] != rawUnit)
            continue;
        appendUpTo(i);
        text += QChar(static_cast<ushort>(bytes.data[i + 1] << 8 | bytes.data[i + 2]));
        i += 2;
        start = i + 1;
    }
    if (bytes.size > start)
        appendUpTo(bytes.size);
    return text;
}

// A text as a client passes it: exactly its code units without a terminator, so that a read beyond them is detected.
class Units
{
public:
    explicit Units(const Bytes &bytes)
    {
        const QString text = toText(bytes);
        count = static_cast<uint32_t>(text.size());
        units = std::make_unique<uint16_t[]>(count);
        for (uint32_t i = 0; i < count; ++i)
            units[i] = text.at(static_cast<int>(i)).unicode();
    }
    const uint16_t *data() const { return units.get(); }
    uint32_t length() const { return count; }

private:
    std::unique_ptr<uint16_t[]> units;
    uint32_t count = 0;
};

// The digits that a part starts with, as an unsigned 32-bit number.
inline uint32_t toNumber(const Bytes &bytes)
{
    uint32_t number = 0;
    for (size_t i = 0; i < bytes.size && bytes.data[i] >= '0' && bytes.data[i] <= '9'; ++i)
        number = number * 10u + static_cast<uint32_t>(bytes.data[i] - '0');
    return number;
}

} // namespace brimlet::fuzz
