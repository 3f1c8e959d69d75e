#include "windows/WelcomeView.h"
#include "windows/WindowsTestSupport.h"

#include <QCheckBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

using namespace lumetra;
using namespace lumetra::testing;
using M = MenuBarMetric;

namespace {

// Ticks the boxes as each case says, presses Done, and checks the settings and the file: the
// metrics written once at most, and finishing again with the same choices notifies nobody.
TEST(WelcomeViewTest, DoneStoresTheChosenMetricsLoginItemAndOnboarding) {
    struct Case {
        bool cpu, memory, temperature, network, login;
        const char* stored; // the metrics enabled afterwards, sorted
    };
    for (const Case& c :
         {Case{false, false, false, false, false, ""},
          Case{false, false, false, true, false, "download upload"},
          Case{true, true, true, true, true, "cpu download memory temperature upload"},
          Case{true, false, true, false, false, "cpu temperature"}}) {
        SCOPED_TRACE(c.stored);
        WindowsHarness h;
        int finished = 0;
        WelcomeView view(h.state(), [&] { ++finished; });
        QTest::mouseClick(&view.getStartedButton(), Qt::LeftButton);
        ASSERT_EQ(view.step(), WelcomeView::Step::configure);
        view.showCPU().setChecked(c.cpu);
        view.showMemory().setChecked(c.memory);
        view.showTemperature().setChecked(c.temperature);
        view.showNetwork().setChecked(c.network);
        view.launchAtLogin().setChecked(c.login);
        QSignalSpy changed(h.settings.get(), &SettingsStore::enabledMetricsChanged);
        QTest::mouseClick(&view.doneButton(), Qt::LeftButton);
        EXPECT_EQ(finished, 1);
        EXPECT_LE(changed.count(), 1);
        const qsizetype notified = changed.count();
        view.finish();
        EXPECT_EQ(changed.count(), notified);
        const QStringList raw = QString::fromLatin1(c.stored).split(u' ', Qt::SkipEmptyParts);
        MenuBarMetricSet expected;
        for (const QString& metric : raw)
            expected.insert(*fromRaw<M>(QStringView(metric)));
        EXPECT_EQ(h.settings->enabledMetrics(), expected);
        QStringList stored = h.stored("enabledMetrics").toStringList();
        stored.sort();
        EXPECT_EQ(stored, raw);
        EXPECT_EQ(h.settings->launchAtLogin(), c.login);
        EXPECT_EQ(h.stored("launchAtLogin").toBool(), c.login);
        EXPECT_EQ(h.loginItem.enabled, c.login);
        EXPECT_TRUE(h.settings->hasCompletedOnboarding());
        EXPECT_EQ(h.stored("hasCompletedOnboarding"), true);
    }
}

TEST(WelcomeViewTest, BoxesStartFromTheCurrentSettings) {
    WindowsHarness h(R"({"enabledMetrics": ["memory", "upload"], "launchAtLogin": true})");
    WelcomeView view(h.state(), [] {});
    EXPECT_EQ(view.step(), WelcomeView::Step::welcome);
    EXPECT_FALSE(view.showCPU().isChecked());
    EXPECT_TRUE(view.showMemory().isChecked());
    EXPECT_FALSE(view.showTemperature().isChecked());
    EXPECT_TRUE(view.showNetwork().isChecked());
    EXPECT_TRUE(view.launchAtLogin().isChecked());
}

TEST(WelcomeViewTest, EnterPressesThePagesButton) {
    WindowsHarness h;
    int finished = 0;
    WelcomeView view(h.state(), [&] { ++finished; });
    view.show();
    QTest::keyClick(&view, Qt::Key_Return);
    QTest::qWait(250); // the button's animated click
    EXPECT_EQ(view.step(), WelcomeView::Step::configure);
    QTest::keyClick(&view.showCPU(), Qt::Key_Space);
    EXPECT_FALSE(view.showCPU().isChecked());
    QTest::keyClick(&view.showCPU(), Qt::Key_Enter);
    QTest::qWait(250);
    EXPECT_EQ(finished, 1);
    EXPECT_FALSE(h.settings->enabledMetrics().contains(M::cpu));
}

} // namespace
