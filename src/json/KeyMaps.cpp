#include "json/KeyMaps.h"

#include "json/ObjectReaders.h"

namespace brimlet {

namespace {

const QString &keyOf(const FieldDesc &desc)
{
    return desc.key;
}

const QString &keyOf(const IdFieldDesc &desc)
{
    return desc.fieldKeys.first;
}

template<class Record>
bool columnForKey(QString &column, const QString &key)
{
    const auto &searches = DocumentForm<Record>::searches;
    const typename FirstField<std::decay_t<decltype(searches)>>::Table table;
    return !allFields(searches, [&](const auto &field) {
        const auto &desc = table.*field.desc;
        if (!field.isSearchable || keyOf(desc) != key)
            return true;
        column = desc.column;
        return false;
    });
}

} // namespace

bool contractColumnForKey(QString &column, const QString &key)
{
    return columnForKey<Contract>(column, key);
}

bool contractorColumnForKey(QString &column, const QString &key)
{
    return columnForKey<Contractor>(column, key);
}

bool deviceColumnForKey(QString &column, const QString &key)
{
    return columnForKey<Device>(column, key);
}

bool domainColumnForKey(QString &column, const QString &key)
{
    return columnForKey<Domain>(column, key);
}

bool localeColumnForKey(QString &column, const QString &key)
{
    return columnForKey<Locale>(column, key);
}

bool organizationColumnForKey(QString &column, const QString &key)
{
    return columnForKey<Organization>(column, key);
}

bool sectionColumnForKey(QString &column, const QString &key)
{
    return columnForKey<Section>(column, key);
}

bool siteColumnForKey(QString &column, const QString &key)
{
    return columnForKey<Site>(column, key);
}

bool userColumnForKey(QString &column, const QString &key)
{
    return columnForKey<User>(column, key);
}

bool zoneColumnForKey(QString &column, const QString &key)
{
    return columnForKey<Zone>(column, key);
}

} // namespace brimlet
