#include "controller/Controller.h"
#include "controller/Outcome.h"
#include "json/KeyMaps.h"

namespace brimlet::controller {

BrimletResult Controller::addLocales(const std::vector<Locale> &locales)
{
    return writeResult(database->addLocales(locales));
}

BrimletResult Controller::getLocale(std::optional<Locale> &locale, quint32 id)
{
    return readResult(database->getLocale(locale, id), locale);
}

BrimletResult Controller::getLocales(std::vector<Locale> &locales)
{
    return readResult(database->getLocales(locales), locales);
}

BrimletResult Controller::getLocalesWithParams(std::vector<Locale> &locales, const QString &key, const QString &value)
{
    QString column;
    if (!localeColumnForKey(column, key))
        return BRIMLET_REFUSED;
    return readResult(database->getLocalesByField(locales, column, value), locales);
}

} // namespace brimlet::controller
