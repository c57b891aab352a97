// The flat records: the place of each field, the pair of the form that fills it, the conversion of a record, and its
// release, field by field.
#include "brimlet/brimlet.h"

#include "api/EventFlat.h"
#include "api/OrganizationFlat.h"
#include "api/SiteFlat.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <limits>
#include <optional>
#include <ostream>
#include <string>
#include <tuple>
#include <vector>

namespace {

using namespace brimlet;

// ---- Layout ----

// Where a field lies.
struct Place
{
    size_t offset;
    size_t size;
    size_t alignment;
};

bool operator==(const Place &left, const Place &right)
{
    return left.offset == right.offset && left.size == right.size;
}

void PrintTo(const Place &place, std::ostream *out)
{
    *out << place.size << " bytes at " << place.offset;
}

// place<uint16_t *>(&FlatUser::name); another type than the field's does not compile.
template<class Type, class Flat>
Place place(Type Flat::*member)
{
    const Flat flat = {};
    const auto *start = reinterpret_cast<const char *>(&flat);
    return {static_cast<size_t>(reinterpret_cast<const char *>(&(flat.*member)) - start), sizeof(Type), alignof(Type)};
}

using Places = std::vector<Place>;

// The places that a pair of a form fills.
template<class Flat, class FlatMember, class Record, class Member>
void append(Places &places, const FlatValue<Flat, FlatMember, Record, Member> &field)
{
    places.push_back(place(field.flatMember));
}
template<class Flat, class FlatPart, class Record, class Part>
void append(Places &places, const FlatNested<Flat, FlatPart, Record, Part> &field)
{
    places.push_back(place(field.flatMember));
}
template<class Flat, class FlatPart, class Record, class Part>
void append(Places &places, const FlatList<Flat, FlatPart, Record, Part> &field)
{
    places.push_back(place(field.flatMember));
    places.push_back(place(field.flatCount));
}
template<class Flat, class Record>
void append(Places &places, const FlatNumbers<Flat, Record> &field)
{
    places.push_back(place(field.flatMember));
    places.push_back(place(field.flatCount));
}

template<class Record>
Places placesOfForm()
{
    Places places;
    std::apply([&](const auto &...field) { (append(places, field), ...); }, FlatForm<Record>::fields);
    return places;
}

// That the fields lie in this order, each as near to the one before as its alignment lets it, that there are no
// others, and that the pairs of the form fill them in the same order, each once.
template<class Record>
void expectFields(const Places &fields)
{
    size_t end = 0;
    size_t widest = 1;
    for (const Place &field : fields) {
        end = (end + field.alignment - 1) / field.alignment * field.alignment;
        EXPECT_EQ(field.offset, end);
        end += field.size;
        widest = std::max(widest, field.alignment);
    }
    EXPECT_EQ(sizeof(FlatOf<Record>), (end + widest - 1) / widest * widest);
    EXPECT_EQ(placesOfForm<Record>(), fields);
}

template<class Record>
constexpr size_t pairs = std::tuple_size_v<decltype(FlatForm<Record>::fields)>;

TEST(FieldsLieInOrder, Locale)
{
    expectFields<Locale>({place<uint32_t>(&FlatLocale::id), place<uint16_t *>(&FlatLocale::iso),
                          place<uint16_t *>(&FlatLocale::description)});
    EXPECT_EQ(pairs<Locale>, 3u);
}

TEST(FieldsLieInOrder, Domain)
{
    expectFields<Domain>({place<uint32_t>(&FlatDomain::id), place<uint16_t *>(&FlatDomain::name),
                          place<uint32_t *>(&FlatDomain::orgId), place<FlatLocale *>(&FlatDomain::locale)});
    EXPECT_EQ(pairs<Domain>, 4u);
}

TEST(FieldsLieInOrder, User)
{
    expectFields<User>({place<uint32_t>(&FlatUser::id), place<uint16_t *>(&FlatUser::name),
                        place<uint16_t *>(&FlatUser::login), place<uint16_t *>(&FlatUser::contacts),
                        place<uint8_t *>(&FlatUser::isActive), place<uint32_t *>(&FlatUser::domainId),
                        place<uint32_t *>(&FlatUser::roles), place<uint64_t *>(&FlatUser::phone),
                        place<FlatDomain *>(&FlatUser::domain), place<uint32_t *>(&FlatUser::orgId)});
    EXPECT_EQ(pairs<User>, 10u);
}

TEST(FieldsLieInOrder, Person)
{
    expectFields<Person>({place<uint32_t>(&FlatPerson::id), place<uint16_t *>(&FlatPerson::name),
                          place<uint16_t *>(&FlatPerson::phone), place<uint16_t *>(&FlatPerson::email),
                          place<uint16_t *>(&FlatPerson::postal)});
    EXPECT_EQ(pairs<Person>, 5u);
}

TEST(FieldsLieInOrder, Organization)
{
    expectFields<Organization>(
        {place<uint32_t>(&FlatOrganization::id), place<uint16_t *>(&FlatOrganization::inn),
         place<uint16_t *>(&FlatOrganization::officialName), place<uint16_t *>(&FlatOrganization::shortName),
         place<uint16_t *>(&FlatOrganization::kpp), place<uint16_t *>(&FlatOrganization::ogrn),
         place<uint16_t *>(&FlatOrganization::address), place<FlatPerson *>(&FlatOrganization::contact),
         place<FlatLocale *>(&FlatOrganization::locale)});
    EXPECT_EQ(pairs<Organization>, 9u);
}

TEST(FieldsLieInOrder, Contractor)
{
    expectFields<Contractor>({place<uint32_t>(&FlatContractor::id), place<uint16_t *>(&FlatContractor::inn),
                              place<uint32_t *>(&FlatContractor::orgId), place<uint32_t *>(&FlatContractor::type),
                              place<uint16_t *>(&FlatContractor::officialName),
                              place<uint16_t *>(&FlatContractor::name), place<uint16_t *>(&FlatContractor::extra)});
    EXPECT_EQ(pairs<Contractor>, 7u);
}

TEST(FieldsLieInOrder, Contract)
{
    expectFields<Contract>({place<uint32_t>(&FlatContract::id), place<uint16_t *>(&FlatContract::number),
                            place<FlatContractor *>(&FlatContract::contractor), place<uint16_t *>(&FlatContract::name),
                            place<uint32_t *>(&FlatContract::status), place<uint32_t *>(&FlatContract::date),
                            place<uint16_t *>(&FlatContract::description), place<uint16_t *>(&FlatContract::extra),
                            place<FlatUser *>(&FlatContract::user)});
    EXPECT_EQ(pairs<Contract>, 9u);
}

TEST(FieldsLieInOrder, Zone)
{
    expectFields<Zone>({place<uint32_t>(&FlatZone::id), place<uint16_t *>(&FlatZone::name),
                        place<uint32_t *>(&FlatZone::detector), place<uint32_t *>(&FlatZone::physic),
                        place<uint32_t *>(&FlatZone::form), place<uint32_t *>(&FlatZone::flags),
                        place<uint32_t *>(&FlatZone::delay), place<uint32_t *>(&FlatZone::scheduleId),
                        place<uint32_t *>(&FlatZone::tracert), place<uint32_t *>(&FlatZone::uidType),
                        place<uint32_t *>(&FlatZone::arm)});
    EXPECT_EQ(pairs<Zone>, 11u);
}

TEST(FieldsLieInOrder, Section)
{
    expectFields<Section>({place<uint32_t>(&FlatSection::id), place<uint16_t *>(&FlatSection::name),
                           place<uint32_t *>(&FlatSection::scheduleId), place<FlatZone *>(&FlatSection::zones),
                           place<uint32_t>(&FlatSection::zonesCount), place<uint32_t *>(&FlatSection::tracert),
                           place<uint32_t *>(&FlatSection::flags), place<uint32_t *>(&FlatSection::detector),
                           place<uint32_t *>(&FlatSection::arm), place<uint32_t *>(&FlatSection::physic),
                           place<uint32_t *>(&FlatSection::form), place<uint32_t *>(&FlatSection::delay),
                           place<uint32_t *>(&FlatSection::uidType)});
    EXPECT_EQ(pairs<Section>, 12u); // the zones and their count are one
}

TEST(FieldsLieInOrder, DeviceUser)
{
    expectFields<DeviceUser>({place<uint32_t>(&FlatDeviceUser::id), place<uint16_t *>(&FlatDeviceUser::name),
                              place<uint16_t *>(&FlatDeviceUser::comment), place<uint16_t *>(&FlatDeviceUser::phone),
                              place<uint32_t *>(&FlatDeviceUser::sections),
                              place<uint32_t>(&FlatDeviceUser::sectionsCount)});
    EXPECT_EQ(pairs<DeviceUser>, 5u);
}

TEST(FieldsLieInOrder, Device)
{
    expectFields<Device>({place<uint32_t>(&FlatDevice::id), place<uint32_t *>(&FlatDevice::account),
                          place<FlatDomain *>(&FlatDevice::domain), place<uint32_t *>(&FlatDevice::configVersion),
                          place<FlatSection *>(&FlatDevice::sections), place<uint32_t>(&FlatDevice::sectionsCount),
                          place<FlatDeviceUser *>(&FlatDevice::users), place<uint32_t>(&FlatDevice::usersCount),
                          place<uint8_t *>(&FlatDevice::isParted), place<uint32_t *>(&FlatDevice::clusterId),
                          place<uint32_t *>(&FlatDevice::domainId)});
    EXPECT_EQ(pairs<Device>, 9u);
}

TEST(FieldsLieInOrder, Location)
{
    expectFields<Location>({place<uint32_t>(&FlatLocation::id), place<double *>(&FlatLocation::latitude),
                            place<double *>(&FlatLocation::longitude)});
    EXPECT_EQ(pairs<Location>, 3u);
}

TEST(FieldsLieInOrder, Site)
{
    expectFields<Site>({place<uint32_t>(&FlatSite::id), place<uint16_t *>(&FlatSite::name),
                        place<uint16_t *>(&FlatSite::comment), place<uint16_t *>(&FlatSite::extra),
                        place<uint8_t *>(&FlatSite::isCrossing), place<FlatDomain *>(&FlatSite::domain),
                        place<uint16_t *>(&FlatSite::address), place<FlatContract *>(&FlatSite::contract),
                        place<int32_t *>(&FlatSite::contractStatus), place<uint32_t *>(&FlatSite::type),
                        place<uint32_t *>(&FlatSite::category), place<uint32_t *>(&FlatSite::armMode),
                        place<uint8_t *>(&FlatSite::isDelegated), place<FlatDevice *>(&FlatSite::devices),
                        place<uint32_t>(&FlatSite::deviceCount), place<uint32_t *>(&FlatSite::domainId),
                        place<FlatLocation *>(&FlatSite::location), place<int32_t *>(&FlatSite::contractId),
                        place<uint8_t *>(&FlatSite::isSitePlanExists)});
    EXPECT_EQ(pairs<Site>, 18u);
}

TEST(FieldsLieInOrder, Event)
{
    expectFields<Event>({place<uint32_t>(&FlatEvent::id),          place<uint32_t *>(&FlatEvent::time),
                         place<int32_t *>(&FlatEvent::deviceId),   place<uint32_t *>(&FlatEvent::sectionId),
                         place<uint32_t *>(&FlatEvent::zoneId),    place<uint8_t *>(&FlatEvent::active),
                         place<uint8_t *>(&FlatEvent::eventClass), place<uint8_t *>(&FlatEvent::detector),
                         place<uint8_t *>(&FlatEvent::reason),     place<uint32_t *>(&FlatEvent::localTime),
                         place<int32_t *>(&FlatEvent::channel),    place<uint16_t *>(&FlatEvent::data),
                         place<uint32_t *>(&FlatEvent::reviewId),  place<uint8_t *>(&FlatEvent::reviewState),
                         place<uint32_t *>(&FlatEvent::userId),    place<uint8_t *>(&FlatEvent::isClosed),
                         place<uint8_t *>(&FlatEvent::affect),     place<uint16_t *>(&FlatEvent::jData),
                         place<uint32_t *>(&FlatEvent::account),   place<uint16_t *>(&FlatEvent::sectionName),
                         place<uint16_t *>(&FlatEvent::zoneName),  place<uint16_t *>(&FlatEvent::domainName)});
    EXPECT_EQ(pairs<Event>, 22u);
}

// ---- Content ----

// The flat form of a record, released at the end.
template<class Record>
struct Filled
{
    FlatOf<Record> flat = {};

