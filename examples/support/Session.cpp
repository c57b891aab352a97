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
    std::error_code ignored; // nothing is lost if a temporary file stays behind
    fs::current_path(before, ignored);
    if (!temporary.empty())
        fs::remove_all(temporary, ignored);
}

// launchCache does not come back before exitCache, so it gets a thread of its own. The state is the only sign of life.
// From the second session on Qt warns on stderr that its application is not in the main thread. It need not be.
Session::Session() : thread(launchCache)
{
    while (getState() != BRIMLET_STATE_RUNNING)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

// exitCache does not wait. The next session must not start before this one's thread has come back.
Session::~Session()
{
    exitCache();
    thread.join();
}

} // namespace example
