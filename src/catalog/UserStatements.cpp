#include "catalog/Statements.h"
#include "catalog/TableCatalog.h"

namespace brimlet {

void TableCatalog::prepareUsersTable(QSqlQuery &query) const
{
    prepare(query, createTableText(users, UserFields::tableOrder));
}

void TableCatalog::prepareUsersInsert(QSqlQuery &query, const std::vector<User> &records) const
{
    prepare(query, insertText(users.table, columnsOf(users, UserFields::tableOrder)));
    bindBatch(query, records, UserFields::tableOrder);
}

void TableCatalog::prepareUserUpsert(QSqlQuery &query, const User &user) const
{
    prepareUpsert(query, users.table, presentColumns(users, user, UserFields::recordOrder));
}

// SELECT UsersId,UsersName,UsersLogin,UsersContacts,UsersIsActive,UsersDomainId,UsersRoles,UsersPhone,UsersOrgId,
//     DomainsId,DomainsName,DomainsOrgId,LocalesId,LocalesIso,LocalesDescription
// FROM Users
// LEFT JOIN Domains ON UsersDomainId = DomainsId
// LEFT JOIN Locales ON DomainsLocaleId = LocalesId
QString TableCatalog::usersSelect() const
{
    return selectText(userColumns(), users.table) + domainJoin(users.domainId.column);
}

void TableCatalog::prepareUsersSelect(QSqlQuery &query) const
{
    prepare(query, usersSelect());
}

void TableCatalog::prepareUserSelectById(QSqlQuery &query, quint32 id) const
{
    prepare(query, usersSelect() + where(users.id.column), {id});
}

void TableCatalog::prepareUsersSelectByField(QSqlQuery &query, const QString &column, const QString &value) const
{
    prepare(query, usersSelect() + where(column), {value});
}

QStringList TableCatalog::userColumns() const
{
    return columnsOf(users, UserFields::recordOrder) + domainColumns();
}

UserColumns::UserColumns(const TableCatalog &tables, ResultColumns &columns)
    : RowPart(tables.users, columns)
    , domain(tables, columns)
{
}

void TableCatalog::readUserRow(User &user, const QSqlQuery &query, const UserColumns &columns)
{
    columns.read(user, query);
    readJoined(user.domain, query, columns.domain, readDomainRow);
}

} // namespace brimlet
