#include "BenchMain.h"

#include "core/SystemMonitor.h"
#include "dashboard/DashboardIcons.h"
#include "dashboard/DashboardPicture.h"
#include "dashboard/DashboardView.h"
#include "settings/SettingsStore.h"
#include "settings/UserDefaults.h"

#include <QTemporaryDir>

using namespace lumetra;

namespace {

// A busy machine with full histories, three volumes, sixteen cores, swap in use and busy
// disks: the most the dashboard draws.
DashboardState busyMachine() {
    DashboardState state;
    state.metrics.cpuUsage = 37.4;
    state.metrics.memoryUsed = 11ull << 30;
    state.metrics.memoryTotal = 32ull << 30;
    state.metrics.memoryPercentage = 34.4;
    state.metrics.temperature = 61.2;
    state.metrics.temperatureAvailability = TemperatureAvailability::exactTemperature;
    state.metrics.downloadBytesPerSecond = 1'234'567;
    state.metrics.uploadBytesPerSecond = 98'765;
    for (int core = 0; core < 16; ++core)
        state.metrics.cpuCores.push_back((core * 29) % 100);
    state.metrics.swapUsed = 3ull << 30;
    state.metrics.swapTotal = 8ull << 30;
    state.metrics.diskReadBytesPerSecond = 52'400'000;
    state.metrics.diskWriteBytesPerSecond = 1'500'000;
    for (int i = 0; i < 60; ++i) {
        state.histories.cpu.append((i * 37) % 100);
        state.histories.memory.append(30 + i % 7);
    }
    for (const char* name : {"System", "Home", "USB Stick"}) {
        DiskVolume volume;
        volume.name = QLatin1String(name);
        volume.totalCapacity = 500'000'000'000;
        volume.availableCapacity = 180'000'000'000;
        state.diskVolumes.push_back(volume);
    }
    return state;
}

// One redraw of the open dashboard, as each new sample causes: the sample arrives (the
// presentations rebuilt and every card laid out, once), then everything is painted over the
// background into an image the size of the popover at a scale factor of 1.
void redraw(benchmark::State& state, MetricCardStyle style) {
    QTemporaryDir dir;
    UserDefaults defaults(dir.filePath(QStringLiteral("settings.json")));
    SettingsStore settings(defaults);
    settings.setMetricCardStyle(style);
    SystemMonitor monitor({}, 1, 1);
    DashboardView view(monitor, settings);
    view.setFixedLook(QStringLiteral("DejaVu Sans"));
    const DashboardState machine = busyMachine();
    view.setFixedState(machine);
    QImage image = DashboardPicture::render(view, AppearanceConfiguration(), 1.0);
    for (auto _ : state) {
        view.setFixedState(machine);
        DashboardPicture::renderInto(image, view, AppearanceConfiguration());
        benchmark::DoNotOptimize(image.constBits());
    }
}

void BM_DashboardRedraw(benchmark::State& state) {
    redraw(state, MetricCardStyle::classic);
}
LUMETRA_BENCHMARK(BM_DashboardRedraw);

void BM_DashboardRedrawRing(benchmark::State& state) {
    redraw(state, MetricCardStyle::ring);
}
LUMETRA_BENCHMARK(BM_DashboardRedrawRing);

void BM_DashboardRedrawCompactRow(benchmark::State& state) {
    redraw(state, MetricCardStyle::compactRow);
}
LUMETRA_BENCHMARK(BM_DashboardRedrawCompactRow);

void BM_DashboardRedrawSparklineArea(benchmark::State& state) {
    redraw(state, MetricCardStyle::sparklineArea);
}
LUMETRA_BENCHMARK(BM_DashboardRedrawSparklineArea);

void BM_DashboardRedrawGrid(benchmark::State& state) {
    redraw(state, MetricCardStyle::grid);
}
LUMETRA_BENCHMARK(BM_DashboardRedrawGrid);

} // namespace
