#include "core/SystemMonitor.h"

#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

#include <atomic>

using namespace lumetra;

namespace {

// Scripted values handed out in turn, the last one repeating. The values are set before the
// loops start; the loop threads only read them.
template <typename Value>
struct Script {
    std::vector<Value> values;
    std::atomic<int> count = 0;
    int calls() const { return count; }
    Value next() {
        const auto index = static_cast<std::size_t>(count++);
        return values.empty() ? Value{} : values[std::min(index, values.size() - 1)];
    }
};

// Every provider at once, each answering from its script.
struct FakeMachine : CPUProviding,
                     MemoryProviding,
                     NetworkProviding,
                     TemperatureProviding,
                     DiskProviding {
    std::optional<CPUUsage> currentUsage() override {
        const std::optional<double> next = usage.next();
        return next ? std::optional(CPUUsage{*next, {}}) : std::nullopt;
    }
    std::optional<MemorySnapshot> currentSnapshot() override { return snapshots.next(); }
    MemoryPressureLevel pressure() override { return MemoryPressureLevel::normal; }
    std::optional<NetworkCounterSample> currentCounters() override { return samples.next(); }
    TemperatureReading currentReading() override { return readings.next(); }
    DiskVolumeList currentVolumes() override { return volumes.next(); }

    Script<std::optional<double>> usage;
    Script<std::optional<MemorySnapshot>> snapshots;
    Script<std::optional<NetworkCounterSample>> samples;
    Script<TemperatureReading> readings;
    Script<DiskVolumeList> volumes;
};

NetworkCounterSample counters(double seconds, std::uint64_t received, std::uint64_t sent) {
    return {Instant(std::chrono::duration_cast<Instant::duration>(
                std::chrono::duration<double>(1'700'000'000.0 + seconds))),
            received, sent};
}

template <typename Predicate>
bool waitFor(Predicate predicate, int milliseconds = 10'000) {
    return QTest::qWaitFor(predicate, milliseconds);
}

const DiskVolume kRoot{"/", "host", 100, 50, true, false, false, true};

class SystemMonitorTest : public ::testing::Test {
protected:
    std::unique_ptr<SystemMonitor> makeMonitor(double updateInterval = 0.02,
                                               double temperatureInterval = 0.02) {
        return std::make_unique<SystemMonitor>(
            SystemMonitor::Providers{machine, machine, machine, machine, machine}, updateInterval,
            temperatureInterval);
    }
    std::size_t ticks(const SystemMonitor& monitor) const {
        return monitor.histories().cpu.elements().size();
    }

    std::shared_ptr<FakeMachine> machine = std::make_shared<FakeMachine>();
};

// With 30 s intervals, anything seen within the wait came without sleeping first.
TEST_F(SystemMonitorTest, FirstTickIsImmediateAndARestartMeasuresOverThePause) {
    machine->samples.values = {counters(0, 1000, 1000), counters(10, 11'000, 6'000)};
    auto monitor = makeMonitor(30, 30);
    const Instant before = WallClock::now();
    monitor->start();
    ASSERT_TRUE(waitFor([&] { return ticks(*monitor) == 1; }));
    EXPECT_EQ(monitor->metrics().downloadBytesPerSecond, 0) << "the first counters: a baseline";
    EXPECT_GE(monitor->metrics().timestamp, before);

    monitor->stop();
    monitor->start(); // a fresh loop ticks at once, though the old one slept for 30 s
    ASSERT_TRUE(waitFor([&] { return ticks(*monitor) == 2; }));
    EXPECT_DOUBLE_EQ(monitor->metrics().downloadBytesPerSecond, 1000);
    EXPECT_DOUBLE_EQ(monitor->metrics().uploadBytesPerSecond, 500);
}

// A second start adds no loop (one call each), and the 1 s sleep running when the interval
// changes is not cut short.
TEST_F(SystemMonitorTest, StartingTwiceRunsOneLoopAndIntervalsApplyFromTheNextSleep) {
    auto monitor = makeMonitor(1, 10);
    monitor->start();
    monitor->start();
    ASSERT_TRUE(waitFor([&] { return machine->usage.calls() >= 1; }));
    monitor->setUpdateInterval(0.01);
    QTest::qWait(500);
    EXPECT_EQ(machine->usage.calls(), 1);
    EXPECT_EQ(machine->readings.calls(), 1);
    EXPECT_TRUE(waitFor([&] { return machine->usage.calls() >= 10; }));
}

// Samples in turn fill the record: the memory percentage clamped to 0–100, the cores from the
// same reading as the total, swap with the memory reading (its graph only when there is swap),
// the disk rates beside the network's. A failed reading keeps the last values, marked as not
// read, and adds nothing to the graphs; a tick without rates keeps the last ones.
TEST_F(SystemMonitorTest, FastSamplesFillTheRecordAndTheHistories) {
    auto monitor = makeMonitor();
    const auto normal = MemoryPressureLevel::normal;
    MemorySnapshot memory{300, 400};
    memory.swapUsed = 50;
    memory.swapTotal = 200;
    monitor->applyFastSample({CPUUsage{10, {20, 40}}, memory, normal, NetworkRates{5, 6},
                              DiskIORates{1000, 2000, {QStringLiteral("sda")}}});
    const SystemMetrics& record = monitor->metrics();
    EXPECT_TRUE(record.memoryValid && record.cpuUsageValid);
    EXPECT_EQ(record.cpuCores, (std::vector<double>{20, 40}));
    EXPECT_EQ(record.swapUsed, 50u);
    EXPECT_EQ(record.swapTotal, 200u);
    EXPECT_EQ(record.diskReadBytesPerSecond, 1000);
    EXPECT_EQ(record.diskWriteBytesPerSecond, 2000);
    EXPECT_EQ(record.diskDevices, QStringList{QStringLiteral("sda")});

    monitor->applyFastSample({std::nullopt, std::nullopt, MemoryPressureLevel::critical});
    EXPECT_FALSE(monitor->metrics().memoryValid) << "kept, but marked as not read";
    EXPECT_FALSE(monitor->metrics().cpuUsageValid);
    EXPECT_TRUE(monitor->metrics().cpuCores.empty()) << "no cores without a CPU reading";
    EXPECT_EQ(monitor->metrics().memoryUsed, 300u);
    EXPECT_EQ(monitor->metrics().memoryPressure, MemoryPressureLevel::critical);
    EXPECT_EQ(monitor->metrics().downloadBytesPerSecond, 5) << "the last known rate stays";
    EXPECT_EQ(monitor->metrics().diskReadBytesPerSecond, 1000);
    MemorySnapshot noSwap{100, 0};
    noSwap.swapUsed = 0;
    noSwap.swapTotal = 0;
    monitor->applyFastSample({CPUUsage{0, {}}, noSwap, normal});
    EXPECT_EQ(monitor->metrics().memoryPercentage, 0);
    EXPECT_EQ(monitor->metrics().swapTotal, 0u);
    monitor->applyFastSample({CPUUsage{0, {}}, MemorySnapshot{900, 400}, normal});
    const auto history = monitor->histories().memory.elements();
    EXPECT_EQ(std::vector<double>(history.begin(), history.end()),
              (std::vector<double>{75, 0, 100}));
    const auto swap = monitor->histories().swap.elements();
    EXPECT_EQ(std::vector<double>(swap.begin(), swap.end()), std::vector<double>{25});
    EXPECT_EQ(ticks(*monitor), 4u);
}

TEST_F(SystemMonitorTest, EqualThermalReadingOrDiskListNotifiesNobody) {
    auto monitor = makeMonitor();
    QSignalSpy metrics(monitor.get(), &SystemMonitor::metricsChanged);
    QSignalSpy disks(monitor.get(), &SystemMonitor::diskVolumesChanged);
    const TemperatureReading reading{47.5,
                                     ThermalState::fair,
                                     TemperatureAvailability::exactTemperature,
                                     {"k10temp/Tctl", "k10temp/Tccd1"}};
    monitor->applyThermalReading(reading);
    monitor->applyThermalReading(reading);
    EXPECT_EQ(metrics.count(), 1);
    EXPECT_EQ(monitor->metrics().temperatureSources, reading.sources);
    EXPECT_EQ(monitor->metrics().timestamp, kDistantPast) << "a thermal update keeps the time";
    monitor->applyThermalReading({});
    EXPECT_EQ(metrics.count(), 2);

    DiskVolume root = kRoot;
    monitor->applyDiskVolumes({root});
    monitor->applyDiskVolumes({root});
    EXPECT_EQ(disks.count(), 1);
    root.availableCapacity = 49;
    monitor->applyDiskVolumes({root});
    EXPECT_EQ(disks.count(), 2);
}

TEST_F(SystemMonitorTest, SlowLoopDeliversTemperatureAndDisksAndRefreshWorksWhileStopped) {
    machine->readings.values = {
        {55.0, ThermalState::nominal, TemperatureAvailability::exactTemperature, {}}};
    machine->volumes.values = {{kRoot}};
    auto stopped = makeMonitor();
    stopped->refreshDiskVolumes();
    ASSERT_TRUE(waitFor([&] { return stopped->diskVolumes().size() == 1; }));
    EXPECT_EQ(machine->usage.calls(), 0) << "no loop was started";

    auto monitor = makeMonitor(10, 0.01);
    monitor->start();
    ASSERT_TRUE(waitFor([&] {
        return monitor->metrics().temperature == 55.0 && monitor->diskVolumes().size() == 1;
    }));
    EXPECT_TRUE(waitFor([&] { return machine->readings.calls() >= 3; }))
        << "the slow loop keeps going";
    monitor.reset();

    // Without a disk provider the slow loop goes on with temperature alone.
    SystemMonitor diskless({machine, machine, machine, machine, nullptr}, 10, 0.01);
    const int readings = machine->readings.calls();
    const int listings = machine->volumes.calls();
    diskless.refreshDiskVolumes();
    diskless.start();
    EXPECT_TRUE(waitFor([&] { return machine->readings.calls() >= readings + 3; }));
    EXPECT_EQ(machine->volumes.calls(), listings);
}

// Sampling on the caller's thread (the terminal mode): the first tick is delivered within
// start(), the loop goes on from this thread's event loop, stop() from inside a delivery ends
// it, and the monitor goes away without a thread to join.
TEST_F(SystemMonitorTest, CallerThreadSamplingDeliversDirectlyAndStopsFromADelivery) {
    machine->usage.values = {10.0, 20.0, 30.0, 40.0};
    SystemMonitor monitor(SystemMonitor::Providers{machine, machine, machine, machine, machine},
                          0.01, 10, nullptr, SamplingThread::caller);
    QSignalSpy changed(&monitor, &SystemMonitor::metricsChanged);
    monitor.start();
    EXPECT_GE(changed.count(), 1) << "the first sample arrives within start()";
    EXPECT_EQ(monitor.metrics().cpuUsage, 10);
    QObject::connect(&monitor, &SystemMonitor::metricsChanged, &monitor, [&] {
        if (monitor.metrics().cpuUsage >= 30)
            monitor.stop();
    });
    ASSERT_TRUE(waitFor([&] { return monitor.metrics().cpuUsage >= 30; }));
    const int calls = machine->usage.calls();
    QTest::qWait(100);
    EXPECT_EQ(machine->usage.calls(), calls) << "stopped from inside the delivery";
}

TEST(MonitoringSchedulerTest, WithoutSinkTicksAreDroppedButBaselinesAdvance) {
    auto machine = std::make_shared<FakeMachine>();
    // 1000 B/s over the first second, 500 B/s after it.
    machine->samples.values = {counters(0, 0, 0)};
    for (int second = 1; second < 8; ++second)
        machine->samples.values.push_back(counters(second, 500 + 500 * second, 500 + 500 * second));
    auto scheduler = std::make_unique<MonitoringScheduler>(
        MonitoringProviders{machine, machine, machine, std::make_shared<ThermalMonitor>(machine),
                            machine},
        0.01, 10);
    scheduler->start();
    ASSERT_TRUE(waitFor([&] { return machine->samples.calls() >= 2; }));
    scheduler->stop();

    // Attach a sink: the next tick's rate is against the sample read while nobody listened.
    SystemMonitor monitor({machine, machine, machine, machine, machine}, 10, 10);
    scheduler->setSink(&monitor);
    scheduler->start();
    ASSERT_TRUE(waitFor([&] { return !monitor.histories().cpu.elements().empty(); }));
    EXPECT_DOUBLE_EQ(monitor.metrics().downloadBytesPerSecond, 500);
    scheduler.reset();
}

TEST_F(SystemMonitorTest, DestroyingARunningMonitorEndsTheLoops) {
    for (int round = 0; round < 20; ++round) {
        auto monitor = makeMonitor(0.001, 0.001);
        monitor->start();
        waitFor([&] { return round % 2 || machine->volumes.calls() > 0; }, 20);
    }
    const int calls = machine->usage.calls();
    QTest::qWait(50);
    EXPECT_EQ(machine->usage.calls(), calls) << "no loop survives its monitor";
}

} // namespace
