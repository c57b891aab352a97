// A call parses its document once, also if the document holds the ids of parents beside the record.
#include "Store.h"

#include <QJsonDocument>
#include <dlfcn.h>

using namespace brimlet::test;

namespace {

int parses = 0;

} // namespace

// Stands before Qt's own and counts.
QJsonDocument QJsonDocument::fromJson(const QByteArray &json, QJsonParseError *error)
{
    using Parse = QJsonDocument (*)(const QByteArray &, QJsonParseError *);
    static const auto parse =
        reinterpret_cast<Parse>(dlsym(RTLD_NEXT, "_ZN13QJsonDocument8fromJsonERK10QByteArrayP15QJsonParseError"));
    ++parses;
    return parse(json, error);
}

namespace {

using Parsing = StoreTest;

TEST_F(Parsing, IsDoneOnceACall)
{
    ASSERT_EQ(send(addDevices, batch(R"({"id":10,"sections":[{"id":1,"zones":[{"id":5}]}]})")), 0u);
    EXPECT_EQ(parses, 1);
    EXPECT_EQ(update(updateSection, R"({"D":{"device":10,"id":1}})").code, 0u);
    EXPECT_EQ(parses, 2);
    EXPECT_EQ(update(updateZone, R"({"D":{"device":10,"section":1,"id":5}})").code, 0u);
    EXPECT_EQ(parses, 3);
    EXPECT_EQ(send(deleteZone, R"({"D":{"device":10,"section":1,"zone":5}})"), 0u);
    EXPECT_EQ(parses, 4);
    EXPECT_EQ(send(deleteSection, R"({"D":{"device":10,"section":1}})"), 0u);
    EXPECT_EQ(parses, 5);
}

} // namespace
