#include "json/Documents.h"

#include <QJsonDocument>

namespace brimlet {

namespace {

const QLatin1String envelopeKey("D");
const QLatin1String itemsKey("items");

} // namespace

BrimletResult openEnvelope(const QString &text, QJsonObject &payload)
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

BrimletResult openItems(const QString &text, QJsonArray &items)
{
    QJsonObject payload;
    if (const BrimletResult opened = openEnvelope(text, payload))
        return opened;
    const QJsonValue value = payload.value(itemsKey);
    if (!value.isArray())
        return BRIMLET_INCOMPLETE;
    items = value.toArray();
    return items.isEmpty() ? BRIMLET_REFUSED : BRIMLET_DONE;
}

BrimletResult readBareId(const QString &text, const QString &key, quint32 &id)
{
    QJsonObject payload;
    if (const BrimletResult opened = openEnvelope(text, payload))
        return opened;
    return readBareId(payload, key, id);
}

BrimletResult readBareId(const QJsonObject &payload, const QString &key, quint32 &id)
{
    const auto member = payload.constFind(key);
    if (member == payload.constEnd())
        return BRIMLET_INCOMPLETE;
    id = truncateToUInt32((*member).toDouble(0.0));
    return BRIMLET_DONE;
}

} // namespace brimlet
