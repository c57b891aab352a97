#include "Library.h"

#include "LeakCheck.h"
#include "Require.h"
#include "brimlet.h"

#include <QThread>
#include <QtGlobal>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <sqlite3.h>
#include <unistd.h>

namespace brimlet::fuzz {

namespace {

void ignore(QtMsgType, const QMessageLogContext &, const QString &) {}

std::string placeForFiles()
{
    if (const char *given = std::getenv("TMPDIR"))
        return given;
    return access("/dev/shm", W_OK) == 0 ? "/dev/shm" : "/tmp";
}

} // namespace

Directory::Directory() : before(std::filesystem::current_path().string()), name(placeForFiles() + "/brimlet-XXXXXX")
{
    require(mkdtemp(name.data()) != nullptr, "there is room for a directory");
    std::filesystem::current_path(name);
}

Directory::~Directory()
{
    std::error_code ignored;
    std::filesystem::current_path(before, ignored);
    std::filesystem::remove_all(name, ignored);
}

Library::Library() : thread([] { launchCache(); })
{
    while (getState() != BRIMLET_STATE_RUNNING)
        std::this_thread::sleep_for(std::chrono::microseconds(50));
}

Library::~Library()
{
    exitCache();
    thread.join();
}

void quietly()
{
    qInstallMessageHandler(ignore);
    const Unseen unseen;
    require(QThread::currentThread() != nullptr, "Qt knows this thread");
}

void withoutLocks()
{
    require(sqlite3_config(SQLITE_CONFIG_SINGLETHREAD) == SQLITE_OK, "SQLite does without locks");
    require(sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0) == SQLITE_OK, "SQLite does without accounts");
}

} // namespace brimlet::fuzz
