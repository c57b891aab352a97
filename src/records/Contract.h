#pragma once

#include "records/Contractor.h"
#include "records/User.h"

namespace brimlet {

struct Contract
{
    quint32 id = 0;
    std::optional<QString> number;
    std::optional<Contractor> contractor; // with nothing but its id on the way in
    std::optional<QString> name;
    std::optional<quint32> status;
    std::optional<quint32> date;
    std::optional<QString> description;
    std::optional<QString> extra;
    std::optional<User> user; // with nothing but its id on the way in
};

} // namespace brimlet
