#include "samplers/KernelFile.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
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

bool isReadableKind(int fd) {
    struct stat info {};
    if (::fstat(fd, &info) != 0)
        return false;
    return S_ISREG(info.st_mode);
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
    if (!isReadableKind(fd_)) {
        close();
        result = failure(EISDIR);
        return false;
    }
    return true;
}

KernelFileRead KernelFile::readPrefix(std::size_t limit) {
    KernelFileRead result;
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
    if (!isReadableKind(fd)) {
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
