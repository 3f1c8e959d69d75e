#include "settings/AtomicFileWriter.h"

#include "SettingsTestSupport.h"
#include "support/SmallFileSystem.h"

#include <QFileInfo>

#include <gtest/gtest.h>

#include <cerrno>

#include <sys/stat.h>

using namespace lumetra;
using lumetra::testing::readFile;
using lumetra::testing::SmallFileSystem;
using lumetra::testing::writeFile;
using Failure = AtomicFileWriter::Failure;

namespace {

QStringList entries(const QString& folder) {
    return QDir(folder).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden);
}

mode_t modeOf(const QString& path) {
    struct stat info {};
    return ::stat(QFile::encodeName(path).constData(), &info) == 0 ? info.st_mode & 07777 : 0;
}

// Replaced whole, permissions kept, nothing left beside it; the folder is made when missing.
TEST(AtomicFileWriterTest, ReplacesTheFileWholeAndKeepsItsPermissions) {
    QTemporaryDir dir;
    const QString path = dir.path() + "/lumetra/settings.json";
    ASSERT_TRUE(AtomicFileWriter::write(path, "{}\n").ok());
    EXPECT_EQ(readFile(path), "{}\n");

    ASSERT_EQ(::chmod(QFile::encodeName(path).constData(), 0640), 0);
    const QByteArray longer = "{\"x\": \"" + QByteArray(100000, 'x') + "\"}\n";
    const AtomicFileWriter::Result result = AtomicFileWriter::write(path, longer);
    ASSERT_TRUE(result.ok()) << result.reason().toStdString();
    EXPECT_EQ(readFile(path), longer);
    EXPECT_EQ(modeOf(path), mode_t(0640));
    EXPECT_EQ(entries(dir.path() + "/lumetra"), QStringList{"settings.json"});

    // A link stays a link; what it points to gets the new contents.
    const QString link = dir.path() + "/linked.json";
    ASSERT_TRUE(QFile::link(path, link));
    ASSERT_TRUE(AtomicFileWriter::write(link, "[]\n").ok());
    EXPECT_TRUE(QFileInfo(link).isSymLink());
    EXPECT_EQ(readFile(path), "[]\n");
}

// However the write fails, the old file keeps every byte and no temporary file stays behind.
TEST(AtomicFileWriterTest, AFailureLeavesTheOldFileAsItWas) {
    SmallFileSystem disk;
    if (!disk.mounted())
        GTEST_SKIP() << disk.error().toStdString();
    const QString folder = disk.path() + "/lumetra";
    const QString path = folder + "/settings.json";
    const QByteArray old = R"({"separator": "bullet"})";
    const qint64 page = SmallFileSystem::pageSize();
    struct Case {
        const char* name;
        qint64 pagesLeft; // after filling the disk
        qint64 newSize;   // bytes to write
        Failure failure;
        int error;
    };
    for (const Case& c : {
             // Not one page free: the first write fails.
             Case{"full", 0, 200, Failure::write, ENOSPC},
             // One page free for three pages of text: a short write, then the rest fails.
             Case{"short write", 1, 3 * page, Failure::write, ENOSPC},
         }) {
        SCOPED_TRACE(c.name);
        QDir().mkpath(folder);
        writeFile(path, old);
        disk.fill(c.pagesLeft);
        ASSERT_EQ(disk.freePages(), c.pagesLeft);

        const AtomicFileWriter::Result result =
            AtomicFileWriter::write(path, QByteArray(c.newSize, 'n'));
        EXPECT_EQ(result.failure, c.failure);
        EXPECT_EQ(result.error, c.error);
        EXPECT_EQ(result.reason(), QString::fromLocal8Bit(std::strerror(c.error)));
        EXPECT_EQ(readFile(path), old);
        EXPECT_EQ(entries(folder), QStringList{"settings.json"});
        EXPECT_EQ(disk.freePages(), c.pagesLeft) << "the partial temporary file is removed";
        disk.freeSpace();
    }
}

TEST(AtomicFileWriterTest, TellsWhichStepFailed) {
    QTemporaryDir dir;
    // A file where the folder belongs: nothing can be created in it.
    writeFile(dir.path() + "/lumetra", "not a folder");
    const auto noFolder = AtomicFileWriter::write(dir.path() + "/lumetra/settings.json", "{}");
    EXPECT_EQ(noFolder.failure, Failure::create);
    EXPECT_EQ(noFolder.error, ENOTDIR);

    // A folder with something in it where the file belongs: the rename fails.
    QDir().mkpath(dir.path() + "/taken/settings.json/inside");
    const auto taken = AtomicFileWriter::write(dir.path() + "/taken/settings.json", "{}");
    EXPECT_EQ(taken.failure, Failure::rename);
    EXPECT_EQ(entries(dir.path() + "/taken"), QStringList{"settings.json"});
    EXPECT_TRUE(QFileInfo(dir.path() + "/taken/settings.json/inside").isDir());
}

} // namespace
