// Disks that are full or broken: every call on the store's files fails once, and it and all after it fail, while the
// library writes. A failed statement is reported, a failed commit is not; the file stays sound either way.
#include "Child.h"
#include "Contents.h"
#include "FaultShim.h"
#include "Workload.h"

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <sys/resource.h>

using namespace brimlet::test;
namespace fs = std::filesystem;

namespace {

using Lines = std::vector<std::string>;

// What a child reports about its debug lines.
enum Log { NoLine, FailureOfStatement, FailureOfIndex, FailureOfZones, OtherLines };

Log read(const Lines &lines)
{
    if (lines.empty())
        return NoLine;
    const bool hasRunner = lines[0] == "execute error" || lines[0] == "execute batch error";
    const bool isShort = lines.size() == 3 && lines[2] == "add users error"; // the one operation with three lines
    if (!hasRunner || !(isShort || (lines.size() == 4 && lines[1] == lines[3])))
        return OtherLines;
    // The two failures that are logged and rolled back, and otherwise ignored.
    if (lines[2] == "Create Events Time Index error")
        return FailureOfIndex;
    return lines[2] == "get zones for device section error" ? FailureOfZones : FailureOfStatement;
}

// What came of one fault.
struct Outcome
{
    int64_t code = -1;
    int64_t failed = 0; // calls
    int64_t log = OtherLines;
    bool isHeld = false;          // the file, to other processes, while the fault lasts
    std::optional<Contents> seen; // by another process while the fault lasts, if it is not held
    int64_t refused = 0;          // the calls that returned 9 after the fault, before one returned 0
    Contents found;               // in the file in the end, without what was written after the fault
};

class InputOutput : public ::testing::Test
{
protected:
    void start()
    {
        fs::rename("CacheDb", "Start");
        before = contentsOf("Start");
    }

    static void restore()
    {
        fs::remove("CacheDb-journal");
        fs::copy_file("Start", "CacheDb", fs::copy_options::overwrite_existing);
    }

    // The store after the step, when nothing fails.
    static Contents contentsAfter(const Step &step)
    {
        restore();
        Child child([&](Channel &channel) {
            const DebugLines lines;
            Library library;
            channel.tell(step.call());
            library.exit();
        });
        child.hear();
        EXPECT_TRUE(child.wait().isClean()) << step.name;
        return contentsOf();
    }

    // `prepare` and `relieve` begin and end the fault in the child.
    static Outcome meet(const Step &step, const std::function<void()> &prepare, const std::function<void()> &relieve)
    {
        restore();
        Child child([&](Channel &channel) {
            DebugLines lines;
            Library library;
            prepare();
            channel.tell(step.call());
            channel.tell(failedCalls());
            channel.tell(read(lines.all()));
            channel.hear();
            relieve();
            int64_t refused = 0;
            while (refused < 5 && send(setServerIp, "resumed") != 0)
                ++refused;
            channel.tell(refused);
            library.exit();
        });
        Outcome outcome;
        outcome.code = child.hear().value_or(-1);
        outcome.failed = child.hear().value_or(0);
        outcome.log = child.hear().value_or(OtherLines);
        outcome.isHeld = isHeld();
        if (!outcome.isHeld) {
            EXPECT_TRUE(isSound());
            outcome.seen = contentsOf();
        }
        child.tell(0);
        outcome.refused = child.hear().value_or(-1);
        EXPECT_TRUE(child.wait().isClean());
        EXPECT_TRUE(isSound());
        outcome.found = contentsOf();
        EXPECT_EQ(outcome.found["Session"], (std::vector<Row>{{"0", "resumed"}}));
        return outcome;
    }

    static Outcome meetFault(const Step &step, FaultKind kind, unsigned calls, unsigned nth)
    {
        return meet(
            step, [=] { armFault(kind, calls, nth); }, disarmFault);
    }

