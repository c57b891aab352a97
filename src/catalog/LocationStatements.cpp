#include "catalog/Statements.h"
#include "catalog/TableCatalog.h"

namespace brimlet {

void TableCatalog::prepareLocationsTable(QSqlQuery &query) const
{
    prepare(query, createTableText(locations, LocationFields::tableOrder));
}

void TableCatalog::prepareLocationsInsert(QSqlQuery &query, const std::vector<Site> &records) const
{
    prepare(query, insertText(locations.table, columnsOf(locations, LocationFields::tableOrder)));
    auto batch = batchWithParents<0>(LocationFields::tableOrder);
    for (const Site &site : records)
        if (site.location)
            batch.add(*site.location);
    batch.bind(query);
}

void TableCatalog::prepareLocationReplace(QSqlQuery &query, const Location &location) const
{
    preparePartialReplace(query, locations.table, presentColumns(locations, location, LocationFields::tableOrder));
}

void TableCatalog::prepareLocationSelectById(QSqlQuery &query, quint32 id) const
{
    prepare(query, selectAllText(locations.table) + where(locations.id.column), {id});
}

LocationColumns::LocationColumns(const TableCatalog &tables, ResultColumns &columns)
    : RowPart(tables.locations, columns)
{
}

void TableCatalog::readLocationRow(Location &location, const QSqlQuery &query, const LocationColumns &columns)
{
    columns.read(location, query);
}

} // namespace brimlet
