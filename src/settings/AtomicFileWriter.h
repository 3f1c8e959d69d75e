#pragma once

#include <QByteArrayView>
#include <QString>

namespace lumetra {

// Replaces a file's contents all at once or not at all. The bytes go to a new file beside
// it, which is flushed to the disk and checked to hold every byte before it is renamed over
// the old one; on any failure the temporary file is removed and the old file is untouched.
class AtomicFileWriter {
public:
    // The step that failed; `none` when the file was replaced.
    enum class Failure { none, create, write, sync, rename };

    struct Result {
        Failure failure = Failure::none;
        int error = 0; // errno of the failing call

        bool ok() const { return failure == Failure::none; }
        // The system's text for the error, "No space left on device".
        QString reason() const;
    };

    // Creates the file's folder when it is missing. An existing file's permissions are kept.
    static Result write(const QString& path, QByteArrayView bytes);
};

} // namespace lumetra
