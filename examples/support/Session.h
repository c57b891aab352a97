// The directory and the lifetime of the library.
#pragma once

#include <cstdint>
#include <filesystem>
#include <thread>

namespace example {

// Changes the working directory, which is where the library keeps its file. Without a name, creates a temporary
// directory and removes it at the end.
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

// The running library, from construction to destruction. At most one at a time.
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
