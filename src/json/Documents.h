// A document, an object with the payload under "D", into records. All answer BRIMLET_DONE, BRIMLET_INCOMPLETE or
// BRIMLET_REFUSED, touch no store and log nothing.
#pragma once

#include "brimlet/ResultCodes.h"
#include "json/ObjectReaders.h"

namespace brimlet {

// {"D":{...}}: the object under "D".
BrimletResult openEnvelope(const QString &text, QJsonObject &payload);

// {"D":{"items":[...]}}: the array, which is not empty.
BrimletResult openItems(const QString &text, QJsonArray &items);

// {"D":{"op_id":7}}: a value of any type under the key; what is no number reads as 0.
BrimletResult readBareId(const QString &text, const QString &key, quint32 &id);

// {"D":{"items":[{...},{...}]}}. On failure the records before the refused one stand in the list.
template<class Record, class Keys>
BrimletResult readBatch(const QString &text, std::vector<Record> &records, ObjectReader<Record, Keys> fill)
{
    QJsonArray items;
    if (const BrimletResult opened = openItems(text, items))
        return opened;
    return readObjects(records, items, fill, Keys()) ? BRIMLET_DONE : BRIMLET_INCOMPLETE;
}

// {"D":{...}}, the record standing in "D" itself.
template<class Record, class Keys>
BrimletResult readOneRecord(const QString &text, std::optional<Record> &record, ObjectReader<Record, Keys> fill)
{
    QJsonObject payload;
    if (const BrimletResult opened = openEnvelope(text, payload))
        return opened;
    Record read;
    if (!fill(read, payload, Keys()))
        return BRIMLET_INCOMPLETE;
    record = std::move(read);
    return BRIMLET_DONE;
}

} // namespace brimlet
