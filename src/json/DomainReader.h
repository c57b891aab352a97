#pragma once

#include "catalog/DomainsTable.h"
#include "json/DocumentForm.h"

namespace brimlet {

template<>
struct DocumentForm<Domain>
{
    using Keys = DomainsTable;
    static constexpr auto &members = DomainFields::tableOrder;
    static constexpr auto &searches = DomainFields::tableOrder;
};

inline bool fillDomain(Domain &domain, const QJsonObject &object, const DomainsTable &keys = {})
{
    return readMembers(domain, object, keys);
}

} // namespace brimlet
