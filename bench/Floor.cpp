// The least that the work costs: SQLite's own API, every statement prepared once and kept, a fast JSON parser, and no
// intermediate record between a document and a statement, or between a row and the result.
#include "Fields.h"
#include "FlatRows.h"
#include "Implementation.h"
#include "Sql.h"

#include <simdjson.h>
#include <sqlite3.h>

#include <iterator>
#include <stdexcept>
#include <vector>

namespace bench {

namespace {

using simdjson::dom::array;
using simdjson::dom::element;
using simdjson::dom::object;

// ---- SQLite ----

[[noreturn]] void fail(sqlite3 *database)
{
    throw std::runtime_error(std::string("SQLite: ") + sqlite3_errmsg(database));
}

uint16_t *makeText(const unsigned char *utf8, size_t size)
{
    size_t units = 0;
    for (size_t i = 0; i < size; ++i)
        units += size_t{(utf8[i] & 0xC0) != 0x80} + size_t{utf8[i] >= 0xF0};
    auto *text = allocate<uint16_t>(units + 1);
    text[units] = 0;
    if (units == size) {
        for (size_t i = 0; i < size; ++i)
            text[i] = utf8[i];
        return text;
    }
    uint16_t *to = text;
    for (size_t i = 0; i < size;) {
        const uint32_t lead = utf8[i++];
        uint32_t point = lead;
        if (lead >= 0x80) {
            int more = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
            point = lead & (0x3Fu >> more);
            for (; more > 0; --more)
                point = point << 6 | (utf8[i++] & 0x3Fu);
        }
        if (point >= 0x10000) {
            *to++ = static_cast<uint16_t>(0xD7C0 + (point >> 10));
            point = 0xDC00 + (point & 0x3FF);
        }
        *to++ = static_cast<uint16_t>(point);
    }
    return text;
}

// The rows of a running statement. Their destructor resets the statement for the next run.
class Rows
{
public:
    explicit Rows(sqlite3_stmt *running) : statement(running) {}
    Rows(const Rows &) = delete;
    Rows &operator=(const Rows &) = delete;
    ~Rows() { sqlite3_reset(statement); }

    bool next()
    {
        column = 0;
        const int result = sqlite3_step(statement);
        if (result != SQLITE_ROW && result != SQLITE_DONE)
            fail(sqlite3_db_handle(statement));
        return result == SQLITE_ROW;
    }

    bool isNull() const { return sqlite3_column_type(statement, column) == SQLITE_NULL; }
    void skip(int columns) { column += columns; }

    void read(uint32_t &value) { value = static_cast<uint32_t>(sqlite3_column_int64(statement, column++)); }
    template<class Number>
    void read(Number *&cell)
    {
        if (!isNull())
            cell = makeCell(static_cast<Number>(sqlite3_column_int64(statement, column)));
        ++column;
    }
    void read(double *&cell)
    {
        if (!isNull())
            cell = makeCell(sqlite3_column_double(statement, column));
        ++column;
    }
    void read(uint16_t *&text)
    {
        if (const unsigned char *utf8 = sqlite3_column_text(statement, column))
            text = makeText(utf8, static_cast<size_t>(sqlite3_column_bytes(statement, column)));
        ++column;
    }
    void readFlag(uint8_t *&cell)
    {
        if (!isNull())
            cell = makeCell(static_cast<uint8_t>(sqlite3_column_int64(statement, column) != 0));
        ++column;
    }

private:
    sqlite3_stmt *statement;
    int column = 0;
};

// Prepared at first use, and kept.
class Statement
{
public:
    Statement(sqlite3 *const &connection, const std::string &sql) : database(connection), text(sql) {}
    Statement(const Statement &) = delete;
    Statement &operator=(const Statement &) = delete;
    ~Statement() { sqlite3_finalize(statement); }

    // Clears all bindings, so that parameters not bound afterwards are null.
    void start()
    {
        if (!statement) {
            const int size = static_cast<int>(text.size()) + 1;
            if (sqlite3_prepare_v3(database, text.c_str(), size, SQLITE_PREPARE_PERSISTENT, &statement, nullptr))
                fail(database);
        }
        sqlite3_clear_bindings(statement);
    }

