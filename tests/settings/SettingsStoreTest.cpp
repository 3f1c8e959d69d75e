#include "settings/SettingsStore.h"

#include "SettingsTestSupport.h"

#include <QMetaProperty>
#include <QSignalSpy>

#include <gtest/gtest.h>

#include <memory>

using namespace lumetra;
using lumetra::testing::SettingsDir;

namespace {

using Metrics = QList<MenuBarMetric>;
constexpr auto cpu = MenuBarMetric::cpu;
constexpr auto memory = MenuBarMetric::memory;
constexpr auto temperature = MenuBarMetric::temperature;
constexpr auto download = MenuBarMetric::download;
constexpr auto upload = MenuBarMetric::upload;

template <typename T>
QVariant v(const T& value) {
    return QVariant::fromValue(value);
}

QMetaProperty propertyNamed(const char* name) {
    const QMetaObject& meta = SettingsStore::staticMetaObject;
    const int index = meta.indexOfProperty(name);
    EXPECT_GE(index, 0) << name;
    return meta.property(index);
}

// A store over a settings directory, loaded from a fixture or from nothing.
struct Loaded {
    explicit Loaded(const char* fixture = nullptr) {
        if (fixture != nullptr)
            dir.copyFixture(QString::fromLatin1(fixture));
        defaults = std::make_unique<UserDefaults>(dir.file());
        store = std::make_unique<SettingsStore>(*defaults);
    }
    SettingsDir dir;
    std::unique_ptr<UserDefaults> defaults;
    std::unique_ptr<SettingsStore> store;
};

TEST(SettingsStoreTest, AFreshDomainGivesTheDefaults) {
    Loaded fresh;
    const SettingsStore& s = *fresh.store;
    EXPECT_FALSE(s.launchAtLogin());
    EXPECT_TRUE(s.showWelcomeScreen());
    EXPECT_FALSE(s.hasCompletedOnboarding());
    EXPECT_EQ(s.launchCount(), 0);
    EXPECT_FALSE(s.supportPromptDismissedVersion().has_value());
    EXPECT_TRUE(s.automaticallyCheckForUpdates());
    EXPECT_FALSE(s.lastUpdateCheckDate().has_value());
    EXPECT_EQ(s.enabledMetrics(), (MenuBarMetricSet{cpu, memory, temperature}));
    EXPECT_EQ(s.metricOrder(), (Metrics{cpu, memory, temperature, download, upload}));
    EXPECT_EQ(s.displayedMetrics(), (Metrics{cpu, memory, temperature}));
    EXPECT_EQ(s.separator(), MenuBarSeparator::space);
    EXPECT_EQ(s.memoryFormat(), MemoryDisplayFormat::percentageOnly);
    EXPECT_EQ(s.temperatureFormat(), TemperatureDisplayFormat::degreesWithUnit);
    EXPECT_EQ(s.menuBarDisplayStyle(), MenuBarDisplayStyle::textOnly);
    EXPECT_EQ(s.themePreference(), ThemePreference::system);
    EXPECT_EQ(s.appearanceMode(), AppearanceMode::glass);
    EXPECT_EQ(s.customConfiguration(), AppearanceConfiguration::preset(AppearanceMode::custom));
    EXPECT_EQ(s.metricCardStyle(), MetricCardStyle::classic);
    EXPECT_EQ(s.updateInterval(), UpdateInterval::one);
    EXPECT_EQ(s.temperatureInterval(), TemperatureInterval::two);
}

// Values of the wrong type never count: each key falls back as if it were missing.
TEST(SettingsStoreTest, WrongTypesFallBackToTheDefaults) {
    Loaded fresh;
    Loaded wrong("wrong-types.json");
    const QMetaObject& meta = SettingsStore::staticMetaObject;
    for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i) {
        const QMetaProperty property = meta.property(i);
        EXPECT_EQ(property.read(wrong.store.get()), property.read(fresh.store.get()))
            << property.name();
    }
    EXPECT_EQ(wrong.dir.bytes(), SettingsDir::fixture("wrong-types.json"))
        << "loading writes nothing";
}

struct LoadCase {
    const char* fixture;
    const char* property;
    QVariant expected;
};

