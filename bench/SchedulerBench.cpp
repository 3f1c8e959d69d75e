#include "BenchMain.h"

#include "core/FastSampler.h"
#include "core/SystemMonitor.h"
#include "samplers/cpu/CPUMonitor.h"
#include "samplers/disk/DiskIOMonitor.h"
#include "samplers/disk/DiskMonitor.h"
#include "samplers/memory/MemoryMonitor.h"
#include "samplers/network/NetworkMonitor.h"
#include "samplers/temperature/TemperatureProvider.h"

#include <QCoreApplication>

using namespace lumetra;

namespace {

// The monitor the ticks publish to; its own loops never start.
struct LiveMachine {
    std::shared_ptr<CPUMonitor> cpu = std::make_shared<CPUMonitor>();
    std::shared_ptr<MemoryMonitor> memory = std::make_shared<MemoryMonitor>();
    std::shared_ptr<NetworkMonitor> network = std::make_shared<NetworkMonitor>();
    std::shared_ptr<TemperatureProvider> temperature = std::make_shared<TemperatureProvider>();
    std::shared_ptr<DiskMonitor> disk = std::make_shared<DiskMonitor>();
    std::shared_ptr<DiskIOMonitor> diskIO = std::make_shared<DiskIOMonitor>();
    SystemMonitor monitor{{cpu, memory, network, temperature, disk, diskIO}, 1, 2};
};

// One whole fast tick as the scheduler runs it: read CPU with its cores, memory with swap and
// pressure, network and disk counters, turn counters into rates, hand the sample to the main
// thread and publish it.
void BM_FastTick(benchmark::State& state) {
    LiveMachine machine;
    FastSampler sampler({machine.cpu, machine.memory, machine.network, machine.diskIO});
    for (auto _ : state) {
        QMetaObject::invokeMethod(
            &machine.monitor,
            [&machine, sample = sampler.sample()] { machine.monitor.applyFastSample(sample); },
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
