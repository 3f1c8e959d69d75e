#pragma once

#include "core/FastSample.h"
#include "model/DiskVolume.h"
#include "model/TemperatureReading.h"

#include <QObject>

namespace lumetra {

// Where the scheduler delivers its results. Every operation runs on the sink's own thread
// (the main thread); the scheduler hands values over by copy.
class MetricsSink : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    virtual void applyFastSample(const FastSample& sample) = 0;
    virtual void applyThermalReading(const TemperatureReading& reading) = 0;
    virtual void applyDiskVolumes(const DiskVolumeList& volumes) = 0;
};

} // namespace lumetra
