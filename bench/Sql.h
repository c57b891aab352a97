// The statements that the two baselines run. They are the library's own: the same tables, the same selects and the same
// writes, so that what is measured is the way to SQLite and back. A select's columns stand in the order in which
// FlatRows.h reads them, an insert's in the order of the fields of Fields.h.
#pragma once

#include <string>
#include <vector>

namespace bench::sql {

extern const std::string begin, commit;

extern const std::string version, insertVersion;
extern const std::vector<std::string> createTables;
extern const std::vector<std::string> probes; // what a launch asks of a file that is there, each with zeros bound

extern const std::string insertEvent, eventsTimeIndex;
extern const std::string eventById;       // whether or not the device is known
extern const std::string eventOfDevice;   // by its id, if the device is known
extern const std::string eventsOfDevices; // to be completed by a list of ids
extern const std::string eventsByTime;
extern const std::string deleteEventsBefore;

extern const std::string insertDevice, insertSection, insertZone, insertDeviceUser, insertLink;
extern const std::string devices, deviceById, sectionsOfDevice, zonesOfSection, usersOfDevice, linksOfUser;

extern const std::string insertUser, users, userById, usersByLogin;
extern const std::string mergeUser; // what is null leaves what is there

extern const std::string sites, siteById, domainById;

extern const std::vector<std::string> clearTables;

} // namespace bench::sql
