#include "settings/SettingsStore.h"

#include "SettingsTestSupport.h"
#include "model/Logging.h"
#include "support/LogCapture.h"

#include <QFileInfo>
#include <QMetaProperty>
#include <QSignalSpy>

#include <gtest/gtest.h>

#include <limits>

using namespace lumetra;
using lumetra::testing::LoadedStore;
using lumetra::testing::LogCapture;
using lumetra::testing::parsed;

namespace {

QMetaProperty property(const QString& name) {
    return SettingsStore::staticMetaObject.property(
        SettingsStore::staticMetaObject.indexOfProperty(name.toLatin1()));
}

QVariant read(const SettingsStore& store, const QString& name) {
    return property(name).read(&store);
}

// A settings file holding `key` with the value `json` (none: an empty file).
QByteArray fileWith(const char* key, const QByteArray& json) {
    return json.isNull() ? "{}" : "{\"" + QByteArray(key) + "\": " + json + "}";
}

QByteArray data(const char* json) {
    return R"({"data": ")" + QByteArray(json).toBase64() + R"("})";
}

QByteArray fixture(const QString& name) {
    return lumetra::testing::readFile(LUMETRA_FIXTURES_DIR "/settings/" + name + ".json");
}

const QByteArray kEveryKey = fixture("every-key");
constexpr char kStoredJson[] = // every-key.json's custom configuration
    R"({"mode":"translucent","backgroundOpacity":0.5,"overlayOpacity":0.25,"blurIntensity":40,)"
    R"("material":"hud","vibrancyEnabled":false})";
const QByteArray kDefaultConfiguration =
    data(R"({"mode":"custom","backgroundOpacity":0.85,"overlayOpacity":0.3,"blurIntensity":50,)"
         R"("material":"automatic","vibrancyEnabled":true})");
const QByteArray kNone; // the key missing
const QByteArray kDefaultEnabled = R"(["cpu", "memory", "temperature"])";
const QByteArray kDefaultOrder =
    R"(["cpu", "memory", "temperature", "download", "upload", "swap", "diskRead", "diskWrite"])";

// A key reads its stored value only when it has the right type and names a known case;
// anything else falls back as if the key were missing. The expected value is written as the
// file holds it (which the write test shows to read back as written).
TEST(SettingsStoreTest, EveryKeyReadsItsValueOrFallsBack) {
    struct Case {
        const char* key;
        QByteArray stored;
        QByteArray expected;
    };
    for (const Case& c : std::initializer_list<Case>{
             {"launchAtLogin", R"("true")", "false"},
             {"showWelcomeScreen", "0", "true"},
             {"hasCompletedOnboarding", "1", "false"},
             {"launchCount", "3.0", "0"},
             {"supportPromptDismissedVersion", "1.5", kNone},
             {"automaticallyCheckForUpdates", "null", "true"},
             {"lastUpdateCheckDate", R"("2026-11-21T08:30:00Z")", kNone},
             // A list of metrics only when every element is a string; unknown names are
             // dropped, nothing is added back (stored orders: see the upgrade test).
             {"enabledMetrics", R"("cpu")", kDefaultEnabled},
             {"enabledMetrics", R"(["cpu", 2, "memory"])", kDefaultEnabled},
             {"enabledMetrics", R"(["gpu", "memory", "Upload", "memory"])", R"(["memory"])"},
             {"enabledMetrics", "[]", "[]"},
             // Raw values match exactly, case and spaces included.
             {"separator", R"("Dot")", R"("space")"},
             {"memoryFormat", R"(["usedOnly"])", R"("percentageOnly")"},
             // Not the first case: the temperature format falls back to the second.
             {"temperatureFormat", R"("celsius")", R"("degreesWithUnit")"},
             {"menuBarDisplayStyle", R"(" miniBar")", R"("textOnly")"},
             {"themePreference", R"("Dark")", R"("system")"},
             {"appearanceMode", R"("Solid")", R"("glass")"},
             {"metricCardStyle", R"("compactRows")", R"("classic")"},
             // A blob only, strictly decoded.
             {"customConfiguration", '"' + QByteArray(kStoredJson).replace('"', "\\\"") + '"',
              kDefaultConfiguration},
             // Any number of seconds that names a case, 2 as well as 2.0.
             {"updateInterval", "3.0", "1.0"},
             {"updateInterval", "2", "2.0"},
             {"updateInterval", R"("0.5")", "1.0"},
             {"temperatureInterval", "0.5", "2.0"}}) {
        SCOPED_TRACE(fileWith(c.key, c.stored).toStdString());
        const LoadedStore loaded(fileWith(c.key, c.stored));
        EXPECT_EQ(read(loaded.store, c.key),
                  read(LoadedStore(fileWith(c.key, c.expected)).store, c.key));
        EXPECT_EQ(loaded.bytes(), fileWith(c.key, c.stored)) << "loading writes nothing";
    }
}

// Over a file holding every key, each key in turn is assigned the value a store reads from
// every-key-changed.json (the last two: no value). The file then holds that key as `values` does,
// type included, the other keys untouched; assigning it again writes again but notifies nobody; the
// next launch reads it back.
TEST(SettingsStoreTest, EveryKeyIsWrittenAtOnceWithItsType) {
    const QVariantMap values = parsed(fixture("every-key-changed"));
    const QStringList keys = values.keys() << "supportPromptDismissedVersion"
                                           << "lastUpdateCheckDate";
    for (qsizetype i = 0; i < keys.size(); ++i) {
        const QString& key = keys[i];
        const QVariantMap file =
            i < values.size() ? QVariantMap{{key, values[key]}} : QVariantMap();
        SCOPED_TRACE(key.toStdString() + ": " + SettingsFileFormat::serialize(file).toStdString());
        // Read beside every-key.json's known metrics, so an order reads as written.
        QVariantMap source = file;
        source.insert("knownMetrics", parsed(kEveryKey).value("knownMetrics"));
        const QVariant value = read(LoadedStore(SettingsFileFormat::serialize(source)).store, key);
        LoadedStore loaded(kEveryKey);
        QSignalSpy notified(&loaded.store, property(key).notifySignal());
        QSignalSpy written(&loaded.defaults, &UserDefaults::stored);
        ASSERT_TRUE(property(key).write(&loaded.store, value));
        ASSERT_TRUE(property(key).write(&loaded.store, value));
        EXPECT_EQ(notified.count(), 1);
        EXPECT_EQ(written.count(), 2);

        QVariantMap expected = parsed(kEveryKey);
        expected.remove(key);
        expected.insert(file);
        EXPECT_TRUE(SettingsFileFormat::identical(loaded.domain(), expected));
        EXPECT_EQ(read(LoadedStore(loaded.bytes()).store, key), value);
    }
}

// A stored order gains, at its end and switched off, every metric its file's "knownMetrics" lacks
// (a file without the key knew the first five); the file is then written back with the new order
// and this version's list, other keys kept. Garbage in the key reads as no key, with one log line.
TEST(SettingsStoreTest, AStoredOrderIsOfferedTheMetricsItsFileDidNotKnow) {
    struct Case {
        const char* name;
        QByteArray known;     // the stored "knownMetrics"
        QByteArray order;     // the stored "metricOrder"
        const char* expected; // the order read; nullptr: every metric
        bool writtenBack;
        int logLines = 0;
    };
    const QVariant every = parsed(fileWith("k", kDefaultOrder)).value("k");
    const QByteArray laterVersion = R"(["gpu", "diskWrite", "diskRead", "swap", "upload",
                                        "download", "temperature", "memory", "cpu"])";
    const QByteArray knowingSwap =
        R"(["cpu", "memory", "temperature", "download", "upload", "swap"])";
    const Case cases[] = {
        // Unknown names are dropped, duplicates kept.
        {"the five-metric version's", kNone, R"(["upload", "gpu", "cpu", "upload"])",
         "upload cpu upload swap diskRead diskWrite", true},
        {"knowing every metric", kDefaultOrder, R"(["upload", "gpu", "cpu"])", "upload cpu", false},
        {"from a later version", laterVersion, R"(["cpu"])", "cpu", false},
        {"knowing swap", knowingSwap, R"(["memory"])", "memory diskRead diskWrite", true},
        {"with swap placed by hand", kNone, R"(["swap", "cpu"])", "swap cpu diskRead diskWrite",
         true},
        {"an emptied order", kNone, "[]", "swap diskRead diskWrite", true},
        {"without an order", kNone, kNone, nullptr, false},
        {"a bad order", kNone, "{}", nullptr, false},
        {"a string", R"("cpu")", R"(["cpu"])", "cpu swap diskRead diskWrite", true, 1},
        {"a number in the list", R"(["cpu", 1])", R"(["cpu"])", "cpu swap diskRead diskWrite", true,
         1},
        {"an object", R"({"cpu": true})", kNone, nullptr, false, 1}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        // An unknown key, the metric switches and the order, each where the test has one.
        QByteArray file = R"({"futureSetting": [1, 2], "enabledMetrics": ["cpu"])";
        if (!c.known.isNull())
            file += R"(, "knownMetrics": )" + c.known;
        if (!c.order.isNull())
            file += R"(, "metricOrder": )" + c.order;
        file += "}";

        LogCapture log(logSettings());
        const LoadedStore loaded(file);
        QStringList order;
        for (MenuBarMetric metric : loaded.store.metricOrder())
            order << QString::fromLatin1(rawValue(metric).data(),
                                         qsizetype(rawValue(metric).size()));
        const QStringList expected =
            c.expected ? QString(c.expected).split(' ') : every.toStringList();
        EXPECT_EQ(order, expected);
        EXPECT_EQ(loaded.store.enabledMetrics(), MenuBarMetricSet{MenuBarMetric::cpu});
        EXPECT_EQ(log.lines().size(), c.logLines) << log.lines().join('\n').toStdString();
        if (!c.writtenBack) {
            EXPECT_EQ(loaded.bytes(), file);
            continue;
        }
        QVariantMap written = parsed(file);
        written.insert("metricOrder", QVariant(expected).toList());
        written.insert("knownMetrics", every);
        EXPECT_TRUE(SettingsFileFormat::identical(loaded.domain(), written))
            << loaded.bytes().constData();
        // Written back, the file is read as it is now, and the next launch writes nothing.
        const LoadedStore next(loaded.bytes());
        EXPECT_EQ(next.store.metricOrder(), loaded.store.metricOrder());
        EXPECT_EQ(next.bytes(), loaded.bytes());
    }
}

