/**
 * @file owners.hpp
 * Owners of records, arrays and texts. Included by brimlet.hpp.
 */
#ifndef BRIMLET_RUNTIME_OWNERS_HPP
#define BRIMLET_RUNTIME_OWNERS_HPP

#include "../records.hpp"
#include "views.hpp"

#include <cstdint>
#include <cstdlib>
#include <memory>

#ifdef _WIN32
#include <objbase.h>
#endif

namespace brimlet {

namespace detail {

template<class Flat>
struct ReleaseArray
{
    uint32_t count = 0;
    void operator()(Flat *records) const { Release()(records, count); }
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

/** Owns a record that the library returned, or none. Read it through "->". */
template<class RecordView>
class Record
{
public:
    using Flat = typename RecordView::Flat; /**< The record of FlatRecords.h. */

    /** No record. */
    Record() = default;
    /** Takes ownership of a record that a function of brimlet.h returned. */
    explicit Record(Flat *record) : owned(record) {}

    /** Whether there is a record. */
    explicit operator bool() const { return owned != nullptr; }

    /** @name Views of the record
     *  @{ */
    /** There must be a record. A temporary has no views, which would outlive it. */
    RecordView operator*() const & { return RecordView(*owned); }
    detail::Arrow<RecordView> operator->() const & { return detail::Arrow<RecordView>(**this); }
    RecordView operator*() && = delete;
    detail::Arrow<RecordView> operator->() && = delete;
    /** @} */

    /** Gives ownership up: the caller releases the record with the function of brimlet.h. */
    Flat *release() { return owned.release(); }

private:
    std::unique_ptr<Flat, detail::Release> owned;
};

/** Owns an array that the library returned, or an empty one: a range of views. */
template<class RecordView>
class Array
{
public:
    using Flat = typename RecordView::Flat;                /**< The record of FlatRecords.h. */
    using iterator = typename Range<RecordView>::iterator; /**< Iterates over the views. */

    /** An empty array. */
    Array() = default;
    /** Takes ownership of an array that a function of brimlet.h returned. */
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

    std::unique_ptr<Flat, detail::ReleaseArray<Flat>> owned;
};

/** Owns a plain text that the library returned, or none. */
class OwnedText
{
public:
    /** No text. */
    OwnedText() = default;
    /** Takes ownership of a text that a function of brimlet.h returned. */
    explicit OwnedText(uint16_t *text) : owned(text) {}

    /** A view of the text, empty if there is none. */
    Text view() const & { return detail::text(owned.get()); }
    Text view() && = delete;

private:
    std::unique_ptr<uint16_t, detail::ReleaseText> owned;
};

/** The texts that getSiteNameAndAddress returns. */
struct SiteLabel
{
    OwnedText name;    /**< The name, if the site has one. */
    OwnedText address; /**< The address, if the site has one. */
};

} // namespace brimlet

#endif