    void bind(int place, int64_t number) { sqlite3_bind_int64(statement, place, number); }
    void bind(int place, std::string_view text8)
    {
        sqlite3_bind_text(statement, place, text8.data(), static_cast<int>(text8.size()), SQLITE_STATIC);
    }

    Rows rows() { return Rows(statement); }

    template<class... Values>
    Rows rowsWith(const Values &...values)
    {
        start();
        int place = 0;
        (bind(++place, values), ...);
        return rows();
    }

    template<class... Values>
    void runWith(const Values &...values)
    {
        rowsWith(values...).next();
    }

private:
    sqlite3 *const &database;
    const std::string &text;
    sqlite3_stmt *statement = nullptr;
};

class Connection
{
public:
    explicit Connection(const std::string &path)
    {
        const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX;
        if (sqlite3_open_v2(path.c_str(), &handle.database, flags, nullptr))
            fail(handle.database);
    }

    void execute(const std::string &text)
    {
        if (sqlite3_exec(handle.database, text.c_str(), nullptr, nullptr, nullptr))
            fail(handle.database);
    }

    // Whether all names in a statement exist.
    bool isKnown(const std::string &text)
    {
        sqlite3_stmt *statement = nullptr;
        const int result = sqlite3_prepare_v2(handle.database, text.c_str(), -1, &statement, nullptr);
        sqlite3_finalize(statement);
        return result == SQLITE_OK;
    }

private:
    struct Handle // destroyed last, after the statements
    {
        ~Handle() { sqlite3_close(database); }
        sqlite3 *database = nullptr;
    };
    Handle handle;

    Statement kept(const std::string &text) { return {handle.database, text}; }

public:
    Statement begin = kept(sql::begin), commit = kept(sql::commit);
    Statement version = kept(sql::version);
    Statement insertEvent = kept(sql::insertEvent), eventsTimeIndex = kept(sql::eventsTimeIndex);
    Statement eventById = kept(sql::eventById), eventOfDevice = kept(sql::eventOfDevice);
    Statement eventsByTime = kept(sql::eventsByTime), deleteEventsBefore = kept(sql::deleteEventsBefore);
    Statement insertDevice = kept(sql::insertDevice), insertSection = kept(sql::insertSection);
    Statement insertZone = kept(sql::insertZone), insertDeviceUser = kept(sql::insertDeviceUser);
    Statement insertLink = kept(sql::insertLink);
    Statement devices = kept(sql::devices), deviceById = kept(sql::deviceById);
    Statement sectionsOfDevice = kept(sql::sectionsOfDevice), zonesOfSection = kept(sql::zonesOfSection);
    Statement usersOfDevice = kept(sql::usersOfDevice), linksOfUser = kept(sql::linksOfUser);
    Statement insertUser = kept(sql::insertUser), mergeUser = kept(sql::mergeUser), users = kept(sql::users);
    Statement userById = kept(sql::userById), usersByLogin = kept(sql::usersByLogin);
    Statement sites = kept(sql::sites), siteById = kept(sql::siteById), domainById = kept(sql::domainById);
};

// Rolls back unless committed.
class Transaction
{
public:
    explicit Transaction(Connection &on) : connection(on) { connection.begin.runWith(); }
    Transaction(const Transaction &) = delete;
    Transaction &operator=(const Transaction &) = delete;
    ~Transaction()
    {
        if (isOpen)
            connection.execute("ROLLBACK");
    }

    void commit()
    {
        connection.commit.runWith();
        isOpen = false;
    }

private:
    Connection &connection;
    bool isOpen = true;
};

// ---- JSON ----

// The text in UTF-8, with the padding that the parser requires.
class Utf8
{
public:
    explicit Utf8(const Text &text) : bytes(new char[3 * text.size() + simdjson::SIMDJSON_PADDING])
    {
        const char16_t *from = text.data();
        const char16_t *const end = from + text.size();
        char *to = bytes.get();
        while (from < end) {
            for (; end - from >= 8 && isAscii(from); from += 8, to += 8)
                for (int i = 0; i < 8; ++i)
                    to[i] = static_cast<char>(from[i]);
            if (from < end)
                to = append(to, from, end);
        }
        size = static_cast<size_t>(to - bytes.get());
    }

