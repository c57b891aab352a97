#include "controller/StorePatterns.h"

namespace brimlet::controller {

// ---- Server address ----

bool SQLiteDatabase::setServerIp(const QString &ip)
{
    begin();
    tables.prepareSessionInsert(query, ip);
    return run("set ip error") && commit();
}

bool SQLiteDatabase::getServerIp(QString &ip)
{
    begin();
    tables.prepareSessionSelect(query);
    if (!run("get ip error"))
        return false;
    if (query.next())
        ip = readCell<QString>(query, ResultColumns(query.record()).find(tables.session.ip)).value_or(QString());
    return commit();
}

// ---- Clearing ----

bool SQLiteDatabase::clearAll()
{
    begin();
    if (!clearTables())
        return false;
    tables.prepareClear(query, tables.events.table);
    return run("clear events error") && commit();
}

bool SQLiteDatabase::clearAllExceptEvents()
{
    begin();
    return clearTables() && commit();
}

bool SQLiteDatabase::clearTables()
{
    const struct
    {
        const QString &table;
        const char *error;
    } clears[] = {
        {tables.users.table, "clear users error"},
        {tables.domains.table, "clear domains error"},
        {tables.organizations.table, "clear orgs error"},
        {tables.locales.table, "clear locales error"},
        {tables.persons.table, "clear persons error"},
        {tables.contractors.table, "clear contractors error"},
        {tables.contracts.table, "clear contracts error"},
        {tables.zones.table, "clear zones error"},
        {tables.sections.table, "clear sections error"},
        {tables.deviceUsers.table, "clear deviceUsers error"},
        {tables.deviceUserSectionLinks.table, "clear deviceUsers-section links error"},
        {tables.devices.table, "clear devices error"},
        {tables.locations.table, "clear locations error"},
        {tables.sites.table, "clear sites error"},
    };
    for (const auto &clear : clears) {
        tables.prepareClear(query, clear.table);
        if (!run(clear.error))
            return false;
    }
    return true;
}

} // namespace brimlet::controller
