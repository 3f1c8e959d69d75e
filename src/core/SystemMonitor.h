#pragma once

#include "core/MetricsSink.h"
#include "core/MonitoringScheduler.h"
#include "model/MetricHistories.h"
#include "model/SystemMetrics.h"
#include "samplers/temperature/TemperatureProviding.h"

#include <functional>
#include <memory>

namespace lumetra {

// The observable state the views draw: the latest record, the metrics' histories and the
// disk list. Lives on the main thread; the scheduler feeds it through MetricsSink, and
// each property notifies only when its value really changed.
class SystemMonitor final : public MetricsSink {
    Q_OBJECT
    Q_PROPERTY(lumetra::SystemMetrics metrics READ metrics NOTIFY metricsChanged)
    Q_PROPERTY(lumetra::MetricHistories histories READ histories NOTIFY historiesChanged)
    Q_PROPERTY(lumetra::DiskVolumeList diskVolumes READ diskVolumes NOTIFY diskVolumesChanged)

public:
    struct Providers {
        std::shared_ptr<CPUProviding> cpu;
        std::shared_ptr<MemoryProviding> memory;
        std::shared_ptr<NetworkProviding> network;
        std::shared_ptr<TemperatureProviding> temperature;
        std::shared_ptr<DiskProviding> disk;               // may be null: no disk list
        std::shared_ptr<DiskIOProviding> diskIO = nullptr; // may be null: no disk throughput
    };

    // Does not start sampling. The sink is attached before any later start() takes effect.
    SystemMonitor(Providers providers, double updateInterval, double temperatureInterval,
                  QObject* parent = nullptr, SamplingThread thread = SamplingThread::own);
    ~SystemMonitor() override;

    const SystemMetrics& metrics() const { return metrics_; }
    const MetricHistories& histories() const { return histories_; }
    const DiskVolumeList& diskVolumes() const { return diskVolumes_; }

    void start();
    void stop();
    void setUpdateInterval(double seconds);
    void setTemperatureInterval(double seconds);
    void refreshDiskVolumes();
    // The thread the samplers run on.
    QThread* monitoringThread() const { return scheduler_->thread(); }
    // Which optional readings the fast loop takes (all at first): a terminal line that shows
    // no rates or cores leaves their kernel files alone.
    void setReadings(FastReadings readings);

    void applyFastSample(const FastSample& sample) override;
    void applyThermalReading(const TemperatureReading& reading) override;
    void applyDiskVolumes(const DiskVolumeList& volumes) override;

    // The wall clock for record timestamps; tests may replace it.
    void setClock(std::function<Instant()> clock) { clock_ = std::move(clock); }

signals:
    void metricsChanged();
    void historiesChanged();
    void diskVolumesChanged();

private:
    void publish(SystemMetrics&& record);

    SystemMetrics metrics_ = SystemMetrics::empty();
    MetricHistories histories_;
    DiskVolumeList diskVolumes_;
    std::function<Instant()> clock_ = [] { return WallClock::now(); };
    // Destroyed first: its threads are joined while this object is still whole.
    std::unique_ptr<MonitoringScheduler> scheduler_;
};

} // namespace lumetra
