// How JSON texts are read, whatever the export: the envelope and its three forms, what each kind of member accepts and
// what its value becomes, and what a refused text leaves alone.
#include "Store.h"

#include <algorithm>
#include <cctype>

namespace {

using namespace brimlet::test;

// ---- The exports that read JSON ----

using Call = std::function<uint32_t(const uint16_t *, uint32_t)>;

// An export that returns a record with 0, and only with 0.
template<class Flat>
Call withRecord(uint32_t (*function)(Flat **, const uint16_t *, uint32_t))
{
    return [function](const uint16_t *text, uint32_t length) {
        Flat *out = nullptr;
        const uint32_t code = function(&out, text, length);
        EXPECT_EQ(out == nullptr, code != 0u);
        const Owned<Flat> record(out);
        return code;
    };
}

uint32_t addEventsAndFree(const uint16_t *text, uint32_t length)
{
    List<FlatEvent> events;
    const uint32_t code = addEvents(events.out(), events.count(), text, length);
    EXPECT_EQ(events.isNull(), code != 0u);
    return code;
}

std::string envelope(const std::string &payload)
{
    return R"({"D":)" + payload + "}";
}

// An export with a payload that returns 0 in the store of the fixture below.
struct Export
{
    std::string name;
    Call call;
    std::string payload;
};

const std::vector<Export> &exports()
{
    static const std::vector<Export> all = {
        {"addLocales", addLocales, R"({"items":[{"id":1}]})"},
        {"addUsers", addUsers, R"({"items":[{"id":1}]})"},
        {"addDomains", addDomains, R"({"items":[{"id":1}]})"},
        {"addOrganizations", addOrganizations, R"({"items":[{"org_id":1}]})"},
        {"addContractors", addContractors, R"({"items":[{"id":1}]})"},
        {"addContracts", addContracts, R"({"items":[{"id":1}]})"},
        {"addDevices", addDevices, R"({"items":[{"id":1}]})"},
        {"addSites", addSites, R"({"items":[{"id":1}]})"},
        {"addEvents", addEventsAndFree, R"({"items":[{"id":1,"device":1}]})"},
        {"updateUser", withRecord(updateUser), R"({"id":1})"},
        {"updateDomain", withRecord(updateDomain), R"({"id":1})"},
        {"updateOrganization", withRecord(updateOrganization), R"({"org_id":1})"},
        {"updateContractor", withRecord(updateContractor), R"({"id":1})"},
        {"updateContract", withRecord(updateContract), R"({"id":1})"},
        {"addDevice", addDevice, R"({"id":1})"},
        {"updateDeviceFw", withRecord(updateDeviceFw), R"({"id":1})"},
        {"addEvent", withRecord(addEvent), R"({"id":1})"},
        {"updateSite", withRecord(updateSite), R"({"id":1})"},
        {"updateSection", withRecord(updateSection), R"({"device":1,"id":1})"},
        {"updateZone", withRecord(updateZone), R"({"device":1,"section":1,"id":1})"},
        {"removeAffectFlag", withRecord(removeAffectFlag), R"({"id":1})"},
        {"deleteContract", deleteContract, R"({"id":1})"},
        {"deleteContractor", deleteContractor, R"({"id":1})"},
        {"deleteUser", deleteUser, R"({"op_id":1})"},
        {"deleteDomain", deleteDomain, R"({"domain_id":1})"},
        {"deleteOrganization", deleteOrganization, R"({"org_id":1})"},
        {"deleteZone", deleteZone, R"({"device":1,"section":1,"zone":1})"},
        {"deleteSection", deleteSection, R"({"device":1,"section":1})"},
        {"deleteDevice", deleteDevice, R"({"id":1})"},
        {"deleteSite", deleteSite, R"({"site_id":1})"},
    };
    return all;
}

// The name of a parameterised test.
template<class Parameter>
std::string nameOf(const ::testing::TestParamInfo<Parameter> &test)
{
    return test.param.name;
}

// A store with a record 1 of every kind, of which nothing is known but the id.
class Reading : public StoreTest
{
protected:
    Reading()
    {
        EXPECT_EQ(send(addLocales, R"({"D":{"items":[{"id":1}]}})"), 0u);
        EXPECT_EQ(send(addDomains, R"({"D":{"items":[{"id":1}]}})"), 0u);
        EXPECT_EQ(send(addOrganizations, R"({"D":{"items":[{"org_id":1}]}})"), 0u);
        EXPECT_EQ(send(addUsers, R"({"D":{"items":[{"id":1}]}})"), 0u);
        EXPECT_EQ(send(addContractors, R"({"D":{"items":[{"id":1}]}})"), 0u);
        EXPECT_EQ(send(addContracts, R"({"D":{"items":[{"id":1}]}})"), 0u);
        EXPECT_EQ(send(addDevices, R"({"D":{"items":[{"id":1,"sections":[{"id":1,"zones":[{"id":1}]}],
                                                       "users":[{"user_index":1}]}]}})"),
                  0u);
        EXPECT_EQ(send(addSites, R"({"D":{"items":[{"id":1}]}})"), 0u);
        EXPECT_EQ(listAdded(R"({"D":{"items":[{"id":1,"device":1}]}})").code, 0u);
    }

    // All rows of all tables.
    std::vector<std::vector<Row>> stored() const
    {
        std::vector<std::vector<Row>> tables;
        for (const char *table : {"Users", "Domains", "Organizations", "Locales", "Persons", "Contractors", "Contracts",
                                  "Zones", "Sections", "Devices", "Locations", "Sites", "DeviceUsers", "Events",
                                  "DeviceUserSectionLinks", "Session", "Version"})
            tables.push_back(file.rows(std::string("SELECT * FROM ") + table));
        return tables;
    }
};

// ---- The envelope ----

class Envelope : public Reading
{
};

TEST_F(Envelope, IsReadByEveryExport)
{
    for (const Export &one : exports()) {
        SCOPED_TRACE(one.name);
        EXPECT_EQ(send(one.call, envelope(one.payload)), 0u);
    }
}

TEST_F(Envelope, Returns10ForATextThatIsNoObject)
{
    const auto before = stored();
    const DebugLines lines;
    for (const Export &one : exports())
        for (const char *text : {"",
                                 " ",
                                 "not json",
                                 "[1,2]",
                                 "[]",
                                 R"([{"D":{"id":1}}])",
                                 "5",
                                 R"("D")",
                                 "null",
                                 "true",
                                 "{",
                                 "}",
                                 R"({"D":{"id":1})",
                                 R"({"D":{"id":1}}})",
                                 R"({"D":{"id":1}} x)",
                                 R"({"D":{"id":})",
                                 R"({D:{"id":1}})",
                                 R"({'D':{'id':1}})",
                                 R"({"D":{"id":1},})",
                                 R"({"D":{"id":NaN}})",
                                 R"({"D":{"id":1,"name":"\u12"}})"}) {
            SCOPED_TRACE(one.name + " of " + text);
            EXPECT_EQ(send(one.call, text), 10u);
        }
    EXPECT_EQ(stored(), before);
    EXPECT_EQ(lines.all(), std::vector<std::string>());
}

TEST_F(Envelope, Returns10ForANullPointer)
{
    for (const Export &one : exports()) {
        SCOPED_TRACE(one.name);
        EXPECT_EQ(one.call(nullptr, 0), 10u);
        EXPECT_EQ(one.call(nullptr, 12), 10u);
    }
}

TEST_F(Envelope, Returns10ForATextCutShortByItsLength)
{
    for (const Export &one : exports()) {
        SCOPED_TRACE(one.name);
        const std::u16string text = utf16(envelope(one.payload));
        const auto *units = reinterpret_cast<const uint16_t *>(text.data());
        EXPECT_EQ(one.call(units, 0), 10u);
        EXPECT_EQ(one.call(units, static_cast<uint32_t>(text.size()) - 1), 10u);
    }
}

TEST_F(Envelope, EndsAtTheGivenLength)
{
    for (const Export &one : exports()) {
        SCOPED_TRACE(one.name);
        const std::u16string text = utf16(envelope(one.payload));
        const std::u16string longer = text + u"}} not json";
        EXPECT_EQ(one.call(reinterpret_cast<const uint16_t *>(longer.data()), static_cast<uint32_t>(text.size())), 0u);
    }
}

TEST_F(Envelope, Returns5ForAnObjectWithoutIt)
{
    const auto before = stored();
    const DebugLines lines;
    for (const Export &one : exports())
        for (const std::string &text :
             {std::string("{}"), one.payload, R"({"d":)" + one.payload + "}", R"({"E":)" + one.payload + "}",
              R"({"":)" + one.payload + "}", R"({" D":)" + one.payload + "}", R"({"D2":{"D":)" + one.payload + "}}"}) {
            SCOPED_TRACE(one.name + " of " + text);
            EXPECT_EQ(send(one.call, text), 5u);
        }
    EXPECT_EQ(stored(), before);
    EXPECT_EQ(lines.all(), std::vector<std::string>());
}

TEST_F(Envelope, Returns5ForAnotherTypeUnderIt)
{
    const auto before = stored();
    const DebugLines lines;
    for (const Export &one : exports())
        for (const std::string &value : {std::string("[]"), "[" + one.payload + "]", std::string("5"),
                                         std::string("null"), std::string("true"), std::string(R"("id")")}) {
            SCOPED_TRACE(one.name + " of " + value);
            EXPECT_EQ(send(one.call, envelope(value)), 5u);
        }
    EXPECT_EQ(stored(), before);
    EXPECT_EQ(lines.all(), std::vector<std::string>());
}

TEST_F(Envelope, Returns5WhenItIsEmpty)
{
    const auto before = stored();
    for (const Export &one : exports()) {
        SCOPED_TRACE(one.name);
        EXPECT_EQ(send(one.call, R"({"D":{}})"), 5u);
        EXPECT_EQ(send(one.call, R"({"id":1,"items":[{"id":1}],"D":{}})"), 5u);
    }
    EXPECT_EQ(stored(), before);
}

TEST_F(Envelope, IgnoresOtherMembers)
{
    for (const Export &one : exports()) {
        SCOPED_TRACE(one.name);
        EXPECT_EQ(send(one.call, R"({"items":5,"d":null,"D":)" + one.payload + R"(,"id":"x","E":[]})"), 0u);
    }
}

TEST_F(Envelope, MayStandInWhitespace)
{
    for (const Export &one : exports()) {
        SCOPED_TRACE(one.name);
        EXPECT_EQ(send(one.call, " \t\r\n{ \"D\" :\n" + one.payload + "\t} \r\n"), 0u);
    }
}