    element parsedBy(simdjson::dom::parser &parser) const { return parser.parse(bytes.get(), size, false); }

private:
    static bool isAscii(const char16_t *eight)
    {
        char16_t all = 0;
        for (int i = 0; i < 8; ++i)
            all |= eight[i];
        return all < 0x80;
    }

    static char *append(char *to, const char16_t *&from, const char16_t *end)
    {
        uint32_t point = *from++;
        if (point >= 0xD800 && point < 0xDC00 && from < end)
            point = 0x10000 + ((point - 0xD800) << 10) + (*from++ - 0xDC00u);
        if (point < 0x80) {
            *to++ = static_cast<char>(point);
            return to;
        }
        int more = point >= 0x10000 ? 3 : point >= 0x800 ? 2 : 1;
        *to++ = static_cast<char>((0xF00u >> (more + 1)) | point >> 6 * more);
        while (more-- > 0)
            *to++ = static_cast<char>(0x80 | (point >> 6 * more & 0x3F));
        return to;
    }

    std::unique_ptr<char[]> bytes;
    size_t size = 0;
};

uint32_t toUInt32(element value)
{
    int64_t whole;
    return value.get_int64().get(whole) ? lowBits(value.get_double()) : static_cast<uint32_t>(whole);
}

int32_t toInt32(element value)
{
    int64_t whole;
    if (!value.get_int64().get(whole))
        return whole == static_cast<int32_t>(whole) ? static_cast<int32_t>(whole) : 0;
    return wholeNumber(value.get_double());
}

void bindValue(Statement &statement, int place, element value, Kind kind)
{
    switch (kind) {
    case Kind::Id:
    case Kind::UInt32:
        return statement.bind(place, int64_t{toUInt32(value)});
    case Kind::Int32:
        return statement.bind(place, int64_t{toInt32(value)});
    case Kind::Byte:
        return statement.bind(place, int64_t{static_cast<uint8_t>(toInt32(value))});
    case Kind::UInt64:
        return statement.bind(place, static_cast<int64_t>(double(value.get_double())));
    case Kind::Flag:
        return statement.bind(place, int64_t{!value.is_bool() && toInt32(value) != 0});
    case Kind::Text:
        return statement.bind(place, std::string_view(value.get_string()));
    }
}

// Runs an insert with the ids of the parents and then the members of an object, and returns the object's id. Documents
// mostly have their members in the order of the fields, so it tries the next field first.
template<size_t count, class... Parents>
uint32_t insertObject(Statement &statement, object members, const Field (&fields)[count], Parents... parents)
{
    statement.start();
    int before = 0;
    (statement.bind(++before, int64_t{parents}), ...);
    size_t next = 0;
    bool hasId = false;
    uint32_t id = 0;
    for (const auto [key, value] : members) {
        for (size_t tried = 0; tried < count; ++tried) {
            const size_t place = (next + tried) % count;
            if (fields[place].key != key)
                continue;
            bindValue(statement, before + 1 + static_cast<int>(place), value, fields[place].kind);
            if (fields[place].kind == Kind::Id) {
                id = toUInt32(value);
                hasId = true;
            }
            next = place + 1;
            break;
        }
    }
    if (!hasId)
        throw std::runtime_error("a record without its id");
    statement.rows().next();
    return id;
}

// The elements of an optional array.
array elements(object members, std::string_view key)
{
    array found;
    if (members[key].get_array().get(found))
        found = array();
    return found;
}

// ---- The store ----

class Floor : public Implementation
{
public:
    const char *name() const override { return "floor"; }

    void open(const std::filesystem::path &directory) override
    {
        const std::filesystem::path path = directory / fileName;
        const bool isNew = !std::filesystem::exists(path);
        connection = std::make_unique<Connection>(path.string());
        if (isNew)
            create();
        else
            check();
    }

