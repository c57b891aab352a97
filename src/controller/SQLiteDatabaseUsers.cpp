#include "controller/StorePatterns.h"

namespace brimlet::controller {

bool SQLiteDatabase::addUsers(const std::vector<User> &users)
{
    begin();
    tables.prepareUsersInsert(query, users);
    if (executeBatch())
        return commit();
    log("add users error"); // intentional, for compatibility: no second error text, unlike every other batch
    database.rollback();
    return false;
}

bool SQLiteDatabase::updateUser(std::optional<User> &user)
{
    begin();
    tables.prepareUserUpsert(query, required(user));
    return run("add user error") // intentional, for compatibility: this text, although it is an update
        && readBack(user, &SQLiteDatabase::readUserById) && commit();
}

bool SQLiteDatabase::deleteUser(quint32 id)
{
    return deleteById(tables.users, id, "delete user error");
}

bool SQLiteDatabase::getUser(std::optional<User> &user, quint32 id)
{
    begin();
    return readUserById(user, id) && commit();
}

bool SQLiteDatabase::getUsersByField(std::vector<User> &users, const QString &column, const QString &value)
{
    begin();
    tables.prepareUsersSelectByField(query, column, value);
    return readList(users, TableCatalog::readUserRow, "get users by field error") && commit();
}

bool SQLiteDatabase::getUsers(std::vector<User> &users)
{
    begin();
    tables.prepareUsersSelect(query);
    return readList(users, TableCatalog::readUserRow, "get users error") && commit();
}

bool SQLiteDatabase::readUserById(std::optional<User> &user, quint32 id)
{
    tables.prepareUserSelectById(query, id);
    return readOne(user, TableCatalog::readUserRow, "get user error");
}

} // namespace brimlet::controller
