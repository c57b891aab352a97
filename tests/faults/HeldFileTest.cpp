// Another process that holds the file, for less and for more than the five seconds that SQLite waits for it here. Few
// cases, since the long ones take their time.
#include "Child.h"
#include "Contents.h"
#include "Workload.h"

#include <chrono>
#include <sqlite3.h>

using namespace brimlet::test;

namespace {

// A process with its own connection: takes a lock with a statement, and releases it on request or when it exits.
class Holder
{
public:
    explicit Holder(const std::string &sql)
        : child([sql](Channel &channel) {
            sqlite3 *connection = nullptr;
            sqlite3_open("CacheDb", &connection);
            channel.tell(sqlite3_exec(connection, sql.c_str(), nullptr, nullptr, nullptr));
            const int64_t delay = channel.hear();
            std::this_thread::sleep_for(std::chrono::milliseconds(delay));
            channel.tell(sqlite3_exec(connection, "COMMIT", nullptr, nullptr, nullptr));
            channel.hear();
        })
    {
        EXPECT_EQ(child.hear(), SQLITE_OK);
        figure("locks of another process", 1);
    }

    // After so many milliseconds; does not wait for it.
    void releaseIn(int64_t delay) { child.tell(delay); }
    void release()
    {
        releaseIn(0);
        EXPECT_EQ(child.hear(), SQLITE_OK);
    }

private:
    Child child;
};

const char *const aReader = "BEGIN; SELECT * FROM Version";
const char *const aWriter = "BEGIN IMMEDIATE";
const char *const anOwner = "BEGIN EXCLUSIVE";

enum Order { AddUser, UpdateThatFails, ReadUsers, SetAddress, LinesOfFailure, Exit };

// Runs calls of a launched library in a child, one at a time, and returns their codes.
class Client
{
public:
    Client()
        : child([](Channel &channel) {
            DebugLines lines;
            auto library = std::make_unique<Library>();
            channel.tell(getLaunchCacheResult());
            for (int64_t order = channel.hear(); order != Exit; order = channel.hear())
                channel.tell(serve(order, lines));
            library.reset();
        })
    {
        launched = child.hear().value_or(-1);
    }

    // A client that holds nothing: a launch that found a good file leaves its last statement standing, and with it a
    // share of the file, until the next call.
    static std::unique_ptr<Client> idle()
    {
        auto client = std::make_unique<Client>();
        EXPECT_EQ(client->call(ReadUsers), 0);
        return client;
    }

    int64_t result() const { return launched; }
    int64_t call(Order order)
    {
        begin(order);
        return finish();
    }
    void begin(Order order) { child.tell(order); }
    int64_t finish() { return child.hear().value_or(-1); }
    void exit()
    {
        child.tell(Exit);
        EXPECT_TRUE(child.wait().isClean());
    }

private:
    static int64_t serve(int64_t order, DebugLines &lines)
    {
        if (order == LinesOfFailure)
            return isFailure(lines.all(), "set ip error") ? 1 : 0;
        lines.clear();
        switch (order) {
        case AddUser:
            return send(addUsers, R"({"D":{"items":[{"id":777,"name":"acknowledged"}]}})");
        case UpdateThatFails:
            return send(updateUser, std::make_unique<FlatUser *>().get(), R"({"D":{"id":13}})");
        case SetAddress:
            return send(setServerIp, "next");
        default:
            return list(getUsers).code;
        }
    }

    Child child;
    int64_t launched = -1;
};

class HeldFile : public ::testing::Test
{
protected:
    HeldFile() { makeFilledFile(); }

    int64_t storedUsers() const { return file.number("SELECT count(*) FROM Users WHERE UsersId = 777"); }
    // Another program's write, which waits for nobody.
    static int write()
    {
        sqlite3 *connection = nullptr;
        sqlite3_open("CacheDb", &connection);
        const int code = sqlite3_exec(connection, "DELETE FROM Locales", nullptr, nullptr, nullptr);
        sqlite3_close(connection);
        return code;
    }
    std::string address() const { return file.value("SELECT SessionIp FROM Session").value_or(""); }

