#pragma once

#include "catalog/RowPart.h"
#include "records/Person.h"

namespace brimlet {

class TableCatalog;

struct PersonsTable : Table
{
    PersonsTable() : Table("Persons") {}

    IdFieldDesc id = idField("Id", "id", "id", "id");
    FieldDesc name = field("Name", "name");
    FieldDesc phone = field("Phone", "phone");
    FieldDesc email = field("Email", "email");
    FieldDesc postal = field("Postal", "postal");
};

namespace PersonFields {

inline constexpr auto id = mapped(&Person::id, &PersonsTable::id);
inline constexpr auto name = mapped(&Person::name, &PersonsTable::name);
inline constexpr auto phone = mapped(&Person::phone, &PersonsTable::phone);
inline constexpr auto email = mapped(&Person::email, &PersonsTable::email);
inline constexpr auto postal = mapped(&Person::postal, &PersonsTable::postal);

inline constexpr auto tableOrder = inOrder(id, name, phone, email, postal); // also that of documents and selects

} // namespace PersonFields

// The columns of a result that hold a person.
struct PersonColumns : RowPart<PersonFields::tableOrder>
{
    PersonColumns(const TableCatalog &tables, ResultColumns &columns);
};

} // namespace brimlet
