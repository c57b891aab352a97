// The steps of client.cpp, in their order. Each prints what it does and what the library returns. They need a running
// session; DATA is the folder with the sample documents.
#pragma once

#include <cstdint>
#include <filesystem>

namespace example {

// Reference data: adding whole documents, and counting the records in the store.
void loadReferenceData(const std::filesystem::path &data);
void rememberServer();
void printCounts();

// Reading: arrays, single records with everything in them, and searching by a field.
void showRecords();
void lookUp();

// The journal: a day of events, added hour by hour, listed, marked and purged.
void keepJournal(const std::filesystem::path &data);
std::uint32_t countEvents();

// Changes: updates keep absent members, and a delete includes the parts of the record.
void updateRecords(const std::filesystem::path &data);
void removeDevice(const std::filesystem::path &data);

// Mistakes: the results for bad input.
void makeMistakes();

// Records of the sample documents that several steps use.
constexpr std::uint32_t deviceRemoved = 104;
constexpr std::uint32_t siteUpdated = 310;

} // namespace example
