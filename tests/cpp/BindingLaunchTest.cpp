// What Session of brimlet.hpp does when a launch takes too long or comes back, over stand-ins for the functions of the
// library's life, so that the test says when a launch is over; and over one for a call that runs out of memory.
#include "../support/Directory.h"
#include "brimlet.hpp"

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <new>
#include <set>
#include <stdexcept>
#include <string>
#include <thread>

#ifndef _WIN32
#include <sys/wait.h>
#include <unistd.h>
#endif

namespace {

namespace fs = std::filesystem;
using namespace brimlet;
using namespace std::chrono_literals;

std::atomic<bool> mayRun{false};    // the launch waits for this
std::atomic<bool> comesBack{false}; // or comes back at once
std::atomic<uint32_t> state{0};
std::atomic<int> launches{0};
std::atomic<int> exits{0};
std::atomic<int> misses{0}; // exits that an event loop would not have seen
std::atomic<uint32_t> firstResult{BRIMLET_LAUNCH_CREATED};
std::atomic<bool> replaces{false}; // the launch removes the file and makes another
std::atomic<int> filesAtLaunch{0}; // how many of the store's files the last launch found

// Looks back when the process ends, after the handler that ends a launch: it is made before.
struct Witness
{
    ~Witness()
    {
        if (isAsked)
            std::fprintf(stderr, "%d launches, %d exits\n", launches.load(), exits.load());
    }
    bool isAsked = false;
} witness;

// On a busy machine a thread may start late.
void waitForALaunch()
{
    while (launches == 0)
        std::this_thread::yield();
}

LaunchOptions within(std::chrono::milliseconds timeout)
{
    LaunchOptions options;
    options.timeout = timeout;
    return options;
}

} // namespace

int32_t launchCache()
{
    ++launches;
    filesAtLaunch = fs::exists("CacheDb") + fs::exists("CacheDb-journal");
    while (!mayRun && !comesBack)
        std::this_thread::yield();
    if (comesBack)
        return 0;
    if (replaces && fs::remove("CacheDb"))
        std::ofstream("CacheDb").close();
    state = 2;
    while (state != 0)
        std::this_thread::yield();
    return 0;
}

void exitCache()
{
    ++exits;
    if (state.exchange(0) != 2)
        ++misses;
}

uint32_t getState()
{
    return state;
}

uint32_t clearAll()
{
    throw std::bad_alloc();
}

uint32_t getLaunchCacheResult()
{
    if (state == 0)
        return BRIMLET_LAUNCH_NONE;
    return launches == 1 ? firstResult.load() : uint32_t{BRIMLET_LAUNCH_CREATED};
}

namespace {

TEST(BindingLaunch, ThatTakesTooLongIsAnErrorAndIsEndedByTheNextSession)
{
    EXPECT_THROW(Session(".", within(5ms)), LaunchTimedOut);
    EXPECT_EQ(exits, 0); // an exit now would be missed

    EXPECT_THROW(Session(".", within(5ms)), LaunchTimedOut); // still the same launch
    waitForALaunch();
    EXPECT_EQ(launches, 1);

    mayRun = true;
    {
        const Session session;
        EXPECT_EQ(session.report().first, LaunchResult::Created);
        EXPECT_EQ(launches, 2);
        EXPECT_EQ(exits, 1);
    }
    EXPECT_EQ(exits, 2);
    EXPECT_EQ(misses, 0);
}

TEST(BindingLaunch, ThatTakesTooLongKeepsItsWorkingDirectoryUntilItIsOver)
{
    const fs::path before = fs::current_path();
    const fs::path elsewhere = test::makeDirectory();
    EXPECT_THROW(Session(elsewhere, within(5ms)), LaunchTimedOut);
    EXPECT_EQ(fs::current_path(), elsewhere); // where the launch is about to look for its file

    mayRun = true;
    const Session session(before);
    EXPECT_EQ(fs::current_path(), before);
    fs::remove(elsewhere);
}

TEST(BindingLaunch, ThatComesBackIsAnError)
{
    const fs::path before = fs::current_path();
    comesBack = true;
    EXPECT_THROW(Session(fs::temp_directory_path()), LaunchEnded);
    EXPECT_EQ(fs::current_path(), before);

    comesBack = false;
    mayRun = true;
    EXPECT_TRUE(Session().isUsable()); // the next one is not disturbed
    EXPECT_EQ(exits, 1);
}

TEST(BindingLaunch, ThatNobodyWaitedForIsEndedWithTheProcess)
{
    EXPECT_EXIT(
        {
            witness.isAsked = true;
            std::atexit([] { std::fputs("end of the process, ", stderr); });
            try {
                const Session session(".", within(5ms));
            } catch (const LaunchTimedOut &) {
            }
            waitForALaunch();
            std::atexit([] { mayRun = true; });
            std::exit(0);
        },
        ::testing::ExitedWithCode(0), "end of the process, 1 launches, 1 exits");
}

TEST(BindingLaunch, ThatCameBackUnnoticedIsHarmlessAtTheEndOfTheProcess)
{
    EXPECT_EXIT(
        {
            try {
                const Session session(".", within(5ms));
            } catch (const LaunchTimedOut &) {
            }
            std::atexit([] { comesBack = true; });
            std::exit(3);
        },
        ::testing::ExitedWithCode(3), "");
}

// ---- Lack of memory ----

TEST(BindingCall, ThatRunsOutOfMemoryEndsTheProcess)
{
    mayRun = true;
    EXPECT_DEATH(
        {
            Session session;
            try {
                require(session.clearAll());
            } catch (const std::bad_alloc &) {
                std::exit(0);
            }
        },
        "");
}

// ---- Recovery ----

// A directory with a file and a journal, as a session would find it after a crash.
class BindingLaunchOnFiles : public ::testing::TestWithParam<uint32_t>
{
protected:
    BindingLaunchOnFiles()
    {
        for (const char *name : {"CacheDb", "CacheDb-journal", "other"})
            std::ofstream(directory / name) << (name == std::string("CacheDb-journal") ? "journal" : "file");
        mayRun = true;
    }