TEST_F(Envelope, MayFollowAByteOrderMark)
{
    for (const Export &one : exports()) {
        SCOPED_TRACE(one.name);
        EXPECT_EQ(send(one.call, "\xEF\xBB\xBF" + envelope(one.payload)), 0u);
    }
}

TEST_F(Envelope, MayComeInTheOtherByteOrderBehindAMarkOfIt)
{
    std::u16string text = u"\uFEFF" + utf16(R"({"D":{"items":[{"id":9,"name":"\u0436"}]}})");
    for (char16_t &unit : text)
        unit = static_cast<char16_t>((unit << 8) | (unit >> 8));
    EXPECT_EQ(addUsers(reinterpret_cast<const uint16_t *>(text.data()), static_cast<uint32_t>(text.size())), 0u);
    EXPECT_EQ(file.value("SELECT UsersName FROM Users WHERE UsersId = 9"), "\u0436");
}

TEST_F(Envelope, MayHaveAnEscapedKey)
{
    EXPECT_EQ(send(addUsers, R"({"\u0044":{"\u0069tems":[{"\u0069\u0064":9,"n\u0061me":"x"}]}})"), 0u);
    EXPECT_EQ(file.value("SELECT UsersName FROM Users WHERE UsersId = 9"), "x");
}

// The readers need no store: what they refuse is refused before a launch and after an exit too.
TEST_F(Envelope, IsRefusedWithoutALaunchedLibrary)
{
    library.reset();
    for (const Export &one : exports()) {
        SCOPED_TRACE(one.name);
        EXPECT_EQ(send(one.call, "not json"), 10u);
        EXPECT_EQ(send(one.call, "{}"), 5u);
        EXPECT_EQ(send(one.call, R"({"D":{}})"), 5u);
    }
}

template<class Flat>
void expectGuarded(uint32_t (*function)(Flat **, const uint16_t *, uint32_t), const std::string &payload)
{
    Flat own{};
    for (const std::string &text : {envelope(payload), std::string("{}"), std::string("not json")}) {
        SCOPED_TRACE(text);
        Flat *out = &own;
        EXPECT_EQ(send(function, &out, text), 10u);
        EXPECT_EQ(out, &own);
    }
}

TEST_F(Envelope, IsIgnoredWhenTheTargetIsNotNull)
{
    const auto before = stored();
    expectGuarded(updateUser, R"({"id":1,"name":"x"})");
    expectGuarded(updateDomain, R"({"id":1,"name":"x"})");
    expectGuarded(updateOrganization, R"({"org_id":1,"inn":"x"})");
    expectGuarded(updateContractor, R"({"id":1,"name":"x"})");
    expectGuarded(updateContract, R"({"id":1,"c_name":"x"})");
    expectGuarded(updateDeviceFw, R"({"id":1,"config_version":5})");
    expectGuarded(addEvent, R"({"id":1,"time":5})");
    expectGuarded(updateSite, R"({"id":1,"name":"x"})");
    expectGuarded(updateSection, R"({"device":1,"id":1,"name":"x"})");
    expectGuarded(updateZone, R"({"device":1,"section":1,"id":1,"name":"x"})");
    EXPECT_EQ(stored(), before);
}

// ---- Batches ----

struct Batch
{
    std::string name;
    Call call;
    std::string key;  // of the id
    std::string rest; // after the id
    std::string ids;  // the query for all ids

    std::string element(int id) const { return "{\"" + key + "\":" + std::to_string(id) + rest + "}"; }
};

void PrintTo(const Batch &batch, std::ostream *out)
{
    *out << batch.name;
}

class BatchForm : public Reading, public ::testing::WithParamInterface<Batch>
{
};

TEST_P(BatchForm, StoresEveryElement)
{
    const Batch &batch = GetParam();
    EXPECT_EQ(send(batch.call, envelope("{\"items\":[" + batch.element(2) + "," + batch.element(3) + "]}")), 0u);
    EXPECT_EQ(file.rows(batch.ids), (std::vector<Row>{{"1"}, {"2"}, {"3"}}));
}

TEST_P(BatchForm, Returns5WithoutItems)
{
    const Batch &batch = GetParam();
    const auto before = stored();
    EXPECT_EQ(send(batch.call, R"({"D":{}})"), 5u);
    EXPECT_EQ(send(batch.call, envelope(batch.element(2))), 5u);
    EXPECT_EQ(send(batch.call, envelope("{\"Items\":[" + batch.element(2) + "]}")), 5u);
    EXPECT_EQ(send(batch.call, envelope("{\"item\":[" + batch.element(2) + "]}")), 5u);
    EXPECT_EQ(stored(), before);
}

TEST_P(BatchForm, Returns5ForItemsThatAreNoArray)
{
    const Batch &batch = GetParam();
    const auto before = stored();
    for (const std::string &items : {batch.element(2), std::string("{}"), std::string("2"), std::string("null"),
                                     std::string("true"), std::string(R"("[]")")}) {
        SCOPED_TRACE(items);
        EXPECT_EQ(send(batch.call, envelope("{\"items\":" + items + "}")), 5u);
    }
    EXPECT_EQ(stored(), before);
}

TEST_P(BatchForm, Returns10ForNoItems)
{
    const auto before = stored();
    const DebugLines lines;
    EXPECT_EQ(send(GetParam().call, R"({"D":{"items":[]}})"), 10u);
    EXPECT_EQ(stored(), before);
    EXPECT_EQ(lines.all(), std::vector<std::string>());
}

TEST_P(BatchForm, StoresNothingWhenOneElementIsNoObject)
{
    const Batch &batch = GetParam();
    const auto before = stored();
    const DebugLines lines;
    for (const char *wrong : {"3", "null", "true", "\"x\"", "[]", "[{}]"}) {
        SCOPED_TRACE(wrong);
        const std::string two = batch.element(2);
        const std::string four = batch.element(4);
        EXPECT_EQ(send(batch.call, envelope("{\"items\":[" + two + "," + four + "," + wrong + "]}")), 5u);
        EXPECT_EQ(send(batch.call, envelope("{\"items\":[" + two + "," + wrong + "," + four + "]}")), 5u);
        EXPECT_EQ(send(batch.call, envelope(std::string("{\"items\":[") + wrong + "," + two + "]}")), 5u);
    }
    EXPECT_EQ(stored(), before);
    EXPECT_EQ(lines.all(), std::vector<std::string>());
}

TEST_P(BatchForm, StoresNothingWhenOneElementIsRefused)
{
    const Batch &batch = GetParam();
    const auto before = stored();
    const DebugLines lines;
    for (const std::string &wrong : {std::string("{}"), "{\"" + batch.key + "\":\"3\"}"}) {
        SCOPED_TRACE(wrong);
        EXPECT_EQ(send(batch.call, envelope("{\"items\":[" + batch.element(2) + "," + wrong + "]}")), 5u);
        EXPECT_EQ(send(batch.call, envelope("{\"items\":[" + wrong + "," + batch.element(2) + "]}")), 5u);
    }
    EXPECT_EQ(stored(), before);
    EXPECT_EQ(lines.all(), std::vector<std::string>());
}

TEST_P(BatchForm, IgnoresMembersBesideItems)
{
    const Batch &batch = GetParam();
    const std::string items = "\"items\":[" + batch.element(2) + "]";
    EXPECT_EQ(send(batch.call, envelope(R"({"id":"x",)" + items + R"(,"count":null,"name":5})")), 0u);
    EXPECT_EQ(file.rows(batch.ids), (std::vector<Row>{{"1"}, {"2"}}));
}

INSTANTIATE_TEST_SUITE_P(
    Exports, BatchForm,
    ::testing::Values(
        Batch{"addLocales", addLocales, "id", "", "SELECT LocalesId FROM Locales ORDER BY 1"},
        Batch{"addUsers", addUsers, "id", "", "SELECT UsersId FROM Users ORDER BY 1"},
        Batch{"addDomains", addDomains, "id", "", "SELECT DomainsId FROM Domains ORDER BY 1"},
        Batch{"addOrganizations", addOrganizations, "org_id", "",
              "SELECT OrganizationsId FROM Organizations ORDER BY 1"},
        Batch{"addContractors", addContractors, "id", "", "SELECT ContractorsId FROM Contractors ORDER BY 1"},
        Batch{"addContracts", addContracts, "id", "", "SELECT ContractsId FROM Contracts ORDER BY 1"},
        Batch{"addDevices", addDevices, "id", "", "SELECT DevicesId FROM Devices ORDER BY 1"},
        Batch{"addSites", addSites, "id", "", "SELECT SitesId FROM Sites ORDER BY 1"},
        Batch{"addEvents", addEventsAndFree, "id", ",\"device\":1", "SELECT EventsId FROM Events ORDER BY 1"}),
    nameOf<Batch>);

// ---- Id-only documents ----

struct IdOnly
{
    std::string name;
    Call call;
    std::vector<std::string> keys;
    std::vector<std::string> columns; // one for each key
    std::string table;

    // A document with one value under all keys but one, which is left out. None is left out by default.
    std::string document(const std::string &value, const std::string &leftOut = "") const
    {
        std::string members;
        for (const std::string &key : keys)
            if (key != leftOut)
                members += (members.empty() ? "\"" : ",\"") + key + "\":" + value;
        return envelope("{" + members + "}");
    }
    // The statement for a row with one number in all its keys.
    std::string insertion(const std::string &number) const
    {
        std::string names;
        std::string values;
        for (const std::string &column : columns) {
            names += (names.empty() ? "" : ",") + column;
            values += (values.empty() ? "" : ",") + number;
        }
        return "INSERT INTO " + table + "(" + names + ") VALUES(" + values + ")";
    }
    std::string rowsWith(const std::string &number) const
    {
        std::string conditions;
        for (const std::string &column : columns)
            conditions += (conditions.empty() ? "" : " AND ") + column + " = " + number;
        return "SELECT COUNT(*) FROM " + table + " WHERE " + conditions;
    }
};

void PrintTo(const IdOnly &idOnly, std::ostream *out)
{
    *out << idOnly.name;
}

class IdOnlyForm : public Reading, public ::testing::WithParamInterface<IdOnly>
{
};

TEST_P(IdOnlyForm, RemovesTheRowOfItsNumber)
{
    const IdOnly &idOnly = GetParam();
    foreign(idOnly.insertion("77"));
    EXPECT_EQ(send(idOnly.call, idOnly.document("77")), 0u);
    EXPECT_EQ(file.number(idOnly.rowsWith("77")), 0);
    EXPECT_EQ(file.number(idOnly.rowsWith("1")), 1);
}

