// Session of brimlet.hpp where processes are forked, and where links and rights are missing.
#include "Store.h"
#include "brimlet.hpp"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <sqlite3.h>
#include <string>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

std::atomic<bool> hasLinks{true};
std::atomic<bool> isClockStopped{false}; // at 6:45:00.123 on 22 November 2026

} // namespace

// Two functions in place of the C library's: a file system may be without links, and a clock may stand.
#define EXPORTED extern "C" __attribute__((visibility("default")))

EXPORTED int clock_gettime(clockid_t clock, timespec *time) noexcept
{
    if (!isClockStopped || clock != CLOCK_REALTIME)
        return static_cast<int>(syscall(SYS_clock_gettime, clock, time));
    *time = {1795329900, 123456789};
    return 0;
}

EXPORTED int link(const char *from, const char *to) noexcept
{
    if (hasLinks)
        return linkat(AT_FDCWD, from, AT_FDCWD, to, 0);
    errno = EPERM;
    return -1;
}

namespace {

namespace fs = std::filesystem;
using namespace brimlet;
using brimlet::test::Directory;

const std::string noDatabase(5000, 'x');

// Opens a session as a user who owns nothing here, if this one may do everything. Says what came of it on the error
// output and ends the process.
[[noreturn]] void openUnprivileged()
{
    constexpr unsigned nobody = 65534;
    if (geteuid() == 0 && (setgid(nobody) != 0 || setuid(nobody) != 0))
        std::_Exit(99);
    try {
        LaunchOptions options;
        options.recover = false; // it could not remove the file
        const Session session(".", options);
        std::fprintf(stderr, "launched %u, kept <%s>\n", getLaunchCacheResult(),
                     session.report().kept.value_or("").c_str());
    } catch (const std::exception &failure) {
        std::fprintf(stderr, "%s\n", failure.what());
    }
    std::_Exit(0);
}

// From here on a copy ends in the middle, as on a full disk.
void limitFiles()
{
    const rlimit limit{4096, 4096};
    std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &limit);
}

class BindingUnix : public ::testing::Test
{
protected:
    BindingUnix() { std::ofstream("CacheDb") << noDatabase; }
    ~BindingUnix() override { fs::permissions(directory.path(), fs::perms::owner_all); }

    static std::string read(const fs::path &file)
    {
        std::ifstream stream(file);
        return std::string(std::istreambuf_iterator<char>(stream), {});
    }

    static std::ptrdiff_t countFiles() { return std::distance(fs::directory_iterator("."), fs::directory_iterator()); }

    Directory directory;
};

