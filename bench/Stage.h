// Where a workload is played: the three implementations, each with a file of its own that holds the same.
#pragma once

#include "Implementation.h"

#include <functional>
#include <vector>

namespace bench {

// What the files hold before a workload starts. The library makes it, through its exported functions; the name says
// which one it is, so that it is made once.
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
    // Puts a copy of a file in the place of its own; none removes it.
    void restore(const std::filesystem::path &original);
    void removeFile();

    std::filesystem::path original; // what the file was before the workload

private:
    std::unique_ptr<Implementation> implementation;
    std::filesystem::path directory;
};

using Stores = std::vector<std::unique_ptr<Store>>;

// The three, in directories of their own under that one.
Stores makeStores(const std::filesystem::path &directory);

// The file that a filling makes, made if it is not there yet.
std::filesystem::path filledFile(const std::filesystem::path &directory, const Filling &filling);

// Whether two files hold the same tables with the same rows of the same types.
bool sameFiles(const std::filesystem::path &a, const std::filesystem::path &b);

} // namespace bench
