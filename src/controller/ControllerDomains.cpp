#include "controller/Controller.h"
#include "controller/Outcome.h"
#include "json/KeyMaps.h"

namespace brimlet::controller {

BrimletResult Controller::addDomains(const std::vector<Domain> &domains)
{
    return writeResult(database->addDomains(domains));
}

BrimletResult Controller::updateDomain(std::optional<Domain> &domain)
{
    return writeResult(database->updateDomain(domain), domain);
}

BrimletResult Controller::deleteDomain(quint32 id)
{
    std::optional<Domain> domain;
    if (const BrimletResult target = readResult(database->getDomain(domain, id), domain))
        return target;
    return writeResult(database->deleteDomain(id));
}

BrimletResult Controller::getDomain(std::optional<Domain> &domain, quint32 id)
{
    return readResult(database->getDomain(domain, id), domain);
}

BrimletResult Controller::getDomains(std::vector<Domain> &domains)
{
    return readResult(database->getDomains(domains), domains);
}

BrimletResult Controller::getDomainsWithParams(std::vector<Domain> &domains, const QString &key, const QString &value)
{
    QString column;
    if (!domainColumnForKey(column, key))
        return BRIMLET_REFUSED;
    return readResult(database->getDomainsByField(domains, column, value), domains);
}

} // namespace brimlet::controller
