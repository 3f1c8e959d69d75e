#include "core/AppState.h"

#include "model/Logging.h"
#include "support/AppStateHarness.h"
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

// Each launch is counted at once; on a launch the rule names, after onboarding and not under
// the UI-test hook (exactly "1", see UiTestHookIsExactlyOne), the support prompt is asked for
// 2.0 s later.
TEST(AppStateTest, CountsTheLaunchAndAsksForSupportTwoSecondsLater) {
    struct Case {
        const char* name;
        qint64 previousLaunches;
        bool onboardingCompleted;
        bool uiTest;
        bool expectPrompt;
    };
    const Case cases[] = {{"third", 2, true, false, true},
                          {"fourth", 3, true, false, false},
                          {"third before onboarding", 2, false, false, false},
                          {"third under the UI-test hook", 2, true, true, false}};
    std::vector<std::unique_ptr<Harness>> harnesses;
    std::vector<std::unique_ptr<QSignalSpy>> prompts;
    for (const Case& c : cases) {
        Harness& harness = *harnesses.emplace_back(std::make_unique<Harness>());
        harness.settings->setLaunchCount(c.previousLaunches);
        harness.settings->setHasCompletedOnboarding(c.onboardingCompleted);
        prompts.push_back(
            std::make_unique<QSignalSpy>(&harness.state(), &AppState::supportPromptRequested));
    }
    // All launches at once, so one wait serves every case.
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        cases[i].uiTest ? qputenv("LUMETRA_UITEST_OPEN_SETTINGS", "1")
                        : qunsetenv("LUMETRA_UITEST_OPEN_SETTINGS");
        harnesses[i]->state().recordLaunch();
    }
    qunsetenv("LUMETRA_UITEST_OPEN_SETTINGS");
    QTest::qWait(1800);
    for (const auto& prompt : prompts)
        EXPECT_EQ(prompt->count(), 0) << "not before 2.0 s";
    QTest::qWait(700);
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        SCOPED_TRACE(cases[i].name);
        EXPECT_EQ(harnesses[i]->settings->launchCount(), cases[i].previousLaunches + 1);
        EXPECT_EQ(harnesses[i]->stored("launchCount").toLongLong(), cases[i].previousLaunches + 1);
        EXPECT_EQ(prompts[i]->count(), cases[i].expectPrompt ? 1 : 0);
    }
}

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
