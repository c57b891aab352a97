// The one instance that a launch publishes and an exit takes away.
#pragma once

#include "controller/Controller.h"

#include <atomic>

class QCoreApplication;

namespace brimlet {

extern QCoreApplication *g_application;

// Published by the launch thread and polled by others: written with release and read with acquire, so that whoever sees
// the instance sees all that the launch has written. A plain move on x86-64.
extern std::atomic<controller::Controller *> g_controller;

inline controller::Controller *instance()
{
    return g_controller.load(std::memory_order_acquire);
}

} // namespace brimlet
