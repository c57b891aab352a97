#pragma once

#include "records/Locale.h"
#include "records/Person.h"

namespace brimlet {

struct Organization
{
    quint32 id = 0;
    std::optional<QString> inn;
    std::optional<QString> officialName;
    std::optional<QString> shortName;
    std::optional<QString> kpp;
    std::optional<QString> ogrn;
    std::optional<QString> address;
    std::optional<Person> contact;
    std::optional<Locale> locale; // input sets its id only
};

} // namespace brimlet
