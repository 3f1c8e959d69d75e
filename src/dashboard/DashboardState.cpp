#include "dashboard/DashboardState.h"

#include "core/SystemMonitor.h"

namespace lumetra {

DashboardState DashboardState::of(const SystemMonitor& monitor) {
    return {monitor.metrics(), monitor.histories(), monitor.diskVolumes()};
}

} // namespace lumetra
