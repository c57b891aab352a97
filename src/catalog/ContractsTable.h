#pragma once

#include "catalog/ContractorsTable.h"
#include "catalog/UsersTable.h"
#include "records/Contract.h"

namespace brimlet {

struct ContractsTable : Table
{
    ContractsTable() : Table("Contracts") {}

    IdFieldDesc id = idField("Id", "id", "id", "id");
    FieldDesc number = field("Number", "number");
    FieldDesc contractorId = field("ContractorId", "contractor_id");
    FieldDesc name = field("Name", "c_name");
    FieldDesc status = field("Status", "status");
    FieldDesc date = field("Date", "date");
    FieldDesc description = field("Description", "description");
    FieldDesc extra = field("Extra", "extra");
    FieldDesc userId = field("UserId", "operator_id");
};

namespace ContractFields {

inline constexpr auto id = mapped(&Contract::id, &ContractsTable::id);
inline constexpr auto number = mapped(&Contract::number, &ContractsTable::number);
inline constexpr auto contractor = mapped(&Contract::contractor, &ContractsTable::contractorId);
inline constexpr auto name = mapped(&Contract::name, &ContractsTable::name);
inline constexpr auto status = mapped(&Contract::status, &ContractsTable::status).absentAs(QVariant::String);
inline constexpr auto date = mapped(&Contract::date, &ContractsTable::date).absentAs(QVariant::String);
inline constexpr auto description = mapped(&Contract::description, &ContractsTable::description);
inline constexpr auto extra = mapped(&Contract::extra, &ContractsTable::extra);
inline constexpr auto user = mapped(&Contract::user, &ContractsTable::userId).notSearchable();

inline constexpr auto tableOrder = // also that of documents, updates and searches
    inOrder(id, number, contractor, name, status, date, description, extra, user);
inline constexpr auto selectOrder = withoutEmbedded(tableOrder);

} // namespace ContractFields

// The columns of a result that hold a contract with its contractor and its user.
struct ContractColumns : RowPart<ContractFields::selectOrder>
{
    ContractColumns(const TableCatalog &tables, ResultColumns &columns);

    ContractorColumns contractor;
    UserColumns user;
};

} // namespace brimlet