TEST_P(IdOnlyForm, Returns5WhenAKeyIsMissing)
{
    const IdOnly &idOnly = GetParam();
    const auto before = stored();
    const DebugLines lines;
    for (const std::string &key : idOnly.keys) {
        SCOPED_TRACE(key);
        EXPECT_EQ(send(idOnly.call, idOnly.document("1", key)), 5u);
    }
    EXPECT_EQ(stored(), before);
    EXPECT_EQ(lines.all(), std::vector<std::string>());
}

TEST_P(IdOnlyForm, Returns5ForEveryOtherKey)
{
    const IdOnly &idOnly = GetParam();
    const auto before = stored();
    for (const std::string key : {"", "id", "ID", "op_id", "domain_id", "org_id", "site_id", "user_id", "device_id",
                                  "contract_id", "contractor_id", "section", "zone", "device", "items"}) {
        if (std::find(idOnly.keys.begin(), idOnly.keys.end(), key) != idOnly.keys.end())
            continue;
        SCOPED_TRACE(key);
        EXPECT_EQ(send(idOnly.call, envelope("{\"" + key + "\":1}")), 5u);
    }
    EXPECT_EQ(stored(), before);
}

TEST_P(IdOnlyForm, TakesAnotherTypeForTheNumberZero)
{
    const IdOnly &idOnly = GetParam();
    for (const char *value : {R"("1")", "true", "null", "{}", "[1]", R"({"id":1})"}) {
        SCOPED_TRACE(value);
        EXPECT_EQ(send(idOnly.call, idOnly.document(value)), 8u);
        foreign(idOnly.insertion("0"));
        EXPECT_EQ(send(idOnly.call, idOnly.document(value)), 0u);
        EXPECT_EQ(file.number(idOnly.rowsWith("0")), 0);
    }
    EXPECT_EQ(file.number(idOnly.rowsWith("1")), 1);
}

TEST_P(IdOnlyForm, TakesTheLow32BitsOfANumber)
{
    const IdOnly &idOnly = GetParam();
    const std::vector<std::pair<std::string, std::string>> numbers = {
        {"7.9", "7"},         {"-0.5", "0"},
        {"-1", "4294967295"}, {"4294967295", "4294967295"},
        {"4294967296", "0"},  {"5000000000", "705032704"},
        {"1e300", "0"}};
    for (const auto &[json, number] : numbers) {
        SCOPED_TRACE(json);
        foreign(idOnly.insertion(number));
        EXPECT_EQ(send(idOnly.call, idOnly.document(json)), 0u);
        EXPECT_EQ(file.number(idOnly.rowsWith(number)), 0);
    }
}

TEST_P(IdOnlyForm, IgnoresEverythingElse)
{
    const IdOnly &idOnly = GetParam();
    std::string document = idOnly.document("1");
    document.insert(document.size() - 2, R"(,"name":null,"items":5,"x":{"y":[]})");
    EXPECT_EQ(send(idOnly.call, document), 0u);
    EXPECT_EQ(file.number(idOnly.rowsWith("1")), 0);
}

INSTANTIATE_TEST_SUITE_P(
    Exports, IdOnlyForm,
    ::testing::Values(IdOnly{"deleteContract", deleteContract, {"id"}, {"ContractsId"}, "Contracts"},
                      IdOnly{"deleteContractor", deleteContractor, {"id"}, {"ContractorsId"}, "Contractors"},
                      IdOnly{"deleteUser", deleteUser, {"op_id"}, {"UsersId"}, "Users"},
                      IdOnly{"deleteDomain", deleteDomain, {"domain_id"}, {"DomainsId"}, "Domains"},
                      IdOnly{
                          "deleteOrganization", deleteOrganization, {"org_id"}, {"OrganizationsId"}, "Organizations"},
                      IdOnly{"deleteDevice", deleteDevice, {"id"}, {"DevicesId"}, "Devices"},
                      IdOnly{"deleteSite", deleteSite, {"site_id"}, {"SitesId"}, "Sites"},
                      IdOnly{"deleteSection",
                             deleteSection,
                             {"device", "section"},
                             {"SectionsDeviceId", "SectionsSectionId"},
                             "Sections"},
                      IdOnly{"deleteZone",
                             deleteZone,
                             {"device", "section", "zone"},
                             {"ZonesDeviceId", "ZonesSectionId", "ZonesZoneId"},
                             "Zones"}),
    nameOf<IdOnly>);

class LeadingIds : public Reading
{
};

TEST_F(LeadingIds, OfASectionAreRequired)
{
    const auto before = stored();
    EXPECT_EQ(update(updateSection, R"({"D":{"id":2}})").code, 5u);
    EXPECT_EQ(update(updateSection, R"({"D":{"device_id":1,"id":2}})").code, 5u);
    EXPECT_EQ(stored(), before);
}

TEST_F(LeadingIds, OfAZoneAreRequired)
{
    const auto before = stored();
    EXPECT_EQ(update(updateZone, R"({"D":{"id":2}})").code, 5u);
    EXPECT_EQ(update(updateZone, R"({"D":{"device":1,"id":2}})").code, 5u);
    EXPECT_EQ(update(updateZone, R"({"D":{"section":1,"id":2}})").code, 5u);
    EXPECT_EQ(stored(), before);
}

TEST_F(LeadingIds, OfASectionReadAsZeroForAnotherType)
{
    for (const char *value : {R"("1")", "true", "null", "{}", "[1]"}) {
        SCOPED_TRACE(value);
        EXPECT_EQ(update(updateSection, std::string(R"({"D":{"device":)") + value + R"(,"id":2}})").code, 11u);
        EXPECT_EQ(file.rows("SELECT SectionsDeviceId, SectionsSectionId FROM Sections WHERE SectionsSectionId = 2"),
                  (std::vector<Row>{{"0", "2"}}));
        foreign("DELETE FROM Sections WHERE SectionsSectionId = 2");
    }
}

TEST_F(LeadingIds, OfAZoneReadAsZeroForAnotherType)
{
    for (const char *value : {R"("1")", "true", "null", "{}", "[1]"}) {
        SCOPED_TRACE(value);
        const std::string text(value);
        EXPECT_EQ(update(updateZone, R"({"D":{"device":)" + text + R"(,"section":)" + text + R"(,"id":2}})").code, 11u);
        EXPECT_EQ(file.rows("SELECT ZonesDeviceId, ZonesSectionId FROM Zones WHERE ZonesZoneId = 2"),
                  (std::vector<Row>{{"0", "0"}}));
        foreign("DELETE FROM Zones WHERE ZonesZoneId = 2");
    }
}

TEST_F(LeadingIds, TakeTheLow32BitsOfANumber)
{
    EXPECT_EQ(update(updateSection, R"({"D":{"device":4294967297.5,"id":2}})").code, 0u);
    EXPECT_EQ(update(updateZone, R"({"D":{"device":1.9,"section":4294967298,"id":2}})").code, 0u);
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Sections WHERE SectionsDeviceId = 1 AND SectionsSectionId = 2"), 1);
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Zones WHERE ZonesDeviceId = 1 AND ZonesSectionId = 2"
                          " AND ZonesZoneId = 2"),
              1);
}

TEST_F(LeadingIds, AreTheWholeOfAnAffectFlagsRemoval)
{
    EXPECT_EQ(update(removeAffectFlag, R"({"D":{"event":1}})").code, 5u);
    for (const char *value : {R"("1")", "true", "null", "{}", "[1]"}) {
        SCOPED_TRACE(value);
        EXPECT_EQ(update(removeAffectFlag, std::string(R"({"D":{"id":)") + value + "}}").code, 8u);
    }
    const auto answer = update(removeAffectFlag, R"({"D":{"id":4294967297.9,"affect":null}})");
    ASSERT_EQ(answer.code, 0u);
    EXPECT_EQ(answer->id, 1u);
}

// ---- Members ----

enum class Kind { text, number, phone, flag };

struct Member
{
    std::string key;
    Kind kind;
    std::string column;
};

const std::vector<Member> localeMembers = {{"iso", Kind::text, "LocalesIso"},
                                           {"description", Kind::text, "LocalesDescription"}};
const std::vector<Member> userMembers = {
    {"name", Kind::text, "UsersName"},         {"login", Kind::text, "UsersLogin"},
    {"contacts", Kind::text, "UsersContacts"}, {"active", Kind::flag, "UsersIsActive"},
    {"domain", Kind::number, "UsersDomainId"}, {"roles", Kind::number, "UsersRoles"},
    {"phone", Kind::phone, "UsersPhone"},      {"org", Kind::number, "UsersOrgId"}};
const std::vector<Member> domainMembers = {{"name", Kind::text, "DomainsName"},
                                           {"org_id", Kind::number, "DomainsOrgId"},
                                           {"locale_id", Kind::number, "DomainsLocaleId"}};
const std::vector<Member> organizationMembers = {{"inn", Kind::text, "OrganizationsInn"},
                                                 {"off_name", Kind::text, "OrganizationsOfficialName"},
                                                 {"short_name", Kind::text, "OrganizationsShortName"},
                                                 {"kpp", Kind::text, "OrganizationsKpp"},
                                                 {"ogrn", Kind::text, "OrganizationsOgrn"},
                                                 {"address_text", Kind::text, "OrganizationsAddress"},
                                                 {"locale_id", Kind::number, "OrganizationsLocaleId"}};
const std::vector<Member> personMembers = {{"name", Kind::text, "PersonsName"},
                                           {"phone", Kind::text, "PersonsPhone"},
                                           {"email", Kind::text, "PersonsEmail"},
                                           {"postal", Kind::text, "PersonsPostal"}};
const std::vector<Member> contractorMembers = {{"inn", Kind::text, "ContractorsInn"},
                                               {"type", Kind::number, "ContractorsType"},
                                               {"off_name", Kind::text, "ContractorsOfficialName"},
                                               {"name", Kind::text, "ContractorsName"},
                                               {"extra", Kind::text, "ContractorsExtra"},
                                               {"org_id", Kind::number, "ContractorsOrgId"}};
const std::vector<Member> contractMembers = {{"number", Kind::text, "ContractsNumber"},
                                             {"c_name", Kind::text, "ContractsName"},
                                             {"status", Kind::number, "ContractsStatus"},
                                             {"date", Kind::number, "ContractsDate"},
                                             {"description", Kind::text, "ContractsDescription"},
                                             {"extra", Kind::text, "ContractsExtra"},
                                             {"contractor_id", Kind::number, "ContractsContractorId"},
                                             {"operator_id", Kind::number, "ContractsUserId"}};
const std::vector<Member> deviceMembers = {{"account", Kind::number, "DevicesAccount"},
                                           {"domain", Kind::number, "DevicesDomainId"},
                                           {"config_version", Kind::number, "DevicesConfigVersion"},
                                           {"parted", Kind::flag, "DevicesIsParted"},
                                           {"cluster_id", Kind::number, "DevicesClusterId"}};
