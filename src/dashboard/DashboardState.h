#pragma once

#include "model/DiskVolume.h"
#include "model/MetricHistories.h"
#include "model/SystemMetrics.h"

namespace lumetra {

class SystemMonitor;

// What the dashboard draws from the monitor: the latest sample, the histories and the
// volumes. A copy can be shown instead of the live state (pictures, previews).
struct DashboardState {
    SystemMetrics metrics;
    MetricHistories histories;
    DiskVolumeList diskVolumes;

    static DashboardState of(const SystemMonitor& monitor);
};

} // namespace lumetra
