#pragma once

#include "catalog/PersonsTable.h"
#include "json/DocumentForm.h"

namespace brimlet {

template<>
struct DocumentForm<Person>
{
    using Keys = PersonsTable;
    static constexpr auto &members = PersonFields::tableOrder;
};

inline bool fillPerson(Person &person, const QJsonObject &object, const PersonsTable &keys = {})
{
    return readMembers(person, object, keys);
}

} // namespace brimlet
