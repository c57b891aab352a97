/**
 * @file brimlet.hpp
 * Brimlet for C++17, in one header over brimlet.h:
 *
 *     brimlet::Session session("cache");         // launches, and exits at the end of the scope
 *     brimlet::require(session.addUsers(R"({"D":{"items":[{"id":7,"name":"Anna"}]}})"));
 *     if (const auto user = session.getUser(7))  // frees itself
 *         if (user->name())                      // nothing where the user has no name
 *             show(*user->name());               // a view of the record's own text
 *
 * 1. Every function of brimlet.h that needs a launched library is a member of Session by the same name, so none can be
 *    called too early or too late. What it does, and the codes that it answers, stands in brimlet.h.
 * 2. Texts go in as UTF-16 or as UTF-8, the latter converted on the way. They come out as views of UTF-16.
 * 3. Records, arrays and texts that come out are owners: they can be moved, not copied, and they free themselves. They
 *    outlive the session. What is read through them is a view, and as short-lived as its owner.
 * 4. A Session may be used by several threads at once, its calls wait for each other. An owner may not.
 */
#ifndef BRIMLET_HPP
#define BRIMLET_HPP

#include "brimlet.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

#ifdef _WIN32
#include <objbase.h>
#else
#include <unistd.h>
#endif

/** Brimlet for C++17. */
namespace brimlet {

// ---- Codes ----

/** What a call answers: BrimletResult as a type of its own. A code that is ignored is a warning of the compiler. */
enum class [[nodiscard]] Code : uint32_t {
    Done = BRIMLET_DONE,                /**< Done. */
    NoBlock = BRIMLET_NO_BLOCK,         /**< A list was read, but no block for it could be had. */
    Incomplete = BRIMLET_INCOMPLETE,    /**< A required member is missing, or a member has a wrong type. */
    ReadFailed = BRIMLET_READ_FAILED,   /**< The store could not be read. */
    NotFound = BRIMLET_NOT_FOUND,       /**< The store holds nothing that fits. */
    WriteFailed = BRIMLET_WRITE_FAILED, /**< The store could not be written. */
    Refused = BRIMLET_REFUSED,          /**< An argument is refused. */
    NoParent = BRIMLET_NO_PARENT,       /**< Written, but the device or section is not in the store. */
    NoRecord = BRIMLET_NO_RECORD        /**< A record was promised and is not there. */
};

/** How a launch went: BrimletLaunchResult as a type of its own. */
enum class LaunchResult : uint32_t {
    Opened = BRIMLET_LAUNCH_OPENED,                          /**< The file was there and passed its checks. */
    Failed = BRIMLET_LAUNCH_FAILED,                          /**< The file could not be created or replaced. */
    Created = BRIMLET_LAUNCH_CREATED,                        /**< There was no file; it was created. */
    ReplacedSchema = BRIMLET_LAUNCH_REPLACED_SCHEMA,         /**< Replaced: a table or column was missing. */
    ReplacedUnreadable = BRIMLET_LAUNCH_REPLACED_UNREADABLE, /**< Replaced: the file would not open. */
    ReplacedVersion = BRIMLET_LAUNCH_REPLACED_VERSION,       /**< Replaced: no database, or of another version. */
    None = BRIMLET_LAUNCH_NONE                               /**< Nothing is launched, or the launch is not finished. */
};

/** How far a launch is: BrimletState as a type of its own. */
enum class State : uint32_t {
    None = BRIMLET_STATE_NONE,         /**< Nothing is launched, or the launch is not finished. */
    Launched = BRIMLET_STATE_LAUNCHED, /**< The launch is finished, the event loop is about to start. */
    Running = BRIMLET_STATE_RUNNING    /**< The event loop runs. */
};

/** The meaning of a code in words, "unknown" for a number that is none. */
constexpr std::string_view meaning(Code code)
{
    switch (code) {
    case Code::Done:
        return "done";
    case Code::NoBlock:
        return "no block for the list could be had";
    case Code::Incomplete:
        return "a required member of the document is missing, or a member has a wrong type";
    case Code::ReadFailed:
        return "the store could not be read";
    case Code::NotFound:
        return "the store holds nothing that fits";
    case Code::WriteFailed:
        return "the store could not be written";
    case Code::Refused:
        return "an argument is refused";
    case Code::NoParent:
        return "written, but the device or section is not in the store";
    case Code::NoRecord:
        return "a record was promised and is not there";
    }
    return "unknown";
}

/** The meaning of a launch result in words, "unknown" for a number that is none. */
constexpr std::string_view meaning(LaunchResult result)
{
    switch (result) {
    case LaunchResult::Opened:
        return "the file was opened";
    case LaunchResult::Failed:
        return "the file could not be created or replaced";
    case LaunchResult::Created:
        return "the file was created";
    case LaunchResult::ReplacedSchema:
        return "a table or column was missing, the file was replaced by an empty one";
    case LaunchResult::ReplacedUnreadable:
        return "the file would not open, it was replaced by an empty one";
    case LaunchResult::ReplacedVersion:
        return "the file is no database or of another version, it was replaced by an empty one";
    case LaunchResult::None:
        return "nothing is launched";
    }
    return "unknown";
}

/** The meaning of a state in words, "unknown" for a number that is none. */
constexpr std::string_view meaning(State state)
{
    switch (state) {
    case State::None:
        return "not launched";
    case State::Launched:
        return "launched";
    case State::Running:
        return "running";
    }
    return "unknown";
}

/** Whether the store can be read and written after a launch that went so. */
constexpr bool isUsable(LaunchResult result)
{
    return result == LaunchResult::Opened || result == LaunchResult::Created;
}

/** Whether the file was replaced by one without tables, which has to be removed before the store can be used. */
constexpr bool isReplaced(LaunchResult result)
{
    return result == LaunchResult::ReplacedSchema || result == LaunchResult::ReplacedUnreadable
        || result == LaunchResult::ReplacedVersion;
}

/** A call had to answer Done, and answered another code. */
class Error : public std::runtime_error
{
public:
    /** The error of a code. */
    explicit Error(Code code)
        : std::runtime_error(std::to_string(static_cast<uint32_t>(code)) + ", " + std::string(meaning(code)))
        , reason(code)
    {
    }
    /** What the call answered. */
    Code code() const noexcept { return reason; }

private:
    Code reason;
};

/** Throws the Error of every code but Done: for a write that has to go through. */
inline void require(Code code)
{
    if (code != Code::Done)
        throw Error(code);
}

/** A launch is not finished in the time that it was given. */
class LaunchTimedOut : public std::runtime_error
{
public:
    LaunchTimedOut() : std::runtime_error("the launch is not finished in time") {}
};

/** A launch came back without having run. */
class LaunchEnded : public std::runtime_error
{
public:
    LaunchEnded() : std::runtime_error("the launch came back without having run") {}
};

/** The library is launched already; it can be so only once in a process. */
class AlreadyLaunched : public std::logic_error
{
public:
    AlreadyLaunched() : std::logic_error("the library is launched already") {}
};

// ---- Texts ----

namespace detail {

constexpr char32_t replacement = 0xFFFD; // for every sequence that is broken

inline bool isHighSurrogate(char32_t unit)
{
    return unit >= 0xD800 && unit < 0xDC00;
}

inline bool isLowSurrogate(char32_t unit)
{
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

inline char32_t takeCodePoint(std::string_view &utf8)
{
    const auto lead = static_cast<unsigned char>(utf8.front());
    utf8.remove_prefix(1);
    if (lead < 0x80)
        return lead;
    if (lead < 0xC2 || lead > 0xF4)
        return replacement;
    const int followers = lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
    char32_t codePoint = lead & (0x3Fu >> followers);
    for (int i = 0; i < followers; ++i) {
        if (utf8.empty() || (static_cast<unsigned char>(utf8.front()) & 0xC0u) != 0x80u)
            return replacement;
        codePoint = codePoint << 6 | (static_cast<unsigned char>(utf8.front()) & 0x3Fu);
        utf8.remove_prefix(1);
    }
    constexpr char32_t smallest[] = {0, 0x80, 0x800, 0x10000}; // a longer form than needed is broken too
    const bool isSound = codePoint >= smallest[followers] && codePoint <= 0x10FFFF && !isHighSurrogate(codePoint)
                      && !isLowSurrogate(codePoint);
    return isSound ? codePoint : replacement;
}

inline char32_t takeCodePoint(std::u16string_view &utf16)
{
    const char32_t unit = utf16.front();
    utf16.remove_prefix(1);
    if (isHighSurrogate(unit) && !utf16.empty() && isLowSurrogate(utf16.front())) {
        const char32_t low = utf16.front();
        utf16.remove_prefix(1);
        return 0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00);
    }
    return isHighSurrogate(unit) || isLowSurrogate(unit) ? replacement : unit;
}

inline void append(std::u16string &utf16, char32_t codePoint)
{
    if (codePoint < 0x10000) {
        utf16 += static_cast<char16_t>(codePoint);
    } else {
        utf16 += static_cast<char16_t>(0xD800 + ((codePoint - 0x10000) >> 10));
        utf16 += static_cast<char16_t>(0xDC00 + ((codePoint - 0x10000) & 0x3FF));
    }
}

inline void append(std::string &utf8, char32_t codePoint)
{
    const auto byte = [&utf8](char32_t value) { utf8 += static_cast<char>(static_cast<unsigned char>(value)); };
    const auto followers = [&](int count) {
        while (count-- > 0)
            byte(0x80 | (codePoint >> (6 * count) & 0x3F));
    };
    if (codePoint < 0x80) {
        byte(codePoint);
    } else if (codePoint < 0x800) {
        byte(0xC0 | codePoint >> 6);
        followers(1);
    } else if (codePoint < 0x10000) {
        byte(0xE0 | codePoint >> 12);
        followers(2);
    } else {
        byte(0xF0 | codePoint >> 18);
        followers(3);
    }
}

} // namespace detail

/** UTF-16 of a UTF-8 text. A broken sequence gives U+FFFD. */
inline std::u16string utf16(std::string_view utf8)
{
    std::u16string text;
    text.reserve(utf8.size());
    while (!utf8.empty())
        detail::append(text, detail::takeCodePoint(utf8));
    return text;
}

/** UTF-8 of a UTF-16 text. Half a surrogate pair gives U+FFFD. */
inline std::string utf8(std::u16string_view utf16)
{
    std::string text;
    text.reserve(utf16.size());
    while (!utf16.empty())
        detail::append(text, detail::takeCodePoint(utf16));
    return text;
}

/** How many UTF-16 units a text on its way in may have. What brimlet.h would do with more is not defined. */
constexpr size_t longestText = 700'000'000;

/** A text on its way in, made of UTF-16, which is only looked at, or of UTF-8, which is converted. */
class TextArgument
{
public:
    /** @name UTF-16
     *  @{ */
    /** A view: the text has to live as long as the argument. */
    TextArgument(std::u16string_view utf16) : text(utf16) {}
    TextArgument(const std::u16string &utf16) : text(utf16) {}
    TextArgument(const char16_t *utf16) : text(utf16) {}
    /** @} */

