#pragma once

#include "catalog/ContractsTable.h"
#include "records/Site.h"

namespace brimlet {

// One location a site, with the site's id.
struct LocationsTable : Table
{
    LocationsTable() : Table("Locations") {}

    IdFieldDesc id = idField("Id", "", "", "");
    FieldDesc latitude = field("Latitude", "lat");
    FieldDesc longitude = field("Longitude", "lon");
};

namespace LocationFields {

inline constexpr auto id = mapped(&Location::id, &LocationsTable::id);
inline constexpr auto latitude = mapped(&Location::latitude, &LocationsTable::latitude);
inline constexpr auto longitude = mapped(&Location::longitude, &LocationsTable::longitude);

inline constexpr auto tableOrder = inOrder(id, latitude, longitude); // also that of selects

} // namespace LocationFields

// The columns of a result that hold a location.
struct LocationColumns : RowPart<LocationFields::tableOrder>
{
    LocationColumns(const TableCatalog &tables, ResultColumns &columns);
};

struct SitesTable : Table
{
    SitesTable() : Table("Sites") {}

    IdFieldDesc id = idField("Id", "id", "site_id", "id"); // added under "id", deleted under "site_id"
    FieldDesc name = field("Name", "name");
    FieldDesc comment = field("Comment", "comment");
    FieldDesc extra = field("Extra", "extra");
    FieldDesc isCrossing = field("IsCrossing", "is_crossing");
    FieldDesc domainId = field("DomainId", "domain");
    FieldDesc address = field("Address", "address_text");
    FieldDesc contractId = field("ContractId", "contract_id");
    FieldDesc contractStatus = field("ContractStatus", "contract_status");
    FieldDesc type = field("Type", "type");
    FieldDesc category = field("Category", "category");
    FieldDesc armMode = field("ArmMode", "arm_mode");
    FieldDesc isDelegated = field("IsDelegated", "delegated");
    FieldDesc isSitePlanExists = field("IsSitePlanExists", "site_plan");
    FieldDesc location = keyOnly("location");
    FieldDesc devices = keyOnly("devices");
};

namespace SiteFields {

// Reads a flag as a number that is not 0, unlike every other flag.
inline bool readNonZero(QVariant &cell)
{
    return cell.toUInt() != 0;
}

inline constexpr auto id = mapped(&Site::id, &SitesTable::id);
inline constexpr auto name = mapped(&Site::name, &SitesTable::name);
inline constexpr auto comment = mapped(&Site::comment, &SitesTable::comment);
inline constexpr auto extra = mapped(&Site::extra, &SitesTable::extra);
inline constexpr auto isCrossing = mapped(&Site::isCrossing, &SitesTable::isCrossing);
inline constexpr auto domainId = mapped(&Site::domainId, &SitesTable::domainId);
inline constexpr auto address = mapped(&Site::address, &SitesTable::address);
inline constexpr auto contract = mapped(&Site::contract, &SitesTable::contractId);
inline constexpr auto contractId = mapped(&Site::contractId, &SitesTable::contractId).absentAs(QVariant::UInt);
inline constexpr auto contractStatus =
    mapped(&Site::contractStatus, &SitesTable::contractStatus).absentAs(QVariant::UInt);
inline constexpr auto type = mapped(&Site::type, &SitesTable::type);
inline constexpr auto category = mapped(&Site::category, &SitesTable::category);
inline constexpr auto armMode = mapped(&Site::armMode, &SitesTable::armMode);
inline constexpr auto isDelegated = mapped(&Site::isDelegated, &SitesTable::isDelegated);
inline constexpr auto isSitePlanExists =
    mapped(&Site::isSitePlanExists, &SitesTable::isSitePlanExists).readBy(readNonZero).notSearchable();

inline constexpr auto tableOrder = // also that of documents and searches
    inOrder(id, name, comment, extra, isCrossing, domainId, address, contractId, contractStatus, type, category,
            armMode, isDelegated, isSitePlanExists);
inline constexpr auto recordOrder = // that of updates: one column twice, by an embedded contract and by its id alone
    inOrder(id, name, comment, extra, isCrossing, address, contract, contractStatus, type, category, armMode,
            isDelegated, domainId, contractId, isSitePlanExists);
inline constexpr auto selectOrder = withoutEmbedded(recordOrder);

inline constexpr auto labelOrder =
    inOrder(mapped(&SiteLabel::name, &SitesTable::name), mapped(&SiteLabel::address, &SitesTable::address));

} // namespace SiteFields

// The columns of a result that hold a site with its location and its contract. A separate query reads
// the site's own domain.
struct SiteColumns : RowPart<SiteFields::selectOrder>
{
    SiteColumns(const TableCatalog &tables, ResultColumns &columns);

    LocationColumns location;
    ContractColumns contract;
};

// The columns of a result that hold a site's name and address.
struct SiteLabelColumns : RowPart<SiteFields::labelOrder>
{
    SiteLabelColumns(const TableCatalog &tables, ResultColumns &columns);
};

} // namespace brimlet
