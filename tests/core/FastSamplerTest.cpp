#include "core/FastSampler.h"

#include <gtest/gtest.h>

#include <vector>

using namespace lumetra;

namespace {

Instant at(double seconds) {
    return Instant(std::chrono::duration_cast<Instant::duration>(
        std::chrono::duration<double>(1'700'000'000.0 + seconds)));
}

// Readings answered in turn, one per tick; an empty entry is a failed reading, and so is
// every tick after the last.
template <typename T>
struct Script {
    std::optional<T> next() { return index < readings.size() ? readings[index++] : std::nullopt; }
    std::vector<std::optional<T>> readings;
    std::size_t index = 0;
};

struct SteadyMachine : CPUProviding, MemoryProviding {
    std::optional<CPUUsage> currentUsage() override {
        return CPUUsage{50, coresWanted ? std::vector<double>{40, 60} : std::vector<double>{}};
    }
    void setCoresWanted(bool wanted) override { coresWanted = wanted; }
    bool coresWanted = true;
    std::optional<MemorySnapshot> currentSnapshot() override { return MemorySnapshot{1, 2}; }
    MemoryPressureLevel pressure() override { return MemoryPressureLevel::elevated; }
};

struct ScriptedNetwork : NetworkProviding {
    std::optional<NetworkCounterSample> currentCounters() override { return script.next(); }
    Script<NetworkCounterSample> script;
};

struct ScriptedDisks : DiskIOProviding {
    std::optional<DiskIOCounterSample> currentCounters() override { return script.next(); }
    Script<DiskIOCounterSample> script;
};

// The first counters are only a baseline; a failed reading gives no rates and keeps the
// baseline, so the next tick measures over both intervals; a reading at the same instant gives
// no rates either, yet becomes the baseline. Network and disks alike; without a disk reader
// there are simply no disk rates.
TEST(FastSamplerTest, RatesNeedABaselineThatAFailedReadingKeeps) {
    auto machine = std::make_shared<SteadyMachine>();
    auto network = std::make_shared<ScriptedNetwork>();
    auto disks = std::make_shared<ScriptedDisks>();
    network->script.readings = {
        NetworkCounterSample{at(0), 0, 0}, std::nullopt, NetworkCounterSample{at(2), 4000, 2000},
        NetworkCounterSample{at(2), 6000, 6000}, NetworkCounterSample{at(3), 7000, 6500}};
    disks->script.readings = {DiskIOCounterSample{at(0), 0, 0, {QStringLiteral("sda")}},
                              std::nullopt,
                              DiskIOCounterSample{at(2), 1024, 512, {QStringLiteral("sda")}}};
    FastSampler sampler({machine, machine, network, disks});

    const FastSample first = sampler.sample();
    EXPECT_EQ(first.cpu, (CPUUsage{50, {40, 60}})) << "cores from the same reading";
    EXPECT_EQ(first.pressure, MemoryPressureLevel::elevated);
    EXPECT_FALSE(first.network);
    EXPECT_FALSE(first.diskIO);
    const FastSample failed = sampler.sample();
    EXPECT_FALSE(failed.network);
    EXPECT_FALSE(failed.diskIO);
    const FastSample third = sampler.sample();
    ASSERT_TRUE(third.network && third.diskIO);
    EXPECT_DOUBLE_EQ(third.network->download, 2000);
    EXPECT_DOUBLE_EQ(third.diskIO->read, 512);
    EXPECT_DOUBLE_EQ(third.diskIO->write, 256);
    EXPECT_EQ(third.diskIO->devices, QStringList{QStringLiteral("sda")});
    EXPECT_FALSE(sampler.sample().network) << "no time passed";
    const FastSample fifth = sampler.sample();
    ASSERT_TRUE(fifth.network);
    EXPECT_DOUBLE_EQ(fifth.network->download, 1000);
    EXPECT_DOUBLE_EQ(fifth.network->upload, 500);

    FastSampler diskless({machine, machine, network, nullptr});
    EXPECT_FALSE(diskless.sample().diskIO);
    EXPECT_FALSE(diskless.sample().diskIO);
}

// A reading switched off is not taken at all (a terminal line that does not show it), and
// switched on again it starts from a new baseline rather than spanning the gap.
TEST(FastSamplerTest, ReadingsSwitchedOffAreNotTakenAndRestartFromABaseline) {
    auto machine = std::make_shared<SteadyMachine>();
    auto network = std::make_shared<ScriptedNetwork>();
    auto disks = std::make_shared<ScriptedDisks>();
    for (int second = 0; second < 5; ++second) {
        network->script.readings.push_back(NetworkCounterSample{at(second), 1000u * second, 0});
        disks->script.readings.push_back(DiskIOCounterSample{at(second), 512u * second, 0});
    }
    FastSampler sampler({machine, machine, network, disks});
    sampler.sample(); // the baselines
    sampler.setReadings({.cpuCores = false, .network = false, .diskIO = false});
    const FastSample quiet = sampler.sample();
    EXPECT_EQ(quiet.cpu, (CPUUsage{50, {}}));
    EXPECT_FALSE(quiet.network || quiet.diskIO);
    EXPECT_EQ(std::pair(network->script.index, disks->script.index),
              std::pair(std::size_t{1}, std::size_t{1}))
        << "nothing was read";

    sampler.setReadings({});
    EXPECT_TRUE(machine->coresWanted);
    const FastSample again = sampler.sample();
    EXPECT_FALSE(again.network || again.diskIO) << "a new baseline, not the old one";
    const FastSample next = sampler.sample();
    ASSERT_TRUE(next.network && next.diskIO);
    EXPECT_DOUBLE_EQ(next.network->download, 1000);
    EXPECT_DOUBLE_EQ(next.diskIO->read, 512);
}

} // namespace
