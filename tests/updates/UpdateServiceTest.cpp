#include "updates/UpdateService.h"
#include "model/Logging.h"
#include "support/LogCapture.h"
#include "updates/UpdateAlertPresenting.h"
#include "updates/UpdateCheckSettings.h"

#include <gtest/gtest.h>

using namespace lumetra;
using namespace std::chrono_literals;

namespace {

// 3 March 2026, 10:00 UTC.
const Instant kNow = Instant(std::chrono::sys_days(std::chrono::year(2026) / 3 / 3)) + 10h;
const UpdateCheckError kOffline{UpdateCheckError::Kind::transfer,
                                QStringLiteral("Host lumetra.app not found")};

UpdateManifest manifest(const char* version) {
    return {QString::fromLatin1(version), QUrl("https://lumetra.app/download/lumetra.tar.gz"),
            std::nullopt};
}

// Settings, a checker that holds each request until the test answers it, and alerts that
// record what they were asked to show, around one service at a controlled time.
struct Harness : UpdateCheckSettings, UpdateChecking, UpdateAlertPresenting {
    Harness() { attach(service); }
    void attach(UpdateService& s) {
        s.setClock([this] { return now; });
        s.setCurrentVersionSource([] { return QStringLiteral("1.2.0"); });
    }

    bool automaticallyCheckForUpdates() const override { return automatic; }
    std::optional<Instant> lastUpdateCheckDate() const override { return last; }
    void setLastUpdateCheckDate(Instant date) override { last = date; }
    void fetchLatestManifest(Completion completion) override {
        pending.push_back(std::move(completion));
    }
    int present(const UpdateAlert& alert) override {
        shown.push_back(alert);
        return button;
    }
    void openURL(const QUrl& url) override { opened.push_back(url); }

    void answer(std::size_t request, const UpdateCheckResult& result) {
        auto completion = std::move(pending.at(request));
        completion(result);
    }

