#pragma once

#include "appearance/AppearanceConfiguration.h"
#include "settings/TemperatureInterval.h"
#include "settings/UpdateInterval.h"

#include <QObject>
#include <QString>

#include <memory>
#include <optional>

namespace lumetra {

class AppearanceManager;
class LoginItemService;
class MountWatcher;
class SettingsStore;
class StoredUpdateCheckSettings;
class SystemMonitor;
class TopApplicationsMonitor;
class UpdateAlertPresenting;
class UpdateChecking;
class UpdateService;

// The application's root object, on the main thread for the whole process: it owns the
// system monitor and the update service, and carries the application-wide reactions
// (launch counting and the support prompt, the login item, interval changes, re-reading the
// disks when file systems come and go).
class AppState : public QObject {
    Q_OBJECT
    Q_PROPERTY(lumetra::AppearanceConfiguration effectiveAppearance READ effectiveAppearance NOTIFY
                   effectiveAppearanceChanged)

public:
    struct Services {
        SettingsStore& settings;
        AppearanceManager& appearance;
        UpdateChecking& updateChecker;
        UpdateAlertPresenting& updateAlerts;
        LoginItemService& loginItem;
    };

    // Without a monitor, builds the default one over the live kernel with the stored
    // intervals. Does not start sampling. The services must outlive the state.
    explicit AppState(Services services, std::unique_ptr<SystemMonitor> monitor = nullptr,
                      QObject* parent = nullptr);
    ~AppState() override;

    SettingsStore& settings() const { return settings_; }
    SystemMonitor& systemMonitor() const { return *monitor_; }
    // The process list, read on the monitoring thread only while someone watches it.
    TopApplicationsMonitor& topApplications() const { return *topApplications_; }
    AppearanceManager& appearanceManager() const { return appearance_; }
    UpdateService& updateService() const { return *updateService_; }
    LoginItemService& loginItem() const { return loginItem_; }

    // The Monitoring tab's bindings: store the interval, then hand its seconds to the
    // running loops from a queued main-thread task.
    UpdateInterval updateInterval() const;
    void setUpdateInterval(UpdateInterval interval);
    TemperatureInterval temperatureInterval() const;
    void setTemperatureInterval(TemperatureInterval interval);

    // Brings the login item in line with `enabled`; makes no call when it already is.
    // Failures are logged only.
    void applyLoginItem(bool enabled);

    // Counts this launch and, when the rule says so, requests the support prompt 2.0 s later.
    void recordLaunch();

    // Restarts sampling: stop, then start, as two queued main-thread tasks. Discovered
    // sensors and counter baselines are kept.
    void restartSampling();

    // The configuration the glass background draws: the selected mode's preset, or the
    // stored custom one, after the accessibility overrides.
    AppearanceConfiguration effectiveAppearance() const;

    static bool shouldShowSupportPrompt(qint64 launchCount, const QString& currentVersion,
                                        const std::optional<QString>& dismissedVersion);
    // The build's version, "0" when it has none.
    static QString currentAppVersion();
    // True when LUMETRA_UITEST_OPEN_SETTINGS is exactly "1".
    static bool uiTestOpensSettings();

    // Seam for tests: the version recordLaunch compares against the dismissed one.
    void setCurrentVersionForTesting(QString version) { versionOverride_ = std::move(version); }

signals:
    void supportPromptRequested();
    void effectiveAppearanceChanged();

private:
    void noteAppearanceInputs();

    SettingsStore& settings_;
    AppearanceManager& appearance_;
    LoginItemService& loginItem_;
    std::unique_ptr<StoredUpdateCheckSettings> updateCheckSettings_;
    std::unique_ptr<SystemMonitor> monitor_;
    std::unique_ptr<TopApplicationsMonitor> topApplications_; // uses the monitor's thread
    std::unique_ptr<UpdateService> updateService_;
    std::unique_ptr<MountWatcher> mountWatcher_;
    AppearanceConfiguration effectiveAppearance_;
    std::optional<QString> versionOverride_;
};

} // namespace lumetra
