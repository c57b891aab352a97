// The selects with joins stand as comments above the functions that build them, so that a search of the sources finds a
// statement. A comment and its statement differ in spaces
// and line breaks only.
#include "catalog/TableCatalog.h"

#include <QFile>
#include <QRegularExpression>
#include <QSqlDatabase>
#include <gtest/gtest.h>
#include <ostream>

namespace {

using namespace brimlet;

QString withoutSpace(QString text)
{
    return text.remove(QRegularExpression(QStringLiteral("\\s")));
}

// The statement in the comment above a function of the catalog.
QString commentAbove(const char *function, const char *fileName)
{
    QFile file(QStringLiteral(BRIMLET_SOURCES "/src/catalog/") + QLatin1String(fileName));
    if (!file.open(QIODevice::ReadOnly))
        return QStringLiteral("unreadable");
    const QString source = QString::fromUtf8(file.readAll());
    const QRegularExpression expression(
        QStringLiteral("((?:^//.*\\n)+)^QString TableCatalog::%1\\(").arg(QLatin1String(function)),
        QRegularExpression::MultilineOption);
    QString comment = expression.match(source).captured(1);
    comment.remove(QRegularExpression(QStringLiteral("^//"), QRegularExpression::MultilineOption));
    const int start = comment.indexOf(QLatin1String("SELECT "));
    return start < 0 ? QString() : comment.mid(start);
}

struct Select
{
    const char *function;
    const char *file;
    void (*prepare)(TableCatalog &tables, QSqlQuery &query);
};

void PrintTo(const Select &select, std::ostream *out)
{
    *out << select.function;
}

const Select selects[] = {
    {"domainsSelect", "DomainStatements.cpp",
     [](TableCatalog &tables, QSqlQuery &query) { tables.prepareDomainsSelect(query); }},
    {"usersSelect", "UserStatements.cpp",
     [](TableCatalog &tables, QSqlQuery &query) { tables.prepareUsersSelect(query); }},
    {"organizationsSelect", "OrganizationStatements.cpp",
     [](TableCatalog &tables, QSqlQuery &query) { tables.prepareOrganizationsSelect(query); }},
    {"contractsSelect", "ContractStatements.cpp",
     [](TableCatalog &tables, QSqlQuery &query) { tables.prepareContractsSelect(query); }},
    {"devicesSelect", "DeviceStatements.cpp",
     [](TableCatalog &tables, QSqlQuery &query) { tables.prepareDevicesSelect(query); }},
    {"sitesSelect", "SiteStatements.cpp",
     [](TableCatalog &tables, QSqlQuery &query) { tables.prepareSitesSelect(query); }},
    {"prepareEventsSelect", "EventStatements.cpp",
     [](TableCatalog &tables, QSqlQuery &query) { tables.prepareAffectEventsSelect(query); }},
};

class StatementComments : public ::testing::TestWithParam<Select>
{
protected:
    StatementComments()
    {
        database.setDatabaseName(QStringLiteral(":memory:"));
        database.open();
        query = QSqlQuery(database);
    }
    ~StatementComments() override
    {
        query = QSqlQuery();
        database = QSqlDatabase();
        QSqlDatabase::removeDatabase(connection);
    }

    const QString connection = QStringLiteral("comments");
    QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connection);
    QSqlQuery query;
    TableCatalog tables;
};

TEST_P(StatementComments, ShowTheStatement)
{
    GetParam().prepare(tables, query);
    const QString statement = query.lastQuery().section(QLatin1String(" WHERE "), 0, 0);
    ASSERT_TRUE(statement.startsWith(QLatin1String("SELECT ")));
    const QString comment = commentAbove(GetParam().function, GetParam().file);
    EXPECT_EQ(withoutSpace(comment).toStdString(), withoutSpace(statement).toStdString())
        << "write this statement into the comment above " << GetParam().function << ":\n"
        << statement.toStdString();
}

INSTANTIATE_TEST_SUITE_P(Selects, StatementComments, ::testing::ValuesIn(selects),
                         [](const auto &select) { return std::string(select.param.function); });

} // namespace
