#include "Directory.h"

#include <random>
#include <system_error>

namespace brimlet::test {

namespace fs = std::filesystem;

fs::path makeDirectory()
{
    std::random_device random;
    fs::path directory;
    do {
        directory = fs::temp_directory_path() / ("brimlet-" + std::to_string(random()));
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
