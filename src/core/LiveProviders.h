#pragma once

#include "core/SystemMonitor.h"

namespace lumetra {

class KernelRoots;
class SettingsStore;

// The kernel's own readers under a root, as the panel app, the terminal mode and the snapshot
// sample with. The network reader follows the settings' networkPhysicalOnly from then on.
SystemMonitor::Providers liveProviders(const KernelRoots& roots, SettingsStore& settings);

} // namespace lumetra
