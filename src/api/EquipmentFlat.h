// What the flat records of the equipment and the sites carry.
#pragma once

#include "api/DirectoryFlat.h"
#include "records/Site.h"

namespace brimlet {

// clang-format off

template<>
struct FlatForm<Zone>
{
    using Flat = FlatZone;
    static constexpr auto fields = std::make_tuple(
        carries(&Flat::id, &Zone::id),
        carries(&Flat::name, &Zone::name),
        carries(&Flat::detector, &Zone::detector),
        carries(&Flat::physic, &Zone::physic),
        carries(&Flat::form, &Zone::form),
        carries(&Flat::flags, &Zone::flags),
        carries(&Flat::delay, &Zone::delay),
        carries(&Flat::scheduleId, &Zone::scheduleId),
        carries(&Flat::tracert, &Zone::tracert),
        carries(&Flat::uidType, &Zone::uidType),
        carries(&Flat::arm, &Zone::arm));
};

template<>
struct FlatForm<Section>
{
    using Flat = FlatSection;
    static constexpr auto fields = std::make_tuple(
        carries(&Flat::id, &Section::id),
        carries(&Flat::name, &Section::name),
        carries(&Flat::scheduleId, &Section::scheduleId),
        carriesList(&Flat::zones, &Flat::zonesCount, &Section::zones),
        carries(&Flat::tracert, &Section::tracert),
        carries(&Flat::flags, &Section::flags),
        carries(&Flat::detector, &Section::detector),
        carries(&Flat::arm, &Section::arm),
        carries(&Flat::physic, &Section::physic),
        carries(&Flat::form, &Section::form),
        carries(&Flat::delay, &Section::delay),
        carries(&Flat::uidType, &Section::uidType));
};

template<>
struct FlatForm<DeviceUser>
{
    using Flat = FlatDeviceUser;
    static constexpr auto fields = std::make_tuple(
        carries(&Flat::id, &DeviceUser::id),
        carries(&Flat::name, &DeviceUser::name),
        carries(&Flat::comment, &DeviceUser::comment),
        carries(&Flat::phone, &DeviceUser::phone),
        carriesNumbers(&Flat::sections, &Flat::sectionsCount, &DeviceUser::sections));
};

template<>
struct FlatForm<Device>
{
    using Flat = FlatDevice;
    static constexpr auto fields = std::make_tuple(
        carries(&Flat::id, &Device::id),
        carries(&Flat::account, &Device::account),
        carriesRecord(&Flat::domain, &Device::domain),
        carries(&Flat::configVersion, &Device::configVersion),
        carriesList(&Flat::sections, &Flat::sectionsCount, &Device::sections),
        carriesList(&Flat::users, &Flat::usersCount, &Device::users),
        carries(&Flat::isParted, &Device::isParted),
        carries(&Flat::clusterId, &Device::clusterId),
        carries(&Flat::domainId, &Device::domainId));
};

template<>
struct FlatForm<Location>
{
    using Flat = FlatLocation;
    static constexpr auto fields = std::make_tuple(
        carries(&Flat::id, &Location::id),
        carries(&Flat::latitude, &Location::latitude),
        carries(&Flat::longitude, &Location::longitude));
};

template<>
struct FlatForm<Site>
{
    using Flat = FlatSite;
    static constexpr auto fields = std::make_tuple(
        carries(&Flat::id, &Site::id),
        carries(&Flat::name, &Site::name),
        carries(&Flat::comment, &Site::comment),
        carries(&Flat::extra, &Site::extra),
        carries(&Flat::isCrossing, &Site::isCrossing),
        carriesRecord(&Flat::domain, &Site::domain),
        carries(&Flat::address, &Site::address),
        carriesRecord(&Flat::contract, &Site::contract),
        carries(&Flat::contractStatus, &Site::contractStatus),
        carries(&Flat::type, &Site::type),
        carries(&Flat::category, &Site::category),
        carries(&Flat::armMode, &Site::armMode),
        carries(&Flat::isDelegated, &Site::isDelegated),
        carriesList(&Flat::devices, &Flat::deviceCount, &Site::devices),
        carries(&Flat::domainId, &Site::domainId),
        carriesRecord(&Flat::location, &Site::location),
        carries(&Flat::contractId, &Site::contractId),
        carries(&Flat::isSitePlanExists, &Site::isSitePlanExists));
};

// clang-format on

} // namespace brimlet
