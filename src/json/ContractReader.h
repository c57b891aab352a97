#pragma once

#include "catalog/ContractsTable.h"
#include "json/DocumentForm.h"

namespace brimlet {

template<>
struct DocumentForm<Contract>
{
    using Keys = ContractsTable;
    static constexpr auto &members = ContractFields::tableOrder;
    static constexpr auto &searches = ContractFields::tableOrder;
};

inline bool fillContract(Contract &contract, const QJsonObject &object, const ContractsTable &keys = {})
{
    return readMembers(contract, object, keys);
}

} // namespace brimlet
