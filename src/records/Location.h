#pragma once

#include <QtGlobal>
#include <optional>

namespace brimlet {

// Where a site lies. Its id is the site's.
struct Location
{
    quint32 id = 0;
    std::optional<double> latitude;
    std::optional<double> longitude;
};

} // namespace brimlet
