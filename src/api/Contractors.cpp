#include "api/ContractorFlat.h"
#include "api/Families.h"

using namespace brimlet;

uint32_t addContractors(const uint16_t *json, uint32_t length)
{
    return addRecords(json, length, documents::addContractors, &Controller::addContractors);
}

uint32_t updateContractor(FlatContractor **contractor, const uint16_t *json, uint32_t length)
{
    return updateRecord(contractor, json, length, documents::updateContractor, &Controller::updateContractor);
}

uint32_t deleteContractor(const uint16_t *json, uint32_t length)
{
    return deleteRecord(json, length, documents::deleteContractor, &Controller::deleteContractor);
}

uint32_t getContractor(FlatContractor **contractor, uint32_t id)
{
    return getRecord(contractor, &Controller::getContractor, id);
}

uint32_t getContractors(FlatContractor **contractors, uint32_t *count)
{
    return getRecords(contractors, count, &Controller::getContractors);
}

uint32_t getContractorsWithParams(FlatContractor **contractors, uint32_t *count, const uint16_t *key,
                                  uint32_t keyLength, const uint16_t *value, uint32_t valueLength)
{
    return getRecordsByField(contractors, count, &Controller::getContractorsWithParams, key, keyLength, value,
                             valueLength);
}

uint32_t freeContractor(FlatContractor *contractor)
{
    return freeRecord<Contractor>(contractor);
}

uint32_t freeContractorsArray(FlatContractor *contractors, uint32_t count)
{
    return freeRecords<Contractor>(contractors, count);
}