    ~BindingLaunchOnFiles() override { fs::remove_all(directory); }

    const fs::path directory = test::makeDirectory();
};

class BindingLaunchReplaced : public BindingLaunchOnFiles
{
};

TEST_P(BindingLaunchReplaced, IsFollowedByALaunchWithoutFileAndJournal)
{
    firstResult = GetParam();
    const Session session(directory);
    EXPECT_EQ(launches, 2);
    EXPECT_EQ(exits, 1);
    EXPECT_EQ(filesAtLaunch, 0);
    EXPECT_TRUE(fs::exists(directory / "other"));
    EXPECT_EQ(static_cast<uint32_t>(session.report().first), GetParam());
    EXPECT_EQ(session.report().second, LaunchResult::Created);
    EXPECT_EQ(session.report().kept, std::nullopt); // this stand-in replaces nothing
}

INSTANTIATE_TEST_SUITE_P(Results, BindingLaunchReplaced, ::testing::Values(101u, 102u, 103u));

class BindingLaunchNotReplaced : public BindingLaunchOnFiles
{
};

TEST_P(BindingLaunchNotReplaced, IsTheOnlyOneAndLeavesTheFiles)
{
    firstResult = GetParam();
    const Session session(directory);
    EXPECT_EQ(launches, 1);
    EXPECT_EQ(filesAtLaunch, 2);
    EXPECT_TRUE(fs::exists(directory / "CacheDb"));
    EXPECT_TRUE(fs::exists(directory / "CacheDb-journal"));
    EXPECT_EQ(static_cast<uint32_t>(session.report().first), GetParam());
    EXPECT_EQ(session.report().second, std::nullopt);
    EXPECT_EQ(session.report().kept, std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(Results, BindingLaunchNotReplaced, ::testing::Values(0u, 6u, 100u));

TEST_F(BindingLaunchOnFiles, ThatReplacesTheFileBehindTheScenesHasItKeptByTheNextSession)
{
    mayRun = false;
    replaces = true;
    EXPECT_THROW(Session(directory, within(5ms)), LaunchTimedOut);
    EXPECT_TRUE(fs::equivalent(directory / "CacheDb", directory / "CacheDb.before-launch"));

    mayRun = true;
    const Session session(directory);
    EXPECT_FALSE(fs::exists(directory / "CacheDb.before-launch"));
    std::set<std::string> contents;
    for (const auto &entry : fs::directory_iterator(directory))
        if (entry.path().filename().string().rfind("CacheDb.damaged-", 0) == 0) {
            std::string content;
            std::ifstream(entry.path()) >> content;
            contents.insert(content);
        }
    EXPECT_EQ(contents, (std::set<std::string>{"file", "journal"}));
}

// ---- Forked children ----

#ifndef _WIN32

// How a child ends that is forked while a session lives. It does what it is told, and exits.
int endOfChild(const std::function<void()> &body)
{
    const pid_t child = fork();
    if (child == 0) {
        alarm(60);
        body();
        std::exit(0);
    }
    int status = -1;
    waitpid(child, &status, 0);
    return status;
}

TEST(BindingLaunch, IsNotEndedByAChildThatExits)
{
    mayRun = true;
    EXPECT_EXIT(
        {
            const Session session;
            endOfChild([] { witness.isAsked = true; });
            std::_Exit(0);
        },
        ::testing::ExitedWithCode(0), "1 launches, 0 exits");
}

TEST(BindingLaunch, IsNotEndedByAChildThatDestroysItsSession)
{
    mayRun = true;
    auto session = std::make_unique<Session>();
    EXPECT_EQ(endOfChild([&] {
                  session.reset();
                  std::_Exit(exits);
              }),
              0);
    session.reset();
    EXPECT_EQ(exits, 1); // of the parent
}

TEST(BindingLaunch, CannotBeHadByAChildOfALaunchedProcess)
{
    mayRun = true;
    const auto isRefused = [] {
        try {
            const Session session;
        } catch (const AlreadyLaunched &) {
            std::_Exit(0);
        }
        std::_Exit(1);
    };
    {
        const Session session;
        EXPECT_EQ(endOfChild(isRefused), 0);
    }
    mayRun = false; // and of one that has given a launch up
    EXPECT_THROW(Session(".", within(5ms)), LaunchTimedOut);
    EXPECT_EQ(endOfChild(isRefused), 0);
    mayRun = true;
}

#endif

} // namespace
