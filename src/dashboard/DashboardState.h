#pragma once

#include "model/DiskVolume.h"
#include "model/MetricHistory.h"
#include "model/SystemMetrics.h"

namespace lumetra {

class SystemMonitor;

// What the dashboard draws from the monitor: the latest sample, both histories and the
// volumes. A copy can be shown instead of the live state (pictures, previews).
struct DashboardState {
    SystemMetrics metrics;
    MetricHistory cpuHistory;
    MetricHistory memoryHistory;
    DiskVolumeList diskVolumes;

    static DashboardState of(const SystemMonitor& monitor);
};

} // namespace lumetra
