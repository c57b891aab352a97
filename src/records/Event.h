#pragma once

#include <QString>
#include <optional>

namespace brimlet {

// An entry of the journal. Times are the service's numbers, without a unit here; the library only compares `time`.
struct Event
{
    quint32 id = 0;
    std::optional<quint32> time;
    std::optional<qint32> deviceId;
    std::optional<quint32> sectionId;
    std::optional<quint32> zoneId;
    std::optional<quint8> active;
    std::optional<quint8> eventClass;
    std::optional<quint8> detector;
    std::optional<quint8> reason;
    std::optional<quint32> localTime;
    std::optional<qint32> channel;
    std::optional<QString> data;
    std::optional<quint32> reviewId;
    std::optional<quint8> reviewState;
    std::optional<quint32> userId;
    std::optional<bool> isClosed;
    std::optional<bool> affect;
    std::optional<QString> jData;

    // Output only, from the device, the section, the zone and the operator's domain.
    std::optional<quint32> account;
    std::optional<QString> sectionName;
    std::optional<QString> zoneName;
    std::optional<QString> domainName;
};

} // namespace brimlet