    bool automatic = true;
    std::optional<Instant> last;
    Instant now = kNow;
    std::vector<Completion> pending;
    int button = 1; // "Later" where there is a choice
    std::vector<UpdateAlert> shown;
    std::vector<QUrl> opened;
    UpdateService service{*this, *this, *this};
};

TEST(UpdateServiceTest, StartUpChecksOnlyWhenAllowedAndADayHasPassed) {
    struct Case {
        const char* name;
        bool enabled;
        std::optional<std::chrono::seconds> lastCheckAgo; // none: never checked
        bool due;
    };
    for (const Case& c :
         std::initializer_list<Case>{{"never checked", true, std::nullopt, true},
                                     {"disabled", false, std::nullopt, false},
                                     {"disabled and stale", false, 48h, false},
                                     {"a minute short", true, 23h + 59min, false},
                                     {"a second short", true, 24h - 1s, false},
                                     {"exactly a day", true, 24h, true},
                                     {"weeks", true, 24h * 30, true},
                                     {"in the future (the clock was set back)", true, -1h, false},
                                     {"far in the future", true, -24h * 365, false}}) {
        SCOPED_TRACE(c.name);
        Harness h;
        h.automatic = c.enabled;
        if (c.lastCheckAgo)
            h.last = kNow - *c.lastCheckAgo;
        const auto before = h.last;
        h.service.checkForUpdatesIfNeeded();
        EXPECT_EQ(h.pending.size(), c.due ? 1u : 0u);
        EXPECT_EQ(h.last, c.due ? std::optional(kNow) : before) << "stamped only when it starts";
    }
    // A date in the future holds checks off until a day after it; the clock's ends do not
    // overflow.
    EXPECT_FALSE(isAutomaticUpdateCheckDue(true, kNow + 1h, kNow + 24h + 59min));
    EXPECT_TRUE(isAutomaticUpdateCheckDue(true, kNow + 1h, kNow + 25h));
    EXPECT_TRUE(isAutomaticUpdateCheckDue(true, Instant::min(), kNow));
    EXPECT_FALSE(isAutomaticUpdateCheckDue(true, Instant::max(), kNow));
    EXPECT_TRUE(isAutomaticUpdateCheckDue(true, Instant::min(), Instant::max()));
}

TEST(UpdateServiceTest, ManualStampIsWrittenFirstAndHoldsOffTheNextStartUpCheck) {
    Harness h;
    h.automatic = false;
    h.last = kNow - 72h;
    h.service.checkForUpdates(true); // works with automatic checks off
    ASSERT_EQ(h.pending.size(), 1u);
    EXPECT_EQ(h.last, kNow) << "written before fetching";
    h.now = kNow + 5min;
    h.answer(0, kOffline);
    EXPECT_EQ(h.last, kNow) << "kept after a failure";

    // The next starts, with automatic checks on: not within a day of the manual check.
    h.automatic = true;
    for (const auto& [later, requests] :
         {std::pair<std::chrono::seconds, std::size_t>{23h + 59min, 1}, {24h, 2}}) {
        h.now = kNow + later;
        UpdateService restarted(h, h, h);
        h.attach(restarted);
        restarted.checkForUpdatesIfNeeded();
        EXPECT_EQ(h.pending.size(), requests);
    }
}

using Kind = UpdateAlert::Kind;
using Style = UpdateAlert::Style;
const UpdateAlert kUpdateAvailable{Kind::updateAvailable,
                                   Style::standard,
                                   "A New Version is Available",
                                   "lumetra 1.3 is available \u2014 you have 1.2.0.",
                                   {"Download", "Later"}};
const UpdateAlert kUpToDate{Kind::upToDate,
                            Style::standard,
                            "You're Up to Date",
                            "lumetra 1.2.0 is the latest version.",
                            {"OK"}};
const UpdateAlert kCheckFailed{Kind::checkFailed,
                               Style::warning,
                               "Couldn't Check for Updates",
                               "Make sure you're connected to the internet and try again.",
                               {"OK"}};

TEST(UpdateServiceTest, EachOutcomeShowsItsAlertOrNone) {
    const UpdateCheckError garbage{UpdateCheckError::Kind::decoding, QStringLiteral("x")};
    struct Case {
        const char* name;
        bool userInitiated;
        UpdateCheckResult result;
        std::optional<UpdateAlert> alert; // none: silent
    };
    for (const auto& [name, userInitiated, result, alert] : std::initializer_list<Case>{
             {"automatic, newer", false, manifest("1.3"), kUpdateAvailable},
             {"automatic, same", false, manifest("1.2"), std::nullopt},
             {"automatic, older", false, manifest("1.1.9"), std::nullopt},
             {"automatic, offline", false, kOffline, std::nullopt},
             {"manual, newer", true, manifest("1.3"), kUpdateAvailable},
             {"manual, same", true, manifest("1.2"), kUpToDate}, // 1.2 equals 1.2.0
             {"manual, older", true, manifest("1.1.9"), kUpToDate},
             {"manual, pre-release tag", true, manifest("1.2.0-beta2"), kUpToDate},
             {"manual, offline", true, kOffline, kCheckFailed},
             {"manual, garbage", true, garbage, kCheckFailed}}) {
        SCOPED_TRACE(name);
        Harness h;
        int finished = 0;
        QObject::connect(&h.service, &UpdateService::checkFinished, [&] { ++finished; });
        h.service.checkForUpdates(userInitiated);
        EXPECT_EQ(h.service.checksInProgress(), 1);
        EXPECT_TRUE(h.shown.empty()) << "nothing is shown before the manifest arrives";
        h.answer(0, result);
        EXPECT_EQ(h.shown, alert ? std::vector{*alert} : std::vector<UpdateAlert>{});
        EXPECT_TRUE(h.opened.empty());
        EXPECT_EQ(finished, 1);
        EXPECT_EQ(h.service.checksInProgress(), 0);
    }
}

TEST(UpdateServiceTest, DownloadOpensTheDownloadURLAndLaterRemembersNothing) {
    for (const int button : {0, 1}) {
        Harness h;
        h.button = button;
        h.service.checkForUpdates(false);
        h.answer(0, manifest("9"));
        EXPECT_EQ(h.opened,
                  button == 0 ? std::vector{manifest("9").downloadURL} : std::vector<QUrl>{});
        // The same version is offered again at the next check.
        h.service.checkForUpdates(false);
        h.answer(1, manifest("9"));
        EXPECT_EQ(h.shown.size(), 2u);
    }
}

TEST(UpdateServiceTest, FailureIsLoggedForAutomaticAndManualChecks) {
    for (const bool userInitiated : {false, true}) {
        lumetra::testing::LogCapture log(logSettings());
        Harness h;
        h.service.checkForUpdates(userInitiated);
        h.answer(0, kOffline);
        EXPECT_EQ(log.entries(),
                  (std::vector{std::pair{
                      QtCriticalMsg,
                      QStringLiteral("Update check failed: Host lumetra.app not found")}}));
    }
}

TEST(UpdateServiceTest, OverlappingChecksEachRunToTheirEnd) {
    Harness h;
    h.service.checkForUpdatesIfNeeded();
    h.now = kNow + 2s;
    h.service.checkForUpdates(true); // pressed while the start-up check runs
    ASSERT_EQ(h.pending.size(), 2u);
    EXPECT_EQ(h.last, kNow + 2s);
    EXPECT_EQ(h.service.checksInProgress(), 2);

    // The manual one ends first and speaks; the automatic one finds the same and stays silent.
    h.answer(1, manifest("1.2.0"));
    h.answer(0, manifest("1.2.0"));
    EXPECT_EQ(h.shown, std::vector{kUpToDate});
    EXPECT_EQ(h.service.checksInProgress(), 0);

    // With a newer version both checks announce it.
    h.service.checkForUpdates(false);
    h.service.checkForUpdates(true);
    h.answer(2, manifest("1.3"));
    h.answer(3, manifest("1.3"));
    EXPECT_EQ(h.shown, (std::vector{kUpToDate, kUpdateAvailable, kUpdateAvailable}));
}

TEST(UpdateServiceTest, AnswerAfterTheServiceIsGoneIsIgnored) {
    Harness h;
    {
        UpdateService service(h, h, h);
        service.checkForUpdates(true);
    }
    h.answer(0, manifest("9"));
    EXPECT_TRUE(h.shown.empty());
}

} // namespace