const std::vector<Member> firmwareMembers = {{"config_version", Kind::number, "DevicesConfigVersion"}};
const std::vector<Member> sectionMembers = {
    {"name", Kind::text, "SectionsName"},          {"detector", Kind::number, "SectionsDetector"},
    {"physic", Kind::number, "SectionsPhysic"},    {"schedule_id", Kind::number, "SectionsScheduleId"},
    {"tracert", Kind::number, "SectionsTracert"},  {"flags", Kind::number, "SectionsFlags"},
    {"delay", Kind::number, "SectionsDelay"},      {"form", Kind::number, "SectionsForm"},
    {"uid_type", Kind::number, "SectionsUidType"}, {"arm", Kind::number, "SectionsArm"}};
const std::vector<Member> zoneMembers = {
    {"name", Kind::text, "ZonesName"},          {"detector", Kind::number, "ZonesDetector"},
    {"physic", Kind::number, "ZonesPhysic"},    {"schedule_id", Kind::number, "ZonesScheduleId"},
    {"tracert", Kind::number, "ZonesTracert"},  {"flags", Kind::number, "ZonesFlags"},
    {"delay", Kind::number, "ZonesDelay"},      {"form", Kind::number, "ZonesForm"},
    {"uid_type", Kind::number, "ZonesUidType"}, {"arm", Kind::number, "ZonesArm"}};
const std::vector<Member> deviceUserMembers = {{"name", Kind::text, "DeviceUsersName"},
                                               {"comment", Kind::text, "DeviceUsersComment"},
                                               {"phone", Kind::text, "DeviceUsersPhone"}};
const std::vector<Member> siteMembers = {{"name", Kind::text, "SitesName"},
                                         {"comment", Kind::text, "SitesComment"},
                                         {"extra", Kind::text, "SitesExtra"},
                                         {"is_crossing", Kind::flag, "SitesIsCrossing"},
                                         {"domain", Kind::number, "SitesDomainId"},
                                         {"address_text", Kind::text, "SitesAddress"},
                                         {"contract_id", Kind::number, "SitesContractId"},
                                         {"contract_status", Kind::number, "SitesContractStatus"},
                                         {"type", Kind::number, "SitesType"},
                                         {"category", Kind::number, "SitesCategory"},
                                         {"arm_mode", Kind::number, "SitesArmMode"},
                                         {"delegated", Kind::flag, "SitesIsDelegated"},
                                         {"site_plan", Kind::flag, "SitesIsSitePlanExists"}};
const std::vector<Member> eventMembers = {{"time", Kind::number, "EventsTime"},
                                          {"device", Kind::number, "EventsDeviceId"},
                                          {"section", Kind::number, "EventsSectionId"},
                                          {"zone", Kind::number, "EventsZoneId"},
                                          {"active", Kind::number, "EventsActive"},
                                          {"class", Kind::number, "EventsClass"},
                                          {"detector", Kind::number, "EventsDetector"},
                                          {"reason", Kind::number, "EventsReason"},
                                          {"localtime", Kind::number, "EventsLocalTime"},
                                          {"channel", Kind::number, "EventsChannel"},
                                          {"data", Kind::text, "EventsData"},
                                          {"review_id", Kind::number, "EventsReviewId"},
                                          {"review_state", Kind::number, "EventsReviewState"},
                                          {"operator_id", Kind::number, "EventsUserId"},
                                          {"is_closed", Kind::flag, "EventsIsClosed"},
                                          {"affect", Kind::flag, "EventsAffect"},
                                          {"jdata", Kind::text, "EventsJData"}};

// One place for an object of some kind: the document around it, and the row 1 that it becomes.
struct Place
{
    std::string name;
    Call call;
    std::string before;
    std::string after;
    std::vector<std::string> idKeys; // the second one replaces a missing first
    std::vector<Member> members;
    std::string row;       // where the members go; empty if they are read and not stored
    uint32_t accepted = 0; // the result for a valid object

    std::string document(const std::string &object) const { return before + object + after; }
    std::string id(const std::string &value = "1") const { return "\"" + idKeys[0] + "\":" + value; }
    std::string with(const std::string &key, const std::string &value) const
    {
        return document(id() + ",\"" + key + "\":" + value);
    }
};

void PrintTo(const Place &place, std::ostream *out)
{
    *out << place.name;
}

class Members : public Reading, public ::testing::WithParamInterface<Place>
{
};

TEST_P(Members, RefuseNullUnderEveryKey)
{
    const Place &place = GetParam();
    const auto before = stored();
    const DebugLines lines;
    for (const Member &member : place.members) {
        SCOPED_TRACE(member.key);
        EXPECT_EQ(send(place.call, place.with(member.key, "null")), 5u);
    }
    EXPECT_EQ(stored(), before);
    EXPECT_EQ(lines.all(), std::vector<std::string>());
}

TEST_P(Members, RefuseEveryWrongTypeUnderEveryKey)
{
    const Place &place = GetParam();
    const auto before = stored();
    const DebugLines lines;
    for (const Member &member : place.members) {
        std::vector<std::string> wrong = {"{}", "[]", R"({"id":1})", "[1]", R"(["x"])"};
        if (member.kind == Kind::text)
            wrong.insert(wrong.end(), {"1", "0", "true", "false"});
        else
            wrong.insert(wrong.end(), {R"("1")", R"("")"});
        if (member.kind == Kind::number || member.kind == Kind::phone)
            wrong.insert(wrong.end(), {"true", "false"});
        for (const std::string &value : wrong) {
            SCOPED_TRACE(member.key + " of " + value);
            EXPECT_EQ(send(place.call, place.with(member.key, value)), 5u);
        }
    }
    EXPECT_EQ(stored(), before);
    EXPECT_EQ(lines.all(), std::vector<std::string>());
}

TEST_P(Members, GoToTheirColumns)
{
    const Place &place = GetParam();
    for (const Member &member : place.members) {
        SCOPED_TRACE(member.key);
        const std::string value = member.kind == Kind::text ? R"("five")" : member.kind == Kind::flag ? "1" : "5";
        EXPECT_EQ(send(place.call, place.with(member.key, value)), place.accepted);
        if (place.row.empty())
            continue;
        Row expected = {"integer", "5"};
        if (member.kind == Kind::text)
            expected = {"text", "five"};
        else if (member.kind == Kind::phone)
            expected = {"real", "5.0"};
        else if (member.kind == Kind::flag)
            expected = {"integer", "1"};
        EXPECT_EQ(file.rows("SELECT typeof(" + member.column + "), " + member.column + " FROM " + place.row),
                  std::vector<Row>{expected});
    }
}

TEST_P(Members, StayAbsentWhenLeftOut)
{
    const Place &place = GetParam();
    EXPECT_EQ(send(place.call, place.document(place.id())), place.accepted);
    for (const Member &member : place.members)
        if (!place.row.empty()) {
            EXPECT_EQ(file.value("SELECT typeof(" + member.column + ") FROM " + place.row), "null") << member.key;
        }
}

TEST_P(Members, AreFoundByTheirExactKeys)
{
    const Place &place = GetParam();
    std::string object = place.id();
    for (const Member &member : place.members) {
        std::string upper = member.key;
        std::transform(upper.begin(), upper.end(), upper.begin(),
                       [](unsigned char letter) { return static_cast<char>(std::toupper(letter)); });
        object += ",\"" + upper + "\":null,\"" + member.key + "\\u0000\":null,\" " + member.key + "\":null,\""
                + member.column + "\":null";
    }
    object += R"(,"":null,"unknown":{"id":null},"items":5)";
    EXPECT_EQ(send(place.call, place.document(object)), place.accepted);
    for (const Member &member : place.members)
        if (!place.row.empty()) {
            EXPECT_EQ(file.value("SELECT typeof(" + member.column + ") FROM " + place.row), "null") << member.key;
        }
}

TEST_P(Members, MayStandInAnyOrder)
{
    const Place &place = GetParam();
    std::string object;
    for (const Member &member : place.members)
        object = "\"" + member.key + "\":" + (member.kind == Kind::text ? R"("five")" : "5") + "," + object;
    EXPECT_EQ(send(place.call, place.document(object + place.id())), place.accepted);
    for (const Member &member : place.members)
        if (!place.row.empty()) {
            EXPECT_NE(file.value("SELECT typeof(" + member.column + ") FROM " + place.row), "null") << member.key;
        }
}

TEST_P(Members, NeedTheirId)
{
    const Place &place = GetParam();
    const auto before = stored();
    EXPECT_EQ(send(place.call, place.document(R"("unknown":1)")), 5u);
    for (const std::string key : {"", "ID", "Id", "id", "op_id", "domain_id", "org_id", "site_id", "device_id",
                                  "section_id", "zone_id", "section", "zone", "user_index", "index"}) {
        if (std::find(place.idKeys.begin(), place.idKeys.end(), key) != place.idKeys.end())
            continue;
        SCOPED_TRACE(key);
        EXPECT_EQ(send(place.call, place.document("\"" + key + "\":1")), 5u);
    }
    EXPECT_EQ(stored(), before);
}

TEST_P(Members, NeedANumberForTheirId)
{
    const Place &place = GetParam();
    const auto before = stored();
    for (const std::string &key : place.idKeys)
        for (const std::string value : {R"("1")", "true", "false", "null", "{}", "[]", "[1]"}) {
            SCOPED_TRACE(key + " of " + value);
            EXPECT_EQ(send(place.call, place.document("\"" + key + "\":" + value)), 5u);
        }
    EXPECT_EQ(stored(), before);
}

TEST_P(Members, TakeTheirIdFromTheFirstKeyThatIsThere)
{
    const Place &place = GetParam();
    if (place.idKeys.size() == 1) {
        EXPECT_EQ(send(place.call, place.document(place.id("1.9"))), place.accepted);
        return;
    }
    const std::string second = "\"" + place.idKeys[1] + "\":";
    EXPECT_EQ(send(place.call, place.document(second + "1")), place.accepted);
    EXPECT_EQ(send(place.call, place.document(second + "null," + place.id())), place.accepted);
    EXPECT_EQ(send(place.call, place.document(second + "1," + place.id("null"))), 5u);
    EXPECT_EQ(send(place.call, place.document(second + "1," + place.id("\"1\""))), 5u);
}

const char *sectionRow = "Sections WHERE SectionsDeviceId = 1 AND SectionsSectionId = 1";
const char *zoneRow = "Zones WHERE ZonesDeviceId = 1 AND ZonesSectionId = 1 AND ZonesZoneId = 1";
const char *deviceUserRow = "DeviceUsers WHERE DeviceUsersDeviceId = 1 AND DeviceUsersDeviceUserId = 1";

