// The one text that the library remembers for the client.
#include "Store.h"

#include <vector>

namespace {

using namespace brimlet::test;

uint32_t set(const std::string &address)
{
    return send(setServerIp, address);
}

class ServerAddress : public StoreTest
{
protected:
    // The remembered address; nothing when there is none.
    static std::optional<std::string> address()
    {
        uint16_t *out = nullptr;
        EXPECT_EQ(getServerIp(&out), 0u);
        const Owned<uint16_t> text(out);
        return utf8(out);
    }
    std::vector<Row> rows() const { return file.rows("SELECT * FROM Session"); }
};

TEST_F(ServerAddress, TableIsCreatedAsItIs)
{
    EXPECT_EQ(file.value("SELECT sql FROM sqlite_master WHERE type = 'table' AND name = 'Session'"),
              "CREATE TABLE Session (SessionId INTEGER PRIMARY KEY,SessionIp VARCHAR(255))");
}

TEST_F(ServerAddress, IsNoneInAFreshFile)
{
    const DebugLines lines;
    uint16_t *out = nullptr;
    EXPECT_EQ(getServerIp(&out), 0u);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(rows(), std::vector<Row>());
    EXPECT_EQ(lines.all(), std::vector<std::string>());
}

TEST_F(ServerAddress, IsKeptInOneRow)
{
    const DebugLines lines;
    EXPECT_EQ(set("192.168.1.1:8080"), 0u);
    EXPECT_EQ(file.rows("SELECT SessionId, typeof(SessionId), SessionIp, typeof(SessionIp) FROM Session"),
              (std::vector<Row>{{"0", "integer", "192.168.1.1:8080", "text"}}));
    EXPECT_EQ(address(), "192.168.1.1:8080");
    EXPECT_EQ(lines.all(), std::vector<std::string>());
}

TEST_F(ServerAddress, IsReplacedByTheNext)
{
    EXPECT_EQ(set("first"), 0u);
    EXPECT_EQ(set("second"), 0u);
    EXPECT_EQ(rows(), (std::vector<Row>{{"0", "second"}}));
    EXPECT_EQ(address(), "second");
}

TEST_F(ServerAddress, CanBeReadAgainAndAgain)
{
    EXPECT_EQ(set("a"), 0u);
    EXPECT_EQ(address(), "a");
    EXPECT_EQ(address(), "a");
}

TEST_F(ServerAddress, IsNoneWhenItIsEmpty)
{
    EXPECT_EQ(set("a"), 0u);
    EXPECT_EQ(set(""), 0u);
    EXPECT_EQ(file.rows("SELECT SessionId, SessionIp, typeof(SessionIp) FROM Session"),
              (std::vector<Row>{{"0", "", "text"}}));
    uint16_t *out = nullptr;
    EXPECT_EQ(getServerIp(&out), 0u);
    EXPECT_EQ(out, nullptr);
}

TEST_F(ServerAddress, IsNoneAfterANullPointer)
{
    EXPECT_EQ(set("a"), 0u);
    EXPECT_EQ(setServerIp(nullptr, 0), 0u);
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Session"), 1);
    EXPECT_EQ(address(), std::nullopt);
    EXPECT_EQ(set("a"), 0u);
    EXPECT_EQ(setServerIp(nullptr, 5), 0u);
    EXPECT_EQ(address(), std::nullopt);
}

TEST_F(ServerAddress, MayBeAnyText)
{
    for (const std::string text : {" ",
                                   "  a  ",
                                   "not an address",
                                   "{}",
                                   R"({"D":{"ip":"1.2.3.4"}})",
                                   R"("quoted")",
                                   "'",
                                   "''",
                                   "\"",
                                   "\\",
                                   "%1",
                                   "%2%1",
                                   "?",
                                   ":1",
                                   "NULL",
                                   "0",
                                   "1.5",
                                   "'); DROP TABLE Session; --",
                                   "a\nb\tc",
                                   "http://x/y?z=%20",
                                   "\u0441\u0435\u0440\u0432\u0435\u0440",
                                   "\u4E2D",
                                   "\U0001F600\U0010FFFF",
                                   "a\uFEFFb"}) {
        SCOPED_TRACE(text);
        EXPECT_EQ(set(text), 0u);
        EXPECT_EQ(rows(), (std::vector<Row>{{"0", text}}));
        EXPECT_EQ(address(), text);
    }
}

TEST_F(ServerAddress, MayBeLong)
{
    std::string text;
    for (int repeat = 0; repeat < 100000; ++repeat)
        text += "\u0436x";
    EXPECT_EQ(set(text), 0u);
    EXPECT_TRUE(file.value("SELECT SessionIp FROM Session") == text);
    EXPECT_TRUE(address() == text);
}

TEST_F(ServerAddress, EndsAtTheGivenLength)
{
    const std::u16string text = u"abcdef";
    EXPECT_EQ(setServerIp(reinterpret_cast<const uint16_t *>(text.data()), 3), 0u);
    EXPECT_EQ(rows(), (std::vector<Row>{{"0", "abc"}}));
    EXPECT_EQ(address(), "abc");
}

TEST_F(ServerAddress, MayHoldANul)
{
    EXPECT_EQ(set(std::string("a\0b", 3)), 0u);
    EXPECT_EQ(file.value("SELECT SessionIp FROM Session"), std::string("a\0b", 3));
    uint16_t *out = nullptr;
    EXPECT_EQ(getServerIp(&out), 0u);
    const Owned<uint16_t> text(out);
    ASSERT_NE(out, nullptr);
    EXPECT_EQ(std::vector<uint16_t>(out, out + 4), (std::vector<uint16_t>{'a', 0, 'b', 0}));
}

TEST_F(ServerAddress, IsNotEmptyWhenItIsANul)
{
    EXPECT_EQ(set(std::string(1, '\0')), 0u);
    uint16_t *out = nullptr;
    EXPECT_EQ(getServerIp(&out), 0u);
    const Owned<uint16_t> text(out);
    ASSERT_NE(out, nullptr);
    EXPECT_EQ(std::vector<uint16_t>(out, out + 2), (std::vector<uint16_t>{0, 0}));
}

// As in every text argument, a byte order mark selects the byte order and is not part of the text.
TEST_F(ServerAddress, LosesALeadingByteOrderMark)
{
    EXPECT_EQ(set("\uFEFFa"), 0u);
    EXPECT_EQ(rows(), (std::vector<Row>{{"0", "a"}}));
    EXPECT_EQ(address(), "a");
}

TEST_F(ServerAddress, SurvivesALaunch)
{
    EXPECT_EQ(set("a"), 0u);
    relaunch();
    EXPECT_EQ(address(), "a");
}

TEST_F(ServerAddress, SurvivesEveryClearing)
{
    EXPECT_EQ(set("a"), 0u);
    EXPECT_EQ(clearAllExceptEvents(), 0u);
    EXPECT_EQ(address(), "a");
    EXPECT_EQ(clearAll(), 0u);
    EXPECT_EQ(address(), "a");
    EXPECT_EQ(clearEventsBeforeDateExceptAffects(UINT32_MAX), 0u);
    EXPECT_EQ(address(), "a");
}

TEST_F(ServerAddress, IsNotReadIntoATargetThatIsNotNull)
{
    EXPECT_EQ(set("a"), 0u);
    uint16_t own[2] = {'x', 0};
    uint16_t *out = own;
    EXPECT_EQ(getServerIp(&out), 10u);
    foreign("DROP TABLE Session");
    const DebugLines lines;
    EXPECT_EQ(getServerIp(&out), 10u);
    EXPECT_EQ(lines.all(), std::vector<std::string>());
    library.reset();
    EXPECT_EQ(getServerIp(&out), 10u);
    EXPECT_EQ(out, own);
    EXPECT_EQ(own[0], u'x');
}

TEST_F(ServerAddress, CannotBeReadWithoutTheTable)
{
    foreign("DROP TABLE Session");
    const DebugLines lines;
    uint16_t *out = nullptr;
    EXPECT_EQ(getServerIp(&out), 7u);
    EXPECT_EQ(out, nullptr);
    EXPECT_TRUE(isFailure(lines.all(), "get ip error"));
}

TEST_F(ServerAddress, CannotBeWrittenWithoutTheTable)
{
    foreign("DROP TABLE Session");
    const DebugLines lines;
    EXPECT_EQ(set("a"), 9u);
    EXPECT_TRUE(isFailure(lines.all(), "set ip error"));
}

TEST_F(ServerAddress, StaysWhenTheNextCannotBeWritten)
{
    EXPECT_EQ(set("first"), 0u);
    refuse("INSERT", "Session");
    const DebugLines lines;
    EXPECT_EQ(set("second"), 9u);
    EXPECT_TRUE(isFailure(lines.all(), "set ip error"));
    EXPECT_NE(lines.all().at(1).find("refused"), std::string::npos);
    EXPECT_EQ(rows(), (std::vector<Row>{{"0", "first"}}));
    EXPECT_EQ(address(), "first");
    foreign("DROP TRIGGER RefuseINSERTSession");
    EXPECT_EQ(set("second"), 0u);
    EXPECT_EQ(address(), "second");
}

// Nothing at launch names the address column, so a table without it is not noticed before the first write.
TEST_F(ServerAddress, IsNoneWithoutItsColumn)
{
    foreign("DROP TABLE Session");
    foreign("CREATE TABLE Session (SessionId INTEGER PRIMARY KEY)");
    relaunch();
    EXPECT_EQ(getLaunchCacheResult(), 0u);
    EXPECT_EQ(address(), std::nullopt);
    foreign("INSERT INTO Session VALUES(0)");
    EXPECT_EQ(address(), std::nullopt);
    const DebugLines lines;
    EXPECT_EQ(set("a"), 9u);
    EXPECT_TRUE(isFailure(lines.all(), "set ip error"));
    EXPECT_EQ(rows(), (std::vector<Row>{{"0"}}));
}

TEST_F(ServerAddress, IsNoneWhenItIsNull)
{
    foreign("INSERT INTO Session VALUES(0,NULL)");
    EXPECT_EQ(address(), std::nullopt);
}

TEST_F(ServerAddress, IsTakenFromTheFirstRow)
{
    foreign("INSERT INTO Session VALUES(5,'last')");
    EXPECT_EQ(address(), "last");
    EXPECT_EQ(set("own"), 0u);
    EXPECT_EQ(rows(), (std::vector<Row>{{"0", "own"}, {"5", "last"}}));
    EXPECT_EQ(address(), "own");
    foreign("INSERT INTO Session VALUES(-5,'first')");
    EXPECT_EQ(address(), "first");
    EXPECT_EQ(set("next"), 0u);
    EXPECT_EQ(rows(), (std::vector<Row>{{"-5", "first"}, {"0", "next"}, {"5", "last"}}));
    EXPECT_EQ(address(), "first");
}

TEST_F(ServerAddress, IsFoundByTheNameOfItsColumn)
{
    foreign("DROP TABLE Session");
    foreign("CREATE TABLE Session (Extra TEXT,SessionIp VARCHAR(255),Other INTEGER,SessionId INTEGER PRIMARY KEY)");
    foreign("INSERT INTO Session VALUES('e','old',7,3)");
    EXPECT_EQ(address(), "old");
    foreign("DELETE FROM Session");
    EXPECT_EQ(set("new"), 0u);
    EXPECT_EQ(file.rows("SELECT Extra, SessionIp, Other, SessionId FROM Session"),
              (std::vector<Row>{{std::nullopt, "new", std::nullopt, "0"}}));
    EXPECT_EQ(address(), "new");
}

TEST_F(ServerAddress, IsAllThatItsTableHolds)
{
    EXPECT_EQ(set("a"), 0u);
    EXPECT_EQ(send(addUsers, R"({"D":{"items":[{"id":1}]}})"), 0u);
    EXPECT_EQ(list(getUsers).code, 0u);
    EXPECT_EQ(rows(), (std::vector<Row>{{"0", "a"}}));
}

} // namespace
