// The classes that Qt knows by name, the controller's state, and the store itself, asked directly.
#include "controller/Controller.h"
#include "controller/SQLiteDatabase.h"

#include <QCoreApplication>
#include <QFile>
#include <QMetaMethod>
#include <QSqlError>
#include <QTemporaryDir>
#include <cstring>
#include <gtest/gtest.h>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace brimlet;
using namespace brimlet::controller;

// ---- Meta-objects ----

TEST(MetaObjects, CarryTheirClassesUnderFullNames)
{
    EXPECT_STREQ(Controller::staticMetaObject.className(), "brimlet::controller::Controller");
    EXPECT_STREQ(Database::staticMetaObject.className(), "brimlet::controller::Database");
    EXPECT_STREQ(SQLiteDatabase::staticMetaObject.className(), "brimlet::controller::SQLiteDatabase");
}

TEST(MetaObjects, DescendFromQObject)
{
    EXPECT_EQ(Controller::staticMetaObject.superClass(), &QObject::staticMetaObject);
    EXPECT_EQ(Database::staticMetaObject.superClass(), &QObject::staticMetaObject);
    EXPECT_EQ(SQLiteDatabase::staticMetaObject.superClass(), &Database::staticMetaObject);
}

TEST(MetaObjects, GiveTheControllerOneMethodTheSlotOnStart)
{
    const QMetaObject &meta = Controller::staticMetaObject;
    ASSERT_EQ(meta.methodCount() - meta.methodOffset(), 1);
    const QMetaMethod method = meta.method(meta.methodOffset());
    EXPECT_EQ(method.methodSignature(), "onStart()");
    EXPECT_EQ(method.methodType(), QMetaMethod::Slot);
    EXPECT_EQ(method.returnType(), int(QMetaType::Void));
}

TEST(MetaObjects, GiveTheStoreNoMethodsOfItsOwn)
{
    EXPECT_EQ(Database::staticMetaObject.methodCount(), QObject::staticMetaObject.methodCount());
    EXPECT_EQ(SQLiteDatabase::staticMetaObject.methodCount(), QObject::staticMetaObject.methodCount());
}

TEST(MetaObjects, HaveNoProperties)
{
    EXPECT_EQ(Controller::staticMetaObject.propertyCount(), QObject::staticMetaObject.propertyCount());
    EXPECT_EQ(Database::staticMetaObject.propertyCount(), QObject::staticMetaObject.propertyCount());
    EXPECT_EQ(SQLiteDatabase::staticMetaObject.propertyCount(), QObject::staticMetaObject.propertyCount());
}

TEST(MetaObjects, HaveNoConstructorsAndNoEnumerators)
{
    for (const QMetaObject *meta :
         {&Controller::staticMetaObject, &Database::staticMetaObject, &SQLiteDatabase::staticMetaObject}) {
        EXPECT_EQ(meta->constructorCount(), 0) << meta->className();
        EXPECT_EQ(meta->enumeratorCount(), QObject::staticMetaObject.enumeratorCount()) << meta->className();
    }
}

// ---- The order of the store's operations ----

#ifndef _MSC_VER // whose pointers to virtual functions do not hold the place in the table

// The place of a virtual function in its class's table.
template<class Operation>
size_t slotOf(Operation operation)
{
    static_assert(std::is_member_function_pointer_v<Operation>);
    size_t offset = 0; // in bytes; the lowest bit may say that the function is virtual
    std::memcpy(&offset, &operation, sizeof(offset));
    return offset / sizeof(void *);
}

struct QObjectSlots : QObject
{
    static size_t last() { return slotOf(&QObjectSlots::disconnectNotify); }
};

