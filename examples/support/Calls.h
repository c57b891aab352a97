// Helpers for the signatures that nearly all functions of the library have. Each takes the function with its name,
// calls it, checks the result, and returns an owner of what the client received.
#pragma once

#include "Owned.h"
#include "Results.h"
#include "Texts.h"

namespace example {

// The length of a text: UTF-16 code units, not bytes.
inline uint32_t unitsOf(const Utf16 &text)
{
    return static_cast<uint32_t>(text.size());
}

// A function that takes a document and returns only a code.
using Sender = uint32_t (*)(const uint16_t *json, uint32_t length);

inline void send(const std::string &name, Sender function, const Utf16 &json)
{
    expect(name, function(json.data(), unitsOf(json)));
}

// A function that returns one record.
template<class Flat, class... Parameters, class... Arguments>
Owned<Flat> getOne(const std::string &name, uint32_t (*function)(Flat **, Parameters...), Arguments... arguments)
{
    Flat *record = nullptr; // must be null: the library refuses to overwrite a pointer
    expect(name, function(&record, arguments...));
    return Owned<Flat>(record);
}

// A function that returns an array. The library has no empty arrays, it returns BRIMLET_NOT_FOUND.
template<class Flat, class... Parameters, class... Arguments>
OwnedArray<Flat> getAll(const std::string &name, uint32_t (*function)(Flat **, uint32_t *, Parameters...),
                        Arguments... arguments)
{
    Flat *records = nullptr;
    uint32_t count = 0;
    const uint32_t result = function(&records, &count, arguments...);
    if (result == BRIMLET_NOT_FOUND)
        return {};
    expect(name, result);
    return OwnedArray<Flat>(records, count);
}

// A function that returns an array of the records whose field equals a value.
template<class Flat>
using Finder = uint32_t (*)(Flat **records, uint32_t *count, const uint16_t *key, uint32_t keyLength,
                            const uint16_t *value, uint32_t valueLength);

template<class Flat>
OwnedArray<Flat> getAllBy(const std::string &name, Finder<Flat> function, const std::string &key,
                          const std::string &value)
{
    const Utf16 keyText = toUtf16(key);
    const Utf16 valueText = toUtf16(value);
    return getAll(name, function, keyText.data(), unitsOf(keyText), valueText.data(), unitsOf(valueText));
}

// A function that takes a document of one record and returns the record as stored.
template<class Flat>
using Exchanger = uint32_t (*)(Flat **record, const uint16_t *json, uint32_t length);

template<class Flat>
Owned<Flat> exchange(const std::string &name, Exchanger<Flat> function, const Utf16 &json)
{
    return getOne(name, function, json.data(), unitsOf(json));
}

} // namespace example
