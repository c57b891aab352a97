// Prints as JSON what the library's lists say of its documents, searches and tables. Developers and generators read it;
// it is not installed. It holds no list of its own: the functions come from exports.txt, their documents from
// api/DocumentFunctions.h, the tables from a store that the library creates in memory.
//
// {
//   "functions": [in the order of exports.txt, those that take a document or a search
//     {"name": "addUsers",             the exported function
//      "form": "batch",                "batch", "record", "ids" or "search"
//      "record": "User"},              the record of the document or of the result; not with "ids"
//     {"name": "updateZone", "form": "record", "record": "Zone",
//      "ids": [                        "record" and "ids": the ids beside the record, or alone, all required
//        {"key": "device", "column": "ZonesDeviceId"}, ...]},
//     {"name": "getUsersWithParams", "form": "search", "record": "User",
//      "keys": ["id", "name", ...]}],  the keys that can be searched for
//   "records": [all records of these functions and those that they embed
//     {"name": "User", "flat": "FlatUser", "table": "Users",
//      "members": [                    the members of its object in a document, in reading order
//        {"key": "id",
//         "alternative": "zone",       read if "key" is missing; only if there is one
//         "kind": "uint32",            "uint32", "int32", "uint8", "uint64", "flag", "text", "double": a value
//                                      "reference": the id of a record
//                                      "object", "objects": a nested object, an array of them
//                                      "numbers": an array of uint32
//         "record": "Locale",          the record of "reference", "object" and "objects"
//         "required": true,
//         "searchable": true,
//         "field": "id",               the field of the flat record that shows it
//         "count": "zonesCount",       the field that counts "objects" and "numbers"
//         "column": "UsersId"}]}],     the column that keeps it; not with "objects", "numbers" and "object" without one
//   "schemaVersion": "0.1",           what the file's one row of Version holds
//   "tables": [in order of creation
//     {"name": "Zones",
//      "columns": [{"name": "ZonesDeviceId", "type": "UNSIGNED BIG INT"}, ...],
//      "primaryKey": ["ZonesDeviceId", "ZonesZoneId"]}]
// }
#include "api/DocumentFunctions.h"
#include "api/EventFlat.h"
#include "api/OrganizationFlat.h"
#include "api/SiteFlat.h"
#include "brimlet/brimlet.h"
#include "controller/SQLiteDatabase.h"

#include <QCoreApplication>
#include <QHash>
#include <QJsonDocument>
#include <QMap>
#include <QRegularExpression>
#include <QTextStream>

