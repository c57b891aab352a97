#include "catalog/RowPart.h"

namespace brimlet {

int ResultColumns::find(const QString &name)
{
    const int count = result.count();
    for (int tried = 0; tried < count; ++tried) {
        const int place = (next + tried) % count;
        if (result.fieldName(place) == name) {
            next = place + 1;
            return place;
        }
    }
    return -1;
}

} // namespace brimlet