std::ostream& operator<<(std::ostream& out, const LoadCase& c) {
    return out << c.fixture << ":" << c.property;
}

class SettingsLoadTest : public ::testing::TestWithParam<LoadCase> {};

TEST_P(SettingsLoadTest, ReadsTheStoredValueOrItsFallback) {
    const LoadCase& c = GetParam();
    Loaded loaded(c.fixture);
    EXPECT_EQ(propertyNamed(c.property).read(loaded.store.get()), c.expected);
}

const AppearanceConfiguration kStoredConfiguration{AppearanceMode::translucent, 0.5,  0.25, 40,
                                                   VisualEffectMaterial::hud,   false};
const AppearanceConfiguration kDefaultConfiguration;

INSTANTIATE_TEST_SUITE_P(
    EveryKey, SettingsLoadTest,
    ::testing::Values(
        LoadCase{"every-key.json", "launchAtLogin", true},
        LoadCase{"every-key.json", "showWelcomeScreen", false},
        LoadCase{"every-key.json", "hasCompletedOnboarding", true},
        LoadCase{"every-key.json", "launchCount", v<qint64>(42)},
        LoadCase{"every-key.json", "supportPromptDismissedVersion",
                 v(std::optional<QString>("1.4.2"))},
        LoadCase{"every-key.json", "automaticallyCheckForUpdates", false},
        LoadCase{"every-key.json", "lastUpdateCheckDate",
                 v(std::optional<QDateTime>(QDateTime(QDate(2026, 11, 21), QTime(8, 30, 0, 250),
                                                      Qt::UTC)))},
        LoadCase{"every-key.json", "enabledMetrics", v(MenuBarMetricSet{cpu, upload})},
        LoadCase{"every-key.json", "metricOrder",
                 v(Metrics{upload, download, cpu, memory, temperature})},
        LoadCase{"every-key.json", "displayedMetrics", v(Metrics{upload, cpu})},
        LoadCase{"every-key.json", "separator", v(MenuBarSeparator::verticalBar)},
        LoadCase{"every-key.json", "memoryFormat", v(MemoryDisplayFormat::usedOverTotal)},
        LoadCase{"every-key.json", "temperatureFormat", v(TemperatureDisplayFormat::labeledTemp)},
        LoadCase{"every-key.json", "menuBarDisplayStyle", v(MenuBarDisplayStyle::miniBar)},
        LoadCase{"every-key.json", "themePreference", v(ThemePreference::dark)},
        LoadCase{"every-key.json", "appearanceMode", v(AppearanceMode::custom)},
        LoadCase{"every-key.json", "customConfiguration", v(kStoredConfiguration)},
        LoadCase{"every-key.json", "metricCardStyle", v(MetricCardStyle::compactRow)},
        LoadCase{"every-key.json", "updateInterval", v(UpdateInterval::half)},
        LoadCase{"every-key.json", "temperatureInterval", v(TemperatureInterval::ten)}));

