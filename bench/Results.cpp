#include "Results.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <simdjson.h>
#include <sqlite3.h>

#include <fstream>
#include <ostream>
#include <thread>

namespace bench {

namespace {

QString processor()
{
    std::ifstream info("/proc/cpuinfo");
    for (std::string line; std::getline(info, line);)
        if (line.compare(0, 10, "model name") == 0)
            return QString::fromStdString(line.substr(line.find(':') + 2));
    return QStringLiteral("unknown");
}

QJsonObject conditions()
{
    return {
        {QStringLiteral("processor"), processor()},
        {QStringLiteral("cores"), static_cast<int>(std::thread::hardware_concurrency())},
        {QStringLiteral("kernel"), QSysInfo::kernelVersion()},
        {QStringLiteral("system"), QSysInfo::prettyProductName()},
        {QStringLiteral("compiler"), QStringLiteral("GCC " __VERSION__)},
        {QStringLiteral("qt"), QString::fromLatin1(qVersion())},
        {QStringLiteral("sqlite"), QString::fromLatin1(sqlite3_libversion())},
        {QStringLiteral("simdjson"), QStringLiteral(SIMDJSON_STRINGIFY(SIMDJSON_VERSION))},
    };
}

QJsonArray seconds(const std::vector<double> &values)
{
    QJsonArray array;
    for (const double value : values)
        array.append(value);
    return array;
}

QJsonObject object(const Measured &measured)
{
    return {
        {QStringLiteral("wall"), seconds(measured.wall)},
        {QStringLiteral("cpu"), seconds(measured.cpu)},
        {QStringLiteral("peak"), static_cast<double>(measured.peak)},
    };
}

QJsonObject object(const Result &result)
{
    QJsonObject written = {
        {QStringLiteral("workload"), QString::fromStdString(result.workload)},
        {QStringLiteral("size"), static_cast<double>(result.size)},
    };
    for (const auto &[name, measured] : result.byName)
        written.insert(QString::fromStdString(name), object(measured));
    return written;
}

} // namespace

void write(std::ostream &out, const std::vector<Result> &results)
{
    QJsonArray array;
    for (const Result &result : results)
        array.append(object(result));
    const QJsonObject all = {{QStringLiteral("conditions"), conditions()}, {QStringLiteral("results"), array}};
    out << QJsonDocument(all).toJson().constData();
}

} // namespace bench
