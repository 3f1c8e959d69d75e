#include "settings/SettingsStore.h"

#include "model/Logging.h"
#include "settings/SettingsFileFormat.h"

#include <QLatin1StringView>

#include <tuple>
#include <utility>

namespace lumetra {

namespace {

// What "reset to defaults" does with a key.
enum class OnReset {
    restore, // removed from the file and set back to its default
    forget,  // removed from the file; the value in memory stays until the next launch
    keep,    // left alone: counters and dates that keep counting
};

// One row of the key table: where the value lives, how it is read back with its fallback
// (reading a missing key gives the default), how it is written and how a reset treats it.
template <typename T>
struct Setting {
    QLatin1StringView key;
    T SettingsStore::*field;
    void (SettingsStore::*changed)();
    T (*load)(const QVariant& stored);
    // No value: write nothing. An invalid QVariant: remove the key.
    std::optional<QVariant> (*encode)(const T& value);
    OnReset onReset;
};

// --- reading, each with the fallback of its key ------------------------------------------

template <bool Fallback>
bool loadBool(const QVariant& stored) {
    return stored.typeId() == QMetaType::Bool ? stored.toBool() : Fallback;
}

qint64 loadInteger(const QVariant& stored) {
    return stored.typeId() == QMetaType::LongLong ? stored.toLongLong() : 0;
}

std::optional<QString> loadString(const QVariant& stored) {
    if (stored.typeId() != QMetaType::QString)
        return std::nullopt;
    return stored.toString();
}

std::optional<QDateTime> loadDate(const QVariant& stored) {
    if (stored.typeId() != QMetaType::QDateTime || !stored.toDateTime().isValid())
        return std::nullopt;
    return stored.toDateTime();
}

// A missing key or a value that is not a string reads as "", which names no case.
template <auto Fallback>
decltype(Fallback) loadEnum(const QVariant& stored) {
    using E = decltype(Fallback);
    const QString raw = stored.typeId() == QMetaType::QString ? stored.toString() : QString();
    return fromRaw<E>(QStringView(raw)).value_or(Fallback);
}

// Any number counts, so a hand-written 2 means two seconds as 2.0 does.
template <auto Fallback>
decltype(Fallback) loadInterval(const QVariant& stored) {
    using E = decltype(Fallback);
    const int type = stored.typeId();
    if (type != QMetaType::Double && type != QMetaType::LongLong)
        return Fallback;
    return fromRaw<E>(stored.toDouble()).value_or(Fallback);
}

// No value unless the key holds an array of strings only. Unknown names are dropped; nothing
// is added, duplicates stay.
std::optional<QList<MenuBarMetric>> loadMetricList(const QVariant& stored) {
    if (stored.typeId() != QMetaType::QVariantList)
        return std::nullopt;
    const QVariantList elements = stored.toList();
    QList<MenuBarMetric> metrics;
    for (const QVariant& element : elements) {
        if (element.typeId() != QMetaType::QString)
            return std::nullopt;
        if (auto metric = fromRaw<MenuBarMetric>(QStringView(element.toString())))
            metrics.append(*metric);
    }
    return metrics;
}

MenuBarMetricSet loadEnabledMetrics(const QVariant& stored) {
    const auto metrics = loadMetricList(stored);
    if (!metrics)
        return {MenuBarMetric::cpu, MenuBarMetric::memory, MenuBarMetric::temperature};
    MenuBarMetricSet set;
    for (MenuBarMetric metric : *metrics)
        set.insert(metric);
    return set;
}

QList<MenuBarMetric> everyMetric() {
    const auto& all = allCases<MenuBarMetric>();
    return QList<MenuBarMetric>(all.begin(), all.end());
}

QList<MenuBarMetric> loadMetricOrder(const QVariant& stored) {
    return loadMetricList(stored).value_or(everyMetric());
}

AppearanceConfiguration loadConfiguration(const QVariant& stored) {
    if (stored.typeId() != QMetaType::QByteArray)
        return AppearanceConfiguration::preset(AppearanceMode::custom);
    return AppearanceConfiguration::fromJson(stored.toByteArray())
        .value_or(AppearanceConfiguration::preset(AppearanceMode::custom));
}

// --- writing -------------------------------------------------------------------------------

std::optional<QVariant> encodeBool(const bool& value) {
    return QVariant(value);
}

std::optional<QVariant> encodeInteger(const qint64& value) {
    return QVariant::fromValue<qlonglong>(value);
}

std::optional<QVariant> encodeString(const std::optional<QString>& value) {
    return value ? QVariant(*value) : QVariant();
}

std::optional<QVariant> encodeDate(const std::optional<QDateTime>& value) {
    return value ? QVariant(*value) : QVariant();
}

QString rawText(std::string_view raw) {
    return QString::fromLatin1(raw.data(), qsizetype(raw.size()));
}

template <typename E>
std::optional<QVariant> encodeEnum(const E& value) {
    return QVariant(rawText(rawValue(value)));
}

template <typename E>
std::optional<QVariant> encodeInterval(const E& value) {
    return QVariant(rawValue(value));
}

std::optional<QVariant> encodeMetricList(const QList<MenuBarMetric>& metrics) {
    QVariantList raw;
    raw.reserve(metrics.size());
    for (MenuBarMetric metric : metrics)
        raw.append(rawText(rawValue(metric)));
    return raw;
}

std::optional<QVariant> encodeEnabledMetrics(const MenuBarMetricSet& metrics) {
    return encodeMetricList(metrics.values());
}

// A configuration JSON cannot carry leaves the stored one in place.
std::optional<QVariant> encodeConfiguration(const AppearanceConfiguration& configuration) {
    const auto json = configuration.toJson();
    if (!json)
        return std::nullopt;
    return QVariant(*json);
}

} // namespace

// The key table. The keys are the file's external interface: spelled exactly, never renamed.
struct SettingsStore::Keys {
    using S = SettingsStore;
    static constexpr Setting<bool> launchAtLogin{QLatin1StringView("launchAtLogin"),
                                                 &S::launchAtLogin_,
                                                 &S::launchAtLoginChanged,
                                                 loadBool<false>,
                                                 encodeBool,
                                                 OnReset::restore};
    static constexpr Setting<bool> showWelcomeScreen{QLatin1StringView("showWelcomeScreen"),
                                                     &S::showWelcomeScreen_,
                                                     &S::showWelcomeScreenChanged,
                                                     loadBool<true>,
                                                     encodeBool,
                                                     OnReset::restore};
    static constexpr Setting<bool> hasCompletedOnboarding{
        QLatin1StringView("hasCompletedOnboarding"),
        &S::hasCompletedOnboarding_,
        &S::hasCompletedOnboardingChanged,
        loadBool<false>,
        encodeBool,
        OnReset::forget};
    static constexpr Setting<qint64> launchCount{QLatin1StringView("launchCount"),
                                                 &S::launchCount_,
                                                 &S::launchCountChanged,
                                                 loadInteger,
                                                 encodeInteger,
                                                 OnReset::keep};
    static constexpr Setting<std::optional<QString>> supportPromptDismissedVersion{
        QLatin1StringView("supportPromptDismissedVersion"),
        &S::supportPromptDismissedVersion_,
        &S::supportPromptDismissedVersionChanged,
        loadString,
        encodeString,
        OnReset::restore};
    static constexpr Setting<bool> automaticallyCheckForUpdates{
        QLatin1StringView("automaticallyCheckForUpdates"),
        &S::automaticallyCheckForUpdates_,
        &S::automaticallyCheckForUpdatesChanged,
        loadBool<true>,
        encodeBool,
        OnReset::restore};
    static constexpr Setting<std::optional<QDateTime>> lastUpdateCheckDate{
        QLatin1StringView("lastUpdateCheckDate"),
        &S::lastUpdateCheckDate_,
        &S::lastUpdateCheckDateChanged,
        loadDate,
        encodeDate,
        OnReset::keep};
    static constexpr Setting<MenuBarMetricSet> enabledMetrics{QLatin1StringView("enabledMetrics"),
                                                              &S::enabledMetrics_,
                                                              &S::enabledMetricsChanged,
                                                              loadEnabledMetrics,
                                                              encodeEnabledMetrics,
                                                              OnReset::restore};
    static constexpr Setting<QList<MenuBarMetric>> metricOrder{QLatin1StringView("metricOrder"),
                                                               &S::metricOrder_,
                                                               &S::metricOrderChanged,
                                                               loadMetricOrder,
                                                               encodeMetricList,
                                                               OnReset::restore};
    static constexpr Setting<MenuBarSeparator> separator{
        QLatin1StringView("separator"), &S::separator_,
        &S::separatorChanged,           loadEnum<MenuBarSeparator::space>,
        encodeEnum<MenuBarSeparator>,   OnReset::restore};
    static constexpr Setting<MemoryDisplayFormat> memoryFormat{
        QLatin1StringView("memoryFormat"), &S::memoryFormat_,
        &S::memoryFormatChanged,           loadEnum<MemoryDisplayFormat::percentageOnly>,
        encodeEnum<MemoryDisplayFormat>,   OnReset::restore};
    // Falls back to the second case, not the first: kept so on purpose.
    static constexpr Setting<TemperatureDisplayFormat> temperatureFormat{
        QLatin1StringView("temperatureFormat"), &S::temperatureFormat_,
        &S::temperatureFormatChanged,           loadEnum<TemperatureDisplayFormat::degreesWithUnit>,
        encodeEnum<TemperatureDisplayFormat>,   OnReset::restore};
    static constexpr Setting<MenuBarDisplayStyle> menuBarDisplayStyle{
        QLatin1StringView("menuBarDisplayStyle"), &S::menuBarDisplayStyle_,
        &S::menuBarDisplayStyleChanged,           loadEnum<MenuBarDisplayStyle::textOnly>,
        encodeEnum<MenuBarDisplayStyle>,          OnReset::restore};
    static constexpr Setting<ThemePreference> themePreference{
        QLatin1StringView("themePreference"), &S::themePreference_,
        &S::themePreferenceChanged,           loadEnum<ThemePreference::system>,
        encodeEnum<ThemePreference>,          OnReset::restore};
    static constexpr Setting<AppearanceMode> appearanceMode{
        QLatin1StringView("appearanceMode"), &S::appearanceMode_,        &S::appearanceModeChanged,
        loadEnum<AppearanceMode::glass>,     encodeEnum<AppearanceMode>, OnReset::restore};
    static constexpr Setting<AppearanceConfiguration> customConfiguration{
        QLatin1StringView("customConfiguration"),
        &S::customConfiguration_,
        &S::customConfigurationChanged,
        loadConfiguration,
        encodeConfiguration,
        OnReset::restore};
    static constexpr Setting<MetricCardStyle> metricCardStyle{
        QLatin1StringView("metricCardStyle"), &S::metricCardStyle_,
        &S::metricCardStyleChanged,           loadEnum<MetricCardStyle::classic>,
        encodeEnum<MetricCardStyle>,          OnReset::restore};
    static constexpr Setting<TopApplicationOrder> topApplicationsOrder{
        QLatin1StringView("topApplicationsOrder"), &S::topApplicationsOrder_,
        &S::topApplicationsOrderChanged,           loadEnum<TopApplicationOrder::cpu>,
        encodeEnum<TopApplicationOrder>,           OnReset::restore};
    // The two intervals default to different cases and are stored as numbers.
    static constexpr Setting<UpdateInterval> updateInterval{
        QLatin1StringView("updateInterval"), &S::updateInterval_,
        &S::updateIntervalChanged,           loadInterval<UpdateInterval::one>,
        encodeInterval<UpdateInterval>,      OnReset::restore};
    static constexpr Setting<TemperatureInterval> temperatureInterval{
        QLatin1StringView("temperatureInterval"), &S::temperatureInterval_,
        &S::temperatureIntervalChanged,           loadInterval<TemperatureInterval::two>,
        encodeInterval<TemperatureInterval>,      OnReset::restore};
    // Off keeps every up, running, non-loopback interface; on counts only those backed by a
    // device, so VPN, bridge and container traffic is not counted twice.
    static constexpr Setting<bool> networkPhysicalOnly{QLatin1StringView("networkPhysicalOnly"),
                                                       &S::networkPhysicalOnly_,
                                                       &S::networkPhysicalOnlyChanged,
                                                       loadBool<false>,
                                                       encodeBool,
                                                       OnReset::restore};

