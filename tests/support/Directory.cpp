#include "Directory.h"

#include <cstdlib>
#include <random>
#include <system_error>

namespace brimlet::test {

namespace fs = std::filesystem;

namespace {

fs::path placeForFiles()
{
    const char *given = std::getenv("TMPDIR"); // Windows itself ignores it
    return given ? fs::absolute(given) : fs::temp_directory_path();
}

} // namespace

fs::path makeDirectory()
{
    const fs::path place = placeForFiles();
    std::random_device random;
    fs::path directory;
    do {
        directory = place / ("brimlet-" + std::to_string(random()));
    } while (!fs::create_directory(directory));
    return directory;
}

Directory::Directory() : name(makeDirectory().string()), before(fs::current_path().string())
{
    fs::current_path(name);
}

Directory::~Directory()
{
    std::error_code ignored;
    fs::current_path(before, ignored);
    fs::remove_all(name, ignored);
}

} // namespace brimlet::test
