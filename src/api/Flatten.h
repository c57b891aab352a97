// Fills the flat records that the client owns and releases them. The FlatForm of a record lists its fields: pairs of a
// flat member and the record's member that it shows, in the order of the flat record, which is also the order of
// release.
#pragma once

#include "api/SharedMemory.h"
#include "brimlet/ResultCodes.h"
#include "catalog/Values.h"

#include <iterator>
#include <limits>
#include <tuple>
#include <vector>

namespace brimlet {

// Specialised for each record: `Flat`, its flat record, and `fields`, the list of pairs.
template<class Record>
struct FlatForm;

template<class Record>
using FlatOf = typename FlatForm<Record>::Flat;

template<class Record>
void fillFlat(FlatOf<Record> &flat, const Record &record);
template<class Record>
BrimletResult releaseFlat(FlatOf<Record> &flat);

template<class T>
void release(T *&block)
{
    freeShared(block);
    block = nullptr;
}

// ---- The kinds of fields ----

// Whether a flat member has the type that the record's member requires: the same type if it is always present,
// otherwise a pointer to UTF-16 code units for a text, or to a cell of the value's size and signedness.
template<class FlatMember, class Member>
constexpr bool canHold()
{
    using Value = typename Unwrapped<Member>::Value;
    using Cell = std::remove_pointer_t<FlatMember>;
    if constexpr (!Unwrapped<Member>::isOptional)
        return std::is_same_v<FlatMember, Member>;
    else if constexpr (std::is_same_v<Value, QString>)
        return std::is_same_v<FlatMember, uint16_t *>;
    else if constexpr (std::is_same_v<Value, bool>)
        return std::is_same_v<FlatMember, uint8_t *>;
    else
        return std::is_pointer_v<FlatMember> && sizeof(Cell) == sizeof(Value)
            && std::numeric_limits<Cell>::is_signed == std::numeric_limits<Value>::is_signed
            && std::numeric_limits<Cell>::is_integer == std::numeric_limits<Value>::is_integer;
}

// A value: in the flat record itself, or in its own block if it may be absent.
template<class Flat, class FlatMember, class Record, class Member>
struct FlatValue
{
    FlatMember Flat::*flatMember;
    Member Record::*member;

    void fill(Flat &flat, const Record &record) const
    {
        const Member &value = record.*member;
        if constexpr (!Unwrapped<Member>::isOptional) {
            flat.*flatMember = value;
        } else if constexpr (std::is_same_v<typename Unwrapped<Member>::Value, QString>) {
            flat.*flatMember = copyText(value);
        } else if (value) {
            using Cell = std::remove_pointer_t<FlatMember>;
            flat.*flatMember = allocate<Cell>();
            *(flat.*flatMember) = static_cast<Cell>(*value);
        }
    }

    BrimletResult release(Flat &flat) const
    {
        if constexpr (Unwrapped<Member>::isOptional)
            brimlet::release(flat.*flatMember);
        return BRIMLET_DONE;
    }
};

// A record in its own block.
template<class Flat, class FlatPart, class Record, class Part>
struct FlatNested
{
    FlatPart *Flat::*flatMember;
    std::optional<Part> Record::*member;

    void fill(Flat &flat, const Record &record) const
    {
        if (const auto &part = record.*member) {
            flat.*flatMember = allocateZeroed<FlatPart>();
            fillFlat(*(flat.*flatMember), *part);
        }
    }

