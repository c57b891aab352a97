// What a table descriptor is made of: the names of a table, of its columns and of the JSON keys that feed them, each
// spelled once. A descriptor is a plain value, made wherever its names are needed.
#pragma once

#include <QString>

namespace brimlet {

// A column and its JSON key. Without a column it is a nested list or record, which lives in a table of its own.
struct FieldDesc
{
    QString column;
    QString key;
};

struct FieldKeys
{
    QString first;  // in a full record
    QString second; // in a document that holds nothing but ids
    QString third;  // in a full record, when `first` is missing
};

// A column that identifies a row, or is found under other keys in other documents.
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

    // A column is named after its table and its field, so no two tables share a name: joins need no aliases, and a
    // row reader knows a column of any table by its name alone.
    QString column(const char *field) const { return table + QLatin1String(field); }

    FieldDesc field(const char *field, const char *key) const { return {column(field), QLatin1String(key)}; }

    FieldDesc keyOnly(const char *key) const { return {QString(), QLatin1String(key)}; }

    IdFieldDesc idField(const char *field, const char *first, const char *second, const char *third) const
    {
        return {column(field), {QLatin1String(first), QLatin1String(second), QLatin1String(third)}};
    }
};

} // namespace brimlet
