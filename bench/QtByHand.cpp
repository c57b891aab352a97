// What a good Qt developer would write by hand: QJsonDocument, one prepare for each statement of a call, exec for each
// row in one transaction, forward-only queries, values by position, and no intermediate record.
#include "Fields.h"
#include "FlatRows.h"
#include "Implementation.h"
#include "Sql.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

#include <stdexcept>

namespace bench {

namespace {

const QString connectionName = QStringLiteral("bench");

// ---- SQL ----

// A prepared query, whose row reads column by column.
class Query
{
public:
    Query(const QSqlDatabase &database, const std::string &text) : Query(database, QString::fromStdString(text)) {}
    Query(const QSqlDatabase &database, const QString &text) : query(database)
    {
        query.setForwardOnly(true);
        if (!query.prepare(text))
            fail();
    }

    void add(const QVariant &value) { query.addBindValue(value); }

    void run()
    {
        if (!query.exec())
            fail();
    }

    template<class... Values>
    void runWith(const Values &...values)
    {
        (add(values), ...);
        run();
    }

    bool next()
    {
        column = 0;
        return query.next();
    }

    bool isNull() const { return query.isNull(column); }
    void skip(int columns) { column += columns; }

    void read(uint32_t &value) { value = query.value(column++).toUInt(); }
    void read(uint32_t *&cell)
    {
        readWith(cell, [](const QVariant &value) { return value.toUInt(); });
    }
    void read(int32_t *&cell)
    {
        readWith(cell, [](const QVariant &value) { return value.toInt(); });
    }
    void read(uint8_t *&cell)
    {
        readWith(cell, [](const QVariant &value) { return static_cast<uint8_t>(value.toInt()); });
    }
    void read(uint64_t *&cell)
    {
        readWith(cell, [](const QVariant &value) { return uint64_t{value.toULongLong()}; });
    }
    void read(double *&cell)
    {
        readWith(cell, [](const QVariant &value) { return value.toDouble(); });
    }
    void readFlag(uint8_t *&cell)
    {
        readWith(cell, [](const QVariant &value) { return uint8_t{value.toBool()}; });
    }
    void read(uint16_t *&text)
    {
        const QVariant value = query.value(column++);
        if (value.isNull())
            return;
        const QString string = value.toString();
        const size_t units = static_cast<size_t>(string.size()) + 1;
        text = allocate<uint16_t>(units);
        std::memcpy(text, string.utf16(), units * sizeof(uint16_t));
    }

private:
    template<class Cell, class Convert>
    void readWith(Cell *&cell, const Convert &convert)
    {
        const QVariant value = query.value(column++);
        if (!value.isNull())
            cell = makeCell(convert(value));
    }

    [[noreturn]] void fail() const { throw std::runtime_error(query.lastError().text().toStdString()); }

    QSqlQuery query;
    int column = 0;
};

class Transaction
{
public:
    explicit Transaction(const QSqlDatabase &on) : database(on) { database.transaction(); }
    Transaction(const Transaction &) = delete;
    Transaction &operator=(const Transaction &) = delete;
    ~Transaction()
    {
        if (isOpen)
            database.rollback();
    }

