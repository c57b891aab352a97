#include "Contents.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sqlite3.h>

namespace brimlet::test {

Contents contentsOf(const std::string &path)
{
    const File file(path);
    Contents contents;
    for (const Row &table : file.rows("SELECT name FROM sqlite_master WHERE type = 'table'")) {
        std::vector<Row> rows = file.rows("SELECT * FROM \"" + table[0].value() + '"');
        std::sort(rows.begin(), rows.end());
        contents[table[0].value()] = std::move(rows);
    }
    return contents;
}

::testing::AssertionResult isSound(const std::string &path)
{
    std::string complaints;
    try {
        for (const Row &row : File(path).rows("PRAGMA integrity_check"))
            complaints += row[0].value_or("") + "\n";
    } catch (const std::exception &error) {
        complaints = error.what();
    }
    if (complaints == "ok\n")
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << complaints;
}

bool isHeld(const std::string &path)
{
    sqlite3 *connection = nullptr;
    sqlite3_open(path.c_str(), &connection);
    const int code = sqlite3_exec(connection, "SELECT * FROM sqlite_master", nullptr, nullptr, nullptr);
    sqlite3_close(connection);
    return code == SQLITE_BUSY;
}

std::string difference(const Contents &one, const Contents &other)
{
    std::string text;
    const auto count = [](const Contents &contents, const std::string &table) {
        const auto found = contents.find(table);
        return found == contents.end() ? std::string("no table") : std::to_string(found->second.size()) + " rows";
    };
    for (const auto &[table, rows] : one)
        if (const auto found = other.find(table); found == other.end() || found->second != rows)
            text += table + ": " + count(one, table) + " and " + count(other, table) + "; ";
    for (const auto &[table, rows] : other)
        if (!one.count(table))
            text += table + ": no table and " + count(other, table) + "; ";
    return text;
}

std::string bytesOf(const std::string &path)
{
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

void writeBytes(const std::string &path, const std::string &bytes)
{
    std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
}

bool isLongForm()
{
    const char *form = std::getenv("BRIMLET_FAULTS");
    return form && std::string(form) == "long";
}

int scaled(int count)
{
    if (isLongForm())
        return count * 20;
    return isSanitized ? (count + 3) / 4 : count;
}

unsigned stride()
{
    return isSanitized && !isLongForm() ? 5 : 1;
}

unsigned seed()
{
    const char *text = std::getenv("BRIMLET_SEED");
    return text ? static_cast<unsigned>(std::strtoul(text, nullptr, 10)) : 1u;
}

void figure(const std::string &name, int64_t count)
{
    std::printf("figure: %s = %lld\n", name.c_str(), static_cast<long long>(count));
    std::fflush(stdout);
}

} // namespace brimlet::test
