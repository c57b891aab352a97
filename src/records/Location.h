#pragma once

#include <QtGlobal>
#include <optional>

namespace brimlet {

// The coordinates of a site. Its id is that of the site.
struct Location
{
    quint32 id = 0;
    std::optional<double> latitude;
    std::optional<double> longitude;
};

} // namespace brimlet
