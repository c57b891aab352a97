#include "controller/SQLiteDatabase.h"

#include <QDebug>
#include <QFile>
#include <QSqlError>
#include <functional>

namespace brimlet::controller {

namespace {

const QString schemaVersion = QStringLiteral("0.1");

} // namespace

SQLiteDatabase::SQLiteDatabase() : query(QString(), QSqlDatabase()) {}

SQLiteDatabase::~SQLiteDatabase()
{
    database.close();
}

// ---- The file ----

bool SQLiteDatabase::exists(const QString &name)
{
    return QFile(name).exists();
}

bool SQLiteDatabase::open(const QString &name)
{
    // The connection is registered under the path before this one: the first under an empty name.
    database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), path);
    path = name;
    database.setDatabaseName(path);
    if (!database.open())
        return false;
    query = QSqlQuery(QSqlDatabase(database));
    query.setForwardOnly(true); // saves the driver a second copy of each list's rows
    tables.startOperation();
    return true;
}

bool SQLiteDatabase::create(const QString &name)
{
    if (!open(name)) {
        log("Unable to restore database");
        return false;
    }
    return createTables();
}

bool SQLiteDatabase::recreate(const QString &name)
{
    database.close();
    QSqlDatabase::removeDatabase(path); // the first connection has another name and stays registered
    QFile::remove(path);
    return open(name); // intentional, for compatibility: the new file has no tables until the client removes it
}

bool SQLiteDatabase::createTables()
{
    using Prepare = void (TableCatalog::*)(QSqlQuery &) const;
    static const struct
    {
        Prepare prepare;
        const char *error;
    } creations[] = {
        {&TableCatalog::prepareUsersTable, "create table users error"},
        {&TableCatalog::prepareDomainsTable, "create table domains error"},
        {&TableCatalog::prepareOrganizationsTable, "create table orgs error"},
        {&TableCatalog::prepareLocalesTable, "create table locales error"},
        {&TableCatalog::preparePersonsTable, "create table persons error"},
        {&TableCatalog::prepareContractorsTable, "create table contractors error"},
        {&TableCatalog::prepareContractsTable, "create table contracts error"},
        {&TableCatalog::prepareZonesTable, "create table zones error"},
        {&TableCatalog::prepareSectionsTable, "create table sections error"},
        {&TableCatalog::prepareDevicesTable, "create table devices error"},
        {&TableCatalog::prepareLocationsTable, "create table locations error"},
        {&TableCatalog::prepareSitesTable, "create table sites error"},
        {&TableCatalog::prepareDeviceUsersTable, "create table device users error"},
        {&TableCatalog::prepareEventsTable, "create table events error"},
        {&TableCatalog::prepareDeviceUserSectionLinksTable, "create table DeviceUserSectionLinks error"},
        {&TableCatalog::prepareSessionTable, "create table session error"},
        {&TableCatalog::prepareVersionTable, "create table version error"},
    };
    begin();
    for (const auto &creation : creations) {
        (tables.*creation.prepare)(query);
        if (!run(creation.error))
            return false;
    }
    tables.prepareVersionInsert(query, schemaVersion);
    return run("set verson error") && commit(); // intentional spelling
}

bool SQLiteDatabase::isVersionValid()
{
    tables.startOperation();
    tables.prepareVersionSelect(query);
    if (!run("get version error")) // rolls back, like every failed read, although no transaction is open
        return false;
    QString number;
    if (query.next())
        number = query.value(ResultColumns(query.record()).find(tables.version.number)).toString();
    return number == schemaVersion;
}

// A probe succeeds if its statement runs, whatever it finds. The probes are the selects of the entities, so a missing
// table or column fails the launch instead of a client's call.
bool SQLiteDatabase::isSchemaValid()
{
    const std::function<void()> probes[] = {
        [this] { tables.prepareUserSelectById(query, 0); },
        [this] { tables.prepareDomainSelectById(query, 0); },
        [this] { tables.prepareOrganizationSelectById(query, 0); },
        [this] { tables.prepareLocaleSelectById(query, 0); },
        [this] { tables.preparePersonSelectById(query, 0); },
        [this] { tables.prepareContractorSelectById(query, 0); },
        [this] { tables.prepareContractSelectById(query, 0); },
        [this] { tables.prepareZoneSelectById(query, 0, 0, 0); },
        [this] { tables.prepareSectionSelectById(query, 0, 0); },
        [this] { tables.prepareDeviceSelectById(query, 0); },
        [this] { tables.prepareLocationSelectById(query, 0); },
        [this] { tables.prepareSiteSelectById(query, 0); },
        [this] { tables.prepareDeviceUsersOfDeviceSelect(query, 0); },
        [this] { tables.prepareEventSelectById(query, 0); },
        [this] { tables.prepareDeviceUserLinksSelect(query, 0, 0); },
        [this] { tables.prepareSessionSelect(query); },
        [this] { tables.prepareVersionSelect(query); },
    };
    begin();
    for (const auto &prepare : probes) {
        prepare();
        if (!execute())
            return false; // leaves the transaction open: the file is closed and replaced next
    }
    return commit();
}

// ---- Running a statement ----

bool SQLiteDatabase::execute()
{
    if (query.exec())
        return true;
    log("execute error");
    logLastError();
    return false;
}

bool SQLiteDatabase::executeBatch()
{
    if (query.execBatch(QSqlQuery::ValuesAsRows))
        return true;
    log("execute batch error");
    logLastError();
    return false;
}

bool SQLiteDatabase::run(const char *error)
{
    return execute() || fail(error);
}

bool SQLiteDatabase::runBatch(const char *error)
{
    return executeBatch() || fail(error);
}

bool SQLiteDatabase::fail(const char *error)
{
    log(error);
    logLastError();
    database.rollback();
    tables.startOperation(); // a reader that continues prepares again
    return false;
}

void SQLiteDatabase::log(const char *message) const
{
    qDebug() << message;
}

void SQLiteDatabase::logLastError() const
{
    qDebug().noquote() << query.lastError().text();
}

// ---- Transactions ----

void SQLiteDatabase::begin()
{
    tables.startOperation();
    database.transaction();
}

bool SQLiteDatabase::commit()
{
    database.commit();
    return true;
}

bool SQLiteDatabase::readExists(bool &exists, const char *error)
{
    if (!run(error))
        return false;
    exists = query.next();
    return true;
}

} // namespace brimlet::controller
