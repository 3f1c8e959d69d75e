#include "updates/UpdateService.h"
#include "updates/UpdateAlertPresenting.h"
#include "updates/UpdateCheckSettings.h"

#include <QLoggingCategory>

#include <gtest/gtest.h>

using namespace lumetra;
using namespace std::chrono_literals;

namespace {

// 3 March 2026, 10:00 UTC.
const Instant kNow = Instant(std::chrono::sys_days(std::chrono::year(2026) / 3 / 3)) + 10h;

class FakeSettings final : public UpdateCheckSettings {
public:
    bool automaticallyCheckForUpdates() const override { return automatic; }
    std::optional<Instant> lastUpdateCheckDate() const override { return last; }
    void setLastUpdateCheckDate(Instant date) override { last = date; }

    bool automatic = true;
    std::optional<Instant> last;
};

// Holds each request until the test answers it.
class StubChecker final : public UpdateChecking {
public:
    void fetchLatestManifest(Completion completion) override {
        pending.push_back(std::move(completion));
    }
    void answer(std::size_t index, const UpdateCheckResult& result) {
        auto completion = std::move(pending.at(index));
        completion(result);
    }

    std::vector<Completion> pending;
};

class RecordingAlerts final : public UpdateAlertPresenting {
public:
    int present(const UpdateAlert& alert) override {
        shown.push_back(alert);
        return answer;
    }
    void openURL(const QUrl& url) override { opened.push_back(url); }

    int answer = 0;
    std::vector<UpdateAlert> shown;
    std::vector<QUrl> opened;
};

UpdateManifest manifest(const char* version) {
    return {QString::fromLatin1(version), QUrl("https://lumetra.app/download/lumetra.tar.gz"),
            std::nullopt};
}

const UpdateCheckError kOffline{UpdateCheckError::Kind::transfer,
                                QStringLiteral("Host lumetra.app not found")};

struct Harness {
    explicit Harness(const char* currentVersion = "1.2.0") : service(checker, settings, alerts) {
        service.setClock([this] { return now; });
        service.setCurrentVersionSource(
            [version = QString::fromLatin1(currentVersion)] { return version; });
    }

