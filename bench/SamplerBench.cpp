#include "BenchMain.h"

#include "samplers/cpu/CPUMonitor.h"
#include "samplers/disk/DiskIOMonitor.h"
#include "samplers/memory/MemoryMonitor.h"

using namespace lumetra;

namespace {

// One fast-tick's worth of CPU and memory sampling on the live machine.
void BM_CPUAndMemoryReading(benchmark::State& state) {
    CPUMonitor cpu;
    MemoryMonitor memory;
    for (auto _ : state) {
        benchmark::DoNotOptimize(cpu.currentUsage());
        benchmark::DoNotOptimize(memory.currentSnapshot());
        benchmark::DoNotOptimize(memory.pressure());
    }
}
LUMETRA_BENCHMARK(BM_CPUAndMemoryReading);

void BM_CPUReading(benchmark::State& state) {
    CPUMonitor cpu;
    for (auto _ : state)
        benchmark::DoNotOptimize(cpu.currentUsage());
}
LUMETRA_BENCHMARK(BM_CPUReading);

void BM_MemoryReading(benchmark::State& state) {
    MemoryMonitor memory;
    for (auto _ : state) {
        benchmark::DoNotOptimize(memory.currentSnapshot());
        benchmark::DoNotOptimize(memory.pressure());
    }
}
LUMETRA_BENCHMARK(BM_MemoryReading);

// One fast tick's disk throughput reading on the live machine: /proc/diskstats, summed over
// the whole disks (sysfs is consulted only when the set of devices changes).
void BM_DiskIOReading(benchmark::State& state) {
    DiskIOMonitor disks;
    for (auto _ : state)
        benchmark::DoNotOptimize(disks.currentCounters());
}
LUMETRA_BENCHMARK(BM_DiskIOReading);

} // namespace
