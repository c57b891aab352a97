/**
 * @file caller.hpp
 * How a call reaches its function. Included by brimlet.hpp.
 */
#ifndef BRIMLET_RUNTIME_CALLER_HPP
#define BRIMLET_RUNTIME_CALLER_HPP

#include "answers.hpp"
#include "owners.hpp"
#include "texts.hpp"

#include <cstdint>
#include <mutex>
#include <tuple>
#include <utility>

namespace brimlet {

namespace detail {

// What a function takes for an argument: a text becomes its code units and their number.
template<class T>
std::tuple<T> expanded(T argument)
{
    return {argument};
}

inline std::tuple<const uint16_t *, uint32_t> expanded(const TextArgument &text)
{
    return {text.units(), text.length()};
}

// Calls the functions of brimlet.h, one at a time, and makes answers of what they return.
class Caller
{
protected:
    template<class... Parameters, class... Arguments>
    Code call(uint32_t (*function)(Parameters...), const Arguments &...arguments)
    {
        return run(function, std::tuple_cat(expanded(arguments)...));
    }

    template<class RecordView, class... Parameters, class... Arguments>
    Answer<Record<RecordView>> one(uint32_t (*function)(typename RecordView::Flat **, Parameters...),
                                   const Arguments &...arguments)
    {
        typename RecordView::Flat *record = nullptr;
        const Code code = call(function, &record, arguments...);
        return answer(code, Record<RecordView>(record));
    }

    template<class RecordView, class... Parameters, class... Arguments>
    Answer<Array<RecordView>> list(uint32_t (*function)(typename RecordView::Flat **, uint32_t *, Parameters...),
                                   const Arguments &...arguments)
    {
        typename RecordView::Flat *records = nullptr;
        uint32_t count = 0;
        const Code code = call(function, &records, &count, arguments...);
        return answer(code, Array<RecordView>(records, count));
    }

    Answer<OwnedText> text(uint32_t (*function)(uint16_t **))
    {
        uint16_t *text = nullptr;
        const Code code = call(function, &text);
        return answer(code, OwnedText(text));
    }

    Answer<SiteLabel> label(uint32_t (*function)(uint16_t **, uint16_t **, uint32_t), uint32_t id)
    {
        uint16_t *name = nullptr;
        uint16_t *address = nullptr;
        const Code code = call(function, &name, &address, id);
        return answer(code, SiteLabel{OwnedText(name), OwnedText(address)});
    }

private:
    // If memory runs out in a call the process ends: after an exception the transaction of the call would stay open.
    template<class Function, class Arguments>
    Code run(Function *function, const Arguments &arguments) noexcept
    {
        const std::lock_guard<std::mutex> lock(mutex);
        return static_cast<Code>(std::apply(function, arguments));
    }

    template<class T>
    static Answer<T> answer(Code code, T &&value)
    {
        return code == Code::Done ? Answer<T>(std::move(value)) : Answer<T>(code);
    }

    std::mutex mutex;
};

} // namespace detail

} // namespace brimlet

#endif