    void commit()
    {
        if (!database.commit())
            throw std::runtime_error(database.lastError().text().toStdString());
        isOpen = false;
    }

private:
    QSqlDatabase database;
    bool isOpen = true;
};

// ---- JSON ----

QJsonObject payload(const Text &json)
{
    const QString text =
        QString::fromRawData(reinterpret_cast<const QChar *>(json.data()), static_cast<int>(json.size()));
    return QJsonDocument::fromJson(text.toUtf8()).object().value(QLatin1String("D")).toObject();
}

QJsonArray items(const Text &json)
{
    return payload(json).value(QLatin1String("items")).toArray();
}

QVariant::Type nullOf(Kind kind)
{
    switch (kind) {
    case Kind::Id:
    case Kind::UInt32:
        return QVariant::UInt;
    case Kind::Int32:
    case Kind::Byte:
        return QVariant::Int;
    case Kind::UInt64:
        return QVariant::LongLong;
    case Kind::Flag:
        return QVariant::Bool;
    case Kind::Text:
        break;
    }
    return QVariant::String;
}

bool isAccepted(const QJsonValue &value, Kind kind)
{
    if (kind == Kind::Text)
        return value.isString();
    return value.isDouble() || (kind == Kind::Flag && value.isBool());
}

QVariant toVariant(const QJsonValue &value, Kind kind)
{
    if (value.isUndefined() && kind != Kind::Id)
        return QVariant(nullOf(kind));
    if (!isAccepted(value, kind))
        throw std::runtime_error("a member is missing or of another type");
    switch (kind) {
    case Kind::Id:
    case Kind::UInt32:
        return lowBits(value.toDouble());
    case Kind::Int32:
        return value.toInt();
    case Kind::Byte:
        return static_cast<int>(static_cast<uint8_t>(value.toInt()));
    case Kind::UInt64:
        return static_cast<qlonglong>(value.toDouble());
    case Kind::Flag:
        return value.toInt() != 0;
    case Kind::Text:
        break;
    }
    return value.toString();
}

QLatin1String latin1(std::string_view key)
{
    return QLatin1String(key.data(), static_cast<int>(key.size()));
}

// Runs an insert with the ids of the parents and then the members of an object, and returns the object's id.
template<size_t count, class... Parents>
uint32_t insertObject(Query &query, const QJsonObject &object, const Field (&fields)[count], Parents... parents)
{
    (query.add(parents), ...);
    for (const Field &field : fields)
        query.add(toVariant(object.value(latin1(field.key)), field.kind));
    query.run();
    return lowBits(object.value(latin1(fields[0].key)).toDouble());
}

// ---- The store ----

class QtByHand : public Implementation
{
public:
    ~QtByHand() override { close(); }

    const char *name() const override { return "qt"; }

    void open(const std::filesystem::path &directory) override
    {
        const QString path = QString::fromStdString((directory / fileName).string());
        const bool isNew = !std::filesystem::exists(directory / fileName);
        database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connectionName);
        database.setDatabaseName(path);
        if (!database.open())
            throw std::runtime_error(database.lastError().text().toStdString());
        if (isNew)
            create();
        else
            check();
    }

    void close() override
    {
        if (!database.isOpen())
            return;
        database.close();
        database = QSqlDatabase();
        QSqlDatabase::removeDatabase(connectionName);
    }

    Records<FlatEvent> addEvents(const Text &json) override
    {
        const QJsonArray events = items(json);
        Transaction transaction(database);
        Query insert(database, sql::insertEvent);
        QString ids;
        for (const QJsonValue event : events)
            ids += QString::number(insertObject(insert, event.toObject(), eventFields)) + QLatin1Char(',');
        Query(database, sql::eventsTimeIndex).run();
        ids.chop(1);
        Query stored(database,
                     QString::fromStdString(sql::eventsOfDevices) + QLatin1Char('(') + ids + QLatin1Char(')'));
        stored.run();
        Records<FlatEvent> records = readEvents(stored);
        transaction.commit();
        return records;
    }

    Records<FlatEvent> addEvent(const Text &json) override
    {
        const QJsonObject event = payload(json);
        Transaction transaction(database);
        Query insert(database, sql::insertEvent);
        const uint32_t id = insertObject(insert, event, eventFields);
        Query(database, sql::eventsTimeIndex).run();
        Query stored(database, sql::eventById);
        stored.runWith(id);
        Records<FlatEvent> records = readEvents(stored);
        transaction.commit();
        return records;
    }

