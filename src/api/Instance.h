// The one instance that a launch publishes and an exit takes away.
#pragma once

#include "controller/Controller.h"

class QCoreApplication;

namespace brimlet {

extern QCoreApplication *g_application;
extern controller::Controller *g_controller;

} // namespace brimlet
