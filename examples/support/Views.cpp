#include "Views.h"

#include "Print.h"

#include <iostream>
#include <iterator>

namespace example {
namespace {

// A field of a nested record. The record itself is absent if the store does not hold it.
template<class Record, class Field>
std::string shownIn(const Record *record, Field Record::*field)
{
    return record ? shown(record->*field) : "-";
}

std::string shownFlag(const uint8_t *flag)
{
    return !flag ? "-" : *flag ? "yes" : "no";
}

// The service that the sample data come from defines the classes; the library only stores their numbers.
std::string shownClass(const uint8_t *eventClass)
{
    static const char *const names[] = {"none", "alarm", "fault", "arming", "test", "operator", "state"};
    return eventClass && *eventClass < std::size(names) ? names[*eventClass] : shown(eventClass);
}

std::string localeOf(const FlatDomain *domain)
{
    return domain ? shownIn(domain->locale, &FlatLocale::iso) : "-";
}

std::string titled(const std::string &title, uint32_t id)
{
    return title + ' ' + std::to_string(id);
}

Row userRow(const FlatUser &user)
{
    return {std::to_string(user.id),  shown(user.name),  shown(user.login),
            shownFlag(user.isActive), shown(user.phone), shownIn(user.domain, &FlatDomain::name),
            localeOf(user.domain)};
}

Row organizationRow(const FlatOrganization &organization)
{
    const FlatPerson *contact = organization.contact;
    return {std::to_string(organization.id), shown(organization.shortName), shown(organization.address),
            shownIn(contact, &FlatPerson::name), shownIn(contact, &FlatPerson::phone)};
}

Row eventRow(const FlatEvent &event)
{
    return {shownClock(event.time),       shown(event.account),    shown(event.sectionName), shown(event.zoneName),
            shownClass(event.eventClass), shownFlag(event.affect), shown(event.domainName),  shown(event.data)};
}

Node domainNode(const FlatDomain &domain)
{
    Node node{titled("domain", domain.id) + ": " + shown(domain.name), {}};
    if (const FlatLocale *locale = domain.locale)
        node.children.push_back(
            {titled("locale", locale->id) + ": " + shown(locale->iso) + ", " + shown(locale->description), {}});
    return node;
}

Node operatorNode(const FlatUser &user)
{
    Node node{titled("operator", user.id) + ": " + shown(user.name) + ", login " + shown(user.login), {}};
    if (user.domain)
        node.children.push_back(domainNode(*user.domain));
    return node;
}

Node sectionNode(const FlatSection &section)
{
    Node node{titled("section", section.id) + ": " + shown(section.name), {}};
    for (uint32_t i = 0; i < section.zonesCount; ++i) {
        const FlatZone &zone = section.zones[i];
        node.children.push_back(
            {titled("zone", zone.id) + ": " + shown(zone.name) + ", detector " + shown(zone.detector), {}});
    }
    return node;
}

Node deviceUserNode(const FlatDeviceUser &user)
{
    std::string text = titled("user", user.id) + ": " + shown(user.name) + ", " + shown(user.comment) + ", sections";
    for (uint32_t i = 0; i < user.sectionsCount; ++i)
        text += ' ' + std::to_string(user.sections[i]);
    return {text + (user.sectionsCount == 0 ? " none" : ""), {}};
}

} // namespace

void printUsers(const OwnedArray<FlatUser> &users, std::size_t most)
{
    printTable({"id", "name", "login", "active", "phone", "domain", "locale"}, rowsOf(users, userRow), most);
}

void printOrganizations(const OwnedArray<FlatOrganization> &organizations, std::size_t most)
{
    printTable({"id", "name", "address", "contact", "phone"}, rowsOf(organizations, organizationRow), most);
}

void printEvents(const OwnedArray<FlatEvent> &events, std::size_t most)
{
    printTable({"time", "account", "section", "zone", "class", "mark", "operator of", "data"}, rowsOf(events, eventRow),
               most);
}

void printContract(const FlatContract &contract)
{
    Node root{titled("contract", contract.id) + ": " + shown(contract.number) + ", " + shown(contract.name) + ", of "
                  + shownDate(contract.date),
              {}};
    if (const FlatContractor *contractor = contract.contractor)
        root.children.push_back({titled("contractor", contractor->id) + ": " + shown(contractor->name), {}});
    if (contract.user)
        root.children.push_back(operatorNode(*contract.user));
    printTree(root);
}

void printDevice(const FlatDevice &device)
{
    Node root{titled("device", device.id) + ": account " + shown(device.account) + ", configuration "
                  + shown(device.configVersion),
              {}};
    if (device.domain)
        root.children.push_back(domainNode(*device.domain));
    for (uint32_t i = 0; i < device.sectionsCount; ++i)
        root.children.push_back(sectionNode(device.sections[i]));
    for (uint32_t i = 0; i < device.usersCount; ++i)
        root.children.push_back(deviceUserNode(device.users[i]));
    printTree(root);
}

Fields fieldsOf(const FlatSite &site)
{
    return {{"name", shown(site.name)},
            {"comment", shown(site.comment)},
            {"address", shown(site.address)},
            {"domain", shownIn(site.domain, &FlatDomain::name)},
            {"contract", shownIn(site.contract, &FlatContract::number)},
            {"type", shown(site.type)},
            {"category", shown(site.category)},
            {"arm mode", shown(site.armMode)},
            {"crossing", shownFlag(site.isCrossing)},
            {"delegated", shownFlag(site.isDelegated)},
            {"latitude", shownIn(site.location, &FlatLocation::latitude)},
            {"longitude", shownIn(site.location, &FlatLocation::longitude)}};
}

Fields fieldsOf(const FlatContract &contract)
{
    return {{"number", shown(contract.number)},
            {"name", shown(contract.name)},
            {"status", shown(contract.status)},
            {"date", shownDate(contract.date)},
            {"description", shown(contract.description)},
            {"extra", shown(contract.extra)},
            {"contractor", shownIn(contract.contractor, &FlatContractor::name)},
            {"operator", shownIn(contract.user, &FlatUser::name)}};
}

Fields fieldsOf(const FlatOrganization &organization)
{
    return {{"official name", shown(organization.officialName)},
            {"short name", shown(organization.shortName)},
            {"address", shown(organization.address)},
            {"inn", shown(organization.inn)},
            {"ogrn", shown(organization.ogrn)},
            {"contact", shownIn(organization.contact, &FlatPerson::name)},
            {"contact phone", shownIn(organization.contact, &FlatPerson::phone)},
            {"contact email", shownIn(organization.contact, &FlatPerson::email)},
            {"contact postal", shownIn(organization.contact, &FlatPerson::postal)}};
}

Fields fieldsOf(const FlatEvent &event)
{
    return {{"id", std::to_string(event.id)},
            {"time", shownDate(event.time) + ' ' + shownClock(event.time)},
            {"class", shownClass(event.eventClass)},
            {"device", shown(event.deviceId) + ", account " + shown(event.account)},
            {"section", shown(event.sectionId) + ", " + shown(event.sectionName)},
            {"zone", shown(event.zoneId) + ", " + shown(event.zoneName)},
            {"operator", shown(event.userId) + ", of " + shown(event.domainName)},
            {"data", shown(event.data)},
            {"jdata", shown(event.jData)},
            {"mark", shownFlag(event.affect)}};
}

void printFields(const Fields &fields)
{
    std::vector<Row> rows;
    for (const auto &[name, value] : fields)
        rows.push_back({name, value});
    printTable({"field", "value"}, rows);
}

void printChanges(const Fields &before, const Fields &after)
{
    std::vector<Row> rows;
    for (std::size_t i = 0; i < before.size(); ++i)
        if (before[i] != after[i])
            rows.push_back({before[i].first, before[i].second, after[i].second});
    printTable({"field", "before", "after"}, rows);
    std::cout << "  " << before.size() - rows.size() << " other fields stayed\n";
}

} // namespace example
