#include "BenchMain.h"

#include "format/MenuBarLabel.h"

using namespace lumetra;

namespace {

SystemMetrics busyMachine() {
    SystemMetrics metrics;
    metrics.cpuUsage = 37.4;
    metrics.memoryUsed = 11ull << 30;
    metrics.memoryTotal = 32ull << 30;
    metrics.memoryPercentage = 34.4;
    metrics.temperature = 61.2;
    metrics.downloadBytesPerSecond = 1'234'567;
    metrics.uploadBytesPerSecond = 98'765;
    return metrics;
}

MetricHistory fullHistory() {
    MetricHistory history;
    for (int i = 0; i < 60; ++i)
        history.append(i * 1.5);
    return history;
}

// The text label with all five metrics, as the menu bar builds it on every sample.
void BM_LabelTextAllMetrics(benchmark::State& state) {
    const SystemMetrics metrics = busyMachine();
    const LabelSettings settings;
    for (auto _ : state)
        benchmark::DoNotOptimize(labelText(metrics, settings));
}
LUMETRA_BENCHMARK(BM_LabelTextAllMetrics);

void BM_ChipsAllMetrics(benchmark::State& state) {
    const SystemMetrics metrics = busyMachine();
    const MetricHistories histories{fullHistory(), fullHistory(), fullHistory()};
    LabelSettings settings;
    settings.style = MenuBarDisplayStyle::compactGraph;
    for (auto _ : state)
        benchmark::DoNotOptimize(chips(metrics, histories, settings));
}
LUMETRA_BENCHMARK(BM_ChipsAllMetrics);

} // namespace
