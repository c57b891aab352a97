#include "catalog/Statements.h"
#include "catalog/TableCatalog.h"

namespace brimlet {

void TableCatalog::prepareEventsTable(QSqlQuery &query) const
{
    prepare(query, createTableText(events, EventFields::tableOrder));
}

void TableCatalog::prepareEventsTimeIndex(QSqlQuery &query) const
{
    prepare(query, QStringLiteral("CREATE INDEX IF NOT EXISTS %1 ON %2 (%3)")
                       .arg(events.timeIndex, events.table, events.time.column));
}

void TableCatalog::prepareEventsInsert(QSqlQuery &query, const std::vector<Event> &records) const
{
    prepare(query, insertText(events.table, columnsOf(events, EventFields::tableOrder)));
    bindBatch(query, records, EventFields::tableOrder);
}

// The select of every read of events. An event of an unknown device is found by its id only, so the caller chooses the
// join with the devices.
//
// SELECT EventsId,EventsTime,EventsDeviceId,EventsSectionId,EventsZoneId,EventsActive,EventsClass,EventsDetector,
//     EventsReason,EventsLocalTime,EventsChannel,EventsData,EventsReviewId,EventsReviewState,EventsUserId,
//     EventsIsClosed,EventsAffect,EventsJData,DevicesAccount,SectionsName,ZonesName,DomainsName
// FROM Events
// INNER JOIN Devices ON EventsDeviceId = DevicesId
// LEFT JOIN Sections ON EventsDeviceId = SectionsDeviceId AND EventsSectionId = SectionsSectionId
// LEFT JOIN Zones ON EventsDeviceId = ZonesDeviceId AND EventsSectionId = ZonesSectionId AND EventsZoneId = ZonesZoneId
// LEFT JOIN Users ON EventsUserId = UsersId
// LEFT JOIN Domains ON UsersDomainId = DomainsId
QString TableCatalog::prepareEventsSelect(bool innerDevices) const
{
    return selectText(
               columnsOf(events, EventFields::tableOrder)
                   + QStringList{devices.account.column, sections.name.column, zones.name.column, domains.name.column},
               events.table)
         + QStringLiteral(" %1 JOIN %2 ON %3 = %4")
               .arg(innerDevices ? QStringLiteral("INNER") : QStringLiteral("LEFT"), devices.table,
                    events.deviceId.column, devices.id.column)
         + leftJoin(sections.table, events.deviceId.column, sections.deviceId.column)
         + andOn(events.sectionId.column, sections.sectionId.column)
         + leftJoin(zones.table, events.deviceId.column, zones.deviceId.column)
         + andOn(events.sectionId.column, zones.sectionId.column) + andOn(events.zoneId.column, zones.zoneId.column)
         + leftJoin(users.table, events.userId.column, users.id.column)
         + leftJoin(domains.table, users.domainId.column, domains.id.column);
}

void TableCatalog::prepareEventSelectById(QSqlQuery &query, quint32 id) const
{
    prepare(query, prepareEventsSelect(false) + where(events.id.column), {id});
}

void TableCatalog::prepareEventsSelectByTime(QSqlQuery &query, quint32 from, quint32 to) const
{
    prepare(query, prepareEventsSelect(true) + QStringLiteral(" WHERE %1 BETWEEN ? AND ?").arg(events.time.column),
            {from, to});
}

void TableCatalog::prepareEventsSelectByIds(QSqlQuery &query, const std::vector<quint32> &ids) const
{
    QString text = prepareEventsSelect(true) + QStringLiteral(" WHERE %1 IN (").arg(events.id.column);
    for (const quint32 id : ids)
        text += QString::number(id) + QLatin1Char(',');
    text.chop(1);
    prepare(query, text + QLatin1Char(')'));
}

void TableCatalog::prepareAffectEventsSelect(QSqlQuery &query) const
{
    prepare(query, prepareEventsSelect(true) + QStringLiteral(" WHERE %1 = 1").arg(events.affect.column));
}

void TableCatalog::prepareEventExists(QSqlQuery &query, quint32 id) const
{
    prepare(query, selectText({events.id.column}, events.table) + where(events.id.column), {id});
}

void TableCatalog::prepareAffectFlagRemoval(QSqlQuery &query, quint32 id) const
{
    prepare(
        query,
        QStringLiteral("UPDATE %1 SET %2 = 0 WHERE %3 = ?").arg(events.table, events.affect.column, events.id.column),
        {id});
}

void TableCatalog::prepareEventsDeleteBeforeDate(QSqlQuery &query, quint32 date) const
{
    prepare(query,
            deleteText(events.table)
                + QStringLiteral(" WHERE %1 <= ? AND %2 = 0").arg(events.time.column, events.affect.column),
            {date});
}

EventColumns::EventColumns(const TableCatalog &tables, ResultColumns &columns)
    : RowPart(tables.events, columns)
    , account(columns.find(tables.devices.account.column))
    , sectionName(columns.find(tables.sections.name.column))
    , zoneName(columns.find(tables.zones.name.column))
    , domainName(columns.find(tables.domains.name.column))
{
}

void TableCatalog::readEventRow(Event &event, const QSqlQuery &query, const EventColumns &columns)
{
    columns.read(event, query);
    event.account = readCell<quint32>(query, columns.account);
    event.sectionName = readCell<QString>(query, columns.sectionName);
    event.zoneName = readCell<QString>(query, columns.zoneName);
    event.domainName = readCell<QString>(query, columns.domainName);
}

} // namespace brimlet
