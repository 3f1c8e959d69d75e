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

TEST(CPUTicksTest, ReadsEachOnlineCoreFromTheSameText) {
    struct Case {
        const char* text;
        std::vector<unsigned> cores;
        bool complete;
    };
    const Case cases[] = {
        {"cpu  4 0 4 8\ncpu0 1 0 1 2\ncpu1 3 0 3 6\nintr 1 2 3\n", {0, 1}, true},
        // cpu1 offline: the kernel leaves its line out
        {"cpu  4 0 4 8\ncpu0 1 0 1 2\ncpu2 3 0 3 6\nintr 1\n", {0, 2}, true},
        // a line that does not parse is left out, the others stay
        {"cpu  4 0 4 8\ncpu0 1 x 1 2\ncpu1 3 0 3 6\nctxt 5\n", {1}, true},
        {"cpu  4 0 4 8\ncpux 1 0 1 2\ncpu1 3 0 3 6\nctxt 5\n", {1}, true},
        // only cpu lines: the reader decides from the read's size whether more follow
        {"cpu  4 0 4 8\ncpu0 1 0 1 2\ncpu1 3 0 3 6\n", {0, 1}, false},
        {"cpu  4 0 4 8\ncpu0 1 0 1 2\ncpu1 3 0", {0}, false},
        {"cpu  4 0 4 8\ncpu0 1 0 1 2\ncp", {0}, false},
        {"cpu  4 0 4 8\n", {}, false},
    };
    ProcStatCPULines lines;
    for (const Case& c : cases) {
        parseProcStatCPULines(c.text, lines);
        ASSERT_TRUE(lines.total) << c.text;
        std::vector<unsigned> indices;
        for (const CoreTicks& core : lines.cores)
            indices.push_back(core.index);
        EXPECT_EQ(indices, c.cores) << c.text;
        EXPECT_EQ(lines.complete, c.complete) << c.text;
    }
    parseProcStatCPULines("cpu0 1 2 3 4\n", lines);
    EXPECT_FALSE(lines.total);
    EXPECT_TRUE(lines.cores.empty()) << "no aggregate line, no cores";
}

TEST(CPUTicksTest, CoreUsagesPairCoresByNumberAcrossHotplug) {
    const auto core = [](unsigned index, std::uint64_t busy, std::uint64_t idle) {
        return CoreTicks{index, CPUTicks{busy, 0, idle, 0}};
    };
    const std::tuple<std::vector<CoreTicks>, std::vector<CoreTicks>, std::vector<double>> cases[] =
        {{{core(0, 0, 0), core(1, 0, 0)}, {core(0, 50, 50), core(1, 100, 0)}, {50, 100}},
         // core 1 went offline, core 2 came online without a baseline
         {{core(0, 0, 0), core(1, 0, 0)}, {core(0, 25, 75), core(2, 10, 10)}, {25}},
         {{}, {core(0, 1, 1)}, {}},
         {{core(3, 10, 10)}, {core(3, 5, 5)}, {0}}}; // counters that went back
    for (const auto& [previous, current, usages] : cases)
        EXPECT_EQ(coreUsagesBetween(previous, current), usages);
}

std::optional<double> totalOf(const std::optional<CPUUsage>& usage) {
    return usage ? std::optional(usage->total) : std::nullopt;
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
    const auto currentTotal = [&monitor] { return totalOf(monitor.currentUsage()); };
    EXPECT_EQ(monitor.currentUsage(), std::nullopt) << "the first reading is only a baseline";
    tree.write("proc/stat", statLine(150, 150, 200));
    EXPECT_EQ(currentTotal(), 50.0);
    // A huge file is read by its first line (here: no time passed, so 0 %, a real figure).
    tree.write("proc/stat", statLine(150, 150, 200) + QByteArray(8 << 20, 'x'));
    EXPECT_EQ(currentTotal(), 0.0);
    // Garbage, empty, missing: no figure, without crashing.
    for (const QByteArray& bad : {QByteArray("garbage\n"), QByteArray()}) {
        tree.write("proc/stat", bad);
        EXPECT_EQ(currentTotal(), std::nullopt);
    }
    tree.remove("proc/stat");
    EXPECT_EQ(currentTotal(), std::nullopt);
    tree.write("proc/stat", statLine(180, 160, 260));
    EXPECT_EQ(currentTotal(), 40.0) << "spans the time since the last success";
}

// A machine with more cores than the first read holds: every core is still read, from the
// same read as the total.
TEST(CPUMonitorTest, ReadsEveryCoreOfALargeMachine) {
    constexpr unsigned kCores = 512;
    const auto stat = [](std::uint64_t busy) {
        QByteArray text = "cpu  " + QByteArray::number(quint64(busy * kCores)) + " 0 0 " +
                          QByteArray::number(quint64(busy * kCores)) + " 0 0 0 0 0 0\n";
        for (unsigned core = 0; core < kCores; ++core)
            text += "cpu" + QByteArray::number(core) + ' ' +
                    QByteArray::number(quint64(busy + core % 2 * busy)) + " 0 0 " +
                    QByteArray::number(quint64(busy - core % 2 * busy)) + " 0 0 0 0 0 0\n";
        return text + "intr 1 2 3\nctxt 4\n";
    };
    ScratchTree tree;
    tree.write("proc/stat", stat(1000));
    CPUMonitor monitor{KernelRoots(tree.root())};
    ASSERT_EQ(monitor.currentUsage(), std::nullopt);
    tree.write("proc/stat", stat(3000));
    const std::optional<CPUUsage> usage = monitor.currentUsage();
    ASSERT_TRUE(usage);
    EXPECT_DOUBLE_EQ(usage->total, 50);
    ASSERT_EQ(usage->cores.size(), kCores);
    EXPECT_EQ(usage->cores.front(), 50);
    EXPECT_EQ(usage->cores[1], 100) << "odd cores are busy all the time";
}

// With the cores switched off only the first line is read; switched on again, the cores
// start from a new baseline.
TEST(CPUMonitorTest, CoresCanBeLeftOut) {
    const auto stat = [](std::uint64_t busy, std::uint64_t idle) {
        return "cpu  " + QByteArray::number(quint64(busy)) + " 0 0 " +
               QByteArray::number(quint64(idle)) + "\ncpu0 " + QByteArray::number(quint64(busy)) +
               " 0 0 " + QByteArray::number(quint64(idle)) + "\nintr 0\n";
    };
    ScratchTree tree;
    CPUMonitor monitor{KernelRoots(tree.root())};
    const std::pair<int, std::optional<CPUUsage>> steps[] = {
        {0, std::nullopt},       // baseline
        {1, CPUUsage{50, {50}}}, // cores on
        {2, CPUUsage{50, {}}},   // switched off
        {3, CPUUsage{50, {}}},   // switched on: the cores' baseline
        {4, CPUUsage{50, {50}}}};
    for (const auto& [step, usage] : steps) {
        if (step == 2)
            monitor.setCoresWanted(false);
        if (step == 3)
            monitor.setCoresWanted(true);
        tree.write("proc/stat", stat(100u * step, 100u * step));
        EXPECT_EQ(monitor.currentUsage(), usage) << step;
    }
}

} // namespace
