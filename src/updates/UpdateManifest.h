#pragma once

#include "updates/UpdateCheckError.h"

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <optional>
#include <variant>

namespace lumetra {

// The update manifest: the newest release and where to get it.
struct UpdateManifest {
    QString latestVersion;
    QUrl downloadURL;
    // Carried for completeness; nothing shows it.
    std::optional<QUrl> releaseNotesURL;

    friend bool operator==(const UpdateManifest&, const UpdateManifest&) = default;
};

// Decodes one manifest document strictly: a JSON object whose "latestVersion" is a string and
// whose "downloadURL" is a URL string; "releaseNotesURL" may be absent or null, and otherwise
// must be a URL string too. Key names are case-sensitive; other members are ignored.
std::variant<UpdateManifest, UpdateCheckError> decodeUpdateManifest(const QByteArray& json);

// What the manifest accepts as a URL: a string that parses strictly, with a scheme (relative
// references have no meaning in a document fetched from elsewhere), and a host when the
// scheme is a web or file-transfer scheme.
std::optional<QUrl> parseManifestURL(const QString& text);

} // namespace lumetra
