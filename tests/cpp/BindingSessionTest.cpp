// Session of brimlet.hpp: launch, recovery, exit, threads.
#include "Store.h"
#include "brimlet.hpp"

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <memory>
#include <sqlite3.h>
#include <string>
#include <thread>
#include <vector>

namespace {

namespace fs = std::filesystem;
using namespace brimlet;
using brimlet::test::Directory;
using brimlet::test::File;

const char twoUsers[] = R"({"D":{"items":[{"id":7,"name":"Anna"},{"id":8,"name":""}]}})";

class BindingSession : public ::testing::Test
{
protected:
    BindingSession() { fs::create_directory("cache"); }

    // A file that remains from a session.
    static void leaveFile()
    {
        Session session("cache");
        ASSERT_EQ(session.addUsers(twoUsers), Code::Done);
    }

    Directory directory; // the working directory; the sessions' own lies in it
};

TEST_F(BindingSession, RunsFromItsConstructionToItsDestruction)
{
    EXPECT_EQ(getState(), 0u);
    {
        const Session session("cache");
        EXPECT_EQ(session.state(), State::Running);
        EXPECT_EQ(session.launchResult(), LaunchResult::Created);
        EXPECT_EQ(getState(), 2u);
    }
    EXPECT_EQ(getState(), 0u);
    EXPECT_EQ(getLaunchCacheResult(), 255u);
}

TEST_F(BindingSession, KeepsItsFileInItsDirectoryAndGoesBack)
{
    const fs::path before = fs::current_path();
    const Session session("cache");
    EXPECT_EQ(fs::current_path(), before);
    EXPECT_TRUE(fs::exists("cache/CacheDb"));
    EXPECT_FALSE(fs::exists("CacheDb"));
}

TEST_F(BindingSession, TakesTheWorkingDirectoryUnlessToldOtherwise)
{
    const Session session;
    EXPECT_TRUE(fs::exists("CacheDb"));
}

TEST_F(BindingSession, WritesAfterItHasGoneBack)
{
    leaveFile();
    EXPECT_EQ(File("cache/CacheDb").number("SELECT count(*) FROM Users"), 2);
    EXPECT_FALSE(fs::exists("CacheDb"));
}

TEST_F(BindingSession, OpensTheFileOfTheOneBefore)
{
    leaveFile();
    Session session("cache");
    EXPECT_EQ(session.report().first, LaunchResult::Opened);
    EXPECT_EQ(session.report().second, std::nullopt);
    EXPECT_EQ(session.report().last(), LaunchResult::Opened);
    EXPECT_TRUE(session.isUsable());
    EXPECT_EQ(session.getUsers().value().size(), 2u);
}

TEST_F(BindingSession, IsTheOnlyOne)
{
    Session session("cache");
    EXPECT_THROW(Session("cache"), AlreadyLaunched);
    EXPECT_EQ(session.addUsers(twoUsers), Code::Done); // and the first one goes on
}

TEST_F(BindingSession, LeavesALibraryAloneThatOthersHaveLaunched)
{
    const fs::path before = fs::current_path();
    test::Library library;
    EXPECT_THROW(Session("cache"), AlreadyLaunched);
    EXPECT_EQ(getState(), 2u);
    EXPECT_EQ(fs::current_path(), before);
}

TEST_F(BindingSession, ADirectoryThatIsNotThereIsAnErrorAndTheNextSessionRuns)
{
    EXPECT_THROW(Session("nowhere"), fs::filesystem_error);
    EXPECT_EQ(getState(), 0u);
    const Session session("cache");
    EXPECT_TRUE(session.isUsable());
}

// ---- Recovery ----

struct Damage
{
    const char *name;
    LaunchResult result;
    void (*inflict)();
};

void PrintTo(const Damage &damage, std::ostream *stream)
{
    *stream << damage.name;
}

const Damage damages[] = {
    {"a table is missing", LaunchResult::ReplacedSchema, [] { File("cache/CacheDb").execute("DROP TABLE Zones"); }},
    {"the version is wrong", LaunchResult::ReplacedVersion,
     [] { File("cache/CacheDb").execute("UPDATE Version SET VersionNumber = '0.0'"); }},
    {"the file is no database", LaunchResult::ReplacedVersion,
     [] { std::ofstream("cache/CacheDb", std::ios::trunc) << std::string(5000, 'x'); }},
};

class BindingRecovery : public BindingSession, public ::testing::WithParamInterface<Damage>
{
};

TEST_P(BindingRecovery, LaunchesAgainWithoutTheFile)
{
    leaveFile();
    GetParam().inflict();
    Session session("cache");
    EXPECT_EQ(session.report().first, GetParam().result);
    EXPECT_EQ(session.report().second, LaunchResult::Created);
    EXPECT_EQ(session.report().last(), LaunchResult::Created);
    EXPECT_TRUE(session.isUsable());
    EXPECT_EQ(session.launchResult(), LaunchResult::Created);
    EXPECT_EQ(session.getUsers().code(), Code::NotFound); // an empty store, not a broken one
    EXPECT_EQ(session.addUsers(twoUsers), Code::Done);
}

TEST_P(BindingRecovery, IsLeftOutOnRequest)
{
    leaveFile();
    GetParam().inflict();
    LaunchOptions options;
    options.recover = false;
    Session session("cache", options);
    EXPECT_EQ(session.report().first, GetParam().result);
    EXPECT_EQ(session.report().second, std::nullopt);
    EXPECT_FALSE(session.isUsable());
    EXPECT_EQ(session.getUsers().code(), Code::ReadFailed);
    EXPECT_EQ(session.addUsers(twoUsers), Code::WriteFailed);
}

INSTANTIATE_TEST_SUITE_P(Damages, BindingRecovery, ::testing::ValuesIn(damages));

// ---- Threads ----

TEST_F(BindingSession, SerializesCallsOfSeveralThreads)
{
    Session session("cache");
    constexpr uint32_t threadCount = 4;
    constexpr uint32_t callCount = 25;
    std::atomic<uint32_t> failures{0};
    std::vector<std::thread> threads;
    for (uint32_t thread = 0; thread < threadCount; ++thread)
        threads.emplace_back([&, thread] {
            for (uint32_t call = 0; call < callCount; ++call) {
                const std::string id = std::to_string(1000 * thread + call);
                if (session.addUsers(R"({"D":{"items":[{"id":)" + id + R"(,"name":")" + id + R"("}]}})") != Code::Done)
                    ++failures;
                const auto found = session.getUsersWithParams("name", id);
                if (!found || found->size() != 1 || (*found)[0].id() != 1000 * thread + call)
                    ++failures;
            }
        });
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(failures, 0u);
    EXPECT_EQ(session.getUsers().value().size(), threadCount * callCount);
}

TEST_F(BindingSession, EndsOnAnotherThreadThanItBegan)
{
    auto session = std::make_unique<Session>("cache");
    std::thread([&] { session.reset(); }).join();
    EXPECT_EQ(getState(), 0u);
    EXPECT_EQ(Session("cache").report().first, LaunchResult::Opened);
}

// ---- The end of the process ----

std::unique_ptr<Session> globalSession; // made before main, so that it goes after what Qt makes in a launch

// Registered before a launch, this reports the state after its end.
void tellStateAtTheEnd()
{
    std::atexit(
        [] { std::fprintf(stderr, "state %u in %s", getState(), fs::current_path().filename().string().c_str()); });
}

TEST_F(BindingSession, ThatIsGlobalExitsWithTheProcess)
{
    EXPECT_EXIT(
        {
            tellStateAtTheEnd();
            globalSession = std::make_unique<Session>("cache");
            std::exit(globalSession->addUsers(twoUsers) == Code::Done ? 0 : 1);
        },
        ::testing::ExitedWithCode(0), "state 0");
}

TEST_F(BindingSession, ThatNobodyDestroysExitsWithTheProcess)
{
    EXPECT_EXIT(
        {
            tellStateAtTheEnd();
            const Session session("cache");
            fs::current_path("cache");
            std::exit(0);
        },
        ::testing::ExitedWithCode(0), "state 0 in cache");
}

// The launch waits for a lock when its session gives up, and has ended before the process exits.
TEST_F(BindingSession, ThatGaveItsLaunchUpExitsWithTheProcess)
{
    leaveFile();
    EXPECT_EXIT(
        {
            tellStateAtTheEnd();
            sqlite3 *other = nullptr;
            sqlite3_open("cache/CacheDb", &other);
            sqlite3_exec(other, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr);
            LaunchOptions options;
            options.timeout = std::chrono::milliseconds(500);
            try {
                const Session session("cache", options);
            } catch (const LaunchTimedOut &) {
                sqlite3_close(other);
            }
            std::exit(0);
        },
        ::testing::ExitedWithCode(0), "state 0");
    EXPECT_EQ(Session("cache").report().first, LaunchResult::Opened);
}

} // namespace
