#include "BenchMain.h"

#include "samplers/temperature/TemperatureProvider.h"

#include <filesystem>

using namespace lumetra;

namespace {

std::string fixture(const char* machine) {
    return (std::filesystem::path(__FILE__).parent_path() / "../tests/fixtures" / machine)
        .lexically_normal()
        .string();
}

// One slow-tick reading once discovery is done: three validated k10temp sensors, no zones.
void BM_TemperatureReadingAMD(benchmark::State& state) {
    TemperatureProvider provider(KernelRoots(fixture("amd-desktop")));
    provider.currentReading(); // discovery
    for (auto _ : state)
        benchmark::DoNotOptimize(provider.currentReading());
}
LUMETRA_BENCHMARK(BM_TemperatureReadingAMD);

// One validated sensor, three thermal zones and sixteen throttle counters behind the state.
void BM_TemperatureReadingIntel(benchmark::State& state) {
    TemperatureProvider provider(KernelRoots(fixture("desktop-intel")));
    provider.currentReading();
    for (auto _ : state)
        benchmark::DoNotOptimize(provider.currentReading());
}
LUMETRA_BENCHMARK(BM_TemperatureReadingIntel);

} // namespace
