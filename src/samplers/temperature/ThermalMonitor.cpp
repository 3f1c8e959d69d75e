#include "samplers/temperature/ThermalMonitor.h"

#include "model/AppId.h"

namespace lumetra {

ThermalMonitor::ThermalMonitor(std::shared_ptr<TemperatureProviding> provider)
    : provider_(std::move(provider)), executor_(QString::fromLatin1(kAppId) + ".thermal") {}

std::future<TemperatureReading> ThermalMonitor::currentReading() {
    return executor_.submit([provider = provider_] { return provider->currentReading(); });
}

void ThermalMonitor::requestReading(std::function<void(const TemperatureReading&)> done) {
    executor_.post(
        [provider = provider_, done = std::move(done)] { done(provider->currentReading()); });
}

} // namespace lumetra
