#pragma once

#include "records/Contractor.h"
#include "records/User.h"

namespace brimlet {

struct Contract
{
    quint32 id = 0;
    std::optional<QString> number;
    std::optional<Contractor> contractor; // input sets its id only
    std::optional<QString> name;
    std::optional<quint32> status;
    std::optional<quint32> date;
    std::optional<QString> description;
    std::optional<QString> extra;
    std::optional<User> user; // input sets its id only
};

} // namespace brimlet
