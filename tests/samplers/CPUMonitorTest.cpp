#include "samplers/CPUMonitor.h"
#include "samplers/CPUTicks.h"
#include "support/FixtureTree.h"

#include <gtest/gtest.h>

using namespace lumetra;
using lumetra::testing::fixtureRoot;
using lumetra::testing::ScratchTree;

namespace {

struct ParseCase {
    const char* name;
    const char* text;
    std::optional<CPUTicks> expected;
};

class ProcStatParseTest : public ::testing::TestWithParam<ParseCase> {};

TEST_P(ProcStatParseTest, MapsColumnsOntoTheFourCounters) {
    EXPECT_EQ(parseProcStatCPULine(GetParam().text), GetParam().expected);
}

// user, system (= system + irq + softirq + steal), idle (= idle + iowait), nice
INSTANTIATE_TEST_SUITE_P(
    Variants, ProcStatParseTest,
    ::testing::Values(
        ParseCase{"ModernTenColumns", "cpu  100 5 20 1000 7 3 2 1 50 4\ncpu0 1 2 3 4\n",
                  CPUTicks{100, 26, 1007, 5}},
        ParseCase{"GuestNotCountedTwice", "cpu  100 5 20 1000 0 0 0 0 90 5\n",
                  CPUTicks{100, 20, 1000, 5}},
        ParseCase{"LinuxTwoSixFourColumns", "cpu  10 1 2 30\n", CPUTicks{10, 2, 30, 1}},
        ParseCase{"SevenColumns", "cpu  10 1 2 30 4 5 6\n", CPUTicks{10, 13, 34, 1}},
        ParseCase{"FutureExtraColumns", "cpu  10 1 2 30 4 5 6 7 8 9 10 11\n",
                  CPUTicks{10, 20, 34, 1}},
        ParseCase{"CountersNearTheTopOf64Bits",
                  "cpu  18446744073709551000 0 18446744073709551000 18446744073709551000 1000 "
                  "0 0 0 0 0\n",
                  CPUTicks{18446744073709551000u, 18446744073709551000u, UINT64_MAX, 0}},
        ParseCase{"TabsAndNoTrailingNewline", "cpu\t1\t2\t3\t4", CPUTicks{1, 3, 4, 2}},
        ParseCase{"PerCPULineFirst", "cpu0 1 2 3 4\ncpu  1 2 3 4\n", std::nullopt},
        ParseCase{"TooFewColumns", "cpu  1 2 3\n", std::nullopt},
        ParseCase{"Garbage", "cpu  1 x 3 4\n", std::nullopt},
        ParseCase{"NegativeNumber", "cpu  1 -2 3 4\n", std::nullopt},
        ParseCase{"Overflow", "cpu  99999999999999999999 1 1 1\n", std::nullopt},
        ParseCase{"Empty", "", std::nullopt},
        ParseCase{"Binary", "\x01\x02\xff", std::nullopt}),
    [](const auto& info) { return std::string(info.param.name); });

struct UsageCase {
    const char* name;
    CPUTicks previous;
    CPUTicks current;
    double expected;
};

class UsageBetweenTest : public ::testing::TestWithParam<UsageCase> {};

TEST_P(UsageBetweenTest, ComputesBusyShare) {
    EXPECT_DOUBLE_EQ(usageBetween(GetParam().previous, GetParam().current), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Examples, UsageBetweenTest,
    ::testing::Values(UsageCase{"QuarterBusy", {100, 100, 100, 100}, {110, 110, 130, 110}, 50},
                      UsageCase{"NiceCountsAsBusy", {0, 0, 0, 0}, {0, 0, 75, 25}, 25},
                      UsageCase{"IdenticalCounters", {5, 5, 5, 5}, {5, 5, 5, 5}, 0},
                      UsageCase{"IdleWentBackwards", {10, 10, 1000, 10}, {20, 20, 5, 20}, 100},
                      UsageCase{"EverythingWentBackwards", {10, 10, 10, 10}, {1, 1, 1, 1}, 0},
                      UsageCase{"AllIdle", {0, 0, 0, 0}, {0, 0, 400, 0}, 0}),
    [](const auto& info) { return std::string(info.param.name); });

QByteArray statLine(std::uint64_t user, std::uint64_t system, std::uint64_t idle) {
    return QByteArray("cpu  ") + QByteArray::number(quint64(user)) + " 0 " +
           QByteArray::number(quint64(system)) + ' ' + QByteArray::number(quint64(idle)) +
           " 0 0 0 0 0 0\ncpu0 1 1 1 1\n";
}

TEST(CPUMonitorTest, FirstReadingPrimesAndReportsZero) {
    ScratchTree tree;
    tree.write("proc/stat", statLine(100, 100, 100));
    CPUMonitor monitor{KernelRoots(tree.root())};
    EXPECT_EQ(monitor.currentUsage(), 0);
    tree.write("proc/stat", statLine(150, 150, 200));
    EXPECT_DOUBLE_EQ(monitor.currentUsage(), 50);
    tree.write("proc/stat", statLine(150, 150, 300));
    EXPECT_DOUBLE_EQ(monitor.currentUsage(), 0);
}

TEST(CPUMonitorTest, FailedReadingKeepsTheBaselineFromBeforeIt) {
    ScratchTree tree;
    tree.write("proc/stat", statLine(0, 0, 0));
    CPUMonitor monitor{KernelRoots(tree.root())};
    monitor.currentUsage();
    tree.write("proc/stat", "garbage\n");
    EXPECT_EQ(monitor.currentUsage(), 0);
    tree.remove("proc/stat");
    EXPECT_EQ(monitor.currentUsage(), 0);
    tree.write("proc/stat", statLine(30, 10, 60));
    EXPECT_DOUBLE_EQ(monitor.currentUsage(), 40) << "spans the whole time since the last success";
}

TEST(CPUMonitorTest, OddFilesGiveZeroWithoutCrashing) {
    ScratchTree tree;
    tree.makeDirectory("proc/stat");
    CPUMonitor directory{KernelRoots(tree.root())};
    EXPECT_EQ(directory.currentUsage(), 0);
    EXPECT_EQ(directory.currentUsage(), 0);

    ScratchTree empty;
    empty.write("proc/stat", "");
    CPUMonitor emptyMonitor{KernelRoots(empty.root())};
    EXPECT_EQ(emptyMonitor.currentUsage(), 0);

    ScratchTree huge;
    huge.write("proc/stat", statLine(1, 1, 1) + QByteArray(8 << 20, 'x'));
    CPUMonitor hugeMonitor{KernelRoots(huge.root())};
    EXPECT_EQ(hugeMonitor.currentUsage(), 0);
}

TEST(CPUMonitorTest, ReadsEachFixtureMachine) {
    for (const char* machine : {"desktop-intel", "old-kernel", "container-lxcfs", "raspberry-pi"}) {
        CPUMonitor monitor{KernelRoots(fixtureRoot(machine))};
        EXPECT_EQ(monitor.currentUsage(), 0) << machine;
        EXPECT_EQ(monitor.currentUsage(), 0) << machine << ": unchanged counters";
    }
}

TEST(CPUMonitorTest, LiveMachineStaysInRange) {
    CPUMonitor monitor;
    EXPECT_EQ(monitor.currentUsage(), 0);
    volatile double sink = 0;
    for (int i = 0; i < 5'000'000; ++i)
        sink = sink + i;
    const double usage = monitor.currentUsage();
    EXPECT_GE(usage, 0);
    EXPECT_LE(usage, 100);
}

} // namespace