    void close() override { connection.reset(); }

    Records<FlatEvent> addEvents(const Text &json) override
    {
        const Utf8 text(json);
        Transaction transaction(*connection);
        std::vector<uint32_t> ids;
        for (const element event : items(text))
            ids.push_back(insertObject(connection->insertEvent, event, eventFields));
        connection->eventsTimeIndex.runWith();
        Block<FlatEvent> events;
        for (const uint32_t id : ids)
            readEvents(events, connection->eventOfDevice.rowsWith(int64_t{id}));
        transaction.commit();
        return events.takeRecords();
    }

    Records<FlatEvent> addEvent(const Text &json) override
    {
        const Utf8 text(json);
        Transaction transaction(*connection);
        const uint32_t id = insertObject(connection->insertEvent, payload(text), eventFields);
        connection->eventsTimeIndex.runWith();
        Block<FlatEvent> events;
        readEvents(events, connection->eventById.rowsWith(int64_t{id}));
        transaction.commit();
        return events.takeRecords();
    }

    Records<FlatEvent> getEvents(uint32_t from, uint32_t to) override
    {
        Transaction transaction(*connection);
        Block<FlatEvent> events;
        readEvents(events, connection->eventsByTime.rowsWith(int64_t{from}, int64_t{to}));
        transaction.commit();
        return events.takeRecords();
    }

    void clearEventsBeforeDateExceptAffects(uint32_t date) override
    {
        Transaction transaction(*connection);
        connection->deleteEventsBefore.runWith(int64_t{date});
        transaction.commit();
    }

    void addDevices(const Text &json) override
    {
        const Utf8 text(json);
        Transaction transaction(*connection);
        for (const element device : items(text))
            insertDevice(device);
        transaction.commit();
    }

    Records<FlatDevice> getDevices() override
    {
        return readDevices([&] { return connection->devices.rowsWith(); });
    }

    Records<FlatDevice> getDevice(uint32_t id) override
    {
        return readDevices([&] { return connection->deviceById.rowsWith(int64_t{id}); });
    }

    void addUsers(const Text &json) override
    {
        const Utf8 text(json);
        Transaction transaction(*connection);
        for (const element user : items(text))
            insertObject(connection->insertUser, user, userFields);
        transaction.commit();
    }

    Records<FlatUser> updateUser(const Text &json) override
    {
        const Utf8 text(json);
        Transaction transaction(*connection);
        const uint32_t id = insertObject(connection->mergeUser, payload(text), userFields);
        Block<FlatUser> users;
        readUsers(users, connection->userById.rowsWith(int64_t{id}));
        transaction.commit();
        return users.takeRecords();
    }

    Records<FlatUser> getUsers() override
    {
        return readUsers([&] { return connection->users.rowsWith(); });
    }

    Records<FlatUser> getUser(uint32_t id) override
    {
        return readUsers([&] { return connection->userById.rowsWith(int64_t{id}); });
    }

    Records<FlatUser> getUsersByLogin(const Text &login) override
    {
        const std::string utf8(login.begin(), login.end()); // a login is plain ASCII
        return readUsers([&] { return connection->usersByLogin.rowsWith(std::string_view(utf8)); });
    }

    Records<FlatSite> getSites() override
    {
        return readSites([&] { return connection->sites.rowsWith(); });
    }

    Records<FlatSite> getSite(uint32_t id) override
    {
        return readSites([&] { return connection->siteById.rowsWith(int64_t{id}); });
    }

    void clearAllExceptEvents() override
    {
        Transaction transaction(*connection);
        for (const std::string &text : sql::clearTables)
            connection->execute(text);
        transaction.commit();
    }

private:
    void create()
    {
        Transaction transaction(*connection);
        for (const std::string &text : sql::createTables)
            connection->execute(text);
        connection->execute(sql::insertVersion);
        transaction.commit();
    }

