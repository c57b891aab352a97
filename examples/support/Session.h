// Where and how long the library runs.
#pragma once

#include <cstdint>
#include <filesystem>
#include <thread>

namespace example {

// Makes a directory the working directory, since that is where the library keeps its file. Without a name it is a
// fresh one among the temporary files, removed in the end.
class Workplace
{
public:
    explicit Workplace(const std::filesystem::path &name);
    ~Workplace();
    Workplace(const Workplace &) = delete;
    Workplace &operator=(const Workplace &) = delete;

private:
    std::filesystem::path before;
    std::filesystem::path temporary;
};

// The library while it runs: a session is served from its construction to its destruction. One at a time.
class Session
{
public:
    Session();
    ~Session();
    Session(const Session &) = delete;
    Session &operator=(const Session &) = delete;

private:
    std::thread thread;
};

} // namespace example
