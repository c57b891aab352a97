#include "Shown.h"

namespace brimlet::test {

namespace {

// Collects the fields that are there.
class Shower
{
public:
    explicit Shower(uint32_t id) { record["id"] = std::to_string(id); }

    Shower &add(const std::string &name, const uint16_t *text)
    {
        if (text)
            record[name] = *utf8(text);
        return *this;
    }

    template<class Number, class = std::enable_if_t<std::is_arithmetic_v<Number>>>
    Shower &add(const std::string &name, const Number *number)
    {
        if (number)
            record[name] = std::to_string(*number);
        return *this;
    }

    template<class Flat, class = std::enable_if_t<std::is_class_v<Flat>>, class = void>
    Shower &add(const std::string &name, const Flat *embedded)
    {
        if (embedded)
            embed(record, name, show(*embedded));
        return *this;
    }

    template<class Flat>
    Shower &addList(const std::string &name, const Flat *list, uint32_t count)
    {
        for (uint32_t i = 0; i < count; ++i)
            embed(record, name + "[" + std::to_string(list[i].id) + "]", show(list[i]));
        return *this;
    }

    Shower &addNumbers(const std::string &name, const uint32_t *numbers, uint32_t count)
    {
        for (uint32_t i = 0; i < count; ++i)
            record[name + "[" + std::to_string(numbers[i]) + "]"] = "";
        return *this;
    }

    operator Shown() const { return record; }

private:
    Shown record;
};

} // namespace

void embed(Shown &record, const std::string &name, const Shown &embedded)
{
    for (const auto &[field, value] : embedded)
        record[name + "." + field] = value;
}

Shown show(const FlatLocale &locale)
{
    return Shower(locale.id).add("iso", locale.iso).add("description", locale.description);
}

Shown show(const FlatDomain &domain)
{
    return Shower(domain.id).add("name", domain.name).add("orgId", domain.orgId).add("locale", domain.locale);
}

Shown show(const FlatUser &user)
{
    return Shower(user.id)
        .add("name", user.name)
        .add("login", user.login)
        .add("contacts", user.contacts)
        .add("isActive", user.isActive)
        .add("domainId", user.domainId)
        .add("roles", user.roles)
        .add("phone", user.phone)
        .add("domain", user.domain)
        .add("orgId", user.orgId);
}

Shown show(const FlatPerson &person)
{
    return Shower(person.id)
        .add("name", person.name)
        .add("phone", person.phone)
        .add("email", person.email)
        .add("postal", person.postal);
}

Shown show(const FlatOrganization &organization)
{
    return Shower(organization.id)
        .add("inn", organization.inn)
        .add("officialName", organization.officialName)
        .add("shortName", organization.shortName)
        .add("kpp", organization.kpp)
        .add("ogrn", organization.ogrn)
        .add("address", organization.address)
        .add("contact", organization.contact)
        .add("locale", organization.locale);
}

Shown show(const FlatContractor &contractor)
{
    return Shower(contractor.id)
        .add("inn", contractor.inn)
        .add("orgId", contractor.orgId)
        .add("type", contractor.type)
        .add("officialName", contractor.officialName)
        .add("name", contractor.name)
        .add("extra", contractor.extra);
}

Shown show(const FlatContract &contract)
{
    return Shower(contract.id)
        .add("number", contract.number)
        .add("contractor", contract.contractor)
        .add("name", contract.name)
        .add("status", contract.status)
        .add("date", contract.date)
        .add("description", contract.description)
        .add("extra", contract.extra)
        .add("user", contract.user);
}

Shown show(const FlatZone &zone)
{
    return Shower(zone.id)
        .add("name", zone.name)
        .add("detector", zone.detector)
        .add("physic", zone.physic)
        .add("form", zone.form)
        .add("flags", zone.flags)
        .add("delay", zone.delay)
        .add("scheduleId", zone.scheduleId)
        .add("tracert", zone.tracert)
        .add("uidType", zone.uidType)
        .add("arm", zone.arm);
}

Shown show(const FlatSection &section)
{
    return Shower(section.id)
        .add("name", section.name)
        .add("scheduleId", section.scheduleId)
        .addList("zones", section.zones, section.zonesCount)
        .add("tracert", section.tracert)
        .add("flags", section.flags)
        .add("detector", section.detector)
        .add("arm", section.arm)
        .add("physic", section.physic)
        .add("form", section.form)
        .add("delay", section.delay)
        .add("uidType", section.uidType);
}

Shown show(const FlatDeviceUser &user)
{
    return Shower(user.id)
        .add("name", user.name)
        .add("comment", user.comment)
        .add("phone", user.phone)
        .addNumbers("sections", user.sections, user.sectionsCount);
}

Shown show(const FlatDevice &device)
{
    return Shower(device.id)
        .add("account", device.account)
        .add("domain", device.domain)
        .add("configVersion", device.configVersion)
        .addList("sections", device.sections, device.sectionsCount)
        .addList("users", device.users, device.usersCount)
        .add("isParted", device.isParted)
        .add("clusterId", device.clusterId)
        .add("domainId", device.domainId);
}

Shown show(const FlatLocation &location)
{
    return Shower(location.id).add("latitude", location.latitude).add("longitude", location.longitude);
}

Shown show(const FlatSite &site)
{
    return Shower(site.id)
        .add("name", site.name)
        .add("comment", site.comment)
        .add("extra", site.extra)
        .add("isCrossing", site.isCrossing)
        .add("domain", site.domain)
        .add("address", site.address)
        .add("contract", site.contract)
        .add("contractStatus", site.contractStatus)
        .add("type", site.type)
        .add("category", site.category)
        .add("armMode", site.armMode)
        .add("isDelegated", site.isDelegated)
        .addList("devices", site.devices, site.deviceCount)
        .add("domainId", site.domainId)
        .add("location", site.location)
        .add("contractId", site.contractId)
        .add("isSitePlanExists", site.isSitePlanExists);
}

Shown show(const FlatEvent &event)
{
    return Shower(event.id)
        .add("time", event.time)
        .add("deviceId", event.deviceId)
        .add("sectionId", event.sectionId)
        .add("zoneId", event.zoneId)
        .add("active", event.active)
        .add("eventClass", event.eventClass)
        .add("detector", event.detector)
        .add("reason", event.reason)
        .add("localTime", event.localTime)
        .add("channel", event.channel)
        .add("data", event.data)
        .add("reviewId", event.reviewId)
        .add("reviewState", event.reviewState)
        .add("userId", event.userId)
        .add("isClosed", event.isClosed)
        .add("affect", event.affect)
        .add("jData", event.jData)
        .add("account", event.account)
        .add("sectionName", event.sectionName)
        .add("zoneName", event.zoneName)
        .add("domainName", event.domainName);
}

} // namespace brimlet::test
