// The shapes that nearly all functions of the library come in. Each helper takes the function with its name, makes
// the call, checks the answer and puts what came out into safe hands.
#pragma once

#include "Owned.h"
#include "Results.h"
#include "Texts.h"

namespace example {

// The count that goes with every text: UTF-16 units, not bytes.
inline uint32_t unitsOf(const Utf16 &text)
{
    return static_cast<uint32_t>(text.size());
}

// A function that takes a document and hands nothing back.
using Sender = uint32_t (*)(const uint16_t *json, uint32_t length);

inline void send(const std::string &name, Sender function, const Utf16 &json)
{
    expect(name, function(json.data(), unitsOf(json)));
}

// A function that hands out one record.
template<class Flat, class... Parameters, class... Arguments>
Owned<Flat> getOne(const std::string &name, uint32_t (*function)(Flat **, Parameters...), Arguments... arguments)
{
    Flat *record = nullptr; // has to be null: the library refuses to overwrite a pointer
    expect(name, function(&record, arguments...));
    return Owned<Flat>(record);
}

// A function that hands out a list. The library has no empty lists, it answers that nothing was found.
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

// A function that hands out the list of the records whose field equals a value.
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

// A function that takes a document of one record and hands out the record as it is stored then.
template<class Flat>
using Exchanger = uint32_t (*)(Flat **record, const uint16_t *json, uint32_t length);

template<class Flat>
Owned<Flat> exchange(const std::string &name, Exchanger<Flat> function, const Utf16 &json)
{
    return getOne(name, function, json.data(), unitsOf(json));
}

} // namespace example
