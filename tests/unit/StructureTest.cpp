// How the store uses its query: what makes it fast, held without a clock. A driver of the test's own stands in for
// SQLite's, counts, and gives three rows of ones to every select.
#include "controller/SQLiteDatabase.h"

#include <QSqlDriver>
#include <QSqlField>
#include <QSqlRecord>
#include <QSqlResult>
#include <gtest/gtest.h>

namespace {

using namespace brimlet;
using namespace brimlet::controller;

struct Counts
{
    int prepares = 0;
    int executes = 0;
    int records = 0;
    int scrollable = 0; // results that were run without being forward-only
};
Counts counts;

class CountingResult : public QSqlResult
{
public:
    explicit CountingResult(const QSqlDriver *driver) : QSqlResult(driver) {}

protected:
    bool prepare(const QString &text) override
    {
        ++counts.prepares;
        columns.clear();
        if (text.startsWith(QLatin1String("SELECT ")))
            columns = text.mid(7, text.indexOf(QLatin1String(" FROM ")) - 7).split(QLatin1Char(','));
        return true;
    }

    bool exec() override
    {
        ++counts.executes;
        if (!isForwardOnly())
            ++counts.scrollable;
        setSelect(!columns.isEmpty());
        setAt(QSql::BeforeFirstRow);
        setActive(true);
        return true;
    }

    QSqlRecord record() const override
    {
        ++counts.records;
        QSqlRecord record;
        for (const QString &column : columns)
            record.append(QSqlField(column, QVariant::UInt));
        return record;
    }

    bool fetch(int row) override
    {
        if (row >= 3) {
            setAt(QSql::AfterLastRow);
            return false;
        }
        setAt(row);
        return true;
    }

    QVariant data(int) override { return 1; }
    bool isNull(int) override { return false; }
    bool reset(const QString &text) override { return prepare(text) && exec(); }
    bool fetchFirst() override { return fetch(0); }
    bool fetchLast() override { return fetch(2); }
    int size() override { return -1; }
    int numRowsAffected() override { return 0; }

private:
    QStringList columns;
};

class CountingDriver : public QSqlDriver
{
public:
    bool hasFeature(DriverFeature feature) const override
    {
        return feature == PreparedQueries || feature == PositionalPlaceholders;
    }
    bool open(const QString &, const QString &, const QString &, const QString &, int, const QString &) override
    {
        setOpen(true);
        return true;
    }
    void close() override { setOpen(false); }
    QSqlResult *createResult() const override { return new CountingResult(this); }
};

class Structure : public ::testing::Test
{
protected:
    Structure()
    {
        QSqlDatabase::registerSqlDriver(driver, new QSqlDriverCreator<CountingDriver>);
        database = std::make_unique<SQLiteDatabase>();
        database->open(QStringLiteral("structure"));
        counts = Counts();
    }
    ~Structure() override
    {
        database.reset();
        QSqlDatabase::removeDatabase(QString());
        QSqlDatabase::registerSqlDriver(driver, nullptr);
    }

    const QString driver = QStringLiteral("QSQLITE");
    std::unique_ptr<SQLiteDatabase> database;
};

TEST_F(Structure, AListAsksForItsColumnsOnce)
{
    std::vector<User> users;
    ASSERT_TRUE(database->getUsers(users));
    EXPECT_EQ(users.size(), 3u);
    EXPECT_EQ(counts.records, 1);
}

TEST_F(Structure, EveryResultIsReadForwardOnly)
{
    std::vector<Device> devices;
    ASSERT_TRUE(database->getDevices(devices));
    EXPECT_GT(counts.executes, 0);
    EXPECT_EQ(counts.scrollable, 0);
}

TEST_F(Structure, ChildQueriesOfOneTextAreReboundAndNotPreparedAgain)
{
    std::vector<Device> devices;
    ASSERT_TRUE(database->getDevices(devices));
    ASSERT_EQ(devices.size(), 3u);
    ASSERT_EQ(devices[2].sections.size(), 3u);
    ASSERT_EQ(devices[2].sections[2].zones.size(), 3u);
    ASSERT_EQ(devices[2].users[2].sections.size(), 3u);
    EXPECT_EQ(counts.executes, 1 + 3 * (1 + 3 + 1 + 3)); // devices; sections, zones, users, links of each
    EXPECT_EQ(counts.prepares, 1 + 3 * 4);
}

TEST_F(Structure, NoStatementIsKeptForTheNextOperation)
{
    for (int time = 1; time <= 3; ++time) {
        std::optional<User> user;
        ASSERT_TRUE(database->getUser(user, 1));
        EXPECT_EQ(counts.prepares, time);
    }
}

TEST_F(Structure, ABatchIsOneStatement)
{
    ASSERT_TRUE(database->addUsers(std::vector<User>(100)));
    EXPECT_EQ(counts.prepares, 1);
    EXPECT_EQ(counts.executes, 100);
}

} // namespace
