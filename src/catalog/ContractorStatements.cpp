#include "catalog/Statements.h"
#include "catalog/TableCatalog.h"

namespace brimlet {

void TableCatalog::prepareContractorsTable(QSqlQuery &query) const
{
    prepare(query, createTableText(contractors, ContractorFields::tableOrder));
}

void TableCatalog::prepareContractorsInsert(QSqlQuery &query, const std::vector<Contractor> &records) const
{
    prepare(query, insertText(contractors.table, columnsOf(contractors, ContractorFields::tableOrder)));
    bindBatch(query, records, ContractorFields::tableOrder);
}

void TableCatalog::prepareContractorUpsert(QSqlQuery &query, const Contractor &contractor) const
{
    prepareUpsert(query, contractors.table, presentColumns(contractors, contractor, ContractorFields::tableOrder));
}

QString TableCatalog::contractorsSelect() const
{
    return selectText(columnsOf(contractors, ContractorFields::recordOrder), contractors.table);
}

void TableCatalog::prepareContractorsSelect(QSqlQuery &query) const
{
    prepare(query, contractorsSelect());
}

void TableCatalog::prepareContractorSelectById(QSqlQuery &query, quint32 id) const
{
    prepare(query, contractorsSelect() + where(contractors.id.column), {id});
}

void TableCatalog::prepareContractorsSelectByField(QSqlQuery &query, const QString &column, const QString &value) const
{
    prepare(query, contractorsSelect() + where(column), {value});
}

ContractorColumns::ContractorColumns(const TableCatalog &tables, ResultColumns &columns)
    : RowPart(tables.contractors, columns)
{
}

void TableCatalog::readContractorRow(Contractor &contractor, const QSqlQuery &query, const ContractorColumns &columns)
{
    columns.read(contractor, query);
}

} // namespace brimlet