    void check()
    {
        uint16_t *number = nullptr;
        {
            Rows rows = connection->version.rowsWith();
            if (rows.next())
                rows.read(number);
        }
        static constexpr uint16_t expected[] = {'0', '.', '1', 0};
        bool isUsable = number && sameText(number, expected);
        std::free(number);
        for (const std::string &text : sql::probes)
            isUsable = isUsable && connection->isKnown(text);
        if (!isUsable)
            throw std::runtime_error("the file is of another version or schema");
    }

    object payload(const Utf8 &text) { return text.parsedBy(parser)["D"]; }
    array items(const Utf8 &text) { return text.parsedBy(parser)["D"]["items"]; }

    void insertDevice(object device)
    {
        const uint32_t id = insertObject(connection->insertDevice, device, deviceFields);
        for (const object section : elements(device, "sections")) {
            const uint32_t sectionId = insertObject(connection->insertSection, section, sectionFields, id);
            for (const object zone : elements(section, "zones"))
                insertObject(connection->insertZone, zone, zoneFields, id, sectionId);
        }
        for (const object user : elements(device, "users")) {
            const uint32_t userId = insertObject(connection->insertDeviceUser, user, deviceUserFields, id);
            for (const element section : elements(user, "sections"))
                connection->insertLink.runWith(int64_t{id}, int64_t{userId}, int64_t{toUInt32(section)});
        }
    }

    static void readEvents(Block<FlatEvent> &events, Rows rows)
    {
        while (rows.next())
            readEvent(rows, events.add());
    }

    template<class Run>
    Records<FlatUser> readUsers(const Run &run)
    {
        Transaction transaction(*connection);
        Block<FlatUser> users;
        readUsers(users, run());
        transaction.commit();
        return users.takeRecords();
    }

    static void readUsers(Block<FlatUser> &users, Rows rows)
    {
        while (rows.next())
            readUser(rows, users.add());
    }

    template<class Run>
    Records<FlatSite> readSites(const Run &run)
    {
        Transaction transaction(*connection);
        Block<FlatSite> sites;
        for (Rows rows = run(); rows.next();) {
            FlatSite &site = sites.add();
            readSite(rows, site);
            if (site.domainId && *site.domainId != 0) {
                Rows domain = connection->domainById.rowsWith(int64_t{*site.domainId});
                if (domain.next())
                    site.domain = readDomain(domain);
            }
        }
        transaction.commit();
        return sites.takeRecords();
    }

    template<class Run>
    Records<FlatDevice> readDevices(const Run &run)
    {
        Transaction transaction(*connection);
        Block<FlatDevice> devices;
        for (Rows rows = run(); rows.next();) {
            FlatDevice &device = devices.add();
            readDevice(rows, device);
            readSections(device);
            readDeviceUsers(device);
        }
        transaction.commit();
        return devices.takeRecords();
    }

    void readSections(FlatDevice &device)
    {
        Block<FlatSection> sections;
        for (Rows rows = connection->sectionsOfDevice.rowsWith(int64_t{device.id}); rows.next();) {
            FlatSection &section = sections.add();
            readSection(rows, section);
            Block<FlatZone> zones;
            Rows zoneRows = connection->zonesOfSection.rowsWith(int64_t{device.id}, int64_t{section.id});
            while (zoneRows.next())
                readZone(zoneRows, zones.add());
            section.zones = zones.take(section.zonesCount);
        }
        device.sections = sections.take(device.sectionsCount);
    }

    void readDeviceUsers(FlatDevice &device)
    {
        Block<FlatDeviceUser> users;
        for (Rows rows = connection->usersOfDevice.rowsWith(int64_t{device.id}); rows.next();) {
            FlatDeviceUser &user = users.add();
            readDeviceUser(rows, user);
            Block<uint32_t> sections;
            Rows links = connection->linksOfUser.rowsWith(int64_t{device.id}, int64_t{user.id});
            while (links.next())
                readLink(links, sections.add());
            user.sections = sections.take(user.sectionsCount);
        }
        device.users = users.take(device.usersCount);
    }

    std::unique_ptr<Connection> connection;
    simdjson::dom::parser parser;
};

} // namespace

std::unique_ptr<Implementation> makeFloor()
{
    return std::make_unique<Floor>();
}

} // namespace bench
