#pragma once

#include "catalog/RowPart.h"
#include "records/Contractor.h"

namespace brimlet {

class TableCatalog;

struct ContractorsTable : Table
{
    ContractorsTable() : Table("Contractors") {}

    IdFieldDesc id = idField("Id", "id", "id", "id");
    FieldDesc inn = field("Inn", "inn");
    FieldDesc orgId = field("OrgId", "org_id");
    FieldDesc type = field("Type", "type");
    FieldDesc officialName = field("OfficialName", "off_name");
    FieldDesc name = field("Name", "name");
    FieldDesc extra = field("Extra", "extra");
};

namespace ContractorFields {

inline constexpr auto id = mapped(&Contractor::id, &ContractorsTable::id);
inline constexpr auto inn = mapped(&Contractor::inn, &ContractorsTable::inn);
inline constexpr auto orgId = mapped(&Contractor::orgId, &ContractorsTable::orgId);
inline constexpr auto type = mapped(&Contractor::type, &ContractorsTable::type);
inline constexpr auto officialName = mapped(&Contractor::officialName, &ContractorsTable::officialName);
inline constexpr auto name = mapped(&Contractor::name, &ContractorsTable::name);
inline constexpr auto extra = mapped(&Contractor::extra, &ContractorsTable::extra);

inline constexpr auto tableOrder = // also that of updates and searches
    inOrder(id, inn, orgId, type, officialName, name, extra);
inline constexpr auto recordOrder = // that of documents and selects
    inOrder(id, inn, type, officialName, name, extra, orgId);

} // namespace ContractorFields

// The columns of a result that hold a contractor.
struct ContractorColumns : RowPart<ContractorFields::recordOrder>
{
    ContractorColumns(const TableCatalog &tables, ResultColumns &columns);
};

} // namespace brimlet
