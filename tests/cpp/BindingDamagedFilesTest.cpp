// What a session keeps of a file that its launch replaces.
#include "Store.h"
#include "brimlet.hpp"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <set>
#include <string>

namespace {

namespace fs = std::filesystem;
using namespace brimlet;
using brimlet::test::Directory;
using brimlet::test::File;
using Names = std::set<std::string>;

const std::string noDatabase(5000, 'x');

void write(const fs::path &file, const std::string &content)
{
    std::ofstream(file, std::ios::binary | std::ios::trunc) << content;
}

std::string read(const fs::path &file)
{
    std::ifstream stream(file, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(stream), {});
}

LaunchOptions keeping(unsigned count)
{
    LaunchOptions options;
    options.keepDamaged = count;
    return options;
}

class BindingDamagedFiles : public ::testing::Test
{
protected:
    BindingDamagedFiles() { fs::create_directory("cache"); }

    // What lies in the sessions' directory beside the store itself.
    static Names others()
    {
        Names names;
        for (const auto &entry : fs::directory_iterator("cache"))
            names.insert(entry.path().filename().string());
        names.erase("CacheDb");
        return names;
    }

    Directory directory; // the working directory; the sessions' own lies in it
};

class BindingDamagedFilesOf : public BindingDamagedFiles, public ::testing::WithParamInterface<bool>
{
};

TEST_P(BindingDamagedFilesOf, ALaunchHaveTheTimeInTheirName)
{
    write("cache/CacheDb", noDatabase);
    LaunchOptions options;
    options.recover = GetParam();
    const Session session("cache", options);
    EXPECT_EQ(session.report().first, LaunchResult::ReplacedVersion);
    EXPECT_EQ(session.report().second.has_value(), GetParam());

    const fs::path kept = session.report().kept.value();
    EXPECT_TRUE(kept.is_absolute());
    EXPECT_TRUE(fs::equivalent(kept.parent_path(), "cache"));
    const std::string name = kept.filename().string();
    std::string shape = name;
    std::replace_if(
        shape.begin(), shape.end(), [](char unit) { return unit >= '0' && unit <= '9'; }, '0');
    EXPECT_EQ(shape, "CacheDb.damaged-00000000T000000.000Z");
    EXPECT_EQ(read(kept), noDatabase);
    EXPECT_EQ(others(), Names{name});
}

INSTANTIATE_TEST_SUITE_P(Recovery, BindingDamagedFilesOf, ::testing::Bool());

TEST_F(BindingDamagedFiles, CanBeOpenedByTheirName)
{
    {
        Session session("cache");
        require(session.addUsers(R"({"D":{"items":[{"id":7},{"id":8}]}})"));
    }
    File("cache/CacheDb").execute("DROP TABLE Zones");
    const Session session("cache");
    EXPECT_EQ(session.report().first, LaunchResult::ReplacedSchema);
    EXPECT_EQ(File(session.report().kept.value().string()).number("SELECT count(*) FROM Users"), 2);
}

TEST_F(BindingDamagedFiles, TakeTheirJournalsAlong)
{
    write("cache/CacheDb", noDatabase);
    write("cache/CacheDb-journal", "journal");
    write("cache/CacheDb-wal", "log");
    const Session session("cache");
    const std::string kept = session.report().kept.value().string();
    EXPECT_EQ(read(kept), noDatabase);
    EXPECT_EQ(read(kept + "-journal"), "journal");
    EXPECT_EQ(read(kept + "-wal"), "log");
    EXPECT_EQ(others().count("CacheDb.before-launch-journal"), 0u);
    EXPECT_EQ(others().count("CacheDb.before-launch-wal"), 0u);
}

TEST_F(BindingDamagedFiles, AreTheNewestThreeAndOtherNamesStay)
{
    const Names foreign = {"CacheDb.damaged-", "CacheDb.damaged-20200101T000000.000Z.bak",
                           "CacheDb.damaged-2020010XT000000.000Z", "My.CacheDb.damaged-20200101T000000.000Z",
                           "CacheDb.damaged-20200101T000000.000Y"};
    Names names = foreign;
    for (const char day : {'1', '2', '3', '4'}) {
        const std::string name = std::string("CacheDb.damaged-2020010") + day + "T000000.000Z";
        names.insert({name, name + "-journal", name + "-wal"});
    }
    for (const std::string &name : names)
        write("cache/" + name, name);
    write("cache/CacheDb", noDatabase);

    const Session session("cache");
    Names expected = foreign;
    for (const char day : {'3', '4'}) {
        const std::string name = std::string("CacheDb.damaged-2020010") + day + "T000000.000Z";
        expected.insert({name, name + "-journal", name + "-wal"});
    }
    expected.insert(session.report().kept.value().filename().string());
    EXPECT_EQ(others(), expected);
}

TEST_F(BindingDamagedFiles, HoldTheLastOneEvenIfTheClockWasAhead)
{
    write("cache/CacheDb.damaged-29990101T000000.000Z", "");
    write("cache/CacheDb", noDatabase);
    const Session session("cache", keeping(1));
    EXPECT_EQ(others(), Names{session.report().kept.value().filename().string()});
    EXPECT_EQ(read(*session.report().kept), noDatabase);
}

TEST_F(BindingDamagedFiles, AreNotKeptIfNothingIsDamaged)
{
    for (const LaunchResult expected : {LaunchResult::Created, LaunchResult::Opened}) {
        const Session session("cache");
        EXPECT_EQ(session.report().first, expected);
        EXPECT_EQ(session.report().kept, std::nullopt);
    }
    EXPECT_EQ(others(), Names{});
}

TEST_F(BindingDamagedFiles, AreNeitherKeptNorRemovedWithACountOf0)
{
    const Names names = {"CacheDb.damaged-20200101T000000.000Z", "CacheDb.before-launch"};
    for (const std::string &name : names)
        write("cache/" + name, name);
    write("cache/CacheDb", noDatabase);
    const Session session("cache", keeping(0));
    EXPECT_EQ(session.report().second, LaunchResult::Created);
    EXPECT_EQ(session.report().kept, std::nullopt);
    EXPECT_EQ(others(), names);
    EXPECT_EQ(read("cache/CacheDb.before-launch"), "CacheDb.before-launch");
}

// Else three launches without recovery would push out the files that hold something.
TEST_F(BindingDamagedFiles, AreNotEmpty)
{
    write("cache/CacheDb", "");
    const Session session("cache");
    EXPECT_EQ(session.report().first, LaunchResult::ReplacedVersion);
    EXPECT_EQ(session.report().kept, std::nullopt);
    EXPECT_EQ(others(), Names{});
}

// ---- Files that remain from a process that died during its launch ----

TEST_F(BindingDamagedFiles, ASecondNameOfTheStoreIsRemoved)
{
    {
        const Session session("cache");
    }
    fs::create_hard_link("cache/CacheDb", "cache/CacheDb.before-launch");
    write("cache/CacheDb.before-launch-journal", "journal");
    EXPECT_EQ(Session("cache").report().first, LaunchResult::Opened);
    EXPECT_EQ(others(), Names{});
}

TEST_F(BindingDamagedFiles, AJournalWithoutItsFileIsRemoved)
{
    write("cache/CacheDb.before-launch-journal", "journal"); // the process died before its launch
    { const Session session("cache"); }
    EXPECT_EQ(others(), Names{});
}

class BindingDamagedFilesLeft : public BindingDamagedFiles, public ::testing::WithParamInterface<bool>
{
};

TEST_P(BindingDamagedFilesLeft, BehindAreKept)
{
    if (GetParam()) {
        const Session session("cache"); // what the launch has put in its place
    }
    write("cache/CacheDb.before-launch", noDatabase);
    write("cache/CacheDb.before-launch-journal", "journal");
    EXPECT_EQ(Session("cache").report().kept, std::nullopt); // this launch has replaced nothing
    const Names names = others();
    ASSERT_EQ(names.size(), 2u);
    const std::string kept = "cache/" + *names.begin();
    EXPECT_EQ(kept.rfind("cache/CacheDb.damaged-", 0), 0u) << kept;
    EXPECT_EQ(read(kept), noDatabase);
    EXPECT_EQ(read(kept + "-journal"), "journal");
}

INSTANTIATE_TEST_SUITE_P(StoreIsThere, BindingDamagedFilesLeft, ::testing::Bool());

TEST_F(BindingDamagedFiles, AreNotTouchedIfOthersHaveLaunched)
{
    write("cache/CacheDb.before-launch", noDatabase);
    test::Library library;
    EXPECT_THROW(Session("cache"), AlreadyLaunched);
    EXPECT_EQ(others(), Names{"CacheDb.before-launch"});
}

} // namespace
