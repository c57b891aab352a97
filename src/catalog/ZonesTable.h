#pragma once

#include "catalog/RowPart.h"
#include "records/Zone.h"

namespace brimlet {

class TableCatalog;

struct ZonesTable : Table
{
    ZonesTable() : Table("Zones") {}

    IdFieldDesc deviceId = idField("DeviceId", "", "device", "device");
    IdFieldDesc sectionId = idField("SectionId", "", "section", "section");
    IdFieldDesc zoneId = idField("ZoneId", "id", "zone", "zone");
    FieldDesc name = field("Name", "name");
    FieldDesc detector = field("Detector", "detector");
    FieldDesc physic = field("Physic", "physic");
    FieldDesc form = field("Form", "form");
    FieldDesc flags = field("Flags", "flags");
    FieldDesc delay = field("Delay", "delay");
    FieldDesc scheduleId = field("ScheduleId", "schedule_id");
    FieldDesc tracert = field("Tracert", "tracert");
    FieldDesc uidType = field("UidType", "uid_type");
    FieldDesc arm = field("Arm", "arm");
};

namespace ZoneFields {

inline constexpr auto id = mapped(&Zone::id, &ZonesTable::zoneId);
inline constexpr auto name = mapped(&Zone::name, &ZonesTable::name);
inline constexpr auto detector = mapped(&Zone::detector, &ZonesTable::detector);
inline constexpr auto physic = mapped(&Zone::physic, &ZonesTable::physic);
inline constexpr auto form = mapped(&Zone::form, &ZonesTable::form);
inline constexpr auto flags = mapped(&Zone::flags, &ZonesTable::flags);
inline constexpr auto delay = mapped(&Zone::delay, &ZonesTable::delay);
inline constexpr auto scheduleId = mapped(&Zone::scheduleId, &ZonesTable::scheduleId);
inline constexpr auto tracert = mapped(&Zone::tracert, &ZonesTable::tracert);
inline constexpr auto uidType = mapped(&Zone::uidType, &ZonesTable::uidType);
inline constexpr auto arm = mapped(&Zone::arm, &ZonesTable::arm).notSearchable(); // unlike a section's

// After the parents' keys; also that of documents, updates, selects and searches.
inline constexpr auto tableOrder =
    inOrder(id, name, detector, physic, form, flags, delay, scheduleId, tracert, uidType, arm);

} // namespace ZoneFields

// The columns of a result that hold a zone.
struct ZoneColumns : RowPart<ZoneFields::tableOrder>
{
    ZoneColumns(const TableCatalog &tables, ResultColumns &columns);
};

} // namespace brimlet
