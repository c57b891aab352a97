/**
 * @file answers.hpp
 * The answer to a call. Included by brimlet.hpp.
 */
#ifndef BRIMLET_RUNTIME_ANSWERS_HPP
#define BRIMLET_RUNTIME_ANSWERS_HPP

#include "errors.hpp"

#include <utility>

namespace brimlet {

/** What a call returns: a code, and with Code::Done a value. Reading a value that is not there throws Error. */
template<class T>
class [[nodiscard]] Answer
{
public:
    /** An answer without a value. */
    explicit Answer(Code code) : answered(code) {}
    /** Code::Done with its value. */
    explicit Answer(T &&value) : answered(Code::Done), held(std::move(value)) {}

    /** The result code of the call. */
    Code code() const { return answered; }
    /** Whether the code is Code::Done. */
    explicit operator bool() const { return answered == Code::Done; }

    /** @name The value
     *  @{ */
    /** Throws Error if there is none. A temporary answer gives its value away, and no views of it. */
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

    /** The value, or an empty one for Code::NotFound: for reads that may find nothing. Throws Error otherwise. */
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

} // namespace brimlet

#endif
