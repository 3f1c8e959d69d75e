#include "core/AppState.h"

#include "core/LiveProviders.h"

#include "appearance/AppearanceManager.h"
#include "core/StoredUpdateCheckSettings.h"
#include "core/SystemMonitor.h"
#include "core/TopApplicationsMonitor.h"
#include "desktop/LoginItemService.h"
#include "model/AppId.h"
#include "model/Logging.h"
#include "samplers/disk/MountWatcher.h"
#include "settings/SettingsStore.h"
#include "updates/UpdateService.h"

#include <QCoreApplication>
#include <QTimer>

#include <array>
#include <limits>

namespace lumetra {

namespace {

std::unique_ptr<SystemMonitor> defaultMonitor(SettingsStore& settings) {
    const KernelRoots roots;
    return std::make_unique<SystemMonitor>(liveProviders(roots, settings),
                                           seconds(settings.updateInterval()),
                                           seconds(settings.temperatureInterval()));
}

constexpr auto kSupportPromptDelay = std::chrono::milliseconds(2000);

} // namespace

AppState::AppState(Services services, std::unique_ptr<SystemMonitor> monitor, QObject* parent)
    : QObject(parent), settings_(services.settings), appearance_(services.appearance),
      loginItem_(services.loginItem),
      updateCheckSettings_(std::make_unique<StoredUpdateCheckSettings>(services.settings)),
      monitor_(monitor ? std::move(monitor) : defaultMonitor(services.settings)) {
    topApplications_ = std::make_unique<TopApplicationsMonitor>(
        liveProcessTable(KernelRoots()), monitor_->monitoringThread(),
        seconds(settings_.updateInterval()));
    updateService_ = std::make_unique<UpdateService>(services.updateChecker, *updateCheckSettings_,
                                                     services.updateAlerts);
    applyLoginItem(settings_.launchAtLogin());

    // Volumes come and go: re-list them at once rather than at the next slow tick.
    mountWatcher_ = std::make_unique<MountWatcher>();
    connect(mountWatcher_.get(), &MountWatcher::mountsChanged, this, [this] {
        QMetaObject::invokeMethod(
            this, [this] { monitor_->refreshDiskVolumes(); }, Qt::QueuedConnection);
    });

    // Interval changes from anywhere (the Monitoring tab, a reset) reach the running loops.
    connect(&settings_, &SettingsStore::updateIntervalChanged, this, [this] {
        const double period = seconds(settings_.updateInterval());
        QMetaObject::invokeMethod(
            this,
            [this, period] {
                monitor_->setUpdateInterval(period);
                topApplications_->setUpdateInterval(period);
            },
            Qt::QueuedConnection);
    });
    connect(&settings_, &SettingsStore::temperatureIntervalChanged, this, [this] {
        const double period = seconds(settings_.temperatureInterval());
        QMetaObject::invokeMethod(
            this, [this, period] { monitor_->setTemperatureInterval(period); },
            Qt::QueuedConnection);
    });

    effectiveAppearance_ = effectiveAppearance();
    connect(&settings_, &SettingsStore::appearanceModeChanged, this,
            &AppState::noteAppearanceInputs);
    connect(&settings_, &SettingsStore::customConfigurationChanged, this,
            &AppState::noteAppearanceInputs);
    connect(&appearance_, &AppearanceManager::reduceTransparencyChanged, this,
            &AppState::noteAppearanceInputs);
    connect(&appearance_, &AppearanceManager::increaseContrastChanged, this,
            &AppState::noteAppearanceInputs);
}

AppState::~AppState() = default;

UpdateInterval AppState::updateInterval() const {
    return settings_.updateInterval();
}

void AppState::setUpdateInterval(UpdateInterval interval) {
    settings_.setUpdateInterval(interval);
}

TemperatureInterval AppState::temperatureInterval() const {
    return settings_.temperatureInterval();
}

void AppState::setTemperatureInterval(TemperatureInterval interval) {
    settings_.setTemperatureInterval(interval);
}

void AppState::applyLoginItem(bool enabled) {
    if (enabled == loginItem_.isEnabled())
        return;
    const std::optional<QString> failure =
        enabled ? loginItem_.registerItem() : loginItem_.unregisterItem();
    if (failure)
        qCCritical(logUi).noquote() << "Failed to update login item:" << *failure;
}

void AppState::recordLaunch() {
    const qint64 count = settings_.launchCount();
    if (count == std::numeric_limits<qint64>::max())
        qFatal("launch count overflow");
    settings_.setLaunchCount(count + 1);
    if (!settings_.hasCompletedOnboarding())
        return;
    if (uiTestOpensSettings())
        return;
    const QString version = versionOverride_.value_or(currentAppVersion());
    if (!shouldShowSupportPrompt(settings_.launchCount(), version,
                                 settings_.supportPromptDismissedVersion()))
        return;
    // The timer's context is this object: the prompt is never asked for once it is gone.
    QTimer::singleShot(kSupportPromptDelay, this, [this] { emit supportPromptRequested(); });
}

void AppState::restartSampling() {
    QMetaObject::invokeMethod(
        this, [this] { monitor_->stop(); }, Qt::QueuedConnection);
    QMetaObject::invokeMethod(
        this, [this] { monitor_->start(); }, Qt::QueuedConnection);
}

AppearanceConfiguration AppState::effectiveAppearance() const {
    return AppearanceConfiguration::resolve(
        settings_.appearanceMode(), settings_.customConfiguration(),
        appearance_.reduceTransparency(), appearance_.increaseContrast());
}

void AppState::noteAppearanceInputs() {
    const AppearanceConfiguration now = effectiveAppearance();
    if (now == effectiveAppearance_)
        return;
    effectiveAppearance_ = now;
    emit effectiveAppearanceChanged();
}

bool AppState::shouldShowSupportPrompt(qint64 launchCount, const QString& currentVersion,
                                       const std::optional<QString>& dismissedVersion) {
    if (dismissedVersion && *dismissedVersion == currentVersion)
        return false;
    static constexpr std::array<qint64, 5> kPromptLaunches{3, 15, 50, 150, 400};
    return std::find(kPromptLaunches.begin(), kPromptLaunches.end(), launchCount) !=
           kPromptLaunches.end();
}

QString AppState::currentAppVersion() {
    const QString version = QCoreApplication::applicationVersion();
    return version.isEmpty() ? QStringLiteral("0") : version;
}

bool AppState::uiTestOpensSettings() {
    return qgetenv("LUMETRA_UITEST_OPEN_SETTINGS") == "1";
}

} // namespace lumetra
