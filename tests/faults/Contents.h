// What a store's file holds, seen by SQLite from outside the library, and the figures that the tests prove.
#pragma once

#include "Store.h"

#include <map>
#include <string>
#include <vector>

namespace brimlet::test {

// All rows of all tables, in an order of their own.
using Contents = std::map<std::string, std::vector<Row>>;
Contents contentsOf(const std::string &path = "CacheDb");

// Whether SQLite finds nothing to complain of in the file.
::testing::AssertionResult isSound(const std::string &path = "CacheDb");

// Whether some process holds a lock on the file that keeps every reader out.
bool isHeld(const std::string &path = "CacheDb");

// The tables in which two stores differ, for messages.
std::string difference(const Contents &one, const Contents &other);

std::string bytesOf(const std::string &path);
void writeBytes(const std::string &path, const std::string &bytes);

// Whether these tests are built with AddressSanitizer.
#if defined(__SANITIZE_ADDRESS__)
constexpr bool isSanitized = true;
#else
constexpr bool isSanitized = false;
#endif

// True in the long form of these tests, which BRIMLET_FAULTS=long asks for.
bool isLongForm();
// A count of the bounded form; many times that in the long one, and fewer in a sanitized build, where a child is slow
// and the test is about the code more than the file.
int scaled(int count);
// The step of loops over every n: 1, except in the bounded form of a sanitized build.
unsigned stride();
// The seed of random choices: always the same, unless BRIMLET_SEED says otherwise.
unsigned seed();

// Prints "figure: <name> = <count>" for scripts/reliability.
void figure(const std::string &name, int64_t count);

} // namespace brimlet::test
