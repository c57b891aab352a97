// Mistakes that a client in C++ could make, each behind its own switch. They must not compile. All else must, also
// behind a header that defines macros as windows.h does.
#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <limits>
#include <thread>
#include <vector>

#define min(a, b) ((a) < (b) ? (a) : (b))
#define max(a, b) ((a) > (b) ? (a) : (b))
#include "brimlet.hpp"

void useSession(brimlet::Session &session)
{
    const auto user = session.getUser(7);
    if (user)
        (void)user->name();
    brimlet::require(session.addUsers("{}"));
#ifdef MISTAKE_VIEW_OF_A_TEMPORARY
    (void)session.getUser(7)->name(); // the record would be freed, and the view with it
#endif
#ifdef MISTAKE_RANGE_OF_A_TEMPORARY
    for (const brimlet::ZoneView zone : session.getSection(1, 2).value()->zones())
        (void)zone.name();
#endif
#ifdef MISTAKE_IGNORED_CODE
    session.addUsers("no document"); // the write fails
#endif
#ifdef MISTAKE_IGNORED_ANSWER
    session.updateUser("no document");
#endif
#ifdef MISTAKE_COPIED_OWNER
    const auto copy = user;
#endif
#ifdef MISTAKE_CALLS_WITHOUT_SESSION
    brimlet::Calls calls; // nothing is launched
#endif
#ifdef MISTAKE_COPIED_SESSION
    brimlet::Session copy = session;
#endif
}
