// From a document to records: the conversions of numbers, the reader of each kind of field, the forms of a document,
// and the order in which the reader of an object reads its fields.
#include "json/FieldReaders.h"
#include "json/Documents.h"
#include "json/ObjectReaders.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <ostream>
#include <string>
#include <vector>

namespace {

using namespace brimlet;

const double infinity = std::numeric_limits<double>::infinity();
const double notANumber = std::numeric_limits<double>::quiet_NaN();
const qint64 smallest = std::numeric_limits<qint64>::min();

QJsonObject object(const std::string &json)
{
    const QJsonDocument document = QJsonDocument::fromJson(QByteArray::fromStdString(json));
    EXPECT_TRUE(document.isObject()) << json;
    return document.object();
}

// {"k":<value>}
QJsonObject member(const std::string &value)
{
    return object(R"({"k":)" + value + "}");
}

// ---- Truncation ----

struct Truncation
{
    double value;
    qint64 whole;
    quint32 low;
};

void PrintTo(const Truncation &truncation, std::ostream *out)
{
    *out << ::testing::PrintToString(truncation.value);
}

class Truncations : public ::testing::TestWithParam<Truncation>
{
};

TEST_P(Truncations, GiveTheWholeNumber)
{
    EXPECT_EQ(truncateToInt64(GetParam().value), GetParam().whole);
}

TEST_P(Truncations, GiveTheLow32Bits)
{
    EXPECT_EQ(truncateToUInt32(GetParam().value), GetParam().low);
}

const Truncation fractions[] = {
    {0.0, 0, 0},
    {-0.0, 0, 0},
    {5e-324, 0, 0},
    {0.5, 0, 0},
    {-0.5, 0, 0},
    {0.9999999999999999, 0, 0},
    {-0.9999999999999999, 0, 0},
    {1.0, 1, 1},
    {-1.0, -1, 4294967295u},
    {1.9, 1, 1},
    {-1.9, -1, 4294967295u},
    {3.9, 3, 3},
    {-3.9, -3, 4294967293u},
    {4294967295.9, 4294967295, 4294967295u},
    {-4294967296.9, -4294967296, 0},
    {4503599627370495.5, 4503599627370495, 4294967295u},
    {-4503599627370495.5, -4503599627370495, 1},
};
INSTANTIATE_TEST_SUITE_P(OfFractions, Truncations, ::testing::ValuesIn(fractions));

const Truncation borders[] = {
    // 8 and 16 bits
    {127.0, 127, 127},
    {128.0, 128, 128},
    {255.0, 255, 255},
    {256.0, 256, 256},
    {-128.0, -128, 4294967168u},
    {-129.0, -129, 4294967167u},
    {32767.0, 32767, 32767},
    {32768.0, 32768, 32768},
    {65535.0, 65535, 65535},
    {65536.0, 65536, 65536},
    {-32768.0, -32768, 4294934528u},
    {-32769.0, -32769, 4294934527u},
    // 31 and 32 bits
    {2147483647.0, 2147483647, 2147483647u},
    {2147483648.0, 2147483648, 2147483648u},
    {-2147483648.0, -2147483648, 2147483648u},
    {-2147483649.0, -2147483649, 2147483647u},
    {4294967295.0, 4294967295, 4294967295u},
    {4294967296.0, 4294967296, 0},
    {4294967297.0, 4294967297, 1},
    {5000000000.0, 5000000000, 705032704u},
    {-4294967295.0, -4294967295, 1},
    {-4294967296.0, -4294967296, 0},
    {-4294967297.0, -4294967297, 4294967295u},
    // 53 bits
    {9007199254740991.0, 9007199254740991, 4294967295u},
    {9007199254740992.0, 9007199254740992, 0},
    {9007199254740994.0, 9007199254740994, 2},
    {-9007199254740991.0, -9007199254740991, 1},
    {-9007199254740992.0, -9007199254740992, 0},
    // 63 and 64 bits; the numbers beyond are no 64-bit integers
    {4611686018427387904.0, 4611686018427387904, 0},
    {9223372036854774784.0, 9223372036854774784, 4294966272u},
    {-9223372036854774784.0, -9223372036854774784, 1024},
    {-9223372036854775808.0, smallest, 0},
    {9223372036854775808.0, smallest, 0},
    {-9223372036854777856.0, smallest, 0},
    {18446744073709549568.0, smallest, 0},
    {18446744073709551616.0, smallest, 0},
    {1e300, smallest, 0},
    {-1e300, smallest, 0},
    {infinity, smallest, 0},
    {-infinity, smallest, 0},
    {notANumber, smallest, 0},
};
INSTANTIATE_TEST_SUITE_P(OfBorders, Truncations, ::testing::ValuesIn(borders));

// ---- Fields ----

// What a field reader made of {"k":<json>}.
template<class Value>
std::optional<Value> read(bool (*reader)(std::optional<Value> &, const QJsonObject &, const QString &),
                          const std::string &json)
{
    std::optional<Value> field;
    EXPECT_TRUE(reader(field, member(json), "k")) << json;
    return field;
}

// Whether a field reader leaves the field absent, and is content, where its key is missing.
template<class Value>
bool letsMiss(bool (*reader)(std::optional<Value> &, const QJsonObject &, const QString &))
{
    std::optional<Value> field;
    return reader(field, object(R"({"K":1,"other":"x"})"), "k") && !field;
}

// Of the kinds of values, those that a field reader refuses.
template<class Value>
std::vector<std::string> refused(bool (*reader)(std::optional<Value> &, const QJsonObject &, const QString &))
{
    std::vector<std::string> values;
    for (const char *value : {"1", "\"1\"", "true", "false", "null", "[1]", "[]", "{\"id\":1}", "{}"}) {
        std::optional<Value> field;
        if (!reader(field, member(value), "k"))
            values.emplace_back(value);
    }
    return values;
}

const std::vector<std::string> allButNumbers = {"\"1\"", "true", "false", "null", "[1]", "[]", "{\"id\":1}", "{}"};
const std::vector<std::string> allButNumbersAndBooleans = {"\"1\"", "null", "[1]", "[]", "{\"id\":1}", "{}"};
const std::vector<std::string> allButTexts = {"1", "true", "false", "null", "[1]", "[]", "{\"id\":1}", "{}"};

TEST(FieldReaders, LeaveAFieldAbsentWhoseKeyIsMissing)
{
    EXPECT_TRUE(letsMiss(readTextField));
    EXPECT_TRUE(letsMiss(readUInt32Field));
    EXPECT_TRUE(letsMiss(readInt32Field));
    EXPECT_TRUE(letsMiss(readUInt8Field));
    EXPECT_TRUE(letsMiss(readBoolField));
    EXPECT_TRUE(letsMiss(readUInt64Field));
    EXPECT_TRUE(letsMiss(readLocaleRef));
    EXPECT_TRUE(letsMiss(readContractorRef));
    EXPECT_TRUE(letsMiss(readUserRef));
}

TEST(FieldReaders, RefuseEveryOtherTypeThanTheirOwn)
{
    EXPECT_EQ(refused(readTextField), allButTexts);
    EXPECT_EQ(refused(readUInt32Field), allButNumbers);
    EXPECT_EQ(refused(readInt32Field), allButNumbers);
    EXPECT_EQ(refused(readUInt8Field), allButNumbers);
    EXPECT_EQ(refused(readBoolField), allButNumbersAndBooleans);
    EXPECT_EQ(refused(readUInt64Field), allButNumbers);
    EXPECT_EQ(refused(readLocaleRef), allButNumbers);
    EXPECT_EQ(refused(readContractorRef), allButNumbers);
    EXPECT_EQ(refused(readUserRef), allButNumbers);
}

TEST(TextField, TakesTheTextAsItStands)
{
    EXPECT_EQ(read(readTextField, R"("x")"), QString("x"));
    EXPECT_EQ(read(readTextField, R"(" 7 ")"), QString(" 7 "));
    EXPECT_EQ(read(readTextField, R"("\u0416\ud83d\ude00")"), QString::fromUtf8("Ж😀"));
}

TEST(TextField, IsPresentWhenEmpty)
{
    EXPECT_EQ(read(readTextField, R"("")"), QString(""));
}

TEST(TextField, KeepsAZeroUnitAndWhatIsBehindIt)
{
    EXPECT_EQ(read(readTextField, R"("a\u0000b")"), QString(QLatin1String("a\0b", 3)));
}

TEST(UInt32Field, TruncatesAndWraps)
{
    EXPECT_EQ(read(readUInt32Field, "0"), 0u);
    EXPECT_EQ(read(readUInt32Field, "3.9"), 3u);
    EXPECT_EQ(read(readUInt32Field, "-0.5"), 0u);
    EXPECT_EQ(read(readUInt32Field, "-1"), 4294967295u);
    EXPECT_EQ(read(readUInt32Field, "4294967295"), 4294967295u);
    EXPECT_EQ(read(readUInt32Field, "4294967296"), 0u);
    EXPECT_EQ(read(readUInt32Field, "5000000000"), 705032704u);
    EXPECT_EQ(read(readUInt32Field, "1e3"), 1000u);
}

TEST(UInt32Field, KnowsAnIntegerOnlyAsADouble)
{
    EXPECT_EQ(read(readUInt32Field, "9007199254740993"), 0u); // one above 2^53 rounds down to it
    EXPECT_EQ(read(readUInt32Field, "9007199254740995"), 4u);
    EXPECT_EQ(read(readUInt32Field, "9223372036854775807"), 0u); // rounds up to 2^63
}

TEST(Int32Field, TakesAWholeNumberInItsRange)
{
    EXPECT_EQ(read(readInt32Field, "0"), 0);
    EXPECT_EQ(read(readInt32Field, "-1"), -1);
    EXPECT_EQ(read(readInt32Field, "7.0"), 7);
    EXPECT_EQ(read(readInt32Field, "1e3"), 1000);
    EXPECT_EQ(read(readInt32Field, "2147483647"), 2147483647);
    EXPECT_EQ(read(readInt32Field, "-2147483648"), std::numeric_limits<qint32>::min());
}

TEST(Int32Field, IsAPresentZeroForAFractionAndBeyondItsRange)
{
    EXPECT_EQ(read(readInt32Field, "1.5"), 0);
    EXPECT_EQ(read(readInt32Field, "-1.5"), 0);
    EXPECT_EQ(read(readInt32Field, "2147483648"), 0);
    EXPECT_EQ(read(readInt32Field, "-2147483649"), 0);
    EXPECT_EQ(read(readInt32Field, "4294967295"), 0);
    EXPECT_EQ(read(readInt32Field, "1e300"), 0);
}

TEST(UInt8Field, KeepsTheLow8Bits)
{
    EXPECT_EQ(read(readUInt8Field, "0"), quint8(0));
    EXPECT_EQ(read(readUInt8Field, "255"), quint8(255));
    EXPECT_EQ(read(readUInt8Field, "256"), quint8(0));
    EXPECT_EQ(read(readUInt8Field, "300"), quint8(44));
    EXPECT_EQ(read(readUInt8Field, "-1"), quint8(255));
    EXPECT_EQ(read(readUInt8Field, "-129"), quint8(127));
    EXPECT_EQ(read(readUInt8Field, "65535"), quint8(255));
    EXPECT_EQ(read(readUInt8Field, "2147483647"), quint8(255));
}

TEST(UInt8Field, IsAPresentZeroForAFractionAndBeyond32Bits)
{
    EXPECT_EQ(read(readUInt8Field, "7.5"), quint8(0));
    EXPECT_EQ(read(readUInt8Field, "2147483649"), quint8(0));
    EXPECT_EQ(read(readUInt8Field, "-2147483649"), quint8(0));
}

TEST(BoolField, IsTrueForAWholeNumberOtherThan0)
{
    EXPECT_EQ(read(readBoolField, "1"), true);
    EXPECT_EQ(read(readBoolField, "2"), true);
    EXPECT_EQ(read(readBoolField, "-1"), true);
    EXPECT_EQ(read(readBoolField, "1.0"), true);
    EXPECT_EQ(read(readBoolField, "2147483647"), true);
    EXPECT_EQ(read(readBoolField, "0"), false);
}

TEST(BoolField, IsFalseForAFractionAndBeyond32Bits)
{
    EXPECT_EQ(read(readBoolField, "0.5"), false);
    EXPECT_EQ(read(readBoolField, "1.5"), false);
    EXPECT_EQ(read(readBoolField, "2147483648"), false);
    EXPECT_EQ(read(readBoolField, "4294967297"), false);
}

TEST(BoolField, IsAPresentFalseForBothBooleans)
{
    EXPECT_EQ(read(readBoolField, "true"), false);
    EXPECT_EQ(read(readBoolField, "false"), false);
}

TEST(UInt64Field, TruncatesBelowTheSignBit)
{
    EXPECT_EQ(read(readUInt64Field, "0"), Q_UINT64_C(0));
    EXPECT_EQ(read(readUInt64Field, "3.9"), Q_UINT64_C(3));
    EXPECT_EQ(read(readUInt64Field, "79001234567"), Q_UINT64_C(79001234567));
    EXPECT_EQ(read(readUInt64Field, "4294967296"), Q_UINT64_C(4294967296));
    EXPECT_EQ(read(readUInt64Field, "9007199254740992"), Q_UINT64_C(9007199254740992));
    EXPECT_EQ(read(readUInt64Field, "9007199254740993"), Q_UINT64_C(9007199254740992));
    EXPECT_EQ(read(readUInt64Field, "9223372036854774784"), Q_UINT64_C(9223372036854774784));
}

TEST(UInt64Field, WrapsANegativeNumber)
{
    EXPECT_EQ(read(readUInt64Field, "-0.5"), Q_UINT64_C(0));
    EXPECT_EQ(read(readUInt64Field, "-1"), Q_UINT64_C(18446744073709551615));
    EXPECT_EQ(read(readUInt64Field, "-1.9"), Q_UINT64_C(18446744073709551615));
    EXPECT_EQ(read(readUInt64Field, "-9223372036854775808"), Q_UINT64_C(9223372036854775808));
    EXPECT_EQ(read(readUInt64Field, "-1e300"), Q_UINT64_C(9223372036854775808));
}

TEST(UInt64Field, ReachesFromTheSignBitUpTo64Bits)
{
    EXPECT_EQ(read(readUInt64Field, "9223372036854775807"), Q_UINT64_C(9223372036854775808)); // as a double
    EXPECT_EQ(read(readUInt64Field, "9223372036854775808"), Q_UINT64_C(9223372036854775808));
    EXPECT_EQ(read(readUInt64Field, "9223372036854777856"), Q_UINT64_C(9223372036854777856));
    EXPECT_EQ(read(readUInt64Field, "13835058055282163712"), Q_UINT64_C(13835058055282163712));
    EXPECT_EQ(read(readUInt64Field, "18446744073709549568"), Q_UINT64_C(18446744073709549568));
}

TEST(UInt64Field, IsTheTruncatedRestBeyond64Bits)
{
    EXPECT_EQ(read(readUInt64Field, "18446744073709551616"), Q_UINT64_C(9223372036854775808));
    EXPECT_EQ(read(readUInt64Field, "1e300"), Q_UINT64_C(9223372036854775808));
}

TEST(References, AreRecordsWithNothingButAnId)
{
    const auto locale = read(readLocaleRef, "7");
    ASSERT_TRUE(locale);
    EXPECT_EQ(locale->id, 7u);
    EXPECT_FALSE(locale->iso || locale->description);

    const auto contractor = read(readContractorRef, "8");
    ASSERT_TRUE(contractor);
    EXPECT_EQ(contractor->id, 8u);
    EXPECT_FALSE(contractor->inn || contractor->orgId || contractor->type || contractor->officialName
                 || contractor->name || contractor->extra);

    const auto user = read(readUserRef, "9");
    ASSERT_TRUE(user);
    EXPECT_EQ(user->id, 9u);
    EXPECT_FALSE(user->name || user->login || user->contacts || user->isActive || user->domainId || user->roles
                 || user->phone || user->domain || user->orgId);
}

TEST(References, TruncateAndWrapTheirId)
{
    EXPECT_EQ(read(readLocaleRef, "0")->id, 0u);
    EXPECT_EQ(read(readLocaleRef, "1.9")->id, 1u);
    EXPECT_EQ(read(readContractorRef, "-1")->id, 4294967295u);
    EXPECT_EQ(read(readUserRef, "4294967296")->id, 0u);
}

// ---- Ids ----

// What the id reader made of an object, and nothing where it refused it.
std::optional<quint32> readId(const std::string &json, const FieldKeys &keys)
{
    quint32 id = 0;
    return readIdField(id, object(json), keys) ? std::optional<quint32>(id) : std::nullopt;
}

const FieldKeys threeKeys = {"first", "second", "third"};

TEST(IdField, StandsUnderItsFirstKey)
{
    EXPECT_EQ(readId(R"({"first":7})", threeKeys), 7u);
}

TEST(IdField, StandsUnderItsThirdKeyWhenTheFirstIsMissing)
{
    EXPECT_EQ(readId(R"({"third":7})", threeKeys), 7u);
}

TEST(IdField, IsTakenFromTheFirstKeyWhenBothAreThere)
{
    EXPECT_EQ(readId(R"({"third":8,"first":7})", threeKeys), 7u);
}

TEST(IdField, IsNeverTakenFromTheSecondKey)
{
    EXPECT_EQ(readId(R"({"second":7})", threeKeys), std::nullopt);
}

TEST(IdField, IsRequired)
{
    EXPECT_EQ(readId("{}", threeKeys), std::nullopt);
    EXPECT_EQ(readId(R"({"First":7,"THIRD":7})", threeKeys), std::nullopt);
}

TEST(IdField, HasNoFallbackInAnEmptyThirdKey)
{
    EXPECT_EQ(readId(R"({"":7})", {"id", "", ""}), std::nullopt);
    EXPECT_EQ(readId(R"({"id":7,"":8})", {"id", "", ""}), 7u);
}

TEST(IdField, HasToBeANumber)
{
    for (const char *value : {"\"7\"", "true", "false", "null", "[7]", "{\"id\":7}"}) {
        EXPECT_EQ(readId(R"({"first":)" + std::string(value) + "}", threeKeys), std::nullopt) << value;
        EXPECT_EQ(readId(R"({"third":)" + std::string(value) + "}", threeKeys), std::nullopt) << value;
    }
}

TEST(IdField, OfAWrongTypeIsNotMendedByTheThirdKey)
{
    EXPECT_EQ(readId(R"({"first":"7","third":7})", threeKeys), std::nullopt);
    EXPECT_EQ(readId(R"({"first":null,"third":7})", threeKeys), std::nullopt);
}

TEST(IdField, TruncatesAndWraps)
{
    EXPECT_EQ(readId(R"({"first":1.9})", threeKeys), 1u);
    EXPECT_EQ(readId(R"({"first":-1})", threeKeys), 4294967295u);
    EXPECT_EQ(readId(R"({"third":4294967296})", threeKeys), 0u);
}

// ---- Documents ----

// What the envelope reader answers.
quint32 opened(const QString &text)
{
    QJsonObject payload;
    return openEnvelope(text, payload);
}

TEST(Envelope, IsTheObjectUnderD)
{
    QJsonObject payload;
    EXPECT_EQ(openEnvelope(R"({"a":{"id":1},"D":{"id":2,"name":"x"},"d":3})", payload), 0u);
    EXPECT_EQ(payload, object(R"({"id":2,"name":"x"})"));
}

TEST(Envelope, MayBeEmpty)
{
    QJsonObject payload;
    EXPECT_EQ(openEnvelope(R"( { "D" : { } } )", payload), 0u);
    EXPECT_TRUE(payload.isEmpty());
}

TEST(Envelope, KeepsTextsBeyondAscii)
{
    QJsonObject payload;
    EXPECT_EQ(openEnvelope(QString::fromUtf8(R"({"D":{"name":"Ж😀"}})"), payload), 0u);
    EXPECT_EQ(payload["name"].toString(), QString::fromUtf8("Ж😀"));
}

TEST(Envelope, OfATextThatIsNoObjectIsRefused)
{
    for (const char *text :
         {"", " ", "not json", "{", R"({"D":{})", R"({"D":{}}x)", R"({"D":{}}{"D":{}})", "{'D':{}}",
          R"({"D":{"id":01}})", R"({"D":{},})", "[1,2]", R"([{"D":{}}])", "[]", "7", "\"D\"", "true", "null"})
        EXPECT_EQ(opened(text), 10u) << text;
}

TEST(Envelope, OfANullTextIsRefused)
{
    EXPECT_EQ(opened(QString()), 10u);
}

TEST(Envelope, ThatIsMissingMakesASoundObjectIncomplete)
{
    for (const char *text : {"{}", R"({"d":{}})", R"({"":{}})", R"({"D ":{}})", R"({"items":[{"id":1}]})"})
        EXPECT_EQ(opened(text), 5u) << text;
}

TEST(Envelope, ThatIsNoObjectMakesASoundObjectIncomplete)
{
    for (const char *text :
         {R"({"D":[]})", R"({"D":[{"id":1}]})", R"({"D":7})", R"({"D":"{}"})", R"({"D":true})", R"({"D":null})"})
        EXPECT_EQ(opened(text), 5u) << text;
}

std::vector<quint32> idsOf(const std::vector<Locale> &locales)
{
    std::vector<quint32> ids;
    for (const Locale &locale : locales)
        ids.push_back(locale.id);
    return ids;
}

TEST(Batch, HoldsItsRecordsInTheirOrder)
{
    std::vector<Locale> locales;
    EXPECT_EQ(
        readBatch(R"({"D":{"items":[{"id":3},{"id":1,"iso":"x"},{"id":2},{"id":1}],"id":"?"}})", locales, fillLocale),
        0u);
    EXPECT_EQ(idsOf(locales), (std::vector<quint32>{3, 1, 2, 1}));
    EXPECT_EQ(locales[1].iso, QString("x"));
    EXPECT_FALSE(locales[3].iso);
}

TEST(Batch, WithoutItemsIsIncomplete)
{
    std::vector<Locale> locales;
    EXPECT_EQ(readBatch(R"({"D":{}})", locales, fillLocale), 5u);
    EXPECT_EQ(readBatch(R"({"D":{"id":1}})", locales, fillLocale), 5u);
    EXPECT_EQ(readBatch(R"({"D":{"Items":[{"id":1}]}})", locales, fillLocale), 5u);
    EXPECT_TRUE(locales.empty());
}

TEST(Batch, WhoseItemsAreNoArrayIsIncomplete)
{
    for (const char *items : {R"({"id":1})", "{}", "7", "\"[]\"", "true", "null"}) {
        std::vector<Locale> locales;
        const QString text = QString(R"({"D":{"items":%1}})").arg(items);
        EXPECT_EQ(readBatch(text, locales, fillLocale), 5u) << items;
        EXPECT_TRUE(locales.empty()) << items;
    }
}

TEST(Batch, WithoutARecordIsRefused)
{
    std::vector<Locale> locales;
    EXPECT_EQ(readBatch(R"({"D":{"items":[]}})", locales, fillLocale), 10u);
    EXPECT_TRUE(locales.empty());
}

TEST(Batch, AnswersAsItsEnvelopeDoes)
{
    std::vector<Locale> locales;
    EXPECT_EQ(readBatch("[]", locales, fillLocale), 10u);
    EXPECT_EQ(readBatch("", locales, fillLocale), 10u);
    EXPECT_EQ(readBatch(R"({"items":[{"id":1}]})", locales, fillLocale), 5u);
    EXPECT_EQ(readBatch(R"({"D":[{"id":1}]})", locales, fillLocale), 5u);
    EXPECT_TRUE(locales.empty());
}

TEST(Batch, KeepsTheRecordsBeforeAnElementThatIsNoObject)
{
    for (const char *element : {"7", "\"x\"", "true", "null", "[]", R"([{"id":3}])"}) {
        std::vector<Locale> locales;
        const QString text = QString(R"({"D":{"items":[{"id":1},{"id":2},%1,{"id":4}]}})").arg(element);
        EXPECT_EQ(readBatch(text, locales, fillLocale), 5u) << element;
        EXPECT_EQ(idsOf(locales), (std::vector<quint32>{1, 2})) << element;
    }
}

TEST(Batch, KeepsTheRecordsBeforeARefusedOne)
{
    std::vector<Locale> locales;
    EXPECT_EQ(readBatch(R"({"D":{"items":[{"id":1},{"id":2},{"id":3,"iso":7},{"id":4}]}})", locales, fillLocale), 5u);
    EXPECT_EQ(idsOf(locales), (std::vector<quint32>{1, 2}));
}

TEST(Batch, KeepsNothingWhenItsFirstRecordIsRefused)
{
    std::vector<Locale> locales;
    EXPECT_EQ(readBatch(R"({"D":{"items":[{},{"id":4}]}})", locales, fillLocale), 5u);
    EXPECT_TRUE(locales.empty());
}

TEST(OneRecord, IsPresentWhenItWasRead)
{
    std::optional<Locale> locale;
    EXPECT_EQ(readOneRecord(R"({"D":{"id":7,"iso":"x","unknown":null}})", locale, fillLocale), 0u);
    ASSERT_TRUE(locale);
    EXPECT_EQ(locale->id, 7u);
    EXPECT_EQ(locale->iso, QString("x"));
    EXPECT_FALSE(locale->description);
}

TEST(OneRecord, StaysAbsentWhenItIsRefused)
{
    std::optional<Locale> locale;
    EXPECT_EQ(readOneRecord(R"({"D":{}})", locale, fillLocale), 5u);
    EXPECT_FALSE(locale);
    EXPECT_EQ(readOneRecord(R"({"D":{"id":7,"iso":null}})", locale, fillLocale), 5u);
    EXPECT_FALSE(locale);
    EXPECT_EQ(readOneRecord(R"({"D":{"items":[{"id":7}]}})", locale, fillLocale), 5u);
    EXPECT_FALSE(locale);
}

TEST(OneRecord, StaysAbsentWithoutItsEnvelope)
{
    std::optional<Locale> locale;
    EXPECT_EQ(readOneRecord(R"({"id":7})", locale, fillLocale), 5u);
    EXPECT_FALSE(locale);
    EXPECT_EQ(readOneRecord("[7]", locale, fillLocale), 10u);
    EXPECT_FALSE(locale);
}

TEST(BareId, StandsUnderTheGivenKeyAndNoOther)
{
    quint32 id = 77;
    EXPECT_EQ(readBareId(R"({"D":{"id":1,"op_id":2}})", "op_id", id), 0u);
    EXPECT_EQ(id, 2u);
}

TEST(BareId, TruncatesAndWraps)
{
    quint32 id = 77;
    EXPECT_EQ(readBareId(R"({"D":{"id":7.9}})", "id", id), 0u);
    EXPECT_EQ(id, 7u);
    EXPECT_EQ(readBareId(R"({"D":{"id":-1}})", "id", id), 0u);
    EXPECT_EQ(id, 4294967295u);
    EXPECT_EQ(readBareId(R"({"D":{"id":4294967297}})", "id", id), 0u);
    EXPECT_EQ(id, 1u);
}

TEST(BareId, OfAnyOtherTypeIs0)
{
    for (const char *value : {"\"7\"", "true", "false", "null", "[7]", R"({"id":7})"}) {
        quint32 id = 77;
        EXPECT_EQ(readBareId(QString(R"({"D":{"id":%1}})").arg(value), "id", id), 0u) << value;
        EXPECT_EQ(id, 0u) << value;
    }
}

TEST(BareId, ThatIsMissingIsIncompleteAndLeavesTheArgument)
{
    quint32 id = 77;
    EXPECT_EQ(readBareId(R"({"D":{}})", "op_id", id), 5u);
    EXPECT_EQ(readBareId(R"({"D":{"id":1,"OP_ID":2}})", "op_id", id), 5u);
    EXPECT_EQ(readBareId(R"({"op_id":1})", "op_id", id), 5u);
    EXPECT_EQ(readBareId(R"({"D":7})", "op_id", id), 5u);
    EXPECT_EQ(id, 77u);
}

TEST(BareId, OfATextThatIsNoObjectIsRefusedAndLeavesTheArgument)
{
    quint32 id = 77;
    EXPECT_EQ(readBareId("", "id", id), 10u);
    EXPECT_EQ(readBareId("7", "id", id), 10u);
    EXPECT_EQ(readBareId(R"([{"id":1}])", "id", id), 10u);
    EXPECT_EQ(id, 77u);
}

// ---- The order of an object's fields ----

// A member of an object: its key, a value that is taken, one that is refused (null where there is none), and whether
// the record holds it.
template<class Record>
struct Step
{
    std::string key;
    std::string good;
    const char *bad;
    std::function<bool(const Record &)> isSet;
};

template<class Record, class Member>
Step<Record> step(const char *key, const char *good, const char *bad, Member Record::*member)
{
    return {key, good, bad, [=](const Record &record) {
                if constexpr (std::is_same_v<Member, quint32>)
                    return record.*member == 7u;
                else
                    return record.*member != Member();
            }};
}

// An embedded record or a list, which cannot be compared.
template<class Record, class Part>
Step<Record> step(const char *key, const char *good, const char *bad, std::vector<Part> Record::*member)
{
    return {key, good, bad, [=](const Record &record) { return !(record.*member).empty(); }};
}
template<class Record, class Part>
Step<Record> embedded(const char *key, const char *good, const char *bad, std::optional<Part> Record::*member)
{
    return {key, good, bad, [=](const Record &record) { return (record.*member).has_value(); }};
}

// The object of all members with their good values, but for the one at `failing`.
template<class Record>
QJsonObject objectOf(const std::vector<Step<Record>> &steps, size_t failing)
{
    std::string json;
    for (size_t i = 0; i < steps.size(); ++i)
        json += (i ? ",\"" : "\"") + steps[i].key + "\":" + (i == failing ? std::string(steps[i].bad) : steps[i].good);
    return object('{' + json + '}');
}

// Lets each member fail in turn: what is read before it is there then, what is read behind it is not.
template<class Record, class Keys>
void expectOrder(ObjectReader<Record, Keys> fill, const std::vector<Step<Record>> &steps)
{
    for (size_t failing = 0; failing < steps.size(); ++failing) {
        if (!steps[failing].bad)
            continue;
        Record record;
        EXPECT_FALSE(fill(record, objectOf(steps, failing), Keys())) << steps[failing].key;
        for (size_t i = 0; i < steps.size(); ++i) {
            if (i != failing) {
                EXPECT_EQ(steps[i].isSet(record), i < failing)
                    << steps[i].key << " where " << steps[failing].key << " fails";
            }
        }
    }
}

// Reads an object of the first member, the id, and one more: that one and no other is there then.
template<class Record, class Keys>
void expectEachAlone(ObjectReader<Record, Keys> fill, const std::vector<Step<Record>> &steps)
{
    for (size_t alone = 1; alone < steps.size(); ++alone) {
        Record record;
        EXPECT_TRUE(fill(record, objectOf<Record>({steps[0], steps[alone]}, steps.size()), Keys()));
        for (size_t i = 1; i < steps.size(); ++i)
            EXPECT_EQ(steps[i].isSet(record), i == alone) << steps[i].key << " where only " << steps[alone].key;
    }
}

template<class Record, class Keys>
void expectSteps(ObjectReader<Record, Keys> fill, const std::vector<Step<Record>> &steps)
{
    Record record;
    EXPECT_TRUE(fill(record, objectOf(steps, steps.size()), Keys()));
    for (const Step<Record> &one : steps)
        EXPECT_TRUE(one.isSet(record)) << one.key;
    expectOrder(fill, steps);
    expectEachAlone(fill, steps);
}

TEST(ObjectReadersReadInOrder, Locale)
{
    expectSteps(fillLocale, {step("id", "7", "\"7\"", &Locale::id), step("iso", "\"x\"", "1", &Locale::iso),
                             step("description", "\"x\"", "1", &Locale::description)});
}

TEST(ObjectReadersReadInOrder, User)
{
    expectSteps(fillUser, {step("id", "7", "\"7\"", &User::id), step("name", "\"x\"", "1", &User::name),
                           step("login", "\"x\"", "1", &User::login), step("contacts", "\"x\"", "1", &User::contacts),
                           step("active", "1", "\"1\"", &User::isActive), step("domain", "1", "\"1\"", &User::domainId),
                           step("roles", "1", "\"1\"", &User::roles), step("phone", "1", "\"1\"", &User::phone),
                           step("org", "1", "\"1\"", &User::orgId)});
}

TEST(ObjectReadersReadInOrder, Domain)
{
    expectSteps(fillDomain,
                {step("id", "7", "\"7\"", &Domain::id), step("name", "\"x\"", "1", &Domain::name),
                 step("org_id", "1", "\"1\"", &Domain::orgId), embedded("locale_id", "1", "\"1\"", &Domain::locale)});
}

TEST(ObjectReadersReadInOrder, Person)
{
    expectSteps(fillPerson, {step("id", "7", "\"7\"", &Person::id), step("name", "\"x\"", "1", &Person::name),
                             step("phone", "\"x\"", "1", &Person::phone), step("email", "\"x\"", "1", &Person::email),
                             step("postal", "\"x\"", "1", &Person::postal)});
}

TEST(ObjectReadersReadInOrder, OrganizationButForItsContact)
{
    expectSteps(fillOrganization,
                {step("org_id", "7", "\"7\"", &Organization::id), step("inn", "\"x\"", "1", &Organization::inn),
                 step("off_name", "\"x\"", "1", &Organization::officialName),
                 step("short_name", "\"x\"", "1", &Organization::shortName),
                 step("kpp", "\"x\"", "1", &Organization::kpp), step("ogrn", "\"x\"", "1", &Organization::ogrn),
                 step("address_text", "\"x\"", "1", &Organization::address),
                 embedded("locale_id", "1", "\"1\"", &Organization::locale)});
}

TEST(ObjectReadersReadInOrder, Contractor)
{
    expectSteps(fillContractor,
                {step("id", "7", "\"7\"", &Contractor::id), step("inn", "\"x\"", "1", &Contractor::inn),
                 step("type", "1", "\"1\"", &Contractor::type),
                 step("off_name", "\"x\"", "1", &Contractor::officialName),
                 step("name", "\"x\"", "1", &Contractor::name), step("extra", "\"x\"", "1", &Contractor::extra),
                 step("org_id", "1", "\"1\"", &Contractor::orgId)});
}

TEST(ObjectReadersReadInOrder, Contract)
{
    expectSteps(fillContract,
                {step("id", "7", "\"7\"", &Contract::id), step("number", "\"x\"", "1", &Contract::number),
                 embedded("contractor_id", "1", "{\"id\":1}", &Contract::contractor),
                 step("c_name", "\"x\"", "1", &Contract::name), step("status", "1", "\"1\"", &Contract::status),
                 step("date", "1", "\"1\"", &Contract::date), step("description", "\"x\"", "1", &Contract::description),
                 step("extra", "\"x\"", "1", &Contract::extra),
                 embedded("operator_id", "1", "{\"id\":1}", &Contract::user)});
}

TEST(ObjectReadersReadInOrder, Zone)
{
    expectSteps(fillZone,
                {step("id", "7", "\"7\"", &Zone::id), step("name", "\"x\"", "1", &Zone::name),
                 step("detector", "1", "\"1\"", &Zone::detector), step("physic", "1", "\"1\"", &Zone::physic),
                 step("form", "1", "\"1\"", &Zone::form), step("flags", "1", "\"1\"", &Zone::flags),
                 step("delay", "1", "\"1\"", &Zone::delay), step("schedule_id", "1", "\"1\"", &Zone::scheduleId),
                 step("tracert", "1", "\"1\"", &Zone::tracert), step("uid_type", "1", "\"1\"", &Zone::uidType),
                 step("arm", "1", "\"1\"", &Zone::arm)});
}

TEST(ObjectReadersReadInOrder, Section)
{
    expectSteps(fillSection,
                {step("id", "7", "\"7\"", &Section::id), step("name", "\"x\"", "1", &Section::name),
                 step("schedule_id", "1", "\"1\"", &Section::scheduleId),
                 step("tracert", "1", "\"1\"", &Section::tracert), step("flags", "1", "\"1\"", &Section::flags),
                 step("detector", "1", "\"1\"", &Section::detector), step("arm", "1", "\"1\"", &Section::arm),
                 step("physic", "1", "\"1\"", &Section::physic), step("form", "1", "\"1\"", &Section::form),
                 step("delay", "1", "\"1\"", &Section::delay), step("uid_type", "1", "\"1\"", &Section::uidType),
                 step("zones", "[{\"id\":1}]", "[1]", &Section::zones)});
}

TEST(ObjectReadersReadInOrder, DeviceUser)
{
    expectSteps(fillDeviceUser,
                {step("user_index", "7", "\"7\"", &DeviceUser::id), step("name", "\"x\"", "1", &DeviceUser::name),
                 step("comment", "\"x\"", "1", &DeviceUser::comment), step("phone", "\"x\"", "1", &DeviceUser::phone),
                 step("sections", "[1]", "[\"1\"]", &DeviceUser::sections)});
}

TEST(ObjectReadersReadInOrder, Device)
{
    expectSteps(fillDevice,
                {step("id", "7", "\"7\"", &Device::id), step("account", "1", "\"1\"", &Device::account),
                 step("domain", "1", "\"1\"", &Device::domainId),
                 step("config_version", "1", "\"1\"", &Device::configVersion),
                 step("parted", "1", "\"1\"", &Device::isParted), step("cluster_id", "1", "\"1\"", &Device::clusterId),
                 step("sections", "[{\"id\":1}]", "[1]", &Device::sections),
                 step("users", "[{\"user_index\":1}]", "[1]", &Device::users)});
}

TEST(ObjectReadersReadInOrder, Site)
{
    expectSteps(
        fillSite,
        {step("id", "7", "\"7\"", &Site::id), step("name", "\"x\"", "1", &Site::name),
         step("comment", "\"x\"", "1", &Site::comment), step("extra", "\"x\"", "1", &Site::extra),
         step("is_crossing", "1", "\"1\"", &Site::isCrossing), step("domain", "1", "\"1\"", &Site::domainId),
         step("address_text", "\"x\"", "1", &Site::address), step("contract_id", "1", "\"1\"", &Site::contractId),
         step("contract_status", "1", "\"1\"", &Site::contractStatus), step("type", "1", "\"1\"", &Site::type),
         step("category", "1", "\"1\"", &Site::category), step("arm_mode", "1", "\"1\"", &Site::armMode),
         step("delegated", "1", "\"1\"", &Site::isDelegated), step("site_plan", "1", "\"1\"", &Site::isSitePlanExists),
         embedded("location", "{\"lat\":1}", nullptr, &Site::location),
         step("devices", "[{\"id\":1}]", "[1]", &Site::devices)});
}

TEST(ObjectReadersReadInOrder, Event)
{
    expectSteps(fillEvent,
                {step("id", "7", "\"7\"", &Event::id), step("time", "1", "\"1\"", &Event::time),
                 step("device", "1", "\"1\"", &Event::deviceId), step("section", "1", "\"1\"", &Event::sectionId),
                 step("zone", "1", "\"1\"", &Event::zoneId), step("active", "1", "\"1\"", &Event::active),
                 step("class", "1", "\"1\"", &Event::eventClass), step("detector", "1", "\"1\"", &Event::detector),
                 step("reason", "1", "\"1\"", &Event::reason), step("localtime", "1", "\"1\"", &Event::localTime),
                 step("channel", "1", "\"1\"", &Event::channel), step("data", "\"x\"", "1", &Event::data),
                 step("review_id", "1", "\"1\"", &Event::reviewId),
                 step("review_state", "1", "\"1\"", &Event::reviewState),
                 step("operator_id", "1", "\"1\"", &Event::userId), step("is_closed", "1", "\"1\"", &Event::isClosed),
                 step("affect", "1", "\"1\"", &Event::affect), step("jdata", "\"x\"", "{}", &Event::jData)});
}

// ---- What is particular to an object ----

// An object, read by `fill` with success.
template<class Record, class Keys>
Record filled(bool (*fill)(Record &, const QJsonObject &, const Keys &), const std::string &json)
{
    Record record;
    EXPECT_TRUE(fill(record, object(json), Keys())) << json;
    return record;
}

// Whether `fill` refuses an object.
template<class Record, class Keys>
bool refuses(bool (*fill)(Record &, const QJsonObject &, const Keys &), const std::string &json)
{
    Record record;
    return !fill(record, object(json), Keys());
}

TEST(OrganizationReader, ReadsTheContact)
{
    const Organization organization =
        filled(fillOrganization, R"({"org_id":2,"contact":{"id":5,"name":"n","phone":"p","email":"e","postal":"o"}})");
    ASSERT_TRUE(organization.contact);
    EXPECT_EQ(organization.contact->id, 5u);
    EXPECT_EQ(organization.contact->name, QString("n"));
    EXPECT_EQ(organization.contact->phone, QString("p"));
    EXPECT_EQ(organization.contact->email, QString("e"));
    EXPECT_EQ(organization.contact->postal, QString("o"));
}

TEST(OrganizationReader, ReadsTheContactAfterAFieldThatFailed)
{
    Organization organization;
    EXPECT_FALSE(fillOrganization(organization, object(R"({"org_id":2,"inn":1,"kpp":"k","contact":{"id":5}})")));
    EXPECT_FALSE(organization.kpp);
    ASSERT_TRUE(organization.contact);
    EXPECT_EQ(organization.contact->id, 5u);
}

TEST(OrganizationReader, ReadsTheContactEvenWithoutAnId)
{
    Organization organization;
    EXPECT_FALSE(fillOrganization(organization, object(R"({"contact":{"id":5,"name":"n"}})")));
    ASSERT_TRUE(organization.contact);
    EXPECT_EQ(organization.contact->name, QString("n"));
}

TEST(OrganizationReader, StoresAContactThatFailed)
{
    Organization organization;
    EXPECT_FALSE(fillOrganization(
        organization, object(R"({"org_id":2,"inn":"i","contact":{"id":5,"name":"n","phone":1,"email":"e"}})")));
    EXPECT_EQ(organization.inn, QString("i"));
    ASSERT_TRUE(organization.contact);
    EXPECT_EQ(organization.contact->id, 5u);
    EXPECT_EQ(organization.contact->name, QString("n"));
    EXPECT_FALSE(organization.contact->email);
}

TEST(OrganizationReader, StoresAContactWithoutAnIdAndFails)
{
    Organization organization;
    EXPECT_FALSE(fillOrganization(organization, object(R"({"org_id":2,"contact":{"name":"n"}})")));
    ASSERT_TRUE(organization.contact);
    EXPECT_EQ(organization.contact->id, 0u);
    EXPECT_FALSE(organization.contact->name);
}

TEST(OrganizationReader, FailsWhereBothFail)
{
    EXPECT_TRUE(refuses(fillOrganization, R"({"org_id":2,"inn":1,"contact":{"id":"5"}})"));
}

TEST(OrganizationReader, TakesWhatIsNoFilledObjectForNoContact)
{
    for (const char *contact : {"{}", "7", "\"x\"", "true", "null", "[]", R"([{"id":5}])"})
        EXPECT_FALSE(
            filled(fillOrganization, R"({"org_id":2,"contact":)" + std::string(contact) + "}").contact.has_value())
            << contact;
}

TEST(OrganizationReader, WantsTheIdUnderItsOwnKey)
{
    EXPECT_TRUE(refuses(fillOrganization, R"({"id":2})"));
}

TEST(SectionReader, TakesSectionForId)
{
    EXPECT_EQ(filled(fillSection, R"({"section":5})").id, 5u);
    EXPECT_EQ(filled(fillSection, R"({"section":5,"id":6})").id, 6u);
    EXPECT_TRUE(refuses(fillSection, R"({"device":5})"));
}

TEST(ZoneReader, TakesZoneForId)
{
    EXPECT_EQ(filled(fillZone, R"({"zone":5})").id, 5u);
    EXPECT_EQ(filled(fillZone, R"({"zone":5,"id":6})").id, 6u);
    EXPECT_TRUE(refuses(fillZone, R"({"device":5,"section":6})"));
}

TEST(ZoneReader, DoesNotLookAtDeviceAndSection)
{
    EXPECT_EQ(filled(fillZone, R"({"id":5,"device":"x","section":null})").id, 5u);
}

TEST(LocaleReader, KnowsNoOtherKeyOfItsId)
{
    EXPECT_TRUE(refuses(fillLocale, R"({"":5,"locale_id":5})"));
}

TEST(DeviceUserReader, WantsItsIndex)
{
    EXPECT_TRUE(refuses(fillDeviceUser, R"({"id":5})"));
    EXPECT_EQ(filled(fillDeviceUser, R"({"user_index":-1})").id, 4294967295u);
}

TEST(DeviceUserReader, TruncatesTheNumbersOfSections)
{
    EXPECT_EQ(filled(fillDeviceUser, R"({"user_index":4,"sections":[1,1,2.9,-1,4294967296]})").sections,
              (std::vector<quint32>{1, 1, 2, 4294967295u, 0}));
}

TEST(EventReader, DoesNotKnowTheOtherKeysOfDeviceAndSection)
{
    const Event event = filled(fillEvent, R"({"id":5,"device_id":1,"device_section":"x"})");
    EXPECT_FALSE(event.deviceId);
    EXPECT_FALSE(event.sectionId);
}

TEST(EventReader, ReadsNothingThatComesFromOtherTables)
{
    const Event event =
        filled(fillEvent, R"({"id":5,"account":1,"section_name":"s","zone_name":"z","domain_name":"d"})");
    EXPECT_FALSE(event.account || event.sectionName || event.zoneName || event.domainName);
}

TEST(NestedLists, OfAnotherTypeHoldNoElements)
{
    for (const char *list : {"{}", R"({"id":1})", "7", "\"x\"", "true", "null", "[]"}) {
        const std::string value = list;
        EXPECT_TRUE(filled(fillSection, R"({"id":1,"zones":)" + value + "}").zones.empty()) << list;
        EXPECT_TRUE(filled(fillDeviceUser, R"({"user_index":1,"sections":)" + value + "}").sections.empty()) << list;
        EXPECT_TRUE(filled(fillDevice, R"({"id":1,"sections":)" + value + "}").sections.empty()) << list;
        EXPECT_TRUE(filled(fillDevice, R"({"id":1,"users":)" + value + "}").users.empty()) << list;
        EXPECT_TRUE(filled(fillSite, R"({"id":1,"devices":)" + value + "}").devices.empty()) << list;
    }
}

TEST(NestedLists, RefuseAnElementThatIsNoObject)
{
    for (const char *element : {"7", "\"x\"", "true", "null", "[]"}) {
        const std::string value = element;
        EXPECT_TRUE(refuses(fillSection, R"({"id":1,"zones":[{"id":1},)" + value + "]}")) << element;
        EXPECT_TRUE(refuses(fillDevice, R"({"id":1,"sections":[{"id":1},)" + value + "]}")) << element;
        EXPECT_TRUE(refuses(fillDevice, R"({"id":1,"users":[{"user_index":1},)" + value + "]}")) << element;
        EXPECT_TRUE(refuses(fillSite, R"({"id":1,"devices":[{"id":1},)" + value + "]}")) << element;
    }
}

TEST(NestedLists, OfSectionNumbersRefuseAnElementThatIsNoNumber)
{
    for (const char *element : {"\"1\"", "true", "null", "[]", "{}"})
        EXPECT_TRUE(refuses(fillDeviceUser, R"({"user_index":1,"sections":[1,)" + std::string(element) + "]}"))
            << element;
}

TEST(NestedLists, RefuseAnElementThatItsOwnReaderRefuses)
{
    EXPECT_TRUE(refuses(fillDevice, R"({"id":1,"sections":[{"id":1,"zones":[{"name":"x"}]}]})"));
    EXPECT_TRUE(refuses(fillDevice, R"({"id":1,"users":[{"user_index":1,"sections":["1"]}]})"));
    EXPECT_TRUE(refuses(fillSite, R"({"id":1,"devices":[{"id":1,"users":[{"name":"x"}]}]})"));
}

TEST(NestedLists, HoldTheWholeTree)
{
    const Site site = filled(fillSite, R"({"id":1,"devices":[{"id":10,"sections":[{"id":20,"zones":[{"id":30}]},
                                           {"section":21}],"users":[{"user_index":4,"sections":[20]}]},{"id":11}]})");
    ASSERT_EQ(site.devices.size(), 2u);
    EXPECT_EQ(site.devices[1].id, 11u);
    const Device &device = site.devices[0];
    EXPECT_EQ(device.id, 10u);
    ASSERT_EQ(device.sections.size(), 2u);
    EXPECT_EQ(device.sections[1].id, 21u);
    ASSERT_EQ(device.sections[0].zones.size(), 1u);
    EXPECT_EQ(device.sections[0].zones[0].id, 30u);
    ASSERT_EQ(device.users.size(), 1u);
    EXPECT_EQ(device.users[0].sections, std::vector<quint32>{20});
}