TEST(DatabaseSlots, StandInTheirOrderBehindThoseOfQObject)
{
    const std::vector<size_t> places = {
        slotOf(&Database::exists),
        slotOf(&Database::create),
        slotOf(&Database::open),
        slotOf(&Database::recreate),
        slotOf(&Database::isVersionValid),
        slotOf(&Database::isSchemaValid),
        slotOf(&Database::addEvent),
        slotOf(&Database::addEvents),
        slotOf(&Database::addSites),
        slotOf(&Database::addDevice),
        slotOf(&Database::addDevices),
        slotOf(&Database::addContracts),
        slotOf(&Database::addContractors),
        slotOf(&Database::addLocales),
        slotOf(&Database::addOrganizations),
        slotOf(&Database::addDomains),
        slotOf(&Database::addUsers),
        slotOf(&Database::getAffectEvents),
        slotOf(&Database::getEvents),
        slotOf(&Database::getSite),
        slotOf(&Database::getSitesByField),
        slotOf(&Database::getSites),
        slotOf(&Database::getDevice),
        slotOf(&Database::getDevicesByField),
        slotOf(&Database::getDevices),
        slotOf(&Database::getSection),
        slotOf(&Database::getSectionsByField),
        slotOf(&Database::getSections),
        slotOf(&Database::getZone),
        slotOf(&Database::getZonesForSectionByField),
        slotOf(&Database::getZonesByField),
        slotOf(&Database::getZonesForSection),
        slotOf(&Database::getZones),
        slotOf(&Database::getContract),
        slotOf(&Database::getContractsByField),
        slotOf(&Database::getContracts),
        slotOf(&Database::getContractor),
        slotOf(&Database::getContractorsByField),
        slotOf(&Database::getContractors),
        slotOf(&Database::getLocale),
        slotOf(&Database::getLocalesByField),
        slotOf(&Database::getLocales),
        slotOf(&Database::getOrganization),
        slotOf(&Database::getOrganizationsByField),
        slotOf(&Database::getOrganizations),
        slotOf(&Database::getDomain),
        slotOf(&Database::getDomainsByField),
        slotOf(&Database::getDomains),
        slotOf(&Database::getUser),
        slotOf(&Database::getUsersByField),
        slotOf(&Database::getUsers),
        slotOf(&Database::deleteUser),
        slotOf(&Database::updateSite),
        slotOf(&Database::updateDeviceFw),
        slotOf(&Database::updateSection),
        slotOf(&Database::updateZone),
        slotOf(&Database::updateContract),
        slotOf(&Database::updateContractor),
        slotOf(&Database::updateOrganization),
        slotOf(&Database::updateDomain),
        slotOf(&Database::updateUser),
        slotOf(&Database::deleteDomain),
        slotOf(&Database::deleteOrganization),
        slotOf(&Database::deleteContractor),
        slotOf(&Database::deleteContract),
        slotOf(&Database::deleteZone),
        slotOf(&Database::deleteSection),
        slotOf(&Database::isSectionExists),
        slotOf(&Database::isDeviceExists),
        slotOf(&Database::deleteDevice),
        slotOf(&Database::isSiteExists),
        slotOf(&Database::getSiteFields),
        slotOf(&Database::deleteSite),
        slotOf(&Database::clearEventsBeforeDate),
        slotOf(&Database::isEventExists),
        slotOf(&Database::removeAffectFlag),
        slotOf(&Database::setServerIp),
        slotOf(&Database::getServerIp),
        slotOf(&Database::clearAll),
        slotOf(&Database::clearAllExceptEvents),
    };

    ASSERT_EQ(places.size(), 80u);
    for (size_t i = 0; i < places.size(); ++i)
        EXPECT_EQ(places[i], QObjectSlots::last() + 1 + i) << "operation " << i + 1;
}

#endif

// ---- A directory with a store ----

// The library's debug lines of the running test.
std::vector<std::string> debugLines;

void keepDebugLines(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    if (type == QtDebugMsg)
        debugLines.push_back(text.toStdString());
}

using Texts = std::vector<std::string>;

class DirectoryTest : public ::testing::Test
{
protected:
    DirectoryTest()
    {
        debugLines.clear();
        qInstallMessageHandler(keepDebugLines);
        EXPECT_TRUE(directory.isValid());
    }
    ~DirectoryTest() override
    {
        QSqlDatabase::removeDatabase(QString()); // the store leaves its connection registered under the empty name
        qInstallMessageHandler(nullptr);
    }

    QString name() const { return directory.filePath("CacheDb"); }

    // The one number that a statement gives, through a connection of its own.
    int number(const QString &sql)
    {
        int result = -1;
        {
            QSqlDatabase file = QSqlDatabase::addDatabase("QSQLITE", "look");
            file.setDatabaseName(name());
            EXPECT_TRUE(file.open());
            QSqlQuery query(sql, file);
            EXPECT_TRUE(query.next()) << query.lastError().text().toStdString();
            result = query.value(0).toInt();
        }
        QSqlDatabase::removeDatabase("look");
        return result;
    }

    // The rows of all tables that hold data.
    int rows()
    {
        int count = 0;
        for (const char *table : {"Users", "Domains", "Organizations", "Locales", "Persons", "Contractors", "Contracts",
                                  "Zones", "Sections", "DeviceUsers", "Devices", "DeviceUserSectionLinks", "Locations",
                                  "Sites", "Events", "Session"})
            count += number(QString("SELECT COUNT(*) FROM %1").arg(table));
        return count;
    }

private:
    int argc = 0;
    QCoreApplication application{argc, nullptr};
    QTemporaryDir directory;
};

