#pragma once

#include "records/Contract.h"
#include "records/Device.h"
#include "records/Location.h"

namespace brimlet {

struct Site
{
    quint32 id = 0;
    std::optional<QString> name;
    std::optional<QString> comment;
    std::optional<QString> extra;
    std::optional<bool> isCrossing;
    std::optional<Domain> domain; // output only
    std::optional<QString> address;
    std::optional<Contract> contract; // output only
    std::optional<qint32> contractStatus;
    std::optional<quint32> type;
    std::optional<quint32> category;
    std::optional<quint32> armMode;
    std::optional<bool> isDelegated;
    std::vector<Device> devices; // input only
    std::optional<quint32> domainId;
    std::optional<Location> location;
    std::optional<qint32> contractId;
    std::optional<bool> isSitePlanExists;
};

// The part of a site that getSiteNameAndAddress reads.
struct SiteLabel
{
    std::optional<QString> name;
    std::optional<QString> address;
};

} // namespace brimlet
