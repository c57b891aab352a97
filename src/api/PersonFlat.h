#pragma once

#include "api/Flatten.h"
#include "brimlet/FlatRecords.h"
#include "records/Person.h"

namespace brimlet {

// clang-format off
template<>
struct FlatForm<Person>
{
    using Flat = FlatPerson;
    static constexpr auto fields = std::make_tuple(
        flatField(&Flat::id, &Person::id),
        flatField(&Flat::name, &Person::name),
        flatField(&Flat::phone, &Person::phone),
        flatField(&Flat::email, &Person::email),
        flatField(&Flat::postal, &Person::postal));
};
// clang-format on

} // namespace brimlet