namespace brimlet {

namespace documents {

// Each exported function by its name: the constant of this namespace if it takes a document, otherwise itself.
template<class Visit>
void forEachExport(Visit &visit)
{
#include "describe/exports.inc"
}

} // namespace documents

namespace {

// ---- Names ----

// What a template is instantiated for is the last name of its signature.
QString lastName(const char *signature)
{
    static const QRegularExpression name(QStringLiteral("(\\w+)\\]$"));
    return name.match(QLatin1String(signature)).captured(1);
}

template<class Type>
QString nameOfType()
{
    return lastName(__PRETTY_FUNCTION__);
}

template<auto member>
QString nameOfMember()
{
    return lastName(__PRETTY_FUNCTION__);
}

// ---- The flat field of a member ----

template<class Left, class Right>
constexpr bool isSame(Left, Right)
{
    return false;
}
template<class Member>
constexpr bool isSame(Member left, Member right)
{
    return left == right;
}

template<class Field, class = void>
constexpr bool hasCount = false;
template<class Field>
constexpr bool hasCount<Field, std::void_t<decltype(Field::flatCount)>> = true;

template<class Record, size_t index, class Member>
void addFlatFieldAt(QJsonObject &description, Member member)
{
    constexpr auto field = std::get<index>(FlatForm<Record>::fields);
    if (!isSame(field.member, member))
        return;
    description[QLatin1String("field")] = nameOfMember<field.flatMember>();
    if constexpr (hasCount<decltype(field)>)
        description[QLatin1String("count")] = nameOfMember<field.flatCount>();
}

template<class Record, class Member, size_t... index>
void addFlatField(QJsonObject &description, Member member, std::index_sequence<index...>)
{
    (addFlatFieldAt<Record, index>(description, member), ...);
}

template<class Record, class Member>
void addFlatField(QJsonObject &description, Member Record::*member)
{
    addFlatField<Record>(description, member,
                         std::make_index_sequence<std::tuple_size_v<decltype(FlatForm<Record>::fields)>>());
}

// ---- Kinds ----

template<class Value>
const char *const kind = "reference";
template<>
const char *const kind<quint32> = "uint32";
template<>
const char *const kind<qint32> = "int32";
template<>
const char *const kind<quint8> = "uint8";
template<>
const char *const kind<quint64> = "uint64";
template<>
const char *const kind<bool> = "flag";
template<>
const char *const kind<double> = "double";
template<>
const char *const kind<QString> = "text";

// ---- Keys ----

const QString &firstKey(const FieldDesc &desc)
{
    return desc.key;
}
const QString &firstKey(const IdFieldDesc &desc)
{
    return desc.fieldKeys.first;
}

template<class Record, class = void>
constexpr bool isSearchable = false;
template<class Record>
constexpr bool isSearchable<Record, std::void_t<decltype(DocumentForm<Record>::searches)>> = true;

template<class Record>
QStringList searchKeys()
{
    QStringList keys;
    if constexpr (isSearchable<Record>) {
        const typename DocumentForm<Record>::Keys table;
        forEachField(DocumentForm<Record>::searches, [&](const auto &field) {
            if (field.isSearchable)
                keys << firstKey(table.*field.desc);
        });
    }
    return keys;
}

// ---- Records ----

class Records
{
public:
    template<class Record>
    QString add()
    {
        const QString name = nameOfType<Record>();
        if (names.contains(name))
            return name;
        names << name;
        const int index = descriptions.size();
        descriptions.append(QJsonValue());

        const typename DocumentForm<Record>::Keys keys;
        const QStringList searches = searchKeys<Record>();
        QJsonArray members;
        forEachField(DocumentForm<Record>::members, [&](const auto &member) {
            QJsonObject description = describe(member, keys);
            description[QLatin1String("searchable")] = searches.contains(description[QLatin1String("key")].toString());
            addFlatField(description, member.member);
            members.append(description);
        });
        descriptions[index] = QJsonObject{
            {"name", name}, {"flat", nameOfType<FlatOf<Record>>()}, {"table", keys.table}, {"members", members}};
        searchKeysOfFlat[nameOfType<FlatOf<Record>>()] = {name, searches};
        return name;
    }

    struct Search
    {
        QString record;
        QStringList keys;
    };
    Search searchOf(const QString &flat) const { return searchKeysOfFlat[flat]; }

    QJsonArray descriptions;

private:
    template<class Record, class Member, class Table, class Desc, class Keys>
    QJsonObject describe(const Field<Record, Member, Table, Desc> &field, const Keys &keys)
    {
        using Described = Field<Record, Member, Table, Desc>;
        using Value = typename Described::Value;
        const auto &desc = keys.*field.desc;
        QJsonObject description{{"key", firstKey(desc)},
                                {"kind", kind<Value>},
                                {"required", !Described::isOptional},
                                {"column", field.column(keys)}};
        if constexpr (!Described::isOptional) {
            const QString &alternative = desc.fieldKeys.third;
            if (!alternative.isEmpty() && alternative != firstKey(desc))
                description[QLatin1String("alternative")] = alternative;
        }
        if constexpr (isRecord<Value>)
            description[QLatin1String("record")] = add<Value>();
        return description;
    }

    template<class Record, class Part, class Table, class Desc, class Keys, class PartKeys>
    QJsonObject describe(const NestedObject<Record, Part, Table, Desc, Keys, PartKeys> &object, const Keys &keys)
    {
        QJsonObject description = nested("object", nestedKey(keys.*object.desc));
        description[QLatin1String("record")] = add<Part>();
        const QString &column = (keys.*object.desc).column;
        if (!column.isEmpty())
            description[QLatin1String("column")] = column;
        return description;
    }

    template<class Record, class Part, class Table, class Keys, class PartKeys>
    QJsonObject describe(const NestedArray<Record, Part, Table, Keys, PartKeys> &array, const Keys &keys)
    {
        QJsonObject description = nested("objects", nestedKey(keys.*array.desc));
        description[QLatin1String("record")] = add<Part>();
        return description;
    }

    template<class Record, class Table>
    QJsonObject describe(const NestedNumbers<Record, Table> &numbers, const Table &keys)
    {
        return nested("numbers", nestedKey(keys.*numbers.desc));
    }

    static QJsonObject nested(const char *kindOfMember, const QString &key)
    {
        return {{"key", key}, {"kind", kindOfMember}, {"required", false}};
    }

    QStringList names;
    QHash<QString, Search> searchKeysOfFlat;
};

// ---- Functions ----

// Adds the records of the documents, for the searches that name them by their flat record.
struct DocumentRecords
{
    Records &records;

