#include "BenchMain.h"

#include "samplers/disk/DiskMonitor.h"
#include "samplers/network/NetworkMonitor.h"

using namespace lumetra;

namespace {

// One fast tick's network reading on the live machine.
void BM_NetworkReading(benchmark::State& state) {
    NetworkMonitor network;
    for (auto _ : state)
        benchmark::DoNotOptimize(network.currentCounters());
}
LUMETRA_BENCHMARK(BM_NetworkReading);

// One slow tick's volume listing on the live machine, statvfs on the helper thread included.
void BM_DiskListing(benchmark::State& state) {
    DiskMonitor disks;
    for (auto _ : state)
        benchmark::DoNotOptimize(disks.currentVolumes());
}
LUMETRA_BENCHMARK(BM_DiskListing);

} // namespace