    /** @name UTF-8
     *  @{ */
    /** A conversion: the argument keeps the converted text. */
    TextArgument(std::string_view utf8) : converted(brimlet::utf16(utf8)), text(converted) {}
    TextArgument(const std::string &utf8) : TextArgument(std::string_view(utf8)) {}
    TextArgument(const char *utf8) : TextArgument(std::string_view(utf8)) {}
    /** @} */

    TextArgument(const TextArgument &) = delete;
    TextArgument &operator=(const TextArgument &) = delete;

    /** The units, as brimlet.h takes them. */
    const uint16_t *units() const { return reinterpret_cast<const uint16_t *>(text.data()); }

    /** The count of the units. Throws std::length_error for a text that is longer than longestText. */
    uint32_t length() const
    {
        if (text.size() > longestText)
            throw std::length_error("a text of more than " + std::to_string(longestText) + " UTF-16 units");
        return static_cast<uint32_t>(text.size());
    }

private:
    std::u16string converted;
    std::u16string_view text;
};

// ---- Views ----

using Number = std::optional<uint32_t>;          /**< A number that may be absent. */
using SignedNumber = std::optional<int32_t>;     /**< A signed number that may be absent. */
using BigNumber = std::optional<uint64_t>;       /**< A number of 64 bits that may be absent. */
using Byte = std::optional<uint8_t>;             /**< A number of 8 bits that may be absent. */
using Flag = std::optional<bool>;                /**< A flag that may be absent. */
using Real = std::optional<double>;              /**< A real number that may be absent. */
using Text = std::optional<std::u16string_view>; /**< A text that may be absent, which is not empty. */

namespace detail {

template<class T>
std::optional<T> value(const T *block)
{
    return block ? std::optional<T>(*block) : std::nullopt;
}

inline Flag flag(const uint8_t *block)
{
    return block ? Flag(*block != 0) : std::nullopt;
}

inline Text text(const uint16_t *block)
{
    return block ? Text(reinterpret_cast<const char16_t *>(block)) : std::nullopt;
}

template<class View>
std::optional<View> record(const typename View::Flat *block)
{
    return block ? std::optional<View>(*block) : std::nullopt;
}

// What an element of a range is a view of: a flat record, or itself where it is a number.
template<class Element, class = void>
struct Viewed
{
    using Flat = Element;
};
template<class Element>
struct Viewed<Element, std::void_t<typename Element::Flat>>
{
    using Flat = typename Element::Flat;
};

// Keeps a view for as long as it takes to read through "->".
template<class View>
class Arrow
{
public:
    explicit Arrow(const View &shown) : view(shown) {}
    const View *operator->() const { return &view; }

private:
    View view;
};

} // namespace detail

/** What all views share: they look at a flat record, which they neither copy nor own. */
template<class FlatRecord>
class View
{
public:
    using Flat = FlatRecord; /**< The record of FlatRecords.h. */

    /** A view of a record. */
    explicit View(const Flat &record) : flat(&record) {}

    /** The key of the record. */
    uint32_t id() const { return flat->id; }

    /** The record itself. */
    const Flat &record() const { return *flat; }

protected:
    const Flat *flat; /**< Never null. */
};

/** A block of records or numbers, as a range of views or numbers. */
template<class Element>
class Range
{
public:
    using Flat = typename detail::Viewed<Element>::Flat; /**< What lies in the block. */

    /** Walks over the elements, each of which it makes when it is asked for. */
    class iterator
    {
    public:
        using iterator_category = std::input_iterator_tag; /**< Its elements are values, so it claims no more. */
        using value_type = Element;                        /**< A view or a number. */
        using difference_type = std::ptrdiff_t;            /**< A distance. */
        using pointer = detail::Arrow<Element>;            /**< What "->" goes through. */
        using reference = Element;                         /**< A value. */