    template<class Record, class Keys>
    void operator()(const char *, const BatchDocument<Record, Keys> &)
    {
        records.add<Record>();
    }
    template<class Record, class Keys, size_t count>
    void operator()(const char *, const RecordDocument<Record, Keys, count> &)
    {
        records.add<Record>();
    }
    template<class Other>
    void operator()(const char *, const Other &)
    {
    }
};

class Functions
{
public:
    explicit Functions(Records &all) : records(all) {}

    template<class Record, class Keys>
    void operator()(const char *name, const BatchDocument<Record, Keys> &)
    {
        descriptions.append(QJsonObject{{"name", name}, {"form", "batch"}, {"record", records.add<Record>()}});
    }

    template<class Record, class Keys, size_t count>
    void operator()(const char *name, const RecordDocument<Record, Keys, count> &document)
    {
        QJsonObject description{{"name", name}, {"form", "record"}, {"record", records.add<Record>()}};
        if (count > 0)
            description[QLatin1String("ids")] = describe(document.parents);
        descriptions.append(description);
    }

    template<class Keys, size_t count>
    void operator()(const char *name, const IdDocument<Keys, count> &document)
    {
        descriptions.append(QJsonObject{{"name", name}, {"form", "ids"}, {"ids", describe(document)}});
    }

    // A search is known by its parameters: a list of records out, a key and a value in.
    template<class Flat, class... Parents>
    void operator()(const char *name, uint32_t (*)(Flat **, uint32_t *, const uint16_t *, uint32_t, const uint16_t *,
                                                   uint32_t, Parents...))
    {
        const Records::Search search = records.searchOf(nameOfType<Flat>());
        descriptions.append(QJsonObject{{"name", name},
                                        {"form", "search"},
                                        {"record", search.record},
                                        {"keys", QJsonArray::fromStringList(search.keys)}});
    }

    // Every other function.
    template<class Result, class... Arguments>
    void operator()(const char *, Result (*)(Arguments...))
    {
    }

    QJsonArray descriptions;

private:
    template<class Keys, size_t count>
    static QJsonArray describe(const IdDocument<Keys, count> &document)
    {
        const Keys keys;
        QJsonArray ids;
        for (const auto field : document.fields) {
            const IdFieldDesc &desc = keys.*field;
            ids.append(QJsonObject{{"key", desc.fieldKeys.*document.key}, {"column", desc.column}});
        }
        return ids;
    }

    Records &records;
};

// ---- Tables ----

QJsonObject describeTable(const QString &name, const QSqlDatabase &database)
{
    QJsonArray columns;
    QMap<int, QString> primaryKey;
    QSqlQuery query(QStringLiteral("PRAGMA table_info(%1)").arg(name), database);
    while (query.next()) {
        const QString column = query.value(QStringLiteral("name")).toString();
        columns.append(QJsonObject{{"name", column}, {"type", query.value(QStringLiteral("type")).toString()}});
        if (const int number = query.value(QStringLiteral("pk")).toInt())
            primaryKey[number] = column;
    }
    return {{"name", name}, {"columns", columns}, {"primaryKey", QJsonArray::fromStringList(primaryKey.values())}};
}

// The tables of a new store, and the version that it is stamped with.
void describeStore(QJsonObject &description)
{
    controller::SQLiteDatabase store;
    if (!store.create(QStringLiteral(":memory:")))
        qFatal("the library cannot create its tables in memory");
    const QSqlDatabase database = QSqlDatabase::database(QString()); // the store registers it under an empty name
    QJsonArray tables;
    QSqlQuery query(QStringLiteral("SELECT name FROM sqlite_master WHERE type = 'table' ORDER BY rowid"), database);
    while (query.next())
        tables.append(describeTable(query.value(0).toString(), database));
    description[QLatin1String("tables")] = tables;
    if (query.exec(QStringLiteral("SELECT VersionNumber FROM Version")) && query.next())
        description[QLatin1String("schemaVersion")] = query.value(0).toString();
}

QJsonObject describeLibrary()
{
    Records records;
    DocumentRecords documentRecords{records};
    documents::forEachExport(documentRecords);
    Functions functions(records);
    documents::forEachExport(functions);
    QJsonObject description{{"functions", functions.descriptions}, {"records", records.descriptions}};
    describeStore(description);
    return description;
}

} // namespace

} // namespace brimlet

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QTextStream(stdout) << QJsonDocument(brimlet::describeLibrary()).toJson();
}
