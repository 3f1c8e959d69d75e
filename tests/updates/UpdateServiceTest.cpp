#include "updates/UpdateService.h"
#include "model/Logging.h"
#include "support/LogCapture.h"
#include "updates/UpdateAlertPresenting.h"
#include "updates/UpdateCheckSettings.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

using namespace lumetra;
using namespace std::chrono_literals;

namespace {

// 3 March 2026, 10:00 UTC.
const Instant kNow = Instant(std::chrono::sys_days(std::chrono::year(2026) / 3 / 3)) + 10h;
const UpdateCheckError kOffline{UpdateCheckError::Kind::transfer, "Host lumetra.app not found"};
const QUrl kDownload("https://lumetra.app/download/lumetra.tar.gz");

UpdateManifest manifest(const char* version) {
    return {version, kDownload, std::nullopt};
}

// Settings, a checker that holds each request until the test answers it, and alerts that
// record what they show ("message | informative text | buttons", warnings marked) and open,
// around a service whose clock and version (1.2.0) the test sets.
struct Harness : UpdateCheckSettings, UpdateChecking, UpdateAlertPresenting {
    Harness() {
        service.setClock([this] { return now; });
        service.setCurrentVersionSource([] { return QStringLiteral("1.2.0"); });
    }
    bool automaticallyCheckForUpdates() const override { return automatic; }
    std::optional<Instant> lastUpdateCheckDate() const override { return last; }
    void setLastUpdateCheckDate(Instant date) override { last = date; }
    void fetchLatestManifest(Completion completion) override { pending.push_back(completion); }
    int present(const UpdateAlert& a) override {
        shown << (a.style == UpdateAlert::Style::warning ? "! " : "") + a.message + " | " +
                     a.informativeText + " | " + a.buttons.join(", ");
        return button;
    }
    void openURL(const QUrl& url) override { shown << "open " + url.toString(); }

    bool automatic = true;
    std::optional<Instant> last;
    Instant now = kNow;
    std::vector<Completion> pending;
    int button = 1; // "Later" where there is a choice
    QStringList shown;
    UpdateService service{*this, *this, *this};
};

// At most once a day and only when allowed; a check is stamped when it starts. The stamp a
// manual check leaves counts the same (see EachOutcomeShowsItsAlertOrNone).
TEST(UpdateServiceTest, StartUpChecksOnlyWhenAllowedAndADayHasPassed) {
    using Case = std::tuple<bool, std::optional<Instant>, Instant, bool>; // enabled, last, now, due
    for (const auto& [enabled, last, now, due] : std::initializer_list<Case>{
             {true, {}, kNow, true},                       // never checked
             {false, {}, kNow, false},                     // disabled
             {true, kNow - 23h - 59min, kNow, false},      // a minute short
             {true, kNow - 24h, kNow, true},               // exactly a day
             {true, kNow + 1h, kNow, false},               // in the future: the clock was set back
             {true, kNow + 1h, kNow + 24h + 59min, false}, // within a day after it
             {true, kNow + 1h, kNow + 25h, true},          // a day after it
             {true, Instant::min(), kNow, true},           // the clock's ends do not overflow
             {true, Instant::max(), kNow, false},
             {true, Instant::min(), Instant::max(), true}}) {
        Harness h;
        h.automatic = enabled;
        h.last = last;
        h.now = now;
        h.service.checkForUpdatesIfNeeded();
        EXPECT_EQ(h.pending.size(), due ? 1u : 0u) << (now - kNow).count() << " " << enabled;
        EXPECT_EQ(h.last, due ? now : last);
    }
}

const QString kUpdateAvailable = "A New Version is Available | lumetra 1.3 is available \u2014 "
                                 "you have 1.2.0. | Download, Later";
const QString kUpToDate = "You're Up to Date | lumetra 1.2.0 is the latest version. | OK";
const QString kDownloaded = kUpdateAvailable + "\nopen https://lumetra.app/download/lumetra.tar.gz";
const QString kCheckFailed = "! Couldn't Check for Updates | Make sure you're connected to the "
                             "internet and try again. | OK";

// A user-initiated check always ends in an alert, even with automatic checks off; an
// automatic one speaks only of a newer version. "Download" opens the download address. Every
// check is stamped before it fetches, and a failure is logged either way.
TEST(UpdateServiceTest, EachOutcomeShowsItsAlertOrNone) {
    using Case = std::tuple<bool, UpdateCheckResult, QString, int>; // manual, result, alert, button
    for (const auto& [manual, result, alert, button] :
         std::initializer_list<Case>{{false, manifest("1.3"), kUpdateAvailable, 1},
                                     {false, manifest("1.3"), kDownloaded, 0},
                                     {false, manifest("1.2"), "", 1},
                                     {false, kOffline, "", 1},
                                     {true, manifest("1.3"), kDownloaded, 0},
                                     {true, manifest("1.2"), kUpToDate, 1}, // 1.2 is 1.2.0
                                     {true, manifest("1.2.0-beta2"), kUpToDate, 1},
                                     {true, kOffline, kCheckFailed, 1}}) {
        SCOPED_TRACE(alert.toStdString() + (manual ? " (manual)" : " (automatic)"));
        lumetra::testing::LogCapture log(logSettings());
        Harness h;
        h.automatic = !manual;
        h.button = button;
        QSignalSpy finished(&h.service, &UpdateService::checkFinished);
        h.service.checkForUpdates(manual);
        EXPECT_TRUE(h.last == kNow && h.shown.isEmpty() && h.service.checksInProgress() == 1);
        h.now = kNow + 5min;
        h.pending.at(0)(result);
        EXPECT_EQ(h.shown.join('\n'), alert);
        EXPECT_TRUE(h.last == kNow && finished.count() == 1 && h.service.checksInProgress() == 0);
        EXPECT_EQ(log.lines().join(""),
                  result.index() ? "Update check failed: Host lumetra.app not found" : "");
    }
}

// A manual check pressed while the start-up one runs: each runs to its end and may speak.
TEST(UpdateServiceTest, OverlappingChecksEachRunToTheirEnd) {
    Harness h;
    h.service.checkForUpdatesIfNeeded();
    h.now = kNow + 2s;
    h.service.checkForUpdates(true);
    EXPECT_EQ(h.service.checksInProgress(), 2);
    h.pending.at(1)(manifest("1.2.0")); // the manual one ends first and speaks
    h.pending.at(0)(manifest("1.2.0"));
    EXPECT_EQ(h.shown, QStringList{kUpToDate});
    EXPECT_EQ(h.service.checksInProgress(), 0);

    // An answer after the service is gone is ignored.
    std::make_unique<UpdateService>(h, h, h)->checkForUpdates(true);
    h.pending.at(2)(manifest("9"));
    EXPECT_EQ(h.shown.size(), 1);
}

} // namespace