        /** @name An input iterator, and the distance between two
         *  @{ */
        /** As of every input iterator. */
        explicit iterator(const Flat *element = nullptr) : at(element) {}
        Element operator*() const { return Element(*at); }
        detail::Arrow<Element> operator->() const { return detail::Arrow<Element>(**this); }
        iterator &operator++()
        {
            ++at;
            return *this;
        }
        iterator operator++(int) { return iterator(at++); }
        difference_type operator-(const iterator &other) const { return at - other.at; }
        bool operator==(const iterator &other) const { return at == other.at; }
        bool operator!=(const iterator &other) const { return at != other.at; }
        /** @} */

    private:
        const Flat *at;
    };

    /** An empty range. */
    Range() = default;
    /** A range over a block with its count. */
    Range(const Flat *first, uint32_t length) : block(first), count(length) {}

    /** @name A range of known size
     *  @{ */
    /** As of every range. */
    iterator begin() const { return iterator(block); }
    iterator end() const { return iterator(block + count); }
    uint32_t size() const { return count; }
    bool empty() const { return count == 0; }
    Element operator[](uint32_t index) const { return Element(block[index]); }
    /** @} */

private:
    const Flat *block = nullptr;
    uint32_t count = 0;
};

/** A locale. */
class LocaleView : public View<FlatLocale>
{
public:
    using View::View;

    /** @name Fields
     *  @{ */
    /** As the field of its name in FlatLocale. */
    Text iso() const { return detail::text(flat->iso); }
    Text description() const { return detail::text(flat->description); }
    /** @} */
};

/** A domain, with its locale if the store holds it. */
class DomainView : public View<FlatDomain>
{
public:
    using View::View;

    /** @name Fields
     *  @{ */
    /** As the field of its name in FlatDomain. */
    Text name() const { return detail::text(flat->name); }
    Number orgId() const { return detail::value(flat->orgId); }
    std::optional<LocaleView> locale() const { return detail::record<LocaleView>(flat->locale); }
    /** @} */
};

/** An operator of the monitoring service, with the domain if the store holds it. */
class UserView : public View<FlatUser>
{
public:
    using View::View;

    /** @name Fields
     *  @{ */
    /** As the field of its name in FlatUser. */
    Text name() const { return detail::text(flat->name); }
    Text login() const { return detail::text(flat->login); }
    Text contacts() const { return detail::text(flat->contacts); }
    Flag isActive() const { return detail::flag(flat->isActive); }
    Number domainId() const { return detail::value(flat->domainId); }
    Number roles() const { return detail::value(flat->roles); }
    BigNumber phone() const { return detail::value(flat->phone); }
    std::optional<DomainView> domain() const { return detail::record<DomainView>(flat->domain); }
    Number orgId() const { return detail::value(flat->orgId); }
    /** @} */
};

/** The contact person of an organization. */
class PersonView : public View<FlatPerson>
{
public:
    using View::View;

    /** @name Fields
     *  @{ */
    /** As the field of its name in FlatPerson. */
    Text name() const { return detail::text(flat->name); }
    Text phone() const { return detail::text(flat->phone); }
    Text email() const { return detail::text(flat->email); }
    Text postal() const { return detail::text(flat->postal); }
    /** @} */
};

/** An organization, with its contact person and its locale if the store holds them. */
class OrganizationView : public View<FlatOrganization>
{
public:
    using View::View;

    /** @name Fields
     *  @{ */
    /** As the field of its name in FlatOrganization. */
    Text inn() const { return detail::text(flat->inn); }
    Text officialName() const { return detail::text(flat->officialName); }
    Text shortName() const { return detail::text(flat->shortName); }
    Text kpp() const { return detail::text(flat->kpp); }
    Text ogrn() const { return detail::text(flat->ogrn); }
    Text address() const { return detail::text(flat->address); }
    std::optional<PersonView> contact() const { return detail::record<PersonView>(flat->contact); }
    std::optional<LocaleView> locale() const { return detail::record<LocaleView>(flat->locale); }
    /** @} */
};

/** A party to contracts. */
class ContractorView : public View<FlatContractor>
{
public:
    using View::View;

    /** @name Fields
     *  @{ */
    /** As the field of its name in FlatContractor. */
    Text inn() const { return detail::text(flat->inn); }
    Number orgId() const { return detail::value(flat->orgId); }
    Number type() const { return detail::value(flat->type); }
    Text officialName() const { return detail::text(flat->officialName); }
    Text name() const { return detail::text(flat->name); }
    Text extra() const { return detail::text(flat->extra); }
    /** @} */
};

/** A contract, with its contractor and its operator if the store holds them. */
class ContractView : public View<FlatContract>
{
public:
    using View::View;

    /** @name Fields
     *  @{ */
    /** As the field of its name in FlatContract. */
    Text number() const { return detail::text(flat->number); }
    std::optional<ContractorView> contractor() const { return detail::record<ContractorView>(flat->contractor); }
    Text name() const { return detail::text(flat->name); }
    Number status() const { return detail::value(flat->status); }
    Number date() const { return detail::value(flat->date); }
    Text description() const { return detail::text(flat->description); }
    Text extra() const { return detail::text(flat->extra); }
    std::optional<UserView> user() const { return detail::record<UserView>(flat->user); }
    /** @} */
};

/** A zone. Its device and section are not part of it. */
class ZoneView : public View<FlatZone>
{
public:
    using View::View;

    /** @name Fields
     *  @{ */
    /** As the field of its name in FlatZone. */
    Text name() const { return detail::text(flat->name); }
    Number detector() const { return detail::value(flat->detector); }
    Number physic() const { return detail::value(flat->physic); }
    Number form() const { return detail::value(flat->form); }
    Number flags() const { return detail::value(flat->flags); }
    Number delay() const { return detail::value(flat->delay); }
    Number scheduleId() const { return detail::value(flat->scheduleId); }
    Number tracert() const { return detail::value(flat->tracert); }
    Number uidType() const { return detail::value(flat->uidType); }
    Number arm() const { return detail::value(flat->arm); }
    /** @} */
};

/** A section with its zones. Its device is not part of it. */
class SectionView : public View<FlatSection>
{
public:
    using View::View;

    /** @name Fields
     *  @{ */
    /** As the field of its name in FlatSection. */
    Text name() const { return detail::text(flat->name); }
    Number scheduleId() const { return detail::value(flat->scheduleId); }
    Range<ZoneView> zones() const { return {flat->zones, flat->zonesCount}; }
    Number tracert() const { return detail::value(flat->tracert); }
    Number flags() const { return detail::value(flat->flags); }
    Number detector() const { return detail::value(flat->detector); }
    Number arm() const { return detail::value(flat->arm); }
    Number physic() const { return detail::value(flat->physic); }
    Number form() const { return detail::value(flat->form); }
    Number delay() const { return detail::value(flat->delay); }
    Number uidType() const { return detail::value(flat->uidType); }
    /** @} */
};

/** A user programmed into a device, with the numbers of the sections that this user reaches. */
class DeviceUserView : public View<FlatDeviceUser>
{
public:
    using View::View;

    /** @name Fields
     *  @{ */
    /** As the field of its name in FlatDeviceUser. */
    Text name() const { return detail::text(flat->name); }
    Text comment() const { return detail::text(flat->comment); }
    Text phone() const { return detail::text(flat->phone); }
    Range<uint32_t> sections() const { return {flat->sections, flat->sectionsCount}; }
    /** @} */
};

/** A device with its sections and users, and with the domain if the store holds it. */
class DeviceView : public View<FlatDevice>
{
public:
    using View::View;

