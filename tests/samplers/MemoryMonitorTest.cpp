#include "samplers/MemoryMonitor.h"
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

struct FixtureCase {
    const char* machine;
    std::uint64_t totalKiB;
    std::uint64_t usedKiB;
    std::uint64_t wiredKiB;
    std::uint64_t compressedKiB;
};

class MeminfoFixtureTest : public ::testing::TestWithParam<FixtureCase> {};

TEST_P(MeminfoFixtureTest, UsedIsTotalMinusAvailable) {
    MemoryMonitor monitor(KernelRoots(fixtureRoot(GetParam().machine)));
    const auto snapshot = monitor.currentSnapshot();
    ASSERT_TRUE(snapshot);
    EXPECT_EQ(snapshot->total, GetParam().totalKiB * kKiB);
    EXPECT_EQ(snapshot->used, GetParam().usedKiB * kKiB);
    EXPECT_EQ(snapshot->wired, GetParam().wiredKiB * kKiB);
    EXPECT_EQ(snapshot->compressed, GetParam().compressedKiB * kKiB);
}

INSTANTIATE_TEST_SUITE_P(
    Machines, MeminfoFixtureTest,
    ::testing::Values(
        // 32617284 − 26021232; wired = Unevictable + SUnreclaim + KernelStack + PageTables
        FixtureCase{"desktop-intel", 32617284, 6596052, 80684 + 331436 + 24112 + 59708, 1024},
        // No MemAvailable (before 3.14): MemFree + Buffers + Cached + SReclaimable − Shmem
        FixtureCase{"old-kernel", 2060148, 2060148 - (277180 + 150296 + 1012956 + 160804 - 5136),
                    20132 + 11224, 0},
        // MemAvailable above MemTotal: MemFree stands in
        FixtureCase{"container-lxcfs", 4194304, 4194304 - 3145728, 0, 0},
        FixtureCase{"raspberry-pi", 3882384, 3882384 - 181828, 16384 + 43480 + 4608 + 18944, 0}),
    [](const auto& info) {
        std::string name = info.param.machine;
        std::erase(name, '-');
        return name;
    });

struct ParseCase {
    const char* name;
    const char* text;
    std::optional<std::uint64_t> usedBytes;
    MeminfoError error;
};

class MeminfoParseTest : public ::testing::TestWithParam<ParseCase> {};

