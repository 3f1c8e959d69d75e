#pragma once

#include "updates/UpdateChecking.h"

#include <QNetworkAccessManager>
#include <QUrl>

#include <chrono>

namespace lumetra {

// Where the manifest lives. The environment variable LUMETRA_UPDATE_MANIFEST_URL replaces the
// built-in address (a test server, a mirror, a staging host); a value that is not an absolute
// URL is ignored with a log line. Read once, on first use.
QUrl updateManifestURL();

// The built-in address and the override rule, apart from the environment.
QUrl resolveUpdateManifestURL(const QString& override);

// How long and how much one manifest fetch may take.
struct UpdateCheckerLimits {
    // The transfer is given up when no byte moves for this long.
    std::chrono::milliseconds transferTimeout{std::chrono::seconds(15)};
    // ... or when the whole transfer lasts longer than this, so a server that trickles
    // bytes cannot hold a check open either.
    std::chrono::milliseconds overallTimeout{std::chrono::seconds(60)};
    // A manifest is a few hundred bytes; a body beyond this is not one and is not kept.
    qint64 maxBodyBytes = 1024 * 1024;
};

// Fetches the manifest with one plain GET over Qt Network. Lives on the thread that creates it
// (the main thread); completions come back there.
class UpdateChecker final : public UpdateChecking {
public:
    using Limits = UpdateCheckerLimits;

    UpdateChecker();
    explicit UpdateChecker(QUrl manifestURL, Limits limits = {});

    void fetchLatestManifest(Completion completion) override;

    const QUrl& manifestURL() const { return manifestURL_; }

private:
    QUrl manifestURL_;
    Limits limits_;
    QNetworkAccessManager session_;
};

} // namespace lumetra
