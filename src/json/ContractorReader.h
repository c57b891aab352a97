#pragma once

#include "catalog/ContractorsTable.h"
#include "json/DocumentForm.h"

namespace brimlet {

template<>
struct DocumentForm<Contractor>
{
    using Keys = ContractorsTable;
    static constexpr auto &members = ContractorFields::recordOrder;
    static constexpr auto &searches = ContractorFields::tableOrder;
};

inline bool fillContractor(Contractor &contractor, const QJsonObject &object, const ContractorsTable &keys = {})
{
    return readMembers(contractor, object, keys);
}

} // namespace brimlet
