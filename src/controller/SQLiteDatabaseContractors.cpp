#include "controller/StorePatterns.h"

namespace brimlet::controller {

bool SQLiteDatabase::addContractors(const std::vector<Contractor> &contractors)
{
    begin();
    tables.prepareContractorsInsert(query, contractors);
    return runBatch("add contractors error") && commit();
}

bool SQLiteDatabase::updateContractor(std::optional<Contractor> &contractor)
{
    begin();
    tables.prepareContractorUpsert(query, required(contractor));
    return run("add or update contractor error") && readBack(contractor, &SQLiteDatabase::readContractorById)
        && commit();
}

bool SQLiteDatabase::deleteContractor(quint32 id)
{
    return deleteById(tables.contractors, id, "delete contractor error");
}

bool SQLiteDatabase::getContractor(std::optional<Contractor> &contractor, quint32 id)
{
    begin();
    return readContractorById(contractor, id) && commit();
}

bool SQLiteDatabase::getContractorsByField(std::vector<Contractor> &contractors, const QString &column,
                                           const QString &value)
{
    begin();
    tables.prepareContractorsSelectByField(query, column, value);
    return readList(contractors, TableCatalog::readContractorRow, "get contractors by field error") && commit();
}

bool SQLiteDatabase::getContractors(std::vector<Contractor> &contractors)
{
    begin();
    tables.prepareContractorsSelect(query);
    return readList(contractors, TableCatalog::readContractorRow, "get contractors by field error")
        && commit(); // intentional, for compatibility
}

bool SQLiteDatabase::readContractorById(std::optional<Contractor> &contractor, quint32 id)
{
    tables.prepareContractorSelectById(query, id);
    return readOne(contractor, TableCatalog::readContractorRow, "get contractor by id error");
}

} // namespace brimlet::controller
