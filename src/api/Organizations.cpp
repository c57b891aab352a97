#include "api/Families.h"
#include "api/OrganizationFlat.h"

using namespace brimlet;

uint32_t addOrganizations(const uint16_t *json, uint32_t length)
{
    return addRecords(json, length, documents::addOrganizations, &Controller::addOrganizations);
}

uint32_t updateOrganization(FlatOrganization **organization, const uint16_t *json, uint32_t length)
{
    return updateRecord(organization, json, length, documents::updateOrganization, &Controller::updateOrganization);
}

uint32_t deleteOrganization(const uint16_t *json, uint32_t length)
{
    return deleteRecord(json, length, documents::deleteOrganization, &Controller::deleteOrganization);
}

uint32_t getOrganization(FlatOrganization **organization, uint32_t id)
{
    return getRecord(organization, &Controller::getOrganization, id);
}

uint32_t getOrganizations(FlatOrganization **organizations, uint32_t *count)
{
    return getRecords(organizations, count, &Controller::getOrganizations);
}

uint32_t getOrganizationsWithParams(FlatOrganization **organizations, uint32_t *count, const uint16_t *key,
                                    uint32_t keyLength, const uint16_t *value, uint32_t valueLength)
{
    return getRecordsByField(organizations, count, &Controller::getOrganizationsWithParams, key, keyLength, value,
                             valueLength);
}

uint32_t freeOrganization(FlatOrganization *organization)
{
    return freeRecord<Organization>(organization);
}

uint32_t freeOrganizationsArray(FlatOrganization *organizations, uint32_t count)
{
    return freeRecords<Organization>(organizations, count);
}
