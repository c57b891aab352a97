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
        flatField(&Flat::id, &Locale::id),
        flatField(&Flat::iso, &Locale::iso),
        flatField(&Flat::description, &Locale::description));
};

template<>
struct FlatForm<Domain>
{
    using Flat = FlatDomain;
    static constexpr auto fields = std::make_tuple(
        flatField(&Flat::id, &Domain::id),
        flatField(&Flat::name, &Domain::name),
        flatField(&Flat::orgId, &Domain::orgId),
        flatNested(&Flat::locale, &Domain::locale));
};

template<>
struct FlatForm<User>
{
    using Flat = FlatUser;
    static constexpr auto fields = std::make_tuple(
        flatField(&Flat::id, &User::id),
        flatField(&Flat::name, &User::name),
        flatField(&Flat::login, &User::login),
        flatField(&Flat::contacts, &User::contacts),
        flatField(&Flat::isActive, &User::isActive),
        flatField(&Flat::domainId, &User::domainId),
        flatField(&Flat::roles, &User::roles),
        flatField(&Flat::phone, &User::phone),
        flatNested(&Flat::domain, &User::domain),
        flatField(&Flat::orgId, &User::orgId));
};

template<>
struct FlatForm<Person>
{
    using Flat = FlatPerson;
    static constexpr auto fields = std::make_tuple(
        flatField(&Flat::id, &Person::id),
        flatField(&Flat::name, &Person::name),
        flatField(&Flat::phone, &Person::phone),
        flatField(&Flat::email, &Person::email),
        flatField(&Flat::postal, &Person::postal));
};

template<>
struct FlatForm<Organization>
{
    using Flat = FlatOrganization;
    static constexpr auto fields = std::make_tuple(
        flatField(&Flat::id, &Organization::id),
        flatField(&Flat::inn, &Organization::inn),
        flatField(&Flat::officialName, &Organization::officialName),
        flatField(&Flat::shortName, &Organization::shortName),
        flatField(&Flat::kpp, &Organization::kpp),
        flatField(&Flat::ogrn, &Organization::ogrn),
        flatField(&Flat::address, &Organization::address),
        flatNested(&Flat::contact, &Organization::contact),
        flatNested(&Flat::locale, &Organization::locale));
};

template<>
struct FlatForm<Contractor>
{
    using Flat = FlatContractor;
    static constexpr auto fields = std::make_tuple(
        flatField(&Flat::id, &Contractor::id),
        flatField(&Flat::inn, &Contractor::inn),
        flatField(&Flat::orgId, &Contractor::orgId),
        flatField(&Flat::type, &Contractor::type),
        flatField(&Flat::officialName, &Contractor::officialName),
        flatField(&Flat::name, &Contractor::name),
        flatField(&Flat::extra, &Contractor::extra));
};

template<>
struct FlatForm<Contract>
{
    using Flat = FlatContract;
    static constexpr auto fields = std::make_tuple(
        flatField(&Flat::id, &Contract::id),
        flatField(&Flat::number, &Contract::number),
        flatNested(&Flat::contractor, &Contract::contractor),
        flatField(&Flat::name, &Contract::name),
        flatField(&Flat::status, &Contract::status),
        flatField(&Flat::date, &Contract::date),
        flatField(&Flat::description, &Contract::description),
        flatField(&Flat::extra, &Contract::extra),
        flatNested(&Flat::user, &Contract::user));
};

// clang-format on

} // namespace brimlet