TEST(SettingsStoreTest, AnInvalidDateIsNoneAndAConfigurationJsonCannotCarryIsNotWritten) {
    LoadedStore loaded(kEveryKey);
    loaded.store.setLastUpdateCheckDate(QDateTime());
    EXPECT_FALSE(loaded.store.lastUpdateCheckDate() ||
                 loaded.domain().contains("lastUpdateCheckDate"));

    QSignalSpy notified(&loaded.store, &SettingsStore::customConfigurationChanged);
    AppearanceConfiguration infinite;
    infinite.blurIntensity = std::numeric_limits<double>::infinity();
    loaded.store.setCustomConfiguration(infinite);
    EXPECT_EQ(notified.count(), 1);
    EXPECT_EQ(loaded.domain().value("customConfiguration").toByteArray(), kStoredJson);
}

TEST(SettingsStoreTest, MetricSwitchesWriteTheWholeSetAndTheLabelFollowsTheOrder) {
    LoadedStore loaded;
    SettingsStore& store = loaded.store;
    EXPECT_FALSE(QFileInfo::exists(loaded.directory())) << "loading creates nothing";
    QSignalSpy enabled(&store, &SettingsStore::enabledMetricsChanged);
    QSignalSpy displayed(&store, &SettingsStore::displayedMetricsChanged);
    store.setMetricEnabled(MenuBarMetric::upload, true);
    store.setMetricEnabled(MenuBarMetric::upload, true); // already on: written, not notified
    store.setMetricEnabled(MenuBarMetric::cpu, false);
    EXPECT_EQ(loaded.domain().value("enabledMetrics").toStringList(),
              QStringList({"memory", "temperature", "upload"}));
    EXPECT_EQ(enabled.count(), 2);
    using enum MenuBarMetric;
    store.setMetricOrder({upload, download, memory, cpu, upload});
    EXPECT_EQ(store.displayedMetrics(), QList({upload, memory, upload}));
    EXPECT_EQ(displayed.count(), 3);
    // Moving disabled metrics changes the order but not what is displayed.
    store.setMetricOrder({cpu, upload, memory, upload, download});
    EXPECT_EQ(displayed.count(), 3);
}

