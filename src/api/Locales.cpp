#include "api/Families.h"
#include "api/LocaleFlat.h"

using namespace brimlet;

uint32_t addLocales(const uint16_t *json, uint32_t length)
{
    return addRecords(json, length, documents::addLocales, &Controller::addLocales);
}

uint32_t getLocale(FlatLocale **locale, uint32_t id)
{
    return getRecord(locale, &Controller::getLocale, id);
}

uint32_t getLocales(FlatLocale **locales, uint32_t *count)
{
    return getRecords(locales, count, &Controller::getLocales);
}

uint32_t getLocalesWithParams(FlatLocale **locales, uint32_t *count, const uint16_t *key, uint32_t keyLength,
                              const uint16_t *value, uint32_t valueLength)
{
    return getRecordsByField(locales, count, &Controller::getLocalesWithParams, key, keyLength, value, valueLength);
}

uint32_t freeLocale(FlatLocale *locale)
{
    return freeRecord<Locale>(locale);
}

uint32_t freeLocalesArray(FlatLocale *locales, uint32_t count)
{
    return freeRecords<Locale>(locales, count);
}
