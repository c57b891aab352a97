#pragma once

#include "records/Domain.h"

namespace brimlet {

// An operator of the monitoring service.
struct User
{
    quint32 id = 0;
    std::optional<QString> name;
    std::optional<QString> login;
    std::optional<QString> contacts;
    std::optional<bool> isActive;
    std::optional<quint32> domainId;
    std::optional<quint32> roles;
    std::optional<quint64> phone;
    std::optional<Domain> domain; // output only
    std::optional<quint32> orgId;
};

} // namespace brimlet
