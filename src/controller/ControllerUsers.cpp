#include "controller/Controller.h"
#include "controller/Outcome.h"
#include "json/KeyMaps.h"

namespace brimlet::controller {

BrimletResult Controller::addUsers(const std::vector<User> &users)
{
    return writeResult(database->addUsers(users));
}

BrimletResult Controller::updateUser(std::optional<User> &user)
{
    return writeResult(database->updateUser(user), user);
}

BrimletResult Controller::deleteUser(quint32 id)
{
    std::optional<User> user;
    if (const BrimletResult target = readResult(database->getUser(user, id), user))
        return target;
    return writeResult(database->deleteUser(id));
}

BrimletResult Controller::getUser(std::optional<User> &user, quint32 id)
{
    return readResult(database->getUser(user, id), user);
}

BrimletResult Controller::getUsers(std::vector<User> &users)
{
    return readResult(database->getUsers(users), users);
}

BrimletResult Controller::getUsersWithParams(std::vector<User> &users, const QString &key, const QString &value)
{
    QString column;
    if (!userColumnForKey(column, key))
        return BRIMLET_REFUSED;
    return readResult(database->getUsersByField(users, column, value), users);
}

} // namespace brimlet::controller
