#pragma once

#include "model/SerialExecutor.h"
#include "samplers/temperature/TemperatureProviding.h"

#include <functional>
#include <future>
#include <memory>

namespace lumetra {

// Serialises temperature readings on a thread of their own, so a slow sensor never holds
// up the other samplers and the provider's lazy set-up needs no lock.
class ThermalMonitor {
public:
    explicit ThermalMonitor(std::shared_ptr<TemperatureProviding> provider);

    // Hands the call to the provider on the thermal thread; the result is unchanged.
    std::future<TemperatureReading> currentReading();

    // The same reading, handed to `done` on the thermal thread when it is ready.
    void requestReading(std::function<void(const TemperatureReading&)> done);

private:
    std::shared_ptr<TemperatureProviding> provider_;
    SerialExecutor executor_; // last: joined before the provider goes
};

} // namespace lumetra
