#pragma once

#include <QString>

namespace lumetra {

// Why an update check did not produce a manifest.
struct UpdateCheckError {
    enum class Kind {
        transfer, // no connection, DNS failure, refused, TLS, a broken transfer
        timedOut, // the server went silent or the whole transfer took too long
        tooLarge, // the body exceeded the size a manifest can sensibly have
        decoding, // the body is not a valid manifest
    };

    Kind kind = Kind::transfer;
    QString description;

    friend bool operator==(const UpdateCheckError&, const UpdateCheckError&) = default;
};

} // namespace lumetra
