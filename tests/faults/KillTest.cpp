// A process that is killed while it writes: whatever was acknowledged is in the file, and whatever was not is in it
// whole or not at all.
#include "Child.h"
#include "Contents.h"
#include "FaultShim.h"
#include "Workload.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <ctime>
#include <filesystem>
#include <random>
#include <unistd.h>

using namespace brimlet::test;
namespace fs = std::filesystem;

namespace {

// Has the kernel kill this process in so many microseconds, wherever it is then. Its parent would often come too late.
void dieIn(int64_t microseconds)
{
    sigevent event{};
    event.sigev_notify = SIGEV_SIGNAL;
    event.sigev_signo = SIGKILL;
    itimerspec once{};
    once.it_value.tv_sec = microseconds / 1000000;
    once.it_value.tv_nsec = microseconds % 1000000 * 1000;
    timer_t timer{};
    if (timer_create(CLOCK_MONOTONIC, &event, &timer) != 0 || timer_settime(timer, 0, &once, nullptr) != 0)
        _exit(1);
}

int64_t microsecondsOf(const std::function<void()> &work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - start).count();
}

// A run of a family's steps that nothing disturbs: the store before them and after each of them, and what each took.
struct Undisturbed
{
    std::vector<Contents> contents;
    std::vector<int64_t> microseconds;
};

Undisturbed undisturbedRun(const Family &family)
{
    Undisturbed run{{contentsOf()}, {}};
    Child child([&](Channel &channel) {
        const DebugLines lines;
        Library library;
        for (const Step &step : family.steps) {
            uint32_t code = 0;
            const int64_t time = microsecondsOf([&] { code = step.call(); });
            channel.tell(code);
            channel.tell(time);
            channel.hear();
        }
        library.exit();
    });
    for (const Step &step : family.steps) {
        EXPECT_EQ(child.hear(), 0) << step.name;
        run.microseconds.push_back(child.hear().value_or(0));
        run.contents.push_back(contentsOf());
        child.tell(0);
    }
    EXPECT_TRUE(child.wait().isClean());
    return run;
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

    // A state that no kill leaves: the filled file without a journal.
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

// Each kill falls into a call, or is not counted.
TEST_P(KillFamily, AnyTime)
{
    const std::vector<Step> &steps = GetParam().steps;
    const Undisturbed undisturbed = undisturbedRun(GetParam());
    std::minstd_rand random(seed());
    const int wanted = scaled(200);
    int kills = 0;
    int inTheMiddle = 0;
    for (int turn = 0; kills < wanted && turn < 3 * wanted; ++turn) {
        restore();
        const size_t chosen = random() % steps.size();
        const int64_t delay = 1 + static_cast<int64_t>(random()) % (undisturbed.microseconds[chosen] + 1);
        Child child([&](Channel &channel) {
            const DebugLines lines;
            Library library;
            for (const Step &step : steps) {
                if (&step == &steps[chosen])
                    dieIn(delay);
                channel.tell(step.call());
            }
            channel.hear();
        });
        size_t acknowledged = 0;
        while (child.hear() == 0)
            ++acknowledged;
        EXPECT_EQ(child.wait().signal, SIGKILL);
        EXPECT_GE(acknowledged, chosen);
        const bool leftJournal = fs::exists("CacheDb-journal");
        ASSERT_TRUE(isWhole(undisturbed.contents, acknowledged)) << "kill " << turn;
        kills += acknowledged < steps.size();
        inTheMiddle += leftJournal;
    }
    EXPECT_EQ(kills, wanted);
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
    const std::vector<Contents> contents = undisturbedRun(family).contents;
    int kills = 0;
    for (const FaultKind kind : killsAtCalls())
        kills += killAtEveryCall(family.steps, kind, restore,
                                 [&](size_t acknowledged) { return isWhole(contents, acknowledged); });
    EXPECT_GT(kills, 0);
    figure("kills at a call on the file survived", kills);
}

// ---- A power cut ----

// How many calls on the store's files the work makes in a child.
unsigned callsOf(const std::function<void()> &work)
{
    Child child([&](Channel &channel) {
        const DebugLines lines;
        armFault(FAULT_NONE, FAULT_CHANGES, 0);
        work();
        channel.tell(countedCalls());
    });
    return static_cast<unsigned>(child.hear().value_or(0));
}

// Has the work die before its last call on the store's files. The journal that is left shows that this is the journal's
// removal, without a sync of the directory after it: when the power fails soon after, the disk may still have the
// journal, as it is here.
void leaveTheLastCallOut(const std::function<void()> &prepare, const std::function<void()> &work)
{
    prepare();
    const unsigned calls = callsOf(work);
    prepare();
    Child child([&](Channel &) {
        const DebugLines lines;
        armFault(FAULT_KILL, FAULT_CHANGES, calls);
        work();
    });
    EXPECT_EQ(child.wait().signal, SIGKILL);
    EXPECT_TRUE(fs::exists("CacheDb-journal"));
}

TEST_P(KillFamily, APowerCutTakesBackTheLastWriteAtMost)
{
    const std::vector<Step> &steps = GetParam().steps;
    const std::vector<Contents> contents = undisturbedRun(GetParam()).contents;
    leaveTheLastCallOut(restore, [&] {
        const Library library;
        for (const Step &step : steps)
            step.call();
    });
    EXPECT_EQ(launchResult(), 0);
    EXPECT_TRUE(isSound());
    EXPECT_EQ(contentsOf(), contents[steps.size() - 1]);
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
    removeStore();
    Child undisturbed([](Channel &channel) {
        const DebugLines lines;
        channel.tell(microsecondsOf([] { Library().exit(); }));
    });
    const int64_t time = undisturbed.hear().value_or(0);
    std::minstd_rand random(seed());
    const int wanted = scaled(200);
    int kills = 0;
    for (int turn = 0; kills < wanted && turn < 3 * wanted && !HasFailure(); ++turn) {
        removeStore();
        const int64_t delay = 1 + static_cast<int64_t>(random()) % (time + 1);
        Child child([&](Channel &channel) {
            dieIn(delay);
            const DebugLines lines;
            const Library library;
            channel.tell(0);
            channel.hear();
        });
        kills += !child.hear();
        EXPECT_EQ(child.wait().signal, SIGKILL);
        isCreatedWholeOrNotAtAll();
    }
    EXPECT_EQ(kills, wanted);
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

TEST_F(KillCreation, APowerCutTakesItBack)
{
    leaveTheLastCallOut(removeStore, [] { const Library library; });
    for (int launch = 0; launch < 2; ++launch) {
        EXPECT_EQ(launchResult(), 103);
        EXPECT_TRUE(isSound());
        EXPECT_TRUE(contentsOf().empty());
    }
    removeStore();
    EXPECT_EQ(launchResult(), 100);
}

} // namespace
