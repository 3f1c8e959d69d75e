#include "settings/UserDefaults.h"
#include "settings/SettingsStore.h"

#include "SettingsTestSupport.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QSize>

#include <gtest/gtest.h>

using namespace lumetra;
using lumetra::testing::SettingsDir;
using lumetra::testing::SettingsLog;

namespace {

class EnvironmentVariable {
public:
    EnvironmentVariable(const char* name, const QByteArray& value)
        : name_(name), had_(qEnvironmentVariableIsSet(name)), old_(qgetenv(name)) {
        qputenv(name, value);
    }
    ~EnvironmentVariable() {
        if (had_)
            qputenv(name_, old_);
        else
            qunsetenv(name_);
    }

private:
    const char* name_;
    bool had_;
    QByteArray old_;
};

TEST(UserDefaultsTest, FileLivesUnderTheXdgConfigHome) {
    {
        EnvironmentVariable home("XDG_CONFIG_HOME", "/tmp/config-home");
        EXPECT_EQ(UserDefaults::standardFilePath(), "/tmp/config-home/lumetra/settings.json");
    }
    for (const char* value : {"", "relative/config"}) {
        EnvironmentVariable home("XDG_CONFIG_HOME", value);
        EXPECT_EQ(UserDefaults::standardFilePath(),
                  QDir::homePath() + "/.config/lumetra/settings.json");
    }
}

TEST(UserDefaultsTest, LoadingAMissingFileCreatesNothing) {
    SettingsDir dir;
    UserDefaults defaults(dir.file());
    SettingsStore store(defaults);
    EXPECT_TRUE(defaults.domain().isEmpty());
    EXPECT_FALSE(QFileInfo::exists(dir.directory()));
}

TEST(UserDefaultsTest, KeysNobodyAskedAboutSurviveAWrite) {
    SettingsDir dir;
    dir.copyFixture("unknown-keys.json");
    const QVariantMap before = dir.domain();
    UserDefaults defaults(dir.file());
    SettingsStore store(defaults);
    store.setMemoryFormat(MemoryDisplayFormat::both);

    QVariantMap after = dir.domain();
    EXPECT_EQ(after.take("memoryFormat"), QStringLiteral("both"));
    EXPECT_TRUE(SettingsFileFormat::identical(after, before));
    EXPECT_TRUE(dir.bytes().contains("\"ratio\": 1.0,\n"));
    EXPECT_TRUE(dir.bytes().contains("\"notADate\": {\n        \"date\": \"yesterday\"\n    }"));
}

TEST(UserDefaultsTest, RefusesValuesTheFileCannotHold) {
    SettingsDir dir;
    SettingsLog log;
    UserDefaults defaults(dir.file());
    QSignalSpy stored(&defaults, &UserDefaults::stored);
    defaults.setValue("ratio", std::numeric_limits<double>::infinity());
    defaults.setValue("size", QSize(1, 2));
    EXPECT_FALSE(defaults.contains("ratio"));
    EXPECT_FALSE(defaults.contains("size"));
    EXPECT_EQ(stored.count(), 0);
    EXPECT_EQ(log.lines().size(), 2);
    EXPECT_FALSE(QFileInfo::exists(dir.file()));
}

TEST(UserDefaultsTest, AFailingSaveIsLoggedOnceAndKeepsTheValueInMemory) {
    SettingsDir dir;
    QFile blocker(dir.directory()); // a file where the directory belongs
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    blocker.close();
    SettingsLog log;
    UserDefaults defaults(dir.file());
    SettingsStore store(defaults);
    store.setSeparator(MenuBarSeparator::dot);
    store.setSeparator(MenuBarSeparator::bullet);
    EXPECT_EQ(store.separator(), MenuBarSeparator::bullet);
    ASSERT_EQ(log.lines().size(), 1) << log.lines().join('\n').toStdString();
    EXPECT_TRUE(log.lines()[0].startsWith("Could not save settings to " + dir.file()));
}

const QRegularExpression
    kAsideName(QRegularExpression::anchoredPattern(R"(settings\.json\.corrupt-\d{8}T\d{6}Z)"));

class CorruptSettingsFileTest : public ::testing::TestWithParam<const char*> {};

TEST_P(CorruptSettingsFileTest, IsMovedAsideByteForByteAndDefaultsLoad) {
    SettingsDir dir;
    const QByteArray original = SettingsDir::fixture(GetParam());
    dir.write(original);
    SettingsLog log;
    UserDefaults defaults(dir.file());
    SettingsStore store(defaults);

    const QStringList aside = dir.others();
    ASSERT_EQ(aside.size(), 1);
    EXPECT_TRUE(kAsideName.match(aside[0]).hasMatch()) << aside[0].toStdString();
    const QString asidePath = dir.directory() + '/' + aside[0];
    QFile kept(asidePath);
    ASSERT_TRUE(kept.open(QIODevice::ReadOnly));
    EXPECT_EQ(kept.readAll(), original);
    EXPECT_FALSE(QFileInfo::exists(dir.file())) << "loading writes nothing";

    ASSERT_EQ(log.lines().size(), 1);
    EXPECT_TRUE(log.lines()[0].contains("moved it to " + asidePath))
        << log.lines()[0].toStdString();
    EXPECT_EQ(store.separator(), MenuBarSeparator::space);

    store.setSeparator(MenuBarSeparator::dot);
    EXPECT_EQ(dir.domain().value("separator"), QStringLiteral("dot"));
    EXPECT_EQ(dir.others(), aside);
}

INSTANTIATE_TEST_SUITE_P(Fixtures, CorruptSettingsFileTest,
                         ::testing::Values("truncated.json", "top-level-array.json",
                                           "not-utf8.json", "trailing-comma.json", "empty.json"));

TEST(UserDefaultsTest, ADirectoryInPlaceOfTheFileIsMovedAsideWhole) {
    SettingsDir dir;
    QDir().mkpath(dir.file() + "/inside");
    SettingsLog log;
    UserDefaults defaults(dir.file());
    const QStringList aside = dir.others();
    ASSERT_EQ(aside.size(), 1);
    EXPECT_TRUE(QFileInfo(dir.directory() + '/' + aside[0] + "/inside").isDir());
    EXPECT_EQ(log.lines().size(), 1);
    defaults.setValue("separator", QStringLiteral("dot"));
    EXPECT_TRUE(QFileInfo(dir.file()).isFile());
}

TEST(UserDefaultsTest, ReadOnlyModeNeverMovesNorWrites) {
    SettingsDir dir;
    const QByteArray original = SettingsDir::fixture("truncated.json");
    dir.write(original);
    SettingsLog log;
    UserDefaults defaults(dir.file(), UserDefaults::Access::readOnly);
    SettingsStore store(defaults);
    store.setSeparator(MenuBarSeparator::dot);
    store.resetToDefaults();
    EXPECT_EQ(dir.bytes(), original);
    EXPECT_TRUE(dir.others().isEmpty());
    EXPECT_EQ(log.lines().size(), 1);
}

TEST(UserDefaultsTest, ReadOnlyModeFollowsTheApplicationsChanges) {
    SettingsDir dir;
    dir.copyFixture("every-key.json");
    UserDefaults followed(dir.file(), UserDefaults::Access::readOnly);
    SettingsStore follower(followed);
    UserDefaults written(dir.file());
    SettingsStore app(written);

    QSignalSpy separator(&follower, &SettingsStore::separatorChanged);
    QSignalSpy memory(&follower, &SettingsStore::memoryFormatChanged);
    QSignalSpy order(&follower, &SettingsStore::metricOrderChanged);
    app.setSeparator(MenuBarSeparator::dot);
    ASSERT_TRUE(separator.wait(5000));
    EXPECT_EQ(follower.separator(), MenuBarSeparator::dot);

    app.setMemoryFormat(MemoryDisplayFormat::both);
    ASSERT_TRUE(memory.wait(5000));
    EXPECT_EQ(follower.memoryFormat(), MemoryDisplayFormat::both);
    EXPECT_EQ(separator.count(), 1);

    // Rewriting equal values changes nothing the follower can see.
    app.setSeparator(MenuBarSeparator::dot);
    EXPECT_FALSE(separator.wait(300));
    EXPECT_EQ(order.count(), 0);
}

TEST(UserDefaultsTest, ReadOnlyModeNoticesAFileThatAppearsLater) {
    SettingsDir dir;
    UserDefaults followed(dir.file(), UserDefaults::Access::readOnly);
    SettingsStore follower(followed);
    QSignalSpy style(&follower, &SettingsStore::metricCardStyleChanged);

    UserDefaults written(dir.file());
    SettingsStore app(written);
    app.setMetricCardStyle(MetricCardStyle::grid);
    ASSERT_TRUE(style.wait(5000));
    EXPECT_EQ(follower.metricCardStyle(), MetricCardStyle::grid);

    // And keeps following once the directory exists.
    app.setMetricCardStyle(MetricCardStyle::ring);
    ASSERT_TRUE(style.wait(5000));
    EXPECT_EQ(follower.metricCardStyle(), MetricCardStyle::ring);
}

TEST(UserDefaultsTest, ReadOnlyModeKeepsItsValuesWhileTheFileIsBroken) {
    SettingsDir dir;
    dir.copyFixture("every-key.json");
    UserDefaults followed(dir.file(), UserDefaults::Access::readOnly);
    SettingsStore follower(followed);
    QSignalSpy changed(&followed, &UserDefaults::changedExternally);
    SettingsLog log;
    dir.copyFixture("truncated.json");
    EXPECT_FALSE(changed.wait(500));
    EXPECT_EQ(follower.separator(), MenuBarSeparator::verticalBar);
    EXPECT_EQ(log.lines().size(), 1);
}

} // namespace
