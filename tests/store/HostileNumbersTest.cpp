// Numbers on every border, in every member that takes one: stored by the rule of the member, never refused.
#include "Hostile.h"

#include <cmath>
#include <cstdlib>
#include <set>

using namespace brimlet::test;

namespace {

// ---- Numbers ----

const std::vector<std::string> &borders()
{
    // Around 2 to the power of 8, 16, 31, 32, 53, 63 and 64, and the halves of these.
    static const std::vector<std::string> all = {
        "0", "1", "127", "128", "129", "255", "256", "257", "32767", "32768", "32769", "65535", "65536", "65537",
        "1073741824", "2147483647", "2147483648", "2147483649", "4294967295", "4294967296", "4294967297",
        "4503599627370496", "9007199254740991", "9007199254740992", "9007199254740993", "4611686018427387904",
        "9223372036854774784", "9223372036854775807", "9223372036854775808", "9223372036854775809",
        "9223372036854777856", "18446744073709549568", "18446744073709551615", "18446744073709551616",
        "18446744073709551617", "18446744073709555712",
        // fractions beside them
        "0.5", "0.9999999999999999", "1.5", "254.5", "255.5", "256.5", "65535.5", "65536.5", "2147483646.5",
        "2147483647.5", "2147483648.5", "4294967295.5", "4294967296.5", "4503599627370495.5",
        // and beyond
        "1e19", "1e20", "1e308", "1e-308", "5e-324", "255e0", "25500e-2", "1.0", "0e5"};
    static const std::vector<std::string> signedOnes = [] {
        std::vector<std::string> both = all;
        for (const std::string &number : all)
            both.push_back("-" + number);
        return both;
    }();
    return signedOnes;
}

const double twoTo63 = std::ldexp(1.0, 63);

// Toward zero; what a signed 64-bit number cannot hold is the smallest of them.
int64_t truncated(double number)
{
    if (number >= twoTo63 || number < -twoTo63)
        return INT64_MIN;
    return static_cast<int64_t>(number);
}

uint32_t lowBits(double number)
{
    return static_cast<uint32_t>(static_cast<uint64_t>(truncated(number)));
}

// What is no whole number, or does not fit, is 0.
int32_t whole(double number)
{
    const bool fits = number >= -2147483648.0 && number <= 2147483647.0 && std::trunc(number) == number;
    return fits ? static_cast<int32_t>(number) : 0;
}

uint64_t wide(double number)
{
    if (number < twoTo63)
        return static_cast<uint64_t>(truncated(number));
    const double rest = number - twoTo63;
    const auto low = static_cast<uint64_t>(truncated(rest));
    return rest >= twoTo63 ? low : low + (uint64_t{1} << 63);
}

std::string real(double number)
{
    std::array<char, 40> text{};
    std::snprintf(text.data(), text.size(), "real %.17g", number == 0 ? 0.0 : number); // a column has no -0
    return text.data();
}

// What a column holds for a number in a document.
std::string stored(Kind kind, const std::string &json)
{
    const double number = std::strtod(json.c_str(), nullptr);
    switch (kind) {
    case Kind::number:
        return "integer " + std::to_string(lowBits(number));
    case Kind::whole:
        return "integer " + std::to_string(whole(number));
    case Kind::byte:
        return "integer " + std::to_string(static_cast<uint32_t>(whole(number)) & 0xFFu);
    case Kind::flag:
        return whole(number) != 0 ? "integer 1" : "integer 0";
    case Kind::number64:
        return real(static_cast<double>(wide(number)));
    case Kind::coordinate:
        return real(number);
    default:
        throw std::logic_error("not a number's kind");
    }
}

std::vector<std::string> storedBorders(Kind kind)
{
    std::vector<std::string> all;
    for (const std::string &number : borders())
        all.push_back(stored(kind, number));
    return all;
}

class HostileNumber : public HostileTest, public ::testing::WithParamInterface<SubjectMember>
{
};

TEST_P(HostileNumber, IsStoredByTheRuleOfItsMember)
{
    const auto &[subject, member] = GetParam();
    ASSERT_EQ(send(subject.add, batchOf(subject, member.key, borders())), subject.code);
    const std::map<int64_t, std::string> found = column(subject, member);
    const std::map<int64_t, std::string> expected = numbered(storedBorders(member.kind));
    ASSERT_EQ(found.size(), expected.size());
    for (const auto &[place, value] : expected)
        EXPECT_EQ(found.at(place), value) << borders().at(static_cast<size_t>(place) - 1);
    expectIntact();
}

TEST_P(HostileNumber, IsRefusedIfNoDoubleCanHoldIt)
{
    const auto &[subject, member] = GetParam();
    for (const char *number : {"1e309", "-1e309", "1e99999", "01", "+1", "NaN", "-", "--1", "0x1", "1e", "Infinity"})
        EXPECT_EQ(send(subject.add, batchOf(subject, member.key, {number})), 10u) << number;
    expectEmpty();
}

INSTANTIATE_TEST_SUITE_P(Members, HostileNumber,
                         ::testing::ValuesIn(membersWhere([](Kind kind) { return !isTextKind(kind); })), nameOf);

// The same by the functions that write one record, in all its numbers at once.
struct OneRecord
{
    std::string name;
    TextFunction write;
    std::string document; // "@" for the members
    std::string subject;
    std::vector<std::string> without; // members that this function does not write
};

std::vector<OneRecord> oneRecords()
{
    return {
        {"updateDomain", withoutTarget(updateDomain), R"({"D":{"id":1,@}})", "domain", {}},
        {"updateUser", withoutTarget(updateUser), R"({"D":{"id":1,@}})", "user", {}},
        {"updateOrganization", withoutTarget(updateOrganization), R"({"D":{"org_id":1,@}})", "organization", {}},
        {"updateContractor", withoutTarget(updateContractor), R"({"D":{"id":1,@}})", "contractor", {}},
        {"updateContract", withoutTarget(updateContract), R"({"D":{"id":1,@}})", "contract", {}},
        {"updateSite", withoutTarget(updateSite), R"({"D":{"id":1,@}})", "site", {}},
        {"updateSiteLocation", withoutTarget(updateSite), R"({"D":{"id":1,"location":{@}}})", "location", {}},
        {"updateSection", withoutTarget(updateSection), R"({"D":{"device":1,"id":1,@}})", "section", {}},
        {"updateZone", withoutTarget(updateZone), R"({"D":{"device":1,"section":1,"id":1,@}})", "zone", {}},
        {"addDevice", addDevice, R"({"D":{"id":1,@}})", "device", {}},
        {"updateDeviceFw",
         withoutTarget(updateDeviceFw),
         R"({"D":{"id":1,@}})",
         "device",
         {"account", "domain", "cluster_id", "parted"}},
        {"addEvent", withoutTarget(addEvent), R"({"D":{"id":1,@}})", "event", {}},
    };
}

void PrintTo(const OneRecord &record, std::ostream *out)
{
    *out << record.name;
}

std::vector<Member> numbersOf(const OneRecord &record)
{
    std::vector<Member> members;
    for (const SubjectMember &one : membersWhere([](Kind kind) { return !isTextKind(kind); }))
        if (one.subject.name == record.subject
            && std::count(record.without.begin(), record.without.end(), one.member.key) == 0)
            members.push_back(one.member);
    return members;
}

class HostileNumbersOfOne : public HostileTest, public ::testing::WithParamInterface<OneRecord>
{
};

TEST_P(HostileNumbersOfOne, AreStoredByTheRulesOfTheirMembers)
{
    const OneRecord &record = GetParam();
    ASSERT_EQ(send(addDevice, R"({"D":{"id":1,"sections":[{"id":1}]}})"), 0u); // for sections and zones
    const std::vector<Subject> all = subjects();
    const auto subject =
        std::find_if(all.begin(), all.end(), [&](const Subject &one) { return one.name == record.subject; });
    const std::vector<Member> members = numbersOf(record);
    ASSERT_FALSE(members.empty());
    for (const std::string &number : borders()) {
        std::string written;
        for (const Member &member : members)
            written += (written.empty() ? "" : ",") + memberOf(member.key, number);
        ASSERT_EQ(send(record.write, replaced(record.document, '@', written)), 0u) << number;
        list(getZones, UINT32_MAX); // ends the read back, which holds the file
        for (const Member &member : members)
            EXPECT_EQ(column(*subject, member).at(1), stored(member.kind, number)) << member.key << " " << number;
    }
    expectIntact();
}

INSTANTIATE_TEST_SUITE_P(Functions, HostileNumbersOfOne, ::testing::ValuesIn(oneRecords()),
                         [](const auto &test) { return test.param.name; });

// Ids wrap like every number: on the way in, and in a removal.
class HostileId : public HostileTest, public ::testing::WithParamInterface<Removal>
{
};

TEST_P(HostileId, WrapsAroundWhenAddedAndWhenRemoved)
{
    const Removal &removal = GetParam();
    std::string items;
    std::set<uint32_t> ids;
    for (const std::string &number : borders()) {
        items += (items.empty() ? "" : ",") + replaced(removal.item, '@', number);
        ids.insert(lowBits(std::strtod(number.c_str(), nullptr)));
    }
    ASSERT_EQ(send(removal.add, R"({"D":{"items":[)" + items + "]}}"), 0u);
    std::set<uint32_t> found;
    for (const auto &[place, value] : cells("SELECT " + removal.column + ", 0 FROM " + removal.table))
        found.insert(static_cast<uint32_t>(place));
    EXPECT_EQ(found, ids);

    for (const std::string &number : borders()) {
        const bool isThere = ids.erase(lowBits(std::strtod(number.c_str(), nullptr))) == 1;
        EXPECT_EQ(send(removal.remove, replaced(removal.removed, '@', number)), isThere ? 0u : 8u) << number;
    }
    EXPECT_EQ(file.number("SELECT count(*) FROM " + removal.table), 0);
    expectIntact();
}

INSTANTIATE_TEST_SUITE_P(Removals, HostileId, ::testing::ValuesIn(removals()),
                         [](const auto &test) { return test.param.name; });

} // namespace
