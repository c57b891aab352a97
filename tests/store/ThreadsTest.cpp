// The library on eight threads, as a client may use them: one that launches again and again, two that poll the state,
// four that call under a mutex, and one that exits. Under ThreadSanitizer nothing else may be found.
#include "Store.h"

#include <array>
#include <atomic>
#include <condition_variable>
#include <mutex>
#include <shared_mutex>

using namespace brimlet::test;

namespace {

constexpr int launches = 12;
constexpr uint32_t usersALaunch = 40;

class Threads : public ::testing::Test
{
protected:
    Directory directory;
    File file;
    DebugLines lines; // keeps Qt's chatter out of the output

    std::mutex calls;        // one call at a time
    std::shared_mutex exits; // polls are not made beside an exit
    std::mutex turns;        // guards what follows
    std::condition_variable turnChanged;
    int exited = 0; // how many launches have been exited from
    std::atomic<bool> isOver{false};

    uint32_t nextUser = 0;      // guarded by calls
    uint32_t usersInLaunch = 0; // guarded by calls
    std::atomic<int> failures{0};

    // Each launch begins when the exit from the one before has returned.
    void launchAgainAndAgain()
    {
        for (int launch = 0; launch < launches; ++launch) {
            if (launchCache() != 0)
                ++failures;
            std::unique_lock<std::mutex> lock(turns);
            turnChanged.wait(lock, [&] { return exited > launch; });
        }
    }

    void poll()
    {
        while (!isOver) {
            const std::shared_lock<std::shared_mutex> lock(exits);
            const uint32_t state = getState();
            const uint32_t result = getLaunchCacheResult();
            if (state != BRIMLET_STATE_NONE && result != BRIMLET_LAUNCH_OPENED && result != BRIMLET_LAUNCH_CREATED)
                ++failures;
        }
    }

    // From the first state that is not 0 on, calls are served.
    void addAndRead()
    {
        while (!isOver) {
            const std::lock_guard<std::mutex> lock(calls);
            if (getState() == BRIMLET_STATE_NONE || usersInLaunch == usersALaunch) {
                std::this_thread::yield();
                continue;
            }
            const uint32_t id = nextUser++;
            ++usersInLaunch;
            if (send(addUsers, batch(R"({"id":)" + std::to_string(id) + "}")) != BRIMLET_DONE)
                ++failures;
            const Answer<FlatUser> user = get(getUser, id);
            if (user.code != BRIMLET_DONE || user->id != id)
                ++failures;
        }
    }

    void exitAgainAndAgain()
    {
        for (int launch = 0; launch < launches; ++launch) {
            while (!exitWhenServed())
                std::this_thread::yield();
            const std::lock_guard<std::mutex> lock(turns);
            exited = launch + 1;
            turnChanged.notify_one();
        }
    }

    bool exitWhenServed()
    {
        const std::lock_guard<std::mutex> lock(calls);
        if (getState() != BRIMLET_STATE_RUNNING || usersInLaunch < usersALaunch)
            return false;
        const std::lock_guard<std::shared_mutex> polls(exits);
        exitCache();
        usersInLaunch = 0;
        return true;
    }
};

TEST_F(Threads, EightMayUseTheLibraryAtOnce)
{
    std::thread launcher([this] { launchAgainAndAgain(); });
    std::array<std::thread, 2> pollers;
    for (std::thread &thread : pollers)
        thread = std::thread([this] { poll(); });
    std::array<std::thread, 4> callers;
    for (std::thread &thread : callers)
        thread = std::thread([this] { addAndRead(); });
    std::thread exiter([this] { exitAgainAndAgain(); });

    exiter.join();
    launcher.join();
    isOver = true;
    for (std::thread &thread : pollers)
        thread.join();
    for (std::thread &thread : callers)
        thread.join();

    EXPECT_EQ(failures, 0);
    EXPECT_EQ(file.number("SELECT count(*) FROM Users"), launches * usersALaunch);
}

} // namespace
