#pragma once

#include "records/Locale.h"

namespace brimlet {

struct Domain
{
    quint32 id = 0;
    std::optional<QString> name;
    std::optional<quint32> orgId;
    std::optional<Locale> locale; // with nothing but its id on the way in
};

} // namespace brimlet
