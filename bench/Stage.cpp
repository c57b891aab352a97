#include "Stage.h"

#include <sqlite3.h>

#include <stdexcept>

namespace bench {

namespace fs = std::filesystem;

// ---- A store ----

Store::Store(std::unique_ptr<Implementation> kind, const fs::path &where)
    : implementation(std::move(kind))
    , directory(where)
{
    fs::create_directories(directory);
}

Store::~Store()
{
    implementation->close();
    removeFile();
}

fs::path Store::file() const
{
    return directory / fileName;
}

void Store::open()
{
    implementation->open(directory);
}

void Store::close()
{
    implementation->close();
}

void Store::restore(const fs::path &from)
{
    original = from;
    close();
    fs::copy_file(original, file(), fs::copy_options::overwrite_existing);
    open();
}

void Store::removeFile()
{
    close();
    fs::remove(file());
}

Stores makeStores(const fs::path &directory)
{
    Stores stores;
    for (auto make : {makeBrimlet, makeQtByHand, makeFloor}) {
        auto implementation = make();
        const fs::path own = directory / implementation->name();
        stores.push_back(std::make_unique<Store>(std::move(implementation), own));
    }
    return stores;
}

// ---- Fillings ----

fs::path filledFile(const fs::path &directory, const Filling &filling)
{
    const fs::path target = directory / "filled" / filling.name;
    if (fs::exists(target))
        return target;
    fs::create_directories(directory / "filled");
    Store store(makeBrimlet(), directory / "filling");
    store.removeFile();
    store.open();
    filling.fill();
    store.close();
    fs::rename(store.file(), target);
    return target;
}

// ---- Comparing files ----

namespace {

class Reader
{
public:
    Reader(sqlite3 *database, const std::string &text)
    {
        if (sqlite3_prepare_v2(database, text.c_str(), -1, &statement, nullptr))
            throw std::runtime_error(sqlite3_errmsg(database));
    }
    Reader(const Reader &) = delete;
    Reader &operator=(const Reader &) = delete;
    ~Reader() { sqlite3_finalize(statement); }

    bool next() { return sqlite3_step(statement) == SQLITE_ROW; }
    int columns() const { return sqlite3_column_count(statement); }
    int type(int column) const { return sqlite3_column_type(statement, column); }
    std::string text(int column)
    {
        const unsigned char *found = sqlite3_column_text(statement, column);
        return found ? reinterpret_cast<const char *>(found) : std::string();
    }

private:
    sqlite3_stmt *statement = nullptr;
};

class File
{
public:
    explicit File(const fs::path &path)
    {
        if (sqlite3_open_v2(path.c_str(), &database, SQLITE_OPEN_READONLY, nullptr))
            throw std::runtime_error("cannot open " + path.string());
    }
    File(const File &) = delete;
    File &operator=(const File &) = delete;
    ~File() { sqlite3_close(database); }

    Reader read(const std::string &text) const { return {database, text}; }

private:
    sqlite3 *database = nullptr;
};

bool sameRows(Reader a, Reader b)
{
    for (;;) {
        const bool isThere = a.next();
        if (isThere != b.next() || a.columns() != b.columns())
            return false;
        if (!isThere)
            return true;
        for (int column = 0; column < a.columns(); ++column)
            if (a.type(column) != b.type(column) || a.text(column) != b.text(column))
                return false;
    }
}

} // namespace

bool sameFiles(const fs::path &pathA, const fs::path &pathB)
{
    const File a(pathA);
    const File b(pathB);
    const std::string schema = "SELECT name, sql FROM sqlite_master ORDER BY name";
    if (!sameRows(a.read(schema), b.read(schema)))
        return false;
    Reader tables = a.read("SELECT name FROM sqlite_master WHERE type = 'table'");
    while (tables.next()) {
        const std::string rows = "SELECT * FROM " + tables.text(0) + " ORDER BY rowid";
        if (!sameRows(a.read(rows), b.read(rows)))
            return false;
    }
    return true;
}

} // namespace bench