    /** @name Fields
     *  @{ */
    /** As the field of its name in FlatDevice. */
    Number account() const { return detail::value(flat->account); }
    std::optional<DomainView> domain() const { return detail::record<DomainView>(flat->domain); }
    Number configVersion() const { return detail::value(flat->configVersion); }
    Range<SectionView> sections() const { return {flat->sections, flat->sectionsCount}; }
    Range<DeviceUserView> users() const { return {flat->users, flat->usersCount}; }
    Flag isParted() const { return detail::flag(flat->isParted); }
    Number clusterId() const { return detail::value(flat->clusterId); }
    Number domainId() const { return detail::value(flat->domainId); }
    /** @} */
};

/** Where a site lies, under the site's own id. */
class LocationView : public View<FlatLocation>
{
public:
    using View::View;

    /** @name Fields
     *  @{ */
    /** As the field of its name in FlatLocation. */
    Real latitude() const { return detail::value(flat->latitude); }
    Real longitude() const { return detail::value(flat->longitude); }
    /** @} */
};

/** A site, with its domain, location and contract if the store holds them. A read gives no devices. */
class SiteView : public View<FlatSite>
{
public:
    using View::View;

    /** @name Fields
     *  @{ */
    /** As the field of its name in FlatSite. */
    Text name() const { return detail::text(flat->name); }
    Text comment() const { return detail::text(flat->comment); }
    Text extra() const { return detail::text(flat->extra); }
    Flag isCrossing() const { return detail::flag(flat->isCrossing); }
    std::optional<DomainView> domain() const { return detail::record<DomainView>(flat->domain); }
    Text address() const { return detail::text(flat->address); }
    std::optional<ContractView> contract() const { return detail::record<ContractView>(flat->contract); }
    SignedNumber contractStatus() const { return detail::value(flat->contractStatus); }
    Number type() const { return detail::value(flat->type); }
    Number category() const { return detail::value(flat->category); }
    Number armMode() const { return detail::value(flat->armMode); }
    Flag isDelegated() const { return detail::flag(flat->isDelegated); }
    Range<DeviceView> devices() const { return {flat->devices, flat->deviceCount}; }
    Number domainId() const { return detail::value(flat->domainId); }
    std::optional<LocationView> location() const { return detail::record<LocationView>(flat->location); }
    SignedNumber contractId() const { return detail::value(flat->contractId); }
    Flag isSitePlanExists() const { return detail::flag(flat->isSitePlanExists); }
    /** @} */
};

/** An event. The last four fields come from the equipment and the operator that the event names. */
class EventView : public View<FlatEvent>
{
public:
    using View::View;

    /** @name Fields
     *  @{ */
    /** As the field of its name in FlatEvent. */
    Number time() const { return detail::value(flat->time); }
    SignedNumber deviceId() const { return detail::value(flat->deviceId); }
    Number sectionId() const { return detail::value(flat->sectionId); }
    Number zoneId() const { return detail::value(flat->zoneId); }
    Byte active() const { return detail::value(flat->active); }
    Byte eventClass() const { return detail::value(flat->eventClass); }
    Byte detector() const { return detail::value(flat->detector); }
    Byte reason() const { return detail::value(flat->reason); }
    Number localTime() const { return detail::value(flat->localTime); }
    SignedNumber channel() const { return detail::value(flat->channel); }
    Text data() const { return detail::text(flat->data); }
    Number reviewId() const { return detail::value(flat->reviewId); }
    Byte reviewState() const { return detail::value(flat->reviewState); }
    Number userId() const { return detail::value(flat->userId); }
    Flag isClosed() const { return detail::flag(flat->isClosed); }
    Flag affect() const { return detail::flag(flat->affect); }
    Text jData() const { return detail::text(flat->jData); }
    Number account() const { return detail::value(flat->account); }
    Text sectionName() const { return detail::text(flat->sectionName); }
    Text zoneName() const { return detail::text(flat->zoneName); }
    Text domainName() const { return detail::text(flat->domainName); }
    /** @} */
};

// ---- Owners ----

namespace detail {

// How the blocks of a kind of record go back.
template<class Flat>
struct Release;
template<>
struct Release<FlatLocale>
{
    static void one(FlatLocale *record) { ::freeLocale(record); }
    static void all(FlatLocale *records, uint32_t count) { ::freeLocalesArray(records, count); }
};
template<>
struct Release<FlatDomain>
{
    static void one(FlatDomain *record) { ::freeDomain(record); }
    static void all(FlatDomain *records, uint32_t count) { ::freeDomainsArray(records, count); }
};
template<>
struct Release<FlatUser>
{
    static void one(FlatUser *record) { ::freeUser(record); }
    static void all(FlatUser *records, uint32_t count) { ::freeUsersArray(records, count); }
};
template<>
struct Release<FlatOrganization>
{
    static void one(FlatOrganization *record) { ::freeOrganization(record); }
    static void all(FlatOrganization *records, uint32_t count) { ::freeOrganizationsArray(records, count); }
};
template<>
struct Release<FlatContractor>
{
    static void one(FlatContractor *record) { ::freeContractor(record); }
    static void all(FlatContractor *records, uint32_t count) { ::freeContractorsArray(records, count); }
};
template<>
struct Release<FlatContract>
{
    static void one(FlatContract *record) { ::freeContract(record); }
    static void all(FlatContract *records, uint32_t count) { ::freeContractsArray(records, count); }
};
template<>
struct Release<FlatDevice>
{
    static void one(FlatDevice *record) { ::freeDevice(record); }
    static void all(FlatDevice *records, uint32_t count) { ::freeDevicesArray(records, count); }
};
template<>
struct Release<FlatSection>
{
    static void one(FlatSection *record) { ::freeSection(record); }
    static void all(FlatSection *records, uint32_t count) { ::freeSectionsArray(records, count); }
};
template<>
struct Release<FlatZone>
{
    static void one(FlatZone *record) { ::freeZone(record); }
    static void all(FlatZone *records, uint32_t count) { ::freeZonesArray(records, count); }
};
template<>
struct Release<FlatSite>
{
    static void one(FlatSite *record) { ::freeSite(record); }
    static void all(FlatSite *records, uint32_t count) { ::freeSitesArray(records, count); }
};
template<>
struct Release<FlatEvent>
{
    static void one(FlatEvent *record) { ::freeEvent(record); }
    static void all(FlatEvent *records, uint32_t count) { ::freeEventsArray(records, count); }
};

template<class Flat>
struct ReleaseOne
{
    void operator()(Flat *record) const { Release<Flat>::one(record); }
};

template<class Flat>
struct ReleaseAll
{
    uint32_t count = 0;
    void operator()(Flat *records) const { Release<Flat>::all(records, count); }
};

struct ReleaseText
{
    void operator()(uint16_t *text) const
    {
#ifdef _WIN32
        CoTaskMemFree(text);
#else
        std::free(text);
#endif
    }
};

} // namespace detail

/** A record that came out of the library, or none. Read it through "->". */
template<class RecordView>
class Record
{
public:
    using Flat = typename RecordView::Flat; /**< The record of FlatRecords.h. */

    /** No record. */
    Record() = default;
    /** Takes a record over from the functions of brimlet.h. */
    explicit Record(Flat *record) : owned(record) {}

    /** Whether there is a record. */
    explicit operator bool() const { return owned != nullptr; }

    /** @name Views of the record
     *  @{ */
    /** There has to be a record. No view of one that is about to be freed can be had. */
    RecordView operator*() const & { return RecordView(*owned); }
    detail::Arrow<RecordView> operator->() const & { return detail::Arrow<RecordView>(**this); }
    RecordView operator*() && = delete;
    detail::Arrow<RecordView> operator->() && = delete;
    /** @} */