    // Not a property: the metrics of the version that last wrote `metricOrder`, so a later
    // version can tell which of its metrics that order never offered. Written with the order.
    static constexpr QLatin1StringView knownMetrics{"knownMetrics"};

    // Loading order.
    static constexpr auto all = std::tuple{&launchAtLogin,
                                           &showWelcomeScreen,
                                           &hasCompletedOnboarding,
                                           &launchCount,
                                           &supportPromptDismissedVersion,
                                           &automaticallyCheckForUpdates,
                                           &lastUpdateCheckDate,
                                           &enabledMetrics,
                                           &metricOrder,
                                           &separator,
                                           &memoryFormat,
                                           &temperatureFormat,
                                           &menuBarDisplayStyle,
                                           &themePreference,
                                           &appearanceMode,
                                           &customConfiguration,
                                           &metricCardStyle,
                                           &topApplicationsOrder,
                                           &updateInterval,
                                           &temperatureInterval,
                                           &networkPhysicalOnly};
};

SettingsStore::SettingsStore(UserDefaults& defaults, QObject* parent)
    : QObject(parent), defaults_(defaults) {
    reloadAll();
    connect(&defaults_, &UserDefaults::changedExternally, this, &SettingsStore::reloadAll);
}

SettingsStore::~SettingsStore() = default;

template <typename T, typename S>
void SettingsStore::assign(const S& setting, const T& value) {
    T& field = this->*setting.field;
    const bool changed = !(field == value);
    if (changed)
        field = value;
    if (const std::optional<QVariant> encoded = setting.encode(field))
        defaults_.setValue(QString(setting.key), *encoded);
    if (changed) {
        emit(this->*setting.changed)();
        noteDisplayedMetrics();
    }
}

template <typename S>
void SettingsStore::reload(const S& setting) {
    auto value = setting.load(defaults_.value(QString(setting.key)));
    auto& field = this->*setting.field;
    if (field == value)
        return;
    field = std::move(value);
    emit(this->*setting.changed)();
}

void SettingsStore::reloadAll() {
    // Before reading, so the order is read once, as it now stands.
    offerNewMetrics();
    std::apply([this](const auto*... setting) { (reload(*setting), ...); }, Keys::all);
    noteDisplayedMetrics();
}

void SettingsStore::offerNewMetrics() {
    using enum MenuBarMetric;
    // A file without the key was written by the version that had these five.
    QList<MenuBarMetric> known{cpu, memory, temperature, download, upload};
    const QVariant stored = defaults_.value(QString(Keys::knownMetrics));
    if (stored.isValid()) {
        if (auto list = loadMetricList(stored))
            known = *list;
        else
            qCWarning(logSettings,
                      "Settings key \"knownMetrics\" is not a list of metric names; reading it "
                      "as the first five metrics");
    }
    // Without a stored order the default one offers every metric already.
    const QString orderKey(Keys::metricOrder.key);
    std::optional<QList<MenuBarMetric>> order = loadMetricList(defaults_.value(orderKey));
    if (!order)
        return;
    bool unknownBefore = false;
    for (MenuBarMetric metric : everyMetric()) {
        if (known.contains(metric))
            continue;
        unknownBefore = true;
        // One placed by hand already has its place.
        if (!order->contains(metric))
            order->append(metric);
    }
    if (!unknownBefore)
        return;
    const UserDefaults::Batch batch(defaults_);
    defaults_.setValue(orderKey, *encodeMetricList(*order));
    writeKnownMetrics();
}

void SettingsStore::writeKnownMetrics() {
    const QString key(Keys::knownMetrics);
    const QVariant known = *encodeMetricList(everyMetric());
    if (!SettingsFileFormat::identical(defaults_.value(key), known))
        defaults_.setValue(key, known);
}

void SettingsStore::noteDisplayedMetrics() {
    QList<MenuBarMetric> displayed = displayedMetrics();
    if (displayed == displayedMetrics_)
        return;
    displayedMetrics_ = std::move(displayed);
    emit displayedMetricsChanged();
}

void SettingsStore::setLaunchAtLogin(bool value) {
    assign(Keys::launchAtLogin, value);
}
void SettingsStore::setShowWelcomeScreen(bool value) {
    assign(Keys::showWelcomeScreen, value);
}
void SettingsStore::setHasCompletedOnboarding(bool value) {
    assign(Keys::hasCompletedOnboarding, value);
}
void SettingsStore::setLaunchCount(qint64 value) {
    assign(Keys::launchCount, value);
}
void SettingsStore::setSupportPromptDismissedVersion(const std::optional<QString>& value) {
    assign(Keys::supportPromptDismissedVersion, value);
}
void SettingsStore::setAutomaticallyCheckForUpdates(bool value) {
    assign(Keys::automaticallyCheckForUpdates, value);
}
void SettingsStore::setLastUpdateCheckDate(const std::optional<QDateTime>& value) {
    // An invalid date is no date.
    assign(Keys::lastUpdateCheckDate,
           value && value->isValid() ? value : std::optional<QDateTime>());
}
void SettingsStore::setEnabledMetrics(MenuBarMetricSet value) {
    assign(Keys::enabledMetrics, value);
}
void SettingsStore::setMetricOrder(const QList<MenuBarMetric>& value) {
    const UserDefaults::Batch batch(defaults_); // the order and its known list in one save
    assign(Keys::metricOrder, value);
    writeKnownMetrics();
}
void SettingsStore::setSeparator(MenuBarSeparator value) {
    assign(Keys::separator, value);
}
void SettingsStore::setMemoryFormat(MemoryDisplayFormat value) {
    assign(Keys::memoryFormat, value);
}
void SettingsStore::setTemperatureFormat(TemperatureDisplayFormat value) {
    assign(Keys::temperatureFormat, value);
}
void SettingsStore::setMenuBarDisplayStyle(MenuBarDisplayStyle value) {
    assign(Keys::menuBarDisplayStyle, value);
}
void SettingsStore::setThemePreference(ThemePreference value) {
    assign(Keys::themePreference, value);
}
void SettingsStore::setAppearanceMode(AppearanceMode value) {
    assign(Keys::appearanceMode, value);
}
void SettingsStore::setCustomConfiguration(const AppearanceConfiguration& value) {
    assign(Keys::customConfiguration, value);
}
void SettingsStore::setTopApplicationsOrder(TopApplicationOrder value) {
    assign(Keys::topApplicationsOrder, value);
}

void SettingsStore::setMetricCardStyle(MetricCardStyle value) {
    assign(Keys::metricCardStyle, value);
}
void SettingsStore::setUpdateInterval(UpdateInterval value) {
    assign(Keys::updateInterval, value);
}
void SettingsStore::setNetworkPhysicalOnly(bool value) {
    assign(Keys::networkPhysicalOnly, value);
}
void SettingsStore::setTemperatureInterval(TemperatureInterval value) {
    assign(Keys::temperatureInterval, value);
}

void SettingsStore::setMetricEnabled(MenuBarMetric metric, bool enabled) {
    MenuBarMetricSet metrics = enabledMetrics_;
    if (enabled)
        metrics.insert(metric);
    else
        metrics.remove(metric);
    setEnabledMetrics(metrics);
}

QList<MenuBarMetric> SettingsStore::displayedMetrics() const {
    QList<MenuBarMetric> displayed;
    for (MenuBarMetric metric : metricOrder_) {
        if (enabledMetrics_.contains(metric))
            displayed.append(metric);
    }
    return displayed;
}

const QStringList& SettingsStore::keysRemovedByReset() {
    static const QStringList keys = [] {
        QStringList removed;
        std::apply(
            [&](const auto*... setting) {
                ((setting->onReset != OnReset::keep ? removed.append(setting->key) : void()), ...);
            },
            Keys::all);
        return removed;
    }();
    return keys;
}

void SettingsStore::resetToDefaults() {
    // One save for the whole reset instead of one per key.
    const UserDefaults::Batch batch(defaults_);
    for (const QString& key : keysRemovedByReset())
        defaults_.remove(key);

    // Through the ordinary setters, so observers redraw and the defaults are written back.
    const auto restore = [this](const auto* setting) {
        if (setting->onReset == OnReset::restore)
            assign(*setting, setting->load(QVariant()));
    };
    std::apply([&](const auto*... setting) { (restore(setting), ...); }, Keys::all);
    writeKnownMetrics();
}

} // namespace lumetra
