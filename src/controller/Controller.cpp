#include "controller/Controller.h"

#include "controller/SQLiteDatabase.h"

namespace brimlet::controller {

Controller::Controller() : database(std::make_unique<SQLiteDatabase>()) {}

Controller::~Controller() = default;

void Controller::launch(const QString &name)
{
    launchResult = openOrReplace(name);
}

BrimletLaunchResult Controller::openOrReplace(const QString &name)
{
    const auto replaced = [&](BrimletLaunchResult reason) {
        return database->recreate(name) ? reason : BRIMLET_LAUNCH_FAILED;
    };
    if (!database->exists(name))
        return database->create(name) ? BRIMLET_LAUNCH_CREATED : BRIMLET_LAUNCH_FAILED;
    if (!database->open(name))
        return replaced(BRIMLET_LAUNCH_REPLACED_UNREADABLE);
    if (!database->isVersionValid())
        return replaced(BRIMLET_LAUNCH_REPLACED_VERSION);
    if (!database->isSchemaValid())
        return replaced(BRIMLET_LAUNCH_REPLACED_SCHEMA);
    return BRIMLET_LAUNCH_OPENED;
}

void Controller::onStart()
{
    state.store(BRIMLET_STATE_RUNNING, std::memory_order_release);
}

} // namespace brimlet::controller
