#include "controller/StorePatterns.h"

namespace brimlet::controller {

bool SQLiteDatabase::addContracts(const std::vector<Contract> &contracts)
{
    begin();
    tables.prepareContractsInsert(query, contracts);
    return runBatch("add contracts error") && commit();
}

bool SQLiteDatabase::updateContract(std::optional<Contract> &contract)
{
    begin();
    tables.prepareContractUpsert(query, required(contract));
    return run("add or update contract error") && readBack(contract, &SQLiteDatabase::readContractById) && commit();
}

bool SQLiteDatabase::deleteContract(quint32 id)
{
    return deleteById(tables.contracts, id, "delete contract error");
}

bool SQLiteDatabase::getContract(std::optional<Contract> &contract, quint32 id)
{
    begin();
    return readContractById(contract, id) && commit();
}

bool SQLiteDatabase::getContractsByField(std::vector<Contract> &contracts, const QString &column, const QString &value)
{
    begin();
    tables.prepareContractsSelectByField(query, column, value);
    return readList(contracts, TableCatalog::readContractRow, "get contracts by field error") && commit();
}

bool SQLiteDatabase::getContracts(std::vector<Contract> &contracts)
{
    begin();
    tables.prepareContractsSelect(query);
    return readList(contracts, TableCatalog::readContractRow, "get contracts error") && commit();
}

bool SQLiteDatabase::readContractById(std::optional<Contract> &contract, quint32 id)
{
    tables.prepareContractSelectById(query, id);
    return readOne(contract, TableCatalog::readContractRow, "get contract by id error");
}

} // namespace brimlet::controller
