#include "controller/Controller.h"
#include "controller/Outcome.h"
#include "json/KeyMaps.h"

namespace brimlet::controller {

BrimletResult Controller::addContracts(const std::vector<Contract> &contracts)
{
    return writeResult(database->addContracts(contracts));
}

BrimletResult Controller::updateContract(std::optional<Contract> &contract)
{
    return writeResult(database->updateContract(contract), contract);
}

BrimletResult Controller::deleteContract(quint32 id)
{
    std::optional<Contract> contract;
    if (const BrimletResult target = readResult(database->getContract(contract, id), contract))
        return target;
    return writeResult(database->deleteContract(id));
}

BrimletResult Controller::getContract(std::optional<Contract> &contract, quint32 id)
{
    return readResult(database->getContract(contract, id), contract);
}

BrimletResult Controller::getContracts(std::vector<Contract> &contracts)
{
    return readResult(database->getContracts(contracts), contracts);
}

BrimletResult Controller::getContractsWithParams(std::vector<Contract> &contracts, const QString &key,
                                                 const QString &value)
{
    QString column;
    if (!contractColumnForKey(column, key))
        return BRIMLET_REFUSED;
    return readResult(database->getContractsByField(contracts, column, value), contracts);
}

} // namespace brimlet::controller
