#include "Model.h"

namespace brimlet::test {

namespace {

// Joins a row of a table to a record, under a name, where a field of the record names one.
template<class Show>
void join(Shown &record, const std::string &name, const Rows &table, int64_t id, const Show &show)
{
    if (id >= 0 && table.count(static_cast<Id>(id)))
        embed(record, name, show(static_cast<Id>(id)));
}

void copyField(Shown &record, const std::string &name, const Shown &row, const std::string &field)
{
    if (const auto found = row.find(field); found != row.end())
        record[name] = found->second;
}

template<class Rows>
void eraseOfDevice(Rows &rows, Id device)
{
    rows.erase(rows.lower_bound({device, 0}), rows.upper_bound({device, UINT32_MAX}));
}

} // namespace

int64_t idOf(const Shown &row, const std::string &field)
{
    const auto found = row.find(field);
    return found == row.end() ? -1 : std::stoll(found->second);
}

Shown Model::locale(Id id) const
{
    return locales.at(id);
}

Shown Model::domain(Id id) const
{
    Shown record = domains.at(id);
    join(record, "locale", locales, idOf(record, "localeId"), [&](Id key) { return locale(key); });
    record.erase("localeId");
    return record;
}

Shown Model::user(Id id) const
{
    Shown record = users.at(id);
    join(record, "domain", domains, idOf(record, "domainId"), [&](Id key) { return domain(key); });
    return record;
}

Shown Model::organization(Id id) const
{
    Shown record = organizations.at(id);
    join(record, "locale", locales, idOf(record, "localeId"), [&](Id key) { return locale(key); });
    join(record, "contact", persons, idOf(record, "contactId"), [&](Id key) { return persons.at(key); });
    record.erase("localeId");
    record.erase("contactId");
    return record;
}

Shown Model::contractor(Id id) const
{
    return contractors.at(id);
}

Shown Model::contract(Id id) const
{
    Shown record = contracts.at(id);
    join(record, "contractor", contractors, idOf(record, "contractorId"), [&](Id key) { return contractor(key); });
    join(record, "user", users, idOf(record, "userId"), [&](Id key) { return user(key); });
    record.erase("contractorId");
    record.erase("userId");
    return record;
}

Shown Model::zone(Id device, Id zone) const
{
    Shown record = zones.at({device, zone});
    record.erase("sectionId");
    return record;
}

Shown Model::section(Id device, Id section) const
{
    Shown record = sections.at({device, section});
    for (const auto &[key, row] : zones)
        if (key.first == device && idOf(row, "sectionId") == section)
            embed(record, "zones[" + std::to_string(key.second) + "]", zone(device, key.second));
    return record;
}

Shown Model::device(Id id) const
{
    Shown record = devices.at(id);
    join(record, "domain", domains, idOf(record, "domainId"), [&](Id key) { return domain(key); });
    for (const auto &entry : sections)
        if (const auto &[device, number] = entry.first; device == id)
            embed(record, "sections[" + std::to_string(number) + "]", section(id, number));
    for (const auto &[key, row] : deviceUsers) {
        if (key.first != id)
            continue;
        const std::string name = "users[" + std::to_string(key.second) + "]";
        embed(record, name, row);
        if (const auto reached = links.find(key); reached != links.end())
            for (const auto &link : reached->second)
                record[name + ".sections[" + std::to_string(link.first) + "]"] = "";
    }
    return record;
}

Shown Model::site(Id id) const
{
    Shown record = sites.at(id);
    join(record, "location", locations, id, [&](Id key) { return locations.at(key); });
    join(record, "contract", contracts, idOf(record, "contractId"), [&](Id key) { return contract(key); });
    if (idOf(record, "domainId") != 0)
        join(record, "domain", domains, idOf(record, "domainId"), [&](Id key) { return domain(key); });
    return record;
}

Shown Model::event(Id id) const
{
    Shown record = events.at(id);
    const int64_t device = idOf(record, "deviceId");
    const int64_t section = idOf(record, "sectionId");
    const int64_t zone = idOf(record, "zoneId");
    const Pair sectionKey(static_cast<Id>(device), static_cast<Id>(section));
    const Pair zoneKey(static_cast<Id>(device), static_cast<Id>(zone));
    if (hasDeviceOf(record))
        copyField(record, "account", devices.at(static_cast<Id>(device)), "account");
    if (device >= 0 && section >= 0 && sections.count(sectionKey))
        copyField(record, "sectionName", sections.at(sectionKey), "name");
    if (device >= 0 && zone >= 0 && zones.count(zoneKey) && section >= 0
        && idOf(zones.at(zoneKey), "sectionId") == section)
        copyField(record, "zoneName", zones.at(zoneKey), "name");
    if (const int64_t userId = idOf(record, "userId"); userId >= 0 && users.count(static_cast<Id>(userId))) {
        const int64_t domainId = idOf(users.at(static_cast<Id>(userId)), "domainId");
        if (domainId >= 0 && domains.count(static_cast<Id>(domainId)))
            copyField(record, "domainName", domains.at(static_cast<Id>(domainId)), "name");
    }
    return record;
}

bool Model::hasDeviceOf(const Shown &event) const
{
    const int64_t device = idOf(event, "deviceId");
    return device >= 0 && devices.count(static_cast<Id>(device)) != 0;
}

void Model::deleteDevice(Id device)
{
    devices.erase(device);
    eraseOfDevice(sections, device);
    eraseOfDevice(zones, device);
    eraseOfDevice(deviceUsers, device);
    eraseOfDevice(links, device);
}

void Model::deleteSection(Id device, Id section)
{
    sections.erase({device, section});
    for (auto zone = zones.begin(); zone != zones.end();) {
        if (zone->first.first == device && idOf(zone->second, "sectionId") == section)
            zone = zones.erase(zone);
        else
            ++zone;
    }
    for (auto &entry : links)
        if (entry.first.first == device)
            entry.second.erase(section);
}

void Model::clearExceptEvents()
{
    Rows keptEvents = std::move(events);
    std::string keptAddress = std::move(serverAddress);
    *this = Model();
    events = std::move(keptEvents);
    serverAddress = std::move(keptAddress);
}

} // namespace brimlet::test
