#include "updates/UpdateManifest.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>

namespace lumetra {

namespace {

UpdateCheckError decodingError(const QString& description) {
    return {UpdateCheckError::Kind::decoding, description};
}

QString typeName(const QJsonValue& value) {
    switch (value.type()) {
    case QJsonValue::Null:
        return QStringLiteral("null");
    case QJsonValue::Bool:
        return QStringLiteral("a boolean");
    case QJsonValue::Double:
        return QStringLiteral("a number");
    case QJsonValue::String:
        return QStringLiteral("a string");
    case QJsonValue::Array:
        return QStringLiteral("an array");
    case QJsonValue::Object:
        return QStringLiteral("an object");
    case QJsonValue::Undefined:
        break;
    }
    return QStringLiteral("missing");
}

// Reads a URL member into `url`, or says why it is not one.
std::optional<UpdateCheckError> readURL(const QJsonValue& value, const char* key, QUrl& url) {
    if (!value.isString()) {
        return decodingError(QStringLiteral("\"%1\" is %2, not a URL string")
                                 .arg(QLatin1String(key), typeName(value)));
    }
    const auto parsed = parseManifestURL(value.toString());
    if (!parsed) {
        return decodingError(QStringLiteral("\"%1\" is not a URL: \"%2\"")
                                 .arg(QLatin1String(key), value.toString().left(200)));
    }
    url = *parsed;
    return std::nullopt;
}

} // namespace

std::optional<QUrl> parseManifestURL(const QString& text) {
    if (text.isEmpty())
        return std::nullopt;
    QUrl url(text, QUrl::StrictMode);
    if (!url.isValid() || url.isRelative())
        return std::nullopt;
    const QString scheme = url.scheme();
    const bool needsHost = scheme == QLatin1String("https") || scheme == QLatin1String("http") ||
                           scheme == QLatin1String("ftp");
    if (needsHost && url.host().isEmpty())
        return std::nullopt;
    return url;
}

std::variant<UpdateManifest, UpdateCheckError> decodeUpdateManifest(const QByteArray& json) {
    if (json.isEmpty())
        return decodingError(QStringLiteral("The manifest is empty"));
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(json, &parseError);
    if (parseError.error != QJsonParseError::NoError) {
        return decodingError(QStringLiteral("The manifest is not valid JSON: %1 at byte %2")
                                 .arg(parseError.errorString())
                                 .arg(parseError.offset));
    }
    if (!document.isObject())
        return decodingError(QStringLiteral("The manifest is not a JSON object"));
    const QJsonObject object = document.object();

    UpdateManifest manifest;
    const QJsonValue latest = object.value(QLatin1String("latestVersion"));
    if (!latest.isString()) {
        return decodingError(
            QStringLiteral("\"latestVersion\" is %1, not a string").arg(typeName(latest)));
    }
    manifest.latestVersion = latest.toString();

    if (auto error = readURL(object.value(QLatin1String("downloadURL")), "downloadURL",
                             manifest.downloadURL))
        return *error;

    const QJsonValue notes = object.value(QLatin1String("releaseNotesURL"));
    if (!notes.isUndefined() && !notes.isNull()) {
        QUrl notesURL;
        if (auto error = readURL(notes, "releaseNotesURL", notesURL))
            return *error;
        manifest.releaseNotesURL = notesURL;
    }
    return manifest;
}

} // namespace lumetra