std::vector<Place> places()
{
    const std::string items = R"({"D":{"items":[{)";
    const std::string itemsEnd = "}]}}";
    return {
        {"addLocales", addLocales, items, itemsEnd, {"id"}, localeMembers, "Locales WHERE LocalesId = 1"},
        {"addUsers", addUsers, items, itemsEnd, {"id"}, userMembers, "Users WHERE UsersId = 1"},
        {"updateUser", withRecord(updateUser), R"({"D":{)", "}}", {"id"}, userMembers, "Users WHERE UsersId = 1"},
        {"addDomains", addDomains, items, itemsEnd, {"id"}, domainMembers, "Domains WHERE DomainsId = 1"},
        {"updateDomain",
         withRecord(updateDomain),
         R"({"D":{)",
         "}}",
         {"id"},
         domainMembers,
         "Domains WHERE DomainsId = 1"},
        {"addOrganizations",
         addOrganizations,
         items,
         itemsEnd,
         {"org_id"},
         organizationMembers,
         "Organizations WHERE OrganizationsId = 1"},
        {"updateOrganization",
         withRecord(updateOrganization),
         R"({"D":{)",
         "}}",
         {"org_id"},
         organizationMembers,
         "Organizations WHERE OrganizationsId = 1"},
        {"addOrganizationsContact",
         addOrganizations,
         R"({"D":{"items":[{"org_id":1,"contact":{)",
         "}}]}}",
         {"id"},
         personMembers,
         "Persons WHERE PersonsId = 1"},
        {"updateOrganizationContact",
         withRecord(updateOrganization),
         R"({"D":{"org_id":1,"contact":{)",
         "}}}",
         {"id"},
         personMembers,
         "Persons WHERE PersonsId = 1"},
        {"addContractors",
         addContractors,
         items,
         itemsEnd,
         {"id"},
         contractorMembers,
         "Contractors WHERE ContractorsId = 1"},
        {"updateContractor",
         withRecord(updateContractor),
         R"({"D":{)",
         "}}",
         {"id"},
         contractorMembers,
         "Contractors WHERE ContractorsId = 1"},
        {"addContracts", addContracts, items, itemsEnd, {"id"}, contractMembers, "Contracts WHERE ContractsId = 1"},
        {"updateContract",
         withRecord(updateContract),
         R"({"D":{)",
         "}}",
         {"id"},
         contractMembers,
         "Contracts WHERE ContractsId = 1"},
        {"addDevice", addDevice, R"({"D":{)", "}}", {"id"}, deviceMembers, "Devices WHERE DevicesId = 1"},
        {"addDevices", addDevices, items, itemsEnd, {"id"}, deviceMembers, "Devices WHERE DevicesId = 1"},
        {"addDeviceSection",
         addDevice,
         R"({"D":{"id":1,"sections":[{)",
         "}]}}",
         {"id", "section"},
         sectionMembers,
         sectionRow},
        {"addDeviceZone",
         addDevice,
         R"({"D":{"id":1,"sections":[{"id":1,"zones":[{)",
         "}]}]}}",
         {"id", "zone"},
         zoneMembers,
         zoneRow},
        {"addDeviceUser",
         addDevice,
         R"({"D":{"id":1,"users":[{)",
         "}]}}",
         {"user_index"},
         deviceUserMembers,
         deviceUserRow},
        {"addDevicesSection",
         addDevices,
         R"({"D":{"items":[{"id":1,"sections":[{)",
         "}]}]}}",
         {"id", "section"},
         sectionMembers,
         sectionRow},
        {"addDevicesZone",
         addDevices,
         R"({"D":{"items":[{"id":1,"sections":[{"id":1,"zones":[{)",
         "}]}]}]}}",
         {"id", "zone"},
         zoneMembers,
         zoneRow},
        {"addDevicesUser",
         addDevices,
         R"({"D":{"items":[{"id":1,"users":[{)",
         "}]}]}}",
         {"user_index"},
         deviceUserMembers,
         deviceUserRow},
        {"updateDeviceFw",
         withRecord(updateDeviceFw),
         R"({"D":{)",
         "}}",
         {"id"},
         firmwareMembers,
         "Devices WHERE DevicesId = 1"},
        {"updateDeviceFwUnstored", withRecord(updateDeviceFw), R"({"D":{)", "}}", {"id"}, deviceMembers, ""},
        {"updateDeviceFwSection",
         withRecord(updateDeviceFw),
         R"({"D":{"id":1,"sections":[{)",
         "}]}}",
         {"id", "section"},
         sectionMembers,
         ""},
        {"updateDeviceFwZone",
         withRecord(updateDeviceFw),
         R"({"D":{"id":1,"sections":[{"id":1,"zones":[{)",
         "}]}]}}",
         {"id", "zone"},
         zoneMembers,
         ""},
        {"updateDeviceFwUser",
         withRecord(updateDeviceFw),
         R"({"D":{"id":1,"users":[{)",
         "}]}}",
         {"user_index"},
         deviceUserMembers,
         ""},
        {"updateSection",
         withRecord(updateSection),
         R"({"D":{"device":1,)",
         "}}",
         {"id", "section"},
         sectionMembers,
         sectionRow},
        {"updateSectionZone",
         withRecord(updateSection),
         R"({"D":{"device":1,"id":1,"zones":[{)",
         "}]}}",
         {"id", "zone"},
         zoneMembers,
         ""},
        {"updateZone",
         withRecord(updateZone),
         R"({"D":{"device":1,"section":1,)",
         "}}",
         {"id", "zone"},
         zoneMembers,
         zoneRow},
        {"addSites", addSites, items, itemsEnd, {"id"}, siteMembers, "Sites WHERE SitesId = 1"},
        {"addSitesDevice",
         addSites,
         R"({"D":{"items":[{"id":1,"devices":[{)",
         "}]}]}}",
         {"id"},
         deviceMembers,
         "Devices WHERE DevicesId = 1"},
        {"updateSite", withRecord(updateSite), R"({"D":{)", "}}", {"id"}, siteMembers, "Sites WHERE SitesId = 1"},
        {"updateSiteDevice", withRecord(updateSite), R"({"D":{"id":1,"devices":[{)", "}]}}", {"id"}, deviceMembers, ""},
        {"addEvent", withRecord(addEvent), R"({"D":{)", "}}", {"id"}, eventMembers, "Events WHERE EventsId = 1"},
        // The events of unknown devices are stored all the same.
        {"addEvents", addEventsAndFree, items, itemsEnd, {"id"}, eventMembers, "Events WHERE EventsId = 1", 8},
    };
}

INSTANTIATE_TEST_SUITE_P(Places, Members, ::testing::ValuesIn(places()), nameOf<Place>);

class OneRecord : public Reading
{
};

TEST_F(OneRecord, IsNoBatch)
{
    const auto before = stored();
    EXPECT_EQ(update(updateUser, R"({"D":{"items":[{"id":1,"name":"x"}]}})").code, 5u);
    EXPECT_EQ(update(updateOrganization, R"({"D":{"items":[{"org_id":1,"inn":"x"}]}})").code, 5u);
    EXPECT_EQ(send(addDevice, R"({"D":{"items":[{"id":1,"account":5}]}})"), 5u);
    EXPECT_EQ(update(updateSite, R"({"D":{"items":[{"id":1,"name":"x"}]}})").code, 5u);
    EXPECT_EQ(update(addEvent, R"({"D":{"items":[{"id":1,"time":5}]}})").code, 5u);
    EXPECT_EQ(update(updateZone, R"({"D":{"items":[{"device":1,"section":1,"id":1}]}})").code, 5u);
    EXPECT_EQ(stored(), before);
}

TEST_F(OneRecord, HasTheKeyOfARecordAndNotThatOfARemoval)
{
    const auto before = stored();
    EXPECT_EQ(update(updateUser, R"({"D":{"op_id":1,"name":"x"}})").code, 5u);
    EXPECT_EQ(update(updateDomain, R"({"D":{"domain_id":1,"name":"x"}})").code, 5u);
    EXPECT_EQ(update(updateSite, R"({"D":{"site_id":1,"name":"x"}})").code, 5u);
    EXPECT_EQ(update(updateOrganization, R"({"D":{"id":1,"inn":"x"}})").code, 5u);
    EXPECT_EQ(stored(), before);
}

TEST_F(OneRecord, ReadsNoOtherKeyForTheEquipmentOfAnEvent)
{
    const auto event = update(addEvent, R"({"D":{"id":2,"device_id":1,"device_section":1}})");
    ASSERT_EQ(event.code, 0u);
    EXPECT_EQ(event->deviceId, nullptr);
    EXPECT_EQ(event->sectionId, nullptr);
    EXPECT_EQ(update(addEvent, R"({"D":{"id":3,"device_id":"x","device_section":null}})").code, 0u);
}

TEST_F(OneRecord, LeavesAKeyThatIsGivenTwiceToTheParser)
{
    const auto user = update(updateUser, R"({"D":{"id":2,"name":"a","name":"b"}})");
    ASSERT_EQ(user.code, 0u);
    EXPECT_TRUE(utf8(user->name) == "a" || utf8(user->name) == "b");
    EXPECT_EQ(send(addUsers, R"({"D":{"items":[{"id":3,"id":3}]}})"), 0u);
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Users WHERE UsersId = 3"), 1);
}

TEST_F(OneRecord, MayHoldDeepUnknownMembers)
{
    const std::string deep = std::string(300, '[') + std::string(300, ']');
    EXPECT_EQ(update(updateUser, R"({"D":{"id":1,"deep":)" + deep + R"(,"name":"x"}})").code, 0u);
    EXPECT_EQ(file.value("SELECT UsersName FROM Users WHERE UsersId = 1"), "x");
}

TEST_F(OneRecord, IsRefusedWhenItIsTooDeepForTheParser)
{
    const auto before = stored();
    const std::string arrays = std::string(100000, '[') + std::string(100000, ']');
    EXPECT_EQ(update(updateUser, R"({"D":{"id":1,"deep":)" + arrays + R"(,"name":"x"}})").code, 10u);
    std::string objects;
    for (int level = 0; level < 100000; ++level)
        objects += R"({"D":)";
    EXPECT_EQ(send(addUsers, objects), 10u);
    EXPECT_EQ(stored(), before);
}

// ---- Nested members ----

class Nested : public Reading
{
};

const std::vector<std::string> noObjects = {"5", "0", R"("x")", R"("")", "null", "true", "[]", R"([{"id":5}])", "{}"};
const std::vector<std::string> noArrays = {"5", "0", R"("x")", "null", "true", "{}", R"({"id":5})", "[]"};

