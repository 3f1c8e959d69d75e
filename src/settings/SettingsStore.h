#pragma once

#include "appearance/AppearanceConfiguration.h"
#include "appearance/AppearanceMode.h"
#include "model/TopApplicationOrder.h"
#include "settings/MemoryDisplayFormat.h"
#include "settings/MenuBarDisplayStyle.h"
#include "settings/MenuBarMetric.h"
#include "settings/MenuBarMetricSet.h"
#include "settings/MenuBarSeparator.h"
#include "settings/MetricCardStyle.h"
#include "settings/TemperatureDisplayFormat.h"
#include "settings/TemperatureInterval.h"
#include "settings/ThemePreference.h"
#include "settings/UpdateInterval.h"
#include "settings/UserDefaults.h"

#include <QDateTime>
#include <QList>
#include <QObject>
#include <QString>

#include <optional>

namespace lumetra {

// The single owner of the persisted settings. Every value is read once when the store is
// created (a missing or unreadable value silently becomes its default), kept as an
// observable property, and written back the moment it is assigned. Assigning an equal value
// notifies nobody but is still written.
//
// `metricOrder` is written with `knownMetrics`, the metrics this version has. A stored order
// whose file did not know some of them (a file without the key knew the first five) gets
// those appended, disabled, and is written back before it is read: the one write loading
// makes.
//
// Over a read-only domain (the terminal mode) the store follows the file instead: when the
// application changes it, every property is read again and only real changes notify.
class SettingsStore : public QObject {
    Q_OBJECT
    Q_PROPERTY(
        bool launchAtLogin READ launchAtLogin WRITE setLaunchAtLogin NOTIFY launchAtLoginChanged)
    Q_PROPERTY(bool showWelcomeScreen READ showWelcomeScreen WRITE setShowWelcomeScreen NOTIFY
                   showWelcomeScreenChanged)
    Q_PROPERTY(bool hasCompletedOnboarding READ hasCompletedOnboarding WRITE
                   setHasCompletedOnboarding NOTIFY hasCompletedOnboardingChanged)
    Q_PROPERTY(qint64 launchCount READ launchCount WRITE setLaunchCount NOTIFY launchCountChanged)
    Q_PROPERTY(
        std::optional<QString> supportPromptDismissedVersion READ supportPromptDismissedVersion
            WRITE setSupportPromptDismissedVersion NOTIFY supportPromptDismissedVersionChanged)
    Q_PROPERTY(bool automaticallyCheckForUpdates READ automaticallyCheckForUpdates WRITE
                   setAutomaticallyCheckForUpdates NOTIFY automaticallyCheckForUpdatesChanged)
    Q_PROPERTY(std::optional<QDateTime> lastUpdateCheckDate READ lastUpdateCheckDate WRITE
                   setLastUpdateCheckDate NOTIFY lastUpdateCheckDateChanged)
    Q_PROPERTY(lumetra::MenuBarMetricSet enabledMetrics READ enabledMetrics WRITE setEnabledMetrics
                   NOTIFY enabledMetricsChanged)
    Q_PROPERTY(QList<lumetra::MenuBarMetric> metricOrder READ metricOrder WRITE setMetricOrder
                   NOTIFY metricOrderChanged)
    Q_PROPERTY(lumetra::MenuBarSeparator separator READ separator WRITE setSeparator NOTIFY
                   separatorChanged)
    Q_PROPERTY(lumetra::MemoryDisplayFormat memoryFormat READ memoryFormat WRITE setMemoryFormat
                   NOTIFY memoryFormatChanged)
    Q_PROPERTY(lumetra::TemperatureDisplayFormat temperatureFormat READ temperatureFormat WRITE
                   setTemperatureFormat NOTIFY temperatureFormatChanged)
    Q_PROPERTY(lumetra::MenuBarDisplayStyle menuBarDisplayStyle READ menuBarDisplayStyle WRITE
                   setMenuBarDisplayStyle NOTIFY menuBarDisplayStyleChanged)
    Q_PROPERTY(lumetra::ThemePreference themePreference READ themePreference WRITE
                   setThemePreference NOTIFY themePreferenceChanged)
    Q_PROPERTY(lumetra::AppearanceMode appearanceMode READ appearanceMode WRITE setAppearanceMode
                   NOTIFY appearanceModeChanged)
    Q_PROPERTY(lumetra::AppearanceConfiguration customConfiguration READ customConfiguration WRITE
                   setCustomConfiguration NOTIFY customConfigurationChanged)
    Q_PROPERTY(lumetra::MetricCardStyle metricCardStyle READ metricCardStyle WRITE
                   setMetricCardStyle NOTIFY metricCardStyleChanged)
    Q_PROPERTY(lumetra::TopApplicationOrder topApplicationsOrder READ topApplicationsOrder WRITE
                   setTopApplicationsOrder NOTIFY topApplicationsOrderChanged)
    Q_PROPERTY(lumetra::UpdateInterval updateInterval READ updateInterval WRITE setUpdateInterval
                   NOTIFY updateIntervalChanged)
    Q_PROPERTY(lumetra::TemperatureInterval temperatureInterval READ temperatureInterval WRITE
                   setTemperatureInterval NOTIFY temperatureIntervalChanged)
    Q_PROPERTY(bool networkPhysicalOnly READ networkPhysicalOnly WRITE setNetworkPhysicalOnly NOTIFY
                   networkPhysicalOnlyChanged)
    Q_PROPERTY(QList<lumetra::MenuBarMetric> displayedMetrics READ displayedMetrics NOTIFY
                   displayedMetricsChanged)

public:
    // Loads every setting from `defaults`, which must outlive the store. Loading writes nothing
    // unless it offers new metrics (see above).
    explicit SettingsStore(UserDefaults& defaults, QObject* parent = nullptr);
    ~SettingsStore() override;

