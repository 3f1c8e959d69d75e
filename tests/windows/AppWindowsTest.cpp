#include "app/LumetraApp.h"
#include "core/AppState.h"
#include "support/PanelAppTest.h"
#include "windows/SettingsView.h"
#include "windows/SupportWindowController.h"
#include "windows/WelcomeView.h"

#include <QAbstractButton>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

using namespace lumetra;

namespace {

using AppWindowsTest = lumetra::testing::PanelAppTest;

TEST_F(AppWindowsTest, SettingsRequestsShowOneWindow) {
    LumetraApp app({});
    EXPECT_EQ(app.settingsWindow(), nullptr);
    app.handleRequest("settings");
    SettingsView* window = app.settingsWindow();
    ASSERT_NE(window, nullptr);
    EXPECT_TRUE(window->isVisible());
    window->close();
    app.showSettings();
    EXPECT_EQ(app.settingsWindow(), window);
    EXPECT_TRUE(window->isVisible());
}

TEST_F(AppWindowsTest, StartedWithSettingsOpensTheWindow) {
    LumetraApp app({.openSettings = true});
    QTest::qWait(50);
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
