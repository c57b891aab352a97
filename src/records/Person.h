#pragma once

#include <QString>
#include <optional>

namespace brimlet {

// The contact person of an organization.
struct Person
{
    quint32 id = 0;
    std::optional<QString> name;
    std::optional<QString> phone;
    std::optional<QString> email;
    std::optional<QString> postal;
};

} // namespace brimlet
