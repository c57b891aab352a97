// A document, an object with the payload under "D", into records. All answer BRIMLET_DONE, BRIMLET_INCOMPLETE or
// BRIMLET_REFUSED, touch no store and log nothing.
#pragma once

#include "api/ResultCodes.h"
#include "json/ObjectReaders.h"

namespace brimlet {

// {"D":{...}}: the object under "D".
BrimletResult openEnvelope(QJsonObject &payload, const QString &text);

// {"D":{"items":[...]}}: the array, which is not empty.
BrimletResult openItems(QJsonArray &items, const QString &text);

// {"D":{"op_id":7}}: a value of any type under the key; what is no number reads as 0.
BrimletResult readBareId(quint32 &id, const QString &text, const QString &key);

// {"D":{"items":[{...},{...}]}}. On failure the records before the refused one stand in the list.
template<class Record, class Keys>
BrimletResult readBatch(std::vector<Record> &records, const QString &text, ObjectReader<Record, Keys> fill)
{
    QJsonArray items;
    if (const BrimletResult opened = openItems(items, text))
        return opened;
    return readObjects(records, items, fill, Keys()) ? BRIMLET_DONE : BRIMLET_INCOMPLETE;
}

// {"D":{...}}, the record standing in "D" itself.
template<class Record, class Keys>
BrimletResult readOneRecord(std::optional<Record> &record, const QString &text, ObjectReader<Record, Keys> fill)
{
    QJsonObject payload;
    if (const BrimletResult opened = openEnvelope(payload, text))
        return opened;
    Record read;
    if (!fill(read, payload, Keys()))
        return BRIMLET_INCOMPLETE;
    record = std::move(read);
    return BRIMLET_DONE;
}

} // namespace brimlet
