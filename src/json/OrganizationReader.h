#pragma once

#include "catalog/OrganizationsTable.h"
#include "json/PersonReader.h"

namespace brimlet {

struct OrganizationKeys : OrganizationsTable
{
    PersonsTable person;
};

template<>
struct DocumentForm<Organization>
{
    using Keys = OrganizationKeys;
    static constexpr auto contact =
        objectUnder(&OrganizationsTable::contactId, &Organization::contact, fillPerson, &OrganizationKeys::person);
    static constexpr auto members = std::tuple_cat(OrganizationFields::documentOrder, inOrder(contact));
    static constexpr auto &searches = OrganizationFields::tableOrder;
};

inline bool fillOrganization(Organization &organization, const QJsonObject &object, const OrganizationKeys &keys = {})
{
    // Reads the contact even if a field has failed.
    const bool areFieldsRead = readMembers(organization, object, keys, OrganizationFields::documentOrder);
    return DocumentForm<Organization>::contact.read(organization, object, keys) && areFieldsRead;
}

} // namespace brimlet
