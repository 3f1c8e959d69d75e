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
    std::optional<CPUUsage> currentUsage() override { return CPUUsage{50, {40, 60}}; }
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
// baseline, so the next tick measures over both intervals. Network and disks alike.
TEST(FastSamplerTest, RatesNeedABaselineThatAFailedReadingKeeps) {
    auto machine = std::make_shared<SteadyMachine>();
    auto network = std::make_shared<ScriptedNetwork>();
    auto disks = std::make_shared<ScriptedDisks>();
    network->script.readings = {NetworkCounterSample{at(0), 0, 0}, std::nullopt,
                                NetworkCounterSample{at(2), 4000, 2000}};
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
}

// Without a disk reader there are simply no disk rates.
TEST(FastSamplerTest, NoDiskReaderNoDiskRates) {
    auto machine = std::make_shared<SteadyMachine>();
    auto network = std::make_shared<ScriptedNetwork>();
    FastSampler sampler({machine, machine, network, nullptr});
    EXPECT_FALSE(sampler.sample().diskIO);
    EXPECT_FALSE(sampler.sample().diskIO);
}

} // namespace
