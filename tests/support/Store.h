// What every test of the exported functions needs: a launched library in a directory of its own, texts in and out,
// the debug lines, and reads of the file through a separate connection.
#pragma once

#include "Directory.h"
#include "brimlet.h"

#include <cstdint>
#include <cstdlib>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

namespace brimlet::test {

// ---- Texts ----

// UTF-16 of a UTF-8 text, and back. A null pointer is no text.
std::u16string utf16(const std::string &utf8);
std::optional<std::string> utf8(const uint16_t *text);

// The value in a block of its own, or nothing for a null pointer.
template<class T>
std::optional<T> value(const T *block)
{
    return block ? std::optional<T>(*block) : std::nullopt;
}

// A document that holds one record, and one that holds several; `more` is for records in another constant.
inline std::string one(const std::string &object)
{
    return R"({"D":)" + object + "}";
}
inline std::string batch(const std::string &objects, const std::string &more = "")
{
    return R"({"D":{"items":[)" + objects + (more.empty() ? "" : ",") + more + "]}}";
}

// Calls an export that ends in a JSON text: send(addUsers, R"({...})"), send(updateUser, &user, R"({...})").
template<class Function>
uint32_t send(Function function, const std::string &json)
{
    const std::u16string text = utf16(json);
    return function(reinterpret_cast<const uint16_t *>(text.data()), static_cast<uint32_t>(text.size()));
}
template<class Function, class Out>
uint32_t send(Function function, Out **out, const std::string &json)
{
    const std::u16string text = utf16(json);
    return function(out, reinterpret_cast<const uint16_t *>(text.data()), static_cast<uint32_t>(text.size()));
}
template<class Function, class Out>
uint32_t send(Function function, Out **out, uint32_t *count, const std::string &json)
{
    const std::u16string text = utf16(json);
    return function(out, count, reinterpret_cast<const uint16_t *>(text.data()), static_cast<uint32_t>(text.size()));
}

// Calls a query by field: find(getUsersWithParams, &users, &count, "name", "x"), then device and section.
template<class Function, class Out, class... Parents>
uint32_t find(Function function, Out **out, uint32_t *count, const std::string &key, const std::string &value,
              Parents... parents)
{
    const std::u16string keyText = utf16(key);
    const std::u16string valueText = utf16(value);
    return function(out, count, reinterpret_cast<const uint16_t *>(keyText.data()),
                    static_cast<uint32_t>(keyText.size()), reinterpret_cast<const uint16_t *>(valueText.data()),
                    static_cast<uint32_t>(valueText.size()), static_cast<uint32_t>(parents)...);
}

// ---- Records ----

// Zeroed memory from the allocator that the library shares with its clients.
void *allocate(size_t size);

// Such blocks for flat records made by hand: of zeros, and with a value.
template<class T>
T *zeroed(size_t count = 1)
{
    return static_cast<T *>(allocate(count * sizeof(T)));
}
template<class T>
T *block(const T &content)
{
    T *made = zeroed<T>();
    *made = content;
    return made;
}

// A flat record that releases itself, and fails the test if that returns anything but 0.
struct Free
{
    void operator()(FlatLocale *record) const;
    void operator()(FlatDomain *record) const;
    void operator()(FlatUser *record) const;
    void operator()(FlatOrganization *record) const;
    void operator()(FlatContractor *record) const;
    void operator()(FlatContract *record) const;
    void operator()(FlatDevice *record) const;
    void operator()(FlatSection *record) const;
    void operator()(FlatZone *record) const;
    void operator()(FlatSite *record) const;
    void operator()(FlatEvent *record) const;
    void operator()(uint16_t *text) const;
};
template<class Flat>
using Owned = std::unique_ptr<Flat, Free>;

// The result of an export that returns one record. The record is null unless the code is 0.
template<class Flat>
struct Answer
{
    uint32_t code;
    Owned<Flat> record;
    Flat *operator->() const { return record.get(); }
};

// get(getUser, 7), get(getZone, zone, device, section)
template<class Flat, class... Keys, class... Arguments>
Answer<Flat> get(uint32_t (*function)(Flat **, Keys...), Arguments... keys)
{
    Flat *out = nullptr;
    const uint32_t code = function(&out, static_cast<Keys>(keys)...);
    return {code, Owned<Flat>(out)};
}

// update(updateUser, R"({"D":{...}})"), also for addEvent and removeAffectFlag
template<class Flat>
Answer<Flat> update(uint32_t (*function)(Flat **, const uint16_t *, uint32_t), const std::string &json)
{
    Flat *out = nullptr;
    const uint32_t code = send(function, &out, json);
    return {code, Owned<Flat>(out)};
}

// An array that releases itself.
template<class Flat>
class List
{
public:
    uint32_t code = 0;

