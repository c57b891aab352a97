#include "Story.h"

#include "support/Calls.h"
#include "support/Print.h"

#include <iostream>

namespace example {
namespace {

constexpr uint32_t someUser = 1002;
constexpr uint32_t noSite = 999;

// The result of a mistake is checked like any other.
Row mistakeRow(const std::string &call, const std::string &mistake, uint32_t result, uint32_t expected)
{
    expect(call, result, expected);
    return {call, mistake, describeResult(result)};
}

Row wrongDocument(const std::string &name, Sender function, const std::string &mistake, const std::string &json,
                  uint32_t expected)
{
    const Utf16 text = toUtf16(json);
    return mistakeRow(name, mistake + ": " + json, function(text.data(), unitsOf(text)), expected);
}

Row wrongKey()
{
    const Utf16 key = toUtf16("Login");
    const Utf16 value = toUtf16("a.ohara");
    FlatUser *users = nullptr;
    uint32_t count = 0;
    return mistakeRow("getUsersWithParams", "the key is \"login\", not \"Login\"",
                      getUsersWithParams(&users, &count, key.data(), unitsOf(key), value.data(), unitsOf(value)),
                      BRIMLET_REFUSED);
}

Row unknownId()
{
    FlatSite *site = nullptr;
    return mistakeRow("getSite", "there is no site 999", getSite(&site, noSite), BRIMLET_NOT_FOUND);
}

Row occupiedPointer()
{
    const Owned<FlatUser> user = getOne("getUser", getUser, someUser);
    FlatUser *occupied = user.get();
    return mistakeRow("getUser", "the pointer is not null", getUser(&occupied, someUser), BRIMLET_REFUSED);
}

} // namespace

void makeMistakes()
{
    printHeading("Mistakes and their results");
    printTable(
        {"call", "mistake", "result"},
        {
            wrongDocument("addLocales", addLocales, "not JSON", "id=1", BRIMLET_REFUSED),
            wrongDocument("addLocales", addLocales, "no envelope", R"({"items":[{"id":1}]})", BRIMLET_INCOMPLETE),
            wrongDocument("addLocales", addLocales, "no items", R"({"D":{"items":[]}})", BRIMLET_REFUSED),
            wrongDocument("addLocales", addLocales, "id is a text", R"({"D":{"items":[{"id":"1"}]}})",
                          BRIMLET_INCOMPLETE),
            wrongDocument("deleteUser", deleteUser, "its key is \"op_id\"", R"({"D":{"id":1002}})", BRIMLET_INCOMPLETE),
            wrongDocument("deleteSite", deleteSite, "there is no such site", R"({"D":{"site_id":999}})",
                          BRIMLET_NOT_FOUND),
            unknownId(),
            wrongKey(),
            occupiedPointer(),
        });

    const Owned<FlatUser> before = getOne("getUser", getUser, someUser);
    const Utf16 trueFlag = toUtf16(R"({"D":{"id":1002,"active":true}})");
    const Owned<FlatUser> after = exchange("updateUser", updateUser, trueFlag);
    std::cout << "\nOne mistake is accepted: a flag is 1 or 0, and true counts as 0.\nUser " << someUser
              << " had \"active\" " << shown(before->isActive) << ", and after updateUser with true it is "
              << shown(after->isActive) << ".\n";
}

} // namespace example
