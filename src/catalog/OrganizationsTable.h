#pragma once

#include "catalog/LocalesTable.h"
#include "catalog/PersonsTable.h"
#include "records/Organization.h"

namespace brimlet {

struct OrganizationsTable : Table
{
    OrganizationsTable() : Table("Organizations") {}

    IdFieldDesc id = idField("Id", "org_id", "org_id", "org_id"); // the only entity whose key is not "id"
    FieldDesc inn = field("Inn", "inn");
    FieldDesc officialName = field("OfficialName", "off_name");
    FieldDesc shortName = field("ShortName", "short_name");
    FieldDesc kpp = field("Kpp", "kpp");
    FieldDesc ogrn = field("Ogrn", "ogrn");
    FieldDesc localeId = field("LocaleId", "locale_id");
    FieldDesc address = field("Address", "address_text");
    IdFieldDesc contactId = idField("ContactId", "", "", "contact"); // the id in the object "contact"
};

namespace OrganizationFields {

inline constexpr auto id = mapped(&Organization::id, &OrganizationsTable::id);
inline constexpr auto inn = mapped(&Organization::inn, &OrganizationsTable::inn);
inline constexpr auto officialName = mapped(&Organization::officialName, &OrganizationsTable::officialName);
inline constexpr auto shortName = mapped(&Organization::shortName, &OrganizationsTable::shortName);
inline constexpr auto kpp = mapped(&Organization::kpp, &OrganizationsTable::kpp);
inline constexpr auto ogrn = mapped(&Organization::ogrn, &OrganizationsTable::ogrn);
inline constexpr auto contact = mapped(&Organization::contact, &OrganizationsTable::contactId).notSearchable();
inline constexpr auto locale = mapped(&Organization::locale, &OrganizationsTable::localeId);
inline constexpr auto address = mapped(&Organization::address, &OrganizationsTable::address);

inline constexpr auto tableOrder = // also that of searches
    inOrder(id, inn, officialName, shortName, kpp, ogrn, contact, locale, address);
inline constexpr auto recordOrder = // that of updates
    inOrder(id, inn, officialName, shortName, kpp, ogrn, address, contact, locale);
inline constexpr auto selectOrder = withoutEmbedded(recordOrder);
inline constexpr auto documentOrder = std::tuple_cat(selectOrder, inOrder(locale)); // the contact is a nested object

} // namespace OrganizationFields

// The columns of a result that hold an organization with its locale and its contact person.
struct OrganizationColumns : RowPart<OrganizationFields::selectOrder>
{
    OrganizationColumns(const TableCatalog &tables, ResultColumns &columns);

    LocaleColumns locale;
    PersonColumns contact;
};

} // namespace brimlet
