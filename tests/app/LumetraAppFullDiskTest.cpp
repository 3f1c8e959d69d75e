// The panel app started with its settings on a full file system: nothing the file held may be
// lost, and the changes made meanwhile are saved once there is room again.
#include "app/LumetraApp.h"

#include "core/AppState.h"
#include "model/Logging.h"
#include "settings/SettingsStore.h"
#include "support/LogCapture.h"
#include "support/PanelAppTest.h"
#include "support/SmallFileSystem.h"
#include "windows/SettingsView.h"

#include <QAbstractButton>
#include <QTest>

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>

using namespace lumetra;
using lumetra::testing::LogCapture;
using lumetra::testing::readFile;
using lumetra::testing::SmallFileSystem;

namespace {

using LumetraAppFullDiskTest = lumetra::testing::PanelAppTest;

int linesStartingWith(const QStringList& lines, const QString& start) {
    return int(std::count_if(lines.begin(), lines.end(),
                             [&](const QString& line) { return line.startsWith(start); }));
}

TEST_F(LumetraAppFullDiskTest, KeepsTheFileWholeAndSavesOnceThereIsRoom) {
    SmallFileSystem disk;
    if (!disk.mounted())
        GTEST_SKIP() << disk.error().toStdString();
    qputenv("XDG_CONFIG_HOME", disk.path().toUtf8());
    const QString folder = disk.path() + "/lumetra";
    const QString file = folder + "/settings.json";
    // A settings file as a user has it after a few starts.
    const QByteArray before = SettingsFileFormat::serialize(lumetra::testing::parsed(
        R"({"automaticallyCheckForUpdates": false, "hasCompletedOnboarding": true,
            "launchCount": 4, "separator": "bullet", "showWelcomeScreen": false})"));
    QDir().mkpath(folder);
    {
        QFile out(file);
        ASSERT_TRUE(out.open(QIODevice::WriteOnly));
        out.write(before);
    }
    disk.fill();
    ASSERT_EQ(disk.freePages(), 0);

    LogCapture log(logSettings());
    LumetraApp app({}); // start-up counts the launch: the first save
    SettingsStore& settings = app.appState().settings();
    EXPECT_EQ(settings.launchCount(), 5);
    EXPECT_EQ(settings.separator(), MenuBarSeparator::bullet);

    settings.setSeparator(MenuBarSeparator::dot); // through the store
    app.showSettings();
    ASSERT_NE(app.settingsWindow(), nullptr);
    auto* physicalOnly = app.settingsWindow()->findChild<QAbstractButton*>("networkPhysicalOnly");
    ASSERT_NE(physicalOnly, nullptr);
    physicalOnly->click(); // through the window
    EXPECT_TRUE(settings.networkPhysicalOnly());
    QTest::qWait(300); // the file watcher sees the temporary files come and go

    EXPECT_EQ(readFile(file), before);
    EXPECT_EQ(QDir(folder).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden),
              QStringList{"settings.json"});
    const QStringList lines = log.lines();
    // One line for the start-up save and both changes, and no complaint about the file.
    ASSERT_EQ(lines.size(), 1) << lines.join('\n').toStdString();
    // "No space left on device" in English.
    EXPECT_TRUE(lines[0].startsWith(
        "Could not save settings: " + QString::fromLocal8Bit(std::strerror(ENOSPC)) + " (" + file))
        << lines[0].toStdString();
    EXPECT_EQ(settings.separator(), MenuBarSeparator::dot) << "the change stays in memory";

    disk.freeSpace();
    physicalOnly->click();
    EXPECT_FALSE(settings.networkPhysicalOnly());
    const QVariantMap saved = lumetra::testing::parsed(readFile(file));
    EXPECT_EQ(saved.value("launchCount").toLongLong(), 5);
    EXPECT_EQ(saved.value("separator").toString(), "dot");
    EXPECT_EQ(saved.value("networkPhysicalOnly").toBool(), false);
    EXPECT_EQ(saved.value("hasCompletedOnboarding").toBool(), true);
    EXPECT_EQ(linesStartingWith(log.lines(), "Settings saved to " + file + " again"), 1);
}

} // namespace
