// A launch where the user may not read or write the file, or not change the directory.
#include "Store.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <unistd.h>

using namespace brimlet::test;
namespace fs = std::filesystem;

namespace {

constexpr unsigned nobody = 65534;

// Launches as a user who owns nothing here, if this one may do everything. Says what came of it on the error output
// and ends the process with the launch result.
[[noreturn]] void launchUnprivileged()
{
    if (geteuid() == 0 && (setgid(nobody) != 0 || setuid(nobody) != 0))
        std::_Exit(99);
    const DebugLines lines;
    const Library library;
    std::string log;
    for (const std::string &line : lines.all())
        log += line + ";";
    const uint32_t read = list(getUsers).code;
    const uint32_t write = send(addUsers, R"({"D":{"items":[{"id":1}]}})");
    std::fprintf(stderr, "state %u log <%s> read %u write %u\n", getState(), log.c_str(), read, write);
    std::_Exit(static_cast<int>(getLaunchCacheResult()));
}

class LaunchPermissionsDeathTest : public ::testing::Test
{
protected:
    static constexpr fs::perms readOnly = fs::perms(0555);
    static constexpr fs::perms writable = fs::perms(0777);

    ~LaunchPermissionsDeathTest() override { fs::permissions(directory.path(), writable); }

    // Launches and exits: a file that passes all checks.
    static void makeValidFile() { Library library; }

    Directory directory;
    File file;
    DebugLines lines; // keeps Qt's chatter out of the output
};

TEST_F(LaunchPermissionsDeathTest, AReadOnlyDirectoryWithoutAFileResultsIn6)
{
    fs::permissions(directory.path(), readOnly);
    EXPECT_EXIT(launchUnprivileged(), ::testing::ExitedWithCode(6),
                "state 2 log <Unable to restore database;> read 7 write 9");
    EXPECT_FALSE(fs::exists("CacheDb"));
}

TEST_F(LaunchPermissionsDeathTest, AFileThatMayNotBeReadResultsIn102)
{
    std::ofstream("CacheDb").close();
    fs::permissions("CacheDb", fs::perms::none);
    fs::permissions(directory.path(), writable);
    EXPECT_EXIT(launchUnprivileged(), ::testing::ExitedWithCode(102), "state 2 log <> read 7 write 9");
    EXPECT_EQ(file.number("SELECT count(*) FROM sqlite_master"), 0);
}

TEST_F(LaunchPermissionsDeathTest, AFileThatMayNeitherBeReadNorRemovedResultsIn6)
{
    std::ofstream("CacheDb").close();
    fs::permissions("CacheDb", fs::perms::none);
    fs::permissions(directory.path(), readOnly);
    EXPECT_EXIT(launchUnprivileged(), ::testing::ExitedWithCode(6), "state 2 log <> read 7 write 9");
}

TEST_F(LaunchPermissionsDeathTest, AValidFileThatMayOnlyBeReadResultsIn0)
{
    makeValidFile();
    fs::permissions("CacheDb", fs::perms(0444));
    fs::permissions(directory.path(), readOnly);
    EXPECT_EXIT(launchUnprivileged(), ::testing::ExitedWithCode(0), "state 2 log <> read 8 write 9");
}

// The result of the removal is ignored: the library then opens the old file.
TEST_F(LaunchPermissionsDeathTest, AFileThatMayNotBeRemovedIsOpenedAgain)
{
    makeValidFile();
    file.execute("DELETE FROM Version");
    fs::permissions("CacheDb", fs::perms(0444));
    fs::permissions(directory.path(), readOnly);
    EXPECT_EXIT(launchUnprivileged(), ::testing::ExitedWithCode(103), "state 2 log <> read 8 write 9");
    EXPECT_EQ(file.number("SELECT count(*) FROM sqlite_master WHERE type = 'table'"), 17);
}

} // namespace
