#include "app/LumetraApp.h"
#include "core/AppState.h"
#include "settings/SettingsTestSupport.h"
#include "windows/SettingsView.h"
#include "windows/SupportWindowController.h"
#include "windows/WelcomeView.h"

#include <QAbstractButton>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

using namespace lumetra;
using lumetra::testing::SettingsFolder;

namespace {

// The panel app's window routing over a temporary configuration folder, with update checks
// aimed at a closed local port.
class AppWindowsTest : public ::testing::Test {
protected:
    void SetUp() override {
        qputenv("XDG_CONFIG_HOME", folder.dir.path().toUtf8());
        qputenv("LUMETRA_UPDATE_MANIFEST_URL", "http://127.0.0.1:9/appcast.json");
        qunsetenv("LUMETRA_UITEST_OPEN_SETTINGS");
    }
    void TearDown() override { qunsetenv("LUMETRA_UITEST_OPEN_SETTINGS"); }

    SettingsFolder folder{
        QByteArray(R"({"hasCompletedOnboarding": true, "showWelcomeScreen": false})")};
};

TEST_F(AppWindowsTest, SettingsRequestsShowOneWindowFourHundredSixtyWide) {
    LumetraApp app({});
    EXPECT_EQ(app.settingsWindow(), nullptr);
    app.handleRequest("settings");
    SettingsView* window = app.settingsWindow();
    ASSERT_NE(window, nullptr);
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(window->width(), 460);
    window->close();
    app.showSettings();
    EXPECT_EQ(app.settingsWindow(), window);
    EXPECT_TRUE(window->isVisible());
}

TEST_F(AppWindowsTest, StartedWithSettingsOrTheUiTestHookOpensTheWindow) {
    {
        LumetraApp app({.openSettings = true});
        QTest::qWait(50);
        ASSERT_NE(app.settingsWindow(), nullptr);
        EXPECT_TRUE(app.settingsWindow()->isVisible());
    }
    qputenv("LUMETRA_UITEST_OPEN_SETTINGS", "1");
    LumetraApp app({});
    QTest::qWait(100);
    EXPECT_EQ(app.settingsWindow(), nullptr);
    QTest::qWait(300);
    ASSERT_NE(app.settingsWindow(), nullptr);
    EXPECT_TRUE(app.settingsWindow()->isVisible());
}

TEST_F(AppWindowsTest, SupportButtonInSettingsOpensTheOneSupportWindow) {
    LumetraApp app({});
    app.showSettings();
    app.settingsWindow()->findChild<QAbstractButton*>("supportLumetra")->click();
    ASSERT_NE(app.supportWindow(), nullptr);
    QWidget* support = app.supportWindow()->window();
    ASSERT_NE(support, nullptr);
    EXPECT_TRUE(support->isVisible());
    app.handleRequest("support");
    EXPECT_EQ(app.supportWindow()->window(), support);
}

TEST_F(AppWindowsTest, WelcomeShowsBeforeOnboardingAndDoneClosesIt) {
    folder.write("{}");
    LumetraApp app({});
    QTest::qWait(50);
    WelcomeView* welcome = app.welcomeWindow();
    ASSERT_NE(welcome, nullptr);
    EXPECT_TRUE(welcome->isVisible());
    welcome->setStep(WelcomeView::Step::configure);
    welcome->doneButton().click();
    EXPECT_FALSE(welcome->isVisible());
    EXPECT_TRUE(app.appState().settings().hasCompletedOnboarding());
    EXPECT_FALSE(app.appState().settings().showWelcomeScreen()); // until the user asks again
}

} // namespace
