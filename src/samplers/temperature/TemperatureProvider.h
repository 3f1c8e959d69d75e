#pragma once

#include "samplers/kernel/KernelRoots.h"
#include "samplers/temperature/TemperatureProviding.h"
#include "samplers/temperature/TemperatureSensorSource.h"

#include <QStringList>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace lumetra {

// One die temperature: the mean of the plausible sensors found once, at the first reading,
// with the machine's thermal state and the names of the sensors averaged. Not thread-safe:
// ThermalMonitor calls it from its own thread only, which is what lets the one-time set-up go
// without a lock.
class TemperatureProvider final : public TemperatureProviding {
public:
    // Opens the sensor sources; may throw SMCError when an SMC is the only one and fails.
    using SourceOpener = std::function<std::unique_ptr<TemperatureSensorSource>()>;
    using ThermalStateSource = std::function<ThermalState()>;

    // This machine's sensors and thermal zones below the root.
    explicit TemperatureProvider(const KernelRoots& roots = KernelRoots());
    TemperatureProvider(SourceOpener open, ThermalStateSource thermalState);

    TemperatureReading currentReading() override;

    // 5.0 to 115.0 °C, both ends included; not a number is not plausible.
    static bool isPlausible(double celsius) { return celsius >= 5.0 && celsius <= 115.0; }

private:
    TemperatureSensorSource* ensureSource();
    const std::vector<std::string>& resolveSensors(TemperatureSensorSource& source);
    std::optional<double> plausibleValue(TemperatureSensorSource& source,
                                         const std::string& sensor);

    SourceOpener open_;
    ThermalStateSource thermalState_;

    std::unique_ptr<TemperatureSensorSource> source_; // empty until opened, for good if that failed
    std::optional<std::vector<std::string>> validatedSensors_; // set once, possibly to none
    QStringList validatedNames_;
    bool didAttemptInit_ = false;
};

} // namespace lumetra
