#include "dashboard/TopApplicationsSection.h"

#include "appearance/AppearanceConfiguration.h"
#include "core/SystemMonitor.h"
#include "core/TopApplicationsMonitor.h"
#include "dashboard/DashboardIcons.h"
#include "dashboard/DashboardPicture.h"
#include "dashboard/DashboardView.h"
#include "samplers/process/ProcessTable.h"
#include "settings/SettingsTestSupport.h"
#include "support/FixtureTree.h"

#include <QAbstractButton>
#include <QSignalSpy>
#include <QTest>
#include <QThread>

#include <gtest/gtest.h>

#include <csignal>
#include <sys/wait.h>

using namespace lumetra;
using lumetra::testing::fixtureRoot;

namespace {

std::shared_ptr<ProcessTable> gnomeTable() {
    const std::string tree = fixtureRoot("processes/gnome");
    return std::make_shared<ProcessTable>(KernelRoots(tree), DesktopEntries({tree + "/usr/share"}));
}

struct SectionFixture {
    lumetra::testing::LoadedStore settings;
    SystemMonitor monitor{{}, 1, 1};
    QThread thread;
    std::shared_ptr<ProcessTable> table = gnomeTable();
    std::unique_ptr<TopApplicationsMonitor> top;
    std::unique_ptr<DashboardView> view;

    SectionFixture() {
        thread.start();
        top = std::make_unique<TopApplicationsMonitor>(table, &thread, 0.05);
        view = std::make_unique<DashboardView>(monitor, settings.store, nullptr, top.get());
        view->setFixedLook(QStringLiteral("DejaVu Sans"));
    }
    ~SectionFixture() {
        view.reset();
        top.reset();
        thread.quit();
        thread.wait();
    }
    TopApplicationsSection& section() const { return *view->topApplicationsSection(); }
};

TEST(TopApplicationsSectionTest, ReadsProcessesOnlyWhileTheDashboardIsShown) {
    SectionFixture fixture;
    QTest::qWait(200);
    EXPECT_FALSE(fixture.top->isWatching());
    EXPECT_EQ(fixture.table->filesOpened(), 0u) << "a dashboard never shown reads nothing";

    fixture.view->show();
    EXPECT_TRUE(fixture.top->isWatching());
    QTRY_COMPARE_WITH_TIMEOUT(fixture.section().rows().size(), qsizetype(5), 2000);
    EXPECT_EQ(fixture.section().rows()[0].name, "Firefox");
    EXPECT_GT(fixture.view->sizeHint().height(), 0);

    fixture.view->hide();
    EXPECT_FALSE(fixture.top->isWatching());
    EXPECT_TRUE(fixture.section().rows().isEmpty());
}

TEST(TopApplicationsSectionTest, TheOrderSwitchIsSavedAndReordersTheRows) {
    SectionFixture fixture;
    TopApplications top;
    top.cpuValid = true;
    top.groups = {TopApplication{"Busy", "", "", {{1, 1}}, 90, 10, true},
                  TopApplication{"Big", "", "app", {{2, 2}, {3, 3}}, 1, 5000, true}};
    fixture.section().setFixedTopApplications(top);
    EXPECT_EQ(fixture.section().rows()[0].name, "Busy") << "CPU is the default";
    auto* memory = fixture.section().findChild<QAbstractButton*>("TopByMemory");
    ASSERT_TRUE(memory);
    memory->click();
    EXPECT_EQ(fixture.settings.store.topApplicationsOrder(), TopApplicationOrder::memory);
    EXPECT_EQ(fixture.section().rows()[0].name, "Big");
    fixture.settings.store.setTopApplicationsOrder(TopApplicationOrder::cpu);
    EXPECT_FALSE(memory->isChecked()) << "follows the setting changed elsewhere";

    const double plain = fixture.section().heightForWidth(256);
    top.onlyOwnProcessesVisible = true;
    fixture.section().setFixedTopApplications(top);
    EXPECT_GT(fixture.section().heightForWidth(256), plain) << "says only own are visible";
}

TEST(TopApplicationsSectionTest, StopsAfterConfirmationAndSaysWhatDidNotWork) {
    SectionFixture fixture;
    const pid_t child = ::fork();
    if (child == 0) {
        for (;;)
            ::pause();
    }
    ProcessTable live{KernelRoots(), DesktopEntries({})};
    QTest::qWait(50);
    TopApplications top;
    for (const TopApplication& row : live.refresh(100000).groups)
        if (row.processes.size() == 1 && row.processes[0].pid == child)
            top.groups.append(row);
    ASSERT_EQ(top.groups.size(), 1);
    top.groups[0].residentBytes = 1ull << 40; // first by memory
    fixture.settings.store.setTopApplicationsOrder(TopApplicationOrder::memory);
    fixture.section().setFixedTopApplications(top);

    std::vector<bool> asked;
    bool answer = false;
    fixture.section().setConfirmation([&](const TopApplication&, bool force) {
        asked.push_back(force);
        return answer;
    });
    fixture.section().requestStop(0, true);
    EXPECT_EQ(::kill(child, 0), 0) << "declined: nothing is sent";
    answer = true;
    fixture.section().requestStop(0, false);
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM);
    EXPECT_EQ(fixture.section().statusText(), "");
    fixture.section().requestStop(0, true);
    EXPECT_EQ(asked, (std::vector<bool>{true, false, true}));
    EXPECT_EQ(fixture.section().statusText(),
              QString("%1 had already quit").arg(top.groups[0].name));
}