    /** Hands the record over, to be freed by the functions of brimlet.h. */
    Flat *release() { return owned.release(); }

private:
    std::unique_ptr<Flat, detail::ReleaseOne<Flat>> owned;
};

/** An array that came out of the library, maybe empty: a range of views. */
template<class RecordView>
class Array
{
public:
    using Flat = typename RecordView::Flat;                /**< The record of FlatRecords.h. */
    using iterator = typename Range<RecordView>::iterator; /**< Walks over the views. */

    /** An empty array. */
    Array() = default;
    /** Takes an array over from the functions of brimlet.h. */
    Array(Flat *records, uint32_t count) : owned(records, {count}) {}

    /** @name A range of known size
     *  @{ */
    /** As of every range. */
    iterator begin() const { return range().begin(); }
    iterator end() const { return range().end(); }
    uint32_t size() const { return owned ? owned.get_deleter().count : 0; }
    bool empty() const { return size() == 0; }
    RecordView operator[](uint32_t index) const & { return range()[index]; }
    RecordView operator[](uint32_t index) && = delete;
    /** @} */

private:
    Range<RecordView> range() const { return {owned.get(), size()}; }

    std::unique_ptr<Flat, detail::ReleaseAll<Flat>> owned;
};

/** A plain text that came out of the library, or none. */
class OwnedText
{
public:
    /** No text. */
    OwnedText() = default;
    /** Takes a text over from the functions of brimlet.h. */
    explicit OwnedText(uint16_t *text) : owned(text) {}

    /** A view of the text, nothing where there is none. */
    Text view() const & { return detail::text(owned.get()); }
    Text view() && = delete;

private:
    std::unique_ptr<uint16_t, detail::ReleaseText> owned;
};

/** What getSiteNameAndAddress gives. */
struct SiteLabel
{
    OwnedText name;    /**< The name, if the site has one. */
    OwnedText address; /**< The address, if the site has one. */
};

// ---- Answers ----

/** What a call answered: a code, and with Done a value. Asked for a value that is not there, it throws Error. */
template<class T>
class [[nodiscard]] Answer
{
public:
    /** An answer without a value. */
    explicit Answer(Code code) : answered(code) {}
    /** The answer Done with its value. */
    explicit Answer(T &&value) : answered(Code::Done), held(std::move(value)) {}

    /** What the call answered. */
    Code code() const { return answered; }
    /** Whether that is Done. */
    explicit operator bool() const { return answered == Code::Done; }

    /** @name The value
     *  @{ */
    /** The value, else an Error. An answer that is about to end gives its value away, and no views of it. */
    const T &value() const &
    {
        require(answered);
        return held;
    }
    T value() &&
    {
        require(answered);
        return std::move(held);
    }
    const T &operator*() const & { return value(); }
    T operator*() && { return std::move(*this).value(); }
    auto operator->() const &
    {
        if constexpr (hasArrow<T>(0))
            return value().operator->(); // on to the view of a record
        else
            return &value();
    }
    auto operator->() && = delete;
    /** @} */

    /** The value, or an empty one where the store holds nothing that fits: for reads that may find nothing. */
    T orEmpty() && { return answered == Code::NotFound ? T() : std::move(*this).value(); }

private:
    template<class U>
    static constexpr auto hasArrow(int) -> decltype(std::declval<const U &>().operator->(), true)
    {
        return true;
    }
    template<class U>
    static constexpr bool hasArrow(...)
    {
        return false;
    }

    Code answered;
    T held;
};

// ---- Sessions ----

namespace detail {

// The one launch that a process can have at a time, with its thread and its working directory.
class Host
{
public:
    // Never destroyed: a Session that is a static object may ask for it at the very end of the process.
    static Host &ofProcess()
    {
        static Host &host = *new Host;
        return host;
    }

    Host(const Host &) = delete;
    Host &operator=(const Host &) = delete;

    void claim()
    {
        if (isClaimed.exchange(true))
            throw AlreadyLaunched();
    }
    void disclaim() { isClaimed = false; }

    // Ends a launch that a session gave up. Behind it nothing of this process works on a file.
    void makeReady(std::chrono::milliseconds timeout)
    {
        endForgotten(timeout);
        if (thread.joinable() || ::getState() != BRIMLET_STATE_NONE)
            throw AlreadyLaunched(); // by others, or by the process that forked this one
    }

    LaunchResult launch(const std::filesystem::path &directory, std::chrono::milliseconds timeout)
    {
        before = std::filesystem::current_path();
        std::filesystem::current_path(directory);
        try {
            hasEnded = false;
            process = thisProcess();
            thread = std::thread([this] {
                ::launchCache();
                hasEnded = true;
            });
        } catch (...) {
            goBack();
            throw;
        }
        waitUntilRunning(timeout);
        return static_cast<LaunchResult>(::getLaunchCacheResult());
    }

    // Does nothing where the launch has ended with the process already, and in a forked child.
    void exit()
    {
        if (!hasThread())
            return;
        ::exitCache();
        thread.join();
    }

private:
    Host() = default;

    static int thisProcess()
    {
#ifdef _WIN32
        return 0; // no process is forked there
#else
        return ::getpid();
#endif
    }

    // A forked child has no copy of the thread. It would wait for its end for good, and the file is its parent's.
    bool hasThread() const { return thread.joinable() && process == thisProcess(); }

    // Registered handlers run last in, first out, and the static objects of Qt go in the same order. The library cannot
    // exit without those, so this is to be called when the launch has made them.
    static void endWithProcess()
    {
        std::atexit([] {
            try {
                // In parentheses, since windows.h may define a macro max.
                ofProcess().endForgotten((std::chrono::milliseconds::max)());
            } catch (const std::exception &) { // it came back by itself
            }
        });
    }

    void endForgotten(std::chrono::milliseconds timeout)
    {
        if (hasThread()) {
            waitUntilRunning(timeout);
            exit();
        }
    }

