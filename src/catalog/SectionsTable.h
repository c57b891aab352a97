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
inline constexpr auto physic = mapped(&Section::physic, &SectionsTable::physic).notSearchable();
inline constexpr auto form = mapped(&Section::form, &SectionsTable::form).notSearchable();
inline constexpr auto delay = mapped(&Section::delay, &SectionsTable::delay).notSearchable();
inline constexpr auto uidType = mapped(&Section::uidType, &SectionsTable::uidType).notSearchable();

// After the device's key; also that of documents, updates, selects and searches.
inline constexpr auto tableOrder =
    inOrder(id, name, scheduleId, tracert, flags, detector, arm, physic, form, delay, uidType);

} // namespace SectionFields

// The columns of a result that hold a section. A separate query reads its zones.
struct SectionColumns : RowPart<SectionFields::tableOrder>
{
    SectionColumns(const TableCatalog &tables, ResultColumns &columns);
};

} // namespace brimlet
