// Random documents, each with what a store should make of it.
#pragma once

#include "Shown.h"

#include <random>

namespace brimlet::test {

// The same numbers for the same seed on every platform.
class Dice
{
public:
    explicit Dice(uint32_t seed) : generator(seed) {}

    uint32_t below(uint32_t limit) { return static_cast<uint32_t>(generator()) % limit; }
    bool isLucky(uint32_t percent) { return below(100) < percent; }

    template<class List>
    const auto &oneOf(const List &list)
    {
        return list[below(static_cast<uint32_t>(std::size(list)))];
    }

    // Few ids, so that rows meet; now and then the ends of their range.
    uint32_t id() { return isLucky(3) ? UINT32_MAX : isLucky(3) ? 0 : 1 + below(4); }

private:
    std::mt19937 generator;
};

enum class Kind {
    Text,
    Number,
    Reference, // a number that is mostly an id
    Whole,
    WholeReference,
    Byte,
    Flag,
    Phone
};

// A member of a document: its key, the field that it feeds, and how its values are read.
struct Member
{
    const char *key;
    const char *field;
    Kind kind;
};
using Members = std::vector<Member>;

// An object as JSON without its braces, and the row that it makes.
struct Document
{
    std::string members;
    Shown row;

    uint32_t id() const { return static_cast<uint32_t>(std::stoul(row.at("id"))); }
    std::string object() const { return "{" + members + "}"; }
    void append(const std::string &key, const std::string &json);
};

// An object with the id under its key, and each of the members or not.
Document makeDocument(Dice &dice, const char *idKey, const Members &members);

} // namespace brimlet::test