    UserDefaults& defaults() const { return defaults_; }

    bool launchAtLogin() const { return launchAtLogin_; }
    bool showWelcomeScreen() const { return showWelcomeScreen_; }
    bool hasCompletedOnboarding() const { return hasCompletedOnboarding_; }
    qint64 launchCount() const { return launchCount_; }
    std::optional<QString> supportPromptDismissedVersion() const {
        return supportPromptDismissedVersion_;
    }
    bool automaticallyCheckForUpdates() const { return automaticallyCheckForUpdates_; }
    std::optional<QDateTime> lastUpdateCheckDate() const { return lastUpdateCheckDate_; }
    MenuBarMetricSet enabledMetrics() const { return enabledMetrics_; }
    QList<MenuBarMetric> metricOrder() const { return metricOrder_; }
    MenuBarSeparator separator() const { return separator_; }
    MemoryDisplayFormat memoryFormat() const { return memoryFormat_; }
    TemperatureDisplayFormat temperatureFormat() const { return temperatureFormat_; }
    MenuBarDisplayStyle menuBarDisplayStyle() const { return menuBarDisplayStyle_; }
    ThemePreference themePreference() const { return themePreference_; }
    AppearanceMode appearanceMode() const { return appearanceMode_; }
    AppearanceConfiguration customConfiguration() const { return customConfiguration_; }
    MetricCardStyle metricCardStyle() const { return metricCardStyle_; }
    // The dashboard's top applications: by CPU or by memory.
    TopApplicationOrder topApplicationsOrder() const { return topApplicationsOrder_; }
    UpdateInterval updateInterval() const { return updateInterval_; }
    TemperatureInterval temperatureInterval() const { return temperatureInterval_; }
    bool networkPhysicalOnly() const { return networkPhysicalOnly_; }

