#include "controller/StorePatterns.h"

namespace brimlet::controller {

bool SQLiteDatabase::addLocales(const std::vector<Locale> &locales)
{
    begin();
    tables.prepareLocalesInsert(query, locales);
    return runBatch("add locales error") && commit();
}

bool SQLiteDatabase::getLocale(std::optional<Locale> &locale, quint32 id)
{
    begin();
    tables.prepareLocaleSelectById(query, id);
    return readOne(locale, TableCatalog::readLocaleRow, "get locale error") && commit();
}

bool SQLiteDatabase::getLocalesByField(std::vector<Locale> &locales, const QString &column, const QString &value)
{
    begin();
    tables.prepareLocalesSelectByField(query, column, value);
    return readList(locales, TableCatalog::readLocaleRow, "get locales by field error") && commit();
}

bool SQLiteDatabase::getLocales(std::vector<Locale> &locales)
{
    begin();
    tables.prepareLocalesSelect(query);
    return readList(locales, TableCatalog::readLocaleRow, "get locales error") && commit();
}

} // namespace brimlet::controller
