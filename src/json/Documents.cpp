#include "json/Documents.h"

#include "json/FieldReaders.h"

#include <QJsonDocument>

namespace brimlet {

namespace {

const QLatin1String envelopeKey("D");
const QLatin1String itemsKey("items");

} // namespace

BrimletResult openEnvelope(QJsonObject &payload, const QString &text)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(text.toUtf8(), &error);
    if (error.error != QJsonParseError::NoError || !document.isObject())
        return BRIMLET_REFUSED;
    const QJsonValue envelope = document.object().value(envelopeKey);
    if (!envelope.isObject())
        return BRIMLET_INCOMPLETE;
    payload = envelope.toObject();
    return BRIMLET_DONE;
}

BrimletResult openItems(QJsonArray &items, const QString &text)
{
    QJsonObject payload;
    if (const BrimletResult opened = openEnvelope(payload, text))
        return opened;
    const QJsonValue value = payload.value(itemsKey);
    if (!value.isArray())
        return BRIMLET_INCOMPLETE;
    items = value.toArray();
    return items.isEmpty() ? BRIMLET_REFUSED : BRIMLET_DONE;
}

BrimletResult readBareId(quint32 &id, const QString &text, const QString &key)
{
    QJsonObject payload;
    if (const BrimletResult opened = openEnvelope(payload, text))
        return opened;
    const auto member = payload.constFind(key);
    if (member == payload.constEnd())
        return BRIMLET_INCOMPLETE;
    id = truncateToUInt32((*member).toDouble(0.0));
    return BRIMLET_DONE;
}

} // namespace brimlet
