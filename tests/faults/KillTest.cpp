// A process that is killed while it writes: whatever was acknowledged is in the file, and whatever was not is in it
// whole or not at all.
#include "Child.h"
#include "Contents.h"
#include "FaultShim.h"
#include "Workload.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <random>

using namespace brimlet::test;
namespace fs = std::filesystem;

namespace {

// The store after each of a family's steps, from the filled one on, as a run that nothing disturbs leaves it.
std::vector<Contents> undisturbedContents(const Family &family)
{
    std::vector<Contents> all = {contentsOf()};
    Child child([&](Channel &channel) {
        const DebugLines lines;
        Library library;
        for (const Step &step : family.steps) {
            channel.tell(step.call());
            channel.hear();
        }
        library.exit();
    });
    for (const Step &step : family.steps) {
        EXPECT_EQ(child.hear(), 0) << step.name;
        all.push_back(contentsOf());
        child.tell(0);
    }
    EXPECT_TRUE(child.wait().isClean());
    return all;
}

class Kill : public ::testing::Test
{
protected:
    void SetUp() override
    {
        makeFilledFile();
        fs::rename("CacheDb", "Filled");
        restore();
    }

    // What no kill leaves behind: the filled file without a journal.
    static void restore()
    {
        fs::remove("CacheDb-journal");
        fs::copy_file("Filled", "CacheDb", fs::copy_options::overwrite_existing);
    }

    // Launches again and looks. `acknowledged` steps were done for certain, the next one may be.
    static ::testing::AssertionResult isWhole(const std::vector<Contents> &steps, size_t acknowledged)
    {
        if (const int64_t result = launchResult(); result != 0)
            return ::testing::AssertionFailure() << "the next launch gave " << result;
        if (const ::testing::AssertionResult sound = isSound(); !sound)
            return sound;
        const Contents found = contentsOf();
        if (found == steps[acknowledged] || (acknowledged + 1 < steps.size() && found == steps[acknowledged + 1]))
            return ::testing::AssertionSuccess();
        return ::testing::AssertionFailure()
            << "after " << acknowledged << " steps: " << difference(steps[acknowledged], found);
    }

    Directory directory;
};

class KillFamily : public Kill, public ::testing::WithParamInterface<Family>
{
};

TEST_P(KillFamily, AnyTime)
{
    const std::vector<Step> &steps = GetParam().steps;
    const std::vector<Contents> contents = undisturbedContents(GetParam());
    std::minstd_rand random(seed());
    const int kills = scaled(200);
    int inTheMiddle = 0;
    for (int kill = 0; kill < kills; ++kill) {
        restore();
        Child child([&](Channel &channel) {
            const DebugLines lines;
            Library library;
            for (const Step &step : steps)
                channel.tell(step.call());
            channel.hear();
        });
        const size_t wanted = random() % steps.size();
        size_t acknowledged = 0;
        while (acknowledged < wanted && child.hear() == 0)
            ++acknowledged;
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 1500));
        child.kill();
        EXPECT_EQ(child.wait().signal, SIGKILL);
        while (child.hear() == 0) // told before the kill, and not heard yet
            ++acknowledged;
        inTheMiddle += fs::exists("CacheDb-journal");
        ASSERT_TRUE(isWhole(contents, acknowledged)) << "kill " << kill;
    }
    figure("kills at random moments survived", kills);
    figure("random kills that left a journal to roll back", inTheMiddle);
}

// In the middle of a write and before any other call; in the long form before a write too, which differs little from
// after the call before it.
std::vector<FaultKind> killsAtCalls()
{
    return isLongForm() ? std::vector<FaultKind>{FAULT_KILL_TORN, FAULT_KILL} : std::vector<FaultKind>{FAULT_KILL_TORN};
}

