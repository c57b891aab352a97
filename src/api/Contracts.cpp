#include "api/ContractFlat.h"
#include "api/Families.h"

using namespace brimlet;

uint32_t addContracts(const uint16_t *json, uint32_t length)
{
    return addRecords(json, length, documents::addContracts, &Controller::addContracts);
}

uint32_t updateContract(FlatContract **contract, const uint16_t *json, uint32_t length)
{
    return updateRecord(contract, json, length, documents::updateContract, &Controller::updateContract);
}

uint32_t deleteContract(const uint16_t *json, uint32_t length)
{
    return deleteRecord(json, length, documents::deleteContract, &Controller::deleteContract);
}

uint32_t getContract(FlatContract **contract, uint32_t id)
{
    return getRecord(contract, &Controller::getContract, id);
}

uint32_t getContracts(FlatContract **contracts, uint32_t *count)
{
    return getRecords(contracts, count, &Controller::getContracts);
}

uint32_t getContractsWithParams(FlatContract **contracts, uint32_t *count, const uint16_t *key, uint32_t keyLength,
                                const uint16_t *value, uint32_t valueLength)
{
    return getRecordsByField(contracts, count, &Controller::getContractsWithParams, key, keyLength, value, valueLength);
}

uint32_t freeContract(FlatContract *contract)
{
    return freeRecord<Contract>(contract);
}

uint32_t freeContractsArray(FlatContract *contracts, uint32_t count)
{
    return freeRecords<Contract>(contracts, count);
}
