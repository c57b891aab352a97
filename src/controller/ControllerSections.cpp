#include "controller/Controller.h"
#include "controller/Outcome.h"
#include "json/KeyMaps.h"

namespace brimlet::controller {

BrimletResult Controller::updateSection(std::optional<Section> &section, quint32 deviceId)
{
    if (const BrimletResult update = writeResult(database->updateSection(section, deviceId), section))
        return update;

    // The section is committed and stays, whatever this check returns.
    bool exists = false;
    return requireExists(database->isDeviceExists(exists, deviceId), exists, BRIMLET_NO_PARENT);
}

BrimletResult Controller::deleteSection(quint32 sectionId, quint32 deviceId)
{
    std::optional<Section> section;
    if (const BrimletResult target = readResult(database->getSection(section, sectionId, deviceId), section))
        return target;
    return writeResult(database->deleteSection(deviceId, sectionId));
}

BrimletResult Controller::getSection(std::optional<Section> &section, quint32 sectionId, quint32 deviceId)
{
    return readResult(database->getSection(section, sectionId, deviceId), section);
}

BrimletResult Controller::getSections(std::vector<Section> &sections, quint32 deviceId)
{
    return readResult(database->getSections(sections, deviceId), sections);
}

BrimletResult Controller::getSectionsWithParams(std::vector<Section> &sections, const QString &key,
                                                const QString &value, quint32 deviceId)
{
    QString column;
    if (!sectionColumnForKey(column, key))
        return BRIMLET_REFUSED;
    return readResult(database->getSectionsByField(sections, column, value, deviceId), sections);
}

} // namespace brimlet::controller
