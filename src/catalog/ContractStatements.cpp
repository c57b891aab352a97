#include "catalog/Statements.h"
#include "catalog/TableCatalog.h"

namespace brimlet {

void TableCatalog::prepareContractsTable(QSqlQuery &query) const
{
    prepare(query, createTableText(contracts, ContractFields::tableOrder));
}

void TableCatalog::prepareContractsInsert(QSqlQuery &query, const std::vector<Contract> &records) const
{
    prepare(query, insertText(contracts.table, columnsOf(contracts, ContractFields::tableOrder)));
    bindBatch(query, records, ContractFields::tableOrder);
}

void TableCatalog::prepareContractUpsert(QSqlQuery &query, const Contract &contract) const
{
    prepareUpsert(query, contracts.table, presentColumns(contracts, contract, ContractFields::tableOrder));
}

// SELECT ContractsId,ContractsNumber,ContractsName,ContractsStatus,ContractsDate,ContractsDescription,ContractsExtra,
//     ContractorsId,ContractorsInn,ContractorsType,ContractorsOfficialName,ContractorsName,ContractorsExtra,
//     ContractorsOrgId,UsersId,UsersName,UsersLogin,UsersContacts,UsersIsActive,UsersDomainId,UsersRoles,UsersPhone,
//     UsersOrgId,DomainsId,DomainsName,DomainsOrgId,LocalesId,LocalesIso,LocalesDescription
// FROM Contracts
// LEFT JOIN Contractors ON ContractsContractorId = ContractorsId
// LEFT JOIN Users ON ContractsUserId = UsersId
// LEFT JOIN Domains ON UsersDomainId = DomainsId
// LEFT JOIN Locales ON DomainsLocaleId = LocalesId
QString TableCatalog::contractsSelect() const
{
    return selectText(contractColumns(), contracts.table) + contractJoins();
}

void TableCatalog::prepareContractsSelect(QSqlQuery &query) const
{
    prepare(query, contractsSelect());
}

void TableCatalog::prepareContractSelectById(QSqlQuery &query, quint32 id) const
{
    prepare(query, contractsSelect() + where(contracts.id.column), {id});
}

void TableCatalog::prepareContractsSelectByField(QSqlQuery &query, const QString &column, const QString &value) const
{
    prepare(query, contractsSelect() + where(column), {value});
}

QStringList TableCatalog::contractColumns() const
{
    return columnsOf(contracts, ContractFields::selectOrder) + columnsOf(contractors, ContractorFields::recordOrder)
         + userColumns();
}

QString TableCatalog::contractJoins() const
{
    return leftJoin(contractors.table, contracts.contractorId.column, contractors.id.column)
         + leftJoin(users.table, contracts.userId.column, users.id.column) + domainJoin(users.domainId.column);
}

ContractColumns::ContractColumns(const TableCatalog &tables, ResultColumns &columns)
    : RowPart(tables.contracts, columns)
    , contractor(tables, columns)
    , user(tables, columns)
{
}

void TableCatalog::readContractRow(Contract &contract, const QSqlQuery &query, const ContractColumns &columns)
{
    columns.read(contract, query);
    readJoined(contract.contractor, query, columns.contractor, readContractorRow);
    readJoined(contract.user, query, columns.user, readUserRow);
}

} // namespace brimlet
