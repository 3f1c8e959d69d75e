#include "updates/UpdateService.h"

#include "model/Logging.h"
#include "updates/UpdateAlertPresenting.h"
#include "updates/UpdateCheckSettings.h"
#include "updates/Version.h"

#include <QPointer>

namespace lumetra {

bool isAutomaticUpdateCheckDue(bool automaticallyCheck, std::optional<Instant> lastCheck,
                               Instant now) {
    if (!automaticallyCheck)
        return false;
    if (!lastCheck)
        return true;
    // Compared as "last check after (now − 24 h)" so a stored date near the ends of the
    // clock's range cannot overflow a subtraction.
    constexpr auto interval = UpdateService::kMinimumAutomaticCheckInterval;
    if (now < Instant::min() + interval)
        return false;
    return *lastCheck <= now - interval;
}

UpdateService::UpdateService(UpdateChecking& checker, UpdateCheckSettings& settings,
                             UpdateAlertPresenting& alerts, QObject* parent)
    : QObject(parent), checker_(checker), settings_(settings), alerts_(alerts),
      clock_([] { return WallClock::now(); }), currentVersion_([] { return currentAppVersion(); }) {
}

void UpdateService::checkForUpdatesIfNeeded() {
    if (isAutomaticUpdateCheckDue(settings_.automaticallyCheckForUpdates(),
                                  settings_.lastUpdateCheckDate(), clock_()))
        checkForUpdates(false);
}

void UpdateService::checkForUpdates(bool userInitiated) {
    // Stamped before fetching, whatever the outcome, so a failing check is not repeated at
    // every start for a day.
    settings_.setLastUpdateCheckDate(clock_());
    ++checksInProgress_;
    QPointer<UpdateService> self(this);
    checker_.fetchLatestManifest([self, userInitiated](const UpdateCheckResult& result) {
        if (self)
            self->finishCheck(userInitiated, result);
    });
}

void UpdateService::finishCheck(bool userInitiated, const UpdateCheckResult& result) {
    if (const auto* error = std::get_if<UpdateCheckError>(&result)) {
        qCCritical(logSettings, "Update check failed: %s", qUtf8Printable(error->description));
        if (userInitiated)
            alerts_.present(UpdateAlert::checkFailed());
    } else {
        const auto& manifest = std::get<UpdateManifest>(result);
        const QString current = currentVersion_();
        if (isNewerVersion(manifest.latestVersion, current)) {
            const UpdateAlert alert = UpdateAlert::updateAvailable(manifest.latestVersion, current);
            // "Later" records nothing: the same version is offered again next time.
            if (alerts_.present(alert) == 0)
                alerts_.openURL(manifest.downloadURL);
        } else if (userInitiated) {
            alerts_.present(UpdateAlert::upToDate(current));
        }
    }
    --checksInProgress_;
    emit checkFinished();
}

} // namespace lumetra
