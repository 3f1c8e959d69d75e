#include "dashboard/DashboardState.h"

#include "core/SystemMonitor.h"

namespace lumetra {

DashboardState DashboardState::of(const SystemMonitor& monitor) {
    return {monitor.metrics(), monitor.cpuHistory(), monitor.memoryHistory(),
            monitor.diskVolumes()};
}

} // namespace lumetra
