#include "samplers/cpu/CPUMonitor.h"
#include "samplers/cpu/CPUTicks.h"
#include "support/FixtureTree.h"

#include <gtest/gtest.h>

using namespace lumetra;
using lumetra::testing::ScratchTree;

namespace {

TEST(CPUTicksTest, ParsesTheAggregateLineOfEachKernelsProcStat) {
    constexpr std::uint64_t kHigh = 18446744073709551000u;
    // user, system (+ irq + softirq + steal), idle (+ iowait), nice
    const std::pair<const char*, std::optional<CPUTicks>> cases[] = {
        {"cpu  100 5 20 1000 7 3 2 1 50 4\ncpu0 1 2 3 4\n", CPUTicks{100, 26, 1007, 5}},
        {"cpu  100 5 20 1000 0 0 0 0 90 5\n", CPUTicks{100, 20, 1000, 5}}, // guest inside user
        {"cpu  10 1 2 30\n", CPUTicks{10, 2, 30, 1}},                      // Linux 2.4
        {"cpu  10 1 2 30 4 5 6\n", CPUTicks{10, 13, 34, 1}},
        {"cpu  10 1 2 30 4 5 6 7 8 9 10 11\n", CPUTicks{10, 20, 34, 1}}, // future columns
        {"cpu  18446744073709551000 0 18446744073709551000 18446744073709551000 1000\n",
         CPUTicks{kHigh, kHigh, UINT64_MAX, 0}}, // sums saturate
        {"cpu\t1\t2\t3\t4", CPUTicks{1, 3, 4, 2}},
        {"cpu0 1 2 3 4\ncpu  1 2 3 4\n", std::nullopt},
        {"cpu  1 2 3\n", std::nullopt},
        {"cpu  1 x 3 4\n", std::nullopt},
        {"cpu  1 -2 3 4\n", std::nullopt},
        {"cpu  99999999999999999999 1 1 1\n", std::nullopt},
        {"", std::nullopt},
        {"\x01\x02\xff", std::nullopt}};
    for (const auto& [text, ticks] : cases)
        EXPECT_EQ(parseProcStatCPULine(text), ticks) << text;
}

TEST(CPUTicksTest, UsageIsTheBusyShareAndIgnoresCountersThatWentBack) {
    const std::tuple<CPUTicks, CPUTicks, double> cases[] = {
        {{100, 100, 100, 100}, {110, 110, 130, 110}, 50},
        {{0, 0, 0, 0}, {0, 0, 75, 25}, 25}, // nice is busy
        {{5, 5, 5, 5}, {5, 5, 5, 5}, 0},
        {{10, 10, 1000, 10}, {20, 20, 5, 20}, 100}, // idle went backwards
        {{10, 10, 10, 10}, {1, 1, 1, 1}, 0},
        {{0, 0, 0, 0}, {0, 0, 400, 0}, 0}};
    for (const auto& [previous, current, percent] : cases)
        EXPECT_DOUBLE_EQ(usageBetween(previous, current), percent) << percent;
}

QByteArray statLine(std::uint64_t user, std::uint64_t system, std::uint64_t idle) {
    return QByteArray("cpu  ") + QByteArray::number(quint64(user)) + " 0 " +
           QByteArray::number(quint64(system)) + ' ' + QByteArray::number(quint64(idle)) +
           " 0 0 0 0 0 0\ncpu0 1 1 1 1\n";
}

TEST(CPUMonitorTest, FirstReadingPrimesAndFailuresKeepTheLastGoodBaseline) {
    ScratchTree tree;
    tree.write("proc/stat", statLine(100, 100, 100));
    CPUMonitor monitor{KernelRoots(tree.root())};
    EXPECT_EQ(monitor.currentUsage(), std::nullopt) << "the first reading is only a baseline";
    tree.write("proc/stat", statLine(150, 150, 200));
    EXPECT_EQ(monitor.currentUsage(), 50.0);
    // A huge file is read by its first line (here: no time passed, so 0 %, a real figure).
    tree.write("proc/stat", statLine(150, 150, 200) + QByteArray(8 << 20, 'x'));
    EXPECT_EQ(monitor.currentUsage(), 0.0);
    // Garbage, empty, missing, a directory: no figure, without crashing.
    for (const QByteArray& bad : {QByteArray("garbage\n"), QByteArray()}) {
        tree.write("proc/stat", bad);
        EXPECT_EQ(monitor.currentUsage(), std::nullopt);
    }
    tree.remove("proc/stat");
    EXPECT_EQ(monitor.currentUsage(), std::nullopt);
    tree.makeDirectory("proc/stat");
    EXPECT_EQ(monitor.currentUsage(), std::nullopt);
    QDir(QString::fromStdString(tree.path("proc/stat"))).removeRecursively();
    tree.write("proc/stat", statLine(180, 160, 260));
    EXPECT_EQ(monitor.currentUsage(), 40.0) << "spans the time since the last success";

    CPUMonitor live;
    EXPECT_EQ(live.currentUsage(), std::nullopt);
    const std::optional<double> usage = live.currentUsage();
    ASSERT_TRUE(usage);
    EXPECT_TRUE(*usage >= 0 && *usage <= 100) << *usage;
}

} // namespace
