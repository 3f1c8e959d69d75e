#include "core/SystemMonitor.h"

#include "format/MetricCatalogue.h"

namespace lumetra {

namespace {

double percentage(std::uint64_t used, std::uint64_t total) {
    if (total == 0)
        return 0;
    const double percentage = static_cast<double>(used) / static_cast<double>(total) * 100;
    if (!(percentage > 0))
        return 0;
    return percentage > 100 ? 100 : percentage;
}

} // namespace

SystemMonitor::SystemMonitor(Providers providers, double updateInterval, double temperatureInterval,
                             QObject* parent, SamplingThread thread)
    : MetricsSink(parent) {
    MonitoringProviders scheduled{
        providers.cpu,     providers.memory,
        providers.network, std::make_shared<ThermalMonitor>(providers.temperature),
        providers.disk,    providers.diskIO};
    scheduler_ = std::make_unique<MonitoringScheduler>(std::move(scheduled), updateInterval,
                                                       temperatureInterval, thread);
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

void SystemMonitor::setDiskIOWanted(bool wanted) {
    scheduler_->setDiskIOWanted(wanted);
}

void SystemMonitor::refreshDiskVolumes() {
    scheduler_->refreshDiskVolumes();
}

void SystemMonitor::applyFastSample(const FastSample& sample) {
    SystemMetrics record = metrics_;
    if (sample.memory) {
        record.memoryUsed = sample.memory->used;
        record.memoryTotal = sample.memory->total;
        record.memoryPercentage = percentage(sample.memory->used, sample.memory->total);
        record.swapUsed = sample.memory->swapUsed;
        record.swapTotal = sample.memory->swapTotal;
    }
    record.memoryValid = sample.memory.has_value();
    record.timestamp = clock_();
    if (sample.network) {
        record.downloadBytesPerSecond = sample.network->download;
        record.uploadBytesPerSecond = sample.network->upload;
        record.networkInterfaces = sample.network->interfaces;
    }
    record.cpuUsage = sample.cpu ? sample.cpu->total : 0;
    record.cpuCores = sample.cpu ? sample.cpu->cores : std::vector<double>();
    record.cpuUsageValid = sample.cpu.has_value();
    if (sample.diskIO) {
        record.diskReadBytesPerSecond = sample.diskIO->read;
        record.diskWriteBytesPerSecond = sample.diskIO->write;
        record.diskDevices = sample.diskIO->devices;
    }
    record.memoryPressure = sample.pressure;

    bool graphed = false;
    for (const MetricDescription& row : metricCatalogue()) {
        if (!row.history)
            continue;
        if (const std::optional<double> level = row.sampled(record)) {
            (histories_.*row.history).append(*level);
            graphed = true;
        }
    }
    if (graphed)
        emit historiesChanged();
    publish(std::move(record));
}

void SystemMonitor::applyThermalReading(const TemperatureReading& reading) {
    SystemMetrics record = metrics_;
    record.temperature = reading.temperature;
    record.thermalState = reading.thermalState;
    record.temperatureAvailability = reading.availability;
    record.temperatureSources = reading.sources;
    publish(std::move(record));
}

void SystemMonitor::applyDiskVolumes(const DiskVolumeList& volumes) {
    if (volumes == diskVolumes_)
        return;
    diskVolumes_ = volumes;
    emit diskVolumesChanged();
}

void SystemMonitor::publish(SystemMetrics&& record) {
    const bool changed = !(record == metrics_);
    metrics_ = std::move(record);
    if (changed)
        emit metricsChanged();
}

} // namespace lumetra
