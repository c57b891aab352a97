// The chapters of the story that client.cpp tells, in their order. Each prints what it does and what the library
// answers. They need a running session, and DATA is always the folder with the sample documents.
#pragma once

#include <cstdint>
#include <filesystem>

namespace example {

// Reference data: adding whole documents, and counting what the store holds then.
void loadReferenceData(const std::filesystem::path &data);
void rememberServer();
void printCounts();

// Reading: lists, single records with all that hangs on them, and looking up by a field.
void showRecords();
void lookUp();

// The journal: a day of events, added hour by hour, listed, marked and purged.
void keepJournal(const std::filesystem::path &data);
std::uint32_t countEvents();

// Changes: updates merge, and what is removed takes its parts along.
void updateRecords(const std::filesystem::path &data);
void removeDevice(const std::filesystem::path &data);

// Mistakes: what bad input is answered with.
void makeMistakes();

// Records of the sample documents that several chapters look at.
constexpr std::uint32_t deviceRemoved = 104;
constexpr std::uint32_t siteUpdated = 310;

} // namespace example
