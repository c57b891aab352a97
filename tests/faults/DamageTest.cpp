// Files that are not what they should be. A launch says what it made of them; every call after it answers, and nothing
// is read that the file does not hold, which is for the sanitizers to see.
#include "Child.h"
#include "Contents.h"
#include "FaultShim.h"
#include "Workload.h"

#include <QCoreApplication>
#include <algorithm>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <numeric>
#include <random>
#include <set>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

using namespace brimlet::test;
namespace fs = std::filesystem;

namespace {

const std::set<int64_t> replacements = {101, 102, 103};

// The results of a launch on the present file, and then of every read, delete and write.
struct Answers
{
    int64_t result = -1;
    std::set<int64_t> reads;
    std::set<int64_t> removals;
    std::set<int64_t> writes;
    End end;
};

constexpr int64_t endOfCodes = -1;

std::set<int64_t> hearCodes(const Child &child)
{
    std::set<int64_t> codes;
    for (int64_t code = child.hear().value_or(endOfCodes); code != endOfCodes; code = child.hear().value_or(endOfCodes))
        codes.insert(code);
    return codes;
}

Answers launchAndCallEverything(const std::function<void()> &prepare = [] {})
{
    Child child([&](Channel &channel) {
        prepare();
        const DebugLines lines;
        Library library;
        channel.tell(getLaunchCacheResult());
        for (const std::vector<Step> &steps : {reads(), deletions(), writes()}) {
            for (const Step &step : steps)
                channel.tell(step.call());
            channel.tell(endOfCodes);
        }
        library.exit();
    });
    Answers answers;
    answers.result = child.hear().value_or(-1);
    answers.reads = hearCodes(child);
    answers.removals = hearCodes(child);
    answers.writes = hearCodes(child);
    answers.end = child.wait();
    return answers;
}

bool isWithin(const std::set<int64_t> &codes, const std::set<int64_t> &allowed)
{
    return std::includes(allowed.begin(), allowed.end(), codes.begin(), codes.end());
}

// With a file without tables, reads and deletes return 7, and writes that do not delete return 9.
void expectUnusable(const Answers &answers)
{
    EXPECT_EQ(answers.reads, std::set<int64_t>{7});
    EXPECT_EQ(answers.removals, std::set<int64_t>{7});
    EXPECT_EQ(answers.writes, (std::set<int64_t>{7, 9}));
}

class Damage : public ::testing::Test
{
protected:
    Damage()
    {
        makeFilledFile();
        good = bytesOf("CacheDb");
        contents = contentsOf();
    }

    // A damaged file passes the checks or is replaced, and every call returns one of its codes.
    void expectAnswers(const std::string &bytes)
    {
        fs::remove("CacheDb-journal");
        writeBytes("CacheDb", bytes);
        const Answers answers = launchAndCallEverything();
        ASSERT_TRUE(answers.end.isClean()) << ::testing::PrintToString(answers.end);
        if (answers.result == 0) {
            EXPECT_TRUE(isWithin(answers.reads, {0, 7, 8})) << ::testing::PrintToString(answers.reads);
            EXPECT_TRUE(isWithin(answers.removals, {0, 7, 8, 9})) << ::testing::PrintToString(answers.removals);
            EXPECT_TRUE(isWithin(answers.writes, {0, 7, 8, 9, 11})) << ::testing::PrintToString(answers.writes);
            ++passed;
        } else {
            EXPECT_TRUE(replacements.count(answers.result)) << answers.result;
            expectUnusable(answers);
            EXPECT_TRUE(isSound());
            EXPECT_TRUE(contentsOf().empty());
            ++replaced;
        }
    }

    void printFigures(const std::string &what) const
    {
        figure(what, passed + replaced);
        figure("damaged files replaced at launch", replaced);
        figure("damaged files that passed the checks", passed);
    }

