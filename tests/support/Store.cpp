#include "Store.h"

#include <QString>
#include <QtGlobal>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <new>
#include <sqlite3.h>
#include <stdexcept>

#ifdef _WIN32
#include <combaseapi.h>
#endif

namespace brimlet::test {

std::u16string utf16(const std::string &utf8)
{
    return QString::fromStdString(utf8).toStdU16String();
}

std::optional<std::string> utf8(const uint16_t *text)
{
    if (!text)
        return std::nullopt;
    return QString::fromUtf16(text).toStdString();
}

// ---- Records ----

void *allocate(size_t size)
{
#ifdef _WIN32
    void *memory = CoTaskMemAlloc(size);
#else
    void *memory = std::malloc(size);
#endif
    if (!memory)
        throw std::bad_alloc();
    return std::memset(memory, 0, size);
}

namespace {

template<class Flat>
void freeOne(uint32_t (*function)(Flat *), Flat *record)
{
    EXPECT_EQ(function(record), 0u);
}

template<class Flat>
void freeAll(uint32_t (*function)(Flat *, uint32_t), Flat *records, uint32_t count)
{
    if (records) {
        EXPECT_EQ(function(records, count), 0u);
    }
}

} // namespace

void Free::operator()(FlatLocale *record) const
{
    freeOne(freeLocale, record);
}
void Free::operator()(FlatDomain *record) const
{
    freeOne(freeDomain, record);
}
void Free::operator()(FlatUser *record) const
{
    freeOne(freeUser, record);
}
void Free::operator()(FlatOrganization *record) const
{
    freeOne(freeOrganization, record);
}
void Free::operator()(FlatContractor *record) const
{
    freeOne(freeContractor, record);
}
void Free::operator()(FlatContract *record) const
{
    freeOne(freeContract, record);
}
void Free::operator()(FlatDevice *record) const
{
    freeOne(freeDevice, record);
}
void Free::operator()(FlatSection *record) const
{
    freeOne(freeSection, record);
}
void Free::operator()(FlatZone *record) const
{
    freeOne(freeZone, record);
}
void Free::operator()(FlatSite *record) const
{
    freeOne(freeSite, record);
}
void Free::operator()(FlatEvent *record) const
{
    freeOne(freeEvent, record);
}
void Free::operator()(uint16_t *text) const
{
#ifdef _WIN32
    CoTaskMemFree(text);
#else
    std::free(text);
#endif
}

template<>
List<FlatLocale>::~List()
{
    freeAll(freeLocalesArray, records, length);
}
template<>
List<FlatDomain>::~List()
{
    freeAll(freeDomainsArray, records, length);
}
template<>
List<FlatUser>::~List()
{
    freeAll(freeUsersArray, records, length);
}
template<>
List<FlatOrganization>::~List()
{
    freeAll(freeOrganizationsArray, records, length);
}
template<>
List<FlatContractor>::~List()
{
    freeAll(freeContractorsArray, records, length);
}
template<>
List<FlatContract>::~List()
{
    freeAll(freeContractsArray, records, length);
}
template<>
List<FlatDevice>::~List()
{
    freeAll(freeDevicesArray, records, length);
}
template<>
List<FlatSection>::~List()
{
    freeAll(freeSectionsArray, records, length);
}
template<>
List<FlatZone>::~List()
{
    freeAll(freeZonesArray, records, length);
}
template<>
List<FlatSite>::~List()
{
    freeAll(freeSitesArray, records, length);
}
template<>
List<FlatEvent>::~List()
{
    freeAll(freeEventsArray, records, length);
}

// ---- The debug log ----

namespace {

std::mutex debugMutex;
std::vector<std::string> debugLines;

void collect(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    const std::lock_guard<std::mutex> guard(debugMutex);
    if (type == QtDebugMsg)
        debugLines.push_back(text.toStdString());
}

// Qt's own messages are not part of a test's output.
void ignore(QtMsgType, const QMessageLogContext &, const QString &) {}

::testing::AssertionResult isFailureOf(const std::vector<std::string> &lines, const std::string &runner,
                                       const std::string &words)
{
    if (lines.size() == 4 && lines[0] == runner && !lines[1].empty() && lines[2] == words && lines[3] == lines[1])
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "expected \"" << runner << "\", an error text, \"" << words
                                         << "\" and the same error text; got " << ::testing::PrintToString(lines);
}

} // namespace

DebugLines::DebugLines()
{
    clear();
    qInstallMessageHandler(collect);
}

DebugLines::~DebugLines()
{
    qInstallMessageHandler(ignore);
}

std::vector<std::string> DebugLines::all() const
{
    const std::lock_guard<std::mutex> guard(debugMutex);
    return debugLines;
}

std::vector<std::string> DebugLines::allWithErrorsAt(const std::vector<size_t> &places) const
{
    std::vector<std::string> lines = all();
    for (const size_t place : places)
        if (place < lines.size() && !lines[place].empty())
            lines[place] = "*";
    return lines;
}

void DebugLines::clear()
{
    const std::lock_guard<std::mutex> guard(debugMutex);
    debugLines.clear();
}

::testing::AssertionResult isFailure(const std::vector<std::string> &lines, const std::string &words)
{
    return isFailureOf(lines, "execute error", words);
}

::testing::AssertionResult isBatchFailure(const std::vector<std::string> &lines, const std::string &words)
{
    return isFailureOf(lines, "execute batch error", words);
}

// ---- The file ----

namespace {

struct Close
{
    void operator()(sqlite3 *connection) const { sqlite3_close(connection); }
    void operator()(sqlite3_stmt *statement) const { sqlite3_finalize(statement); }
};
using Connection = std::unique_ptr<sqlite3, Close>;
using Statement = std::unique_ptr<sqlite3_stmt, Close>;

void check(bool fine, sqlite3 *connection, const std::string &sql)
{
    if (!fine)
        throw std::runtime_error(std::string(sqlite3_errmsg(connection)) + ": " + sql);
}

Connection open(const std::string &path)
{
    sqlite3 *opened = nullptr;
    const int code = sqlite3_open(path.c_str(), &opened);
    Connection connection(opened);
    check(code == SQLITE_OK, opened, path);
    sqlite3_busy_timeout(opened, 2000);
    return connection;
}

} // namespace

File::File(std::string path) : name(std::move(path)) {}

void File::execute(const std::string &sql) const
{
    const Connection connection = open(name);
    check(sqlite3_exec(connection.get(), sql.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK, connection.get(), sql);
}

std::vector<Row> File::rows(const std::string &sql) const
{
    const Connection connection = open(name);
    sqlite3_stmt *prepared = nullptr;
    const int code = sqlite3_prepare_v2(connection.get(), sql.c_str(), -1, &prepared, nullptr);
    const Statement statement(prepared);
    check(code == SQLITE_OK, connection.get(), sql);
    std::vector<Row> rows;
    int step = 0;
    while ((step = sqlite3_step(prepared)) == SQLITE_ROW) {
        Row row;
        for (int column = 0; column < sqlite3_column_count(prepared); ++column) {
            if (sqlite3_column_type(prepared, column) == SQLITE_NULL) {
                row.emplace_back();
                continue;
            }
            const void *bytes = sqlite3_column_blob(prepared, column);
            const auto length = static_cast<size_t>(sqlite3_column_bytes(prepared, column));
            row.emplace_back(length ? std::string(static_cast<const char *>(bytes), length) : std::string());
        }
        rows.push_back(std::move(row));
    }
    check(step == SQLITE_DONE, connection.get(), sql);
    return rows;
}

std::optional<std::string> File::value(const std::string &sql) const
{
    const std::vector<Row> found = rows(sql);
    if (found.size() != 1 || found[0].size() != 1)
        throw std::runtime_error("not one value: " + sql);
    return found[0][0];
}

int64_t File::number(const std::string &sql) const
{
    return std::stoll(value(sql).value());
}

// ---- The library ----

Library::Library()
{
    thread = std::thread([this] { result = launchCache(); });
    while (getState() != BRIMLET_STATE_RUNNING)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

Library::~Library()
{
    exit();
}

int32_t Library::exit()
{
    if (thread.joinable()) {
        exitCache();
        thread.join();
    }
    return result;
}

StoreTest::StoreTest()
{
    qInstallMessageHandler(ignore);
    library = std::make_unique<Library>();
}

StoreTest::~StoreTest() = default;

void StoreTest::relaunch()
{
    library.reset();
    library = std::make_unique<Library>();
}

void StoreTest::foreign(const std::string &sql)
{
    list(getZones, UINT32_MAX);
    file.execute(sql);
}

void StoreTest::refuse(const std::string &action, const std::string &table)
{
    foreign("CREATE TRIGGER Refuse" + action + table + " BEFORE " + action + " ON " + table
            + " BEGIN SELECT RAISE(ABORT, 'refused'); END");
}

} // namespace brimlet::test
