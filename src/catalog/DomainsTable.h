#pragma once

#include "catalog/LocalesTable.h"
#include "records/Domain.h"

namespace brimlet {

struct DomainsTable : Table
{
    DomainsTable() : Table("Domains") {}

    IdFieldDesc id = idField("Id", "id", "domain_id", "id"); // added under "id", deleted under "domain_id"
    FieldDesc name = field("Name", "name");
    FieldDesc orgId = field("OrgId", "org_id");
    FieldDesc localeId = field("LocaleId", "locale_id");
};

namespace DomainFields {

inline constexpr auto id = mapped(&Domain::id, &DomainsTable::id);
inline constexpr auto name = mapped(&Domain::name, &DomainsTable::name);
inline constexpr auto orgId = mapped(&Domain::orgId, &DomainsTable::orgId);
inline constexpr auto locale = mapped(&Domain::locale, &DomainsTable::localeId);

inline constexpr auto tableOrder = inOrder(id, name, orgId, locale); // also that of documents, updates and searches
inline constexpr auto selectOrder = withoutEmbedded(tableOrder);

} // namespace DomainFields

// The columns of a result that hold a domain with its locale.
struct DomainColumns : RowPart<DomainFields::selectOrder>
{
    DomainColumns(const TableCatalog &tables, ResultColumns &columns);

    LocaleColumns locale;
};

} // namespace brimlet