TEST(SettingsStoreTest, ResetAssignsTheDefaultsAndKeepsTheCounters) {
    LoadedStore loaded(kEveryKey);
    SettingsStore& store = loaded.store;
    store.setLaunchCount(7);
    const QMetaObject& meta = SettingsStore::staticMetaObject;
    std::vector<std::unique_ptr<QSignalSpy>> spies;
    for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i)
        spies.push_back(std::make_unique<QSignalSpy>(&store, meta.property(i).notifySignal()));
    store.resetToDefaults();

    // Every setting notifies once, what is displayed too; the onboarding flag and the counters
    // do not move.
    const QStringList kept{"hasCompletedOnboarding", "launchCount", "lastUpdateCheckDate"};
    for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i) {
        const char* name = meta.property(i).name();
        EXPECT_EQ(spies[i - meta.propertyOffset()]->count(), kept.contains(name) ? 0 : 1) << name;
    }

    // after-reset.json: the launch count and the last check keep counting; the onboarding flag
    // is gone from the file but kept in memory until the next launch.
    const QVariantMap expected = parsed(fixture("after-reset"));
    EXPECT_TRUE(SettingsFileFormat::identical(loaded.domain(), expected))
        << loaded.bytes().constData();
    EXPECT_TRUE(store.hasCompletedOnboarding());
    EXPECT_EQ(store.launchCount(), 7);
    EXPECT_FALSE(LoadedStore(loaded.bytes()).store.hasCompletedOnboarding());

    // A file that held no order gets the known metrics with the default order.
    LoadedStore bare(R"({"separator": "dot"})");
    bare.store.resetToDefaults();
    EXPECT_EQ(bare.domain().value("knownMetrics"), bare.domain().value("metricOrder"));
    EXPECT_EQ(bare.domain().value("knownMetrics").toList().size(), 8);
}

} // namespace
