// An exit in the moment in which the state becomes 2. The loop is still in the delivery that has made it 2, and must
// not return from there to an object that the exit has destroyed.
#include "Store.h"

#include <QEvent>
#include <QPointer>
#include <atomic>
#include <dlfcn.h>

using namespace brimlet::test;

namespace {

std::atomic<bool> isHeld{false};   // whether a delivery waits after its slot
std::atomic<int> lostReceivers{0}; // those destroyed during the wait

void holdUntilTheExit(const QPointer<QObject> &receiver)
{
    while (isHeld)
        std::this_thread::yield();
    if (receiver.isNull())
        ++lostReceivers;
}

} // namespace

// Stands before Qt's own, so that a delivery can be held.
bool QObject::event(QEvent *event)
{
    using Deliver = bool (*)(QObject *, QEvent *);
    static const auto deliver = reinterpret_cast<Deliver>(dlsym(RTLD_NEXT, "_ZN7QObject5eventEP6QEvent"));
    const bool isCall = event->type() == QEvent::MetaCall;
    const QPointer<QObject> receiver(this);
    const bool isDone = deliver(this, event);
    if (isCall)
        holdUntilTheExit(receiver);
    return isDone;
}

namespace {

TEST(ExitAtOnce, TheLoopReturnsToALivingObject)
{
    const Directory directory;
    const DebugLines lines;
    isHeld = true;
    std::thread launcher(launchCache);
    while (getState() != BRIMLET_STATE_RUNNING)
        std::this_thread::yield();
    exitCache();
    isHeld = false;
    launcher.join();
    EXPECT_EQ(lostReceivers, 0);
}

} // namespace
