#include "controller/Controller.h"
#include "controller/Outcome.h"
#include "json/KeyMaps.h"

namespace brimlet::controller {

BrimletResult Controller::addUsers(const std::vector<User> &users)
{
    return written(database->addUsers(users));
}

BrimletResult Controller::updateUser(std::optional<User> &user)
{
    return writtenAndFound(database->updateUser(user), user);
}

BrimletResult Controller::deleteUser(quint32 id)
{
    std::optional<User> user;
    if (const BrimletResult target = found(database->getUser(user, id), user))
        return target;
    return written(database->deleteUser(id));
}

BrimletResult Controller::getUser(std::optional<User> &user, quint32 id)
{
    return found(database->getUser(user, id), user);
}

BrimletResult Controller::getUsers(std::vector<User> &users)
{
    return found(database->getUsers(users), users);
}

BrimletResult Controller::getUsersWithParams(std::vector<User> &users, const QString &key, const QString &value)
{
    QString column;
    if (!userColumnForKey(column, key))
        return BRIMLET_REFUSED;
    return found(database->getUsersByField(users, column, value), users);
}

} // namespace brimlet::controller
