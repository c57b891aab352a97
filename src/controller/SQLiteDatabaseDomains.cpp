#include "controller/StorePatterns.h"

namespace brimlet::controller {

bool SQLiteDatabase::addDomains(const std::vector<Domain> &domains)
{
    begin();
    tables.prepareDomainsInsert(query, domains);
    return runBatch("add domains error") && commit();
}

bool SQLiteDatabase::updateDomain(std::optional<Domain> &domain)
{
    begin();
    tables.prepareDomainUpsert(query, required(domain));
    return run("add or update domain error") && readBack(domain, &SQLiteDatabase::readDomainById) && commit();
}

bool SQLiteDatabase::deleteDomain(quint32 id)
{
    return deleteById(tables.domains, id, "delete domain error");
}

bool SQLiteDatabase::getDomain(std::optional<Domain> &domain, quint32 id)
{
    begin();
    return readDomainById(domain, id) && commit();
}

bool SQLiteDatabase::getDomainsByField(std::vector<Domain> &domains, const QString &column, const QString &value)
{
    begin();
    tables.prepareDomainsSelectByField(query, column, value);
    return readList(domains, TableCatalog::readDomainRow, "get domains by field error") && commit();
}

bool SQLiteDatabase::getDomains(std::vector<Domain> &domains)
{
    begin();
    tables.prepareDomainsSelect(query);
    return readList(domains, TableCatalog::readDomainRow, "get domains error") && commit();
}

bool SQLiteDatabase::readDomainById(std::optional<Domain> &domain, quint32 id)
{
    tables.prepareDomainSelectById(query, id);
    return readOne(domain, TableCatalog::readDomainRow, "get domain error");
}

} // namespace brimlet::controller
