#include "controller/Controller.h"
#include "controller/Outcome.h"

namespace brimlet::controller {

BrimletResult Controller::setServerIp(const QString &ip)
{
    return writeResult(database->setServerIp(ip));
}

BrimletResult Controller::getServerIp(QString &ip)
{
    return readResult(database->getServerIp(ip));
}

BrimletResult Controller::clearAll()
{
    return writeResult(database->clearAll());
}

BrimletResult Controller::clearAllExceptEvents()
{
    return writeResult(database->clearAllExceptEvents());
}

} // namespace brimlet::controller
