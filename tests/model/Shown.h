// A record as text: the names of the fields that are present, and their values. Embedded records and lists stand under
// their names: "domain.locale.iso", "sections[1].zones[5].name". Two records are equal when their texts are, whatever
// the order of their lists.
#pragma once

#include "Store.h"

#include <map>

namespace brimlet::test {

using Shown = std::map<std::string, std::string>;

// Adds a record under a name to another.
void embed(Shown &record, const std::string &name, const Shown &embedded);

Shown show(const FlatLocale &locale);
Shown show(const FlatDomain &domain);
Shown show(const FlatUser &user);
Shown show(const FlatPerson &person);
Shown show(const FlatOrganization &organization);
Shown show(const FlatContractor &contractor);
Shown show(const FlatContract &contract);
Shown show(const FlatZone &zone);
Shown show(const FlatSection &section);
Shown show(const FlatDeviceUser &user);
Shown show(const FlatDevice &device);
Shown show(const FlatLocation &location);
Shown show(const FlatSite &site);
Shown show(const FlatEvent &event);

// A list by the ids of its records.
template<class Flat>
std::map<uint32_t, Shown> showAll(const List<Flat> &list)
{
    std::map<uint32_t, Shown> records;
    for (const Flat &record : list)
        records[record.id] = show(record);
    return records;
}

} // namespace brimlet::test
