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

// Launches 3, 15, 50, 150 and 400 ask, unless the prompt was dismissed for exactly this
// version: "1.2.0" is another version than "1.2".
TEST(AppStateTest, SupportPromptAsksOnTheListedLaunchesUnlessDismissedForThisVersion) {
    struct Case {
        qint64 launchCount;
        std::optional<QString> dismissed;
        bool expected;
    };
    const std::nullopt_t none = std::nullopt;
    const Case cases[] = {{3, none, true},    {4, none, false},   {15, none, true},
                          {50, none, true},   {150, none, true},  {400, none, true},
                          {401, none, false}, {0, none, false},   {15, "1.2", false},
                          {15, "1.1", true},  {15, "1.2.0", true}};
    for (const Case& c : cases) {
        EXPECT_EQ(AppState::shouldShowSupportPrompt(c.launchCount, "1.2", c.dismissed), c.expected)
            << c.launchCount << ' ' << c.dismissed.value_or("-").toStdString();
    }
}

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
    const std::pair<QByteArray, bool> cases[] = {
        {"1", true}, {"true", false}, {"01", false}, {"", false}, {" 1", false}};
    for (const auto& [value, expected] : cases) {
        qputenv("LUMETRA_UITEST_OPEN_SETTINGS", value);
        EXPECT_EQ(AppState::uiTestOpensSettings(), expected) << value.constData();
    }
    qunsetenv("LUMETRA_UITEST_OPEN_SETTINGS");
    EXPECT_FALSE(AppState::uiTestOpensSettings());
}

// At start the login item is brought in line with the setting, with no call when it already
// is; a failure is logged, and the setting is never changed back.
TEST(AppStateTest, BringsTheLoginItemInLineAtStartWithoutNeedlessCalls) {
    struct Case {
        bool stored;         // launchAtLogin in the settings file
        bool serviceEnabled; // what the login item reports
        const char* failure;
        const char* expectedCall; // none: no call
    };
    const Case cases[] = {{true, true, nullptr, nullptr},
                          {true, false, nullptr, "register"},
                          {false, false, nullptr, nullptr},
                          {false, true, nullptr, "unregister"},
                          {true, false, "/x: Permission denied", "register"}};
    for (const Case& c : cases) {
        SCOPED_TRACE(std::to_string(&c - cases));
        Harness harness(c.stored ? QByteArray(R"({"launchAtLogin": true})") : QByteArray("{}"));
        harness.loginItem.enabled = c.serviceEnabled;
        if (c.failure)
            harness.loginItem.failure = c.failure;
        LogCapture log(logUi());

        harness.state();

        EXPECT_EQ(harness.loginItem.calls,
                  c.expectedCall ? QStringList{c.expectedCall} : QStringList());
        EXPECT_EQ(log.lines().filter(QStringLiteral("Failed to update login item:")).size(),
                  c.failure ? 1 : 0);
        EXPECT_EQ(harness.settings->launchAtLogin(), c.stored);
    }
}

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

} // namespace