INSTANTIATE_TEST_SUITE_P(
    Fallbacks, SettingsLoadTest,
    ::testing::Values(
        // Unknown raw texts, compared exactly.
        LoadCase{"unknown-values.json", "appearanceMode", v(AppearanceMode::glass)},
        LoadCase{"unknown-values.json", "separator", v(MenuBarSeparator::space)},
        LoadCase{"unknown-values.json", "memoryFormat", v(MemoryDisplayFormat::percentageOnly)},
        // Not the first case: the temperature format falls back to the second.
        LoadCase{"unknown-values.json", "temperatureFormat",
                 v(TemperatureDisplayFormat::degreesWithUnit)},
        LoadCase{"unknown-values.json", "menuBarDisplayStyle", v(MenuBarDisplayStyle::textOnly)},
        LoadCase{"unknown-values.json", "themePreference", v(ThemePreference::system)},
        LoadCase{"unknown-values.json", "metricCardStyle", v(MetricCardStyle::classic)},
        LoadCase{"unknown-values.json", "updateInterval", v(UpdateInterval::one)},
        LoadCase{"unknown-values.json", "temperatureInterval", v(TemperatureInterval::two)},
        // "Hud" is not "hud": the whole configuration fails.
        LoadCase{"unknown-values.json", "customConfiguration", v(kDefaultConfiguration)},
        // Unknown names dropped, nothing added back.
        LoadCase{"unknown-values.json", "enabledMetrics", v(MenuBarMetricSet{memory})},
        LoadCase{"unknown-values.json", "metricOrder", v(Metrics{upload, cpu})},
        LoadCase{"unknown-values.json", "displayedMetrics", v(Metrics{})},
        // An array with a non-string element is no list of metrics at all.
        LoadCase{"mixed-arrays.json", "enabledMetrics",
                 v(MenuBarMetricSet{cpu, memory, temperature})},
        LoadCase{"mixed-arrays.json", "metricOrder",
                 v(Metrics{cpu, memory, temperature, download, upload})},
        // A configuration missing a key fails as a whole.
        LoadCase{"mixed-arrays.json", "customConfiguration", v(kDefaultConfiguration)},
        // Empty arrays stay empty.
        LoadCase{"empty-arrays.json", "enabledMetrics", v(MenuBarMetricSet{})},
        LoadCase{"empty-arrays.json", "metricOrder", v(Metrics{})},
        LoadCase{"empty-arrays.json", "displayedMetrics", v(Metrics{})},
        // Duplicates: a set for the enabled metrics, kept in the order.
        LoadCase{"duplicates.json", "enabledMetrics", v(MenuBarMetricSet{cpu, download})},
        LoadCase{"duplicates.json", "metricOrder", v(Metrics{cpu, memory, cpu, download})},
        LoadCase{"duplicates.json", "displayedMetrics", v(Metrics{cpu, cpu, download})},
        // Integral numbers are numbers of seconds too.
        LoadCase{"duplicates.json", "updateInterval", v(UpdateInterval::two)},
        LoadCase{"duplicates.json", "temperatureInterval", v(TemperatureInterval::five)}));

struct WriteCase {
    const char* property;
    QVariant assigned;
    QVariant stored; // what the file holds, type included
};

std::ostream& operator<<(std::ostream& out, const WriteCase& c) {
    return out << c.property;
}

class SettingsWriteTest : public ::testing::TestWithParam<WriteCase> {};

TEST_P(SettingsWriteTest, WritesTheKeyWithItsTypeAndReadsItBack) {
    const WriteCase& c = GetParam();
    Loaded loaded;
    const QMetaProperty property = propertyNamed(c.property);
    QSignalSpy notified(loaded.store.get(), property.notifySignal());
    QSignalSpy written(loaded.defaults.get(), &UserDefaults::stored);

    ASSERT_TRUE(property.write(loaded.store.get(), c.assigned));
    EXPECT_EQ(notified.count(), 1);
    const QVariantMap file = loaded.dir.domain();
    EXPECT_EQ(file.keys(), QStringList{c.property}) << "only the assigned key is written";
    EXPECT_TRUE(SettingsFileFormat::identical(file.value(c.property), c.stored))
        << loaded.dir.bytes().constData();

    // An equal value is written again but notifies nobody.
    ASSERT_TRUE(property.write(loaded.store.get(), c.assigned));
    EXPECT_EQ(notified.count(), 1);
    EXPECT_EQ(written.count(), 2);

    UserDefaults again(loaded.dir.file());
    SettingsStore reread(again);
    EXPECT_EQ(property.read(&reread), c.assigned);
}

QVariant list(std::initializer_list<const char*> texts) {
    QVariantList raw;
    for (const char* text : texts)
        raw.append(QString::fromLatin1(text));
    return raw;
}

const QDateTime kCheckDate(QDate(2026, 11, 22), QTime(5, 15, 0, 500), Qt::UTC);

