#include "app/LumetraApp.h"

#include "core/AppState.h"
#include "menubar/MenuBarPopoverWindowController.h"
#include "settings/SettingsStore.h"
#include "support/PanelAppTest.h"

#include <QSignalSpy>
#include <QTest>
#include <QWidget>

#include <gtest/gtest.h>

using namespace lumetra;

namespace {

using LumetraAppTest = lumetra::testing::PanelAppTest;

TEST_F(LumetraAppTest, BuildsTheGraphInOrderAndStartsSamplingOnceTheLoopRuns) {
    LumetraApp app({});
    const QStringList built{"settings",     "appearanceManager", "updateChecker", "appState",
                            "recordLaunch", "dailyUpdateCheck",  "statusItem"};
    EXPECT_EQ(app.startupSteps(), built);

    QSignalSpy started(&app, &LumetraApp::samplingStarted);
    ASSERT_TRUE(started.wait(2000));
    EXPECT_EQ(app.startupSteps(), built + QStringList{"startSampling"});
    EXPECT_EQ(app.appState().settings().launchCount(), 1);
}

// Which values of the hook count is AppStateTest's; here, when the window comes.
TEST_F(LumetraAppTest, UiTestHookOpensSettingsAfterAFifthOfASecond) {
    qputenv("LUMETRA_UITEST_OPEN_SETTINGS", "1");
    LumetraApp app({});
    QSignalSpy requested(&app, &LumetraApp::windowRequested);
    QTest::qWait(100);
    EXPECT_EQ(requested.count(), 0);
    QTest::qWait(400);
    ASSERT_EQ(requested.count(), 1);
    EXPECT_EQ(requested.front().front().toString(), QStringLiteral("settings"));
}

// Asked again after onboarding, the welcome opens; a first start (the switch's default is on)
// is AppWindowsTest's.
TEST_F(LumetraAppTest, WelcomeOpensWhileItsSwitchIsOn) {
    for (const bool on : {true, false}) {
        folder.write(QByteArray(R"({"hasCompletedOnboarding": true, "showWelcomeScreen": )") +
                     (on ? "true}" : "false}"));
        LumetraApp app({});
        QSignalSpy requested(&app, &LumetraApp::windowRequested);
        QTest::qWait(50);
        const bool welcome = std::any_of(requested.begin(), requested.end(), [](const auto& call) {
            return call.at(0).toString() == QLatin1String("welcome");
        });
        EXPECT_EQ(welcome, on);
    }
}

TEST_F(LumetraAppTest, PopoverIsCreatedOnceAnd280Wide) {
    LumetraApp app({});
    MenuBarPopoverWindowController& popover = app.popover();
    EXPECT_EQ(popover.window(), nullptr);
    popover.show(QRect(600, 0, 22, 22));
    QWidget* window = popover.window();
    ASSERT_NE(window, nullptr);
    EXPECT_TRUE(popover.isVisible());
    EXPECT_EQ(window->width(), 280);
    EXPECT_GT(window->height(), 20);
    popover.toggle(QRect(600, 0, 22, 22));
    EXPECT_FALSE(popover.isVisible());
    popover.toggle(QRect(600, 0, 22, 22));
    EXPECT_TRUE(popover.isVisible());
    EXPECT_EQ(popover.window(), window) << "reused, not rebuilt";
    QTest::keyClick(window, Qt::Key_Escape);
    EXPECT_FALSE(popover.isVisible());
}

} // namespace
