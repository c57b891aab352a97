#pragma once

#include "records/Locale.h"

namespace brimlet {

struct Domain
{
    quint32 id = 0;
    std::optional<QString> name;
    std::optional<quint32> orgId;
    std::optional<Locale> locale; // input sets its id only
};

} // namespace brimlet