// ---- The controller ----

class Controllers : public DirectoryTest
{
};

TEST_F(Controllers, AreInState1WithoutALaunchResultBeforeTheirLaunch)
{
    const Controller controller;
    EXPECT_EQ(controller.getState(), 1u);
    EXPECT_EQ(controller.getLaunchResult(), 255u);
}

TEST_F(Controllers, HaveNoParent)
{
    const Controller controller;
    EXPECT_EQ(controller.parent(), nullptr);
}

TEST_F(Controllers, AreKnownByTheirClass)
{
    Controller controller;
    EXPECT_STREQ(controller.metaObject()->className(), "brimlet::controller::Controller");
    EXPECT_EQ(controller.qt_metacast("brimlet::controller::Controller"), &controller);
}

TEST_F(Controllers, StayInState1ThroughTheirLaunch)
{
    Controller controller;
    controller.launch(name());
    EXPECT_EQ(controller.getState(), 1u);
    EXPECT_EQ(controller.getLaunchResult(), 100u);
}

TEST_F(Controllers, LaunchOnTheFileThatAnEarlierOneMade)
{
    Controller().launch(name());
    Controller controller;
    controller.launch(name());
    EXPECT_EQ(controller.getLaunchResult(), 0u);
}

TEST_F(Controllers, AreInState2AfterOnStart)
{
    Controller controller;
    controller.onStart();
    EXPECT_EQ(controller.getState(), 2u);
    EXPECT_EQ(controller.getLaunchResult(), 255u);
}

TEST_F(Controllers, AreStartedByTheNameOfTheirSlotOnceTheLoopDeliversIt)
{
    Controller controller;
    ASSERT_TRUE(QMetaObject::invokeMethod(&controller, "onStart", Qt::QueuedConnection));
    EXPECT_EQ(controller.getState(), 1u);
    QCoreApplication::processEvents();
    EXPECT_EQ(controller.getState(), 2u);
}

// ---- The store ----

class Store : public DirectoryTest
{
protected:
    Store() { EXPECT_TRUE(database.create(name())); }

    SQLiteDatabase database;
};

// A store in a file without tables, where no statement can be prepared.
class StoreWithoutTables : public DirectoryTest
{
protected:
    StoreWithoutTables() { EXPECT_TRUE(database.open(name())); }

    SQLiteDatabase database;
};

// The operations that add a list, given an empty one: the names of those that fail.
Texts failuresOfAddingNothing(Database &database)
{
    Texts failed;
    const auto expect = [&](bool succeeded, const char *operation) {
        if (!succeeded)
            failed.emplace_back(operation);
    };
    expect(database.addSites({}), "addSites");
    expect(database.addDevices({}), "addDevices");
    expect(database.addContracts({}), "addContracts");
    expect(database.addContractors({}), "addContractors");
    expect(database.addLocales({}), "addLocales");
    expect(database.addOrganizations({}), "addOrganizations");
    expect(database.addDomains({}), "addDomains");
    expect(database.addUsers({}), "addUsers");
    return failed;
}

template<class Record>
Record withId(quint32 id)
{
    Record record;
    record.id = id;
    return record;
}

TEST_F(Store, IsKnownByItsClassAndItsInterface)
{
    EXPECT_STREQ(database.metaObject()->className(), "brimlet::controller::SQLiteDatabase");
    EXPECT_TRUE(database.inherits("brimlet::controller::Database"));
    EXPECT_EQ(database.qt_metacast("brimlet::controller::Database"), static_cast<Database *>(&database));
    EXPECT_EQ(database.parent(), nullptr);
}

TEST_F(Store, AddsNothingWithSuccess)
{
    EXPECT_EQ(failuresOfAddingNothing(database), Texts());
    EXPECT_EQ(rows(), 0);
    EXPECT_EQ(debugLines, Texts());
}

TEST_F(Store, AddsNothingToWhatItHolds)
{
    ASSERT_TRUE(database.addLocales({withId<Locale>(1), withId<Locale>(2)}));
    ASSERT_TRUE(database.addDevices({withId<Device>(10)}));
    EXPECT_EQ(failuresOfAddingNothing(database), Texts());
    EXPECT_EQ(number("SELECT COUNT(*) FROM Locales"), 2);
    EXPECT_EQ(number("SELECT COUNT(*) FROM Devices"), 1);
    EXPECT_EQ(rows(), 3);
}

