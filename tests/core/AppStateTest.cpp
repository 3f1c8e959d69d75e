#include "core/AppState.h"

#include "model/Logging.h"
#include "support/AppStateHarness.h"
#include "support/Cases.h"
#include "support/LogCapture.h"

#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

using namespace lumetra;
using lumetra::testing::LogCapture;

namespace {

using Harness = lumetra::testing::AppStateHarness;

struct PromptRuleCase {
    std::string name;
    qint64 launchCount;
    std::optional<QString> dismissed;
    bool expected;
};

class SupportPromptRuleTest : public ::testing::TestWithParam<PromptRuleCase> {};

TEST_P(SupportPromptRuleTest, AsksOnTheListedLaunchesUnlessDismissedForThisVersion) {
    const PromptRuleCase& c = GetParam();
    EXPECT_EQ(AppState::shouldShowSupportPrompt(c.launchCount, QStringLiteral("1.2"), c.dismissed),
              c.expected);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, SupportPromptRuleTest,
    ::testing::Values(PromptRuleCase{"Launch3", 3, std::nullopt, true},
                      PromptRuleCase{"Launch4", 4, std::nullopt, false},
                      PromptRuleCase{"Launch15", 15, std::nullopt, true},
                      PromptRuleCase{"Launch50", 50, std::nullopt, true},
                      PromptRuleCase{"Launch150", 150, std::nullopt, true},
                      PromptRuleCase{"Launch400", 400, std::nullopt, true},
                      PromptRuleCase{"Launch401", 401, std::nullopt, false},
                      PromptRuleCase{"Launch0", 0, std::nullopt, false},
                      PromptRuleCase{"DismissedThisVersion", 15, QStringLiteral("1.2"), false},
                      PromptRuleCase{"DismissedOlderVersion", 15, QStringLiteral("1.1"), true},
                      // Exact string equality: "1.2.0" is another version.
                      PromptRuleCase{"DismissedLongerSpelling", 15, QStringLiteral("1.2.0"), true}),
    lumetra::testing::byName);

struct LaunchCase {
    std::string name;
    qint64 previousLaunches;
    bool onboardingCompleted;
    std::optional<QByteArray> uiTestVariable;
    bool expectPrompt;
};

class RecordLaunchTest : public ::testing::TestWithParam<LaunchCase> {};

TEST_P(RecordLaunchTest, CountsTheLaunchAndAsksForSupportTwoSecondsLater) {
    const LaunchCase& c = GetParam();
    if (c.uiTestVariable)
        qputenv("LUMETRA_UITEST_OPEN_SETTINGS", *c.uiTestVariable);
    else
        qunsetenv("LUMETRA_UITEST_OPEN_SETTINGS");
    Harness harness;
    harness.settings->setLaunchCount(c.previousLaunches);
    harness.settings->setHasCompletedOnboarding(c.onboardingCompleted);
    QSignalSpy prompt(&harness.state(), &AppState::supportPromptRequested);

    harness.state().recordLaunch();

    EXPECT_EQ(harness.settings->launchCount(), c.previousLaunches + 1);
    EXPECT_EQ(harness.stored("launchCount").toLongLong(), c.previousLaunches + 1);
    QTest::qWait(1800);
    EXPECT_EQ(prompt.count(), 0) << "not before 2.0 s";
    if (c.expectPrompt)
        EXPECT_TRUE(prompt.wait(1000));
    else
        EXPECT_FALSE(prompt.wait(500));
    qunsetenv("LUMETRA_UITEST_OPEN_SETTINGS");
}

INSTANTIATE_TEST_SUITE_P(
    Cases, RecordLaunchTest,
    ::testing::Values(
        LaunchCase{"Third", 2, true, std::nullopt, true},
        LaunchCase{"Fourth", 3, true, std::nullopt, false},
        LaunchCase{"ThirdBeforeOnboarding", 2, false, std::nullopt, false},
        // The UI-test hook (exactly "1", see UiTestHookIsExactlyOne) suppresses the prompt.
        LaunchCase{"UiTestOne", 2, true, QByteArray("1"), false}),
    lumetra::testing::byName);

TEST(AppStateTest, UiTestHookIsExactlyOne) {
    const std::vector<std::pair<QByteArray, bool>> cases{
        {"1", true}, {"true", false}, {"01", false}, {"", false}, {" 1", false}};
    for (const auto& [value, expected] : cases) {
        qputenv("LUMETRA_UITEST_OPEN_SETTINGS", value);
        EXPECT_EQ(AppState::uiTestOpensSettings(), expected) << value.constData();
    }
    qunsetenv("LUMETRA_UITEST_OPEN_SETTINGS");
    EXPECT_FALSE(AppState::uiTestOpensSettings());
}

struct LoginCase {
    std::string name;
    bool stored;         // launchAtLogin in the settings file
    bool serviceEnabled; // what the login item reports
    std::optional<QString> failure;
    QStringList expectedCalls;
    bool expectLogLine;
};

class LoginItemSyncTest : public ::testing::TestWithParam<LoginCase> {};

TEST_P(LoginItemSyncTest, BringsTheLoginItemInLineAtStartWithoutNeedlessCalls) {
    const LoginCase& c = GetParam();
    Harness harness(c.stored ? QByteArray(R"({"launchAtLogin": true})") : QByteArray("{}"));
    harness.loginItem.enabled = c.serviceEnabled;
    harness.loginItem.failure = c.failure;
    LogCapture log(logUi());

    harness.state();

    EXPECT_EQ(harness.loginItem.calls, c.expectedCalls);
    EXPECT_EQ(log.lines().filter(QStringLiteral("Failed to update login item:")).size(),
              c.expectLogLine ? 1 : 0);
    // The setting is never changed back.
    EXPECT_EQ(harness.settings->launchAtLogin(), c.stored);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, LoginItemSyncTest,
    ::testing::Values(
        LoginCase{"EnabledAlready", true, true, std::nullopt, {}, false},
        LoginCase{"EnableIt", true, false, std::nullopt, {QStringLiteral("register")}, false},
        LoginCase{"DisabledAlready", false, false, std::nullopt, {}, false},
        LoginCase{"DisableIt", false, true, std::nullopt, {QStringLiteral("unregister")}, false},
        LoginCase{"RegisterFails",
                  true,
                  false,
                  QStringLiteral("/x: Permission denied"),
                  {QStringLiteral("register")},
                  true}),
    lumetra::testing::byName);

TEST(AppStateTest, EffectiveAppearanceFollowsModeAndFlagsAndNotifiesOnlyOnChange) {
    Harness harness;
    AppState& state = harness.state();
    QSignalSpy changed(&state, &AppState::effectiveAppearanceChanged);

    harness.settings->setAppearanceMode(AppearanceMode::solid);
    EXPECT_EQ(changed.count(), 1);
    EXPECT_EQ(state.effectiveAppearance().mode, AppearanceMode::solid);

    harness.appearance.setFlags(true, false);
    EXPECT_EQ(changed.count(), 2);
    EXPECT_FALSE(state.effectiveAppearance().vibrancyEnabled);
    EXPECT_EQ(state.effectiveAppearance().backgroundOpacity, 1.0);

    // The same flags again, and the same mode again: nobody hears of it.
    harness.appearance.setFlags(true, false);
    harness.settings->setAppearanceMode(AppearanceMode::solid);
    EXPECT_EQ(changed.count(), 2);
}

TEST(AppStateTest, IntervalBindingsStoreTheValue) {
    Harness harness;
    AppState& state = harness.state();
    state.setUpdateInterval(UpdateInterval::five);
    state.setTemperatureInterval(TemperatureInterval::ten);
    EXPECT_EQ(state.updateInterval(), UpdateInterval::five);
    EXPECT_EQ(harness.stored("updateInterval").toDouble(), 5.0);
    EXPECT_EQ(harness.stored("temperatureInterval").toDouble(), 10.0);
}

} // namespace
