#include "catalog/Statements.h"
#include "catalog/TableCatalog.h"

namespace brimlet {

void TableCatalog::prepareSectionsTable(QSqlQuery &query) const
{
    prepare(query, createTableText(sections, {sections.deviceId.column}, SectionFields::tableOrder,
                                   {sections.deviceId.column, sections.sectionId.column}));
}

void TableCatalog::prepareSectionsInsert(QSqlQuery &query, const std::vector<Device> &records) const
{
    prepare(query, insertText(sections.table,
                              QStringList{sections.deviceId.column} + columnsOf(sections, SectionFields::tableOrder)));
    auto batch = batchWithParents<1>(SectionFields::tableOrder);
    for (const Device &device : records)
        for (const Section &section : device.sections)
            batch.add(section, {device.id});
    batch.bind(query);
}

void TableCatalog::prepareSectionUpsert(QSqlQuery &query, const Section &section, quint32 deviceId) const
{
    prepareUpsert(query, sections.table,
                  presentColumns(sections, section, SectionFields::tableOrder, {{sections.deviceId.column, deviceId}}),
                  {0, 1});
}

QString TableCatalog::sectionsSelect() const
{
    return selectText(columnsOf(sections, SectionFields::tableOrder), sections.table);
}

QString TableCatalog::sectionsOfDeviceSelect() const
{
    return sectionsSelect() + where(sections.deviceId.column);
}

void TableCatalog::prepareSectionSelectById(QSqlQuery &query, quint32 sectionId, quint32 deviceId) const
{
    prepare(query, sectionsOfDeviceSelect() + andWhere(sections.sectionId.column), {deviceId, sectionId});
}

void TableCatalog::prepareSectionsOfDeviceSelect(QSqlQuery &query, quint32 deviceId) const
{
    prepare(query, sectionsOfDeviceSelect(), {deviceId});
}

void TableCatalog::prepareSectionsSelectByField(QSqlQuery &query, const QString &column, const QString &value,
                                                quint32 deviceId) const
{
    prepare(query, sectionsOfDeviceSelect() + andWhere(column), {deviceId, value});
}

void TableCatalog::prepareSectionExists(QSqlQuery &query, quint32 deviceId, quint32 sectionId) const
{
    prepare(query,
            selectText({sections.deviceId.column, sections.sectionId.column}, sections.table)
                + where(sections.deviceId.column) + andWhere(sections.sectionId.column),
            {deviceId, sectionId});
}

void TableCatalog::prepareSectionDelete(QSqlQuery &query, quint32 deviceId, quint32 sectionId) const
{
    prepare(query, deleteText(sections.table) + where(sections.deviceId.column) + andWhere(sections.sectionId.column),
            {deviceId, sectionId});
}

void TableCatalog::prepareSectionsOfDeviceDelete(QSqlQuery &query, quint32 deviceId) const
{
    prepare(query, deleteText(sections.table) + where(sections.deviceId.column), {deviceId});
}

SectionColumns::SectionColumns(const TableCatalog &tables, ResultColumns &columns) : RowPart(tables.sections, columns)
{
}

void TableCatalog::readSectionRow(Section &section, const QSqlQuery &query, const SectionColumns &columns)
{
    columns.read(section, query);
}

} // namespace brimlet
