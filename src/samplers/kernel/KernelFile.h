#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

namespace lumetra {

// Why a kernel file could not be read.
enum class KernelFileError {
    none,
    missing,          // ENOENT, ENOTDIR
    permissionDenied, // EACCES, EPERM
    notAFile,         // a directory or something else that does not read as text
    unavailable,      // EAGAIN, ENODATA, EIO: a sensor or device that is absent right now
    tooLarge,         // longer than the cap: the text is cut there
    otherError,
};

const char* describe(KernelFileError error);

struct KernelFileRead {
    std::string_view text; // valid until the next read of the same file
    KernelFileError error = KernelFileError::none;
    int errnoValue = 0;

    bool ok() const { return error == KernelFileError::none; }
    // Why the read failed, as the log says it: the system's text for errno
    // ("No such file or directory"), or the error's description where there is no errno.
    const char* reason() const;
};

// A /proc or /sys file kept open and re-read from offset 0 into a buffer of its own, so a
// sampling tick costs one pread and no allocation once the buffer has grown to the file.
// The size stat reports for these files is 0 or a lie, so we read until the end or the cap.
// The kernel never replaces its own files, but a saved tree on an ordinary file system may be
// rewritten by rename between readings: there each read first checks that the path still
// names the open file, and opens it again when it does not.
class KernelFile {
public:
    explicit KernelFile(std::string path, std::size_t cap = 1 << 20);
    ~KernelFile();
    KernelFile(const KernelFile&) = delete;
    KernelFile& operator=(const KernelFile&) = delete;

    const std::string& path() const { return path_; }

    // The whole file, up to the cap.
    KernelFileRead readAll();
    // At most `limit` bytes from the start: enough for a file whose first line is wanted.
    KernelFileRead readPrefix(std::size_t limit);

    // Closes the descriptor so the next read opens the path again: after text that did not
    // parse, the file may have been replaced (a saved tree being rewritten).
    void reopenNextTime() { close(); }

    // One bounded read of a small file, without keeping it open (sysfs attributes).
    static KernelFileRead readOnce(const std::string& path, std::string& buffer,
                                   std::size_t limit = 4096);

private:
    bool ensureOpen(KernelFileRead& result);
    void closeIfReplaced();
    void close();

    std::string path_;
    std::size_t cap_;
    int fd_ = -1;
    bool mayBeReplaced_ = false; // open on an ordinary file system, not procfs or sysfs
    dev_t device_ = 0;
    ino_t inode_ = 0;
    std::vector<char> buffer_;
};

KernelFileError classifyErrno(int errnoValue);

} // namespace lumetra
