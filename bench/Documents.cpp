#include "Documents.h"

#include <QString>

namespace bench::documents {

namespace {

// A JSON object that is written member by member.
class Object
{
public:
    Object &number(const char *key, double value) { return raw(key, QString::number(value, 'g', 17).toStdString()); }
    Object &number(const char *key, uint32_t value) { return raw(key, std::to_string(value)); }
    Object &text(const char *key, const std::string &value) { return raw(key, '"' + value + '"'); }

    Object &raw(const char *key, const std::string &value)
    {
        content += content.empty() ? "{\"" : ",\"";
        content += key;
        content += "\":";
        content += value;
        return *this;
    }

    std::string written() const { return content + '}'; }

private:
    std::string content;
};

template<class Write>
std::string list(uint32_t count, const Write &write)
{
    std::string content = "[";
    for (uint32_t i = 0; i < count; ++i) {
        if (i > 0)
            content += ',';
        content += write(i);
    }
    return content + ']';
}

Text document(const std::string &payload)
{
    return QString::fromStdString("{\"D\":" + payload + "}").toStdU16String();
}

template<class Write>
Text batch(uint32_t count, const Write &write)
{
    return document(Object().raw("items", list(count, write)).written());
}

constexpr uint32_t domainCount = 10, localeCount = 4, contractorCount = 50, contractCount = 500;

std::string numbered(const char *words, uint32_t number)
{
    return words + std::to_string(number);
}

std::string user(uint32_t id, const std::string &contacts)
{
    return Object()
        .number("id", id)
        .text("name", numbered("Jörg Müller ", id))
        .text("login", numbered("login", id))
        .text("contacts", contacts)
        .number("active", id % 8 ? 1u : 0u)
        .number("domain", 1 + id % domainCount)
        .number("org", id % 70)
        .number("roles", id % 32)
        .number("phone", 79160000000.0 + id)
        .written();
}

std::string zone(uint32_t id)
{
    return Object()
        .number("id", id)
        .text("name", numbered("Window, north wall ", id))
        .number("detector", id % 5)
        .number("physic", id)
        .number("form", id % 3)
        .number("flags", id % 16)
        .number("delay", 30u)
        .number("schedule_id", id % 7)
        .number("tracert", id % 2)
        .number("uid_type", 1u)
        .number("arm", id % 2)
        .written();
}

std::string section(uint32_t id, uint32_t zones)
{
    return Object()
        .number("id", id)
        .text("name", numbered("Склад ", id))
        .number("schedule_id", id % 7)
        .number("tracert", id % 2)
        .number("flags", id % 16)
        .number("detector", id % 5)
        .number("arm", id % 2)
        .number("physic", id)
        .number("form", id % 3)
        .number("delay", 45u)
        .number("uid_type", 1u)
        .raw("zones", list(zones, [&](uint32_t i) { return zone((id - 1) * zones + 1 + i); }))
        .written();
}

std::string deviceUser(uint32_t index, const Shape &shape)
{
    return Object()
        .number("user_index", index)
        .text("name", numbered("Key holder ", index))
        .text("comment", "until the end of the year")
        .text("phone", numbered("+7916000000", index % 10))
        .raw("sections",
             list(shape.links, [&](uint32_t i) { return std::to_string(1 + (index + i) % shape.sections); }))
        .written();
}

std::string device(uint32_t id, const Shape &shape)
{
    return Object()
        .number("id", id)
        .number("account", 1000 + id)
        .number("domain", 1 + id % domainCount)
        .number("config_version", id % 90)
        .number("parted", 1u)
        .number("cluster_id", id % 12)
        .raw("sections", list(shape.sections, [&](uint32_t i) { return section(1 + i, shape.zones); }))
        .raw("users", list(shape.users, [&](uint32_t i) { return deviceUser(1 + i, shape); }))
        .written();
}

std::string site(uint32_t id)
{
    const std::string location =
        Object().number("lat", 55.0 + id / 10000.0).number("lon", 37.0 + id / 10000.0).written();
    Object object;
    object.number("id", id)
        .text("name", numbered("Site ", id))
        .text("comment", "entrance from the yard, second door")
        .number("is_crossing", id % 2)
        .number("domain", 1 + id % domainCount)
        .text("address_text", numbered("ул. Ленина, д. ", id))
        .number("contract_id", 1 + id % contractCount)
        .number("contract_status", id % 3)
        .number("type", id % 4)
        .number("category", id % 6)
        .number("arm_mode", id % 2)
        .number("delegated", id % 2)
        .number("site_plan", id % 2);
    if (id % 4 != 0) // the others have neither
        object.text("extra", "kept by contract").raw("location", location);
    return object.written();
}

std::string event(uint32_t i, const Journal &journal, const Equipment &equipment)
{
    const Shape &shape = equipment.shape;
    const uint32_t sectionId = 1 + i % shape.sections;
    Object object;
    object.number("id", journal.firstId + i)
        .number("time", journal.firstTime + i)
        .number("device", 1 + i % equipment.devices)
        .number("section", sectionId)
        .number("zone", (sectionId - 1) * shape.zones + 1 + i % shape.zones)
        .number("active", i % 2)
        .number("class", i % 9)
        .number("detector", i % 5)
        .number("reason", i % 200)
        .number("localtime", journal.firstTime + i + 3)
        .number("channel", i % 3)
        .text("data", numbered("Contact opened, code 130, loop ", i % 64))
        .number("operator_id", 1 + i % operators)
        .number("is_closed", i % 2)
        .number("affect", journal.affect ? 1u : 0u);
    if (i % 4 != 0) // the others are not reviewed
        object.number("review_id", i / 4).number("review_state", i % 3);
    if (i % 8 != 0)
        object.text("jdata", "{\\\"code\\\":130,\\\"area\\\":" + std::to_string(sectionId) + ",\\\"text\\\":\\\"alarm"
                                 + std::string(journal.extraText, '.') + "\\\"}");
    return object.written();
}

} // namespace

Text locales()
{
    return batch(localeCount, [](uint32_t i) {
        return Object()
            .number("id", i + 1)
            .text("iso", numbered("l", i))
            .text("description", numbered("Locale ", i))
            .written();
    });
}

Text domains()
{
    return batch(domainCount, [](uint32_t i) {
        return Object()
            .number("id", i + 1)
            .text("name", numbered("Domain ", i))
            .number("org_id", i % 5)
            .number("locale_id", 1 + i % localeCount)
            .written();
    });
}

Text contractors()
{
    return batch(contractorCount, [](uint32_t i) {
        return Object()
            .number("id", i + 1)
            .text("inn", numbered("77010000", 10 + i))
            .text("off_name", numbered("Limited company ", i))
            .text("name", numbered("Company ", i))
            .number("org_id", i % 7)
            .number("type", i % 3)
            .written();
    });
}

Text contracts()
{
    return batch(contractCount, [](uint32_t i) {
        return Object()
            .number("id", i + 1)
            .text("number", numbered("2023/", i))
            .text("c_name", numbered("Guarding of object ", i))
            .text("description", "with a reaction in fifteen minutes")
            .number("status", i % 3)
            .number("date", 1600000000 + i)
            .number("contractor_id", 1 + i % contractorCount)
            .number("operator_id", 1 + i % operators)
            .written();
    });
}

Text users(uint32_t count)
{
    return batch(count, [](uint32_t i) { return user(1 + i, numbered("Tower 2, room ", i % 400)); });
}

Text oneUser(uint32_t id, const std::string &contacts)
{
    return document(user(id, contacts));
}

Text devices(const Equipment &equipment)
{
    return batch(equipment.devices, [&](uint32_t i) { return device(1 + i, equipment.shape); });
}

Text sites(uint32_t count)
{
    return batch(count, [](uint32_t i) { return site(1 + i); });
}

Text events(uint32_t count, const Journal &journal, const Equipment &equipment)
{
    return batch(count, [&](uint32_t i) { return event(i, journal, equipment); });
}

Text oneEvent(const Journal &journal, const Equipment &equipment)
{
    return document(event(0, journal, equipment));
}

} // namespace bench::documents