    // What must hold whatever failed. `after` is the store after an undisturbed step.
    void expectHonest(const Step &step, Outcome outcome, Contents after)
    {
        Contents start = before;
        if (outcome.seen) {
            EXPECT_TRUE(*outcome.seen == start || *outcome.seen == after) << difference(after, *outcome.seen);
            outcome.seen->erase("Session");
        }
        for (Contents *contents : {&start, &after, &outcome.found})
            contents->erase("Session"); // written again since
        EXPECT_TRUE(!outcome.seen || *outcome.seen == outcome.found) << difference(*outcome.seen, outcome.found);
        EXPECT_TRUE(outcome.found == start || outcome.found == after) << difference(after, outcome.found);
        switch (outcome.code) {
        case 0: // done; or the commit failed, or one of the reads whose failure is ignored
            EXPECT_TRUE(outcome.log == NoLine || outcome.log == FailureOfZones);
            silent += outcome.found != after;
            break;
        case 8: // the one statement whose failure counts as success: nothing is stored then
            EXPECT_EQ(outcome.log, FailureOfIndex);
            EXPECT_EQ(outcome.found, start);
            break;
        default:
            EXPECT_TRUE(outcome.code == 9 || outcome.code == 7) << outcome.code;
            EXPECT_TRUE(outcome.log == FailureOfStatement || outcome.log == FailureOfZones) << outcome.log;
            // A section or zone is committed before its parents are looked for, and stays when that read fails.
            if (outcome.code == 9 || (step.name != "updateSection" && step.name != "updateZone")) {
                EXPECT_EQ(outcome.found, start) << difference(start, outcome.found);
            }
            ++reported;
        }
        // The select of a row that was read back is still open in the library. A commit that fails then leaves the
        // connection broken, and perhaps the file held, until the next call, which returns 9 and repairs it.
        EXPECT_LE(outcome.refused, 1);
        EXPECT_TRUE(outcome.refused == 0 || (outcome.code == 0 && outcome.found == start));
        EXPECT_TRUE(!outcome.isHeld || outcome.refused == 1);
        refusedOnce += outcome.refused;
    }

    // Every n that the step reaches.
    void failEveryCall(const Step &step, FaultKind kind, unsigned calls)
    {
        SCOPED_TRACE(step.name);
        const Contents after = contentsAfter(step);
        for (unsigned nth = 1; !HasFailure(); nth += stride()) {
            SCOPED_TRACE(nth);
            const Outcome outcome = meetFault(step, kind, calls, nth);
            expectHonest(step, outcome, after);
            if (outcome.failed == 0) {
                EXPECT_EQ(outcome.code, 0);
                EXPECT_EQ(outcome.seen, after);
                break;
            }
            ++faults;
        }
    }

    void printFigures() const
    {
        EXPECT_GT(faults, 0);
        figure("I/O faults survived", faults);
        figure("I/O faults reported", reported);
        figure("I/O faults not reported, with nothing of the call stored", silent);
        figure("I/O faults after which the next call returned 9", refusedOnce);
    }

