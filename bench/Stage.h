// Where a workload runs: the three implementations, each with its own file of the same contents.
#pragma once

#include "Implementation.h"

#include <functional>
#include <vector>

namespace bench {

// The contents of the files before a workload starts. The library creates them, through its exported functions, once
// for each name.
struct Filling
{
    std::string name;
    std::function<void()> fill;
};

// An implementation with its file.
class Store
{
public:
    Store(std::unique_ptr<Implementation> kind, const std::filesystem::path &where);
    ~Store();
    Store(const Store &) = delete;
    Store &operator=(const Store &) = delete;

    Implementation *operator->() { return implementation.get(); }
    const char *name() const { return implementation->name(); }
    std::filesystem::path file() const;

    void open();
    void close();
    // Replaces its own file with a copy of a file, or removes it if there is none.
    void restore(const std::filesystem::path &original);
    void removeFile();

    std::filesystem::path original; // the file before the workload

private:
    std::unique_ptr<Implementation> implementation;
    std::filesystem::path directory;
};

using Stores = std::vector<std::unique_ptr<Store>>;

// The three implementations, in subdirectories of a directory.
Stores makeStores(const std::filesystem::path &directory);

// The file with the contents of a filling, created if it does not exist yet.
std::filesystem::path filledFile(const std::filesystem::path &directory, const Filling &filling);

// Whether two files have the same tables with the same rows of the same types.
bool sameFiles(const std::filesystem::path &a, const std::filesystem::path &b);

} // namespace bench
