#include "api/Instance.h"
#include "brimlet/brimlet.h"

#include <QCoreApplication>
#include <QMetaObject>

using brimlet::controller::Controller;

namespace brimlet {

QCoreApplication *g_application = nullptr; // dangles after an exit, until the next launch
std::atomic<Controller *> g_controller{nullptr};

} // namespace brimlet

using namespace brimlet;

int32_t launchCache(void)
{
    int argc = 0; // outlives the application: this frame does
    g_application = new QCoreApplication(argc, nullptr);
    QObject::connect(g_application, &QCoreApplication::aboutToQuit, [] { g_application->deleteLater(); });

    auto *launched = new Controller;
    launched->launch(QStringLiteral("CacheDb"));
    // Only now: whoever sees a state sees the final launch result too.
    g_controller.store(launched, std::memory_order_release);
    // By way of the application, since a client that sees state 2 may exit while the loop is still in this delivery: it
    // must not be one to the instance, which goes with the exit.
    QMetaObject::invokeMethod(
        g_application,
        [launched] {
            if (instance() == launched)
                launched->onStart();
        },
        Qt::QueuedConnection);
    return QCoreApplication::exec();
}

void exitCache(void)
{
    QCoreApplication::exit(0);
    delete instance();
    g_controller.store(nullptr, std::memory_order_release);
}

uint32_t getState(void)
{
    const Controller *launched = instance();
    return launched ? launched->getState() : uint32_t{BRIMLET_STATE_NONE};
}

uint32_t getLaunchCacheResult(void)
{
    const Controller *launched = instance();
    return launched ? launched->getLaunchResult() : uint32_t{BRIMLET_LAUNCH_NONE};
}