TEST_F(BindingUnix, WithoutLinksADamagedFileIsCopied)
{
    fs::permissions("CacheDb", fs::perms::owner_read | fs::perms::owner_write);
    hasLinks = false;
    ASSERT_THROW(fs::create_hard_link("CacheDb", "linked"), fs::filesystem_error);
    const Session session;
    EXPECT_EQ(session.report().first, LaunchResult::ReplacedVersion);
    EXPECT_EQ(read(session.report().kept.value()), noDatabase);
    EXPECT_EQ(fs::status(*session.report().kept).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_EQ(countFiles(), 2);
}

TEST_F(BindingUnix, ACopyThatFailsIsAnErrorBeforeTheLaunch)
{
    hasLinks = false;
    fs::permissions(directory.path(), fs::perms::all);
    EXPECT_EXIT(
        {
            limitFiles();
            openUnprivileged();
        },
        ::testing::ExitedWithCode(0), "cannot be kept .keepDamaged = 0 .*/CacheDb\\]");
    EXPECT_EQ(read("CacheDb"), noDatabase);
    EXPECT_EQ(countFiles(), 1);
}

TEST_F(BindingUnix, AFileThatCannotBeReadToCopyItIsAnErrorBeforeTheLaunch)
{
    hasLinks = false;
    fs::permissions("CacheDb", fs::perms::none);
    fs::permissions(directory.path(), fs::perms::all);
    EXPECT_EXIT(openUnprivileged(), ::testing::ExitedWithCode(0), "cannot be kept .keepDamaged = 0 .*/CacheDb\\]");
    EXPECT_EQ(fs::file_size("CacheDb"), noDatabase.size());
    EXPECT_EQ(countFiles(), 1);
}

TEST_F(BindingUnix, ADamagedFileTakesTheNextFreeMillisecondOfUtc)
{
    std::ofstream("CacheDb.damaged-20261122T064500.123Z") << "other";
    std::ofstream("CacheDb.damaged-20261122T064500.124Z-journal") << "journal";
    isClockStopped = true;
    const Session session;
    isClockStopped = false;
    EXPECT_EQ(session.report().kept.value().filename(), "CacheDb.damaged-20261122T064500.125Z");
    EXPECT_EQ(read("CacheDb.damaged-20261122T064500.123Z"), "other");
    EXPECT_EQ(read("CacheDb.damaged-20261122T064500.124Z-journal"), "journal");
}

class BindingUnixClosed : public BindingUnix, public ::testing::WithParamInterface<bool>
{
};

// The library cannot replace the file there either.
TEST_P(BindingUnixClosed, DirectoryIsLaunchedInWithoutKeeping)
{
    hasLinks = GetParam();
    fs::permissions(directory.path(), fs::perms(0555));
    EXPECT_EXIT(openUnprivileged(), ::testing::ExitedWithCode(0), "launched 103, kept <>");
    EXPECT_EQ(read("CacheDb"), noDatabase);
    EXPECT_EQ(countFiles(), 1);
}

TEST_P(BindingUnixClosed, DirectoryKeepsWhatWasLeftBehind)
{
    hasLinks = GetParam();
    std::ofstream("CacheDb.before-launch") << "left behind";
    fs::permissions(directory.path(), fs::perms(0555));
    EXPECT_EXIT(openUnprivileged(), ::testing::ExitedWithCode(0), "launched 103, kept <>");
    EXPECT_EQ(read("CacheDb.before-launch"), "left behind");
    EXPECT_EQ(countFiles(), 2);
}

INSTANTIATE_TEST_SUITE_P(HasLinks, BindingUnixClosed, ::testing::Bool());

TEST_F(BindingUnix, ALinkAsTheStoreIsNotKeptSinceItsTargetStays)
{
    fs::rename("CacheDb", "elsewhere");
    fs::create_symlink("elsewhere", "CacheDb");
    const Session session;
    EXPECT_EQ(session.report().kept, std::nullopt);
    EXPECT_EQ(read("elsewhere"), noDatabase);
}

// ---- Forked children ----

// Another connection reads the file, so a call of another thread waits in its commit. An exit of the library in the
// child would roll that transaction back and remove its journal.
TEST_F(BindingUnix, AChildThatExitsWhileAnotherThreadIsInACallLeavesTheCallItsJournal)
{
    fs::remove("CacheDb");
    Session session;
    sqlite3 *other = nullptr;
    ASSERT_EQ(sqlite3_open("CacheDb", &other), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(other, "BEGIN; SELECT * FROM Users", nullptr, nullptr, nullptr), SQLITE_OK);
    std::atomic<Code> code{Code::NoRecord};
    std::thread caller([&] { code.store(session.addUsers(R"({"D":{"items":[{"id":7}]}})")); });
    while (!fs::exists("CacheDb-journal"))
        std::this_thread::yield();

    const pid_t child = fork();
    if (child == 0) {
        alarm(60);
        std::exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_TRUE(WIFEXITED(status)) << "killed by signal " << WTERMSIG(status);
    EXPECT_TRUE(fs::exists("CacheDb-journal"));

    sqlite3_close(other);
    caller.join();
    EXPECT_EQ(code, Code::Done);
    EXPECT_EQ(session.getUsers().value().size(), 1u);
}

} // namespace
