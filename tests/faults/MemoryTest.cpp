// Long lives: many calls in one launch, and many launches in one process, after which memory and open files are what
// they were.
#include "Child.h"
#include "Contents.h"
#include "Workload.h"

#include <chrono>
#include <filesystem>
#include <fstream>
#include <malloc.h>
#include <random>
#include <unistd.h>

using namespace brimlet::test;
namespace fs = std::filesystem;

namespace {

// Under AddressSanitizer freed blocks are kept for a while, and the allocator is not the one that tells its sums.
constexpr bool isMemoryToldExactly = !isSanitized;

struct Usage
{
    int64_t heapBytes;
    int64_t residentBytes;
    int64_t files;
};

Usage usage()
{
    std::ifstream pages("/proc/self/statm");
    int64_t total = 0;
    int64_t resident = 0;
    pages >> total >> resident;
    const auto files = std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator());
    const struct mallinfo2 heap = mallinfo2();
    return {static_cast<int64_t>(heap.uordblks + heap.hblkhd), resident * sysconf(_SC_PAGESIZE), files};
}

void tell(const Channel &channel, const Usage &usage)
{
    for (const int64_t number : {usage.heapBytes, usage.residentBytes, usage.files})
        channel.tell(number);
}

Usage hearUsage(const Child &child)
{
    Usage usage{};
    for (int64_t *number : {&usage.heapBytes, &usage.residentBytes, &usage.files})
        *number = child.hear().value_or(-1);
    return usage;
}

void expectFlat(const Usage &early, const Usage &late)
{
    EXPECT_GT(early.files, 0);
    EXPECT_EQ(early.files, late.files);
    if (isMemoryToldExactly) {
        // The allocator keeps some bytes of each thread that has ended.
        EXPECT_LE(late.heapBytes - early.heapBytes, 128 * 1024);
        EXPECT_LE(late.residentBytes - early.residentBytes, 4 * 1024 * 1024);
    }
}

class Memory : public ::testing::Test
{
protected:
    Directory directory;
};

// Repeats every read, every write, and filling the store. Returns the number of calls, or what failed.
int64_t callEverything(int64_t atLeast)
{
    const std::vector<Step> allReads = reads();
    const std::vector<Step> allWrites = writes();
    int64_t calls = 0;
    while (calls < atLeast) {
        for (const std::vector<Step> *steps : {&allReads, &allReads, &allReads, &allReads, &allWrites}) {
            for (const Step &step : *steps)
                if (step.call() != 0)
                    return -1;
            calls += static_cast<int64_t>(steps->size());
        }
        if (clearAll() != 0 || !fill())
            return -1;
    }
    return calls;
}

TEST_F(Memory, MixedCallsLeaveMemoryFlat)
{
    const int64_t wanted = isLongForm() ? 1000000 : 20000;
    Child child([=](Channel &channel) {
        const DebugLines lines;
        Library library;
        channel.tell(fill());
        channel.tell(callEverything(wanted / 5));
        tell(channel, usage());
        channel.tell(callEverything(wanted));
        tell(channel, usage());
        library.exit();
    });
    EXPECT_EQ(child.hear(), 1);
    EXPECT_GT(child.hear(), 0);
    const Usage early = hearUsage(child);
    const int64_t calls = child.hear().value_or(-1);
    const Usage late = hearUsage(child);
    EXPECT_TRUE(child.wait().isClean());
    EXPECT_GE(calls, wanted);
    expectFlat(early, late);
    EXPECT_TRUE(isSound());
    figure("calls in the endurance test", calls);
}

// What a large list took is free again; how much of it the process keeps is up to the allocator.
TEST_F(Memory, ALargeListLeavesTheHeapFlat)
{
    constexpr int users = 20000;
    Child child([](Channel &channel) {
        const DebugLines lines;
        Library library;
        std::string objects;
        for (int id = 0; id < users; ++id)
            objects += (id ? "," : "") + ("{\"id\":" + std::to_string(id)) + R"(,"name":"Anna"})";
        channel.tell(send(addUsers, batch(objects)));
        for (int turn = 0; turn < 3; ++turn) {
            channel.tell(list(getUsers).size());
            tell(channel, usage());
        }
        library.exit();
    });
    EXPECT_EQ(child.hear(), 0);
    std::vector<Usage> usages;
    for (int turn = 0; turn < 3; ++turn) {
        EXPECT_EQ(child.hear(), users);
        usages.push_back(hearUsage(child));
    }
    EXPECT_TRUE(child.wait().isClean());
    if (isMemoryToldExactly) {
        EXPECT_LE(usages.back().heapBytes - usages.front().heapBytes, 128 * 1024);
    }
}

// Launch, work and exit with pauses of random length, all in one process. False if something failed.
bool live(int lives, std::minstd_rand &random)
{
    for (int life = 0; life < lives; ++life) {
        Library library;
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 1000));
        const std::string address = "life " + std::to_string(life);
        if (getLaunchCacheResult() != 0 || send(setServerIp, address) != 0 || list(getUsers).code != 0)
            return false;
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 1000));
        if (get(getDevice, 1).code != 0)
            return false;
    }
    return true;
}

TEST_F(Memory, LaunchesLeaveMemoryFlat)
{
    makeFilledFile();
    const int lives = isLongForm() ? 1000 : 100;
    Child child([=](Channel &channel) {
        const DebugLines lines;
        std::minstd_rand random(seed());
        channel.tell(live(20, random));
        tell(channel, usage());
        channel.tell(live(lives, random));
        tell(channel, usage());
    });
    EXPECT_EQ(child.hear(), 1);
    const Usage early = hearUsage(child);
    EXPECT_EQ(child.hear(), 1);
    const Usage late = hearUsage(child);
    EXPECT_TRUE(child.wait().isClean());
    expectFlat(early, late);
    EXPECT_TRUE(isSound());
    EXPECT_EQ(File().value("SELECT SessionIp FROM Session"), "life " + std::to_string(lives - 1));
    figure("launches in one process", lives + 20);
}

} // namespace
