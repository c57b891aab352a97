#include "api/Families.h"
#include "api/UserFlat.h"

using namespace brimlet;

uint32_t addUsers(const uint16_t *json, uint32_t length)
{
    return addRecords(json, length, documents::addUsers, &Controller::addUsers);
}

uint32_t updateUser(FlatUser **user, const uint16_t *json, uint32_t length)
{
    return updateRecord(user, json, length, documents::updateUser, &Controller::updateUser);
}

uint32_t deleteUser(const uint16_t *json, uint32_t length)
{
    return deleteRecord(json, length, documents::deleteUser, &Controller::deleteUser);
}

uint32_t getUser(FlatUser **user, uint32_t id)
{
    return getRecord(user, &Controller::getUser, id);
}

uint32_t getUsers(FlatUser **users, uint32_t *count)
{
    return getRecords(users, count, &Controller::getUsers);
}

uint32_t getUsersWithParams(FlatUser **users, uint32_t *count, const uint16_t *key, uint32_t keyLength,
                            const uint16_t *value, uint32_t valueLength)
{
    return getRecordsByField(users, count, &Controller::getUsersWithParams, key, keyLength, value, valueLength);
}

uint32_t freeUser(FlatUser *user)
{
    return freeRecord<User>(user);
}

uint32_t freeUsersArray(FlatUser *users, uint32_t count)
{
    return freeRecords<User>(users, count);
}
