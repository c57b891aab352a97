// Maps the JSON key of a search to the column. A key that is not in the map, compared exactly, returns false and leaves
// the column as it was. Some fields of a table cannot be searched for.
#pragma once

#include <QString>

namespace brimlet {

bool contractColumnForKey(QString &column, const QString &key);
bool contractorColumnForKey(QString &column, const QString &key);
bool deviceColumnForKey(QString &column, const QString &key);
bool domainColumnForKey(QString &column, const QString &key);
bool localeColumnForKey(QString &column, const QString &key);
bool organizationColumnForKey(QString &column, const QString &key);
bool sectionColumnForKey(QString &column, const QString &key);
bool siteColumnForKey(QString &column, const QString &key);
bool userColumnForKey(QString &column, const QString &key);
bool zoneColumnForKey(QString &column, const QString &key);

} // namespace brimlet
