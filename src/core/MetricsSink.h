#pragma once

#include "model/DiskVolume.h"
#include "model/MemoryPressureLevel.h"
#include "model/NetworkCounterSample.h"
#include "model/TemperatureReading.h"
#include "samplers/memory/MemorySnapshot.h"

#include <QObject>

#include <optional>

namespace lumetra {

// Where the scheduler delivers its results. Every operation runs on the sink's own thread
// (the main thread); the scheduler hands values over by copy.
class MetricsSink : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    virtual void applyFastSample(const std::optional<MemorySnapshot>& memory,
                                 MemoryPressureLevel pressure,
                                 const std::optional<NetworkRates>& rates,
                                 std::optional<double> cpuUsage) = 0;
    virtual void applyThermalReading(const TemperatureReading& reading) = 0;
    virtual void applyDiskVolumes(const DiskVolumeList& volumes) = 0;
};

} // namespace lumetra