    Records<FlatEvent> getEvents(uint32_t from, uint32_t to) override
    {
        Transaction transaction(database);
        Query query(database, sql::eventsByTime);
        query.runWith(from, to);
        Records<FlatEvent> records = readEvents(query);
        transaction.commit();
        return records;
    }

    void clearEventsBeforeDateExceptAffects(uint32_t date) override
    {
        Transaction transaction(database);
        Query(database, sql::deleteEventsBefore).runWith(date);
        transaction.commit();
    }

    void addDevices(const Text &json) override
    {
        const QJsonArray devices = items(json);
        Transaction transaction(database);
        DeviceInserts inserts(database);
        for (const QJsonValue device : devices)
            inserts.insert(device.toObject());
        transaction.commit();
    }

    Records<FlatDevice> getDevices() override { return readDevices(sql::devices); }
    Records<FlatDevice> getDevice(uint32_t id) override { return readDevices(sql::deviceById, id); }

    void addUsers(const Text &json) override
    {
        const QJsonArray users = items(json);
        Transaction transaction(database);
        Query insert(database, sql::insertUser);
        for (const QJsonValue user : users)
            insertObject(insert, user.toObject(), userFields);
        transaction.commit();
    }

    Records<FlatUser> updateUser(const Text &json) override
    {
        const QJsonObject user = payload(json);
        Transaction transaction(database);
        Query merge(database, sql::mergeUser);
        const uint32_t id = insertObject(merge, user, userFields);
        Query stored(database, sql::userById);
        stored.runWith(id);
        Records<FlatUser> records = readUsers(stored);
        transaction.commit();
        return records;
    }

    Records<FlatUser> getUsers() override { return readUsers(sql::users); }
    Records<FlatUser> getUser(uint32_t id) override { return readUsers(sql::userById, id); }

    Records<FlatUser> getUsersByLogin(const Text &login) override
    {
        return readUsers(sql::usersByLogin, QString::fromStdU16String(login));
    }

    Records<FlatSite> getSites() override { return readSites(sql::sites); }
    Records<FlatSite> getSite(uint32_t id) override { return readSites(sql::siteById, id); }

    void clearAllExceptEvents() override
    {
        Transaction transaction(database);
        for (const std::string &text : sql::clearTables)
            Query(database, text).run();
        transaction.commit();
    }

private:
    void create()
    {
        Transaction transaction(database);
        for (const std::string &text : sql::createTables)
            Query(database, text).run();
        Query(database, sql::insertVersion).run();
        transaction.commit();
    }

    void check()
    {
        QSqlQuery version(QString::fromStdString(sql::version), database);
        if (!version.next() || version.value(0).toString() != QLatin1String("0.1"))
            throw std::runtime_error("the file is of another version");
        version.finish();
        Transaction transaction(database);
        for (const std::string &text : sql::probes) {
            Query probe(database, text);
            for (const char character : text)
                if (character == '?')
                    probe.add(0u);
            probe.run();
        }
        transaction.commit();
    }

    struct DeviceInserts
    {
        explicit DeviceInserts(const QSqlDatabase &database)
            : device(database, sql::insertDevice)
            , section(database, sql::insertSection)
            , zone(database, sql::insertZone)
            , user(database, sql::insertDeviceUser)
            , link(database, sql::insertLink)
        {
        }

        void insert(const QJsonObject &object)
        {
            const uint32_t id = insertObject(device, object, deviceFields);
            const QJsonArray sections = object.value(QLatin1String("sections")).toArray();
            for (const QJsonValue value : sections) {
                const QJsonObject sectionObject = value.toObject();
                const uint32_t sectionId = insertObject(section, sectionObject, sectionFields, id);
                const QJsonArray zones = sectionObject.value(QLatin1String("zones")).toArray();
                for (const QJsonValue zoneValue : zones)
                    insertObject(zone, zoneValue.toObject(), zoneFields, id, sectionId);
            }
            const QJsonArray users = object.value(QLatin1String("users")).toArray();
            for (const QJsonValue value : users) {
                const QJsonObject userObject = value.toObject();
                const uint32_t userId = insertObject(user, userObject, deviceUserFields, id);
                const QJsonArray links = userObject.value(QLatin1String("sections")).toArray();
                for (const QJsonValue number : links)
                    link.runWith(id, userId, lowBits(number.toDouble()));
            }
        }

