#pragma once

#include <QString>
#include <optional>

namespace brimlet {

struct Contractor
{
    quint32 id = 0;
    std::optional<QString> inn;
    std::optional<quint32> orgId;
    std::optional<quint32> type;
    std::optional<QString> officialName;
    std::optional<QString> name;
    std::optional<QString> extra;
};

} // namespace brimlet
