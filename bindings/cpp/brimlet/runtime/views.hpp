/**
 * @file views.hpp
 * The parts that the views of records are made of. Included by brimlet.hpp.
 */
#ifndef BRIMLET_RUNTIME_VIEWS_HPP
#define BRIMLET_RUNTIME_VIEWS_HPP

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <optional>
#include <string_view>
#include <type_traits>

namespace brimlet {

using Number = std::optional<uint32_t>;          /**< A number that may be absent. */
using SignedNumber = std::optional<int32_t>;     /**< A signed number that may be absent. */
using BigNumber = std::optional<uint64_t>;       /**< A number of 64 bits that may be absent. */
using Byte = std::optional<uint8_t>;             /**< A number of 8 bits that may be absent. */
using Flag = std::optional<bool>;                /**< A flag that may be absent. */
using Real = std::optional<double>;              /**< A real number that may be absent. */
using Text = std::optional<std::u16string_view>; /**< A text that may be absent. An empty text is present. */

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

// What an element of a range views: a flat record, or itself if it is a number.
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

// Keeps a view alive while "->" reads through it.
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

/** The base of all views. A view refers to a flat record, which it neither copies nor owns. */
template<class FlatRecord>
class View
{
public:
    using Flat = FlatRecord; /**< The record of FlatRecords.h. */

    /** A view of a record. */
    explicit View(const Flat &record) : flat(&record) {}

    /** The id of the record, or the number that identifies it in its device. */
    uint32_t id() const { return flat->id; }

    /** The record itself. */
    const Flat &record() const { return *flat; }

protected:
    const Flat *flat; /**< Never null. */
};

/** An array of records or numbers inside a record, as a range of views or numbers. */
template<class Element>
class Range
{
public:
    using Flat = typename detail::Viewed<Element>::Flat; /**< What the array holds. */

    /** Iterates over the elements, each made when it is read. */
    class iterator
    {
    public:
        using iterator_category = std::input_iterator_tag; /**< Not more, because it returns values. */
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
    /** A range over an array with its count. */
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

} // namespace brimlet

#endif
