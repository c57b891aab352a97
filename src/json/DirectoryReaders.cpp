#include "json/FieldReaders.h"
#include "json/ObjectReaders.h"

namespace brimlet {

bool fillLocale(Locale &locale, const QJsonObject &object, const LocalesTable &keys)
{
    return readFields(locale, object, keys, LocaleFields::tableOrder);
}

bool fillDomain(Domain &domain, const QJsonObject &object, const DomainsTable &keys)
{
    return readFields(domain, object, keys, DomainFields::tableOrder);
}

bool fillUser(User &user, const QJsonObject &object, const UsersTable &keys)
{
    return readFields(user, object, keys, UserFields::upsertOrder);
}

bool fillPerson(Person &person, const QJsonObject &object, const PersonsTable &keys)
{
    return readFields(person, object, keys, PersonFields::tableOrder);
}

bool fillOrganization(Organization &organization, const QJsonObject &object, const OrganizationKeys &keys)
{
    const bool isFilled = readFields(organization, object, keys, OrganizationFields::documentOrder);

    // The contact is read even where the rest has failed. A value of another type counts as an empty object.
    const QJsonObject contact = object.value(keys.contactId.fieldKeys.third).toObject();
    if (contact.isEmpty())
        return isFilled;
    return fillPerson(organization.contact.emplace(), contact, keys.person) && isFilled;
}

bool fillContractor(Contractor &contractor, const QJsonObject &object, const ContractorsTable &keys)
{
    return readFields(contractor, object, keys, ContractorFields::selectOrder);
}

bool fillContract(Contract &contract, const QJsonObject &object, const ContractsTable &keys)
{
    return readFields(contract, object, keys, ContractFields::documentOrder);
}

} // namespace brimlet