    Directory directory;
    File file;
};

// ---- For less than five seconds: a call waits, and goes its way ----

TEST_F(HeldFile, AWriteWaitsForAReader)
{
    const std::unique_ptr<Client> client = Client::idle();
    Holder holder(aReader);
    client->begin(AddUser);
    holder.releaseIn(300);
    EXPECT_EQ(client->finish(), 0);
    EXPECT_EQ(storedUsers(), 1);
    client->exit();
}

TEST_F(HeldFile, AWriteWaitsForAWriter)
{
    const std::unique_ptr<Client> client = Client::idle();
    Holder holder(aWriter);
    client->begin(AddUser);
    holder.releaseIn(300);
    EXPECT_EQ(client->finish(), 0);
    EXPECT_EQ(storedUsers(), 1);
    client->exit();
}

TEST_F(HeldFile, AReadWaitsForAnOwner)
{
    const std::unique_ptr<Client> client = Client::idle();
    Holder holder(anOwner);
    client->begin(ReadUsers);
    holder.releaseIn(300);
    EXPECT_EQ(client->finish(), 0);
    client->exit();
}

TEST_F(HeldFile, ALaunchWaitsForAnOwner)
{
    Holder holder(anOwner);
    holder.releaseIn(300);
    Client client;
    EXPECT_EQ(client.result(), 0);
    EXPECT_EQ(client.call(ReadUsers), 0);
    client.exit();
}

TEST_F(HeldFile, AReaderDisturbsNoRead)
{
    const std::unique_ptr<Client> client = Client::idle();
    Holder holder(aReader);
    EXPECT_EQ(client->call(ReadUsers), 0);
    client->exit();
}

// ---- For more ----

// The statement of a write needs no more than a place beside the readers; its commit needs the file alone, fails
// without anybody looking, and leaves the transaction open. These three say what becomes of it.
TEST_F(HeldFile, AWriteBesideALastingReaderIsStoredByTheNextGoodOne)
{
    const std::unique_ptr<Client> client = Client::idle();
    Holder holder(aReader);
    EXPECT_EQ(client->call(AddUser), 0);
    EXPECT_TRUE(isHeld()); // by the library now, which waits to be alone
    holder.release();
    EXPECT_TRUE(isHeld());
    EXPECT_EQ(client->call(SetAddress), 0);
    EXPECT_EQ(storedUsers(), 1);
    EXPECT_EQ(address(), "next");
    client->exit();
}

TEST_F(HeldFile, AWriteBesideALastingReaderIsLostWithTheNextThatFails)
{
    file.execute("CREATE TRIGGER Refuse BEFORE INSERT ON Users WHEN NEW.UsersId = 13 BEGIN SELECT RAISE(ABORT, 'no');"
                 "END");
    const std::unique_ptr<Client> client = Client::idle();
    Holder holder(aReader);
    EXPECT_EQ(client->call(AddUser), 0);
    holder.release();
    EXPECT_EQ(client->call(UpdateThatFails), 9);
    EXPECT_EQ(client->call(SetAddress), 0);
    EXPECT_EQ(storedUsers(), 0);
    EXPECT_EQ(address(), "next");
    client->exit();
}

TEST_F(HeldFile, AWriteBesideALastingReaderIsLostWithAnExit)
{
    const Contents before = contentsOf();
    const std::unique_ptr<Client> client = Client::idle();
    Holder holder(aReader);
    EXPECT_EQ(client->call(AddUser), 0);
    holder.release();
    client->exit();
    EXPECT_TRUE(isSound());
    EXPECT_EQ(contentsOf(), before);
}

TEST_F(HeldFile, AWriteBesideALastingWriterReturns9)
{
    const std::unique_ptr<Client> client = Client::idle();
    Holder holder(aWriter);
    EXPECT_EQ(client->call(SetAddress), 9);
    EXPECT_EQ(client->call(LinesOfFailure), 1);
    holder.release();
    EXPECT_EQ(client->call(SetAddress), 0);
    EXPECT_EQ(address(), "next");
    client->exit();
}

TEST_F(HeldFile, AReadBesideALastingOwnerReturns7)
{
    const std::unique_ptr<Client> client = Client::idle();
    Holder holder(anOwner);
    EXPECT_EQ(client->call(ReadUsers), 7);
    holder.release();
    EXPECT_EQ(client->call(ReadUsers), 0);
    client->exit();
}

// A file that cannot be checked has failed its check: a good one is thrown away.
TEST_F(HeldFile, ALaunchBesideALastingOwnerReplacesTheFile)
{
    Holder holder(anOwner);
    Client client;
    EXPECT_EQ(client.result(), 103);
    EXPECT_EQ(client.call(ReadUsers), 7);
    client.exit();
    EXPECT_TRUE(contentsOf().empty());
}

// ---- What the library itself holds ----

// A record that was read leaves its statement standing, and with it a share of the file, until the next call.
TEST_F(HeldFile, ARecordThatWasReadKeepsOtherWritersOutUntilTheNextCall)
{
    Child client([](Channel &channel) {
        const DebugLines lines;
        Library library;
        channel.tell(get(getUser, 1).code);
        channel.hear();
        channel.tell(list(getUsers).code);
        channel.hear();
        library.exit();
    });
    EXPECT_EQ(client.hear(), 0);
    EXPECT_EQ(write(), SQLITE_BUSY);
    client.tell(0);
    EXPECT_EQ(client.hear(), 0);
    EXPECT_EQ(write(), SQLITE_OK);
    client.tell(0);
    EXPECT_TRUE(client.wait().isClean());
}

// The same after a launch that found a good file.
TEST_F(HeldFile, ALaunchKeepsOtherWritersOutUntilTheNextCall)
{
    Client client;
    EXPECT_EQ(write(), SQLITE_BUSY);
    EXPECT_EQ(client.call(ReadUsers), 0);
    EXPECT_EQ(write(), SQLITE_OK);
    client.exit();
}

// SQLite waits for no lock while it holds a share: it might wait for ever.
TEST_F(HeldFile, AWriteRightAfterALaunchWaitsForNoWriter)
{
    Client client;
    Holder holder(aWriter);
    EXPECT_EQ(client.call(SetAddress), 9);
    EXPECT_EQ(client.call(LinesOfFailure), 1);
    holder.release();
    EXPECT_EQ(client.call(SetAddress), 0);
    client.exit();
}

// Why only one process may use a directory: the locks of each block the other, and a write that returned 0
// waits for its writer's next one. The file stays sound.
TEST_F(HeldFile, TwoProcessesBlockEachOther)
{
    const std::unique_ptr<Client> one = Client::idle();
    Client other;
    EXPECT_EQ(other.result(), 0);
    EXPECT_EQ(one->call(AddUser), 0);
    EXPECT_TRUE(isHeld());
    EXPECT_EQ(other.call(SetAddress), 9);
    EXPECT_EQ(one->call(SetAddress), 0);
    EXPECT_EQ(storedUsers(), 1);
    other.exit();
    one->exit();
    EXPECT_TRUE(isSound());
}

} // namespace
