#include "json/KeyMaps.h"

#include "catalog/ContractsTable.h"
#include "catalog/DevicesTable.h"
#include "catalog/OrganizationsTable.h"
#include "catalog/SectionsTable.h"
#include "catalog/SitesTable.h"
#include "catalog/ZonesTable.h"

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

template<class List>
bool columnForKey(QString &column, const QString &key, const List &fields)
{
    const typename FirstField<List>::Table table;
    return !allFields(fields, [&](const auto &field) {
        const auto &desc = table.*field.desc;
        if (keyOf(desc) != key)
            return true;
        column = desc.column;
        return false;
    });
}

} // namespace

bool contractColumnForKey(QString &column, const QString &key)
{
    return columnForKey(column, key, ContractFields::searchOrder);
}

bool contractorColumnForKey(QString &column, const QString &key)
{
    return columnForKey(column, key, ContractorFields::tableOrder);
}

bool deviceColumnForKey(QString &column, const QString &key)
{
    return columnForKey(column, key, DeviceFields::searchOrder);
}

bool domainColumnForKey(QString &column, const QString &key)
{
    return columnForKey(column, key, DomainFields::tableOrder);
}

bool localeColumnForKey(QString &column, const QString &key)
{
    return columnForKey(column, key, LocaleFields::tableOrder);
}

bool organizationColumnForKey(QString &column, const QString &key)
{
    return columnForKey(column, key, OrganizationFields::searchOrder);
}

bool sectionColumnForKey(QString &column, const QString &key)
{
    return columnForKey(column, key, SectionFields::searchOrder);
}

bool siteColumnForKey(QString &column, const QString &key)
{
    return columnForKey(column, key, SiteFields::searchOrder);
}

bool userColumnForKey(QString &column, const QString &key)
{
    return columnForKey(column, key, UserFields::tableOrder);
}

bool zoneColumnForKey(QString &column, const QString &key)
{
    return columnForKey(column, key, ZoneFields::searchOrder);
}

} // namespace brimlet