INSTANTIATE_TEST_SUITE_P(
    EveryKey, SettingsWriteTest,
    ::testing::Values(
        WriteCase{"launchAtLogin", true, true}, WriteCase{"showWelcomeScreen", false, false},
        WriteCase{"hasCompletedOnboarding", true, true},
        WriteCase{"launchCount", v<qint64>(5), v<qlonglong>(5)},
        WriteCase{"supportPromptDismissedVersion", v(std::optional<QString>("2.0")),
                  QStringLiteral("2.0")},
        WriteCase{"automaticallyCheckForUpdates", false, false},
        WriteCase{"lastUpdateCheckDate", v(std::optional<QDateTime>(kCheckDate)), kCheckDate},
        WriteCase{"enabledMetrics", v(MenuBarMetricSet{upload, cpu}), list({"cpu", "upload"})},
        WriteCase{"metricOrder", v(Metrics{upload, cpu, upload}),
                  list({"upload", "cpu", "upload"})},
        WriteCase{"separator", v(MenuBarSeparator::bullet), QStringLiteral("bullet")},
        WriteCase{"memoryFormat", v(MemoryDisplayFormat::both), QStringLiteral("both")},
        WriteCase{"temperatureFormat", v(TemperatureDisplayFormat::labeledCPU),
                  QStringLiteral("labeledCPU")},
        WriteCase{"menuBarDisplayStyle", v(MenuBarDisplayStyle::compactGraph),
                  QStringLiteral("compactGraph")},
        WriteCase{"themePreference", v(ThemePreference::light), QStringLiteral("light")},
        WriteCase{"appearanceMode", v(AppearanceMode::solid), QStringLiteral("solid")},
        WriteCase{"customConfiguration", v(AppearanceConfiguration::preset(AppearanceMode::glass)),
                  QByteArray(R"({"mode":"glass","backgroundOpacity":0.68,"overlayOpacity":0.12,)"
                             R"("blurIntensity":90,"material":"hud","vibrancyEnabled":true})")},
        WriteCase{"metricCardStyle", v(MetricCardStyle::sparklineArea),
                  QStringLiteral("sparklineArea")},
        // The intervals are doubles even when whole.
        WriteCase{"updateInterval", v(UpdateInterval::half), 0.5},
        WriteCase{"temperatureInterval", v(TemperatureInterval::ten), 10.0}));

TEST(SettingsStoreTest, TheFileIsIndentedWithTheKeysOfTheKeyTable) {
    Loaded loaded;
    loaded.store->setUpdateInterval(UpdateInterval::two);
    loaded.store->setMetricOrder({cpu, upload});
    EXPECT_EQ(loaded.dir.bytes(), QByteArray(R"({
    "metricOrder": [
        "cpu",
        "upload"
    ],
    "updateInterval": 2.0
}
)"));
}

TEST(SettingsStoreTest, NoneRemovesItsKey) {
    Loaded loaded("every-key.json");
    loaded.store->setSupportPromptDismissedVersion(std::nullopt);
    loaded.store->setLastUpdateCheckDate(QDateTime()); // an invalid date is none too
    const QVariantMap file = loaded.dir.domain();
    EXPECT_FALSE(file.contains("supportPromptDismissedVersion"));
    EXPECT_FALSE(file.contains("lastUpdateCheckDate"));
    EXPECT_FALSE(loaded.store->lastUpdateCheckDate().has_value());
}

TEST(SettingsStoreTest, AConfigurationJsonCannotCarryLeavesTheStoredOneInPlace) {
    Loaded loaded("every-key.json");
    const QVariant before = loaded.dir.domain().value("customConfiguration");
    AppearanceConfiguration broken = kStoredConfiguration;
    broken.blurIntensity = std::numeric_limits<double>::infinity();
    QSignalSpy notified(loaded.store.get(), &SettingsStore::customConfigurationChanged);
    loaded.store->setCustomConfiguration(broken);
    EXPECT_EQ(notified.count(), 1);
    EXPECT_TRUE(
        SettingsFileFormat::identical(loaded.dir.domain().value("customConfiguration"), before));
}

TEST(SettingsStoreTest, EnablingAndDisablingWritesTheWholeSet) {
    Loaded loaded;
    SettingsStore& store = *loaded.store;
    QSignalSpy enabled(&store, &SettingsStore::enabledMetricsChanged);
    QSignalSpy displayed(&store, &SettingsStore::displayedMetricsChanged);
    store.setMetricEnabled(upload, true);
    EXPECT_EQ(loaded.dir.domain().value("enabledMetrics"),
              list({"cpu", "memory", "temperature", "upload"}));
    EXPECT_EQ(store.displayedMetrics(), (Metrics{cpu, memory, temperature, upload}));
    store.setMetricEnabled(upload, true); // already on: written, not notified
    store.setMetricEnabled(cpu, false);
    EXPECT_EQ(loaded.dir.domain().value("enabledMetrics"),
              list({"memory", "temperature", "upload"}));
    EXPECT_EQ(enabled.count(), 2);
    EXPECT_EQ(displayed.count(), 2);

    // Reordering a disabled metric changes the order but not what is displayed.
    store.setMetricOrder({memory, temperature, upload, download, cpu});
    EXPECT_EQ(displayed.count(), 2);
}

