#include "core/LiveProviders.h"

#include "samplers/cpu/CPUMonitor.h"
#include "samplers/disk/DiskIOMonitor.h"
#include "samplers/disk/DiskMonitor.h"
#include "samplers/memory/MemoryMonitor.h"
#include "samplers/network/NetworkMonitor.h"
#include "samplers/temperature/TemperatureProvider.h"
#include "settings/SettingsStore.h"

namespace lumetra {

SystemMonitor::Providers liveProviders(const KernelRoots& roots, SettingsStore& settings) {
    const auto network = std::make_shared<NetworkMonitor>(roots);
    network->setPhysicalOnly(settings.networkPhysicalOnly());
    QObject::connect(
        &settings, &SettingsStore::networkPhysicalOnlyChanged, &settings,
        [&settings, network] { network->setPhysicalOnly(settings.networkPhysicalOnly()); });
    return {std::make_shared<CPUMonitor>(roots),
            std::make_shared<MemoryMonitor>(roots),
            network,
            std::make_shared<TemperatureProvider>(roots),
            std::make_shared<DiskMonitor>(roots),
            std::make_shared<DiskIOMonitor>(roots)};
}

} // namespace lumetra
