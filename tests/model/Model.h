// What the store should hold and show, kept in maps of plain rows. A row holds a field for each column that is not
// NULL; the fields of `hidden` are columns that no read shows.
#pragma once

#include "Documents.h"

namespace brimlet::test {

using Id = uint32_t;
using Rows = std::map<Id, Shown>;
using Pair = std::pair<Id, Id>; // a device, and a section, zone or user of it

class Model
{
public:
    Rows locales;
    Rows domains;
    Rows users;
    Rows organizations;
    Rows persons;
    Rows contractors;
    Rows contracts;
    Rows devices;
    std::map<Pair, Shown> sections;
    std::map<Pair, Shown> zones; // with the section as a field
    std::map<Pair, Shown> deviceUsers;
    std::map<Pair, std::map<Id, bool>> links;
    Rows sites;
    Rows locations;
    Rows events;
    std::string serverAddress;

    // ---- What the reads show ----
    Shown locale(Id id) const;
    Shown domain(Id id) const;
    Shown user(Id id) const;
    Shown organization(Id id) const;
    Shown contractor(Id id) const;
    Shown contract(Id id) const;
    Shown zone(Id device, Id zone) const;
    Shown section(Id device, Id section) const;
    Shown device(Id id) const;
    Shown site(Id id) const;
    Shown event(Id id) const;

    bool hasDeviceOf(const Shown &event) const;

    // ---- Writes that reach several tables ----
    void deleteDevice(Id device);
    void deleteSection(Id device, Id section);
    void clearExceptEvents();
};

// The value of a field that is an id, or -1 if there is none.
int64_t idOf(const Shown &row, const std::string &field);

} // namespace brimlet::test