// Records the properties whose change signals fire, in order.
class ChangeRecorder : public QObject {
    Q_OBJECT
public:
    explicit ChangeRecorder(SettingsStore& store) {
        const QMetaObject& meta = SettingsStore::staticMetaObject;
        const QMetaMethod record = metaObject()->method(metaObject()->indexOfSlot("record()"));
        for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i) {
            const QMetaProperty property = meta.property(i);
            names_.insert(property.notifySignalIndex(), QString::fromLatin1(property.name()));
            connect(&store, property.notifySignal(), this, record);
        }
    }
    QStringList changes;

public slots:
    void record() { changes.append(names_.value(senderSignalIndex())); }

private:
    QHash<int, QString> names_;
};

TEST(SettingsStoreTest, ResetRemovesSeventeenKeysAndReassignsTheDefaultsInOrder) {
    Loaded loaded("every-key.json");
    SettingsStore& store = *loaded.store;
    store.setLaunchCount(7);
    const QVariant checkDate = loaded.dir.domain().value("lastUpdateCheckDate");

    ChangeRecorder recorder(store);
    QStringList storedKeys;
    QObject::connect(loaded.defaults.get(), &UserDefaults::stored,
                     [&](const QString& key) { storedKeys.append(key); });
    store.resetToDefaults();

    // What is displayed changes with the enabled set already; the order then keeps it.
    EXPECT_EQ(recorder.changes,
              (QStringList{"launchAtLogin", "showWelcomeScreen", "enabledMetrics",
                           "displayedMetrics", "metricOrder", "separator", "memoryFormat",
                           "temperatureFormat", "menuBarDisplayStyle", "themePreference",
                           "appearanceMode", "customConfiguration", "metricCardStyle",
                           "updateInterval", "temperatureInterval", "supportPromptDismissedVersion",
                           "automaticallyCheckForUpdates"}));
    ASSERT_EQ(storedKeys.size(), 17 + 16);
    EXPECT_EQ(storedKeys.mid(0, 17), SettingsStore::keysRemovedByReset());
    EXPECT_EQ(storedKeys.mid(17).first(), "launchAtLogin");
    EXPECT_EQ(storedKeys.last(), "automaticallyCheckForUpdates");

    // The setters wrote the defaults back; none removes the dismissed version; the launch
    // count and the last check stay; onboarding is gone from the file only.
    QVariantMap file = loaded.dir.domain();
    EXPECT_EQ(file.take("launchCount"), v<qlonglong>(7));
    EXPECT_TRUE(SettingsFileFormat::identical(file.take("lastUpdateCheckDate"), checkDate));
    EXPECT_FALSE(file.contains("hasCompletedOnboarding"));
    EXPECT_FALSE(file.contains("supportPromptDismissedVersion"));
    EXPECT_EQ(file.size(), 15);
    EXPECT_EQ(file.value("launchAtLogin"), false);
    EXPECT_EQ(file.value("updateInterval"), 1.0);
    EXPECT_EQ(file.value("temperatureFormat"), QStringLiteral("degreesWithUnit"));
    EXPECT_TRUE(store.hasCompletedOnboarding());
    EXPECT_EQ(store.launchCount(), 7);

    Loaded fresh;
    UserDefaults again(loaded.dir.file());
    SettingsStore next(again);
    EXPECT_FALSE(next.hasCompletedOnboarding());
    EXPECT_EQ(next.customConfiguration(), fresh.store->customConfiguration());
    EXPECT_EQ(next.enabledMetrics(), fresh.store->enabledMetrics());
}

} // namespace

#include "SettingsStoreTest.moc"