TEST_F(Nested, ContactThatIsEmptyOrNoObjectIsNone)
{
    for (const std::string &contact : noObjects) {
        SCOPED_TRACE(contact);
        EXPECT_EQ(send(addOrganizations, R"({"D":{"items":[{"org_id":1,"inn":"a","contact":)" + contact + "}]}}"), 0u);
        const auto organization =
            update(updateOrganization, R"({"D":{"org_id":1,"inn":"b","contact":)" + contact + "}}");
        ASSERT_EQ(organization.code, 0u);
        EXPECT_EQ(organization->contact, nullptr);
        EXPECT_EQ(utf8(organization->inn), "b");
        EXPECT_EQ(file.value("SELECT typeof(OrganizationsContactId) FROM Organizations"), "null");
    }
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Persons"), 0);
}

TEST_F(Nested, ContactIsNoReasonToForgiveTheRest)
{
    const auto before = stored();
    EXPECT_EQ(update(updateOrganization, R"({"D":{"org_id":1,"inn":5,"contact":{"id":5}}})").code, 5u);
    EXPECT_EQ(update(updateOrganization, R"({"D":{"contact":{"id":5}}})").code, 5u);
    EXPECT_EQ(update(updateOrganization, R"({"D":{"org_id":1,"inn":"x","contact":{"name":"x"}}})").code, 5u);
    EXPECT_EQ(update(updateOrganization, R"({"D":{"org_id":1,"contact":{"id":5,"phone":123}}})").code, 5u);
    EXPECT_EQ(stored(), before);
}

TEST_F(Nested, LocationThatIsEmptyOrNoObjectIsNone)
{
    for (const std::string &location : noObjects) {
        SCOPED_TRACE(location);
        EXPECT_EQ(send(addSites, R"({"D":{"items":[{"id":1,"location":)" + location + "}]}}"), 0u);
        const auto site = update(updateSite, R"({"D":{"id":1,"location":)" + location + "}}");
        ASSERT_EQ(site.code, 0u);
        EXPECT_EQ(site->location, nullptr);
    }
    EXPECT_EQ(file.number("SELECT COUNT(*) FROM Locations"), 0);
}

TEST_F(Nested, LocationTakesAnyTypeForACoordinate)
{
    for (const std::string json : {R"("1.5")", "true", "null", "{}", "[1]"}) {
        SCOPED_TRACE(json);
        EXPECT_EQ(send(addSites, R"({"D":{"items":[{"id":1,"location":{"lat":)" + json + "}}]}}"), 0u);
        EXPECT_EQ(file.rows("SELECT LocationsId, LocationsLatitude, LocationsLongitude FROM Locations"),
                  (std::vector<Row>{{"1", "0.0", std::nullopt}}));
        const auto site = update(updateSite, R"({"D":{"id":1,"location":{"lon":)" + json + "}}}");
        ASSERT_EQ(site.code, 0u);
        EXPECT_EQ(value(site->location->longitude), 0.0);
        EXPECT_EQ(site->location->latitude, nullptr);
    }
}

TEST_F(Nested, LocationKeepsItsFractions)
{
    const auto site = update(updateSite, R"({"D":{"id":1,"location":{"lat":-55.755826,"lon":1e-7}}})");
    ASSERT_EQ(site.code, 0u);
    EXPECT_EQ(value(site->location->latitude), -55.755826);
    EXPECT_EQ(value(site->location->longitude), 1e-7);
}

TEST_F(Nested, LocationOfUnknownMembersHasNoCoordinates)
{
    const auto site = update(updateSite, R"({"D":{"id":1,"location":{"id":7,"Lat":1}}})");
    ASSERT_EQ(site.code, 0u);
    ASSERT_NE(site->location, nullptr);
    EXPECT_EQ(site->location->id, 1u);
    EXPECT_EQ(site->location->latitude, nullptr);
    EXPECT_EQ(site->location->longitude, nullptr);
}

// A member that holds an array, and elements that refuse the document around it.
struct Array
{
    std::string name;
    Call call;
    std::string before;
    std::string after;
    std::vector<std::string> wrong;
};

const std::vector<Array> &arrays()
{
    static const std::vector<std::string> records = {"5", "null", "true", R"("x")", "[]", "{}", R"({"id":"1"})"};
    static const std::vector<std::string> numbers = {R"("1")", "null", "true", "{}", "[]", "[1]"};
    static const std::vector<Array> all = {
        {"sections of addDevice", addDevice, R"({"D":{"id":1,"sections":)", "}}", records},
        {"sections of addDevices", addDevices, R"({"D":{"items":[{"id":1,"sections":)", "}]}}", records},
        {"sections of updateDeviceFw", withRecord(updateDeviceFw), R"({"D":{"id":1,"sections":)", "}}", records},
        {"zones of addDevice", addDevice, R"({"D":{"id":1,"sections":[{"id":1,"zones":)", "}]}}", records},
        {"zones of updateSection", withRecord(updateSection), R"({"D":{"device":1,"id":1,"zones":)", "}}", records},
        {"users of addDevice", addDevice, R"({"D":{"id":1,"users":)", "}}", records},
        {"users of updateDeviceFw", withRecord(updateDeviceFw), R"({"D":{"id":1,"users":)", "}}", records},
        {"a user's sections", addDevice, R"({"D":{"id":1,"users":[{"user_index":1,"sections":)", "}]}}", numbers},
        {"devices of addSites", addSites, R"({"D":{"items":[{"id":1,"devices":)", "}]}}", records},
        {"devices of updateSite", withRecord(updateSite), R"({"D":{"id":1,"devices":)", "}}", records},
    };
    return all;
}

TEST_F(Nested, ArrayOfAnotherTypeHasNoElements)
{
    const auto before = stored();
    for (const Array &array : arrays())
        for (const std::string &value : noArrays) {
            SCOPED_TRACE(array.name + " of " + value);
            EXPECT_EQ(send(array.call, array.before + value + array.after), 0u);
        }
    EXPECT_EQ(stored(), before);
}

TEST_F(Nested, ArrayIsRefusedForOneWrongElement)
{
    const auto before = stored();
    for (const Array &array : arrays()) {
        const bool numbers = array.name == "a user's sections";
        const std::string good = numbers ? "7" : R"({"id":7,"user_index":7})";
        for (const std::string &wrong : array.wrong) {
            SCOPED_TRACE(array.name + " of " + wrong);
            EXPECT_EQ(send(array.call, array.before + "[" + wrong + "]" + array.after), 5u);
            EXPECT_EQ(send(array.call, array.before + "[" + good + "," + wrong + "]" + array.after), 5u);
            EXPECT_EQ(send(array.call, array.before + "[" + wrong + "," + good + "]" + array.after), 5u);
        }
    }
    EXPECT_EQ(stored(), before);
}

TEST_F(Nested, ReferenceIsANumberAndNoRecord)
{
    const auto before = stored();
    for (const char *value : {R"({"id":1})", "[1]", R"("1")", "null", "true"}) {
        SCOPED_TRACE(value);
        const std::string text(value);
        EXPECT_EQ(update(updateDomain, R"({"D":{"id":1,"locale_id":)" + text + "}}").code, 5u);
        EXPECT_EQ(update(updateOrganization, R"({"D":{"org_id":1,"locale_id":)" + text + "}}").code, 5u);
        EXPECT_EQ(update(updateContract, R"({"D":{"id":1,"contractor_id":)" + text + "}}").code, 5u);
        EXPECT_EQ(update(updateContract, R"({"D":{"id":1,"operator_id":)" + text + "}}").code, 5u);
    }
    EXPECT_EQ(stored(), before);
}

// ---- Numbers ----

class Numbers : public Reading
{
};

// What becomes of a number that is not whole, not positive or not of 32 bits. Beyond the signed 64-bit range the
// conversion of the processor gives the least number, of which the low bits are 0.
const std::vector<std::pair<std::string, uint32_t>> truncated = {
    {"0", 0},
    {"-0", 0},
    {"-0.0", 0},
    {"1", 1},
    {"1.0", 1},
    {"1.9", 1},
    {"3.9", 3},
    {"0.999999", 0},
    {"1e-300", 0},
    {"0.1e1", 1},
    {"1e3", 1000},
    {"1E+3", 1000},
    {"-0.5", 0},
    {"-0.999999", 0},
    {"-1", 4294967295},
    {"-1.9", 4294967295},
    {"-2", 4294967294},
    {"2147483647", 2147483647},
    {"2147483648", 2147483648},
    {"-2147483648", 2147483648},
    {"-2147483649", 2147483647},
    {"4294967294.5", 4294967294},
    {"4294967295", 4294967295},
    {"4294967295.9", 4294967295},
    {"4.294967295e9", 4294967295},
    {"4294967296", 0},
    {"4294967296.5", 0},
    {"4294967297", 1},
    {"-4294967295", 1},
    {"-4294967296", 0},
    {"-4294967297", 4294967295},
    {"5000000000", 705032704},
    {"-5000000000", 3589934592},
    {"8589934591", 4294967295},
    {"9007199254740991", 4294967295},
    {"9007199254740992", 0},
    {"9007199254740993", 0}, // no double
    {"9007199254740994", 2},
    {"9223372036854774784", 4294966272},
    {"9223372036854775807", 0},
    {"9223372036854775808", 0},
    {"9223372036854777856", 0},
    {"18446744073709551615", 0},
    {"18446744073709555712", 0},
    {"-9223372036854774784", 1024},
    {"-9223372036854775808", 0},
    {"-9223372036854777856", 0},
    {"1e300", 0},
    {"-1e300", 0},
};

TEST_F(Numbers, OfAnIdKeepTheLow32Bits)
{
    for (const auto &[json, number] : truncated) {
        SCOPED_TRACE(json);
        foreign("DELETE FROM Users");
        EXPECT_EQ(send(addUsers, R"({"D":{"items":[{"id":)" + json + "}]}}"), 0u);
        EXPECT_EQ(file.rows("SELECT UsersId, typeof(UsersId) FROM Users"),
                  (std::vector<Row>{{std::to_string(number), "integer"}}));
        const auto user = update(updateUser, R"({"D":{"id":)" + json + R"(,"name":"x"}})");
        ASSERT_EQ(user.code, 0u);
        EXPECT_EQ(user->id, number);
        EXPECT_EQ(file.number("SELECT COUNT(*) FROM Users"), 1);
        EXPECT_EQ(get(getUser, number).code, 0u);
        EXPECT_EQ(send(deleteUser, R"({"D":{"op_id":)" + json + "}}"), 0u);
        EXPECT_EQ(file.number("SELECT COUNT(*) FROM Users"), 0);
    }
}

