#include "Store.h"

#include <QtGlobal>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <future>

using namespace brimlet::test;
namespace fs = std::filesystem;

namespace {

class Lifecycle : public ::testing::Test
{
protected:
    Directory directory;
    File file;
    DebugLines lines; // keeps Qt's chatter out of the output
};

struct Seen
{
    uint32_t state;
    uint32_t result;
};

Seen look()
{
    return {getState(), getLaunchCacheResult()};
}

void waitUntilRunning()
{
    while (getState() != 2u)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

// What the client sees during the launch sequence: the debug lines of a failing version check are written inside it.
std::vector<Seen> seenDuringLaunch;

void lookDuringLaunch(QtMsgType type, const QMessageLogContext &, const QString &)
{
    if (type == QtDebugMsg)
        seenDuringLaunch.push_back(look());
}

class LookDuringLaunch
{
public:
    LookDuringLaunch() : before(qInstallMessageHandler(lookDuringLaunch)) { seenDuringLaunch.clear(); }
    ~LookDuringLaunch() { qInstallMessageHandler(before); }
    LookDuringLaunch(const LookDuringLaunch &) = delete;
    LookDuringLaunch &operator=(const LookDuringLaunch &) = delete;

private:
    QtMessageHandler before;
};

// The open files of this process; nothing where the system does not tell.
std::vector<std::string> openFiles()
{
    std::vector<std::string> names;
    if (!fs::is_symlink("/proc/self/exe"))
        return names;
    for (const fs::directory_entry &entry : fs::directory_iterator("/proc/self/fd")) {
        std::error_code gone; // the iterator's own descriptor is among them
        names.push_back(fs::read_symlink(entry.path(), gone).string());
    }
    return names;
}

bool isOpen(const std::string &name)
{
    const std::vector<std::string> names = openFiles();
    return std::any_of(names.begin(), names.end(), [&](const std::string &open) {
        return open.size() >= name.size() && open.compare(open.size() - name.size(), name.size(), name) == 0;
    });
}

// The number of open files after launches and exits; the first few let Qt open what it keeps.
size_t openFilesAfter(int launches)
{
    for (int launch = 0; launch < launches; ++launch)
        Library library;
    return openFiles().size();
}

TEST_F(Lifecycle, NothingIsLaunchedBeforeALaunch)
{
    EXPECT_EQ(getState(), 0u);
    EXPECT_EQ(getLaunchCacheResult(), 255u);
    EXPECT_FALSE(fs::exists("CacheDb"));
}

TEST_F(Lifecycle, ExitWithoutALaunchDoesNothing)
{
    exitCache();
    exitCache();
    EXPECT_EQ(getState(), 0u);
    EXPECT_EQ(getLaunchCacheResult(), 255u);
    EXPECT_FALSE(fs::exists("CacheDb"));
    EXPECT_TRUE(lines.all().empty());
}

TEST_F(Lifecycle, ALaunchAfterAnExitWithoutOneWorks)
{
    exitCache();
    Library library;
    EXPECT_EQ(getState(), 2u);
    EXPECT_EQ(getLaunchCacheResult(), 100u);
}

TEST_F(Lifecycle, ALaunchCreatesTheFileInTheWorkingDirectory)
{
    Library library;
    EXPECT_TRUE(fs::is_regular_file(fs::path(directory.path()) / "CacheDb"));
}

TEST_F(Lifecycle, ALaunchReachesState2WithItsResult)
{
    Library library;
    EXPECT_EQ(getState(), 2u);
    EXPECT_EQ(getLaunchCacheResult(), 100u);
}

TEST_F(Lifecycle, LaunchCacheBlocksUntilTheExitAndReturns0)
{
    std::atomic<bool> returned{false};
    int32_t result = -1;
    std::thread thread([&] {
        result = launchCache();
        returned = true;
    });
    waitUntilRunning();
    EXPECT_FALSE(returned);
    exitCache();
    thread.join();
    EXPECT_TRUE(returned);
    EXPECT_EQ(result, 0);
}

TEST_F(Lifecycle, ExitClearsStateAndResultBeforeItReturns)
{
    std::thread thread(launchCache);
    waitUntilRunning();
    exitCache();
    const Seen seen = look(); // launchCache may still be on its way out
    thread.join();
    EXPECT_EQ(seen.state, 0u);
    EXPECT_EQ(seen.result, 255u);
}

TEST_F(Lifecycle, ASecondExitDoesNothing)
{
    Library library;
    EXPECT_EQ(library.exit(), 0);
    exitCache();
    exitCache();
    EXPECT_EQ(getState(), 0u);
    EXPECT_EQ(getLaunchCacheResult(), 255u);
}

TEST_F(Lifecycle, ExitClosesTheFileBeforeItReturns)
{
    if (openFiles().empty())
        GTEST_SKIP() << "the system does not list open files";
    std::thread thread(launchCache);
    waitUntilRunning();
    const bool openBefore = isOpen("CacheDb");
    exitCache();
    const bool openAfter = isOpen("CacheDb");
    thread.join();
    EXPECT_TRUE(openBefore);
    EXPECT_FALSE(openAfter);
}

// On Windows nobody removes a file that is open.
TEST_F(Lifecycle, TheFileCanBeRemovedAfterAnExit)
{
    std::thread thread(launchCache);
    waitUntilRunning();
    exitCache();
    std::error_code error;
    const bool isRemoved = fs::remove("CacheDb", error); // launchCache may still be on its way out
    thread.join();
    EXPECT_TRUE(isRemoved) << error.message();
}

TEST_F(Lifecycle, ExitWorksFromAThreadOfItsOwn)
{
    int32_t result = -1;
    std::thread launcher([&] { result = launchCache(); });
    waitUntilRunning();
    std::thread(exitCache).join();
    launcher.join();
    EXPECT_EQ(result, 0);
    EXPECT_EQ(getState(), 0u);
}

TEST_F(Lifecycle, CallsComeFromAnyThreadOneAtATime)
{
    Library library;
    uint32_t added = 255;
    std::thread([&] { added = send(addUsers, R"({"D":{"items":[{"id":7,"name":"a"}]}})"); }).join();
    std::optional<std::string> name;
    std::thread([&] { name = utf8(get(getUser, 7)->name); }).join();
    EXPECT_EQ(added, 0u);
    EXPECT_EQ(name, "a");
}

TEST_F(Lifecycle, NothingIsPublishedDuringTheLaunchSequence)
{
    std::ofstream("CacheDb").close();
    const LookDuringLaunch whileLaunching;
    {
        Library library;
        EXPECT_EQ(getLaunchCacheResult(), 103u);
    }
    ASSERT_EQ(seenDuringLaunch.size(), 4u);
    for (const Seen &seen : seenDuringLaunch) {
        EXPECT_EQ(seen.state, 0u);
        EXPECT_EQ(seen.result, 255u);
    }
}

TEST_F(Lifecycle, ARelaunchPublishesNothingOfTheLaunchBefore)
{
    std::ofstream("CacheDb").close();
    {
        Library library;
    }
    const LookDuringLaunch whileLaunching;
    {
        Library library;
    }
    ASSERT_FALSE(seenDuringLaunch.empty());
    EXPECT_EQ(seenDuringLaunch.front().state, 0u);
    EXPECT_EQ(seenDuringLaunch.front().result, 255u);
}

TEST_F(Lifecycle, AFailedLaunchReachesState2AndExits)
{
    fs::create_directory("CacheDb");
    Library library;
    EXPECT_EQ(getState(), 2u);
    EXPECT_EQ(getLaunchCacheResult(), 6u);
    EXPECT_EQ(library.exit(), 0);
    EXPECT_EQ(getState(), 0u);
    EXPECT_EQ(getLaunchCacheResult(), 255u);
}

TEST_F(Lifecycle, TheResultStaysWhileTheLibraryRuns)
{
    Library library;
    ASSERT_EQ(send(addUsers, R"({"D":{"items":[{"id":7}]}})"), 0u);
    ASSERT_EQ(send(addUsers, "no document"), 10u);
    ASSERT_EQ(clearAll(), 0u);
    EXPECT_EQ(getState(), 2u);
    EXPECT_EQ(getLaunchCacheResult(), 100u);
}

TEST_F(Lifecycle, TheNextLaunchFindsTheFileAndItsData)
{
    {
        Library library;
        ASSERT_EQ(send(addUsers, R"({"D":{"items":[{"id":7,"name":"a"}]}})"), 0u);
    }
    Library library; // on another thread than the first
    EXPECT_EQ(getState(), 2u);
    EXPECT_EQ(getLaunchCacheResult(), 0u);
    const Answer<FlatUser> user = get(getUser, 7);
    ASSERT_EQ(user.code, 0u);
    EXPECT_EQ(utf8(user->name), "a");
}

TEST_F(Lifecycle, ALaunchOnTheSameThreadAgainWorks)
{
    std::vector<int32_t> results;
    std::promise<void> exited; // a launch beside an exit may be taken away by it
    std::thread launcher([&] {
        results.push_back(launchCache());
        exited.get_future().wait();
        results.push_back(launchCache());
    });
    waitUntilRunning();
    EXPECT_EQ(getLaunchCacheResult(), 100u);
    exitCache();
    exited.set_value();
    waitUntilRunning();
    EXPECT_EQ(getLaunchCacheResult(), 0u);
    exitCache();
    launcher.join();
    EXPECT_EQ(results, (std::vector<int32_t>{0, 0}));
}

TEST_F(Lifecycle, TheFileIsThatOfTheWorkingDirectoryAtTheLaunch)
{
    fs::create_directory("elsewhere");
    {
        Library library;
        fs::current_path("elsewhere");
        ASSERT_EQ(send(addUsers, R"({"D":{"items":[{"id":7}]}})"), 0u);
        EXPECT_FALSE(fs::exists("CacheDb"));
    }
    EXPECT_EQ(File("../CacheDb").number("SELECT count(*) FROM Users"), 1);
    Library library;
    EXPECT_EQ(getLaunchCacheResult(), 100u);
    EXPECT_EQ(list(getUsers).code, 8u);
}

TEST_F(Lifecycle, AFlatRecordOutlivesTheLibrary)
{
    auto library = std::make_unique<Library>();
    ASSERT_EQ(send(addUsers, R"({"D":{"items":[{"id":7,"name":"a"}]}})"), 0u);
    const Answer<FlatUser> user = get(getUser, 7);
    const List<FlatUser> users = list(getUsers);
    library.reset();
    ASSERT_EQ(user.code, 0u);
    EXPECT_EQ(utf8(user->name), "a");
    ASSERT_EQ(users.size(), 1u);
    EXPECT_EQ(utf8(users[0].name), "a");
}

TEST_F(Lifecycle, AHundredLaunchesLeaveNoFileOpen)
{
    if (openFiles().empty())
        GTEST_SKIP() << "the system does not list open files";
    const size_t before = openFilesAfter(3);
    EXPECT_EQ(openFilesAfter(100), before);
    Library library;
    EXPECT_EQ(getLaunchCacheResult(), 0u);
}

TEST_F(Lifecycle, AHundredLaunchesThatReplaceTheFileLeaveNoFileOpen)
{
    if (openFiles().empty())
        GTEST_SKIP() << "the system does not list open files";
    std::ofstream("CacheDb").close();
    const size_t before = openFilesAfter(3);
    EXPECT_EQ(openFilesAfter(100), before);
    Library library;
    EXPECT_EQ(getLaunchCacheResult(), 103u);
}

} // namespace
