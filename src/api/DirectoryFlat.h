// What the flat records of the directory carry.
#pragma once

#include "api/Flatten.h"
#include "brimlet/FlatRecords.h"
#include "records/Contract.h"
#include "records/Organization.h"

namespace brimlet {

// clang-format off

template<>
struct FlatForm<Locale>
{
    using Flat = FlatLocale;
    static constexpr auto fields = std::make_tuple(
        carries(&Flat::id, &Locale::id),
        carries(&Flat::iso, &Locale::iso),
        carries(&Flat::description, &Locale::description));
};

template<>
struct FlatForm<Domain>
{
    using Flat = FlatDomain;
    static constexpr auto fields = std::make_tuple(
        carries(&Flat::id, &Domain::id),
        carries(&Flat::name, &Domain::name),
        carries(&Flat::orgId, &Domain::orgId),
        carriesRecord(&Flat::locale, &Domain::locale));
};

template<>
struct FlatForm<User>
{
    using Flat = FlatUser;
    static constexpr auto fields = std::make_tuple(
        carries(&Flat::id, &User::id),
        carries(&Flat::name, &User::name),
        carries(&Flat::login, &User::login),
        carries(&Flat::contacts, &User::contacts),
        carries(&Flat::isActive, &User::isActive),
        carries(&Flat::domainId, &User::domainId),
        carries(&Flat::roles, &User::roles),
        carries(&Flat::phone, &User::phone),
        carriesRecord(&Flat::domain, &User::domain),
        carries(&Flat::orgId, &User::orgId));
};

template<>
struct FlatForm<Person>
{
    using Flat = FlatPerson;
    static constexpr auto fields = std::make_tuple(
        carries(&Flat::id, &Person::id),
        carries(&Flat::name, &Person::name),
        carries(&Flat::phone, &Person::phone),
        carries(&Flat::email, &Person::email),
        carries(&Flat::postal, &Person::postal));
};

template<>
struct FlatForm<Organization>
{
    using Flat = FlatOrganization;
    static constexpr auto fields = std::make_tuple(
        carries(&Flat::id, &Organization::id),
        carries(&Flat::inn, &Organization::inn),
        carries(&Flat::officialName, &Organization::officialName),
        carries(&Flat::shortName, &Organization::shortName),
        carries(&Flat::kpp, &Organization::kpp),
        carries(&Flat::ogrn, &Organization::ogrn),
        carries(&Flat::address, &Organization::address),
        carriesRecord(&Flat::contact, &Organization::contact),
        carriesRecord(&Flat::locale, &Organization::locale));
};

template<>
struct FlatForm<Contractor>
{
    using Flat = FlatContractor;
    static constexpr auto fields = std::make_tuple(
        carries(&Flat::id, &Contractor::id),
        carries(&Flat::inn, &Contractor::inn),
        carries(&Flat::orgId, &Contractor::orgId),
        carries(&Flat::type, &Contractor::type),
        carries(&Flat::officialName, &Contractor::officialName),
        carries(&Flat::name, &Contractor::name),
        carries(&Flat::extra, &Contractor::extra));
};

template<>
struct FlatForm<Contract>
{
    using Flat = FlatContract;
    static constexpr auto fields = std::make_tuple(
        carries(&Flat::id, &Contract::id),
        carries(&Flat::number, &Contract::number),
        carriesRecord(&Flat::contractor, &Contract::contractor),
        carries(&Flat::name, &Contract::name),
        carries(&Flat::status, &Contract::status),
        carries(&Flat::date, &Contract::date),
        carries(&Flat::description, &Contract::description),
        carries(&Flat::extra, &Contract::extra),
        carriesRecord(&Flat::user, &Contract::user));
};

// clang-format on

} // namespace brimlet
