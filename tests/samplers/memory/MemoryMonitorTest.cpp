#include "samplers/memory/MemoryMonitor.h"
#include "support/FixtureTree.h"

#include <gtest/gtest.h>

#include <atomic>
#include <fcntl.h>
#include <poll.h>
#include <thread>
#include <unistd.h>

using namespace lumetra;
using lumetra::testing::fixtureRoot;
using lumetra::testing::ScratchTree;

namespace {

constexpr std::uint64_t kKiB = 1024;

TEST(MemoryMonitorTest, FixtureMachinesUseTotalMinusAvailable) {
    struct Case {
        const char* machine;
        std::uint64_t totalKiB, usedKiB, wiredKiB, compressedKiB;
    };
    for (const Case& c : std::initializer_list<Case>{
             // wired = Unevictable + SUnreclaim + KernelStack + PageTables
             {"desktop-intel", 32617284, 32617284 - 26021232, 80684 + 331436 + 24112 + 59708, 1024},
             // No MemAvailable (before 3.14): MemFree + Buffers + Cached + SReclaimable − Shmem
             {"old-kernel", 2060148, 2060148 - (277180 + 150296 + 1012956 + 160804 - 5136),
              20132 + 11224, 0},
             // MemAvailable above MemTotal: MemFree stands in
             {"container-lxcfs", 4194304, 4194304 - 3145728, 0, 0}}) {
        const auto snapshot = MemoryMonitor(KernelRoots(fixtureRoot(c.machine))).currentSnapshot();
        ASSERT_TRUE(snapshot) << c.machine;
        EXPECT_EQ(
            std::tuple(snapshot->total, snapshot->used, snapshot->wired, snapshot->compressed),
            std::tuple(c.totalKiB * kKiB, c.usedKiB * kKiB, c.wiredKiB * kKiB,
                       c.compressedKiB * kKiB))
            << c.machine;
    }
}

TEST(MemoryMonitorTest, SwapIsTotalMinusFree) {
    const std::tuple<const char*, std::optional<std::uint64_t>, std::optional<std::uint64_t>>
        cases[] = {// text, total, used (KiB)
                   {"SwapTotal: 2097148 kB\nSwapFree: 2097148 kB\n", 2097148, 0},
                   // all of it in use (a Raspberry Pi's small swap file)
                   {"SwapTotal: 102396 kB\nSwapFree: 0 kB\n", 102396, 102396},
                   // no swap configured: "No swap" in the views
                   {"SwapTotal: 0 kB\nSwapFree: 0 kB\n", 0, 0},
                   // more free than total would be nonsense: clamped
                   {"SwapTotal: 100 kB\nSwapFree: 300 kB\n", 100, 0},
                   // a kernel built without swap, or a line missing: no figure
                   {"SwapFree: 10 kB\n", std::nullopt, std::nullopt},
                   {"SwapTotal: 10 kB\n", std::nullopt, std::nullopt},
                   {"SwapTotal: ten kB\nSwapFree: 1 kB\n", std::nullopt, std::nullopt}};
    const auto inKiB = [](std::optional<std::uint64_t> bytes) {
        return bytes ? std::optional(*bytes / kKiB) : std::nullopt;
    };
    for (const auto& [swap, total, used] : cases) {
        const std::string text = std::string("MemTotal: 100 kB\nMemAvailable: 50 kB\n") + swap;
        const MeminfoParse parsed = parseMeminfo(text);
        ASSERT_TRUE(parsed.snapshot) << text;
        EXPECT_EQ(inKiB(parsed.snapshot->swapTotal), total) << text;
        EXPECT_EQ(inKiB(parsed.snapshot->swapUsed), used) << text;
    }
}

TEST(MemoryMonitorTest, ParsesMeminfoVariants) {
    const std::tuple<const char*, std::optional<std::uint64_t>, MeminfoError> cases[] = {
        {"MemAvailable: 30 kB\nFoo: 1 kB\nMemTotal: 100 kB\n", 70 * kKiB, MeminfoError::none},
        {"MemFree: 10 kB\nMemAvailable: 30 kB\n", std::nullopt, MeminfoError::noTotal},
        {"MemTotal: 100 kB\nCached: 30 kB\n", std::nullopt, MeminfoError::noAvailableOrFree},
        // The estimate without MemAvailable is clamped to 0..total.
        {"MemTotal: 100 kB\nMemFree: 1 kB\nShmem: 50 kB\n", 100 * kKiB, MeminfoError::none},
        {"MemTotal: 100 kB\nMemFree: 90 kB\nCached: 90 kB\n", 0, MeminfoError::none},
        {"MemTotal: 68719476736 kB\nMemAvailable: 34359738368 kB\n", 34359738368ull * kKiB,
         MeminfoError::none},
        {"MemTotal: 18446744073709551615 kB\nMemAvailable: 0 kB\n", UINT64_MAX,
         MeminfoError::none}, // bytes saturate
        {"MemTotal: lots kB\nMemAvailable: 1 kB\n", std::nullopt, MeminfoError::noTotal},
        {"", std::nullopt, MeminfoError::noTotal},
        {"MemTotal 100 kB\nMemAvailable 1 kB\n", std::nullopt, MeminfoError::noTotal},
        // Only a whole number counts; without "kB" it is bytes; no newline at the end is fine.
        {"MemTotal: 12ab kB\nMemAvailable: 1 kB\n", std::nullopt, MeminfoError::noTotal},
        {"MemTotal: 18446744073709551616 kB\nMemAvailable: 1 kB\n", std::nullopt,
         MeminfoError::noTotal},
        {"MemTotal: -5 kB\nMemAvailable: 1 kB\n", std::nullopt, MeminfoError::noTotal},
        {"MemTotal:\nMemAvailable: 1 kB\n", std::nullopt, MeminfoError::noTotal},
        {"MemTotal:\t100\nMemAvailable: 40 kBytes\n", 60, MeminfoError::none},
        {"MemTotal: 100 kB\nMemAvailable: 40 kB", 60 * kKiB, MeminfoError::none}};
    for (const auto& [text, usedBytes, error] : cases) {
        const MeminfoParse parsed = parseMeminfo(text);
        EXPECT_EQ(parsed.error, error) << text;
        EXPECT_EQ(parsed.snapshot ? std::optional(parsed.snapshot->used) : std::nullopt, usedBytes)
            << text;
    }
}

TEST(MemoryMonitorTest, FailedReadingsGiveNoSnapshotAndRecover) {
    ScratchTree tree;
    MemoryMonitor monitor(KernelRoots(tree.root()));
    EXPECT_FALSE(monitor.currentSnapshot()) << "missing file";
    tree.write("proc/meminfo", "MemTotal: 100 kB\nMemAvailable: 25 kB\n");
    const auto snapshot = monitor.currentSnapshot();
    ASSERT_TRUE(snapshot);
    EXPECT_EQ(snapshot->used, 75 * kKiB);

    const auto live = MemoryMonitor().currentSnapshot();
    ASSERT_TRUE(live);
    EXPECT_TRUE(live->total > 0 && live->used <= live->total);
}

// --- pressure -------------------------------------------------------------------------------

using Clock = PressureLevelRule::Clock;
using Level = MemoryPressureLevel;

QByteArray pressureFile(const char* some, const char* full) {
    return QByteArray("some avg10=") + some + " avg60=0 avg300=0 total=0\nfull avg10=" + full +
           " avg60=0 avg300=0 total=0\n";
}

TEST(PressureLevelRuleTest, AveragesParseAndMapAtTenPercent) {
    const auto averages = parsePressureAverages(pressureFile("12.50", "3.25").toStdString());
    ASSERT_TRUE(averages);
    EXPECT_DOUBLE_EQ(averages->someAvg10, 12.5);
    EXPECT_DOUBLE_EQ(averages->fullAvg10, 3.25);
    EXPECT_EQ(parsePressureAverages("some avg10=1.00 avg60=0 avg300=0 total=1")->fullAvg10, 0);
    for (const char* bad : {"full avg10=1.00 avg60=0 avg300=0 total=1\n", "some avg=1\n", ""})
        EXPECT_FALSE(parsePressureAverages(bad)) << bad;

    const std::tuple<double, double, Level> levels[] = {{0, 0, Level::normal},
                                                        {9.99, 9.99, Level::normal},
                                                        {10, 0, Level::elevated},
                                                        {50, 10, Level::critical},
                                                        {0, 10, Level::critical}};
    for (const auto& [some, full, level] : levels)
        EXPECT_EQ(PressureLevelRule::levelFromAverages({some, full}), level) << some << full;
}

// Waits (bounded) for the watcher thread to deliver what the test sent.
bool eventually(const std::function<bool()>& predicate) {
    for (int i = 0; i < 500 && !predicate(); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    return predicate();
}

// Pipes stand in for the kernel's PSI triggers, with a clock the test moves. An event raises
// the level; ten quiet seconds with calm averages lower it.
TEST(MemoryMonitorPressureTest, TriggersRaiseTheLevelAndLostTriggersFallBackToTheAverages) {
    ScratchTree tree;
    const auto averages = [&](const char* some, const char* full) {
        tree.write("proc/pressure/memory", pressureFile(some, full));
    };
    averages("12.00", "1.00");
    int warning[2], critical[2];
    ASSERT_EQ(::pipe2(warning, O_NONBLOCK | O_CLOEXEC), 0);
    ASSERT_EQ(::pipe2(critical, O_NONBLOCK | O_CLOEXEC), 0);
    std::atomic<Clock::time_point> now{};
    MemoryMonitor::Options options;
    options.armTriggers = [&](const std::string&, std::string&) {
        return std::vector<PressureTrigger>{{warning[0], PressureEvent::warning, POLLIN},
                                            {critical[0], PressureEvent::critical, POLLIN}};
    };
    options.now = [&] { return now.load(); };
    const auto later = [&](std::chrono::milliseconds step) { now = now.load() + step; };
    MemoryMonitor monitor(KernelRoots(tree.root()), options);
    ASSERT_TRUE(monitor.triggersArmed());
    EXPECT_EQ(monitor.pressure(), Level::normal) << "armed: normal never needs the file";
    EXPECT_EQ(::write(warning[1], "x", 1), 1);
    EXPECT_TRUE(eventually([&] { return monitor.pressure() == Level::elevated; }));
    later(std::chrono::seconds(60));
    EXPECT_EQ(monitor.pressure(), Level::elevated) << "high averages keep the level";
    EXPECT_EQ(::write(critical[1], "x", 1), 1);
    EXPECT_TRUE(eventually([&] { return monitor.pressure() == Level::critical; }));
    averages("0.00", "0.00");
    later(std::chrono::milliseconds(9999));
    EXPECT_EQ(monitor.pressure(), Level::critical) << "a trigger fired less than 10 s ago";
    averages("10.00", "9.99");
    later(std::chrono::milliseconds(1));
    EXPECT_EQ(monitor.pressure(), Level::elevated) << "full calm, some still high";
    averages("9.99", "0.00");
    later(std::chrono::seconds(1));
    EXPECT_EQ(monitor.pressure(), Level::normal);

    averages("12.00", "1.00");
    ::close(warning[1]);
    ::close(critical[1]);
    EXPECT_TRUE(eventually([&] { return !monitor.triggersArmed(); }));
    EXPECT_EQ(monitor.pressure(), Level::elevated);
}

// Out of descriptors for the wake-up: the triggers are given back and the file is read, and
// the monitor goes away without waiting on a thread it could not stop.
TEST(MemoryMonitorPressureTest, NoWakeUpDescriptorFallsBackToTheFile) {
    ScratchTree tree;
    tree.write("proc/pressure/memory", pressureFile("30.00", "11.00"));
    int warning[2];
    ASSERT_EQ(::pipe2(warning, O_NONBLOCK | O_CLOEXEC), 0);
    MemoryMonitor::Options options;
    options.armTriggers = [&](const std::string&, std::string&) {
        return std::vector<PressureTrigger>{{warning[0], PressureEvent::warning, POLLIN}};
    };
    options.makeWakeFd = [] {
        errno = EMFILE;
        return -1;
    };
    {
        MemoryMonitor monitor(KernelRoots(tree.root()), options);
        EXPECT_FALSE(monitor.triggersArmed());
        EXPECT_EQ(monitor.pressure(), Level::critical) << "from the file's averages";
    }
    EXPECT_EQ(::fcntl(warning[0], F_GETFD), -1) << "the trigger was closed";
    ::close(warning[1]);
}

TEST(MemoryMonitorPressureTest, UnarmedLevelFollowsTheFileOnEachRead) {
    ScratchTree tree;
    MemoryMonitor::Options options;
    options.armTriggers = armPressureTriggers; // a scratch tree is not procfs: never armed
    MemoryMonitor monitor(KernelRoots(tree.root()), options);
    EXPECT_FALSE(monitor.triggersArmed());
    for (const auto& [content, level] : {std::pair{pressureFile("30.00", "11.00"), Level::critical},
                                         {"garbage", Level::normal}, // unreadable averages
                                         {pressureFile("0.00", "0.00"), Level::normal}}) {
        tree.write("proc/pressure/memory", content);
        EXPECT_EQ(monitor.pressure(), level) << content.toStdString();
    }
    // Saved trees are read, never armed; kernels before 4.20 have no PSI file at all.
    for (const auto& [machine, level] :
         {std::pair{"raspberry-pi", Level::critical}, {"old-kernel", Level::normal}}) {
        MemoryMonitor saved(KernelRoots(fixtureRoot(machine)));
        EXPECT_FALSE(saved.triggersArmed()) << machine;
        EXPECT_EQ(saved.pressure(), level) << machine;
    }
}

TEST(MemoryMonitorPressureTest, LiveKernelTriggersArmWhereAllowed) {
    std::string whyNot;
    const auto triggers = armPressureTriggers("/proc/pressure/memory", whyNot);
    if (triggers.empty())
        GTEST_SKIP() << "PSI triggers not available here: " << whyNot;
    for (const PressureTrigger& trigger : triggers)
        ::close(trigger.fd);
    MemoryMonitor monitor;
    EXPECT_TRUE(monitor.triggersArmed());
    EXPECT_EQ(monitor.pressure(), Level::normal);
}

} // namespace
