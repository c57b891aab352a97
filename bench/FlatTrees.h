// The structure of the flat records as trees of blocks, described once. The two baselines use it to release their
// records, and the check uses it to compare them.
#pragma once

#include "Implementation.h"

#include <cstdlib>
#include <cstring>
#include <new>
#include <tuple>
#include <type_traits>

namespace bench {

// A block of flat records with its count.
template<class Flat, class Element>
struct Array
{
    Element *Flat::*items;
    uint32_t Flat::*count;
};

template<class Flat>
struct Members;

template<>
struct Members<FlatLocale>
{
    using F = FlatLocale;
    static constexpr auto all = std::make_tuple(&F::id, &F::iso, &F::description);
};

template<>
struct Members<FlatDomain>
{
    using F = FlatDomain;
    static constexpr auto all = std::make_tuple(&F::id, &F::name, &F::orgId, &F::locale);
};

template<>
struct Members<FlatUser>
{
    using F = FlatUser;
    static constexpr auto all = std::make_tuple(&F::id, &F::name, &F::login, &F::contacts, &F::isActive, &F::domainId,
                                                &F::roles, &F::phone, &F::domain, &F::orgId);
};

template<>
struct Members<FlatContractor>
{
    using F = FlatContractor;
    static constexpr auto all =
        std::make_tuple(&F::id, &F::inn, &F::orgId, &F::type, &F::officialName, &F::name, &F::extra);
};

template<>
struct Members<FlatContract>
{
    using F = FlatContract;
    static constexpr auto all = std::make_tuple(&F::id, &F::number, &F::contractor, &F::name, &F::status, &F::date,
                                                &F::description, &F::extra, &F::user);
};

template<>
struct Members<FlatZone>
{
    using F = FlatZone;
    static constexpr auto all = std::make_tuple(&F::id, &F::name, &F::detector, &F::physic, &F::form, &F::flags,
                                                &F::delay, &F::scheduleId, &F::tracert, &F::uidType, &F::arm);
};

template<>
struct Members<FlatSection>
{
    using F = FlatSection;
    static constexpr auto all =
        std::make_tuple(&F::id, &F::name, &F::scheduleId, Array<F, FlatZone>{&F::zones, &F::zonesCount}, &F::tracert,
                        &F::flags, &F::detector, &F::arm, &F::physic, &F::form, &F::delay, &F::uidType);
};

template<>
struct Members<FlatDeviceUser>
{
    using F = FlatDeviceUser;
    static constexpr auto all =
        std::make_tuple(&F::id, &F::name, &F::comment, &F::phone, Array<F, uint32_t>{&F::sections, &F::sectionsCount});
};

template<>
struct Members<FlatDevice>
{
    using F = FlatDevice;
    static constexpr auto all = std::make_tuple(
        &F::id, &F::account, &F::domain, &F::configVersion, Array<F, FlatSection>{&F::sections, &F::sectionsCount},
        Array<F, FlatDeviceUser>{&F::users, &F::usersCount}, &F::isParted, &F::clusterId, &F::domainId);
};

template<>
struct Members<FlatLocation>
{
    using F = FlatLocation;
    static constexpr auto all = std::make_tuple(&F::id, &F::latitude, &F::longitude);
};

template<>
struct Members<FlatSite>
{
    using F = FlatSite;
    static constexpr auto all =
        std::make_tuple(&F::id, &F::name, &F::comment, &F::extra, &F::isCrossing, &F::domain, &F::address, &F::contract,
                        &F::contractStatus, &F::type, &F::category, &F::armMode, &F::isDelegated,
                        Array<F, FlatDevice>{&F::devices, &F::deviceCount}, &F::domainId, &F::location, &F::contractId,
                        &F::isSitePlanExists);
};

template<>
struct Members<FlatEvent>
{
    using F = FlatEvent;
    static constexpr auto all = std::make_tuple(
        &F::id, &F::time, &F::deviceId, &F::sectionId, &F::zoneId, &F::active, &F::eventClass, &F::detector, &F::reason,
        &F::localTime, &F::channel, &F::data, &F::reviewId, &F::reviewState, &F::userId, &F::isClosed, &F::affect,
        &F::jData, &F::account, &F::sectionName, &F::zoneName, &F::domainName);
};

// ---- Creating ----

template<class T>
T *allocate(size_t count = 1)
{
    void *block = std::malloc(count * sizeof(T));
    if (!block)
        throw std::bad_alloc();
    return static_cast<T *>(block);
}

template<class T>
T *makeCell(T value)
{
    T *cell = allocate<T>();
    *cell = value;
    return cell;
}

template<class Flat>
Flat *makeRecord()
{
    return static_cast<Flat *>(std::memset(allocate<Flat>(), 0, sizeof(Flat)));
}

// ---- Releasing ----

template<class Flat>
void releaseTree(Flat &flat);
template<class Flat>
void releaseBlock(Flat *items, uint32_t count);

template<class Flat>
void releaseMember(Flat &, uint32_t Flat::*)
{
}

template<class Flat, class Cell>
void releaseMember(Flat &flat, Cell *Flat::*member)
{
    if constexpr (!std::is_arithmetic_v<Cell>)
        if (flat.*member)
            releaseTree(*(flat.*member));
    std::free(flat.*member);
}

template<class Flat, class Element>
void releaseMember(Flat &flat, const Array<Flat, Element> &array)
{
    releaseBlock(flat.*array.items, flat.*array.count);
}

// Releases what the record points to, not the record's own block.
template<class Flat>
void releaseTree(Flat &flat)
{
    std::apply([&](const auto &...member) { (releaseMember(flat, member), ...); }, Members<Flat>::all);
}

template<class Flat>
void releaseBlock(Flat *items, uint32_t count)
{
    if constexpr (!std::is_arithmetic_v<Flat>)
        for (uint32_t i = 0; i < count; ++i)
            releaseTree(items[i]);
    std::free(items);
}

// ---- A block that grows ----

template<class Flat>
class Block
{
public:
    Block() = default;
    Block(const Block &) = delete;
    Block &operator=(const Block &) = delete;
    ~Block() { releaseBlock(items, count); }

