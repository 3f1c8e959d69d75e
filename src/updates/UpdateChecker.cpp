#include "updates/UpdateChecker.h"

#include "model/Logging.h"

#include <QNetworkReply>
#include <QNetworkRequest>
#include <QTimer>

#include <memory>
#include <optional>

namespace lumetra {

namespace {

// Only the path's ending is fixed; the host is where releases are published.
constexpr char kDefaultManifestAddress[] = "https://lumetra.app/lumetra/appcast.json";

// The reply holds at most this much unread, so a huge body never sits in memory whole.
constexpr qint64 kReadBufferBytes = 64 * 1024;

// Replies whose error only repeats the HTTP status. The status is not examined: whatever body
// came with it goes to the decoder.
bool isHttpStatusError(const QNetworkReply& reply) {
    if (!reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).isValid())
        return false;
    const QNetworkReply::NetworkError error = reply.error();
    return (error >= QNetworkReply::ContentAccessDenied &&
            error <= QNetworkReply::UnknownContentError) ||
           error == QNetworkReply::ProtocolInvalidOperationError ||
           (error >= QNetworkReply::InternalServerError &&
            error <= QNetworkReply::UnknownServerError);
}

UpdateCheckError tooLargeError(qint64 maxBodyBytes) {
    return {UpdateCheckError::Kind::tooLarge,
            QStringLiteral("The manifest is larger than %1 bytes").arg(maxBodyBytes)};
}

UpdateCheckError timedOutError() {
    return {UpdateCheckError::Kind::timedOut, QStringLiteral("The request timed out")};
}

// The state of one fetch, shared by the reply's handlers.
struct Fetch {
    UpdateChecking::Completion completion;
    QByteArray body;
    // Set when we abort the transfer ourselves, before the abort finishes the reply.
    std::optional<UpdateCheckError> failure;
    bool finished = false;
};

} // namespace

QUrl resolveUpdateManifestURL(const QString& override) {
    if (!override.isEmpty()) {
        if (auto url = parseManifestURL(override))
            return *url;
        qCWarning(logSettings,
                  "LUMETRA_UPDATE_MANIFEST_URL is not an absolute URL (\"%s\"); using %s",
                  qUtf8Printable(override), kDefaultManifestAddress);
    }
    const auto url = parseManifestURL(QString::fromLatin1(kDefaultManifestAddress));
    if (!url)
        qFatal("The built-in update manifest address is not a URL: %s", kDefaultManifestAddress);
    return *url;
}

QUrl updateManifestURL() {
    static const QUrl url =
        resolveUpdateManifestURL(qEnvironmentVariable("LUMETRA_UPDATE_MANIFEST_URL"));
    return url;
}

UpdateChecker::UpdateChecker() : UpdateChecker(updateManifestURL()) {}

UpdateChecker::UpdateChecker(QUrl manifestURL, Limits limits)
    : manifestURL_(std::move(manifestURL)), limits_(limits) {}

void UpdateChecker::fetchLatestManifest(Completion completion) {
    // One plain GET: default cache and redirect policy (redirects followed unless they
    // downgrade https to http), no extra headers.
    QNetworkRequest request(manifestURL_);
    request.setTransferTimeout(static_cast<int>(limits_.transferTimeout.count()));
    QNetworkReply* reply = session_.get(request);
    reply->setReadBufferSize(kReadBufferBytes);

    auto fetch = std::make_shared<Fetch>();
    fetch->completion = std::move(completion);
    const qint64 maxBodyBytes = limits_.maxBodyBytes;

    auto giveUp = [fetch, reply](UpdateCheckError error) {
        if (fetch->failure || fetch->finished)
            return;
        fetch->failure = std::move(error);
        fetch->body.clear();
        reply->abort();
    };

    QObject::connect(reply, &QNetworkReply::metaDataChanged, reply, [=] {
        bool known = false;
        const qint64 length =
            reply->header(QNetworkRequest::ContentLengthHeader).toLongLong(&known);
        if (known && length > maxBodyBytes)
            giveUp(tooLargeError(maxBodyBytes));
    });
    QObject::connect(reply, &QIODevice::readyRead, reply, [=] {
        if (fetch->failure)
            return;
        fetch->body.append(reply->read(maxBodyBytes + 1 - fetch->body.size()));
        if (fetch->body.size() > maxBodyBytes)
            giveUp(tooLargeError(maxBodyBytes));
    });

    auto* deadline = new QTimer(reply);
    deadline->setSingleShot(true);
    QObject::connect(deadline, &QTimer::timeout, reply, [=] { giveUp(timedOutError()); });
    deadline->start(limits_.overallTimeout);

    QObject::connect(reply, &QNetworkReply::finished, reply, [=, this] {
        reply->deleteLater();
        if (fetch->finished)
            return;
        fetch->finished = true;

        UpdateCheckResult result = UpdateCheckError{};
        if (fetch->failure) {
            result = *fetch->failure;
        } else if (reply->error() != QNetworkReply::NoError && !isHttpStatusError(*reply)) {
            // Without our own abort, a cancellation can only come from the transfer time-out.
            const auto error = reply->error();
            if (error == QNetworkReply::OperationCanceledError ||
                error == QNetworkReply::TimeoutError)
                result = timedOutError();
            else
                result = UpdateCheckError{UpdateCheckError::Kind::transfer, reply->errorString()};
        } else {
            fetch->body.append(reply->read(maxBodyBytes + 1 - fetch->body.size()));
            if (fetch->body.size() > maxBodyBytes)
                result = tooLargeError(maxBodyBytes);
            else
                result = decodeUpdateManifest(fetch->body);
        }
        fetch->body.clear();
        // Always later, never from inside a reply's signal (an abort finishes it at once).
        QTimer::singleShot(0, &session_,
                           [completion = std::move(fetch->completion), result = std::move(result)] {
                               completion(result);
                           });
    });
}

} // namespace lumetra