    // Polls, since the state is the only sign of life. An exit before the event loop runs would be missed.
    void waitUntilRunning(std::chrono::milliseconds timeout)
    {
        const auto start = std::chrono::steady_clock::now();
        while (::getState() != BRIMLET_STATE_RUNNING) {
            if (hasEnded) {
                thread.join();
                goBack();
                throw LaunchEnded();
            }
            const auto passed = std::chrono::steady_clock::now() - start;
            if (std::chrono::duration_cast<std::chrono::milliseconds>(passed) >= timeout) { // no timeout overflows
                endWithProcess();
                throw LaunchTimedOut();
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        if (!std::exchange(hasRun, true))
            endWithProcess();
        goBack();
    }

    // Once a launch: what the client makes the working directory later is its own business.
    void goBack()
    {
        std::error_code ignored; // the directory may be gone, and nothing here needs it
        if (!before.empty())
            std::filesystem::current_path(before, ignored);
        before.clear();
    }

    std::atomic<bool> isClaimed{false};
    std::atomic<bool> hasEnded{false};
    bool hasRun = false; // some launch has
    int process = 0;     // the one whose thread it is
    std::thread thread;
    std::filesystem::path before;
};

class Claim
{
public:
    Claim() { Host::ofProcess().claim(); }
    ~Claim() { Host::ofProcess().disclaim(); }
    Claim(const Claim &) = delete;
    Claim &operator=(const Claim &) = delete;
};

// Keeps the file that a launch may replace, with its journals. While the launch runs they have second names; where it
// has replaced the file, these become names with the time, and the newest few stay.
class DamagedFiles
{
public:
    // With 0 it touches nothing.
    explicit DamagedFiles(unsigned count) : keptCount(count) {}

    // To be called before a launch. What a launch that nobody saw to its end has left behind is settled first.
    void hold(const std::filesystem::path &directory)
    {
        if (keptCount == 0)
            return;
        file = std::filesystem::canonical(directory) / "CacheDb";
        held = with(file, ".before-launch");
        isHolding = true;
        try {
            settle(false);
        } catch (const std::filesystem::filesystem_error &error) {
            isHolding = false;
            if (!isDenied(error.code()))
                throw;
            return;
        }
        if (!isHolding && hasContent())
            link();
    }

    // To be called after it. Gives the name that a file that was replaced is kept under.
    std::optional<std::filesystem::path> settle(bool isUsable)
    {
        if (!isHolding)
            return std::nullopt;
        std::error_code ignored; // there may be no file
        if (isUsable || !isThere(held) || std::filesystem::equivalent(held, file, ignored)) {
            drop();
            return std::nullopt;
        }
        const std::filesystem::path kept = freeName();
        for (const char *part : parts) {
            std::error_code error;
            if (isThere(with(held, part)))
                std::filesystem::rename(with(held, part), with(kept, part), error);
            if (error)
                throw notKept(with(held, part), with(kept, part), error);
        }
        isHolding = false;
        removeOlderThan(kept);
        return kept;
    }

    // To be called after the exit, since Windows removes no name of an open file.
    void drop()
    {
        if (!isHolding)
            return;
        std::error_code ignored; // the next session tries again
        for (const char *part : parts)
            if (isThere(with(held, part)))
                std::filesystem::remove(with(held, part), ignored);
        isHolding = isThere(held);
    }

private:
    // The file last: a journal without its file is one of a launch that did not begin.
    static constexpr const char *parts[] = {"-journal", "-wal", ""};

    static std::filesystem::path with(std::filesystem::path name, const char *part) { return name += part; }

    static bool isThere(const std::filesystem::path &name)
    {
        std::error_code ignored;
        return std::filesystem::is_regular_file(std::filesystem::symlink_status(name, ignored));
    }

    static std::filesystem::filesystem_error notKept(const std::filesystem::path &from, const std::filesystem::path &to,
                                                     const std::error_code &error)
    {
        return {"a file that its launch may replace cannot be kept (keepDamaged = 0 launches without)", from, to,
                error};
    }

    // In a directory that may not be changed a launch cannot replace the file, so nothing has to be kept.
    static bool isDenied(const std::error_code &error)
    {
        return error == std::errc::permission_denied || error == std::errc::operation_not_permitted
            || error == std::errc::read_only_file_system;
    }

    // A launch without recovery leaves an empty file, which must not push out those that hold something.
    bool hasContent() const
    {
        std::error_code ignored;
        return isThere(file) && std::any_of(std::begin(parts), std::end(parts), [&](const char *part) {
                   return isThere(with(file, part)) && std::filesystem::file_size(with(file, part), ignored) > 0;
               });
    }

    // A link opens no file, so the process loses no lock on it. Not every file system has links.
    void link()
    {
        isHolding = true;
        for (const char *part : parts) {
            const std::filesystem::path from = with(file, part);
            const std::filesystem::path to = with(held, part);
            std::error_code linkError;
            std::error_code copyError;
            if (!isThere(from))
                continue;
            std::filesystem::create_hard_link(from, to, linkError);
            if (!linkError || std::filesystem::copy_file(from, to, copyError))
                continue;
            const bool isFolderClosed = isDenied(linkError) && isDenied(copyError) && !std::ofstream(to);
            drop();
            if (isFolderClosed)
                return;
            throw notKept(from, to, copyError);
        }
    }

    std::filesystem::path freeName() const
    {
        const auto isFree = [](const std::filesystem::path &name) {
            return std::none_of(std::begin(parts), std::end(parts), [&](const char *part) {
                std::error_code ignored;
                return exists(std::filesystem::symlink_status(with(name, part), ignored));
            });
        };
        auto time = std::chrono::time_point_cast<std::chrono::milliseconds>(std::chrono::system_clock::now());
        while (!isFree(nameAt(time)))
            time += std::chrono::milliseconds(1);
        return nameAt(time);
    }

    std::filesystem::path
    nameAt(std::chrono::time_point<std::chrono::system_clock, std::chrono::milliseconds> time) const
    {
        const auto milliseconds = time.time_since_epoch().count();
        const auto seconds = static_cast<std::time_t>(milliseconds / 1000);
        std::tm utc{};
#ifdef _WIN32
        gmtime_s(&utc, &seconds);
#else
        gmtime_r(&seconds, &utc);
#endif
        char text[sizeof ".damaged-20261122T064500."];
        std::strftime(text, sizeof text, ".damaged-%Y%m%dT%H%M%S.", &utc);
        return with(with(file, text), (std::to_string(1000 + milliseconds % 1000).substr(1) + "Z").c_str());
    }

    static bool isKeptName(const std::filesystem::path &name)
    {
        constexpr std::string_view shape = "CacheDb.damaged-00000000T000000.000Z"; // any digit for a 0
        const auto &text = name.native();
        return std::equal(shape.begin(), shape.end(), text.begin(), text.end(), [](char expected, auto unit) {
            return expected == '0' ? unit >= '0' && unit <= '9' : unit == expected;
        });
    }

    // The newest one stays whatever the clock said to the others.
    void removeOlderThan(const std::filesystem::path &newest) const
    {
        std::error_code ignored; // what cannot be listed or removed stays
        std::vector<std::filesystem::path> others;
        for (const auto &entry : std::filesystem::directory_iterator(file.parent_path(), ignored))
            if (isKeptName(entry.path().filename()) && isThere(entry.path()) && entry.path() != newest)
                others.push_back(entry.path());
        std::sort(others.rbegin(), others.rend()); // the newest first
        for (size_t i = keptCount - 1; i < others.size(); ++i)
            for (const char *part : parts)
                std::filesystem::remove(with(others[i], part), ignored);
    }

    unsigned keptCount;
    bool isHolding = false; // there are second names, or may be
    std::filesystem::path file;
    std::filesystem::path held;
};

} // namespace detail

/** How a Session is to launch. */
struct LaunchOptions
{
    std::chrono::milliseconds timeout{10000}; /**< How long each launch may take. */
    bool recover = true; /**< Whether to launch a second time, without the file, where the first replaced the file. */
    unsigned keepDamaged = 3; /**< How many files that launches have replaced are kept; 0 keeps none, removes none. */
};

/** How the launches of a Session went. */
struct LaunchReport
{
    LaunchResult first = LaunchResult::None;   /**< The first launch. */
    std::optional<LaunchResult> second;        /**< The second launch, where recovery took one. */
    std::optional<std::filesystem::path> kept; /**< Where the file is that the first launch replaced. */