TEST(TopApplicationsSectionTest, OutcomesAreSaidInWords) {
    const TopApplication firefox{"Firefox", "", "firefox", {{1, 1}, {2, 2}, {3, 3}}, 0, 0, true};
    const std::pair<StopOutcome, QString> cases[] = {
        {{3, 0, 0, 0}, ""},
        {{2, 1, 0, 0}, ""}, // one had exited on its own: the rest were stopped
        {{0, 3, 0, 0}, "Firefox had already quit"},
        {{1, 0, 2, 0}, "Firefox: not permitted to stop 2 processes"},
        {{0, 0, 0, 3}, "Firefox: 3 processes could not be stopped"},
        {{0, 0, 0, 0}, ""}};
    for (const auto& [outcome, text] : cases)
        EXPECT_EQ(TopApplicationsSection::outcomeText(firefox, outcome, false), text)
            << text.toStdString();
}

// The section in every card style and both themes, from the GNOME fixture's groups, is laid
// out whole inside the picture.
TEST(TopApplicationsSectionTest, DrawsUnderEveryCardStyleInBothThemes) {
    DashboardIcons::setThemeIconsEnabled(false);
    SectionFixture fixture;
    TopApplications top = fixture.table->refresh(10);
    top.cpuValid = true;
    const double cpu[] = {38.4, 12.1, 6.0, 3.2, 1.4, 0.6, 0.2};
    for (qsizetype i = 0; i < top.groups.size(); ++i)
        top.groups[i].cpuPercent = cpu[std::min<qsizetype>(i, 6)];
    fixture.section().setFixedTopApplications(top);
    for (const MetricCardStyle style : allCases<MetricCardStyle>()) {
        for (const bool dark : {false, true}) {
            fixture.settings.store.setMetricCardStyle(style);
            fixture.view->setDark(dark);
            const QImage image =
                DashboardPicture::render(*fixture.view, AppearanceConfiguration(), 1.0);
            const QRect section = fixture.section().geometry();
            EXPECT_GT(section.height(), 5 * TopApplicationsSection::kRowHeight);
            EXPECT_LE(section.bottom(), image.height()) << rawValue(style) << dark;
        }
    }
    DashboardIcons::setThemeIconsEnabled(true);
}

} // namespace
