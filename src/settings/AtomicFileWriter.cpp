#include "settings/AtomicFileWriter.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>

#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace lumetra {

namespace {

using Failure = AtomicFileWriter::Failure;
using Result = AtomicFileWriter::Result;

Result failed(Failure failure, int error) {
    return {failure, error};
}

// An unused name beside `path`, opened for writing; -1 with errno set when none could be made.
int createBeside(const QByteArray& path, QByteArray& temporary) {
    for (int attempt = 0; attempt < 64; ++attempt) {
        temporary = path + ".tmp-" + QByteArray::number(QRandomGenerator::global()->generate(), 36);
        // 0666 as for any new file: the user's umask decides.
        const int fd = ::open(temporary.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (fd >= 0 || errno != EEXIST)
            return fd;
    }
    return -1;
}

bool writeAll(int fd, QByteArrayView bytes) {
    const char* next = bytes.data();
    qsizetype left = bytes.size();
    while (left > 0) {
        const ssize_t written = ::write(fd, next, std::size_t(left));
        if (written < 0) {
            if (errno == EINTR)
                continue;
            return false;
        }
        if (written == 0) {
            errno = EIO;
            return false;
        }
        // A short write is followed by one for the rest, which fails with the reason
        // (ENOSPC, EDQUOT, EFBIG) when the rest does not fit.
        next += written;
        left -= written;
    }
    return true;
}

} // namespace

QString AtomicFileWriter::Result::reason() const {
    return QString::fromLocal8Bit(std::strerror(error));
}

AtomicFileWriter::Result AtomicFileWriter::write(const QString& path, QByteArrayView bytes) {
    // A link (a dotfiles folder's) stays a link: its target is replaced.
    QFileInfo resolved(path);
    for (int depth = 0; depth < 40 && resolved.isSymLink(); ++depth)
        resolved.setFile(resolved.symLinkTarget());
    const QString folder = resolved.path();
    QDir().mkpath(folder); // a failure shows in the next step, with its reason
    const QByteArray target = QFile::encodeName(resolved.filePath());
    QByteArray temporary;
    const int fd = createBeside(target, temporary);
    if (fd < 0)
        return failed(Failure::create, errno);

    const auto discard = [&](Failure failure) {
        const int error = errno;
        ::close(fd);
        ::unlink(temporary.constData());
        return failed(failure, error);
    };
    struct stat old {};
    if (::stat(target.constData(), &old) == 0 && S_ISREG(old.st_mode))
        ::fchmod(fd, old.st_mode & 07777);
    if (!writeAll(fd, bytes))
        return discard(Failure::write);
    // On the disk before it takes the old file's name: after a crash or a power cut the name
    // holds either the old contents or all of the new ones.
    if (::fsync(fd) != 0)
        return discard(Failure::sync);
    if (::close(fd) != 0) { // network file systems report a failed write only here
        const int error = errno;
        ::unlink(temporary.constData());
        return failed(Failure::write, error);
    }
    if (::rename(temporary.constData(), target.constData()) != 0) {
        const int error = errno;
        ::unlink(temporary.constData());
        return failed(Failure::rename, error);
    }
    // Makes the rename itself durable. Some file systems refuse to sync a folder; the file is
    // in place either way, so that is no failure.
    const int directory =
        ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (directory >= 0) {
        ::fsync(directory);
        ::close(directory);
    }
    return {};
}

} // namespace lumetra
