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
        flatField(&Flat::id, &Zone::id),
        flatField(&Flat::name, &Zone::name),
        flatField(&Flat::detector, &Zone::detector),
        flatField(&Flat::physic, &Zone::physic),
        flatField(&Flat::form, &Zone::form),
        flatField(&Flat::flags, &Zone::flags),
        flatField(&Flat::delay, &Zone::delay),
        flatField(&Flat::scheduleId, &Zone::scheduleId),
        flatField(&Flat::tracert, &Zone::tracert),
        flatField(&Flat::uidType, &Zone::uidType),
        flatField(&Flat::arm, &Zone::arm));
};

template<>
struct FlatForm<Section>
{
    using Flat = FlatSection;
    static constexpr auto fields = std::make_tuple(
        flatField(&Flat::id, &Section::id),
        flatField(&Flat::name, &Section::name),
        flatField(&Flat::scheduleId, &Section::scheduleId),
        flatList(&Flat::zones, &Flat::zonesCount, &Section::zones),
        flatField(&Flat::tracert, &Section::tracert),
        flatField(&Flat::flags, &Section::flags),
        flatField(&Flat::detector, &Section::detector),
        flatField(&Flat::arm, &Section::arm),
        flatField(&Flat::physic, &Section::physic),
        flatField(&Flat::form, &Section::form),
        flatField(&Flat::delay, &Section::delay),
        flatField(&Flat::uidType, &Section::uidType));
};

template<>
struct FlatForm<DeviceUser>
{
    using Flat = FlatDeviceUser;
    static constexpr auto fields = std::make_tuple(
        flatField(&Flat::id, &DeviceUser::id),
        flatField(&Flat::name, &DeviceUser::name),
        flatField(&Flat::comment, &DeviceUser::comment),
        flatField(&Flat::phone, &DeviceUser::phone),
        flatNumbers(&Flat::sections, &Flat::sectionsCount, &DeviceUser::sections));
};

template<>
struct FlatForm<Device>
{
    using Flat = FlatDevice;
    static constexpr auto fields = std::make_tuple(
        flatField(&Flat::id, &Device::id),
        flatField(&Flat::account, &Device::account),
        flatNested(&Flat::domain, &Device::domain),
        flatField(&Flat::configVersion, &Device::configVersion),
        flatList(&Flat::sections, &Flat::sectionsCount, &Device::sections),
        flatList(&Flat::users, &Flat::usersCount, &Device::users),
        flatField(&Flat::isParted, &Device::isParted),
        flatField(&Flat::clusterId, &Device::clusterId),
        flatField(&Flat::domainId, &Device::domainId));
};

template<>
struct FlatForm<Location>
{
    using Flat = FlatLocation;
    static constexpr auto fields = std::make_tuple(
        flatField(&Flat::id, &Location::id),
        flatField(&Flat::latitude, &Location::latitude),
        flatField(&Flat::longitude, &Location::longitude));
};

template<>
struct FlatForm<Site>
{
    using Flat = FlatSite;
    static constexpr auto fields = std::make_tuple(
        flatField(&Flat::id, &Site::id),
        flatField(&Flat::name, &Site::name),
        flatField(&Flat::comment, &Site::comment),
        flatField(&Flat::extra, &Site::extra),
        flatField(&Flat::isCrossing, &Site::isCrossing),
        flatNested(&Flat::domain, &Site::domain),
        flatField(&Flat::address, &Site::address),
        flatNested(&Flat::contract, &Site::contract),
        flatField(&Flat::contractStatus, &Site::contractStatus),
        flatField(&Flat::type, &Site::type),
        flatField(&Flat::category, &Site::category),
        flatField(&Flat::armMode, &Site::armMode),
        flatField(&Flat::isDelegated, &Site::isDelegated),
        flatList(&Flat::devices, &Flat::deviceCount, &Site::devices),
        flatField(&Flat::domainId, &Site::domainId),
        flatNested(&Flat::location, &Site::location),
        flatField(&Flat::contractId, &Site::contractId),
        flatField(&Flat::isSitePlanExists, &Site::isSitePlanExists));
};

// clang-format on

} // namespace brimlet
