#include "core/SystemMonitor.h"

namespace lumetra {

namespace {

double memoryPercentage(std::uint64_t used, std::uint64_t total) {
    if (total == 0)
        return 0;
    const double percentage = static_cast<double>(used) / static_cast<double>(total) * 100;
    if (!(percentage > 0))
        return 0;
    return percentage > 100 ? 100 : percentage;
}

} // namespace

SystemMonitor::SystemMonitor(Providers providers, double updateInterval, double temperatureInterval,
                             QObject* parent)
    : MetricsSink(parent) {
    MonitoringProviders scheduled{providers.cpu, providers.memory, providers.network,
                                  std::make_shared<ThermalMonitor>(providers.temperature),
                                  providers.disk};
    scheduler_ = std::make_unique<MonitoringScheduler>(std::move(scheduled), updateInterval,
                                                       temperatureInterval);
    // Posted to the loop thread now, so it is in place before any start() reaches it.
    scheduler_->setSink(this);
}

SystemMonitor::~SystemMonitor() {
    scheduler_.reset();
}

void SystemMonitor::start() {
    scheduler_->start();
}

void SystemMonitor::stop() {
    scheduler_->stop();
}

void SystemMonitor::setUpdateInterval(double seconds) {
    scheduler_->setUpdateInterval(seconds);
}

void SystemMonitor::setTemperatureInterval(double seconds) {
    scheduler_->setTemperatureInterval(seconds);
}

void SystemMonitor::refreshDiskVolumes() {
    scheduler_->refreshDiskVolumes();
}

void SystemMonitor::applyFastSample(const std::optional<MemorySnapshot>& memory,
                                    MemoryPressureLevel pressure,
                                    const std::optional<NetworkRates>& rates,
                                    std::optional<double> cpuUsage) {
    cpuHistory_.append(cpuUsage.value_or(0));
    emit cpuHistoryChanged();

    SystemMetrics record = metrics_;
    if (memory) {
        const double percentage = memoryPercentage(memory->used, memory->total);
        memoryHistory_.append(percentage);
        emit memoryHistoryChanged();
        record.memoryUsed = memory->used;
        record.memoryTotal = memory->total;
        record.memoryPercentage = percentage;
    }
    record.memoryValid = memory.has_value();
    record.timestamp = clock_();
    if (rates) {
        record.downloadBytesPerSecond = rates->download;
        record.uploadBytesPerSecond = rates->upload;
        record.networkInterfaces = rates->interfaces;
    }
    record.cpuUsage = cpuUsage.value_or(0);
    record.cpuUsageValid = cpuUsage.has_value();
    record.memoryPressure = pressure;
    publish(record);
}

void SystemMonitor::applyThermalReading(const TemperatureReading& reading) {
    SystemMetrics record = metrics_;
    record.temperature = reading.temperature;
    record.thermalState = reading.thermalState;
    record.temperatureAvailability = reading.availability;
    record.temperatureSources = reading.sources;
    publish(record);
}

void SystemMonitor::applyDiskVolumes(const DiskVolumeList& volumes) {
    if (volumes == diskVolumes_)
        return;
    diskVolumes_ = volumes;
    emit diskVolumesChanged();
}

void SystemMonitor::publish(const SystemMetrics& record) {
    if (record == metrics_) {
        metrics_ = record;
        return;
    }
    metrics_ = record;
    emit metricsChanged();
}

} // namespace lumetra
