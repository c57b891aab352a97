#include "Session.h"

#include "brimlet.h"

#include <chrono>
#include <random>
#include <string>

namespace example {
namespace {

namespace fs = std::filesystem;

fs::path createTemporaryDirectory()
{
    std::random_device random;
    fs::path directory;
    do {
        directory = fs::temp_directory_path() / ("brimlet-example-" + std::to_string(random()));
    } while (!fs::create_directory(directory));
    return directory;
}

} // namespace

Workplace::Workplace(const fs::path &name) : before(fs::current_path())
{
    if (name.empty())
        temporary = createTemporaryDirectory();
    else
        fs::create_directories(name);
    fs::current_path(name.empty() ? temporary : name);
}

Workplace::~Workplace()
{
    std::error_code ignored; // a temporary file that remains does no harm
    fs::current_path(before, ignored);
    if (!temporary.empty())
        fs::remove_all(temporary, ignored);
}

// launchCache does not return before exitCache, so it runs on a dedicated thread. Poll the state until the library
// runs. From the second session on, Qt warns on stderr that its application is not in the main thread. Ignore the
// warning.
Session::Session() : thread(launchCache)
{
    while (getState() != BRIMLET_STATE_RUNNING)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

// exitCache does not wait. The next session must not start before launchCache has returned on this one's thread.
Session::~Session()
{
    exitCache();
    thread.join();
}

} // namespace example
