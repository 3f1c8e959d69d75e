#include "settings/UserDefaults.h"
#include "model/Logging.h"
#include "settings/SettingsStore.h"

#include "SettingsTestSupport.h"
#include "support/LogCapture.h"
#include "support/ScopedEnvironment.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <limits>

#include <pwd.h>
#include <unistd.h>

using namespace lumetra;
using lumetra::testing::LogCapture;
using lumetra::testing::SettingsFolder;

namespace {

// The same rules read from the environment; without HOME the password database answers.
TEST(UserDefaultsTest, StandardFileComesFromTheEnvironment) {
    lumetra::testing::ScopedEnvironment environment;
    environment.set("XDG_CONFIG_HOME", "/c");
    EXPECT_EQ(UserDefaults::standardFilePath(), "/c/lumetra/settings.json");
    environment.unset("XDG_CONFIG_HOME");
    environment.set("HOME", "/home/u");
    EXPECT_EQ(UserDefaults::standardFilePath(), "/home/u/.config/lumetra/settings.json");
    environment.unset("HOME");
    const passwd* account = ::getpwuid(::getuid());
    if (account && QFileInfo(QFile::decodeName(account->pw_dir)).isDir()) {
        EXPECT_EQ(UserDefaults::standardFilePath(),
                  QDir::cleanPath(QFile::decodeName(account->pw_dir) + "/.config") +
                      "/lumetra/settings.json");
    }
}

TEST(UserDefaultsTest, KeepsKeysNobodyAskedAboutAndRefusesValuesTheFileCannotHold) {
    SettingsFolder folder(
        lumetra::testing::readFile(LUMETRA_FIXTURES_DIR "/settings/unknown-keys.json"));
    const QVariantMap before = folder.domain();
    LogCapture log(logSettings());
    UserDefaults defaults(folder.file());
    defaults.setValue("ratio", std::numeric_limits<double>::infinity()); // refused, logged
    EXPECT_EQ(log.lines().size(), 1);

    SettingsStore(defaults).setMemoryFormat(MemoryDisplayFormat::both);
    QVariantMap after = folder.domain();
    EXPECT_EQ(after.take("memoryFormat"), QStringLiteral("both"));
    EXPECT_TRUE(SettingsFileFormat::identical(after, before)) << folder.bytes().constData();
}

TEST(UserDefaultsTest, AFailingSaveIsLoggedOnceAndKeepsTheValueInMemory) {
    SettingsFolder folder;
    lumetra::testing::writeFile(folder.directory(), {}); // a file where the directory belongs
    LogCapture log(logSettings());
    UserDefaults defaults(folder.file());
    SettingsStore store(defaults);
    store.setSeparator(MenuBarSeparator::dot);
    store.setSeparator(MenuBarSeparator::bullet);
    EXPECT_EQ(store.separator(), MenuBarSeparator::bullet);
    ASSERT_EQ(log.lines().size(), 1) << log.lines().join('\n').toStdString();
    EXPECT_EQ(log.lines()[0],
              "Could not save settings: " + QString::fromLocal8Bit(std::strerror(ENOTDIR)) + " (" +
                  folder.file() + "); keeping them in memory and trying again at the next change");
}

// A file that cannot be loaded (one that does not parse: which those are is
// SettingsFileFormatTest's; one too large to be ours; a directory) is left alone in read-only
// mode; otherwise it is renamed, byte for byte, and the defaults load; the next write starts a
// new file beside it.
TEST(UserDefaultsTest, AnUnusableFileIsMovedAsideUntouched) {
    for (const QByteArray& bytes :
         {QByteArray("{\"separator\": \"dot\", \"memoryFormat\": \"u"),
          "{\"separator\": \"dot\", \"x\": \"" + QByteArray(5 << 20, 'x') + "\"}",
          QByteArray() /* a directory stands in its place */}) {
        SCOPED_TRACE(bytes.left(60).toStdString());
        SettingsFolder folder;
        if (bytes.isNull())
            QDir().mkpath(folder.file() + "/inside");
        else
            folder.write(bytes);
        {
            UserDefaults readOnly(folder.file(), UserDefaults::Access::readOnly);
            SettingsStore(readOnly).resetToDefaults();
            EXPECT_TRUE(folder.others().isEmpty());
            EXPECT_EQ(folder.bytes(), bytes);
        }
        LogCapture log(logSettings());
        UserDefaults defaults(folder.file());
        SettingsStore store(defaults);

        const QStringList aside = folder.others();
        ASSERT_EQ(aside.size(), 1);
        EXPECT_TRUE(QRegularExpression(R"(^settings\.json\.corrupt-\d{8}T\d{6}Z$)")
                        .match(aside[0])
                        .hasMatch());
        const QString asidePath = folder.directory() + '/' + aside[0];
        EXPECT_TRUE(bytes.isNull() ? QFileInfo(asidePath + "/inside").isDir()
                                   : lumetra::testing::readFile(asidePath) == bytes);
        EXPECT_FALSE(QFileInfo::exists(folder.file())) << "loading writes nothing";
        ASSERT_EQ(log.lines().size(), 1);
        EXPECT_TRUE(log.lines()[0].contains("moved it to " + asidePath))
            << log.lines()[0].toStdString();
        EXPECT_EQ(store.separator(), MenuBarSeparator::space);

        store.setSeparator(MenuBarSeparator::bullet);
        EXPECT_EQ(folder.domain().value("separator"), QStringLiteral("bullet"));
        EXPECT_EQ(folder.others(), aside);
    }
}

// The terminal mode may start before the application ever wrote its file.
TEST(UserDefaultsTest, ReadOnlyModeFollowsTheApplicationsFile) {
    SettingsFolder folder;
    UserDefaults followed(folder.file(), UserDefaults::Access::readOnly);
    SettingsStore follower(followed);
    QSignalSpy style(&follower, &SettingsStore::metricCardStyleChanged);
    QSignalSpy separator(&follower, &SettingsStore::separatorChanged);
    QSignalSpy external(&followed, &UserDefaults::changedExternally);
    UserDefaults written(folder.file());
    SettingsStore app(written);

    app.setMetricCardStyle(MetricCardStyle::grid);
    ASSERT_TRUE(style.wait(5000));
    EXPECT_EQ(follower.metricCardStyle(), MetricCardStyle::grid);
    app.setSeparator(MenuBarSeparator::dot);
    ASSERT_TRUE(separator.wait(5000));
    EXPECT_EQ(follower.separator(), MenuBarSeparator::dot);
    EXPECT_EQ(style.count(), 1) << "only real changes notify";

    // Equal values rewritten, then a broken file: both keep what they read, one line each.
    LogCapture log(logSettings());
    app.setSeparator(MenuBarSeparator::dot);
    folder.write("{\"separator\": ");
    EXPECT_FALSE(external.wait(500));
    EXPECT_EQ(external.count(), 2);
    EXPECT_EQ(follower.separator(), MenuBarSeparator::dot);
    EXPECT_EQ(app.separator(), MenuBarSeparator::dot);
    EXPECT_EQ(log.lines().size(), 2);
}

TEST(UserDefaultsTest, TheApplicationFollowsHandEditsAndKeepsABrokenOneAside) {
    SettingsFolder folder(R"({"separator": "dot", "launchCount": 4})");
    UserDefaults defaults(folder.file());
    SettingsStore app(defaults);
    QSignalSpy separator(&app, &SettingsStore::separatorChanged);
    QSignalSpy style(&app, &SettingsStore::metricCardStyleChanged);

    folder.write(R"({"separator": "bullet", "launchCount": 4, "myNote": "kept"})");
    ASSERT_TRUE(separator.wait(5000));
    EXPECT_EQ(app.separator(), MenuBarSeparator::bullet);
    EXPECT_EQ(style.count(), 0) << "only what changed notifies";

    // A half-typed edit is ignored; the next save keeps it beside the file.
    LogCapture log(logSettings());
    folder.write(R"({"separator": "verticalBar", )");
    QTest::qWait(300);
    EXPECT_EQ(app.separator(), MenuBarSeparator::bullet);
    app.setLaunchCount(5);
    EXPECT_EQ(lumetra::testing::readFile(folder.file() + QStringLiteral(".unreadable-edit")),
              QByteArray(R"({"separator": "verticalBar", )"));
    const QVariantMap saved = folder.domain();
    EXPECT_EQ(saved.value(QStringLiteral("launchCount")).toLongLong(), 5);
    EXPECT_EQ(saved.value(QStringLiteral("myNote")).toString(), QStringLiteral("kept"));
    EXPECT_EQ(log.lines().size(), 2) << log.lines().join(u'\n').toStdString();
}

} // namespace
