#include "updates/UpdateAlert.h"

#include <QCoreApplication>

namespace lumetra {

namespace {

// English texts are their own translation keys.
QString tr(const char* text) {
    return QCoreApplication::translate("UpdateService", text);
}

// A dotted key with its English default, for texts that translators share between places.
QString trKey(const char* key, const char* english) {
    const QString translated = QCoreApplication::translate("UpdateService", key);
    return translated == QLatin1String(key) ? QString::fromUtf8(english) : translated;
}

} // namespace

UpdateAlert UpdateAlert::updateAvailable(const QString& latestVersion,
                                         const QString& currentVersion) {
    return {Kind::updateAvailable,
            Style::standard,
            tr("A New Version is Available"),
            tr("lumetra %1 is available \u2014 you have %2.").arg(latestVersion, currentVersion),
            {trKey("update.downloadButton", "Download"), tr("Later")}};
}

UpdateAlert UpdateAlert::upToDate(const QString& currentVersion) {
    return {Kind::upToDate,
            Style::standard,
            tr("You're Up to Date"),
            tr("lumetra %1 is the latest version.").arg(currentVersion),
            {tr("OK")}};
}

UpdateAlert UpdateAlert::checkFailed() {
    return {Kind::checkFailed,
            Style::warning,
            tr("Couldn't Check for Updates"),
            tr("Make sure you're connected to the internet and try again."),
            {tr("OK")}};
}

} // namespace lumetra