TEST_F(StoreWithoutTables, AddsNothingWithSuccess)
{
    EXPECT_EQ(failuresOfAddingNothing(database), Texts());
    EXPECT_EQ(number("SELECT COUNT(*) FROM sqlite_master"), 0);
    EXPECT_EQ(debugLines, Texts());
}

TEST_F(StoreWithoutTables, FailsToAddSomething)
{
    EXPECT_FALSE(database.addLocales({withId<Locale>(1)}));
    ASSERT_EQ(debugLines.size(), 4u);
    EXPECT_EQ(debugLines[0], "execute batch error");
    EXPECT_EQ(debugLines[2], "add locales error");
    EXPECT_EQ(debugLines[3], debugLines[1]);
}

// Asks for an id that no row has: whether the operation succeeds and empties the optional, which holds a record before.
template<class Record, class... Keys>
bool findsNothing(Database &database, bool (Database::*get)(std::optional<Record> &, Keys...))
{
    std::optional<Record> empty;
    std::optional<Record> full = withId<Record>(99);
    return (database.*get)(empty, static_cast<Keys>(99)...) && !empty && (database.*get)(full, static_cast<Keys>(99)...)
        && !full;
}

TEST_F(Store, ReadsARowThatIsNotThereAsAnEmptyOptional)
{
    EXPECT_TRUE(findsNothing(database, &Database::getUser));
    EXPECT_TRUE(findsNothing(database, &Database::getDomain));
    EXPECT_TRUE(findsNothing(database, &Database::getOrganization));
    EXPECT_TRUE(findsNothing(database, &Database::getLocale));
    EXPECT_TRUE(findsNothing(database, &Database::getContractor));
    EXPECT_TRUE(findsNothing(database, &Database::getContract));
    EXPECT_TRUE(findsNothing(database, &Database::getZone));
    EXPECT_TRUE(findsNothing(database, &Database::getSection));
    EXPECT_TRUE(findsNothing(database, &Database::getDevice));
    EXPECT_TRUE(findsNothing(database, &Database::getSite));
    EXPECT_EQ(debugLines, Texts());
}

TEST_F(StoreWithoutTables, FailsToReadARow)
{
    std::optional<User> user;
    EXPECT_FALSE(database.getUser(user, 7));
    ASSERT_EQ(debugLines.size(), 4u);
    EXPECT_EQ(debugLines[0], "execute error");
    EXPECT_EQ(debugLines[2], "get user error");
    EXPECT_EQ(debugLines[3], debugLines[1]);
}

TEST_F(Store, ReadsListsOfNothingWithSuccess)
{
    std::vector<User> users;
    std::vector<Device> devices;
    std::vector<Event> events;
    EXPECT_TRUE(database.getUsers(users));
    EXPECT_TRUE(database.getDevices(devices));
    EXPECT_TRUE(database.getEvents(events, 0, 4294967295u));
    EXPECT_TRUE(users.empty() && devices.empty() && events.empty());
}

// Gives an operation an empty optional, and gives back the text of the error that it raises.
template<class Record, class... Parents>
std::string raised(Database &database, bool (Database::*write)(std::optional<Record> &, Parents...))
{
    std::optional<Record> none;
    try {
        (database.*write)(none, static_cast<Parents>(1)...);
    } catch (const std::logic_error &error) {
        return error.what();
    }
    return "nothing";
}

TEST_F(Store, RaisesAnErrorWhereARecordToUpdateIsAbsent)
{
    EXPECT_EQ(raised(database, &Database::updateSite), "Bad optional access");
    EXPECT_EQ(raised(database, &Database::updateDeviceFw), "Bad optional access");
    EXPECT_EQ(raised(database, &Database::updateSection), "Bad optional access");
    EXPECT_EQ(raised(database, &Database::updateZone), "Bad optional access");
    EXPECT_EQ(raised(database, &Database::updateContract), "Bad optional access");
    EXPECT_EQ(raised(database, &Database::updateContractor), "Bad optional access");
    EXPECT_EQ(raised(database, &Database::updateOrganization), "Bad optional access");
    EXPECT_EQ(raised(database, &Database::updateDomain), "Bad optional access");
    EXPECT_EQ(raised(database, &Database::updateUser), "Bad optional access");
}

TEST_F(Store, RaisesAnErrorWhereARecordToAddIsAbsent)
{
    EXPECT_EQ(raised(database, &Database::addDevice), "Bad optional access");
    EXPECT_EQ(raised(database, &Database::addEvent), "Bad optional access");
}

TEST_F(Store, WritesNothingForAnAbsentRecord)
{
    raised(database, &Database::updateUser);
    EXPECT_EQ(rows(), 0);
    EXPECT_EQ(debugLines, Texts());
}

} // namespace
