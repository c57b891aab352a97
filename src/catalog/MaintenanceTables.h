// The two tables that hold no data of the service, with one row each.
#pragma once

#include "catalog/Table.h"

namespace brimlet {

// The remembered server address.
struct SessionTable : Table
{
    SessionTable() : Table("Session") {}

    QString id = column("Id");
    QString ip = column("Ip");
};

// The stamp of the schema.
struct VersionTable : Table
{
    VersionTable() : Table("Version") {}

    QString id = column("Id");
    QString number = column("Number");
};

} // namespace brimlet
