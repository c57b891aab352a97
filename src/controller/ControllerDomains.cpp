#include "controller/Controller.h"
#include "controller/Outcome.h"
#include "json/KeyMaps.h"

namespace brimlet::controller {

BrimletResult Controller::addDomains(const std::vector<Domain> &domains)
{
    return written(database->addDomains(domains));
}

BrimletResult Controller::updateDomain(std::optional<Domain> &domain)
{
    return writtenAndFound(database->updateDomain(domain), domain);
}

BrimletResult Controller::deleteDomain(quint32 id)
{
    std::optional<Domain> domain;
    if (const BrimletResult target = found(database->getDomain(domain, id), domain))
        return target;
    return written(database->deleteDomain(id));
}

BrimletResult Controller::getDomain(std::optional<Domain> &domain, quint32 id)
{
    return found(database->getDomain(domain, id), domain);
}

BrimletResult Controller::getDomains(std::vector<Domain> &domains)
{
    return found(database->getDomains(domains), domains);
}

BrimletResult Controller::getDomainsWithParams(std::vector<Domain> &domains, const QString &key, const QString &value)
{
    QString column;
    if (!domainColumnForKey(column, key))
        return BRIMLET_REFUSED;
    return found(database->getDomainsByField(domains, column, value), domains);
}

} // namespace brimlet::controller