// Kills at the n-th call on the store's files, for every n that the steps reach.
int killAtEveryCall(const std::vector<Step> &steps, FaultKind kind, const std::function<void()> &restore,
                    const std::function<::testing::AssertionResult(size_t)> &isWhole)
{
    int kills = 0;
    unsigned nth = 1;
    for (bool survived = false; !survived; nth += stride()) {
        restore();
        Child child([&](Channel &channel) {
            const DebugLines lines;
            Library library;
            armFault(kind, FAULT_CHANGES, nth);
            for (const Step &step : steps)
                channel.tell(step.call());
            disarmFault();
        });
        size_t acknowledged = 0;
        while (child.hear() == 0)
            ++acknowledged;
        survived = child.wait().isClean();
        EXPECT_TRUE(isWhole(acknowledged)) << "call " << nth;
        EXPECT_TRUE(!survived || acknowledged == steps.size());
        kills += !survived;
        if (::testing::Test::HasFailure())
            break;
    }
    return kills;
}

// The first step of each function; all steps in the long form.
Family oneOfEach(const Family &family)
{
    Family chosen{family.name, {}};
    for (const Step &step : family.steps)
        if (isLongForm() || std::none_of(chosen.steps.begin(), chosen.steps.end(), [&](const Step &known) {
                return known.name == step.name;
            }))
            chosen.steps.push_back(step);
    return chosen;
}

TEST_P(KillFamily, AtEveryCallOnTheFile)
{
    const Family family = oneOfEach(GetParam());
    const std::vector<Contents> contents = undisturbedContents(family);
    int kills = 0;
    for (const FaultKind kind : killsAtCalls())
        kills += killAtEveryCall(family.steps, kind, restore,
                                 [&](size_t acknowledged) { return isWhole(contents, acknowledged); });
    EXPECT_GT(kills, 0);
    figure("kills at a call on the file survived", kills);
}

INSTANTIATE_TEST_SUITE_P(Kill, KillFamily, ::testing::ValuesIn(families()),
                         [](const ::testing::TestParamInfo<Family> &test) { return test.param.name; });

// ---- The creation ----

class KillCreation : public ::testing::Test
{
protected:
    static void removeStore()
    {
        fs::remove("CacheDb");
        fs::remove("CacheDb-journal");
    }

    // A creation that was cut off leaves nothing, a file that holds nothing, or a complete one; and the next launch
    // says which. The second is thrown away, as any file without a version is, and the client has to remove it.
    void isCreatedWholeOrNotAtAll()
    {
        const bool isThere = fs::exists("CacheDb");
        const int64_t result = launchResult();
        ASSERT_TRUE(isSound());
        EXPECT_TRUE(isThere ? result == 0 || result == 103 : result == 100) << result;
        EXPECT_EQ(contentsOf(), result == 103 ? Contents() : created);
        cutOff += result == 103;
        removeStore();
        EXPECT_EQ(launchResult(), 100) << "after the removal of both files";
        EXPECT_EQ(contentsOf(), created);
    }

    void SetUp() override
    {
        ASSERT_EQ(launchResult(), 100);
        created = contentsOf();
        ASSERT_EQ(created.size(), 17u);
    }

    Directory directory;
    Contents created;
    int cutOff = 0;
};

TEST_F(KillCreation, AnyTime)
{
    std::minstd_rand random(seed());
    const int kills = scaled(200);
    for (int kill = 0; kill < kills && !HasFatalFailure(); ++kill) {
        removeStore();
        Child child([&](Channel &channel) {
            channel.tell(0);
            const DebugLines lines;
            Library library;
            channel.hear();
        });
        child.hear();
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 30000));
        child.kill();
        EXPECT_EQ(child.wait().signal, SIGKILL);
        isCreatedWholeOrNotAtAll();
    }
    figure("kills at random moments survived", kills);
}

TEST_F(KillCreation, AtEveryCallOnTheFile)
{
    int kills = 0;
    for (const FaultKind kind : killsAtCalls()) {
        for (unsigned nth = 1; !HasFailure(); nth += stride()) {
            removeStore();
            Child child([&](Channel &) {
                const DebugLines lines;
                armFault(kind, FAULT_CHANGES, nth);
                Library library;
                disarmFault();
            });
            const bool survived = child.wait().isClean();
            isCreatedWholeOrNotAtAll();
            if (survived)
                break;
            ++kills;
        }
    }
    EXPECT_GT(kills, 0);
    EXPECT_GT(cutOff, 0);
    figure("kills at a call on the file survived", kills);
}

} // namespace