    Instant now = kNow;
    FakeSettings settings;
    StubChecker checker;
    RecordingAlerts alerts;
    UpdateService service;
};

// ---- When the start-up check runs ----

struct DueCase {
    const char* name;
    bool enabled;
    std::optional<std::chrono::seconds> lastCheckAgo; // none: never checked
    bool due;
};

class AutomaticCheckDueTest : public ::testing::TestWithParam<DueCase> {};

TEST_P(AutomaticCheckDueTest, StartUpRequestsOnlyWhenDue) {
    Harness h;
    h.settings.automatic = GetParam().enabled;
    if (GetParam().lastCheckAgo)
        h.settings.last = kNow - *GetParam().lastCheckAgo;
    const auto before = h.settings.last;
    h.service.checkForUpdatesIfNeeded();
    EXPECT_EQ(h.checker.pending.size(), GetParam().due ? 1u : 0u);
    // The stamp moves only when a check starts.
    EXPECT_EQ(h.settings.last, GetParam().due ? std::optional(kNow) : before);
}

INSTANTIATE_TEST_SUITE_P(Cases, AutomaticCheckDueTest,
                         ::testing::Values(DueCase{"NeverChecked", true, std::nullopt, true},
                                           DueCase{"Disabled", false, std::nullopt, false},
                                           DueCase{"DisabledAndStale", false, 48h, false},
                                           DueCase{"OneMinuteShort", true, 23h + 59min, false},
                                           DueCase{"OneSecondShort", true, 24h - 1s, false},
                                           DueCase{"ExactlyADay", true, 24h, true},
                                           DueCase{"Weeks", true, 24h * 30, true},
                                           // The clock was set back: the date lies ahead.
                                           DueCase{"InTheFuture", true, -1h, false},
                                           DueCase{"FarInTheFuture", true, -24h * 365, false}),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(AutomaticCheckDueTest, FutureDateHoldsChecksOffUntilADayAfterIt) {
    const Instant stored = kNow + 1h;
    EXPECT_FALSE(isAutomaticUpdateCheckDue(true, stored, kNow + 24h + 59min));
    EXPECT_TRUE(isAutomaticUpdateCheckDue(true, stored, kNow + 25h));
}

TEST(AutomaticCheckDueTest, DatesAtTheEndsOfTheClockDoNotOverflow) {
    EXPECT_TRUE(isAutomaticUpdateCheckDue(true, Instant::min(), kNow));
    EXPECT_FALSE(isAutomaticUpdateCheckDue(true, Instant::max(), kNow));
    EXPECT_TRUE(isAutomaticUpdateCheckDue(true, Instant::min(), Instant::max()));
}

TEST(UpdateServiceTest, ManualCheckWorksWithAutomaticChecksOff) {
    Harness h;
    h.settings.automatic = false;
    h.service.checkForUpdatesIfNeeded();
    EXPECT_TRUE(h.checker.pending.empty());
    h.service.checkForUpdates(true);
    ASSERT_EQ(h.checker.pending.size(), 1u);
    EXPECT_EQ(h.settings.last, kNow);
}

TEST(UpdateServiceTest, StampIsWrittenBeforeFetchingAndKeptOnFailure) {
    Harness h;
    h.service.checkForUpdatesIfNeeded();
    ASSERT_EQ(h.checker.pending.size(), 1u);
    EXPECT_EQ(h.settings.last, kNow);
    h.now = kNow + 5min;
    h.checker.answer(0, kOffline);
    EXPECT_EQ(h.settings.last, kNow);
    // A failed automatic check is not repeated at the next start within a day.
    Harness next;
    next.settings.last = h.settings.last;
    next.now = kNow + 23h;
    next.service.checkForUpdatesIfNeeded();
    EXPECT_TRUE(next.checker.pending.empty());
}

TEST(UpdateServiceTest, ManualStampSuppressesTheNextAutomaticCheck) {
    FakeSettings settings;
    settings.last = kNow - 72h;
    StubChecker checker;
    RecordingAlerts alerts;
    Instant now = kNow;
    {
        UpdateService service(checker, settings, alerts);
        service.setClock([&] { return now; });
        service.checkForUpdates(true);
    }
    EXPECT_EQ(settings.last, kNow);
    const std::size_t requests = checker.pending.size();

    // The next start, an hour later: no request.
    now = kNow + 1h;
    UpdateService restarted(checker, settings, alerts);
    restarted.setClock([&] { return now; });
    restarted.checkForUpdatesIfNeeded();
    EXPECT_EQ(checker.pending.size(), requests);

    // A start a day after the manual check: a request.
    now = kNow + 24h;
    restarted.checkForUpdatesIfNeeded();
    EXPECT_EQ(checker.pending.size(), requests + 1);
}

// ---- What the user is told ----

struct OutcomeCase {
    const char* name;
    bool userInitiated;
    const char* currentVersion;
    UpdateCheckResult result;
    std::optional<UpdateAlert> alert; // none: silent
};

class UpdateOutcomeTest : public ::testing::TestWithParam<OutcomeCase> {};

TEST_P(UpdateOutcomeTest, ShowsTheAlertForTheOutcome) {
    const auto& c = GetParam();
    Harness h(c.currentVersion);
    h.alerts.answer = 1; // "Later" where there is a choice
    int finished = 0;
    QObject::connect(&h.service, &UpdateService::checkFinished, [&] { ++finished; });
    h.service.checkForUpdates(c.userInitiated);
    EXPECT_EQ(h.service.checksInProgress(), 1);
    EXPECT_TRUE(h.alerts.shown.empty()) << "nothing is shown before the manifest arrives";
    h.checker.answer(0, c.result);
    if (c.alert) {
        ASSERT_EQ(h.alerts.shown.size(), 1u);
        EXPECT_EQ(h.alerts.shown[0], *c.alert);
    } else {
        EXPECT_TRUE(h.alerts.shown.empty());
    }
    EXPECT_TRUE(h.alerts.opened.empty());
    EXPECT_EQ(finished, 1);
    EXPECT_EQ(h.service.checksInProgress(), 0);
}

const UpdateAlert kUpdateAvailable{
    UpdateAlert::Kind::updateAvailable,
    UpdateAlert::Style::standard,
    QStringLiteral("A New Version is Available"),
    QString::fromUtf8("lumetra 1.3 is available \xe2\x80\x94 you have 1.2.0."),
    {QStringLiteral("Download"), QStringLiteral("Later")}};
const UpdateAlert kUpToDate{UpdateAlert::Kind::upToDate,
                            UpdateAlert::Style::standard,
                            QStringLiteral("You're Up to Date"),
                            QStringLiteral("lumetra 1.2.0 is the latest version."),
                            {QStringLiteral("OK")}};
const UpdateAlert kCheckFailed{
    UpdateAlert::Kind::checkFailed,
    UpdateAlert::Style::warning,
    QStringLiteral("Couldn't Check for Updates"),
    QStringLiteral("Make sure you're connected to the internet and try again."),
    {QStringLiteral("OK")}};

const UpdateAlert kUpdateFromUnset{
    UpdateAlert::Kind::updateAvailable,
    UpdateAlert::Style::standard,
    QStringLiteral("A New Version is Available"),
    QString::fromUtf8("lumetra 0.1 is available \xe2\x80\x94 you have 0."),
    {QStringLiteral("Download"), QStringLiteral("Later")}};

INSTANTIATE_TEST_SUITE_P(
    Outcomes, UpdateOutcomeTest,
    ::testing::Values(
        OutcomeCase{"AutomaticNewer", false, "1.2.0", manifest("1.3"), kUpdateAvailable},
        OutcomeCase{"AutomaticSame", false, "1.2.0", manifest("1.2"), std::nullopt},
        OutcomeCase{"AutomaticOlder", false, "1.2.0", manifest("1.1.9"), std::nullopt},
        OutcomeCase{"AutomaticFailure", false, "1.2.0", kOffline, std::nullopt},
        OutcomeCase{"ManualNewer", true, "1.2.0", manifest("1.3"), kUpdateAvailable},
        // 1.2 and 1.2.0 are the same version.
        OutcomeCase{"ManualSame", true, "1.2.0", manifest("1.2"), kUpToDate},
        OutcomeCase{"ManualOlder", true, "1.2.0", manifest("1.1.9"), kUpToDate},
        OutcomeCase{"ManualPrereleaseTagIgnored", true, "1.2.0", manifest("1.2.0-beta2"),
                    kUpToDate},
        OutcomeCase{"ManualFailure", true, "1.2.0", kOffline, kCheckFailed},
        OutcomeCase{"ManualDecodingFailure", true, "1.2.0",
                    UpdateCheckError{UpdateCheckError::Kind::decoding, QStringLiteral("x")},
                    kCheckFailed},
        OutcomeCase{"UnsetVersionSeesAnyRelease", false, "0", manifest("0.1"), kUpdateFromUnset}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(UpdateServiceTest, DownloadOpensTheDownloadURLAndLaterDoesNothing) {
    for (const int answer : {0, 1}) {
        Harness h;
        h.alerts.answer = answer;
        h.service.checkForUpdates(false);
        h.checker.answer(0, manifest("9"));
        ASSERT_EQ(h.alerts.shown.size(), 1u);
        if (answer == 0) {
            ASSERT_EQ(h.alerts.opened.size(), 1u);
            EXPECT_EQ(h.alerts.opened[0], manifest("9").downloadURL);
        } else {
            EXPECT_TRUE(h.alerts.opened.empty());
        }
        // Nothing is remembered: the same version is offered at the next check.
        h.service.checkForUpdates(false);
        h.checker.answer(1, manifest("9"));
        EXPECT_EQ(h.alerts.shown.size(), 2u);
    }
}

// What went to the settings category while a capture was installed (main thread only).
std::vector<std::pair<QtMsgType, QString>> gSettingsLines;

struct LogCapture {
    LogCapture() {
        gSettingsLines.clear();
        previous = qInstallMessageHandler(
            [](QtMsgType type, const QMessageLogContext& context, const QString& text) {
                if (QByteArray(context.category) == "io.lumetra.Lumetra.settings")
                    gSettingsLines.emplace_back(type, text);
            });
    }
    ~LogCapture() { qInstallMessageHandler(previous); }
    QtMessageHandler previous;
};

TEST(UpdateServiceTest, FailureIsLoggedForAutomaticAndManualChecks) {
    for (const bool userInitiated : {false, true}) {
        LogCapture capture;
        Harness h;
        h.service.checkForUpdates(userInitiated);
        h.checker.answer(0, kOffline);
        const auto& lines = gSettingsLines;
        ASSERT_EQ(lines.size(), 1u);
        EXPECT_EQ(lines[0].first, QtCriticalMsg);
        EXPECT_EQ(lines[0].second,
                  QStringLiteral("Update check failed: Host lumetra.app not found"));
    }
}

TEST(UpdateServiceTest, OverlappingChecksEachRunToTheirEnd) {
    Harness h;
    h.alerts.answer = 1;
    h.service.checkForUpdatesIfNeeded();
    h.now = kNow + 2s;
    h.service.checkForUpdates(true); // pressed while the start-up check runs
    ASSERT_EQ(h.checker.pending.size(), 2u);
    EXPECT_EQ(h.settings.last, kNow + 2s);
    EXPECT_EQ(h.service.checksInProgress(), 2);

    // The manual one ends first and speaks; the automatic one finds the same and stays silent.
    h.checker.answer(1, manifest("1.2.0"));
    ASSERT_EQ(h.alerts.shown.size(), 1u);
    EXPECT_EQ(h.alerts.shown[0].kind, UpdateAlert::Kind::upToDate);
    h.checker.answer(0, manifest("1.2.0"));
    EXPECT_EQ(h.alerts.shown.size(), 1u);
    EXPECT_EQ(h.service.checksInProgress(), 0);

    // With a newer version both checks announce it.
    h.service.checkForUpdates(false);
    h.service.checkForUpdates(true);
    h.checker.answer(2, manifest("2.0"));
    h.checker.answer(3, manifest("2.0"));
    ASSERT_EQ(h.alerts.shown.size(), 3u);
    EXPECT_EQ(h.alerts.shown[1].kind, UpdateAlert::Kind::updateAvailable);
    EXPECT_EQ(h.alerts.shown[2].kind, UpdateAlert::Kind::updateAvailable);
}

TEST(UpdateServiceTest, AnswerAfterTheServiceIsGoneIsIgnored) {
    FakeSettings settings;
    StubChecker checker;
    RecordingAlerts alerts;
    {
        UpdateService service(checker, settings, alerts);
        service.checkForUpdates(true);
    }
    checker.answer(0, manifest("9"));
    EXPECT_TRUE(alerts.shown.empty());
}

} // namespace