    explicit Filled(const Record &record) { fillFlat(flat, record); }
    ~Filled() { EXPECT_EQ(releaseFlat<Record>(flat), BRIMLET_DONE); }
    Filled(const Filled &) = delete;
    Filled &operator=(const Filled &) = delete;
    FlatOf<Record> *operator->() { return &flat; }
};

// The value of a cell, or nothing for a null pointer.
template<class Cell>
std::optional<Cell> value(const Cell *cell)
{
    return cell ? std::optional<Cell>(*cell) : std::nullopt;
}

// The text up to its NUL terminator, or "null".
std::string text(const uint16_t *units)
{
    return units ? QString::fromUtf16(units).toStdString() : "null";
}

template<class Record>
Record withId(quint32 id)
{
    Record record;
    record.id = id;
    return record;
}

// Whether a flat record holds nothing but its id.
template<class Flat, class FlatMember, class Record, class Member>
bool isEmptyIn(const Flat &flat, const FlatValue<Flat, FlatMember, Record, Member> &field)
{
    if constexpr (std::is_pointer_v<FlatMember>)
        return flat.*field.flatMember == nullptr;
    else
        return true;
}
template<class Flat, class FlatPart, class Record, class Part>
bool isEmptyIn(const Flat &flat, const FlatNested<Flat, FlatPart, Record, Part> &field)
{
    return flat.*field.flatMember == nullptr;
}
template<class Flat, class FlatPart, class Record, class Part>
bool isEmptyIn(const Flat &flat, const FlatList<Flat, FlatPart, Record, Part> &field)
{
    return flat.*field.flatMember == nullptr && flat.*field.flatCount == 0;
}
template<class Flat, class Record>
bool isEmptyIn(const Flat &flat, const FlatNumbers<Flat, Record> &field)
{
    return flat.*field.flatMember == nullptr && flat.*field.flatCount == 0;
}
template<class Record>
bool isEmpty(const FlatOf<Record> &flat)
{
    return std::apply([&](const auto &...field) { return (isEmptyIn(flat, field) && ...); }, FlatForm<Record>::fields);
}

Locale fullLocale()
{
    Locale locale = withId<Locale>(1);
    locale.iso = "li";
    locale.description = "ld";
    return locale;
}

Domain fullDomain()
{
    Domain domain = withId<Domain>(3);
    domain.name = "dn";
    domain.orgId = 2u;
    domain.locale = fullLocale();
    return domain;
}

User fullUser()
{
    User user = withId<User>(7);
    user.name = "un";
    user.login = "ul";
    user.contacts = "uc";
    user.isActive = true;
    user.domainId = 3u;
    user.roles = 4u;
    user.phone = Q_UINT64_C(18446744073709551615);
    user.domain = fullDomain();
    user.orgId = 2u;
    return user;
}

Person fullPerson()
{
    Person person = withId<Person>(5);
    person.name = "pn";
    person.phone = "pp";
    person.email = "pe";
    person.postal = "po";
    return person;
}

Organization fullOrganization()
{
    Organization organization = withId<Organization>(2);
    organization.inn = "oi";
    organization.officialName = "oo";
    organization.shortName = "os";
    organization.kpp = "ok";
    organization.ogrn = "og";
    organization.address = "oa";
    organization.contact = fullPerson();
    organization.locale = fullLocale();
    return organization;
}

Contractor fullContractor()
{
    Contractor contractor = withId<Contractor>(4);
    contractor.inn = "ci";
    contractor.orgId = 2u;
    contractor.type = 1u;
    contractor.officialName = "co";
    contractor.name = "cn";
    contractor.extra = "ce";
    return contractor;
}

Contract fullContract()
{
    Contract contract = withId<Contract>(11);
    contract.number = "kn";
    contract.contractor = fullContractor();
    contract.name = "kc";
    contract.status = 1u;
    contract.date = 4294967295u;
    contract.description = "kd";
    contract.extra = "ke";
    contract.user = fullUser();
    return contract;
}

Zone fullZone()
{
    Zone zone = withId<Zone>(30);
    zone.name = "zn";
    zone.detector = 31u;
    zone.physic = 32u;
    zone.form = 33u;
    zone.flags = 34u;
    zone.delay = 35u;
    zone.scheduleId = 36u;
    zone.tracert = 37u;
    zone.uidType = 38u;
    zone.arm = 39u;
    return zone;
}

Section fullSection()
{
    Section section = withId<Section>(20);
    section.name = "sn";
    section.scheduleId = 21u;
    section.zones = {fullZone(), withId<Zone>(40)};
    section.tracert = 22u;
    section.flags = 23u;
    section.detector = 24u;
    section.arm = 25u;
    section.physic = 26u;
    section.form = 27u;
    section.delay = 28u;
    section.uidType = 29u;
    return section;
}

DeviceUser fullDeviceUser()
{
    DeviceUser user = withId<DeviceUser>(8);
    user.name = "vn";
    user.comment = "vc";
    user.phone = "vp";
    user.sections = {20, 0, 4294967295u};
    return user;
}

Device fullDevice()
{
    Device device = withId<Device>(10);
    device.account = 1234u;
    device.domain = fullDomain();
    device.configVersion = 6u;
    device.sections = {withId<Section>(19), fullSection()};
    device.users = {fullDeviceUser(), withId<DeviceUser>(9)};
    device.isParted = false;
    device.clusterId = 12u;
    device.domainId = 3u;
    return device;
}

Site fullSite()
{
    Site site = withId<Site>(50);
    site.name = "tn";
    site.comment = "tc";
    site.extra = "te";
    site.isCrossing = true;
    site.domain = fullDomain();
    site.address = "ta";
    site.contract = fullContract();
    site.contractStatus = -2;
    site.type = 51u;
    site.category = 52u;
    site.armMode = 53u;
    site.isDelegated = false;
    site.devices = {fullDevice(), withId<Device>(13)};
    site.domainId = 3u;
    Location location = withId<Location>(50);
    location.latitude = 55.75;
    location.longitude = -37.5;
    site.location = location;
    site.contractId = std::numeric_limits<qint32>::min();
    site.isSitePlanExists = true;
    return site;
}

Event fullEvent()
{
    Event event = withId<Event>(60);
    event.time = 61u;
    event.deviceId = -62;
    event.sectionId = 63u;
    event.zoneId = 64u;
    event.active = quint8(65);
    event.eventClass = quint8(255);
    event.detector = quint8(67);
    event.reason = quint8(68);
    event.localTime = 69u;
    event.channel = -70;
    event.data = "ed";
    event.reviewId = 71u;
    event.reviewState = quint8(72);
    event.userId = 73u;
    event.isClosed = true;
    event.affect = false;
    event.jData = "ej";
    event.account = 74u;
    event.sectionName = "es";
    event.zoneName = "ez";
    event.domainName = "eo";
    return event;
}

TEST(FlatForms, OfAFullLocale)
{
    Filled flat(fullLocale());
    EXPECT_EQ(flat->id, 1u);
    EXPECT_EQ(text(flat->iso), "li");
    EXPECT_EQ(text(flat->description), "ld");
}

TEST(FlatForms, OfAFullDomain)
{
    Filled flat(fullDomain());
    EXPECT_EQ(flat->id, 3u);
    EXPECT_EQ(text(flat->name), "dn");
    EXPECT_EQ(value(flat->orgId), 2u);
    ASSERT_TRUE(flat->locale);
    EXPECT_EQ(flat->locale->id, 1u);
    EXPECT_EQ(text(flat->locale->iso), "li");
    EXPECT_EQ(text(flat->locale->description), "ld");
}

TEST(FlatForms, OfAFullUser)
{
    Filled flat(fullUser());
    EXPECT_EQ(flat->id, 7u);
    EXPECT_EQ(text(flat->name), "un");
    EXPECT_EQ(text(flat->login), "ul");
    EXPECT_EQ(text(flat->contacts), "uc");
    EXPECT_EQ(value(flat->isActive), uint8_t(1));
    EXPECT_EQ(value(flat->domainId), 3u);
    EXPECT_EQ(value(flat->roles), 4u);
    EXPECT_EQ(value(flat->phone), UINT64_C(18446744073709551615));
    EXPECT_EQ(value(flat->orgId), 2u);
    ASSERT_TRUE(flat->domain);
    EXPECT_EQ(flat->domain->id, 3u);
    ASSERT_TRUE(flat->domain->locale);
    EXPECT_EQ(text(flat->domain->locale->iso), "li");
}

TEST(FlatForms, OfAFullPerson)
{
    Filled flat(fullPerson());
    EXPECT_EQ(flat->id, 5u);
    EXPECT_EQ(text(flat->name), "pn");
    EXPECT_EQ(text(flat->phone), "pp");
    EXPECT_EQ(text(flat->email), "pe");
    EXPECT_EQ(text(flat->postal), "po");
}

TEST(FlatForms, OfAFullOrganization)
{
    Filled flat(fullOrganization());
    EXPECT_EQ(flat->id, 2u);
    EXPECT_EQ(text(flat->inn), "oi");
    EXPECT_EQ(text(flat->officialName), "oo");
    EXPECT_EQ(text(flat->shortName), "os");
    EXPECT_EQ(text(flat->kpp), "ok");
    EXPECT_EQ(text(flat->ogrn), "og");
    EXPECT_EQ(text(flat->address), "oa");
    ASSERT_TRUE(flat->contact);
    EXPECT_EQ(flat->contact->id, 5u);
    EXPECT_EQ(text(flat->contact->postal), "po");
    ASSERT_TRUE(flat->locale);
    EXPECT_EQ(flat->locale->id, 1u);
}

TEST(FlatForms, OfAFullContractor)
{
    Filled flat(fullContractor());
    EXPECT_EQ(flat->id, 4u);
    EXPECT_EQ(text(flat->inn), "ci");
    EXPECT_EQ(value(flat->orgId), 2u);
    EXPECT_EQ(value(flat->type), 1u);
    EXPECT_EQ(text(flat->officialName), "co");
    EXPECT_EQ(text(flat->name), "cn");
    EXPECT_EQ(text(flat->extra), "ce");
}

TEST(FlatForms, OfAFullContract)
{
    Filled flat(fullContract());
    EXPECT_EQ(flat->id, 11u);
    EXPECT_EQ(text(flat->number), "kn");
    EXPECT_EQ(text(flat->name), "kc");
    EXPECT_EQ(value(flat->status), 1u);
    EXPECT_EQ(value(flat->date), 4294967295u);
    EXPECT_EQ(text(flat->description), "kd");
    EXPECT_EQ(text(flat->extra), "ke");
    ASSERT_TRUE(flat->contractor);
    EXPECT_EQ(text(flat->contractor->name), "cn");
    ASSERT_TRUE(flat->user && flat->user->domain && flat->user->domain->locale);
    EXPECT_EQ(text(flat->user->name), "un");
    EXPECT_EQ(text(flat->user->domain->locale->description), "ld");
}

TEST(FlatForms, OfAFullZone)
{
    Filled flat(fullZone());
    EXPECT_EQ(flat->id, 30u);
    EXPECT_EQ(text(flat->name), "zn");
    EXPECT_EQ(value(flat->detector), 31u);
    EXPECT_EQ(value(flat->physic), 32u);
    EXPECT_EQ(value(flat->form), 33u);
    EXPECT_EQ(value(flat->flags), 34u);
    EXPECT_EQ(value(flat->delay), 35u);
    EXPECT_EQ(value(flat->scheduleId), 36u);
    EXPECT_EQ(value(flat->tracert), 37u);
    EXPECT_EQ(value(flat->uidType), 38u);
    EXPECT_EQ(value(flat->arm), 39u);
}

TEST(FlatForms, OfAFullSection)
{
    Filled flat(fullSection());
    EXPECT_EQ(flat->id, 20u);
    EXPECT_EQ(text(flat->name), "sn");
    EXPECT_EQ(value(flat->scheduleId), 21u);
    EXPECT_EQ(value(flat->tracert), 22u);
    EXPECT_EQ(value(flat->flags), 23u);
    EXPECT_EQ(value(flat->detector), 24u);
    EXPECT_EQ(value(flat->arm), 25u);
    EXPECT_EQ(value(flat->physic), 26u);
    EXPECT_EQ(value(flat->form), 27u);
    EXPECT_EQ(value(flat->delay), 28u);
    EXPECT_EQ(value(flat->uidType), 29u);
    ASSERT_EQ(flat->zonesCount, 2u);
    EXPECT_EQ(flat->zones[0].id, 30u);
    EXPECT_EQ(value(flat->zones[0].arm), 39u);
    EXPECT_EQ(flat->zones[1].id, 40u);
    EXPECT_TRUE(isEmpty<Zone>(flat->zones[1]));
}

TEST(FlatForms, OfAFullDeviceUser)
{
    Filled flat(fullDeviceUser());
    EXPECT_EQ(flat->id, 8u);
    EXPECT_EQ(text(flat->name), "vn");
    EXPECT_EQ(text(flat->comment), "vc");
    EXPECT_EQ(text(flat->phone), "vp");
    ASSERT_EQ(flat->sectionsCount, 3u);
    EXPECT_EQ(std::vector<uint32_t>(flat->sections, flat->sections + 3), (std::vector<uint32_t>{20, 0, 4294967295u}));
}

TEST(FlatForms, OfAFullDevice)
{
    Filled flat(fullDevice());
    EXPECT_EQ(flat->id, 10u);
    EXPECT_EQ(value(flat->account), 1234u);
    EXPECT_EQ(value(flat->configVersion), 6u);
    EXPECT_EQ(value(flat->isParted), uint8_t(0));
    EXPECT_EQ(value(flat->clusterId), 12u);
    EXPECT_EQ(value(flat->domainId), 3u);
    ASSERT_TRUE(flat->domain);
    EXPECT_EQ(text(flat->domain->name), "dn");
    ASSERT_EQ(flat->sectionsCount, 2u);
    EXPECT_EQ(flat->sections[0].id, 19u);
    EXPECT_TRUE(isEmpty<Section>(flat->sections[0]));
    EXPECT_EQ(flat->sections[1].id, 20u);
    EXPECT_EQ(flat->sections[1].zonesCount, 2u);
    ASSERT_EQ(flat->usersCount, 2u);
    EXPECT_EQ(text(flat->users[0].name), "vn");
    EXPECT_EQ(flat->users[1].id, 9u);
    EXPECT_TRUE(isEmpty<DeviceUser>(flat->users[1]));
}

TEST(FlatForms, OfAFullSite)
{
    Filled flat(fullSite());
    EXPECT_EQ(flat->id, 50u);
    EXPECT_EQ(text(flat->name), "tn");
    EXPECT_EQ(text(flat->comment), "tc");
    EXPECT_EQ(text(flat->extra), "te");
    EXPECT_EQ(value(flat->isCrossing), uint8_t(1));
    EXPECT_EQ(text(flat->address), "ta");
    EXPECT_EQ(value(flat->contractStatus), -2);
    EXPECT_EQ(value(flat->type), 51u);
    EXPECT_EQ(value(flat->category), 52u);
    EXPECT_EQ(value(flat->armMode), 53u);
    EXPECT_EQ(value(flat->isDelegated), uint8_t(0));
    EXPECT_EQ(value(flat->domainId), 3u);
    EXPECT_EQ(value(flat->contractId), std::numeric_limits<int32_t>::min());
    EXPECT_EQ(value(flat->isSitePlanExists), uint8_t(1));
    ASSERT_TRUE(flat->domain);
    EXPECT_EQ(text(flat->domain->name), "dn");
    ASSERT_TRUE(flat->contract);
    EXPECT_EQ(text(flat->contract->number), "kn");
    ASSERT_EQ(flat->deviceCount, 2u);
    EXPECT_EQ(flat->devices[0].usersCount, 2u);
    EXPECT_EQ(flat->devices[1].id, 13u);
}

TEST(FlatForms, OfAFullLocation)
{
    Filled flat(fullSite());
    ASSERT_TRUE(flat->location);
    EXPECT_EQ(flat->location->id, 50u);
    EXPECT_EQ(value(flat->location->latitude), 55.75);
    EXPECT_EQ(value(flat->location->longitude), -37.5);
}

TEST(FlatForms, OfAFullEvent)
{
    Filled flat(fullEvent());
    EXPECT_EQ(flat->id, 60u);
    EXPECT_EQ(value(flat->time), 61u);
    EXPECT_EQ(value(flat->deviceId), -62);
    EXPECT_EQ(value(flat->sectionId), 63u);
    EXPECT_EQ(value(flat->zoneId), 64u);
    EXPECT_EQ(value(flat->active), uint8_t(65));
    EXPECT_EQ(value(flat->eventClass), uint8_t(255));
    EXPECT_EQ(value(flat->detector), uint8_t(67));
    EXPECT_EQ(value(flat->reason), uint8_t(68));
    EXPECT_EQ(value(flat->localTime), 69u);
    EXPECT_EQ(value(flat->channel), -70);
    EXPECT_EQ(text(flat->data), "ed");
    EXPECT_EQ(value(flat->reviewId), 71u);
    EXPECT_EQ(value(flat->reviewState), uint8_t(72));
    EXPECT_EQ(value(flat->userId), 73u);
    EXPECT_EQ(value(flat->isClosed), uint8_t(1));
    EXPECT_EQ(value(flat->affect), uint8_t(0));
    EXPECT_EQ(text(flat->jData), "ej");
    EXPECT_EQ(value(flat->account), 74u);
    EXPECT_EQ(text(flat->sectionName), "es");
    EXPECT_EQ(text(flat->zoneName), "ez");
    EXPECT_EQ(text(flat->domainName), "eo");
}

TEST(FlatForms, KeepAbsentApartFromZeroAndEmpty)
{
    User zeros = withId<User>(0);
    zeros.name = "";
    zeros.isActive = false;
    zeros.roles = 0u;
    zeros.phone = quint64(0);
    Filled flat(zeros);
    EXPECT_EQ(text(flat->name), "");
    EXPECT_EQ(text(flat->login), "null");
    EXPECT_EQ(value(flat->isActive), uint8_t(0));
    EXPECT_EQ(value(flat->roles), 0u);
    EXPECT_EQ(value(flat->domainId), std::nullopt);
    EXPECT_EQ(value(flat->phone), uint64_t(0));
}

TEST(FlatForms, KeepAnEmbeddedRecordThatHoldsNothing)
{
    Domain domain = withId<Domain>(3);
    domain.locale = withId<Locale>(0);
    Filled flat(domain);
    ASSERT_TRUE(flat->locale);
    EXPECT_EQ(flat->locale->id, 0u);
    EXPECT_TRUE(isEmpty<Locale>(*flat->locale));
}

// Of each record, that one with nothing in it has null pointers only, and that one with everything has none after its
// release but keeps its id.
template<class Record>
void expectEmptyAndEmptied(const Record &full)
{
    FlatOf<Record> empty = {};
    fillFlat(empty, withId<Record>(77));
    EXPECT_EQ(empty.id, 77u);
    EXPECT_TRUE(isEmpty<Record>(empty));
    EXPECT_EQ(releaseFlat<Record>(empty), BRIMLET_DONE);
    EXPECT_TRUE(isEmpty<Record>(empty));

    FlatOf<Record> flat = {};
    fillFlat(flat, full);
    EXPECT_FALSE(isEmpty<Record>(flat));
    EXPECT_EQ(releaseFlat<Record>(flat), BRIMLET_DONE);
    EXPECT_TRUE(isEmpty<Record>(flat));
    EXPECT_EQ(flat.id, full.id);
    EXPECT_EQ(releaseFlat<Record>(flat), BRIMLET_DONE); // again, with nothing to release
}

TEST(FlatForms, HoldNothingOfAnEmptyRecordAndNothingAfterTheirRelease)
{
    expectEmptyAndEmptied(fullLocale());
    expectEmptyAndEmptied(fullDomain());
    expectEmptyAndEmptied(fullUser());
    expectEmptyAndEmptied(fullPerson());
    expectEmptyAndEmptied(fullOrganization());
    expectEmptyAndEmptied(fullContractor());
    expectEmptyAndEmptied(fullContract());
    expectEmptyAndEmptied(fullZone());
    expectEmptyAndEmptied(fullSection());
    expectEmptyAndEmptied(fullDeviceUser());
    expectEmptyAndEmptied(fullDevice());
    expectEmptyAndEmptied(*fullSite().location);
    expectEmptyAndEmptied(fullSite());
    expectEmptyAndEmptied(fullEvent());
}

TEST(FlatForms, DoNotPointIntoTheirRecord)
{
    std::optional<User> user = fullUser();
    Filled flat(*user);
    user.reset();
    EXPECT_EQ(text(flat->name), "un");
    EXPECT_EQ(value(flat->phone), UINT64_C(18446744073709551615));
    EXPECT_EQ(text(flat->domain->name), "dn");
}

// ---- Texts ----

std::vector<uint16_t> unitsOf(const QString &string, size_t count)
{
    uint16_t *block = copyText(string);
    std::vector<uint16_t> units(block, block + count);
    release(block);
    return units;
}

TEST(TextCopy, EndsInAZeroUnit)
{
    EXPECT_EQ(unitsOf("ab", 3), (std::vector<uint16_t>{'a', 'b', 0}));
}

TEST(TextCopy, OfAnEmptyTextIsTheZeroUnitAlone)
{
    EXPECT_EQ(unitsOf("", 1), std::vector<uint16_t>{0});
}

TEST(TextCopy, OfAPresentNullTextIsTheZeroUnitAlone)
{
    EXPECT_EQ(unitsOf(QString(), 1), std::vector<uint16_t>{0});
}

TEST(TextCopy, OfAnAbsentTextIsNull)
{
    EXPECT_EQ(copyText(std::nullopt), nullptr);
}

TEST(TextCopy, KeepsAZeroUnitAndWhatIsBehindIt)
{
    const QString string(QLatin1String("a\0b\0", 4));
    EXPECT_EQ(unitsOf(string, 5), (std::vector<uint16_t>{'a', 0, 'b', 0, 0}));
}

TEST(TextCopy, KeepsTheUnitsOfASurrogatePairAndALoneHalf)
{
    EXPECT_EQ(unitsOf(QString::fromUtf8("😀"), 3), (std::vector<uint16_t>{0xd83d, 0xde00, 0}));
    EXPECT_EQ(unitsOf(QString(QChar(0xd83d)), 2), (std::vector<uint16_t>{0xd83d, 0}));
}

TEST(TextCopy, HasNoGreatestLength)
{
    const std::vector<uint16_t> units = unitsOf(QString(100000, 'x'), 100001);
    EXPECT_EQ(units.front(), 'x');
    EXPECT_EQ(units[99999], 'x');
    EXPECT_EQ(units[100000], 0);
}

TEST(TextCopy, CarriesAZeroUnitIntoAFlatRecord)
{
    Locale locale = withId<Locale>(1);
    locale.iso = QString(QLatin1String("a\0b", 3));
    Filled flat(locale);
    EXPECT_EQ(std::vector<uint16_t>(flat->iso, flat->iso + 4), (std::vector<uint16_t>{'a', 0, 'b', 0}));
}

// ---- Blocks ----

TEST(Blocks, AreAllZero)
{
    FlatSite *block = allocateZeroed<FlatSite>(3);
    const auto *bytes = reinterpret_cast<const unsigned char *>(block);
    EXPECT_EQ(std::vector<unsigned char>(bytes, bytes + 3 * sizeof(FlatSite)),
              std::vector<unsigned char>(3 * sizeof(FlatSite), 0));
    release(block);
    EXPECT_EQ(block, nullptr);
}

TEST(Blocks, ThatAreNullAreReleasedWithoutEffect)
{
    uint32_t *block = nullptr;
    release(block);
    EXPECT_EQ(block, nullptr);
}

TEST(FlatArrays, HoldTheRecordsOneAfterTheOther)
{
    FlatLocale *locales = flatArray(std::vector<Locale>{withId<Locale>(5), fullLocale(), withId<Locale>(6)});
    EXPECT_EQ(locales[0].id, 5u);
    EXPECT_TRUE(isEmpty<Locale>(locales[0]));
    EXPECT_EQ(locales[1].id, 1u);
    EXPECT_EQ(text(locales[1].iso), "li");
    EXPECT_EQ(locales[2].id, 6u);
    EXPECT_EQ(releaseArray<Locale>(locales, 3), BRIMLET_DONE);
    EXPECT_EQ(locales, nullptr);
}

TEST(FlatArrays, OfNothingAreNull)
{
    EXPECT_EQ(flatArray(std::vector<Locale>()), nullptr);
}

// ---- Releases that are refused ----

// A flat record that holds everything, of which a test spoils a count.
template<class Record>
FlatOf<Record> filled(const Record &record)
{
    FlatOf<Record> flat = {};
    fillFlat(flat, record);
    return flat;
}

TEST(Release, OfASectionStopsAtItsZonesWithoutACount)
{
    FlatSection flat = filled(fullSection());
    flat.zonesCount = 0;
    EXPECT_EQ(releaseFlat<Section>(flat), BRIMLET_REFUSED);
    EXPECT_FALSE(flat.name || flat.scheduleId);
    EXPECT_TRUE(flat.zones);
    EXPECT_EQ(text(flat.zones[0].name), "zn");
    EXPECT_TRUE(flat.tracert && flat.flags && flat.detector && flat.arm && flat.physic && flat.form && flat.delay
                && flat.uidType);

    flat.zonesCount = 2;
    EXPECT_EQ(releaseFlat<Section>(flat), BRIMLET_DONE);
    EXPECT_TRUE(isEmpty<Section>(flat));
}

TEST(Release, OfASectionStopsAtACountWithoutZones)
{
    Section section = fullSection();
    section.zones.clear();
    FlatSection flat = filled(section);
    flat.zonesCount = 3;
    EXPECT_EQ(releaseFlat<Section>(flat), BRIMLET_REFUSED);
    EXPECT_FALSE(flat.name || flat.scheduleId || flat.zones);
    EXPECT_EQ(flat.zonesCount, 3u);
    EXPECT_TRUE(flat.tracert && flat.flags && flat.detector && flat.arm && flat.physic && flat.form && flat.delay
                && flat.uidType);

    flat.zonesCount = 0;
    EXPECT_EQ(releaseFlat<Section>(flat), BRIMLET_DONE);
    EXPECT_TRUE(isEmpty<Section>(flat));
}

TEST(Release, OfADeviceStopsAtItsSections)
{
    FlatDevice flat = filled(fullDevice());
    flat.sectionsCount = 0;
    EXPECT_EQ(releaseFlat<Device>(flat), BRIMLET_REFUSED);
    EXPECT_FALSE(flat.account || flat.domain || flat.configVersion);
    EXPECT_TRUE(flat.sections && flat.users && flat.isParted && flat.clusterId && flat.domainId);
    EXPECT_EQ(flat.usersCount, 2u);

    flat.sectionsCount = 2;
    EXPECT_EQ(releaseFlat<Device>(flat), BRIMLET_DONE);
    EXPECT_TRUE(isEmpty<Device>(flat));
}

TEST(Release, OfADeviceStopsAtItsUsersBehindItsSections)
{
    FlatDevice flat = filled(fullDevice());
    flat.usersCount = 0;
    EXPECT_EQ(releaseFlat<Device>(flat), BRIMLET_REFUSED);
    EXPECT_FALSE(flat.account || flat.domain || flat.configVersion || flat.sections);
    EXPECT_EQ(flat.sectionsCount, 0u);
    EXPECT_TRUE(flat.users && flat.isParted && flat.clusterId && flat.domainId);

    flat.usersCount = 2;
    EXPECT_EQ(releaseFlat<Device>(flat), BRIMLET_DONE);
    EXPECT_TRUE(isEmpty<Device>(flat));
}

TEST(Release, OfADeviceStopsAtAUserCountWithoutUsers)
{
    Device device = fullDevice();
    device.users.clear();
    FlatDevice flat = filled(device);
    flat.usersCount = 1;
    EXPECT_EQ(releaseFlat<Device>(flat), BRIMLET_REFUSED);
    EXPECT_FALSE(flat.sections || flat.users);
    EXPECT_TRUE(flat.isParted && flat.clusterId && flat.domainId);

    flat.usersCount = 0;
    EXPECT_EQ(releaseFlat<Device>(flat), BRIMLET_DONE);
    EXPECT_TRUE(isEmpty<Device>(flat));
}

TEST(Release, OfADeviceStopsAtTheZonesOfASection)
{
    FlatDevice flat = filled(fullDevice());
    flat.sections[1].zonesCount = 0;
    EXPECT_EQ(releaseFlat<Device>(flat), BRIMLET_REFUSED);
    EXPECT_FALSE(flat.configVersion);
    ASSERT_TRUE(flat.sections);
    EXPECT_EQ(flat.sectionsCount, 2u);
    EXPECT_FALSE(flat.sections[1].name);
    EXPECT_TRUE(flat.sections[1].zones && flat.sections[1].tracert);
    EXPECT_TRUE(flat.users && flat.isParted && flat.clusterId && flat.domainId);

    flat.sections[1].zonesCount = 2;
    EXPECT_EQ(releaseFlat<Device>(flat), BRIMLET_DONE);
    EXPECT_TRUE(isEmpty<Device>(flat));
}

TEST(Release, OfASiteStopsAtItsDevices)
{
    FlatSite flat = filled(fullSite());
    flat.deviceCount = 0;
    EXPECT_EQ(releaseFlat<Site>(flat), BRIMLET_REFUSED);
    EXPECT_FALSE(flat.name || flat.comment || flat.extra || flat.isCrossing || flat.domain || flat.address
                 || flat.contract || flat.contractStatus || flat.type || flat.category || flat.armMode
                 || flat.isDelegated);
    EXPECT_TRUE(flat.devices && flat.domainId && flat.location && flat.contractId && flat.isSitePlanExists);

    flat.deviceCount = 2;
    EXPECT_EQ(releaseFlat<Site>(flat), BRIMLET_DONE);
    EXPECT_TRUE(isEmpty<Site>(flat));
}

TEST(Release, OfASiteStopsAtADeviceCountWithoutDevices)
{
    Site site = fullSite();
    site.devices.clear();
    FlatSite flat = filled(site);
    flat.deviceCount = 1;
    EXPECT_EQ(releaseFlat<Site>(flat), BRIMLET_REFUSED);
    EXPECT_FALSE(flat.isDelegated);
    EXPECT_TRUE(flat.domainId && flat.location && flat.contractId && flat.isSitePlanExists);

    flat.deviceCount = 0;
    EXPECT_EQ(releaseFlat<Site>(flat), BRIMLET_DONE);
    EXPECT_TRUE(isEmpty<Site>(flat));
}

TEST(Release, OfASiteStopsAtTheUsersOfADevice)
{
    FlatSite flat = filled(fullSite());
    flat.devices[0].usersCount = 0;
    EXPECT_EQ(releaseFlat<Site>(flat), BRIMLET_REFUSED);
    ASSERT_TRUE(flat.devices);
    EXPECT_EQ(flat.deviceCount, 2u);
    EXPECT_FALSE(flat.devices[0].sections);
    EXPECT_TRUE(flat.devices[0].users && flat.devices[0].isParted);
    EXPECT_TRUE(flat.domainId && flat.location && flat.contractId && flat.isSitePlanExists);

    flat.devices[0].usersCount = 2;
    EXPECT_EQ(releaseFlat<Site>(flat), BRIMLET_DONE);
    EXPECT_TRUE(isEmpty<Site>(flat));
}

TEST(Release, OfADeviceUserDoesNotLookAtTheCountOfItsSections)
{
    FlatDeviceUser flat = filled(fullDeviceUser());
    flat.sectionsCount = 0;
    EXPECT_EQ(releaseFlat<DeviceUser>(flat), BRIMLET_DONE);
    EXPECT_TRUE(isEmpty<DeviceUser>(flat));

    flat.sectionsCount = 3;
    EXPECT_EQ(releaseFlat<DeviceUser>(flat), BRIMLET_DONE);
    EXPECT_TRUE(isEmpty<DeviceUser>(flat));
}

TEST(Release, OfAnArrayStopsAtTheFirstRefusedElement)
{
    FlatSection *sections = flatArray(std::vector<Section>{fullSection(), fullSection(), fullSection()});
    sections[1].zonesCount = 0;
    EXPECT_EQ(releaseArray<Section>(sections, 3), BRIMLET_REFUSED);
    ASSERT_TRUE(sections);
    EXPECT_TRUE(isEmpty<Section>(sections[0]));
    EXPECT_FALSE(sections[1].name);
    EXPECT_TRUE(sections[1].tracert);
    EXPECT_EQ(text(sections[2].name), "sn");
    EXPECT_EQ(sections[2].zonesCount, 2u);

    sections[1].zonesCount = 2;
    EXPECT_EQ(releaseArray<Section>(sections, 3), BRIMLET_DONE);
    EXPECT_EQ(sections, nullptr);
}

// ---- The functions of the clients ----

TEST(FreeFunctions, RefuseNull)
{
    EXPECT_EQ(freeLocale(nullptr), 10u);
    EXPECT_EQ(freeDomain(nullptr), 10u);
    EXPECT_EQ(freeUser(nullptr), 10u);
    EXPECT_EQ(freeOrganization(nullptr), 10u);
    EXPECT_EQ(freeContractor(nullptr), 10u);
    EXPECT_EQ(freeContract(nullptr), 10u);
    EXPECT_EQ(freeDevice(nullptr), 10u);
    EXPECT_EQ(freeSection(nullptr), 10u);
    EXPECT_EQ(freeZone(nullptr), 10u);
    EXPECT_EQ(freeSite(nullptr), 10u);
    EXPECT_EQ(freeEvent(nullptr), 10u);
}

// Whether an array's function refuses null and a count of 0, and releases what it then is given in full.
template<class Record>
void expectArrayFunction(uint32_t (*freeArray)(FlatOf<Record> *, uint32_t), const Record &full)
{
    EXPECT_EQ(freeArray(nullptr, 0), 10u);
    EXPECT_EQ(freeArray(nullptr, 2), 10u);
    FlatOf<Record> *array = flatArray(std::vector<Record>{withId<Record>(77), full});
    EXPECT_EQ(freeArray(array, 0), 10u);
    EXPECT_EQ(array[0].id, 77u);
    EXPECT_FALSE(isEmpty<Record>(array[1]));
    EXPECT_EQ(freeArray(array, 2), 0u);
}

TEST(FreeFunctions, OfArraysRefuseNullAndACountOf0)
{
    expectArrayFunction<Locale>(freeLocalesArray, fullLocale());
    expectArrayFunction<Domain>(freeDomainsArray, fullDomain());
    expectArrayFunction<User>(freeUsersArray, fullUser());
    expectArrayFunction<Organization>(freeOrganizationsArray, fullOrganization());
    expectArrayFunction<Contractor>(freeContractorsArray, fullContractor());
    expectArrayFunction<Contract>(freeContractsArray, fullContract());
    expectArrayFunction<Device>(freeDevicesArray, fullDevice());
    expectArrayFunction<Section>(freeSectionsArray, fullSection());
    expectArrayFunction<Zone>(freeZonesArray, fullZone());
    expectArrayFunction<Site>(freeSitesArray, fullSite());
    expectArrayFunction<Event>(freeEventsArray, fullEvent());
}

TEST(FreeFunctions, LeaveARefusedRecordAllocated)
{
    auto *section = allocateZeroed<FlatSection>();
    fillFlat(*section, fullSection());
    section->zonesCount = 0;
    EXPECT_EQ(freeSection(section), 10u);
    EXPECT_EQ(section->id, 20u);
    EXPECT_TRUE(section->zones && section->uidType);

    section->zonesCount = 2;
    EXPECT_EQ(freeSection(section), 0u);
}

} // namespace
