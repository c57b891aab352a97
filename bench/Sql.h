// The statements of the two baselines. They are those of the library: the same tables, selects and writes, so that the
// benchmarks measure the way to SQLite and back. The columns of a select are in the order in which FlatRows.h reads
// them, those of an insert in the order of the fields in Fields.h.
#pragma once

#include <string>
#include <vector>

namespace bench::sql {

extern const std::string begin, commit;

extern const std::string version, insertVersion;
extern const std::vector<std::string> createTables;
extern const std::vector<std::string> probes; // the checks of a launch on an existing file, each with zeros bound

extern const std::string insertEvent, eventsTimeIndex;
extern const std::string eventById;       // whether its device is known or not
extern const std::string eventOfDevice;   // by its id, if the device is known
extern const std::string eventsOfDevices; // to be completed with a list of ids
extern const std::string eventsByTime;
extern const std::string deleteEventsBefore;

extern const std::string insertDevice, insertSection, insertZone, insertDeviceUser, insertLink;
extern const std::string devices, deviceById, sectionsOfDevice, zonesOfSection, usersOfDevice, linksOfUser;

extern const std::string insertUser, users, userById, usersByLogin;
extern const std::string mergeUser; // null keeps the stored value

extern const std::string sites, siteById, domainById;

extern const std::vector<std::string> clearTables;

} // namespace bench::sql
