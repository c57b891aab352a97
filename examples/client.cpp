// A client of the library, from launch to exit: it fills the store, reads it, keeps a journal of events, updates and
// deletes records, makes some mistakes, and launches a second time. Every step prints what it does, and the result.
//
// usage: brimlet_example DATA [DIRECTORY]
// DATA is the folder with the sample documents. The library runs in DIRECTORY, by default in a temporary directory.
#include "story/Story.h"
#include "support/Print.h"
#include "support/Results.h"
#include "support/Session.h"

#include "brimlet.h"

#include <cstdlib>
#include <exception>
#include <iostream>

namespace {

using namespace example;

void reportState(const std::string &when)
{
    std::cout << when << ": getState " << getState() << ", getLaunchCacheResult "
              << describeLaunchResult(getLaunchCacheResult()) << '\n';
}

void firstSession(const std::filesystem::path &data)
{
    printHeading("Launch: launchCache on a dedicated thread");
    reportState("before the launch");
    const Session session;
    reportState("while it runs");
    if (getLaunchCacheResult() == BRIMLET_LAUNCH_OPENED)
        expect("clearAll", clearAll()); // the directory was used before
    else
        expectLaunch(BRIMLET_LAUNCH_CREATED); // after any other result the store is unusable

    loadReferenceData(data);
    rememberServer();
    showRecords();
    lookUp();
    keepJournal(data);
    updateRecords(data);
    removeDevice(data);
    makeMistakes();
}

void secondSession()
{
    printHeading("A second launch in the same directory");
    reportState("after exitCache");
    const Session session;
    reportState("while it runs again");
    expectLaunch(BRIMLET_LAUNCH_OPENED);
    printCounts();

    printHeading("Clearing: clearAll keeps only the server address");
    expect("clearAll", clearAll());
    printCounts();
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 2 && argc != 3) {
        std::cerr << "usage: brimlet_example DATA [DIRECTORY]\n";
        return EXIT_FAILURE;
    }
    try {
        const auto data = std::filesystem::absolute(argv[1]); // the working directory is about to change
        const Workplace workplace(argc == 3 ? argv[2] : "");
        firstSession(data);
        secondSession();
        return EXIT_SUCCESS;
    } catch (const std::exception &failure) {
        std::cerr << "brimlet_example: " << failure.what() << '\n';
        return EXIT_FAILURE;
    }
}
