// The folders' order: a file includes its own folder, those before it, and the public headers.
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <gtest/gtest.h>

namespace {

const QStringList order = {"brimlet", "records", "catalog", "json", "controller", "api", "describe"};

// The folders that a file's own includes name.
QStringList includedFolders(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {QStringLiteral("unreadable")};
    static const QRegularExpression include(QStringLiteral("^#include \"([^/\"]*)/"),
                                            QRegularExpression::MultilineOption);
    QStringList folders;
    for (auto matches = include.globalMatch(QString::fromUtf8(file.readAll())); matches.hasNext();)
        folders.append(matches.next().captured(1));
    return folders;
}

TEST(Includes, PointToTheSameFolderOrToOneBeforeIt)
{
    const QDir sources(QStringLiteral(BRIMLET_SOURCES "/src"));
    QStringList folders = order.mid(1);
    folders.sort();
    ASSERT_EQ(sources.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name), folders);
    int includes = 0;
    for (int index = 1; index < order.size(); ++index) {
        QDirIterator files(sources.filePath(order[index]), {"*.h", "*.cpp"}, QDir::Files);
        while (files.hasNext()) {
            const QString path = files.next();
            for (const QString &folder : includedFolders(path)) {
                ++includes;
                EXPECT_TRUE(order.mid(0, index + 1).contains(folder))
                    << qPrintable(path) << " includes \"" << qPrintable(folder) << "/...\", which comes after it";
            }
        }
    }
    EXPECT_GT(includes, 100); // the expression still finds them
}

} // namespace
