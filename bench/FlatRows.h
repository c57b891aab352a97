// Conversion from a row to a flat record, by position, which the two baselines share. A Row is the row of a statement
// with the position of the next column; each read takes one column and leaves a member null if the column is NULL.
#pragma once

#include "FlatTrees.h"

namespace bench {

template<class Row>
FlatLocale *readLocale(Row &row)
{
    if (row.isNull()) {
        row.skip(3);
        return nullptr;
    }
    auto *locale = makeRecord<FlatLocale>();
    row.read(locale->id);
    row.read(locale->iso);
    row.read(locale->description);
    return locale;
}

template<class Row>
FlatDomain *readDomain(Row &row)
{
    if (row.isNull()) {
        row.skip(6);
        return nullptr;
    }
    auto *domain = makeRecord<FlatDomain>();
    row.read(domain->id);
    row.read(domain->name);
    row.read(domain->orgId);
    domain->locale = readLocale(row);
    return domain;
}

template<class Row>
void readUser(Row &row, FlatUser &user)
{
    row.read(user.id);
    row.read(user.name);
    row.read(user.login);
    row.read(user.contacts);
    row.readFlag(user.isActive);
    row.read(user.domainId);
    row.read(user.roles);
    row.read(user.phone);
    row.read(user.orgId);
    user.domain = readDomain(row);
}

template<class Row>
FlatContractor *readContractor(Row &row)
{
    if (row.isNull()) {
        row.skip(7);
        return nullptr;
    }
    auto *contractor = makeRecord<FlatContractor>();
    row.read(contractor->id);
    row.read(contractor->inn);
    row.read(contractor->type);
    row.read(contractor->officialName);
    row.read(contractor->name);
    row.read(contractor->extra);
    row.read(contractor->orgId);
    return contractor;
}

template<class Row>
FlatUser *readContractUser(Row &row)
{
    if (row.isNull()) {
        row.skip(15);
        return nullptr;
    }
    auto *user = makeRecord<FlatUser>();
    readUser(row, *user);
    return user;
}

template<class Row>
FlatContract *readContract(Row &row)
{
    if (row.isNull()) {
        row.skip(29);
        return nullptr;
    }
    auto *contract = makeRecord<FlatContract>();
    row.read(contract->id);
    row.read(contract->number);
    row.read(contract->name);
    row.read(contract->status);
    row.read(contract->date);
    row.read(contract->description);
    row.read(contract->extra);
    contract->contractor = readContractor(row);
    contract->user = readContractUser(row);
    return contract;
}

template<class Row>
FlatLocation *readLocation(Row &row)
{
    if (row.isNull()) {
        row.skip(3);
        return nullptr;
    }
    auto *location = makeRecord<FlatLocation>();
    row.read(location->id);
    row.read(location->latitude);
    row.read(location->longitude);
    return location;
}

// Without the site's domain, which is read separately.
template<class Row>
void readSite(Row &row, FlatSite &site)
{
    row.read(site.id);
    row.read(site.name);
    row.read(site.comment);
    row.read(site.extra);
    row.readFlag(site.isCrossing);
    row.read(site.address);
    row.read(site.contractStatus);
    row.read(site.type);
    row.read(site.category);
    row.read(site.armMode);
    row.readFlag(site.isDelegated);
    row.read(site.domainId);
    row.read(site.contractId);
    row.readFlag(site.isSitePlanExists);
    site.location = readLocation(row);
    site.contract = readContract(row);
}

// Without sections and users.
template<class Row>
void readDevice(Row &row, FlatDevice &device)
{
    row.read(device.id);
    row.read(device.account);
    row.read(device.configVersion);
    row.readFlag(device.isParted);
    row.read(device.clusterId);
    row.read(device.domainId);
    device.domain = readDomain(row);
}

// Without zones.
template<class Row>
void readSection(Row &row, FlatSection &section)
{
    row.read(section.id);
    row.read(section.name);
    row.read(section.scheduleId);
    row.read(section.tracert);
    row.read(section.flags);
    row.read(section.detector);
    row.read(section.arm);
    row.read(section.physic);
    row.read(section.form);
    row.read(section.delay);
    row.read(section.uidType);
}

template<class Row>
void readZone(Row &row, FlatZone &zone)
{
    row.read(zone.id);
    row.read(zone.name);
    row.read(zone.detector);
    row.read(zone.physic);
    row.read(zone.form);
    row.read(zone.flags);
    row.read(zone.delay);
    row.read(zone.scheduleId);
    row.read(zone.tracert);
    row.read(zone.uidType);
    row.read(zone.arm);
}

// Without the ids of the sections.
template<class Row>
void readDeviceUser(Row &row, FlatDeviceUser &user)
{
    row.read(user.id);
    row.read(user.name);
    row.read(user.comment);
    row.read(user.phone);
}

// The section id of a link.
template<class Row>
void readLink(Row &row, uint32_t &section)
{
    row.skip(2);
    row.read(section);
}

template<class Row>
void readEvent(Row &row, FlatEvent &event)
{
    row.read(event.id);
    row.read(event.time);
    row.read(event.deviceId);
    row.read(event.sectionId);
    row.read(event.zoneId);
    row.read(event.active);
    row.read(event.eventClass);
    row.read(event.detector);
    row.read(event.reason);
    row.read(event.localTime);
    row.read(event.channel);
    row.read(event.data);
    row.read(event.reviewId);
    row.read(event.reviewState);
    row.read(event.userId);
    row.readFlag(event.isClosed);
    row.readFlag(event.affect);
    row.read(event.jData);
    row.read(event.account);
    row.read(event.sectionName);
    row.read(event.zoneName);
    row.read(event.domainName);
}

} // namespace bench