        Query device, section, zone, user, link;
    };

    static Records<FlatEvent> readEvents(Query &query)
    {
        Block<FlatEvent> events;
        while (query.next())
            readEvent(query, events.add());
        return events.takeRecords();
    }

    static Records<FlatUser> readUsers(Query &query)
    {
        Block<FlatUser> users;
        while (query.next())
            readUser(query, users.add());
        return users.takeRecords();
    }

    template<class... Values>
    Records<FlatUser> readUsers(const std::string &text, const Values &...values)
    {
        Transaction transaction(database);
        Query query(database, text);
        query.runWith(values...);
        Records<FlatUser> users = readUsers(query);
        transaction.commit();
        return users;
    }

    template<class... Values>
    Records<FlatSite> readSites(const std::string &text, const Values &...values)
    {
        Transaction transaction(database);
        Query query(database, text);
        Query domain(database, sql::domainById);
        query.runWith(values...);
        Block<FlatSite> sites;
        while (query.next()) {
            FlatSite &site = sites.add();
            readSite(query, site);
            if (!site.domainId || *site.domainId == 0)
                continue;
            domain.runWith(*site.domainId);
            if (domain.next())
                site.domain = readDomain(domain);
        }
        transaction.commit();
        return sites.takeRecords();
    }

    template<class... Values>
    Records<FlatDevice> readDevices(const std::string &text, const Values &...values)
    {
        Transaction transaction(database);
        Query query(database, text);
        DeviceSelects selects(database);
        query.runWith(values...);
        Block<FlatDevice> devices;
        while (query.next()) {
            FlatDevice &device = devices.add();
            readDevice(query, device);
            selects.readSections(device);
            selects.readUsers(device);
        }
        transaction.commit();
        return devices.takeRecords();
    }

    struct DeviceSelects
    {
        explicit DeviceSelects(const QSqlDatabase &database)
            : sectionsOfDevice(database, sql::sectionsOfDevice)
            , zonesOfSection(database, sql::zonesOfSection)
            , usersOfDevice(database, sql::usersOfDevice)
            , linksOfUser(database, sql::linksOfUser)
        {
        }

        void readSections(FlatDevice &device)
        {
            Block<FlatSection> sections;
            sectionsOfDevice.runWith(device.id);
            while (sectionsOfDevice.next()) {
                FlatSection &section = sections.add();
                readSection(sectionsOfDevice, section);
                Block<FlatZone> zones;
                zonesOfSection.runWith(device.id, section.id);
                while (zonesOfSection.next())
                    readZone(zonesOfSection, zones.add());
                section.zones = zones.take(section.zonesCount);
            }
            device.sections = sections.take(device.sectionsCount);
        }

        void readUsers(FlatDevice &device)
        {
            Block<FlatDeviceUser> users;
            usersOfDevice.runWith(device.id);
            while (usersOfDevice.next()) {
                FlatDeviceUser &user = users.add();
                readDeviceUser(usersOfDevice, user);
                Block<uint32_t> sections;
                linksOfUser.runWith(device.id, user.id);
                while (linksOfUser.next())
                    readLink(linksOfUser, sections.add());
                user.sections = sections.take(user.sectionsCount);
            }
            device.users = users.take(device.usersCount);
        }

        Query sectionsOfDevice, zonesOfSection, usersOfDevice, linksOfUser;
    };

    QSqlDatabase database;
};

} // namespace

std::unique_ptr<Implementation> makeQtByHand()
{
    return std::make_unique<QtByHand>();
}

} // namespace bench
