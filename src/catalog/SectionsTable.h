#pragma once

#include "catalog/RowPart.h"
#include "records/Section.h"

namespace brimlet {

class TableCatalog;

struct SectionsTable : Table
{
    SectionsTable() : Table("Sections") {}

    IdFieldDesc deviceId = idField("DeviceId", "", "device", "device");
    IdFieldDesc sectionId = idField("SectionId", "id", "section", "section");
    FieldDesc name = field("Name", "name");
    FieldDesc scheduleId = field("ScheduleId", "schedule_id");
    FieldDesc tracert = field("Tracert", "tracert");
    FieldDesc flags = field("Flags", "flags");
    FieldDesc detector = field("Detector", "detector");
    FieldDesc arm = field("Arm", "arm");
    FieldDesc physic = field("Physic", "physic");
    FieldDesc form = field("Form", "form");
    FieldDesc delay = field("Delay", "delay");
    FieldDesc uidType = field("UidType", "uid_type");
    FieldDesc zones = keyOnly("zones");
};

namespace SectionFields {

inline constexpr auto id = mapped(&Section::id, &SectionsTable::sectionId);
inline constexpr auto name = mapped(&Section::name, &SectionsTable::name);
inline constexpr auto scheduleId = mapped(&Section::scheduleId, &SectionsTable::scheduleId);
inline constexpr auto tracert = mapped(&Section::tracert, &SectionsTable::tracert);
inline constexpr auto flags = mapped(&Section::flags, &SectionsTable::flags);
inline constexpr auto detector = mapped(&Section::detector, &SectionsTable::detector);
inline constexpr auto arm = mapped(&Section::arm, &SectionsTable::arm);
inline constexpr auto physic = mapped(&Section::physic, &SectionsTable::physic);
inline constexpr auto form = mapped(&Section::form, &SectionsTable::form);
inline constexpr auto delay = mapped(&Section::delay, &SectionsTable::delay);
inline constexpr auto uidType = mapped(&Section::uidType, &SectionsTable::uidType);

// All three behind the device's key; also that of upserts and selects.
inline constexpr auto tableOrder =
    inOrder(id, name, scheduleId, tracert, flags, detector, arm, physic, form, delay, uidType);
inline constexpr auto documentOrder =
    inOrder(id, name, detector, physic, scheduleId, tracert, flags, delay, form, uidType, arm);
inline constexpr auto searchOrder = // and no other
    inOrder(id, name, scheduleId, tracert, flags, detector, arm);

} // namespace SectionFields

// The columns of a result that hold a section. A separate query reads its zones.
struct SectionColumns : RowPart<SectionFields::tableOrder>
{
    SectionColumns(const TableCatalog &tables, ResultColumns &columns);
};

} // namespace brimlet