    Directory directory;
    Contents before;
    int faults = 0;
    int reported = 0;
    int silent = 0;
    int64_t refusedOnce = 0;
};

// ---- Every write ----

class WritesOverFaults : public InputOutput, public ::testing::WithParamInterface<Step>
{
protected:
    void SetUp() override
    {
        makeFilledFile();
        start();
    }
};

TEST_P(WritesOverFaults, EachChangeOfAFileFailsOnce)
{
    failEveryCall(GetParam(), FAULT_ONCE, FAULT_CHANGES);
    printFigures();
}

TEST_P(WritesOverFaults, EachChangeOfAFileFailsForEver)
{
    failEveryCall(GetParam(), FAULT_FOR_EVER, FAULT_CHANGES);
    printFigures();
}

TEST_P(WritesOverFaults, EachReadOfAFileFailsOnce)
{
    failEveryCall(GetParam(), FAULT_ONCE, FAULT_READ);
    printFigures();
}

INSTANTIATE_TEST_SUITE_P(InputOutput, WritesOverFaults, ::testing::ValuesIn(writes()),
                         [](const ::testing::TestParamInfo<Step> &test) { return test.param.name; });

// ---- Special cases ----

// The first event brings an index with it, and the failure of that statement counts as success.
TEST_F(InputOutput, TheFirstEventIsStoredWithItsIndexOrNotAtAll)
{
    ASSERT_EQ(launchResult(), 100);
    start();
    const Step step{"addEvent", [] { return update(addEvent, R"({"D":{"id":1,"time":5,"device":1}})").code; }};
    for (const FaultKind kind : {FAULT_ONCE, FAULT_FOR_EVER})
        failEveryCall(step, kind, FAULT_CHANGES);
    printFigures();
}

// More than SQLite holds back in memory, so that the file itself is written to and cut again before the commit.
TEST_F(InputOutput, ABatchLargerThanTheCacheIsWholeOrNotAtAll)
{
    makeFilledFile();
    start();
    std::string items;
    for (int id = 1; id <= 12000; ++id)
        items += std::string(id > 1 ? "," : "") + R"({"id":)" + std::to_string(id) + R"(,"name":")"
               + std::string(250, 'x') + R"("})";
    const Step step{"addUsers", [&] { return send(addUsers, R"({"D":{"items":[)" + items + "]}}"); }};
    const Contents after = contentsAfter(step);
    const unsigned turns = static_cast<unsigned>(scaled(8));
    for (const FaultKind kind : {FAULT_ONCE, FAULT_FOR_EVER}) {
        for (unsigned turn = 0; turn < turns && !HasFailure(); ++turn) {
            const unsigned nth = 1 + turn * 800 / turns; // of the calls that it makes, which are some hundreds
            SCOPED_TRACE(nth);
            const Outcome outcome = meetFault(step, kind, FAULT_CHANGES, nth);
            expectHonest(step, outcome, after);
            faults += outcome.failed > 0;
        }
    }
    printFigures();
}

// The same commit as one that fails above, followed by reads.
TEST_F(InputOutput, AReadAfterACommitThatFailedMayFailOnceToo)
{
    makeFilledFile();
    Child child([](Channel &channel) {
        const DebugLines lines;
        Library library;
        armFault(FAULT_ONCE, FAULT_UNLINK, 1);
        channel.tell(update(updateUser, R"({"D":{"id":1,"name":"lost"}})").code);
        channel.tell(failedCalls());
        for (int turn = 0; turn < 3; ++turn)
            channel.tell(list(getUsers).code);
        library.exit();
    });
    EXPECT_EQ(child.hear(), 0);
    EXPECT_EQ(child.hear(), 1);
    EXPECT_EQ(child.hear(), 7);
    EXPECT_EQ(child.hear(), 0);
    EXPECT_EQ(child.hear(), 0);
    EXPECT_TRUE(child.wait().isClean());
    EXPECT_EQ(File().number("SELECT count(*) FROM Users WHERE UsersName = 'lost'"), 0);
}

TEST_F(InputOutput, AFileThatMayNotGrowTakesNoMoreAndServesOn)
{
    makeFilledFile();
    start();
    const auto size = fs::file_size("Start");
    const Step step = writes().front();
    const Contents after = contentsAfter(step);
    const auto limit = [](rlim_t bytes) {
        std::signal(SIGXFSZ, SIG_IGN);
        rlimit sizes{};
        getrlimit(RLIMIT_FSIZE, &sizes);
        sizes.rlim_cur = std::min(bytes, sizes.rlim_max);
        setrlimit(RLIMIT_FSIZE, &sizes);
    };
    for (rlim_t bytes = 0; bytes <= size + 8192; bytes += bytes < 32768 ? 1024 : size / 16) {
        SCOPED_TRACE(bytes);
        const Outcome outcome = meet(
            step, [=] { limit(bytes); }, [=] { limit(RLIM_INFINITY); });
        expectHonest(step, outcome, after);
        ++faults;
    }
    EXPECT_GT(reported, 0);
    figure("file size limits survived", faults);
}

