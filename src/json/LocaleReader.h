#pragma once

#include "catalog/LocalesTable.h"
#include "json/DocumentForm.h"

namespace brimlet {

template<>
struct DocumentForm<Locale>
{
    using Keys = LocalesTable;
    static constexpr auto &members = LocaleFields::tableOrder;
    static constexpr auto &searches = LocaleFields::tableOrder;
};

inline bool fillLocale(Locale &locale, const QJsonObject &object, const LocalesTable &keys = {})
{
    return readMembers(locale, object, keys);
}

} // namespace brimlet
