// A process whose allocations fail. It may abort at any point; the file must not be damaged.
#include "AllocationShim.h"
#include "Child.h"
#include "Contents.h"
#include "Workload.h"

#include <chrono>
#include <filesystem>
#include <random>
#include <unistd.h>

using namespace brimlet::test;
namespace fs = std::filesystem;

namespace {

class Allocation : public ::testing::Test
{
protected:
    void SetUp() override
    {
        makeFilledFile();
        fs::rename("CacheDb", "Filled");
        before = contentsOf("Filled");
    }

    static void restore()
    {
        fs::remove("CacheDb-journal");
        fs::copy_file("Filled", "CacheDb", fs::copy_options::overwrite_existing);
    }

    void printFigures() const
    {
        figure("failed allocations", refusals);
        figure("failed allocations that ended the process", deaths);
    }

    // A child's last words are of no interest.
    static void beQuiet() { ::close(STDERR_FILENO); }

    Directory directory;
    Contents before;
    int refusals = 0;
    int deaths = 0;
};

class AllocationInWrite : public Allocation, public ::testing::WithParamInterface<Step>
{
protected:
    // The number of blocks that an undisturbed step asks for, and what it leaves.
    int64_t blocks()
    {
        restore();
        Child child([](Channel &channel) {
            const DebugLines lines;
            Library library;
            armAllocationFailure(0, false);
            const uint32_t code = GetParam().call();
            const auto counted = static_cast<int64_t>(countedBlocks());
            disarmAllocationFailure();
            channel.tell(code == 0 ? counted : 0);
            library.exit();
        });
        const int64_t counted = child.hear().value_or(0);
        EXPECT_TRUE(child.wait().isClean());
        after = contentsOf();
        return counted;
    }

    void refuse(uint64_t nth, bool forEver)
    {
        restore();
        Child child([=](Channel &channel) {
            beQuiet();
            const DebugLines lines;
            Library library;
            armAllocationFailure(nth, forEver);
            const uint32_t code = GetParam().call();
            disarmAllocationFailure();
            channel.tell(code);
        });
        const std::optional<int64_t> code = child.hear();
        child.wait();
        deaths += !code;
        ++refusals;
        EXPECT_EQ(launchResult(), 0);
        EXPECT_TRUE(isSound());
        const Contents found = contentsOf();
        EXPECT_TRUE(found == before || found == after) << difference(before, found);
        EXPECT_TRUE(code != 9 || found == before);
    }

    Contents after;
};

TEST_P(AllocationInWrite, LeavesTheFileSound)
{
    const int64_t count = blocks();
    ASSERT_GT(count, 0);
    std::minstd_rand random(seed());
    const int turns = scaled(5);
    for (int turn = 0; turn < turns && !HasFailure(); ++turn) {
        const uint64_t nth = 1 + random() % static_cast<uint64_t>(count);
        SCOPED_TRACE(nth);
        refuse(nth, turn % 2 == 1);
    }
    printFigures();
}

INSTANTIATE_TEST_SUITE_P(Allocation, AllocationInWrite, ::testing::ValuesIn(writes()),
                         [](const ::testing::TestParamInfo<Step> &test) { return test.param.name; });

// A check that fails for want of memory has failed: the file may be replaced by one without tables, and is sound.
TEST_F(Allocation, ALaunchLeavesTheFileWholeOrReplacesIt)
{
    std::minstd_rand random(seed());
    int replaced = 0;
    const int turns = scaled(40);
    for (int turn = 0; turn < turns && !HasFailure(); ++turn) {
        restore();
        const uint64_t nth = 1 + random() % 12000;
        SCOPED_TRACE(nth);
        Child child([=](Channel &channel) {
            beQuiet();
            const DebugLines lines;
            std::thread([=] { // the launch, on a thread that is refused memory
                armAllocationFailure(nth, turn % 2);
                launchCache();
            })
                .detach();
            while (getState() != BRIMLET_STATE_RUNNING)
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            channel.tell(getLaunchCacheResult());
        });
        deaths += !child.hear();
        child.wait();
        ++refusals;
        const int64_t result = launchResult();
        EXPECT_TRUE(result == 0 || result == 103) << result;
        EXPECT_TRUE(isSound());
        EXPECT_EQ(contentsOf(), result == 0 ? before : Contents());
        replaced += result != 0;
    }
    printFigures();
    figure("failed allocations at a launch, after which the file was replaced", replaced);
}

} // namespace