// A failure after the first row counts as the end of the rows.
TEST_F(InputOutput, AListThatMeetsAFaultOnItsWayIsCutShort)
{
    makeFilledFile();
    std::string items;
    for (int id = 1; id <= 2000; ++id)
        items += std::string(id > 1 ? "," : "") + R"({"id":)" + std::to_string(id) + R"(,"name":"someone"})";
    Child filler([&](Channel &channel) {
        const DebugLines lines;
        Library library;
        channel.tell(send(addUsers, R"({"D":{"items":[)" + items + "]}}"));
        library.exit();
    });
    ASSERT_EQ(filler.hear(), 0);
    ASSERT_TRUE(filler.wait().isClean());
    Child child([](Channel &channel) {
        const DebugLines lines;
        Library library;
        list(getLocales);
        armFault(FAULT_ONCE, FAULT_READ, 10);
        for (int turn = 0; turn < 2; ++turn) {
            const auto users = list(getUsers);
            channel.tell(users.code);
            channel.tell(users.size());
        }
        library.exit();
    });
    EXPECT_EQ(child.hear(), 0);
    const int64_t cutShort = child.hear().value_or(0);
    EXPECT_GT(cutShort, 0);
    EXPECT_LT(cutShort, 2000);
    EXPECT_EQ(child.hear(), 0);
    EXPECT_EQ(child.hear(), 2000);
    EXPECT_TRUE(child.wait().isClean());
}

// A read that fails returns 7, and the next one works.
TEST_F(InputOutput, EveryReadReturns7AndLaterCallsWork)
{
    makeFilledFile();
    start();
    for (const Step &step : reads()) {
        SCOPED_TRACE(step.name);
        for (unsigned nth = 1; !HasFailure(); nth += stride()) {
            const Outcome outcome = meetFault(step, FAULT_ONCE, FAULT_READ, nth);
            EXPECT_EQ(outcome.seen, before);
            EXPECT_EQ(outcome.refused, 0);
            if (outcome.failed == 0) {
                EXPECT_EQ(outcome.code, 0);
                break;
            }
            EXPECT_TRUE(outcome.code == 0 || outcome.code == 7) << outcome.code;
            const Log usual = outcome.code == 0 ? NoLine : FailureOfStatement;
            EXPECT_TRUE(outcome.log == usual || outcome.log == FailureOfZones) << outcome.log;
            ++faults;
        }
    }
    figure("read faults survived", faults);
    EXPECT_GT(faults, 0);
}

// ---- The creation ----

// A launch that fails to create says so, unless it was the commit that failed: then it says 100 over a file without
// tables. The next launch tells: 103.
TEST_F(InputOutput, ACreationIsWholeOrNotAtAll)
{
    ASSERT_EQ(launchResult(), 100);
    const Contents created = contentsOf();
    for (const FaultKind kind : {FAULT_ONCE, FAULT_FOR_EVER}) {
        for (unsigned nth = 1; !HasFailure(); nth += stride()) {
            SCOPED_TRACE(nth);
            fs::remove("CacheDb");
            fs::remove("CacheDb-journal");
            Child child([&](Channel &channel) {
                const DebugLines lines;
                armFault(kind, FAULT_CHANGES, nth);
                Library library;
                channel.tell(getLaunchCacheResult());
                channel.tell(failedCalls());
                disarmFault();
                library.exit();
            });
            const int64_t result = child.hear().value_or(-1);
            const int64_t failed = child.hear().value_or(-1);
            EXPECT_TRUE(child.wait().isClean());
            ASSERT_TRUE(isSound());
            const bool isCreated = contentsOf() == created;
            EXPECT_TRUE(isCreated || contentsOf().empty());
            EXPECT_TRUE(result == 100 || (result == 6 && !isCreated)) << result;
            EXPECT_EQ(launchResult(), isCreated ? 0 : 103);
            if (failed == 0) {
                EXPECT_TRUE(isCreated);
                break;
            }
            silent += result == 100 && !isCreated;
            reported += result == 6;
            ++faults;
        }
    }
    EXPECT_GT(silent + reported, 0);
    printFigures();
}

} // namespace