TEST_F(Numbers, OfAPlainMemberKeepTheLow32Bits)
{
    for (const auto &[json, number] : truncated) {
        SCOPED_TRACE(json);
        EXPECT_EQ(send(addUsers, R"({"D":{"items":[{"id":1,"roles":)" + json + "}]}}"), 0u);
        EXPECT_EQ(file.rows("SELECT UsersRoles, typeof(UsersRoles) FROM Users"),
                  (std::vector<Row>{{std::to_string(number), "integer"}}));
        const auto user = update(updateUser, R"({"D":{"id":1,"org":)" + json + "}}");
        ASSERT_EQ(user.code, 0u);
        EXPECT_EQ(value(user->roles), number);
        EXPECT_EQ(value(user->orgId), number);
    }
}

TEST_F(Numbers, OfAReferenceKeepTheLow32Bits)
{
    for (const auto &[json, number] : truncated) {
        SCOPED_TRACE(json);
        const std::string digits = std::to_string(number);
        EXPECT_EQ(send(addDomains, R"({"D":{"items":[{"id":1,"locale_id":)" + json + "}]}}"), 0u);
        EXPECT_EQ(file.value("SELECT DomainsLocaleId FROM Domains"), digits);
        EXPECT_EQ(
            update(updateContract, R"({"D":{"id":1,"contractor_id":)" + json + R"(,"operator_id":)" + json + "}}").code,
            0u);
        EXPECT_EQ(file.rows("SELECT ContractsContractorId, ContractsUserId FROM Contracts"),
                  (std::vector<Row>{{digits, digits}}));
    }
}

TEST_F(Numbers, OfADeviceUsersSectionKeepTheLow32Bits)
{
    for (const auto &[json, number] : truncated) {
        SCOPED_TRACE(json);
        foreign("DELETE FROM DeviceUserSectionLinks");
        EXPECT_EQ(send(addDevice, R"({"D":{"id":1,"users":[{"user_index":1,"sections":[)" + json + "]}]}}"), 0u);
        EXPECT_EQ(file.value("SELECT DeviceUserSectionLinksSectionId FROM DeviceUserSectionLinks"),
                  std::to_string(number));
        const auto device = get(getDevice, 1);
        ASSERT_EQ(device.code, 0u);
        ASSERT_EQ(device->usersCount, 1u);
        ASSERT_EQ(device->users[0].sectionsCount, 1u);
        EXPECT_EQ(device->users[0].sections[0], number);
    }
}

// Whole signed numbers: what is not whole, or not of 32 bits, is 0.
const std::vector<std::pair<std::string, int32_t>> whole = {
    {"0", 0},
    {"1", 1},
    {"1.0", 1},
    {"1e2", 100},
    {"-1", -1},
    {"1.5", 0},
    {"-1.5", 0},
    {"0.5", 0},
    {"2147483646.5", 0},
    {"2147483647", 2147483647},
    {"2147483648", 0},
    {"-2147483648", INT32_MIN},
    {"-2147483649", 0},
    {"4294967295", 0},
    {"4294967297", 0},
    {"9223372036854775808", 0},
    {"1e300", 0},
    {"-1e300", 0},
};

TEST_F(Numbers, ThatAreSignedAreWholeAndOf32Bits)
{
    for (const auto &[json, number] : whole) {
        SCOPED_TRACE(json);
        const std::string digits = std::to_string(number);
        EXPECT_EQ(send(addSites,
                       R"({"D":{"items":[{"id":1,"contract_id":)" + json + R"(,"contract_status":)" + json + "}]}}"),
                  0u);
        EXPECT_EQ(file.rows("SELECT SitesContractId, typeof(SitesContractId), SitesContractStatus FROM Sites"),
                  (std::vector<Row>{{digits, "integer", digits}}));
        EXPECT_EQ(update(updateSite, R"({"D":{"id":1,"contract_id":5,"contract_status":5}})").code, 0u);
        const auto site =
            update(updateSite, R"({"D":{"id":1,"contract_id":)" + json + R"(,"contract_status":)" + json + "}}");
        ASSERT_EQ(site.code, 0u);
        EXPECT_EQ(value(site->contractId), number);
        EXPECT_EQ(value(site->contractStatus), number);
        EXPECT_EQ(file.rows("SELECT SitesContractId, SitesContractStatus FROM Sites"),
                  (std::vector<Row>{{digits, digits}}));

        const auto event = update(addEvent, R"({"D":{"id":1,"device":)" + json + R"(,"channel":)" + json + "}}");
        ASSERT_EQ(event.code, 0u);
        EXPECT_EQ(value(event->deviceId), number);
        EXPECT_EQ(value(event->channel), number);
        EXPECT_EQ(file.rows("SELECT EventsDeviceId, EventsChannel FROM Events"), (std::vector<Row>{{digits, digits}}));
    }
}

TEST_F(Numbers, Of8BitsKeepTheLowBitsOfAWholeNumber)
{
    const std::vector<std::pair<std::string, uint8_t>> bytes = {
        {"0", 0},           {"1", 1},         {"127", 127}, {"128", 128},        {"255", 255},      {"256", 0},
        {"257", 1},         {"300", 44},      {"-1", 255},  {"-128", 128},       {"-129", 127},     {"-256", 0},
        {"1.5", 0},         {"300.5", 0},     {"3e2", 44},  {"2147483647", 255}, {"2147483648", 0}, {"-2147483647", 1},
        {"-2147483649", 0}, {"4294967297", 0}};
    for (const auto &[json, number] : bytes) {
        SCOPED_TRACE(json);
        const auto event =
            update(addEvent, R"({"D":{"id":1,"active":)" + json + R"(,"class":)" + json + R"(,"detector":)" + json
                                 + R"(,"reason":)" + json + R"(,"review_state":)" + json + "}}");
        ASSERT_EQ(event.code, 0u);
        EXPECT_EQ(value(event->active), number);
        EXPECT_EQ(value(event->eventClass), number);
        EXPECT_EQ(value(event->detector), number);
        EXPECT_EQ(value(event->reason), number);
        EXPECT_EQ(value(event->reviewState), number);
        const std::string digits = std::to_string(number);
        EXPECT_EQ(file.rows("SELECT EventsActive, EventsClass, EventsDetector, EventsReason, EventsReviewState,"
                            " typeof(EventsActive) FROM Events"),
                  (std::vector<Row>{{digits, digits, digits, digits, digits, "integer"}}));
    }
}

// ---- Flags ----

class Flags : public Reading
{
};

// A flag is a number; a boolean is let in and reads as false.
const std::vector<std::pair<std::string, uint8_t>> flags = {
    {"true", 0},       {"false", 0},      {"0", 0},           {"-0", 0},          {"1", 1},          {"1.0", 1},
    {"2", 1},          {"-1", 1},         {"1e2", 1},         {"0.5", 0},         {"1.5", 0},        {"-0.5", 0},
    {"2147483647", 1}, {"2147483648", 0}, {"-2147483648", 1}, {"-2147483649", 0}, {"4294967297", 0}, {"1e300", 0}};

TEST_F(Flags, OfAUserAreSetByAWholeNumber)
{
    for (const auto &[json, flag] : flags) {
        SCOPED_TRACE(json);
        EXPECT_EQ(send(addUsers, R"({"D":{"items":[{"id":1,"active":)" + json + "}]}}"), 0u);
        EXPECT_EQ(file.rows("SELECT UsersIsActive, typeof(UsersIsActive) FROM Users"),
                  (std::vector<Row>{{std::to_string(flag), "integer"}}));
        EXPECT_EQ(value(get(getUser, 1)->isActive), flag);
        foreign("UPDATE Users SET UsersIsActive = " + std::to_string(1 - flag));
        const auto user = update(updateUser, R"({"D":{"id":1,"active":)" + json + "}}");
        ASSERT_EQ(user.code, 0u);
        EXPECT_EQ(value(user->isActive), flag);
        EXPECT_EQ(file.value("SELECT UsersIsActive FROM Users"), std::to_string(flag));
    }
}

TEST_F(Flags, OfADeviceAreSetByAWholeNumber)
{
    for (const auto &[json, flag] : flags) {
        SCOPED_TRACE(json);
        EXPECT_EQ(send(addDevice, R"({"D":{"id":1,"parted":)" + json + "}}"), 0u);
        EXPECT_EQ(file.rows("SELECT DevicesIsParted, typeof(DevicesIsParted) FROM Devices"),
                  (std::vector<Row>{{std::to_string(flag), "integer"}}));
        EXPECT_EQ(value(get(getDevice, 1)->isParted), flag);
    }
}

TEST_F(Flags, OfASiteAreSetByAWholeNumber)
{
    for (const auto &[json, flag] : flags) {
        SCOPED_TRACE(json);
        const std::string members =
            R"({"id":1,"is_crossing":)" + json + R"(,"delegated":)" + json + R"(,"site_plan":)" + json + "}";
        const std::string digit = std::to_string(flag);
        EXPECT_EQ(send(addSites, envelope("{\"items\":[" + members + "]}")), 0u);
        EXPECT_EQ(file.rows("SELECT SitesIsCrossing, SitesIsDelegated, SitesIsSitePlanExists FROM Sites"),
                  (std::vector<Row>{{digit, digit, digit}}));
        const std::string other = std::to_string(1 - flag);
        foreign("UPDATE Sites SET SitesIsCrossing = " + other + ", SitesIsDelegated = " + other
                + ", SitesIsSitePlanExists = " + other);
        const auto site = update(updateSite, envelope(members));
        ASSERT_EQ(site.code, 0u);
        EXPECT_EQ(value(site->isCrossing), flag);
        EXPECT_EQ(value(site->isDelegated), flag);
        EXPECT_EQ(value(site->isSitePlanExists), flag);
    }
}

TEST_F(Flags, OfAnEventAreSetByAWholeNumber)
{
    for (const auto &[json, flag] : flags) {
        SCOPED_TRACE(json);
        const auto event = update(addEvent, R"({"D":{"id":1,"is_closed":)" + json + R"(,"affect":)" + json + "}}");
        ASSERT_EQ(event.code, 0u);
        EXPECT_EQ(value(event->isClosed), flag);
        EXPECT_EQ(value(event->affect), flag);
        EXPECT_EQ(file.rows("SELECT EventsIsClosed, EventsAffect FROM Events"),
                  (std::vector<Row>{{std::to_string(flag), std::to_string(flag)}}));
    }
}

// ---- Phone numbers ----

class Phones : public Reading
{
protected:
    // The floating point number in the column, and the number that it should be.
    Row column(const std::string &number) const
    {
        return file.rows("SELECT typeof(UsersPhone), UsersPhone = " + number + " FROM Users WHERE UsersId = 1").at(0);
    }
};

