// Printing of records.
#pragma once

#include "Owned.h"

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace example {

// Tables. Print only the first rows.
void printUsers(const OwnedArray<FlatUser> &users, std::size_t most);
void printOrganizations(const OwnedArray<FlatOrganization> &organizations, std::size_t most);
void printEvents(const OwnedArray<FlatEvent> &events, std::size_t most);

// Trees, with everything in the record.
void printContract(const FlatContract &contract);
void printDevice(const FlatDevice &device);

// A record as names and values, to show what an update changed.
using Fields = std::vector<std::pair<std::string, std::string>>;

Fields fieldsOf(const FlatSite &site);
Fields fieldsOf(const FlatContract &contract);
Fields fieldsOf(const FlatOrganization &organization);
Fields fieldsOf(const FlatEvent &event);

void printFields(const Fields &fields);
void printChanges(const Fields &before, const Fields &after);

} // namespace example