    /** The launch that the session runs on. */
    LaunchResult last() const { return second.value_or(first); }
};

/**
 * The library, from its launch to its exit. One at a time in a process.
 *
 * The library keeps its file in the working directory at launch, so a session makes its directory the working directory
 * of the whole process while it launches, and goes back as soon as the library runs. Other threads should not depend on
 * the working directory meanwhile.
 *
 * A file that fails its checks is replaced at launch by one that cannot be used. A session keeps what was there, with
 * its journals, as "CacheDb.damaged-20261122T064500.123Z", the time in UTC; of these the newest few stay. Unless it is
 * told not to, it then recovers: it exits, removes the file and its journal, and launches again. Both results and the
 * name stand in report(). Until the launch is over, "CacheDb.before-launch" is a second name of the file. A process
 * that dies meanwhile leaves it behind; the next session removes it, or keeps it where it is the only one.
 *
 * A session that nobody has destroyed when the process ends, a global one for instance, exits then. In a child that is
 * forked while it lives it must not be used, and neither its destructor nor the end of the process does anything there.
 */
class Session
{
public:
    /**
     * Launches the library on a thread of its own and waits until it runs. Throws
     *
     * - AlreadyLaunched where another session lives or another part of the process has launched the library,
     * - LaunchTimedOut where a launch takes too long. It goes on behind the scenes, and the working directory stays
     *   where it is until the next Session, or the end of the process, has waited for it and ended it,
     * - LaunchEnded where launchCache comes back by itself,
     * - std::filesystem::filesystem_error where the directory cannot be entered, or its file not be kept or removed.
     */
    explicit Session(const std::filesystem::path &directory = ".", LaunchOptions options = {})
        : damaged(options.keepDamaged)
    {
        detail::Host &host = detail::Host::ofProcess();
        host.makeReady(options.timeout);
        damaged.hold(directory);
        launches.first = host.launch(directory, options.timeout);
        launches.kept = damaged.settle(isUsable());
        if (options.recover && isReplaced(launches.first)) {
            host.exit();
            std::filesystem::remove(directory / "CacheDb");
            std::filesystem::remove(directory / "CacheDb-journal");
            launches.second = host.launch(directory, options.timeout);
        }
    }

    /** Exits and waits for the launch thread. No other thread may be in a call. */
    ~Session()
    {
        detail::Host::ofProcess().exit();
        damaged.drop();
    }

    Session(const Session &) = delete;
    Session &operator=(const Session &) = delete;

    /** How the launches went. */
    const LaunchReport &report() const { return launches; }
    /** Whether the store can be read and written. */
    bool isUsable() const { return brimlet::isUsable(launches.last()); }
    /** What getState answers. */
    State state() const { return static_cast<State>(::getState()); }
    /** What getLaunchCacheResult answers. */
    LaunchResult launchResult() const { return static_cast<LaunchResult>(::getLaunchCacheResult()); }

    /** @name Server address
     *  @{ */
    /** The function of its name in brimlet.h. */
    Code setServerIp(const TextArgument &text) { return send(::setServerIp, text); }
    Answer<OwnedText> getServerIp();
    /** @} */

    /** @name Locales
     *  @{ */
    /** The function of its name in brimlet.h. */
    Code addLocales(const TextArgument &json) { return send(::addLocales, json); }
    Answer<Record<LocaleView>> getLocale(uint32_t id) { return one<LocaleView>(::getLocale, id); }
    Answer<Array<LocaleView>> getLocales() { return list<LocaleView>(::getLocales); }
    Answer<Array<LocaleView>> getLocalesWithParams(const TextArgument &key, const TextArgument &value)
    {
        return find<LocaleView>(::getLocalesWithParams, key, value);
    }
    /** @} */

    /** @name Domains
     *  @{ */
    /** The function of its name in brimlet.h. */
    Code addDomains(const TextArgument &json) { return send(::addDomains, json); }
    Answer<Record<DomainView>> updateDomain(const TextArgument &json)
    {
        return one<DomainView>(::updateDomain, json.units(), json.length());
    }
    Code deleteDomain(const TextArgument &json) { return send(::deleteDomain, json); }
    Answer<Record<DomainView>> getDomain(uint32_t id) { return one<DomainView>(::getDomain, id); }
    Answer<Array<DomainView>> getDomains() { return list<DomainView>(::getDomains); }
    Answer<Array<DomainView>> getDomainsWithParams(const TextArgument &key, const TextArgument &value)
    {
        return find<DomainView>(::getDomainsWithParams, key, value);
    }
    /** @} */

    /** @name Users
     *  @{ */
    /** The function of its name in brimlet.h. */
    Code addUsers(const TextArgument &json) { return send(::addUsers, json); }
    Answer<Record<UserView>> updateUser(const TextArgument &json)
    {
        return one<UserView>(::updateUser, json.units(), json.length());
    }
    Code deleteUser(const TextArgument &json) { return send(::deleteUser, json); }
    Answer<Record<UserView>> getUser(uint32_t id) { return one<UserView>(::getUser, id); }
    Answer<Array<UserView>> getUsers() { return list<UserView>(::getUsers); }
    Answer<Array<UserView>> getUsersWithParams(const TextArgument &key, const TextArgument &value)
    {
        return find<UserView>(::getUsersWithParams, key, value);
    }
    /** @} */

    /** @name Organizations
     *  @{ */
    /** The function of its name in brimlet.h. */
    Code addOrganizations(const TextArgument &json) { return send(::addOrganizations, json); }
    Answer<Record<OrganizationView>> updateOrganization(const TextArgument &json)
    {
        return one<OrganizationView>(::updateOrganization, json.units(), json.length());
    }
    Code deleteOrganization(const TextArgument &json) { return send(::deleteOrganization, json); }
    Answer<Record<OrganizationView>> getOrganization(uint32_t id)
    {
        return one<OrganizationView>(::getOrganization, id);
    }
    Answer<Array<OrganizationView>> getOrganizations() { return list<OrganizationView>(::getOrganizations); }
    Answer<Array<OrganizationView>> getOrganizationsWithParams(const TextArgument &key, const TextArgument &value)
    {
        return find<OrganizationView>(::getOrganizationsWithParams, key, value);
    }
    /** @} */

    /** @name Contractors
     *  @{ */
    /** The function of its name in brimlet.h. */
    Code addContractors(const TextArgument &json) { return send(::addContractors, json); }
    Answer<Record<ContractorView>> updateContractor(const TextArgument &json)
    {
        return one<ContractorView>(::updateContractor, json.units(), json.length());
    }
    Code deleteContractor(const TextArgument &json) { return send(::deleteContractor, json); }
    Answer<Record<ContractorView>> getContractor(uint32_t id) { return one<ContractorView>(::getContractor, id); }
    Answer<Array<ContractorView>> getContractors() { return list<ContractorView>(::getContractors); }
    Answer<Array<ContractorView>> getContractorsWithParams(const TextArgument &key, const TextArgument &value)
    {
        return find<ContractorView>(::getContractorsWithParams, key, value);
    }
    /** @} */

    /** @name Contracts
     *  @{ */
    /** The function of its name in brimlet.h. */
    Code addContracts(const TextArgument &json) { return send(::addContracts, json); }
    Answer<Record<ContractView>> updateContract(const TextArgument &json)
    {
        return one<ContractView>(::updateContract, json.units(), json.length());
    }
    Code deleteContract(const TextArgument &json) { return send(::deleteContract, json); }
    Answer<Record<ContractView>> getContract(uint32_t id) { return one<ContractView>(::getContract, id); }
    Answer<Array<ContractView>> getContracts() { return list<ContractView>(::getContracts); }
    Answer<Array<ContractView>> getContractsWithParams(const TextArgument &key, const TextArgument &value)
    {
        return find<ContractView>(::getContractsWithParams, key, value);
    }
    /** @} */

