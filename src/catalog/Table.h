// The parts of a table descriptor: the names of a table, of its columns and of their JSON keys, each spelled once. A
// descriptor is a plain value, constructed wherever its names are needed.
#pragma once

#include <QString>

namespace brimlet {

// A column and its JSON key. The column is empty for a nested list or record, which has its own table.
struct FieldDesc
{
    QString column;
    QString key;
};

struct FieldKeys
{
    QString first;  // in a full record
    QString second; // in an id-only document
    QString third;  // in a full record, when `first` is missing
};

// A column that identifies a row, or that has different keys in different documents.
struct IdFieldDesc
{
    QString column;
    FieldKeys fieldKeys;
};

struct Table
{
    QString table;

protected:
    explicit Table(const char *name) : table(QLatin1String(name)) {}

    // The name of a column is that of its table followed by that of its field, so column names are unique in the
    // schema: joins need no aliases, and a row reader identifies a column by its name alone.
    QString column(const char *field) const { return table + QLatin1String(field); }

    FieldDesc field(const char *field, const char *key) const { return {column(field), QLatin1String(key)}; }

    FieldDesc keyOnly(const char *key) const { return {QString(), QLatin1String(key)}; }

    IdFieldDesc idField(const char *field, const char *first, const char *second, const char *third) const
    {
        return {column(field), {QLatin1String(first), QLatin1String(second), QLatin1String(third)}};
    }
};

} // namespace brimlet
