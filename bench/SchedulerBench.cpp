#include "BenchMain.h"

#include "core/SystemMonitor.h"
#include "samplers/temperature/TemperatureProvider.h"
#include "samplers/cpu/CPUMonitor.h"
#include "samplers/disk/DiskMonitor.h"
#include "samplers/memory/MemoryMonitor.h"
#include "samplers/network/NetworkMonitor.h"

#include <QCoreApplication>

using namespace lumetra;

namespace {

// The monitor the ticks publish to; its own loops never start.
struct LiveMachine {
    std::shared_ptr<CPUMonitor> cpu = std::make_shared<CPUMonitor>();
    std::shared_ptr<MemoryMonitor> memory = std::make_shared<MemoryMonitor>();
    std::shared_ptr<NetworkMonitor> network = std::make_shared<NetworkMonitor>();
    std::shared_ptr<TemperatureProvider> temperature =
        std::make_shared<TemperatureProvider>();
    std::shared_ptr<DiskMonitor> disk = std::make_shared<DiskMonitor>();
    SystemMonitor monitor{{cpu, memory, network, temperature, disk}, 1, 2};
};

// One whole fast tick as the scheduler runs it: read CPU, memory with pressure and network,
// turn counters into rates, hand the values to the main thread and publish them.
void BM_FastTick(benchmark::State& state) {
    LiveMachine machine;
    std::optional<NetworkCounterSample> previous;
    for (auto _ : state) {
        const std::optional<CPUUsage> cpu = machine.cpu->currentUsage();
        const std::optional<double> usage = cpu ? std::optional(cpu->total) : std::nullopt;
        const std::optional<MemorySnapshot> memory = machine.memory->currentSnapshot();
        const MemoryPressureLevel pressure = machine.memory->pressure();
        std::optional<NetworkRates> rates;
        if (const auto current = machine.network->currentCounters()) {
            if (previous)
                rates = NetworkProviding::rates(*previous, *current);
            previous = current;
        }
        QMetaObject::invokeMethod(
            &machine.monitor,
            [&machine, memory, pressure, rates, usage] {
                machine.monitor.applyFastSample(memory, pressure, rates, usage);
            },
            Qt::QueuedConnection);
        QCoreApplication::sendPostedEvents(&machine.monitor);
    }
}
LUMETRA_BENCHMARK(BM_FastTick);

// One slow tick: temperature and thermal state, the disk list, both published.
void BM_SlowTick(benchmark::State& state) {
    LiveMachine machine;
    for (auto _ : state) {
        const TemperatureReading reading = machine.temperature->currentReading();
        DiskVolumeList volumes = machine.disk->currentVolumes();
        QMetaObject::invokeMethod(
            &machine.monitor,
            [&machine, reading, volumes = std::move(volumes)] {
                machine.monitor.applyThermalReading(reading);
                machine.monitor.applyDiskVolumes(volumes);
            },
            Qt::QueuedConnection);
        QCoreApplication::sendPostedEvents(&machine.monitor);
    }
}
LUMETRA_BENCHMARK(BM_SlowTick);

} // namespace