TEST_P(MeminfoParseTest, HandlesRealWorldVariants) {
    const MeminfoParse parsed = parseMeminfo(GetParam().text);
    EXPECT_EQ(parsed.error, GetParam().error);
    ASSERT_EQ(parsed.snapshot.has_value(), GetParam().usedBytes.has_value());
    if (parsed.snapshot) {
        EXPECT_EQ(parsed.snapshot->used, *GetParam().usedBytes);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Variants, MeminfoParseTest,
    ::testing::Values(
        ParseCase{"AnyLineOrder", "MemAvailable: 30 kB\nFoo: 1 kB\nMemTotal: 100 kB\n",
                  70 * kKiB, MeminfoError::none},
        ParseCase{"NoTotal", "MemFree: 10 kB\nMemAvailable: 30 kB\n", std::nullopt,
                  MeminfoError::noTotal},
        ParseCase{"NoAvailableNorFree", "MemTotal: 100 kB\nCached: 30 kB\n", std::nullopt,
                  MeminfoError::noAvailableOrFree},
        ParseCase{"EstimateNeverBelowZero", "MemTotal: 100 kB\nMemFree: 1 kB\nShmem: 50 kB\n",
                  100 * kKiB, MeminfoError::none},
        ParseCase{"EstimateAboveTotalClamps", "MemTotal: 100 kB\nMemFree: 90 kB\nCached: 90 kB\n",
                  0, MeminfoError::none},
        ParseCase{"SixtyFourTerabytes",
                  "MemTotal: 68719476736 kB\nMemAvailable: 34359738368 kB\n",
                  34359738368ull * kKiB, MeminfoError::none},
        ParseCase{"KilobytesThatOverflowSaturate",
                  "MemTotal: 18446744073709551615 kB\nMemAvailable: 0 kB\n", UINT64_MAX,
                  MeminfoError::none},
        ParseCase{"GarbageValueIsMissing", "MemTotal: lots kB\nMemAvailable: 1 kB\n",
                  std::nullopt, MeminfoError::noTotal},
        ParseCase{"Empty", "", std::nullopt, MeminfoError::noTotal},
        ParseCase{"NoColonLines", "MemTotal 100 kB\nMemAvailable 1 kB\n", std::nullopt,
                  MeminfoError::noTotal}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(MemoryMonitorTest, FailedReadingsGiveNoSnapshotAndRecover) {
    ScratchTree tree;
    MemoryMonitor monitor(KernelRoots(tree.root()));
    EXPECT_FALSE(monitor.currentSnapshot()) << "missing file";
    tree.makeDirectory("proc/meminfo");
    EXPECT_FALSE(monitor.currentSnapshot()) << "a directory";
    QDir(QString::fromStdString(tree.path("proc/meminfo"))).removeRecursively();
    tree.write("proc/meminfo", "MemTotal: 100 kB\nMemAvailable: 25 kB\n");
    const auto snapshot = monitor.currentSnapshot();
    ASSERT_TRUE(snapshot);
    EXPECT_EQ(snapshot->used, 75 * kKiB);
}

TEST(MemoryMonitorTest, ReadsTheLiveMachine) {
    MemoryMonitor monitor;
    const auto snapshot = monitor.currentSnapshot();
    ASSERT_TRUE(snapshot);
    EXPECT_GT(snapshot->total, 0u);
    EXPECT_LE(snapshot->used, snapshot->total);
}

// --- pressure -------------------------------------------------------------------------------

using Clock = PressureLevelRule::Clock;

TEST(PressureAveragesTest, ParsesBothLines) {
    const auto averages =
        parsePressureAverages("some avg10=12.50 avg60=1 avg300=0 total=1\n"
                              "full avg10=3.25 avg60=0 avg300=0 total=1\n");
    ASSERT_TRUE(averages);
    EXPECT_DOUBLE_EQ(averages->someAvg10, 12.5);
    EXPECT_DOUBLE_EQ(averages->fullAvg10, 3.25);
    EXPECT_FALSE(parsePressureAverages("full avg10=1.00 avg60=0 avg300=0 total=1\n"));
    EXPECT_FALSE(parsePressureAverages("some avg=1\n"));
    EXPECT_FALSE(parsePressureAverages(""));
    EXPECT_DOUBLE_EQ(parsePressureAverages("some avg10=1.00 avg60=0 avg300=0 total=1")->fullAvg10,
                     0);
}

struct AveragesCase {
    double some;
    double full;
    MemoryPressureLevel expected;
};

class LevelFromAveragesTest : public ::testing::TestWithParam<AveragesCase> {};

TEST_P(LevelFromAveragesTest, UsesTheTenPercentThreshold) {
    EXPECT_EQ(PressureLevelRule::levelFromAverages({GetParam().some, GetParam().full}),
              GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Thresholds, LevelFromAveragesTest,
                         ::testing::Values(AveragesCase{0, 0, MemoryPressureLevel::normal},
                                           AveragesCase{9.99, 9.99, MemoryPressureLevel::normal},
                                           AveragesCase{10, 0, MemoryPressureLevel::elevated},
                                           AveragesCase{50, 10, MemoryPressureLevel::critical},
                                           AveragesCase{0, 10, MemoryPressureLevel::critical}),
                         [](const auto& info) { return "Case" + std::to_string(info.index); });

TEST(PressureLevelRuleTest, EventsRaiseAndQuietAveragesLower) {
    PressureLevelRule rule;
    const Clock::time_point t0{};
    EXPECT_FALSE(rule.needsAverages(t0)) << "normal never needs the file";
    rule.onEvent(PressureEvent::warning, t0);
    EXPECT_EQ(rule.level(), MemoryPressureLevel::elevated);
    rule.onEvent(PressureEvent::critical, t0 + std::chrono::seconds(1));
    EXPECT_EQ(rule.level(), MemoryPressureLevel::critical);

    // Calm averages, but a trigger fired less than 10 s ago: the level holds.
    rule.settle({0, 0}, t0 + std::chrono::milliseconds(10999));
    EXPECT_EQ(rule.level(), MemoryPressureLevel::critical);
    // Ten quiet seconds, full calm but some still high: down to elevated only.
    rule.settle({10, 9.99}, t0 + std::chrono::seconds(11));
    EXPECT_EQ(rule.level(), MemoryPressureLevel::elevated);
    // Both calm: normal.
    rule.settle({9.99, 0}, t0 + std::chrono::seconds(12));
    EXPECT_EQ(rule.level(), MemoryPressureLevel::normal);
}

TEST(PressureLevelRuleTest, HighAveragesKeepTheLevel) {
    PressureLevelRule rule;
    rule.onEvent(PressureEvent::warning, Clock::time_point{});
    rule.settle({25, 0}, Clock::time_point{} + std::chrono::seconds(60));
    EXPECT_EQ(rule.level(), MemoryPressureLevel::elevated);
}

// A controllable clock and pipe-backed triggers stand in for the kernel's PSI triggers.
class FakeTriggers {
public:
    FakeTriggers() {
        for (auto* fds : {warning_, critical_})
            EXPECT_EQ(::pipe2(fds, O_NONBLOCK | O_CLOEXEC), 0);
    }
    ~FakeTriggers() {
        closeWriteEnds();
    }

    MemoryMonitor::Options options(std::atomic<Clock::time_point>& now) {
        MemoryMonitor::Options options;
        options.armTriggers = [this](const std::string&, std::string&) {
            return std::vector<PressureTrigger>{
                {warning_[0], PressureEvent::warning, POLLIN},
                {critical_[0], PressureEvent::critical, POLLIN}};
        };
        options.now = [&now] { return now.load(); };
        return options;
    }

    void fire(PressureEvent event) {
        const int fd = event == PressureEvent::warning ? warning_[1] : critical_[1];
        ASSERT_EQ(::write(fd, "x", 1), 1);
    }

    void closeWriteEnds() {
        for (int* fd : {&warning_[1], &critical_[1]}) {
            if (*fd >= 0)
                ::close(*fd);
            *fd = -1;
        }
    }

private:
    int warning_[2]{-1, -1};
    int critical_[2]{-1, -1};
};

// Waits (bounded) for the watcher thread to deliver what the test sent.
template <typename Predicate>
bool eventually(Predicate predicate) {
    for (int i = 0; i < 500; ++i) {
        if (predicate())
            return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return predicate();
}

TEST(MemoryMonitorPressureTest, TriggersDriveTheLevelAndQuietReturnsToNormal) {
    ScratchTree tree;
    tree.write("proc/pressure/memory", "some avg10=0.00 avg60=0 avg300=0 total=0\n"
                                       "full avg10=0.00 avg60=0 avg300=0 total=0\n");
    std::atomic<Clock::time_point> now{Clock::time_point{}};
    FakeTriggers triggers;
    MemoryMonitor monitor(KernelRoots(tree.root()), triggers.options(now));
    ASSERT_TRUE(monitor.triggersArmed());
    EXPECT_EQ(monitor.pressure(), MemoryPressureLevel::normal);

    triggers.fire(PressureEvent::warning);
    EXPECT_TRUE(eventually([&] { return monitor.pressure() == MemoryPressureLevel::elevated; }));
    triggers.fire(PressureEvent::critical);
    EXPECT_TRUE(eventually([&] { return monitor.pressure() == MemoryPressureLevel::critical; }));

    now = now.load() + std::chrono::seconds(10);
    EXPECT_EQ(monitor.pressure(), MemoryPressureLevel::normal);
}

TEST(MemoryMonitorPressureTest, LostTriggersFallBackToTheAverages) {
    ScratchTree tree;
    tree.write("proc/pressure/memory", "some avg10=12.00 avg60=0 avg300=0 total=0\n"
                                       "full avg10=1.00 avg60=0 avg300=0 total=0\n");
    std::atomic<Clock::time_point> now{Clock::time_point{}};
    FakeTriggers triggers;
    MemoryMonitor monitor(KernelRoots(tree.root()), triggers.options(now));
    EXPECT_EQ(monitor.pressure(), MemoryPressureLevel::normal) << "armed: no event yet";
    triggers.closeWriteEnds();
    EXPECT_TRUE(eventually([&] { return !monitor.triggersArmed(); }));
    EXPECT_EQ(monitor.pressure(), MemoryPressureLevel::elevated);
}

TEST(MemoryMonitorPressureTest, UnarmedLevelFollowsTheFileOnEachRead) {
    ScratchTree tree;
    MemoryMonitor::Options options;
    options.armTriggers = armPressureTriggers; // a scratch tree is not procfs: never armed
    MemoryMonitor monitor(KernelRoots(tree.root()), options);
    EXPECT_FALSE(monitor.triggersArmed());

    tree.write("proc/pressure/memory", "some avg10=30.00 avg60=0 avg300=0 total=0\n"
                                       "full avg10=11.00 avg60=0 avg300=0 total=0\n");
    EXPECT_EQ(monitor.pressure(), MemoryPressureLevel::critical);
    tree.write("proc/pressure/memory", "garbage");
    EXPECT_EQ(monitor.pressure(), MemoryPressureLevel::normal) << "unreadable averages";
    tree.write("proc/pressure/memory", "some avg10=0.00 avg60=0 avg300=0 total=0\n");
    EXPECT_EQ(monitor.pressure(), MemoryPressureLevel::normal);
}

TEST(MemoryMonitorPressureTest, NoPressureFileMeansNormal) {
    // Kernels before 4.20 have no PSI.
    MemoryMonitor monitor(KernelRoots(fixtureRoot("old-kernel")));
    EXPECT_FALSE(monitor.triggersArmed());
    EXPECT_EQ(monitor.pressure(), MemoryPressureLevel::normal);
    EXPECT_EQ(monitor.pressure(), MemoryPressureLevel::normal);
}

TEST(MemoryMonitorPressureTest, SavedTreesAreReadNotArmed) {
    MemoryMonitor pi(KernelRoots(fixtureRoot("raspberry-pi")));
    EXPECT_FALSE(pi.triggersArmed());
    EXPECT_EQ(pi.pressure(), MemoryPressureLevel::critical);
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
    EXPECT_EQ(monitor.pressure(), MemoryPressureLevel::normal);
}

} // namespace