TEST(SiteReader, GivesTheLocationTheIdOfTheSite)
{
    const Site site = filled(fillSite, R"({"id":7.9,"location":{"id":9,"lat":55.75,"lon":-37.5}})");
    ASSERT_TRUE(site.location);
    EXPECT_EQ(site.location->id, 7u);
    EXPECT_EQ(site.location->latitude, 55.75);
    EXPECT_EQ(site.location->longitude, -37.5);
}

TEST(SiteReader, ReadsACoordinateOfAnotherTypeAs0)
{
    for (const char *value : {"\"55\"", "true", "null", "[]", "{}"}) {
        const Site site = filled(fillSite, R"({"id":7,"location":{"lat":)" + std::string(value) + "}}");
        ASSERT_TRUE(site.location) << value;
        EXPECT_EQ(site.location->latitude, 0.0) << value;
        EXPECT_FALSE(site.location->longitude) << value;
    }
}

TEST(SiteReader, TakesAnyFilledObjectForALocation)
{
    const Site site = filled(fillSite, R"({"id":7,"location":{"x":1}})");
    ASSERT_TRUE(site.location);
    EXPECT_EQ(site.location->id, 7u);
    EXPECT_FALSE(site.location->latitude);
    EXPECT_FALSE(site.location->longitude);
}

TEST(SiteReader, TakesWhatIsNoFilledObjectForNoLocation)
{
    for (const char *location : {"{}", "7", "\"x\"", "true", "null", "[]", R"([{"lat":1}])"})
        EXPECT_FALSE(filled(fillSite, R"({"id":7,"location":)" + std::string(location) + "}").location.has_value())
            << location;
}

TEST(SiteReader, KnowsTheContractOnlyByItsId)
{
    const Site site = filled(fillSite, R"({"id":7,"contract_id":-4,"contract":{"id":5}})");
    EXPECT_EQ(site.contractId, -4);
    EXPECT_FALSE(site.contract);
}

} // namespace
