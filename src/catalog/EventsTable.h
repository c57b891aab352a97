#pragma once

#include "catalog/RowPart.h"
#include "records/Event.h"

namespace brimlet {

class TableCatalog;

struct EventsTable : Table
{
    EventsTable() : Table("Events") {}

    IdFieldDesc id = idField("Id", "id", "", "id");
    FieldDesc time = field("Time", "time");
    IdFieldDesc deviceId = idField("DeviceId", "device", "", "device_id");
    IdFieldDesc sectionId = idField("SectionId", "section", "", "device_section");
    FieldDesc zoneId = field("ZoneId", "zone");
    FieldDesc active = field("Active", "active");
    FieldDesc eventClass = field("Class", "class");
    FieldDesc detector = field("Detector", "detector");
    FieldDesc reason = field("Reason", "reason");
    FieldDesc localTime = field("LocalTime", "localtime");
    FieldDesc channel = field("Channel", "channel");
    FieldDesc data = field("Data", "data");
    FieldDesc reviewId = field("ReviewId", "review_id");
    FieldDesc reviewState = field("ReviewState", "review_state");
    FieldDesc userId = field("UserId", "operator_id");
    FieldDesc isClosed = field("IsClosed", "is_closed");
    FieldDesc affect = field("Affect", "affect");
    FieldDesc jData = field("JData", "jdata");
    QString timeIndex = time.column + QLatin1String("Index");
};

namespace EventFields {

inline constexpr auto id = mapped(&Event::id, &EventsTable::id);
inline constexpr auto time = mapped(&Event::time, &EventsTable::time);
inline constexpr auto deviceId = mapped(&Event::deviceId, &EventsTable::deviceId);
inline constexpr auto sectionId = mapped(&Event::sectionId, &EventsTable::sectionId);
inline constexpr auto zoneId = mapped(&Event::zoneId, &EventsTable::zoneId);
inline constexpr auto active = mapped(&Event::active, &EventsTable::active).declaredAs("BOOLEAN");
inline constexpr auto eventClass = mapped(&Event::eventClass, &EventsTable::eventClass);
inline constexpr auto detector = mapped(&Event::detector, &EventsTable::detector);
inline constexpr auto reason = mapped(&Event::reason, &EventsTable::reason);
inline constexpr auto localTime = mapped(&Event::localTime, &EventsTable::localTime);
inline constexpr auto channel = mapped(&Event::channel, &EventsTable::channel);
inline constexpr auto data = mapped(&Event::data, &EventsTable::data);
inline constexpr auto reviewId = mapped(&Event::reviewId, &EventsTable::reviewId);
inline constexpr auto reviewState = mapped(&Event::reviewState, &EventsTable::reviewState);
inline constexpr auto userId = mapped(&Event::userId, &EventsTable::userId);
inline constexpr auto isClosed = mapped(&Event::isClosed, &EventsTable::isClosed);
inline constexpr auto affect = mapped(&Event::affect, &EventsTable::affect);
inline constexpr auto jData = mapped(&Event::jData, &EventsTable::jData);

inline constexpr auto tableOrder = // also that of documents and selects
    inOrder(id, time, deviceId, sectionId, zoneId, active, eventClass, detector, reason, localTime, channel, data,
            reviewId, reviewState, userId, isClosed, affect, jData);

} // namespace EventFields

// The columns of a result that hold an event with the account, the names of its equipment and its operator's domain.
struct EventColumns : RowPart<EventFields::tableOrder>
{
    EventColumns(const TableCatalog &tables, ResultColumns &columns);

    int account;
    int sectionName;
    int zoneName;
    int domainName;
};

} // namespace brimlet