    List() = default;
    List(const List &) = delete;
    List &operator=(const List &) = delete;
    List(List &&other) noexcept : code(other.code), records(other.records), length(other.length)
    {
        other.records = nullptr;
        other.length = 0;
    }
    List &operator=(List &&) = delete;
    ~List();

    Flat **out() { return &records; }
    uint32_t *count() { return &length; }
    uint32_t size() const { return length; }
    bool isNull() const { return records == nullptr; }
    Flat &operator[](uint32_t index) const { return records[index]; }
    const Flat *begin() const { return records; }
    const Flat *end() const { return records + length; }

    // The record of an id, whatever the order; null if there is none.
    const Flat *withId(uint32_t id) const
    {
        for (const Flat &record : *this)
            if (record.id == id)
                return &record;
        return nullptr;
    }

private:
    Flat *records = nullptr;
    uint32_t length = 0;
};
template<>
List<FlatLocale>::~List();
template<>
List<FlatDomain>::~List();
template<>
List<FlatUser>::~List();
template<>
List<FlatOrganization>::~List();
template<>
List<FlatContractor>::~List();
template<>
List<FlatContract>::~List();
template<>
List<FlatDevice>::~List();
template<>
List<FlatSection>::~List();
template<>
List<FlatZone>::~List();
template<>
List<FlatSite>::~List();
template<>
List<FlatEvent>::~List();

// list(getUsers), list(getZonesForSection, device, section), list(getEvents, from, to)
template<class Flat, class... Keys, class... Arguments>
List<Flat> list(uint32_t (*function)(Flat **, uint32_t *, Keys...), Arguments... keys)
{
    List<Flat> answer;
    answer.code = function(answer.out(), answer.count(), static_cast<Keys>(keys)...);
    return answer;
}

// listBy(getUsersWithParams, "name", "x"), listBy(getZonesWithParams, "name", "x", device)
template<class Flat, class... Keys, class... Parents>
List<Flat> listBy(uint32_t (*function)(Flat **, uint32_t *, const uint16_t *, uint32_t, const uint16_t *, uint32_t,
                                       Keys...),
                  const std::string &key, const std::string &value, Parents... parents)
{
    List<Flat> answer;
    answer.code = find(function, answer.out(), answer.count(), key, value, parents...);
    return answer;
}

// listAdded(addEvents, R"({"D":{"items":[...]}})")
inline List<FlatEvent> listAdded(const std::string &json)
{
    List<FlatEvent> answer;
    answer.code = send(addEvents, answer.out(), answer.count(), json);
    return answer;
}

// ---- The debug log ----

// Collects the library's debug lines during its lifetime. Qt's own warnings are left out.
class DebugLines
{
public:
    DebugLines();
    ~DebugLines();
    DebugLines(const DebugLines &) = delete;
    DebugLines &operator=(const DebugLines &) = delete;

    std::vector<std::string> all() const;
    // The lines with every error text, whose wording is SQLite's, as "*": those at the given positions.
    std::vector<std::string> allWithErrorsAt(const std::vector<size_t> &places) const;
    void clear();
};

// The four lines of a failed statement: runner, error text, words, the same error text.
::testing::AssertionResult isFailure(const std::vector<std::string> &lines, const std::string &words);
// The four lines of a failed batch.
::testing::AssertionResult isBatchFailure(const std::vector<std::string> &lines, const std::string &words);

// ---- The file ----

using Row = std::vector<std::optional<std::string>>;

// A connection of its own to a database file, "CacheDb" in the working directory unless named. Opened for each call
// and closed after it, so that it never blocks the library. A failing statement throws.
class File
{
public:
    explicit File(std::string path = "CacheDb");
    void execute(const std::string &sql) const;
    std::vector<Row> rows(const std::string &sql) const;
    // The one value of a statement's one row; throws if the number of either differs.
    std::optional<std::string> value(const std::string &sql) const;
    int64_t number(const std::string &sql) const;

private:
    std::string name;
};

// ---- The library ----

// The library on a thread of its own, launched by the constructor and exited by the destructor.
class Library
{
public:
    Library();
    ~Library();
    Library(const Library &) = delete;
    Library &operator=(const Library &) = delete;
    // Exits, waits for launchCache and returns its result. Does nothing more when called again.
    int32_t exit();

private:
    std::thread thread;
    int32_t result = -1;
};

// A test in a fresh directory with the library launched on it.
class StoreTest : public ::testing::Test
{
protected:
    StoreTest();
    ~StoreTest() override;

    // Exits and launches again in the same directory.
    void relaunch();
    // Changes the file without the library: table(s) dropped, renamed, given triggers ...
    // A read by id leaves its statement, and with it its lock, in the library's query until the next statement; this
    // has the library run a harmless read first, which releases the lock.
    void foreign(const std::string &sql);
    // Makes every insert, update or delete of a table fail with the error text "refused".
    void refuse(const std::string &action, const std::string &table);

    Directory directory;
    File file;
    std::unique_ptr<Library> library;
};

} // namespace brimlet::test