// A JSON number, the unsigned number that it becomes, and the number that is read back from the column.
struct Phone
{
    std::string json;
    std::string stored;
    uint64_t flat;
};

const uint64_t half = 9223372036854775808ull;

const std::vector<Phone> phones = {
    // Below 2^63 a number is truncated toward zero.
    {"0", "0", 0},
    {"-0.0", "0", 0},
    {"0.9", "0", 0},
    {"-0.9", "0", 0},
    {"1.9", "1", 1},
    {"4294967296", "4294967296", 4294967296ull},
    {"79991234567", "79991234567", 79991234567ull},
    {"79991234567.9", "79991234567", 79991234567ull},
    {"4503599627370495", "4503599627370495", 4503599627370495ull},
    {"9007199254740991", "9007199254740991", 9007199254740992ull}, // rounded on its way out of the column
    {"9007199254740993", "9007199254740992", 9007199254740992ull}, // no double
    {"9223372036854774784", "9223372036854774784", 9223372036854774784ull},
    // From there to 2^64 it is kept. A read converts the column to a signed number, which ends at 2^63.
    {"9223372036854775807", "9223372036854775808", half},
    {"9223372036854775808", "9223372036854775808", half},
    {"9223372036854777856", "9223372036854777856", half},
    {"1e19", "10000000000000000000", half},
    {"18446744073709549568", "18446744073709549568", half},
    // From 2^64 on the conversion of the processor gives its least number, 2^63 without a sign.
    {"18446744073709551615", "9223372036854775808", half},
    {"18446744073709551616", "9223372036854775808", half},
    {"18446744073709555712", "9223372036854775808", half},
    {"1e300", "9223372036854775808", half},
    // A negative number keeps its bits.
    {"-1", "18446744073709551615", half},
    {"-1.9", "18446744073709551615", half},
    {"-4096", "18446744073709547520", half},
    {"-4611686018427387904", "13835058055282163712", half},
    {"-9223372036854774784", "9223372036854776832", half},
    {"-9223372036854775808", "9223372036854775808", half},
    {"-9223372036854777856", "9223372036854775808", half},
    {"-1e300", "9223372036854775808", half},
};

TEST_F(Phones, OfAddedUsersKeep64Bits)
{
    for (const Phone &phone : phones) {
        SCOPED_TRACE(phone.json);
        EXPECT_EQ(send(addUsers, R"({"D":{"items":[{"id":1,"phone":)" + phone.json + "}]}}"), 0u);
        EXPECT_EQ(column(phone.stored), (Row{"real", "1"}));
        const auto user = get(getUser, 1);
        ASSERT_EQ(user.code, 0u);
        EXPECT_EQ(value(user->phone), phone.flat);
    }
}

TEST_F(Phones, OfUpdatedUsersKeep64Bits)
{
    for (const Phone &phone : phones) {
        SCOPED_TRACE(phone.json);
        foreign("UPDATE Users SET UsersPhone = NULL");
        const auto user = update(updateUser, R"({"D":{"id":1,"phone":)" + phone.json + "}}");
        ASSERT_EQ(user.code, 0u);
        EXPECT_EQ(value(user->phone), phone.flat);
        EXPECT_EQ(column(phone.stored), (Row{"real", "1"}));
    }
}

TEST_F(Phones, AreFoundByTheirDigits)
{
    EXPECT_EQ(send(addUsers, R"({"D":{"items":[{"id":1,"phone":79991234567},{"id":2,"phone":79991234568}]}})"), 0u);
    const auto users = listBy(getUsersWithParams, "phone", "79991234567");
    ASSERT_EQ(users.size(), 1u);
    EXPECT_EQ(users[0].id, 1u);
}

// ---- Texts ----

class Texts : public Reading
{
protected:
    // Adds a text, reads it back, looks it up by itself, and puts it into another column by an update.
    void expectKept(const std::string &json, const std::string &text)
    {
        SCOPED_TRACE(text);
        EXPECT_EQ(send(addUsers, R"({"D":{"items":[{"id":1,"name":)" + json + R"(,"login":"next"}]}})"), 0u);
        EXPECT_EQ(file.rows("SELECT UsersName, typeof(UsersName), UsersLogin FROM Users"),
                  (std::vector<Row>{{text, "text", "next"}}));
        EXPECT_EQ(listBy(getUsersWithParams, "name", text).size(), 1u);
        const auto user = update(updateUser, R"({"D":{"id":1,"contacts":)" + json + "}}");
        ASSERT_EQ(user.code, 0u);
        EXPECT_EQ(utf8(user->name), text);
        EXPECT_EQ(utf8(user->login), "next");
        EXPECT_EQ(utf8(user->contacts), text);
        EXPECT_EQ(file.value("SELECT UsersContacts FROM Users"), text);
    }
};

std::string inQuotes(const std::string &text)
{
    std::string json = "\"";
    for (const char letter : text) {
        if (letter == '"' || letter == '\\')
            json += '\\';
        json += letter;
    }
    return json + "\"";
}

TEST_F(Texts, MeanNothingToTheStore)
{
    for (const std::string text : {"",           " ",     "  padded  ",
                                   "'",          "''",    "\"",
                                   "\"\"",       "\\",    "\\'",
                                   "`",          "it's",  "%",
                                   "%1",         "%2%3",  "%%",
                                   "?",          "??",    ":1",
                                   ":2",         ":a",    "@1",
                                   "$1",         "NULL",  "null",
                                   "0",          "1",     "1.0",
                                   "true",       "x'41'", "--",
                                   "/*",         ";",     "'); DROP TABLE Users; --",
                                   "{\"D\":{}}", "[1]",   "a,b",
                                   "<a&b>"})
        expectKept(inQuotes(text), text);
}

TEST_F(Texts, MayBeEscaped)
{
    expectKept(R"("\"\\\/\b\f\n\r\t")", "\"\\/\b\f\n\r\t");
    expectKept(R"("\u0041\u00E9\u20ac\ud83d\uDE00\u007f\u001f")", "A\u00E9\u20AC\U0001F600\x7F\x1F");
}

TEST_F(Texts, MayHoldEveryPlane)
{
    for (uint32_t plane = 0; plane <= 16; ++plane) {
        const uint32_t point = plane * 0x10000 + 0x1234;
        std::string text = "a";
        if (plane == 0) {
            text += "\u1234";
        } else {
            text += static_cast<char>(0xF0 | (point >> 18));
            text += static_cast<char>(0x80 | ((point >> 12) & 0x3F));
            text += static_cast<char>(0x80 | ((point >> 6) & 0x3F));
            text += static_cast<char>(0x80 | (point & 0x3F));
        }
        text += "b";
        expectKept(inQuotes(text), text);
    }
}

TEST_F(Texts, MayHoldTheBordersOfEachLength)
{
    for (const std::string text :
         {"\x01", "\x7F", "\u0080", "\u07FF", "\u0800", "\uD7FF", "\uE000", "\uFFFD", "\U00010000", "\U0010FFFF",
          "e\u0301", "\u05D0\u202E\u200D", "\U0001F468\u200D\U0001F469"})
        expectKept(inQuotes(text), text);
}

TEST_F(Texts, MayBeLong)
{
    expectKept(inQuotes(std::string(300, 'x')), std::string(300, 'x'));
    std::string text;
    for (int repeat = 0; repeat < 50000; ++repeat)
        text += "\u0436'";
    EXPECT_EQ(send(addUsers, R"({"D":{"items":[{"id":1,"name":)" + inQuotes(text) + "}]}}"), 0u);
    EXPECT_TRUE(file.value("SELECT UsersName FROM Users") == text);
    EXPECT_TRUE(utf8(get(getUser, 1)->name) == text);
}

TEST_F(Texts, KeepAByteOrderMarkInside)
{
    expectKept("\"a\uFEFFb\"", "a\uFEFFb");
    expectKept(R"("a\ufeff")", "a\uFEFF");
}

TEST_F(Texts, KeepANul)
{
    EXPECT_EQ(send(addUsers, R"({"D":{"items":[{"id":1,"name":"a\u0000b","login":"next"}]}})"), 0u);
    EXPECT_EQ(file.rows("SELECT UsersName, UsersLogin FROM Users"),
              (std::vector<Row>{{std::string("a\0b", 3), "next"}}));
    const auto user = update(updateUser, R"({"D":{"id":1,"contacts":"\u0000"}})");
    ASSERT_EQ(user.code, 0u);
    EXPECT_EQ(std::vector<uint16_t>(user->name, user->name + 4), (std::vector<uint16_t>{'a', 0, 'b', 0}));
    EXPECT_EQ(std::vector<uint16_t>(user->contacts, user->contacts + 2), (std::vector<uint16_t>{0, 0}));
    EXPECT_EQ(file.value("SELECT UsersContacts FROM Users"), std::string(1, '\0'));
}

TEST_F(Texts, WithHalfASurrogatePairAreNotRefused)
{
    for (const char *json : {R"("a\ud800")", R"("a\udc00")", R"("a\udbff")", R"("a\udfff")", R"("a\ude00\ud83d")"}) {
        SCOPED_TRACE(json);
        const auto user = update(updateUser, std::string(R"({"D":{"id":1,"name":)") + json + R"(,"login":"next"}})");
        ASSERT_EQ(user.code, 0u);
        ASSERT_NE(user->name, nullptr);
        EXPECT_EQ(user->name[0], u'a');
        EXPECT_NE(user->name[1], 0u);
        EXPECT_EQ(utf8(user->login), "next");
    }
}

TEST_F(Texts, WithHalfASurrogatePairAmongTheirUnitsAreNotRefused)
{
    std::u16string text = utf16(R"({"D":{"items":[{"id":1,"name":"a#b","login":"next"}]}})");
    text[text.find(u'#')] = 0xD800;
    EXPECT_EQ(addUsers(reinterpret_cast<const uint16_t *>(text.data()), static_cast<uint32_t>(text.size())), 0u);
    const auto user = get(getUser, 1);
    ASSERT_EQ(user.code, 0u);
    EXPECT_EQ(utf8(user->name).value().front(), 'a');
    EXPECT_EQ(utf8(user->name).value().back(), 'b');
    EXPECT_EQ(utf8(user->login), "next");
}

TEST_F(Texts, ThatAreEmptyAreNotAbsent)
{
    const auto user = update(updateUser, R"({"D":{"id":1,"name":""}})");
    ASSERT_EQ(user.code, 0u);
    ASSERT_NE(user->name, nullptr);
    EXPECT_EQ(user->name[0], 0u);
    EXPECT_EQ(user->login, nullptr);
    EXPECT_EQ(file.rows("SELECT typeof(UsersName), typeof(UsersLogin) FROM Users"),
              (std::vector<Row>{{"text", "null"}}));
}

} // namespace
