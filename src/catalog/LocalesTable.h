#pragma once

#include "catalog/RowPart.h"
#include "records/Locale.h"

namespace brimlet {

class TableCatalog;

struct LocalesTable : Table
{
    LocalesTable() : Table("Locales") {}

    IdFieldDesc id = idField("Id", "id", "", "");
    FieldDesc iso = field("Iso", "iso");
    FieldDesc description = field("Description", "description");
};

namespace LocaleFields {

inline constexpr auto id = mapped(&Locale::id, &LocalesTable::id);
inline constexpr auto iso = mapped(&Locale::iso, &LocalesTable::iso);
inline constexpr auto description = mapped(&Locale::description, &LocalesTable::description);

inline constexpr auto tableOrder = inOrder(id, iso, description); // also that of documents, selects and searches

} // namespace LocaleFields

// The columns of a result that hold a locale.
struct LocaleColumns : RowPart<LocaleFields::tableOrder>
{
    LocaleColumns(const TableCatalog &tables, ResultColumns &columns);
};

} // namespace brimlet