    // Appends an element of zeros.
    Flat &add()
    {
        if (count == capacity)
            grow();
        return *static_cast<Flat *>(std::memset(&items[count++], 0, sizeof(Flat)));
    }

    // Transfers the block, shrunk to its elements.
    Flat *take(uint32_t &howMany)
    {
        howMany = std::exchange(count, 0);
        Flat *taken = std::exchange(items, nullptr);
        if (howMany < std::exchange(capacity, 0))
            if (void *shorter = std::realloc(taken, howMany * sizeof(Flat)))
                taken = static_cast<Flat *>(shorter);
        return taken;
    }

    Records<Flat> takeRecords()
    {
        uint32_t howMany = 0;
        Flat *taken = take(howMany);
        return {taken, howMany, releaseBlock<Flat>};
    }

private:
    void grow()
    {
        capacity = capacity ? 2 * capacity : 8;
        void *longer = std::realloc(items, capacity * sizeof(Flat));
        if (!longer)
            throw std::bad_alloc();
        items = static_cast<Flat *>(longer);
    }

    Flat *items = nullptr;
    uint32_t count = 0;
    uint32_t capacity = 0;
};

// ---- Comparing ----

template<class Flat>
bool sameTree(const Flat &a, const Flat &b);

inline bool sameText(const uint16_t *a, const uint16_t *b)
{
    while (*a == *b && *a)
        ++a, ++b;
    return *a == *b;
}

template<class Flat>
bool sameMember(const Flat &a, const Flat &b, uint32_t Flat::*member)
{
    return a.*member == b.*member;
}

template<class Flat, class Cell>
bool sameMember(const Flat &a, const Flat &b, Cell *Flat::*member)
{
    const Cell *first = a.*member;
    const Cell *second = b.*member;
    if (!first || !second)
        return first == second;
    if constexpr (std::is_same_v<Cell, uint16_t>)
        return sameText(first, second);
    else if constexpr (std::is_arithmetic_v<Cell>)
        return std::memcmp(first, second, sizeof(Cell)) == 0;
    else
        return sameTree(*first, *second);
}

template<class Flat, class Element>
bool sameMember(const Flat &a, const Flat &b, const Array<Flat, Element> &array)
{
    if (a.*array.count != b.*array.count)
        return false;
    for (uint32_t i = 0; i < a.*array.count; ++i) {
        const Element &first = (a.*array.items)[i];
        const Element &second = (b.*array.items)[i];
        if constexpr (std::is_arithmetic_v<Element>) {
            if (first != second)
                return false;
        } else if (!sameTree(first, second)) {
            return false;
        }
    }
    return true;
}

template<class Flat>
bool sameTree(const Flat &a, const Flat &b)
{
    return std::apply([&](const auto &...member) { return (sameMember(a, b, member) && ...); }, Members<Flat>::all);
}

template<class Flat>
bool sameRecords(const Records<Flat> &a, const Records<Flat> &b)
{
    if (a.size() != b.size())
        return false;
    for (uint32_t i = 0; i < a.size(); ++i)
        if (!sameTree(a.begin()[i], b.begin()[i]))
            return false;
    return true;
}

} // namespace bench
