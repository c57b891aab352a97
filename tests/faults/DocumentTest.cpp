// Documents that break off, as a lost connection leaves them: every function that takes one refuses every part of it,
// and the file stays as it is.
#include "../store/Hostile.h"
#include "Child.h"
#include "Contents.h"
#include "Workload.h"

using namespace brimlet::test;

namespace {

// Holds what each of the functions asks for.
const char *const document =
    R"({"D":{"id":1,"op_id":1,"domain_id":1,"org_id":1,"site_id":1,"device":1,"section":1,"zone":11,"time":5,)"
    R"("items":[{"id":1,"org_id":1,"name":"part of a t\u0065xt"},{"id":2,"org_id":2,"location":{"lat":-1.5e1}}],)"
    R"("name":"part","sections":[{"id":1,"zones":[{"id":2}]}],"users":[{"user_index":1,"sections":[1,2]}]}})";

TEST(Documents, ThatBreakOffAreRefusedAndChangeNothing)
{
    const Directory directory;
    makeFilledFile();
    const Contents before = contentsOf();
    const std::u16string text = utf16(document);
    Child child([&](Channel &channel) {
        const DebugLines lines;
        Library library;
        for (const Reader &reader : readers())
            for (size_t length = 0; length < text.size(); ++length)
                channel.tell(call(reader.call, text.substr(0, length)));
        channel.hear();
        for (const Reader &reader : readers())
            channel.tell(call(reader.call, text));
        library.exit();
    });
    int64_t refused = 0;
    for (const Reader &reader : readers())
        for (size_t length = 0; length < text.size(); ++length, ++refused)
            ASSERT_EQ(child.hear(), 10) << reader.name << ", " << length << " units";
    EXPECT_EQ(contentsOf(), before);
    child.tell(0);
    for (const Reader &reader : readers()) // deletes find a record, or that another delete came first
        EXPECT_NE(child.hear().value_or(10), 10) << reader.name;
    EXPECT_TRUE(child.wait().isClean());
    EXPECT_NE(contentsOf(), before);
    figure("documents refused", refused);
}

} // namespace
