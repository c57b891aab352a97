// Places for a test's files.
#pragma once

#include <filesystem>
#include <string>

namespace brimlet::test {

// Makes a fresh directory in TMPDIR, or else among the temporary files.
std::filesystem::path makeDirectory();

// A directory of its own, made the working directory, removed with all it holds.
class Directory
{
public:
    Directory();
    ~Directory();
    Directory(const Directory &) = delete;
    Directory &operator=(const Directory &) = delete;
    const std::string &path() const { return name; }

private:
    std::string name;
    std::string before;
};

} // namespace brimlet::test
