// The documents that the workloads hand over. What they hold depends on nothing but their arguments.
#pragma once

#include "Implementation.h"

namespace bench::documents {

// How many children each device has, and each of those.
struct Shape
{
    uint32_t sections;
    uint32_t zones; // of a section
    uint32_t users;
    uint32_t links; // of a user
};

// How the equipment is numbered: devices and sections from 1, zones throughout their device.
struct Equipment
{
    uint32_t devices;
    Shape shape;
};

Text locales();
Text domains();
Text contractors();
Text contracts();
Text users(uint32_t count);
Text oneUser(uint32_t id, const std::string &contacts);
Text devices(const Equipment &equipment);
Text sites(uint32_t count);

// Events from an id and a time on, one a second, going round the equipment and the first users.
struct Journal
{
    uint32_t firstId;
    uint32_t firstTime;
    bool affect;
    size_t extraText; // further characters of the "jdata" of each
};

Text events(uint32_t count, const Journal &journal, const Equipment &equipment);
Text oneEvent(const Journal &journal, const Equipment &equipment);

inline constexpr uint32_t operators = 100; // the users that events and contracts name

} // namespace bench::documents
