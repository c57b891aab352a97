#include "catalog/RowPart.h"

namespace brimlet {

ResultColumns::ResultColumns(const QSqlQuery &query)
{
    const QSqlRecord record = query.record();
    for (int i = 0; i < record.count(); ++i)
        names << record.fieldName(i);
}

int ResultColumns::find(const QString &name)
{
    for (int tried = 0; tried < names.size(); ++tried) {
        const int place = (next + tried) % names.size();
        if (names[place] == name) {
            next = place + 1;
            return place;
        }
    }
    return -1;
}

} // namespace brimlet
