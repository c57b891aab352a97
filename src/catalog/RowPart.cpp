#include "catalog/RowPart.h"

namespace brimlet {

int ResultColumns::find(const QString &name)
{
    const int count = result.count();
    for (int tried = 0; tried < count; ++tried) {
        const int index = (next + tried) % count;
        if (result.fieldName(index) == name) {
            next = index + 1;
            return index;
        }
    }
    return -1;
}

} // namespace brimlet
