#pragma once

#include "model/Instant.h"
#include "model/MemoryPressureLevel.h"
#include "model/TemperatureAvailability.h"
#include "model/ThermalState.h"

#include <QMetaType>
#include <QStringList>

#include <cstdint>
#include <optional>
#include <vector>

namespace lumetra {

// One complete reading of the machine: the record every view reads.
struct SystemMetrics {
    Instant timestamp = kDistantPast;
    double cpuUsage = 0;
    // Each core's usage in percent, in /proc/stat's order, from the same reading as cpuUsage;
    // empty while cpuUsage is not valid.
    std::vector<double> cpuCores;
    std::uint64_t memoryUsed = 0;
    std::uint64_t memoryTotal = 0;
    double memoryPercentage = 0;
    // False while a figure has not been read: before the first baseline, or when its kernel
    // file failed on the last tick. The figure then holds 0 (CPU) or the last good reading
    // (memory), so the views can go on drawing it; the terminal mode writes null.
    bool cpuUsageValid = false;
    bool memoryValid = false;
    MemoryPressureLevel memoryPressure = MemoryPressureLevel::normal;
    std::optional<double> temperature;
    ThermalState thermalState = ThermalState::nominal;
    TemperatureAvailability temperatureAvailability = TemperatureAvailability::unavailable;
    // Swap in bytes, as the kernel counts it (zswap and zram included): empty before the first
    // reading and where /proc/meminfo has no swap lines; a total of 0 means no swap.
    std::optional<std::uint64_t> swapUsed;
    std::optional<std::uint64_t> swapTotal;
    double downloadBytesPerSecond = 0;
    double uploadBytesPerSecond = 0;
    // Where the figures came from: the sensors averaged into `temperature`, in order, each
    // "chip/label"; and the interfaces whose traffic the rates count.
    QStringList temperatureSources;
    QStringList networkInterfaces;
    // Bytes per second read from and written to the whole physical disks: empty until two
    // readings exist. The disks they count, by kernel name.
    std::optional<double> diskReadBytesPerSecond;
    std::optional<double> diskWriteBytesPerSecond;
    QStringList diskDevices;

    // Field by field; doubles by ordinary comparison, so a NaN makes two records unequal.
    bool operator==(const SystemMetrics&) const = default;

    // The record before the first sample arrives.
    static const SystemMetrics& empty();
};

} // namespace lumetra

Q_DECLARE_METATYPE(lumetra::SystemMetrics)
