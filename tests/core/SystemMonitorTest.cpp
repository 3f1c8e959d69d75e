#include "FakeProviders.h"
#include "core/SystemMonitor.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

using namespace lumetra;
using namespace lumetra::testing;

namespace {

class SystemMonitorTest : public ::testing::Test {
protected:
    SystemMonitorTest() {
        memory->snapshots.push(MemorySnapshot{4096, 8192, 0, 0, 0, 0, 0});
        disk->lists.push(DiskVolumeList{});
    }

    std::unique_ptr<SystemMonitor> makeMonitor(double updateInterval = 0.02,
                                               double temperatureInterval = 0.02) {
        return std::make_unique<SystemMonitor>(
            SystemMonitor::Providers{cpu, memory, network, temperature, disk}, updateInterval,
            temperatureInterval);
    }

    std::shared_ptr<FakeCPU> cpu = std::make_shared<FakeCPU>();
    std::shared_ptr<FakeMemory> memory = std::make_shared<FakeMemory>();
    std::shared_ptr<FakeNetwork> network = std::make_shared<FakeNetwork>();
    std::shared_ptr<FakeTemperature> temperature = std::make_shared<FakeTemperature>();
    std::shared_ptr<FakeDisk> disk = std::make_shared<FakeDisk>();
};

TEST_F(SystemMonitorTest, FirstRecordCarriesRealMemoryAndZeroCPUAndRates) {
    cpu->usage.push(0);
    network->samples.push(counters(0, 1000, 1000));
    auto monitor = makeMonitor(5, 5);
    const Instant before = WallClock::now();
    monitor->start();
    ASSERT_TRUE(processEventsUntil([&] { return monitor->cpuHistory().elements().size() == 1; }));
    const SystemMetrics& metrics = monitor->metrics();
    EXPECT_EQ(metrics.cpuUsage, 0);
    EXPECT_EQ(metrics.downloadBytesPerSecond, 0);
    EXPECT_EQ(metrics.uploadBytesPerSecond, 0);
    EXPECT_EQ(metrics.memoryUsed, 4096u);
    EXPECT_EQ(metrics.memoryTotal, 8192u);
    EXPECT_DOUBLE_EQ(metrics.memoryPercentage, 50);
    EXPECT_GE(metrics.timestamp, before);
    EXPECT_EQ(monitor->cpuHistory().elements().front(), 0);
}

TEST_F(SystemMonitorTest, StartingTwiceRunsOneLoop) {
    auto monitor = makeMonitor(1, 10);
    monitor->start();
    monitor->start();
    ASSERT_TRUE(processEventsUntil([&] { return cpu->usage.calls() >= 1; }));
    processEventsFor(300);
    EXPECT_EQ(cpu->usage.calls(), 1);
    EXPECT_EQ(temperature->readings.calls(), 1);
}

TEST_F(SystemMonitorTest, IntervalChangeAppliesFromTheNextSleep) {
    auto monitor = makeMonitor(1, 10);
    monitor->start();
    ASSERT_TRUE(processEventsUntil([&] { return cpu->usage.calls() == 1; }));
    monitor->setUpdateInterval(0.01);
    processEventsFor(500);
    EXPECT_EQ(cpu->usage.calls(), 1) << "the running 1 s sleep is not cut short";
    EXPECT_TRUE(processEventsUntil([&] { return cpu->usage.calls() >= 10; }));
}

TEST_F(SystemMonitorTest, StopWakesTheLoopsAndKeepsTheNetworkBaseline) {
    network->samples.push(counters(0, 0, 0));
    network->samples.push(counters(10, 10'000, 5'000)); // the tick after the pause
    auto monitor = makeMonitor(30, 30);
    monitor->start();
    ASSERT_TRUE(processEventsUntil([&] { return network->samples.calls() == 1; }));
    monitor->stop();
    monitor->start(); // a fresh loop ticks at once, though the old one slept for 30 s
    ASSERT_TRUE(processEventsUntil([&] { return monitor->cpuHistory().elements().size() == 2; }));
    EXPECT_DOUBLE_EQ(monitor->metrics().downloadBytesPerSecond, 1000);
    EXPECT_DOUBLE_EQ(monitor->metrics().uploadBytesPerSecond, 500);
}

struct RateCase {
    const char* name;
    std::vector<NetworkCounterSample> samples;
    double download;
    double upload;
};

class SchedulerRateTest : public SystemMonitorTest,
                          public ::testing::WithParamInterface<RateCase> {};

TEST_P(SchedulerRateTest, TurnsCountersIntoRates) {
    for (const NetworkCounterSample& sample : GetParam().samples)
        network->samples.push(sample);
    auto monitor = makeMonitor(0.01, 10);
    monitor->start();
    const std::size_t ticks = GetParam().samples.size();
    ASSERT_TRUE(
        processEventsUntil([&] { return monitor->cpuHistory().elements().size() >= ticks; }));
    monitor->stop();
    EXPECT_DOUBLE_EQ(monitor->metrics().downloadBytesPerSecond, GetParam().download);
    EXPECT_DOUBLE_EQ(monitor->metrics().uploadBytesPerSecond, GetParam().upload);
}

INSTANTIATE_TEST_SUITE_P(
    Counters, SchedulerRateTest,
    ::testing::Values(
        RateCase{"Steady", {counters(0, 0, 0), counters(2, 4000, 2000)}, 2000, 1000},
        RateCase{"CounterDropGivesZero",
                 {counters(0, 5000, 100), counters(1, 1000, 300)}, 0, 200},
        RateCase{"EqualTimestampsKeepPreviousRates",
                 {counters(0, 0, 0), counters(1, 100, 100), counters(1, 900, 900),
                  counters(2, 1900, 1900)},
                 1000, 1000},
        RateCase{"FirstReadingOnlyPrimes", {counters(0, 99999, 99999)}, 0, 0}),
    [](const auto& info) { return std::string(info.param.name); });

TEST_F(SystemMonitorTest, EqualTimestampsLeaveTheLastRateOnScreen) {
    network->samples.push(counters(0, 0, 0));
    network->samples.push(counters(1, 100, 100));
    network->samples.push(counters(1, 900, 900));
    auto monitor = makeMonitor(0.01, 10);
    std::vector<double> downloads;
    QObject::connect(monitor.get(), &SystemMonitor::metricsChanged, [&] {
        downloads.push_back(monitor->metrics().downloadBytesPerSecond);
    });
    monitor->start();
    ASSERT_TRUE(processEventsUntil([&] { return downloads.size() >= 3; }));
    EXPECT_EQ(downloads[1], 100);
    EXPECT_EQ(downloads[2], 100);
}

TEST_F(SystemMonitorTest, ZeroTotalMemoryGivesZeroPercent) {
    auto monitor = makeMonitor();
    monitor->applyFastSample(MemorySnapshot{100, 0, 0, 0, 0, 0, 0}, MemoryPressureLevel::normal,
                             std::nullopt, 0);
    EXPECT_EQ(monitor->metrics().memoryPercentage, 0);
    ASSERT_EQ(monitor->memoryHistory().elements().size(), 1u);
    EXPECT_EQ(monitor->memoryHistory().elements().front(), 0);
}

TEST_F(SystemMonitorTest, MissingMemoryKeepsTheLastValuesAndSkipsTheHistory) {
    auto monitor = makeMonitor();
    monitor->applyFastSample(MemorySnapshot{300, 400, 0, 0, 0, 0, 0},
                             MemoryPressureLevel::normal, NetworkRates{5, 6}, 10);
    monitor->applyFastSample(std::nullopt, MemoryPressureLevel::critical, std::nullopt, 20);
    const SystemMetrics& metrics = monitor->metrics();
    EXPECT_EQ(metrics.memoryUsed, 300u);
    EXPECT_DOUBLE_EQ(metrics.memoryPercentage, 75);
    EXPECT_EQ(metrics.memoryPressure, MemoryPressureLevel::critical);
    EXPECT_EQ(metrics.downloadBytesPerSecond, 5) << "the last known rate stays";
    EXPECT_EQ(monitor->memoryHistory().elements().size(), 1u);
    EXPECT_EQ(monitor->cpuHistory().elements().size(), 2u);
}

TEST_F(SystemMonitorTest, PercentageIsClampedTo100) {
    auto monitor = makeMonitor();
    monitor->applyFastSample(MemorySnapshot{900, 400, 0, 0, 0, 0, 0},
                             MemoryPressureLevel::normal, std::nullopt, 0);
    EXPECT_EQ(monitor->metrics().memoryPercentage, 100);
}

TEST_F(SystemMonitorTest, IdenticalThermalReadingNotifiesNobody) {
    auto monitor = makeMonitor();
    QSignalSpy spy(monitor.get(), &SystemMonitor::metricsChanged);
    const TemperatureReading reading{47.5, ThermalState::fair,
                                     TemperatureAvailability::exactTemperature};
    monitor->applyThermalReading(reading);
    monitor->applyThermalReading(reading);
    EXPECT_EQ(spy.count(), 1);
    EXPECT_EQ(monitor->metrics().timestamp, kDistantPast) << "a thermal update keeps the time";
    monitor->applyThermalReading({std::nullopt, ThermalState::fair,
                                  TemperatureAvailability::unavailable});
    EXPECT_EQ(spy.count(), 2);
}

TEST_F(SystemMonitorTest, EqualDiskListNotifiesNobody) {
    auto monitor = makeMonitor();
    QSignalSpy spy(monitor.get(), &SystemMonitor::diskVolumesChanged);
    DiskVolume root{"/", "host", 100, 50, true, false, false, true};
    monitor->applyDiskVolumes({root});
    monitor->applyDiskVolumes({root});
    EXPECT_EQ(spy.count(), 1);
    root.availableCapacity = 49;
    monitor->applyDiskVolumes({root});
    EXPECT_EQ(spy.count(), 2);
}

TEST_F(SystemMonitorTest, SlowLoopDeliversTemperatureAndDisks) {
    temperature->readings.push({55.0, ThermalState::nominal,
                                TemperatureAvailability::exactTemperature});
    disk->lists.clear();
    disk->lists.push({DiskVolume{"/", "host", 100, 50, true, false, false, true}});
    auto monitor = makeMonitor(10, 0.01);
    monitor->start();
    ASSERT_TRUE(processEventsUntil([&] {
        return monitor->metrics().temperature == 55.0 && monitor->diskVolumes().size() == 1;
    }));
    EXPECT_TRUE(processEventsUntil([&] { return temperature->readings.calls() >= 3; }))
        << "the slow loop keeps going";
}

TEST_F(SystemMonitorTest, RefreshDiskVolumesWorksWhileStopped) {
    disk->lists.clear();
    disk->lists.push({DiskVolume{"/mnt/usb", "usb", 10, 5, false, true, true, false}});
    auto monitor = makeMonitor();
    monitor->refreshDiskVolumes();
    ASSERT_TRUE(processEventsUntil([&] { return monitor->diskVolumes().size() == 1; }));
    EXPECT_EQ(cpu->usage.calls(), 0) << "no loop was started";
}

TEST(MonitoringSchedulerTest, WithoutSinkTicksAreDroppedButBaselinesAdvance) {
    auto network = std::make_shared<FakeNetwork>();
    network->samples.push(counters(0, 0, 0));
    network->samples.push(counters(1, 1000, 1000));
    network->samples.push(counters(2, 1500, 1500));
    auto memory = std::make_shared<FakeMemory>();
    auto disk = std::make_shared<FakeDisk>();
    auto scheduler = std::make_unique<MonitoringScheduler>(
        MonitoringProviders{std::make_shared<FakeCPU>(), memory, network,
                            std::make_shared<ThermalMonitor>(std::make_shared<FakeTemperature>()),
                            disk},
        0.01, 10);
    scheduler->start();
    ASSERT_TRUE(processEventsUntil([&] { return network->samples.calls() >= 2; }));
    scheduler->stop();

    // Attach a sink: the next tick's rate is against the sample read while nobody listened.
    auto monitor = std::make_unique<SystemMonitor>(
        SystemMonitor::Providers{std::make_shared<FakeCPU>(), memory, network,
                                 std::make_shared<FakeTemperature>(), disk},
        10, 10);
    const int callsBefore = network->samples.calls();
    scheduler->setSink(monitor.get());
    scheduler->start();
    ASSERT_TRUE(processEventsUntil([&] { return !monitor->cpuHistory().elements().empty(); }));
    EXPECT_GT(callsBefore, 1);
    EXPECT_DOUBLE_EQ(monitor->metrics().downloadBytesPerSecond, 500);
    scheduler.reset();
}

TEST_F(SystemMonitorTest, DestroyingARunningMonitorEndsTheLoops) {
    for (int round = 0; round < 20; ++round) {
        auto monitor = makeMonitor(0.001, 0.001);
        monitor->start();
        processEventsUntil([&] { return !monitor->diskVolumes().empty() || round % 2; }, 20);
        monitor.reset();
    }
    const int calls = cpu->usage.calls();
    processEventsFor(50);
    EXPECT_EQ(cpu->usage.calls(), calls) << "no loop survives its monitor";
}

} // namespace
