#pragma once

#include "model/Instant.h"
#include "updates/UpdateChecking.h"

#include <QObject>
#include <QString>

#include <chrono>
#include <functional>
#include <optional>

namespace lumetra {

class UpdateAlertPresenting;
class UpdateCheckSettings;

// True when an automatic check may run now: it is allowed and no check started within the
// last 24 hours. A date in the future (the clock was set back) holds checks off until 24 hours
// after it.
bool isAutomaticUpdateCheckDue(bool automaticallyCheck, std::optional<Instant> lastCheck,
                               Instant now);

// Decides when to look for a new release and what to tell the user. Main thread only.
// Checks may overlap (a manual check pressed while the start-up one runs): each runs to its
// end on its own and may show its own alert.
class UpdateService : public QObject {
    Q_OBJECT

public:
    static constexpr std::chrono::seconds kMinimumAutomaticCheckInterval{86400};

    // The three collaborators must outlive the service.
    UpdateService(UpdateChecking& checker, UpdateCheckSettings& settings,
                  UpdateAlertPresenting& alerts, QObject* parent = nullptr);

    // Seams for tests: the wall clock and the application's own version.
    void setClock(std::function<Instant()> clock) { clock_ = std::move(clock); }
    void setCurrentVersionSource(std::function<QString()> source) {
        currentVersion_ = std::move(source);
    }

    // The start-up check: at most once a day and only when the user allows it. Returns at once.
    void checkForUpdatesIfNeeded();
    // Starts one check and returns at once. A user-initiated check always ends in an alert;
    // an automatic one speaks only when there is a newer version.
    void checkForUpdates(bool userInitiated);

    int checksInProgress() const { return checksInProgress_; }

signals:
    // After a check's alert (if any) was dismissed.
    void checkFinished();

private:
    void finishCheck(bool userInitiated, const UpdateCheckResult& result);

    UpdateChecking& checker_;
    UpdateCheckSettings& settings_;
    UpdateAlertPresenting& alerts_;
    std::function<Instant()> clock_;
    std::function<QString()> currentVersion_;
    int checksInProgress_ = 0;
};

} // namespace lumetra
