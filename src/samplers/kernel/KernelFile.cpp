#include "samplers/kernel/KernelFile.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

namespace lumetra {

const char* describe(KernelFileError error) {
    switch (error) {
    case KernelFileError::none:
        return "no error";
    case KernelFileError::missing:
        return "does not exist";
    case KernelFileError::permissionDenied:
        return "permission denied";
    case KernelFileError::notAFile:
        return "is not a readable file";
    case KernelFileError::unavailable:
        return "is not available now";
    case KernelFileError::tooLarge:
        return "is larger than expected";
    case KernelFileError::otherError:
        return "could not be read";
    }
    return "could not be read";
}

const char* KernelFileRead::reason() const {
    return errnoValue != 0 ? std::strerror(errnoValue) : describe(error);
}

KernelFileError classifyErrno(int errnoValue) {
    switch (errnoValue) {
    case 0:
        return KernelFileError::none;
    case ENOENT:
    case ENOTDIR:
    case ENODEV:
    case ENXIO:
        return KernelFileError::missing;
    case EACCES:
    case EPERM:
        return KernelFileError::permissionDenied;
    case EISDIR:
    case EINVAL:
        return KernelFileError::notAFile;
    case EAGAIN:
    case ENODATA:
    case EIO:
        return KernelFileError::unavailable;
    default:
        return KernelFileError::otherError;
    }
}

namespace {

KernelFileRead failure(int errnoValue) {
    return {{}, classifyErrno(errnoValue), errnoValue};
}

// O_NONBLOCK so that a FIFO planted where a kernel file belongs cannot hang the open.
int openForReading(const std::string& path) {
    return ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
}

// Only regular files read as text; a directory or device planted in a saved tree does not.
bool isRegularFile(int fd, struct stat& info) {
    return ::fstat(fd, &info) == 0 && S_ISREG(info.st_mode);
}

bool isKernelFileSystem(int fd) {
    struct statfs info {};
    if (::fstatfs(fd, &info) != 0)
        return true; // cannot tell: treat it as the kernel's and skip the checks
    return info.f_type == PROC_SUPER_MAGIC || info.f_type == SYSFS_MAGIC;
}

} // namespace

KernelFile::KernelFile(std::string path, std::size_t cap) : path_(std::move(path)), cap_(cap) {}

KernelFile::~KernelFile() {
    close();
}

void KernelFile::close() {
    if (fd_ >= 0)
        ::close(fd_);
    fd_ = -1;
}

bool KernelFile::ensureOpen(KernelFileRead& result) {
    if (fd_ >= 0)
        return true;
    fd_ = openForReading(path_);
    if (fd_ < 0) {
        result = failure(errno);
        return false;
    }
    struct stat info {};
    if (!isRegularFile(fd_, info)) {
        close();
        result = failure(EISDIR);
        return false;
    }
    mayBeReplaced_ = !isKernelFileSystem(fd_);
    device_ = info.st_dev;
    inode_ = info.st_ino;
    return true;
}

void KernelFile::closeIfReplaced() {
    if (fd_ < 0 || !mayBeReplaced_)
        return;
    struct stat info {};
    if (::stat(path_.c_str(), &info) != 0 || info.st_dev != device_ || info.st_ino != inode_)
        close();
}

KernelFileRead KernelFile::readPrefix(std::size_t limit) {
    KernelFileRead result;
    closeIfReplaced();
    if (!ensureOpen(result))
        return result;
    if (buffer_.size() < limit)
        buffer_.resize(limit);
    const ssize_t count = ::pread(fd_, buffer_.data(), limit, 0);
    if (count < 0) {
        result = failure(errno);
        close(); // reopen next time: the file may have been replaced
        return result;
    }
    result.text = std::string_view(buffer_.data(), static_cast<std::size_t>(count));
    return result;
}

KernelFileRead KernelFile::readAll() {
    KernelFileRead result;
    closeIfReplaced();
    if (!ensureOpen(result))
        return result;
    if (buffer_.empty())
        buffer_.resize(4096);
    std::size_t filled = 0;
    for (;;) {
        if (filled == buffer_.size()) {
            if (buffer_.size() >= cap_) {
                result.text = std::string_view(buffer_.data(), filled);
                result.error = KernelFileError::tooLarge;
                return result;
            }
            buffer_.resize(std::min(cap_, buffer_.size() * 2));
        }
        const ssize_t count = ::pread(fd_, buffer_.data() + filled, buffer_.size() - filled,
                                      static_cast<off_t>(filled));
        if (count < 0) {
            if (errno == EINTR)
                continue;
            result = failure(errno);
            close();
            return result;
        }
        if (count == 0)
            break;
        filled += static_cast<std::size_t>(count);
    }
    result.text = std::string_view(buffer_.data(), filled);
    return result;
}

KernelFileRead KernelFile::readOnce(const std::string& path, std::string& buffer,
                                    std::size_t limit) {
    const int fd = openForReading(path);
    if (fd < 0)
        return failure(errno);
    KernelFileRead result;
    struct stat info {};
    if (!isRegularFile(fd, info)) {
        ::close(fd);
        return failure(EISDIR);
    }
    buffer.resize(limit);
    const ssize_t count = ::read(fd, buffer.data(), limit);
    const int readErrno = errno;
    ::close(fd);
    if (count < 0)
        return failure(readErrno);
    buffer.resize(static_cast<std::size_t>(count));
    result.text = buffer;
    return result;
}

} // namespace lumetra
