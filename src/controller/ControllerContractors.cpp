#include "controller/Controller.h"
#include "controller/Outcome.h"
#include "json/KeyMaps.h"

namespace brimlet::controller {

BrimletResult Controller::addContractors(const std::vector<Contractor> &contractors)
{
    return writeResult(database->addContractors(contractors));
}

BrimletResult Controller::updateContractor(std::optional<Contractor> &contractor)
{
    return writeResult(database->updateContractor(contractor), contractor);
}

BrimletResult Controller::deleteContractor(quint32 id)
{
    std::optional<Contractor> contractor;
    if (const BrimletResult target = readResult(database->getContractor(contractor, id), contractor))
        return target;
    return writeResult(database->deleteContractor(id));
}

BrimletResult Controller::getContractor(std::optional<Contractor> &contractor, quint32 id)
{
    return readResult(database->getContractor(contractor, id), contractor);
}

BrimletResult Controller::getContractors(std::vector<Contractor> &contractors)
{
    return readResult(database->getContractors(contractors), contractors);
}

BrimletResult Controller::getContractorsWithParams(std::vector<Contractor> &contractors, const QString &key,
                                                   const QString &value)
{
    QString column;
    if (!contractorColumnForKey(column, key))
        return BRIMLET_REFUSED;
    return readResult(database->getContractorsByField(contractors, column, value), contractors);
}

} // namespace brimlet::controller
