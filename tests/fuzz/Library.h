// The library in its own directory, in memory if possible.
#pragma once

#include <cstdint>
#include <string>

namespace brimlet::fuzz {

// The working directory, removed with everything in it. It is in TMPDIR, or else in memory.
class Directory
{
public:
    Directory();
    ~Directory();
    Directory(const Directory &) = delete;
    Directory &operator=(const Directory &) = delete;

private:
    std::string before;
    std::string name;
};

// Launched by the constructor on another thread, exited by the destructor.
class Library
{
public:
    Library();
    ~Library();
    Library(const Library &) = delete;
    Library &operator=(const Library &) = delete;
};

// Silences the log, and has Qt allocate what it never frees out of the leak checker's sight.
void quietly();

// Spares SQLite its locks and its memory accounts, which are a quarter of the time. Before the first launch; and calls
// come from one thread at a time then, as they do here.
void withoutLocks();

} // namespace brimlet::fuzz
