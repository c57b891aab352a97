#pragma once

#include <QString>
#include <optional>

namespace brimlet {

struct Locale
{
    quint32 id = 0;
    std::optional<QString> iso;
    std::optional<QString> description;
};

} // namespace brimlet