    Directory directory;
    std::string good;
    Contents contents;
    int passed = 0;
    int replaced = 0;
};

// ---- Bytes ----

size_t pageSize(const std::string &bytes)
{
    return static_cast<size_t>(static_cast<unsigned char>(bytes[16]) * 256 + static_cast<unsigned char>(bytes[17]));
}

class DamagedPage : public Damage, public ::testing::WithParamInterface<const char *>
{
protected:
    std::string page(std::minstd_rand &random, size_t size) const
    {
        const std::string how = GetParam();
        if (how == "Zeros")
            return std::string(size, '\0');
        if (how == "Ones")
            return std::string(size, '\xff');
        if (how == "AnotherPage")
            return good.substr(random() % (good.size() / size) * size, size);
        std::string bytes(size, '\0');
        std::generate(bytes.begin(), bytes.end(), [&] { return static_cast<char>(random() % 256); });
        return bytes;
    }
};

TEST_P(DamagedPage, EachInItsTurn)
{
    const size_t size = pageSize(good);
    ASSERT_EQ(good.size() % size, 0u);
    std::minstd_rand random(seed());
    for (size_t at = 0; at < good.size() && !HasFailure(); at += size) {
        SCOPED_TRACE("page " + std::to_string(at / size + 1));
        std::string bytes = good;
        bytes.replace(at, size, page(random, size));
        expectAnswers(bytes);
    }
    printFigures("pages overwritten");
}

INSTANTIATE_TEST_SUITE_P(Damage, DamagedPage, ::testing::Values("Zeros", "Ones", "Random", "AnotherPage"),
                         [](const ::testing::TestParamInfo<const char *> &test) { return test.param; });

TEST_F(Damage, SingleBytes)
{
    std::minstd_rand random(seed());
    const int flips = scaled(150);
    for (int flip = 0; flip < flips && !HasFailure(); ++flip) {
        // Half of them in the head of a page, where its structure lies.
        const size_t anywhere = random() % good.size();
        const size_t at = flip % 2 ? anywhere : anywhere / pageSize(good) * pageSize(good) + random() % 100;
        SCOPED_TRACE("byte " + std::to_string(at));
        std::string bytes = good;
        bytes[at] = static_cast<char>(bytes[at] ^ static_cast<char>(1 + random() % 255));
        expectAnswers(bytes);
    }
    printFigures("bytes changed");
}

TEST_F(Damage, EveryLength)
{
    const size_t step = isLongForm() ? 256 : 2048;
    for (size_t length = 0; length < good.size() && !HasFailure(); length += step) {
        SCOPED_TRACE("length " + std::to_string(length));
        expectAnswers(good.substr(0, length));
    }
    printFigures("truncations");
}

TEST_F(Damage, OtherBytesAltogether)
{
    std::minstd_rand random(seed());
    std::string noise(100000, '\0');
    std::generate(noise.begin(), noise.end(), [&] { return static_cast<char>(random() % 256); });
    const std::string header = good.substr(0, 100);
    for (const std::string &bytes : {std::string(), std::string("\0", 1), std::string(4096, '\0'), noise,
                                     std::string("no database"), header, header + noise, noise + good})
        expectAnswers(bytes);
    EXPECT_EQ(replaced, 8);
    printFigures("files of other bytes");
}

// ---- What is no plain file ----

TEST_F(Damage, ADirectoryStays)
{
    fs::remove("CacheDb");
    fs::create_directory("CacheDb");
    writeBytes("CacheDb/file", "something");
    const Answers answers = launchAndCallEverything();
    EXPECT_TRUE(answers.end.isClean());
    EXPECT_EQ(answers.result, 6);
    expectUnusable(answers);
    EXPECT_EQ(bytesOf("CacheDb/file"), "something");
    figure("special files", 1);
}

TEST_F(Damage, AFifoIsReplaced)
{
    fs::remove("CacheDb");
    ASSERT_EQ(mkfifo("CacheDb", 0600), 0);
    const Answers answers = launchAndCallEverything();
    EXPECT_TRUE(answers.end.isClean());
    EXPECT_TRUE(replacements.count(answers.result)) << answers.result;
    expectUnusable(answers);
    EXPECT_TRUE(fs::is_regular_file(fs::symlink_status("CacheDb")));
    figure("special files", 1);
}

TEST_F(Damage, ADanglingLinkIsReplaced)
{
    fs::remove("CacheDb");
    fs::create_symlink("nothing", "CacheDb");
    const Answers answers = launchAndCallEverything();
    EXPECT_TRUE(answers.end.isClean());
    EXPECT_EQ(answers.result, 103);
    expectUnusable(answers);
    EXPECT_TRUE(fs::is_regular_file(fs::symlink_status("CacheDb")));
    figure("special files", 1);
}

TEST_F(Damage, ALinkToAGoodFileServes)
{
    fs::rename("CacheDb", "Good");
    fs::create_symlink("Good", "CacheDb");
    const Answers answers = launchAndCallEverything();
    EXPECT_TRUE(answers.end.isClean());
    EXPECT_EQ(answers.result, 0);
    EXPECT_EQ(answers.reads, std::set<int64_t>{0});
    EXPECT_TRUE(fs::is_symlink("CacheDb"));
    EXPECT_TRUE(isSound("Good"));
    EXPECT_NE(contentsOf("Good"), contents);
    figure("special files", 1);
}

// The link is replaced; what it led to is left alone, to the byte.
TEST_F(Damage, ALinkToAForeignFileLeavesItAsItIs)
{
    fs::remove("CacheDb");
    File("Other").execute("CREATE TABLE Notes (Text); INSERT INTO Notes VALUES ('keep')");
    for (const std::string &bytes :
         {bytesOf("Other"), std::string("no database"), std::string(), good.substr(0, 5000)}) {
        writeBytes("Foreign", bytes);
        fs::remove("CacheDb");
        fs::create_symlink("Foreign", "CacheDb");
        const Answers answers = launchAndCallEverything();
        EXPECT_TRUE(answers.end.isClean());
        EXPECT_EQ(answers.result, 103);
        expectUnusable(answers);
        EXPECT_EQ(bytesOf("Foreign"), bytes);
        EXPECT_FALSE(fs::is_symlink("CacheDb"));
        figure("special files", 1);
    }
}

// ---- Where nothing may be written, and where the way changes ----

// Gives up the rights of a user who may do everything.
void becomeNobody()
{
    if (geteuid() == 0 && (setgid(65534) != 0 || setuid(65534) != 0))
        _exit(99);
}

TEST_F(Damage, AReadOnlyDirectoryServesReads)
{
    fs::permissions("CacheDb", fs::perms(0444));
    fs::permissions(directory.path(), fs::perms(0555));
    const Answers answers = launchAndCallEverything(becomeNobody);
    fs::permissions(directory.path(), fs::perms(0755));
    EXPECT_TRUE(answers.end.isClean());
    EXPECT_EQ(answers.result, 0);
    EXPECT_EQ(answers.reads, std::set<int64_t>{0});
    EXPECT_EQ(answers.removals, std::set<int64_t>{9});
    EXPECT_TRUE(isWithin(answers.writes, {8, 9}));
    EXPECT_EQ(bytesOf("CacheDb"), good);
    figure("special files", 1);
}

TEST_F(Damage, AReadOnlyDirectoryWithoutAFileResultsIn6)
{
    fs::remove("CacheDb");
    fs::permissions(directory.path(), fs::perms(0555));
    const Answers answers = launchAndCallEverything(becomeNobody);
    fs::permissions(directory.path(), fs::perms(0755));
    EXPECT_TRUE(answers.end.isClean());
    EXPECT_EQ(answers.result, 6);
    expectUnusable(answers);
    EXPECT_FALSE(fs::exists("CacheDb"));
    figure("special files", 1);
}

// The launch result reports a replacement that did not happen, and reads of a file of another version work.
TEST_F(Damage, AReadOnlyDirectoryKeepsAFileThatFailsItsChecks)
{
    File().execute("UPDATE Version SET VersionNumber = '0.2'");
    for (const auto &[bytes, reads] : {std::pair(std::string("no database"), std::set<int64_t>{7}),
                                       std::pair(bytesOf("CacheDb"), std::set<int64_t>{0})}) {
        writeBytes("CacheDb", bytes);
        fs::permissions("CacheDb", fs::perms(0666));
        fs::permissions(directory.path(), fs::perms(0555));
        const Answers answers = launchAndCallEverything(becomeNobody);
        fs::permissions(directory.path(), fs::perms(0755));
        EXPECT_TRUE(answers.end.isClean());
        EXPECT_EQ(answers.result, 103);
        EXPECT_EQ(answers.reads, reads);
        EXPECT_EQ(bytesOf("CacheDb"), bytes);
    }
}

TEST_F(Damage, AnotherWorkingDirectoryAfterTheLaunchChangesNothing)
{
    fs::create_directory("elsewhere");
    Child child([](Channel &channel) {
        const DebugLines lines;
        Library library;
        fs::current_path("elsewhere");
        for (const Step &step : writes())
            channel.tell(step.call());
        library.exit();
    });
    for (const Step &step : writes())
        EXPECT_EQ(child.hear(), 0) << step.name;
    EXPECT_TRUE(child.wait().isClean());
    EXPECT_TRUE(fs::is_empty("elsewhere"));
    EXPECT_FALSE(fs::exists("CacheDb-journal"));
    EXPECT_TRUE(isSound());
    EXPECT_EQ(launchResult(), 0);
}

// ---- What else costs a good file ----

// Leaves this process one descriptor that it can open. Qt's event loop takes it, and none is left for the file.
void leaveOneDescriptor()
{
    const rlimit few{64, 64};
    if (setrlimit(RLIMIT_NOFILE, &few) != 0)
        _exit(99);
    int last = -1;
    for (int next = ::dup(STDERR_FILENO); next >= 0; next = ::dup(STDERR_FILENO))
        last = next;
    ::close(last);
}

TEST_F(Damage, WithoutAFreeDescriptorALaunchRemovesAGoodFile)
{
    if (isSanitized)
        GTEST_SKIP() << "a sanitizer needs file descriptors itself";
    const Answers answers = launchAndCallEverything(leaveOneDescriptor);
    EXPECT_TRUE(answers.end.isClean());
    EXPECT_EQ(answers.result, 6);
    expectUnusable(answers);
    EXPECT_FALSE(fs::exists("CacheDb"));
}

TEST_F(Damage, WithoutTheSqlDriverALaunchRemovesAGoodFile)
{
    const Answers answers = launchAndCallEverything([] { QCoreApplication::setLibraryPaths({}); });
    EXPECT_TRUE(answers.end.isClean());
    EXPECT_EQ(answers.result, 6);
    expectUnusable(answers);
    EXPECT_FALSE(fs::exists("CacheDb"));
}

class UnopenableJournal : public Damage
{
protected:
    void expectReplaced()
    {
        fs::permissions("CacheDb", fs::perms(0666));
        fs::permissions(directory.path(), fs::perms(0777));
        const Answers answers = launchAndCallEverything(becomeNobody);
        EXPECT_TRUE(answers.end.isClean());
        EXPECT_EQ(answers.result, 103);
        expectUnusable(answers);
        EXPECT_TRUE(contentsOf().empty());
    }
};

TEST_F(UnopenableJournal, AsADirectoryCostsAGoodFile)
{
    fs::create_directory("CacheDb-journal");
    expectReplaced();
}

TEST_F(UnopenableJournal, AsALinkCostsAGoodFile)
{
    writeBytes("Other", "something");
    fs::create_symlink("Other", "CacheDb-journal");
    expectReplaced();
    EXPECT_EQ(bytesOf("Other"), "something");
}

TEST_F(UnopenableJournal, ThatMayNotBeReadCostsAGoodFile)
{
    writeBytes("CacheDb-journal", "something");
    fs::permissions("CacheDb-journal", fs::perms::none);
    expectReplaced();
}

// ---- Who may read ----

// Launches and writes in a child with that umask. Gives the permissions of the file and of its journal.
std::pair<fs::perms, fs::perms> permissionsUnder(mode_t mask)
{
    Child child([=](Channel &) {
        umask(mask);
        const DebugLines lines;
        Library library;
        armFault(FAULT_KILL, FAULT_UNLINK, 1); // while the journal exists
        clearAll();
        send(setServerIp, "10.0.0.1");
    });
    EXPECT_FALSE(child.wait().isClean());
    return {fs::status("CacheDb").permissions(), fs::status("CacheDb-journal").permissions()};
}

TEST_F(Damage, ANewFileHasThePermissionsThatTheUmaskLeaves)
{
    for (const auto &[mask, expected] : {std::pair(022u, 0644u), std::pair(077u, 0600u)}) {
        fs::remove("CacheDb");
        fs::remove("CacheDb-journal");
        const auto [file, journal] = permissionsUnder(static_cast<mode_t>(mask));
        EXPECT_EQ(static_cast<unsigned>(file), expected);
        EXPECT_EQ(static_cast<unsigned>(journal), expected);
    }
}

TEST_F(Damage, AFileKeepsItsPermissionsAndPassesThemToItsJournal)
{
    fs::permissions("CacheDb", fs::perms(0600));
    const auto [file, journal] = permissionsUnder(022);
    EXPECT_EQ(static_cast<unsigned>(file), 0600u);
    EXPECT_EQ(static_cast<unsigned>(journal), 0600u);
}

// ---- Journals ----

class StaleJournal : public Damage
{
protected:
    // Dies when everything is written and only the journal's removal is left.
    StaleJournal()
    {
        Child child([](Channel &) {
            const DebugLines lines;
            Library library;
            armFault(FAULT_KILL, FAULT_UNLINK, 1);
            clearAll();
        });
        EXPECT_FALSE(child.wait().isClean());
        EXPECT_TRUE(fs::exists("CacheDb-journal"));
    }
};

TEST_F(StaleJournal, BesideItsFileBringsTheStoreBack)
{
    EXPECT_EQ(launchResult(), 0);
    EXPECT_TRUE(isSound());
    EXPECT_EQ(contentsOf(), contents);
    figure("stale journals", 1);
}

TEST_F(StaleJournal, BesideARemovedFileIsIgnored)
{
    fs::remove("CacheDb");
    EXPECT_EQ(launchResult(), 100);
    EXPECT_TRUE(isSound());
    EXPECT_EQ(contentsOf().at("Users"), std::vector<Row>());
    EXPECT_FALSE(fs::exists("CacheDb-journal"));
    figure("stale journals", 1);
}

// A journal does not say which file it belongs to: its pages are written into the present file.
TEST_F(StaleJournal, BesideAnotherFileIsPlayedIntoIt)
{
    fs::rename("CacheDb-journal", "Journal");
    fs::remove("CacheDb");
    ASSERT_EQ(launchResult(), 100);
    fs::rename("Journal", "CacheDb-journal");
    const Answers answers = launchAndCallEverything();
    EXPECT_TRUE(answers.end.isClean());
    EXPECT_TRUE(answers.result == 0 || replacements.count(answers.result)) << answers.result;
    figure("stale journals", 1);
}

// A FIFO can be opened for writing without a wait only while somebody has it open, or waits to open it, for reading.
TEST_F(Damage, ALaunchWaitsAtAJournalThatIsAFifo)
{
    ASSERT_EQ(mkfifo("CacheDb-journal", 0600), 0);
    Child child([](Channel &channel) {
        const DebugLines lines;
        std::thread launcher(launchCache);
        int writer = -1;
        while (writer < 0 && getState() == BRIMLET_STATE_NONE)
            writer = ::open("CacheDb-journal", O_WRONLY | O_NONBLOCK);
        channel.tell(writer >= 0);
        _exit(0);
    });
    EXPECT_EQ(child.hear(), 1);
    EXPECT_TRUE(child.wait().isClean());
}

std::string bigEndian(uint32_t number)
{
    std::string bytes;
    for (const int shift : {24, 16, 8, 0})
        bytes += static_cast<char>(number >> shift & 0xFF);
    return bytes;
}

// A rollback journal without pages, as one of the several files of a transaction has it: it ends in the name of the
// super-journal, which is removed when the rollback is done.
std::string journalThatNames(const std::string &path, size_t pages, size_t pageSize)
{
    constexpr size_t sectorSize = 512;
    constexpr size_t lockByte = 0x40000000;
    const std::string magic = "\xd9\xd5\x05\xf9\x20\xa1\x63\xd7";
    const auto number = [](size_t value) { return bigEndian(static_cast<uint32_t>(value)); };
    const size_t sum = std::accumulate(path.begin(), path.end(), size_t{0}, [](size_t total, char byte) {
        return total + static_cast<unsigned char>(byte);
    });
    std::string journal = magic + number(0) + number(0) + number(pages) + number(sectorSize) + number(pageSize);
    journal.resize(sectorSize, '\0');
    return journal + number(lockByte / pageSize + 1) + path + number(path.size()) + number(sum) + magic;
}

TEST_F(Damage, AJournalRemovesTheFileThatItNames)
{
    const Directory elsewhere;
    const std::string other = elsewhere.path() + "/file";
    writeBytes(other, "something");
    fs::current_path(directory.path());
    writeBytes("CacheDb-journal", journalThatNames(other, good.size() / pageSize(good), pageSize(good)));
    EXPECT_EQ(launchResult(), 0);
    EXPECT_FALSE(fs::exists(other));
    EXPECT_EQ(contentsOf(), contents);
}

// ---- Crafted files ----

class CraftedFile : public Damage
{
protected:
    void craft(const std::string &sql) { File().execute(sql); }
};

TEST_F(CraftedFile, ViewsUnderTheNamesOfTablesAreReadAndNotWritten)
{
    std::string sql;
    for (const auto &[table, rows] : contents)
        if (table != "Version")
            sql += "ALTER TABLE " + table + " RENAME TO Data" + table + "; CREATE VIEW " + table
                 + " AS SELECT * FROM Data" + table + ";";
    craft(sql);
    const Answers answers = launchAndCallEverything();
    EXPECT_TRUE(answers.end.isClean());
    EXPECT_EQ(answers.result, 0);
    EXPECT_EQ(answers.reads, std::set<int64_t>{0});
    EXPECT_EQ(answers.removals, std::set<int64_t>{9});
    EXPECT_EQ(answers.writes, std::set<int64_t>{9});
    EXPECT_TRUE(isSound());
    figure("crafted files", 1);
}

TEST_F(CraftedFile, TriggersThatRefuseMakeWritesFail)
{
    std::string sql;
    for (const auto &[table, rows] : contents)
        for (const char *action : {"INSERT", "UPDATE", "DELETE"})
            sql += std::string("CREATE TRIGGER ") + action + table + " BEFORE " + action + " ON " + table
                 + " BEGIN SELECT RAISE(ABORT, 'no'); END;";
    craft(sql);
    const Answers answers = launchAndCallEverything();
    EXPECT_TRUE(answers.end.isClean());
    EXPECT_EQ(answers.result, 0);
    EXPECT_EQ(answers.reads, std::set<int64_t>{0});
    EXPECT_EQ(answers.removals, std::set<int64_t>{9});
    EXPECT_EQ(contentsOf(), contents);
    figure("crafted files", 1);
}

// A launch takes a small part of the processor's time that it is given here.
TEST_F(CraftedFile, AnEndlessViewKeepsALaunchFromItsEnd)
{
    craft("DROP TABLE Version; CREATE VIEW Version AS WITH RECURSIVE Numbers (N) AS"
          " (SELECT 1 UNION ALL SELECT N + 1 FROM Numbers) SELECT N AS VersionId, '0.1' AS VersionNumber FROM Numbers");
    Child child([](Channel &channel) {
        const rlimit seconds{2, 3};
        setrlimit(RLIMIT_CPU, &seconds);
        const DebugLines lines;
        const Library library;
        channel.tell(getLaunchCacheResult());
    });
    EXPECT_FALSE(child.hear());
    EXPECT_EQ(child.wait().signal, SIGXCPU);
}

// A trigger does what its author wants with the file, and nothing else.
TEST_F(CraftedFile, TriggersThatWriteAreObeyed)
{
    craft("CREATE TRIGGER Sweep AFTER INSERT ON Users BEGIN DELETE FROM Locales; END");
    const Answers answers = launchAndCallEverything();
    EXPECT_TRUE(answers.end.isClean());
    EXPECT_EQ(answers.result, 0);
    EXPECT_EQ(answers.reads, std::set<int64_t>{0});
    EXPECT_TRUE(contentsOf().at("Locales").empty());
    EXPECT_TRUE(isSound());
    figure("crafted files", 1);
}

TEST_F(CraftedFile, ValuesOfOtherTypesAreReadAsWhatTheyCanBe)
{
    for (const char *value :
         {"'text'", "x'00ff00'", "1e300", "-1", "NULL", "9223372036854775807", "zeroblob(100000)"}) {
        writeBytes("CacheDb", good);
        std::string sql;
        for (const auto &[table, rows] : contents) {
            if (table == "Version")
                continue;
            sql += "UPDATE " + table + " SET ";
            const std::vector<Row> columns =
                File().rows("SELECT name FROM pragma_table_info('" + table + "') WHERE pk = 0");
            if (columns.empty()) { // a table of keys only
                sql.resize(sql.rfind("UPDATE"));
                continue;
            }
            for (const Row &column : columns)
                sql += column[0].value() + " = " + value + (&column == &columns.back() ? ";" : ",");
        }
        craft(sql);
        const Answers answers = launchAndCallEverything();
        EXPECT_TRUE(answers.end.isClean()) << value;
        EXPECT_EQ(answers.result, 0) << value;
        EXPECT_TRUE(isWithin(answers.reads, {0, 8})) << value;
        EXPECT_TRUE(isSound());
        figure("crafted files", 1);
    }
}

TEST_F(CraftedFile, OtherSettingsOfSqliteServe)
{
    for (const char *settings :
         {"PRAGMA page_size = 512; VACUUM", "PRAGMA page_size = 65536; VACUUM", "PRAGMA auto_vacuum = FULL; VACUUM",
          "PRAGMA journal_mode = WAL", "PRAGMA user_version = 77; PRAGMA application_id = 88",
          "CREATE TABLE Notes (Text)", "CREATE INDEX Extra ON Users (UsersName)"}) {
        writeBytes("CacheDb", good);
        craft(settings);
        const Answers answers = launchAndCallEverything();
        EXPECT_TRUE(answers.end.isClean()) << settings;
        EXPECT_EQ(answers.result, 0) << settings;
        EXPECT_EQ(answers.reads, std::set<int64_t>{0}) << settings;
        EXPECT_TRUE(isSound());
        figure("crafted files", 1);
    }
}

TEST_F(CraftedFile, ASchemaThatCannotBeReadIsReplaced)
{
    craft("PRAGMA writable_schema = ON; UPDATE sqlite_master SET sql = 'CREATE TABLE Users (' WHERE name = 'Users'");
    const Answers answers = launchAndCallEverything();
    EXPECT_TRUE(answers.end.isClean());
    EXPECT_EQ(answers.result, 103);
    expectUnusable(answers);
    figure("crafted files", 1);
}

} // namespace
