// The documents that the workloads send. Their content depends only on their arguments.
#pragma once

#include "Implementation.h"

namespace bench::documents {

// The number of children of each device, section and user.
struct Shape
{
    uint32_t sections;
    uint32_t zones; // of a section
    uint32_t users;
    uint32_t links; // of a user
};

// The ids of the equipment: devices and sections count from 1, zones are unique in their device.
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

// Events with consecutive ids, one per second, cycling through the equipment and the first users.
struct Journal
{
    uint32_t firstId;
    uint32_t firstTime;
    bool affect;
    size_t extraText; // additional characters in each "jdata"
};

Text events(uint32_t count, const Journal &journal, const Equipment &equipment);
Text oneEvent(const Journal &journal, const Equipment &equipment);

inline constexpr uint32_t operators = 100; // the users that events and contracts refer to

} // namespace bench::documents
