#include "controller/Controller.h"
#include "controller/Outcome.h"
#include "json/KeyMaps.h"

namespace brimlet::controller {

BrimletResult Controller::addOrganizations(const std::vector<Organization> &organizations)
{
    return writeResult(database->addOrganizations(organizations));
}

BrimletResult Controller::updateOrganization(std::optional<Organization> &organization)
{
    return writeResult(database->updateOrganization(organization), organization);
}

BrimletResult Controller::deleteOrganization(quint32 id)
{
    std::optional<Organization> organization;
    if (const BrimletResult target = readResult(database->getOrganization(organization, id), organization))
        return target;
    return writeResult(database->deleteOrganization(id));
}

BrimletResult Controller::getOrganization(std::optional<Organization> &organization, quint32 id)
{
    return readResult(database->getOrganization(organization, id), organization);
}

BrimletResult Controller::getOrganizations(std::vector<Organization> &organizations)
{
    return readResult(database->getOrganizations(organizations), organizations);
}

BrimletResult Controller::getOrganizationsWithParams(std::vector<Organization> &organizations, const QString &key,
                                                     const QString &value)
{
    QString column;
    if (!organizationColumnForKey(column, key))
        return BRIMLET_REFUSED;
    return readResult(database->getOrganizationsByField(organizations, column, value), organizations);
}

} // namespace brimlet::controller
