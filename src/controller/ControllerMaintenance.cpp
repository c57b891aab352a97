#include "controller/Controller.h"
#include "controller/Outcome.h"

namespace brimlet::controller {

BrimletResult Controller::setServerIp(const QString &ip)
{
    return written(database->setServerIp(ip));
}

BrimletResult Controller::getServerIp(QString &ip)
{
    return read(database->getServerIp(ip));
}

BrimletResult Controller::clearAll()
{
    return written(database->clearAll());
}

BrimletResult Controller::clearAllExceptEvents()
{
    return written(database->clearAllExceptEvents());
}

} // namespace brimlet::controller