    void setLaunchAtLogin(bool value);
    void setShowWelcomeScreen(bool value);
    void setHasCompletedOnboarding(bool value);
    void setLaunchCount(qint64 value);
    void setSupportPromptDismissedVersion(const std::optional<QString>& value);
    void setAutomaticallyCheckForUpdates(bool value);
    void setLastUpdateCheckDate(const std::optional<QDateTime>& value);
    void setEnabledMetrics(MenuBarMetricSet value);
    void setMetricOrder(const QList<MenuBarMetric>& value);
    void setSeparator(MenuBarSeparator value);
    void setMemoryFormat(MemoryDisplayFormat value);
    void setTemperatureFormat(TemperatureDisplayFormat value);
    void setMenuBarDisplayStyle(MenuBarDisplayStyle value);
    void setThemePreference(ThemePreference value);
    void setAppearanceMode(AppearanceMode value);
    void setCustomConfiguration(const AppearanceConfiguration& value);
    void setMetricCardStyle(MetricCardStyle value);
    void setTopApplicationsOrder(TopApplicationOrder value);
    void setUpdateInterval(UpdateInterval value);
    void setTemperatureInterval(TemperatureInterval value);
    void setNetworkPhysicalOnly(bool value);

    // Inserts or removes one metric; either way the whole set is written.
    void setMetricEnabled(MenuBarMetric metric, bool enabled);

    // `metricOrder` filtered to the enabled metrics, in its order, duplicates kept: what the
    // menu bar label draws.
    QList<MenuBarMetric> displayedMetrics() const;

    // Back to the defaults, except the launch count and the last update check, which keep
    // counting; the onboarding flag is removed from the file but keeps its value until the
    // next launch. The login item itself is not touched.
    void resetToDefaults();

    // The 18 keys a reset removes, in the order it removes them.
    static const QStringList& keysRemovedByReset();

signals:
    void launchAtLoginChanged();
    void showWelcomeScreenChanged();
    void hasCompletedOnboardingChanged();
    void launchCountChanged();
    void supportPromptDismissedVersionChanged();
    void automaticallyCheckForUpdatesChanged();
    void lastUpdateCheckDateChanged();
    void enabledMetricsChanged();
    void metricOrderChanged();
    void separatorChanged();
    void memoryFormatChanged();
    void temperatureFormatChanged();
    void menuBarDisplayStyleChanged();
    void themePreferenceChanged();
    void appearanceModeChanged();
    void customConfigurationChanged();
    void metricCardStyleChanged();
    void topApplicationsOrderChanged();
    void updateIntervalChanged();
    void temperatureIntervalChanged();
    void networkPhysicalOnlyChanged();
    void displayedMetricsChanged();

private:
    struct Keys; // the key table, in the .cpp

    template <typename T, typename Setting>
    void assign(const Setting& setting, const T& value);
    template <typename Setting>
    void reload(const Setting& setting);
    void reloadAll();
    void offerNewMetrics();
    void writeKnownMetrics();
    void noteDisplayedMetrics();

    UserDefaults& defaults_;
    // Every field below is set from the key table when the store is created.
    bool launchAtLogin_{};
    bool showWelcomeScreen_{};
    bool hasCompletedOnboarding_{};
    qint64 launchCount_{};
    std::optional<QString> supportPromptDismissedVersion_{};
    bool automaticallyCheckForUpdates_{};
    std::optional<QDateTime> lastUpdateCheckDate_{};
    MenuBarMetricSet enabledMetrics_{};
    QList<MenuBarMetric> metricOrder_{};
    MenuBarSeparator separator_{};
    MemoryDisplayFormat memoryFormat_{};
    TemperatureDisplayFormat temperatureFormat_{};
    MenuBarDisplayStyle menuBarDisplayStyle_{};
    ThemePreference themePreference_{};
    AppearanceMode appearanceMode_{};
    AppearanceConfiguration customConfiguration_{};
    MetricCardStyle metricCardStyle_{};
    TopApplicationOrder topApplicationsOrder_{};
    UpdateInterval updateInterval_{};
    TemperatureInterval temperatureInterval_{};
    bool networkPhysicalOnly_{};
    QList<MenuBarMetric> displayedMetrics_;
};

} // namespace lumetra