    BrimletResult release(Flat &flat) const
    {
        FlatPart *&block = flat.*flatMember;
        if (!block)
            return BRIMLET_DONE;
        if (const BrimletResult inner = releaseFlat<Part>(*block))
            return inner;
        brimlet::release(block);
        return BRIMLET_DONE;
    }
};

// The flat records of a list in one block, or null for an empty list.
template<class Record>
FlatOf<Record> *flatArray(const std::vector<Record> &records)
{
    if (records.empty())
        return nullptr;
    auto *block = allocateZeroed<FlatOf<Record>>(records.size());
    for (size_t i = 0; i < records.size(); ++i)
        fillFlat(block[i], records[i]);
    return block;
}

// The same for a list that may be long: it frees the records half by half, as soon as their flat records are filled.
template<class Record>
FlatOf<Record> *flatArray(std::vector<Record> &&records)
{
    if (records.empty())
        return nullptr;
    auto *block = allocateZeroed<FlatOf<Record>>(records.size());
    auto *flat = block;
    while (!records.empty()) {
        const auto rest = records.begin() + static_cast<std::ptrdiff_t>(records.size() + 1) / 2;
        for (auto record = records.begin(); record != rest; ++record)
            fillFlat(*flat++, *record);
        records = std::vector<Record>(std::make_move_iterator(rest), std::make_move_iterator(records.end()));
    }
    return block;
}

// Releases the contents of the elements, then the block. Stops at the first element that refuses.
template<class Record>
BrimletResult releaseArray(FlatOf<Record> *&block, uint32_t count)
{
    for (uint32_t i = 0; i < count; ++i)
        if (const BrimletResult inner = releaseFlat<Record>(block[i]))
            return inner;
    release(block);
    return BRIMLET_DONE;
}

// A list of records in one block, with its count. Release refuses a pointer and a count that disagree.
template<class Flat, class FlatPart, class Record, class Part>
struct FlatList
{
    FlatPart *Flat::*flatMember;
    uint32_t Flat::*flatCount;
    std::vector<Part> Record::*member;

    void fill(Flat &flat, const Record &record) const
    {
        flat.*flatMember = flatArray(record.*member);
        flat.*flatCount = static_cast<uint32_t>((record.*member).size());
    }

    BrimletResult release(Flat &flat) const
    {
        FlatPart *&block = flat.*flatMember;
        uint32_t &count = flat.*flatCount;
        if ((block == nullptr) != (count == 0))
            return BRIMLET_REFUSED;
        if (!block)
            return BRIMLET_DONE;
        if (const BrimletResult inner = releaseArray<Part>(block, count))
            return inner;
        count = 0;
        return BRIMLET_DONE;
    }
};

// A list of numbers in one block, with its count, which release ignores and sets to 0.
template<class Flat, class Record>
struct FlatNumbers
{
    uint32_t *Flat::*flatMember;
    uint32_t Flat::*flatCount;
    std::vector<quint32> Record::*member;

    void fill(Flat &flat, const Record &record) const
    {
        const std::vector<quint32> &numbers = record.*member;
        if (numbers.empty())
            return;
        flat.*flatMember = allocate<uint32_t>(numbers.size());
        std::memcpy(flat.*flatMember, numbers.data(), numbers.size() * sizeof(uint32_t));
        flat.*flatCount = static_cast<uint32_t>(numbers.size());
    }

    BrimletResult release(Flat &flat) const
    {
        brimlet::release(flat.*flatMember);
        flat.*flatCount = 0;
        return BRIMLET_DONE;
    }
};

// ---- The entries of a form ----

template<class Flat, class FlatMember, class Record, class Member>
constexpr FlatValue<Flat, FlatMember, Record, Member> flatField(FlatMember Flat::*flatMember, Member Record::*member)
{
    static_assert(canHold<FlatMember, Member>(), "the cell of the flat record cannot hold this member of the record");
    return {flatMember, member};
}

template<class Flat, class FlatPart, class Record, class Part>
constexpr FlatNested<Flat, FlatPart, Record, Part> flatNested(FlatPart *Flat::*flatMember,
                                                              std::optional<Part> Record::*member)
{
    return {flatMember, member};
}

template<class Flat, class FlatPart, class Record, class Part>
constexpr FlatList<Flat, FlatPart, Record, Part> flatList(FlatPart *Flat::*flatMember, uint32_t Flat::*flatCount,
                                                          std::vector<Part> Record::*member)
{
    return {flatMember, flatCount, member};
}

template<class Flat, class Record>
constexpr FlatNumbers<Flat, Record> flatNumbers(uint32_t *Flat::*flatMember, uint32_t Flat::*flatCount,
                                                std::vector<quint32> Record::*member)
{
    return {flatMember, flatCount, member};
}

// ---- A whole record ----

// `flat` must be zeroed.
template<class Record>
void fillFlat(FlatOf<Record> &flat, const Record &record)
{
    std::apply([&](const auto &...field) { (field.fill(flat, record), ...); }, FlatForm<Record>::fields);
}

// Releases what a flat record points to, field by field, and sets each to null. Stops at the first field that refuses.
template<class Record>
BrimletResult releaseFlat(FlatOf<Record> &flat)
{
    BrimletResult result = BRIMLET_DONE;
    std::apply([&](const auto &...field) { ((result = field.release(flat)) || ...); }, FlatForm<Record>::fields);
    return result;
}

} // namespace brimlet