    /** @name Devices
     *  @{ */
    /** The function of its name in brimlet.h. */
    Code addDevice(const TextArgument &json) { return send(::addDevice, json); }
    Code addDevices(const TextArgument &json) { return send(::addDevices, json); }
    Answer<Record<DeviceView>> updateDeviceFw(const TextArgument &json)
    {
        return one<DeviceView>(::updateDeviceFw, json.units(), json.length());
    }
    Code deleteDevice(const TextArgument &json) { return send(::deleteDevice, json); }
    Answer<Record<DeviceView>> getDevice(uint32_t id) { return one<DeviceView>(::getDevice, id); }
    Answer<Array<DeviceView>> getDevices() { return list<DeviceView>(::getDevices); }
    Answer<Array<DeviceView>> getDevicesWithParams(const TextArgument &key, const TextArgument &value)
    {
        return find<DeviceView>(::getDevicesWithParams, key, value);
    }
    /** @} */

    /** @name Sections
     *  @{ */
    /** The function of its name in brimlet.h. */
    Answer<Record<SectionView>> updateSection(const TextArgument &json)
    {
        return one<SectionView>(::updateSection, json.units(), json.length());
    }
    Code deleteSection(const TextArgument &json) { return send(::deleteSection, json); }
    Answer<Record<SectionView>> getSection(uint32_t sectionId, uint32_t deviceId)
    {
        return one<SectionView>(::getSection, sectionId, deviceId);
    }
    Answer<Array<SectionView>> getSections(uint32_t deviceId) { return list<SectionView>(::getSections, deviceId); }
    Answer<Array<SectionView>> getSectionsWithParams(const TextArgument &key, const TextArgument &value,
                                                     uint32_t deviceId)
    {
        return find<SectionView>(::getSectionsWithParams, key, value, deviceId);
    }
    /** @} */

    /** @name Zones
     *  @{ */
    /** The function of its name in brimlet.h. */
    Answer<Record<ZoneView>> updateZone(const TextArgument &json)
    {
        return one<ZoneView>(::updateZone, json.units(), json.length());
    }
    Code deleteZone(const TextArgument &json) { return send(::deleteZone, json); }
    Answer<Record<ZoneView>> getZone(uint32_t zoneId, uint32_t deviceId, uint32_t sectionId)
    {
        return one<ZoneView>(::getZone, zoneId, deviceId, sectionId);
    }
    Answer<Array<ZoneView>> getZones(uint32_t deviceId) { return list<ZoneView>(::getZones, deviceId); }
    Answer<Array<ZoneView>> getZonesForSection(uint32_t deviceId, uint32_t sectionId)
    {
        return list<ZoneView>(::getZonesForSection, deviceId, sectionId);
    }
    Answer<Array<ZoneView>> getZonesWithParams(const TextArgument &key, const TextArgument &value, uint32_t deviceId)
    {
        return find<ZoneView>(::getZonesWithParams, key, value, deviceId);
    }
    Answer<Array<ZoneView>> getZonesForSectionWithParams(const TextArgument &key, const TextArgument &value,
                                                         uint32_t deviceId, uint32_t sectionId)
    {
        return find<ZoneView>(::getZonesForSectionWithParams, key, value, deviceId, sectionId);
    }
    /** @} */

    /** @name Sites
     *  @{ */
    /** The function of its name in brimlet.h. */
    Code addSites(const TextArgument &json) { return send(::addSites, json); }
    Answer<Record<SiteView>> updateSite(const TextArgument &json)
    {
        return one<SiteView>(::updateSite, json.units(), json.length());
    }
    Code deleteSite(const TextArgument &json) { return send(::deleteSite, json); }
    Answer<Record<SiteView>> getSite(uint32_t id) { return one<SiteView>(::getSite, id); }
    Answer<Array<SiteView>> getSites() { return list<SiteView>(::getSites); }
    Answer<Array<SiteView>> getSitesWithParams(const TextArgument &key, const TextArgument &value)
    {
        return find<SiteView>(::getSitesWithParams, key, value);
    }
    Answer<SiteLabel> getSiteNameAndAddress(uint32_t id);
    /** @} */

    /** @name Events
     *  @{ */
    /** The function of its name in brimlet.h. */
    Answer<Record<EventView>> addEvent(const TextArgument &json)
    {
        return one<EventView>(::addEvent, json.units(), json.length());
    }
    Answer<Array<EventView>> addEvents(const TextArgument &json)
    {
        return list<EventView>(::addEvents, json.units(), json.length());
    }
    Answer<Array<EventView>> getEvents(uint32_t from, uint32_t to) { return list<EventView>(::getEvents, from, to); }
    Answer<Array<EventView>> getAffectEvents() { return list<EventView>(::getAffectEvents); }
    Answer<Record<EventView>> removeAffectFlag(const TextArgument &json)
    {
        return one<EventView>(::removeAffectFlag, json.units(), json.length());
    }
    Code clearEventsBeforeDateExceptAffects(uint32_t date) { return call(::clearEventsBeforeDateExceptAffects, date); }
    /** @} */

    /** @name Clearing
     *  @{ */
    /** The function of its name in brimlet.h. */
    Code clearAll() { return call(::clearAll); }
    Code clearAllExceptEvents() { return call(::clearAllExceptEvents); }
    /** @} */

private:
    using Lock = std::lock_guard<std::mutex>;

    // Where memory runs out in a call the process ends: the call's transaction would stay open behind an exception.
    template<class... Parameters, class... Arguments>
    Code call(uint32_t (*function)(Parameters...), Arguments... arguments) noexcept
    {
        const Lock lock(mutex);
        return static_cast<Code>(function(arguments...));
    }

    Code send(uint32_t (*function)(const uint16_t *, uint32_t), const TextArgument &text)
    {
        return call(function, text.units(), text.length());
    }

    template<class RecordView, class... Parameters, class... Arguments>
    Answer<Record<RecordView>> one(uint32_t (*function)(typename RecordView::Flat **, Parameters...),
                                   Arguments... arguments)
    {
        typename RecordView::Flat *record = nullptr;
        const Code code = call(function, &record, arguments...);
        return answer(code, Record<RecordView>(record));
    }

    template<class RecordView, class... Parameters, class... Arguments>
    Answer<Array<RecordView>> list(uint32_t (*function)(typename RecordView::Flat **, uint32_t *, Parameters...),
                                   Arguments... arguments)
    {
        typename RecordView::Flat *records = nullptr;
        uint32_t count = 0;
        const Code code = call(function, &records, &count, arguments...);
        return answer(code, Array<RecordView>(records, count));
    }

    template<class RecordView, class... Parameters, class... Parents>
    Answer<Array<RecordView>> find(uint32_t (*function)(typename RecordView::Flat **, uint32_t *, const uint16_t *,
                                                        uint32_t, const uint16_t *, uint32_t, Parameters...),
                                   const TextArgument &key, const TextArgument &value, Parents... parents)
    {
        return list<RecordView>(function, key.units(), key.length(), value.units(), value.length(), parents...);
    }

    template<class T>
    static Answer<T> answer(Code code, T &&value)
    {
        return code == Code::Done ? Answer<T>(std::move(value)) : Answer<T>(code);
    }

    detail::Claim claim;
    detail::DamagedFiles damaged;
    LaunchReport launches;
    std::mutex mutex;
};

inline Answer<OwnedText> Session::getServerIp()
{
    uint16_t *text = nullptr;
    const Code code = call(::getServerIp, &text);
    return answer(code, OwnedText(text));
}

inline Answer<SiteLabel> Session::getSiteNameAndAddress(uint32_t id)
{
    uint16_t *name = nullptr;
    uint16_t *address = nullptr;
    const Code code = call(::getSiteNameAndAddress, &name, &address, id);
    return answer(code, SiteLabel{OwnedText(name), OwnedText(address)});
}

} // namespace brimlet

#endif
