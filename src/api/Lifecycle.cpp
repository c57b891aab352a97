#include "api/Instance.h"
#include "brimlet/brimlet.h"

#include <QCoreApplication>
#include <QMetaObject>

using brimlet::controller::Controller;

namespace brimlet {

QCoreApplication *g_application = nullptr; // dangles after an exit, until the next launch
Controller *g_controller = nullptr;

} // namespace brimlet

using namespace brimlet;

int32_t launchCache(void)
{
    int argc = 0; // outlives the application: this frame does
    g_application = new QCoreApplication(argc, nullptr);
    QObject::connect(g_application, &QCoreApplication::aboutToQuit, [] { g_application->deleteLater(); });

    auto *instance = new Controller;
    instance->launch(QStringLiteral("CacheDb"));
    g_controller = instance; // only now: whoever sees a state sees the final launch result too
    // By way of the application, since a client that sees state 2 may exit while the loop is still in this delivery: it
    // must not be one to the instance, which goes with the exit.
    QMetaObject::invokeMethod(
        g_application,
        [instance] {
            if (g_controller == instance)
                instance->onStart();
        },
        Qt::QueuedConnection);
    return QCoreApplication::exec();
}

void exitCache(void)
{
    QCoreApplication::exit(0);
    delete g_controller;
    g_controller = nullptr;
}

uint32_t getState(void)
{
    return g_controller ? g_controller->getState() : uint32_t{BRIMLET_STATE_NONE};
}

uint32_t getLaunchCacheResult(void)
{
    return g_controller ? g_controller->getLaunchResult() : uint32_t{BRIMLET_LAUNCH_NONE};
}
