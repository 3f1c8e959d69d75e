#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QString>
#include <QTemporaryDir>

#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/mount.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace lumetra::testing {

// A tmpfs of a few pages mounted on a temporary folder, to run out of space on purpose.
// Mounting needs root; where it fails, `error()` says why and the test skips.
class SmallFileSystem {
public:
    explicit SmallFileSystem(int kibibytes = 64) {
        const QByteArray options = "size=" + QByteArray::number(kibibytes) + "k,mode=0755";
        if (!root_.isValid()) {
            error_ = QStringLiteral("no temporary folder");
        } else if (::mount("tmpfs", QFile::encodeName(root_.path()).constData(), "tmpfs", 0,
                           options.constData()) != 0) {
            error_ = QStringLiteral("cannot mount a tmpfs here (%1)")
                         .arg(QString::fromLocal8Bit(std::strerror(errno)));
        } else {
            mounted_ = true;
        }
    }
    ~SmallFileSystem() {
        // Lazily, in case a watcher of the code under test still holds a folder in it.
        if (mounted_)
            ::umount2(QFile::encodeName(root_.path()).constData(), MNT_DETACH);
    }
    SmallFileSystem(const SmallFileSystem&) = delete;
    SmallFileSystem& operator=(const SmallFileSystem&) = delete;

    bool mounted() const { return mounted_; }
    QString error() const { return error_; }
    QString path() const { return root_.path(); }

    static qint64 pageSize() { return ::sysconf(_SC_PAGESIZE); }

    qint64 freePages() const {
        struct statvfs info {};
        if (::statvfs(QFile::encodeName(path()).constData(), &info) != 0)
            return -1;
        return qint64(info.f_bavail) * qint64(info.f_frsize) / pageSize();
    }

    // Takes every free page into a filler file, then gives back `pagesLeft` of them.
    void fill(qint64 pagesLeft = 0) {
        const QByteArray filler = QFile::encodeName(fillerPath());
        const int fd = ::open(filler.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
        if (fd < 0)
            return;
        const QByteArray page(pageSize(), 'f');
        qint64 size = 0;
        for (ssize_t written = 1; written > 0;) {
            written = ::write(fd, page.constData(), std::size_t(page.size()));
            size += written > 0 ? written : 0;
        }
        if (pagesLeft > 0)
            (void)::ftruncate(fd, qMax<qint64>(0, size - pagesLeft * pageSize()));
        ::close(fd);
    }

    // Deletes the filler: room again.
    void freeSpace() { QFile::remove(fillerPath()); }

private:
    QString fillerPath() const { return path() + QStringLiteral("/filler"); }

    QTemporaryDir root_;
    bool mounted_ = false;
    QString error_;
};

} // namespace lumetra::testing
