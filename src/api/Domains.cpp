#include "api/DomainFlat.h"
#include "api/Families.h"

using namespace brimlet;

uint32_t addDomains(const uint16_t *json, uint32_t length)
{
    return addRecords(json, length, documents::addDomains, &Controller::addDomains);
}

uint32_t updateDomain(FlatDomain **domain, const uint16_t *json, uint32_t length)
{
    return updateRecord(domain, json, length, documents::updateDomain, &Controller::updateDomain);
}

uint32_t deleteDomain(const uint16_t *json, uint32_t length)
{
    return deleteRecord(json, length, documents::deleteDomain, &Controller::deleteDomain);
}

uint32_t getDomain(FlatDomain **domain, uint32_t id)
{
    return getRecord(domain, &Controller::getDomain, id);
}

uint32_t getDomains(FlatDomain **domains, uint32_t *count)
{
    return getRecords(domains, count, &Controller::getDomains);
}

uint32_t getDomainsWithParams(FlatDomain **domains, uint32_t *count, const uint16_t *key, uint32_t keyLength,
                              const uint16_t *value, uint32_t valueLength)
{
    return getRecordsByField(domains, count, &Controller::getDomainsWithParams, key, keyLength, value, valueLength);
}

uint32_t freeDomain(FlatDomain *domain)
{
    return freeRecord<Domain>(domain);
}

uint32_t freeDomainsArray(FlatDomain *domains, uint32_t count)
{
    return freeRecords<Domain>(domains, count);
}
