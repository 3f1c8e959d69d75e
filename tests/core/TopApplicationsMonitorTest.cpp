#include "core/TopApplicationsMonitor.h"

#include "samplers/process/ProcessTable.h"
#include "support/FixtureTree.h"

#include <QSignalSpy>
#include <QTest>
#include <QThread>

#include <gtest/gtest.h>

#include <atomic>

using namespace lumetra;
using lumetra::testing::fixtureRoot;

namespace {

struct MonitorHarness {
    MonitorHarness() {
        const std::string tree = fixtureRoot("processes/gnome");
        table = std::make_shared<ProcessTable>(KernelRoots(tree),
                                               DesktopEntries({tree + "/usr/share"}));
        // The clock is read once a refresh: where it is read is where the refresh runs.
        table->setClock([this] {
            readOn = QThread::currentThread();
            return double(++refreshes);
        });
        thread.start();
        monitor = std::make_unique<TopApplicationsMonitor>(table, &thread, 0.05);
    }
    ~MonitorHarness() {
        monitor.reset();
        thread.quit();
        thread.wait();
    }

    std::shared_ptr<ProcessTable> table;
    QThread thread;
    std::unique_ptr<TopApplicationsMonitor> monitor;
    std::atomic<QThread*> readOn{nullptr};
    std::atomic<int> refreshes{0};
};

TEST(TopApplicationsMonitorTest, OpensNoProcessFileWhileNobodyWatches) {
    MonitorHarness harness;
    QTest::qWait(300);
    EXPECT_EQ(harness.table->filesOpened(), 0u);
    EXPECT_EQ(harness.refreshes, 0);
    EXPECT_TRUE(harness.monitor->topApplications().groups.isEmpty());

    QSignalSpy changed(harness.monitor.get(), &TopApplicationsMonitor::topApplicationsChanged);
    harness.monitor->beginWatching();
    harness.monitor->beginWatching(); // a second watcher (the terminal and the dashboard)
    ASSERT_TRUE(changed.wait(2000));
    EXPECT_GT(harness.table->filesOpened(), 0u);
    EXPECT_EQ(harness.readOn, &harness.thread) << "read on the monitoring thread";
    EXPECT_EQ(harness.monitor->topApplications().top(TopApplicationOrder::memory, 1)[0].name,
              "Firefox");
    QTRY_VERIFY_WITH_TIMEOUT(harness.monitor->topApplications().cpuValid, 2000);

    harness.monitor->endWatching();
    EXPECT_TRUE(harness.monitor->isWatching()) << "one watcher is left";
    harness.monitor->endWatching();
    EXPECT_FALSE(harness.monitor->isWatching());
    EXPECT_TRUE(harness.monitor->topApplications().groups.isEmpty()) << "nothing stale is kept";
    QTest::qWait(100); // a refresh in flight may finish
    const std::uint64_t opened = harness.table->filesOpened();
    QTest::qWait(300);
    EXPECT_EQ(harness.table->filesOpened(), opened) << "closed: reading stopped";
    EXPECT_TRUE(harness.monitor->topApplications().groups.isEmpty())
        << "a late reading of the closed list is dropped";
}

} // namespace
