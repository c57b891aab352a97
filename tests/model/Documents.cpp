#include "Documents.h"

namespace brimlet::test {

namespace {

// A value in a document, and as it is read.
struct Sample
{
    const char *json;
    const char *read;
};

const Sample texts[] = {{R"("")", ""},
                        {R"("a")", "a"},
                        {R"("1")", "1"},
                        {R"("it's %1, :1 or ?")", "it's %1, :1 or ?"},
                        {R"("\"quoted\" \\")", "\"quoted\" \\"},
                        {R"("Привет")", "Привет"},
                        {R"("\ud83d\ude00")", "😀"}};
const Sample numbers[] = {{"0", "0"},
                          {"1", "1"},
                          {"2", "2"},
                          {"1.9", "1"},
                          {"-0.5", "0"},
                          {"-1", "4294967295"},
                          {"4294967295", "4294967295"},
                          {"4294967296", "0"},
                          {"5000000000", "705032704"}};
const Sample references[] = {{"1", "1"}, {"2", "2"}, {"3", "3"}, {"4", "4"}, {"0", "0"}, {"4294967295", "4294967295"}};
const Sample wholes[] = {{"0", "0"},
                         {"1", "1"},
                         {"-7", "-7"},
                         {"1.5", "0"},
                         {"2147483647", "2147483647"},
                         {"-2147483648", "-2147483648"},
                         {"2147483648", "0"}};
const Sample wholeReferences[] = {{"1", "1"}, {"2", "2"}, {"3", "3"}, {"4", "4"}, {"-1", "-1"}, {"2.5", "0"}};
const Sample bytes[] = {{"0", "0"},    {"3", "3"},    {"255", "255"}, {"256", "0"},
                        {"300", "44"}, {"-1", "255"}, {"0.5", "0"}};
const Sample flags[] = {{"1", "1"}, {"0", "0"}, {"2", "1"}, {"-1", "1"}, {"true", "0"}, {"false", "0"}, {"0.5", "0"}};
const Sample phones[] = {{"0", "0"}, {"79001234567", "79001234567"}, {"9007199254740992", "9007199254740992"}};

const Sample &sampleOf(Dice &dice, Kind kind)
{
    switch (kind) {
    case Kind::Text:
        return dice.oneOf(texts);
    case Kind::Number:
        return dice.oneOf(numbers);
    case Kind::Reference:
        return dice.oneOf(references);
    case Kind::Whole:
        return dice.oneOf(wholes);
    case Kind::WholeReference:
        return dice.oneOf(wholeReferences);
    case Kind::Byte:
        return dice.oneOf(bytes);
    case Kind::Flag:
        return dice.oneOf(flags);
    case Kind::Phone:
        break;
    }
    return dice.oneOf(phones);
}

} // namespace

void Document::append(const std::string &key, const std::string &json)
{
    members += (members.empty() ? "\"" : ",\"") + key + "\":" + json;
}

Document makeDocument(Dice &dice, const char *idKey, const Members &members)
{
    Document document;
    const std::string id = std::to_string(dice.id());
    document.append(idKey, id);
    document.row["id"] = id;
    const uint32_t share = dice.isLucky(20) ? 0 : dice.isLucky(30) ? 100 : 50; // of the members that are there
    for (const Member &member : members) {
        if (!dice.isLucky(share))
            continue;
        const Sample &sample = sampleOf(dice, member.kind);
        document.append(member.key, sample.json);
        document.row[member.field] = sample.read;
    }
    return document;
}

} // namespace brimlet::test
