#pragma once

#include "core/MetricsSink.h"
#include "core/MonitoringScheduler.h"
#include "model/MetricHistory.h"
#include "model/SystemMetrics.h"
#include "samplers/temperature/TemperatureProviding.h"

#include <functional>
#include <memory>

namespace lumetra {

// The observable state the views draw: the latest record, the CPU and memory histories and
// the disk list. Lives on the main thread; the scheduler feeds it through MetricsSink, and
// each property notifies only when its value really changed.
class SystemMonitor final : public MetricsSink {
    Q_OBJECT
    Q_PROPERTY(lumetra::SystemMetrics metrics READ metrics NOTIFY metricsChanged)
    Q_PROPERTY(lumetra::MetricHistory cpuHistory READ cpuHistory NOTIFY cpuHistoryChanged)
    Q_PROPERTY(lumetra::MetricHistory memoryHistory READ memoryHistory NOTIFY memoryHistoryChanged)
    Q_PROPERTY(lumetra::DiskVolumeList diskVolumes READ diskVolumes NOTIFY diskVolumesChanged)

public:
    struct Providers {
        std::shared_ptr<CPUProviding> cpu;
        std::shared_ptr<MemoryProviding> memory;
        std::shared_ptr<NetworkProviding> network;
        std::shared_ptr<TemperatureProviding> temperature;
        std::shared_ptr<DiskProviding> disk; // may be null: no disk list
    };

    // Does not start sampling. The sink is attached before any later start() takes effect.
    SystemMonitor(Providers providers, double updateInterval, double temperatureInterval,
                  QObject* parent = nullptr);
    ~SystemMonitor() override;

    const SystemMetrics& metrics() const { return metrics_; }
    const MetricHistory& cpuHistory() const { return cpuHistory_; }
    const MetricHistory& memoryHistory() const { return memoryHistory_; }
    const DiskVolumeList& diskVolumes() const { return diskVolumes_; }

    void start();
    void stop();
    void setUpdateInterval(double seconds);
    void setTemperatureInterval(double seconds);
    void refreshDiskVolumes();
    // The thread the samplers run on.
    QThread* monitoringThread() const { return scheduler_->thread(); }

    void applyFastSample(const std::optional<MemorySnapshot>& memory, MemoryPressureLevel pressure,
                         const std::optional<NetworkRates>& rates,
                         std::optional<double> cpuUsage) override;
    void applyThermalReading(const TemperatureReading& reading) override;
    void applyDiskVolumes(const DiskVolumeList& volumes) override;

    // The wall clock for record timestamps; tests may replace it.
    void setClock(std::function<Instant()> clock) { clock_ = std::move(clock); }

signals:
    void metricsChanged();
    void cpuHistoryChanged();
    void memoryHistoryChanged();
    void diskVolumesChanged();

private:
    void publish(const SystemMetrics& record);

    SystemMetrics metrics_ = SystemMetrics::empty();
    MetricHistory cpuHistory_;
    MetricHistory memoryHistory_;
    DiskVolumeList diskVolumes_;
    std::function<Instant()> clock_ = [] { return WallClock::now(); };
    // Destroyed first: its threads are joined while this object is still whole.
    std::unique_ptr<MonitoringScheduler> scheduler_;
};

} // namespace lumetra
