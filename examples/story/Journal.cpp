#include "Story.h"

#include "support/Calls.h"
#include "support/Print.h"
#include "support/Views.h"

#include <algorithm>
#include <iostream>
#include <limits>
#include <utility>

namespace example {
namespace {

namespace fs = std::filesystem;

constexpr uint32_t secondsOfHour = 3600;
constexpr uint32_t secondsOfDay = 24 * secondsOfHour;
constexpr uint32_t endOfTime = std::numeric_limits<uint32_t>::max();

// Arrays of the library are in no particular order, a journal is sorted by time.
OwnedArray<FlatEvent> sortedByTime(OwnedArray<FlatEvent> events)
{
    const auto timeOf = [](const FlatEvent &event) { return event.time ? *event.time : 0; };
    std::sort(events.begin(), events.end(), [&](const FlatEvent &left, const FlatEvent &right) {
        return std::make_pair(timeOf(left), left.id) < std::make_pair(timeOf(right), right.id);
    });
    return events;
}

// Both ends are included.
OwnedArray<FlatEvent> eventsBetween(uint32_t from, uint32_t to)
{
    return sortedByTime(getAll("getEvents", getEvents, from, to));
}

OwnedArray<FlatEvent> markedEvents()
{
    return sortedByTime(getAll("getAffectEvents", getAffectEvents));
}

void streamDay(const fs::path &data)
{
    printHeading("addEvents: a day, hour by hour");
    std::vector<fs::path> files(fs::directory_iterator(data / "events"), {});
    std::sort(files.begin(), files.end());
    std::vector<Row> rows;
    for (const fs::path &file : files) {
        const Utf16 json = readDocument(file);
        const OwnedArray<FlatEvent> known = getAll("addEvents", addEvents, json.data(), unitsOf(json));
        rows.push_back({file.filename().string(), std::to_string(known.size())});
    }
    printTable({"document", "events returned"}, rows, 5);
    std::cout << "Events of an unknown device are stored, but not listed: the journal has " << countEvents();
    send("addDevice", addDevice, readDocument(data / "add_device.json"));
    std::cout << " events, and after addDevice " << countEvents() << ".\n";
}

void addOne(const fs::path &data)
{
    printHeading("addEvent: one more event, as stored");
    const Owned<FlatEvent> event = exchange("addEvent", addEvent, readDocument(data / "event.json"));
    printFields(fieldsOf(*event));
}

void listHour(uint32_t from)
{
    printHeading("getEvents: the journal of an hour, with the names of the equipment");
    printEvents(eventsBetween(from, from + secondsOfHour - 1), 12);
}

void takeOneMarkAway()
{
    printHeading("getAffectEvents: the marked events, which no purge deletes");
    const OwnedArray<FlatEvent> marked = markedEvents();
    printEvents(marked, 5);
    const Utf16 json = toUtf16("{\"D\":{\"id\":" + std::to_string(marked.front().id) + "}}");
    const Owned<FlatEvent> event = exchange("removeAffectFlag", removeAffectFlag, json);
    std::cout << "\nremoveAffectFlag clears the mark of the first one:\n";
    printChanges(fieldsOf(marked.front()), fieldsOf(*event));
}

// The number of events: all, up to a time, and marked.
Row countRow(const std::string &when, uint32_t time)
{
    return {when, std::to_string(countEvents()), std::to_string(eventsBetween(0, time).size()),
            std::to_string(markedEvents().size())};
}

void purge(uint32_t until)
{
    printHeading("clearEventsBeforeDateExceptAffects: a purge of the events before six");
    const Row before = countRow("before", until);
    expect("clearEventsBeforeDateExceptAffects", clearEventsBeforeDateExceptAffects(until));
    const Row after = countRow("after", until);
    printTable({"the purge", "all events", "before six", "marked"}, {before, after});
    std::cout << "\nThese events before six remain, either marked or sent without \"affect\":\n";
    printEvents(eventsBetween(0, until), 10);
}

} // namespace

uint32_t countEvents()
{
    return eventsBetween(0, endOfTime).size();
}

void keepJournal(const fs::path &data)
{
    streamDay(data);
    const uint32_t first = *eventsBetween(0, endOfTime).front().time;
    const uint32_t midnight = first - first % secondsOfDay;
    addOne(data);
    listHour(midnight + 2 * secondsOfHour);
    takeOneMarkAway();
    purge(midnight + 6 * secondsOfHour - 1);
}

} // namespace example
