#pragma once

#include "catalog/DomainsTable.h"
#include "records/User.h"

namespace brimlet {

struct UsersTable : Table
{
    UsersTable() : Table("Users") {}

    IdFieldDesc id = idField("Id", "id", "op_id", "id"); // added under "id", deleted under "op_id"
    FieldDesc name = field("Name", "name");
    FieldDesc login = field("Login", "login");
    FieldDesc contacts = field("Contacts", "contacts");
    FieldDesc isActive = field("IsActive", "active");
    FieldDesc domainId = field("DomainId", "domain");
    FieldDesc orgId = field("OrgId", "org");
    FieldDesc roles = field("Roles", "roles");
    FieldDesc phone = field("Phone", "phone");
};

namespace UserFields {

inline constexpr auto id = mapped(&User::id, &UsersTable::id);
inline constexpr auto name = mapped(&User::name, &UsersTable::name);
inline constexpr auto login = mapped(&User::login, &UsersTable::login);
inline constexpr auto contacts = mapped(&User::contacts, &UsersTable::contacts);
inline constexpr auto isActive = mapped(&User::isActive, &UsersTable::isActive);
inline constexpr auto domainId = mapped(&User::domainId, &UsersTable::domainId);
inline constexpr auto orgId = mapped(&User::orgId, &UsersTable::orgId);
inline constexpr auto roles = mapped(&User::roles, &UsersTable::roles);
inline constexpr auto phone = mapped(&User::phone, &UsersTable::phone);

inline constexpr auto tableOrder = // also that of searches
    inOrder(id, name, login, contacts, isActive, domainId, orgId, roles, phone);
inline constexpr auto recordOrder = // that of documents, updates and selects
    inOrder(id, name, login, contacts, isActive, domainId, roles, phone, orgId);

} // namespace UserFields

// The columns of a result that hold a user with the domain.
struct UserColumns : RowPart<UserFields::recordOrder>
{
    UserColumns(const TableCatalog &tables, ResultColumns &columns);

    DomainColumns domain;
};

} // namespace brimlet
