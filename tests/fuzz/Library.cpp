#include "Library.h"

#include "LeakCheck.h"
#include "Require.h"
#include "brimlet/brimlet.h"

#include <QThread>
#include <QtGlobal>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <semaphore.h>
#include <sqlite3.h>
#include <thread>
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

// One thread for all launches, until the process ends: a thread for each takes a fifth of the file fuzzer's time.
class LaunchThread
{
public:
    LaunchThread()
    {
        require(sem_init(&asked, 0, 0) == 0 && sem_init(&returned, 0, 0) == 0, "there is room for two semaphores");
        std::thread([this] { serve(); }).detach();
    }
    void launch() { sem_post(&asked); }
    void join() { waitFor(returned); }

private:
    static void waitFor(sem_t &semaphore)
    {
        while (sem_wait(&semaphore) != 0)
            require(errno == EINTR, "a semaphore can be waited for");
    }
    [[noreturn]] void serve()
    {
        for (;;) {
            waitFor(asked);
            launchCache();
            sem_post(&returned);
        }
    }

    sem_t asked;
    sem_t returned;
};

LaunchThread &launchThread()
{
    static auto *const thread = new LaunchThread;
    return *thread;
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

Library::Library()
{
    launchThread().launch();
    while (getState() != BRIMLET_STATE_RUNNING)
        std::this_thread::sleep_for(std::chrono::microseconds(50));
}

Library::~Library()
{
    exitCache();
    launchThread().join();
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
